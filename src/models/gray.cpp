// 8-bit gray: RGB to gray in its two stages, gray to RGB, and the Y of a
// 4:2:2 stream.
#include "gray_entry.h"
#include "gray_forms.h"
#include "gray_lanes.h"

namespace k0 {
namespace {

using namespace lanes;

// The weights of one call, in the two shapes the stages use them.
struct Weights8u {
    __m512i block[3];   // low 16 bits, unsigned
    __m512i remain[3];  // full signed 32 bits
};

Weights8u weights8u(const Kro32f* coeffs) {
    const int32_t w[3] = {coeffs ? gray::fixedWeight(coeffs[0]) : gray::kFixedR,
                          coeffs ? gray::fixedWeight(coeffs[1]) : gray::kFixedG,
                          coeffs ? gray::fixedWeight(coeffs[2]) : gray::kFixedB};
    Weights8u k;
    for (int c = 0; c < 3; ++c) {
        k.block[c] = _mm512_set1_epi16(static_cast<short>(w[c] & 0xFFFF));
        k.remain[c] = _mm512_set1_epi32(w[c]);
    }
    return k;
}

// Block stage on n = 32 or 16 pixels.
template <int S>
KRO_INLINE void grayBlock8u(const Kro8u* src, Kro8u* dst, unsigned n, const Weights8u& w) {
    __m512i a, b;
    load8<S>(src, n, a, b);
    const __m512i tr = _mm512_mulhi_epu16(channel8<S, 0, true>(a, b), w.block[0]);
    const __m512i tg = _mm512_mulhi_epu16(channel8<S, 1, true>(a, b), w.block[1]);
    const __m512i tb = _mm512_mulhi_epu16(channel8<S, 2, true>(a, b), w.block[2]);
    __m512i t = _mm512_adds_epu16(_mm512_adds_epu16(tr, tg), tb);
    t = _mm512_srli_epi16(_mm512_adds_epu16(t, _mm512_set1_epi16(64)), 7);
    const __m256i out = packWords(t);
    if (n == 32) _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), out);
    else _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), _mm256_castsi256_si128(out));
}

// Remainder stage on n < 16 pixels.
template <int S>
KRO_INLINE void grayRemainder8u(const Kro8u* src, Kro8u* dst, unsigned n, const Weights8u& w) {
    const __m512i raw = loadN512(src, n * S);
    const __m512i q = S == 3 ? expandC3toC4(raw) : raw;
    __m512i s = _mm512_add_epi32(_mm512_mullo_epi32(sampleOf<0>(q), w.remain[0]), _mm512_mullo_epi32(sampleOf<1>(q), w.remain[1]));
    s = _mm512_add_epi32(s, _mm512_mullo_epi32(sampleOf<2>(q), w.remain[2]));
    s = _mm512_srli_epi32(_mm512_add_epi32(s, _mm512_set1_epi32(16384)), 15);
    storeN128(dst, _mm512_cvtepi32_epi8(s), n);
}

// One row: the block stage over width & ~15 pixels, the remainder stage after.
template <int S>
void innerRGBToGray_8u(const Kro8u* src, Kro8u* dst, int width, const Weights8u& w) {
    const int blockEnd = width & ~15;
    int x = 0;
    for (; x + 32 <= blockEnd; x += 32) grayBlock8u<S>(src + S * x, dst + x, 32, w);
    if (x < blockEnd) {
        grayBlock8u<S>(src + S * x, dst + x, 16, w);
        x += 16;
    }
    if (x < width) grayRemainder8u<S>(src + S * x, dst + x, static_cast<unsigned>(width - x), w);
}

template <int S>
void wdrRGBToGray_8u(const Kro8u* src, int srcStep, Kro8u* dst, int dstStep, int width, int height, const Kro32f* coeffs) {
    const Weights8u w = weights8u(coeffs);
    eachRow(src, srcStep, dst, dstStep, height, [&](const Kro8u* s, Kro8u* d) { innerRGBToGray_8u<S>(s, d, width, w); });
}

// Gray to three or four samples, 32 pixels at a time.
template <int S>
void innerGrayToRGB_8u(const Kro8u* src, Kro8u* dst, int width, __m512i alpha) {
    const auto block = [&](int x, unsigned n) KRO_INLINE_LAMBDA {
        const __m512i g = _mm512_cvtepu8_epi16(loadPart256(src + x, n));
        store8<S>(dst + S * x, n, g, g, g, alpha);
    };
    int x = 0;
    for (; x + 32 <= width; x += 32) block(x, 32u);  // whole blocks: plain accesses
    if (x < width) block(x, static_cast<unsigned>(width - x));
}

template <int S>
void wdrGrayToRGB_8u(const Kro8u* src, int srcStep, Kro8u* dst, int dstStep, int width, int height, Kro8u alpha) {
    const __m512i a = _mm512_set1_epi16(alpha);
    eachRow(src, srcStep, dst, dstStep, height, [&](const Kro8u* s, Kro8u* d) { innerGrayToRGB_8u<S>(s, d, width, a); });
}

// The even bytes of the first `width & ~3` pixels of a 4:2:2 row.
void innerYCbCr422ToGray_8u_C2C1R(const Kro8u* src, Kro8u* dst, int width) {
    const __m512i lowBytes = _mm512_set1_epi16(0x00FF);
    const __m512i order = _mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7);
    const auto block = [&](int x, unsigned n) KRO_INLINE_LAMBDA {
        const __m512i lo = _mm512_and_si512(loadPart512(src + 2 * x, 2 * n > 64 ? 64 : 2 * n), lowBytes);
        const __m512i hi = _mm512_and_si512(2 * n > 64 ? loadPart512(src + 2 * x + 64, 2 * n - 64) : lo, lowBytes);
        storePart512(dst + x, _mm512_permutexvar_epi64(order, _mm512_packus_epi16(lo, hi)), n);
    };
    int x = 0;
    for (; x + 64 <= width; x += 64) block(x, 64u);  // whole blocks: plain accesses
    if (x < width) block(x, static_cast<unsigned>(width - x));
}

}  // namespace
}  // namespace k0

KRO_GRAY_ENTRIES(8u, C3C1R, Kro8u, k0::wdrRGBToGray_8u<3>)
KRO_GRAY_ENTRIES(8u, AC4C1R, Kro8u, k0::wdrRGBToGray_8u<4>)

KRO_ENTRY(kroiGrayToRGB_8u_C1C3R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return k0::run(k0::wdrGrayToRGB_8u<3>, pSrc, srcStep, pDst, dstStep, roi, 0);
}
KRO_ENTRY(kroiGrayToRGB_8u_C1C4R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi, Kro8u aval) {
    return k0::run(k0::wdrGrayToRGB_8u<4>, pSrc, srcStep, pDst, dstStep, roi, aval);
}

// The row loop lies here: the kernel takes width & ~3 pixels of a row, the
// last one to three follow.
KRO_ENTRY(kroiYCbCr422ToGray_8u_C2C1R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    if (const KroStatus st = k0::checkArgs(roi, pSrc, pDst)) return st;
    const int head = roi.width & ~3;
    for (int y = 0; y < roi.height; ++y) {
        const Kro8u* s = k0::rowAt(pSrc, srcStep, y);
        Kro8u* d = k0::rowAt(pDst, dstStep, y);
        k0::innerYCbCr422ToGray_8u_C2C1R(s, d, head);
        for (int x = head; x < roi.width; ++x) d[x] = s[2 * x];
    }
    return kroOk;
}
