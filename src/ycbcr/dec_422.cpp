// YCbCr 4:2:2 (packed and planar) and 4:1:1 to RGB and BGR. One chroma pair
// serves two pixels (four in 4:1:1); each member runs its short form over the
// first pixels of a row, its long form on the remaining complete cells, and
// treats the last odd pixel of a packed row by its own rule.

// GCC 12's 512-bit intrinsics seed unmasked results with a self-initialised
// undefined value, which -Wuninitialized reports once the whole-block plain
// loads and stores are inlined into these kernels.
#pragma GCC diagnostic ignored "-Wuninitialized"

#include <type_traits>

#include "ycbcr/dec_kernels.h"

namespace k0 {
namespace {
using namespace ycbcr;

// ---- the last odd pixel of a packed row ---------------------------------------------------
// Byte a is the chroma byte of the incomplete last pair (after the last Y in
// the Y-first orders, before it in CbYCr), b the chroma byte two places
// before a. The formula's Cb always takes a, whichever component the layout
// stores there.
enum class Odd { P, W, S, T };

template <Odd R, class S, class D>
KRO_INLINE void oddPixel(const Kro8u* row, const D& d, int w) {
    if (!(w & 1)) return;
    const int p = w >> 1;
    const Kro8u* q = row + 4 * p;
    const int y = q[S::kOffY], a = q[1 - S::kOffY];
    // b is read only where the rule uses it; rules P and T read it before the
    // row at width 1.
    const auto b = [q] { return static_cast<int>(q[-1 - S::kOffY]); };
    if constexpr (R == Odd::P) d.put(w - 1, formLongA(y, a, p != 1 ? b() : a));
    else if constexpr (R == Odd::W) d.put(w - 1, formLongA(y, a, w != 1 ? b() : a));
    else if constexpr (R == Odd::S) d.put(w - 1, formLongASingleG(y, a));
    else d.put(w - 1, formLongB57(y, a, b()));
}

// A packed row: `Pieces` on the first nShort pixels, `form` on the remaining
// pairs, rule R on the last odd pixel.
template <class S, class Pieces, Odd R, class D, class Form>
KRO_INLINE void innerPacked(const Kro8u* s, const D& d, int w, int nShort, Form form) {
    shortThenLongPairs<Pieces>(S{s}, d, nShort, w >> 1, form);
    oddPixel<R, S>(s, d, w);
}

// Rows of a packed source; dstAt(y) is destination row y.
template <class S, class Pieces, Odd R, class DstAt, class Form>
KRO_INLINE void myPacked(const Kro8u* s, int ss, int w, int h, int nShort, DstAt dstAt, Form form) {
    walkRows(h, [&](int y) { innerPacked<S, Pieces, R>(rowAt(s, ss, y), dstAt(y), w, nShort, form); });
}

// ---- Short-8 to three- and four-byte pixels, Long-A on the rest --------------------------

template <class S, Odd R, bool Bgr>
void myPackedToC3(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    myPacked<S, Short8, R>(s, ss, w, h, w & ~15, [=](int y) { return DstC3<Bgr>{rowAt(d, ds, y)}; },
                           K0_FORM(formLongA));
}
template <class S, Odd R, bool Bgr>
void myPackedToC4(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h, Kro8u alpha) {
    myPacked<S, Short8, R>(s, ss, w, h, w & ~15, [=](int y) { return DstC4Alpha<Bgr>{rowAt(d, ds, y), alpha}; },
                           K0_FORM(formLongA));
}

// Short-16R in blocks of 16 and a block of 8 (bit 3 of the width), Long-A.
void myCbYCr422ToBGR_8u_C2C4R(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h, Kro8u alpha) {
    myPacked<SrcCbYCr422, Short16R, Odd::W>(s, ss, w, h, w & ~7,
                                            [=](int y) { return DstC4Alpha<true>{rowAt(d, ds, y), alpha}; },
                                            K0_FORM(formLongA));
}

// ---- to planes: Short-16T, Long-B57, rule T ---------------------------------------------------

// Width 1 of the YCbCr member: the one chroma byte serves both components.
void ownYCbCr422ToRGB_C2P3R_w1(const Kro8u* s, int ss, Kro8u* const d[3], int ds, int h) {
    walkRows(h, [&](int y) {
        const Kro8u* q = rowAt(s, ss, y);
        DstP3{rowAt(d[0], ds, y), rowAt(d[1], ds, y), rowAt(d[2], ds, y)}.put(0, formLongB57SingleG(q[0], q[1]));
    });
}

// The YCbCr member takes the whole image to the path above at width 1; the
// YCrCb member has no such path.
template <class S>
void myYCbCr422ToRGB_C2_C3P2R(const Kro8u* s, int ss, Kro8u* const d[3], int ds, int w, int h) {
    if (std::is_same_v<S, SrcYCbCr422> && w == 1) return ownYCbCr422ToRGB_C2P3R_w1(s, ss, d, ds, h);
    myPacked<S, Short16T, Odd::T>(
        s, ss, w, h, w & ~3, [=](int y) { return DstP3{rowAt(d[0], ds, y), rowAt(d[1], ds, y), rowAt(d[2], ds, y)}; },
        K0_FORM(formLongB57));
}

// ---- planar 4:2:2 and 4:1:1 sources ---------------------------------------------------------

template <int Shift>
KRO_INLINE Planar<ChromaPlanes<Shift>> planarRow(const Kro8u* const p[3], const int step[3], int y) {
    return {{rowAt(p[0], step[0], y)}, {rowAt(p[1], step[1], y), rowAt(p[2], step[2], y)}};
}

// Short-8 on the first nShort pixels, Long-B57 on the remaining pairs; the
// last odd pixel is not written.
template <bool Bgr>
void myYCbCr422ToRGB_8u_P3C3R(const Kro8u* const s[3], const int ss[3], Kro8u* d, int ds, int w, int h, int nShort) {
    walkRows(h, [&](int y) {
        shortThenLongPairs<Short8>(planarRow<1>(s, ss, y), DstC3<Bgr>{rowAt(d, ds, y)}, nShort, w >> 1,
                                   K0_FORM(formLongB57));
    });
}

// Short-8 on the first width & ~3 pixels. Of the last width & 3, one or two
// take Long-C with the chroma of the last complete group; three are left.
template <class D>
KRO_INLINE void inner411(const Planar<ChromaPlanes<2>>& s, const D& d, int w) {
    const int nShort = w & ~3;
    wordStage(s, d, 0, nShort, [](__m512i y, __m512i cb, __m512i cr) { return Short8::full(y, cb, cr); });
    if ((w & 3) == 3) return;
    const int g = (w >> 2) - 1, cb = s.cb(g), cr = s.cr(g);
    for (int x = nShort; x < w; ++x) d.put(x, formLongC(s.y(x), cb, cr));
}

// ---- entry checks -------------------------------------------------------------------------------

KRO_INLINE KroStatus packedChecks(const Kro8u* s, const void* d, KroiSize roi, int minWidth, bool nullPlane = false) {
    if (anyNull(s, d) || nullPlane) return kroErrNullPtr;
    return sizeBelow(roi, minWidth) ? kroErrSize : kroOk;
}
KRO_INLINE KroStatus planarChecks(const Kro8u* const s[3], const int ss[3], const Kro8u* d, KroiSize roi, int minWidth) {
    if (anyNull(s, ss, d) || anyNullIn(s, 3)) return kroErrNullPtr;
    return sizeBelow(roi, minWidth) ? kroErrSize : kroOk;
}

}  // namespace
}  // namespace k0

