#include <cmath>

#include "thermo/constants.h"
#include "thermo/energy_terms.h"
#include "thermo/realmath.h"

namespace sm {

namespace {

// What every Einstein-thermal calculation of a row starts from.
struct Einstein {
    real theta, V, k0, kappa, kappa2;
    real eu0;  // exp(theta/Tr)
    real pc;   // thermal pressure coefficient
    real a, b, c;
    real e[6];  // coefficients of the series that starts the volume search
};

Einstein preamble(const TdRow& row, const GemContext& cx) {
    Einstein p{};
    p.theta = row[tdtheta];
    p.V = row[tdV];
    p.k0 = row[tdk0];
    p.kappa = row[tdk0p];
    p.kappa2 = row[tdk0pp];
    const real u0 = p.theta / Tr;
    p.eu0 = std::exp(u0);
    const real xi0 = u0 * u0 * p.eu0 / ((p.eu0 - 1) * (p.eu0 - 1));
    p.pc = row[tdalpha] * p.k0 / xi0;
    const real k = p.kappa, k0 = p.k0, k2 = p.kappa2;
    p.e[0] = 1;
    if (!cx.ggk) {
        p.a = (1 + k) / (1 + k + k0 * k2);
        p.b = (k + k * k - k0 * k2) / (k0 * (1 + k));
        p.c = (1 + k + k0 * k2) / (k + k * k - k0 * k2);
        real product = 1, factorial = 1, ca = 1;
        for (int n = 1; n <= 5; ++n) {
            product *= 1 + n * p.c;
            factorial *= n + 1;
            ca *= p.c * p.a;
            p.e[n] = product / (factorial * ca);
        }
    } else {
        const real k3 = k * k * k, k4 = k3 * k, k5 = k4 * k;
        p.e[1] = (1 + k) / 2;
        p.e[2] = (2 + 2 * k + k * k) / 6;
        p.e[3] = (6 + 6 * k + 3 * k * k + k3) / 24;
        p.e[4] = (24 + 24 * k + 12 * k * k + 4 * k3 + k4) / 120;
        p.e[5] = (120 + 120 * k + 60 * k * k + 20 * k3 + 5 * k4 + k5) / 720;
    }
    return p;
}

real thermalpressure(const Einstein& p, real T) {
    return p.theta * p.pc * (1 / (std::exp(p.theta / T) - 1) - 1 / (p.eu0 - 1));
}

// V/V0 at which the equation of state gives P at T: Newton from a series guess.
real volumeratio(const Einstein& p, std::string_view name, real P, real T, const GemContext& cx) {
    const real q = thermalpressure(p, T);
    const real h = q / p.k0;
    const real n = (P - Pr) / p.k0;
    const real w = (h - n) / (1 + h);
    real d[6];
    for (int j = 0; j <= 5; ++j) d[j] = p.e[j] + h;
    const real s = w / d[0];
    const real d0 = d[0], d1 = d[1], d2 = d[2], d3 = d[3], d4 = d[4], d5 = d[5];
    const real d1sq = d1 * d1;
    const real t5 = s * (d0 * (d0 * (d0 * (-7 * d1 * d4 - 7 * d2 * d3 + d5 * d0) + 28 * d1sq * d3 +
                                     28 * d1 * d2 * d2) -
                               84 * d1sq * d1 * d2) +
                         42 * d1sq * d1sq * d1);
    const real t4 = s * (d0 * (d0 * (6 * d1 * d3 + 3 * d2 * d2 - d4 * d0) - 21 * d1sq * d2) +
                         14 * d1sq * d1sq + t5);
    const real t3 = s * (d0 * (d3 * d0 - 5 * d1 * d2) + 5 * d1sq * d1 + t4);
    const real t2 = s * (2 * d1sq - d2 * d0 + t3);
    const real t1 = s * (d1 + t2);
    real v = 1 + w * (1 + t1);
    // At high pressure and low thermal pressure the series can land on the
    // wrong side of v = 1; start from a compressed state and keep Newton
    // from overshooting into nonsense in its first steps.
    bool guard = false;
    if (P >= 30 && p.pc * (T - 400) < P && v > 1) {
        v = 0.8L;
        guard = true;
    }
    for (int it = 1; it <= 10; ++it) {
        real f, fprime;
        if (!cx.ggk) {
            const real base = (v - 1) / p.a + 1;
            f = Pr + q / v + (realpow(base, -1 / p.c) - 1) / p.b;
            fprime = -q / (v * v) - p.k0 * realpow(base, -1 / p.c - 1);
        } else {
            f = Pr + q / v - p.k0 * ggkint(v - 1, p.kappa, cx.ggkfallbacks);
            fprime = -q / (v * v) - p.k0 * std::exp((1 - v) * p.kappa) / v;
        }
        real delta = (P - f) / fprime;
        if (it <= 2 && guard && v + delta < 0.7L) delta = 0.7L - v;
        v += delta;
        if (std::fabs(delta) < 5e-7L) return v;
    }
    energyfail(name, "calc v not converged");
}

}  // namespace

// The integral from 0 to x of exp(-y t)/(1 + t): a series for small x, the
// exponential integral by its continued fraction otherwise.
real ggkint(real x, real y, long long* fallbacks) {
    real sum = 0;
    real ypower = 1, mfactorial = 1, partial = 0;  // partial = sum of y^m/m!, m < n
    real nfactorial = 1, nminus1factorial = 1, xpower = 1;
    for (int n = 1; n <= 16; ++n) {
        partial += ypower / mfactorial;  // m = n - 1
        ypower *= y;
        mfactorial *= n;
        if (n > 1) nminus1factorial *= n - 1;
        nfactorial *= n;
        xpower *= -x;
        const real t = -(nminus1factorial * partial) * xpower / nfactorial;
        sum += t;
        if (std::fabs(t) < 1e-8L) return sum;
    }
    if (fallbacks) ++*fallbacks;
    auto ei = [](real z) {
        real cf = 17 - z;
        for (int k = 8; k >= 1; --k) cf = (2 * k - 1 - z) - static_cast<real>(k * k) / cf;
        return -std::exp(z) / cf;
    };
    return std::exp(y) * (ei(-y * (1 + x)) - ei(-y));
}

real einsteinv(const TdRow& row, std::string_view name, real P, real T, const GemContext& cx) {
    return volumeratio(preamble(row, cx), name, P, T, cx);
}

real einsteinvdp(const TdRow& row, std::string_view name, real P, real T, const GemContext& cx) {
    if (P == Pr) return 0;
    const Einstein p = preamble(row, cx);
    const real v1 = volumeratio(p, name, P, T, cx);
    const real v0 = volumeratio(p, name, Pr, T, cx);
    const real Pth = thermalpressure(p, T);
    if (!cx.ggk) {
        const real power = 1 - 1 / p.c;
        return p.V * ((v1 - v0) / p.b + (P - Pr) * v1 - Pth * std::log(v1 / v0) +
                      (p.a * p.c / (p.b * (1 - p.c))) *
                          (realpow((v1 - 1) / p.a + 1, power) - realpow((v0 - 1) / p.a + 1, power)));
    }
    const real k = p.kappa;
    return p.V * ((P - Pr) * v1 - Pth * std::log(v1 / v0) +
                  (p.k0 / k) * (std::exp((1 - v1) * k) - std::exp((1 - v0) * k)) +
                  p.k0 * v1 * ggkint(v1 - 1, k, cx.ggkfallbacks) -
                  p.k0 * v0 * ggkint(v0 - 1, k, cx.ggkfallbacks));
}

int einsteinsimpsonintervals(real T) {
    int N = static_cast<int>(std::lround((T - Tr) / 20));
    if (N > 140) N = 138;
    if (N < 3) N = 4;
    if (N % 2 != 0) ++N;
    return N;
}

namespace {

// The heat capacity gained at 1 bar because the thermal pressure expands the
// solid (Cp - Cv), integrated as G = H - T S by Simpson's rule.
real thermalbysimpson(const Einstein& p, std::string_view name, real T, const GemContext& cx) {
    const int N = einsteinsimpsonintervals(T);
    const real h = (T - Tr) / N;
    const real inveu0 = 1 / (p.eu0 - 1);
    real sum = 0;
    for (int k = 0; k <= N; ++k) {
        const real s = Tr + k * h;
        const real v = volumeratio(p, name, Pr, s, cx);
        const real x = p.theta / s;
        const real ex = std::exp(x);
        const real xi = x * x * ex / ((ex - 1) * (ex - 1));
        const real q = p.theta * p.pc * (1 / (ex - 1) - inveu0);
        const real D = !cx.ggk ? p.k0 * v * v * realpow((v - 1) / p.a + 1, -1 - 1 / p.c)
                               : p.k0 * v * std::exp((1 - v) * p.kappa);
        const real f = (1 - T / s) * p.V * s * (xi * p.pc) * (xi * p.pc) / (D + q);
        const real weight = (k == 0 || k == N) ? 1 : (k % 2 == 1 ? 4 : 2);
        sum += weight * f;
    }
    return sum * h / 3;
}

// The same integral as a series in powers of T, with no volume search: the
// form the solver's loop can afford.
real thermalbyseries(const Einstein& p, real T) {
    const real logT = std::log(T / Tr);
    auto I = [&](int m) -> real {
        if (m == 0) return (T - Tr) - T * logT;
        if (m == -1) return logT - T * (invTr - 1 / T);
        return (intpow(T, m + 1) - intpow(Tr, m + 1)) / (m + 1) - T * (intpow(T, m) - intpow(Tr, m)) / m;
    };
    const real th = p.theta, th2 = th * th;
    const real A = p.pc * p.pc * p.V / p.k0;
    real cw[9];
    cw[1] = A;
    cw[2] = -A * th2 / 6;
    cw[3] = 0.0152777778L * A * intpow(th, 4);
    cw[4] = -0.00102513228L * A * intpow(th, 6);
    cw[5] = 5.64925044e-05L * A * intpow(th, 8);
    cw[6] = -2.71815376e-06L * A * intpow(th, 10);
    cw[7] = 1.18504273e-07L * A * intpow(th, 12);
    cw[8] = -4.79617364e-09L * A * intpow(th, 14);

    const real t9 = cw[6] * I(-9), t11 = cw[7] * I(-11), t13 = cw[8] * I(-13);
    real B0 = cw[1] * I(1) + cw[2] * I(-1) + cw[3] * I(-3) + cw[4] * I(-5) + cw[5] * I(-7) + t9 +
              t11 + t13;
    if (std::fabs(t13) > 0.00025L) B0 += t13 / ((t11 / t9) * (t11 / t13) * (t11 / t13) - 1);

    const real k = p.kappa, k2 = k * k, k3 = k2 * k, k4 = k3 * k, k5 = k4 * k, k6 = k5 * k;
    const real g = p.pc / p.k0;
    const real D = 1 / (1 - std::exp(th / Tr)) - 0.5L;
    const real D2 = D * D, D4 = D2 * D2, D6 = D4 * D2;
    const real p1 = k - 2;
    const real p2 = (9 - 8 * k + 2 * k2) / 2;
    const real p3 = (81 * k - 64 - 37 * k2 + 6 * k3) / 6;
    const real p4 = (625 - 1024 * k + 668 * k2 - 204 * k3 + 24 * k4) / 24;
    const real p5 = (15625 * k - 7776 - 13177 * k2 + 5802 * k3 - 1318 * k4 + 120 * k5) / 120;
    const real p6 =
        (117649 - 279936 * k + 288894 * k2 - 164984 * k3 + 54612 * k4 - 9792 * k5 + 720 * k6) / 720;
    // gt[i] = g^i, th[i] = theta^i
    real gp[7], tp[9];
    gp[0] = 1;
    tp[0] = 1;
    for (int i = 1; i <= 6; ++i) gp[i] = gp[i - 1] * g;
    for (int i = 1; i <= 8; ++i) tp[i] = tp[i - 1] * th;

    real B[11];
    B[1] = p1 * g * th * D + p2 * gp[2] * tp[2] * (D2 + 1.0L / 6) +
           p3 * gp[3] * tp[3] * D * (2 * D2 + 1) / 2 +
           p4 * gp[4] * tp[4] * (360 * D2 + 13 + 360 * D4) / 360 +
           p5 * gp[5] * tp[5] * D * (120 * D2 + 13 + 72 * D4) / 72 +
           p6 * gp[6] * tp[6] * (16380 * D2 + 251 + 75600 * D4 + 30240 * D6) / 30240;
    B[2] = p1 * g + 2 * p2 * gp[2] * th * D + p3 * gp[3] * tp[2] * (12 * D2 + 1) / 4 +
           p4 * gp[4] * tp[3] * D * (4 * D2 + 1) + p5 * gp[5] * tp[4] * (40 * D2 + 1 + 80 * D4) / 16 +
           p6 * gp[6] * tp[5] * D * (320 * D2 + 24 + 384 * D4) / 64;
    B[3] = p2 * gp[2] + 3 * p3 * gp[3] * th * D + p4 * gp[4] * tp[2] * (18 * D2 + 1) / 3 +
           5 * p5 * gp[5] * tp[3] * D * (6 * D2 + 1) / 3 +
           p6 * gp[6] * tp[4] * (1200 * D2 + 23 + 3600 * D4) / 240;
    B[4] = p3 * gp[3] + 4 * p4 * gp[4] * th * D + 5 * p5 * gp[5] * tp[2] * (24 * D2 + 1) / 12 +
           p6 * gp[6] * tp[3] * D * (7200 * D2 + 900) / 360;
    B[5] = p4 * gp[4] + 5 * p5 * gp[5] * th * D + p6 * gp[6] * tp[2] * (30 * D2 + 1) / 2;
    B[6] = p5 * gp[5] + 6 * p6 * gp[6] * th * D;
    B[7] = p6 * gp[6];
    B[8] = p1 * g * tp[2] / 12 + p2 * gp[2] * tp[3] * D / 6 + p3 * gp[3] * tp[4] * (15 * D2 + 1) / 60 +
           p4 * gp[4] * tp[5] * D * (5 * D2 + 1) / 15 +
           p5 * gp[5] * tp[6] * (504 * D2 + 11 + 1260 * D4) / 3024;
    B[9] = p2 * gp[2] * tp[4] / 240 + p3 * gp[3] * tp[5] * D / 80 +
           p4 * gp[4] * tp[6] * (189 * D2 + 8) / 7560 + p5 * gp[5] * tp[7] * D * (63 * D2 + 8) / 1512;
    B[10] = -p1 * g * tp[4] / 720 - p2 * gp[2] * tp[5] * D / 360 -
            p3 * gp[3] * tp[6] * (252 * D2 + 1) / 60480 -
            p4 * gp[4] * tp[7] * D * (84 * D2 + 1) / 15120 -
            p5 * gp[5] * tp[8] * (15 * D2 - 2 + 630 * D4) / 90720;

    constexpr int leading[11] = {0, 1, 2, 3, 4, 5, 6, 7, 0, -1, -2};
    real Gth = B0;
    for (int j = 1; j <= 10; ++j) {
        const int e = leading[j];
        const real J = cw[1] * I(e) + cw[2] * I(e - 2) + cw[3] * I(e - 4) + cw[4] * I(e - 6) +
                       cw[5] * I(e - 8);
        Gth += B[j] * J;
    }
    return Gth;
}

}  // namespace

// Heating at 1 bar of a solid whose heat capacity is one Einstein oscillator
// plus a linear term, with the thermal-pressure correction.
real einsteingcp(const TdRow& row, std::string_view name, real T, const GemContext& cx) {
    const Einstein p = preamble(row, cx);
    const real th = p.theta;
    const real u = th / T, u0 = th / Tr;
    const real eu = std::exp(u), eu0 = p.eu0;
    const real cpa = row[tdcpa], cpb = row[tdcpb];
    const real H = th * cpa * (1 / (eu - 1) - 1 / (eu0 - 1)) +
                   (cpb / 2) * th * th * (1 / (u * u) - 1 / (u0 * u0));
    const real S = cpa * (-u * eu / (1 - eu) + u0 * eu0 / (1 - eu0) -
                          std::log((1 - eu) / (1 - eu0))) +
                   cpb * th * (1 / u - 1 / u0);
    real G = H - T * S;
    if (std::fabs(p.pc) >= 1e-10L)
        G += cx.numerical ? thermalbysimpson(p, name, T, cx) : thermalbyseries(p, T);
    return G;
}

}  // namespace sm
