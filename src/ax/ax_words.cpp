#include "ax/ax_words.h"

#include "console/runended.h"
#include "console/scan.h"

namespace sm {

bool AxWords::fill() {
    while (pos_ > words_.count) {
        if (ended_) return false;
        std::string text;
        if (!file_.getline(text)) {
            ended_ = true;
            words_.count = 0;
            return false;
        }
        string2strings(text, words_);
        cutcomment(words_);
        pos_ = 1;
        line_ = file_.linenumber();
        if (words_.count > 0 && words_[1][0] == '*') {
            ended_ = true;
            words_.count = 0;
            return false;
        }
    }
    return true;
}

bool AxWords::peek(std::string& word, int& cls) {
    if (!fill()) {
        word.clear();
        cls = tokblank;
        return false;
    }
    word = words_[pos_];
    cls = whatisstring(word);
    return true;
}

bool AxWords::atend() { return !fill(); }

int AxWords::peekclass() {
    std::string w;
    int cls;
    peek(w, cls);
    return cls;
}

bool AxWords::peekis(std::string_view word) {
    return fill() && words_[pos_] == word;
}

std::string AxWords::next(std::string_view what, int& cls) {
    if (!fill()) bomb("reading", "unexpected end of input: " + std::string(what), 0);
    std::string w = words_[pos_++];
    cls = whatisstring(w);
    return w;
}

std::string AxWords::next(std::string_view what) {
    int cls;
    return next(what, cls);
}

int AxWords::getint(std::string_view what) {
    int cls;
    const std::string w = next(what, cls);
    return getinteger(cls, w, what);
}

real AxWords::getreal(std::string_view what) {
    int cls;
    const std::string w = next(what, cls);
    return getsingle(cls, w, what);
}

Rational AxWords::getrat(std::string_view what, int& cls) {
    const std::string w = next(what, cls);
    Rational r;
    getrational(cls, w, r.num, r.den, what);
    return r;
}

Rational AxWords::getrat(std::string_view what) {
    int cls;
    return getrat(what, cls);
}

sstring AxWords::getname(std::string_view what) {
    int cls;
    const std::string w = next(what, cls);
    sstring name;
    sm::getname(name, cls, w, what);
    return name;
}

void AxWords::skipline() {
    pos_ = words_.count + 1;
}

}  // namespace sm
