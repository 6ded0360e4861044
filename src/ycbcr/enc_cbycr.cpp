// RGB to the packed Cb Y Cr stream with filtered chroma: weights 1, 2, 1 over
// pixels 2i-1, 2i, 2i+1 for pair i, nothing before the row start. Plain, and
// after the transfer curve of tableFwd8u.
#include "ycbcr/enc_io.h"

// GCC 12's 512-bit intrinsics seed unmasked results with a self-initialised
// undefined value, which -Wuninitialized reports once the whole-block plain
// loads and stores are inlined into these kernels.
#pragma GCC diagnostic ignored "-Wuninitialized"

namespace k0 {
namespace {
using namespace ycbcr;

// Vector pairs over the first width & ~15 pixels (16 pairs, then 8 if bit 4
// of the width is set), the rest pair by pair in 32 bits with the last odd
// term of the vector part carried over; a last odd pixel as Cb and Y in Long.
void innerRGBToCbYCr422_8u_C3C2R(const Kro8u* src, Kro8u* d, int w, const FilterRows& k) {
    const RgbC3<false> s{{src}};
    const int nVec = w & ~15;
    __m512i prevCb = _mm512_setzero_si512(), prevCr = prevCb;
    inBlocks<32>(nVec, [&](int x, unsigned n) KRO_INLINE_LAMBDA {
        const V3 v = s.words(x, n);
        const V2 t = vecFilterTerms(k, v.a, v.b, v.c);
        const __m512i oCb = naturalPairs(oddTerm(t.a)), oCr = naturalPairs(oddTerm(t.b));
        const __m512i cb = vecFilteredChroma(naturalPairs(evenPlusOdd(t.a)), _mm512_alignr_epi32(oCb, prevCb, 15));
        const __m512i cr = vecFilteredChroma(naturalPairs(evenPlusOdd(t.b)), _mm512_alignr_epi32(oCr, prevCr, 15));
        prevCb = oCb, prevCr = oCr;
        const __m512i y = naturalPairs(vecFilteredLuma(v.a, v.b, v.c));
        storePart512(d + 2 * x, _mm512_ternarylogic_epi32(cb, _mm512_slli_epi32(y, 8), _mm512_slli_epi32(cr, 16), 0xFE),
                  2 * n);
    });
    int qCb = 0, qCr = 0;  // c(2i-1) >> 2 for the next pair
    if (nVec > 0) {
        const Px p = s.get(nVec - 1);
        qCb = filterCarry(filterOCb(p.a, p.b, p.c)), qCr = filterCarry(filterOCr(p.a, p.b, p.c));
    }
    for (int x = nVec; x + 1 < w; x += 2) {
        const Px p0 = s.get(x), p1 = s.get(x + 1);
        const int cb1 = dot(kCb, p1.a, p1.b, p1.c), cr1 = dot(kCr, p1.a, p1.b, p1.c);
        putPair<C2::CbYCr>(d + 2 * x, longY(p0), longY(p1),
                           formFilteredPairLong(qCb, dot(kCb, p0.a, p0.b, p0.c), cb1),
                           formFilteredPairLong(qCr, dot(kCr, p0.a, p0.b, p0.c), cr1));
        qCb = cb1 >> 2, qCr = cr1 >> 2;
    }
    if (w & 1) {
        const Px p = s.get(w - 1);
        d[2 * (w - 1)] = longC(kCb, p), d[2 * (w - 1) + 1] = longY(p);
    }
}

KRO_INLINE Px corrected(Px p) {
    return {u8(tableFwd8u[p.a]), u8(tableFwd8u[p.b]), u8(tableFwd8u[p.c])};
}

// Every sample through the table, then all pairs in the plain integer rows,
// 16 pixels at a time; a last odd pixel as Cb and Y in Long.
void innerRGBToCbYCr422Gamma_8u_C3C2R(const Kro8u* src, Kro8u* d, int w, const GammaRows& k, const GammaTable& g) {
    const SrcC3 s{src};
    const int np = w & ~1;
    const __m512i evenByte = _mm512_set1_epi64(0xFF);
    __m512i prevCb = _mm512_setzero_si512(), prevCr = prevCb;
    inBlocks<16>(np, [&](int x, unsigned n) KRO_INLINE_LAMBDA {
        const V3 v = s.dwords(x, n);
        const __m512i R = vecGammaFwd(g, v.a), G = vecGammaFwd(g, v.b), B = vecGammaFwd(g, v.c);
        const __m512i tCb = gammaDot(k.cb, R, G, B), tCr = gammaDot(k.cr, R, G, B);
        const __m512i cb = vecGammaChroma(tCb, prevCb), cr = vecGammaChroma(tCr, prevCr);
        prevCb = tCb, prevCr = tCr;
        // Dword 2i: Cb | Y0 << 8, dword 2i+1: Cr | Y1 << 8; then to words.
        const __m512i px = _mm512_ternarylogic_epi32(_mm512_slli_epi32(vecGammaLuma(k, R, G, B), 8),
                                                      _mm512_and_si512(cb, evenByte),
                                                      _mm512_slli_epi64(_mm512_and_si512(cr, evenByte), 32), 0xFE);
        storePart256(d + 2 * x, _mm512_cvtepi32_epi16(px), 2 * n);
    });
    if (w & 1) {
        const Px p = corrected(s.get(w - 1));
        d[2 * (w - 1)] = longC(kCb, p), d[2 * (w - 1) + 1] = longY(p);
    }
}

}  // namespace
}  // namespace k0

using namespace k0;
using namespace k0::ycbcr;

KRO_ENTRY(kroiRGBToCbYCr422_8u_C3C2R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    const FilterRows k = FilterRows::make();
    eachRow(pSrc, srcStep, pDst, dstStep, roi.height,
            [&](const Kro8u* a, Kro8u* b) { innerRGBToCbYCr422_8u_C3C2R(a, b, roi.width, k); });
    return kroOk;
}

KRO_ENTRY(kroiRGBToCbYCr422Gamma_8u_C3C2R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    if (const KroStatus st = checkArgs(roi, pSrc, pDst)) return st;
    const GammaRows k = GammaRows::make();
    const GammaTable g = GammaTable::make();
    eachRow(pSrc, srcStep, pDst, dstStep, roi.height,
            [&](const Kro8u* a, Kro8u* b) { innerRGBToCbYCr422Gamma_8u_C3C2R(a, b, roi.width, k, g); });
    return kroOk;
}
