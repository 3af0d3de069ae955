#pragma once
// The solver's own printing: iteration lines at the debugging levels, rows
// of names and values of x, and the report of a failed solve.
#include <string>

#include "run.h"
#include "solver/solverstate.h"

namespace sm {

// Rows of names and values of x[from..to], `perrow` to a row, each row led
// by `lead` blanks, names and values 10 wide. Decimals: pdec for P, tdec for
// T (shown in degrees Celsius), odec for the rest; modes divided by phi when
// `modesperphi`. Channels 0xd.
void printxrows(Run& run, const SolverState& s, const NleVector& x, int from, int to, int perrow,
                int lead, int pdec, int tdec, int odec, bool modesperphi);

// Print level 2: the heading, then one line per iteration.
void printiterationheading(Run& run);
void printiteration(Run& run, const SolverState& s, real step);
// Print levels 3 and 4: the start of an iteration and each trial.
void printiterationstart(Run& run, const SolverState& s);
void printtrial(Run& run, const SolverState& s, std::string_view lead, real step);

// The closing report of nle at print levels 2 to 4.
void printnleresult(Run& run, const SolverState& s, int result);

// A number of an iteration line: 4 significant digits.
std::string nlenumber(real value);

}  // namespace sm
