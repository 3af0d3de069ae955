// Whether a reaction can lie in the window of a diagram, against a fine
// grid of signs of its Gibbs energy; and what the uncertainty of a root and
// the widening of a window do.
#include <gtest/gtest.h>

#include <cmath>

#include "reactions/reactions.h"
#include "reactions/reactionthermo.h"
#include "run.h"
#include "script/windows.h"
#include "testutil.h"
#include "thermo/dataset.h"
#include "thermo/gem.h"

namespace sm {
namespace {

struct DatasetRun {
    MemoryConsole console;
    Run run{console};
    explicit DatasetRun(const std::vector<sstring>& names) {
        run.calcmode = run.runmode = 3;
        setuptextread(run, std::string(SM_DATA_DIR) + "/sm-ds6a.txt");
        readthermochemistry(run, names);
        texthermoread(run);
        findspecialrows(run.store);
        for (int i = 1; i <= run.store.nem; ++i) run.store.activ[i] = 1;
        run.reactions.nir = 1;
        run.script.win.xco2 = 0;
        run.script.win.xh2o = 1;
    }
    void reaction(const std::vector<std::pair<std::string, int>>& terms) {
        for (int i = 0; i <= maxnem; ++i) run.store.r[1][i] = 0;
        for (const auto& [name, v] : terms) run.store.r[1][emnumber(run, name)] = static_cast<short>(v);
    }
};

// True when dG changes sign somewhere on a 60 by 60 grid over the window.
bool gridcrosses(Run& run, const Window& P, const Window& T) {
    bool negative = false, positive = false;
    for (int i = 0; i <= 60; ++i)
        for (int j = 0; j <= 60; ++j) {
            const real p = P.lo + (P.hi - P.lo) * i / 60, t = T.lo + (T.hi - T.lo) * j / 60;
            real a, b, g;
            calcdg(run, 1, a, b, g, p, t, 0, 1);
            (g < 0 ? negative : positive) = true;
        }
    return negative && positive;
}

TEST(WindowPredicates, PTWindowAgreesWithAFineGridOfSigns) {
    DatasetRun d({"ta", "en", "q", "H2O", "ky", "sill", "coe"});
    struct Case {
        std::vector<std::pair<std::string, int>> reaction;
        Window P, T;  // kbar, K
    };
    const real K = 273.15L;
    const std::vector<Case> cases = {
        {{{"ky", -1}, {"sill", 1}}, {2, 12}, {400 + K, 800 + K}},
        {{{"ky", -1}, {"sill", 1}}, {2, 4}, {700 + K, 800 + K}},
        {{{"q", -1}, {"coe", 1}}, {2, 12}, {400 + K, 800 + K}},
        {{{"ta", -2}, {"en", 3}, {"q", 2}, {"H2O", 2}}, {2, 12}, {400 + K, 900 + K}},
        {{{"ta", -2}, {"en", 3}, {"q", 2}, {"H2O", 2}}, {0.001L, 0.2L}, {600 + K, 700 + K}},
        {{{"ta", -2}, {"en", 3}, {"q", 2}, {"H2O", 2}}, {2, 12}, {820 + K, 900 + K}},
    };
    for (const auto& c : cases) {
        d.reaction(c.reaction);
        Windows& w = d.run.script.win;
        w.diagrammode = dmPT;
        w.calcP = c.P;
        w.calcT = c.T;
        std::array<bool, 4> below{};
        EXPECT_EQ(inPTXwindow(d.run, 1, below), gridcrosses(d.run, c.P, c.T))
            << c.reaction[0].first << " " << (double)c.P.lo << " " << (double)c.T.lo;
        real a, b, g;
        calcdg(d.run, 1, a, b, g, c.P.lo, c.T.lo, 0, 1);
        EXPECT_EQ(below[0], g < 0);
    }
}

TEST(WindowPredicates, AReactionOutsideTellsWhichSideIsStable) {
    DatasetRun d({"q", "coe"});
    d.reaction({{"q", -1}, {"coe", 1}});
    Windows& w = d.run.script.win;
    w.diagrammode = dmPT;
    w.calcP = {2, 12};
    w.calcT = {673.15L, 1073.15L};
    bool below = true;
    EXPECT_FALSE(inPTXwindowquestion()(d.run, 1, below));
    // Quartz is stable throughout: coesite's side has the higher energy.
    EXPECT_FALSE(below);
    w.diagrammode = 9;
    const RunEnded e = smtest::expectended([&] { inPTXwindowquestion()(d.run, 1, below); });
    EXPECT_EQ(e.where, "inPTXwindow");
    EXPECT_EQ(e.message, "unknown diagrammode");
}

TEST(WindowPredicates, TxWindowSeesADecarbonationAndItsExtreme) {
    DatasetRun d({"cc", "q", "wo", "CO2", "dol", "di", "H2O", "tr"});
    Windows& w = d.run.script.win;
    w.diagrammode = dmTx;
    w.P = 2;
    w.calcP = {2, 2};
    w.xco2window = {0.01L, 0.99L};
    std::array<bool, 4> below{};
    d.reaction({{"cc", -1}, {"q", -1}, {"wo", 1}, {"CO2", 1}});
    w.calcT = {873.15L, 1073.15L};  // 709 degC at pure CO2, lower with water
    EXPECT_TRUE(inPTXwindow(d.run, 1, below));
    w.calcT = {1173.15L, 1273.15L};  // above the curve everywhere
    EXPECT_FALSE(inPTXwindow(d.run, 1, below));
}

TEST(RootUncertainty, FollowsTheEnthalpyVarianceOverTheSlope) {
    DatasetRun d({"ky", "sill"});
    d.reaction({{"ky", -1}, {"sill", 1}});
    Windows& w = d.run.script.win;
    w.calcT = {673.15L, 1173.15L};
    w.calcP = {1, 15};
    real T1, T2, sd1, sd2, s1, s2;
    sdofT(d.run, 1, T1, T2, sd1, sd2, s1, 5, 0, 1, s2);
    ASSERT_TRUE(inrange(d.run, 0, T1));
    EXPECT_NEAR(static_cast<double>(T1 - 273.15L), 569.615704, 0.001);
    real dGdP, dGdT, dG;
    calcdg(d.run, 1, dGdP, dGdT, dG, 5, T1, 0, 1);
    const EndMemberStore& s = d.run.store;
    const real VH = s.covat(1, 1) + s.covat(2, 2) - 2 * s.covat(1, 2);
    EXPECT_NEAR(static_cast<double>(sd1), static_cast<double>(std::sqrt(VH) / std::fabs(dGdT)), 1e-6);
    EXPECT_NEAR(static_cast<double>(s1), static_cast<double>(-dGdP / dGdT), 1e-9);
    EXPECT_EQ(sd2, 1e31L);
    // The root in P at that T is the same point.
    real P1, P2;
    sdofP(d.run, 1, P1, P2, sd1, sd2, s1, T1, 0, 1, s2);
    EXPECT_NEAR(static_cast<double>(P1), 5.0, 1e-4);
    // Outside the window there is no uncertainty to give.
    w.calcT = {273.15L + 900, 273.15L + 1000};
    sdofT(d.run, 1, T1, T2, sd1, sd2, s1, 5, 0, 1, s2);
    EXPECT_EQ(T1, w.calcT.lo - 1);
    EXPECT_EQ(sd1, 1e31L);
}

TEST(RootUncertainty, TakesTheActivitiesInWithTheirOwnTemperature) {
    DatasetRun d({"ky", "sill"});
    d.reaction({{"ky", -2}, {"sill", 2}});
    Windows& w = d.run.script.win;
    w.calcT = {673.15L, 1173.15L};
    w.calcP = {1, 15};
    EndMemberStore& s = d.run.store;
    ReactionStore& rs = d.run.reactions;
    s.activ[1] = 0.8L;  // ky, sd 0.08: ln a within 0.1
    rs.sdactiv[1] = 0.08L;
    s.activ[2] = 1;     // sill pure: its sd says nothing
    rs.sdactiv[2] = 0.3L;
    setlnKbase(d.run);
    setvarlna(d.run);
    EXPECT_NEAR(static_cast<double>(rs.varlna[1]), 0.01, 1e-15);
    EXPECT_EQ(rs.varlna[2], 0);
    EXPECT_NEAR(static_cast<double>(rs.lnKbase[1]), -2 * std::log(0.8), 1e-15);
    real T1, T2, sd1, sd2, s1, s2;
    sdofT(d.run, 1, T1, T2, sd1, sd2, s1, 5, 0, 1, s2);
    ASSERT_TRUE(inrange(d.run, 0, T1));
    real dGdP, dGdT, dG;
    calcdg(d.run, 1, dGdP, dGdT, dG, 5, T1, 0, 1);
    EXPECT_LT(std::fabs(static_cast<double>(dG)), 1e-3 * std::fabs(static_cast<double>(dGdT)));
    const real VH = 4 * (s.covat(1, 1) + s.covat(2, 2) - 2 * s.covat(1, 2));
    const real RT = 0.0083144L * T1;
    const real Va = 4 * 0.01L;
    EXPECT_NEAR(static_cast<double>(sd1), static_cast<double>(std::sqrt(VH + Va * RT * RT) / std::fabs(dGdT)),
                1e-6);
    // A phase diagram takes its activities as exact.
    d.run.runmode = 1;
    setvarlna(d.run);
    EXPECT_EQ(rs.varlna[1], 0);
}

TEST(WindowWidening, ReachesOutAndComesBackWithinTheSystemsLimits) {
    MemoryConsole con;
    sm::Run run(con);
    Windows& w = run.script.win;
    w.calcP = {2, 12};
    w.calcT = {400, 2800};
    enlargewindow(run, 0);
    EXPECT_EQ(w.calcP.lo, w.Pmin);
    EXPECT_EQ(w.calcP.hi, 17);
    enlargewindow(run, 1);
    EXPECT_EQ(w.calcT.lo, 283);
    EXPECT_EQ(w.calcT.hi, 3000);
    restorewindow(run, 0);
    restorewindow(run, 1);
    EXPECT_EQ(w.calcP.lo, 2);
    EXPECT_EQ(w.calcP.hi, 12);
    EXPECT_EQ(w.calcT.lo, 400);
    EXPECT_EQ(w.calcT.hi, 2800);
}

}  // namespace
}  // namespace sm
