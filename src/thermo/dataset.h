#pragma once
// The dataset file of end-member data and its three readings: the names
// (stage 1), the chemistry of the run's end-members with the composition
// matrix (stage 2), and their thermodynamic data with the covariance of H
// (stage 3).
#include <array>
#include <string>
#include <vector>

#include "console/textfile.h"
#include "console/types.h"
#include "thermo/limits.h"

namespace sm {

struct Run;
struct EndMemberStore;

// Codes of the end-member forms (td field 31).
enum EosCode : int {
    eosplain = 0, eoslandau = 1, eosbw = 2, eoseinstein = 3, eoseinsteinlandau = 4,
    eoseinsteinbw = 5, eosfluid = 6, eosmelt = 7, eosaqueous = 8
};
constexpr int maxeos = 8;

// The open dataset and what the passes need to find their way in it.
struct DatasetFile {
    TextFile file;
    sstring filename;     // the file's name without its directory, cut to 22
    std::string label;    // the banner line, its tail cut off
    real covlead = 0;     // the real ahead of the covariance matrix (no use here)
    int headerlines = 2;  // lines ahead of the first entry
    int entrylines = 5;   // lines of one entry

    // What makep found, per dataset entry: wanted, and the td rows it feeds.
    std::array<bool, maxntp + 1> wanted{};
    std::array<int, maxntp + 1> nrows{};
    std::array<std::array<int, maxrowsperentry + 1>, maxntp + 1> rows{};
};

// Stage 1: opens the dataset named by the prefs (asking for the suffix when
// there is none), checks its header, reads the names and the label.
void setuptextread(Run& run);
// The same for a given file (the name without its directory decides the
// generation of the data).
void setuptextread(Run& run, const std::string& path);

// Stage 2 for the end-members now in emname: makep, the chemistry pass and
// makeoxides.
void readthermochemistry(Run& run);
// The same after making `names` the run's end-member list (the meeting point
// with the phase set-up, which gathers the names from the a-x file).
void readthermochemistry(Run& run, const std::vector<sstring>& names);

// Stage 3: makep, then td and cov of the end-members in emname.
void texthermoread(Run& run);

// The one reader by stage number, 1, 2 or 3.
void readthermo(Run& run, int stage);

// Marks the wanted dataset entries and the td rows they feed.
void makep(Run& run);

// The run's components and the integer composition matrix from the chemistry
// of rows 1..nem.
void makeoxides(EndMemberStore& s);

// The name of a td field, for messages.
const char* tdfieldname(int field);

// What was read, to the log, when `debuglevel` is 3 or more.
void printdatasetsummary(Run& run, int debuglevel);

}  // namespace sm
