// The bulk as the solver sees it. Phase compositions are per atom, so the
// mass balance summed with the atoms of each component gives (sum of modes
// times phi)^2 = phi^2: with the mode unknowns held as mode * phi, the
// modes sum to 1 without an equation of their own.
#include <cmath>

#include "equilibrium/equations.h"
#include "run.h"
#include "solver/unknowns.h"

namespace sm {

real bulkphi(const Run& run) {
    const EquilibriumState& eq = run.equilibrium;
    real s = 0;
    for (int j = 1; j <= eq.nuvleft; ++j) s += eq.b[j] * run.store.catomsum[eq.reducedcomp[j]];
    if (std::fabs(s - 1) < 1e-6L) return 1;
    return std::sqrt(s);
}

void setbulkposition(Run& run, int p) {
    EquilibriumState& eq = run.equilibrium;
    SolverState& sv = run.solver;
    if (eq.nbulk > 1) {
        const real q = static_cast<real>(p - 1) / static_cast<real>(eq.nbulk - 1);
        for (int j = 1; j <= eq.nuvleft; ++j) eq.b[j] = (eq.bulk2[j] * q + eq.bulk1[j] * (1 - q)) / 100;
        eq.bulkposition = eq.bulkfrom + q * (eq.bulkto - eq.bulkfrom);
    } else {
        for (int j = 1; j <= eq.nuvleft; ++j) eq.b[j] = eq.bulk1[j] / 100;
    }
    sv.phi = bulkphi(run);
    for (int i = sv.nx + 1; i <= sv.nx + sv.nm; ++i) setunknownmode(sv, i, sv.phi);
}

}  // namespace sm
