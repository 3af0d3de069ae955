#include "bitsets.h"

#include "runended.h"

namespace sm {

namespace {
// Bit numbers 0..30 are bits 0..30 of word 1; 31..60 bits 1..30 of word 2;
// 61..90 bits 1..30 of word 3.
void place(int bit, int& word, int& pos) {
    if (bit <= 30) {
        word = 0;
        pos = bit;
    } else if (bit <= 60) {
        word = 1;
        pos = bit - 30;
    } else {
        word = 2;
        pos = bit - 60;
    }
}
bool empty(const BitSet2& s) { return s[0] == 0 && s[1] == 0 && s[2] == 0; }
}  // namespace

void BSet(BitSet& s, int bit) {
    if (bit < 0 || bit > maxbit) bomb("BSet", "out of range", 0);
    s |= 1u << bit;
}

bool BTst(BitSet s, int bit) {
    if (bit < 0 || bit > maxbit) bomb("BSet", "out of range", 0);
    return (s >> bit) & 1u;
}

void BSet2(BitSet2& s, int bit) {
    if (bit < 0 || bit > 90) bomb("BSet2", "out of range", 0);
    int w, p;
    place(bit, w, p);
    s[w] |= 1u << p;
}

bool BTst2(const BitSet2& s, int bit) {
    if (bit < 0 || bit > 90) bomb("BTst2", "out of range", 0);
    int w, p;
    place(bit, w, p);
    return (s[w] >> p) & 1u;
}

void BClear2(BitSet2& s) { s = {0, 0, 0}; }

bool BSubset2(const BitSet2& a, const BitSet2& b) {
    if (a == b || empty(a)) return true;
    if (empty(b)) return false;
    for (int i = 0; i < 3; ++i)
        if ((a[i] & b[i]) != a[i]) return false;
    return true;
}

}  // namespace sm
