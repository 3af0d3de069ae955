#include <cmath>
#include <string>

#include "console/bomb.h"
#include "solver/nle.h"
#include "solver/nleprint.h"

namespace sm {

namespace {

// One point on the line x - t * dx with what the convergence tests said
// there; the tests of the accepted point are the ones that count.
struct Trial {
    real t = 0, f = 0, slope = 0, maxe = 1, maxdx = 1;
    bool esizeok = false, fsizeok = false, dxok = false, dxconverged = false;
    bool converged = false;
    bool decrease = false, flat = false;
    const char* convtag = "";
};

class LineSearch {
public:
    LineSearch(Run& run, NleSystem& sys) : run_(run), sys_(sys), s_(run.solver) {}

    // Evaluates the trial at t.t; false when the point failed softly, which
    // ends the search with that point.
    bool take(Trial& t, int which) {
        t.converged = fn(run_, sys_, t.t, t.f, t.slope, which);
        t.maxe = s_.maxe;
        t.maxdx = s_.maxdx;
        t.esizeok = s_.esizeok;
        t.fsizeok = s_.fsizeok;
        t.dxok = s_.dxok;
        t.dxconverged = s_.dxconverged;
        t.convtag = s_.convtag;
        return !s_.softfailed;
    }

    // Sufficient decrease of f and a slope flattened enough: the tests of
    // the first trial are looser when it already decreases.
    bool good(Trial& t, bool first) {
        t.decrease = t.f < s_.f0 + s_.s0 * 0.01L * t.t;
        const real c = first && t.decrease ? 0.5L : 0.2L;
        t.flat = std::fabs(t.slope) < -c * s_.s0;
        return t.converged || (t.decrease && t.flat);
    }

    void restore(const Trial& t) {
        s_.f = t.f;
        s_.slope = t.slope;
        s_.maxe = t.maxe;
        s_.maxdx = t.maxdx;
        s_.esizeok = t.esizeok;
        s_.fsizeok = t.fsizeok;
        s_.dxok = t.dxok;
        s_.dxconverged = t.dxconverged;
        s_.convtag = t.convtag;
    }

    void show(std::string_view lead, const Trial& t) {
        if (s_.printlevel == 3 || s_.printlevel == 4) {
            restore(t);
            printtrial(run_, s_, lead, t.t);
        }
    }

