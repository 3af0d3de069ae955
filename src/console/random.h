#pragma once
// The Wichmann-Hill generator: three small congruential generators summed.
namespace sm {

struct Random {
    int x = 1, y = 1, z = 1;
    void seed(int a, int b, int c) { x = a; y = b; z = c; }
    double next();  // in [0, 1)
};

}  // namespace sm
