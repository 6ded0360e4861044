// RGB <-> Y'UV 4:4:4: entries, drivers and the row kernels of the path
// without the multiply-add instructions.
#include "entry.h"
#include "yuv/yuv444_io.h"
#include "yuv/yuv444_vnni.h"

namespace k0 {
namespace {
using namespace yuv;

// ---- row kernels ----------------------------------------------------------------

// F1 on the first width & ~15 pixels, F2 on the rest: in a vector loop when
// source and destination do not overlap, else one pixel at a time.
void innerRGBToYUV_8u_C3R(const Kro8u* s, Kro8u* d, int w) {
    const int nb = w & ~15;
    blockStage(SrcC3{s}, DstC3{d}, 0, nb, vecF1);
    const std::size_t restBytes = 3 * static_cast<std::size_t>(w - nb);
    if (!overlaps(s + 3 * nb, restBytes, d + 3 * nb, restBytes))
        wideStage(SrcC3{s}, DstC3{d}, nb, w, vecF2);
    else
        scalarStage(SrcC3{s}, DstC3{d}, nb, w, formF2);
}

void innerRGBToYUV_8u_AC4R(const Kro8u* s, Kro8u* d, int w) { wideStage(SrcC4{s}, DstC4Keep{d}, 0, w, vecF3); }

void innerRGBToYUV_8u_C3P3R(const Kro8u* s, Kro8u* y, Kro8u* u, Kro8u* v, int w) {
    const int nb = w & ~7;
    blockStage(SrcC3{s}, DstP3{y, u, v}, 0, nb, vecF1);
    wideStage(SrcC3{s}, DstP3{y, u, v}, nb, w, vecF2);
}

// Three passes over the row, Y then U then V, each with its block loop and remainder.
template <int ch>
KRO_INLINE void planarPass(const SrcP3& s, Kro8u* d, int w) {
    const int nb = w & ~15;
    blockStage(s, DstPlane<ch>{d}, 0, nb, vecF1);
    wideStage(s, DstPlane<ch>{d}, nb, w, vecF4);
}
void innerRGBToYUV_8u_P3R(const Kro8u* r, const Kro8u* g, const Kro8u* b, Kro8u* y, Kro8u* u, Kro8u* v, int w) {
    const SrcP3 s{r, g, b};
    planarPass<0>(s, y, w);
    planarPass<1>(s, u, w);
    planarPass<2>(s, v, w);
}

// The alpha plane of the four-plane destination: the source's fourth byte.
void copyAlphaToPlane(const Kro8u* s, Kro8u* a, int w) {
    blocksOf16(0, w, [&](int x, unsigned n) KRO_INLINE_LAMBDA {
        storePart128(a + x, dwordsToBytes(sampleOf<3>(loadPart512(s + 4 * x, 4 * n))), n);
    });
}

void innerRGBToYUV_8u_AC4P4R(const Kro8u* s, Kro8u* y, Kro8u* u, Kro8u* v, Kro8u* a, int w) {
    const int nb = w & ~7;
    blockStage(SrcC4{s}, DstP3{y, u, v}, 0, nb, vecF7);
    wideStage(SrcC4{s}, DstP3{y, u, v}, nb, w, vecF3);
    copyAlphaToPlane(s, a, w);
}

// I1 on the first width & ~7 pixels, I2 on the rest: in a vector loop when
// source and destination do not overlap, else one pixel at a time.
void innerYUVToRGB_8u_C3R(const Kro8u* s, Kro8u* d, int w) {
    const int nb = w & ~7;
    blockStage(SrcC3{s}, DstC3{d}, 0, nb, vecI1);
    const std::size_t restBytes = 3 * static_cast<std::size_t>(w - nb);
    if (!overlaps(s + 3 * nb, restBytes, d + 3 * nb, restBytes))
        wideStage(SrcC3{s}, DstC3{d}, nb, w, vecI2);
    else
        scalarStage(SrcC3{s}, DstC3{d}, nb, w, formI2);
}

void innerYUVToRGB_8u_AC4R(const Kro8u* s, Kro8u* d, int w) { wideStage(SrcC4{s}, DstC4Keep{d}, 0, w, vecI2); }

void innerYUVToRGB_8u_P3C3R(const Kro8u* y, const Kro8u* u, const Kro8u* v, Kro8u* d, int w) {
    const int nb = w & ~15;
    blockStage(SrcP3{y, u, v}, DstC3{d}, 0, nb, vecI4);
    wideStage(SrcP3{y, u, v}, DstC3{d}, nb, w, vecI3);
}

void innerYUVToRGB_8u_P3R(const Kro8u* y, const Kro8u* u, const Kro8u* v, Kro8u* r, Kro8u* g, Kro8u* b, int w) {
    wideStage(SrcP3{y, u, v}, DstP3{r, g, b}, 0, w, vecI3);
}

// I6 on the first width & ~7 pixels, I7 on the rest, alpha from the argument.
// The block stage takes 16 pixels at a time whatever the alignment of the
// rows: every block computes I6, so alignment changes no value.
void ownYUVToRGB_8u_C3C4R(const Kro8u* s, Kro8u* d, int w, Kro8u alpha) {
    const int nb = w & ~7;
    blockStage(SrcC3{s}, DstC4Alpha{d, alpha}, 0, nb, vecI6);
    wideStage(SrcC3{s}, DstC4Alpha{d, alpha}, nb, w, vecI7);
}

// ---- drivers --------------------------------------------------------------------

// Walks the rows of a one-pointer-a-side image through a row kernel.
template <class Kernel>
KRO_INLINE void walkPacked(const Kro8u* s, int ss, Kro8u* d, int ds, int h, Kernel&& k) {
    eachRow(s, ss, d, ds, h, k);
}

}  // namespace

void myRGBToYUV_8u_C3R(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    if (hasVnni()) return myRGBToYUV_8u_C3R_vnni(s, ss, d, ds, w, h);
    walkPacked(s, ss, d, ds, h, [w](const Kro8u* a, Kro8u* b) { innerRGBToYUV_8u_C3R(a, b, w); });
}

void myRGBToYUV_8u_AC4R(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    if (hasVnni()) return myRGBToYUV_8u_AC4R_vnni(s, ss, d, ds, w, h);
    walkPacked(s, ss, d, ds, h, [w](const Kro8u* a, Kro8u* b) { innerRGBToYUV_8u_AC4R(a, b, w); });
}

void myYUVToRGB_8u_C3R(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    if (hasVnni()) return myYUVToRGB_8u_C3R_vnni(s, ss, d, ds, w, h);
    walkPacked(s, ss, d, ds, h, [w](const Kro8u* a, Kro8u* b) { innerYUVToRGB_8u_C3R(a, b, w); });
}

void myYUVToRGB_8u_AC4R(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    if (hasVnni()) return myYUVToRGB_8u_AC4R_vnni(s, ss, d, ds, w, h);
    walkPacked(s, ss, d, ds, h, [w](const Kro8u* a, Kro8u* b) { innerYUVToRGB_8u_AC4R(a, b, w); });
}

void myYUVToRGB_8u_C3C4R(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h, Kro8u alpha) {
    walkPacked(s, ss, d, ds, h, [w, alpha](const Kro8u* a, Kro8u* b) { ownYUVToRGB_8u_C3C4R(a, b, w, alpha); });
}

}  // namespace k0

