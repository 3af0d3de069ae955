#include "textfile.h"

#include "runended.h"
#include "scan.h"

namespace sm {

bool TextFile::open(const std::string& name) {
    close();
    f_ = std::fopen(name.c_str(), "rb");
    name_ = name;
    lineno_ = 0;
    return f_ != nullptr;
}

void TextFile::close() {
    if (f_) std::fclose(f_);
    f_ = nullptr;
}

bool TextFile::getline(std::string& line) {
    line.clear();
    if (!f_) return false;
    int ch;
    bool any = false;
    while ((ch = std::getc(f_)) != EOF) {
        any = true;
        if (ch == '\n') break;
        line.push_back(static_cast<char>(ch));
    }
    if (!any) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    ++lineno_;
    return true;
}

bool TextFile::atend() {
    if (!f_) return true;
    const int ch = std::getc(f_);
    if (ch == EOF) return true;
    std::ungetc(ch, f_);
    return false;
}

void rstrings(TextFile& file, WordList& words) { rstringscut(file, words, false); }

void rstringscut(TextFile& file, WordList& words, bool cut) {
    std::string line;
    if (!file.getline(line)) bomb("read in rstrings", "problems reading", 0);
    string2strings(line, words);
    if (cut) cutcomment(words);
}

void readline(TextFile& file, std::string& text, bool& ended) {
    std::string line;
    if (!file.getline(line)) bomb("readline", "problems reading for header/verbatim", 0);
    text = trim(line);
    ended = text.size() >= 4 && (text.compare(0, 4, "verb") == 0 || text.compare(0, 4, "head") == 0);
    if (ended) {
        text.clear();
        return;
    }
    if (!text.empty() && text[0] == '%') text.erase(0, 1);
    if (text.size() > 150) text.resize(150);
}

}  // namespace sm
