// The interior kernels of CFA interpolation: one row at a time, 64 pixels of
// 8-bit data or 32 of 16-bit data per 512-bit block, a masked block over the
// rest down to a whole 16 (8-bit) or 8 (16-bit) pixels, and the scalar rules
// over what remains, even and odd columns apart.
//
// A block holds one row's samples at the same columns in every register, as
// loaded at the offsets of the neighbours. Means of two are the rounded
// averages of the element type; means of four are exact sums in lanes of
// twice the width, made of the element pairs (2k, 2k+1): the low element of
// each pair when the red or blue sites stand at even columns, the high one
// when they stand at odd columns.
#pragma once
#include <array>
#include <type_traits>

#include "demosaic/cfa_rules.h"
#include "simd.h"

namespace k0::cfa {

// The element operations of 8-bit (64 a register) and 16-bit (32) samples,
// and those of the pair lanes of twice the width.
template <class T>
struct Lanes {
    static constexpr bool k8 = sizeof(T) == 1;
    using Mask = std::conditional_t<k8, __mmask64, __mmask32>;
    static constexpr int kBlock = 64 / sizeof(T);  // pixels of a full block
    static constexpr int kWhole = 16 / sizeof(T);  // the masked block rounds down to this
    static constexpr Mask kEven = static_cast<Mask>(0x5555555555555555ULL);

    static KRO_INLINE __m512i load(const T* p) { return _mm512_loadu_si512(p); }
    static KRO_INLINE __m512i loadN(const T* p, unsigned n) { return loadN512(p, n * sizeof(T)); }
    static KRO_INLINE __m512i avg(__m512i a, __m512i b) { return k8 ? _mm512_avg_epu8(a, b) : _mm512_avg_epu16(a, b); }
    static KRO_INLINE __m512i absDiff(__m512i a, __m512i b) {
        return k8 ? _mm512_sub_epi8(_mm512_max_epu8(a, b), _mm512_min_epu8(a, b))
                  : _mm512_sub_epi16(_mm512_max_epu16(a, b), _mm512_min_epu16(a, b));
    }
    static KRO_INLINE Mask less(Mask k, __m512i a, __m512i b) {
        if constexpr (k8) return _mm512_mask_cmplt_epu8_mask(k, a, b);
        else return _mm512_mask_cmplt_epu16_mask(k, a, b);
    }
    static KRO_INLINE Mask equal(Mask k, __m512i a, __m512i b) {
        if constexpr (k8) return _mm512_mask_cmpeq_epu8_mask(k, a, b);
        else return _mm512_mask_cmpeq_epu16_mask(k, a, b);
    }
    static KRO_INLINE __m512i blend(Mask k, __m512i a, __m512i b) {
        if constexpr (k8) return _mm512_mask_blend_epi8(k, a, b);
        else return _mm512_mask_blend_epi16(k, a, b);
    }

    // Pair lanes: elements 2k and 2k + 1 as one lane of twice the width.
    static constexpr int kHalf = 8 * sizeof(T);
    static KRO_INLINE __m512i lowOfPair(__m512i v) { return _mm512_and_si512(v, _mm512_set1_epi32(k8 ? 0x00FF00FF : 0xFFFF)); }
    static KRO_INLINE __m512i highOfPair(__m512i v) { return k8 ? _mm512_srli_epi16(v, kHalf) : _mm512_srli_epi32(v, kHalf); }
    static KRO_INLINE __m512i toHighOfPair(__m512i v) { return k8 ? _mm512_slli_epi16(v, kHalf) : _mm512_slli_epi32(v, kHalf); }
    static KRO_INLINE __m512i pairAdd(__m512i a, __m512i b) { return k8 ? _mm512_add_epi16(a, b) : _mm512_add_epi32(a, b); }
    // (s + 2) >> 2 of pair-lane sums.
    static KRO_INLINE __m512i pairQuarterRounded(__m512i s) {
        return k8 ? _mm512_srli_epi16(_mm512_add_epi16(s, _mm512_set1_epi16(2)), 2)
                  : _mm512_srli_epi32(_mm512_add_epi32(s, _mm512_set1_epi32(2)), 2);
    }
};

// ---- three planes to interleaved R, G, B ------------------------------------

// Byte shuffles, entry 3j + c, that put channel c of each 16-byte lane of
// planes into chunk j (j = 0..2) of the lane's 48 interleaved bytes, for
// elements of `e` bytes.
using Control = std::array<char, 64>;
constexpr std::array<Control, 9> interleaveControls(int e) {
    std::array<Control, 9> ctl{};
    for (int j = 0; j < 3; ++j)
        for (int c = 0; c < 3; ++c)
            for (int b = 0; b < 64; ++b) {
                const int t = (16 * j + b % 16) / e, within = (16 * j + b % 16) % e;
                ctl[3 * j + c][b] = static_cast<char>(t % 3 == c ? (t / 3) * e + within : 0x80);
            }
    return ctl;
}

// Interleaves three planes of one block into three registers of R, G, B.
// Each lane first yields its three chunks; the chunks are then placed in
// memory order by 64-bit lane permutes.
template <class T>
struct Interleaver {
    __m512i ctl[3][3];
    __m512i pick01, pick2, pick12, pick0, pick01b, pick2b;

