#include "thermo/made_endmembers.h"

#include <cmath>

#include "console/runended.h"
#include "run.h"

namespace sm {

namespace {

constexpr real R = 0.0083144L;  // kJ/K/mol
constexpr real Tr = 298.15L;    // K

// One end-member of the run's order, with the dataset rows it is made of.
struct Member {
    const sstring* name;
    MakeRecord* make;
    TdRow* row;
    bool pure;
    int nterm = 0;
    std::array<int, maxmaketerms + 1> termrow{};
    std::array<real, maxmaketerms + 1> coef{};
};

int findrow(const EndMemberStore& st, int n, const sstring& name) {
    for (int i = 1; i <= n; ++i)
        if (st.emname[i] == name) return i;
    return 0;
}

void clearkeepcharge(TdRow& row) {
    const real charge = row[tdaqcharge], size = row[tdaqsize];
    row.fill(0);
    row[tdaqcharge] = charge;
    row[tdaqsize] = size;
}

bool haslandau(const TdRow& t) { return t[tdTc] > 0; }
bool hasbw(const TdRow& t) { return t[tdbwdH] > 0; }

real landauq0(const TdRow& t, const sstring& term) {
    if (!(t[tdTc] > Tr)) bomb("domake", "Tc <= 298.15 for " + term, 0);
    return std::sqrt(1 - Tr / t[tdTc]);
}

// The older dataset form: the made row is the combination itself.
void combine(const EndMemberStore& st, const Member& m, TdRow& row) {
    const MakeRecord& mk = *m.make;
    if (m.coef[m.nterm] == 0) bomb("makeemtd", "coeff=0 no longer implemented", 0);
    for (int f = tdH; f <= tdcpd; ++f)
        for (int k = 1; k <= m.nterm; ++k) row[f] += m.coef[k] * st.td[m.termrow[k]][f];
    row[tdH] += mk.dqfa;
    row[tdS] -= mk.dqfb;
    row[tdV] += mk.dqfc;
    real vs = 0, valpha = 0, vk = 0;
    for (int k = 1; k <= m.nterm; ++k) {
        const TdRow& t = st.td[m.termrow[k]];
        if (t[tdSmax] > 0) {
            const real q0 = std::sqrt(1 - Tr / t[tdTc]);
            row[tdH] += m.coef[k] * q0 * t[tdSmax] * t[tdTc] * (1 - q0 * q0 / 3);
            row[tdS] += m.coef[k] * t[tdSmax] * q0;
            row[tdV] += m.coef[k] * t[tdVmax] * q0;
        }
        vs += m.coef[k] * t[tdV];
        valpha += m.coef[k] * t[tdV] * t[tdalpha];
        if (t[tdk0pp] != 0) vk += m.coef[k] * t[tdV] / t[tdk0pp];
        row[tdaqz] += m.coef[k] * t[tdaqz];
    }
    if (vs != 0) row[tdalpha] = valpha / vs;
    row[tdk0] = 10;
    row[tdk0p] = 0;
    row[tdk0pp] = vk != 0 ? vs / vk : 0;
    row[tdtheta] = st.td[m.termrow[1]][tdtheta];
    row[tddkdT] = st.td[m.termrow[1]][tddkdT];
    for (int f = tdTc; f <= tdVmax; ++f) row[f] = 0;
    for (int f = tdbwdH; f <= tdbwfac; ++f) row[f] = 0;
}

// The regression's made end-member: one term, scaled.
void calibmake(const EndMemberStore& st, const Member& m, TdRow& row) {
    if (m.nterm > 1) bomb("calibmake", "od make not implemented yet", 0);
    const TdRow& t = st.td[m.termrow[1]];
    if (haslandau(t) || hasbw(t)) bomb("makeemtd", " wrong type of end-member to make", 0);
    row[tdeos] = t[tdeos];
    const int scaled = t[tdeos] == 3 ? tdcpb : tdcpd;
    for (int f = tdH; f <= scaled; ++f) row[f] = m.coef[1] * t[f];
    for (int f = scaled + 1; f <= tddkdT; ++f) row[f] = t[f];
}

}  // namespace

int finddep(Run& run, const sstring& term, int action) {
    EndMemberStore& st = run.store;
    MadeStore& made = run.made;
    for (int i = made.topfree; i <= maxnem; ++i)
        if (st.emname[i] == term && made.action[i] == action) return i;
    const int n = st.nem;
    if (--made.topfree <= n) bomb("finddep", "too many end-members", 0);
    const int source = findrow(st, n, term);
    if (source == 0) bomb("finddep", "can't find \"" + term + "\"", 0);
    const int i = made.topfree;
    st.emname[i] = term;
    made.action[i] = action;
    TdRow& row = st.td[i];
    row.fill(0);
    for (int f = 1; f <= tdxh2o; ++f) row[f] = st.td[source][f];
    row[tdeos] = st.td[source][tdeos];
    // Fully ordered or disordered, the term brings no order of its own: its
    // order energy is in the made end-member's H, S and V.
    if (action == actdisordered || action == actordered) {
        for (int f = tdTc; f <= tdVmax; ++f) row[f] = 0;
        for (int f = tdbwdH; f <= tdbwfac; ++f) row[f] = 0;
    }
    return i;
}

void domake(Run& run, const sstring& name, MakeRecord& make, TdRow& row, const int* termrow) {
    const EndMemberStore& st = run.store;
    clearkeepcharge(row);
    // The DQF term a + bT + cP adds to G.
    row[tdH] += make.dqfa;
    row[tdS] -= make.dqfb;
    row[tdV] += make.dqfc;
    for (int k = 1; k <= make.nmake; ++k) {
        const TdRow& t = st.td[termrow[k]];
        const sstring& term = make.makename[k];
        const int action = make.makeaction[k];
        const bool landau = haslandau(t), bw = hasbw(t);
        if ((landau || bw) && action == actnotgiven) {
            putstr(run.io, 1, "in the make for " + name + ", problem with " + term, 1, chscreenlog);
            bomb("domake", "action for od end-member not specified", 0);
        }
        if (!landau && !bw && action != actnotgiven) {
            putstr(run.io, 1, "in the make for " + name + ", problem with " + term, 1, chscreenlog);
            bomb("domake", "action specified for a non-od end-member", 0);
        }
        const real c = make.coef(k);
        if (action == actdisordered && landau) {
            const real q0 = landauq0(t, term);
            row[tdH] += c * q0 * t[tdSmax] * t[tdTc] * (1 - q0 * q0 / 3);
            row[tdS] += c * t[tdSmax] * q0;
            row[tdV] += c * t[tdVmax] * q0;
        } else if (action == actdisordered && bw) {
            const real n = t[tdbwn], F = t[tdbwfac];
            const real L = std::log(1 / (n + 1)) + n * std::log(n / (n + 1));
            row[tdH] += c * t[tdbwdH];
            row[tdV] += c * t[tdbwdV];
            if (F >= 0) row[tdS] -= c * R * F * L;
            else row[tdS] -= c * (1 / F - n) * R * F * L / (n + 1);
        } else if (action == actordered && landau) {
            const real q0 = landauq0(t, term);
            row[tdH] += c * t[tdSmax] * t[tdTc] * (-2.0L / 3 + q0 * (1 - q0 * q0 / 3));
            row[tdS] += c * t[tdSmax] * (q0 - 1);
            row[tdV] += c * t[tdVmax] * (q0 - 1);
        }
    }
    if (st.dsmode != -1)
        for (int k = 1; k <= make.nmake; ++k) make.makerow[k] = finddep(run, make.makename[k], make.makeaction[k]);
}

void makeemtd(Run& run) {
    EndMemberStore& st = run.store;
    PhaseStore& ps = run.phases;
    MadeStore& made = run.made;
    made.topfree = maxnem + 1;
    made.action.fill(0);
    const int n = st.nem;

    std::vector<Member> members;
    members.reserve(maxnem);
    for (int k = 1; k <= st.npss; ++k) {
        made.axrow[k] = static_cast<int>(members.size());
        for (int j = 1; j <= ps.prec1[k].nem; ++j) {
            AxEndMember& em = ps.prec1[k].em[j];
            members.push_back({&em.ename, &em.make, &em.emtd, false});
        }
    }
    made.purerow = static_cast<int>(members.size());
    for (int k = 1; k <= st.nmin; ++k) {
        PurePhase& p = ps.prec0[k];
        members.push_back({&p.ename, &p.make, &p.emtd, true});
    }
    const int count = static_cast<int>(members.size());
    if (count > maxnem) bomb("make emtd", "too many end-members", 0);

    for (Member& m : members) {
        clearkeepcharge(*m.row);
        const MakeRecord& mk = *m.make;
        if (mk.nmake <= 0) {
            const int i = findrow(st, n, *m.name);
            if (i == 0) bomb("make emtd", *m.name + " not found", 0);
            m.nterm = 1;
            m.termrow[1] = i;
            m.coef[1] = 1;
        } else {
            m.nterm = mk.nmake;
            for (int t = 1; t <= mk.nmake; ++t) {
                m.termrow[t] = findrow(st, n, mk.makename[t]);
                if (m.termrow[t] == 0) bomb("make emtd", mk.makename[t] + " not found", 0);
                m.coef[t] = mk.coef(t);
            }
        }
    }

    for (Member& m : members) {
        TdRow& row = *m.row;
        MakeRecord& mk = *m.make;
        if (mk.nmake <= 0) {
            const TdRow& t = st.td[m.termrow[1]];
            for (int f = 1; f <= tdxh2o; ++f)
                if (f != tdaqcharge && f != tdaqsize) row[f] = t[f];
            row[tdeos] = t[tdeos];
        } else if (run.calcmode == 9) {
            if (m.pure) bomb("calib", "make not allowed", 0);
            calibmake(st, m, row);
        } else if (st.dsmode == -1) {
            combine(st, m, row);
        } else if (row[tdaqcharge] != 0 && row[tdaqsize] != 0) {
            // A compound of two charged species: a plain row from here on,
            // its data the mean of its ions.
            mk.nmake = 0;
            for (int f = tdH; f <= tdcpd; ++f)
                row[f] = m.coef[1] * st.td[m.termrow[1]][f] + m.coef[2] * st.td[m.termrow[2]][f];
            row[tdaqz] = m.coef[1] * st.td[m.termrow[1]][tdaqz] + m.coef[2] * st.td[m.termrow[2]][tdaqz];
            row[tdeos] = st.td[m.termrow[1]][tdeos];
        } else {
            domake(run, *m.name, mk, row, m.termrow.data());
        }
    }

    // Covariance of H in the run's order: a made end-member's H is the
    // combination of its terms', so its covariances are the same
    // combination of theirs.
    std::vector<real>& w = made.covwork;
    const size_t stride = maxnem + 1;
    for (int a = 0; a < count; ++a)
        for (int b = a; b < count; ++b) {
            const Member& ma = members[a];
            const Member& mb = members[b];
            real v = 0;
            for (int s = 1; s <= ma.nterm; ++s)
                for (int t = 1; t <= mb.nterm; ++t)
                    v += ma.coef[s] * mb.coef[t] * st.covat(ma.termrow[s], mb.termrow[t]);
            w[(a + 1) * stride + (b + 1)] = v;
            w[(b + 1) * stride + (a + 1)] = v;
        }
    // The rows of the run's order must stay clear of the make terms' rows.
    if (count >= made.topfree) bomb("make emtd", "too many end-members", 0);
    for (int i = 1; i <= count; ++i)
        for (int j = 1; j <= count; ++j) st.covat(i, j) = w[i * stride + j];
    for (int i = 1; i <= count; ++i)
        for (int j = i + 1; j <= count; ++j)
            if (std::fabs(st.covat(i, j) - st.covat(j, i)) > 1e-5L) bomb("finishcov", "matrix not symmetric", 1);
    st.nem = count;
}

void putemrow(Run& run, int phase, int em, int i) {
    EndMemberStore& st = run.store;
    const PhaseStore& ps = run.phases;
    const bool pure = phase < 1;
    const TdRow& own = pure ? ps.prec0[em].emtd : ps.prec1[phase].em[em].emtd;
    const MakeRecord& mk = pure ? ps.prec0[em].make : ps.prec1[phase].em[em].make;
    TdRow& row = st.td[i];
    row.fill(0);
    if (mk.nmake <= 0) {
        for (int f = 1; f <= tdbwfac; ++f) row[f] = own[f];
    } else {
        row[tdH] = own[tdH];
        row[tdS] = own[tdS];
        row[tdV] = own[tdV];
        row[tddepphase] = pure ? 0 : phase;
        row[tddepem] = em;
    }
    row[tdeos] = own[tdeos];
    st.nsites[i] = pure ? 1 : ps.prec1[phase].em[em].maxpower;
    st.emname[i] = pure ? ps.prec0[em].ename : ps.prec1[phase].em[em].ename;
}

}  // namespace sm
