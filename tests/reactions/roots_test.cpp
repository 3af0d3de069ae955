// The root search of reaction lines on curves whose roots are known.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "reactions/roots.h"
#include "testutil.h"

namespace sm {
namespace {

using Curve = std::function<void(real, real&, real&)>;

// A quadratic a (v - r1)(v - r2) with its slope.
Curve quadratic(real a, real r1, real r2) {
    return [=](real v, real& f, real& d) {
        f = a * (v - r1) * (v - r2);
        d = a * (2 * v - r1 - r2);
    };
}

Curve arctan(real root) {
    return [=](real v, real& f, real& d) {
        f = std::atan(v - root);
        d = 1 / (1 + (v - root) * (v - root));
    };
}

struct Roots {
    real v1, v2;
};

Roots search(const RootWindow& w, Curve c, bool havestart = false, real start = 0) {
    Roots r{start, 0};
    RootSearch<Curve> s(w, c);
    s.find(havestart, r.v1, r.v2);
    return r;
}

// A temperature-like window 0..10 with 2 decimals asked for: tolerance 0.001.
const RootWindow T010 = rootwindow(0, 10, 2, false);

TEST(RootSearch, TellsRootsInsideBelowAboveAndMissing) {
    struct Case {
        const char* title;
        Curve curve;
        real v1, v2;  // 1e21 and -1e21 compared exactly, lo - 1 and hi + 1 too
    };
    const std::vector<Case> cases = {
        {"one root, straight line", quadratic(1, 3, 1e6), 3, nosecondroot},
        {"rising, root above", [](real v, real& f, real& d) { f = v - 20; d = 1; }, 11, nosecondroot},
        {"rising, root below", [](real v, real& f, real& d) { f = v + 5; d = 1; }, -1, nosecondroot},
        {"falling, root above", [](real v, real& f, real& d) { f = 20 - v; d = -1; }, 11, nosecondroot},
        {"two roots inside, higher first", quadratic(1, 3, 7), 7, 3},
        {"turning, one inside and one above", quadratic(1, 3, 12), 3, 11},
        {"turning, one inside and one below", quadratic(1, -2, 7), 7, -1},
        {"turning, both outside", [](real v, real& f, real& d) { f = 30 - (v - 5) * (v - 5); d = -2 * (v - 5); },
         -1, 11},
        {"turning, no root at all", [](real v, real& f, real& d) { f = (v - 5) * (v - 5) + 1; d = 2 * (v - 5); },
         rootfailed, nosecondroot},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.title);
        const Roots r = search(T010, c.curve);
        if (c.v1 > 0 && c.v1 < 10)
            EXPECT_NEAR(static_cast<double>(r.v1), static_cast<double>(c.v1), 1e-3);
        else
            EXPECT_EQ(r.v1, c.v1);
        if (c.v2 > 0 && c.v2 < 10)
            EXPECT_NEAR(static_cast<double>(r.v2), static_cast<double>(c.v2), 1e-3);
        else
            EXPECT_EQ(r.v2, c.v2);
    }
}

TEST(RootSearch, CloseRootsFromBothSidesCountAsOne) {
    // Near a double root Newton gains a bit a step, so start close.
    const Roots r = search(rootwindow(3.9L, 4.1L, 2, false), quadratic(1, 4, 4.0005L));
    EXPECT_NEAR(static_cast<double>(r.v1), 4.0, 2e-3);
    EXPECT_EQ(r.v1, r.v2);
}

TEST(RootSearch, NewtonIsClampedOnceAndHalvingTakesOverWhenItWanders) {
    // From 0 the first step overshoots far above 10: clamped to 10, then home.
    Roots r = search(T010, arctan(9), true, 0);
    EXPECT_NEAR(static_cast<double>(r.v1), 9.0, 1e-3);
    EXPECT_EQ(r.v2, nosecondroot);
    // Far from the root Newton on arctan diverges: out, clamped, out again.
    r = search(T010, arctan(5), true, 0);
    EXPECT_EQ(r.v1, rootfailed);
    // Without a start the bracket saves it: Newton from the middle wanders,
    // halving brings it close, Newton finishes.
    r = search(T010, arctan(2));
    EXPECT_NEAR(static_cast<double>(r.v1), 2.0, 1e-3);
    EXPECT_EQ(r.v2, nosecondroot);
    // A start outside the window is a failure at once.
    r = search(T010, arctan(2), true, 11);
    EXPECT_EQ(r.v1, rootfailed);
    EXPECT_EQ(r.v2, nosecondroot);
}

TEST(RootSearch, PressureToleranceIsRelativeBelowOneKbar) {
    const RootWindow w = rootwindow(0.001L, 1, 3, true);
    const Roots r = search(w, quadratic(1, 0.05L, -3));
    EXPECT_NEAR(static_cast<double>(r.v1), 0.05, 0.05 * 1e-4);
    // A root at zero pressure: the tolerance is held above nothing and the
    // search ends with a number, never a NaN.
    const RootWindow w0 = rootwindow(0, 1, 3, true);
    const Roots r0 = search(w0, quadratic(1, 0, -3));
    EXPECT_TRUE(std::isfinite(static_cast<double>(r0.v1)));
}

TEST(RootSearch, WindowsTakeTheirToleranceFromTheDigitsAskedFor) {
    EXPECT_NEAR(static_cast<double>(rootwindow(0, 1, 2, false).base), 1e-3, 1e-18);
    EXPECT_NEAR(static_cast<double>(rootwindow(0, 1, 3, true).base), 1e-4, 1e-18);
    EXPECT_EQ(rootwindow(0, 1, 2, false).steplimit, 9);
    EXPECT_EQ(rootwindow(0, 1, 5, true).steplimit, 15);
    const RunEnded e = smtest::expectended([] { rootwindow(0, 1, 10, true); });
    EXPECT_EQ(e.where, "tentopower");
    EXPECT_EQ(e.message, "stuffed");
}

}  // namespace
}  // namespace sm
