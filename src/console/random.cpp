#include "random.h"

#include <cmath>

namespace sm {

double Random::next() {
    x = (171 * x) % 30269;
    y = (172 * y) % 30307;
    z = (170 * z) % 30323;
    const double sum = x / 30269.0 + y / 30307.0 + z / 30323.0;
    return sum - std::floor(sum);
}

}  // namespace sm
