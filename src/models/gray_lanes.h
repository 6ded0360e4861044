// Moving interleaved pixels in and out of 512-bit registers, one channel a
// register, for the gray and YCoCg kernels.
//
// 8-bit pixels (S = 3 or 4 bytes) travel in blocks of 32 as 16-bit words: a
// channel register holds in its 128-bit lane k the pixels 8k..8k+7, that is in
// pixel order. 16-, 32- and 64-bit pixels travel in blocks of as many pixels
// as a register has elements, S registers a block.
#pragma once
#include <array>
#include <cstdint>

#include "simd.h"

namespace k0::lanes {

template <class T, std::size_t N>
KRO_INLINE __m512i vec(const std::array<T, N>& a) { return _mm512_loadu_si512(a.data()); }

// ---- 8-bit pixels <-> 16-bit channel words ---------------------------------

// Dword index into the two source registers of a block (96 or 128 bytes): lane
// k of register A gets the dwords of pixels 8k..8k+3, of register B those of
// 8k+4..8k+7. The same table, read backwards, joins them again.
template <int S>
constexpr std::array<uint32_t, 16> splitIndex(int half) {
    std::array<uint32_t, 16> t{};
    for (int k = 0; k < 4; ++k)
        for (int d = 0; d < 4; ++d) t[4 * k + d] = d < S ? S * (2 * k + half) + d : 0;
    return t;
}
template <int S> inline constexpr auto kSplitA = splitIndex<S>(0);
template <int S> inline constexpr auto kSplitB = splitIndex<S>(1);

// Output dword j of a block comes from group j / S of four pixels: even groups
// from A, odd groups from B.
template <int S>
constexpr std::array<uint32_t, 32> joinIndex() {
    std::array<uint32_t, 32> t{};
    for (int j = 0; j < 8 * S; ++j) {
        const int q = j / S, d = j % S, k = q / 2;
        t[j] = (q % 2 ? 16u : 0u) + 4 * k + d;
    }
    return t;
}
template <int S> inline constexpr auto kJoin = joinIndex<S>();

// Byte shuffle that moves sample C of the four pixels of a lane half to words
// 4*half .. 4*half+3, into the low byte (High = false) or the high byte.
template <int S, int C, int Half, bool High>
constexpr std::array<uint8_t, 64> wordShuffle() {
    std::array<uint8_t, 64> t{};
    for (int lane = 0; lane < 4; ++lane)
        for (int w = 0; w < 8; ++w) {
            const bool mine = w / 4 == Half;
            const uint8_t src = mine ? static_cast<uint8_t>(S * (w % 4) + C) : 0x80;
            t[16 * lane + 2 * w] = High ? 0x80 : src;
            t[16 * lane + 2 * w + 1] = High ? src : 0x80;
        }
    return t;
}
template <int S, int C, int Half, bool High> inline constexpr auto kWordShuffle = wordShuffle<S, C, Half, High>();

// Byte shuffle that gathers pixels 4*Half.. of a lane from the packed bytes
// P01 = (c0 x8, c1 x8) and P23 = (c2 x8, c3 x8) back into S-byte pixels.
template <int S, int Half, bool FromP01>
constexpr std::array<uint8_t, 64> pixelShuffle() {
    std::array<uint8_t, 64> t{};
    for (int lane = 0; lane < 4; ++lane)
        for (int b = 0; b < 16; ++b) {
            const int i = b / S, c = b % S;
            uint8_t v = 0x80;
            if (i < 4 && (c < 2) == FromP01) v = static_cast<uint8_t>(8 * (c % 2) + 4 * Half + i);
            t[16 * lane + b] = v;
        }
    return t;
}
template <int S, int Half, bool FromP01> inline constexpr auto kPixelShuffle = pixelShuffle<S, Half, FromP01>();

// The n <= 32 pixels at p, split into A and B. Nothing beyond n pixels is read.
template <int S>
KRO_INLINE void load8(const Kro8u* p, unsigned n, __m512i& a, __m512i& b) {
    const unsigned bytes = n * S;
    const __m512i v0 = bytes >= 64 ? _mm512_loadu_si512(p) : loadPart512(p, bytes);
    const __m512i v1 = bytes > 64 ? loadPart512(p + 64, bytes - 64) : _mm512_setzero_si512();
    a = _mm512_permutex2var_epi32(v0, vec(kSplitA<S>), v1);
    b = _mm512_permutex2var_epi32(v0, vec(kSplitB<S>), v1);
}

// Sample C of the block as 32 words, the byte in the low half (or in the high
// half, which is the sample times 256).
template <int S, int C, bool High = false>
KRO_INLINE __m512i channel8(__m512i a, __m512i b) {
    return _mm512_or_si512(_mm512_shuffle_epi8(a, vec(kWordShuffle<S, C, 0, High>)),
                           _mm512_shuffle_epi8(b, vec(kWordShuffle<S, C, 1, High>)));
}

// Stores n <= 32 pixels whose samples are the words c0, c1, c2 (and c3 when S
// is 4), each limited to 0..255 by the unsigned pack.
template <int S>
KRO_INLINE void store8(Kro8u* p, unsigned n, __m512i c0, __m512i c1, __m512i c2, __m512i c3) {
    const __m512i p01 = _mm512_packus_epi16(c0, c1);
    const __m512i p23 = _mm512_packus_epi16(c2, c3);
    const __m512i a = _mm512_or_si512(_mm512_shuffle_epi8(p01, vec(kPixelShuffle<S, 0, true>)),
                                      _mm512_shuffle_epi8(p23, vec(kPixelShuffle<S, 0, false>)));
    const __m512i b = _mm512_or_si512(_mm512_shuffle_epi8(p01, vec(kPixelShuffle<S, 1, true>)),
                                      _mm512_shuffle_epi8(p23, vec(kPixelShuffle<S, 1, false>)));
    const __m512i o0 = _mm512_permutex2var_epi32(a, _mm512_loadu_si512(kJoin<S>.data()), b);
    const __m512i o1 = _mm512_permutex2var_epi32(a, _mm512_loadu_si512(kJoin<S>.data() + 16), b);
    const unsigned bytes = n * S;
    if (bytes >= 64) _mm512_storeu_si512(p, o0); else storePart512(p, o0, bytes);
    if (bytes > 64) storePart512(p + 64, o1, bytes - 64);
}

// 32 words in pixel order to 32 bytes by the unsigned pack.
KRO_INLINE __m256i packWords(__m512i w) {
    const __m512i p = _mm512_packus_epi16(w, w);
    return _mm512_castsi512_si256(_mm512_permutexvar_epi64(_mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), p));
}

