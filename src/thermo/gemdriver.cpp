#include "console/runended.h"
#include "run.h"
#include "thermo/gem.h"

namespace sm {

// Plain end-members take their energy from their own row. A made end-member's
// row carries only its reference values and the link to its make record, from
// which its energy is built by the made end-member code.
real gemdriver(Run& run, int i, real P, real T) {
    if (run.store.td[i][tddepem] == 0) return gem(run, i, P, T);
    if (run.store.dsmode == -1) bomb("gemdriver", "depem code for ds44??", 0);
    bomb("gemdriver", "no make record for " + run.store.emname[i], 1);
}

}  // namespace sm
