#include "console/runended.h"
#include "run.h"
#include "thermo/gem.h"

namespace sm {

// Plain end-members take their energy from their own row. A made
// end-member's row carries its own H, S, V (the DQF term and the order
// energy of fully ordered or disordered terms) and the link to its make
// record; its terms are rows of td of their own, from row 400 downward.
const MakeRecord* rowmake(const Run& run, int i) {
    const TdRow& row = run.store.td[i];
    if (row[tddepem] == 0) return nullptr;
    const int phase = static_cast<int>(row[tddepphase]);
    const int em = static_cast<int>(row[tddepem]);
    return phase >= 1 ? &run.phases.prec1[phase].em[em].make : &run.phases.prec0[em].make;
}

real madegibbs(const Run& run, int i, const MakeRecord& make, real P, real T, const real* termG) {
    const TdRow& row = run.store.td[i];
    real G = row[tdH] - row[tdS] * T + row[tdV] * P;
    for (int k = 1; k <= make.nmake; ++k)
        G += static_cast<real>(make.makecoef[k]) * termG[k] / static_cast<real>(make.makediv);
    return G;
}

real gemdriver(Run& run, int i, real P, real T) {
    const MakeRecord* make = rowmake(run, i);
    if (make == nullptr) return gem(run, i, P, T);
    if (run.store.dsmode == -1) bomb("gemdriver", "depem code for ds44??", 0);
    real termG[maxmaketerms + 1];
    for (int k = 1; k <= make->nmake; ++k) termG[k] = gem(run, make->makerow[k], P, T);
    return madegibbs(run, i, *make, P, T, termG);
}

}  // namespace sm
