// Activities of every phase of the metapelite file at one point, as each
// evaluation of the equilibrium equations needs them, and the states of
// order of its order-disorder phases.
#include <benchmark/benchmark.h>

#include <vector>

#include "ax/activities.h"
#include "ax/ax_reader.h"
#include "ax/endmember_composition.h"
#include "ax/makename.h"
#include "ax/order.h"
#include "ax/phase_prep.h"
#include "ax/setupphases.h"
#include "console/console.h"
#include "run.h"
#include "thermo/dataset.h"
#include "thermo/made_endmembers.h"

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

// The metapelite file over its dataset, with the states of order of its
// order-disorder phases at 5 kbar, 600 C solved once.
struct Ordered {
    sm::MemoryConsole console;
    sm::Run run{console};
    std::vector<int> phases;
    std::vector<std::vector<sm::real>> solution;
    static constexpr sm::real P = 5, T = 873.15L;

    Ordered() {
        sm::setuptextread(run, std::string(SM_DATA_DIR) + "/sm-ds6a.txt");
        sm::TextFile file;
        file.open(std::string(SM_DATA_DIR) + "/sm-axpel.txt");
        sm::PhaseChoice choice;
        sm::readaxfile(run, file, choice);
        sm::preparephases(run, choice);
        sm::makename(run, sm::withomit(run));
        sm::readthermochemistry(run);
        sm::texthermoread(run);
        sm::makeemtd(run);
        sm::makeemc(run);
        sm::countcomp(run);
        run.random.seed(1, 1, 1);
        for (int k = 1; k <= run.store.npss; ++k) {
            sm::AxPhase& ph = run.phases.prec1[k];
            if (!ph.hasq) continue;
            bool wasillegal = false;
            sm::findlegalq(run, k, true, wasillegal, P, T);
            phases.push_back(k);
            std::vector<sm::real> x(ph.nxv + 1);
            for (int v = 1; v <= ph.nxv; ++v) x[v] = ph.xv[v].guess;
            solution.push_back(x);
        }
    }
    // Order variables 0.01 (or -0.01 where that is not legal) off the
    // solution.
    void start(size_t i) {
        sm::AxPhase& ph = run.phases.prec1[phases[i]];
        for (sm::real d : {0.01L, -0.01L}) {
            for (int v = 1; v <= ph.nxv; ++v) ph.xv[v].guess = solution[i][v] + (ph.xv[v].isod ? d : 0);
            if (sm::checksf(ph)) return;
        }
    }
};

// One order-disorder phase, solved from 0.01 off its state of order.
void BM_calcq_axpel(benchmark::State& state) {
    Ordered o;
    const size_t i = static_cast<size_t>(state.range(0));
    const int k = o.phases[i];
    state.SetLabel(o.run.phases.prec1[k].pname);
    bool ok = true;
    for (auto _ : state) {
        state.PauseTiming();
        o.start(i);
        state.ResumeTiming();
        ok = ok && sm::calcq(o.run, k, Ordered::P, Ordered::T);
    }
    if (!ok) state.SkipWithError("calcq failed");
}

// All of them, one after the other.
void BM_calcq_axpel_all(benchmark::State& state) {
    Ordered o;
    bool ok = true;
    for (auto _ : state) {
        state.PauseTiming();
        for (size_t i = 0; i < o.phases.size(); ++i) o.start(i);
        state.ResumeTiming();
        for (size_t i = 0; i < o.phases.size(); ++i) ok = ok && sm::calcq(o.run, o.phases[i], Ordered::P, Ordered::T);
    }
    if (!ok) state.SkipWithError("calcq failed");
    state.counters["phases"] = static_cast<double>(o.phases.size());
}

}  // namespace

BENCHMARK(BM_calcq_axpel)->DenseRange(0, 7)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_calcq_axpel_all)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_calca_axpel_derivatives)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_calca_axpel_values)->Unit(benchmark::kMicrosecond);