// ---- entries ----------------------------------------------------------------------------------------

using namespace k0;

#define K0_PACKED_C3(name, Src, rule, bgr, minWidth)                                              \
    KRO_ENTRY(name)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {   \
        if (const KroStatus st = packedChecks(pSrc, pDst, roi, minWidth)) return st;             \
        myPackedToC3<Src, rule, bgr>(pSrc, srcStep, pDst, dstStep, roi.width, roi.height);      \
        return kroOk;                                                                            \
    }
K0_PACKED_C3(kroiYCbCr422ToRGB_8u_C2C3R, SrcYCbCr422, Odd::P, false, 1)
K0_PACKED_C3(kroiYCbCr422ToBGR_8u_C2C3R, SrcYCbCr422, Odd::P, true, 2)
K0_PACKED_C3(kroiYCrCb422ToRGB_8u_C2C3R, SrcYCrCb422, Odd::P, false, 1)
K0_PACKED_C3(kroiYCrCb422ToBGR_8u_C2C3R, SrcYCrCb422, Odd::P, true, 1)
K0_PACKED_C3(kroiCbYCr422ToRGB_8u_C2C3R, SrcCbYCr422, Odd::P, false, 1)
#undef K0_PACKED_C3

#define K0_PACKED_C4(name, Src, rule, bgr)                                                                   \
    KRO_ENTRY(name)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi, Kro8u aval) {  \
        if (const KroStatus st = packedChecks(pSrc, pDst, roi, 1)) return st;                               \
        myPackedToC4<Src, rule, bgr>(pSrc, srcStep, pDst, dstStep, roi.width, roi.height, aval);           \
        return kroOk;                                                                                       \
    }
