// The a-x information file: for each a-x phase of the run, its variables
// with their guesses and limits, and its model written out as formulas, so
// that a user can read what the program made of the a-x file.
#include "ax/phase_summary.h"

#include <algorithm>
#include <cmath>

#include "console/format.h"
#include "console/intmath.h"
#include "console/scan.h"
#include "run.h"

namespace sm {

namespace {

constexpr int linewidth = 100;

// A value with the decimals it needs, at most 8.
std::string num(real v) {
    if (!std::isfinite(v)) return "?";
    if (v == std::round(v)) return real2str(v, 0, true);
    return real2str(v, std::min(decimalsneeded(v), 8), true);
}

void line(Run& run, const std::string& text, unsigned mask) { putstr(run.io, 0, text, 1, mask); }

// `head` followed by `text`, broken at " + " or blanks to stay within the
// line width, continuation lines indented under the text.
void wrapped(Run& run, const std::string& head, const std::string& text, unsigned mask) {
    std::string rest = text;
    std::string lead = head;
    while (static_cast<int>(lead.size() + rest.size()) > linewidth) {
        const int room = linewidth - static_cast<int>(lead.size());
        size_t cut = rest.rfind(" + ", room);
        if (cut == std::string::npos || cut == 0) cut = rest.rfind(' ', room);
        if (cut == std::string::npos || cut == 0) break;
        line(run, lead + rest.substr(0, cut), mask);
        rest = rest.substr(cut + 1);
        lead = blanks(static_cast<int>(head.size()));
    }
    line(run, lead + rest, mask);
}

std::string padded(const std::string& s, int width) {
    std::string out;
    putfield(s, -width, out);
    return out;
}

const char* modelname(int nonideal) {
    switch (nonideal) {
    case symmetric: return "symmetric formalism (sf)";
    case asymmetric: return "asymmetric formalism (asf)";
    default: return "ideal";
    }
}

std::string bound(real v, int code) { return num(v) + (code == limhard ? " (sf)" : ""); }

std::string idealmixtext(const AxPhase& ph, const AxEndMember& em) {
    std::string s;
    if (em.normrat) s = rationaltext(em.normr);
    else if (em.norm != 1) s = num(em.norm);
    for (int t = 1; t <= em.nterm; ++t) {
        const SfTerm& f = em.sfterm[t];
        if (!s.empty()) s += " ";
        s += ph.sfname[f.sf];
        if (!(f.power.num == 1 && f.power.den == 1)) s += "^" + rationaltext(f.power);
    }
    return s;
}

const char* actionword(int action) {
    switch (action) {
    case actordered: return "ordered ";
    case actdisordered: return "disordered ";
    case actequilibrium: return "equilibrium ";
    default: return "";
    }
}

const char* dqfword(int code) {
    switch (code) {
    case dqfmake: return "delG(make)";
    case dqfmod: return "delG(mod)";
    case dqfod: return "delG(od)";
    case dqftran: return "delG(tran)";
    case dqfrcal: return "delG(rcal)";
    default: return "DQF";
    }
}

std::string maketext(const MakeRecord& m) {
    std::string s;
    for (int k = 1; k <= m.nmake; ++k) {
        const Rational c = {m.makecoef[k], m.makediv};
        const long long g = gcd(c.num, c.den);
        const Rational r{static_cast<int>(c.num / g), static_cast<int>(c.den / g)};
        const std::string coef = rationaltext({std::abs(r.num), r.den});
        if (k == 1) s += r.num < 0 ? "-" : "";
        else s += r.num < 0 ? " - " : " + ";
        s += (coef == "1" ? "" : coef + " ") + actionword(m.makeaction[k]) + m.makename[k];
    }
    if (m.dqfa != 0 || m.dqfb != 0 || m.dqfc != 0)
        s += ";  " + std::string(dqfword(m.dqfcode)) + " " + num(m.dqfa) + " " + num(m.dqfb) + " " + num(m.dqfc);
    return s;
}

}  // namespace

void writephase(Run& run, const AxPhase& ph, unsigned mask) {
    std::string title = ph.longname + " : " + std::to_string(ph.nem) + " end-members, " +
                        std::to_string(ph.nxv) + (ph.nxv == 1 ? " variable, " : " variables, ") +
                        std::to_string(ph.nsf) + " site fractions, " + modelname(ph.nonideal);
    if (!ph.copyof.empty()) title += " (from " + ph.copyof + ")";
    line(run, std::string(linewidth, '-'), mask);
    line(run, title, mask);
    if (ph.contracted) {
        std::string z = "  set to zero:";
        for (int k = 1; k <= ph.nzero; ++k) z += " " + ph.zeroname[k];
        line(run, z, mask);
    }

    std::string head;
    putfield("variables", -16, head);
    putfield("guess", 12, head);
    putfield("low", 16, head);
    putfield("high", 16, head);
    line(run, head, mask);
    for (int v = 1; v <= ph.nxv; ++v) {
        const AxVariable& x = ph.xv[v];
        std::string row = "  ";
        putfield(x.xname, -14, row);
        putfield(num(x.guess), 12, row);
        putfield(bound(x.lower, x.limlo), 16, row);
        putfield(bound(x.upper, x.limhi), 16, row);
        if (x.isod) row += "   order";
        line(run, row, mask);
    }

    sstring names[maxnxv + 1];
    for (int v = 1; v <= ph.nxv; ++v) names[v] = ph.xv[v].xname;
    line(run, "proportions", mask);
    for (int j = 1; j <= ph.nem; ++j)
        wrapped(run, "  " + padded("p(" + ph.em[j].ename + ")", 12) + " = ",
                exprtext(ph.pool, ph.pexpr[j], names), mask);
    line(run, "site fractions", mask);
    for (int s = 1; s <= ph.nsf; ++s)
        wrapped(run, "  " + padded(ph.sfname[s], 12) + " = ", exprtext(ph.pool, ph.sfexpr[s], names), mask);
    line(run, "ideal mixing activities", mask);
    for (int j = 1; j <= ph.nem; ++j)
        wrapped(run, "  " + padded(ph.em[j].ename, 12) + " = ", idealmixtext(ph, ph.em[j]), mask);

    if (ph.ngt > 0) {
        std::string wh;
        putfield("W = a + bT + cP", -20, wh);
        putfield("a", 12, wh);
        putfield("b", 12, wh);
        putfield("c", 12, wh);
        putfield("sd", 12, wh);
        line(run, wh, mask);
        for (int g = 1; g <= ph.ngt; ++g) {
            std::string row = "  ";
            putfield("W(" + ph.em[ph.gt[g][0]].ename + "," + ph.em[ph.gt[g][1]].ename + ")", -18, row);
            putfield(num(ph.wa[g]), 12, row);
            putfield(num(ph.wb[g]), 12, row);
            putfield(num(ph.wc[g]), 12, row);
            putfield(num(ph.wsd[g]), 12, row);
            line(run, row, mask);
        }
    }
    if (ph.nonideal == asymmetric) {
        std::string ah;
        putfield("size = a + bT + cP", -20, ah);
        putfield("a", 12, ah);
        putfield("b", 12, ah);
        putfield("c", 12, ah);
        line(run, ah, mask);
        for (int j = 1; j <= ph.nem; ++j) {
            std::string row = "  ";
            putfield("a(" + ph.em[j].ename + ")", -18, row);
            putfield(num(ph.aa[j]), 12, row);
            putfield(num(ph.ab[j]), 12, row);
            putfield(num(ph.ac[j]), 12, row);
            line(run, row, mask);
        }
    }
    bool anymade = false;
    for (int j = 1; j <= ph.nem; ++j) anymade = anymade || ph.em[j].make.nmake > 0;
    if (anymade) {
        line(run, "made end-members", mask);
        for (int j = 1; j <= ph.nem; ++j)
            if (ph.em[j].make.nmake > 0)
                wrapped(run, "  " + padded(ph.em[j].ename, 12) + " = ", maketext(ph.em[j].make), mask);
    }
    if (ph.nvarlim > 0 || !ph.nofsfok) {
        std::string w = "site fractions watched by the solver:";
        int n = 0;
        for (int s = 1; s <= ph.nsf; ++s)
            if (!ph.sfcovered[s]) {
                w += " " + ph.sfname[s];
                ++n;
            }
        if (n == 0) w += " none";
        line(run, w + "; oblique limits: " + std::to_string(ph.nvarlim), mask);
    }
}

void writephasesummary(Run& run) {
    const PhaseStore& ps = run.phases;
    std::string file = ps.axname;
    const size_t slash = file.find_last_of('/');
    if (slash != std::string::npos) file = file.substr(slash + 1);
    line(run, "a-x phases of the run, from \"" + file + "\"", chit);
    line(run, "(sf) marks a bound where a site fraction vanishes: it is never reached", chit);
    for (int k = 1; k <= run.store.npss; ++k) writephase(run, ps.prec1[k], chit);
    line(run, std::string(linewidth, '-'), chit);
}

}  // namespace sm
