#pragma once
// The run's file set: the scriptfile read by every pass, and the output files
// created once per process.
#include "io.h"
#include "prefs.h"
#include "textfile.h"

namespace sm {

struct RunFiles {
    TextFile scriptfile;
    std::string scriptname;  // kept for re-opening on later passes
    sstring runsuffix;       // S of sm-<S>-o.txt ...; what the user typed if asked
};

// Opens prefix+suffix+".txt" for reading, asking for the suffix when empty.
void promptdatafile(Io& io, std::string& name, std::string_view prefix, sstring& suffix,
                    std::string_view what, TextFile& file);
// Creates prefix+suffix (the suffix cut to 22 characters) on `channel`.
void opennew(Io& io, std::string& name, std::string_view prefix, std::string_view suffix,
             int channel);

// Opens the scriptfile and creates the output files of a run: `regression`
// chooses the mode 9 set, whose names come from ds-prefs.txt.
void startout(Io& io, Prefs& prefs, RunFiles& files, bool regression, const DsPrefs& ds);

}  // namespace sm
