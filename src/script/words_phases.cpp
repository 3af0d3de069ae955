// Script words of files and phases.
#include "console/format.h"
#include "console/runended.h"
#include "console/scan.h"
#include "run.h"
#include "script/readers.h"
#include "script/vocabulary.h"

namespace sm {

namespace {

PhaseScripts& ph(Run& run) { return run.script.phases; }

constexpr int maxsamecodings = 16;
constexpr int maxsamecodingitems = 8;
constexpr int maxconvliqcols = 20;
constexpr int maxconvliqrows = 15;

// The names of a list line, from item `from` on.
std::vector<sstring> names(const ScriptLine& line, int from = 1) {
    std::vector<sstring> out;
    for (int i = from; i <= line.nitems(); ++i) out.push_back(line.item(i));
    return out;
}

void axfile(Run& run, const ScriptLine& line) {
    if (line.flag != 0) {
        ph(run).axfile.clear();
        return;
    }
    if (scriptstring(run, line.keyword)) ph(run).axfile = line.item(1);
}

void with(Run& run, const ScriptLine& line) {
    PhaseScripts& p = ph(run);
    const std::string& kw = line.keyword;
    if (line.flag == 1) {
        p.withflag = 1;
        p.with.clear();
        p.withwhole.clear();
        p.someof = false;
        return;
    }
    int first = 1;
    const bool someof = line.nitems() >= 1 && line.item(1) == "someof";
    if (someof) first = 2;
    if (line.nitems() < first) {
        if (someof) {
            scriptmessage(run, kw + ", someof should be followed by a list of phase names");
            bomb("reading script" + kw, "missing list of phases", 0);
        }
        scriptmessage(run, kw + ", should be followed by a list of phase names");
        bomb("reading script", kw + ": missing list", 0);
    }
    std::vector<sstring> cut, whole;
    for (int i = first; i <= line.nitems(); ++i) {
        const sstring& w = line.item(i);
        if (w == "all")
            bomb("reading script", "\"all\" in \"" + kw + "\" only defined for utilitycalc", 0);
        if (w.front() == '_' || w.back() == '_')
            bomb("reading script", "sepchar in wrong place in " + w, 0);
        whole.push_back(w);
        cut.push_back(w.substr(0, w.find('_')));
    }
    p.withflag = 0;
    p.someof = someof;
    p.with = cut;
    p.withwhole = whole;
}

// A list of phases where "none" or "no" gives an empty list that still counts
// as given.
void excesslist(const ScriptLine& line, int& flag, std::vector<sstring>& list) {
    if (line.flag == 1) {
        flag = 0;
        list.clear();
        return;
    }
    flag = line.flag;
    list = names(line);
}

void samecoding(Run& run, const ScriptLine& line) {
    PhaseScripts& p = ph(run);
    if (line.flag == 1) {
        p.samecodingflag = 1;
        p.samecoding.clear();
        return;
    }
    if (static_cast<int>(p.samecoding.size()) >= maxsamecodings)
        scriptbomb("too many samecodings");
    if (line.nitems() > maxsamecodingitems) scriptbomb("too many items in a samecoding");
    p.samecodingflag = 0;
    p.samecoding.push_back(names(line));
}

void rgb(Run& run, const ScriptLine& line) {
    PhaseScripts& p = ph(run);
    const ScriptInfo& info = run.script.info;
    bool good = line.nitems() >= 4;
    RgbColour c;
    if (good) {
        c.name = line.item(1);
        int* v[3] = {&c.r, &c.g, &c.b};
        for (int i = 0; i < 3 && good; ++i) {
            const int k = i + 2;
            good = info.infoclass[k] == tokint && info.infoint[k] >= 0 && info.infoint[k] <= 255;
            if (good) *v[i] = info.infoint[k];
        }
    }
    if (!good) {
        // a colour outside 0..255 says the list cannot be trusted
        p.rgb.clear();
        putstr(run.io, 0, "rgb = -", 1, chscreen);
        return;
    }
    p.rgb.push_back(c);
    putstr(run.io, 0,
           "rgb = " + std::to_string(p.rgb.size()) + ") " + c.name + " " + std::to_string(c.r) +
               " " + std::to_string(c.g) + " " + std::to_string(c.b),
           1, chscreen);
}

void setfluid(Run& run, const ScriptLine& line) {
    PhaseScripts& p = ph(run);
    if (line.flag == 1) {
        p.setfluid = 1;
        return;
    }
    if (!scriptreal(run, line.keyword, 0, 1)) {
        p.setfluid = 1;
        return;
    }
    p.setfluid = line.flag;
    p.xco2 = run.script.info.inforeal[1];
    p.xh2o = 1 - p.xco2;
}

void convliq(Run& run, const ScriptLine& line) {
    PhaseScripts& p = ph(run);
    if (line.flag == 1) {
        p.convliqflag = 1;
        p.convliq.clear();
        return;
    }
    std::vector<real> row;
    for (int i = 1; i <= line.nitems(); ++i) {
        if (!isnumberword(line.item(i))) return;  // not a row of numbers: skipped
        row.push_back(wordreal(line.item(i)));
    }
    if (row.empty()) return;
    if (p.convliq.empty()) {
        if (static_cast<int>(row.size()) > maxconvliqcols)
            bomb("control", "too many columns in convliq matrix", 0);
    } else if (row.size() != p.convliq.front().size()) {
        return;  // a row of another width is skipped
    }
    if (static_cast<int>(p.convliq.size()) >= maxconvliqrows)
        bomb("control", "too many rows in convliq matrix", 0);
    p.convliqflag = 0;
    p.convliq.push_back(row);
}

}  // namespace

void phasewords(std::vector<WordEntry>& t) {
    t.push_back({{"axfile"}, modeall, true, axfile});
    t.push_back({{"with", "which"}, modeall, false, with});
    t.push_back({{"setexcess", "inexcess"}, mode1 | mode3, false, [](Run& r, const ScriptLine& l) {
                     excesslist(l, ph(r).setexcessflag, ph(r).setexcess);
                 }});
    t.push_back({{"tozero", "setexcess0", "inexcess0"}, mode1, false,
                 [](Run& r, const ScriptLine& l) {
                     excesslist(l, ph(r).tozeroflag, ph(r).tozero);
                     if (ph(r).tozeroflag == 2) ph(r).tozeroflag = 0;
                 }});
    t.push_back({{"samecoding", "samexeos"}, mode1, false, samecoding});
    t.push_back({{"rgb"}, modeall, true, rgb});
    t.push_back({{"fluidpresent"}, mode2 | mode3, true,
                 [](Run& r, const ScriptLine& l) { ph(r).fluidpresent = l.flag; }});
    t.push_back({{"fluidexcess"}, mode3, true,
                 [](Run& r, const ScriptLine& l) { ph(r).fluidexcess = l.flag; }});
    t.push_back({{"setfluid", "x(CO2)"}, mode2 | mode3, true, setfluid});
    t.push_back({{"convliq"}, mode1, false, convliq});
    t.push_back({{"usecalcq"}, mode1, true,
                 [](Run& r, const ScriptLine& l) { ph(r).usecalcq = l.flag; }});
}

}  // namespace sm
