#pragma once
// The fixed sizes of the program's tables. Crossing one at run time is a
// fatal stop naming the table.
#include "console/types.h"

namespace sm {

constexpr int maxntp = 320;        // end-members in a dataset file
constexpr int maxnem = 400;        // end-members of a run: td rows, columns of c and r
constexpr int maxnamelist = 800;   // names gathered by makename before duplicates go
constexpr int maxnp = 80;          // a-x phases
constexpr int maxnmin = 400;       // pure phases
constexpr int maxnph = 400;        // all phases
constexpr int maxcomp = 26;        // components known
constexpr int maxelpairs = 8;      // element/number pairs of one formula
constexpr int maxemperphase = 15;  // end-members of one a-x phase
constexpr int maxsfvars = 30;      // variables of one a-x phase
constexpr int maxtmf = 15;         // terms of one site-fraction expression
constexpr int maxsxterms = 24;     // products of one expression
constexpr int maxxterms = 4;       // linear forms of one product
constexpr int maxgterms = 105;     // interaction terms of one phase
constexpr int maxinfolines = 100;  // info lines kept per phase
constexpr int maxheaderlines = 600;
constexpr int maxbuffers = 5;
constexpr int maxboils = 30;
constexpr int maxnx = 90;          // solver variables
constexpr int maxvarlims = 50;     // variable limits of a run
constexpr int maxnvarlim = 22;     // oblique limits of one phase
constexpr int maxmaketerms = 6;
constexpr int maxlinterms = 12;    // terms of a linear form in x
constexpr int maxwatchedsf = 50;   // site-fraction terms watched by the solver
constexpr int maxindreactions = 24;
constexpr int maxrrows = 150;      // rows of the reaction matrix r
constexpr int maxnexp = 1200;      // regression experiments and equilibria
constexpr int maxnb = 270;         // brackets of one regression experiment
constexpr int tdfields = 31;
constexpr int maxrowsperentry = 4;  // td rows one dataset entry may feed

// Pressures (kbar) and temperatures (K) the system accepts; the lowest
// pressure can be lowered to minusPmin by the script.
constexpr real defaultPmin = 0.0009L;
constexpr real minusPmin = -50.0L;
constexpr real Pmaxlimit = 1500.0L;
constexpr real Tminlimit = 283.0L;
constexpr real Tmaxlimit = 3000.0L;

}  // namespace sm
