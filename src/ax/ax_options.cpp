// The option list after an end-member of an a-x phase or a pure phase: the
// DQF forms, make, check and exclude, by keyword or by integer code.
#include "ax/ax_reading.h"
#include "console/intmath.h"
#include "console/runended.h"
#include "console/scan.h"

namespace sm {

namespace {

enum OptionCode : int { optnone = 0, optdqf = 3, optmake = 4, optcheck = 5, optcode6 = 6, optexclude = 7 };

struct Keyword {
    const char* word;
    int code;
    int dqfcode;
};

// "\xC6" is the delta of the older single-byte character set.
constexpr Keyword keywords[] = {
    {"DQF", optdqf, dqfplain},           {"dqf", optdqf, dqfplain},
    {"deltaG", optdqf, dqfplain},        {"\xC6G", optdqf, dqfplain},
    {"deltaG(make)", optdqf, dqfmake},   {"delG(make)", optdqf, dqfmake},
    {"\xC6G(make)", optdqf, dqfmake},    {"deltaG(mod)", optdqf, dqfmod},
    {"delG(mod)", optdqf, dqfmod},       {"\xC6G(mod)", optdqf, dqfmod},
    {"deltaG(od)", optdqf, dqfod},       {"delG(od)", optdqf, dqfod},
    {"\xC6G(od)", optdqf, dqfod},        {"deltaG(tran)", optdqf, dqftran},
    {"delG(tran)", optdqf, dqftran},     {"\xC6G(tran)", optdqf, dqftran},
    {"deltaG(rcal)", optdqf, dqfrcal},   {"delG(rcal)", optdqf, dqfrcal},
    {"\xC6G(rcal)", optdqf, dqfrcal},    {"make", optmake, 0},
    {"check", optcheck, 0},              {"exclude", optexclude, 0},
};

bool findkeyword(const std::string& w, int& code, int& dqf) {
    for (const auto& k : keywords)
        if (w == k.word) {
            code = k.code;
            dqf = k.dqfcode;
            return true;
        }
    return false;
}

void readdqf(AxReading& r, const sstring& name, MakeRecord& make, PurePhase* pure, int dqf) {
    if (r.calib) bomb("read", "DQF not allowed in calib", 0);
    if (make.nmake <= 0 && r.st.dsmode != -1)
        bomb("read", "need to \"make\" end-member before DQF-ing it", 0);
    if (r.words.peekclass() == toktext)
        bomb("read", "keyword after DQF not allowed now (include in make)", 0);
    make.dqfcode = dqf;
    make.dqfa = r.words.getreal("a in a+bT+cP in DQF term for " + name);
    make.dqfb = r.words.getreal("b in a+bT+cP in DQF term for " + name);
    make.dqfc = r.words.getreal("c in a+bT+cP in DQF term for " + name);
    // A buffer phase: the script's offset in log units shifts the buffer's
    // oxygen potential, RT ln 10 per unit, through the T term.
    if (pure && pure->isbuffer && !r.choice.buffername.empty() && r.choice.buffername == pure->pname)
        make.dqfb += 2.302585093L * 0.0083144L * r.choice.bufferoffset;
}

void readmake(AxReading& r, const sstring& name, MakeRecord& make) {
    const int n = r.words.getint("no of end-members to make " + name);
    if (n < 1) bomb("read", "too few end-members to construct " + name, 0);
    if (n > maxmaketerms) bomb("read", "too many end-members to construct " + name, 0);
    if (r.calib && n != 1) bomb("read", "several end-member make not allowed in calib", 0);
    make.nmake = n;
    make.line = r.words.line();
    std::array<Rational, maxmaketerms + 1> coef{};
    long long div = 1;
    for (int k = 1; k <= n; ++k) {
        int action = actnotgiven;
        if (r.words.peekis("ordered")) action = actordered;
        else if (r.words.peekis("disordered")) action = actdisordered;
        else if (r.words.peekis("equilibrium") || r.words.peekis("equil")) action = actequilibrium;
        if (action != actnotgiven) r.words.next("action in make of " + name);
        make.makeaction[k] = action;
        make.makename[k] = r.words.getname("name in make of " + name);
        if (make.makename[k] == name)
            bomb("read", "names: end-member, " + name + ", and name in make, " + make.makename[k] +
                             ", must be different", 0);
        coef[k] = r.words.getrat("coefficient of " + make.makename[k] + " in make of " + name);
        if (coef[k].den < 0) {
            coef[k].num = -coef[k].num;
            coef[k].den = -coef[k].den;
        }
        div = lcm(div, coef[k].den);
    }
    make.makediv = long2int(div);
    for (int k = 1; k <= n; ++k)
        make.makecoef[k] = long2int(static_cast<long long>(coef[k].num) * (div / coef[k].den));
}

void readcheck(AxReading& r, const sstring& name, AxEndMember& em, int nxv) {
    std::array<Rational, maxnxv + 1> v{};
    long long div = 1;
    for (int k = 1; k <= nxv; ++k) {
        v[k] = r.words.getrat("check value of " + name);
        if (v[k].den < 0) {
            v[k].num = -v[k].num;
            v[k].den = -v[k].den;
        }
        div = lcm(div, v[k].den);
    }
    em.hascheck = true;
    em.checkdiv = long2int(div);
    for (int k = 1; k <= nxv; ++k) em.checkx[k] = long2int(static_cast<long long>(v[k].num) * (div / v[k].den));
}

}  // namespace

void readoptions(AxReading& r, const sstring& name, MakeRecord& make, AxEndMember* em,
                 PurePhase* pure, int nxv, bool codes) {
    for (;;) {
        std::string w;
        int cls;
        if (!r.words.peek(w, cls)) return;
        int code = optnone, dqf = dqfplain;
        if (!findkeyword(w, code, dqf)) {
            std::string m;
            if (!codes || cls != tokint || !string2int(w, code, m)) return;
            if (code == 1 || code == 2) {
                if (em) bomb("read", "wrong code in info for " + name, 0);
                bomb("read", "wrong code for additional info for " + name, 0);
            }
            if (code < optdqf || code > optexclude) return;  // not an option: the list ends
        }
        if (code == optcheck && !em) bomb("read", "wrong code for additional info for " + name, 0);
        r.words.next("option for " + name);
        switch (code) {
        case optdqf: readdqf(r, name, make, pure, dqf); break;
        case optmake: readmake(r, name, make); break;
        case optcheck: readcheck(r, name, *em, nxv); break;
        case optcode6: make.nmake = -1; break;
        case optexclude:
            if (em) em->excluded = true;
            break;
        }
    }
}

namespace {

// Charge of a species: the number of trailing "+" or "-".
int chargeof(const sstring& name) {
    int z = 0;
    for (auto it = name.rbegin(); it != name.rend() && (*it == '+' || *it == '-'); ++it) ++z;
    return z;
}

}  // namespace

void checkcharged(const sstring& name, const MakeRecord& make, TdRow& row) {
    if (make.nmake <= 0) {
        if (chargeof(name) > 0) bomb("read", "charged species not allowed as end-members", 0);
        return;
    }
    bool anycharged = false, allcharged = true;
    for (int k = 1; k <= make.nmake; ++k) {
        if (chargeof(make.makename[k]) > 0) anycharged = true;
        else allcharged = false;
    }
    if (!anycharged) return;
    if (make.nmake != 2) bomb("read", "must be just 2 charged species in a compound", 0);
    if (!allcharged) bomb("read", "all species in a compound must be charged", 0);
    const int z1 = chargeof(make.makename[1]), z2 = chargeof(make.makename[2]);
    const long long c1 = make.makecoef[1], c2 = make.makecoef[2];
    if (c1 + c2 != make.makediv) bomb("read", "compound not in mean form", 0);
    if (c1 * z1 != c2 * z2) bomb("read", "compound not charged-balanced", 0);
    row[tdaqcharge] = z1;
    row[tdaqsize] = z2;
}

}  // namespace sm
