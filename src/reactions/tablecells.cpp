#include "reactions/tablecells.h"

#include "console/format.h"
#include "console/scan.h"
#include "run.h"
#include "script/windows.h"

namespace sm {

namespace {

// The marks every kind of cell shares; empty when the value is a number
// inside the window.
bool marked(real v, const Window& win, std::string& cell) {
    if (v < -1e20L) cell = "";
    else if (v >= 1e20L) cell = "*";
    else if (v < win.lo) cell = "-";
    else if (v > win.hi) cell = "+";
    else return false;
    return true;
}

std::string needed(real v) { return real2str(v, decimalsneeded(v), true); }

}  // namespace

std::string Pcell(const Run& run, real P) {
    std::string cell;
    return marked(P, run.script.win.calcP, cell) ? cell : Pfield(run, P);
}

std::string Tcell(const Run& run, real T) {
    std::string cell;
    return marked(T, run.script.win.calcT, cell) ? cell : Tfield(run, T);
}

std::string xcell(const Run& run, real x) {
    std::string cell;
    return marked(x, run.script.win.xco2window, cell) ? cell : needed(x);
}

std::string solvedcell(const Run& run, real v) {
    return run.script.win.calcvariable == axisP ? Pcell(run, v) : Tcell(run, v);
}

std::string listcell(const Run& run, real v) {
    switch (run.script.win.othervariable) {
    case axisP: return Pcell(run, v);
    case axisT: return Tcell(run, v);
    case axisx:
    case axisa: return needed(v);
    default: return real2str(v, 1, true);
    }
}

}  // namespace sm
