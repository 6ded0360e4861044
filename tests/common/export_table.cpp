#include "export_table.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <tuple>
#include <type_traits>

namespace kx {
namespace {

// ---- building an argument list from a Call --------------------------------
//
// The parameters of an export are read left to right: a sample pointer takes
// the next plane of the current side, a plane array takes the whole side, an
// int is the step of the plane just taken, an array of ints the steps of the
// side just taken. A sample pointer after both sides is the gray weights; a
// sample value is the alpha argument.

struct Cursor {
    const Call& c;
    int side = 0, plane = 0, lastSide = 0, lastPlane = 0;
    bool lastWasArray = false;
    uint8_t sharedStep = 0;  // sides whose planes share one step
};

template <class A>
A arg(Cursor& k) {
    using T = std::remove_cv_t<A>;
    if constexpr (std::is_same_v<T, KroiSize>) {
        return k.c.size;
    } else if constexpr (std::is_same_v<T, KroiRect>) {
        return k.c.rect;
    } else if constexpr (std::is_same_v<T, BayerPattern>) {
        return static_cast<BayerPattern>(k.c.grid);
    } else if constexpr (std::is_same_v<T, int>) {
        if (k.lastWasArray) k.sharedStep |= 1 << k.lastSide;
        k.lastWasArray = false;
        return k.c.step[k.lastSide][k.lastPlane];
    } else if constexpr (std::is_same_v<T, const int*>) {
        if (k.c.nullSteps[k.lastSide]) return k.c.passedNull = true, nullptr;
        return k.c.step[k.lastSide];
    } else if constexpr (std::is_pointer_v<T> && std::is_pointer_v<std::remove_cv_t<std::remove_pointer_t<T>>>) {
        const int s = k.side++;
        k.lastSide = s;
        k.lastWasArray = true;
        k.lastPlane = 0;
        k.plane = 0;
        if (k.c.nullArray[s]) return k.c.passedNull = true, nullptr;
        for (int p = 0; p < k.c.planes[s]; ++p) k.c.passedNull |= k.c.plane[s][p] == nullptr;
        return static_cast<T>(const_cast<void*>(static_cast<const void*>(k.c.plane[s])));
    } else if constexpr (std::is_pointer_v<T>) {
        if (k.side >= 2) return static_cast<T>(const_cast<void*>(k.c.coeffs));
        const int s = k.side, p = k.plane;
        k.lastSide = s;
        k.lastPlane = p;
        k.c.passedNull |= k.c.plane[s][p] == nullptr;
        if (++k.plane == k.c.planes[s]) {
            ++k.side;
            k.plane = 0;
        }
        return static_cast<T>(static_cast<void*>(k.c.plane[s][p]));
    } else if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(k.c.alphaFloat);
    } else {
        static_assert(std::is_integral_v<T>);
        return static_cast<T>(k.c.alphaInt);
    }
}

template <auto F>
struct Invoker;
template <class... A, KroStatus (*F)(A...)>
struct Invoker<F> {
    static KroStatus call(const Call& c) {
        Cursor k{c};
        std::tuple<A...> args{arg<A>(k)...};  // braces: evaluated left to right
        return std::apply(F, args);
    }
    static uint8_t sharedStep(const Call& c) {
        Cursor k{c};
        std::tuple<A...> args{arg<A>(k)...};
        (void)args;
        return k.sharedStep;
    }
};

// ---- geometry --------------------------------------------------------------

constexpr Side C(int bytesPerPixel) { return Side{1, {Plane{uint8_t(bytesPerPixel), 1, 1, false}}}; }
constexpr Side P(int planes, int bytesPerSample) {
    Side s{uint8_t(planes), {}};
    for (int i = 0; i < planes; ++i) s.plane[i] = Plane{uint8_t(bytesPerSample), 1, 1, false};
    return s;
}
// Packed 4:2:2: two bytes a pixel.
constexpr Side C422{1, {Plane{4, 2, 1, false}}};
constexpr Side P3_422{3, {Plane{1, 1, 1, false}, Plane{1, 2, 1, false}, Plane{1, 2, 1, false}}};
constexpr Side P3_411{3, {Plane{1, 1, 1, false}, Plane{1, 4, 1, false}, Plane{1, 4, 1, false}}};
// 4:2:0: only whole cells are touched; the chroma planes of an odd size are
// rounded down (the odd luma row and column are allowed but not needed).
constexpr Side P3_420{3, {Plane{1, 1, 1, false}, Plane{1, 2, 2, true}, Plane{1, 2, 2, true}}};
constexpr Side P2_420{2, {Plane{1, 1, 1, false}, Plane{2, 2, 2, true}}};

#define ROW(fn, src, dst, ...) Row{#fn, src, dst, uint8_t(kNone __VA_OPT__(|) __VA_ARGS__), &Invoker<&fn>::call, \
                                     &Invoker<&fn>::sharedStep}

