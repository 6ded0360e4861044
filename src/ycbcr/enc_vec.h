// Vector stages of the encoder forms of enc_forms.h, each computing its scalar
// form of the same name lane by lane, and the cell pieces the kernels share.
//
// Word registers hold 32 pixels in the paired-lane order of ycbcr444_io.h
// (128-bit lane k: pixels 4k..4k+3, then 16+4k..16+4k+3), so the two pixels
// of a pair are the two words of one dword and the four pixels of a 4:1:1
// cell are the four words of one qword. Cell sums are kept in the low word
// of a dword (or qword) whose high word is zero; a 16-bit form run on such a
// register is right in its low words, and the high words are ignored.
#pragma once
#include "simd.h"
#include "ycbcr/enc_forms.h"
#include "ycbcr/ycbcr_vec.h"

namespace k0::ycbcr {

struct V2 { __m512i a, b; };  // (Cb, Cr)

// ---- cells --------------------------------------------------------------------------

// Sums of the two words of each dword (pixel pairs), as dwords.
KRO_INLINE __m512i pairSums(__m512i w) { return _mm512_madd_epi16(w, w16::k(1)); }
// Sums of the four words of each qword (4:1:1 cells), in the low dword.
KRO_INLINE __m512i quadSums(__m512i w) {
    const __m512i p = pairSums(w);
    return _mm512_add_epi32(p, _mm512_srli_epi64(p, 32));
}
KRO_INLINE V3 pairSums(const V3& v) { return {pairSums(v.a), pairSums(v.b), pairSums(v.c)}; }
KRO_INLINE V3 quadSums(const V3& v) { return {quadSums(v.a), quadSums(v.b), quadSums(v.c)}; }
KRO_INLINE V3 addWords(const V3& x, const V3& y) {
    return {w16::add(x.a, y.a), w16::add(x.b, y.b), w16::add(x.c, y.c)};
}

// The pairs of a paired-lane dword register in their order along the row, and
// the 4:1:1 cells of a qword register.
KRO_INLINE __m512i naturalPairs(__m512i d) {
    return _mm512_permutexvar_epi32(_mm512_setr_epi32(0, 1, 4, 5, 8, 9, 12, 13, 2, 3, 6, 7, 10, 11, 14, 15), d);
}
KRO_INLINE __m512i naturalQuads(__m512i q) {
    return _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), q);
}
KRO_INLINE __m512i lowBytes(__m512i d) { return _mm512_and_si512(d, _mm512_set1_epi32(0xFF)); }

// Short chroma of cells whose sums are scaled by 2^k up to 32640.
template <int k>
KRO_INLINE V2 cellShortChroma(const V3& s) {
    const __m512i r = _mm512_slli_epi32(s.a, k), g = _mm512_slli_epi32(s.b, k), b = _mm512_slli_epi32(s.c, k);
    return {vecShortChroma(kCb, r, g, b), vecShortChroma(kCr, r, g, b)};
}

// ---- Rounded --------------------------------------------------------------------------

namespace rnd {
// R(x, c) lane by lane: the rounding high product.
KRO_INLINE __m512i mr(__m512i x, __m512i c) { return _mm512_mulhrs_epi16(x, c); }
// Words whose even lanes hold `even` and odd lanes `odd`.
KRO_INLINE __m512i alt(int even, int odd) {
    return _mm512_set1_epi32(static_cast<int>((static_cast<unsigned>(odd) << 16) | (static_cast<unsigned>(even) & 0xFFFF)));
}
KRO_INLINE __m512i diff(__m512i p, __m512i g, __m512i q, __m512i cMain, __m512i cG, __m512i cSide) {
    return w16::sub(mr(p, cMain), w16::add(mr(g, cG), mr(q, cSide)));
}
KRO_INLINE __m512i diff(__m512i p, __m512i g, __m512i q, const DiffRow& k) {
    return diff(p, g, q, w16::k(k.main), w16::k(k.g), w16::k(k.side));
}
}  // namespace rnd