// ---- entries ------------------------------------------------------------------------

using namespace k0;

KRO_ENTRY(kroiRGBToYUV_8u_C3R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return run(myRGBToYUV_8u_C3R, pSrc, srcStep, pDst, dstStep, roi);
}
KRO_ENTRY(kroiRGBToYUV_8u_AC4R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return run(myRGBToYUV_8u_AC4R, pSrc, srcStep, pDst, dstStep, roi);
}
KRO_ENTRY(kroiYUVToRGB_8u_C3R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return run(myYUVToRGB_8u_C3R, pSrc, srcStep, pDst, dstStep, roi);
}
KRO_ENTRY(kroiYUVToRGB_8u_AC4R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return run(myYUVToRGB_8u_AC4R, pSrc, srcStep, pDst, dstStep, roi);
}
KRO_ENTRY(kroiYUVToRGB_8u_C3C4R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi,
                                 Kro8u aval) {
    return run(myYUVToRGB_8u_C3C4R, pSrc, srcStep, pDst, dstStep, roi, aval);
}

// The plane-array members are tested after the size.
KRO_ENTRY(kroiRGBToYUV_8u_C3P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], int dstStep, KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    if (anyNullIn(pDst, 3)) return kroErrNullPtr;
    walkRows(roi.height, [&](int y) {
        innerRGBToYUV_8u_C3P3R(rowAt(pSrc, srcStep, y), rowAt(pDst[0], dstStep, y), rowAt(pDst[1], dstStep, y),
                               rowAt(pDst[2], dstStep, y), roi.width);
    });
    return kroOk;
}

