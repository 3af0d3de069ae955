// Script words of run and output control.
#include <cmath>

#include "console/format.h"
#include "console/runended.h"
#include "run.h"
#include "script/readers.h"
#include "script/vocabulary.h"

namespace sm {

namespace {

ControlScripts& ctl(Run& run) { return run.script.control; }

// An optional integer level in 0..high: read only when the line gives one.
void level(Run& run, const ScriptLine& line, int low, int high, int& value, int fallback) {
    if (line.flag != 0) return;
    value = scriptint(run, line.keyword, low, high) ? run.script.info.infoint[1] : fallback;
}

// "1e-8" for a tolerance, "0 " for none.
std::string tolerance(real v) {
    if (v == 0) return "0 ";
    std::string field;
    putfield(int2str(std::log10(std::fabs(v))), 2, field);
    return "1e" + field + " ";
}

void convergence(Run& run, const ScriptLine& line) {
    ControlScripts& c = ctl(run);
    c.convergenceflag = line.flag == 0 ? 0 : 1;
    if (line.flag != 0) return;
    int n = 4;
    if (!scriptreals(run, line.keyword, n)) {
        c.convergenceflag = 1;
        return;
    }
    std::string text = "conv: ";
    for (int i = 0; i < 4; ++i) {
        c.convergence[i] = run.script.info.inforeal[i + 1];
        text += tolerance(c.convergence[i]);
    }
    putstr(run.io, 0, text, 1, chscreen);
}

void exbuff(Run& run, const ScriptLine&) {
    putstr(run.io, 1, "the script, exbuff, is superceded: use instead", 1, chscreenlog);
    putstr(run.io, 0, "\"figure T-x(CO2)\" or \"figure P-x(CO2)\"", 1, chscreenlog);
    bomb("reading scripts", "exit, and use one of the new scripts", 0);
}

void mccorr(Run& run, const ScriptLine&) {
    putstr(run.io, 1, "\"mccorr\" has been cut - remove from the scriptfile", 1, chscreenlog);
    bomb("reading scripts", "mccorr no longer exists", 0);
}

}  // namespace

void controlwords(std::vector<WordEntry>& t) {
    t.push_back({{"strictscripting"}, modeall, true,
                 [](Run& r, const ScriptLine& l) { ctl(r).strictscripting = l.flag == 0; }});
    t.push_back({{"autoexit"}, modeall, true,
                 [](Run& r, const ScriptLine& l) { r.io.autoexit = l.flag == 0; }});
    t.push_back({{"debuglevel"}, modeall, true, [](Run& r, const ScriptLine& l) {
                     level(r, l, 0, 6, ctl(r).debuglevel, 1);
                 }});
    t.push_back({{"debuglevelq"}, mode1, true, [](Run& r, const ScriptLine& l) {
                     level(r, l, 0, 4, ctl(r).debuglevelq, 1);
                 }});
    t.push_back({{"moreprec"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { ctl(r).moreprec = l.flag; }});
    t.push_back({{"printcor"}, mode2, true,
                 [](Run& r, const ScriptLine& l) { ctl(r).printcor = l.flag; }});
    t.push_back({{"compatibility"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { ctl(r).compatibility = l.flag; }});
    t.push_back({{"sketch"}, mode1, true, [](Run& r, const ScriptLine& l) {
                     ctl(r).sketch = l.flag;
                     if (l.flag == 0 && l.nitems() > 0) level(r, l, 0, 1, ctl(r).sketchlevel, 0);
                 }});
    t.push_back({{"umberview"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { ctl(r).umberview = l.flag; }});
    t.push_back({{"magemin"}, modeall, true,
                 [](Run& r, const ScriptLine& l) { ctl(r).magemin = l.flag; }});
    t.push_back({{"convergence"}, modeall, true, convergence});
    t.push_back({{"incnler"}, modeall, true,
                 [](Run& r, const ScriptLine& l) { ctl(r).incnler = l.flag; }});
    t.push_back({{"numerical", "ggk"}, modeall, true,
                 [](Run& r, const ScriptLine& l) { ctl(r).numerical = l.flag == 0; }});
    // read and kept, with no effect in this version
    t.push_back({{"latex"}, modeall, true,
                 [](Run& r, const ScriptLine& l) { ctl(r).latex = l.flag; }});
    t.push_back({{"outlevel"}, modeall, true, [](Run& r, const ScriptLine& l) {
                     // any integer is kept here; the end of reading holds it to 0..1
                     if (l.flag == 0 && scriptint(r, l.keyword, 0, 0))
                         ctl(r).outlevel = r.script.info.infoint[1];
                 }});
    t.push_back({{"oblique"}, modeall, true,
                 [](Run& r, const ScriptLine& l) { ctl(r).oblique = l.flag; }});
    t.push_back({{"utilitycode"}, modeall, true,
                 [](Run& r, const ScriptLine& l) { ctl(r).utilitycode = l.flag; }});
    t.push_back({{"tablecode"}, modeall, true,
                 [](Run& r, const ScriptLine& l) { ctl(r).tablecode = l.flag; }});
    t.push_back({{"recalccode"}, modeall, true,
                 [](Run& r, const ScriptLine& l) { ctl(r).recalccode = l.flag; }});
    t.push_back({{"convert"}, modeall, false,
                 [](Run& r, const ScriptLine&) { ++ctl(r).convertlines; }});
    t.push_back({{"exbuff"}, modeall, false, exbuff});
    t.push_back({{"mccorr"}, modeall, false, mccorr});
}

}  // namespace sm
