// An independent set of reactions in one stroke: the null space of the
// composition matrix by exact integer Gauss-Jordan elimination.
#include <cmath>
#include <vector>

#include "console/intmath.h"
#include "console/runended.h"
#include "reactions/reactiondumps.h"
#include "reactions/reactions.h"
#include "run.h"

namespace sm {

namespace {

using Row = std::vector<long long>;

long long gcdof(const Row& row, int from, int to) {
    long long g = 0;
    for (int j = from; j <= to && g != 1; ++j) g = gcd(g, row[j]);
    return g;
}

void appendreaction(Run& run, const std::vector<long long>& coef, int nrows, int ncols) {
    EndMemberStore& s = run.store;
    ReactionStore& rs = run.reactions;
    for (int k = 1; k <= nrows; ++k) {
        long long sum = 0;
        for (int i = 1; i <= ncols; ++i) sum += coef[i] * s.c[k][i];
        if (sum != 0) bomb("nullspace", "reaction doesn't balance", 0);
    }
    if (rs.nir >= maxreactions) bomb("nullspace", "too many reactions", 0);
    for (int i = 1; i <= ncols; ++i)
        if (coef[i] > 32767 || coef[i] < -32767) bomb("re", "reaction coefficients too large", 0);
    ++rs.nir;
    for (int i = 0; i <= maxnem; ++i) s.r[rs.nir][i] = i <= ncols ? static_cast<short>(coef[i]) : 0;
    rs.nreactionset = rs.nir;
    rs.reactionset[rs.nir] = reactionmembers(run, rs.nir);
}

}  // namespace

int nullspace(Run& run, int nrows, int ncols) {
    const EndMemberStore& s = run.store;
    std::vector<Row> a(nrows + 1, Row(ncols + 1, 0));
    for (int k = 1; k <= nrows; ++k)
        for (int i = 1; i <= ncols; ++i) a[k][i] = s.c[k][i];
    std::vector<int> pivot(nrows + 1, 0);
    std::vector<bool> ispivot(ncols + 1, false);

    int rank = 0;
    for (int row = 1; row <= nrows; ++row) {
        const int start = row == 1 ? 1 : pivot[row - 1] + 1;
        if (start > ncols) break;
        int pc = 0, pr = 0;
        if (a[row][start] != 0) {
            pc = start;
            pr = row;
        } else {
            for (int col = start; col <= ncols && pc == 0; ++col)
                for (int q = row; q <= nrows && pc == 0; ++q)
                    if (a[q][col] != 0) {
                        pc = col;
                        pr = q;
                    }
        }
        if (pc == 0) break;
        pivot[row] = pc;
        ispivot[pc] = true;
        rank = row;
        if (pc == ncols) {
            std::swap(a[row][ncols], a[pr][ncols]);
            break;
        }
        if (pr != row)
            for (int col = pc; col <= ncols; ++col) std::swap(a[row][col], a[pr][col]);
        const long long g0 = gcdof(a[row], pc, ncols);
        if (g0 > 1)
            for (int col = pc; col <= ncols; ++col) a[row][col] /= g0;
        const long long p = a[row][pc];
        for (int q = 1; q <= nrows; ++q) {
            if (q == row || a[q][pc] == 0) continue;
            const long long g = gcd(p, a[q][pc]);
            long long x = p / g, y = a[q][pc] / g;
            if (x < 0) {
                x = -x;
                y = -y;
            }
            for (int col = 1; col <= ncols; ++col) a[q][col] = x * a[q][col] - y * a[row][col];
        }
    }
    for (int k = 1; k <= nrows; ++k) {
        const long long g = gcdof(a[k], 1, ncols);
        if (g > 1)
            for (int i = 1; i <= ncols; ++i) a[k][i] /= g;
    }

    std::vector<long long> coef(ncols + 1, 0), num(rank + 1, 0), den(rank + 1, 1);
    for (int j = ncols; j >= 1; --j) {
        if (ispivot[j]) continue;
        long long L = 1;
        bool any = false;
        for (int r = 1; r <= rank; ++r) {
            const int p = pivot[r];
            const long long g = gcd(a[r][j], a[r][p]);
            num[r] = g != 0 ? -a[r][j] / g : 0;
            den[r] = g != 0 ? a[r][p] / g : 1;
            if (den[r] < 0) {
                num[r] = -num[r];
                den[r] = -den[r];
            }
            if (num[r] != 0) {
                L = any ? lcm(L, den[r]) : den[r];
                any = true;
            }
        }
        std::fill(coef.begin(), coef.end(), 0);
        coef[j] = L;
        for (int r = 1; r <= rank; ++r) coef[pivot[r]] = L / den[r] * num[r];
        appendreaction(run, coef, nrows, ncols);
    }
    return rank;
}

void listindependentreactions(Run& run, bool& found) {
    EndMemberStore& s = run.store;
    ReactionStore& rs = run.reactions;
    rs.nir = 0;
    rs.nreactionset = 0;
    rs.widestreaction = 0;
    nullspace(run, s.nc, s.nem);
    for (int n = 1; n <= maxreactions; ++n) rs.rscale[n] = 1;
    for (int n = 1; n <= rs.nir; ++n) {
        real p = 0, m = 0;
        for (int i = 1; i <= rs.naxem && i <= s.nem; ++i) {
            const real v = static_cast<real>(s.r[n][i]) * s.nsites[i];
            if (v > 0) p += v;
            else m += v;
        }
        const real size = std::round(std::sqrt(p * p + m * m));
        rs.rscale[n] = size < 1 ? 1 : size > 500 ? 500 : static_cast<int>(size);
        writereaction(run, n);
    }
    found = rs.nir > 0;
    if (rs.nir == 0 && !rs.dogminrun) {
        putstr(run.io, 1, "** no reactions", 2, chall);
        printnoreactions(run);
    } else if (rs.nir > 0 && rs.incnler == 0) {
        putstr(run.io, 0, "", 1, chlog);
        for (int n = 1; n <= rs.nir; ++n) putstr(run.io, 0, rs.reactionname[n], 1, chlog);
        printreactionlists(run);
    }
}

}  // namespace sm
