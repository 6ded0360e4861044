// RGB to YCbCr 4:2:0 (three planes in Short, two planes in Rounded or Dot)
// and 4:1:1. Cells of 4:2:0 are two by two over a pair of rows; an odd last
// row or column, and in 4:1:1 the last width & 3 pixels, are not touched.
#include "ycbcr/enc_io.h"

// GCC 12's 512-bit intrinsics seed unmasked results with a self-initialised
// undefined value, which -Wuninitialized reports once the two-plane stages
// are inlined into the Dot kernel.
#pragma GCC diagnostic ignored "-Wuninitialized"

namespace k0 {
namespace {
using namespace ycbcr;

#define K0_STAGE(f) [](__m512i a, __m512i b, __m512i c) { return f(a, b, c); }

// The destination rows of one 4:2:0 row pair: two luma rows and the chroma
// row (two planes, or one of pairs in which case cr is null).
struct Rows420 {
    Kro8u *y0, *y1, *cb, *cr;
};

// Long luma of the four pixels of a 4:2:0 cell at x, and their sums.
template <class S>
KRO_INLINE Sums longCell420(const S& s0, const S& s1, const Rows420& d, int x) {
    Sums t;
    for (int i = 0; i < 2; ++i) {
        const Px a = s0.get(x + i), b = s1.get(x + i);
        d.y0[x + i] = longY(a), d.y1[x + i] = longY(b);
        t += a, t += b;
    }
    return t;
}

// Short on the first width & ~15 pixels of the row pair; Long and Long4 on
// the whole cells after them.
template <class S>
void innerPlanar420(const S& s0, const S& s1, const Rows420& d, int w) {
    const int nShort = w & ~15;
    inBlocks<32>(nShort, [&](int x, unsigned n) KRO_INLINE_LAMBDA {
        const V3 a = s0.words(x, n), b = s1.words(x, n);
        storePart256(d.y0 + x, lumaBytes(vecShortLuma(a.a, a.b, a.c)), n);
        storePart256(d.y1 + x, lumaBytes(vecShortLuma(b.a, b.b, b.c)), n);
        const V2 c = cellShortChroma<5>(pairSums(addWords(a, b)));
        storePart128(d.cb + x / 2, pairBytes(c.a), n / 2);
        storePart128(d.cr + x / 2, pairBytes(c.b), n / 2);
    });
    for (int x = nShort; x + 1 < w; x += 2) {
        const Sums t = longCell420(s0, s1, d, x);
        d.cb[x / 2] = u8(formLong4(kCb, t.r, t.g, t.b));
        d.cr[x / 2] = u8(formLong4(kCr, t.r, t.g, t.b));
    }
}

// The two-plane stages: luma of each row and the chroma pairs of the cells,
// over pixels [0, end) of the row pair.
template <class S, class Luma, class Chroma>
KRO_INLINE void twoPlaneBlocks(const S& s0, const S& s1, const Rows420& d, int end, Luma luma, Chroma chroma) {
    inBlocks<32>(end, [&](int x, unsigned n) KRO_INLINE_LAMBDA {
        const V3 a = s0.words(x, n), b = s1.words(x, n);
        storePart256(d.y0 + x, lumaBytes(luma(a.a, a.b, a.c)), n);
        storePart256(d.y1 + x, lumaBytes(luma(b.a, b.b, b.c)), n);
        const V2 c = chroma(pairSums(addWords(a, b)));
        storePart256(d.cb + x, chromaPairs(naturalPairs(c.a), naturalPairs(c.b)), n);
    });
}

// Rounded on blocks of 8 pairs and, if bit 3 of the width is set, one of 4
// pairs; Long and Long4 on the rest. Chroma as Cb Cr pairs.
template <class S>
void innerRounded420(const S& s0, const S& s1, const Rows420& d, int w) {
    const int nRounded = (w & ~15) + (w & 8);
    twoPlaneBlocks(s0, s1, d, nRounded, K0_STAGE(vecRoundedLuma), [](const V3& s) { return vecRoundedChroma(s); });
    for (int x = nRounded; x + 1 < w; x += 2) {
        const Sums t = longCell420(s0, s1, d, x);
        d.cb[x] = u8(formLong4(kCb, t.r, t.g, t.b));
        d.cb[x + 1] = u8(formLong4(kCr, t.r, t.g, t.b));
    }
}

// Dot on every whole cell.
template <class S>
void innerDot420(const S& s0, const S& s1, const Rows420& d, int w) {
    twoPlaneBlocks(s0, s1, d, w & ~1, K0_STAGE(vecDotLuma), [](const V3& s) {
        return V2{vecDotChroma(kDotCb, s.a, s.b, s.c), vecDotChroma(kDotCr, s.a, s.b, s.c)};
    });
}

// Short on the first width & ~15 pixels, Long and Long4 on the whole groups
// of four after them.
template <class S>
void inner411(const S& s, Kro8u* y, Kro8u* cb, Kro8u* cr, int w) {
    const int nShort = w & ~15;
    inBlocks<32>(nShort, [&](int x, unsigned n) KRO_INLINE_LAMBDA {
        const V3 v = s.words(x, n);
        storePart256(y + x, lumaBytes(vecShortLuma(v.a, v.b, v.c)), n);
        const V2 c = cellShortChroma<5>(quadSums(v));
        storePart128(cb + x / 4, _mm512_cvtepi64_epi8(naturalQuads(c.a)), n / 4);
        storePart128(cr + x / 4, _mm512_cvtepi64_epi8(naturalQuads(c.b)), n / 4);
    });
    for (int x = nShort; x + 3 < w; x += 4) {
        Sums t;
        for (int i = 0; i < 4; ++i) {
            const Px p = s.get(x + i);
            y[x + i] = longY(p);
            t += p;
        }
        cb[x / 4] = u8(formLong4(kCb, t.r, t.g, t.b));
        cr[x / 4] = u8(formLong4(kCr, t.r, t.g, t.b));
    }
}

// ---- drivers --------------------------------------------------------------------------------

// Runs `kernel` on each pair of rows; the planes' rows are cy (Y) and cc
// (chroma) steps apart.
template <class S, class Kernel>
KRO_INLINE void rowPairs(const Kro8u* src, int ss, Kro8u* y, int ys, Kro8u* cb, Kro8u* cr, int cs1, int cs2, int w,
                         int h, Kernel kernel) {
    walkRows(h >> 1, [&](int i) {
        const Rows420 d{rowAt(y, ys, 2 * i), rowAt(y, ys, 2 * i + 1), rowAt(cb, cs1, i), cr ? rowAt(cr, cs2, i) : nullptr};
        kernel(S{{rowAt(src, ss, 2 * i)}}, S{{rowAt(src, ss, 2 * i + 1)}}, d, w);
    });
}

KRO_INLINE KroStatus oddStatus(bool odd) { return odd ? kroWarnOddSize : kroOk; }

// Three planes; `swap` exchanges the second and third plane with their steps.
template <class S>
KroStatus planar420(const Kro8u* pSrc, int ss, Kro8u* const pDst[3], const int dstStep[3], KroiSize roi, int minSize,
                    bool swap, bool planesAfterSize = false) {
    if (const KroStatus st = checkEnc(anyNull(pSrc, pDst, dstStep), [&] { return anyNullIn(pDst, 3); }, roi, minSize,
                                      minSize, planesAfterSize))
        return st;
    const int i1 = swap ? 2 : 1, i2 = swap ? 1 : 2;
    rowPairs<S>(pSrc, ss, pDst[0], dstStep[0], pDst[i1], pDst[i2], dstStep[i1], dstStep[i2], roi.width, roi.height,
                [](const S& a, const S& b, const Rows420& d, int w) { innerPlanar420(a, b, d, w); });
    return oddStatus((roi.width | roi.height) & 1);
}

// Y and a plane of Cb Cr pairs.
template <class S, bool Dot>
KroStatus twoPlane420(const Kro8u* pSrc, int ss, Kro8u* pY, int ys, Kro8u* pC, int cs, KroiSize roi) {
    if (const KroStatus st = checkEnc(anyNull(pSrc, pY, pC), kNoPlanes, roi, 1, 1)) return st;
    rowPairs<S>(pSrc, ss, pY, ys, pC, nullptr, cs, 0, roi.width, roi.height,
                [](const S& a, const S& b, const Rows420& d, int w) {
                    if constexpr (Dot) innerDot420(a, b, d, w);
                    else innerRounded420(a, b, d, w);
                });
    return oddStatus((roi.width | roi.height) & 1);
}

template <class S>
KroStatus planar411(const Kro8u* pSrc, int ss, Kro8u* const pDst[3], const int dstStep[3], KroiSize roi) {
    if (const KroStatus st = checkEnc(anyNull(pSrc, pDst, dstStep), [&] { return anyNullIn(pDst, 3); }, roi, 4, 1))
        return st;
    walkRows(roi.height, [&](int y) {
        inner411(S{{rowAt(pSrc, ss, y)}}, rowAt(pDst[0], dstStep[0], y), rowAt(pDst[1], dstStep[1], y),
                 rowAt(pDst[2], dstStep[2], y), roi.width);
    });
    return oddStatus(roi.width & 3);
}

}  // namespace
}  // namespace k0

