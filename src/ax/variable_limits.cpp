// Limits of the composition variables. A site fraction that is linear in one
// variable bounds it where the site fraction would vanish: such a bound is
// hard, since ln(0) is undefined there. A site fraction linear in several
// variables bounds them obliquely, which the solver's step length tests.
#include <cmath>

#include "ax/phase_prep.h"
#include "console/intmath.h"
#include "console/runended.h"
#include "console/scan.h"

namespace sm {

namespace {

constexpr real unsetlow = 11, unsethigh = -11;

// Raises the lower limit to v, or sets it when unset; the bound is hard.
void raiselow(AxVariable& x, real v) {
    if (x.lower == unsetlow || x.lower <= v) {
        x.lower = v;
        x.limlo = limhard;
    }
}

void lowerhigh(AxVariable& x, real v) {
    if (x.upper == unsethigh || x.upper >= v) {
        x.upper = v;
        x.limhi = limhard;
    }
}

Rational reduced(long long num, long long den) {
    if (den < 0) {
        num = -num;
        den = -den;
    }
    const long long g = gcd(num, den);
    if (g > 1) {
        num /= g;
        den /= g;
    }
    return {long2int(num), long2int(den)};
}

Rational add(Rational a, Rational b) {
    const long long d = lcm(a.den, b.den);
    return reduced(static_cast<long long>(a.num) * (d / a.den) + static_cast<long long>(b.num) * (d / b.den), d);
}

}  // namespace

void setvarlim(AxPhase& ph, int s) {
    const Expr& e = ph.sfexpr[s];
    const LinForm& f = ph.pool.form[ph.pool.sx[e.first].first];
    VarLimit row;
    for (int v = 1; v <= ph.nxv + 1; ++v) row.den[v] = 1;
    for (int t = 0; t < f.nterm; ++t) {
        const LinTerm& term = ph.pool.term[f.first + t];
        const Rational sum = add({row.num[term.var], row.den[term.var]}, term.r);
        row.num[term.var] = sum.num;
        row.den[term.var] = sum.den;
    }
    const Rational c = reduced(f.crat.num, f.crat.den);
    row.num[ph.nxv + 1] = c.num;
    row.den[ph.nxv + 1] = c.den;
    for (int k = 1; k <= ph.nvarlim; ++k)
        if (ph.varlim[k].num == row.num && ph.varlim[k].den == row.den) return;
    if (ph.nvarlim == maxnvarlim) bomb("setupphases", "increase maxnvarlim", 0);
    ph.varlim[++ph.nvarlim] = row;
}

void setlimits(AxPhase& ph) {
    for (int v = 1; v <= ph.nxv; ++v) {
        AxVariable& x = ph.xv[v];
        x.lower = x.lowset ? x.rlow : unsetlow;
        x.upper = x.highset ? x.rhigh : unsethigh;
        x.limlo = x.limhi = limordinary;
    }
    ph.nvarlim = 0;
    ph.nofsfok = true;
    for (int s = 1; s <= ph.nsf; ++s) {
        ph.sfcovered[s] = false;
        const Expr& e = ph.sfexpr[s];
        if (!islinear(ph.pool, e) || ph.pool.sx[e.first].factor != 1) {
            ph.nofsfok = false;
            continue;
        }
        const LinForm& f = ph.pool.form[ph.pool.sx[e.first].first];
        if (f.nterm == 0) {
            ph.sfcovered[s] = f.cst > 0;
        } else if (f.nterm == 1) {
            const LinTerm& t = ph.pool.term[f.first];
            AxVariable& x = ph.xv[t.var];
            // Where the site fraction vanishes; a zero constant gives +0, not -0.
            const real v = f.cst == 0 ? 0 : -f.cst / t.mult;
            if (t.mult > 0) {
                raiselow(x, v);
                ph.sfcovered[s] = true;
            } else if (t.mult < 0) {
                lowerhigh(x, v);
                ph.sfcovered[s] = true;
            }
        } else {
            setvarlim(ph, s);
            ph.sfcovered[s] = true;
        }
        if (!ph.sfcovered[s]) ph.nofsfok = false;
    }
    for (int v = 1; v <= ph.nxv; ++v) {
        AxVariable& x = ph.xv[v];
        if (x.lower == unsetlow) x.lower = 0;
        if (x.upper == unsethigh) x.upper = 1;
        if (!(x.lower < x.upper)) bomb("setupphases", "lower limit > upper limit in xyz range", 0);
        x.scale = 1 / (x.upper - x.lower);
        x.offset = -x.scale * x.lower;
        x.xtol = 0.0001L / (x.upper - x.lower);
    }
}

}  // namespace sm
