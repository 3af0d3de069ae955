// Reading the expressions of an a-x phase: proportions, site fractions and
// variable definitions.
#include "ax/ax_reading.h"
#include "console/runended.h"
#include "console/scan.h"

namespace sm {

namespace {

// A variable named in an expression: its index, or its name in the phase's
// list of variables.
int variableindex(AxReading& r, const AxPhase& ph, const std::string& context) {
    int cls;
    const std::string w = r.words.next("variable in " + context, cls);
    if (cls == tokint) {
        std::string m;
        int k;
        if (string2int(w, k, m) && k >= 1 && k <= ph.nxv) return k;
        bomb("read", w + " not a variable name: " + context, 0);
    }
    if (r.strict) {
        const size_t open = w.find('(');
        if (open == std::string::npos || open == 0 || w.back() != ')')
            bomb("read", "name in varname not of form xyz(min)", 0);
    }
    for (int k = 1; k <= ph.nxv; ++k)
        if (ph.xv[k].xname == w) return k;
    bomb("read", w + " not a variable name: " + context, 0);
}

// const, number of terms; the checks of both.
void readformhead(AxReading& r, LinForm& f, const std::string& context) {
    f.crat = r.words.getrat("const in " + context);
    f.cst = f.crat.value();
    f.nterm = r.words.getint("no of terms in " + context);
    if (f.nterm < 0) bomb("read", "too few terms in x", 0);
    if (f.nterm > maxlinterms) bomb("read", "too many terms in x", 0);
    if (f.nterm == 0 && f.crat.num == 0) bomb("read", "zero term", 0);
}

}  // namespace

Expr readexpression(AxReading& r, AxPhase& ph, const std::string& context) {
    ExprPool& pool = ph.pool;
    Expr e;
    e.nsx = r.words.getint("no of sxterms in " + context);
    if (e.nsx < 1) bomb("read", "too few sxterms", 0);
    if (e.nsx > maxsxterms) bomb("read", "too many sxterms", 0);
    e.first = static_cast<int>(pool.sx.size());
    pool.sx.resize(pool.sx.size() + e.nsx);
    for (int s = 0; s < e.nsx; ++s) {
        SxTerm sx;
        sx.factor = 1;
        sx.nform = r.words.getint("no of x terms in " + context);
        if (sx.nform < 1) bomb("read", "too few x terms", 0);
        if (sx.nform > maxxterms) bomb("read", "too many x terms", 0);
        sx.first = static_cast<int>(pool.form.size());
        pool.form.resize(pool.form.size() + sx.nform);
        for (int j = 0; j < sx.nform; ++j) {
            LinForm f;
            readformhead(r, f, context);
            f.first = static_cast<int>(pool.term.size());
            for (int t = 0; t < f.nterm; ++t) {
                LinTerm term;
                term.r = r.words.getrat("mult in " + context);
                term.mult = term.r.value();
                term.var = variableindex(r, ph, context);
                pool.term.push_back(term);
            }
            pool.form[sx.first + j] = f;
        }
        pool.sx[e.first + s] = sx;
    }
    return e;
}

Expr readxdefinition(AxReading& r, AxPhase& ph, const std::string& context,
                     std::vector<std::string>& names) {
    ExprPool& pool = ph.pool;
    Expr e;
    e.first = static_cast<int>(pool.sx.size());
    e.nsx = 1;
    SxTerm sx;
    sx.first = static_cast<int>(pool.form.size());
    sx.nform = 1;
    LinForm f;
    readformhead(r, f, context);
    f.first = static_cast<int>(pool.term.size());
    for (int t = 0; t < f.nterm; ++t) {
        LinTerm term;
        term.r = r.words.getrat("mult in " + context);
        term.mult = term.r.value();
        // The proportions are not read yet: keep the word, resolve it after.
        int cls;
        names.push_back(r.words.next("proportion in " + context, cls));
        term.var = -static_cast<int>(names.size());
        pool.term.push_back(term);
    }
    pool.form.push_back(f);
    pool.sx.push_back(sx);
    return e;
}

}  // namespace sm
