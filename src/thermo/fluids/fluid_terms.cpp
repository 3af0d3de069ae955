#include <cmath>

#include "thermo/energy_terms.h"
#include "thermo/fluids/fluids.h"

namespace sm {

namespace {

enum FluidKind { notfluid, water, carbondioxide, methane, hydrogen, monoxide, sulphide, sulphur };

// Fluids are known by their exact names.
FluidKind fluidkind(std::string_view name) {
    switch (name.size()) {
    case 2:
        if (name == "H2") return hydrogen;
        if (name == "CO") return monoxide;
        if (name == "S2") return sulphur;
        return notfluid;
    case 3:
        if (name == "H2O") return water;
        if (name == "CO2") return carbondioxide;
        if (name == "CH4") return methane;
        if (name == "H2S") return sulphide;
        return notfluid;
    default:
        return notfluid;
    }
}

}  // namespace

// RT ln f of a fluid end-member, and with separate H2O and CO2 fluids the
// non-ideal mixing of the one with the other.
real fluidgibbs(const TdRow& row, std::string_view name, real P, real T, const GemContext& cx,
                real& Gfmix) {
    Gfmix = 0;
    const FluidKind kind = fluidkind(name);
    if (kind == notfluid) return 0;
    if (!(P > 0)) energyfail(name, "P <= 0 in the fluid equation of state");
    const FluidContext fx{cx.newds, name, cx.io, cx.printlevel};
    real V, rtlnf;
    switch (kind) {
    case water: h2oeos(V, rtlnf, P, T, fx); break;
    case carbondioxide: co2eos(V, rtlnf, P, T, fx); break;
    case methane: corrstates(V, rtlnf, P, T, 0.046L, 190.6L); break;
    case hydrogen: corrstates(V, rtlnf, P, T, 0.0211L, 41.2L); break;
    case monoxide: corrstates(V, rtlnf, P, T, 0.035L, 132.9L); break;
    case sulphide: corrstates(V, rtlnf, P, T, 0.0893L, 373.2L); break;
    default: corrstates(V, rtlnf, P, T, 0.08L, 259.6L); break;
    }
    const real xco2 = row[tdxco2], xh2o = row[tdxh2o];
    if (cx.fluidtype == 6 && (kind == water || kind == carbondioxide)) {
        const bool mixes = kind == water ? (xco2 > 0 && xh2o < 1) : (xco2 < 1 && xh2o > 0);
        if (mixes) {
            real Vh = V, Vc = V, other;
            if (kind == water)
                co2eos(Vc, other, P, T, fx);
            else
                h2oeos(Vh, other, P, T, fx);
            const real W = 10.5L * (Vh + Vc) / (Vh * Vc);
            const real mix = Vc * xco2 + Vh * xh2o;
            const real Dn = mix * mix * (Vh + Vc);
            Gfmix = kind == water ? 2 * W * (Vc * Vc * Vh / Dn) * xco2 * xco2
                                  : 2 * W * (Vh * Vh * Vc / Dn) * xh2o * xh2o;
        }
    }
    return rtlnf;
}

}  // namespace sm
