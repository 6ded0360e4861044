// RGB and BGR to the planes Y, Co, Cg. Twelve members of the family refuse a
// width or height below 1; the others do nothing there and succeed.
#include "ycocg_kernels.h"

using k0::ycocg::Form;
using k0::ycocg::runFwd;

KRO_ENTRY(kroiBGRToYCoCg_8u16s_C3P3R)(const Kro8u* pSrc, int srcStep, Kro16s* pDst[3], int dstStep, KroiSize roi) {
    return runFwd<Form::Plain, 3, false, true>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiBGRToYCoCg_8u16s_C4P3R)(const Kro8u* pSrc, int srcStep, Kro16s* pDst[3], int dstStep, KroiSize roi) {
    return runFwd<Form::Plain, 4, false, true>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiBGRToYCoCg_Rev_8u16s_C3P3R)(const Kro8u* pSrc, int srcStep, Kro16s* pDst[3], int dstStep, KroiSize roi) {
    return runFwd<Form::Lift, 3, false, true>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiBGRToYCoCg_Rev_8u16s_C4P3R)(const Kro8u* pSrc, int srcStep, Kro16s* pDst[3], int dstStep, KroiSize roi) {
    return runFwd<Form::Lift, 4, false, true>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiRGBToYCoCg_8u_C3P3R)(const Kro8u* pSrc, int srcStep, Kro8u* pDst[3], int dstStep, KroiSize roi) {
    return runFwd<Form::Pair, 3, true, true>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiSBGRToYCoCg_16s_C3P3R)(const Kro16s* pSrc, int srcStep, Kro16s* pDst[3], int dstStep, KroiSize roi) {
    return runFwd<Form::Plain, 3, false, true>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiSBGRToYCoCg_16s_C4P3R)(const Kro16s* pSrc, int srcStep, Kro16s* pDst[3], int dstStep, KroiSize roi) {
    return runFwd<Form::Plain, 4, false, true>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiSBGRToYCoCg_16s32s_C3P3R)(const Kro16s* pSrc, int srcStep, Kro32s* pDst[3], int dstStep, KroiSize roi) {
    return runFwd<Form::Plain, 3, false, true>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiSBGRToYCoCg_16s32s_C4P3R)(const Kro16s* pSrc, int srcStep, Kro32s* pDst[3], int dstStep, KroiSize roi) {
    return runFwd<Form::Plain, 4, false, false>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiSBGRToYCoCg_Rev_16s_C3P3R)(const Kro16s* pSrc, int srcStep, Kro16s* pDst[3], int dstStep, KroiSize roi) {
    return runFwd<Form::Lift, 3, false, false>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiSBGRToYCoCg_Rev_16s_C4P3R)(const Kro16s* pSrc, int srcStep, Kro16s* pDst[3], int dstStep, KroiSize roi) {
    return runFwd<Form::Lift, 4, false, false>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiSBGRToYCoCg_Rev_16s32s_C3P3R)(const Kro16s* pSrc, int srcStep, Kro32s* pDst[3], int dstStep, KroiSize roi) {
    return runFwd<Form::Lift, 3, false, true>(pSrc, srcStep, pDst, dstStep, roi);
}

KRO_ENTRY(kroiSBGRToYCoCg_Rev_16s32s_C4P3R)(const Kro16s* pSrc, int srcStep, Kro32s* pDst[3], int dstStep, KroiSize roi) {
    return runFwd<Form::Lift, 4, false, false>(pSrc, srcStep, pDst, dstStep, roi);
}
