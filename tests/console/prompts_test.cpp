// The console dialogue through an in-memory console: what is shown, what the
// log keeps, and how replies are read and repaired.
#include <gtest/gtest.h>

#include "console/prompts.h"
#include "testutil.h"

using sm::real;

namespace {

struct Dialogue {
    explicit Dialogue(const std::string& replies) : con(replies), io(con) {}
    sm::MemoryConsole con;
    sm::Io io;
};

TEST(Prompts, RealRepairLoopUntilANumberComes) {
    Dialogue d("abc\n\n2.5e1 7\n");
    real v = 0;
    sm::promptreal(d.io, "P(kbar)", v);
    EXPECT_EQ(v, 25.0L);
    EXPECT_EQ(d.con.output, "P(kbar) : abc not a real: replace with :   : ");
}

TEST(Prompts, IntegerRepairTexts) {
    Dialogue d("1.5\n40000\n12\n");
    int v = 0;
    sm::promptinteger(d.io, "code", v);
    EXPECT_EQ(v, 12);
    EXPECT_EQ(d.con.output,
              "code : 1.5 not an integer: replace with : 40000 too large: replace with : ");
}

TEST(Prompts, KillEndsTheRun) {
    Dialogue d("kill\n");
    real v;
    const auto e = smtest::expectended([&] { sm::promptreal(d.io, "T", v); });
    EXPECT_EQ(e.kind, sm::RunEnded::killed);
    Dialogue q("  kill  \n");
    EXPECT_EQ(smtest::expectended([&] { sm::query(q.io, "go on"); }).kind, sm::RunEnded::killed);
}

TEST(Prompts, TwoWordsWithKillAreJustWords) {
    Dialogue d("kill now\n");
    sm::WordList w;
    sm::promptstrings(d.io, "phases", w);
    EXPECT_EQ(w.count, 2);
    EXPECT_EQ(w[1], "kill");
}

TEST(Prompts, BackspaceRemovesTheCharacterBefore) {
    Dialogue d("12\b3\n");
    int v = 0;
    sm::promptinteger(d.io, "n", v);
    EXPECT_EQ(v, 13);
}

TEST(Prompts, QueryAnswers) {
    const std::pair<const char*, bool> cases[] = {
        {"", true}, {"y", true}, {"Y", true}, {"yes", true}, {"1", true}, {"  yes  ", true},
        {"no", false}, {"n", false}, {"ok", false}, {"Kill", false}, {"yes please", false},
    };
    for (const auto& [reply, yes] : cases) {
        Dialogue d(std::string(reply) + "\n");
        EXPECT_EQ(sm::query(d.io, "more"), yes) << '"' << reply << '"';
    }
}

TEST(Prompts, QueryHelpIsAskedOnce) {
    Dialogue d("?\nno\n");
    EXPECT_FALSE(sm::query(d.io, "more"));
    EXPECT_EQ(d.con.output, "more ? \nsorry, you are on your own...\n\nmore ? ");
}

TEST(Prompts, EndOfInputIsFatalExceptWhereAnAnswerStandsIn) {
    Dialogue d("");
    const auto e = smtest::expectended([&] { sm::query(d.io, "more"); });
    EXPECT_EQ(e.where, "read in prstrings");
    EXPECT_EQ(e.message, "problems reading");
    Dialogue d2("");
    EXPECT_FALSE(sm::query(d2.io, "more", false));
    Dialogue d3("");
    real v;
    EXPECT_EQ(smtest::expectended([&] { sm::promptreal(d3.io, "T", v); }).message,
              "problems reading");
}

TEST(Prompts, ControlFlagAsksOnlyWhenTwo) {
    Dialogue d("ok\nY\n");
    int state = 0;
    sm::promptcontrol(d.io, "use it", state);
    EXPECT_EQ(state, 0);
    EXPECT_EQ(d.con.output, "");
    state = 2;
    sm::promptcontrol(d.io, "use it", state);
    EXPECT_EQ(state, 0);  // "ok" is yes here
    state = 2;
    sm::promptcontrol(d.io, "use it", state);
    EXPECT_EQ(state, 1);  // "Y" is not
}

TEST(Prompts, RealsAskUntilEnoughThenRepairEach) {
    Dialogue d("1 2\nx 4\n9\n");
    std::vector<real> v;
    int count = 4;
    sm::promptreals(d.io, "PT window", v, count);
    ASSERT_EQ(v.size(), 4u);
    EXPECT_EQ(v[2], 9.0L);
    EXPECT_EQ(v[3], 4.0L);
    Dialogue any("5 6 7\n");
    count = 0;
    sm::promptreals(any.io, "values", v, count);
    EXPECT_EQ(count, 3);
}

TEST(Prompts, FormatTextReflowsAt78) {
    Dialogue d("");
    std::string longline;
    for (int i = 0; i < 20; ++i) longline += "word" + std::to_string(i) + " ";
    sm::formattext(d.io, {longline, "end"});
    EXPECT_EQ(d.con.output,
              "\nword0 word1 word2 word3 word4 word5 word6 word7 word8 word9 word10 word11 \n"
              "word12 word13 word14 word15 word16 word17 word18 word19 end \n");
}

TEST(Screen, LongTextsAreCutOnScreenOnly) {
    Dialogue d("");
    const std::string text(100, 'a');
    sm::putstr(d.io, 0, text, 1, sm::chscreen);
    EXPECT_EQ(d.con.output, std::string(78, 'a') + "#\n");
    d.con.output.clear();
    d.io.dontwrap = false;
    sm::putstr(d.io, 0, text, 1, sm::chscreen);
    EXPECT_EQ(d.con.output, text + "\n");
}

TEST(Files, EmptyFilesDeletedAtCloseExceptOutputAndLog) {
    smtest::ScratchDir dir;
    Dialogue d("");
    sm::putstr(d.io, 0, "before", 1, sm::chic);  // nothing open yet: nothing happens
    sm::openchannel(d.io, 2, "out.txt");
    sm::openchannel(d.io, 3, "log.txt");
    sm::openchannel(d.io, 4, "ic.txt");
    sm::openchannel(d.io, 7, "a.csv");
    sm::openchannel(d.io, 8, "b.csv");
    EXPECT_FALSE(d.io.filewritten[4]);
    sm::putstr(d.io, 1, "row", 1, sm::chcsv | sm::chall);
    sm::putstr(d.io, 0, "", 0, sm::chcsv2);  // an empty text still counts
    sm::closefiles(d.io);
    EXPECT_EQ(d.io.activechannels, 0u);
    EXPECT_EQ(dir.read("out.txt"), "\nrow\n");
    EXPECT_EQ(dir.read("log.txt"), "\nrow\n");
    EXPECT_FALSE(dir.exists("ic.txt"));
    EXPECT_EQ(dir.read("a.csv"), "\nrow\n");
    EXPECT_TRUE(dir.exists("b.csv"));
}

}  // namespace
