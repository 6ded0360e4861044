// The arithmetic of the YCoCg conversions, one scalar function a form. There
// are no products, so every stage of a row computes exactly these.
#pragma once
#include <cstdint>

#include "chop.h"
#include "krocc.h"

namespace k0::ycocg {

struct Ycc {
    int32_t y, co, cg;
};
struct Rgb {
    int32_t r, g, b;
};

// Plain form, forward, in 32 bits (exact for 8- and 16-bit samples; the 16s
// planes keep the low 16 bits).
inline Ycc plainFwd(int32_t r, int32_t g, int32_t b) {
    return {(r + 2 * g + b + 2) >> 2, (r - b + 1) >> 1, (2 * g - (r + b) + 2) >> 2};
}

// Plain form, inverse, wrapping in the width W of the planes.
template <class W>
inline Rgb plainInv(W y, W co, W cg) {
    const int64_t Y = y, Co = co, Cg = cg;
    return {W(Y + Co - Cg), W(Y + Cg), W(Y - (Co + Cg))};
}

// Lifting form, forward. Co and Cg are reduced to W before they are shifted:
// int16_t for the 16s planes (a 16-bit overflow wraps, and the inverse undoes
// it), int32_t where the arithmetic is exact.
template <class W>
inline Ycc liftFwd(int32_t r, int32_t g, int32_t b) {
    const int32_t co = W(r - b);
    const int32_t t = b + (co >> 1);
    const int32_t cg = W(g - t);
    return {W(t + (cg >> 1)), co, cg};
}

// Lifting form, inverse, wrapping in the width W of the planes.
template <class W>
inline Rgb liftInv(W y, W co, W cg) {
    const W t = W(int64_t(y) - (cg >> 1));
    const W g = W(int64_t(cg) + t);
    const W b = W(int64_t(t) - (co >> 1));
    return {W(int64_t(b) + co), g, b};
}

// The 8-bit inverse forms limit the 16-bit result by comparisons, so a value
// that wrapped into range passes.
inline Kro8u limit8(int16_t v) { return static_cast<Kro8u>(v < 0 ? 0 : v > 255 ? 255 : v); }

// The 8-bit pair: chroma with an offset of 128, limited to 255 (which only a
// value of 256 reaches).
inline Ycc pairFwd(int32_t r, int32_t g, int32_t b) {
    const int32_t co = ((r - b + 1) >> 1) + 128, cg = ((2 * g - (r + b) + 2) >> 2) + 128;
    return {(r + 2 * g + b + 2) >> 2, co > 255 ? 255 : co, cg > 255 ? 255 : cg};
}

inline Rgb pairInv(int32_t y, int32_t co, int32_t cg) {
    return {chopped(y + co - cg), chopped(y + cg - 128), chopped(y - (co + cg) + 256)};
}

}  // namespace k0::ycocg
