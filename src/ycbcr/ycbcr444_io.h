// Pixel access of the YCbCr 4:4:4 kernels: sources and destinations by layout,
// and the stage loops that run a form over a stretch of a row.
//
// Word access moves 32 pixels as three registers of words for the 16-bit
// forms; dword access moves 16 pixels as three registers of dwords for the
// 32-bit forms. Both work under byte masks, so no byte outside [x0, x1) of a
// row is read or written.
//
// Word registers hold the 32 pixels in paired-lane order: 128-bit lane k
// holds pixels 4k..4k+3, then 16+4k..16+4k+3. Every layout below reads and
// writes that order, and the forms are element-wise, so it never shows.
#pragma once
#include <algorithm>

#include "simd.h"
#include "ycbcr/ycbcr_forms.h"
#include "ycbcr/ycbcr_vec.h"

namespace k0::ycbcr {

namespace io {

KRO_INLINE __m512i lanes128(int b0, int b1, int b2, int b3, int b4, int b5, int b6, int b7, int b8, int b9, int b10,
                            int b11, int b12, int b13, int b14, int b15) {
    return _mm512_broadcast_i32x4(_mm_setr_epi8(static_cast<char>(b0), static_cast<char>(b1), static_cast<char>(b2),
                                                static_cast<char>(b3), static_cast<char>(b4), static_cast<char>(b5),
                                                static_cast<char>(b6), static_cast<char>(b7), static_cast<char>(b8),
                                                static_cast<char>(b9), static_cast<char>(b10), static_cast<char>(b11),
                                                static_cast<char>(b12), static_cast<char>(b13), static_cast<char>(b14),
                                                static_cast<char>(b15)));
}

// Bytes of the first n pixels of P bytes each, split between the first and
// the second register of a 32-pixel block.
KRO_INLINE unsigned firstBytes(unsigned bytes, unsigned half) { return bytes < half ? bytes : half; }
KRO_INLINE unsigned secondBytes(unsigned bytes, unsigned half) { return bytes > half ? bytes - half : 0; }

// Two registers whose lane k holds pixels 4k..4k+3 (P bytes each, at byte
// P*j of the lane) to three word planes in paired-lane order.
template <int P>
KRO_INLINE V3 splitPixels(__m512i a0, __m512i a1) {
    const __m512i s01 = lanes128(0, -1, P, -1, 2 * P, -1, 3 * P, -1, 1, -1, P + 1, -1, 2 * P + 1, -1, 3 * P + 1, -1);
    const __m512i s2 = lanes128(2, -1, P + 2, -1, 2 * P + 2, -1, 3 * P + 2, -1, -1, -1, -1, -1, -1, -1, -1, -1);
    const __m512i x0 = _mm512_shuffle_epi8(a0, s01), x1 = _mm512_shuffle_epi8(a1, s01);
    return {_mm512_unpacklo_epi64(x0, x1), _mm512_unpackhi_epi64(x0, x1),
            _mm512_unpacklo_epi64(_mm512_shuffle_epi8(a0, s2), _mm512_shuffle_epi8(a1, s2))};
}

// 48 bytes of three-byte pixels spread so that lane k holds pixels 4k..4k+3.
KRO_INLINE __m512i spreadC3(__m512i raw) {
    return _mm512_permutexvar_epi32(_mm512_setr_epi32(0, 1, 2, 2, 3, 4, 5, 5, 6, 7, 8, 8, 9, 10, 11, 11), raw);
}

// 32 bytes of a plane to words in paired-lane order.
KRO_INLINE __m512i planeWords(const Kro8u* p, unsigned n) {
    const __m512i idx = _mm512_setr_epi32(0, 4, 0, 0, 1, 5, 0, 0, 2, 6, 0, 0, 3, 7, 0, 0);
    const __m512i x = _mm512_permutexvar_epi32(idx, _mm512_zextsi256_si512(loadPart256(p, n)));
    return _mm512_unpacklo_epi8(x, _mm512_setzero_si512());
}

// Words of two planes, packed with unsigned saturation (the clamp of the
// inverse short forms), to natural byte order: plane a in the low 32 bytes,
// plane b in the high 32.
KRO_INLINE __m512i planeBytes(__m512i a, __m512i b) {
    const __m512i idx = _mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15);
    return _mm512_permutexvar_epi32(idx, _mm512_packus_epi16(a, b));
}

}  // namespace io

// ---- sources ----------------------------------------------------------------------------

