// The integer forms that only the subsampling encoders use, each written once
// in scalar form. Short and Long (per pixel and over a cell's sums) come from
// ycbcr_forms.h; the vector stages of enc_vec.h compute the forms below lane
// by lane and are tested against them.
//
// A cell is two adjacent pixels (4:2:2), two by two (4:2:0) or four adjacent
// pixels (4:1:1); SR, SG, SB are the plain sums of its samples.
#pragma once
#include <array>
#include <cstdint>

#include "ycbcr/ycbcr_forms.h"

namespace k0::ycbcr {

// ---- Long over a cell -----------------------------------------------------------------

// Long2: a pair's sums at scale 65536 * 2, K given by the member: 0x1010000
// is 128.5, 0x1004000 only 128.125.
inline constexpr int kLong2Eighth = 0x1004000;
inline constexpr int kLong2Half = 0x1010000;
constexpr int formLong2(const Row3& k, int SR, int SG, int SB, int K) { return (dot(k, SR, SG, SB) + K) >> 17; }

// Long4: four pixels' sums; 0x2008000 is 128.125 at this scale.
constexpr int formLong4(const Row3& k, int SR, int SG, int SB) { return (dot(k, SR, SG, SB) + 0x2008000) >> 18; }

// Long with other addends, for single samples at the end of a row: chroma
// with 128.125 (0x802000), and luma with 16 and no half (0x100000).
constexpr int formLongChromaEighth(const Row3& k, int R, int G, int B) { return (dot(k, R, G, B) + 0x802000) >> 16; }
constexpr int formLongLumaNoHalf(int R, int G, int B) { return (dot(kY, R, G, B) + 0x100000) >> 16; }

// ---- Rounded: the rounding high product, scale 32768 --------------------------------------

// R(a, b) = (a * b + 16384) >> 15.
constexpr int R15(int a, int b) { return (a * b + 16384) >> 15; }

// A chroma row as main * P - (g * G + side * Q): P is B and Q is R for Cb,
// P is R and Q is B for Cr. The two products are rounded on their own and
// subtracted as one sum.
struct DiffRow { int main, g, side; };
inline constexpr Row3 kRoundY{4211, 8258, 1606};
inline constexpr DiffRow kRoundCb{7193, 4768, 2425};
inline constexpr DiffRow kRoundCr{7193, 6029, 1163};
// The quarter-weight rows of the filtered chroma.
inline constexpr DiffRow kOddCb{3596, 2384, 1212};
inline constexpr DiffRow kOddCr{3596, 3015, 582};

constexpr int roundedDiff(const DiffRow& k, int p, int g, int q) { return R15(p, k.main) - (R15(g, k.g) + R15(q, k.side)); }
constexpr int roundedLumaSum(int R, int G, int B) {
    return R15(R * 128, kRoundY.r) + R15(G * 128, kRoundY.g) + R15(B * 128, kRoundY.b);
}

// Rounded, for 4:2:0: luma per pixel, chroma on the cell's sums scaled by 32.
constexpr int formRoundedLuma(int R, int G, int B) { return (roundedLumaSum(R, G, B) + 1026) >> 6; }
constexpr int formRoundedCb(int SR, int SG, int SB) { return (roundedDiff(kRoundCb, SB * 32, SG * 32, SR * 32) + 8194) >> 6; }
constexpr int formRoundedCr(int SR, int SG, int SB) { return (roundedDiff(kRoundCr, SR * 32, SG * 32, SB * 32) + 8194) >> 6; }

// ---- the filtered chroma of the packed Cb Y Cr stream ------------------------------------------

// Per pixel: the even term E at half weight and the odd term O at quarter
// weight, 16-bit values on samples scaled by 128.
constexpr int filterECb(int R, int G, int B) { return roundedDiff(kRoundCb, B * 128, G * 128, R * 128); }
constexpr int filterECr(int R, int G, int B) { return roundedDiff(kRoundCr, R * 128, G * 128, B * 128); }
constexpr int filterOCb(int R, int G, int B) { return roundedDiff(kOddCb, B * 128, G * 128, R * 128); }
constexpr int filterOCr(int R, int G, int B) { return roundedDiff(kOddCr, R * 128, G * 128, B * 128); }

// Chroma of pair i from E(2i), O(2i+1) and O(2i-1) (zero before the row).
constexpr int formFilteredChroma(int e, int oNext, int oPrev) { return clamp8((e + oNext + oPrev + 0x4040) >> 7); }
// Its luma: the Rounded sum with the addend 1056.
constexpr int formFilteredLuma(int R, int G, int B) { return (roundedLumaSum(R, G, B) + 1056) >> 6; }

// The same filter in 32 bits for the pairs after the vector blocks, with
// c(x) the Long chroma sum of pixel x without offset: `prevQuarter` is
// c(2i-1) >> 2, or the carried odd term O(2i-1) * 512 at the first such pair.
constexpr int formFilteredPairLong(int prevQuarter, int cEven, int cOdd) {
    return (prevQuarter + (cEven >> 1) + (cOdd >> 2) + 0x808000) >> 16;
}
constexpr int filterCarry(int oPrev) { return oPrev * 512; }

// ---- Dot: exact in 32 bits, truncating -------------------------------------------------------

inline constexpr Row3 kDotCb{-2425, -4768, 7193};
inline constexpr Row3 kDotCr{7193, -6029, -1163};
constexpr int formDotLuma(int R, int G, int B) { return (dot(kRoundY, R, G, B) + 262144) >> 14; }
constexpr int formDotChroma(const Row3& k, int SR, int SG, int SB) { return (dot(k, SR, SG, SB) + 8388608) >> 16; }

// ---- the gamma member ---------------------------------------------------------------------

// Plain integer rows at scale 32768; luma is the 16-bit luma row kY15.
inline constexpr Row3 kGammaECb{-2426, -4769, 7193};
inline constexpr Row3 kGammaOCb{-1213, -2385, 3596};
inline constexpr Row3 kGammaECr{7193, -6030, -1164};
inline constexpr Row3 kGammaOCr{3596, -3015, -582};
constexpr int formGammaLuma(int R, int G, int B) { return clamp8((dot(kY15, R, G, B) + 0x84000) >> 15); }
// 0x403FFF is 128.5 at this scale, less one.
constexpr int formGammaChroma(int e, int oNext, int oPrev) { return clamp8((e + oNext + oPrev + 0x403FFF) >> 15); }

// The transfer curve g(x) = 4.5 x below 0.018, else 1.099 x^0.45 - 0.099,
// as 256 entries round-half-even(255 g(i / 255)).
namespace gamma {
constexpr double expc(double x) {  // e^x for |x| <= 8
    int halvings = 0;
    while (x > 0.5 || x < -0.5) x *= 0.5, ++halvings;
    double term = 1, sum = 1;
    for (int n = 1; n < 30; ++n) term *= x / n, sum += term;
    while (halvings-- > 0) sum *= sum;
    return sum;
}
constexpr double lnc(double x) {  // ln x for x > 0, by atanh of (x - 1) / (x + 1)
    int twos = 0;
    while (x > 1.5) x *= 0.5, ++twos;
    while (x < 0.75) x *= 2, --twos;
    const double z = (x - 1) / (x + 1), z2 = z * z;
    double term = z, sum = 0;
    for (int n = 1; n < 80; n += 2) sum += term / n, term *= z2;
    return 2 * sum + twos * 0.69314718055994530942;
}
constexpr int roundHalfEven(double v) {
    const int f = static_cast<int>(v);
    const double frac = v - f;
    return frac > 0.5 || (frac == 0.5 && (f & 1)) ? f + 1 : f;
}
constexpr std::array<int32_t, 256> makeTableFwd8u() {
    std::array<int32_t, 256> t{};
    for (int i = 0; i < 256; ++i) {
        const double x = i / 255.0;
        // 255 * 4.5 * i / 255 is 4.5 * i exactly.
        const double v = x < 0.018 ? 4.5 * i : 255 * (1.099 * expc(0.45 * lnc(x)) - 0.099);
        const int e = roundHalfEven(v);
        t[i] = e > 255 ? 255 : e;
    }
    return t;
}
}  // namespace gamma

alignas(64) inline constexpr std::array<int32_t, 256> tableFwd8u = gamma::makeTableFwd8u();
static_assert(tableFwd8u[0] == 0 && tableFwd8u[1] == 4 && tableFwd8u[3] == 14 && tableFwd8u[11] == 43 &&
              tableFwd8u[250] == 253 && tableFwd8u[255] == 255);

// ---- the stated values, checked at compile time ---------------------------------------------

static_assert(formRoundedLuma(255, 255, 255) == 235 && formRoundedLuma(0, 0, 0) == 16);
static_assert(formRoundedCb(1020, 1020, 1020) == 128 && formRoundedCr(0, 0, 0) == 128);
static_assert(formDotLuma(255, 255, 255) == 235 && formDotLuma(0, 0, 0) == 16);
static_assert(formDotChroma(kDotCb, 1020, 1020, 1020) == 128 && formDotChroma(kDotCr, 0, 0, 0) == 128);
static_assert(formLong4(kCb, 1020, 1020, 1020) == 128 && formLong2(kCr, 510, 510, 510, kLong2Eighth) == 128);

}  // namespace k0::ycbcr
