// Vector stages of the YCbCr integer forms. Each function computes, lane by
// lane, exactly the scalar form of the same name in ycbcr_forms.h, on values
// already in registers; loads, stores and the order of pixels in a register
// are the caller's. The stages are element-wise, so any order will do.
//
//   16-bit forms (Short, Short-P, Short-8, Short-16T, Short-16R): 32 samples
//   as words in a zmm. Sums wrap in 16 bits; no sum of these forms leaves its
//   range, so wrapping and saturating additions give the same values.
//   32-bit forms (Long and the long inverse forms): 16 samples as dwords.
//
// Outputs:
//   forward forms: words or dwords in 16..240, no clamp needed;
//   16-bit inverse forms: signed words BEFORE the clamp; the unsigned
//     saturating pack to bytes (_mm512_packus_epi16) is the clamp of the form,
//     or clampWords() where words are kept;
//   32-bit inverse forms: dwords already clamped to 0..255.
//
// The inverse 16-bit forms come in three pieces, so that a subsampled family
// computes the chroma terms once for a cell and joins them to each pixel's
// luma term: vecXxx(Y, Cb, Cr) == xxxJoin(xxxLuma(Y), xxxChroma(Cb, Cr)).
#pragma once
#include "simd.h"
#include "ycbcr/ycbcr_forms.h"

