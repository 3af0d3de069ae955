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

// Left uninitialised on purpose: it is made afresh at every evaluation,
// and only the entries of the phase's pairs and end-members are written.
// The slopes point at the phase's own b and c, or at the linearised ones of
// a fluid or aqueous phase held here.
struct Interactions {
    std::array<real, maxgterms + 1> w;         // W by pair
    std::array<real, maxemperphase + 1> al;    // alpha by end-member
    const real *wb, *wc;                       // dW/dT, dW/dP by pair
    const real *alb, *alc;                     // dalpha/dT, dalpha/dP by end-member
    std::array<real, maxgterms + 1> fwb, fwc;  // a fluid's own
    std::array<real, maxemperphase + 1> falb, falc;
};

// Whether any of the n slopes s[1..n] is not zero.
inline bool moves(const real* s, int n) {
    for (int i = 1; i <= n; ++i)
        if (s[i] != 0) return true;
    return false;
}

void interactionsat(Run& run, const AxPhase& ph, real P, real T, Interactions& it);

}  // namespace sm
