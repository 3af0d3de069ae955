// Schreinemakers reasoning at an invariant point: an assemblage of the
// point that another reaction shows to be the high-energy side there makes
// the point metastable; round a stable point the reactions are ordered by
// slope, and each is stable on the side away from the phase it lacks.
#include <cmath>
#include <string>

#include "console/format.h"
#include "console/runended.h"
#include "reactions/intersectionwork.h"
#include "reactions/ptxtables.h"
#include "reactions/reactions.h"
#include "reactions/reactionthermo.h"
#include "run.h"
#include "script/windows.h"
#include "thermo/gem.h"

namespace sm {

namespace {

BitSet2 highside(const Run& run, int q, real dG) {
    BitSet2 u{};
    const auto& r = run.store.r[q];
    const int top = std::min(run.reactions.nemp, maxenumerated);
    for (int i = 1; i <= top; ++i)
        if (dG >= 0 ? r[i] > 0 : r[i] < 0) BSet2(u, i);
    return u;
}

bool empty(const BitSet2& s) { return s[0] == 0 && s[1] == 0 && s[2] == 0; }

BitSet2 meet(const BitSet2& a, const BitSet2& b) { return {a[0] & b[0], a[1] & b[1], a[2] & b[2]}; }

// The text of a reaction with its coefficients taken out: from the fifth
// character on a digit goes unless it follows H or O, as in H2O and CO2.
std::string withoutcoefficients(const std::string& text) {
    std::string out;
    for (size_t k = 0; k < text.size(); ++k) {
        const char ch = text[k];
        const bool digit = ch >= '0' && ch <= '9';
        if (k >= 4 && digit && !(text[k - 1] == 'H' || text[k - 1] == 'O')) continue;
        out += ch;
    }
    return out;
}

std::string slopecell(real s) {
    if (std::fabs(s) < 1e-10L) return "0";
    if (std::fabs(s) <= 1e19L) return real2str(s, 3, false);
    return "\xA1";
}

// The solved variable at a shifted axis value, from the point's solution.
real solvedat(Run& run, int n, PtxPoint p, real y) {
    real v1 = y, v2, dP, dT;
    solveat(run, n, p, true, v1, v2, dP, dT);
    return v1;
}

real bundleslope(Run& run, int n, const PtxPoint& point, real y) {
    const Windows& w = run.script.win;
    const EndMemberStore& s = run.store;
    const auto& r = s.r[n];
    switch (w.diagrammode) {
    case dmPT: {
        real dGdP, dGdT, dG;
        calcdg(run, n, dGdP, dGdT, dG, point.P, point.T, point.xco2, point.xh2o);
        return dGdP != 0 ? -dGdT / dGdP : 1e20L;
    }
    case dmPx:
    case dmTx: {
        const bool fluid = (s.ih2o > 0 && r[s.ih2o] != 0) || (s.ico2 > 0 && r[s.ico2] != 0);
        if (!fluid) return 1e20L;
        const real x = point.xco2;
        real d = 0.01L;
        if (x < 0.02L) d = x / 2;
        if (x > 0.98L) d = -(1 - x) / 2;
        PtxPoint p = point;
        const real y0 = solvedat(run, n, p, y);
        p.xco2 = x + d;
        p.xh2o = point.xh2o - d;
        const real y1 = solvedat(run, n, p, y);
        if (std::fabs(y0) > 1e20L || std::fabs(y1) > 1e20L) return 0;
        return y1 != y0 ? 2 * d / (y1 - y0) : 1e20L;
    }
    default: {
        const bool lna = w.diagrammode == dmPlna || w.diagrammode == dmTlna;
        if (lna && r[run.reactions.axisem] == 0) return 1e20L;
        const real step = lna ? 0.01L : 0.1L;
        const real v = lna ? point.lna : point.mu;
        PtxPoint p = point;
        setaxisvalue(run, v);
        const real y0 = solvedat(run, n, p, y);
        setaxisvalue(run, v + step);
        const real y1 = solvedat(run, n, p, y);
        setaxisvalue(run, v);
        if (std::fabs(y0) > 1e20L || std::fabs(y1) > 1e20L) return 0;
        return y1 != y0 ? step / (y1 - y0) : 1e20L;
    }
    }
}

const char* const slopeheads[7][3] = {
    {"low T", "high T", "dp/dt"},   {"low P", "high P", "dx/dp"},   {"low T", "high T", "dx/dt"},
    {"low P", "high P", "dlna/dp"}, {"low T", "high T", "dlna/dt"}, {"low P", "high P", "dmu/dp"},
    {"low T", "high T", "dmu/dt"},
};

// The ln a axis shows its own name in place of its end-member's.
struct AxisName {
    Run& run;
    sstring saved;
    bool swapped = false;
    explicit AxisName(Run& r) : run(r) {
        const int dm = run.script.win.diagrammode;
        const int i = run.reactions.axisem;
        if ((dm == dmPlna || dm == dmTlna) && i > 0 && !run.reactions.axisdisplayname.empty()) {
            saved = run.store.emname[i];
            run.store.emname[i] = run.reactions.axisdisplayname;
            swapped = true;
        }
    }
    ~AxisName() {
        if (swapped) run.store.emname[run.reactions.axisem] = saved;
    }
};

}  // namespace

real dGat(Run& run, int n, const PtxPoint& p) {
    real dGdP, dGdT, dG;
    calcdg(run, n, dGdP, dGdT, dG, p.P, p.T, p.xco2, p.xh2o);
    return dG;
}

void turnreaction(Run& run, int n, real P, real T, real xco2, real xh2o, real, real) {
    if (run.runmode != 3) {
        putstr(run.io, 0, "call of turnreaction unexpected", 1, chscreenlog);
        return;
    }
    const int dm = run.script.win.diagrammode;
    const bool upT = dm == dmPT || dm == dmTx || dm == dmTlna || dm == dmTmu;
    real dGdP, dGdT, dG;
    calcdg(run, n, dGdP, dGdT, dG, upT ? P : P + 0.2L, upT ? T + 5 : T, xco2, xh2o);
    if (dG > 0) {
        auto& r = run.store.r[n];
        for (int i = 1; i <= run.store.nem; ++i) r[i] = static_cast<short>(-r[i]);
        run.reactions.lnKbase[n] = -run.reactions.lnKbase[n];
        writereaction(run, n);
    }
}

bool stablepoint(Run& run, int i, const PtxPoint& p) {
    const ReactionStore& rs = run.reactions;
    const BitSet2& S = rs.intset[i];
    for (int q = 1; q <= rs.nir; ++q) {
        const BitSet2 a = meet(S, rs.reactionset[q]);
        if (empty(a) || a == rs.reactionset[q]) continue;
        if (BSubset2(highside(run, q, dGat(run, q, p)), S)) return false;
    }
    return true;
}

void printpoint(Run& run, int i, const Crossing& c, const IntersectionWork& work, const PtxPoint& p,
                bool stable) {
    const EndMemberStore& s = run.store;
    const ReactionStore& rs = run.reactions;
    const AxisName axis(run);
    std::vector<bool> marked(s.nem + 1, false);
    for (const auto& [r, root] : c.lines)
        for (int e = 1; e <= s.nem; ++e)
            if (s.r[work.reaction[r]][e] != 0) marked[e] = true;

    putstr(run.io, 0, std::string(58, '-'), 1, chall);
    std::string head = (stable ? "# stable intersection " : "metastable intersection ") +
                       std::to_string(i) + " involving ";
    std::string names, excess, absent;
    for (int e = 1; e <= s.nem; ++e) {
        if (e <= rs.nemp) {
            if (marked[e])
                names += (names.empty() ? "" : " ") + s.emname[e];
            else
                absent += (absent.empty() ? "" : ",") + s.emname[e];
        } else if (marked[e]) {
            excess += (excess.empty() ? "" : " ") + s.emname[e];
        }
    }
    head += names;
    if (!excess.empty()) head += " + (" + excess + ")";
    if (!absent.empty()) {
        putfield(" or [", 6, head);
        head += absent + "]";
    }
    putstr(run.io, 0, head, 1, chall);
    if (!stable) return;

    const int nb = static_cast<int>(c.lines.size());
    std::vector<int> number(nb);
    std::vector<real> slope(nb);
    std::vector<std::vector<int>> lacks(nb);
    for (int k = 0; k < nb; ++k) {
        const int n = work.reaction[c.lines[k].first];
        number[k] = n;
        turnreaction(run, n, p.P, p.T, p.xco2, p.xh2o, p.lna, p.mu);
        const real y = run.script.win.calcvariable == axisP ? p.P : p.T;
        slope[k] = bundleslope(run, n, p, y);
        // In-excess end-members stand in every assemblage: never absent.
        for (int e = 1; e <= rs.nemp; ++e)
            if (marked[e] && s.r[n][e] == 0) lacks[k].push_back(e);
    }

    const int dm = run.script.win.diagrammode;
    std::string line(66, ' ');
    for (const char* h : slopeheads[dm]) putfield(h, 10, line);
    putstr(run.io, 0, line, 1, chall);

    // Ascending slope by repeated minimum, the first of equals first.
    std::vector<int> order;
    std::vector<bool> taken(nb, false);
    for (int k = 0; k < nb; ++k) {
        int best = -1;
        for (int q = 0; q < nb; ++q)
            if (!taken[q] && (best < 0 || slope[q] < slope[best])) best = q;
        taken[best] = true;
        order.push_back(best);
    }
    for (int pos = 0; pos < nb; ++pos) {
        const int k = order[pos];
        const int nbr = slope[k] >= 0 ? order[(pos + 1) % nb] : order[(pos + nb - 1) % nb];
        const bool flip =
            (0 < slope[nbr] && slope[nbr] < slope[k]) || (slope[k] < slope[nbr] && slope[nbr] < 0);
        int count = 0;
        for (int e : lacks[k]) {
            const int v = s.r[number[nbr]][e];
            if (flip ? v < 0 : v > 0) ++count;
        }
        std::string label = "[";
        for (size_t q = 0; q < lacks[k].size(); ++q) label += (q ? "," : "") + s.emname[lacks[k][q]];
        label += "]";
        line.clear();
        putfield(withoutcoefficients(rs.reactionname[number[k]]), -50, line);
        putfield(label, 16, line);
        const bool bothstable = count >= 1 && count != static_cast<int>(lacks[k].size());
        putfield(count < 1 ? "" : "stable", 10, line);
        putfield(count < 1 || bothstable ? "stable" : "", 10, line);
        putfield(slopecell(slope[k]), 10, line);
        putstr(run.io, 0, line, nb == pos + 1 ? 2 : 1, chall);
    }
}

void rstable(Run& run, const std::vector<bool>& shown) {
    ReactionStore& rs = run.reactions;
    const Windows& w = run.script.win;
    bool any = false;
    for (int n = 1; n <= rs.nir; ++n) any = any || !shown[n];
    if (!any) return;
    const int type = windowtype(run);
    const std::vector<real> list = listvalues(run, "rstable");
    const int nlist = std::min(static_cast<int>(list.size()) - 1, rs.nlist);
    bool headed = false;
    for (int n = 1; n <= rs.nir; ++n) {
        if (shown[n]) continue;
        int j = 0;
        real y = 0;
        for (int jj = 1; jj <= nlist && j == 0; ++jj)
            if (inrange(run, type, rs.v1[n][jj])) {
                j = jj;
                y = rs.v1[n][jj];
            }
        for (int jj = 1; jj <= nlist && j == 0; ++jj)
            if (inrange(run, type, rs.v2[n][jj])) {
                j = jj;
                y = rs.v2[n][jj];
            }
        if (!headed) {
            putstr(run.io, 0, std::string(52, '-'), 1, chall);
            putstr(run.io, 0, "Stability of reactions not involved in intersections :", 2, chall);
            headed = true;
        }
        std::string line;
        if (j == 0) {
            putfield("*not known*", -13, line);
        } else {
            PtxPoint p = currentpoint(run);
            setiptx(run, p, list[j], y);
            const BitSet2& S = rs.reactionset[n];
            bool stable = true;
            for (int q = 1; q <= rs.nir && stable; ++q) {
                if (q == n || empty(meet(S, rs.reactionset[q]))) continue;
                if (BSubset2(highside(run, q, dGat(run, q, p)), S)) stable = false;
            }
            turnreaction(run, n, p.P, p.T, p.xco2, p.xh2o, p.lna, p.mu);
            putfield(stable ? "<= stable =>" : "metastable", -13, line);
        }
        (void)w;
        putstr(run.io, 0, line + rs.reactionname[n], 1, chall);
    }
}

}  // namespace sm
