#pragma once
// Reading an a-x file into the phase records of the run.
#include "ax/phase_choice.h"
#include "console/textfile.h"

namespace sm {

struct Run;

// Reads the open file whole into run.phases (prec1, prec0, header, buffers)
// and the counts npss, nmin, nph of run.store; every fault ends the run.
// `strict` asks that names of proportions, interactions and variables
// agree with the end-members and variables they stand for.
void readaxfile(Run& run, TextFile& file, const PhaseChoice& choice, bool strict = false);

}  // namespace sm
