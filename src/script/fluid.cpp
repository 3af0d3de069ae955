// The fixed fluid of a run: mole fractions of H2O and CO2 in a fluid phase,
// or their activities when no fluid phase is present.
#include <cmath>

#include "console/format.h"
#include "console/prompts.h"
#include "console/runended.h"
#include "console/scan.h"
#include "run.h"

namespace sm {

namespace {

void say(Run& run, const std::string& text, int after = 1) {
    putstr(run.io, 0, text, after, chscreenlog);
}

std::string brief(real v) {
    return real2str(v, std::fabs(v - std::round(v)) < 1e-8L ? 0 : decimalsneeded(v), true);
}

constexpr int fluidnone = 2;  // no fluid phase: the values are activities
constexpr int fluidfixed = 6; // a H2O-CO2 fluid of fixed composition

void askpair(Run& run, Windows& w) {
    std::vector<real> v;
    int n = 2;
    promptreals(run.io, "fixed a(CO2), a(H2O)", v, n);
    w.xco2 = v[0];
    w.xh2o = v[1];
}

}  // namespace

void promptfluid(Run& run, const FluidPhases& phases) {
    Windows& w = run.script.win;
    const PhaseScripts& s = run.script.phases;
    int flag = s.setfluid;
    promptcontrol(run.io, "use the fluid composition given in the datafile", flag);
    const bool h2o = phases.h2o, co2 = phases.co2, crd = phases.cordierite;
    if (flag == 0) {
        w.xco2 = s.xco2;
        w.xh2o = s.xh2o;
        const bool good = (h2o && co2)   ? (w.xh2o > 0 && w.xco2 > 0)
                          : h2o          ? w.xh2o > 0
                          : co2          ? w.xco2 > 0
                                         : true;
        if (!good) {
            if (run.script.control.strictscripting)
                bomb("promptfluid", "script x(H2O) and/or x(CO2) inappropriate", 0);
            say(run, "fluid composition in script is inappropriate so not used");
            flag = 1;
        }
    }
    if (flag != 0) {
        w.xco2 = 0;
        w.xh2o = 0;
    }
    w.setfluid = flag;
    const bool activities = w.fluidtype == fluidnone || (!h2o && !co2);
    for (int round = 0;; ++round) {
        const bool fromscript = round == 0 && flag == 0;
        if (!fromscript) {
            if (!h2o && !co2) {
                if (crd) {
                    say(run, "for cordierite activity calculation");
                    askpair(run, w);
                }
            } else if (w.fluidtype == fluidnone) {
                if (h2o && !co2 && !crd) {
                    promptreal(run.io, "fixed a(H2O)", w.xh2o);
                } else if (co2 && !h2o && !crd) {
                    promptreal(run.io, "fixed a(CO2)", w.xco2);
                } else {
                    if (!(h2o && co2)) say(run, "for cordierite activity calculation");
                    askpair(run, w);
                }
            } else if (h2o && !co2) {
                if (query(run.io, "fluid just H2O")) {
                    w.xh2o = 1;
                    w.xco2 = 0;
                } else {
                    say(run, "fluid is just H2O-CO2");
                    promptreal(run.io, "fixed x(H2O)", w.xh2o);
                    w.fluidtype = fluidfixed;
                    w.xco2 = 1 - w.xh2o;
                }
            } else if (co2 && !h2o) {
                if (query(run.io, "fluid just CO2")) {
                    w.xco2 = 1;
                    w.xh2o = 0;
                } else {
                    say(run, "fluid is just H2O-CO2");
                    promptreal(run.io, "fixed x(CO2)", w.xco2);
                    w.fluidtype = fluidfixed;
                    w.xh2o = 1 - w.xco2;
                }
            } else {
                say(run, "fluid is just H2O-CO2");
                promptreal(run.io, "fixed x(CO2)", w.xco2);
                w.fluidtype = fluidfixed;
                w.xh2o = 1 - w.xco2;
            }
        }
        // each species present needs a value; cordierite only refuses negatives
        bool ok = true;
        if (crd) ok = w.xh2o >= 0 && w.xco2 >= 0;
        if (h2o && !(w.xh2o > 0)) ok = false;
        if (co2 && !(w.xco2 > 0)) ok = false;
        if (!activities && w.xh2o + w.xco2 > 1.0001L) ok = false;
        if (ok) break;
        if (fromscript) {
            if (run.script.control.strictscripting) bomb("promptfluid", "bad values from script", 0);
            say(run, "x(CO2), x(H2O) from script not valid : ", 0);
        } else {
            say(run, "not valid : ", 0);
        }
    }
    if (flag == 0 && (h2o || co2 || crd)) {
        const bool a = w.fluidtype == fluidnone || (!h2o && !co2);
        const char* k = a ? "a" : "x";
        say(run, std::string(k) + "(CO2) = " + real2str(w.xco2, 4, true) + ", " + k +
                     "(H2O) = " + real2str(w.xh2o, 4, true) + " ( from script ) ");
    }
}

void fluidlabel(const Run& run, std::string& buffer) {
    const Windows& w = run.script.win;
    const std::string k = w.fluidtype == fluidnone ? "a" : "x";
    const bool c = w.xco2 > 0, h = w.xh2o > 0;
    if (c && h)
        buffer += " (for " + k + "(CO2) = " + brief(w.xco2) + " and " + k + "(H2O) = " +
                  brief(w.xh2o) + ")";
    else if (c)
        buffer += " (for " + k + "(CO2) = " + brief(w.xco2) + ")";
    else if (h)
        buffer += (k == "x" ? "" : " ") + std::string("(for ") + k + "(H2O) = " + brief(w.xh2o) + ")";
}

namespace {

std::string mark(real value, const Window& win, bool& inside, const char* low) {
    inside = false;
    if (value > 1e20L) return "*";
    if (value < -1e20L) return low;
    if (value < win.lo) return "-";
    if (value > win.hi) return "+";
    inside = true;
    return "";
}

}  // namespace

std::string Pfield(const Run& run, real value) {
    const Windows& w = run.script.win;
    bool inside;
    const std::string m = mark(value, w.calcP, inside, "0");
    if (!inside) return m;
    const real a = std::fabs(value);
    if (a > 99.9L) return int2str(value);
    int d = a < 0.01L ? 4 : a < 0.1L ? 3 : a < 1 ? 2 : 1;
    if (w.Pdecimals > d) d = w.Pdecimals;
    return real2str(value, d, true);
}

std::string Tfield(const Run& run, real value) {
    const Windows& w = run.script.win;
    bool inside;
    const std::string m = mark(value, w.calcT, inside, "0");
    if (!inside) return m;
    if (w.Tdecimals == 0) return int2str(value - kelvin0);
    return real2str(value - kelvin0, w.Tdecimals, true);
}

std::string xfield(const Run& run, real value) {
    bool inside;
    const std::string m = mark(value, run.script.win.xco2window, inside, " ");
    if (!inside) return m;
    return brief(value);
}

}  // namespace sm
