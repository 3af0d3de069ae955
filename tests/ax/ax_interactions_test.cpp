// The model of non-ideality: ideal, symmetric or asymmetric, interaction
// energies W = a + bT + cP by pairs, size parameters, and the sd of W.
#include "ax_testing.h"

namespace sm::axtest {
namespace {

TEST(AxInteractions, PairsInFileOrderWithSizes) {
    AxRun a;
    a.read(edit(smallfile, "W(mu,fcel)   0  0  0.2", "W(mu,fcel)   1.5  -0.002  0.2  sd  0.3"));
    const AxPhase& mu = a.ax(2);
    EXPECT_EQ(mu.nonideal, asymmetric);
    ASSERT_EQ(mu.ngt, 3);
    const int pairs[][2] = {{1, 2}, {1, 3}, {2, 3}};
    for (int g = 1; g <= 3; ++g) {
        EXPECT_EQ(mu.gt[g][0], pairs[g - 1][0]);
        EXPECT_EQ(mu.gt[g][1], pairs[g - 1][1]);
    }
    EXPECT_NEAR(mu.wa[2], 1.5L, 1e-18L);
    EXPECT_NEAR(mu.wb[2], -0.002L, 1e-18L);
    EXPECT_NEAR(mu.wc[2], 0.2L, 1e-18L);
    EXPECT_FALSE(mu.wunset[2]);
    EXPECT_NEAR(mu.wsd[2], 0.3L, 1e-18L);
    EXPECT_TRUE(mu.wunset[1]);
    for (int j = 1; j <= 3; ++j) EXPECT_NEAR(mu.aa[j], 0.63L, 1e-18L);
    // A symmetric phase keeps sizes of 1.
    EXPECT_EQ(a.ax(1).nonideal, symmetric);
    EXPECT_EQ(a.ax(1).aa[1], 1);
    EXPECT_EQ(a.ax(1).ab[2], 0);
}

TEST(AxInteractions, SynonymsOfTheModels) {
    const std::pair<const char*, int> models[] = {
        {"ideal", ideal}, {"sf", symmetric}, {"regular", symmetric}};
    for (const auto& [word, kind] : models) {
        std::string text = edit(smallfile, "  sf\n  W(py,alm)  2.5  0  0\n", std::string("  ") + word + "\n" +
                                                                             (kind ? "  W(py,alm)  2.5  0  0\n" : ""));
        AxRun a;
        a.read(text);
        EXPECT_EQ(a.ax(1).nonideal, kind) << word;
        EXPECT_EQ(a.ax(1).ngt, kind ? 1 : 0);
    }
    AxRun v;
    v.read(edit(smallfile, "  asf\n", "  vanlaar\n"));
    EXPECT_EQ(v.ax(2).nonideal, asymmetric);
}

TEST(AxInteractions, DefaultSdOfW) {
    // 0.5 (a_i + a_j) w s: s the mean of the largest powers, 3 in g and
    // (1 + 2 + 2)/3 in mu; w = 2 with the default uncertainty parameters.
    AxRun a;
    a.choice.defaultsd = true;
    a.read(smallfile);
    EXPECT_NEAR(a.ax(1).wsd[1], 0.5L * 2 * 2 * 3, 1e-15L);
    EXPECT_NEAR(a.ax(2).wsd[1], 0.5L * (0.63L + 0.63L) * 2 * (1.0L + 2 + 2) / 3, 1e-15L);
    AxRun off;
    off.read(smallfile);
    EXPECT_EQ(off.ax(1).wsd[1], 0);
}

TEST(AxInteractions, StrictSyntaxMatchesNamesEitherWay) {
    AxRun a;
    a.strict = true;
    a.read(edit(smallfile, "W(mu,cel) ", "W(cel,mu) "));
    EXPECT_EQ(a.ax(2).ngt, 3);
    AxRun b;
    b.strict = true;
    EXPECT_EQ(b.fails(edit(smallfile, "W(mu,cel) ", "W(mu,phl) ")).message,
              "names in  W name, \"W(mu,phl)\" do not match \"mu\" and \"cel\"");
    AxRun sizes;
    sizes.strict = true;
    EXPECT_EQ(sizes.fails(edit(smallfile, "a(cel) ", "a(phl) ")).message,
              "names in a name, \"a(phl)\" do not match \"cel\"");
    AxRun p;
    p.strict = true;
    EXPECT_EQ(p.fails(edit(smallfile, "p(cel) ", "p(phl) ")).message,
              "names in p name, \"p(phl)\" do not match \"cel\"");
    // Without strict syntax any word with a comma stands for the pair.
    AxRun c;
    c.read(edit(smallfile, "W(py,alm)", "anything,goes"));
    EXPECT_EQ(c.ax(1).wname[1], "anything,goes");
}

TEST(AxInteractions, DamagedModels) {
    const Damaged cases[] = {
        {"unknown model", edit(smallfile, "  sf\n", "  margules\n"), "read",
         "not recognised (should be ideal, sf or asf)"},
        {"W without comma", edit(smallfile, "W(py,alm)", "Wpyalm"), "read", "W not strictsyntax"},
        {"missing W", edit(smallfile, "  W(cel,fcel)  0  0  0\n", ""), "read", "W not strictsyntax"},
        {"missing size", edit(smallfile, "  a(fcel)  0.63  0  0\n", ""), "reading",
         "expecting a name; got: 5 - size parameter name in mu"},
        {"W a not a number", edit(smallfile, "W(py,alm)  2.5", "W(py,alm)  big"), "reading",
         "expecting a single (1); got: big - a of W(py,alm) in g"},
    };
    expectfatal(cases);
}

}  // namespace
}  // namespace sm::axtest
