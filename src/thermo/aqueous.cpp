#include <cmath>

#include "thermo/energy_terms.h"
#include "thermo/fluids/fluids.h"

namespace sm {

// Aqueous species: a density model of the solvation energy on the volume of
// water, with the Debye-Hueckel term of a charged species.
real aqueousg(const TdRow& row, std::string_view name, real P, real T, const GemContext& cx) {
    const real aqz = row[tdaqz];
    if (aqz == 0) return 0;
    if (!(P > 0)) energyfail(name, "P <= 0 in the fluid equation of state");
    const FluidContext fx{cx.newds, name, cx.io, cx.printlevel};
    real Vh, rtlnf;
    h2oeos(Vh, rtlnf, P, T, fx);
    const real Tm = T > 500 ? 500 : T;
    real G = aqz * (-27.091L + 0.09086L * T + 350.42L * (T / Tm) * std::log(1.81799456L / Vh) -
                    15.8L * P);
    if (!cx.regression) {
        G += 0.03354L * T;
        if (row[tdaqcharge] != 0 && row[tdaqsum] > 0)
            G += 0.019144612724L * T *
                 dhsolute(P, T, row[tdxco2], row[tdxh2o], row[tdaqsum],
                          row[tdaqsize] * row[tdaqcharge], fx);
    }
    return G;
}

}  // namespace sm
