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

// K1, dwords.
KRO_INLINE YuvQuad vecK1(const RgbQuad& q) {
    using namespace d32;
    YuvQuad o;
    __m512i ss = _mm512_setzero_si512();
    for (int r = 0; r < 2; ++r)
        for (int i = 0; i < 2; ++i) {
            const RgbCells& c = q.row[r];
            const __m512i s = lumaS(c.r[i], c.g[i], c.b[i]);
            o.y[r][i] = sra(s, 16);
            ss = add(ss, s);
        }
    const __m512i bias = sub(k(131071), ss);
    const __m512i bu = sra(add(shl(cellSum32(q.row[0].b, q.row[1].b), 16), bias), 16);
    const __m512i rv = sra(add(shl(cellSum32(q.row[0].r, q.row[1].r), 16), bias), 16);
    o.u = add(sra(mul(32244, bu), 18), k(128));
    o.v = clamp(add(sra(mul(57475, rv), 18), k(128)));
    return o;
}

// K2, dwords.
KRO_INLINE YuvQuad vecK2(const RgbQuad& q) {
    using namespace d32;
    YuvQuad o;
    __m512i ss = _mm512_setzero_si512();
    for (int r = 0; r < 2; ++r)
        for (int i = 0; i < 2; ++i) {
            const RgbCells& c = q.row[r];
            const __m512i s = add(add(mul(4899, c.r[i]), mul(9617, c.g[i])), mul(1868, c.b[i]));
            o.y[r][i] = sra(add(s, k(2)), 14);
            ss = add(ss, s);
        }
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
    for (int r = 0; r < 2; ++r)
        for (int i = 0; i < 2; ++i) {
            const RgbCells& c = q.row[r];
            p[r][i] = vecLumaP(c.r[i], c.g[i], c.b[i]);
            o.y[r][i] = pack(sra(p[r][i], 6));
        }
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
    for (int r = 0; r < 2; ++r)
        for (int i = 0; i < 2; ++i) {
            const RgbCells& c = q.row[r];
            w[r][i] = vecLumaW4(c.r[i], c.g[i], c.b[i]);
            o.y[r][i] = sra(w[r][i], 1);
        }
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
