// What the program understood of the scriptfile, as a table in the log, so a
// user can check a script word by word.
#include <cmath>

#include "console/format.h"
#include "console/scan.h"
#include "run.h"
#include "script/readcontrol.h"
#include "script/readers.h"

namespace sm {

namespace {

std::string flagstr(int flag) {
    switch (flag) {
    case 0: return "yes";
    case 1: return "no";
    case 2: return "ask";
    default: return int2str(flag);
    }
}

std::string list(const std::vector<sstring>& names) {
    if (names.empty()) return "-";
    std::string text;
    for (const sstring& n : names) text += (text.empty() ? "" : " ") + n;
    return text;
}

// A value with the decimals it needs, at most 6.
std::string num(real v) {
    if (v != 0 && std::fabs(v) < 0.001L) return real2str(v, 3, false);
    const int d = decimalsneeded(v);
    return real2str(v, std::fabs(v - std::round(v)) < 1e-8L ? 0 : (d > 6 ? 6 : d), true);
}
std::string celsius(real t) { return real2str(t - kelvin0, 2, true); }

void row(Run& run, const std::string& name, const std::string& value) {
    std::string line;
    putfield("  " + name, -20, line);
    putfield(": " + value, 0, line);
    putstr(run.io, 0, line, 1, chlog);
}

void heading(Run& run, const std::string& text) { putstr(run.io, 1, text, 1, chlog); }

}  // namespace

void dumpscripts(Run& run) {
    const ScriptStore& s = run.script;
    putstr(run.io, 1, "script settings after reading the scriptfile", 1, chlog);
    putstr(run.io, 0, std::string(60, '-'), 1, chlog);

    heading(run, "run and output control");
    row(run, "strictscripting", s.control.strictscripting ? "yes" : "no");
    row(run, "autoexit", run.io.autoexit ? "yes" : "no");
    row(run, "debuglevel", int2str(s.control.debuglevel));
    row(run, "moreprec", flagstr(s.control.moreprec));
    row(run, "sketch", flagstr(s.control.sketch) + ", level " + int2str(s.control.sketchlevel));
    row(run, "convergence", flagstr(s.control.convergenceflag) + ": " +
                                num(s.control.convergence[0]) + " " +
                                num(s.control.convergence[1]) + " " +
                                num(s.control.convergence[2]) + " " +
                                num(s.control.convergence[3]));
    row(run, "numerical", s.control.numerical ? "yes" : "no");

    heading(run, "files and phases");
    row(run, "axfile", s.phases.axfile.empty() ? "-" : s.phases.axfile);
    row(run, "with", (s.phases.someof ? "someof " : "") + list(s.phases.with));
    row(run, "inexcess", flagstr(s.phases.setexcessflag) + ": " + list(s.phases.setexcess));
    row(run, "tozero", flagstr(s.phases.tozeroflag) + ": " + list(s.phases.tozero));
    row(run, "samecoding sets", int2str(static_cast<real>(s.phases.samecoding.size())));
    row(run, "rgb colours", int2str(static_cast<real>(s.phases.rgb.size())));
    row(run, "fluidpresent", flagstr(s.phases.fluidpresent));
    row(run, "fluidexcess", flagstr(s.phases.fluidexcess));
    row(run, "setfluid", flagstr(s.phases.setfluid) + ": x(CO2) = " + num(s.phases.xco2));
    row(run, "convliq rows", int2str(static_cast<real>(s.phases.convliq.size())));

    heading(run, "windows (P kbar, T \xA1" "C)");
    const WindowScripts& w = s.windows;
    row(run, "Pmin", Pminstr(s.win.Pmin));
    row(run, "diagramPT", flagstr(w.diagramPT) + ": P " + num(w.overallP.lo) + " to " +
                              num(w.overallP.hi) + ", T " + celsius(w.overallT.lo) + " to " +
                              celsius(w.overallT.hi));
    row(run, "calcP", flagstr(w.calcPflag) + ": " + num(w.calcP.lo) + " to " + num(w.calcP.hi) +
                          ", interval " + num(w.Pinterval));
    row(run, "calcT", flagstr(w.calcTflag) + ": " + celsius(w.calcT.lo) + " to " +
                          celsius(w.calcT.hi) + ", interval " + num(w.Tinterval));
    row(run, "calctatp", flagstr(w.calctatp));
    row(run, "calcx(CO2) values", int2str(static_cast<real>(w.xco2list.size())));
    row(run, "calctype", flagstr(w.calctypeflag) + ": " + int2str(w.calctype));
    static const char* const figures[] = {"P-T", "T-x(CO2)", "P-x(CO2)", "mu-mu"};
    row(run, "figure", figures[w.figure]);

    heading(run, "activities and potentials");
    const ActivityScripts& a = s.activities;
    row(run, "lna", a.lnaflag == 0 ? a.lnaname + " " + num(a.lnavalue) + " " + a.lnalabel : "-");
    for (const FixedActivity& f : a.fixed)
        row(run, "ln a(" + f.name + ")", f.lna >= 9.9L ? "to be set" : num(f.lna));
    for (const FixedPotential& f : a.setmu)
        row(run, "mu(" + f.name + ")", f.mu == 0 ? "to be set" : num(f.mu));
    row(run, "buffer", a.bufferflag == 0 ? a.buffername + " " + num(a.bufferdel) : "-");

    heading(run, "equilibrium and bulk");
    const EquilibriumScripts& e = s.equilibrium;
    const BulkScripts& b = s.bulk;
    row(run, "pseudosection", b.pseudosection == 0 ? "yes" : "no");
    row(run, "setvar", flagstr(e.setvar) + ": " + int2str(e.var));
    row(run, "autovar", flagstr(e.autovar));
    row(run, "isopleths", flagstr(e.isoflag) + ": " + int2str(static_cast<real>(e.iso.size())));
    row(run, "mode isopleths",
        flagstr(e.modeisoflag) + ": " + int2str(static_cast<real>(e.modeiso.size())));
    row(run, "project", flagstr(e.project));
    row(run, "ptguess", e.ptguessflag == 0 ? num(e.ptguessP) + " " + celsius(e.ptguessT) : "-");
    row(run, "xyzguess", int2str(static_cast<real>(e.xyzguess.size())));
    row(run, "modeguess", int2str(static_cast<real>(e.modeguess.size())));
    row(run, "bulk oxides", list(b.bulkoxides));
    for (size_t k = 0; k < b.bulk.size(); ++k) {
        std::string text;
        for (real v : b.bulk[k]) text += real2str(v, 3, true) + " ";
        row(run, "bulk " + int2str(static_cast<real>(k + 1)), text);
    }
    row(run, "rbi rows", int2str(static_cast<real>(b.rbi.size())));
    row(run, "dogmin", b.dogmin < 0 ? "no" : "level " + int2str(b.dogmin));

    heading(run, "rock and reactions");
    const RockScripts& r = s.rock;
    row(run, "rockname", r.rockname.empty() ? "-" : r.rockname);
    row(run, "doallr", flagstr(r.doallr));
    row(run, "isr reactions", int2str(static_cast<real>(r.isr.size())));

    heading(run, "batches and Monte Carlo");
    const BatchScripts& bt = s.batches;
    row(run, "batches", bt.batchflag == 0 ? int2str(static_cast<real>(bt.batch.size())) : "none");
    row(run, "mc", bt.mcflag == 0 ? int2str(static_cast<real>(bt.mc.size())) : "none");
    putstr(run.io, 0, std::string(60, '-'), 1, chlog);
}

}  // namespace sm
