// The largest legal step along a direction: box, linear limits of the
// models and watched site fractions.
#include <gtest/gtest.h>

#include <cmath>

#include "console/runended.h"
#include "solver/nle.h"
#include "solver/nletestsystem.h"
#include "testutil.h"

namespace sm {
namespace {

// Two compositional unknowns held as their true values (range 0..1),
// direction given; the step goes to x - slim * dx.
struct LimitCase {
    LimitCase(real x1, real x2, real d1, real d2) {
        SolverState& s = run.solver;
        nletest::layout(run, {{"x", 0, 1, x1}, {"y", 0, 1, x2}});
        s.limlo[1] = acccomp;
        s.limhi[2] = accinaccessible;
        s.n = 2;
        s.activelist[1] = 1;
        s.activelist[2] = 2;
        s.work->dx[1] = d1;
        s.work->dx[2] = d2;
    }
    // Limit row: constant + a1 * x + a2 * y > 0, rationals over 6.
    void limit(int c6, int a6, int b6) {
        SolverState& s = run.solver;
        VarLim& l = s.varlim[++s.nvarlim];
        l.num[1] = static_cast<short>(a6);
        l.num[2] = static_cast<short>(b6);
        l.num[3] = static_cast<short>(c6);
        l.den.fill(6);
    }
    MemoryConsole console;
    Run run{console};
};

class NoSystem : public NleSystem {
public:
    bool nlefunc(const NleVector&, NleMatrix&, NleVector&, bool) override { return false; }
};

TEST(Findlimit, BoxAndLinearLimits) {
    const real eps = std::numeric_limits<real>::epsilon();
    struct Case {
        const char* name;
        real x1, x2, d1, d2;
        int c6, a6, b6;  // limit row over 6, none when all 0
        bool inactivex;
        real slim;
        int accessibility;  // -1: unchanged
    };
    const Case cases[] = {
        {"lower bound of x", 0.3L, 0.5L, 0.6L, 0.1L, 0, 0, 0, false, (0.3L - 2 * eps) / 0.6L, acccomp},
        {"upper bound of y", 0.3L, 0.9L, 0.6L, -0.4L, 0, 0, 0, false, (0.1L - 2 * eps) / 0.4L,
         accinaccessible},
        {"no bound in reach", 0.5L, 0.5L, 0, 0, 0, 0, 0, false, 1e20L, -1},
        // 1 - x - y > 0 met at a step of 0.4, before the box.
        {"linear limit", 0.3L, 0.3L, -0.5L, -0.5L, 6, -6, -6, false, 0.4L - 2 * eps, accinaccessible},
        // 1/2 - 2/3 x - y/6 > 0: t1 = 0.5 - 0.2 - 0.05, t2 = 2/3 * 0.25 + 1/6 * 0.5.
        {"rational coefficients", 0.3L, 0.3L, -0.25L, -0.5L, 3, -4, -1, false,
         (0.25L - 2 * eps) / (0.25L), accinaccessible},
        {"along the limit", 0.3L, 0.3L, -0.5L, 0.5L, 6, -6, -6, false, 0, acccomp},
        {"away from the limit", 0.3L, 0.3L, 0.1L, 0.1L, 6, -6, -6, false, (0.3L - 2 * eps) / 0.1L,
         acccomp},
        // A row on an inactive variable alone is no limit of this step.
        {"inactive variable only", 0.3L, 0.3L, 0.0L, -0.5L, 6, -6, 0, true, (0.7L - 2 * eps) / 0.5L,
         accinaccessible},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        LimitCase t(c.x1, c.x2, c.d1, c.d2);
        if (c.a6 != 0 || c.b6 != 0) t.limit(c.c6, c.a6, c.b6);
        SolverState& s = t.run.solver;
        if (c.inactivex) {
            s.active[1] = false;
            s.n = 1;
            s.activelist[1] = 2;
            s.work->dx[1] = c.d2;
        }
        NoSystem sys;
        real slim = -1;
        int acc = -1;
        findlimit(t.run, sys, slim, acc);
        EXPECT_LT(std::fabs(slim - c.slim), 1e-18L * (1 + c.slim));
        EXPECT_EQ(acc, c.accessibility);
    }
}

// A watched site fraction (x - 0.1)(y + 0.1): it vanishes at x = 0.1, a
// step of 0.8 along the direction, before the box stops the step at 1.
class ProductTerm : public NleSystem {
public:
    bool nlefunc(const NleVector&, NleMatrix&, NleVector&, bool) override { return false; }
    real sfterm(const SfWatch& e, const NleVector& v) override {
        ++calls;
        return e.term == 1 ? (v[1] - 0.1L) * (v[2] + 0.1L) : 1.0L;
    }
    real sftermslope(const SfWatch& e, const NleVector& v, const NleVector& w,
                     bool& zerofactor) override {
        zerofactor = zero;
        if (e.term != 1) return 0;
        return w[1] * (v[2] + 0.1L) + w[2] * (v[1] - 0.1L);
    }
    bool zero = false;
    int calls = 0;
};

TEST(Findlimit, WatchedSiteFractionShortensTheStep) {
    LimitCase t(0.5L, 0.5L, 0.5L, 0.0L);
    SolverState& s = t.run.solver;
    s.nsfterm = 2;
    s.sfterm[1] = {1, 1, 1, 2, "gt"};
    s.sfterm[2] = {1, 2, 1, 2, "gt"};
    ProductTerm sys;
    real slim = -1;
    int acc = -1;
    findlimit(t.run, sys, slim, acc);
    // One linear extrapolation to the zero at 0.8, less 1%, then a check.
    EXPECT_LT(std::fabs(slim - 0.99L * 0.8L), 1e-8L);
    EXPECT_EQ(acc, accinaccessible);
    EXPECT_EQ(sys.calls, 4);
    EXPECT_GT(sys.sfterm(s.sfterm[1], [&] {
        NleVector v{};
        v[1] = 0.5L - 0.5L * slim;
        v[2] = 0.5L;
        return v;
    }()), 0.0L);
}

// A watched term exactly zero at the point, falling along the line: no
// step is possible, which is a failed calculation, not a stop of the run.
TEST(Findlimit, SiteFractionAtZeroLookingOut) {
    class AtZero : public NoSystem {
    public:
        real sfterm(const SfWatch&, const NleVector& v) override { return 0.5L - v[1]; }
        real sftermslope(const SfWatch&, const NleVector&, const NleVector& w, bool& z) override {
            z = false;
            return -w[1];
        }
    } sys;
    LimitCase t(0.5L, 0.5L, -0.5L, 0.0L);
    t.run.solver.nsfterm = 1;
    real slim = -1;
    int acc = -1;
    EXPECT_NO_THROW(findlimit(t.run, sys, slim, acc));
    EXPECT_LT(slim, 1e-8L);
    EXPECT_GE(slim, 0.0L);
    EXPECT_EQ(acc, accinaccessible);
}

TEST(Findlimit, SiteFractionStops) {
    {
        // An exact zero in a factor: the phase is miscoded.
        LimitCase t(0.5L, 0.5L, 0.5L, 0.0L);
        SolverState& s = t.run.solver;
        s.nsfterm = 1;
        s.sfterm[1] = {1, 3, 1, 2, "gt"};
        ProductTerm sys;
        sys.zero = true;
        s.sfterm[1].term = 1;
        real slim;
        int acc;
        EXPECT_EQ(smtest::expectended([&] { findlimit(t.run, sys, slim, acc); }).where, "findlimit");
        const std::string& out = t.console.output;
        EXPECT_EQ(out.substr(0, 36), std::string(35, '-') + "\n");
        EXPECT_NE(out.find("crasher with gt, sf term = 1\nx  "), std::string::npos);
        EXPECT_NE(out.find("\n1-x"), std::string::npos);
        EXPECT_NE(out.find("\nd  "), std::string::npos);
        EXPECT_NE(out.find("\nsx "), std::string::npos);
        EXPECT_NE(out.find("I am terribly sorry about this -\nbut someone has miscoded something.\n"
                           "So there is nothing else for it...\n"),
                  std::string::npos);
    }
    {
        // A term slightly negative everywhere, and rising along the line,
        // cannot be cured by shortening; slim shrinks by 0.9 a round.
        class Negative : public NoSystem {
        public:
            real sfterm(const SfWatch&, const NleVector&) override { return -1e-6L; }
            real sftermslope(const SfWatch&, const NleVector&, const NleVector&, bool& z) override {
                z = false;
                return -1;
            }
        } sys;
        LimitCase t(0.5L, 0.5L, 0.5L, 0.0L);
        t.run.solver.nsfterm = 1;
        real slim;
        int acc;
        const RunEnded e = smtest::expectended([&] { findlimit(t.run, sys, slim, acc); });
        EXPECT_EQ(e.where, "findlimit");
        EXPECT_EQ(e.message, "too many iterations handling site fractions");
    }
}

}  // namespace
}  // namespace sm
