// RGB <-> Y'UV 4:2:2: entries, drivers and row kernels.
//
// A row runs in three stages: the block form over the cells of the first
// width & ~15 pixels (width & ~7 for the four-sample destination), the pair
// form over the whole cells left, and the last-pixel form on the odd pixel of
// an odd width, which makes a cell of its own.
#include <cstdint>

#include "entry.h"
#include "yuv/yuv422_io.h"

namespace k0 {
namespace {
using namespace yuv;

KRO_INLINE int blockCells(int w) { return (w & ~15) >> 1; }

// ---- forward row kernels ------------------------------------------------------------

void innerRGBToYUV422_8u_C3C2R(const Kro8u* s, Kro8u* d, int w) {
    const SrcRgbC3 src{s};
    const DstYuvC2 dst{d};
    wordCells<vecG1>(src, dst, 0, blockCells(w));
    dwordCells<vecH1>(src, dst, blockCells(w), w >> 1);
    if (w & 1) {  // the row ends in Y, U: no V byte
        const Px o = formL1(src.pixel(w - 1));
        Kro8u* q = d + 2 * (static_cast<std::ptrdiff_t>(w) - 1);
        q[0] = o.a;
        q[1] = o.b;
    }
}

// The planar destinations. The pair form runs in words when it is a block
// form (the aligned kernel), else in dwords.
template <auto block, auto pair, bool pairInWords, auto last, class Src>
KRO_INLINE void rgbToPlanes(const Src& src, Kro8u* y, Kro8u* u, Kro8u* v, int w) {
    const DstYuvP3 dst{y, u, v};
    wordCells<block>(src, dst, 0, blockCells(w));
    if constexpr (pairInWords) wordCells<pair>(src, dst, blockCells(w), w >> 1);
    else dwordCells<pair>(src, dst, blockCells(w), w >> 1);
    if (w & 1) {
        const Px o = last(src.pixel(w - 1));
        y[w - 1] = o.a;
        u[w >> 1] = o.b;
        v[w >> 1] = o.c;
    }
}

void innerRGBToYUV422_8u_C3P3R(const Kro8u* s, Kro8u* y, Kro8u* u, Kro8u* v, int w) {
    rgbToPlanes<vecG2, vecH2, false, formL2>(SrcRgbC3{s}, y, u, v, w);
}

// Source, destinations and steps all on 16-byte boundaries.
void innerAlRGBToYUV422_8u_C3P3R(const Kro8u* s, Kro8u* y, Kro8u* u, Kro8u* v, int w) {
    rgbToPlanes<vecG3, vecG2, true, formL2>(SrcRgbC3{s}, y, u, v, w);
}

void innerRGBToYUV422_8u_P3R(const Kro8u* r, const Kro8u* g, const Kro8u* b, Kro8u* y, Kro8u* u, Kro8u* v, int w) {
    rgbToPlanes<vecG4, vecH2, false, formL3>(SrcRgbP3{r, g, b}, y, u, v, w);
}

// ---- inverse row kernels --------------------------------------------------------------

template <auto block, auto pair, class Src, class Dst>
KRO_INLINE void cellsToRgb(const Src& src, const Dst& dst, int w, int nb) {
    wordCells<pixelsOfCells<block>>(src, dst, 0, nb);
    dwordCells<pixelsOfCells<pair>>(src, dst, nb, w >> 1);
}

// At an odd width the last pixel's Y and U end the row and its V is the byte
// before its Y, the V of the cell before; at width 1 that is the byte before
// the row.
void innerYUV422ToRGB_8u_C2C3R(const Kro8u* s, Kro8u* d, int w) {
    const DstRgbC3 dst{d};
    cellsToRgb<vecJ1, vecJ4>(SrcYuvC2{s}, dst, w, blockCells(w));
    if (w & 1) {
        const Kro8u* q = s + 2 * (static_cast<std::ptrdiff_t>(w) - 1);
        dst.put(w - 1, formJ4(q[0], q[1], q[-1]));
    }
}

template <auto block, auto last, class Dst>
KRO_INLINE void planesToRgb(const Kro8u* y, const Kro8u* u, const Kro8u* v, const Dst& dst, int w, int nb) {
    cellsToRgb<block, vecJ3>(SrcYuvP3{y, u, v}, dst, w, nb);
    if (w & 1) dst.put(w - 1, last(y[w - 1], u[w >> 1], v[w >> 1]));
}

void innerYUV422ToRGB_8u_P3C3R(const Kro8u* y, const Kro8u* u, const Kro8u* v, Kro8u* d, int w) {
    planesToRgb<vecJ1, formJ3>(y, u, v, DstRgbC3{d}, w, blockCells(w));
}

void innerYUV422ToRGB_8u_P3R(const Kro8u* y, const Kro8u* u, const Kro8u* v, Kro8u* r, Kro8u* g, Kro8u* b, int w) {
    planesToRgb<vecJ1, formJ5>(y, u, v, DstRgbP3{r, g, b}, w, blockCells(w));
}

// Blocks of 8 pixels; alpha written as 0 in every stage.
void innerYUV422ToRGB_8u_P3AC4R(const Kro8u* y, const Kro8u* u, const Kro8u* v, Kro8u* d, int w) {
    planesToRgb<vecJ2, formJ3>(y, u, v, DstRgbA4{d}, w, (w & ~7) >> 1);
}

// ---- the forms without steps --------------------------------------------------------------

// The chroma step of a dense image.
KRO_INLINE int denseChroma(int w) { return (w >> 1) + (w & 1); }

// A dense image whose 32-bit pixel count n is at least 256, at an even width,
// is one row: the kernel takes pixels [0, n & ~7), then the last n & 7.
// `kernel(x, count)` converts `count` pixels from pixel x (chroma from x / 2).
template <class Kernel>
KRO_INLINE bool asOneRow(KroiSize roi, Kernel&& kernel) {
    const int n = static_cast<int>(static_cast<unsigned>(roi.width) * static_cast<unsigned>(roi.height));
    if (n < 256 || (roi.width & 1)) return false;
    kernel(0, n & ~7);
    if (n & 7) kernel(n & ~7, n & 7);
    return true;
}

// The planar sources: a row kernel of (Y, U, V rows, destination row index).
template <class Kernel>
KRO_INLINE void walkYuvPlanes(const Kro8u* y, int ys, const Kro8u* u, int us, const Kro8u* v, int vs, int h,
                              Kernel&& kernel) {
    walkRows(h, [&](int i) { kernel(rowAt(y, ys, i), rowAt(u, us, i), rowAt(v, vs, i), i); });
}

}  // namespace

// ---- drivers ---------------------------------------------------------------------------------

void myRGBToYUV422_8u_C3C2R(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    eachRow(s, ss, d, ds, h, [w](const Kro8u* a, Kro8u* b) { innerRGBToYUV422_8u_C3C2R(a, b, w); });
}

void myYUV422ToRGB_8u_C2C3R(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    eachRow(s, ss, d, ds, h, [w](const Kro8u* a, Kro8u* b) { innerYUV422ToRGB_8u_C2C3R(a, b, w); });
}

// The kernel is chosen once per call by the alignment of all pointers and steps.
void myRGBToYUV422_8u_C3P3R(const Kro8u* s, int ss, Kro8u* y, int ys, Kro8u* u, int us, Kro8u* v, int vs, int w,
                            int h) {
    const auto addr = [](const void* p) { return reinterpret_cast<std::uintptr_t>(p); };
    const bool aligned = ((addr(s) | addr(y) | addr(u) | addr(v) | static_cast<unsigned>(ss | ys | us | vs)) & 15) == 0;
    const auto kernel = aligned ? innerAlRGBToYUV422_8u_C3P3R : innerRGBToYUV422_8u_C3P3R;
    walkRows(h, [&](int r) { kernel(rowAt(s, ss, r), rowAt(y, ys, r), rowAt(u, us, r), rowAt(v, vs, r), w); });
}

void myRGBToYUV422_8u_P3R(const Kro8u* r, const Kro8u* g, const Kro8u* b, int ss, Kro8u* y, int ys, Kro8u* u, int us,
                          Kro8u* v, int vs, int w, int h) {
    walkRows(h, [&](int i) {
        innerRGBToYUV422_8u_P3R(rowAt(r, ss, i), rowAt(g, ss, i), rowAt(b, ss, i), rowAt(y, ys, i), rowAt(u, us, i),
                                rowAt(v, vs, i), w);
    });
}

void myYUV422ToRGB_8u_P3C3R(const Kro8u* y, int ys, const Kro8u* u, int us, const Kro8u* v, int vs, Kro8u* d, int ds,
                            int w, int h) {
    walkYuvPlanes(y, ys, u, us, v, vs, h, [&](const Kro8u* a, const Kro8u* b, const Kro8u* c, int i) {
        innerYUV422ToRGB_8u_P3C3R(a, b, c, rowAt(d, ds, i), w);
    });
}

void myYUV422ToRGB_8u_P3AC4R(const Kro8u* y, int ys, const Kro8u* u, int us, const Kro8u* v, int vs, Kro8u* d, int ds,
                             int w, int h) {
    walkYuvPlanes(y, ys, u, us, v, vs, h, [&](const Kro8u* a, const Kro8u* b, const Kro8u* c, int i) {
        innerYUV422ToRGB_8u_P3AC4R(a, b, c, rowAt(d, ds, i), w);
    });
}

void myYUV422ToRGB_8u_P3R(const Kro8u* y, int ys, const Kro8u* u, int us, const Kro8u* v, int vs, Kro8u* r, Kro8u* g,
                          Kro8u* b, int ds, int w, int h) {
    walkYuvPlanes(y, ys, u, us, v, vs, h, [&](const Kro8u* a, const Kro8u* bb, const Kro8u* c, int i) {
        innerYUV422ToRGB_8u_P3R(a, bb, c, rowAt(r, ds, i), rowAt(g, ds, i), rowAt(b, ds, i), w);
    });
}

}  // namespace k0

