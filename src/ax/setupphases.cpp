// setupphases: the a-x file read into the phase records, then made ready
// for the phases the script chose.
#include "ax/setupphases.h"

#include "ax/ax_reader.h"
#include "ax/ax_reading.h"
#include "ax/phase_prep.h"
#include "console/runended.h"
#include "console/runfiles.h"
#include "run.h"

namespace sm {

namespace {

constexpr size_t maxwithnames = 100;

sstring shortof(const sstring& name) {
    const size_t sep = name.find('_');
    return sep == std::string::npos ? name : name.substr(0, sep);
}

// The phase inside the brackets of a variable name "x(g)".
sstring phaseofvariable(const sstring& name) {
    const size_t open = name.find('(');
    if (open == std::string::npos || name.back() != ')') return {};
    return name.substr(open + 1, name.size() - open - 2);
}

void resolvewith(Run& run, const PhaseChoice& choice) {
    PhaseStore& ps = run.phases;
    const EndMemberStore& st = run.store;
    ps.with.clear();
    if (choice.with.empty() || choice.with.size() > maxwithnames) {
        for (int k = 1; k <= st.npss; ++k) {
            ps.with.push_back(ps.prec1[k].pname);
            if (ps.prec1[k].longname != ps.prec1[k].pname) ps.with.push_back(ps.prec1[k].longname);
        }
        for (int k = 1; k <= st.nmin; ++k) ps.with.push_back(ps.prec0[k].pname);
    } else {
        ps.with = choice.with;
        // Two phases of one run may not share a short name: their variables
        // would share names.
        for (size_t a = 0; a < ps.with.size(); ++a)
            for (size_t b = a + 1; b < ps.with.size(); ++b)
                if (ps.with[a] != ps.with[b] && shortof(ps.with[a]) == shortof(ps.with[b]))
                    bomb("setupphases", "two phases, " + ps.with[a] + " and " + ps.with[b] +
                                            ", with the same name in \"with\"", 0);
    }
    auto named = [&](const sstring& x) {
        for (const auto& w : ps.with)
            if (w == x || shortof(w) == x) return true;
        return false;
    };
    for (const auto& x : choice.inexcess)
        if (!named(x)) bomb("setupphases", "in excess phase, " + x + ", not in \"with\"", 0);
    for (const auto& x : choice.tozero)
        if (!named(x)) bomb("setupphases", "tozero phase, " + x + ",  not in \"with\"", 0);
}

int findaxbyname(const Run& run, const sstring& name) {
    for (int k = 1; k <= run.store.npss; ++k)
        if (run.phases.prec1[k].pname == name || run.phases.prec1[k].longname == name) return k;
    return 0;
}

// "x(g)" of a copy of g called g2 becomes "x(g2)".
void swapname(sstring& word, const sstring& from, const sstring& to) {
    const std::string key = "(" + from + ")";
    const size_t at = word.rfind(key);
    if (at != std::string::npos && at + key.size() == word.size())
        word = cut22(word.substr(0, at) + "(" + to + ")");
}

bool hasguesses(const PhaseChoice& choice, const sstring& pname) {
    for (const auto& g : choice.xyzguess)
        if (phaseofvariable(g.name) == pname) return true;
    return false;
}

void makesamecoding(Run& run, const PhaseChoice& choice) {
    struct Set {
        sstring base;
        std::vector<std::pair<sstring, sstring>> names;  // new name, its fullname
    };
    std::vector<Set> sets;
    auto addname = [&](const sstring& base, const sstring& name, const sstring& full) {
        Set* set = nullptr;
        for (auto& s : sets)
            if (s.base == base) set = &s;
        if (!set) {
            sets.push_back({base, {}});
            set = &sets.back();
        }
        for (const auto& n : set->names)
            if (n.first == name) return;
        set->names.emplace_back(name, full);
    };
    for (const auto& s : run.phases.filesame) addname(s.base, s.name, s.fullname);
    if (!choice.samecodingoff)
        for (const auto& s : choice.samecoding)
            for (size_t k = 1; k < s.size(); ++k) addname(s[0], s[k], s[k]);

    PhaseStore& ps = run.phases;
    EndMemberStore& st = run.store;
    for (const auto& set : sets) {
        const int base = findaxbyname(run, set.base);
        if (base == 0) bomb("setupphases", "first samecoding phase, " + set.base + " is not in the axfile", 0);
        if (ps.prec1[base].coding == 2 && ps.prec1[base].psuffix.empty())
            bomb("setupphases", "first samecoding phase, " + set.base + " should be a long phasename", 0);
        for (const auto& [name, full] : set.names) {
            sstring shortname, suffix;
            long2shortpname(name, shortname, suffix);
            const bool wanted = ps.inwith(shortname, name) || hasguesses(choice, shortname);
            if (!wanted) continue;
            if (ps.prec1[base].coding == 2 && !hasguesses(choice, shortname))
                bomb("setupphases", "no xyzguess for samecoding phase " + name, 0);
            if (st.npss == maxnp || st.nph == maxnph)
                bomb("setupphases", "too many ss phases (in making samecoding phases)", 0);
            AxPhase& copy = ps.prec1[++st.npss];
            ++st.nph;
            copy = ps.prec1[base];
            const sstring from = copy.pname;
            copy.longname = name;
            copy.pname = shortname;
            copy.psuffix = suffix;
            copy.pfullname = full;
            copy.copyof = ps.prec1[base].pname;
            for (int v = 1; v <= copy.nxv; ++v) swapname(copy.xv[v].xname, from, shortname);
            for (int j = 1; j <= copy.nem; ++j) swapname(copy.em[j].ename, from, shortname);
        }
    }
}

void applyguess(AxVariable& x, const GuessLine& g) {
    x.guess = g.value;
    x.sd = g.sd;
    if (g.rangeset) {
        if (!x.lowset || g.lo > x.rlow) x.rlow = g.lo;
        if (!x.highset || g.hi < x.rhigh) x.rhigh = g.hi;
        x.lowset = x.highset = true;
        if (x.rlow > x.rhigh) bomb("setupphases", "read in lower limit > upper limit in xyz range", 0);
    }
}

// A phase of coding 2 takes all its guesses from the script, in the order of
// its variables; one with guesses in the file takes those the script names.
void applyguesses(AxPhase& ph, const PhaseChoice& choice) {
    std::vector<const GuessLine*> mine;
    for (const auto& g : choice.xyzguess)
        if (phaseofvariable(g.name) == ph.pname) mine.push_back(&g);
    if (ph.coding != 2) {
        for (const GuessLine* g : mine)
            for (int v = 1; v <= ph.nxv; ++v)
                if (ph.xv[v].xname == g->name) {
                    applyguess(ph.xv[v], *g);
                    ph.hasguesses = true;
                }
        return;
    }
    if (mine.empty()) {
        if (choice.xyzguess.empty()) bomb("setupphases", "no xyz starting guesses in scriptfile 1", 0);
        bomb("setupphases", "no xyz starting guesses for " + ph.pname, 0);
    }
    const size_t n = std::min(mine.size(), static_cast<size_t>(ph.nxv));
    for (size_t k = 0; k < n; ++k)
        if (mine[k]->name != ph.xv[k + 1].xname)
            bomb("setupphases", "xyzguess names don't match axfile: \"" + mine[k]->name + "\" \"" +
                                    ph.xv[k + 1].xname + "\"", 0);
    if (mine.size() != static_cast<size_t>(ph.nxv)) bomb("setupphases", "xyzguess: wrong no of vars", 0);
    for (int v = 1; v <= ph.nxv; ++v) applyguess(ph.xv[v], *mine[v - 1]);
    ph.hasguesses = true;
}

// sd of a W the file left open, scaled by the sizes of the pair and the
// mean number of sites of the end-members.
void defaultwsd(AxPhase& ph, bool defaultsd) {
    if (ph.nem == 0) return;
    real s = 0;
    for (int j = 1; j <= ph.nem; ++j) s += ph.em[j].maxpower;
    s /= ph.nem;
    const real w = defaultsd ? 2 : 0;
    for (int g = 1; g <= ph.ngt; ++g)
        if (ph.wunset[g]) ph.wsd[g] = 0.5L * (ph.aa[ph.gt[g][0]] + ph.aa[ph.gt[g][1]]) * w * s;
}

template <typename Phase>
void applyscripttables(Phase& ph, const PhaseChoice& choice) {
    for (const auto& u : choice.uncertainty)
        if (u.name == ph.pname || u.name == ph.longname) ph.uncert[1] = u.value;
    for (const auto& c : choice.rgb)
        if (c.name == ph.pname || c.name == ph.longname) {
            ph.hasrgb = true;
            ph.rgb = {c.r, c.g, c.b};
        }
}

// With the dataset's names at hand, an end-member or make term that the
// dataset lacks is reported where the a-x file names it.
void checkdatasetnames(Run& run) {
    const EndMemberStore& st = run.store;
    const PhaseStore& ps = run.phases;
    if (st.ntp == 0) return;
    auto check = [&](const sstring& name, const std::string& phase, int line) {
        int k;
        if (dsfind(st, name, k)) return;
        std::string file = ps.axname;
        const size_t slash = file.find_last_of('/');
        if (slash != std::string::npos) file = file.substr(slash + 1);
        putstr(run.io, 1, "a-x file \"" + file + "\", line " + std::to_string(line) + ", phase " + phase, 1,
               chscreenlog);
        bomb("setupphases", "stuff up : unrecognised name : " + name, 0);
    };
    auto checkmake = [&](const MakeRecord& m, const sstring& name, const std::string& phase, int line) {
        if (m.nmake <= 0) check(name, phase, line);
        for (int t = 1; t <= m.nmake; ++t) check(m.makename[t], phase, m.line);
    };
    for (int k = 1; k <= st.npss; ++k) {
        const AxPhase& ph = ps.prec1[k];
        if (!ps.inwith(ph)) continue;
        for (int j = 1; j <= ph.nem; ++j) checkmake(ph.em[j].make, ph.em[j].ename, ph.longname, ph.em[j].line);
    }
    for (int k = 1; k <= st.nmin; ++k) {
        const PurePhase& p = ps.prec0[k];
        if (ps.inwith(p)) checkmake(p.make, p.ename, p.pname, p.line);
    }
}

}  // namespace

void preparephases(Run& run, const PhaseChoice& choice) {
    PhaseStore& ps = run.phases;
    EndMemberStore& st = run.store;
    resolvewith(run, choice);
    makesamecoding(run, choice);
    for (int k = 1; k <= st.npss; ++k) {
        AxPhase& ph = ps.prec1[k];
        if (!ps.inwith(ph)) continue;
        applyguesses(ph, choice);
        contract(ph);
        checkguesses(run, ph);
        setlimits(ph);
        checkguesslimits(ph);
        checkcoding(run, ph);
    }
    for (int k = 1; k <= st.npss; ++k) {
        AxPhase& ph = ps.prec1[k];
        classifyfluid(ph);
        defaultwsd(ph, choice.defaultsd);
        applyscripttables(ph, choice);
    }
    for (int k = 1; k <= st.nmin; ++k) applyscripttables(ps.prec0[k], choice);
    checkdatasetnames(run);
}

void setupphases(Run& run, const PhaseChoice& choice) {
    const bool calib = run.runmode == rmregression;
    sstring suffix = choice.axfile;
    std::string name;
    TextFile file;
    promptdatafile(run.io, name, calib ? "ds-ax" : "sm-", suffix, "a-x info", file);
    readaxfile(run, file, choice);
    preparephases(run, choice);
}

}  // namespace sm
