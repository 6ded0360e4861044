// RGB <-> Y'UV 4:2:2 and 4:2:0 at 1920x1080 and 3840x2160, beside memcpy of
// the same bytes. Frames have 64-byte aligned rows; "unaligned" moves the
// source one byte on, which takes the other kernel of the interleaved to
// planar 4:2:2 member.
#include <array>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "bench_common.h"

namespace {

enum class Lay { C3, A4, P3, C2, P422, P420 };

// (row bytes, rows) of each plane.
std::vector<std::array<int, 2>> planes(Lay l, int w, int h) {
    switch (l) {
        case Lay::C3: return {{3 * w, h}};
        case Lay::A4: return {{4 * w, h}};
        case Lay::P3: return {{w, h}, {w, h}, {w, h}};
        case Lay::C2: return {{2 * w, h}};
        case Lay::P422: return {{w, h}, {w / 2, h}, {w / 2, h}};
        case Lay::P420: return {{w, h}, {w / 2, h / 2}, {w / 2, h / 2}};
    }
    return {};
}

struct Frames {
    std::vector<kb::Frame> f;
    std::array<Kro8u*, 3> p{};
    std::array<int, 3> step{};
    double bytesPerPixel = 0;
    Frames(Lay l, int w, int h, int shift) {
        for (auto [rb, rows] : planes(l, w, h)) {
            f.emplace_back(rb, rows, 5 + static_cast<uint32_t>(f.size()));
            bytesPerPixel += static_cast<double>(rb) * rows / (static_cast<double>(w) * h);
        }
        for (std::size_t i = 0; i < f.size(); ++i) p[i] = f[i].data() + shift, step[i] = f[i].step;
    }
    const Kro8u* const* in() const { return const_cast<const Kro8u* const*>(p.data()); }
};

using Run = std::function<KroStatus(Frames& s, Frames& d, KroiSize)>;
struct Case {
    const char* name;
    Lay in, out;
    Run run;
    int shift = 0;
};

const std::vector<Case>& cases() {
    static const std::vector<Case> c = {
        {"RGBToYUV422_8u_C3C2R", Lay::C3, Lay::C2, [](Frames& s, Frames& d, KroiSize r) { return kroiRGBToYUV422_8u_C3C2R(s.p[0], s.step[0], d.p[0], d.step[0], r); }},
        {"RGBToYUV422_8u_C3P3R/aligned", Lay::C3, Lay::P422, [](Frames& s, Frames& d, KroiSize r) { return kroiRGBToYUV422_8u_C3P3R(s.p[0], s.step[0], d.p.data(), d.step.data(), r); }},
        {"RGBToYUV422_8u_C3P3R/unaligned", Lay::C3, Lay::P422, [](Frames& s, Frames& d, KroiSize r) { return kroiRGBToYUV422_8u_C3P3R(s.p[0], s.step[0], d.p.data(), d.step.data(), r); }, 1},
        {"RGBToYUV422_8u_P3R", Lay::P3, Lay::P422, [](Frames& s, Frames& d, KroiSize r) { return kroiRGBToYUV422_8u_P3R(s.in(), s.step[0], d.p.data(), d.step.data(), r); }},
        {"RGBToYUV422_8u_C3P3", Lay::C3, Lay::P422, [](Frames& s, Frames& d, KroiSize r) { return kroiRGBToYUV422_8u_C3P3(s.p[0], d.p.data(), r); }},
        {"RGBToYUV422_8u_P3", Lay::P3, Lay::P422, [](Frames& s, Frames& d, KroiSize r) { return kroiRGBToYUV422_8u_P3(s.in(), d.p.data(), r); }},
        {"YUV422ToRGB_8u_C2C3R", Lay::C2, Lay::C3, [](Frames& s, Frames& d, KroiSize r) { return kroiYUV422ToRGB_8u_C2C3R(s.p[0], s.step[0], d.p[0], d.step[0], r); }},
        {"YUV422ToRGB_8u_P3C3R", Lay::P422, Lay::C3, [](Frames& s, Frames& d, KroiSize r) { return kroiYUV422ToRGB_8u_P3C3R(s.in(), s.step.data(), d.p[0], d.step[0], r); }},
        {"YUV422ToRGB_8u_P3AC4R", Lay::P422, Lay::A4, [](Frames& s, Frames& d, KroiSize r) { return kroiYUV422ToRGB_8u_P3AC4R(s.in(), s.step.data(), d.p[0], d.step[0], r); }},
        {"YUV422ToRGB_8u_P3R", Lay::P422, Lay::P3, [](Frames& s, Frames& d, KroiSize r) { return kroiYUV422ToRGB_8u_P3R(s.in(), s.step.data(), d.p.data(), d.step[0], r); }},
        {"YUV422ToRGB_8u_P3C3", Lay::P422, Lay::C3, [](Frames& s, Frames& d, KroiSize r) { return kroiYUV422ToRGB_8u_P3C3(s.in(), d.p[0], r); }},
        {"YUV422ToRGB_8u_P3", Lay::P422, Lay::P3, [](Frames& s, Frames& d, KroiSize r) { return kroiYUV422ToRGB_8u_P3(s.in(), d.p.data(), r); }},
        {"RGBToYUV420_8u_P3R", Lay::P3, Lay::P420, [](Frames& s, Frames& d, KroiSize r) { return kroiRGBToYUV420_8u_P3R(s.in(), s.step[0], d.p.data(), d.step.data(), r); }},
        {"RGBToYUV420_8u_C3P3R", Lay::C3, Lay::P420, [](Frames& s, Frames& d, KroiSize r) { return kroiRGBToYUV420_8u_C3P3R(s.p[0], s.step[0], d.p.data(), d.step.data(), r); }},
        {"RGBToYUV420_8u_P3", Lay::P3, Lay::P420, [](Frames& s, Frames& d, KroiSize r) { return kroiRGBToYUV420_8u_P3(s.in(), d.p.data(), r); }},
        {"RGBToYUV420_8u_C3P3", Lay::C3, Lay::P420, [](Frames& s, Frames& d, KroiSize r) { return kroiRGBToYUV420_8u_C3P3(s.p[0], d.p.data(), r); }},
        {"BGRToYUV420_8u_AC4P3R", Lay::A4, Lay::P420, [](Frames& s, Frames& d, KroiSize r) { return kroiBGRToYUV420_8u_AC4P3R(s.p[0], s.step[0], d.p.data(), d.step.data(), r); }},
        {"YUV420ToRGB_8u_P3R", Lay::P420, Lay::P3, [](Frames& s, Frames& d, KroiSize r) { return kroiYUV420ToRGB_8u_P3R(s.in(), s.step.data(), d.p.data(), d.step[0], r); }},
        {"YUV420ToRGB_8u_P3C3R", Lay::P420, Lay::C3, [](Frames& s, Frames& d, KroiSize r) { return kroiYUV420ToRGB_8u_P3C3R(s.in(), s.step.data(), d.p[0], d.step[0], r); }},
        {"YUV420ToRGB_8u_P3AC4R", Lay::P420, Lay::A4, [](Frames& s, Frames& d, KroiSize r) { return kroiYUV420ToRGB_8u_P3AC4R(s.in(), s.step.data(), d.p[0], d.step[0], r); }},
        {"YUV420ToBGR_8u_P3C3R", Lay::P420, Lay::C3, [](Frames& s, Frames& d, KroiSize r) { return kroiYUV420ToBGR_8u_P3C3R(s.in(), s.step.data(), d.p[0], d.step[0], r); }},
        {"YUV420ToRGB_8u_P3", Lay::P420, Lay::P3, [](Frames& s, Frames& d, KroiSize r) { return kroiYUV420ToRGB_8u_P3(s.in(), d.p.data(), r); }},
        {"YUV420ToRGB_8u_P3C3", Lay::P420, Lay::C3, [](Frames& s, Frames& d, KroiSize r) { return kroiYUV420ToRGB_8u_P3C3(s.in(), d.p[0], r); }},
    };
    return c;
}

const bool registered = [] {
    std::set<double> copies;
    for (const Case& c : cases())
        for (kb::Res r : {kb::kHD, kb::k4K}) {
            const double bytes = Frames(c.in, 2, 2, 0).bytesPerPixel + Frames(c.out, 2, 2, 0).bytesPerPixel;
            if (copies.insert(bytes).second)
                kb::registerMemcpy(("yuvsub " + std::to_string(bytes).substr(0, 3) + " bytes/px").c_str(), bytes);
            const std::string name = std::string(c.name) + "/" + std::to_string(r.w) + "x" + std::to_string(r.h);
            benchmark::RegisterBenchmark(name.c_str(), [&c, r, bytes](benchmark::State& st) {
                Frames s(c.in, r.w, r.h, c.shift), d(c.out, r.w, r.h, 0);
                for (auto _ : st) {
                    if (c.run(s, d, {r.w, r.h}) < 0) st.SkipWithError("failed");
                    benchmark::ClobberMemory();
                }
                kb::setCounters(st, r.w, r.h, bytes);
            })->Unit(benchmark::kMicrosecond);
        }
    return true;
}();

}  // namespace
