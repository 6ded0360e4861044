// Vector stages of the 4:2:0 forms, lane by lane the scalar forms of the same
// name in yuvsub_forms.h. A 2x2 cell travels as the two rows' cell planes
// (row[0] on top) with one U and one V.
#pragma once
#include "yuv/yuv422_vec.h"

namespace k0::yuv {

struct RgbQuad { RgbCells row[2]; };
struct YuvQuad { __m512i y[2][2], u, v; };  // y[row][place in the row]

// Sum of one channel over the four pixels of each cell, words or dwords.
KRO_INLINE __m512i cellSum16(const __m512i (&top)[2], const __m512i (&bot)[2]) {
    return _mm512_add_epi16(_mm512_add_epi16(top[0], top[1]), _mm512_add_epi16(bot[0], bot[1]));
}
KRO_INLINE __m512i cellSum32(const __m512i (&top)[2], const __m512i (&bot)[2]) {
    return _mm512_add_epi32(_mm512_add_epi32(top[0], top[1]), _mm512_add_epi32(bot[0], bot[1]));
}

// A luma term of each pixel of the cells, into l, and the Y it gives.
template <auto luma, class ToY>
KRO_INLINE void vecQuadLuma(const RgbQuad& q, YuvQuad& o, __m512i (&l)[2][2], ToY toY) {
    for (int r = 0; r < 2; ++r)
        for (int i = 0; i < 2; ++i) {
            const RgbCells& c = q.row[r];
            l[r][i] = luma(c.r[i], c.g[i], c.b[i]);
            o.y[r][i] = toY(l[r][i]);
        }
}

// K1, dwords.
KRO_INLINE YuvQuad vecK1(const RgbQuad& q) {
    using namespace d32;
    YuvQuad o;
    __m512i s[2][2];
    vecQuadLuma<lumaS>(q, o, s, [](__m512i x) { return sra(x, 16); });
    const __m512i bias = sub(k(131071), cellSum32(s[0], s[1]));
    const __m512i bu = sra(add(shl(cellSum32(q.row[0].b, q.row[1].b), 16), bias), 16);
    const __m512i rv = sra(add(shl(cellSum32(q.row[0].r, q.row[1].r), 16), bias), 16);
    o.u = add(sra(mul(32244, bu), 18), k(128));
    o.v = clamp(add(sra(mul(57475, rv), 18), k(128)));
    return o;
}

// The 14-bit luma sum of K2.
KRO_INLINE __m512i vecLumaS14(__m512i r, __m512i g, __m512i b) {
    using namespace d32;
    return add(add(mul(4899, r), mul(9617, g)), mul(1868, b));
}

// K2, dwords.
KRO_INLINE YuvQuad vecK2(const RgbQuad& q) {
    using namespace d32;
    YuvQuad o;
    __m512i s[2][2];
    vecQuadLuma<vecLumaS14>(q, o, s, [](__m512i x) { return sra(add(x, k(2)), 14); });
    const __m512i ss = cellSum32(s[0], s[1]);
    const __m512i bu = sra(sub(shl(cellSum32(q.row[0].b, q.row[1].b), 14), ss), 14);
    const __m512i rv = sra(sub(shl(cellSum32(q.row[0].r, q.row[1].r), 14), ss), 14);
    o.u = add(sra(mul(8061, bu), 16), k(128));
    o.v = clamp(add(sra(mul(14369, rv), 16), k(128)));
    return o;
}

// K3, words. The four-pixel luma sum reaches 65280: it is formed as an
// unsigned 16-bit sum and halved by a logical shift.
KRO_INLINE YuvQuad vecK3(const RgbQuad& q) {
    using namespace w16;
    YuvQuad o;
    __m512i p[2][2];
    vecQuadLuma<vecLumaP>(q, o, p, [](__m512i x) { return pack(sra(x, 6)); });
    const __m512i half = _mm512_srli_epi16(cellSum16(p[0], p[1]), 1);
    o.u = pack(add(sra(h(8061, sub(shl(cellSum16(q.row[0].b, q.row[1].b), 5), half)), 6), k(128)));
    o.v = pack(add(sra(h(14369, sub(shl(cellSum16(q.row[0].r, q.row[1].r), 5), half)), 6), k(128)));
    return o;
}

// K4, words.
KRO_INLINE YuvQuad vecK4(const RgbQuad& q) {
    using namespace w16;
    YuvQuad o;
    __m512i w[2][2];
    vecQuadLuma<vecLumaW4>(q, o, w, [](__m512i x) { return sra(x, 1); });
    const __m512i quarter = sra(cellSum16(w[0], w[1]), 2);
    o.u = pack(add(m(16121, sub(sra(shl(cellSum16(q.row[0].b, q.row[1].b), 2), 3), quarter)), k(128)));
    o.v = pack(add(m(28737, sub(sra(shl(cellSum16(q.row[0].r, q.row[1].r), 2), 3), quarter)), k(128)));
    return o;
}

// J6, words, one pixel a lane.
KRO_INLINE Rgb vecJ6(__m512i Y, __m512i U, __m512i V) {
    using namespace w16;
    const __m512i u = sub(shl(U, 4), k(2048)), v = sub(shl(V, 4), k(2048)), y2 = shl(Y, 1);
    return {pack(sra(adds(y2, m(9339, v)), 1)), pack(sra(adds(adds(y2, m(-3228, u)), m(-4760, v)), 1)),
            pack(sra(adds(y2, m(16646, u)), 1))};
}

}  // namespace k0::yuv