    KRO_INLINE Interleaver() {
        static constexpr auto kCtl = interleaveControls(static_cast<int>(sizeof(T)));
        for (int j = 0; j < 3; ++j)
            for (int c = 0; c < 3; ++c) ctl[j][c] = _mm512_loadu_si512(kCtl[3 * j + c].data());
        // Chunk g (0..11) of the block's output is chunk g % 3 of lane g / 3.
        pick01 = _mm512_setr_epi64(0, 1, 8, 9, 0, 0, 2, 3);     // C0.l0 C1.l0 .. C0.l1
        pick2 = _mm512_setr_epi64(0, 0, 0, 0, 0, 1, 0, 0);      // C2.l0 into lane 2
        pick12 = _mm512_setr_epi64(2, 3, 10, 11, 0, 0, 4, 5);   // C1.l1 C2.l1 .. C1.l2
        pick0 = _mm512_setr_epi64(0, 0, 0, 0, 4, 5, 0, 0);      // C0.l2 into lane 2
        pick01b = _mm512_setr_epi64(0, 0, 6, 7, 14, 15, 0, 0);  // .. C0.l3 C1.l3 ..
        pick2b = _mm512_setr_epi64(4, 5, 0, 0, 0, 0, 6, 7);     // C2.l2 and C2.l3 into lanes 0 and 3
    }

    KRO_INLINE __m512i chunk(int j, const __m512i (&rgb)[3]) const {
        return _mm512_ternarylogic_epi32(_mm512_shuffle_epi8(rgb[0], ctl[j][0]), _mm512_shuffle_epi8(rgb[1], ctl[j][1]),
                                         _mm512_shuffle_epi8(rgb[2], ctl[j][2]), 0xFE);
    }

    KRO_INLINE void operator()(const __m512i (&rgb)[3], __m512i& o0, __m512i& o1, __m512i& o2) const {
        const __m512i c0 = chunk(0, rgb), c1 = chunk(1, rgb), c2 = chunk(2, rgb);
        o0 = _mm512_mask_permutexvar_epi64(_mm512_permutex2var_epi64(c0, pick01, c1), 0x30, pick2, c2);
        o1 = _mm512_mask_permutexvar_epi64(_mm512_permutex2var_epi64(c1, pick12, c2), 0x30, pick0, c0);
        o2 = _mm512_mask_permutexvar_epi64(_mm512_permutex2var_epi64(c0, pick01b, c1), 0xC3, pick2b, c2);
    }
};

// ---- one row ------------------------------------------------------------------

// A span of one row whose red or blue sites (colour `own`) stand at columns
// of parity `s` counted from its first pixel. With `gradient` it is a row of
// the interior; without, a row of the frame between two rows, green at the
// red and blue sites taken from all four neighbours.
template <class T, int s, int own, bool gradient>
struct SiteRow {
    using L = Lanes<T>;
    static constexpr typename L::Mask kSites = s == 0 ? L::kEven : static_cast<typename L::Mask>(L::kEven << 1);

    // Mean of four at the sites, from the element pairs of four registers.
    static KRO_INLINE __m512i mean4AtSites(__m512i a, __m512i b, __m512i c, __m512i d) {
        auto site = [](__m512i v) { return s == 0 ? L::lowOfPair(v) : L::highOfPair(v); };
        const __m512i m = L::pairQuarterRounded(L::pairAdd(L::pairAdd(site(a), site(b)), L::pairAdd(site(c), site(d))));
        return s == 0 ? m : L::toHighOfPair(m);
    }

