#include <cmath>

#include "console/format.h"
#include "console/io.h"
#include "console/runended.h"
#include "thermo/fluids/fluids.h"

namespace sm {

// Molar volume of a H2O-CO2 solvent, with an excess volume from a regular
// interaction in density.
real fluidvol(real P, real T, real xco2, real xh2o, const FluidContext& fx) {
    real Vh, Vc, rtlnf;
    h2oeos(Vh, rtlnf, P, T, fx);
    if (!(xco2 > 0)) return Vh;
    co2eos(Vc, rtlnf, P, T, fx);
    const real V1 = xco2 * Vc + xh2o * Vh;
    real Vh2, Vc2;
    h2oeos(Vh2, rtlnf, P + 0.0001L, T, fx);
    co2eos(Vc2, rtlnf, P + 0.0001L, T, fx);
    const real V2 = xco2 * Vc2 + xh2o * Vh2;
    return V1 + 21 * xco2 * xh2o * (1 / V2 - 1 / V1) / 0.0001L;
}

// Dielectric constant of the solvent (a Kirkwood form for water with CO2 as a
// non-polar diluent).
real dielectric(real P, real T, real xco2, real xh2o, real V, const FluidContext& fx) {
    if (!(T > 215))
        bomb("gem", std::string(fx.name) + ": T <= 215 K in the dielectric constant of the fluid", 0);
    const real sqrtT = std::sqrt(T);
    const real T215 = T - 215;
    const real X = std::exp(263307.7L / (T * T) - 1246.311L / T - 69.28953L * P / T -
                            20444.73L * P / (T * T)) -
                   4.044525L * P / T + 103.618L / sqrtT + 75.32165L / T215 -
                   23.23778L / std::sqrt(T215) - 3.548184L / std::sqrt(std::sqrt(T215));
    const real g = 1 + X * (1.8015L * xh2o + 4.401L * xco2) / V;
    const real e = 1 + (22.7024L / V) * (0.265L * xco2 + (0.147L + 835.25L * g / T) * xh2o);
    return (e + std::sqrt(e * e + 8)) / 4;
}

// Debye-Hueckel term of a solute of charge product zz at ionic strength I.
real dhsolute(real P, real T, real xco2, real xh2o, real I, real zz, const FluidContext& fx) {
    const real sum = xco2 + xh2o;
    if (!(sum > 0))
        bomb("gem", std::string(fx.name) + ": no solvent, x(CO2) + x(H2O) = 0", 0);
    xco2 /= sum;
    xh2o /= sum;
    const real V = fluidvol(P, T, xco2, xh2o, fx);
    const real eps = dielectric(P, T, xco2, xh2o, V, fx);
    const real w = 1 / std::sqrt(1e-05L * V * eps * T);
    const real A = 57674.4L * w / (T * eps);
    const real B = 15902100000.0L * w;
    const real sqrtI = std::sqrt(I);
    const real DH = -A * zz * sqrtI / (1 + 4.5e-10L * B * sqrtI);
    if (fx.printlevel == 5 && fx.io)
        putstr(*fx.io, 0,
               "xco2 = " + real2str(xco2, 4, false) + ", xh2o = " + real2str(xh2o, 4, false) +
                   ", I = " + real2str(I, 4, false) + ", A = " + real2str(A, 4, false) +
                   ", B x 10^-10 = " + real2str(B * 1e-10L, 4, false) + ", DH(solute) = " +
                   real2str(DH, 4, false),
               1, choutput | chlog);
    return DH;
}

}  // namespace sm
