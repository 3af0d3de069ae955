// The residuals and Jacobian of one assemblage. Each independent reaction
// among its end-members gives dG + RT sum(nu ln a) = 0, scaled by the size
// of the reaction so that reactions of many sites do not outweigh the rest.
// With modes among the unknowns, each independent component of the reduced
// system gives a mass balance: the phases' compositions per atom, weighted
// by their modes, make the bulk.
//
// This is the innermost costly step of every calculation: no allocation,
// no strings and no look-ups on the way to a legal point.
#include <cmath>

#include "ax/activities.h"
#include "console/runended.h"
#include "equilibrium/equations.h"
#include "equilibrium/equations_print.h"
#include "run.h"
#include "solver/unknowns.h"
#include "thermo/constants.h"
#include "thermo/gem.h"

namespace sm {

namespace {

// The fluid routines read x(CO2) and x(H2O) from the rows: an aqueous
// phase hands them its solvent's proportions, every other a-x phase 0.
void handfluid(Run& run) {
    const EquilibriumState& eq = run.equilibrium;
    EndMemberStore& st = run.store;
    for (int s = 1; s <= eq.nslot; ++s) {
        const PhaseSlot& slot = eq.slot[s];
        if (slot.pure) continue;
        const AxPhase& ph = run.phases.prec1[slot.phase];
        real xco2 = 0, xh2o = 0;
        if (slot.aqueous) {
            const PhaseActivity& pa = run.activities.phase[slot.phase];
            if (ph.co2em > 0) xco2 = pa.pp[ph.co2em];
            if (ph.h2oem > 0) xh2o = pa.pp[ph.h2oem];
        }
        for (int j = 0; j < slot.nrows; ++j) {
            st.td[slot.firstrow + j][tdxco2] = xco2;
            st.td[slot.firstrow + j][tdxh2o] = xh2o;
        }
    }
}

// G of every row taking part in a reaction, and its slopes in P and T by
// central differences over the steps of the reaction energies (1e-5 kbar,
// 0.001 K), each only where that unknown is free. Forward differences
// would leave half a step times the curvature of G in each slope: up to
// some 1e-5 of an entry of the Jacobian where a reaction's entropy or
// volume change is small. The energy of each row of td that is needed is
// found once: make terms shared by several made end-members are common.
constexpr real dP = 0.00001L, dT = 0.001L;

void rowenergies(Run& run, real P, real T, bool slopeP, bool slopeT) {
    EquilibriumState& eq = run.equilibrium;
    const EndMemberStore& st = run.store;
    const int nir = run.reactions.nir;
    int nsource = 0;
    auto need = [&](int row) {
        if (eq.sourcemark[row]) return;
        eq.sourcemark[row] = true;
        eq.source[++nsource] = row;
    };
    for (int j = 1; j <= st.nem; ++j) {
        bool used = false;
        for (int r = 1; r <= nir && !used; ++r) used = st.r[r][j] != 0;
        eq.inreaction[j] = used;
        if (!used) continue;
        const MakeRecord* make = rowmake(run, j);
        if (make == nullptr) {
            need(j);
        } else {
            if (st.dsmode == -1) bomb("gemdriver", "depem code for ds44??", 0);
            for (int k = 1; k <= make->nmake; ++k) need(make->makerow[k]);
        }
    }
    for (int q = 1; q <= nsource; ++q) {
        const int row = eq.source[q];
        eq.sourcemark[row] = false;
        EquilibriumState::SourceEnergy& e = eq.energy[row];
        e.g = gem(run, row, P, T);
        if (slopeP) {
            e.gpp = gem(run, row, P + dP, T);
            e.gpm = gem(run, row, P - dP, T);
        }
        if (slopeT) {
            e.gtp = gem(run, row, P, T + dT);
            e.gtm = gem(run, row, P, T - dT);
        }
    }
    for (int j = 1; j <= st.nem; ++j) {
        if (!eq.inreaction[j]) continue;
        const MakeRecord* make = rowmake(run, j);
        if (make == nullptr) {
            const EquilibriumState::SourceEnergy& e = eq.energy[j];
            eq.g0[j] = e.g;
            if (slopeP) eq.dgdp[j] = (e.gpp - e.gpm) / (2 * dP);
            if (slopeT) eq.dgdt[j] = (e.gtp - e.gtm) / (2 * dT);
            continue;
        }
        real tg[maxmaketerms + 1], ta[maxmaketerms + 1];
        auto terms = [&](real EquilibriumState::SourceEnergy::*field) {
            for (int k = 1; k <= make->nmake; ++k) tg[k] = eq.energy[make->makerow[k]].*field;
        };
        terms(&EquilibriumState::SourceEnergy::g);
        eq.g0[j] = madegibbs(run, j, *make, P, T, tg);
        if (slopeP) {
            terms(&EquilibriumState::SourceEnergy::gpp);
            for (int k = 1; k <= make->nmake; ++k) ta[k] = tg[k];
            terms(&EquilibriumState::SourceEnergy::gpm);
            eq.dgdp[j] = (madegibbs(run, j, *make, P + dP, T, ta) - madegibbs(run, j, *make, P - dP, T, tg)) / (2 * dP);
        }
        if (slopeT) {
            terms(&EquilibriumState::SourceEnergy::gtp);
            for (int k = 1; k <= make->nmake; ++k) ta[k] = tg[k];
            terms(&EquilibriumState::SourceEnergy::gtm);
            eq.dgdt[j] = (madegibbs(run, j, *make, P, T + dT, ta) - madegibbs(run, j, *make, P, T - dT, tg)) / (2 * dT);
        }
    }
}

void reactionrows(Run& run, NleMatrix& J, NleVector& F, bool wantJ, real T) {
    EquilibriumState& eq = run.equilibrium;
    const EndMemberStore& st = run.store;
    const ReactionStore& rs = run.reactions;
    const ActivityState& act = run.activities;
    for (int j = 1; j <= st.nem; ++j) eq.lna[j] = eq.inreaction[j] ? std::log(st.activ[j]) : 0;
    for (int r = 1; r <= rs.nir; ++r) {
        const auto& nu = st.r[r];
        real s = 0, dG = 0, dGdP = 0, dGdT = 0;
        for (int j = 1; j <= st.nem; ++j) {
            if (nu[j] == 0) continue;
            s += nu[j] * eq.lna[j];
            dG += nu[j] * eq.g0[j];
            if (wantJ) {
                if (eq.colof[1] != 0) dGdP += nu[j] * eq.dgdp[j];
                if (eq.colof[2] != 0) dGdT += nu[j] * eq.dgdt[j];
            }
        }
        eq.lnk[r] = s;
        const real rscale = static_cast<real>(rs.rscale[r]);
        F[r] = (dG + Rgas * T * s) / rscale;
        if (!wantJ) continue;
        const real inv = 1 / rscale;
        real sP = 0, sT = 0;
        for (int j = 1; j <= st.nem; ++j) {
            if (nu[j] == 0 || !act.inss[j]) continue;
            sP += nu[j] * act.dlnadP[j];
            sT += nu[j] * act.dlnadT[j];
            // Only the variables of the end-member's own phase move its activity.
            const int s0 = act.emstart[j];
            const int nv = eq.slot[eq.emslot[j]].nvar;
            for (int v = 0; v < nv; ++v) {
                const int c = eq.colof[s0 + v];
                if (c != 0) J[r][c] += nu[j] * act.dlnadx[j][s0 + v] * eq.invscale[s0 + v] * inv;
            }
        }
        if (eq.colof[1] != 0) J[r][eq.colof[1]] = (dGdP + sP) * eq.invscale[1] * inv;
        if (eq.colof[2] != 0) J[r][eq.colof[2]] = (dGdT + sT) * eq.invscale[2] * inv;
    }
}

// Row i of projc applied to a vector on the reduced system.
template <typename V>
real projected(const EquilibriumState& eq, const V& v, int i) {
    if (eq.projidentity) return v[i];
    real g = 0;
    for (int j = 1; j <= eq.nuvleft; ++j) g += v[j] * eq.projr[i][j];
    return g;
}

// Composition per atom on the reduced system of each phase with a mode,
// its derivatives by the phase's variables, and its sum on each row of
// projc.
void compositions(Run& run, bool wantJ) {
    EquilibriumState& eq = run.equilibrium;
    const int nu = eq.nuvleft;
    for (int s = 1; s <= eq.nslot; ++s) {
        const PhaseSlot& slot = eq.slot[s];
        if (slot.modex == 0) continue;
        auto& comp = eq.comp[s];
        if (slot.pure) {
            const int i = slot.firstrow;
            const real d = eq.emsize[i];
            for (int j = 1; j <= nu; ++j) comp[j] = d != 0 ? eq.emred[i][j] / d : 0;
        } else {
            const PhaseActivity& pa = run.activities.phase[slot.phase];
            real d = 0;
            for (int j = 1; j <= nu; ++j) comp[j] = 0;
            for (int e = 1; e <= slot.nrows; ++e) {
                const int i = slot.firstrow + e - 1;
                const real p = pa.pp[e];
                d += p * eq.emsize[i];
                for (int j = 1; j <= nu; ++j) comp[j] += p * eq.emred[i][j];
            }
            const real invd = 1 / d;
            for (int j = 1; j <= nu; ++j) comp[j] *= invd;
            if (wantJ)
                for (int v = 1; v <= slot.nvar; ++v) {
                    // A proportion depends on few of the variables: skip the zeros.
                    real dsize = 0;
                    real dc[maxcomp + 1];
                    for (int j = 1; j <= nu; ++j) dc[j] = 0;
                    for (int e = 1; e <= slot.nrows; ++e) {
                        const real dp = pa.dpdx[e][v];
                        if (dp == 0) continue;
                        const int i = slot.firstrow + e - 1;
                        dsize += dp * eq.emsize[i];
                        for (int j = 1; j <= nu; ++j) dc[j] += dp * eq.emred[i][j];
                    }
                    for (int j = 1; j <= nu; ++j) eq.dcomp[s][j][v] = (dc[j] - comp[j] * dsize) * invd;
                }
        }
        for (int i = 1; i <= nu; ++i) eq.gsum[s][i] = projected(eq, comp, i);
    }
}

// The mass balance rows after the nir reaction rows; false when a row that
// the assemblage cannot change has moved off zero in a search.
bool massbalancerows(Run& run, NleMatrix& J, NleVector& F, bool wantJ, int nir) {
    EquilibriumState& eq = run.equilibrium;
    const NleVector& xt = eq.xtrue;
    const int nu = eq.nuvleft;
    const int nsolved = nu - eq.rankdeficit;
    compositions(run, wantJ);
    real t = 0;
    for (int s = 1; s <= eq.nslot; ++s)
        if (eq.slot[s].modex != 0) t += xt[eq.slot[s].modex];
    for (int i = 1; i <= nu; ++i) {
        real sum = 0, bulk = 0;
        for (int s = 1; s <= eq.nslot; ++s)
            if (eq.slot[s].modex != 0) sum += xt[eq.slot[s].modex] * eq.gsum[s][i];
        bulk = projected(eq, eq.b, i);
        const real f = t * sum - bulk;
        if (i > nsolved) {
            if (!(std::fabs(f) < 1e-5L)) {
                if (!reportoffsystem(run, f)) return false;
            }
            continue;
        }
        F[nir + i] = f;
        if (!wantJ) continue;
        const int row = nir + i;
        for (int s = 1; s <= eq.nslot; ++s) {
            const PhaseSlot& slot = eq.slot[s];
            if (slot.modex == 0) continue;
            const real un = xt[slot.modex];
            for (int v = 1; v <= slot.nvar; ++v) {
                const int x = slot.xstart + v - 1;
                const int c = eq.colof[x];
                if (c == 0) continue;
                real dg = 0;
                if (eq.projidentity) {
                    dg = eq.dcomp[s][i][v];
                } else {
                    for (int j = 1; j <= nu; ++j) dg += eq.dcomp[s][j][v] * eq.projr[i][j];
                }
                J[row][c] = t * un * dg * eq.invscale[x];
            }
            const int c = eq.colof[slot.modex];
            if (c != 0) J[row][c] = (sum + t * eq.gsum[s][i]) * eq.invscale[slot.modex];
        }
    }
    return true;
}

}  // namespace

bool EquilibriumSystem::nlefunc(const NleVector& x, NleMatrix& J, NleVector& F, bool wantJ) {
    Run& run = run_;
    SolverState& sv = run.solver;
    EquilibriumState& eq = run.equilibrium;
    const EndMemberStore& st = run.store;
    const int total = sv.nx + sv.nm;

    int bad = 0;
    const bool inside = inbox(sv, x, bad);
    if (!inside) reportbadvalue(run, bad);
    int n = 0;
    NleVector& xt = eq.xtrue;
    for (int i = 1; i <= total; ++i) {
        xt[i] = truevalue(sv, x, i);
        eq.colof[i] = sv.active[i] ? ++n : 0;
        if (sv.active[i]) eq.invscale[i] = 1 / sv.scale[i];
    }
    if (!inside) {
        reportfailedpoint(run, x);
        return false;
    }
    const real P = xt[1], T = xt[2];

    if (!calcsf(run, xt.data())) {
        reportnotok(run);
        sv.softillegal = true;
        return false;
    }
    calca(run, xt.data(), wantJ, wantJ, P, T);
    for (int j = 1; j <= st.nem; ++j)
        if (!(st.activ[j] > 0)) return false;
    if (wantJ)
        for (int r = 1; r <= n; ++r)
            for (int c = 1; c <= n; ++c) J[r][c] = 0;
    handfluid(run);
    rowenergies(run, P, T, wantJ && eq.colof[1] != 0, wantJ && eq.colof[2] != 0);
    const int nir = run.reactions.nir;
    reactionrows(run, J, F, wantJ, T);

    eq.ncols = n;
    if (!eq.set.modesbynle) {
        eq.nrows = nir;
    } else {
        if (!massbalancerows(run, J, F, wantJ, nir)) return false;
        eq.nrows = nir + eq.nuvleft - eq.rankdeficit;
    }
    if (eq.nrows != eq.ncols) reportnonsquare(run, x, F);
    if (sv.printlevel == 4 && sv.fncalls == 1) printequations(run, x, J, F, wantJ);
    return true;
}

real EquilibriumSystem::sfterm(const SfWatch& e, const NleVector& v) { return sfwatchvalue(run_, e, v); }

real EquilibriumSystem::sftermslope(const SfWatch& e, const NleVector& v, const NleVector& w, bool& zerofactor) {
    return sfwatchslope(run_, e, v, w, zerofactor);
}

}  // namespace sm
