// Cell access of the 4:2:0 kernels: a cell row is two pixel rows and one
// chroma row. The row layouts are those of yuv422_io.h, plus the B, G, R,
// alpha source.
#pragma once
#include "yuv/yuv420_vec.h"
#include "yuv/yuv422_io.h"

namespace k0::yuv {

// B, G, R, alpha; alpha is not read into any form.
struct SrcBgrA4 {
    const Kro8u* p;
    template <int i>
    static KRO_INLINE __m512i place(__m512i a, __m512i b, __m512i c, __m512i d) {
        using namespace cells;
        const __m512i idx = vec(kC4From<i>);
        return _mm512_mask_blend_epi16(0xFFFF0000u, _mm512_permutex2var_epi16(a, idx, b),
                                       _mm512_permutex2var_epi16(c, idx, d));
    }
    KRO_INLINE RgbCells load(std::ptrdiff_t c, unsigned n) const {
        using namespace cells;
        const Kro8u* q = p + 8 * c;
        const __m512i a = loadPart512(q, part(8 * n, 0)), b = loadPart512(q + 64, part(8 * n, 1)),
                      e = loadPart512(q + 128, part(8 * n, 2)), f = loadPart512(q + 192, part(8 * n, 3));
        const __m512i bg0 = place<0>(a, b, e, f), ra0 = place<1>(a, b, e, f);
        const __m512i bg1 = place<2>(a, b, e, f), ra1 = place<3>(a, b, e, f);
        return {{lowBytes(ra0), lowBytes(ra1)}, {highBytes(bg0), highBytes(bg1)}, {lowBytes(bg0), lowBytes(bg1)}};
    }
};

// Three-byte pixels in the order B, G, R.
struct DstBgrC3 {
    Kro8u* p;
    KRO_INLINE void store(std::ptrdiff_t c, const RgbCells& s, unsigned n) const {
        DstRgbC3{p}.store(c, {{s.b[0], s.b[1]}, {s.g[0], s.g[1]}, {s.r[0], s.r[1]}}, n);
    }
};

// Two pixel rows of one layout.
template <class S>
struct SrcRows {
    S top, bot;
    KRO_INLINE RgbQuad load(std::ptrdiff_t c, unsigned n) const { return {{top.load(c, n), bot.load(c, n)}}; }
};
template <class D>
struct DstRows {
    D top, bot;
    KRO_INLINE void store(std::ptrdiff_t c, const RgbQuad& q, unsigned n) const {
        top.store(c, q.row[0], n);
        bot.store(c, q.row[1], n);
    }
};

// Y'UV planes of one cell row.
struct DstYuv420 {
    Kro8u *y0, *y1, *u, *v;
    KRO_INLINE void store(std::ptrdiff_t c, const YuvQuad& o, unsigned n) const {
        cells::storePairs(y0, c, n, o.y[0]);
        cells::storePairs(y1, c, n, o.y[1]);
        cells::storeChroma(u, c, n, o.u);
        cells::storeChroma(v, c, n, o.v);
    }
};
struct SrcYuv420 {
    const Kro8u *y0, *y1, *u, *v;
    KRO_INLINE YuvQuad load(std::ptrdiff_t c, unsigned n) const {
        YuvQuad o;
        cells::loadPairs(y0, c, n, o.y[0]);
        cells::loadPairs(y1, c, n, o.y[1]);
        o.u = cells::loadChroma(u, c, n);
        o.v = cells::loadChroma(v, c, n);
        return o;
    }
};

KRO_INLINE RgbQuad widened(const RgbQuad& q) { return {{widened(q.row[0]), widened(q.row[1])}}; }
KRO_INLINE RgbQuad narrowed(const RgbQuad& q) { return {{narrowed(q.row[0]), narrowed(q.row[1])}}; }
KRO_INLINE YuvQuad widened(YuvQuad q) {
    widenAll(q.y[0]);
    widenAll(q.y[1]);
    q.u = cells::widen(q.u);
    q.v = cells::widen(q.v);
    return q;
}
KRO_INLINE YuvQuad narrowed(YuvQuad q) {
    narrowAll(q.y[0]);
    narrowAll(q.y[1]);
    q.u = cells::narrow(q.u);
    q.v = cells::narrow(q.v);
    return q;
}

// An inverse form of one pixel applied to the four pixels of each cell.
template <auto pixelForm>
KRO_INLINE RgbQuad pixelsOfQuads(const YuvQuad& q) {
    return {{pixelsOfCells<pixelForm>(YuvCells{{q.y[0][0], q.y[0][1]}, q.u, q.v}),
             pixelsOfCells<pixelForm>(YuvCells{{q.y[1][0], q.y[1][1]}, q.u, q.v})}};
}

}  // namespace k0::yuv
