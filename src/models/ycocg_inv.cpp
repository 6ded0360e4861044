// The planes Y, Co, Cg back to RGB and BGR. The C4 forms write the alpha
// argument fourth. Three members refuse a width or height below 1; the others
// do nothing there and succeed.
#include "ycocg_kernels.h"

using k0::ycocg::Form;
using k0::ycocg::runInv;


KRO_ENTRY(kroiYCoCgToBGR_16s8u_P3C3R)(const Kro16s* pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return runInv<Form::Plain, 3, false, false>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiYCoCgToBGR_16s8u_P3C4R)(const Kro16s* pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roi, Kro8u aval) {
    return runInv<Form::Plain, 4, false, false>(pSrc, srcStep, pDst, dstStep, roi, aval);
}

KRO_ENTRY(kroiYCoCgToBGR_Rev_16s8u_P3C3R)(const Kro16s* pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return runInv<Form::Lift, 3, false, false>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiYCoCgToBGR_Rev_16s8u_P3C4R)(const Kro16s* pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roi, Kro8u aval) {
    return runInv<Form::Lift, 4, false, false>(pSrc, srcStep, pDst, dstStep, roi, aval);
}

KRO_ENTRY(kroiYCoCgToRGB_8u_P3C3R)(const Kro8u* pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roi) {
    return runInv<Form::Pair, 3, true, false>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiYCoCgToSBGR_16s_P3C3R)(const Kro16s* pSrc[3], int srcStep, Kro16s* pDst, int dstStep, KroiSize roi) {
    return runInv<Form::Plain, 3, false, false>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiYCoCgToSBGR_16s_P3C4R)(const Kro16s* pSrc[3], int srcStep, Kro16s* pDst, int dstStep, KroiSize roi, Kro16s aval) {
    return runInv<Form::Plain, 4, false, true>(pSrc, srcStep, pDst, dstStep, roi, aval);
}

KRO_ENTRY(kroiYCoCgToSBGR_32s16s_P3C3R)(const Kro32s* pSrc[3], int srcStep, Kro16s* pDst, int dstStep, KroiSize roi) {
    return runInv<Form::Plain, 3, false, true>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiYCoCgToSBGR_32s16s_P3C4R)(const Kro32s* pSrc[3], int srcStep, Kro16s* pDst, int dstStep, KroiSize roi, Kro16s aval) {
    return runInv<Form::Plain, 4, false, true>(pSrc, srcStep, pDst, dstStep, roi, aval);
}

KRO_ENTRY(kroiYCoCgToSBGR_Rev_16s_P3C3R)(const Kro16s* pSrc[3], int srcStep, Kro16s* pDst, int dstStep, KroiSize roi) {
    return runInv<Form::Lift, 3, false, false>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiYCoCgToSBGR_Rev_16s_P3C4R)(const Kro16s* pSrc[3], int srcStep, Kro16s* pDst, int dstStep, KroiSize roi, Kro16s aval) {
    return runInv<Form::Lift, 4, false, false>(pSrc, srcStep, pDst, dstStep, roi, aval);
}

KRO_ENTRY(kroiYCoCgToSBGR_Rev_32s16s_P3C3R)(const Kro32s* pSrc[3], int srcStep, Kro16s* pDst, int dstStep, KroiSize roi) {
    return runInv<Form::Lift, 3, false, false>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiYCoCgToSBGR_Rev_32s16s_P3C4R)(const Kro32s* pSrc[3], int srcStep, Kro16s* pDst, int dstStep, KroiSize roi, Kro16s aval) {
    return runInv<Form::Lift, 4, false, false>(pSrc, srcStep, pDst, dstStep, roi, aval);
}
