// Entries and drivers of XYZ and YCC: steps from bytes to elements, the row
// walk of the drivers that call a row kernel, and the whole-image drivers
// with their branch for overlapping images.
#pragma once
#include <cstddef>

#include "entry.h"
#include "models/xyzycc_forms.h"
#include "models/xyzycc_lanes.h"

namespace k0::xyzycc {

// A step in bytes as a step in elements: the low bits of a step that is no
// multiple of the element size are lost.
template <class T>
constexpr int elements(int stepBytes) {
    return stepBytes >> (sizeof(T) == 1 ? 0 : sizeof(T) == 2 ? 1 : 2);
}

// Rows from the top through `row(srcRow, dstRow)`, steps in elements.
template <class T, class Row>
KRO_INLINE void eachRowOf(const T* s, int ss, T* d, int ds, int h, Row&& row) {
    walkRows(h, [&](int y) { row(rowOf(s, ss, y), rowOf(d, ds, y)); });
}

// The driver of a member with one vector form along the whole row, for
// either pixel stride; the destination's fourth sample is left alone.
template <class T, class Form>
KRO_INLINE void rowsOneForm(const T* s, int ss, T* d, int ds, int w, int h, int stride) {
    const Form form;
    if (stride == 3)
        eachRowOf(s, ss, d, ds, h, [&](const T* a, T* b) { convertSpan<T, 3, Alpha::Keep>(a, b, 0, w, form); });
    else
        eachRowOf(s, ss, d, ds, h, [&](const T* a, T* b) { convertSpan<T, 4, Alpha::Keep>(a, b, 0, w, form); });
}

// The bytes [lo, lo + n) that an image of h rows covers, whatever the sign of its step.
struct Extent {
    const char* lo;
    std::size_t n;
};
template <class T>
KRO_INLINE Extent extentOf(const T* p, int step, int h, std::size_t rowBytes) {
    const std::ptrdiff_t reach = static_cast<std::ptrdiff_t>(step) * static_cast<std::ptrdiff_t>(sizeof(T)) * (h - 1);
    const char* base = reinterpret_cast<const char*>(p);
    return reach >= 0 ? Extent{base, static_cast<std::size_t>(reach) + rowBytes}
                      : Extent{base + reach, static_cast<std::size_t>(-reach) + rowBytes};
}

// The whole-image driver: when source and destination share a byte, one
// pixel at a time with all its samples read before any is written, so that
// in-place calls are exact; otherwise the vector form over every row. Both
// compute `form`, and both write the fourth sample of S = 4 as 0.
template <class T, int S, class VecForm, auto form>
void wholeImage(const T* s, int ss, T* d, int ds, int w, int h) {
    const std::size_t rowBytes = sizeof(T) * S * static_cast<std::size_t>(w);
    const Extent a = extentOf(s, ss, h, rowBytes), b = extentOf(d, ds, h, rowBytes);
    if (overlaps(a.lo, a.n, b.lo, b.n)) {
        for (int y = 0; y < h; ++y) {
            const T* sp = rowOf(s, ss, y);
            T* dp = rowOf(d, ds, y);
            for (int x = 0; x < w; ++x, sp += S, dp += S) {
                const Trio<T> o = form(sp[0], sp[1], sp[2]);
                dp[0] = o.a;
                dp[1] = o.b;
                dp[2] = o.c;
                if constexpr (S == 4) dp[3] = 0;
            }
        }
        return;
    }
    const VecForm vf;
    eachRowOf(s, ss, d, ds, h, [&](const T* sr, T* dr) { convertSpan<T, S, Alpha::Zero>(sr, dr, 0, w, vf); });
}

}  // namespace k0::xyzycc

// An entry: null pointers, then the size; the steps become element steps.
#define KRO_XYZYCC_ENTRY(name, T, driver, ...)                                                                  \
    KRO_ENTRY(name)(const T* pSrc, int srcStep, T* pDst, int dstStep, KroiSize roi) {                           \
        return k0::run(driver, pSrc, k0::xyzycc::elements<T>(srcStep), pDst, k0::xyzycc::elements<T>(dstStep), \
                       roi __VA_OPT__(, ) __VA_ARGS__);                                                        \
    }

// The C3R and AC4R entries of a member whose driver takes the pixel stride.
#define KRO_XYZYCC_BY_STRIDE(member, type, T, driver)              \
    KRO_XYZYCC_ENTRY(kroi##member##_##type##_C3R, T, driver, 3) \
    KRO_XYZYCC_ENTRY(kroi##member##_##type##_AC4R, T, driver, 4)
