// The window set-up of the reactions mode: a P-T diagram solves each
// reaction along one axis at listed values of the other; a section fixes P
// or T and steps along x(CO2), an activity or a chemical potential.
#include <cmath>

#include "console/format.h"
#include "console/prompts.h"
#include "console/runended.h"
#include "run.h"

namespace sm {

namespace {

const std::string degC = "\xA1" "C";

void say(Run& run, const std::string& text) { putstr(run.io, 0, text, 1, chscreenlog); }

real middle(const Window& w) { return (w.lo + w.hi) / 2; }

// The fixed T (of a P section) or the fixed P (of a T section), asked on
// every pass; it closes the other window on that value.
void fixedPorT(Run& run, bool fixedT) {
    Windows& w = run.script.win;
    real v = 0;
    if (fixedT) {
        promptreal(run.io, "fixed T (in " + degC + ")", v);
        const real t = v + kelvin0;
        if (t < Tminlimit || t > Tmaxlimit)
            bomb("diagramwindowsetup", "inappropriate fixed T or P", 0);
        w.calcT = {t, t};
        w.T = t;
    } else {
        promptreal(run.io, "fixed P (in kbar)", v);
        if (v < w.Pmin || v > Pmaxlimit) bomb("diagramwindowsetup", "inappropriate fixed T or P", 0);
        w.calcP = {v, v};
        w.P = v;
    }
}

// The kinds of the two window checks of a section, by the variance expected.
void sectionkinds(int variance, int& first, int& second) {
    first = variance >= 2 ? 0 : 1;
    second = variance == 0 ? 1 : 0;
}

// The solved axis of a section and its other axis.
void sectionaxes(Run& run, bool Psolved, int other) {
    Windows& w = run.script.win;
    w.calcvariable = Psolved ? axisP : axisT;
    w.othervariable = other;
}

// P or T with a third axis, read together as four numbers.
void sectionwindow(Run& run, bool Psolved, const std::string& heading, const std::string& axis,
                   Window& third, void (*askthird)(Run&, real&, real&, int)) {
    Windows& w = run.script.win;
    const std::string a = Psolved ? "P" : "T";
    say(run, a + "-" + heading + " window in which the phase diagram to be drawn");
    std::vector<real> v;
    int n = 4;
    promptreals(run.io, a + " low, high , " + axis + " low, high", v, n);
    int k1, k2;
    sectionkinds(w.variance, k1, k2);
    if (Psolved) {
        w.calcP = {v[0], v[1]};
        checkPwindow(run, w.calcP.lo, w.calcP.hi, k1);
    } else {
        w.calcT = {v[0] + kelvin0, v[1] + kelvin0};
        askTwindow(run, w.calcT.lo, w.calcT.hi, k1);
    }
    third = {v[2], v[3]};
    askthird(run, third.lo, third.hi, k2);
    w.P = middle(w.calcP);
    w.T = middle(w.calcT);
}

bool fixedactivity(const Run& run, const char* name) {
    for (const FixedActivity& f : run.script.activities.fixed)
        if (f.name == name) return true;
    return false;
}

}  // namespace

void univariantsetup(Run& run) {
    Windows& w = run.script.win;
    if (run.script.windows.calctatp == 0) {
        w.calcvariable = axisT;
        w.othervariable = axisP;
        askTwindow(run, w.calcT.lo, w.calcT.hi, 1);
        askPwindow(run, w.calcP.lo, w.calcP.hi, 0);
    } else {
        w.calcvariable = axisP;
        w.othervariable = axisT;
        askTwindow(run, w.calcT.lo, w.calcT.hi, 0);
        askPwindow(run, w.calcP.lo, w.calcP.hi, 1);
    }
}

void diagramwindowsetup(Run& run, bool first, const FluidPhases& phases) {
    Windows& w = run.script.win;
    dofigPT(run);
    switch (w.diagrammode) {
    case dmPT: {
        if (first) {
            int& tatp = run.script.windows.calctatp;
            promptcontrol(run.io, "calculate T at P (rather than P at T)", tatp);
            if (tatp == 0) {
                w.gridkind = 1;
                PTcalcs(run, "", "P at which T of reactions to be calculated",
                        "T window within which reactions expected to lie");
            } else {
                w.gridkind = 2;
                PTcalcs(run, "", "P window within which reactions expected to lie",
                        "T at which P of reactions to be calculated");
            }
            univariantsetup(run);
            w.P = middle(w.calcP);
            w.T = middle(w.calcT);
            if (w.othervariable == axisP)
                makeP(run);
            else if (w.othervariable == axisT)
                makeT(run);
            else
                bomb("diagramwindowsetup", "othervariable", 1);
            w.xco2list.clear();
            w.xh2olist.clear();
        }
        if (fixedactivity(run, "H2O")) {
            w.xh2o = 1;
            w.xco2 = 0;
        } else if (fixedactivity(run, "CO2")) {
            w.xco2 = 1;
            w.xh2o = 0;
        } else {
            promptfluid(run, phases);
        }
        w.xco2window = {w.xco2, w.xco2};
        break;
    }
    case dmPx:
    case dmTx: {
        const bool Psolved = w.diagrammode == dmPx;
        if (first) {
            sectionaxes(run, Psolved, axisx);
            sectionwindow(run, Psolved, "x(CO2)", "x(CO2)", w.xco2window, askxwindow);
            // The fluid of the section's middle is the one in force.
            w.xco2 = middle(w.xco2window);
            w.xh2o = 1 - w.xco2;
            if (run.runmode != 1) listxco2(run);
        }
        fixedPorT(run, Psolved);
        break;
    }
    case dmPlna:
    case dmTlna: {
        const bool Psolved = w.diagrammode == dmPlna;
        const std::string a = Psolved ? "P" : "T";
        if (first) {
            if (query(run.io, "for " + a + "-log a, are logs to be to the base 10")) {
                run.script.activities.base10 = true;
                run.script.activities.setlogaflag = 0;
                say(run, "logs are to the base 10");
            } else {
                run.script.activities.base10 = false;
                run.script.activities.setlnaflag = 0;
                say(run, "logs are to the base e (ie natural logs)");
            }
            sectionaxes(run, Psolved, axisa);
            const std::string axis = run.script.activities.base10 ? "log a" : "ln a";
            sectionwindow(run, Psolved, axis, axis, w.lnawindow, asklogawindow);
            listlna(run, 1, w.lnawindow.lo, w.lnawindow.hi);
        }
        fixedPorT(run, Psolved);
        if (w.axisname != "CO2" && w.axisname != "H2O") {
            promptfluid(run, phases);
            say(run, std::string(" for labelling purposes in ") +
                         (run.script.activities.base10 ? "log a" : "ln a") + ", ");
            sstring reply;
            promptstring(run.io, "replace name, '" + w.axisname + "', with", reply);
            if (!reply.empty()) w.axisname = reply;
        }
        break;
    }
    case dmPmu:
    case dmTmu: {
        const bool Psolved = w.diagrammode == dmPmu;
        if (first) {
            sectionaxes(run, Psolved, axismu);
            sectionwindow(run, Psolved, "\xB5", "\xB5(" + w.axisname + ")", w.muwindow, askmuwindow);
            listmu(run, 1, w.muwindow.lo, w.muwindow.hi);
        }
        fixedPorT(run, Psolved);
        if (w.axisname != "CO2" && w.axisname != "H2O") promptfluid(run, phases);
        break;
    }
    default:
        bomb("diagram", "unknown diagrammode", 1);
    }
}

}  // namespace sm
