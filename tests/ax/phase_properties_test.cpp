// Chemical potentials and the properties of the phases of a calculation.
#include <cmath>

#include "activities_testing.h"
#include "ax/phase_properties.h"
#include "testutil.h"
#include "thermo/constants.h"
#include "thermo/gem.h"
#include "thermo/made_endmembers.h"

namespace sm::acttest {
namespace {

// Garnet, biotite and quartz of the KFMASH file as one calculation, their
// rows in td.
struct Assemblage {
    FileRun f{"sm-axkfm.txt", "sm-ds6a.txt"};
    int g = f.find("g"), bi = f.find("bi"), q = 0;
    NleVector x{};

    Assemblage() {
        sm::Run& run = *f.run;
        for (int m = 1; m <= run.store.nmin; ++m)
            if (run.phases.prec0[m].pname == "q") q = m;
        layout(run, {g, bi}, 1);
        int i = 0;
        for (int k : {g, bi})
            for (int j = 1; j <= f.ax(k).nem; ++j) putemrow(run, k, j, ++i);
        putemrow(run, 0, q, ++i);
        int xi = 2;
        for (int k : {g, bi})
            for (int v = 1; v <= f.ax(k).nxv; ++v) x[++xi] = f.ax(k).xv[v].guess;
    }
};

TEST(Calcmu, PotentialsAreEnergiesWithActivities) {
    Assemblage a;
    sm::Run& run = *a.f.run;
    const real P = 6, T = 900;
    std::vector<real> G(maxnem + 1), mu(maxnem + 1);
    calcmu(run, 0, a.x.data(), G.data(), mu.data(), P, T, 0, 0);
    const int n = run.store.nem;
    for (int i = 1; i <= n; ++i) {
        EXPECT_EQ(G[i], gemdriver(run, i, P, T));
        EXPECT_NEAR(static_cast<double>(mu[i] - G[i]), static_cast<double>(Rgas * T * std::log(run.store.activ[i])), 1e-12);
    }
    EXPECT_EQ(mu[n], G[n]);  // quartz, activity 1
    calcmu(run, 2, a.x.data(), G.data(), mu.data(), P, T, 0, 0);
    EXPECT_EQ(G[2], 0);
    EXPECT_EQ(mu[2], 0);
}

TEST(Calcgphase, PhaseEnergiesAndTheirDerivatives) {
    Assemblage a;
    sm::Run& run = *a.f.run;
    const real P = 6, T = 900;
    std::vector<PhaseProperties> props;
    calcgphase(run, 0, a.x.data(), P, T, 0, 0, props);
    ASSERT_EQ(props.size(), 3u);
    EXPECT_FALSE(props[0].pure);
    EXPECT_EQ(props[0].phase, a.g);
    EXPECT_EQ(props[1].phase, a.bi);
    EXPECT_TRUE(props[2].pure);
    EXPECT_EQ(props[2].phase, a.q);
    // G of a phase = sum p mu, at the phase's composition.
    auto phaseG = [&](const PhaseProperties& pr, real PP, real TT) {
        std::vector<real> G(maxnem + 1), mu(maxnem + 1);
        calcmu(run, 0, a.x.data(), G.data(), mu.data(), PP, TT, 0, 0);
        real sum = 0;
        for (int j = 1; j <= pr.nem; ++j)
            sum += (pr.pure ? 1 : run.activities.phase[pr.phase].pp[j]) * mu[pr.first + j - 1];
        return sum;
    };
    for (const auto& pr : props) {
        EXPECT_NEAR(static_cast<double>(pr.G), static_cast<double>(phaseG(pr, P, T)), 1e-9);
        const real V = (phaseG(pr, P + 1e-3L, T) - phaseG(pr, P - 1e-3L, T)) / 2e-3L;
        const real S = -(phaseG(pr, P, T + 0.01L) - phaseG(pr, P, T - 0.01L)) / 0.02L;
        EXPECT_NEAR(static_cast<double>(pr.V), static_cast<double>(V), 1e-4 * std::fabs(static_cast<double>(V)));
        EXPECT_NEAR(static_cast<double>(pr.S), static_cast<double>(S), 1e-5 * std::fabs(static_cast<double>(S)));
        EXPECT_NEAR(static_cast<double>(pr.H), static_cast<double>(pr.G + T * pr.S), 1e-9);
        phaseG(pr, P, T);  // the activities at P, T again
        for (int j = 1; j <= pr.nem; ++j)
            EXPECT_NEAR(static_cast<double>(pr.rtlna[j]),
                        static_cast<double>(Rgas * T * std::log(run.store.activ[pr.first + j - 1])), 1e-9);
    }
    // Quartz at 25 C and 1 bar: 60.08 g in 2.269 cm3/mol.
    calcgphase(run, 0, a.x.data(), 0.001L, 298.15L, 0, 0, props);
    EXPECT_NEAR(static_cast<double>(props[2].density), 60.0848 / 22.69, 2e-3);
    EXPECT_GT(props[0].density, 3.5);  // almandine-rich garnet
    EXPECT_LT(props[0].density, 4.4);
    // A fixed activity adds RT ln a to the pure phase.
    run.phases.prec0[a.q].fixeda = 0.5L;
    calcgphase(run, 0, a.x.data(), P, T, 0, 0, props);
    EXPECT_NEAR(static_cast<double>(props[2].rtlna[1]), static_cast<double>(Rgas * T * std::log(0.5L)), 1e-12);
}

}  // namespace
}  // namespace sm::acttest
