#pragma once
// The set-up of a mode 3 pass, before phasediagramcalcs.
namespace sm {

struct Run;

void reactionsetup(Run& run);

}  // namespace sm
