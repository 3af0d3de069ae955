// Contraction of a phase whose variables are partly set to zero: a garnet
// without Ca loses its grossular, a mica without ferric iron its ferric
// end-member, and the activity model then works on what is left.
#include <array>

#include "ax/phase_prep.h"
#include "console/runended.h"

namespace sm {

namespace {

// Copies expression e into `out`, renumbering variables by `map` (0 drops a
// term). A form left with no terms and a zero constant makes its product
// vanish; vanished products are left out. The result may be empty.
Expr copycontracted(const ExprPool& in, const Expr& e, const int* map, ExprPool& out) {
    Expr r;
    r.first = static_cast<int>(out.sx.size());
    for (int s = 0; s < e.nsx; ++s) {
        const SxTerm& sx = in.sx[e.first + s];
        if (sx.factor == 0) continue;
        SxTerm nsx = sx;
        nsx.first = static_cast<int>(out.form.size());
        const size_t termmark = out.term.size();
        for (int j = 0; j < sx.nform; ++j) {
            LinForm f = in.form[sx.first + j];
            LinForm nf = f;
            nf.first = static_cast<int>(out.term.size());
            nf.nterm = 0;
            for (int t = 0; t < f.nterm; ++t) {
                LinTerm term = in.term[f.first + t];
                if (map[term.var] == 0) continue;
                term.var = map[term.var];
                out.term.push_back(term);
                ++nf.nterm;
            }
            if (nf.nterm == 0 && nf.crat.num == 0) nsx.factor = 0;
            out.form.push_back(nf);
        }
        if (nsx.factor == 0) {
            out.form.resize(nsx.first);
            out.term.resize(termmark);
            continue;
        }
        out.sx.push_back(nsx);
        ++r.nsx;
    }
    return r;
}

}  // namespace

void contract(AxPhase& ph) {
    std::array<int, maxnxv + 1> vmap{};
    int nxv = 0;
    for (int v = 1; v <= ph.nxv; ++v) {
        if (ph.xv[v].guess == 0) {
            ph.zeroname[++ph.nzero] = ph.xv[v].xname;
            vmap[v] = 0;
        } else {
            vmap[v] = ++nxv;
        }
    }
    if (nxv == ph.nxv) return;
    ph.contracted = true;

    ExprPool pool;
    std::array<Expr, maxemperphase + 1> pexpr{};
    std::array<Expr, maxsfvars + 1> sfexpr{};
    for (int j = 1; j <= ph.nem; ++j) pexpr[j] = copycontracted(ph.pool, ph.pexpr[j], vmap.data(), pool);
    for (int s = 1; s <= ph.nsf; ++s) sfexpr[s] = copycontracted(ph.pool, ph.sfexpr[s], vmap.data(), pool);

    // End-members whose proportion has vanished.
    std::array<int, maxemperphase + 1> emap{};
    int nem = 0;
    for (int j = 1, full = 0; j <= ph.nem; ++j) {
        while (ph.emcontract[++full]) {}
        if (pexpr[j].nsx == 0) {
            ph.emcontract[full] = true;
            emap[j] = 0;
        } else {
            emap[j] = ++nem;
        }
    }
    // Site fractions that are zero whatever the variables.
    std::array<int, maxsfvars + 1> smap{};
    int nsf = 0;
    for (int s = 1, full = 0; s <= ph.nsf; ++s) {
        while (ph.sfcontract[++full]) {}
        if (sfexpr[s].nsx == 0) {
            ph.sfcontract[full] = true;
            smap[s] = 0;
        } else {
            smap[s] = ++nsf;
        }
    }
    if (nxv != nem - 1 || nem < 1) bomb("setupphases", "contraction wrong size", 0);

    // Variable definitions are in proportions: keep them with the
    // proportions that are left.
    for (int v = 1; v <= ph.nxv; ++v) {
        AxVariable& x = ph.xv[v];
        if (!x.hasdef || vmap[v] == 0) continue;
        x.defnum = copycontracted(ph.pool, x.defnum, emap.data(), pool);
        x.defden = copycontracted(ph.pool, x.defden, emap.data(), pool);
        if (x.defnum.nsx == 0 || x.defden.nsx == 0) x.hasdef = false;
    }

    // Pack the tables by end-member.
    for (int j = 1; j <= ph.nem; ++j) {
        const int k = emap[j];
        if (k == 0) continue;
        if (k != j) {
            ph.em[k] = ph.em[j];
            ph.propname[k] = ph.propname[j];
            ph.aname[k] = ph.aname[j];
            ph.aa[k] = ph.aa[j];
            ph.ab[k] = ph.ab[j];
            ph.ac[k] = ph.ac[j];
        }
        ph.pexpr[k] = pexpr[j];
    }
    // Pairs between end-members that are left.
    int ngt = 0;
    for (int g = 1; g <= ph.ngt; ++g) {
        const int a = emap[ph.gt[g][0]], b = emap[ph.gt[g][1]];
        if (a == 0 || b == 0) continue;
        ++ngt;
        ph.gt[ngt] = {a, b};
        ph.wname[ngt] = ph.wname[g];
        ph.wa[ngt] = ph.wa[g];
        ph.wb[ngt] = ph.wb[g];
        ph.wc[ngt] = ph.wc[g];
        ph.wsd[ngt] = ph.wsd[g];
        ph.wunset[ngt] = ph.wunset[g];
    }
    ph.ngt = ngt;
    // Site fractions, and the ideal-mixing terms that used them.
    for (int s = 1; s <= ph.nsf; ++s)
        if (smap[s] != 0) {
            ph.sfname[smap[s]] = ph.sfname[s];
            ph.sfexpr[smap[s]] = sfexpr[s];
        }
    for (int j = 1; j <= nem; ++j) {
        AxEndMember& em = ph.em[j];
        int n = 0;
        for (int t = 1; t <= em.nterm; ++t) {
            if (smap[em.sfterm[t].sf] == 0) continue;
            em.sfterm[++n] = em.sfterm[t];
            em.sfterm[n].sf = smap[em.sfterm[t].sf];
        }
        em.nterm = n;
        // The check values of the variables that are left.
        for (int v = 1; v <= ph.nxv; ++v)
            if (vmap[v] != 0) em.checkx[vmap[v]] = em.checkx[v];
    }
    // Variables.
    ph.hasq = false;
    for (int v = 1; v <= ph.nxv; ++v)
        if (vmap[v] != 0) {
            if (vmap[v] != v) ph.xv[vmap[v]] = ph.xv[v];
            if (ph.xv[vmap[v]].isod) ph.hasq = true;
        }
    ph.nem = nem;
    ph.nxv = nxv;
    ph.nsf = nsf;
    ph.pool = std::move(pool);
}

}  // namespace sm
