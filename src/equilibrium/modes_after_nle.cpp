// Modes from the bulk once the solver has fixed the phase compositions: for
// a fixed assemblage along a line of bulks the compositions do not depend
// on the bulk, so the modes at each position are a linear problem. When
// the phases span the reduced system exactly, each bulk has one set of
// modes. With one phase more, the phases are related by a reaction and the
// assemblage covers a band of bulks: each position gets the two
// assemblages at the ends of the reaction.
#include <algorithm>
#include <cmath>

#include "console/format.h"
#include "console/runended.h"
#include "equilibrium/composition.h"
#include "equilibrium/equations.h"
#include "reactions/realreaction.h"
#include "run.h"

namespace sm {

namespace {

struct ModeWork {
    PhaseColumns pc;
    std::array<real, maxnx + 1> at{}, atcut{};
    int nph = 0;
    std::vector<real> amount;  // by phase column
};

void setposition(Run& run, int position) {
    EquilibriumState& eq = run.equilibrium;
    if (eq.nbulk > 1) {
        const real q = static_cast<real>(position - 1) / static_cast<real>(eq.nbulk - 1);
        for (int j = 1; j <= eq.nuvleft; ++j) eq.b[j] = (eq.bulk1[j] * (1 - q) + eq.bulk2[j] * q) / 100;
        eq.bulkposition = eq.bulkfrom + q * (eq.bulkto - eq.bulkfrom);
    } else {
        for (int j = 1; j <= eq.nuvleft; ++j) eq.b[j] = eq.bulk1[j] / 100;
    }
}

// The amounts of the phases of `use` (column numbers) that make the bulk of
// the position; true when none is negative. Unless raw, the amounts become
// modes: atoms of the whole phase, summing to 1.
bool modesat(Run& run, ModeWork& w, int position, bool rawonly, const std::vector<int>& use) {
    const EquilibriumState& eq = run.equilibrium;
    setposition(run, position);
    const int rows = eq.nuvleft;
    const int cols = static_cast<int>(use.size()) + 1;
    RealMatrix m(rows + 1, std::vector<real>(cols + 1, 0));
    for (int j = 1; j <= rows; ++j) {
        for (int c = 1; c < cols; ++c) m[j][c] = w.pc.C[j][use[c - 1]];
        m[j][cols] = eq.b[j];
    }
    std::vector<real> v;
    realreaction(run, m, rows, cols, v);
    std::fill(w.amount.begin(), w.amount.end(), 0);
    bool good = true;
    for (int c = 1; c < cols; ++c) {
        w.amount[use[c - 1]] = v[c];
        if (v[c] < 0) good = false;
    }
    if (rawonly) return good;
    real sum = 0;
    for (int k : use) {
        w.amount[k] *= w.at[k] / w.atcut[k];
        sum += w.amount[k];
    }
    if (std::fabs(sum) <= 1e-10L) {
        for (int k : use) w.amount[k] = 0.001L;
    } else {
        for (int k : use) w.amount[k] /= sum;
    }
    return good;
}

void storecolumn(Run& run, const ModeWork& w, int limit) {
    EquilibriumState& eq = run.equilibrium;
    ModeColumns& mc = eq.modes;
    if (mc.ncolumns >= limit) bomb("modes after nle", limit == maxbulkpositions ? "too many modes" : "too many", 0);
    const int col = ++mc.ncolumns;
    for (int s = 0; s <= maxsummary; ++s) mc.mode[col][s] = -1;
    real musum = 0;
    int nsetpot = 0;
    for (int c = 1; c <= w.nph; ++c) {
        const PhaseSlot& slot = eq.slot[w.pc.slot[c]];
        if (slot.pure && eq.set.setpotential[slot.phase]) ++nsetpot;
    }
    for (int c = 1; c <= w.nph - nsetpot; ++c) musum += w.amount[c];
    for (int c = 1; c <= w.nph; ++c) {
        real m = w.amount[c];
        if (eq.set.nmu > 0 && musum != 0) m /= musum;
        mc.mode[col][w.pc.slot[c]] = m;
    }
    mc.position[col] = eq.bulkposition;
}

// The phases with a positive coefficient, with all those of the other side
// but one; each of the other side left out in turn until the bulk fits.
bool endofreaction(Run& run, ModeWork& w, int position, const std::vector<real>& coef, int side, bool rawonly,
                   std::vector<int>& use) {
    std::vector<int> keep, other;
    for (int c = 1; c <= w.nph; ++c) (coef[c] * side > 0 ? keep : other).push_back(c);
    if (other.empty()) {
        use = keep;
        return modesat(run, w, position, rawonly, use);
    }
    for (size_t out = 0; out < other.size(); ++out) {
        use = keep;
        for (size_t o = 0; o < other.size(); ++o)
            if (o != out) use.push_back(other[o]);
        if (modesat(run, w, position, rawonly, use)) return true;
    }
    return false;
}

}  // namespace

void calcmodesafternle(Run& run, bool& ok, std::string& problem) {
    EquilibriumState& eq = run.equilibrium;
    ModeColumns& mc = eq.modes;
    ok = false;
    problem.clear();
    ModeWork w;
    const real* x = eq.xtrue.data();
    makec(run, x, w.pc);
    const int sized = phasesizes(run, x, w.at, w.atcut);
    if (sized != w.pc.ncol) {
        putstr(run.io, 0, "phases: " + std::to_string(w.pc.ncol) + ", sizes: " + std::to_string(sized), 1, chall);
        bomb("calcmodesafternle", "dimensions do not match", 0);
    }
    w.nph = w.pc.ncol;
    w.amount.assign(w.nph + 1, 0);
    for (int c = 1; c <= w.nph; ++c)
        for (int j = 1; j <= eq.nuvleft; ++j) w.pc.C[j][c] /= w.atcut[c];
    mc.ncolumns = 0;
    mc.firstcolumn = 0;
    mc.flag.fill(0);
    mc.nphases = eq.nslot;
    const int positions = std::min(eq.nbulk, maxbulkpositions);
    const int extra = 2 - w.nph + eq.nuvleft - eq.rankdeficit;
    if (extra == 2) {
        std::vector<int> use;
        for (int c = 1; c <= w.nph; ++c) use.push_back(c);
        for (int p = 1; p <= positions; ++p) {
            if (!modesat(run, w, p, false, use)) continue;
            mc.flag[p] = 1;
            storecolumn(run, w, maxbulkpositions);
            if (mc.firstcolumn == 0) mc.firstcolumn = p;
        }
    } else if (extra == 1) {
        std::vector<real> coef;
        std::vector<sstring> names;
        std::string text;
        phasereaction(run, coef, names, text);
        // Coefficients by phase column.
        std::vector<real> pcoef(w.nph + 1, 0);
        for (int c = 1; c <= w.nph; ++c) pcoef[c] = coef[w.pc.slot[c]];
        real largest = 0;
        for (int c = 1; c <= w.nph; ++c) largest = std::max(largest, std::fabs(pcoef[c]));
        for (int c = 1; c <= w.nph; ++c)
            if (std::fabs(pcoef[c]) < 1e-8L * largest) pcoef[c] = run.machineeps;
        int npos = 0;
        for (int c = 1; c <= w.nph; ++c) npos += pcoef[c] > 0 ? 1 : 0;
        if (w.nph - npos > npos) {
            for (int c = 1; c <= w.nph; ++c) pcoef[c] = -pcoef[c];
            npos = w.nph - npos;
        }
        const int span = eq.nuvleft - eq.rankdeficit;
        std::vector<int> use;
        for (int p = 1; p <= positions; ++p) {
            bool fits = false;
            std::vector<int> positive;
            for (int c = 1; c <= w.nph; ++c)
                if (pcoef[c] > 0) positive.push_back(c);
            if (npos == w.nph - 1) {
                if (static_cast<int>(positive.size()) != span) {
                    mc.flag[p] = -1;
                    continue;
                }
                fits = modesat(run, w, p, true, positive);
            } else {
                fits = endofreaction(run, w, p, pcoef, 1, true, use);
                if (!fits && static_cast<int>(use.size()) != span) {
                    mc.flag[p] = -1;
                    continue;
                }
            }
            if (!fits) continue;
            mc.flag[p] = 1;
            if (mc.firstcolumn == 0) mc.firstcolumn = p;
            endofreaction(run, w, p, pcoef, 1, false, use);
            storecolumn(run, w, maxmodecolumns);
            endofreaction(run, w, p, pcoef, -1, false, use);
            storecolumn(run, w, maxmodecolumns);
        }
    }
    ok = mc.firstcolumn != 0;
    if (!ok) problem = extra == 1 || extra == 2 ? "bulk not in the assemblage" : "modes not determined";
}

void phasereaction(Run& run, std::vector<real>& coefficients, std::vector<sstring>& names, std::string& text) {
    const EquilibriumState& eq = run.equilibrium;
    const EndMemberStore& st = run.store;
    const int nc = st.nc;
    coefficients.assign(eq.nslot + 1, 0);
    names.assign(1, "");
    text.clear();
    if (run.solver.singular) {
        text = "####";
        return;
    }
    // Columns: each phase of the assemblage by its composition, a fluid
    // whose x(CO2) is an axis of a divariant section as its H2O and CO2.
    std::vector<std::array<real, maxcomp + 1>> cols;
    std::vector<int> colslot;
    const bool split = eq.set.fluidtype == 5 && eq.set.usexco2calc && eq.set.var0 == 2;
    for (int s = 1; s <= eq.nslot; ++s) {
        const PhaseSlot& slot = eq.slot[s];
        std::array<real, maxcomp + 1> comp{};
        if (slot.xco2fluid && split) {
            for (const char* species : {"H2O", "CO2"}) {
                comp.fill(0);
                for (int k = 1; k <= nc; ++k)
                    if (st.compname[k] == species) comp[k] = 1;
                cols.push_back(comp);
                colslot.push_back(0);
                names.push_back(species);
            }
            continue;
        }
        if (slot.pure)
            comp = run.phases.prec0[slot.phase].comp.x;
        else
            compcalc(run, slot.phase, eq.xtrue.data(), slot.xstart, comp);
        cols.push_back(comp);
        colslot.push_back(s);
        names.push_back(slot.name);
    }
    const int ncols = static_cast<int>(cols.size());
    RealMatrix m(nc + 1, std::vector<real>(ncols + 1, 0));
    for (int k = 1; k <= nc; ++k)
        for (int c = 1; c <= ncols; ++c) m[k][c] = cols[c - 1][k];
    std::vector<real> v;
    realreaction(run, m, nc, ncols, v);
    real fluid = 0;
    for (int c = 1; c <= ncols; ++c)
        if (names[c] == "H2O" || names[c] == "CO2") fluid += v[c];
    if (fluid < 0)
        for (int c = 1; c <= ncols; ++c) v[c] = -v[c];
    std::vector<real> all(ncols + 1, 0);
    for (int c = 1; c <= ncols; ++c) {
        all[c] = v[c];
        if (colslot[c - 1] != 0) coefficients[colslot[c - 1]] = v[c];
    }
    text = realreactiontext(all, names, ncols);
}

}  // namespace sm
