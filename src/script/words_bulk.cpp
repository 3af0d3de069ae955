// Script words of the bulk composition and the Gibbs minimisation search.
#include "console/runended.h"
#include "run.h"
#include "script/readers.h"
#include "script/vocabulary.h"

namespace sm {

namespace {

BulkScripts& bk(Run& run) { return run.script.bulk; }

void ambiguity(Run& run) {
    scriptmessage(run, "both bulk and rbi in the scriptfile; choose which to use");
    scriptbomb("ambiguity setting the bulk composition");
}

void pseudosection(Run& run, const ScriptLine& line) {
    BulkScripts& b = bk(run);
    const int value = line.flag == 1 ? 1 : 0;
    if (value == 0 && (b.bulkflag == 0 || b.rbiflag == 0))
        scriptbomb("pseudosection script needs to be before reading bulk");
    b.pseudosection = value;
}

// Scales a composition to a sum of 100; false when the sum is not positive.
bool scale100(std::vector<real>& v) {
    real sum = 0;
    for (real x : v) sum += x;
    if (!(sum > 0)) return false;
    for (real& x : v) x *= 100 / sum;
    return true;
}

// setbulk: a line of oxides, then one or two compositions; the second may
// end in the number of steps between the two.
void setbulk(Run& run, const ScriptLine& line) {
    BulkScripts& b = bk(run);
    if (line.flag == 1) {
        b.bulkflag = 1;
        return;
    }
    b.bulkflag = 0;
    if (b.pseudosection != 0) return;  // a bulk is only read for a pseudosection
    if (b.rbiflag == 0) ambiguity(run);
    if (b.bulkcount == 0) return;      // given up after a fault
    const ScriptInfo& info = run.script.info;
    const bool dataline = info.ninfo >= 1 && info.isnumber(1);
    if (b.bulkcount == notseen) {
        if (dataline) {
            scriptmessage(run, line.keyword + " should start with an oxide list on a line,  ");
            putstr(run.io, 0, "before the one or two lines of compositions", 1, chscreenlog);
            scriptbomb("change the " + line.keyword + " script");
        }
        b.bulkoxides.clear();
        for (int i = 1; i <= line.nitems(); ++i) b.bulkoxides.push_back(oxidename(line.item(i)));
        b.bulkcount = -3;
        return;
    }
    if (b.bulk.size() >= 2) scriptbomb("more than two compositions in setbulk?");
    const int noxides = static_cast<int>(b.bulkoxides.size());
    int n = noxides;
    if (!scriptreals(run, line.keyword, n)) {
        b.bulkcount = 0;
        return;
    }
    std::vector<real> comp(info.inforeal.begin() + 1, info.inforeal.begin() + 1 + noxides);
    if (!b.bulk.empty() && info.ninfo == noxides + 1) {
        shiftinfo(run.script.info, noxides);
        if (!scriptint(run, line.keyword, 2, 100)) {
            b.bulkcount = 0;
            return;
        }
        b.bulksteps = run.script.info.infoint[1];
    }
    if (!scale100(comp)) scriptbomb("sum of bulk composition <= 0?");
    b.bulk.push_back(comp);
    b.bulkcount = static_cast<int>(b.bulk.size());
}

void bulksubrange(Run& run, const ScriptLine& line) {
    BulkScripts& b = bk(run);
    b.bulksubrangeflag = line.flag;
    if (line.flag == 1) return;
    ScriptInfo& info = run.script.info;
    if (info.ninfo == 0 || !scriptreal(run, line.keyword, 0, 1)) {
        b.subrangelow = -1;  // asked for
        return;
    }
    const real low = info.inforeal[1];
    if (info.ninfo == 1) {
        b.subrangelow = b.subrangehigh = low;
        b.onebulk = low;
        return;
    }
    b.subrangelow = low;
    shiftinfo(info, 1);
    if (!scriptreal(run, line.keyword, 0, 1)) {
        b.subrangelow = -1;
        return;
    }
    if (info.inforeal[1] >= low) b.subrangehigh = info.inforeal[1];
}

void onebulk(Run& run, const ScriptLine& line) {
    BulkScripts& b = bk(run);
    b.onebulkflag = line.flag == 1 ? 1 : 0;
    b.onebulk = -1;
    if (line.flag == 1 || run.script.info.ninfo == 0) return;  // without a value it is asked
    if (scriptreal(run, line.keyword, 0, 1)) b.onebulk = run.script.info.inforeal[1];
}

// rbi: a line of components, then lines of phase, mode and composition.
void rbi(Run& run, const ScriptLine& line) {
    BulkScripts& b = bk(run);
    if (line.flag == 1) {
        b.rbiflag = 1;
        return;
    }
    if (b.pseudosection != 0) {
        b.rbiflag = 1;  // no pseudosection: the rock's bulk is not wanted
        return;
    }
    if (b.bulkflag == 0) ambiguity(run);
    b.rbiflag = 0;
    if (b.rbicount == 0) return;
    const bool dataline =
        line.nitems() >= 2 && (isnumberword(line.item(2)) || line.item(2) == "##");
    if (b.rbicount == notseen) {
        if (dataline) {
            scriptmessage(run, "now, rbi starts with a component list on a line (run a ");
            putstr(run.io, 0, "calculation with printbulkinfo to see the new format)", 1,
                   chscreenlog);
            scriptbomb("change the rbi");
        }
        b.rbioxides.clear();
        for (int i = 1; i <= line.nitems(); ++i) b.rbioxides.push_back(oxidename(line.item(i)));
        b.rbicount = -2;
        return;
    }
    if (line.nitems() >= 2 && line.item(2) == "##") scriptbomb("replace ## with modes in rbi");
    RbiRow row;
    row.phase = line.nitems() >= 1 ? line.item(1) : sstring();
    shiftinfo(run.script.info, 1);
    int n = static_cast<int>(b.rbioxides.size()) + 1;
    if (!scriptreals(run, line.keyword, n)) {
        b.rbicount = 0;
        return;
    }
    row.mode = run.script.info.inforeal[1];
    for (int i = 2; i <= n; ++i) row.values.push_back(run.script.info.inforeal[i]);
    if (!scale100(row.values)) scriptbomb("sum of bulk composition <= 0?");
    b.rbi.push_back(row);
    b.rbicount = static_cast<int>(b.rbi.size());
}

void dogmin(Run& run, const ScriptLine& line) {
    BulkScripts& b = bk(run);
    b.dogminflag = line.flag == 0 ? 0 : 1;
    b.dogmin = -1;
    if (line.flag != 0) return;
    b.dogmin = 2;
    if (run.script.info.ninfo > 0 && scriptint(run, line.keyword, 0, 0))
        b.dogmin = run.script.info.infoint[1];
    if (b.dogmin > 2) b.dogmin = 2;  // deeper searches are not offered
}

void maxvar(Run& run, const ScriptLine& line) {
    BulkScripts& b = bk(run);
    if (b.dogminflag != 0) return;  // the variance limits belong to a search that is on
    const ScriptInfo& info = run.script.info;
    b.maxvarflag = 1;
    if (line.flag != 0) return;
    auto isint = [&](int i) { return info.infoclass[i] == tokint; };
    int lo = 2, hi;
    if (info.ninfo >= 2 && isint(1) && isint(2)) {
        lo = info.infoint[1];
        hi = info.infoint[2];
        if (lo < 2) return;
    } else if (info.ninfo == 1 && isint(1)) {
        hi = info.infoint[1];
    } else {
        return;
    }
    if (hi < lo) return;
    b.maxvarflag = 0;
    b.minvariance = lo;
    b.maxvariance = hi;
}

}  // namespace

void bulkwords(std::vector<WordEntry>& t) {
    t.push_back({{"pseudosection", "pseudo"}, mode1, true, pseudosection});
    t.push_back({{"setbulk", "bulk"}, mode1, true, setbulk});
    t.push_back({{"bulksubrange", "splitbulk"}, mode1, true, bulksubrange});
    t.push_back({{"onebulk"}, mode1, true, onebulk});
    t.push_back({{"rbi", "readbulkinfo"}, mode1, true, rbi});
    t.push_back({{"printbulkinfo"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { bk(r).printbulkinfo = l.flag; }});
    t.push_back({{"dogmin"}, mode1, true, dogmin});
    t.push_back({{"maxvar", "varrange"}, mode1, true, maxvar});
}

}  // namespace sm
