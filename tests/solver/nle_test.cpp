// The Newton driver on systems with known answers.
#include "solver/nle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "console/runended.h"
#include "solver/nletestsystem.h"
#include "testutil.h"

namespace sm {
namespace {

using nletest::layout;
using nletest::Rows;
using nletest::TrueSystem;
using nletest::Unknown;
using nletest::valueof;
using nletest::Values;

struct Fixture {
    MemoryConsole console;
    Run run{console};
};

// Every point the solver asked for lay inside the box of every entry.
void expectinside(const Run& run, const TrueSystem& sys) {
    const SolverState& s = run.solver;
    EXPECT_EQ(sys.outside, 0);
    for (const Values& v : sys.visited)
        for (int i = 1; i <= s.nx + s.nm; ++i) {
            if (!s.active[i]) continue;
            const real x = s.offset[i] + s.scale[i] * v[i];
            EXPECT_GE(x, 0.0L);
            EXPECT_LE(x, 1.0L);
        }
}

// Non-linear systems with analytic roots, from starts some way off.
TEST(Nle, AnalyticRoots) {
    struct Case {
        const char* name;
        std::vector<Unknown> u;
        TrueSystem::Fun f;
        std::vector<real> root;
    };
    const std::vector<Case> cases = {
        {"circle and diagonal",
         {{"a", 0, 3, 1.0L}, {"b", 0, 3, 2.5L}},
         [](const Values& v, Values& F, Rows& dF) {
             F[1] = v[1] * v[1] + v[2] * v[2] - 4;
             F[2] = v[1] - v[2];
             dF[1][1] = 2 * v[1], dF[1][2] = 2 * v[2];
             dF[2][1] = 1, dF[2][2] = -1;
             return true;
         },
         {std::sqrt(2.0L), std::sqrt(2.0L)}},
        {"banana valley",
         {{"a", -2, 2, -1.2L}, {"b", -2, 2, 1.0L}},
         [](const Values& v, Values& F, Rows& dF) {
             F[1] = 10 * (v[2] - v[1] * v[1]);
             F[2] = 1 - v[1];
             dF[1][1] = -20 * v[1], dF[1][2] = 10;
             dF[2][1] = -1;
             return true;
         },
         {1.0L, 1.0L}},
        {"exponential, cubic and sum",
         {{"a", -1, 2, 1.5L}, {"b", 0, 5, 4.0L}, {"c", -5, 5, 3.0L}},
         [](const Values& v, Values& F, Rows& dF) {
             F[1] = std::exp(v[1]) - 2;
             F[2] = v[2] * v[2] * v[2] - 8;
             F[3] = v[1] + v[2] + v[3] - 1;
             dF[1][1] = std::exp(v[1]);
             dF[2][2] = 3 * v[2] * v[2];
             dF[3][1] = dF[3][2] = dF[3][3] = 1;
             return true;
         },
         {std::log(2.0L), 2.0L, -1.0L - std::log(2.0L)}},
    };
    for (const Case& c : cases)
        for (const bool tight : {false, true}) {
            SCOPED_TRACE(c.name);
            SCOPED_TRACE(tight ? "tight tolerances" : "default tolerances");
            Fixture t;
            layout(t.run, c.u);
            SolverState& s = t.run.solver;
            if (tight) s.esize = s.fsize = 1e-15L;
            TrueSystem sys(t.run, c.f);
            int result = -1;
            EXPECT_TRUE(nle(t.run, sys, result));
            EXPECT_EQ(result, nlesolved);
            // The norm test stops once |F| < fsize; with the derivatives of
            // these systems (at least 1 near the roots) that leaves the root
            // within fsize. Tolerances at the level of rounding may end by
            // the step test instead, as close to the root.
            if (!tight) {
                EXPECT_TRUE(s.esizeok || s.fsizeok);
            }
            for (size_t i = 0; i < c.root.size(); ++i)
                EXPECT_LT(std::fabs(valueof(t.run, static_cast<int>(i) + 1) - c.root[i]),
                          tight ? 1e-14L : 1e-6L);
            expectinside(t.run, sys);
            EXPECT_FALSE(s.singular);
            EXPECT_LE(s.iteration, 20);
        }
}

}  // namespace
}  // namespace sm

