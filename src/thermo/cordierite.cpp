#include <cmath>

#include "thermo/constants.h"
#include "thermo/energy_terms.h"
#include "thermo/fluids/fluids.h"

namespace sm {

// H2O and CO2 held in the channels of cordierite, in equilibrium with a fluid
// of the row's x(H2O) and x(CO2): the empty-channel energy lowered by the
// filling.
real cordieriteg(const TdRow& row, std::string_view name, real P, real T, const GemContext& cx) {
    if (!cx.crdterm || (name != "crd" && name != "fcrd")) return 0;
    const real xco2 = row[tdxco2], xh2o = row[tdxh2o];
    if (!(xh2o > 0) && !(xco2 > 0)) return 0;
    if (!(P > 0)) energyfail(name, "P <= 0 in the fluid equation of state");
    const FluidContext fx{cx.newds, name, cx.io, cx.printlevel};
    const real RT = Rgas * T;
    real H = 1;
    if (xh2o > 0) {
        const real dG = (cx.dsmode == -1 ? 41.79L : 42.84L) - 0.109L * T -
                        0.0083L * ((T - Tr) - T * std::log(T / Tr));
        const real K = std::exp(-dG / RT);
        real V, G;
        h2oeos(V, G, P, T, fx);
        H += xh2o * std::exp(G / RT) / K;
    }
    if (xco2 > 0) {
        const real K = std::exp(12.73L - 1930 / T);
        real V, G;
        co2eos(V, G, P, T, fx);
        H += xco2 * std::exp(G / RT) / K;
    }
    return -RT * std::log(H);
}

}  // namespace sm
