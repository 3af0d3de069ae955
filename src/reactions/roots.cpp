#include "reactions/roots.h"

#include "console/scan.h"

namespace sm {

RootWindow rootwindow(real lo, real hi, int digits, bool pressure) {
    RootWindow w;
    w.lo = lo;
    w.hi = hi;
    w.pressure = pressure;
    const int power = -1 - digits;
    if (power < -10 || power > 10) bomb("tentopower", "stuffed", 0);
    w.base = tentopower(power);
    const int param = pressure ? digits - 3 : digits - 2;
    w.steplimit = 3 * param + 9;
    return w;
}

}  // namespace sm