const Row kRows[] = {
    // RGB <-> Y'UV 4:4:4
    ROW(kroiRGBToYUV_8u_C3R, C(3), C(3)),
    ROW(kroiRGBToYUV_8u_AC4R, C(4), C(4)),
    ROW(kroiRGBToYUV_8u_C3P3R, C(3), P(3, 1)),
    ROW(kroiRGBToYUV_8u_P3R, P(3, 1), P(3, 1)),
    ROW(kroiRGBToYUV_8u_AC4P4R, C(4), P(4, 1), kUntestedDstPlane3),
    ROW(kroiYUVToRGB_8u_C3R, C(3), C(3)),
    ROW(kroiYUVToRGB_8u_AC4R, C(4), C(4)),
    ROW(kroiYUVToRGB_8u_C3C4R, C(3), C(4)),
    ROW(kroiYUVToRGB_8u_P3C3R, P(3, 1), C(3)),
    ROW(kroiYUVToRGB_8u_P3R, P(3, 1), P(3, 1)),
    // RGB <-> Y'UV 4:2:2 and 4:2:0
    ROW(kroiRGBToYUV422_8u_C3C2R, C(3), C422),
    ROW(kroiRGBToYUV422_8u_C3P3R, C(3), P3_422),
    ROW(kroiRGBToYUV422_8u_P3R, P(3, 1), P3_422),
    ROW(kroiRGBToYUV422_8u_C3P3, C(3), P3_422, kDense),
    ROW(kroiRGBToYUV422_8u_P3, P(3, 1), P3_422, kDense),
    ROW(kroiYUV422ToRGB_8u_C2C3R, C422, C(3), kBefore1),
    ROW(kroiYUV422ToRGB_8u_P3C3R, P3_422, C(3)),
    ROW(kroiYUV422ToRGB_8u_P3AC4R, P3_422, C(4)),
    ROW(kroiYUV422ToRGB_8u_P3R, P3_422, P(3, 1)),
    ROW(kroiYUV422ToRGB_8u_P3C3, P3_422, C(3), kDense),
    ROW(kroiYUV422ToRGB_8u_P3, P3_422, P(3, 1), kDense),
    ROW(kroiRGBToYUV420_8u_P3R, P(3, 1), P3_420),
    ROW(kroiRGBToYUV420_8u_C3P3R, C(3), P3_420),
    ROW(kroiRGBToYUV420_8u_P3, P(3, 1), P3_420, kDense),
    ROW(kroiRGBToYUV420_8u_C3P3, C(3), P3_420, kDense),
    ROW(kroiBGRToYUV420_8u_AC4P3R, C(4), P3_420),
    ROW(kroiYUV420ToRGB_8u_P3R, P3_420, P(3, 1)),
    ROW(kroiYUV420ToRGB_8u_P3C3R, P3_420, C(3)),
    ROW(kroiYUV420ToRGB_8u_P3AC4R, P3_420, C(4)),
    ROW(kroiYUV420ToBGR_8u_P3C3R, P3_420, C(3)),
    ROW(kroiYUV420ToRGB_8u_P3, P3_420, P(3, 1), kDense),
    ROW(kroiYUV420ToRGB_8u_P3C3, P3_420, C(3), kDense),
    // RGB <-> YCbCr 4:4:4
    ROW(kroiRGBToYCbCr_8u_C3R, C(3), C(3)),
    ROW(kroiRGBToYCbCr_8u_AC4R, C(4), C(4)),
    ROW(kroiRGBToYCbCr_8u_C3P3R, C(3), P(3, 1)),
    ROW(kroiRGBToYCbCr_8u_AC4P3R, C(4), P(3, 1), kUntestedDstArray),
    ROW(kroiRGBToYCbCr_8u_P3R, P(3, 1), P(3, 1)),
    ROW(kroiYCbCrToRGB_8u_C3R, C(3), C(3)),
    ROW(kroiYCbCrToRGB_8u_AC4R, C(4), C(4)),
    ROW(kroiYCbCrToRGB_8u_P3C3R, P(3, 1), C(3)),
    ROW(kroiYCbCrToBGR_8u_P3C3R, P(3, 1), C(3)),
    ROW(kroiYCbCrToRGB_8u_P3R, P(3, 1), P(3, 1)),
    ROW(kroiYCbCrToRGB_8u_P3C4R, P(3, 1), C(4)),
    ROW(kroiYCbCrToBGR_8u_P3C4R, P(3, 1), C(4)),
    // RGB to subsampled YCbCr
    ROW(kroiRGBToYCbCr422_8u_C3C2R, C(3), C422),
    ROW(kroiRGBToYCrCb422_8u_C3C2R, C(3), C422),
    ROW(kroiBGRToYCbCr422_8u_C3C2R, C(3), C422),
    ROW(kroiBGRToYCbCr422_8u_AC4C2R, C(4), C422),
    ROW(kroiBGRToCbYCr422_8u_AC4C2R, C(4), C422),
    ROW(kroiRGBToCbYCr422_8u_C3C2R, C(3), C422),
    ROW(kroiRGBToCbYCr422Gamma_8u_C3C2R, C(3), C422),
    ROW(kroiRGBToYCbCr422_8u_C3P3R, C(3), P3_422),
    ROW(kroiBGRToYCbCr422_8u_C3P3R, C(3), P3_422),
    ROW(kroiBGRToYCbCr422_8u_AC4P3R, C(4), P3_422),
    ROW(kroiRGBToYCbCr422_8u_P3C2R, P(3, 1), C422),
    ROW(kroiRGBToYCrCb422_8u_P3C2R, P(3, 1), C422),
    ROW(kroiRGBToYCbCr420_8u_C3P3R, C(3), P3_420),
    ROW(kroiBGRToYCbCr420_8u_C3P3R, C(3), P3_420),
    ROW(kroiBGRToYCbCr420_8u_AC4P3R, C(4), P3_420),
    ROW(kroiBGRToYCrCb420_8u_C3P3R, C(3), P3_420),
    ROW(kroiBGRToYCrCb420_8u_AC4P3R, C(4), P3_420),
    ROW(kroiRGBToYCrCb420_8u_AC4P3R, C(4), P3_420),
    ROW(kroiBGRToYCbCr420_8u_C3P2R, C(3), P2_420),
    ROW(kroiBGRToYCbCr420_8u_AC4P2R, C(4), P2_420),
    ROW(kroiRGBToYCbCr420_8u_C4P2R, C(4), P2_420),
    ROW(kroiRGBToYCbCr420_8u_C3P2R, C(3), P2_420),
    ROW(kroiBGRToYCbCr411_8u_C3P3R, C(3), P3_411),
    ROW(kroiBGRToYCbCr411_8u_AC4P3R, C(4), P3_411),
    // subsampled YCbCr to RGB
    ROW(kroiYCbCr422ToRGB_8u_P3C3R, P3_422, C(3)),
    ROW(kroiYCbCr422ToBGR_8u_P3C3R, P3_422, C(3)),
    ROW(kroiYCbCr422ToRGB_8u_C2C3R, C422, C(3), kBefore1),
    ROW(kroiYCbCr422ToBGR_8u_C2C3R, C422, C(3)),
    ROW(kroiYCrCb422ToRGB_8u_C2C3R, C422, C(3), kBefore1),
    ROW(kroiYCrCb422ToBGR_8u_C2C3R, C422, C(3), kBefore1),
    ROW(kroiCbYCr422ToRGB_8u_C2C3R, C422, C(3), kBefore2),
    ROW(kroiYCbCr422ToRGB_8u_C2C4R, C422, C(4)),
    ROW(kroiYCbCr422ToBGR_8u_C2C4R, C422, C(4)),
    ROW(kroiYCrCb422ToRGB_8u_C2C4R, C422, C(4), kBefore1),
    ROW(kroiYCrCb422ToBGR_8u_C2C4R, C422, C(4), kBefore1),
    ROW(kroiCbYCr422ToBGR_8u_C2C4R, C422, C(4)),
    ROW(kroiYCbCr422ToRGB_8u_C2P3R, C422, P(3, 1)),
    ROW(kroiYCrCb422ToRGB_8u_C2P3R, C422, P(3, 1), kBefore1),
    ROW(kroiYCbCr420ToRGB_8u_P3C3R, P3_420, C(3)),
    ROW(kroiYCbCr420ToBGR_8u_P3C3R, P3_420, C(3)),
    ROW(kroiYCbCr420ToBGR_8u_P3C4R, P3_420, C(4)),
    ROW(kroiYCrCb420ToRGB_8u_P3C4R, P3_420, C(4)),
    ROW(kroiYCrCb420ToBGR_Filter_8u_P3C4R, P3_420, C(4), kPairAtWidth1),
    ROW(kroiYCbCr420ToRGB_8u_P2C3R, P2_420, C(3)),
    ROW(kroiYCbCr420ToBGR_8u_P2C3R, P2_420, C(3)),
    ROW(kroiYCrCb420ToRGB_8u_P2C3R, P2_420, C(3)),
    ROW(kroiYCrCb420ToBGR_8u_P2C3R, P2_420, C(3)),
    ROW(kroiYCbCr420ToRGB_8u_P2C4R, P2_420, C(4)),
    ROW(kroiYCbCr420ToBGR_8u_P2C4R, P2_420, C(4)),
    ROW(kroiYCrCb420ToRGB_8u_P2C4R, P2_420, C(4)),
    ROW(kroiYCrCb420ToBGR_8u_P2C4R, P2_420, C(4)),
    ROW(kroiYCbCr411ToBGR_8u_P3C3R, P3_411, C(3)),
    ROW(kroiYCbCr411ToBGR_8u_P3C4R, P3_411, C(4)),
    // gray
    ROW(kroiRGBToGray_8u_C3C1R, C(3), C(1)),
    ROW(kroiRGBToGray_8u_AC4C1R, C(4), C(1)),
    ROW(kroiRGBToGray_16u_C3C1R, C(6), C(2)),
    ROW(kroiRGBToGray_16u_AC4C1R, C(8), C(2)),
    ROW(kroiRGBToGray_16s_C3C1R, C(6), C(2)),
    ROW(kroiRGBToGray_16s_AC4C1R, C(8), C(2)),
    ROW(kroiRGBToGray_32f_C3C1R, C(12), C(4)),
    ROW(kroiRGBToGray_32f_AC4C1R, C(16), C(4)),
    ROW(kroiColorToGray_8u_C3C1R, C(3), C(1)),
    ROW(kroiColorToGray_8u_AC4C1R, C(4), C(1)),
    ROW(kroiColorToGray_16u_C3C1R, C(6), C(2)),
    ROW(kroiColorToGray_16u_AC4C1R, C(8), C(2)),
    ROW(kroiColorToGray_16s_C3C1R, C(6), C(2)),
    ROW(kroiColorToGray_16s_AC4C1R, C(8), C(2)),
    ROW(kroiColorToGray_32f_C3C1R, C(12), C(4)),
    ROW(kroiColorToGray_32f_AC4C1R, C(16), C(4)),
    ROW(kroiColorToGray_64f_C3C1R, C(24), C(8)),
    ROW(kroiColorToGray_64f_AC4C1R, C(32), C(8)),
    ROW(kroiGrayToRGB_8u_C1C3R, C(1), C(3)),
    ROW(kroiGrayToRGB_8u_C1C4R, C(1), C(4)),
    ROW(kroiGrayToRGB_16u_C1C3R, C(2), C(6)),
    ROW(kroiGrayToRGB_16u_C1C4R, C(2), C(8)),
    ROW(kroiGrayToRGB_32f_C1C3R, C(4), C(12)),
    ROW(kroiGrayToRGB_32f_C1C4R, C(4), C(16)),
    ROW(kroiYCbCr422ToGray_8u_C2C1R, C422, C(1)),
    // XYZ and YCC
    ROW(kroiRGBToXYZ_8u_C3R, C(3), C(3)),
    ROW(kroiRGBToXYZ_8u_AC4R, C(4), C(4)),
    ROW(kroiRGBToXYZ_16u_C3R, C(6), C(6)),
    ROW(kroiRGBToXYZ_16u_AC4R, C(8), C(8)),
    ROW(kroiRGBToXYZ_16s_C3R, C(6), C(6)),
    ROW(kroiRGBToXYZ_16s_AC4R, C(8), C(8)),
    ROW(kroiRGBToXYZ_32f_C3R, C(12), C(12)),
    ROW(kroiRGBToXYZ_32f_AC4R, C(16), C(16)),
    ROW(kroiXYZToRGB_8u_C3R, C(3), C(3)),
    ROW(kroiXYZToRGB_8u_AC4R, C(4), C(4)),
    ROW(kroiXYZToRGB_16u_C3R, C(6), C(6)),
    ROW(kroiXYZToRGB_16u_AC4R, C(8), C(8)),
    ROW(kroiXYZToRGB_16s_C3R, C(6), C(6)),
    ROW(kroiXYZToRGB_16s_AC4R, C(8), C(8)),
    ROW(kroiXYZToRGB_32f_C3R, C(12), C(12)),
    ROW(kroiXYZToRGB_32f_AC4R, C(16), C(16)),
    ROW(kroiRGBToYCC_8u_C3R, C(3), C(3)),
    ROW(kroiRGBToYCC_8u_AC4R, C(4), C(4)),
    ROW(kroiRGBToYCC_16u_C3R, C(6), C(6)),
    ROW(kroiRGBToYCC_16u_AC4R, C(8), C(8)),
    ROW(kroiRGBToYCC_16s_C3R, C(6), C(6)),
    ROW(kroiRGBToYCC_16s_AC4R, C(8), C(8)),
    ROW(kroiRGBToYCC_32f_C3R, C(12), C(12)),
    ROW(kroiRGBToYCC_32f_AC4R, C(16), C(16)),
    ROW(kroiYCCToRGB_8u_C3R, C(3), C(3)),
    ROW(kroiYCCToRGB_8u_AC4R, C(4), C(4)),
    ROW(kroiYCCToRGB_16u_C3R, C(6), C(6)),
    ROW(kroiYCCToRGB_16u_AC4R, C(8), C(8)),
    ROW(kroiYCCToRGB_16s_C3R, C(6), C(6)),
    ROW(kroiYCCToRGB_16s_AC4R, C(8), C(8)),
    ROW(kroiYCCToRGB_32f_C3R, C(12), C(12)),
    ROW(kroiYCCToRGB_32f_AC4R, C(16), C(16)),
    // YCoCg
    ROW(kroiBGRToYCoCg_8u16s_C3P3R, C(3), P(3, 2)),
    ROW(kroiBGRToYCoCg_8u16s_C4P3R, C(4), P(3, 2)),
    ROW(kroiBGRToYCoCg_Rev_8u16s_C3P3R, C(3), P(3, 2)),
    ROW(kroiBGRToYCoCg_Rev_8u16s_C4P3R, C(4), P(3, 2)),
    ROW(kroiSBGRToYCoCg_16s_C3P3R, C(6), P(3, 2)),
    ROW(kroiSBGRToYCoCg_16s_C4P3R, C(8), P(3, 2)),
    ROW(kroiSBGRToYCoCg_16s32s_C3P3R, C(6), P(3, 4)),
    ROW(kroiSBGRToYCoCg_16s32s_C4P3R, C(8), P(3, 4)),
    ROW(kroiSBGRToYCoCg_Rev_16s_C3P3R, C(6), P(3, 2)),
    ROW(kroiSBGRToYCoCg_Rev_16s_C4P3R, C(8), P(3, 2)),
    ROW(kroiSBGRToYCoCg_Rev_16s32s_C3P3R, C(6), P(3, 4)),
    ROW(kroiSBGRToYCoCg_Rev_16s32s_C4P3R, C(8), P(3, 4)),
    ROW(kroiRGBToYCoCg_8u_C3P3R, C(3), P(3, 1)),
    ROW(kroiYCoCgToBGR_16s8u_P3C3R, P(3, 2), C(3)),
    ROW(kroiYCoCgToBGR_16s8u_P3C4R, P(3, 2), C(4)),
    ROW(kroiYCoCgToBGR_Rev_16s8u_P3C3R, P(3, 2), C(3)),
    ROW(kroiYCoCgToBGR_Rev_16s8u_P3C4R, P(3, 2), C(4)),
    ROW(kroiYCoCgToSBGR_16s_P3C3R, P(3, 2), C(6)),
    ROW(kroiYCoCgToSBGR_16s_P3C4R, P(3, 2), C(8)),
    ROW(kroiYCoCgToSBGR_32s16s_P3C3R, P(3, 4), C(6)),
    ROW(kroiYCoCgToSBGR_32s16s_P3C4R, P(3, 4), C(8)),
    ROW(kroiYCoCgToSBGR_Rev_16s_P3C3R, P(3, 2), C(6)),
    ROW(kroiYCoCgToSBGR_Rev_16s_P3C4R, P(3, 2), C(8)),
    ROW(kroiYCoCgToSBGR_Rev_32s16s_P3C3R, P(3, 4), C(6)),
    ROW(kroiYCoCgToSBGR_Rev_32s16s_P3C4R, P(3, 4), C(8)),
    ROW(kroiYCoCgToRGB_8u_P3C3R, P(3, 1), C(3)),
    // demosaicing
    ROW(kroiCFAToRGB_8u_C1C3R, C(1), C(3), kCfa),
    ROW(kroiCFAToRGB_16u_C1C3R, C(2), C(6), kCfa),
};

