#pragma once
// Shared state of one read of an a-x file, for the pieces of the reader.
#include <string>

#include "ax/ax_words.h"
#include "ax/phase_choice.h"
#include "ax/phases.h"
#include "run.h"

namespace sm {

struct AxReading {
    Run& run;
    AxWords& words;
    const PhaseChoice& choice;
    PhaseStore& ps;
    EndMemberStore& st;
    bool calib = false;       // regression mode
    bool strict = false;      // strict syntax of names (internal switch, off)
    std::string phase;        // phase being read, for messages
    std::string namesline;    // the "reading ax: " line being built
};

// An expression of phase `ph`, variables by index or by name.
Expr readexpression(AxReading& r, AxPhase& ph, const std::string& context);
// The x definition of a variable in terms of proportions: const, count and
// (mult, proportion) pairs. Proportions by index or name are resolved later.
Expr readxdefinition(AxReading& r, AxPhase& ph, const std::string& context,
                     std::vector<std::string>& names);

// End-member options (DQF forms, make, check, exclude and their codes).
// `em` is null for a pure phase; `codes` allows the integer codes.
void readoptions(AxReading& r, const sstring& name, MakeRecord& make, AxEndMember* em,
                 PurePhase* pure, int nxv, bool codes);
// The rules for charged species in names and makes; sets aqcharge and aqsize.
void checkcharged(const sstring& name, const MakeRecord& make, TdRow& row);

// The short name and suffix of a long phase name "short_suffix".
void long2shortpname(const sstring& name, sstring& shortname, sstring& suffix);

}  // namespace sm
