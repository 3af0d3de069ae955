#pragma once
// The damped Newton solver: truncated singular value decomposition for the
// direction, a safeguarded line search for the step, and the limits of the
// box, of the models' linear limits and of the site fractions.
#include "run.h"
#include "solver/nlesystem.h"
#include "solver/solverstate.h"

namespace sm {

// Results of nle.
enum NleResult : int {
    nlesolved = 0,
    nledxstop = 1,       // step too small away from a solution
    nleoverit = 2,       // iteration limit
    nlenointerval = 4,   // line search ran out finding an interval
    nlenovalue = 5,      // line search ran out inside the interval
    nlenotreduced = 6,   // three steps in a row not reduced
    nleslim = 7,         // no room to move: the limit of the step too small
    nleillegalstart = 9,
    nlesoftfail = 10     // a trial point failed in a run that tolerates it
};

// Solves the system from the current run.solver.x, leaving the last point
// reached in x. True when result is 0.
bool nle(Run& run, NleSystem& sys, int& result);

// The pieces, for the line search and for tests.
// Residuals (and Jacobian) at x into the work arrays; false: not legal.
bool evaluate(Run& run, NleSystem& sys, const NleVector& x);
// One trial point at x - step * dx. `which`: 1 first trial, 2 at the limit,
// 4 extension, 5 interval. True when a convergence test holds there.
bool fn(Run& run, NleSystem& sys, real step, real& f, real& slope, int which);
// Direction, predicted slope and limit of the step for one iteration.
void startup(Run& run, NleSystem& sys);
// The step along the direction; true when a convergence test holds at it.
bool steplength(Run& run, NleSystem& sys, real& step, int& status);
// Largest step keeping x - slim * dx legal, and the kind of bound met.
void findlimit(Run& run, NleSystem& sys, real& slim, int& accessibility);
// The two stationary points of the cubic through (a, fa) and (b, fb) with
// slopes sa and sb.
void cubic(real a, real fa, real sa, real b, real fb, real sb, real& r1, real& r2);

// The finite-difference check of the Jacobian (print levels 3 and 4), and
// its replacement by finite differences (print level 5).
void jacobiancheck(Run& run, NleSystem& sys, const NleVector& x);
bool fdjacobian(Run& run, NleSystem& sys, const NleVector& x);

}  // namespace sm
