#pragma once
// The a-x information of the run's phases, written to the -it file.

namespace sm {

struct Run;
struct AxPhase;

// Every a-x phase of the run, on the a-x information channel.
void writephasesummary(Run& run);
// One phase, on the channels of `mask`.
void writephase(Run& run, const AxPhase& ph, unsigned mask);

}  // namespace sm
