// Made end-members on hand-made rows: the energy of fully ordered or
// disordered terms, shared term rows, covariances, charged compounds.
#include <gtest/gtest.h>

#include <cmath>

#include "console/console.h"
#include "console/runended.h"
#include "run.h"
#include "thermo/gem.h"
#include "thermo/made_endmembers.h"

namespace sm {
namespace {

constexpr real R = 0.0083144L;

struct MadeRun {
    MemoryConsole con;
    sm::Run run{con};
    AxPhase& ph = run.phases.prec1[1];

    // Dataset rows: a plain, b with Landau order, c with Bragg-Williams order.
    MadeRun() {
        EndMemberStore& st = run.store;
        st.dsmode = 6;
        st.nem = 3;
        const char* names[] = {"", "a", "b", "c"};
        for (int i = 1; i <= 3; ++i) {
            st.emname[i] = names[i];
            st.td[i].fill(0);
            st.td[i][tdSmax] = st.td[i][tdVmax] = -1;
            st.td[i][tdbwfac] = 1;
        }
        st.td[1][tdH] = -100;
        st.td[1][tdS] = 0.05L;
        st.td[2][tdH] = -200;
        st.td[2][tdS] = 0.07L;
        st.td[2][tdTc] = 1000;
        st.td[2][tdSmax] = 0.01L;
        st.td[2][tdVmax] = 0.05L;
        st.td[3][tdH] = -300;
        st.td[3][tdS] = 0.09L;
        st.td[3][tdbwdH] = 5;
        st.td[3][tdbwdV] = 0.1L;
        st.td[3][tdbwn] = 1;
        st.td[3][tdbwfac] = 1;
        st.td[3][tdeos] = 2;
        st.td[2][tdeos] = 1;
        st.covat(1, 1) = 4;
        st.covat(2, 2) = 9;
        st.covat(1, 2) = st.covat(2, 1) = 1;
        st.npss = 1;
        st.nph = 1;
        ph.nem = 0;
    }
    AxEndMember& add(const char* name) {
        AxEndMember& em = ph.em[++ph.nem];
        em.ename = name;
        em.maxpower = 1;
        return em;
    }
    static void term(AxEndMember& em, const char* name, int action, int coef) {
        MakeRecord& m = em.make;
        ++m.nmake;
        m.makename[m.nmake] = name;
        m.makeaction[m.nmake] = action;
        m.makecoef[m.nmake] = coef;
    }
};

TEST(MadeEndMembers, OrderEnergyOfFullyOrderedAndDisorderedTerms) {
    MadeRun m;
    m.add("a");
    AxEndMember& mix = m.add("mix");  // 1/2 a + 1/2 disordered b, DQF 1 + 0.002 T + 0.01 P
    mix.make.makediv = 2;
    MadeRun::term(mix, "a", actnotgiven, 1);
    MadeRun::term(mix, "b", actdisordered, 1);
    mix.make.dqfa = 1;
    mix.make.dqfb = 0.002L;
    mix.make.dqfc = 0.01L;
    AxEndMember& ord = m.add("ord");
    MadeRun::term(ord, "b", actordered, 1);
    AxEndMember& bw = m.add("bw");
    MadeRun::term(bw, "c", actdisordered, 1);
    AxEndMember& dis = m.add("dis");
    MadeRun::term(dis, "b", actdisordered, 1);
    AxEndMember& eq = m.add("eq");
    MadeRun::term(eq, "b", actequilibrium, 1);
    makeemtd(m.run);

    const real q0 = std::sqrt(1 - 298.15L / 1000);
    EXPECT_NEAR(mix.emtd[tdH], 1 + 0.5L * q0 * 0.01L * 1000 * (1 - q0 * q0 / 3), 1e-15L);
    EXPECT_NEAR(mix.emtd[tdS], -0.002L + 0.5L * 0.01L * q0, 1e-18L);
    EXPECT_NEAR(mix.emtd[tdV], 0.01L + 0.5L * 0.05L * q0, 1e-18L);
    EXPECT_NEAR(ord.emtd[tdH], 0.01L * 1000 * (-2.0L / 3 + q0 * (1 - q0 * q0 / 3)), 1e-15L);
    EXPECT_NEAR(ord.emtd[tdS], 0.01L * (q0 - 1), 1e-18L);
    EXPECT_NEAR(ord.emtd[tdV], 0.05L * (q0 - 1), 1e-18L);
    // Bragg-Williams with n = 1: the ideal entropy of two sites, -R (2 ln 1/2).
    EXPECT_NEAR(bw.emtd[tdH], 5, 1e-15L);
    EXPECT_NEAR(bw.emtd[tdV], 0.1L, 1e-18L);
    EXPECT_NEAR(bw.emtd[tdS], -R * 2 * std::log(0.5L), 1e-18L);

    // One high row per term and action: b disordered is shared, b ordered
    // and b at equilibrium have their own; only the last keeps its order.
    const int bdis = mix.make.makerow[2];
    EXPECT_EQ(dis.make.makerow[1], bdis);
    EXPECT_NE(ord.make.makerow[1], bdis);
    EXPECT_NE(eq.make.makerow[1], bdis);
    EXPECT_EQ(m.run.made.topfree, maxnem - 4);
    const EndMemberStore& st = m.run.store;
    EXPECT_EQ(st.emname[bdis], "b");
    EXPECT_EQ(st.td[bdis][tdTc], 0);
    EXPECT_EQ(st.td[bdis][tdSmax], 0);
    EXPECT_EQ(st.td[eq.make.makerow[1]][tdTc], 1000);
    EXPECT_EQ(st.td[bw.make.makerow[1]][tdbwn], 0);
    EXPECT_EQ(st.nem, 6);

    // G of the made row: its own H - TS + VP and its terms, each plain
    // rows with no volume here, G = H - TS.
    putemrow(m.run, 1, 2, 1);
    const real P = 5, T = 900;
    const real own = mix.emtd[tdH] - T * mix.emtd[tdS] + P * mix.emtd[tdV];
    EXPECT_NEAR(gemdriver(m.run, 1, P, T), own + 0.5L * (-100 - T * 0.05L) + 0.5L * (-200 - T * 0.07L), 1e-12L);
    EXPECT_EQ(m.run.store.td[1][tddepphase], 1);
    EXPECT_EQ(m.run.store.td[1][tddepem], 2);
    putemrow(m.run, 1, 1, 2);
    EXPECT_EQ(m.run.store.td[2][tddepem], 0);
    EXPECT_NEAR(gemdriver(m.run, 2, P, T), -100 - T * 0.05L, 1e-12L);
}

TEST(MadeEndMembers, CovarianceFollowsTheTerms) {
    MadeRun m;
    m.add("a");
    AxEndMember& mix = m.add("mix");
    mix.make.makediv = 2;
    MadeRun::term(mix, "a", actnotgiven, 1);
    MadeRun::term(mix, "c", actdisordered, 1);
    m.add("b").make.nmake = -1;  // thermodynamics as its own dataset row
    m.run.store.covat(1, 3) = m.run.store.covat(3, 1) = 2;
    m.run.store.covat(3, 3) = 16;
    makeemtd(m.run);
    const EndMemberStore& st = m.run.store;
    EXPECT_NEAR(st.covat(1, 1), 4, 1e-18L);
    EXPECT_NEAR(st.covat(2, 2), 0.25L * 4 + 0.25L * 16 + 2 * 0.25L * 2, 1e-18L);
    EXPECT_NEAR(st.covat(1, 2), 0.5L * 4 + 0.5L * 2, 1e-18L);
    EXPECT_NEAR(st.covat(2, 1), st.covat(1, 2), 1e-18L);
    EXPECT_NEAR(st.covat(3, 3), 9, 1e-18L);
    EXPECT_NEAR(st.covat(1, 3), 1, 1e-18L);
    EXPECT_NEAR(st.covat(2, 3), 0.5L * 1, 1e-18L);
}

TEST(MadeEndMembers, ChargedCompoundIsAPlainRow) {
    MadeRun m;
    m.run.store.emname[1] = "Na+";
    m.run.store.emname[2] = "Cl-";
    m.run.store.td[2][tdTc] = 0;
    AxEndMember& salt = m.add("NaCl");
    salt.make.makediv = 2;
    MadeRun::term(salt, "Na+", actnotgiven, 1);
    MadeRun::term(salt, "Cl-", actnotgiven, 1);
    salt.emtd[tdaqcharge] = 1;
    salt.emtd[tdaqsize] = 1;
    makeemtd(m.run);
    EXPECT_EQ(salt.make.nmake, 0);
    EXPECT_NEAR(salt.emtd[tdH], -150, 1e-15L);
    EXPECT_NEAR(salt.emtd[tdS], 0.06L, 1e-18L);
    EXPECT_EQ(salt.emtd[tdaqcharge], 1);
}

TEST(MadeEndMembers, Faults) {
    struct Case {
        const char* name;
        const char* term;
        int action;
        const char* where;
        const char* message;
        const char* before;
    };
    const Case cases[] = {
        {"order without action", "b", actnotgiven, "domake", "action for od end-member not specified",
         "in the make for x, problem with b"},
        {"action without order", "a", actordered, "domake", "action specified for a non-od end-member",
         "in the make for x, problem with a"},
        {"unknown term", "zz", actnotgiven, "make emtd", "zz not found", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        MadeRun m;
        MadeRun::term(m.add("x"), c.term, c.action, 1);
        try {
            makeemtd(m.run);
            ADD_FAILURE() << "no fatal stop";
        } catch (const RunEnded& e) {
            EXPECT_EQ(e.where, c.where);
            EXPECT_EQ(e.message, c.message);
            EXPECT_NE(m.con.output.find(c.before), std::string::npos);
        }
    }
    // Term rows and the run's rows may not meet.
    MadeRun full;
    full.run.store.nem = maxnem - 1;
    full.run.store.emname[maxnem - 1] = "b";
    MadeRun::term(full.add("x"), "b", actordered, 1);
    MadeRun::term(full.add("y"), "b", actdisordered, 1);
    try {
        makeemtd(full.run);
        ADD_FAILURE() << "no fatal stop";
    } catch (const RunEnded& e) {
        EXPECT_EQ(e.where, "finddep");
        EXPECT_EQ(e.message, "too many end-members");
    }
}

}  // namespace
}  // namespace sm
