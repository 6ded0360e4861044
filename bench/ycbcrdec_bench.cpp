// Subsampled YCbCr to RGB at 1920x1080 beside memcpy of the same bytes.
#include <functional>
#include <string>
#include <vector>

#include "bench_common.h"

namespace {

// Luma (or packed 4:2:2) frame, two chroma frames, one destination frame.
struct Frames {
    kb::Frame y, c1, c2, d;
    const Kro8u* p[3];
    int s[3];
    Frames(int yBytes, int cBytes, int cRows, int dBytes, int h)
        : y(yBytes, h, 1), c1(cBytes, cRows, 2), c2(cBytes, cRows, 3), d(dBytes, h, 4),
          p{y.data(), c1.data(), c2.data()}, s{y.step, c1.step, c2.step} {}
};

enum Kind { Packed, Planar422, Planar420, Pairs420, Planar411 };

struct Case {
    const char* name;
    Kind kind;
    int dstBpp;
    std::function<void(Frames&, KroiSize)> run;
};

#define KB_C2(f, bpp, ...) {#f, Packed, bpp, [](Frames& F, KroiSize r) { f(F.y.data(), F.y.step, F.d.data(), F.d.step, r __VA_OPT__(,) __VA_ARGS__); }}
#define KB_P3(f, kind, bpp, ...) {#f, kind, bpp, [](Frames& F, KroiSize r) { f(F.p, F.s, F.d.data(), F.d.step, r __VA_OPT__(,) __VA_ARGS__); }}
#define KB_P2(f, bpp, ...) {#f, Pairs420, bpp, [](Frames& F, KroiSize r) { f(F.y.data(), F.y.step, F.c1.data(), F.c1.step, F.d.data(), F.d.step, r __VA_OPT__(,) __VA_ARGS__); }}

const std::vector<Case> kCases = {
    KB_P3(kroiYCbCr422ToRGB_8u_P3C3R, Planar422, 3), KB_P3(kroiYCbCr422ToBGR_8u_P3C3R, Planar422, 3),
    KB_C2(kroiYCbCr422ToRGB_8u_C2C3R, 3), KB_C2(kroiYCbCr422ToBGR_8u_C2C3R, 3), KB_C2(kroiYCrCb422ToRGB_8u_C2C3R, 3),
    KB_C2(kroiYCrCb422ToBGR_8u_C2C3R, 3), KB_C2(kroiCbYCr422ToRGB_8u_C2C3R, 3),
    KB_C2(kroiYCbCr422ToRGB_8u_C2C4R, 4, 255), KB_C2(kroiYCbCr422ToBGR_8u_C2C4R, 4, 255),
    KB_C2(kroiYCrCb422ToRGB_8u_C2C4R, 4, 255), KB_C2(kroiYCrCb422ToBGR_8u_C2C4R, 4, 255),
    KB_C2(kroiCbYCr422ToBGR_8u_C2C4R, 4, 255),
    {"kroiYCbCr422ToRGB_8u_C2P3R", Packed, 3, [](Frames& F, KroiSize r) {
         Kro8u* d[3] = {F.d.data(), F.d.data() + r.width, F.d.data() + 2 * r.width};
         kroiYCbCr422ToRGB_8u_C2P3R(F.y.data(), F.y.step, d, F.d.step, r);
     }},
    {"kroiYCrCb422ToRGB_8u_C2P3R", Packed, 3, [](Frames& F, KroiSize r) {
         Kro8u* d[3] = {F.d.data(), F.d.data() + r.width, F.d.data() + 2 * r.width};
         kroiYCrCb422ToRGB_8u_C2P3R(F.y.data(), F.y.step, d, F.d.step, r);
     }},
    KB_P3(kroiYCbCr420ToRGB_8u_P3C3R, Planar420, 3), KB_P3(kroiYCbCr420ToBGR_8u_P3C3R, Planar420, 3),
    KB_P3(kroiYCbCr420ToBGR_8u_P3C4R, Planar420, 4, 255), KB_P3(kroiYCrCb420ToRGB_8u_P3C4R, Planar420, 4, 255),
    KB_P3(kroiYCrCb420ToBGR_Filter_8u_P3C4R, Planar420, 4, 255),
    KB_P2(kroiYCbCr420ToRGB_8u_P2C3R, 3), KB_P2(kroiYCbCr420ToBGR_8u_P2C3R, 3), KB_P2(kroiYCrCb420ToRGB_8u_P2C3R, 3),
    KB_P2(kroiYCrCb420ToBGR_8u_P2C3R, 3), KB_P2(kroiYCbCr420ToRGB_8u_P2C4R, 4, 255),
    KB_P2(kroiYCbCr420ToBGR_8u_P2C4R, 4, 255), KB_P2(kroiYCrCb420ToRGB_8u_P2C4R, 4, 255),
    KB_P2(kroiYCrCb420ToBGR_8u_P2C4R, 4, 255),
    KB_P3(kroiYCbCr411ToBGR_8u_P3C3R, Planar411, 3), KB_P3(kroiYCbCr411ToBGR_8u_P3C4R, Planar411, 4, 255),
};

// Source bytes a pixel of each kind.
double srcBytes(Kind k) { return k == Packed || k == Planar422 ? 2 : 1.5; }

int registerAll() {
    const kb::Res r = kb::kHD;
    for (const Case& c : kCases) {
        const double bytes = srcBytes(c.kind) + c.dstBpp;
        const std::string name = std::string(c.name + 4) + "/" + std::to_string(r.w) + "x" + std::to_string(r.h);
        benchmark::RegisterBenchmark(name.c_str(), [c, r, bytes](benchmark::State& st) {
            const int cw = c.kind == Planar411 ? r.w / 4 : c.kind == Pairs420 ? r.w : r.w / 2;
            const int cRows = c.kind == Planar420 || c.kind == Pairs420 ? r.h / 2 : r.h;
            // A planar destination (C2P3R) takes its three planes side by side in one frame.
            Frames f(c.kind == Packed ? 2 * r.w : r.w, cw, cRows, r.w * c.dstBpp, r.h);
            for (auto _ : st) {
                c.run(f, {r.w, r.h});
                benchmark::ClobberMemory();
            }
            kb::setCounters(st, r.w, r.h, bytes);
        })->Unit(benchmark::kMicrosecond);
    }
    kb::registerMemcpy("2+3 bytes/px", 5);
    kb::registerMemcpy("2+4 bytes/px", 6);
    kb::registerMemcpy("1.5+3 bytes/px", 4.5);
    kb::registerMemcpy("1.5+4 bytes/px", 5.5);
    return 0;
}

const int kRegistered = registerAll();

}  // namespace
