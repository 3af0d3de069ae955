#pragma once
// What the equations tell the user: an illegal point, a mass balance that
// left the reduced system, a system that is not square, and the verbose
// print of the equations at the deepest debugging level.
#include "solver/solverstate.h"

namespace sm {

struct Run;

// "## bad <name> value" on the console for entry i of x.
void reportbadvalue(Run& run, int i);
// "FAILED in nlefunc, at which stage x was:" and the rows of x.
void reportfailedpoint(Run& run, const NleVector& x);
// "** NOT OK" on the console, for a point with a site fraction not positive.
void reportnotok(Run& run);
// A row that the assemblage cannot change is off zero by f: fatal outside a
// Gibbs energy minimisation search, else false (with lines at its print
// level 2 and up).
bool reportoffsystem(Run& run, real f);
// Rows and columns differ: the counts, the composition and x, then fatal.
[[noreturn]] void reportnonsquare(Run& run, const NleVector& x, const NleVector& F);
// Print level 4: activities, row names and the Jacobian, x and the residuals.
void printequations(Run& run, const NleVector& x, const NleMatrix& J, const NleVector& F, bool wantJ);

}  // namespace sm
