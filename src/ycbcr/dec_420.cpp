// YCbCr 4:2:0 (planar and two-plane) to RGB and BGR. A chroma cell serves a
// two-by-two block: both rows of a pair are produced in one pass, and the
// last odd row and column are not written. One member interpolates chroma
// horizontally; all others replicate it.
#include "ycbcr/dec_kernels.h"

namespace k0 {
namespace {
using namespace ycbcr;

// Row pairs of the image: the luma plane, chromaAt(j) the chroma of row pair
// j, dstAt(y) destination row y; kernel(rowPair) converts one pair.
template <class ChromaAt, class DstAt, class Kernel>
KRO_INLINE void walkRowPairs(const Kro8u* y, int ys, int h, ChromaAt chromaAt, DstAt dstAt, Kernel kernel) {
    walkRows(h >> 1, [&](int j) {
        kernel(RowPair<decltype(chromaAt(0)), decltype(dstAt(0))>{
            {rowAt(y, ys, 2 * j)}, {rowAt(y, ys, 2 * j + 1)}, chromaAt(j), dstAt(2 * j), dstAt(2 * j + 1)});
    });
}

template <bool Bgr>
KRO_INLINE auto c3At(Kro8u* d, int ds) { return [=](int y) { return DstC3<Bgr>{rowAt(d, ds, y)}; }; }
template <bool Bgr>
KRO_INLINE auto c4At(Kro8u* d, int ds, Kro8u alpha) {
    return [=](int y) { return DstC4Alpha<Bgr>{rowAt(d, ds, y), alpha}; };
}

// Chroma planes of row pair j, in the plane order of the layout.
template <class C, bool CrFirst>
KRO_INLINE auto planesAt(const Kro8u* const s[3], const int ss[3]) {
    return [=](int j) {
        const Kro8u *p1 = rowAt(s[1], ss[1], j), *p2 = rowAt(s[2], ss[2], j);
        return CrFirst ? C{p2, p1} : C{p1, p2};
    };
}

// ---- Short-8 and Long-B ---------------------------------------------------------------------

template <class ChromaAt, class DstAt>
KRO_INLINE void myShort8LongB(const Kro8u* y, int ys, int w, int h, int nShort, ChromaAt chromaAt, DstAt dstAt) {
    walkRowPairs(y, ys, h, chromaAt, dstAt,
                 [=](const auto& r) { shortThenLong420<Short8>(r, nShort, w >> 1, K0_FORM(formLongB)); });
}

template <bool Bgr>
void myYCbCr420ToRGB_8u_P3C3R(const Kro8u* const s[3], const int ss[3], Kro8u* d, int ds, int w, int h, int nShort) {
    myShort8LongB(s[0], ss[0], w, h, nShort, planesAt<ChromaPlanes<1>, false>(s, ss), c3At<Bgr>(d, ds));
}

// Two-plane sources; OffCb is 0 for pairs Cb Cr, 1 for pairs Cr Cb.
template <int OffCb, class DstAt>
KRO_INLINE void myP2(const Kro8u* y, int ys, const Kro8u* c, int cs, int w, int h, DstAt dstAt) {
    myShort8LongB(y, ys, w, h, w & ~15, [=](int j) { return ChromaPairs<OffCb>{rowAt(c, cs, j)}; }, dstAt);
}
template <int OffCb, bool Bgr>
void myYCbCr420ToRGB_8u_P2C3R(const Kro8u* y, int ys, const Kro8u* c, int cs, Kro8u* d, int ds, int w, int h) {
    myP2<OffCb>(y, ys, c, cs, w, h, c3At<Bgr>(d, ds));
}
template <int OffCb, bool Bgr>
void myYCbCr420ToRGB_8u_P2C4R(const Kro8u* y, int ys, const Kro8u* c, int cs, Kro8u* d, int ds, int w, int h,
                              Kro8u alpha) {
    myP2<OffCb>(y, ys, c, cs, w, h, c4At<Bgr>(d, ds, alpha));
}

// ---- the planar four-byte members -----------------------------------------------------------------

// Short-8U on every complete pair.
void myYCbCr420ToBGR_8u_P3C4R(const Kro8u* const s[3], const int ss[3], Kro8u* d, int ds, int w, int h, Kro8u alpha) {
    walkRowPairs(s[0], ss[0], h, planesAt<ChromaPlanes<1>, false>(s, ss), c4At<true>(d, ds, alpha),
                 [=](const auto& r) { shortBlocks420<Short8U>(r, w & ~1); });
}

// Planes Y, Cr, Cb. Short-16R on blocks of four pairs, Long-B on the last
// (width >> 1) & 3 pairs.
void myYCrCb420ToRGB_8u_P3C4R(const Kro8u* const s[3], const int ss[3], Kro8u* d, int ds, int w, int h, Kro8u alpha) {
    walkRowPairs(s[0], ss[0], h, planesAt<ChromaPlanes<1>, true>(s, ss), c4At<false>(d, ds, alpha),
                 [=](const auto& r) { shortThenLong420<Short16R>(r, w & ~7, w >> 1, K0_FORM(formLongB)); });
}

// ---- the filtered member ------------------------------------------------------------------------------

// Planes Y, Cr, Cb. The odd pixel of pair i takes the rounded-up mean of
// c(i) and c(i + 1); the last pair, having no right neighbour, takes c(last)
// for both pixels and is written even at width 1 (the second pixel beyond
// the region). Vector blocks of Short-8 without the addend cover the first
// (p - 1) & ~7 pairs when p is at least 9, scalar pairs at scale 4096 the
// rest.
template <class D>
KRO_INLINE void innerYCrCb420ToBGR_Filter(const RowPair<ChromaInterpolated, D>& r, int w) {
    const int p = w >> 1, nv = p >= 9 ? (p - 1) & ~7 : 0;
    shortBlocks420<Short8Trunc>(r, 2 * nv);
    for (int i = nv; i < p - 1; ++i) {
        const int cb = r.c.cb(i), cr = r.c.cr(i);
        cell420(r, i, cb, cr, (cb + r.c.cb(i + 1) + 1) >> 1, (cr + r.c.cr(i + 1) + 1) >> 1, K0_FORM(formScale4096));
    }
    const int last = p > 0 ? p - 1 : 0, cb = r.c.cb(last), cr = r.c.cr(last);
    cell420(r, last, cb, cr, cb, cr, K0_FORM(formScale4096));
}

void myYCrCb420ToBGR_8u_P3C4R(const Kro8u* const s[3], const int ss[3], Kro8u* d, int ds, int w, int h, Kro8u alpha) {
    walkRowPairs(s[0], ss[0], h, planesAt<ChromaInterpolated, true>(s, ss), c4At<true>(d, ds, alpha),
                 [=](const auto& r) { innerYCrCb420ToBGR_Filter(r, w); });
}

// ---- entry checks ----------------------------------------------------------------------------------

// The array pointers and the destination, the size, then the planes.
KRO_INLINE KroStatus planarChecks(const Kro8u* const s[3], const int ss[3], const Kro8u* d, KroiSize roi) {
    if (anyNull(s, ss, d)) return kroErrNullPtr;
    if (sizeBelow(roi, 1)) return kroErrSize;
    return anyNullIn(s, 3) ? kroErrNullPtr : kroOk;
}
KRO_INLINE KroStatus nullThenSize(const Kro8u* y, const Kro8u* c, const Kro8u* d, KroiSize roi) {
    return anyNull(y, c, d) ? kroErrNullPtr : sizeBelow(roi, 1) ? kroErrSize : kroOk;
}
KRO_INLINE KroStatus sizeThenNull(const Kro8u* y, const Kro8u* c, const Kro8u* d, KroiSize roi) {
    return sizeBelow(roi, 1) ? kroErrSize : anyNull(y, c, d) ? kroErrNullPtr : kroOk;
}

}  // namespace
}  // namespace k0

