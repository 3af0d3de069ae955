// The equilibrium state of order of one phase at fixed P, T and bulk
// composition of the phase: the phase alone is the system, its order
// variables the unknowns, and each independent reaction among its
// end-members (which moves atoms between sites but not in or out of the
// phase) must have zero Gibbs energy. The general solver does the work on
// borrowed tables.
#include <cmath>
#include <utility>

#include "ax/activities.h"
#include "ax/order.h"
#include "console/intmath.h"
#include "console/runended.h"
#include "reactions/reactions.h"
#include "run.h"
#include "solver/nle.h"
#include "solver/unknowns.h"
#include "thermo/constants.h"
#include "thermo/gem.h"
#include "thermo/made_endmembers.h"

// Choices taken here:
// - The solver is borrowed whole: its tables, its counters and, through a
//   spare set of work arrays kept for the run, its work arrays, so that a
//   state of order can be solved even from within another solve.
// - The reactions are left at unit weight: their residuals are kJ. They
//   are solved to a largest residual of 1e-12 kJ (and a start is taken as
//   it stands only below 1e-8 kJ), far tighter than an equilibrium
//   calculation: a state of order is fixed from then on, and every later
//   calculation inherits its error.
// - A start that is not legal (outside the box or with a site fraction not
//   positive) is a failed solve without a word: the callers say what it
//   means, and findlegalq draws a new start.

namespace sm {

namespace {

// Everything of the run that the solve of one phase writes, put back on
// every way out.
class Borrowed {
public:
    Borrowed(Run& run, int n) : run_(run), n_(n), solver_(std::move(run.solver)) {
        ActivityState& as = run.activities;
        if (!as.orderwork) as.orderwork = std::make_unique<NleWork>();
        run.solver.work = std::move(as.orderwork);
        EndMemberStore& st = run.store;
        for (int k = 1; k <= st.nc; ++k)
            for (int j = 1; j <= n; ++j) c_[k][j] = st.c[k][j];
        for (int j = 1; j <= n; ++j) {
            r_[j] = st.r[j];
            td_[j] = st.td[j];
            nsites_[j] = st.nsites[j];
            emname_[j] = st.emname[j];
            set_[j] = run.reactions.reactionset[j];
        }
        nir_ = run.reactions.nir;
        nreactionset_ = run.reactions.nreactionset;
    }
    ~Borrowed() {
        run_.activities.orderwork = std::move(run_.solver.work);
        run_.solver = std::move(solver_);
        EndMemberStore& st = run_.store;
        for (int k = 1; k <= st.nc; ++k)
            for (int j = 1; j <= n_; ++j) st.c[k][j] = c_[k][j];
        for (int j = 1; j <= n_; ++j) {
            st.r[j] = r_[j];
            st.td[j] = td_[j];
            st.nsites[j] = nsites_[j];
            st.emname[j] = emname_[j];
            run_.reactions.reactionset[j] = set_[j];
        }
        run_.reactions.nir = nir_;
        run_.reactions.nreactionset = nreactionset_;
    }
    Borrowed(const Borrowed&) = delete;
    Borrowed& operator=(const Borrowed&) = delete;
    const SolverState& outer() const { return solver_; }

private:
    Run& run_;
    int n_;
    SolverState solver_;
    short c_[maxcomp + 1][maxemperphase + 1];
    std::array<short, maxnem + 1> r_[maxemperphase + 1];
    TdRow td_[maxemperphase + 1];
    int nsites_[maxemperphase + 1];
    sstring emname_[maxemperphase + 1];
    BitSet2 set_[maxemperphase + 1];
    int nir_, nreactionset_;
};

// The phase's site fractions at the true values v (its variables from 3).
bool sitefractionspositive(const AxPhase& ph, const NleVector& v) {
    for (int s = 1; s <= ph.nsf; ++s)
        if (!(evalx(ph.pool, ph.sfexpr[s], v.data(), 3) > 0)) return false;
    return true;
}

class OrderSystem : public NleSystem {
public:
    OrderSystem(Run& run, int phase, real P, real T) : run_(run), k_(phase), P_(P), T_(T) {}

    int nr = 0;
    int nu[maxemperphase + 1][maxemperphase + 1] = {};  // reactions by end-member
    real G[maxemperphase + 1] = {};                      // end-member energies at P, T

    // A point inside the box where every site fraction is positive.
    bool legal(const NleVector& x, NleVector& v) const {
        const SolverState& s = run_.solver;
        int bad = 0;
        if (!inbox(s, x, bad)) return false;
        for (int i = 1; i <= s.nx; ++i) v[i] = truevalue(s, x, i);
        return sitefractionspositive(run_.phases.prec1[k_], v);
    }

