// The overall window and the calculation windows of pressure and
// temperature, their repairs and the prompts that settle them.
#include <cmath>

#include "console/format.h"
#include "console/prompts.h"
#include "console/runended.h"
#include "console/scan.h"
#include "run.h"
#include "script/readers.h"

namespace sm {

namespace {

const std::string degC = "\xA1" "C";

void say(Run& run, const std::string& text) { putstr(run.io, 0, text, 1, chscreenlog); }

// A value as briefly as it can be written: the decimals it needs.
std::string brief(real v) {
    const int d = decimalsneeded(v);
    const real f = std::fabs(v - std::round(v));
    return real2str(v, f < 1e-8L ? 0 : d, true);
}

}  // namespace

bool inrange(const Run& run, int kind, real value) {
    const Windows& w = run.script.win;
    const Window* win = nullptr;
    switch (kind) {
    case 0: win = &w.calcT; break;
    case 1: win = &w.calcP; break;
    case 2: win = &w.xco2window; break;
    case 3: win = &w.lnawindow; break;
    case 4: win = &w.muwindow; break;
    default: bomb("inrange", "unknown type", 1);
    }
    return value >= win->lo && value <= win->hi;
}

void dofigPT(Run& run) {
    Windows& w = run.script.win;
    const WindowScripts& s = run.script.windows;
    say(run, "specification of overall PT window:");
    const bool fromscript = s.diagramPT == 0;
    if (fromscript) {
        w.overallP = s.overallP;
        w.overallT = s.overallT;
    } else {
        say(run, "whereas stratamath handles interactive input of overall PT window information, in");
        say(run, "most cases this information is better entered in the scriptfile. For example, for a ");
        say(run, "PT pseudosection the window info is simply the PT range of the diagram being drawn.");
        if (query(run.io, "stop, and put info in the scriptfile")) killrun();
        std::vector<real> v;
        int n = 4;
        promptreals(run.io, "overall PT window: P low,high T low,high (in kbar, " + degC + ")", v, n);
        const real plo = v[0], phi = v[1], tlo = v[2] + kelvin0, thi = v[3] + kelvin0;
        if (plo > phi || tlo > thi || plo < w.Pmin || phi > Pmaxlimit || tlo < Tminlimit ||
            thi > Tmaxlimit)
            bomb("dofigPT", "inappropriate PT window input", 0);
        w.overallP = {plo, phi};
        w.overallT = {tlo, thi};
    }
    say(run, "overall PT window is P: " + real2str(w.overallP.lo, 1, true) + " to " +
                 real2str(w.overallP.hi, 1, true) + " kbar, and T: " +
                 int2str(w.overallT.lo - kelvin0) + " to " + int2str(w.overallT.hi - kelvin0) +
                 degC + (fromscript ? " (from script)" : ""));
}

namespace {

// One axis of the calculation window: from the script, or typed.
void PTaxis(Run& run, bool isP, const std::string& title) {
    Windows& w = run.script.win;
    const WindowScripts& s = run.script.windows;
    Window& win = isP ? w.calcP : w.calcT;
    real& interval = isP ? w.Pinterval : w.Tinterval;
    bool& fromscript = isP ? w.Pfromscript : w.Tfromscript;
    const Window& overall = isP ? w.overallP : w.overallT;
    const int flag = isP ? s.calcPflag : s.calcTflag;
    const real offset = isP ? 0 : kelvin0;
    const std::string unit = isP ? " kbar" : degC;
    if (flag == 0) {
        win = isP ? s.calcP : s.calcT;
        interval = isP ? s.Pinterval : s.Tinterval;
        fromscript = true;
        const std::string lo = brief(win.lo - offset), hi = brief(win.hi - offset);
        say(run, title + ": " + (std::fabs(win.hi - win.lo) < 1e-8L ? lo : lo + " to " + hi) +
                     unit + " (from script)");
    } else {
        say(run, title);
        std::vector<real> v;
        int n = 0;
        promptreals(run.io,
                    isP ? "P calcs: between P(low) and P(high), with P increment"
                        : "T calcs: between T(low) and T(high), with T increment",
                    v, n);
        fromscript = false;
        interval = 0;
        if (n == 0) {
            win = overall;
        } else if (n == 1) {
            win = {v[0] + offset, v[0] + offset};
        } else {
            win = {v[0] + offset, v[1] + offset};
            if (n >= 3) interval = v[2];
        }
    }
    if (isP)
        checkPwindow(run, win.lo, win.hi, 0);
    else
        checkTwindow(run, win.lo, win.hi, 0);
}

}  // namespace

void PTcalcs(Run& run, const std::string& title, const std::string& Ptitle,
             const std::string& Ttitle) {
    Windows& w = run.script.win;
    WindowScripts& s = run.script.windows;
    say(run, "specification of PT calcs:");
    int& pf = s.calcPflag;
    int& tf = s.calcTflag;
    if (pf != 0 || tf != 0) {
        if (pf == 2 && tf == 2) {
            promptcontrol(run.io, "use PT calcs given in datafile", pf);
            tf = pf;
        } else if (tf == 0 && pf == 2) {
            promptcontrol(run.io, "T calcs set; use P calcs given in datafile", pf);
        } else if (tf == 2 && pf == 0) {
            promptcontrol(run.io, "P calcs set; use T calcs given in datafile", tf);
        } else {
            promptcontrol(run.io, "use T calcs given in datafile", tf);
            promptcontrol(run.io, "use P calcs given in datafile", pf);
        }
    }
    switch (w.gridkind) {
    case 0:
        say(run, "using overall PT window for the " + title);
        w.calcP = w.overallP;
        w.calcT = w.overallT;
        w.Pinterval = w.Tinterval = 0;
        break;
    case 1:
        PTaxis(run, true, Ptitle);
        say(run, "using overall T window for the " + Ttitle);
        w.calcT = w.overallT;
        w.Tinterval = 0;
        break;
    case 2:
        PTaxis(run, false, Ttitle);
        say(run, "using overall P window for the " + Ptitle);
        w.calcP = w.overallP;
        w.Pinterval = 0;
        break;
    default:
        PTaxis(run, true, Ptitle);
        PTaxis(run, false, Ttitle);
        break;
    }
}

namespace {

void checkwindow(Run& run, real& low, real& high, int need, bool isP) {
    const Windows& w = run.script.win;
    const Window& overall = isP ? w.overallP : w.overallT;
    const std::string a = isP ? "P" : "T";
    const real offset = isP ? 0 : kelvin0;
    bool equal = std::fabs(high - low) < 1e-8L;
    if (!equal && high <= low) {
        std::swap(low, high);
        say(run, a + "(low) must be less than " + a + "(high): values swapped");
    }
    // both ends are held inside the overall window
    if (high > overall.hi) {
        say(run, a + "(high) must be less than " + real2str(overall.hi - offset, 1, true) +
                     ": this used");
        high = overall.hi;
    }
    if (low < overall.lo) {
        say(run, a + "(low) must be greater than " + real2str(overall.lo - offset, 1, true) +
                     ": this used");
        low = overall.lo;
    }
    if (high < low) high = low;
    equal = std::fabs(high - low) < 1e-8L;
    if (equal && need == 1) {
        low = overall.lo;
        high = overall.hi;
        say(run, a + " window needed but " + a + "(low) = " + a + "(high): overall " + a +
                     " window used (script overridden)");
    }
}

constexpr int maxtries = 5;

// The shared loop of the window questions: `problem` gives the complaint
// about a pair, or "" when it is fine.
template <typename Problem>
void askwindow(Run& run, real& low, real& high, const std::string& prompt, real offset,
               Problem problem) {
    for (int tries = 0;; ++tries) {
        const std::string text = problem(low, high);
        if (text.empty()) return;
        say(run, text);
        if (tries == maxtries) bomb("*OK", "too many tries", 0);
        std::vector<real> v;
        int n = 2;
        promptreals(run.io, prompt, v, n);
        low = v[0] + offset;
        high = v[1] + offset;
    }
}

std::string ordertext(const std::string& a, int kind) {
    return kind == 1 ? a + "(low) must be less than " + a + "(high) : try again"
                     : a + "(low) must be less than or equal to " + a + "(high) : try again";
}

bool badorder(real low, real high, int kind) { return kind == 1 ? low >= high : low > high; }

}  // namespace

void checkPwindow(Run& run, real& low, real& high, int need) {
    checkwindow(run, low, high, need, true);
}

void checkTwindow(Run& run, real& low, real& high, int need) {
    checkwindow(run, low, high, need, false);
}

void askPwindow(Run& run, real& low, real& high, int kind) {
    const real pmin = run.script.win.Pmin;
    askwindow(run, low, high, "P low,high", 0, [&](real lo, real hi) -> std::string {
        if (badorder(lo, hi, kind)) return ordertext("P", kind);
        if (hi > Pmaxlimit) return "P(high) must be less than 1500 : try again";
        if (lo < pmin) return "P(low) must be greater than " + real2str(pmin, 3, true) + " : try again";
        return "";
    });
}

void askTwindow(Run& run, real& low, real& high, int kind) {
    askwindow(run, low, high, " T low,high", kelvin0, [&](real lo, real hi) -> std::string {
        if (badorder(lo, hi, kind)) return ordertext("T", kind);
        if (hi > Tmaxlimit) return "T(high) must be less than 2727 : try again";
        if (lo < Tminlimit) return "T(low) must be greater than 10 : try again";
        return "";
    });
}

void askxwindow(Run& run, real& low, real& high, int kind) {
    askwindow(run, low, high, "x(CO2) low,high", 0, [&](real lo, real hi) -> std::string {
        if (badorder(lo, hi, kind)) return ordertext("x(CO2)", kind);
        if (hi > 1) return "x(CO2) high must be less than 1 : try again";
        if (lo < 0) return "x(CO2) low must be greater than 0 : try again";
        return "";
    });
}

void asklogawindow(Run& run, real& low, real& high, int kind) {
    askwindow(run, low, high, "log a low,high", 0, [&](real lo, real hi) -> std::string {
        return badorder(lo, hi, kind) ? ordertext("log a", kind) : "";
    });
}

void askmuwindow(Run& run, real& low, real& high, int kind) {
    askwindow(run, low, high, "\xB5 low,high", 0, [&](real lo, real hi) -> std::string {
        return badorder(lo, hi, kind) ? ordertext("\xB5", kind) : "";
    });
}

void checkname(Run& run, sstring& name, const std::vector<sstring>& names, bool silent,
               int& index) {
    auto find = [&](const std::string& n) {
        for (size_t k = 0; k < names.size(); ++k)
            if (names[k] == n) return static_cast<int>(k) + 1;
        return 0;
    };
    index = find(name);
    if (index != 0 || silent) return;
    putstr(run.io, 0, "unrecognised name : replace \"" + name + "\" with  : ", 0, chscreenlog);
    std::string line;
    if (!readconsole(run.io, line)) bomb("read in prstrings", "problems reading", 0);
    const std::string reply = trim(line);
    putstr(run.io, 0, reply.empty() ? "(nothing input)" : reply, 1, chlog);
    if (iskill(reply)) killrun();
    if (reply.empty()) return;
    // a name is measured as typed, before it is cut to the program's length
    const std::string word = reply.substr(0, reply.find_first_of(" \t"));
    if (word.size() >= 23) {
        say(run, " name too long: name ignored");
        return;
    }
    index = find(word);
    if (index == 0) {
        say(run, " still a bad name: name ignored");
        return;
    }
    name = word;
}

}  // namespace sm
