// Independent reactions among the end-members of each shipped a-x file: as
// many as end-members less the rank of their compositions, each balanced in
// every component, checked against the phases' own compositions.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "ax/ax_reader.h"
#include "ax/endmember_composition.h"
#include "ax/makename.h"
#include "ax/setupphases.h"
#include "console/console.h"
#include "console/intmath.h"
#include "reaction_testing.h"
#include "reactions/inexcess.h"
#include "reactions/reactions.h"
#include "run.h"
#include "thermo/dataset.h"

namespace sm {
namespace {

struct AxFile {
    const char* ax;
    const char* dataset;
};

// One end-member: its name and its composition, numerators over a
// denominator, in the run's components.
struct Member {
    sstring name;
    std::vector<long long> num;
    long long den = 1;
};

// The end-members of the phases named (all phases when none are named), in
// file order, those of `last` moved to the end.
std::vector<Member> members(const Run& run, const std::vector<sstring>& phases = {},
                            const std::vector<sstring>& last = {}) {
    auto wanted = [&](const sstring& p) {
        if (phases.empty()) return true;
        for (const sstring& q : phases)
            if (q == p) return true;
        return false;
    };
    std::vector<Member> list;
    auto add = [&](const sstring& name, const EmComposition& c) {
        for (const Member& m : list)
            if (m.name == name) return;
        Member m{name, {}, c.cden};
        for (int k = 1; k <= run.store.nc; ++k) m.num.push_back(c.cnum[k]);
        list.push_back(m);
    };
    for (int k = 1; k <= run.store.npss; ++k)
        if (wanted(run.phases.prec1[k].pname))
            for (int j = 1; j <= run.phases.prec1[k].nem; ++j)
                add(run.phases.prec1[k].em[j].ename, run.phases.prec1[k].em[j].comp);
    for (int k = 1; k <= run.store.nmin; ++k)
        if (wanted(run.phases.prec0[k].pname)) add(run.phases.prec0[k].ename, run.phases.prec0[k].comp);
    std::vector<Member> ordered;
    for (int pass = 0; pass < 2; ++pass)
        for (const Member& m : list) {
            bool atend = false;
            for (const sstring& q : last) atend = atend || q == m.name;
            if (atend == (pass == 1)) ordered.push_back(m);
        }
    return ordered;
}

int floatrank(std::vector<std::vector<double>> a) {
    const int rows = static_cast<int>(a.size()), cols = rows ? static_cast<int>(a[0].size()) : 0;
    int rank = 0;
    for (int c = 0; c < cols && rank < rows; ++c) {
        int best = rank;
        for (int r = rank; r < rows; ++r)
            if (std::fabs(a[r][c]) > std::fabs(a[best][c])) best = r;
        if (std::fabs(a[best][c]) < 1e-9) continue;
        std::swap(a[rank], a[best]);
        for (int r = 0; r < rows; ++r) {
            if (r == rank) continue;
            const double f = a[r][c] / a[rank][c];
            for (int k = c; k < cols; ++k) a[r][k] -= f * a[rank][k];
        }
        ++rank;
    }
    return rank;
}

TEST(AxFileReactions, IndependentReactionsAreEndMembersLessRankAndBalance) {
    const std::vector<AxFile> files = {{"sm-axkfm.txt", "sm-ds6a.txt"},
                                       {"sm-axpel.txt", "sm-ds6a.txt"},
                                       {"sm-axbas.txt", "sm-ds6a.txt"},
                                       {"sm-axign.txt", "sm-ds6b.txt"}};
    for (const auto& f : files) {
        SCOPED_TRACE(f.ax);
        MemoryConsole con;
        sm::Run run(con);
        run.calcmode = run.runmode = 1;
        TextFile file;
        ASSERT_TRUE(file.open(std::string(SM_DATA_DIR) + "/" + f.ax));
        PhaseChoice choice;
        readaxfile(run, file, choice);
        preparephases(run, choice);
        makename(run, std::vector<bool>(run.store.nph + 1, false));
        setuptextread(run, std::string(SM_DATA_DIR) + "/" + f.dataset);
        readthermochemistry(run);
        makeemc(run);

        const std::vector<Member> ems = members(run);
        const int nc = run.store.nc, nem = static_cast<int>(ems.size());
        // The matrix of the reactions: each row scaled to whole numbers.
        std::vector<long long> scale(nc, 1);
        for (int k = 0; k < nc; ++k)
            for (const Member& m : ems) scale[k] = lcm(scale[k], m.den / gcd(m.num[k], m.den));
        EndMemberStore& s = run.store;
        s.nem = nem;
        std::vector<std::vector<double>> a(nc, std::vector<double>(nem));
        for (int i = 1; i <= nem; ++i) {
            s.emname[i] = ems[i - 1].name;
            for (int k = 1; k <= nc; ++k) {
                const long long v = ems[i - 1].num[k - 1] * scale[k - 1] / ems[i - 1].den;
                s.c[k][i] = static_cast<short>(v);
                a[k - 1][i - 1] = static_cast<double>(ems[i - 1].num[k - 1]) / ems[i - 1].den;
            }
        }
        bool found = false;
        listindependentreactions(run, found);
        EXPECT_EQ(run.reactions.nir, nem - floatrank(a));
        EXPECT_TRUE(found);
        // Balance in the phases' own rational compositions.
        for (int n = 1; n <= run.reactions.nir; ++n)
            for (int k = 0; k < nc; ++k) {
                long double sum = 0;
                for (int i = 1; i <= nem; ++i)
                    sum += static_cast<long double>(s.r[n][i]) * ems[i - 1].num[k] / ems[i - 1].den;
                EXPECT_NEAR(static_cast<double>(sum), 0.0, 1e-12) << "reaction " << n << ", component " << k;
            }
    }
}

// Every reaction the enumeration finds among the end-members of garnet,
// staurolite, cordierite and the aluminosilicates, quartz and water in
// excess, balances exactly in the phases' own compositions (made
// end-members included), and each comes out once.
TEST(AxFileReactions, EveryEnumeratedReactionOfAKfmashSetBalances) {
    MemoryConsole con;
    sm::Run run(con);
    run.calcmode = run.runmode = 1;
    TextFile file;
    ASSERT_TRUE(file.open(std::string(SM_DATA_DIR) + "/sm-axkfm.txt"));
    PhaseChoice choice;
    readaxfile(run, file, choice);
    preparephases(run, choice);
    makename(run, std::vector<bool>(run.store.nph + 1, false));
    setuptextread(run, std::string(SM_DATA_DIR) + "/sm-ds6a.txt");
    readthermochemistry(run);
    makeemc(run);

    const std::vector<Member> ems =
        members(run, {"g", "st", "cd", "ky", "sill", "and", "q", "H2O"}, {"q", "H2O"});
    const int nc = run.store.nc, nem = static_cast<int>(ems.size());
    ASSERT_GE(nem, 10);
    EXPECT_EQ(ems[nem - 2].name, "q");
    EXPECT_EQ(ems[nem - 1].name, "H2O");
    EndMemberStore& s = run.store;
    s.nem = nem;
    for (int k = 1; k <= nc; ++k) {
        long long scale = 1;
        for (const Member& m : ems) scale = lcm(scale, m.den / gcd(m.num[k - 1], m.den));
        s.cscale[k] = static_cast<int>(scale);
        for (int i = 1; i <= nem; ++i)
            s.c[k][i] = static_cast<short>(ems[i - 1].num[k - 1] * scale / ems[i - 1].den);
    }
    for (int i = 1; i <= nem; ++i) {
        s.emname[i] = ems[i - 1].name;
        s.activ[i] = 1;
    }
    findspecialrows(s);
    run.runmode = 3;
    eliminateinexcess(run, 2);
    run.reactions.allreactions = true;
    bool complete = false;
    calcre(run, complete, sm::testing::alwaysinwindow());
    ASSERT_TRUE(complete);
    const int nir = run.reactions.nir;
    EXPECT_GT(nir, 40);
    std::set<std::map<std::string, int>> seen;
    for (int n = 1; n <= nir; ++n) {
        std::map<std::string, int> r;
        for (int i = 1; i <= nem; ++i)
            if (s.r[n][i] != 0) r[s.emname[i]] = s.r[n][i];
        ASSERT_GE(r.size(), 2u) << n;
        for (int k = 0; k < nc; ++k) {
            long double sum = 0;
            for (int i = 1; i <= nem; ++i)
                sum += static_cast<long double>(s.r[n][i]) * ems[i - 1].num[k] / ems[i - 1].den;
            EXPECT_NEAR(static_cast<double>(sum), 0.0, 1e-12) << "reaction " << n << ", component " << k;
        }
        // In lowest terms, and once only whatever its sign.
        long long g = 0;
        for (int i = 1; i <= nem; ++i) g = gcd(g, s.r[n][i]);
        EXPECT_EQ(g, 1) << n;
        auto negated = r;
        for (auto& [name, v] : negated) v = -v;
        EXPECT_TRUE(seen.insert(r).second && !seen.count(negated)) << n;
        // Water, when it takes part, stands on the right.
        if (r.count("H2O")) EXPECT_GT(r["H2O"], 0) << n;
    }
}

}  // namespace
}  // namespace sm
