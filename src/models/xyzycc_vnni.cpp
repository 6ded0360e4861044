// RGB to XYZ, 8u, on the word multiply-add instructions with signed
// saturation: Q16 weights, those above 32767 split in two equal halves with
// the sample entering twice, and an accumulator for Z that saturates instead
// of a clamp.
#include "internal.h"
#include "models/xyzycc_forms.h"
#include "models/xyzycc_vnni.h"
#include "vnni.h"

namespace k0::xyzycc {
namespace {
using namespace vnni;

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

__attribute__((noinline)) void innerRGBToXYZ_8u_C3R_vnni(const Kro8u* s, Kro8u* d, int w, const XyzQ16<3>& form) {
    row<3>(s, d, w, form);
}
__attribute__((noinline)) void innerRGBToXYZ_8u_AC4R_vnni(const Kro8u* s, Kro8u* d, int w, const XyzQ16<4>& form) {
    row<4>(s, d, w, form);
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
