// Fluid and aqueous phases. Their non-ideality is not a file value: a mixed
// fluid takes its W from a fixed table of species pairs and its volumes from
// the fluid equations of state; an aqueous phase is water with solutes.
#include <cstring>

#include "ax/phase_prep.h"
#include "console/runended.h"

namespace sm {

namespace {

constexpr const char* species[] = {"H2O", "CO2", "CH4", "CO", "H2", "O2", "H2S", "S2"};
constexpr int nspecies = 8;

struct SpeciesPair {
    const char* a;
    const char* b;
    double w;  // kJ
};
constexpr SpeciesPair pairs[] = {
    {"H2O", "CO2", 10.5}, {"H2O", "CH4", 17.5}, {"H2O", "CO", 16.8},  {"H2O", "H2", 14.9},
    {"H2O", "H2S", 6.7},  {"H2O", "S2", 13.0},  {"CH4", "H2S", 4.15}, {"CO2", "CH4", 0.6},
    {"CO2", "CO", 1.2},   {"CO2", "H2", 2.2},   {"CO2", "H2S", 0.045}, {"CO2", "S2", 1.0},
    {"CH4", "H2", 0.8},   {"CO", "H2", 0.3},
};

// Names of fluid and aqueous species, refused in an ordinary solid solution.
constexpr const char* fluidaqnames[] = {
    "H2O",   "CO2",    "CO",    "CH4",  "O2",    "H2",    "H2S",   "S2",   "H+",
    "Cl-",   "OH-",    "Na+",   "K+",   "Ca++",  "Mg++",  "Fe++",  "Al+++", "CO3--",
    "AlOH3", "AlOH4-", "KOH",   "HCl",  "KCl",   "NaCl",  "CaCl2", "CaCl+", "MgCl2",
    "MgCl+", "FeCl2",  "HS-",   "HSO3-", "SO42-", "HSO4-", "aqSi"};

bool isfluidaqname(const sstring& name) {
    for (const char* n : fluidaqnames)
        if (name == n) return true;
    return false;
}

}  // namespace

int fluidspecies(const sstring& name) {
    for (int i = 0; i < nspecies; ++i)
        if (name == species[i]) return i + 1;
    return 0;
}

real fluidw(int i, int j) {
    for (const auto& p : pairs) {
        const int a = fluidspecies(p.a), b = fluidspecies(p.b);
        if ((a == i && b == j) || (a == j && b == i)) return static_cast<real>(p.w);
    }
    return 0;
}

void classifyfluid(AxPhase& ph) {
    ph.fluidkind = ph.pname.compare(0, 5, "fluid") == 0;
    ph.aqkind = ph.pname.compare(0, 2, "aq") == 0;
    ph.h2oem = ph.co2em = 0;
    for (int j = 1; j <= ph.nem; ++j) {
        if (ph.em[j].ename == "H2O") ph.h2oem = j;
        if (ph.em[j].ename == "CO2") ph.co2em = j;
    }
    if (ph.fluidkind) {
        for (int j = 1; j <= ph.nem; ++j) {
            const int k = fluidspecies(ph.em[j].ename);
            if (k == 0) bomb("setupphases", "end-member name in fluid not recognised", 0);
            if (ph.em[j].ename == "O2") bomb("setupphases", "O2 not implemented in fluid coding", 0);
            ph.em[j].fluidindex = k;
        }
        ph.nonideal = asymmetric;
        int g = 0;
        for (int i = 1; i < ph.nem; ++i)
            for (int j = i + 1; j <= ph.nem; ++j) {
                ++g;
                ph.gt[g] = {i, j};
                ph.wname[g] = "W(" + ph.em[i].ename + "," + ph.em[j].ename + ")";
                ph.wa[g] = fluidw(ph.em[i].fluidindex, ph.em[j].fluidindex);
                ph.wb[g] = ph.wc[g] = 0;
                ph.wsd[g] = 0;
                ph.wunset[g] = false;
            }
        ph.ngt = g;
        return;
    }
    if (ph.aqkind) {
        for (int j = 1; j <= ph.nem; ++j) {
            const int k = fluidspecies(ph.em[j].ename);
            if (k > 2) bomb("setupphases", "fluid name in aq not just H2O and CO2", 0);
            ph.em[j].fluidindex = k;
        }
        if (ph.em[1].ename != "H2O") bomb("setupphases", "1st H2O-CO2 aq end-member must be \"H2O\"", 0);
        ph.nonideal = asymmetric;
        if (ph.co2em == 0) return;
        if (ph.co2em != 2) bomb("setupphases", "2nd H2O-CO2 aq end-member must be \"CO2\"", 0);
        int at = 0;
        for (int g = 1; g <= ph.ngt && at == 0; ++g)
            if (ph.gt[g][0] == 1 && ph.gt[g][1] == 2) at = g;
        if (at != 0 && (ph.wa[at] != 0 || ph.wb[at] != 0 || ph.wc[at] != 0))
            bomb("setupphases", "set W(H2O-CO2) = 0 (its value is then hard-wired)", 0);
        // The H2O-CO2 pair heads the list: its W is worked out at each call.
        if (at != 1) {
            if (at == 0) {
                if (ph.ngt == maxgterms) bomb("setupphases", "too many gterms", 0);
                at = ++ph.ngt;
                ph.wname[at] = "W(H2O,CO2)";
                ph.wa[at] = ph.wb[at] = ph.wc[at] = ph.wsd[at] = 0;
                ph.wunset[at] = false;
            }
            for (int g = at; g > 1; --g) {
                std::swap(ph.gt[g], ph.gt[g - 1]);
                std::swap(ph.wname[g], ph.wname[g - 1]);
                std::swap(ph.wa[g], ph.wa[g - 1]);
                std::swap(ph.wb[g], ph.wb[g - 1]);
                std::swap(ph.wc[g], ph.wc[g - 1]);
                std::swap(ph.wsd[g], ph.wsd[g - 1]);
                std::swap(ph.wunset[g], ph.wunset[g - 1]);
            }
            ph.gt[1] = {1, 2};
        }
        return;
    }
    if (ph.pname.compare(0, 2, "fl") == 0) return;
    for (int j = 1; j <= ph.nem; ++j)
        if (isfluidaqname(ph.em[j].ename)) bomb("setupphases", ph.em[j].ename + " not in fluid/aq", 0);
}

}  // namespace sm
