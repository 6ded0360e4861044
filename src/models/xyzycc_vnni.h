// RGB to XYZ on the word multiply-add instructions; called only after the
// feature query said yes.
#pragma once
#include "krocc.h"

namespace k0::xyzycc {
// Every row of the image through the row kernel of its pixel stride (3 or 4).
void walkRGBToXYZ_8u_vnni(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h, int stride);
}  // namespace k0::xyzycc
