#pragma once
// Equations of state of fluid end-members: molar volume V (kJ/kbar) and
// RT ln f (kJ, f in bar) at P (kbar) and T (K).
#include <string_view>

#include "console/types.h"

namespace sm {

struct Io;

struct FluidContext {
    bool newds = true;          // Sterner-Pitzer for H2O and CO2, else the compensated cubic
    std::string_view name;      // the end-member asking, for messages
    Io* io = nullptr;           // for the lines before a fatal stop, and print level 5
    int printlevel = 1;
};

void h2oeos(real& V, real& rtlnf, real P, real T, const FluidContext& fx);
void co2eos(real& V, real& rtlnf, real P, real T, const FluidContext& fx);

// Sterner-Pitzer, water (true) or CO2.
void sternerpitzer(bool water, real& V, real& rtlnf, real P, real T, const FluidContext& fx);
// The compensated cubic of the older datasets.
void cubich2o(real& V, real& rtlnf, real P, real T, const FluidContext& fx);
void cubicco2(real& V, real& rtlnf, real P, real T, const FluidContext& fx);
// Its core: V from the start value given, with ln f.
void findVs(real& V, real& lnf, real P, real T, real delta, real Plim, real c, real d, real e,
            real a, real b, const FluidContext& fx);

// Molar volume of a fluid species known by name (H2O, CO2 by their own
// equations, CH4, CO, H2, H2S, S2 by corresponding states); 0 for another.
real speciesvolume(std::string_view name, real P, real T, const FluidContext& fx);

// Corresponding states, with the critical T (K) and P (kbar) of the gas.
void corrstates(real& V, real& rtlnf, real P, real T, real Pc, real Tc);

// The solvent of aqueous species: a H2O-CO2 fluid.
real fluidvol(real P, real T, real xco2, real xh2o, const FluidContext& fx);
real dielectric(real P, real T, real xco2, real xh2o, real V, const FluidContext& fx);
real dhsolute(real P, real T, real xco2, real xh2o, real I, real zz, const FluidContext& fx);

}  // namespace sm
