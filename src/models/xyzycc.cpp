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

}  // namespace k0

// ---- whole-image drivers and entries --------------------------------------------------------

// The two whole-image drivers of a member (the AC4 one with its own suffix)
// and its two entries.
#define KRO_XYZYCC_WHOLE(member, type, T, suffixAC4, Vec, form)                                            \
    namespace k0 {                                                                                         \
    void my##member##_##type##_C3R_l9(const T* s, int ss, T* d, int ds, int w, int h) {                   \
        wholeImage<T, 3, vec::Vec, form>(s, ss, d, ds, w, h);                                              \
    }                                                                                                      \
    void my##member##_##type##_AC4R##suffixAC4(const T* s, int ss, T* d, int ds, int w, int h) {          \
        wholeImage<T, 4, vec::Vec, form>(s, ss, d, ds, w, h);                                              \
    }                                                                                                      \
    }                                                                                                      \
    KRO_XYZYCC_ENTRY(kroi##member##_##type##_C3R, T, k0::my##member##_##type##_C3R_l9)                     \
    KRO_XYZYCC_ENTRY(kroi##member##_##type##_AC4R, T, k0::my##member##_##type##_AC4R##suffixAC4)

KRO_XYZYCC_WHOLE(RGBToXYZ, 16s, Kro16s, _l9, RgbToXyz16s, rgbToXyz16s)
KRO_XYZYCC_WHOLE(XYZToRGB, 8u, Kro8u, _k0, XyzToRgb8u, xyzToRgb8u)
KRO_XYZYCC_WHOLE(XYZToRGB, 16u, Kro16u, _l9, XyzToRgb16u, xyzToRgb16u)
KRO_XYZYCC_WHOLE(XYZToRGB, 16s, Kro16s, _l9, XyzToRgb16s, xyzToRgb16s)
KRO_XYZYCC_WHOLE(RGBToYCC, 8u, Kro8u, _l9, RgbToYcc8u, rgbToYcc8u)
KRO_XYZYCC_WHOLE(RGBToYCC, 16u, Kro16u, _l9, RgbToYcc16u, rgbToYcc16u)
KRO_XYZYCC_WHOLE(YCCToRGB, 8u, Kro8u, _k0, YccToRgb8u, yccToRgb8u)
KRO_XYZYCC_WHOLE(YCCToRGB, 16u, Kro16u, _l9, YccToRgb16u, yccToRgb16u)
KRO_XYZYCC_WHOLE(YCCToRGB, 16s, Kro16s, _l9, YccToRgb16s, yccToRgb16s)

// ---- entries of the drivers that take the pixel stride ------------------------------------

KRO_XYZYCC_BY_STRIDE(RGBToXYZ, 8u, Kro8u, k0::myRGBToXYZ_8u_C3R)
KRO_XYZYCC_BY_STRIDE(RGBToXYZ, 16u, Kro16u, k0::myRGBToXYZ_16u_C3R)
KRO_XYZYCC_BY_STRIDE(RGBToYCC, 16s, Kro16s, k0::myRGBToYCC_16s_C3R)
