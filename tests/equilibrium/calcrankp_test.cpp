// The rank of an assemblage on the reduced system and the conditions its
// deficit puts on the bulk, checked against the compositions themselves:
// the rows of projc past the rank must annul every end-member of the
// assemblage, and a bulk fits exactly when it satisfies them.
#include <cmath>

#include "eqtesting.h"
#include "testutil.h"

namespace sm::eqtest {
namespace {

// Every row of projc past the rank annuls every end-member column of the
// taken phases, in true compositions; the rows up to the rank do not all.
void expectnullrows(const EqRun& t, const Assemblage& a) {
    const EquilibriumState& eq = t.run.equilibrium;
    const EndMemberStore& st = t.run.store;
    std::vector<const EmComposition*> cols;
    for (int k = 1; k <= st.npss; ++k)
        if (a[k])
            for (int j = 1; j <= t.run.phases.prec1[k].nem; ++j) cols.push_back(&t.run.phases.prec1[k].em[j].comp);
    for (int k = 1; k <= st.nmin; ++k)
        if (a[st.npss + k]) cols.push_back(&t.run.phases.prec0[k].comp);
    for (int r = 1; r <= eq.nuvleft; ++r) {
        bool annuls = true;
        for (const EmComposition* c : cols) {
            real s = 0;
            for (int j = 1; j <= eq.nuvleft; ++j) s += eq.projc[r][j] * c->x[eq.reducedcomp[j]];
            if (std::fabs(s) > 1e-9L) annuls = false;
        }
        if (r > eq.nuvleft - eq.rankdeficit)
            EXPECT_TRUE(annuls) << "row " << r;
        else
            EXPECT_FALSE(annuls) << "row " << r;
    }
}

bool identity(const EquilibriumState& eq) {
    for (int r = 1; r <= eq.nuvleft; ++r)
        for (int c = 1; c <= eq.nuvleft; ++c)
            if (eq.projc[r][c] != (r == c ? 1 : 0)) return false;
    return true;
}

struct RankCase {
    const char* name;
    std::vector<sstring> phases;
    int rank;
    std::vector<const char*> equations;  // the printed conditions with the KFMASH bulk
};

TEST(Calcrankp, RankDeficitAndTheConditionsOnTheBulk) {
    const std::vector<RankCase> cases = {
        {"spans KFMASH", {"g", "bi", "mu", "q", "H2O"}, 6, {}},
        {"spans, pure phases first in no order", {"H2O", "q", "mu", "g", "bi", "ky"}, 6, {}},
        {"no potassium", {"g", "ky", "q", "H2O"}, 5, {"   K2O = 0"}},
        {"silica, alumina and water alone", {"q", "ky", "H2O"}, 3, {"   K2O = 0", "   FeO = 0", "   MgO = 0"}},
        {"chloritoid and kyanite", {"ctd", "ky"}, 3, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EqRun t;
        t.load("sm-axkfm.txt", "sm-ds6a.txt");
        t.bulk(kfmashpelite);
        const Assemblage a = t.take(c.phases);
        int rank = 0;
        bool ok = false;
        t.con.output.clear();
        calcrankp(t.run, a, rank, ok);
        const EquilibriumState& eq = t.run.equilibrium;
        EXPECT_EQ(rank, c.rank);
        EXPECT_EQ(eq.rankdeficit, 6 - c.rank);
        EXPECT_EQ(ok, c.rank == 6);
        if (c.rank == 6) {
            EXPECT_TRUE(identity(eq));
            EXPECT_EQ(t.con.output, "");
            continue;
        }
        expectnullrows(t, a);
        EXPECT_NE(t.con.output.find("bulk NOT in reduced system\n"), std::string::npos);
        EXPECT_NE(t.con.output.find(c.rank == 5 ? "this equation must apply\n" : "these equations must apply\n"),
                  std::string::npos);
        for (const char* e : c.equations) EXPECT_NE(t.con.output.find(std::string(e) + "\n"), std::string::npos) << e;
    }
}

TEST(Calcrankp, ABulkThatSatisfiesTheConditionFits) {
    EqRun t;
    t.load("sm-axkfm.txt", "sm-ds6a.txt");
    Bulk nok = kfmashpelite;
    nok.erase(nok.end() - 1);  // no K2O
    t.bulk(nok);
    int rank = 0;
    bool ok = false;
    calcrankp(t.run, t.take({"g", "ky", "q", "H2O"}), rank, ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(t.run.equilibrium.rankdeficit, 1);
    EXPECT_EQ(t.con.output.find("bulk NOT"), std::string::npos);

    // Both ends of a range must fit: the second bulk holds potassium.
    t.bulk(nok, kfmashpelite);
    calcrankp(t.run, t.take({"g", "ky", "q", "H2O"}), rank, ok);
    EXPECT_FALSE(ok);

    // Without a bulk a deficit refuses nothing.
    t.run.equilibrium.nbulk = 0;
    t.con.output.clear();
    calcrankp(t.run, t.take({"g", "ky", "q", "H2O"}), rank, ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(t.con.output, "");
}

TEST(Calcrankp, CombinedConditionsAnnulTheAssemblageAndRefuseAnOffBulk) {
    EqRun t;
    t.load("sm-axkfm.txt", "sm-ds6a.txt");
    t.bulk(kfmashpelite);
    const Assemblage a = t.take({"ctd", "ky"});
    int rank = 0;
    bool ok = true;
    calcrankp(t.run, a, rank, ok);
    EXPECT_FALSE(ok);
    expectnullrows(t, a);
    // A bulk made of the assemblage itself: 1 fctd, 1 mctd and 2 ky in
    // (K2O FeO MgO Al2O3 SiO2 H2O) order, whatever order the run has.
    t.bulk({{"FeO", 1}, {"MgO", 1}, {"Al2O3", 4}, {"SiO2", 4}, {"H2O", 2}});
    t.con.output.clear();
    calcrankp(t.run, a, rank, ok);
    EXPECT_TRUE(ok) << t.con.output;
}

TEST(Calcrankp, SearchPrintsOnlyAtItsOwnLevels) {
    EqRun t;
    t.load("sm-axkfm.txt", "sm-ds6a.txt");
    t.bulk(kfmashpelite);
    int rank = 0;
    bool ok = true;
    t.run.solver.dogmin = true;
    t.run.solver.dogminprintlevel = 1;
    t.con.output.clear();
    calcrankp(t.run, t.take({"g", "ky", "q", "H2O"}), rank, ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(t.con.output, "");
    t.run.solver.dogminprintlevel = 2;
    calcrankp(t.run, t.take({"g", "ky", "q", "H2O"}), rank, ok);
    EXPECT_EQ(t.con.output, "<" + std::string(50, '=') +
                                ">\nreduced system needed for handling equilibrium involving: g q ky H2O \n");
}

TEST(Calcrankp, MatricesAtPrintLevelTwo) {
    EqRun t;
    t.load("sm-axkfm.txt", "sm-ds6a.txt");
    t.bulk(kfmashpelite);
    t.run.solver.printlevel = 2;
    int rank = 0;
    bool ok = true;
    calcrankp(t.run, t.take({"g", "ky", "q", "H2O"}), rank, ok);
    EXPECT_FALSE(ok);
    for (const char* h : {"composition matrix", "permutation matrix", "L info", "inv L", "projc",
                          "row-reduced matrix, U", "alternatively, projc A"})
        EXPECT_NE(t.con.output.find(std::string("\n") + h + "\n"), std::string::npos) << h;
}

TEST(Rankof, IntegerRankOfSmallMatrices) {
    using M = std::vector<std::vector<long long>>;
    // Rows 1-based: row 0 and column 0 unused.
    const M a = {{0, 0, 0, 0}, {0, 1, 2, 3}, {0, 2, 4, 6}, {0, 1, 0, 1}};
    EXPECT_EQ(rankof(a, 3, 3), 2);
    const M b = {{0, 0, 0}, {0, 0, 0}, {0, 0, 5}};
    EXPECT_EQ(rankof(b, 2, 2), 1);
    const M c = {{0, 0, 0, 0}, {0, 3, 1, 0}, {0, 0, 2, 7}, {0, 6, 0, -7}};
    EXPECT_EQ(rankof(c, 3, 3), 2);
    EXPECT_EQ(rankof(M{{0}}, 0, 0), 0);
}

}  // namespace
}  // namespace sm::eqtest
