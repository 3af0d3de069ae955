// The reduced system: the run's components less those that the calculation
// fixes from outside. A set activity or potential of a one-component phase
// buffers that component; an x(CO2) axis fixes the fluid's H2O and CO2.
// Mass balance is written on what is left.
#include "console/runended.h"
#include "equilibrium/equilibrium.h"
#include "run.h"

namespace sm {

void EquilibriumState::reset() { *this = EquilibriumState(); }

namespace {

// The one component a buffering phase is made of, 0 when it has several or
// none.
int singlecomponent(const EndMemberStore& st, const PurePhase& ph) {
    int found = 0;
    for (int k = 1; k <= st.nc; ++k) {
        if (ph.comp.cnum[k] == 0) continue;
        if (found != 0) return 0;
        found = k;
    }
    return found;
}

}  // namespace

void setter(Run& run) {
    EquilibriumState& eq = run.equilibrium;
    EquilibriumSettings& set = eq.set;
    const EndMemberStore& st = run.store;
    const PhaseStore& ps = run.phases;
    for (int k = 0; k <= maxcomp; ++k) eq.inreduced[k] = k >= 1 && k <= st.nc;
    if (set.usexco2calc)
        for (int k = 1; k <= st.nc; ++k)
            if (st.compname[k] == "H2O" || st.compname[k] == "CO2") eq.inreduced[k] = false;
    for (int m = 1; m <= st.nmin; ++m) {
        if (!set.setactivity[m] && !set.setpotential[m]) continue;
        const int k = singlecomponent(st, ps.prec0[m]);
        if (k == 0) bomb("setter", "setting non-oxide lna not implemented", 0);
        eq.inreduced[k] = false;
    }
    eq.nuvleft = 0;
    for (int k = 1; k <= st.nc; ++k)
        if (eq.inreduced[k]) eq.reducedcomp[++eq.nuvleft] = k;
    bool anyset = set.usexco2calc;
    for (int m = 1; m <= st.nmin; ++m) anyset = anyset || set.setactivity[m] || set.setpotential[m];
    if (anyset) set.calcG = false;
}

}  // namespace sm
