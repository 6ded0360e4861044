// RGB <-> Y'UV 4:2:0: entries, drivers and cell-row kernels.
//
// An image is width >> 1 by height >> 1 cells of 2x2 pixels. The last column
// of an odd width and the last row of an odd height are neither read nor
// written, and an odd size returns kroWarnOddSize after the work. A driver
// walks cell rows (two pixel rows and one chroma row) in groups of eight; a
// kernel runs its block form over the first cells of a cell row and the form
// of the rest over the others.
#include "entry.h"
#include "yuv/yuv420_io.h"

namespace k0 {
namespace {
using namespace yuv;

// ---- cell-row kernels -------------------------------------------------------------------

void innerRGBToYUV420_8u_P3R(const SrcRows<SrcRgbP3>& s, const DstYuv420& d, int wc) { dwordCells<vecK1>(s, d, 0, wc); }

void innerRGBToYUV420_8u_C3P3R(const SrcRows<SrcRgbC3>& s, const DstYuv420& d, int wc) {
    wordCells<vecK3>(s, d, 0, wc & ~7);
    dwordCells<vecK2>(s, d, wc & ~7, wc);
}

// At fewer than 16 pixels a row there is no whole block of eight cells, and all is K1.
void innerBGRToYUV420_8u_AC4P3R(const SrcRows<SrcBgrA4>& s, const DstYuv420& d, int wc) {
    wordCells<vecK4>(s, d, 0, wc & ~7);
    dwordCells<vecK1>(s, d, wc & ~7, wc);
}

void innerYUV420ToRGB_8u_P3R(const SrcYuv420& s, const DstRows<DstRgbP3>& d, int wc) {
    dwordCells<pixelsOfQuads<vecJ3>>(s, d, 0, wc);
}

// J1 over the blocks of eight cells and over the rest: one loop.
void innerYUV420ToRGB_8u_P3C3R(const SrcYuv420& s, const DstRows<DstRgbC3>& d, int wc) {
    wordCells<pixelsOfQuads<vecJ1>>(s, d, 0, wc);
}

// J6 over the blocks of eight cells and over the rest: one loop.
void innerYUV420ToBGR_8u_P3C3R(const SrcYuv420& s, const DstRows<DstBgrC3>& d, int wc) {
    wordCells<pixelsOfQuads<vecJ6>>(s, d, 0, wc);
}

// Blocks of four cells; alpha written as 0 in both stages.
void ownYUV420ToRGB_8u_P3AC4R(const SrcYuv420& s, const DstRows<DstRgbA4>& d, int wc) {
    wordCells<pixelsOfQuads<vecJ2>>(s, d, 0, wc & ~3);
    dwordCells<pixelsOfQuads<vecJ4>>(s, d, wc & ~3, wc);
}

// ---- rows of a cell row ------------------------------------------------------------------

// Pixel row r of cell row cy (r = 0 top, 1 bottom).
template <class T>
KRO_INLINE T* pixelRow(T* p, int step, int cy, int r) { return rowAt(p, step, 2 * cy + r); }

template <class Px3, class T>
KRO_INLINE Px3 planesAt(T* a, T* b, T* c, int step, int row) {
    return {rowAt(a, step, row), rowAt(b, step, row), rowAt(c, step, row)};
}

KRO_INLINE DstYuv420 yuvCellRow(Kro8u* y, int ys, Kro8u* u, int us, Kro8u* v, int vs, int cy) {
    return {pixelRow(y, ys, cy, 0), pixelRow(y, ys, cy, 1), rowAt(u, us, cy), rowAt(v, vs, cy)};
}
KRO_INLINE SrcYuv420 yuvCellRow(const Kro8u* y, int ys, const Kro8u* u, int us, const Kro8u* v, int vs, int cy) {
    return {pixelRow(y, ys, cy, 0), pixelRow(y, ys, cy, 1), rowAt(u, us, cy), rowAt(v, vs, cy)};
}

// The interleaved destinations: kernel(source cell row, destination rows, cells).
template <class D, class Kernel>
KRO_INLINE void walkToPacked(const Kro8u* y, int ys, const Kro8u* u, int us, const Kro8u* v, int vs, Kro8u* d, int ds,
                             int wc, int hc, Kernel kernel) {
    walkRows(hc, [&](int cy) {
        kernel(yuvCellRow(y, ys, u, us, v, vs, cy), DstRows<D>{{pixelRow(d, ds, cy, 0)}, {pixelRow(d, ds, cy, 1)}}, wc);
    });
}

}  // namespace

// ---- drivers: cell counts, not pixel counts ----------------------------------------------------

void myRGBToYUV420_8u_P3R(const Kro8u* r, const Kro8u* g, const Kro8u* b, int ss, Kro8u* y, int ys, Kro8u* u, int us,
                          Kro8u* v, int vs, int wc, int hc) {
    walkRows(hc, [&](int cy) {
        const SrcRows<SrcRgbP3> src{planesAt<SrcRgbP3>(r, g, b, ss, 2 * cy), planesAt<SrcRgbP3>(r, g, b, ss, 2 * cy + 1)};
        innerRGBToYUV420_8u_P3R(src, yuvCellRow(y, ys, u, us, v, vs, cy), wc);
    });
}

void myRGBToYUV420_8u_C3P3R(const Kro8u* s, int ss, Kro8u* y, int ys, Kro8u* u, int us, Kro8u* v, int vs, int wc,
                            int hc) {
    walkRows(hc, [&](int cy) {
        const SrcRows<SrcRgbC3> src{{pixelRow(s, ss, cy, 0)}, {pixelRow(s, ss, cy, 1)}};
        innerRGBToYUV420_8u_C3P3R(src, yuvCellRow(y, ys, u, us, v, vs, cy), wc);
    });
}

void myBGRToYUV420_8u_AC4P3R(const Kro8u* s, int ss, Kro8u* y, int ys, Kro8u* u, int us, Kro8u* v, int vs, int wc,
                             int hc) {
    walkRows(hc, [&](int cy) {
        const SrcRows<SrcBgrA4> src{{pixelRow(s, ss, cy, 0)}, {pixelRow(s, ss, cy, 1)}};
        innerBGRToYUV420_8u_AC4P3R(src, yuvCellRow(y, ys, u, us, v, vs, cy), wc);
    });
}

void myYUV420ToRGB_8u_P3R(const Kro8u* y, int ys, const Kro8u* u, int us, const Kro8u* v, int vs, Kro8u* r, Kro8u* g,
                          Kro8u* b, int ds, int wc, int hc) {
    walkRows(hc, [&](int cy) {
        const DstRows<DstRgbP3> dst{planesAt<DstRgbP3>(r, g, b, ds, 2 * cy), planesAt<DstRgbP3>(r, g, b, ds, 2 * cy + 1)};
        innerYUV420ToRGB_8u_P3R(yuvCellRow(y, ys, u, us, v, vs, cy), dst, wc);
    });
}

void myYUV420ToRGB_8u_P3C3R(const Kro8u* y, int ys, const Kro8u* u, int us, const Kro8u* v, int vs, Kro8u* d, int ds,
                            int wc, int hc) {
    walkToPacked<DstRgbC3>(y, ys, u, us, v, vs, d, ds, wc, hc, innerYUV420ToRGB_8u_P3C3R);
}

void myYUV420ToBGR_8u_P3C3R(const Kro8u* y, int ys, const Kro8u* u, int us, const Kro8u* v, int vs, Kro8u* d, int ds,
                            int wc, int hc) {
    walkToPacked<DstBgrC3>(y, ys, u, us, v, vs, d, ds, wc, hc, innerYUV420ToBGR_8u_P3C3R);
}

}  // namespace k0

