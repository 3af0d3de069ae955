#pragma once
// Bit sets of 30 usable bits a word, in one word or three.
#include <array>
#include <cstdint>

namespace sm {

constexpr int maxbit = 30;
using BitSet = std::uint32_t;
using BitSet2 = std::array<std::uint32_t, 3>;

void BSet(BitSet& s, int bit);
bool BTst(BitSet s, int bit);
void BSet2(BitSet2& s, int bit);   // bits 0..90
bool BTst2(const BitSet2& s, int bit);
void BClear2(BitSet2& s);
bool BSubset2(const BitSet2& a, const BitSet2& b);
inline BitSet BAnd(BitSet a, BitSet b) { return a & b; }
inline BitSet BOr(BitSet a, BitSet b) { return a | b; }

}  // namespace sm
