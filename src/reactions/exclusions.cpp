// Schreinemakers pruning. A reaction that cannot lie in the window has one
// side stable throughout it; the other side, as an assemblage, can never be
// stable there, so no reaction or invariant point that needs it is wanted.
#include <algorithm>

#include "reactions/reactions.h"
#include "run.h"

namespace sm {

namespace {

bool inexcludedem(const ReactionStore& rs, int i) {
    return std::find(rs.excludedem.begin(), rs.excludedem.end(), i) != rs.excludedem.end();
}

bool reactionkept(const ReactionStore& rs, int n) {
    const BitSet2& set = rs.reactionset[n];
    for (int e : rs.excludedem)
        if (BTst2(set, e)) return false;
    for (int a = 1; a <= rs.nexcludedassemblage; ++a)
        if (BSubset2(rs.excludedassemblage[a], set)) return false;
    return true;
}

}  // namespace

bool exclude(Run& run, bool belowatfirstcorner) {
    ReactionStore& rs = run.reactions;
    const int n = rs.nir;
    const auto& row = run.store.r[n];
    if (rs.nreactionset == rs.nir) --rs.nreactionset;
    --rs.nir;

    // With the Gibbs energy of reaction negative at the corner the right
    // side is the stable one, and the left side the assemblage to learn.
    BitSet2 u{};
    int count = 0, single = 0;
    for (int i = 1; i <= rs.nemp && i <= maxenumerated; ++i) {
        const bool unstable = belowatfirstcorner ? row[i] < 0 : row[i] > 0;
        if (unstable) {
            BSet2(u, i);
            ++count;
            single = i;
        }
    }
    // A side of in-excess end-members alone says nothing about the others.
    if (count == 0) return false;

    if (count == 1) {
        if (inexcludedem(rs, single)) return false;
        rs.excludedem.push_back(single);
        int kept = 0;
        for (int a = 1; a <= rs.nexcludedassemblage; ++a)
            if (!BTst2(rs.excludedassemblage[a], single))
                rs.excludedassemblage[++kept] = rs.excludedassemblage[a];
        rs.nexcludedassemblage = kept;
        return true;
    }

    if (rs.nexcludedassemblage == 0) {
        for (int e : rs.excludedem)
            if (BTst2(u, e)) return false;
        rs.excludedassemblage[++rs.nexcludedassemblage] = u;
        return true;
    }

    std::array<bool, maxexcludedassemblages + 1> goes{};
    bool marks = false;
    for (int a = 1; a <= rs.nexcludedassemblage; ++a) {
        if (BSubset2(u, rs.excludedassemblage[a])) return false;
        if (BSubset2(rs.excludedassemblage[a], u)) {
            goes[a] = true;
            marks = true;
        }
    }
    if (marks) {
        int kept = 0;
        for (int a = 1; a <= rs.nexcludedassemblage; ++a)
            if (!goes[a]) rs.excludedassemblage[++kept] = rs.excludedassemblage[a];
        rs.excludedassemblage[++kept] = u;
        rs.nexcludedassemblage = kept;
    } else {
        // At the limit the last entry gives way.
        if (rs.nexcludedassemblage < maxexcludedassemblages) ++rs.nexcludedassemblage;
        rs.excludedassemblage[rs.nexcludedassemblage] = u;
    }
    return true;
}

void prune(Run& run, bool final) {
    ReactionStore& rs = run.reactions;
    EndMemberStore& s = run.store;
    std::array<bool, maxreactions + 1> keep{};
    std::array<int, maxreactions + 1> newnumber{};
    int kept = 0;
    for (int n = 1; n <= rs.nir; ++n) {
        keep[n] = reactionkept(rs, n);
        if (keep[n]) newnumber[n] = ++kept;
    }
    if (kept < rs.nir) {
        // An invariant point stands only with all of its reactions.
        int nint = 0;
        for (int q = 1; q <= rs.nint; ++q) {
            bool all = true;
            for (int m = 1; m <= rs.intcount[q] && all; ++m) all = keep[rs.intreaction[q][m]];
            if (!all) continue;
            ++nint;
            rs.intcount[nint] = rs.intcount[q];
            rs.intset[nint] = rs.intset[q];
            for (int m = 1; m <= rs.intcount[q]; ++m)
                rs.intreaction[nint][m] = static_cast<short>(newnumber[rs.intreaction[q][m]]);
        }
        rs.nint = nint;
        for (int n = 1; n <= rs.nir; ++n) {
            if (!keep[n] || newnumber[n] == n) continue;
            const int to = newnumber[n];
            s.r[to] = s.r[n];
            rs.reactionset[to] = rs.reactionset[n];
            rs.reactionname[to] = rs.reactionname[n];
            rs.lnKbase[to] = rs.lnKbase[n];
        }
        rs.nir = kept;
        rs.nreactionset = kept;
    }
    if (final)
        for (int n = 1; n <= rs.nir; ++n) writereaction(run, n);
}

}  // namespace sm
