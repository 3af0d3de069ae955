// Solved points of whole assemblages: the solver on these equations from
// the files' starting guesses, and the solution checked by what an
// equilibrium must be: one chemical potential for each component, shared
// by every end-member, and modes per atom that make the bulk.
#include <cmath>

#include "ax/activities.h"
#include "nlefunc_testing.h"
#include "thermo/constants.h"
#include "thermo/gem.h"

namespace sm::eqtest {
namespace {

// Largest misfit of mu = G + RT ln a of the end-members to a linear
// combination of component potentials, fitted by least squares.
real potentialmisfit(EqRun& t) {
    Run& run = t.run;
    const EndMemberStore& st = run.store;
    const EquilibriumState& eq = run.equilibrium;
    const real P = eq.xtrue[1], T = eq.xtrue[2];
    calca(run, eq.xtrue.data(), false, false, P, T);
    const int n = st.nem, m = st.nc;
    std::vector<real> mu(n + 1);
    for (int j = 1; j <= n; ++j) mu[j] = gemdriver(run, j, P, T) + Rgas * T * std::log(st.activ[j]);
    auto comp = [&](int k, int j) { return static_cast<real>(st.c[k][j]) / st.cscale[k]; };
    // Normal equations A^T A lambda = A^T mu, solved by elimination.
    std::vector<std::vector<real>> a(m + 1, std::vector<real>(m + 2, 0));
    for (int k = 1; k <= m; ++k) {
        for (int l = 1; l <= m; ++l)
            for (int j = 1; j <= n; ++j) a[k][l] += comp(k, j) * comp(l, j);
        for (int j = 1; j <= n; ++j) a[k][m + 1] += comp(k, j) * mu[j];
    }
    for (int i = 1; i <= m; ++i) {
        int p = i;
        for (int r = i + 1; r <= m; ++r)
            if (std::fabs(a[r][i]) > std::fabs(a[p][i])) p = r;
        std::swap(a[p], a[i]);
        for (int r = 1; r <= m; ++r) {
            if (r == i) continue;
            const real f = a[r][i] / a[i][i];
            for (int c = i; c <= m + 1; ++c) a[r][c] -= f * a[i][c];
        }
    }
    real worst = 0;
    for (int j = 1; j <= n; ++j) {
        real fit = 0;
        for (int k = 1; k <= m; ++k) fit += comp(k, j) * a[k][m + 1] / a[k][k];
        worst = std::max(worst, std::fabs(fit - mu[j]));
    }
    return worst;
}

// Modes at the solution, and the largest misfit of the bulk they make.
real bulkmisfit(EqRun& t, real& modesum) {
    const Run& run = t.run;
    const EndMemberStore& st = run.store;
    const EquilibriumState& eq = run.equilibrium;
    const SolverState& sv = run.solver;
    std::vector<real> made(st.nc + 1, 0);
    modesum = 0;
    for (int s = 1; s <= eq.nslot; ++s) {
        const PhaseSlot& slot = eq.slot[s];
        const real mode = eq.xtrue[slot.modex] / sv.phi;
        modesum += mode;
        std::array<real, maxcomp + 1> f{};
        if (slot.pure)
            f = run.phases.prec0[slot.phase].comp.x;
        else
            compcalc(run, slot.phase, eq.xtrue.data(), slot.xstart, f);
        real atoms = 0;
        for (int k = 1; k <= st.nc; ++k) atoms += f[k] * st.catomsum[k];
        for (int k = 1; k <= st.nc; ++k) made[k] += mode * f[k] / atoms;
    }
    // The bulk per atom: b over the sum of its atoms (phi squared).
    real worst = 0;
    for (int j = 1; j <= eq.nuvleft; ++j)
        worst = std::max(worst, std::fabs(made[eq.reducedcomp[j]] - eq.b[j] / (sv.phi * sv.phi)));
    return worst;
}

struct SolveCase {
    const char* name;
    const char* ax;
    std::vector<sstring> phases;
    std::vector<real> modes;  // by phase of the list: the bulk's make-up, and the start
    sstring zero;             // a phase held at zero mode, with T then solved
    real P, T;                // kbar, K
};

TEST(Solve, ResidualsVanishAtTheSolvedPoint) {
    const std::vector<SolveCase> cases = {
        {"KFMASH g bi mu q H2O", "sm-axkfm.txt", {"g", "bi", "mu", "q", "H2O"}, {}, "", 6, 923.15L},
        // Where chlorite leaves a sillimanite metapelite at 6 kbar, from 650 degC.
        {"metapelite, ten phases, chlorite out",
         "sm-axpel.txt",
         {"g", "bi", "mu", "chl", "pl4tr", "ilm", "mt1", "sill", "q", "H2O"},
         {0.04L, 0.15L, 0.22L, 0, 0.15L, 0.01L, 0.01L, 0.04L, 0.33L, 0.05L},
         "chl",
         6,
         923.15L},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EqRun t;
        t.load(c.ax, "sm-ds6a.txt");
        EquilibriumState& eq = t.run.equilibrium;
        Bulk bulk = kfmashpelite;
        std::vector<real> start;
        if (!c.zero.empty()) {
            eq.set.setmode[t.phaseof(c.zero)] = 1;
            eq.set.modesbynle = true;
            makecrossrefs(t.run, t.take(c.phases));
            start.assign(eq.nslot + 1, 0);
            for (int s = 1; s <= eq.nslot; ++s)
                for (size_t k = 0; k < c.phases.size(); ++k)
                    if (eq.slot[s].name == c.phases[k]) start[s] = c.modes[k];
            bulk = ownbulk(t, std::vector<real>(start.begin() + 1, start.end()));
        }
        prepare(t, t.take(c.phases), c.P, c.T, true, bulk, start);
        setactive(t.run, 1, false);
        setactive(t.run, 2, !c.zero.empty());
        EquilibriumSystem sys(t.run);
        int result = -1;
        try {
            nle(t.run, sys, result);
        } catch (const RunEnded& e) {
            FAIL() << e.where << " : " << e.message << "\n" << t.con.output;
        }
        ASSERT_EQ(result, 0) << t.con.output;
        settruepoint(t.run);
        for (int i = 1; i <= t.run.solver.nx + t.run.solver.nm; ++i)
            EXPECT_EQ(eq.xtrue[i], truevalue(t.run.solver, t.run.solver.x, i)) << i;
        // The residuals at the solution, within the solver's tolerance on
        // their norm (fsize, 1e-6).
        auto J = std::make_unique<NleMatrix>();
        NleVector F{};
        ASSERT_TRUE(sys.nlefunc(t.run.solver.x, *J, F, false));
        real maxf = 0;
        for (int r = 1; r <= eq.nrows; ++r) maxf = std::max(maxf, std::fabs(F[r]));
        EXPECT_LT(maxf, 1e-6L);
        // What an equilibrium is, worked out here from energies and
        // activities: chemical potentials within 1e-5 kJ of one set of
        // component potentials.
        EXPECT_LT(potentialmisfit(t), 1e-5L);
        real modesum = 0;
        EXPECT_LT(bulkmisfit(t, modesum), 1e-9L);
        EXPECT_NEAR(static_cast<double>(modesum), 1.0, 1e-9);
        if (!c.zero.empty()) {
            // The phase held at zero, and the temperature found within the window.
            for (int s = 1; s <= eq.nslot; ++s)
                if (eq.slot[s].name == c.zero) {
                    EXPECT_EQ(eq.xtrue[eq.slot[s].modex], 0);
                }
            EXPECT_GT(eq.xtrue[2], 600);
            EXPECT_LT(eq.xtrue[2], 1200);
        }
    }
}

}  // namespace
}  // namespace sm::eqtest
