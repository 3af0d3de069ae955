// Reaction generation over composition matrices written by hand: which
// reactions come out, how they balance, and what the search learns.
#include <gtest/gtest.h>

#include <set>

#include "console/runended.h"
#include "reactions/combinations.h"
#include "reactions/reactions.h"
#include "reaction_testing.h"
#include "testutil.h"

namespace sm::testing {
namespace {

using Reaction = std::map<std::string, int>;

Reaction negated(Reaction r) {
    for (auto& [name, v] : r) v = -v;
    return r;
}

// The store's reactions as maps, each with its sign as stored.
std::vector<Reaction> stored(const Run& run) {
    std::vector<Reaction> out;
    for (int n = 1; n <= run.reactions.nir; ++n) out.push_back(asmap(run, n));
    return out;
}

bool holds(const std::vector<Reaction>& list, const Reaction& r) {
    for (const auto& x : list)
        if (x == r || x == negated(r)) return true;
    return false;
}

const std::vector<HandEndMember> aluminosilicates = {
    {"q", {1, 0}}, {"cor", {0, 1}}, {"ky", {1, 1}}, {"sill", {1, 1}}, {"and", {1, 1}},
};

TEST(Combinations, SubsetsComeInLexicographicOrderWithTheSentinelBehind) {
    Combination comb;
    comb.start(3);
    std::vector<std::array<int, 3>> seen;
    bool more = true;
    while (more) {
        seen.push_back({comb.pos[1], comb.pos[2], comb.pos[3]});
        EXPECT_EQ(comb.pos[4], combinationend);
        comb.next(3, 5, more);
    }
    ASSERT_EQ(seen.size(), 10u);  // 5 choose 3
    EXPECT_EQ(seen.front(), (std::array<int, 3>{1, 2, 3}));
    EXPECT_EQ(seen[1], (std::array<int, 3>{1, 2, 4}));
    EXPECT_EQ(seen[3], (std::array<int, 3>{1, 3, 4}));
    EXPECT_EQ(seen.back(), (std::array<int, 3>{3, 4, 5}));
    for (size_t i = 1; i < seen.size(); ++i) EXPECT_LT(seen[i - 1], seen[i]);
}

// Known reactions: the row found, up to its sign where no fluid fixes it.
struct KnownCase {
    const char* title;
    std::vector<std::string> comps;
    std::vector<HandEndMember> ems;
    int ninexcess;
    Reaction expected;
    bool signfixed;  // fluid on the right
};

TEST(Generation, FindsTheKnownReactionOfAnAssemblage) {
    const std::vector<KnownCase> cases = {
        {"anorthite breakdown", {"CaO", "Al2O3", "SiO2"},
         {{"an", {1, 1, 2}}, {"gr", {3, 1, 3}}, {"ky", {0, 1, 1}}, {"q", {0, 0, 1}}}, 0,
         {{"an", -3}, {"gr", 1}, {"ky", 2}, {"q", 1}}, false},
        {"talc dehydration", {"MgO", "SiO2", "H2O"},
         {{"ta", {3, 4, 1}}, {"en", {2, 2, 0}}, {"q", {0, 1, 0}}, {"H2O", {0, 0, 1}}}, 0,
         {{"ta", -2}, {"en", 3}, {"q", 2}, {"H2O", 2}}, true},
        {"talc dehydration, quartz and water in excess", {"MgO", "SiO2", "H2O"},
         {{"ta", {3, 4, 1}}, {"en", {2, 2, 0}}, {"q", {0, 1, 0}}, {"H2O", {0, 0, 1}}}, 2,
         {{"ta", -2}, {"en", 3}, {"q", 2}, {"H2O", 2}}, true},
        {"calcite and quartz to wollastonite", {"CaO", "SiO2", "CO2"},
         {{"cc", {1, 0, 1}}, {"q", {0, 1, 0}}, {"wo", {1, 1, 0}}, {"CO2", {0, 0, 1}}}, 0,
         {{"cc", -1}, {"q", -1}, {"wo", 1}, {"CO2", 1}}, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.title);
        HandRun h;
        setsystem(h.run, c.comps, c.ems, c.ninexcess);
        h.run.reactions.allreactions = true;
        bool complete = false;
        calcre(h.run, complete, alwaysinwindow());
        EXPECT_TRUE(complete);
        ASSERT_EQ(h.run.reactions.nir, 1);
        const Reaction got = asmap(h.run, 1);
        if (c.signfixed)
            EXPECT_EQ(got, c.expected);
        else
            EXPECT_TRUE(got == c.expected || got == negated(c.expected));
        EXPECT_TRUE(balances(h.run, 1, compositions(c.ems)));
    }
}

TEST(Generation, EveryReactionOfATwoComponentSystemComesOutOnceFromItsSmallestSubsystem) {
    HandRun h;
    setsystem(h.run, {"SiO2", "Al2O3"}, aluminosilicates);
    h.run.reactions.allreactions = true;
    bool complete = false;
    calcre(h.run, complete, alwaysinwindow());
    const auto list = stored(h.run);
    ASSERT_EQ(list.size(), 6u);
    for (const Reaction& r : std::vector<Reaction>{
             {{"q", -1}, {"cor", -1}, {"ky", 1}},
             {{"q", -1}, {"cor", -1}, {"sill", 1}},
             {{"q", -1}, {"cor", -1}, {"and", 1}},
             {{"ky", -1}, {"sill", 1}},
             {{"ky", -1}, {"and", 1}},
             {{"sill", -1}, {"and", 1}},
         })
        EXPECT_TRUE(holds(list, r));
    std::set<Reaction> distinct;
    for (int n = 1; n <= h.run.reactions.nir; ++n) {
        EXPECT_TRUE(balances(h.run, n, compositions(aluminosilicates)));
        Reaction r = asmap(h.run, n);
        if (r.begin()->second < 0) r = negated(r);
        distinct.insert(r);
        // The set holds the real participants only: q has no part in ky = sill.
        EXPECT_EQ(h.run.reactions.reactionset[n], reactionmembers(h.run, n));
    }
    EXPECT_EQ(distinct.size(), 6u);
    EXPECT_NE(h.console.output.find("no of reactions = 6"), std::string::npos);
    EXPECT_EQ(h.console.output.find("intersections"), std::string::npos);
    EXPECT_EQ(h.console.output.find("excluded"), std::string::npos);
}

TEST(Generation, InvariantPointsGatherTheReactionsAmongRankPlusTwoEndMembers) {
    HandRun h;
    setsystem(h.run, {"SiO2", "Al2O3"}, aluminosilicates);
    h.run.reactions.allreactions = false;
    bool complete = false;
    calcre(h.run, complete, alwaysinwindow());
    const ReactionStore& rs = h.run.reactions;
    ASSERT_EQ(rs.nint, 4);
    for (int q = 1; q <= rs.nint; ++q) {
        EXPECT_EQ(rs.intcount[q], 3);
        BitSet2 uni{};
        for (int m = 1; m <= rs.intcount[q]; ++m)
            for (int w = 0; w < 3; ++w) uni[w] |= rs.reactionset[rs.intreaction[q][m]][w];
        EXPECT_EQ(uni, rs.intset[q]);
    }
    // The triple point of the three polymorphs is one of them, once.
    BitSet2 triple{};
    BSet2(triple, 3);
    BSet2(triple, 4);
    BSet2(triple, 5);
    int found = 0;
    for (int q = 1; q <= rs.nint; ++q) found += rs.intset[q] == triple;
    EXPECT_EQ(found, 1);
    EXPECT_NE(h.console.output.find("no excluded assemblages\n"), std::string::npos);
    EXPECT_NE(h.console.output.find("no of reactions = 6, no of intersections = 4\n"),
              std::string::npos);
}

// A window question that puts reactions with `outsider` outside the window,
// with `outsider`'s side the unstable one.
WindowQuestion outsidewith(const std::string& outsider) {
    return [outsider](sm::Run& run, int n, bool& below) {
        const int i = emnumber(run, outsider);
        const int v = run.store.r[n][i];
        below = v < 0;
        return v == 0;
    };
}

TEST(Generation, AnAssemblageOutsideTheWindowPrunesTheSearch) {
    HandRun h;
    setsystem(h.run, {"SiO2", "Al2O3"}, aluminosilicates);
    bool complete = false;
    calcre(h.run, complete, outsidewith("cor"));
    const ReactionStore& rs = h.run.reactions;
    EXPECT_TRUE(complete);
    ASSERT_EQ(rs.nexcludedassemblage, 1);
    EXPECT_TRUE(rs.excludedem.empty());
    BitSet2 qcor{};
    BSet2(qcor, 1);
    BSet2(qcor, 2);
    EXPECT_EQ(rs.excludedassemblage[1], qcor);
    EXPECT_EQ(rs.nir, 3);
    EXPECT_EQ(rs.nint, 1);
    EXPECT_NE(h.console.output.find("+XXX"), std::string::npos);
    EXPECT_NE(h.console.output.find("excluded assemblages | q cor |\n"), std::string::npos);
    EXPECT_NE(h.console.output.find("no of reactions = 3, no of intersections = 1\n"),
              std::string::npos);
}

TEST(Generation, AnEndMemberAloneOnTheUnstableSideIsExcluded) {
    HandRun h;
    setsystem(h.run, {"SiO2", "Al2O3"}, aluminosilicates);
    bool complete = false;
    calcre(h.run, complete, outsidewith("and"));
    const ReactionStore& rs = h.run.reactions;
    ASSERT_EQ(rs.excludedem.size(), 1u);
    EXPECT_EQ(rs.excludedem[0], 5);
    EXPECT_EQ(rs.nexcludedassemblage, 0);
    EXPECT_EQ(rs.nir, 3);
    for (int n = 1; n <= rs.nir; ++n) EXPECT_EQ(h.run.store.r[n][5], 0);
    EXPECT_NE(h.console.output.find("excluded assemblages | and |\n"), std::string::npos);
}

TEST(Generation, WithAllReactionsNothingIsLearnedFromAReactionOutside) {
    HandRun h;
    setsystem(h.run, {"SiO2", "Al2O3"}, aluminosilicates);
    h.run.reactions.allreactions = true;
    bool complete = false;
    calcre(h.run, complete, outsidewith("cor"));
    EXPECT_EQ(h.run.reactions.nir, 3);
    EXPECT_EQ(h.run.reactions.nexcludedassemblage, 0);
    EXPECT_TRUE(h.run.reactions.excludedem.empty());
    EXPECT_NE(h.console.output.find("+++XXX"), std::string::npos);
    EXPECT_NE(h.console.output.find("no of reactions = 3\n"), std::string::npos);
}

// Polymorphs of one composition: every pair is a reaction.
std::vector<HandEndMember> polymorphs(int n) {
    std::vector<HandEndMember> ems;
    for (int i = 1; i <= n; ++i) ems.push_back({"p" + std::to_string(i), {1}});
    return ems;
}

TEST(Generation, AFullStoreStopsTheSearchAndSaysSo) {
    for (bool all : {false, true}) {
        HandRun h;
        setsystem(h.run, {"SiO2"}, polymorphs(18));  // 153 pairs
        h.run.reactions.allreactions = all;
        bool complete = true;
        calcre(h.run, complete, alwaysinwindow());
        EXPECT_FALSE(complete);
        EXPECT_EQ(h.run.reactions.nir, 150);
        EXPECT_TRUE(h.run.reactions.reactionsfull);
        const std::string expected =
            all ? "\n*** INCOMPLETE set of reactions ***\nno of reactions = 150\n"
                : "\n*** INCOMPLETE set of reactions and intersections ***\n"
                  "no of reactions = 150, no of intersections = 0\n";
        EXPECT_NE(h.console.output.find(expected), std::string::npos) << all;
    }
}

TEST(Generation, APruneAtTheLimitThatFreesSlotsLetsTheSearchGoOn) {
    HandRun h;
    setsystem(h.run, {"SiO2"}, polymorphs(18));
    // p1 = p18 outside the window, p1 the unstable side: the 16 reactions of
    // p1 held so far go at the next prune.
    WindowQuestion q = [](sm::Run& run, int n, bool& below) {
        const auto& r = run.store.r[n];
        if (r[1] != 0 && r[18] != 0) {
            below = r[1] < 0;
            return false;
        }
        below = false;
        return true;
    };
    bool complete = false;
    calcre(h.run, complete, q);
    // Triples of polymorphs fill the intersections, not the reactions.
    EXPECT_FALSE(h.run.reactions.reactionsfull);
    EXPECT_TRUE(h.run.reactions.intersectionsfull);
    EXPECT_FALSE(complete);
    EXPECT_EQ(h.run.reactions.nir, 136);  // 17 choose 2
    for (int n = 1; n <= h.run.reactions.nir; ++n) EXPECT_EQ(h.run.store.r[n][1], 0);
}

TEST(Generation, BadSystemsStopWithTheirMessages) {
    {
        HandRun h;
        setsystem(h.run, {"A", "B"}, {{"a", {30000, 1}}, {"b", {1, 30000}}, {"c", {2, 1}}});
        h.run.reactions.allreactions = true;
        bool complete;
        const RunEnded e = smtest::expectended([&] { calcre(h.run, complete, alwaysinwindow()); });
        EXPECT_EQ(e.where, "re");
        EXPECT_EQ(e.message, "reaction coefficients too large");
    }
    {
        HandRun h;
        setsystem(h.run, {"SiO2", "Al2O3"}, aluminosilicates);
        h.run.runmode = 1;
        bool complete;
        const RunEnded e = smtest::expectended([&] { calcre(h.run, complete, alwaysinwindow()); });
        EXPECT_EQ(e.where, "calcre");
        EXPECT_EQ(e.message, "mode 1 sent to the wrong place");
    }
    {
        HandRun h;
        const RunEnded e = smtest::expectended([&] {
            setsystem(h.run, {"SiO2", "MgO"},
                      {{"fo", {1, 2}}, {"q", {1, 0}}, {"coe", {1, 0}}}, 2);
        });
        EXPECT_EQ(e.where, "reactionsetup");
        EXPECT_EQ(e.message, "in-excess end-members are not independent");
    }
}

TEST(Generation, ASystemWithNoComponentsLeftSaysSo) {
    HandRun h;
    setsystem(h.run, {"SiO2"}, {{"q", {1}}}, 1);
    bool complete = true;
    calcre(h.run, complete, alwaysinwindow());
    EXPECT_EQ(h.run.reactions.nir, 0);
    EXPECT_NE(h.console.output.find("no reactions in a system with no components?!\n"
                                    "should not have got to here...\n"),
              std::string::npos);
}

TEST(Generation, AnEndMemberMadeOfInExcessComponentsReactsWithThemAlone) {
    // With q in excess coesite has nothing left but silica: coe = q.
    HandRun h;
    setsystem(h.run, {"SiO2", "MgO"}, {{"coe", {1, 0}}, {"en", {2, 2}}, {"fo", {1, 2}}, {"q", {1, 0}}},
              1);
    h.run.reactions.allreactions = true;
    bool complete;
    calcre(h.run, complete, alwaysinwindow());
    const auto list = stored(h.run);
    EXPECT_TRUE(holds(list, {{"coe", -1}, {"q", 1}}));
    EXPECT_TRUE(holds(list, {{"fo", -1}, {"en", 1}, {"q", -1}}));
    for (int n = 1; n <= h.run.reactions.nir; ++n)
        EXPECT_TRUE(balances(h.run, n,
                             compositions({{"coe", {1, 0}}, {"en", {2, 2}}, {"fo", {1, 2}}, {"q", {1, 0}}})));
}

}  // namespace
}  // namespace sm::testing
