// Activities of every end-member of a calculation, laid out by emname.
#include "ax/activities.h"
#include "run.h"

namespace sm {

void calca(Run& run, const real* x, bool doTP, bool dodx, real P, real T) {
    ActivityState& as = run.activities;
    EndMemberStore& st = run.store;
    const int nem = st.nem;
    for (int i = 1; i <= nem;) {
        if (!as.inss[i]) {
            // A pure phase: activity 1, whatever its own fixed activity
            // (that goes into its energy).
            st.activ[i] = 1;
            if (doTP) as.dlnadT[i] = as.dlnadP[i] = 0;
            ++i;
            continue;
        }
        const int k = as.emphase[i], xo = as.emstart[i];
        PhaseActivity& r = as.phase[k];
        phaseactivity(run, k, x, xo, doTP, dodx, P, T, r);
        for (int j = 1; j <= r.nem; ++j, ++i) {
            st.activ[i] = r.aa[j];
            if (dodx) {
                real* row = as.dlnadx[i].data() + xo - 1;
                for (int v = 1; v <= r.nxv; ++v) row[v] = r.dlnadx[j][v];
            }
            if (doTP) {
                as.dlnadT[i] = r.dlnadT[j];
                as.dlnadP[i] = r.dlnadP[j];
            }
        }
    }
}

void cleardlnadx(Run& run) {
    ActivityState& as = run.activities;
    for (auto& row : as.dlnadx) row.fill(0);
    as.dlnadT.fill(0);
    as.dlnadP.fill(0);
}

}  // namespace sm