    bool verbose() const { return s_.printlevel == 3 || s_.printlevel == 4; }

private:
    Run& run_;
    NleSystem& sys_;
    SolverState& s_;
};

const char* firstlead(int accessibility) {
    switch (accessibility) {
    case accwindow: return "sw";
    case acccomp: return "sx";
    case accmode: return "sp";
    case acccap: return "sm";
    default: return "si";
    }
}

bool within(real r, real a, real b) { return r >= a && r <= b; }

}  // namespace

void cubic(real a, real fa, real sa, real b, real fb, real sb, real& r1, real& r2) {
    // The cubic through the two points, in z = (t - a)/D, is
    // fa + D sa z + p z^2 + q z^3.
    const real D = b - a;
    const real p = 3.0L * (fb - fa) - D * (sb + 2.0L * sa);
    const real q = D * (sa + sb) - 2.0L * (fb - fa);
    if (p == 0.0L && q == 0.0L) {
        r1 = r2 = -a;
    } else if (q == 0.0L) {
        r1 = r2 = a + D * (-(D * sa) / (2.0L * p));
    } else {
        const real disc = 4.0L * p * p - 12.0L * q * D * sa;
        if (disc >= 0.0L) {
            // z = (-2p -+ sqrt(disc)) / 6q, the root that would cancel taken
            // from the product of the two, D sa / 3q: the same numbers,
            // without the loss of digits when q is small beside p.
            const real sd = std::sqrt(disc);
            real zminus, zplus;
            if (p >= 0.0L) {
                zminus = (-2.0L * p - sd) / (6.0L * q);
                zplus = -2.0L * p - sd != 0.0L ? 2.0L * D * sa / (-2.0L * p - sd) : 0.0L;
            } else {
                zplus = (sd - 2.0L * p) / (6.0L * q);
                zminus = 2.0L * D * sa / (sd - 2.0L * p);
            }
            r1 = a + D * zminus;
            r2 = a + D * zplus;
        } else {
            r1 = r2 = -a;
        }
    }
}

bool steplength(Run& run, NleSystem& sys, real& step, int& status) {
    SolverState& s = run.solver;
    LineSearch ls(run, sys);
    step = 0;
    s.status = status = 0;
    startup(run, sys);
    if (s.softfailed) return true;
    if (s.slim > 50.0L) {
        s.slim = 50;
        s.accessibility = acccap;
    }
    if (ls.verbose()) printiterationstart(run, s);
    if (s.status != 0) {
        status = s.status;
        s.lastgood = false;
        return false;
    }
    const real slim = s.slim;

    Trial a, b;
    Trial accepted;
    bool found = false;  // an acceptable point, in `accepted`
    bool narrow = false;
    bool ranout = false;

    a.t = slim <= 1.0L ? 0.9L * slim : 1.0L;
    if (!ls.take(a, 1)) {
        ls.restore(a);
        step = a.t;
        return true;
    }
    const bool agood = ls.good(a, true);
    ls.show(firstlead(s.accessibility), a);
    if (agood) {
        accepted = a;
        found = true;
    } else if (a.slope >= 0.0L || a.f > s.f0) {
        // The minimum lies before the first trial.
        b = a;
        a = Trial{};
        a.t = 0;
        a.f = s.f0;
        a.slope = s.s0;
        narrow = true;
    } else {
        // f still falls at the first trial: go towards the limit.
        bool bgood = false;
        switch (s.accessibility) {
        case accwindow:
        case accmode:
        case acccap:
        case acccomp: {
            b.t = (s.accessibility == acccomp ? 0.99999L : 0.9999999999L) * slim;
            if (!ls.take(b, 2)) {
                ls.restore(b);
                step = b.t;
                return true;
            }
            bgood = ls.good(b, false) || (b.slope < 0.0L && b.f < a.f);
            ls.show("a", b);
            if (!bgood) narrow = true;
            break;
        }
        case accinaccessible: {
            // The limit may not be reached: extend towards it in steps that
            // close on it geometrically.
            b = a;
            for (int round = 1; round <= 10; ++round) {
                const real longer = 5.0L * b.t, closer = b.t + 0.9L * (slim - b.t);
                b = Trial{};
                b.t = longer < closer ? longer : closer;
                if (!ls.take(b, 4)) {
                    ls.restore(b);
                    step = b.t;
                    return true;
                }
                const bool g = ls.good(b, false);
                ls.show("i", b);
                if (g) {
                    bgood = true;
                    break;
                }
                // The tenth extension: still falling counts as good; rising
                // there means the extension has run out, even though a..b
                // would bracket the minimum.
                if (round == 10) {
                    if (b.slope < 0.0L)
                        bgood = true;
                    else
                        ranout = true;
                    break;
                }
                if (b.slope >= 0.0L || b.f > a.f) {
                    narrow = true;  // a..b brackets the minimum
                    break;
                }
                a = b;
            }
            break;
        }
        default:
            bomb("steplength", "unknown accessibility", 1);
        }
        if (bgood) {
            accepted = a.f <= b.f ? a : b;
            found = true;
        }
    }

    if (ranout) {
        s.status = status = 2;
        ls.restore(b);
        s.lastgood = false;
        return false;
    }

    if (narrow) {
        // Safeguarded cubic interpolation inside a..b.
        for (int round = 1; round <= 10; ++round) {
            real r1 = 0, r2 = 0;
            cubic(a.t, a.f, a.slope, b.t, b.f, b.slope, r1, r2);
            real t;
            if (within(r1, a.t, b.t)) {
                t = r1;
            } else if (within(r2, a.t, b.t)) {
                t = r2;
            } else {
                putstr(run.io, 0, "1: " + nlenumber(r1), 1, chall);
                putstr(run.io, 0, "2: " + nlenumber(r2), 1, chall);
                putstr(run.io, 0, "a,b:" + nlenumber(a.t) + " " + nlenumber(b.t), 1, chall);
                bomb("steplength", "neither in interval", 1);
            }
            const real D = b.t - a.t;
            real lo, hi;
            if (a.f <= b.f) {
                lo = a.t + 0.1L * D;
                hi = a.t + 0.5L * D;
            } else {
                lo = a.t + 0.5L * D;
                hi = a.t + 0.9L * D;
            }
            if (t < lo) t = lo;
            if (t > hi) t = hi;
            Trial c;
            c.t = t;
            if (!ls.take(c, 5)) {
                ls.restore(c);
                step = c.t;
                return true;
            }
            const bool g = ls.good(c, false);
            if (ls.verbose()) {
                const char* mark = c.converged                ? "*"
                                   : c.decrease && c.flat     ? "g"
                                   : c.flat                   ? "p"
                                   : c.decrease               ? "f"
                                                              : " ";
                ls.show(std::string("b") + mark, c);
            }
            if (round == 10) {
                accepted = c;
                if (g || c.decrease)
                    found = true;
                else
                    s.status = status = 3;
                break;
            }
            if (g) {
                accepted = c;
                found = true;
                break;
            }
            if (c.slope > 0.0L || (c.slope < 0.0L && c.f > a.f))
                b = c;
            else
                a = c;
        }
    }

    // Steps not reduced are judged by the tests of the point accepted, the
    // same tests that decide the convergence flags kept with it.
    ls.restore(accepted);
    step = accepted.t;
    const bool reduced = accepted.converged || (accepted.decrease && accepted.flat);
    s.lastgood = reduced;
    if (status == 0 && found) {
        s.notreduced = reduced ? 0 : s.notreduced + 1;
        if (s.notreduced >= 3) s.status = status = 4;
    }
    return status == 0 && accepted.converged;
}

}  // namespace sm
