#pragma once
// Reactions among phases whose compositions are real numbers, as in a
// solid solution at a calculated point: the same elimination as the integer
// reactions, on reals, and a text with coefficients to one decimal.
#include <string>
#include <vector>

#include "console/types.h"

namespace sm {

struct Run;

using RealMatrix = std::vector<std::vector<real>>;  // [1..nrows][1..ncols]

// Coefficients of the columns 1..ncols, the last column's phase at -1.
void realreaction(Run& run, RealMatrix matrix, int nrows, int ncols, std::vector<real>& coefficients);
// "a + 2.5 b = c"; "@@@@" when nothing is left to write.
std::string realreactiontext(const std::vector<real>& coefficients, const std::vector<sstring>& names,
                             int n);

}  // namespace sm
