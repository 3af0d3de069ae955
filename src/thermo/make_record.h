#pragma once
// How an end-member that the dataset does not hold is built from others: a
// linear combination of dataset end-members plus an energy correction
// a + bT + cP (a "DQF" term). One record sits in every end-member of an a-x
// phase and in every pure phase.
#include <array>

#include "console/types.h"
#include "thermo/limits.h"

namespace sm {

// What a make term does with the order-disorder data of its end-member.
enum MakeAction : int {
    actequilibrium = 0,  // the term keeps its own Landau or Bragg-Williams order
    actdisordered = 1,   // fully disordered: the order energy goes into H, S, V
    actordered = 2,      // fully ordered at all T
    actnotgiven = 4
};

// Which keyword gave the DQF term.
enum DqfCode : int { dqfplain = 0, dqfmake = 1, dqfmod = 2, dqfod = 3, dqftran = 4, dqfrcal = 5 };

struct MakeRecord {
    int nmake = 0;    // terms 1..6; 0 plain; -1 thermodynamics from option code 6
    int makediv = 1;  // common denominator of the coefficients
    std::array<sstring, maxmaketerms + 1> makename{};
    std::array<int, maxmaketerms + 1> makeaction{};
    std::array<int, maxmaketerms + 1> makecoef{};  // coefficient times makediv
    std::array<int, maxmaketerms + 1> makerow{};   // td row of the term (finddep)
    int dqfcode = dqfplain;
    real dqfa = 0, dqfb = 0, dqfc = 0;  // kJ, kJ/K, kJ/kbar
    int line = 0;  // line of the a-x file with the make, for messages

    real coef(int k) const { return static_cast<real>(makecoef[k]) / static_cast<real>(makediv); }
};

}  // namespace sm
