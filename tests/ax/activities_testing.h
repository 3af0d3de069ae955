#pragma once
// Helpers of the activity and order tests: the shipped a-x files read whole,
// the independent reference tables, and central differences.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "ax/activities.h"
#include "ax/ax_reader.h"
#include "ax/endmember_composition.h"
#include "ax/makename.h"
#include "ax/setupphases.h"
#include "console/console.h"
#include "console/runended.h"
#include "run.h"
#include "thermo/dataset.h"
#include "thermo/made_endmembers.h"

namespace sm::acttest {

inline std::string datapath(const std::string& name) { return std::string(SM_DATA_DIR) + "/" + name; }

// A run holding every phase of one a-x file; with a dataset also the
// end-members' data and compositions (for energies and reactions).
struct FileRun {
    MemoryConsole con;
    std::unique_ptr<sm::Run> run = std::make_unique<sm::Run>(con);
    PhaseChoice choice;

    explicit FileRun(const std::string& axfile, const std::string& dataset = "") {
        try {
            if (!dataset.empty()) setuptextread(*run, datapath(dataset));
            TextFile file;
            if (!file.open(datapath(axfile))) throw RunEnded{RunEnded::bombed, "test", "cannot open " + axfile, 0};
            readaxfile(*run, file, choice);
            preparephases(*run, choice);
            if (!dataset.empty()) {
                makename(*run, withomit(*run));
                readthermochemistry(*run);
                texthermoread(*run);
                makeemtd(*run);
                makeemc(*run);
                countcomp(*run);
            }
        } catch (const RunEnded& e) {
            ADD_FAILURE() << axfile << ": " << e.where << " : " << e.message << "\n" << con.output;
            throw;
        }
    }
    int nphases() const { return run->store.npss; }
    AxPhase& ax(int k) { return run->phases.prec1[k]; }
    int find(const std::string& name) {
        for (int k = 1; k <= nphases(); ++k)
            if (ax(k).pname == name) return k;
        return 0;
    }
    int findem(int k, const std::string& name) {
        for (int j = 1; j <= ax(k).nem; ++j)
            if (ax(k).em[j].ename == name) return j;
        return 0;
    }
    // Activities of phase k at its variables v[1..nxv].
    PhaseActivity at(int k, const std::vector<real>& v, real P, real T, bool deriv) {
        PhaseActivity out;
        phaseactivity(*run, k, v.data(), 1, deriv, deriv, P, T, out);
        return out;
    }
    std::vector<real> guesses(int k) {
        std::vector<real> v(ax(k).nxv + 1, 0.0L);
        for (int i = 1; i <= ax(k).nxv; ++i) v[i] = ax(k).xv[i].guess;
        return v;
    }
};

// Lays out phases `ks` (in that order) and then `npure` pure end-members as
// a calculation: x[1] P, x[2] T, the phases' variables from 3.
inline void layout(sm::Run& run, const std::vector<int>& ks, int npure) {
    ActivityState& as = run.activities;
    int i = 0, xo = 3;
    for (int k : ks) {
        const AxPhase& ph = run.phases.prec1[k];
        for (int j = 1; j <= ph.nem; ++j) {
            ++i;
            as.inss[i] = true;
            as.emphase[i] = k;
            as.emstart[i] = xo;
        }
        xo += ph.nxv;
    }
    for (int p = 0; p < npure; ++p) {
        ++i;
        as.inss[i] = false;
        as.emphase[i] = as.emstart[i] = 0;
    }
    run.store.nem = i;
}

inline std::vector<std::string> split(const std::string& s, char sep) {
    std::vector<std::string> out;
    std::stringstream in(s);
    std::string f;
    while (std::getline(in, f, sep)) out.push_back(f);
    return out;
}

inline std::vector<real> reals(const std::string& s) {
    std::vector<real> out{0};  // 1-based
    for (const auto& f : split(s, ';')) out.push_back(std::stold(f));
    return out;
}

// The rows of a reference table, heading dropped, as fields.
inline std::vector<std::vector<std::string>> readtable(const std::string& name) {
    std::ifstream in(std::string(SM_TEST_DIR) + "/ax/ref/" + name);
    EXPECT_TRUE(in.good()) << name;
    std::vector<std::vector<std::string>> rows;
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line))
        if (!line.empty()) rows.push_back(split(line, ','));
    return rows;
}

// Agreement to a relative tolerance, with a floor for values near zero.
inline ::testing::AssertionResult near(real got, real want, real rel, real floor) {
    const real tol = rel * std::fabs(want) + floor;
    if (std::fabs(got - want) <= tol) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "got " << static_cast<double>(got) << " want "
                                         << static_cast<double>(want) << " (tolerance "
                                         << static_cast<double>(tol) << ")";
}

// Central difference of f at h.
inline real central(const std::function<real(real)>& f, real h) { return (f(h) - f(-h)) / (2 * h); }

}  // namespace sm::acttest
