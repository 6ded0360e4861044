// What the gray entries share: their one validation and the typed row walk.
#pragma once
#include <type_traits>

#include "internal.h"

namespace k0::gray {

// Null source or destination, then a width or height below 1.
KRO_INLINE KroStatus checkArgs(const void* src, const void* dst, KroiSize roi) {
    if (anyNull(src, dst)) return kroErrNullPtr;
    if (roi.width < 1 || roi.height < 1) return kroErrSize;
    return kroOk;
}

// The entry's shape: validation, then the driver, then success.
template <class Ts, class Td, class... Extra>
KRO_INLINE KroStatus run(void (*driver)(const Ts*, int, Td*, int, int, int, Extra...), const Ts* src, int srcStep, Td* dst,
                         int dstStep, KroiSize roi, std::type_identity_t<Extra>... extra) {
    if (const KroStatus st = checkArgs(src, dst, roi)) return st;
    driver(src, srcStep, dst, dstStep, roi.width, roi.height, extra...);
    return kroOk;
}

// Runs `row(srcRow, dstRow)` for every row of the region, steps in bytes.
template <class Ts, class Td, class Row>
KRO_INLINE void eachRow(const Ts* src, int srcStep, Td* dst, int dstStep, int height, Row&& row) {
    walkRows(height, [&](int y) { row(rowAt(src, srcStep, y), rowAt(dst, dstStep, y)); });
}

}  // namespace k0::gray

// The two entries of one type and layout: RGBToGray with the default weights,
// ColorToGray with the caller's (null again meaning the defaults).
#define KRO_GRAY_ENTRIES(type, layout, T, driver)                                                             \
    KRO_ENTRY(kroiRGBToGray_##type##_##layout)(const T* pSrc, int srcStep, T* pDst, int dstStep, KroiSize roi) { \
        return k0::gray::run(driver, pSrc, srcStep, pDst, dstStep, roi, nullptr);                               \
    }                                                                                                           \
    KRO_ENTRY(kroiColorToGray_##type##_##layout)(const T* pSrc, int srcStep, T* pDst, int dstStep, KroiSize roi, \
                                                 const Kro32f* pCoeffs) {                                       \
        return k0::gray::run(driver, pSrc, srcStep, pDst, dstStep, roi, pCoeffs);                               \
    }
