// RGB <-> YCbCr 4:4:4: entries, drivers and the row kernels. Each kernel runs
// the forms of its member at their places along the row; the multiply-add
// kernels of the forward interleaved members are in ycbcr444_vnni.cpp.

// GCC 12's 512-bit intrinsics seed unmasked results with a self-initialised
// undefined value, which -Wuninitialized reports once the whole-block plain
// loads and stores are inlined into these kernels.
#pragma GCC diagnostic ignored "-Wuninitialized"

#include "entry.h"
#include "ycbcr/ycbcr444_io.h"
#include "ycbcr/ycbcr444_vnni.h"

namespace k0 {
namespace {
using namespace ycbcr;

// The stages as callables, so that the stage loops inline them.
#define K0_STAGE(f) [](__m512i a, __m512i b, __m512i c) { return f(a, b, c); }

// ---- forward --------------------------------------------------------------------------

// Short on the first width & ~15 pixels, Long on the rest.
template <class S, class D, class DTail>
KRO_INLINE void shortThenLong(const S& s, const D& d, const DTail& tail, int w) {
    const int nb = w & ~15;
    wordStage(s, d, 0, nb, K0_STAGE(vecShort));
    dwordStage(s, tail, nb, w, K0_STAGE(vecLong));
}

// The row kernels of the path without the multiply-add instructions. Four-byte
// destinations: the Short pixels are stored whole with a cleared fourth byte,
// the Long pixels leave it alone.
void l9RGBToYCbCr_8u_C3R(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    eachRow(s, ss, d, ds, h, [w](const Kro8u* a, Kro8u* b) { shortThenLong(SrcC3{a}, DstC3<>{b}, DstC3<>{b}, w); });
}
void l9RGBToYCbCr_8u_AC4R(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    eachRow(s, ss, d, ds, h,
            [w](const Kro8u* a, Kro8u* b) { shortThenLong(SrcC4{a}, DstC4Alpha<>{b, 0}, DstC4Keep{b}, w); });
}

template <class S>
void myRGBToYCbCrP3(const S& src, int ss, Kro8u* const pDst[3], int ds, int w, int h) {
    walkRows(h, [&](int y) {
        const S s{rowAt(src.p, ss, y)};
        const DstP3 d{rowAt(pDst[0], ds, y), rowAt(pDst[1], ds, y), rowAt(pDst[2], ds, y)};
        shortThenLong(s, d, d, w);
    });
}

// The first and one-past-last byte of a plane's region, for signed steps.
struct Span {
    const Kro8u *lo, *hi;
};
Span spanOf(const Kro8u* p, int step, int w, int h) {
    const std::ptrdiff_t last = static_cast<std::ptrdiff_t>(step) * (h - 1);
    return last >= 0 ? Span{p, p + last + w} : Span{p + last, p + w};
}
bool anyOverlap(const Kro8u* const* a, int sa, const Kro8u* const* b, int sb, int w, int h) {
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) {
            const Span x = spanOf(a[i], sa, w, h), y = spanOf(b[j], sb, w, h);
            if (x.lo < y.hi && y.lo < x.hi) return true;
        }
    return false;
}

KRO_INLINE bool aligned16(std::uintptr_t v) { return (v & 15) == 0; }

// Short-P on every pixel when both steps, the width and all six planes are
// multiples of 16; otherwise Long, as vectors when the source and destination
// regions share no byte and one pixel at a time when they do.
void myRGBToYCbCr_8u_P3R(const Kro8u* const src[3], int ss, Kro8u* const dst[3], int ds, int w, int h) {
    bool aligned = aligned16(static_cast<unsigned>(ss)) && aligned16(static_cast<unsigned>(ds)) &&
                   aligned16(static_cast<unsigned>(w));
    for (int i = 0; i < 3; ++i)
        aligned = aligned && aligned16(reinterpret_cast<std::uintptr_t>(src[i])) &&
                  aligned16(reinterpret_cast<std::uintptr_t>(dst[i]));
    const int mode = aligned ? 0 : anyOverlap(src, ss, dst, ds, w, h) ? 2 : 1;
    walkRows(h, [&](int y) {
        const SrcP3 s{rowAt(src[0], ss, y), rowAt(src[1], ss, y), rowAt(src[2], ss, y)};
        const DstP3 d{rowAt(dst[0], ds, y), rowAt(dst[1], ds, y), rowAt(dst[2], ds, y)};
        if (mode == 0) wordStage(s, d, 0, w, K0_STAGE(vecShortP));
        else if (mode == 1) dwordStage(s, d, 0, w, K0_STAGE(vecLong));
        else scalarStage(s, d, 0, w, formLong);
    });
}

// ---- inverse --------------------------------------------------------------------------------

// Short-8 on the first width & ~15 pixels and on one more block of 4 pixels
// (bit 2 of the width set) or else of 8 (bit 3 set); Long-A on the rest.
void innerYCbCrToRGB_8u_C3R(const Kro8u* s, Kro8u* d, int w) {
    const int nb = (w & ~15) + ((w & 4) ? 4 : (w & 8) ? 8 : 0);
    wordStage(SrcC3{s}, DstC3<>{d}, 0, nb, K0_STAGE(vecShort8));
    dwordStage(SrcC3{s}, DstC3<>{d}, nb, w, K0_STAGE(vecLongA));
}

// Short-8 on the first width & ~3 pixels, Long-A on the last width & 3.
template <bool Bgr>
void innerYCbCrToRGB_8u_P3C3R(const SrcP3& s, Kro8u* d, int w) {
    wordStage(s, DstC3<Bgr>{d}, 0, w & ~3, K0_STAGE(vecShort8));
    dwordStage(s, DstC3<Bgr>{d}, w & ~3, w, K0_STAGE(vecLongA));
}

// True when any source plane's pixels [x0, x1) share a byte with the
// destination's bytes of the same pixels.
KRO_INLINE bool tailOverlaps(const SrcP3& s, const Kro8u* d, int bpp, int x0, int x1) {
    const std::size_t n = static_cast<std::size_t>(x1 - x0);
    const Kro8u* dt = d + static_cast<std::ptrdiff_t>(bpp) * x0;
    return overlaps(s.p0 + x0, n, dt, bpp * n) || overlaps(s.p1 + x0, n, dt, bpp * n) ||
           overlaps(s.p2 + x0, n, dt, bpp * n);
}

// Short-16T on the first width & ~3 pixels; Long-B on the last width & 3,
// one pixel at a time when a destination plane overlaps a source plane there.
void innerYCbCrToRGB_8u_P3R(const SrcP3& s, const DstP3& d, int w) {
    const int nb = w & ~3;
    wordStage(s, d, 0, nb, K0_STAGE(vecShort16T));
    if (nb == w) return;
    if (tailOverlaps(s, d.p0, 1, nb, w) || tailOverlaps(s, d.p1, 1, nb, w) || tailOverlaps(s, d.p2, 1, nb, w))
        scalarStage(s, d, nb, w, formLongB);
    else
        dwordStage(s, d, nb, w, K0_STAGE(vecLongB));
}

// Long-B0 on every pixel; the fourth byte is left alone.
void innerYCbCrToRGB_AC4R(const Kro8u* s, Kro8u* d, int w) {
    dwordStage(SrcC4{s}, DstC4Keep{d}, 0, w, K0_STAGE(vecLongB0));
}

// Short-16R on the first width & ~7 pixels, Long-A on the rest, one pixel at
// a time when the destination overlaps a source plane there.
void innerYCbCrToRGB_8u_P3C4R(const SrcP3& s, Kro8u* d, int w, Kro8u alpha) {
    const int nb = w & ~7;
    const DstC4Alpha<> dst{d, alpha};
    wordStage(s, dst, 0, nb, K0_STAGE(vecShort16R));
    if (tailOverlaps(s, d, 4, nb, w))
        scalarStage(s, dst, nb, w, formLongA);
    else
        dwordStage(s, dst, nb, w, K0_STAGE(vecLongA));
}

// Short-16R on every pixel.
void ownYCbCrToBGR_8u_P3C4R(const SrcP3& s, Kro8u* d, int w, Kro8u alpha) {
    wordStage(s, DstC4Alpha<true>{d, alpha}, 0, w, K0_STAGE(vecShort16R));
}

// Rows of a planar source.
KRO_INLINE SrcP3 planesAt(const Kro8u* const p[3], int step, int y) {
    return {rowAt(p[0], step, y), rowAt(p[1], step, y), rowAt(p[2], step, y)};
}
KRO_INLINE DstP3 planesAt(Kro8u* const p[3], int step, int y) {
    return {rowAt(p[0], step, y), rowAt(p[1], step, y), rowAt(p[2], step, y)};
}

}  // namespace

