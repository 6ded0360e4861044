// XYZ and YCC on 8u, 16u and 16s samples: entries, drivers and row kernels.
#include "models/xyzycc_drive.h"
#include "models/xyzycc_vec.h"
#include "models/xyzycc_vnni.h"

namespace k0 {
using namespace xyzycc;

namespace {

// ---- row kernels ------------------------------------------------------------------------

// Q15 over the blocks (8 pixels of C3, 4 of AC4), Q16 on the last pixels;
// the fourth sample is left alone.
template <int S>
void innerRGBToXYZ_8u_C3R(const Kro8u* s, Kro8u* d, int w, const vec::RgbToXyzQ15& block, const vec::RgbToXyzQ16& tail) {
    const int nb = w & (S == 3 ? ~7 : ~3);
    convertSpan<Kro8u, S, Alpha::Keep>(s, d, 0, nb, block);
    convertSpan<Kro8u, S, Alpha::Keep>(s, d, nb, w, tail);
}

// The block form on the first width & ~3 pixels, the tail form on the rest.
template <int S>
void innerRGBToYCC_16s_C3R(const Kro16s* s, Kro16s* d, int w, const vec::RgbToYcc16sBlock& block, const vec::RgbToYcc16sTail& tail) {
    const int nb = w & ~3;
    convertSpan<Kro16s, S, Alpha::Keep>(s, d, 0, nb, block);
    convertSpan<Kro16s, S, Alpha::Keep>(s, d, nb, w, tail);
}

template <class T, class Block, class Tail, class Kernel3, class Kernel4>
KRO_INLINE void rowsTwoForms(const T* s, int ss, T* d, int ds, int w, int h, int stride, Kernel3 k3, Kernel4 k4) {
    const Block block;
    const Tail tail;
    if (stride == 3) eachRowOf(s, ss, d, ds, h, [&](const T* a, T* b) { k3(a, b, w, block, tail); });
    else eachRowOf(s, ss, d, ds, h, [&](const T* a, T* b) { k4(a, b, w, block, tail); });
}

}  // namespace

// ---- drivers with a row kernel ------------------------------------------------------------

void myRGBToXYZ_8u_C3R(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h, int stride) {
    if (hasVnni()) return walkRGBToXYZ_8u_vnni(s, ss, d, ds, w, h, stride);
    rowsTwoForms<Kro8u, vec::RgbToXyzQ15, vec::RgbToXyzQ16>(s, ss, d, ds, w, h, stride, innerRGBToXYZ_8u_C3R<3>,
                                                            innerRGBToXYZ_8u_C3R<4>);
}

void myRGBToXYZ_16u_C3R(const Kro16u* s, int ss, Kro16u* d, int ds, int w, int h, int stride) {
    rowsOneForm<Kro16u, vec::RgbToXyz16u>(s, ss, d, ds, w, h, stride);
}

void myRGBToYCC_16s_C3R(const Kro16s* s, int ss, Kro16s* d, int ds, int w, int h, int stride) {
    rowsTwoForms<Kro16s, vec::RgbToYcc16sBlock, vec::RgbToYcc16sTail>(s, ss, d, ds, w, h, stride, innerRGBToYCC_16s_C3R<3>,
                                                                      innerRGBToYCC_16s_C3R<4>);
}

// ---- whole-image drivers ------------------------------------------------------------------

#define KRO_WHOLE_IMAGE(driver, T, S, Vec, form)                                        \
    void driver(const T* s, int ss, T* d, int ds, int w, int h) {                       \
        wholeImage<T, S, vec::Vec, form>(s, ss, d, ds, w, h);                           \
    }

KRO_WHOLE_IMAGE(myRGBToXYZ_16s_C3R_l9, Kro16s, 3, RgbToXyz16s, rgbToXyz16s)
KRO_WHOLE_IMAGE(myRGBToXYZ_16s_AC4R_l9, Kro16s, 4, RgbToXyz16s, rgbToXyz16s)
KRO_WHOLE_IMAGE(myXYZToRGB_8u_C3R_l9, Kro8u, 3, XyzToRgb8u, xyzToRgb8u)
KRO_WHOLE_IMAGE(myXYZToRGB_8u_AC4R_k0, Kro8u, 4, XyzToRgb8u, xyzToRgb8u)
KRO_WHOLE_IMAGE(myXYZToRGB_16u_C3R_l9, Kro16u, 3, XyzToRgb16u, xyzToRgb16u)
KRO_WHOLE_IMAGE(myXYZToRGB_16u_AC4R_l9, Kro16u, 4, XyzToRgb16u, xyzToRgb16u)
KRO_WHOLE_IMAGE(myXYZToRGB_16s_C3R_l9, Kro16s, 3, XyzToRgb16s, xyzToRgb16s)
KRO_WHOLE_IMAGE(myXYZToRGB_16s_AC4R_l9, Kro16s, 4, XyzToRgb16s, xyzToRgb16s)
KRO_WHOLE_IMAGE(myRGBToYCC_8u_C3R_l9, Kro8u, 3, RgbToYcc8u, rgbToYcc8u)
KRO_WHOLE_IMAGE(myRGBToYCC_8u_AC4R_l9, Kro8u, 4, RgbToYcc8u, rgbToYcc8u)
KRO_WHOLE_IMAGE(myRGBToYCC_16u_C3R_l9, Kro16u, 3, RgbToYcc16u, rgbToYcc16u)
KRO_WHOLE_IMAGE(myRGBToYCC_16u_AC4R_l9, Kro16u, 4, RgbToYcc16u, rgbToYcc16u)
KRO_WHOLE_IMAGE(myYCCToRGB_8u_C3R_l9, Kro8u, 3, YccToRgb8u, yccToRgb8u)
KRO_WHOLE_IMAGE(myYCCToRGB_8u_AC4R_k0, Kro8u, 4, YccToRgb8u, yccToRgb8u)
KRO_WHOLE_IMAGE(myYCCToRGB_16u_C3R_l9, Kro16u, 3, YccToRgb16u, yccToRgb16u)
KRO_WHOLE_IMAGE(myYCCToRGB_16u_AC4R_l9, Kro16u, 4, YccToRgb16u, yccToRgb16u)
KRO_WHOLE_IMAGE(myYCCToRGB_16s_C3R_l9, Kro16s, 3, YccToRgb16s, yccToRgb16s)
KRO_WHOLE_IMAGE(myYCCToRGB_16s_AC4R_l9, Kro16s, 4, YccToRgb16s, yccToRgb16s)

#undef KRO_WHOLE_IMAGE

}  // namespace k0

