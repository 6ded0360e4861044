// The arithmetic of the gray conversions, one scalar function a form. The
// vector kernels compute exactly these.
#pragma once
#include <immintrin.h>

#include <cmath>
#include <cstdint>

#include "krocc.h"

namespace k0::gray {

// The default weights of R, G, B.
inline constexpr float kWeightR = 0.299f, kWeightG = 0.587f, kWeightB = 0.114f;
// Their 15-bit fixed-point form (the sum is 32769, and stays so).
inline constexpr int32_t kFixedR = 9798, kFixedG = 19235, kFixedB = 3736;

// A caller's weight in 15-bit fixed point: c * 32768 + 0.5 in one fused
// single-precision step, truncated (out of range gives 0x80000000).
inline int32_t fixedWeight(float c) { return _mm_cvttss_si32(_mm_set_ss(std::fma(c, 32768.0f, 0.5f))); }

// 8u block stage: each product truncated to 16 bits from the weight's low 16
// bits, the three terms and the rounding added with unsigned 16-bit
// saturation, shifted, and limited by the unsigned pack.
inline Kro8u grayBlock8u(int r, int g, int b, int32_t wr, int32_t wg, int32_t wb) {
    const auto term = [](int v, int32_t w) { return (static_cast<uint32_t>(v) * static_cast<uint16_t>(w)) >> 8; };
    uint32_t s = term(r, wr) + term(g, wg) + term(b, wb) + 64;
    if (s > 65535) s = 65535;
    s >>= 7;
    return static_cast<Kro8u>(s > 255 ? 255 : s);
}

// 8u remainder stage: 32-bit products with the full signed weights, wrapping,
// rounded and shifted once; the low byte is stored without a limit.
inline Kro8u grayRemainder8u(int r, int g, int b, int32_t wr, int32_t wg, int32_t wb) {
    const uint32_t s = static_cast<uint32_t>(r) * static_cast<uint32_t>(wr) + static_cast<uint32_t>(g) * static_cast<uint32_t>(wg) +
                       static_cast<uint32_t>(b) * static_cast<uint32_t>(wb) + 16384u;
    return static_cast<Kro8u>(s >> 15);
}

// The fused float sum of 16u, 16s and 32f: G first, then R, then B.
inline float graySum32f(float r, float g, float b, float wr, float wg, float wb) {
    return std::fma(wb, b, std::fma(wr, r, wg * g));
}

// The same sum in double precision (64f).
inline double graySum64f(double r, double g, double b, double wr, double wg, double wb) {
    return std::fma(wb, b, std::fma(wr, r, wg * g));
}

// 16u: the sum converted in the current rounding mode (0x80000000 when out of
// range), limited to 0..65535 as the unsigned pack does.
inline Kro16u gray16u(int r, int g, int b, float wr, float wg, float wb) {
    const int32_t v = _mm_cvtss_si32(_mm_set_ss(graySum32f(static_cast<float>(r), static_cast<float>(g), static_cast<float>(b), wr, wg, wb)));
    return static_cast<Kro16u>(v < 0 ? 0 : v > 65535 ? 65535 : v);
}

// 16s: the 16u form on samples biased by 32768, the bias taken off by bit 15.
inline Kro16s gray16s(int r, int g, int b, float wr, float wg, float wb) {
    return static_cast<Kro16s>(gray16u(r + 32768, g + 32768, b + 32768, wr, wg, wb) ^ 0x8000);
}

}  // namespace k0::gray
