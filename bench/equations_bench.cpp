// Timing of the equilibrium equations of a ten-phase metapelite assemblage
// of sm-axpel.txt (g bi mu chl pl4tr ilm mt1 sill q H2O, NCKFMASHTO): one
// evaluation of the residuals with the Jacobian, one without, and a whole
// solve from the file's starting guesses. The solve is a line of a
// pseudosection: at 6 kbar, from 650 degC, the temperature at which
// chlorite leaves the assemblage (its mode set to zero).
#include <benchmark/benchmark.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "ax/ax_reader.h"
#include "ax/endmember_composition.h"
#include "ax/makename.h"
#include "ax/setupphases.h"
#include "console/console.h"
#include "console/runended.h"
#include "equilibrium/composition.h"
#include "equilibrium/equations.h"
#include "reactions/reactions.h"
#include "run.h"
#include "solver/nle.h"
#include "solver/unknowns.h"
#include "thermo/dataset.h"
#include "thermo/made_endmembers.h"

namespace {

using sm::real;

const std::vector<sm::sstring> phases = {"g", "bi", "mu", "chl", "pl4tr", "ilm", "mt1", "sill", "q", "H2O"};

struct Loaded {
    sm::MemoryConsole console;
    sm::Run run{console};
    std::unique_ptr<sm::EquilibriumSystem> sys;
    sm::NleVector start{};
    bool ready = false;

    int phaseof(const sm::sstring& name) const {
        const sm::EndMemberStore& st = run.store;
        for (int k = 1; k <= st.npss; ++k)
            if (run.phases.prec1[k].pname == name) return k;
        for (int k = 1; k <= st.nmin; ++k)
            if (run.phases.prec0[k].pname == name) return st.npss + k;
        return 0;
    }

    // The bulk of the phases at their starting guesses with these modes.
    void ownbulk(const std::vector<real>& modes) {
        sm::EquilibriumState& eq = run.equilibrium;
        const sm::EndMemberStore& st = run.store;
        std::vector<real> sum(st.nc + 1, 0);
        for (int s = 1; s <= eq.nslot; ++s) {
            const sm::PhaseSlot& slot = eq.slot[s];
            std::array<real, sm::maxcomp + 1> f{};
            if (slot.pure) {
                f = run.phases.prec0[slot.phase].comp.x;
            } else {
                const sm::AxPhase& ph = run.phases.prec1[slot.phase];
                for (int v = 1; v <= ph.nxv; ++v) eq.xtrue[slot.xstart + v - 1] = ph.xv[v].guess;
                sm::compcalc(run, slot.phase, eq.xtrue.data(), slot.xstart, f);
            }
            real atoms = 0;
            for (int k = 1; k <= st.nc; ++k) atoms += f[k] * st.catomsum[k];
            for (int k = 1; k <= st.nc; ++k) sum[k] += modes[s] * f[k] / atoms;
        }
        real total = 0;
        for (int j = 1; j <= eq.nuvleft; ++j) total += sum[eq.reducedcomp[j]];
        for (int j = 1; j <= eq.nuvleft; ++j) eq.bulk1[j] = 100 * sum[eq.reducedcomp[j]] / total;
        eq.nbulk = 1;
        sm::setbulkposition(run, 1);
    }

