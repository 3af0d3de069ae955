// The typed readers of the info record: good, bad and missing values, and
// every repair of pressures and temperatures.
#include "script/readers.h"

#include "script/scriptinfo.h"
#include "scriptfixture.h"

namespace {

using smtest::ScriptRun;

// Loads the info record as the items of a line "kw <items>".
void items(ScriptRun& t, const std::string& itemtext, bool typed = true) {
    sm::WordList words;
    sm::string2strings("kw " + itemtext, words);
    sm::parseinfo(t.run.script.info, "kw", words, words.count, 1, typed);
}

struct Fault {
    const char* items;
    const char* message;   // what the screen shows
    const char* bombtext;  // the fatal text under strictscripting
    const char* closing;
};

TEST(ScriptReal, FaultsAreToldCountedAndFatalWhenStrict) {
    const Fault cases[] = {
        {"", "for kw, no info given: one real expected", "real expected",
         "a real will be prompted for"},
        {"abc", "for kw, info given is \"abc\"", "real expected", "a real will be prompted for"},
        {"1.5", "for kw, info given is \"1.5\", but limits are 0 to 1.000",
         "real inappropriate", "a real will be prompted for"},
    };
    for (const Fault& c : cases) {
        ScriptRun t;
        items(t, c.items);
        EXPECT_FALSE(sm::scriptreal(t.run, "kw", 0, 1)) << c.items;
        EXPECT_TRUE(t.said(std::string("\n") + c.message + "\n" + c.closing + "\n")) << t.con.output;
        EXPECT_EQ(t.problems(), 1);

        ScriptRun strict;
        strict.run.script.control.strictscripting = true;
        items(strict, c.items);
        const sm::RunEnded e = smtest::expectended([&] { sm::scriptreal(strict.run, "kw", 0, 1); });
        EXPECT_EQ(e.where, "reading script for kw");
        EXPECT_EQ(e.message, c.bombtext);
        EXPECT_TRUE(strict.said(c.message));
        EXPECT_FALSE(strict.said(c.closing));
    }
}

TEST(ScriptReal, AcceptsNumbersOfEveryClassAndEqualLimitsMeanNone) {
    const struct {
        const char* item;
        long double value;
    } cases[] = {{"0.25", 0.25L}, {"1", 1}, {"1/4", 0.25L}, {"1e-1", 0.1L}};
    for (const auto& c : cases) {
        ScriptRun t;
        items(t, c.item);
        EXPECT_TRUE(sm::scriptreal(t.run, "kw", 0, 1)) << c.item;
        EXPECT_NEAR(static_cast<double>(t.run.script.info.inforeal[1]), static_cast<double>(c.value), 1e-15);
    }
    ScriptRun t;
    items(t, "-1e5");
    EXPECT_TRUE(sm::scriptreal(t.run, "kw", 3, 3));
    EXPECT_EQ(t.problems(), 0);
}

TEST(ScriptInt, FaultsAndLimits) {
    const Fault cases[] = {
        {"", "for kw, no info given: one integer expected", "integer expected",
         "an integer will be prompted for"},
        {"2.5", "for kw, info given is \"2.5\"", "integer expected", "an integer will be prompted for"},
        {"40000", "for kw, info given is \"40000\"", "integer expected",
         "an integer will be prompted for"},
        {"7", "for kw, info given is \"7\", but limits are 0 to 6", "integer inappropriate",
         "an integer will be prompted for"},
    };
    for (const Fault& c : cases) {
        ScriptRun t;
        items(t, c.items);
        EXPECT_FALSE(sm::scriptint(t.run, "kw", 0, 6)) << c.items;
        EXPECT_TRUE(t.said(std::string(c.message) + "\n" + c.closing)) << t.con.output;
        ScriptRun strict;
        strict.run.script.control.strictscripting = true;
        items(strict, c.items);
        EXPECT_EQ(smtest::expectended([&] { sm::scriptint(strict.run, "kw", 0, 6); }).message,
                  c.bombtext);
    }
    ScriptRun t;
    items(t, "6");
    EXPECT_TRUE(sm::scriptint(t.run, "kw", 0, 6));
    EXPECT_EQ(t.run.script.info.infoint[1], 6);
}

TEST(ScriptPlural, RealsIntsAndStrings) {
    {
        ScriptRun t;
        items(t, "1 2 x 4");
        int n = 4;
        EXPECT_FALSE(sm::scriptreals(t.run, "kw", n));
        EXPECT_TRUE(t.said("for kw, info includes \"x\", not just reals\n"
                           "info in the script needs to be corrected"));
    }
    {
        ScriptRun t;
        items(t, "1 2");
        int n = 3;
        EXPECT_FALSE(sm::scriptreals(t.run, "kw", n));
        EXPECT_TRUE(t.said("for kw, only 2 numbers in a line, but 3 needed"));
    }
    {
        ScriptRun t;
        items(t, "");
        int n = 0;
        EXPECT_FALSE(sm::scriptreals(t.run, "kw", n));
        EXPECT_TRUE(t.said("for kw, no info given: one or more reals expected"));
    }
    {
        ScriptRun t;
        items(t, "1 2.5 3/4");
        int n = 0;
        EXPECT_TRUE(sm::scriptreals(t.run, "kw", n));
        EXPECT_EQ(n, 3);
    }
    {
        ScriptRun t;
        items(t, "1 2.5");
        int n = 0;
        EXPECT_FALSE(sm::scriptints(t.run, "kw", n));
        EXPECT_TRUE(t.said("for kw, info includes \"2.5\" not just integers"));
        items(t, "1");
        n = 2;
        EXPECT_FALSE(sm::scriptints(t.run, "kw", n));
        EXPECT_TRUE(t.said("for kw, only 1 integers in a line, but 2 needed"));
        items(t, "");
        n = 0;
        EXPECT_FALSE(sm::scriptints(t.run, "kw", n));
        EXPECT_TRUE(t.said("for kw, no info given: one or more integers expected"));
        EXPECT_EQ(t.problems(), 3);
    }
    {
        ScriptRun t;
        items(t, "");
        EXPECT_FALSE(sm::scriptstring(t.run, "kw"));
        EXPECT_TRUE(t.said("for kw, no info given: one string expected\n"
                           "a string is needed (or will be prompted for)"));
        int n = 0;
        EXPECT_FALSE(sm::scriptstrings(t.run, "kw", n));
        EXPECT_TRUE(t.said("for kw, no info given: one or more strings expected"));
        items(t, "a b c");
        EXPECT_TRUE(sm::scriptstrings(t.run, "kw", n));
        EXPECT_EQ(n, 3);
    }
}

TEST(ScriptPT, SingleValuesRepairToTheLimits) {
    const struct {
        bool isP;
        const char* item;
        long double stored;
        int result;
        const char* message;
    } cases[] = {
        {true, "5", 5, 0, nullptr},
        {true, "0.0001", 0.0009L, 1, "for kw, the one P needs to be greater than 0.0009 kbar; default used"},
        {true, "2000", 1500, 1, "for kw, the one P needs to be less than 1500.0 kbar; default used"},
        {false, "10.5", 283.65L, 0, nullptr},
        {false, "9", 283, 1, "for kw, the one T needs to be greater than 10\xA1" "C; default used"},
        {false, "2800", 3000, 1, "for kw, the one T needs to be less than 2727\xA1" "C; default used"},
    };
    for (const auto& c : cases) {
        ScriptRun t;
        t.run.script.control.strictscripting = true;  // these readers never stop a run
        items(t, c.item);
        long double v = -1;
        const int r = c.isP ? sm::scriptP(t.run, "kw", v, 1) : sm::scriptT(t.run, "kw", v, 1);
        EXPECT_EQ(r, c.result) << c.item;
        EXPECT_NEAR(static_cast<double>(v), static_cast<double>(c.stored), 1e-12) << c.item;
        EXPECT_EQ(t.problems(), c.result);
        if (c.message) {
            EXPECT_TRUE(t.said(c.message)) << t.con.output;
        }
    }
}

TEST(ScriptPT, NegativePressuresAfterNegP) {
    ScriptRun t;
    t.act("negP");
    items(t, "-20");
    long double v = 0;
    EXPECT_EQ(sm::scriptP(t.run, "kw", v, 1), 0);
    EXPECT_EQ(v, -20);
    items(t, "-60");
    EXPECT_EQ(sm::scriptP(t.run, "kw", v, 1), 1);
    EXPECT_TRUE(t.said("for kw, the one P needs to be greater than -50.0000 kbar; default used"));
}

TEST(ScriptRange, EveryRepairOfAPressureRange) {
    const struct {
        const char* items;
        long double lo, hi;
        int result, problems;
        const char* message;
    } cases[] = {
        {"2 8", 2, 8, 0, 0, nullptr},
        {"8 2", 2, 8, 1, 1, "for kw, the 2nd P in the P range must be larger than the 1st P"},
        {"0 2000", -1, -2, 1, 1,
         "for kw, the P range needs to be within 0.0009 kbar to 1500.0 kbar; default used"},
        {"0 8", -1, 8, 1, 1,
         "for kw, the bottom of the P range needs to be greater than 0.0009 kbar; default used"},
        {"2 2000", 2, -2, 1, 1,
         "for kw, the top of the P range needs to be less than 1500.0 kbar; default used"},
        {"2000 0", -1, -2, 1, 2,
         "for kw, the P range needs to be within 0.0009 kbar to 1500.0 kbar; default used"},
    };
    for (const auto& c : cases) {
        ScriptRun t;
        items(t, c.items);
        long double lo = -1, hi = -2;
        EXPECT_EQ(sm::scriptPrange(t.run, "kw", lo, hi, 1), c.result) << c.items;
        EXPECT_EQ(lo, c.lo) << c.items;
        EXPECT_EQ(hi, c.hi) << c.items;
        EXPECT_EQ(t.problems(), c.problems) << c.items;
        if (c.message) {
            EXPECT_TRUE(t.said(c.message)) << t.con.output;
        }
    }
}

TEST(ScriptRange, TemperatureRangesAreStoredInKelvin) {
    const struct {
        const char* items;
        long double lo, hi;
        int result;
        const char* message;
    } cases[] = {
        {"500 700", 773.15L, 973.15L, 0, nullptr},
        {"700 500", 773.15L, 973.15L, 1, "for kw, the 2nd T in the T range must be larger than the 1st T"},
        {"5 3000", -1, -2, 1, "for kw, the T range needs to be within 10\xA1" "C to 2727\xA1" "C; default used"},
        {"5 700", -1, 973.15L, 1,
         "for kw, the bottom of the T range needs to be greater than 10 \xA1" "C; default used"},
        {"500 3000", 773.15L, -2, 1, "for kw, the top of the T range needs to be less than 2727\xA1" "C; default used"},
        {"9.85 2726.85", 283, 3000, 0, nullptr},
    };
    for (const auto& c : cases) {
        ScriptRun t;
        items(t, c.items);
        long double lo = -1, hi = -2;
        EXPECT_EQ(sm::scriptTrange(t.run, "kw", lo, hi, 1), c.result) << c.items;
        EXPECT_NEAR(static_cast<double>(lo), static_cast<double>(c.lo), 1e-9) << c.items;
        EXPECT_NEAR(static_cast<double>(hi), static_cast<double>(c.hi), 1e-9) << c.items;
        if (c.message) {
            EXPECT_TRUE(t.said(c.message)) << t.con.output;
        }
    }
}

TEST(ParseInfo, ClassesValuesAndLimits) {
    ScriptRun t;
    items(t, "3 2.5 1/4 abc 40000");
    const sm::ScriptInfo& info = t.run.script.info;
    EXPECT_EQ(info.ninfo, 5);
    EXPECT_EQ(info.infoint[1], 3);
    EXPECT_EQ(info.inforeal[3], 0.25L);
    EXPECT_EQ(info.infoclass[4], sm::toktext);
    EXPECT_EQ(info.infoint[5], 0);  // too large for 16 bits: a real alone
    EXPECT_EQ(info.inforeal[5], 40000);
    sm::shiftinfo(t.run.script.info, 2);
    EXPECT_EQ(info.ninfo, 3);
    EXPECT_EQ(info.infostr[1], "1/4");
    EXPECT_EQ(info.infostr[4], "");

    std::string many;
    for (int i = 0; i < 41; ++i) many += "1 ";
    const sm::RunEnded e = smtest::expectended([&] { items(t, many); });
    EXPECT_EQ(e.where, "reading script for kw");
    EXPECT_EQ(e.message, "too much info");
    items(t, many, false);  // a list script reads its own words
    EXPECT_EQ(info.ninfo, 40);

    for (const char* bad : {"0/4", "3/0"}) {
        const sm::RunEnded f = smtest::expectended([&] { items(t, bad); });
        EXPECT_EQ(f.message, "number is not a number");
        EXPECT_EQ(f.internal, 1);
    }
}

}  // namespace
