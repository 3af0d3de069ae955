#include "solver/unknowns.h"

namespace sm {

void setunknownP(NleTables& t, real P1, real P2) {
    const real range = P2 - P1;
    t.scale[1] = 1.0L / range;
    t.offset[1] = -P1 / range;
    t.xstep[1] = 0.01L / range;  // 10 bar
    t.limlo[1] = t.limhi[1] = accwindow;
}

void setunknownT(NleTables& t, real T1, real T2) {
    const real range = T2 - T1;
    t.scale[2] = 1.0L / range;
    t.offset[2] = -T1 / range;
    t.xstep[2] = 0.1L / range;  // 0.1 degree
    t.limlo[2] = t.limhi[2] = accwindow;
}

void setunknowncomp(NleTables& t, int i, real lo, real hi, bool lozerosf, bool hizerosf) {
    const real range = hi - lo;
    t.scale[i] = 1.0L / range;
    t.offset[i] = -lo / range;
    t.xstep[i] = 0.0001L / range;
    t.limlo[i] = lozerosf ? accinaccessible : acccomp;
    t.limhi[i] = hizerosf ? accinaccessible : acccomp;
}

void setunknownmode(NleTables& t, int i, real phi) {
    t.scale[i] = modescale / phi;
    t.offset[i] = modeoffset;
    t.xstep[i] = 0.0001L;
    t.limlo[i] = t.limhi[i] = accmode;
}

bool inbox(const NleTables& t, const NleVector& x, int& bad) {
    bad = 0;
    for (int i = 1; i <= t.nx + t.nm; ++i) {
        if (!t.active[i]) continue;
        const real v = x[i];
        const bool lowok = t.limlo[i] == accinaccessible ? v > 0.0L : v >= 0.0L;
        const bool highok = t.limhi[i] == accinaccessible ? v < 1.0L : v <= 1.0L;
        if (!(lowok && highok)) {
            bad = i;
            return false;
        }
    }
    return true;
}

}  // namespace sm
