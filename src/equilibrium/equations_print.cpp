#include "equilibrium/equations_print.h"

#include <cmath>
#include <string>

#include "console/format.h"
#include "console/runended.h"
#include "run.h"
#include "solver/nleprint.h"

namespace sm {

namespace {

void printx(Run& run, const NleVector& x) {
    const SolverState& sv = run.solver;
    printxrows(run, sv, x, 1, sv.nx + sv.nm, 15, 0, 2, 1, 4, false);
}

void printresiduals(Run& run, const NleVector& F, int n) {
    std::string line = "F  ";
    real f = 0;
    for (int r = 1; r <= n; ++r) {
        putreal(6, false, 12, line, F[r], 100000);
        f += F[r] * F[r];
    }
    putstr(run.io, 0, line, 1, chall);
    putstr(run.io, 0, "(f = " + real2str(0.5L * f, 6, false) + ")", 1, chall);
}

void printcompositions(Run& run) {
    const EquilibriumState& eq = run.equilibrium;
    std::string line(8, ' ');
    for (int j = 1; j <= eq.nuvleft; ++j) putfield(run.store.compname[eq.reducedcomp[j]], 10, line, 100000);
    putstr(run.io, 0, line, 1, chall);
    for (int s = 1; s <= eq.nslot; ++s) {
        if (eq.slot[s].modex == 0) continue;
        line.clear();
        putfield(eq.slot[s].name, -8, line, 100000);
        for (int j = 1; j <= eq.nuvleft; ++j) putreal(5, true, 10, line, eq.comp[s][j], 100000);
        putstr(run.io, 0, line, 1, chall);
    }
}

std::string rowname(const Run& run, int r) {
    const int nir = run.reactions.nir;
    if (r <= nir) return "eq" + std::to_string(r);
    const EquilibriumState& eq = run.equilibrium;
    return run.store.compname[eq.reducedcomp[r - nir]];
}

}  // namespace

void reportbadvalue(Run& run, int i) { putstr(run.io, 0, "## bad " + run.solver.xname[i] + " value", 1, chscreen); }

void reportfailedpoint(Run& run, const NleVector& x) {
    putstr(run.io, 2, "FAILED in nlefunc, at which stage x was:", 1, chall);
    printx(run, x);
}

void reportnotok(Run& run) { putstr(run.io, 0, "** NOT OK", 1, chscreen); }

bool reportoffsystem(Run& run, real f) {
    const SolverState& sv = run.solver;
    const std::string line = "residual (" + real2str(f, 6, false) + ") should be zero in rank-deficient case";
    if (!sv.dogmin) {
        putstr(run.io, 0, line, 1, chall);
        bomb("nlefunc", "residuals not in reduced system", 0);
    }
    if (sv.dogminprintlevel >= 2) {
        putstr(run.io, 0, line, 1, chall);
        putstr(run.io, 0, "residuals not in reduced system - shouldn't have happened?", 1, chall);
    }
    return false;
}

void reportnonsquare(Run& run, const NleVector& x, const NleVector& F) {
    const SolverState& sv = run.solver;
    const EquilibriumState& eq = run.equilibrium;
    int ax = 0, am = 0;
    for (int i = 1; i <= sv.nx; ++i) ax += sv.active[i] ? 1 : 0;
    for (int i = sv.nx + 1; i <= sv.nx + sv.nm; ++i) am += sv.active[i] ? 1 : 0;
    putstr(run.io, 0,
           "row " + std::to_string(eq.nrows) + " (" + std::to_string(run.reactions.nir) + " " +
               std::to_string(eq.nuvleft) + " " + std::to_string(eq.rankdeficit) + ")",
           1, chall);
    putstr(run.io, 0, "col " + std::to_string(eq.ncols) + " (" + std::to_string(ax) + " " + std::to_string(am) + ")", 1,
           chall);
    if (run.script.batches.batchflag == 0)
        putstr(run.io, 0, "mcsm: batch = " + std::to_string(sv.batch), 1, chall);
    printcompositions(run);
    printx(run, x);
    printresiduals(run, F, eq.nrows < eq.ncols ? eq.nrows : eq.ncols);
    bomb("nlefunc", "non-square jacobian", 1);
}

void printequations(Run& run, const NleVector& x, const NleMatrix& J, const NleVector& F, bool wantJ) {
    const EndMemberStore& st = run.store;
    const EquilibriumState& eq = run.equilibrium;
    const SolverState& sv = run.solver;
    std::string line = "activities";
    putstr(run.io, 1, line, 1, chall);
    for (int first = 1; first <= st.nem; first += 10) {
        std::string names, values;
        for (int i = first; i <= st.nem && i < first + 10; ++i) {
            putfield(st.emname[i], 10, names, 100000);
            putreal(5, false, 10, values, st.activ[i], 100000);
        }
        putstr(run.io, 0, names, 1, chall);
        putstr(run.io, 0, values, 1, chall);
    }
    if (wantJ) {
        putstr(run.io, 1, "jacobian", 1, chall);
        line.assign(8, ' ');
        for (int i = 1; i <= sv.nx + sv.nm; ++i)
            if (eq.colof[i] != 0) putfield(sv.xname[i], 10, line, 100000);
        putstr(run.io, 0, line, 1, chall);
        for (int r = 1; r <= eq.nrows; ++r) {
            line.clear();
            putfield(rowname(run, r), -8, line, 100000);
            for (int c = 1; c <= eq.ncols; ++c) putreal(4, false, 10, line, J[r][c], 100000);
            putstr(run.io, 0, line, 1, chall);
        }
    }
    printx(run, x);
    printresiduals(run, F, eq.nrows);
}

}  // namespace sm