KRO_INLINE __m512i vecRoundedLumaSum(__m512i R, __m512i G, __m512i B) {
    using namespace w16;
    return add(add(rnd::mr(_mm512_slli_epi16(R, 7), k(kRoundY.r)), rnd::mr(_mm512_slli_epi16(G, 7), k(kRoundY.g))),
               rnd::mr(_mm512_slli_epi16(B, 7), k(kRoundY.b)));
}
KRO_INLINE __m512i vecRoundedLuma(__m512i R, __m512i G, __m512i B) {
    return _mm512_srai_epi16(w16::add(vecRoundedLumaSum(R, G, B), w16::k(1026)), 6);
}
KRO_INLINE __m512i vecFilteredLuma(__m512i R, __m512i G, __m512i B) {
    return _mm512_srai_epi16(w16::add(vecRoundedLumaSum(R, G, B), w16::k(1056)), 6);
}
// Cell sums (at most 1020) to Cb and Cr.
KRO_INLINE V2 vecRoundedChroma(const V3& s) {
    const __m512i r = _mm512_slli_epi16(s.a, 5), g = _mm512_slli_epi16(s.b, 5), b = _mm512_slli_epi16(s.c, 5);
    const __m512i add = w16::k(8194);
    return {_mm512_srai_epi16(w16::add(rnd::diff(b, g, r, kRoundCb), add), 6),
            _mm512_srai_epi16(w16::add(rnd::diff(r, g, b, kRoundCr), add), 6)};
}

// The filter terms of every pixel: E in the even words (the even pixel of a
// pair), O in the odd words. Returns (Cb terms, Cr terms).
struct FilterRows {
    __m512i cbMain, cbG, cbSide, crMain, crG, crSide;
    static KRO_INLINE FilterRows make() {
        using rnd::alt;
        return {alt(kRoundCb.main, kOddCb.main), alt(kRoundCb.g, kOddCb.g), alt(kRoundCb.side, kOddCb.side),
                alt(kRoundCr.main, kOddCr.main), alt(kRoundCr.g, kOddCr.g), alt(kRoundCr.side, kOddCr.side)};
    }
};
KRO_INLINE V2 vecFilterTerms(const FilterRows& k, __m512i R, __m512i G, __m512i B) {
    const __m512i r = _mm512_slli_epi16(R, 7), g = _mm512_slli_epi16(G, 7), b = _mm512_slli_epi16(B, 7);
    return {rnd::diff(b, g, r, k.cbMain, k.cbG, k.cbSide), rnd::diff(r, g, b, k.crMain, k.crG, k.crSide)};
}
// Per pair (paired-lane dwords): E(2i) + O(2i+1), and O(2i+1) alone.
KRO_INLINE __m512i evenPlusOdd(__m512i t) { return pairSums(t); }
KRO_INLINE __m512i oddTerm(__m512i t) { return _mm512_srai_epi32(t, 16); }
// Chroma of 16 pairs in row order from E + O, the previous pair's O, as dwords.
KRO_INLINE __m512i vecFilteredChroma(__m512i eo, __m512i oPrev) {
    return d32::clamp(_mm512_srai_epi32(d32::add(d32::add(eo, oPrev), d32::k(0x4040)), 7));
}

// ---- Dot ---------------------------------------------------------------------------------

// Luma of 32 pixels (words) as words: each pixel's sum in 32 bits from two
// multiply-adds of word pairs, (R, G) and (B, 16), the 16 giving the 262144.
KRO_INLINE __m512i vecDotLuma(__m512i R, __m512i G, __m512i B) {
    const __m512i rg = rnd::alt(kRoundY.r, kRoundY.g), b1 = rnd::alt(kRoundY.b, 16384), sixteen = w16::k(16);
    auto half = [&](__m512i rgPairs, __m512i bPairs) {
        return _mm512_srai_epi32(d32::add(_mm512_madd_epi16(rgPairs, rg), _mm512_madd_epi16(bPairs, b1)), 14);
    };
    return _mm512_packs_epi32(half(_mm512_unpacklo_epi16(R, G), _mm512_unpacklo_epi16(B, sixteen)),
                              half(_mm512_unpackhi_epi16(R, G), _mm512_unpackhi_epi16(B, sixteen)));
}
// Chroma of cells from sums held in dwords (at most 1020): (SR, SG) and
// (SB, 512) by multiply-add, the 512 giving the 8388608.
KRO_INLINE __m512i vecDotChroma(const Row3& k, __m512i SR, __m512i SG, __m512i SB) {
    const __m512i rg = _mm512_or_si512(SR, _mm512_slli_epi32(SG, 16)), b1 = _mm512_or_si512(SB, d32::k(512 << 16));
    return _mm512_srai_epi32(
        d32::add(_mm512_madd_epi16(rg, rnd::alt(k.r, k.g)), _mm512_madd_epi16(b1, rnd::alt(k.b, 16384))), 16);
}