void myYCbCrToRGB_8u_C3R(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    eachRow(s, ss, d, ds, h, [w](const Kro8u* a, Kro8u* b) { innerYCbCrToRGB_8u_C3R(a, b, w); });
}
void myYCbCrToRGBA_AC4R(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    eachRow(s, ss, d, ds, h, [w](const Kro8u* a, Kro8u* b) { innerYCbCrToRGB_AC4R(a, b, w); });
}

}  // namespace k0

// ---- entries ----------------------------------------------------------------------------------

using namespace k0;

namespace {

KRO_INLINE bool badSize(KroiSize roi) { return roi.width < 1 || roi.height < 1; }

// Null pointers, plane members included, then the size.
KRO_INLINE KroStatus nullsThenSize(bool anyNullPointer, KroiSize roi) {
    return anyNullPointer ? kroErrNullPtr : badSize(roi) ? kroErrSize : kroOk;
}

// The forward interleaved members ask the feature question once, after their
// checks, and hand the whole image to the kernel of the answer.
using ImageKernel = void (*)(const Kro8u*, int, Kro8u*, int, int, int);
KroStatus byPath(ImageKernel vnni, ImageKernel plain, const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep,
                 KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    (hasVnni() ? vnni : plain)(pSrc, srcStep, pDst, dstStep, roi.width, roi.height);
    return kroOk;
}

// The validation and row walk of the planar-to-interleaved members.
template <bool Bgr>
KroStatus planesToC3(const Kro8u* const pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    if (const KroStatus st = nullsThenSize(anyNull(pSrc, pDst) || anyNullIn(pSrc, 3), roi)) return st;
    walkRows(roi.height, [&](int y) {
        innerYCbCrToRGB_8u_P3C3R<Bgr>(planesAt(pSrc, srcStep, y), rowAt(pDst, dstStep, y), roi.width);
    });
    return kroOk;
}

}  // namespace

