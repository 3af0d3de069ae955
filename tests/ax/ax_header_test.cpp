// The a-x file as a stream of words: header, comments, the end mark and the
// end of the file.
#include <algorithm>

#include "ax_testing.h"

namespace sm::axtest {
namespace {

TEST(AxHeader, KeptLinesStandBetweenMarks) {
    AxRun a;
    a.read("header\n first line\n%second line\n\n" + std::string(130, 'w') + "\nheader ignored words\n" + smallfile);
    const auto& h = a.run.phases.header;
    ASSERT_EQ(a.run.phases.nheader, 6);
    EXPECT_EQ(h[1], "#");
    EXPECT_EQ(h[2], "first line");
    EXPECT_EQ(h[3], "second line");
    EXPECT_EQ(h[4], "");
    EXPECT_EQ(h[5], std::string(120, 'w'));
    EXPECT_EQ(h[6], "#");
    EXPECT_EQ(a.run.store.npss, 2);
    EXPECT_EQ(a.run.store.nmin, 2);
}

TEST(AxHeader, VerbEndsTheHeaderToo) {
    AxRun a;
    a.read("header  words on the mark line are dropped\n text\nverbatim\n" + smallfile);
    EXPECT_EQ(a.run.phases.nheader, 3);
    EXPECT_EQ(a.run.phases.header[2], "text");
}

TEST(AxHeader, CommentsAndTheEndMark) {
    AxRun a;
    // "%" starts a comment only at the start of a word; "*" ends the file
    // only as the first word of a line.
    std::string text = edit(smallfile, "q\n", "q  % the quartz\nabc%def * more\n* everything below is not read\nnot read 9 9\n");
    a.read(text);
    ASSERT_EQ(a.run.store.nmin, 4);
    EXPECT_EQ(a.pure(1).pname, "q");
    EXPECT_EQ(a.pure(2).pname, "abc%def");
    EXPECT_EQ(a.pure(3).pname, "*");
    EXPECT_EQ(a.pure(4).pname, "more");
}

TEST(AxHeader, NamesAreShownAsTheyAreRead) {
    AxRun a;
    a.read(smallfile);
    EXPECT_EQ(a.con.output, "reading ax: g mu q ky\n");
}

TEST(AxHeader, LongListsOfNamesAreWrapped) {
    std::string text;
    for (int k = 1; k <= 30; ++k) text += "phase" + std::to_string(k) + "\n";
    AxRun a;
    a.read(text);
    std::string expected = "reading ax: phase1 phase2 phase3 phase4 phase5 phase6 phase7 phase8 phase9\n";
    EXPECT_EQ(a.con.output.substr(0, expected.size()), expected);
    for (size_t at = 0, next; (next = a.con.output.find('\n', at)) != std::string::npos; at = next + 1)
        EXPECT_LE(next - at, 78u);
}

TEST(AxHeader, DamagedFiles) {
    const Damaged cases[] = {
        {"empty", "", "setup phases", "not enough in file"},
        {"only comments", "% nothing\n\n   % here\n* end\ng 2 1 0\n", "setup phases", "not enough in file"},
        {"header not closed", "header\n one\n two\n", "readline", "problems reading for header/verbatim"},
        {"truncated in a phase", smallfile.substr(0, smallfile.find("  W(mu,fcel)")), "reading",
         "unexpected end of input: W name in mu"},
        {"end mark in a phase", edit(smallfile, "  a(cel)", "*\n  a(cel)"), "reading",
         "unexpected end of input: size parameter name in mu"},
    };
    expectfatal(cases);
}

TEST(AxHeader, TooManyHeaderLines) {
    std::string text = "header\n";
    for (int k = 0; k < 600; ++k) text += "h\n";
    AxRun ok;
    ok.read(text + "header\n" + smallfile);
    EXPECT_EQ(ok.run.phases.nheader, 602);
    AxRun a;
    const RunEnded e = a.fails(text + "h\nheader\n" + smallfile);
    EXPECT_EQ(e.message, "too many header lines");
}

TEST(AxHeader, AFaultIsLocatedInTheFile) {
    // An end-member without its name: the count where the name should be.
    const std::string text = edit(smallfile, "  py   1  1", "  1  1");
    const int line = 1 + static_cast<int>(std::count(text.begin(), text.begin() + text.find("  1  1  xMgX"), '\n'));
    AxRun a;
    const RunEnded e = a.fails(text);
    EXPECT_EQ(e.where, "reading");
    EXPECT_EQ(e.message, "expecting a name; got: 1 - end-member 1 of g");
    EXPECT_NE(a.con.output.find("\", line " + std::to_string(line) + ", phase g\n"), std::string::npos)
        << a.con.output;
    // Without the name of its second end-member the count reads as an
    // option code after the first.
    AxRun b;
    EXPECT_EQ(b.fails(edit(smallfile, "  alm  1  1", "  1  1")).message, "wrong code in info for py");
}

}  // namespace
}  // namespace sm::axtest
