// Activities of every phase of the metapelite file at one point, as each
// evaluation of the equilibrium equations needs them, and the states of
// order of its order-disorder phases.
#include <benchmark/benchmark.h>

#include "ax/activities.h"
#include "ax/ax_reader.h"
#include "ax/setupphases.h"
#include "console/console.h"
#include "run.h"

namespace {

// The run with all phases of sm-axpel.txt laid out as one calculation at
// their starting guesses; x[1] P, x[2] T.
struct Metapelites {
    sm::MemoryConsole console;
    sm::Run run{console};
    sm::NleVector x{};

    Metapelites() {
        sm::TextFile file;
        file.open(std::string(SM_DATA_DIR) + "/sm-axpel.txt");
        sm::PhaseChoice choice;
        sm::readaxfile(run, file, choice);
        sm::preparephases(run, choice);
        sm::ActivityState& as = run.activities;
        int i = 0, xo = 3;
        for (int k = 1; k <= run.store.npss; ++k) {
            const sm::AxPhase& ph = run.phases.prec1[k];
            for (int j = 1; j <= ph.nem; ++j, ++i) {
                as.inss[i + 1] = true;
                as.emphase[i + 1] = k;
                as.emstart[i + 1] = xo;
            }
            for (int v = 1; v <= ph.nxv; ++v) x[xo + v - 1] = ph.xv[v].guess;
            xo += ph.nxv;
        }
        run.store.nem = i;
        x[1] = 5;
        x[2] = 873.15L;
    }
};

void BM_calca_axpel_derivatives(benchmark::State& state) {
    Metapelites m;
    for (auto _ : state) {
        sm::calca(m.run, m.x.data(), true, true, m.x[1], m.x[2]);
        benchmark::DoNotOptimize(m.run.store.activ[1]);
    }
    state.counters["phases"] = m.run.store.npss;
    state.counters["endmembers"] = m.run.store.nem;
}

void BM_calca_axpel_values(benchmark::State& state) {
    Metapelites m;
    for (auto _ : state) {
        sm::calca(m.run, m.x.data(), false, false, m.x[1], m.x[2]);
        benchmark::DoNotOptimize(m.run.store.activ[1]);
    }
}

}  // namespace

BENCHMARK(BM_calca_axpel_derivatives)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_calca_axpel_values)->Unit(benchmark::kMicrosecond);
