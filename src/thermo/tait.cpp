#include <cmath>

#include "console/format.h"
#include "console/io.h"
#include "thermo/constants.h"
#include "thermo/energy_terms.h"
#include "thermo/realmath.h"

namespace sm {

// The modified Tait form: V(P) at constant T follows a Tait equation whose
// parameters a, b, c come from k0, k0' and k0''. Solids carry the thermal
// pressure of one Einstein oscillator; melts scale V0 by exp(alpha (T - Tr))
// and soften k0 linearly with T.
real taitvdp(const TdRow& row, std::string_view name, real P, real T, bool melt,
             const GemContext& cx, GemParts& parts) {
    const real V = row[tdV];
    real k0 = row[tdk0];
    const real kappa = row[tdk0p], kappa2 = row[tdk0pp];
    if (melt) {
        k0 += row[tddkdT] * (T - Tr);
        if (!(k0 > 0)) energyfail(name, "bulk modulus of the melt <= 0 at this T");
    }
    real a, b, c;
    if (kappa2 == 0) {
        a = 1;
        b = kappa / k0;
        c = 1 / kappa;
    } else {
        a = (1 + kappa) / (1 + kappa + k0 * kappa2);
        b = (kappa + kappa * kappa - k0 * kappa2) / (k0 * (1 + kappa));
        c = (1 + kappa + k0 * kappa2) / (kappa + kappa * kappa - k0 * kappa2);
    }
    const real N = (1 - a) + a * realpow(1 + b * Pr, -c);
    if (melt) {
        return V * std::exp(row[tdalpha] * (T - Tr)) *
               ((1 - a) * (P - Pr) +
                a * (realpow(1 + b * Pr, 1 - c) - realpow(1 + b * P, 1 - c)) / (b * (c - 1))) /
               N;
    }
    const real theta = row[tdtheta];
    const real u0 = theta / Tr;
    const real eu0 = std::exp(u0);
    const real xi0 = u0 * u0 * eu0 / ((eu0 - 1) * (eu0 - 1));
    real Pth = row[tdalpha] * k0 * theta / xi0 * (1 / (std::exp(theta / T) - 1) - 1 / (eu0 - 1));
    if (b * Pth > 1) {
        // Above this thermal pressure the Tait integral would need a power of a
        // negative number: the row has no volume at these conditions.
        if (!cx.regression) {
            if (cx.io)
                putstr(*cx.io, 1,
                       std::string(name) + "  P = " + real2str(P, 5, false) + ", T = " +
                           real2str(T - celsius, 2, true) + ", Pth = " + real2str(Pth, 6, false) +
                           ", a = " + real2str(a, 6, false) + ", b = " + real2str(b, 6, false) +
                           ", c = " + real2str(c, 6, false),
                       1, chscreen);
            energyfail(name, "b Pth > 1, log(-ve)");
        }
        Pth = 0.001L - 0.999L / b;
        parts.pthrepaired = true;
    }
    return V *
           ((1 - a) * (P - Pr) +
            a * (realpow(1 + b * (Pr - Pth), 1 - c) - realpow(1 + b * (P - Pth), 1 - c)) /
                (b * (c - 1))) /
           N;
}

}  // namespace sm
