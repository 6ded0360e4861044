// Gray of 16u, 16s, 32f and 64f pixels: the fused float sum, and the
// replication of 16u and 32f gray to three or four samples.
#include "gray_entry.h"
#include "gray_forms.h"
#include "gray_lanes.h"

namespace k0 {
namespace {

using namespace lanes;

// Float and double pixels share one kernel shape.
struct F32 {
    using T = Kro32f;
    using W = const Kro32f*;
    static constexpr int Bits = 32, E = 16;
    using V = __m512;
    static KRO_INLINE V from(__m512i v) { return _mm512_castsi512_ps(v); }
    static KRO_INLINE __m512i to(V v) { return _mm512_castps_si512(v); }
    static KRO_INLINE V set1(T v) { return _mm512_set1_ps(v); }
    static KRO_INLINE V sum(V r, V g, V b, const V* w) {
        return _mm512_fmadd_ps(w[2], b, _mm512_fmadd_ps(w[0], r, _mm512_mul_ps(w[1], g)));
    }
    static constexpr T kDefault[3] = {gray::kWeightR, gray::kWeightG, gray::kWeightB};
};
// The 64f defaults are the float defaults widened.
struct F64 {
    using T = Kro64f;
    using W = const Kro64f*;
    static constexpr int Bits = 64, E = 8;
    using V = __m512d;
    static KRO_INLINE V from(__m512i v) { return _mm512_castsi512_pd(v); }
    static KRO_INLINE __m512i to(V v) { return _mm512_castpd_si512(v); }
    static KRO_INLINE V set1(T v) { return _mm512_set1_pd(v); }
    static KRO_INLINE V sum(V r, V g, V b, const V* w) {
        return _mm512_fmadd_pd(w[2], b, _mm512_fmadd_pd(w[0], r, _mm512_mul_pd(w[1], g)));
    }
    static constexpr T kDefault[3] = {gray::kWeightR, gray::kWeightG, gray::kWeightB};
};

// The caller's weights, or the defaults for null, in registers.
template <class F>
KRO_INLINE void loadWeights(typename F::W coeffs, typename F::V* w) {
    const typename F::T* c = coeffs ? coeffs : F::kDefault;
    for (int i = 0; i < 3; ++i) w[i] = F::set1(c[i]);
}

KRO_INLINE __m512 half16u(__m512i v, int h) {
    return _mm512_cvtepi32_ps(_mm512_cvtepu16_epi32(h ? _mm512_extracti64x4_epi64(v, 1) : _mm512_castsi512_si256(v)));
}

// 32 pixels of 16-bit samples (biased by 32768 when Signed) to their gray.
template <int S, bool Signed>
void innerRGBToGray_16(const Kro16u* src, Kro16u* dst, int width, const __m512* w) {
    const __m512i bias = _mm512_set1_epi16(Signed ? static_cast<short>(0x8000) : 0);
    const __m512i order = _mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7);
    for (int x = 0; x < width; x += 32) {
        const unsigned n = width - x < 32 ? width - x : 32;
        __m512i v[S];
        loadBlock<16, S>(src + S * x, n, v);
        const __m512i r = _mm512_xor_si512(deinterleave<16, S, 0>(v), bias);
        const __m512i g = _mm512_xor_si512(deinterleave<16, S, 1>(v), bias);
        const __m512i b = _mm512_xor_si512(deinterleave<16, S, 2>(v), bias);
        const __m512i lo = _mm512_cvtps_epi32(F32::sum(half16u(r, 0), half16u(g, 0), half16u(b, 0), w));
        const __m512i hi = _mm512_cvtps_epi32(F32::sum(half16u(r, 1), half16u(g, 1), half16u(b, 1), w));
        const __m512i out = _mm512_xor_si512(_mm512_permutexvar_epi64(order, _mm512_packus_epi32(lo, hi)), bias);
        Elem<16>::store(dst + x, out, n);
    }
}

template <int S>
void wdrRGBToGray_16u(const Kro16u* src, int srcStep, Kro16u* dst, int dstStep, int width, int height, const Kro32f* coeffs) {
    __m512 w[3];
    loadWeights<F32>(coeffs, w);
    eachRow(src, srcStep, dst, dstStep, height,
                  [&](const Kro16u* s, Kro16u* d) { innerRGBToGray_16<S, false>(s, d, width, w); });
}

// The 16s driver counts its steps in samples.
void myRGBToGray_16s_C3C1R(const Kro16s* src, int srcStep, Kro16s* dst, int dstStep, int width, int height,
                           const Kro32f* coeffs, int pixelStride) {
    __m512 w[3];
    loadWeights<F32>(coeffs, w);
    walkRows(height, [&](int y) {
        const auto* s = reinterpret_cast<const Kro16u*>(src + static_cast<std::ptrdiff_t>(srcStep) * y);
        auto* d = reinterpret_cast<Kro16u*>(dst + static_cast<std::ptrdiff_t>(dstStep) * y);
        if (pixelStride == 3) innerRGBToGray_16<3, true>(s, d, width, w);
        else innerRGBToGray_16<4, true>(s, d, width, w);
    });
}

template <int S>
void entryRGBToGray_16s(const Kro16s* src, int srcStep, Kro16s* dst, int dstStep, int width, int height, const Kro32f* coeffs) {
    myRGBToGray_16s_C3C1R(src, srcStep >> 1, dst, dstStep >> 1, width, height, coeffs, S);
}

template <class F, int S>
void innerRGBToGray_float(const typename F::T* src, typename F::T* dst, int width, const typename F::V* w) {
    for (int x = 0; x < width; x += F::E) {
        const unsigned n = width - x < F::E ? width - x : F::E;
        __m512i v[S];
        loadBlock<F::Bits, S>(src + S * x, n, v);
        const auto g = F::sum(F::from(deinterleave<F::Bits, S, 0>(v)), F::from(deinterleave<F::Bits, S, 1>(v)),
                              F::from(deinterleave<F::Bits, S, 2>(v)), w);
        Elem<F::Bits>::store(dst + x, F::to(g), n);
    }
}

template <class F, int S>
void wdrRGBToGray_float(const typename F::T* src, int srcStep, typename F::T* dst, int dstStep, int width, int height,
                        typename F::W coeffs) {
    typename F::V w[3];
    loadWeights<F>(coeffs, w);
    eachRow(src, srcStep, dst, dstStep, height,
                  [&](const typename F::T* s, typename F::T* d) { innerRGBToGray_float<F, S>(s, d, width, w); });
}

// Gray to three or four samples of 16 or 32 bits.
template <int Bits, int S, class T>
void wdrGrayToRGB(const T* src, int srcStep, T* dst, int dstStep, int width, int height, T alpha) {
    constexpr int E = Elem<Bits>::E;
    __m512i c[4];
    c[3] = Bits == 16 ? _mm512_set1_epi16(static_cast<short>(alpha)) : _mm512_castps_si512(_mm512_set1_ps(alpha));
    eachRow(src, srcStep, dst, dstStep, height, [&](const T* s, T* d) {
        for (int x = 0; x < width; x += E) {
            const unsigned n = width - x < E ? width - x : E;
            c[0] = c[1] = c[2] = Elem<Bits>::load(s + x, n);
            storeBlock<Bits, S>(d + S * x, n, c);
        }
    });
}

}  // namespace
}  // namespace k0

