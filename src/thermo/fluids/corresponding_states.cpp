#include <cmath>

#include "thermo/constants.h"
#include "thermo/fluids/fluids.h"

namespace sm {

// A virial-like equation in reduced variables, for gases known by their
// critical point alone.
void corrstates(real& V, real& rtlnf, real P, real T, real Pc, real Tc) {
    const real RT = 0.0083144L * T;
    const real sqrtTc = std::sqrt(Tc), sqrtPc = std::sqrt(Pc);
    const real sqrtT = std::sqrt(T), sqrtP = std::sqrt(P);
    const real a = (5.45963e-05L * Tc - 8.6392e-06L * T) * Tc * sqrtTc / Pc;
    const real b = 0.000918301L * Tc / Pc;
    const real c = (-3.30558e-05L * Tc + 2.30524e-06L * T) / (Pc * sqrtPc);
    const real d = (6.93054e-07L * Tc - 8.38293e-08L * T) / (Pc * Pc);
    V = RT / P + b - a * Rgas * sqrtT / ((RT + 2 * b * P) * (RT + b * P)) + c * sqrtP + d * P;
    rtlnf = RT * std::log(1000 * P) + b * P +
            (a / (b * sqrtT)) * (std::log(RT + b * P) - std::log(RT + 2 * b * P)) +
            (2.0L / 3) * c * P * sqrtP + (d / 2) * P * P;
}

}  // namespace sm
