// The line search: cubic interpolation, the first trial, the cap on the
// step and the ways a search can fail.
#include <gtest/gtest.h>

#include <cmath>

#include "solver/nle.h"
#include "solver/nletestsystem.h"

namespace sm {
namespace {

using nletest::layout;
using nletest::Rows;
using nletest::TrueSystem;
using nletest::Unknown;
using nletest::valueof;
using nletest::Values;

TEST(Cubic, StationaryPointsOfKnownCurves) {
    struct Case {
        const char* name;
        real a, fa, sa, b, fb, sb;
        real r1, r2;
    };
    const Case cases[] = {
        // t^3 - 3t on 0..2: stationary at -1 and 1.
        {"cubic", 0, 0, -3, 2, 2, 9, -1, 1},
        // (t - 0.5)^2 on 0..1: the cubic term vanishes.
        {"parabola", 0, 0.25L, -1, 1, 0.25L, 1, 0.5L, 0.5L},
        // t^3 + t rises everywhere: no stationary point; -a is outside.
        {"monotone", 1, 2, 4, 2, 10, 13, -1, -1},
        // A straight line: -a, the lower end when a is 0.
        {"line", 0, 1, -1, 1, 0, -1, 0, 0},
        // (t - 1)^2 (t + 2) = t^3 - 3t + 2 on 0.5..3: minimum at 1.
        {"shifted", 0.5L, 0.625L, -2.25L, 3, 20, 24, -1, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        real r1 = 99, r2 = 99;
        cubic(c.a, c.fa, c.sa, c.b, c.fb, c.sb, r1, r2);
        EXPECT_LT(std::fabs(r1 - c.r1), 1e-17L);
        EXPECT_LT(std::fabs(r2 - c.r2), 1e-17L);
    }
    // (t - 0.3)^2 with the data rounded: the cubic term is a rounding error
    // beside the quadratic one, yet the minimum comes out to full precision
    // and the other stationary point lies far outside.
    real r1 = 0, r2 = 0;
    cubic(0, 0.09L, -0.6L, 1, 0.49L, 1.4L, r1, r2);
    EXPECT_LT(std::fabs(r2 - 0.3L), 1e-17L);
    EXPECT_GT(std::fabs(r1), 1e10L);
}

struct Outcome {
    int result = -1;
    MemoryConsole console;
    std::unique_ptr<Run> run = std::make_unique<Run>(console);
};

// F = v - 0.3 from 0.9 with a Jacobian that the routine reports wrongly.
void solvewithslope(Outcome& o, real reported) {
    layout(*o.run, {{"a", 0, 1, 0.9L}});
    TrueSystem sys(*o.run, [reported](const Values& v, Values& F, Rows& dF) {
        F[1] = v[1] - 0.3L;
        dF[1][1] = reported;
        return true;
    });
    nle(*o.run, sys, o.result);
}

// With the sign of the Jacobian wrong the direction climbs: no point of the
// interval ever decreases f and the search gives up after ten narrowings.
TEST(Steplength, NoDecreaseInTheInterval) {
    Outcome o;
    solvewithslope(o, -1);
    EXPECT_EQ(o.result, nlenovalue);
    EXPECT_EQ(o.run->solver.iteration, 1);
    EXPECT_EQ(valueof(*o.run, 1), 0.9L);  // no step was taken
}

// A Jacobian 100 times too large: the direction is 1/100 of the Newton step,
// the step is capped at 50, and f still falls there. Each step halves the
// residual without the slope flattening, and the third such step in a row
// ends the solve (that step is not taken).
TEST(Steplength, ThreeStepsNotReduced) {
    Outcome o;
    solvewithslope(o, 100);
    EXPECT_EQ(o.result, nlenotreduced);
    EXPECT_EQ(o.run->solver.iteration, 3);
    EXPECT_EQ(o.run->solver.accessibility, acccap);
    EXPECT_EQ(o.run->solver.slim, 50);
    EXPECT_LT(std::fabs(valueof(*o.run, 1) - 0.45L), 1e-10L);
}

// A limit of exactly 1 (a root on the bound): the first trial is 0.9 of it.
TEST(Steplength, FirstTrialAtNineTenthsOfAUnitLimit) {
    MemoryConsole console;
    sm::Run run(console);
    layout(run, {{"a", 0, 1, 0.6L}});
    TrueSystem sys(run, [](const Values& v, Values& F, Rows& dF) {
        F[1] = v[1];
        dF[1][1] = 1;
        return true;
    });
    int result = -1;
    nle(run, sys, result);
    ASSERT_GE(sys.visited.size(), 3u);
    // Start, start of iteration 1, first trial.
    EXPECT_LT(std::fabs(sys.visited[2][1] - 0.06L), 1e-17L);
}

TEST(Steplength, NoRoomToMove) {
    struct Case {
        const char* name;
        std::vector<Unknown> u;
        bool limit;  // 1 - x - y > 0
        TrueSystem::Fun f;
    };
    const std::vector<Case> cases = {
        // At the lower bound of its box, x is pushed further down.
        {"on the edge looking out",
         {{"x", 0, 1, 0.0L}},
         false,
         [](const Values& v, Values& F, Rows& dF) {
             F[1] = v[1] + 0.5L;
             dF[1][1] = 1;
             return true;
         }},
        // The Newton direction runs exactly along the linear limit.
        {"along a linear limit",
         {{"x", 0, 1, 0.4L}, {"y", 0, 1, 0.4L}},
         true,
         [](const Values& v, Values& F, Rows& dF) {
             F[1] = v[1] - 0.2L;
             F[2] = v[2] - 0.6L;
             dF[1][1] = dF[2][2] = 1;
             return true;
         }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        MemoryConsole console;
        sm::Run run(console);
        layout(run, c.u);
        SolverState& s = run.solver;
        if (c.limit) {
            s.nvarlim = 1;
            s.varlim[1].num[1] = s.varlim[1].num[2] = -1;
            s.varlim[1].num[3] = 1;
        }
        s.printlevel = 2;
        TrueSystem sys(run, c.f);
        int result = -1;
        EXPECT_FALSE(nle(run, sys, result));
        EXPECT_EQ(result, nleslim);
        EXPECT_EQ(s.iteration, 1);
        EXPECT_TRUE(s.x == [&] {
            NleVector x{};
            for (size_t i = 0; i < c.u.size(); ++i) x[i + 1] = c.u[i].start;
            return x;
        }());
        EXPECT_NE(console.output.find("No solution (7):   slim too small (on edge looking out?)\n"),
                  std::string::npos);
    }
}

}  // namespace
}  // namespace sm