KRO_ENTRY(kroiRGBToYUV_8u_P3R)(const Kro8u* const pSrc[3], int srcStep, Kro8u* const pDst[3], int dstStep,
                               KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    if (anyNullIn(pSrc, 3) || anyNullIn(pDst, 3)) return kroErrNullPtr;
    walkRows(roi.height, [&](int y) {
        innerRGBToYUV_8u_P3R(rowAt(pSrc[0], srcStep, y), rowAt(pSrc[1], srcStep, y), rowAt(pSrc[2], srcStep, y),
                             rowAt(pDst[0], dstStep, y), rowAt(pDst[1], dstStep, y), rowAt(pDst[2], dstStep, y),
                             roi.width);
    });
    return kroOk;
}

// Only the three colour planes are tested; the alpha plane is the caller's charge.
KRO_ENTRY(kroiRGBToYUV_8u_AC4P4R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[4], int dstStep, KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    if (anyNullIn(pDst, 3)) return kroErrNullPtr;
    walkRows(roi.height, [&](int y) {
        innerRGBToYUV_8u_AC4P4R(rowAt(pSrc, srcStep, y), rowAt(pDst[0], dstStep, y), rowAt(pDst[1], dstStep, y),
                                rowAt(pDst[2], dstStep, y), rowAt(pDst[3], dstStep, y), roi.width);
    });
    return kroOk;
}

KRO_ENTRY(kroiYUVToRGB_8u_P3C3R)(const Kro8u* const pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    if (anyNullIn(pSrc, 3)) return kroErrNullPtr;
    walkRows(roi.height, [&](int y) {
        innerYUVToRGB_8u_P3C3R(rowAt(pSrc[0], srcStep, y), rowAt(pSrc[1], srcStep, y), rowAt(pSrc[2], srcStep, y),
                               rowAt(pDst, dstStep, y), roi.width);
    });
    return kroOk;
}

KRO_ENTRY(kroiYUVToRGB_8u_P3R)(const Kro8u* const pSrc[3], int srcStep, Kro8u* const pDst[3], int dstStep,
                               KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    if (anyNullIn(pSrc, 3) || anyNullIn(pDst, 3)) return kroErrNullPtr;
    walkRows(roi.height, [&](int y) {
        innerYUVToRGB_8u_P3R(rowAt(pSrc[0], srcStep, y), rowAt(pSrc[1], srcStep, y), rowAt(pSrc[2], srcStep, y),
                             rowAt(pDst[0], dstStep, y), rowAt(pDst[1], dstStep, y), rowAt(pDst[2], dstStep, y),
                             roi.width);
    });
    return kroOk;
}
