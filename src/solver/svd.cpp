#include "svd.h"

#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "console/runended.h"

namespace sm {

namespace {

// sqrt(a^2 + b^2) without overflow or destructive underflow.
real pythag(real a, real b) {
    const real fa = std::fabs(a), fb = std::fabs(b);
    if (fa > fb) {
        const real r = fb / fa;
        return fa * std::sqrt(1.0L + r * r);
    }
    if (fb == 0.0L) return 0.0L;
    const real r = fa / fb;
    return fb * std::sqrt(1.0L + r * r);
}

real withsign(real magnitude, real of) { return of >= 0.0L ? std::fabs(magnitude) : -std::fabs(magnitude); }

// Householder reduction of a to upper bidiagonal form: the diagonal goes to
// w, the superdiagonal to e (e[i] couples i-1 and i, e[1] = 0); the vectors
// of the reflections stay in a. Returns the norm that sets the size of a
// negligible element in the sweeps.
real bidiagonalise(MatrixRef a, int m, int n, real* w, real* e) {
    real g = 0, scale = 0, anorm = 0;
    for (int i = 1; i <= n; ++i) {
        const int l = i + 1;
        e[i] = scale * g;
        g = scale = 0;
        real s = 0;
        if (i <= m) {
            for (int k = i; k <= m; ++k) scale += std::fabs(a(k, i));
            if (scale != 0.0L) {
                for (int k = i; k <= m; ++k) {
                    a(k, i) /= scale;
                    s += a(k, i) * a(k, i);
                }
                const real f = a(i, i);
                g = -withsign(std::sqrt(s), f);
                const real h = f * g - s;
                a(i, i) = f - g;
                for (int j = l; j <= n; ++j) {
                    real sum = 0;
                    for (int k = i; k <= m; ++k) sum += a(k, i) * a(k, j);
                    const real t = sum / h;
                    for (int k = i; k <= m; ++k) a(k, j) += t * a(k, i);
                }
                for (int k = i; k <= m; ++k) a(k, i) *= scale;
            }
        }
        w[i] = scale * g;
        g = scale = s = 0;
        if (i <= m && i != n) {
            for (int k = l; k <= n; ++k) scale += std::fabs(a(i, k));
            if (scale != 0.0L) {
                for (int k = l; k <= n; ++k) {
                    a(i, k) /= scale;
                    s += a(i, k) * a(i, k);
                }
                const real f = a(i, l);
                g = -withsign(std::sqrt(s), f);
                const real h = f * g - s;
                a(i, l) = f - g;
                for (int k = l; k <= n; ++k) e[k] = a(i, k) / h;
                for (int j = l; j <= m; ++j) {
                    real sum = 0;
                    for (int k = l; k <= n; ++k) sum += a(j, k) * a(i, k);
                    for (int k = l; k <= n; ++k) a(j, k) += sum * e[k];
                }
                for (int k = l; k <= n; ++k) a(i, k) *= scale;
            }
        }
        const real size = std::fabs(w[i]) + std::fabs(e[i]);
        if (size > anorm) anorm = size;
    }
    return anorm;
}

// Builds V from the right-hand reflections kept in the rows of a. `g` runs
// over the superdiagonal as the reduction left it.
void accumulateright(MatrixRef a, int n, const real* e, MatrixRef v) {
    real g = 0;
    int l = n + 1;
    for (int i = n; i >= 1; --i) {
        if (i < n) {
            if (g != 0.0L) {
                // Two divisions rather than one keep a tiny a(i, l) from underflowing.
                for (int j = l; j <= n; ++j) v(j, i) = (a(i, j) / a(i, l)) / g;
                for (int j = l; j <= n; ++j) {
                    real sum = 0;
                    for (int k = l; k <= n; ++k) sum += a(i, k) * v(k, j);
                    for (int k = l; k <= n; ++k) v(k, j) += sum * v(k, i);
                }
            }
            for (int j = l; j <= n; ++j) v(i, j) = v(j, i) = 0;
        }
        v(i, i) = 1;
        g = e[i];
        l = i;
    }
}

// Builds U in place of a from the left-hand reflections kept in its columns.
void accumulateleft(MatrixRef a, int m, int n, const real* w) {
    const int top = m < n ? m : n;
    for (int i = top; i >= 1; --i) {
        const int l = i + 1;
        real g = w[i];
        for (int j = l; j <= n; ++j) a(i, j) = 0;
        if (g != 0.0L) {
            g = 1.0L / g;
            for (int j = l; j <= n; ++j) {
                real sum = 0;
                for (int k = l; k <= m; ++k) sum += a(k, i) * a(k, j);
                const real f = (sum / a(i, i)) * g;
                for (int k = i; k <= m; ++k) a(k, j) += f * a(k, i);
            }
            for (int j = i; j <= m; ++j) a(j, i) *= g;
        } else {
            for (int j = i; j <= m; ++j) a(j, i) = 0;
        }
        a(i, i) += 1;
    }
}

// Rotates columns p and q of a matrix of `rows` rows by (c, s).
void rotatecolumns(MatrixRef x, int rows, int p, int q, real c, real s) {
    for (int j = 1; j <= rows; ++j) {
        const real y = x(j, p), z = x(j, q);
        x(j, p) = y * c + z * s;
        x(j, q) = z * c - y * s;
    }
}

// Diagonalises the bidiagonal matrix by QR sweeps with Wilkinson's shift,
// carrying the rotations into U (in a) and V. Returns the count of values
// that did not settle.
int diagonalise(MatrixRef a, int m, int n, real* w, real* e, MatrixRef v, real anorm, Io* io) {
    int unsettled = 0;
    for (int k = n; k >= 1; --k) {
        for (int sweeps = 0;; ++sweeps) {
            // Look for a negligible superdiagonal element (split) or a
            // negligible diagonal one (cancel first, then split).
            int l = k;
            bool cancel = true;
            for (; l >= 1; --l) {
                if (std::fabs(e[l]) + anorm == anorm) {
                    cancel = false;
                    break;
                }
                if (std::fabs(w[l - 1]) + anorm == anorm) break;
            }
            if (cancel) {
                const int nm = l - 1;
                real c = 0, s = 1;
                for (int i = l; i <= k; ++i) {
                    const real f = s * e[i];
                    e[i] = c * e[i];
                    if (std::fabs(f) + anorm == anorm) break;
                    const real g = w[i];
                    real h = pythag(f, g);
                    w[i] = h;
                    h = 1.0L / h;
                    c = g * h;
                    s = -f * h;
                    rotatecolumns(a, m, nm, i, c, s);
                }
            }
            const real z = w[k];
            if (l == k || sweeps == svdmaxsweeps) {
                if (l != k) {
                    ++unsettled;
                    if (io) putstr(*io, 0, "too many iterations (k = " + std::to_string(k) + ")", 1, chscreen);
                }
                // Singular values are made non-negative; V takes the sign.
                if (z < 0.0L) {
                    w[k] = -z;
                    for (int j = 1; j <= n; ++j) v(j, k) = -v(j, k);
                }
                break;
            }
            // Shift from the bottom 2 by 2 minor.
            real x = w[l];
            const int nm = k - 1;
            real y = w[nm];
            real g = e[nm];
            real h = e[k];
            real f = ((y - z) * (y + z) + (g - h) * (g + h)) / (2.0L * h * y);
            g = pythag(f, 1.0L);
            f = ((x - z) * (x + z) + h * ((y / (f + withsign(g, f))) - h)) / x;
            // Chase the bulge down with Givens rotations.
            real c = 1, s = 1;
            for (int j = l; j <= nm; ++j) {
                const int i = j + 1;
                g = e[i];
                y = w[i];
                h = s * g;
                g = c * g;
                real zz = pythag(f, h);
                e[j] = zz;
                c = f / zz;
                s = h / zz;
                f = x * c + g * s;
                g = g * c - x * s;
                h = y * s;
                y *= c;
                rotatecolumns(v, n, j, i, c, s);
                zz = pythag(f, h);
                w[j] = zz;
                if (zz != 0.0L) {
                    zz = 1.0L / zz;
                    c = f * zz;
                    s = h * zz;
                }
                f = c * g + s * y;
                x = c * y - s * g;
                rotatecolumns(a, m, j, i, c, s);
            }
            e[l] = 0;
            e[k] = f;
            w[k] = x;
        }
    }
    return unsettled;
}

void swapcolumns(MatrixRef x, int rows, int p, int q) {
    for (int j = 1; j <= rows; ++j) std::swap(x(j, p), x(j, q));
}

// Ascending order of w, with the columns of U and V moved alongside.
void sortascending(MatrixRef a, int m, int n, real* w, MatrixRef v) {
    for (int i = 1; i < n; ++i) {
        int smallest = i;
        for (int j = i + 1; j <= n; ++j)
            if (w[j] < w[smallest]) smallest = j;
        if (smallest != i) {
            std::swap(w[i], w[smallest]);
            swapcolumns(a, m, i, smallest);
            swapcolumns(v, n, i, smallest);
        }
    }
}

}  // namespace

int svd(MatrixRef a, int m, int n, real* w, MatrixRef v, Io* io) {
    if (n < 1 || m < 1) return 0;
    if (n > maxsvdcols) bomb("svd", "too many columns", 1);
    std::array<real, maxsvdcols + 1> e{};
    const real anorm = bidiagonalise(a, m, n, w, e.data());
    accumulateright(a, n, e.data(), v);
    accumulateleft(a, m, n, w);
    const int unsettled = diagonalise(a, m, n, w, e.data(), v, anorm, io);
    sortascending(a, m, n, w, v);
    return unsettled;
}

}  // namespace sm
