#pragma once
// Word splitting, token classification and conversion of every text file and
// every console reply.
#include "types.h"

namespace sm {

inline bool isblankchar(char ch) { return ch == ' ' || ch == '\t' || ch == '\xCA'; }  // tab, space, 0xCA
void trimspan(std::string_view s, int& first, int& last);  // 1-based, 0 0 when blank
std::string trim(std::string_view s);
std::string blanks(int n);                         // "" for n < 1 or n > 249
bool sameword(std::string_view a, std::string_view b);
bool lookup(std::string_view s, const WordList& table, int n, int& index);

// Splits a line into words of at most 22 characters; a 401st word is fatal.
void string2strings(std::string_view line, WordList& words);
// Ends the word list at the first word that begins with "%".
void cutcomment(WordList& words);

int whatisstring(std::string_view s);

// The number syntax of string2real on a token with no surrounding blanks,
// without a message: the fast path of the data-file readers.
bool scanreal(std::string_view token, real& value);

// Conversions: false with a "replace with" message a prompt can show.
bool string2real(std::string_view s, real& value, std::string& message);
bool string2int(std::string_view s, int& value, std::string& message);
bool string2rational(std::string_view s, int& num, int& den, std::string& message);

// Convert `count` words after `start` (see the text on signs of `count`).
bool getreals(const WordList& words, int nwords, int start, real* values, int& count);
bool getints(const WordList& words, int nwords, int start, int* values, int& count);

// Fatal getters; `context` says what the caller is reading.
int getinteger(int cls, std::string_view s, std::string_view context);
void getrational(int cls, std::string_view s, int& num, int& den, std::string_view context);
real getsingle(int cls, std::string_view s, std::string_view context);
void getname(sstring& name, int cls, std::string_view s, std::string_view context);

int long2int(long long n);
bool real2rational(real x, long long& num, long long& den);
int decimalsneeded(real x);
real tentopower(int n);

}  // namespace sm
