#pragma once
// Small systems for the solver's tests, written in true values: residuals and
// their derivatives as plain functions, scaled to the box as a residual
// routine of the program does it.
#include <functional>
#include <vector>

#include "console/console.h"
#include "run.h"
#include "solver/nle.h"
#include "solver/unknowns.h"

namespace sm::nletest {

using Values = std::vector<real>;               // v[1..nx+nm]
using Rows = std::vector<std::vector<real>>;    // dF[r][i], i an index of x

// One entry of a test layout.
struct Unknown {
    const char* name;
    real lo, hi, start;
    bool active = true;
    int limlo = acccomp, limhi = acccomp;
};

class TrueSystem : public NleSystem {
public:
    // f fills F[1..n] and dF[r][i] for i = 1..nx+nm at the true values v;
    // false makes the point illegal.
    using Fun = std::function<bool(const Values& v, Values& F, Rows& dF)>;

    TrueSystem(Run& run, Fun f) : run_(run), f_(std::move(f)) {}

    bool nlefunc(const NleVector& x, NleMatrix& J, NleVector& F, bool wantJ) override {
        const SolverState& s = run_.solver;
        ++calls;
        int bad = 0;
        if (!inbox(s, x, bad)) {
            ++outside;
            return false;
        }
        const int total = s.nx + s.nm;
        Values v(total + 1, 0.0L);
        for (int i = 1; i <= total; ++i) v[i] = truevalue(s, x, i);
        visited.push_back(v);
        int n = 0;
        std::vector<int> cols;
        for (int i = 1; i <= total; ++i)
            if (s.active[i]) cols.push_back(i), ++n;
        Values Fv(n + 1, 0.0L);
        Rows dF(n + 1, Values(total + 1, 0.0L));
        if (!f_(v, Fv, dF)) return false;
        for (int r = 1; r <= n; ++r) {
            F[r] = Fv[r];
            if (wantJ)
                for (int k = 1; k <= n; ++k) J[r][k] = dF[r][cols[k - 1]] / s.scale[cols[k - 1]];
        }
        return true;
    }

    int calls = 0;
    int outside = 0;
    std::vector<Values> visited;  // true values of every legal point asked for

private:
    Run& run_;
    Fun f_;
};

// Lays out the unknowns as compositional variables with the given ranges
// (entries 1 and 2 are ordinary entries here unless named P and T).
inline void layout(Run& run, const std::vector<Unknown>& u, int nm = 0) {
    SolverState& s = run.solver;
    s.nm = nm;
    s.nx = static_cast<int>(u.size()) - nm;
    for (int i = 1; i <= static_cast<int>(u.size()); ++i) {
        const Unknown& e = u[i - 1];
        s.xname[i] = e.name;
        s.active[i] = e.active;
        setunknowncomp(s, i, e.lo, e.hi, false, false);
        s.limlo[i] = e.limlo;
        s.limhi[i] = e.limhi;
        s.x[i] = scaledvalue(s, e.start, i);
    }
}

inline real valueof(const Run& run, int i) { return truevalue(run.solver, run.solver.x, i); }

}  // namespace sm::nletest
