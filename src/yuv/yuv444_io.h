// Pixel access of the Y'UV 4:4:4 row kernels: sources and destinations by
// layout, and the stage loops that run a form over a stretch of a row.
// A vector stage takes 16 pixels at a time, whole blocks with plain loads and
// stores of exactly their bytes and a short last block under byte masks, so no
// byte outside [x0, x1) of a row is read or written.
#pragma once
#include <algorithm>

#include "simd.h"
#include "yuv/yuv444_vec.h"
#include "yuv/yuv_forms.h"

namespace k0::yuv {

// ---- sources ----------------------------------------------------------------

struct SrcC3 {
    const Kro8u* p;
    KRO_INLINE D3 load(int x, unsigned n) const {
        const __m512i px = expandC3toC4(loadPart512(p + 3 * x, 3 * n));
        return {sampleOf<0>(px), sampleOf<1>(px), sampleOf<2>(px)};
    }
    KRO_INLINE Px get(int x) const { return {p[3 * x], p[3 * x + 1], p[3 * x + 2]}; }
};

struct SrcC4 {
    const Kro8u* p;
    KRO_INLINE D3 load(int x, unsigned n) const {
        const __m512i px = loadPart512(p + 4 * x, 4 * n);
        return {sampleOf<0>(px), sampleOf<1>(px), sampleOf<2>(px)};
    }
    KRO_INLINE Px get(int x) const { return {p[4 * x], p[4 * x + 1], p[4 * x + 2]}; }
};

struct SrcP3 {
    const Kro8u *p0, *p1, *p2;
    KRO_INLINE D3 load(int x, unsigned n) const {
        return {bytesToDwords(loadPart128(p0 + x, n)), bytesToDwords(loadPart128(p1 + x, n)),
                bytesToDwords(loadPart128(p2 + x, n))};
    }
    KRO_INLINE Px get(int x) const { return {p0[x], p1[x], p2[x]}; }
};

// ---- destinations -----------------------------------------------------------

struct DstC3 {
    Kro8u* p;
    KRO_INLINE void store(int x, const D3& v, unsigned n) const {
        storePart512(p + 3 * x, compactC4toC3(mergeSamples(v.a, v.b, v.c)), 3 * n);
    }
    KRO_INLINE void put(int x, Px v) const { p[3 * x] = v.a; p[3 * x + 1] = v.b; p[3 * x + 2] = v.c; }
};

// Four-sample destination whose fourth sample is left alone.
struct DstC4Keep {
    Kro8u* p;
    KRO_INLINE void store(int x, const D3& v, unsigned n) const {
        _mm512_mask_storeu_epi8(p + 4 * x, kRgbOfRgba & lowBits64(4 * n), mergeSamples(v.a, v.b, v.c));
    }
    KRO_INLINE void put(int x, Px v) const { p[4 * x] = v.a; p[4 * x + 1] = v.b; p[4 * x + 2] = v.c; }
};

// Four-sample destination whose fourth sample is set from a value.
struct DstC4Alpha {
    Kro8u* p;
    Kro8u alpha;
    KRO_INLINE void store(int x, const D3& v, unsigned n) const {
        const __m512i a = _mm512_set1_epi32(static_cast<int>(static_cast<unsigned>(alpha) << 24));
        storePart512(p + 4 * x, _mm512_or_si512(mergeSamples(v.a, v.b, v.c), a), 4 * n);
    }
    KRO_INLINE void put(int x, Px v) const {
        p[4 * x] = v.a; p[4 * x + 1] = v.b; p[4 * x + 2] = v.c; p[4 * x + 3] = alpha;
    }
};

struct DstP3 {
    Kro8u *p0, *p1, *p2;
    KRO_INLINE void store(int x, const D3& v, unsigned n) const {
        storePart128(p0 + x, dwordsToBytes(v.a), n);
        storePart128(p1 + x, dwordsToBytes(v.b), n);
        storePart128(p2 + x, dwordsToBytes(v.c), n);
    }
    KRO_INLINE void put(int x, Px v) const { p0[x] = v.a; p1[x] = v.b; p2[x] = v.c; }
};

// One plane of three: the planar kernel makes a pass per output plane.
template <int ch>
struct DstPlane {
    Kro8u* p;
    KRO_INLINE void store(int x, const D3& v, unsigned n) const {
        storePart128(p + x, dwordsToBytes(ch == 0 ? v.a : ch == 1 ? v.b : v.c), n);
    }
    KRO_INLINE void put(int x, Px v) const { p[x] = ch == 0 ? v.a : ch == 1 ? v.b : v.c; }
};

// ---- stage loops --------------------------------------------------------------

// `block(x, n)` over pixels [x0, x1), 16 at a time, the last block short. The
// whole blocks see n as the constant 16, so their accesses are the plain ones.
template <class Block>
KRO_INLINE void blocksOf16(int x0, int x1, Block block) {
    int x = x0;
    for (; x + 16 <= x1; x += 16) block(x, 16u);
    if (x < x1) block(x, static_cast<unsigned>(x1 - x));
}

// A block form over pixels [x0, x1), 16 at a time, in 16-bit words.
template <class S, class D, class Form>
KRO_INLINE void blockStage(const S& s, const D& d, int x0, int x1, Form form) {
    blocksOf16(x0, x1, [&](int x, unsigned n) KRO_INLINE_LAMBDA {
        const D3 in = s.load(x, n);
        const W3 o = form(dwordsToWords(in.a), dwordsToWords(in.b), dwordsToWords(in.c));
        d.store(x, {wordsToDwords(o.a), wordsToDwords(o.b), wordsToDwords(o.c)}, n);
    });
}

// A 32-bit form over pixels [x0, x1), 16 at a time.
template <class S, class D, class Form>
KRO_INLINE void wideStage(const S& s, const D& d, int x0, int x1, Form form) {
    blocksOf16(x0, x1, [&](int x, unsigned n) KRO_INLINE_LAMBDA {
        const D3 in = s.load(x, n);
        d.store(x, form(in.a, in.b, in.c), n);
    });
}

// A scalar form over pixels [x0, x1), one pixel read before it is written.
template <class S, class D, class Form>
KRO_INLINE void scalarStage(const S& s, const D& d, int x0, int x1, Form form) {
    for (int x = x0; x < x1; ++x) {
        const Px p = s.get(x);
        d.put(x, form(p.a, p.b, p.c));
    }
}

}  // namespace k0::yuv
