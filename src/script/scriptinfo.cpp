#include "script/scriptinfo.h"

#include "console/runended.h"
#include "console/scan.h"

namespace sm {

void parseinfo(ScriptInfo& info, std::string_view keyword, const WordList& words, int count,
               int position, bool typed) {
    info = ScriptInfo{};
    int n = count - position;
    if (n < 0) n = 0;
    const std::string where = "reading script for " + std::string(keyword);
    if (n > maxinfo) {
        if (typed) bomb(where, "too much info", 0);
        n = maxinfo;
    }
    info.ninfo = n;
    for (int i = 1; i <= n; ++i) {
        const std::string& w = words[position + i];
        info.infostr[i] = w;
        const int cls = whatisstring(w);
        info.infoclass[i] = cls;
        std::string message;
        bool ok = true;
        if (cls == tokint) {
            int v;
            if (string2int(w, v, message)) {
                info.infoint[i] = v;
                info.inforeal[i] = v;
            } else {
                // a whole number too large for 16 bits is still a number
                ok = string2real(w, info.inforeal[i], message);
            }
        } else if (cls == tokreal) {
            ok = string2real(w, info.inforeal[i], message);
        } else if (cls == tokrational) {
            int num, den;
            ok = string2rational(w, num, den, message);
            if (ok) info.inforeal[i] = static_cast<real>(num) / den;
        }
        if (!ok) bomb(where, "number is not a number", 1);
    }
}

void shiftinfo(ScriptInfo& info, int k) {
    if (k <= 0) return;
    const int n = info.ninfo > maxinfo ? maxinfo : info.ninfo;
    for (int i = 1; i <= maxinfo; ++i) {
        const int j = i + k;
        if (j <= n) {
            info.infoclass[i] = info.infoclass[j];
            info.inforeal[i] = info.inforeal[j];
            info.infoint[i] = info.infoint[j];
            info.infostr[i] = info.infostr[j];
        } else {
            info.infoclass[i] = tokblank;
            info.inforeal[i] = 0;
            info.infoint[i] = 0;
            info.infostr[i].clear();
        }
    }
    info.ninfo = info.ninfo > k ? info.ninfo - k : 0;
}

}  // namespace sm
