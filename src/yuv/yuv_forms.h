// The fixed-point forms of RGB <-> Y'UV 4:4:4, each written once in scalar
// form. The vector stages compute exactly the same arithmetic and are tested
// against these.
//
// Y = 0.299 R + 0.587 G + 0.114 B, U = 0.492 (B - Y) + 128, V = 0.877 (R - Y) + 128.
//
// Notation: m(c, x) keeps the high 16 bits of a signed 16x16-bit product,
// floor(c * x / 65536); `>>` on signed values rounds toward minus infinity.
// The block forms (F1, F7, I1, I4, I6) add in saturating 16-bit arithmetic and
// end in an unsigned saturating pack; the others work in 32 bits.
#pragma once
#include <cstdint>

#include "chop.h"

namespace k0::yuv {

struct Px { uint8_t a, b, c; };  // (Y, U, V) or (R, G, B)

// ---- 16-bit helpers of the block forms -------------------------------------
constexpr int sat16(int v) { return v < -32768 ? -32768 : v > 32767 ? 32767 : v; }
constexpr int satu16(int v) { return v < 0 ? 0 : v > 65535 ? 65535 : v; }
constexpr int m(int c, int x) { return (c * x) >> 16; }                       // signed high half
constexpr int mu(int c, int x) { return static_cast<int>((static_cast<unsigned>(c) * static_cast<unsigned>(x)) >> 16); }
constexpr uint8_t pack(int v) { return static_cast<uint8_t>(v < 0 ? 0 : v > 255 ? 255 : v); }  // unsigned saturating pack
constexpr int adds(int a, int b) { return sat16(a + b); }
constexpr int addus(int a, int b) { return satu16(a + b); }
constexpr int subs(int a, int b) { return sat16(a - b); }

// ---- forward ----------------------------------------------------------------

// F1, block stage: unsigned Y terms, chroma from 128x-scaled samples.
constexpr Px formF1(int R, int G, int B) {
    const int y = addus(addus(mu(19595, R << 8), mu(38469, G << 8)), mu(7471, B << 8)) >> 8;
    const int u = adds(adds(m(-4816, R << 7), m(-9469, G << 7)), m(14286, B << 7)) >> 6;
    const int v = adds(adds(m(20152, R << 7), m(-16875, G << 7)), m(-3276, B << 7)) >> 6;
    return {static_cast<uint8_t>(y), pack(adds(u, 128)), pack(adds(v, 128))};
}

// F2, scalar stage of the three-sample kernels.
constexpr Px formF2(int R, int G, int B) {
    const int y = (19595 * R + 38470 * G + 7471 * B) >> 16;
    const int t = (-19595 * R - 38470 * G + 58065 * B + 32767) >> 16;
    const int s = (45941 * R - 38470 * G - 7471 * B + 32767) >> 16;
    return {static_cast<uint8_t>(y), static_cast<uint8_t>(((t * 32244) >> 16) + 128),
            CHOP_ARRAY[((s * 57475) >> 16) + 128]};
}

// F3, scalar stage of the four-sample kernels: Y rounded, chroma from B and R
// against the unshifted luma sum.
constexpr Px formF3(int R, int G, int B) {
    const int S = 19595 * R + 38470 * G + 7471 * B;
    const int y = (S + 32768) >> 16;
    const int u = (((((B << 16) - S + 32768) >> 16) * 32244) >> 16) + 128;
    const int v = (((((R << 16) - S + 32768) >> 16) * 57475) >> 16) + 128;
    return {static_cast<uint8_t>(y), static_cast<uint8_t>(u), CHOP_ARRAY[v]};
}

// F4, scalar stage of the planar kernel.
constexpr Px formF4(int R, int G, int B) {
    const int y = (19595 * R + 38469 * G + 7471 * B) >> 16;
    const int u = ((-4816 * R - 9469 * G + 14286 * B) >> 15) + 128;
    const int v = ((20152 * R - 16875 * G - 3276 * B) >> 15) + 128;
    return {static_cast<uint8_t>(y), static_cast<uint8_t>(u), CHOP_ARRAY[v]};
}

// F5, multiply-add kernel on three-sample pixels. V is limited before the shift.
constexpr int limit24(int acc) { return acc < 0 ? 0 : acc > 0xFF0000 ? 0xFF0000 : acc; }
constexpr Px formF5(int R, int G, int B) {
    const int y = (19595 * R + 38470 * G + 7471 * B) >> 16;
    const int u = (8388608 - 9633 * R - 18939 * G + 28573 * B) >> 16;
    const int v = limit24(8388608 + 40304 * R - 33750 * G - 6554 * B) >> 16;
    return {static_cast<uint8_t>(y), static_cast<uint8_t>(u), static_cast<uint8_t>(v)};
}

// F6, multiply-add kernel on four-sample pixels: F5 with a rounded Y.
constexpr Px formF6(int R, int G, int B) {
    const Px p = formF5(R, G, B);
    return {static_cast<uint8_t>((32768 + 19595 * R + 38470 * G + 7471 * B) >> 16), p.b, p.c};
}

// F7, block stage of the four-plane kernel.
constexpr Px formF7(int R, int G, int B) {
    const int w1 = adds(adds(adds(m(9798, 4 * R), m(19235, 4 * G)), m(3736, 4 * B)), 1);
    const int u = adds(m(16121, subs(2 * B, w1)), 128);
    const int v = adds(m(28737, subs(2 * R, w1)), 128);
    return {static_cast<uint8_t>(w1 >> 1), pack(u), pack(v)};
}

// ---- inverse ----------------------------------------------------------------

// I1, block stage of the interleaved kernel.
constexpr Px formI1(int Y, int U, int V) {
    const int u = 8 * U - 1024, v = 8 * V - 1024;
    return {pack(adds(Y, m(9339, v))), pack(adds(adds(Y, m(-3228, u)), m(-4760, v))), pack(adds(Y, m(16646, u)))};
}

// I2, scalar stage of the interleaved kernels: R and B rounded, G not.
constexpr Px formI2(int Y, int U, int V) {
    return {CHOP_ARRAY[((Y << 16) + 74711 * V - 9530240) >> 16],
            CHOP_ARRAY[((Y << 16) - 25821 * U - 38076 * V + 8178816) >> 16],
            CHOP_ARRAY[((Y << 16) + 133169 * U - 17012864) >> 16]};
}

// I3, the planar kernels: none of the three rounded.
constexpr Px formI3(int Y, int U, int V) {
    return {CHOP_ARRAY[((Y << 16) + 74710 * V - 9562880) >> 16],
            CHOP_ARRAY[((Y << 16) - 25820 * U - 38075 * V + 8178560) >> 16],
            CHOP_ARRAY[((Y << 16) + 133168 * U - 17045504) >> 16]};
}

// I4, block stage of the planes-to-interleaved kernel, at twice the scale.
constexpr Px formI4(int Y, int U, int V) {
    const int u = 16 * U - 2048, v = 16 * V - 2048, y2 = 2 * Y;
    return {pack(adds(y2, m(9338, v)) >> 1), pack(adds(adds(y2, m(-3227, u)), m(-4759, v)) >> 1),
            pack(adds(y2, m(16645, u)) >> 1)};
}

// I5, multiply-add kernel: bytes (Y, U, U, V) against signed byte weights, the
// accumulators started at -9339, 7987, -16678; G and B take a second,
// finer step after the shift by 10.
constexpr Px formI5(int Y, int U, int V) {
    const int r = (64 * Y + 73 * V - 9339) << 10;
    const int g = ((64 * Y - 25 * U - 37 * V + 7987) << 10) - 256 * U - 128 * V;
    const int b = ((64 * Y + 130 * U - 16678) << 10) + 254 * U + 127 * V;
    return {static_cast<uint8_t>(limit24(r) >> 16), static_cast<uint8_t>(limit24(g) >> 16),
            static_cast<uint8_t>(limit24(b) >> 16)};
}

// I6, block stage of the interleaved-to-four-sample kernel, at eight times the scale.
constexpr Px formI6(int Y, int U, int V) {
    const int u = 128 * U - 16384, v = 128 * V - 16384, y8 = 8 * Y;
    return {pack(adds(adds(y8, m(4669, v)), 4) >> 3),
            pack(adds(subs(subs(y8, m(2380, v)), m(1614, u)), 4) >> 3),
            pack(adds(adds(y8, m(8323, u)), 4) >> 3)};
}

// I7, scalar stage of the interleaved-to-four-sample kernel: all three rounded.
constexpr Px formI7(int Y, int U, int V) {
    const int u = U - 128, v = V - 128;
    return {CHOP_ARRAY[((Y << 16) + 74711 * v + 32768) >> 16],
            CHOP_ARRAY[((Y << 16) - 25821 * u - 38076 * v + 32768) >> 16],
            CHOP_ARRAY[((Y << 16) + 133169 * u + 32768) >> 16]};
}

}  // namespace k0::yuv
