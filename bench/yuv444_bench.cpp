// RGB <-> Y'UV 4:4:4 at 1920x1080 and 3840x2160, on both paths, beside memcpy.
#include <array>
#include <functional>
#include <string>

#include "bench_common.h"

namespace {

// Source and destination planes of one frame; p[i] are row-aligned planes.
struct Planes {
    std::vector<kb::Frame> f;
    std::array<Kro8u*, 4> p{};
    int step = 0;
    Planes(int planes, int rowBytes, int rows) {
        for (int i = 0; i < planes; ++i) f.emplace_back(rowBytes, rows, 7 + i);
        for (int i = 0; i < planes; ++i) p[i] = f[i].data();
        step = f[0].step;
    }
};

struct Case {
    const char* name;
    int inPlanes, inBpp, outPlanes, outBpp;
    bool paths;
    std::function<void(Planes&, Planes&, KroiSize)> run;
};

const Kro8u* const* cp(Planes& p) { return const_cast<const Kro8u* const*>(reinterpret_cast<Kro8u* const*>(p.p.data())); }

const std::vector<Case> kCases = {
    {"RGBToYUV_8u_C3R", 1, 3, 1, 3, true, [](Planes& s, Planes& d, KroiSize r) { kroiRGBToYUV_8u_C3R(s.p[0], s.step, d.p[0], d.step, r); }},
    {"RGBToYUV_8u_AC4R", 1, 4, 1, 4, true, [](Planes& s, Planes& d, KroiSize r) { kroiRGBToYUV_8u_AC4R(s.p[0], s.step, d.p[0], d.step, r); }},
    {"RGBToYUV_8u_C3P3R", 1, 3, 3, 1, false, [](Planes& s, Planes& d, KroiSize r) { kroiRGBToYUV_8u_C3P3R(s.p[0], s.step, d.p.data(), d.step, r); }},
    {"RGBToYUV_8u_P3R", 3, 1, 3, 1, false, [](Planes& s, Planes& d, KroiSize r) { kroiRGBToYUV_8u_P3R(cp(s), s.step, d.p.data(), d.step, r); }},
    {"RGBToYUV_8u_AC4P4R", 1, 4, 4, 1, false, [](Planes& s, Planes& d, KroiSize r) { kroiRGBToYUV_8u_AC4P4R(s.p[0], s.step, d.p.data(), d.step, r); }},
    {"YUVToRGB_8u_C3R", 1, 3, 1, 3, true, [](Planes& s, Planes& d, KroiSize r) { kroiYUVToRGB_8u_C3R(s.p[0], s.step, d.p[0], d.step, r); }},
    {"YUVToRGB_8u_AC4R", 1, 4, 1, 4, true, [](Planes& s, Planes& d, KroiSize r) { kroiYUVToRGB_8u_AC4R(s.p[0], s.step, d.p[0], d.step, r); }},
    {"YUVToRGB_8u_C3C4R", 1, 3, 1, 4, false, [](Planes& s, Planes& d, KroiSize r) { kroiYUVToRGB_8u_C3C4R(s.p[0], s.step, d.p[0], d.step, r, 255); }},
    {"YUVToRGB_8u_P3C3R", 3, 1, 1, 3, false, [](Planes& s, Planes& d, KroiSize r) { kroiYUVToRGB_8u_P3C3R(cp(s), s.step, d.p[0], d.step, r); }},
    {"YUVToRGB_8u_P3R", 3, 1, 3, 1, false, [](Planes& s, Planes& d, KroiSize r) { kroiYUVToRGB_8u_P3R(cp(s), s.step, d.p.data(), d.step, r); }},
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
    kb::registerMemcpy("3+3 bytes/px", 6);
    kb::registerMemcpy("4+4 bytes/px", 8);
    return 0;
}

const int kRegistered = registerAll();

}  // namespace
