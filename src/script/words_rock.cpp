// Script words of the rock calculations (average PT) and the reactions mode.
#include "console/runended.h"
#include "console/scan.h"
#include "run.h"
#include "script/readers.h"
#include "script/vocabulary.h"

namespace sm {

namespace {

RockScripts& rk(Run& run) { return run.script.rock; }

void rockname(Run& run, const ScriptLine& line) {
    RockScripts& r = rk(run);
    r.rocknameflag = line.flag == 0 ? 0 : 1;
    r.rockname.clear();
    if (line.flag != 0) return;
    if (scriptstring(run, line.keyword))
        r.rockname = line.item(1);
    else
        r.rocknameflag = 1;
}

// setisr: a line of end-members, then one line of coefficients a reaction.
void setisr(Run& run, const ScriptLine& line) {
    RockScripts& r = rk(run);
    if (line.flag == 1) {
        r.isrflag = 1;
        return;
    }
    r.isrflag = 0;
    if (r.isrcount == 0) return;
    const bool dataline = line.nitems() >= 1 && isnumberword(line.item(1));
    if (r.isrcount == notseen) {
        if (dataline) {
            scriptmessage(run, "now, " + line.keyword +
                                   " starts with an end-member list on a line, before the block ");
            putstr(run.io, 0,
                   "of reaction coeffs (this line was there before but preceded by a %)", 1,
                   chscreenlog);
            scriptbomb("change the " + line.keyword + " script");
        }
        r.isrnames.clear();
        for (int i = 1; i <= line.nitems(); ++i) r.isrnames.push_back(line.item(i));
        r.isrcount = -2;
        return;
    }
    // one coefficient a name, read from the words: a reaction may involve
    // more end-members than the info record holds
    const int n = static_cast<int>(r.isrnames.size());
    const char* closing = "info in the script needs to be corrected";
    auto giveup = [&](const std::string& message) {
        scriptfault(run, line.keyword, message, "integers expected", closing);
        r.isrcount = 0;
    };
    if (line.nitems() < n) {
        giveup("for " + line.keyword + ", only " + std::to_string(line.nitems()) +
               " integers in a line, but " + std::to_string(n) + " needed");
        return;
    }
    std::vector<int> coefficients;
    for (int i = 1; i <= n; ++i) {
        int v;
        std::string m;
        if (whatisstring(line.item(i)) != tokint || !string2int(line.item(i), v, m)) {
            giveup("for " + line.keyword + ", info includes \"" + line.item(i) +
                   "\" not just integers");
            return;
        }
        coefficients.push_back(v);
    }
    r.isr.push_back(coefficients);
    r.isrcount = static_cast<int>(r.isr.size());
}

// maxsdt and maxsdp: a line puts back the usual limit before reading its own.
void maxsd(Run& run, const ScriptLine& line, int& flag, real& value, real usual) {
    value = usual;
    flag = line.flag == 0 ? 0 : line.flag;
    if (line.flag != 0) return;
    if (scriptreal(run, line.keyword, 0, 0))
        value = run.script.info.inforeal[1];
    else
        flag = 1;
}

}  // namespace

void rockwords(std::vector<WordEntry>& t) {
    t.push_back({{"rockname", "runname", "setrockname"}, mode2 | mode3, true, rockname});
    t.push_back({{"justrelu"}, mode2 | mode3, true,
                 [](Run& r, const ScriptLine& l) { rk(r).justrelu = l.flag; }});
    t.push_back({{"oisr", "pisr"}, mode2, true,
                 [](Run& r, const ScriptLine& l) { rk(r).oisr = l.flag; }});
    t.push_back({{"setisr", "isr"}, mode2, false, setisr});
    t.push_back({{"dataok"}, mode2, true,
                 [](Run& r, const ScriptLine& l) { rk(r).dataok = l.flag; }});
    t.push_back({{"setmaxsdt", "maxsdt"}, mode2, true, [](Run& r, const ScriptLine& l) {
                     maxsd(r, l, rk(r).maxsdtflag, rk(r).maxsdt, 50);
                 }});
    t.push_back({{"setmaxsdp", "maxsdp"}, mode2, true, [](Run& r, const ScriptLine& l) {
                     maxsd(r, l, rk(r).maxsdpflag, rk(r).maxsdp, 5);
                 }});
    t.push_back({{"doallr", "doallreactions"}, mode3, true,
                 [](Run& r, const ScriptLine& l) { rk(r).doallr = l.flag; }});
    t.push_back({{"doschreinemakers", "schreinemakers"}, mode3, true,
                 [](Run& r, const ScriptLine& l) {
                     if (l.flag == 0) rk(r).doallr = 1;
                     if (l.flag == 1) rk(r).doallr = 0;
                 }});
}

}  // namespace sm
