#include "reactions/reactiondrawing.h"

#include <string>

#include "console/format.h"
#include "reactions/ptxpoint.h"
#include "run.h"
#include "script/windows.h"

namespace sm {

namespace {

// The coordinates of a point of the diagram: P and T in Celsius on a P-T
// diagram, else the listed value and the solved value.
std::string row(const Run& run, real listvalue, real solved) {
    const Windows& w = run.script.win;
    auto P = [&](real v) { return real2str(v, std::max(w.Pdecimals, 3), true); };
    auto T = [&](real v) { return real2str(v - kelvin0, std::max(w.Tdecimals, 2), true); };
    const std::string y = w.calcvariable == axisP ? P(solved) : T(solved);
    if (w.diagrammode == dmPT) {
        const std::string x = w.calcvariable == axisP ? T(listvalue) : P(listvalue);
        return w.calcvariable == axisP ? y + " " + x : x + " " + y;
    }
    return real2str(listvalue, std::max(w.xdecimals, 4), true) + " " + y;
}

std::string phasesof(const Run& run, int n) {
    std::string names;
    for (int i = 1; i <= run.reactions.nemp; ++i)
        if (run.store.r[n][i] != 0) names += " " + run.store.emname[i];
    return names;
}

}  // namespace

void reactiondrawing(Run& run) {
    const ReactionStore& rs = run.reactions;
    const std::vector<real> list = listvalues(run, "reactiondrawing");
    const int type = windowtype(run);
    for (int n = 1; n <= rs.nir; ++n)
        for (int branch = 1; branch <= 2; ++branch) {
            const auto& r = branch == 1 ? rs.v1[n] : rs.v2[n];
            std::vector<std::string> rows;
            for (int j = 1; j <= rs.nlist && j < static_cast<int>(list.size()); ++j)
                if (inrange(run, type, r[j])) rows.push_back(row(run, list[j], r[j]));
            if (rows.empty()) continue;
            const std::string name = "u" + std::to_string(n) + (branch == 2 ? "_2" : "");
            putstr(run.io, 1, "% ------------------------------", 1, chsk);
            putstr(run.io, 0, name + phasesof(run, n) + " - begin end", 1, chsk);
            for (const auto& line : rows) putstr(run.io, 0, line, 1, chsk);
        }
    int k = 0;
    for (const auto& p : rs.points) {
        std::string names;
        for (int i = 1; i <= rs.nemp; ++i)
            if (BTst2(rs.intset[p.intersection], i)) names += " " + run.store.emname[i];
        const Windows& w = run.script.win;
        real listvalue = 0, solved = w.calcvariable == axisP ? p.P : p.T;
        switch (w.diagrammode) {
        case dmPT: listvalue = w.calcvariable == axisP ? p.T : p.P; break;
        case dmPx: case dmTx: listvalue = p.xco2; break;
        case dmPlna: case dmTlna: listvalue = p.lna; break;
        default: listvalue = p.mu; break;
        }
        putstr(run.io, 1, "% ------------------------------", 1, chsk);
        putstr(run.io, 0, "i" + std::to_string(++k) + names + " invariant" + (p.stable ? "" : " % metastable"), 1,
               chsk);
        putstr(run.io, 0, row(run, listvalue, solved), 1, chsk);
    }
}

}  // namespace sm
