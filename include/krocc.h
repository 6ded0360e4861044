/*
 * krocc: image colour-conversion primitives, AVX-512 build (libkrocck0.so.11).
 *
 * Every function reads pixels from caller memory, converts them and writes
 * pixels to caller memory. Nothing is allocated, no state is kept between
 * calls, and calls on distinct destinations may run concurrently.
 *
 * Valid C99 and C++.
 */
#ifndef KROCC_H
#define KROCC_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define KROAPI __attribute__((visibility("default")))
#else
#define KROAPI
#endif

/* ---------------------------------------------------------------- types */

typedef uint8_t  Kro8u;
typedef int8_t   Kro8s;
typedef uint16_t Kro16u;
typedef int16_t  Kro16s;
typedef uint32_t Kro32u;
typedef int32_t  Kro32s;
typedef uint64_t Kro64u;
typedef int64_t  Kro64s;
typedef float    Kro32f;
typedef double   Kro64f;

/* Result of every function but kroccGetLibVersion: zero is success,
 * negative a failure (nothing was written), positive a warning after which
 * the result is valid. */
typedef int32_t KroStatus;

enum {
    kroOk              = 0,
    kroWarnNoOperation = 1,
    kroWarnOddSize     = 35,
    kroErrBadArg       = -5,
    kroErrSize         = -6,
    kroErrNullPtr      = -8,
    kroErrContext      = -13, /* internal only: generator record mismatch */
    kroErrStep         = -16,
    kroErrChannel      = -47,
    kroErrRange        = -49,
    kroErrLevels       = -54,
    kroErrNoise        = -55,
    kroErrDither       = -224,
    kroErrSizeOverflow = -232,
    kroVecSingularity  = 18,  /* internal only */
    kroVecDomain       = 19   /* internal only */
};

/* Region of interest, in pixels of the luma grid. */
typedef struct { int32_t width; int32_t height; } KroiSize;
typedef struct { int64_t width; int64_t height; } KroiSizeL;

/* Source region of the demosaicing functions. */
typedef struct { int32_t x; int32_t y; int32_t width; int32_t height; } KroiRect;
typedef struct { int64_t x; int64_t y; int64_t width; int64_t height; } KroiRectL;

/* The 2x2 cell at pixel (0,0) of the whole Bayer image, an unsigned 32-bit
 * value; the functions refuse values above 3. In C++ the enumeration has its
 * fixed type, so any 32-bit value may be passed and tested. */
#ifdef __cplusplus
enum BayerPattern : uint32_t {
#else
typedef enum {
#endif
    kroiBayerBGGR = 0,
    kroiBayerRGGB = 1,
    kroiBayerGBRG = 2,
    kroiBayerGRBG = 3
#ifdef __cplusplus
};
#else
} BayerPattern;
#endif

/* The constant version record of the library. */
typedef struct {
    int32_t     major;
    int32_t     minor;
    int32_t     update;
    int32_t     revision;
    char        targetCpu[4];
    const char* Name;
    const char* Version;
    const char* BuildDate;
} KroLibraryVersion;

/* ---------------------------------------------------------------- version */

KROAPI const KroLibraryVersion* kroccGetLibVersion(void);

/* ---------------------------------------------------------------- RGB <-> Y'UV 4:4:4 */

