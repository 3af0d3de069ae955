#pragma once
// Number and field formatting behind every table and message.
#include <chrono>
#include <ctime>

#include "types.h"

namespace sm {

// The one number formatter: `fixed` gives `digits` decimals, otherwise
// `digits` significant digits; "?" for what cannot be printed.
std::string real2str(real value, int digits, bool fixed);
// A real printed as a rounded integer.
std::string int2str(real value);

// Appends `text` padded to `width` (positive: right-aligned, negative: left)
// to a table line; see the overflow mark 0xA4.
void putfield(std::string_view text, int width, std::string& buffer, int capacity = lstringmax);
void putreal(int digits, bool fixed, int width, std::string& buffer, real value,
             int capacity = lstringmax);
void putint(int width, std::string& buffer, real value, int capacity = lstringmax);

// "9.05 on Thu 19 Nov,2026"
std::string maketimestamp(const std::tm& t);

}  // namespace sm
