// End-member Gibbs energies of sm-ds6a.txt against independently computed
// reference tables.
#include <cmath>
#include <map>

#include "thermo/gem.h"
#include "thermo_testing.h"

namespace sm {
namespace {

using namespace sm::testing;

std::vector<std::vector<std::string>> readcsv(const std::string& name) {
    std::vector<std::vector<std::string>> rows;
    const auto lines = splitlines(readtext(std::string(SM_TEST_DIR) + "/thermo/ref/" + name));
    for (size_t i = 1; i < lines.size(); ++i) {
        std::vector<std::string> cells;
        std::string cell;
        std::istringstream in(lines[i]);
        while (std::getline(in, cell, ',')) cells.push_back(cell);
        rows.push_back(cells);
    }
    return rows;
}

class Ds6a : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        t = new TestRun;
        readdataset(t->run, datafile("sm-ds6a.txt"));
    }
    static void TearDownTestSuite() {
        delete t;
        t = nullptr;
    }
    static TestRun* t;
};
TestRun* Ds6a::t = nullptr;

TEST_F(Ds6a, EveryEndMemberOnTheGrid) {
    const auto rows = readcsv("endmember_G_ds6a_grid.csv");
    // every end-member but H2O and CO2, which the table of terms covers
    ASSERT_EQ(rows.size(), 228u * 30u);
    int bad = 0;
    for (const auto& r : rows) {
        const int i = rowof(t->run, r[0]);
        const real P = std::stold(r[2]), T = std::stold(r[3]);
        const real G = gem(t->run, i, P, T);
        const real want = std::stold(r[4]);
        if (std::fabs(G - want) > 1e-6L && ++bad <= 20)
            ADD_FAILURE() << r[0] << " (" << r[1] << ") at " << r[2] << " kbar " << r[3]
                          << " K: " << static_cast<double>(G) << " want " << r[4];
    }
    EXPECT_EQ(bad, 0);
}

TEST_F(Ds6a, TermsOfG) {
    const auto rows = readcsv("endmember_G_ds6a.csv");
    ASSERT_EQ(rows.size(), 460u);
    const GemContext cx = gemcontext(t->run);
    int bad = 0;
    for (const auto& r : rows) {
        const int i = rowof(t->run, r[0]);
        const real P = std::stold(r[2]), T = std::stold(r[3]);
        GemParts parts;
        const real G = gemrow(t->run.store.td[i], r[0], P, T, cx, parts);
        const real want[] = {std::stold(r[4]), std::stold(r[5]), std::stold(r[6]), std::stold(r[7]),
                             std::stold(r[8])};
        const real got[] = {G, parts.Gcp, parts.VdP, parts.Gfluid, parts.Gord};
        const char* what[] = {"G", "Gcp", "VdP", "Gfluid", "Gord"};
        for (int k = 0; k < 5; ++k)
            if (std::fabs(got[k] - want[k]) > 1e-6L && ++bad <= 20)
                ADD_FAILURE() << r[0] << " " << what[k] << " at " << r[2] << " kbar " << r[3]
                              << " K: " << static_cast<double>(got[k]) << " want "
                              << static_cast<double>(want[k]);
        EXPECT_EQ(t->run.store.td[i][tdtheta], std::stold(r[9])) << r[0];
    }
    EXPECT_EQ(bad, 0);
}

}  // namespace
}  // namespace sm
