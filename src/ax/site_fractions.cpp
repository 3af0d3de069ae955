// Site fractions as the solver sees them: the test of a point, and the
// watched site fractions that shorten a step.
#include <string>

#include "ax/activities.h"
#include "ax/sf_tables.h"
#include "console/format.h"
#include "console/runended.h"
#include "run.h"

namespace sm {

namespace {

constexpr int perrow = 12;  // names and values to a row, 10 wide

void printrow(Run& run, const char* lead, const sstring* names, const real* values, int n) {
    for (int from = 1; from <= n; from += perrow) {
        const int to = std::min(n, from + perrow - 1);
        std::string head(5, ' '), row = lead;
        for (int i = from; i <= to; ++i) {
            putfield(names[i], 10, head);
            putreal(4, true, 10, row, values[i]);
        }
        putstr(run.io, 0, head, 1, chall);
        putstr(run.io, 0, row, 1, chall);
    }
}

}  // namespace

void printsftables(Run& run, const AxPhase& ph, const real* x, int xo, const real* sf) {
    sstring names[maxnxv + 1];
    real values[maxnxv + 1];
    for (int v = 1; v <= ph.nxv; ++v) {
        names[v] = ph.xv[v].xname;
        values[v] = x[xo + v - 1];
    }
    printrow(run, "x =  ", names, values, ph.nxv);
    printrow(run, "sf = ", ph.sfname.data(), sf, ph.nsf);
}

bool calcsf(Run& run, const real* x) {
    const ActivityState& as = run.activities;
    const SolverState& s = run.solver;
    const int nem = run.store.nem;
    for (int i = 1; i <= nem;) {
        if (!as.inss[i]) {
            ++i;
            continue;
        }
        const AxPhase& ph = run.phases.prec1[as.emphase[i]];
        const int xo = as.emstart[i];
        i += ph.nem;
        real sf[maxsfvars + 1];
        bool ok = true;
        for (int t = 1; t <= ph.nsf; ++t) {
            sf[t] = evalx(ph.pool, ph.sfexpr[t], x, xo);
            if (!(sf[t] > 0)) ok = false;
        }
        if (ok) continue;
        // A search over assemblages tries points that cannot be: quietly,
        // unless its own printing is verbose.
        const bool show = !s.montecarlo && !(s.dogmin && s.dogminprintlevel < 2);
        if (show) printsftables(run, ph, x, xo, sf);
        if (s.dogmin) {
            if (show) putstr(run.io, 0, "checksf, negative sf term - change starting guesses?", 1, chall);
        } else if (!s.montecarlo) {
            putstr(run.io, 0, "sorry - try changing starting guesses!", 1, chall);
            bomb("calcsf", "negative sf term", 0);
        }
        putstr(run.io, 0, "*", 1, chlog);
        return false;
    }
    return true;
}

real sfwatchvalue(const Run& run, const SfWatch& e, const NleVector& v) {
    const AxPhase& ph = run.phases.prec1[e.phase];
    return evalx(ph.pool, ph.sfexpr[e.term], v.data(), e.xstart);
}

real sfwatchslope(const Run& run, const SfWatch& e, const NleVector& v, const NleVector& w,
                  bool& zerofactor) {
    const AxPhase& ph = run.phases.prec1[e.phase];
    real grad[maxnxv + 1];
    evalxgrad(ph.pool, ph.sfexpr[e.term], v.data(), e.xstart, ph.nxv, grad);
    zerofactor = haszerofactor(ph.pool, ph.sfexpr[e.term], v.data(), e.xstart);
    real g = 0;
    for (int k = 1; k <= ph.nxv; ++k) g += w[e.xstart + k - 1] * grad[k];
    return g;
}

}  // namespace sm
