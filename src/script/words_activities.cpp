// Script words of fixed activities and chemical potentials.
#include <cmath>

#include "console/format.h"
#include "console/runended.h"
#include "run.h"
#include "script/readers.h"
#include "script/vocabulary.h"

namespace sm {

namespace {

ActivityScripts& act(Run& run) { return run.script.activities; }


void lna(Run& run, const ScriptLine& line) {
    ActivityScripts& a = act(run);
    a.lnaflag = 1;
    a.lnaname.clear();
    a.lnalabel.clear();
    // "none", too few items, or a number where the name should be: off
    if (line.flag != 0 || line.nitems() < 2 || isnumberword(line.item(1)) ||
        !isnumberword(line.item(2)))
        return;
    a.lnaflag = 0;
    a.lnaname = line.item(1);
    a.lnavalue = wordreal(line.item(2));
    a.lnalabel = line.nitems() >= 3 ? line.item(3) : line.item(1);
}

enum class FixKind { a, lna, loga };

// seta, setlna, setloga: names each optionally followed by a value, all kept
// as ln a; the last line for a name wins.
void setactivities(Run& run, const ScriptLine& line, FixKind kind) {
    ActivityScripts& a = act(run);
    if (run.calcmode == 1) bomb("read scripts", "for mode 1, use 'lna' script", 0);
    int& flag = kind == FixKind::a ? a.setaflag : kind == FixKind::lna ? a.setlnaflag : a.setlogaflag;
    flag = line.flag;
    if (line.flag == 1) return;
    if (kind == FixKind::loga) a.base10 = true;
    const char* label = kind == FixKind::loga ? "log a(" : "ln a(";
    int i = 1;
    while (i <= line.nitems()) {
        FixedActivity f;
        f.name = line.item(i++);
        std::string shown;
        if (line.nitems() > 1 && i <= line.nitems() && isnumberword(line.item(i))) {
            const real v = wordreal(line.item(i++));
            if (kind == FixKind::a) {
                if (v > 0) {
                    f.lna = std::log(v);
                    shown = real2str(f.lna, 5, false);
                } else {
                    // no logarithm of a non-positive activity: asked for instead
                    scriptmessage(run, "for " + line.keyword + ", a(" + f.name +
                                           ") must be above 0: it will be prompted for");
                    ++run.prefs.problems;
                }
            } else {
                f.lna = kind == FixKind::loga ? v * std::log(10.0L) : v;
                shown = line.item(i - 1);
            }
        }
        const std::string text = shown.empty() ? std::string(label) + f.name + ") - to be set "
                                               : std::string(label) + f.name + ") = " + shown;
        putstr(run.io, 0, text, 1, chscreen);
        bool replaced = false;
        for (FixedActivity& g : a.fixed)
            if (g.name == f.name) {
                g = f;
                replaced = true;
            }
        if (!replaced) a.fixed.push_back(f);
    }
}

void setmu(Run& run, const ScriptLine& line) {
    ActivityScripts& a = act(run);
    a.setmuflag = line.flag;
    if (line.flag == 1) return;
    int i = 1;
    while (i <= line.nitems()) {
        FixedPotential f;
        f.name = line.item(i++);
        std::string text = "mu(" + f.name + ") - to be set ";
        if (line.nitems() > 1 && i <= line.nitems() && isnumberword(line.item(i))) {
            f.mu = wordreal(line.item(i));
            text = "mu(" + f.name + ") = " + line.item(i);
            ++i;
        }
        putstr(run.io, 0, text, 1, chscreen);
        bool replaced = false;
        for (FixedPotential& g : a.setmu)
            if (g.name == f.name) {
                g = f;
                replaced = true;
            }
        if (!replaced) a.setmu.push_back(f);
    }
}

void buffer(Run& run, const ScriptLine& line) {
    ActivityScripts& a = act(run);
    a.bufferflag = line.flag;
    if (line.flag == 1) return;
    if (!scriptstring(run, line.keyword)) {
        a.bufferflag = 1;
        return;
    }
    const sstring name = line.item(1);
    if (line.nitems() < 2 || !isnumberword(line.item(2)))
        scriptbomb("buffer, \"" + name + "\", not a del");
    a.buffername = name;
    a.bufferdel = run.script.info.inforeal[2];
    putstr(run.io, 0, "for " + name + " del = " + line.item(2), 1, chscreen);
}

// muval: a switch line, then a P-T line, a line of names and a line of values.
void muval(Run& run, const ScriptLine& line) {
    ActivityScripts& a = act(run);
    if (a.muvalstage == 0) {
        if (line.flag != 0) {
            a.muvalflag = line.flag;
            return;
        }
        a.muvalflag = 0;
        a.muvalstage = 1;
        if (line.nitems() == 0) return;
    }
    if (line.hascontrolword()) scriptbomb("cbool out of place in muval script");
    if (line.nitems() == 0) return;
    const ScriptInfo& info = run.script.info;
    if (line.item(1) == "PT") {
        if (!info.isnumber(2) || !info.isnumber(3)) scriptbomb("PT of muval too small");
        a.muvalP = info.inforeal[2];
        a.muvalT = info.inforeal[3] + kelvin0;
        const WindowScripts& w = run.script.windows;
        if (a.muvalP < w.calcP.lo || a.muvalT < w.calcT.lo) scriptbomb("PT of muval too small");
        a.muvalstage = std::max(a.muvalstage, 2);
    } else if (isnumberword(line.item(1))) {
        a.muvalues.clear();
        for (int i = 1; i <= line.nitems(); ++i) {
            if (!isnumberword(line.item(i))) scriptbomb("muval values not all numbers");
            a.muvalues.push_back(wordreal(line.item(i)));
        }
        if (a.muvalues.size() != a.muvalnames.size())
            scriptbomb("muval values don't match the names");
        a.muvalstage = 4;
    } else {
        a.muvalnames.clear();
        for (int i = 1; i <= line.nitems(); ++i) a.muvalnames.push_back(line.item(i));
        a.muvalstage = 3;
    }
}

}  // namespace

void activitywords(std::vector<WordEntry>& t) {
    t.push_back({{"lna"}, mode1, true, lna});
    t.push_back({{"seta"}, mode1 | mode2 | mode3, false,
                 [](Run& r, const ScriptLine& l) { setactivities(r, l, FixKind::a); }});
    t.push_back({{"setlna"}, mode1 | mode2 | mode3, false,
                 [](Run& r, const ScriptLine& l) { setactivities(r, l, FixKind::lna); }});
    t.push_back({{"setloga"}, mode1 | mode2 | mode3, false,
                 [](Run& r, const ScriptLine& l) { setactivities(r, l, FixKind::loga); }});
    t.push_back({{"setmu", "mu"}, mode1, false, setmu});
    t.push_back({{"buffer"}, mode1, true, buffer});
    t.push_back({{"fifi"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { act(r).fifi = l.flag; }});
    t.push_back({{"calcah2o", "calca(H2O)"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { act(r).calcah2o = l.flag; }});
    t.push_back({{"calcmuo"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { act(r).calcmuo = l.flag; }});
    t.push_back({{"calcmu"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { act(r).calcmu = l.flag; }});
    t.push_back({{"muval"}, mode1, false, muval});
    t.push_back({{"defsdaparams"}, mode1 | mode2 | mode3, true,
                 [](Run& r, const ScriptLine& l) { act(r).defsdaparams = l.flag; }});
    t.push_back({{"usedefsda"}, mode1 | mode2, true,
                 [](Run& r, const ScriptLine& l) { act(r).usedefsda = l.flag; }});
}

}  // namespace sm
