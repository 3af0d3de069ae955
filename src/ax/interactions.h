#pragma once
// The non-ideality of a phase at one P and T: each interaction energy W of
// its pair list and each size parameter alpha of its end-members, with
// their slopes in T and P. File phases take W = a + bT + cP and
// alpha = a + bT + cP as written; mixed fluids and aqueous phases take them
// from the volumes of the fluid species, made linear about P, T.
#include <array>

#include "ax/phases.h"
#include "console/types.h"
#include "thermo/limits.h"

namespace sm {

struct Run;

struct Interactions {
    std::array<real, maxgterms + 1> w{}, wb{}, wc{};        // W, dW/dT, dW/dP by pair
    std::array<real, maxemperphase + 1> al{}, alb{}, alc{};  // alpha, d/dT, d/dP by end-member
};

void interactionsat(Run& run, const AxPhase& ph, real P, real T, Interactions& it);

}  // namespace sm
