// Script words of the equilibrium calculation: variance, isopleths,
// projection, starting guesses.
#include "console/runended.h"
#include "console/scan.h"
#include "run.h"
#include "script/readers.h"
#include "script/vocabulary.h"

namespace sm {

namespace {

EquilibriumScripts& eq(Run& run) { return run.script.equilibrium; }

constexpr int maxxyzguess = 200;
constexpr int maxmodeguess = 88;

void setvar(Run& run, const ScriptLine& line) {
    EquilibriumScripts& e = eq(run);
    e.setvar = line.flag;
    if (line.flag == 1) return;
    const ScriptInfo& info = run.script.info;
    if (info.ninfo < 1 || info.infoclass[1] != tokint) {
        e.setvar = 1;
        return;
    }
    e.var = getinteger(info.infoclass[1], info.infostr[1], "bad integer in setvar script");
}

// Replaces "isopleth" in a text for the mode isopleths.
std::string isotext(std::string text, bool mode) {
    if (!mode) return text;
    std::string out;
    size_t at = 0;
    for (size_t p; (p = text.find("isopleth", at)) != std::string::npos; at = p + 8)
        out += text.substr(at, p - at) + "mode isopleth";
    return out + text.substr(at);
}

// The shapes an isopleth line may take: N a number, W a name.
void isopleth(Run& run, const ScriptLine& line, bool mode) {
    EquilibriumScripts& e = eq(run);
    int& flag = mode ? e.modeisoflag : e.isoflag;
    std::vector<Isopleth>& list = mode ? e.modeiso : e.iso;
    if (line.flag == 1 || line.nitems() == 0 || line.item(1) == "none") {
        flag = 1;
        list.clear();
        return;
    }
    std::string shape;
    for (int i = 1; i <= line.nitems(); ++i) shape += isnumberword(line.item(i)) ? 'N' : 'W';
    static const char* const shapes[] = {"W", "WW", "WN", "WNWN", "WNNN", "WNNNW", "WNNNWN",
                                         "WNNNWNNN"};
    bool known = false;
    for (const char* s : shapes) known = known || shape == s;
    if (!known) {
        scriptmessage(run, isotext("isopleth info not recognised: just use isopleth name(s)", mode));
        putstr(run.io, 0, isotext("and enter the isopleth information interactively?", mode), 1,
               chscreenlog);
        scriptbomb(isotext("isopleth info inappropriate", mode));
    }
    std::vector<Isopleth> isos;
    int i = 1;
    while (i <= line.nitems()) {
        Isopleth iso;
        iso.name = line.item(i++);
        int nums = 0;
        while (i + nums <= line.nitems() && isnumberword(line.item(i + nums))) ++nums;
        if (nums == 1) {
            iso.nvalues = 1;
            iso.low = iso.high = wordreal(line.item(i));
        } else if (nums == 3) {
            iso.nvalues = 3;
            iso.low = wordreal(line.item(i));
            iso.high = wordreal(line.item(i + 1));
            iso.inc = wordreal(line.item(i + 2));
        }
        i += nums;
        const bool bad = iso.nvalues == 3 ? (iso.low > iso.high || iso.inc <= 0) : false;
        if (iso.nvalues > 0 && (bad || iso.low < 0 || iso.high > 1)) {
            scriptmessage(run, isotext("isopleth: name, then low, high and increment expected, "
                                       "or one value",
                                       mode));
            scriptbomb(isotext("isopleth values inappropriate", mode));
        }
        isos.push_back(iso);
    }
    flag = 0;
    list = isos;
}

void project(Run& run, const ScriptLine& line) {
    EquilibriumScripts& e = eq(run);
    const int flag = line.flag == 2 ? 0 : line.flag;
    if (flag == 0 && e.projplaneflag == 0)
        scriptbomb("projection script needs to be before reading projection plane");
    e.project = flag;
}

// setprojplane: a line of oxides, then one line for each apex.
void projplane(Run& run, const ScriptLine& line) {
    EquilibriumScripts& e = eq(run);
    if (line.flag == 1) {
        e.projplaneflag = 1;
        return;
    }
    if (e.project != 0) return;  // the plane only matters to a projection
    e.projplaneflag = 0;
    if (e.projplanecount == 0) return;  // given up after a fault
    const bool dataline = line.nitems() >= 2 && isnumberword(line.item(2));
    if (e.projplanecount == notseen) {
        if (dataline) {
            scriptmessage(run, "now, " + line.keyword +
                                   " starts with an oxide list on a line, before the block ");
            putstr(run.io, 0,
                   "of apex compositions (this line was there before but preceded by a %)", 1,
                   chscreenlog);
            scriptbomb("change the " + line.keyword + " script");
        }
        e.projoxides.clear();
        for (int i = 1; i <= line.nitems(); ++i) e.projoxides.push_back(oxidename(line.item(i)));
        e.projplanecount = -2;
        return;
    }
    ApexComposition apex;
    apex.name = line.nitems() >= 1 ? line.item(1) : sstring();
    shiftinfo(run.script.info, 1);
    int n = static_cast<int>(e.projoxides.size());
    if (!scriptreals(run, line.keyword, n)) {
        e.projplanecount = 0;
        return;
    }
    for (int i = 1; i <= n; ++i) apex.values.push_back(run.script.info.inforeal[i]);
    e.apices.push_back(apex);
    e.projplanecount = static_cast<int>(e.apices.size());
}

void ptguess(Run& run, const ScriptLine& line) {
    EquilibriumScripts& e = eq(run);
    const ScriptInfo& info = run.script.info;
    e.ptguessflag = 1;
    if (line.flag != 0 || !info.isnumber(1) || !info.isnumber(2)) return;
    const real P = info.inforeal[1], T = info.inforeal[2] + kelvin0;
    // a guess outside the limits is quietly no guess
    if (P < run.script.win.Pmin || P > 1500 || T < 283 || T > 3000) return;
    e.ptguessflag = 0;
    e.ptguessP = P;
    e.ptguessT = T;
}

void xyzguess(Run& run, const ScriptLine& line) {
    EquilibriumScripts& e = eq(run);
    if (line.flag == 1) {
        e.xyzguessflag = 1;
        e.xyzguess.clear();
        return;
    }
    const ScriptInfo& info = run.script.info;
    XyzGuess g;
    if (!scriptstring(run, line.keyword)) return;
    g.name = line.item(1);
    shiftinfo(run.script.info, 1);
    if (!scriptreal(run, line.keyword, 0, 0)) return;
    g.value = info.inforeal[1];
    int i = 2;
    while (i <= info.ninfo) {
        if (info.infostr[i] == "sd" && info.isnumber(i + 1)) {
            g.sd = info.inforeal[i + 1] < 0 ? 0 : info.inforeal[i + 1];
            g.hassd = true;
            i += 2;
        } else if (info.infostr[i] == "range" && info.isnumber(i + 1) && info.isnumber(i + 2)) {
            g.lo = info.inforeal[i + 1];
            g.hi = info.inforeal[i + 2];
            i += 3;
        } else {
            ++i;  // a word of another kind: a label for the reader of the file
        }
    }
    if (static_cast<int>(e.xyzguess.size()) >= maxxyzguess) scriptbomb("too many xyzguess");
    e.xyzguessflag = 0;
    e.xyzguess.push_back(g);
}

void modeguess(Run& run, const ScriptLine& line) {
    EquilibriumScripts& e = eq(run);
    if (line.flag == 1) return;
    if (!scriptstring(run, line.keyword)) return;
    ModeGuess g;
    g.phase = line.item(1);
    shiftinfo(run.script.info, 1);
    if (!scriptreal(run, line.keyword, 0, 0)) return;
    g.value = run.script.info.inforeal[1];
    if (static_cast<int>(e.modeguess.size()) >= maxmodeguess) scriptbomb("too many modeguess");
    e.modeguess.push_back(g);
}

}  // namespace

void equilibriumwords(std::vector<WordEntry>& t) {
    t.push_back({{"setvar"}, mode1, true, setvar});
    t.push_back({{"autovar", "acceptvar"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { eq(r).autovar = l.flag; }});
    t.push_back({{"isopleth", "setiso"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { isopleth(r, l, false); }});
    t.push_back({{"modeiso", "modeisopleth"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { isopleth(r, l, true); }});
    t.push_back({{"zeromodeiso", "zeromodeisopleth"}, mode1, false,
                 [](Run& r, const ScriptLine& l) {
                     eq(r).zeromodeisoflag = l.flag;
                     eq(r).zeromodeiso.clear();
                     if (l.flag != 1)
                         for (int i = 1; i <= l.nitems() && i <= 2; ++i)
                             eq(r).zeromodeiso.push_back(l.item(i));
                 }});
    t.push_back({{"calcsdnle"}, mode1, false, [](Run& r, const ScriptLine&) {
                     putstr(r.io, 0, "calcsdnle not available in sm351", 1, chscreen);
                 }});
    t.push_back({{"project", "projection"}, mode1, true, project});
    t.push_back({{"setprojplane", "projplane"}, mode1, true, projplane});
    t.push_back({{"projcomp"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { eq(r).projcomp = l.flag; }});
    t.push_back({{"modebox"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { eq(r).modebox = l.flag == 2 ? 0 : l.flag; }});
    t.push_back({{"c8"}, mode1, true, [](Run& r, const ScriptLine& l) { eq(r).c8 = l.flag; }});
    t.push_back({{"calib"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { eq(r).calib = l.flag; }});
    t.push_back({{"printguessform", "printxyz"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { eq(r).printguessform = l.flag; }});
    t.push_back({{"ptguess"}, mode1, true, ptguess});
    t.push_back({{"xyzguess", "readxyz", "xyz"}, mode1, false, xyzguess});
    t.push_back({{"modeguess"}, mode1, true, modeguess});
}

}  // namespace sm

