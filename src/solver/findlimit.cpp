#include <cmath>
#include <string>

#include "console/bomb.h"
#include "console/format.h"
#include "console/scan.h"
#include "solver/nle.h"

namespace sm {

namespace {

// A factor of a watched site fraction is exactly zero where the search
// stands: the models' limits should have kept every point off it, so the
// coding of the phase is at fault. Tell what is known and stop.
[[noreturn]] void crasher(Run& run, const SfWatch& e, const NleVector& v, const NleVector& w,
                          const NleVector& sx) {
    Io& io = run.io;
    putstr(io, 0, std::string(35, '-'), 1, chall);
    putstr(io, 0, "crasher with " + e.phasename + ", sf term = " + std::to_string(e.term), 1,
           chall);
    const char* labels[4] = {"x  ", "1-x", "d  ", "sx "};
    for (int row = 0; row < 4; ++row) {
        std::string line = labels[row];
        for (int j = e.xstart; j < e.xstart + e.nvar && j <= maxnx; ++j) {
            const real value = row == 0 ? v[j] : row == 1 ? 1.0L - v[j] : row == 2 ? w[j] : sx[j];
            putreal(6, true, 12, line, value);
        }
        putstr(io, 0, line, 1, chall);
    }
    putstr(io, 0, "I am terribly sorry about this -", 1, chall);
    putstr(io, 0, "but someone has miscoded something.", 1, chall);
    putstr(io, 0, "So there is nothing else for it...", 1, chall);
    bomb("findlimit", "exact zero in a site-fraction factor of " + e.phasename, 1);
}

// Shortens slim until all watched site fractions stay positive at
// 0.999999999 of it, by linear extrapolation of the most negative one.
void sitefractionlimit(Run& run, NleSystem& sys, real& slim) {
    SolverState& s = run.solver;
    NleWork& wk = *s.work;
    const real slim0 = slim;
    for (int round = 1;; ++round) {
        // A site fraction already at zero with the line pointing out of its
        // region shrinks slim by 1e-9 a round without end: once slim is too
        // small for any step the outcome is settled, and the calculation
        // fails with no room to move rather than stopping the run.
        if (slim < 1e-8L) return;
        if (round > 50) bomb("findlimit", "too many iterations handling site fractions", 0);
        for (int j = 1; j <= s.nx; ++j) wk.sx[j] = wk.v[j] - wk.w[j] * slim * 0.999999999L;
        real m = 100;
        int k = 0;
        for (int t = 1; t <= s.nsfterm; ++t) {
            const real value = sys.sfterm(s.sfterm[t], wk.sx);
            if (value < m) {
                m = value;
                if (value <= 0.0L) k = t;
            }
        }
        // At the first round a term exactly at zero passes; after a
        // shortening every term must be strictly positive.
        const bool goodpoint = round == 1 ? m >= 0.0L : m > 0.0L;
        if (goodpoint) return;
        bool zerofactor = false;
        const real g = sys.sftermslope(s.sfterm[k], wk.sx, wk.w, zerofactor);
        if (zerofactor) crasher(run, s.sfterm[k], wk.v, wk.w, wk.sx);
        if (g == 0.0L || !std::isfinite(g)) {
            slim *= 0.5L;
            continue;
        }
        const real newslim = slim + m / g;
        if (newslim < 0.0L || newslim > slim0)
            slim *= 0.5L;
        else if (m / g <= 0.0L)
            slim = 0.99L * newslim;
        else
            slim *= 0.9L;
    }
}

}  // namespace

void findlimit(Run& run, NleSystem& sys, real& slim, int& accessibility) {
    SolverState& s = run.solver;
    NleWork& wk = *s.work;
    const real eps = run.machineeps;
    slim = 1e20L;

    // The box 0..1 of the scaled unknowns; the step is x - slim * dx.
    for (int k = 1; k <= s.n; ++k) {
        const int i = s.activelist[k];
        const real d = wk.dx[k];
        if (d < 0.0L && slim * (-d) > 1.0L - s.x[i]) {
            slim = (2.0L * eps + s.x[i] - 1.0L) / d;
            accessibility = s.limhi[i];
        } else if (d > 0.0L && slim * d > s.x[i]) {
            slim = (s.x[i] - 2.0L * eps) / d;
            accessibility = s.limlo[i];
        }
    }

    // The point and the direction in true values.
    for (int j = 1; j <= s.nx; ++j) {
        wk.v[j] = s.x[j];
        wk.w[j] = 0;
    }
    for (int k = 1; k <= s.n; ++k) {
        const int i = s.activelist[k];
        if (i > s.nx) break;
        wk.v[i] = (s.x[i] - s.offset[i]) / s.scale[i];
        wk.w[i] = wk.dx[k] / s.scale[i];
    }

    // Linear limits of the models: constant + sum(coef * v) stays positive.
    for (int r = 1; r <= s.nvarlim; ++r) {
        const VarLim& lim = s.varlim[r];
        bool counts = false;
        real t1 = static_cast<real>(lim.num[s.nx + 1]) / lim.den[s.nx + 1];
        real t2 = 0;
        for (int j = 1; j <= s.nx; ++j) {
            if (lim.num[j] == 0) continue;
            const real coef = static_cast<real>(lim.num[j]) / lim.den[j];
            t1 += coef * wk.v[j];
            t2 += coef * wk.w[j];
            if (s.active[j]) counts = true;
        }
        if (!counts) continue;
        if (t2 < -5.0L * eps) continue;  // moving away from the limit
        if (t2 < 5.0L * eps) {
            slim = 0;  // along the limit: no safe step
        } else if ((t1 - 2.0L * eps) / t2 < slim) {
            slim = (t1 - 2.0L * eps) / t2;
            accessibility = accinaccessible;
        }
    }

    if (slim > 0.0L && s.nsfterm > 0) {
        sitefractionlimit(run, sys, slim);
        accessibility = accinaccessible;
    }
}

}  // namespace sm
