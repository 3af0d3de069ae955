// The dataset reader against the shipped files, read independently here, and
// against damaged copies of them.
#include <cmath>

#include "thermo/store.h"
#include "thermo_testing.h"

namespace sm {
namespace {

using namespace sm::testing;

std::vector<std::string> words(const std::string& line) {
    std::vector<std::string> w;
    std::istringstream in(line);
    std::string s;
    while (in >> s) w.push_back(s);
    return w;
}

void expectnear(real got, real want, const std::string& what) {
    EXPECT_NEAR(static_cast<double>(got), static_cast<double>(want),
                1e-15 * std::fabs(static_cast<double>(want)) + 1e-300)
        << what;
}

class ShippedDataset : public ::testing::TestWithParam<std::pair<const char*, int>> {};

// Every value of every entry in its field: the file's lines split here with
// the standard library, independently of the reader.
TEST_P(ShippedDataset, EveryEntryInItsFields) {
    const auto [file, ntp] = GetParam();
    TestRun t;
    readdataset(t.run, datafile(file));
    const EndMemberStore& s = t.run.store;
    ASSERT_EQ(s.ntp, ntp);
    EXPECT_EQ(s.dsmode, 6);
    EXPECT_TRUE(s.newds);
    ASSERT_EQ(s.nem, ntp);
    // Nothing but the banner between blank lines reaches the console.
    EXPECT_EQ(t.console.output, "\n\n" + t.run.dataset.label + "\n\n");
    EXPECT_EQ(t.run.dataset.label,
              std::string(file) + ": end-member values from the published literature, set " +
                  (ntp == 230 ? "a" : "b"));

    const auto lines = splitlines(readtext(datafile(file)));
    for (int i = 1; i <= ntp; ++i) {
        const size_t at = 2 + 5 * static_cast<size_t>(i - 1);
        const auto head = words(lines[at]);
        const auto l2 = words(lines[at + 1]);
        const auto l3 = words(lines[at + 2]);
        const auto l4 = words(lines[at + 3]);
        const std::string name = head[0];
        ASSERT_EQ(s.emname[i], name);
        EXPECT_EQ(s.dscomment[i], head[1].substr(0, 22));
        const TdRow& row = s.td[i];
        const int eos = std::stoi(l2[0]);
        EXPECT_EQ(row[tdeos], eos) << name;
        for (int f = 1; f <= 3; ++f) expectnear(row[f], std::stold(l2[f]), name + " " + tdfieldname(f));
        for (int f = 0; f < 4; ++f)
            expectnear(row[tdcpa + f], std::stold(l3[f]), name + " " + tdfieldname(tdcpa + f));
        expectnear(row[tdalpha], std::stold(l4[0]), name + " alpha");
        expectnear(row[tdk0], std::stold(l4[1]), name + " k0");
        expectnear(row[tdk0p], std::stold(l4[2]), name + " k0p");
        const real k0 = std::stold(l4[1]);
        expectnear(row[tdk0pp], k0 > 0 ? -std::stold(l4[2]) / k0 : 0.0L, name + " k0pp");
        size_t next = 3;
        const bool melt = name.back() == 'L';
        EXPECT_EQ(melt, eos == 7) << name;
        if (melt) {
            expectnear(row[tddkdT], std::stold(l4[next++]), name + " dkdT");
            EXPECT_EQ(row[tdtheta], 0) << name;
        } else {
            EXPECT_EQ(row[tddkdT], 0) << name;
            // theta from the entropy per atom, to the nearest kelvin
            real atoms = 0;
            for (size_t k = 4; k + 1 < head.size(); k += 2) atoms += std::stold(head[k]);
            const real theta = std::max(10.0L, std::round(10636.0L / (6.44L + 1000.0L * std::stold(l2[2]) / atoms)));
            EXPECT_EQ(row[tdtheta], theta) << name;
        }
        if (eos == 1) {
            for (int f = 0; f < 3; ++f) expectnear(row[tdTc + f], std::stold(l4[next + f]), name);
            next += 3;
        } else {
            EXPECT_EQ(row[tdTc], 0) << name;
            EXPECT_EQ(row[tdSmax], -1) << name;
            EXPECT_EQ(row[tdVmax], -1) << name;
        }
        if (eos == 2) {
            for (int f = 0; f < 6; ++f) expectnear(row[tdbwdH + f], std::stold(l4[next + f]), name);
            next += 6;
        } else {
            EXPECT_EQ(row[tdbwn], 0) << name;
            EXPECT_EQ(row[tdbwfac], 1) << name;
        }
        EXPECT_EQ(next, l4.size()) << name << ": numbers left unread on line 4";
        EXPECT_EQ(row[tdaqz], 0) << name;
        // chemistry: the pairs as read, and their sum
        const int npairs = std::stoi(head[2]);
        EXPECT_EQ(s.nsites[i], npairs) << name;
        ASSERT_EQ(s.nel[i], npairs) << name;
        for (int k = 1; k <= npairs; ++k) {
            EXPECT_EQ(s.elno[i][k], std::stoi(head[1 + 2 * k])) << name;
            expectnear(s.elcoef[i][k], std::stold(head[2 + 2 * k]), name);
        }
    }
    // The covariance: symmetric, the diagonal of the last entry last in the file.
    const auto last = words(lines[lines.size() - 3]);
    EXPECT_EQ(s.covat(ntp, ntp), static_cast<real>(std::stof(last.back())));
    for (int i = 1; i <= ntp; i += 7)
        for (int j = 1; j <= ntp; j += 5) EXPECT_EQ(s.covat(i, j), s.covat(j, i));
}

INSTANTIATE_TEST_SUITE_P(Files, ShippedDataset,
                         ::testing::Values(std::make_pair("sm-ds6a.txt", 230),
                                           std::make_pair("sm-ds6b.txt", 263)));

// A handful of end-members of each form, with the values copied from the files.
TEST(DatasetReader, HandPickedRows) {
    struct Case {
        const char* file;
        const char* name;
        int field;
        real value;
    };
    const Case cases[] = {
        {"sm-ds6a.txt", "fo", tdH, -2172.59L},      {"sm-ds6a.txt", "fo", tdS, 0.0951L},
        {"sm-ds6a.txt", "fo", tdV, 4.366L},         {"sm-ds6a.txt", "fo", tdcpc, -603.8L},
        {"sm-ds6a.txt", "fo", tdalpha, 2.85e-05L},  {"sm-ds6a.txt", "fo", tdk0pp, -3.84L / 1285},
        {"sm-ds6a.txt", "fo", tdtheta, 531},        {"sm-ds6a.txt", "fo", tdeos, 0},
        {"sm-ds6a.txt", "q", tdalpha, 0},           {"sm-ds6a.txt", "q", tdTc, 847},
        {"sm-ds6a.txt", "q", tdSmax, 0.00495L},     {"sm-ds6a.txt", "q", tdVmax, 0.1188L},
        {"sm-ds6a.txt", "q", tdeos, 1},             {"sm-ds6a.txt", "sp", tdbwdH, 8},
        {"sm-ds6a.txt", "sp", tdbwW, 1.2L},         {"sm-ds6a.txt", "sp", tdbwn, 2},
        {"sm-ds6a.txt", "sp", tdbwfac, 0.5L},       {"sm-ds6a.txt", "H2O", tdV, 0},
        {"sm-ds6a.txt", "H2O", tdk0, 0},            {"sm-ds6a.txt", "H2O", tdk0pp, 0},
        {"sm-ds6a.txt", "H2O", tdtheta, 153},       {"sm-ds6a.txt", "H2O", tdeos, 6},
        {"sm-ds6a.txt", "CH4", tdcpc, 3427.7L},     {"sm-ds6a.txt", "h2oL", tddkdT, -0.0037L},
        {"sm-ds6a.txt", "h2oL", tdtheta, 0},        {"sm-ds6a.txt", "syvL", tdk0, 56},
        {"sm-ds6a.txt", "syvL", tddkdT, -0.02L},    {"sm-ds6b.txt", "sp", tdbwdH, 13.93L},
        {"sm-ds6b.txt", "sp", tdbwW, -3.6L},        {"sm-ds6b.txt", "sp", tdbwfac, -0.5L},
        {"sm-ds6b.txt", "herc", tdbwfac, -0.5L},    {"sm-ds6b.txt", "hem", tdTc, 955},
        {"sm-ds6b.txt", "hem", tdVmax, 0},          {"sm-ds6b.txt", "ab", tdbwWv, 0.042L},
        {"sm-ds6b.txt", "qL", tddkdT, -0.035000000000000005L},
        {"sm-ds6b.txt", "foL", tdS, -0.062L},       {"sm-ds6b.txt", "foL", tdeos, 7},
    };
    std::string loaded;
    TestRun* t = nullptr;
    std::vector<std::unique_ptr<TestRun>> runs;
    for (const Case& c : cases) {
        if (loaded != c.file) {
            runs.push_back(std::make_unique<TestRun>());
            t = runs.back().get();
            readdataset(t->run, datafile(c.file));
            loaded = c.file;
        }
        const int row = rowof(t->run, c.name);
        EXPECT_NEAR(static_cast<double>(t->run.store.td[row][c.field]), static_cast<double>(c.value),
                    1e-15 * std::fabs(static_cast<double>(c.value)))
            << c.file << " " << c.name << " " << tdfieldname(c.field);
    }
}

// A few end-members out of file order: rows follow emname, other rows stay 0.
TEST(DatasetReader, WantedRowsOnly) {
    TestRun t;
    readdataset(t.run, datafile("sm-ds6a.txt"), {"q", "H2O", "fo"});
    const EndMemberStore& s = t.run.store;
    EXPECT_EQ(s.nem, 3);
    expectnear(s.td[1][tdH], -910.72L, "q");
    expectnear(s.td[2][tdH], -241.81L, "H2O");
    expectnear(s.td[3][tdH], -2172.59L, "fo");
    EXPECT_EQ(s.td[4][tdH], 0);
    EXPECT_EQ(s.emname[4], "");
    // cov by row: var(H) of q is the diagonal entry of q in the file
    EXPECT_EQ(s.covat(1, 3), s.covat(3, 1));
    EXPECT_EQ(s.covat(4, 4), 0);
    EXPECT_EQ(stopof([&] { readthermochemistry(t.run, {"q", "qz"}); }),
              "makep : stuff up : unrecognised name : qz");
}

// The same name twice in the list (as after a made end-member) feeds two rows.
TEST(DatasetReader, OneEntryFeedsSeveralRows) {
    TestRun t;
    readdataset(t.run, datafile("sm-ds6a.txt"), {"fo", "q", "fo"});
    const EndMemberStore& s = t.run.store;
    EXPECT_EQ(s.td[1], s.td[3]);
    EXPECT_EQ(s.natoms[3], 7);
    EXPECT_EQ(s.covat(1, 3), s.covat(1, 1));
    EXPECT_EQ(s.covat(3, 2), s.covat(1, 2));
}

TEST(DatasetReader, TooManyEndMembersOfTheRun) {
    TestRun t;
    setuptextread(t.run, datafile("sm-ds6a.txt"));
    std::vector<sstring> names(400, "fo");
    names.resize(401, "fo");
    EXPECT_EQ(stopof([&] { setemname(t.run.store, names); }), "makename : too many end-members");
    names.resize(400);
    EXPECT_EQ(stopof([&] { setemname(t.run.store, names); }), "");
}

// Damaged copies of sm-ds6a.txt, each read with all its names wanted.
TEST(DatasetReader, DamagedFiles) {
    smtest::ScratchDir dir;
    const auto good = splitlines(readtext(datafile("sm-ds6a.txt")));
    auto edit = [&](std::function<void(std::vector<std::string>&)> change) {
        auto lines = good;
        change(lines);
        return lines;
    };
    // fo: lines 3..6 (index 2..5), fa: index 7..10
    struct Case {
        const char* what;
        std::vector<std::string> lines;
        const char* stop;
        const char* filename = "sm-ds6a.txt";
    };
    const size_t nlines = good.size();
    const std::vector<Case> cases = {
        {"ten words needed", edit([](auto& l) { l[0] = "6  230    don't fiddle with the numbers"; }),
         "setuptextread : first line of dsfile incorrectly formed 0"},
        {"first word a number",
         edit([](auto& l) { l[0] = "six  230    don't fiddle with the numbers: you'll BREAK the dataset..."; }),
         "setuptextread : first line of dsfile incorrectly formed 1"},
        {"dsmode 5 in the newer form",
         edit([](auto& l) { l[0] = "5  230    don't fiddle with the numbers: you'll BREAK the dataset..."; }),
         "setuptextread : dsmode <> 6 or 7??"},
        {"50 is no count",
         edit([](auto& l) { l[0] = "50  230    don't fiddle with the numbers: you'll BREAK the dataset..."; }),
         "setuptextread : dsmode <> 6 or 7??"},
        {"count a number",
         edit([](auto& l) { l[0] = "6  23x    don't fiddle with the numbers: you'll BREAK the dataset..."; }),
         "setuptextread : first line of dsfile incorrectly formed 4"},
        {"don't third",
         edit([](auto& l) { l[0] = "6  230    do fiddle with the numbers: you'll BREAK the dataset..."; }),
         "setuptextread : first line of dsfile incorrectly formed 2b"},
        {"don't second",
         edit([](auto& l) { l[0] = "230    do fiddle with the numbers: you'll BREAK the dataset... ok"; }),
         "setuptextread : first line of dsfile incorrectly formed 2a"},
        {"too many",
         edit([](auto& l) { l[0] = "6  321    don't fiddle with the numbers: you'll BREAK the dataset..."; }),
         "setuptextread : too many end-members"},
        {"line 2 blank", edit([](auto& l) { l[1] = "  x"; }), "readthermo : expecting a blank line"},
        {"line 3 not blank", edit([](auto& l) { l[2] = "   "; }), "readthermo : not expecting blank line"},
        {"generation", good, "setuptextread : bad dsfile name", "sm-dsxa.txt"},
        {"cut in the entries", edit([](auto& l) { l.resize(2 + 5 * 100 + 2); }),
         "setuptextread : file ends too soon, in the entry for cel"},
        {"cut before an entry", edit([](auto& l) { l.resize(2 + 5 * 100); }),
         "setuptextread : file ends too soon: 100 of 230 end-members read"},
        {"line added in an entry", edit([](auto& l) { l.insert(l.begin() + 5, "    0 0 0"); }),
         "setuptextread : no end-member name on line 8 (entry 2)"},
        {"duplicated name", edit([](auto& l) { l[7].replace(0, 2, "fo"); }),
         "setuptextread : end-member fo appears twice in the dataset"},
        {"covariance cut short", edit([&](auto& l) { l[nlines - 3] = ""; }),
         "setuptextread : the covariance matrix ends too soon, at lcL with lcL (got: sm-ds6a.txt:)"},
        {"covariance at the end of file", edit([&](auto& l) { l.resize(nlines - 3); }),
         "setuptextread : the covariance matrix ends too soon, at lcL with lcL (got: end of file)"},
        {"bad covariance number", edit([&](auto& l) { l[nlines - 3] = "7.06x39"; }),
         "texthermoread : expecting a real; got: 7.06x39 - covariance of lcL with lcL"},
        {"no label", edit([&](auto& l) { l.resize(nlines - 1); }), "setuptextread : file ends too soon: no label"},
        {"bad number", edit([](auto& l) { l[3] = "    0  -2172.5.9  0.0951  4.366"; }),
         "texthermoread : expecting a real; got: -2172.5.9 - H of fo"},
        {"number missing", edit([](auto& l) { l[5] = "    2.85e-05  1285"; }),
         "texthermoread : expecting a real; got: fa - k0p of fo"},
        {"unknown eos", edit([](auto& l) { l[3] = "    9  -2172.59  0.0951  4.366"; }),
         "texthermoread : unknown eos 9 for fo"},
        {"eos a number", edit([](auto& l) { l[3] = "    x  -2172.59  0.0951  4.366"; }),
         "texthermoread : expecting an integer; got: x - eos of fo"},
        {"too long a formula",
         edit([](auto& l) { l[2] = "fo  Mg2SiO4  9  1 1  5 2  10 4  1 0  1 0  1 0  1 0  1 0  1 0  0"; }),
         "readthermo : more than 8 elements in the formula of fo"},
        {"element outside the table", edit([](auto& l) { l[2] = "fo  Mg2SiO4  3  1 1  27 2  10 4  0"; }),
         "readthermo : element number 27 is not one of 1 to 26, in the formula of fo"},
        {"nsite", edit([](auto& l) { l[2] = "fo  Mg2SiO4  x  1 1  5 2  10 4  0"; }),
         "getinteger : expecting an integer (1); got: x - nsite"},
        {"pairs not ended", edit([](auto& l) { l[2] = "fo  Mg2SiO4  3  1 1  5 2  10 4"; }),
         "getinteger : expecting an integer (1); got:  - ell 1"},
        {"oxno", edit([](auto& l) { l[2] = "fo  Mg2SiO4  3  1 1  5 two  10 4 0"; }),
         "reading : expecting a single (1); got: two - oxno"},
    };
    for (const Case& c : cases) {
        const std::string path = put(dir, c.filename, joinlines(c.lines));
        TestRun t;
        EXPECT_EQ(stopof([&] { readdataset(t.run, path); }), c.stop) << c.what;
    }
}

TEST(DatasetReader, MissingFile) {
    TestRun t;
    EXPECT_EQ(stopof([&] { setuptextread(t.run, "/nonexistent/sm-ds6a.txt"); }),
              "promptdatafile : datafile needed");
    EXPECT_NE(t.console.output.find("cannot locate file \"/nonexistent/sm-ds6a.txt\""),
              std::string::npos);
}

TEST(DatasetReader, NameFromThePrefs) {
    smtest::ScratchDir dir;
    // "6a" and "ds6a" both name sm-ds6a.txt in the working folder.
    put(dir, "sm-ds6a.txt", readtext(datafile("sm-ds6a.txt")));
    for (const char* suffix : {"6a", "ds6a"}) {
        TestRun t;
        t.run.prefs.dssuffix = suffix;
        EXPECT_EQ(stopof([&] { readthermo(t.run, 1); }), "") << suffix;
        EXPECT_EQ(t.run.dataset.filename, "sm-ds6a.txt");
        EXPECT_EQ(t.run.store.ntp, 230);
    }
    TestRun asked;
    asked.console.feed("6a");
    EXPECT_EQ(stopof([&] { readthermo(asked.run, 1); }), "");
    EXPECT_NE(asked.console.output.find("suffix to name for thermo dataset datafile"), std::string::npos);
}

}  // namespace
}  // namespace sm
