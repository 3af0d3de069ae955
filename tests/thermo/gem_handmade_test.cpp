// End-member forms the shipped datasets do not hold (Einstein-thermal rows,
// aqueous species, the compensated cubic fluids, fluid mixing, cordierite's
// channel fluid, the oldest dataset form), against values worked out apart
// from the program by tests/thermo/tools/handmade_ref.py.
#include <cmath>
#include <map>

#include "thermo/constants.h"
#include "thermo/energy_terms.h"
#include "thermo/gem.h"
#include "thermo_testing.h"

namespace sm {
namespace {

using namespace sm::testing;

struct Table {
    std::map<std::string, TdRow> rows;
    std::vector<std::vector<std::string>> values, ggk, gth;
};

const Table& table() {
    static const Table t = [] {
        Table t;
        for (const auto& line : splitlines(readtext(std::string(SM_TEST_DIR) + "/thermo/ref/handmade_G.csv"))) {
            std::vector<std::string> cells;
            std::string cell;
            std::istringstream in(line);
            while (std::getline(in, cell, ',')) cells.push_back(cell);
            if (cells[0] == "row") {
                TdRow r{};
                for (int f = 1; f <= tdfields; ++f) r[f] = std::stold(cells[1 + f]);
                t.rows[cells[1]] = r;
            } else if (cells[0] == "value") {
                t.values.push_back(cells);
            } else if (cells[0] == "ggkint") {
                t.ggk.push_back(cells);
            } else if (cells[0] == "gth") {
                t.gth.push_back(cells);
            }
        }
        return t;
    }();
    return t;
}

GemContext context(const std::vector<std::string>& c) {
    GemContext cx;
    cx.dsmode = std::stoi(c[2]);
    cx.newds = c[3] == "1";
    cx.ggk = c[4] == "1";
    cx.numerical = c[5] == "1";
    cx.fluidtype = std::stoi(c[6]);
    cx.crdterm = c[7] == "1";
    cx.regression = c[8] == "1";
    return cx;
}

TEST(HandMadeRows, AgainstIndependentValues) {
    const Table& t = table();
    ASSERT_GE(t.values.size(), 40u);
    for (const auto& c : t.values) {
        const GemContext cx = context(c);
        const real P = std::stold(c[9]), T = std::stold(c[10]);
        GemParts parts;
        const real G = gemrow(t.rows.at(c[1]), c[1], P, T, cx, parts);
        const real got[] = {G, parts.Gcp, parts.VdP, parts.Gfluid, parts.Gfmix, parts.Gcrd, parts.Gaq};
        const char* what[] = {"G", "Gcp", "VdP", "Gfluid", "Gfmix", "Gcrd", "Gaq"};
        for (int k = 0; k < 7; ++k) {
            const real want = std::stold(c[11 + k]);
            EXPECT_NEAR(static_cast<double>(got[k]), static_cast<double>(want), 1e-6)
                << c[1] << " " << what[k] << " at " << c[9] << " kbar " << c[10] << " K (dsmode "
                << c[2] << ", newds " << c[3] << ", ggk " << c[4] << ", numerical " << c[5] << ")";
        }
    }
}

// The volume integral differentiates to the volume that the equation of state
// gives at P (V0 times the ratio found by Newton's method).
TEST(HandMadeRows, EinsteinVolumeIsDGdP) {
    const TdRow& row = table().rows.at("per3");
    for (const bool ggk : {false, true}) {
        GemContext cx;
        cx.dsmode = 7;
        cx.ggk = ggk;
        for (const real P : {0.5L, 10.0L, 40.0L, 100.0L})
            for (const real T : {500.0L, 1200.0L, 2000.0L}) {
                const real h = 1e-4L;
                const real dVdP = (einsteinvdp(row, "per3", P + h, T, cx) -
                                   einsteinvdp(row, "per3", P - h, T, cx)) / (2 * h);
                const real V = row[tdV] * einsteinv(row, "per3", P, T, cx);
                EXPECT_NEAR(static_cast<double>(dVdP), static_cast<double>(V), 1e-7)
                    << "ggk " << ggk << " at " << static_cast<double>(P) << " kbar "
                    << static_cast<double>(T) << " K";
            }
        // at 1 bar exactly there is no volume term, whatever the expansion
        EXPECT_EQ(einsteinvdp(row, "per3", 0.001L, 1500, cx), 0);
    }
}

// The series and Simpson's rule both approximate the integral of the
// thermal-pressure heat capacity, here against quadrature.
TEST(HandMadeRows, EinsteinThermalTermTwoWays) {
    const TdRow& row = table().rows.at("per3");
    for (const auto& c : table().gth) {
        GemContext cx;
        cx.dsmode = 7;
        cx.ggk = c[2] == "1";
        const real T = std::stold(c[3]);
        const real exact = std::stold(c[4]);
        TdRow bare = row;  // no heat capacity of its own: the term alone
        bare[tdcpa] = 0;
        bare[tdcpb] = 0;
        cx.numerical = true;
        const real simpson = einsteingcp(bare, "per3", T, cx);
        cx.numerical = false;
        const real series = einsteingcp(bare, "per3", T, cx);
        EXPECT_NEAR(static_cast<double>(simpson), static_cast<double>(exact), 2e-5) << "Simpson at " << c[3];
        if (!cx.ggk) {
            EXPECT_NEAR(static_cast<double>(series), static_cast<double>(exact), 2e-4) << "series at " << c[3];
        }
    }
}

// The series part is good to 1e-8; the eight-level continued fraction of the
// exponential integral, taken when the series is too slow, to a few parts in 1e7.
TEST(HandMadeRows, GgkIntegral) {
    long long fallbacks = 0;
    for (const auto& c : table().ggk) {
        const real got = ggkint(std::stold(c[1]), std::stold(c[2]), &fallbacks);
        EXPECT_NEAR(static_cast<double>(got), static_cast<double>(std::stold(c[3])),
                    5e-7 * std::fabs(static_cast<double>(std::stold(c[3]))) + 1e-8)
            << c[1] << " " << c[2];
    }
    EXPECT_GT(fallbacks, 0);  // the wide cases take the continued fraction
}

TEST(HandMadeRows, Fatal) {
    const Table& t = table();
    GemContext cx;
    GemParts parts;
    // Newton cannot find a volume at an absurd pressure
    cx.dsmode = 7;
    EXPECT_EQ(stopof([&] { gemrow(t.rows.at("per3"), "per3", -5000, 1000, cx, parts); }),
              "gem : per3: calc v not converged");
    // no solvent for the Debye-Hueckel term
    TdRow dry = t.rows.at("aqC");
    dry[tdxco2] = 0;
    dry[tdxh2o] = 0;
    EXPECT_EQ(stopof([&] { gemrow(dry, "aqC", 2, 600, cx, parts); }),
              "gem : aqC: no solvent, x(CO2) + x(H2O) = 0");
    EXPECT_EQ(stopof([&] { gemrow(t.rows.at("H2O"), "H2O", 0, 600, cx, parts); }),
              "gem : H2O: P <= 0 in the fluid equation of state");
    EXPECT_EQ(stopof([&] { gemrow(t.rows.at("aqN"), "aqN", 1, 210, cx, parts); }), "");
    EXPECT_EQ(stopof([&] { gemrow(t.rows.at("aqC"), "aqC", 1, 210, cx, parts); }),
              "gem : aqC: T <= 215 K in the dielectric constant of the fluid");
    // a Landau row with its critical temperature below the reference
    TdRow low = t.rows.at("qz4");
    low[tdTc] = 250;
    EXPECT_EQ(stopof([&] { gemrow(low, "qz4", 1, 500, cx, parts); }), "gem : qz4: Landau Tc <= 298.15 K");
    // a melt whose bulk modulus has fallen to nothing
    TdRow melt{};
    melt[tdH] = -400;
    melt[tdS] = 0.09L;
    melt[tdV] = 3.8L;
    melt[tdk0] = 56;
    melt[tdk0p] = 4.65L;
    melt[tdk0pp] = -4.65L / 56;
    melt[tddkdT] = -0.02L;
    cx.dsmode = 6;
    EXPECT_EQ(stopof([&] { gemrow(melt, "syvL", 1, 3100, cx, parts); }),
              "gem : syvL: bulk modulus of the melt <= 0 at this T");
    EXPECT_EQ(stopof([&] { gemrow(melt, "syvL", 1, 3000, cx, parts); }), "");
}

// The Simpson rule takes an even number of intervals of about 20 K, at most 140.
TEST(HandMadeRows, SimpsonIntervals) {
    EXPECT_EQ(einsteinsimpsonintervals(298.15L + 2800), 140);
    EXPECT_EQ(einsteinsimpsonintervals(298.15L + 2820), 138);
    EXPECT_EQ(einsteinsimpsonintervals(298.15L + 2780), 140);  // 139, made even
    EXPECT_EQ(einsteinsimpsonintervals(298.15L + 30), 4);
    EXPECT_EQ(einsteinsimpsonintervals(298.15L + 70), 4);
    EXPECT_EQ(einsteinsimpsonintervals(298.15L + 100), 6);     // 5, made even
    EXPECT_EQ(einsteinsimpsonintervals(200), 4);
}

}  // namespace
}  // namespace sm
