// The usual shape of an entry: validation (null pointers, then a width or
// height below 1), the driver, success; and the typed row walk of a driver.
#pragma once
#include <type_traits>

#include "internal.h"

namespace k0 {

// Null pointers first, then the size.
template <class... P>
KRO_INLINE KroStatus checkArgs(KroiSize roi, const P*... p) {
    if (anyNull(p...)) return kroErrNullPtr;
    if (roi.width < 1 || roi.height < 1) return kroErrSize;
    return kroOk;
}

// Validates one source and one destination, then drives the whole image.
template <class Ts, class Td, class... Extra>
KRO_INLINE KroStatus run(void (*driver)(const Ts*, int, Td*, int, int, int, Extra...), const Ts* src, int srcStep, Td* dst,
                         int dstStep, KroiSize roi, std::type_identity_t<Extra>... extra) {
    if (const KroStatus st = checkArgs(roi, src, dst)) return st;
    driver(src, srcStep, dst, dstStep, roi.width, roi.height, extra...);
    return kroOk;
}

// Runs `row(srcRow, dstRow)` for every row of the region, steps in bytes.
template <class Ts, class Td, class Row>
KRO_INLINE void eachRow(const Ts* src, int srcStep, Td* dst, int dstStep, int height, Row&& row) {
    walkRows(height, [&](int y) { row(rowAt(src, srcStep, y), rowAt(dst, dstStep, y)); });
}

}  // namespace k0
