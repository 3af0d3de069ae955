#include "console/runended.h"
#include "run.h"
#include "thermo/gem.h"

namespace sm {

// Plain end-members take their energy from their own row. A made
// end-member's row carries its own H, S, V (the DQF term and the order
// energy of fully ordered or disordered terms) and the link to its make
// record; its terms are rows of td of their own, from row 400 downward.
real gemdriver(Run& run, int i, real P, real T) {
    const TdRow& row = run.store.td[i];
    if (row[tddepem] == 0) return gem(run, i, P, T);
    if (run.store.dsmode == -1) bomb("gemdriver", "depem code for ds44??", 0);
    const int phase = static_cast<int>(row[tddepphase]);
    const int em = static_cast<int>(row[tddepem]);
    const MakeRecord& make =
        phase >= 1 ? run.phases.prec1[phase].em[em].make : run.phases.prec0[em].make;
    real G = row[tdH] - row[tdS] * T + row[tdV] * P;
    for (int k = 1; k <= make.nmake; ++k)
        G += static_cast<real>(make.makecoef[k]) * gem(run, make.makerow[k], P, T) / static_cast<real>(make.makediv);
    return G;
}

}  // namespace sm
