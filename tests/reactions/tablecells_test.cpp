// Cells of the reaction tables, and which columns a long list shows.
#include <gtest/gtest.h>

#include "reactions/ptxtables.h"
#include "reactions/tablecells.h"
#include "run.h"
#include "script/windows.h"

namespace sm {
namespace {

struct CellRun {
    MemoryConsole console;
    Run run{console};
    CellRun() {
        Windows& w = run.script.win;
        w.calcP = {0.001L, 150};
        w.calcT = {673.15L, 1073.15L};
        w.xco2window = {0.01L, 0.9L};
        w.Pdecimals = 3;
        w.Tdecimals = 2;
    }
};

TEST(TableCells, MarkRootsOutsideAndFormatRootsInside) {
    CellRun c;
    const sm::Run& run = c.run;
    struct Case {
        std::string (*cell)(const sm::Run&, real);
        real value;
        const char* text;
    };
    const std::vector<Case> cases = {
        {Pcell, -1e21L, ""},        // no second root
        {Pcell, -1, "-"},           // below the window
        {Pcell, 151, "+"},          // above
        {Pcell, 1e21L, "*"},        // failed
        {Pcell, 1e20L, "*"},
        {Pcell, 5, "5.000"},        // at least Pdecimals
        {Pcell, 0.05L, "0.050"},    // 3 decimals below 0.1, 4 below 0.01
        {Pcell, 0.005L, "0.0050"},
        {Pcell, 99.9L, "99.900"},
        {Pcell, 120.4L, "120"},     // above 99.9 a whole number
        {Tcell, -1e21L, ""},
        {Tcell, 600, "-"},
        {Tcell, 1100, "+"},
        {Tcell, 1e21L, "*"},
        {Tcell, 773.15L, "500.00"},
        {xcell, -1e21L, ""},
        {xcell, 0.001L, "-"},
        {xcell, 0.95L, "+"},
        {xcell, 1e21L, "*"},
        {xcell, 0.05L, "0.05"},
        {xcell, 0.125L, "0.125"},
    };
    for (const auto& k : cases)
        EXPECT_EQ(k.cell(run, k.value), k.text) << static_cast<double>(k.value);
    c.run.script.win.Tdecimals = 0;
    EXPECT_EQ(Tcell(run, 773.65L), "501");
    c.run.script.win.Pdecimals = 5;
    EXPECT_EQ(Pcell(run, 5), "5.00000");
}

TEST(TableCells, SolvedAndListedCellsFollowTheirAxes) {
    CellRun c;
    Windows& w = c.run.script.win;
    w.calcvariable = axisT;
    w.othervariable = axisP;
    EXPECT_EQ(solvedcell(c.run, 773.15L), "500.00");
    EXPECT_EQ(listcell(c.run, 2), "2.000");
    w.calcvariable = axisP;
    w.othervariable = axisx;
    EXPECT_EQ(solvedcell(c.run, 2), "2.000");
    EXPECT_EQ(listcell(c.run, 0.4L), "0.4");
    w.othervariable = axismu;
    EXPECT_EQ(listcell(c.run, -850), "-850.0");
}

TEST(TableColumns, ALongListShowsAStrideAndItsLastValue) {
    const auto all = shownlistcolumns(20);
    for (int j = 1; j <= 20; ++j) EXPECT_TRUE(all[j]);
    const auto s41 = shownlistcolumns(41);
    std::vector<int> shown;
    for (int j = 1; j <= 41; ++j)
        if (s41[j]) shown.push_back(j);
    EXPECT_EQ(shown, (std::vector<int>{1, 4, 7, 10, 13, 16, 19, 22, 25, 28, 31, 34, 37, 40, 41}));
    int count = 0;
    const auto s201 = shownlistcolumns(201);
    for (int j = 1; j <= 201; ++j) count += s201[j];
    EXPECT_LE(count, 21);
    EXPECT_TRUE(s201[201]);
}

}  // namespace
}  // namespace sm

#include "console/runended.h"
#include "testutil.h"

namespace sm {
namespace {

TEST(Mode3, AnUnknownDiagramTypeStopsTheRun) {
    CellRun c;
    c.run.runmode = 3;
    c.run.script.win.diagrammode = 7;
    const RunEnded e = smtest::expectended([&] { phasediagramcalcs(c.run); });
    EXPECT_EQ(e.where, "phasediagramcalcs");
    EXPECT_EQ(e.message, "unknown diagrammode");
}

}  // namespace
}  // namespace sm
