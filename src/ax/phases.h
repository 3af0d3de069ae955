#pragma once
// The phase records of a run, as read from the a-x file: `prec1` holds the
// a-x phases (solid solutions, fluids, aqueous phases), `prec0` the pure
// phases. Tables are 1-based as everywhere in the program. The counts
// npss, nmin, nph live in the end-member store beside nem.
#include <array>
#include <string>
#include <vector>

#include "ax/expression.h"
#include "console/types.h"
#include "thermo/limits.h"
#include "thermo/make_record.h"
#include "thermo/store.h"

namespace sm {

constexpr int maxnxv = maxemperphase - 1;  // composition variables of one phase
constexpr int maxsamecoding = 10;          // samecoding pairs of one phase in the file
constexpr int maxheaderkept = maxheaderlines;
constexpr int maxheaderwidth = 120;

// Kinds of non-ideality.
enum NonIdeal : int { ideal = 0, symmetric = 1, asymmetric = 2 };

// Codes of a variable's bounds for the solver: an ordinary bound may be
// reached, a hard one (a site fraction that would be zero there) may not.
enum LimitCode : int { limordinary = 1, limhard = 4 };

// One factor of an end-member's ideal-mixing term: site fraction `sf` to the
// power pn/pd.
struct SfTerm {
    int sf = 0;
    Rational power;
    real pw = 0;
};

// The composition of an end-member in the run's components: component k
// holds cnum[k] / (cden * cscale[k]), as a real in x[k]; emsize is its atoms
// (oxide units in the older dataset form).
struct EmComposition {
    std::array<long long, maxcomp + 1> cnum{};
    int cden = 1;
    std::array<real, maxcomp + 1> x{};
    real emsize = 0;
};

struct AxEndMember {
    sstring ename;
    int line = 0;         // line of the a-x file where its block starts
    real norm = 1;        // normalisation constant of the ideal-mixing term
    Rational normr;
    bool normrat = false; // written as a rational
    int nterm = 0;
    std::array<SfTerm, maxtmf + 1> sfterm{};
    int maxpower = 1;     // largest power, rounded, at least 1
    MakeRecord make;
    TdRow emtd{};         // own thermodynamic row (made or copied by makeemtd)
    bool hascheck = false;
    std::array<int, maxnxv + 1> checkx{};  // x of the pure end-member times checkdiv
    int checkdiv = 1;
    bool excluded = false;
    int fluidindex = 0;   // place in the fluid species list, 0 if none
    EmComposition comp;   // filled by makeemc and countcomp
};

struct AxVariable {
    sstring xname;        // as in the file, e.g. "x(g)"
    sstring xdisp;        // without the phase suffix, e.g. "x"
    real guess = 0;
    real sd = 0;
    bool hasdef = false;  // numerator and denominator in proportions were given
    Expr defnum, defden;
    bool isod = false;    // order variable
    real lower = 0, upper = 1;  // limits in force
    int limlo = limordinary, limhi = limordinary;
    real rlow = 0, rhigh = 1;   // range as read (file or script)
    bool lowset = false, highset = false;
    real scale = 1, offset = 0, xtol = 0.0001L;  // a, b and step yardstick
};

// An oblique limit: const + sum coef[v] * x[v] must stay positive; the
// constant is in place nxv + 1.
struct VarLimit {
    std::array<int, maxnxv + 2> num{};
    std::array<int, maxnxv + 2> den{};
};

struct AxPhase {
    sstring pname;       // short name
    sstring longname;    // as in the file
    sstring pfullname;
    sstring psuffix;     // what follows "_"
    sstring copyof;      // base phase of a samecoding copy, else empty
    int coding = 0;
    real oxnorm = 0;     // oxygens of the reference formula
    int ninfo = 0;
    std::vector<std::string> info;  // verbatim lines, 1-based

    int nem = 0;
    std::array<AxEndMember, maxemperphase + 1> em{};
    int nxv = 0;
    std::array<AxVariable, maxnxv + 1> xv{};
    ExprPool pool;
    std::array<Expr, maxemperphase + 1> pexpr{};
    std::array<sstring, maxemperphase + 1> propname{};  // names of the proportions as read, e.g. "p(py)"
    int nsf = 0;
    std::array<sstring, maxsfvars + 1> sfname{};
    std::array<Expr, maxsfvars + 1> sfexpr{};

    int nonideal = ideal;
    int ngt = 0;
    std::array<std::array<int, 2>, maxgterms + 1> gt{};  // pair of end-members
    std::array<sstring, maxgterms + 1> wname{};
    std::array<real, maxgterms + 1> wa{}, wb{}, wc{}, wsd{};
    std::array<bool, maxgterms + 1> wunset{};  // no sd given
    std::array<sstring, maxemperphase + 1> aname{};
    std::array<real, maxemperphase + 1> aa{}, ab{}, ac{};  // size alpha = a + bT + cP

    bool fluidkind = false, aqkind = false;
    int h2oem = 0, co2em = 0;
    bool hasq = false;

    bool contracted = false;
    int nemfull = 0;
    std::array<bool, maxemperphase + 1> emcontract{};
    int nsffull = 0;
    std::array<bool, maxsfvars + 1> sfcontract{};
    int nzero = 0;
    std::array<sstring, maxnxv + 1> zeroname{};  // variables set to zero

    bool nofsfok = false;
    std::array<bool, maxsfvars + 1> sfcovered{};  // kept positive by a variable limit
    int nvarlim = 0;
    std::array<VarLimit, maxnvarlim + 1> varlim{};

    std::array<real, 4> uncert{0, -1, 0.6666667L, 0.1666667L};  // settings for the rock input
    bool hasrgb = false;
    std::array<int, 3> rgb{};
    bool hasguesses = false;  // starting guesses from the script's xyzguess lines
};

struct PurePhase {
    sstring pname;
    int line = 0;        // line of the a-x file with its name
    sstring longname;
    sstring ename;       // its end-member
    real fixeda = 1;
    real sdfixeda = 0;
    bool isbuffer = false;
    MakeRecord make;
    TdRow emtd{};
    EmComposition comp;
    std::array<real, 4> uncert{0, -1, 0.6666667L, 0.1666667L};
    bool hasrgb = false;
    std::array<int, 3> rgb{};
};

struct PhaseStore {
    std::vector<AxPhase> prec1 = std::vector<AxPhase>(maxnp + 1);
    std::vector<PurePhase> prec0 = std::vector<PurePhase>(maxnmin + 1);

    int nheader = 0;
    std::vector<std::string> header;  // "#", the kept lines, "#"

    int nbuffer = 0;
    std::array<int, maxbuffers + 1> buffer{};  // pure phases whose end-member is "buffer"

    // samecoding pairs written in the file: base phase, new name, its fullname
    struct SameCoding {
        sstring base, name, fullname;
    };
    std::vector<SameCoding> filesame;

    sstring axname;  // the file as opened

    // The phases chosen by the script (whole or short names), or all of them.
    std::vector<sstring> with;
    bool inwith(const sstring& pname, const sstring& longname) const {
        for (const auto& w : with)
            if (w == longname || w == pname) return true;
        return false;
    }
    bool inwith(const AxPhase& ph) const { return inwith(ph.pname, ph.longname); }
    bool inwith(const PurePhase& ph) const { return inwith(ph.pname, ph.longname); }
};

}  // namespace sm
