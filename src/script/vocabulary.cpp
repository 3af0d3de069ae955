#include "script/vocabulary.h"

#include "console/runended.h"
#include "console/scan.h"
#include "run.h"

namespace sm {

namespace {

std::vector<WordEntry> buildvocabulary() {
    std::vector<WordEntry> table;
    controlwords(table);
    phasewords(table);
    windowwords(table);
    activitywords(table);
    equilibriumwords(table);
    bulkwords(table);
    rockwords(table);
    batchwords(table);
    return table;
}

}  // namespace

const WordEntry* findword(const std::string& keyword) {
    // built once and never changed: the words are part of the program
    static const std::vector<WordEntry> table = buildvocabulary();
    for (const WordEntry& e : table)
        for (const std::string& name : e.names)
            if (name == keyword) return &e;
    return nullptr;
}

void scriptmessage(Run& run, const std::string& text) {
    putstr(run.io, 1, text, 1, chscreenlog);
}

void scriptbomb(const std::string& message) { bomb("reading scripts", message, 0); }

bool isnumberword(const std::string& w) {
    const int c = whatisstring(w);
    return c == tokint || c == tokreal || c == tokrational;
}

real wordreal(const std::string& w) {
    std::string m;
    real v = 0;
    if (whatisstring(w) == tokrational) {
        int num, den;
        if (string2rational(w, num, den, m)) return static_cast<real>(num) / den;
        bomb("reading script", "number is not a number", 1);
    }
    if (!string2real(w, v, m)) bomb("reading script", "number is not a number", 1);
    return v;
}

sstring oxidename(const sstring& w) { return w == "FeOt" || w == "FeOtot" ? sstring("FeO") : w; }

}  // namespace sm
