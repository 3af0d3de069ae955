// Windows, lists of values and the fixed fluid.
#include "script/windows.h"

#include "scriptfixture.h"

namespace {

using smtest::ScriptRun;

std::vector<double> values(const std::vector<long double>& v, double offset = 0) {
    std::vector<double> out;
    for (long double x : v) out.push_back(static_cast<double>(x) - offset);
    return out;
}

void expectlist(const std::vector<long double>& got, const std::vector<double>& want,
                double offset = 0) {
    const std::vector<double> g = values(got, offset);
    ASSERT_EQ(g.size(), want.size());
    for (size_t i = 0; i < want.size(); ++i) EXPECT_NEAR(g[i], want[i], 1e-9) << i;
}

TEST(Windows, InRangeIncludesTheBoundsAndRefusesUnknownKinds) {
    ScriptRun t;
    sm::Windows& w = t.s().win;
    w.calcP = {4, 8};
    w.calcT = {800, 900};
    w.xco2window = {0.1L, 0.5L};
    EXPECT_TRUE(sm::inrange(t.run, 1, 4));
    EXPECT_TRUE(sm::inrange(t.run, 1, 8));
    EXPECT_FALSE(sm::inrange(t.run, 1, 8.0001L));
    EXPECT_TRUE(sm::inrange(t.run, 0, 850));
    EXPECT_FALSE(sm::inrange(t.run, 2, 0.05L));
    const sm::RunEnded e = smtest::expectended([&] { sm::inrange(t.run, 5, 1); });
    EXPECT_EQ(e.where, "inrange");
    EXPECT_EQ(e.internal, 1);
}

TEST(Windows, OverallWindowFromScriptOrPrompt) {
    ScriptRun t;
    t.act("diagramPT 4 12 500 700");
    sm::dofigPT(t.run);
    EXPECT_TRUE(t.said("specification of overall PT window:\noverall PT window is P: 4.0 to 12.0 "
                       "kbar, and T: 500 to 700\xA1" "C (from script)\n"));
    EXPECT_EQ(t.s().win.overallP.hi, 12);

    ScriptRun u;
    u.con.feed("no\n5 10 450 650\n");
    sm::dofigPT(u.run);
    EXPECT_TRUE(u.said("stop, and put info in the scriptfile ? "));
    EXPECT_TRUE(u.said("overall PT window is P: 5.0 to 10.0 kbar, and T: 450 to 650\xA1" "C\n"));

    ScriptRun v;
    v.con.feed("no\n5 10 700 650\n");
    const sm::RunEnded e = smtest::expectended([&] { sm::dofigPT(v.run); });
    EXPECT_EQ(e.where, "dofigPT");
    EXPECT_EQ(e.message, "inappropriate PT window input");
    ScriptRun k;
    k.con.feed("\n");
    EXPECT_EQ(smtest::expectended([&] { sm::dofigPT(k.run); }).kind, sm::RunEnded::killed);
}

TEST(Windows, CheckWindowRepairs) {
    ScriptRun t;
    sm::Windows& w = t.s().win;
    w.overallP = {2, 12};
    long double lo = 8, hi = 4;
    sm::checkPwindow(t.run, lo, hi, 0);
    EXPECT_EQ(lo, 4);
    EXPECT_TRUE(t.said("P(low) must be less than P(high): values swapped\n"));
    lo = 1;
    hi = 20;
    sm::checkPwindow(t.run, lo, hi, 0);
    EXPECT_EQ(lo, 2);
    EXPECT_EQ(hi, 12);
    EXPECT_TRUE(t.said("P(high) must be less than 12.0: this used\nP(low) must be greater than 2.0: this used\n"));
    lo = hi = 5;
    sm::checkPwindow(t.run, lo, hi, 0);
    EXPECT_EQ(hi, 5);
    sm::checkPwindow(t.run, lo, hi, 1);
    EXPECT_EQ(lo, 2);
    EXPECT_EQ(hi, 12);
    EXPECT_TRUE(t.said("P window needed but P(low) = P(high): overall P window used (script overridden)"));
}

TEST(Windows, AskWindowRetriesFiveTimes) {
    ScriptRun t;
    t.con.feed("8 4\n0 4\n4 8\n");
    long double lo = 5, hi = 5;
    sm::askPwindow(t.run, lo, hi, 1);
    EXPECT_EQ(lo, 4);
    EXPECT_EQ(hi, 8);
    EXPECT_TRUE(t.said("P(low) must be less than P(high) : try again\nP low,high : "));
    EXPECT_TRUE(t.said("P(low) must be greater than 0.001 : try again"));

    ScriptRun u;
    u.con.feed("600 500\n500 600\n");
    lo = 773.15L;
    hi = 773.15L;
    sm::askTwindow(u.run, lo, hi, 0);  // equal allowed
    EXPECT_EQ(u.con.reads, 0);
    sm::askTwindow(u.run, lo, hi, 1);
    EXPECT_TRUE(u.said("T(low) must be less than T(high) : try again\n T low,high : "));

    ScriptRun v;
    v.con.feed("1 2\n1 2\n1 2\n1 2\n1 2\n");
    lo = 0.5L;
    hi = 2;
    const sm::RunEnded e = smtest::expectended([&] { sm::askxwindow(v.run, lo, hi, 0); });
    EXPECT_EQ(e.where, "*OK");
    EXPECT_EQ(e.message, "too many tries");
    EXPECT_EQ(v.con.reads, 5);
    EXPECT_TRUE(v.said("x(CO2) high must be less than 1 : try again"));
}

TEST(Lists, GridListsOfPAndT) {
    const struct {
        long double lo, hi, interval;
        std::vector<double> want;
    } cases[] = {
        {0, 10, 3, {0, 3, 6, 9, 10}},
        {0, 10, 20, {0, 5, 10}},
        {4, 4, 1, {4}},
        {2, 6, 0, {2}},
        {0, 1, 1e-4000L, {}},
    };
    for (const auto& c : cases) {
        ScriptRun t;
        sm::Windows& w = t.s().win;
        w.calcP = {c.lo, c.hi};
        w.Pinterval = c.interval;
        w.gridkind = 3;
        w.Pfromscript = true;
        if (c.interval == 0) t.con.feed("0\n");
        sm::listP(t.run);
        if (c.want.empty()) {
            EXPECT_EQ(w.Plist.size(), 201u);  // a vanishing interval still gives a list
        } else {
            expectlist(w.Plist, c.want);
        }
    }
    ScriptRun t;
    sm::Windows& w = t.s().win;
    w.calcP = {0, 10};
    w.Pinterval = 0.01L;
    w.Pfromscript = true;
    w.gridkind = 1;
    sm::listP(t.run);
    EXPECT_EQ(w.Plist.size(), 201u);
    EXPECT_NEAR(static_cast<double>(w.Plist[1]), 0.05, 1e-12);
    EXPECT_TRUE(t.said("P interval = 0.05 kbar (from script)"));

    ScriptRun u;
    sm::Windows& x = u.s().win;
    x.calcT = {773.15L, 973.15L};
    x.gridkind = 2;
    u.con.feed("50\n");
    sm::listT(u.run);
    EXPECT_TRUE(u.said("T interval : "));
    expectlist(x.Tlist, {500, 550, 600, 650, 700}, 273.15);
}

TEST(Lists, ReactionListsAskTheirInterval) {
    ScriptRun t;
    sm::Windows& w = t.s().win;
    w.calcP = {2, 10};
    t.con.feed("20\n0.01\n-1\n2.5\n");
    sm::makeP(t.run);
    EXPECT_TRUE(t.said("P interval too large : max P(high) - P(low) = 8\ntry again: P interval : "));
    EXPECT_TRUE(t.said("P interval too small : max of 201 pressures\ntry again: P interval : "));
    EXPECT_TRUE(t.said("P interval must be positive - try again: P interval : "));
    expectlist(w.Plist, {2, 4.5, 7, 9.5, 10});
    EXPECT_EQ(w.Pdecimals, 3);
    EXPECT_EQ(w.Tdecimals, 2);

    ScriptRun u;
    sm::Windows& x = u.s().win;
    x.calcT = {773.15L, 973.15L};
    x.Tinterval = 25;
    sm::makeT(u.run);
    EXPECT_TRUE(u.said("T interval = 25 (from script)"));
    EXPECT_EQ(x.Tlist.size(), 9u);
    EXPECT_EQ(u.con.reads, 0);

    ScriptRun v;
    v.s().win.calcP = {5.125L, 5.125L};
    sm::makeP(v.run);
    EXPECT_EQ(v.s().win.Plist.size(), 1u);
    EXPECT_EQ(v.s().win.Pdecimals, 3);
}

TEST(Lists, XCO2ListsFromTheStandardValuesOrTyped) {
    ScriptRun t;
    sm::Windows& w = t.s().win;
    w.xco2window = {0.05L, 0.7L};
    t.con.feed("y\n");
    sm::listxco2(t.run);
    EXPECT_TRUE(t.said("x(CO2) window : 0.05 <-> 0.7\n0.05 0.1 0.2 0.4 0.6 0.7  : use these x(CO2) ? "));
    expectlist(w.xco2list, {0.05, 0.1, 0.2, 0.4, 0.6, 0.7});
    EXPECT_NEAR(static_cast<double>(w.xh2olist[0]), 0.95, 1e-12);
    EXPECT_EQ(w.xdecimals, 2);

    for (const auto& win : {sm::Window{0.15L, 0.25L}, sm::Window{0.0001L, 0.5L}}) {
        ScriptRun u;
        u.s().win.xco2window = win;
        u.con.feed("0.2 0.18 0.22 0.6\n");
        sm::listxco2(u.run);
        EXPECT_TRUE(u.said("x(CO2) in ascending order : "));
        EXPECT_FALSE(u.said("use these"));
    }
    ScriptRun u;
    u.s().win.xco2window = {0.15L, 0.25L};
    u.con.feed("0.2 0.18 0.22\n");
    sm::listxco2(u.run);
    expectlist(u.s().win.xco2list, {0.15, 0.2, 0.22, 0.25});

    ScriptRun v;
    v.s().win.calcvariable = 3;
    v.s().win.xco2window = {0.15L, 0.25L};
    v.con.feed("\n");
    EXPECT_EQ(smtest::expectended([&] { sm::listxco2(v.run); }).message, "unknown calcvariable");
}

TEST(Lists, ActivityAndPotentialAxes) {
    ScriptRun t;
    t.s().win.calcvariable = sm::axisT;
    t.con.feed("0.5\n");
    sm::listlna(t.run, 1, -2, 0);
    EXPECT_TRUE(t.said("ln a window : -2 <-> 0 : ln a interval : "));
    expectlist(t.s().win.lnalist[1], {-2, -1.5, -1, -0.5, 0});
    EXPECT_EQ(t.s().win.lnadecimals, 2);
    sm::listmu(t.run, 1, -700, -700.0005L);
    EXPECT_EQ(t.s().win.mulist[1].size(), 1u);
}

TEST(Fluid, OneSpeciesAndScriptValues) {
    ScriptRun t;
    t.con.feed("\n");
    sm::promptfluid(t.run, sm::FluidPhases{true, false, false});
    EXPECT_TRUE(t.said("fluid just H2O ? "));
    EXPECT_EQ(t.s().win.xh2o, 1);

    ScriptRun u(3);
    u.act("setfluid 0.3");
    sm::promptfluid(u.run, sm::FluidPhases{true, true, false});
    EXPECT_TRUE(u.said("x(CO2) = 0.3000, x(H2O) = 0.7000 ( from script ) "));
    EXPECT_EQ(u.con.reads, 0);

    ScriptRun v(3);
    v.act("setfluid 0.3");
    sm::promptfluid(v.run, sm::FluidPhases{});
    EXPECT_FALSE(v.said("from script"));  // nothing in the run wants a fluid

    ScriptRun w(3);
    w.act("setfluid 1");  // no H2O left for an H2O fluid
    w.con.feed("n\n0.8\n");
    sm::promptfluid(w.run, sm::FluidPhases{true, false, false});
    EXPECT_TRUE(w.said("fluid composition in script is inappropriate so not used"));
    EXPECT_TRUE(w.said("fluid is just H2O-CO2\nfixed x(H2O) : "));
    EXPECT_NEAR(static_cast<double>(w.s().win.xco2), 0.2, 1e-12);
    std::string label = "T";
    sm::fluidlabel(w.run, label);
    EXPECT_EQ(label, "T (for x(CO2) = 0.2 and x(H2O) = 0.8)");

    ScriptRun s(3);
    s.act("strictscripting");
    s.act("setfluid 1");
    EXPECT_EQ(smtest::expectended([&] { sm::promptfluid(s.run, sm::FluidPhases{true, false, false}); })
                  .message,
              "script x(H2O) and/or x(CO2) inappropriate");
}

TEST(Fluid, ActivitiesWhenNoFluidPhase) {
    ScriptRun t;
    t.s().win.fluidtype = 2;
    t.con.feed("0.5\n");
    sm::promptfluid(t.run, sm::FluidPhases{true, false, false});
    EXPECT_TRUE(t.said("fixed a(H2O) : "));
    std::string label;
    sm::fluidlabel(t.run, label);
    EXPECT_EQ(label, " (for a(H2O) = 0.5)");

    ScriptRun u;
    u.con.feed("0.5 1.2\n0.5 0.5\n");
    sm::promptfluid(u.run, sm::FluidPhases{true, true, false});
    EXPECT_TRUE(u.said("fluid is just H2O-CO2\nfixed x(CO2) : "));
}

TEST(Fields, MarksAndDecimals) {
    ScriptRun t;
    sm::Windows& w = t.s().win;
    w.calcP = {1, 200};
    w.calcT = {773.15L, 973.15L};
    w.Pdecimals = 0;
    const struct {
        long double v;
        const char* want;
    } pcells[] = {{-2e20L, "0"}, {0.5L, "-"}, {250, "+"}, {2e20L, "*"},
                  {150, "150"}, {5.5L, "5.5"}, {1, "1.0"}};
    for (const auto& c : pcells) EXPECT_EQ(sm::Pfield(t.run, c.v), c.want);
    EXPECT_EQ(sm::Tfield(t.run, 823.15L), "550.00");
    w.Tdecimals = 0;
    EXPECT_EQ(sm::Tfield(t.run, 823.15L), "550");
    EXPECT_EQ(sm::Tfield(t.run, 700), "-");
}

TEST(Names, CheckNameRepairs) {
    const std::vector<sm::sstring> names{"g", "bi", "q"};
    const struct {
        const char* reply;
        int index;
        const char* said;
    } cases[] = {
        {"bi\n", 2, nullptr},
        {"\n", 0, nullptr},
        {"zz\n", 0, " still a bad name: name ignored"},
        {"abcdefghijklmnopqrstuvw\n", 0, " name too long: name ignored"},
    };
    for (const auto& c : cases) {
        ScriptRun t;
        t.con.feed(c.reply);
        sm::sstring name = "bt";
        int index = -1;
        sm::checkname(t.run, name, names, false, index);
        EXPECT_EQ(index, c.index) << c.reply;
        EXPECT_TRUE(t.said("unrecognised name : replace \"bt\" with  : "));
        if (c.said) {
            EXPECT_TRUE(t.said(c.said)) << c.reply;
        }
    }
    ScriptRun s;
    sm::sstring name = "zz";
    int index = -1;
    sm::checkname(s.run, name, names, true, index);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(s.con.reads, 0);
}

}  // namespace

