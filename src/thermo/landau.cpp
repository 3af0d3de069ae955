#include <cmath>

#include "thermo/constants.h"
#include "thermo/energy_terms.h"
#include "thermo/realmath.h"

namespace sm {

// Landau tricritical ordering: Q falls to 0 at Tc, which rises with P by
// Vmax/Smax. The energy is that of disordering from the state at Tr, 1 bar.
real landaugord(const TdRow& row, std::string_view name, real P, real T, int dsmode) {
    const real Tc = row[tdTc], Smax = row[tdSmax], Vmax = row[tdVmax];
    if (!(Tc > Tr)) energyfail(name, "Landau Tc <= 298.15 K");
    const real Q0 = std::sqrt(1 - Tr / Tc);
    const real Tcp = Tc + Vmax * P / Smax;
    real Q = 0;
    real H;
    if (dsmode == -1) {
        if (T <= Tcp) Q = std::sqrt(1 - T / Tcp);
        const real kprime = row[12];
        real kT, Vt;
        oldvolumeat(row, T, kT, Vt);
        const real Vtratio = Vt / row[tdV];
        H = Smax * (Q0 * Tc * (1 - Q0 * Q0 / 3) - Q * Tcp * (1 - Q * Q / 3)) +
            Vmax * kT * Vtratio * Q0 * (realpow(1 + kprime * P / kT, 1 - 1 / kprime) - 1) /
                (kprime - 1);
    } else {
        if (T <= Tcp) Q = std::sqrt((Tcp - T) / Tc);
        H = Tc * Smax * ((Q0 - Q) - (Q0 * Q0 * Q0 - Q * Q * Q) / 3) + Vmax * P * (Q0 - Q);
    }
    const real S = Smax * (Q0 - Q);
    return H - T * S;
}

}  // namespace sm
