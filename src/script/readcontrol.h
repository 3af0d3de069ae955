#pragma once
// Reading the scriptfile: defaults, the lines, the mandatory scripts and the
// settlement at the end of reading.
#include "console/types.h"

namespace sm {

struct Run;

// The whole reading of one calculation. On a later pass (runcount above 1)
// the scriptfile is opened again first.
void readcontrol(Run& run);
// Re-opens the scriptfile at its top for a later pass.
void getscriptfile(Run& run);
// Every script setting back to its default.
void resetscripts(Run& run);
// Acts on one script line (already joined and cut at "%"): for tests and
// for readcontrol.
void actonline(Run& run, const WordList& words);
// The checks of mandatory scripts and the question about problems.
void checkmandatory(Run& run);
// The dependencies among the settings, after the file is closed.
void reconcilescripts(Run& run);
// What the program understood of the script, as tables in the log.
void dumpscripts(Run& run);

}  // namespace sm
