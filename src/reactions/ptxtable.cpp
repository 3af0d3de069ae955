// The table of reaction positions: one pair of rows per reaction (a line
// can cross the window twice), one column per value of the listed axis, and
// the uncertainties of each row at a reference column.
#include <cmath>
#include <string>

#include "console/format.h"
#include "console/runended.h"
#include "reactions/ptxpoint.h"
#include "reactions/ptxtables.h"
#include "reactions/reactionthermo.h"
#include "reactions/tablecells.h"
#include "run.h"
#include "script/windows.h"
#include "thermo/gem.h"

namespace sm {

namespace {

const std::string degC = "\xA1" "C";

struct Layout {
    std::vector<real> list;  // 1-based
    int nlist = 0;
    std::vector<bool> shown;
    int width = 0;
    int j0 = 0;
    bool solvingP = true;
};

int middleindex(int nlist) { return nlist / 2 < 1 ? 1 : nlist / 2; }

std::string axislabel(const Run& run) {
    const bool base10 = run.script.activities.setlogaflag == 0;
    return base10 ? "log a" : "ln a";
}

int cellwidth(const Run& run, bool solvingP) {
    const Windows& w = run.script.win;
    const int wsP = w.Pdecimals - 3;
    const int wsT = w.Tdecimals - 2 + (w.Tdecimals != 0 ? 1 : 0);
    const int ws = solvingP ? wsP : wsT;
    int wl = 0;
    switch (w.othervariable) {
    case axisP: wl = wsP; break;
    case axisT: wl = wsT; break;
    case axisx: wl = w.xdecimals - 2; break;
    case axisa: wl = w.lnadecimals; break;
    default: wl = w.mudecimals + 2; break;
    }
    return 7 + std::max(ws, wl);
}

void title(Run& run, const Layout& L) {
    const Windows& w = run.script.win;
    const sstring& rock = run.script.rock.rockname;
    std::string t;
    if (L.solvingP) {
        t = rock.empty() ? "Prsessures" : "Pressures for " + rock;
        t += " in the range " + real2str(w.calcP.lo, 1, true) + " <-> " + real2str(w.calcP.hi, 1, true) +
             "kbar;  ";
    } else {
        t = rock.empty() ? "Temperatures" : "Temperatures for " + rock;
        t += " in the range " + int2str(w.calcT.lo - kelvin0) + " <-> " + int2str(w.calcT.hi - kelvin0) +
             degC + ";  ";
    }
    switch (w.diagrammode) {
    case dmPT: fluidlabel(run, t); break;
    case dmPx: case dmPlna: case dmPmu: t += "for T = " + int2str(w.T - kelvin0) + degC; break;
    default: t += "for P = " + real2str(w.P, 1, true) + " kbar"; break;
    }
    putstr(run.io, 1, t, 1, chall);

    std::string u;
    const real mid = L.list[middleindex(L.nlist)];
    switch (w.othervariable) {
    case axisP: u = "uncertainties at " + listcell(run, L.list[L.j0]) + " kbars "; break;
    case axisT: u = "uncertainties at " + listcell(run, L.list[L.j0]) + degC + " "; break;
    case axisx: u = "uncertainties at or near x(CO2) = " + listcell(run, mid); break;
    case axisa:
        u = "uncertainties at or near " + axislabel(run) + "(" + w.axisname + ") " + listcell(run, mid);
        break;
    default: u = "uncertainties at or near \xB5(" + w.axisname + ") " + listcell(run, mid); break;
    }
    putstr(run.io, 0, u, 1, chall);
}

void header(Run& run, const Layout& L) {
    const Windows& w = run.script.win;
    std::string line;
    switch (w.othervariable) {
    case axisP: putfield("T" + degC, -6, line); break;
    case axisT: putfield("P(kbar)", -6, line); break;
    case axisx: putfield("x(CO2)", -6, line); break;
    case axisa: putfield(axislabel(run), -6, line); break;
    default: putfield("\xB5", -6, line); break;
    }
    for (int j = 1; j <= L.nlist; ++j)
        if (L.shown[j]) putfield(listcell(run, L.list[j]), L.width, line);
    if (w.othervariable == axisP || w.othervariable == axisT) {
        putfield("sdT", L.width, line);
        putfield("sdP", L.width, line);
    } else {
        putfield(L.solvingP ? "sdP" : "sdT", L.width, line);
    }
    putstr(run.io, 1, line, 2, chall);
}

// The column nearest the reference column with a root of this row in the
// window; 0 when there is none.
int uncertaintycolumn(const Run& run, const Layout& L, const ReactionStore::RootRow& r) {
    const int type = windowtype(run);
    if (inrange(run, type, r[L.j0])) return L.j0;
    int down = 0, up = 0;
    for (int j = L.j0 - 1; j >= 1 && down == 0; --j)
        if (inrange(run, type, r[j])) down = j;
    for (int j = L.j0 + 1; j <= L.nlist && up == 0; ++j)
        if (inrange(run, type, r[j])) up = j;
    if (down && up) return (L.j0 - down < up - L.j0) ? down : up;
    return down ? down : up;
}

void uncertaintycells(Run& run, const Layout& L, int n, bool firstrow, const ReactionStore::RootRow& r,
                      std::string& line) {
    const Windows& w = run.script.win;
    const int j = uncertaintycolumn(run, L, r);
    if (j == 0) return;
    setvarlna(run);
    PtxPoint p = currentpoint(run);
    setiptx(run, p, L.list[j], 0);
    real v1, v2, sd1, sd2, s1, s2;
    if (L.solvingP)
        sdofP(run, n, v1, v2, sd1, sd2, s1, p.T, p.xco2, p.xh2o, s2);
    else
        sdofT(run, n, v1, v2, sd1, sd2, s1, p.P, p.xco2, p.xh2o, s2);
    const int type = windowtype(run);
    const bool in1 = inrange(run, type, v1), in2 = inrange(run, type, v2);
    if (!in1 && !in2) return;
    const bool first = in1 && (!in2 || std::fabs(v1 - r[j]) <= std::fabs(v2 - r[j]));
    const real v = first ? v1 : v2, sd = first ? sd1 : sd2;
    const bool precise = firstrow && first;
    real dGdP = 0, dGdT = 0, dG;
    if (L.solvingP) {
        if (w.othervariable == axisT) {
            calcdg(run, n, dGdP, dGdT, dG, v, p.T, p.xco2, p.xh2o);
            if (std::fabs(sd * dGdP) > std::fabs(1000 * dGdT))
                putfield("+", L.width, line);
            else
                putint(L.width, line, std::fabs(sd * dGdP / dGdT));
        }
        putreal(2, true, L.width, line, std::fabs(sd));
    } else {
        if (sd >= 32767)
            putfield("+", L.width, line);
        else if (precise)
            putreal(1, true, L.width, line, sd);
        else
            putint(L.width, line, sd);
        if (w.othervariable == axisP) {
            calcdg(run, n, dGdP, dGdT, dG, p.P, v, p.xco2, p.xh2o);
            if (std::fabs(sd * dGdT) > std::fabs(100 * dGdP))
                putfield("+", L.width, line);
            else
                putreal(2, precise, L.width, line, std::fabs(sd * dGdT / dGdP));
        }
    }
}

}  // namespace

std::vector<bool> shownlistcolumns(int nlist) {
    std::vector<bool> shown(nlist + 1, false);
    if (nlist < 21) {
        for (int j = 1; j <= nlist; ++j) shown[j] = true;
    } else {
        const int step = nlist / 20 + (nlist % 20 != 0 ? 1 : 0);
        for (int j = 1; j <= nlist; ++j) shown[j] = (j - 1) % step == 0;
        shown[nlist] = true;
    }
    return shown;
}

void ptxtable(Run& run) {
    ReactionStore& rs = run.reactions;
    const Windows& w = run.script.win;
    Layout L;
    L.solvingP = windowtype(run) == 1;
    const real ylo = L.solvingP ? w.calcP.lo : w.calcT.lo;
    const real yhi = L.solvingP ? w.calcP.hi : w.calcT.hi;
    L.list = listvalues(run, "ptxtable");
    L.nlist = static_cast<int>(L.list.size()) - 1;
    if (L.nlist > maxlistvalues) L.nlist = maxlistvalues;
    rs.nlist = L.nlist;

    L.shown = shownlistcolumns(L.nlist);

    for (int n = 1; n <= rs.nir; ++n) putstr(run.io, n == 1 ? 1 : 0, rs.reactionname[n], 1, chall);

    L.width = cellwidth(run, L.solvingP);
    if (w.diagrammode == dmPT || w.diagrammode == dmPx || w.diagrammode == dmTx) thermotable(run);

    // The reference column of the uncertainties.
    L.j0 = 0;
    if (w.othervariable == axisP || w.othervariable == axisT) {
        const real current = w.othervariable == axisP ? w.P : w.T;
        for (int j = 1; j <= L.nlist && L.j0 == 0; ++j)
            if (L.list[j] >= current) L.j0 = j;
    } else if (L.nlist > 0) {
        const real mid = L.list[middleindex(L.nlist)];
        for (int j = 1; j <= L.nlist && L.j0 == 0; ++j)
            if (L.list[j] >= mid) L.j0 = j;
    }
    if (L.j0 == 0) L.j0 = L.nlist;
    if (L.nlist == 0) return;

    title(run, L);
    header(run, L);

    setlnKbase(run);
    const int variable = w.calcvariable;
    for (int n = 1; n <= rs.nir; ++n) {
        auto& r1 = rs.v1[n];
        auto& r2 = rs.v2[n];
        enlargewindow(run, variable);
        for (int j = 1; j <= L.nlist; ++j) {
            PtxPoint p = currentpoint(run);
            setiptx(run, p, L.list[j], 0);
            real dGdP, dGdT;
            solveat(run, n, p, false, r1[j], r2[j], dGdP, dGdT);
        }
        restorewindow(run, variable);
        bool second = false;
        for (int j = 1; j <= L.nlist; ++j) second = second || r2[j] > -1e10L;
        if (second)
            for (int j = 1; j <= L.nlist; ++j)
                if (r1[j] <= 1e10L && r2[j] > -1e10L && r2[j] < r1[j]) std::swap(r1[j], r2[j]);

        std::string line;
        putfield(std::to_string(n), -6, line);
        for (int j = 1; j <= L.nlist; ++j) {
            if (!L.shown[j]) continue;
            const bool belowboth = r1[j] > 0 && r1[j] < ylo && r2[j] > 0 && r2[j] < ylo;
            putfield(belowboth ? "" : solvedcell(run, r1[j]), L.width, line);
        }
        uncertaintycells(run, L, n, true, r1, line);
        putstr(run.io, 0, line, 1, chall);

        line = std::string(6, ' ');
        for (int j = 1; j <= L.nlist; ++j) {
            if (!L.shown[j]) continue;
            const bool aboveboth = r1[j] > yhi && r1[j] < 1e10L && r2[j] > yhi && r2[j] < 1e10L;
            putfield(aboveboth ? "" : solvedcell(run, r2[j]), L.width, line);
        }
        uncertaintycells(run, L, n, false, r2, line);
        putstr(run.io, 0, line, 1, chall);
    }
}

}  // namespace sm
