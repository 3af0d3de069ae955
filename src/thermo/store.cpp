#include "thermo/store.h"

namespace sm {

void EndMemberStore::initstore() {
    ntp = 0;
    nem = 0;
    nc = 0;
    npss = nmin = nph = 0;
    for (auto& row : td) row.fill(0);
    nsites.fill(1);
    cscale.fill(1);
    for (auto& row : c) row.fill(0);
    natoms.fill(0);
    nel.fill(0);
    activ.fill(1);
}

bool dsfind(const EndMemberStore& s, std::string_view name, int& number) {
    const sstring key = cut22(name);
    for (int i = 1; i <= s.ntp; ++i)
        if (s.dsname[i] == key) {
            number = i;
            return true;
        }
    number = 0;
    return false;
}

}  // namespace sm
