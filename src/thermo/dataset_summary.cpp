#include "console/format.h"
#include "run.h"
#include "thermo/dataset.h"

namespace sm {

namespace {

constexpr const char* eosnames[maxeos + 1] = {
    "plain", "Landau", "Bragg-Williams", "Einstein", "Einstein-Landau",
    "Einstein-Bragg-Williams", "fluid", "melt", "aqueous"};

}  // namespace

void printdatasetsummary(Run& run, int debuglevel) {
    if (debuglevel < 3) return;
    const EndMemberStore& s = run.store;
    const DatasetFile& ds = run.dataset;
    Io& io = run.io;
    auto str = [](int n) { return int2str(static_cast<real>(n)); };
    putstr(io, 1,
           "dataset " + ds.filename + ": " + str(s.ntp) + " end-members, dsmode " + str(s.dsmode) +
               (s.newds ? ", newer fluid equations" : ", older fluid equations"),
           1, chlog);
    int wanted = 0;
    for (int i = 1; i <= s.ntp; ++i) wanted += ds.wanted[i] ? 1 : 0;
    putstr(io, 0, "end-members read: " + str(s.nem) + " (" + str(wanted) + " dataset entries)", 1,
           chlog);
    std::array<int, maxeos + 1> count{};
    int other = 0;
    for (int i = 1; i <= s.nem; ++i) {
        const int eos = static_cast<int>(s.td[i][tdeos]);
        if (eos >= 0 && eos <= maxeos)
            ++count[eos];
        else
            ++other;
    }
    for (int e = 0; e <= maxeos; ++e)
        if (count[e] > 0)
            putstr(io, 0, "  eos " + str(e) + " (" + eosnames[e] + "): " + str(count[e]), 1, chlog);
    if (other > 0) putstr(io, 0, "  other rows: " + str(other), 1, chlog);
    std::string line = "components (" + str(s.nc) + "):";
    for (int k = 1; k <= s.nc; ++k) line += " " + s.compname[k];
    putstr(io, 0, line, 1, chlog);
    if (s.excessO) putstr(io, 0, "oxygen not balanced by the oxides: \"O\" is a component", 1, chlog);
}

}  // namespace sm
