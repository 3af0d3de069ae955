#pragma once
// The working tables of one intersection: its reactions, their roots at
// each value of the listed axis, and which of those lie in the window and
// cross another reaction's line.
#include <array>
#include <utility>
#include <vector>

#include "reactions/ptxpoint.h"
#include "reactions/reactionstore.h"

namespace sm {

struct IntersectionWork {
    using Flags = std::array<bool, maxlistvalues + 1>;
    int n = 0;
    std::array<int, maxintreactions + 1> reaction{};  // numbers in the store
    std::array<ReactionStore::RootRow, maxintreactions + 1> v1{}, v2{};
    std::array<Flags, maxintreactions + 1> in1{}, in2{}, cross1{}, cross2{};
    std::vector<real> list;  // the listed axis, 1-based
    int nlist = 0;

    real root(int r, int which, int j) const { return which == 1 ? v1[r][j] : v2[r][j]; }
    bool in(int r, int which, int j) const { return which == 1 ? in1[r][j] : in2[r][j]; }
};

// One crossing turned into a point.
struct Crossing {
    bool found = false;
    std::vector<std::pair<int, int>> lines;  // (reaction in the work, root 1 or 2)
    real x = 0, y = 0;                       // list value, solved value
    bool converged = false;
};

// Looks for pairs of lines that change order between neighbouring list
// values; true when any does.
bool crossingsearch(Run& run, IntersectionWork& work);
// Consumes the first crossing left and refines it into a point.
Crossing calcptx(Run& run, IntersectionWork& work);

// Schreinemakers test of an invariant point of intersection i: false when
// some reaction shows an assemblage of the point to be unstable there.
bool stablepoint(Run& run, int i, const PtxPoint& p);
// The head of a point and, for a stable one, the bundle of its reactions
// in order of slope with the sides on which each is stable.
void printpoint(Run& run, int i, const Crossing& c, const IntersectionWork& work, const PtxPoint& p,
                bool stable);
// Uncertainty of a P-T point from the two reactions that fix it.
void intersectionptx(Run& run, int rA, int rB, const PtxPoint& p, real& sdP, real& sdT, real& cor);
// Stability of the reactions that no printed point holds.
void rstable(Run& run, const std::vector<bool>& shown);

// Gibbs energy of reaction n at a point.
real dGat(Run& run, int n, const PtxPoint& p);

}  // namespace sm
