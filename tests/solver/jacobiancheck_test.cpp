// The finite-difference check of a Jacobian and its replacement by finite
// differences.
#include <gtest/gtest.h>

#include <cmath>

#include "solver/nle.h"
#include "solver/nletestsystem.h"

namespace sm {
namespace {

using nletest::layout;
using nletest::Rows;
using nletest::TrueSystem;
using nletest::valueof;
using nletest::Values;

// F = (a^2 - 2, b^3 - 8, c - 1 + Qd, Qd - 0.1) with chosen entries of the
// Jacobian multiplied by `wrong`; the check must report exactly those.
struct CheckCase {
    const char* name;
    real wrong11, wrong22, wrongQ;
    bool allwrong;
    const char* line;
};

TEST(Jacobiancheck, ReportsTheEntriesThatDifferFromDifferences) {
    const CheckCase cases[] = {
        {"right", 1, 1, 1, false, "jacobian: no difference with fd\n"},
        {"one wrong", 2, 1, 1, false, "jacobian: prop diff with fd: eq1,a = -0.5000; : just these\n"},
        {"two wrong", 2, 0.5L, 1, false,
         "jacobian: prop diff with fd: eq1,a = -0.5000; eq2,b = 1.000; : just these\n"},
        // The order variable's column is not checked.
        {"order variable", 1, 1, 3, false, "jacobian: no difference with fd\n"},
        {"seven wrong", 1, 1, 1, true,
         "jacobian: prop diff with fd: eq1,a = -0.5000; eq2,b = -0.5000; eq3,c = -0.5000; "
         "eq1,d = -0.5000; eq2,d = -0.5000; eq3,d = -0.5000; : of 7 in all\n"},
    };
    for (const CheckCase& c : cases) {
        SCOPED_TRACE(c.name);
        MemoryConsole console;
        sm::Run run(console);
        layout(run, {{"a", 0, 2, 1.0L}, {"b", 0, 3, 1.5L}, {"c", 0, 2, 0.5L}, {"Qd", 0, 1, 0.5L}});
        if (c.allwrong) run.solver.xname[4] = "d";
        run.solver.printlevel = 3;
        run.io.dontwrap = false;  // the whole report line on the console
        TrueSystem sys(run, [&c](const Values& v, Values& F, Rows& dF) {
            const real k = c.allwrong ? 2 : 1;
            F[1] = v[1] * v[1] - 2 + (c.allwrong ? v[4] : 0);
            F[2] = v[2] * v[2] * v[2] - 8 + (c.allwrong ? v[4] : 0);
            F[3] = v[3] - 1 + v[4];
            F[4] = v[4] - 0.1L;
            dF[1][1] = 2 * v[1] * c.wrong11 * k;
            dF[2][2] = 3 * v[2] * v[2] * c.wrong22 * k;
            dF[3][3] = k;
            dF[3][4] = k * c.wrongQ;
            if (c.allwrong) dF[1][4] = dF[2][4] = k;
            dF[4][4] = k;
            return true;
        });
        int result = -1;
        nle(run, sys, result);
        EXPECT_EQ(console.output.substr(0, 9), "jacobian\n");
        EXPECT_NE(console.output.find(c.line), std::string::npos) << console.output;
    }
}

// At print level 5 the routine is never asked for its Jacobian, and the
// differences alone carry the iteration to the root.
TEST(Jacobiancheck, FiniteDifferenceJacobianSolves) {
    MemoryConsole console;
    sm::Run run(console);
    layout(run, {{"a", -1, 2, 1.5L}, {"b", 0, 5, 4.0L}});
    run.solver.printlevel = 5;
    bool askedforJ = false;
    TrueSystem sys(run, [](const Values& v, Values& F, Rows& dF) {
        F[1] = std::exp(v[1]) - 2;
        F[2] = v[2] * v[2] * v[2] - 8 + v[1];
        dF[1][1] = dF[2][2] = 1e6;  // nonsense that must not be used
        return true;
    });
    class Watch : public NleSystem {
    public:
        Watch(TrueSystem& s, bool& f) : inner(s), flag(f) {}
        bool nlefunc(const NleVector& x, NleMatrix& J, NleVector& F, bool wantJ) override {
            if (wantJ) flag = true;
            return inner.nlefunc(x, J, F, wantJ);
        }
        TrueSystem& inner;
        bool& flag;
    } watch(sys, askedforJ);
    int result = -1;
    EXPECT_TRUE(nle(run, watch, result));
    EXPECT_FALSE(askedforJ);
    EXPECT_LT(std::fabs(valueof(run, 1) - std::log(2.0L)), 1e-6L);
    EXPECT_LT(std::fabs(valueof(run, 2) - std::cbrt(8.0L - std::log(2.0L))), 1e-6L);
}

}  // namespace
}  // namespace sm
