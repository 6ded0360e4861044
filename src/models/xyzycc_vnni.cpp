// RGB to XYZ, 8u, on the word multiply-add instructions with signed
// saturation: Q16 weights, those above 32767 split in two equal halves with
// the sample entering twice, and an accumulator for Z that saturates instead
// of a clamp.
#include "internal.h"
#include "models/xyzycc_forms.h"
#include "models/xyzycc_vnni.h"
#include "simd.h"

namespace k0::xyzycc {
namespace {

// Two 16-bit factors, the first word's and the second's.
KRO_INLINE __m512i pair(int lo, int hi) {
    return _mm512_set1_epi32(static_cast<int>((static_cast<unsigned>(hi) << 16) | (static_cast<unsigned>(lo) & 0xFFFF)));
}

// Byte-permute indices that put bytes b0 and b1 of pixel k into the two even
// bytes of element k (the odd bytes are cleared by the mask kEven).
template <int P>
__m512i gatherPair(int b0, int b1) {
    alignas(64) int8_t idx[64] = {};
    for (int k = 0; k < 16; ++k) {
        idx[4 * k] = static_cast<int8_t>(P * k + b0);
        idx[4 * k + 2] = static_cast<int8_t>(P * k + b1);
    }
    return _mm512_load_si512(idx);
}
inline constexpr __mmask64 kEven = 0x5555555555555555ULL;

// Byte 2 of each element of three accumulators to the samples of 16 pixels;
// with P = 4 the fourth byte is zero.
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

// The weights of rgbToXyzQ16 on the pairs (R, G) and (G, B): 46868 G is
// 23434 G twice, once in each pair; 62274 B is 31137 B twice. Z starts at
// 0x7F000000, so a sum of 0x1000000 or more saturates the accumulator and
// byte 2 reads 255; X and Y start at 0 and never reach it.
template <int P>
struct XyzQ16 {
    __m512i rg = gatherPair<P>(0, 1), gb = gatherPair<P>(1, 2);
    __m512i xRG = pair(kXyzQ16[0][0], kXyzQ16[0][1]), xGB = pair(0, kXyzQ16[0][2]);
    __m512i yRG = pair(kXyzQ16[1][0], kXyzQ16[1][1] / 2), yGB = pair(kXyzQ16[1][1] / 2, kXyzQ16[1][2]);
    __m512i zRG = pair(kXyzQ16[2][0], kXyzQ16[2][1]), zGB = pair(0, kXyzQ16[2][2] / 2);
    __m512i zStart = _mm512_set1_epi32(0x7F000000);
    Scatter<P> out;
    static_assert(kXyzQ16[1][1] % 2 == 0 && kXyzQ16[2][2] % 2 == 0, "split weights are two equal halves");

    KRO_INLINE __m512i operator()(__m512i raw) const {
        const __m512i RG = _mm512_maskz_permutexvar_epi8(kEven, rg, raw);
        const __m512i GB = _mm512_maskz_permutexvar_epi8(kEven, gb, raw);
        const __m512i zero = _mm512_setzero_si512();
        const __m512i x = _mm512_dpwssds_epi32(_mm512_dpwssds_epi32(zero, RG, xRG), GB, xGB);
        const __m512i y = _mm512_dpwssds_epi32(_mm512_dpwssds_epi32(zero, RG, yRG), GB, yGB);
        const __m512i z = _mm512_dpwssds_epi32(_mm512_dpwssds_epi32(_mm512_dpwssds_epi32(zStart, RG, zRG), GB, zGB), GB, zGB);
        return out(x, y, z);
    }
};

// One row: four blocks of 16 pixels a turn while 64 remain, then single
// blocks, then one block under a byte mask. Four-byte pixels are stored
// whole, their fourth byte zero.
template <int P>
KRO_INLINE void innerRGBToXYZ_8u_vnni(const Kro8u* s, Kro8u* d, int w, const XyzQ16<P>& form) {
    const __mmask64 full = lowBits64(16 * P);
    const auto block = [&](int x, __mmask64 m) {
        _mm512_mask_storeu_epi8(d + P * x, m, form(_mm512_maskz_loadu_epi8(m, s + P * x)));
    };
    int x = 0;
    for (; x + 64 <= w; x += 64) {
        block(x, full);
        block(x + 16, full);
        block(x + 32, full);
        block(x + 48, full);
    }
    for (; x + 16 <= w; x += 16) block(x, full);
    if (x < w) block(x, lowBits64(static_cast<unsigned>(P * (w - x))));
}

__attribute__((noinline)) void innerRGBToXYZ_8u_C3R_vnni(const Kro8u* s, Kro8u* d, int w, const XyzQ16<3>& form) {
    innerRGBToXYZ_8u_vnni<3>(s, d, w, form);
}
__attribute__((noinline)) void innerRGBToXYZ_8u_AC4R_vnni(const Kro8u* s, Kro8u* d, int w, const XyzQ16<4>& form) {
    innerRGBToXYZ_8u_vnni<4>(s, d, w, form);
}

template <int P, class Kernel>
void walk(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h, Kernel kernel) {
    const XyzQ16<P> form;
    walkRows(h, [&](int y) { kernel(rowAt(s, ss, y), rowAt(d, ds, y), w, form); });
}

}  // namespace

void walkRGBToXYZ_8u_vnni(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h, int stride) {
    if (stride == 3) walk<3>(s, ss, d, ds, w, h, innerRGBToXYZ_8u_C3R_vnni);
    else walk<4>(s, ss, d, ds, w, h, innerRGBToXYZ_8u_AC4R_vnni);
}

}  // namespace k0::xyzycc
