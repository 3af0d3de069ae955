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
#include <cstring>
#include <string>

#include "ax/activities.h"
#include "ax/explog.h"
#include "ax/interactions.h"
#include "ax/sf_tables.h"
#include "console/format.h"
#include "console/runended.h"
#include "run.h"
#include "thermo/constants.h"

namespace sm {

namespace {

// sf^power, with the cheap forms for the common powers, told apart by the
// power's numerator and denominator as written.
real sfpower(real sf, const SfTerm& t) {
    const int num = t.power.num, den = t.power.den;
    if (den == 1 || num == den) {
        const int q = den == 1 ? num : 1;
        if (q == 1) return sf;
        if (q >= 0 && q <= 8) {
            real r = 1;
            for (int i = q; i > 0; --i) r *= sf;
            return r;
        }
    } else if (2 * num == den) {
        return std::sqrt(sf);
    }
    return rexp(t.pw * rlog(sf));
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

    // phi and the pair weights B, also as a dense symmetric matrix.
    real phi[maxemperphase + 1], al[maxemperphase + 1];
    real B[maxgterms + 1], invS[maxgterms + 1];
    real Bm[maxemperphase * maxemperphase];  // B by rows of n, from 0
    real Phi = 1, invPhi = 1;
    if (asym) {
        Phi = 0;
        for (int j = 1; j <= n; ++j) {
            al[j] = it.al[j];
            Phi += al[j] * out.pp[j];
        }
        if (!(Phi > 0)) bomb("calca", "size parameters give a sum <= 0 in " + ph.pname, 0);
        invPhi = 1 / Phi;
        for (int j = 1; j <= n; ++j) phi[j] = al[j] * out.pp[j] * invPhi;
        for (int g = 1; g <= ng; ++g) {
            const real S = al[ph.gt[g][0]] + al[ph.gt[g][1]];
            if (S == 0) bomb("calca", "zero size parameters in " + ph.pname, 0);
            invS[g] = 1 / S;
            B[g] = 2 * it.w[g] * invS[g];
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
    const real phiu = dot(phi, u, n);
    for (int e = 1; e <= n; ++e) L[e] = al[e] * (u[e] - phiu / 2);
    // A solute against the solvent keeps a finite coefficient at infinite
    // dilution: its pair counts with 1 + q1 q2.
    if (ph.aqkind)
        for (int g = 1; g <= ng; ++g)
            if (ph.gt[g][0] == 1 && solute(ph, ph.gt[g][1])) L[ph.gt[g][1]] -= al[ph.gt[g][1]] * B[g];

    if (dodx) {
        for (int i = 0; i < n * n; ++i) Bm[i] = 0;
        for (int g = 1; g <= ng; ++g) {
            const int i = ph.gt[g][0] - 1, j = ph.gt[g][1] - 1;
            Bm[i * n + j] += B[g];
            Bm[j * n + i] += B[g];
        }
        // Along variable v, with c = alpha dp/dv (a few end-members only):
        // B dphi = (B c - Phi_v u) / Phi and dphi.u = (c.u - Phi_v phi.u) / Phi.
        for (int v = 1; v <= nv; ++v) {
            real c[maxemperphase];
            int at[maxemperphase];
            int m = 0;
            real Phiv = 0, cu = 0;
            for (int j = 1; j <= n; ++j) {
                const real dp = out.dpdx[j][v];
                if (dp == 0) continue;
                c[m] = al[j] * dp;
                at[m] = j - 1;
                Phiv += c[m];
                cu += c[m] * u[j];
                ++m;
            }
            const real shift = Phiv * phiu - cu;
            for (int e = 1; e <= n; ++e) {
                const real* row = Bm + (e - 1) * n;
                real y = 0;  // (B c)[e]
                for (int t = 0; t < m; ++t) y += c[t] * row[at[t]];
                out.dlnadx[e][v] += asym ? al[e] * invPhi * (y - Phiv * u[e] + shift) : y - cu;
            }
        }
    }

    if (doTP) {
        // For each of T and P: the slopes of the weights BT and of phi, and
        // d(alpha h)/dT = alpha' h + alpha (BT phi - phi.BT phi/2 + B dphi - dphi.u).
        for (int which = 0; which < 2; ++which) {
            const real* wslope = which == 0 ? it.wb : it.wc;
            const real* aslope = which == 0 ? it.alb : it.alc;
            const bool wmoves = moves(wslope, ng);
            const bool amoves = asym && moves(aslope, n);
            if (!wmoves && !amoves) continue;
            real* d = which == 0 ? out.dlnadT.data() : out.dlnadP.data();
            real BT[maxgterms + 1], uT[maxemperphase + 1];
            if (!asym) {
                pairproduct(ph, wslope, phi, uT);
                const real halfT = dot(phi, uT, n) / 2;
                for (int e = 1; e <= n; ++e) d[e] += uT[e] - halfT;
                continue;
            }
            for (int g = 1; g <= ng; ++g) {
                const int i = ph.gt[g][0], j = ph.gt[g][1];
                BT[g] = (2 * wslope[g] - B[g] * (aslope[i] + aslope[j])) * invS[g];
            }
            pairproduct(ph, BT, phi, uT);
            const real halfT = dot(phi, uT, n) / 2;
            real Bd[maxemperphase + 1], s = 0;
            for (int e = 1; e <= n; ++e) Bd[e] = 0;
            if (amoves) {
                real PhiT = 0;
                for (int j = 1; j <= n; ++j) PhiT += aslope[j] * out.pp[j];
                real dphi[maxemperphase + 1];
                for (int j = 1; j <= n; ++j) dphi[j] = (out.pp[j] * aslope[j] - phi[j] * PhiT) * invPhi;
                pairproduct(ph, B, dphi, Bd);
                s = dot(dphi, u, n);
            }
            for (int e = 1; e <= n; ++e)
                d[e] += aslope[e] * (u[e] - phiu / 2) + al[e] * (uT[e] - halfT + Bd[e] - s);
            if (ph.aqkind)
                for (int g = 1; g <= ng; ++g) {
                    const int e = ph.gt[g][1];
                    if (ph.gt[g][0] == 1 && solute(ph, e)) d[e] -= aslope[e] * B[g] + al[e] * BT[g];
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
    if (dodx) {
        // The gradients start at zero, each table in one sweep.
        std::memset(&dsf[1][0], 0, sizeof(dsf[0]) * ns);
        std::memset(out.dpdx[1].data(), 0, sizeof(out.dpdx[0]) * n);
        for (int s = 1; s <= ns; ++s) out.sf[s] = evalxaddgrad(ph.pool, ph.sfexpr[s], x, xo, dsf[s]);
        for (int j = 1; j <= n; ++j) out.pp[j] = evalxaddgrad(ph.pool, ph.pexpr[j], x, xo, out.dpdx[j].data());
    } else {
        for (int s = 1; s <= ns; ++s) out.sf[s] = evalx(ph.pool, ph.sfexpr[s], x, xo);
        for (int j = 1; j <= n; ++j) out.pp[j] = evalx(ph.pool, ph.pexpr[j], x, xo);
    }

    // RT d ln sf / dx, once for every site fraction, kept as the few
    // variables each one depends on with their values.
    real dlnsf[maxsfvars + 1][maxnxv];
    int dvar[maxsfvars + 1][maxnxv];
    int ndep[maxsfvars + 1];
    if (dodx)
        for (int s = 1; s <= ns; ++s) {
            ndep[s] = 0;
            if (!(out.sf[s] > 0)) continue;  // stops below if any end-member uses it
            const real inv = RT / out.sf[s];
            for (int v = 1; v <= nv; ++v)
                if (dsf[s][v] != 0) {
                    dvar[s][ndep[s]] = v;
                    dlnsf[s][ndep[s]++] = dsf[s][v] * inv;
                }
        }

    // Ideal mixing.
    for (int e = 1; e <= n; ++e) {
        const AxEndMember& em = ph.em[e];
        real m = em.norm;
        for (int t = 1; t <= em.nterm; ++t) {
            const real sf = out.sf[em.sfterm[t].sf];
            if (!(sf > 0)) negativesf(run, ph, x, xo, out, e, t);
            m *= sfpower(sf, em.sfterm[t]);
        }
        if (!(m > 0)) bomb("calca", "ln <= 0", 1);
        out.aid[e] = m;
        if (dodx) {
            real* d = out.dlnadx[e].data();
            for (int v = 1; v <= nv; ++v) d[v] = 0;
            for (int t = 1; t <= em.nterm; ++t) {
                const int s = em.sfterm[t].sf;
                const real pw = em.sfterm[t].pw;
                for (int i = 0; i < ndep[s]; ++i) d[dvar[s][i]] += pw * dlnsf[s][i];
            }
        }
        if (doTP) {
            out.dlnadT[e] = Rgas * rlog(m);
            out.dlnadP[e] = 0;
        }
    }

    real L[maxemperphase + 1];
    if (ph.nonideal == ideal)
        for (int e = 1; e <= n; ++e) L[e] = 0;
    else
        nonideal(run, ph, doTP, dodx, P, T, out, L);
    const real invRT = 1 / RT;
    for (int e = 1; e <= n; ++e) {
        out.rtlngam[e] = L[e];
        out.gam[e] = L[e] == 0 ? 1 : rexp(L[e] * invRT);
        out.aa[e] = out.aid[e] * out.gam[e];
    }
}

}  // namespace sm
