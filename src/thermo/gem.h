#pragma once
// The apparent Gibbs energy of formation of one end-member at P (kbar) and
// T (K) from its row of td, and the reaction sums built on it.
#include <string_view>

#include "console/types.h"
#include "thermo/make_record.h"
#include "thermo/store.h"

namespace sm {

struct Run;
struct Io;

// What the energy of a row depends on besides the row, P and T.
struct GemContext {
    int dsmode = 6;
    bool newds = true;      // the newer equations of state for H2O and CO2
    int fluidtype = 0;      // 6: separate H2O and CO2 fluids, which mix non-ideally
    bool crdterm = false;   // the fluid held in the channels of cordierite counts
    bool regression = false;
    bool numerical = false; // integrate the Einstein thermal-pressure term numerically
    bool ggk = false;       // the alternative Einstein-thermal equation of state
    int printlevel = 1;
    Io* io = nullptr;             // for the lines that come before a fatal stop
    long long* ggkfallbacks = nullptr;
};

// The terms of G, for tables and for the search of a wrong term.
struct GemParts {
    real Gcp = 0;     // heat capacity, with the Einstein thermal-pressure term
    real VdP = 0;
    real Gfluid = 0;  // RT ln f of a fluid
    real Gfmix = 0;
    real Gord = 0;    // Landau or Bragg-Williams
    real Gcrd = 0;
    real Gaq = 0;
    bool pthrepaired = false;  // the regression went on past b Pth > 1
};

// G of a row named `name`: no allocation, no output but before a fatal stop.
real gemrow(const TdRow& row, std::string_view name, real P, real T, const GemContext& cx,
            GemParts& parts);

// The context of the run's end-members.
GemContext gemcontext(Run& run);

// G of row i of td, counted in run.gcount; keeps the last thermal and VdP terms.
real gem(Run& run, int i, real P, real T);

// G with its derivatives by the forward differences the reactions use
// (0.00001 kbar, 0.001 K).
void gemderivatives(Run& run, int i, real P, real T, real& G, real& dGdP, real& dGdT);

// G of row i, made end-members included.
real gemdriver(Run& run, int i, real P, real T);
// The make record behind row i of td, null for a plain end-member.
const MakeRecord* rowmake(const Run& run, int i);
// G of made row i from the energies termG[1..nmake] of its make terms at
// P, T: its own H, S, V and the weighted terms, as gemdriver forms it.
real madegibbs(const Run& run, int i, const MakeRecord& make, real P, real T, const real* termG);

// Reaction row k of r: dG and its derivatives at P, T.
void calcdg0(Run& run, int k, real& dGdP, real& dGdT, real& dG, real P, real T);
// ln K of reaction row k from the activities, with the fluid's x(CO2) and x(H2O).
void calclnk(Run& run, int k, real& lnK, real x1, real x2);
// dG of reaction row k with R T ln K, the fluid of x(CO2) x1 and x(H2O) x2.
void calcdg(Run& run, int k, real& dGdP, real& dGdT, real& dG, real P, real T, real x1, real x2);

}  // namespace sm