#undef ROW

}  // namespace

std::span<const Row> exportTable() { return kRows; }

const Row* findRow(std::string_view name) {
    for (const Row& r : kRows)
        if (name == r.name) return &r;
    return nullptr;
}

std::size_t planeRowBytes(const Plane& p, int w) {
    if (w <= 0) return 0;
    if (p.cells) w &= ~1;
    return (static_cast<std::size_t>(w) * p.num + p.den - 1) / p.den;
}

int planeRows(const Plane& p, int h) {
    if (h <= 0) return 0;
    if (p.cells) h &= ~1;
    return (h + p.rowDiv - 1) / p.rowDiv;
}

KroiSize sideRegion(const Row& row, int side, KroiSize size, KroiRect rect) {
    if ((row.flags & kPairAtWidth1) && size.width == 1) return KroiSize{2, size.height};
    if (!(row.flags & kCfa)) return size;
    if (side == 0) return size;
    // The region is cut to the image; a region outside it is outside the contract.
    const int w = std::min(rect.width, size.width - rect.x), h = std::min(rect.height, size.height - rect.y);
    return KroiSize{std::max(w, 0), std::max(h, 0)};
}

int readsBeforeRow(const Row& row, int w) {
    if (w != 1) return 0;
    return (row.flags & kBefore2) ? 2 : (row.flags & kBefore1) ? 1 : 0;
}