KRO_ENTRY(kroiRGBToYCbCr_8u_C3R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return byPath(myRGBToYCbCr_8u_C3R_vnni, l9RGBToYCbCr_8u_C3R, pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiRGBToYCbCr_8u_AC4R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return byPath(myRGBToYCbCr_8u_AC4R_vnni, l9RGBToYCbCr_8u_AC4R, pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiRGBToYCbCr_8u_C3P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], int dstStep, KroiSize roi) {
    if (const KroStatus st = nullsThenSize(anyNull(pSrc, pDst) || anyNullIn(pDst, 3), roi)) return st;
    myRGBToYCbCrP3(SrcC3{pSrc}, srcStep, pDst, dstStep, roi.width, roi.height);
    return kroOk;
}

// The plane array is read without a test of its own.
KRO_ENTRY(kroiRGBToYCbCr_8u_AC4P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], int dstStep, KroiSize roi) {
    if (const KroStatus st = nullsThenSize(pSrc == nullptr || anyNull(pDst[0], pDst[1], pDst[2]), roi)) return st;
    myRGBToYCbCrP3(SrcC4{pSrc}, srcStep, pDst, dstStep, roi.width, roi.height);
    return kroOk;
}

// The arrays, then the size, then the planes.
KRO_ENTRY(kroiRGBToYCbCr_8u_P3R)(const Kro8u* const pSrc[3], int srcStep, Kro8u* const pDst[3], int dstStep,
                                 KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    if (anyNullIn(pSrc, 3) || anyNullIn(pDst, 3)) return kroErrNullPtr;
    myRGBToYCbCr_8u_P3R(pSrc, srcStep, pDst, dstStep, roi.width, roi.height);
    return kroOk;
}

KRO_ENTRY(kroiYCbCrToRGB_8u_C3R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return run(myYCbCrToRGB_8u_C3R, pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiYCbCrToRGB_8u_AC4R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return run(myYCbCrToRGBA_AC4R, pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiYCbCrToRGB_8u_P3C3R)(const Kro8u* const pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return planesToC3<false>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiYCbCrToBGR_8u_P3C3R)(const Kro8u* const pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return planesToC3<true>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiYCbCrToRGB_8u_P3R)(const Kro8u* const pSrc[3], int srcStep, Kro8u* const pDst[3], int dstStep,
                                 KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    if (anyNullIn(pSrc, 3) || anyNullIn(pDst, 3)) return kroErrNullPtr;
    walkRows(roi.height, [&](int y) {
        innerYCbCrToRGB_8u_P3R(planesAt(pSrc, srcStep, y), planesAt(pDst, dstStep, y), roi.width);
    });
    return kroOk;
}

KRO_ENTRY(kroiYCbCrToRGB_8u_P3C4R)(const Kro8u* const pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roi,
                                   Kro8u aval) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    if (anyNullIn(pSrc, 3)) return kroErrNullPtr;
    walkRows(roi.height, [&](int y) {
        innerYCbCrToRGB_8u_P3C4R(planesAt(pSrc, srcStep, y), rowAt(pDst, dstStep, y), roi.width, aval);
    });
    return kroOk;
}

KRO_ENTRY(kroiYCbCrToBGR_8u_P3C4R)(const Kro8u* const pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roi,
                                   Kro8u aval) {
    if (const KroStatus st = nullsThenSize(anyNull(pSrc, pDst) || anyNullIn(pSrc, 3), roi)) return st;
    walkRows(roi.height, [&](int y) {
        ownYCbCrToBGR_8u_P3C4R(planesAt(pSrc, srcStep, y), rowAt(pDst, dstStep, y), roi.width, aval);
    });
    return kroOk;
}
