#pragma once
// Composition on the reduced system: the rank of an assemblage and its row
// operations, the composition of a phase at a point, the real composition
// matrix of the phases of an assemblage and the atoms of each phase.
#include <array>
#include <vector>

#include "console/types.h"
#include "equilibrium/equilibrium.h"

namespace sm {

struct Run;

// Remembers the composition scales of the pass, before any layout rescales
// rows of c (once per pass; reset with the equilibrium state).
void takebasecscale(Run& run);

// Rank of the composition matrix of the taken phases on the reduced system,
// with projc and rankdeficit. `ok` is false when the run's bulk cannot be
// made by the assemblage; that is told on the channels.
void calcrankp(Run& run, const Assemblage& taken, int& rank, bool& ok);

// Integer rank of matrix[1..rows][1..cols].
int rankof(const std::vector<std::vector<long long>>& matrix, int rows, int cols);

// Composition of a-x phase `phase` in all the run's components at the
// variables x[xo ..]: sum over end-members of p * composition.
void compcalc(const Run& run, int phase, const real* x, int xo, std::array<real, maxcomp + 1>& comp);

// The phases of the laid-out assemblage as columns on the reduced
// components, per formula unit of proportions (makec), and the atoms of
// each (phase sizes), in the same column order. A fluid whose x(CO2) is an
// axis, and a pure phase with nothing on the reduced system, are left out.
struct PhaseColumns {
    int ncol = 0;
    std::array<int, maxsummary + 1> slot{};      // slot of column c
    std::array<bool, maxsummary + 1> leftout{};  // by slot
    std::array<std::array<real, maxsummary + 1>, maxcomp + 1> C{};  // C[j][c]
};
void makec(Run& run, const real* x, PhaseColumns& pc);
// at: atoms counted on all components; atcut: on the reduced ones. Slots
// past the count hold 1.
int phasesizes(Run& run, const real* x, std::array<real, maxnx + 1>& at, std::array<real, maxnx + 1>& atcut);

}  // namespace sm
