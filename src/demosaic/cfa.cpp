// Bayer mosaic to RGB by CFA interpolation: entries, region arithmetic, the
// two-pixel frame of the image and the choice of the interior kernel.
#include <algorithm>
#include <cstdint>

#include "demosaic/cfa_rules.h"
#include "demosaic/cfa_vec.h"
#include "internal.h"

namespace k0 {
namespace {
using namespace cfa;

// ---- the frame ----------------------------------------------------------------

// The whole image and the destination of the region; steps in elements.
template <class T>
struct Border {
    const T* img;
    std::ptrdiff_t step;
    int W, H;
    int pattern;
    T* dst;
    std::ptrdiff_t dstStep;
    int x, y;  // region origin

    const T* row(std::ptrdiff_t r) const { return img + r * step; }
    T* out(std::ptrdiff_t px, std::ptrdiff_t py) const { return dst + (py - y) * dstStep + 3 * (px - x); }

    // The frame rules at (px, py), its neighbour rows and columns given.
    KRO_INLINE void pixel(const T* up, const T* mid, const T* down, std::ptrdiff_t l, std::ptrdiff_t px, std::ptrdiff_t r,
                          std::ptrdiff_t py) const {
        const int colour = colourAt(pattern, px, py);
        if (colour == kG)
            greenSite(out(px, py), colourAt(pattern, px + 1, py), up, mid, down, l, px, r);
        else
            frameColourSite(out(px, py), colour, up, mid, down, l, px, r);
    }

    // Columns x0..x1 of row py between the rows `up` and `down`: the columns
    // 2..W-3 by the vector row kernel, the others one by one.
    void rowSpan(const T* up, int py, const T* down, int x0, int x1) const {
        const T* mid = row(py);
        auto scalar = [&](int a, int b) {
            for (int px = a; px <= b; ++px) pixel(up, mid, down, mirrored(px - 1, W), px, mirrored(px + 1, W), py);
        };
        const int v0 = std::max(x0, 2), v1 = std::min(x1, W - 3);
        if (v0 > v1) return scalar(x0, x1);
        scalar(x0, v0 - 1);
        constexpr void (*spans[4])(const T*, const T*, const T*, T*, int) = {frameRowSpan<T, kBGGR>, frameRowSpan<T, kRGGB>,
                                                                            frameRowSpan<T, kGBRG>, frameRowSpan<T, kGRBG>};
        spans[cellAt(pattern, v0, py)](up + v0, mid + v0, down + v0, out(v0, py), v1 - v0 + 1);
        scalar(v1 + 1, x1);
    }

