#pragma once
// The prefs file: which dataset and scriptfile a run uses, the mode, and the
// page settings.
#include "io.h"
#include "types.h"

namespace sm {

// The programs that share the prefs layer, known by the first word of their
// name: each has its own prefs and log file.
enum class ProgramKind { calculation, sketch, other };

struct FileSet {
    const char* prefs;
    const char* log;
};
ProgramKind programkind(std::string_view progname);
FileSet fileset(ProgramKind kind);

struct Prefs {
    int prefscalcmode = -1;
    sstring dssuffix;
    sstring scriptsuffix;
    // Counts shared with the scriptfile reader.
    int problems = 0;
    int missing = 0;
};

// Settings of the second prefs file, ds-prefs.txt, read by the regression.
struct DsPrefs {
    sstring smdssuffix, xpsuffix, emsuffix, axsuffix;
    int infolevel = 1;
    int printomit = 0;  // flags: 0 yes, 1 no, 2 ask
    int useqr = 0;
    int mark456 = 1;
    int userfac = 0;
    int tighten = 1;
};

// The control word of a line: "yes"/"on" 0, "no"/"none" 1, "ask" 2; a value
// in its place means yes. `position` is the index of the last word used.
void cbool(const WordList& words, int count, int& flag, int& position);

// Reads the prefs file of the program; the calculation program stops when
// neither its prefs file nor ds-prefs.txt can be opened. `checkmandatory`
// false skips the mandatory-key questions (the drawing program).
void readprefs(Io& io, Prefs& prefs, ProgramKind kind, bool checkmandatory = true);

void readdsprefs(Io& io, DsPrefs& ds);

}  // namespace sm
