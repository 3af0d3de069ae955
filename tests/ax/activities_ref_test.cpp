// Activities and their derivatives of every phase of the shipped metapelite
// files against independent tables.
#include <map>

#include "activities_testing.h"
#include "thermo/constants.h"

namespace sm::acttest {
namespace {

// phase, point, P, T(C), x, p, em, a_ideal, RT ln gamma, a
void activitiesagainst(const std::string& axfile, const std::string& table) {
    FileRun f(axfile);
    const auto rows = readtable(table);
    ASSERT_GT(rows.size(), 400u);
    int checked = 0;
    for (const auto& r : rows) {
        ASSERT_EQ(r.size(), 10u);
        const int k = f.find(r[0]);
        ASSERT_NE(k, 0) << r[0];
        const int e = f.findem(k, r[6]);
        ASSERT_NE(e, 0) << r[6];
        const std::vector<real> x = reals(r[4]), p = reals(r[5]);
        ASSERT_EQ(static_cast<int>(x.size()) - 1, f.ax(k).nxv) << r[0];
        const real P = std::stold(r[2]), T = std::stold(r[3]) + celsius;
        const PhaseActivity out = f.at(k, x, P, T, false);
        const std::string where = r[0] + " " + r[6] + " point " + r[1] + " P " + r[2];
        for (int j = 1; j <= f.ax(k).nem; ++j) EXPECT_TRUE(near(out.pp[j], p[j], 1e-9L, 1e-12L)) << where;
        EXPECT_TRUE(near(out.aid[e], std::stold(r[7]), 1e-9L, 1e-300L)) << where << " ideal";
        EXPECT_TRUE(near(out.rtlngam[e], std::stold(r[8]), 1e-9L, 1e-12L)) << where << " RT ln gamma";
        EXPECT_TRUE(near(out.aa[e], std::stold(r[9]), 1e-9L, 1e-300L)) << where << " a";
        EXPECT_NEAR(static_cast<double>(out.gam[e] * out.aid[e] / out.aa[e]), 1.0, 1e-15);
        ++checked;
    }
    EXPECT_EQ(checked, static_cast<int>(rows.size()));
}

TEST(ActivitiesReference, Metapelites) { activitiesagainst("sm-axpel.txt", "activities_axpel.csv"); }
TEST(ActivitiesReference, KfmashMetapelites) { activitiesagainst("sm-axkfm.txt", "activities_axkfm.csv"); }

// Derivatives of RT ln a by each variable, T and P, against the tables'
// central differences, at the composition of the same point in the
// activities table.
void derivativesagainst(const std::string& axfile, const std::string& table, const std::string& acts) {
    FileRun f(axfile);
    std::map<std::string, std::vector<real>> xof;  // phase point P T -> x
    for (const auto& r : readtable(acts)) xof[r[0] + "," + r[1] + "," + r[2] + "," + r[3]] = reals(r[4]);
    const auto rows = readtable(table);
    ASSERT_GT(rows.size(), 60u);
    for (const auto& r : rows) {
        const int k = f.find(r[0]);
        ASSERT_NE(k, 0) << r[0];
        const int e = f.findem(k, r[4]);
        ASSERT_NE(e, 0) << r[4];
        const auto found = xof.find(r[0] + "," + r[1] + "," + r[2] + "," + r[3]);
        ASSERT_NE(found, xof.end()) << r[0] << " " << r[1];
        const real P = std::stold(r[2]), T = std::stold(r[3]) + celsius;
        const PhaseActivity out = f.at(k, found->second, P, T, true);
        const std::string where = r[0] + " " + r[4] + " point " + r[1] + " P " + r[2];
        EXPECT_TRUE(near(Rgas * T * std::log(out.aa[e]), std::stold(r[5]), 1e-9L, 1e-10L)) << where;
        // The differences are good to about 1e-5 of the value, and to a
        // few 1e-7 kJ where the value is small.
        const auto parts = split(r[6], ';');
        ASSERT_EQ(static_cast<int>(parts.size()), f.ax(k).nxv + 2) << where;
        for (int v = 1; v <= f.ax(k).nxv; ++v) {
            const auto nv = split(parts[v - 1], '=');
            ASSERT_EQ(nv[0], f.ax(k).xv[v].xname);
            EXPECT_TRUE(near(out.dlnadx[e][v], std::stold(nv[1]), 1e-5L, 1e-6L)) << where << " " << nv[0];
        }
        EXPECT_TRUE(near(out.dlnadT[e], std::stold(split(parts[f.ax(k).nxv], '=')[1]), 1e-5L, 1e-8L))
            << where << " T";
        EXPECT_TRUE(near(out.dlnadP[e], std::stold(split(parts[f.ax(k).nxv + 1], '=')[1]), 1e-5L, 1e-8L))
            << where << " P";
    }
}

TEST(ActivityDerivativesReference, Metapelites) {
    derivativesagainst("sm-axpel.txt", "activity_derivatives_axpel.csv", "activities_axpel.csv");
}
TEST(ActivityDerivativesReference, KfmashMetapelites) {
    derivativesagainst("sm-axkfm.txt", "activity_derivatives_axkfm.csv", "activities_axkfm.csv");
}

}  // namespace
}  // namespace sm::acttest
