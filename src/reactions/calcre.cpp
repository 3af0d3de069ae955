// The enumeration of reactions, system by system, smallest sub-system
// first. A reaction is looked for among rankc + 1 end-members of a
// sub-system of rank rankc; an assemblage that already holds a known
// reaction, or an assemblage known to be unstable, is passed over, so each
// reaction comes out once, from the smallest sub-system that holds it.
#include <cmath>
#include <string>

#include "console/format.h"
#include "console/prompts.h"
#include "console/runended.h"
#include "reactions/combinations.h"
#include "reactions/intmatrix.h"
#include "reactions/reactionmarks.h"
#include "reactions/reactions.h"
#include "reactions/reactionthermo.h"
#include "run.h"
#include "script/windows.h"

namespace sm {

namespace {

struct SubSystem {
    int k = 0;
    std::array<int, maxcomp + 1> comps{};           // its components, 1..k
    std::array<int, maxenumerated + 2> members{};   // its end-members, 1..nmax
    int nmax = 0;
    BitSet2 set{};
};

struct Search {
    bool rockmode = false;  // mode 2: an independent set
    bool stopped = false;
    int tries = 0;
    int foundhere = 0;      // mode 2: accepted from the current sub-system
    int wanted = 0;
    bool marked = false;    // mode 2: the sub-system mark is out
};

bool contains(const std::vector<int>& list, int i) {
    for (int e : list)
        if (e == i) return true;
    return false;
}

// The end-members of rows outside the sub-system's components are absent.
void marksubsystem(const Run& run, SubSystem& sub) {
    const EndMemberStore& s = run.store;
    const ReactionStore& rs = run.reactions;
    std::array<bool, maxcomp + 1> inside{};
    for (int q = 1; q <= sub.k; ++q) inside[sub.comps[q]] = true;
    sub.nmax = 0;
    BClear2(sub.set);
    for (int i = 1; i <= rs.nemp; ++i) {
        bool in = true;
        for (int j = 1; j <= rs.ncompp && in; ++j)
            if (!inside[j] && s.c[j][i] != 0) in = false;
        if (!in || contains(rs.excludedem, i)) continue;
        sub.members[++sub.nmax] = i;
        BSet2(sub.set, i);
    }
}

int subsystemrank(const Run& run, const SubSystem& sub) {
    IntMatrix m;
    m.nrows = sub.k;
    m.ncols = sub.nmax;
    for (int q = 1; q <= sub.k; ++q)
        for (int j = 1; j <= sub.nmax; ++j) m.a[q][j] = run.store.c[sub.comps[q]][sub.members[j]];
    return integerrank(m);
}

// The members of the sub-system at the combination's positions.
void pick(const SubSystem& sub, const Combination& comb, int n, std::array<int, maxenumerated + 2>& sel,
          BitSet2& set) {
    BClear2(set);
    int next = 1;
    for (int q = 1; q <= sub.nmax && next <= n; ++q)
        if (comb.pos[next] == q) {
            sel[next++] = sub.members[q];
            BSet2(set, sub.members[q]);
        }
}

bool holdsexcludedem(const ReactionStore& rs, const BitSet2& set) {
    for (int e : rs.excludedem)
        if (BTst2(set, e)) return true;
    return false;
}

bool holdsexcludedassemblage(const ReactionStore& rs, const BitSet2& set) {
    for (int a = 1; a <= rs.nexcludedassemblage; ++a)
        if (BSubset2(rs.excludedassemblage[a], set)) return true;
    return false;
}

bool selectassemblage(const ReactionStore& rs, const BitSet2& set) {
    if (holdsexcludedem(rs, set) || holdsexcludedassemblage(rs, set)) return true;
    for (int n = 1; n <= rs.nreactionset; ++n)
        if (BSubset2(rs.reactionset[n], set)) return true;
    return false;
}

bool selectintersection(const ReactionStore& rs, const BitSet2& set) {
    if (holdsexcludedem(rs, set) || holdsexcludedassemblage(rs, set)) return true;
    for (int n = 1; n <= rs.nint; ++n)
        if (BSubset2(rs.intset[n], set)) return true;
    return false;
}

void registerintersection(ReactionStore& rs, const BitSet2& set) {
    std::array<short, maxnem + 1> list{};
    int count = 0;
    BitSet2 uni{};
    for (int n = 1; n <= rs.nir; ++n)
        if (BSubset2(rs.reactionset[n], set)) {
            list[++count] = static_cast<short>(n);
            for (int w = 0; w < 3; ++w) uni[w] |= rs.reactionset[n][w];
        }
    if (count <= 2) return;
    ++rs.nint;
    rs.intcount[rs.nint] = count;
    rs.intreaction[rs.nint] = list;
    rs.intset[rs.nint] = uni;
}

// The new reaction leaves the store again.
void dropnewest(ReactionStore& rs) {
    if (rs.nreactionset == rs.nir) --rs.nreactionset;
    --rs.nir;
}

// Stores a reaction as row nir + 1 with its phase set.
void storereaction(Run& run, const std::array<long long, maxnem + 1>& coef) {
    EndMemberStore& s = run.store;
    ReactionStore& rs = run.reactions;
    for (int i = 1; i <= s.nem; ++i)
        if (coef[i] > 32767 || coef[i] < -32767) bomb("re", "reaction coefficients too large", 0);
    ++rs.nir;
    for (int i = 0; i <= maxnem; ++i) s.r[rs.nir][i] = i <= s.nem ? static_cast<short>(coef[i]) : 0;
    if (rs.nreactionset < maxreactionsets) {
        ++rs.nreactionset;
        rs.reactionset[rs.nreactionset] = reactionmembers(run, rs.nir);
    }
}

// One reaction from one assemblage, then what the mode makes of it.
void re(Run& run, Search& search, const SubSystem& sub, const int* sel,
        const WindowQuestion& inwindow) {
    ReactionStore& rs = run.reactions;
    std::array<long long, maxnem + 1> coef{};
    formreaction(run, sub.comps.data(), sub.k, sel, coef);
    storereaction(run, coef);

    if (!search.rockmode) {
        setlnKbase(run, rs.nir);
        bool below = false;
        if (inwindow(run, rs.nir, below)) {
            progressmark(run, "X");
        } else if (rs.allreactions) {
            dropnewest(rs);
            progressmark(run, "+");
        } else {
            progressmark(run, exclude(run, below) ? "+" : "-");
        }
        return;
    }

    std::array<long long, maxnem + 1> reduced{};
    if (!newindr(run, coef, reduced)) {
        dropnewest(rs);
        progressmark(run, "-");
        return;
    }
    setlnKbase(run, rs.nir);
    real sd = 1000;
    const bool crosses = rs.crosseswindow ? rs.crosseswindow(run, sd) : false;
    if (!crosses) {
        dropnewest(rs);
        progressmark(run, "0");
    } else if (sd <= rs.maxsd) {
        commitindependent(run, reduced);
        ++search.foundhere;
        progressmark(run, "X");
        std::string tail;
        if (rs.solvingT)
            tail = " " + int2str(sd);
        else
            putreal(1, true, 5, tail, sd);
        progressendline(run, tail);
    } else {
        dropnewest(rs);
        progressmark(run, ":");
    }
}

// The reaction step of one sub-system: every assemblage of rankc + 1 of
// its end-members.
void reactionstep(Run& run, Search& search, const SubSystem& sub, const WindowQuestion& inwindow) {
    ReactionStore& rs = run.reactions;
    const int n = rs.rankc + 1;
    if (n < 2) {
        putstr(run.io, 0, "no reactions with less than 2 phases?!", 1, chscreenlog);
        putstr(run.io, 0, "REALLY should not have got to here...", 1, chscreenlog);
    }
    if (n > sub.nmax) return;
    Combination comb;
    comb.start(n);
    std::array<int, maxenumerated + 2> sel{};
    BitSet2 set{};
    bool more = true;
    while (more && !search.stopped) {
        pick(sub, comb, n, sel, set);
        if (!selectassemblage(rs, set)) {
            if (search.rockmode && !search.marked) {
                progressmark(run, "|");
                search.marked = true;
            }
            ++search.tries;
            re(run, search, sub, sel.data(), inwindow);
            if (rs.nir == maxreactions) prune(run, false);
            rs.reactionsfull = rs.nir == maxreactions;
            if (rs.reactionsfull) search.stopped = true;
            if (search.rockmode) {
                if (rs.nir == rs.nindep) search.stopped = true;
                if (search.tries == maxcombination && rs.nir == 0 &&
                    query(run.io, "not much progress : exitt"))
                    search.stopped = true;
                if (search.foundhere >= search.wanted) break;
            }
        }
        comb.next(n, sub.nmax, more);
    }
}

void intersectionstep(Run& run, const SubSystem& sub) {
    ReactionStore& rs = run.reactions;
    const int n = rs.rankc + 2;
    if (n < 3) {
        putstr(run.io, 0, "no intersections with less than 3 phases?!", 1, chscreenlog);
        putstr(run.io, 0, "REALLY should not have got to here  (A) ...", 1, chscreenlog);
    }
    Combination comb;
    comb.start(n);
    std::array<int, maxenumerated + 2> sel{};
    BitSet2 set{};
    bool more = true;
    while (more) {
        pick(sub, comb, n, sel, set);
        const bool skipped = selectintersection(rs, set);
        rs.intersectionsfull = rs.nint == maxintersections;
        if (!skipped && !rs.intersectionsfull) registerintersection(rs, set);
        comb.next(n, sub.nmax, more);
    }
}

// Mode 2 set-up: the end-members on offer, their rank and the number of
// independent reactions.
void rocksetup(Run& run) {
    ReactionStore& rs = run.reactions;
    putstr(run.io, 0, "reactions : ", 0, chscreenlog);
    putstr(run.io, 0, "", 1, chscreenlog);
    SubSystem all;
    all.k = rs.ncompp;
    for (int q = 1; q <= rs.ncompp; ++q) all.comps[q] = q;
    all.nmax = 0;
    for (int i = 1; i <= rs.nemp; ++i)
        if (!contains(rs.excludedem, i)) all.members[++all.nmax] = i;
    rs.rankc = subsystemrank(run, all);
    rs.nindep = all.nmax - rs.rankc;
    printcompositiondump(run);
    // Without a window of its own the fixed variable sits at the bottom of
    // its window.
    const Windows& w = run.script.win;
    if (rs.rockcalc == 0)
        rs.narrowwindow = std::fabs(w.T - w.calcT.lo) < 0.1L;
    else if (rs.rockcalc == 1)
        rs.narrowwindow = std::fabs(w.P - w.calcP.lo) < 0.01L;
    else
        rs.narrowwindow = true;
}

void printexclusions(Run& run) {
    const ReactionStore& rs = run.reactions;
    const EndMemberStore& s = run.store;
    if (rs.allreactions) return;
    if (rs.excludedem.empty() && rs.nexcludedassemblage == 0) {
        putstr(run.io, 0, "no excluded assemblages", 1, chall);
        return;
    }
    std::string line;
    putfield("excluded assemblages |", -22, line);
    int names = 0;
    for (int e : rs.excludedem) {
        line += " " + s.emname[e] + " |";
        ++names;
    }
    for (int a = 1; a <= rs.nexcludedassemblage; ++a) {
        if (names > 9) {
            putstr(run.io, 0, line, 1, chall);
            line.clear();
            putfield("|", -22, line);
            names = 0;
        }
        for (int i = 1; i <= rs.nemp; ++i)
            if (BTst2(rs.excludedassemblage[a], i)) {
                line += " " + s.emname[i];
                ++names;
            }
        line += " |";
    }
    putstr(run.io, 0, line, 1, chall);
}

}  // namespace

BitSet2 reactionmembers(const Run& run, int n) {
    BitSet2 set{};
    const int top = run.reactions.nemp < maxenumerated ? run.reactions.nemp : maxenumerated;
    for (int i = 1; i <= top; ++i)
        if (run.store.r[n][i] != 0) BSet2(set, i);
    return set;
}



void calcre(Run& run, bool& complete, const WindowQuestion& inwindow) {
    ReactionStore& rs = run.reactions;
    if (run.runmode == 1) bomb("calcre", "mode 1 sent to the wrong place", 1);
    if (rs.nemp > maxenumerated) bomb("calcre", "too many end-members", 0);
    Search search;
    search.rockmode = run.runmode == 2;
    if (search.rockmode) rocksetup(run);

    rs.reactionsfull = false;
    rs.intersectionsfull = false;
    rs.nir = 0;
    rs.nreactionset = 0;
    rs.nint = 0;
    rs.nechelon = 0;
    rs.widestreaction = 0;
    rs.progresscolumn = 12;
    rs.progresspending = false;

    if (rs.ncompp < 1) {
        putstr(run.io, 0, "no reactions in a system with no components?!", 1, chscreenlog);
        putstr(run.io, 0, "should not have got to here...", 1, chscreenlog);
        complete = false;
        return;
    }

    Combination comps;
    for (int k = 1; k <= rs.ncompp && !search.stopped; ++k) {
        comps.start(k);
        bool more = true;
        while (more && !search.stopped) {
            SubSystem sub;
            sub.k = k;
            for (int q = 1; q <= k; ++q) sub.comps[q] = comps.pos[q];
            marksubsystem(run, sub);
            rs.nmax = sub.nmax;
            if (sub.nmax > 1) {
                rs.rankc = subsystemrank(run, sub);
                if (rs.rankc + 1 <= sub.nmax) {
                    bool go = true;
                    if (search.rockmode) {
                        int inside = 0;
                        go = calclnir(run, sub.set, sub.members.data(), sub.nmax, k == rs.ncompp,
                                      search.wanted, inside);
                        search.foundhere = inside;
                        search.marked = false;
                    }
                    if (go) reactionstep(run, search, sub, inwindow);
                    if (!search.rockmode && !rs.reactionsfull && !rs.intersectionsfull &&
                        rs.rankc + 2 <= sub.nmax)
                        intersectionstep(run, sub);
                }
            }
            comps.next(k, rs.ncompp, more);
        }
    }
    progressflush(run);

    if (search.rockmode) {
        complete = search.stopped && rs.nir == rs.nindep;
        rs.incompleteset = rs.nir < rs.nindep;
        std::string text = rs.nir == 0 ? "no reactions"
                           : rs.incompleteset
                               ? "an INCOMPLETE independent set of reactions has been calculated"
                               : "an independent set of reactions has been calculated";
        putstr(run.io, 1, text, 1, chall);
        return;
    }

    printexclusions(run);
    complete = !rs.reactionsfull && !rs.intersectionsfull;
    prune(run, true);
    const bool schreinemakers = !rs.allreactions;
    std::string incomplete;
    if (rs.reactionsfull && schreinemakers)
        incomplete = "*** INCOMPLETE set of reactions and intersections ***";
    else if (rs.reactionsfull)
        incomplete = "*** INCOMPLETE set of reactions ***";
    else if (rs.intersectionsfull && schreinemakers)
        incomplete = "*** INCOMPLETE set of  intersections ***";
    std::string summary = "no of reactions = " + std::to_string(rs.nir);
    if (schreinemakers) summary += ", no of intersections = " + std::to_string(rs.nint);
    if (!incomplete.empty()) {
        putstr(run.io, 1, incomplete, 1, chall);
        putstr(run.io, 0, summary, 1, chall);
    } else {
        putstr(run.io, 1, summary, 1, chall);
    }
}

}  // namespace sm
