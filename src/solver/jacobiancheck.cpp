#include <cmath>
#include <string>

#include "console/format.h"
#include "solver/nle.h"
#include "solver/nleprint.h"

namespace sm {

namespace {

constexpr real fdstep = 1e-8L;  // in the scaled unknowns

void printjacobian(Run& run, const SolverState& s) {
    const NleWork& wk = *s.work;
    putstr(run.io, 0, "jacobian", 1, chall);
    for (int r = 1; r <= s.n; ++r) {
        std::string line;
        for (int k = 1; k <= s.n; ++k) {
            putfield(nlenumber(wk.J[r][k]), 12, line);
            if (k % 10 == 0 && k < s.n) {
                putstr(run.io, 0, line, 1, chall);
                line = "   ";
            }
        }
        putstr(run.io, 0, line, 1, chall);
    }
}

}  // namespace

// Compares the analytic Jacobian with forward differences column by column.
// Order variables are skipped: their columns come from an internal
// equilibrium and differ from a plain difference by design.
void jacobiancheck(Run& run, NleSystem& sys, const NleVector& x) {
    SolverState& s = run.solver;
    NleWork& wk = *s.work;
    printjacobian(run, s);
    wk.Fsave = wk.F;
    wk.xsave = x;
    int count = 0;
    std::string report = "jacobian: prop diff with fd: ";
    for (int k = 1; k <= s.n; ++k) {
        const int i = s.activelist[k];
        if (i <= s.nx && !s.xname[i].empty() && s.xname[i][0] == 'Q') continue;
        wk.xsave[i] = x[i] + fdstep;
        const bool ok = sys.nlefunc(wk.xsave, wk.Jdummy, wk.Fnew, false);
        wk.xsave[i] = x[i];
        if (!ok) continue;
        for (int r = 1; r <= s.n; ++r) {
            if (!(std::fabs(wk.J[r][k]) >= 1e-8L)) continue;
            const real diff = ((wk.Fnew[r] - wk.Fsave[r]) / fdstep) / wk.J[r][k] - 1.0L;
            if (!(std::fabs(diff) <= 0.0001L)) {
                ++count;
                if (count <= 6)
                    report += "eq" + std::to_string(r) + "," + s.xname[i] + " = " +
                              nlenumber(diff) + "; ";
            }
        }
    }
    if (count == 0)
        putstr(run.io, 0, "jacobian: no difference with fd", 1, chall);
    else
        putstr(run.io, 0,
               report + (count <= 6 ? ": just these" : ": of " + std::to_string(count) + " in all"),
               1, chall);
    // Evaluate again at x so that everything the routine keeps belongs to it.
    sys.nlefunc(x, wk.J, wk.F, true);
}

// Replaces the Jacobian by forward differences of the residuals.
bool fdjacobian(Run& run, NleSystem& sys, const NleVector& x) {
    SolverState& s = run.solver;
    NleWork& wk = *s.work;
    wk.xsave = x;
    for (int k = 1; k <= s.n; ++k) {
        const int i = s.activelist[k];
        // Forward, or backward where the forward point leaves the legal
        // region (an entry at the top of its box).
        real h = fdstep;
        wk.xsave[i] = x[i] + h;
        bool ok = sys.nlefunc(wk.xsave, wk.Jdummy, wk.Fnew, false);
        if (!ok) {
            h = -fdstep;
            wk.xsave[i] = x[i] + h;
            ok = sys.nlefunc(wk.xsave, wk.Jdummy, wk.Fnew, false);
        }
        wk.xsave[i] = x[i];
        if (!ok) return false;
        for (int r = 1; r <= s.n; ++r) {
            const real d = (wk.Fnew[r] - wk.F[r]) / h;
            if (!std::isfinite(d)) {
                s.nonfinite = true;
                return false;
            }
            wk.J[r][k] = d;
        }
    }
    if (!sys.nlefunc(x, wk.Jdummy, wk.F, false)) return false;
    for (int r = 1; r <= s.n; ++r)
        if (!std::isfinite(wk.F[r])) {
            s.nonfinite = true;
            return false;
        }
    return true;
}

}  // namespace sm
