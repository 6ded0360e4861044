// RGB -> YCbCr 4:4:4 on the multiply-add instructions: Long on every pixel,
// accumulated from 16-bit pairs (R, G) and (G, B). G's 33030 does not fit a
// signed 16-bit factor and is applied as 16515 twice. Whole-image kernels,
// blocks of 16 pixels under byte masks, so no byte outside a row is touched.
#include "internal.h"
#include "simd.h"
#include "ycbcr/ycbcr444_vnni.h"
#include "ycbcr/ycbcr_forms.h"

namespace k0 {
namespace {
using namespace ycbcr;

// Two 16-bit factors in one element, lo for the first word of a pair.
KRO_INLINE __m512i pair(int lo, int hi) {
    return _mm512_set1_epi32(static_cast<int>((static_cast<unsigned>(hi) << 16) | (static_cast<unsigned>(lo) & 0xFFFF)));
}

// Byte j of element k: byte `src[j]` of pixel k (P bytes a pixel), or zero.
template <int P>
__m512i gatherIndex(int b0, int b2) {
    alignas(64) int8_t idx[64] = {};
    for (int k = 0; k < 16; ++k) {
        idx[4 * k] = static_cast<int8_t>(P * k + b0);
        idx[4 * k + 2] = static_cast<int8_t>(P * k + b2);
    }
    return _mm512_load_si512(idx);
}

template <int P>
struct Kernel {
    static constexpr __mmask64 kWordLows = 0x5555555555555555ULL;
    const __m512i rg = gatherIndex<P>(0, 1), gb = gatherIndex<P>(1, 2);
    const __m512i yRG = pair(kY.r, kY.g / 2), yGB = pair(kY.g / 2, kY.b);
    const __m512i bRG = pair(kCb.r, kCb.g), bGB = pair(0, kCb.b);
    const __m512i rRG = pair(kCr.r, kCr.g), rGB = pair(0, kCr.b);
    const __m512i y0 = _mm512_set1_epi32(0x108000), c0 = _mm512_set1_epi32(0x808000);
    __m512i placeYCb, placeCr;
    __mmask64 maskYCb = 0, maskCr = 0;

    static_assert(kY.g == 2 * (kY.g / 2));

    // Byte 2 of each sum goes to its pixel's byte 0, 1 or 2; a fourth byte is zero.
    Kernel() {
        alignas(64) int8_t iab[64] = {}, ic[64] = {};
        for (int k = 0; k < 16; ++k) {
            iab[P * k] = static_cast<int8_t>(4 * k + 2);
            iab[P * k + 1] = static_cast<int8_t>(64 + 4 * k + 2);
            ic[P * k + 2] = static_cast<int8_t>(4 * k + 2);
            maskYCb |= 3ULL << (P * k);
            maskCr |= 4ULL << (P * k);
        }
        placeYCb = _mm512_load_si512(iab);
        placeCr = _mm512_load_si512(ic);
    }

    KRO_INLINE __m512i operator()(__m512i raw) const {
        const __m512i RG = _mm512_maskz_permutexvar_epi8(kWordLows, rg, raw);
        const __m512i GB = _mm512_maskz_permutexvar_epi8(kWordLows, gb, raw);
        const __m512i y = _mm512_dpwssds_epi32(_mm512_dpwssds_epi32(y0, RG, yRG), GB, yGB);
        const __m512i cb = _mm512_dpwssds_epi32(_mm512_dpwssds_epi32(c0, RG, bRG), GB, bGB);
        const __m512i cr = _mm512_dpwssds_epi32(_mm512_dpwssds_epi32(c0, RG, rRG), GB, rGB);
        return _mm512_mask_permutexvar_epi8(_mm512_maskz_permutex2var_epi8(maskYCb, y, placeYCb, cb), maskCr, placeCr, cr);
    }
};

// Per row: blocks of 16 pixels, four at a time while 64 remain, then one
// masked block for the rest. Four-byte pixels are stored whole.
template <int P>
void runImage(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    const Kernel<P> form;
    const __mmask64 full = lowBits64(16 * P);
    auto block = [&](const Kro8u* sp, Kro8u* dp, __mmask64 m) {
        _mm512_mask_storeu_epi8(dp, m, form(_mm512_maskz_loadu_epi8(m, sp)));
    };
    for (int y = 0; y < h; ++y) {
        const Kro8u* sr = rowAt(s, ss, y);
        Kro8u* dr = rowAt(d, ds, y);
        int x = 0;
        for (; x + 64 <= w; x += 64)
            for (int j = 0; j < 64; j += 16) block(sr + P * (x + j), dr + P * (x + j), full);
        for (; x + 16 <= w; x += 16) block(sr + P * x, dr + P * x, full);
        if (x < w) block(sr + P * x, dr + P * x, lowBits64(static_cast<unsigned>(P * (w - x))));
    }
}

}  // namespace

void myRGBToYCbCr_8u_C3R_vnni(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    runImage<3>(s, ss, d, ds, w, h);
}
void myRGBToYCbCr_8u_AC4R_vnni(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    runImage<4>(s, ss, d, ds, w, h);
}

}  // namespace k0
