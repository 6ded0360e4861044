// What every family of the pixel library shares: the entry macro, the feature
// question, pointer stepping and the row walk.
#pragma once

#include <immintrin.h>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "krocc.h"
#include "krocore.h"

#define KRO_INLINE inline __attribute__((always_inline))
// The same for a lambda, written after its parameter list: a block body that a
// loop calls for its whole blocks and again for a short last one.
#define KRO_INLINE_LAMBDA __attribute__((always_inline))

// Defines the validating entry k0_<name> of an exported function and makes the
// exported name an alias of it. Use as:
//   KRO_ENTRY(kroiRGBToYUV_8u_C3R)(const Kro8u* pSrc, int srcStep, ...) { ... }
// The parameter list must match the prototype of krocc.h.
#define KRO_ENTRY(name)                                                            \
    extern "C" decltype(name) k0_##name;                                           \
    extern "C" decltype(name) name __attribute__((alias("k0_" #name), used));      \
    extern "C" KroStatus k0_##name

namespace k0 {

// One question per public call, on the paths that have a choice.
KRO_INLINE bool hasVnni() { return ownGetFeature(KRO_FEATURE_VNNI_VBMI) != 0; }

// Row y of an image whose rows are `step` bytes apart (steps are signed; zero
// repeats a row, a negative step walks upward).
template <class T>
KRO_INLINE T* rowAt(T* base, std::ptrdiff_t step, std::ptrdiff_t y) {
    using B = std::conditional_t<std::is_const_v<T>, const char, char>;
    return reinterpret_cast<T*>(reinterpret_cast<B*>(base) + step * y);
}

template <class T>
KRO_INLINE T* offsetBytes(T* base, std::ptrdiff_t bytes) {
    return rowAt(base, bytes, 1);
}

// The row walk of every driver: rows from the top in groups of eight, then the
// rest one by one. `row(y)` converts row y.
template <class Row>
KRO_INLINE void walkRows(int height, Row&& row) {
    int y = 0;
    for (; y + 8 <= height; y += 8) {
        row(y);     row(y + 1); row(y + 2); row(y + 3);
        row(y + 4); row(y + 5); row(y + 6); row(y + 7);
    }
    for (; y < height; ++y) row(y);
}

// True when any pointer of a list is null.
template <class... P>
KRO_INLINE bool anyNull(const P*... p) { return ((p == nullptr) || ...); }

// True when any of the first n members of a plane array is null.
template <class P>
KRO_INLINE bool anyNullIn(P* const* planes, int n) {
    for (int i = 0; i < n; ++i) if (planes[i] == nullptr) return true;
    return false;
}

// True when [a, a + na) and [b, b + nb) share a byte.
KRO_INLINE bool overlaps(const void* a, std::size_t na, const void* b, std::size_t nb) {
    auto pa = reinterpret_cast<std::uintptr_t>(a), pb = reinterpret_cast<std::uintptr_t>(b);
    return pa < pb + nb && pb < pa + na;
}

}  // namespace k0
