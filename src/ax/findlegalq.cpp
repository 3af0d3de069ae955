// A legal start for the order variables of a phase: the guesses as they
// stand when every site fraction is positive there, otherwise random draws
// of the order variables within their limits.
#include "ax/order.h"
#include "ax/phase_prep.h"
#include "console/runended.h"
#include "run.h"

namespace sm {

namespace {

constexpr int maxdraws = 1001;

void drawq(Run& run, AxPhase& ph) {
    for (int v = 1; v <= ph.nxv; ++v) {
        AxVariable& xv = ph.xv[v];
        if (xv.isod) xv.guess = xv.lower + (xv.upper - xv.lower) * static_cast<real>(run.random.next());
    }
}

}  // namespace

bool findlegalq(Run& run, int phase, bool solve, bool& wasillegal, real P, real T) {
    AxPhase& ph = run.phases.prec1[phase];
    if (!ph.hasq) bomb("findlegalq", "not an odd phase", 0);
    bool legal = checksf(ph);
    wasillegal = !legal;
    if (!solve) {
        for (int draw = 1; draw <= maxdraws && !legal; ++draw) {
            drawq(run, ph);
            legal = checksf(ph);
        }
        return legal;
    }
    // A start that is legal but from which the state of order cannot be
    // solved counts as illegal: the next try draws afresh.
    for (int attempt = 1; attempt <= maxdraws; ++attempt) {
        if (!legal) {
            drawq(run, ph);
            legal = checksf(ph);
        }
        if (!legal) continue;
        if (calcq(run, phase, P, T)) return true;
        legal = false;
    }
    return false;
}

}  // namespace sm
