#include "thermo/fluids/fluids.h"

namespace sm {

// The newer datasets were fitted with the Sterner-Pitzer equation, the older
// ones with the compensated cubic: each dataset takes its own.
void h2oeos(real& V, real& rtlnf, real P, real T, const FluidContext& fx) {
    if (fx.newds)
        sternerpitzer(true, V, rtlnf, P, T, fx);
    else
        cubich2o(V, rtlnf, P, T, fx);
}

void co2eos(real& V, real& rtlnf, real P, real T, const FluidContext& fx) {
    if (fx.newds)
        sternerpitzer(false, V, rtlnf, P, T, fx);
    else
        cubicco2(V, rtlnf, P, T, fx);
}

}  // namespace sm
