// The activity models by hand: the layout of a calculation, fluids and
// aqueous phases, and points that no model can take.
#include <cmath>

#include "activities_testing.h"
#include "ax_testing.h"
#include "thermo/constants.h"
#include "thermo/fluids/fluids.h"
#include "testutil.h"

namespace sm::acttest {
namespace {

using axtest::AxRun;

// Two a-x phases and two pure end-members laid out as one calculation.
TEST(Calca, FillsTheLayoutAndLeavesPurePhasesAtOne) {
    FileRun f("sm-axkfm.txt");
    sm::Run& run = *f.run;
    const int g = f.find("g"), bi = f.find("bi");
    layout(run, {bi, g}, 2);
    const int nbi = f.ax(bi).nem, ng = f.ax(g).nem;
    ASSERT_EQ(run.store.nem, nbi + ng + 2);
    NleVector x{};
    x[1] = 6;
    x[2] = 900;
    for (int v = 1; v <= f.ax(bi).nxv; ++v) x[2 + v] = f.ax(bi).xv[v].guess;
    const int xog = 3 + f.ax(bi).nxv;
    for (int v = 1; v <= f.ax(g).nxv; ++v) x[xog + v - 1] = f.ax(g).xv[v].guess;
    for (int i = 1; i <= run.store.nem; ++i) run.store.activ[i] = -5;
    cleardlnadx(run);
    calca(run, x.data(), true, true, 6, 900);

    const PhaseActivity pb = f.at(bi, f.guesses(bi), 6, 900, true);
    const PhaseActivity pg = f.at(g, f.guesses(g), 6, 900, true);
    for (int j = 1; j <= nbi; ++j) {
        EXPECT_EQ(run.store.activ[j], pb.aa[j]);
        EXPECT_EQ(run.activities.dlnadT[j], pb.dlnadT[j]);
        EXPECT_EQ(run.activities.dlnadP[j], pb.dlnadP[j]);
        for (int v = 1; v <= f.ax(bi).nxv; ++v) EXPECT_EQ(run.activities.dlnadx[j][2 + v], pb.dlnadx[j][v]);
        for (int v = 1; v <= f.ax(g).nxv; ++v) EXPECT_EQ(run.activities.dlnadx[j][xog + v - 1], 0);
    }
    for (int j = 1; j <= ng; ++j) {
        const int i = nbi + j;
        EXPECT_EQ(run.store.activ[i], pg.aa[j]);
        for (int v = 1; v <= f.ax(g).nxv; ++v) EXPECT_EQ(run.activities.dlnadx[i][xog + v - 1], pg.dlnadx[j][v]);
        for (int v = 1; v <= f.ax(bi).nxv; ++v) EXPECT_EQ(run.activities.dlnadx[i][2 + v], 0);
        EXPECT_EQ(run.activities.phase[g].pp[j], pg.pp[j]);
    }
    for (int i = nbi + ng + 1; i <= run.store.nem; ++i) {
        EXPECT_EQ(run.store.activ[i], 1);
        EXPECT_EQ(run.activities.dlnadT[i], 0);
        EXPECT_EQ(run.activities.dlnadP[i], 0);
    }
    // No a-x phase: every activity 1.
    layout(run, {}, 3);
    run.store.activ.fill(-1);
    calca(run, x.data(), false, false, 6, 900);
    for (int i = 1; i <= 3; ++i) EXPECT_EQ(run.store.activ[i], 1);
}

const std::string binary = R"(g  2  1  0
  x(g)  0.85  -
  p(py)   1   1 1 1 -1 x(g)
  p(alm)  1   1 0 1 1 x(g)
  asf
  W(py,alm)  2.5  0.001  0.03
  a(py)  1  0  0
  a(alm)  1.5  0.0002  0.01
  2
  xMgX  1  1 1 1 -1 x(g)
  xFeX  1  1 0 1 1 x(g)
  py   1  1  xMgX  3
  alm  1  1  xFeX  3
)";

// A binary van Laar garnet written out by hand.
TEST(Calca, BinaryVanLaarByHand) {
    AxRun a;
    a.read(binary);
    const real x = 0.3L, P = 7, T = 950;
    const real p1 = 1 - x, p2 = x;
    const real a1 = 1, a2 = 1.5L + 0.0002L * T + 0.01L * P;
    const real W = 2.5L + 0.001L * T + 0.03L * P;
    const real phi1 = a1 * p1 / (a1 * p1 + a2 * p2), phi2 = 1 - phi1;
    const real B = 2 * W / (a1 + a2);
    const real rt1 = a1 * B * phi2 * phi2, rt2 = a2 * B * phi1 * phi1;
    const real v[2] = {0, x};
    PhaseActivity out;
    phaseactivity(a.run, 1, v, 1, false, false, P, T, out);
    EXPECT_NEAR(static_cast<double>(out.rtlngam[1]), static_cast<double>(rt1), 1e-15);
    EXPECT_NEAR(static_cast<double>(out.rtlngam[2]), static_cast<double>(rt2), 1e-15);
    EXPECT_NEAR(static_cast<double>(out.aid[1]), static_cast<double>(p1 * p1 * p1), 1e-16);
    EXPECT_NEAR(static_cast<double>(out.aa[2]), static_cast<double>(p2 * p2 * p2 * std::exp(rt2 / (Rgas * T))), 1e-16);
}

TEST(Calca, SymmetricBinaryByHand) {
    AxRun a;
    a.read(axtest::edit(axtest::edit(axtest::edit(binary, "asf", "sf"), "  a(py)  1  0  0\n", ""),
                        "  a(alm)  1.5  0.0002  0.01\n", ""));
    const real x = 0.3L, P = 7, T = 950, W = 2.5L + 0.001L * T + 0.03L * P;
    const real v[2] = {0, x};
    PhaseActivity out;
    phaseactivity(a.run, 1, v, 1, true, true, P, T, out);
    EXPECT_NEAR(static_cast<double>(out.rtlngam[1]), static_cast<double>(W * x * x), 1e-15);
    EXPECT_NEAR(static_cast<double>(out.rtlngam[2]), static_cast<double>(W * (1 - x) * (1 - x)), 1e-15);
    // d/dx of 3RT ln(1-x) + W x^2; d/dT of 3R ln(1-x) + 0.001 x^2.
    EXPECT_NEAR(static_cast<double>(out.dlnadx[1][1]), static_cast<double>(-3 * Rgas * T / (1 - x) + 2 * W * x), 1e-13);
    EXPECT_NEAR(static_cast<double>(out.dlnadT[1]), static_cast<double>(3 * Rgas * std::log(1 - x) + 0.001L * x * x), 1e-16);
    EXPECT_NEAR(static_cast<double>(out.dlnadP[2]), static_cast<double>(0.03L * (1 - x) * (1 - x)), 1e-16);
}

const std::string fluid = R"(fluid  2  1  0
  x(fluid)  0.3  -
  p(H2O)  1  1 1 1 -1 x(fluid)
  p(CO2)  1  1 0 1 1 x(fluid)
  ideal
  2
  xH2O  1  1 1 1 -1 x(fluid)
  xCO2  1  1 0 1 1 x(fluid)
  H2O  1  1  xH2O 1
  CO2  1  1  xCO2 1
)";