struct SrcC3 {
    const Kro8u* p;
    KRO_INLINE V3 words(int x, unsigned n) const {
        const Kro8u* q = p + 3 * x;
        if (n == 32) {
            // Bytes 0..63 and 32..95 of the block; spreadC3 reads the low 48
            // bytes of each, so the second is turned by 16 bytes.
            const __m512i hi = _mm512_loadu_si512(q + 32);
            return io::splitPixels<3>(io::spreadC3(_mm512_loadu_si512(q)),
                                      io::spreadC3(_mm512_alignr_epi32(hi, hi, 4)));
        }
        return io::splitPixels<3>(io::spreadC3(loadN512(q, io::firstBytes(3 * n, 48))),
                                  io::spreadC3(loadN512(q + 48, io::secondBytes(3 * n, 48))));
    }
    KRO_INLINE V3 dwords(int x, unsigned n) const {
        const __m512i px = expandC3toC4(loadPart512(p + 3 * x, 3 * n));
        return {sampleOf<0>(px), sampleOf<1>(px), sampleOf<2>(px)};
    }
    KRO_INLINE Px get(int x) const { return {p[3 * x], p[3 * x + 1], p[3 * x + 2]}; }
};

// Four-byte pixels whose fourth byte takes no part. A whole register is one
// plain load, fourth bytes and all (every reader below drops them); a short
// one leaves them out of the mask.
struct SrcC4 {
    const Kro8u* p;
    static KRO_INLINE __m512i load(const Kro8u* q, unsigned bytes) {
        if (bytes == 64) return _mm512_loadu_si512(q);
        return _mm512_maskz_loadu_epi8(kRgbOfRgba & lowBits64(bytes), q);
    }
    KRO_INLINE V3 words(int x, unsigned n) const {
        const Kro8u* q = p + 4 * x;
        return io::splitPixels<4>(load(q, io::firstBytes(4 * n, 64)), load(q + 64, io::secondBytes(4 * n, 64)));
    }
    KRO_INLINE V3 dwords(int x, unsigned n) const {
        const __m512i px = load(p + 4 * x, 4 * n);
        return {sampleOf<0>(px), sampleOf<1>(px), sampleOf<2>(px)};
    }
    KRO_INLINE Px get(int x) const { return {p[4 * x], p[4 * x + 1], p[4 * x + 2]}; }
};

struct SrcP3 {
    const Kro8u *p0, *p1, *p2;
    KRO_INLINE V3 words(int x, unsigned n) const {
        return {io::planeWords(p0 + x, n), io::planeWords(p1 + x, n), io::planeWords(p2 + x, n)};
    }
    KRO_INLINE V3 dwords(int x, unsigned n) const {
        return {bytesToDwords(loadPart128(p0 + x, n)), bytesToDwords(loadPart128(p1 + x, n)),
                bytesToDwords(loadPart128(p2 + x, n))};
    }
    KRO_INLINE Px get(int x) const { return {p0[x], p1[x], p2[x]}; }
};

// ---- destinations -------------------------------------------------------------------------
// Word stores take the forms' words and pack them with unsigned saturation;
// dword stores take samples already in 0..255.

template <bool Bgr = false>
struct DstC3 {
    Kro8u* p;
    static KRO_INLINE V3 order(const V3& v) { return Bgr ? V3{v.c, v.b, v.a} : v; }
    KRO_INLINE void storeWords(int x, const V3& w, unsigned n) const {
        const V3 v = order(w);
        // Lane k of ab: dwords a(4k..), a(16+4k..), b(4k..), b(16+4k..); of cc: c(4k..), c(16+4k..) twice.
        const __m512i ab = _mm512_packus_epi16(v.a, v.b), cc = _mm512_packus_epi16(v.c, v.c);
        const __m512i first = _mm512_setr_epi32(0, 2, 16, 0, 4, 6, 20, 4, 8, 10, 24, 8, 12, 14, 28, 12);
        const __m512i second = _mm512_add_epi32(first, _mm512_set1_epi32(1));
        const __m512i weave = io::lanes128(0, 4, 8, 1, 5, 9, 2, 6, 10, 3, 7, 11, -1, -1, -1, -1);
        const __m512i squeeze = _mm512_setr_epi32(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 15, 15, 15, 15);
        auto out = [&](__m512i idx) {
            return _mm512_permutexvar_epi32(squeeze, _mm512_shuffle_epi8(_mm512_permutex2var_epi32(ab, idx, cc), weave));
        };
        Kro8u* q = p + 3 * x;
        if (n == 32) {
            // The two 48-byte halves as 64 + 32 bytes: two plain stores.
            const __m512i lo = out(first), hi = out(second);
            const __m512i join = _mm512_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 16, 17, 18, 19);
            _mm512_storeu_si512(q, _mm512_permutex2var_epi32(lo, join, hi));
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(q + 64), _mm512_castsi512_si256(_mm512_alignr_epi32(hi, hi, 4)));
            return;
        }
        storePart512(q, out(first), io::firstBytes(3 * n, 48));
        storePart512(q + 48, out(second), io::secondBytes(3 * n, 48));
    }
    KRO_INLINE void storeDwords(int x, const V3& d, unsigned n) const {
        const V3 v = order(d);
        storePart512(p + 3 * x, compactC4toC3(mergeSamples(v.a, v.b, v.c)), 3 * n);
    }
    KRO_INLINE void put(int x, Px v) const {
        p[3 * x] = Bgr ? v.c : v.a;
        p[3 * x + 1] = v.b;
        p[3 * x + 2] = Bgr ? v.a : v.c;
    }
};

