#include "thermo/fluids/fluids.h"

namespace sm {

namespace {

// Critical points (K, kbar) of the gases taken by corresponding states.
struct Critical {
    const char* name;
    real Tc, Pc;
};
constexpr Critical gases[] = {
    {"CH4", 190.6L, 0.046L}, {"H2", 41.2L, 0.0211L}, {"CO", 132.9L, 0.035L},
    {"H2S", 373.2L, 0.0893L}, {"S2", 259.6L, 0.08L},
};

}  // namespace

real speciesvolume(std::string_view name, real P, real T, const FluidContext& fx) {
    real V = 0, rtlnf = 0;
    if (name == "H2O") {
        h2oeos(V, rtlnf, P, T, fx);
        return V;
    }
    if (name == "CO2") {
        co2eos(V, rtlnf, P, T, fx);
        return V;
    }
    for (const auto& g : gases)
        if (name == g.name) {
            corrstates(V, rtlnf, P, T, g.Pc, g.Tc);
            return V;
        }
    return 0;
}

}  // namespace sm
