// Timing of the solver's costly parts: the decomposition of a Jacobian of
// the sizes a run meets, and a whole Newton solve of 20 unknowns.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "console/console.h"
#include "run.h"
#include "solver/nle.h"
#include "solver/svd.h"
#include "solver/unknowns.h"

namespace {

using sm::real;

// A dense, well-mixed matrix of order n with entries in (-1, 1).
std::vector<real> densematrix(int n) {
    std::vector<real> a(static_cast<size_t>(n + 1) * (n + 1));
    std::uint64_t state = 2024;
    for (int i = 1; i <= n; ++i)
        for (int j = 1; j <= n; ++j) {
            state = state * 6364136223846793005ULL + 1442695040888963407ULL;
            a[static_cast<size_t>(i) * (n + 1) + j] =
                static_cast<real>(state >> 11) / static_cast<real>(1ULL << 53) * 2 - 1;
        }
    return a;
}

void BM_svd(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const std::vector<real> a0 = densematrix(n);
    std::vector<real> a(a0.size()), v(a0.size()), w(n + 1);
    for (auto _ : state) {
        a = a0;
        sm::svd(sm::MatrixRef{a.data(), n + 1}, n, n, w.data(), sm::MatrixRef{v.data(), n + 1},
                nullptr);
        benchmark::DoNotOptimize(w.data());
    }
}
BENCHMARK(BM_svd)->Arg(30)->Arg(90)->Unit(benchmark::kMicrosecond);

// The tridiagonal system of Broyden, (3 - 2 v_i) v_i - v_(i-1) - 2 v_(i+1) + 1 = 0,
// in 20 unknowns from v = -1, with a root near -0.6 in every entry.
class Broyden : public sm::NleSystem {
public:
    explicit Broyden(sm::Run& run) : run_(run) {}
    bool nlefunc(const sm::NleVector& x, sm::NleMatrix& J, sm::NleVector& F, bool wantJ) override {
        const sm::SolverState& s = run_.solver;
        int bad = 0;
        if (!sm::inbox(s, x, bad)) return false;
        const int n = s.nx;
        real v[sm::maxnx + 2] = {};
        for (int i = 1; i <= n; ++i) v[i] = sm::truevalue(s, x, i);
        for (int i = 1; i <= n; ++i) {
            F[i] = (3 - 2 * v[i]) * v[i] - v[i - 1] - 2 * v[i + 1] + 1;
            if (!wantJ) continue;
            for (int j = 1; j <= n; ++j) J[i][j] = 0;
            J[i][i] = (3 - 4 * v[i]) / s.scale[i];
            if (i > 1) J[i][i - 1] = -1 / s.scale[i - 1];
            if (i < n) J[i][i + 1] = -2 / s.scale[i + 1];
        }
        return true;
    }

private:
    sm::Run& run_;
};

void BM_newton20(benchmark::State& state) {
    sm::MemoryConsole console;
    sm::Run run(console);
    sm::SolverState& s = run.solver;
    s.nx = 20;
    s.nm = 0;
    for (int i = 1; i <= 20; ++i) {
        s.active[i] = true;
        sm::setunknowncomp(s, i, -2, 1, false, false);
    }
    Broyden sys(run);
    int iterations = 0;
    for (auto _ : state) {
        for (int i = 1; i <= 20; ++i) s.x[i] = sm::scaledvalue(s, -1, i);
        int result = -1;
        if (!sm::nle(run, sys, result)) state.SkipWithError("no solution");
        iterations = s.iteration;
    }
    state.counters["iterations"] = iterations;
}
BENCHMARK(BM_newton20)->Unit(benchmark::kMicrosecond);

}  // namespace
