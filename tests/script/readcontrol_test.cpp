// The scriptfile grammar and the reading as a whole: continuation lines,
// comments, the "*" end, unknown words, the problem count and the mandatory
// scripts, bad bytes and long lines.
#include "scriptfixture.h"

namespace {

using smtest::ScriptRun;

TEST(ScriptGrammar, ContinuationJoinsLinesAndCommentsComeFirst) {
    const char* scripts[] = {
        "calcP 5 \\\n10 1\n",
        "calcP 5 \\ % the rest of the P range follows\n10 1\n",
        "calcP 5 \\\n10 \\\n1\n",
    };
    for (const char* text : scripts) {
        ScriptRun t;
        t.read(text);
        const sm::WindowScripts& w = t.s().windows;
        EXPECT_EQ(w.calcPflag, 0) << text;
        EXPECT_EQ(w.calcP.lo, 5);
        EXPECT_EQ(w.calcP.hi, 10);
        EXPECT_EQ(w.Pinterval, 1);
        EXPECT_EQ(t.problems(), 0);
    }
}

TEST(ScriptGrammar, AnEmptyLineOrAStarEndsAContinuation) {
    ScriptRun t;
    t.read("calcT 500 \\\n\ncalcP 4 8\n");
    EXPECT_EQ(t.s().windows.calcTflag, 0);  // one T, the line ended at the blank
    EXPECT_EQ(t.s().windows.calcT.hi, 773.15L);
    EXPECT_EQ(t.s().windows.calcPflag, 0);

    ScriptRun u;
    u.read("calcP 4 \\\n* stop here\ncalcT 500 600\n");
    EXPECT_EQ(u.s().windows.calcPflag, 0);  // the pending line is acted on first
    EXPECT_EQ(u.s().windows.calcTflag, 1);  // below the star: never read
}

TEST(ScriptGrammar, LimitsOfJoinedLines) {
    std::string fortynine = "with";
    for (int i = 0; i < 48; ++i) fortynine += " p" + std::to_string(i) + " \\\n";
    fortynine += "q\n";
    ScriptRun t;
    t.read(fortynine);
    EXPECT_EQ(t.s().phases.with.size(), 49u);

    ScriptRun u;
    const sm::RunEnded e = u.readfails("with q \\\n" + fortynine);
    EXPECT_EQ(e.where, "readcontrol");
    EXPECT_EQ(e.message, "multiline gone berko");

    std::string wide = "with";
    for (int i = 0; i < 250; ++i) wide += " a" + std::to_string(i);
    ScriptRun v;
    const sm::RunEnded f = v.readfails(wide + " \\\n" + wide + "\n");
    EXPECT_EQ(f.where, "readcontrol");
    EXPECT_EQ(f.message, "too many strings in a multiline");
}

TEST(ScriptGrammar, StarEndsTheReadingAndHidesMandatoryScripts) {
    ScriptRun t(3, true);
    const sm::RunEnded e = t.readfails(
        "axfile axkfm\nwith g q\n*\ndiagramPT 4 12 500 700\n");
    EXPECT_EQ(e.where, "reading scripts");
    EXPECT_EQ(e.message, "add mandatory scripts to scriptfile");
    EXPECT_TRUE(t.said("1) new in sm350, the \"diagramPT\" script is mandatory"));
    EXPECT_EQ(t.run.prefs.missing, 1);
}

TEST(ScriptGrammar, UnknownWordsAreCountedAndTheUserMayGoOn) {
    ScriptRun t;
    t.read("Pseudosection\nwibble 3\ndebuglevel 2\n", "no\n");
    EXPECT_EQ(t.problems(), 2);
    EXPECT_TRUE(t.said("\nthe script, \"Pseudosection\", is unrecognised (or discontinued)\n"));
    EXPECT_TRUE(t.said("\nthe script, \"wibble\", is unrecognised (or discontinued)\n"));
    EXPECT_TRUE(t.said("there are script problems listed immediately above:\n"
                       "exit, and correct the scriptfile ? "));
    EXPECT_EQ(t.s().control.debuglevel, 2);  // the rest of the file still counts

    ScriptRun u;
    const sm::RunEnded e = u.readfails("wibble\n", "y\n");
    EXPECT_EQ(e.kind, sm::RunEnded::killed);
}

TEST(ScriptGrammar, WordsOfAnotherModeAreKnownAndLeftAlone) {
    ScriptRun t(2);
    t.read("calcx(CO2) 0.1 0.5 0.1\nfigure nonsense\nseta q 0.9\n");
    EXPECT_EQ(t.problems(), 0);
    EXPECT_TRUE(t.s().windows.xco2list.empty());
    ASSERT_EQ(t.s().activities.fixed.size(), 1u);

    ScriptRun u(1);
    const sm::RunEnded e = u.actfails("seta q 0.9");
    EXPECT_EQ(e.where, "read scripts");
    EXPECT_EQ(e.message, "for mode 1, use 'lna' script");
}

TEST(ScriptGrammar, StrictScriptingActsOnTheLinesBelowIt) {
    ScriptRun t;
    t.read("setvar 2\ndebuglevel 9\nstrictscripting\n", "no\n");
    EXPECT_EQ(t.problems(), 1);
    EXPECT_EQ(t.s().control.debuglevel, 1);  // a faulty level leaves the default

    ScriptRun u;
    const sm::RunEnded e = u.readfails("strictscripting\ndebuglevel 9\n");
    EXPECT_EQ(e.where, "reading script for debuglevel");
    EXPECT_EQ(e.message, "integer inappropriate");

    ScriptRun v;
    v.read("strictscripting no\ndebuglevel 9\n", "no\n");
    EXPECT_EQ(v.problems(), 1);
}

TEST(ScriptGrammar, BadBytesAndLongLinesNeverCrash) {
    std::string garbage("\x01\x02\xff\xfe\x7f\x80 \x00\x00 zz\r\n", 14);
    garbage += std::string(200000, 'x') + "\n";
    garbage += "debuglevel " + std::string(5000, ' ') + "2\n";
    garbage += "\r\n";
    garbage += std::string("with g\x00q\n", 9);
    ScriptRun t;
    t.read(garbage, "no\n");
    EXPECT_EQ(t.problems(), 2);
    EXPECT_EQ(t.s().control.debuglevel, 2);
    ASSERT_EQ(t.s().phases.with.size(), 1u);
    EXPECT_EQ(t.s().phases.with[0].size(), 3u);

    std::string crowded = "with";
    for (int i = 0; i < 400; ++i) crowded += " p";
    ScriptRun u;
    const sm::RunEnded e = u.readfails(crowded + "\n");
    EXPECT_EQ(e.where, "string2strings");
}

TEST(ScriptGrammar, MissingStarAndEmptyFileReadToTheEnd) {
    ScriptRun t;
    t.read("");
    EXPECT_EQ(t.problems(), 0);
    EXPECT_FALSE(t.run.files.scriptfile.isopen());
    ScriptRun u;
    u.read("autoexit");  // no line end, no star
    EXPECT_TRUE(u.run.io.autoexit);
}

TEST(Mandatory, EachMissingScriptIsNumberedThenTheRunStops) {
    ScriptRun t(1, true);
    const sm::RunEnded e = t.readfails("wibble\n");
    EXPECT_EQ(e.message, "add mandatory scripts to scriptfile");
    EXPECT_EQ(t.run.prefs.missing, 4);
    for (const char* text :
         {"1) new in sm350, the \"axfile\" script is mandatory, followed by the suffix to \n",
          "2) new in sm350, the \"with\" script is mandatory,",
          "3) new in sm350, the \"diagramPT\" script is mandatory,",
          "4) new in sm350, the \"pseudosection\" script is mandatory, either just",
          "in addition to the absence of the indicated mandatory scripts, there are other \n"})
        EXPECT_TRUE(t.said(text)) << text << "\n" << t.con.output;
    EXPECT_FALSE(t.said("exit, and correct the scriptfile"));
}

TEST(Mandatory, AShortWindowIsAProblemAndThenMissing) {
    ScriptRun t(3, true);
    t.readfails("axfile axkfm\nwith g q\ndiagramPT 5 20\n");
    EXPECT_TRUE(t.said("\nfor diagramPT, 4 numbers needed to define a PT rectangle\n"));
    EXPECT_EQ(t.problems(), 1);
    EXPECT_TRUE(t.said("in addition to the absence of the indicated mandatory script, there"));
}

TEST(Mandatory, PseudosectionIsMandatoryOnlyWhenMode1IsInThePrefs) {
    const std::string base = "axfile axkfm\nwith g q\ndiagramPT 4 12 500 700\n";
    ScriptRun t(1, true);
    t.read(base + "pseudosection no\n");
    EXPECT_EQ(t.run.prefs.missing, 0);
    ScriptRun u(3, true);
    u.read(base);
    EXPECT_EQ(u.run.prefs.missing, 0);
}

TEST(LaterPasses, TheScriptfileIsOpenedAgain) {
    ScriptRun t;
    t.run.prefs.scriptsuffix = "t";
    t.read("debuglevel 2\n");
    t.dir.write("sm-t.txt", "debuglevel 3\n");
    t.run.runcount = 2;
    sm::readcontrol(t.run);
    EXPECT_EQ(t.s().control.debuglevel, 3);
    EXPECT_EQ(t.con.reads, 0);  // a prefs scriptfile is not asked about

    // without a prefs scriptfile the user may keep the file or name another
    ScriptRun u;
    u.read("debuglevel 2\n");
    u.dir.write("sm-other.txt", "debuglevel 4\n");
    u.run.runcount = 2;
    u.con.feed("n\nother\n");
    sm::readcontrol(u.run);
    EXPECT_TRUE(u.said("use same script file? : "));
    EXPECT_TRUE(u.said("suffix to name for script info datafile : "));
    EXPECT_EQ(u.s().control.debuglevel, 4);

    ScriptRun v;
    v.read("debuglevel 2\n");
    v.run.runcount = 2;
    v.con.feed("n\n\n");
    const sm::RunEnded e = smtest::expectended([&] { sm::readcontrol(v.run); });
    EXPECT_EQ(e.where, "getscriptfile");
    EXPECT_EQ(e.message, "no script file specified");
}

TEST(LaterPasses, DefaultsComeBackEveryReading) {
    ScriptRun t;
    t.read("autoexit\nstrictscripting\nnegP\ndebuglevel 0\n");
    EXPECT_TRUE(t.run.io.autoexit);
    t.dir.write("sm-t.txt", "\n");
    t.run.files.scriptfile.open("sm-t.txt");
    sm::readcontrol(t.run);
    EXPECT_FALSE(t.run.io.autoexit);
    EXPECT_FALSE(t.s().control.strictscripting);
    EXPECT_EQ(t.s().win.Pmin, 0.0009L);
    EXPECT_EQ(t.s().control.debuglevel, 1);
}

TEST(Dump, TheSettledScriptReachesTheLogAtDebuglevel3) {
    ScriptRun t;
    t.run.io.activechannels = sm::chscreen | sm::chlog;
    t.dir.write("log.txt", "");
    sm::openchannel(t.run.io, 3, "log.txt");
    t.read("debuglevel 3\naxfile axkfm\nwith g bi q\ncalcT 500 700 20\n");
    sm::closefiles(t.run.io);
    const std::string log = t.dir.read("log.txt");
    EXPECT_NE(log.find("  axfile            : axkfm\n"), std::string::npos) << log;
    EXPECT_NE(log.find("  with              : g bi q\n"), std::string::npos);
    EXPECT_NE(log.find("  calcT             : yes: 500.00 to 700.00, interval 20\n"),
              std::string::npos);
    EXPECT_FALSE(t.said("script settings"));  // the log alone
}

}  // namespace