namespace k0::ycbcr {

struct V3 { __m512i a, b, c; };  // three planes: (Y, Cb, Cr) or (R, G, B)

// ---- 16-bit helpers -----------------------------------------------------------------

namespace w16 {
KRO_INLINE __m512i k(int c) { return _mm512_set1_epi16(static_cast<short>(c)); }
// Signed high product H(x, c).
KRO_INLINE __m512i mh(__m512i x, int c) { return _mm512_mulhi_epi16(x, k(c)); }
// High product of unsigned x (0..65535) by an unsigned factor c (0..65535).
KRO_INLINE __m512i mhu(__m512i x, int c) { return _mm512_mulhi_epu16(x, k(c)); }
KRO_INLINE __m512i add(__m512i a, __m512i b) { return _mm512_add_epi16(a, b); }
KRO_INLINE __m512i sub(__m512i a, __m512i b) { return _mm512_sub_epi16(a, b); }
KRO_INLINE __m512i sumH(const Row3& w, __m512i r, __m512i g, __m512i b) {
    return add(add(mh(r, w.r), mh(g, w.g)), mh(b, w.b));
}
KRO_INLINE __m512i sumHu(const Row3& w, __m512i r, __m512i g, __m512i b) {
    return add(add(mhu(r, w.r), mhu(g, w.g)), mhu(b, w.b));
}
}  // namespace w16

// Signed words limited to 0..255, as the unsigned saturating pack does.
KRO_INLINE __m512i clampWords(__m512i v) {
    return _mm512_min_epi16(_mm512_max_epi16(v, _mm512_setzero_si512()), w16::k(255));
}

// ---- forward, 16-bit ------------------------------------------------------------------

KRO_INLINE __m512i vecShortLuma(__m512i R, __m512i G, __m512i B) {
    using namespace w16;
    const __m512i s = sumHu(kY15, _mm512_slli_epi16(R, 8), _mm512_slli_epi16(G, 8), _mm512_slli_epi16(B, 8));
    return _mm512_srli_epi16(add(s, k(2112)), 7);
}
// r, g, b already scaled (R * 128, or a cell's sum scaled to at most 32640).
KRO_INLINE __m512i vecShortChroma(const Row3& w, __m512i r, __m512i g, __m512i b) {
    using namespace w16;
    return _mm512_srai_epi16(add(sumH(w, r, g, b), k(0x4040)), 7);
}
KRO_INLINE V3 vecShort(__m512i R, __m512i G, __m512i B) {
    const __m512i r = _mm512_slli_epi16(R, 7), g = _mm512_slli_epi16(G, 7), b = _mm512_slli_epi16(B, 7);
    return {vecShortLuma(R, G, B), vecShortChroma(kCb, r, g, b), vecShortChroma(kCr, r, g, b)};
}

// The luma sum of Short-P reaches 56201: it is unsigned, and so is its shift.
KRO_INLINE __m512i vecShortPLuma(__m512i R, __m512i G, __m512i B) {
    using namespace w16;
    const __m512i s = sumHu(kY, _mm512_slli_epi16(R, 8), _mm512_slli_epi16(G, 8), _mm512_slli_epi16(B, 8));
    return add(_mm512_srli_epi16(add(s, k(128)), 8), k(16));
}
KRO_INLINE __m512i vecShortPChroma(const Row3& w, __m512i r, __m512i g, __m512i b) {
    using namespace w16;
    return add(_mm512_srai_epi16(add(sumH(w, r, g, b), k(64)), 7), k(128));
}
KRO_INLINE V3 vecShortP(__m512i R, __m512i G, __m512i B) {
    const __m512i r = _mm512_slli_epi16(R, 7), g = _mm512_slli_epi16(G, 7), b = _mm512_slli_epi16(B, 7);
    return {vecShortPLuma(R, G, B), vecShortPChroma(kCb, r, g, b), vecShortPChroma(kCr, r, g, b)};
}

// ---- inverse, 16-bit ------------------------------------------------------------------

KRO_INLINE __m512i vecPrimeY(__m512i Y) { return w16::sub(_mm512_slli_epi16(Y, 7), w16::k(2048)); }
KRO_INLINE __m512i vecPrimeC(__m512i C) { return w16::sub(_mm512_slli_epi16(C, 7), w16::k(16384)); }

// Short-8. Chroma terms: R's, G's (to be subtracted), B's.
KRO_INLINE __m512i short8Luma(__m512i Y) { return w16::mh(vecPrimeY(Y), 4769); }
KRO_INLINE V3 short8Chroma(__m512i Cb, __m512i Cr) {
    using namespace w16;
    const __m512i cb = vecPrimeC(Cb), cr = vecPrimeC(Cr);
    return {mh(cr, 6537), add(mh(cb, 1605), mh(cr, 3330)), mh(cb, 8263)};
}
KRO_INLINE V3 short8Join(__m512i yq, const V3& t) {
    using namespace w16;
    const __m512i r = k(4);
    return {_mm512_srai_epi16(add(add(yq, t.a), r), 3), _mm512_srai_epi16(add(sub(yq, t.b), r), 3),
            _mm512_srai_epi16(add(add(yq, t.c), r), 3)};
}
KRO_INLINE V3 vecShort8(__m512i Y, __m512i Cb, __m512i Cr) { return short8Join(short8Luma(Y), short8Chroma(Cb, Cr)); }

// Short-16T. Chroma terms: R's, G's (two negative products, added), B's.
KRO_INLINE __m512i short16TLuma(__m512i Y) { return w16::mh(vecPrimeY(Y), 9536); }
KRO_INLINE V3 short16TChroma(__m512i Cb, __m512i Cr) {
    using namespace w16;
    const __m512i cb = vecPrimeC(Cb), cr = vecPrimeC(Cr);
    return {mh(cr, 13074), add(mh(cb, -3203), mh(cr, -6660)), mh(cb, 16523)};
}
KRO_INLINE V3 short16TJoin(__m512i yq, const V3& t) {
    using namespace w16;
    return {_mm512_srai_epi16(add(yq, t.a), 4), _mm512_srai_epi16(add(yq, t.b), 4),
            _mm512_srai_epi16(add(yq, t.c), 4)};
}
KRO_INLINE V3 vecShort16T(__m512i Y, __m512i Cb, __m512i Cr) {
    return short16TJoin(short16TLuma(Y), short16TChroma(Cb, Cr));
}

// Short-16R. Chroma terms: R's, G's (to be subtracted), B's.
KRO_INLINE __m512i short16RLuma(__m512i Y) { return w16::mh(vecPrimeY(Y), 9535); }
KRO_INLINE V3 short16RChroma(__m512i Cb, __m512i Cr) {
    using namespace w16;
    const __m512i cb = vecPrimeC(Cb), cr = vecPrimeC(Cr);
    return {mh(cr, 13074), add(mh(cb, 3211), mh(cr, 6660)), mh(cb, 16523)};
}
KRO_INLINE V3 short16RJoin(__m512i yq, const V3& t) {
    using namespace w16;
    const __m512i r = k(8);
    return {_mm512_srai_epi16(add(add(yq, t.a), r), 4), _mm512_srai_epi16(add(sub(yq, t.b), r), 4),
            _mm512_srai_epi16(add(add(yq, t.c), r), 4)};
}
KRO_INLINE V3 vecShort16R(__m512i Y, __m512i Cb, __m512i Cr) {
    return short16RJoin(short16RLuma(Y), short16RChroma(Cb, Cr));
}

// ---- 32-bit forms ---------------------------------------------------------------------

namespace d32 {
KRO_INLINE __m512i k(int c) { return _mm512_set1_epi32(c); }
KRO_INLINE __m512i mul(__m512i x, int c) { return _mm512_mullo_epi32(x, k(c)); }
KRO_INLINE __m512i add(__m512i a, __m512i b) { return _mm512_add_epi32(a, b); }
KRO_INLINE __m512i sra16(__m512i v) { return _mm512_srai_epi32(v, 16); }
KRO_INLINE __m512i clamp(__m512i v) { return _mm512_min_epi32(_mm512_max_epi32(v, _mm512_setzero_si512()), k(255)); }
}  // namespace d32

// The exact sum w.r * r + w.g * g + w.b * b.
KRO_INLINE __m512i vecDot(const Row3& w, __m512i r, __m512i g, __m512i b) {
    using namespace d32;
    return add(add(mul(r, w.r), mul(g, w.g)), mul(b, w.b));
}

KRO_INLINE __m512i vecLongLuma(__m512i R, __m512i G, __m512i B) {
    return d32::sra16(d32::add(vecDot(kY, R, G, B), d32::k(0x108000)));
}
KRO_INLINE __m512i vecLongChroma(const Row3& w, __m512i R, __m512i G, __m512i B) {
    return d32::sra16(d32::add(vecDot(w, R, G, B), d32::k(0x808000)));
}
KRO_INLINE V3 vecLong(__m512i R, __m512i G, __m512i B) {
    return {vecLongLuma(R, G, B), vecLongChroma(kCb, R, G, B), vecLongChroma(kCr, R, G, B)};
}

// The shared shape of the long inverse forms; results clamped to 0..255 by
// minimum and maximum, which gives the table's values.
KRO_INLINE V3 vecLongInverse(const InvRows& w, __m512i Y, __m512i Cb, __m512i Cr) {
    using namespace d32;
    const __m512i y = mul(_mm512_sub_epi32(Y, k(16)), w.kY);
    const __m512i u = _mm512_sub_epi32(Cb, k(128)), v = _mm512_sub_epi32(Cr, k(128));
    return {clamp(sra16(add(add(y, mul(v, w.kR)), k(w.a)))),
            clamp(sra16(add(add(y, add(mul(u, w.kGu), mul(v, w.kGv))), k(w.b)))),
            clamp(sra16(add(add(y, mul(u, w.kB)), k(w.c))))};
}
KRO_INLINE V3 vecLongA(__m512i Y, __m512i Cb, __m512i Cr) { return vecLongInverse(kLongA, Y, Cb, Cr); }
KRO_INLINE V3 vecLongB(__m512i Y, __m512i Cb, __m512i Cr) { return vecLongInverse(kLongB, Y, Cb, Cr); }
KRO_INLINE V3 vecLongB0(__m512i Y, __m512i Cb, __m512i Cr) { return vecLongInverse(kLongB0, Y, Cb, Cr); }
KRO_INLINE V3 vecLongB57(__m512i Y, __m512i Cb, __m512i Cr) { return vecLongInverse(kLongB57, Y, Cb, Cr); }
KRO_INLINE V3 vecLongC(__m512i Y, __m512i Cb, __m512i Cr) { return vecLongInverse(kLongC, Y, Cb, Cr); }

}  // namespace k0::ycbcr
