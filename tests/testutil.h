#pragma once
// Helpers shared by the unit tests.
#include <filesystem>
#include <functional>
#include <string>

#include "console/runended.h"

namespace smtest {

// Runs `body` and returns the RunEnded it throws; fails the test if it returns.
sm::RunEnded expectended(const std::function<void()>& body);

// A fresh temporary folder, made the current directory for the lifetime of
// the object, removed afterwards.
class ScratchDir {
public:
    ScratchDir();
    ~ScratchDir();
    const std::filesystem::path& path() const { return dir_; }
    void write(const std::string& name, const std::string& text) const;
    std::string read(const std::string& name) const;
    bool exists(const std::string& name) const;

private:
    std::filesystem::path dir_;
    std::filesystem::path previous_;
};

std::string datafile(const std::string& name);  // path of a file in data/

}  // namespace smtest
