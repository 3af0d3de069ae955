// Thermodynamic identities on every end-member of sm-ds6a.txt: the volume is
// dG/dP, the entropy at 1 bar is S0 plus the integral of Cp/T, the Landau
// energy is continuous through its transition; and the rows that must fail.
#include <cmath>

#include "thermo/energy_terms.h"
#include "thermo/fluids/fluids.h"
#include "thermo/gem.h"
#include "thermo_testing.h"

namespace sm {
namespace {

using namespace sm::testing;

class Ds6aIdentities : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        t = new TestRun;
        readdataset(t->run, datafile("sm-ds6a.txt"));
    }
    static void TearDownTestSuite() {
        delete t;
        t = nullptr;
    }
    static TestRun* t;
    static const EndMemberStore& store() { return t->run.store; }
};
TestRun* Ds6aIdentities::t = nullptr;

// The modified Tait equation of state itself, V(P, T)/V0 (the energy code
// uses its integral).
real taitvolume(const TdRow& row, real P, real T, bool melt) {
    real k0 = row[tdk0];
    const real k = row[tdk0p], k2 = row[tdk0pp];
    real scale = 1, Pth = 0;
    if (melt) {
        k0 += row[tddkdT] * (T - 298.15L);
        scale = std::exp(row[tdalpha] * (T - 298.15L));
    } else {
        const real u0 = row[tdtheta] / 298.15L;
        const real xi0 = u0 * u0 * std::exp(u0) / std::pow(std::exp(u0) - 1, 2);
        Pth = row[tdalpha] * k0 * row[tdtheta] / xi0 *
              (1 / (std::exp(row[tdtheta] / T) - 1) - 1 / (std::exp(u0) - 1));
    }
    const real a = (1 + k) / (1 + k + k0 * k2);
    const real b = (k + k * k - k0 * k2) / (k0 * (1 + k));
    const real c = (1 + k + k0 * k2) / (k + k * k - k0 * k2);
    const real N = 1 - a + a * std::pow(1 + b * 0.001L, -c);
    return scale * (1 - a + a * std::pow(1 + b * (P - Pth), -c)) / N;
}

// State of Landau order: the energy is stationary in Q, so its volume and
// entropy are those at fixed Q.
real landauq(const TdRow& row, real P, real T) {
    const real Tcp = row[tdTc] + row[tdVmax] * P / row[tdSmax];
    return T > Tcp ? 0 : std::sqrt((Tcp - T) / row[tdTc]);
}
real landauq0(const TdRow& row) { return std::sqrt(1 - 298.15L / row[tdTc]); }

TEST_F(Ds6aIdentities, VolumeIsDGdP) {
    const EndMemberStore& s = store();
    const GemContext cx = gemcontext(t->run);
    const real points[][2] = {{0.5L, 500}, {5, 800}, {15, 1000}, {30, 1200}, {45, 1500}};
    for (int i = 1; i <= s.nem; ++i) {
        const TdRow& row = s.td[i];
        const std::string name = s.emname[i];
        for (const auto& pt : points) {
            const real P = pt[0], T = pt[1];
            // a fluid's volume comes from a bisection, so its energy is smooth only
            // on a coarser scale
            const real h = row[tdV] == 0 ? 0.01L : 1e-4L;
            const real dGdP = (gem(t->run, i, P + h, T) - gem(t->run, i, P - h, T)) / (2 * h);
            real V = 0, tolerance = 1e-6L;
            const int eos = static_cast<int>(row[tdeos]);
            if (row[tdV] == 0) {
                real rtlnf;
                const FluidContext fx{true, name, nullptr, 1};
                if (name == "H2O") h2oeos(V, rtlnf, P, T, fx);
                else if (name == "CO2") co2eos(V, rtlnf, P, T, fx);
                else if (name == "CH4") corrstates(V, rtlnf, P, T, 0.046L, 190.6L);
                else if (name == "H2") corrstates(V, rtlnf, P, T, 0.0211L, 41.2L);
                else if (name == "CO") corrstates(V, rtlnf, P, T, 0.035L, 132.9L);
                else if (name == "H2S") corrstates(V, rtlnf, P, T, 0.0893L, 373.2L);
                else if (name == "S2") corrstates(V, rtlnf, P, T, 0.08L, 259.6L);
                // the bisection leaves the fluid volume within its tolerance
                tolerance = 2e-4L * std::fabs(V);
            } else {
                V = row[tdV] * taitvolume(row, P, T, eos == 7);
            }
            if (eos == 1)
                V += row[tdVmax] * (landauq0(row) - landauq(row, P, T));
            if (eos == 2) {
                // fixed Q; the order search stops when dG/dQ is within 0.001
                const real Q = braggwilliamsq(row, P, T);
                V += row[tdbwdV] + (row[tdbwWv] - row[tdbwdV]) * Q - row[tdbwWv] * Q * Q;
                tolerance = 2e-3L;
            }
            EXPECT_NEAR(static_cast<double>(dGdP), static_cast<double>(V),
                        static_cast<double>(tolerance + 1e-6L * std::fabs(V)))
                << name << " at " << static_cast<double>(P) << " kbar, "
                << static_cast<double>(T) << " K";
        }
        (void)cx;
    }
}

