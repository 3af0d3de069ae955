// Lists of values along an axis: P and T for grids and reaction tables,
// x(CO2), ln a and mu for the sections of mode 3.
#include <algorithm>
#include <cmath>

#include "console/format.h"
#include "console/prompts.h"
#include "console/runended.h"
#include "console/scan.h"
#include "run.h"

namespace sm {

namespace {

const std::string degC = "\xA1" "C";

void say(Run& run, const std::string& text, int after = 1) {
    putstr(run.io, 0, text, after, chscreenlog);
}

// Decimals a value needs, 0 for a whole number.
int decimals(real v) {
    return std::fabs(v - std::round(v)) < 1e-6L ? 0 : decimalsneeded(v);
}

std::string brief(real v) { return real2str(v, decimals(v), true); }

// How many values an interval gives over a width, the high end appended
// when the last step falls short of it by more than `tol`.
long countvalues(real width, real interval, real tol) {
    const real steps = std::trunc(width / interval);
    if (!(steps < 1e6L)) return 1000000;  // far beyond any list, and no overflow
    const long n = static_cast<long>(steps) + 1;
    const bool append = (n - 1) * interval + tol < width;
    return n + (append ? 1 : 0);
}

// Fills low, low + interval ... and the high end when the steps fall short.
std::vector<real> fill(real low, real high, real interval, real tol) {
    std::vector<real> list{low};
    if (!(interval > 0)) return list;
    const real steps = std::trunc((high - low) / interval);
    const long n = steps < maxlist ? static_cast<long>(steps) + 1 : maxlist;
    for (long i = 2; i <= n; ++i) list.push_back(low + (i - 1) * interval);
    if (list.back() + tol < high) list.push_back(high);
    return list;
}

// The grid list of listP and listT.
void gridlist(Run& run, bool isP) {
    Windows& w = run.script.win;
    const Window& win = isP ? w.calcP : w.calcT;
    std::vector<real>& list = isP ? w.Plist : w.Tlist;
    const real tol = isP ? 1e-6L : 1e-5L;
    const real width = win.hi - win.lo;
    list.assign(1, win.lo);
    if (width < tol) return;
    real interval = isP ? w.Pinterval : w.Tinterval;
    const bool fromscript = interval > 0 && (isP ? w.Pfromscript : w.Tfromscript);
    const bool asks = isP ? (w.gridkind == 1 || w.gridkind == 3) : (w.gridkind == 2 || w.gridkind == 3);
    if (!(interval > 0)) {
        interval = 0;
        if (asks) promptreal(run.io, isP ? "P interval" : "T interval", interval);
    }
    if (!(interval > 0)) return;
    if (interval > width) interval = width / 2;
    if (countvalues(width, interval, tol) > maxlist) interval = width / (maxlist - 1);
    const int quiet = isP ? 2 : 1;  // the axis the grid does not step says nothing
    if (fromscript && w.gridkind != quiet)
        say(run, std::string(isP ? "P" : "T") + " interval = " + brief(interval) +
                     (isP ? " kbar" : " " + degC) + " (from script)");
    list = fill(win.lo, win.hi, interval, tol);
    if (static_cast<int>(list.size()) > maxlist) list.resize(maxlist);
}

struct IntervalTexts {
    std::string prompt;    // "P interval"
    std::string toolarge;  // before the width
    std::string widthgap;  // between the text and the width
    std::string toosmall;
    std::string tryagain;
    std::string positive;
};

// Asks an interval until it is positive, at most the width and gives at
// most 201 values; `first` may be taken as it is.
real askinterval(Run& run, real width, real first, real tol, const IntervalTexts& t) {
    real interval = first;
    if (!(interval > 0)) promptreal(run.io, t.prompt, interval);
    for (;;) {
        if (!(interval > 0)) {
            promptreal(run.io, t.positive, interval);
            continue;
        }
        if (interval > width + tol) {
            say(run, t.toolarge + t.widthgap + brief(width));
            promptreal(run.io, t.tryagain, interval);
            continue;
        }
        if (countvalues(width, interval, tol) > maxlist) {
            say(run, t.toosmall);
            promptreal(run.io, t.tryagain, interval);
            continue;
        }
        return interval;
    }
}

// The list of makeP and makeT: returns the decimals it needs.
int makelist(Run& run, bool isP) {
    Windows& w = run.script.win;
    const Window& win = isP ? w.calcP : w.calcT;
    std::vector<real>& list = isP ? w.Plist : w.Tlist;
    const real offset = isP ? 0 : kelvin0;
    const real lo = win.lo - offset, hi = win.hi - offset;
    const real width = hi - lo;
    const int least = isP ? 3 : 2;
    if (!(width > 1e-6L)) {
        list.assign(1, win.lo);
        return std::max(decimals(lo), least);
    }
    const int d = std::max(decimals(lo), decimals(hi));
    const std::string a = isP ? "P" : "T";
    const real given = isP ? w.Pinterval : w.Tinterval;
    if (given > 0)
        say(run, a + " interval = " + brief(given) + " (from script)");
    else
        say(run, a + " window : " + brief(lo) + " <-> " + brief(hi) + " : ");
    const IntervalTexts texts{a + " interval",
                              a + " interval too large : max " + a + "(high) - " + a + "(low) = ",
                              "",
                              a + " interval too small : max of 201 " +
                                  (isP ? "pressures" : "temperatures"),
                              "try again: " + a + " interval",
                              a + " interval must be positive - try again: " + a + " interval"};
    const real interval = askinterval(run, width, given, 1e-4L, texts);
    std::vector<real> values = fill(lo, hi, interval, 1e-4L);
    list.clear();
    for (real v : values) list.push_back(v + offset);
    return std::max({decimals(interval), d, least});
}

}  // namespace

void listP(Run& run) { gridlist(run, true); }
void listT(Run& run) { gridlist(run, false); }

void makeP(Run& run) {
    Windows& w = run.script.win;
    w.Pdecimals = makelist(run, true);
    const int t = std::clamp(w.Pdecimals - 1, 2, 4);
    // at variance 2 the T decimals only ever rise
    w.Tdecimals = w.variance == 2 ? std::max(w.Tdecimals, t) : t;
}

void makeT(Run& run) { run.script.win.Tdecimals = makelist(run, false); }

namespace {

constexpr real standardx[12] = {0.001L, 0.01L, 0.05L, 0.1L, 0.2L, 0.4L,
                                0.6L,   0.8L,  0.9L,  0.95L, 0.99L, 0.999L};

// The decimals of the solved axis in a section.
void solveddecimals(Run& run, const char* where) {
    Windows& w = run.script.win;
    if (w.calcvariable == axisP)
        w.Pdecimals = 3;
    else if (w.calcvariable == axisT)
        w.Tdecimals = 2;
    else
        bomb(where, "unknown calcvariable", 1);
}

}  // namespace

void listxco2(Run& run) {
    Windows& w = run.script.win;
    const real low = w.xco2window.lo, high = w.xco2window.hi;
    say(run, "x(CO2) window : " + brief(low) + " <-> " + brief(high));
    std::vector<real> list;
    if (low >= standardx[0] - 1e-8L && high <= standardx[11] + 1e-8L) {
        int a = 0, b = 11;
        while (a < 12 && standardx[a] < low - 1e-8L) ++a;
        while (b >= 0 && standardx[b] > high + 1e-8L) --b;
        std::vector<real> std;
        if (a <= b) std.assign(standardx + a, standardx + b + 1);
        if (std.empty() || std::fabs(std.front() - low) > 1e-8L) std.insert(std.begin(), low);
        if (std::fabs(std.back() - high) > 1e-8L) std.push_back(high);
        if (std.size() >= 6) {
            std::string text;
            for (real v : std) text += brief(v) + " ";
            say(run, text, 0);
            if (query(run.io, " : use these x(CO2)")) list = std;
        }
    }
    for (int round = 0; list.empty(); ++round) {
        std::vector<real> typed;
        int n = 0;
        promptreals(run.io, "x(CO2) in ascending order", typed, n);
        std::vector<real> l{low};
        for (real v : typed)
            if (v > low && v < high && v > l.back()) l.push_back(v);
        l.push_back(high);
        if (static_cast<int>(l.size()) <= maxlist) {
            list = l;
            break;
        }
        say(run, "too many x(CO2)'s  (max = 201) ");
        if (round == 1) bomb("listxco2", "too many x(CO2)'s  (max = 201) ", 0);
    }
    w.xco2list = list;
    w.xh2olist.clear();
    w.xdecimals = 0;
    for (real v : list) {
        w.xh2olist.push_back(1 - v);
        w.xdecimals = std::max(w.xdecimals, decimals(v));
    }
    solveddecimals(run, "listxco2");
}

namespace {

std::vector<real>& kth(std::vector<std::vector<real>>& lists, int k) {
    if (static_cast<int>(lists.size()) < k + 1) lists.resize(k + 1);
    return lists[k];
}

}  // namespace

void listlna(Run& run, int k, real low, real high) {
    Windows& w = run.script.win;
    std::vector<real>& list = kth(w.lnalist, k);
    const std::string name = run.script.activities.base10 ? "log a" : "ln a";
    if (!(high - low > 1e-5L)) {
        list.assign(1, low);
        w.lnadecimals = std::max(decimals(low), 2);
    } else {
        say(run, name + " window : " + brief(low) + " <-> " + brief(high) + " : ", 0);
        const IntervalTexts texts{name + " interval", "interval too large : ", "   max = ",
                                  "interval too small : max of 201 values", "try again: interval",
                                  "try again: interval"};
        const real interval = askinterval(run, high - low, 0, 1e-5L, texts);
        list = fill(low, high, interval, 1e-5L);
        w.lnadecimals = std::max({decimals(interval), decimals(low), decimals(high), 2});
    }
    solveddecimals(run, "listlna");
}

void listmu(Run& run, int k, real low, real high) {
    Windows& w = run.script.win;
    std::vector<real>& list = kth(w.mulist, k);
    if (!(high - low > 0.001L)) {
        list.assign(1, low);
        w.mudecimals = std::max(decimals(low), 1);
    } else {
        say(run, "\xB5 window : " + brief(low) + " <-> " + brief(high) + " : ", 0);
        const IntervalTexts texts{"\xB5 interval",
                                  "\xB5 interval too large : max \xB5(high) - \xB5(low) =",
                                  "",
                                  "\xB5 interval too small : max of 201 values",
                                  "try again: \xB5 interval",
                                  "try again: \xB5 interval"};
        const real interval = askinterval(run, high - low, 0, 1e-4L, texts);
        list = fill(low, high, interval, 1e-4L);
        w.mudecimals = std::max({decimals(interval), decimals(low), decimals(high), 1});
    }
    solveddecimals(run, "listmu");
}

}  // namespace sm