    // Rows y0..y1 of column px between the columns l and r (rows 2..H-3 only).
    void columnSpan(std::ptrdiff_t l, int px, std::ptrdiff_t r, int y0, int y1) const {
        for (int py = y0; py <= y1; ++py) pixel(row(py - 1), row(py), row(py + 1), l, px, r, py);
    }
};

// A frame row with a row above and a row below (rows 1 and H-2).
template <class T>
void ownBayerBrdHrz3(const Border<T>& f, int py, int x0, int x1) {
    f.rowSpan(f.row(py - 1), py, f.row(py + 1), x0, x1);
}

// An edge row (0 or H-1) from itself and its one neighbour row, which stands
// on both sides.
template <class T>
void ownBayerBrdHrz2D(const Border<T>& f, int py, int neighbour, int x0, int x1) {
    f.rowSpan(f.row(neighbour), py, f.row(neighbour), x0, x1);
}

// Frame column 1 or W-2 over the rows y0..y1.
template <class T>
void ownBayerBrdVrt3(const Border<T>& f, int px, int y0, int y1) {
    f.columnSpan(px - 1, px, px + 1, y0, y1);
}

// An edge column (0 or W-1) from itself and its one neighbour column.
template <class T>
void ownBayerBrdVrt2D(const Border<T>& f, int px, int neighbour, int y0, int y1) {
    f.columnSpan(neighbour, px, neighbour, y0, y1);
}

// The region's pixels in the frame of the image: rows 0 and 1, columns 0 and
// 1, columns W-2 and W-1, rows H-2 and H-1, in this order. The region (x, y,
// w, h) is already cut to the image and not empty.
template <class T>
void ownBayerBorder(const T* img, int W, int H, std::ptrdiff_t step, int x, int y, int w, int h, T* dst,
                    std::ptrdiff_t dstStep, int pattern) {
    const Border<T> f{img, step, W, H, pattern, dst, dstStep, x, y};
    const int x1 = x + w - 1, y1 = y + h - 1;
    const int r0 = std::max(y, 2), r1 = std::min(y1, H - 3);
    auto holdsRow = [&](int r) { return y <= r && r <= y1; };
    auto holdsColumn = [&](int c) { return x <= c && c <= x1; };

    if (holdsRow(0)) ownBayerBrdHrz2D(f, 0, 1, x, x1);
    if (H >= 3 && holdsRow(1)) ownBayerBrdHrz3(f, 1, x, x1);
    if (holdsColumn(0)) ownBayerBrdVrt2D(f, 0, 1, r0, r1);
    if (W >= 3 && holdsColumn(1)) ownBayerBrdVrt3(f, 1, r0, r1);
    if (W >= 3 && holdsColumn(W - 2)) ownBayerBrdVrt3(f, W - 2, r0, r1);
    if (holdsColumn(W - 1)) ownBayerBrdVrt2D(f, W - 1, W - 2, r0, r1);
    if (H >= 3 && holdsRow(H - 2)) ownBayerBrdHrz3(f, H - 2, x, x1);
    if (holdsRow(H - 1)) ownBayerBrdHrz2D(f, H - 1, H - 2, x, x1);
}

void ownBayerBorder_8u(const Kro8u* img, int W, int H, std::ptrdiff_t step, int x, int y, int w, int h, Kro8u* dst,
                       std::ptrdiff_t dstStep, int pattern) {
    ownBayerBorder(img, W, H, step, x, y, w, h, dst, dstStep, pattern);
}
void ownBayerBorder_16u(const Kro16u* img, int W, int H, std::ptrdiff_t step, int x, int y, int w, int h, Kro16u* dst,
                        std::ptrdiff_t dstStep, int pattern) {
    ownBayerBorder(img, W, H, step, x, y, w, h, dst, dstStep, pattern);
}

// ---- the interior kernels, one per cell at the rectangle's first pixel ------

template <class T>
using RectKernel = void (*)(const T*, std::ptrdiff_t, int, int, T*, std::ptrdiff_t);

#define KRO_BAYER_RECT(cell, T, sfx)                                                                               \
    void owncnBayerRect##cell##_##sfx(const T* s, std::ptrdiff_t ss, int w, int h, T* d, std::ptrdiff_t ds) { \
        bayerRect<T, k##cell>(s, ss, w, h, d, ds);                                                           \
    }
KRO_BAYER_RECT(BGGR, Kro8u, 8u)
KRO_BAYER_RECT(RGGB, Kro8u, 8u)
KRO_BAYER_RECT(GBRG, Kro8u, 8u)
KRO_BAYER_RECT(GRBG, Kro8u, 8u)
KRO_BAYER_RECT(BGGR, Kro16u, 16u)
KRO_BAYER_RECT(RGGB, Kro16u, 16u)
KRO_BAYER_RECT(GBRG, Kro16u, 16u)
KRO_BAYER_RECT(GRBG, Kro16u, 16u)
#undef KRO_BAYER_RECT

// By cell, in the order of BayerPattern.
constexpr RectKernel<Kro8u> kRects8u[4] = {owncnBayerRectBGGR_8u, owncnBayerRectRGGB_8u, owncnBayerRectGBRG_8u,
                                           owncnBayerRectGRBG_8u};
constexpr RectKernel<Kro16u> kRects16u[4] = {owncnBayerRectBGGR_16u, owncnBayerRectRGGB_16u, owncnBayerRectGBRG_16u,
                                             owncnBayerRectGRBG_16u};

// ---- the driver -----------------------------------------------------------------

// Cuts the region to the image, writes its frame pixels, then its interior
// rectangle by the kernel of the cell at the rectangle's first pixel. Steps
// in elements.
template <class T>
void ownCFAToRGB(const T* src, KroiRect roi, KroiSize size, std::ptrdiff_t srcStep, T* dst, std::ptrdiff_t dstStep, int pattern,
                 void (*border)(const T*, int, int, std::ptrdiff_t, int, int, int, int, T*, std::ptrdiff_t, int),
                 const RectKernel<T> (&rects)[4]) {
    const int W = size.width, H = size.height, x = roi.x, y = roi.y;
    const int w = static_cast<int>(std::min<std::int64_t>(roi.width, std::int64_t{W} - x));
    const int h = static_cast<int>(std::min<std::int64_t>(roi.height, std::int64_t{H} - y));
    if (w <= 0 || h <= 0) return;
    border(src, W, H, srcStep, x, y, w, h, dst, dstStep, pattern);

    const int ix0 = std::max(x, 2), ix1 = std::min(x + w - 1, W - 3);
    const int iy0 = std::max(y, 2), iy1 = std::min(y + h - 1, H - 3);
    if (ix0 > ix1 || iy0 > iy1) return;
    rects[cellAt(pattern, ix0, iy0)](src + iy0 * srcStep + ix0, srcStep, ix1 - ix0 + 1, iy1 - iy0 + 1,
                                     dst + (iy0 - y) * dstStep + 3 * (ix0 - x), dstStep);
}

void myCFAToRGB_8u(const Kro8u* src, KroiRect roi, KroiSize size, int srcStep, Kro8u* dst, int dstStep, int pattern) {
    ownCFAToRGB(src, roi, size, srcStep, dst, dstStep, pattern, ownBayerBorder_8u, kRects8u);
}

// Byte steps become element steps by an arithmetic shift: an odd step loses its low bit.
void myCFAToRGB_16u(const Kro16u* src, KroiRect roi, KroiSize size, int srcStep, Kro16u* dst, int dstStep, int pattern) {
    ownCFAToRGB(src, roi, size, srcStep >> 1, dst, dstStep >> 1, pattern, ownBayerBorder_16u, kRects16u);
}

// Null pointers, image width, image height, pattern.
KroStatus cfaChecks(const void* src, const void* dst, KroiSize size, BayerPattern grid) {
    if (anyNull(src, dst)) return kroErrNullPtr;
    if (size.width < 2) return kroErrSize;
    if (size.height < 2) return kroErrSize;
    if (static_cast<std::uint32_t>(grid) > 3) return kroErrBadArg;
    return kroOk;
}

}  // namespace
}  // namespace k0

KRO_ENTRY(kroiCFAToRGB_8u_C1C3R)(const Kro8u* pSrc, KroiRect srcRoi, KroiSize srcSize, int srcStep, Kro8u* pDst, int dstStep,
                                 BayerPattern grid) {
    if (const KroStatus st = k0::cfaChecks(pSrc, pDst, srcSize, grid)) return st;
    k0::myCFAToRGB_8u(pSrc, srcRoi, srcSize, srcStep, pDst, dstStep, static_cast<int>(grid));
    return kroOk;
}

KRO_ENTRY(kroiCFAToRGB_16u_C1C3R)(const Kro16u* pSrc, KroiRect srcRoi, KroiSize srcSize, int srcStep, Kro16u* pDst, int dstStep,
                                  BayerPattern grid) {
    if (const KroStatus st = k0::cfaChecks(pSrc, pDst, srcSize, grid)) return st;
    k0::myCFAToRGB_16u(pSrc, srcRoi, srcSize, srcStep, pDst, dstStep, static_cast<int>(grid));
    return kroOk;
}
