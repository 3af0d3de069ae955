// The scaling of each kind of unknown onto the box, and the box test.
#include "solver/unknowns.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace sm {
namespace {

TEST(Unknowns, EachKindMapsItsRangeOntoTheBox) {
    NleTables t;
    t.nx = 3;
    t.nm = 1;
    for (int i = 1; i <= 4; ++i) t.active[i] = true;
    setunknownP(t, 2.0L, 12.0L);
    setunknownT(t, 773.15L, 1273.15L);
    setunknowncomp(t, 3, 0.2L, 0.4L, true, false);
    setunknownmode(t, 4, 2.0L);
    const struct {
        int i;
        real lo, hi, step;  // true values at 0 and 1 of the box; step in box units
        int limlo, limhi;
    } cases[] = {
        {1, 2.0L, 12.0L, 0.001L, accwindow, accwindow},
        {2, 773.15L, 1273.15L, 0.0002L, accwindow, accwindow},
        {3, 0.2L, 0.4L, 0.0005L, accinaccessible, acccomp},
        // A mode is held as mode * phi; -0.25 and 1.25 of a mode are the ends.
        {4, -0.25L * 2, 1.25L * 2, 0.0001L, accmode, accmode},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.i);
        EXPECT_LT(std::fabs(scaledvalue(t, c.lo, c.i)), 1e-7L);
        EXPECT_LT(std::fabs(scaledvalue(t, c.hi, c.i) - 1), 1e-7L);
        EXPECT_LT(std::fabs(t.xstep[c.i] - c.step), 1e-18L);
        EXPECT_EQ(t.limlo[c.i], c.limlo);
        EXPECT_EQ(t.limhi[c.i], c.limhi);
        NleVector x{};
        x[c.i] = 0.3L;
        EXPECT_LT(std::fabs(scaledvalue(t, truevalue(t, x, c.i), c.i) - 0.3L), 1e-18L);
    }
    // An inactive entry is its true value.
    t.active[2] = false;
    NleVector x{};
    x[2] = 1000.0L;
    EXPECT_EQ(truevalue(t, x, 2), 1000.0L);
    EXPECT_EQ(scaledvalue(t, 1000.0L, 2), 1000.0L);
}

TEST(Unknowns, BoxTest) {
    NleTables t;
    t.nx = 3;
    t.active = {false, true, true, true};
    t.limlo = {0, acccomp, accinaccessible, acccomp};
    t.limhi = {0, acccomp, acccomp, accinaccessible};
    const real nan = std::numeric_limits<real>::quiet_NaN();
    const struct {
        real x1, x2, x3;
        int bad;
    } cases[] = {
        {0.0L, 0.5L, 0.5L, 0},   // an ordinary bound may be met
        {1.0L, 0.5L, 0.5L, 0},
        {0.5L, 0.0L, 0.5L, 2},   // a bound that may not be reached
        {0.5L, 0.5L, 1.0L, 3},
        {-1e-19L, 0.5L, 0.5L, 1},
        {0.5L, 0.5L, nan, 3},
        {1.5L, nan, 0.5L, 1},    // the first failure is told
    };
    for (const auto& c : cases) {
        NleVector x{};
        x[1] = c.x1;
        x[2] = c.x2;
        x[3] = c.x3;
        int bad = -1;
        EXPECT_EQ(inbox(t, x, bad), c.bad == 0);
        EXPECT_EQ(bad, c.bad);
    }
    // Inactive entries hold true values and are not tested.
    t.active[1] = false;
    NleVector x{};
    x[1] = 850;
    x[2] = x[3] = 0.5L;
    int bad = -1;
    EXPECT_TRUE(inbox(t, x, bad));
}

}  // namespace
}  // namespace sm
