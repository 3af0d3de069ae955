#pragma once
// What the solver sees of a calculation: a residual routine with its
// Jacobian, and the watched site fractions of the activity models. The
// solver knows nothing of thermodynamics; equilibrium equations, the state of
// order of a phase, or any other square system plug in here.
#include "solver/solverstate.h"

namespace sm {

class NleSystem {
public:
    virtual ~NleSystem() = default;

    // Residuals F[1..n] and, with wantJ, the Jacobian J[r][k] for the k-th
    // active entry of x, at the scaled vector x (all nx + nm entries).
    // False: x is not a legal point (outside the box, a site fraction or
    // activity not positive ...). Set solver.softillegal first to make that
    // a failed calculation rather than a fault of the starting guesses.
    virtual bool nlefunc(const NleVector& x, NleMatrix& J, NleVector& F, bool wantJ) = 0;

    // Watched site-fraction term `e` at the true variables v[1..nx].
    virtual real sfterm(const SfWatch& e, const NleVector& v);
    // Its rate of change along the true direction w[1..nx], the sum of
    // w[j] * d(term)/dv[j], formed from the products that make up the term.
    // zerofactor: a factor of the term is exactly zero there.
    virtual real sftermslope(const SfWatch& e, const NleVector& v, const NleVector& w,
                             bool& zerofactor);

    // Called once a solve ends with result 0, with the solution in x: the
    // place for the propagation of uncertainties through the solution.
    virtual void solved() {}
};

}  // namespace sm
