#include "ax/makename.h"

#include <algorithm>
#include <string>

#include "console/runended.h"
#include "run.h"

namespace sm {

namespace {

struct NameList {
    std::vector<sstring> names;
    void add(const sstring& name, int step) {
        if (names.size() == static_cast<size_t>(maxnamelist))
            bomb("makename", "too many end-members " + std::to_string(step), 0);
        names.push_back(name);
    }
};

}  // namespace

void makename(Run& run, const std::vector<bool>& omit) {
    PhaseStore& ps = run.phases;
    EndMemberStore& st = run.store;
    const int npss = st.npss;
    int kept = 0;
    for (int k = 1; k <= npss; ++k) {
        if (k < static_cast<int>(omit.size()) && omit[k]) continue;
        ++kept;
        if (kept != k) ps.prec1[kept] = std::move(ps.prec1[k]);
    }
    st.npss = kept;
    kept = 0;
    for (int k = 1; k <= st.nmin; ++k) {
        const int flag = npss + k;
        if (flag < static_cast<int>(omit.size()) && omit[flag]) continue;
        ++kept;
        if (kept != k) ps.prec0[kept] = std::move(ps.prec0[k]);
    }
    st.nmin = kept;
    st.nph = st.npss + st.nmin;

    NameList list;
    list.names.reserve(maxnamelist);
    for (int k = 1; k <= st.npss; ++k)
        for (int j = 1; j <= ps.prec1[k].nem; ++j)
            if (ps.prec1[k].em[j].make.nmake <= 0) list.add(ps.prec1[k].em[j].ename, 1);
    for (int k = 1; k <= st.nmin; ++k)
        if (ps.prec0[k].make.nmake <= 0) list.add(ps.prec0[k].ename, 2);
    for (int k = 1; k <= st.npss; ++k)
        for (int j = 1; j <= ps.prec1[k].nem; ++j) {
            const MakeRecord& m = ps.prec1[k].em[j].make;
            for (int t = 1; t <= m.nmake; ++t) list.add(m.makename[t], 3);
        }
    for (int k = 1; k <= st.nmin; ++k) {
        const MakeRecord& m = ps.prec0[k].make;
        for (int t = 1; t <= m.nmake; ++t) list.add(m.makename[t], 4);
    }

    int nem = 0;
    for (const auto& name : list.names) {
        bool seen = false;
        for (int i = 1; i <= nem && !seen; ++i) seen = st.emname[i] == name;
        if (seen) continue;
        if (nem == maxnem) bomb("makename", "too many end-members", 0);
        st.emname[++nem] = name;
    }
    st.nem = nem;
    for (int i = nem + 1; i <= maxnem; ++i) st.emname[i].clear();
}

std::vector<bool> withomit(const Run& run) {
    const PhaseStore& ps = run.phases;
    const EndMemberStore& st = run.store;
    std::vector<bool> omit(st.npss + st.nmin + 1, false);
    for (int k = 1; k <= st.npss; ++k) omit[k] = !ps.inwith(ps.prec1[k]);
    for (int k = 1; k <= st.nmin; ++k) omit[st.npss + k] = !ps.inwith(ps.prec0[k]);
    return omit;
}

}  // namespace sm
