#include "entry/modes.h"

#include "console/prompts.h"
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

// The diagram types of the reactions mode by menu code 1..7.
struct DiagramType {
    int mode;
    const char* name;
};
constexpr DiagramType diagramtypes[8] = {
    {dmPT, ""},
    {dmPT, "pressure-temperature"},
    {dmTx, "temperature-x(CO2)"},
    {dmPx, "pressure-x(CO2)"},
    {dmTlna, "temperature-log a"},
    {dmPlna, "pressure-log a"},
    {dmTmu, "temperature-\xB5"},
    {dmPmu, "pressure-\xB5"},
};

// The diagram type of a reactions pass: from calctype, or the menu.
int diagramtype(Run& run) {
    const WindowScripts& s = run.script.windows;
    if (s.calctypeflag == 0) {
        const int code = s.calctype;
        putstr(run.io, 1,
               std::string("type of diagram calculation: ") + diagramtypes[code].name +
                   " (from script)",
               1, chscreenlog);
        return diagramtypes[code].mode;
    }
    putstr(run.io, 1, "type of diagram calculation: ", 1, chscreenlog);
    for (int code = 1; code <= 7; ++code)
        putstr(run.io, 0, "       " + std::to_string(code) + " : " + diagramtypes[code].name, 1,
               chscreenlog);
    int code = 1;
    promptinteger(run.io, "code", code);
    return code >= 1 && code <= 7 ? diagramtypes[code].mode : dmPT;
}

// The end-member or component that an activity or potential axis follows.
void axisname(Run& run, int mode) {
    Windows& w = run.script.win;
    if (mode == dmPlna || mode == dmTlna) {
        for (const FixedActivity& f : run.script.activities.fixed)
            if (f.lna >= 9.9L) {
                w.axisname = f.name;
                return;
            }
        sstring name;
        promptstring(run.io, "end-member for activity axis", name);
        if (name.empty()) promptstring(run.io, "end-member for activity axis", name);
        if (name.empty()) bomb("reactionsetup", "no end-member for the activity axis", 0);
        w.axisname = name;
    } else if (mode == dmPmu || mode == dmTmu) {
        sstring name;
        promptstring(run.io, "component for \xB5 axis", name);
        if (name.empty()) bomb("reactionsetup", "no component for the \xB5 axis", 0);
        w.axisname = name;
    }
}

// A pass of the reactions mode as far as the windows: the calculation of
// the reactions follows them.
void reactionspass(Run& run) {
    readthermo(run, 1);
    readcontrol(run);
    Windows& w = run.script.win;
    w.variance = 1;
    const int mode = diagramtype(run);
    const bool first = mode != w.lastdiagrammode;
    w.diagrammode = mode;
    w.lastdiagrammode = mode;
    if (first) axisname(run, mode);
    diagramwindowsetup(run, first, FluidPhases{});
}

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
        reactionspass(run);
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
