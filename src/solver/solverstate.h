#pragma once
// The state of the non-linear solver: the vector of unknowns with its scaling
// and limits, the tolerances, the settings a caller gives it for one run, the
// figures of the last solve, and the work arrays of the iteration.
//
// Every unknown is held scaled, x = offset + scale * v with v its true value,
// so that its legal range is 0..1 and one box check covers pressure,
// temperature, compositional variables and modes alike. An inactive entry is
// fixed and held as its true value.
#include <array>
#include <memory>

#include "console/types.h"
#include "thermo/limits.h"

namespace sm {

// Vectors and matrices of the solver, indexed from 1. Rows of a Jacobian are
// equations, columns the active unknowns in the order of x.
using NleVector = std::array<real, maxnx + 1>;
using NleMatrix = std::array<std::array<real, maxnx + 1>, maxnx + 1>;

// How closely a bound of the box may be approached by a step (the codes of
// limlo, limhi and accessibility).
enum Accessibility : int {
    accwindow = 0,     // the window of P or T
    acccomp = 1,       // the range of a compositional variable
    accmode = 2,       // a mode
    acccap = 3,        // the cap on the length of a step
    accinaccessible = 4  // a bound where a site fraction or linear limit vanishes
};

// A linear limit of an activity model on the true compositional variables:
// constant + sum(coef[j] * v[j]) must stay positive. Coefficients are the
// rationals num/den over j = 1..nx, the constant sits at nx + 1.
struct VarLim {
    VarLim() { den.fill(1); }
    std::array<short, maxnx + 2> num{};
    std::array<short, maxnx + 2> den;
};

// A site fraction that is not a simple bound of one variable, watched while
// a step is chosen: term `term` of phase `phase`, whose variables occupy
// x[xstart .. xstart + nvar - 1]. The caller fills these and evaluates them
// through NleSystem.
struct SfWatch {
    int phase = 0;
    int term = 0;
    int xstart = 0;
    int nvar = 0;
    sstring phasename;
};

// The tables one calculation lays out: the unknowns, their limits, the
// tolerances and the run settings. A caller that borrows the solver for a
// calculation of its own (the state of order of one phase) copies these and
// puts them back afterwards.
struct NleTables {
    // The unknowns: 1 P, 2 T, then compositional variables up to nx, then the
    // nm modes.
    int nx = 0;
    int nm = 0;
    NleVector x{};
    NleVector scale{};
    NleVector offset{};
    NleVector xstep{};
    std::array<bool, maxnx + 1> active{};
    std::array<int, maxnx + 1> limlo{};
    std::array<int, maxnx + 1> limhi{};
    std::array<sstring, maxnx + 1> xname{};
    real phi = 1;  // bulk normalisation: a mode unknown holds mode * phi

    // Linear limits of the models and the watched site fractions.
    int nvarlim = 0;
    std::array<VarLim, maxvarlims + 1> varlim{};
    int nsfterm = 0;
    std::array<SfWatch, maxwatchedsf + 1> sfterm{};

    // Tolerances, replaced all four at once by the script word convergence.
    real esize = 1e-8L;    // largest absolute residual
    real fsize = 1e-6L;    // Euclidean norm of the residuals
    real dxstop = 0.005L;  // largest step in units of xstep
    real modesum = 1e-6L;  // sum of modes against 1, tested after the solve

    // What kind of run this is, set by the caller.
    int printlevel = 1;         // 0 quiet .. 4 verbose; 5 finite-difference Jacobian
    bool dogmin = false;        // within a Gibbs energy minimisation search
    int dogminprintlevel = 0;
    bool montecarlo = false;    // more than one Monte Carlo run was asked for
    int batch = 0;              // batch and run numbers, for the "illegal start" line
    int runno = 0;
};

// Work arrays of one solve, allocated once with the solver state.
struct NleWork {
    NleMatrix J{};       // Jacobian at the last evaluation
    NleMatrix U{};       // copy of J, then U of its decomposition
    NleMatrix V{};
    NleVector F{};       // residuals at the last evaluation
    NleVector W{};       // singular values, ascending
    NleVector dx{};      // Newton direction, by active column
    NleVector xt{};      // trial vector
    NleVector xsave{};   // for the finite-difference Jacobian
    NleVector Fsave{};
    NleVector Fnew{};
    NleVector v{};       // true values and direction of the nx block, for the limits
    NleVector w{};
    NleVector sx{};
    NleMatrix Jdummy{};  // Jacobian slot of evaluations without one
};

struct SolverState : NleTables {
    SolverState() : work(std::make_unique<NleWork>()) {}

    // Fixed for one solve.
    int n = 0;                                 // active entries
    std::array<int, maxnx + 1> activelist{};   // x index of active column k
    int overit = 25;                           // iteration limit

    // Counters: fncalls is 1 at the first evaluation of an iteration, which
    // tells the residual routine's printing that it is the main point.
    int iteration = 0;
    int fncalls = 0;
    int fncount = 0;

    // The last trial point and the accepted one.
    bool esizeok = false, fsizeok = false, dxok = false, dxconverged = false;
    const char* convtag = "";   // "ef", "f", "e" or "dx": the test that held
    real maxe = 1, maxdx = 1, f = 0, slope = 0;

    // The iteration: start value and predicted slope, the limit of the step.
    real f0 = 0, s0 = 0;
    real slim = 0;
    int accessibility = accinaccessible;
    int status = 0;
    int notreduced = 0;   // steps in a row that were not reduced
    bool lastgood = true; // the accepted step passed the tests

    // Singular value data of the last factorisation.
    int k0 = 1;
    bool singular = false;
    real cond = 0;

    // A trial point that failed softly, or any non-finite residual, ends the
    // solve with result 10.
    bool softfailed = false;
    // Set by the residual routine before it returns false: the point is not
    // legal but that is no fault of the run (result 10, or 9 at the start).
    bool softillegal = false;
    // The last evaluation held a non-finite residual or Jacobian entry.
    bool nonfinite = false;

    std::unique_ptr<NleWork> work;
};

}  // namespace sm