// ---- 16-, 32- and 64-bit pixels --------------------------------------------

template <int Bits> struct Elem;
template <> struct Elem<16> {
    using Int = uint16_t;
    static constexpr int E = 32;
    static KRO_INLINE __m512i perm2(__m512i a, __m512i i, __m512i b) { return _mm512_permutex2var_epi16(a, i, b); }
    static KRO_INLINE __m512i load(const void* p, unsigned n) { return _mm512_maskz_loadu_epi16(lowBits32(n), p); }
    static KRO_INLINE void store(void* p, __m512i v, unsigned n) { _mm512_mask_storeu_epi16(p, lowBits32(n), v); }
};
template <> struct Elem<32> {
    using Int = uint32_t;
    static constexpr int E = 16;
    static KRO_INLINE __m512i perm2(__m512i a, __m512i i, __m512i b) { return _mm512_permutex2var_epi32(a, i, b); }
    static KRO_INLINE __m512i load(const void* p, unsigned n) { return _mm512_maskz_loadu_epi32(lowBits16(n), p); }
    static KRO_INLINE void store(void* p, __m512i v, unsigned n) { _mm512_mask_storeu_epi32(p, lowBits16(n), v); }
};
template <> struct Elem<64> {
    using Int = uint64_t;
    static constexpr int E = 8;
    static KRO_INLINE __m512i perm2(__m512i a, __m512i i, __m512i b) { return _mm512_permutex2var_epi64(a, i, b); }
    static KRO_INLINE __m512i load(const void* p, unsigned n) {
        return _mm512_maskz_loadu_epi64(static_cast<__mmask8>(lowBits16(n)), p);
    }
    static KRO_INLINE void store(void* p, __m512i v, unsigned n) {
        _mm512_mask_storeu_epi64(p, static_cast<__mmask8>(lowBits16(n)), v);
    }
};

// Index tables of the element shuffles. A value below E picks from the first
// operand, E and above from the second.
template <int Bits, int S, int C, int Step>
constexpr auto gatherIndex() {
    constexpr int E = Elem<Bits>::E;
    std::array<typename Elem<Bits>::Int, E> t{};
    for (int j = 0; j < E; ++j) {
        const int g = S * j + C;  // element of channel C, pixel j, in the block
        if constexpr (S == 3) {
            // step 0 gathers from registers 0 and 1, step 1 adds register 2
            if (Step == 0) t[j] = g < 2 * E ? g : 0;
            else t[j] = g < 2 * E ? j : E + g - 2 * E;
        } else {
            // both steps gather half a register from a pair of registers
            t[j] = j < E / 2 ? S * j + C : 0;
        }
    }
    return t;
}
template <int Bits, int S, int C, int Step> inline constexpr auto kGather = gatherIndex<Bits, S, C, Step>();

// Channel C of a block held in v[0..S-1].
template <int Bits, int S, int C>
KRO_INLINE __m512i deinterleave(const __m512i* v) {
    using L = Elem<Bits>;
    if constexpr (S == 3) {
        const __m512i t = L::perm2(v[0], vec(kGather<Bits, S, C, 0>), v[1]);
        return L::perm2(t, vec(kGather<Bits, S, C, 1>), v[2]);
    } else {
        const __m512i lo = L::perm2(v[0], vec(kGather<Bits, S, C, 0>), v[1]);
        const __m512i hi = L::perm2(v[2], vec(kGather<Bits, S, C, 0>), v[3]);
        return _mm512_shuffle_i64x2(lo, hi, 0x44);
    }
}

