// Script words of batches, Monte Carlo variation and fractionation: read,
// checked and stored here; the loops that use them live with the calculation.
#include <algorithm>
#include <cmath>

#include "console/prompts.h"
#include "console/runended.h"
#include "console/scan.h"
#include "run.h"
#include "script/vocabulary.h"

namespace sm {

namespace {

BatchScripts& bt(Run& run) { return run.script.batches; }

constexpr int maxbatches = 99;
constexpr int maxbatchpt = 10;      // P-T pairs of one batch
constexpr int maxxyzblocks = 99;
constexpr int maxblockguesses = 200;
constexpr int maxfilters = 30;      // filters of one set
constexpr int maxmc = 150;
constexpr int maxmcfuncterms = 20;

// Walks the items of a line, word by word.
struct Cursor {
    const ScriptLine& line;
    int i = 1;
    bool more() const { return i <= line.nitems(); }
    const sstring& peek() const { return line.item(i); }
    const sstring& next() { return line.item(i++); }
    bool nextint(int& v) {
        if (!more() || whatisstring(peek()) != tokint) return false;
        std::string m;
        if (!string2int(next(), v, m)) return false;
        return true;
    }
    bool nextreal(real& v) {
        if (!more() || !isnumberword(peek())) return false;
        v = wordreal(next());
        return true;
    }
};

int inwith(const Run& run, const sstring& name) {
    const auto& with = run.script.phases.with;
    for (size_t k = 0; k < with.size(); ++k)
        if (with[k] == name) return static_cast<int>(k) + 1;
    return 0;
}

void echobatch(Run& run, const Batch& b, int n) {
    if (n == 1) putstr(run.io, 1, "batches", 1, chall);
    std::string text = std::to_string(n) + " : ";
    const auto& with = run.script.phases.with;
    bool gap = false;
    for (size_t k = 0; k < with.size(); ++k) {
        if (b.phases[k]) {
            text += with[k] + " ";
            gap = false;
        } else if (!gap) {
            text += ". ";
            gap = true;
        }
    }
    text += ": " + std::to_string(b.xyzblock) + (b.bulk1 != 0 ? "b" : "0") + " p" +
            std::to_string(b.modes.size()) + " i" + std::to_string(b.isopleths.size());
    putstr(run.io, 0, text, 1, chall);
}

void batch(Run& run, const ScriptLine& line) {
    BatchScripts& s = bt(run);
    if (line.flag == 1 || s.batchesoff) return;
    if (run.script.phases.with.empty()) {
        s.batchesoff = true;  // batches need the phases of with
        return;
    }
    if (static_cast<int>(s.batch.size()) >= maxbatches) scriptbomb("too many batch");
    Batch b;
    b.oldnumber = static_cast<int>(s.batch.size()) + 1;
    b.phases.assign(run.script.phases.with.size(), false);
    Cursor c{line};
    while (c.more() && inwith(run, c.peek())) b.phases[inwith(run, c.next()) - 1] = true;
    if (c.more() && whatisstring(c.peek()) == toktext)
        scriptbomb("unrecognised phase, " + c.peek() + ", in batch");
    int np = 0, nt = 0;
    if (!c.nextint(b.variance) || !c.nextint(np) || !c.nextint(nt))
        scriptbomb("insufficient info in batch (1)");
    if (b.variance < 0) scriptbomb("batch with negative variance?");
    if (np < 1 || nt < 1) scriptbomb("not enough batch PT");
    if (np * nt > maxbatchpt) scriptbomb("too many batch PT");
    for (int k = 0; k < np + nt; ++k) {
        real v;
        if (!c.nextreal(v)) scriptbomb("insufficient info in batch (2)");
        if (k < np)
            b.P.push_back(v);
        else
            b.T.push_back(v + 273.15L);
    }
    if (!c.nextint(b.calccode)) scriptbomb("insufficient info in batch (3a)");
    if (!c.nextint(b.xyzblock)) scriptbomb("in batch, no xyz flag");
    if (b.xyzblock < 1 || b.xyzblock > maxxyzblocks) scriptbomb("in batch, kxyz out of range");
    if (!c.nextint(b.bulk1)) scriptbomb("in batch, no bulk flag");
    if (b.bulk1 == 0 && run.script.bulk.pseudosection == 0)
        scriptbomb("in batch, pseudosection wanted but no bulk");
    if (b.bulk1 != 0) {
        const int nbulk = static_cast<int>(s.batchbulk.size());
        if (b.bulk1 < 1 || b.bulk1 > nbulk) scriptbomb("in batch, comp1 code out of range");
        if (!c.nextint(b.bulk2)) scriptbomb("in batch, comp2 not accessed");
        if (b.bulk2 < 0 || b.bulk2 > nbulk) scriptbomb("in batch, comp2 code out of range");
        b.bulk = s.batchbulk[b.bulk1 - 1];
        if (b.bulk2 != 0) {
            if (!c.nextreal(b.proportion)) scriptbomb("in batch, no bulk proportion");
            if (b.proportion < 0 || b.proportion > 1) scriptbomb("in batch, bung bulk proportion");
            const auto& second = s.batchbulk[b.bulk2 - 1];
            for (size_t k = 0; k < b.bulk.size(); ++k) {
                b.bulk[k] = b.bulk[k] * b.proportion + second[k] * (1 - b.proportion);
                if (b.bulk[k] < 0.0001L) b.bulk[k] = 0;
            }
        }
        int nmodes;
        if (!c.nextint(nmodes)) scriptbomb("in batch, no mode setting code");
        if (nmodes < 0 || nmodes > 2) scriptbomb("in batch, wrong number of modes set");
        for (int k = 1; k <= nmodes; ++k) {
            const std::string which = "phase" + std::to_string(k);
            if (c.i + 1 > line.nitems()) scriptbomb("in batch, not enough pseudosection info");
            BatchModeSet m;
            m.phase = c.next();
            if (!inwith(run, m.phase)) scriptbomb("in batch, modeset " + which + " not in which");
            if (!c.nextreal(m.value) || m.value < 0 || m.value > 1)
                scriptbomb("in batch, modeset " + which + " mode stuffed");
            b.modes.push_back(m);
        }
    }
    int niso;
    if (!c.nextint(niso)) scriptbomb("in batch, no isopleth flag");
    if (niso < 0 || (!b.modes.empty() && niso > 2))
        scriptbomb("in batch, wrong number of isopleths set");
    for (int k = 0; k < niso; ++k) {
        BatchIsopleth iso;
        if (c.i + 2 > line.nitems())
            bomb("readscripts", "in batch, not enough info for isopleths", 0);
        iso.phase = c.next();
        if (!inwith(run, iso.phase)) bomb("readscripts", "in batch, wrong name for isopleths", 0);
        if (!c.nextint(iso.code) || !c.nextreal(iso.value))
            bomb("readscripts", "in batch, not enough info for isopleths", 0);
        b.isopleths.push_back(iso);
    }
    s.batchflag = 0;
    s.batch.push_back(b);
    s.batchcount = static_cast<int>(s.batch.size());
    echobatch(run, b, s.batchcount);
}

// "all", "all except" and numbers, or numbers: the batches of a list line.
std::vector<int> batchlist(Run& run, const ScriptLine& line, const char* name) {
    const int n = static_cast<int>(bt(run).batch.size());
    std::vector<int> list;
    Cursor c{line};
    bool except = false;
    if (c.more() && c.peek() == "all") {
        c.next();
        if (c.more() && c.peek() == "except") {
            c.next();
            except = true;
        } else {
            for (int k = 1; k <= n; ++k) list.push_back(k);
            return list;
        }
    }
    std::vector<int> given;
    int v;
    while (c.nextint(v)) {
        if (v < 1 || v > n) scriptbomb(std::string(name) + " not in range");
        given.push_back(v);
    }
    if (!except) return given;
    for (int k = 1; k <= n; ++k)
        if (std::find(given.begin(), given.end(), k) == given.end()) list.push_back(k);
    return list;
}

void batchreq(Run& run, const ScriptLine& line) {
    if (line.nitems() == 0) scriptbomb("in batchreq, not enough info in a line");
    std::vector<int> list = batchlist(run, line, "batchreq");
    if (list.empty()) scriptbomb("batchreq not given an index");
    bt(run).batchreqseen = true;
    bt(run).batchreq.push_back(list);
}

void batchswitch(Run& run, const ScriptLine& line) {
    BatchScripts& s = bt(run);
    std::vector<int> list = batchlist(run, line, "batchswitch");
    s.batchswitchseen = true;
    for (int k : list)
        if (std::find(s.batchswitch.begin(), s.batchswitch.end(), k) == s.batchswitch.end())
            s.batchswitch.push_back(k);
    std::sort(s.batchswitch.begin(), s.batchswitch.end());
}

void batchxyzguess(Run& run, const ScriptLine& line) {
    BatchScripts& s = bt(run);
    if (line.nitems() == 0) scriptbomb("in bxyzguess, not enough info in a line (1)");
    if (line.item(1) == "startblock") {
        if (s.xyzblocks >= maxxyzblocks) scriptbomb("in bxyzguess, too big");
        ++s.xyzblocks;
        s.batchxyzguess.emplace_back();
        return;
    }
    if (line.nitems() < 2) scriptbomb("in bxyzguess, not enough info in a line (2)");
    if (s.batchxyzguess.empty()) scriptbomb("in bxyzguess, no guess");
    auto& block = s.batchxyzguess.back();
    if (static_cast<int>(block.size()) >= maxblockguesses)
        scriptbomb("in bxyzguess, too many guesses");
    XyzGuess g;
    Cursor c{line};
    g.name = c.next();
    if (!c.nextreal(g.value)) scriptbomb("in bxyzguess, no guess");
    if (c.more() && c.peek() == "range") {
        c.next();
        if (!c.nextreal(g.lo) || !c.nextreal(g.hi)) scriptbomb("in bxyzguess, range info fubar");
    }
    block.push_back(g);
}

void filter(Run& run, const ScriptLine& line) {
    BatchScripts& s = bt(run);
    Cursor c{line};
    int n;
    if (!c.nextint(n)) scriptbomb("filter keyword must be followed by an integer");
    if (s.batch.empty()) scriptbomb("filters not interleaved with batches");
    if (s.filters.size() >= s.batch.size()) scriptbomb("too many filter sets");
    if (n > maxfilters || n < 0) scriptbomb("too many filters");
    const int have = line.nitems() - 1;
    if (have < 3 * n) scriptbomb("insufficient filter info");
    if (have > 3 * n) scriptbomb("wrong length of filter info");
    std::vector<FilterTerm> set;
    for (int k = 0; k < n; ++k) {
        FilterTerm f;
        const sstring w = c.next();
        if (whatisstring(w) == tokint) {
            std::string m;
            string2int(w, f.code, m);
        } else {
            f.name = w;
        }
        if (!c.nextreal(f.low)) scriptbomb("lower filter not a number");
        if (!c.nextreal(f.high)) scriptbomb("higher filter not a number");
        if (f.code == 2 || f.name == "T") {
            f.low += 273.15L;
            f.high += 273.15L;
        }
        set.push_back(f);
    }
    s.filters.push_back(set);
}

void mcit(Run& run, const ScriptLine& line) {
    BatchScripts& s = bt(run);
    Cursor c{line};
    real a, n;
    if (!c.nextreal(a) || !c.nextreal(n) || !(std::fabs(n) < 32767)) scriptbomb("wrong mcit info");
    s.mcita = a;
    s.mcitn = static_cast<int>(std::llround(static_cast<double>(n)));
}

int findrange(const BatchScripts& s, const sstring& name) {
    for (size_t k = 0; k < s.mcrange.size(); ++k)
        if (s.mcrange[k].name == name) return static_cast<int>(k) + 1;
    return 0;
}

void mcrange(Run& run, const ScriptLine& line) {
    BatchScripts& s = bt(run);
    Cursor c{line};
    McRange r;
    if (!c.more()) scriptbomb("wrong mcrange info");
    r.name = c.next();
    if (!c.nextreal(r.centre) || !c.nextreal(r.width)) scriptbomb("wrong mcrange info");
    if (static_cast<int>(s.mcrange.size()) >= maxmc) scriptbomb("too many mcrange");
    s.mcrange.push_back(r);
}

void mcfunc(Run& run, const ScriptLine& line) {
    BatchScripts& s = bt(run);
    if (line.nitems() < 3) scriptbomb("wrong mcfunc info (1)");
    Cursor c{line};
    McFunc f;
    f.name = c.next();
    int n;
    if (!c.nextreal(f.constant) || !c.nextint(n) || n < 0) scriptbomb("wrong mcfunc info (2)");
    if (n > maxmcfuncterms) scriptbomb("too many terms in mcfunc");
    for (int k = 0; k < n; ++k) {
        real coef;
        if (!c.nextreal(coef) || !c.more()) scriptbomb("wrong mcfunc info (3)");
        const int r = findrange(s, c.next());
        if (r == 0) scriptbomb("wrong mcfunc info (3)");
        f.coef.push_back(coef);
        f.range.push_back(r);
    }
    if (static_cast<int>(s.mcfunc.size()) >= maxmc) scriptbomb("too many mcfunc");
    s.mcfunc.push_back(f);
}

void batchbulk(Run& run, const ScriptLine& line) {
    BatchScripts& s = bt(run);
    std::vector<real> comp;
    Cursor c{line};
    real v;
    while (c.nextreal(v)) comp.push_back(v);
    if (comp.empty() || c.more()) scriptbomb("wrong batchbulk info");
    if (s.batchbulk.empty()) s.batchbulkwidth = static_cast<int>(comp.size());
    if (static_cast<int>(comp.size()) != s.batchbulkwidth) scriptbomb("wrong batchbulk info");
    real sum = 0;
    for (real x : comp) sum += x;
    if (!(sum > 0)) {
        putstr(run.io, 0, " bulk composition is bad", 1, chscreenlog);
        s.batchbulkcount = 0;
        scriptbomb("wrong batchbulk info");
    }
    for (real& x : comp) x *= 100 / sum;
    s.batchbulk.push_back(comp);
    s.batchbulkcount = static_cast<int>(s.batchbulk.size());
}

// The variable of an mc line: W(...), a(...) or DQF(...) and a final letter.
void mcvariable(const sstring& w, McVariable& v) {
    const char last = w.empty() ? ' ' : w.back();
    if (last != 'a' && last != 'b' && last != 'c') scriptbomb("in mc, abc");
    v.term = last - 'a' + 1;
    const size_t open = w.find('(');
    if (open == std::string::npos) scriptbomb("in mc, mcvarname (1)");
    if (w.size() < 2 || w[w.size() - 2] != ')') scriptbomb("in mc, mcvarname (2)");
    const std::string head = w.substr(0, open);
    if (head == "W")
        v.code = 1;
    else if (head == "a")
        v.code = 2;
    else if (head == "DQF")
        v.code = 3;
    else
        scriptbomb("in mc, mcvarname (3)");
    v.variable = w;
}

void mc(Run& run, const ScriptLine& line) {
    BatchScripts& s = bt(run);
    if (line.flag == 1) return;
    if (run.script.phases.samecodingflag == 0)
        scriptbomb("scriptfile samecoding not implemented in mcsm");
    if (line.nitems() < 3) scriptbomb("in mc, not enough info");
    McVariable v;
    v.phase = line.item(1);
    if (!inwith(run, v.phase)) scriptbomb(v.phase + " in mc not in \"with\"");
    mcvariable(line.item(2), v);
    const sstring& what = line.item(3);
    if (what[0] == '<' || what[0] == '>') scriptbomb("in mc, >/< not currently implemented");
    if (what[0] == '=') {
        if (s.mcrange.empty()) scriptbomb("in mc, no mcrange");
        v.kind = 1;
        v.ref = findrange(s, what.substr(1));
        if (v.ref == 0) scriptbomb("in mc, no match with mcrange");
    } else if (what == "f") {
        if (s.mcfunc.empty()) scriptbomb("in mc, no mcfunc");
        v.kind = 2;
        for (size_t k = 0; k < s.mcfunc.size(); ++k)
            if (s.mcfunc[k].name == v.variable) v.ref = static_cast<int>(k) + 1;
        if (v.ref == 0) scriptbomb("in mc, no match with mcfunc");
    } else if (isnumberword(what) && line.nitems() < 4) {
        scriptbomb("in mc, not enough info");  // a value wants its standard deviation
    } else if (isnumberword(what) && isnumberword(line.item(4))) {
        v.value = wordreal(what);
        v.sd = wordreal(line.item(4));
    } else {
        scriptbomb("in mc, bad range info");
    }
    if (static_cast<int>(s.mc.size()) >= maxmc) scriptbomb("too many mc");
    s.mcflag = 0;
    s.mc.push_back(v);
    s.mccount = static_cast<int>(s.mc.size());
}

void fract(Run& run, const ScriptLine& line) {
    bt(run).fract = line.flag;
    if (line.flag == 1) return;
    putstr(run.io, 1, "fractcalcs are currently untested - what state are they in??", 1,
           chscreenlog);
    killrun();
}

}  // namespace

void batchwords(std::vector<WordEntry>& t) {
    t.push_back({{"batch"}, mode1, false, batch});
    t.push_back({{"batchreq"}, mode1, false, batchreq});
    t.push_back({{"batchxyzguess"}, mode1, false, batchxyzguess});
    t.push_back({{"batchswitch"}, mode1, false, batchswitch});
    t.push_back({{"filter", "flitter"}, mode1, false, filter});
    t.push_back({{"batchdebug"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { bt(r).batchdebug = l.flag; }});
    t.push_back({{"mc"}, mode1, false, mc});
    t.push_back({{"mcit"}, mode1, true, mcit});
    t.push_back({{"mcrange"}, mode1, false, mcrange});
    t.push_back({{"mcfunc"}, mode1, false, mcfunc});
    t.push_back({{"batchbulk", "mcbulk"}, mode1, false, batchbulk});
    t.push_back({{"mcdebug"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { bt(r).mcdebug = l.flag; }});
    t.push_back({{"gaussmc"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { bt(r).gaussmc = l.flag == 0; }});
    t.push_back({{"mcoutcurrentway"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { bt(r).mcoutcurrentway = l.flag; }});
    t.push_back({{"fract", "fractionation"}, mode1, true, fract});
    t.push_back({{"fractdebug"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { bt(r).fractdebug = l.flag; }});
}

}  // namespace sm