// ---- entries ---------------------------------------------------------------------------------------
// Null pointers of the call, then the size, then the members of the plane arrays.

using namespace k0;

namespace {
KRO_INLINE KroStatus oddStatus(KroiSize roi) { return ((roi.width | roi.height) & 1) ? kroWarnOddSize : kroOk; }
}  // namespace

KRO_ENTRY(kroiRGBToYUV420_8u_P3R)(const Kro8u* const pSrc[3], int srcStep, Kro8u* const pDst[3], const int dstStep[3],
                                  KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst, dstStep)) return st;
    if (anyNullIn(pSrc, 3) || anyNullIn(pDst, 3)) return kroErrNullPtr;
    myRGBToYUV420_8u_P3R(pSrc[0], pSrc[1], pSrc[2], srcStep, pDst[0], dstStep[0], pDst[1], dstStep[1], pDst[2],
                         dstStep[2], roi.width >> 1, roi.height >> 1);
    return oddStatus(roi);
}

KRO_ENTRY(kroiRGBToYUV420_8u_P3)(const Kro8u* const pSrc[3], Kro8u* const pDst[3], KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    if (anyNullIn(pSrc, 3) || anyNullIn(pDst, 3)) return kroErrNullPtr;
    const int w = roi.width;
    myRGBToYUV420_8u_P3R(pSrc[0], pSrc[1], pSrc[2], w, pDst[0], w, pDst[1], w >> 1, pDst[2], w >> 1, w >> 1,
                         roi.height >> 1);
    return oddStatus(roi);
}

