// RGB -> YCbCr 4:4:4 on the multiply-add instructions: Long on every pixel,
// accumulated from 16-bit pairs (R, G) and (G, B). G's 33030 does not fit a
// signed 16-bit factor and is applied as 16515 twice. Whole-image kernels,
// blocks of 16 pixels under byte masks, so no byte outside a row is touched.
#include "internal.h"
#include "vnni.h"
#include "ycbcr/ycbcr444_vnni.h"
#include "ycbcr/ycbcr_forms.h"

namespace k0 {
namespace {
using namespace ycbcr;
using namespace vnni;

template <int P>
struct Kernel {
    const __m512i rg = gatherPair<P>(0, 1), gb = gatherPair<P>(1, 2);
    const __m512i yRG = pair(kY.r, kY.g / 2), yGB = pair(kY.g / 2, kY.b);
    const __m512i bRG = pair(kCb.r, kCb.g), bGB = pair(0, kCb.b);
    const __m512i rRG = pair(kCr.r, kCr.g), rGB = pair(0, kCr.b);
    const __m512i y0 = _mm512_set1_epi32(0x108000), c0 = _mm512_set1_epi32(0x808000);
    const Scatter<P> out;

    static_assert(kY.g == 2 * (kY.g / 2));

    KRO_INLINE __m512i operator()(__m512i raw) const {
        const __m512i RG = _mm512_maskz_permutexvar_epi8(kEven, rg, raw);
        const __m512i GB = _mm512_maskz_permutexvar_epi8(kEven, gb, raw);
        const __m512i y = _mm512_dpwssds_epi32(_mm512_dpwssds_epi32(y0, RG, yRG), GB, yGB);
        const __m512i cb = _mm512_dpwssds_epi32(_mm512_dpwssds_epi32(c0, RG, bRG), GB, bGB);
        const __m512i cr = _mm512_dpwssds_epi32(_mm512_dpwssds_epi32(c0, RG, rRG), GB, rGB);
        return out(y, cb, cr);
    }
};

}  // namespace

void myRGBToYCbCr_8u_C3R_vnni(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    image<3>(s, ss, d, ds, w, h, Kernel<3>{});
}
void myRGBToYCbCr_8u_AC4R_vnni(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h) {
    image<4>(s, ss, d, ds, w, h, Kernel<4>{});
}

}  // namespace k0
