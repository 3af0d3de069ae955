#include "reactions/inexcess.h"

#include <utility>
#include <vector>

#include "console/intmath.h"
#include "console/runended.h"
#include "run.h"

namespace sm {

namespace {

void reducerow(std::vector<long long>& row, int n) {
    long long g = 0;
    for (int i = 1; i <= n && g != 1; ++i) g = gcd(g, row[i]);
    if (g > 1)
        for (int i = 1; i <= n; ++i) row[i] /= g;
}

}  // namespace

void eliminateinexcess(Run& run, int ninexcess) {
    EndMemberStore& s = run.store;
    ReactionStore& rs = run.reactions;
    const int nem = s.nem, nc = s.nc;
    rs.ninexcess = ninexcess;
    rs.nemp = nem - ninexcess;
    for (int k = 0; k <= maxcomp; ++k) rs.div[k] = 1;

    std::vector<std::vector<long long>> a(nc + 1, std::vector<long long>(nem + 1, 0));
    for (int k = 1; k <= nc; ++k)
        for (int i = 1; i <= nem; ++i) a[k][i] = s.c[k][i];
    std::vector<bool> used(nc + 1, false);
    std::vector<int> pivotrow(ninexcess + 1, 0);

    for (int t = 1; t <= ninexcess; ++t) {
        const int col = rs.nemp + t;
        int pr = 0;
        for (int k = 1; k <= nc && pr == 0; ++k)
            if (!used[k] && a[k][col] != 0) pr = k;
        if (pr == 0) bomb("reactionsetup", "in-excess end-members are not independent", 0);
        used[pr] = true;
        pivotrow[t] = pr;
        if (a[pr][col] < 0)
            for (int i = 1; i <= nem; ++i) a[pr][i] = -a[pr][i];
        reducerow(a[pr], nem);
        const long long p = a[pr][col];
        for (int k = 1; k <= nc; ++k) {
            if (k == pr || a[k][col] == 0) continue;
            const long long g = gcd(p, a[k][col]);
            const long long x = p / g, y = a[k][col] / g;
            for (int i = 1; i <= nem; ++i) a[k][i] = x * a[k][i] - y * a[pr][i];
            reducerow(a[k], nem);
        }
    }

    // Free rows first in their order, then the pivot rows in the order of
    // their end-members.
    std::vector<int> order;
    for (int k = 1; k <= nc; ++k)
        if (!used[k]) order.push_back(k);
    for (int t = 1; t <= ninexcess; ++t) order.push_back(pivotrow[t]);
    const auto names = s.compname;
    const auto scales = s.cscale;
    const auto atoms = s.catomsum;
    for (int q = 1; q <= nc; ++q) {
        const int k = order[q - 1];
        for (int i = 1; i <= nem; ++i) {
            if (a[k][i] > 32767 || a[k][i] < -32767)
                bomb("reactionsetup", "composition matrix entries too large", 0);
            s.c[q][i] = static_cast<short>(a[k][i]);
        }
        s.compname[q] = names[k];
        s.cscale[q] = scales[k];
        s.catomsum[q] = atoms[k];
    }
    rs.ncompp = nc - ninexcess;
    for (int t = 1; t <= ninexcess; ++t) rs.div[rs.ncompp + t] = s.c[rs.ncompp + t][rs.nemp + t];
}

}  // namespace sm
