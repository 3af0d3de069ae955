#pragma once
// Raw material for the drawing file: each reaction line of the table and
// each invariant point, as records a user gathers into a drawing.
namespace sm {

struct Run;

void reactiondrawing(Run& run);

}  // namespace sm
