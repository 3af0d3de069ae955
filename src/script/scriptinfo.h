#pragma once
// The parsed rest of the current script line: the words after the keyword
// and its control word, each with its token class and numeric value.
#include <array>
#include <string_view>

#include "console/types.h"

namespace sm {

constexpr int maxinfo = 40;

struct ScriptInfo {
    int ninfo = 0;
    std::array<int, maxinfo + 1> infoclass{};
    std::array<real, maxinfo + 1> inforeal{};
    std::array<int, maxinfo + 1> infoint{};
    std::array<sstring, maxinfo + 1> infostr{};
    bool isnumber(int i) const {
        return i >= 1 && i <= ninfo && infoclass[i] >= tokint && infoclass[i] <= tokrational;
    }
};

// Builds the record from words position+1 .. count of a script line. With
// `typed` more than 40 words are fatal ("too much info"); list scripts read
// the word list themselves and only the first 40 words are classified.
void parseinfo(ScriptInfo& info, std::string_view keyword, const WordList& words, int count,
               int position, bool typed);
// Drops the first k items.
void shiftinfo(ScriptInfo& info, int k);

}  // namespace sm
