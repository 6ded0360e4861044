// The arithmetic of XYZ and YCC, one scalar function per form. Every vector
// stage of the family computes exactly one of these, and is tested against it
// (bit for bit for the float chains).
#pragma once
#include <immintrin.h>

#include <cmath>
#include <cstdint>

#include "krocc.h"
#include "models/d65.h"

namespace k0::xyzycc {

// Three samples of one pixel, in memory order.
template <class T>
struct Trio {
    T a, b, c;
};

// ---- conversions and limits shared by the forms -----------------------------------

// Toward zero, as cvttss2si / cvttsd2si (0x80000000 when out of range).
inline int32_t truncated(float v) { return _mm_cvtt_ss2si(_mm_set_ss(v)); }
inline int32_t truncated(double v) { return _mm_cvttsd_si32(_mm_set_sd(v)); }
// By the current rounding mode, as cvtss2si.
inline int32_t byMode(float v) { return _mm_cvtss_si32(_mm_set_ss(v)); }

inline int32_t limited(int32_t v, int32_t lo, int32_t hi) { return v < lo ? lo : v > hi ? hi : v; }
inline Kro8u limited8u(int32_t v) { return static_cast<Kro8u>(limited(v, 0, 255)); }
inline Kro16u limited16u(int32_t v) { return static_cast<Kro16u>(limited(v, 0, 65535)); }
// A 16u result as 16s: the bias of 32768 taken off by bit 15.
inline Kro16s unbiased(uint32_t v) { return static_cast<Kro16s>(static_cast<uint16_t>(v) ^ 0x8000); }
// A 16s sample biased to 0..65535.
inline int32_t biased(Kro16s v) { return v + 32768; }

// Maximum with 0, then minimum with 1, as maxps and minps take them: a NaN
// becomes 0, and -0 becomes +0.
inline float unitLimited(float v) {
    v = v > 0.0f ? v : 0.0f;
    return v < 1.0f ? v : 1.0f;
}

// ---- the two float chains of the D65 matrix ----------------------------------------

// Forward 32f and 16u: the middle product first, then the first channel
// fused, then the third fused.
inline float middleFirst(float s0, float s1, float s2, const float (&c)[3]) {
    return std::fma(s2, c[2], std::fma(s0, c[0], s1 * c[1]));
}

// The chain that starts at an addend: the first channel fused into it, then
// the second, then the third.
inline float fromAddend(float s0, float s1, float s2, float c0, float c1, float c2, float addend) {
    return std::fma(s2, c2, std::fma(s1, c1, std::fma(s0, c0, addend)));
}
inline float fromAddend(float s0, float s1, float s2, const float (&c)[3], float addend) {
    return fromAddend(s0, s1, s2, c[0], c[1], c[2], addend);
}

// ---- RGB to XYZ -----------------------------------------------------------------------

inline Trio<Kro32f> rgbToXyz32f(float r, float g, float b) {
    using d65::kRgbToXyz;
    return {middleFirst(r, g, b, kRgbToXyz[0]), middleFirst(r, g, b, kRgbToXyz[1]),
            unitLimited(middleFirst(r, g, b, kRgbToXyz[2]))};
}

// The 32f chain on the samples, truncated, saturated to 0..65535.
inline Trio<Kro16u> rgbToXyz16u(int r, int g, int b) {
    using d65::kRgbToXyz;
    const float fr = static_cast<float>(r), fg = static_cast<float>(g), fb = static_cast<float>(b);
    return {limited16u(truncated(middleFirst(fr, fg, fb, kRgbToXyz[0]))),
            limited16u(truncated(middleFirst(fr, fg, fb, kRgbToXyz[1]))),
            limited16u(truncated(middleFirst(fr, fg, fb, kRgbToXyz[2])))};
}

// Biased samples, the chain from 0.5, truncated; X and Y keep their low 16
// bits, Z is limited to 0..65535.
inline Trio<Kro16s> rgbToXyz16s(Kro16s r, Kro16s g, Kro16s b) {
    using d65::kRgbToXyz;
    const float fr = static_cast<float>(biased(r)), fg = static_cast<float>(biased(g)), fb = static_cast<float>(biased(b));
    return {unbiased(static_cast<uint32_t>(truncated(fromAddend(fr, fg, fb, kRgbToXyz[0], 0.5f)))),
            unbiased(static_cast<uint32_t>(truncated(fromAddend(fr, fg, fb, kRgbToXyz[1], 0.5f)))),
            unbiased(static_cast<uint32_t>(limited(truncated(fromAddend(fr, fg, fb, kRgbToXyz[2], 0.5f)), 0, 65535)))};
}

// 8u weights of the matrix in Q16 (its entries times 65536, truncated) and in
// Q15 (the Q16 weights halved, odd ones rounded up).
inline constexpr int32_t kXyzQ16[3][3] = {{27030, 23434, 11824}, {13937, 46868, 4729}, {1267, 7811, 62274}};
inline constexpr int32_t kXyzQ15[3][3] = {{13515, 11717, 5912}, {6969, 23434, 2365}, {634, 3906, 31137}};
static_assert(kXyzQ15[1][0] * 2 == kXyzQ16[1][0] + 1 && kXyzQ15[2][1] * 2 == kXyzQ16[2][1] + 1);

// The VNNI kernels and the last pixels of the plain kernel: Q16, truncated,
// Z saturated to 255 (X and Y cannot pass it).
inline Trio<Kro8u> rgbToXyzQ16(int r, int g, int b) {
    const auto sum = [&](int i) { return (kXyzQ16[i][0] * r + kXyzQ16[i][1] * g + kXyzQ16[i][2] * b) >> 16; };
    return {static_cast<Kro8u>(sum(0)), static_cast<Kro8u>(sum(1)), limited8u(sum(2))};
}

// The block loop of the plain kernel: Q15, truncated, Z saturated to 255.
inline Trio<Kro8u> rgbToXyzQ15(int r, int g, int b) {
    const auto sum = [&](int i) { return (kXyzQ15[i][0] * r + kXyzQ15[i][1] * g + kXyzQ15[i][2] * b) >> 15; };
    return {static_cast<Kro8u>(sum(0)), static_cast<Kro8u>(sum(1)), limited8u(sum(2))};
}

// ---- XYZ to RGB -----------------------------------------------------------------------

// R and G negate a fused pair, B is the forward order; all limited to [0, 1].
inline Trio<Kro32f> xyzToRgb32f(float x, float y, float z) {
    const float tr = std::fma(x, -3.240479f, y * 1.53715f);
    const float tg = std::fma(y, -1.875991f, x * 0.969256f);
    return {unitLimited(std::fma(z, -0.498535f, -tr)), unitLimited(std::fma(z, 0.041556f, -tg)),
            unitLimited(std::fma(z, 1.057311f, std::fma(x, 0.055648f, y * -0.204043f)))};
}

// The weight of Z in B as a double, for the mixed-precision step of 16u.
inline constexpr double kBfromZ64 = 1.057311;

// R and G: the chain from 0.5, truncated, limited. B: the X and Y terms in
// single precision, widened; Z and 0.5 fused in double; the sum truncated.
inline Trio<Kro16u> xyzToRgb16u(int x, int y, int z) {
    using d65::kXyzToRgb;
    const float fx = static_cast<float>(x), fy = static_cast<float>(y), fz = static_cast<float>(z);
    const float t = std::fma(fx, kXyzToRgb[2][0], fy * kXyzToRgb[2][1]);
    const double u = std::fma(kBfromZ64, static_cast<double>(z), 0.5);
    return {limited16u(truncated(fromAddend(fx, fy, fz, kXyzToRgb[0], 0.5f))),
            limited16u(truncated(fromAddend(fx, fy, fz, kXyzToRgb[1], 0.5f))),
            limited16u(truncated(static_cast<double>(t) + u))};
}

// All three channels by the chain from 0.5 in single precision, on biased samples.
inline Trio<Kro16s> xyzToRgb16s(Kro16s x, Kro16s y, Kro16s z) {
    using d65::kXyzToRgb;
    const float fx = static_cast<float>(biased(x)), fy = static_cast<float>(biased(y)), fz = static_cast<float>(biased(z));
    const auto ch = [&](int i) { return unbiased(limited16u(truncated(fromAddend(fx, fy, fz, kXyzToRgb[i], 0.5f)))); };
    return {ch(0), ch(1), ch(2)};
}

// Signed Q16 with the shift toward minus infinity, limited to 0..255.
inline constexpr int32_t kRgbQ16[3][3] = {{212368, -100738, -32671}, {-63521, 122944, 2723}, {3646, -13372, 69291}};

inline Trio<Kro8u> xyzToRgb8u(int x, int y, int z) {
    const auto ch = [&](int i) { return limited8u((kRgbQ16[i][0] * x + kRgbQ16[i][1] * y + kRgbQ16[i][2] * z) >> 16); };
    return {ch(0), ch(1), ch(2)};
}

// ---- RGB to YCC -----------------------------------------------------------------------

inline Trio<Kro32f> rgbToYcc32f(float r, float g, float b) {
    const float l = std::fma(b, 0.114f, std::fma(0.587f, g, r * 0.299f));
    return {l * 0.7132668f, std::fma(b - l, 0.4368627f, 0.6117647f), std::fma(r - l, 0.53192f, 0.5372549f)};
}

// Chains from the addends, truncated, low 16 bits kept.
inline Trio<Kro16u> rgbToYcc16u(int r, int g, int b) {
    const float fr = static_cast<float>(r), fg = static_cast<float>(g), fb = static_cast<float>(b);
    return {static_cast<Kro16u>(truncated(fromAddend(fr, fg, fb, 0.213267f, 0.418688f, 0.0813124f, 0.5f))),
            static_cast<Kro16u>(truncated(fromAddend(fr, fg, fb, -0.130621f, -0.256437f, 0.387058f, 40092.5f))),
            static_cast<Kro16u>(truncated(fromAddend(fr, fg, fb, 0.372876f, -0.312237f, -0.0606389f, 35209.5f)))};
}

// The luma of 16s: the R and G products summed, then B fused.
inline float luma16s(float r, float g, float b) { return std::fma(b, 0.114f, r * 0.299f + g * 0.587f); }

// 16s in blocks of 4 pixels: no addends, converted by the rounding mode, the
// bias taken off with signed saturation.
inline Trio<Kro16s> rgbToYcc16sBlock(Kro16s r, Kro16s g, Kro16s b) {
    const float fr = static_cast<float>(biased(r)), fg = static_cast<float>(biased(g)), fb = static_cast<float>(biased(b));
    const float l = luma16s(fr, fg, fb);
    const auto out = [](float v) { return static_cast<Kro16s>(limited(byMode(v) - 32768, -32768, 32767)); };
    return {out(l * 0.7132668f), out(std::fma(fb - l, 0.4368627f, 40092.0f)), out(std::fma(fr - l, 0.5319216f, 35209.0f))};
}

// 16s on the last width % 4 pixels: addends (0.49999 for Y), truncated, the
// low 16 bits toggled.
inline Trio<Kro16s> rgbToYcc16sTail(Kro16s r, Kro16s g, Kro16s b) {
    const float fr = static_cast<float>(biased(r)), fg = static_cast<float>(biased(g)), fb = static_cast<float>(biased(b));
    const float l = luma16s(fr, fg, fb);
    const auto out = [](float v) { return unbiased(static_cast<uint32_t>(truncated(v))); };
    return {out(std::fma(l, 0.7132668f, 0.49999f)), out(std::fma(fb - l, 0.4368627f, 40092.5f)),
            out(std::fma(fr - l, 0.5319216f, 35209.5f))};
}

// Two stages: Q14 weights shifted to Q4, then the scale in Q16 and the offset.
inline Trio<Kro8u> rgbToYcc8u(int r, int g, int b) {
    const int32_t y = (((4898 * r + 9617 * g + 1867 * b) >> 10) * 2921) >> 16;
    const int32_t c1 = ((((-4898 * r - 9617 * g + 14517 * b) >> 10) * 1789) >> 16) + 156;
    const int32_t c2 = ((((11486 * r - 9617 * g - 1867 * b) >> 10) * 2178) >> 16) + 137;
    return {static_cast<Kro8u>(y), static_cast<Kro8u>(c1), static_cast<Kro8u>(c2)};
}

// ---- YCC to RGB -----------------------------------------------------------------------

inline Trio<Kro32f> yccToRgb32f(float y, float c1, float c2) {
    const float a = std::fma(c2, 1.8215f, -0.9786098f);
    const float b = std::fma(c1, 2.2179f, -1.356833f);
    const float l = y * 1.3584f;
    return {unitLimited(a + l), unitLimited(std::fma(b, -0.194f, l) + a * -0.509f), unitLimited(b + l)};
}

// The integer inverse after its offsets: y on 0..65535, c1 and c2 centred.
inline Trio<Kro16u> yccToRgbCentred(int y, float c1, float c2) {
    const float l = std::fma(static_cast<float>(y), 1.3584f, 0.5f);
    return {limited16u(truncated(std::fma(c2, 1.8215f, l))),
            limited16u(truncated(std::fma(c2, -0.92714345f, std::fma(c1, -0.4302726f, l)))),
            limited16u(truncated(std::fma(c1, 2.2179f, l)))};
}

inline Trio<Kro16u> yccToRgb16u(int y, int c1, int c2) {
    return yccToRgbCentred(y, static_cast<float>(c1 - 40092), static_cast<float>(c2 - 35209));
}

// The 16u form on a biased Y, with the chroma offsets less the bias.
inline Trio<Kro16s> yccToRgb16s(Kro16s y, Kro16s c1, Kro16s c2) {
    const Trio<Kro16u> v = yccToRgbCentred(biased(y), static_cast<float>(c1 - 7324), static_cast<float>(c2 - 2441));
    return {unbiased(v.a), unbiased(v.b), unbiased(v.c)};
}

// The addends are 137 * 7460 and 156 * 9084: they undo the forward offsets.
inline Trio<Kro8u> yccToRgb8u(int y, int c1, int c2) {
    const int32_t p = 5564 * y, q = 7460 * c2 - 1022020, r = 9084 * c1 - 1417104;
    return {limited8u((p + q) >> 12), limited8u(((r >> 8) * -794 + (q >> 8) * -2084 + 89024 * y) >> 16), limited8u((p + r) >> 12)};
}

}  // namespace k0::xyzycc
