// Pieces of the multiply-add kernels (include only from *_vnni.cpp units, which
// are compiled with the VNNI and VBMI instructions): factor vectors, byte
// permutes that gather a pixel's samples into 32-bit elements and scatter the
// results back, and the row of 16-pixel blocks: plain full vectors where a run
// of four blocks fills them, byte masks for the rest, so that no byte outside
// a row is read or written.
#pragma once
#include "simd.h"

namespace k0::vnni {

// Two 16-bit factors in each element, lo for the first word of a pair.
KRO_INLINE __m512i pair(int lo, int hi) {
    return _mm512_set1_epi32(static_cast<int>((static_cast<unsigned>(hi) << 16) | (static_cast<unsigned>(lo) & 0xFFFF)));
}
// Four signed byte factors in each element.
KRO_INLINE __m512i quad(int b0, int b1, int b2, int b3) {
    return _mm512_set1_epi32(static_cast<int>((b0 & 0xFF) | (b1 & 0xFF) << 8 | (b2 & 0xFF) << 16 |
                                              static_cast<unsigned>(b3 & 0xFF) << 24));
}

// Even bytes of the elements: with gatherPair, the words (s0, s1) of a pair.
inline constexpr __mmask64 kEven = 0x5555555555555555ULL;

// Byte-permute index putting bytes b0 and b1 of pixel k (P bytes a pixel) in
// bytes 0 and 2 of element k; use with kEven to clear bytes 1 and 3.
template <int P>
__m512i gatherPair(int b0, int b1) {
    alignas(64) int8_t idx[64] = {};
    for (int k = 0; k < 16; ++k) {
        idx[4 * k] = static_cast<int8_t>(P * k + b0);
        idx[4 * k + 2] = static_cast<int8_t>(P * k + b1);
    }
    return _mm512_load_si512(idx);
}

// Byte-permute index putting bytes b0..b3 of pixel k in the bytes of element k.
template <int P>
__m512i gatherQuad(int b0, int b1, int b2, int b3) {
    alignas(64) int8_t idx[64];
    const int src[4] = {b0, b1, b2, b3};
    for (int k = 0; k < 16; ++k)
        for (int j = 0; j < 4; ++j) idx[4 * k + j] = static_cast<int8_t>(P * k + src[j]);
    return _mm512_load_si512(idx);
}

// Byte 2 of each element of three accumulators to the samples of 16 pixels:
// P = 3 packs them to 48 bytes, P = 4 adds a zero fourth byte.
template <int P>
struct Scatter {
    __m512i ab, c;
    __mmask64 mab = 0, mc = 0;
    Scatter() {
        alignas(64) int8_t iab[64] = {}, ic[64] = {};
        for (int k = 0; k < 16; ++k) {
            iab[P * k] = static_cast<int8_t>(4 * k + 2);
            iab[P * k + 1] = static_cast<int8_t>(64 + 4 * k + 2);
            ic[P * k + 2] = static_cast<int8_t>(4 * k + 2);
            mab |= 3ULL << (P * k);
            mc |= 4ULL << (P * k);
        }
        ab = _mm512_load_si512(iab);
        c = _mm512_load_si512(ic);
    }
    KRO_INLINE __m512i operator()(__m512i a, __m512i b, __m512i cc) const {
        return _mm512_mask_permutexvar_epi8(_mm512_maskz_permutex2var_epi8(mab, a, ab, b), mc, c, cc);
    }
};

// Byte-permute indices joining four blocks of 48 bytes (the low bytes of
// b0..b3) into the three vectors of 192 contiguous bytes: {b0 0..47, b1 0..15},
// {b1 16..47, b2 0..31}, {b2 32..47, b3 0..47}. Index bit 6 picks the second
// operand of the permute.
struct Join48 {
    alignas(64) int8_t idx[3][64];
    constexpr Join48() : idx{} {
        for (int k = 0; k < 64; ++k) {
            idx[0][k] = static_cast<int8_t>(k < 48 ? k : 64 + k - 48);
            idx[1][k] = static_cast<int8_t>(k < 32 ? 16 + k : 64 + k - 32);
            idx[2][k] = static_cast<int8_t>(k < 16 ? 32 + k : 64 + k - 16);
        }
    }
};
inline constexpr Join48 kJoin48{};

// One row through a block form (16 pixels of P bytes in, the same out): four
// blocks a turn while 64 pixels remain, then single blocks, then one block
// under a byte mask. A turn covers 64 * P bytes of the row, so its loads and
// stores are plain full vectors: P = 4 moves each block as one vector; P = 3
// loads the 192 bytes as three vectors, splits them into four blocks of 48
// bytes and joins the four results back into three vectors. A turn reads all
// its bytes before it writes any, so a row converted in place stays exact.
template <int P, class Form>
KRO_INLINE void row(const Kro8u* s, Kro8u* d, int w, const Form& form) {
    static_assert(P == 3 || P == 4);
    const __mmask64 full = lowBits64(16 * P);
    const auto block = [&](int x, __mmask64 m) {
        _mm512_mask_storeu_epi8(d + P * x, m, form(_mm512_maskz_loadu_epi8(m, s + P * x)));
    };
    int x = 0;
    if constexpr (P == 4) {
        for (; x + 64 <= w; x += 64) {
            const __m512i v0 = _mm512_loadu_si512(s + 4 * x), v1 = _mm512_loadu_si512(s + 4 * x + 64);
            const __m512i v2 = _mm512_loadu_si512(s + 4 * x + 128), v3 = _mm512_loadu_si512(s + 4 * x + 192);
            const __m512i r0 = form(v0), r1 = form(v1), r2 = form(v2), r3 = form(v3);
            _mm512_storeu_si512(d + 4 * x, r0);
            _mm512_storeu_si512(d + 4 * x + 64, r1);
            _mm512_storeu_si512(d + 4 * x + 128, r2);
            _mm512_storeu_si512(d + 4 * x + 192, r3);
        }
    } else {
        const __m512i j01 = _mm512_load_si512(kJoin48.idx[0]), j12 = _mm512_load_si512(kJoin48.idx[1]);
        const __m512i j23 = _mm512_load_si512(kJoin48.idx[2]);
        for (; x + 64 <= w; x += 64) {
            const __m512i v0 = _mm512_loadu_si512(s + 3 * x), v1 = _mm512_loadu_si512(s + 3 * x + 64);
            const __m512i v2 = _mm512_loadu_si512(s + 3 * x + 128);
            // Blocks at bytes 0, 48, 96 and 144 of the turn in the low 48 bytes.
            const __m512i r0 = form(v0);
            const __m512i r1 = form(_mm512_alignr_epi32(v1, v0, 12));
            const __m512i r2 = form(_mm512_alignr_epi32(v2, v1, 8));
            const __m512i r3 = form(_mm512_alignr_epi32(v2, v2, 4));
            _mm512_storeu_si512(d + 3 * x, _mm512_permutex2var_epi8(r0, j01, r1));
            _mm512_storeu_si512(d + 3 * x + 64, _mm512_permutex2var_epi8(r1, j12, r2));
            _mm512_storeu_si512(d + 3 * x + 128, _mm512_permutex2var_epi8(r2, j23, r3));
        }
    }
    for (; x + 16 <= w; x += 16) block(x, full);
    if (x < w) block(x, lowBits64(static_cast<unsigned>(P * (w - x))));
}

// A whole image through a block form, rows from the top.
template <int P, class Form>
void image(const Kro8u* s, int ss, Kro8u* d, int ds, int w, int h, const Form& form) {
    for (int y = 0; y < h; ++y) row<P>(rowAt(s, ss, y), rowAt(d, ds, y), w, form);
}

}  // namespace k0::vnni
