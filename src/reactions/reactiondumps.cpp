#include "reactions/reactiondumps.h"

#include <string>

#include "console/format.h"
#include "reactions/reactions.h"
#include "run.h"

namespace sm {

namespace {

// "c =   {{..},\n       {..}};" with one brace group per component.
void componentrows(Run& run, unsigned mask) {
    const EndMemberStore& s = run.store;
    for (int k = 1; k <= s.nc; ++k) {
        std::string line = k == 1 ? "c =   {{" : "       {";
        for (int i = 1; i <= s.nem; ++i) {
            if (i > 1) line += ", ";
            line += std::to_string(s.c[k][i]);
        }
        line += k == s.nc ? "}};" : "},";
        putstr(run.io, 0, line, 1, mask);
    }
}

void matrixtable(Run& run, unsigned mask) {
    const EndMemberStore& s = run.store;
    const ReactionStore& rs = run.reactions;
    std::string line(6, ' ');
    for (int k = 1; k <= s.nc; ++k) putfield(s.compname[k], 6, line);
    putstr(run.io, 0, line, 1, mask);
    for (int i = 1; i <= s.nem; ++i) {
        line.clear();
        putfield(s.emname[i], -6, line);
        for (int k = 1; k <= s.nc; ++k) putint(6, line, s.c[k][i]);
        putstr(run.io, 0, line, 1, mask);
    }
    line = "div   ";
    for (int k = 1; k <= s.nc; ++k) putint(6, line, static_cast<real>(rs.div[k]));
    putstr(run.io, 0, line, 1, mask);
}

// Rows joined as "{a, b},\n<indent>{c, d}};" after `head`.
template <typename Entry>
void listrows(Run& run, const std::string& head, int indent, int nrows, int ncols, Entry entry) {
    for (int q = 1; q <= nrows; ++q) {
        std::string line = q == 1 ? head + "{{" : std::string(indent, ' ') + "{";
        for (int i = 1; i <= ncols; ++i) {
            if (i > 1) line += ", ";
            line += std::to_string(entry(q, i));
        }
        line += q == nrows ? "}};" : "},";
        putstr(run.io, 0, line, 1, chsk);
    }
}

}  // namespace

void printcompositiondump(Run& run) {
    matrixtable(run, chic);
    componentrows(run, chic);
}

void printnoreactions(Run& run) {
    componentrows(run, chall);
    matrixtable(run, chall);
}

void printreactionlists(Run& run) {
    const EndMemberStore& s = run.store;
    const ReactionStore& rs = run.reactions;
    std::string line = "name = {";
    for (int i = 1; i <= s.nem; ++i) {
        if (i > 1) line += ",";
        line += "\"" + s.emname[i] + "\"";
    }
    putstr(run.io, 0, line + "};", 2, chsk);
    listrows(run, "c =   ", 7, s.nem, s.nc, [&](int i, int k) { return s.c[k][i]; });
    putstr(run.io, 0, "", 1, chsk);
    line = "div =  {";
    for (int k = 1; k <= s.nc; ++k) {
        if (k > 1) line += ", ";
        line += std::to_string(rs.div[k]);
    }
    putstr(run.io, 0, line + "};", 2, chsk);
    line = "(*";
    for (int i = 1; i <= s.nem; ++i) putfield(s.emname[i], 5, line);
    putfield("*)", 5, line);
    putstr(run.io, 0, line, 1, chsk);
    listrows(run, "re = ", 6, rs.nir, s.nem, [&](int n, int i) { return s.r[n][i]; });
    putstr(run.io, 0, "", 1, chsk);
}

}  // namespace sm
