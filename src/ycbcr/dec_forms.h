// The integer forms that only the subsampled YCbCr-to-RGB members use, each
// written once in scalar form beside the shared forms of ycbcr_forms.h. The
// vector stages of dec_vec.h compute the same arithmetic and are tested
// against these.
#pragma once
#include "ycbcr/ycbcr_forms.h"

namespace k0::ycbcr {

// Short-8U: Short-8's coefficients on uncentred samples (Y * 128, C * 128).
// The centring and the rounding 4 are folded into one addend per output;
// since the products are floored before it, this is not always Short-8.
inline constexpr int kShort8UAddR = -1779, kShort8UAddG = 1089, kShort8UAddB = -2211;
constexpr Px formShort8U(int Y, int Cb, int Cr) {
    const int yq = H(Y * 128, 4769), cb = Cb * 128, cr = Cr * 128;
    return {clamp8((yq + H(cr, 6537) + kShort8UAddR) >> 3),
            clamp8((yq - H(cb, 1605) - H(cr, 3330) + kShort8UAddG) >> 3),
            clamp8((yq + H(cb, 8263) + kShort8UAddB) >> 3)};
}

// Short-8 without its rounding addend: the vector blocks of the filtered
// 4:2:0 member.
constexpr Px formShort8Trunc(int Y, int Cb, int Cr) {
    const int yq = H(primeY(Y), 4769), cb = primeC(Cb), cr = primeC(Cr);
    return {clamp8((yq + H(cr, 6537)) >> 3), clamp8((yq - (H(cb, 1605) + H(cr, 3330))) >> 3),
            clamp8((yq + H(cb, 8263)) >> 3)};
}

// The scalar pairs of the filtered 4:2:0 member: 32-bit sums at scale 4096,
// no rounding term, clamped through the saturation table.
constexpr Px formScale4096(int Y, int Cb, int Cr) {
    const int y = 4769 * (Y - 16), u = Cb - 128, v = Cr - 128;
    return {CHOP_ARRAY[(y + 6537 * v) >> 12], CHOP_ARRAY[(y - 1605 * u - 3330 * v) >> 12],
            CHOP_ARRAY[(y + 8263 * u) >> 12]};
}

// One chroma byte c serving as both Cb and Cr, G's two coefficients taken as
// one: Long-A's (the last odd pixel of the four-byte YCbCr 4:2:2 members) and
// Long-B57's (the whole-image path of the YCbCr 4:2:2 planar member at
// width 1).
inline constexpr int kLongASingleG = -78968, kLongB57SingleG = -78971;
static_assert(kLongASingleG == kLongA.kGu + kLongA.kGv && kLongB57SingleG == kLongB57.kGu + kLongB57.kGv);

constexpr Px singleChroma(const InvRows& k, int singleG, int Y, int C) {
    const int y = k.kY * (Y - 16), c = C - 128;
    return {CHOP_ARRAY[(y + k.kR * c + k.a) >> 16], CHOP_ARRAY[(y + singleG * c + k.b) >> 16],
            CHOP_ARRAY[(y + k.kB * c + k.c) >> 16]};
}
constexpr Px formLongASingleG(int Y, int C) { return singleChroma(kLongA, kLongASingleG, Y, C); }
constexpr Px formLongB57SingleG(int Y, int C) { return singleChroma(kLongB57, kLongB57SingleG, Y, C); }

// ---- the stated values ----------------------------------------------------------------
static_assert(formShort8U(16, 128, 128).a == 0 && formShort8U(16, 128, 128).b == 0 && formShort8U(16, 128, 128).c == 0);
static_assert(formShort8U(235, 128, 128).a == 255 && formShort8U(235, 128, 128).b == 255 &&
              formShort8U(235, 128, 128).c == 255);
static_assert(formScale4096(16, 128, 128).b == 0 && formScale4096(235, 128, 128).b == 254);

}  // namespace k0::ycbcr
