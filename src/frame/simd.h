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

}  // namespace k0
