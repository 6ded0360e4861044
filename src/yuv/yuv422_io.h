// Cell access of the Y'UV kernels with halved chroma: sources and
// destinations by layout, and the stage loops that run a form over a stretch
// of cells of a row.
//
// A load or store moves up to 32 cells (64 pixels), whole 64-, 32- or 16-byte
// pieces with plain accesses and the rest under byte masks, so no byte
// outside the cells [c, c + n) of a row is read or written. Planes come
// out split by the pixel's place in its cell (see yuv422_vec.h), in words;
// the 32-bit forms widen the low 16 cells to dwords and back.
#pragma once
#include <algorithm>
#include <array>

#include "simd.h"
#include "yuv/yuv422_vec.h"
#include "yuv/yuvsub_forms.h"

namespace k0::yuv {

namespace cells {

// ---- word permutations, made at compile time from their rule ------------------------

using WordIndex = std::array<int16_t, 32>;
template <class F>
constexpr WordIndex wordIndex(F f) {
    WordIndex t{};
    for (int q = 0; q < 32; ++q) t[q] = static_cast<int16_t>(f(q));
    return t;
}
template <class F>
constexpr __mmask32 wordMask(F f) {
    __mmask32 m = 0;
    for (int q = 0; q < 32; ++q) m |= f(q) ? (1u << q) : 0u;
    return m;
}
KRO_INLINE __m512i vec(const WordIndex& t) { return _mm512_loadu_si512(t.data()); }

// Three-byte pixels: cell k is words 3k, 3k+1, 3k+2 of the block, that is
// (R0 G0), (B0 R1), (G1 B1). Word 3k+i lies in registers (a, b) below word 64,
// in (b, c) from there.
template <int i>
inline constexpr WordIndex kC3From = wordIndex([](int k) { return (3 * k + i) & 63; });
template <int i>
inline constexpr WordIndex kC3FromHigh = wordIndex([](int k) { return (3 * k + i - 32) & 63; });
template <int i>
inline constexpr __mmask32 kC3High = wordMask([](int k) { return 3 * k + i >= 64; });
// Word q of output register j is word s = 32j + q of the block, which is
// place s % 3 of cell s / 3: from (w0, w1) by a two-table permute, from w2 by
// a masked one.
template <int j>
inline constexpr WordIndex kC3To = wordIndex([](int q) { return (32 * j + q) / 3 + ((32 * j + q) % 3 == 1 ? 32 : 0); });
template <int j>
inline constexpr __mmask32 kC3ToLast = wordMask([](int q) { return (32 * j + q) % 3 == 2; });

// Two-byte pixel pairs (Y0 U Y1 V): cell k is words 2k and 2k+1.
template <int i>
inline constexpr WordIndex kC2From = wordIndex([](int k) { return 2 * k + i; });
template <int j>
inline constexpr WordIndex kC2To = wordIndex([](int q) { return 16 * j + q / 2 + (q % 2 ? 32 : 0); });

// Four-byte pixels: cell k is words 4k..4k+3, cells 0..15 in (a, b), 16..31 in (c, d).
template <int i>
inline constexpr WordIndex kC4From = wordIndex([](int k) { return (4 * k + i) & 63; });

// Bytes of register j of a block of `bytes` bytes.
KRO_INLINE unsigned part(unsigned bytes, unsigned j) {
    return bytes <= 64 * j ? 0 : std::min(64u, bytes - 64 * j);
}

KRO_INLINE __m512i lowBytes(__m512i w) { return _mm512_and_si512(w, _mm512_set1_epi16(0xFF)); }
KRO_INLINE __m512i highBytes(__m512i w) { return _mm512_srli_epi16(w, 8); }
KRO_INLINE __m512i joinBytes(__m512i lo, __m512i hi) { return _mm512_or_si512(lo, _mm512_slli_epi16(hi, 8)); }

// A full-resolution plane row: cell k is bytes 2k, 2k+1.
KRO_INLINE void loadPairs(const Kro8u* p, std::ptrdiff_t c, unsigned n, __m512i (&out)[2]) {
    const __m512i x = loadPart512(p + 2 * c, 2 * n);
    out[0] = lowBytes(x);
    out[1] = highBytes(x);
}
KRO_INLINE void storePairs(Kro8u* p, std::ptrdiff_t c, unsigned n, const __m512i (&in)[2]) {
    storePart512(p + 2 * c, joinBytes(in[0], in[1]), 2 * n);
}
// A chroma plane row: cell k is byte k.
KRO_INLINE __m512i loadChroma(const Kro8u* p, std::ptrdiff_t c, unsigned n) { return _mm512_cvtepu8_epi16(loadPart256(p + c, n)); }
KRO_INLINE void storeChroma(Kro8u* p, std::ptrdiff_t c, unsigned n, __m512i w) { storePart256(p + c, _mm512_cvtepi16_epi8(w), n); }

// The low 16 word lanes as dwords, and dwords back to the low 16 word lanes.
KRO_INLINE __m512i widen(__m512i w) { return _mm512_cvtepu16_epi32(_mm512_castsi512_si256(w)); }
KRO_INLINE __m512i narrow(__m512i d) { return _mm512_castsi256_si512(_mm512_cvtepi32_epi16(d)); }

}  // namespace cells

// ---- RGB sources --------------------------------------------------------------------

struct SrcRgbC3 {
    const Kro8u* p;
    template <int i>
    static KRO_INLINE __m512i place(__m512i a, __m512i b, __m512i c) {
        using namespace cells;
        return _mm512_mask_blend_epi16(kC3High<i>, _mm512_permutex2var_epi16(a, vec(kC3From<i>), b),
                                       _mm512_permutex2var_epi16(b, vec(kC3FromHigh<i>), c));
    }
    KRO_INLINE RgbCells load(std::ptrdiff_t c, unsigned n) const {
        using namespace cells;
        const Kro8u* q = p + 6 * c;
        const __m512i a = loadPart512(q, part(6 * n, 0)), b = loadPart512(q + 64, part(6 * n, 1)),
                      d = loadPart512(q + 128, part(6 * n, 2));
        const __m512i w0 = place<0>(a, b, d), w1 = place<1>(a, b, d), w2 = place<2>(a, b, d);
        return {{lowBytes(w0), highBytes(w1)}, {highBytes(w0), lowBytes(w2)}, {lowBytes(w1), highBytes(w2)}};
    }
    KRO_INLINE Px pixel(std::ptrdiff_t x) const { return {p[3 * x], p[3 * x + 1], p[3 * x + 2]}; }
};

struct SrcRgbP3 {
    const Kro8u *r, *g, *b;
    KRO_INLINE RgbCells load(std::ptrdiff_t c, unsigned n) const {
        RgbCells o;
        cells::loadPairs(r, c, n, o.r);
        cells::loadPairs(g, c, n, o.g);
        cells::loadPairs(b, c, n, o.b);
        return o;
    }
    KRO_INLINE Px pixel(std::ptrdiff_t x) const { return {r[x], g[x], b[x]}; }
};

// ---- Y'UV destinations ------------------------------------------------------------------

// Y0 U Y1 V.
struct DstYuvC2 {
    Kro8u* p;
    KRO_INLINE void store(std::ptrdiff_t c, const YuvCells& o, unsigned n) const {
        using namespace cells;
        const __m512i lo = joinBytes(o.y[0], o.u), hi = joinBytes(o.y[1], o.v);
        Kro8u* q = p + 4 * c;
        storePart512(q, _mm512_permutex2var_epi16(lo, vec(kC2To<0>), hi), part(4 * n, 0));
        storePart512(q + 64, _mm512_permutex2var_epi16(lo, vec(kC2To<1>), hi), part(4 * n, 1));
    }
};

struct DstYuvP3 {
    Kro8u *y, *u, *v;
    KRO_INLINE void store(std::ptrdiff_t c, const YuvCells& o, unsigned n) const {
        cells::storePairs(y, c, n, o.y);
        cells::storeChroma(u, c, n, o.u);
        cells::storeChroma(v, c, n, o.v);
    }
};

// ---- Y'UV sources ----------------------------------------------------------------------

struct SrcYuvC2 {
    const Kro8u* p;
    KRO_INLINE YuvCells load(std::ptrdiff_t c, unsigned n) const {
        using namespace cells;
        const Kro8u* q = p + 4 * c;
        const __m512i a = loadPart512(q, part(4 * n, 0)), b = loadPart512(q + 64, part(4 * n, 1));
        const __m512i lo = _mm512_permutex2var_epi16(a, vec(kC2From<0>), b);
        const __m512i hi = _mm512_permutex2var_epi16(a, vec(kC2From<1>), b);
        return {{lowBytes(lo), lowBytes(hi)}, highBytes(lo), highBytes(hi)};
    }
};

struct SrcYuvP3 {
    const Kro8u *y, *u, *v;
    KRO_INLINE YuvCells load(std::ptrdiff_t c, unsigned n) const {
        YuvCells o;
        cells::loadPairs(y, c, n, o.y);
        o.u = cells::loadChroma(u, c, n);
        o.v = cells::loadChroma(v, c, n);
        return o;
    }
};

// ---- RGB destinations ---------------------------------------------------------------------

struct DstRgbC3 {
    Kro8u* p;
    template <int j>
    static KRO_INLINE __m512i out(__m512i w0, __m512i w1, __m512i w2) {
        using namespace cells;
        const __m512i idx = vec(kC3To<j>);
        return _mm512_mask_permutexvar_epi16(_mm512_permutex2var_epi16(w0, idx, w1), kC3ToLast<j>, idx, w2);
    }
    KRO_INLINE void store(std::ptrdiff_t c, const RgbCells& s, unsigned n) const {
        using namespace cells;
        const __m512i w0 = joinBytes(s.r[0], s.g[0]), w1 = joinBytes(s.b[0], s.r[1]), w2 = joinBytes(s.g[1], s.b[1]);
        Kro8u* q = p + 6 * c;
        storePart512(q, out<0>(w0, w1, w2), part(6 * n, 0));
        storePart512(q + 64, out<1>(w0, w1, w2), part(6 * n, 1));
        storePart512(q + 128, out<2>(w0, w1, w2), part(6 * n, 2));
    }
    KRO_INLINE void put(std::ptrdiff_t x, Px v) const { p[3 * x] = v.a; p[3 * x + 1] = v.b; p[3 * x + 2] = v.c; }
};

// Four samples a pixel, the fourth written as 0.
struct DstRgbA4 {
    Kro8u* p;
    KRO_INLINE void store(std::ptrdiff_t c, const RgbCells& s, unsigned n) const {
        using namespace cells;
        // Words (R | G << 8, B) of each pixel paired to dwords: lane l of e0
        // holds the first pixels of cells 8l..8l+3, of e1 those of 8l+4..8l+7.
        const __m512i rg0 = joinBytes(s.r[0], s.g[0]), rg1 = joinBytes(s.r[1], s.g[1]);
        const __m512i e0 = _mm512_unpacklo_epi16(rg0, s.b[0]), e1 = _mm512_unpackhi_epi16(rg0, s.b[0]);
        const __m512i o0 = _mm512_unpacklo_epi16(rg1, s.b[1]), o1 = _mm512_unpackhi_epi16(rg1, s.b[1]);
        // Lane l of x0..x3: pixels 16l..16l+3, +4..+7, +8..+11, +12..+15.
        const __m512i x0 = _mm512_unpacklo_epi32(e0, o0), x1 = _mm512_unpackhi_epi32(e0, o0);
        const __m512i x2 = _mm512_unpacklo_epi32(e1, o1), x3 = _mm512_unpackhi_epi32(e1, o1);
        // Transpose the 4x4 lanes.
        const __m512i t0 = _mm512_shuffle_i64x2(x0, x1, 0x44), t1 = _mm512_shuffle_i64x2(x2, x3, 0x44);
        const __m512i t2 = _mm512_shuffle_i64x2(x0, x1, 0xEE), t3 = _mm512_shuffle_i64x2(x2, x3, 0xEE);
        Kro8u* q = p + 8 * c;
        storePart512(q, _mm512_shuffle_i64x2(t0, t1, 0x88), part(8 * n, 0));
        storePart512(q + 64, _mm512_shuffle_i64x2(t0, t1, 0xDD), part(8 * n, 1));
        storePart512(q + 128, _mm512_shuffle_i64x2(t2, t3, 0x88), part(8 * n, 2));
        storePart512(q + 192, _mm512_shuffle_i64x2(t2, t3, 0xDD), part(8 * n, 3));
    }
    KRO_INLINE void put(std::ptrdiff_t x, Px v) const { p[4 * x] = v.a; p[4 * x + 1] = v.b; p[4 * x + 2] = v.c; p[4 * x + 3] = 0; }
};

struct DstRgbP3 {
    Kro8u *r, *g, *b;
    KRO_INLINE void store(std::ptrdiff_t c, const RgbCells& s, unsigned n) const {
        cells::storePairs(r, c, n, s.r);
        cells::storePairs(g, c, n, s.g);
        cells::storePairs(b, c, n, s.b);
    }
    KRO_INLINE void put(std::ptrdiff_t x, Px v) const { r[x] = v.a; g[x] = v.b; b[x] = v.c; }
};

// ---- widening for the 32-bit forms ---------------------------------------------------------

KRO_INLINE void widenAll(__m512i (&x)[2]) { x[0] = cells::widen(x[0]); x[1] = cells::widen(x[1]); }
KRO_INLINE void narrowAll(__m512i (&x)[2]) { x[0] = cells::narrow(x[0]); x[1] = cells::narrow(x[1]); }

KRO_INLINE RgbCells widened(RgbCells s) { widenAll(s.r); widenAll(s.g); widenAll(s.b); return s; }
KRO_INLINE RgbCells narrowed(RgbCells s) { narrowAll(s.r); narrowAll(s.g); narrowAll(s.b); return s; }
KRO_INLINE YuvCells widened(YuvCells s) { widenAll(s.y); s.u = cells::widen(s.u); s.v = cells::widen(s.v); return s; }
KRO_INLINE YuvCells narrowed(YuvCells s) { narrowAll(s.y); s.u = cells::narrow(s.u); s.v = cells::narrow(s.v); return s; }

// An inverse form of one pixel applied to both pixels of each cell.
template <auto pixelForm>
KRO_INLINE RgbCells pixelsOfCells(const YuvCells& c) {
    const Rgb a = pixelForm(c.y[0], c.u, c.v), b = pixelForm(c.y[1], c.u, c.v);
    return {{a.r, b.r}, {a.g, b.g}, {a.b, b.b}};
}

// ---- stage loops -------------------------------------------------------------------------

// The whole blocks of B cells run with n the constant B, so that their
// accesses are the plain ones; then the short last block.

// A 16-bit form over cells [c0, c1), 32 at a time.
template <auto form, class S, class D>
KRO_INLINE void wordCells(const S& s, const D& d, int c0, int c1) {
    int c = c0;
    for (; c + 32 <= c1; c += 32) d.store(c, form(s.load(c, 32u)), 32u);
    if (c < c1) {
        const unsigned n = static_cast<unsigned>(c1 - c);
        d.store(c, form(s.load(c, n)), n);
    }
}

// A 32-bit form over cells [c0, c1), 16 at a time.
template <auto form, class S, class D>
KRO_INLINE void dwordCells(const S& s, const D& d, int c0, int c1) {
    int c = c0;
    for (; c + 16 <= c1; c += 16) d.store(c, narrowed(form(widened(s.load(c, 16u)))), 16u);
    if (c < c1) {
        const unsigned n = static_cast<unsigned>(c1 - c);
        d.store(c, narrowed(form(widened(s.load(c, n)))), n);
    }
}

}  // namespace k0::yuv
