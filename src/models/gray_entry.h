// The gray entries: RGBToGray and ColorToGray share one driver.
#pragma once
#include "entry.h"

// The two entries of one type and layout: RGBToGray with the default weights,
// ColorToGray with the caller's (null again meaning the defaults).
#define KRO_GRAY_ENTRIES(type, layout, T, driver)                                                             \
    KRO_ENTRY(kroiRGBToGray_##type##_##layout)(const T* pSrc, int srcStep, T* pDst, int dstStep, KroiSize roi) { \
        return k0::run(driver, pSrc, srcStep, pDst, dstStep, roi, nullptr);                               \
    }                                                                                                           \
    KRO_ENTRY(kroiColorToGray_##type##_##layout)(const T* pSrc, int srcStep, T* pDst, int dstStep, KroiSize roi, \
                                                 const Kro32f* pCoeffs) {                                       \
        return k0::run(driver, pSrc, srcStep, pDst, dstStep, roi, pCoeffs);                               \
    }