FeatureQuery coreFeatureQuery() {
    static const FeatureQuery real = [] {
        void* core = dlopen("libkrocore.so.11", RTLD_NOW);
        return core ? reinterpret_cast<FeatureQuery>(dlsym(core, "ownGetFeature")) : nullptr;
    }();
    return real;
}

bool isContractStatus(KroStatus s) {
    switch (s) {
        case kroOk: case kroWarnNoOperation: case kroWarnOddSize: case kroErrBadArg: case kroErrSize:
        case kroErrNullPtr: case kroErrStep: case kroErrChannel: case kroErrRange: case kroErrLevels:
        case kroErrNoise: case kroErrDither: case kroErrSizeOverflow:
            return true;
        default:
            return false;
    }
}

// ---- images with canaries --------------------------------------------------

namespace {
constexpr std::size_t kMargin = 64;
// Padding after each row: a multiple of 8 where a pixel has an even number
// of bytes, so that rows of 16-, 32- and 64-bit samples stay whole samples
// apart (a step of a part sample is outside what the functions promise).
constexpr std::size_t padFor(const Plane& p) { return p.num % 2 ? 29 : 40; }
}  // namespace

Planes::Planes(const Side& side, KroiSize region, const StepMode modes[4], bool dense, uint32_t seed) {
    std::mt19937 g(seed);
    for (int p = 0; p < side.planes; ++p) {
        const std::size_t rb = planeRowBytes(side.plane[p], region.width);
        const int rows = planeRows(side.plane[p], region.height);
        const StepMode m = dense ? StepMode::Tight : modes[p];
        const std::size_t pitch = m == StepMode::Tight ? rb : rb + padFor(side.plane[p]);
        const std::size_t span = m == StepMode::Zero ? rb : pitch * static_cast<std::size_t>(std::max(rows, 0));
        std::vector<uint8_t> buf(2 * kMargin + span, kCanary);
        std::size_t origin = kMargin;
        int step = static_cast<int>(pitch);
        if (m == StepMode::Zero) step = 0;
        if (m == StepMode::Negative) {
            step = -static_cast<int>(pitch);
            if (rows > 0) origin += pitch * static_cast<std::size_t>(rows - 1);
        }
        bufs_.push_back(std::move(buf));
        origin_.push_back(origin);
        rowBytes_.push_back(rb);
        step_.push_back(step);
        rows_.push_back(rows);
        for (int y = 0; y < rows; ++y) {
            uint8_t* r = ptr(p) + static_cast<std::ptrdiff_t>(y) * step;
            for (std::size_t x = 0; x < rb; ++x) r[x] = static_cast<uint8_t>(g());
        }
    }
}