using k0::F32;
using k0::F64;

KRO_GRAY_ENTRIES(16u, C3C1R, Kro16u, k0::wdrRGBToGray_16u<3>)
KRO_GRAY_ENTRIES(16u, AC4C1R, Kro16u, k0::wdrRGBToGray_16u<4>)
KRO_GRAY_ENTRIES(16s, C3C1R, Kro16s, k0::entryRGBToGray_16s<3>)
KRO_GRAY_ENTRIES(16s, AC4C1R, Kro16s, k0::entryRGBToGray_16s<4>)
KRO_GRAY_ENTRIES(32f, C3C1R, Kro32f, (k0::wdrRGBToGray_float<F32, 3>))
KRO_GRAY_ENTRIES(32f, AC4C1R, Kro32f, (k0::wdrRGBToGray_float<F32, 4>))

KRO_ENTRY(kroiColorToGray_64f_C3C1R)(const Kro64f* pSrc, int srcStep, Kro64f* pDst, int dstStep, KroiSize roi,
                                     const Kro64f* pCoeffs) {
    return k0::run(k0::wdrRGBToGray_float<F64, 3>, pSrc, srcStep, pDst, dstStep, roi, pCoeffs);
}
KRO_ENTRY(kroiColorToGray_64f_AC4C1R)(const Kro64f* pSrc, int srcStep, Kro64f* pDst, int dstStep, KroiSize roi,
                                      const Kro64f* pCoeffs) {
    return k0::run(k0::wdrRGBToGray_float<F64, 4>, pSrc, srcStep, pDst, dstStep, roi, pCoeffs);
}

KRO_ENTRY(kroiGrayToRGB_16u_C1C3R)(const Kro16u* pSrc, int srcStep, Kro16u* pDst, int dstStep, KroiSize roi) {
    return k0::run(k0::wdrGrayToRGB<16, 3, Kro16u>, pSrc, srcStep, pDst, dstStep, roi, 0);
}
KRO_ENTRY(kroiGrayToRGB_16u_C1C4R)(const Kro16u* pSrc, int srcStep, Kro16u* pDst, int dstStep, KroiSize roi, Kro16u aval) {
    return k0::run(k0::wdrGrayToRGB<16, 4, Kro16u>, pSrc, srcStep, pDst, dstStep, roi, aval);
}
KRO_ENTRY(kroiGrayToRGB_32f_C1C3R)(const Kro32f* pSrc, int srcStep, Kro32f* pDst, int dstStep, KroiSize roi) {
    return k0::run(k0::wdrGrayToRGB<32, 3, Kro32f>, pSrc, srcStep, pDst, dstStep, roi, 0.0f);
}
KRO_ENTRY(kroiGrayToRGB_32f_C1C4R)(const Kro32f* pSrc, int srcStep, Kro32f* pDst, int dstStep, KroiSize roi, Kro32f aval) {
    return k0::run(k0::wdrGrayToRGB<32, 4, Kro32f>, pSrc, srcStep, pDst, dstStep, roi, aval);
}
