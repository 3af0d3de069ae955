#pragma once
// Compositions of the phases' end-members in the run's components, once the
// composition matrix is known.

namespace sm {

struct Run;

// The composition of every end-member record from the columns of c of its
// terms (a made end-member is the combination of its terms).
void makeemc(Run& run);
// The atoms of each end-member (oxide units in the older dataset form),
// which make phase compositions and modes per atom.
void countcomp(Run& run);

}  // namespace sm
