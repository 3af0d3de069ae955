#pragma once
// An assemblage laid out for the equations: a bulk made of its own phases,
// the reactions, P and T windows, and the unknowns at the starting guesses.
#include <memory>

#include "eqtesting.h"
#include "reactions/reactions.h"
#include "solver/nle.h"
#include "solver/unknowns.h"

namespace sm::eqtest {

// Puts entry i of x in or out of the solver, keeping its true value.
inline void setactive(Run& run, int i, bool active) {
    SolverState& sv = run.solver;
    const real v = truevalue(sv, sv.x, i);
    sv.active[i] = active;
    sv.x[i] = scaledvalue(sv, v, i);
}

// The composition of the assemblage at its guesses with the given modes
// by slot (equal ones when none are given), as a bulk: it always lies in
// the span of the assemblage.
inline Bulk ownbulk(EqRun& t, const std::vector<real>& modes = {}) {
    EquilibriumState& eq = t.run.equilibrium;
    const EndMemberStore& st = t.run.store;
    std::vector<real> sum(st.nc + 1, 0);
    for (int s = 1; s <= eq.nslot; ++s) {
        const PhaseSlot& slot = eq.slot[s];
        std::array<real, maxcomp + 1> f{};
        if (slot.pure) {
            f = t.run.phases.prec0[slot.phase].comp.x;
        } else {
            const AxPhase& ph = t.run.phases.prec1[slot.phase];
            for (int v = 1; v <= ph.nxv; ++v) eq.xtrue[slot.xstart + v - 1] = ph.xv[v].guess;
            compcalc(t.run, slot.phase, eq.xtrue.data(), slot.xstart, f);
        }
        real atoms = 0;
        for (int k = 1; k <= st.nc; ++k) atoms += f[k] * st.catomsum[k];
        const real m = modes.empty() ? 1 : modes[s - 1];
        for (int k = 1; k <= st.nc; ++k) sum[k] += m * f[k] / atoms;
    }
    Bulk b;
    for (int k = 1; k <= st.nc; ++k) b.push_back({st.compname[k].c_str(), sum[k] + 1e-30L});
    return b;
}

// Lays out `phases` with modes among the unknowns (or not), with `bulk`
// (the assemblage's own when empty), P and T windows, the reactions, and
// the unknowns at the starting guesses, P (kbar) and T (K), with the
// starting modes by slot (1-based) when given.
inline void prepare(EqRun& t, const Assemblage& a, real P, real T, bool modes = true, const Bulk& bulk = {},
                    const std::vector<real>& startmodes = {}) {
    EquilibriumState& eq = t.run.equilibrium;
    SolverState& sv = t.run.solver;
    eq.set.modesbynle = modes;
    makecrossrefs(t.run, a);
    t.bulk(bulk.empty() ? ownbulk(t) : bulk);
    int rank = 0;
    bool ok = false;
    calcrankp(t.run, a, rank, ok);
    bool found = false;
    listindependentreactions(t.run, found);
    setunknownP(sv, 1, 15);
    setunknownT(sv, 600, 1200);
    loadstart(t.run, P, T, startmodes);
}

}  // namespace sm::eqtest
