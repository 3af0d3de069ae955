#pragma once
// Laying out one entry of the vector of unknowns: its scaling onto the box
// 0..1, the yardstick of a step, and how closely its bounds may be met.
// Also the box test and the true value of an entry, which every residual
// routine needs.
#include "solver/solverstate.h"

namespace sm {

// Pressure (kbar) at index 1 in the window P1..P2.
void setunknownP(NleTables& t, real P1, real P2);
// Temperature (kelvin) at index 2 in the window T1..T2.
void setunknownT(NleTables& t, real T1, real T2);
// A compositional variable with range lo..hi; a bound at which a site
// fraction becomes zero may not be reached.
void setunknowncomp(NleTables& t, int i, real lo, real hi, bool lozerosf, bool hizerosf);
// A mode, held as mode * phi: a mode of -0.25 is 0 in the box, 1.25 is 1.
void setunknownmode(NleTables& t, int i, real phi);

// The scaling of a mode.
constexpr real modescale = 0.6666667L;
constexpr real modeoffset = 0.1666667L;

// The box test of a scaled vector: each active entry must lie in 0..1, and
// strictly inside at a bound coded accinaccessible. False with `bad` the
// first entry that fails (NaN fails too).
bool inbox(const NleTables& t, const NleVector& x, int& bad);

// The true value of entry i of a scaled vector.
inline real truevalue(const NleTables& t, const NleVector& x, int i) {
    return t.active[i] ? (x[i] - t.offset[i]) / t.scale[i] : x[i];
}

// Puts x[i] into the box form for an active entry: offset + scale * v.
inline real scaledvalue(const NleTables& t, real v, int i) {
    return t.active[i] ? t.offset[i] + t.scale[i] * v : v;
}

}  // namespace sm
