// Script words of run and output control, and the settlement among them.
#include "scriptfixture.h"

namespace {

using smtest::ScriptRun;

TEST(OutputWords, LevelsAndTolerances) {
    ScriptRun t;
    t.act("debuglevel 4");
    EXPECT_EQ(t.s().control.debuglevel, 4);
    t.act("debuglevel x");
    EXPECT_EQ(t.s().control.debuglevel, 1);
    t.act("convergence 1e-10 1e-7 0.01 0");
    EXPECT_EQ(t.s().control.convergence[0], 1e-10L);
    EXPECT_EQ(t.s().control.convergence[3], 0);
    EXPECT_TRUE(t.said("conv: 1e-10 1e-7 1e-2 0 \n"));
    t.act("convergence 1e-10 1e-7");
    EXPECT_EQ(t.s().control.convergenceflag, 1);
    EXPECT_TRUE(t.said("for convergence, only 2 numbers in a line, but 4 needed"));
    t.act("sketch 1");
    EXPECT_EQ(t.s().control.sketchlevel, 1);
    t.act("moreprec ask");
    EXPECT_EQ(t.s().control.moreprec, 2);  // left for the printing to treat as not 0
    t.act("ggk");
    EXPECT_TRUE(t.s().control.numerical);
}

TEST(OutputWords, SettlementAmongOutputWords) {
    const struct {
        const char* script;
        int sketch, project, outlevel;
    } cases[] = {
        {"", 0, 1, 1},
        {"compatibility\n", 1, 1, 1},
        {"modebox ask\n", 1, 1, 1},
        {"project\ncalib\n", 0, 1, 1},
        {"project\n", 0, 0, 1},
        {"outlevel 5\n", 0, 1, 1},
        {"outlevel 0\n", 0, 1, 0},
    };
    for (const auto& c : cases) {
        ScriptRun t;
        t.read(c.script);
        EXPECT_EQ(t.s().control.sketch, c.sketch) << c.script;
        EXPECT_EQ(t.s().equilibrium.project, c.project) << c.script;
        EXPECT_EQ(t.s().control.outlevel, c.outlevel) << c.script;
    }
}

TEST(OutputWords, DiscontinuedWordsStopTheRun) {
    ScriptRun t;
    const sm::RunEnded e = t.actfails("exbuff");
    EXPECT_EQ(e.message, "exit, and use one of the new scripts");
    EXPECT_TRUE(t.said("the script, exbuff, is superceded: use instead\n"
                       "\"figure T-x(CO2)\" or \"figure P-x(CO2)\""));
    ScriptRun u;
    EXPECT_EQ(u.actfails("mccorr").message, "mccorr no longer exists");
    ScriptRun v;
    EXPECT_EQ(v.actfails("fract").kind, sm::RunEnded::killed);
    EXPECT_TRUE(v.said("fractcalcs are currently untested - what state are they in??"));
    v.act("fract no");  // off: nothing happens
    v.act("calcsdnle");
    EXPECT_TRUE(v.said("calcsdnle not available in sm351\n"));
}

TEST(OutputWords, IgnoredWordsAreKnown) {
    ScriptRun t;
    t.read("latex\noutlevel 0\noblique\nutilitycode\ntablecode\nrecalccode\nconvert a b\n");
    EXPECT_EQ(t.problems(), 0);
    EXPECT_EQ(t.s().control.convertlines, 1);
}

}  // namespace
