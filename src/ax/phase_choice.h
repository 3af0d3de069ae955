#pragma once
// What the scriptfile says about the a-x file and the phases of a run. The
// script reader fills it; setupphases reads it and nothing else of the
// script.
#include <vector>

#include "console/types.h"

namespace sm {

// One starting guess of a composition variable (script word xyzguess).
struct GuessLine {
    sstring name;         // e.g. "x(g)"
    real value = 0;
    real sd = 0;
    bool rangeset = false;  // a range was written on the line
    real lo = 0, hi = 1;
};

struct PhaseUncertainty {
    sstring name;
    real value = -1;
};

struct PhaseColour {
    sstring name;
    int r = 0, g = 0, b = 0;
};

struct ScriptStore;

struct PhaseChoice {
    sstring axfile;                 // suffix of sm-<axfile>.txt; asked when empty
    std::vector<sstring> with;      // chosen phases, whole names as written
    bool someof = false;
    std::vector<sstring> inexcess;  // in-excess phases, checked against `with`
    std::vector<sstring> tozero;
    std::vector<std::vector<sstring>> samecoding;  // each set: base phase, then new names
    bool samecodingoff = false;
    std::vector<GuessLine> xyzguess;
    sstring buffername;             // script word buffer: phase and offset in log units
    real bufferoffset = 0;
    bool defaultsd = false;         // the run uses the default uncertainty parameters
    std::vector<PhaseUncertainty> uncertainty;
    std::vector<PhaseColour> rgb;
};

// What the settled scriptfile says, in these terms.
PhaseChoice phasechoice(const ScriptStore& script);

}  // namespace sm
