// Up to 16 interleaved pixels of three or four samples, as three vectors of
// 32-bit lanes (one a channel), and back. Loads and stores touch no byte
// outside the n pixels they are given (16 whole 8u pixels by plain accesses,
// fewer under byte masks); the fourth sample of a destination pixel is either
// left alone or written 0.
#pragma once
#include <immintrin.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "internal.h"
#include "simd.h"

namespace k0::xyzycc {

// Three channels of 16 pixels.
struct Vi3 {
    __m512i a, b, c;
};
struct Vf3 {
    __m512 a, b, c;
};

enum class Alpha { Keep, Zero };

// Row y of an image whose step counts elements.
template <class T>
KRO_INLINE T* rowOf(T* base, int step, int y) {
    return base + static_cast<std::ptrdiff_t>(step) * y;
}

// Elements [i, i + 32) (or 16) of the first `total`, as a mask.
KRO_INLINE __mmask32 part32(int total, int i) { return lowBits32(static_cast<unsigned>(total > i ? total - i : 0)); }
KRO_INLINE __mmask16 part16(int total, int i) { return lowBits16(static_cast<unsigned>(total > i ? total - i : 0)); }

template <class E, std::size_t N>
KRO_INLINE __m512i indexVector(const std::array<E, N>& idx) {
    return _mm512_loadu_si512(idx.data());
}

// ---- 8u: one register of pixels ---------------------------------------------------------

template <int S>
struct Io8u {
    static KRO_INLINE Vi3 load(const Kro8u* p, unsigned n) {
        const __m512i raw = loadPart512(p, S * n);
        const __m512i px = S == 3 ? expandC3toC4(raw) : raw;
        return {sampleOf<0>(px), sampleOf<1>(px), sampleOf<2>(px)};
    }
    // Channels of 0..255.
    template <Alpha A>
    static KRO_INLINE void store(Kro8u* p, unsigned n, const Vi3& v) {
        const __m512i px = mergeSamples(v.a, v.b, v.c);
        if constexpr (S == 3) storePart512(p, compactC4toC3(px), 3 * n);
        else if constexpr (A == Alpha::Zero) storePart512(p, px, 4 * n);
        else _mm512_mask_storeu_epi8(p, lowBits64(4 * n) & kRgbOfRgba, px);
    }
};

// ---- 16-bit: two registers of words ---------------------------------------------------

template <int S>
struct WordIndex {
    // Channel ch of pixel k is word S*k + ch of the two source registers.
    static constexpr std::array<int16_t, 32> gather(int ch) {
        std::array<int16_t, 32> t{};
        for (int k = 0; k < 16; ++k) t[k] = static_cast<int16_t>(S * k + ch);
        return t;
    }
    // Word j of the destination, from (R words, G words) and (B words, zeros).
    static constexpr std::array<int16_t, 32> scatter(int half) {
        std::array<int16_t, 32> t{};
        for (int l = 0; l < 32; ++l) {
            const int j = 32 * half + l, k = j / S, ch = j % S;
            t[l] = static_cast<int16_t>(ch == 3 ? 48 : 16 * ch + k);
        }
        return t;
    }
    static constexpr std::array<int16_t, 32> g0 = gather(0), g1 = gather(1), g2 = gather(2);
    static constexpr std::array<int16_t, 32> s0 = scatter(0), s1 = scatter(1);
};

// Samples zero-extended to 32 bits (a 16s form biases them itself).
template <class T, int S>
struct Io16 {
    using W = WordIndex<S>;
    static KRO_INLINE __m512i channel(__m512i lo, __m512i hi, const std::array<int16_t, 32>& idx) {
        return _mm512_cvtepu16_epi32(_mm512_castsi512_si256(_mm512_permutex2var_epi16(lo, indexVector(idx), hi)));
    }
    static KRO_INLINE Vi3 load(const T* p, unsigned n) {
        const int total = S * static_cast<int>(n);
        const __m512i lo = _mm512_maskz_loadu_epi16(part32(total, 0), p);
        const __m512i hi = _mm512_maskz_loadu_epi16(part32(total, 32), p + 32);
        return {channel(lo, hi, W::g0), channel(lo, hi, W::g1), channel(lo, hi, W::g2)};
    }
    // Channels whose low 16 bits are the samples.
    template <Alpha A>
    static KRO_INLINE void store(T* p, unsigned n, const Vi3& v) {
        const __m512i rg = _mm512_inserti64x4(_mm512_castsi256_si512(_mm512_cvtepi32_epi16(v.a)), _mm512_cvtepi32_epi16(v.b), 1);
        const __m512i b0 = _mm512_zextsi256_si512(_mm512_cvtepi32_epi16(v.c));
        const int total = S * static_cast<int>(n);
        const __mmask32 keep = S == 4 && A == Alpha::Keep ? 0x77777777u : ~0u;
        _mm512_mask_storeu_epi16(p, part32(total, 0) & keep, _mm512_permutex2var_epi16(rg, indexVector(W::s0), b0));
        if (total > 32) _mm512_mask_storeu_epi16(p + 32, part32(total, 32) & keep, _mm512_permutex2var_epi16(rg, indexVector(W::s1), b0));
    }
};

// ---- 32f: three or four registers of floats -----------------------------------------------

template <int S>
struct FloatIndex {
    // Channel ch of pixel k is float S*k + ch: from registers 0 and 1 below
    // 32, from registers 2 and 3 above; `high` marks the second kind.
    static constexpr std::array<int32_t, 16> gather(int ch) {
        std::array<int32_t, 16> t{};
        for (int k = 0; k < 16; ++k) t[k] = (S * k + ch) & 31;
        return t;
    }
    static constexpr __mmask16 high(int ch) {
        unsigned m = 0;
        for (int k = 0; k < 16; ++k) m |= (S * k + ch >= 32 ? 1u : 0u) << k;
        return static_cast<__mmask16>(m);
    }
    // Float l of destination register m: pixel k, channel ch; channels 0 and
    // 1 come from (R, G), channel 2 from B under `third`.
    static constexpr std::array<int32_t, 16> scatter(int m) {
        std::array<int32_t, 16> t{};
        for (int l = 0; l < 16; ++l) {
            const int j = 16 * m + l, k = j / S, ch = j % S;
            t[l] = ch == 1 ? 16 + k : k;
        }
        return t;
    }
    static constexpr __mmask16 third(int m) {
        unsigned mask = 0;
        for (int l = 0; l < 16; ++l) mask |= ((16 * m + l) % S == 2 ? 1u : 0u) << l;
        return static_cast<__mmask16>(mask);
    }
    static constexpr std::array<int32_t, 16> g0 = gather(0), g1 = gather(1), g2 = gather(2);
    static constexpr std::array<int32_t, 16> s0 = scatter(0), s1 = scatter(1), s2 = scatter(2), s3 = scatter(3);
};

template <int S>
struct IoF {
    using F = FloatIndex<S>;
    static KRO_INLINE __m512 channel(const __m512 (&r)[4], const std::array<int32_t, 16>& idx, __mmask16 high) {
        const __m512i i = indexVector(idx);
        return _mm512_mask_blend_ps(high, _mm512_permutex2var_ps(r[0], i, r[1]), _mm512_permutex2var_ps(r[2], i, r[3]));
    }
    static KRO_INLINE Vf3 load(const Kro32f* p, unsigned n) {
        const int total = S * static_cast<int>(n);
        __m512 r[4];
        for (int m = 0; m < 4; ++m)
            r[m] = m < S ? _mm512_maskz_loadu_ps(part16(total, 16 * m), p + 16 * m) : _mm512_setzero_ps();
        return {channel(r, F::g0, F::high(0)), channel(r, F::g1, F::high(1)), channel(r, F::g2, F::high(2))};
    }
    // The fourth sample is always left alone.
    template <Alpha A>
    static KRO_INLINE void store(Kro32f* p, unsigned n, const Vf3& v) {
        static_assert(A == Alpha::Keep, "float destinations keep their alpha");
        const int total = S * static_cast<int>(n);
        const __mmask16 keep = S == 4 ? 0x7777 : 0xFFFF;
        const std::array<int32_t, 16>* idx[4] = {&F::s0, &F::s1, &F::s2, &F::s3};
        for (int m = 0; m < S; ++m) {
            const __mmask16 mask = part16(total, 16 * m) & keep;
            if (mask == 0) break;
            const __m512i i = indexVector(*idx[m]);
            const __m512 out = _mm512_mask_permutexvar_ps(_mm512_permutex2var_ps(v.a, i, v.b), F::third(m), i, v.c);
            _mm512_mask_storeu_ps(p + 16 * m, mask, out);
        }
    }
};

// ---- the walk over a row ----------------------------------------------------------------

template <class T, int S>
using IoOf = std::conditional_t<sizeof(T) == 1, Io8u<S>, std::conditional_t<sizeof(T) == 2, Io16<T, S>, IoF<S>>>;

// Converts pixels [x0, x1) of a row through a vector form, 16 at a time and
// the rest under a mask.
template <class T, int S, Alpha A, class Form>
KRO_INLINE void convertSpan(const T* s, T* d, int x0, int x1, const Form& form) {
    using Io = IoOf<T, S>;
    int x = x0;
    for (; x + 16 <= x1; x += 16) Io::template store<A>(d + S * x, 16u, form(Io::load(s + S * x, 16u)));
    if (x < x1) {
        const unsigned n = static_cast<unsigned>(x1 - x);
        Io::template store<A>(d + S * x, n, form(Io::load(s + S * x, n)));
    }
}

}  // namespace k0::xyzycc