// RT ln gamma of a binary van Laar phase at x of the second end-member;
// with `solute` the second is a solute against the first (solvent), whose
// pair counts with 1 + q1 q2.
struct Binary {
    real g1, g2;
};
Binary vanlaar(real x, real W, real a1, real a2, bool solute) {
    const real phi1 = a1 * (1 - x) / (a1 * (1 - x) + a2 * x), phi2 = 1 - phi1;
    const real B = 2 * W / (a1 + a2);
    return {a1 * B * phi2 * phi2, solute ? -a2 * B * (1 - phi1 * phi1) : a2 * B * phi1 * phi1};
}

// A quantity of a fluid made linear about P, T from its values there and at
// T + 0.01 K and P + 0.001 kbar, as the models take it.
struct Linear {
    real v, b, c;
    real at(real dP, real dT) const { return v + b * dT + c * dP; }
};

// The volumes of water and CO2 and their forward slopes.
Linear volume(bool water, real P, real T) {
    const FluidContext fx{true, water ? "H2O" : "CO2", nullptr, 1};
    auto V = [&](real PP, real TT) {
        real v, f;
        if (water)
            h2oeos(v, f, PP, TT, fx);
        else
            co2eos(v, f, PP, TT, fx);
        return v;
    };
    const real v = V(P, T);
    return {v, (V(P, T + 0.01L) - v) / 0.01L, (V(P + 0.001L, T) - v) / 0.001L};
}

