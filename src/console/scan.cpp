#include "scan.h"

#include <cmath>

#include "runended.h"

namespace sm {

void trimspan(std::string_view s, int& first, int& last) {
    first = 0;
    last = 0;
    const int n = static_cast<int>(s.size());
    for (int i = 0; i < n; ++i)
        if (!isblankchar(s[i])) {
            first = i + 1;
            break;
        }
    if (first == 0) return;
    for (int i = n - 1; i >= 0; --i)
        if (!isblankchar(s[i])) {
            last = i + 1;
            break;
        }
}

std::string trim(std::string_view s) {
    int first, last;
    trimspan(s, first, last);
    if (first == 0) return {};
    return std::string(s.substr(first - 1, last - first + 1));
}

std::string blanks(int n) {
    if (n < 1 || n > 249) return {};
    return std::string(n, ' ');
}

bool sameword(std::string_view a, std::string_view b) {
    return trim(a) == trim(b);
}

bool lookup(std::string_view s, const WordList& table, int n, int& index) {
    index = 0;
    for (int i = 1; i <= n && i <= maxwordsonline; ++i)
        if (table[i] == s) {
            index = i;
            return true;
        }
    return false;
}

void string2strings(std::string_view line, WordList& words) {
    int count = 0;
    const size_t n = line.size();
    size_t i = 0;
    while (i < n) {
        while (i < n && isblankchar(line[i])) ++i;
        if (i >= n) break;
        size_t j = i;
        while (j < n && !isblankchar(line[j])) ++j;
        std::string_view word = line.substr(i, j - i);
        if (count == maxwordsonline)
            bomb("string2strings", "too many \"" + cut22(word) + "\"", 0);
        words[++count] = cut22(word);
        i = j;
    }
    for (int k = count + 1; k <= maxwordsonline; ++k) words[k].clear();
    words.count = count;
}

void cutcomment(WordList& words) {
    for (int i = 1; i <= words.count; ++i)
        if (!words[i].empty() && words[i][0] == '%') {
            for (int k = i; k <= words.count; ++k) words[k].clear();
            words.count = i - 1;
            return;
        }
}

static bool isdigitchar(char ch) { return ch >= '0' && ch <= '9'; }

int whatisstring(std::string_view s) {
    int first, last;
    trimspan(s, first, last);
    if (first == 0) return tokblank;
    std::string_view t = s.substr(first - 1, last - first + 1);
    if (t.size() == 1) return isdigitchar(t[0]) ? tokint : toktext;
    size_t start = (t[0] == '-') ? 1 : 0;
    bool seendot = false, seene = false, seenslash = false;
    char prev = 0;
    bool digitafterdot = false, digitafterslash = false, digitaftere = false;
    int k = 0;
    for (size_t i = start; i < t.size(); ++i) {
        ++k;
        const char ch = t[i];
        if (isdigitchar(ch)) {
            if (seene) digitaftere = true;
            if (seendot) digitafterdot = true;
            if (seenslash) digitafterslash = true;
        } else if (ch == '.') {
            if (seendot || k == 1 || seene || seenslash) return toktext;
            seendot = true;
        } else if (ch == 'e' || ch == 'E') {
            if (seene || k == 1 || prev == '.' || seenslash) return toktext;
            seene = true;
        } else if (ch == '-' || ch == '+') {
            if (!(prev == 'e' || prev == 'E')) return toktext;
        } else if (ch == '/') {
            if (seenslash || k == 1 || seendot || seene) return toktext;
            seenslash = true;
        } else {
            return toktext;
        }
        prev = ch;
    }
    if (k == 0) return toktext;
    if (seendot && !digitafterdot && !seene) return toktext;
    if (seenslash && !digitafterslash) return toktext;
    if (seene && !digitaftere) return toktext;
    if (seenslash) return tokrational;
    if (seendot || seene) return tokreal;
    return tokint;
}

namespace {

// Repeated squaring on the binary digits of |n|.
constexpr real tentopowerbysquares(int n) {
    constexpr real factors[6] = {10.0L, 100.0L, 1e4L, 1e8L, 1e16L, 1e32L};
    unsigned long m = n < 0 ? static_cast<unsigned long>(-static_cast<long>(n))
                            : static_cast<unsigned long>(n);
    real product = 1.0L;
    real factor = factors[0];
    for (int bit = 0; m != 0; ++bit, m >>= 1) {
        if (bit < 6)
            factor = factors[bit];
        else
            factor = factor * factor;
        if (m & 1UL) product *= factor;
    }
    return n < 0 ? 1.0L / product : product;
}

// The same values for the exponents of ordinary data, worked out once by the
// compiler: every number read from a data file needs one.
constexpr int tabulatedpowers = 40;
struct PowerTable {
    real value[2 * tabulatedpowers + 1];
    constexpr PowerTable() : value{} {
        for (int n = -tabulatedpowers; n <= tabulatedpowers; ++n)
            value[n + tabulatedpowers] = tentopowerbysquares(n);
    }
};
constexpr PowerTable powertable;

}  // namespace

real tentopower(int n) {
    if (n >= -tabulatedpowers && n <= tabulatedpowers) return powertable.value[n + tabulatedpowers];
    return tentopowerbysquares(n);
}

// The syntax of a real number: optional "-", digits with at most one ".", at
// least one mantissa digit; optionally "e" with optional sign and digits.
bool scanreal(std::string_view t, real& value) {
    size_t i = 0;
    const size_t n = t.size();
    bool negative = false;
    if (i < n && t[i] == '-') {
        negative = true;
        ++i;
    }
    real acc = 0.0L;
    int mantissadigits = 0, afterpoint = 0;
    bool seendot = false;
    for (; i < n; ++i) {
        const char ch = t[i];
        if (isdigitchar(ch)) {
            acc = 10.0L * acc + static_cast<real>(ch - '0');
            ++mantissadigits;
            if (seendot) ++afterpoint;
        } else if (ch == '.' && !seendot) {
            seendot = true;
        } else {
            break;
        }
    }
    if (mantissadigits == 0) return false;
    long exponent = 0;
    if (i < n && (t[i] == 'e' || t[i] == 'E')) {
        ++i;
        bool eneg = false;
        if (i < n && (t[i] == '-' || t[i] == '+')) {
            eneg = t[i] == '-';
            ++i;
        }
        int edigits = 0;
        for (; i < n && isdigitchar(t[i]); ++i) {
            ++edigits;
            if (exponent < 100000) exponent = 10 * exponent + (t[i] - '0');  // saturate
        }
        if (edigits == 0) return false;
        if (eneg) exponent = -exponent;
    }
    if (i != n) return false;
    exponent -= afterpoint;
    real v = acc == 0.0L ? 0.0L : acc * tentopower(static_cast<int>(exponent));
    if (!std::isfinite(v)) return false;
    value = negative ? -v : v;
    return true;
}

bool string2real(std::string_view s, real& value, std::string& message) {
    message.clear();
    value = 0;
    const std::string t = trim(s);
    if (t.empty()) return false;
    if (!scanreal(t, value)) {
        value = 0;
        message = t + " not a real: replace with";
        return false;
    }
    return true;
}

bool string2int(std::string_view s, int& value, std::string& message) {
    value = 0;
    real v;
    message.clear();
    const std::string t = trim(s);
    if (t.empty()) return false;
    if (!scanreal(t, v)) {
        message = t + " not an integer: replace with";
        return false;
    }
    const real r = std::round(v);
    if (std::fabs(v - r) > 1e-8L) {
        message = t + " not an integer: replace with";
        return false;
    }
    if (std::fabs(r) >= 32767.0L) {
        message = t + " too large: replace with";
        return false;
    }
    value = static_cast<int>(r);
    return true;
}

bool string2rational(std::string_view s, int& num, int& den, std::string& message) {
    message.clear();
    num = 0;
    den = 1;
    const size_t slash = s.find('/');
    if (slash == std::string_view::npos) {
        message = "lstring, not a rational";
        return false;
    }
    std::string m;
    if (!string2int(s.substr(0, slash), num, m) || !string2int(s.substr(slash + 1), den, m)) {
        message = m.empty() ? std::string(s) + " not an integer: replace with" : m;
        return false;
    }
    if (num == 0 || den == 0) {
        message = "zero in rational";
        return false;
    }
    return true;
}

// Classify the wanted words first, then convert them in order.
template <typename T, typename Convert>
static bool getnumbers(const WordList& words, int nwords, int start, T* values, int& count,
                       bool integersonly, Convert convert) {
    const int want = count < 0 ? -count : count;
    if (nwords - start < want) return false;
    int n = 0;
    const int stop = count > 0 ? start + count : std::min(nwords, 40);
    for (int i = start + 1; i <= stop; ++i) {
        const int cls = whatisstring(words[i]);
        if (cls == tokblank || cls == toktext) break;
        if (integersonly && cls != tokint) break;
        ++n;
    }
    if (n < want) return false;
    if (count <= 0) count = n;
    for (int i = 1; i <= count; ++i)
        if (!convert(words[start + i], values[i - 1])) return false;
    return true;
}

bool getreals(const WordList& words, int nwords, int start, real* values, int& count) {
    return getnumbers(words, nwords, start, values, count, false,
                      [](const std::string& w, real& v) {
                          std::string m;
                          if (whatisstring(w) == tokrational) {
                              int num, den;
                              if (!string2rational(w, num, den, m)) return false;
                              v = static_cast<real>(num) / den;
                              return true;
                          }
                          return string2real(w, v, m);
                      });
}

bool getints(const WordList& words, int nwords, int start, int* values, int& count) {
    return getnumbers(words, nwords, start, values, count, true,
                      [](const std::string& w, int& v) {
                          std::string m;
                          return string2int(w, v, m);
                      });
}

int getinteger(int cls, std::string_view s, std::string_view context) {
    const std::string tail = std::string(s) + " - " + std::string(context);
    if (cls != tokint) bomb("getinteger", "expecting an integer (1); got: " + tail, 0);
    int v;
    std::string m;
    if (!string2int(s, v, m)) bomb("getinteger", "expecting an integer (2); got: " + tail, 0);
    return v;
}

void getrational(int cls, std::string_view s, int& num, int& den, std::string_view context) {
    const std::string tail = std::string(s) + " - " + std::string(context);
    std::string m;
    switch (cls) {
    case tokint:
        den = 1;
        if (!string2int(s, num, m)) bomb("reading", "expecting a rational (1); got: " + tail, 0);
        return;
    case tokreal: {
        real v;
        long long n, d;
        if (!string2real(s, v, m) || !real2rational(v, n, d))
            bomb("reading", "expecting a rational (2); got: " + tail, 0);
        num = long2int(n);
        den = long2int(d);
        return;
    }
    case tokrational:
        if (!string2rational(s, num, den, m))
            bomb("reading", "expecting a rational (3); got: " + tail, 0);
        return;
    default:
        bomb("reading", "expecting a rational (4); got: " + tail, 0);
    }
}

real getsingle(int cls, std::string_view s, std::string_view context) {
    const std::string tail = std::string(s) + " - " + std::string(context);
    std::string m;
    if (cls == tokint || cls == tokreal) {
        real v;
        if (!string2real(s, v, m)) bomb("reading", "expecting a single (2); got: " + tail, 0);
        return v;
    }
    if (cls == tokrational) {
        int num, den;
        if (!string2rational(s, num, den, m))
            bomb("reading", "expecting a single (3); got: " + tail, 0);
        return static_cast<real>(num) / den;
    }
    bomb("reading", "expecting a single (1); got: " + tail, 0);
}

void getname(sstring& name, int cls, std::string_view s, std::string_view context) {
    if (cls != toktext)
        bomb("reading", "expecting a name; got: " + std::string(s) + " - " + std::string(context), 0);
    name = cut22(s);
}

int long2int(long long n) {
    if (n >= 32768 || n <= -32768) bomb("li2i", " longint -> int conversion failed", 0);
    return static_cast<int>(n);
}

// Continued fraction of x: at most 20 terms, and it stops before a denominator
// would pass 32767, the largest a 16-bit table can hold.
bool real2rational(real x, long long& num, long long& den) {
    num = 0;
    den = 1;
    if (!std::isfinite(x) || std::fabs(x) > 1e15L) {
        long2int(32768);  // a non-finite or huge value fails as an integer conversion
    }
    const real nearest = std::round(x);
    if (std::fabs(x - nearest) < 0.001L) {
        num = static_cast<long long>(nearest);
        den = 1;
        return true;
    }
    real y = std::fabs(x);
    long long terms[20];
    int nterms = 0;
    real a = std::trunc(y);
    terms[nterms++] = static_cast<long long>(a);
    while (nterms < 20 && std::fabs(y - a) >= 0.001L) {
        y = 1.0L / (y - a);
        a = std::trunc(y);
        if (!std::isfinite(a) || a > 32767.0L) break;
        // fold to see whether the denominator would grow past 32767
        long long n = static_cast<long long>(a), d = 1;
        for (int k = nterms - 1; k >= 0; --k) {
            const long long t = n;
            n = terms[k] * n + d;
            d = t;
        }
        if (d > 32767) break;
        terms[nterms++] = static_cast<long long>(a);
    }
    long long n = terms[nterms - 1], d = 1;
    for (int k = nterms - 2; k >= 0; --k) {
        const long long t = n;
        n = terms[k] * n + d;
        d = t;
    }
    num = x <= 0 ? -n : n;
    den = d;
    return true;
}

int decimalsneeded(real x) {
    if (!std::isfinite(x)) return 0;
    const real f = std::fabs(x - std::round(x));
    if (f < 1e-8L) return 1;
    for (int k = 1; k <= 20; ++k) {
        const real v = f * tentopower(k);
        if (std::fabs(std::round(v) - v) <= 1e-4L) return k;
    }
    return 20;
}

}  // namespace sm
