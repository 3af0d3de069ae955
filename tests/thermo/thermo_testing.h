#pragma once
// Helpers of the thermodynamic-data tests: a run over an in-memory console,
// the shipped datasets, scratch copies of damaged files, and the fatal stop.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "console/console.h"
#include "console/runended.h"
#include "run.h"
#include "testutil.h"
#include "thermo/dataset.h"

namespace sm::testing {

using smtest::datafile;

inline std::string readtext(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

inline std::vector<std::string> splitlines(const std::string& text) {
    std::vector<std::string> lines;
    std::string line;
    std::istringstream in(text);
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

inline std::string joinlines(const std::vector<std::string>& lines) {
    std::string text;
    for (const auto& l : lines) text += l + "\n";
    return text;
}

// Writes a file into the scratch folder (the current directory while `dir`
// lives) and gives back its name: the name decides the generation of a dataset.
inline std::string put(const smtest::ScratchDir& dir, const std::string& name, const std::string& text) {
    dir.write(name, text);
    return name;
}

struct TestRun {
    MemoryConsole console;
    Run run{console};
};

// The names of the dataset entries, in file order.
inline std::vector<sstring> allnames(const Run& run) {
    std::vector<sstring> names;
    for (int i = 1; i <= run.store.ntp; ++i) names.push_back(run.store.dsname[i]);
    return names;
}

// All three stages with the given names (all entries when empty).
inline void readdataset(Run& run, const std::string& path, std::vector<sstring> names = {}) {
    setuptextread(run, path);
    if (names.empty()) names = allnames(run);
    readthermochemistry(run, names);
    texthermoread(run);
}

// The fatal stop of `body`, as "where : message"; "" when it did not stop.
inline std::string stopof(const std::function<void()>& body) {
    try {
        body();
    } catch (const RunEnded& e) {
        return e.where + " : " + e.message;
    }
    return "";
}

inline int rowof(const Run& run, const std::string& name) {
    for (int i = 1; i <= run.store.nem; ++i)
        if (run.store.emname[i] == name) return i;
    ADD_FAILURE() << name << " is not in the run";
    return 0;
}

}  // namespace sm::testing