// ---- entries ----------------------------------------------------------------------------------------

using namespace k0;

#define K0_PLANAR_C3(name, bgr, shortMask)                                                              \
    KRO_ENTRY(name)(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep, KroiSize roi) { \
        if (const KroStatus st = planarChecks(pSrc, srcStep, pDst, roi)) return st;                    \
        myYCbCr420ToRGB_8u_P3C3R<bgr>(pSrc, srcStep, pDst, dstStep, roi.width, roi.height, roi.width & (shortMask)); \
        return oddSize(roi);                                                                           \
    }
K0_PLANAR_C3(kroiYCbCr420ToRGB_8u_P3C3R, false, ~31)
K0_PLANAR_C3(kroiYCbCr420ToBGR_8u_P3C3R, true, ~15)
#undef K0_PLANAR_C3

#define K0_PLANAR_C4(name, driver)                                                                          \
    KRO_ENTRY(name)(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep, KroiSize roi, \
                    Kro8u aval) {                                                                           \
        if (const KroStatus st = planarChecks(pSrc, srcStep, pDst, roi)) return st;                        \
        driver(pSrc, srcStep, pDst, dstStep, roi.width, roi.height, aval);                                 \
        return oddSize(roi);                                                                               \
    }
K0_PLANAR_C4(kroiYCbCr420ToBGR_8u_P3C4R, myYCbCr420ToBGR_8u_P3C4R)
K0_PLANAR_C4(kroiYCrCb420ToRGB_8u_P3C4R, myYCrCb420ToRGB_8u_P3C4R)
K0_PLANAR_C4(kroiYCrCb420ToBGR_Filter_8u_P3C4R, myYCrCb420ToBGR_8u_P3C4R)
#undef K0_PLANAR_C4

