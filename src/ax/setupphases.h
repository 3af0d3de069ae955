#pragma once
// The a-x set-up of every calculation mode: the file named by the script is
// read into the phase records, then the chosen phases are prepared (copies
// of samecoding phases, starting guesses from the script, contraction,
// limits of the variables, checks of the coding, fluid phases).
#include "ax/phase_choice.h"

namespace sm {

struct Run;

void setupphases(Run& run, const PhaseChoice& choice);
// The steps after the read, for records already in run.phases.
void preparephases(Run& run, const PhaseChoice& choice);

}  // namespace sm
