#include "script/readcontrol.h"

#include "console/prefs.h"
#include "console/prompts.h"
#include "console/runended.h"
#include "console/scan.h"
#include "run.h"
#include "script/vocabulary.h"

namespace sm {

namespace {

constexpr int maxjoinedlines = 49;

// Appends the words of one physical line to a joined line.
void join(WordList& joined, const WordList& words, int n) {
    for (int i = 1; i <= n; ++i) {
        if (joined.count == maxwordsonline)
            bomb("readcontrol", "too many strings in a multiline", 0);
        joined[++joined.count] = words[i];
    }
}

void clear(WordList& words) {
    for (int i = 1; i <= words.count; ++i) words[i].clear();
    words.count = 0;
}

unsigned modebit(int calcmode) {
    return calcmode >= 0 && calcmode < 32 ? 1u << calcmode : 0u;
}

}  // namespace

void resetscripts(Run& run) {
    ScriptStore& s = run.script;
    s.info = ScriptInfo{};
    s.control = ControlScripts{};
    s.phases = PhaseScripts{};
    s.windows = WindowScripts{};
    s.activities = ActivityScripts{};
    s.equilibrium = EquilibriumScripts{};
    s.bulk = BulkScripts{};
    s.rock = RockScripts{};
    s.batches = BatchScripts{};
    s.win.Pmin = defaultPmin;
    run.io.autoexit = false;
}

void actonline(Run& run, const WordList& words) {
    if (words.count == 0) return;
    const std::string keyword = words[1];
    const WordEntry* entry = findword(keyword);
    if (!entry) {
        ++run.prefs.problems;
        putstr(run.io, 1, "the script, \"" + keyword + "\", is unrecognised (or discontinued)", 1,
               chall);
        return;
    }
    // a word of another mode is known, and left alone
    if (!(entry->modes & modebit(run.calcmode))) return;
    int flag, position;
    cbool(words, words.count, flag, position);
    parseinfo(run.script.info, keyword, words, words.count, position, entry->typed);
    const ScriptLine line{words, words.count, keyword, flag, position};
    entry->act(run, line);
}

void getscriptfile(Run& run) {
    Io& io = run.io;
    RunFiles& files = run.files;
    if (run.prefs.scriptsuffix.empty()) {
        WordList words;
        promptstrings(io, "use same script file?", words);
        const bool same =
            words.count == 0 || words[1] == "y" || words[1] == "1" || words[1] == "=";
        if (!same) files.runsuffix.clear();
    }
    if (files.runsuffix.empty()) {
        promptstring(io, "suffix to name for script info datafile", files.runsuffix);
        if (files.runsuffix.empty()) bomb("getscriptfile", "no script file specified", 0);
    }
    promptdatafile(io, files.scriptname, "sm-", files.runsuffix, "script info",
                   files.scriptfile);
}

void checkmandatory(Run& run) {
    Prefs& prefs = run.prefs;
    ScriptStore& s = run.script;
    prefs.missing = 0;
    auto n = [&] { return std::to_string(prefs.missing) + ") new in sm350, the "; };
    if (prefs.prefscalcmode != 9) {
        if (s.phases.axfile.empty()) {
            ++prefs.missing;
            formattext(run.io, {n() + "\"axfile\" script is mandatory, followed by the suffix to the name ",
                                "of the axfile. So, if the axfile is called \"sm-blahblah\", the "
                                "script to use is \"axfile blahblah\""});
        }
        if (s.phases.with.empty()) {
            ++prefs.missing;
            formattext(run.io,
                       {n() + "\"with\" script is mandatory, followed by the list of phases for "
                              "this run (or a set of runs). ",
                        "If the list is for a set of runs, the current run being a subset of this "
                        "list, then use the script, \"with someof\" ",
                        "followed by the list of phases. sm350 will prompt you for which phases "
                        "in the list to use in this run"});
        }
        if (s.windows.diagramPT != 0) {
            ++prefs.missing;
            formattext(run.io,
                       {n() + "\"diagramPT\" script is mandatory, followed by 4 values separated "
                              "by spaces, ",
                        "Plow, Phigh, Tlow, Thigh, in kbar and \xA1" "C. In the case of a PT grid "
                        "or PT pseudosection the values are simply the bounds ",
                        "diagram. In the case of a Tx diagram, the P values need to be a range "
                        "around the P of the diagram, given that",
                        "of the effective invariants are calculated in terms of a line in PTx. "
                        "Ditto for Px diagrams"});
        }
        if (s.bulk.pseudosection == notseen && prefs.prefscalcmode == 1) {
            ++prefs.missing;
            formattext(run.io,
                       {n() + "\"pseudosection\" script is mandatory, either just \"pseudo- "
                              "section\", meaning ",
                        "pseudosection calculations intended, or \"pseudosection no\", meaning "
                        "for example grid calculations (no bulk composition used)."});
        }
    }
    if (prefs.missing == 0 && prefs.problems > 0) {
        putstr(run.io, 1, "there are script problems listed immediately above:", 1, chall);
        if (query(run.io, "exit, and correct the scriptfile")) killrun();
    }
    if (prefs.missing > 0) {
        if (prefs.problems > 0)
            formattext(run.io, {std::string("in addition to the absence of the indicated "
                                            "mandatory ") +
                                (prefs.missing >= 2 ? "scripts" : "script") +
                                ", there are other script problems listed above:"});
        bomb("reading scripts", "add mandatory scripts to scriptfile", 0);
    }
}

void readcontrol(Run& run) {
    run.prefs.problems = 0;
    if (run.runcount > 1) getscriptfile(run);
    resetscripts(run);
    TextFile& file = run.files.scriptfile;
    std::string text;
    WordList words, joined;
    int joinedlines = 0;  // physical lines in the pending joined line
    while (file.getline(text)) {
        string2strings(text, words);
        cutcomment(words);
        if (words.count == 0) {
            // an empty line ends a continuation
            if (joinedlines > 0) actonline(run, joined);
            clear(joined);
            joinedlines = 0;
            continue;
        }
        if (words[1][0] == '*') break;
        const bool continues = words[words.count] == "\\";
        if (continues || joinedlines > 0) {
            if (++joinedlines > maxjoinedlines) bomb("readcontrol", "multiline gone berko", 0);
            join(joined, words, continues ? words.count - 1 : words.count);
            if (continues) continue;
            actonline(run, joined);
            clear(joined);
            joinedlines = 0;
            continue;
        }
        actonline(run, words);
    }
    // a joined line still pending at a "*" line or the end of the file
    if (joinedlines > 0) actonline(run, joined);
    checkmandatory(run);
    file.close();
    reconcilescripts(run);
    if (run.script.control.debuglevel >= 3) dumpscripts(run);
}

}  // namespace sm
