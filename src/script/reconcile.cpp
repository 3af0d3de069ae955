// The settlement at the end of reading: settings that depend on others.
#include <algorithm>

#include "console/format.h"
#include "console/runended.h"
#include "run.h"
#include "script/readcontrol.h"

namespace sm {

namespace {

bool contains(const std::vector<sstring>& list, const sstring& name) {
    return std::find(list.begin(), list.end(), name) != list.end();
}

void settledogmin(Run& run) {
    ScriptStore& s = run.script;
    BulkScripts& b = s.bulk;
    if (b.dogminflag != 0) {
        b.dogmin = -1;
        return;
    }
    if (b.dogmin < 0 || b.dogmin > 2) b.dogmin = 2;
    s.phases.tozero.clear();
    s.phases.tozeroflag = 1;
    s.equilibrium.printguessform = b.dogmin == 0 ? 1 : 0;
    if (s.bulk.printbulkinfo == 2 && b.dogmin == 1) s.bulk.printbulkinfo = 0;
    // a search over assemblages fixes nothing of the kind
    s.equilibrium.modeisoflag = 1;
    s.equilibrium.modeiso.clear();
    s.equilibrium.zeromodeisoflag = 1;
    s.equilibrium.zeromodeiso.clear();
    s.equilibrium.isoflag = 1;
    s.equilibrium.iso.clear();
    s.equilibrium.project = 1;
    s.equilibrium.c8 = 1;
    s.equilibrium.modebox = 1;
    s.control.outlevel = 0;
    b.pseudosection = 0;
    b.modesoutput = true;
    if (b.bulk.size() == 2 && b.onebulkflag == 1) {
        putstr(run.io, 1, "with a bulk range, use the onebulk script", 1, chscreenlog);
        bomb("read scripts", "dogmin works on one bulk", 0);
    }
}

// Batches chosen by batchswitch stay, renumbered; batchreq follows them.
void selectbatches(Run& run) {
    BatchScripts& s = run.script.batches;
    const int n = static_cast<int>(s.batch.size());
    std::vector<int> newnumber(n + 1, 0);
    std::vector<Batch> kept;
    for (int k = 1; k <= n; ++k) {
        const bool in = !s.batchswitchseen ||
                        std::find(s.batchswitch.begin(), s.batchswitch.end(), k) !=
                            s.batchswitch.end();
        if (!in) continue;
        kept.push_back(s.batch[k - 1]);
        newnumber[k] = static_cast<int>(kept.size());
    }
    s.batch = kept;
    s.batchcount = static_cast<int>(kept.size());
    std::vector<std::vector<int>> req;
    for (const auto& line : s.batchreq) {
        std::vector<int> mapped;
        for (int k : line)
            if (newnumber[k] != 0) mapped.push_back(newnumber[k]);
        if (!mapped.empty()) req.push_back(mapped);
    }
    s.batchreq = req;
    if (!s.batchreqseen) return;
    putstr(run.io, 0, "caring batches", 1, chscreen);
    for (const auto& line : s.batchreq) {
        std::string text;
        for (size_t i = 0; i < line.size(); ++i) {
            text += std::to_string(line[i]) + " ";
            if ((i + 1) % 20 == 0 || i + 1 == line.size()) {
                putstr(run.io, 0, text, 1, chscreen);
                text.clear();
            }
        }
    }
}

void echomc(Run& run) {
    const BatchScripts& s = run.script.batches;
    putstr(run.io, 1, "mc info", 1, chall);
    for (size_t k = 0; k < s.mc.size(); ++k) {
        const McVariable& v = s.mc[k];
        std::string text = std::to_string(k + 1) + " " + v.phase + " " + v.variable + " ";
        if (v.kind == 0)
            text += real2str(v.value, 6, false) + " " + real2str(v.sd, 6, false);
        else if (v.kind == 1)
            text += "=" + s.mcrange[v.ref - 1].name;
        else
            text += "f";
        putstr(run.io, 0, text, 1, chall);
    }
}

void settlebatches(Run& run) {
    ScriptStore& sc = run.script;
    BatchScripts& s = sc.batches;
    if (!s.filters.empty() && s.filters.size() != s.batch.size())
        bomb("read scripts", "flitters don't match batches", 0);
    if (s.batchcount == 0) bomb("read scripts", "batch entry failed", 0);
    if (s.batchcount == notseen || s.batchesoff || s.batch.empty()) {
        s.batchflag = 1;
        s.mcflag = 1;
        s.batch.clear();
        s.batchcount = 1;  // the one calculation of the run
        return;
    }
    if (s.mccount == 0) bomb("read scripts", "mcsm entry failed", 0);
    if (s.mccount == notseen) {
        s.mcflag = 1;
        sc.equilibrium.xyzguess.clear();
        sc.phases.someof = false;
    } else {
        for (const Batch& b : s.batch)
            if (b.P.size() != 1 || b.T.size() != 1)
                bomb("read scripts", "only one calc per batch in mcsm currently", 0);
        if (!sc.phases.setexcess.empty())
            bomb("read scripts",
                 "sorry! in-excess phases not allowed with                    ", 0);
        sc.phases.samecodingflag = 1;
        sc.phases.samecoding.clear();
        s.batchdebug = 1;
        sc.bulk.modesoutput = false;
        sc.equilibrium.projplaneflag = 1;
        sc.phases.someof = false;
        sc.control.sketch = 1;
        if (s.mcdebug == 0) {
            s.mcita = 5;
            s.mcitn = 3;
            sc.control.debuglevel = 1;
        } else {
            sc.control.debuglevel = 0;
            sc.equilibrium.printguessform = 1;
        }
        echomc(run);
    }
    if (sc.equilibrium.xyzguessflag == 0)
        bomb("scripts", "xyzguess not allowed with batches (use batchxyzguess)", 0);
    if (s.batchxyzguess.empty()) bomb("scripts", "no batchxyzguess to use with batches", 0);
    selectbatches(run);
    if (s.batch.size() > 1) {
        std::string text = "no of batches = " + std::to_string(s.batch.size());
        if (s.mcflag == 0)
            text += "; no of filters = " + std::to_string(s.filters.size()) +
                    "; no of mc = " + std::to_string(s.mc.size());
        putstr(run.io, 1, text, 1, chscreenlog);
    }
    if (s.mc.size() <= 1 && s.batch.size() <= 1 && sc.control.debuglevel == 0)
        sc.control.debuglevel = 1;
}

}  // namespace

void reconcilescripts(Run& run) {
    ScriptStore& s = run.script;
    if (s.control.outlevel < 0 || s.control.outlevel > 1) s.control.outlevel = 1;
    settledogmin(run);
    BulkScripts& b = s.bulk;
    if (b.pseudosection != 0) b.modesoutput = false;
    settlebatches(run);

    PhaseScripts& p = s.phases;
    for (const sstring& name : p.tozero)
        if (!contains(p.setexcess, name)) p.setexcess.push_back(name);
    if (!p.with.empty() && p.with.size() <= 99)
        for (const sstring& name : p.setexcess)
            if (!contains(p.with, name)) {
                p.with.push_back(name);
                p.withwhole.push_back(name);
            }

    if (b.pseudosection == 0) {
        bool batchbulk = false;
        for (const Batch& bb : s.batches.batch) batchbulk = batchbulk || bb.bulk1 != 0;
        const bool bulk = (b.bulkflag == 0 && !b.bulk.empty()) ||
                          (b.rbiflag == 0 && !b.rbi.empty()) || batchbulk;
        if (!bulk) bomb("reading scripts", "no bulk for pseudosection calcs", 0);
        if (b.rbiflag == 0 && !b.rbi.empty()) {
            real sum = 0;
            for (const RbiRow& r : b.rbi) sum += r.mode;
            if (!(sum != 0)) bomb("reading scripts", "the rbi modes sum to zero", 0);
            for (RbiRow& r : b.rbi) r.mode /= sum;
        }
    }
    EquilibriumScripts& e = s.equilibrium;
    if (b.dogmin < 0 && e.setvar == 0 && b.pseudosection == 0) {
        e.setvar = 1;
        e.autovar = 0;
    }
    if (s.control.compatibility == 0 || e.modebox == 0) s.control.sketch = 1;
    if (e.calib == 0) e.project = 1;
    s.windows.xco2calcs = s.windows.figure == figTx || s.windows.figure == figPx;
}

}  // namespace sm
