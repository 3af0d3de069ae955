#pragma once
// The composition matrix and the reactions in list syntax, for the -ic and
// drawing files and for the report of an assemblage without reactions.
namespace sm {

struct Run;

// "** no reactions": the matrix, the end-members with their columns, div.
void printnoreactions(Run& run);
// Names, matrix, divisors and reactions in list syntax, to the drawing file.
void printreactionlists(Run& run);

}  // namespace sm
