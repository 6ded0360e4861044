// Y'UV 4:4:4 on the multiply-add instructions: whole-image kernels, blocks of
// 16 pixels under byte masks (so no byte outside a row is touched), forms F5,
// F6 and I5 accumulated in 32-bit elements.
#include "internal.h"
#include "simd.h"
#include "yuv/yuv444_vnni.h"

namespace k0 {
namespace {

// Byte-permute indices: each 32-bit element k gathers bytes of pixel k.
template <int P>
struct Gather {
    static __m512i make(int b0, int b1, int b2, int b3) {
        alignas(64) int8_t idx[64];
        const int src[4] = {b0, b1, b2, b3};
        for (int k = 0; k < 16; ++k)
            for (int j = 0; j < 4; ++j) idx[4 * k + j] = static_cast<int8_t>(src[j] < 0 ? 0 : P * k + src[j]);
        return _mm512_load_si512(idx);
    }
};

// Byte 2 of each element of three accumulators, (a, b, c), to the pixels of
// the destination: P = 3 packs them to 48 bytes, P = 4 adds a zero fourth byte.
template <int P>
struct Scatter {
    __m512i ab, c;
    __mmask64 mab = 0, mc = 0;
    Scatter() {
        alignas(64) int8_t iab[64] = {}, ic[64] = {};
        for (int k = 0; k < 16; ++k) {
            iab[P * k] = static_cast<int8_t>(4 * k + 2);
            iab[P * k + 1] = static_cast<int8_t>(64 + 4 * k + 2);
            ic[P * k + 2] = static_cast<int8_t>(4 * k + 2);
            mab |= 3ULL << (P * k);
            mc |= 4ULL << (P * k);
        }
        ab = _mm512_load_si512(iab);
        c = _mm512_load_si512(ic);
    }
    KRO_INLINE __m512i operator()(__m512i a, __m512i b, __m512i cc) const {
        return _mm512_mask_permutexvar_epi8(_mm512_maskz_permutex2var_epi8(mab, a, ab, b), mc, c, cc);
    }
};

// Pairs of 16-bit factors (lo for the first word of a pair, hi for the second).
KRO_INLINE __m512i pair(int lo, int hi) { return _mm512_set1_epi32(static_cast<int>((static_cast<unsigned>(hi) << 16) | (static_cast<unsigned>(lo) & 0xFFFF))); }
// Four signed byte factors.
KRO_INLINE __m512i quad(int b0, int b1, int b2, int b3) {
    return _mm512_set1_epi32(static_cast<int>((b0 & 0xFF) | (b1 & 0xFF) << 8 | (b2 & 0xFF) << 16 | static_cast<unsigned>(b3 & 0xFF) << 24));
}
// Limit to 0..0xFF0000; the result is then byte 2 of the element.
KRO_INLINE __m512i limit(__m512i acc) {
    return _mm512_min_epi32(_mm512_max_epi32(acc, _mm512_setzero_si512()), _mm512_set1_epi32(0xFF0000));
}

// Forward: (R, G) and (G, B) as 16-bit pairs, one pair in each element; 38470,
// 40304 and 33750 do not fit a 16-bit factor and are applied as two halves.
template <int P, int yStart>
struct Forward {
    __m512i rg = Gather<P>::make(0, -1, 1, -1), gb = Gather<P>::make(1, -1, 2, -1);
    __m512i yRG = pair(19595, 19235), yGB = pair(19235, 7471);
    __m512i uRG = pair(-9633, -18939), uGB = pair(0, 28573);
    __m512i vRG = pair(20152, -16875), vGB = pair(0, -6554);
    __m512i y0 = _mm512_set1_epi32(yStart), c0 = _mm512_set1_epi32(8388608);
    Scatter<P> out;
    static constexpr __mmask64 kEven = 0x5555555555555555ULL;

