// Vector pieces every family shares: byte masks for tails, masked loads and
// stores that touch no byte outside [p, p + n), and widening helpers.
#pragma once
#include <immintrin.h>
#include <cstddef>
#include <cstdint>

#include "internal.h"

namespace k0 {

// The low n bits set, for 0 <= n <= 64.
KRO_INLINE __mmask64 lowBits64(unsigned n) { return n >= 64 ? ~0ULL : _bzhi_u64(~0ULL, n); }
KRO_INLINE __mmask32 lowBits32(unsigned n) { return n >= 32 ? ~0u : _bzhi_u32(~0u, n); }
KRO_INLINE __mmask16 lowBits16(unsigned n) { return static_cast<__mmask16>(lowBits32(n > 16 ? 16 : n)); }

// Loads and stores of the first n bytes (n <= register width); untouched
// lanes read as zero.
KRO_INLINE __m512i loadN512(const void* p, unsigned n) { return _mm512_maskz_loadu_epi8(lowBits64(n), p); }
KRO_INLINE __m256i loadN256(const void* p, unsigned n) { return _mm256_maskz_loadu_epi8(lowBits32(n), p); }
KRO_INLINE __m128i loadN128(const void* p, unsigned n) { return _mm_maskz_loadu_epi8(lowBits16(n), p); }
KRO_INLINE void storeN512(void* p, __m512i v, unsigned n) { _mm512_mask_storeu_epi8(p, lowBits64(n), v); }
KRO_INLINE void storeN256(void* p, __m256i v, unsigned n) { _mm256_mask_storeu_epi8(p, lowBits32(n), v); }
KRO_INLINE void storeN128(void* p, __m128i v, unsigned n) { _mm_mask_storeu_epi8(p, lowBits16(n), v); }

// Exactly 48 bytes (16 three-byte pixels) with plain accesses: a 32-byte and a
// 16-byte piece. The load leaves the top 16 bytes zero, as loadN512(p, 48)
// does; the store writes the low 48 bytes, as storeN512(p, v, 48) does. Bodies
// take these for whole blocks: byte masks that leave part of a 512-bit access
// off cost about twice as much on memory the caches miss.
KRO_INLINE __m512i load48(const void* p) {
    const auto* b = static_cast<const uint8_t*>(p);
    return _mm512_inserti32x4(_mm512_zextsi256_si512(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(b))),
                              _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + 32)), 2);
}
KRO_INLINE void store48(void* p, __m512i v) {
    auto* b = static_cast<uint8_t*>(p);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(b), _mm512_castsi512_si256(v));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(b + 32), _mm512_extracti32x4_epi32(v, 2));
}
// The first n bytes, as loadN512 / storeN512, loadN256 / storeN256 and
// loadN128 / storeN128 give them: whole 64-, 48-, 32-, 16- or (128-bit) 8-byte
// pieces with plain accesses, any other count under a mask. With n a constant the choice is made at compile time.
KRO_INLINE __m512i loadPart512(const void* p, unsigned n) {
    if (n == 64) return _mm512_loadu_si512(p);
    if (n == 48) return load48(p);
    if (n == 32) return _mm512_zextsi256_si512(_mm256_loadu_si256(static_cast<const __m256i*>(p)));
    if (n == 16) return _mm512_zextsi128_si512(_mm_loadu_si128(static_cast<const __m128i*>(p)));
    return loadN512(p, n);
}
KRO_INLINE void storePart512(void* p, __m512i v, unsigned n) {
    if (n == 64) _mm512_storeu_si512(p, v);
    else if (n == 48) store48(p, v);
    else if (n == 32) _mm256_storeu_si256(static_cast<__m256i*>(p), _mm512_castsi512_si256(v));
    else if (n == 16) _mm_storeu_si128(static_cast<__m128i*>(p), _mm512_castsi512_si128(v));
    else storeN512(p, v, n);
}
KRO_INLINE __m256i loadPart256(const void* p, unsigned n) {
    if (n == 32) return _mm256_loadu_si256(static_cast<const __m256i*>(p));
    if (n == 16) return _mm256_zextsi128_si256(_mm_loadu_si128(static_cast<const __m128i*>(p)));
    return loadN256(p, n);
}
KRO_INLINE void storePart256(void* p, __m256i v, unsigned n) {
    if (n == 32) _mm256_storeu_si256(static_cast<__m256i*>(p), v);
    else if (n == 16) _mm_storeu_si128(static_cast<__m128i*>(p), _mm256_castsi256_si128(v));
    else storeN256(p, v, n);
}
KRO_INLINE __m128i loadPart128(const void* p, unsigned n) {
    if (n == 16) return _mm_loadu_si128(static_cast<const __m128i*>(p));
    if (n == 8) return _mm_loadl_epi64(static_cast<const __m128i*>(p));
    return loadN128(p, n);
}
KRO_INLINE void storePart128(void* p, __m128i v, unsigned n) {
    if (n == 16) _mm_storeu_si128(static_cast<__m128i*>(p), v);
    else if (n == 8) _mm_storel_epi64(static_cast<__m128i*>(p), v);
    else storeN128(p, v, n);
}

}  // namespace k0

