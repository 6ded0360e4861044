// RGB to subsampled YCbCr at 1920x1080, beside memcpy of the same bytes (the
// source read and the subsampled destination written).
#include <array>
#include <functional>
#include <string>

#include "bench_common.h"

namespace {

// Destination planes of one frame: Y and two chroma planes of the given
// sizes, or one plane of Cb Cr pairs.
struct Planes {
    std::vector<kb::Frame> f;
    std::array<Kro8u*, 3> p{};
    std::array<int, 3> step{};
    Planes(std::initializer_list<std::array<int, 2>> sizes) {
        for (auto s : sizes) f.emplace_back(s[0], s[1], 7);
        for (std::size_t i = 0; i < f.size(); ++i) p[i] = f[i].data(), step[i] = f[i].step;
    }
};

struct Case {
    const char* name;
    int inBpp;
    double outBpp;
    std::function<Planes(int w, int h)> dst;
    std::function<void(kb::Frame&, Planes&, KroiSize)> run;
};

Planes c2(int w, int h) { return Planes{{2 * w, h}}; }
Planes p422(int w, int h) { return Planes{{w, h}, {w / 2, h}, {w / 2, h}}; }
Planes p420(int w, int h) { return Planes{{w, h}, {w / 2, h / 2}, {w / 2, h / 2}}; }
Planes p2(int w, int h) { return Planes{{w, h}, {w, h / 2}}; }
Planes p411(int w, int h) { return Planes{{w, h}, {w / 4, h}, {w / 4, h}}; }

#define KB_C2(f) [](kb::Frame& s, Planes& d, KroiSize r) { f(s.data(), s.step, d.p[0], d.step[0], r); }
#define KB_P3(f) [](kb::Frame& s, Planes& d, KroiSize r) { f(s.data(), s.step, d.p.data(), d.step.data(), r); }
#define KB_P2(f) [](kb::Frame& s, Planes& d, KroiSize r) { f(s.data(), s.step, d.p[0], d.step[0], d.p[1], d.step[1], r); }

const std::vector<Case> kCases = {
    {"RGBToYCbCr422_8u_C3C2R", 3, 2, c2, KB_C2(kroiRGBToYCbCr422_8u_C3C2R)},
    {"RGBToYCrCb422_8u_C3C2R", 3, 2, c2, KB_C2(kroiRGBToYCrCb422_8u_C3C2R)},
    {"BGRToYCbCr422_8u_C3C2R", 3, 2, c2, KB_C2(kroiBGRToYCbCr422_8u_C3C2R)},
    {"BGRToYCbCr422_8u_AC4C2R", 4, 2, c2, KB_C2(kroiBGRToYCbCr422_8u_AC4C2R)},
    {"BGRToCbYCr422_8u_AC4C2R", 4, 2, c2, KB_C2(kroiBGRToCbYCr422_8u_AC4C2R)},
    {"RGBToCbYCr422_8u_C3C2R", 3, 2, c2, KB_C2(kroiRGBToCbYCr422_8u_C3C2R)},
    {"RGBToCbYCr422Gamma_8u_C3C2R", 3, 2, c2, KB_C2(kroiRGBToCbYCr422Gamma_8u_C3C2R)},
    {"RGBToYCbCr422_8u_C3P3R", 3, 2, p422, KB_P3(kroiRGBToYCbCr422_8u_C3P3R)},
    {"BGRToYCbCr422_8u_C3P3R", 3, 2, p422, KB_P3(kroiBGRToYCbCr422_8u_C3P3R)},
    {"BGRToYCbCr422_8u_AC4P3R", 4, 2, p422, KB_P3(kroiBGRToYCbCr422_8u_AC4P3R)},
    {"RGBToYCbCr420_8u_C3P3R", 3, 1.5, p420, KB_P3(kroiRGBToYCbCr420_8u_C3P3R)},
    {"BGRToYCbCr420_8u_C3P3R", 3, 1.5, p420, KB_P3(kroiBGRToYCbCr420_8u_C3P3R)},
    {"BGRToYCbCr420_8u_AC4P3R", 4, 1.5, p420, KB_P3(kroiBGRToYCbCr420_8u_AC4P3R)},
    {"BGRToYCrCb420_8u_C3P3R", 3, 1.5, p420, KB_P3(kroiBGRToYCrCb420_8u_C3P3R)},
    {"BGRToYCrCb420_8u_AC4P3R", 4, 1.5, p420, KB_P3(kroiBGRToYCrCb420_8u_AC4P3R)},
    {"RGBToYCrCb420_8u_AC4P3R", 4, 1.5, p420, KB_P3(kroiRGBToYCrCb420_8u_AC4P3R)},
    {"BGRToYCbCr420_8u_C3P2R", 3, 1.5, p2, KB_P2(kroiBGRToYCbCr420_8u_C3P2R)},
    {"BGRToYCbCr420_8u_AC4P2R", 4, 1.5, p2, KB_P2(kroiBGRToYCbCr420_8u_AC4P2R)},
    {"RGBToYCbCr420_8u_C4P2R", 4, 1.5, p2, KB_P2(kroiRGBToYCbCr420_8u_C4P2R)},
    {"RGBToYCbCr420_8u_C3P2R", 3, 1.5, p2, KB_P2(kroiRGBToYCbCr420_8u_C3P2R)},
    {"BGRToYCbCr411_8u_C3P3R", 3, 1.5, p411, KB_P3(kroiBGRToYCbCr411_8u_C3P3R)},
    {"BGRToYCbCr411_8u_AC4P3R", 4, 1.5, p411, KB_P3(kroiBGRToYCbCr411_8u_AC4P3R)},
};

int registerAll() {
    const kb::Res r = kb::kHD;
    for (const Case& c : kCases) {
        const std::string name = std::string(c.name) + "/" + std::to_string(r.w) + "x" + std::to_string(r.h);
        benchmark::RegisterBenchmark(name.c_str(), [c, r](benchmark::State& st) {
            kb::Frame s(static_cast<std::size_t>(r.w) * c.inBpp, r.h);
            Planes d = c.dst(r.w, r.h);
            for (auto _ : st) {
                c.run(s, d, {r.w, r.h});
                benchmark::ClobberMemory();
            }
            kb::setCounters(st, r.w, r.h, c.inBpp + c.outBpp);
        })->Unit(benchmark::kMicrosecond);
    }
    // The RGBToYCbCr422_P3C2R members read three planes: 3 + 2 bytes a pixel as well.
    for (auto f : {kroiRGBToYCbCr422_8u_P3C2R, kroiRGBToYCrCb422_8u_P3C2R}) {
        const std::string name = std::string(f == kroiRGBToYCbCr422_8u_P3C2R ? "RGBToYCbCr422_8u_P3C2R" : "RGBToYCrCb422_8u_P3C2R") +
                                  "/" + std::to_string(r.w) + "x" + std::to_string(r.h);
        benchmark::RegisterBenchmark(name.c_str(), [f, r](benchmark::State& st) {
            kb::Frame a(r.w, r.h, 1), b(r.w, r.h, 2), c(r.w, r.h, 3), d(2 * r.w, r.h);
            const Kro8u* src[3] = {a.data(), b.data(), c.data()};
            for (auto _ : st) {
                f(src, a.step, d.data(), d.step, {r.w, r.h});
                benchmark::ClobberMemory();
            }
            kb::setCounters(st, r.w, r.h, 5);
        })->Unit(benchmark::kMicrosecond);
    }
    kb::registerMemcpy("3+2 bytes/px", 5);
    kb::registerMemcpy("4+2 bytes/px", 6);
    kb::registerMemcpy("3+1.5 bytes/px", 4.5);
    kb::registerMemcpy("4+1.5 bytes/px", 5.5);
    return 0;
}

const int kRegistered = registerAll();

}  // namespace
