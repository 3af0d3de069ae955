// The layout of an assemblage: rows of end-members, the composition
// matrix they carry, the unknowns with their scales and limits, and the
// reduced system the settings leave.
#include <cmath>

#include "eqtesting.h"
#include "reactions/reactions.h"
#include "solver/unknowns.h"
#include "testutil.h"

namespace sm::eqtest {
namespace {

TEST(Setter, ComponentsTakenOutBySettings) {
    EqRun t;
    t.load("sm-axkfm.txt", "sm-ds6a.txt");
    EquilibriumState& eq = t.run.equilibrium;
    EXPECT_EQ(eq.nuvleft, 6);
    EXPECT_TRUE(eq.set.calcG);

    // An x(CO2) axis takes H2O (and CO2, absent here).
    eq.set.usexco2calc = true;
    setter(t.run);
    EXPECT_EQ(eq.nuvleft, 5);
    EXPECT_FALSE(eq.inreduced[t.comp("H2O")]);
    EXPECT_FALSE(eq.set.calcG);
    for (int j = 1; j <= 5; ++j) EXPECT_NE(eq.reducedcomp[j], t.comp("H2O"));

    // A set activity of quartz buffers silica.
    eq.set.usexco2calc = false;
    eq.set.setactivity[t.phaseof("q") - t.run.store.npss] = true;
    setter(t.run);
    EXPECT_EQ(eq.nuvleft, 5);
    EXPECT_FALSE(eq.inreduced[t.comp("SiO2")]);
    EXPECT_TRUE(eq.inreduced[t.comp("H2O")]);

    // Kyanite is two oxides: no one component to buffer.
    eq.set.setactivity[t.phaseof("ky") - t.run.store.npss] = true;
    const RunEnded e = smtest::expectended([&] { setter(t.run); });
    EXPECT_EQ(e.where, "setter");
    EXPECT_EQ(e.message, "setting non-oxide lna not implemented");
}

TEST(Makecrossrefs, RowsUnknownsAndModesOfAnAssemblage) {
    EqRun t;
    t.load("sm-axkfm.txt", "sm-ds6a.txt");
    t.run.equilibrium.set.modesbynle = true;
    t.bulk(kfmashpelite);
    makecrossrefs(t.run, t.take({"g", "bi", "mu", "q", "H2O"}));
    const EndMemberStore& st = t.run.store;
    const SolverState& sv = t.run.solver;
    const EquilibriumState& eq = t.run.equilibrium;
    const ActivityState& act = t.run.activities;

    // Rows: a-x phases in file order (g, mu, bi), then the pure phases.
    const std::vector<sstring> rows = {"py", "alm", "mu", "cel", "fcel", "phl", "annm", "obi", "east", "q", "H2O"};
    ASSERT_EQ(st.nem, static_cast<int>(rows.size()));
    for (int i = 1; i <= st.nem; ++i) EXPECT_EQ(st.emname[i], rows[i - 1]) << i;
    EXPECT_EQ(eq.naxrows, 9);
    EXPECT_EQ(t.run.reactions.naxem, 9);
    for (int i = 1; i <= 9; ++i) EXPECT_TRUE(act.inss[i]);
    EXPECT_FALSE(act.inss[10]);
    EXPECT_EQ(act.emstart[1], 3);
    EXPECT_EQ(act.emstart[3], 4);
    EXPECT_EQ(act.emstart[6], 6);
    EXPECT_EQ(act.emphase[6], t.phaseof("bi"));

    // The composition of every row is its end-member's.
    for (int i = 1; i <= st.nem; ++i)
        for (int k = 1; k <= st.nc; ++k) {
            const PhaseSlot& s = eq.slot[eq.emslot[i]];
            const EmComposition& c = s.pure ? t.run.phases.prec0[s.phase].comp
                                            : t.run.phases.prec1[s.phase].em[i - s.firstrow + 1].comp;
            EXPECT_NEAR(static_cast<double>(st.c[k][i]) / st.cscale[k], static_cast<double>(c.x[k]), 1e-15)
                << st.emname[i] << " " << st.compname[k];
        }

    // Unknowns: P, T, x(g), x y (mu), x y Q (bi), then five modes.
    const std::vector<sstring> names = {"P(kbar)", "T(C)", "x(g)", "x(mu)", "y(mu)", "x(bi)", "y(bi)",
                                        "Q(bi)",   "g",    "mu",   "bi",    "q",     "H2O"};
    ASSERT_EQ(sv.nx, 8);
    ASSERT_EQ(sv.nm, 5);
    EXPECT_EQ(eq.nmss, 3);
    for (int i = 1; i <= 13; ++i) {
        EXPECT_EQ(sv.xname[i], names[i - 1]) << i;
        EXPECT_TRUE(sv.active[i]) << i;
    }
    const real phi = sv.phi;
    EXPECT_NEAR(static_cast<double>(sv.scale[12]), static_cast<double>(0.6666667L / phi), 1e-15);
    EXPECT_EQ(sv.offset[12], 0.1666667L);
    EXPECT_EQ(sv.limlo[12], accmode);
    const AxVariable& xg = t.run.phases.prec1[t.phaseof("g")].xv[1];
    EXPECT_EQ(sv.scale[3], 1 / (xg.upper - xg.lower));

    // Covariances stay in the order of all the run's end-members: each row
    // knows its place there (g py alm; mu mu cel fcel; bi phl annm obi east).
    EXPECT_EQ(eq.member[1], 1);
    EXPECT_EQ(eq.member[3], 3);
    EXPECT_EQ(eq.member[6], 6);
    EXPECT_EQ(eq.member[10], t.run.made.purerow + 1);  // q, the first pure phase
    EXPECT_EQ(eq.member[11], t.run.made.purerow + t.run.store.nmin);

    // One reaction per end-member beyond the rank, each balanced.
    bool found = false;
    listindependentreactions(t.run, found);
    EXPECT_EQ(t.run.reactions.nir, 11 - 6);
}

TEST(Makecrossrefs, SetValuesAndBufferedPhasesLeaveTheUnknowns) {
    EqRun t;
    t.load("sm-axkfm.txt", "sm-ds6a.txt");
    EquilibriumState& eq = t.run.equilibrium;
    eq.set.modesbynle = true;
    eq.set.setactivity[t.phaseof("H2O") - t.run.store.npss] = true;
    eq.set.setvariable[t.phaseof("bi")][2] = 1;  // y(bi) an isopleth
    eq.set.setmode[t.phaseof("g")] = 2;          // the mode of garnet set
    setter(t.run);
    t.bulk(kfmashpelite);
    makecrossrefs(t.run, t.take({"g", "bi", "mu", "q", "H2O"}));
    const SolverState& sv = t.run.solver;
    EXPECT_EQ(sv.nm, 4);  // no mode for buffered water
    EXPECT_FALSE(sv.active[7]);
    EXPECT_EQ(eq.loopindex[7], 1);
    EXPECT_EQ(sv.xname[7], "y(bi)");
    EXPECT_EQ(sv.xname[9], "g");
    EXPECT_FALSE(sv.active[9]);
    EXPECT_EQ(eq.loopindex[9], 2);
    EXPECT_EQ(sv.xname[12], "q");
    EXPECT_TRUE(eq.slot[5].setphase);
    EXPECT_EQ(eq.slot[5].modex, 0);
}

TEST(Makecrossrefs, MadeEndMembersKeepWholeCompositionRows) {
    // Every phase of every file, fifteen at a time: rows of c over cscale
    // give each end-member's composition, made ones with halves included.
    const std::vector<std::pair<const char*, const char*>> files = {
        {"sm-axpel.txt", "sm-ds6a.txt"}, {"sm-axkfm.txt", "sm-ds6a.txt"},
        {"sm-axbas.txt", "sm-ds6a.txt"}, {"sm-axign.txt", "sm-ds6b.txt"}};
    for (const auto& [ax, ds] : files) {
        SCOPED_TRACE(ax);
        EqRun t;
        t.load(ax, ds);
        const EndMemberStore& st = t.run.store;
        const int nph = st.npss + st.nmin;
        for (int first = 1; first <= nph; first += maxsummary) {
            Assemblage a{};
            for (int k = first; k < first + maxsummary && k <= nph; ++k) a[k] = true;
            makecrossrefs(t.run, a);
            const EquilibriumState& eq = t.run.equilibrium;
            for (int i = 1; i <= st.nem; ++i) {
                const PhaseSlot& s = eq.slot[eq.emslot[i]];
                const EmComposition& c = s.pure ? t.run.phases.prec0[s.phase].comp
                                                : t.run.phases.prec1[s.phase].em[i - s.firstrow + 1].comp;
                for (int k = 1; k <= st.nc; ++k)
                    ASSERT_NEAR(static_cast<double>(st.c[k][i]) / st.cscale[k], static_cast<double>(c.x[k]), 1e-15)
                        << st.emname[i] << " " << st.compname[k];
            }
            bool found = false;
            listindependentreactions(t.run, found);  // stops the run if a reaction does not balance
        }
    }
}

TEST(Makecrossrefs, LimitsAndWatchedSiteFractionsFollowTheirPhase) {
    EqRun t;
    t.load("sm-axpel.txt", "sm-ds6a.txt");
    const EndMemberStore& st = t.run.store;
    Assemblage a{};
    for (int k = 1; k <= st.npss && k <= maxsummary; ++k) a[k] = true;
    makecrossrefs(t.run, a);
    const SolverState& sv = t.run.solver;
    const EquilibriumState& eq = t.run.equilibrium;
    int lim = 0, watched = 0;
    for (int s = 1; s <= eq.nslot; ++s) {
        const AxPhase& ph = t.run.phases.prec1[eq.slot[s].phase];
        for (int l = 1; l <= ph.nvarlim; ++l) {
            const VarLim& v = sv.varlim[++lim];
            for (int j = 1; j <= sv.nx; ++j) {
                const int local = j - eq.slot[s].xstart + 1;
                const bool own = local >= 1 && local <= ph.nxv;
                EXPECT_EQ(v.num[j], own ? ph.varlim[l].num[local] : 0);
            }
            EXPECT_EQ(v.num[sv.nx + 1], ph.varlim[l].num[ph.nxv + 1]);
            EXPECT_EQ(v.den[sv.nx + 1], ph.varlim[l].den[ph.nxv + 1]);
        }
        if (ph.nofsfok) continue;
        for (int f = 1; f <= ph.nsf; ++f)
            if (!ph.sfcovered[f]) {
                const SfWatch& w = sv.sfterm[++watched];
                EXPECT_EQ(w.phase, eq.slot[s].phase);
                EXPECT_EQ(w.term, f);
                EXPECT_EQ(w.xstart, eq.slot[s].xstart);
            }
    }
    EXPECT_EQ(sv.nvarlim, lim);
    EXPECT_EQ(sv.nsfterm, watched);
}

TEST(Makecrossrefs, TableLimits) {
    EqRun t;
    t.load("sm-axpel.txt", "sm-ds6a.txt");
    Assemblage a{};
    for (int k = 1; k <= maxsummary + 1; ++k) a[k] = true;
    const RunEnded e = smtest::expectended([&] { makecrossrefs(t.run, a); });
    EXPECT_EQ(e.where, "makecrossrefs");
    EXPECT_EQ(e.message, "too many phases");
}

TEST(BulkNormalisation, PhiFromTheAtomsOfTheBulk) {
    EqRun t;
    t.load("sm-axkfm.txt", "sm-ds6a.txt");
    t.bulk(kfmashpelite);
    // Atoms of one oxide unit: K2O 3, FeO 2, MgO 2, Al2O3 5, SiO2 3, H2O 3.
    const real atoms = (8.0L * 3 + 62.0L * 3 + 14.0L * 5 + 5.0L * 2 + 7.5L * 2 + 3.5L * 3) / 100;
    EXPECT_NEAR(static_cast<double>(t.run.solver.phi), std::sqrt(static_cast<double>(atoms)), 1e-15);
    // A bulk of one atom per unit: phi exactly 1.
    t.bulk({{"FeO", 50}, {"MgO", 50}});
    EXPECT_NEAR(static_cast<double>(t.run.solver.phi), std::sqrt(2.0), 1e-15);
    // With one atom to the unit, as in an oxide-based dataset, exactly 1.
    for (int k = 1; k <= t.run.store.nc; ++k) t.run.store.catomsum[k] = 1;
    t.bulk(kfmashpelite);
    EXPECT_EQ(t.run.solver.phi, 1.0L);
    t.load("sm-axkfm.txt", "sm-ds6a.txt");
    // Positions along a range of bulks.
    t.bulk({{"SiO2", 1}}, {{"MgO", 1}});
    EquilibriumState& eq = t.run.equilibrium;
    eq.bulkfrom = 0.2L;
    eq.bulkto = 0.7L;
    setbulkposition(t.run, 6);
    int si = 0;
    for (int j = 1; j <= eq.nuvleft; ++j)
        if (eq.reducedcomp[j] == t.comp("SiO2")) si = j;
    EXPECT_NEAR(static_cast<double>(eq.b[si]), 0.5, 1e-15);
    EXPECT_NEAR(static_cast<double>(eq.bulkposition), 0.45, 1e-15);
    EXPECT_NEAR(static_cast<double>(t.run.solver.phi), std::sqrt(0.5 * 3 + 0.5 * 2), 1e-15);
}

}  // namespace
}  // namespace sm::eqtest
