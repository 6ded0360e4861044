// Vector pieces of the subsampled YCbCr-to-RGB members: the stages of the
// forms of dec_forms.h, the piece sets by which a kernel joins one cell's
// chroma terms to each pixel's luma term, and the sources that bring luma
// and replicated chroma into words.
//
// Words come 32 pixels to a register in the paired-lane order of the 4:4:4
// stores (ycbcr444_io.h): 128-bit lane k holds pixels 4k..4k+3, then
// 16+4k..16+4k+3. Every source below produces that order, so the stores of
// DstC3, DstC4Alpha and DstP3 take the results as they are.
#pragma once
#include "ycbcr/dec_forms.h"
#include "ycbcr/ycbcr444_io.h"
#include "ycbcr/ycbcr_vec.h"

namespace k0::ycbcr {

// ---- stages of the forms of dec_forms.h ------------------------------------------------

// Short-8U, in the three pieces of the shared inverse forms.
KRO_INLINE __m512i short8ULuma(__m512i Y) { return w16::mh(_mm512_slli_epi16(Y, 7), 4769); }
KRO_INLINE V3 short8UChroma(__m512i Cb, __m512i Cr) {
    using namespace w16;
    const __m512i cb = _mm512_slli_epi16(Cb, 7), cr = _mm512_slli_epi16(Cr, 7);
    return {mh(cr, 6537), add(mh(cb, 1605), mh(cr, 3330)), mh(cb, 8263)};
}
KRO_INLINE V3 short8UJoin(__m512i yq, const V3& t) {
    using namespace w16;
    return {_mm512_srai_epi16(add(add(yq, t.a), k(kShort8UAddR)), 3),
            _mm512_srai_epi16(add(sub(yq, t.b), k(kShort8UAddG)), 3),
            _mm512_srai_epi16(add(add(yq, t.c), k(kShort8UAddB)), 3)};
}

// Short-8 without the addend: Short-8's luma and chroma terms, joined and
// shifted with nothing added.
KRO_INLINE V3 short8TruncJoin(__m512i yq, const V3& t) {
    using namespace w16;
    return {_mm512_srai_epi16(add(yq, t.a), 3), _mm512_srai_epi16(sub(yq, t.b), 3),
            _mm512_srai_epi16(add(yq, t.c), 3)};
}

// ---- piece sets: luma term, chroma terms, join ------------------------------------------

#define K0_PIECES(Name, L, C, J)                                                              \
    struct Name {                                                                             \
        static KRO_INLINE __m512i luma(__m512i y) { return L(y); }                            \
        static KRO_INLINE V3 chroma(__m512i cb, __m512i cr) { return C(cb, cr); }             \
        static KRO_INLINE V3 join(__m512i yq, const V3& t) { return J(yq, t); }               \
        static KRO_INLINE V3 full(__m512i y, __m512i cb, __m512i cr) { return J(L(y), C(cb, cr)); } \
    };
K0_PIECES(Short8, short8Luma, short8Chroma, short8Join)
K0_PIECES(Short16T, short16TLuma, short16TChroma, short16TJoin)
K0_PIECES(Short16R, short16RLuma, short16RChroma, short16RJoin)
K0_PIECES(Short8U, short8ULuma, short8UChroma, short8UJoin)
K0_PIECES(Short8Trunc, short8Luma, short8Chroma, short8TruncJoin)
#undef K0_PIECES

// ---- byte shuffles into paired-lane words -------------------------------------------------

namespace dec {

struct alignas(64) Control { signed char b[64]; };

// Byte of lane k that feeds word i of that lane (or -1), zero high bytes.
template <class F>
constexpr Control wordControl(F byteOf) {
    Control t{};
    for (int k = 0; k < 4; ++k)
        for (int i = 0; i < 8; ++i) {
            t.b[16 * k + 2 * i] = static_cast<signed char>(byteOf(k, i));
            t.b[16 * k + 2 * i + 1] = -1;
        }
    return t;
}
// Pixel of word i in lane k.
constexpr int pixelOf(int k, int i) { return i < 4 ? 4 * k + i : 16 + 4 * k + (i - 4); }

// Chroma bytes broadcast to every lane, one byte per 2^Shift pixels.
template <int Shift>
inline constexpr Control kReplicate = wordControl([](int k, int i) { return pixelOf(k, i) >> Shift; });

// Lane k holding pixels 4k..4k+3 in its low 8 bytes and 16+4k..16+4k+3 in its
// high 8, two bytes a pixel (after qwordsPaired): the byte at `off` of each
// pixel, or of each pair for chroma.
template <int Off>
inline constexpr Control kPackedLuma = wordControl([](int, int i) { return (i < 4 ? 0 : 8) + 2 * (i & 3) + Off; });
template <int Off>
inline constexpr Control kPackedChroma = wordControl([](int, int i) { return (i < 4 ? 0 : 8) + 4 * ((i & 3) >> 1) + Off; });

KRO_INLINE __m512i control(const Control& c) { return _mm512_load_si512(c.b); }

// 64 bytes of two-byte pixels: qwords k and 4+k into lane k.
KRO_INLINE __m512i qwordsPaired(__m512i v) {
    return _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 4, 1, 5, 2, 6, 3, 7), v);
}

