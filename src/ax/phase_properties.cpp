#include "ax/phase_properties.h"

#include <cmath>

#include "ax/activities.h"
#include "console/runended.h"
#include "run.h"
#include "thermo/components.h"
#include "thermo/constants.h"
#include "thermo/gem.h"

namespace sm {

namespace {

constexpr real dP = 2e-05L;
constexpr real dT = 0.0002L;

// Molar mass of each of the run's components, from the table of
// components by oxide name.
void makemw2c(const Run& run, real* mass) {
    const EndMemberStore& st = run.store;
    for (int k = 1; k <= st.nc; ++k) {
        mass[k] = -1;
        for (const ComponentRow& c : componenttable)
            if (st.compname[k] == c.oxide) mass[k] = c.molarmass;
        if (mass[k] < 0) bomb("makemw2c", st.compname[k] + " not found??", 0);
    }
}

int purephaseof(const Run& run, const sstring& ename) {
    for (int m = 1; m <= run.store.nmin; ++m)
        if (run.phases.prec0[m].ename == ename) return m;
    return 0;
}

}  // namespace

void calcmu(Run& run, int omit, const real* x, real* G, real* mu, real P, real T, real xco2, real xh2o) {
    EndMemberStore& st = run.store;
    for (int i = 1; i <= st.nem; ++i) {
        G[i] = 0;
        if (i == omit) continue;
        st.td[i][tdxco2] = xco2;
        st.td[i][tdxh2o] = xh2o;
        G[i] = gemdriver(run, i, P, T);
    }
    calca(run, x, false, false, P, T);
    for (int i = 1; i <= st.nem; ++i)
        mu[i] = i == omit ? 0 : G[i] + Rgas * T * std::log(st.activ[i]);
}

void calcgphase(Run& run, int omit, const real* x, real P, real T, real xco2, real xh2o,
                std::vector<PhaseProperties>& props) {
    const EndMemberStore& st = run.store;
    const ActivityState& as = run.activities;
    std::vector<real> g0(maxnem + 1), m0(maxnem + 1), g1(maxnem + 1), m1(maxnem + 1), g2(maxnem + 1),
        m2(maxnem + 1);
    calcmu(run, omit, x, g1.data(), m1.data(), P + dP, T, xco2, xh2o);
    calcmu(run, omit, x, g2.data(), m2.data(), P, T + dT, xco2, xh2o);
    calcmu(run, omit, x, g0.data(), m0.data(), P, T, xco2, xh2o);  // last: activ and pp at P, T
    real mass[maxcomp + 1];
    makemw2c(run, mass);

    props.clear();
    for (int i = 1; i <= st.nem;) {
        PhaseProperties pr;
        pr.first = i;
        pr.pure = !as.inss[i];
        real p[16];
        real comp[maxcomp + 1] = {};
        real fixed = 0;  // RT ln of a pure phase's fixed activity
        if (pr.pure) {
            pr.nem = 1;
            pr.phase = purephaseof(run, st.emname[i]);
            p[1] = 1;
            if (pr.phase > 0) {
                const PurePhase& pp = run.phases.prec0[pr.phase];
                if (pp.fixeda != 1) fixed = Rgas * T * std::log(pp.fixeda);
                for (int k = 1; k <= st.nc; ++k) comp[k] = pp.comp.x[k];
            }
        } else {
            pr.phase = as.emphase[i];
            const AxPhase& ph = run.phases.prec1[pr.phase];
            pr.nem = ph.nem;
            for (int j = 1; j <= ph.nem; ++j) {
                p[j] = as.phase[pr.phase].pp[j];
                for (int k = 1; k <= st.nc; ++k) comp[k] += p[j] * ph.em[j].comp.x[k];
            }
        }
        for (int j = 1; j <= pr.nem; ++j) {
            const int e = i + j - 1;
            if (e == omit) continue;
            const real s = -(m2[e] - m0[e]) / dT;
            pr.G += p[j] * (m0[e] + fixed);
            pr.S += p[j] * s;
            pr.V += p[j] * (m1[e] - m0[e]) / dP;
            pr.H += p[j] * (m0[e] + fixed + T * s);
            pr.rtlna[j] = m0[e] - g0[e] + fixed;
            pr.gem[j] = g0[e];
        }
        if (pr.V == 0) bomb("calcgphase", pr.pure ? "vph=0 2" : "vph=0", 0);
        for (int k = 1; k <= st.nc; ++k) pr.density += mass[k] * comp[k] / (10 * pr.V);
        props.push_back(pr);
        i += pr.nem;
    }
}

}  // namespace sm
