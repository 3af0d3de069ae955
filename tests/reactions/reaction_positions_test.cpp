// Positions of reactions between pure end-members of the shipped dataset,
// against independently computed reference values.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "reactions/reactions.h"
#include "reactions/reactionthermo.h"
#include "run.h"
#include "script/windows.h"
#include "testutil.h"
#include "thermo/dataset.h"

namespace sm {
namespace {

struct RefRow {
    std::string reaction;  // "3an = gr + 2ky + q"
    bool fixedP;           // else fixed T
    real fixed;            // kbar or degC
    bool none;             // no root
    real value;            // degC or kbar
};

std::vector<RefRow> readref() {
    std::ifstream in(std::string(SM_TEST_DIR) + "/reactions/ref/reactions_ds6a.csv");
    std::vector<RefRow> rows;
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        std::stringstream s(line);
        std::string f[5];
        for (auto& x : f) std::getline(s, x, ',');
        RefRow r;
        r.reaction = f[0];
        r.fixedP = f[1] == "P_kbar";
        r.fixed = std::stold(f[2]);
        r.none = f[4] == "none";
        r.value = r.none ? 0 : std::stold(f[4]);
        rows.push_back(r);
    }
    return rows;
}

// "3an = gr + 2ky + q" as (name, coefficient), left side negative.
std::vector<std::pair<std::string, int>> parse(const std::string& text) {
    std::vector<std::pair<std::string, int>> terms;
    std::stringstream s(text);
    std::string word;
    int sign = -1;
    while (s >> word) {
        if (word == "=") {
            sign = 1;
            continue;
        }
        if (word == "+") continue;
        size_t k = 0;
        while (k < word.size() && std::isdigit(static_cast<unsigned char>(word[k]))) ++k;
        const int n = k ? std::stoi(word.substr(0, k)) : 1;
        terms.push_back({word.substr(k), sign * n});
    }
    return terms;
}

struct PositionRun {
    MemoryConsole console;
    Run run{console};
};

TEST(ReactionPositions, AgreeWithTheReferenceWithinAThousandthOfADegreeAndATenThousandthOfAKbar) {
    const auto rows = readref();
    ASSERT_EQ(rows.size(), 60u);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.reaction + " at " + std::to_string(static_cast<double>(row.fixed)));
        PositionRun p;
        sm::Run& run = p.run;
        run.calcmode = 3;
        run.runmode = 3;
        const auto terms = parse(row.reaction);
        std::vector<sstring> names;
        for (const auto& t : terms) names.push_back(t.first);
        setuptextread(run, std::string(SM_DATA_DIR) + "/sm-ds6a.txt");
        readthermochemistry(run, names);
        texthermoread(run);
        findspecialrows(run.store);
        for (int i = 1; i <= run.store.nem; ++i) run.store.activ[i] = 1;
        for (const auto& t : terms) run.store.r[1][emnumber(run, t.first)] = static_cast<short>(t.second);
        run.reactions.nir = 1;
        Windows& w = run.script.win;
        w.calcP = {0.001L, 60};
        // 100 to 1500 degC: and = sill reaches 12 kbar near 59 degC only,
        // below the window, where the reference has no root.
        w.calcT = {373.15L, 1773.15L};
        const bool co2 = run.store.ico2 > 0;
        const real x = co2 ? 1 : 0, xh = co2 ? 0 : 1;
        real v1, v2, a, b, c, d;
        if (row.fixedP) {
            findT(run, 1, false, v1, v2, a, b, row.fixed, x, xh, c, d);
            if (row.none) {
                EXPECT_FALSE(inrange(run, 0, v1));
                continue;
            }
            ASSERT_TRUE(inrange(run, 0, v1));
            EXPECT_NEAR(static_cast<double>(v1 - 273.15L), static_cast<double>(row.value), 0.001);
        } else {
            findP(run, 1, false, v1, v2, a, b, row.fixed + 273.15L, x, xh, c, d);
            ASSERT_TRUE(inrange(run, 1, v1));
            EXPECT_NEAR(static_cast<double>(v1), static_cast<double>(row.value), 0.0001);
        }
        EXPECT_FALSE(inrange(run, 0, v2) && inrange(run, 1, v2));
    }
}

}  // namespace
}  // namespace sm
