#pragma once
// Small integer matrices for reaction arithmetic. Entries are 64-bit and
// every elimination divides rows by their gcd, so the numbers stay those of
// the formulae rather than growing with the size of the system.
#include <array>

#include "reactions/reactionstore.h"

namespace sm {

// Rows are components (at most maxcomp), columns end-members of one
// assemblage or sub-system (at most maxenumerated + 1); both 1-based.
struct IntMatrix {
    int nrows = 0;
    int ncols = 0;
    std::array<std::array<long long, maxenumerated + 2>, maxcomp + 1> a{};
};

// gcd of a[row][from..to]; 0 when they are all 0.
long long rowgcd(const IntMatrix& m, int row, int from, int to);
// Divides a[row][from..to] by their gcd when it is above 1.
void reducerow(IntMatrix& m, int row, int from, int to);
// Rank by exact elimination; the matrix is used as working space.
int integerrank(IntMatrix& m);

}  // namespace sm