K0_PACKED_C4(kroiYCbCr422ToRGB_8u_C2C4R, SrcYCbCr422, Odd::S, false)
K0_PACKED_C4(kroiYCbCr422ToBGR_8u_C2C4R, SrcYCbCr422, Odd::S, true)
K0_PACKED_C4(kroiYCrCb422ToRGB_8u_C2C4R, SrcYCrCb422, Odd::P, false)
K0_PACKED_C4(kroiYCrCb422ToBGR_8u_C2C4R, SrcYCrCb422, Odd::P, true)
#undef K0_PACKED_C4

KRO_ENTRY(kroiCbYCr422ToBGR_8u_C2C4R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi,
                                      Kro8u aval) {
    if (const KroStatus st = packedChecks(pSrc, pDst, roi, 1)) return st;
    myCbYCr422ToBGR_8u_C2C4R(pSrc, srcStep, pDst, dstStep, roi.width, roi.height, aval);
    return kroOk;
}

KRO_ENTRY(kroiYCbCr422ToRGB_8u_C2P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], int dstStep, KroiSize roi) {
    if (const KroStatus st = packedChecks(pSrc, pDst, roi, 1, pDst && anyNullIn(pDst, 3))) return st;
    myYCbCr422ToRGB_C2_C3P2R<SrcYCbCr422>(pSrc, srcStep, pDst, dstStep, roi.width, roi.height);
    return kroOk;
}

KRO_ENTRY(kroiYCrCb422ToRGB_8u_C2P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], int dstStep, KroiSize roi) {
    if (const KroStatus st = packedChecks(pSrc, pDst, roi, 1, pDst && anyNullIn(pDst, 3))) return st;
    myYCbCr422ToRGB_C2_C3P2R<SrcYCrCb422>(pSrc, srcStep, pDst, dstStep, roi.width, roi.height);
    return kroOk;
}

KRO_ENTRY(kroiYCbCr422ToRGB_8u_P3C3R)(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep,
                                      KroiSize roi) {
    if (const KroStatus st = planarChecks(pSrc, srcStep, pDst, roi, 2)) return st;
    myYCbCr422ToRGB_8u_P3C3R<false>(pSrc, srcStep, pDst, dstStep, roi.width, roi.height, roi.width & ~31);
    return kroOk;
}

KRO_ENTRY(kroiYCbCr422ToBGR_8u_P3C3R)(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep,
                                      KroiSize roi) {
    if (const KroStatus st = planarChecks(pSrc, srcStep, pDst, roi, 2)) return st;
    myYCbCr422ToRGB_8u_P3C3R<true>(pSrc, srcStep, pDst, dstStep, roi.width, roi.height, roi.width & ~15);
    return kroOk;
}

KRO_ENTRY(kroiYCbCr411ToBGR_8u_P3C3R)(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep,
                                      KroiSize roi) {
    if (const KroStatus st = planarChecks(pSrc, srcStep, pDst, roi, 4)) return st;
    walkRows(roi.height, [&](int y) { inner411(planarRow<2>(pSrc, srcStep, y), DstC3<true>{rowAt(pDst, dstStep, y)}, roi.width); });
    return kroOk;
}

KRO_ENTRY(kroiYCbCr411ToBGR_8u_P3C4R)(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep,
                                      KroiSize roi, Kro8u aval) {
    if (const KroStatus st = planarChecks(pSrc, srcStep, pDst, roi, 4)) return st;
    walkRows(roi.height, [&](int y) {
        inner411(planarRow<2>(pSrc, srcStep, y), DstC4Alpha<true>{rowAt(pDst, dstStep, y), aval}, roi.width);
    });
    return kroOk;
}
