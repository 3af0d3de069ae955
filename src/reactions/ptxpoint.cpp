#include "reactions/ptxpoint.h"

#include "console/runended.h"
#include "reactions/reactionthermo.h"
#include "run.h"
#include "script/windows.h"

namespace sm {

PtxPoint currentpoint(const Run& run) {
    const Windows& w = run.script.win;
    PtxPoint p;
    p.P = w.P;
    p.T = w.T;
    p.xco2 = w.xco2;
    p.xh2o = w.xh2o;
    return p;
}

std::vector<real> listvalues(const Run& run, const char* where) {
    const Windows& w = run.script.win;
    const std::vector<real>* list = nullptr;
    const std::vector<real> none;
    switch (w.othervariable) {
    case axisP: list = &w.Plist; break;
    case axisT: list = &w.Tlist; break;
    case axisx: list = &w.xco2list; break;
    case axisa: list = w.lnalist.size() > 1 ? &w.lnalist[1] : &none; break;
    case axismu: list = w.mulist.size() > 1 ? &w.mulist[1] : &none; break;
    default: bomb(where, "othervariable", 1);
    }
    std::vector<real> values(1, 0);
    values.insert(values.end(), list->begin(), list->end());
    return values;
}

void setiptx(Run& run, PtxPoint& p, real listvalue, real solvedvalue) {
    const Windows& w = run.script.win;
    switch (w.diagrammode) {
    case dmPT:
        if (w.calcvariable == axisP) {
            p.T = listvalue;
            p.P = solvedvalue;
        } else if (w.calcvariable == axisT) {
            p.P = listvalue;
            p.T = solvedvalue;
        } else {
            bomb("setiptx", "unknown calcvariable", 1);
        }
        return;
    case dmPx:
    case dmTx:
        p.xco2 = listvalue;
        p.xh2o = 1 - listvalue;
        (w.diagrammode == dmPx ? p.P : p.T) = solvedvalue;
        return;
    case dmPlna:
    case dmTlna:
        p.lna = listvalue;
        setaxisvalue(run, listvalue);
        (w.diagrammode == dmPlna ? p.P : p.T) = solvedvalue;
        return;
    case dmPmu:
    case dmTmu:
        p.mu = listvalue;
        setaxisvalue(run, listvalue);
        (w.diagrammode == dmPmu ? p.P : p.T) = solvedvalue;
        return;
    default: bomb("setiptx", "unknown diagrammode", 1);
    }
}

void solveat(Run& run, int n, const PtxPoint& p, bool havestart, real& v1, real& v2, real& dGdP,
             real& dGdT) {
    real dGdP2, dGdT2;
    if (run.script.win.calcvariable == axisP)
        findP(run, n, havestart, v1, v2, dGdP, dGdP2, p.T, p.xco2, p.xh2o, dGdT, dGdT2);
    else
        findT(run, n, havestart, v1, v2, dGdP, dGdP2, p.P, p.xco2, p.xh2o, dGdT, dGdT2);
}

int windowtype(const Run& run) {
    const int cv = run.script.win.calcvariable;
    if (cv == axisP) return 1;
    if (cv == axisT) return 0;
    bomb("ptxtable", "unknown calcvariable", 1);
}

}  // namespace sm
