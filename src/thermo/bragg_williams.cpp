#include <cmath>

#include "thermo/constants.h"
#include "thermo/energy_terms.h"

namespace sm {

namespace {

struct BraggWilliams {
    real Hd, Wd, F;
    int n;
};

BraggWilliams bwparameters(const TdRow& row, real P) {
    return {row[tdbwdH] + row[tdbwdV] * P, row[tdbwW] + row[tdbwWv] * P, row[tdbwfac],
            static_cast<int>(std::lround(row[tdbwn]))};
}

// dG/dQ of the ordering, up to a positive factor: it falls from Hd - Wd at
// full disorder towards minus infinity at full order.
real bwslope(const BraggWilliams& w, real Q, real T) {
    const real n = w.n;
    const real m = n / (n + 1);
    if (w.F < 0)
        return w.Hd + (2 * Q - 1) * w.Wd +
               m * Rgas * T *
                   (std::log(n * (1 - Q) / (1 + n * Q)) - w.F * std::log((1 - Q) / (n + Q)));
    return w.Hd + (2 * Q - 1) * w.Wd +
           m * w.F * Rgas * T * std::log(n * (1 - Q) * (1 - Q) / ((1 + n * Q) * (n + Q)));
}

real bwq(const BraggWilliams& w, real T) {
    constexpr real lo0 = 0.0000001L, hi0 = 0.9999999L;
    if (bwslope(w, hi0, T) > 0) return hi0;
    if (bwslope(w, lo0, T) < 0) return lo0;
    real lo = lo0, hi = hi0, Q = 0.5L;
    for (int step = 0; step < 20; ++step) {
        const real f = bwslope(w, Q, T);
        if (std::fabs(f) <= 0.001L) return Q;
        if (f > 0)
            lo = Q;
        else
            hi = Q;
        Q = (lo + hi) / 2;
    }
    return Q;
}

}  // namespace

real braggwilliamsq(const TdRow& row, real P, real T) { return bwq(bwparameters(row, P), T); }

// Bragg-Williams ordering on two sites in the ratio 1:n.
real braggwilliamsgord(const TdRow& row, real P, real T) {
    const BraggWilliams w = bwparameters(row, P);
    const real Q = bwq(w, T);
    const real n = w.n;
    const real H = w.Hd + (w.Wd - w.Hd) * Q - w.Wd * Q * Q;
    const real X = 1 + n * Q, Y = n * (1 - Q), Z = 1 - Q, U = n + Q, n1 = n + 1;
    real S;
    if (w.F < 0)
        S = -(Rgas / n1) * (X * std::log(X / n1) + Y * std::log(Y / n1) -
                            w.F * (n * Z * std::log(Z / n1) + n * U * std::log(U / n1)));
    else
        S = -(Rgas * w.F / n1) * (X * std::log(X / n1) + n * Z * std::log(Z / n1) +
                                  Y * std::log(Y / n1) + n * U * std::log(U / n1));
    return H - T * S;
}

}  // namespace sm
