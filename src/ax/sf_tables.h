#pragma once
// The print of a phase's variables and site fractions that comes before a
// stop or a refusal on a site fraction that is not positive.
#include "ax/phases.h"

namespace sm {

struct Run;

// Rows of the phase's variable names, "x =  " and their values at
// x[xo..], then the site-fraction names, "sf = " and the values sf[1..nsf];
// channels screen, output and log.
void printsftables(Run& run, const AxPhase& ph, const real* x, int xo, const real* sf);

}  // namespace sm
