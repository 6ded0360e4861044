// The forms of xyzycc_forms.h on 16 pixels at a time, in 32-bit lanes. Each
// functor computes exactly the arithmetic of the scalar form it is named
// after; the float chains keep their order and their fused steps.
#pragma once
#include <immintrin.h>

#include "models/xyzycc_forms.h"
#include "models/xyzycc_lanes.h"

namespace k0::xyzycc::vec {

// ---- lane helpers -------------------------------------------------------------------------

KRO_INLINE __m512i ki(int v) { return _mm512_set1_epi32(v); }
KRO_INLINE __m512 kf(float v) { return _mm512_set1_ps(v); }
KRO_INLINE __m512i add(__m512i a, __m512i b) { return _mm512_add_epi32(a, b); }
KRO_INLINE __m512i mul(__m512i a, int k) { return _mm512_mullo_epi32(a, ki(k)); }
KRO_INLINE __m512i limit(__m512i v, int lo, int hi) { return _mm512_min_epi32(_mm512_max_epi32(v, ki(lo)), ki(hi)); }
// Bit 15 toggled: a 16s sample biased, or a result unbiased.
KRO_INLINE __m512i flip15(__m512i v) { return _mm512_xor_si512(v, ki(0x8000)); }
// Two 16-bit weights as the pair of words of each lane, for vpmaddwd.
KRO_INLINE __m512i pair(int lo, int hi) { return ki(static_cast<int>((static_cast<unsigned>(hi) << 16) | (static_cast<unsigned>(lo) & 0xFFFF))); }
// Channels a and b of 0..255 as the pair of words of each lane.
KRO_INLINE __m512i pairAB(const Vi3& v) { return _mm512_or_si512(v.a, _mm512_slli_epi32(v.b, 16)); }

KRO_INLINE __m512 toFloat(__m512i v) { return _mm512_cvtepi32_ps(v); }
KRO_INLINE Vf3 toFloat(const Vi3& v) { return {toFloat(v.a), toFloat(v.b), toFloat(v.c)}; }
KRO_INLINE __m512i truncated(__m512 v) { return _mm512_cvttps_epi32(v); }
KRO_INLINE __m512i byMode(__m512 v) { return _mm512_cvtps_epi32(v); }
KRO_INLINE __m512i limited16u(__m512i v) { return limit(v, 0, 65535); }
KRO_INLINE __m512 fma(__m512 a, float b, __m512 c) { return _mm512_fmadd_ps(a, kf(b), c); }
KRO_INLINE __m512 fma(__m512 a, float b, float c) { return _mm512_fmadd_ps(a, kf(b), kf(c)); }
KRO_INLINE __m512 mul(__m512 a, float b) { return _mm512_mul_ps(a, kf(b)); }
KRO_INLINE __m512 negated(__m512 v) { return _mm512_xor_ps(v, kf(-0.0f)); }
KRO_INLINE __m512 unitLimited(__m512 v) { return _mm512_min_ps(_mm512_max_ps(v, _mm512_setzero_ps()), kf(1.0f)); }

// The two chains of the D65 matrix.
KRO_INLINE __m512 middleFirst(const Vf3& s, const float (&c)[3]) {
    return fma(s.c, c[2], fma(s.a, c[0], mul(s.b, c[1])));
}
KRO_INLINE __m512 fromAddend(const Vf3& s, float c0, float c1, float c2, float addend) {
    return fma(s.c, c2, fma(s.b, c1, fma(s.a, c0, addend)));
}
KRO_INLINE __m512 fromAddend(const Vf3& s, const float (&c)[3], float addend) { return fromAddend(s, c[0], c[1], c[2], addend); }

// ---- RGB to XYZ ---------------------------------------------------------------------------

struct RgbToXyz32f {
    KRO_INLINE Vf3 operator()(const Vf3& s) const {
        using d65::kRgbToXyz;
        return {middleFirst(s, kRgbToXyz[0]), middleFirst(s, kRgbToXyz[1]), unitLimited(middleFirst(s, kRgbToXyz[2]))};
    }
};

struct RgbToXyz16u {
    KRO_INLINE Vi3 operator()(const Vi3& v) const {
        using d65::kRgbToXyz;
        const Vf3 s = toFloat(v);
        return {limited16u(truncated(middleFirst(s, kRgbToXyz[0]))), limited16u(truncated(middleFirst(s, kRgbToXyz[1]))),
                limited16u(truncated(middleFirst(s, kRgbToXyz[2])))};
    }
};

struct RgbToXyz16s {
    KRO_INLINE Vi3 operator()(const Vi3& v) const {
        using d65::kRgbToXyz;
        const Vf3 s = toFloat(Vi3{flip15(v.a), flip15(v.b), flip15(v.c)});
        return {flip15(truncated(fromAddend(s, kRgbToXyz[0], 0.5f))), flip15(truncated(fromAddend(s, kRgbToXyz[1], 0.5f))),
                flip15(limited16u(truncated(fromAddend(s, kRgbToXyz[2], 0.5f))))};
    }
};

// Q15 by word multiply-adds: (R, G) against a pair of weights, B against one.
struct RgbToXyzQ15 {
    KRO_INLINE Vi3 operator()(const Vi3& v) const {
        const __m512i rg = pairAB(v);
        const auto sum = [&](int i) {
            const __m512i s = add(_mm512_madd_epi16(rg, pair(kXyzQ15[i][0], kXyzQ15[i][1])), _mm512_madd_epi16(v.c, pair(kXyzQ15[i][2], 0)));
            return _mm512_srli_epi32(s, 15);
        };
        return {sum(0), sum(1), _mm512_min_epi32(sum(2), ki(255))};
    }
};

// Q16 by 32-bit products (46868 and 62274 are no 16-bit factors).
struct RgbToXyzQ16 {
    KRO_INLINE Vi3 operator()(const Vi3& v) const {
        const auto sum = [&](int i) {
            return _mm512_srli_epi32(add(add(mul(v.a, kXyzQ16[i][0]), mul(v.b, kXyzQ16[i][1])), mul(v.c, kXyzQ16[i][2])), 16);
        };
        return {sum(0), sum(1), _mm512_min_epi32(sum(2), ki(255))};
    }
};

// ---- XYZ to RGB ---------------------------------------------------------------------------

struct XyzToRgb32f {
    KRO_INLINE Vf3 operator()(const Vf3& s) const {
        const __m512 tr = fma(s.a, -3.240479f, mul(s.b, 1.53715f));
        const __m512 tg = fma(s.b, -1.875991f, mul(s.a, 0.969256f));
        return {unitLimited(fma(s.c, -0.498535f, negated(tr))),
                unitLimited(fma(s.c, 0.041556f, negated(tg))),
                unitLimited(fma(s.c, 1.057311f, fma(s.a, 0.055648f, mul(s.b, -0.204043f))))};
    }
};

struct XyzToRgb16u {
    // B: single-precision X and Y terms widened, Z fused with 0.5 in double.
    static KRO_INLINE __m256i blue(__m256 t, __m256i z) {
        const __m512d u = _mm512_fmadd_pd(_mm512_set1_pd(kBfromZ64), _mm512_cvtepi32_pd(z), _mm512_set1_pd(0.5));
        return _mm512_cvttpd_epi32(_mm512_add_pd(_mm512_cvtps_pd(t), u));
    }
    KRO_INLINE Vi3 operator()(const Vi3& v) const {
        using d65::kXyzToRgb;
        const Vf3 s = toFloat(v);
        const __m512 t = fma(s.a, kXyzToRgb[2][0], mul(s.b, kXyzToRgb[2][1]));
        const __m512i b = _mm512_inserti64x4(_mm512_castsi256_si512(blue(_mm512_castps512_ps256(t), _mm512_castsi512_si256(v.c))),
                                             blue(_mm512_extractf32x8_ps(t, 1), _mm512_extracti64x4_epi64(v.c, 1)), 1);
        return {limited16u(truncated(fromAddend(s, kXyzToRgb[0], 0.5f))), limited16u(truncated(fromAddend(s, kXyzToRgb[1], 0.5f))),
                limited16u(b)};
    }
};

struct XyzToRgb16s {
    KRO_INLINE Vi3 operator()(const Vi3& v) const {
        using d65::kXyzToRgb;
        const Vf3 s = toFloat(Vi3{flip15(v.a), flip15(v.b), flip15(v.c)});
        const auto ch = [&](int i) { return flip15(limited16u(truncated(fromAddend(s, kXyzToRgb[i], 0.5f)))); };
        return {ch(0), ch(1), ch(2)};
    }
};

// Arithmetic shift by 16, limited to 0..255 (the weights need 32-bit products).
struct XyzToRgb8u {
    KRO_INLINE Vi3 operator()(const Vi3& v) const {
        const auto ch = [&](int i) {
            const __m512i s = add(add(mul(v.a, kRgbQ16[i][0]), mul(v.b, kRgbQ16[i][1])), mul(v.c, kRgbQ16[i][2]));
            return limit(_mm512_srai_epi32(s, 16), 0, 255);
        };
        return {ch(0), ch(1), ch(2)};
    }
};

// ---- RGB to YCC ---------------------------------------------------------------------------

struct RgbToYcc32f {
    KRO_INLINE Vf3 operator()(const Vf3& s) const {
        const __m512 l = fma(s.c, 0.114f, fma(s.b, 0.587f, mul(s.a, 0.299f)));
        return {mul(l, 0.7132668f), fma(_mm512_sub_ps(s.c, l), 0.4368627f, 0.6117647f),
                fma(_mm512_sub_ps(s.a, l), 0.53192f, 0.5372549f)};
    }
};

struct RgbToYcc16u {
    KRO_INLINE Vi3 operator()(const Vi3& v) const {
        const Vf3 s = toFloat(v);
        return {truncated(fromAddend(s, 0.213267f, 0.418688f, 0.0813124f, 0.5f)),
                truncated(fromAddend(s, -0.130621f, -0.256437f, 0.387058f, 40092.5f)),
                truncated(fromAddend(s, 0.372876f, -0.312237f, -0.0606389f, 35209.5f))};
    }
};

// The biased samples of 16s as floats, and their luma.
KRO_INLINE Vf3 biasedFloats(const Vi3& v) { return toFloat(Vi3{flip15(v.a), flip15(v.b), flip15(v.c)}); }
KRO_INLINE __m512 luma16s(const Vf3& s) { return fma(s.c, 0.114f, _mm512_add_ps(mul(s.a, 0.299f), mul(s.b, 0.587f))); }

struct RgbToYcc16sBlock {
    static KRO_INLINE __m512i out(__m512 v) { return limit(_mm512_sub_epi32(byMode(v), ki(32768)), -32768, 32767); }
    KRO_INLINE Vi3 operator()(const Vi3& v) const {
        const Vf3 s = biasedFloats(v);
        const __m512 l = luma16s(s);
        return {out(mul(l, 0.7132668f)), out(fma(_mm512_sub_ps(s.c, l), 0.4368627f, 40092.0f)),
                out(fma(_mm512_sub_ps(s.a, l), 0.5319216f, 35209.0f))};
    }
};

struct RgbToYcc16sTail {
    static KRO_INLINE __m512i out(__m512 v) { return flip15(truncated(v)); }
    KRO_INLINE Vi3 operator()(const Vi3& v) const {
        const Vf3 s = biasedFloats(v);
        const __m512 l = luma16s(s);
        return {out(fma(l, 0.7132668f, 0.49999f)), out(fma(_mm512_sub_ps(s.c, l), 0.4368627f, 40092.5f)),
                out(fma(_mm512_sub_ps(s.a, l), 0.5319216f, 35209.5f))};
    }
};

// Both stages by word multiply-adds: the Q4 value (at most 3615 in magnitude)
// sits in the low word of its lane and meets the scale there alone.
struct RgbToYcc8u {
    KRO_INLINE Vi3 operator()(const Vi3& v) const {
        const __m512i rg = pairAB(v);
        const auto ch = [&](int wr, int wg, int wb, int scale, int offset) {
            const __m512i q4 = _mm512_srai_epi32(add(_mm512_madd_epi16(rg, pair(wr, wg)), _mm512_madd_epi16(v.c, pair(wb, 0))), 10);
            return add(_mm512_srai_epi32(_mm512_madd_epi16(q4, pair(scale, 0)), 16), ki(offset));
        };
        return {ch(4898, 9617, 1867, 2921, 0), ch(-4898, -9617, 14517, 1789, 156), ch(11486, -9617, -1867, 2178, 137)};
    }
};

// ---- YCC to RGB ---------------------------------------------------------------------------

struct YccToRgb32f {
    KRO_INLINE Vf3 operator()(const Vf3& s) const {
        const __m512 a = fma(s.c, 1.8215f, -0.9786098f);
        const __m512 b = fma(s.b, 2.2179f, -1.356833f);
        const __m512 l = mul(s.a, 1.3584f);
        return {unitLimited(_mm512_add_ps(a, l)), unitLimited(_mm512_add_ps(fma(b, -0.194f, l), mul(a, -0.509f))),
                unitLimited(_mm512_add_ps(b, l))};
    }
};

// The integer inverse after its offsets (yccToRgbCentred).
KRO_INLINE Vi3 yccToRgbCentred(__m512i y, __m512 c1, __m512 c2) {
    const __m512 l = fma(toFloat(y), 1.3584f, 0.5f);
    return {limited16u(truncated(fma(c2, 1.8215f, l))), limited16u(truncated(fma(c2, -0.92714345f, fma(c1, -0.4302726f, l)))),
            limited16u(truncated(fma(c1, 2.2179f, l)))};
}

struct YccToRgb16u {
    KRO_INLINE Vi3 operator()(const Vi3& v) const {
        return yccToRgbCentred(v.a, toFloat(_mm512_sub_epi32(v.b, ki(40092))), toFloat(_mm512_sub_epi32(v.c, ki(35209))));
    }
};

// Samples arrive zero-extended: s - 7324 is (u ^ 0x8000) - 40092, and s -
// 2441 is (u ^ 0x8000) - 35209.
struct YccToRgb16s {
    KRO_INLINE Vi3 operator()(const Vi3& v) const {
        const Vi3 r = yccToRgbCentred(flip15(v.a), toFloat(_mm512_sub_epi32(flip15(v.b), ki(40092))),
                                      toFloat(_mm512_sub_epi32(flip15(v.c), ki(35209))));
        return {flip15(r.a), flip15(r.b), flip15(r.c)};
    }
};

struct YccToRgb8u {
    KRO_INLINE Vi3 operator()(const Vi3& v) const {
        const __m512i p = mul(v.a, 5564), q = add(mul(v.c, 7460), ki(-1022020)), r = add(mul(v.b, 9084), ki(-1417104));
        const __m512i g = add(add(mul(_mm512_srai_epi32(r, 8), -794), mul(_mm512_srai_epi32(q, 8), -2084)), mul(v.a, 89024));
        return {limit(_mm512_srai_epi32(add(p, q), 12), 0, 255), limit(_mm512_srai_epi32(g, 16), 0, 255),
                limit(_mm512_srai_epi32(add(p, r), 12), 0, 255)};
    }
};

}  // namespace k0::xyzycc::vec
