// The phase line of an a-x phase and its composition variables.
#include "ax_testing.h"

namespace sm::axtest {
namespace {

TEST(AxVariables, ReadAsWritten) {
    AxRun a;
    a.read(edit(edit(smallfile, "x(mu)  0.4  -", "x(mu)  0.4  sd  0.05  -"),
                "y(mu)  0.85  -", "y(mu)  0.85  sd  1.5  -  range 0.2 0.95"));
    const AxPhase& mu = a.ax(2);
    EXPECT_EQ(mu.pname, "mu");
    EXPECT_EQ(mu.coding, 1);
    ASSERT_EQ(mu.nxv, 2);
    EXPECT_EQ(mu.xv[1].xname, "x(mu)");
    EXPECT_EQ(mu.xv[1].xdisp, "x");
    EXPECT_EQ(mu.xv[1].guess, 0.4L);
    EXPECT_NEAR(mu.xv[1].sd, 0.05L, 1e-18L);
    EXPECT_EQ(mu.xv[2].sd, 0);  // an sd outside 0..1 counts as none
    EXPECT_TRUE(mu.xv[2].lowset);
    EXPECT_EQ(mu.xv[2].rlow, 0.2L);
    EXPECT_EQ(mu.xv[2].rhigh, 0.95L);
    EXPECT_FALSE(mu.hasq);
}

TEST(AxVariables, OrderVariablesByKeywordOrName) {
    const std::string kinds[][2] = {{"x(g)  0.85  -  isQ", "x(g)"}, {"x(g)  0.85  -  ODvar", "x(g)"},
                                    {"Q1(g)  0.85  -", "Q1(g)"},    {"N(g)  0.85  -", "N(g)"}};
    for (const auto& k : kinds) {
        SCOPED_TRACE(k[0]);
        std::string text = edit(smallfile, "x(g)  0.85  -", k[0]);
        for (size_t at = 0; (at = text.find(" x(g)\n", at)) != std::string::npos; at += k[1].size())
            text.replace(at + 1, 4, k[1]);
        AxRun a;
        a.read(text);
        EXPECT_TRUE(a.ax(1).xv[1].isod);
        EXPECT_TRUE(a.ax(1).hasq);
    }
    AxRun plain;
    plain.read(smallfile);
    EXPECT_FALSE(plain.ax(1).hasq);
}

TEST(AxVariables, VariableDefinitionsInProportions) {
    AxRun a;
    a.read(edit(smallfile, "x(g)  0.85  -", "x(g)  0.85  0 1 1 p(alm)  1 2 1 p(py) 1 2"));
    const AxPhase& g = a.ax(1);
    ASSERT_TRUE(g.xv[1].hasdef);
    // x = p(alm) / (1 + p(py) + p(alm)) read by name and by index
    const real p[] = {0, 0.25L, 0.75L};
    EXPECT_EQ(evalx(g.pool, g.xv[1].defnum, p, 1), 0.75L);
    EXPECT_EQ(evalx(g.pool, g.xv[1].defden, p, 1), 2.0L);
}

TEST(AxVariables, DamagedPhaseLinesAndVariables) {
    const Damaged cases[] = {
        {"no coding", edit(smallfile, "g  2  1  0", "g  2  x"), "read", "bad encoding for g"},
        {"coding 3", edit(smallfile, "g  2  1  0", "g  2  3  0"), "read", "bad encoding for g"},
        {"no 0 after coding", edit(smallfile, "g  2  1  0", "g  2  1  5"), "read",
         "incorrect info after no of end-members for g"},
        {"no end-members", edit(smallfile, "g  2  1  0", "g  0  1  0"), "read", "less than 2 end-members in g"},
        {"16 end-members", edit(smallfile, "g  2  1  0", "g  16  1  0"), "read", "too many end-members in g"},
        {"separator first", edit(smallfile, "g  2  1  0", "_g  2  1  0"), "long2shortpname",
         "separator char in pname in wrong place in _g"},
        {"long name in coding 1", edit(smallfile, "g  2  1  0", "g_hp  2  1  0"), "read",
         "longpnames not implemented for coding = 1"},
        {"variable without phase", edit(smallfile, "  x(g)  0.85  -", "  x  0.85  -"), "read",
         "varname, \"x\", should be in form \"xyzname(phasename)\""},
        {"variable of another phase", edit(smallfile, "  x(g)  0.85  -", "  x(gt)  0.85  -"), "read",
         "name in gt must be the same as phasename, g"},
        {"zero guess", edit(smallfile, "x(g)  0.85", "x(g)  0"), "read", "guess for x(g) is zero"},
        {"crossed range", edit(smallfile, "x(g)  0.85  -", "x(g)  0.85  -  range 0.9 0.1"), "read",
         "lower limit > upper limit (1)"},
        {"guess not a number", edit(smallfile, "x(g)  0.85", "x(g)  high"), "reading",
         "expecting a single (1); got: high - guess for x(g)"},
        {"count too large", edit(smallfile, "g  2  1  0", "g  32767  1  0"), "getinteger",
         "expecting an integer (2); got: 32767 - no of end-members in g"},
        {"a real count is an activity", edit(smallfile, "g  2  1  0", "g  2.5  1  0"), "setupphases",
         "activity for g ..."},
    };
    expectfatal(cases);
}

TEST(AxVariables, CodingTwoTakesItsGuessesFromTheScript) {
    const std::string phase = R"(g_hp  2  2  garnet  12  verbatim
 a line of text
 % another
verbatim
  x(g)  -
  p(py)   1   1 1 1 -1 x(g)
  p(alm)  1   1 0 1 1 x(g)
  ideal
  2
  xMgX  1  1 1 1 -1 x(g)
  xFeX  1  1 0 1 1 x(g)
  py   1  1  xMgX  3
  alm  1  1  xFeX  3
)";
    AxRun a;
    a.choice.xyzguess.push_back({"x(g)", 0.3L, 0.01L, false, 0, 1});
    a.read(phase);
    const AxPhase& g = a.ax(1);
    EXPECT_EQ(g.pname, "g");
    EXPECT_EQ(g.psuffix, "hp");
    EXPECT_EQ(g.pfullname, "garnet");
    EXPECT_EQ(g.oxnorm, 12);
    ASSERT_EQ(g.ninfo, 2);
    EXPECT_EQ(g.info[1], "a line of text");
    EXPECT_EQ(g.info[2], " another");
    EXPECT_EQ(g.xv[1].guess, 0.3L);
    EXPECT_TRUE(g.hasguesses);

    AxRun none;
    EXPECT_EQ(none.fails(phase).message, "no xyz starting guesses in scriptfile 1");
    AxRun other;
    other.choice.xyzguess.push_back({"x(mu)", 0.3L, 0, false, 0, 1});
    EXPECT_EQ(other.fails(phase).message, "no xyz starting guesses for g");
    AxRun guessed;
    EXPECT_EQ(guessed.fails(edit(phase, "x(g)  -", "x(g)  0.5  -")).message,
              "with coding = 2, omit starting guesses for g");
    AxRun noverb;
    EXPECT_EQ(noverb.fails(edit(phase, "12  verbatim", "12  words")).message, "no verbatim");
}

}  // namespace
}  // namespace sm::axtest
