// Script words of files, phase lists, fixed activities and potentials.
#include "scriptfixture.h"

namespace {

using smtest::ScriptRun;
using names = std::vector<sm::sstring>;

TEST(PhaseWords, WithKeepsNamesWholeAndCut) {
    ScriptRun t;
    t.act("with g bi_1 mu_ky q");
    EXPECT_EQ(t.s().phases.with, (names{"g", "bi", "mu", "q"}));
    EXPECT_EQ(t.s().phases.withwhole, (names{"g", "bi_1", "mu_ky", "q"}));
    t.act("which someof g bi q");
    EXPECT_TRUE(t.s().phases.someof);
    EXPECT_EQ(t.s().phases.with, (names{"g", "bi", "q"}));  // a later list replaces
}

TEST(PhaseWords, WithFaults) {
    const struct {
        const char* line;
        const char* said;
        const char* where;
        const char* message;
    } cases[] = {
        {"with", "with, should be followed by a list of phase names", "reading script",
         "with: missing list"},
        {"which someof", "which, someof should be followed by a list of phase names",
         "reading scriptwhich", "missing list of phases"},
        {"with g _bi", nullptr, "reading script", "sepchar in wrong place in _bi"},
        {"with g bi_", nullptr, "reading script", "sepchar in wrong place in bi_"},
        {"with all", nullptr, "reading script", "\"all\" in \"with\" only defined for utilitycalc"},
    };
    for (const auto& c : cases) {
        ScriptRun t;
        const sm::RunEnded e = t.actfails(c.line);
        EXPECT_EQ(e.where, c.where) << c.line;
        EXPECT_EQ(e.message, c.message) << c.line;
        if (c.said) {
            EXPECT_TRUE(t.said(c.said)) << c.line;
        }
    }
}

TEST(PhaseWords, InExcessAndToZeroJoinTheLists) {
    ScriptRun t;
    t.read("with g bi q\ninexcess q H2O\ntozero ru\n");
    EXPECT_EQ(t.s().phases.setexcess, (names{"q", "H2O", "ru"}));
    EXPECT_EQ(t.s().phases.with, (names{"g", "bi", "q", "H2O", "ru"}));

    ScriptRun u;
    u.act("inexcess no");
    EXPECT_EQ(u.s().phases.setexcessflag, 0);  // no question about in-excess phases
    EXPECT_TRUE(u.s().phases.setexcess.empty());
    u.act("setexcess ask q");
    EXPECT_EQ(u.s().phases.setexcessflag, 2);
}

TEST(PhaseWords, AxfileSamecodingRgbConvliq) {
    ScriptRun t;
    t.act("axfile axkfm");
    EXPECT_EQ(t.s().phases.axfile, "axkfm");
    t.act("axfile no");
    EXPECT_TRUE(t.s().phases.axfile.empty());

    for (int i = 0; i < 16; ++i) t.act("samecoding g bi");
    EXPECT_EQ(t.actfails("samecoding g bi").message, "too many samecodings");
    ScriptRun u;
    EXPECT_EQ(u.actfails("samexeos a b c d e f g h i").message, "too many items in a samecoding");

    u.act("rgb g 255 0 10");
    u.act("rgb bi 0 0 0");
    EXPECT_TRUE(u.said("rgb = 1) g 255 0 10\nrgb = 2) bi 0 0 0\n"));
    u.act("rgb q 300 0 0");
    EXPECT_TRUE(u.s().phases.rgb.empty());
    EXPECT_TRUE(u.said("rgb = -\n"));

    u.act("convliq 1 0 0.5");
    u.act("convliq 1 2");  // another width: skipped
    u.act("convliq 0 1 0.5");
    EXPECT_EQ(u.s().phases.convliq.size(), 2u);
    std::string wide = "convliq";
    for (int i = 0; i < 21; ++i) wide += " 1";
    ScriptRun v;
    const sm::RunEnded e = v.actfails(wide);
    EXPECT_EQ(e.where, "control");
    EXPECT_EQ(e.message, "too many columns in convliq matrix");
    for (int i = 0; i < 15; ++i) v.act("convliq 1 2");
    EXPECT_EQ(v.actfails("convliq 1 2").message, "too many rows in convliq matrix");
}

TEST(PhaseWords, FluidComposition) {
    ScriptRun t(3);
    t.act("setfluid 0.3");
    EXPECT_EQ(t.s().phases.setfluid, 0);
    EXPECT_EQ(t.s().phases.xh2o, 1 - 0.3L);
    t.act("x(CO2) ask 0.2");
    EXPECT_EQ(t.s().phases.setfluid, 2);
    t.act("setfluid abc");
    EXPECT_EQ(t.s().phases.setfluid, 1);
    EXPECT_TRUE(t.said("for setfluid, info given is \"abc\"\na real will be prompted for"));
    EXPECT_EQ(t.problems(), 1);
}

TEST(ActivityWords, FixedActivitiesShareOneTableOfLnA) {
    ScriptRun t(3);
    t.act("seta q 1 H2O");
    t.act("setlna sill -0.5");
    t.act("setloga q -1");
    const auto& f = t.s().activities.fixed;
    ASSERT_EQ(f.size(), 3u);
    EXPECT_EQ(f[0].name, "q");
    EXPECT_NEAR(static_cast<double>(f[0].lna), -2.302585092994046, 1e-12);  // the last line wins
    EXPECT_EQ(f[1].lna, 10);  // to be set
    EXPECT_EQ(f[2].lna, -0.5L);
    EXPECT_TRUE(t.s().activities.base10);
    EXPECT_TRUE(t.said("ln a(q) = 0\nln a(H2O) - to be set \n"));
    EXPECT_TRUE(t.said("log a(q) = -1\n"));

    ScriptRun u(2);
    u.act("seta H2O");
    EXPECT_EQ(u.s().activities.fixed[0].lna, 10);
    u.act("seta CO2 0");
    EXPECT_EQ(u.problems(), 1);
    EXPECT_EQ(u.s().activities.fixed[1].lna, 10);
}

TEST(ActivityWords, LnaMuAndBuffers) {
    ScriptRun t;
    t.act("lna H2O -0.2");
    EXPECT_EQ(t.s().activities.lnaflag, 0);
    EXPECT_EQ(t.s().activities.lnalabel, "H2O");
    t.act("lna H2O -0.2 water");
    EXPECT_EQ(t.s().activities.lnalabel, "water");
    for (const char* off : {"lna none", "lna H2O", "lna 3 -0.2", "lna ask H2O -0.2"}) {
        t.act(off);
        EXPECT_EQ(t.s().activities.lnaflag, 1) << off;
    }
    t.act("setmu O2 -120 H2O");
    EXPECT_TRUE(t.said("mu(O2) = -120\nmu(H2O) - to be set \n"));
    EXPECT_EQ(t.s().activities.setmu[1].mu, 0);
    t.act("buffer mt 0.5");
    EXPECT_TRUE(t.said("for mt del = 0.5\n"));
    EXPECT_EQ(t.actfails("buffer mt x").message, "buffer, \"mt\", not a del");
}

TEST(ActivityWords, MuvalBlock) {
    ScriptRun t;
    t.read("calcP 4 10\ncalcT 500 700\nmuval\nmuval PT 5 600\nmuval SiO2 MgO\nmuval -900 -600\n");
    const sm::ActivityScripts& a = t.s().activities;
    EXPECT_EQ(a.muvalstage, 4);
    EXPECT_EQ(a.muvalues.size(), 2u);
    ScriptRun u;
    EXPECT_EQ(u.readfails("calcP 4 10\ncalcT 500 700\nmuval\nmuval PT 2 600\n").message,
              "PT of muval too small");
    ScriptRun v;
    EXPECT_EQ(v.readfails("muval yes\nmuval on PT 5 600\n").message,
              "cbool out of place in muval script");
}

}  // namespace
