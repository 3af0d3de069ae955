#pragma once
// Activities of the end-members of the a-x phases of a calculation: from the
// composition variables x to the end-member proportions p, the site
// fractions, the ideal-mixing activity, the activity coefficient and the
// activity, with the derivatives of RT ln a by x, T and P that the
// equilibrium equations need. With the end-member G this gives the chemical
// potential mu = G + RT ln a.
//
// Units: kJ, kbar, kelvin. The derivative stores hold d(RT ln a)/dx,
// d(RT ln a)/dT (which includes R ln a_ideal) and d(RT ln a)/dP.
//
// Hot path: calca allocates nothing, uses no strings and no look-ups; every
// table below is sized by the program's limits and allocated once per run.
#include <array>
#include <memory>
#include <vector>

#include "ax/phases.h"
#include "console/types.h"
#include "solver/solverstate.h"
#include "thermo/limits.h"

namespace sm {

struct Run;

// What calca leaves for one a-x phase, by its end-members j = 1..nem, its
// site fractions s = 1..nsf and its variables v = 1..nxv.
struct PhaseActivity {
    int nem = 0, nsf = 0, nxv = 0;
    std::array<real, maxsfvars + 1> sf{};          // site fractions
    std::array<real, maxemperphase + 1> pp{};      // proportions
    std::array<real, maxemperphase + 1> aid{};     // ideal-mixing activity
    std::array<real, maxemperphase + 1> gam{};     // activity coefficient
    std::array<real, maxemperphase + 1> aa{};      // activity
    std::array<real, maxemperphase + 1> rtlngam{}; // RT ln gam, kJ
    // With derivatives asked for:
    std::array<std::array<real, maxnxv + 1>, maxemperphase + 1> dpdx{};    // dp[j]/dx[v]
    std::array<std::array<real, maxnxv + 1>, maxemperphase + 1> dlnadx{};  // d(RT ln a[j])/dx[v]
    std::array<real, maxemperphase + 1> dlnadT{};  // d(RT ln a[j])/dT
    std::array<real, maxemperphase + 1> dlnadP{};  // d(RT ln a[j])/dP
};

// The activity side of a calculation.
struct ActivityState {
    // Calculation layout, by position i in emname (filled where the unknowns
    // are laid out): inss[i] the end-member belongs to an a-x phase,
    // emphase[i] that phase's number in prec1, emstart[i] the index in x of
    // the phase's first composition variable. The end-members of one a-x
    // phase stand together in emname, in the phase's order; pure phases
    // have inss false and keep an activity of 1.
    std::array<bool, maxnem + 1> inss{};
    std::array<int, maxnem + 1> emphase{};
    std::array<int, maxnem + 1> emstart{};

    // Outputs of calca by emname position (activ itself lives in the
    // end-member store). dlnadx[i][k]: d(RT ln a[i])/dx[k] for k an index of
    // x. calca writes only the columns of the end-member's own phase; the
    // others are zero by the structure of the models and are left alone, so
    // a reader takes only those columns (or clears the table once when the
    // layout changes: cleardlnadx).
    std::array<real, maxnem + 1> dlnadT{};
    std::array<real, maxnem + 1> dlnadP{};
    std::vector<std::array<real, maxnx + 1>> dlnadx =
        std::vector<std::array<real, maxnx + 1>>(maxnem + 1);

    // The results of each a-x phase at the last call, by phase number.
    std::vector<PhaseActivity> phase = std::vector<PhaseActivity>(maxnp + 1);

    // Work arrays the solve of a state of order uses in place of the
    // solver's own, made at its first use in a run.
    std::unique_ptr<NleWork> orderwork;
};

// All activ := 1; then for each a-x phase of the layout, at the true values
// x[1..] (x[1] P, x[2] T, the phase's variables from emstart), activ and the
// phase's results; with dodx the x derivatives, with doTP those in T and P.
// A site fraction that is not positive prints the tables of x and site
// fractions and stops the run ("negative sf term").
void calca(Run& run, const real* x, bool doTP, bool dodx, real P, real T);

// One a-x phase, k in prec1, its variable v at x[xo + v - 1].
void phaseactivity(Run& run, int k, const real* x, int xo, bool doTP, bool dodx, real P, real T,
                   PhaseActivity& out);

// Site fractions of every a-x phase of the layout at x, all positive. A
// failure prints the tables of x and site fractions, and outside a Gibbs
// energy minimisation search or Monte Carlo run stops the run ("negative sf
// term" from calcsf); inside one it returns false.
bool calcsf(Run& run, const real* x);

// Clears dlnadx, dlnadT and dlnadP (for a new layout).
void cleardlnadx(Run& run);

// The solver's watched site fractions (SfWatch: phase, term, xstart): the
// value at the true variables v, and its rate of change along the true
// direction w; zerofactor when one of its linear factors is exactly zero.
real sfwatchvalue(const Run& run, const SfWatch& e, const NleVector& v);
real sfwatchslope(const Run& run, const SfWatch& e, const NleVector& v, const NleVector& w,
                  bool& zerofactor);

}  // namespace sm
