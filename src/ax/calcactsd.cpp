// Activities of a phase's end-members with their uncertainties, for the
// rock calculations: the uncertainty of the composition variables carried
// through the ideal-mixing term by a small perturbation, and that of the
// interaction energies through the activity coefficient.
#include <cmath>

#include "ax/interactions.h"
#include "ax/order.h"
#include "run.h"
#include "thermo/constants.h"

namespace sm {

namespace {

constexpr real perturbation = 0.001L;

// Site fractions at x[1..nxv].
void sitefractions(const AxPhase& ph, const real* x, real* sf) {
    for (int s = 1; s <= ph.nsf; ++s) sf[s] = evalx(ph.pool, ph.sfexpr[s], x, 1);
}

// The ideal-mixing term of end-member e. In the base pass a site fraction
// that is not positive makes it unusable (false); in a perturbed pass such
// a factor is left out.
bool mixing(const AxEndMember& em, const real* sf, bool perturbed, real& m) {
    m = em.norm;
    for (int t = 1; t <= em.nterm; ++t) {
        const real s = sf[em.sfterm[t].sf];
        if (!(s > 0)) {
            if (!perturbed) return false;
            continue;
        }
        m *= em.sfterm[t].pw == 1 ? s : std::pow(s, em.sfterm[t].pw);
    }
    return true;
}

}  // namespace

void calcactsd(Run& run, int phase, const real* x, real* a, real* sda, real P, real T,
               bool wuncertainty) {
    const AxPhase& ph = run.phases.prec1[phase];
    const int n = ph.nem;
    const real RT = Rgas * T;
    Interactions it;
    interactionsat(run, ph, P, T, it);

    real p[maxemperphase + 1], phi[maxemperphase + 1], al[maxemperphase + 1];
    for (int j = 1; j <= n; ++j) p[j] = evalx(ph.pool, ph.pexpr[j], x, 1);
    if (ph.nonideal == asymmetric) {
        real Phi = 0;
        for (int j = 1; j <= n; ++j) {
            al[j] = it.al[j];
            Phi += al[j] * p[j];
        }
        for (int j = 1; j <= n; ++j) phi[j] = al[j] * p[j] / Phi;
    } else {
        for (int j = 1; j <= n; ++j) {
            al[j] = 1;
            phi[j] = p[j];
        }
    }

    real sf[maxsfvars + 1], sfp[maxsfvars + 1];
    sitefractions(ph, x, sf);
    real m[maxemperphase + 1], Vx[maxemperphase + 1];
    bool usable[maxemperphase + 1];
    for (int e = 1; e <= n; ++e) {
        usable[e] = !ph.em[e].excluded && mixing(ph.em[e], sf, false, m[e]);
        Vx[e] = 0;
    }

    // Each variable with an uncertainty moved by itself.
    real xp[maxnxv + 1];
    for (int v = 1; v <= ph.nxv; ++v) xp[v] = x[v];
    for (int v = 1; v <= ph.nxv; ++v) {
        const real sd = ph.xv[v].sd;
        if (!(sd > 0)) continue;
        xp[v] = x[v] + perturbation;
        sitefractions(ph, xp, sfp);
        xp[v] = x[v];
        for (int e = 1; e <= n; ++e) {
            if (!usable[e]) continue;
            real mp;
            mixing(ph.em[e], sfp, true, mp);
            const real d = sd * (mp - m[e]) / perturbation;
            Vx[e] += d * d;
        }
    }

    for (int e = 1; e <= n; ++e) {
        if (!usable[e]) {
            a[e] = sda[e] = 0;
            continue;
        }
        if (ph.nonideal == ideal) {
            a[e] = m[e];
            sda[e] = std::sqrt(Vx[e]);
            continue;
        }
        real L = 0, Vw = 0;
        for (int g = 1; g <= ph.ngt; ++g) {
            const int i = ph.gt[g][0], j = ph.gt[g][1];
            const real t = 2 * al[e] * ((e == j) - phi[j]) * ((e == i) - phi[i]) / (al[i] + al[j]);
            L -= t * it.w[g];
            if (wuncertainty) Vw += (t * ph.wsd[g]) * (t * ph.wsd[g]);
        }
        a[e] = m[e] * std::exp(L / RT);
        sda[e] = a[e] * std::sqrt(Vw / (RT * RT) + Vx[e] / (m[e] * m[e]));
    }
}

}  // namespace sm
