#pragma once
// The mode dispatch: what is set up before the loop and what one pass runs.
namespace sm {

struct Run;

void commonsetup(Run& run);       // work arrays, counters, limits
void regressionsetup(Run& run);   // mode 9: ds-prefs.txt
void runpass(Run& run);           // one pass of the mode's driver
bool elapsedwanted(const Run& run);

}  // namespace sm
