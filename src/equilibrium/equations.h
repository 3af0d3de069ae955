#pragma once
// The equations of one assemblage: the layout of its unknowns, the bulk
// normalisation, the residuals and Jacobian that the Newton solver works
// on, and the modes worked out after the solver from the bulk.
#include <string>
#include <vector>

#include "console/types.h"
#include "equilibrium/equilibrium.h"
#include "solver/nlesystem.h"

namespace sm {

struct Run;

// Lays out the taken phases: their end-members in the rows of emname, td
// and c (a-x phases first, one row per phase and end-member), and the
// unknowns P, T, the compositional variables and, by the settings, the
// modes, with their scales, limits and names; the oblique limits and the
// watched site fractions of the solver.
void makecrossrefs(Run& run, const Assemblage& taken);

// phi: the square root of the atom-weighted sum of the bulk b on the
// reduced system, exactly 1 when that sum is within 1e-6 of 1.
real bulkphi(const Run& run);
// The bulk of position p (1..nbulk) as fractions of 1 in b, its position
// along the range, phi, and the scales of the mode unknowns.
void setbulkposition(Run& run, int p);

// The unknowns at the phases' starting guesses, P (kbar) and T (K): active
// entries scaled into the box, fixed ones at their true values. Modes come
// from `modes` by slot (1-based) where given, the rest share what is left
// of 1 evenly (mode * phi for the solver).
void loadstart(Run& run, real P, real T, const std::vector<real>& modes = {});

// The residual routine of the solver for the laid-out assemblage: one row
// per independent reaction, then with modes among the unknowns one mass
// balance row per independent component of the reduced system.
class EquilibriumSystem : public NleSystem {
public:
    explicit EquilibriumSystem(Run& run) : run_(run) {}
    bool nlefunc(const NleVector& x, NleMatrix& J, NleVector& F, bool wantJ) override;
    real sfterm(const SfWatch& e, const NleVector& v) override;
    real sftermslope(const SfWatch& e, const NleVector& v, const NleVector& w, bool& zerofactor) override;

private:
    Run& run_;
};

// The point of the solver's x in true values, into the equilibrium
// state's xtrue: what the routines below read. (After a solve the last
// evaluation may have been a trial point rather than the one kept.)
void settruepoint(Run& run);

// Modes from the bulk after a solve that held the compositions alone, at
// the point in xtrue. `ok` when some bulk position fits the assemblage;
// `problem` tells why not, for the caller's result.
void calcmodesafternle(Run& run, bool& ok, std::string& problem);

// The reaction among the phases of the assemblage at the point in xtrue:
// coefficients by slot, the names of its columns (1-based; a fluid whose
// x(CO2) is an axis of a divariant section stands as H2O and CO2), and its
// text ("####" with a singular Jacobian).
void phasereaction(Run& run, std::vector<real>& coefficients, std::vector<sstring>& names, std::string& text);

}  // namespace sm
