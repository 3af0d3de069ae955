// Reading an a-x file whole with every phase chosen, as each pass of a run
// does: the grammar, the script's guesses, limits and the coding checks.
#include <benchmark/benchmark.h>

#include "ax/ax_reader.h"
#include "ax/makename.h"
#include "ax/setupphases.h"
#include "console/console.h"
#include "run.h"

namespace {

void readaxwhole(benchmark::State& state, const char* name) {
    sm::MemoryConsole console;
    sm::Run run(console);
    const std::string path = std::string(SM_DATA_DIR) + "/" + name;
    sm::PhaseChoice choice;
    for (auto _ : state) {
        console.output.clear();
        sm::TextFile file;
        file.open(path);
        sm::readaxfile(run, file, choice);
        sm::preparephases(run, choice);
        sm::makename(run, sm::withomit(run));
        benchmark::DoNotOptimize(run.store.nem);
    }
}

void BM_read_axpel(benchmark::State& state) { readaxwhole(state, "sm-axpel.txt"); }
void BM_read_axbas(benchmark::State& state) { readaxwhole(state, "sm-axbas.txt"); }

}  // namespace

BENCHMARK(BM_read_axpel)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_read_axbas)->Unit(benchmark::kMillisecond);
