// RGB to YCbCr 4:2:2, packed and planar: Short pairs in 32-pixel blocks,
// Long2 for the pairs after the Short ladder, and each member's own last
// odd pixel.
#include "ycbcr/enc_io.h"

namespace k0 {
namespace {
using namespace ycbcr;

// Short on pairs [0, nShort) (pixel indices, even), `tail` on the whole pairs
// after them, `odd` on a last odd pixel. `d` is the packed row.
template <C2 L, class S, class Tail, class Odd>
KRO_INLINE void innerPacked422(const S& s, Kro8u* d, int w, int nShort, Tail tail, Odd odd) {
    inBlocks<32>(nShort, [&](int x, unsigned n) KRO_INLINE_LAMBDA {
        const V3 v = s.words(x, n);
        const V2 c = cellShortChroma<6>(pairSums(v));
        storePart512(d + 2 * x, packPairs<L>(vecShortLuma(v.a, v.b, v.c), c.a, c.b), 2 * n);
    });
    for (int x = nShort; x + 1 < w; x += 2) tail(s.get(x), s.get(x + 1), d + 2 * x);
    if (w & 1) odd(s.get(w - 1), d + 2 * (w - 1));
}

// Short on pairs [0, nShort), Long2 (K 0x1004000) on the rest; a last odd
// pixel gets its Y in Long and no chroma.
template <class S>
KRO_INLINE void innerPlanar422(const S& s, Kro8u* y, Kro8u* cb, Kro8u* cr, int w, int nShort) {
    inBlocks<32>(nShort, [&](int x, unsigned n) KRO_INLINE_LAMBDA {
        const V3 v = s.words(x, n);
        storePart256(y + x, lumaBytes(vecShortLuma(v.a, v.b, v.c)), n);
        const V2 c = cellShortChroma<6>(pairSums(v));
        storePart128(cb + x / 2, pairBytes(c.a), n / 2);
        storePart128(cr + x / 2, pairBytes(c.b), n / 2);
    });
    for (int x = nShort; x + 1 < w; x += 2) {
        const Px p0 = s.get(x), p1 = s.get(x + 1);
        Sums t;
        t += p0, t += p1;
        y[x] = longY(p0), y[x + 1] = longY(p1);
        cb[x / 2] = u8(formLong2(kCb, t.r, t.g, t.b, kLong2Eighth));
        cr[x / 2] = u8(formLong2(kCr, t.r, t.g, t.b, kLong2Eighth));
    }
    if (w & 1) y[w - 1] = longY(s.get(w - 1));
}

// Blocks of 32 and 16 pixels, then one of 8 if bit 3 of the width is set,
// else one of 4 if bit 2 is.
KRO_INLINE int shortLadder(int w) { return (w & ~15) + ((w & 8) ? 8 : (w & 4) ? 4 : 0); }

// The whole pairs after the Short ladder of the planar-to-packed members:
// Long2 with K 0x1010000, Y0 in Long and Y1 with the addend 0x100000.
template <C2 L>
KRO_INLINE void long2Pair(Px p0, Px p1, Kro8u* d) {
    Sums t;
    t += p0, t += p1;
    putPair<L>(d, formLongLuma(p0.a, p0.b, p0.c), formLongLumaNoHalf(p1.a, p1.b, p1.c),
               formLong2(kCb, t.r, t.g, t.b, kLong2Half), formLong2(kCr, t.r, t.g, t.b, kLong2Half));
}
constexpr auto kNoTail = [](Px, Px, Kro8u*) {};

// The last odd pixel, two bytes, by member.
constexpr auto oddYCbEighth = [](Px p, Kro8u* d) { d[0] = longY(p), d[1] = u8(formLongChromaEighth(kCb, p.a, p.b, p.c)); };
constexpr auto oddYCb = [](Px p, Kro8u* d) { d[0] = longY(p), d[1] = longC(kCb, p); };
constexpr auto oddCbY = [](Px p, Kro8u* d) { d[0] = longC(kCb, p), d[1] = longY(p); };
constexpr auto oddYCr = [](Px p, Kro8u* d) { d[0] = longY(p), d[1] = longC(kCr, p); };

// Interleaved source to a packed stream, every whole pair in Short.
template <C2 L, class S, class Odd>
KroStatus packed422(const Kro8u* pSrc, int ss, Kro8u* pDst, int ds, KroiSize roi, int minW, Odd odd) {
    if (const KroStatus st = checkEnc(anyNull(pSrc, pDst), kNoPlanes, roi, minW, 1)) return st;
    const int w = roi.width;
    eachRow(pSrc, ss, pDst, ds, roi.height,
            [w, odd](const Kro8u* a, Kro8u* b) { innerPacked422<L>(S{{a}}, b, w, w & ~1, kNoTail, odd); });
    return kroOk;
}

template <class S>
KroStatus planar422(const Kro8u* pSrc, int ss, Kro8u* const pDst[3], const int dstStep[3], KroiSize roi, bool ladder) {
    if (const KroStatus st = checkEnc(anyNull(pSrc, pDst, dstStep), [&] { return anyNullIn(pDst, 3); }, roi, 2, 1))
        return st;
    const int w = roi.width, nShort = ladder ? shortLadder(w) : w & ~15;
    walkRows(roi.height, [&](int y) {
        innerPlanar422(S{{rowAt(pSrc, ss, y)}}, rowAt(pDst[0], dstStep[0], y), rowAt(pDst[1], dstStep[1], y),
                       rowAt(pDst[2], dstStep[2], y), w, nShort);
    });
    return kroOk;
}

// Planes to a packed stream; the plane pointers are tested after the size.
template <C2 L>
KroStatus planesToPacked422(const Kro8u* const pSrc[3], int ss, Kro8u* pDst, int ds, KroiSize roi) {
    if (const KroStatus st = checkEnc(anyNull(pSrc, pDst), [&] { return anyNullIn(pSrc, 3); }, roi, 1, 1, true))
        return st;
    const int w = roi.width, nShort = shortLadder(w);
    walkRows(roi.height, [&](int y) {
        const Rgb<SrcP3, false> s{{rowAt(pSrc[0], ss, y), rowAt(pSrc[1], ss, y), rowAt(pSrc[2], ss, y)}};
        innerPacked422<L>(s, rowAt(pDst, ds, y), w, nShort, long2Pair<L>, oddYCr);
    });
    return kroOk;
}

}  // namespace
}  // namespace k0