// Four-byte pixels whose fourth byte is set to a value (zero where it is
// cleared).
template <bool Bgr = false>
struct DstC4Alpha {
    Kro8u* p;
    Kro8u alpha;
    KRO_INLINE void storeWords(int x, const V3& w, unsigned n) const {
        const V3 v = DstC3<Bgr>::order(w);
        const __m512i ac = _mm512_packus_epi16(v.a, v.c), bz = _mm512_packus_epi16(v.b, w16::k(alpha));
        const __m512i lo = _mm512_unpacklo_epi8(ac, bz), hi = _mm512_unpackhi_epi8(ac, bz);
        Kro8u* q = p + 4 * x;
        storePart512(q, _mm512_unpacklo_epi16(lo, hi), io::firstBytes(4 * n, 64));
        storePart512(q + 64, _mm512_unpackhi_epi16(lo, hi), io::secondBytes(4 * n, 64));
    }
    KRO_INLINE void storeDwords(int x, const V3& d, unsigned n) const {
        const V3 v = DstC3<Bgr>::order(d);
        const __m512i a = _mm512_set1_epi32(static_cast<int>(static_cast<unsigned>(alpha) << 24));
        storePart512(p + 4 * x, _mm512_or_si512(mergeSamples(v.a, v.b, v.c), a), 4 * n);
    }
    KRO_INLINE void put(int x, Px v) const {
        p[4 * x] = Bgr ? v.c : v.a;
        p[4 * x + 1] = v.b;
        p[4 * x + 2] = Bgr ? v.a : v.c;
        p[4 * x + 3] = alpha;
    }
};

// Four-byte pixels whose fourth byte is left alone.
struct DstC4Keep {
    Kro8u* p;
    KRO_INLINE void storeDwords(int x, const V3& v, unsigned n) const {
        _mm512_mask_storeu_epi8(p + 4 * x, kRgbOfRgba & lowBits64(4 * n), mergeSamples(v.a, v.b, v.c));
    }
    KRO_INLINE void put(int x, Px v) const { p[4 * x] = v.a; p[4 * x + 1] = v.b; p[4 * x + 2] = v.c; }
};

struct DstP3 {
    Kro8u *p0, *p1, *p2;
    KRO_INLINE void storeWords(int x, const V3& w, unsigned n) const {
        const __m512i ab = io::planeBytes(w.a, w.b), cc = io::planeBytes(w.c, w.c);
        storePart256(p0 + x, _mm512_castsi512_si256(ab), n);
        storePart256(p1 + x, _mm512_extracti64x4_epi64(ab, 1), n);
        storePart256(p2 + x, _mm512_castsi512_si256(cc), n);
    }
    KRO_INLINE void storeDwords(int x, const V3& v, unsigned n) const {
        storePart128(p0 + x, dwordsToBytes(v.a), n);
        storePart128(p1 + x, dwordsToBytes(v.b), n);
        storePart128(p2 + x, dwordsToBytes(v.c), n);
    }
    KRO_INLINE void put(int x, Px v) const { p0[x] = v.a; p1[x] = v.b; p2[x] = v.c; }
};

// ---- stage loops ---------------------------------------------------------------------------

// `block(x, n)` over pixels [x0, x1) in blocks of B, the last one short. The
// whole blocks see n as the constant B, so their accesses are the plain ones.
template <int B, class Block>
KRO_INLINE void blocksOf(int x0, int x1, Block block) {
    int x = x0;
    for (; x + B <= x1; x += B) block(x, static_cast<unsigned>(B));
    if (x < x1) block(x, static_cast<unsigned>(x1 - x));
}

// A 16-bit form over pixels [x0, x1), 32 at a time.
template <class S, class D, class Stage>
KRO_INLINE void wordStage(const S& s, const D& d, int x0, int x1, Stage stage) {
    blocksOf<32>(x0, x1, [&](int x, unsigned n) KRO_INLINE_LAMBDA {
        const V3 in = s.words(x, n);
        d.storeWords(x, stage(in.a, in.b, in.c), n);
    });
}

// A 32-bit form over pixels [x0, x1), 16 at a time.
template <class S, class D, class Stage>
KRO_INLINE void dwordStage(const S& s, const D& d, int x0, int x1, Stage stage) {
    blocksOf<16>(x0, x1, [&](int x, unsigned n) KRO_INLINE_LAMBDA {
        const V3 in = s.dwords(x, n);
        d.storeDwords(x, stage(in.a, in.b, in.c), n);
    });
}

// A scalar form over pixels [x0, x1), each pixel read before it is written.
template <class S, class D, class Form>
KRO_INLINE void scalarStage(const S& s, const D& d, int x0, int x1, Form form) {
    for (int x = x0; x < x1; ++x) {
        const Px v = s.get(x);
        d.put(x, form(v.a, v.b, v.c));
    }
}

}  // namespace k0::ycbcr
