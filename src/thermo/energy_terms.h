#pragma once
// The terms of an end-member's Gibbs energy, one equation of state each, as
// plain functions of the row, P (kbar) and T (K).
#include <string_view>

#include "thermo/gem.h"

namespace sm {

// Stops the run for a row whose numbers make a term impossible; G is never
// allowed to come out as NaN or infinity.
[[noreturn]] void energyfail(std::string_view name, std::string_view what);

// Heat capacity integral of the polynomial Cp = a + bT + c/T^2 + d/sqrt(T).
real gcppolynomial(const TdRow& row, real T);

// The modified Tait volume integral, solid (with thermal pressure) or melt.
real taitvdp(const TdRow& row, std::string_view name, real P, real T, bool melt,
             const GemContext& cx, GemParts& parts);

// The volume integral of the oldest form of the dataset.
real oldvdp(const TdRow& row, real P, real T);
// Its bulk modulus and volume at T, shared with that form's Landau term.
void oldvolumeat(const TdRow& row, real T, real& kT, real& Vt);

// Einstein-thermal form: heat capacity with the thermal-pressure term, and
// the volume integral.
real einsteingcp(const TdRow& row, std::string_view name, real T, const GemContext& cx);
real einsteinvdp(const TdRow& row, std::string_view name, real P, real T, const GemContext& cx);
// The volume ratio V/V0 at P, T, and the integral behind the alternative form.
real einsteinv(const TdRow& row, std::string_view name, real P, real T, const GemContext& cx);
real ggkint(real x, real y, long long* fallbacks);
// Intervals of the Simpson rule for the thermal-pressure term from Tr to T.
int einsteinsimpsonintervals(real T);

// Order terms.
real landaugord(const TdRow& row, std::string_view name, real P, real T, int dsmode);
real braggwilliamsgord(const TdRow& row, real P, real T);
// The state of order of a Bragg-Williams row.
real braggwilliamsq(const TdRow& row, real P, real T);

// Fluid terms by name (0 for a row that is no fluid), and the mixing term of
// separate H2O and CO2 fluids.
real fluidgibbs(const TdRow& row, std::string_view name, real P, real T, const GemContext& cx,
                real& Gfmix);

// The fluid held in the channels of cordierite.
real cordieriteg(const TdRow& row, std::string_view name, real P, real T, const GemContext& cx);

// Aqueous species.
real aqueousg(const TdRow& row, std::string_view name, real P, real T, const GemContext& cx);

}  // namespace sm
