#pragma once
// The end-member that carries an activity or potential axis of a section:
// it stands last, in excess, and the axis value is written into its record.
namespace sm {

struct Run;

// Appends "mu(<component>)": one formula unit of component k, all of its
// thermodynamic data zero, so that its Gibbs energy is the potential
// written into its enthalpy.
void addmupseudo(Run& run, int k);
// The last end-member carries the axis; its own entropy is kept.
void setaxisendmember(Run& run);

}  // namespace sm
