// The independent set of a rock calculation: reactions that cross the
// window with a small enough uncertainty, independent of each other.
#include <gtest/gtest.h>

#include <cmath>

#include "reaction_testing.h"

namespace sm::testing {
namespace {

const std::vector<HandEndMember> mash = {
    {"ta", {3, 0, 4, 1}}, {"en", {2, 0, 2, 0}}, {"fo", {2, 0, 1, 0}}, {"q", {0, 0, 1, 0}},
    {"br", {1, 0, 0, 1}}, {"per", {1, 0, 0, 0}}, {"sp", {1, 1, 0, 0}}, {"py", {3, 1, 3, 0}},
    {"ky", {0, 1, 1, 0}}, {"H2O", {0, 0, 0, 1}},
};

int rankofreactions(const Run& run) {
    std::vector<std::vector<double>> a(run.reactions.nir, std::vector<double>(run.store.nem));
    for (int n = 1; n <= run.reactions.nir; ++n)
        for (int i = 1; i <= run.store.nem; ++i) a[n - 1][i - 1] = run.store.r[n][i];
    return floatrank(a);
}

void rockrun(HandRun& h) {
    setsystem(h.run, {"MgO", "Al2O3", "SiO2", "H2O"}, mash);
    h.run.runmode = 2;
    h.run.reactions.maxsd = 10;
}

TEST(IndependentSet, CrossingReactionsMakeACompleteIndependentSet) {
    HandRun h;
    rockrun(h);
    h.run.reactions.crosseswindow = [](sm::Run&, real& sd) {
        sd = 2.5L;
        return true;
    };
    bool complete = false;
    calcre(h.run, complete, alwaysinwindow());
    const ReactionStore& rs = h.run.reactions;
    EXPECT_EQ(rs.nindep, 6);  // ten end-members of rank four
    EXPECT_EQ(rs.nir, 6);
    EXPECT_TRUE(complete);
    EXPECT_FALSE(rs.incompleteset);
    EXPECT_EQ(rankofreactions(h.run), 6);
    for (int n = 1; n <= rs.nir; ++n) EXPECT_TRUE(balances(h.run, n, compositions(mash)));
    EXPECT_EQ(h.console.output.rfind("reactions : \n", 0), 0u);
    EXPECT_NE(h.console.output.find("X  2.5\n"), std::string::npos);
    EXPECT_NE(h.console.output.find("\nan independent set of reactions has been calculated\n"),
              std::string::npos);
}

TEST(IndependentSet, ReactionsOutsideOrTooUncertainGiveTheirSlotBack) {
    for (const auto& [crosses, sd, mark, summary] :
         std::vector<std::tuple<bool, real, std::string, std::string>>{
             {false, 1, "|0", "\nno reactions\n"},
             {true, 50, "|:", "\nno reactions\n"}}) {
        HandRun h;
        rockrun(h);
        h.console.feed("n\n");  // go on after the first 400 tries
        h.run.reactions.crosseswindow = [crosses = crosses, sd = sd](sm::Run&, real& s) {
            s = sd;
            return crosses;
        };
        bool complete = true;
        calcre(h.run, complete, alwaysinwindow());
        EXPECT_EQ(h.run.reactions.nir, 0);
        EXPECT_FALSE(complete);
        EXPECT_TRUE(h.run.reactions.incompleteset);
        EXPECT_NE(h.console.output.find(mark), std::string::npos);
        EXPECT_NE(h.console.output.find(summary), std::string::npos);
    }
}

TEST(IndependentSet, AnIncompleteSetSaysSo) {
    HandRun h;
    rockrun(h);
    // Only reactions without water cross the window.
    h.run.reactions.crosseswindow = [](sm::Run& run, real& sd) {
        sd = 1;
        return run.store.r[run.reactions.nir][10] == 0;
    };
    bool complete = true;
    calcre(h.run, complete, alwaysinwindow());
    EXPECT_EQ(h.run.reactions.nir, 5);  // nine end-members besides water, of rank four
    EXPECT_TRUE(h.run.reactions.incompleteset);
    EXPECT_NE(h.console.output.find("an INCOMPLETE independent set of reactions has been calculated"),
              std::string::npos);
}

}  // namespace
}  // namespace sm::testing
