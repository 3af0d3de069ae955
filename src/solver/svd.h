#pragma once
// Singular value decomposition of a real matrix in 80-bit arithmetic: the
// Householder reduction to bidiagonal form and the implicitly shifted QR sweeps
// of Golub and Reinsch, with the singular values sorted into ascending order.
// Used for the Newton direction of the equilibrium solver and for the least
// squares of the average-PT and regression calculations.
#include <cstddef>

#include "console/io.h"
#include "console/types.h"

namespace sm {

// A matrix held by rows with a fixed row stride, indexed from 1 like every
// table of the program (row 0 and column 0 are never touched).
struct MatrixRef {
    real* p = nullptr;
    int stride = 0;
    real& operator()(int i, int j) const {
        return p[static_cast<std::ptrdiff_t>(i) * stride + j];
    }
};

// Columns the decomposition accepts; rows are limited only by the caller's store.
constexpr int maxsvdcols = 400;

// Sweeps allowed for one singular value before it is taken as it stands.
constexpr int svdmaxsweeps = 31;

// Decomposes the m by n matrix held in `a` as a = U diag(w) V^T. On return `a`
// holds U (m by n, orthonormal columns where w > 0), w[1..n] the singular
// values in ascending order (w[n] the largest) and `v` holds V (n by n); the
// columns of U and V follow their singular values. m may be smaller than n:
// the missing rows count as zero and the extra singular values are 0.
// A value that has not settled after 31 sweeps gets the line
// "too many iterations (k = <k>)" on the console of `io` (when given) and the
// work goes on with it as it stands. Returns the number of such values.
int svd(MatrixRef a, int m, int n, real* w, MatrixRef v, Io* io);

}  // namespace sm
