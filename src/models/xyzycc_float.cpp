// XYZ and YCC on 32f samples: one fused chain along the whole row; the
// fourth sample of AC4 is left alone.
#include "models/xyzycc_drive.h"
#include "models/xyzycc_vec.h"

namespace k0 {
using namespace xyzycc;

void myRGBToXYZ_32f_C3R(const Kro32f* s, int ss, Kro32f* d, int ds, int w, int h, int stride) {
    rowsOneForm<Kro32f, vec::RgbToXyz32f>(s, ss, d, ds, w, h, stride);
}
void myXYZToRGB_32f_C3R(const Kro32f* s, int ss, Kro32f* d, int ds, int w, int h, int stride) {
    rowsOneForm<Kro32f, vec::XyzToRgb32f>(s, ss, d, ds, w, h, stride);
}
void myRGBToYCC_32f_C3R(const Kro32f* s, int ss, Kro32f* d, int ds, int w, int h, int stride) {
    rowsOneForm<Kro32f, vec::RgbToYcc32f>(s, ss, d, ds, w, h, stride);
}
void myYCCToRGB_32f_C3R(const Kro32f* s, int ss, Kro32f* d, int ds, int w, int h, int stride) {
    rowsOneForm<Kro32f, vec::YccToRgb32f>(s, ss, d, ds, w, h, stride);
}

}  // namespace k0

KRO_XYZYCC_BY_STRIDE(RGBToXYZ, 32f, Kro32f, k0::myRGBToXYZ_32f_C3R)
KRO_XYZYCC_BY_STRIDE(XYZToRGB, 32f, Kro32f, k0::myXYZToRGB_32f_C3R)
KRO_XYZYCC_BY_STRIDE(RGBToYCC, 32f, Kro32f, k0::myRGBToYCC_32f_C3R)
KRO_XYZYCC_BY_STRIDE(YCCToRGB, 32f, Kro32f, k0::myYCCToRGB_32f_C3R)