// ---- entries -------------------------------------------------------------------------------------
// Null pointers of the call, then the size, then the members of the plane arrays.

using namespace k0;

KRO_ENTRY(kroiRGBToYUV422_8u_C3C2R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return run(myRGBToYUV422_8u_C3C2R, pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiYUV422ToRGB_8u_C2C3R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return run(myYUV422ToRGB_8u_C2C3R, pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiRGBToYUV422_8u_C3P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3],
                                    KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst, dstStep)) return st;
    if (anyNullIn(pDst, 3)) return kroErrNullPtr;
    myRGBToYUV422_8u_C3P3R(pSrc, srcStep, pDst[0], dstStep[0], pDst[1], dstStep[1], pDst[2], dstStep[2], roi.width,
                           roi.height);
    return kroOk;
}

KRO_ENTRY(kroiRGBToYUV422_8u_C3P3)(const Kro8u* pSrc, Kro8u* const pDst[3], KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    if (anyNullIn(pDst, 3)) return kroErrNullPtr;
    const bool oneRow = asOneRow(roi, [&](int x, int n) {
        innerRGBToYUV422_8u_C3P3R(pSrc + 3 * static_cast<std::ptrdiff_t>(x), pDst[0] + x, pDst[1] + x / 2, pDst[2] + x / 2, n);
    });
    if (!oneRow) {
        const int w = roi.width, c = denseChroma(w);
        myRGBToYUV422_8u_C3P3R(pSrc, 3 * w, pDst[0], w, pDst[1], c, pDst[2], c, w, roi.height);
    }
    return kroOk;
}

