#include <algorithm>
#include <cmath>

#include "console/intmath.h"
#include "console/runended.h"
#include "console/scan.h"
#include "thermo/components.h"
#include "thermo/dataset.h"
#include "thermo/store.h"

namespace sm {

namespace {

constexpr int ellO = 10;  // oxygen in the component table

// A working copy of one end-member's formula: the store keeps the atoms as
// read, so that the Einstein temperature and the atoms of later Parts see them.
struct Formula {
    int nel = 0;
    std::array<int, maxelpairs + 2> elno{};
    std::array<real, maxelpairs + 2> elcoef{};
};

}  // namespace

void makeoxides(EndMemberStore& s) {
    s.cscale.fill(1);
    for (auto& row : s.c) row.fill(0);
    const int nem = s.nem;
    std::vector<Formula> f(nem + 1);
    for (int i = 1; i <= nem; ++i) {
        f[i].nel = s.nel[i];
        for (int j = 1; j <= s.nel[i]; ++j) {
            f[i].elno[j] = s.elno[i][j];
            f[i].elcoef[j] = s.elcoef[i][j];
        }
    }

    // A dataset that names oxygen gives atoms: turn them into oxide units,
    // with what oxygen is left over as an "O" component.
    bool atoms = false;
    for (int i = 1; i <= nem && !atoms; ++i)
        for (int j = 1; j <= f[i].nel; ++j)
            if (f[i].elno[j] == ellO) atoms = true;
    s.excessO = false;
    if (atoms) {
        for (int i = 1; i <= nem; ++i) {
            Formula& row = f[i];
            int oxygenat = 0;
            float leftover = 0;
            for (int j = 1; j <= row.nel; ++j)
                if (row.elno[j] == ellO) {
                    oxygenat = j;
                    leftover = static_cast<float>(row.elcoef[j]);
                }
            for (int j = 1; j <= row.nel; ++j) {
                if (row.elno[j] == ellO) continue;
                const ComponentRow& comp = componenttable[row.elno[j] - 1];
                row.elcoef[j] /= comp.cations;
                leftover = static_cast<float>(leftover - row.elcoef[j] * comp.oxygens);
            }
            if (oxygenat == 0) {
                oxygenat = ++row.nel;
                row.elno[oxygenat] = ellO;
            }
            row.elcoef[oxygenat] = leftover;
            if (std::fabs(leftover) > 0.001f) s.excessO = true;
        }
    }

    // The components in use, in display order.
    std::array<bool, maxcomp + 1> used{};
    for (int i = 1; i <= nem; ++i)
        for (int j = 1; j <= f[i].nel; ++j) used[f[i].elno[j]] = true;
    if (atoms && !s.excessO) used[ellO] = false;
    std::array<int, maxcomp + 1> ellof{};
    s.nc = 0;
    for (int ell = 1; ell <= maxcomp; ++ell)
        if (used[ell]) ellof[++s.nc] = ell;
    std::sort(ellof.begin() + 1, ellof.begin() + s.nc + 1, [](int a, int b) {
        return componenttable[a - 1].dispno < componenttable[b - 1].dispno;
    });

    std::vector<real> values(std::max(nem, 1));
    for (int k = 1; k <= s.nc; ++k) {
        const int ell = ellof[k];
        for (int i = 1; i <= nem; ++i) {
            values[i - 1] = 0;
            for (int j = 1; j <= f[i].nel; ++j)
                if (f[i].elno[j] == ell) values[i - 1] += f[i].elcoef[j];
        }
        long long denominator = 1;
        if (nem > 0) commonints(values.data(), nem, denominator);
        if (denominator > 2147483647LL)
            bomb("makeoxides", "composition of " + std::string(componenttable[ell - 1].element) +
                                   " needs too large a denominator", 0);
        s.cscale[k] = static_cast<int>(denominator);
        for (int i = 1; i <= nem; ++i)
            s.c[k][i] = static_cast<short>(long2int(std::llround(values[i - 1])));
        const ComponentRow& comp = componenttable[ell - 1];
        s.compname[k] = atoms ? comp.oxide : comp.element;
    }
    for (int k = s.nc + 1; k <= maxcomp; ++k) s.compname[k].clear();

    s.ncproj = s.nc;
    s.nemproj = s.nem;
    for (int k = 1; k <= s.nc; ++k) {
        int found = 0;
        for (int row = 1; row <= maxcomp && !found; ++row)
            if (s.compname[k] == componenttable[row - 1].oxide) found = row;
        for (int row = 1; row <= maxcomp && !found; ++row)
            if (s.compname[k] == componenttable[row - 1].element) found = row;
        if (!found) bomb("makeoxides", "cannot find oxide name", 0);
        const ComponentRow& comp = componenttable[found - 1];
        s.catomsum[k] = s.dsmode == -1 ? 1 : comp.cations + comp.oxygens;
    }
}

}  // namespace sm
