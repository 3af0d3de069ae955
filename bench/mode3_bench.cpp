// The whole mode 3 run of the KFMASH example in-process: prefs, script,
// a-x file and dataset read, every reaction in the window tabulated, then a
// second pass under Schreinemakers reasoning with its invariant points.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "console/console.h"
#include "entry/program.h"

namespace {

namespace fs = std::filesystem;

void BM_mode3_kfmash_example(benchmark::State& state) {
    const fs::path example = fs::path(SM_DATA_DIR).parent_path() / "examples" / "kfmash";
    const fs::path dir = fs::temp_directory_path() / "sm-mode3-bench";
    fs::create_directories(dir);
    for (const auto& e : fs::directory_iterator(example))
        fs::copy_file(e.path(), dir / e.path().filename(), fs::copy_options::overwrite_existing);
    std::ifstream list(dir / "data.txt");
    for (std::string f; std::getline(list, f);)
        if (!f.empty()) fs::copy_file(fs::path(SM_DATA_DIR) / f, dir / f, fs::copy_options::overwrite_existing);
    std::ifstream answers(dir / "answers.txt");
    const std::string replies((std::istreambuf_iterator<char>(answers)), std::istreambuf_iterator<char>());
    fs::current_path(dir);
    for (auto _ : state) {
        sm::MemoryConsole console(replies);
        benchmark::DoNotOptimize(sm::runprogram(console));
    }
}

}  // namespace

BENCHMARK(BM_mode3_kfmash_example)->Unit(benchmark::kMillisecond);