KROAPI KroStatus kroiRGBToYUV_8u_C3R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYUV_8u_AC4R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYUV_8u_C3P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYUV_8u_P3R(const Kro8u* const pSrc[3], int srcStep, Kro8u* const pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYUV_8u_AC4P4R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[4], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYUVToRGB_8u_C3R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYUVToRGB_8u_AC4R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYUVToRGB_8u_C3C4R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);
KROAPI KroStatus kroiYUVToRGB_8u_P3C3R(const Kro8u* const pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYUVToRGB_8u_P3R(const Kro8u* const pSrc[3], int srcStep, Kro8u* const pDst[3], int dstStep, KroiSize roiSize);

/* ---------------------------------------------------------------- RGB <-> Y'UV 4:2:2 and 4:2:0 */

/* 4:2:2: a cell is two neighbouring pixels of a row; chroma planes hold
 * (width + 1) / 2 samples a row; C2 is Y0 U Y1 V. Forms without R have dense
 * rows. */
KROAPI KroStatus kroiRGBToYUV422_8u_C3C2R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYUV422_8u_C3P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3], KroiSize roiSize);
KROAPI KroStatus kroiRGBToYUV422_8u_P3R(const Kro8u* const pSrc[3], int srcStep, Kro8u* const pDst[3], const int dstStep[3], KroiSize roiSize);
KROAPI KroStatus kroiRGBToYUV422_8u_C3P3(const Kro8u* pSrc, Kro8u* const pDst[3], KroiSize roiSize);
KROAPI KroStatus kroiRGBToYUV422_8u_P3(const Kro8u* const pSrc[3], Kro8u* const pDst[3], KroiSize roiSize);
KROAPI KroStatus kroiYUV422ToRGB_8u_C2C3R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYUV422ToRGB_8u_P3C3R(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYUV422ToRGB_8u_P3AC4R(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYUV422ToRGB_8u_P3R(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* const pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYUV422ToRGB_8u_P3C3(const Kro8u* const pSrc[3], Kro8u* pDst, KroiSize roiSize);
KROAPI KroStatus kroiYUV422ToRGB_8u_P3(const Kro8u* const pSrc[3], Kro8u* const pDst[3], KroiSize roiSize);

/* 4:2:0: a cell is a 2x2 block; only whole cells are converted, and an odd
 * width or height returns kroWarnOddSize after the work. */
KROAPI KroStatus kroiRGBToYUV420_8u_P3R(const Kro8u* const pSrc[3], int srcStep, Kro8u* const pDst[3], const int dstStep[3], KroiSize roiSize);
KROAPI KroStatus kroiRGBToYUV420_8u_C3P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3], KroiSize roiSize);
KROAPI KroStatus kroiRGBToYUV420_8u_P3(const Kro8u* const pSrc[3], Kro8u* const pDst[3], KroiSize roiSize);
KROAPI KroStatus kroiRGBToYUV420_8u_C3P3(const Kro8u* pSrc, Kro8u* const pDst[3], KroiSize roiSize);
KROAPI KroStatus kroiBGRToYUV420_8u_AC4P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3], KroiSize roiSize);
KROAPI KroStatus kroiYUV420ToRGB_8u_P3R(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* const pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYUV420ToRGB_8u_P3C3R(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYUV420ToRGB_8u_P3AC4R(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYUV420ToBGR_8u_P3C3R(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYUV420ToRGB_8u_P3(const Kro8u* const pSrc[3], Kro8u* const pDst[3], KroiSize roiSize);
KROAPI KroStatus kroiYUV420ToRGB_8u_P3C3(const Kro8u* const pSrc[3], Kro8u* pDst, KroiSize roiSize);

/* (end Y'UV 4:2:2 and 4:2:0) */

/* ---------------------------------------------------------------- RGB <-> YCbCr 4:4:4 */

KROAPI KroStatus kroiRGBToYCbCr_8u_C3R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCbCr_8u_AC4R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCbCr_8u_C3P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCbCr_8u_AC4P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCbCr_8u_P3R(const Kro8u* const pSrc[3], int srcStep, Kro8u* const pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCbCrToRGB_8u_C3R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCbCrToRGB_8u_AC4R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCbCrToRGB_8u_P3C3R(const Kro8u* const pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCbCrToBGR_8u_P3C3R(const Kro8u* const pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCbCrToRGB_8u_P3R(const Kro8u* const pSrc[3], int srcStep, Kro8u* const pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCbCrToRGB_8u_P3C4R(const Kro8u* const pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);
KROAPI KroStatus kroiYCbCrToBGR_8u_P3C4R(const Kro8u* const pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);

/* (end YCbCr 4:4:4) */

/* ---------------------------------------------------------------- RGB to subsampled YCbCr */

/* 4:2:2 as packed streams (the order is in the name) or as planes Y, Cb, Cr with
 * a step per plane. A width need not be even: the last odd pixel gets its Y and
 * one chroma byte in the streams, its Y alone in the planes. */
KROAPI KroStatus kroiRGBToYCbCr422_8u_C3C2R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCrCb422_8u_C3C2R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiBGRToYCbCr422_8u_C3C2R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiBGRToYCbCr422_8u_AC4C2R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiBGRToCbYCr422_8u_AC4C2R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToCbYCr422_8u_C3C2R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToCbYCr422Gamma_8u_C3C2R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCbCr422_8u_C3P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3], KroiSize roiSize);
KROAPI KroStatus kroiBGRToYCbCr422_8u_C3P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3], KroiSize roiSize);
KROAPI KroStatus kroiBGRToYCbCr422_8u_AC4P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3], KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCbCr422_8u_P3C2R(const Kro8u* const pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCrCb422_8u_P3C2R(const Kro8u* const pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);

/* 4:2:0 as three planes (YCrCb: the second plane is Cr) or as Y and a plane of
 * Cb Cr pairs; 4:1:1 as three planes. Incomplete cells are left unwritten and
 * reported by kroWarnOddSize. */
KROAPI KroStatus kroiRGBToYCbCr420_8u_C3P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3], KroiSize roiSize);
KROAPI KroStatus kroiBGRToYCbCr420_8u_C3P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3], KroiSize roiSize);
KROAPI KroStatus kroiBGRToYCbCr420_8u_AC4P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3], KroiSize roiSize);
KROAPI KroStatus kroiBGRToYCrCb420_8u_C3P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3], KroiSize roiSize);
KROAPI KroStatus kroiBGRToYCrCb420_8u_AC4P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3], KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCrCb420_8u_AC4P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3], KroiSize roiSize);
KROAPI KroStatus kroiBGRToYCbCr420_8u_C3P2R(const Kro8u* pSrc, int srcStep, Kro8u* pDstY, int dstYStep, Kro8u* pDstCbCr, int dstCbCrStep, KroiSize roiSize);
KROAPI KroStatus kroiBGRToYCbCr420_8u_AC4P2R(const Kro8u* pSrc, int srcStep, Kro8u* pDstY, int dstYStep, Kro8u* pDstCbCr, int dstCbCrStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCbCr420_8u_C4P2R(const Kro8u* pSrc, int srcStep, Kro8u* pDstY, int dstYStep, Kro8u* pDstCbCr, int dstCbCrStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCbCr420_8u_C3P2R(const Kro8u* pSrc, int srcStep, Kro8u* pDstY, int dstYStep, Kro8u* pDstCbCr, int dstCbCrStep, KroiSize roiSize);
KROAPI KroStatus kroiBGRToYCbCr411_8u_C3P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3], KroiSize roiSize);
KROAPI KroStatus kroiBGRToYCbCr411_8u_AC4P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], const int dstStep[3], KroiSize roiSize);

