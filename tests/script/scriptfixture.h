#pragma once
// A fresh run over an in-memory console for the script tests: script lines
// can be acted on one by one, or a whole scriptfile read from a scratch
// folder.
#include <gtest/gtest.h>

#include <string>

#include "console/console.h"
#include "console/scan.h"
#include "run.h"
#include "script/readcontrol.h"
#include "testutil.h"

namespace smtest {

struct ScriptRun {
    // calcmode sets the mode the words are read for; the mandatory scripts
    // are only checked when `mandatory` is true.
    explicit ScriptRun(int calcmode = 1, bool mandatory = false) : run(con) {
        run.calcmode = calcmode;
        run.runmode = calcmode;
        run.prefs.prefscalcmode = mandatory ? calcmode : 9;
        run.io.activechannels = sm::chscreen;
        run.io.dontwrap = false;  // whole lines, as the log has them
        sm::resetscripts(run);
    }
    // Acts on one line of a script as the reader would.
    void act(const std::string& line) {
        sm::WordList words;
        sm::string2strings(line, words);
        sm::cutcomment(words);
        sm::actonline(run, words);
    }
    // Writes `script` as sm-t.txt, opens it as the run's scriptfile and reads
    // it; `replies` are typed at the console.
    void read(const std::string& script, const std::string& replies = "") {
        dir.write("sm-t.txt", script);
        con.feed(replies);
        run.files.runsuffix = "t";
        run.files.scriptfile.open("sm-t.txt");
        sm::readcontrol(run);
    }
    // The run's end when it is expected to stop.
    sm::RunEnded readfails(const std::string& script, const std::string& replies = "") {
        return expectended([&] { read(script, replies); });
    }
    sm::RunEnded actfails(const std::string& line) {
        return expectended([&] { act(line); });
    }
    bool said(const std::string& text) const { return con.output.find(text) != std::string::npos; }
    int problems() const { return run.prefs.problems; }
    sm::ScriptStore& s() { return run.script; }

    ScratchDir dir;
    sm::MemoryConsole con;
    sm::Run run;
};

}  // namespace smtest
