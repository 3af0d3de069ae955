// The check lines of the end-members: at its check values each end-member
// must be pure, with an ideal-mixing activity of 1.
#include "ax_testing.h"

namespace sm::axtest {
namespace {

TEST(AxChecks, CheckValuesWithTheirDenominator) {
    AxRun a;
    a.read(smallfile);
    const AxEndMember& mu = a.ax(2).em[1];
    ASSERT_TRUE(mu.hascheck);
    EXPECT_EQ(mu.checkdiv, 1);
    EXPECT_EQ(mu.checkx[1], 0);
    EXPECT_EQ(mu.checkx[2], 1);
    AxRun b;
    b.read(edit(edit(smallfile, "check  0  1\n  cel", "check  0  2/2\n  cel"), "      check  0\n",
                "      check  0.0\n"));
    EXPECT_EQ(b.ax(2).em[1].checkdiv, 2);
    EXPECT_EQ(b.ax(2).em[1].checkx[1], 0);
    EXPECT_EQ(b.ax(2).em[1].checkx[2], 2);
}

TEST(AxChecks, WrongCoding) {
    const Damaged cases[] = {
        {"not pure", edit(smallfile, "      check  1\n", "      check  1/2\n"), "setupphases",
         " ideal mixing terms not equal to 1 for pure end-members (also look at check coding)"},
        {"proportion coded wrong", edit(smallfile, "p(alm)  1   1 0 1 1 x(g)", "p(alm)  1   1 0 1 1/2 x(g)"),
         "setupphases", "proportions not equal to 1 for pure end-members (also look at check coding)"},
        {"another end-member's values", edit(smallfile, "      check  0\n", "      check  1\n"), "setupphases",
         "ideal mixing term = 0 for py in g (check coding wrong?)"},
        {"normalisation", edit(smallfile, "  mu    4  3", "  mu    2  3"), "setupphases",
         " ideal mixing terms not equal to 1 for pure end-members (also look at check coding)"},
        {"too few values", edit(smallfile, "      check  0  0\n  fcel", "      check  0\n  fcel"), "reading",
         "expecting a rational (4); got: fcel - check value of cel"},
    };
    expectfatal(cases);
    AxRun shown;
    shown.fails(edit(smallfile, "p(alm)  1   1 0 1 1 x(g)", "p(alm)  1   1 0 1 1/2 x(g)"));
    EXPECT_NE(shown.con.output.find("inconsistent p coding: g\nat the check values of alm:\np(py) = 0\n"
                                    "p(alm) = 0.500000\n"),
              std::string::npos)
        << shown.con.output;
    AxRun norm;
    norm.fails(edit(smallfile, "  mu    4  3", "  mu    2  3"));
    EXPECT_NE(norm.con.output.find("inconsistent ideal mixing activities: mu\nmu in mu = 0.500000\n"),
              std::string::npos)
        << norm.con.output;
}

TEST(AxChecks, OnlyChosenPhasesAreChecked) {
    AxRun a;
    a.choice.with = {"mu", "q"};
    a.read(edit(smallfile, "      check  1\n", "      check  1/2\n"));
    EXPECT_EQ(a.run.store.npss, 2);
}

}  // namespace
}  // namespace sm::axtest
