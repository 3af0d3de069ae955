#pragma once
// The state of one equilibrium calculation: the reduced system of
// components, the rank of the current assemblage with its row operations,
// the bulk composition, the layout of the assemblage's end-members and
// unknowns, and the work stores of the equations. Tables are 1-based.
#include <array>
#include <memory>
#include <vector>

#include "console/types.h"
#include "solver/solverstate.h"
#include "thermo/limits.h"

namespace sm {

struct Run;

constexpr int maxsummary = 15;       // phases of one assemblage
constexpr int maxphasevars = maxemperphase - 1;  // compositional variables of one phase
constexpr int maxbulkpositions = 101;
constexpr int maxmodecolumns = 202;  // output columns of modes worked out after the solver
constexpr int maxisopleths = 10;

// One flag for each phase of the run: the a-x phases 1..npss, then the pure
// phases npss+1..npss+nmin.
using Assemblage = std::array<bool, maxnph + 1>;

// What the run set-up has decided about a calculation; read by the layout
// and the equations, written by the set-up.
struct EquilibriumSettings {
    bool modesbynle = false;     // modes are unknowns of the solver
    bool modesafternle = false;  // modes follow from the bulk after the solve
    bool usexco2calc = false;    // x(CO2) is an axis: H2O and CO2 leave the reduced system
    bool calcG = true;
    int fluidtype = 2;
    int var = 0, var0 = 0;
    int nmu = 0;                 // set chemical potentials
    // The isopleth table entry (1..10) that fixes variable v of a-x phase k,
    // 0 when the variable is free.
    std::array<std::array<int, maxphasevars + 1>, maxnp + 1> setvariable{};
    // The entry fixing the mode of a phase (run order, a-x phases first), 0 free.
    std::array<int, maxnph + 1> setmode{};
    // Pure phases whose activity, or chemical potential, is set.
    std::array<bool, maxnmin + 1> setactivity{};
    std::array<bool, maxnmin + 1> setpotential{};
};

// One phase of the assemblage as laid out, in summary order: a-x phases in
// file order, then pure phases.
struct PhaseSlot {
    sstring name;
    bool pure = false;
    int phase = 0;      // number in prec1 (a-x) or prec0 (pure)
    int runphase = 0;   // number in the run's order, a-x phases first
    int firstrow = 0;   // first row of emname, td and c
    int nrows = 0;
    int xstart = 0;     // position of the phase's first variable in x (a-x phases)
    int nvar = 0;
    int modex = 0;      // position of its mode in x, 0 without one
    bool hasmode = false;   // its mode is worked out (by the solver or after it)
    bool xco2fluid = false; // the fluid whose x(CO2) is an axis: no mode, no composition row
    bool setphase = false;  // a pure phase with a set activity or potential
    bool fluid = false, aqueous = false;
};

// Modes worked out from the bulk after the solver, by output column.
struct ModeColumns {
    int ncolumns = 0;
    int firstcolumn = 0;
    int nphases = 0;  // phases of the assemblage, for the printing
    std::array<std::array<real, maxsummary + 1>, maxmodecolumns + 1> mode{};
    std::array<real, maxmodecolumns + 1> position{};   // bulk position of the column
    std::array<int, maxbulkpositions + 1> flag{};      // 1 good, 0 off the assemblage, -1 undecided
};

struct EquilibriumState {
    EquilibriumSettings set;

    // The reduced system: the components left once set activities, set
    // potentials and an x(CO2) axis have taken theirs.
    std::array<bool, maxcomp + 1> inreduced{};
    int nuvleft = 0;
    std::array<int, maxcomp + 1> reducedcomp{};  // run component of reduced component j

    // The current assemblage's rank on the reduced system and its row
    // operations: rows 1..nuvleft-rankdeficit of projc make the mass
    // balance, the others combine the components to what the assemblage
    // cannot change.
    int rank = 0;
    int rankdeficit = 0;
    std::array<std::array<long long, maxcomp + 1>, maxcomp + 1> projc{};
    // projc as reals for the equations, and whether it is the identity.
    std::array<std::array<real, maxcomp + 1>, maxcomp + 1> projr{};
    bool projidentity = true;

    // The bulk: nbulk positions between bulk1 and bulk2 (mole percent on the
    // reduced system), 0 without a bulk; b the current one as fractions of 1.
    int nbulk = 0;
    std::array<real, maxcomp + 1> bulk1{}, bulk2{};
    real bulkfrom = 0, bulkto = 1;
    std::array<real, maxcomp + 1> b{};
    real bulkposition = 0;

    // The layout of the assemblage (makecrossrefs).
    bool havebase = false;                       // basecscale taken for this pass
    std::array<int, maxcomp + 1> basecscale{};   // cscale before any layout
    int nslot = 0;
    std::array<PhaseSlot, maxsummary + 1> slot{};
    int naxrows = 0;                             // rows of a-x phases, 1..naxrows
    std::array<int, maxnem + 1> emslot{};        // slot of each row (inss, emphase, emstart: activities)
    // Each row's place in makeemtd's order of all the run's end-members, by
    // which cov is held (cov is left in that order: covariances of rows i
    // and j are covat(member[i], member[j])).
    std::array<int, maxnem + 1> member{};
    std::array<real, maxnem + 1> emsize{};       // atoms of the row on the reduced system
    // Composition of each row on the reduced system, c/cscale by reduced component.
    std::vector<std::array<real, maxcomp + 1>> emred = std::vector<std::array<real, maxcomp + 1>>(maxnem + 1);
    std::array<int, maxnx + 1> loopindex{};      // isopleth entry of a fixed variable
    std::array<int, maxnx + 1> xslot{};          // slot owning entry i of x (3..nx+nm)
    int nmss = 0;                                // modes of a-x phases
    int ixco2 = 0;                               // x of the variable "x(CO2)", 0 if none

    // The equations (nlefunc).
    int nrows = 0, ncols = 0;
    std::array<real, maxrrows + 1> lnk{};        // sum of nu ln a of each reaction, for printing
    // Phase compositions per atom on the reduced system and their
    // derivatives by the phase's variables, by slot.
    std::array<std::array<real, maxcomp + 1>, maxsummary + 1> comp{};
    std::array<std::array<std::array<real, maxphasevars + 1>, maxcomp + 1>, maxsummary + 1> dcomp{};
    NleVector xtrue{};                           // the vector in true values
    // Work of one evaluation: energies of the rows at P, T with their slopes
    // in P and T, ln a of the rows, the Jacobian column of
    // each entry of x (0 inactive), and each slot's composition on each
    // mass balance row.
    std::array<real, maxnem + 1> g0{}, dgdp{}, dgdt{}, lna{};
    std::array<bool, maxnem + 1> inreaction{};
    // Energies of the rows of td that the reactions need (plain rows and
    // make terms), by td row, each found once per evaluation.
    struct SourceEnergy {
        real g = 0, gpp = 0, gpm = 0, gtp = 0, gtm = 0;
    };
    std::vector<SourceEnergy> energy = std::vector<SourceEnergy>(maxnem + 1);
    std::array<bool, maxnem + 1> sourcemark{};
    std::array<int, maxnem + 1> source{};
    std::array<int, maxnx + 1> colof{};
    NleVector invscale{};                        // 1/scale of the active entries
    std::array<std::array<real, maxcomp + 1>, maxsummary + 1> gsum{};

    // Modes after the solver.
    ModeColumns modes;

    // Clears everything of a pass (the settings included).
    void reset();
};

// Builds the reduced system from the settings: inreduced, nuvleft.
void setter(Run& run);

}  // namespace sm
