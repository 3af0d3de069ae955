#include <cmath>

#include "console/format.h"
#include "console/io.h"
#include "console/runended.h"
#include "thermo/constants.h"
#include "thermo/fluids/fluids.h"

namespace sm {

namespace {

constexpr real Rb = 83.144L;  // bar cm3/K/mol

struct Coefficients {
    real c[11];  // c[1..10]
    real T;
};

Coefficients coefficients(bool water, real T) {
    Coefficients k{};
    k.T = T;
    real* c = k.c;
    const real T2 = T * T, T4 = T2 * T2;
    if (water) {
        c[1] = 246576.88L / T + 51.359951L;
        c[2] = 0.58638965L / T - 0.0028646939L + 3.1375577e-05L * T;
        c[3] = -6.278384L / T + 0.014791599L + 0.00035779579L * T + 1.5432925e-08L * T2;
        c[4] = -0.42719875L - 1.6325155e-05L * T;
        c[5] = 5665.4978L / T - 16.580167L + 0.076560762L * T;
        c[6] = 0.10917883L;
        c[7] = 3.8878656e+12L / T4 - 134948780.0L / T2 + 309165.64L / T + 7.5591105L;
        c[8] = -65537.898L / T + 188.10675L;
        c[9] = -1.4182435e+13L / T4 + 181653900.0L / T2 - 197690.68L / T - 23.530318L;
        c[10] = 92093.375L / T + 122.46777L;
    } else {
        c[1] = 1826134.0L / T + 79.224365L;
        c[2] = 6.656066e-05L + 5.7152798e-06L * T + 3.0222363e-10L * T2;
        c[3] = 0.0059957845L + 7.1669631e-05L * T + 6.2416103e-09L * T2;
        c[4] = -1.3270279L / T - 0.15210731L + 0.00053654244L * T - 7.1115142e-08L * T2;
        c[5] = 0.12456776L / T + 4.9045367L + 0.009822056L * T + 5.5962121e-06L * T2;
        c[6] = 0.75522299L;
        c[7] = -393446440000.0L / T4 + 90918237.0L / T2 + 427767.16L / T - 22.347856L;
        c[8] = 402.82608L / T + 119.71627L;
        c[9] = 22995650.0L / T2 - 78971.817L / T - 63.376456L;
        c[10] = 95029.765L / T + 18.038071L;
    }
    return k;
}

[[noreturn]] void spfail(const FluidContext& fx, real P, real T, const char* where,
                         const char* message) {
    if (fx.io)
        putstr(*fx.io, 1, "P = " + real2str(P, 5, false) + ", T = " + real2str(T - celsius, 2, true),
               1, chscreen);
    bomb(where, message, 0);
}

// Pressure in bar at molar volume V (cm3).
real pressure(const Coefficients& k, real V) {
    const real* c = k.c;
    const real rho = 1 / V, rho2 = rho * rho;
    const real D = c[2] + c[3] * rho + c[4] * rho2 + c[5] * rho2 * rho + c[6] * rho2 * rho2;
    return Rb * k.T *
           (rho + c[1] * rho2 -
            rho2 * (c[3] + 2 * c[4] * rho + 3 * c[5] * rho2 + 4 * c[6] * rho2 * rho) / (D * D) +
            c[7] * rho2 * std::exp(-c[8] * rho) + c[9] * rho2 * std::exp(-c[10] * rho));
}

real lnfugacity(const Coefficients& k, real V, real Pbar) {
    const real* c = k.c;
    const real rho = 1 / V, rho2 = rho * rho;
    const real D = c[2] + c[3] * rho + c[4] * rho2 + c[5] * rho2 * rho + c[6] * rho2 * rho2;
    const real A = c[1] * rho + 1 / D - 1 / c[2] - (c[7] / c[8]) * (std::exp(-c[8] * rho) - 1) -
                   (c[9] / c[10]) * (std::exp(-c[10] * rho) - 1);
    return std::log(rho) + A + Pbar / (rho * Rb * k.T) + std::log(Rb * k.T) - 1;
}

// Bisection that keeps the end where the function is not positive.
real bisect(const Coefficients& k, real Pbar, real lo, real hi, real tol, const FluidContext& fx,
            real P) {
    auto f = [&](real V) { return pressure(k, V) - Pbar; };
    const real flo = f(lo), fhi = f(hi);
    if (flo * fhi > 0) bomb("sterner-pitzer", "no bracket", 0);
    real start, step;
    if (flo < 0) {
        start = lo;
        step = hi - lo;
    } else {
        start = hi;
        step = lo - hi;
    }
    for (int j = 0; j < 40; ++j) {
        step *= 0.5L;
        const real mid = start + step;
        const real fmid = f(mid);
        if (fmid <= 0) start = mid;
        if (std::fabs(step) < tol || fmid == 0) return start;
    }
    spfail(fx, P, k.T, "sterner-pitzer", "did not converge");
}

}  // namespace

void sternerpitzer(bool water, real& V, real& rtlnf, real P, real T, const FluidContext& fx) {
    const Coefficients k = coefficients(water, T);
    const real Pbar = 1000 * P;
    const real T2 = T * T;
    const real Psat =
        water ? 1000 * (-0.013627L + 7.29395e-07L * T2 - 2.34622e-09L * T2 * T +
                        4.83607e-15L * T2 * T2 * T)
              : 0;
    const real Vu = 8.3144L * T / P + (water ? 20 : 60);

    // Scan for the sign changes of P(V) - P: liquid, unstable and vapour
    // roots below the critical point, one root above it.
    real lo[3], hi[3];
    int nfound = 0;
    const real dV = (Vu - 3) / 20;
    real Vprev = 3;
    real fprev = pressure(k, Vprev) - Pbar;
    for (int i = 1; i <= 20 && nfound < 3; ++i) {
        const real Vi = 3 + i * dV;
        const real fi = pressure(k, Vi) - Pbar;
        if (fprev * fi < 0 || fi == 0) {
            lo[nfound] = Vprev;
            hi[nfound] = Vi;
            ++nfound;
        }
        Vprev = Vi;
        fprev = fi;
    }
    if (nfound == 0) bomb("sterner-pitzer", "no bracket", 0);
    real Vcm3;
    if (nfound == 1) {
        Vcm3 = bisect(k, Pbar, 3, Vu, 0.001L, fx, P);
    } else {
        real roots[3];
        for (int r = 0; r < nfound; ++r)
            roots[r] = bisect(k, Pbar, lo[r], hi[r], (lo[r] + hi[r]) * 1e-06L * 0.5L, fx, P);
        Vcm3 = roots[0];
        for (int r = 1; r < nfound; ++r)
            Vcm3 = Pbar < Psat ? std::max(Vcm3, roots[r]) : std::min(Vcm3, roots[r]);
    }
    if (Vcm3 == 0) spfail(fx, P, T, "doSP", "V = 0 in calclnf");
    V = Vcm3 / 10;
    rtlnf = 0.0083144L * T * lnfugacity(k, Vcm3, Pbar);
}

}  // namespace sm
