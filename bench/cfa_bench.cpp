// Bayer demosaicing by CFA interpolation on a 1920x1080 mosaic, beside memcpy
// of the same bytes.
#include <string>

#include "bench_common.h"

namespace {

template <class T, class Fn>
void addCfa(const char* name, Fn fn) {
    const kb::Res r = kb::kHD;
    const double bytes = 4.0 * sizeof(T);  // one sample read, three written
    benchmark::RegisterBenchmark((std::string(name) + "/1920x1080").c_str(), [=](benchmark::State& st) {
        kb::Frame src(r.w * sizeof(T), r.h), dst(3 * r.w * sizeof(T), r.h, 2);
        for (auto _ : st) {
            if (fn(reinterpret_cast<const T*>(src.data()), KroiRect{0, 0, r.w, r.h}, KroiSize{r.w, r.h}, src.step,
                   reinterpret_cast<T*>(dst.data()), dst.step, kroiBayerGRBG) != kroOk)
                st.SkipWithError("failed");
            benchmark::ClobberMemory();
        }
        kb::setCounters(st, r.w, r.h, bytes);
    })->Unit(benchmark::kMicrosecond);
}

const bool registered = [] {
    addCfa<Kro8u>("CFAToRGB_8u_C1C3R", kroiCFAToRGB_8u_C1C3R);
    addCfa<Kro16u>("CFAToRGB_16u_C1C3R", kroiCFAToRGB_16u_C1C3R);
    kb::registerMemcpy("1+3 bytes/px", 4);
    kb::registerMemcpy("2+6 bytes/px", 8);
    return true;
}();

}  // namespace