    Loaded() {
        try {
            sm::setuptextread(run, std::string(SM_DATA_DIR) + "/sm-ds6a.txt");
            sm::TextFile file;
            if (!file.open(std::string(SM_DATA_DIR) + "/sm-axpel.txt")) return;
            sm::PhaseChoice choice;
            choice.with = phases;
            sm::readaxfile(run, file, choice);
            sm::preparephases(run, choice);
            sm::makename(run, sm::withomit(run));
            sm::readthermochemistry(run);
            sm::texthermoread(run);
            sm::makeemtd(run);
            sm::makeemc(run);
            sm::countcomp(run);
            run.solver.printlevel = 0;
            sm::EquilibriumState& eq = run.equilibrium;
            eq.set.modesbynle = true;
            eq.set.setmode[phaseof("chl")] = 1;
            sm::setter(run);
            sm::Assemblage a{};
            for (const auto& p : phases) a[phaseof(p)] = true;
            sm::makecrossrefs(run, a);
            // Slots: the a-x phases in file order (g pl4tr mu bi chl ilm
            // mt1), then sill, q, H2O; chlorite at zero.
            std::vector<real> modes(eq.nslot + 1, 0);
            const std::vector<std::pair<const char*, real>> chosen = {
                {"g", 0.04L},    {"pl4tr", 0.15L}, {"mu", 0.22L},  {"bi", 0.15L}, {"chl", 0},
                {"ilm", 0.01L},  {"mt1", 0.01L},   {"sill", 0.04L}, {"q", 0.33L},  {"H2O", 0.05L}};
            for (int s = 1; s <= eq.nslot; ++s)
                for (const auto& [name, m] : chosen)
                    if (eq.slot[s].name == name) modes[s] = m;
            ownbulk(modes);
            int rank = 0;
            bool ok = false;
            sm::calcrankp(run, a, rank, ok);
            bool found = false;
            sm::listindependentreactions(run, found);
            sm::setunknownP(run.solver, 1, 15);
            sm::setunknownT(run.solver, 600, 1200);
            run.solver.active[1] = false;
            sm::loadstart(run, 6, 923.15L, modes);
            start = run.solver.x;
            sys = std::make_unique<sm::EquilibriumSystem>(run);
            ready = ok && found;
        } catch (const sm::RunEnded&) {
        }
    }
};

Loaded& loaded() {
    static Loaded l;
    return l;
}

void evaluation(benchmark::State& state, bool wantJ) {
    Loaded& l = loaded();
    if (!l.ready) {
        state.SkipWithError("set-up failed");
        return;
    }
    auto J = std::make_unique<sm::NleMatrix>();
    sm::NleVector F{};
    for (auto _ : state) {
        const bool ok = l.sys->nlefunc(l.start, *J, F, wantJ);
        benchmark::DoNotOptimize(ok);
        benchmark::DoNotOptimize(F.data());
    }
    const long long g0 = l.run.gcount;
    l.sys->nlefunc(l.start, *J, F, wantJ);
    state.counters["gem calls"] = static_cast<double>(l.run.gcount - g0);
    {
        std::set<int> src;
        const auto& st = l.run.store;
        for (int j = 1; j <= st.nem; ++j) {
            const auto& row = st.td[j];
            if (row[sm::tddepem] == 0) { src.insert(j); continue; }
            const int ph = static_cast<int>(row[sm::tddepphase]), em = static_cast<int>(row[sm::tddepem]);
            const auto& mk = ph >= 1 ? l.run.phases.prec1[ph].em[em].make : l.run.phases.prec0[em].make;
            for (int k = 1; k <= mk.nmake; ++k) src.insert(mk.makerow[k]);
        }
        state.counters["sources"] = src.size();
    }
    state.counters["rows"] = l.run.equilibrium.nrows;
    state.counters["end-members"] = l.run.store.nem;
}

void BM_nlefunc_with_jacobian(benchmark::State& state) { evaluation(state, true); }

// The same assemblage at fixed P and T with every mode free, as in a field
// of a pseudosection: the Jacobian needs no slopes of the energies.
void BM_nlefunc_with_jacobian_PT_fixed(benchmark::State& state) {
    Loaded& l = loaded();
    if (!l.ready) {
        state.SkipWithError("set-up failed");
        return;
    }
    sm::SolverState& sv = l.run.solver;
    const sm::NleVector saved = l.start;
    auto flip = [&](int i, bool active) {
        const real v = sm::truevalue(sv, l.start, i);
        sv.active[i] = active;
        l.start[i] = sm::scaledvalue(sv, v, i);
    };
    int chlslot = 0;
    for (int s = 1; s <= l.run.equilibrium.nslot; ++s)
        if (l.run.equilibrium.slot[s].name == "chl") chlslot = l.run.equilibrium.slot[s].modex;
    flip(2, false);
    flip(chlslot, true);
    evaluation(state, true);
    flip(chlslot, false);
    flip(2, true);
    l.start = saved;
}
void BM_nlefunc_residuals(benchmark::State& state) { evaluation(state, false); }

void BM_solve_from_guesses(benchmark::State& state) {
    Loaded& l = loaded();
    if (!l.ready) {
        state.SkipWithError("set-up failed");
        return;
    }
    int result = -1;
    int iterations = 0;
    for (auto _ : state) {
        l.run.solver.x = l.start;
        sm::nle(l.run, *l.sys, result);
        iterations = l.run.solver.iteration;
    }
    if (result != 0) state.SkipWithError("no solution");
    state.counters["iterations"] = iterations;
    state.counters["evaluations"] = l.run.solver.fncount;
    const long long g0 = l.run.gcount;
    l.run.solver.x = l.start;
    sm::nle(l.run, *l.sys, result);
    state.counters["gem calls"] = static_cast<double>(l.run.gcount - g0);
    state.counters["T(C)"] = static_cast<double>(sm::truevalue(l.run.solver, l.run.solver.x, 2) - 273.15L);
}

}  // namespace

BENCHMARK(BM_nlefunc_with_jacobian)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_nlefunc_with_jacobian_PT_fixed)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_nlefunc_residuals)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_solve_from_guesses)->Unit(benchmark::kMicrosecond);
