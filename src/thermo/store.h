#pragma once
// The end-member store of a run: dataset names, the rows of td with their
// chemistry, the composition matrix c and the covariance of H. Tables are
// 1-based as in the program's text; index 0 is unused.
#include <array>
#include <memory>
#include <string>
#include <vector>

#include "console/types.h"
#include "thermo/limits.h"

namespace sm {

// Fields of a td row (1..31).
enum TdField : int {
    tdH = 1, tdS, tdV, tdcpa, tdcpb, tdcpc, tdcpd, tdalpha, tdk0, tdk0p, tdk0pp, tdtheta, tddkdT,
    tdTc, tdSmax, tdVmax, tdaqz, tdaqcharge, tdaqsize, tdbwdH, tdbwdV, tdbwW, tdbwWv, tdbwn,
    tdbwfac, tdaqsum, tdxco2, tdxh2o, tddepphase, tddepem, tdeos
};

using TdRow = std::array<real, tdfields + 1>;

struct EndMemberStore {
    EndMemberStore() { initstore(); }

    // Dataset name tables (file order).
    int ntp = 0;
    std::vector<sstring> dsname = std::vector<sstring>(maxntp + 1);
    std::vector<std::string> dscomment = std::vector<std::string>(maxntp + 1);

    // End-members of the run, in the order of td.
    int nem = 0;
    std::vector<sstring> emname = std::vector<sstring>(maxnem + 1);
    std::vector<TdRow> td = std::vector<TdRow>(maxnem + 1);

    // Chemistry by td row.
    std::array<int, maxnem + 1> nel{};
    std::vector<std::array<int, maxelpairs + 1>> elno =
        std::vector<std::array<int, maxelpairs + 1>>(maxnem + 1);
    std::vector<std::array<real, maxelpairs + 1>> elcoef =
        std::vector<std::array<real, maxelpairs + 1>>(maxnem + 1);
    std::array<real, maxnem + 1> natoms{};
    std::array<int, maxnem + 1> nsites{};

    // Composition matrix: c[k][i] / cscale[k] of component k in end-member i.
    int nc = 0;
    std::vector<std::array<short, maxnem + 1>> c =
        std::vector<std::array<short, maxnem + 1>>(maxcomp + 1);
    std::array<int, maxcomp + 1> cscale{};
    std::array<sstring, maxcomp + 1> compname{};
    std::array<real, maxcomp + 1> catomsum{};

    // Reaction coefficients on emname, by reaction row.
    std::vector<std::array<short, maxnem + 1>> r =
        std::vector<std::array<short, maxnem + 1>>(maxrrows + 1);

    // Copies of nc and nem that the projection onto a reduced system works on.
    int ncproj = 0, nemproj = 0;
    // True when some end-member's oxygen differs from that of its oxides.
    bool excessO = false;

    // Covariance of H by td row, (maxnem+1)^2 reals.
    std::vector<real> cov = std::vector<real>((maxnem + 1) * (maxnem + 1));
    real& covat(int i, int j) { return cov[static_cast<size_t>(i) * (maxnem + 1) + j]; }
    real covat(int i, int j) const { return cov[static_cast<size_t>(i) * (maxnem + 1) + j]; }

    // Activities after the last activity calculation.
    std::array<real, maxnem + 1> activ{};

    // Form of the dataset and run-level counts.
    int dsmode = 0;
    bool newds = false;
    int npss = 0, nmin = 0, nph = 0;
    // The alternative Einstein-thermal equation of state. (The fluid type, the
    // script's "numerical" and the print level that the energies read belong
    // to the script and the solver.)
    bool ggk = false;

    // Rows of the end-members that the fluid and reaction terms look for by
    // name (0 when the run has none), found by findspecialrows.
    int ico2 = 0, ih2o = 0, iaqsi = 0, icrd = 0, ifcrd = 0;

    // Diagnostics of the end-member energy: the last thermal (heat capacity)
    // and VdP terms, and the fallbacks of the Einstein integral's series.
    real lastthermal = 0;
    real lastvdp = 0;
    long long ggkfallbacks = 0;

    // Sets the start-of-program state: counts zero, nsites and cscale 1, c 0.
    void initstore();
};

// Makes nem and emname the given list of names, cut to 22 characters, and
// empties the slots above; more than the td rows hold is fatal.
void setemname(EndMemberStore& s, const std::vector<sstring>& names);

// Finds the rows of H2O, CO2, aqSi, crd and fcrd in emname.
void findspecialrows(EndMemberStore& s);

// Linear search of the dataset names, exact after the 22-character cut.
bool dsfind(const EndMemberStore& s, std::string_view name, int& number);

}  // namespace sm
