#include "runfiles.h"

#include "prompts.h"
#include "runended.h"

namespace sm {

void promptdatafile(Io& io, std::string& name, std::string_view prefix, sstring& suffix,
                    std::string_view what, TextFile& file) {
    if (suffix.empty()) {
        const std::string text = what.empty()
                                     ? std::string("suffix to name for datafile")
                                     : "suffix to name for " + std::string(what) + " datafile";
        promptstring(io, text, suffix);
    }
    if (suffix.empty()) bomb("promptdatafile", "expecting a suffix for data filename", 0);
    name = std::string(prefix) + suffix + ".txt";
    if (!file.open(name)) {
        putstr(io, 1, "cannot locate file \"" + name + "\"", 1, chall);
        bomb("promptdatafile", "datafile needed", 0);
    }
}

void opennew(Io& io, std::string& name, std::string_view prefix, std::string_view suffix,
             int channel) {
    name = std::string(prefix) + cut22(suffix);
    openchannel(io, channel, name);
}

namespace {

struct RunFile {
    const char* tail;
    int channel;
    const char* message;  // before the quoted name
    bool lineend;
};

// The output files of modes 1, 2 and 3, in the order they are created.
constexpr RunFile runfiletable[] = {
    {"-o.txt", 2, "summary output in the file, ", true},
    {"-sk.txt", 6, "other (eg sketch) output in the file, ", true},
    {"-it.txt", 5, "a-x info in the file, ", true},
    {"-ic.txt", 4, "details of calc results in the file, ", true},
    {".csv", 7, "info in csv format in the files, ", false},
    {"-2.csv", 8, " and ", true},
    {".svg", 10, "graphics info in the files, ", false},
};

// Two run files with one name would write over each other.
void checknames(const sstring& suffix) {
    if (suffix == "log")
        bomb("startout", "the scriptfile suffix can't be \"log\": sm-log.txt is the log file", 0);
    std::string names[std::size(runfiletable)];
    for (size_t i = 0; i < std::size(runfiletable); ++i) {
        names[i] = cut22(suffix + runfiletable[i].tail);
        for (size_t j = 0; j < i; ++j)
            if (names[i] == names[j])
                bomb("startout", "the scriptfile suffix is too long: output files \"sm-" +
                                     names[i] + "\" would clash",
                     0);
    }
}

}  // namespace

void startout(Io& io, Prefs& prefs, RunFiles& files, bool regression, const DsPrefs& ds) {
    if (regression) {
        sstring c = ds.smdssuffix;
        promptdatafile(io, files.scriptname, "ds-scr", c, "script info", files.scriptfile);
        std::string name;
        opennew(io, name, "ds-o", c + ".txt", 2);
        opennew(io, name, "ds-ic", c + ".txt", 4);
        putstr(io, 0,
               "intermediate/auxiliary calc results are in the file, \"" + name + "\"", 1,
               chscreenlog);
        opennew(io, name, "ds-", c + ".csv", 7);
        putstr(io, 0, "dataset in csv format in the file, \"" + name + "\"", 1, chscreenlog);
        files.runsuffix = prefs.scriptsuffix;
        promptdatafile(io, files.scriptname, "sm-", files.runsuffix, "script info",
                       files.scriptfile);
        putstr(io, 1, "running CALIB from within " + io.progname, 1, chall);
        putstr(io, 0, "at " + io.timestamp, 1, chall);
        return;
    }
    putstr(io, 1, io.progname + "  running at " + io.timestamp, 1, choutlog);
    files.runsuffix = prefs.scriptsuffix;
    promptdatafile(io, files.scriptname, "sm-", files.runsuffix, "script info", files.scriptfile);
    checknames(files.runsuffix);
    for (const RunFile& rf : runfiletable) {
        std::string name;
        opennew(io, name, "sm-", files.runsuffix + rf.tail, rf.channel);
        putstr(io, 0, std::string(rf.message) + "\"" + name + "\"", rf.lineend ? 1 : 0,
               chscreenlog);
    }
    putstr(io, 2, "these may not all be populated, depending on the calcs;", 1, chscreenlog);
    putstr(io, 0, "stratamath should delete empty files at the end of each run", 1, chscreenlog);
}

}  // namespace sm
