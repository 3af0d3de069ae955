#include "solver/nlesystem.h"

#include "console/runended.h"

namespace sm {

// A system that lists watched site fractions must say how to value them.
real NleSystem::sfterm(const SfWatch&, const NleVector&) {
    bomb("findlimit", "site fractions watched without a routine for them", 1);
}

real NleSystem::sftermslope(const SfWatch&, const NleVector&, const NleVector&, bool&) {
    bomb("findlimit", "site fractions watched without a routine for them", 1);
}

}  // namespace sm