    // The three planes of one block; at(dx, dy) loads the block's samples
    // dx columns right of and dy rows below its pixels.
    template <class At>
    static KRO_INLINE void block(At&& at, __m512i (&rgb)[3]) {
        const __m512i c = at(0, 0), left = at(-1, 0), right = at(1, 0), up = at(0, -1), down = at(0, 1);
        const __m512i across = L::avg(left, right), upDown = L::avg(up, down);
        const __m512i four = mean4AtSites(left, right, up, down);
        __m512i g;
        if constexpr (gradient) {
            const __m512i v = L::absDiff(at(0, -2), at(0, 2)), h = L::absDiff(at(-2, 0), at(2, 0));
            g = L::blend(kSites, c, across);
            g = L::blend(L::less(kSites, v, h), g, upDown);
            g = L::blend(L::equal(kSites, v, h), g, four);
        } else {
            g = L::blend(kSites, c, four);
        }
        rgb[kG] = g;
        rgb[own] = L::blend(kSites, across, c);
        rgb[2 - own] = L::blend(kSites, upDown, mean4AtSites(at(-1, -1), at(1, -1), at(-1, 1), at(1, 1)));
    }

    // w pixels to d. rows[2 + dy] is the row dy below the span, at its first
    // pixel; rows two away are read only with the gradient test.
    static KRO_INLINE void run(const T* const* rows, T* d, int w, const Interleaver<T>& weave) {
        __m512i rgb[3], o0, o1, o2;
        int x = 0;
        for (; x + L::kBlock <= w; x += L::kBlock) {
            block([&](int dx, int dy) { return L::load(rows[2 + dy] + x + dx); }, rgb);
            weave(rgb, o0, o1, o2);
            T* q = d + 3 * x;
            _mm512_storeu_si512(q, o0);
            _mm512_storeu_si512(q + 64 / sizeof(T), o1);
            _mm512_storeu_si512(q + 128 / sizeof(T), o2);
        }
        if (const int n = (w - x) & ~(L::kWhole - 1)) {
            block([&](int dx, int dy) { return L::loadN(rows[2 + dy] + x + dx, static_cast<unsigned>(n)); }, rgb);
            weave(rgb, o0, o1, o2);
            auto* q = reinterpret_cast<Kro8u*>(d + 3 * x);
            const unsigned bytes = 3 * sizeof(T) * static_cast<unsigned>(n);
            storeN512(q, o0, bytes);
            if (bytes > 64) storeN512(q + 64, o1, bytes - 64);
            if (bytes > 128) storeN512(q + 128, o2, bytes - 128);
            x += n;
        }
        for (int i = x + s; i < w; i += 2) {
            if constexpr (gradient)
                interiorColourSite(d + 3 * i, own, rows[0], rows[1], rows[2], rows[3], rows[4], i);
            else
                frameColourSite(d + 3 * i, own, rows[1], rows[2], rows[3], i - 1, i, i + 1);
        }
        for (int i = x + 1 - s; i < w; i += 2) greenSite(d + 3 * i, own, rows[1], rows[2], rows[3], i - 1, i, i + 1);
    }
};

// The parity of the red or blue sites in row r (0 or 1) of a cell, and their colour.
constexpr int siteParity(int cell, int r) { return kCellColours[cell][2 * r] == kG ? 1 : 0; }
constexpr int siteColour(int cell, int r) { return kCellColours[cell][2 * r + siteParity(cell, r)]; }

// The interior rectangle whose first pixel has the cell `cell`: rows in pairs,
// the two rows of the cell, then a last row of an odd height by itself.
template <class T, int cell>
void bayerRect(const T* src, std::ptrdiff_t srcStep, int w, int h, T* dst, std::ptrdiff_t dstStep) {
    using Top = SiteRow<T, siteParity(cell, 0), siteColour(cell, 0), true>;
    using Bottom = SiteRow<T, siteParity(cell, 1), siteColour(cell, 1), true>;
    const Interleaver<T> weave;
    auto row = [&](auto rowKind, int y) {
        const T* p = src + y * srcStep;
        const T* const rows[5] = {p - 2 * srcStep, p - srcStep, p, p + srcStep, p + 2 * srcStep};
        decltype(rowKind)::run(rows, dst + y * dstStep, w, weave);
    };
    int y = 0;
    for (; y + 2 <= h; y += 2) {
        row(Top{}, y);
        row(Bottom{}, y + 1);
    }
    if (y < h) row(Top{}, y);
}

// A span of a frame row between the rows `up` and `down`, whose first pixel
// has the cell `cell`; it reads one column to each side of itself.
template <class T, int cell>
void frameRowSpan(const T* up, const T* mid, const T* down, T* dst, int w) {
    const Interleaver<T> weave;
    const T* const rows[5] = {nullptr, up, mid, down, nullptr};
    SiteRow<T, siteParity(cell, 0), siteColour(cell, 0), false>::run(rows, dst, w, weave);
}

}  // namespace k0::cfa
