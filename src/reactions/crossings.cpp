// Where reaction lines cross: between two neighbouring values of the
// listed axis the order of two lines changes; the crossing is found on
// straight segments and then refined on the reactions themselves.
#include <algorithm>
#include <cmath>
#include <string>

#include "console/runended.h"
#include "reactions/intersectionwork.h"
#include "reactions/reactionthermo.h"
#include "run.h"
#include "script/windows.h"

namespace sm {

namespace {

struct Segments {
    real xlo = 0, xhi = 0;
    real y1lo = 0, y1hi = 0, y2lo = 0, y2hi = 0;
};

Segments setupptx(const IntersectionWork& w, int r1, int a, int r2, int b, int j) {
    Segments s;
    s.xlo = w.list[j - 1];
    s.xhi = w.list[j];
    s.y1lo = w.root(r1, a, j - 1);
    s.y1hi = w.root(r1, a, j);
    s.y2lo = w.root(r2, b, j - 1);
    s.y2hi = w.root(r2, b, j);
    return s;
}

bool intersectlines(const Segments& s, real& x, real& y) {
    const real d = s.xhi - s.xlo;
    if (!(std::fabs(d / s.xhi) > 1e-10L)) return false;
    const real s1 = (s.y1hi - s.y1lo) / d, c1 = (s.y1lo * s.xhi - s.y1hi * s.xlo) / d;
    const real s2 = (s.y2hi - s.y2lo) / d, c2 = (s.y2lo * s.xhi - s.y2hi * s.xlo) / d;
    if (!(std::fabs(s2 - s1) >= 1e-10L)) return false;
    x = -(c2 - c1) / (s2 - s1);
    y = c1 + x * s1;
    return true;
}

// Do the segments of two lines between j-1 and j change order?
bool linescross(const IntersectionWork& w, int r1, int a, int r2, int b, int j) {
    const bool before = w.root(r1, a, j - 1) < w.root(r2, b, j - 1);
    const bool after = w.root(r1, a, j) < w.root(r2, b, j);
    return before != after;
}

void setlim(const Run& run, real& tolx, real& toly) {
    const Windows& w = run.script.win;
    switch (w.diagrammode) {
    case dmPT:
        if (w.calcvariable == axisP) {
            tolx = 0.5L;
            toly = 0.01L;
        } else if (w.calcvariable == axisT) {
            tolx = 0.01L;
            toly = 0.5L;
        } else {
            bomb("setlim", "unknown calcvariable", 1);
        }
        return;
    case dmPx: tolx = 0.001L; toly = 0.01L; return;
    case dmTx: tolx = 0.001L; toly = 0.5L; return;
    case dmPlna: tolx = 0.001L; toly = 0.01L; return;
    case dmTlna: tolx = 0.001L; toly = 0.5L; return;
    case dmPmu: tolx = 0.01L; toly = 0.01L; return;
    case dmTmu: tolx = 0.01L; toly = 0.5L; return;
    default: bomb("setlim", "unknown diagrammode", 1);
    }
}

real findmedian(std::vector<real> v) {
    if (v.empty()) bomb("findmedian", "zero length list", 0);
    std::sort(v.begin(), v.end());
    const size_t n = v.size();
    return n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

void report(Run& run, const IntersectionWork& w, const Crossing& c, const std::string& why) {
    std::string text = "finding the intersection : " + why + " ( involving reactions: ";
    for (const auto& [r, root] : c.lines) text += std::to_string(w.reaction[r]) + " ";
    putstr(run.io, 1, text + ")", 1, chall);
}

}  // namespace

bool crossingsearch(Run& run, IntersectionWork& w) {
    const int type = windowtype(run);
    for (int r = 1; r <= w.n; ++r)
        for (int j = 1; j <= w.nlist; ++j) {
            w.in1[r][j] = inrange(run, type, w.v1[r][j]);
            w.in2[r][j] = inrange(run, type, w.v2[r][j]);
            w.cross1[r][j] = w.cross2[r][j] = false;
        }
    bool any = false;
    for (int r1 = 1; r1 <= w.n; ++r1)
        for (int r2 = r1 + 1; r2 <= w.n; ++r2)
            for (int a = 1; a <= 2; ++a)
                for (int b = 1; b <= 2; ++b) {
                    bool first = true, above = false;
                    for (int j = 1; j <= w.nlist; ++j) {
                        if (!w.in(r1, a, j) || !w.in(r2, b, j)) {
                            first = true;
                            continue;
                        }
                        const real y1 = w.root(r1, a, j), y2 = w.root(r2, b, j);
                        bool crossed = false;
                        if (first)
                            first = false;
                        else
                            crossed = above != (y1 < y2);
                        above = y1 < y2;
                        if (crossed) {
                            any = true;
                            (a == 1 ? w.cross1 : w.cross2)[r1][j] = true;
                            (b == 1 ? w.cross1 : w.cross2)[r2][j] = true;
                            first = true;
                        }
                    }
                }
    return any;
}

Crossing calcptx(Run& run, IntersectionWork& w) {
    Crossing c;
    int j = 0, r = 0;
    for (int jj = 1; jj <= w.nlist && j == 0; ++jj)
        for (int q = 1; q <= w.n && j == 0; ++q)
            if (w.cross1[q][jj] || w.cross2[q][jj]) {
                j = jj;
                r = q;
            }
    if (j == 0) return c;
    c.found = true;

    int r2 = 0;
    for (int q = r; q <= w.n && r2 == 0; ++q)
        if (w.cross1[q][j] && w.cross2[q][j]) r2 = q;
    if (r2 == 0) {
        for (int q = r; q <= w.n; ++q) {
            if (w.cross1[q][j]) {
                c.lines.push_back({q, 1});
                w.cross1[q][j] = false;
            } else if (w.cross2[q][j]) {
                c.lines.push_back({q, 2});
                w.cross2[q][j] = false;
            }
        }
    } else {
        // Both roots of r2 cross here: its first root goes with the lines
        // that its segment cuts.
        w.cross1[r2][j] = false;
        c.lines.push_back({r2, 1});
        for (int q = r; q <= w.n; ++q) {
            if (q == r2) continue;
            if (w.cross1[q][j] && w.cross2[q][j]) {
                if (linescross(w, r2, 1, q, 1, j)) {
                    c.lines.push_back({q, 1});
                    w.cross1[q][j] = false;
                } else {
                    c.lines.push_back({q, 2});
                    w.cross2[q][j] = false;
                }
            } else if (w.cross1[q][j] && linescross(w, r2, 1, q, 1, j)) {
                c.lines.push_back({q, 1});
                w.cross1[q][j] = linescross(w, r2, 2, q, 1, j);
            } else if (w.cross2[q][j] && linescross(w, r2, 1, q, 2, j)) {
                c.lines.push_back({q, 2});
                w.cross2[q][j] = linescross(w, r2, 2, q, 2, j);
            }
        }
    }
    if (c.lines.size() < 2) bomb("calcptx", "too few reactions", 0);

    // Every pair's straight-line crossing; their median is where the
    // bundle meets.
    std::vector<real> xs, ys;
    for (size_t p = 0; p < c.lines.size() && xs.size() < 5000; ++p)
        for (size_t q = p + 1; q < c.lines.size() && xs.size() < 5000; ++q) {
            real x, y;
            const Segments s =
                setupptx(w, c.lines[p].first, c.lines[p].second, c.lines[q].first, c.lines[q].second, j);
            if (intersectlines(s, x, y)) {
                xs.push_back(x);
                ys.push_back(y);
            }
        }
    c.x = findmedian(xs);
    c.y = findmedian(ys);

    // Refine on the first two reactions by false position on the listed
    // axis, the solved values found anew at each trial.
    const auto [A, a] = c.lines[0];
    const auto [B, b] = c.lines[1];
    Segments s = setupptx(w, A, a, B, b, j);
    const real bracketlo = s.xlo, brackethi = s.xhi;
    real tolx, toly;
    setlim(run, tolx, toly);
    real px = 1e10L, py = 1e10L, x = 0, y = 0;
    std::string why = "iteration did not converge";
    bool converged = false;
    for (int round = 1; round <= 6 && !converged; ++round) {
        if (!intersectlines(s, x, y)) {
            why = "divide by zero";
            break;
        }
        converged = std::fabs(x - px) < tolx && std::fabs(y - py) < toly;
        if (converged) break;
        PtxPoint p = currentpoint(run);
        setiptx(run, p, x, y);
        if (x < std::min(bracketlo, brackethi) || x > std::max(bracketlo, brackethi)) {
            why = "iteration went outside bracket - it shouldn't !!";
            break;
        }
        real yA = y, yB = y, v2, dP, dT;
        solveat(run, w.reaction[A], p, true, yA, v2, dP, dT);
        solveat(run, w.reaction[B], p, true, yB, v2, dP, dT);
        if ((yA < yB) == (s.y1hi < s.y2hi)) {
            s.xhi = x;
            s.y1hi = yA;
            s.y2hi = yB;
        } else {
            s.xlo = x;
            s.y1lo = yA;
            s.y2lo = yB;
        }
        px = x;
        py = y;
    }
    c.converged = converged;
    if (converged) {
        c.x = x;
        c.y = y;
    } else {
        c.x = c.y = 1e21L;
        report(run, w, c, why);
    }
    return c;
}

}  // namespace sm
