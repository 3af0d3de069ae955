#pragma once
// Powers for the energy code. The library's powl is correct to the last bit
// of the 80-bit format but many times slower than exp(y ln x), whose error of
// a few units in the last place is far below what any energy needs.
#include <cmath>

#include "console/types.h"

namespace sm {

// x^y for x > 0; 0 for x = 0 and y > 0; NaN for x < 0, which the energy
// code's final check turns into a fatal stop naming the end-member.
inline real realpow(real x, real y) { return std::exp(y * std::log(x)); }

// x^n by repeated multiplication.
inline real intpow(real x, int n) {
    real result = 1;
    real factor = n < 0 ? 1 / x : x;
    for (unsigned m = n < 0 ? -n : n; m != 0; m >>= 1) {
        if (m & 1u) result *= factor;
        factor *= factor;
    }
    return result;
}

}  // namespace sm
