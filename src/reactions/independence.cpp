// Mode 2 keeps only reactions independent of those already chosen, and
// asks of each sub-system how many it may still add.
#include <algorithm>

#include "console/intmath.h"
#include "console/runended.h"
#include "reactions/reactions.h"
#include "run.h"

namespace sm {

namespace {

long long vectorgcd(const std::array<long long, maxnem + 1>& w, int n) {
    long long g = 0;
    for (int i = 1; i <= n && g != 1; ++i) g = gcd(g, w[i]);
    return g;
}

}  // namespace

bool newindr(Run& run, const std::array<long long, maxnem + 1>& coef,
             std::array<long long, maxnem + 1>& reduced) {
    const ReactionStore& rs = run.reactions;
    const int nem = run.store.nem;
    reduced = coef;
    for (int j = 1; j <= rs.nechelon; ++j) {
        const int p = rs.pivotcolumn[j];
        const auto& e = rs.echelonrow[j];
        if (reduced[p] == 0) continue;
        const long long g = gcd(e[p], reduced[p]);
        const long long a = e[p] / g, b = reduced[p] / g;
        for (int i = 1; i <= nem; ++i) reduced[i] = a * reduced[i] - b * e[i];
        const long long h = vectorgcd(reduced, nem);
        if (h > 1)
            for (int i = 1; i <= nem; ++i) reduced[i] /= h;
    }
    for (int i = 1; i <= nem; ++i)
        if (reduced[i] != 0) return true;
    return false;
}

void commitindependent(Run& run, const std::array<long long, maxnem + 1>& reduced) {
    ReactionStore& rs = run.reactions;
    const int nem = run.store.nem;
    if (rs.nechelon >= maxindreactions) bomb("newindr", "too many independent reactions", 0);
    ++rs.nechelon;
    int p = 1;
    while (p <= nem && reduced[p] == 0) ++p;
    rs.pivotcolumn[rs.nechelon] = p;
    auto& e = rs.echelonrow[rs.nechelon];
    const long long h = vectorgcd(reduced, nem);
    for (int i = 0; i <= maxnem; ++i) e[i] = i <= nem && h > 0 ? reduced[i] / h : 0;
}

bool calclnir(Run& run, const BitSet2& subsystem, const int* members, int nmembers, bool fullsystem,
              int& wanted, int& inside) {
    const ReactionStore& rs = run.reactions;
    if (rs.nemp > maxenumerated) bomb("calclnir", "too many end-members", 0);
    wanted = nmembers - rs.rankc;
    inside = 0;
    for (int n = 1; n <= rs.nreactionset && n <= rs.nir; ++n)
        if (BSubset2(rs.reactionset[n], subsystem)) ++inside;
    int extra = wanted - inside;
    if (extra != 0 && rs.nir != 0 && !fullsystem) {
        BitSet2 used{};
        for (int n = 1; n <= rs.nreactionset && n <= rs.nir; ++n)
            for (int w = 0; w < 3; ++w) used[w] |= rs.reactionset[n][w];
        int nin = 0, nout = 0;
        for (int q = 1; q <= nmembers; ++q)
            if (!BTst2(used, members[q])) ++nin;
        for (int i = 1; i <= rs.nemp; ++i) {
            if (BTst2(subsystem, i) || BTst2(used, i)) continue;
            if (std::find(rs.excludedem.begin(), rs.excludedem.end(), i) != rs.excludedem.end())
                continue;
            ++nout;
        }
        if (nout != 0) {
            if (rs.nindep - rs.nir == 1)
                extra = 0;
            else if (rs.nindep - rs.nir < 3 && nin < extra)
                extra = nin;
        }
    }
    wanted = inside + extra;
    return extra > 0;
}

}  // namespace sm
