#include "prefs.h"

#include "prompts.h"
#include "runended.h"
#include "scan.h"
#include "textfile.h"

namespace sm {

ProgramKind programkind(std::string_view progname) {
    const std::string first(progname.substr(0, progname.find(' ')));
    if (first == "STRATAMATH") return ProgramKind::calculation;
    if (first == "sketch") return ProgramKind::sketch;
    return ProgramKind::other;
}

FileSet fileset(ProgramKind kind) {
    switch (kind) {
    case ProgramKind::calculation: return {"sm-prefs.txt", "sm-log.txt"};
    case ProgramKind::sketch: return {"sk-prefs.txt", "sk-log.txt"};
    default: return {"prefs.txt", "log.txt"};
    }
}

void cbool(const WordList& words, int count, int& flag, int& position) {
    flag = 0;
    position = 1;
    if (count < 2) return;
    const std::string& w = words[2];
    if (w == "yes" || w == "on") {
        position = 2;
    } else if (w == "ask") {
        flag = 2;
        position = 2;
    } else if (w == "no" || w == "none") {
        flag = 1;
        position = 2;
    }
}

namespace {

// The value word after the control word, or "" when the line has none.
std::string valueafter(const WordList& words, int position) {
    return position < words.count ? words[position + 1] : std::string();
}

// Reads lines until the end of the file or a "*" line, handing each line with
// words to `act`.
template <typename Act>
void readkeylines(TextFile& f, Act act) {
    std::string line;
    WordList words;
    while (f.getline(line)) {
        string2strings(line, words);
        cutcomment(words);
        if (words.count == 0) continue;
        if (words[1][0] == '*') break;
        act(words);
    }
}

void readprefskeys(Io& io, Prefs& prefs, TextFile& f) {
    readkeylines(f, [&](const WordList& words) {
        int flag, position;
        cbool(words, words.count, flag, position);
        const std::string& key = words[1];
        if (key == "dontwrap") {
            io.dontwrap = flag == 0;
        } else if (key == "monitorheap") {
            io.monitorheap = flag == 0;
        } else if (key == "dataset" || key == "dsfile") {
            if (flag == 0) prefs.dssuffix = valueafter(words, position);
        } else if (key == "scriptfile" || key == "datafile") {
            if (flag == 0) prefs.scriptsuffix = valueafter(words, position);
        } else if (key == "setpagewidth") {
            int v;
            std::string m;
            if (words.count >= 2 && string2int(words[2], v, m))
                io.pagewidth = v < 80 ? 80 : v > 250 ? 250 : v;
        } else if (key == "calcmode") {
            int v;
            std::string m;
            if (words.count >= 2 && string2int(words[2], v, m)) prefs.prefscalcmode = v;
        } else {
            putstr(io, 1, key + " unrecognised", 1, chscreenlog);
            ++prefs.problems;
        }
    });
}

void nofile(Io& io, ProgramKind kind) {
    switch (kind) {
    case ProgramKind::calculation:
        putstr(io, 1, "\xA5\xA5 no prefs file \"sm-prefs.txt\"", 2, chscreenlog);
        putstr(io, 0, "on the Mac, if you double-clicked the sm351 icon then that won't work;", 1,
               chscreenlog);
        putstr(io, 0, "try reading the \"getting started\" info on the STRATAMATH website.", 1,
               chscreenlog);
        bomb("readprefs", "can't open \"sm-prefs.txt\"", 0);
    case ProgramKind::sketch:
        putstr(io, 1, "no prefs file \"sk-prefs.txt\"", 1, chscreenlog);
        putstr(io, 0, "on the Mac, if you double-clicked the sketch icon then that won't work;", 1,
               chscreenlog);
        putstr(io, 0, "try reading the \"getting started\" info on the STRATAMATH website.", 1,
               chscreenlog);
        putstr(io, 0, "if you double-clicked the icon, enter 0 now", 1, chscreenlog);
        query(io, "continue");
        return;
    case ProgramKind::other:
        putstr(io, 1, "no prefs file \"prefs.txt\"", 1, chscreenlog);
        return;
    }
}

}  // namespace

void readprefs(Io& io, Prefs& prefs, ProgramKind kind, bool checkmandatory) {
    prefs = Prefs{};
    TextFile f;
    if (!f.open(fileset(kind).prefs)) {
        if (kind == ProgramKind::calculation) {
            TextFile ds;
            if (ds.open("ds-prefs.txt")) return;  // a regression folder: defaults stand
        }
        nofile(io, kind);
        return;
    }
    readprefskeys(io, prefs, f);
    f.close();

    if (prefs.problems > 0) {
        putstr(io, 1, "there are script problems in the prefs file listed immediately above:", 1,
               chscreenlog);
        if (query(io, "exit, and delete unrecognised scripts from the prefs file")) killrun();
    }
    if (!checkmandatory) return;

    prefs.missing = 0;
    if (prefs.dssuffix.empty() && prefs.prefscalcmode != 9) {
        ++prefs.missing;
        formattext(io, {std::to_string(prefs.missing) +
                            ") new in sm350, the \"dsfile\" script is mandatory in the prefsfile, "
                            "followed by the suffix ",
                        "to the name of the dsfile (i.e. the dataset). So, if the dsfile is called "
                        "\"sm-ds71\", the script to use is \"dsfile ds71\""});
    }
    if (prefs.scriptsuffix.empty()) {
        ++prefs.missing;
        formattext(io, {std::to_string(prefs.missing) +
                            ") new in sm350, the \"scriptfile\" script is mandatory in the "
                            "prefsfile, followed by the suffix ",
                        "to the name of the script file. So, if the scriptfile is called "
                        "\"sm-AFM\", the script to use is \"scriptfile AFM\"",
                        "(If you were using one folder/directory to run several different "
                        "scriptfiles via prompts, it is better to run ",
                        "them in separate folders/directories)"});
    }
    if (prefs.missing == 0 && prefs.problems > 0) {
        putstr(io, 1, "there are script problems listed immediately above:", 1, chscreenlog);
        if (query(io, "exit, and correct the scriptfile")) killrun();
    }
    if (prefs.missing > 0) {
        if (prefs.problems > 0)
            formattext(io, {std::string("in addition to the absence of the indicated mandatory ") +
                            (prefs.missing >= 2 ? "scripts" : "script") +
                            ", there are other script problems listed above:"});
        bomb("reading scripts", "add mandatory scripts to the prefsfile", 0);
    }
}

void readdsprefs(Io& io, DsPrefs& ds) {
    (void)io;
    ds = DsPrefs{};
    TextFile f;
    if (!f.open("ds-prefs.txt")) bomb("readprefs", "can't open \"ds-prefs.txt\"", 0);
    readkeylines(f, [&](const WordList& words) {
        int flag, position;
        cbool(words, words.count, flag, position);
        const std::string& key = words[1];
        const std::string value = valueafter(words, position);
        if (key == "smdssuffix") ds.smdssuffix = value;
        else if (key == "xpsuffix") ds.xpsuffix = value;
        else if (key == "emsuffix") ds.emsuffix = value;
        else if (key == "axsuffix") ds.axsuffix = value;
        else if (key == "infolevel") {
            int v;
            std::string m;
            if (string2int(value, v, m)) ds.infolevel = v > 3 ? 3 : v;
        } else if (key == "moreinputlines" || key == "printomit") ds.printomit = flag;
        else if (key == "useqr") ds.useqr = flag;
        else if (key == "mark456") ds.mark456 = flag;
        else if (key == "userfac") ds.userfac = flag;
        else if (key == "tighten") ds.tighten = flag;
        // other keys are skipped without a word
    });
}

}  // namespace sm
