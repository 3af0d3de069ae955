#include "solver/nleprint.h"

#include <cmath>

#include "console/format.h"
#include "console/scan.h"
#include "solver/unknowns.h"

namespace sm {

namespace {

constexpr int fieldwidth = 11;

const char* accessibilityletter(int code) {
    switch (code) {
    case accwindow: return "w";
    case acccomp: return "x";
    case accmode: return "p";
    case acccap: return "m";
    default: return "i";
    }
}

// One line of an iteration table: a lead of 4 and five numbers.
std::string tableline(std::string_view lead, real f, real slope, real step, real maxe, real maxdx) {
    std::string line;
    putfield(lead, -4, line);
    putfield(nlenumber(f), fieldwidth, line);
    putfield(nlenumber(slope), fieldwidth, line);
    putfield(step == 1.0L ? std::string("1") : nlenumber(step), fieldwidth, line);
    putfield(nlenumber(maxe), fieldwidth, line);
    putfield(maxdx == 0.0L || maxdx == 100.0L ? std::string("0") : nlenumber(maxdx), fieldwidth,
             line);
    return line;
}

}  // namespace

std::string nlenumber(real value) { return real2str(value, 4, false); }

// Long vectors are broken into several pairs of rows, so that no line is cut
// at the length of a text line.
void printxrows(Run& run, const SolverState& s, const NleVector& x, int from, int to, int perrow,
                int lead, int pdec, int tdec, int odec, bool modesperphi) {
    for (int first = from; first <= to; first += perrow) {
        const int last = first + perrow - 1 < to ? first + perrow - 1 : to;
        std::string names = blanks(lead), values = blanks(lead);
        for (int i = first; i <= last; ++i) {
            putfield(s.xname[i], 10, names);
            real v = truevalue(s, x, i);
            int dec = odec;
            if (i == 1) {
                dec = pdec;
            } else if (i == 2) {
                v -= 273.15L;
                dec = tdec;
            } else if (i > s.nx && modesperphi) {
                v /= s.phi;
            }
            putreal(dec, true, 10, values, v);
        }
        putstr(run.io, 0, names, 1, chall);
        putstr(run.io, 0, values, 1, chall);
    }
}

void printiterationheading(Run& run) {
    putstr(run.io, 0, std::string(59, '-'), 1, chall);
    std::string line;
    putfield("", 4, line);
    for (const char* h : {"f", "slope", "step", "maxe", "maxdx"}) putfield(h, fieldwidth, line);
    putstr(run.io, 0, line, 1, chall);
}

void printiteration(Run& run, const SolverState& s, real step) {
    std::string line =
        tableline(s.lastgood ? "*" : "*#", s.f, s.slope, step, s.maxe, s.maxdx);
    if (s.singular) line += "  singular";
    putstr(run.io, 0, line, 1, chall);
}

void printiterationstart(Run& run, const SolverState& s) {
    std::string line = tableline("0", s.f0, s.s0, s.slim, s.maxe, s.maxdx);
    line += "  ";
    line += accessibilityletter(s.accessibility);
    line += "  cond = " + nlenumber(s.cond);
    if (s.singular) line += "  singular";
    putstr(run.io, 0, line, 1, chall);
}

void printtrial(Run& run, const SolverState& s, std::string_view lead, real step) {
    putstr(run.io, 0, tableline(lead, s.f, s.slope, step, s.maxe, s.maxdx), 1, chall);
}

void printnleresult(Run& run, const SolverState& s, int result) {
    if (result == 0) {
        const char* why = s.esizeok   ? "size of max residual (esize)"
                          : s.fsizeok ? "size of sum of squares of residual (fsize)"
                                      : "step too small near solution (dxconverge)";
        putstr(run.io, 0, why, 1, chall);
        return;
    }
    const char* reason = "";
    switch (result) {
    case 1: reason = "   step too small distant from solution (dxstop)"; break;
    case 2: reason = "   too many iterations (overit)"; break;
    case 4: reason = "   too many iterations in finding interval in steplength"; break;
    case 5: reason = "   too many iterations in finding value in interval in steplength"; break;
    case 6: reason = "   sequence of not reduced (at accessible boundary) in steplength"; break;
    case 7: reason = "   slim too small (on edge looking out?)"; break;
    case 10: reason = "   shouldn't get here"; break;
    default: break;
    }
    putstr(run.io, 0, "No solution (" + std::to_string(result) + "):" + reason, 1, chall);
    putstr(run.io, 0, "at which stage x was:", 1, chall);
    printxrows(run, s, s.x, 1, s.nx, 15, 0, 4, 4, 4, false);
    if (s.nm > 0) printxrows(run, s, s.x, s.nx + 1, s.nx + s.nm, 15, 20, 4, 4, 4, true);
    putstr(run.io, 0, std::string(54, '_'), 2, chall);
}

}  // namespace sm
