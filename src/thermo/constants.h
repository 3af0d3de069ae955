#pragma once
// Units of every thermodynamic routine: kJ, kbar, K, kJ/kbar, kJ/K.
#include "console/types.h"

namespace sm {

constexpr real Rgas = 0.0083144L;  // kJ/K/mol
constexpr real Tr = 298.15L;       // reference temperature, K
constexpr real Pr = 0.001L;        // reference pressure, kbar (1 bar)
constexpr real celsius = 273.15L;  // T(K) = T(C) + celsius

// Derived from Tr as the equations use them, to the digits they are written.
constexpr real sqrtTr = 17.2670205884L;
constexpr real invTr = 0.00335401643468L;
constexpr real invTr2 = 1.12494262441e-05L;
constexpr real invsqrtTr = 0.0579138708314L;
constexpr real Tr2 = 88893.4225L;

}  // namespace sm
