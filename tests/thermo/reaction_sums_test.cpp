// Reaction sums of end-member energies: every reaction of the reference table
// has dG = 0 at its published conditions.
#include <cmath>

#include "thermo/gem.h"
#include "thermo_testing.h"

namespace sm {
namespace {

using namespace sm::testing;

struct Term {
    int coefficient;
    std::string name;
};

// "3an = gr + 2ky + q": products positive.
std::vector<Term> parsereaction(const std::string& text) {
    std::vector<Term> terms;
    std::istringstream in(text);
    std::string word;
    int side = -1;
    while (in >> word) {
        if (word == "=") {
            side = 1;
            continue;
        }
        if (word == "+") continue;
        size_t k = 0;
        while (k < word.size() && std::isdigit(static_cast<unsigned char>(word[k]))) ++k;
        terms.push_back({side * (k ? std::stoi(word.substr(0, k)) : 1), word.substr(k)});
    }
    return terms;
}

class Reactions : public ::testing::Test {
protected:
    void SetUp() override {
        readdataset(t.run, datafile("sm-ds6a.txt"));
        findspecialrows(t.run.store);
    }
    void setreaction(int k, const std::vector<Term>& terms) {
        t.run.store.r[k].fill(0);
        for (const Term& term : terms) t.run.store.r[k][rowof(t.run, term.name)] = static_cast<short>(term.coefficient);
    }
    TestRun t;
};

TEST_F(Reactions, ZeroAtTheReferenceConditions) {
    const auto lines = splitlines(readtext(std::string(SM_TEST_DIR) + "/thermo/ref/reactions_ds6a.csv"));
    int checked = 0;
    for (size_t n = 1; n < lines.size(); ++n) {
        std::vector<std::string> c;
        std::string cell;
        std::istringstream in(lines[n]);
        while (std::getline(in, cell, ',')) c.push_back(cell);
        if (c[4] == "none") continue;
        setreaction(1, parsereaction(c[0]));
        real P, T;
        if (c[1] == "P_kbar") {
            P = std::stold(c[2]);
            T = std::stold(c[4]) + 273.15L;
        } else {
            T = std::stold(c[2]) + 273.15L;
            P = std::stold(c[4]);
        }
        real dGdP, dGdT, dG;
        calcdg0(t.run, 1, dGdP, dGdT, dG, P, T);
        // the table gives T to 0.001 K and P to 0.000001 kbar
        const real allowed = c[3] == "T_C" ? std::fabs(dGdT) * 0.0006L : std::fabs(dGdP) * 6e-7L;
        EXPECT_LE(std::fabs(dG), allowed + 1e-9L) << lines[n] << ": dG = " << static_cast<double>(dG);
        // dG/dP is the volume change, dG/dT minus the entropy change
        EXPECT_TRUE(std::isfinite(dGdP) && std::isfinite(dGdT));
        ++checked;
    }
    EXPECT_EQ(checked, 59);
}

TEST_F(Reactions, FluidAndActivityTerms) {
    // cc + q = wo + CO2 in a fluid with x(CO2) = 0.4: R T ln 0.4 more
    setreaction(2, parsereaction("cc + q = wo + CO2"));
    real dGdP0, dGdT0, dG0, dGdP, dGdT, dG;
    calcdg0(t.run, 2, dGdP0, dGdT0, dG0, 5, 1100);
    calcdg(t.run, 2, dGdP, dGdT, dG, 5, 1100, 0.4L, 0.6L);
    EXPECT_NEAR(static_cast<double>(dG - dG0), static_cast<double>(0.0083144L * 1100 * std::log(0.4L)), 1e-9);
    EXPECT_NEAR(static_cast<double>(dGdT - dGdT0), static_cast<double>(0.0083144L * std::log(0.4L)), 1e-12);
    EXPECT_EQ(t.run.store.td[rowof(t.run, "cc")][tdxco2], 0.4L);
    // an activity of wo of 0.5 adds R T ln 0.5
    t.run.store.activ[rowof(t.run, "wo")] = 0.5L;
    real lnK;
    calclnk(t.run, 2, lnK, 0.4L, 0.6L);
    EXPECT_NEAR(static_cast<double>(lnK), static_cast<double>(std::log(0.5L) + std::log(0.4L)), 1e-15);
    // pure fluid: no x term
    calclnk(t.run, 2, lnK, 1, 0);
    EXPECT_NEAR(static_cast<double>(lnK), static_cast<double>(std::log(0.5L)), 1e-15);
    t.run.store.activ[rowof(t.run, "wo")] = 0;
    EXPECT_EQ(stopof([&] { calclnk(t.run, 2, lnK, 0.4L, 0.6L); }), "calclnk : ln<=0");
    EXPECT_EQ(stopof([&] { calcdg0(t.run, 2, dGdP, dGdT, dG, 5, 0); }), "calcdg0 : T <= 0 !");
}

TEST_F(Reactions, DissolvedSilicaCountsPerWater) {
    // a made-up run with aqSi: only names, coefficients and activities matter
    setemname(t.run.store, {"q", "H2O", "aqSi"});
    findspecialrows(t.run.store);
    EXPECT_EQ(t.run.store.iaqsi, 3);
    EXPECT_EQ(t.run.store.ih2o, 2);
    t.run.store.r[3].fill(0);
    t.run.store.r[3][1] = -1;
    t.run.store.r[3][3] = 1;
    t.run.store.activ.fill(1);
    real lnK;
    calclnk(t.run, 3, lnK, 0, 0.8L);
    EXPECT_NEAR(static_cast<double>(lnK), static_cast<double>(-4 * std::log(0.8L)), 1e-15);
}

}  // namespace
}  // namespace sm
