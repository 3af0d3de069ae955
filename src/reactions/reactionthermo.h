#pragma once
// Reactions as numbers: ln K from the activities, the variances of ln a,
// the roots of a reaction in P or T with their uncertainties, and whether a
// reaction can lie in the window of a diagram.
#include <array>

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

// The roots of reaction n in P at the given T, or in T at the given P, in
// the calculation window; with `havestart` from P1 (T1). The derivatives
// belong to the roots inside the window and are 0 otherwise.
void findP(Run& run, int n, bool havestart, real& P1, real& P2, real& dGdP1, real& dGdP2, real T,
           real xco2, real xh2o, real& dGdT1, real& dGdT2);
void findT(Run& run, int n, bool havestart, real& T1, real& T2, real& dGdP1, real& dGdP2, real P,
           real xco2, real xh2o, real& dGdT1, real& dGdT2);
// The roots with their standard deviations and slopes dT/dP; a root
// outside the window has sd 1e31.
void sdofP(Run& run, int n, real& P1, real& P2, real& sd1, real& sd2, real& slope1, real T, real xco2,
           real xh2o, real& slope2);
void sdofT(Run& run, int n, real& T1, real& T2, real& sd1, real& sd2, real& slope1, real P, real xco2,
           real xh2o, real& slope2);
// Variance of the Gibbs energy of reaction n from the enthalpies, and the
// sum of coefficient squared times the variance of ln a.
void reactionvariances(const Run& run, int n, real& VH, real& Va);

// Roots are sought in a window larger than the calculation window, so that
// lines leaving it still cross inside a table: 0 widens P, 1 widens T.
void enlargewindow(Run& run, int variable);
void restorewindow(Run& run, int variable);

// The value of an activity or potential axis into the record of the axis
// end-member (the last one): ln a through its entropy, mu as its enthalpy.
void setaxisvalue(Run& run, real v);

// Can reaction n lie in the window of the diagram? `sidebelow` gets, per
// corner, whether the Gibbs energy of reaction is negative there.
bool inPTXwindow(Run& run, int n, std::array<bool, 4>& sidebelow);
// The question the mode 3 enumeration puts to each reaction.
WindowQuestion inPTXwindowquestion();

}  // namespace sm
