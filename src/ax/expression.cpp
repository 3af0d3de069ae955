#include "ax/expression.h"

#include <cstdlib>

#include "thermo/limits.h"

namespace sm {

namespace {

real formvalue(const ExprPool& pool, const LinForm& f, const real* x, int xo) {
    real v = f.cst;
    const LinTerm* t = pool.term.data() + f.first;
    for (int i = 0; i < f.nterm; ++i) v += t[i].mult * x[xo + t[i].var - 1];
    return v;
}

real multof(const ExprPool& pool, const LinForm& f, int k) {
    real m = 0;
    const LinTerm* t = pool.term.data() + f.first;
    for (int i = 0; i < f.nterm; ++i)
        if (t[i].var == k) m += t[i].mult;
    return m;
}

}  // namespace

real evalx(const ExprPool& pool, const Expr& e, const real* x, int xo) {
    real sum = 0;
    const SxTerm* sx = pool.sx.data() + e.first;
    for (int s = 0; s < e.nsx; ++s) {
        if (sx[s].factor == 0) continue;
        real prod = sx[s].factor;
        const LinForm* f = pool.form.data() + sx[s].first;
        for (int j = 0; j < sx[s].nform; ++j) prod *= formvalue(pool, f[j], x, xo);
        sum += prod;
    }
    return sum;
}

real devalx(int k, const ExprPool& pool, const Expr& e, const real* x, int xo) {
    real sum = 0;
    const SxTerm* sx = pool.sx.data() + e.first;
    for (int s = 0; s < e.nsx; ++s) {
        if (sx[s].factor == 0) continue;
        const LinForm* f = pool.form.data() + sx[s].first;
        // Product rule over the forms of this product.
        for (int j = 0; j < sx[s].nform; ++j) {
            const real m = multof(pool, f[j], k);
            if (m == 0) continue;
            real prod = sx[s].factor * m;
            for (int l = 0; l < sx[s].nform; ++l)
                if (l != j) prod *= formvalue(pool, f[l], x, xo);
            sum += prod;
        }
    }
    return sum;
}

real evalxgrad(const ExprPool& pool, const Expr& e, const real* x, int xo, int nv, real* grad) {
    for (int v = 1; v <= nv; ++v) grad[v] = 0;
    real sum = 0;
    const SxTerm* sx = pool.sx.data() + e.first;
    for (int s = 0; s < e.nsx; ++s) {
        if (sx[s].factor == 0) continue;
        const LinForm* f = pool.form.data() + sx[s].first;
        const int nf = sx[s].nform;
        real value[maxxterms];
        for (int j = 0; j < nf; ++j) value[j] = formvalue(pool, f[j], x, xo);
        real prod = sx[s].factor;
        for (int j = 0; j < nf; ++j) prod *= value[j];
        sum += prod;
        // Product rule: each form's terms times the other forms.
        for (int j = 0; j < nf; ++j) {
            real others = sx[s].factor;
            for (int l = 0; l < nf; ++l)
                if (l != j) others *= value[l];
            const LinTerm* t = pool.term.data() + f[j].first;
            for (int i = 0; i < f[j].nterm; ++i) grad[t[i].var] += others * t[i].mult;
        }
    }
    return sum;
}

bool haszerofactor(const ExprPool& pool, const Expr& e, const real* x, int xo) {
    const SxTerm* sx = pool.sx.data() + e.first;
    for (int s = 0; s < e.nsx; ++s) {
        if (sx[s].factor == 0 || sx[s].nform < 2) continue;
        const LinForm* f = pool.form.data() + sx[s].first;
        for (int j = 0; j < sx[s].nform; ++j)
            if (formvalue(pool, f[j], x, xo) == 0) return true;
    }
    return false;
}

bool islinear(const ExprPool& pool, const Expr& e) {
    return e.nsx == 1 && pool.sx[e.first].nform == 1;
}

std::string rationaltext(const Rational& r) {
    if (r.den == 1) return std::to_string(r.num);
    return std::to_string(r.num) + "/" + std::to_string(r.den);
}

namespace {

// |r| as text, with a coefficient of 1 left out in front of a name.
std::string magnitude(const Rational& r, bool beforename) {
    Rational a{std::abs(r.num), std::abs(r.den)};
    if (beforename && a.num == a.den) return "";
    return rationaltext(a) + (beforename ? " " : "");
}

bool negative(const Rational& r) { return (r.num < 0) != (r.den < 0) && r.num != 0; }

std::string formtext(const ExprPool& pool, const LinForm& f, const sstring* varnames) {
    std::string s;
    if (f.crat.num != 0 || f.nterm == 0) s = rationaltext(f.crat);
    for (int i = 0; i < f.nterm; ++i) {
        const LinTerm& t = pool.term[f.first + i];
        const std::string name = varnames ? varnames[t.var] : std::to_string(t.var);
        if (s.empty())
            s = (negative(t.r) ? "-" : "") + magnitude(t.r, true) + name;
        else
            s += (negative(t.r) ? " - " : " + ") + magnitude(t.r, true) + name;
    }
    return s;
}

}  // namespace

std::string exprtext(const ExprPool& pool, const Expr& e, const sstring* varnames) {
    std::string s;
    for (int i = 0; i < e.nsx; ++i) {
        const SxTerm& sx = pool.sx[e.first + i];
        if (sx.factor == 0) continue;
        std::string p;
        for (int j = 0; j < sx.nform; ++j) {
            const LinForm& f = pool.form[sx.first + j];
            std::string t = formtext(pool, f, varnames);
            // A factor of several parts goes in brackets; a lone term stands bare.
            const bool parts = f.nterm + (f.crat.num != 0 ? 1 : 0) > 1;
            if (sx.nform > 1 && parts) t = "(" + t + ")";
            if (!p.empty()) {
                if (t[0] == '-') {  // carry the sign to the front of the product
                    t.erase(0, 1);
                    p = p[0] == '-' ? p.substr(1) : "-" + p;
                }
                p += " ";
            }
            p += t;
        }
        if (s.empty()) s = p;
        else if (p[0] == '-') s += " - " + p.substr(1);
        else s += " + " + p;
    }
    return s.empty() ? "0" : s;
}

}  // namespace sm
