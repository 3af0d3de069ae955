// The analytic Jacobian of the equations against central differences of
// the residuals, entry by entry, for every phase of the four shipped a-x
// files: reaction rows with their activity derivatives, mass balance rows
// with the derivatives of the phase compositions, and the mode columns.
#include <algorithm>
#include <cmath>

#include "nlefunc_testing.h"

namespace sm::eqtest {
namespace {

struct Worst {
    real rel = 0;
    std::string where;
    int compared = 0;
};

// Every entry of the active columns: |J - fd| within 1e-6 of the larger
// of |J| and |fd|, or of 1e-4 of the largest entry of the row for entries
// below that: an entry that is nearly zero by structure meets the rounding
// of G (some 1e-15 of 1e4 kJ over a step of 2e-6) in the differences.
void compare(EqRun& t, Worst& worst, const std::string& label) {
    SolverState& sv = t.run.solver;
    EquilibriumSystem sys(t.run);
    auto J = std::make_unique<NleMatrix>();
    auto Jd = std::make_unique<NleMatrix>();
    NleVector F{}, Fp{}, Fm{};
    ASSERT_TRUE(sys.nlefunc(sv.x, *J, F, true)) << label << "\n" << t.con.output;
    const int n = t.run.equilibrium.nrows;
    ASSERT_EQ(n, t.run.equilibrium.ncols) << label;
    std::vector<real> rowmax(n + 1, 0);
    for (int r = 1; r <= n; ++r)
        for (int c = 1; c <= n; ++c) rowmax[r] = std::max(rowmax[r], std::fabs((*J)[r][c]));
    const real h = 1e-6L;
    int c = 0;
    for (int i = 1; i <= sv.nx + sv.nm; ++i) {
        if (!sv.active[i]) continue;
        ++c;
        NleVector xp = sv.x, xm = sv.x;
        xp[i] += h;
        xm[i] -= h;
        ASSERT_TRUE(sys.nlefunc(xp, *Jd, Fp, false));
        ASSERT_TRUE(sys.nlefunc(xm, *Jd, Fm, false));
        for (int r = 1; r <= n; ++r) {
            const real fd = (Fp[r] - Fm[r]) / (2 * h);
            const real a = (*J)[r][c];
            const real scale = std::max({std::fabs(a), std::fabs(fd), 1e-4L * rowmax[r]});
            const real rel = scale > 0 ? std::fabs(a - fd) / scale : std::fabs(fd);
            ++worst.compared;
            if (rel > worst.rel) {
                worst.rel = rel;
                worst.where = label + " row " + std::to_string(r) + " column " + sv.xname[i];
            }
        }
    }
}

// Both square forms of an assemblage whose unknowns are its end-members
// plus P and T: P and T fixed, then P and T free with two modes set.
void checkassemblage(EqRun& t, const Assemblage& a, Worst& worst, const std::string& label) {
    prepare(t, a, 6, 923.15L);
    SolverState& sv = t.run.solver;
    setactive(t.run, 1, false);
    setactive(t.run, 2, false);
    compare(t, worst, label + " (P, T fixed)");
    setactive(t.run, 1, true);
    setactive(t.run, 2, true);
    int off = 0;
    for (int i = sv.nx + 1; i <= sv.nx + sv.nm && off < 2; ++i, ++off) setactive(t.run, i, false);
    compare(t, worst, label + " (P, T free)");
}

struct FileCase {
    const char* ax;
    const char* ds;
    int groupsize;
};

TEST(Jacobian, MatchesCentralDifferencesOverEveryPhaseOfTheShippedFiles) {
    const std::vector<FileCase> files = {{"sm-axkfm.txt", "sm-ds6a.txt", 6},
                                         {"sm-axpel.txt", "sm-ds6a.txt", 7},
                                         {"sm-axbas.txt", "sm-ds6a.txt", 7},
                                         {"sm-axign.txt", "sm-ds6b.txt", 6}};
    for (const auto& f : files) {
        SCOPED_TRACE(f.ax);
        Worst worst;
        EqRun t;
        t.load(f.ax, f.ds);
        const EndMemberStore& st = t.run.store;
        // Groups of a-x phases with quartz and water, so that reactions tie
        // the phases to each other and to the pure phases.
        for (int first = 1; first <= st.npss; first += f.groupsize) {
            Assemblage a{};
            std::string label;
            for (int k = first; k < first + f.groupsize && k <= st.npss; ++k) {
                a[k] = true;
                label += t.run.phases.prec1[k].pname + " ";
            }
            a[t.phaseof("q")] = a[t.phaseof("H2O")] = true;
            checkassemblage(t, a, worst, label + "q H2O");
        }
        EXPECT_GT(worst.compared, 500);
        EXPECT_LT(worst.rel, 1e-6L) << worst.where;
        std::cout << f.ax << ": " << worst.compared << " entries, worst " << static_cast<double>(worst.rel) << " at "
                  << worst.where << "\n";
    }
}

}  // namespace
}  // namespace sm::eqtest
