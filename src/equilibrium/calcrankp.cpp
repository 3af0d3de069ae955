// The rank of an assemblage on the reduced system, found exactly in
// integers. An assemblage that spans fewer dimensions than the reduced
// system can only balance a bulk that lies in its span: the rows of the
// row-operation matrix beyond the rank give the conditions on the bulk, and
// the mass balance keeps only the rows up to the rank. A floating point rank
// could not tell a true deficit from a nearly dependent set of phases.
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "console/format.h"
#include "console/intmath.h"
#include "console/runended.h"
#include "equilibrium/composition.h"
#include "equilibrium/equilibrium.h"
#include "run.h"

namespace sm {

namespace {

using IntMatrix = std::vector<std::vector<long long>>;

IntMatrix intmatrix(int rows, int cols) { return IntMatrix(rows + 1, std::vector<long long>(cols + 1, 0)); }

struct Elimination {
    int n = 0, m = 0;
    IntMatrix A, A0, L, invL;
    std::vector<long long> den;
    std::vector<int> perm;
    std::vector<sstring> colname;
    std::vector<sstring> phasenames;
};

// The columns of the assemblage: every end-member of each taken a-x phase,
// then each taken pure phase, on the reduced components. A made end-member
// enters as its combination of terms times the common divisor of the make,
// which leaves rank and row operations as they are.
void buildcolumns(Run& run, const Assemblage& taken, Elimination& e) {
    const EndMemberStore& st = run.store;
    const PhaseStore& ps = run.phases;
    const EquilibriumState& eq = run.equilibrium;
    e.n = eq.nuvleft;
    std::vector<const EmComposition*> cols;
    for (int k = 1; k <= st.npss; ++k) {
        if (!taken[k]) continue;
        e.phasenames.push_back(ps.prec1[k].pname);
        for (int j = 1; j <= ps.prec1[k].nem; ++j) {
            cols.push_back(&ps.prec1[k].em[j].comp);
            e.colname.push_back(ps.prec1[k].em[j].ename);
        }
    }
    for (int k = 1; k <= st.nmin; ++k) {
        if (!taken[st.npss + k]) continue;
        e.phasenames.push_back(ps.prec0[k].pname);
        cols.push_back(&ps.prec0[k].comp);
        e.colname.push_back(ps.prec0[k].pname);
    }
    e.m = static_cast<int>(cols.size());
    e.A = intmatrix(e.n, e.m);
    e.den.assign(e.n + 1, 1);
    for (int r = 1; r <= e.n; ++r) {
        const int k = eq.reducedcomp[r];
        e.den[r] = eq.basecscale[k];
        for (int c = 1; c <= e.m; ++c) e.A[r][c] = cols[c - 1]->cnum[k];
    }
    e.A0 = e.A;
}

// Integer elimination with row exchanges; L keeps the multipliers of each
// step, |f1| above the diagonal and -f2 below it. Returns the rank.
int eliminate(Elimination& e) {
    const int n = e.n, m = e.m;
    e.perm.assign(n + 1, 0);
    for (int r = 1; r <= n; ++r) e.perm[r] = r;
    e.L = intmatrix(n, n);
    for (int i = 1; i <= n; ++i)
        for (int r = i + 1; r <= n; ++r) e.L[i][r] = 1;
    const int kmax = std::min(n, m);
    if (kmax == 0) return 0;
    IntMatrix& A = e.A;
    int i = 1, col = 0;
    bool failed = false;
    for (;;) {
        int p = 0;
        if (A[i][col + 1] != 0) {
            p = i;
            ++col;
        } else {
            for (int cc = col + 1; cc <= m && p == 0; ++cc)
                for (int r = i; r <= n; ++r)
                    if (A[r][cc] != 0) {
                        p = r;
                        col = cc;
                        break;
                    }
            if (p == 0) {
                failed = true;
                break;
            }
        }
        if (p > i) {
            for (int cc = col; cc <= m; ++cc) std::swap(A[p][cc], A[i][cc]);
            std::swap(e.perm[p], e.perm[i]);
            for (int k = 1; k < i; ++k) {
                std::swap(e.L[k][i], e.L[k][p]);
                std::swap(e.L[i][k], e.L[p][k]);
            }
        }
        const long long pivot = A[i][col];
        for (int r = i + 1; r <= n; ++r) {
            if (A[r][col] == 0) continue;
            const long long g = gcd(pivot, A[r][col]);
            const long long f1 = pivot / g, f2 = A[r][col] / g;
            if (f1 > 0) {
                for (int cc = col; cc <= m; ++cc) A[r][cc] = f1 * A[r][cc] - f2 * A[i][cc];
                e.L[i][r] = f1;
                e.L[r][i] = -f2;
            } else {
                for (int cc = col; cc <= m; ++cc) A[r][cc] = -f1 * A[r][cc] + f2 * A[i][cc];
                e.L[i][r] = -f1;
                e.L[r][i] = f2;
            }
        }
        if (col == m || i == kmax) break;
        ++i;
    }
    return failed ? i - 1 : i;
}

// The row operations folded into one matrix: row r of invL times the rows
// of the composition matrix in pivot order gives row r of U.
void foldoperations(Elimination& e) {
    const int n = e.n;
    e.invL = intmatrix(n, n);
    for (int r = 1; r <= n; ++r) e.invL[r][r] = 1;
    for (int k = 1; k <= n - 1; ++k)
        for (int r = k + 1; r <= n; ++r) {
            e.invL[r][r] = e.invL[r][r] * e.L[k][r];
            for (int c = 1; c <= k; ++c) e.invL[r][c] = e.invL[k][c] * e.L[r][k] + e.invL[r][c] * e.L[k][r];
        }
}

// projc, applied to true compositions, reproduces U: the check that the
// bookkeeping of exchanges and multipliers held.
bool checkprojc(const Elimination& e, const EquilibriumState& eq) {
    for (int r = 1; r <= e.n; ++r)
        for (int c = 1; c <= e.m; ++c) {
            long long s = 0;
            for (int j = 1; j <= e.n; ++j) s += e.A0[j][c] * (eq.projc[r][j] / e.den[j]);
            if (s != e.A[r][c]) return false;
        }
    return true;
}

bool bulkfits(const EquilibriumState& eq, const std::array<real, maxcomp + 1>& bulk) {
    for (int r = eq.nuvleft - eq.rankdeficit + 1; r <= eq.nuvleft; ++r) {
        real s = 0;
        for (int j = 1; j <= eq.nuvleft; ++j) s += bulk[j] * static_cast<real>(eq.projc[r][j]);
        if (!(std::fabs(s) < 1e-6L)) return false;
    }
    return true;
}

// "   a + 2 b - c = 0" for one row of projc, in component names.
std::string equationtext(const Run& run, const std::vector<long long>& row) {
    const EquilibriumState& eq = run.equilibrium;
    long long g = 0;
    for (int j = 1; j <= eq.nuvleft; ++j) g = gcd(g, row[j]);
    if (g == 0) g = 1;
    long long sign = 1;
    for (int j = 1; j <= eq.nuvleft; ++j)
        if (row[j] != 0) {
            sign = row[j] < 0 ? -1 : 1;
            break;
        }
    std::string text = "   ";
    bool first = true;
    for (int j = 1; j <= eq.nuvleft; ++j) {
        const long long v = sign * row[j] / g;
        if (v == 0) continue;
        if (!first) text += v < 0 ? " - " : " + ";
        else if (v < 0) text += "-";
        const long long a = v < 0 ? -v : v;
        if (a != 1) text += std::to_string(a) + " ";
        text += run.store.compname[eq.reducedcomp[j]];
        first = false;
    }
    return text + " = 0";
}

void printmatrix(Run& run, const std::string& heading, const IntMatrix& a, int rows, int cols,
                 const std::vector<sstring>* colnames) {
    putstr(run.io, 1, heading, 1, chall);
    std::string line;
    if (colnames != nullptr) {
        line.assign(6, ' ');
        for (int c = 1; c <= cols; ++c) putfield((*colnames)[c - 1], 6, line, 100000);
        putstr(run.io, 0, line, 1, chall);
    }
    for (int r = 1; r <= rows; ++r) {
        line.clear();
        putint(6, line, static_cast<real>(r), 100000);
        for (int c = 1; c <= cols; ++c) putint(6, line, static_cast<real>(a[r][c]), 100000);
        putstr(run.io, 0, line, 1, chall);
    }
}

void printall(Run& run, const Elimination& e) {
    const EquilibriumState& eq = run.equilibrium;
    const int n = e.n;
    printmatrix(run, "composition matrix", e.A0, n, e.m, &e.colname);
    IntMatrix p = intmatrix(n, n);
    for (int r = 1; r <= n; ++r) p[r][e.perm[r]] = 1;
    printmatrix(run, "permutation matrix", p, n, n, nullptr);
    printmatrix(run, "L info", e.L, n, n, nullptr);
    printmatrix(run, "inv L", e.invL, n, n, nullptr);
    IntMatrix pc = intmatrix(n, n);
    for (int r = 1; r <= n; ++r)
        for (int c = 1; c <= n; ++c) pc[r][c] = eq.projc[r][c];
    printmatrix(run, "projc", pc, n, n, nullptr);
    printmatrix(run, "row-reduced matrix, U", e.A, n, e.m, &e.colname);
    IntMatrix pa = intmatrix(n, e.m);
    for (int r = 1; r <= n; ++r)
        for (int c = 1; c <= e.m; ++c)
            for (int j = 1; j <= n; ++j) pa[r][c] += pc[r][j] * e.A0[j][c] / e.den[j];
    printmatrix(run, "alternatively, projc A", pa, n, e.m, &e.colname);
}

}  // namespace

void takebasecscale(Run& run) {
    EquilibriumState& eq = run.equilibrium;
    if (eq.havebase) return;
    for (int k = 0; k <= maxcomp; ++k) eq.basecscale[k] = run.store.cscale[k];
    eq.havebase = true;
}

namespace {

void realprojc(EquilibriumState& eq) {
    eq.projidentity = true;
    for (int r = 0; r <= maxcomp; ++r)
        for (int c = 0; c <= maxcomp; ++c) {
            eq.projr[r][c] = static_cast<real>(eq.projc[r][c]);
            if (r >= 1 && r <= eq.nuvleft && c >= 1 && c <= eq.nuvleft && eq.projc[r][c] != (r == c ? 1 : 0))
                eq.projidentity = false;
        }
}

// The rank, projc and the verdict on the bulk.
void calcrankpwork(Run& run, const Assemblage& taken, int& rank, bool& ok) {
    takebasecscale(run);
    EquilibriumState& eq = run.equilibrium;
    const SolverState& sv = run.solver;
    Elimination e;
    buildcolumns(run, taken, e);
    const int n = e.n;
    for (int r = 0; r <= maxcomp; ++r)
        for (int c = 0; c <= maxcomp; ++c) eq.projc[r][c] = r == c ? 1 : 0;
    rank = eliminate(e);
    eq.rank = rank;
    eq.rankdeficit = n - rank;
    foldoperations(e);
    ok = true;
    if (eq.rankdeficit == 0) return;

    for (int c = 1; c <= n; ++c) {
        int j = 0;
        for (int q = 1; q <= n && j == 0; ++q)
            if (e.perm[q] == c) j = q;
        if (j == 0) bomb("calcrankp", "couldn't rearrange columns", 1);
        for (int r = 1; r <= n; ++r) eq.projc[r][c] = e.den[c] * e.invL[r][j];
    }
    const bool checked = checkprojc(e, eq);
    if (eq.nbulk == 0) return;
    const int level = sv.dogmin ? sv.dogminprintlevel : sv.printlevel;
    if (!checked) {
        ok = false;
    } else {
        ok = bulkfits(eq, eq.bulk1) && (eq.nbulk < 2 || bulkfits(eq, eq.bulk2));
        if (!ok && !(sv.dogmin && level <= 1)) {
            if (sv.dogmin) {
                putstr(run.io, 0, "<" + std::string(50, '=') + ">", 1, chall);
                std::string text = "reduced system needed for handling equilibrium involving: ";
                for (const auto& name : e.phasenames) text += name + " ";
                putstr(run.io, 0, text, 1, chall);
            } else {
                putstr(run.io, 0, "bulk NOT in reduced system", 1, chall);
                putstr(run.io, 0, eq.rankdeficit == 1 ? "this equation must apply" : "these equations must apply",
                       1, chall);
                std::vector<long long> row(n + 1, 0);
                for (int r = n - eq.rankdeficit + 1; r <= n; ++r) {
                    for (int j = 1; j <= n; ++j) row[j] = eq.projc[r][j];
                    putstr(run.io, 0, equationtext(run, row), 1, chall);
                }
            }
        }
    }
    if (!ok && level >= 2 && !sv.dogmin) printall(run, e);
    if (!checked && level >= 2) bomb("calcrankp", "can't make LU", 0);
}

}  // namespace

void calcrankp(Run& run, const Assemblage& taken, int& rank, bool& ok) {
    calcrankpwork(run, taken, rank, ok);
    realprojc(run.equilibrium);
}

int rankof(const std::vector<std::vector<long long>>& matrix, int rows, int cols) {
    IntMatrix a = matrix;
    int rank = 0;
    for (int col = 1; col <= cols && rank < rows; ++col) {
        int p = 0;
        for (int r = rank + 1; r <= rows && p == 0; ++r)
            if (a[r][col] != 0) p = r;
        if (p == 0) continue;
        ++rank;
        std::swap(a[p], a[rank]);
        for (int r = rank + 1; r <= rows; ++r) {
            if (a[r][col] == 0) continue;
            const long long g = gcd(a[rank][col], a[r][col]);
            const long long f1 = a[rank][col] / g, f2 = a[r][col] / g;
            long long h = 0;
            for (int c = col; c <= cols; ++c) {
                a[r][c] = f1 * a[r][c] - f2 * a[rank][c];
                h = gcd(h, a[r][c]);
            }
            if (h > 1)
                for (int c = col; c <= cols; ++c) a[r][c] /= h;
        }
    }
    return rank;
}

}  // namespace sm
