// Script words of windows, ranges and lists of calculation values.
#include <cmath>

#include "console/runended.h"
#include "run.h"
#include "script/readers.h"
#include "script/vocabulary.h"

namespace sm {

namespace {

WindowScripts& ws(Run& run) { return run.script.windows; }

bool numbers(const ScriptInfo& info, int from, int to) {
    for (int i = from; i <= to; ++i)
        if (!info.isnumber(i)) return false;
    return true;
}

void diagramPT(Run& run, const ScriptLine& line) {
    WindowScripts& w = ws(run);
    if (line.flag != 0) {
        w.diagramPT = line.flag;
        return;
    }
    if (run.script.info.ninfo < 4 || !numbers(run.script.info, 1, 4)) {
        scriptmessage(run, "for " + line.keyword + ", 4 numbers needed to define a PT rectangle");
        ++run.prefs.problems;
        w.diagramPT = 1;
        return;
    }
    // range repairs are told and counted, and the repaired window stands
    scriptPrange(run, line.keyword, w.overallP.lo, w.overallP.hi, 1);
    scriptTrange(run, line.keyword, w.overallT.lo, w.overallT.hi, 3);
    w.diagramPT = 0;
}

// calcP and calcT: one value, a range, or a range and its interval.
void calcaxis(Run& run, const ScriptLine& line, bool isP) {
    WindowScripts& w = ws(run);
    int& flag = isP ? w.calcPflag : w.calcTflag;
    Window& win = isP ? w.calcP : w.calcT;
    real& interval = isP ? w.Pinterval : w.Tinterval;
    int& count = isP ? w.calcPcount : w.calcTcount;
    if (line.flag == 1) {
        flag = 1;
        return;
    }
    const ScriptInfo& info = run.script.info;
    const int n = info.ninfo;
    if (n < 1 || n > 3 || !numbers(info, 1, n)) {
        putstr(run.io, 1, "for " + line.keyword + "1, 2 or 3 numbers needed", 0, chscreenlog);
        ++run.prefs.problems;
        flag = 1;
        return;
    }
    int result;
    if (n == 1) {
        real v = win.lo;
        result = isP ? scriptP(run, line.keyword, v, 1) : scriptT(run, line.keyword, v, 1);
        win.lo = win.hi = v;
    } else {
        result = isP ? scriptPrange(run, line.keyword, win.lo, win.hi, 1)
                     : scriptTrange(run, line.keyword, win.lo, win.hi, 1);
    }
    interval = n == 3 ? info.inforeal[3] : 0;
    count = n;
    // the reader's verdict is the script's flag; an accepted "ask" stays a question
    flag = result == 0 ? line.flag : 1;
}

void calcxco2(Run& run, const ScriptLine& line) {
    WindowScripts& w = ws(run);
    if (line.flag == 1) {
        w.calcxco2flag = 1;
        w.xco2list.clear();
        return;
    }
    int n = 0;
    if (!scriptreals(run, line.keyword, n)) {
        scriptmessage(run, "x(CO2): low, high and inc expected, or one or more values");
        scriptbomb("info inappropriate");
    }
    const ScriptInfo& info = run.script.info;
    std::vector<real> list;
    if (n == 3 && info.inforeal[2] > info.inforeal[3]) {
        const real low = info.inforeal[1], high = info.inforeal[2];
        real inc = info.inforeal[3];
        if (!(low > 0 && high < 1 && low <= high && inc > 0 && inc <= high - low)) {
            scriptmessage(run, "x(CO2): low, high and inc expected");
            scriptbomb("values inappropriate");
        }
        // compared as reals first: a tiny interval must not overflow the count
        const real steps = std::trunc((high - low) / inc);
        long count = steps + 2 > maxlist ? maxlist : static_cast<long>(steps) + 1;
        if (steps + 2 > maxlist) inc = (high - low) / (maxlist - 1);
        for (long i = 1; i <= count; ++i) list.push_back(low + (i - 1) * inc);
        if (std::fabs(list.back() - high) > 1e-8L) list.push_back(high);
    } else {
        for (int i = 1; i <= n; ++i)
            if (info.inforeal[i] > 0 && info.inforeal[i] < 1) list.push_back(info.inforeal[i]);
        if (list.empty()) {
            scriptmessage(run, "x(CO2): list of values between 0 and 1 expected");
            scriptbomb("values inappropriate");
        }
    }
    w.calcxco2flag = 0;
    w.xco2list = list;
}

void ptforaxe(Run& run, const ScriptLine& line) {
    WindowScripts& w = ws(run);
    if (line.flag != 0) {
        w.setptforaxe = line.flag;
        return;
    }
    int n = 2;
    if (!scriptreals(run, line.keyword, n)) {
        w.setptforaxe = 1;
        return;
    }
    w.setptforaxe = 0;
    w.ptforaxeP = run.script.info.inforeal[1];
    w.ptforaxeT = run.script.info.inforeal[2] + kelvin0;
}

void calctype(Run& run, const ScriptLine& line) {
    WindowScripts& w = ws(run);
    if (line.flag != 0) {
        w.calctypeflag = 1;  // an "ask" leaves the menu to do the asking
        return;
    }
    const int high = run.calcmode == 2 ? 2 : 5;
    if (!scriptint(run, line.keyword, 1, high)) {
        w.calctypeflag = 1;
        return;
    }
    w.calctypeflag = 0;
    w.calctype = run.script.info.infoint[1];
}

void figure(Run& run, const ScriptLine& line) {
    WindowScripts& w = ws(run);
    if (line.flag != 0) {
        w.figure = figPT;
        return;
    }
    if (!scriptstring(run, line.keyword)) return;
    const sstring& v = line.item(1);
    if (v == "P-T" || v == "PT")
        w.figure = figPT;
    else if (v == "T-x(CO2)" || v == "Tx(CO2)")
        w.figure = figTx;
    else if (v == "P-x(CO2)" || v == "Px(CO2)")
        w.figure = figPx;
    else if (v == "mu-mu")
        w.figure = figmumu;
    else
        scriptbomb(v + " not recognised (remove from scriptfile)");
}

}  // namespace

void windowwords(std::vector<WordEntry>& t) {
    t.push_back({{"diagramPT", "figurePT", "windowPT"}, modeall, true, diagramPT});
    t.push_back({{"calcP"}, modeall, true,
                 [](Run& r, const ScriptLine& l) { calcaxis(r, l, true); }});
    t.push_back({{"calcT"}, modeall, true,
                 [](Run& r, const ScriptLine& l) { calcaxis(r, l, false); }});
    t.push_back({{"calctatp", "calcTatP"}, mode1 | mode3, true,
                 [](Run& r, const ScriptLine& l) { ws(r).calctatp = l.flag; }});
    t.push_back({{"calcx(CO2)", "calcx(co2)", "x(CO2)values", "xco2values"}, mode1, true,
                 calcxco2});
    t.push_back({{"setptforaxe", "ptforaxe"}, modeall, true, ptforaxe});
    t.push_back({{"calctype"}, mode2 | mode3, true, calctype});
    t.push_back({{"figure", "fig"}, mode1, true, figure});
    t.push_back({{"negP", "negp"}, modeall, true,
                 [](Run& r, const ScriptLine&) { r.script.win.Pmin = minusPmin; }});
}

}  // namespace sm
