#pragma once
// Chemical potentials of the end-members of a calculation, and the
// thermodynamic properties of its phases: G, S, V, H and density, from the
// potentials at the point and a little above it in P and T.
#include <array>
#include <vector>

#include "console/types.h"
#include "thermo/limits.h"

namespace sm {

struct Run;

// One phase of the calculation layout: an a-x phase (its end-members
// together in emname) or a pure phase (one position).
struct PhaseProperties {
    bool pure = false;
    int phase = 0;           // number in prec1, or in prec0 for a pure phase
    int first = 0, nem = 0;  // emname positions first .. first + nem - 1
    real G = 0, S = 0, V = 0, H = 0;  // kJ, kJ/K, kJ/kbar, kJ per formula unit
    real density = 0;                 // g/cm3
    std::array<real, 16> rtlna{};     // RT ln a of each end-member, kJ
    std::array<real, 16> gem{};       // G of each end-member alone, kJ
};

// mu[i] = G[i] + RT ln a[i] for the end-members 1..nem of the layout at the
// true values x, each row told the fluid's x(CO2) and x(H2O) first; the
// position `omit` (0 for none) is left out, G and mu 0.
void calcmu(Run& run, int omit, const real* x, real* G, real* mu, real P, real T, real xco2, real xh2o);

// The properties of every phase of the layout, in emname order, into
// `props`; S and V by forward differences of 0.0002 K and 2e-05 kbar.
void calcgphase(Run& run, int omit, const real* x, real P, real T, real xco2, real xh2o,
                std::vector<PhaseProperties>& props);

}  // namespace sm
