#include "thermo/store.h"

#include "console/runended.h"

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
    for (auto& row : r) row.fill(0);
    ncproj = nemproj = 0;
    excessO = false;
    ico2 = ih2o = iaqsi = icrd = ifcrd = 0;
    lastthermal = lastvdp = 0;
    ggkfallbacks = 0;
}

void setemname(EndMemberStore& s, const std::vector<sstring>& names) {
    if (static_cast<int>(names.size()) > maxnem) bomb("makename", "too many end-members", 0);
    s.nem = static_cast<int>(names.size());
    for (int i = 1; i <= maxnem; ++i) s.emname[i] = i <= s.nem ? cut22(names[i - 1]) : sstring();
}

void findspecialrows(EndMemberStore& s) {
    s.ico2 = s.ih2o = s.iaqsi = s.icrd = s.ifcrd = 0;
    for (int i = s.nem; i >= 1; --i) {  // the first occurrence wins
        const sstring& n = s.emname[i];
        if (n == "CO2") s.ico2 = i;
        else if (n == "H2O") s.ih2o = i;
        else if (n == "aqSi") s.iaqsi = i;
        else if (n == "crd") s.icrd = i;
        else if (n == "fcrd") s.ifcrd = i;
    }
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