bool Planes::outsideIntact() const {
    for (int p = 0; p < count(); ++p) {
        std::vector<uint8_t> inside(bufs_[p].size(), 0);
        for (int y = 0; y < rows_[p]; ++y) {
            const std::size_t start = origin_[p] + static_cast<std::ptrdiff_t>(y) * step_[p];
            std::fill_n(inside.begin() + static_cast<std::ptrdiff_t>(start), rowBytes_[p], 1);
        }
        for (std::size_t i = 0; i < bufs_[p].size(); ++i)
            if (!inside[i] && bufs_[p][i] != kCanary) return false;
    }
    return true;
}

std::vector<uint8_t> Planes::region() const {
    std::vector<uint8_t> out;
    for (int p = 0; p < count(); ++p)
        for (int y = 0; y < rows_[p]; ++y) {
            const uint8_t* r = bufs_[p].data() + origin_[p] + static_cast<std::ptrdiff_t>(y) * step_[p];
            out.insert(out.end(), r, r + rowBytes_[p]);
        }
    return out;
}

uint8_t sharedStepSides(const Row& row) {
    Call c;
    c.planes[0] = row.src.planes;
    c.planes[1] = row.dst.planes;
    return row.sharedStep(c);
}

Job::Job(const Row& row, KroiSize size, KroiRect rect, const StepMode srcModes[4], const StepMode dstModes[4],
         uint32_t seed)
    : row(&row) {
    // Planes that share one step are laid out alike.
    const uint8_t shared = sharedStepSides(row);
    StepMode modes[2][4];
    for (int p = 0; p < 4; ++p) {
        modes[0][p] = (shared & 1) ? srcModes[0] : srcModes[p];
        modes[1][p] = (shared & 2) ? dstModes[0] : dstModes[p];
    }
    src = Planes(row.src, sideRegion(row, 0, size, rect), modes[0], row.flags & kDense, seed);
    dst = Planes(row.dst, sideRegion(row, 1, size, rect), modes[1], row.flags & kDense, seed ^ 0x9e3779b9u);
    call.size = size;
    call.rect = rect;
    call.planes[0] = row.src.planes;
    call.planes[1] = row.dst.planes;
    for (int p = 0; p < src.count(); ++p) {
        call.plane[0][p] = src.ptr(p);
        call.step[0][p] = src.step(p);
    }
    for (int p = 0; p < dst.count(); ++p) {
        call.plane[1][p] = dst.ptr(p);
        call.step[1][p] = dst.step(p);
    }
}

KroStatus Job::run() const { return row->call(call); }

}  // namespace kx
