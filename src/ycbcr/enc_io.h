// What the encoder kernels share: sources read as R, G, B whatever their byte
// order, scalar cell sums, the packed 4:2:2 byte orders, and validation.
#pragma once
#include <algorithm>

#include "entry.h"
#include "ycbcr/enc_vec.h"
#include "ycbcr/ycbcr444_io.h"

namespace k0::ycbcr {

// A source whose samples come back as (R, G, B): Bgr sources are swapped.
template <class S, bool Bgr>
struct Rgb {
    S s;
    KRO_INLINE V3 words(int x, unsigned n) const { return order(s.words(x, n)); }
    KRO_INLINE V3 dwords(int x, unsigned n) const { return order(s.dwords(x, n)); }
    KRO_INLINE Px get(int x) const {
        const Px p = s.get(x);
        return Bgr ? Px{p.c, p.b, p.a} : p;
    }
    static KRO_INLINE V3 order(const V3& v) { return Bgr ? V3{v.c, v.b, v.a} : v; }
};
template <bool Bgr> using RgbC3 = Rgb<SrcC3, Bgr>;
template <bool Bgr> using RgbC4 = Rgb<SrcC4, Bgr>;

// Rows y of a source whose rows are `step` bytes apart.
template <class S> struct RowsOf;
template <class S, bool Bgr>
struct RowsOf<Rgb<S, Bgr>> {
    const Kro8u* p;
    int step;
    KRO_INLINE Rgb<S, Bgr> at(int y) const { return {S{rowAt(p, step, y)}}; }
};

// Runs `block(x, n)` over pixels [0, end) in blocks of B, the last one short.
template <int B, class Block>
KRO_INLINE void inBlocks(int end, Block block) {
    blocksOf<B>(0, end, block);
}

// Plain sums of a cell's samples.
struct Sums {
    int r = 0, g = 0, b = 0;
    KRO_INLINE Sums& operator+=(Px p) { r += p.a, g += p.b, b += p.c; return *this; }
};

KRO_INLINE Kro8u longY(Px p) { return u8(formLongLuma(p.a, p.b, p.c)); }
KRO_INLINE Kro8u longC(const Row3& k, Px p) { return u8(formLongChroma(k, p.a, p.b, p.c)); }

// Luma of 32 pixels (paired-lane words) as 32 bytes in row order.
KRO_INLINE __m256i lumaBytes(__m512i y) { return _mm512_castsi512_si256(io::planeBytes(y, y)); }
// Chroma of 16 pairs (paired-lane dwords, value in the low byte) as 16 bytes.
KRO_INLINE __m128i pairBytes(__m512i c) { return dwordsToBytes(naturalPairs(c)); }
// Cb and Cr of 16 cells (dwords in row order, values in the low byte) as 32
// bytes Cb Cr Cb Cr ...
KRO_INLINE __m256i chromaPairs(__m512i cb, __m512i cr) {
    return _mm512_cvtepi32_epi16(_mm512_or_si512(lowBytes(cb), _mm512_slli_epi32(lowBytes(cr), 8)));
}

// ---- packed 4:2:2 -------------------------------------------------------------------

enum class C2 { YCbCr, YCrCb, CbYCr };

// Pairs of paired-lane registers (luma words Y0, Y1 in a dword; chroma in the
// low byte of a dword) as four bytes each, in row order.
template <C2 L>
KRO_INLINE __m512i packPairs(__m512i y, __m512i cb, __m512i cr) {
    if constexpr (L == C2::CbYCr)
        return naturalPairs(_mm512_ternarylogic_epi32(lowBytes(cb), _mm512_slli_epi32(y, 8),
                                                       _mm512_slli_epi32(cr, 16), 0xFE));
    const __m512i first = L == C2::YCbCr ? cb : cr, second = L == C2::YCbCr ? cr : cb;
    return naturalPairs(_mm512_ternarylogic_epi32(y, _mm512_slli_epi32(lowBytes(first), 8),
                                                  _mm512_slli_epi32(second, 24), 0xFE));
}

template <C2 L>
KRO_INLINE void putPair(Kro8u* d, int y0, int y1, int cb, int cr) {
    if constexpr (L == C2::CbYCr) { d[0] = u8(cb), d[1] = u8(y0), d[2] = u8(cr), d[3] = u8(y1); }
    else { d[0] = u8(y0), d[1] = u8(L == C2::YCbCr ? cb : cr), d[2] = u8(y1), d[3] = u8(L == C2::YCbCr ? cr : cb); }
}

// ---- validation -----------------------------------------------------------------------

// Null pointers of the call, then of the planes (asked only once the arrays
// passed), then the size against the member's minimum; `planesAfterSize`
// moves the plane test behind the size.
template <class NullPlanes>
KRO_INLINE KroStatus checkEnc(bool nullPointers, NullPlanes nullPlanes, KroiSize roi, int minW, int minH,
                              bool planesAfterSize = false) {
    if (nullPointers) return kroErrNullPtr;
    if (!planesAfterSize && nullPlanes()) return kroErrNullPtr;
    if (roi.width < minW || roi.height < minH) return kroErrSize;
    return planesAfterSize && nullPlanes() ? kroErrNullPtr : kroOk;
}
inline constexpr auto kNoPlanes = [] { return false; };

}  // namespace k0::ycbcr
