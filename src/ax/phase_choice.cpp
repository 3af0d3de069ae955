#include "ax/phase_choice.h"

#include "script/store.h"

namespace sm {

PhaseChoice phasechoice(const ScriptStore& script) {
    const PhaseScripts& p = script.phases;
    const EquilibriumScripts& e = script.equilibrium;
    const ActivityScripts& a = script.activities;
    PhaseChoice c;
    c.axfile = p.axfile;
    if (p.withflag != 1) c.with = p.withwhole;
    c.someof = p.someof;
    if (p.setexcessflag == 0) c.inexcess = p.setexcess;
    if (p.tozeroflag != 1) c.tozero = p.tozero;
    c.samecoding = p.samecoding;
    c.samecodingoff = p.samecodingflag == 1;
    if (e.xyzguessflag == 0)
        for (const auto& g : e.xyzguess) {
            GuessLine l;
            l.name = g.name;
            l.value = g.value;
            l.sd = g.sd;
            // The script's range is 0 to 1 unless the line gives one: only
            // a range that differs narrows the variable's own.
            l.rangeset = g.lo != 0 || g.hi != 1;
            l.lo = g.lo;
            l.hi = g.hi;
            c.xyzguess.push_back(l);
        }
    if (a.bufferflag == 0) {
        c.buffername = a.buffername;
        c.bufferoffset = a.bufferdel;
    }
    c.defaultsd = a.defsdaparams == 0;
    for (const auto& r : p.rgb) c.rgb.push_back({r.name, r.r, r.g, r.b});
    return c;
}

}  // namespace sm
