#pragma once
#include <cmath>
#include <vector>
// Helpers of the reaction tests: a run over an in-memory console whose
// composition matrix is written by hand, and checks of reaction rows that
// rest on nothing but the matrix.
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <string>
#include <vector>

#include "console/console.h"
#include "reactions/inexcess.h"
#include "reactions/reactions.h"
#include "run.h"

namespace sm::testing {

struct HandRun {
    MemoryConsole console;
    Run run{console};
};

struct HandEndMember {
    std::string name;
    std::vector<int> amounts;  // one per component, in the order given
};

// Writes the composition matrix: components as rows, end-members as
// columns in the order given; the last `ninexcess` end-members are in excess.
inline void setsystem(Run& run, const std::vector<std::string>& comps,
                      const std::vector<HandEndMember>& ems, int ninexcess = 0) {
    EndMemberStore& s = run.store;
    s.nc = static_cast<int>(comps.size());
    s.nem = static_cast<int>(ems.size());
    for (int k = 1; k <= s.nc; ++k) {
        s.compname[k] = comps[k - 1];
        s.cscale[k] = 1;
    }
    for (int i = 1; i <= s.nem; ++i) {
        s.emname[i] = ems[i - 1].name;
        s.activ[i] = 1;
        for (int k = 1; k <= s.nc; ++k) s.c[k][i] = static_cast<short>(ems[i - 1].amounts[k - 1]);
    }
    findspecialrows(s);
    run.runmode = 3;
    eliminateinexcess(run, ninexcess);
}

// The original composition of each end-member, by name, for balance checks
// that do not trust the eliminated matrix.
using Compositions = std::map<std::string, std::vector<int>>;

inline Compositions compositions(const std::vector<HandEndMember>& ems) {
    Compositions m;
    for (const auto& e : ems) m[e.name] = e.amounts;
    return m;
}

inline bool balances(const Run& run, int n, const Compositions& comp) {
    const EndMemberStore& s = run.store;
    const size_t nc = comp.begin()->second.size();
    for (size_t k = 0; k < nc; ++k) {
        long long sum = 0;
        for (int i = 1; i <= s.nem; ++i) sum += s.r[n][i] * comp.at(s.emname[i])[k];
        if (sum != 0) return false;
    }
    return true;
}

// The reaction as a map name -> coefficient, zero coefficients left out.
inline std::map<std::string, int> asmap(const Run& run, int n) {
    std::map<std::string, int> m;
    for (int i = 1; i <= run.store.nem; ++i)
        if (run.store.r[n][i] != 0) m[run.store.emname[i]] = run.store.r[n][i];
    return m;
}

inline WindowQuestion alwaysinwindow() {
    return [](sm::Run&, int, bool& below) {
        below = false;
        return true;
    };

}

// Rank by floating-point elimination with partial pivoting: an independent
// yardstick for the exact integer routines.
inline int floatrank(std::vector<std::vector<double>> a) {
    const int rows = static_cast<int>(a.size());
    const int cols = rows ? static_cast<int>(a[0].size()) : 0;
    int rank = 0;
    for (int c = 0; c < cols && rank < rows; ++c) {
        int best = rank;
        for (int r = rank; r < rows; ++r)
            if (std::fabs(a[r][c]) > std::fabs(a[best][c])) best = r;
        if (std::fabs(a[best][c]) < 1e-9) continue;
        std::swap(a[rank], a[best]);
        for (int r = rank + 1; r < rows; ++r) {
            const double f = a[r][c] / a[rank][c];
            for (int k = c; k < cols; ++k) a[r][k] -= f * a[rank][k];
        }
        ++rank;
    }
    return rank;
}

}  // namespace sm::testing