// At 1 bar the volume term vanishes, so -dG/dT is S0 + integral of Cp/T (here
// by Simpson's rule on the heat capacity polynomial) plus the order entropy.
TEST_F(Ds6aIdentities, EntropyIsMinusDGdT) {
    const EndMemberStore& s = store();
    for (int i = 1; i <= s.nem; ++i) {
        const TdRow& row = s.td[i];
        const int eos = static_cast<int>(row[tdeos]);
        if (eos == 6 || eos == 2) continue;  // fluids by their volume, Bragg-Williams by the table
        for (const real T : {400.0L, 700.0L, 1000.0L, 1300.0L}) {
            const real h = 0.01L;
            const real P = 0.001L;
            const real dGdT = (gem(t->run, i, P, T + h) - gem(t->run, i, P, T - h)) / (2 * h);
            auto cpovert = [&](real x) {
                return (row[tdcpa] + row[tdcpb] * x + row[tdcpc] / (x * x) +
                        row[tdcpd] / std::sqrt(x)) / x;
            };
            const int n = 2000;
            const real step = (T - 298.15L) / n;
            real integral = 0;
            for (int k = 0; k <= n; ++k)
                integral += (k == 0 || k == n ? 1 : k % 2 ? 4 : 2) * cpovert(298.15L + k * step);
            integral *= step / 3;
            real S = row[tdS] + integral;
            if (eos == 1) S += row[tdSmax] * (landauq0(row) - landauq(row, P, T));
            EXPECT_NEAR(static_cast<double>(-dGdT), static_cast<double>(S), 2e-7)
                << s.emname[i] << " at " << static_cast<double>(T) << " K";
        }
    }
}

TEST_F(Ds6aIdentities, LandauEnergyContinuousThroughTheTransition) {
    const EndMemberStore& s = store();
    int checked = 0;
    for (int i = 1; i <= s.nem; ++i) {
        const TdRow& row = s.td[i];
        if (!(row[tdSmax] > 0) || row[tdbwn] > 0) continue;
        for (const real P : {0.001L, 10.0L, 30.0L}) {
            const real Tcp = row[tdTc] + row[tdVmax] * P / row[tdSmax];
            const real below = gem(t->run, i, P, Tcp - 1e-7L);
            const real at = gem(t->run, i, P, Tcp);
            const real above = gem(t->run, i, P, Tcp + 1e-7L);
            EXPECT_NEAR(static_cast<double>(below), static_cast<double>(at), 1e-7) << s.emname[i];
            EXPECT_NEAR(static_cast<double>(above), static_cast<double>(at), 1e-7) << s.emname[i];
            // the entropy too: the transition is continuous, if steep below Tc
            const real Sbelow = -(gem(t->run, i, P, Tcp - 1e-6L) - gem(t->run, i, P, Tcp - 2e-6L)) / 1e-6L;
            const real Sabove = -(gem(t->run, i, P, Tcp + 2e-6L) - gem(t->run, i, P, Tcp + 1e-6L)) / 1e-6L;
            EXPECT_NEAR(static_cast<double>(Sbelow), static_cast<double>(Sabove), 2e-6) << s.emname[i];
        }
        ++checked;
    }
    EXPECT_EQ(checked, 16);
}

// The forward differences the reactions use agree with central ones.
TEST_F(Ds6aIdentities, ForwardDifferences) {
    for (int i = 1; i <= store().nem; i += 9) {
        real G, dGdP, dGdT;
        gemderivatives(t->run, i, 10, 900, G, dGdP, dGdT);
        EXPECT_EQ(G, gem(t->run, i, 10, 900));
        const real cP = (gem(t->run, i, 10.001L, 900) - gem(t->run, i, 9.999L, 900)) / 0.002L;
        const real cT = (gem(t->run, i, 10, 900.01L) - gem(t->run, i, 10, 899.99L)) / 0.02L;
        EXPECT_NEAR(static_cast<double>(dGdP), static_cast<double>(cP), 1e-4) << store().emname[i];
        EXPECT_NEAR(static_cast<double>(dGdT), static_cast<double>(cT), 1e-5) << store().emname[i];
    }
}

TEST_F(Ds6aIdentities, TaitFailsWhereThermalPressureIsTooHigh) {
    struct Case {
        const char* name;
        real T;
    };
    for (const Case c : {Case{"syv", 1850}, Case{"hlt", 1850}, Case{"prl", 2000}, Case{"tap", 2000}}) {
        t->console.output.clear();
        const int i = rowof(t->run, c.name);
        EXPECT_EQ(stopof([&] { gem(t->run, i, 0.001L, c.T); }),
                  std::string("gem : ") + c.name + ": b Pth > 1, log(-ve)");
        EXPECT_NE(t->console.output.find(std::string(c.name) + "  P = 0.001"), std::string::npos)
            << t->console.output;
    }
    // below the limit they have a volume; in the regression the run goes on
    EXPECT_EQ(stopof([&] { gem(t->run, rowof(t->run, "syv"), 0.001L, 1500); }), "");
    GemContext cx = gemcontext(t->run);
    cx.regression = true;
    GemParts parts;
    const real G = gemrow(store().td[rowof(t->run, "syv")], "syv", 0.001L, 1850, cx, parts);
    EXPECT_TRUE(std::isfinite(G));
    EXPECT_TRUE(parts.pthrepaired);
}

TEST_F(Ds6aIdentities, CountsCalls) {
    const long long before = t->run.gcount;
    gem(t->run, 1, 1, 1000);
    gem(t->run, 2, 1, 1000);
    EXPECT_EQ(t->run.gcount, before + 2);
    EXPECT_NE(store().lastthermal, 0);
    EXPECT_NE(store().lastvdp, 0);
}

}  // namespace
}  // namespace sm