// Chroma bytes of 16 pairs (or 8 groups of four) replicated to their pixels.
template <int Shift>
KRO_INLINE __m512i replicated(__m128i bytes) {
    return _mm512_shuffle_epi8(_mm512_broadcast_i32x4(bytes), control(kReplicate<Shift>));
}

}  // namespace dec

struct V2 { __m512i cb, cr; };

// ---- sources ------------------------------------------------------------------------------
// words(x, n): (Y, Cb, Cr) of pixels x..x+n-1 (x even, n <= 32) with chroma
// replicated; y(x), cb(i), cr(i): one luma sample and the chroma of cell i.

struct LumaPlane {
    const Kro8u* p;
    KRO_INLINE __m512i words(int x, unsigned n) const { return io::planeWords(p + x, n); }
    KRO_INLINE int y(int x) const { return p[x]; }
};

// Two chroma planes, one sample per 2^Shift pixels.
template <int Shift>
struct ChromaPlanes {
    const Kro8u *pb, *pr;
    KRO_INLINE V2 words(int x, unsigned n) const {
        const unsigned m = (n + (1u << Shift) - 1) >> Shift;
        return {dec::replicated<Shift>(loadPart128(pb + (x >> Shift), m)),
                dec::replicated<Shift>(loadPart128(pr + (x >> Shift), m))};
    }
    KRO_INLINE int cb(int i) const { return pb[i]; }
    KRO_INLINE int cr(int i) const { return pr[i]; }
};

// One plane of chroma pairs, Cb at byte OffCb of a pair and Cr at the other.
template <int OffCb>
struct ChromaPairs {
    const Kro8u* p;
    KRO_INLINE V2 words(int x, unsigned n) const {
        // Dwords k and 4+k (pairs 2k, 2k+1 and 8+2k, 9+2k) into lane k.
        const __m512i idx = _mm512_setr_epi32(0, 4, 0, 0, 1, 5, 0, 0, 2, 6, 0, 0, 3, 7, 0, 0);
        const __m512i v = _mm512_permutexvar_epi32(idx, _mm512_zextsi256_si512(loadPart256(p + x, (n + 1) & ~1u)));
        static constexpr dec::Control cb = dec::wordControl([](int, int i) { return 2 * (i >> 1) + OffCb; });
        static constexpr dec::Control cr = dec::wordControl([](int, int i) { return 2 * (i >> 1) + 1 - OffCb; });
        return {_mm512_shuffle_epi8(v, dec::control(cb)), _mm512_shuffle_epi8(v, dec::control(cr))};
    }
    KRO_INLINE int cb(int i) const { return p[2 * i + OffCb]; }
    KRO_INLINE int cr(int i) const { return p[2 * i + 1 - OffCb]; }
};

// A luma plane beside chroma of some layout, as one source.
template <class C>
struct Planar {
    LumaPlane l;
    C c;
    KRO_INLINE V3 words(int x, unsigned n) const {
        const V2 ch = c.words(x, n);
        return {l.words(x, n), ch.cb, ch.cr};
    }
    KRO_INLINE int y(int x) const { return l.y(x); }
    KRO_INLINE int cb(int i) const { return c.cb(i); }
    KRO_INLINE int cr(int i) const { return c.cr(i); }
};

// A packed 4:2:2 row: Y at byte OffY of each pixel, Cb and Cr at OffCb and
// OffCr of each four-byte pair.
template <int OffY, int OffCb, int OffCr>
struct Packed422 {
    static constexpr int kOffY = OffY;
    const Kro8u* p;
    KRO_INLINE V3 words(int x, unsigned n) const {
        const __m512i v = dec::qwordsPaired(loadPart512(p + 2 * x, 2 * n));
        return {_mm512_shuffle_epi8(v, dec::control(dec::kPackedLuma<OffY>)),
                _mm512_shuffle_epi8(v, dec::control(dec::kPackedChroma<OffCb>)),
                _mm512_shuffle_epi8(v, dec::control(dec::kPackedChroma<OffCr>))};
    }
    KRO_INLINE int y(int x) const { return p[2 * x + OffY]; }
    KRO_INLINE int cb(int i) const { return p[4 * i + OffCb]; }
    KRO_INLINE int cr(int i) const { return p[4 * i + OffCr]; }
};
using SrcYCbCr422 = Packed422<0, 1, 3>;
using SrcYCrCb422 = Packed422<0, 3, 1>;
using SrcCbYCr422 = Packed422<1, 0, 2>;

// Chroma planes of the filtered member: the even pixel of pair i takes c(i),
// the odd pixel the byte average of c(i) and c(i + 1). Reads one chroma
// sample beyond the pairs of the block.
struct ChromaInterpolated {
    const Kro8u *pb, *pr;
    static KRO_INLINE __m512i plane(const Kro8u* c, int x, unsigned n) {
        const unsigned m = n >> 1;
        const __m128i here = loadPart128(c + (x >> 1), m), mean = _mm_avg_epu8(here, loadPart128(c + (x >> 1) + 1, m));
        return _mm512_mask_blend_epi16(0xAAAAAAAAu, dec::replicated<1>(here), dec::replicated<1>(mean));
    }
    KRO_INLINE V2 words(int x, unsigned n) const { return {plane(pb, x, n), plane(pr, x, n)}; }
    KRO_INLINE int cb(int i) const { return pb[i]; }
    KRO_INLINE int cr(int i) const { return pr[i]; }
};

}  // namespace k0::ycbcr
