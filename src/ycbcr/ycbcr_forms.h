// The integer forms of every YCbCr conversion of the library (BT.601, studio
// range: luma 16..235, chroma 16..240 around 128), each written once in scalar
// form. The vector stages of ycbcr_vec.h compute exactly the same arithmetic
// and are tested against these; the subsampled families build their cells on
// the same functions.
//
// Notation: H(a, b) = floor(a * b / 65536), the high half of a 16x16-bit
// product; `>>` on signed values rounds toward minus infinity.
//
// Forward forms give Y, Cb, Cr in range without a clamp. Inverse forms clamp
// to 0..255: the 16-bit forms as the unsigned saturating pack does, the 32-bit
// forms through the saturation table.
#pragma once
#include <cstdint>

#include "chop.h"

namespace k0::ycbcr {

struct Px { uint8_t a, b, c; };  // (Y, Cb, Cr) or (R, G, B)

// Weights of one output over three inputs.
struct Row3 { int r, g, b; };

constexpr int H(int a, int b) { return static_cast<int>((static_cast<int64_t>(a) * b) >> 16); }
constexpr uint8_t clamp8(int v) { return static_cast<uint8_t>(v < 0 ? 0 : v > 255 ? 255 : v); }
constexpr uint8_t u8(int v) { return static_cast<uint8_t>(v); }

// ---- forward matrix ---------------------------------------------------------------

// Scale 65536.
inline constexpr Row3 kY{16843, 33030, 6423};
inline constexpr Row3 kCb{-9699, -19071, 28770};
inline constexpr Row3 kCr{28770, -24117, -4653};
// The luma of the 16-bit form at scale 32768: the row above halved and
// rounded (8422 and 3212 are not exact halves).
inline constexpr Row3 kY15{8422, 16515, 3212};

constexpr int dot(const Row3& k, int r, int g, int b) { return k.r * r + k.g * g + k.b * b; }
// The three high products of a 16-bit sum.
constexpr int sumH(const Row3& k, int r, int g, int b) { return H(r, k.r) + H(g, k.g) + H(b, k.b); }

// Short: 16-bit products; luma on samples scaled by 256 (unsigned factors),
// chroma on samples scaled by 128. 2112 is 16.5 and 0x4040 is 128.5 in
// units of 1/128.
constexpr int formShortLuma(int R, int G, int B) { return (sumH(kY15, R * 256, G * 256, B * 256) + 2112) >> 7; }
// Chroma from inputs already scaled: R * 128 for a pixel, or a cell's sum
// scaled so that it stays within 0..32640.
constexpr int formShortChroma(const Row3& k, int r, int g, int b) { return (sumH(k, r, g, b) + 0x4040) >> 7; }
constexpr Px formShort(int R, int G, int B) {
    return {u8(formShortLuma(R, G, B)), u8(formShortChroma(kCb, R * 128, G * 128, B * 128)),
            u8(formShortChroma(kCr, R * 128, G * 128, B * 128))};
}

// Long: 32-bit sums at scale 65536, one truncation. 0x108000 and 0x808000 are
// 16.5 and 128.5.
constexpr int formLongLuma(int R, int G, int B) { return (dot(kY, R, G, B) + 0x108000) >> 16; }
constexpr int formLongChroma(const Row3& k, int R, int G, int B) { return (dot(k, R, G, B) + 0x808000) >> 16; }
constexpr Px formLong(int R, int G, int B) {
    return {u8(formLongLuma(R, G, B)), u8(formLongChroma(kCb, R, G, B)), u8(formLongChroma(kCr, R, G, B))};
}

// Short-P: the 65536-scale rows in 16-bit products (33030 as an unsigned
// factor), rounded before the shift and offset after it.
constexpr int formShortPLuma(int R, int G, int B) { return ((sumH(kY, R * 256, G * 256, B * 256) + 128) >> 8) + 16; }
constexpr int formShortPChroma(const Row3& k, int r, int g, int b) { return ((sumH(k, r, g, b) + 64) >> 7) + 128; }
constexpr Px formShortP(int R, int G, int B) {
    return {u8(formShortPLuma(R, G, B)), u8(formShortPChroma(kCb, R * 128, G * 128, B * 128)),
            u8(formShortPChroma(kCr, R * 128, G * 128, B * 128))};
}

// ---- inverse, 16-bit --------------------------------------------------------------

// Samples at scale 128, centred: Y' = Y*128 - 2048, C' = C*128 - 16384.
constexpr int primeY(int Y) { return Y * 128 - 2048; }
constexpr int primeC(int C) { return C * 128 - 16384; }

// Short-8: scale 4096, three fractional bits after H, rounded by 4; G
// subtracts one positive sum.
constexpr Px formShort8(int Y, int Cb, int Cr) {
    const int yq = H(primeY(Y), 4769), cb = primeC(Cb), cr = primeC(Cr);
    return {clamp8((yq + H(cr, 6537) + 4) >> 3), clamp8((yq - (H(cb, 1605) + H(cr, 3330)) + 4) >> 3),
            clamp8((yq + H(cb, 8263) + 4) >> 3)};
}

// Short-16T: scale 8192, no rounding addend; G adds two negative products,
// each floored on its own.
constexpr Px formShort16T(int Y, int Cb, int Cr) {
    const int yq = H(primeY(Y), 9536), cb = primeC(Cb), cr = primeC(Cr);
    return {clamp8((yq + H(cr, 13074)) >> 4), clamp8((yq + H(cb, -3203) + H(cr, -6660)) >> 4),
            clamp8((yq + H(cb, 16523)) >> 4)};
}

// Short-16R: scale 8192, rounded by 8; G subtracts one positive sum.
constexpr Px formShort16R(int Y, int Cb, int Cr) {
    const int yq = H(primeY(Y), 9535), cb = primeC(Cb), cr = primeC(Cr);
    return {clamp8((yq + H(cr, 13074) + 8) >> 4), clamp8((yq - (H(cb, 3211) + H(cr, 6660)) + 8) >> 4),
            clamp8((yq + H(cb, 16523) + 8) >> 4)};
}

// ---- inverse, 32-bit --------------------------------------------------------------

// The long inverse forms share one shape at scale 65536, with y = Y - 16,
// u = Cb - 128, v = Cr - 128:
//   R = (kY y + kR v + a) >> 16, G = (kY y + kGu u + kGv v + b) >> 16,
//   B = (kY y + kB u + c) >> 16, each clamped through the saturation table
// (the sums stay within -277..534, well inside it).
struct InvRows { int kY, kR, kGu, kGv, kB, a, b, c; };

inline constexpr InvRows kLongA{76282, 104593, -25689, -53279, 132184, 0x8000, 0x8000, 0x8000};
inline constexpr InvRows kLongB{76284, 104595, -25690, -53281, 132186, 0x8000, 0x8000, 0x8000};
inline constexpr InvRows kLongB0{76284, 104595, -25690, -53281, 132186, 0, 0, 0};
inline constexpr InvRows kLongB57{76284, 104595, -25690, -53281, 132186, -57, -14, -13};
inline constexpr InvRows kLongC{76294, 104595, -25625, -53281, 132186, 0x8000, 0x8000, 0x8000};

constexpr Px longInverse(const InvRows& k, int Y, int Cb, int Cr) {
    const int y = k.kY * (Y - 16), u = Cb - 128, v = Cr - 128;
    return {CHOP_ARRAY[(y + k.kR * v + k.a) >> 16], CHOP_ARRAY[(y + k.kGu * u + k.kGv * v + k.b) >> 16],
            CHOP_ARRAY[(y + k.kB * u + k.c) >> 16]};
}

constexpr Px formLongA(int Y, int Cb, int Cr) { return longInverse(kLongA, Y, Cb, Cr); }
constexpr Px formLongB(int Y, int Cb, int Cr) { return longInverse(kLongB, Y, Cb, Cr); }
constexpr Px formLongB0(int Y, int Cb, int Cr) { return longInverse(kLongB0, Y, Cb, Cr); }
constexpr Px formLongB57(int Y, int Cb, int Cr) { return longInverse(kLongB57, Y, Cb, Cr); }
constexpr Px formLongC(int Y, int Cb, int Cr) { return longInverse(kLongC, Y, Cb, Cr); }

// ---- the stated values, checked at compile time -------------------------------------

static_assert(formLongLuma(255, 255, 255) == 235 && formLongChroma(kCb, 255, 255, 255) == 128 &&
              formLongChroma(kCr, 255, 255, 255) == 128);
static_assert(formLongLuma(0, 0, 0) == 16 && formLongChroma(kCb, 0, 0, 0) == 128 && formLongChroma(kCr, 0, 0, 0) == 128);
static_assert(formLongA(235, 128, 128).a == 255 && formLongB(235, 128, 128).c == 255);
static_assert(formShort8(16, 128, 128).b == 0 && formShort16T(16, 128, 128).a == 0 && formLongB57(16, 128, 128).c == 0);

}  // namespace k0::ycbcr
