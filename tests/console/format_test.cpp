// The number formats decide the layout of every table: each case is a value
// and what a reader of the tables must see.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "console/format.h"

using sm::real;

namespace {

struct Case {
    real value;
    int digits;
    bool fixed;
    const char* text;
};

TEST(Real2Str, PrintsWhatTheTablesShow) {
    const Case cases[] = {
        // significant digits
        {1234.5678L, 4, false, "1235"},
        {1234.5678L, 3, false, "1235"},
        {1234.5678L, 2, false, "1.2e+3"},
        {0.001234L, 3, false, "0.00123"},
        {1.5e-7L, 3, false, "1.50e-7"},
        {1000000.0L, 3, false, "1.00e+6"},
        {100.0L, 1, false, "1.e+2"},
        {1.0L, 3, false, "1.00"},
        {-2.5L, 3, false, "-2.50"},
        {9.9996L, 3, false, "10.0"},
        {0.5L, 1, false, "0.5"},
        {1.0L, 0, false, "1"},
        {99.5L, 2, false, "100"},
        {12345.0L, 8, false, "12345.000"},
        // fixed decimals
        {-273.15L, 2, true, "-273.15"},
        {0.5L, 3, true, "0.500"},
        {1234567890.0L, 2, true, "1.2e+9"},
        {0.00001L, 3, true, "0.000"},
        {-0.00001L, 3, true, "-0.000"},
        {0.125L, 2, true, "0.13"},
        {-0.125L, 2, true, "-0.13"},
        {2.5L, 0, true, "3"},
        {12345.0L, 0, true, "12345"},
        {123456.0L, 0, true, "1.e+5"},  // more than 5 digits past the asked 0,
        {1234567.0L, 0, true, "1.e+6"},
        {12.0L, 1, true, "12.0"},
        // zero and tiny values
        {0.0L, 3, true, "0"},
        {1e-13L, 4, false, "0"},
        {-1e-13L, 2, true, "0"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(sm::real2str(c.value, c.digits, c.fixed), c.text)
            << "value " << static_cast<double>(c.value) << " digits " << c.digits
            << (c.fixed ? " fixed" : " significant");
}

TEST(Real2Str, QuestionMarkForWhatCannotBePrinted) {
    EXPECT_EQ(sm::real2str(2e20L, 3, false), "?");
    EXPECT_EQ(sm::real2str(-2e20L, 3, true), "?");
    EXPECT_EQ(sm::real2str(std::numeric_limits<real>::infinity(), 3, true), "?");
    EXPECT_EQ(sm::real2str(std::numeric_limits<real>::quiet_NaN(), 3, false), "?");
    EXPECT_EQ(sm::int2str(std::numeric_limits<real>::quiet_NaN()), "?");
    // large but printable values switch to the significant form
    EXPECT_EQ(sm::real2str(9e19L, 3, true), "9.00e+19");
}

TEST(Real2Str, ResultNeverLongerThanAShortString) {
    EXPECT_LE(sm::real2str(-1.234567890123456789e19L, 30, false).size(), 22u);
}

TEST(Int2Str, RoundsHalvesAwayFromZero) {
    EXPECT_EQ(sm::int2str(2.5L), "3");
    EXPECT_EQ(sm::int2str(-2.5L), "-3");
    EXPECT_EQ(sm::int2str(7.0L), "7");
    EXPECT_EQ(sm::int2str(0.0L), "0");
    EXPECT_EQ(sm::int2str(1999.4999L), "1999");
}

TEST(PutField, PadsAppendsAndMarksOverflow) {
    std::string b;
    sm::putfield("ab", 5, b);
    EXPECT_EQ(b, "   ab");
    sm::putfield("cd", -4, b);
    EXPECT_EQ(b, "   abcd  ");
    sm::putfield("abcdef", 3, b);  // never cut
    EXPECT_EQ(b, "   abcd  abcdef");
    std::string c;
    sm::putfield("xyz", 3, c);
    sm::putfield("q", 0, c);
    EXPECT_EQ(c, "xyzq");

    std::string full(250, 'x');
    sm::putfield("y", 2, full);
    EXPECT_EQ(full.size(), 251u);
    EXPECT_EQ(full.back(), '\xA4');
    sm::putfield("later", 6, full);  // nothing more after the mark
    EXPECT_EQ(full.size(), 251u);

    std::string d;
    sm::putfield("abc", 300, d);  // more than 249 blanks of padding is none
    EXPECT_EQ(d, "abc");
}

TEST(PutField, NumbersThroughTheFormatter) {
    std::string b;
    sm::putreal(2, true, 8, b, 650.0L);
    sm::putint(5, b, 12.6L);
    EXPECT_EQ(b, "  650.00   13");
}

TEST(TimeStamp, ReadsLikeAClock) {
    std::tm t{};
    t.tm_hour = 9;
    t.tm_min = 5;
    t.tm_wday = 4;
    t.tm_mday = 19;
    t.tm_mon = 10;
    t.tm_year = 126;
    EXPECT_EQ(sm::maketimestamp(t), "9.05 on Thu 19 Nov,2026");
    t.tm_hour = 0;
    t.tm_min = 42;
    t.tm_wday = 0;
    t.tm_mday = 1;
    t.tm_mon = 0;
    EXPECT_EQ(sm::maketimestamp(t), "0.42 on Sun 1 Jan,2026");
}

}  // namespace
