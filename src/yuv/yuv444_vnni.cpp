// Y'UV 4:4:4 on the multiply-add instructions: whole-image kernels, blocks of
// 16 pixels under byte masks (so no byte outside a row is touched), forms F5,
// F6 and I5 accumulated in 32-bit elements.
#include "internal.h"
#include "vnni.h"
#include "yuv/yuv444_vnni.h"

namespace k0 {
namespace {
using namespace vnni;

// Limit to 0..0xFF0000; the result is then byte 2 of the element.
KRO_INLINE __m512i limit(__m512i acc) {
    return _mm512_min_epi32(_mm512_max_epi32(acc, _mm512_setzero_si512()), _mm512_set1_epi32(0xFF0000));
}

// Forward: (R, G) and (G, B) as 16-bit pairs, one pair in each element; 38470,
// 40304 and 33750 do not fit a 16-bit factor and are applied as two halves.
template <int P, int yStart>
struct Forward {
    __m512i rg = gatherPair<P>(0, 1), gb = gatherPair<P>(1, 2);
    __m512i yRG = pair(19595, 19235), yGB = pair(19235, 7471);
    __m512i uRG = pair(-9633, -18939), uGB = pair(0, 28573);
    __m512i vRG = pair(20152, -16875), vGB = pair(0, -6554);
    __m512i y0 = _mm512_set1_epi32(yStart), c0 = _mm512_set1_epi32(8388608);
    Scatter<P> out;

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
    __m512i yuuv = gatherQuad<P>(0, 1, 1, 2);
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

}  // namespace

void myRGBToYUV_8u_C3R_vnni(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    image<3>(s, ss, d, ds, w, h, Forward<3, 0>{});
}
void myRGBToYUV_8u_AC4R_vnni(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    image<4>(s, ss, d, ds, w, h, Forward<4, 32768>{});
}
void myYUVToRGB_8u_C3R_vnni(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    image<3>(s, ss, d, ds, w, h, Inverse<3>{});
}
void myYUVToRGB_8u_AC4R_vnni(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    image<4>(s, ss, d, ds, w, h, Inverse<4>{});
}

}  // namespace k0
