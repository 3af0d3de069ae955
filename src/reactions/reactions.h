#pragma once
// Reactions between the end-members of a run: the enumeration of every
// reaction and invariant point (mode 3) or of an independent set crossing
// the window (mode 2), the independent set of a whole assemblage in one
// stroke, and the texts of reactions.
#include <array>

#include "console/bitsets.h"
#include "console/types.h"
#include "reactions/reactionstore.h"

namespace sm {

struct Run;

// Every reaction among end-members 1..nemp, smallest sub-system first, with
// the intersections of mode 3. `complete` is false when a store overflowed
// (mode 3), or tells whether the independent set was completed (mode 2).
void calcre(Run& run, bool& complete);
// The same with the questions about the window put by the caller.
void calcre(Run& run, bool& complete, const WindowQuestion& inwindow);

// An independent set of reactions of the whole composition matrix, with the
// weight of each reaction; `found` when there is at least one.
void listindependentreactions(Run& run, bool& found);
// Exact integer Gauss-Jordan on columns 1..ncols of rows 1..nrows of c:
// appends one reaction for each non-pivot column and returns the rank.
int nullspace(Run& run, int nrows, int ncols);

// The text of reaction n, "n)  left = right", into reactionname[n].
void writereaction(Run& run, int n);

// Reactions of the store that an exclusion rules out go; with `final` the
// texts of those that stay are built.
void prune(Run& run, bool final);
// Learning from reaction nir, which cannot lie in the window: it leaves the
// store, and its unstable side joins the exclusions. True when that side was
// not known before.
bool exclude(Run& run, bool belowatfirstcorner);

// The end-members of a reaction among 1..nemp as a set.
BitSet2 reactionmembers(const Run& run, int n);

// Coefficients of the reaction among `members` (rankc + 1 end-members, in
// sub-system order) of the sub-system with components `comps` (k of them),
// balanced over every row of c, in-excess end-members included, oriented
// with the fluid on the right. Positions 1..nem of coef.
void formreaction(Run& run, const int* comps, int k, const int* members,
                  std::array<long long, maxnem + 1>& coef);

// Mode 2: the newest reaction reduced against the accepted ones; false when
// it depends on them. `commitindependent` then keeps it for later tests.
bool newindr(Run& run, const std::array<long long, maxnem + 1>& coef,
             std::array<long long, maxnem + 1>& reduced);
void commitindependent(Run& run, const std::array<long long, maxnem + 1>& reduced);
// Mode 2: whether a sub-system may still give reactions, and how many are
// wanted from it once those inside it are counted.
bool calclnir(Run& run, const BitSet2& subsystem, const int* members, int nmembers, bool fullsystem,
              int& wanted, int& inside);

// Row position of an end-member by name among 1..nem, 0 when absent.
int emnumber(const Run& run, std::string_view name);

// The composition matrix of the search in list syntax, for the -ic file.
void printcompositiondump(Run& run);

}  // namespace sm
