// The a-x information file for a chosen set of phases of sm-axkfm.txt, kept
// as a golden file. SM_UPDATE_GOLDEN=1 rewrites it on purpose.
#include <cstdlib>

#include "ax/makename.h"
#include "ax/phase_summary.h"
#include "ax_testing.h"

namespace sm::axtest {
namespace {

std::string slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST(PhaseSummary, ChosenPhasesOfTheKfmashFile) {
    AxRun a;
    a.choice.with = {"g", "bi", "opx", "chl", "sp1", "q", "H2O"};
    a.choice.xyzguess = {{"x(g)", 0.8L, 0, false, 0, 1}};
    TextFile file;
    ASSERT_TRUE(file.open(std::string(SM_DATA_DIR) + "/sm-axkfm.txt"));
    readaxfile(a.run, file, a.choice);
    preparephases(a.run, a.choice);
    makename(a.run, withomit(a.run));

    TempFile out("");
    openchannel(a.run.io, 5, out.path());
    writephasesummary(a.run);
    flushfiles(a.run.io);
    std::fclose(a.run.io.file[5]);
    a.run.io.file[5] = nullptr;
    const std::string written = slurp(out.path());
    const std::string golden = std::string(SM_TEST_DIR) + "/ax/golden/axkfm-it.txt";
    if (std::getenv("SM_UPDATE_GOLDEN")) std::ofstream(golden, std::ios::binary) << written;
    EXPECT_EQ(written, slurp(golden));
    // Nothing reaches the screen but the names being read.
    EXPECT_EQ(a.con.output.find("a-x phases"), std::string::npos);
}

}  // namespace
}  // namespace sm::axtest
