// Expressions: sums of products of linear forms in the phase's variables,
// their values and derivatives, and their grammar.
#include <cmath>

#include "ax_testing.h"

namespace sm::axtest {
namespace {

// The biotite of sm-axkfm.txt: products of forms, rationals and an order
// variable.
const std::string biotite = R"(bi  4  1  0
  x(bi)  0.45  -
  y(bi)  0.25  -
  Q(bi)  0.15  -  isQ  range  -0.35  0.35
  p(phl)   2   2 1 1 -1 y(bi) 1 1 -1 x(bi)   1 0 1 -2 Q(bi)
  p(annm)  1   1 0 2 1 x(bi) -1 Q(bi)
  p(obi)   2   1 0 1 3 Q(bi)   2 0 1 -1 x(bi) 0 1 1 y(bi)
  p(east)  1   1 0 1 1 y(bi)
  ideal
  7
  xMgM3   2   2 1 1 -1 y(bi) 1 1 -1 x(bi)   1 0 1 -2 Q(bi)
  xFeM3   2   1 0 1 2 Q(bi)   2 0 1 1 x(bi) 1 1 -1 y(bi)
  xAlM3   1   1 0 1 1 y(bi)
  xMgM12  1   1 1 2 -1 x(bi) 1 Q(bi)
  xFeM12  1   1 0 2 1 x(bi) -1 Q(bi)
  xSiT    1   1 1/2 1 -1/2 y(bi)
  xAlT    1   1 1/2 1 1/2 3
  phl   4  4  xMgM3 1  xMgM12 2  xSiT 1  xAlT 1
  annm  4  4  xFeM3 1  xFeM12 2  xSiT 1  xAlT 1
  obi   4  4  xFeM3 1  xMgM12 2  xSiT 1  xAlT 1
  east  1  3  xAlM3 1  xMgM12 2  xAlT 2
)";

TEST(AxExpressions, ValuesAndDerivativesOfTheBiotite) {
    AxRun a;
    a.read(biotite);
    const AxPhase& bi = a.ax(1);
    // Variables sit at offset 3 in a longer vector, as in the solver's.
    const real x = 0.45L, y = 0.25L, Q = 0.15L;
    const real v[] = {0, 7, 8, x, y, Q};
    const int xo = 3;
    const real p[] = {0, (1 - y) * (1 - x) - 2 * Q, x - Q, 3 * Q - x * y, y};
    const real dp[][4] = {{0},
                          {0, -(1 - y), -(1 - x), -2},
                          {0, 1, 0, -1},
                          {0, -y, -x, 3},
                          {0, 0, 1, 0}};
    real sum = 0;
    for (int j = 1; j <= 4; ++j) {
        EXPECT_NEAR(evalx(bi.pool, bi.pexpr[j], v, xo), p[j], 1e-18L) << j;
        for (int k = 1; k <= 3; ++k) EXPECT_NEAR(devalx(k, bi.pool, bi.pexpr[j], v, xo), dp[j][k], 1e-18L);
        sum += evalx(bi.pool, bi.pexpr[j], v, xo);
    }
    EXPECT_NEAR(sum, 1, 1e-18L);
    // xAlT names its variable by index: 1/2 + 1/2 Q
    EXPECT_NEAR(evalx(bi.pool, bi.sfexpr[7], v, xo), 0.5L + 0.5L * Q, 1e-18L);
    EXPECT_NEAR(devalx(3, bi.pool, bi.sfexpr[7], v, xo), 0.5L, 1e-18L);
    EXPECT_EQ(devalx(1, bi.pool, bi.sfexpr[7], v, xo), 0);
    // The halves of the file are quotients taken in double precision.
    EXPECT_EQ(bi.pool.term.back().mult, static_cast<real>(1.0 / 2.0));
}

TEST(AxExpressions, WrittenOutAsFormulas) {
    AxRun a;
    a.read(biotite);
    const AxPhase& bi = a.ax(1);
    sstring names[4] = {"", "x", "y", "Q"};
    EXPECT_EQ(exprtext(bi.pool, bi.pexpr[1], names), "(1 - y) (1 - x) - 2 Q");
    EXPECT_EQ(exprtext(bi.pool, bi.pexpr[3], names), "3 Q - x y");
    EXPECT_EQ(exprtext(bi.pool, bi.sfexpr[6], names), "1/2 - 1/2 y");
}

TEST(AxExpressions, DamagedExpressions) {
    const std::string p = "  p(annm)  1   1 0 2 1 x(bi) -1 Q(bi)";
    const Damaged cases[] = {
        {"undefined variable", edit(biotite, p, "  p(annm)  1   1 0 2 1 x(bi) -1 z(bi)"), "read",
         "z(bi) not a variable name: p(annm) in bi"},
        {"index out of range", edit(biotite, p, "  p(annm)  1   1 0 2 1 x(bi) -1 4"), "read",
         "4 not a variable name: p(annm) in bi"},
        {"no products", edit(biotite, p, "  p(annm)  0   1 0 2 1 x(bi) -1 Q(bi)"), "read", "too few sxterms"},
        {"25 products", edit(biotite, p, "  p(annm)  25   1 0 2 1 x(bi) -1 Q(bi)"), "read", "too many sxterms"},
        {"no forms", edit(biotite, p, "  p(annm)  1   0 0 2 1 x(bi) -1 Q(bi)"), "read", "too few x terms"},
        {"5 forms", edit(biotite, p, "  p(annm)  1   5 0 2 1 x(bi) -1 Q(bi)"), "read", "too many x terms"},
        {"negative count", edit(biotite, p, "  p(annm)  1   1 0 -1 1 x(bi) -1 Q(bi)"), "read", "too few terms in x"},
        {"13 terms", edit(biotite, p, "  p(annm)  1   1 0 13 1 x(bi) -1 Q(bi)"), "read", "too many terms in x"},
        {"zero term", edit(biotite, p, "  p(annm)  1   1 0 0"), "read", "zero term"},
        {"mult not a number", edit(biotite, p, "  p(annm)  1   1 0 2 one x(bi) -1 Q(bi)"), "reading",
         "expecting a rational (4); got: one - mult in p(annm) in bi"},
        {"unknown site fraction", edit(biotite, "xFeM3 1  xFeM12 2", "xFeM3 1  xFeM13 2"), "read",
         "xFeM13 not a sf name: ideal mixing of annm in bi"},
        {"one site fraction", edit(biotite, "  7\n", "  1\n"), "read", "less than 2 sf vars for bi"},
        {"31 site fractions", edit(biotite, "  7\n", "  31\n"), "read", "too many  sf vars for bi"},
        {"16 terms in an ideal mixing term", edit(biotite, "east  1  3", "east  1  16"), "read",
         "too many terms in tmf for bi"},
    };
    expectfatal(cases);
}

TEST(AxExpressions, StrictSyntaxWantsVariableNamesOfTheirForm) {
    AxRun a;
    a.strict = true;
    EXPECT_EQ(a.fails(edit(biotite, "1 0 2 1 x(bi) -1 Q(bi)", "1 0 2 1 x(bi) -1 Q")).message,
              "name in varname not of form xyz(min)");
}

}  // namespace
}  // namespace sm::axtest
