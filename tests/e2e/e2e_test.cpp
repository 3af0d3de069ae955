// End-to-end cases: the real stratamath executable runs in a fresh temporary
// folder on real files with a scripted console; the screen text and every
// file left in the folder are compared byte for byte with the case's
// expected/ folder. See tests/e2e/README.md.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

std::string readfile(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

void writefile(const fs::path& p, const std::string& text) {
    std::ofstream out(p, std::ios::binary);
    out << text;
}

std::vector<std::string> lines(const fs::path& p) {
    std::vector<std::string> out;
    if (!fs::exists(p)) return out;
    std::istringstream in(readfile(p));
    std::string l;
    while (std::getline(in, l))
        if (!l.empty() && l[0] != '#') out.push_back(l);
    return out;
}

// What changes from run to run: the time stamp and the elapsed time.
std::string normalise(const std::string& text) {
    static const std::regex stamp(
        "[0-9]{1,2}\\.[0-9]{2} on (Sun|Mon|Tue|Wed|Thu|Fri|Sat) [0-9]{1,2} "
        "(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec),[0-9]{4}");
    static const std::regex elapsed("elapsed = [0-9]+ (m?secs)");
    std::string s = std::regex_replace(text, stamp, "<time stamp>");
    return std::regex_replace(s, elapsed, "elapsed = <n> $1");
}

void copyinputs(const fs::path& from, const fs::path& to, std::set<std::string>& inputs) {
    if (!fs::exists(from)) return;
    for (const auto& e : fs::directory_iterator(from)) {
        const std::string name = e.path().filename().string();
        if (name == "data.txt" || name == "answers.txt" || name == "README.md") continue;
        fs::copy_file(e.path(), to / name, fs::copy_options::overwrite_existing);
        inputs.insert(name);
    }
    for (const auto& name : lines(from / "data.txt")) {
        fs::copy_file(fs::path(SM_DATA_DIR) / name, to / name, fs::copy_options::overwrite_existing);
        inputs.insert(name);
    }
}

std::vector<std::string> casenames() {
    std::vector<std::string> names;
    for (const auto& e : fs::directory_iterator(SM_CASES_DIR))
        if (e.is_directory()) names.push_back(e.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

class EndToEnd : public ::testing::TestWithParam<std::string> {};

TEST_P(EndToEnd, OutputMatchesGolden) {
    const fs::path casedir = fs::path(SM_CASES_DIR) / GetParam();
    char tmpl[] = "/tmp/sm-e2e-XXXXXX";
    ASSERT_NE(mkdtemp(tmpl), nullptr);
    const fs::path work(tmpl);

    // Inputs: an example folder named in example.txt, then the case's files/.
    std::set<std::string> inputs;
    fs::path answers = casedir / "stdin.txt";
    for (const auto& ex : lines(casedir / "example.txt")) {
        const fs::path exdir = fs::path(SM_EXAMPLES_DIR) / ex;
        copyinputs(exdir, work, inputs);
        if (!fs::exists(answers) && fs::exists(exdir / "answers.txt")) answers = exdir / "answers.txt";
    }
    copyinputs(casedir / "files", work, inputs);
    const std::string stdinfile = fs::exists(answers) ? answers.string() : std::string("/dev/null");

    const std::string command = "cd '" + work.string() + "' && timeout 120 '" SM_EXE "' < '" +
                                stdinfile + "' > screen.txt 2> stderr.txt";
    const int status = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(status));
    int wantexit = 0;
    if (fs::exists(casedir / "exitcode")) wantexit = std::stoi(readfile(casedir / "exitcode"));
    EXPECT_EQ(WEXITSTATUS(status), wantexit) << "stderr: " << readfile(work / "stderr.txt");

    // Everything the run left, inputs aside.
    std::set<std::string> produced;
    for (const auto& e : fs::directory_iterator(work)) {
        const std::string name = e.path().filename().string();
        if (name == "stderr.txt" && readfile(e.path()).empty()) continue;
        if (!inputs.count(name)) produced.insert(name);
    }
    const fs::path expected = casedir / "expected";
    if (std::getenv("SM_UPDATE_GOLDEN")) {
        fs::remove_all(expected);
        fs::create_directories(expected);
        for (const auto& name : produced) writefile(expected / name, normalise(readfile(work / name)));
    }
    std::set<std::string> wanted;
    if (fs::exists(expected))
        for (const auto& e : fs::directory_iterator(expected)) wanted.insert(e.path().filename().string());
    EXPECT_EQ(produced, wanted) << "files left in " << work;
    for (const auto& name : wanted) {
        if (!produced.count(name)) continue;
        EXPECT_EQ(normalise(readfile(work / name)), readfile(expected / name))
            << "file " << name << " differs (run folder " << work << ")";
    }
    if (!HasFailure()) fs::remove_all(work);
}

INSTANTIATE_TEST_SUITE_P(Cases, EndToEnd, ::testing::ValuesIn(casenames()),
                         [](const ::testing::TestParamInfo<std::string>& info) {
                             std::string n = info.param;
                             for (char& c : n)
                                 if (!isalnum(static_cast<unsigned char>(c))) c = '_';
                             return n;
                         });

}  // namespace
