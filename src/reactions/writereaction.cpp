// Reaction texts: "3)  2 ky + q = sill + ...", the end-members in store
// order, coefficients of 1 left out.
#include <cstdlib>
#include <string>

#include "reactions/reactions.h"
#include "run.h"

namespace sm {

namespace {

std::string shownname(const Run& run, int i) {
    const ReactionStore& rs = run.reactions;
    if (i == rs.axisem && !rs.axisdisplayname.empty()) return rs.axisdisplayname;
    const sstring& name = run.store.emname[i];
    for (const auto& [from, to] : rs.displaynames)
        if (from == name) return to;
    return name;
}

std::string side(const Run& run, int n, int sign) {
    std::string text;
    for (int i = 1; i <= run.store.nem; ++i) {
        const int v = run.store.r[n][i] * sign;
        if (v <= 0) continue;
        if (!text.empty()) text += " + ";
        if (v != 1) text += std::to_string(v) + " ";
        text += shownname(run, i);
    }
    return text;
}

}  // namespace

void writereaction(Run& run, int n) {
    ReactionStore& rs = run.reactions;
    std::string text = std::to_string(n) + ")  " + side(run, n, -1) + " = " + side(run, n, 1);
    rs.reactionname[n] = cut255(text);
    if (static_cast<int>(rs.reactionname[n].size()) > rs.widestreaction)
        rs.widestreaction = static_cast<int>(rs.reactionname[n].size());
}

}  // namespace sm
