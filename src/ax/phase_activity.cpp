// The activity model of one phase at one point.
//
// Ideal mixing on sites: a_ideal(e) = norm * prod over its sites of sf^power.
// Non-ideality by the symmetric formalism, or its asymmetric (van Laar) form
// with size parameters alpha. With q = delta(e) - phi,
//
//   RT ln gamma(e) = -alpha(e) * sum over pairs of B(ij) q(i) q(j),
//   B(ij) = 2 W(ij) / (alpha(i) + alpha(j)),   phi(j) = alpha(j) p(j) / sum alpha p,
//
// (alpha = 1, phi = p in the symmetric case). Writing u = B phi, the sum is
// -(u(e) - phi.u / 2), so each end-member costs one look-up once u is
// known, and the derivatives along a direction dphi are
// alpha(e) * ((B dphi)(e) - dphi.u): the cost grows with the pairs times the
// variables, not with the pairs times the end-members times the variables.
#include <cmath>
#include <string>

#include "ax/activities.h"
#include "ax/interactions.h"
#include "ax/sf_tables.h"
#include "console/format.h"
#include "console/runended.h"
#include "run.h"
#include "thermo/constants.h"

namespace sm {

namespace {

// sf^power, with the cheap forms for the common powers.
real sfpower(real sf, real pw) {
    if (pw == 1) return sf;
    if (pw == 0.5L) return std::sqrt(sf);
    if (pw >= 0 && pw <= 8 && pw == std::floor(pw)) {
        real r = 1;
        for (int i = static_cast<int>(pw); i > 0; --i) r *= sf;
        return r;
    }
    return std::exp(pw * std::log(sf));
}

[[noreturn]] void negativesf(Run& run, const AxPhase& ph, const real* x, int xo,
                             const PhaseActivity& out, int e, int t) {
    const int s = ph.em[e].sfterm[t].sf;
    printsftables(run, ph, x, xo, out.sf.data());
    putstr(run.io, 0,
           "phase = " + ph.pname + ", end-member = " + ph.em[e].ename + ", tmf term no = " +
               std::to_string(t) + ", sf term no = " + std::to_string(s) +
               ", sf = " + real2str(out.sf[s], 6, false),
           1, chall);
    putstr(run.io, 0, "sorry - try changing starting guesses!", 1, chall);
    bomb("calca", "negative sf term", 0);
}

// u = M v over the pair list, M symmetric with weights m[g].
void pairproduct(const AxPhase& ph, const real* m, const real* v, real* u) {
    for (int j = 1; j <= ph.nem; ++j) u[j] = 0;
    for (int g = 1; g <= ph.ngt; ++g) {
        const int i = ph.gt[g][0], j = ph.gt[g][1];
        u[i] += m[g] * v[j];
        u[j] += m[g] * v[i];
    }
}

real dot(const real* a, const real* b, int n) {
    real s = 0;
    for (int j = 1; j <= n; ++j) s += a[j] * b[j];
    return s;
}

// Is end-member e of an aqueous phase a solute (a charged species)?
bool solute(const AxPhase& ph, int e) { return ph.aqkind && ph.em[e].emtd[tdaqz] != 0; }

// The non-ideal part: RT ln gamma into L[1..n], derivatives added to out.
void nonideal(Run& run, const AxPhase& ph, bool doTP, bool dodx, real P, real T,
              PhaseActivity& out, real* L) {
    const int n = ph.nem, nv = ph.nxv, ng = ph.ngt;
    Interactions it;
    interactionsat(run, ph, P, T, it);
    const bool asym = ph.nonideal == asymmetric;

    // phi and the pair weights B.
    real phi[maxemperphase + 1], al[maxemperphase + 1];
    real B[maxgterms + 1];
    real Phi = 1;
    if (asym) {
        Phi = 0;
        for (int j = 1; j <= n; ++j) {
            al[j] = it.al[j];
            Phi += al[j] * out.pp[j];
        }
        if (!(Phi > 0)) bomb("calca", "size parameters give a sum <= 0 in " + ph.pname, 0);
        for (int j = 1; j <= n; ++j) phi[j] = al[j] * out.pp[j] / Phi;
        for (int g = 1; g <= ng; ++g) {
            const real S = al[ph.gt[g][0]] + al[ph.gt[g][1]];
            if (S == 0) bomb("calca", "zero size parameters in " + ph.pname, 0);
            B[g] = 2 * it.w[g] / S;
        }
    } else {
        for (int j = 1; j <= n; ++j) {
            al[j] = 1;
            phi[j] = out.pp[j];
        }
        for (int g = 1; g <= ng; ++g) B[g] = it.w[g];
        if (ph.aqkind)
            for (int g = 1; g <= ng; ++g)
                if (ph.gt[g][0] == 1 && solute(ph, ph.gt[g][1])) bomb("calca", "symmetric aq??", 1);
    }

    real u[maxemperphase + 1];
    pairproduct(ph, B, phi, u);
    const real half = dot(phi, u, n) / 2;
    for (int e = 1; e <= n; ++e) L[e] = al[e] * (u[e] - half);
    // A solute against the solvent keeps a finite coefficient at infinite
    // dilution: its pair counts with 1 + q1 q2.
    if (ph.aqkind)
        for (int g = 1; g <= ng; ++g)
            if (ph.gt[g][0] == 1 && solute(ph, ph.gt[g][1])) L[ph.gt[g][1]] -= al[ph.gt[g][1]] * B[g];

    if (dodx) {
        // Phi_v = sum alpha dp/dv; dphi = (alpha dp - phi Phi_v) / Phi.
        real dphi[maxemperphase + 1], Bd[maxemperphase + 1];
        for (int v = 1; v <= nv; ++v) {
            if (asym) {
                real Phiv = 0;
                for (int j = 1; j <= n; ++j) Phiv += al[j] * out.dpdx[j][v];
                for (int j = 1; j <= n; ++j) dphi[j] = (al[j] * out.dpdx[j][v] - phi[j] * Phiv) / Phi;
            } else {
                for (int j = 1; j <= n; ++j) dphi[j] = out.dpdx[j][v];
            }
            pairproduct(ph, B, dphi, Bd);
            const real s = dot(dphi, u, n);
            for (int e = 1; e <= n; ++e) out.dlnadx[e][v] += al[e] * (Bd[e] - s);
        }
    }

    if (doTP) {
        // For each of T and P: the weights' slopes BT, the slope of phi, and
        // then d(alpha h)/dT = alpha' h + alpha (BT phi - phi.BT phi/2 + B dphi - dphi.u).
        for (int which = 0; which < 2; ++which) {
            const real* wslope = which == 0 ? it.wb.data() : it.wc.data();
            const real* aslope = which == 0 ? it.alb.data() : it.alc.data();
            real BT[maxgterms + 1], dphi[maxemperphase + 1], uT[maxemperphase + 1],
                Bd[maxemperphase + 1];
            if (asym) {
                real PhiT = 0;
                for (int j = 1; j <= n; ++j) PhiT += aslope[j] * out.pp[j];
                for (int j = 1; j <= n; ++j) dphi[j] = (out.pp[j] * aslope[j] - phi[j] * PhiT) / Phi;
                for (int g = 1; g <= ng; ++g) {
                    const int i = ph.gt[g][0], j = ph.gt[g][1];
                    const real S = al[i] + al[j];
                    BT[g] = 2 * wslope[g] / S - B[g] * (aslope[i] + aslope[j]) / S;
                }
            } else {
                for (int j = 1; j <= n; ++j) dphi[j] = 0;
                for (int g = 1; g <= ng; ++g) BT[g] = wslope[g];
            }
            pairproduct(ph, BT, phi, uT);
            pairproduct(ph, B, dphi, Bd);
            const real halfT = dot(phi, uT, n) / 2;
            const real s = dot(dphi, u, n);
            real* d = which == 0 ? out.dlnadT.data() : out.dlnadP.data();
            for (int e = 1; e <= n; ++e) {
                const real da = asym ? aslope[e] : 0;
                d[e] += da * (u[e] - half) + al[e] * (uT[e] - halfT + Bd[e] - s);
            }
            if (ph.aqkind)
                for (int g = 1; g <= ng; ++g) {
                    const int e = ph.gt[g][1];
                    if (ph.gt[g][0] == 1 && solute(ph, e))
                        d[e] -= (asym ? aslope[e] : 0) * B[g] + al[e] * BT[g];
                }
        }
    }
}

}  // namespace

void phaseactivity(Run& run, int k, const real* x, int xo, bool doTP, bool dodx, real P, real T,
                   PhaseActivity& out) {
    const AxPhase& ph = run.phases.prec1[k];
    const int n = ph.nem, nv = ph.nxv, ns = ph.nsf;
    out.nem = n;
    out.nsf = ns;
    out.nxv = nv;
    const real RT = Rgas * T;

    // Site fractions and proportions, with their gradients.
    real dsf[maxsfvars + 1][maxnxv + 1];
    for (int s = 1; s <= ns; ++s)
        out.sf[s] = dodx ? evalxgrad(ph.pool, ph.sfexpr[s], x, xo, nv, dsf[s])
                         : evalx(ph.pool, ph.sfexpr[s], x, xo);
    for (int j = 1; j <= n; ++j)
        out.pp[j] = dodx ? evalxgrad(ph.pool, ph.pexpr[j], x, xo, nv, out.dpdx[j].data())
                         : evalx(ph.pool, ph.pexpr[j], x, xo);

    // Ideal mixing.
    for (int e = 1; e <= n; ++e) {
        const AxEndMember& em = ph.em[e];
        real m = em.norm;
        for (int t = 1; t <= em.nterm; ++t) {
            const real sf = out.sf[em.sfterm[t].sf];
            if (!(sf > 0)) negativesf(run, ph, x, xo, out, e, t);
            m *= sfpower(sf, em.sfterm[t].pw);
        }
        if (!(m > 0)) bomb("calca", "ln <= 0", 1);
        out.aid[e] = m;
        if (dodx)
            for (int v = 1; v <= nv; ++v) {
                real t = 0;
                for (int i = 1; i <= em.nterm; ++i) {
                    const int s = em.sfterm[i].sf;
                    t += em.sfterm[i].pw * dsf[s][v] / out.sf[s];
                }
                out.dlnadx[e][v] = RT * t;
            }
        if (doTP) {
            out.dlnadT[e] = Rgas * std::log(m);
            out.dlnadP[e] = 0;
        }
    }

    real L[maxemperphase + 1];
    if (ph.nonideal == ideal)
        for (int e = 1; e <= n; ++e) L[e] = 0;
    else
        nonideal(run, ph, doTP, dodx, P, T, out, L);
    for (int e = 1; e <= n; ++e) {
        out.rtlngam[e] = L[e];
        out.gam[e] = std::exp(L[e] / RT);
        out.aa[e] = out.aid[e] * out.gam[e];
    }
}

}  // namespace sm
