#pragma once
// What setupphases works out from the phase records after the read.
#include "ax/phases.h"

namespace sm {

struct Run;

// Drops the variables whose starting guess is exactly 0 from the phase, and
// with them the end-members and site fractions that can no longer be
// present.
void contract(AxPhase& ph);

// Lower and upper limits, scales and hard bounds of every variable, and the
// oblique limits and covered site fractions of the phase.
void setlimits(AxPhase& ph);
// Adds the oblique limit of site fraction s of the phase, if it is one.
void setvarlim(AxPhase& ph, int s);

// The variables of the phase at their guesses, 1-based in x[1..nxv].
void guessvector(const AxPhase& ph, real* x);
// Every site fraction of the phase positive at its guesses.
bool checksf(const AxPhase& ph);
// The ideal-mixing term of end-member j at site fractions sf[1..nsf].
real idealmix(const AxPhase& ph, int j, const real* sf);

// Starting guesses inside their limits, site fractions positive at them
// (phases without order variables), and the check lines of the end-members.
void checkguesses(Run& run, const AxPhase& ph);
void checkcoding(Run& run, const AxPhase& ph);
void checkguesslimits(const AxPhase& ph);

// Fluid and aqueous phases get their species and interaction lists; other
// phases must not use fluid species names.
void classifyfluid(AxPhase& ph);
// The species of the mixed fluid, 1-based; 0 if not one.
int fluidspecies(const sstring& name);
// W of two fluid species from the fixed table, kJ.
real fluidw(int i, int j);

}  // namespace sm
