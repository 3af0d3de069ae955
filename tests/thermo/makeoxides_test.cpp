// The composition matrix of small sets of end-members, worked out by hand
// from their formulae.
#include "thermo/store.h"
#include "thermo_testing.h"

namespace sm {
namespace {

using namespace sm::testing;

struct Expected {
    std::vector<std::string> components;
    std::vector<int> cscale;
    std::vector<std::vector<int>> c;  // by component, then end-member
    std::vector<int> catomsum;
};

void check(const std::vector<sstring>& names, const Expected& want) {
    TestRun t;
    setuptextread(t.run, datafile("sm-ds6a.txt"));
    readthermochemistry(t.run, names);
    const EndMemberStore& s = t.run.store;
    ASSERT_EQ(s.nc, static_cast<int>(want.components.size()));
    for (int k = 1; k <= s.nc; ++k) {
        EXPECT_EQ(s.compname[k], want.components[k - 1]);
        EXPECT_EQ(s.cscale[k], want.cscale[k - 1]) << s.compname[k];
        EXPECT_EQ(s.catomsum[k], want.catomsum[k - 1]) << s.compname[k];
        for (int i = 1; i <= s.nem; ++i)
            EXPECT_EQ(s.c[k][i], want.c[k - 1][i - 1]) << s.compname[k] << " in " << s.emname[i];
    }
    EXPECT_EQ(s.ncproj, s.nc);
    EXPECT_EQ(s.nemproj, s.nem);
    // the store keeps the atoms as read
    EXPECT_EQ(s.elno[1][s.nel[1]], 10);
}

TEST(MakeOxides, BalancedOxygenGivesNoOComponent) {
    // fo Mg2SiO4, q SiO2, H2O, ab NaAlSi3O8 = 1/2 Na2O + 1/2 Al2O3 + 3 SiO2
    check({"fo", "q", "H2O", "ab"},
          {{"H2O", "SiO2", "Al2O3", "MgO", "Na2O"},
           {1, 1, 2, 1, 2},
           {{0, 0, 1, 0}, {1, 1, 0, 3}, {0, 0, 0, 1}, {2, 0, 0, 0}, {0, 0, 0, 1}},
           {3, 3, 5, 2, 3}});
}

TEST(MakeOxides, ExcessOxygenIsAComponent) {
    // hem Fe2O3 = 2 FeO + O; CH4 = 2 H2O + CO2 - 4 O; syvL KCl = 1/2 K2O + 1/2 Cl2O - O
    check({"fo", "hem", "CH4", "syvL"},
          {{"H2O", "CO2", "SiO2", "MgO", "FeO", "K2O", "O", "Cl2O"},
           {1, 1, 1, 1, 1, 2, 1, 2},
           {{0, 0, 2, 0},
            {0, 0, 1, 0},
            {1, 0, 0, 0},
            {2, 0, 0, 0},
            {0, 2, 0, 0},
            {0, 0, 0, 1},
            {0, 1, -4, -1},
            {0, 0, 0, 1}},
           {3, 3, 3, 2, 2, 3, 1, 3}});
}

}  // namespace
}  // namespace sm
