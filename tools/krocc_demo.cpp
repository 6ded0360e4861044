// Converts an RGB image to Y'UV and back through the library and prints the
// largest difference per channel and the throughput of each direction.
//
//   krocc_demo [image.ppm] [--plain]
//
// Without an argument it uses a built-in 1920x1080 test pattern: colour bars,
// a gray ramp, a hue sweep and a patch of fine detail.
#include <dlfcn.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "krocc.h"

namespace {

struct Image {
    int w = 0, h = 0;
    std::vector<Kro8u> rgb;
};

Image testPattern(int w, int h) {
    static const Kro8u bars[8][3] = {{235, 235, 235}, {235, 235, 16}, {16, 235, 235}, {16, 235, 16},
                                     {235, 16, 235},  {235, 16, 16},  {16, 16, 235},  {16, 16, 16}};
    Image im{w, h, std::vector<Kro8u>(static_cast<size_t>(w) * h * 3)};
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            Kro8u* p = &im.rgb[(static_cast<size_t>(y) * w + x) * 3];
            if (y < h / 2) {
                std::memcpy(p, bars[x * 8 / w], 3);
            } else if (y < 5 * h / 8) {
                p[0] = p[1] = p[2] = static_cast<Kro8u>(x * 255 / (w - 1));
            } else if (y < 7 * h / 8) {
                const double hue = 6.0 * x / w, f = hue - std::floor(hue);
                const double v = 1.0 - static_cast<double>(y - 5 * h / 8) / (2 * h / 8);
                double c[3];
                switch (static_cast<int>(hue) % 6) {
                    case 0: c[0] = 1; c[1] = f; c[2] = 0; break;
                    case 1: c[0] = 1 - f; c[1] = 1; c[2] = 0; break;
                    case 2: c[0] = 0; c[1] = 1; c[2] = f; break;
                    case 3: c[0] = 0; c[1] = 1 - f; c[2] = 1; break;
                    case 4: c[0] = f; c[1] = 0; c[2] = 1; break;
                    default: c[0] = 1; c[1] = 0; c[2] = 1 - f; break;
                }
                for (int k = 0; k < 3; ++k) p[k] = static_cast<Kro8u>(std::lround(255 * c[k] * v));
            } else {
                const unsigned s = static_cast<unsigned>(x * 2654435761u ^ y * 40503u);
                p[0] = static_cast<Kro8u>(s >> 8);
                p[1] = static_cast<Kro8u>(s >> 16);
                p[2] = static_cast<Kro8u>(s >> 24);
            }
        }
    return im;
}

bool readPpm(const char* path, Image& im) {
    std::ifstream f(path, std::ios::binary);
    std::string magic;
    int maxval = 0;
    if (!(f >> magic >> im.w >> im.h >> maxval) || magic != "P6" || maxval != 255 || im.w < 1 || im.h < 1) return false;
    f.get();
    im.rgb.resize(static_cast<size_t>(im.w) * im.h * 3);
    return static_cast<bool>(f.read(reinterpret_cast<char*>(im.rgb.data()), static_cast<std::streamsize>(im.rgb.size())));
}

}  // namespace

// With --plain the demo answers "no" to the library's feature query (this
// definition comes before the core library's), so the path without the
// multiply-add instructions runs; otherwise the core library answers.
static bool gPlain = false;
extern "C" __attribute__((visibility("default"))) int ownGetFeature(uint64_t mask) {
    static auto core = reinterpret_cast<int (*)(uint64_t)>(dlsym(dlopen("libkrocore.so.11", RTLD_NOW), "ownGetFeature"));
    return gPlain || core == nullptr ? 0 : core(mask);
}

int main(int argc, char** argv) {
    Image im;
    const char* path = nullptr;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--plain") == 0) gPlain = true;
        else path = argv[i];
    }
    if (path != nullptr) {
        if (!readPpm(path, im)) {
            std::fprintf(stderr, "cannot read %s (binary PPM, P6, maxval 255)\n", path);
            return 2;
        }
    } else {
        im = testPattern(1920, 1080);
    }
    const int step = im.w * 3;
    const KroiSize roi{im.w, im.h};
    std::vector<Kro8u> yuv(im.rgb.size()), back(im.rgb.size());

    const KroLibraryVersion* v = kroccGetLibVersion();
    std::printf("%s %s\n", v->Name, v->Version);
    std::printf("image: %s, %dx%d; path: %s\n", path ? path : "built-in test pattern", im.w, im.h,
                ownGetFeature(0x8000000) ? "multiply-add (VNNI)" : "plain AVX-512");

    using clock = std::chrono::steady_clock;
    auto timeIt = [&](auto&& fn) {
        fn();  // warm
        const int reps = std::max(3, static_cast<int>(200000000LL / (static_cast<long long>(im.w) * im.h)));
        const auto t0 = clock::now();
        for (int i = 0; i < reps; ++i) fn();
        return std::chrono::duration<double>(clock::now() - t0).count() / reps;
    };
    KroStatus st1 = kroOk, st2 = kroOk;
    const double tf = timeIt([&] { st1 = kroiRGBToYUV_8u_C3R(im.rgb.data(), step, yuv.data(), step, roi); });
    const double ti = timeIt([&] { st2 = kroiYUVToRGB_8u_C3R(yuv.data(), step, back.data(), step, roi); });
    if (st1 != kroOk || st2 != kroOk) {
        std::fprintf(stderr, "conversion failed: %d %d\n", st1, st2);
        return 1;
    }
    int maxDiff[3] = {0, 0, 0};
    for (size_t i = 0; i < im.rgb.size(); ++i) {
        const int d = std::abs(static_cast<int>(im.rgb[i]) - back[i]);
        maxDiff[i % 3] = std::max(maxDiff[i % 3], d);
    }
    const double px = static_cast<double>(im.w) * im.h;
    std::printf("largest difference after RGB -> Y'UV -> RGB: R %d, G %d, B %d\n", maxDiff[0], maxDiff[1], maxDiff[2]);
    std::printf("RGB -> Y'UV: %8.3f ms a frame, %7.1f Mpixel/s, %6.2f GB/s read+written\n", tf * 1e3, px / tf / 1e6,
                6 * px / tf / 1e9);
    std::printf("Y'UV -> RGB: %8.3f ms a frame, %7.1f Mpixel/s, %6.2f GB/s read+written\n", ti * 1e3, px / ti / 1e6,
                6 * px / ti / 1e9);
    return 0;
}
