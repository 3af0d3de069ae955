// Reactions among the end-members of every phase of sm-axkfm.txt with q, ky,
// sill, and and H2O (quartz and water in excess): the whole search in its
// all-reactions form over a 5 kbar line, then each reaction solved for T at
// 5 kbar. Reported as reactions per second.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "console/console.h"
#include "console/runfiles.h"
#include "entry/modes.h"
#include "entry/program.h"
#include "reactions/ptxtables.h"
#include "reactions/reactions.h"
#include "reactions/reactionsetup.h"
#include "reactions/reactionthermo.h"
#include "run.h"
#include "script/windows.h"

namespace {

namespace fs = std::filesystem;

// A scratch folder with the prefs, the script and the data files, made the
// current directory.
void scratch(const std::string& script) {
    const fs::path dir = fs::temp_directory_path() / "sm-reactions-bench";
    fs::create_directories(dir);
    for (const char* f : {"sm-ds6a.txt", "sm-axkfm.txt"})
        fs::copy_file(fs::path(SM_DATA_DIR) / f, dir / f, fs::copy_options::overwrite_existing);
    std::ofstream(dir / "sm-prefs.txt") << "dsfile 6a\nscriptfile bk\ncalcmode 3\n";
    std::ofstream(dir / "sm-bk.txt") << script;
    fs::current_path(dir);
}

const char* const kfmscript =
    "axfile axkfm\n"
    "with g mu bi opx sa cd st chl ctd sp1 q ky sill and H2O\n"
    "inexcess q H2O\n"
    "diagramPT 5 5 400 900\n"
    "calctype 1\n"
    "calctatp yes\n"
    "calcP 5\n"
    "doallr\n"
    "fluidpresent\n"
    "fluidexcess\n"
    "setfluid 0\n"
    "autoexit\n"
    "*\n";

void BM_reactions_kfm_generate_and_solve(benchmark::State& state) {
    scratch(kfmscript);
    sm::MemoryConsole console;
    sm::Run run(console);
    sm::initconsole(run);
    run.calcmode = sm::getcalcmode(run);
    run.runmode = run.calcmode;
    sm::commonsetup(run);
    sm::startout(run.io, run.prefs, run.files, false, run.dsprefs);
    run.runcount = 1;
    sm::reactionsetup(run);
    sm::phasediagramsetup(run);
    long long reactions = 0;
    for (auto _ : state) {
        console.output.clear();
        bool complete = false;
        sm::calcre(run, complete);
        for (int n = 1; n <= run.reactions.nir; ++n) {
            sm::real T1, T2, a, b, c, d;
            sm::findT(run, n, false, T1, T2, a, b, 5, 0, 1, c, d);
            benchmark::DoNotOptimize(T1);
        }
        reactions += run.reactions.nir;
    }
    state.counters["reactions"] = static_cast<double>(run.reactions.nir);
    state.counters["reactions/s"] = benchmark::Counter(static_cast<double>(reactions), benchmark::Counter::kIsRate);
    sm::closefiles(run.io);
}

}  // namespace

BENCHMARK(BM_reactions_kfm_generate_and_solve)->Unit(benchmark::kMillisecond);