using namespace k0;
using namespace k0::ycbcr;

// The plane pointers are tested after the size.
KRO_ENTRY(kroiRGBToYCbCr420_8u_C3P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3],
                                      KroiSize roi) {
    return planar420<RgbC3<false>>(pSrc, srcStep, pDst, dstStep, roi, 1, false, true);
}
KRO_ENTRY(kroiBGRToYCbCr420_8u_C3P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3],
                                      KroiSize roi) {
    return planar420<RgbC3<true>>(pSrc, srcStep, pDst, dstStep, roi, 2, false);
}
KRO_ENTRY(kroiBGRToYCbCr420_8u_AC4P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3],
                                       KroiSize roi) {
    return planar420<RgbC4<true>>(pSrc, srcStep, pDst, dstStep, roi, 2, false);
}
KRO_ENTRY(kroiBGRToYCrCb420_8u_C3P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3],
                                      KroiSize roi) {
    return planar420<RgbC3<true>>(pSrc, srcStep, pDst, dstStep, roi, 2, true);
}
KRO_ENTRY(kroiBGRToYCrCb420_8u_AC4P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3],
                                       KroiSize roi) {
    return planar420<RgbC4<true>>(pSrc, srcStep, pDst, dstStep, roi, 2, true);
}
KRO_ENTRY(kroiRGBToYCrCb420_8u_AC4P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3],
                                       KroiSize roi) {
    return planar420<RgbC4<false>>(pSrc, srcStep, pDst, dstStep, roi, 2, true);
}