// The W of a H2O-CO2 fluid is 10.5 (1/Vh + 1/Vc) at every call, and CO2
// is as large as its volume against water's. Both are taken linear in P
// and T about the point, with the slopes of the volumes' differences.
TEST(Calca, MixedFluidTakesItsNonIdealityFromTheVolumes) {
    AxRun a;
    a.read(fluid);
    a.run.store.newds = true;
    for (const real P : {2.0L, 10.0L}) {
        const real T = 900, x = 0.3L;
        const Linear vh = volume(true, P, T), vc = volume(false, P, T);
        const Linear W{10.5L * (1 / vh.v + 1 / vc.v), -10.5L * (vh.b / (vh.v * vh.v) + vc.b / (vc.v * vc.v)),
                       -10.5L * (vh.c / (vh.v * vh.v) + vc.c / (vc.v * vc.v))};
        const Linear a2{vc.v / vh.v, (vc.b * vh.v - vc.v * vh.b) / (vh.v * vh.v),
                        (vc.c * vh.v - vc.v * vh.c) / (vh.v * vh.v)};
        const real v[2] = {0, x};
        PhaseActivity out;
        phaseactivity(a.run, 1, v, 1, true, true, P, T, out);
        const Binary g = vanlaar(x, W.v, 1, a2.v, false);
        EXPECT_TRUE(near(out.rtlngam[1], g.g1, 1e-6L, 1e-12L));
        EXPECT_TRUE(near(out.rtlngam[2], g.g2, 1e-6L, 1e-12L));
        auto rtlna = [&](int e, real dP, real dT) {
            const Binary b = vanlaar(x, W.at(dP, dT), 1, a2.at(dP, dT), false);
            return Rgas * (T + dT) * std::log(e == 1 ? 1 - x : x) + (e == 1 ? b.g1 : b.g2);
        };
        for (int e = 1; e <= 2; ++e) {
            EXPECT_TRUE(near(out.dlnadT[e], central([&](real h) { return rtlna(e, 0, h); }, 1e-3L), 1e-5L, 1e-9L));
            EXPECT_TRUE(near(out.dlnadP[e], central([&](real h) { return rtlna(e, h, 0); }, 1e-3L), 1e-5L, 1e-9L));
        }
    }
}

const std::string aqueous = R"(aq  2  1  0
  x(aq)  0.01  -
  p(H2O)  1  1 1 1 -1 x(aq)
  p(aqs)  1  1 0 1 1 x(aq)
  asf
  W(H2O,aqs)  -20  0.01  0.1
  a(H2O)  1  0  0
  a(aqs)  0.03  0  0.001
  2
  xH2O  1  1 1 1 -1 x(aq)
  xaqs  1  1 0 1 1 x(aq)
  H2O  1  1  xH2O 1
  aqs  1  1  xaqs 1
)";

// A solute in water keeps a finite coefficient at infinite dilution: its
// pair with the solvent counts as 1 + q1 q2. Its size is its own against
// the volume of water.
TEST(Calca, SoluteCoefficientVanishesAtInfiniteDilution) {
    AxRun a;
    a.read(aqueous);
    a.run.store.newds = true;
    AxPhase& ph = a.ax(1);
    ASSERT_TRUE(ph.aqkind);
    ph.em[2].emtd[tdaqz] = 1;
    const real P = 5, T = 800;
    auto at = [&](real x, bool d) {
        const real v[2] = {0, x};
        PhaseActivity o;
        phaseactivity(a.run, 1, v, 1, d, d, P, T, o);
        return o;
    };
    EXPECT_NEAR(static_cast<double>(at(1e-9L, false).rtlngam[2]), 0.0, 1e-6);
    // Without the charge it is an ordinary species.
    ph.em[2].emtd[tdaqz] = 0;
    EXPECT_GT(std::fabs(static_cast<double>(at(1e-9L, false).rtlngam[2])), 0.1);
    ph.em[2].emtd[tdaqz] = 1;

    const real x = 0.05L;
    const Linear vh = volume(true, P, T);
    const Linear A{0.03L + 0.001L * P, 0, 0.001L};
    const Linear a2{A.v / vh.v, (A.b * vh.v - A.v * vh.b) / (vh.v * vh.v), (A.c * vh.v - A.v * vh.c) / (vh.v * vh.v)};
    const Linear W{-20 + 0.01L * T + 0.1L * P, 0.01L, 0.1L};
    const PhaseActivity o = at(x, true);
    const Binary g = vanlaar(x, W.v, 1, a2.v, true);
    EXPECT_TRUE(near(o.rtlngam[1], g.g1, 1e-6L, 1e-12L));
    EXPECT_TRUE(near(o.rtlngam[2], g.g2, 1e-6L, 1e-12L));
    for (int e = 1; e <= 2; ++e) {
        auto rtlna = [&](real xx, real dP, real dT) {
            const Binary b = vanlaar(xx, W.at(dP, dT), 1, a2.at(dP, dT), true);
            return Rgas * (T + dT) * std::log(e == 1 ? 1 - xx : xx) + (e == 1 ? b.g1 : b.g2);
        };
        EXPECT_TRUE(near(o.dlnadx[e][1], central([&](real h) { return rtlna(x + h, 0, 0); }, 1e-7L), 1e-6L, 1e-8L));
        EXPECT_TRUE(near(o.dlnadT[e], central([&](real h) { return rtlna(x, 0, h); }, 1e-3L), 1e-5L, 1e-9L));
        EXPECT_TRUE(near(o.dlnadP[e], central([&](real h) { return rtlna(x, h, 0); }, 1e-3L), 1e-5L, 1e-9L));
    }
}

