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
real evalx(const ExprPool& pool, const Expr& e, const real* x, int xo);
// Derivative by variable k of the phase at the same point.
real devalx(int k, const ExprPool& pool, const Expr& e, const real* x, int xo);
// Value, and the derivatives by all the phase's variables at once into
// grad[1..nv] (which it clears): one pass over the products instead of one
// per variable.
real evalxgrad(const ExprPool& pool, const Expr& e, const real* x, int xo, int nv, real* grad);

// Single-product, single-form expressions are linear in the variables; the
// variable limits and the solver's oblique limits come from them.
// A product of two or more linear forms of which one is exactly zero at x.
bool haszerofactor(const ExprPool& pool, const Expr& e, const real* x, int xo);

bool islinear(const ExprPool& pool, const Expr& e);

// Writes the expression as text, with the phase's variable names, for the
// a-x information file.
std::string exprtext(const ExprPool& pool, const Expr& e, const sstring* varnames);
std::string rationaltext(const Rational& r);

}  // namespace sm
