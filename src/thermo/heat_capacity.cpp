#include <cmath>

#include "thermo/constants.h"
#include "thermo/energy_terms.h"

namespace sm {

// H and S of heating from Tr to T, as G = H - T S.
real gcppolynomial(const TdRow& row, real T) {
    const real a = row[tdcpa], b = row[tdcpb], c = row[tdcpc], d = row[tdcpd];
    const real sqrtT = std::sqrt(T);
    const real invT = 1.0L / T;
    const real H = a * (T - Tr) + (b / 2) * (T * T - Tr2) - c * (invT - invTr) +
                   2 * d * (sqrtT - sqrtTr);
    const real S = a * std::log(T / Tr) + b * (T - Tr) - (c / 2) * (invT * invT - invTr2) -
                   2 * d * (1.0L / sqrtT - invsqrtTr);
    return H - T * S;
}

}  // namespace sm
