// Words and tokens as every text file and console reply is read.
#include <gtest/gtest.h>

#include "console/scan.h"
#include "testutil.h"

using sm::real;

namespace {

TEST(Words, SplitOnBlanksAndCutAt22) {
    sm::WordList w;
    sm::string2strings("  abc\tdef\xCAghi   jkl ", w);
    ASSERT_EQ(w.count, 4);
    EXPECT_EQ(w[1], "abc");
    EXPECT_EQ(w[3], "ghi");
    EXPECT_EQ(w[5], "");
    sm::string2strings("abcdefghijklmnopqrstuvwxyz0123 abcdefghijklmnopqrstuvXYZ", w);
    EXPECT_EQ(w[1], "abcdefghijklmnopqrstuv");
    EXPECT_EQ(w[1], w[2]);  // equal once cut
    sm::string2strings("   ", w);
    EXPECT_EQ(w.count, 0);
}

TEST(Words, FourHundredAllowedFourHundredAndOneFatal) {
    std::string line;
    for (int i = 1; i <= 400; ++i) line += "w" + std::to_string(i) + " ";
    sm::WordList w;
    sm::string2strings(line, w);
    EXPECT_EQ(w.count, 400);
    const auto e = smtest::expectended([&] { sm::string2strings(line + "extra", w); });
    EXPECT_EQ(e.where, "string2strings");
    EXPECT_EQ(e.message, "too many \"extra\"");
}

TEST(Words, CommentCutOnlyAtStartOfWord) {
    sm::WordList w;
    sm::string2strings("abc%def ghi %rest of line", w);
    sm::cutcomment(w);
    ASSERT_EQ(w.count, 2);
    EXPECT_EQ(w[1], "abc%def");
    EXPECT_EQ(w[3], "");
}

TEST(Tokens, Classes) {
    const std::pair<const char*, int> cases[] = {
        {"", 0},       {"   ", 0},     {"5", 1},       {"x", 4},       {"-", 4},
        {"-5", 1},     {"123", 1},     {"0.5", 2},     {".5", 4},      {"+5", 4},
        {"1.e5", 4},   {"1e+5", 2},    {"1E-3", 2},    {"2.5e3", 2},   {"5.", 4},
        {"1e", 4},     {"1e-", 4},     {"--5", 4},     {"5-", 4},      {"1/2", 3},
        {"1/", 4},     {"/2", 4},      {"1/0", 3},     {"-3/4", 3},    {"1.5/2", 4},
        {"1/2.5", 4},  {"1/2e3", 4},   {"e5", 4},      {"1..2", 4},    {"-.5", 4},
        {"12a", 4},    {" 42 ", 1},
    };
    for (const auto& [s, cls] : cases) EXPECT_EQ(sm::whatisstring(s), cls) << '"' << s << '"';
}

TEST(Tokens, RealConversionAndRepairText) {
    real v;
    std::string m;
    EXPECT_TRUE(sm::string2real("1e+5", v, m));
    EXPECT_EQ(v, 100000.0L);
    EXPECT_TRUE(sm::string2real("-273.15", v, m));
    EXPECT_NEAR(static_cast<double>(v), -273.15, 1e-15);
    EXPECT_TRUE(sm::string2real(".5", v, m));  // accepted where a number is asked
    EXPECT_EQ(v, 0.5L);
    EXPECT_TRUE(sm::string2real("0.1", v, m));
    EXPECT_EQ(v, 1.0L / 10.0L);  // digits accumulated, then scaled once
    EXPECT_FALSE(sm::string2real("abc", v, m));
    EXPECT_EQ(m, "abc not a real: replace with");
    EXPECT_FALSE(sm::string2real("1e", v, m));
    EXPECT_FALSE(sm::string2real(".", v, m));
    EXPECT_FALSE(sm::string2real("+5", v, m));
    EXPECT_FALSE(sm::string2real("1e99999999", v, m));  // not finite: refused
    EXPECT_TRUE(sm::string2real("1e-99999999", v, m));
    EXPECT_EQ(v, 0.0L);
    EXPECT_FALSE(sm::string2real("  ", v, m));
    EXPECT_EQ(m, "");
}

TEST(Tokens, IntegerConversionLimits) {
    int v;
    std::string m;
    EXPECT_TRUE(sm::string2int("32766", v, m));
    EXPECT_EQ(v, 32766);
    EXPECT_FALSE(sm::string2int("32767", v, m));
    EXPECT_EQ(m, "32767 too large: replace with");
    EXPECT_FALSE(sm::string2int("-32767", v, m));
    EXPECT_TRUE(sm::string2int("2.0", v, m));
    EXPECT_EQ(v, 2);
    EXPECT_TRUE(sm::string2int("1e3", v, m));
    EXPECT_EQ(v, 1000);
    EXPECT_FALSE(sm::string2int("2.5", v, m));
    EXPECT_EQ(m, "2.5 not an integer: replace with");
    EXPECT_FALSE(sm::string2int("two", v, m));
    EXPECT_EQ(m, "two not an integer: replace with");
}

TEST(Tokens, Rationals) {
    int n, d;
    std::string m;
    EXPECT_TRUE(sm::string2rational("3/4", n, d, m));
    EXPECT_EQ(n, 3);
    EXPECT_EQ(d, 4);
    EXPECT_FALSE(sm::string2rational("1/0", n, d, m));
    EXPECT_EQ(m, "zero in rational");
    EXPECT_FALSE(sm::string2rational("0/4", n, d, m));
    EXPECT_FALSE(sm::string2rational("5", n, d, m));
    EXPECT_EQ(m, "lstring, not a rational");
}

TEST(Tokens, GetRealsCountsAndStops) {
    sm::WordList w;
    sm::string2strings("calcP 5 1/2 7.5 abc 9", w);
    real v[40];
    int count = 3;
    EXPECT_TRUE(sm::getreals(w, w.count, 1, v, count));
    EXPECT_EQ(v[1], 0.5L);
    count = 0;  // as many as follow
    EXPECT_TRUE(sm::getreals(w, w.count, 1, v, count));
    EXPECT_EQ(count, 3);
    count = -4;  // at least four
    EXPECT_FALSE(sm::getreals(w, w.count, 1, v, count));
    count = 6;  // more than the line holds
    EXPECT_FALSE(sm::getreals(w, w.count, 1, v, count));
    int iv[40];
    sm::string2strings("x 1 2 3.5", w);
    count = 0;
    EXPECT_TRUE(sm::getints(w, w.count, 1, iv, count));
    EXPECT_EQ(count, 2);
}

TEST(Tokens, FatalGettersSayWhatTheyExpected) {
    EXPECT_EQ(sm::getinteger(sm::tokint, "12", "count"), 12);
    auto e = smtest::expectended([] { sm::getinteger(sm::toktext, "abc", "no of phases"); });
    EXPECT_EQ(e.where, "getinteger");
    EXPECT_EQ(e.message, "expecting an integer (1); got: abc - no of phases");
    e = smtest::expectended([] { sm::getinteger(sm::tokint, "40000", "n"); });
    EXPECT_EQ(e.message, "expecting an integer (2); got: 40000 - n");
    e = smtest::expectended([] { sm::getsingle(sm::toktext, "q", "W"); });
    EXPECT_EQ(e.where, "reading");
    EXPECT_EQ(e.message, "expecting a single (1); got: q - W");
    EXPECT_EQ(sm::getsingle(sm::tokrational, "1/4", "x"), 0.25L);
    int n, d;
    sm::getrational(sm::tokreal, "0.5", n, d, "coef");
    EXPECT_EQ(n, 1);
    EXPECT_EQ(d, 2);
    e = smtest::expectended([&] { sm::getrational(sm::toktext, "z", n, d, "coef"); });
    EXPECT_EQ(e.message, "expecting a rational (4); got: z - coef");
    sm::sstring name;
    e = smtest::expectended([&] { sm::getname(name, sm::tokint, "5", "phase name"); });
    EXPECT_EQ(e.message, "expecting a name; got: 5 - phase name");
    e = smtest::expectended([] { sm::long2int(40000); });
    EXPECT_EQ(e.where, "li2i");
}

TEST(Numbers, Real2Rational) {
    long long n, d;
    sm::real2rational(0.75L, n, d);
    EXPECT_EQ(n, 3);
    EXPECT_EQ(d, 4);
    sm::real2rational(-1.0L / 3.0L, n, d);
    EXPECT_EQ(n, -1);
    EXPECT_EQ(d, 3);
    sm::real2rational(2.0004L, n, d);  // within 0.001 of an integer
    EXPECT_EQ(n, 2);
    EXPECT_EQ(d, 1);
    sm::real2rational(0.142857142857L, n, d);
    EXPECT_EQ(n, 1);
    EXPECT_EQ(d, 7);
}

TEST(Numbers, DecimalsNeededAndPowersOfTen) {
    EXPECT_EQ(sm::decimalsneeded(5.0L), 1);
    EXPECT_EQ(sm::decimalsneeded(0.5L), 1);
    EXPECT_EQ(sm::decimalsneeded(0.25L), 2);
    EXPECT_EQ(sm::decimalsneeded(12.125L), 3);
    EXPECT_EQ(sm::decimalsneeded(0.05L), 2);
    EXPECT_EQ(sm::tentopower(0), 1.0L);
    EXPECT_EQ(sm::tentopower(3), 1000.0L);
    EXPECT_EQ(sm::tentopower(-2), 1.0L / 100.0L);
    EXPECT_NEAR(static_cast<double>(sm::tentopower(100) / 1e100L), 1.0, 1e-15);
}

}  // namespace