namespace {

using smtest::ScriptRun;

TEST(DiagramWindows, PTCalcsFromScriptOrAsked) {
    ScriptRun t;
    t.act("diagramPT 2 12 400 800");
    t.act("calcP ask 4 10 2");
    t.act("calcT ask 500 600");
    sm::dofigPT(t.run);
    t.s().win.gridkind = 3;
    t.con.feed("y\n");
    sm::PTcalcs(t.run, "grid", "P of the grid", "T of the grid");
    EXPECT_TRUE(t.said("use PT calcs given in datafile ? "));
    EXPECT_TRUE(t.said("P of the grid: 4 to 10 kbar (from script)\n"));
    EXPECT_TRUE(t.said("T of the grid: 500 to 600\xA1" "C (from script)\n"));
    EXPECT_EQ(t.s().win.Pinterval, 2);

    ScriptRun u;
    u.act("diagramPT 2 12 400 800");
    sm::dofigPT(u.run);
    u.s().win.gridkind = 1;
    u.con.feed("20 5 1\n");
    sm::PTcalcs(u.run, "grid", "P of the grid", "T of the grid");
    EXPECT_TRUE(u.said("P calcs: between P(low) and P(high), with P increment : "));
    EXPECT_TRUE(u.said("P(low) must be less than P(high): values swapped\n"
                       "P(high) must be less than 12.0: this used\n"));
    EXPECT_TRUE(u.said("using overall T window for the T of the grid\n"));
    EXPECT_EQ(u.s().win.calcP.lo, 5);
    EXPECT_EQ(u.s().win.calcP.hi, 12);
    EXPECT_EQ(u.s().win.calcT.hi, 1073.15L);
}

TEST(DiagramWindows, AReactionsPTDiagramFromTheScript) {
    ScriptRun t(3);
    t.act("diagramPT 2 12 400 800");
    t.act("calctatp");
    t.act("calcP 2 12 2");
    t.act("seta H2O 1");
    sm::diagramwindowsetup(t.run, true, sm::FluidPhases{true, false, false});
    const sm::Windows& w = t.s().win;
    EXPECT_EQ(w.calcvariable, sm::axisT);
    EXPECT_EQ(w.othervariable, sm::axisP);
    expectlist(w.Plist, {2, 4, 6, 8, 10, 12});
    EXPECT_EQ(w.xh2o, 1);
    EXPECT_EQ(t.con.reads, 0);  // all of it from the script
}

TEST(DiagramWindows, AnXCO2SectionAsksItsWindowAndFixedValue) {
    ScriptRun t(3);
    t.act("diagramPT 4 6 450 700");
    t.s().win.diagrammode = sm::dmTx;
    t.s().win.variance = 1;
    t.con.feed("500 650 0.05 0.7\nn\n0.1 0.3 0.5\n5\n");
    sm::diagramwindowsetup(t.run, true, sm::FluidPhases{true, true, false});
    EXPECT_TRUE(t.said("T-x(CO2) window in which the phase diagram to be drawn\n"
                       "T low, high , x(CO2) low, high : "));
    const sm::Windows& w = t.s().win;
    EXPECT_EQ(w.calcvariable, sm::axisT);
    EXPECT_EQ(w.othervariable, sm::axisx);
    expectlist(w.xco2list, {0.05, 0.1, 0.3, 0.5, 0.7});
    EXPECT_EQ(w.calcP.lo, 5);
    EXPECT_EQ(w.calcP.hi, 5);
    // The section's current point is the middle of its windows.
    EXPECT_NEAR(static_cast<double>(w.T - 273.15L), 575, 1e-9);
    EXPECT_NEAR(static_cast<double>(w.xco2), 0.375, 1e-15);
    EXPECT_NEAR(static_cast<double>(w.xh2o), 0.625, 1e-15);

    ScriptRun u(3);
    u.act("diagramPT 4 6 450 700");
    u.s().win.diagrammode = sm::dmPx;
    u.con.feed("3000\n");
    const sm::RunEnded e = smtest::expectended(
        [&] { sm::diagramwindowsetup(u.run, false, sm::FluidPhases{}); });
    EXPECT_EQ(e.where, "diagramwindowsetup");
    EXPECT_EQ(e.message, "inappropriate fixed T or P");

    ScriptRun v(3);
    v.act("diagramPT 4 6 450 700");
    v.s().win.diagrammode = 9;
    const sm::RunEnded f = smtest::expectended(
        [&] { sm::diagramwindowsetup(v.run, true, sm::FluidPhases{}); });
    EXPECT_EQ(f.where, "diagram");
    EXPECT_EQ(f.internal, 1);
}

}  // namespace
