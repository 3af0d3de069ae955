// What a solve of order leaves behind, its identities and its refusals;
// legal starts; activities with their uncertainties.
#include <cmath>

#include "activities_testing.h"
#include "ax/order.h"
#include "ax/phase_prep.h"
#include "ax_testing.h"
#include "testutil.h"
#include "thermo/constants.h"
#include "thermo/gem.h"
#include "thermo/made_endmembers.h"

namespace sm::acttest {
namespace {

// The tables a solve of order borrows, as they stand.
struct Snapshot {
    std::vector<TdRow> td;
    std::vector<std::array<short, maxnem + 1>> c, r;
    std::vector<sstring> emname;
    std::array<real, maxnem + 1> activ;
    int nem, nir;
    NleVector x, scale;
    int nx, nm, nvarlim, nsfterm, printlevel;
    real esize;
    NleWork* work;
    NleMatrix J;

    explicit Snapshot(const sm::Run& run)
        : td(run.store.td), c(run.store.c), r(run.store.r), emname(run.store.emname),
          activ(run.store.activ), nem(run.store.nem), nir(run.reactions.nir), x(run.solver.x),
          scale(run.solver.scale), nx(run.solver.nx), nm(run.solver.nm), nvarlim(run.solver.nvarlim),
          nsfterm(run.solver.nsfterm), printlevel(run.solver.printlevel), esize(run.solver.esize),
          work(run.solver.work.get()), J(run.solver.work->J) {}

