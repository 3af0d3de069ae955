#pragma once
// Line-by-line reading of the program's text files (prefs, script, dataset,
// a-x, drawing files).
#include <cstdio>
#include <string>

#include "types.h"

namespace sm {

class TextFile {
public:
    TextFile() = default;
    ~TextFile() { close(); }
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;

    bool open(const std::string& name);
    void close();
    bool isopen() const { return f_ != nullptr; }
    const std::string& name() const { return name_; }
    // One whole line without its line end (and one trailing CR); false at the
    // end of the file.
    bool getline(std::string& line);
    bool atend();
    int linenumber() const { return lineno_; }

private:
    std::FILE* f_ = nullptr;
    std::string name_;
    int lineno_ = 0;
};

// Reads a line and splits it into words; reading past the end is fatal.
void rstrings(TextFile& file, WordList& words);
// The same, and with `cut` the word list ends at the first word beginning "%".
void rstringscut(TextFile& file, WordList& words, bool cut);

// The verbatim/header line reader of the a-x file: `ended` at a line starting
// "verb" or "head".
void readline(TextFile& file, std::string& text, bool& ended);

}  // namespace sm
