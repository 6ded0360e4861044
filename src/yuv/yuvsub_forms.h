// The fixed-point forms of RGB <-> Y'UV with halved chroma, each written once
// in scalar form. The vector stages compute exactly the same arithmetic and
// are tested against these.
//
// A 4:2:2 cell is two neighbouring pixels of a row (subscripts 0 and 1) with
// one U and one V; a 4:2:0 cell is a 2x2 block (00 01 on the top row, 10 11
// below) with one U and one V. Chroma is the mean over the cell, taken from
// the sum; the inverse gives a cell's U and V to each of its pixels as they
// are.
//
// Notation beyond yuv_forms.h: h(c, x) is the rounding high multiply
// (c * x + 16384) >> 15; S = 19595 R + 38470 G + 7471 B of a pixel. The block
// forms (G, K3, K4, J1, J2, J6) live in 16-bit words and end in an unsigned
// saturating pack; the others work in 32 bits and clamp through the table.
#pragma once
#include <cstdint>

#include "yuv/yuv_forms.h"

namespace k0::yuv {

struct Cell2 { uint8_t y0, y1, u, v; };                 // a 4:2:2 cell
struct Cell4 { uint8_t y00, y01, y10, y11, u, v; };     // a 4:2:0 cell

constexpr int h(int c, int x) { return (c * x + 16384) >> 15; }
constexpr int lumaS(Px p) { return 19595 * p.a + 38470 * p.b + 7471 * p.c; }
constexpr uint8_t lowByte(int v) { return static_cast<uint8_t>(v); }

// ---- 4:2:2, forward block forms ----------------------------------------------------

// The luma sum of G1 and G2: R and G in one 14-bit product sum, B in another.
constexpr int lumaW14(Px p) { return ((9798 * p.a + 19235 * p.b) >> 14) + ((3736 * p.c) >> 14); }

// G1, block stage of the interleaved destination: Y rounded, the pair sum biased by 2.
constexpr Cell2 formG1(Px p0, Px p1) {
    const int w0 = lumaW14(p0), w1 = lumaW14(p1);
    const int t = (w0 + w1 + 2) >> 1;
    return {lowByte((w0 + 1) >> 1), lowByte((w1 + 1) >> 1), pack(m(16121, p0.c + p1.c - t) + 128),
            pack(m(28737, p0.a + p1.a - t) + 128)};
}

// G2, block stage of the planar destination: Y truncated, the plain pair sum.
constexpr Cell2 formG2(Px p0, Px p1) {
    const int w0 = lumaW14(p0), w1 = lumaW14(p1);
    const int t = (w0 + w1) >> 1;
    return {lowByte(w0 >> 1), lowByte(w1 >> 1), pack(m(16121, p0.c + p1.c - t) + 128),
            pack(m(28737, p0.a + p1.a - t) + 128)};
}

// G3, block stage of the planar destination on 16-byte aligned buffers:
// rounding high multiplies of 128x samples, chroma against the summed lumas.
constexpr Cell2 formG3(Px p0, Px p1) {
    const int q0 = h(4899, 128 * p0.a) + h(9617, 128 * p0.b) + h(1868, 128 * p0.c);
    const int q1 = h(4899, 128 * p1.a) + h(9617, 128 * p1.b) + h(1868, 128 * p1.c);
    const int t = q0 + q1;
    return {pack(q0 >> 6), pack(q1 >> 6), pack((h(8061, 64 * (p0.c + p1.c) - t) >> 6) + 128),
            pack((h(14369, 64 * (p0.a + p1.a) - t) >> 6) + 128)};
}

// G4, block stage of the planar source: high products of 4x samples.
constexpr Cell2 formG4(Px p0, Px p1) {
    const int w0 = m(9798, 4 * p0.a) + m(19235, 4 * p0.b) + m(3736, 4 * p0.c);
    const int w1 = m(9798, 4 * p1.a) + m(19235, 4 * p1.b) + m(3736, 4 * p1.c);
    const int t = w0 + w1;
    return {lowByte(w0 >> 1), lowByte(w1 >> 1), pack((m(16121, 2 * (p0.c + p1.c) - t) >> 1) + 128),
            pack((m(28737, 2 * (p0.a + p1.a) - t) >> 1) + 128)};
}

// ---- 4:2:2, forward pair forms -----------------------------------------------------
// The halving of the pair's sum is the shift by 17, after the multiplication.

// H1: Y and chroma rounded by 32768.
constexpr Cell2 formH1(Px p0, Px p1) {
    const int s0 = lumaS(p0), s1 = lumaS(p1), a = s0 + s1;
    const int u = (((((p0.c + p1.c) << 16) - a + 32768) >> 16) * 32244 >> 17) + 128;
    const int v = (((((p0.a + p1.a) << 16) - a + 32768) >> 16) * 57475 >> 17) + 128;
    return {lowByte((s0 + 32768) >> 16), lowByte((s1 + 32768) >> 16), lowByte(u), chopped(v)};
}

// H2: Y truncated, chroma biased by 65535.
constexpr Cell2 formH2(Px p0, Px p1) {
    const int s0 = lumaS(p0), s1 = lumaS(p1), a = s0 + s1;
    const int u = (((((p0.c + p1.c) << 16) - a + 65535) >> 16) * 32244 >> 17) + 128;
    const int v = (((((p0.a + p1.a) << 16) - a + 65535) >> 16) * 57475 >> 17) + 128;
    return {lowByte(s0 >> 16), lowByte(s1 >> 16), lowByte(u), chopped(v)};
}

// ---- 4:2:2, forward forms of the last pixel of an odd row (a cell of one) ----------------

// L1: Y and U rounded by 32768; the form has no V (the third sample is 0).
constexpr Px formL1(Px p) {
    const int s = lumaS(p);
    const int u = (((((p.c << 16) - s + 32768) >> 16) * 32244) >> 16) + 128;
    return {lowByte((s + 32768) >> 16), lowByte(u), 0};
}

// L2: 15-bit sums, U biased by 16383 and V by 32767.
constexpr Px formL2(Px p) {
    const int s = 9798 * p.a + 19235 * p.b + 3736 * p.c;
    const int u = (((((p.c << 15) - s + 16383) >> 15) * 16121) >> 15) + 128;
    const int v = (((((p.a << 15) - s + 32767) >> 15) * 28737) >> 15) + 128;
    return {lowByte(s >> 15), lowByte(u), chopped(v)};
}

// L3: 15-bit sums, nothing rounded.
constexpr Px formL3(Px p) {
    const int s = 9798 * p.a + 19235 * p.b + 3736 * p.c;
    const int u = (((((p.c << 15) - s) >> 15) * 16121) >> 15) + 128;
    const int v = (((((p.a << 15) - s) >> 15) * 28737) >> 15) + 128;
    return {lowByte(s >> 15), lowByte(u), chopped(v)};
}

// ---- inverse forms, one pixel from its Y and its cell's U and V ----------------------------

// J1, block stage: twice the scale, saturating 16-bit sums.
constexpr Px formJ1(int Y, int U, int V) {
    const int u = 16 * U - 2048, v = 16 * V - 2048, y2 = 2 * Y;
    return {pack(adds(y2, m(9338, v)) >> 1), pack(adds(adds(y2, m(-3227, u)), m(-4759, v)) >> 1),
            pack(adds(y2, m(16645, u)) >> 1)};
}

// J2, block stage of the four-sample destination: sixteen times the scale, rounded by 8.
constexpr Px formJ2(int Y, int U, int V) {
    const int u = 128 * U - 16384, v = 128 * V - 16384, y16 = 16 * Y;
    return {pack(adds(adds(y16, m(9338, v)), 8) >> 4), pack(adds(subs(subs(y16, m(3227, u)), m(4759, v)), 8) >> 4),
            pack(adds(adds(y16, m(16646, u)), 8) >> 4)};
}

// J3: 16-bit fractions, not rounded.
constexpr Px formJ3(int Y, int U, int V) {
    const int u = U - 128, v = V - 128;
    return {CHOP_ARRAY[((Y << 16) + 74711 * v) >> 16], CHOP_ARRAY[((Y << 16) - 25821 * u - 38076 * v) >> 16],
            CHOP_ARRAY[((Y << 16) + 133169 * u) >> 16]};
}

// J4: 16-bit fractions, rounded by 32768.
constexpr Px formJ4(int Y, int U, int V) {
    const int u = U - 128, v = V - 128;
    return {CHOP_ARRAY[((Y << 16) + 74711 * v + 32768) >> 16],
            CHOP_ARRAY[((Y << 16) - 25821 * u - 38076 * v + 32768) >> 16],
            CHOP_ARRAY[((Y << 16) + 133169 * u + 32768) >> 16]};
}

// J5: 13-bit fractions, not rounded.
constexpr Px formJ5(int Y, int U, int V) {
    const int u = U - 128, v = V - 128;
    return {CHOP_ARRAY[((Y << 13) + 9338 * v) >> 13], CHOP_ARRAY[((Y << 13) - 3227 * u - 4759 * v) >> 13],
            CHOP_ARRAY[((Y << 13) + 16645 * u) >> 13]};
}

// J6, the B, G, R destination of 4:2:0: J1's shape with its own weights.
constexpr Px formJ6(int Y, int U, int V) {
    const int u = 16 * U - 2048, v = 16 * V - 2048, y2 = 2 * Y;
    return {pack(adds(y2, m(9339, v)) >> 1), pack(adds(adds(y2, m(-3228, u)), m(-4760, v)) >> 1),
            pack(adds(y2, m(16646, u)) >> 1)};
}

// ---- 4:2:0, forward forms of a 2x2 cell ------------------------------------------------------

// K1: Y truncated; chroma from the four-pixel sums, biased once by 131071, the
// division by four in the shift by 18.
constexpr Cell4 formK1(Px p00, Px p01, Px p10, Px p11) {
    const int s00 = lumaS(p00), s01 = lumaS(p01), s10 = lumaS(p10), s11 = lumaS(p11);
    const int ss = s00 + s01 + s10 + s11;
    const int sb = p00.c + p01.c + p10.c + p11.c, sr = p00.a + p01.a + p10.a + p11.a;
    const int u = ((((sb << 16) - ss + 131071) >> 16) * 32244 >> 18) + 128;
    const int v = ((((sr << 16) - ss + 131071) >> 16) * 57475 >> 18) + 128;
    return {lowByte(s00 >> 16), lowByte(s01 >> 16), lowByte(s10 >> 16), lowByte(s11 >> 16), lowByte(u), chopped(v)};
}

// K2: 14-bit sums, Y rounded by 2, chroma not rounded.
constexpr Cell4 formK2(Px p00, Px p01, Px p10, Px p11) {
    const auto s = [](Px p) { return 4899 * p.a + 9617 * p.b + 1868 * p.c; };
    const int ss = s(p00) + s(p01) + s(p10) + s(p11);
    const int sb = p00.c + p01.c + p10.c + p11.c, sr = p00.a + p01.a + p10.a + p11.a;
    const int u = ((((sb << 14) - ss) >> 14) * 8061 >> 16) + 128;
    const int v = ((((sr << 14) - ss) >> 14) * 14369 >> 16) + 128;
    return {lowByte((s(p00) + 2) >> 14), lowByte((s(p01) + 2) >> 14), lowByte((s(p10) + 2) >> 14),
            lowByte((s(p11) + 2) >> 14), lowByte(u), chopped(v)};
}

// K3, block stage of the interleaved source: rounding high multiplies of 128x
// samples; the four-pixel luma sum, which needs 16 unsigned bits, halved.
constexpr Cell4 formK3(Px p00, Px p01, Px p10, Px p11) {
    const auto q = [](Px p) { return h(4899, 128 * p.a) + h(9617, 128 * p.b) + h(1868, 128 * p.c); };
    const int half = (q(p00) + q(p01) + q(p10) + q(p11)) >> 1;
    const int sb = p00.c + p01.c + p10.c + p11.c, sr = p00.a + p01.a + p10.a + p11.a;
    return {pack(q(p00) >> 6), pack(q(p01) >> 6), pack(q(p10) >> 6), pack(q(p11) >> 6),
            pack((h(8061, 32 * sb - half) >> 6) + 128), pack((h(14369, 32 * sr - half) >> 6) + 128)};
}

// K4, block stage of the four-sample source: high products of 4x samples.
constexpr Cell4 formK4(Px p00, Px p01, Px p10, Px p11) {
    const auto w = [](Px p) { return m(9798, 4 * p.a) + m(19235, 4 * p.b) + m(3736, 4 * p.c); };
    const int quarter = (w(p00) + w(p01) + w(p10) + w(p11)) >> 2;
    const int sb = p00.c + p01.c + p10.c + p11.c, sr = p00.a + p01.a + p10.a + p11.a;
    return {lowByte(w(p00) >> 1), lowByte(w(p01) >> 1), lowByte(w(p10) >> 1), lowByte(w(p11) >> 1),
            pack(m(16121, ((4 * sb) >> 3) - quarter) + 128), pack(m(28737, ((4 * sr) >> 3) - quarter) + 128)};
}

}  // namespace k0::yuv
