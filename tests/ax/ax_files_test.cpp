// The four shipped a-x files, read whole with every phase chosen.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ax/ax_reader.h"
#include "ax/makename.h"
#include "ax/setupphases.h"
#include "console/console.h"
#include "console/runended.h"
#include "run.h"

namespace sm {
namespace {

struct FileCase {
    const char* file;
    std::vector<std::pair<const char*, int>> axphases;  // name, end-members
    std::vector<const char*> pure;
};

const std::vector<FileCase> files = {
    {"sm-axpel.txt",
     {{"g", 4}, {"pl4tr", 3}, {"k4tr", 3}, {"plc", 3}, {"ksp", 3}, {"ep", 3}, {"ma", 6}, {"mu", 6},
      {"bi", 6}, {"opx", 6}, {"sa", 5}, {"cd", 3}, {"st", 4}, {"chl", 7}, {"ctd", 3}, {"sp", 4},
      {"ilmm", 4}, {"ilm", 3}, {"mt1", 3}},
     {"q", "coe", "ky", "sill", "and", "ru", "sph", "H2O"}},
    {"sm-axkfm.txt",
     {{"g", 2}, {"mu", 3}, {"bi", 4}, {"opx", 4}, {"sa", 4}, {"cd", 3}, {"st", 2}, {"chl", 6},
      {"ctd", 2}, {"sp1", 2}},
     {"q", "coe", "ky", "sill", "and", "H2O"}},
    {"sm-axbas.txt",
     {{"hb", 11}, {"aug", 8}, {"dio", 7}, {"opx", 6}, {"g", 4}, {"ol", 2}, {"pl4tr", 3}, {"abc", 2},
      {"k4tr", 3}, {"ksp", 3}, {"plc", 3}, {"pli", 3}, {"sp", 4}, {"ilm", 3}, {"ilmm", 4}, {"ep", 3},
      {"bi", 6}, {"mu", 6}, {"chl", 7}},
     {"q", "coe", "ky", "sill", "and", "ru", "sph", "law", "H2O"}},
    {"sm-axign.txt",
     {{"pl4tr", 3}, {"k4tr", 3}, {"pli", 3}, {"plc", 3}, {"ol", 4}, {"ksp", 3}, {"mu", 6}, {"bi", 6},
      {"g", 6}, {"ep", 3}, {"cd", 3}, {"opx", 9}, {"cpx", 10}, {"spn", 8}, {"hb", 11}, {"ilm", 3}},
     {"q", "trd", "crst", "coe", "ky", "sill", "and", "ru", "sph", "H2O"}},
};

std::string datafile(const char* name) { return std::string(SM_DATA_DIR) + "/" + name; }

TEST(AxFiles, EachFileReadsWholeWithEveryPhaseChosen) {
    for (const auto& c : files) {
        SCOPED_TRACE(c.file);
        MemoryConsole con;
        sm::Run run(con);
        TextFile file;
        ASSERT_TRUE(file.open(datafile(c.file)));
        PhaseChoice choice;
        try {
            readaxfile(run, file, choice);
            preparephases(run, choice);
        } catch (const RunEnded& e) {
            FAIL() << e.where << " : " << e.message << "\n" << con.output;
        }
        ASSERT_EQ(run.store.npss, static_cast<int>(c.axphases.size()));
        ASSERT_EQ(run.store.nmin, static_cast<int>(c.pure.size()));
        EXPECT_EQ(run.store.nph, run.store.npss + run.store.nmin);
        for (size_t k = 0; k < c.axphases.size(); ++k) {
            const AxPhase& ph = run.phases.prec1[k + 1];
            EXPECT_EQ(ph.pname, c.axphases[k].first);
            EXPECT_EQ(ph.nem, c.axphases[k].second);
            EXPECT_EQ(ph.nxv, ph.nem - 1);
            EXPECT_EQ(ph.coding, 1);
            EXPECT_FALSE(ph.contracted);
        }
        for (size_t k = 0; k < c.pure.size(); ++k) {
            EXPECT_EQ(run.phases.prec0[k + 1].pname, c.pure[k]);
            EXPECT_EQ(run.phases.prec0[k + 1].ename, c.pure[k]);
            EXPECT_EQ(run.phases.prec0[k + 1].fixeda, 1);
        }
        // Nothing but the names being read reaches the console.
        std::string shown = con.output;
        size_t at = 0;
        while ((at = shown.find("reading ax: ")) != std::string::npos) shown.erase(at, 12);
        for (const auto& ph : c.axphases) EXPECT_NE(con.output.find(ph.first), std::string::npos);
        EXPECT_EQ(shown.find("bomb"), std::string::npos);
        EXPECT_EQ(shown.find("site fractions"), std::string::npos);
        EXPECT_EQ(shown.find("inconsistent"), std::string::npos);
    }
}

}  // namespace
}  // namespace sm