KRO_ENTRY(kroiBGRToYCbCr420_8u_C3P2R)(const Kro8u* pSrc, int srcStep, Kro8u* pDstY, int dstYStep, Kro8u* pDstCbCr,
                                      int dstCbCrStep, KroiSize roi) {
    return twoPlane420<RgbC3<true>, false>(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep, roi);
}
KRO_ENTRY(kroiBGRToYCbCr420_8u_AC4P2R)(const Kro8u* pSrc, int srcStep, Kro8u* pDstY, int dstYStep, Kro8u* pDstCbCr,
                                       int dstCbCrStep, KroiSize roi) {
    return twoPlane420<RgbC4<true>, false>(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep, roi);
}
// The fourth byte is not read.
KRO_ENTRY(kroiRGBToYCbCr420_8u_C4P2R)(const Kro8u* pSrc, int srcStep, Kro8u* pDstY, int dstYStep, Kro8u* pDstCbCr,
                                      int dstCbCrStep, KroiSize roi) {
    return twoPlane420<RgbC4<false>, false>(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep, roi);
}
KRO_ENTRY(kroiRGBToYCbCr420_8u_C3P2R)(const Kro8u* pSrc, int srcStep, Kro8u* pDstY, int dstYStep, Kro8u* pDstCbCr,
                                      int dstCbCrStep, KroiSize roi) {
    return twoPlane420<RgbC3<false>, true>(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep, roi);
}

KRO_ENTRY(kroiBGRToYCbCr411_8u_C3P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3],
                                      KroiSize roi) {
    return planar411<RgbC3<true>>(pSrc, srcStep, pDst, dstStep, roi);
}
KRO_ENTRY(kroiBGRToYCbCr411_8u_AC4P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3],
                                       KroiSize roi) {
    return planar411<RgbC4<true>>(pSrc, srcStep, pDst, dstStep, roi);
}
