#pragma once
// Mode 3: the reactions of a diagram tabulated along the listed axis, the
// invariant points where their lines cross, and the Schreinemakers
// stability of the points and of the lines.
#include <vector>

#include "console/types.h"

namespace sm {

struct Run;

// The whole calculation after the set-up of the run.
void phasediagramcalcs(Run& run);
// Its first part: the windows and lists, the activities, Schreinemakers or
// all reactions; the search and the tables follow.
void phasediagramsetup(Run& run);
// The linear forms of the reactions at the current point.
void thermotable(Run& run);
// The roots of every reaction at every value of the listed axis.
void ptxtable(Run& run);
// Which of nlist columns a table shows: all up to 20, else a stride that
// keeps at most 21, the last always shown. 1-based.
std::vector<bool> shownlistcolumns(int nlist);
// Invariant points of the registered intersections, with their bundles of
// reactions, then the stability of the other reactions.
void intersections(Run& run);
// Makes the right side of reaction n the side stable on the high side of
// the point (higher T, or higher P in sections solved for P).
void turnreaction(Run& run, int n, real P, real T, real xco2, real xh2o, real lna, real mu);

}  // namespace sm
