#pragma once
// A point of a reaction diagram: the axis that is listed, the axis that is
// solved, and the state variables that the two spread over.
#include <vector>

#include "console/types.h"

namespace sm {

struct Run;

struct PtxPoint {
    real P = 0, T = 0;    // kbar, K
    real xco2 = 0, xh2o = 1;
    real lna = 0, mu = 0;
};

// The run's current values.
PtxPoint currentpoint(const Run& run);
// The values of the listed axis (by othervariable), 1-based as the tables
// are: entry 0 is unused. An unknown axis stops the run as `where`.
std::vector<real> listvalues(const Run& run, const char* where);
// (list value, solved value) spread over the state variables by diagram
// type; the activity or potential axis goes into the axis end-member.
void setiptx(Run& run, PtxPoint& p, real listvalue, real solvedvalue);
// The roots of reaction n in the solved variable at the point's other
// values, with start v1 when `havestart`; dGdP and dGdT of the first root.
void solveat(Run& run, int n, const PtxPoint& p, bool havestart, real& v1, real& v2, real& dGdP,
             real& dGdT);
// inrange type of the solved variable: 1 for P, 0 for T.
int windowtype(const Run& run);

}  // namespace sm
