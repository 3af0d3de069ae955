#pragma once
// Helpers of the a-x tests: a run over an in-memory console, and a-x files
// written from text.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

#include "ax/ax_reader.h"
#include "ax/setupphases.h"
#include "console/console.h"
#include "console/runended.h"
#include "run.h"

namespace sm::axtest {

// A file of its own for each text, removed with the object.
class TempFile {
public:
    explicit TempFile(const std::string& text) {
        static int counter = 0;
        path_ = std::filesystem::temp_directory_path() /
                ("sm-axtest-" + std::to_string(getpid()) + "-" + std::to_string(++counter) + ".txt");
        std::ofstream(path_, std::ios::binary) << text;
    }
    ~TempFile() { std::filesystem::remove(path_); }
    std::string path() const { return path_.string(); }

private:
    std::filesystem::path path_;
};

struct AxRun {
    MemoryConsole con;
    sm::Run run{con};
    PhaseChoice choice;
    bool strict = false;

    // Reads `text` as an a-x file and prepares the phases for `choice`.
    void load(const std::string& text) {
        TempFile f(text);
        TextFile file;
        ASSERT_TRUE(file.open(f.path()));
        readaxfile(run, file, choice, strict);
        preparephases(run, choice);
    }
    // The same where no fatal stop is expected: one fails the test.
    void read(const std::string& text) {
        try {
            load(text);
        } catch (const RunEnded& e) {
            ADD_FAILURE() << "run bombed in " << e.where << " : " << e.message << "\n" << con.output;
            throw;
        }
    }
    // The fatal stop that reading `text` ends in; fails the test if none.
    RunEnded fails(const std::string& text) {
        try {
            load(text);
        } catch (const RunEnded& e) {
            return e;
        }
        ADD_FAILURE() << "no fatal stop for:\n" << text;
        return {};
    }
    AxPhase& ax(int k) { return run.phases.prec1[k]; }
    PurePhase& pure(int k) { return run.phases.prec0[k]; }
};

// Replaces the first `from` in `text` by `to`; the test fails when absent.
inline std::string edit(std::string text, const std::string& from, const std::string& to) {
    const size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << "no \"" << from << "\" to replace";
    if (at != std::string::npos) text.replace(at, from.size(), to);
    return text;
}

// A damaged text and the fatal stop it must end in.
struct Damaged {
    const char* name;
    std::string text;
    const char* where;
    const char* message;
};

// Each damaged text, read in a fresh run, ends in its own fatal stop.
template <size_t N>
void expectfatal(const Damaged (&cases)[N]) {
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        AxRun a;
        const RunEnded e = a.fails(c.text);
        EXPECT_EQ(e.where, c.where);
        EXPECT_EQ(e.message, c.message);
    }
}

// A small file: a binary garnet, a ternary mica with sizes and makes, and
// two pure phases.
inline const std::string smallfile = R"(% a small a-x file
g  2  1  0
  x(g)  0.85  -
  p(py)   1   1 1 1 -1 x(g)
  p(alm)  1   1 0 1 1 x(g)
  sf
  W(py,alm)  2.5  0  0
  2
  xMgX  1  1 1 1 -1 x(g)
  xFeX  1  1 0 1 1 x(g)
  py   1  1  xMgX  3
      check  0
  alm  1  1  xFeX  3
      check  1

mu  3  1  0
  x(mu)  0.4  -
  y(mu)  0.85  -
  p(mu)    1   1 0 1 1 y(mu)
  p(cel)   1   2 1 1 -1 y(mu) 1 1 -1 x(mu)
  p(fcel)  1   2 1 1 -1 y(mu) 0 1 1 x(mu)
  asf
  W(mu,cel)    0  0  0.2
  W(mu,fcel)   0  0  0.2
  W(cel,fcel)  0  0  0
  a(mu)    0.63  0  0
  a(cel)   0.63  0  0
  a(fcel)  0.63  0  0
  5
  xAlM2A  1  1 0 1 1 y(mu)
  xMgM2A  1  2 1 1 -1 y(mu) 1 1 -1 x(mu)
  xFeM2A  1  2 1 1 -1 y(mu) 0 1 1 x(mu)
  xSiT1   1  1 1 1 -1/2 y(mu)
  xAlT1   1  1 0 1 1/2 y(mu)
  mu    4  3  xAlM2A 1  xSiT1 1  xAlT1 1
      check  0  1
  cel   1  2  xMgM2A 1  xSiT1 2
      check  0  0
  fcel  1  2  xFeM2A 1  xSiT1 2
      check  1  0
      make  2  cel 1/2  ann 1/2
      delG(make)  5  0  0

q
ky
)";

}  // namespace sm::axtest
