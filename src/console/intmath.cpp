#include "intmath.h"

#include <cmath>
#include <cstdlib>
#include <vector>

#include "runended.h"
#include "scan.h"

namespace sm {

long long gcd(long long a, long long b) {
    a = std::llabs(a);
    b = std::llabs(b);
    while (b != 0) {
        const long long t = a % b;
        a = b;
        b = t;
    }
    return a;
}

long long gcdlist(const long long* list, int n) {
    if (n < 1 || n > 400) return 0;
    if (n == 1) return list[0];
    if (n == 2) return gcd(list[0], list[1]);
    long long g = list[n - 1];
    for (int i = n - 2; i >= 0 && g != 1; --i) g = gcd(g, list[i]);
    return g;
}

long long lcm(long long a, long long b) {
    if (a == 0 || b == 0) return 0;
    if (a == b) return a;
    const long long g = gcd(a, b);
    long long result;
    if (__builtin_mul_overflow(b / g, a, &result)) bomb("lcm", "overflow", 0);
    return std::llabs(result);
}

long long lcmlist(const long long* list, int n) {
    if (n < 1) return 0;
    long long l = list[0];
    for (int i = 1; i < n; ++i) l = lcm(l, list[i]);
    return l;
}

void commonints(real* values, int n, long long& denominator) {
    std::vector<long long> num(n), den(n);
    for (int i = 0; i < n; ++i) real2rational(values[i], num[i], den[i]);
    denominator = lcmlist(den.data(), n);
    for (int i = 0; i < n; ++i)
        values[i] = static_cast<real>(num[i] * (denominator / den[i]));
}

}  // namespace sm
