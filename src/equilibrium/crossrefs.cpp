// The layout of one assemblage: its end-members in the rows of emname, td
// and c, one row for each phase and end-member, and its unknowns in x: P,
// T, the compositional variables of its a-x phases, then its modes. The
// linear limits and the site fractions the solver must watch come with the
// variables.
#include <cmath>
#include <string>

#include "console/intmath.h"
#include "console/runended.h"
#include "equilibrium/composition.h"
#include "equilibrium/equations.h"
#include "run.h"
#include "solver/unknowns.h"
#include "thermo/made_endmembers.h"

namespace sm {

namespace {

const EmComposition& rowcomposition(const Run& run, const PhaseSlot& s, int j) {
    return s.pure ? run.phases.prec0[s.phase].comp : run.phases.prec1[s.phase].em[j].comp;
}

// Columns of c for the laid-out rows. A made end-member can carry a
// fraction of a component's unit (a half of jadeite's half Na2O), so a
// row's scale grows until every entry is whole again: c/cscale stays the
// true composition, and reactions stay integer.
void makecolumns(Run& run) {
    EndMemberStore& st = run.store;
    EquilibriumState& eq = run.equilibrium;
    for (int k = 1; k <= st.nc; ++k) {
        long long f = 1;
        for (int s = 1; s <= eq.nslot; ++s)
            for (int j = 1; j <= eq.slot[s].nrows; ++j) {
                const EmComposition& c = rowcomposition(run, eq.slot[s], j);
                const long long g = gcd(c.cnum[k], c.cden);
                f = lcm(f, c.cden / (g == 0 ? 1 : g));
            }
        st.cscale[k] = static_cast<int>(eq.basecscale[k] * f);
        for (int i = 1; i <= maxnem; ++i) st.c[k][i] = 0;
        for (int s = 1; s <= eq.nslot; ++s)
            for (int j = 1; j <= eq.slot[s].nrows; ++j) {
                const EmComposition& c = rowcomposition(run, eq.slot[s], j);
                const long long v = c.cnum[k] * f / c.cden;
                if (v > 32767 || v < -32767) bomb("makecrossrefs", "composition matrix entries too large", 0);
                st.c[k][eq.slot[s].firstrow + j - 1] = static_cast<short>(v);
            }
    }
    // Per-row composition on the reduced system, and its atoms there, for
    // the mass balance.
    for (int i = 1; i <= st.nem; ++i) {
        real size = 0;
        for (int j = 1; j <= eq.nuvleft; ++j) {
            const int k = eq.reducedcomp[j];
            const real v = static_cast<real>(st.c[k][i]) / static_cast<real>(st.cscale[k]);
            eq.emred[i][j] = v;
            size += st.catomsum[k] * v;
        }
        eq.emsize[i] = size;
    }
}

void layoutvariables(Run& run, PhaseSlot& s, int k, int& xi) {
    SolverState& sv = run.solver;
    EquilibriumState& eq = run.equilibrium;
    const AxPhase& ph = run.phases.prec1[k];
    s.xstart = xi + 1;
    s.nvar = ph.nxv;
    for (int v = 1; v <= ph.nxv; ++v) {
        if (xi >= maxnx) bomb("makecrossrefs", "too many variables", 0);
        const int i = ++xi;
        const AxVariable& xv = ph.xv[v];
        sv.xname[i] = xv.xname;
        setunknowncomp(sv, i, xv.lower, xv.upper, xv.limlo == limhard, xv.limhi == limhard);
        const int entry = eq.set.setvariable[k][v];
        sv.active[i] = entry == 0;
        eq.loopindex[i] = entry;
        eq.xslot[i] = eq.nslot;
        if (eq.set.fluidtype == 5 && (xv.xname == "x(CO2)" || xv.xname == "x(fluid)")) eq.ixco2 = i;
    }
}

// Oblique limits of the phases, on positions of x, with the constant after
// the last variable; and the site fractions no limit keeps positive.
void layoutlimits(Run& run) {
    SolverState& sv = run.solver;
    const EquilibriumState& eq = run.equilibrium;
    sv.nvarlim = 0;
    sv.nsfterm = 0;
    for (int s = 1; s <= eq.nslot; ++s) {
        const PhaseSlot& slot = eq.slot[s];
        if (slot.pure) continue;
        const AxPhase& ph = run.phases.prec1[slot.phase];
        for (int l = 1; l <= ph.nvarlim; ++l) {
            if (sv.nvarlim >= maxvarlims) bomb("makecrossrefs", "too many varlims", 0);
            VarLim& vl = sv.varlim[++sv.nvarlim];
            vl = VarLim();
            for (int v = 1; v <= ph.nxv; ++v) {
                vl.num[slot.xstart + v - 1] = static_cast<short>(ph.varlim[l].num[v]);
                vl.den[slot.xstart + v - 1] = static_cast<short>(ph.varlim[l].den[v]);
            }
            vl.num[sv.nx + 1] = static_cast<short>(ph.varlim[l].num[ph.nxv + 1]);
            vl.den[sv.nx + 1] = static_cast<short>(ph.varlim[l].den[ph.nxv + 1]);
        }
        if (ph.nofsfok) continue;
        for (int t = 1; t <= ph.nsf; ++t) {
            if (ph.sfcovered[t]) continue;
            if (sv.nsfterm >= maxwatchedsf) bomb("makecrossrefs", "no site fractions not handled too big", 1);
            SfWatch& w = sv.sfterm[++sv.nsfterm];
            w.phase = slot.phase;
            w.term = t;
            w.xstart = slot.xstart;
            w.nvar = slot.nvar;
            w.phasename = ph.pname;
        }
    }
}

void layoutmode(Run& run, PhaseSlot& s, int i) {
    SolverState& sv = run.solver;
    EquilibriumState& eq = run.equilibrium;
    s.modex = i;
    s.hasmode = true;
    sv.xname[i] = s.name;
    setunknownmode(sv, i, sv.phi);
    const int entry = eq.set.setmode[s.runphase];
    sv.active[i] = entry == 0;
    eq.loopindex[i] = entry;
}

void layoutmodes(Run& run) {
    SolverState& sv = run.solver;
    EquilibriumState& eq = run.equilibrium;
    eq.nmss = 0;
    sv.nm = 0;
    if (eq.set.modesbynle) {
        int i = sv.nx;
        for (int s = 1; s <= eq.nslot; ++s) {
            PhaseSlot& slot = eq.slot[s];
            if (slot.pure || slot.xco2fluid) continue;
            if (i >= maxnx) bomb("makecrossrefs", "too many modes-1", 0);
            eq.xslot[++i] = s;
            layoutmode(run, slot, i);
        }
        eq.nmss = i - sv.nx;
        for (int s = 1; s <= eq.nslot; ++s) {
            PhaseSlot& slot = eq.slot[s];
            if (!slot.pure || slot.setphase) continue;
            if (i >= maxnx) bomb("makecrossrefs", "too many modes-2", 0);
            eq.xslot[++i] = s;
            layoutmode(run, slot, i);
        }
        sv.nm = i - sv.nx;
    } else if (eq.set.modesafternle) {
        for (int s = 1; s <= eq.nslot && sv.nx + s <= maxnx; ++s) {
            sv.xname[sv.nx + s] = eq.slot[s].name;
            sv.active[sv.nx + s] = true;
            eq.slot[s].hasmode = !eq.slot[s].xco2fluid && !eq.slot[s].setphase;
        }
    }
}

}  // namespace

void makecrossrefs(Run& run, const Assemblage& taken) {
    takebasecscale(run);
    EndMemberStore& st = run.store;
    const PhaseStore& ps = run.phases;
    EquilibriumState& eq = run.equilibrium;
    SolverState& sv = run.solver;

    int count = 0;
    for (int k = 1; k <= st.npss + st.nmin; ++k)
        if (taken[k]) ++count;
    if (count > maxsummary) bomb("makecrossrefs", "too many phases", 0);

    eq.nslot = 0;
    eq.ixco2 = 0;
    ActivityState& act = run.activities;
    act.inss.fill(false);
    act.emphase.fill(0);
    act.emstart.fill(0);
    eq.emslot.fill(0);
    eq.loopindex.fill(0);
    eq.xslot.fill(0);
    for (int i = 1; i <= maxnx; ++i) {
        sv.active[i] = false;
        sv.xname[i].clear();
    }
    sv.xname[1] = "P(kbar)";
    sv.xname[2] = "T(C)";
    sv.active[1] = sv.active[2] = true;

    int row = 0, xi = 2;
    auto addrow = [&](int phase, int em) {
        if (row >= maxnem) bomb("makecrossrefs", "too many end-members", 0);
        putemrow(run, phase, em, ++row);
        eq.emslot[row] = eq.nslot;
        eq.member[row] = phase > 0 ? run.made.axrow[phase] + em : run.made.purerow + em;
    };
    for (int k = 1; k <= st.npss; ++k) {
        if (!taken[k]) continue;
        const AxPhase& ph = ps.prec1[k];
        PhaseSlot& s = eq.slot[++eq.nslot];
        s = PhaseSlot();
        s.name = ph.pname;
        s.phase = s.runphase = k;
        s.firstrow = row + 1;
        s.nrows = ph.nem;
        s.fluid = ph.fluidkind;
        s.aqueous = ph.aqkind;
        s.xco2fluid = eq.set.usexco2calc && ph.fluidkind;
        layoutvariables(run, s, k, xi);
        for (int j = 1; j <= ph.nem; ++j) {
            addrow(k, j);
            act.inss[row] = true;
            act.emphase[row] = k;
            act.emstart[row] = s.xstart;
        }
    }
    eq.naxrows = row;
    for (int k = 1; k <= st.nmin; ++k) {
        if (!taken[st.npss + k]) continue;
        PhaseSlot& s = eq.slot[++eq.nslot];
        s = PhaseSlot();
        s.name = ps.prec0[k].pname;
        s.pure = true;
        s.phase = k;
        s.runphase = st.npss + k;
        s.firstrow = row + 1;
        s.nrows = 1;
        s.setphase = eq.set.setactivity[k] || eq.set.setpotential[k];
        addrow(0, k);
    }
    st.nem = row;
    for (int i = row + 1; i <= maxnem; ++i) st.emname[i].clear();
    sv.nx = xi;

    makecolumns(run);
    layoutlimits(run);
    layoutmodes(run);
    for (int i = 1; i <= maxnem; ++i) st.activ[i] = 1;
    findspecialrows(st);

    // The reactions of the assemblage range over all its rows; those of
    // a-x phases weigh in the size of a reaction.
    ReactionStore& rs = run.reactions;
    rs.nemp = st.nem;
    rs.ninexcess = 0;
    rs.ncompp = st.nc;
    rs.naxem = eq.naxrows;
    for (int k = 0; k <= maxcomp; ++k) rs.div[k] = 1;
}

}  // namespace sm
