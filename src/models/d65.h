// The D65 matrices between gamma-corrected RGB and CIE XYZ, in the
// single-precision constants that every colour model of the library uses.
// Row i gives output channel i from the three input channels in memory order.
#pragma once

namespace k0::d65 {

// X, Y, Z from R, G, B.
inline constexpr float kRgbToXyz[3][3] = {
    {0.412453f, 0.35758f, 0.180423f},
    {0.212671f, 0.71516f, 0.072169f},
    {0.019334f, 0.119193f, 0.950227f},
};

// R, G, B from X, Y, Z.
inline constexpr float kXyzToRgb[3][3] = {
    {3.240479f, -1.53715f, -0.498535f},
    {-0.969256f, 1.875991f, 0.041556f},
    {0.055648f, -0.204043f, 1.057311f},
};

}  // namespace k0::d65