using namespace k0;
using namespace k0::ycbcr;

KRO_ENTRY(kroiRGBToYCbCr422_8u_C3C2R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return packed422<C2::YCbCr, RgbC3<false>>(pSrc, srcStep, pDst, dstStep, roi, 1, oddYCbEighth);
}
// The last odd pixel holds Cb where the stream has Cr.
KRO_ENTRY(kroiRGBToYCrCb422_8u_C3C2R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return packed422<C2::YCrCb, RgbC3<false>>(pSrc, srcStep, pDst, dstStep, roi, 1, oddYCbEighth);
}
KRO_ENTRY(kroiBGRToYCbCr422_8u_C3C2R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return packed422<C2::YCbCr, RgbC3<true>>(pSrc, srcStep, pDst, dstStep, roi, 2, oddYCbEighth);
}
KRO_ENTRY(kroiBGRToYCbCr422_8u_AC4C2R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return packed422<C2::YCbCr, RgbC4<true>>(pSrc, srcStep, pDst, dstStep, roi, 2, oddYCb);
}
KRO_ENTRY(kroiBGRToCbYCr422_8u_AC4C2R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return packed422<C2::CbYCr, RgbC4<true>>(pSrc, srcStep, pDst, dstStep, roi, 1, oddCbY);
}

KRO_ENTRY(kroiRGBToYCbCr422_8u_C3P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3],
                                      KroiSize roi) {
    return planar422<RgbC3<false>>(pSrc, srcStep, pDst, dstStep, roi, true);
}
KRO_ENTRY(kroiBGRToYCbCr422_8u_C3P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3],
                                      KroiSize roi) {
    return planar422<RgbC3<true>>(pSrc, srcStep, pDst, dstStep, roi, true);
}
KRO_ENTRY(kroiBGRToYCbCr422_8u_AC4P3R)(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3],
                                       KroiSize roi) {
    return planar422<RgbC4<true>>(pSrc, srcStep, pDst, dstStep, roi, false);
}

// The last odd pixel holds Cr where the stream has Cb.
KRO_ENTRY(kroiRGBToYCbCr422_8u_P3C2R)(const Kro8u* const pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return planesToPacked422<C2::YCbCr>(pSrc, srcStep, pDst, dstStep, roi);
}
KRO_ENTRY(kroiRGBToYCrCb422_8u_P3C2R)(const Kro8u* const pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return planesToPacked422<C2::YCrCb>(pSrc, srcStep, pDst, dstStep, roi);
}
