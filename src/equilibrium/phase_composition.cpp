// The composition of a phase at a point, and the phases of an assemblage
// as a real composition matrix for the modes worked out after the solver.
#include <cmath>

#include "console/runended.h"
#include "equilibrium/composition.h"
#include "run.h"

namespace sm {

void compcalc(const Run& run, int phase, const real* x, int xo, std::array<real, maxcomp + 1>& comp) {
    const EndMemberStore& st = run.store;
    const AxPhase& ph = run.phases.prec1[phase];
    comp.fill(0);
    for (int e = 1; e <= ph.nem; ++e) {
        const real p = evalx(ph.pool, ph.pexpr[e], x, xo);
        for (int k = 1; k <= st.nc; ++k) comp[k] += p * ph.em[e].comp.x[k];
    }
}

namespace {

// The composition of the phase of a slot in all components, and its sum of
// proportions (1 for a pure phase).
void slotcomposition(const Run& run, const PhaseSlot& s, const real* x, std::array<real, maxcomp + 1>& comp,
                     real& sump) {
    const EndMemberStore& st = run.store;
    if (s.pure) {
        const PurePhase& ph = run.phases.prec0[s.phase];
        for (int k = 1; k <= st.nc; ++k) comp[k] = ph.comp.x[k];
        sump = 1;
        return;
    }
    compcalc(run, s.phase, x, s.xstart, comp);
    const AxPhase& ph = run.phases.prec1[s.phase];
    sump = 0;
    for (int e = 1; e <= ph.nem; ++e) sump += evalx(ph.pool, ph.pexpr[e], x, s.xstart);
}

bool onreduced(const EquilibriumState& eq, const std::array<real, maxcomp + 1>& comp) {
    for (int j = 1; j <= eq.nuvleft; ++j)
        if (comp[eq.reducedcomp[j]] != 0) return true;
    return false;
}

}  // namespace

void makec(Run& run, const real* x, PhaseColumns& pc) {
    const EquilibriumState& eq = run.equilibrium;
    const EndMemberStore& st = run.store;
    pc = PhaseColumns();
    int rows = 0;
    for (int k = 1; k <= st.nc; ++k)
        if (eq.inreduced[k]) ++rows;
    if (rows != eq.nuvleft) bomb("makec", "nuvleft mismatch", 0);
    std::array<real, maxcomp + 1> comp{};
    for (int s = 1; s <= eq.nslot; ++s) {
        const PhaseSlot& slot = eq.slot[s];
        if (slot.xco2fluid) {
            pc.leftout[s] = true;
            continue;
        }
        real sump = 1;
        slotcomposition(run, slot, x, comp, sump);
        if (slot.pure && !onreduced(eq, comp)) {
            pc.leftout[s] = true;
            continue;
        }
        const int c = ++pc.ncol;
        pc.slot[c] = s;
        for (int j = 1; j <= eq.nuvleft; ++j) pc.C[j][c] = comp[eq.reducedcomp[j]] / (slot.pure ? 1 : sump);
    }
}

int phasesizes(Run& run, const real* x, std::array<real, maxnx + 1>& at, std::array<real, maxnx + 1>& atcut) {
    const EquilibriumState& eq = run.equilibrium;
    const EndMemberStore& st = run.store;
    at.fill(1);
    atcut.fill(1);
    std::array<real, maxcomp + 1> comp{};
    int n = 0;
    for (int s = 1; s <= eq.nslot; ++s) {
        const PhaseSlot& slot = eq.slot[s];
        if (slot.xco2fluid || slot.setphase) continue;
        real sump = 1;
        slotcomposition(run, slot, x, comp, sump);
        if (slot.pure && !onreduced(eq, comp)) continue;
        real a = 0, acut = 0;
        for (int k = 1; k <= st.nc; ++k) {
            a += comp[k] * st.catomsum[k];
            if (eq.inreduced[k]) acut += comp[k] * st.catomsum[k];
        }
        ++n;
        at[n] = a;
        atcut[n] = acut;
    }
    return n;
}

}  // namespace sm
