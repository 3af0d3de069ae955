#pragma once
// Everything one process pass owns. A test builds a fresh Run over an
// in-memory console; nothing of a run lives outside this struct.
#include <array>
#include <limits>
#include <string>

#include "console/io.h"
#include "console/prefs.h"
#include "console/random.h"
#include "console/runfiles.h"
#include "console/types.h"
#include "reactions/reactionstore.h"
#include "script/store.h"
#include "solver/solverstate.h"
#include "thermo/dataset.h"
#include "thermo/store.h"
#include "ax/activities.h"
#include "ax/phases.h"
#include "equilibrium/equilibrium.h"
#include "thermo/made_endmembers.h"

namespace sm {

// The internal modes: utilities, phase diagram, rock (average PT), reactions,
// regression.
enum RunMode : int { rmutilities = 0, rmphasediagram = 1, rmrock = 2, rmreactions = 3, rmregression = 4 };

struct Run {
    explicit Run(Console& console) : io(console) {}
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    Io io;
    Prefs prefs;
    DsPrefs dsprefs;
    RunFiles files;

    int calcmode = 0;
    int runmode = rmutilities;
    int runcount = 0;
    std::string moreprompt;
    // The largest power of 2 with 1 + eps > 1 in 80-bit arithmetic (2^-63);
    // start-up finds it again by halving.
    real machineeps = std::numeric_limits<real>::epsilon();
    std::array<std::string, 401> ordinals{};  // "1st", "2nd", "3rd", "4th" ... "400th"
    long long gcount = 0;                      // end-member Gibbs-energy evaluations
    Random random;

    // Subsystem state, each owned by its subsystem's header.
    EndMemberStore store;  // thermo
    ScriptStore script;    // what the scriptfile says, and the windows it sets
    SolverState solver;    // the unknowns, limits and work arrays of the Newton solver
    DatasetFile dataset;   // thermo: the dataset file and its reading state
    MadeStore made;        // thermo: td rows of make terms
    PhaseStore phases;     // ax: prec1, prec0 and the a-x file header
    ActivityState activities;  // ax: calculation layout, activities and their derivatives
    ReactionStore reactions;  // reactions: the store of reactions and what the search learns
    EquilibriumState equilibrium;  // equilibrium: reduced system, layout and equations of a calculation
};

}  // namespace sm