// Compositions outside the site-fraction limits: a clean stop, with the
// variables and site fractions printed, never a NaN.
TEST(Calca, SiteFractionOutsideItsLimitsStopsTheRun) {
    for (const real bad : {1.2L, 1.0L, std::numeric_limits<real>::quiet_NaN()}) {
        FileRun f("sm-axkfm.txt");
        const int g = f.find("g");
        layout(*f.run, {g}, 0);
        NleVector x{};
        x[1] = 5;
        x[2] = 900;
        x[3] = bad;
        const RunEnded e = smtest::expectended([&] { calca(*f.run, x.data(), true, true, 5, 900); });
        EXPECT_EQ(e.where, "calca");
        EXPECT_EQ(e.message, "negative sf term");
        EXPECT_NE(f.con.output.find("phase = g, end-member = py, tmf term no = 1, sf term no = 1, sf = "),
                  std::string::npos);
        EXPECT_NE(f.con.output.find("sorry - try changing starting guesses!"), std::string::npos);
        EXPECT_NE(f.con.output.find("x =  "), std::string::npos);
        EXPECT_NE(f.con.output.find("sf = "), std::string::npos);
    }
}

TEST(Calcsf, PlainRunStopsSearchesGoOn) {
    struct Case {
        bool dogmin;
        int dogminlevel;
        bool mc;
        bool stops, prints;
    };
    const Case cases[] = {
        {false, 0, false, true, true},
        {true, 2, false, false, true},
        {true, 1, false, false, false},
        {false, 0, true, false, false},
    };
    for (const auto& c : cases) {
        FileRun f("sm-axkfm.txt");
        const int g = f.find("g"), mu = f.find("mu");
        layout(*f.run, {mu, g}, 1);
        NleVector x{};
        for (int v = 1; v <= f.ax(mu).nxv; ++v) x[2 + v] = f.ax(mu).xv[v].guess;
        const int xog = 3 + f.ax(mu).nxv;
        x[xog] = 0.5L;
        EXPECT_TRUE(calcsf(*f.run, x.data()));
        x[xog] = -0.01L;
        f.run->solver.dogmin = c.dogmin;
        f.run->solver.dogminprintlevel = c.dogminlevel;
        f.run->solver.montecarlo = c.mc;
        if (c.stops) {
            const RunEnded e = smtest::expectended([&] { calcsf(*f.run, x.data()); });
            EXPECT_EQ(e.where, "calcsf");
            EXPECT_EQ(e.message, "negative sf term");
            EXPECT_NE(f.con.output.find("sorry - try changing starting guesses!"), std::string::npos);
        } else {
            EXPECT_FALSE(calcsf(*f.run, x.data()));
            EXPECT_EQ(f.con.output.find("sorry"), std::string::npos);
            EXPECT_EQ(f.con.output.find("checksf, negative sf term - change starting guesses?") != std::string::npos,
                      c.prints);
        }
        EXPECT_EQ(f.con.output.find("xMgX") != std::string::npos, c.prints);
    }
}

TEST(Calca, ZeroSizeSumStopsTheRun) {
    AxRun a;
    a.read(axtest::edit(axtest::edit(binary, "a(py)  1  0  0", "a(py)  -1  0  0"), "a(alm)  1.5  0.0002  0.01",
                        "a(alm)  1  0  0"));
    const real v[2] = {0, 0.3L};
    PhaseActivity out;
    const RunEnded e = smtest::expectended([&] { phaseactivity(a.run, 1, v, 1, false, false, 5, 900, out); });
    EXPECT_EQ(e.where, "calca");
}

}  // namespace
}  // namespace sm::acttest
