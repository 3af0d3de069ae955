// Script words of the bulk composition and the Gibbs minimisation search,
// and how the end of reading settles them.
#include "scriptfixture.h"

namespace {

using smtest::ScriptRun;

TEST(BulkWords, SetbulkReadsOxidesThenCompositionsScaledTo100) {
    ScriptRun t;
    t.read("pseudosection\n"
           "bulk SiO2 Al2O3 FeOt MgO\n"
           "bulk 50 20 20 10\n"
           "bulk 25 10 10 5 8\n");
    const sm::BulkScripts& b = t.s().bulk;
    EXPECT_EQ(b.bulkoxides, (std::vector<sm::sstring>{"SiO2", "Al2O3", "FeO", "MgO"}));
    ASSERT_EQ(b.bulk.size(), 2u);
    EXPECT_EQ(b.bulk[1][0], 50);  // 25 of 50 scaled to a sum of 100
    EXPECT_EQ(b.bulksteps, 8);
    EXPECT_EQ(t.problems(), 0);
}

TEST(BulkWords, SetbulkFaults) {
    const struct {
        const char* script;
        const char* said;
        const char* message;
    } cases[] = {
        {"pseudosection\nsetbulk 50 20 20\n", "setbulk should start with an oxide list on a line,  \n"
                                              "before the one or two lines of compositions",
         "change the setbulk script"},
        {"pseudosection\nbulk SiO2 MgO\nbulk 1 1\nbulk 1 1\nbulk 1 1\n", nullptr,
         "more than two compositions in setbulk?"},
        {"pseudosection\nbulk SiO2 MgO\nbulk 0 0\n", nullptr, "sum of bulk composition <= 0?"},
        {"bulk SiO2 MgO\nbulk 1 1\npseudosection\n", nullptr,
         "pseudosection script needs to be before reading bulk"},
        {"pseudosection\nbulk SiO2 MgO\nbulk 1 1\nrbi SiO2 MgO\n",
         "both bulk and rbi in the scriptfile; choose which to use",
         "ambiguity setting the bulk composition"},
        {"pseudosection\nrbi g 0.5 1 1\n", "now, rbi starts with a component list on a line (run a \n"
                                           "calculation with printbulkinfo to see the new format)",
         "change the rbi"},
        {"pseudosection\nrbi SiO2 MgO\nrbi g ## 1 1\n", nullptr, "replace ## with modes in rbi"},
        {"pseudosection\nrbi SiO2 MgO\nrbi g 0 1 1\n", nullptr, "the rbi modes sum to zero"},
        // a block left open at the end of the file holds no bulk
        {"pseudosection\nbulk SiO2 MgO\n", nullptr, "no bulk for pseudosection calcs"},
    };
    for (const auto& c : cases) {
        ScriptRun t;
        const sm::RunEnded e = t.readfails(c.script);
        EXPECT_EQ(e.where, "reading scripts") << c.script;
        EXPECT_EQ(e.message, c.message) << c.script;
        if (c.said) {
            EXPECT_TRUE(t.said(c.said)) << t.con.output;
        }
    }
}

TEST(BulkWords, ABadCompositionLineGivesUpTheBlock) {
    ScriptRun t;
    const sm::RunEnded e =
        t.readfails("pseudosection\nbulk SiO2 MgO\nbulk 1 x\nbulk 1 1\n", "no\n");
    EXPECT_EQ(e.message, "no bulk for pseudosection calcs");
    EXPECT_TRUE(t.said("for bulk, info includes \"x\", not just reals"));
    EXPECT_EQ(t.problems(), 1);
    EXPECT_EQ(t.s().bulk.bulkcount, 0);  // the later line was skipped
}

TEST(BulkWords, WithoutPseudosectionBulkLinesAreSkipped) {
    ScriptRun t;
    t.read("pseudosection no\nbulk SiO2 MgO\nbulk 1 1\nrbi SiO2\n");
    EXPECT_TRUE(t.s().bulk.bulk.empty());
    EXPECT_EQ(t.s().bulk.rbiflag, 1);
    EXPECT_FALSE(t.s().bulk.modesoutput);
}

TEST(BulkWords, RbiModesAreScaledToOne) {
    ScriptRun t;
    t.read("pseudosection\nrbi SiO2 FeOtot\nrbi g 2 40 60\nrbi q 6 100 0\n");
    const sm::BulkScripts& b = t.s().bulk;
    EXPECT_EQ(b.rbioxides[1], "FeO");
    ASSERT_EQ(b.rbi.size(), 2u);
    EXPECT_EQ(b.rbi[0].mode, 0.25L);
    EXPECT_EQ(b.rbi[1].mode, 0.75L);
}

TEST(BulkWords, SubrangeAndOneBulk) {
    const struct {
        const char* line;
        long double low, high, onebulk;
    } cases[] = {
        {"bulksubrange 0.2 0.6", 0.2L, 0.6L, -1},
        {"bulksubrange 0.3", 0.3L, 0.3L, 0.3L},
        {"splitbulk 0.6 0.2", 0.6L, 1, -1},  // a high below low is ignored
        {"bulksubrange", -1, 1, -1},
        {"bulksubrange 2", -1, 1, -1},
    };
    for (const auto& c : cases) {
        ScriptRun t;
        t.act(c.line);
        EXPECT_EQ(t.s().bulk.subrangelow, c.low) << c.line;
        EXPECT_EQ(t.s().bulk.subrangehigh, c.high) << c.line;
        EXPECT_EQ(t.s().bulk.onebulk, c.onebulk) << c.line;
    }
    ScriptRun t;
    t.act("onebulk 0.4");
    EXPECT_EQ(t.s().bulk.onebulk, 0.4L);
    t.act("onebulk");
    EXPECT_EQ(t.s().bulk.onebulkflag, 0);
    EXPECT_EQ(t.s().bulk.onebulk, -1);  // asked for
}

TEST(BulkWords, DogminSettlesTheSearch) {
    ScriptRun t;
    t.read("pseudosection\nmaxvar 3 5\n"
           "isopleth x(g) 0.2\nproject\ntozero bi\n"
           "dogmin 1\nmaxvar 3 5\n"
           "bulk SiO2 MgO\nbulk 1 1\n");
    const sm::ScriptStore& s = t.run.script;
    EXPECT_EQ(s.bulk.dogmin, 1);
    EXPECT_EQ(s.bulk.minvariance, 3);
    EXPECT_EQ(s.bulk.maxvariance, 5);
    EXPECT_EQ(s.bulk.pseudosection, 0);
    EXPECT_EQ(s.equilibrium.isoflag, 1);
    EXPECT_EQ(s.equilibrium.project, 1);
    EXPECT_TRUE(s.phases.tozero.empty());
    EXPECT_EQ(s.equilibrium.printguessform, 0);
    EXPECT_EQ(s.control.outlevel, 0);

    ScriptRun u;
    u.act("maxvar 3 5");  // above dogmin: ignored
    u.act("dogmin");
    EXPECT_EQ(u.s().bulk.maxvarflag, 1);

    ScriptRun v;
    v.act("dogmin 7");
    EXPECT_EQ(v.s().bulk.dogmin, 2);
    for (const char* bad : {"maxvar 1 5", "maxvar 5 3", "maxvar x"}) {
        v.act(bad);
        EXPECT_EQ(v.s().bulk.maxvarflag, 1) << bad;
    }

    ScriptRun w;
    const sm::RunEnded e = w.readfails("pseudosection\ndogmin\nbulk SiO2 MgO\nbulk 1 1\nbulk 1 2\n");
    EXPECT_EQ(e.where, "read scripts");
    EXPECT_EQ(e.message, "dogmin works on one bulk");
    EXPECT_TRUE(w.said("with a bulk range, use the onebulk script"));
}

TEST(BulkWords, SetvarGivesWayToAutovarInAPseudosection) {
    ScriptRun t;
    t.read("pseudosection\nsetvar 3\nautovar no\nbulk SiO2\nbulk 1\n");
    EXPECT_EQ(t.s().equilibrium.setvar, 1);
    EXPECT_EQ(t.s().equilibrium.autovar, 0);
    ScriptRun u;
    u.read("pseudosection no\nsetvar 3\n");
    EXPECT_EQ(u.s().equilibrium.setvar, 0);
    EXPECT_EQ(u.s().equilibrium.var, 3);
    u.act("setvar two");
    EXPECT_EQ(u.s().equilibrium.setvar, 1);
    const sm::RunEnded e = u.actfails("setvar 40000");
    EXPECT_EQ(e.message, "expecting an integer (2); got: 40000 - bad integer in setvar script");
}

}  // namespace
