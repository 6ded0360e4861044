// The saturation table of the scalar stages: entry i holds i - 370 limited to
// 0..255, so a signed result r is clamped by chop[r + 370] (or chop[r + 498]
// when the offset 128 is still to be added). CHOP_ARRAY points at entry 370.
#pragma once
#include <array>
#include "krocc.h"

namespace k0 {

constexpr std::array<Kro8u, 1000> makeChop() {
    std::array<Kro8u, 1000> t{};
    for (int i = 0; i < 1000; ++i) {
        int v = i - 370;
        t[i] = static_cast<Kro8u>(v < 0 ? 0 : v > 255 ? 255 : v);
    }
    return t;
}

alignas(64) inline constexpr std::array<Kro8u, 1000> chop = makeChop();
inline constexpr const Kro8u* CHOP_ARRAY = chop.data() + 370;
static_assert(chop[370] == 0 && chop[371] == 1 && chop[624] == 254 && chop[625] == 255 && chop[999] == 255);

// Clamp of a signed result through the table.
constexpr Kro8u chopped(int r) { return CHOP_ARRAY[r]; }

}  // namespace k0
