#include "thermo/dataset.h"

#include <cmath>

#include "console/format.h"
#include "console/prompts.h"
#include "console/runended.h"
#include "console/runfiles.h"
#include "console/scan.h"
#include "run.h"

namespace sm {

namespace {

constexpr const char* fieldnames[tdfields + 1] = {
    "",     "H",    "S",    "V",    "cpa",      "cpb",    "cpc",    "cpd",
    "alpha", "k0",  "k0p",  "k0pp", "theta",    "dkdT",   "Tc",     "Smax",
    "Vmax", "aqz",  "aqcharge", "aqsize", "bwdH", "bwdV",  "bwW",    "bwWv",
    "bwn",  "bwfac", "aqsum", "xco2", "xh2o",   "depphase", "depem", "eos"};

std::string str(int n) { return int2str(static_cast<real>(n)); }

// The free-format numbers of one entry, read across line ends. A token that is
// not a number, or the end of the file, stops the run naming the entry.
class EntryNumbers {
public:
    EntryNumbers(TextFile& file, const sstring& name, const char* where)
        : file_(file), name_(name), where_(where) {}

    real next(std::string_view what) {
        const std::string_view token = fetch(what);
        real v;
        if (!scanreal(token, v))
            bomb(where_, "expecting a real; got: " + std::string(token) + " - " +
                             std::string(what) + " of " + name_, 0);
        return v;
    }

    int nextint(std::string_view what) {
        const std::string_view token = fetch(what);
        int v;
        std::string message;
        if (!string2int(token, v, message))
            bomb(where_, "expecting an integer; got: " + std::string(token) + " - " +
                             std::string(what) + " of " + name_, 0);
        return v;
    }

    void field(TdRow& row, int f) { row[f] = next(fieldnames[f]); }

private:
    std::string_view fetch(std::string_view what) {
        std::string_view token;
        if (!file_.nexttoken(token))
            bomb(where_, "file ends too soon - " + std::string(what) + " of " + name_, 0);
        return token;
    }

