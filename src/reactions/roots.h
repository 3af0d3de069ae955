#pragma once
// One-variable root finding in a window, for reaction lines that can double
// back: a dehydration reaction may cross a pressure window twice. The search
// gives up to two roots and tells a root inside the window (its value), a
// root below or above it (lo - 1, hi + 1), a failure (1e21) and the absence
// of a second root (-1e21) apart. Newton steps are clamped once at the
// window; interval halving takes over when Newton wanders.
#include <cmath>

#include "console/runended.h"
#include "console/types.h"

namespace sm {

constexpr real rootfailed = 1e21L;
constexpr real nosecondroot = -1e21L;

// The window of the solved variable and how finely a root is wanted.
struct RootWindow {
    real lo = 0;
    real hi = 0;
    real base = 0;          // tolerance: 10^(-1-digits)
    bool pressure = false;  // below 1 kbar the tolerance is relative
    int steplimit = 9;      // Newton steps allowed, 3 param + 9
};

// A window for T with `Tdigits` decimals asked for, or for P with `Pdigits`.
RootWindow rootwindow(real lo, real hi, int digits, bool pressure);

// True when a and b are both <= 0 or both >= 0: a zero agrees with either.
inline bool samesign(real a, real b) { return (a <= 0 && b <= 0) || (a >= 0 && b >= 0); }

// The search over one window. F is called as f(v, value, slope).
template <class F>
class RootSearch {
public:
    RootSearch(const RootWindow& w, F& f) : w_(w), f_(f) { setlimit(w.lo); }

    // The two roots, with a start value or from the window's ends.
    void find(bool havestart, real& v1, real& v2) {
        const real lo = w_.lo, hi = w_.hi;
        if (havestart) {
            if (!inwindow(v1)) {
                v1 = rootfailed;
                v2 = nosecondroot;
                return;
            }
            code_ = 2;
            bool ok;
            iterate(v1, ok);
            v2 = nosecondroot;
            return;
        }
        real flo, dlo, fhi, dhi;
        f_(lo, flo, dlo);
        f_(hi, fhi, dhi);
        if (!samesign(flo, fhi)) {
            if (samesign(dlo, dhi)) {
                code_ = 2;
                v1 = (lo + hi) / 2;
                refine(v1, lo, hi);
                v2 = nosecondroot;
            } else if (samesign(dlo, flo)) {
                // Newton from lo would leave the window: start at hi.
                code_ = 1;
                v1 = hi;
                refine(v1, lo, hi);
                v2 = lo - 1;
            } else {
                code_ = 0;
                v1 = lo;
                refine(v1, lo, hi);
                v2 = hi + 1;
            }
            return;
        }
        if (dlo > 0 && dhi > 0) {
            v1 = flo < 0 ? hi + 1 : lo - 1;
            v2 = nosecondroot;
            return;
        }
        if (dlo < 0 && dhi < 0) {
            v1 = flo > 0 ? hi + 1 : lo - 1;
            v2 = nosecondroot;
            return;
        }
        // The curve turns in the window.
        if (samesign(dlo, flo)) {
            v1 = lo - 1;
            v2 = hi + 1;
            return;
        }
        bool ok1, ok2;
        code_ = 0;
        v1 = lo;
        iterate(v1, ok1);
        code_ = 1;
        v2 = hi;
        iterate(v2, ok2);
        bool same;
        if (ok1 && ok2) {
            same = std::fabs(v1 - v2) < 4 * tol_;
        } else if (ok1) {
            v2 = v1;
            same = true;
        } else if (ok2) {
            v1 = v2;
            same = true;
        } else {
            v1 = rootfailed;
            v2 = nosecondroot;
            return;
        }
        if (same) {
            // One root found from both sides: the other may lie beyond it.
            real t = clamp(v2 + 4 * tol_), ft, d;
            f_(t, ft, d);
            if (!samesign(ft, fhi)) {
                code_ = 2;
                v1 = (t + hi) / 2;
                refine(v1, t, hi);
            } else {
                t = clamp(v2 - 4 * tol_);
                f_(t, ft, d);
                if (!samesign(ft, flo)) {
                    code_ = 2;
                    v1 = (t + lo) / 2;
                    refine(v1, lo, t);
                } else {
                    v1 = v2;
                }
            }
        }
        if (v1 < v2) std::swap(v1, v2);
    }

    real tolerance() const { return tol_; }

private:
    static constexpr real smallesttol = 1e-12L;

    bool inwindow(real v) const { return v >= w_.lo && v <= w_.hi; }
    real clamp(real v) const { return v < w_.lo ? w_.lo : v > w_.hi ? w_.hi : v; }

    void setlimit(real v) {
        tol_ = w_.base;
        if (w_.pressure && v <= 1) tol_ = w_.base * std::fabs(v);
        if (!(tol_ >= smallesttol)) tol_ = smallesttol;
    }

    static int heldcount(real n) {
        if (!(n >= 2)) return 2;
        if (n > 200) return 200;
        return static_cast<int>(n);
    }

    // Newton from v, clamped once at the window; code 0 started at lo and
    // may not leave below it, code 1 started at hi and may not leave above.
    void iterate(real& v, bool& ok) {
        const int limit = heldcount(w_.steplimit);
        bool clamped = false, stop = false;
        int steps = 0;
        real step = 0;
        do {
            real fv, dv;
            f_(v, fv, dv);
            step = -fv / dv;
            ++steps;
            if (!std::isfinite(step)) {
                stop = true;
                break;
            }
            v += step;
            setlimit(v);
            if (!inwindow(v)) {
                if (clamped) {
                    stop = true;
                } else if (v < w_.lo && code_ != 0) {
                    v = w_.lo;
                    clamped = true;
                } else if (v > w_.hi && code_ != 1) {
                    v = w_.hi;
                    clamped = true;
                } else {
                    stop = true;
                }
            }
        } while (std::fabs(step) >= tol_ && steps <= limit && !stop);
        ok = !stop && std::fabs(step) < tol_ && inwindow(v);
        if (!ok) {
            if (stop || steps > limit)
                v = rootfailed;
            else if (v >= w_.lo)
                v = w_.hi + 1;
            else
                v = w_.lo - 1;
        }
    }

    // Newton first, then halving of the bracket [a, b] and Newton again,
    // then halving alone.
    void refine(real& v, real a, real b) {
        bool ok;
        iterate(v, ok);
        if (ok && v >= a && v <= b) return;
        setlimit(a);
        v = halve(a, b, halvings(a, b, 100));
        iterate(v, ok);
        if (ok) return;
        setlimit(a);
        v = halve(a, b, halvings(a, b, 2));
    }

    int halvings(real a, real b, real factor) const {
        return heldcount(std::trunc(1 + std::log((b - a) / (factor * tol_)) / std::log(2.0L)));
    }

    real halve(real left, real right, int n) {
        real fl, fr, d;
        f_(left, fl, d);
        f_(right, fr, d);
        if (samesign(fl, fr)) bomb("interval halving", "same sign", 0);
        if (n < 1) bomb("interval halving", "v2<v1", 0);
        for (int round = 1; round <= n; ++round) {
            const real m = (left + right) / 2;
            real fm;
            f_(m, fm, d);
            setlimit(m);
            if (samesign(fm, fl))
                left = m;
            else
                right = m;
            if (right - left < tol_) break;
        }
        return (left + right) / 2;
    }

    RootWindow w_;
    F& f_;
    real tol_ = 0;
    int code_ = 2;
};

}  // namespace sm
