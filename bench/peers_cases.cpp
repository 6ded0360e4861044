// The cases of krocc_peers: each of our conversions with the nearest peer
// conversions. This list is the one place to keep: a case whose function
// krocc.h does not declare yet is skipped, and switches on by itself when the
// family lands.
#include <dlfcn.h>

#include <cmath>
#include <sstream>

#include "peers.h"

#ifdef KROCC_PEER_LIBYUV
#include <libyuv.h>
#endif
#ifdef KROCC_PEER_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/core/ocl.hpp>
#include <opencv2/imgproc.hpp>
#endif
#ifdef KROCC_PEER_SWSCALE
extern "C" {
#include <libavutil/opt.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}
#endif

namespace kp {
namespace {

template <class F>
Impl peer(std::string name, Fmt in, Fmt out, const Fill& fill, F f, bool ceiling = false) {
    return Impl{std::move(name), in, out, fill,
                [f](int w, int h) -> Run { return [f, w, h](Buf& i, Buf& o) { return f(i, o, w, h); }; }, ceiling};
}

// ------------------------------------------------------------------ OpenCV

#ifdef KROCC_PEER_OPENCV
cv::Mat asMat(Buf& b, Fmt f, int w, int h) {
    switch (f) {
        case Fmt::RGB: return cv::Mat(h, w, CV_8UC3, b.p[0], b.step[0]);
        case Fmt::RGBA: return cv::Mat(h, w, CV_8UC4, b.p[0], b.step[0]);
        case Fmt::Gray: return cv::Mat(h, w, CV_8UC1, b.p[0], b.step[0]);
        case Fmt::YUY2: return cv::Mat(h, w, CV_8UC2, b.p[0], b.step[0]);
        case Fmt::I420Packed: return cv::Mat(h + h / 2, w, CV_8UC1, b.p[0], b.step[0]);
        case Fmt::RGB16: return cv::Mat(h, w, CV_16UC3, b.p[0], b.step[0]);
        case Fmt::Gray16: return cv::Mat(h, w, CV_16UC1, b.p[0], b.step[0]);
        case Fmt::RGB32F: return cv::Mat(h, w, CV_32FC3, b.p[0], b.step[0]);
        case Fmt::Gray32F: return cv::Mat(h, w, CV_32FC1, b.p[0], b.step[0]);
        default: return cv::Mat();
    }
}

// cvtColor into our buffer; an OpenCV that reallocated the destination did not
// convert into it, and the pairing fails rather than timing an allocation.
Impl cvPeer(const char* name, int code, Fmt in, Fmt out, const Fill& fill) {
    return peer(std::string("opencv ") + name, in, out, fill, [code, in, out](Buf& i, Buf& o, int w, int h) {
        cv::Mat d = asMat(o, out, w, h);
        if (in == Fmt::NV12)
            cv::cvtColorTwoPlane(cv::Mat(h, w, CV_8UC1, i.p[0], i.step[0]), cv::Mat(h / 2, w / 2, CV_8UC2, i.p[1], i.step[1]), d, code);
        else
            cv::cvtColor(asMat(i, in, w, h), d, code);
        return d.data == o.p[0] ? 0 : -1;
    });
}

// Gamma by table: cv::LUT with the forward or inverse curve of the library.
Impl cvLut(bool forward, const Fill& fill) {
    auto table = std::make_shared<cv::Mat>(1, 256, CV_8UC1);
    for (int i = 0; i < 256; ++i) {
        const double x = i / 255.0;
        const double v = forward ? (x < 0.018 ? 4.5 * x : 1.099 * std::pow(x, 0.45) - 0.099)
                                 : (x < 0.0812 ? x / 4.5 : std::pow((x + 0.099) / 1.099, 1 / 0.45));
        table->at<uchar>(i) = cv::saturate_cast<uchar>(std::lround(255 * v));
    }
    return peer("opencv LUT", Fmt::RGB, Fmt::RGB, fill, [table](Buf& i, Buf& o, int w, int h) {
        cv::Mat d = asMat(o, Fmt::RGB, w, h);
        cv::LUT(asMat(i, Fmt::RGB, w, h), *table, d);
        return d.data == o.p[0] ? 0 : -1;
    });
}

// Usable when the build carries no vendor-optimised primitives backend.
PeerInfo openCvInfo() {
    const std::string build = cv::getBuildInformation();
    std::istringstream lines(build);
    std::string line, vendor;
    while (std::getline(lines, line)) {
        const auto colon = line.find(':');
        if (colon == std::string::npos) continue;
        std::string k = line.substr(0, colon), v = line.substr(colon + 1);
        v.erase(0, v.find_first_not_of(" \t"));
        const bool no = v.empty() || v.rfind("NO", 0) == 0;
        if ((k.find("IPP") != std::string::npos || k.find("Custom HAL") != std::string::npos) && !no)
            vendor += (vendor.empty() ? "" : ", ") + k.substr(k.find_first_not_of(" \t")) + ": " + v;
    }
    if (!vendor.empty()) return {"OpenCV " CV_VERSION, false, "build information names a vendor primitives backend (" + vendor + ")"};
    cv::setNumThreads(1);
    cv::ocl::setUseOpenCL(false);
    return {"OpenCV " CV_VERSION, true,
            "no IPP and no custom HAL in its build information; cv::setNumThreads(1), getNumThreads() = " +
                std::to_string(cv::getNumThreads()) + "; dispatched code: AVX2/AVX-512 as built"};
}
#endif

// ------------------------------------------------------------------ swscale

#ifdef KROCC_PEER_SWSCALE
Impl swsPeer(AVPixelFormat sf, Fmt in, AVPixelFormat df, Fmt out, const Fill& fill) {
    std::string name = std::string("swscale ") + av_get_pix_fmt_name(sf) + ">" + av_get_pix_fmt_name(df);
    Make make = [sf, df](int w, int h) -> Run {
        SwsContext* c = sws_alloc_context();
        av_opt_set_int(c, "srcw", w, 0);
        av_opt_set_int(c, "srch", h, 0);
        av_opt_set_int(c, "src_format", sf, 0);
        av_opt_set_int(c, "dstw", w, 0);
        av_opt_set_int(c, "dsth", h, 0);
        av_opt_set_int(c, "dst_format", df, 0);
        av_opt_set_int(c, "sws_flags", SWS_BILINEAR, 0);
        av_opt_set_int(c, "threads", 1, 0);  // absent before swscale 6.1: then it has no threads anyway
        if (sws_init_context(c, nullptr, nullptr) < 0) {
            sws_freeContext(c);
            return nullptr;
        }
        std::shared_ptr<SwsContext> ctx(c, sws_freeContext);
        return [ctx, h](Buf& i, Buf& o) {
            const int r = sws_scale(ctx.get(), reinterpret_cast<const uint8_t* const*>(i.p), i.step, 0, h,
                                    reinterpret_cast<uint8_t* const*>(o.p), o.step);
            return r == h ? 0 : -1;
        };
    };
    return Impl{name, in, out, fill, make, false};
}
#endif

// ------------------------------------------------------------------ the list

struct Builder {
    Cases cs;
    Fill fill;
    bool on = false;

    void add(const char* fn, Make ours, Fmt in, Fmt out, const Fill& f = Fill{}) {
        fill = f;
        const std::string name = fn + 4;
        on = static_cast<bool>(ours);
        if (on) cs.present.push_back(Case{name, Impl{"ours", in, out, f, std::move(ours), false}, {}});
        else if (dlsym(RTLD_DEFAULT, fn)) cs.mismatched.push_back(name);
        else cs.waiting.push_back(name);
    }
    void with(Impl p) {
        if (on && p.make) cs.present.back().peers.push_back(std::move(p));
    }
};

}  // namespace

// Arguments of a libyuv call: one packed buffer, two planes, three planes.
#define A_C(b) b.u8(0), b.s(0)
#define A_P2(b) b.u8(0), b.s(0), b.u8(1), b.s(1)
#define A_P3(b) b.u8(0), b.s(0), b.u8(1), b.s(1), b.u8(2), b.s(2)

#define CASE(fn, inF, outF, ...) b.add(#fn, KP_OURS(fn, __VA_ARGS__), Fmt::inF, Fmt::outF)
#define CASEF(fn, inF, outF, fill, ...) b.add(#fn, KP_OURS(fn, __VA_ARGS__), Fmt::inF, Fmt::outF, fill)

#ifdef KROCC_PEER_LIBYUV
#define LY(fn, inF, outF, ...) \
    b.with(peer("libyuv " #fn, Fmt::inF, Fmt::outF, b.fill, [](Buf& i, Buf& o, int w, int h) { return libyuv::fn(__VA_ARGS__); }))
#define LY_CEIL(fn, inF, outF, ...)                                                                                    \
    b.with(peer("libyuv " #fn, Fmt::inF, Fmt::outF, b.fill, [](Buf& i, Buf& o, int w, int h) { return libyuv::fn(__VA_ARGS__); }, \
                true))
#else
#define LY(...)
#define LY_CEIL(...)
#endif

#ifdef KROCC_PEER_OPENCV
#define CV(code, inF, outF) \
    if (cvOk) b.with(cvPeer(#code, cv::code, Fmt::inF, Fmt::outF, b.fill))
#define CVF(code, inF, outF, fill) \
    if (cvOk) b.with(cvPeer(#code, cv::code, Fmt::inF, Fmt::outF, fill))
#define CV_LUT(fwd) \
    if (cvOk) b.with(cvLut(fwd, b.fill))
#else
#define CV(...)
#define CVF(...)
#define CV_LUT(...)
#endif

#ifdef KROCC_PEER_SWSCALE
#define SWS(sf, inF, df, outF) b.with(swsPeer(AV_PIX_FMT_##sf, Fmt::inF, AV_PIX_FMT_##df, Fmt::outF, b.fill))
#else
#define SWS(...)
#endif

// Our argument lists, by shape.
#define O_CC in.ptr(0), in.s(0), out.ptr(0), out.s(0), roi

Cases buildCases() {
    Builder b;
#ifdef KROCC_PEER_OPENCV
    const bool cvOk = [] {
        for (const PeerInfo& p : peerInfo())
            if (p.name.rfind("OpenCV", 0) == 0) return p.usable;
        return false;
    }();
#endif

    // RGB <-> Y'UV 4:4:4
    CASE(kroiRGBToYUV_8u_C3R, RGB, RGB, O_CC);
    CV(COLOR_RGB2YUV, RGB, RGB);
    CASE(kroiYUVToRGB_8u_C3R, RGB, RGB, O_CC);
    CV(COLOR_YUV2RGB, RGB, RGB);
    CASE(kroiRGBToYUV_8u_C3P3R, RGB, P3, in.ptr(0), in.s(0), out.planes(), out.s(0), roi);
    SWS(RGB24, RGB, YUV444P, P3);
    CASE(kroiYUVToRGB_8u_P3C3R, P3, RGB, in.planes(), in.s(0), out.ptr(0), out.s(0), roi);
    LY(I444ToRAW, P3, RGB, A_P3(i), A_C(o), w, h);
    SWS(YUV444P, P3, RGB24, RGB);

    // RGB <-> Y'UV 4:2:2
    CASE(kroiRGBToYUV422_8u_C3C2R, RGB, YUY2, O_CC);
    LY(ARGBToYUY2, RGBA, YUY2, A_C(i), A_C(o), w, h);
    SWS(RGB24, RGB, YUYV422, YUY2);
    CASE(kroiYUV422ToRGB_8u_C2C3R, YUY2, RGB, O_CC);
    CV(COLOR_YUV2RGB_YUY2, YUY2, RGB);
    LY_CEIL(YUY2ToARGB, YUY2, RGBA, A_C(i), A_C(o), w, h);
    SWS(YUYV422, YUY2, RGB24, RGB);
    CASE(kroiRGBToYUV422_8u_C3P3R, RGB, I422, in.ptr(0), in.s(0), out.planes(), out.steps(), roi);
    SWS(RGB24, RGB, YUV422P, I422);
    CASE(kroiYUV422ToRGB_8u_P3C3R, I422, RGB, in.planes(), in.steps(), out.ptr(0), out.s(0), roi);
    LY(I422ToRAW, I422, RGB, A_P3(i), A_C(o), w, h);
    SWS(YUV422P, I422, RGB24, RGB);

    // RGB <-> Y'UV 4:2:0
    CASE(kroiRGBToYUV420_8u_C3P3R, RGB, I420, in.ptr(0), in.s(0), out.planes(), out.steps(), roi);
    LY(RAWToJ420, RGB, I420, A_C(i), A_P3(o), w, h);
    LY(RAWToI420, RGB, I420, A_C(i), A_P3(o), w, h);
    CV(COLOR_RGB2YUV_I420, RGB, I420Packed);
    SWS(RGB24, RGB, YUV420P, I420);
    CASE(kroiBGRToYUV420_8u_AC4P3R, RGBA, I420, in.ptr(0), in.s(0), out.planes(), out.steps(), roi);
    LY(ARGBToJ420, RGBA, I420, A_C(i), A_P3(o), w, h);
    LY(ARGBToI420, RGBA, I420, A_C(i), A_P3(o), w, h);
    CV(COLOR_BGRA2YUV_I420, RGBA, I420Packed);
    SWS(BGRA, RGBA, YUV420P, I420);
    CASE(kroiYUV420ToRGB_8u_P3C3R, I420, RGB, in.planes(), in.steps(), out.ptr(0), out.s(0), roi);
    LY(J420ToRAW, I420, RGB, A_P3(i), A_C(o), w, h);
    LY(I420ToRAW, I420, RGB, A_P3(i), A_C(o), w, h);
    CV(COLOR_YUV2RGB_I420, I420Packed, RGB);
    SWS(YUV420P, I420, RGB24, RGB);
    CASE(kroiYUV420ToBGR_8u_P3C3R, I420, RGB, in.planes(), in.steps(), out.ptr(0), out.s(0), roi);
    LY(J420ToRGB24, I420, RGB, A_P3(i), A_C(o), w, h);
    LY(I420ToRGB24, I420, RGB, A_P3(i), A_C(o), w, h);
    CV(COLOR_YUV2BGR_I420, I420Packed, RGB);
    SWS(YUV420P, I420, BGR24, RGB);
    CASE(kroiYUV420ToRGB_8u_P3AC4R, I420, RGBA, in.planes(), in.steps(), out.ptr(0), out.s(0), roi);
    LY(I420ToABGR, I420, RGBA, A_P3(i), A_C(o), w, h);
    CV(COLOR_YUV2RGBA_I420, I420Packed, RGBA);
    SWS(YUV420P, I420, RGBA, RGBA);

    // RGB <-> YCbCr 4:4:4
    CASE(kroiRGBToYCbCr_8u_C3R, RGB, RGB, O_CC);
    CV(COLOR_RGB2YCrCb, RGB, RGB);
    CASE(kroiYCbCrToRGB_8u_C3R, RGB, RGB, O_CC);
    CV(COLOR_YCrCb2RGB, RGB, RGB);
    CASE(kroiRGBToYCbCr_8u_C3P3R, RGB, P3, in.ptr(0), in.s(0), out.planes(), out.s(0), roi);
    SWS(RGB24, RGB, YUV444P, P3);
    CASE(kroiYCbCrToRGB_8u_P3C3R, P3, RGB, in.planes(), in.s(0), out.ptr(0), out.s(0), roi);
    LY(I444ToRAW, P3, RGB, A_P3(i), A_C(o), w, h);
    SWS(YUV444P, P3, RGB24, RGB);
    CASE(kroiYCbCrToBGR_8u_P3C3R, P3, RGB, in.planes(), in.s(0), out.ptr(0), out.s(0), roi);
    LY(I444ToRGB24, P3, RGB, A_P3(i), A_C(o), w, h);
    SWS(YUV444P, P3, BGR24, RGB);

    // RGB to subsampled YCbCr
    CASE(kroiRGBToYCbCr420_8u_C3P3R, RGB, I420, in.ptr(0), in.s(0), out.planes(), out.steps(), roi);
    LY(RAWToI420, RGB, I420, A_C(i), A_P3(o), w, h);
    CV(COLOR_RGB2YUV_I420, RGB, I420Packed);
    SWS(RGB24, RGB, YUV420P, I420);
    CASE(kroiBGRToYCbCr420_8u_C3P3R, RGB, I420, in.ptr(0), in.s(0), out.planes(), out.steps(), roi);
    LY(RGB24ToI420, RGB, I420, A_C(i), A_P3(o), w, h);
    CV(COLOR_BGR2YUV_I420, RGB, I420Packed);
    SWS(BGR24, RGB, YUV420P, I420);
    CASE(kroiBGRToYCbCr420_8u_AC4P3R, RGBA, I420, in.ptr(0), in.s(0), out.planes(), out.steps(), roi);
    LY(ARGBToI420, RGBA, I420, A_C(i), A_P3(o), w, h);
    CV(COLOR_BGRA2YUV_I420, RGBA, I420Packed);
    SWS(BGRA, RGBA, YUV420P, I420);
    CASE(kroiRGBToYCbCr420_8u_C3P2R, RGB, NV12, in.ptr(0), in.s(0), out.ptr(0), out.s(0), out.ptr(1), out.s(1), roi);
    SWS(RGB24, RGB, NV12, NV12);
    CASE(kroiBGRToYCbCr420_8u_C3P2R, RGB, NV12, in.ptr(0), in.s(0), out.ptr(0), out.s(0), out.ptr(1), out.s(1), roi);
    SWS(BGR24, RGB, NV12, NV12);
    CASE(kroiBGRToYCbCr420_8u_AC4P2R, RGBA, NV12, in.ptr(0), in.s(0), out.ptr(0), out.s(0), out.ptr(1), out.s(1), roi);
    LY(ARGBToNV12, RGBA, NV12, A_C(i), A_P2(o), w, h);
    SWS(BGRA, RGBA, NV12, NV12);
    CASE(kroiRGBToYCbCr422_8u_C3C2R, RGB, YUY2, O_CC);
    LY(ARGBToYUY2, RGBA, YUY2, A_C(i), A_C(o), w, h);
    SWS(RGB24, RGB, YUYV422, YUY2);
    CASE(kroiBGRToYCbCr422_8u_AC4C2R, RGBA, YUY2, O_CC);
    LY(ARGBToYUY2, RGBA, YUY2, A_C(i), A_C(o), w, h);
    SWS(BGRA, RGBA, YUYV422, YUY2);
    CASE(kroiBGRToCbYCr422_8u_AC4C2R, RGBA, YUY2, O_CC);
    LY(ARGBToUYVY, RGBA, YUY2, A_C(i), A_C(o), w, h);
    SWS(BGRA, RGBA, UYVY422, YUY2);
    CASE(kroiRGBToYCbCr422_8u_C3P3R, RGB, I422, in.ptr(0), in.s(0), out.planes(), out.steps(), roi);
    SWS(RGB24, RGB, YUV422P, I422);

    // Subsampled YCbCr to RGB
    CASE(kroiYCbCr420ToRGB_8u_P3C3R, I420, RGB, in.planes(), in.steps(), out.ptr(0), out.s(0), roi);
    LY(I420ToRAW, I420, RGB, A_P3(i), A_C(o), w, h);
    CV(COLOR_YUV2RGB_I420, I420Packed, RGB);
    SWS(YUV420P, I420, RGB24, RGB);
    CASE(kroiYCbCr420ToBGR_8u_P3C3R, I420, RGB, in.planes(), in.steps(), out.ptr(0), out.s(0), roi);
    LY(I420ToRGB24, I420, RGB, A_P3(i), A_C(o), w, h);
    CV(COLOR_YUV2BGR_I420, I420Packed, RGB);
    SWS(YUV420P, I420, BGR24, RGB);
    CASE(kroiYCbCr420ToRGB_8u_P2C3R, NV12, RGB, in.ptr(0), in.s(0), in.ptr(1), in.s(1), out.ptr(0), out.s(0), roi);
    LY(NV12ToRAW, NV12, RGB, A_P2(i), A_C(o), w, h);
    CV(COLOR_YUV2RGB_NV12, NV12, RGB);
    SWS(NV12, NV12, RGB24, RGB);
    CASE(kroiYCbCr420ToBGR_8u_P2C3R, NV12, RGB, in.ptr(0), in.s(0), in.ptr(1), in.s(1), out.ptr(0), out.s(0), roi);
    LY(NV12ToRGB24, NV12, RGB, A_P2(i), A_C(o), w, h);
    CV(COLOR_YUV2BGR_NV12, NV12, RGB);
    SWS(NV12, NV12, BGR24, RGB);
    CASE(kroiYCbCr420ToBGR_8u_P2C4R, NV12, RGBA, in.ptr(0), in.s(0), in.ptr(1), in.s(1), out.ptr(0), out.s(0), roi, 255);
    LY(NV12ToARGB, NV12, RGBA, A_P2(i), A_C(o), w, h);
    CV(COLOR_YUV2BGRA_NV12, NV12, RGBA);
    SWS(NV12, NV12, BGRA, RGBA);
    CASE(kroiYCbCr422ToRGB_8u_C2C3R, YUY2, RGB, O_CC);
    CV(COLOR_YUV2RGB_YUY2, YUY2, RGB);
    LY_CEIL(YUY2ToARGB, YUY2, RGBA, A_C(i), A_C(o), w, h);
    SWS(YUYV422, YUY2, RGB24, RGB);
    CASE(kroiYCbCr422ToBGR_8u_C2C3R, YUY2, RGB, O_CC);
    CV(COLOR_YUV2BGR_YUY2, YUY2, RGB);
    LY_CEIL(YUY2ToARGB, YUY2, RGBA, A_C(i), A_C(o), w, h);
    SWS(YUYV422, YUY2, BGR24, RGB);
    CASE(kroiYCbCr422ToRGB_8u_C2C4R, YUY2, RGBA, O_CC, 255);
    CV(COLOR_YUV2RGBA_YUY2, YUY2, RGBA);
    LY(YUY2ToARGB, YUY2, RGBA, A_C(i), A_C(o), w, h);
    SWS(YUYV422, YUY2, RGBA, RGBA);
    CASE(kroiCbYCr422ToRGB_8u_C2C3R, YUY2, RGB, O_CC);
    CV(COLOR_YUV2RGB_UYVY, YUY2, RGB);
    LY_CEIL(UYVYToARGB, YUY2, RGBA, A_C(i), A_C(o), w, h);
    SWS(UYVY422, YUY2, RGB24, RGB);
    CASE(kroiYCbCr422ToRGB_8u_P3C3R, I422, RGB, in.planes(), in.steps(), out.ptr(0), out.s(0), roi);
    LY(I422ToRAW, I422, RGB, A_P3(i), A_C(o), w, h);
    SWS(YUV422P, I422, RGB24, RGB);
    CASE(kroiYCbCr420ToBGR_709CSC_8u_P3C3R, I420, RGB, in.planes(), in.steps(), out.ptr(0), out.s(0), roi);
    LY(H420ToRGB24, I420, RGB, A_P3(i), A_C(o), w, h);

    // Chroma layouts
    CASE(kroiYCbCr422ToYCbCr420_8u_C2P3R, YUY2, I420, in.ptr(0), in.s(0), out.planes(), out.steps(), roi);
    LY(YUY2ToI420, YUY2, I420, A_C(i), A_P3(o), w, h);
    SWS(YUYV422, YUY2, YUV420P, I420);
    CASE(kroiCbYCr422ToYCbCr420_8u_C2P3R, YUY2, I420, in.ptr(0), in.s(0), out.planes(), out.steps(), roi);
    LY(UYVYToI420, YUY2, I420, A_C(i), A_P3(o), w, h);
    SWS(UYVY422, YUY2, YUV420P, I420);
    CASE(kroiYCbCr422_8u_P3C2R, I422, YUY2, in.planes(), in.steps(), out.ptr(0), out.s(0), roi);
    LY(I422ToYUY2, I422, YUY2, A_P3(i), A_C(o), w, h);
    SWS(YUV422P, I422, YUYV422, YUY2);
    CASE(kroiYCbCr422_8u_C2P3R, YUY2, I422, in.ptr(0), in.s(0), out.planes(), out.steps(), roi);
    LY(YUY2ToI422, YUY2, I422, A_C(i), A_P3(o), w, h);
    SWS(YUYV422, YUY2, YUV422P, I422);
    CASE(kroiYCbCr420_8u_P2P3R, NV12, I420, in.ptr(0), in.s(0), in.ptr(1), in.s(1), out.planes(), out.steps(), roi);
    LY(NV12ToI420, NV12, I420, A_P2(i), A_P3(o), w, h);
    SWS(NV12, NV12, YUV420P, I420);
    CASE(kroiYCbCr420_8u_P3P2R, I420, NV12, in.planes(), in.steps(), out.ptr(0), out.s(0), out.ptr(1), out.s(1), roi);
    LY(I420ToNV12, I420, NV12, A_P3(i), A_P2(o), w, h);
    SWS(YUV420P, I420, NV12, NV12);
    CASE(kroiYCbCr420ToYCbCr422_8u_P3R, I420, I422, in.planes(), in.steps(), out.planes(), out.steps(), roi);
    LY(I420ToI422, I420, I422, A_P3(i), A_P3(o), w, h);
    SWS(YUV420P, I420, YUV422P, I422);
    CASE(kroiYCbCr422ToYCbCr420_8u_P3R, I422, I420, in.planes(), in.steps(), out.planes(), out.steps(), roi);
    LY(I422ToI420, I422, I420, A_P3(i), A_P3(o), w, h);
    SWS(YUV422P, I422, YUV420P, I420);

    // Gray
    CASE(kroiRGBToGray_8u_C3C1R, RGB, Gray, O_CC);
    LY(RAWToJ400, RGB, Gray, A_C(i), A_C(o), w, h);
    CV(COLOR_RGB2GRAY, RGB, Gray);
    SWS(RGB24, RGB, GRAY8, Gray);
    CASE(kroiRGBToGray_8u_AC4C1R, RGBA, Gray, O_CC);
    LY(ABGRToJ400, RGBA, Gray, A_C(i), A_C(o), w, h);
    CV(COLOR_RGBA2GRAY, RGBA, Gray);
    SWS(RGBA, RGBA, GRAY8, Gray);
    CASE(kroiRGBToGray_16u_C3C1R, RGB16, Gray16, O_CC);
    CV(COLOR_RGB2GRAY, RGB16, Gray16);
    CASEF(kroiRGBToGray_32f_C3C1R, RGB32F, Gray32F, unitFloats(), O_CC);
    CV(COLOR_RGB2GRAY, RGB32F, Gray32F);
    CASE(kroiGrayToRGB_8u_C1C3R, Gray, RGB, O_CC);
    CV(COLOR_GRAY2RGB, Gray, RGB);
    SWS(GRAY8, Gray, RGB24, RGB);
    CASE(kroiGrayToRGB_8u_C1C4R, Gray, RGBA, O_CC, 255);
    CV(COLOR_GRAY2RGBA, Gray, RGBA);
    LY(J400ToARGB, Gray, RGBA, A_C(i), A_C(o), w, h);
    CASEF(kroiGrayToRGB_32f_C1C3R, Gray32F, RGB32F, unitFloats(), O_CC);
    CV(COLOR_GRAY2RGB, Gray32F, RGB32F);
    CASE(kroiYCbCr422ToGray_8u_C2C1R, YUY2, Gray, O_CC);
    LY(YUY2ToY, YUY2, Gray, A_C(i), A_C(o), w, h);
    CV(COLOR_YUV2GRAY_YUY2, YUY2, Gray);

    // XYZ (YCC has no peer: it is timed beside memcpy only)
    CASE(kroiRGBToXYZ_8u_C3R, RGB, RGB, O_CC);
    CV(COLOR_RGB2XYZ, RGB, RGB);
    CASE(kroiXYZToRGB_8u_C3R, RGB, RGB, O_CC);
    CV(COLOR_XYZ2RGB, RGB, RGB);
    CASEF(kroiRGBToXYZ_32f_C3R, RGB32F, RGB32F, unitFloats(), O_CC);
    CV(COLOR_RGB2XYZ, RGB32F, RGB32F);
    CASEF(kroiXYZToRGB_32f_C3R, RGB32F, RGB32F, floats(0, 0.95f, 0, 1, 0, 1.09f), O_CC);
    CV(COLOR_XYZ2RGB, RGB32F, RGB32F);
    CASE(kroiRGBToYCC_8u_C3R, RGB, RGB, O_CC);
    CASE(kroiYCCToRGB_8u_C3R, RGB, RGB, O_CC);

    // HSV and HLS; 8-bit hue spans 0..255 here, OpenCV's _FULL codes
    CASE(kroiRGBToHSV_8u_C3R, RGB, RGB, O_CC);
    CV(COLOR_RGB2HSV_FULL, RGB, RGB);
    CASE(kroiHSVToRGB_8u_C3R, RGB, RGB, O_CC);
    CV(COLOR_HSV2RGB_FULL, RGB, RGB);
    CASE(kroiRGBToHLS_8u_C3R, RGB, RGB, O_CC);
    CV(COLOR_RGB2HLS_FULL, RGB, RGB);
    CASE(kroiHLSToRGB_8u_C3R, RGB, RGB, O_CC);
    CV(COLOR_HLS2RGB_FULL, RGB, RGB);
    CASEF(kroiRGBToHLS_32f_C3R, RGB32F, RGB32F, unitFloats(), O_CC);
    CV(COLOR_RGB2HLS, RGB32F, RGB32F);
    CASEF(kroiHLSToRGB_32f_C3R, RGB32F, RGB32F, unitFloats(), O_CC);  // hue 0..1 here, degrees in OpenCV
    CVF(COLOR_HLS2RGB, RGB32F, RGB32F, floats(0, 360, 0, 1, 0, 1));

    // Lab and LUV; 32f RGB in 0..1, L in 0..100
    CASE(kroiRGBToLab_8u_C3R, RGB, RGB, O_CC);
    CV(COLOR_RGB2Lab, RGB, RGB);
    CASE(kroiBGRToLab_8u_C3R, RGB, RGB, O_CC);
    CV(COLOR_BGR2Lab, RGB, RGB);
    CASE(kroiLabToRGB_8u_C3R, RGB, RGB, O_CC);
    CV(COLOR_Lab2RGB, RGB, RGB);
    CASEF(kroiRGBToLab_32f_C3R, RGB32F, RGB32F, unitFloats(), O_CC);
    CV(COLOR_RGB2Lab, RGB32F, RGB32F);
    CASEF(kroiLabToRGB_32f_C3R, RGB32F, RGB32F, floats(0, 100, -100, 100, -100, 100), O_CC);
    CV(COLOR_Lab2RGB, RGB32F, RGB32F);
    CASE(kroiRGBToLUV_8u_C3R, RGB, RGB, O_CC);
    CV(COLOR_RGB2Luv, RGB, RGB);
    CASE(kroiLUVToRGB_8u_C3R, RGB, RGB, O_CC);
    CV(COLOR_Luv2RGB, RGB, RGB);
    CASEF(kroiRGBToLUV_32f_C3R, RGB32F, RGB32F, unitFloats(), O_CC);
    CV(COLOR_RGB2Luv, RGB32F, RGB32F);
    CASEF(kroiLUVToRGB_32f_C3R, RGB32F, RGB32F, floats(0, 100, -100, 150, -100, 100), O_CC);
    CV(COLOR_Luv2RGB, RGB32F, RGB32F);

    // YCoCg: no peer, timed beside memcpy only
    CASE(kroiRGBToYCoCg_8u_C3P3R, RGB, P3, in.ptr(0), in.s(0), out.planes(), out.s(0), roi);
    CASE(kroiYCoCgToRGB_8u_P3C3R, P3, RGB, in.planes(), in.s(0), out.ptr(0), out.s(0), roi);
    CASE(kroiBGRToYCoCg_8u16s_C3P3R, RGB, P3S16, in.ptr(0), in.s(0), out.planes(), out.s(0), roi);

    // Gamma by table
    CASE(kroiGammaFwd_8u_C3R, RGB, RGB, O_CC);
    CV_LUT(true);
    CASE(kroiGammaInv_8u_C3R, RGB, RGB, O_CC);
    CV_LUT(false);

    // Bayer mosaics, RGGB (OpenCV's BayerBG)
    CASE(kroiCFAToRGB_8u_C1C3R, Gray, RGB, in.ptr(0), KroiRect{0, 0, w, h}, roi, in.s(0), out.ptr(0), out.s(0), kroiBayerRGGB);
    CV(COLOR_BayerBG2RGB, Gray, RGB);
    CASE(kroiCFAToRGB_16u_C1C3R, Gray16, RGB16, in.ptr(0), KroiRect{0, 0, w, h}, roi, in.s(0), out.ptr(0), out.s(0), kroiBayerRGGB);
    CV(COLOR_BayerBG2RGB, Gray16, RGB16);
    CASE(kroiCFAToBGRA_VNG_8u_C1C4R, Gray, RGBA, in.ptr(0), KroiRect{0, 0, w, h}, roi, in.s(0), AnyPtr{nullptr}, out.ptr(0),
         out.s(0), kroiBayerRGGB);
    CV(COLOR_BayerBG2RGB_VNG, Gray, RGB);

    return b.cs;
}

std::vector<PeerInfo> peerInfo() {
    static const std::vector<PeerInfo> info = [] {
        std::vector<PeerInfo> v;
#ifdef KROCC_PEER_LIBYUV
        v.push_back({"libyuv " + std::to_string(LIBYUV_VERSION), true, "its own processor dispatch, single-threaded"});
#else
        v.push_back({"libyuv", false, "not found at build time (libyuv-dev)"});
#endif
#ifdef KROCC_PEER_OPENCV
        v.push_back(openCvInfo());
#else
        v.push_back({"OpenCV", false, "not found at build time (libopencv-core-dev, libopencv-imgproc-dev)"});
#endif
#ifdef KROCC_PEER_SWSCALE
        v.push_back({std::string("swscale ") + AV_STRINGIFY(LIBSWSCALE_VERSION), true,
                     "SWS_BILINEAR at equal sizes (its unscaled converters where it has them), threads = 1"});
#else
        v.push_back({"swscale", false, "not found at build time (libswscale-dev)"});
#endif
        return v;
    }();
    return info;
}

}  // namespace kp
