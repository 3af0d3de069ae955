#include "reactions/intmatrix.h"

#include <cstdlib>
#include <utility>

#include "console/intmath.h"

namespace sm {

long long rowgcd(const IntMatrix& m, int row, int from, int to) {
    long long g = 0;
    for (int j = from; j <= to && g != 1; ++j) g = gcd(g, m.a[row][j]);
    return g;
}

void reducerow(IntMatrix& m, int row, int from, int to) {
    const long long g = rowgcd(m, row, from, to);
    if (g > 1)
        for (int j = from; j <= to; ++j) m.a[row][j] /= g;
}

int integerrank(IntMatrix& m) {
    int rank = 0;
    for (int col = 1; col <= m.ncols && rank < m.nrows; ++col) {
        int pr = 0;
        for (int i = rank + 1; i <= m.nrows && pr == 0; ++i)
            if (m.a[i][col] != 0) pr = i;
        if (pr == 0) continue;
        ++rank;
        std::swap(m.a[rank], m.a[pr]);
        const long long p = m.a[rank][col];
        for (int i = rank + 1; i <= m.nrows; ++i) {
            const long long e = m.a[i][col];
            if (e == 0) continue;
            const long long g = gcd(p, e);
            for (int j = col; j <= m.ncols; ++j)
                m.a[i][j] = (p / g) * m.a[i][j] - (e / g) * m.a[rank][j];
            reducerow(m, i, col, m.ncols);
        }
    }
    return rank;
}

}  // namespace sm
