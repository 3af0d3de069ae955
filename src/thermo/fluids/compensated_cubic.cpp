#include <cmath>

#include "console/runended.h"
#include "thermo/fluids/fluids.h"

namespace sm {

// A modified Redlich-Kwong cubic in V solved by Newton from the start value
// in V, with the virial correction above the pressure where the cubic alone
// goes wrong (delta = P - P0).
void findVs(real& V, real& lnf, real P, real T, real delta, real Plim, real c, real d, real e,
            real a, real b, const FluidContext&) {
    const real RT = 0.0083144L * T;
    const real sqrtT = std::sqrt(T);
    const real A = a / sqrtT - b * (P * b + RT);
    const real B = -a * b / sqrtT;
    bool converged = false;
    for (int it = 0; it < 21; ++it) {
        const real f = ((P * V - RT) * V + A) * V + B;
        const real fprime = (3 * V * P - 2 * RT) * V + A;
        const real step = f / fprime;
        V -= step;
        if (V < b) V = P > Plim ? 1.001L * b : RT / P;
        if (std::fabs(step) < 0.001L * V) {
            converged = true;
            break;
        }
    }
    if (!converged) bomb("findVs", "did not converge", 0);
    const real z = P * V / RT;
    const real beta = b * P / RT;
    const real gamma = a / (sqrtT * RT * b);
    lnf = z - 1 - std::log(z - beta) - gamma * std::log(1 + beta / z);
    if (delta > 0) {
        const real root = std::sqrt(delta);
        const real quarter = std::sqrt(root);
        V += c * delta + d * root + e * quarter;
        lnf += ((2.0L / 3) * d * delta * root + 0.5L * c * delta * delta +
                (4.0L / 5) * e * delta * quarter) /
               RT;
    }
}

// Water: below 695 K the liquid and gas take different attraction terms,
// joined at the saturation pressure.
void cubich2o(real& V, real& rtlnf, real P, real T, const FluidContext& fx) {
    const real b = 1.465L, c = 0.0019853L, d = -0.08909L, e = 0.080331L;
    const real delta = P > 2.01L ? P - 2.01L : 0;
    const real RT = 0.0083144L * T;
    const real T2 = T * T, T3 = T2 * T;
    real Ps = 100;
    const real af = T >= 673 ? 1037.2L + 0.53013L * T - 0.00073907L * T2 + 1.7782e-07L * T3
                             : -1451.88L + 12.718L * T - 0.02212L * T2 + 1.3204e-05L * T3;
    real ag = af;
    if (T < 695) {
        if (T < 673) ag = 16137.46L - 69.656L * T + 0.11618L * T2 - 6.8128e-05L * T3;
        Ps = -0.013628L + 7.29395e-07L * T2 - 2.34622e-09L * T3 + 4.83607e-15L * T2 * T3;
        if (Ps < 0.001L) Ps = 0.001L;
    }
    real lnf = 0, lnfg = 0, lnff = 0;
    if (T < 695 && P > Ps) {
        real Vg = RT / Ps + 5 * b;
        findVs(Vg, lnfg, Ps, T, delta, Ps, c, d, e, ag, b, fx);
        real Vf = b;
        findVs(Vf, lnff, Ps, T, delta, Ps, c, d, e, af, b, fx);
        V = b;
        findVs(V, lnf, P, T, delta, Ps, c, d, e, af, b, fx);
    } else if (T < 695) {
        V = RT / P + 3 * b;
        findVs(V, lnf, P, T, delta, Ps, c, d, e, ag, b, fx);
    } else {
        V = RT / P + 3 * b;
        findVs(V, lnf, P, T, delta, Ps, c, d, e, af, b, fx);
    }
    rtlnf = RT * (std::log(1000 * P) + lnf - lnff + lnfg);
}

void cubicco2(real& V, real& rtlnf, real P, real T, const FluidContext& fx) {
    const real b = 3.057L;
    const real a = 659.8L + 0.21078L * T - 0.00063976L * T * T;
    const real c = 0.00540776L - 1.59046e-06L * T;
    const real d = -0.178198L + 2.45317e-05L * T;
    const real e = 0;
    const real delta = P > 5.01L ? P - 5.01L : 0;
    const real RT = 0.0083144L * T;
    V = RT / P + 3 * b;
    real lnf;
    findVs(V, lnf, P, T, delta, 100, c, d, e, a, b, fx);
    rtlnf = RT * (std::log(1000 * P) + lnf);
}

}  // namespace sm
