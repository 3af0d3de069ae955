// Modes from the bulk at fixed phase compositions. The bulks here are made
// from chosen modes of the phases at their starting compositions, so the
// modes that come back are known beforehand.
#include <cmath>

#include "eqtesting.h"
#include "testutil.h"

namespace sm::eqtest {
namespace {

// The phases at their starting guesses: formula compositions in all
// components and atoms per formula unit.
struct Phases {
    std::vector<std::array<real, maxcomp + 1>> formula;
    std::vector<real> atoms;
};

Phases atguesses(EqRun& t) {
    EquilibriumState& eq = t.run.equilibrium;
    const EndMemberStore& st = t.run.store;
    Phases p;
    for (int s = 1; s <= eq.nslot; ++s) {
        const PhaseSlot& slot = eq.slot[s];
        std::array<real, maxcomp + 1> f{};
        if (slot.pure) {
            f = t.run.phases.prec0[slot.phase].comp.x;
        } else {
            const AxPhase& ph = t.run.phases.prec1[slot.phase];
            for (int v = 1; v <= ph.nxv; ++v) eq.xtrue[slot.xstart + v - 1] = ph.xv[v].guess;
            real sump = 0;
            for (int e = 1; e <= ph.nem; ++e) {
                const real pe = evalx(ph.pool, ph.pexpr[e], eq.xtrue.data(), slot.xstart);
                sump += pe;
                for (int k = 1; k <= st.nc; ++k) f[k] += pe * ph.em[e].comp.x[k];
            }
            for (int k = 1; k <= st.nc; ++k) f[k] /= sump;
        }
        real a = 0;
        for (int k = 1; k <= st.nc; ++k) a += f[k] * st.catomsum[k];
        p.formula.push_back(f);
        p.atoms.push_back(a);
    }
    return p;
}

// The bulk of the given modes (atom fractions), in mole percent by name.
Bulk bulkof(const EqRun& t, const Phases& p, const std::vector<real>& modes) {
    const EndMemberStore& st = t.run.store;
    Bulk b;
    for (int k = 1; k <= st.nc; ++k) {
        real v = 0;
        for (size_t s = 0; s < modes.size(); ++s) v += modes[s] / p.atoms[s] * p.formula[s][k];
        b.push_back({st.compname[k].c_str(), v});
    }
    return b;
}

// The bulk that modes of a column make, against the bulk of the position,
// both normalised.
real misfit(const EqRun& t, const Phases& p, int column) {
    const EquilibriumState& eq = t.run.equilibrium;
    std::vector<real> made(eq.nuvleft + 1, 0);
    real sm = 0, sb = 0;
    for (int j = 1; j <= eq.nuvleft; ++j) {
        for (int s = 1; s <= eq.nslot; ++s)
            made[j] += eq.modes.mode[column][s] / p.atoms[s - 1] * p.formula[s - 1][eq.reducedcomp[j]];
        sm += made[j];
        sb += eq.bulk1[j];
    }
    real worst = 0;
    for (int j = 1; j <= eq.nuvleft; ++j) worst = std::max(worst, std::fabs(made[j] / sm - eq.bulk1[j] / sb));
    return worst;
}

EqRun* prepared(const std::vector<sstring>& phases) {
    auto* t = new EqRun;
    t->load("sm-axkfm.txt", "sm-ds6a.txt");
    t->run.equilibrium.set.modesafternle = true;
    t->bulk(kfmashpelite);
    makecrossrefs(t->run, t->take(phases));
    int rank = 0;
    bool ok = false;
    calcrankp(t->run, t->take(phases), rank, ok);
    return t;
}

TEST(ModesAfterNle, PhasesThatSpanTheSystemGiveTheModesOfTheBulk) {
    std::unique_ptr<EqRun> t(prepared({"g", "bi", "mu", "st", "q", "H2O"}));
    const Phases p = atguesses(*t);
    // Slots: g mu bi st (a-x, file order), then q, H2O.
    const std::vector<real> modes = {0.10L, 0.25L, 0.20L, 0.05L, 0.35L, 0.05L};
    t->bulk(bulkof(*t, p, modes));
    bool ok = false;
    std::string problem;
    calcmodesafternle(t->run, ok, problem);
    const ModeColumns& mc = t->run.equilibrium.modes;
    ASSERT_TRUE(ok) << problem << t->con.output;
    EXPECT_EQ(mc.ncolumns, 1);
    EXPECT_EQ(mc.firstcolumn, 1);
    EXPECT_EQ(mc.flag[1], 1);
    for (int s = 1; s <= 6; ++s) EXPECT_NEAR(static_cast<double>(mc.mode[1][s]), static_cast<double>(modes[s - 1]), 1e-12) << s;

    // A bulk of magnesia and iron oxide alone is out of reach.
    t->bulk({{"MgO", 1}, {"FeO", 1}});
    calcmodesafternle(t->run, ok, problem);
    EXPECT_FALSE(ok);
    EXPECT_EQ(mc.flag[1], 0);
}

TEST(ModesAfterNle, OnePhaseMoreGivesBothEndsOfTheReaction) {
    std::unique_ptr<EqRun> t(prepared({"g", "bi", "mu", "st", "ky", "q", "H2O"}));
    const Phases p = atguesses(*t);
    const std::vector<real> modes = {0.10L, 0.22L, 0.18L, 0.05L, 0.05L, 0.35L, 0.05L};
    const Bulk inside = bulkof(*t, p, modes);
    t->bulk(inside, {{"MgO", 1}, {"FeO", 1}, {"SiO2", 1}});
    bool ok = false;
    std::string problem;
    calcmodesafternle(t->run, ok, problem);
    const EquilibriumState& eq = t->run.equilibrium;
    const ModeColumns& mc = eq.modes;
    ASSERT_TRUE(ok) << problem << t->con.output;
    EXPECT_EQ(mc.flag[1], 1);
    EXPECT_EQ(mc.flag[11], 0);
    ASSERT_GE(mc.ncolumns, 2);
    t->bulk(inside);  // bulk1 again, for the misfit
    for (int col = 1; col <= 2; ++col) {
        SCOPED_TRACE(col);
        int zero = 0;
        real sum = 0;
        for (int s = 1; s <= 7; ++s) {
            EXPECT_GE(mc.mode[col][s], -1e-12L) << s;
            if (std::fabs(mc.mode[col][s]) < 1e-12L) ++zero;
            sum += mc.mode[col][s];
        }
        EXPECT_EQ(zero, 1);
        EXPECT_NEAR(static_cast<double>(sum), 1.0, 1e-12);
        EXPECT_LT(misfit(*t, p, col), 1e-12L);
    }
    // The two ends use up different phases.
    int gone1 = 0, gone2 = 0;
    for (int s = 1; s <= 7; ++s) {
        if (std::fabs(mc.mode[1][s]) < 1e-12L) gone1 = s;
        if (std::fabs(mc.mode[2][s]) < 1e-12L) gone2 = s;
    }
    EXPECT_NE(gone1, gone2);
}

TEST(ModesAfterNle, PhaseReactionBalancesWithFluidOnTheRight) {
    std::unique_ptr<EqRun> t(prepared({"g", "bi", "mu", "st", "ky", "q", "H2O"}));
    const Phases p = atguesses(*t);
    std::vector<real> coef;
    std::vector<sstring> names;
    std::string text;
    phasereaction(t->run, coef, names, text);
    const EndMemberStore& st = t->run.store;
    real largest = 0;
    for (int s = 1; s <= 7; ++s) largest = std::max(largest, std::fabs(coef[s]));
    EXPECT_GT(largest, 0);
    for (int k = 1; k <= st.nc; ++k) {
        real s = 0;
        for (int c = 1; c <= 7; ++c) s += coef[c] * p.formula[c - 1][k];
        EXPECT_NEAR(static_cast<double>(s / largest), 0.0, 1e-12) << st.compname[k];
    }
    EXPECT_GT(coef[7], 0);  // H2O among the products
    EXPECT_NE(text.find(" = "), std::string::npos);

    t->run.solver.singular = true;
    phasereaction(t->run, coef, names, text);
    EXPECT_EQ(text, "####");
}

TEST(ModesAfterNle, PhaseSizesCountAtomsOfTheFormula) {
    std::unique_ptr<EqRun> t(prepared({"g", "bi", "mu", "q", "H2O"}));
    atguesses(*t);
    std::array<real, maxnx + 1> at{}, atcut{};
    const int n = phasesizes(t->run, t->run.equilibrium.xtrue.data(), at, atcut);
    ASSERT_EQ(n, 5);
    // Garnet X3Al2Si3O12 20 atoms, muscovite 21, biotite 22 (all members),
    // quartz 3, water 3; nothing out of the reduced system.
    const std::vector<real> atoms = {20, 21, 22, 3, 3};
    for (int c = 1; c <= n; ++c) {
        EXPECT_NEAR(static_cast<double>(at[c]), static_cast<double>(atoms[c - 1]), 1e-12) << c;
        EXPECT_EQ(at[c], atcut[c]);
    }
    EXPECT_EQ(at[n + 1], 1);
    // With water buffered: hydrous phases lose its 3 atoms, water has no size.
    EquilibriumState& eq = t->run.equilibrium;
    eq.set.setactivity[t->phaseof("H2O") - t->run.store.npss] = true;
    setter(t->run);
    makecrossrefs(t->run, t->take({"g", "bi", "mu", "q", "H2O"}));
    atguesses(*t);
    EXPECT_EQ(phasesizes(t->run, eq.xtrue.data(), at, atcut), 4);
    EXPECT_NEAR(static_cast<double>(atcut[2]), 18.0, 1e-12);
    EXPECT_NEAR(static_cast<double>(atcut[3]), 19.0, 1e-12);
    EXPECT_NEAR(static_cast<double>(at[3]), 22.0, 1e-12);
    PhaseColumns pc;
    makec(t->run, eq.xtrue.data(), pc);
    EXPECT_EQ(pc.ncol, 4);
    EXPECT_TRUE(pc.leftout[5]);
}

}  // namespace
}  // namespace sm::eqtest
