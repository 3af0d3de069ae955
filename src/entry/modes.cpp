#include "entry/modes.h"

#include "console/prompts.h"
#include "reactions/ptxtables.h"
#include "reactions/reactionsetup.h"
#include "console/runended.h"
#include "run.h"
#include "script/readcontrol.h"
#include "script/windows.h"
#include "thermo/dataset.h"
#include "thermo/made_endmembers.h"
#include "ax/makename.h"
#include "ax/phase_choice.h"
#include "ax/phase_summary.h"
#include "ax/setupphases.h"

namespace sm {

void commonsetup(Run& run) {
    run.gcount = 0;
    run.store.initstore();
    run.equilibrium.reset();
}

void regressionsetup(Run& run) { readdsprefs(run.io, run.dsprefs); }

namespace {

// The reading order of a phase-diagram or rock pass: dataset names, the
// script, the a-x file and the chosen phases, the distinct end-members, their
// chemistry and data, then the made end-members. The first pass of a phase
// diagram scriptfile writes the a-x information of its phases.
void readinputs(Run& run) {
    readthermo(run, 1);
    readcontrol(run);
    setupphases(run, phasechoice(run.script));
    makename(run, withomit(run));
    readthermo(run, 2);
    readthermo(run, 3);
    makeemtd(run);
    if (run.runmode == rmphasediagram && run.runcount == 1) writephasesummary(run);
}

}  // namespace

void runpass(Run& run) {
    switch (run.runmode) {
    case rmphasediagram:
        run.script.win.diagrammode = dmPT;
        readinputs(run);
        dofigPT(run);
        break;
    case rmrock:
        readinputs(run);
        dofigPT(run);
        break;
    case rmreactions:
        reactionsetup(run);
        phasediagramcalcs(run);
        break;
    default:
        bomb("setup", "this calculation mode is not available in this build yet", 0);
    }
}

bool elapsedwanted(const Run& run) {
    return run.script.batches.batchflag == 0 || run.script.bulk.dogmin >= 0 ||
           run.script.control.debuglevel == 4;
}

}  // namespace sm
