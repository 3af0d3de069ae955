#pragma once
// Integer helpers for reaction coefficients and rational rows.
#include "types.h"

namespace sm {

long long gcd(long long a, long long b);
long long gcdlist(const long long* list, int n);  // list[0..n-1]
long long lcm(long long a, long long b);          // overflow is fatal
long long lcmlist(const long long* list, int n);
// Turns a row of rational reals into whole numbers over a common denominator.
void commonints(real* values, int n, long long& denominator);

}  // namespace sm