// Output register R of a block of S-sample pixels made from channels c[0..S-1]:
// the first step picks samples 0 and 1 from c[0] and c[1], the second adds
// sample 2 from c[2] (and, for S = 4, sample 3 from c[3] by a blend).
template <int Bits, int S, int R, int Step>
constexpr auto scatterIndex() {
    constexpr int E = Elem<Bits>::E;
    std::array<typename Elem<Bits>::Int, E> t{};
    for (int j = 0; j < E; ++j) {
        const int g = R * E + j, p = g / S, c = g % S;
        if (Step == 0) t[j] = c == 0 ? p : c == 1 ? E + p : 0;
        else t[j] = c < 2 ? j : c == 2 ? E + p : 0;  // S = 3 only
    }
    return t;
}
template <int Bits, int S, int R, int Step> inline constexpr auto kScatter = scatterIndex<Bits, S, R, Step>();

template <int Bits, int S>
constexpr uint64_t fourthSampleMask() {
    uint64_t m = 0;
    for (int j = 0; j < Elem<Bits>::E; ++j)
        if (j % S == 3) m |= 1ULL << j;
    return m;
}

template <int Bits, int S, int R>
KRO_INLINE __m512i interleaveOne(const __m512i* c) {
    using L = Elem<Bits>;
    const __m512i t = L::perm2(c[0], vec(kScatter<Bits, S, R, 0>), c[1]);
    if constexpr (S == 3) {
        return L::perm2(t, vec(kScatter<Bits, S, R, 1>), c[2]);
    } else {
        // samples 2 and 3 of each pixel come from c[2] and c[3] by the same
        // pick that put samples 0 and 1 in place, moved up by two elements
        const __m512i u = L::perm2(c[2], vec(kScatter<Bits, S, R, 0>), c[3]);
        constexpr uint64_t m = fourthSampleMask<Bits, S>() | (fourthSampleMask<Bits, S>() >> 1);
        if constexpr (Bits == 16) return _mm512_mask_mov_epi16(t, static_cast<__mmask32>(m), _mm512_bslli_epi128(u, 4));
        else if constexpr (Bits == 32) return _mm512_mask_mov_epi32(t, static_cast<__mmask16>(m), _mm512_bslli_epi128(u, 8));
        else return _mm512_mask_mov_epi64(t, static_cast<__mmask8>(m), _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 0, 0, 1, 2, 3, 4, 5), u));
    }
}

// Loads the n <= E pixels of a block at p into v[0..S-1]; nothing beyond them is read.
template <int Bits, int S>
KRO_INLINE void loadBlock(const void* p, unsigned n, __m512i* v) {
    using L = Elem<Bits>;
    const auto* b = static_cast<const char*>(p);
    const unsigned elems = n * S;
    for (int r = 0; r < S; ++r) {
        const unsigned first = r * L::E;
        v[r] = elems >= first + L::E ? _mm512_loadu_si512(b + 64 * r)
               : elems > first      ? L::load(b + 64 * r, elems - first)
                                    : _mm512_setzero_si512();
    }
}

// A whole 64-byte register to memory, non-temporally: one store where the
// address allows it, four 16-byte stores otherwise.
KRO_INLINE void stream64(void* p, __m512i v) {
    if ((reinterpret_cast<std::uintptr_t>(p) & 63) == 0) {
        _mm512_stream_si512(static_cast<__m512i*>(p), v);
    } else {
        auto* q = static_cast<__m128i*>(p);
        _mm_stream_si128(q, _mm512_castsi512_si128(v));
        _mm_stream_si128(q + 1, _mm512_extracti32x4_epi32(v, 1));
        _mm_stream_si128(q + 2, _mm512_extracti32x4_epi32(v, 2));
        _mm_stream_si128(q + 3, _mm512_extracti32x4_epi32(v, 3));
    }
}

// Interleaves the channels c[0..S-1] and stores the n <= E pixels of the block
// at p; whole registers non-temporally when Stream.
template <int Bits, int S, bool Stream = false>
KRO_INLINE void storeBlock(void* p, unsigned n, const __m512i* c) {
    using L = Elem<Bits>;
    auto* b = static_cast<char*>(p);
    const unsigned elems = n * S;
    const __m512i o[4] = {interleaveOne<Bits, S, 0>(c), interleaveOne<Bits, S, 1>(c), interleaveOne<Bits, S, 2>(c),
                          S == 4 ? interleaveOne<Bits, S, S - 1>(c) : _mm512_setzero_si512()};
    for (int r = 0; r < S; ++r) {
        const unsigned first = r * L::E;
        if (elems >= first + L::E) {
            if (Stream) stream64(b + 64 * r, o[r]);
            else _mm512_storeu_si512(b + 64 * r, o[r]);
        } else if (elems > first) L::store(b + 64 * r, o[r], elems - first);
    }
}

}  // namespace k0::lanes
