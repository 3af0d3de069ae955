// Identities of the activity models over every phase of the four shipped
// a-x files: analytic derivatives against central differences, and
// Gibbs-Duhem along every composition direction.
#include "activities_testing.h"
#include "ax/phase_prep.h"
#include "thermo/constants.h"

namespace sm::acttest {
namespace {

struct PT {
    real P, T;
};
constexpr PT points[] = {{5, 873.15L}, {12, 1023.15L}, {1.5, 723.15L}};

const char* const files[] = {"sm-axpel.txt", "sm-axkfm.txt", "sm-axbas.txt", "sm-axign.txt"};

// Legal points of phase k: its guesses, and the guesses with each variable
// moved by a little in turn, kept where every site fraction is positive.
std::vector<std::vector<real>> legalpoints(FileRun& f, int k) {
    std::vector<std::vector<real>> out;
    const AxPhase& ph = f.ax(k);
    auto legal = [&](const std::vector<real>& x) {
        for (int s = 1; s <= ph.nsf; ++s)
            if (!(evalx(ph.pool, ph.sfexpr[s], x.data(), 1) > 1e-4L)) return false;
        return true;
    };
    const std::vector<real> g = f.guesses(k);
    if (legal(g)) out.push_back(g);
    for (int v = 1; v <= ph.nxv; ++v)
        for (real d : {0.03L, -0.03L}) {
            std::vector<real> x = g;
            x[v] += d;
            if (legal(x)) {
                out.push_back(x);
                break;
            }
        }
    return out;
}

real rtlna(FileRun& f, int k, const std::vector<real>& x, int e, real P, real T) {
    const PhaseActivity a = f.at(k, x, P, T, false);
    return Rgas * T * std::log(a.aa[e]);
}

TEST(ActivityIdentities, DerivativesAgreeWithCentralDifferences) {
    for (const char* file : files) {
        FileRun f(file);
        int phases = 0;
        for (int k = 1; k <= f.nphases(); ++k) {
            const AxPhase& ph = f.ax(k);
            const auto xs = legalpoints(f, k);
            ASSERT_FALSE(xs.empty()) << file << " " << ph.pname;
            ++phases;
            for (const auto& x0 : xs)
                for (const PT& pt : points) {
                    const PhaseActivity a = f.at(k, x0, pt.P, pt.T, true);
                    for (int e = 1; e <= ph.nem; ++e) {
                        const std::string where = std::string(file) + " " + ph.pname + " " + ph.em[e].ename;
                        for (int v = 1; v <= ph.nxv; ++v) {
                            const real d = central(
                                [&](real h) {
                                    auto x = x0;
                                    x[v] += h;
                                    return rtlna(f, k, x, e, pt.P, pt.T);
                                },
                                1e-6L);
                            EXPECT_TRUE(near(a.dlnadx[e][v], d, 1e-6L, 1e-7L)) << where << " " << ph.xv[v].xname;
                        }
                        const real dT = central([&](real h) { return rtlna(f, k, x0, e, pt.P, pt.T + h); }, 1e-4L);
                        EXPECT_TRUE(near(a.dlnadT[e], dT, 1e-6L, 1e-9L)) << where << " T";
                        const real dP = central([&](real h) { return rtlna(f, k, x0, e, pt.P + h, pt.T); }, 1e-5L);
                        EXPECT_TRUE(near(a.dlnadP[e], dP, 1e-6L, 1e-9L)) << where << " P";
                        // p from the gradient of the proportions too.
                        for (int v = 1; v <= ph.nxv; ++v)
                            EXPECT_NEAR(static_cast<double>(a.dpdx[e][v]),
                                        static_cast<double>(devalx(v, ph.pool, ph.pexpr[e], x0.data(), 1)), 1e-15);
                    }
                }
        }
        EXPECT_EQ(phases, f.nphases());
    }
}

// sum over end-members of p d(RT ln a)/dx = 0: the end-member potentials
// of one phase do not change independently.
TEST(ActivityIdentities, GibbsDuhemAlongEveryVariable) {
    for (const char* file : files) {
        FileRun f(file);
        for (int k = 1; k <= f.nphases(); ++k) {
            const AxPhase& ph = f.ax(k);
            for (const auto& x : legalpoints(f, k))
                for (const PT& pt : points) {
                    const PhaseActivity a = f.at(k, x, pt.P, pt.T, true);
                    for (int v = 1; v <= ph.nxv; ++v) {
                        real sum = 0, size = 0;
                        for (int e = 1; e <= ph.nem; ++e) {
                            sum += a.pp[e] * a.dlnadx[e][v];
                            size += std::fabs(a.pp[e] * a.dlnadx[e][v]);
                        }
                        EXPECT_LE(static_cast<double>(std::fabs(sum)), static_cast<double>(1e-12L * size + 1e-15L))
                            << file << " " << ph.pname << " " << ph.xv[v].xname;
                    }
                }
        }
    }
}

// Each end-member at its check values is pure: ideal activity 1 and no
// excess, whatever P and T.
TEST(ActivityIdentities, PureEndMembersHaveUnitActivity) {
    for (const char* file : files) {
        FileRun f(file);
        for (int k = 1; k <= f.nphases(); ++k) {
            const AxPhase& ph = f.ax(k);
            for (int e = 1; e <= ph.nem; ++e) {
                if (!ph.em[e].hascheck) continue;
                std::vector<real> x(ph.nxv + 1, 0.0L);
                for (int v = 1; v <= ph.nxv; ++v)
                    x[v] = static_cast<real>(ph.em[e].checkx[v]) / ph.em[e].checkdiv;
                // The check point may sit on a site fraction of zero, which
                // no calculation may use; the ideal term alone is tested there.
                real sf[maxsfvars + 1];
                bool legal = true;
                for (int s = 1; s <= ph.nsf; ++s) {
                    sf[s] = evalx(ph.pool, ph.sfexpr[s], x.data(), 1);
                    if (!(sf[s] > 0)) legal = false;
                }
                EXPECT_NEAR(static_cast<double>(idealmix(ph, e, sf)), 1.0, 1e-3) << ph.pname << " " << ph.em[e].ename;
                if (!legal) continue;
                const PhaseActivity a = f.at(k, x, 8, 900, false);
                EXPECT_NEAR(static_cast<double>(a.aid[e]), 1.0, 1e-3);
                EXPECT_NEAR(static_cast<double>(a.gam[e]), 1.0, 1e-12) << ph.pname << " " << ph.em[e].ename;
            }
        }
    }
}

}  // namespace
}  // namespace sm::acttest