    TextFile& file_;
    const sstring& name_;
    const char* where_;
};

// The element pairs of a name line, ended by an `ell` of 0.
struct NameLine {
    int nsite = 0;
    int nel = 0;
    std::array<int, maxelpairs + 1> elno{};
    std::array<real, maxelpairs + 1> elcoef{};
    real natoms = 0;  // the atoms as read, before any conversion to oxides
    int after = 0;    // the word after the terminating 0
};

void parsenameline(const WordList& w, int dsmode, const char* ellcontext, const char* where,
                   NameLine& nl) {
    int k = dsmode >= 6 ? 3 : 2;
    nl.nsite = getinteger(whatisstring(w[k]), w[k], "nsite");
    ++k;
    nl.nel = 0;
    nl.natoms = 0;
    for (;;) {
        const int ell = getinteger(whatisstring(w[k]), w[k], ellcontext);
        ++k;
        if (ell == 0) break;
        if (ell < 1 || ell > maxcomp)
            bomb(where, "element number " + str(ell) + " is not one of 1 to 26, in the formula of " +
                            w[1], 0);
        if (nl.nel == maxelpairs)
            bomb(where, "more than 8 elements in the formula of " + w[1], 0);
        ++nl.nel;
        nl.elno[nl.nel] = ell;
        nl.elcoef[nl.nel] = getsingle(whatisstring(w[k]), w[k], "oxno");
        nl.natoms += nl.elcoef[nl.nel];
        ++k;
    }
    nl.after = k;
}

void skiplines(TextFile& f, int n) {
    for (int i = 0; i < n; ++i) f.skipline();
}

// Reads the name line of entry i and checks that the file is still in step
// with the names of the first reading.
void readnameline(Run& run, int i, WordList& w, const char* where) {
    rstrings(run.dataset.file, w);
    if (w[1] != run.store.dsname[i])
        bomb(where, "expecting the entry for " + run.store.dsname[i] + ", found: " + w[1], 0);
}

void rewindtoentries(DatasetFile& ds) {
    ds.file.rewind();
    skiplines(ds.file, ds.headerlines);
}

// The upper triangle of the covariance of H, with the real ahead of it. The
// first reading only checks it; the third keeps what the run's rows need.
void covariancepass(Run& run, bool keep) {
    DatasetFile& ds = run.dataset;
    EndMemberStore& s = run.store;
    const char* where = keep ? "texthermoread" : "setuptextread";
    std::string_view token;
    auto cutshort = [&](int i, int j, std::string_view got) {
        bomb(where, "the covariance matrix ends too soon, at " + s.dsname[i] + " with " +
                        s.dsname[j] + " (got: " + std::string(got) + ")", 0);
    };
    // The first reading only looks for the end of the block, by the shape of
    // the tokens; the third converts every number.
    auto number = [&](real& v) {
        if (keep) return scanreal(token, v);
        const char first = token[0] == '-' && token.size() > 1 ? token[1] : token[0];
        return (first >= '0' && first <= '9') || first == '.';
    };
    real v = 0;
    if (!ds.file.nexttoken(token)) cutshort(1, 1, "end of file");
    if (!number(v)) cutshort(1, 1, token);
    ds.covlead = v;
    if (keep) std::fill(s.cov.begin(), s.cov.end(), 0.0L);
    for (int i = 1; i <= s.ntp; ++i) {
        const bool wi = ds.wanted[i];
        for (int j = i; j <= s.ntp; ++j) {
            if (!ds.file.nexttoken(token)) cutshort(i, j, "end of file");
            if (!number(v)) {
                if (!keep) cutshort(i, j, token);
                bomb(where, "expecting a real; got: " + std::string(token) + " - covariance of " +
                                s.dsname[i] + " with " + s.dsname[j], 0);
            }
            if (!keep || !wi || !ds.wanted[j]) continue;
            const real c = static_cast<real>(static_cast<float>(v));
            for (int a = 1; a <= ds.nrows[i]; ++a)
                for (int b = 1; b <= ds.nrows[j]; ++b) {
                    s.covat(ds.rows[i][a], ds.rows[j][b]) = c;
                    s.covat(ds.rows[j][b], ds.rows[i][a]) = c;
                }
        }
    }
}

void readheader(Run& run) {
    DatasetFile& ds = run.dataset;
    EndMemberStore& s = run.store;
    WordList w;
    rstrings(ds.file, w);
    if (w.count < 10) bomb("setuptextread", "first line of dsfile incorrectly formed 0", 0);
    int n;
    std::string m;
    if (whatisstring(w[1]) != tokint || !string2int(w[1], n, m))
        bomb("setuptextread", "first line of dsfile incorrectly formed 1", 0);
    if (n < 51) {
        if (n != 6 && n != 7) bomb("setuptextread", "dsmode <> 6 or 7??", 0);
        s.dsmode = n;
        if (whatisstring(w[2]) != tokint || !string2int(w[2], s.ntp, m) || s.ntp < 1)
            bomb("setuptextread", "first line of dsfile incorrectly formed 4", 0);
        if (w[3] != "don't") bomb("setuptextread", "first line of dsfile incorrectly formed 2b", 0);
    } else {
        s.ntp = n;
        s.dsmode = n == 190 ? -1 : 5;
        if (w[2] != "don't") bomb("setuptextread", "first line of dsfile incorrectly formed 2a", 0);
    }
    if (s.ntp > maxntp) bomb("setuptextread", "too many end-members", 0);
    if (run.calcmode == 9 && s.dsmode < 5) bomb("thermo read", "old calib not implemented", 0);
    ds.headerlines = s.dsmode == 5 ? 3 : 2;
    ds.entrylines = s.dsmode == -1 ? 2 : s.dsmode == 5 ? 4 : 5;

    std::string line;
    if (!ds.file.getline(line)) bomb("setuptextread", "file ends too soon: no end-members", 0);
    string2strings(line, w);
    if (w.count > 0) bomb("readthermo", "expecting a blank line", 0);
    if (!ds.file.getline(line)) bomb("setuptextread", "file ends too soon: no end-members", 0);
    string2strings(line, w);
    if (w.count == 0) bomb("readthermo", "not expecting blank line", 0);
    if (s.dsmode == -1) {
        if (!ds.file.getline(line)) bomb("setuptextread", "file ends too soon: no end-members", 0);
        string2strings(line, w);
        if (w.count < 10) bomb("readthermo", "insufficient info on 2nd line", 0);
    }
}

void readnames(Run& run) {
    DatasetFile& ds = run.dataset;
    EndMemberStore& s = run.store;
    rewindtoentries(ds);
    WordList w;
    std::string line;
    for (int i = 1; i <= s.ntp; ++i) {
        if (!ds.file.getline(line))
            bomb("setuptextread", "file ends too soon: " + str(i - 1) + " of " + str(s.ntp) +
                                      " end-members read", 0);
        string2strings(line, w);
        if (w.count == 0)
            bomb("setuptextread", "no end-member name on line " + str(ds.file.linenumber()) +
                                      " (entry " + str(i) + ")", 0);
        s.dsname[i] = w[1];
        s.dscomment[i] = s.dsmode >= 6 ? w[2] : std::string();
        for (int j = 1; j < i; ++j)
            if (s.dsname[j] == w[1])
                bomb("setuptextread", "end-member " + w[1] + " appears twice in the dataset", 0);
        for (int k = 1; k < ds.entrylines; ++k) {
            if (ds.file.atend())
                bomb("setuptextread", "file ends too soon, in the entry for " + w[1], 0);
            ds.file.skipline();
        }
    }
    for (int i = s.ntp + 1; i <= maxntp; ++i) {
        s.dsname[i].clear();
        s.dscomment[i].clear();
    }
}

void readlabel(Run& run) {
    DatasetFile& ds = run.dataset;
    ds.file.skipline();
    ds.file.skipline();
    std::string line;
    if (!ds.file.getline(line)) bomb("setuptextread", "file ends too soon: no label", 0);
    const size_t cut = std::min<size_t>(run.store.dsmode == -1 ? 25 : 18, line.size());
    ds.label = line.substr(0, line.size() - cut);
    putstr(run.io, 2, ds.label, 2, chscreen);
}

void firststage(Run& run, const std::string& path) {
    DatasetFile& ds = run.dataset;
    EndMemberStore& s = run.store;
    const size_t slash = path.find_last_of('/');
    const std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
    ds.filename = cut22(base);
    const char generation = base.size() >= 6 ? base[5] : ' ';
    if (generation == '6' || generation == '7')
        s.newds = true;
    else if (generation == '5')
        s.newds = false;
    else
        bomb("setuptextread", "bad dsfile name", 0);
    s.ntp = 0;
    readheader(run);
    readnames(run);
    ds.wanted.fill(false);
    covariancepass(run, false);
    readlabel(run);
}

// Walks the entries from the first, skipping unwanted ones by their line
// count, and hands each wanted one to `use` with its name line read; `use`
// leaves the file at the start of the next entry.
template <typename Use>
void walkwanted(Run& run, const char* where, const char* ellcontext, Use use) {
    DatasetFile& ds = run.dataset;
    rewindtoentries(ds);
    WordList w;
    NameLine nl;
    for (int i = 1; i <= run.store.ntp; ++i) {
        if (!ds.wanted[i]) {
            skiplines(ds.file, ds.entrylines);
            continue;
        }
        readnameline(run, i, w, where);
        parsenameline(w, run.store.dsmode, ellcontext, where, nl);
        use(i, w, nl);
    }
}

// The chemistry of the wanted entries into their td rows.
void chemistrypass(Run& run) {
    DatasetFile& ds = run.dataset;
    EndMemberStore& s = run.store;
    walkwanted(run, "readthermo", "ell 1", [&](int i, const WordList&, const NameLine& nl) {
        for (int a = 1; a <= ds.nrows[i]; ++a) {
            const int row = ds.rows[i][a];
            s.nsites[row] = nl.nsite;
            s.nel[row] = nl.nel;
            s.elno[row] = nl.elno;
            s.elcoef[row] = nl.elcoef;
            s.natoms[row] = nl.natoms;
        }
        skiplines(ds.file, ds.entrylines - 1);
    });
}

bool ismeltname(const sstring& name) { return !name.empty() && name.back() == 'L'; }

void setdefaults(TdRow& t) {
    t[tdTc] = 0;
    t[tdSmax] = -1;
    t[tdVmax] = -1;
    t[tdaqz] = 0;
    for (int f = tdbwdH; f <= tdbwn; ++f) t[f] = 0;
    t[tdbwfac] = 1;
}

// Melts carry dT of the bulk modulus; other rows get the Einstein temperature,
// given (Einstein forms) or from the entropy per atom.
void meltortheta(EntryNumbers& in, TdRow& t, const sstring& name, bool einstein, real natoms) {
    if (ismeltname(name)) {
        t[tdtheta] = 0;
        in.field(t, tddkdT);
        return;
    }
    t[tddkdT] = 0;
    if (einstein) {
        t[tdtheta] = t[tdcpc];
        t[tdcpc] = 0;
        t[tdcpd] = 0;
    } else if (natoms == 0) {
        t[tdtheta] = 0;
    } else {
        const real denominator = 6.44L + 1000.0L * t[tdS] / natoms;
        t[tdtheta] = denominator <= 0 ? 0 : std::round(10636.0L / denominator);
    }
    if (t[tdtheta] < 10) t[tdtheta] = 10;
}

// The extra data of a Landau, Bragg-Williams or aqueous row.
void extras(EntryNumbers& in, TdRow& t, int kind) {
    switch (kind) {
    case eoslandau:
        for (int f = tdTc; f <= tdVmax; ++f) in.field(t, f);
        break;
    case eosbw:
        for (int f = tdbwdH; f <= tdbwfac; ++f) in.field(t, f);
        break;
    case eosaqueous:
        in.field(t, tdaqz);
        if (t[tdaqz] != 0) t[tdaqz] -= 298.15L * t[tdcpb];
        break;
    default:
        break;
    }
}

void unknowneos(int code, const sstring& name) {
    bomb("texthermoread", "unknown eos " + str(code) + " for " + name, 0);
}

// The older forms give a code for the extra data in place of eos.
int olderextras(EntryNumbers& in, TdRow& t, const sstring& name) {
    const int code = in.nextint("code");
    switch (code) {
    case 0: break;
    case 1: extras(in, t, eoslandau); break;
    case 2: extras(in, t, eosbw); break;
    case -1: extras(in, t, eosaqueous); break;
    default: unknowneos(code, name);
    }
    if (ismeltname(name)) return eosmelt;
    if (code == -1) return eosaqueous;
    if (t[tdV] == 0) return eosfluid;
    return code;
}

void readentry(Run& run, int i, const WordList& w, const NameLine& nl, TdRow& t) {
    const EndMemberStore& s = run.store;
    const sstring& name = s.dsname[i];
    EntryNumbers in(run.dataset.file, name, "texthermoread");
    int eos = 0;
    switch (s.dsmode) {
    case 6:
    case 7: {
        eos = in.nextint("eos");
        if (eos < 0 || eos > maxeos) unknowneos(eos, name);
        const bool einstein = s.dsmode == 7 && eos >= eoseinstein && eos <= eoseinsteinbw;
        if (einstein) {
            for (int f = tdH; f <= tdcpc; ++f) in.field(t, f);
            for (int f = tdalpha; f <= tdk0pp; ++f) in.field(t, f);
            if (!(std::fabs(t[tdk0pp] + t[tdk0p] / t[tdk0]) <= 1e-5L))
                bomb("texthermoread", "k0pp not regularised?", 0);
        } else {
            for (int f = tdH; f <= tdk0p; ++f) in.field(t, f);
            t[tdk0pp] = t[tdk0] > 0 ? -t[tdk0p] / t[tdk0] : 0;
        }
        setdefaults(t);
        meltortheta(in, t, name, einstein, nl.natoms);
        switch (eos) {
        case eoslandau: case eoseinsteinlandau: extras(in, t, eoslandau); break;
        case eosbw: case eoseinsteinbw: extras(in, t, eosbw); break;
        case eosaqueous: extras(in, t, eosaqueous); break;
        default: break;
        }
        run.dataset.file.skipline();
        run.dataset.file.skipline();
        break;
    }
    case 5:
        for (int f = tdH; f <= tdk0pp; ++f) in.field(t, f);
        setdefaults(t);
        meltortheta(in, t, name, false, nl.natoms);
        eos = olderextras(in, t, name);
        run.dataset.file.skipline();
        break;
    default: {  // -1: H, S and V stand on the name line
        t[tdH] = getsingle(whatisstring(w[nl.after]), w[nl.after], "H");
        t[tdS] = getsingle(whatisstring(w[nl.after + 1]), w[nl.after + 1], "S");
        t[tdV] = getsingle(whatisstring(w[nl.after + 2]), w[nl.after + 2], "V");
        for (int f = tdcpa; f <= tdtheta; ++f) in.field(t, f);
        setdefaults(t);
        eos = olderextras(in, t, name);
        t[tddkdT] = t[tdtheta];
        t[tdtheta] = t[tdk0pp];
        t[tdk0pp] = t[tdk0p];
        t[tdk0p] = 0;
        run.dataset.file.skipline();
        break;
    }
    }
    t[tdeos] = eos;
}

void datapass(Run& run) {
    DatasetFile& ds = run.dataset;
    EndMemberStore& s = run.store;
    for (auto& row : s.td) row.fill(0);
    walkwanted(run, "texthermoread", "ell 2", [&](int i, const WordList& w, const NameLine& nl) {
        TdRow& t = s.td[ds.rows[i][1]];
        readentry(run, i, w, nl, t);
        for (int a = 2; a <= ds.nrows[i]; ++a) s.td[ds.rows[i][a]] = t;
    });
}

}  // namespace

const char* tdfieldname(int field) {
    return field >= 1 && field <= tdfields ? fieldnames[field] : "";
}

void setuptextread(Run& run, const std::string& path) {
    if (!run.dataset.file.open(path)) {
        putstr(run.io, 1, "cannot locate file \"" + path + "\"", 1, chall);
        bomb("promptdatafile", "datafile needed", 0);
    }
    firststage(run, path);
}

void setuptextread(Run& run) {
    // "dsfile 6a" and "dsfile ds6a" both name sm-ds6a.txt.
    sstring suffix = run.prefs.dssuffix;
    if (suffix.empty()) promptstring(run.io, "suffix to name for thermo dataset datafile", suffix);
    if (suffix.size() > 2 && suffix.compare(0, 2, "ds") == 0) suffix.erase(0, 2);
    std::string name;
    promptdatafile(run.io, name, "sm-ds", suffix, "thermo dataset", run.dataset.file);
    firststage(run, name);
}

void makep(Run& run) {
    DatasetFile& ds = run.dataset;
    EndMemberStore& s = run.store;
    ds.wanted.fill(false);
    ds.nrows.fill(0);
    for (int i = 1; i <= s.nem; ++i) {
        int n;
        if (!dsfind(s, s.emname[i], n)) bomb("makep", "stuff up : unrecognised name : " + s.emname[i], 0);
        if (ds.nrows[n] == maxrowsperentry)
            bomb("makep", "more than 4 rows for " + s.emname[i], 1);
        ds.wanted[n] = true;
        ds.rows[n][++ds.nrows[n]] = i;
    }
}

void readthermochemistry(Run& run) {
    if (!run.dataset.file.isopen()) bomb("readthermo", "dataset not read", 1);
    makep(run);
    chemistrypass(run);
    makeoxides(run.store);
}

void readthermochemistry(Run& run, const std::vector<sstring>& names) {
    setemname(run.store, names);
    readthermochemistry(run);
}

void texthermoread(Run& run) {
    if (!run.dataset.file.isopen()) bomb("texthermoread", "dataset not read", 1);
    makep(run);
    datapass(run);
    covariancepass(run, true);
    printdatasetsummary(run, run.script.control.debuglevel);
}

void readthermo(Run& run, int stage) {
    switch (stage) {
    case 1: setuptextread(run); break;
    case 2: readthermochemistry(run); break;
    case 3: texthermoread(run); break;
    default: bomb("readthermo", "no such stage", 1);
    }
}

}  // namespace sm