/* (end RGB to subsampled YCbCr) */

/* ---------------------------------------------------------------- subsampled YCbCr to RGB */

KROAPI KroStatus kroiYCbCr422ToRGB_8u_P3C3R(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCbCr422ToBGR_8u_P3C3R(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCbCr422ToRGB_8u_C2C3R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCbCr422ToBGR_8u_C2C3R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCrCb422ToRGB_8u_C2C3R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCrCb422ToBGR_8u_C2C3R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiCbYCr422ToRGB_8u_C2C3R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCbCr422ToRGB_8u_C2C4R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);
KROAPI KroStatus kroiYCbCr422ToBGR_8u_C2C4R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);
KROAPI KroStatus kroiYCrCb422ToRGB_8u_C2C4R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);
KROAPI KroStatus kroiYCrCb422ToBGR_8u_C2C4R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);
KROAPI KroStatus kroiCbYCr422ToBGR_8u_C2C4R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);
KROAPI KroStatus kroiYCbCr422ToRGB_8u_C2P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCrCb422ToRGB_8u_C2P3R(const Kro8u* pSrc, int srcStep, Kro8u* const pDst[3], int dstStep, KroiSize roiSize);

KROAPI KroStatus kroiYCbCr420ToRGB_8u_P3C3R(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCbCr420ToBGR_8u_P3C3R(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCbCr420ToBGR_8u_P3C4R(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);
KROAPI KroStatus kroiYCrCb420ToRGB_8u_P3C4R(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);
KROAPI KroStatus kroiYCrCb420ToBGR_Filter_8u_P3C4R(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);
KROAPI KroStatus kroiYCbCr420ToRGB_8u_P2C3R(const Kro8u* pSrcY, int srcYStep, const Kro8u* pSrcCbCr, int srcCbCrStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCbCr420ToBGR_8u_P2C3R(const Kro8u* pSrcY, int srcYStep, const Kro8u* pSrcCbCr, int srcCbCrStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCrCb420ToRGB_8u_P2C3R(const Kro8u* pSrcY, int srcYStep, const Kro8u* pSrcCrCb, int srcCrCbStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCrCb420ToBGR_8u_P2C3R(const Kro8u* pSrcY, int srcYStep, const Kro8u* pSrcCrCb, int srcCrCbStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCbCr420ToRGB_8u_P2C4R(const Kro8u* pSrcY, int srcYStep, const Kro8u* pSrcCbCr, int srcCbCrStep, Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);
KROAPI KroStatus kroiYCbCr420ToBGR_8u_P2C4R(const Kro8u* pSrcY, int srcYStep, const Kro8u* pSrcCbCr, int srcCbCrStep, Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);
KROAPI KroStatus kroiYCrCb420ToRGB_8u_P2C4R(const Kro8u* pSrcY, int srcYStep, const Kro8u* pSrcCrCb, int srcCrCbStep, Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);
KROAPI KroStatus kroiYCrCb420ToBGR_8u_P2C4R(const Kro8u* pSrcY, int srcYStep, const Kro8u* pSrcCrCb, int srcCrCbStep, Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);

KROAPI KroStatus kroiYCbCr411ToBGR_8u_P3C3R(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCbCr411ToBGR_8u_P3C4R(const Kro8u* const pSrc[3], const int srcStep[3], Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);

/* (end subsampled YCbCr to RGB) */

/* ---------------------------------------------------------------- BT.709 and v210 */

/* (end BT.709 and v210) */

/* ---------------------------------------------------------------- chroma layouts */

/* (end chroma layouts) */

/* ---------------------------------------------------------------- gray */

/* Luminance of RGB with the weights 0.299, 0.587, 0.114. */
KROAPI KroStatus kroiRGBToGray_8u_C3C1R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToGray_8u_AC4C1R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToGray_16u_C3C1R(const Kro16u* pSrc, int srcStep, Kro16u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToGray_16u_AC4C1R(const Kro16u* pSrc, int srcStep, Kro16u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToGray_16s_C3C1R(const Kro16s* pSrc, int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToGray_16s_AC4C1R(const Kro16s* pSrc, int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToGray_32f_C3C1R(const Kro32f* pSrc, int srcStep, Kro32f* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToGray_32f_AC4C1R(const Kro32f* pSrc, int srcStep, Kro32f* pDst, int dstStep, KroiSize roiSize);

/* Luminance with caller weights for R, G, B; a null pCoeffs selects the weights of kroiRGBToGray. */
KROAPI KroStatus kroiColorToGray_8u_C3C1R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize, const Kro32f* pCoeffs);
KROAPI KroStatus kroiColorToGray_8u_AC4C1R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize, const Kro32f* pCoeffs);
KROAPI KroStatus kroiColorToGray_16u_C3C1R(const Kro16u* pSrc, int srcStep, Kro16u* pDst, int dstStep, KroiSize roiSize, const Kro32f* pCoeffs);
KROAPI KroStatus kroiColorToGray_16u_AC4C1R(const Kro16u* pSrc, int srcStep, Kro16u* pDst, int dstStep, KroiSize roiSize, const Kro32f* pCoeffs);
KROAPI KroStatus kroiColorToGray_16s_C3C1R(const Kro16s* pSrc, int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize, const Kro32f* pCoeffs);
KROAPI KroStatus kroiColorToGray_16s_AC4C1R(const Kro16s* pSrc, int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize, const Kro32f* pCoeffs);
KROAPI KroStatus kroiColorToGray_32f_C3C1R(const Kro32f* pSrc, int srcStep, Kro32f* pDst, int dstStep, KroiSize roiSize, const Kro32f* pCoeffs);
KROAPI KroStatus kroiColorToGray_32f_AC4C1R(const Kro32f* pSrc, int srcStep, Kro32f* pDst, int dstStep, KroiSize roiSize, const Kro32f* pCoeffs);
KROAPI KroStatus kroiColorToGray_64f_C3C1R(const Kro64f* pSrc, int srcStep, Kro64f* pDst, int dstStep, KroiSize roiSize, const Kro64f* pCoeffs);
KROAPI KroStatus kroiColorToGray_64f_AC4C1R(const Kro64f* pSrc, int srcStep, Kro64f* pDst, int dstStep, KroiSize roiSize, const Kro64f* pCoeffs);

/* One plane replicated to three samples, or to four with the alpha value last. */
KROAPI KroStatus kroiGrayToRGB_8u_C1C3R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiGrayToRGB_8u_C1C4R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);
KROAPI KroStatus kroiGrayToRGB_16u_C1C3R(const Kro16u* pSrc, int srcStep, Kro16u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiGrayToRGB_16u_C1C4R(const Kro16u* pSrc, int srcStep, Kro16u* pDst, int dstStep, KroiSize roiSize, Kro16u aval);
KROAPI KroStatus kroiGrayToRGB_32f_C1C3R(const Kro32f* pSrc, int srcStep, Kro32f* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiGrayToRGB_32f_C1C4R(const Kro32f* pSrc, int srcStep, Kro32f* pDst, int dstStep, KroiSize roiSize, Kro32f aval);

/* The Y samples of a Y0 Cb Y1 Cr stream. */
KROAPI KroStatus kroiYCbCr422ToGray_8u_C2C1R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);

/* (end gray) */

/* ---------------------------------------------------------------- XYZ and YCC */

/* Gamma-corrected R, G, B to CIE X, Y, Z under the D65 matrix. In the AC4 forms of this
 * section the source alpha takes no part; the destination alpha is left alone or
 * written 0, by member (and for kroiRGBToXYZ_8u_AC4R by processor). */
KROAPI KroStatus kroiRGBToXYZ_8u_C3R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToXYZ_8u_AC4R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToXYZ_16u_C3R(const Kro16u* pSrc, int srcStep, Kro16u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToXYZ_16u_AC4R(const Kro16u* pSrc, int srcStep, Kro16u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToXYZ_16s_C3R(const Kro16s* pSrc, int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToXYZ_16s_AC4R(const Kro16s* pSrc, int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToXYZ_32f_C3R(const Kro32f* pSrc, int srcStep, Kro32f* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToXYZ_32f_AC4R(const Kro32f* pSrc, int srcStep, Kro32f* pDst, int dstStep, KroiSize roiSize);

/* X, Y, Z (D65) to R, G, B. */
KROAPI KroStatus kroiXYZToRGB_8u_C3R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiXYZToRGB_8u_AC4R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiXYZToRGB_16u_C3R(const Kro16u* pSrc, int srcStep, Kro16u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiXYZToRGB_16u_AC4R(const Kro16u* pSrc, int srcStep, Kro16u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiXYZToRGB_16s_C3R(const Kro16s* pSrc, int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiXYZToRGB_16s_AC4R(const Kro16s* pSrc, int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiXYZToRGB_32f_C3R(const Kro32f* pSrc, int srcStep, Kro32f* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiXYZToRGB_32f_AC4R(const Kro32f* pSrc, int srcStep, Kro32f* pDst, int dstStep, KroiSize roiSize);

/* R, G, B to the photographic luma-chroma space Y, C1, C2. */
KROAPI KroStatus kroiRGBToYCC_8u_C3R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCC_8u_AC4R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCC_16u_C3R(const Kro16u* pSrc, int srcStep, Kro16u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCC_16u_AC4R(const Kro16u* pSrc, int srcStep, Kro16u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCC_16s_C3R(const Kro16s* pSrc, int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCC_16s_AC4R(const Kro16s* pSrc, int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCC_32f_C3R(const Kro32f* pSrc, int srcStep, Kro32f* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCC_32f_AC4R(const Kro32f* pSrc, int srcStep, Kro32f* pDst, int dstStep, KroiSize roiSize);

/* Y, C1, C2 to R, G, B. */
KROAPI KroStatus kroiYCCToRGB_8u_C3R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCCToRGB_8u_AC4R(const Kro8u* pSrc, int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCCToRGB_16u_C3R(const Kro16u* pSrc, int srcStep, Kro16u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCCToRGB_16u_AC4R(const Kro16u* pSrc, int srcStep, Kro16u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCCToRGB_16s_C3R(const Kro16s* pSrc, int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCCToRGB_16s_AC4R(const Kro16s* pSrc, int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCCToRGB_32f_C3R(const Kro32f* pSrc, int srcStep, Kro32f* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCCToRGB_32f_AC4R(const Kro32f* pSrc, int srcStep, Kro32f* pDst, int dstStep, KroiSize roiSize);

/* (end XYZ and YCC) */

/* ---------------------------------------------------------------- HLS and HSV */

/* (end HLS and HSV) */

/* ---------------------------------------------------------------- LUV and Lab */

/* (end LUV and Lab) */

/* ---------------------------------------------------------------- YCoCg */

/* Interleaved B, G, R (or R, G, B) to the planes Y, Co, Cg; Rev is the lossless lifting form. */
KROAPI KroStatus kroiBGRToYCoCg_8u16s_C3P3R(const Kro8u* pSrc, int srcStep, Kro16s* pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiBGRToYCoCg_8u16s_C4P3R(const Kro8u* pSrc, int srcStep, Kro16s* pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiBGRToYCoCg_Rev_8u16s_C3P3R(const Kro8u* pSrc, int srcStep, Kro16s* pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiBGRToYCoCg_Rev_8u16s_C4P3R(const Kro8u* pSrc, int srcStep, Kro16s* pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiSBGRToYCoCg_16s_C3P3R(const Kro16s* pSrc, int srcStep, Kro16s* pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiSBGRToYCoCg_16s_C4P3R(const Kro16s* pSrc, int srcStep, Kro16s* pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiSBGRToYCoCg_16s32s_C3P3R(const Kro16s* pSrc, int srcStep, Kro32s* pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiSBGRToYCoCg_16s32s_C4P3R(const Kro16s* pSrc, int srcStep, Kro32s* pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiSBGRToYCoCg_Rev_16s_C3P3R(const Kro16s* pSrc, int srcStep, Kro16s* pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiSBGRToYCoCg_Rev_16s_C4P3R(const Kro16s* pSrc, int srcStep, Kro16s* pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiSBGRToYCoCg_Rev_16s32s_C3P3R(const Kro16s* pSrc, int srcStep, Kro32s* pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiSBGRToYCoCg_Rev_16s32s_C4P3R(const Kro16s* pSrc, int srcStep, Kro32s* pDst[3], int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiRGBToYCoCg_8u_C3P3R(const Kro8u* pSrc, int srcStep, Kro8u* pDst[3], int dstStep, KroiSize roiSize);

/* The planes Y, Co, Cg back to interleaved B, G, R (or R, G, B); the C4 forms write the alpha value fourth. */
KROAPI KroStatus kroiYCoCgToBGR_16s8u_P3C3R(const Kro16s* pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCoCgToBGR_16s8u_P3C4R(const Kro16s* pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);
KROAPI KroStatus kroiYCoCgToBGR_Rev_16s8u_P3C3R(const Kro16s* pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCoCgToBGR_Rev_16s8u_P3C4R(const Kro16s* pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize, Kro8u aval);
KROAPI KroStatus kroiYCoCgToSBGR_16s_P3C3R(const Kro16s* pSrc[3], int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCoCgToSBGR_16s_P3C4R(const Kro16s* pSrc[3], int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize, Kro16s aval);
KROAPI KroStatus kroiYCoCgToSBGR_32s16s_P3C3R(const Kro32s* pSrc[3], int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCoCgToSBGR_32s16s_P3C4R(const Kro32s* pSrc[3], int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize, Kro16s aval);
KROAPI KroStatus kroiYCoCgToSBGR_Rev_16s_P3C3R(const Kro16s* pSrc[3], int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCoCgToSBGR_Rev_16s_P3C4R(const Kro16s* pSrc[3], int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize, Kro16s aval);
KROAPI KroStatus kroiYCoCgToSBGR_Rev_32s16s_P3C3R(const Kro32s* pSrc[3], int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize);
KROAPI KroStatus kroiYCoCgToSBGR_Rev_32s16s_P3C4R(const Kro32s* pSrc[3], int srcStep, Kro16s* pDst, int dstStep, KroiSize roiSize, Kro16s aval);
KROAPI KroStatus kroiYCoCgToRGB_8u_P3C3R(const Kro8u* pSrc[3], int srcStep, Kro8u* pDst, int dstStep, KroiSize roiSize);

/* (end YCoCg) */

/* ---------------------------------------------------------------- gamma, colour twist, tone mapping */

/* (end gamma, colour twist, tone mapping) */

/* ---------------------------------------------------------------- bit reduction, 12-bit packing */

/* (end bit reduction, 12-bit packing) */

/* ---------------------------------------------------------------- demosaicing */

/* Bayer mosaic to interleaved R, G, B. pSrc is the top-left pixel of the whole
 * srcSize image and grid names its 2x2 cell at (0,0); pDst takes the pixel of
 * the region's top-left corner. A region running over the image is cut. */
KROAPI KroStatus kroiCFAToRGB_8u_C1C3R(const Kro8u* pSrc, KroiRect srcRoi, KroiSize srcSize, int srcStep, Kro8u* pDst, int dstStep, BayerPattern grid);
KROAPI KroStatus kroiCFAToRGB_16u_C1C3R(const Kro16u* pSrc, KroiRect srcRoi, KroiSize srcSize, int srcStep, Kro16u* pDst, int dstStep, BayerPattern grid);

/* (end demosaicing) */

#ifdef __cplusplus
}
#endif

#endif /* KROCC_H */
