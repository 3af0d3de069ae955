#include "ax/endmember_composition.h"

#include "console/runended.h"
#include "run.h"

namespace sm {

namespace {

int columnof(const EndMemberStore& st, const sstring& name) {
    for (int i = 1; i <= st.nem; ++i)
        if (st.emname[i] == name) return i;
    bomb("makeemc", name + " not found", 1);
}

void compose(const EndMemberStore& st, const sstring& name, const MakeRecord& make, EmComposition& c) {
    c.cnum.fill(0);
    c.x.fill(0);
    if (make.nmake <= 0) {
        const int i = columnof(st, name);
        c.cden = 1;
        for (int k = 1; k <= st.nc; ++k) c.cnum[k] = st.c[k][i];
    } else {
        c.cden = make.makediv;
        for (int t = 1; t <= make.nmake; ++t) {
            const int i = columnof(st, make.makename[t]);
            for (int k = 1; k <= st.nc; ++k) c.cnum[k] += static_cast<long long>(make.makecoef[t]) * st.c[k][i];
        }
    }
    for (int k = 1; k <= st.nc; ++k)
        c.x[k] = static_cast<real>(c.cnum[k]) / (static_cast<real>(c.cden) * static_cast<real>(st.cscale[k]));
}

}  // namespace

void makeemc(Run& run) {
    const EndMemberStore& st = run.store;
    PhaseStore& ps = run.phases;
    for (int k = 1; k <= st.npss; ++k)
        for (int j = 1; j <= ps.prec1[k].nem; ++j) {
            AxEndMember& em = ps.prec1[k].em[j];
            compose(st, em.ename, em.make, em.comp);
        }
    for (int k = 1; k <= st.nmin; ++k) compose(st, ps.prec0[k].ename, ps.prec0[k].make, ps.prec0[k].comp);
}

void countcomp(Run& run) {
    const EndMemberStore& st = run.store;
    PhaseStore& ps = run.phases;
    const bool oxides = st.dsmode == -1;
    if (oxides)
        for (int k = 1; k <= st.nc; ++k)
            if (st.compname[k] == "SO2") bomb("countcomp", "sulphur verboten", 0);
    auto count = [&](EmComposition& c, const sstring& name, const sstring& phase) {
        c.emsize = 0;
        for (int k = 1; k <= st.nc; ++k) c.emsize += st.catomsum[k] * c.x[k];
        if (oxides && !(c.emsize > 0)) bomb("countcomp", "sumox <= 0 for " + name + ", in " + phase, 0);
    };
    for (int k = 1; k <= st.npss; ++k)
        for (int j = 1; j <= ps.prec1[k].nem; ++j) count(ps.prec1[k].em[j].comp, ps.prec1[k].em[j].ename, ps.prec1[k].pname);
    for (int k = 1; k <= st.nmin; ++k) count(ps.prec0[k].comp, ps.prec0[k].ename, ps.prec0[k].pname);
}

}  // namespace sm
