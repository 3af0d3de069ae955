#include "format.h"

#include <cmath>
#include <cstdint>

#include "scan.h"

namespace sm {

namespace {

// A number taken apart for printing: sign, decimal digits of an integer, and
// the power of ten that scales them.
struct DecimalRec {
    bool negative = false;
    int exponent = 0;
    std::string digits;
    bool outofrange = false;
};

// Digits of a non-negative scaled value rounded to the nearest integer (halves
// away from zero), built in 64 bits.
bool rounddigits(real scaled, std::string& digits) {
    const real r = std::round(scaled);
    if (!(r < 9.2e18L)) return false;
    digits = std::to_string(static_cast<std::uint64_t>(r));
    return true;
}

DecimalRec takeapart(real value, int digits, bool fixed) {
    DecimalRec d;
    d.negative = value < 0;
    const real v = std::fabs(value);
    if (v < 1e-12L) {
        d.negative = false;
        d.digits = "0";
        return d;
    }
    if (!(v <= 1e20L)) {
        d.outofrange = true;
        return d;
    }
    real scaled;
    if (fixed) {
        d.exponent = -digits;
        scaled = v * tentopower(digits);
    } else {
        const real half = 0.55L * tentopower(-digits);
        int c = 1;
        if (v >= 1.0L - half) {
            while (std::trunc(v * tentopower(-c) + half) != 0.0L && c < 23) ++c;
            d.exponent = c - digits;
        } else {
            while (std::trunc(v * tentopower(c) + half) == 0.0L && c < 23) ++c;
            d.exponent = 1 - c - digits;
        }
        scaled = v * tentopower(-d.exponent);
    }
    if (!rounddigits(scaled, d.digits)) d.outofrange = true;
    return d;
}

std::string puttogether(const DecimalRec& d, int digits, bool fixed) {
    std::string s = d.digits;
    std::string text;
    if (fixed) {
        if (static_cast<int>(s.size()) < digits) s.insert(0, digits - s.size(), '0');
        if (digits != 0) s.insert(s.size() - digits, ".");
        if (s[0] == '.') s.insert(0, "0");
        text = s;
    } else {
        const int e = d.exponent + digits - 1;
        text = s.substr(0, 1) + "." + s.substr(1);
        if (e >= 1)
            text += "e+" + std::to_string(e);
        else
            text += "e-" + std::to_string(-e);
    }
    if (d.negative) text.insert(0, "-");
    return text;
}

}  // namespace

std::string real2str(real value, int digits, bool fixed) {
    if (!std::isfinite(value)) return "?";
    if (std::fabs(value) < 1e-12L) return "0";
    if (digits < 0) digits = 0;
    if (!fixed && digits == 0) digits = 1;
    DecimalRec d = takeapart(value, digits, fixed);
    if (!fixed && !d.outofrange && -d.exponent < digits + 4 && d.exponent < 2) {
        fixed = true;
        digits = d.exponent < 0 ? -d.exponent : 0;
        d = takeapart(value, digits, fixed);
    } else if (fixed && std::fabs(value) <= 1e20L &&
               (d.outofrange || static_cast<int>(d.digits.size()) > digits + 5)) {
        fixed = false;
        if (digits == 0) digits = 1;
        d = takeapart(value, digits, fixed);
    }
    if (d.outofrange) return "?";
    std::string text = puttogether(d, digits, fixed);
    if (!text.empty() && text[0] == ' ') text.erase(0, 1);
    return cut22(text);
}

std::string int2str(real value) {
    if (!std::isfinite(value)) return "?";
    const DecimalRec d = takeapart(value, 0, true);
    if (d.outofrange) return "?";
    return cut22(puttogether(d, 0, true));
}

void putfield(std::string_view text, int width, std::string& buffer, int capacity) {
    constexpr char overflowmark = '\xA4';
    if (!buffer.empty() && buffer.back() == overflowmark) return;
    const int len = static_cast<int>(text.size());
    std::string padded(text);
    if (width != 0 && std::abs(width) != len) {
        const int pad = std::abs(width) - len;
        if (pad >= 1 && pad <= 249) {
            if (width > 0)
                padded.insert(0, static_cast<size_t>(pad), ' ');
            else
                padded.append(static_cast<size_t>(pad), ' ');
        }
    }
    if (buffer.empty())
        buffer = padded;
    else if (static_cast<int>(buffer.size()) + len < 251)
        buffer += padded;
    else
        buffer += overflowmark;
    if (static_cast<int>(buffer.size()) > capacity) buffer.resize(capacity);
}

void putreal(int digits, bool fixed, int width, std::string& buffer, real value, int capacity) {
    putfield(real2str(value, digits, fixed), width, buffer, capacity);
}

void putint(int width, std::string& buffer, real value, int capacity) {
    putfield(int2str(value), width, buffer, capacity);
}

std::string maketimestamp(const std::tm& t) {
    static const char* const days[7] = {" on Sun ", " on Mon ", " on Tue ", " on Wed ",
                                        " on Thu ", " on Fri ", " on Sat "};
    static const char* const months[12] = {" Jan,", " Feb,", " Mar,", " Apr,", " May,", " Jun,",
                                           " Jul,", " Aug,", " Sep,", " Oct,", " Nov,", " Dec,"};
    std::string s = int2str(t.tm_hour) + ".";
    if (t.tm_min < 10) s += "0";
    s += int2str(t.tm_min);
    s += days[t.tm_wday % 7];
    s += int2str(t.tm_mday);
    s += months[t.tm_mon % 12];
    s += int2str(t.tm_year + 1900);
    return s;
}

}  // namespace sm
