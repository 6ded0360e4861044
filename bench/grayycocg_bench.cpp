// Gray and YCoCg members on 1920x1080 frames, beside memcpy of the same bytes.
#include <functional>
#include <set>
#include <string>

#include "bench_common.h"

namespace {

using Call = std::function<KroStatus(kb::Frame& in, kb::Frame* out, int nOut, KroiSize roi)>;

// A member reading `inBytes` and writing `outBytes` per pixel, into `nOut`
// frames of `outBytes / nOut` bytes a pixel.
void add(const std::string& name, int inBytes, int outBytes, int nOut, Call call) {
    static std::set<int> copies;
    if (copies.insert(inBytes + outBytes).second)
        kb::registerMemcpy(("gray_ycocg_" + std::to_string(inBytes + outBytes) + "Bpp").c_str(), inBytes + outBytes);
    const kb::Res r = kb::kHD;
    benchmark::RegisterBenchmark((name + "/1920x1080").c_str(), [=](benchmark::State& st) {
        kb::Frame in(static_cast<std::size_t>(r.w) * inBytes, r.h);
        std::vector<kb::Frame> out;
        for (int i = 0; i < nOut; ++i) out.emplace_back(static_cast<std::size_t>(r.w) * outBytes / nOut, r.h, 2 + i);
        for (auto _ : st) {
            if (call(in, out.data(), nOut, {r.w, r.h}) != kroOk) st.SkipWithError("failed");
            benchmark::ClobberMemory();
        }
        kb::setCounters(st, r.w, r.h, inBytes + outBytes);
    })->Unit(benchmark::kMicrosecond);
}

// Interleaved to interleaved.
template <class Ts, class Td, class... Extra>
void addII(const std::string& name, KroStatus (*fn)(const Ts*, int, Td*, int, KroiSize, Extra...), int sIn, int sOut, Extra... extra) {
    add(name, sIn * int(sizeof(Ts)), sOut * int(sizeof(Td)), 1, [=](kb::Frame& in, kb::Frame* out, int, KroiSize roi) {
        return fn(reinterpret_cast<const Ts*>(in.data()), in.step, reinterpret_cast<Td*>(out[0].data()), out[0].step, roi, extra...);
    });
}

// Interleaved to three planes.
template <class Ts, class Tp>
void addIP(const std::string& name, KroStatus (*fn)(const Ts*, int, Tp**, int, KroiSize), int sIn) {
    add(name, sIn * int(sizeof(Ts)), 3 * int(sizeof(Tp)), 3, [=](kb::Frame& in, kb::Frame* out, int, KroiSize roi) {
        Tp* p[3] = {reinterpret_cast<Tp*>(out[0].data()), reinterpret_cast<Tp*>(out[1].data()), reinterpret_cast<Tp*>(out[2].data())};
        return fn(reinterpret_cast<const Ts*>(in.data()), in.step, p, out[0].step, roi);
    });
}

// Three planes to interleaved: the planes are the `in` frame cut in three.
template <class Tp, class Td, class... Extra>
void addPI(const std::string& name, KroStatus (*fn)(const Tp**, int, Td*, int, KroiSize, Extra...), int sOut, Extra... extra) {
    add(name, 3 * int(sizeof(Tp)), sOut * int(sizeof(Td)), 1, [=](kb::Frame& in, kb::Frame* out, int, KroiSize roi) {
        const std::size_t planeRow = (roi.width * sizeof(Tp) + 63) / 64 * 64;
        const Tp* p[3];
        for (int i = 0; i < 3; ++i) p[i] = reinterpret_cast<const Tp*>(in.data() + i * planeRow);
        return fn(p, in.step, reinterpret_cast<Td*>(out[0].data()), out[0].step, roi, extra...);
    });
}

const bool registered = [] {
    addII("RGBToGray_8u_C3C1R", kroiRGBToGray_8u_C3C1R, 3, 1);
    addII("RGBToGray_8u_AC4C1R", kroiRGBToGray_8u_AC4C1R, 4, 1);
    addII("ColorToGray_8u_C3C1R", kroiColorToGray_8u_C3C1R, 3, 1, static_cast<const Kro32f*>(nullptr));
    addII("RGBToGray_16u_C3C1R", kroiRGBToGray_16u_C3C1R, 3, 1);
    addII("RGBToGray_16u_AC4C1R", kroiRGBToGray_16u_AC4C1R, 4, 1);
    addII("RGBToGray_16s_C3C1R", kroiRGBToGray_16s_C3C1R, 3, 1);
    addII("RGBToGray_32f_C3C1R", kroiRGBToGray_32f_C3C1R, 3, 1);
    addII("RGBToGray_32f_AC4C1R", kroiRGBToGray_32f_AC4C1R, 4, 1);
    addII("ColorToGray_64f_C3C1R", kroiColorToGray_64f_C3C1R, 3, 1, static_cast<const Kro64f*>(nullptr));
    addII("GrayToRGB_8u_C1C3R", kroiGrayToRGB_8u_C1C3R, 1, 3);
    addII("GrayToRGB_8u_C1C4R", kroiGrayToRGB_8u_C1C4R, 1, 4, Kro8u(255));
    addII("GrayToRGB_16u_C1C3R", kroiGrayToRGB_16u_C1C3R, 1, 3);
    addII("GrayToRGB_16u_C1C4R", kroiGrayToRGB_16u_C1C4R, 1, 4, Kro16u(1));
    addII("GrayToRGB_32f_C1C3R", kroiGrayToRGB_32f_C1C3R, 1, 3);
    addII("GrayToRGB_32f_C1C4R", kroiGrayToRGB_32f_C1C4R, 1, 4, Kro32f(1));
    addII("YCbCr422ToGray_8u_C2C1R", kroiYCbCr422ToGray_8u_C2C1R, 2, 1);

    addIP("BGRToYCoCg_8u16s_C3P3R", kroiBGRToYCoCg_8u16s_C3P3R, 3);
    addIP("BGRToYCoCg_8u16s_C4P3R", kroiBGRToYCoCg_8u16s_C4P3R, 4);
    addIP("BGRToYCoCg_Rev_8u16s_C3P3R", kroiBGRToYCoCg_Rev_8u16s_C3P3R, 3);
    addIP("BGRToYCoCg_Rev_8u16s_C4P3R", kroiBGRToYCoCg_Rev_8u16s_C4P3R, 4);
    addIP("RGBToYCoCg_8u_C3P3R", kroiRGBToYCoCg_8u_C3P3R, 3);
    addIP("SBGRToYCoCg_16s_C3P3R", kroiSBGRToYCoCg_16s_C3P3R, 3);
    addIP("SBGRToYCoCg_16s_C4P3R", kroiSBGRToYCoCg_16s_C4P3R, 4);
    addIP("SBGRToYCoCg_16s32s_C3P3R", kroiSBGRToYCoCg_16s32s_C3P3R, 3);
    addIP("SBGRToYCoCg_16s32s_C4P3R", kroiSBGRToYCoCg_16s32s_C4P3R, 4);
    addIP("SBGRToYCoCg_Rev_16s_C3P3R", kroiSBGRToYCoCg_Rev_16s_C3P3R, 3);
    addIP("SBGRToYCoCg_Rev_16s_C4P3R", kroiSBGRToYCoCg_Rev_16s_C4P3R, 4);
    addIP("SBGRToYCoCg_Rev_16s32s_C3P3R", kroiSBGRToYCoCg_Rev_16s32s_C3P3R, 3);
    addIP("SBGRToYCoCg_Rev_16s32s_C4P3R", kroiSBGRToYCoCg_Rev_16s32s_C4P3R, 4);

    addPI("YCoCgToBGR_16s8u_P3C3R", kroiYCoCgToBGR_16s8u_P3C3R, 3);
    addPI("YCoCgToBGR_16s8u_P3C4R", kroiYCoCgToBGR_16s8u_P3C4R, 4, Kro8u(255));
    addPI("YCoCgToBGR_Rev_16s8u_P3C3R", kroiYCoCgToBGR_Rev_16s8u_P3C3R, 3);
    addPI("YCoCgToBGR_Rev_16s8u_P3C4R", kroiYCoCgToBGR_Rev_16s8u_P3C4R, 4, Kro8u(255));
    addPI("YCoCgToRGB_8u_P3C3R", kroiYCoCgToRGB_8u_P3C3R, 3);
    addPI("YCoCgToSBGR_16s_P3C3R", kroiYCoCgToSBGR_16s_P3C3R, 3);
    addPI("YCoCgToSBGR_16s_P3C4R", kroiYCoCgToSBGR_16s_P3C4R, 4, Kro16s(1));
    addPI("YCoCgToSBGR_32s16s_P3C3R", kroiYCoCgToSBGR_32s16s_P3C3R, 3);
    addPI("YCoCgToSBGR_32s16s_P3C4R", kroiYCoCgToSBGR_32s16s_P3C4R, 4, Kro16s(1));
    addPI("YCoCgToSBGR_Rev_16s_P3C3R", kroiYCoCgToSBGR_Rev_16s_P3C3R, 3);
    addPI("YCoCgToSBGR_Rev_16s_P3C4R", kroiYCoCgToSBGR_Rev_16s_P3C4R, 4, Kro16s(1));
    addPI("YCoCgToSBGR_Rev_32s16s_P3C3R", kroiYCoCgToSBGR_Rev_32s16s_P3C3R, 3);
    addPI("YCoCgToSBGR_Rev_32s16s_P3C4R", kroiYCoCgToSBGR_Rev_32s16s_P3C4R, 4, Kro16s(1));
    return true;
}();

}  // namespace
