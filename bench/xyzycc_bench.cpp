// XYZ and YCC members at 1920x1080 beside memcpy of the same bytes;
// RGBToXYZ 8u on both paths.
#include <cstring>
#include <random>
#include <set>
#include <string>

#include "bench_common.h"

namespace {

// Float frames hold values of the unit range rather than random bits.
void unitFloats(kb::Frame& f) {
    std::mt19937 g(5);
    std::uniform_real_distribution<float> u(0.0f, 1.0f);
    auto* p = reinterpret_cast<float*>(f.data());
    for (std::size_t i = 0; i < static_cast<std::size_t>(f.step) * f.rows / 4; ++i) p[i] = u(g);
}

template <class T>
void add(const std::string& name, KroStatus (*fn)(const T*, int, T*, int, KroiSize), int stride, bool paths = false) {
    const int pixelBytes = stride * static_cast<int>(sizeof(T));
    static std::set<int> copies;
    if (copies.insert(pixelBytes).second)
        kb::registerMemcpy(("xyzycc_" + std::to_string(2 * pixelBytes) + "Bpp").c_str(), 2.0 * pixelBytes);
    for (kb::Path path : {kb::Path::Vnni, kb::Path::Plain}) {
        if (path == kb::Path::Vnni && paths && !kb::cpuHasVnni()) continue;
        if (path == kb::Path::Plain && !paths) continue;
        const kb::Res r = kb::kHD;
        const std::string full = name + (paths ? (path == kb::Path::Vnni ? "/vnni/" : "/plain/") : "/") + std::to_string(r.w) + "x" +
                                 std::to_string(r.h);
        benchmark::RegisterBenchmark(full.c_str(), [=](benchmark::State& st) {
            kb::Frame in(static_cast<std::size_t>(r.w) * pixelBytes, r.h), out(static_cast<std::size_t>(r.w) * pixelBytes, r.h, 2);
            if constexpr (std::is_same_v<T, Kro32f>) unitFloats(in);
            kb::setPath(path);
            for (auto _ : st) {
                if (fn(reinterpret_cast<const T*>(in.data()), in.step, reinterpret_cast<T*>(out.data()), out.step, {r.w, r.h}) != kroOk)
                    st.SkipWithError("failed");
                benchmark::ClobberMemory();
            }
            kb::setCounters(st, r.w, r.h, 2.0 * pixelBytes);
        })->Unit(benchmark::kMicrosecond);
    }
}

const bool registered = [] {
    add("RGBToXYZ_8u_C3R", kroiRGBToXYZ_8u_C3R, 3, true);
    add("RGBToXYZ_8u_AC4R", kroiRGBToXYZ_8u_AC4R, 4, true);
    add("RGBToXYZ_16u_C3R", kroiRGBToXYZ_16u_C3R, 3);
    add("RGBToXYZ_16u_AC4R", kroiRGBToXYZ_16u_AC4R, 4);
    add("RGBToXYZ_16s_C3R", kroiRGBToXYZ_16s_C3R, 3);
    add("RGBToXYZ_16s_AC4R", kroiRGBToXYZ_16s_AC4R, 4);
    add("RGBToXYZ_32f_C3R", kroiRGBToXYZ_32f_C3R, 3);
    add("RGBToXYZ_32f_AC4R", kroiRGBToXYZ_32f_AC4R, 4);
    add("XYZToRGB_8u_C3R", kroiXYZToRGB_8u_C3R, 3);
    add("XYZToRGB_8u_AC4R", kroiXYZToRGB_8u_AC4R, 4);
    add("XYZToRGB_16u_C3R", kroiXYZToRGB_16u_C3R, 3);
    add("XYZToRGB_16u_AC4R", kroiXYZToRGB_16u_AC4R, 4);
    add("XYZToRGB_16s_C3R", kroiXYZToRGB_16s_C3R, 3);
    add("XYZToRGB_16s_AC4R", kroiXYZToRGB_16s_AC4R, 4);
    add("XYZToRGB_32f_C3R", kroiXYZToRGB_32f_C3R, 3);
    add("XYZToRGB_32f_AC4R", kroiXYZToRGB_32f_AC4R, 4);
    add("RGBToYCC_8u_C3R", kroiRGBToYCC_8u_C3R, 3);
    add("RGBToYCC_8u_AC4R", kroiRGBToYCC_8u_AC4R, 4);
    add("RGBToYCC_16u_C3R", kroiRGBToYCC_16u_C3R, 3);
    add("RGBToYCC_16u_AC4R", kroiRGBToYCC_16u_AC4R, 4);
    add("RGBToYCC_16s_C3R", kroiRGBToYCC_16s_C3R, 3);
    add("RGBToYCC_16s_AC4R", kroiRGBToYCC_16s_AC4R, 4);
    add("RGBToYCC_32f_C3R", kroiRGBToYCC_32f_C3R, 3);
    add("RGBToYCC_32f_AC4R", kroiRGBToYCC_32f_AC4R, 4);
    add("YCCToRGB_8u_C3R", kroiYCCToRGB_8u_C3R, 3);
    add("YCCToRGB_8u_AC4R", kroiYCCToRGB_8u_AC4R, 4);
    add("YCCToRGB_16u_C3R", kroiYCCToRGB_16u_C3R, 3);
    add("YCCToRGB_16u_AC4R", kroiYCCToRGB_16u_AC4R, 4);
    add("YCCToRGB_16s_C3R", kroiYCCToRGB_16s_C3R, 3);
    add("YCCToRGB_16s_AC4R", kroiYCCToRGB_16s_AC4R, 4);
    add("YCCToRGB_32f_C3R", kroiYCCToRGB_32f_C3R, 3);
    add("YCCToRGB_32f_AC4R", kroiYCCToRGB_32f_AC4R, 4);
    return true;
}();

}  // namespace