    void expectsame(const sm::Run& run) const {
        EXPECT_TRUE(td == run.store.td);
        EXPECT_TRUE(c == run.store.c);
        EXPECT_TRUE(r == run.store.r);
        EXPECT_TRUE(emname == run.store.emname);
        EXPECT_TRUE(activ == run.store.activ);
        EXPECT_EQ(nem, run.store.nem);
        EXPECT_EQ(nir, run.reactions.nir);
        EXPECT_TRUE(x == run.solver.x);
        EXPECT_TRUE(scale == run.solver.scale);
        EXPECT_EQ(nx, run.solver.nx);
        EXPECT_EQ(nm, run.solver.nm);
        EXPECT_EQ(nvarlim, run.solver.nvarlim);
        EXPECT_EQ(nsfterm, run.solver.nsfterm);
        EXPECT_EQ(printlevel, run.solver.printlevel);
        EXPECT_EQ(esize, run.solver.esize);
        EXPECT_EQ(work, run.solver.work.get());
        EXPECT_TRUE(J == run.solver.work->J);
    }
};

// A run in the middle of something: tables that a solve of order must not
// disturb.
void busy(sm::Run& run) {
    run.store.activ.fill(0.5L);
    run.store.r[1][1] = 7;
    run.reactions.nir = 3;
    run.solver.nx = 9;
    run.solver.x[4] = 0.123L;
    run.solver.printlevel = 2;
    run.solver.work->J[2][3] = 42;
}

real endmemberG(sm::Run& run, int k, int j, real P, real T) {
    const TdRow keep = run.store.td[300];
    putemrow(run, k, j, 300);
    const real G = gemdriver(run, 300, P, T);
    run.store.td[300] = keep;
    return G;
}

TEST(Calcq, SolvesToAStationaryPhaseEnergyAndLeavesTheRunAlone) {
    FileRun f("sm-axpel.txt", "sm-ds6a.txt");
    busy(*f.run);
    int solved = 0;
    for (int k = 1; k <= f.nphases(); ++k) {
        AxPhase& ph = f.ax(k);
        if (!ph.hasq) continue;
        const real P = 7, T = 923.15L;
        const std::vector<real> before = f.guesses(k);
        const Snapshot snap(*f.run);
        bool wasillegal = false;
        ASSERT_TRUE(findlegalq(*f.run, k, true, wasillegal, P, T)) << ph.pname;
        snap.expectsame(*f.run);
        ++solved;
        // Only order variables move, and at the solution the phase's G is
        // stationary in each of them: sum of mu dp/dQ = 0.
        const std::vector<real> x = f.guesses(k);
        const PhaseActivity a = f.at(k, x, P, T, true);
        for (int v = 1; v <= ph.nxv; ++v) {
            if (!ph.xv[v].isod) {
                EXPECT_EQ(x[v], before[v]);
                continue;
            }
            real dGdQ = 0, scale = 0;
            for (int j = 1; j <= ph.nem; ++j) {
                const real mu = endmemberG(*f.run, k, j, P, T) + Rgas * T * std::log(a.aa[j]);
                dGdQ += mu * a.dpdx[j][v];
                scale += std::fabs(mu * a.dpdx[j][v]);
            }
            // Terms of some 1e4 kJ cancel: stationary to 1e-11 of them.
            EXPECT_LT(static_cast<double>(std::fabs(dGdQ)), 1e-11 * static_cast<double>(scale))
                << ph.pname << " " << ph.xv[v].xname;
            EXPECT_GT(static_cast<double>(scale), 100.0);
        }
    }
    EXPECT_EQ(solved, 8);
}

TEST(Calcq, FailureLeavesGuessesAndTablesAsTheyWere) {
    FileRun f("sm-axpel.txt", "sm-ds6a.txt");
    busy(*f.run);
    const int k = f.find("ilm");
    AxPhase& ph = f.ax(k);
    // x(ilm) 0.18 with Q 0.85: a site fraction below zero.
    ph.xv[1].guess = 0.18L;
    ASSERT_FALSE(checksf(ph));
    const std::vector<real> before = f.guesses(k);
    const Snapshot snap(*f.run);
    f.con.output.clear();
    EXPECT_FALSE(calcq(*f.run, k, 5, 873.15L));
    snap.expectsame(*f.run);
    EXPECT_TRUE(f.guesses(k) == before);
    EXPECT_TRUE(f.con.output.empty()) << f.con.output;
}

TEST(Calcq, RefusesPhasesWithoutOrderAndUnbalancedOrder) {
    FileRun f("sm-axpel.txt", "sm-ds6a.txt");
    RunEnded e = smtest::expectended([&] { calcq(*f.run, f.find("g"), 5, 900); });
    EXPECT_EQ(e.where, "calcq");
    EXPECT_EQ(e.message, "not an OD phase");
    bool was = false;
    e = smtest::expectended([&] { findlegalq(*f.run, f.find("g"), true, was, 5, 900); });
    EXPECT_EQ(e.where, "findlegalq");
    EXPECT_EQ(e.message, "not an odd phase");
    // Two order variables where the composition leaves room for one
    // reaction.
    const int bi = f.find("bi");
    f.ax(bi).xv[1].isod = true;
    const Snapshot snap(*f.run);
    e = smtest::expectended([&] { calcq(*f.run, bi, 5, 900); });
    EXPECT_EQ(e.where, "calcq");
    EXPECT_EQ(e.message, "no of reactions not equal to no of Qs");
    snap.expectsame(*f.run);
}

TEST(Findlegalq, DrawsOrderWithinItsRangeUntilLegal) {
    FileRun f("sm-axpel.txt");
    sm::Run& run = *f.run;
    run.random.seed(1, 1, 1);
    const int k = f.find("ilm");
    AxPhase& ph = f.ax(k);
    // A legal guess stays.
    bool was = true;
    const real q = ph.xv[2].guess;
    EXPECT_TRUE(findlegalq(run, k, false, was, 5, 873.15L));
    EXPECT_FALSE(was);
    EXPECT_EQ(ph.xv[2].guess, q);
    // An illegal one is drawn again, within the range -1..1; the
    // composition variable stays.
    ph.xv[1].guess = 0.4L;
    ph.xv[2].guess = 0.9L;
    EXPECT_TRUE(findlegalq(run, k, false, was, 5, 873.15L));
    EXPECT_TRUE(was);
    EXPECT_TRUE(checksf(ph));
    EXPECT_EQ(ph.xv[1].guess, 0.4L);
    EXPECT_GE(ph.xv[2].guess, -1);
    EXPECT_LE(ph.xv[2].guess, 1);
    // A range of 0.2 to 0.4 draws there, not over -1..1.
    ph.xv[2].lower = 0.2L;
    ph.xv[2].upper = 0.4L;
    for (int i = 0; i < 20; ++i) {
        ph.xv[2].guess = 5;
        EXPECT_TRUE(findlegalq(run, k, false, was, 5, 873.15L));
        EXPECT_GE(ph.xv[2].guess, 0.2L);
        EXPECT_LE(ph.xv[2].guess, 0.4L);
    }
    // Nowhere legal: 1001 draws, then false.
    ph.xv[2].lower = 0.95L;
    ph.xv[2].upper = 1;
    ph.xv[2].guess = 5;
    EXPECT_FALSE(findlegalq(run, k, false, was, 5, 873.15L));
    EXPECT_TRUE(was);
    EXPECT_FALSE(findlegalq(run, k, true, was, 5, 873.15L));
    EXPECT_TRUE(was);
}

// An ideal binary: a = (1 - x)^3 and x^3; a symmetric one with W.
const std::string binary = R"(g  2  1  0
  x(g)  0.3  sd  0.02  -
  p(py)   1   1 1 1 -1 x(g)
  p(alm)  1   1 0 1 1 x(g)
  sf
  W(py,alm)  2.5  0.001  0.03  sd  0.7
  2
  xMgX  1  1 1 1 -1 x(g)
  xFeX  1  1 0 1 1 x(g)
  py   1  1  xMgX  3
  alm  1  1  xFeX  3
)";

TEST(Calcactsd, ActivitiesWithUncertaintiesByHand) {
    axtest::AxRun a;
    a.read(binary);
    const real P = 6, T = 900, x = 0.3L, RT = Rgas * T;
    const real W = 2.5L + 0.001L * T + 0.03L * P;
    const real xv[2] = {0, x};
    real act[3], sd[3];
    calcactsd(a.run, 1, xv, act, sd, P, T, false);
    // Ideal terms and their sd by the perturbation of x by 0.001.
    const real m1 = (1 - x) * (1 - x) * (1 - x), m2 = x * x * x;
    const real m1p = std::pow(1 - x - 0.001L, 3), m2p = std::pow(x + 0.001L, 3);
    const real vx1 = std::pow(0.02L * (m1p - m1) / 0.001L, 2), vx2 = std::pow(0.02L * (m2p - m2) / 0.001L, 2);
    const real a1 = m1 * std::exp(W * x * x / RT), a2 = m2 * std::exp(W * (1 - x) * (1 - x) / RT);
    EXPECT_NEAR(static_cast<double>(act[1]), static_cast<double>(a1), 1e-15);
    EXPECT_NEAR(static_cast<double>(act[2]), static_cast<double>(a2), 1e-15);
    EXPECT_NEAR(static_cast<double>(sd[1]), static_cast<double>(a1 * std::sqrt(vx1) / m1), 1e-15);
    EXPECT_NEAR(static_cast<double>(sd[2]), static_cast<double>(a2 * std::sqrt(vx2) / m2), 1e-15);
    // With the uncertainty of W: t = -x^2 for py.
    calcactsd(a.run, 1, xv, act, sd, P, T, true);
    const real vw1 = std::pow(x * x * 0.7L, 2);
    EXPECT_NEAR(static_cast<double>(sd[1]), static_cast<double>(a1 * std::sqrt(vw1 / (RT * RT) + vx1 / (m1 * m1))), 1e-15);
    // An excluded end-member, and a composition off the sites.
    a.ax(1).em[2].excluded = true;
    calcactsd(a.run, 1, xv, act, sd, P, T, true);
    EXPECT_EQ(act[2], 0);
    EXPECT_EQ(sd[2], 0);
    EXPECT_GT(act[1], 0);
    const real off[2] = {0, 1.2L};
    calcactsd(a.run, 1, off, act, sd, P, T, true);
    EXPECT_EQ(act[1], 0);
    EXPECT_EQ(sd[1], 0);
}

// Without uncertainties the activities are those of the model.
TEST(Calcactsd, AgreesWithTheModelOverAFile) {
    FileRun f("sm-axkfm.txt");
    for (int k = 1; k <= f.nphases(); ++k) {
        const std::vector<real> x = f.guesses(k);
        if (!checksf(f.ax(k))) continue;
        const PhaseActivity pa = f.at(k, x, 8, 950, false);
        real act[maxemperphase + 1], sd[maxemperphase + 1];
        calcactsd(*f.run, k, x.data(), act, sd, 8, 950, false);
        for (int j = 1; j <= f.ax(k).nem; ++j) {
            EXPECT_TRUE(near(act[j], pa.aa[j], 1e-14L, 0)) << f.ax(k).pname << " " << j;
            EXPECT_GE(sd[j], 0);
        }
    }
}

}  // namespace
}  // namespace sm::acttest
