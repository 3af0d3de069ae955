// Reading a whole dataset: names, chemistry and data of every end-member,
// with the covariance matrix.
#include <benchmark/benchmark.h>

#include "console/console.h"
#include "run.h"
#include "thermo/dataset.h"

namespace {

void readwhole(benchmark::State& state, const char* file) {
    sm::MemoryConsole console;
    sm::Run run(console);
    const std::string path = std::string(SM_DATA_DIR) + "/" + file;
    std::vector<sm::sstring> names;
    sm::setuptextread(run, path);
    for (int i = 1; i <= run.store.ntp; ++i) names.push_back(run.store.dsname[i]);
    for (auto _ : state) {
        console.output.clear();
        sm::setuptextread(run, path);
        sm::readthermochemistry(run, names);
        sm::texthermoread(run);
        benchmark::DoNotOptimize(run.store.td[1][1]);
    }
}

void BM_read_ds6b(benchmark::State& state) { readwhole(state, "sm-ds6b.txt"); }
void BM_read_ds6a(benchmark::State& state) { readwhole(state, "sm-ds6a.txt"); }

}  // namespace

BENCHMARK(BM_read_ds6b)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_read_ds6a)->Unit(benchmark::kMillisecond);
