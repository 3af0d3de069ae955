#include "ax/interactions.h"

#include "run.h"
#include "thermo/fluids/fluids.h"

namespace sm {

namespace {

// Steps of the slopes of the fluid volumes.
constexpr real dT = 0.01L;
constexpr real dP = 0.001L;

// A quantity known at P, T, T + dT and P + dP, as value and slopes.
struct Sloped {
    real v, t, p;  // at P, T; at T + dT; at P + dP
};

Sloped volumes(Run& run, const sstring& name, real P, real T) {
    const FluidContext fx{run.store.newds, name, &run.io, run.solver.printlevel};
    return {speciesvolume(name, P, T, fx), speciesvolume(name, P, T + dT, fx),
            speciesvolume(name, P + dP, T, fx)};
}

// alpha of an end-member as the ratio A/V1 of its own size to the
// solvent's (or first species') volume, with slopes by the differences.
void ratio(const Sloped& a, const Sloped& v1, real& al, real& alb, real& alc) {
    al = a.v / v1.v;
    alb = al * (a.t / a.v - v1.t / v1.v) / dT;
    alc = al * (a.p / a.v - v1.p / v1.v) / dP;
}

// W = W0 (1/Vi + 1/Vj), with slopes by the differences.
void volumew(real w0, const Sloped& vi, const Sloped& vj, real& w, real& wb, real& wc) {
    w = w0 * (1 / vi.v + 1 / vj.v);
    wb = -w0 * ((vi.t / vi.v - 1) / vi.v + (vj.t / vj.v - 1) / vj.v) / dT;
    wc = -w0 * ((vi.p / vi.v - 1) / vi.v + (vj.p / vj.v - 1) / vj.v) / dP;
}

void aqueous(Run& run, const AxPhase& ph, real P, real T, Interactions& it) {
    const Sloped vh = volumes(run, ph.em[1].ename, P, T);
    it.al[1] = 1;
    it.alb[1] = it.alc[1] = 0;
    const bool co2 = ph.co2em == 2;
    if (co2) {
        const Sloped vc = volumes(run, ph.em[2].ename, P, T);
        ratio(vc, vh, it.al[2], it.alb[2], it.alc[2]);
        // The H2O-CO2 pair heads the list; its W is not a file value.
        volumew(10.5L, vc, vh, it.w[1], it.wb[1], it.wc[1]);
    }
    for (int e = co2 ? 3 : 2; e <= ph.nem; ++e) {
        auto size = [&](real p, real t) { return ph.aa[e] + ph.ab[e] * t + ph.ac[e] * p; };
        ratio({size(P, T), size(P, T + dT), size(P + dP, T)}, vh, it.al[e], it.alb[e], it.alc[e]);
    }
}

void mixedfluid(Run& run, const AxPhase& ph, real P, real T, Interactions& it) {
    std::array<Sloped, maxemperphase + 1> v;
    for (int e = 1; e <= ph.nem; ++e) v[e] = volumes(run, ph.em[e].ename, P, T);
    it.al[1] = 1;
    it.alb[1] = it.alc[1] = 0;
    for (int e = 2; e <= ph.nem; ++e) ratio(v[e], v[1], it.al[e], it.alb[e], it.alc[e]);
    for (int g = 1; g <= ph.ngt; ++g)
        volumew(ph.wa[g], v[ph.gt[g][0]], v[ph.gt[g][1]], it.w[g], it.wb[g], it.wc[g]);
}

}  // namespace

void interactionsat(Run& run, const AxPhase& ph, real P, real T, Interactions& it) {
    for (int g = 1; g <= ph.ngt; ++g) {
        it.w[g] = ph.wa[g] + ph.wb[g] * T + ph.wc[g] * P;
        it.wb[g] = ph.wb[g];
        it.wc[g] = ph.wc[g];
    }
    for (int e = 1; e <= ph.nem; ++e) {
        it.al[e] = ph.aa[e] + ph.ab[e] * T + ph.ac[e] * P;
        it.alb[e] = ph.ab[e];
        it.alc[e] = ph.ac[e];
    }
    if (ph.fluidkind)
        mixedfluid(run, ph, P, T, it);
    else if (ph.aqkind)
        aqueous(run, ph, P, T, it);
}

}  // namespace sm
