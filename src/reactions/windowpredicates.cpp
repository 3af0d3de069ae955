// Can a reaction lie in the window of a diagram? A sign change of the
// Gibbs energy of reaction between the corners says yes at once; with one
// sign everywhere the line may still bend into the window and out again,
// which a change of sign of a derivative along an edge betrays.
#include <cmath>
#include <string>

#include "console/runended.h"
#include "reactions/reactions.h"
#include "reactions/reactionthermo.h"
#include "reactions/roots.h"
#include "run.h"
#include "script/windows.h"
#include "thermo/gem.h"

namespace sm {

namespace {

struct Corner {
    real dG = 0, dGdP = 0, dGdT = 0;
};

// Evaluation of a corner: P, T, the fluid, and the axis value when the
// diagram has an activity or potential axis.
Corner corner(Run& run, int n, real P, real T, real xco2, real xh2o) {
    Corner c;
    calcdg(run, n, c.dGdP, c.dGdT, c.dG, P, T, xco2, xh2o);
    return c;
}

bool cornersdiffer(const std::array<Corner, 5>& c) {
    for (int i = 2; i <= 4; ++i)
        if ((c[i].dG < 0) != (c[1].dG < 0)) return true;
    return false;
}

void setbelow(const std::array<Corner, 5>& c, std::array<bool, 4>& sidebelow) {
    for (int i = 1; i <= 4; ++i) sidebelow[i - 1] = c[i].dG < 0;
}

// A root of the edge along T at fixed P that lies in the T window.
bool Tedgeroot(Run& run, int n, real P, real xco2, real xh2o) {
    real T1, T2, a, b, c, d;
    findT(run, n, false, T1, T2, a, b, P, xco2, xh2o, c, d);
    return inrange(run, 0, T1) || inrange(run, 0, T2);
}

bool Pedgeroot(Run& run, int n, real T, real xco2, real xh2o) {
    real P1, P2, a, b, c, d;
    findP(run, n, false, P1, P2, a, b, T, xco2, xh2o, c, d);
    return inrange(run, 1, P1) || inrange(run, 1, P2);
}

bool inPTwindow(Run& run, int n, std::array<bool, 4>& sidebelow) {
    const Windows& w = run.script.win;
    const real Plo = w.calcP.lo, Phi = w.calcP.hi, Tlo = w.calcT.lo, Thi = w.calcT.hi;
    const real x = w.xco2, xh = w.xh2o;
    std::array<Corner, 5> c;
    c[1] = corner(run, n, Plo, Tlo, x, xh);
    c[2] = corner(run, n, Phi, Tlo, x, xh);
    c[3] = corner(run, n, Phi, Thi, x, xh);
    c[4] = corner(run, n, Plo, Thi, x, xh);
    setbelow(c, sidebelow);
    if (cornersdiffer(c)) return true;
    if (!samesign(c[1].dGdT, c[4].dGdT) && Tedgeroot(run, n, Plo, x, xh)) return true;
    if (!samesign(c[2].dGdT, c[3].dGdT) && Tedgeroot(run, n, Phi, x, xh)) return true;
    if (!samesign(c[1].dGdP, c[2].dGdP) && Pedgeroot(run, n, Tlo, x, xh)) return true;
    if (!samesign(c[3].dGdP, c[4].dGdP) && Pedgeroot(run, n, Thi, x, xh)) return true;
    return false;
}

// The slope of ln K in x(CO2) for an ideal fluid: the sign tells on which
// side of its extreme a fluid composition lies.
real xslope(const Run& run, int n, real x) {
    const EndMemberStore& s = run.store;
    const real nco2 = s.ico2 > 0 ? s.r[n][s.ico2] : 0;
    const real nh2o = s.ih2o > 0 ? s.r[n][s.ih2o] : 0;
    return nco2 / x - nh2o / (1 - x);
}

// A reaction giving both CO2 and H2O has its extreme of ln K at x*; with
// all corners of one sign, the line may reach into the window there.
bool fluidextreme(Run& run, int n, real xlo, real xhi, bool Paxis, real lo, real hi, real fixed) {
    const EndMemberStore& s = run.store;
    if (s.ico2 <= 0 || s.ih2o <= 0) return false;
    const real nco2 = s.r[n][s.ico2], nh2o = s.r[n][s.ih2o];
    if (!(nco2 > 0 && nh2o > 0)) return false;
    if (samesign(xslope(run, n, xlo), xslope(run, n, xhi))) return false;
    const real xs = nco2 / (nco2 + nh2o);
    const Corner a = Paxis ? corner(run, n, lo, fixed, xs, 1 - xs) : corner(run, n, fixed, lo, xs, 1 - xs);
    const Corner b = Paxis ? corner(run, n, hi, fixed, xs, 1 - xs) : corner(run, n, fixed, hi, xs, 1 - xs);
    return (a.dG < 0) != (b.dG < 0);
}

bool inPXwindow(Run& run, int n, std::array<bool, 4>& sidebelow) {
    const Windows& w = run.script.win;
    const real Plo = w.calcP.lo, Phi = w.calcP.hi, T = w.T;
    const real xlo = w.xco2window.lo, xhi = w.xco2window.hi;
    std::array<Corner, 5> c;
    c[1] = corner(run, n, Plo, T, xlo, 1 - xlo);
    c[2] = corner(run, n, Plo, T, xhi, 1 - xhi);
    c[3] = corner(run, n, Phi, T, xhi, 1 - xhi);
    c[4] = corner(run, n, Phi, T, xlo, 1 - xlo);
    setbelow(c, sidebelow);
    if (cornersdiffer(c)) return true;
    if (fluidextreme(run, n, xlo, xhi, true, Plo, Phi, T)) return true;
    if (!samesign(c[4].dGdP, c[1].dGdP) && Pedgeroot(run, n, T, xlo, 1 - xlo)) return true;
    if (!samesign(c[3].dGdP, c[2].dGdP) && Pedgeroot(run, n, T, xhi, 1 - xhi)) return true;
    return false;
}

bool inTXwindow(Run& run, int n, std::array<bool, 4>& sidebelow) {
    const Windows& w = run.script.win;
    const real Tlo = w.calcT.lo, Thi = w.calcT.hi, P = w.P;
    const real xlo = w.xco2window.lo, xhi = w.xco2window.hi;
    std::array<Corner, 5> c;
    c[1] = corner(run, n, P, Tlo, xlo, 1 - xlo);
    c[2] = corner(run, n, P, Tlo, xhi, 1 - xhi);
    c[3] = corner(run, n, P, Thi, xhi, 1 - xhi);
    c[4] = corner(run, n, P, Thi, xlo, 1 - xlo);
    setbelow(c, sidebelow);
    if (cornersdiffer(c)) return true;
    if (fluidextreme(run, n, xlo, xhi, false, Tlo, Thi, P)) return true;
    if (!samesign(c[4].dGdT, c[1].dGdT) && Tedgeroot(run, n, P, xlo, 1 - xlo)) return true;
    if (!samesign(c[3].dGdT, c[2].dGdT) && Tedgeroot(run, n, P, xhi, 1 - xhi)) return true;
    return false;
}

// Activity and potential sections: the axis is carried by the record of
// the axis end-member, rewritten before each evaluation.
bool inaxiswindow(Run& run, int n, std::array<bool, 4>& sidebelow, bool Psolved, const Window& axis) {
    const Windows& w = run.script.win;
    const real x = w.xco2, xh = w.xh2o;
    const real lo = Psolved ? w.calcP.lo : w.calcT.lo;
    const real hi = Psolved ? w.calcP.hi : w.calcT.hi;
    auto at = [&](real v, real a) {
        setaxisvalue(run, a);
        return Psolved ? corner(run, n, v, w.T, x, xh) : corner(run, n, w.P, v, x, xh);
    };
    std::array<Corner, 5> c;
    c[1] = at(lo, axis.lo);
    c[2] = at(lo, axis.hi);
    c[3] = at(hi, axis.hi);
    c[4] = at(hi, axis.lo);
    setbelow(c, sidebelow);
    if (cornersdiffer(c)) return true;
    auto edge = [&](real a) {
        setaxisvalue(run, a);
        return Psolved ? Pedgeroot(run, n, w.T, x, xh) : Tedgeroot(run, n, w.P, x, xh);
    };
    const bool d41 = Psolved ? !samesign(c[4].dGdP, c[1].dGdP) : !samesign(c[4].dGdT, c[1].dGdT);
    if (d41 && edge(axis.lo)) return true;
    const bool d32 = Psolved ? !samesign(c[3].dGdP, c[2].dGdP) : !samesign(c[3].dGdT, c[2].dGdT);
    if (d32 && edge(axis.hi)) return true;
    return false;
}

}  // namespace

bool inPTXwindow(Run& run, int n, std::array<bool, 4>& sidebelow) {
    const Windows& w = run.script.win;
    switch (w.diagrammode) {
    case dmPT: return inPTwindow(run, n, sidebelow);
    case dmPx: return inPXwindow(run, n, sidebelow);
    case dmTx: return inTXwindow(run, n, sidebelow);
    case dmPlna: return inaxiswindow(run, n, sidebelow, true, w.lnawindow);
    case dmTlna: return inaxiswindow(run, n, sidebelow, false, w.lnawindow);
    case dmPmu: return inaxiswindow(run, n, sidebelow, true, w.muwindow);
    case dmTmu: return inaxiswindow(run, n, sidebelow, false, w.muwindow);
    default: bomb("inPTXwindow", "unknown diagrammode", 1);
    }
}

WindowQuestion inPTXwindowquestion() {
    return [](Run& run, int n, bool& below) {
        std::array<bool, 4> sidebelow{};
        const bool in = inPTXwindow(run, n, sidebelow);
        below = sidebelow[0];
        return in;
    };
}

void calcre(Run& run, bool& complete) { calcre(run, complete, inPTXwindowquestion()); }

}  // namespace sm
