#include <cmath>

#include "reactions/reactionthermo.h"
#include "run.h"

namespace sm {

void setlnKbase(Run& run, int n) {
    const EndMemberStore& s = run.store;
    real sum = 0;
    for (int i = 1; i <= s.nem; ++i)
        if (s.r[n][i] != 0 && s.activ[i] > 0) sum += s.r[n][i] * std::log(s.activ[i]);
    run.reactions.lnKbase[n] = sum;
}

void setlnKbase(Run& run) {
    for (int n = 1; n <= run.reactions.nir; ++n) setlnKbase(run, n);
}

void setvarlna(Run& run) {
    const EndMemberStore& s = run.store;
    ReactionStore& rs = run.reactions;
    // A phase diagram works with its activities as exact.
    const bool exact = run.runmode == 1;
    for (int i = 1; i <= s.nem; ++i) {
        const real a = s.activ[i];
        rs.varlna[i] = !exact && a > 0 && a < 1 ? (rs.sdactiv[i] / a) * (rs.sdactiv[i] / a) : 0;
    }
}

}  // namespace sm
