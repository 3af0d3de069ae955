#pragma once
// Exponential and natural logarithm in 80-bit arithmetic for the activity
// models, which take one of each per end-member at every evaluation of the
// equations. The library's expl and logl are correct to the last bit but
// several times slower; these are table-driven (64 intervals each) with short
// polynomials, good to a few units in the last place of the 80-bit format,
// far below any digit a result shows. Arguments outside the ordinary range
// (not finite, not positive for the logarithm, beyond +-11000 for the
// exponential, subnormal) go to the library.
#include <cmath>
#include <cstdint>
#include <cstring>

#include "console/types.h"

namespace sm {

namespace explogdetail {

extern const real exptable[64];  // 2^(j/64)
extern const real logtable[49];  // ln((44 + j)/64)
extern const real invtable[49];  // 64/(44 + j)

// The parts of an 80-bit real: 64-bit significand with its integer bit, and
// sign with the biased exponent.
struct Bits {
    std::uint64_t mant;
    std::uint16_t sexp;
};

inline Bits bitsof(real x) {
    Bits b;
    std::memcpy(&b.mant, &x, 8);
    std::memcpy(&b.sexp, reinterpret_cast<const char*>(&x) + 8, 2);
    return b;
}

inline real fromparts(std::uint64_t mant, std::uint16_t sexp) {
    real x = 0;
    std::memcpy(&x, &mant, 8);
    std::memcpy(reinterpret_cast<char*>(&x) + 8, &sexp, 2);
    return x;
}

}  // namespace explogdetail

inline real rexp(real y) {
    using namespace explogdetail;
    if (!(std::fabs(y) < 11000)) return std::exp(y);
    // y = n ln2/64 + r with |r| <= ln2/128; ln2/64 in two parts so that n
    // times the first is exact. n is rounded by adding 1.5 2^63, which
    // leaves it in the low bits of the significand: no conversion of a real
    // to an integer, which costs a change of the x87 control word.
    constexpr real invstep = 92.33248261689365807103517958L;  // 64/ln2
    constexpr real stephi = 12193974156573.0L / 1125899906842624.0L;  // /2^50
    constexpr real steplo = -2.912794802694223629008164501743e-17L;
    constexpr real magic = 13835058055282163712.0L;  // 1.5 2^63
    const real shifted = y * invstep + magic;
    const real nr = shifted - magic;
    const long n = static_cast<long>(bitsof(shifted).mant - 0xC000000000000000ULL);
    const real r = (y - nr * stephi) - nr * steplo;
    const long j = n & 63;
    const long k = n >> 6;
    // exp(r) - 1, Taylor to r^6 (the next term is below 3e-20), in
    // independent pairs.
    const real r2 = r * r;
    const real p = r * ((1 + 0.5L * r) + r2 * ((1.0L / 6 + (1.0L / 24) * r) +
                                              r2 * (1.0L / 120 + (1.0L / 720) * r)));
    const real m = exptable[j] + exptable[j] * p;
    return m * fromparts(0x8000000000000000ULL, static_cast<std::uint16_t>(16383 + k));
}

inline real rlog(real x) {
    using namespace explogdetail;
    if (!(x > 0) || !(x <= 1.18e4932L)) return std::log(x);
    const Bits b = bitsof(x);
    if (b.sexp == 0) return std::log(x);  // subnormal
    // x = f 2^e with f in [sqrt(1/2), sqrt(2)), and c = (44 + j)/64 the
    // nearest point of the table, found from the top bits of the significand:
    // f - c is exact, and r = f/c - 1 small.
    long e = static_cast<long>(b.sexp) - 16383;
    real f = fromparts(b.mant, 16383);
    const std::uint64_t frac = b.mant - 0x8000000000000000ULL;
    int j;
    if (f > 1.414213562373095048801688724L) {
        f *= 0.5L;
        ++e;
        j = static_cast<int>((frac + (1ULL << 57)) >> 58) - 12;
    } else {
        j = static_cast<int>((frac + (1ULL << 56)) >> 57) + 20;
    }
    const real c = static_cast<real>(44 + j) * 0.015625L;
    const real r = (f - c) * invtable[j];
    // ln(1 + r), Taylor to r^9: |r| < 0.0112, the next term is below 3e-21.
    // Evaluated in independent pairs (Estrin) to keep the chain of
    // dependent operations short.
    const real r2 = r * r, r4 = r2 * r2;
    const real q01 = 1 - 0.5L * r, q23 = 1.0L / 3 - 0.25L * r;
    const real q45 = 0.2L - (1.0L / 6) * r, q67 = 1.0L / 7 - 0.125L * r;
    const real q = (q01 + r2 * q23) + r4 * ((q45 + r2 * q67) + r4 * (1.0L / 9));
    const real p = r * q;
    constexpr real ln2hi = 195103586505167.0L / 281474976710656.0L;  // /2^48
    constexpr real ln2lo = 1.688525005076197806790396056775e-15L;
    const real er = static_cast<real>(e);
    return (er * ln2hi + logtable[j]) + (er * ln2lo + p);
}

}  // namespace sm
