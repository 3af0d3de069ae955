#include "script/readers.h"

#include "console/format.h"
#include "console/runended.h"
#include "run.h"

namespace sm {

namespace {

// The common end of a typed reader's fault.
bool fault(Run& run, std::string_view keyword, const std::string& message,
           const char* bombtext, const char* closing) {
    putstr(run.io, 1, message, 1, chscreenlog);
    if (run.script.control.strictscripting)
        bomb("reading script for " + std::string(keyword), bombtext, 0);
    ++run.prefs.problems;
    putstr(run.io, 0, closing, 1, chscreenlog);
    return false;
}

std::string lead(std::string_view keyword) { return "for " + std::string(keyword); }

std::string quoted(const std::string& word) { return "\"" + word + "\""; }

// A repair of a P or T reader: told, counted, never fatal.
int repaired(Run& run, std::string_view keyword, const std::string& text) {
    putstr(run.io, 1, lead(keyword) + text, 1, chscreenlog);
    ++run.prefs.problems;
    return 1;
}

const std::string degC = "\xA1" "C";

// Limits are met within a hair, so that a value written as the limit passes
// whatever the last bit of its conversion.
constexpr real hair = 1e-9L;

}  // namespace

bool scriptfault(Run& run, std::string_view keyword, const std::string& message,
                 const char* bombtext, const char* closing) {
    return fault(run, keyword, message, bombtext, closing);
}

std::string Pminstr(real pmin) { return real2str(pmin, pmin < 0.1L ? 4 : 1, true); }

bool scriptreal(Run& run, std::string_view keyword, real low, real high) {
    const ScriptInfo& info = run.script.info;
    const char* closing = "a real will be prompted for";
    if (info.ninfo < 1)
        return fault(run, keyword, lead(keyword) + ", no info given: one real expected",
                     "real expected", closing);
    if (!info.isnumber(1))
        return fault(run, keyword, lead(keyword) + ", info given is " + quoted(info.infostr[1]),
                     "real expected", closing);
    const real v = info.inforeal[1];
    if (low != high && (v < low || v > high))
        return fault(run, keyword,
                     lead(keyword) + ", info given is " + quoted(info.infostr[1]) +
                         ", but limits are " + real2str(low, 3, true) + " to " +
                         real2str(high, 3, true),
                     "real inappropriate", closing);
    return true;
}

bool scriptreals(Run& run, std::string_view keyword, int& n) {
    const ScriptInfo& info = run.script.info;
    const char* closing = "info in the script needs to be corrected";
    if (info.ninfo < 1)
        return fault(run, keyword, lead(keyword) + ", no info given: one or more reals expected",
                     "reals expected", closing);
    if (info.ninfo < n)
        return fault(run, keyword,
                     lead(keyword) + ", only " + std::to_string(info.ninfo) +
                         " numbers in a line, but " + std::to_string(n) + " needed",
                     "reals expected", closing);
    const int want = n == 0 ? info.ninfo : n;
    for (int i = 1; i <= want; ++i)
        if (!info.isnumber(i))
            return fault(run, keyword,
                         lead(keyword) + ", info includes " + quoted(info.infostr[i]) +
                             ", not just reals",
                         "reals expected", closing);
    n = want;
    return true;
}

namespace {
// An integer item: a whole number that fits the program's 16-bit integers.
bool isinteger(const ScriptInfo& info, int i) {
    return info.infoclass[i] == tokint && static_cast<real>(info.infoint[i]) == info.inforeal[i];
}
}  // namespace

bool scriptint(Run& run, std::string_view keyword, int low, int high) {
    const ScriptInfo& info = run.script.info;
    const char* closing = "an integer will be prompted for";
    if (info.ninfo < 1)
        return fault(run, keyword, lead(keyword) + ", no info given: one integer expected",
                     "integer expected", closing);
    if (!isinteger(info, 1))
        return fault(run, keyword, lead(keyword) + ", info given is " + quoted(info.infostr[1]),
                     "integer expected", closing);
    const int v = info.infoint[1];
    if (low != high && (v < low || v > high))
        return fault(run, keyword,
                     lead(keyword) + ", info given is " + quoted(info.infostr[1]) +
                         ", but limits are " + std::to_string(low) + " to " +
                         std::to_string(high),
                     "integer inappropriate", closing);
    return true;
}

bool scriptints(Run& run, std::string_view keyword, int& n) {
    const ScriptInfo& info = run.script.info;
    const char* closing = "info in the script needs to be corrected";
    if (info.ninfo < 1)
        return fault(run, keyword,
                     lead(keyword) + ", no info given: one or more integers expected",
                     "integers expected", closing);
    if (info.ninfo < n)
        return fault(run, keyword,
                     lead(keyword) + ", only " + std::to_string(info.ninfo) +
                         " integers in a line, but " + std::to_string(n) + " needed",
                     "integers expected", closing);
    const int want = n == 0 ? info.ninfo : n;
    for (int i = 1; i <= want; ++i)
        if (!isinteger(info, i))
            return fault(run, keyword,
                         lead(keyword) + ", info includes " + quoted(info.infostr[i]) +
                             " not just integers",
                         "integers expected", closing);
    n = want;
    return true;
}

bool scriptstring(Run& run, std::string_view keyword) {
    if (run.script.info.ninfo >= 1) return true;
    return fault(run, keyword, lead(keyword) + ", no info given: one string expected",
                 "string expected", "a string is needed (or will be prompted for)");
}

bool scriptstrings(Run& run, std::string_view keyword, int& n) {
    if (run.script.info.ninfo >= 1) {
        n = run.script.info.ninfo;
        return true;
    }
    return fault(run, keyword, lead(keyword) + ", no info given: one or more strings expected",
                 "strings expected", "info in the script needs to be corrected");
}

int scriptP(Run& run, std::string_view keyword, real& p, int i) {
    const real pmin = run.script.win.Pmin;
    const real v = run.script.info.inforeal[i];
    if (v < pmin - hair) {
        p = pmin;
        return repaired(run, keyword,
                        ", the one P needs to be greater than " + Pminstr(pmin) +
                            " kbar; default used");
    }
    if (v > Pmaxlimit + hair) {
        p = Pmaxlimit;
        return repaired(run, keyword,
                        ", the one P needs to be less than " + real2str(Pmaxlimit, 1, true) +
                            " kbar; default used");
    }
    p = v;
    return 0;
}

int scriptT(Run& run, std::string_view keyword, real& t, int i) {
    const real v = run.script.info.inforeal[i] + kelvin0;
    if (v < Tminlimit - hair) {
        t = Tminlimit;
        return repaired(run, keyword, ", the one T needs to be greater than 10" + degC +
                                          "; default used");
    }
    if (v > Tmaxlimit + hair) {
        t = Tmaxlimit;
        return repaired(run, keyword, ", the one T needs to be less than 2727" + degC +
                                          "; default used");
    }
    t = v;
    return 0;
}

namespace {

struct RangeTexts {
    std::string order, both, bottom, top;
};

// The range rule shared by P and T: `a`, `b` are the items in the units of
// the script, `offset` turns them into stored values.
int scriptrange(Run& run, std::string_view keyword, real& low, real& high, real a, real b,
                real lowest, real highest, real offset, const RangeTexts& texts) {
    int result = 0;
    if (b < a) {
        putstr(run.io, 1, lead(keyword) + texts.order, 1, chscreenlog);
        std::swap(a, b);
        ++run.prefs.problems;
        result = 1;
    }
    const bool bottomout = a < lowest - hair;
    const bool topout = b > highest + hair;
    if (bottomout && topout) return repaired(run, keyword, texts.both);
    if (bottomout) {
        high = b + offset;
        return repaired(run, keyword, texts.bottom);
    }
    if (topout) {
        low = a + offset;
        return repaired(run, keyword, texts.top);
    }
    low = a + offset;
    high = b + offset;
    return result;
}

}  // namespace

int scriptPrange(Run& run, std::string_view keyword, real& low, real& high, int i) {
    const real pmin = run.script.win.Pmin;
    const std::string lo = Pminstr(pmin), hi = real2str(Pmaxlimit, 1, true);
    const RangeTexts texts{
        ", the 2nd P in the P range must be larger than the 1st P",
        ", the P range needs to be within " + lo + " kbar to " + hi + " kbar; default used",
        ", the bottom of the P range needs to be greater than " + lo + " kbar; default used",
        ", the top of the P range needs to be less than " + hi + " kbar; default used"};
    const ScriptInfo& info = run.script.info;
    return scriptrange(run, keyword, low, high, info.inforeal[i], info.inforeal[i + 1], pmin,
                       Pmaxlimit, 0, texts);
}

int scriptTrange(Run& run, std::string_view keyword, real& low, real& high, int i) {
    const RangeTexts texts{
        ", the 2nd T in the T range must be larger than the 1st T",
        ", the T range needs to be within 10" + degC + " to 2727" + degC + "; default used",
        ", the bottom of the T range needs to be greater than 10 " + degC + "; default used",
        ", the top of the T range needs to be less than 2727" + degC + "; default used"};
    const ScriptInfo& info = run.script.info;
    return scriptrange(run, keyword, low, high, info.inforeal[i], info.inforeal[i + 1], 9.85L,
                       2726.85L, kelvin0, texts);
}

}  // namespace sm
