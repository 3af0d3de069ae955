#include "reactions/realreaction.h"

#include <cmath>
#include <utility>

#include "console/format.h"
#include "console/runended.h"
#include "run.h"

namespace sm {

namespace {

constexpr real negligible = 1e-5L;

void printmatrix(Run& run, const RealMatrix& a, int nrows, int ncols) {
    for (int i = 1; i <= nrows; ++i) {
        std::string line;
        for (int j = 1; j <= ncols; ++j) putreal(5, false, 13, line, a[i][j]);
        putstr(run.io, 0, line, 1, chscreenlog);
    }
}

}  // namespace

void realreaction(Run& run, RealMatrix a, int nrows, int ncols, std::vector<real>& coefficients) {
    const int n = ncols;
    std::vector<int> column(n + 1);
    for (int j = 1; j <= n; ++j) column[j] = j;
    int pivots = 0;
    for (int i = 1; i < n && i <= nrows; ++i) {
        if (std::fabs(a[i][i]) < negligible) {
            int pr = 0, pc = 0;
            for (int col = i; col <= n && pr == 0; ++col)
                for (int row = i; row <= nrows && pr == 0; ++row)
                    if (std::fabs(a[row][col]) >= negligible) {
                        pr = row;
                        pc = col;
                    }
            if (pr == 0) break;
            for (int row = 1; row <= nrows; ++row) std::swap(a[row][i], a[row][pc]);
            std::swap(column[i], column[pc]);
            std::swap(a[i], a[pr]);
        }
        if (std::fabs(a[i][i]) < 1e-8L) {
            putstr(run.io, 0, std::to_string(i) + "'th pivot ", 1, chscreenlog);
            printmatrix(run, a, nrows, n);
            bomb("realreaction", "zero diagonal element", 0);
        }
        for (int row = i + 1; row <= nrows; ++row) {
            const real f = a[row][i] / a[i][i];
            if (f == 0) continue;
            for (int col = i; col <= n; ++col) a[row][col] -= f * a[i][col];
        }
        pivots = i;
    }
    if (pivots + 1 <= nrows && std::fabs(a[pivots + 1][pivots + 1]) >= negligible)
        bomb("realreaction", "no reaction - WHY", 0);
    std::vector<real> x(n + 1, 0);
    for (int k = pivots; k >= 1; --k) {
        real v = a[k][n];
        for (int j = k + 1; j <= pivots; ++j) v -= a[k][j] * x[j];
        x[k] = v / a[k][k];
    }
    coefficients.assign(n + 1, 0);
    for (int k = 1; k <= pivots; ++k) coefficients[column[k]] = x[k];
    coefficients[column[n]] = -1;
}

std::string realreactiontext(const std::vector<real>& coefficients, const std::vector<sstring>& names,
                             int n) {
    real largest = 0;
    for (int i = 1; i <= n; ++i) largest = std::max(largest, std::fabs(coefficients[i]));
    if (largest <= 0) return "@@@@";
    // In tenths: the smallest significant coefficient becomes 1.0.
    real smallest = largest;
    for (int i = 1; i <= n; ++i) {
        const real v = std::fabs(coefficients[i]);
        if (v > 1e-3L * largest) smallest = std::min(smallest, v);
    }
    std::vector<long long> tenths(n + 1, 0);
    bool alltens = true;
    for (int i = 1; i <= n; ++i) {
        const real v = std::fabs(coefficients[i]);
        const real sign = coefficients[i] < 0 ? -1 : 1;
        if (v > 1e-3L * largest)
            tenths[i] = std::llround(sign * 10 * v / smallest);
        else if (v > 1e-7L * largest)
            tenths[i] = static_cast<long long>(sign);
        if (tenths[i] % 10 != 0) alltens = false;
    }
    auto side = [&](int sign) {
        std::string text;
        for (int i = 1; i <= n; ++i) {
            const long long v = tenths[i] * sign;
            if (v <= 0) continue;
            if (!text.empty()) text += " + ";
            std::string number;
            if (alltens) {
                if (v != 10) number = std::to_string(v / 10);
            } else {
                number = std::to_string(v / 10) + "." + std::to_string(v % 10);
            }
            if (!number.empty()) text += number + " ";
            text += names[i];
        }
        return text;
    };
    const std::string left = side(-1), right = side(1);
    if (left.empty() && right.empty()) return "@@@@";
    return left + " = " + right;
}

}  // namespace sm