KRO_ENTRY(kroiRGBToYUV422_8u_P3R)(const Kro8u* const pSrc[3], int srcStep, Kro8u* const pDst[3], const int dstStep[3],
                                  KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst, dstStep)) return st;
    if (anyNullIn(pSrc, 3) || anyNullIn(pDst, 3)) return kroErrNullPtr;
    myRGBToYUV422_8u_P3R(pSrc[0], pSrc[1], pSrc[2], srcStep, pDst[0], dstStep[0], pDst[1], dstStep[1], pDst[2],
                         dstStep[2], roi.width, roi.height);
    return kroOk;
}

KRO_ENTRY(kroiRGBToYUV422_8u_P3)(const Kro8u* const pSrc[3], Kro8u* const pDst[3], KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    if (anyNullIn(pSrc, 3) || anyNullIn(pDst, 3)) return kroErrNullPtr;
    const bool oneRow = asOneRow(roi, [&](int x, int n) {
        innerRGBToYUV422_8u_P3R(pSrc[0] + x, pSrc[1] + x, pSrc[2] + x, pDst[0] + x, pDst[1] + x / 2, pDst[2] + x / 2, n);
    });
    if (!oneRow) {
        const int w = roi.width, c = denseChroma(w);
        myRGBToYUV422_8u_P3R(pSrc[0], pSrc[1], pSrc[2], w, pDst[0], w, pDst[1], c, pDst[2], c, w, roi.height);
    }
    return kroOk;
}

