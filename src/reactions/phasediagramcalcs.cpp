// Mode 3 after its set-up: the windows and lists, the activities in force,
// every reaction of the window, their table and their invariant points.
#include <cmath>
#include <string>

#include "console/format.h"
#include "console/prompts.h"
#include "console/runended.h"
#include "reactions/ptxpoint.h"
#include "reactions/ptxtables.h"
#include "reactions/reactiondrawing.h"
#include "reactions/reactions.h"
#include "reactions/reactionthermo.h"
#include "run.h"
#include "script/windows.h"

namespace sm {

namespace {

const char* const titles[7] = {
    "pressure-temperature calculations", "pressure-x(CO2) calculations",
    "temperature-x(CO2) calculations",   "pressure-log a calculations",
    "temperature-log a calculations",    "pressure-\xB5 calculations",
    "temperature-\xB5 calculations",
};

bool special(const Run& run, int i) {
    const EndMemberStore& s = run.store;
    return i == s.ih2o || i == s.ico2 || (run.reactions.axisem > 0 && i == run.reactions.axisem);
}

void printactivities(Run& run) {
    const EndMemberStore& s = run.store;
    ReactionStore& rs = run.reactions;
    std::vector<int> nonunit;
    for (int i = 1; i <= s.nem; ++i)
        if (!special(run, i) && s.activ[i] < 0.999L) nonunit.push_back(i);
    if (nonunit.empty()) {
        for (int i = 1; i <= s.nem; ++i) rs.varlna[i] = 0;
        putstr(run.io, 0, "Unit activities", 1, chall);
        return;
    }
    setvarlna(run);
    if (nonunit.size() < 4) {
        putstr(run.io, 0, "Unit activities except :", 1, chall);
        std::string line;
        putfield("name", 9, line);
        putfield("a", 9, line);
        putfield("sd(ln a)", 9, line);
        putstr(run.io, 0, line, 1, chall);
        for (int i : nonunit) {
            line.clear();
            putfield(s.emname[i], 9, line);
            putreal(3, false, 9, line, s.activ[i]);
            putreal(5, true, 9, line, std::sqrt(rs.varlna[i]));
            putstr(run.io, 0, line, 1, chall);
        }
        return;
    }
    std::vector<int> all;
    for (int i = 1; i <= s.nem; ++i)
        if (i != s.ih2o && i != s.ico2) all.push_back(i);
    for (size_t start = 0; start < all.size(); start += 8) {
        const size_t end = std::min(all.size(), start + 8);
        std::string names(10, ' '), a, sd;
        putfield("a", -10, a);
        putfield("sd(ln a)", -10, sd);
        for (size_t k = start; k < end; ++k) {
            putfield(s.emname[all[k]], 9, names);
            putreal(3, false, 9, a, s.activ[all[k]]);
            putreal(5, true, 9, sd, std::sqrt(rs.varlna[all[k]]));
        }
        putstr(run.io, 1, names, 1, chall);
        putstr(run.io, 0, a, 1, chall);
        putstr(run.io, 0, sd, 1, chall);
    }
}

// Schreinemakers logic or every reaction: the script, or the question.
bool allreactionsasked(Run& run) {
    const int flag = run.script.rock.doallr;
    if (flag == 0) return true;
    if (flag == 1) return false;
    putstr(run.io, 0, "required action:", 1, chscreenlog);
    putstr(run.io, 0, " 0: do Schreinemakers (reactions which cannot be stable in the ", 1, chscreenlog);
    putstr(run.io, 0, "     window not calculated)", 1, chscreenlog);
    putstr(run.io, 0, " 1: calculate all reactions within the window regardless of stability", 1,
           chscreenlog);
    int code = 0;
    promptinteger(run.io, "code", code);
    return code != 0;
}

}  // namespace

void phasediagramsetup(Run& run) {
    ReactionStore& rs = run.reactions;
    EndMemberStore& s = run.store;
    Windows& w = run.script.win;
    rs.excludedem.clear();
    rs.nexcludedassemblage = 0;
    rs.points.clear();

    if (w.diagrammode < dmPT || w.diagrammode > dmTmu) bomb("phasediagramcalcs", "unknown diagrammode", 0);
    std::string title = titles[w.diagrammode];
    if (rs.diagramfromscript) title += " (from script)";
    putstr(run.io, 1, title, 1, chall);

    w.variance = 1;
    findspecialrows(s);
    FluidPhases fluid;
    fluid.h2o = s.ih2o > 0;
    fluid.co2 = s.ico2 > 0;
    fluid.cordierite = s.icrd > 0 || s.ifcrd > 0;
    diagramwindowsetup(run, rs.firstpass, fluid);
    if ((w.diagrammode == dmPlna || w.diagrammode == dmTlna) && rs.axisem > 0 &&
        w.axisname != s.emname[rs.axisem])
        rs.axisdisplayname = w.axisname;

    // The axes carry their own end-members: those take no part in the
    // activities.
    if (w.diagrammode == dmPx || w.diagrammode == dmTx) {
        for (int i : {s.ih2o, s.ico2})
            if (i > 0) {
                s.activ[i] = 1;
                rs.sdactiv[i] = 0;
            }
    } else if (w.diagrammode >= dmPlna && rs.axisem > 0) {
        s.activ[rs.axisem] = 1;
        rs.sdactiv[rs.axisem] = 0;
        if (w.diagrammode >= dmPmu) s.td[rs.axisem][tdH] = (w.muwindow.lo + w.muwindow.hi) / 2;
    }
    printactivities(run);

    windowtype(run);
    rs.allreactions = allreactionsasked(run);
}

void phasediagramcalcs(Run& run) {
    ReactionStore& rs = run.reactions;
    phasediagramsetup(run);
    bool complete = false;
    calcre(run, complete);
    if (rs.nir > 0) {
        ptxtable(run);
        if (!rs.allreactions && rs.nir > 2) intersections(run);
        reactiondrawing(run);
    }
}

}  // namespace sm
