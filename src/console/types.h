#pragma once
// Basic types shared by the whole program: the one real type, short and long
// strings, and the word list produced by the line splitter.
#include <array>
#include <string>
#include <string_view>

namespace sm {

// Every thermodynamic quantity is an 80-bit extended real.
using real = long double;

// Names (phases, end-members, script words, suffixes) are at most 22 characters;
// texts are at most 255. Both are plain std::string cut at those lengths where
// the program stores them (cut22, cut255).
using sstring = std::string;
using lstring = std::string;

constexpr int sstringmax = 22;
constexpr int lstringmax = 255;
constexpr int maxwordsonline = 400;

inline std::string cut22(std::string_view s) {
    return std::string(s.substr(0, sstringmax));
}
inline std::string cut255(std::string_view s) {
    return std::string(s.substr(0, lstringmax));
}

// Words of one line, 1-based, at most 400.
struct WordList {
    std::array<sstring, maxwordsonline + 1> w{};
    int count = 0;
    const sstring& operator[](int i) const { return w[i]; }
    sstring& operator[](int i) { return w[i]; }
};

// Token classes of whatisstring.
enum TokenClass : int { tokblank = 0, tokint = 1, tokreal = 2, tokrational = 3, toktext = 4 };

}  // namespace sm
