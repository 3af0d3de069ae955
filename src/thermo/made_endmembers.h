#pragma once
// End-members that the dataset does not hold, built from dataset
// end-members by the make lines of the a-x file: their thermodynamic rows,
// the td rows of their terms, their covariances, and their Gibbs energy.
#include <array>
#include <vector>

#include "console/types.h"
#include "thermo/limits.h"
#include "thermo/make_record.h"
#include "thermo/store.h"

namespace sm {

struct Run;

struct MadeStore {
    // Terms of made end-members stand in td from row maxnem downward;
    // topfree is the first of them in use (maxnem + 1 when none).
    int topfree = maxnem + 1;
    std::array<int, maxnem + 1> action{};  // make action of each such row

    // The run's end-member order of makeemtd, which cov follows: phase k's
    // end-member j is number axrow[k] + j, pure phase k is purerow + k.
    std::array<int, maxnp + 1> axrow{};
    int purerow = 0;

    // Scratch for the covariance rewrite, allocated once.
    std::vector<real> covwork = std::vector<real>((maxnem + 1) * (maxnem + 1));
};

// Builds the own row of every end-member record and the td rows of make
// terms, after the dataset's data pass; rewrites cov in the run's
// end-member order (every phase, a-x phases first, repetitions kept) and
// makes nem the count of that order.
void makeemtd(Run& run);

// Writes td row i (and its nsites and emname) for end-member `em` of a-x
// phase `phase`, or for pure phase `em` when `phase` is 0: a plain
// end-member with its own row, a made one with its H, S, V and the phase and
// end-member that gemdriver finds its terms by.
void putemrow(Run& run, int phase, int em, int i);

// The row of one made end-member from its make record and the td rows of
// its terms (the H, S, V of the DQF term and of fully ordered or disordered
// terms); fills makerow by finddep.
void domake(Run& run, const sstring& name, MakeRecord& make, TdRow& row, const int* termrow);
// The high td row of a make term with this action, made on first use.
int finddep(Run& run, const sstring& term, int action);

}  // namespace sm
