#pragma once
// Reactions as numbers: ln K from the activities, the variances of ln a,
// the window predicates and the roots of a reaction in P or T.
#include "console/types.h"
#include "reactions/reactionstore.h"

namespace sm {

struct Run;

// lnKbase of reaction n: the sum of coefficient times ln a over the
// end-members with a coefficient; an activity that is not positive adds
// nothing here (the tables recompute the sum where it matters).
void setlnKbase(Run& run, int n);
// The same for every reaction of the store.
void setlnKbase(Run& run);
// varlna from the activities and their standard deviations.
void setvarlna(Run& run);

// Can reaction n lie in the window of the diagram? `sidebelow` gets, per
// corner, whether the Gibbs energy of reaction is negative there.
bool inPTXwindow(Run& run, int n, std::array<bool, 5>& sidebelow);
// The question the mode 3 enumeration puts to each reaction.
WindowQuestion inPTXwindowquestion();

}  // namespace sm
