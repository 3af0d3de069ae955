// Invariant points of a mode 3 run: every registered intersection is
// searched for crossings of its reaction lines in the table, each crossing
// refined into a point, tested for Schreinemakers stability and printed
// with the bundle of its reactions.
#include <cmath>
#include <memory>
#include <string>

#include "console/format.h"
#include "console/runended.h"
#include "console/scan.h"
#include "reactions/intersectionwork.h"
#include "reactions/ptxtables.h"
#include "reactions/reactionthermo.h"
#include "reactions/tablecells.h"
#include "run.h"
#include "script/windows.h"
#include "thermo/constants.h"
#include "thermo/gem.h"

namespace sm {

namespace {

const std::string degC = "\xA1" "C";

std::string needed(real v) { return real2str(v, decimalsneeded(v), true); }

// A computed coordinate on the listed axis: no more decimals than the
// convergence of the point supports.
std::string pointvalue(real v, int most) {
    const int d = decimalsneeded(v);
    return real2str(v, d < most ? d : most, true);
}

std::string axisword(const Run& run) { return run.script.activities.setlogaflag == 0 ? "log a" : "ln a"; }

void heading(Run& run) {
    const Windows& w = run.script.win;
    const sstring& rock = run.script.rock.rockname;
    const std::string of = rock.empty() ? "of intersections" : "of intersections for " + rock;
    const std::string name = w.axisname;
    const std::string P = real2str(w.P, 1, true), T = int2str(w.T - kelvin0);
    const std::string Pwin = "window : P " + real2str(w.calcP.lo, 1, true) + " <-> " +
                             real2str(w.calcP.hi, 1, true) + " kbars; ";
    const std::string Twin =
        "window : T " + int2str(w.calcT.lo - kelvin0) + " <-> " + int2str(w.calcT.hi - kelvin0) + degC + "; ";
    auto range = [](const Window& win) { return needed(win.lo) + " <-> " + needed(win.hi); };
    std::string title, window;
    switch (w.diagrammode) {
    case dmPT:
        title = "P-T " + of;
        fluidlabel(run, title);
        window = "window : P " + real2str(w.calcP.lo, 1, true) + " <-> " + real2str(w.calcP.hi, 1, true) +
                 " kbars; T " + int2str(w.calcT.lo - kelvin0) + " <-> " + int2str(w.calcT.hi - kelvin0) + degC;
        break;
    case dmPx:
        title = "P-x(CO2)  " + of + " : T = " + T + degC;
        window = Pwin + "x(CO2) " + range(w.xco2window);
        break;
    case dmTx:
        title = "T-x(CO2)  " + of + " : P = " + P + " kbar";
        window = Twin + "x(CO2) " + range(w.xco2window);
        break;
    case dmPlna:
        title = "P-x(" + name + ")  " + of + "  : T = " + T + degC;
        window = Pwin + axisword(run) + "(" + name + ") " + range(w.lnawindow);
        break;
    case dmTlna:
        title = "T-a(" + name + ")  " + of + " : P = " + P + " kbar";
        window = Twin + axisword(run) + "(" + name + ") " + range(w.lnawindow);
        break;
    case dmPmu:
        title = "P-\xB5(" + name + ")  " + of + " : T = " + T + degC;
        window = Pwin + "\xB5(" + name + ") " + range(w.muwindow);
        break;
    case dmTmu:
        title = "T-\xB5(" + name + ")  " + of + " : P = " + P + " kbar";
        window = Twin + "\xB5(" + name + ") " + range(w.muwindow);
        break;
    default: bomb("intersections", "unknown diagrammode", 1);
    }
    putstr(run.io, 1, title, 1, chall);
    putstr(run.io, 0, window, 1, chall);
    const ReactionStore& rs = run.reactions;
    if (rs.ninexcess > 0) {
        std::string line = "in excess : ";
        for (int e = rs.nemp + 1; e <= run.store.nem; ++e) line += run.store.emname[e] + " ";
        putstr(run.io, 0, line, 1, chall);
    }
}

// Is the point inside the window, list value and solved value each by its
// own axis?
bool pointinwindow(const Run& run, real x, real y) {
    const Windows& w = run.script.win;
    int tx = 0, ty = 0;
    switch (w.diagrammode) {
    case dmPT:
        if (w.calcvariable == axisP) {
            tx = 0;
            ty = 1;
        } else if (w.calcvariable == axisT) {
            tx = 1;
            ty = 0;
        } else {
            bomb("intersections", "unknown calcvariable", 1);
        }
        break;
    case dmPx: tx = 2; ty = 1; break;
    case dmTx: tx = 2; ty = 0; break;
    case dmPlna: tx = 3; ty = 1; break;
    case dmTlna: tx = 3; ty = 0; break;
    case dmPmu: tx = 4; ty = 1; break;
    case dmTmu: tx = 4; ty = 0; break;
    default: bomb("intersections", "unknown diagrammode", 1);
    }
    return inrange(run, tx, x) && inrange(run, ty, y);
}

void pointline(Run& run, const PtxPoint& p, real sdP, real sdT, real cor) {
    const Windows& w = run.script.win;
    const std::string P = Pcell(run, p.P), T = Tcell(run, p.T);
    const std::string name = w.axisname;
    std::string line;
    switch (w.diagrammode) {
    case dmPT:
        line = "P = " + P + " kbar (sd = " + real2str(sdP, 1, true) + "), T = " + T + " " + degC +
               " (sd = " + int2str(sdT) + "), (cor = " + real2str(cor, 3, true) + ")";
        break;
    case dmPx: line = "P = " + P + " kbar, x(CO2) = " + pointvalue(p.xco2, 3); break;
    case dmTx: line = "T = " + T + " " + degC + " , x(CO2) = " + pointvalue(p.xco2, 3); break;
    case dmPlna:
        line = "P = " + P + "kbar ," + axisword(run) + "(" + name + ") = " + pointvalue(p.lna, 3);
        break;
    case dmTlna:
        line = "T = " + T + " " + degC + "," + axisword(run) + "(" + name + ") = " + pointvalue(p.lna, 3);
        break;
    case dmPmu: line = "P = " + P + "kbar ,\xB5(" + name + ") = " + pointvalue(p.mu, 2); break;
    default: line = "T = " + T + " " + degC + ",\xB5(" + name + ") = " + pointvalue(p.mu, 2); break;
    }
    putstr(run.io, 0, line, 1, chall);
}

}  // namespace

void intersectionptx(Run& run, int rA, int rB, const PtxPoint& point, real& sdP, real& sdT, real& cor) {
    if (run.script.win.diagrammode != dmPT) return;
    const EndMemberStore& s = run.store;
    real aA, bA, aB, bB;
    {
        real T1 = point.T, T2, dP2, dT2;
        findT(run, rA, true, T1, T2, aA, dP2, point.P, point.xco2, point.xh2o, bA, dT2);
        T1 = point.T;
        findT(run, rB, true, T1, T2, aB, dP2, point.P, point.xco2, point.xh2o, bB, dT2);
    }
    setvarlna(run);
    const real e = 1 / (aA / bA - aB / bB);
    const real f = 1 / (bA / aA - bB / aB);
    real g[2] = {-e / bA, e / bB};
    real h[2] = {-f / aA, f / aB};
    const auto& A = s.r[rA];
    const auto& B = s.r[rB];
    real V[2][2] = {{0, 0}, {0, 0}};
    for (int i = 1; i <= s.nem; ++i)
        for (int j = 1; j <= s.nem; ++j) {
            const real cij = s.covat(i, j);
            if (cij == 0) continue;
            V[0][0] += A[i] * cij * A[j];
            V[1][1] += B[i] * cij * B[j];
            V[0][1] += A[i] * cij * B[j];
        }
    V[1][0] = V[0][1];
    auto quad = [&](const real* u, const real* v) {
        return u[0] * (V[0][0] * v[0] + V[0][1] * v[1]) + u[1] * (V[1][0] * v[0] + V[1][1] * v[1]);
    };
    real varP = quad(g, g), varT = quad(h, h), covPT = quad(h, g);
    V[0][0] = V[1][1] = V[0][1] = 0;
    for (int i = 1; i <= s.nem; ++i) {
        const real va = run.reactions.varlna[i];
        V[0][0] += A[i] * A[i] * va;
        V[1][1] += B[i] * B[i] * va;
        V[0][1] += A[i] * B[i] * va;
    }
    V[1][0] = V[0][1];
    const real RT = Rgas * point.T;
    for (int k = 0; k < 2; ++k) {
        g[k] *= RT;
        h[k] *= RT;
    }
    varP += quad(g, g);
    varT += quad(h, h);
    covPT += quad(h, g);
    sdP = varP > 0 ? std::sqrt(varP) : 0;
    sdT = varT > 0 ? std::sqrt(varT) : 0;
    cor = sdP > 0 && sdT > 0 ? covPT / (sdP * sdT) : 0;
    if (!std::isfinite(cor)) cor = 0;
}

void intersections(Run& run) {
    ReactionStore& rs = run.reactions;
    const Windows& w = run.script.win;
    heading(run);
    rs.points.clear();
    std::vector<bool> shown(rs.nir + 1, false);
    auto work = std::make_unique<IntersectionWork>();
    work->list = listvalues(run, "intersections");
    work->nlist = std::min(static_cast<int>(work->list.size()) - 1, rs.nlist);
    int counted = 0;
    const int variable = w.calcvariable;
    for (int i = 1; i <= rs.nint && work->nlist > 0; ++i) {
        const int n = rs.intcount[i];
        if (n > maxintreactions)
            bomb("intersections", "too many reactions in intersection (max = 28) ", 0);
        work->n = n;
        for (int k = 1; k <= n; ++k) {
            const int q = rs.intreaction[i][k];
            work->reaction[k] = q;
            work->v1[k] = rs.v1[q];
            work->v2[k] = rs.v2[q];
        }
        enlargewindow(run, variable);
        if (!crossingsearch(run, *work)) {
            restorewindow(run, variable);
            continue;
        }
        while (true) {
            const Crossing c = calcptx(run, *work);
            restorewindow(run, variable);
            if (!c.found) break;
            if (!c.converged || !pointinwindow(run, c.x, c.y)) continue;
            ++counted;
            PtxPoint p = currentpoint(run);
            setiptx(run, p, c.x, c.y);
            const bool stable = stablepoint(run, i, p);
            printpoint(run, i, c, *work, p, stable);
            real sdP = 0, sdT = 0, cor = 0;
            intersectionptx(run, work->reaction[c.lines[0].first], work->reaction[c.lines[1].first], p,
                            sdP, sdT, cor);
            pointline(run, p, sdP, sdT, cor);
            ReactionStore::InvariantPoint ip;
            ip.intersection = i;
            ip.stable = stable;
            ip.P = p.P;
            ip.T = p.T;
            ip.xco2 = p.xco2;
            ip.lna = p.lna;
            ip.mu = p.mu;
            ip.sdP = sdP;
            ip.sdT = sdT;
            ip.cor = cor;
            for (const auto& line : c.lines) ip.reactions.push_back(work->reaction[line.first]);
            rs.points.push_back(ip);
            for (int k = 1; k <= n; ++k) shown[work->reaction[k]] = true;
        }
    }
    if (counted == 0) putstr(run.io, 1, "sorry, none in the window", 1, chall);
    rstable(run, shown);
}

}  // namespace sm
