// The set-up of a mode 3 pass: the dataset, the script and the a-x file,
// the diagram type, the phases with those in excess and the fluid, the
// axis end-member, and the end-members laid out as the columns of the
// reaction search with their data and activities.
#include "reactions/reactionsetup.h"

#include <cmath>
#include <string>
#include <vector>

#include "ax/endmember_composition.h"
#include "ax/makename.h"
#include "ax/phase_choice.h"
#include "ax/setupphases.h"
#include "console/format.h"
#include "console/intmath.h"
#include "console/prompts.h"
#include "console/runended.h"
#include "console/scan.h"
#include "reactions/axisendmember.h"
#include "reactions/inexcess.h"
#include "run.h"
#include "script/readcontrol.h"
#include "script/windows.h"
#include "thermo/dataset.h"
#include "thermo/made_endmembers.h"

namespace sm {

namespace {

void say(Run& run, const std::string& text) { putstr(run.io, 0, text, 1, chscreenlog); }

// Menu codes 1..7 of the diagram types.
constexpr int menumodes[8] = {dmPT, dmPT, dmTx, dmPx, dmTlna, dmPlna, dmTmu, dmPmu};
const char* const menunames[8] = {"",
                                   "pressure-temperature",
                                   "temperature-x(CO2)",
                                   "pressure-x(CO2)",
                                   "temperature-log a",
                                   "pressure-log a",
                                   "temperature-\xB5",
                                   "pressure-\xB5"};

int diagramtype(Run& run, bool& fromscript) {
    const WindowScripts& s = run.script.windows;
    fromscript = s.calctypeflag == 0 && s.calctype >= 1 && s.calctype <= 7;
    if (fromscript) return menumodes[s.calctype];
    say(run, "type of diagram calculation: ");
    for (int code = 1; code <= 7; ++code)
        say(run, "       " + std::to_string(code) + " : " + menunames[code]);
    int code = 1;
    promptinteger(run.io, "code", code);
    return code >= 1 && code <= 7 ? menumodes[code] : dmPT;
}

// One kept phase: an a-x phase (ax > 0) or a pure phase (pure > 0).
struct KeptPhase {
    int ax = 0, pure = 0;
    sstring pname, longname;
};

std::vector<KeptPhase> allphases(const Run& run) {
    std::vector<KeptPhase> list;
    for (int k = 1; k <= run.store.npss; ++k)
        list.push_back({k, 0, run.phases.prec1[k].pname, run.phases.prec1[k].longname});
    for (int k = 1; k <= run.store.nmin; ++k)
        list.push_back({0, k, run.phases.prec0[k].pname, run.phases.prec0[k].longname});
    return list;
}

bool matches(const KeptPhase& p, const sstring& name) { return name == p.pname || name == p.longname; }

// The phases of the run: the with list as read, the someof question, and
// the fluid rule that an omitted fluid phase takes pure H2O and CO2 along.
// Pure H2O and CO2 may stand together here: a reaction diagram's fluid is a
// mixture whose composition is an axis or fixed.
std::vector<bool> whichphases(Run& run) {
    const PhaseScripts& s = run.script.phases;
    std::vector<KeptPhase> phases = allphases(run);
    const int n = static_cast<int>(phases.size());
    const std::vector<bool> outside = withomit(run);
    std::vector<bool> keep(n, true);
    for (int k = 0; k < n; ++k) keep[k] = !outside[k + 1];
    if (s.withflag != 1) {
        std::vector<sstring> seen;
        for (const sstring& w : s.withwhole) {
            if (w.empty()) bomb("whichphases", "with phase is an empty string", 0);
            for (const sstring& x : seen)
                if (x == w) bomb("whichphases", "with phase list: duplicate found", 0);
            seen.push_back(w);
            bool found = false;
            for (const auto& p : phases) found = found || matches(p, w);
            if (!found) bomb("whichphases", "with phase \"" + w + "\" not recognised", 0);
        }
    }
    std::string line = std::string("with") + (s.someof ? " someof" : "") + ": ";
    bool firstname = true;
    for (int k = 0; k < n; ++k) {
        if (!keep[k]) continue;
        if (!firstname) line += ", ";
        firstname = false;
        line += phases[k].pname;
        if (phases[k].ax && phases[k].longname != phases[k].pname) {
            const size_t sep = phases[k].longname.find('_');
            if (sep != std::string::npos) line += "(" + phases[k].longname.substr(sep + 1) + ")";
        }
    }
    say(run, line);
    if (s.someof) {
        say(run, "there is a change of functionality with \"with someof\": now the phases in the");
        say(run, "with list are all phases that can be used; either respond with a list of phases");
        say(run, "to use, or \"omit\" followed by the phases not to use, or <return> for all");
        WordList words;
        promptstrings(run.io, "choose phases", words);
        if (words.count > 0) {
            const bool omit = words[1] == "omit";
            const std::vector<bool> offered = keep;
            if (!omit) keep.assign(n, false);
            for (int w = omit ? 2 : 1; w <= words.count; ++w) {
                int at = -1;
                for (int k = 0; k < n && at < 0; ++k)
                    if (offered[k] && matches(phases[k], words[w])) at = k;
                if (at < 0) bomb("whichphases", words[w] + " not recognised " + (omit ? "1" : "2"), 0);
                keep[at] = !omit;
            }
        }
    }
    bool fluidout = false;
    for (int k = 0; k < n; ++k)
        if (phases[k].ax && !keep[k] && run.phases.prec1[phases[k].ax].fluidkind) fluidout = true;
    if (fluidout)
        for (int k = 0; k < n; ++k)
            if (phases[k].pure && (phases[k].pname == "H2O" || phases[k].pname == "CO2")) keep[k] = false;
    std::vector<bool> omit(n + 1, false);
    for (int k = 0; k < n; ++k) omit[k + 1] = !keep[k];
    return omit;
}

// The phases in excess, by the names of the script or asked.
std::vector<sstring> inexcessphases(Run& run) {
    PhaseScripts& s = run.script.phases;
    std::vector<sstring> names;
    if (run.store.nph < 2) return names;
    int flag = s.setexcessflag;
    promptcontrol(run.io, "use in excess phases specified in scriptfile", flag);
    if (flag == 0) {
        names = s.setexcess;
        if (names.empty()) say(run, "no phases in excess (from script)");
    } else {
        std::string list;
        for (const auto& p : allphases(run)) list += p.pname + " ";
        say(run, list);
        WordList words;
        promptstrings(run.io, "in excess: names", words);
        for (int w = 1; w <= words.count; ++w) names.push_back(words[w]);
    }
    std::vector<sstring> known;
    std::string line = "in excess:";
    for (const sstring& name : names) {
        bool found = false;
        for (const auto& p : allphases(run)) found = found || matches(p, name);
        if (!found) continue;
        known.push_back(name);
        line += " " + name;
    }
    say(run, line);
    return known;
}

// One column of the search: the phase record it comes from and its place
// in the covariance order of makeemtd.
struct Column {
    int phase = 0, em = 0;  // phase 0: pure phase em
    int member = 0;
    sstring name;
    bool inexcess = false;
    bool fluid = false;     // H2O or CO2 put in excess with the fluid
    bool axis = false;
};

std::vector<Column> layout(Run& run, const std::vector<sstring>& excess, bool fluidexcess,
                           const sstring& axisname) {
    const PhaseStore& ps = run.phases;
    const EndMemberStore& st = run.store;
    const MadeStore& made = run.made;
    std::vector<Column> columns;
    auto add = [&](int phase, int em, int member, const sstring& name, bool xs) {
        for (const Column& c : columns)
            if (c.name == name) return;
        Column c{phase, em, member, name, xs, false, false};
        if (fluidexcess && (name == "H2O" || name == "CO2")) c.fluid = true;
        if (!axisname.empty() && name == axisname) c.axis = true;
        columns.push_back(c);
    };
    auto excessphase = [&](const sstring& pname, const sstring& longname) {
        for (const sstring& x : excess)
            if (x == pname || x == longname) return true;
        return false;
    };
    for (int k = 1; k <= st.npss; ++k) {
        const bool xs = excessphase(ps.prec1[k].pname, ps.prec1[k].longname);
        for (int j = 1; j <= ps.prec1[k].nem; ++j) add(k, j, made.axrow[k] + j, ps.prec1[k].em[j].ename, xs);
    }
    for (int k = 1; k <= st.nmin; ++k)
        add(0, k, made.purerow + k, ps.prec0[k].ename, excessphase(ps.prec0[k].pname, ps.prec0[k].longname));
    // Columns in the order of the search: the others, the in-excess ones,
    // the fluid put in excess, the axis end-member last.
    std::vector<Column> ordered;
    auto take = [&](auto rank) {
        for (const Column& c : columns)
            if (rank(c)) ordered.push_back(c);
    };
    take([](const Column& c) { return !c.axis && !c.fluid && !c.inexcess; });
    take([](const Column& c) { return !c.axis && !c.fluid && c.inexcess; });
    take([](const Column& c) { return !c.axis && c.fluid; });
    take([](const Column& c) { return c.axis; });
    return ordered;
}

const EmComposition& compositionof(const Run& run, const Column& c) {
    return c.phase > 0 ? run.phases.prec1[c.phase].em[c.em].comp : run.phases.prec0[c.em].comp;
}

// The composition matrix of the columns. A made end-member is a rational
// combination of its terms: a row whose entries are not whole is scaled up.
void compositionmatrix(Run& run, const std::vector<Column>& cols) {
    EndMemberStore& st = run.store;
    const int n = static_cast<int>(cols.size());
    for (int k = 1; k <= st.nc; ++k) {
        long long factor = 1;
        for (const Column& c : cols) {
            const EmComposition& e = compositionof(run, c);
            const long long g = gcd(e.cnum[k], e.cden);
            const long long need = g != 0 ? std::llabs(e.cden / g) : 1;
            factor = lcm(factor, need);
        }
        for (int i = 1; i <= n; ++i) {
            const EmComposition& e = compositionof(run, cols[i - 1]);
            const long long v = e.cnum[k] * factor / e.cden;
            if (v > 32767 || v < -32767) bomb("reactionsetup", "composition matrix entries too large", 0);
            st.c[k][i] = static_cast<short>(v);
        }
        for (int i = n + 1; i <= maxnem; ++i) st.c[k][i] = 0;
        st.cscale[k] = static_cast<int>(st.cscale[k] * factor);
    }
}

// The rows of td, the names, the site multiplicities and the covariances of
// the columns, from the phase records and makeemtd's order.
void datarows(Run& run, const std::vector<Column>& cols) {
    EndMemberStore& st = run.store;
    const int n = static_cast<int>(cols.size());
    std::vector<real> cov(static_cast<size_t>(n + 1) * (n + 1));
    for (int a = 1; a <= n; ++a)
        for (int b = 1; b <= n; ++b) cov[a * (n + 1) + b] = st.covat(cols[a - 1].member, cols[b - 1].member);
    for (int i = 1; i <= n; ++i) putemrow(run, cols[i - 1].phase, cols[i - 1].em, i);
    for (int a = 1; a <= n; ++a)
        for (int b = 1; b <= n; ++b) st.covat(a, b) = cov[a * (n + 1) + b];
    st.nem = n;
    for (int i = n + 1; i <= maxnem && i < run.made.topfree; ++i) st.emname[i].clear();
}

// Activities: a-x end-members 1, pure phases their own; the script's set
// activities; the ones still to be set asked.
void activities(Run& run, const std::vector<Column>& cols) {
    EndMemberStore& st = run.store;
    ReactionStore& rs = run.reactions;
    const ActivityScripts& a = run.script.activities;
    const int n = static_cast<int>(cols.size());
    for (int i = 1; i <= n; ++i) {
        const Column& c = cols[i - 1];
        st.activ[i] = c.phase > 0 ? 1 : run.phases.prec0[c.em].fixeda;
        rs.sdactiv[i] = c.phase > 0 ? 0 : run.phases.prec0[c.em].sdfixeda;
    }
    const bool base10 = a.setlogaflag == 0, lnform = !base10 && a.setlnaflag == 0;
    for (const FixedActivity& f : a.fixed) {
        int i = 0;
        for (int q = 1; q <= n && i == 0; ++q)
            if (cols[q - 1].name == f.name && !cols[q - 1].axis) i = q;
        if (i == 0) continue;
        real lna = f.lna;
        if (lna >= 9.9L) {
            const std::string form = base10 ? "log a(" : lnform ? "ln a(" : "a(";
            while (true) {
                real v = 0;
                promptreal(run.io, form + f.name + ")", v);
                const real act = base10 ? std::pow(10.0L, v) : lnform ? std::exp(v) : v;
                if (act > 0 && act <= 1) {
                    lna = std::log(act);
                    break;
                }
                say(run, "should be 0 < activity <= 1 : try again");
            }
        }
        st.activ[i] = std::exp(lna);
    }
    bool nonunit = false;
    for (int i = 1; i <= n; ++i) nonunit = nonunit || st.activ[i] < 0.99999L;
    if (nonunit) query(run.io, "standard default uncertainties on activities");
}

}  // namespace

void reactionsetup(Run& run) {
    EndMemberStore& st = run.store;
    ReactionStore& rs = run.reactions;
    Windows& w = run.script.win;
    readthermo(run, 1);
    readcontrol(run);
    setupphases(run, phasechoice(run.script));

    bool fromscript = false;
    const int mode = diagramtype(run, fromscript);
    rs.diagramfromscript = fromscript;
    rs.firstpass = mode != w.lastdiagrammode;
    w.diagrammode = mode;
    w.lastdiagrammode = mode;
    if (mode == dmPx || mode == dmPlna || mode == dmPmu) w.calcvariable = axisP;
    if (mode == dmTx || mode == dmTlna || mode == dmTmu) w.calcvariable = axisT;

    const std::vector<bool> omit = whichphases(run);
    makename(run, omit);
    const std::vector<sstring> excess = inexcessphases(run);

    // The fluid, when the run has H2O or CO2.
    bool h2o = false, co2 = false;
    for (int k = 1; k <= st.nmin; ++k) {
        h2o = h2o || run.phases.prec0[k].ename == "H2O";
        co2 = co2 || run.phases.prec0[k].ename == "CO2";
    }
    for (int k = 1; k <= st.npss; ++k)
        for (int j = 1; j <= run.phases.prec1[k].nem; ++j) {
            h2o = h2o || run.phases.prec1[k].em[j].ename == "H2O";
            co2 = co2 || run.phases.prec1[k].em[j].ename == "CO2";
        }
    bool fluidexcess = false;
    w.fluidtype = 2;
    if (h2o || co2) {
        const bool section = mode == dmPx || mode == dmTx;
        bool present = section;
        if (!section) {
            present = run.script.phases.fluidpresent == 0 || query(run.io, "fluid may be present");
        }
        if (present) {
            w.fluidtype = section || (h2o && co2) ? 6 : h2o ? 3 : 4;
            int flag = run.script.phases.fluidexcess;
            fluidexcess = flag == 0 || (flag == 2 && query(run.io, "fluid in excess"));
        }
    }

    // The end-member of an activity axis.
    sstring axisname;
    if (mode == dmPlna || mode == dmTlna) {
        for (const FixedActivity& f : run.script.activities.fixed)
            if (f.lna >= 9.9L && axisname.empty()) axisname = f.name;
        auto known = [&](const sstring& name) {
            for (int i = 1; i <= st.nem; ++i)
                if (st.emname[i] == name) return true;
            return false;
        };
        for (int round = 0; round < 2 && (axisname.empty() || !known(axisname)); ++round)
            promptstring(run.io, "end-member for activity axis", axisname);
        if (axisname.empty() || !known(axisname))
            bomb("reactionsetup", "no end-member for the activity axis", 0);
        w.axisname = axisname;
    }

    readthermo(run, 2);
    makeemc(run);
    int mucomponent = 0;
    if (mode == dmPmu || mode == dmTmu) {
        std::string line = "components: ";
        for (int k = 1; k <= st.nc; ++k) line += st.compname[k] + " ";
        say(run, line);
        sstring name;
        promptstring(run.io, "component for \xB5 axis", name);
        for (int k = 1; k <= st.nc; ++k)
            if (st.compname[k] == name) mucomponent = k;
        if (mucomponent == 0) bomb("reactionsetup", "no component for the \xB5 axis", 0);
        w.axisname = name;
    }
    readthermo(run, 3);
    makeemtd(run);

    const std::vector<Column> cols = layout(run, excess, fluidexcess, axisname);
    int ninexcess = 0;
    for (const Column& c : cols) ninexcess += c.inexcess || c.fluid || c.axis;
    const int nemp = static_cast<int>(cols.size()) - ninexcess;
    if (nemp > maxenumerated) bomb("reactionsetup", "too many end-members (max = 90)", 0);
    compositionmatrix(run, cols);
    datarows(run, cols);
    activities(run, cols);
    if (mucomponent > 0) {
        addmupseudo(run, mucomponent);
        ++ninexcess;
    }
    findspecialrows(st);
    rs.axisem = 0;
    rs.axisdisplayname.clear();
    eliminateinexcess(run, ninexcess);
    if (mode >= dmPlna) setaxisendmember(run);
}

}  // namespace sm
