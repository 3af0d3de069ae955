#pragma once
// The progress line of a reaction search: one mark per assemblage tried,
// on screen and log, wrapped at the page width.
#include <string_view>

namespace sm {

struct Run;

void progressmark(Run& run, std::string_view mark);
// Text after the last mark, and the line end.
void progressendline(Run& run, std::string_view tail);
// Ends a line of marks, if one is open.
void progressflush(Run& run);

}  // namespace sm
