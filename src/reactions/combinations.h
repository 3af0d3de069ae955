#pragma once
// The k-subsets of 1..n in ascending lexicographic order, as an array of
// positions. Positions past k hold a sentinel that no member number equals,
// so a walk that matches members against positions stops by itself.
#include <array>

#include "reactions/reactionstore.h"

namespace sm {

struct Combination {
    std::array<unsigned short, maxcombination + 2> pos{};  // 1-based

    // The first subset, 1..k.
    void start(int k);
    // The subset after the current one; `more` is false after the last.
    void next(int k, int n, bool& more);
};

}  // namespace sm
