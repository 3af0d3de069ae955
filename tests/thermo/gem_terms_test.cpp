// Edge cases of single terms of the end-member energy.
#include <cmath>

#include "thermo/energy_terms.h"
#include "thermo/gem.h"
#include "thermo_testing.h"

namespace sm {
namespace {

using namespace sm::testing;

TdRow braggwilliamsrow(real dH, real W, real n, real F) {
    TdRow r{};
    r[tdS] = 0.1L;
    r[tdbwdH] = dH;
    r[tdbwW] = W;
    r[tdbwn] = n;
    r[tdbwfac] = F;
    return r;
}

TEST(GemTerms, BraggWilliamsLimitsOfOrder) {
    // with disordering cheaper than the interaction (dH < W) disorder wins
    // outright; at low T with a large energy of disordering the phase stays
    // ordered
    EXPECT_EQ(braggwilliamsq(braggwilliamsrow(0, 1.2L, 2, 0.5L), 0, 2000), 0.0000001L);
    EXPECT_EQ(braggwilliamsq(braggwilliamsrow(200, 0, 2, 0.5L), 0, 300), 0.9999999L);
    // in between the search stops where dG/dQ is within 0.001 kJ of zero:
    // check it against the slope written out here
    for (const real F : {0.5L, 1.0L, -0.5L}) {
        const TdRow row = braggwilliamsrow(13.93L, -3.6L, 2, F);
        const real T = 900;
        const real Q = braggwilliamsq(row, 0, T);
        ASSERT_GT(Q, 0.0000001L);
        ASSERT_LT(Q, 0.9999999L);
        const real n = 2, m = n / (n + 1), RT = 0.0083144L * T;
        const real slope =
            F < 0 ? 13.93L + (2 * Q - 1) * -3.6L +
                        m * RT * (std::log(n * (1 - Q) / (1 + n * Q)) - F * std::log((1 - Q) / (n + Q)))
                  : 13.93L + (2 * Q - 1) * -3.6L +
                        m * F * RT * std::log(n * (1 - Q) * (1 - Q) / ((1 + n * Q) * (n + Q)));
        EXPECT_LE(std::fabs(slope), 0.001L) << "F = " << static_cast<double>(F);
    }
}

TEST(GemTerms, BareRowsAndMissingTerms) {
    GemContext cx;
    GemParts parts;
    TdRow zero{};
    EXPECT_EQ(gemrow(zero, "x", 10, 1000, cx, parts), 0);
    TdRow reference{};
    reference[tdH] = -123.4L;
    reference[tdS] = 5e-9L;  // below 1e-8: a bare reference value
    reference[tdV] = 2;
    EXPECT_EQ(gemrow(reference, "x", 10, 1000, cx, parts), -123.4L);
    // no volume: no VdP and no thermal pressure, whatever alpha says
    TdRow novolume{};
    novolume[tdH] = -10;
    novolume[tdS] = 0.1L;
    novolume[tdalpha] = 1e-4L;
    novolume[tdk0] = 500;
    const real G = gemrow(novolume, "x", 20, 1000, cx, parts);
    EXPECT_EQ(parts.VdP, 0);
    EXPECT_NEAR(static_cast<double>(G), -10 - 0.1 * 1000, 1e-12);
    // no bulk modulus: V (P - Pr)
    TdRow rigid = novolume;
    rigid[tdV] = 2;
    rigid[tdk0] = 0;
    gemrow(rigid, "x", 20, 1000, cx, parts);
    EXPECT_NEAR(static_cast<double>(parts.VdP), 2 * (20 - 0.001), 1e-15);
    // Smax 0 is no Landau data
    TdRow landau = rigid;
    landau[tdTc] = 800;
    landau[tdSmax] = 0;
    landau[tdVmax] = 0.1L;
    gemrow(landau, "x", 20, 1000, cx, parts);
    EXPECT_EQ(parts.Gord, 0);
    // O2 has its 1-bar energy only
    gemrow(rigid, "O2", 20, 1000, cx, parts);
    EXPECT_EQ(parts.Gfluid, 0);
    // the channel fluid of cordierite only where the run asks for it
    TdRow crd = rigid;
    crd[tdxh2o] = 1;
    gemrow(crd, "crd", 5, 900, cx, parts);
    EXPECT_EQ(parts.Gcrd, 0);
    cx.crdterm = true;
    gemrow(crd, "crd", 5, 900, cx, parts);
    EXPECT_LT(parts.Gcrd, 0);
}

TEST(GemTerms, LandauAtAndAboveTheTransition) {
    TdRow row{};
    row[tdS] = 0.04L;
    row[tdTc] = 847;
    row[tdSmax] = 0.00495L;
    row[tdVmax] = 0.1188L;
    const real Tcp = 847 + 0.1188L * 2 / 0.00495L;
    // fully disordered from Tcp up: the energy is then linear in T
    const real Q0 = std::sqrt(1 - 298.15L / 847);
    for (const real T : {Tcp, Tcp + 1, Tcp + 300}) {
        const real want = 847 * 0.00495L * (Q0 - Q0 * Q0 * Q0 / 3) + 0.1188L * 2 * Q0 - T * 0.00495L * Q0;
        EXPECT_NEAR(static_cast<double>(landaugord(row, "q", 2, T, 6)), static_cast<double>(want), 1e-12);
    }
}

}  // namespace
}  // namespace sm
