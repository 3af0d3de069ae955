// Integer helpers, bit sets and the random generator.
#include <gtest/gtest.h>

#include "console/bitsets.h"
#include "console/intmath.h"
#include "console/random.h"
#include "testutil.h"

namespace {

TEST(Integers, GcdAndLcm) {
    EXPECT_EQ(sm::gcd(12, -18), 6);
    EXPECT_EQ(sm::gcd(0, -7), 7);
    const long long list[] = {12, 18, 30};
    EXPECT_EQ(sm::gcdlist(list, 3), 6);
    EXPECT_EQ(sm::gcdlist(list, 0), 0);
    EXPECT_EQ(sm::lcm(4, 6), 12);
    EXPECT_EQ(sm::lcm(0, 6), 0);
    EXPECT_EQ(sm::lcmlist(list, 3), 180);
    EXPECT_EQ(smtest::expectended([] { sm::lcm(3037000493LL, 3037000453LL * 3); }).message,
              "overflow");
}

TEST(Integers, CommonIntsClearsDenominators) {
    sm::real row[] = {0.5L, 1.0L / 3.0L, -2.0L};
    long long den = 0;
    sm::commonints(row, 3, den);
    EXPECT_EQ(den, 6);
    EXPECT_EQ(row[0], 3.0L);
    EXPECT_EQ(row[1], 2.0L);
    EXPECT_EQ(row[2], -12.0L);
}

TEST(BitSets, OneAndThreeWords) {
    sm::BitSet s = 0;
    sm::BSet(s, 0);
    sm::BSet(s, 30);
    EXPECT_TRUE(sm::BTst(s, 30));
    EXPECT_FALSE(sm::BTst(s, 5));
    EXPECT_EQ(smtest::expectended([&] { sm::BSet(s, 31); }).message, "out of range");

    sm::BitSet2 a{}, b{};
    sm::BSet2(a, 31);  // bit 1 of the second word
    EXPECT_EQ(a[1], 2u);
    sm::BSet2(a, 90);
    EXPECT_EQ(a[2], 1u << 30);
    EXPECT_EQ(smtest::expectended([&] { sm::BSet2(a, 91); }).where, "BSet2");
    EXPECT_EQ(smtest::expectended([&] { sm::BTst2(a, 91); }).where, "BTst2");
    EXPECT_FALSE(sm::BSubset2(a, b));  // b empty
    sm::BSet2(b, 31);
    sm::BSet2(b, 90);
    sm::BSet2(b, 4);
    EXPECT_TRUE(sm::BSubset2(a, b));
    EXPECT_FALSE(sm::BSubset2(b, a));
    sm::BitSet2 empty{};
    EXPECT_TRUE(sm::BSubset2(empty, b));
}

TEST(RandomNumbers, PublishedSequenceFromSeedsOneOneOne) {
    sm::Random r;
    r.seed(1, 1, 1);
    // x, y, z after one step: 171, 172, 170
    const double first = 171.0 / 30269 + 172.0 / 30307 + 170.0 / 30323;
    EXPECT_DOUBLE_EQ(r.next(), first);
    for (int i = 0; i < 1000; ++i) {
        const double v = r.next();
        ASSERT_GE(v, 0.0);
        ASSERT_LT(v, 1.0);
    }
}

}  // namespace
