// What the equations make of points and systems they cannot work on: a
// value outside the box, a negative site fraction, a system that is not
// square, a mass balance that leaves the reduced system, a bulk without
// one of the components. A message and a result, never a crash or NaN.
#include <cmath>

#include "nlefunc_testing.h"
#include "testutil.h"

namespace sm::eqtest {
namespace {

const std::vector<sstring> gbimu = {"g", "bi", "mu", "q", "H2O"};

struct Prepared {
    EqRun t;
    std::unique_ptr<NleMatrix> J = std::make_unique<NleMatrix>();
    NleVector F{};
    explicit Prepared(const std::vector<sstring>& phases, const Bulk& bulk = kfmashpelite) {
        t.load("sm-axkfm.txt", "sm-ds6a.txt");
        prepare(t, t.take(phases), 6, 923.15L, true, bulk);
        setactive(t.run, 1, false);
        setactive(t.run, 2, false);
    }
    bool eval(const NleVector& x) {
        EquilibriumSystem sys(t.run);
        return sys.nlefunc(x, *J, F, true);
    }
};

TEST(NlefuncFaults, AValueOutsideTheBoxIsNotALegalPoint) {
    Prepared p(gbimu);
    SolverState& sv = p.t.run.solver;
    NleVector x = sv.x;
    x[3] = 1.5L;  // x(g) past the top of its range
    p.t.con.output.clear();
    EXPECT_FALSE(p.eval(x));
    const std::string& out = p.t.con.output;
    EXPECT_EQ(out.find("## bad x(g) value\n"), 0u) << out;
    EXPECT_NE(out.find("\n\nFAILED in nlefunc, at which stage x was:\n"), std::string::npos);
    EXPECT_NE(out.find("   P(kbar)      T(C)      x(g)"), std::string::npos);
    EXPECT_NE(out.find("      6.00     650.0    1.5000"), std::string::npos) << out;
    // The caller's vector is not touched, and a good point is legal again.
    EXPECT_EQ(x[3], 1.5L);
    EXPECT_TRUE(p.eval(sv.x));
}

TEST(NlefuncFaults, ANegativeSiteFractionStopsAPlainRunAndFailsInASearch) {
    Prepared p(gbimu);
    SolverState& sv = p.t.run.solver;
    // Q(bi) at the bottom of its range leaves a negative site fraction
    // inside the box.
    NleVector x = sv.x;
    x[8] = 0;
    const RunEnded e = smtest::expectended([&] { p.eval(x); });
    EXPECT_EQ(e.where, "calcsf");
    EXPECT_EQ(e.message, "negative sf term");
    EXPECT_NE(p.t.con.output.find("sorry - try changing starting guesses!"), std::string::npos);

    sv.dogmin = true;
    sv.dogminprintlevel = 0;
    p.t.con.output.clear();
    EXPECT_FALSE(p.eval(x));
    EXPECT_TRUE(sv.softillegal);
    EXPECT_NE(p.t.con.output.find("** NOT OK"), std::string::npos);
}

TEST(NlefuncFaults, MorePhasesThanThePhaseRuleAllows) {
    // Seven phases in KFMASH at fixed P and T. Without modes there is one
    // reaction more than there are compositional variables: not square.
    EqRun t;
    t.load("sm-axkfm.txt", "sm-ds6a.txt");
    prepare(t, t.take({"g", "bi", "mu", "st", "ky", "q", "H2O"}), 6, 923.15L, false);
    setactive(t.run, 1, false);
    setactive(t.run, 2, false);
    EquilibriumSystem sys(t.run);
    auto J = std::make_unique<NleMatrix>();
    NleVector F{};
    t.con.output.clear();
    const RunEnded e = smtest::expectended([&] { sys.nlefunc(t.run.solver.x, *J, F, true); });
    EXPECT_EQ(e.where, "nlefunc");
    EXPECT_EQ(e.message, "non-square jacobian");
    EXPECT_EQ(e.internal, 1);
    EXPECT_NE(t.con.output.find("row 8 (8 6 0)\n"), std::string::npos) << t.con.output;
    EXPECT_NE(t.con.output.find("col 7 (7 0)\n"), std::string::npos) << t.con.output;

    // With modes the counts agree but the intensive equations outnumber
    // the compositions: the solver ends with a result number.
    Prepared p({"g", "bi", "mu", "st", "ky", "q", "H2O"});
    p.t.run.solver.printlevel = 0;
    EquilibriumSystem sys2(p.t.run);
    int result = -1;
    nle(p.t.run, sys2, result);
    EXPECT_GE(result, 1);
    EXPECT_LE(result, 10);
}

TEST(NlefuncFaults, AMassBalanceOffTheReducedSystemStops) {
    // No potassium phase, and a bulk with potassium: the row the
    // assemblage cannot change does not vanish.
    EqRun t;
    t.load("sm-axkfm.txt", "sm-ds6a.txt");
    const Assemblage a = t.take({"g", "ky", "q", "H2O"});
    prepare(t, a, 6, 923.15L, true, kfmashpelite);
    setactive(t.run, 1, false);
    setactive(t.run, 2, false);
    ASSERT_EQ(t.run.equilibrium.rankdeficit, 1);
    EquilibriumSystem sys(t.run);
    auto J = std::make_unique<NleMatrix>();
    NleVector F{};
    t.con.output.clear();
    const RunEnded e = smtest::expectended([&] { sys.nlefunc(t.run.solver.x, *J, F, true); });
    EXPECT_EQ(e.where, "nlefunc");
    EXPECT_EQ(e.message, "residuals not in reduced system");
    EXPECT_NE(t.con.output.find("should be zero in rank-deficient case"), std::string::npos);
    // In a search it is a point that cannot be, told at its print level 2.
    t.run.solver.dogmin = true;
    t.run.solver.dogminprintlevel = 2;
    t.con.output.clear();
    EXPECT_FALSE(sys.nlefunc(t.run.solver.x, *J, F, true));
    EXPECT_NE(t.con.output.find("residuals not in reduced system - shouldn't have happened?"), std::string::npos);
    // With the bulk in the span, the rows solved are one fewer.
    Bulk nok = kfmashpelite;
    nok.pop_back();
    t.run.solver.dogmin = false;
    prepare(t, a, 6, 923.15L, true, nok);
    setactive(t.run, 1, false);
    setactive(t.run, 2, false);
    EXPECT_TRUE(sys.nlefunc(t.run.solver.x, *J, F, true));
    EXPECT_EQ(t.run.equilibrium.nrows, t.run.reactions.nir + 5);
}

TEST(NlefuncFaults, ABulkWithoutAComponentEndsInAResultNumber) {
    // Muscovite and biotite in a rock without potassium: the solver must
    // fail, quietly, or find modes that make the bulk; never NaN.
    Bulk nok = kfmashpelite;
    nok.pop_back();
    Prepared p(gbimu, nok);
    SolverState& sv = p.t.run.solver;
    sv.printlevel = 0;
    EquilibriumSystem sys(p.t.run);
    int result = -1;
    nle(p.t.run, sys, result);
    EXPECT_GE(result, 0);
    EXPECT_LE(result, 10);
    for (int i = 1; i <= sv.nx + sv.nm; ++i) EXPECT_TRUE(std::isfinite(static_cast<double>(sv.x[i]))) << i;
}

TEST(NlefuncFaults, PrintLevelFourShowsTheEquations) {
    Prepared p(gbimu);
    SolverState& sv = p.t.run.solver;
    sv.printlevel = 4;
    sv.fncalls = 1;
    p.t.con.output.clear();
    EXPECT_TRUE(p.eval(sv.x));
    const std::string& out = p.t.con.output;
    for (const char* h : {"\nactivities\n", "\njacobian\n", "eq1", "H2O", "(f = "})
        EXPECT_NE(out.find(h), std::string::npos) << h;
}

}  // namespace
}  // namespace sm::eqtest
