// The linear form of each reaction at the current point,
// 0 = a + bT + cP + RT ln K, with the uncertainties of a and of ln K.
#include <cmath>

#include "console/format.h"
#include "reactions/ptxtables.h"
#include "reactions/reactionthermo.h"
#include "run.h"
#include "script/windows.h"
#include "thermo/constants.h"
#include "thermo/gem.h"

namespace sm {

void thermotable(Run& run) {
    const EndMemberStore& s = run.store;
    const ReactionStore& rs = run.reactions;
    const Windows& w = run.script.win;
    const real P = w.P, T = w.T, x = w.xco2, xh = w.xh2o;

    std::string where = "linearised at T = " + int2str(T - kelvin0) + ", P = " + real2str(P, 1, true);
    bool co2note = false;
    if (s.ico2 > 0 && x > 0) {
        where += ", x(CO2) = " + real2str(x, 3, true);
        co2note = true;
    }
    if (s.ih2o > 0 && xh > 0 && (!co2note || std::fabs(x + xh - 1) > 0.001L))
        where += ", x(H2O) = " + real2str(xh, 3, true);
    putstr(run.io, 1, "Thermodynamics of reactions (0 = a + bT + cP + RT ln K)", 1, chall);
    putstr(run.io, 0, where, 1, chall);
    putstr(run.io, 0, "(a, b and c includes fluid fugacities; ln K includes x(CO2), x(H2O))", 2, chall);

    std::string line(4, ' ');
    putfield("a", 10, line);
    putfield("sd(a)", 8, line);
    putfield("b", 11, line);
    putfield("c", 11, line);
    putfield("ln_K", 9, line);
    putfield("sd(ln_K)", 9, line);
    putstr(run.io, 0, line, 1, chall);

    setlnKbase(run);
    setvarlna(run);
    for (int n = 1; n <= rs.nir; ++n) {
        real dGdP, dGdT, dG;
        calcdg(run, n, dGdP, dGdT, dG, P, T, x, xh);
        real VH, Va;
        reactionvariances(run, n, VH, Va);
        real lnK = rs.lnKbase[n];
        if (s.ico2 > 0 && s.r[n][s.ico2] != 0 && x > 0 && x < 1) lnK += s.r[n][s.ico2] * std::log(x);
        if (s.ih2o > 0 && s.r[n][s.ih2o] != 0 && xh > 0 && xh < 1) lnK += s.r[n][s.ih2o] * std::log(xh);
        const real a = dG - T * dGdT - P * dGdP;
        const real sda = VH > 0 ? std::sqrt(VH) : VH;
        const real b = dGdT - Rgas * lnK;
        const real sdlnK = Va > 0 ? std::sqrt(Va) : Va;
        line.clear();
        putfield(std::to_string(n), -4, line);
        putreal(3, true, 10, line, a);
        putreal(2, true, 8, line, sda);
        putreal(6, true, 11, line, b);
        putreal(5, true, 11, line, dGdP);
        putreal(3, true, 9, line, lnK);
        putreal(3, true, 9, line, sdlnK);
        putstr(run.io, 0, line, 1, chall);
    }
}

}  // namespace sm
