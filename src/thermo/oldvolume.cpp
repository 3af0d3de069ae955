#include <cmath>

#include "thermo/constants.h"
#include "thermo/energy_terms.h"
#include "thermo/realmath.h"

namespace sm {

// The oldest form of the dataset: a Murnaghan equation with a bulk modulus
// linear in T, on a volume expanded by alpha0 and alpha1.
void oldvolumeat(const TdRow& row, real T, real& kT, real& Vt) {
    const real alpha0 = row[8], alpha1 = row[9], k = row[11], dk = row[13];
    kT = k + dk * (T - Tr);
    Vt = row[tdV] * (1 + alpha0 * ((T - Tr) - 2 * alpha1 * (std::sqrt(T) - sqrtTr)));
}

real oldvdp(const TdRow& row, real P, real T) {
    const real kprime = row[12];
    real kT, Vt;
    oldvolumeat(row, T, kT, Vt);
    return kT * Vt * realpow(1 + kprime * Pr / kT, 1 / kprime) *
           (realpow(1 + kprime * P / kT, 1 - 1 / kprime) -
            realpow(1 + kprime * Pr / kT, 1 - 1 / kprime)) /
           (kprime - 1);
}

}  // namespace sm
