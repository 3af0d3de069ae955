#pragma once
// Line-by-line reading of the program's text files (prefs, script, dataset,
// a-x, drawing files), and free-format reading of the numbers in data files:
// a number may run on across line ends, and skipline() drops the rest of the
// current line. The file is read whole when it is opened and then walked in
// memory, so rewinding for another pass costs nothing.
#include <string>
#include <string_view>

#include "types.h"

namespace sm {

class TextFile {
public:
    TextFile() = default;
    ~TextFile() = default;
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;

    bool open(const std::string& name);
    void close();
    bool isopen() const { return open_; }
    const std::string& name() const { return name_; }
    // One whole line without its line end (and one trailing CR); false at the
    // end of the file.
    bool getline(std::string& line);
    bool atend() const { return pos_ >= data_.size(); }
    // Back to the first line.
    void rewind();
    // The next blank-separated token, crossing line ends; false at the end of
    // the file. The view lives until the file is closed or opened again.
    bool nexttoken(std::string_view& token);
    // Drops the rest of the current line (after a token: the rest of the line
    // the token stood on).
    void skipline();
    // Lines begun so far: the line of the last token or line read.
    int linenumber() const { return lineno_; }

private:
    std::string data_;
    std::string name_;
    size_t pos_ = 0;
    int lineno_ = 0;
    bool open_ = false;
    bool midline_ = false;  // the current line has been begun but not ended
};

// Reads a line and splits it into words; reading past the end is fatal.
void rstrings(TextFile& file, WordList& words);
// The same, and with `cut` the word list ends at the first word beginning "%".
void rstringscut(TextFile& file, WordList& words, bool cut);

// The verbatim/header line reader of the a-x file: `ended` at a line starting
// "verb" or "head".
void readline(TextFile& file, std::string& text, bool& ended);

}  // namespace sm