namespace k0 {

// ---- three-sample pixels ----------------------------------------------------
// 16 three-byte pixels (48 bytes at the bottom of a register) spread to 16
// dwords holding (s0, s1, s2, 0), and back. Both stay within AVX-512 BW.

KRO_INLINE __m512i expandC3toC4(__m512i raw) {
    // Lane k takes dwords 3k..3k+2, that is pixels 4k..4k+3, then each lane
    // spreads its 12 bytes to four dwords.
    const __m512i lanes = _mm512_setr_epi32(0, 1, 2, 2, 3, 4, 5, 5, 6, 7, 8, 8, 9, 10, 11, 11);
    const __m512i spread = _mm512_broadcast_i32x4(_mm_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1));
    return _mm512_shuffle_epi8(_mm512_permutexvar_epi32(lanes, raw), spread);
}

KRO_INLINE __m512i compactC4toC3(__m512i px) {
    const __m512i pack = _mm512_broadcast_i32x4(_mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1));
    const __m512i lanes = _mm512_setr_epi32(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 15, 15, 15, 15);
    return _mm512_permutexvar_epi32(lanes, _mm512_shuffle_epi8(px, pack));
}

// Sample i (0..3) of 16 four-byte pixels, as dwords.
template <int i>
KRO_INLINE __m512i sampleOf(__m512i px) {
    if constexpr (i == 3) return _mm512_srli_epi32(px, 24);
    else return _mm512_and_si512(_mm512_srli_epi32(px, 8 * i), _mm512_set1_epi32(0xFF));
}

// Three dwords of 0..255 merged to pixels (a, b, c, 0).
KRO_INLINE __m512i mergeSamples(__m512i a, __m512i b, __m512i c) {
    return _mm512_ternarylogic_epi32(a, _mm512_slli_epi32(b, 8), _mm512_slli_epi32(c, 16), 0xFE);
}

// Dwords of 0..255 as 16 words, and back.
KRO_INLINE __m256i dwordsToWords(__m512i v) { return _mm512_cvtepi32_epi16(v); }
KRO_INLINE __m512i wordsToDwords(__m256i v) { return _mm512_cvtepu16_epi32(v); }

// Byte mask of the first three bytes of each four-byte pixel.
inline constexpr uint64_t kRgbOfRgba = 0x7777777777777777ULL;

// 16 bytes widened to dwords, and dwords of 0..255 narrowed to bytes.
KRO_INLINE __m512i bytesToDwords(__m128i v) { return _mm512_cvtepu8_epi32(v); }
KRO_INLINE __m128i dwordsToBytes(__m512i v) { return _mm512_cvtepi32_epi8(v); }

}  // namespace k0
