// Independent sets of reactions, the texts of reactions, and reactions
// among phases of real composition.
#include <gtest/gtest.h>

#include <cmath>

#include "console/runended.h"
#include "reactions/realreaction.h"
#include "reaction_testing.h"
#include "testutil.h"

namespace sm::testing {
namespace {


int matrixrank(const Run& run) {
    std::vector<std::vector<double>> a(run.store.nc, std::vector<double>(run.store.nem));
    for (int k = 1; k <= run.store.nc; ++k)
        for (int i = 1; i <= run.store.nem; ++i) a[k - 1][i - 1] = run.store.c[k][i];
    return floatrank(a);
}

int reactionrank(const Run& run) {
    std::vector<std::vector<double>> a(run.reactions.nir, std::vector<double>(run.store.nem));
    for (int n = 1; n <= run.reactions.nir; ++n)
        for (int i = 1; i <= run.store.nem; ++i) a[n - 1][i - 1] = run.store.r[n][i];
    return floatrank(a);
}

struct SystemCase {
    const char* title;
    std::vector<std::string> comps;
    std::vector<HandEndMember> ems;
};

const std::vector<SystemCase> systems = {
    {"anorthite", {"CaO", "Al2O3", "SiO2"},
     {{"an", {1, 1, 2}}, {"gr", {3, 1, 3}}, {"ky", {0, 1, 1}}, {"q", {0, 0, 1}}}},
    {"aluminosilicates", {"SiO2", "Al2O3"},
     {{"q", {1, 0}}, {"cor", {0, 1}}, {"ky", {1, 1}}, {"sill", {1, 1}}, {"and", {1, 1}}}},
    {"MASH", {"MgO", "Al2O3", "SiO2", "H2O"},
     {{"ta", {3, 0, 4, 1}}, {"en", {2, 0, 2, 0}}, {"fo", {2, 0, 1, 0}}, {"q", {0, 0, 1, 0}},
      {"H2O", {0, 0, 0, 1}}, {"br", {1, 0, 0, 1}}, {"per", {1, 0, 0, 0}}, {"sp", {1, 1, 0, 0}},
      {"py", {3, 1, 3, 0}}, {"ky", {0, 1, 1, 0}}}},
    {"a row of zeros", {"SiO2", "MgO", "CaO"}, {{"q", {1, 0, 0}}, {"per", {0, 1, 0}}, {"fo", {1, 2, 0}}}},
    {"an end-member of nothing", {"SiO2"}, {{"q", {1}}, {"vac", {0}}}},
};

TEST(Nullspace, GivesEndMembersLessRankBalancedIndependentReactions) {
    for (const auto& c : systems) {
        SCOPED_TRACE(c.title);
        HandRun h;
        setsystem(h.run, c.comps, c.ems);
        bool found = false;
        listindependentreactions(h.run, found);
        const int rank = matrixrank(h.run);
        EXPECT_EQ(h.run.reactions.nir, h.run.store.nem - rank);
        EXPECT_EQ(found, h.run.reactions.nir > 0);
        EXPECT_EQ(reactionrank(h.run), h.run.reactions.nir);
        for (int n = 1; n <= h.run.reactions.nir; ++n)
            EXPECT_TRUE(balances(h.run, n, compositions(c.ems)));
    }
}

TEST(Nullspace, ReturnsTheRankAndTakesTheLastFreeColumnFirst) {
    HandRun h;
    setsystem(h.run, {"SiO2", "Al2O3"},
              {{"q", {1, 0}}, {"cor", {0, 1}}, {"ky", {1, 1}}, {"sill", {1, 1}}});
    EXPECT_EQ(nullspace(h.run, 2, 4), 2);
    ASSERT_EQ(h.run.reactions.nir, 2);
    EXPECT_EQ(asmap(h.run, 1), (std::map<std::string, int>{{"q", -1}, {"cor", -1}, {"sill", 1}}));
    EXPECT_EQ(asmap(h.run, 2), (std::map<std::string, int>{{"q", -1}, {"cor", -1}, {"ky", 1}}));
}

TEST(Nullspace, ScaleOfAReactionWeighsItsAxEndMembersBySiteMultiplicity) {
    HandRun h;
    setsystem(h.run, {"CaO", "Al2O3", "SiO2"},
              {{"an", {1, 1, 2}}, {"gr", {3, 1, 3}}, {"ky", {0, 1, 1}}, {"q", {0, 0, 1}}});
    h.run.reactions.naxem = 2;  // an and gr belong to solid solutions
    h.run.store.nsites[1] = 1;
    h.run.store.nsites[2] = 3;
    bool found;
    listindependentreactions(h.run, found);
    // |3 an| and |gr| times 3 sites: sqrt(3^2 + 3^2) rounds to 4.
    EXPECT_EQ(h.run.reactions.rscale[1], 4);
    EXPECT_EQ(h.run.reactions.rscale[2], 1);
    EXPECT_EQ(h.run.reactions.rscale[150], 1);
}

TEST(Nullspace, NoReactionsAndTheListDumpsSayWhatTheyShould) {
    {
        HandRun h;
        setsystem(h.run, {"SiO2", "MgO"}, {{"q", {1, 0}}, {"per", {0, 1}}});
        bool found = true;
        listindependentreactions(h.run, found);
        EXPECT_FALSE(found);
        EXPECT_EQ(h.console.output.rfind("\n** no reactions\n\nc =   {{1, 0},\n       {0, 1}};\n", 0), 0u);
        EXPECT_NE(h.console.output.find("div        1     1\n"), std::string::npos);
    }
    {
        HandRun h;
        setsystem(h.run, {"SiO2", "MgO"}, {{"q", {1, 0}}, {"per", {0, 1}}});
        h.run.reactions.dogminrun = true;
        bool found = true;
        listindependentreactions(h.run, found);
        EXPECT_EQ(h.console.output, "");
    }
}

TEST(Nullspace, MoreReactionsThanTheStoreHoldsIsFatal) {
    HandRun h;
    std::vector<HandEndMember> ems;
    for (int i = 1; i <= 152; ++i) ems.push_back({"p" + std::to_string(i), {1}});
    setsystem(h.run, {"SiO2"}, ems);
    bool found;
    const RunEnded e = smtest::expectended([&] { listindependentreactions(h.run, found); });
    EXPECT_EQ(e.where, "nullspace");
    EXPECT_EQ(e.message, "too many reactions");
}

void setrow(Run& run, int n, const std::map<std::string, int>& coef) {
    for (int i = 0; i <= maxnem; ++i) run.store.r[n][i] = 0;
    for (const auto& [name, v] : coef) run.store.r[n][emnumber(run, name)] = static_cast<short>(v);
}

TEST(ReactionText, ListsEachSideInStoreOrderWithoutUnitCoefficients) {
    HandRun h;
    setsystem(h.run, {"CaO", "Al2O3", "SiO2", "H2O"},
              {{"an", {1, 1, 2, 0}}, {"gr", {3, 1, 3, 0}}, {"ky", {0, 1, 1, 0}}, {"q", {0, 0, 1, 0}},
               {"H2O", {0, 0, 0, 1}}});
    struct Case {
        std::map<std::string, int> row;
        std::string text;
    };
    const std::vector<Case> cases = {
        {{{"an", -3}, {"gr", 1}, {"ky", 2}, {"q", 1}}, "7)  3 an = gr + 2 ky + q"},
        {{{"an", 3}, {"gr", -1}, {"ky", -2}, {"q", -1}}, "7)  gr + 2 ky + q = 3 an"},
        {{{"ky", -12}, {"H2O", 10}}, "7)  12 ky = 10 H2O"},
    };
    for (const auto& c : cases) {
        setrow(h.run, 7, c.row);
        writereaction(h.run, 7);
        EXPECT_EQ(h.run.reactions.reactionname[7], c.text);
    }
    EXPECT_EQ(h.run.reactions.widestreaction, 24);

    h.run.reactions.displaynames = {{"ky", "kyanite"}};
    h.run.reactions.axisem = 5;
    h.run.reactions.axisdisplayname = "fluid";
    setrow(h.run, 2, {{"ky", -1}, {"H2O", 1}});
    writereaction(h.run, 2);
    EXPECT_EQ(h.run.reactions.reactionname[2], "2)  kyanite = fluid");
}

TEST(Independence, AReactionInTheSpanOfTheAcceptedOnesIsDependent) {
    HandRun h;
    setsystem(h.run, {"SiO2"}, {{"a", {1}}, {"b", {1}}, {"c", {1}}, {"d", {1}}});
    auto row = [](std::vector<long long> v) {
        std::array<long long, maxnem + 1> r{};
        for (size_t i = 0; i < v.size(); ++i) r[i + 1] = v[i];
        return r;
    };
    std::array<long long, maxnem + 1> reduced{};
    ASSERT_TRUE(newindr(h.run, row({1, -1, 0, 0}), reduced));
    commitindependent(h.run, reduced);
    ASSERT_TRUE(newindr(h.run, row({0, 2, -2, 0}), reduced));
    commitindependent(h.run, reduced);
    EXPECT_EQ(h.run.reactions.pivotcolumn[2], 2);
    EXPECT_EQ(h.run.reactions.echelonrow[2][2], 1);  // divided by its gcd
    EXPECT_FALSE(newindr(h.run, row({3, 0, -3, 0}), reduced));
    EXPECT_TRUE(newindr(h.run, row({1, 0, 0, -1}), reduced));
}

TEST(Independence, TheTwentyFifthIndependentReactionIsFatal) {
    HandRun h;
    std::vector<HandEndMember> ems;
    for (int i = 1; i <= 26; ++i) ems.push_back({"p" + std::to_string(i), {1}});
    setsystem(h.run, {"SiO2"}, ems);
    std::array<long long, maxnem + 1> reduced{};
    for (int n = 1; n <= 24; ++n) {
        std::array<long long, maxnem + 1> r{};
        r[1] = 1;
        r[n + 1] = -1;
        ASSERT_TRUE(newindr(h.run, r, reduced));
        commitindependent(h.run, reduced);
    }
    std::array<long long, maxnem + 1> r{};
    r[1] = 1;
    r[26] = -1;
    ASSERT_TRUE(newindr(h.run, r, reduced));
    const RunEnded e = smtest::expectended([&] { commitindependent(h.run, reduced); });
    EXPECT_EQ(e.where, "newindr");
    EXPECT_EQ(e.message, "too many independent reactions");
}

TEST(RealReaction, SolvesForTheLastColumnAndWritesTenthsOrWholeNumbers) {
    HandRun h;
    // c = 0.5 a + 1.5 b in two components.
    RealMatrix m(3, std::vector<real>(4, 0));
    m[1] = {0, 1, 0, 0.5L};
    m[2] = {0, 0, 1, 1.5L};
    std::vector<real> coef;
    realreaction(h.run, m, 2, 3, coef);
    EXPECT_NEAR(static_cast<double>(coef[1]), 0.5, 1e-15);
    EXPECT_NEAR(static_cast<double>(coef[2]), 1.5, 1e-15);
    EXPECT_EQ(coef[3], -1);
    const std::vector<sstring> names = {"", "a", "b", "c"};
    EXPECT_EQ(realreactiontext(coef, names, 3), "2 c = a + 3 b");
    EXPECT_EQ(realreactiontext({0, 0.25L, 0.3L, -1}, names, 3), "4.0 c = 1.0 a + 1.2 b");
    EXPECT_EQ(realreactiontext({0, 0, 0, 0}, names, 3), "@@@@");
}

}  // namespace
}  // namespace sm::testing