    bool nlefunc(const NleVector& x, NleMatrix& J, NleVector& F, bool wantJ) override {
        SolverState& s = run_.solver;
        NleVector v{};
        if (!legal(x, v)) {
            s.softillegal = true;
            return false;
        }
        phaseactivity(run_, k_, v.data(), 3, false, wantJ, P_, T_, pa_);
        const int n = pa_.nem;
        const real RT = Rgas * T_;
        real mu[maxemperphase + 1];
        for (int j = 1; j <= n; ++j) mu[j] = G[j] + RT * std::log(pa_.aid[j]) + pa_.rtlngam[j];
        for (int r = 1; r <= nr; ++r) {
            real f = 0;
            for (int j = 1; j <= n; ++j)
                if (nu[r][j] != 0) f += nu[r][j] * mu[j];
            F[r] = f;
            if (!wantJ) continue;
            for (int c = 1; c <= s.n; ++c) {
                const int i = s.activelist[c];
                real d = 0;
                for (int j = 1; j <= n; ++j)
                    if (nu[r][j] != 0) d += nu[r][j] * pa_.dlnadx[j][i - 2];
                J[r][c] = d / s.scale[i];
            }
        }
        return true;
    }
    real sfterm(const SfWatch& e, const NleVector& v) override { return sfwatchvalue(run_, e, v); }
    real sftermslope(const SfWatch& e, const NleVector& v, const NleVector& w, bool& zerofactor) override {
        return sfwatchslope(run_, e, v, w, zerofactor);
    }

private:
    Run& run_;
    int k_;
    real P_, T_;
    PhaseActivity pa_;
};

// Columns 1..n of c: the phase's end-members. A made end-member may hold a
// fraction of a component's unit, so each row is scaled to whole numbers;
// the reactions do not depend on the scale of a row.
void phasecolumns(Run& run, const AxPhase& ph) {
    EndMemberStore& st = run.store;
    for (int k = 1; k <= st.nc; ++k) {
        long long f = 1;
        for (int j = 1; j <= ph.nem; ++j) {
            const EmComposition& c = ph.em[j].comp;
            const long long g = gcd(c.cnum[k], static_cast<long long>(c.cden));
            f = lcm(f, c.cden / (g == 0 ? 1 : g));
        }
        for (int j = 1; j <= ph.nem; ++j) {
            const EmComposition& c = ph.em[j].comp;
            const long long v = c.cnum[k] * f / c.cden;
            if (v > 32767 || v < -32767) bomb("calcq", "composition matrix entries too large", 0);
            st.c[k][j] = static_cast<short>(v);
        }
    }
}

// The unknowns: P and T fixed, the phase's variables from 3, its order
// variables the active ones; the phase's oblique limits and the site
// fractions no limit covers.
int layout(Run& run, int phase, real P, real T) {
    SolverState& sv = run.solver;
    const AxPhase& ph = run.phases.prec1[phase];
    sv.nm = 0;
    sv.nx = 2 + ph.nxv;
    for (int i = 1; i <= maxnx; ++i) sv.active[i] = false;
    sv.xname[1] = "P(kbar)";
    sv.xname[2] = "T(C)";
    sv.x[1] = P;
    sv.x[2] = T;
    for (int i = 1; i <= 2; ++i) {
        sv.scale[i] = 1;
        sv.offset[i] = 0;
        sv.xstep[i] = 1;
        sv.limlo[i] = sv.limhi[i] = accwindow;
    }
    int nq = 0;
    for (int v = 1; v <= ph.nxv; ++v) {
        const AxVariable& xv = ph.xv[v];
        const int i = 2 + v;
        sv.xname[i] = xv.xname;
        setunknowncomp(sv, i, xv.lower, xv.upper, xv.limlo == limhard, xv.limhi == limhard);
        sv.active[i] = xv.isod;
        sv.x[i] = scaledvalue(sv, xv.guess, i);
        if (xv.isod) ++nq;
    }
    sv.nvarlim = 0;
    for (int l = 1; l <= ph.nvarlim; ++l) {
        if (sv.nvarlim >= maxvarlims) bomb("calcq", "too many varlims", 0);
        VarLim& vl = sv.varlim[++sv.nvarlim];
        vl = VarLim();
        for (int v = 1; v <= ph.nxv + 1; ++v) {
            vl.num[2 + v] = static_cast<short>(ph.varlim[l].num[v]);
            vl.den[2 + v] = static_cast<short>(ph.varlim[l].den[v]);
        }
    }
    sv.nsfterm = 0;
    if (!ph.nofsfok)
        for (int s = 1; s <= ph.nsf; ++s) {
            if (ph.sfcovered[s]) continue;
            if (sv.nsfterm >= maxwatchedsf) bomb("calcq", "no site fractions not handled too big", 1);
            SfWatch& w = sv.sfterm[++sv.nsfterm];
            w.phase = phase;
            w.term = s;
            w.xstart = 3;
            w.nvar = ph.nxv;
            w.phasename = ph.pname;
        }
    return nq;
}

}  // namespace

bool calcq(Run& run, int phase, real P, real T) {
    AxPhase& ph = run.phases.prec1[phase];
    if (!ph.hasq) bomb("calcq", "not an OD phase", 0);
    const int n = ph.nem;
    Borrowed borrowed(run, n);
    SolverState& sv = run.solver;
    // The run's tolerances and kind of run, at the quiet level.
    static_cast<NleTables&>(sv) = static_cast<const NleTables&>(borrowed.outer());
    sv.printlevel = 0;
    sv.esize = 1e-12L;
    sv.fsize = 5e-17L;

    OrderSystem sys(run, phase, P, T);
    phasecolumns(run, ph);
    ReactionStore& rs = run.reactions;
    rs.nir = 0;
    rs.nreactionset = 0;
    nullspace(run, run.store.nc, n);
    sys.nr = rs.nir;
    for (int r = 1; r <= sys.nr; ++r)
        for (int j = 1; j <= n; ++j) sys.nu[r][j] = run.store.r[r][j];
    for (int j = 1; j <= n; ++j) {
        putemrow(run, phase, j, j);
        sys.G[j] = gemdriver(run, j, P, T);
    }

    const int nq = layout(run, phase, P, T);
    if (sys.nr != nq) bomb("calcq", "no of reactions not equal to no of Qs", 0);

    NleVector v{};
    if (!sys.legal(sv.x, v)) return false;
    int result = 0;
    if (!nle(run, sys, result)) return false;
    for (int i = 1; i <= ph.nxv; ++i)
        if (ph.xv[i].isod) ph.xv[i].guess = truevalue(sv, sv.x, 2 + i);
    return true;
}

}  // namespace sm
