// Vector stages of the Y'UV forms with halved chroma. Each function computes,
// lane by lane, exactly the scalar form of the same name in yuvsub_forms.h.
//
// Cells travel as planes split by the pixel's place in its cell: lane k of
// r[0] is R of the first pixel of cell k, lane k of r[1] R of the second, lane
// k of u and v the cell's chroma. The 16-bit forms take 32 cells as words in a
// zmm, the 32-bit forms 16 cells as dwords. Samples in and out are 0..255.
#pragma once
#include "simd.h"

namespace k0::yuv {

struct RgbCells { __m512i r[2], g[2], b[2]; };  // two pixels a cell
struct YuvCells { __m512i y[2], u, v; };
struct Rgb { __m512i r, g, b; };                 // one pixel a lane

// ---- 16-bit words ---------------------------------------------------------------

namespace w16 {
KRO_INLINE __m512i k(int c) { return _mm512_set1_epi16(static_cast<short>(c)); }
KRO_INLINE __m512i m(int c, __m512i x) { return _mm512_mulhi_epi16(x, k(c)); }
KRO_INLINE __m512i h(int c, __m512i x) { return _mm512_mulhrs_epi16(x, k(c)); }
KRO_INLINE __m512i add(__m512i a, __m512i b) { return _mm512_add_epi16(a, b); }
KRO_INLINE __m512i sub(__m512i a, __m512i b) { return _mm512_sub_epi16(a, b); }
KRO_INLINE __m512i adds(__m512i a, __m512i b) { return _mm512_adds_epi16(a, b); }
KRO_INLINE __m512i subs(__m512i a, __m512i b) { return _mm512_subs_epi16(a, b); }
KRO_INLINE __m512i shl(__m512i x, unsigned n) { return _mm512_slli_epi16(x, n); }
KRO_INLINE __m512i sra(__m512i x, unsigned n) { return _mm512_srai_epi16(x, n); }
// The unsigned saturating pack, kept in words.
KRO_INLINE __m512i pack(__m512i v) { return _mm512_min_epi16(_mm512_max_epi16(v, _mm512_setzero_si512()), k(255)); }
// (ca * a + cb * b) >> 14 in 32 bits, of two word planes, back to words.
KRO_INLINE __m512i madd14(__m512i a, int ca, __m512i b, int cb) {
    const __m512i c = _mm512_set1_epi32(static_cast<int>((static_cast<unsigned>(cb) << 16) | (ca & 0xFFFF)));
    const __m512i lo = _mm512_srai_epi32(_mm512_madd_epi16(_mm512_unpacklo_epi16(a, b), c), 14);
    const __m512i hi = _mm512_srai_epi32(_mm512_madd_epi16(_mm512_unpackhi_epi16(a, b), c), 14);
    return _mm512_packs_epi32(lo, hi);
}
}  // namespace w16

// ---- 32-bit dwords --------------------------------------------------------------

namespace d32 {
KRO_INLINE __m512i k(int c) { return _mm512_set1_epi32(c); }
KRO_INLINE __m512i mul(int c, __m512i x) { return _mm512_mullo_epi32(x, k(c)); }
KRO_INLINE __m512i add(__m512i a, __m512i b) { return _mm512_add_epi32(a, b); }
KRO_INLINE __m512i sub(__m512i a, __m512i b) { return _mm512_sub_epi32(a, b); }
KRO_INLINE __m512i shl(__m512i x, unsigned n) { return _mm512_slli_epi32(x, n); }
KRO_INLINE __m512i sra(__m512i x, unsigned n) { return _mm512_srai_epi32(x, n); }
KRO_INLINE __m512i clamp(__m512i v) { return _mm512_min_epi32(_mm512_max_epi32(v, _mm512_setzero_si512()), k(255)); }
KRO_INLINE __m512i lumaS(__m512i r, __m512i g, __m512i b) { return add(add(mul(19595, r), mul(38470, g)), mul(7471, b)); }
}  // namespace d32

// ---- forward block forms, words ----------------------------------------------------

// A luma term of each pixel of the cells, into l, and the Y it gives.
template <auto luma, class ToY>
KRO_INLINE void vecPairLuma(const RgbCells& s, YuvCells& o, __m512i (&l)[2], ToY toY) {
    for (int i = 0; i < 2; ++i) {
        l[i] = luma(s.r[i], s.g[i], s.b[i]);
        o.y[i] = toY(l[i]);
    }
}
KRO_INLINE __m512i pairSum16(const __m512i (&x)[2]) { return _mm512_add_epi16(x[0], x[1]); }

// W of G1 and G2: R and G in one 14-bit product sum, B in another.
KRO_INLINE __m512i vecLumaW14(__m512i r, __m512i g, __m512i b) {
    using namespace w16;
    return add(madd14(r, 9798, g, 19235), madd14(b, 3736, _mm512_setzero_si512(), 0));
}

// Chroma of G1 and G2 from the halved pair sum t.
KRO_INLINE void vecChromaG12(const RgbCells& s, __m512i t, YuvCells& o) {
    using namespace w16;
    o.u = pack(add(m(16121, sub(pairSum16(s.b), t)), k(128)));
    o.v = pack(add(m(28737, sub(pairSum16(s.r), t)), k(128)));
}

KRO_INLINE YuvCells vecG1(const RgbCells& s) {
    using namespace w16;
    YuvCells o;
    __m512i w[2];
    vecPairLuma<vecLumaW14>(s, o, w, [](__m512i x) { return sra(add(x, k(1)), 1); });
    vecChromaG12(s, sra(add(pairSum16(w), k(2)), 1), o);
    return o;
}

KRO_INLINE YuvCells vecG2(const RgbCells& s) {
    using namespace w16;
    YuvCells o;
    __m512i w[2];
    vecPairLuma<vecLumaW14>(s, o, w, [](__m512i x) { return sra(x, 1); });
    vecChromaG12(s, sra(pairSum16(w), 1), o);
    return o;
}

// P of G3 and K3: rounding high multiplies of 128x samples.
KRO_INLINE __m512i vecLumaP(__m512i r, __m512i g, __m512i b) {
    using namespace w16;
    return add(add(h(4899, shl(r, 7)), h(9617, shl(g, 7))), h(1868, shl(b, 7)));
}

KRO_INLINE YuvCells vecG3(const RgbCells& s) {
    using namespace w16;
    YuvCells o;
    __m512i p[2];
    vecPairLuma<vecLumaP>(s, o, p, [](__m512i x) { return pack(sra(x, 6)); });
    const __m512i t = pairSum16(p);
    o.u = pack(add(sra(h(8061, sub(shl(pairSum16(s.b), 6), t)), 6), k(128)));
    o.v = pack(add(sra(h(14369, sub(shl(pairSum16(s.r), 6), t)), 6), k(128)));
    return o;
}

// W of G4 and K4: high products of 4x samples.
KRO_INLINE __m512i vecLumaW4(__m512i r, __m512i g, __m512i b) {
    using namespace w16;
    return add(add(m(9798, shl(r, 2)), m(19235, shl(g, 2))), m(3736, shl(b, 2)));
}

KRO_INLINE YuvCells vecG4(const RgbCells& s) {
    using namespace w16;
    YuvCells o;
    __m512i w[2];
    vecPairLuma<vecLumaW4>(s, o, w, [](__m512i x) { return sra(x, 1); });
    const __m512i t = pairSum16(w);
    o.u = pack(add(sra(m(16121, sub(shl(pairSum16(s.b), 1), t)), 1), k(128)));
    o.v = pack(add(sra(m(28737, sub(shl(pairSum16(s.r), 1), t)), 1), k(128)));
    return o;
}

// ---- forward pair forms, dwords -------------------------------------------------------

// H1 and H2 differ in the rounding of Y (yr) and the bias of chroma (cr).
template <int yr, int cr>
KRO_INLINE YuvCells vecPairH(const RgbCells& s) {
    using namespace d32;
    YuvCells o;
    __m512i l[2];
    vecPairLuma<lumaS>(s, o, l, [](__m512i x) { return sra(add(x, k(yr)), 16); });
    const __m512i a = sub(k(cr), add(l[0], l[1]));
    const __m512i bu = sra(add(shl(add(s.b[0], s.b[1]), 16), a), 16);
    const __m512i rv = sra(add(shl(add(s.r[0], s.r[1]), 16), a), 16);
    o.u = add(sra(mul(32244, bu), 17), k(128));
    o.v = clamp(add(sra(mul(57475, rv), 17), k(128)));
    return o;
}
KRO_INLINE YuvCells vecH1(const RgbCells& s) { return vecPairH<32768, 32768>(s); }
KRO_INLINE YuvCells vecH2(const RgbCells& s) { return vecPairH<0, 65535>(s); }

// ---- inverse block forms, words, one pixel a lane ----------------------------------------

KRO_INLINE Rgb vecJ1(__m512i Y, __m512i U, __m512i V) {
    using namespace w16;
    const __m512i u = sub(shl(U, 4), k(2048)), v = sub(shl(V, 4), k(2048)), y2 = shl(Y, 1);
    return {pack(sra(adds(y2, m(9338, v)), 1)), pack(sra(adds(adds(y2, m(-3227, u)), m(-4759, v)), 1)),
            pack(sra(adds(y2, m(16645, u)), 1))};
}

KRO_INLINE Rgb vecJ2(__m512i Y, __m512i U, __m512i V) {
    using namespace w16;
    const __m512i u = sub(shl(U, 7), k(16384)), v = sub(shl(V, 7), k(16384)), y16 = shl(Y, 4);
    return {pack(sra(adds(adds(y16, m(9338, v)), k(8)), 4)),
            pack(sra(adds(subs(subs(y16, m(3227, u)), m(4759, v)), k(8)), 4)),
            pack(sra(adds(adds(y16, m(16646, u)), k(8)), 4))};
}

// ---- inverse 32-bit forms, dwords ----------------------------------------------------------

// J3, J4 and J5 share a shape: ((Y << f) + weights * (u, v) + rounding) >> f.
template <unsigned f, int rnd, int rv, int gu, int gv, int bu>
KRO_INLINE Rgb vecInvShape(__m512i Y, __m512i U, __m512i V) {
    using namespace d32;
    const __m512i y = add(shl(Y, f), k(rnd)), u = sub(U, k(128)), v = sub(V, k(128));
    return {clamp(sra(add(y, mul(rv, v)), f)), clamp(sra(add(y, add(mul(gu, u), mul(gv, v))), f)),
            clamp(sra(add(y, mul(bu, u)), f))};
}
KRO_INLINE Rgb vecJ3(__m512i Y, __m512i U, __m512i V) { return vecInvShape<16, 0, 74711, -25821, -38076, 133169>(Y, U, V); }
KRO_INLINE Rgb vecJ4(__m512i Y, __m512i U, __m512i V) {
    return vecInvShape<16, 32768, 74711, -25821, -38076, 133169>(Y, U, V);
}
KRO_INLINE Rgb vecJ5(__m512i Y, __m512i U, __m512i V) { return vecInvShape<13, 0, 9338, -3227, -4759, 16645>(Y, U, V); }

}  // namespace k0::yuv
