// RGB <-> YCbCr 4:4:4 at 1920x1080 and 3840x2160, on both paths where there
// are two, beside memcpy of the same bytes.
#include <array>
#include <functional>
#include <string>

#include "bench_common.h"

namespace {

// The planes of one frame; p[i] are row-aligned planes, so the planar forward
// member takes its aligned path.
struct Planes {
    std::vector<kb::Frame> f;
    std::array<Kro8u*, 3> p{};
    std::array<const Kro8u*, 3> cp{};
    int step = 0;
    Planes(int planes, int rowBytes, int rows) {
        for (int i = 0; i < planes; ++i) f.emplace_back(rowBytes, rows, 11 + i);
        for (int i = 0; i < planes; ++i) cp[i] = p[i] = f[i].data();
        step = f[0].step;
    }
};

struct Case {
    const char* name;
    int inPlanes, inBpp, outPlanes, outBpp;
    bool paths;
    std::function<void(Planes&, Planes&, KroiSize)> run;
};

const std::vector<Case> kCases = {
    {"RGBToYCbCr_8u_C3R", 1, 3, 1, 3, true, [](Planes& s, Planes& d, KroiSize r) { kroiRGBToYCbCr_8u_C3R(s.p[0], s.step, d.p[0], d.step, r); }},
    {"RGBToYCbCr_8u_AC4R", 1, 4, 1, 4, true, [](Planes& s, Planes& d, KroiSize r) { kroiRGBToYCbCr_8u_AC4R(s.p[0], s.step, d.p[0], d.step, r); }},
    {"RGBToYCbCr_8u_C3P3R", 1, 3, 3, 1, false, [](Planes& s, Planes& d, KroiSize r) { kroiRGBToYCbCr_8u_C3P3R(s.p[0], s.step, d.p.data(), d.step, r); }},
    {"RGBToYCbCr_8u_AC4P3R", 1, 4, 3, 1, false, [](Planes& s, Planes& d, KroiSize r) { kroiRGBToYCbCr_8u_AC4P3R(s.p[0], s.step, d.p.data(), d.step, r); }},
    {"RGBToYCbCr_8u_P3R/aligned", 3, 1, 3, 1, false, [](Planes& s, Planes& d, KroiSize r) { kroiRGBToYCbCr_8u_P3R(s.cp.data(), s.step, d.p.data(), d.step, r); }},
    {"RGBToYCbCr_8u_P3R/unaligned", 3, 1, 3, 1, false, [](Planes& s, Planes& d, KroiSize r) {
         const Kro8u* src[3] = {s.p[0] + 1, s.p[1], s.p[2]};
         kroiRGBToYCbCr_8u_P3R(src, s.step, d.p.data(), d.step, {r.width - 1, r.height});
     }},
    {"YCbCrToRGB_8u_C3R", 1, 3, 1, 3, false, [](Planes& s, Planes& d, KroiSize r) { kroiYCbCrToRGB_8u_C3R(s.p[0], s.step, d.p[0], d.step, r); }},
    {"YCbCrToRGB_8u_AC4R", 1, 4, 1, 4, false, [](Planes& s, Planes& d, KroiSize r) { kroiYCbCrToRGB_8u_AC4R(s.p[0], s.step, d.p[0], d.step, r); }},
    {"YCbCrToRGB_8u_P3C3R", 3, 1, 1, 3, false, [](Planes& s, Planes& d, KroiSize r) { kroiYCbCrToRGB_8u_P3C3R(s.cp.data(), s.step, d.p[0], d.step, r); }},
    {"YCbCrToBGR_8u_P3C3R", 3, 1, 1, 3, false, [](Planes& s, Planes& d, KroiSize r) { kroiYCbCrToBGR_8u_P3C3R(s.cp.data(), s.step, d.p[0], d.step, r); }},
    {"YCbCrToRGB_8u_P3R", 3, 1, 3, 1, false, [](Planes& s, Planes& d, KroiSize r) { kroiYCbCrToRGB_8u_P3R(s.cp.data(), s.step, d.p.data(), d.step, r); }},
    {"YCbCrToRGB_8u_P3C4R", 3, 1, 1, 4, false, [](Planes& s, Planes& d, KroiSize r) { kroiYCbCrToRGB_8u_P3C4R(s.cp.data(), s.step, d.p[0], d.step, r, 255); }},
    {"YCbCrToBGR_8u_P3C4R", 3, 1, 1, 4, false, [](Planes& s, Planes& d, KroiSize r) { kroiYCbCrToBGR_8u_P3C4R(s.cp.data(), s.step, d.p[0], d.step, r, 255); }},
};

int registerAll() {
    for (const Case& c : kCases) {
        const double bytes = c.inPlanes * c.inBpp + c.outPlanes * c.outBpp;
        for (kb::Res r : {kb::kHD, kb::k4K})
            for (kb::Path path : {kb::Path::Vnni, kb::Path::Plain}) {
                if (!c.paths && path == kb::Path::Plain) continue;
                if (path == kb::Path::Vnni && c.paths && !kb::cpuHasVnni()) continue;
                const std::string name = std::string(c.name) + (c.paths ? (path == kb::Path::Vnni ? "/vnni/" : "/plain/") : "/") +
                                         std::to_string(r.w) + "x" + std::to_string(r.h);
                benchmark::RegisterBenchmark(name.c_str(), [c, r, path, bytes](benchmark::State& st) {
                    Planes s(c.inPlanes, r.w * c.inBpp, r.h), d(c.outPlanes, r.w * c.outBpp, r.h);
                    kb::setPath(path);
                    for (auto _ : st) {
                        c.run(s, d, {r.w, r.h});
                        benchmark::ClobberMemory();
                    }
                    kb::setCounters(st, r.w, r.h, bytes);
                })->Unit(benchmark::kMicrosecond);
            }
    }
    // 3+3 and 4+4 bytes a pixel are registered beside the Y'UV members.
    kb::registerMemcpy("3+4 bytes/px", 7);
    return 0;
}

const int kRegistered = registerAll();

}  // namespace
