// One reaction from one assemblage of rankc + 1 end-members: exact integer
// elimination on the sub-system's components, back-substitution in
// fractions, the in-excess end-members solved last, and a balance check
// over every component.
#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>

#include "console/format.h"
#include "console/intmath.h"
#include "console/prompts.h"
#include "console/runended.h"
#include "reactions/intmatrix.h"
#include "reactions/reactions.h"
#include "run.h"

namespace sm {

namespace {

// The assemblage's matrix with the sub-system's components as rows, each
// row in lowest terms, and the end-member of each column.
void calca(const Run& run, const int* comps, int k, const int* members, int ncols, IntMatrix& m,
           std::array<int, maxenumerated + 2>& emcol) {
    const EndMemberStore& s = run.store;
    m.nrows = k;
    m.ncols = ncols;
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= ncols; ++j) m.a[i][j] = s.c[comps[i]][members[j]];
        reducerow(m, i, 1, ncols);
    }
    for (int j = 1; j <= ncols; ++j) emcol[j] = members[j];
}

// Fraction-free elimination with column pivoting; the column swaps are
// followed in emcol, so the solution still names the right end-members.
void eliminate(IntMatrix& m, std::array<int, maxenumerated + 2>& emcol) {
    const int no = m.nrows, n = m.ncols;
    for (int i = 1; i <= n && i <= no; ++i) {
        if (m.a[i][i] == 0) {
            int pr = 0, pc = 0;
            for (int col = i; col <= n && pr == 0; ++col)
                for (int row = i; row <= no && pr == 0; ++row)
                    if (m.a[row][col] != 0) {
                        pr = row;
                        pc = col;
                    }
            if (pr == 0) return;
            if (pc != i) {
                for (int row = 1; row <= no; ++row) std::swap(m.a[row][i], m.a[row][pc]);
                std::swap(emcol[i], emcol[pc]);
            }
            if (pr != i)
                for (int col = i; col <= n; ++col) std::swap(m.a[i][col], m.a[pr][col]);
        }
        for (int row = i; row <= no; ++row) reducerow(m, row, i, n);
        const long long pivot = m.a[i][i];
        for (int row = i + 1; row <= no; ++row) {
            const long long e = m.a[row][i];
            if (e == 0) continue;
            const long long g = gcd(pivot, e);
            for (int col = i + 1; col <= n; ++col)
                m.a[row][col] = (pivot / g) * m.a[row][col] - (e / g) * m.a[i][col];
            m.a[row][i] = 0;
        }
    }
}

// Prints what an unbalanced reaction was made of before the run stops.
[[noreturn]] void unbalanced(Run& run, const int* comps, int k, const int* members, int ncols,
                             const std::array<long long, maxnem + 1>& coef) {
    const EndMemberStore& s = run.store;
    putstr(run.io, 0, "", 2, chscreenlog);
    for (int j = 1; j <= ncols; ++j)
        putstr(run.io, 0, s.emname[members[j]] + " " + std::to_string(coef[members[j]]), 1,
               chscreenlog);
    std::string line(8, ' ');
    for (int j = 1; j <= s.nc; ++j) putfield(s.compname[j], 6, line);
    putstr(run.io, 0, line, 1, chscreenlog);
    for (int i = 1; i <= s.nem; ++i) {
        bool inassemblage = false;
        for (int j = 1; j <= ncols; ++j) inassemblage = inassemblage || members[j] == i;
        line.clear();
        putfield(inassemblage ? "\xA5" : " ", -2, line);
        putfield(s.emname[i], -6, line);
        for (int j = 1; j <= s.nc; ++j) putint(6, line, s.c[j][i]);
        putstr(run.io, 0, line, 1, chscreenlog);
    }
    line = std::string(8, ' ');
    for (int j = 1; j <= s.nc; ++j) {
        bool inside = false;
        for (int q = 1; q <= k; ++q) inside = inside || comps[q] == j;
        putfield(inside ? "\xA5" : "", 6, line);
    }
    putstr(run.io, 0, line, 1, chscreenlog);
    query(run.io, "in check");
    bomb("check", "unbalanced", 0);
}

}  // namespace

