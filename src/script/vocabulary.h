#pragma once
// The table of script words: names with their synonyms, the calculation
// modes that act on them, and the action of one line.
#include <string>
#include <vector>

#include "console/types.h"

namespace sm {

struct Run;

// One script line as the word actions see it: the keyword, its control
// word's flag, and the items after position.
struct ScriptLine {
    const WordList& words;
    int count;
    std::string keyword;
    int flag;
    int position;
    int nitems() const { return count - position; }
    const sstring& item(int i) const { return words[position + i]; }
    bool hascontrolword() const { return position == 2; }
};

using WordAction = void (*)(Run&, const ScriptLine&);

// Modes by calcmode: bit 1 << calcmode.
constexpr unsigned mode1 = 1u << 1, mode2 = 1u << 2, mode3 = 1u << 3, mode9 = 1u << 9;
constexpr unsigned modeall = mode1 | mode2 | mode3 | mode9;

struct WordEntry {
    std::vector<std::string> names;
    unsigned modes;
    bool typed;  // the line goes through the info record (at most 40 items)
    WordAction act;
};

// The families of words, appended in the order they are compared.
void controlwords(std::vector<WordEntry>& table);
void phasewords(std::vector<WordEntry>& table);
void windowwords(std::vector<WordEntry>& table);
void activitywords(std::vector<WordEntry>& table);
void equilibriumwords(std::vector<WordEntry>& table);
void bulkwords(std::vector<WordEntry>& table);
void rockwords(std::vector<WordEntry>& table);
void batchwords(std::vector<WordEntry>& table);

// The whole vocabulary; nullptr for a word no entry matches.
const WordEntry* findword(const std::string& keyword);

// Shared by the word actions.
void scriptmessage(Run& run, const std::string& text);  // screen and log, a line end before
[[noreturn]] void scriptbomb(const std::string& message);  // "reading scripts"
bool isnumberword(const std::string& w);
real wordreal(const std::string& w);  // a number word's value
// Oxide names as the bulk lines take them: FeOt and FeOtot are FeO.
sstring oxidename(const sstring& w);

}  // namespace sm