// The status of the three-byte members is computed after the kernel.
#define K0_P2C3(name, offCb, bgr)                                                                              \
    KRO_ENTRY(name)(const Kro8u* pY, int yStep, const Kro8u* pC, int cStep, Kro8u* pDst, int dstStep, KroiSize roi) { \
        if (const KroStatus st = nullThenSize(pY, pC, pDst, roi)) return st;                                   \
        myYCbCr420ToRGB_8u_P2C3R<offCb, bgr>(pY, yStep, pC, cStep, pDst, dstStep, roi.width, roi.height);     \
        return oddSize(roi);                                                                                   \
    }
K0_P2C3(kroiYCbCr420ToRGB_8u_P2C3R, 0, false)
K0_P2C3(kroiYCbCr420ToBGR_8u_P2C3R, 0, true)
K0_P2C3(kroiYCrCb420ToRGB_8u_P2C3R, 1, false)
K0_P2C3(kroiYCrCb420ToBGR_8u_P2C3R, 1, true)
#undef K0_P2C3

// The four-byte members compute the status first and return it at once when
// there is no row pair; the YCrCb ones test the size before the pointers.
#define K0_P2C4(name, checks, offCb, bgr)                                                                  \
    KRO_ENTRY(name)(const Kro8u* pY, int yStep, const Kro8u* pC, int cStep, Kro8u* pDst, int dstStep,     \
                    KroiSize roi, Kro8u aval) {                                                            \
        if (const KroStatus st = checks(pY, pC, pDst, roi)) return st;                                     \
        const KroStatus status = oddSize(roi);                                                             \
        if ((roi.height >> 1) == 0) return status;                                                         \
        myYCbCr420ToRGB_8u_P2C4R<offCb, bgr>(pY, yStep, pC, cStep, pDst, dstStep, roi.width, roi.height, aval); \
        return status;                                                                                     \
    }
K0_P2C4(kroiYCbCr420ToRGB_8u_P2C4R, nullThenSize, 0, false)
K0_P2C4(kroiYCbCr420ToBGR_8u_P2C4R, nullThenSize, 0, true)
K0_P2C4(kroiYCrCb420ToRGB_8u_P2C4R, sizeThenNull, 1, false)
K0_P2C4(kroiYCrCb420ToBGR_8u_P2C4R, sizeThenNull, 1, true)
#undef K0_P2C4