KRO_ENTRY(kroiRGBToYUV420_8u_C3P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3],
                                    KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst, dstStep)) return st;
    if (anyNullIn(pDst, 3)) return kroErrNullPtr;
    myRGBToYUV420_8u_C3P3R(pSrc, srcStep, pDst[0], dstStep[0], pDst[1], dstStep[1], pDst[2], dstStep[2],
                           roi.width >> 1, roi.height >> 1);
    return oddStatus(roi);
}

KRO_ENTRY(kroiRGBToYUV420_8u_C3P3)(const Kro8u* pSrc, Kro8u* const pDst[3], KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    if (anyNullIn(pDst, 3)) return kroErrNullPtr;
    const int w = roi.width;
    myRGBToYUV420_8u_C3P3R(pSrc, 3 * w, pDst[0], w, pDst[1], w >> 1, pDst[2], w >> 1, w >> 1, roi.height >> 1);
    return oddStatus(roi);
}

KRO_ENTRY(kroiBGRToYUV420_8u_AC4P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3],
                                     KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst, dstStep)) return st;
    if (anyNullIn(pDst, 3)) return kroErrNullPtr;
    myBGRToYUV420_8u_AC4P3R(pSrc, srcStep, pDst[0], dstStep[0], pDst[1], dstStep[1], pDst[2], dstStep[2],
                            roi.width >> 1, roi.height >> 1);
    return oddStatus(roi);
}

KRO_ENTRY(kroiYUV420ToRGB_8u_P3R)(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* const pDst[3], int dstStep,
                                  KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, srcStep, pDst)) return st;
    if (anyNullIn(pSrc, 3) || anyNullIn(pDst, 3)) return kroErrNullPtr;
    myYUV420ToRGB_8u_P3R(pSrc[0], srcStep[0], pSrc[1], srcStep[1], pSrc[2], srcStep[2], pDst[0], pDst[1], pDst[2],
                         dstStep, roi.width >> 1, roi.height >> 1);
    return oddStatus(roi);
}

KRO_ENTRY(kroiYUV420ToRGB_8u_P3)(const Kro8u* const pSrc[3], Kro8u* const pDst[3], KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    if (anyNullIn(pSrc, 3) || anyNullIn(pDst, 3)) return kroErrNullPtr;
    const int w = roi.width;
    myYUV420ToRGB_8u_P3R(pSrc[0], w, pSrc[1], w >> 1, pSrc[2], w >> 1, pDst[0], pDst[1], pDst[2], w, w >> 1,
                         roi.height >> 1);
    return oddStatus(roi);
}

KRO_ENTRY(kroiYUV420ToRGB_8u_P3C3R)(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep,
                                    KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, srcStep, pDst)) return st;
    if (anyNullIn(pSrc, 3)) return kroErrNullPtr;
    myYUV420ToRGB_8u_P3C3R(pSrc[0], srcStep[0], pSrc[1], srcStep[1], pSrc[2], srcStep[2], pDst, dstStep,
                           roi.width >> 1, roi.height >> 1);
    return oddStatus(roi);
}

KRO_ENTRY(kroiYUV420ToRGB_8u_P3C3)(const Kro8u* const pSrc[3], Kro8u* pDst, KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    if (anyNullIn(pSrc, 3)) return kroErrNullPtr;
    const int w = roi.width;
    myYUV420ToRGB_8u_P3C3R(pSrc[0], w, pSrc[1], w >> 1, pSrc[2], w >> 1, pDst, 3 * w, w >> 1, roi.height >> 1);
    return oddStatus(roi);
}

// At least 2 by 2.
KRO_ENTRY(kroiYUV420ToBGR_8u_P3C3R)(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep,
                                    KroiSize roi) {
    if (anyNull(pSrc, srcStep, pDst)) return kroErrNullPtr;
    if (roi.width < 2 || roi.height < 2) return kroErrSize;
    if (anyNullIn(pSrc, 3)) return kroErrNullPtr;
    myYUV420ToBGR_8u_P3C3R(pSrc[0], srcStep[0], pSrc[1], srcStep[1], pSrc[2], srcStep[2], pDst, dstStep,
                           roi.width >> 1, roi.height >> 1);
    return oddStatus(roi);
}

// The driver is the entry's own row walk.
KRO_ENTRY(kroiYUV420ToRGB_8u_P3AC4R)(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep,
                                     KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, srcStep, pDst)) return st;
    if (anyNullIn(pSrc, 3)) return kroErrNullPtr;
    walkToPacked<yuv::DstRgbA4>(pSrc[0], srcStep[0], pSrc[1], srcStep[1], pSrc[2], srcStep[2], pDst, dstStep,
                                roi.width >> 1, roi.height >> 1, ownYUV420ToRGB_8u_P3AC4R);
    return oddStatus(roi);
}
