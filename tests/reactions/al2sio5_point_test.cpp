// The triple point of the aluminosilicates from the reactions of the
// shipped dataset: found as the crossing of the tabulated lines, it must
// sit on all three reference lines.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "reactions/inexcess.h"
#include "reactions/ptxtables.h"
#include "reactions/reactions.h"
#include "reactions/reactionthermo.h"
#include "run.h"
#include "script/windows.h"
#include "testutil.h"
#include "thermo/dataset.h"
#include "thermo/gem.h"

namespace sm {
namespace {

constexpr real K = 273.15L;

struct Al2SiO5Run {
    MemoryConsole console;
    Run run{console};
    Al2SiO5Run() {
        run.calcmode = run.runmode = 3;
        setuptextread(run, std::string(SM_DATA_DIR) + "/sm-ds6a.txt");
        readthermochemistry(run, {"ky", "sill", "and"});
        texthermoread(run);
        findspecialrows(run.store);
        for (int i = 1; i <= run.store.nem; ++i) run.store.activ[i] = 1;
        eliminateinexcess(run, 0);
        Windows& w = run.script.win;
        w.diagrammode = dmPT;
        w.calcvariable = axisT;
        w.othervariable = axisP;
        w.calcP = {1, 9};
        w.calcT = {300 + K, 800 + K};
        w.P = 5;
        w.T = 550 + K;
        w.xco2 = 0;
        w.xh2o = 0;
        run.io.dontwrap = false;
        for (int k = 0; k <= 16; ++k) w.Plist.push_back(1 + 0.5L * k);
    }
};

// Quadratic interpolation through three reference values (fixed, solved).
real interpolate(const std::vector<std::pair<real, real>>& t, real at) {
    real sum = 0;
    for (int i = 0; i < 3; ++i) {
        real term = t[i].second;
        for (int j = 0; j < 3; ++j)
            if (j != i) term *= (at - t[j].first) / (t[i].first - t[j].first);
        sum += term;
    }
    return sum;
}

TEST(Al2SiO5, ThreeReactionsMeetInOneStableInvariantPointOnTheReferenceLines) {
    Al2SiO5Run a;
    sm::Run& run = a.run;
    bool complete = false;
    calcre(run, complete);
    ASSERT_TRUE(complete);
    ASSERT_EQ(run.reactions.nir, 3);
    ASSERT_EQ(run.reactions.nint, 1);
    ptxtable(run);
    intersections(run);
    ASSERT_EQ(run.reactions.points.size(), 1u);
    const auto& p = run.reactions.points[0];
    EXPECT_TRUE(p.stable);
    EXPECT_NE(a.console.output.find("# stable intersection 1 involving ky sill and"), std::string::npos);

    // On every line: the root of each reaction at the point's P is its T,
    // to a hundredth of a degree. The lines themselves reproduce the
    // reference values to a thousandth (ReactionPositions), so the point
    // sits on the reference lines to about as much.
    for (int n = 1; n <= 3; ++n) {
        real T1, T2, a1, b1, c1, d1;
        findT(run, n, true, T1 = p.T, T2, a1, b1, p.P, 0, 1, c1, d1);
        EXPECT_NEAR(static_cast<double>(T1), static_cast<double>(p.T), 0.01) << n;
    }
    // And on the reference lines by quadratic interpolation between their
    // values, within what the interpolation itself misses of the curves.
    const real Tkysill = interpolate({{2, 424.830197L}, {5, 569.615704L}, {8, 713.370914L}}, p.P);
    const real Tandsill = interpolate({{2, 743.098129L}, {5, 480.847463L}, {8, 274.756507L}}, p.P);
    const real Pandky = interpolate({{400, 2.619535L}, {600, 5.089383L}, {800, 7.511474L}}, p.T - K);
    EXPECT_NEAR(static_cast<double>(p.T - K), static_cast<double>(Tkysill), 0.1);
    EXPECT_NEAR(static_cast<double>(p.T - K), static_cast<double>(Tandsill), 0.5);
    EXPECT_NEAR(static_cast<double>(p.P), static_cast<double>(Pandky), 0.001);
}

}  // namespace
}  // namespace sm

namespace sm {
namespace {

// The words of the table row of reaction n (its first row), from the text
// the table printed.
std::vector<std::string> tablerow(const std::string& out, int n) {
    const size_t head = out.find("T\xA1" "C ");
    const std::string start = "\n" + std::to_string(n) + " ";
    const size_t at = out.find(start, head);
    const size_t end = out.find('\n', at + 1);
    std::stringstream line(out.substr(at + 1, end - at - 1));
    std::vector<std::string> words;
    for (std::string w; line >> w;) words.push_back(w);
    return words;
}

TEST(Al2SiO5, UncertaintyColumnsFollowTheEnthalpyErrorsAndMarkWhatIsTooLarge) {
    Al2SiO5Run a;
    sm::Run& run = a.run;
    bool complete = false;
    calcre(run, complete);
    ASSERT_EQ(run.reactions.nir, 3);
    ptxtable(run);
    // Row 1 is sill = ky; its uncertainties are taken at 5 kbar, the
    // reference column: sd(T) = sd(dG) / |dG/dT|, sd(P) = sd(dG) / |dG/dP|.
    std::vector<std::string> row = tablerow(a.console.output, 1);
    ASSERT_EQ(row.size(), 1u + 17u + 2u);
    real T1, T2, dGdP, dGdP2, dGdT, dGdT2;
    findT(run, 1, false, T1, T2, dGdP, dGdP2, 5, 0, 1, dGdT, dGdT2);
    const EndMemberStore& s = run.store;
    const real sdG = std::sqrt(s.covat(1, 1) + s.covat(2, 2) - 2 * s.covat(1, 2));
    EXPECT_EQ(row[18].find('.'), row[18].size() - 2);  // the first root's sdT with one decimal
    EXPECT_NEAR(std::stod(row[18]), static_cast<double>(sdG / std::fabs(dGdT)), 0.05);
    EXPECT_EQ(row[19].find('.'), row[19].size() - 3);  // sdP with two
    EXPECT_NEAR(std::stod(row[19]), static_cast<double>(sdG / std::fabs(dGdP)), 0.005);

    // An enthalpy known to a thousand kJ: both columns say "+".
    a.console.output.clear();
    run.store.covat(1, 1) = 1e6L;
    ptxtable(run);
    row = tablerow(a.console.output, 1);
    ASSERT_EQ(row.size(), 20u);
    EXPECT_EQ(row[18], "+");
    EXPECT_EQ(row[19], "+");
}

}  // namespace
}  // namespace sm
