#include "textfile.h"

#include <cstdio>

#include "runended.h"
#include "scan.h"

namespace sm {

bool TextFile::open(const std::string& name) {
    close();
    name_ = name;
    std::FILE* f = std::fopen(name.c_str(), "rb");
    if (!f) return false;
    char buffer[65536];
    size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) data_.append(buffer, n);
    std::fclose(f);
    open_ = true;
    return true;
}

void TextFile::close() {
    data_.clear();
    data_.shrink_to_fit();
    pos_ = 0;
    lineno_ = 0;
    open_ = false;
    midline_ = false;
}

void TextFile::rewind() {
    pos_ = 0;
    lineno_ = 0;
    midline_ = false;
}

bool TextFile::getline(std::string& line) {
    line.clear();
    if (pos_ >= data_.size()) return false;
    const size_t end = data_.find('\n', pos_);
    const size_t stop = end == std::string::npos ? data_.size() : end;
    line.assign(data_, pos_, stop - pos_);
    pos_ = end == std::string::npos ? data_.size() : end + 1;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!midline_) ++lineno_;
    midline_ = false;
    return true;
}

bool TextFile::nexttoken(std::string_view& token) {
    const size_t n = data_.size();
    while (pos_ < n) {
        const char ch = data_[pos_];
        if (ch == '\n') {
            if (!midline_) ++lineno_;
            midline_ = false;
            ++pos_;
        } else if (ch == '\r' || isblankchar(ch)) {
            ++pos_;
        } else {
            break;
        }
    }
    if (pos_ >= n) return false;
    if (!midline_) ++lineno_;
    midline_ = true;
    const size_t first = pos_;
    while (pos_ < n) {
        const char ch = data_[pos_];
        if (ch == '\n' || ch == '\r' || isblankchar(ch)) break;
        ++pos_;
    }
    token = std::string_view(data_).substr(first, pos_ - first);
    return true;
}

void TextFile::skipline() {
    if (pos_ >= data_.size()) return;
    const size_t end = data_.find('\n', pos_);
    if (!midline_) ++lineno_;
    midline_ = false;
    pos_ = end == std::string::npos ? data_.size() : end + 1;
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
