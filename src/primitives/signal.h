// One-dimensional copy and fill on contiguous vectors. The store method is
// chosen by size: plain vector stores below the cache size, non-temporal
// stores well above it, and in between a string copy, or a backward copy
// when source and destination lie close in their 4-KiB pages.
#pragma once
#include "internal.h"

namespace k0 {

// Plain vector copy and fill of any length.
void ownsCopy_8u_E9(const Kro8u* src, Kro8u* dst, std::size_t len);
void ownsSet_32s_E9(Kro32s value, Kro32s* dst, std::size_t len);

// The copy and the 32-bit fill that ask the cache size for large lengths.
void ownsCopy_8u(const Kro8u* src, Kro8u* dst, std::size_t len);
void ownsSet_32s(Kro32s value, Kro32s* dst, std::size_t len);

// Checked forms: null pointer, then length below 1.
KroStatus krosCopy_8u(const Kro8u* src, Kro8u* dst, int len);
KroStatus krosSet_32f(Kro32f value, Kro32f* dst, int len);

}  // namespace k0
