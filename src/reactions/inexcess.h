#pragma once
// In-excess end-members leave the search: each takes up one component of
// the composition matrix, and the reactions among the others are balanced
// by them afterwards.
namespace sm {

struct Run;

// The last `ninexcess` columns of c are in excess. Each is cleared from
// every row but one pivot row; the pivot rows go to the bottom, with their
// names and scales, and div holds their pivots.
void eliminateinexcess(Run& run, int ninexcess);

}  // namespace sm
