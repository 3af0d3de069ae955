#pragma once
// Console dialogue: every question the program asks goes through these.
#include <vector>

#include "io.h"
#include "types.h"

namespace sm {

bool iskill(std::string_view text);

// Reads one console line into words; the end of input is a fatal stop.
void prstrings(Io& io, WordList& words);
void promptstrings(Io& io, std::string_view text, WordList& words);
void promptstring(Io& io, std::string_view text, sstring& word);
void promptreal(Io& io, std::string_view text, real& value);
void promptinteger(Io& io, std::string_view text, int& value);
// `count` 0 takes as many numbers as are given; otherwise asks until `count`
// have come.
void promptreals(Io& io, std::string_view text, std::vector<real>& values, int& count);

// A yes/no question; an empty reply is yes.
bool query(Io& io, std::string_view text);
// The same where the end of input answers `atend` instead of stopping the run.
bool query(Io& io, std::string_view text, bool atend);
// Settles a script flag (0 yes, 1 no, 2 ask) by asking when it is 2.
void promptcontrol(Io& io, std::string_view text, int& state);

// Prints lines as one reflowed paragraph on screen and log.
void formattext(Io& io, const std::vector<std::string>& lines);

}  // namespace sm
