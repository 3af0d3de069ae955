#pragma once
// The run's phases reduced to those kept, and the distinct end-members they
// need, in the order of td: emname and nem.
#include <vector>

namespace sm {

struct Run;

// omit[1..nph], a-x phases first, then pure phases; true drops the phase.
void makename(Run& run, const std::vector<bool>& omit);
// The omit flags of the phases that the script's with list leaves out.
std::vector<bool> withomit(const Run& run);

}  // namespace sm
