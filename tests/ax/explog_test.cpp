// The activity models' exponential and logarithm against the library's.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "ax/explog.h"

namespace sm {
namespace {

constexpr real ulp = 1.0842021724855044e-19L;  // 2^-63

// Relative difference in units of the last place.
real ulps(real got, real want) { return std::fabs(got - want) / (std::fabs(want) * ulp); }

TEST(ExpLog, ExponentialAgreesWithTheLibrary) {
    real worst = 0;
    // A deterministic sweep over the ordinary range and near zero.
    for (int i = -200000; i <= 200000; ++i) {
        const real y = static_cast<real>(i) * 0.0537L + 1e-7L * (i % 7);
        worst = std::max(worst, ulps(rexp(y), std::exp(y)));
        const real s = static_cast<real>(i) * 1.3e-9L;
        worst = std::max(worst, ulps(rexp(s), std::exp(s)));
    }
    EXPECT_LT(static_cast<double>(worst), 4.0);
    EXPECT_EQ(rexp(0), 1);
    EXPECT_EQ(rexp(std::numeric_limits<real>::infinity()), std::numeric_limits<real>::infinity());
    EXPECT_EQ(rexp(-std::numeric_limits<real>::infinity()), 0);
    EXPECT_TRUE(std::isnan(rexp(std::numeric_limits<real>::quiet_NaN())));
    EXPECT_EQ(rexp(12000), std::exp(12000.0L));
}

TEST(ExpLog, LogarithmAgreesWithTheLibrary) {
    real worst = 0;
    for (int i = 1; i <= 400000; ++i) {
        const real x = static_cast<real>(i) * 2.7183e-5L;             // 2.7e-5 .. 10.9
        worst = std::max(worst, ulps(rlog(x), std::log(x)));
        const real near1 = 1 + static_cast<real>(i - 200000) * 3.1e-11L;  // about 1
        if (near1 != 1) worst = std::max(worst, ulps(rlog(near1), std::log(near1)));
        const real wide = std::exp(static_cast<real>(i - 200000) * 0.0551L);  // e^-11020 .. e^11020
        worst = std::max(worst, ulps(rlog(wide), std::log(wide)));
    }
    EXPECT_LT(static_cast<double>(worst), 4.0);
    EXPECT_EQ(rlog(1), 0);
    EXPECT_EQ(rlog(0), -std::numeric_limits<real>::infinity());
    EXPECT_TRUE(std::isnan(rlog(-1)));
    EXPECT_TRUE(std::isnan(rlog(std::numeric_limits<real>::quiet_NaN())));
    const real tiny = std::numeric_limits<real>::denorm_min() * 1000;
    EXPECT_EQ(rlog(tiny), std::log(tiny));
}

}  // namespace
}  // namespace sm
