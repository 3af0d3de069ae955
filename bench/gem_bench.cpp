// End-member Gibbs energies at one P, T: every end-member of sm-ds6a.txt, the
// solids and melts alone, and the eight fluids alone.
#include <benchmark/benchmark.h>

#include "console/console.h"
#include "run.h"
#include "thermo/dataset.h"
#include "thermo/gem.h"

namespace {

struct Loaded {
    sm::MemoryConsole console;
    sm::Run run{console};
    std::vector<int> all, fluids, solids;
    Loaded() {
        sm::setuptextread(run, std::string(SM_DATA_DIR) + "/sm-ds6a.txt");
        std::vector<sm::sstring> names;
        for (int i = 1; i <= run.store.ntp; ++i) names.push_back(run.store.dsname[i]);
        sm::readthermochemistry(run, names);
        sm::texthermoread(run);
        for (int i = 1; i <= run.store.nem; ++i) {
            all.push_back(i);
            (run.store.td[i][sm::tdeos] == 6 ? fluids : solids).push_back(i);
        }
    }
};

Loaded& loaded() {
    static Loaded l;
    return l;
}

void energies(benchmark::State& state, const std::vector<int> Loaded::*which) {
    Loaded& l = loaded();
    const std::vector<int>& rows = l.*which;
    const sm::real P = 10, T = 1000;
    for (auto _ : state) {
        sm::real sum = 0;
        for (int i : rows) sum += sm::gem(l.run, i, P, T);
        benchmark::DoNotOptimize(sum);
    }
    state.counters["end-members"] = static_cast<double>(rows.size());
}

void BM_gem_all230(benchmark::State& state) { energies(state, &Loaded::all); }
void BM_gem_solids_and_melts(benchmark::State& state) { energies(state, &Loaded::solids); }
void BM_gem_fluids8(benchmark::State& state) { energies(state, &Loaded::fluids); }

}  // namespace

BENCHMARK(BM_gem_all230)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_gem_solids_and_melts)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_gem_fluids8)->Unit(benchmark::kMicrosecond);
