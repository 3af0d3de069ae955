#include "reactions/combinations.h"

#include "console/runended.h"

namespace sm {

void Combination::start(int k) {
    if (k < 0 || k > maxcombination) bomb("combinations", "too many positions", 1);
    for (int i = 1; i <= maxcombination + 1; ++i)
        pos[i] = i <= k ? static_cast<unsigned short>(i) : combinationend;
}

void Combination::next(int k, int n, bool& more) {
    if (k < 1 || k > n) {
        more = false;
        return;
    }
    int i = k;
    while (i >= 1 && pos[i] == n - k + i) --i;
    if (i < 1) {
        more = false;
        return;
    }
    ++pos[i];
    for (int j = i + 1; j <= k; ++j) pos[j] = static_cast<unsigned short>(pos[j - 1] + 1);
    more = true;
}

}  // namespace sm
