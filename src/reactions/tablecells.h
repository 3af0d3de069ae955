#pragma once
// Cells of the reaction tables: a value inside its window with the
// decimals the axis wants, or a mark for a root below ("-") or above ("+")
// the window, a failed search ("*") and no root (blank).
#include <string>

#include "console/types.h"

namespace sm {

struct Run;

std::string Pcell(const Run& run, real P);
std::string Tcell(const Run& run, real T);  // kelvin in, Celsius out
std::string xcell(const Run& run, real x);
// A cell of the solved variable.
std::string solvedcell(const Run& run, real v);
// A value of the listed axis in the header row of a table: inside its window
// by construction, so never marked.
std::string listcell(const Run& run, real v);

}  // namespace sm
