// The position of a reaction: its roots in P or T in the calculation
// window, and their uncertainties from the enthalpy covariances and the
// activities.
#include <cmath>

#include "reactions/reactionthermo.h"
#include "reactions/roots.h"
#include "run.h"
#include "script/windows.h"
#include "thermo/constants.h"
#include "thermo/gem.h"

namespace sm {

namespace {

struct Tcurve {
    Run& run;
    int n;
    real P, xco2, xh2o;
    void operator()(real T, real& f, real& d) const {
        real dGdP, dGdT;
        calcdg(run, n, dGdP, dGdT, f, P, T, xco2, xh2o);
        d = dGdT;
    }
};

struct Pcurve {
    Run& run;
    int n;
    real T, xco2, xh2o;
    void operator()(real P, real& f, real& d) const {
        real dGdP, dGdT;
        calcdg(run, n, dGdP, dGdT, f, P, T, xco2, xh2o);
        d = dGdP;
    }
};

// An uncertainty from a variance and a slope; what cannot be divided or is
// not a number counts as no result.
real sdfrom(real variance, real slope) {
    if (variance < 0) variance = 0;
    if (!(slope != 0)) return 1e31L;
    const real sd = std::sqrt(variance / (slope * slope));
    return std::isfinite(sd) ? sd : 1e31L;
}

real slopefrom(real dGdP, real dGdT) { return dGdT != 0 ? -dGdP / dGdT : 1e20L; }

}  // namespace

void findP(Run& run, int n, bool havestart, real& P1, real& P2, real& dGdP1, real& dGdP2, real T,
           real xco2, real xh2o, real& dGdT1, real& dGdT2) {
    const Windows& w = run.script.win;
    const RootWindow rw = rootwindow(w.calcP.lo, w.calcP.hi, w.Pdecimals, true);
    Pcurve curve{run, n, T, xco2, xh2o};
    RootSearch<Pcurve> search(rw, curve);
    search.find(havestart, P1, P2);
    dGdP1 = dGdP2 = dGdT1 = dGdT2 = 0;
    real dG;
    if (inrange(run, 1, P1)) {
        calcdg(run, n, dGdP1, dGdT1, dG, P1, T, xco2, xh2o);
        if (inrange(run, 1, P2)) calcdg(run, n, dGdP2, dGdT2, dG, P2, T, xco2, xh2o);
    }
}

void findT(Run& run, int n, bool havestart, real& T1, real& T2, real& dGdP1, real& dGdP2, real P,
           real xco2, real xh2o, real& dGdT1, real& dGdT2) {
    const Windows& w = run.script.win;
    const RootWindow rw = rootwindow(w.calcT.lo, w.calcT.hi, w.Tdecimals, false);
    Tcurve curve{run, n, P, xco2, xh2o};
    RootSearch<Tcurve> search(rw, curve);
    search.find(havestart, T1, T2);
    dGdP1 = dGdP2 = dGdT1 = dGdT2 = 0;
    real dG;
    if (inrange(run, 0, T1)) {
        calcdg(run, n, dGdP1, dGdT1, dG, P, T1, xco2, xh2o);
        if (inrange(run, 0, T2)) calcdg(run, n, dGdP2, dGdT2, dG, P, T2, xco2, xh2o);
    }
}

void reactionvariances(const Run& run, int n, real& VH, real& Va) {
    const EndMemberStore& s = run.store;
    const auto& r = s.r[n];
    VH = 0;
    Va = 0;
    for (int i = 1; i <= s.nem; ++i) {
        if (r[i] == 0) continue;
        for (int j = 1; j <= s.nem; ++j)
            if (r[j] != 0) VH += static_cast<real>(r[i]) * r[j] * s.covat(i, j);
        Va += static_cast<real>(r[i]) * r[i] * run.reactions.varlna[i];
    }
}

void sdofP(Run& run, int n, real& P1, real& P2, real& sd1, real& sd2, real& slope1, real T, real xco2,
           real xh2o, real& slope2) {
    real dGdP1, dGdP2, dGdT1, dGdT2;
    findP(run, n, false, P1, P2, dGdP1, dGdP2, T, xco2, xh2o, dGdT1, dGdT2);
    sd1 = sd2 = 1e31L;
    slope1 = slope2 = 0;
    if (!inrange(run, 1, P1)) return;
    setvarlna(run);
    real VH, Va;
    reactionvariances(run, n, VH, Va);
    const real RT = Rgas * T;
    sd1 = sdfrom(VH + Va * RT * RT, dGdP1);
    slope1 = slopefrom(dGdP1, dGdT1);
    if (inrange(run, 1, P2)) {
        sd2 = sdfrom(VH + Va * RT * RT, dGdP2);
        slope2 = slopefrom(dGdP2, dGdT2);
    }
}

void sdofT(Run& run, int n, real& T1, real& T2, real& sd1, real& sd2, real& slope1, real P, real xco2,
           real xh2o, real& slope2) {
    real dGdP1, dGdP2, dGdT1, dGdT2;
    findT(run, n, false, T1, T2, dGdP1, dGdP2, P, xco2, xh2o, dGdT1, dGdT2);
    sd1 = sd2 = 1e31L;
    slope1 = slope2 = 0;
    if (!inrange(run, 0, T1)) return;
    setvarlna(run);
    real VH, Va;
    reactionvariances(run, n, VH, Va);
    const real RT1 = Rgas * T1;
    sd1 = sdfrom(VH + Va * RT1 * RT1, dGdT1);
    slope1 = slopefrom(dGdP1, dGdT1);
    if (inrange(run, 0, T2)) {
        const real RT2 = Rgas * T2;
        sd2 = sdfrom(VH + Va * RT2 * RT2, dGdT2);
        slope2 = slopefrom(dGdP2, dGdT2);
    }
}

void enlargewindow(Run& run, int variable) {
    Windows& w = run.script.win;
    ReactionStore& rs = run.reactions;
    if (variable == 0) {
        rs.savedlo[0] = w.calcP.lo;
        rs.savedhi[0] = w.calcP.hi;
        w.calcP.lo = std::max(w.calcP.lo - 5, w.Pmin);
        w.calcP.hi = std::min(w.calcP.hi + 5, Pmaxlimit);
    } else {
        rs.savedlo[1] = w.calcT.lo;
        rs.savedhi[1] = w.calcT.hi;
        w.calcT.lo = std::max(w.calcT.lo - 300, Tminlimit);
        w.calcT.hi = std::min(w.calcT.hi + 400, Tmaxlimit);
    }
}

void restorewindow(Run& run, int variable) {
    Windows& w = run.script.win;
    const ReactionStore& rs = run.reactions;
    if (variable == 0)
        w.calcP = {rs.savedlo[0], rs.savedhi[0]};
    else
        w.calcT = {rs.savedlo[1], rs.savedhi[1]};
}

void setaxisvalue(Run& run, real v) {
    EndMemberStore& s = run.store;
    const ReactionStore& rs = run.reactions;
    const int dm = run.script.win.diagrammode;
    if (dm == dmPlna || dm == dmTlna) {
        const real k = run.script.activities.setlogaflag == 0 ? 0.019144654296L : Rgas;
        s.td[s.nem][tdS] = rs.axisS0 - k * v;
    } else if (dm == dmPmu || dm == dmTmu) {
        s.td[s.nem][tdH] = v;
    }
}

}  // namespace sm
