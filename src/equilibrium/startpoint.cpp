// A starting point for the solver from the phases' own starting guesses.
// Every point of a calculation starts here afresh: a result is not carried
// on as the guess for the next one.
#include "equilibrium/equations.h"
#include "run.h"
#include "solver/unknowns.h"

namespace sm {

void loadstart(Run& run, real P, real T, const std::vector<real>& modes) {
    SolverState& sv = run.solver;
    const EquilibriumState& eq = run.equilibrium;
    sv.x[1] = scaledvalue(sv, P, 1);
    sv.x[2] = scaledvalue(sv, T, 2);
    int spread = 0;
    real given = 0;
    for (int s = 1; s <= eq.nslot; ++s) {
        const PhaseSlot& slot = eq.slot[s];
        if (!slot.pure) {
            const AxPhase& ph = run.phases.prec1[slot.phase];
            for (int v = 1; v <= slot.nvar; ++v) {
                const int i = slot.xstart + v - 1;
                sv.x[i] = scaledvalue(sv, ph.xv[v].guess, i);
            }
        }
        if (slot.modex == 0) continue;
        if (static_cast<size_t>(s) < modes.size())
            given += modes[s];
        else
            ++spread;
    }
    const real share = spread > 0 ? (1 - given) / spread : 0;
    for (int s = 1; s <= eq.nslot; ++s) {
        const int i = eq.slot[s].modex;
        if (i == 0) continue;
        const real m = static_cast<size_t>(s) < modes.size() ? modes[s] : share;
        sv.x[i] = scaledvalue(sv, m * sv.phi, i);
    }
}

void settruepoint(Run& run) {
    const SolverState& sv = run.solver;
    EquilibriumState& eq = run.equilibrium;
    for (int i = 1; i <= sv.nx + sv.nm; ++i) eq.xtrue[i] = truevalue(sv, sv.x, i);
}

}  // namespace sm
