#pragma once
// Expressions of an a-x phase: proportions, site fractions and the
// definitions of its variables are each a sum of products of linear forms in
// the phase's composition variables,
//
//   value = sum over sxterms of factor * prod over forms of (const + sum mult * x[var])
//
// They are kept flat in one pool per phase, so that evaluating one at a
// point is a few loops over contiguous arrays: no allocation, no strings.
#include <string>
#include <vector>

#include "console/types.h"
#include "thermo/limits.h"

namespace sm {

// A coefficient as written in the file. The real value is the quotient taken
// in double precision, as every coefficient of the a-x file is used.
struct Rational {
    int num = 0;
    int den = 1;
    real value() const { return static_cast<real>(static_cast<double>(num) / static_cast<double>(den)); }
};

struct LinTerm {
    real mult = 0;  // coefficient of the variable
    int var = 0;    // variable of the phase, 1-based
    Rational r;
};

struct LinForm {
    real cst = 0;
    Rational crat;
    int first = 0;  // first LinTerm in the pool
    int nterm = 0;
};

struct SxTerm {
    real factor = 1;  // 1 as read; 0 marks a product removed by contraction
    int first = 0;    // first LinForm in the pool
    int nform = 0;
};

// One expression: its products are pool.sx[first .. first+nsx-1].
struct Expr {
    int first = 0;
    int nsx = 0;
};

struct ExprPool {
    std::vector<SxTerm> sx;
    std::vector<LinForm> form;
    std::vector<LinTerm> term;
    void clear() {
        sx.clear();
        form.clear();
        term.clear();
    }
};

// Value at x; variable v of the phase is x[xo + v - 1].
inline real evalx(const ExprPool& pool, const Expr& e, const real* x, int xo);
// Derivative by variable k of the phase at the same point.
real devalx(int k, const ExprPool& pool, const Expr& e, const real* x, int xo);
// Value, and the derivatives by all the phase's variables at once into
// grad[1..nv] (which it clears): one pass over the products instead of one
// per variable.
inline real evalxgrad(const ExprPool& pool, const Expr& e, const real* x, int xo, int nv, real* grad);
// The same, adding the derivatives to grad as it stands.
inline real evalxaddgrad(const ExprPool& pool, const Expr& e, const real* x, int xo, real* grad);

// A product of two or more linear forms of which one is exactly zero at x.
bool haszerofactor(const ExprPool& pool, const Expr& e, const real* x, int xo);

// Single-product, single-form expressions are linear in the variables; the
// variable limits and the solver's oblique limits come from them.
bool islinear(const ExprPool& pool, const Expr& e);

// Writes the expression as text, with the phase's variable names, for the
// a-x information file.
std::string exprtext(const ExprPool& pool, const Expr& e, const sstring* varnames);
std::string rationaltext(const Rational& r);

// The definitions of evalx and evalxgrad, inline: they run for every proportion
// and site fraction at every evaluation of the equations.

// Value of one linear form.
inline real exprform(const ExprPool& pool, const LinForm& f, const real* x, int xo) {
    real v = f.cst;
    const LinTerm* t = pool.term.data() + f.first;
    for (int i = 0; i < f.nterm; ++i) v += t[i].mult * x[xo + t[i].var - 1];
    return v;
}

inline real evalx(const ExprPool& pool, const Expr& e, const real* x, int xo) {
    real sum = 0;
    const SxTerm* sx = pool.sx.data() + e.first;
    for (int s = 0; s < e.nsx; ++s) {
        if (sx[s].factor == 0) continue;
        real prod = sx[s].factor;
        const LinForm* f = pool.form.data() + sx[s].first;
        for (int j = 0; j < sx[s].nform; ++j) prod *= exprform(pool, f[j], x, xo);
        sum += prod;
    }
    return sum;
}

inline real evalxgrad(const ExprPool& pool, const Expr& e, const real* x, int xo, int nv, real* grad) {
    for (int v = 1; v <= nv; ++v) grad[v] = 0;
    return evalxaddgrad(pool, e, x, xo, grad);
}

inline real evalxaddgrad(const ExprPool& pool, const Expr& e, const real* x, int xo, real* grad) {
    real sum = 0;
    const SxTerm* sx = pool.sx.data() + e.first;
    const LinForm* forms = pool.form.data();
    const LinTerm* terms = pool.term.data();
    for (int s = 0; s < e.nsx; ++s) {
        const real factor = sx[s].factor;
        if (factor == 0) continue;
        const LinForm* f = forms + sx[s].first;
        const int nf = sx[s].nform;
        if (nf == 1) {
            // A linear form, the common case: its mults are the gradient.
            const LinTerm* t = terms + f->first;
            real v = f->cst;
            for (int i = 0; i < f->nterm; ++i) {
                v += t[i].mult * x[xo + t[i].var - 1];
                grad[t[i].var] += factor * t[i].mult;
            }
            sum += factor * v;
            continue;
        }
        real value[maxxterms];
        for (int j = 0; j < nf; ++j) value[j] = exprform(pool, f[j], x, xo);
        real prod = factor;
        for (int j = 0; j < nf; ++j) prod *= value[j];
        sum += prod;
        // Product rule: each form's terms times the other forms.
        for (int j = 0; j < nf; ++j) {
            real others = factor;
            for (int l = 0; l < nf; ++l)
                if (l != j) others *= value[l];
            const LinTerm* t = terms + f[j].first;
            for (int i = 0; i < f[j].nterm; ++i) grad[t[i].var] += others * t[i].mult;
        }
    }
    return sum;
}

}  // namespace sm