KRO_ENTRY(kroiYUV422ToRGB_8u_P3C3R)(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep,
                                    KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, srcStep, pDst)) return st;
    if (anyNullIn(pSrc, 3)) return kroErrNullPtr;
    myYUV422ToRGB_8u_P3C3R(pSrc[0], srcStep[0], pSrc[1], srcStep[1], pSrc[2], srcStep[2], pDst, dstStep, roi.width,
                           roi.height);
    return kroOk;
}

KRO_ENTRY(kroiYUV422ToRGB_8u_P3AC4R)(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep,
                                     KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, srcStep, pDst)) return st;
    if (anyNullIn(pSrc, 3)) return kroErrNullPtr;
    myYUV422ToRGB_8u_P3AC4R(pSrc[0], srcStep[0], pSrc[1], srcStep[1], pSrc[2], srcStep[2], pDst, dstStep, roi.width,
                            roi.height);
    return kroOk;
}

KRO_ENTRY(kroiYUV422ToRGB_8u_P3C3)(const Kro8u* const pSrc[3], Kro8u* pDst, KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    if (anyNullIn(pSrc, 3)) return kroErrNullPtr;
    const bool oneRow = asOneRow(roi, [&](int x, int n) {
        innerYUV422ToRGB_8u_P3C3R(pSrc[0] + x, pSrc[1] + x / 2, pSrc[2] + x / 2, pDst + 3 * static_cast<std::ptrdiff_t>(x), n);
    });
    if (!oneRow) {
        const int w = roi.width, c = denseChroma(w);
        myYUV422ToRGB_8u_P3C3R(pSrc[0], w, pSrc[1], c, pSrc[2], c, pDst, 3 * w, w, roi.height);
    }
    return kroOk;
}

KRO_ENTRY(kroiYUV422ToRGB_8u_P3R)(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* const pDst[3], int dstStep,
                                  KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, srcStep, pDst)) return st;
    if (anyNullIn(pSrc, 3) || anyNullIn(pDst, 3)) return kroErrNullPtr;
    myYUV422ToRGB_8u_P3R(pSrc[0], srcStep[0], pSrc[1], srcStep[1], pSrc[2], srcStep[2], pDst[0], pDst[1], pDst[2],
                         dstStep, roi.width, roi.height);
    return kroOk;
}

KRO_ENTRY(kroiYUV422ToRGB_8u_P3)(const Kro8u* const pSrc[3], Kro8u* const pDst[3], KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    if (anyNullIn(pSrc, 3) || anyNullIn(pDst, 3)) return kroErrNullPtr;
    const bool oneRow = asOneRow(roi, [&](int x, int n) {
        innerYUV422ToRGB_8u_P3R(pSrc[0] + x, pSrc[1] + x / 2, pSrc[2] + x / 2, pDst[0] + x, pDst[1] + x, pDst[2] + x, n);
    });
    if (!oneRow) {
        const int w = roi.width, c = denseChroma(w);
        myYUV422ToRGB_8u_P3R(pSrc[0], w, pSrc[1], c, pSrc[2], c, pDst[0], pDst[1], pDst[2], w, w, roi.height);
    }
    return kroOk;
}
