// The decomposition against matrices built as U diag(s) V^T from known
// orthogonal factors and known singular values.
#include "solver/svd.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "console/console.h"
#include "console/io.h"
#include "console/runended.h"
#include "testutil.h"

namespace sm {
namespace {

// A dense 1-based matrix with its own store.
struct Dense {
    Dense(int rows, int cols) : m(rows), n(cols), a(static_cast<size_t>(rows + 1) * (cols + 1)) {}
    int m, n;
    std::vector<real> a;
    real& operator()(int i, int j) { return a[static_cast<size_t>(i) * (n + 1) + j]; }
    MatrixRef ref() { return MatrixRef{a.data(), n + 1}; }
};

// Deterministic numbers in (-1, 1).
struct Lcg {
    std::uint64_t state = 12345;
    real next() {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<real>(state >> 11) / static_cast<real>(1ULL << 53) * 2.0L - 1.0L;
    }
};

// An orthogonal matrix of order k: a product of Householder reflections.
Dense orthogonal(int k, Lcg& rng) {
    Dense q(k, k);
    for (int i = 1; i <= k; ++i) q(i, i) = 1;
    std::vector<real> u(k + 1);
    for (int r = 0; r < 4; ++r) {
        real norm = 0;
        for (int i = 1; i <= k; ++i) {
            u[i] = rng.next();
            norm += u[i] * u[i];
        }
        // q := q (I - 2 u u^T / u^T u)
        for (int i = 1; i <= k; ++i) {
            real dot = 0;
            for (int j = 1; j <= k; ++j) dot += q(i, j) * u[j];
            for (int j = 1; j <= k; ++j) q(i, j) -= 2.0L * dot * u[j] / norm;
        }
    }
    return q;
}

struct Built {
    Dense a;
    std::vector<real> sigma;  // ascending, n of them
};

// a = U diag(s) V^T, U the first columns of an orthogonal m by m matrix.
Built build(int m, int n, std::vector<real> s, std::uint64_t seed) {
    Lcg rng;
    rng.state = seed;
    const Dense qu = orthogonal(m, rng);
    const Dense qv = orthogonal(n, rng);
    Dense a(m, n);
    const int r = std::min(m, n);
    for (int i = 1; i <= m; ++i)
        for (int j = 1; j <= n; ++j) {
            real sum = 0;
            for (int k = 1; k <= r; ++k)
                sum += const_cast<Dense&>(qu)(i, k) * s[k - 1] * const_cast<Dense&>(qv)(j, k);
            a(i, j) = sum;
        }
    s.resize(n, 0.0L);  // m < n: the missing values are 0
    std::sort(s.begin(), s.end());
    return {a, s};
}

struct Case {
    const char* name;
    int m, n;
    std::vector<real> s;  // the first min(m, n) singular values, any order
    real tol;             // relative to the largest value: below what doubles could give
};

std::vector<real> spread(int k, real lo, real hi, bool geometric) {
    std::vector<real> s(k);
    for (int i = 0; i < k; ++i) {
        const real t = k == 1 ? 0 : static_cast<real>(i) / (k - 1);
        s[i] = geometric ? lo * std::pow(hi / lo, t) : lo + (hi - lo) * t;
    }
    return s;
}

std::vector<Case> cases() {
    std::vector<Case> c;
    c.push_back({"3x3", 3, 3, {3.0L, 1.0L, 2.0L}, 1e-17L});
    c.push_back({"30x30 geometric", 30, 30, spread(30, 1e-6L, 1.0L, true), 2e-17L});
    c.push_back({"90x90 even", 90, 90, spread(90, 1.0L, 90.0L, false), 5e-17L});
    std::vector<real> near = spread(90, 1e-3L, 10.0L, true);
    near[10] = 1e-13L;   // just under the truncation threshold
    near[20] = 1e-17L;
    near[30] = 0;
    near[40] = 0;
    c.push_back({"90x90 near-singular", 90, 90, near, 5e-17L});
    c.push_back({"10x10 rank 7", 10, 10, {5, 4, 3, 2, 1, 0.5L, 0.25L, 0, 0, 0}, 1e-17L});
    c.push_back({"120x20 tall", 120, 20, spread(20, 0.1L, 100.0L, true), 2e-17L});
    c.push_back({"5x13 wide", 5, 13, {1, 2, 3, 4, 5}, 1e-17L});
    c.push_back({"400x90 tall", 400, 90, spread(90, 1e-4L, 1e4L, true), 5e-17L});
    return c;
}

TEST(Svd, KnownFactorsAreRecovered) {
    for (const Case& tc : cases()) {
        SCOPED_TRACE(tc.name);
        Built b = build(tc.m, tc.n, tc.s, 777 + tc.m * 31 + tc.n);
        Dense a = b.a;
        Dense v(tc.n, tc.n);
        std::vector<real> w(tc.n + 1);
        EXPECT_EQ(svd(a.ref(), tc.m, tc.n, w.data(), v.ref(), nullptr), 0);
        const real big = b.sigma.back();
        const real tol = tc.tol * big;
        for (int k = 1; k <= tc.n; ++k) {
            EXPECT_LT(std::fabs(w[k] - b.sigma[k - 1]), tol) << "k = " << k;
            if (k > 1) {
                EXPECT_LE(w[k - 1], w[k]);
            }
            EXPECT_GE(w[k], 0.0L);
        }
        // U W V^T gives back the matrix.
        real worst = 0;
        for (int i = 1; i <= tc.m; ++i)
            for (int j = 1; j <= tc.n; ++j) {
                real sum = 0;
                for (int k = 1; k <= tc.n; ++k) sum += a(i, k) * w[k] * v(j, k);
                worst = std::max(worst, std::fabs(sum - b.a(i, j)));
            }
        EXPECT_LT(worst, tol);
        // V is orthogonal; U has orthonormal columns where w is not zero.
        for (int p = 1; p <= tc.n; ++p)
            for (int q = 1; q <= tc.n; ++q) {
                real vv = 0, uu = 0;
                for (int i = 1; i <= tc.n; ++i) vv += v(i, p) * v(i, q);
                EXPECT_LT(std::fabs(vv - (p == q ? 1.0L : 0.0L)), 2e-17L);
                if (w[p] > 1e-10L * big && w[q] > 1e-10L * big) {
                    for (int i = 1; i <= tc.m; ++i) uu += a(i, p) * a(i, q);
                    EXPECT_LT(std::fabs(uu - (p == q ? 1.0L : 0.0L)), 2e-17L);
                }
            }
    }
}

TEST(Svd, SmallMatricesWithAnalyticValues) {
    // [[3, 0], [4, 5]]: A^T A = [[25, 20], [20, 25]], eigenvalues 45 and 5.
    Dense a(2, 2);
    a(1, 1) = 3;
    a(2, 1) = 4;
    a(2, 2) = 5;
    Dense v(2, 2);
    real w[3];
    svd(a.ref(), 2, 2, w, v.ref(), nullptr);
    EXPECT_LT(std::fabs(w[1] - std::sqrt(5.0L)), 1e-18L);
    EXPECT_LT(std::fabs(w[2] - std::sqrt(45.0L)), 1e-17L);

    // A diagonal matrix with negative entries: values are the magnitudes,
    // the signs go into V.
    Dense d(3, 3);
    d(1, 1) = -2;
    d(2, 2) = 7;
    d(3, 3) = -0.5L;
    Dense vd(3, 3);
    real wd[4];
    svd(d.ref(), 3, 3, wd, vd.ref(), nullptr);
    EXPECT_EQ(wd[1], 0.5L);
    EXPECT_EQ(wd[2], 2.0L);
    EXPECT_EQ(wd[3], 7.0L);
    EXPECT_EQ(d(3, 1) * vd(3, 1), -1.0L);

    // The zero matrix and a single column.
    Dense z(4, 3);
    Dense vz(3, 3);
    real wz[4];
    svd(z.ref(), 4, 3, wz, vz.ref(), nullptr);
    for (int k = 1; k <= 3; ++k) EXPECT_EQ(wz[k], 0.0L);
    Dense col(3, 1);
    col(1, 1) = 2;
    col(2, 1) = -3;
    col(3, 1) = 6;
    Dense vc(1, 1);
    real wc[2];
    svd(col.ref(), 3, 1, wc, vc.ref(), nullptr);
    EXPECT_LT(std::fabs(wc[1] - 7.0L), 1e-17L);
}

TEST(Svd, TooManyColumnsIsRefused) {
    Dense a(1, 1);
    Dense v(1, 1);
    real w[2];
    const RunEnded e =
        smtest::expectended([&] { svd(a.ref(), 1, maxsvdcols + 1, w, v.ref(), nullptr); });
    EXPECT_EQ(e.where, "svd");
    EXPECT_EQ(e.message, "too many columns");
}

}  // namespace
}  // namespace sm