    KRO_INLINE __m512i operator()(__m512i raw) const {
        const __m512i RG = _mm512_maskz_permutexvar_epi8(kEven, rg, raw);
        const __m512i GB = _mm512_maskz_permutexvar_epi8(kEven, gb, raw);
        const __m512i y = _mm512_dpwssds_epi32(_mm512_dpwssds_epi32(y0, RG, yRG), GB, yGB);
        const __m512i u = _mm512_dpwssds_epi32(_mm512_dpwssds_epi32(c0, RG, uRG), GB, uGB);
        const __m512i v = _mm512_dpwssds_epi32(_mm512_dpwssds_epi32(_mm512_dpwssds_epi32(c0, RG, vRG), RG, vRG), GB, vGB);
        return out(y, u, limit(v));
    }
};

// Inverse: the bytes (Y, U, U, V) of each pixel against signed byte weights;
// G and B take a second step after the shift by 10. R has no second step, so
// its shift by 10 and then 16 is one shift by 6. The saturating packs clamp
// to 0..255.
template <int P>
struct Inverse {
    __m512i yuuv = Gather<P>::make(0, 1, 1, 2);
    __m512i wR = quad(64, 0, 0, 73), wG1 = quad(64, -25, 0, -37), wG2 = quad(0, -128, -128, -128);
    __m512i wB1 = quad(64, 65, 65, 0), wB2 = quad(0, 127, 127, 127);
    __m512i r0 = _mm512_set1_epi32(-9339), g0 = _mm512_set1_epi32(7987), b0 = _mm512_set1_epi32(-16678);
    __m512i place;
    __mmask64 keep = 0;
    Inverse() {
        // After the packs, lane L holds R of its four pixels in bytes 0..3, G in 4..7, B in 8..11.
        alignas(64) int8_t idx[64] = {};
        for (int k = 0; k < 16; ++k)
            for (int c = 0; c < 3; ++c) {
                idx[P * k + c] = static_cast<int8_t>(16 * (k / 4) + 4 * c + k % 4);
                keep |= 1ULL << (P * k + c);
            }
        place = _mm512_load_si512(idx);
    }

    KRO_INLINE __m512i operator()(__m512i raw) const {
        const __m512i x = _mm512_permutexvar_epi8(yuuv, raw);
        const __m512i r = _mm512_srai_epi32(_mm512_dpbusds_epi32(r0, x, wR), 6);
        const __m512i g = _mm512_srai_epi32(_mm512_dpbusds_epi32(_mm512_slli_epi32(_mm512_dpbusds_epi32(g0, x, wG1), 10), x, wG2), 16);
        const __m512i b = _mm512_srai_epi32(_mm512_dpbusds_epi32(_mm512_slli_epi32(_mm512_dpbusds_epi32(b0, x, wB1), 10), x, wB2), 16);
        const __m512i bytes = _mm512_packus_epi16(_mm512_packs_epi32(r, g), _mm512_packs_epi32(b, b));
        return _mm512_maskz_permutexvar_epi8(keep, place, bytes);
    }
};

// The row loop: blocks of 16 pixels (unrolled by four while 64 remain), then
// one masked block for the rest. Four-byte pixels are stored whole, so their
// fourth byte is zero.
template <int P, class Form>
void runImage(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h, const Form& form) {
    const __mmask64 full = lowBits64(16 * P);
    auto block = [&](const Kro8u* sp, Kro8u* dp, __mmask64 m) {
        _mm512_mask_storeu_epi8(dp, m, form(_mm512_maskz_loadu_epi8(m, sp)));
    };
    for (int y = 0; y < h; ++y) {
        const Kro8u* sr = rowAt(s, ss, y);
        Kro8u* dr = rowAt(d, ds, y);
        int x = 0;
        for (; x + 64 <= w; x += 64) {
            block(sr + P * x, dr + P * x, full);
            block(sr + P * (x + 16), dr + P * (x + 16), full);
            block(sr + P * (x + 32), dr + P * (x + 32), full);
            block(sr + P * (x + 48), dr + P * (x + 48), full);
        }
        for (; x + 16 <= w; x += 16) block(sr + P * x, dr + P * x, full);
        if (x < w) block(sr + P * x, dr + P * x, lowBits64(static_cast<unsigned>(P * (w - x))));
    }
}

}  // namespace

void myRGBToYUV_8u_C3R_vnni(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    runImage<3>(s, ss, d, ds, w, h, Forward<3, 0>{});
}
void myRGBToYUV_8u_AC4R_vnni(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    runImage<4>(s, ss, d, ds, w, h, Forward<4, 32768>{});
}
void myYUVToRGB_8u_C3R_vnni(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    runImage<3>(s, ss, d, ds, w, h, Inverse<3>{});
}
void myYUVToRGB_8u_AC4R_vnni(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    runImage<4>(s, ss, d, ds, w, h, Inverse<4>{});
}

}  // namespace k0
