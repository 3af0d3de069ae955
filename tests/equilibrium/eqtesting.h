#pragma once
// A run over a shipped dataset and a-x file with chosen phases, read as far
// as the end-member compositions, for the tests of the composition matrix
// and the equations.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "ax/ax_reader.h"
#include "ax/endmember_composition.h"
#include "ax/makename.h"
#include "ax/setupphases.h"
#include "console/console.h"
#include "console/runended.h"
#include "equilibrium/composition.h"
#include "equilibrium/equations.h"
#include "run.h"
#include "thermo/dataset.h"
#include "thermo/made_endmembers.h"

namespace sm::eqtest {

using Bulk = std::vector<std::pair<const char*, real>>;

struct EqRun {
    MemoryConsole con;
    Run run{con};

    // Reads the a-x file over the dataset with the phases of `with` (all
    // of the file when empty), up to the compositions of the end-members,
    // and makes the reduced system of the default settings.
    void load(const char* axfile, const char* dataset, const std::vector<sstring>& with = {}) {
        try {
            setuptextread(run, std::string(SM_DATA_DIR) + "/" + dataset);
            TextFile file;
            ASSERT_TRUE(file.open(std::string(SM_DATA_DIR) + "/" + axfile));
            PhaseChoice choice;
            choice.with = with;
            readaxfile(run, file, choice);
            preparephases(run, choice);
            makename(run, withomit(run));
            readthermochemistry(run);
            texthermoread(run);
            makeemtd(run);
            makeemc(run);
            countcomp(run);
            run.solver.printlevel = 1;
            setter(run);
        } catch (const RunEnded& e) {
            FAIL() << e.where << " : " << e.message << "\n" << con.output;
        }
    }

    // Run order: a-x phases 1..npss, pure phases after.
    int phaseof(const sstring& name) const {
        const EndMemberStore& st = run.store;
        for (int k = 1; k <= st.npss; ++k)
            if (run.phases.prec1[k].pname == name) return k;
        for (int k = 1; k <= st.nmin; ++k)
            if (run.phases.prec0[k].pname == name) return st.npss + k;
        ADD_FAILURE() << "no phase " << name;
        return 0;
    }
    Assemblage take(const std::vector<sstring>& names) const {
        Assemblage a{};
        for (const auto& n : names) a[phaseof(n)] = true;
        return a;
    }
    int comp(const sstring& name) const {
        for (int k = 1; k <= run.store.nc; ++k)
            if (run.store.compname[k] == name) return k;
        ADD_FAILURE() << "no component " << name;
        return 0;
    }
    // One bulk (mole percent by component name) on the reduced system,
    // normalised to 100 there; components not named are 0.
    void bulk(const Bulk& b, const Bulk& second = {}) {
        EquilibriumState& eq = run.equilibrium;
        auto fill = [&](const Bulk& src, std::array<real, maxcomp + 1>& dst) {
            dst.fill(0);
            real sum = 0;
            for (const auto& [name, v] : src) {
                for (int j = 1; j <= eq.nuvleft; ++j)
                    if (run.store.compname[eq.reducedcomp[j]] == name) {
                        dst[j] = v;
                        sum += v;
                    }
            }
            for (int j = 1; j <= eq.nuvleft; ++j) dst[j] *= 100 / sum;
        };
        fill(b, eq.bulk1);
        eq.nbulk = 1;
        if (!second.empty()) {
            fill(second, eq.bulk2);
            eq.nbulk = 11;
        }
        setbulkposition(run, 1);
    }
};

// A KFMASH metapelite and an NCKFMASHTO one, mole percent.
inline const Bulk kfmashpelite = {{"H2O", 8.0},  {"SiO2", 62.0}, {"Al2O3", 14.0},
                                  {"MgO", 5.0},  {"FeO", 7.5},   {"K2O", 3.5}};
inline const Bulk metapelite = {{"H2O", 6.0}, {"SiO2", 64.6}, {"Al2O3", 13.6}, {"CaO", 1.6}, {"MgO", 5.0},
                                {"FeO", 6.0}, {"K2O", 2.9},   {"Na2O", 1.3},   {"TiO2", 0.6}, {"O", 0.4}};

}  // namespace sm::eqtest
