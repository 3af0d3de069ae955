#pragma once
// The a-x file as a stream of words with one word of look-ahead. Comments
// ("%" at the start of a word to the end of its line) and blank lines are
// skipped; a line whose first word begins with "*" ends the file.
#include <string>

#include "console/textfile.h"
#include "console/types.h"
#include "ax/expression.h"

namespace sm {

class AxWords {
public:
    explicit AxWords(TextFile& file) : file_(file) {}

    // The next word and its class without taking it; false at the end.
    bool peek(std::string& word, int& cls);
    bool atend();
    // Class of the next word, tokblank at the end.
    int peekclass();
    // The next word is exactly `word`.
    bool peekis(std::string_view word);

    // Takes the next word; the end of the file is fatal, naming `what`.
    std::string next(std::string_view what, int& cls);
    std::string next(std::string_view what);

    // Typed reads, fatal with `what` in the message.
    int getint(std::string_view what);
    real getreal(std::string_view what);
    Rational getrat(std::string_view what);
    Rational getrat(std::string_view what, int& cls);
    sstring getname(std::string_view what);

    // Drops what is left of the current line: raw line reading (header and
    // verbatim text) starts on the next line.
    void skipline();
    TextFile& file() { return file_; }
    // Line of the last word looked at.
    int line() const { return line_; }

private:
    bool fill();
    TextFile& file_;
    WordList words_;
    int pos_ = 1;
    bool ended_ = false;
    int line_ = 0;
};

}  // namespace sm
