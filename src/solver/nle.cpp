#include "solver/nle.h"

#include <cmath>
#include <string>

#include "console/bomb.h"
#include "console/format.h"
#include "solver/nleprint.h"
#include "solver/svd.h"

// Choices of this solver where the rules leave room:
// - A residual or Jacobian entry that is not finite makes the point illegal,
//   and such a point is always a failed calculation, never a fatal stop:
//   result 9 at the start, result 10 in a trial. The same holds for a point
//   the residual routine marks with softillegal.
// - The caller's solved() runs for every result 0, also for a start point
//   accepted without a step, so that uncertainties belong to every solution.
// - A largest singular value of zero (or a direction that overflows) gives
//   no direction at all; the step is then too small and the solve ends with
//   result 1 (or 0 when the residuals are already small).

namespace sm {

namespace {

bool allfinite(const NleVector& F, int n) {
    for (int i = 1; i <= n; ++i)
        if (!std::isfinite(F[i])) return false;
    return true;
}

bool allfinite(const NleMatrix& J, int n) {
    for (int i = 1; i <= n; ++i)
        for (int j = 1; j <= n; ++j)
            if (!std::isfinite(J[i][j])) return false;
    return true;
}

real halfsumofsquares(const NleVector& F, int n) {
    real f = 0;
    for (int i = 1; i <= n; ++i) f += F[i] * F[i];
    return 0.5L * f;
}

real largestabs(const NleVector& F, int n) {
    real m = 0;
    for (int i = 1; i <= n; ++i)
        if (std::fabs(F[i]) > m) m = std::fabs(F[i]);
    return m;
}

// The start point is not legal: in a search over assemblages it is simply
// not solved; at print level 0 (many calculations, little printing) it is a
// failed point that raises the print level; otherwise the starting guesses
// are at fault and the run stops.
void illegalstart(Run& run, SolverState& s) {
    if (s.dogmin) {
        if (s.dogminprintlevel > 0) putstr(run.io, 0, "solver could not start", 1, chall);
        return;
    }
    const bool soft = s.nonfinite || s.softillegal;
    if (s.printlevel == 0 || soft) {
        std::string line = "illegal start ";
        putint(3, line, s.batch);
        putint(3, line, s.runno);
        putstr(run.io, 0, line, 1, chall);
        printxrows(run, s, s.x, 1, s.nx + s.nm, 15, 0, 1, 0, 4, false);
        if (s.printlevel == 0) s.printlevel = 1;
        return;
    }
    printxrows(run, s, s.x, 1, s.nx + s.nm, 15, 0, 1, 0, 4, false);
    bomb("nle", "illegal start", 0);
}

bool initialise(Run& run, NleSystem& sys) {
    SolverState& s = run.solver;
    if (s.nx < 0 || s.nm < 0 || s.nx + s.nm > maxnx) bomb("nle", "too many variables", 1);
    s.overit = 25;
    s.n = 0;
    for (int i = 1; i <= s.nx + s.nm; ++i)
        if (s.active[i]) s.activelist[++s.n] = i;
    s.esizeok = s.fsizeok = s.dxok = s.dxconverged = false;
    s.fncount = 0;
    s.notreduced = 0;
    s.maxe = s.maxdx = 1;
    s.accessibility = accinaccessible;
    s.status = 0;
    s.softfailed = false;
    s.lastgood = true;
    s.k0 = 1;
    s.singular = false;
    s.cond = 0;
    if (!evaluate(run, sys, s.x)) {
        illegalstart(run, s);
        return false;
    }
    s.f = halfsumofsquares(s.work->F, s.n);
    s.maxe = largestabs(s.work->F, s.n);
    return true;
}

// The direction from the truncated decomposition J = U W V^T: only the
// singular values above 1e-12 of the largest take part, so a degenerate
// system gets the minimum-norm step over the directions it does determine.
void direction(Run& run, SolverState& s) {
    NleWork& wk = *s.work;
    const int n = s.n;
    for (int i = 1; i <= n; ++i)
        for (int j = 1; j <= n; ++j) wk.U[i][j] = wk.J[i][j];
    svd(MatrixRef{&wk.U[0][0], maxnx + 1}, n, n, wk.W.data(), MatrixRef{&wk.V[0][0], maxnx + 1},
        &run.io);
    s.k0 = n;
    for (int k = 1; k < n; ++k)
        if (wk.W[k] > 1e-12L * wk.W[n]) {
            s.k0 = k;
            break;
        }
    s.singular = s.k0 > 1;
    s.cond = std::fabs(wk.W[1]) < 1e-12L ? 0.0L : wk.W[n] / wk.W[1];
    for (int i = 1; i <= n; ++i) wk.dx[i] = 0;
    if (!(wk.W[n] > 0.0L)) return;
    for (int j = s.k0; j <= n; ++j) {
        real beta = 0;
        for (int l = 1; l <= n; ++l) beta += wk.F[l] * wk.U[l][j];
        beta /= wk.W[j];
        for (int i = 1; i <= n; ++i) wk.dx[i] += beta * wk.V[i][j];
    }
    if (!allfinite(wk.dx, n))
        for (int i = 1; i <= n; ++i) wk.dx[i] = 0;
}

}  // namespace

bool evaluate(Run& run, NleSystem& sys, const NleVector& x) {
    SolverState& s = run.solver;
    NleWork& wk = *s.work;
    s.nonfinite = false;
    s.softillegal = false;
    const bool wantJ = s.printlevel != 5;
    if (!sys.nlefunc(x, wk.J, wk.F, wantJ)) return false;
    if (!allfinite(wk.F, s.n) || (wantJ && !allfinite(wk.J, s.n))) {
        s.nonfinite = true;
        return false;
    }
    if (s.printlevel == 5) return fdjacobian(run, sys, x);
    if ((s.printlevel == 3 || s.printlevel == 4) && s.iteration == 0) jacobiancheck(run, sys, x);
    return true;
}

bool fn(Run& run, NleSystem& sys, real step, real& f, real& slope, int which) {
    SolverState& s = run.solver;
    NleWork& wk = *s.work;
    if (step < 0.0L) bomb("fn", "called with step <= 0", 1);
    wk.xt = s.x;
    for (int k = 1; k <= s.n; ++k) {
        const int i = s.activelist[k];
        wk.xt[i] = s.x[i] - wk.dx[k] * step;
    }
    ++s.fncalls;
    ++s.fncount;
    if (!evaluate(run, sys, wk.xt)) {
        const bool soft = s.montecarlo || s.printlevel == 0 || s.dogmin || s.nonfinite ||
                          s.softillegal;
        if (!soft) bomb("fn", "not ok (" + std::to_string(which) + ")", 1);
        // Give up this point and let the run go on to its next one.
        s.f = f = 1;
        s.slope = slope = 0;
        s.maxe = s.maxdx = 1;
        s.esizeok = s.fsizeok = s.dxok = s.dxconverged = false;
        s.softfailed = true;
        return true;
    }
    const int n = s.n;
    f = halfsumofsquares(wk.F, n);
    // The slope of f along the step, with the Jacobian of the trial point
    // and the direction of the start of the iteration.
    slope = 0;
    for (int i = 1; i <= n; ++i) {
        real jd = 0;
        for (int j = 1; j <= n; ++j) jd += wk.J[i][j] * wk.dx[j];
        slope -= wk.F[i] * jd;
    }
    s.f = f;
    s.slope = slope;
    s.maxe = largestabs(wk.F, n);
    s.maxdx = 0;
    for (int i = 1; i <= s.nx + s.nm; ++i) {
        const real d = std::fabs(wk.xt[i] - s.x[i]);
        if (d == 0.0L) continue;
        const real r = d / s.xstep[i];
        if (r > s.maxdx) s.maxdx = r;
    }
    s.esizeok = s.maxe <= s.esize;
    s.fsizeok = std::sqrt(2.0L * f) < s.fsize;
    s.dxok = s.maxdx < s.dxstop;
    s.dxconverged = s.dxok && s.maxe < std::sqrt(s.esize);
    if (s.esizeok && s.fsizeok)
        s.convtag = "ef";
    else if (s.fsizeok)
        s.convtag = "f";
    else if (s.esizeok)
        s.convtag = "e";
    else if (s.dxconverged)
        s.convtag = "dx";
    return s.esizeok || s.fsizeok || s.dxok;
}

void startup(Run& run, NleSystem& sys) {
    SolverState& s = run.solver;
    if (!evaluate(run, sys, s.x)) {
        if (s.nonfinite || s.softillegal) {
            s.esizeok = s.fsizeok = s.dxok = s.dxconverged = false;
            s.softfailed = true;
            return;
        }
        bomb("startup", "bad start to iteration", 0);
    }
    s.f0 = halfsumofsquares(s.work->F, s.n);
    direction(run, s);
    s.s0 = -2.0L * s.f0;
    findlimit(run, sys, s.slim, s.accessibility);
    if (s.slim < 1e-8L) s.status = 5;
}

bool nle(Run& run, NleSystem& sys, int& result) {
    SolverState& s = run.solver;
    s.iteration = 0;
    s.fncalls = 0;
    if (!initialise(run, sys)) {
        result = nleillegalstart;
        return false;
    }
    // A start that already satisfies the system is taken as it is. The test
    // is on f itself here, a little looser than the one of the iterations.
    if (s.f < s.fsize || s.maxe < s.esize) {
        result = nlesolved;
        sys.solved();
        return true;
    }
    const bool talk = s.printlevel >= 2 && s.printlevel <= 4;
    if (s.printlevel == 2) printiterationheading(run);
    bool over = false;
    int status = 0;
    for (;;) {
        ++s.iteration;
        s.fncalls = 1;
        over = s.iteration > s.overit;
        real step = 0;
        const bool converged = steplength(run, sys, step, status);
        if (status == 0) {
            NleWork& wk = *s.work;
            for (int k = 1; k <= s.n; ++k) s.x[s.activelist[k]] -= wk.dx[k] * step;
        }
        if (s.printlevel == 2) printiteration(run, s, step);
        if (s.printlevel == 3) printxrows(run, s, s.x, 1, s.nx + s.nm, 13, 0, 4, 4, 4, false);
        if (status != 0 || converged || over) break;
    }
    if (s.esizeok || s.fsizeok || s.dxconverged)
        result = nlesolved;
    else if (s.dxok)
        result = nledxstop;
    else if (over)
        result = nleoverit;
    else if (status > 0)
        result = status + 2;
    else
        result = nlesoftfail;
    if (talk) printnleresult(run, s, result);
    if (result == nlesolved) sys.solved();
    return result == nlesolved;
}

}  // namespace sm