void formreaction(Run& run, const int* comps, int k, const int* members,
                  std::array<long long, maxnem + 1>& coef) {
    EndMemberStore& s = run.store;
    ReactionStore& rs = run.reactions;
    const int rankc = rs.rankc;
    const int n = rankc + 1;
    if (n > maxenumerated + 1) bomb("calca", "wrong no of phases ", 0);

    IntMatrix m;
    std::array<int, maxenumerated + 2> emcol{};
    calca(run, comps, k, members, n, m, emcol);
    eliminate(m, emcol);

    const int no = k;
    if (no != rankc && !(rankc + 1 <= no && std::llabs(m.a[rankc + 1][rankc + 1]) < 1)) {
        putstr(run.io, 0,
               "   no =" + std::to_string(no) + ",  nmax =" + std::to_string(rs.nmax) +
                   ", rank =" + std::to_string(rankc),
               1, chscreenlog);
        bomb("re", "no reaction - WHY", 0);
    }

    // Back-substitution in fractions, the last column as right-hand side.
    std::array<long long, maxenumerated + 2> rhs{}, num{}, den{};
    for (int r = 1; r <= rankc; ++r) rhs[r] = m.a[r][n];
    for (int kk = rankc; kk >= 1; --kk) {
        if (m.a[kk][kk] == 0) {
            num[kk] = 0;
            den[kk] = 1;
        } else {
            const long long g = gcd(rhs[kk], m.a[kk][kk]);
            num[kk] = rhs[kk] / g;
            den[kk] = m.a[kk][kk] / g;
            if (den[kk] < 0) {
                num[kk] = -num[kk];
                den[kk] = -den[kk];
            }
        }
        for (int r = 1; r < kk; ++r) {
            const long long g = gcd(m.a[r][kk], den[kk]);
            const long long mult = den[kk] / g;
            rhs[r] = mult * rhs[r] - num[kk] * (m.a[r][kk] / g);
            if (mult > 1)
                for (int col = r; col <= rankc; ++col)
                    if (col != kk) m.a[r][col] *= mult;
        }
    }
    // With no other column (a sub-system of rank 0) the lone end-member
    // reacts with the in-excess ones only.
    const long long L = rankc > 0 ? lcmlist(&den[1], rankc) : 1;

    for (int i = 0; i <= maxnem; ++i) coef[i] = 0;
    for (int kk = 1; kk <= rankc; ++kk) coef[emcol[kk]] = num[kk] * (L / den[kk]);
    coef[emcol[n]] = -L;

    // The in-excess end-members take up what the others leave of their
    // components.
    if (rs.ncompp < s.nc) {
        std::array<long long, maxcomp + 1> first{}, second{};
        for (int j = rs.ncompp + 1; j <= s.nc; ++j) {
            long long sum = 0;
            for (int i = 1; i <= rs.nemp; ++i) sum += coef[i] * s.c[j][i];
            const long long g = gcd(sum, rs.div[j]);
            first[j] = g != 0 ? sum / g : 0;
            second[j] = g != 0 ? rs.div[j] / g : 1;
            if (second[j] < 0) {
                first[j] = -first[j];
                second[j] = -second[j];
            }
        }
        const long long L2 = lcmlist(&second[rs.ncompp + 1], s.nc - rs.ncompp);
        if (L2 > 1)
            for (int i = 1; i <= rs.nemp; ++i) coef[i] *= L2;
        for (int j = rs.ncompp + 1; j <= s.nc; ++j)
            coef[rs.nemp + (j - rs.ncompp)] = -(L2 / second[j]) * first[j];
    }

    // check: every component balances, in-excess ones included.
    for (int j = 1; j <= s.nc; ++j) {
        long long sum = 0;
        for (int i = 1; i <= s.nem; ++i) sum += coef[i] * s.c[j][i];
        if (sum != 0) unbalanced(run, comps, k, members, n, coef);
    }

    // Fluid on the right.
    long long fluid = 0;
    const int ih2o = s.ih2o, ico2 = s.ico2;
    if (ih2o > 0) fluid += coef[ih2o];
    if (ico2 > 0) fluid += coef[ico2];
    if (fluid < 0)
        for (int i = 1; i <= s.nem; ++i) coef[i] = -coef[i];
}

int emnumber(const Run& run, std::string_view name) {
    for (int i = 1; i <= run.store.nem; ++i)
        if (run.store.emname[i] == name) return i;
    return 0;
}

}  // namespace sm