// ---- gamma ---------------------------------------------------------------------------------

// tableFwd8u as words, held in eight registers for a word-permute lookup.
alignas(64) inline constexpr std::array<uint16_t, 256> tableFwd8uWords = [] {
    std::array<uint16_t, 256> t{};
    for (int i = 0; i < 256; ++i) t[i] = static_cast<uint16_t>(tableFwd8u[i]);
    return t;
}();
struct GammaTable {
    __m512i t[8];  // entries 32k..32k+31
    static KRO_INLINE GammaTable make() {
        GammaTable g;
        for (int k = 0; k < 8; ++k) g.t[k] = _mm512_load_si512(tableFwd8uWords.data() + 32 * k);
        return g;
    }
};
// Words of 0..255 through tableFwd8u. Dwords of 0..255 work as well: their
// high words are 0 and look up entry 0, which is 0.
KRO_INLINE __m512i vecGammaFwd(const GammaTable& g, __m512i v) {
    const __m512i q0 = _mm512_permutex2var_epi16(g.t[0], v, g.t[1]), q1 = _mm512_permutex2var_epi16(g.t[2], v, g.t[3]);
    const __m512i q2 = _mm512_permutex2var_epi16(g.t[4], v, g.t[5]), q3 = _mm512_permutex2var_epi16(g.t[6], v, g.t[7]);
    const __mmask32 b6 = _mm512_test_epi16_mask(v, w16::k(64)), b7 = _mm512_test_epi16_mask(v, w16::k(128));
    return _mm512_mask_mov_epi16(_mm512_mask_mov_epi16(q0, b6, q1), b7, _mm512_mask_mov_epi16(q2, b6, q3));
}

namespace gam {
// v * c for dwords v in 0..32767 and c a signed 16-bit factor per dword.
KRO_INLINE __m512i mul(__m512i v, __m512i c) { return _mm512_madd_epi16(v, c); }
KRO_INLINE __m512i k(int even, int odd) {
    return _mm512_setr_epi32(even & 0xFFFF, odd & 0xFFFF, even & 0xFFFF, odd & 0xFFFF, even & 0xFFFF, odd & 0xFFFF,
                             even & 0xFFFF, odd & 0xFFFF, even & 0xFFFF, odd & 0xFFFF, even & 0xFFFF, odd & 0xFFFF,
                             even & 0xFFFF, odd & 0xFFFF, even & 0xFFFF, odd & 0xFFFF);
}
}  // namespace gam

struct GammaRows {
    __m512i y[3], cb[3], cr[3];  // factors of R, G, B; chroma with E in even dwords, O in odd
    static KRO_INLINE GammaRows make() {
        using gam::k;
        return {{k(kY15.r, kY15.r), k(kY15.g, kY15.g), k(kY15.b, kY15.b)},
                {k(kGammaECb.r, kGammaOCb.r), k(kGammaECb.g, kGammaOCb.g), k(kGammaECb.b, kGammaOCb.b)},
                {k(kGammaECr.r, kGammaOCr.r), k(kGammaECr.g, kGammaOCr.g), k(kGammaECr.b, kGammaOCr.b)}};
    }
};
KRO_INLINE __m512i gammaDot(const __m512i (&c)[3], __m512i R, __m512i G, __m512i B) {
    return d32::add(d32::add(gam::mul(R, c[0]), gam::mul(G, c[1])), gam::mul(B, c[2]));
}
// Luma of 16 corrected pixels in row order.
KRO_INLINE __m512i vecGammaLuma(const GammaRows& k, __m512i R, __m512i G, __m512i B) {
    return d32::clamp(_mm512_srai_epi32(d32::add(gammaDot(k.y, R, G, B), d32::k(0x84000)), 15));
}
// Chroma from the terms t of 16 pixels in row order (E even, O odd) and the
// terms of the block before (zero at the row start): the result of pair i
// stands in dword 2i.
KRO_INLINE __m512i vecGammaChroma(__m512i t, __m512i tBefore) {
    const __m512i eo = d32::add(t, _mm512_srli_epi64(t, 32));
    const __m512i prev = _mm512_alignr_epi32(t, tBefore, 15);
    return d32::clamp(_mm512_srai_epi32(d32::add(d32::add(eo, prev), d32::k(0x403FFF)), 15));
}

}  // namespace k0::ycbcr
