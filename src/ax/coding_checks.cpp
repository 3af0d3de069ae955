// Checks of the coding of a phase at set-up: the starting guesses must be a
// legal composition, and at the composition of each pure end-member (its
// check line) the proportions must pick out that end-member alone and its
// ideal-mixing activity must be 1.
#include <cmath>

#include "ax/phase_prep.h"
#include "console/format.h"
#include "console/runended.h"
#include "run.h"

namespace sm {

void guessvector(const AxPhase& ph, real* x) {
    for (int v = 1; v <= ph.nxv; ++v) x[v] = ph.xv[v].guess;
}

bool checksf(const AxPhase& ph) {
    real x[maxnxv + 1];
    guessvector(ph, x);
    for (int s = 1; s <= ph.nsf; ++s)
        if (!(evalx(ph.pool, ph.sfexpr[s], x, 1) > 0)) return false;
    return true;
}

real idealmix(const AxPhase& ph, int j, const real* sf) {
    const AxEndMember& em = ph.em[j];
    real m = em.norm;
    for (int t = 1; t <= em.nterm; ++t) m *= std::pow(sf[em.sfterm[t].sf], em.sfterm[t].pw);
    return m;
}

namespace {

std::string shown(real v) { return real2str(v, 6, false); }

}  // namespace

void checkguesses(Run& run, const AxPhase& ph) {
    if (ph.hasq || checksf(ph)) return;
    real x[maxnxv + 1];
    guessvector(ph, x);
    putstr(run.io, 1, "for " + ph.pname + ", site fractions are:", 1, chscreenlog);
    for (int s = 1; s <= ph.nsf; ++s)
        putstr(run.io, 0, ph.sfname[s] + " = " + shown(evalx(ph.pool, ph.sfexpr[s], x, 1)), 1, chscreenlog);
    putstr(run.io, 0, "site fractions must all be positive (starting guess problems)", 1, chscreenlog);
    bomb("setupphases", "inconsistent starting guesses", 0);
}

void checkguesslimits(const AxPhase& ph) {
    for (int v = 1; v <= ph.nxv; ++v) {
        const AxVariable& x = ph.xv[v];
        if (x.isod) continue;
        const bool low = x.limlo == limhard ? !(x.guess > x.lower) : !(x.guess >= x.lower);
        if (low) bomb("setupphases", "guess too small for " + x.xname, 0);
        const bool high = x.limhi == limhard ? !(x.guess < x.upper) : !(x.guess <= x.upper);
        if (high) bomb("setupphases", "guess too large for " + x.xname, 0);
    }
}

void checkcoding(Run& run, const AxPhase& ph) {
    real x[maxnxv + 1];
    real sf[maxsfvars + 1];
    real p[maxemperphase + 1];
    for (int e = 1; e <= ph.nem; ++e) {
        const AxEndMember& em = ph.em[e];
        if (!em.hascheck) continue;
        for (int v = 1; v <= ph.nxv; ++v)
            x[v] = static_cast<real>(em.checkx[v]) / static_cast<real>(em.checkdiv);
        for (int s = 1; s <= ph.nsf; ++s) sf[s] = evalx(ph.pool, ph.sfexpr[s], x, 1);
        for (int t = 1; t <= em.nterm; ++t)
            if (!(sf[em.sfterm[t].sf] > 0))
                bomb("setupphases", "ideal mixing term = 0 for " + em.ename + " in " + ph.pname +
                                        " (check coding wrong?)", 0);
        const real m = idealmix(ph, e, sf);
        if (!(std::fabs(m - 1) <= 0.001L)) {
            putstr(run.io, 1, "inconsistent ideal mixing activities: " + ph.pname, 1, chscreenlog);
            putstr(run.io, 0, em.ename + " in " + ph.pname + " = " + shown(m), 1, chscreenlog);
            bomb("setupphases",
                 " ideal mixing terms not equal to 1 for pure end-members (also look at check coding)", 0);
        }
        bool ok = true;
        for (int j = 1; j <= ph.nem; ++j) {
            p[j] = evalx(ph.pool, ph.pexpr[j], x, 1);
            if (!(std::fabs(p[j] - (j == e ? 1 : 0)) <= 0.001L)) ok = false;
        }
        if (!ok) {
            putstr(run.io, 1, "inconsistent p coding: " + ph.pname, 1, chscreenlog);
            putstr(run.io, 0, "at the check values of " + em.ename + ":", 1, chscreenlog);
            for (int j = 1; j <= ph.nem; ++j)
                putstr(run.io, 0, "p(" + ph.em[j].ename + ") = " + shown(p[j]), 1, chscreenlog);
            bomb("setupphases", "proportions not equal to 1 for pure end-members (also look at check coding)",
                 0);
        }
    }
}

}  // namespace sm
