#pragma once
// The script store of a run: the info record of the line being read, the
// settings of every script word by subject, and the windows and lists that
// the settings turn into.
#include "script/scriptinfo.h"
#include "script/settings.h"
#include "script/windows.h"

namespace sm {

struct ScriptStore {
    ScriptInfo info;
    ControlScripts control;
    PhaseScripts phases;
    WindowScripts windows;
    ActivityScripts activities;
    EquilibriumScripts equilibrium;
    BulkScripts bulk;
    RockScripts rock;
    BatchScripts batches;
    Windows win;  // kept across passes
};

}  // namespace sm