namespace sm {
namespace {

using nletest::layout;
using nletest::Rows;
using nletest::TrueSystem;
using nletest::Unknown;
using nletest::valueof;
using nletest::Values;

// Two equations in x1 + x2 only: the Jacobian has rank 1. P and T are
// fixed entries, held as their true values, as in a calculation at given
// P and T.
std::vector<Unknown> pTandtwo(real x1, real x2) {
    return {{"P(kbar)", 0, 10, 5.0L, false},
            {"T(C)", 0, 2000, 873.15L, false},
            {"x1", 0, 1, x1},
            {"x2", 0, 1, x2}};
}

TEST(Nle, StartAtTheSolutionIsTakenAsItIs) {
    Fixture t;
    layout(t.run, pTandtwo(0.25L, 0.75L));
    const NleVector before = t.run.solver.x;
    TrueSystem sys(t.run, [](const Values& v, Values& F, Rows& dF) {
        F[1] = v[3] + v[4] - 1;
        F[2] = v[3] - v[4] + 0.5L;
        dF[1][3] = dF[1][4] = dF[2][3] = 1;
        dF[2][4] = -1;
        return true;
    });
    int result = -1;
    EXPECT_TRUE(nle(t.run, sys, result));
    EXPECT_EQ(result, nlesolved);
    EXPECT_EQ(t.run.solver.iteration, 0);
    EXPECT_EQ(sys.calls, 1);
    EXPECT_TRUE(t.run.solver.x == before);
}

TEST(Nle, StartTestIsOnFItself) {
    // |F| = 1.2e-3: f = 7.2e-7 is below fsize although sqrt(2 f) is not.
    Fixture t;
    layout(t.run, {{"a", 0, 1, 0.5L}});
    TrueSystem sys(t.run, [](const Values& v, Values& F, Rows& dF) {
        F[1] = v[1] - 0.5L + 1.2e-3L;
        dF[1][1] = 1;
        return true;
    });
    int result = -1;
    EXPECT_TRUE(nle(t.run, sys, result));
    EXPECT_EQ(t.run.solver.iteration, 0);
    EXPECT_EQ(valueof(t.run, 1), 0.5L);
}

// A rank-deficient Jacobian is not refused: the step is the minimum-norm
// one, which moves x1 and x2 alike onto the line x1 + x2 = 1.
TEST(Nle, RankDeficientJacobianTakesTheMinimumNormStep) {
    Fixture t;
    layout(t.run, pTandtwo(0.2L, 0.3L));
    TrueSystem sys(t.run, [](const Values& v, Values& F, Rows& dF) {
        F[1] = v[3] + v[4] - 1;
        F[2] = 2 * (v[3] + v[4] - 1);
        dF[1][3] = dF[1][4] = 1;
        dF[2][3] = dF[2][4] = 2;
        return true;
    });
    int result = -1;
    EXPECT_TRUE(nle(t.run, sys, result));
    EXPECT_TRUE(t.run.solver.singular);
    EXPECT_EQ(t.run.solver.k0, 2);
    EXPECT_LT(std::fabs(valueof(t.run, 3) - 0.45L), 1e-15L);
    EXPECT_LT(std::fabs(valueof(t.run, 4) - 0.55L), 1e-15L);
}

// The second singular value is 1e-14 of the first, below the cut of 1e-12:
// the direction it carries is dropped, so x1 - x2 keeps its start value. A
// full Newton step would have driven x1 - x2 to 0.
TEST(Nle, TruncationDropsANearlySingularDirection) {
    Fixture t;
    layout(t.run, pTandtwo(0.2L, 0.5L));
    TrueSystem sys(t.run, [](const Values& v, Values& F, Rows& dF) {
        F[1] = v[3] + v[4] - 1;
        F[2] = v[3] + v[4] - 1 + 1e-14L * (v[3] - v[4]);
        dF[1][3] = dF[1][4] = 1;
        dF[2][3] = 1 + 1e-14L;
        dF[2][4] = 1 - 1e-14L;
        return true;
    });
    int result = -1;
    EXPECT_TRUE(nle(t.run, sys, result));
    EXPECT_TRUE(t.run.solver.singular);
    EXPECT_LT(std::fabs(valueof(t.run, 3) - valueof(t.run, 4) + 0.3L), 1e-12L);
    EXPECT_LT(std::fabs(valueof(t.run, 3) + valueof(t.run, 4) - 1), 1e-12L);
}

// A root on the lower bound of x1, for each kind of bound. The first trial
// stops at 0.9 of the limit, so the approach is geometric, and no point
// asked for leaves the box (or touches a bound that may not be reached).
TEST(Nle, RootOnABoundOfTheBox) {
    for (const int code : {accwindow, acccomp, accmode, accinaccessible}) {
        SCOPED_TRACE(code);
        Fixture t;
        layout(t.run, {{"a", 0, 1, 0.6L, true, code, code}, {"b", 0, 1, 0.2L}});
        TrueSystem sys(t.run, [](const Values& v, Values& F, Rows& dF) {
            F[1] = v[1];
            F[2] = v[2] - 0.5L + v[1];
            dF[1][1] = dF[2][1] = dF[2][2] = 1;
            return true;
        });
        int result = -1;
        EXPECT_TRUE(nle(t.run, sys, result));
        EXPECT_GT(valueof(t.run, 1), 0.0L);
        EXPECT_LT(valueof(t.run, 1), 1e-6L);
        EXPECT_LT(std::fabs(valueof(t.run, 2) - 0.5L), 1e-6L);
        expectinside(t.run, sys);
        for (const Values& v : sys.visited) EXPECT_GT(v[1], 0.0L);
    }
}

// The root lies beyond the bound: the iteration comes to rest against it
// and ends with no room to move.
TEST(Nle, RootBeyondABound) {
    for (const int code : {acccomp, accinaccessible}) {
        SCOPED_TRACE(code);
        Fixture t;
        layout(t.run, {{"a", 0, 1, 0.6L, true, code, code}});
        t.run.solver.printlevel = 2;
        TrueSystem sys(t.run, [](const Values& v, Values& F, Rows& dF) {
            F[1] = v[1] + 0.1L;
            dF[1][1] = 1;
            return true;
        });
        int result = -1;
        EXPECT_FALSE(nle(t.run, sys, result));
        EXPECT_EQ(result, nleslim);
        EXPECT_NE(t.console.output.find("No solution (7):   slim too small (on edge looking out?)"),
                  std::string::npos);
        for (const Values& v : sys.visited) EXPECT_GT(v[1], 0.0L);
        EXPECT_LT(valueof(t.run, 1), 1e-5L);
    }
}

TEST(Nle, StartOutsideTheBox) {
    struct Case {
        const char* name;
        int printlevel;
        bool dogmin;
        int dogminprintlevel;
        bool stops;
        const char* text;
    };
    const Case cases[] = {
        {"print level 0", 0, false, 0, false, "illegal start   3 12\n"},
        {"print level 1", 1, false, 0, true, "       5.0       600    1.5000\n"},
        {"dogmin, quiet", 0, true, 0, false, ""},
        {"dogmin, talking", 0, true, 1, false, "solver could not start\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Fixture t;
        layout(t.run, {{"P(kbar)", 0, 10, 5.0L, false}, {"T(C)", 0, 2000, 873.15L, false}, {"a", 0, 1, 1.5L}});
        SolverState& s = t.run.solver;
        s.printlevel = c.printlevel;
        s.dogmin = c.dogmin;
        s.dogminprintlevel = c.dogminprintlevel;
        s.batch = 3;
        s.runno = 12;
        TrueSystem sys(t.run, [](const Values& v, Values& F, Rows& dF) {
            F[1] = v[3] - 0.5L;
            dF[1][3] = 1;
            return true;
        });
        int result = -1;
        if (c.stops) {
            const RunEnded e = smtest::expectended([&] { nle(t.run, sys, result); });
            EXPECT_EQ(e.where, "nle");
            EXPECT_EQ(e.message, "illegal start");
        } else {
            EXPECT_FALSE(nle(t.run, sys, result));
            EXPECT_EQ(result, nleillegalstart);
        }
        EXPECT_NE(t.console.output.find(c.text), std::string::npos) << t.console.output;
        if (c.dogmin && c.dogminprintlevel == 0) {
            EXPECT_EQ(t.console.output, "");
        }
        // A failed start at print level 0 raises the print level to 1.
        EXPECT_EQ(s.printlevel, c.printlevel == 0 && !c.dogmin ? 1 : c.printlevel);
    }
}

TEST(Nle, IllegalStartRowsShowPressureAndCelsius) {
    Fixture t;
    layout(t.run, {{"P(kbar)", 0, 10, 7.25L, false}, {"T(C)", 0, 2000, 923.65L, false}, {"a", 0, 1, -0.5L}});
    t.run.solver.printlevel = 0;
    TrueSystem sys(t.run, [](const Values&, Values& F, Rows&) {
        F[1] = 1;
        return true;
    });
    int result = -1;
    nle(t.run, sys, result);
    EXPECT_EQ(t.console.output,
              "illegal start   0  0\n"
              "   P(kbar)      T(C)         a\n"
              "       7.3       651   -0.5000\n");
}

// Systems without a root: the iteration settles where |F| is least and
// ends with the result that says so.
TEST(Nle, NoRoot) {
    struct Case {
        const char* name;
        std::vector<Unknown> u;
        TrueSystem::Fun f;
        std::vector<int> results;
    };
    const std::vector<Case> cases = {
        // Least squares puts x1 + x2 at 0.75 with residuals of -0.25 and 0.25.
        {"inconsistent linear",
         pTandtwo(0.2L, 0.3L),
         [](const Values& v, Values& F, Rows& dF) {
             F[1] = v[3] + v[4] - 1;
             F[2] = v[3] + v[4] - 0.5L;
             dF[1][3] = dF[1][4] = dF[2][3] = dF[2][4] = 1;
             return true;
         },
         {nledxstop}},
        // |F| has its least value, 0.01, at 0.5.
        {"parabola above zero",
         {{"a", 0, 1, 0.9L}},
         [](const Values& v, Values& F, Rows& dF) {
             F[1] = (v[1] - 0.5L) * (v[1] - 0.5L) + 0.01L;
             dF[1][1] = 2 * (v[1] - 0.5L);
             return true;
         },
         {nledxstop}},
        // At the least |F|, 1 at 0, the derivative vanishes: either no
        // direction at all (result 1) or one that leaves the box at once (7).
        {"x^2 + 1",
         {{"a", -1, 1, 0.7L}},
         [](const Values& v, Values& F, Rows& dF) {
             F[1] = v[1] * v[1] + 1;
             dF[1][1] = 2 * v[1];
             return true;
         },
         {nledxstop, nleslim}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Fixture t;
        layout(t.run, c.u);
        TrueSystem sys(t.run, c.f);
        int result = -1;
        EXPECT_FALSE(nle(t.run, sys, result));
        EXPECT_NE(std::find(c.results.begin(), c.results.end(), result), c.results.end())
            << result;
        EXPECT_LE(t.run.solver.iteration, 26);
        EXPECT_LT(sys.calls, 100);
    }
}

// Residuals of +-d at the least-squares point, steps below dxstop there:
// d above 1e-4 is no solution, below it a solution by the step test.
TEST(Nle, SmallStepNearOrFarFromASolution) {
    const struct {
        real d;
        int result;
    } cases[] = {{0.25L, nledxstop}, {2e-4L, nledxstop}, {5e-5L, nlesolved}, {1e-6L, nlesolved}};
    for (const auto& c : cases) {
        SCOPED_TRACE(static_cast<double>(c.d));
        Fixture t;
        layout(t.run, pTandtwo(0.2L, 0.3L));
        const real d = c.d;
        TrueSystem sys(t.run, [d](const Values& v, Values& F, Rows& dF) {
            F[1] = v[3] + v[4] - 0.6L - d;
            F[2] = v[3] + v[4] - 0.6L + d;
            dF[1][3] = dF[1][4] = dF[2][3] = dF[2][4] = 1;
            return true;
        });
        int result = -1;
        nle(t.run, sys, result);
        EXPECT_EQ(result, c.result);
        EXPECT_TRUE(t.run.solver.dxok);
        if (c.result == nlesolved) {
            EXPECT_STREQ(t.run.solver.convtag, "dx");
        }
        EXPECT_LT(std::fabs(valueof(t.run, 3) + valueof(t.run, 4) - 0.6L), 1e-15L);
    }
}

// F = v^3 at a triple root: each full Newton step keeps 2/3 of v, and the
// norm test needs |v| < 0.01. From 300, step 26 is the first below it; from
// 450, step 26 still is not, and the iteration limit ends the solve.
TEST(Nle, IterationLimitLetsThe26thStepFinish) {
    const struct {
        real start;
        int result;
    } cases[] = {{300.0L, nlesolved}, {450.0L, nleoverit}};
    for (const auto& c : cases) {
        SCOPED_TRACE(static_cast<double>(c.start));
        Fixture t;
        layout(t.run, {{"a", -1000, 1000, c.start}});
        t.run.solver.xstep[1] = 1e-30L;  // no end by the step test
        TrueSystem sys(t.run, [](const Values& v, Values& F, Rows& dF) {
            F[1] = v[1] * v[1] * v[1];
            dF[1][1] = 3 * v[1] * v[1];
            return true;
        });
        int result = -1;
        nle(t.run, sys, result);
        EXPECT_EQ(result, c.result);
        EXPECT_EQ(t.run.solver.iteration, 26);
        EXPECT_LT(std::fabs(valueof(t.run, 1) - c.start * std::pow(2.0L / 3.0L, 26)), 1e-12L);
    }
}

}  // namespace
}  // namespace sm

namespace sm {
namespace {

using nletest::layout;
using nletest::Rows;
using nletest::TrueSystem;
using nletest::Unknown;
using nletest::Values;

// Residual routines that go wrong: not-a-number or infinite values, and
// points they refuse. A non-finite value is always a failed calculation
// with its result number; a refused point is one too in the runs that
// tolerate it, and otherwise a fault of the run.
TEST(Nle, BadPointsFromTheResidualRoutine) {
    const real nan = std::numeric_limits<real>::quiet_NaN();
    const real inf = std::numeric_limits<real>::infinity();
    enum Bad { fnan, jinf, refuse, refusesoft };
    struct Case {
        const char* name;
        Bad bad;
        bool atstart;   // bad at the start point, else below v = 0.5
        int printlevel;
        bool montecarlo, dogmin;
        int result;     // -1: the run stops
    };
    const Case cases[] = {
        {"nan residual at start", fnan, true, 1, false, false, nleillegalstart},
        {"inf jacobian at start", jinf, true, 1, false, false, nleillegalstart},
        {"nan residual in a trial", fnan, false, 1, false, false, nlesoftfail},
        {"inf jacobian in a trial", jinf, false, 3, false, false, nlesoftfail},
        {"nan residual in a trial, verbose", fnan, false, 2, false, false, nlesoftfail},
        {"refused trial, print level 1", refuse, false, 1, false, false, -1},
        {"refused trial, print level 0", refuse, false, 0, false, false, nlesoftfail},
        {"refused trial, Monte Carlo", refuse, false, 1, true, false, nlesoftfail},
        {"refused trial, dogmin", refuse, false, 1, false, true, nlesoftfail},
        {"refused trial marked soft", refusesoft, false, 1, false, false, nlesoftfail},
        {"refused start marked soft", refusesoft, true, 1, false, false, nleillegalstart},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        MemoryConsole console;
        sm::Run run(console);
        layout(run, {{"a", 0, 1, 0.9L}});
        SolverState& s = run.solver;
        s.printlevel = c.printlevel;
        s.montecarlo = c.montecarlo;
        s.dogmin = c.dogmin;
        TrueSystem sys(run, [&](const Values& v, Values& F, Rows& dF) {
            F[1] = v[1] - 0.3L;
            dF[1][1] = 1;
            const bool bad = c.atstart || v[1] < 0.5L;
            if (!bad) return true;
            switch (c.bad) {
            case fnan: F[1] = nan; return true;
            case jinf: dF[1][1] = inf; return true;
            case refuse: return false;
            case refusesoft: s.softillegal = true; return false;
            }
            return true;
        });
        int result = -2;
        if (c.result == -1) {
            const RunEnded e = smtest::expectended([&] { nle(run, sys, result); });
            EXPECT_EQ(e.where, "fn");
            EXPECT_EQ(e.message, "not ok (1)");
            EXPECT_EQ(e.internal, 1);
            continue;
        }
        EXPECT_NO_THROW(nle(run, sys, result));
        EXPECT_EQ(result, c.result);
        if (c.printlevel == 2) {
            EXPECT_NE(console.output.find("No solution (10):   shouldn't get here"), std::string::npos);
        }
    }
}

TEST(Nle, FailureReportAtPrintLevel2) {
    MemoryConsole console;
    sm::Run run(console);
    layout(run,
           {{"P(kbar)", 0, 10, 5.0L, false},
            {"T(C)", 0, 2000, 873.15L, false},
            {"x1", 0, 1, 0.2L},
            {"x2", 0, 1, 0.3L},
            {"ol", 0, 1, 0.8L, false}},
           1);
    SolverState& s = run.solver;
    s.phi = 2;
    s.printlevel = 2;
    TrueSystem sys(run, [](const Values& v, Values& F, Rows& dF) {
        F[1] = v[3] + v[4] - 1;
        F[2] = v[3] + v[4] - 0.5L;
        dF[1][3] = dF[1][4] = dF[2][3] = dF[2][4] = 1;
        return true;
    });
    int result = -1;
    nle(run, sys, result);
    EXPECT_EQ(result, nledxstop);
    const std::string& out = console.output;
    EXPECT_EQ(out.substr(0, 60), std::string(59, '-') + "\n");
    const size_t at = out.find("No solution");
    ASSERT_NE(at, std::string::npos);
    EXPECT_EQ(out.substr(at),
              "No solution (1):   step too small distant from solution (dxstop)\n"
              "at which stage x was:\n"
              "   P(kbar)      T(C)        x1        x2\n"
              "    5.0000  600.0000    0.3250    0.4250\n"
              "                            ol\n"
              "                        0.4000\n" +
                  std::string(54, '_') + "\n\n");
}

TEST(Nle, ConvergedReportAtPrintLevel2) {
    MemoryConsole console;
    sm::Run run(console);
    layout(run, {{"a", 0, 1, 0.9L}});
    run.solver.printlevel = 2;
    TrueSystem sys(run, [](const Values& v, Values& F, Rows& dF) {
        F[1] = v[1] - 0.3L;
        dF[1][1] = 1;
        return true;
    });
    int result = -1;
    nle(run, sys, result);
    EXPECT_EQ(result, nlesolved);
    EXPECT_STREQ(run.solver.convtag, "ef");
    const std::string tail = "size of max residual (esize)\n";
    EXPECT_EQ(console.output.substr(console.output.size() - tail.size()), tail);
}

}  // namespace
}  // namespace sm

namespace sm {
namespace {

// The residual routine learns from fncalls which evaluation is the main
// point of an iteration, and hears of a solution through solved().
class Counting : public nletest::TrueSystem {
public:
    Counting(Run& run, Fun f) : TrueSystem(run, std::move(f)), run_(run) {}
    bool nlefunc(const NleVector& x, NleMatrix& J, NleVector& F, bool wantJ) override {
        seen.push_back({run_.solver.iteration, run_.solver.fncalls});
        return TrueSystem::nlefunc(x, J, F, wantJ);
    }
    void solved() override { ++solutions; }
    std::vector<std::pair<int, int>> seen;  // (iteration, fncalls)
    int solutions = 0;

private:
    Run& run_;
};

TEST(Nle, CountersAndTheSolvedHook) {
    for (const real target : {0.3L, 1.7L}) {  // a root in the box, and one beyond it
        SCOPED_TRACE(static_cast<double>(target));
        MemoryConsole console;
        sm::Run run(console);
        nletest::layout(run, {{"a", 0, 1, 0.9L}, {"b", 0, 1, 0.5L}});
        Counting sys(run, [target](const nletest::Values& v, nletest::Values& F,
                                   nletest::Rows& dF) {
            F[1] = v[1] * v[1] - target * target;
            F[2] = v[2] - 0.5L;
            dF[1][1] = 2 * v[1];
            dF[2][2] = 1;
            return true;
        });
        int result = -1;
        const bool ok = nle(run, sys, result);
        EXPECT_EQ(sys.solutions, ok ? 1 : 0);
        EXPECT_EQ(ok, target < 1);
        ASSERT_FALSE(sys.seen.empty());
        EXPECT_EQ(sys.seen[0], std::make_pair(0, 0));
        // Each iteration starts with fncalls 1, and its trials count on.
        for (size_t k = 1; k < sys.seen.size(); ++k) {
            const auto [it, calls] = sys.seen[k];
            if (it != sys.seen[k - 1].first) {
                EXPECT_EQ(it, sys.seen[k - 1].first + 1);
                EXPECT_EQ(calls, 1);
            } else {
                EXPECT_EQ(calls, sys.seen[k - 1].second + 1);
            }
        }
        EXPECT_EQ(run.solver.fncount + run.solver.iteration + 1, static_cast<int>(sys.seen.size()));
    }
}

}  // namespace
}  // namespace sm
