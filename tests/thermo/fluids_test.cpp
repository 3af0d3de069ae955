// Fluid equations of state: limits they must reach, the solvent of aqueous
// species, and their fatal stops.
#include <cmath>

#include "console/io.h"
#include "thermo/fluids/fluids.h"
#include "thermo_testing.h"

namespace sm {
namespace {

using namespace sm::testing;

// At low pressure and high temperature every fluid is an ideal gas: V = RT/P
// and f = P.
TEST(Fluids, IdealGasLimit) {
    const real P = 1e-4L, T = 2000;
    const real RT = 0.0083144L * T;
    const FluidContext fx{true, "test", nullptr, 1};
    struct Case {
        const char* what;
        std::function<void(real&, real&)> eos;
    };
    const Case cases[] = {
        {"H2O Sterner-Pitzer", [&](real& V, real& g) { sternerpitzer(true, V, g, P, T, fx); }},
        {"CO2 Sterner-Pitzer", [&](real& V, real& g) { sternerpitzer(false, V, g, P, T, fx); }},
        {"H2O cubic", [&](real& V, real& g) { cubich2o(V, g, P, T, fx); }},
        {"CO2 cubic", [&](real& V, real& g) { cubicco2(V, g, P, T, fx); }},
        {"CH4", [&](real& V, real& g) { corrstates(V, g, P, T, 0.046L, 190.6L); }},
        {"H2", [&](real& V, real& g) { corrstates(V, g, P, T, 0.0211L, 41.2L); }},
    };
    for (const Case& c : cases) {
        real V, rtlnf;
        c.eos(V, rtlnf);
        EXPECT_NEAR(static_cast<double>(V / (RT / P)), 1.0, 1e-3) << c.what;
        EXPECT_NEAR(static_cast<double>(rtlnf), static_cast<double>(RT * std::log(1000 * P)), 1e-3)
            << c.what;
    }
}

// RT ln f rises with P by the volume: d(RT ln f)/dP = V, for each equation.
TEST(Fluids, VolumeIsDRTlnfDP) {
    const FluidContext fx{false, "test", nullptr, 1};
    for (const real T : {600.0L, 900.0L, 1400.0L})
        for (const real P : {0.5L, 4.0L, 12.0L}) {
            const real h = 0.001L;
            real V, lo, hi, unused;
            cubicco2(V, unused, P, T, fx);
            cubicco2(unused, lo, P - h, T, fx);
            cubicco2(unused, hi, P + h, T, fx);
            EXPECT_NEAR(static_cast<double>((hi - lo) / (2 * h)), static_cast<double>(V), 2e-3 * static_cast<double>(V))
                << "CO2 " << static_cast<double>(P) << " " << static_cast<double>(T);
            if (T > 695) {  // one branch of water above its joining temperature
                cubich2o(V, unused, P, T, fx);
                cubich2o(unused, lo, P - h, T, fx);
                cubich2o(unused, hi, P + h, T, fx);
                EXPECT_NEAR(static_cast<double>((hi - lo) / (2 * h)), static_cast<double>(V), 2e-3 * static_cast<double>(V))
                    << "H2O " << static_cast<double>(P) << " " << static_cast<double>(T);
            }
            const real hc = 1e-5L;
            corrstates(V, unused, P, T, 0.0893L, 373.2L);
            corrstates(unused, lo, P - hc, T, 0.0893L, 373.2L);
            corrstates(unused, hi, P + hc, T, 0.0893L, 373.2L);
            EXPECT_NEAR(static_cast<double>((hi - lo) / (2 * hc)), static_cast<double>(V), 1e-6 + 1e-6 * static_cast<double>(V))
                << "H2S " << static_cast<double>(P) << " " << static_cast<double>(T);
        }
}

TEST(Fluids, SolventOfPureWater) {
    const FluidContext fx{true, "test", nullptr, 1};
    real V, rtlnf;
    h2oeos(V, rtlnf, 5, 800, fx);
    EXPECT_EQ(fluidvol(5, 800, 0, 1, fx), V);
    // the dielectric constant of water at 5 kbar, 800 K is of the order of 20
    const real eps = dielectric(5, 800, 0, 1, V, fx);
    EXPECT_GT(eps, 10);
    EXPECT_LT(eps, 40);
}

TEST(Fluids, DebyeHueckelLineAtPrintLevel5) {
    smtest::ScratchDir dir;
    TestRun t;
    const std::string logname = put(dir, "sm-log-dh.txt", "");
    openchannel(t.run.io, 3, logname);
    FluidContext fx{true, "test", &t.run.io, 5};
    const real DH = dhsolute(2, 700, 0.1L, 0.9L, 0.04L, -1, fx);
    EXPECT_GT(DH, 0);  // opposite charges: the solute is stabilised, -A zz sqrt(I) > 0
    flushfiles(t.run.io);
    const std::string log = readtext(logname);
    EXPECT_EQ(log.rfind("xco2 = 0.1000, xh2o = 0.9000, I = 0.04000, A = ", 0), 0u) << log;
    EXPECT_NE(log.find(", B x 10^-10 = "), std::string::npos);
    EXPECT_NE(log.find(", DH(solute) = "), std::string::npos);
    fx.printlevel = 1;
    dhsolute(2, 700, 1, 9, 0.04L, -1, fx);  // renormalised to the same fluid, and no line
    flushfiles(t.run.io);
    EXPECT_EQ(readtext(logname), log);
}

TEST(Fluids, NoRootStops) {
    TestRun t;
    const FluidContext fx{true, "H2O", &t.run.io, 1};
    real V, rtlnf;
    EXPECT_EQ(stopof([&] { sternerpitzer(true, V, rtlnf, 1e7L, 1000, fx); }), "sterner-pitzer : no bracket");
    // at 0.01 bar the search range is so wide that 40 halvings do not reach
    // its tolerance
    EXPECT_EQ(stopof([&] { sternerpitzer(true, V, rtlnf, 1e-5L, 2000, fx); }),
              "sterner-pitzer : did not converge");
    EXPECT_NE(t.console.output.find("P = 1.0000e-5, T = 1726.85"), std::string::npos) << t.console.output;
}

}  // namespace
}  // namespace sm