// ---- entries --------------------------------------------------------------------------------

KRO_XYZYCC_ENTRY(kroiRGBToXYZ_8u_C3R, Kro8u, k0::myRGBToXYZ_8u_C3R, 3)
KRO_XYZYCC_ENTRY(kroiRGBToXYZ_8u_AC4R, Kro8u, k0::myRGBToXYZ_8u_C3R, 4)
KRO_XYZYCC_ENTRY(kroiRGBToXYZ_16u_C3R, Kro16u, k0::myRGBToXYZ_16u_C3R, 3)
KRO_XYZYCC_ENTRY(kroiRGBToXYZ_16u_AC4R, Kro16u, k0::myRGBToXYZ_16u_C3R, 4)
KRO_XYZYCC_ENTRY(kroiRGBToXYZ_16s_C3R, Kro16s, k0::myRGBToXYZ_16s_C3R_l9)
KRO_XYZYCC_ENTRY(kroiRGBToXYZ_16s_AC4R, Kro16s, k0::myRGBToXYZ_16s_AC4R_l9)

KRO_XYZYCC_ENTRY(kroiXYZToRGB_8u_C3R, Kro8u, k0::myXYZToRGB_8u_C3R_l9)
KRO_XYZYCC_ENTRY(kroiXYZToRGB_8u_AC4R, Kro8u, k0::myXYZToRGB_8u_AC4R_k0)
KRO_XYZYCC_ENTRY(kroiXYZToRGB_16u_C3R, Kro16u, k0::myXYZToRGB_16u_C3R_l9)
KRO_XYZYCC_ENTRY(kroiXYZToRGB_16u_AC4R, Kro16u, k0::myXYZToRGB_16u_AC4R_l9)
KRO_XYZYCC_ENTRY(kroiXYZToRGB_16s_C3R, Kro16s, k0::myXYZToRGB_16s_C3R_l9)
KRO_XYZYCC_ENTRY(kroiXYZToRGB_16s_AC4R, Kro16s, k0::myXYZToRGB_16s_AC4R_l9)

KRO_XYZYCC_ENTRY(kroiRGBToYCC_8u_C3R, Kro8u, k0::myRGBToYCC_8u_C3R_l9)
KRO_XYZYCC_ENTRY(kroiRGBToYCC_8u_AC4R, Kro8u, k0::myRGBToYCC_8u_AC4R_l9)
KRO_XYZYCC_ENTRY(kroiRGBToYCC_16u_C3R, Kro16u, k0::myRGBToYCC_16u_C3R_l9)
KRO_XYZYCC_ENTRY(kroiRGBToYCC_16u_AC4R, Kro16u, k0::myRGBToYCC_16u_AC4R_l9)
KRO_XYZYCC_ENTRY(kroiRGBToYCC_16s_C3R, Kro16s, k0::myRGBToYCC_16s_C3R, 3)
KRO_XYZYCC_ENTRY(kroiRGBToYCC_16s_AC4R, Kro16s, k0::myRGBToYCC_16s_C3R, 4)

KRO_XYZYCC_ENTRY(kroiYCCToRGB_8u_C3R, Kro8u, k0::myYCCToRGB_8u_C3R_l9)
KRO_XYZYCC_ENTRY(kroiYCCToRGB_8u_AC4R, Kro8u, k0::myYCCToRGB_8u_AC4R_k0)
KRO_XYZYCC_ENTRY(kroiYCCToRGB_16u_C3R, Kro16u, k0::myYCCToRGB_16u_C3R_l9)
KRO_XYZYCC_ENTRY(kroiYCCToRGB_16u_AC4R, Kro16u, k0::myYCCToRGB_16u_AC4R_l9)
KRO_XYZYCC_ENTRY(kroiYCCToRGB_16s_C3R, Kro16s, k0::myYCCToRGB_16s_C3R_l9)
KRO_XYZYCC_ENTRY(kroiYCCToRGB_16s_AC4R, Kro16s, k0::myYCCToRGB_16s_AC4R_l9)
