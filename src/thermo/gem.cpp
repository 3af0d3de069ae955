#include "thermo/gem.h"

#include <cmath>

#include "console/format.h"
#include "console/runended.h"
#include "run.h"
#include "thermo/constants.h"
#include "thermo/dataset.h"
#include "thermo/energy_terms.h"

namespace sm {

void energyfail(std::string_view name, std::string_view what) {
    bomb("gem", std::string(name) + ": " + std::string(what), 0);
}

real gemrow(const TdRow& row, std::string_view name, real P, real T, const GemContext& cx,
            GemParts& parts) {
    parts = GemParts{};
    const real H = row[tdH], S = row[tdS];
    // A row of zeros, or a bare reference value.
    if (std::fabs(S) < 1e-8L) return H;
    if (!(T > 0)) energyfail(name, "T <= 0");
    const int eos = static_cast<int>(row[tdeos]);
    const bool einstein = cx.dsmode == 7 && eos >= eoseinstein && eos <= eoseinsteinbw;
    const bool melt = !name.empty() && name.back() == 'L';

    parts.Gcp = einstein ? einsteingcp(row, name, T, cx) : gcppolynomial(row, T);

    const real V = row[tdV];
    const real k0 = cx.dsmode == -1 ? row[11] : row[tdk0];
    if (V == 0)
        parts.VdP = 0;
    else if (einstein)
        parts.VdP = einsteinvdp(row, name, P, T, cx);
    else if (k0 == 0)
        parts.VdP = V * (P - Pr);
    else if (cx.dsmode == -1)
        parts.VdP = oldvdp(row, P, T);
    else
        parts.VdP = taitvdp(row, name, P, T, melt, cx, parts);

    parts.Gfluid = fluidgibbs(row, name, P, T, cx, parts.Gfmix);

    if (row[tdSmax] > 0) parts.Gord = landaugord(row, name, P, T, cx.dsmode);
    // Bragg-Williams data replace Landau's in a row that has both.
    if (std::lround(row[tdbwn]) > 0) parts.Gord = braggwilliamsgord(row, P, T);

    parts.Gcrd = cordieriteg(row, name, P, T, cx);
    parts.Gaq = aqueousg(row, name, P, T, cx);

    const real G = H - S * T + parts.Gcp + parts.VdP + parts.Gfluid + parts.Gfmix + parts.Gord +
                   parts.Gcrd + parts.Gaq;
    if (!std::isfinite(G))
        energyfail(name, "no Gibbs energy at P = " + real2str(P, 5, false) + " kbar, T = " +
                             real2str(T - celsius, 2, true) + " C");
    return G;
}

GemContext gemcontext(Run& run) {
    const EndMemberStore& s = run.store;
    GemContext cx;
    cx.dsmode = s.dsmode;
    cx.newds = s.newds;
    cx.fluidtype = run.script.win.fluidtype;
    cx.crdterm = run.calcmode != 1 && run.calcmode != 9;
    cx.regression = run.calcmode == 9;
    cx.numerical = run.script.control.numerical;
    cx.ggk = s.ggk;
    cx.printlevel = run.solver.printlevel;
    cx.io = &run.io;
    cx.ggkfallbacks = &run.store.ggkfallbacks;
    return cx;
}

real gem(Run& run, int i, real P, real T) {
    ++run.gcount;
    const GemContext cx = gemcontext(run);
    GemParts parts;
    const real G = gemrow(run.store.td[i], run.store.emname[i], P, T, cx, parts);
    run.store.lastthermal = parts.Gcp;
    run.store.lastvdp = parts.VdP;
    return G;
}

void gemderivatives(Run& run, int i, real P, real T, real& G, real& dGdP, real& dGdT) {
    G = gemdriver(run, i, P, T);
    dGdP = (gemdriver(run, i, P + 0.00001L, T) - G) / 0.00001L;
    dGdT = (gemdriver(run, i, P, T + 0.001L) - G) / 0.001L;
}

namespace {

real reactiondg(Run& run, int k, real P, real T) {
    const EndMemberStore& s = run.store;
    real dG = 0;
    for (int j = 1; j <= s.nem; ++j)
        if (s.r[k][j] != 0) dG += s.r[k][j] * gemdriver(run, j, P, T);
    return dG;
}

}  // namespace

void calcdg0(Run& run, int k, real& dGdP, real& dGdT, real& dG, real P, real T) {
    if (T <= 0) bomb("calcdg0", "T <= 0 !", 0);
    dG = reactiondg(run, k, P, T);
    dGdP = (reactiondg(run, k, P + 0.00001L, T) - dG) / 0.00001L;
    dGdT = (reactiondg(run, k, P, T + 0.001L) - dG) / 0.001L;
}

void calclnk(Run& run, int k, real& lnK, real x1, real x2) {
    const EndMemberStore& s = run.store;
    lnK = 0;
    for (int j = 1; j <= s.nem; ++j) {
        if (s.r[k][j] == 0) continue;
        if (!(s.activ[j] > 0)) bomb("calclnk", "ln<=0", 0);
        lnK += s.r[k][j] * std::log(s.activ[j]);
    }
    if (s.ico2 > 0 && s.r[k][s.ico2] != 0 && x1 > 0 && x1 < 1) lnK += s.r[k][s.ico2] * std::log(x1);
    if (s.ih2o > 0 && s.r[k][s.ih2o] != 0 && x2 > 0 && x2 < 1) lnK += s.r[k][s.ih2o] * std::log(x2);
    // Silica in solution is counted per mole of water.
    if (s.iaqsi > 0 && s.ih2o > 0 && x2 > 0 && x2 < 1) lnK -= 4 * s.r[k][s.iaqsi] * std::log(x2);
}

void calcdg(Run& run, int k, real& dGdP, real& dGdT, real& dG, real P, real T, real x1, real x2) {
    EndMemberStore& s = run.store;
    for (int j = 1; j <= s.nem; ++j)
        if (s.r[k][j] != 0) {
            s.td[j][tdxco2] = x1;
            s.td[j][tdxh2o] = x2;
        }
    calcdg0(run, k, dGdP, dGdT, dG, P, T);
    real lnK;
    calclnk(run, k, lnK, x1, x2);
    dG += Rgas * T * lnK;
    dGdT += Rgas * lnK;
}

}  // namespace sm
