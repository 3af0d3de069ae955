// The a-x file: an optional header, then phase blocks to the end of the
// file. Each block is a pure phase or an a-x phase.
#include "ax/ax_reader.h"

#include <cmath>

#include "ax/ax_reading.h"
#include "console/prompts.h"
#include "console/runended.h"
#include "console/scan.h"

namespace sm {

void long2shortpname(const sstring& name, sstring& shortname, sstring& suffix) {
    const size_t sep = name.find('_');
    shortname = name;
    suffix.clear();
    if (sep == std::string::npos) return;
    if (sep == 0 || sep + 1 == name.size())
        bomb("long2shortpname", "separator char in pname in wrong place in " + name, 0);
    shortname = name.substr(0, sep);
    suffix = name.substr(sep + 1);
}

namespace {

std::string num(int n) { return std::to_string(n); }

// "reading ax: " and the phase names, broken before a name that would take
// the line past the width the console keeps whole.
void shownname(AxReading& r, const sstring& name) {
    constexpr size_t width = 78;
    if (r.namesline.empty()) {
        r.namesline = "reading ax: " + name;
        return;
    }
    if (r.namesline.size() + 1 + name.size() > width) {
        putstr(r.run.io, 0, r.namesline, 1, chscreen);
        r.namesline = blanks(12) + name;
    } else {
        r.namesline += " " + name;
    }
}

void readheader(AxReading& r) {
    r.words.next("header");
    r.words.skipline();
    r.ps.header.assign(1, std::string());
    r.ps.header.push_back("#");
    int kept = 0;
    for (;;) {
        std::string text;
        bool ended;
        readline(r.words.file(), text, ended);
        if (ended) break;
        if (++kept > maxheaderkept) bomb("read", "too many header lines", 0);
        if (text.size() > static_cast<size_t>(maxheaderwidth)) text.resize(maxheaderwidth);
        r.ps.header.push_back(text);
    }
    r.ps.header.push_back("#");
    r.ps.nheader = static_cast<int>(r.ps.header.size()) - 1;
}

void readverbatim(AxReading& r, AxPhase& ph) {
    r.words.skipline();
    ph.info.assign(1, std::string());
    for (;;) {
        std::string text;
        bool ended;
        readline(r.words.file(), text, ended);
        if (ended) break;
        if (ph.ninfo == maxinfolines) bomb("read", "too many info lines for " + ph.longname, 0);
        ph.info.push_back(text);
        ++ph.ninfo;
    }
}

// ---- pure phases ----------------------------------------------------------

void readactivity(AxReading& r, PurePhase& p) {
    p.fixeda = r.words.getreal("activity of " + p.pname);
    if (!(p.fixeda > 0 && p.fixeda <= 1)) bomb("setupphases", "activity for " + p.pname + " ...", 0);
    std::string w;
    int cls;
    if (r.words.peek(w, cls) && (cls == tokreal || w == "0"))
        p.sdfixeda = r.words.getreal("sd of activity of " + p.pname);
}

void readpurephase(AxReading& r, const sstring& name, int line) {
    if (r.calib) bomb("read", "inappropriate ax info", 0);
    EndMemberStore& st = r.st;
    if (st.nmin == maxnmin || st.nph == maxnph) bomb("read", "too many phases", 0);
    PurePhase& p = r.ps.prec0[++st.nmin];
    ++st.nph;
    p = PurePhase{};
    p.pname = name;
    p.longname = name;
    p.ename = name;
    p.line = line;
    bool codes = false;
    std::string w;
    int cls;
    if (r.words.peek(w, cls)) {
        if (cls == tokint) {  // the integer 1: an activity of 1, or a one end-member phase
            bool activity = false;
            int dsno;
            if (dsfind(st, name, dsno)) {
                if (!r.namesline.empty()) putstr(r.run.io, 0, r.namesline, 1, chscreen);
                r.namesline.clear();
                putstr(r.run.io, 1, "datafile appears to be ambiguous: a 1 immediately follows " + name + ";",
                       1, chscreenlog);
                putstr(r.run.io, 0, "this means either an activity of 1, or it's a 1 end-member phase.", 1,
                       chscreenlog);
                activity = query(r.run.io, "the '1' its activity");
            }
            if (activity) {
                readactivity(r, p);
            } else {
                r.words.next("end-member count of " + name);
                p.ename = r.words.getname("end-member of " + name);
                if (p.ename == name)
                    bomb("setupphases", "names: phase, " + name + ", and end-member, " + p.ename +
                                            ", must be different", 0);
                if (p.ename == "buffer") {
                    if (r.ps.nbuffer == maxbuffers) bomb("read", "too many buffers", 0);
                    r.ps.buffer[++r.ps.nbuffer] = st.nmin;
                    p.isbuffer = true;
                }
                if (r.words.peek(w, cls) && (cls == tokreal || cls == tokrational)) readactivity(r, p);
            }
            codes = true;
        } else if (cls == tokreal || cls == tokrational) {
            readactivity(r, p);
            codes = true;
        }
    }
    readoptions(r, p.ename, p.make, nullptr, &p, 0, codes);
    checkcharged(p.ename, p.make, p.emtd);
}

// ---- a-x phases -----------------------------------------------------------

void readcoding(AxReading& r, AxPhase& ph) {
    const std::string& name = ph.longname;
    std::string w;
    int cls;
    r.words.peek(w, cls);
    std::string m;
    int code = 0;
    if (cls == tokint && string2int(w, code, m) &&
        (code == 1 || code == 2 || (code == 0 && r.st.dsmode == -1))) {
        r.words.next("coding of " + name);
    } else if (r.st.dsmode == -1 && cls != tokint) {
        code = 0;
    } else {
        bomb("read", "bad encoding for " + name, 0);
    }
    ph.coding = code;
    if (code == 1 && !ph.psuffix.empty()) bomb("read", "longpnames not implemented for coding = 1", 0);

    if (code == 2) {
        ph.pfullname = r.words.getname("fullname of " + name);
        ph.oxnorm = r.words.getreal("no of oxygens in (ref) formula for " + name);
        const std::string v = r.words.next("verbatim for " + name);
        if (v == "also" || v == "samecoding") {
            int pairs = 0;
            while (!r.words.peekis("verbatim")) {
                if (pairs == maxsamecoding) bomb("read", "verbatim missing for " + name, 0);
                PhaseStore::SameCoding s;
                s.base = ph.pname;
                s.name = r.words.getname("samecoding phase of " + name);
                s.fullname = r.words.getname("samecoding fullname of " + name);
                r.ps.filesame.push_back(s);
                ++pairs;
            }
            r.words.next("verbatim for " + name);
        } else if (v != "verbatim") {
            bomb("read", "no verbatim", 0);
        }
        readverbatim(r, ph);
    } else if (code == 1) {
        if (r.words.peekis("verbatim")) {
            r.words.next("verbatim for " + name);
            readverbatim(r, ph);
        } else {
            const std::string z = r.words.next("info after no of end-members for " + name, cls);
            int zero = -1;
            if (cls != tokint || !string2int(z, zero, m) || zero != 0)
                bomb("read", "incorrect info after no of end-members for " + name, 0);
        }
    }
}

void readvariable(AxReading& r, AxPhase& ph, int v, std::vector<std::string>& defnames) {
    AxVariable& x = ph.xv[v];
    x.xname = r.words.getname("variable name in " + ph.pname);
    const size_t open = x.xname.find('(');
    if (open == std::string::npos || open == 0 || x.xname.back() != ')' || open + 2 > x.xname.size() - 1)
        bomb("read", "varname, \"" + x.xname + "\", should be in form \"xyzname(phasename)\"", 0);
    const std::string inner = x.xname.substr(open + 1, x.xname.size() - open - 2);
    if (inner != ph.pname) bomb("read", "name in " + inner + " must be the same as phasename, " + ph.pname, 0);
    x.xdisp = x.xname.substr(0, open);

    if (ph.coding == 2) {
        if (r.words.peekclass() == tokreal)
            bomb("read", "with coding = 2, omit starting guesses for " + ph.pname, 0);
    } else {
        x.guess = r.words.getreal("guess for " + x.xname);
        if (x.guess == 0) bomb("read", "guess for " + x.xname + " is zero", 0);
        if (r.words.peekis("sd")) {
            r.words.next("sd for " + x.xname);
            x.sd = r.words.getreal("sd for " + x.xname);
            if (x.sd < 0 || x.sd > 1) x.sd = 0;
        }
    }
    if (r.words.peekis("-")) {
        r.words.next("definition of " + x.xname);
    } else {
        x.hasdef = true;
        x.defnum = readxdefinition(r, ph, "numerator of " + x.xname, defnames);
        x.defden = readxdefinition(r, ph, "denominator of " + x.xname, defnames);
    }
    if (r.words.peekis("isQ") || r.words.peekis("ODvar")) {
        r.words.next("order flag of " + x.xname);
        x.isod = true;
    }
    if (x.xname[0] == 'Q' || x.xname[0] == 'N') x.isod = true;
    if (r.words.peekis("range")) {
        r.words.next("range of " + x.xname);
        x.rlow = r.words.getreal("lower limit of " + x.xname);
        x.rhigh = r.words.getreal("upper limit of " + x.xname);
        if (x.rlow > x.rhigh) bomb("read", "lower limit > upper limit (1)", 0);
        x.lowset = x.highset = true;
    }
    if (x.isod) ph.hasq = true;
}

// The name inside "p(...)" or "a(...)", or the name as it stands.
std::string innername(const std::string& s, char prefix) {
    if (s.size() > 3 && s[0] == prefix && s[1] == '(' && s.back() == ')') return s.substr(2, s.size() - 3);
    return s;
}

// Proportions named in the variable definitions, by index or name.
void resolvedefinitions(AxPhase& ph, const std::vector<std::string>& names) {
    for (auto& t : ph.pool.term) {
        if (t.var >= 0) continue;
        const std::string& w = names[-t.var - 1];
        int k = 0;
        std::string m;
        if (whatisstring(w) == tokint) {
            if (!string2int(w, k, m) || k < 1 || k > ph.nem) k = 0;
        } else {
            for (int j = 1; j <= ph.nem && k == 0; ++j)
                if (ph.propname[j] == w || innername(ph.propname[j], 'p') == innername(w, 'p')) k = j;
        }
        if (k == 0) bomb("read", w + " not a variable name: definition of a variable of " + ph.pname, 0);
        t.var = k;
    }
}

void readinteractions(AxReading& r, AxPhase& ph) {
    const std::string model = r.words.next("model of " + ph.pname);
    if (model == "ideal") ph.nonideal = ideal;
    else if (model == "sf" || model == "regular") ph.nonideal = symmetric;
    else if (model == "asf" || model == "vanlaar") ph.nonideal = asymmetric;
    else bomb("read", "not recognised (should be ideal, sf or asf)", 0);
    const int n = ph.nem;
    if (n * (n - 1) / 2 > maxgterms) bomb("read", "phase too big for auto gammas", 0);
    for (int j = 1; j <= n; ++j) {
        ph.aa[j] = 1;
        ph.ab[j] = ph.ac[j] = 0;
    }
    if (ph.nonideal == ideal) return;
    int g = 0;
    for (int i = 1; i < n; ++i)
        for (int j = i + 1; j <= n; ++j) {
            ++g;
            ph.gt[g] = {i, j};
            ph.wname[g] = r.words.getname("W name in " + ph.pname);
            if (ph.wname[g].find(',') == std::string::npos) bomb("read", "W not strictsyntax", 0);
            ph.wa[g] = r.words.getreal("a of " + ph.wname[g] + " in " + ph.pname);
            ph.wb[g] = r.words.getreal("b of " + ph.wname[g] + " in " + ph.pname);
            ph.wc[g] = r.words.getreal("c of " + ph.wname[g] + " in " + ph.pname);
            ph.wunset[g] = true;
            if (r.words.peekis("sd")) {
                r.words.next("sd of " + ph.wname[g]);
                ph.wsd[g] = r.words.getreal("sd of " + ph.wname[g] + " in " + ph.pname);
                ph.wunset[g] = false;
            }
        }
    ph.ngt = g;
    if (ph.nonideal == asymmetric)
        for (int j = 1; j <= n; ++j) {
            ph.aname[j] = r.words.getname("size parameter name in " + ph.pname);
            ph.aa[j] = r.words.getreal("a of " + ph.aname[j] + " in " + ph.pname);
            ph.ab[j] = r.words.getreal("b of " + ph.aname[j] + " in " + ph.pname);
            ph.ac[j] = r.words.getreal("c of " + ph.aname[j] + " in " + ph.pname);
        }
}

void readsitefractions(AxReading& r, AxPhase& ph) {
    ph.nsf = r.words.getint("no of sf vars in " + ph.pname);
    if (ph.nsf < 2) bomb("read", "less than 2 sf vars for " + ph.pname, 0);
    if (ph.nsf > maxsfvars) bomb("read", "too many  sf vars for " + ph.pname, 0);
    for (int s = 1; s <= ph.nsf; ++s) {
        ph.sfname[s] = r.words.getname("site fraction name in " + ph.pname);
        ph.sfexpr[s] = readexpression(r, ph, ph.sfname[s] + " in " + ph.pname);
    }
    ph.nsffull = ph.nsf;
}

void readendmember(AxReading& r, AxPhase& ph, int j) {
    AxEndMember& em = ph.em[j];
    em.ename = r.words.getname("end-member " + num(j) + " of " + ph.pname);
    em.line = r.words.line();
    int cls;
    const std::string normword = r.words.next("normalisation of " + em.ename + " in " + ph.pname, cls);
    em.norm = getsingle(cls, normword, "normalisation of " + em.ename + " in " + ph.pname);
    em.normrat = cls == tokrational;
    if (em.normrat) {
        getrational(cls, normword, em.normr.num, em.normr.den, "normalisation of " + em.ename);
        em.norm = em.normr.value();
    }
    em.nterm = r.words.getint("no of terms in ideal mixing of " + em.ename + " in " + ph.pname);
    if (em.nterm < 1) bomb("read", "too few terms in tmf for " + ph.pname, 0);
    if (em.nterm > maxtmf) bomb("read", "too many terms in tmf for " + ph.pname, 0);
    em.maxpower = 1;
    for (int t = 1; t <= em.nterm; ++t) {
        const std::string context = "ideal mixing of " + em.ename + " in " + ph.pname;
        const std::string w = r.words.next(context);
        int s = 0;
        for (int k = 1; k <= ph.nsf && s == 0; ++k)
            if (ph.sfname[k] == w) s = k;
        if (s == 0) bomb("read", w + " not a sf name: " + context, 0);
        SfTerm& term = em.sfterm[t];
        term.sf = s;
        term.power = r.words.getrat("power of " + w + " in " + context);
        term.pw = term.power.value();
        const long p = std::lround(static_cast<double>(term.pw));
        if (p > em.maxpower) em.maxpower = static_cast<int>(p);
    }
    readoptions(r, em.ename, em.make, &em, nullptr, ph.nxv, true);
    checkcharged(em.ename, em.make, em.emtd);
}

// With strict syntax the names written before the end-members must agree
// with them.
void strictnames(const AxPhase& ph) {
    for (int j = 1; j <= ph.nem; ++j)
        if (innername(ph.propname[j], 'p') != ph.em[j].ename)
            bomb("read", "names in p name, \"" + ph.propname[j] + "\" do not match \"" + ph.em[j].ename + "\"", 0);
    if (ph.nonideal == asymmetric)
        for (int j = 1; j <= ph.nem; ++j)
            if (innername(ph.aname[j], 'a') != ph.em[j].ename)
                bomb("read", "names in a name, \"" + ph.aname[j] + "\" do not match \"" + ph.em[j].ename + "\"", 0);
    for (int g = 1; g <= ph.ngt; ++g) {
        const std::string& w = ph.wname[g];
        const size_t open = w.find('('), comma = w.find(',');
        const std::string a = ph.em[ph.gt[g][0]].ename, b = ph.em[ph.gt[g][1]].ename;
        bool ok = false;
        if (open != std::string::npos && comma != std::string::npos && comma > open && w.back() == ')') {
            const std::string u = w.substr(open + 1, comma - open - 1);
            const std::string v = w.substr(comma + 1, w.size() - comma - 2);
            ok = (u == a && v == b) || (u == b && v == a);
        }
        if (!ok)
            bomb("read", "names in  W name, \"" + w + "\" do not match \"" + a + "\" and \"" + b + "\"", 0);
    }
}

void readaxphase(AxReading& r, const sstring& longname) {
    EndMemberStore& st = r.st;
    const int n = r.words.getint("no of end-members in " + longname);
    if (n < 2) bomb("read", "less than 2 end-members in " + longname, 0);
    if (n > maxemperphase) bomb("read", "too many end-members in " + longname, 0);
    if (st.npss == maxnp) bomb("read", "too many ss phases", 0);
    if (st.nph == maxnph) bomb("read", "too many phases", 0);
    AxPhase& ph = r.ps.prec1[++st.npss];
    ++st.nph;
    ph = AxPhase{};
    ph.longname = longname;
    long2shortpname(longname, ph.pname, ph.psuffix);
    ph.pfullname = longname;
    ph.nem = ph.nemfull = n;
    ph.nxv = n - 1;
    readcoding(r, ph);

    std::vector<std::string> defnames;
    for (int v = 1; v <= ph.nxv; ++v) readvariable(r, ph, v, defnames);
    for (int j = 1; j <= n; ++j) {
        ph.propname[j] = r.words.getname("proportion " + num(j) + " in " + ph.pname);
        ph.pexpr[j] = readexpression(r, ph, ph.propname[j] + " in " + ph.pname);
    }
    resolvedefinitions(ph, defnames);
    readinteractions(r, ph);
    readsitefractions(r, ph);
    for (int j = 1; j <= n; ++j) readendmember(r, ph, j);
    if (r.strict) strictnames(ph);
}

void readphaseblock(AxReading& r) {
    const sstring name = r.words.getname("phase name");
    const int line = r.words.line();
    r.phase = name;
    shownname(r, name);
    if (r.calib) putstr(r.run.io, 0, num(r.st.nph + 1) + " " + name, 1, chlog);
    std::string w;
    int cls;
    int n = 0;
    std::string m;
    const bool axphase = r.words.peek(w, cls) && cls == tokint && !(string2int(w, n, m) && n == 1);
    if (axphase) readaxphase(r, name);
    else readpurephase(r, name, line);
}

}  // namespace

void readaxfile(Run& run, TextFile& file, const PhaseChoice& choice, bool strict) {
    PhaseStore& ps = run.phases;
    EndMemberStore& st = run.store;
    st.npss = st.nmin = st.nph = 0;
    ps.nheader = 0;
    ps.header.clear();
    ps.nbuffer = 0;
    ps.filesame.clear();
    ps.axname = file.name();

    AxWords words(file);
    AxReading r{run, words, choice, ps, st, false, false, {}, {}};
    r.calib = run.runmode == rmregression;
    r.strict = strict;
    try {
        if (words.atend()) bomb("setup phases", "not enough in file", 0);
        if (words.peekis("header")) readheader(r);
        while (!words.atend()) readphaseblock(r);
    } catch (const RunEnded& e) {
        if (e.kind != RunEnded::bombed) throw;
        // Say where in the file the reading stopped before the run ends.
        if (!r.namesline.empty()) putstr(run.io, 0, r.namesline, 1, chscreen);
        std::string where = "a-x file \"" + file.name() + "\", line " + num(words.line());
        if (!r.phase.empty()) where += ", phase " + r.phase;
        putstr(run.io, 1, where, 1, chscreenlog);
        throw;
    }
    if (!r.namesline.empty()) putstr(run.io, 0, r.namesline, 1, chscreen);
    file.close();
    if (st.npss + st.nmin != st.nph) bomb("setup phases", "numbers of phases do not add up", 1);
}

}  // namespace sm
