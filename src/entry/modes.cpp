#include "entry/modes.h"

#include "console/runended.h"
#include "run.h"

namespace sm {

void commonsetup(Run& run) {
    run.gcount = 0;
    run.store.initstore();
}

void regressionsetup(Run& run) { readdsprefs(run.io, run.dsprefs); }

void runpass(Run& run) {
    switch (run.runmode) {
    default:
        bomb("setup", "this calculation mode is not available in this build yet", 0);
    }
}

bool elapsedwanted(const Run&) { return false; }

}  // namespace sm
