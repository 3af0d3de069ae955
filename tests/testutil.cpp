#include "testutil.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace smtest {

sm::RunEnded expectended(const std::function<void()>& body) {
    try {
        body();
    } catch (const sm::RunEnded& e) {
        return e;
    }
    ADD_FAILURE() << "expected the run to end";
    return {};
}

ScratchDir::ScratchDir() {
    char tmpl[] = "/tmp/sm-unit-XXXXXX";
    if (!mkdtemp(tmpl)) throw std::runtime_error("mkdtemp failed");
    dir_ = tmpl;
    previous_ = std::filesystem::current_path();
    std::filesystem::current_path(dir_);
}

ScratchDir::~ScratchDir() {
    std::filesystem::current_path(previous_);
    std::error_code ec;
    std::filesystem::remove_all(dir_, ec);
}

void ScratchDir::write(const std::string& name, const std::string& text) const {
    std::ofstream out(dir_ / name, std::ios::binary);
    out << text;
}

std::string ScratchDir::read(const std::string& name) const {
    std::ifstream in(dir_ / name, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

bool ScratchDir::exists(const std::string& name) const {
    return std::filesystem::exists(dir_ / name);
}

std::string datafile(const std::string& name) { return std::string(SM_DATA_DIR) + "/" + name; }

}  // namespace smtest
