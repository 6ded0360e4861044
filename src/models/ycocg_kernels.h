// The YCoCg kernels and drivers: 32 pixels a block in 512-bit registers, the
// last block masked. Each form is evaluated in 16-bit lanes where its width
// of arithmetic is 16 bits (or where 16 bits hold it exactly), and in 32-bit
// lanes otherwise.
#pragma once
#include <type_traits>

#include "gray_lanes.h"
#include "internal.h"

namespace k0::ycocg {

using namespace lanes;

enum class Form { Plain, Lift, Pair };

// ---- the forms on registers ---------------------------------------------------

template <int Bits> struct Ops;
template <> struct Ops<16> {
    static KRO_INLINE __m512i add(__m512i a, __m512i b) { return _mm512_add_epi16(a, b); }
    static KRO_INLINE __m512i sub(__m512i a, __m512i b) { return _mm512_sub_epi16(a, b); }
    template <int N> static KRO_INLINE __m512i sar(__m512i a) { return _mm512_srai_epi16(a, N); }
    static KRO_INLINE __m512i set1(int v) { return _mm512_set1_epi16(static_cast<short>(v)); }
};
template <> struct Ops<32> {
    static KRO_INLINE __m512i add(__m512i a, __m512i b) { return _mm512_add_epi32(a, b); }
    static KRO_INLINE __m512i sub(__m512i a, __m512i b) { return _mm512_sub_epi32(a, b); }
    template <int N> static KRO_INLINE __m512i sar(__m512i a) { return _mm512_srai_epi32(a, N); }
    static KRO_INLINE __m512i set1(int v) { return _mm512_set1_epi32(v); }
};

// r, g, b in, y, co, cg out (or the other way round for the inverses).
template <Form F, int Bits>
KRO_INLINE void forward(__m512i r, __m512i g, __m512i b, __m512i* o) {
    using V = Ops<Bits>;
    if constexpr (F == Form::Lift) {
        o[1] = V::sub(r, b);
        const __m512i t = V::add(b, V::template sar<1>(o[1]));
        o[2] = V::sub(g, t);
        o[0] = V::add(t, V::template sar<1>(o[2]));
    } else {
        // the pair adds 128 to the chroma; the unsigned pack limits it to 255
        const __m512i off = V::set1(F == Form::Pair ? 128 : 0);
        const __m512i rb = V::add(r, b), g2 = V::add(g, g), one = V::set1(1), two = V::set1(2);
        o[0] = V::template sar<2>(V::add(V::add(rb, g2), two));
        o[1] = V::add(V::template sar<1>(V::add(V::sub(r, b), one)), off);
        o[2] = V::add(V::template sar<2>(V::add(V::sub(g2, rb), two)), off);
    }
}

// y, co, cg in, r, g, b out.
template <Form F, int Bits>
KRO_INLINE void inverse(__m512i y, __m512i co, __m512i cg, __m512i* o) {
    using V = Ops<Bits>;
    if constexpr (F == Form::Lift) {
        const __m512i t = V::sub(y, V::template sar<1>(cg));
        o[1] = V::add(cg, t);
        o[2] = V::sub(t, V::template sar<1>(co));
        o[0] = V::add(o[2], co);
    } else {
        // the pair's chroma carries 128: G takes it off, B adds twice it back
        const __m512i off = V::set1(F == Form::Pair ? 128 : 0);
        o[0] = V::sub(V::add(y, co), cg);
        o[1] = V::sub(V::add(y, cg), off);
        o[2] = V::add(V::sub(y, V::add(co, cg)), V::add(off, off));
    }
}

// ---- widths --------------------------------------------------------------------

KRO_INLINE __m512i widen(__m512i w, int half) {
    return _mm512_cvtepi16_epi32(half ? _mm512_extracti64x4_epi64(w, 1) : _mm512_castsi512_si256(w));
}
KRO_INLINE __m512i narrow(__m512i lo, __m512i hi) {
    return _mm512_inserti64x4(_mm512_castsi256_si512(_mm512_cvtepi32_epi16(lo)), _mm512_cvtepi32_epi16(hi), 1);
}

// n <= E elements of a register, non-temporally when whole and Stream.
template <int Bits, bool Stream>
KRO_INLINE void put(void* p, __m512i v, unsigned n) {
    if (Stream && n == static_cast<unsigned>(Elem<Bits>::E)) stream64(p, v);
    else Elem<Bits>::store(p, v, n);
}

// Evaluated in 32-bit lanes: 32-bit planes, and the plain form of 16-bit samples.
template <Form F, class Ts, class Tp>
inline constexpr bool kWide = sizeof(Tp) == 4 || (sizeof(Ts) == 2 && F == Form::Plain);

// ---- forward: interleaved to planes --------------------------------------------

template <Form F, int S, bool Rgb, class Ts, class Tp, bool Stream>
void innerFwd(const Ts* src, Tp* const* planes, int width) {
    // Whole blocks of 32 see n as a constant, so their 8-bit accesses are plain.
    const auto block = [&](int x, unsigned n) KRO_INLINE_LAMBDA {
        __m512i c[3];
        if constexpr (sizeof(Ts) == 1) {
            __m512i a, b;
            load8<S>(src + S * x, n, a, b);
            c[0] = channel8<S, 0>(a, b), c[1] = channel8<S, 1>(a, b), c[2] = channel8<S, 2>(a, b);
        } else {
            __m512i v[S];
            loadBlock<16, S>(src + S * x, n, v);
            c[0] = deinterleave<16, S, 0>(v), c[1] = deinterleave<16, S, 1>(v), c[2] = deinterleave<16, S, 2>(v);
        }
        const __m512i r = c[Rgb ? 0 : 2], g = c[1], b = c[Rgb ? 2 : 0];
        __m512i o[3];
        if constexpr (kWide<F, Ts, Tp>) {
            __m512i lo[3], hi[3];
            forward<F, 32>(widen(r, 0), widen(g, 0), widen(b, 0), lo);
            forward<F, 32>(widen(r, 1), widen(g, 1), widen(b, 1), hi);
            for (int p = 0; p < 3; ++p) {
                if constexpr (sizeof(Tp) == 4) {
                    put<32, Stream>(planes[p] + x, lo[p], n < 16 ? n : 16);
                    if (n > 16) put<32, Stream>(planes[p] + x + 16, hi[p], n - 16);
                } else {
                    o[p] = narrow(lo[p], hi[p]);
                }
            }
            if constexpr (sizeof(Tp) == 4) return;
        } else {
            forward<F, 16>(r, g, b, o);
        }
        for (int p = 0; p < 3; ++p) {
            if constexpr (sizeof(Tp) == 1) storePart256(planes[p] + x, packWords(o[p]), n);
            else Elem<16>::store(planes[p] + x, o[p], n);
        }
    };
    int x = 0;
    for (; x + 32 <= width; x += 32) block(x, 32u);
    if (x < width) block(x, static_cast<unsigned>(width - x));
}

KRO_INLINE bool aligned16(const void* p) { return (reinterpret_cast<std::uintptr_t>(p) & 15) == 0; }

// Rows from the top. Rows of 32-bit planes whose addresses and length allow it
// are written non-temporally, and a fence ends the call.
template <Form F, int S, bool Rgb, class Ts, class Tp>
void myFwd(const Ts* src, int srcStep, Tp* const* planes, int dstStep, int width, int height) {
    if (width < 1) return;
    bool streamed = false;
    for (int y = 0; y < height; ++y) {
        const Ts* s = rowAt(src, srcStep, y);
        Tp* const p[3] = {rowAt(planes[0], dstStep, y), rowAt(planes[1], dstStep, y), rowAt(planes[2], dstStep, y)};
        if constexpr (sizeof(Tp) == 4) {
            if (width >= 8 && width % 4 == 0 && aligned16(s) && aligned16(p[0]) && aligned16(p[1]) && aligned16(p[2])) {
                innerFwd<F, S, Rgb, Ts, Tp, true>(s, p, width);
                streamed = true;
                continue;
            }
        }
        innerFwd<F, S, Rgb, Ts, Tp, false>(s, p, width);
    }
    if (streamed) _mm_sfence();
}

// ---- inverse: planes to interleaved --------------------------------------------

template <Form F, int S, bool Rgb, class Tp, class Td, bool Stream>
void innerInv(const Tp* const* planes, Td* dst, int width, __m512i alpha) {
    // Whole blocks of 32 see n as a constant, so their 8-bit accesses are plain.
    const auto block = [&](int x, unsigned n) KRO_INLINE_LAMBDA {
        __m512i o[4];
        if constexpr (sizeof(Tp) == 4) {
            __m512i lo[3], hi[3], in[3][2];
            for (int p = 0; p < 3; ++p) {
                in[p][0] = Elem<32>::load(planes[p] + x, n < 16 ? n : 16);
                in[p][1] = n > 16 ? Elem<32>::load(planes[p] + x + 16, n - 16) : _mm512_setzero_si512();
            }
            inverse<F, 32>(in[0][0], in[1][0], in[2][0], lo);
            inverse<F, 32>(in[0][1], in[1][1], in[2][1], hi);
            for (int c = 0; c < 3; ++c) o[c] = narrow(lo[c], hi[c]);
        } else {
            __m512i in[3];
            for (int p = 0; p < 3; ++p)
                in[p] = sizeof(Tp) == 1 ? _mm512_cvtepu8_epi16(loadPart256(planes[p] + x, n)) : Elem<16>::load(planes[p] + x, n);
            inverse<F, 16>(in[0], in[1], in[2], o);
        }
        if constexpr (!Rgb) std::swap(o[0], o[2]);
        o[3] = alpha;
        if constexpr (sizeof(Td) == 1) {
            store8<S>(dst + S * x, n, o[0], o[1], o[2], o[3]);
        } else {
            storeBlock<16, S, Stream>(dst + S * x, n, o);
        }
    };
    int x = 0;
    for (; x + 32 <= width; x += 32) block(x, 32u);
    if (x < width) block(x, static_cast<unsigned>(width - x));
}

template <Form F, int S, bool Rgb, class Tp, class Td>
void myInv(const Tp* const* planes, int srcStep, Td* dst, int dstStep, int width, int height, Td alpha) {
    if (width < 1) return;
    const __m512i a = _mm512_set1_epi16(static_cast<short>(alpha));
    bool streamed = false;
    for (int y = 0; y < height; ++y) {
        const Tp* const p[3] = {rowAt(planes[0], srcStep, y), rowAt(planes[1], srcStep, y), rowAt(planes[2], srcStep, y)};
        Td* d = rowAt(dst, dstStep, y);
        if constexpr (sizeof(Tp) == 4) {
            if (width >= 8 && (width * S * 2) % 16 == 0 && aligned16(d) && aligned16(p[0]) && aligned16(p[1]) && aligned16(p[2])) {
                innerInv<F, S, Rgb, Tp, Td, true>(p, d, width, a);
                streamed = true;
                continue;
            }
        }
        innerInv<F, S, Rgb, Tp, Td, false>(p, d, width, a);
    }
    if (streamed) _mm_sfence();
}

// ---- entries ---------------------------------------------------------------------

// Null pointers (the array, then its members, in argument order), then the
// size where the member tests it.
template <bool SizeTest, class A, class B>
KRO_INLINE KroStatus check(const A* first, const B* second, const void* const* planes, KroiSize roi) {
    if (first == nullptr || second == nullptr || anyNullIn(planes, 3)) return kroErrNullPtr;
    if (SizeTest && (roi.width < 1 || roi.height < 1)) return kroErrSize;
    return kroOk;
}

template <Form F, int S, bool Rgb, bool SizeTest, class Ts, class Tp>
KRO_INLINE KroStatus runFwd(const Ts* src, int srcStep, Tp** planes, int dstStep, KroiSize roi) {
    if (const KroStatus st = check<SizeTest>(src, planes, reinterpret_cast<const void* const*>(planes), roi)) return st;
    myFwd<F, S, Rgb>(src, srcStep, planes, dstStep, roi.width, roi.height);
    return kroOk;
}

template <Form F, int S, bool Rgb, bool SizeTest, class Tp, class Td>
KRO_INLINE KroStatus runInv(const Tp** planes, int srcStep, Td* dst, int dstStep, KroiSize roi, Td alpha = 0) {
    if (const KroStatus st = check<SizeTest>(planes, dst, reinterpret_cast<const void* const*>(planes), roi)) return st;
    myInv<F, S, Rgb>(planes, srcStep, dst, dstStep, roi.width, roi.height, alpha);
    return kroOk;
}

}  // namespace k0::ycocg
