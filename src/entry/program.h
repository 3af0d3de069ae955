#pragma once
#include "console/console.h"

namespace sm {

struct Run;

// The whole program over a console: start-up, the mode's passes, closing.
// Returns the process exit status.
int runprogram(Console& console);

// Pieces of the start-up, for tests.
void initconsole(Run& run);
int getcalcmode(Run& run);

}  // namespace sm
