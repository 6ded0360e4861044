// Whole-image kernels of RGB -> YCbCr 4:4:4 built on the multiply-add
// instructions; called only after the feature query said yes.
#pragma once
#include "krocc.h"

namespace k0 {
void myRGBToYCbCr_8u_C3R_vnni(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h);
void myRGBToYCbCr_8u_AC4R_vnni(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h);
}  // namespace k0
