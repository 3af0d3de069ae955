#pragma once
// Order-disorder phases: their order variables are not free but take the
// values that put the phase at internal equilibrium at the given P, T and
// bulk composition of the phase. Also the activities with their
// uncertainties that the rock calculations use.
#include "console/types.h"

namespace sm {

struct Run;

// Solves the internal equilibrium of a-x phase `phase` (number in prec1) at
// P (kbar) and T (K), from the guesses of its variables: one equation per
// independent reaction among its end-members, the order variables the
// unknowns, the other variables fixed. True: solved, and the order
// variables' guesses hold the solution. False: every guess as it was. The
// solver's tables are borrowed and put back, also when the solve fails; no
// other table of the run changes.
bool calcq(Run& run, int phase, real P, real T);

// A legal start for the order variables of `phase`: with the guesses legal
// (every site fraction positive) nothing is drawn; otherwise the order
// variables are drawn at random within their limits, at most 1001 times.
// With `solve`, each legal start is also solved by calcq, and a failed
// solve counts as an illegal start. wasillegal: the guesses were not legal
// on entry. True when a legal (and, with solve, solved) state was found.
bool findlegalq(Run& run, int phase, bool solve, bool& wasillegal, real P, real T);

// Activities a[1..nem] and their standard deviations sda[1..nem] of the
// end-members of `phase` at its variables x[1..nxv], from the ideal-mixing
// terms, the non-ideality at P, T, and the variables' sd (by a perturbation
// of 0.001). With wuncertainty the sd of each W adds to sda. An excluded
// end-member, and every end-member when a site fraction is not positive,
// gets a = 0 and sda = 0.
void calcactsd(Run& run, int phase, const real* x, real* a, real* sda, real P, real T,
               bool wuncertainty);

}  // namespace sm
