// Bayer demosaicing by CFA interpolation: the Bayer cells and the rules that
// give a pixel its three colours, one scalar function each. The frame
// routines and the scalar tails of the interior kernels call these; the
// vector body of the kernels computes the same values.
#pragma once
#include <cstddef>

#include "internal.h"

namespace k0::cfa {

// Output channels, in the order the destination holds them.
enum Colour : int { kR = 0, kG = 1, kB = 2 };

// The 2x2 cell at a pixel, numbered as BayerPattern numbers them.
enum Cell : int { kBGGR = 0, kRGGB = 1, kGBRG = 2, kGRBG = 3 };

// Colour of each cell's four pixels, left to right, top to bottom.
inline constexpr int kCellColours[4][4] = {
    {kB, kG, kG, kR},  // BGGR
    {kR, kG, kG, kB},  // RGGB
    {kG, kB, kR, kG},  // GBRG
    {kG, kR, kB, kG},  // GRBG
};

// The cell that stands at (x, y) of an image whose cell at (0, 0) is `pattern`.
// One column to the right swaps the cell's columns (BGGR <-> GBRG, RGGB <->
// GRBG), one row down swaps its rows (BGGR <-> GRBG, RGGB <-> GBRG).
constexpr int cellAt(int pattern, std::ptrdiff_t x, std::ptrdiff_t y) {
    return pattern ^ (static_cast<int>(x & 1) * 2) ^ (static_cast<int>(y & 1) * 3);
}

constexpr int colourAt(int pattern, std::ptrdiff_t x, std::ptrdiff_t y) { return kCellColours[pattern][(y & 1) * 2 + (x & 1)]; }

static_assert(cellAt(kBGGR, 1, 0) == kGBRG && cellAt(kBGGR, 0, 1) == kGRBG && cellAt(kBGGR, 1, 1) == kRGGB);
static_assert(cellAt(kRGGB, 1, 0) == kGRBG && cellAt(kRGGB, 0, 1) == kGBRG && cellAt(kRGGB, 1, 1) == kBGGR);
static_assert(cellAt(kGBRG, 1, 0) == kBGGR && cellAt(kGBRG, 0, 1) == kRGGB && cellAt(kGBRG, 1, 1) == kGRBG);
static_assert(cellAt(kGRBG, 1, 0) == kRGGB && cellAt(kGRBG, 0, 1) == kBGGR && cellAt(kGRBG, 1, 1) == kGBRG);

// ---- the rules -------------------------------------------------------------

// Rounded mean of two samples.
KRO_INLINE int mean2(int a, int b) { return (a + b + 1) >> 1; }

// Rounded mean of four samples, from their exact sum.
KRO_INLINE int mean4(int a, int b, int c, int d) { return (a + b + c + d + 2) >> 2; }

// Green at a red or blue site inside the image: the gradients of the site's
// own colour at distance two decide between the vertical and the horizontal
// pair of green neighbours; on exact equality all four are averaged.
KRO_INLINE int greenByGradient(int up2, int down2, int left2, int right2, int up, int down, int left, int right) {
    const int v = up2 > down2 ? up2 - down2 : down2 - up2;
    const int h = left2 > right2 ? left2 - right2 : right2 - left2;
    if (v < h) return mean2(up, down);
    if (v > h) return mean2(left, right);
    return mean4(left, right, up, down);
}

// A neighbour's coordinate mirrored about the edge sample: -1 reads 1, n reads n - 2.
KRO_INLINE std::ptrdiff_t mirrored(std::ptrdiff_t c, std::ptrdiff_t n) { return c < 0 ? -c : c >= n ? 2 * (n - 1) - c : c; }

// ---- whole pixels ----------------------------------------------------------
// A pixel's neighbourhood is given by its row and the rows above and below
// (already mirrored in the frame) and by column indices, so that one form
// serves the frame and the interior.

// A green site: green copied, the colour of the left and right neighbours
// (`across`) and the colour above and below from their pairs.
template <class T>
KRO_INLINE void greenSite(T* d, int across, const T* up, const T* mid, const T* down, std::ptrdiff_t l, std::ptrdiff_t x,
                          std::ptrdiff_t r) {
    d[across] = static_cast<T>(mean2(mid[l], mid[r]));
    d[kG] = mid[x];
    d[2 - across] = static_cast<T>(mean2(up[x], down[x]));
}

// The colour opposite a red or blue site, from its four diagonal neighbours.
template <class T>
KRO_INLINE int oppositeColour(const T* up, const T* down, std::ptrdiff_t l, std::ptrdiff_t r) {
    return mean4(up[l], up[r], down[l], down[r]);
}

// A red or blue site of the frame: green from the four neighbours.
template <class T>
KRO_INLINE void frameColourSite(T* d, int own, const T* up, const T* mid, const T* down, std::ptrdiff_t l, std::ptrdiff_t x,
                                std::ptrdiff_t r) {
    d[own] = mid[x];
    d[kG] = static_cast<T>(mean4(mid[l], mid[r], up[x], down[x]));
    d[2 - own] = static_cast<T>(oppositeColour(up, down, l, r));
}

// A red or blue site of the interior at column x, given its row and the two
// rows above and below it: green by the gradient test.
template <class T>
KRO_INLINE void interiorColourSite(T* d, int own, const T* up2, const T* up, const T* mid, const T* down, const T* down2,
                                   std::ptrdiff_t x) {
    d[own] = mid[x];
    d[kG] = static_cast<T>(greenByGradient(up2[x], down2[x], mid[x - 2], mid[x + 2], up[x], down[x], mid[x - 1], mid[x + 1]));
    d[2 - own] = static_cast<T>(oppositeColour(up, down, x - 1, x + 1));
}

}  // namespace k0::cfa
