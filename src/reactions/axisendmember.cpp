#include "reactions/axisendmember.h"

#include "console/runended.h"
#include "run.h"

namespace sm {

void addmupseudo(Run& run, int k) {
    EndMemberStore& s = run.store;
    if (s.nem >= maxnem) bomb("reactionsetup", "too many end-members", 0);
    const int i = ++s.nem;
    s.emname[i] = cut22("mu(" + s.compname[k] + ")");
    s.td[i] = TdRow{};
    for (int q = 1; q <= s.nc; ++q) s.c[q][i] = 0;
    s.c[k][i] = static_cast<short>(s.cscale[k]);
    s.activ[i] = 1;
    run.reactions.sdactiv[i] = 0;
    for (int j = 1; j <= s.nem; ++j) {
        s.covat(i, j) = 0;
        s.covat(j, i) = 0;
    }
}

void setaxisendmember(Run& run) {
    ReactionStore& rs = run.reactions;
    rs.axisem = run.store.nem;
    rs.axisS0 = run.store.td[rs.axisem][tdS];
}

}  // namespace sm
