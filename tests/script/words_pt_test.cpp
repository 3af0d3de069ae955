// Script words of pressure, temperature and the x(CO2) axis.
#include "scriptfixture.h"

namespace {

using smtest::ScriptRun;

TEST(PTWords, DiagramPTKeepsARepairedWindow) {
    ScriptRun t;
    t.act("windowPT 12 4 500 700");
    const sm::WindowScripts& w = t.s().windows;
    EXPECT_EQ(w.diagramPT, 0);  // four numbers: the repaired window stands
    EXPECT_EQ(w.overallP.lo, 4);
    EXPECT_EQ(w.overallP.hi, 12);
    EXPECT_NEAR(static_cast<double>(w.overallT.lo), 773.15, 1e-9);
    EXPECT_EQ(t.problems(), 1);
    EXPECT_TRUE(t.said("for windowPT, the 2nd P in the P range must be larger than the 1st P"));

    ScriptRun u;
    u.act("diagramPT 4 12 500 abc");
    EXPECT_EQ(u.s().windows.diagramPT, 1);
    EXPECT_TRUE(u.said("for diagramPT, 4 numbers needed to define a PT rectangle"));
}

TEST(PTWords, NegPActsOnlyOnTheLinesBelowIt) {
    ScriptRun t;
    t.act("diagramPT -5 10 400 700");
    EXPECT_TRUE(t.said("the bottom of the P range needs to be greater than 0.0009 kbar"));
    EXPECT_EQ(t.s().windows.overallP.lo, 0.0009L);
    t.act("negP");
    t.act("figurePT -5 10 400 700");
    EXPECT_EQ(t.s().windows.overallP.lo, -5);
    EXPECT_EQ(t.problems(), 1);
}

TEST(PTWords, CalcPAndCalcTForms) {
    const struct {
        const char* line;
        int flag;
        long double lo, hi, interval;
        int problems;
    } cases[] = {
        {"calcP 6", 0, 6, 6, 0, 0},
        {"calcP 4 10", 0, 4, 10, 0, 0},
        {"calcP 4 10 0.5", 0, 4, 10, 0.5L, 0},
        {"calcP 10 4", 1, 4, 10, 0, 1},
        {"calcP ask 4 10", 2, 4, 10, 0, 0},
        {"calcP no 4 10", 1, 0.0009L, 1500, 0, 0},
        {"calcT 10.5", 0, 283.65L, 283.65L, 0, 0},
        {"calcT 9", 1, 283, 283, 0, 1},
        {"calcT 700 500", 1, 773.15L, 973.15L, 0, 1},
        {"calcT 500 700 25", 0, 773.15L, 973.15L, 25, 0},
    };
    for (const auto& c : cases) {
        ScriptRun t;
        t.act(c.line);
        const sm::WindowScripts& w = t.s().windows;
        const bool isP = std::string(c.line).find("calcP") == 0;
        EXPECT_EQ(isP ? w.calcPflag : w.calcTflag, c.flag) << c.line;
        const sm::Window& win = isP ? w.calcP : w.calcT;
        EXPECT_NEAR(static_cast<double>(win.lo), static_cast<double>(c.lo), 1e-9) << c.line;
        EXPECT_NEAR(static_cast<double>(win.hi), static_cast<double>(c.hi), 1e-9) << c.line;
        EXPECT_EQ(isP ? w.Pinterval : w.Tinterval, c.interval) << c.line;
        EXPECT_EQ(t.problems(), c.problems) << c.line;
    }
    for (const char* bad : {"calcP", "calcP a b", "calcP 1 2 3 4"}) {
        ScriptRun t;
        t.act(bad);
        EXPECT_EQ(t.s().windows.calcPflag, 1);
        EXPECT_EQ(t.con.output, "\nfor calcP1, 2 or 3 numbers needed") << bad;
        EXPECT_EQ(t.problems(), 1);
    }
}

TEST(PTWords, XCO2ValuesAsRangeOrList) {
    const struct {
        const char* line;
        std::vector<long double> first;  // the first values
        size_t count;
        long double last;
    } cases[] = {
        {"calcx(CO2) 0.1 0.5 0.9", {0.1L, 0.5L, 0.9L}, 3, 0.9L},
        {"xco2values 0.1 0.5 0.1", {0.1L, 0.2L, 0.3L}, 5, 0.5L},
        {"x(CO2)values 0.1 0.5 0.15", {0.1L, 0.25L, 0.4L}, 4, 0.5L},
        {"calcx(co2) 0.1 0.2 0.0001", {0.1L, 0.1005L}, 201, 0.2L},
        {"calcx(CO2) 0.1 0.2 1e-300", {0.1L, 0.1005L}, 201, 0.2L},
        {"calcx(CO2) 0 0.3 1.2 0.6", {0.3L, 0.6L}, 2, 0.6L},
    };
    for (const auto& c : cases) {
        ScriptRun t;
        t.act(c.line);
        const auto& list = t.s().windows.xco2list;
        ASSERT_EQ(list.size(), c.count) << c.line;
        for (size_t i = 0; i < c.first.size(); ++i)
            EXPECT_NEAR(static_cast<double>(list[i]), static_cast<double>(c.first[i]), 1e-12) << c.line;
        EXPECT_NEAR(static_cast<double>(list.back()), static_cast<double>(c.last), 1e-12);
        EXPECT_EQ(t.s().windows.calcxco2flag, 0);
    }
    const struct {
        const char* line;
        const char* said;
        const char* message;
    } bad[] = {
        {"calcx(CO2) 0.5 0.9 0.6", "x(CO2): low, high and inc expected", "values inappropriate"},
        {"calcx(CO2) 0 0.5 0.1", "x(CO2): low, high and inc expected", "values inappropriate"},
        {"calcx(CO2) 1.5 2", "x(CO2): list of values between 0 and 1 expected",
         "values inappropriate"},
        {"calcx(CO2) low", "x(CO2): low, high and inc expected, or one or more values",
         "info inappropriate"},
    };
    for (const auto& c : bad) {
        ScriptRun t;
        const sm::RunEnded e = t.actfails(c.line);
        EXPECT_EQ(e.where, "reading scripts");
        EXPECT_EQ(e.message, c.message) << c.line;
        EXPECT_TRUE(t.said(c.said)) << c.line;
    }
}

TEST(PTWords, GuessesCalculationTypesAndFigures) {
    ScriptRun t;
    t.act("ptguess 6 550");
    EXPECT_EQ(t.s().equilibrium.ptguessflag, 0);
    EXPECT_NEAR(static_cast<double>(t.s().equilibrium.ptguessT), 823.15, 1e-9);
    t.act("ptguess 6 5");  // below 10 C: quietly no guess
    EXPECT_EQ(t.s().equilibrium.ptguessflag, 1);
    EXPECT_EQ(t.problems(), 0);

    t.act("setptforaxe 5 600");
    EXPECT_EQ(t.s().windows.setptforaxe, 0);
    EXPECT_NEAR(static_cast<double>(t.s().windows.ptforaxeT), 873.15, 1e-9);

    t.act("figure Tx(CO2)");
    EXPECT_EQ(t.s().windows.figure, sm::figTx);
    const sm::RunEnded e = t.actfails("figure P-T-x");
    EXPECT_EQ(e.message, "P-T-x not recognised (remove from scriptfile)");

    ScriptRun m3(3);
    m3.act("calctype 5");
    EXPECT_EQ(m3.s().windows.calctype, 5);
    m3.act("calctype ask 2");
    EXPECT_EQ(m3.s().windows.calctypeflag, 1);
    ScriptRun m2(2);
    m2.act("calctype 3");
    EXPECT_EQ(m2.s().windows.calctypeflag, 1);
    EXPECT_TRUE(m2.said("for calctype, info given is \"3\", but limits are 1 to 2"));

    ScriptRun r(3);
    r.act("calcTatP no");
    EXPECT_EQ(r.s().windows.calctatp, 1);
    EXPECT_EQ(ScriptRun(3).s().windows.calctatp, 2);  // asked unless a script speaks
}

}  // namespace
