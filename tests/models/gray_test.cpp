// Gray conversions: each stage against its scalar form, the pixels each stage
// owns, the known answers, canaries and validation order.
#include <cfenv>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <tuple>

#include "models/gray_forms.h"
#include "test_common.h"

namespace {

using k0::gray::fixedWeight;

// ---- 8u ---------------------------------------------------------------------

struct Fixed {
    int32_t r, g, b;
};
Fixed fixedOf(const float* c) {
    return c ? Fixed{fixedWeight(c[0]), fixedWeight(c[1]), fixedWeight(c[2])}
             : Fixed{k0::gray::kFixedR, k0::gray::kFixedG, k0::gray::kFixedB};
}

using Gray8u = KroStatus (*)(const Kro8u*, int, Kro8u*, int, KroiSize, const Kro32f*);

// Weight sets: the defaults, ordinary ones, and ones whose 16-bit truncation
// or 32-bit wrap gives the two stages different answers.
const float kWeightSets[][3] = {
    {0.299f, 0.587f, 0.114f},
    {0.25f, 0.5f, 0.25f},
    {2.0f, 0.0f, 0.0f},       // block weight 65536 -> 0
    {-0.5f, 1.5f, 0.3f},      // negative: wraps differently
    {1.9f, 1.9f, 1.9f},       // saturates the block sum
    {70000.0f, -3.0f, 1.0f},  // 32-bit products wrap
};

// Every pixel of an image of the cube with width w, the cube as rows of w.
void sweepCube(Gray8u fn, int stride, const float* c, int w, bool block) {
    const auto& cube = kt::colourCube();
    std::vector<uint8_t> src;
    const uint8_t* s = cube.data();
    if (stride == 4) {
        src.resize(4u << 24);
        for (uint32_t i = 0; i < (1u << 24); ++i) {
            std::memcpy(&src[4 * i], &cube[3 * i], 3);
            src[4 * i + 3] = static_cast<uint8_t>(i * 37);
        }
        s = src.data();
    }
    const int total = 1 << 24, rows = total / w, rest = total - rows * w;
    std::vector<uint8_t> dst(total);
    ASSERT_EQ(fn(s, w * stride, dst.data(), w, {w, rows}, c), kroOk);
    if (rest) {
        ASSERT_EQ(fn(s + rows * w * stride, 0, dst.data() + rows * w, 0, {rest, 1}, c), kroOk);
    }
    const Fixed f = fixedOf(c);
    for (int i = 0; i < total; ++i) {
        const uint8_t* p = s + static_cast<std::size_t>(stride) * i;
        const Kro8u want = block ? k0::gray::grayBlock8u(p[0], p[1], p[2], f.r, f.g, f.b)
                                 : k0::gray::grayRemainder8u(p[0], p[1], p[2], f.r, f.g, f.b);
        if (dst[i] != want) {
            FAIL() << "colour " << i << " got " << int(dst[i]) << " want " << int(want);
        }
    }
}

// Rows of 4096 pixels are all block; rows of 15 (or 7) all remainder.
TEST(Gray8u, BothStagesOverTheCube) {
    for (auto [w3, w4, block] : {std::tuple{4096, 4096, true}, {15, 7, false}}) {
        sweepCube(kroiColorToGray_8u_C3C1R, 3, nullptr, w3, block);
        for (const auto& c : kWeightSets) sweepCube(kroiColorToGray_8u_C3C1R, 3, c, w3, block);
        sweepCube(kroiColorToGray_8u_AC4C1R, 4, nullptr, w4, block);
        sweepCube(kroiColorToGray_8u_AC4C1R, 4, kWeightSets[3], block ? 4096 : 15, block);
    }
}

// The first width & ~15 pixels of a row take the block stage, the rest the
// remainder stage; nothing outside the region is written.
TEST(Gray8u, StageByPositionAndCanaries) {
    for (int stride : {3, 4}) {
        const Gray8u fn = stride == 3 ? kroiColorToGray_8u_C3C1R : kroiColorToGray_8u_AC4C1R;
        for (int w = 1; w <= 80; ++w) {
            const int h = 1 + w % 3;
            kt::Canvas src(w * stride, h), dst(w, h);
            src.randomize(w);
            const float* c = kWeightSets[w % 6];
            ASSERT_EQ(fn(src.data(), src.step(), dst.data(), dst.step(), {w, h}, c), kroOk);
            ASSERT_TRUE(dst.canariesIntact()) << w;
            const Fixed f = fixedOf(c);
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x) {
                    const uint8_t* p = src.row(y) + stride * x;
                    const Kro8u want = x < (w & ~15) ? k0::gray::grayBlock8u(p[0], p[1], p[2], f.r, f.g, f.b)
                                                     : k0::gray::grayRemainder8u(p[0], p[1], p[2], f.r, f.g, f.b);
                    ASSERT_EQ(dst.row(y)[x], want) << "stride " << stride << " w " << w << " x " << x;
                }
        }
    }
}

TEST(Gray8u, KnownAnswers) {
    EXPECT_EQ(fixedWeight(0.299f), 9798);
    EXPECT_EQ(fixedWeight(0.587f), 19235);
    EXPECT_EQ(fixedWeight(0.114f), 3736);
    // white gives 255 in both stages; (2, 0, 0) on R = 200 gives 0 in the
    // block stage (weight 65536 keeps 0) and 400 mod 256 in the remainder
    std::vector<uint8_t> white(3 * 17, 255), red(3 * 17, 0), out(17);
    for (int i = 0; i < 17; ++i) red[3 * i] = 200;
    ASSERT_EQ(kroiRGBToGray_8u_C3C1R(white.data(), 0, out.data(), 0, {17, 1}), kroOk);
    EXPECT_EQ(out, std::vector<uint8_t>(17, 255));
    const float two[3] = {2.0f, 0.0f, 0.0f};
    ASSERT_EQ(kroiColorToGray_8u_C3C1R(red.data(), 0, out.data(), 0, {17, 1}, two), kroOk);
    EXPECT_EQ(out[0], 0);
    EXPECT_EQ(out[15], 0);
    EXPECT_EQ(out[16], 144);
    // with default weights the two stages differ, and by one at the most
    int differ = 0;
    for (int i = 0; i < (1 << 24); i += 7) {
        const int a = k0::gray::grayBlock8u(i >> 16, (i >> 8) & 255, i & 255, 9798, 19235, 3736);
        const int b = k0::gray::grayRemainder8u(i >> 16, (i >> 8) & 255, i & 255, 9798, 19235, 3736);
        ASSERT_LE(std::abs(a - b), 1) << i;
        differ += a != b;
    }
    EXPECT_GT(differ, 0);
}

TEST(Gray8u, NullWeightsAreTheDefaults) {
    for (int stride : {3, 4}) {
        kt::Canvas src(stride * 45, 5), a(45, 5), b(45, 5);
        src.randomize(7);
        const auto rgb = stride == 3 ? kroiRGBToGray_8u_C3C1R : kroiRGBToGray_8u_AC4C1R;
        const auto color = stride == 3 ? kroiColorToGray_8u_C3C1R : kroiColorToGray_8u_AC4C1R;
        ASSERT_EQ(rgb(src.data(), src.step(), a.data(), a.step(), {45, 5}), kroOk);
        ASSERT_EQ(color(src.data(), src.step(), b.data(), b.step(), {45, 5}, nullptr), kroOk);
        EXPECT_EQ(a.region(), b.region());
    }
}

// ---- 16u, 16s, 32f, 64f -------------------------------------------------------

template <class T>
std::vector<T> randomSamples(std::size_t n, uint32_t seed) {
    std::mt19937 g(seed);
    std::vector<T> v(n);
    for (auto& x : v) {
        if constexpr (std::is_floating_point_v<T>) x = static_cast<T>(std::uniform_real_distribution<double>(-2000, 70000)(g));
        else x = static_cast<T>(g());
    }
    // extremes at the start
    if constexpr (!std::is_floating_point_v<T>)
        for (std::size_t i = 0; i < n && i < 12; ++i)
            v[i] = i % 2 ? std::numeric_limits<T>::max() : std::numeric_limits<T>::min();
    return v;
}

const float kFloatWeights[][3] = {{0.299f, 0.587f, 0.114f}, {-0.7f, 1.3f, 0.4f}, {1e6f, 1.0f, 1.0f}, {0.3333f, 0.3333f, 0.3334f}};

template <class T, class W>
using GrayFn = KroStatus (*)(const T*, int, T*, int, KroiSize, const W*);

// Runs fn over images of widths 1..70 (and one wide one), each pixel against
// want(r, g, b, weights); the destination keeps its canaries.
template <class T, class W, class Want>
void checkFloatFamily(GrayFn<T, W> fn, int stride, Want want) {
    const W defaults[3] = {W(0.299f), W(0.587f), W(0.114f)};
    for (int w : {1, 2, 7, 8, 15, 16, 17, 31, 32, 33, 47, 64, 70, 1000}) {
        for (int set = -1; set < 4; ++set) {
            const int h = 3;
            W c[3];
            if (set >= 0) for (int i = 0; i < 3; ++i) c[i] = W(kFloatWeights[set][i]);
            const W* wp = set >= 0 ? c : nullptr;
            const W* eff = set >= 0 ? c : defaults;
            // even steps: the 16s driver counts its steps in whole samples
            kt::Canvas src(w * stride * sizeof(T), h, 38), dst(w * sizeof(T), h, 38);
            for (int y = 0; y < h; ++y) {
                auto v = randomSamples<T>(w * stride, w * 10 + y + set);
                std::memcpy(src.row(y), v.data(), v.size() * sizeof(T));
            }
            ASSERT_EQ(fn(reinterpret_cast<const T*>(src.data()), src.step(), reinterpret_cast<T*>(dst.data()), dst.step(), {w, h}, wp), kroOk);
            ASSERT_TRUE(dst.canariesIntact()) << "w " << w << " stride " << stride << " size " << sizeof(T) << " set " << set;
            // Rows of an odd step: samples are read by copy, not through a misaligned pointer.
            for (int y = 0; y < h; ++y) {
                for (int x = 0; x < w; ++x) {
                    T p[3], d;
                    std::memcpy(p, src.row(y) + stride * x * sizeof(T), sizeof p);
                    std::memcpy(&d, dst.row(y) + x * sizeof(T), sizeof d);
                    const T e = want(p[0], p[1], p[2], eff);
                    ASSERT_TRUE(std::memcmp(&d, &e, sizeof(T)) == 0) << "w " << w << " x " << x << " set " << set << ": " << +d << " vs " << +e;
                }
            }
        }
    }
}

const auto want16u = [](Kro16u r, Kro16u g, Kro16u b, const float* w) { return k0::gray::gray16u(r, g, b, w[0], w[1], w[2]); };
const auto want16s = [](Kro16s r, Kro16s g, Kro16s b, const float* w) { return k0::gray::gray16s(r, g, b, w[0], w[1], w[2]); };
const auto want32f = [](float r, float g, float b, const float* w) { return k0::gray::graySum32f(r, g, b, w[0], w[1], w[2]); };
const auto want64f = [](double r, double g, double b, const double* w) { return k0::gray::graySum64f(r, g, b, w[0], w[1], w[2]); };

TEST(GrayFloat, EveryTypeAgainstItsForm) {
    checkFloatFamily<Kro16u, Kro32f>(kroiColorToGray_16u_C3C1R, 3, want16u);
    checkFloatFamily<Kro16u, Kro32f>(kroiColorToGray_16u_AC4C1R, 4, want16u);
    checkFloatFamily<Kro16s, Kro32f>(kroiColorToGray_16s_C3C1R, 3, want16s);
    checkFloatFamily<Kro16s, Kro32f>(kroiColorToGray_16s_AC4C1R, 4, want16s);
    checkFloatFamily<Kro32f, Kro32f>(kroiColorToGray_32f_C3C1R, 3, want32f);
    checkFloatFamily<Kro32f, Kro32f>(kroiColorToGray_32f_AC4C1R, 4, want32f);
    checkFloatFamily<Kro64f, Kro64f>(kroiColorToGray_64f_C3C1R, 3, want64f);
    checkFloatFamily<Kro64f, Kro64f>(kroiColorToGray_64f_AC4C1R, 4, want64f);
}

TEST(GrayFloat, KnownAnswers) {
    // the fused order: 0.299f*R + 0.587f*G + 0.114f*B on white 16u gives 65535
    const Kro16u white[3] = {65535, 65535, 65535};
    Kro16u g16 = 0;
    ASSERT_EQ(kroiRGBToGray_16u_C3C1R(white, 6, &g16, 2, {1, 1}), kroOk);
    EXPECT_EQ(g16, 65535);
    // negative float weights are not limited
    const Kro32f px[3] = {100.0f, 0.0f, 0.0f}, neg[3] = {-1.0f, 0.0f, 0.0f};
    Kro32f g32 = 0;
    ASSERT_EQ(kroiColorToGray_32f_C3C1R(px, 12, &g32, 4, {1, 1}, neg), kroOk);
    EXPECT_EQ(g32, -100.0f);
    const Kro64f pd[3] = {1.0, 1.0, 1.0}, negd[3] = {-2.0, -2.0, -2.0};
    Kro64f g64 = 0;
    ASSERT_EQ(kroiColorToGray_64f_C3C1R(pd, 24, &g64, 8, {1, 1}, negd), kroOk);
    EXPECT_EQ(g64, -6.0);
    // the 64f defaults are the float defaults widened
    ASSERT_EQ(kroiColorToGray_64f_C3C1R(pd, 24, &g64, 8, {1, 1}, nullptr), kroOk);
    EXPECT_EQ(g64, std::fma(double(0.114f), 1.0, std::fma(double(0.299f), 1.0, double(0.587f))));
    // null weights in ColorToGray are those of RGBToGray
    Kro16s s16[3] = {-32768, 1000, 32767}, a = 0, b = 1;
    ASSERT_EQ(kroiRGBToGray_16s_C3C1R(s16, 6, &a, 2, {1, 1}), kroOk);
    ASSERT_EQ(kroiColorToGray_16s_C3C1R(s16, 6, &b, 2, {1, 1}, nullptr), kroOk);
    EXPECT_EQ(a, b);
    EXPECT_EQ(a, k0::gray::gray16s(-32768, 1000, 32767, 0.299f, 0.587f, 0.114f));
}

// 16u rounds in the caller's rounding mode.
TEST(GrayFloat, RoundingModeOf16u) {
    const Kro16u px[3] = {3, 0, 0};
    const float half[3] = {0.5f, 0.0f, 0.0f};  // 1.5
    const int saved = std::fegetround();
    const std::pair<int, Kro16u> modes[] = {{FE_TONEAREST, 2}, {FE_TOWARDZERO, 1}, {FE_DOWNWARD, 1}, {FE_UPWARD, 2}};
    for (auto [mode, want] : modes) {
        std::fesetround(mode);
        Kro16u g = 0;
        const KroStatus st = kroiColorToGray_16u_C3C1R(px, 6, &g, 2, {1, 1}, half);
        std::fesetround(saved);
        EXPECT_EQ(st, kroOk);
        EXPECT_EQ(g, want) << mode;
    }
}

// The 16s driver halves its steps: an odd step loses its low bit.
TEST(GrayFloat, SixteenSignedHalvesItsSteps) {
    const int w = 5, h = 4, srcStep = 3 * w * 2 + 3, dstStep = w * 2 + 5;  // odd byte steps
    std::vector<Kro16s> src(200), dst(100, 7);
    auto v = randomSamples<Kro16s>(src.size(), 3);
    src.assign(v.begin(), v.end());
    ASSERT_EQ(kroiRGBToGray_16s_C3C1R(src.data(), srcStep, dst.data(), dstStep, {w, h}), kroOk);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const Kro16s* p = src.data() + (srcStep >> 1) * y + 3 * x;
            EXPECT_EQ(dst[(dstStep >> 1) * y + x], k0::gray::gray16s(p[0], p[1], p[2], 0.299f, 0.587f, 0.114f));
        }
}

// ---- replication and the Y of 4:2:2 --------------------------------------------

template <class T>
void checkGrayToRGB(KroStatus (*c3)(const T*, int, T*, int, KroiSize), KroStatus (*c4)(const T*, int, T*, int, KroiSize, T), T alpha) {
    for (int w : {1, 3, 15, 16, 17, 31, 32, 33, 63, 64, 65, 100}) {
        const int h = 2;
        kt::Canvas src(w * sizeof(T), h), d3(3 * w * sizeof(T), h), d4(4 * w * sizeof(T), h);
        src.randomize(w);
        ASSERT_EQ(c3(reinterpret_cast<const T*>(src.data()), src.step(), reinterpret_cast<T*>(d3.data()), d3.step(), {w, h}), kroOk);
        ASSERT_EQ(c4(reinterpret_cast<const T*>(src.data()), src.step(), reinterpret_cast<T*>(d4.data()), d4.step(), {w, h}, alpha), kroOk);
        ASSERT_TRUE(d3.canariesIntact() && d4.canariesIntact()) << w;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const T* s = reinterpret_cast<const T*>(src.row(y)) + x;
                const T* p3 = reinterpret_cast<const T*>(d3.row(y)) + 3 * x;
                const T* p4 = reinterpret_cast<const T*>(d4.row(y)) + 4 * x;
                for (int c = 0; c < 3; ++c) {
                    ASSERT_EQ(std::memcmp(p3 + c, s, sizeof(T)), 0) << w << " " << x;
                    ASSERT_EQ(std::memcmp(p4 + c, s, sizeof(T)), 0) << w << " " << x;
                }
                ASSERT_EQ(std::memcmp(p4 + 3, &alpha, sizeof(T)), 0);
            }
    }
}

TEST(GrayToRGB, ReplicatesAndSetsAlpha) {
    checkGrayToRGB<Kro8u>(kroiGrayToRGB_8u_C1C3R, kroiGrayToRGB_8u_C1C4R, 0xC3);
    checkGrayToRGB<Kro16u>(kroiGrayToRGB_16u_C1C3R, kroiGrayToRGB_16u_C1C4R, 0xBEEF);
    checkGrayToRGB<Kro32f>(kroiGrayToRGB_32f_C1C3R, kroiGrayToRGB_32f_C1C4R, -1.25f);
}

TEST(YCbCr422ToGray, EvenBytesOfEveryWidth) {
    for (int w = 1; w <= 140; w += (w < 70 ? 1 : 13)) {
        kt::Canvas src(2 * w + (w & 1), 3), dst(w, 3);
        src.randomize(w);
        ASSERT_EQ(kroiYCbCr422ToGray_8u_C2C1R(src.data(), src.step(), dst.data(), dst.step(), {w, 3}), kroOk);
        ASSERT_TRUE(dst.canariesIntact());
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < w; ++x) ASSERT_EQ(dst.row(y)[x], src.row(y)[2 * x]) << w << " " << x;
    }
}

// ---- validation ----------------------------------------------

// Null pointers first, then the size; a failed call writes nothing.
TEST(GrayValidation, OrderAndNoWrites) {
    using Call = std::function<KroStatus(const Kro8u*, Kro8u*, KroiSize)>;
    const Call calls[] = {
        [](const Kro8u* s, Kro8u* d, KroiSize r) { return kroiRGBToGray_8u_C3C1R(s, 64, d, 64, r); },
        [](const Kro8u* s, Kro8u* d, KroiSize r) { return kroiColorToGray_8u_AC4C1R(s, 64, d, 64, r, nullptr); },
        [](const Kro8u* s, Kro8u* d, KroiSize r) { return kroiRGBToGray_16u_C3C1R((const Kro16u*)s, 64, (Kro16u*)d, 64, r); },
        [](const Kro8u* s, Kro8u* d, KroiSize r) { return kroiRGBToGray_16s_AC4C1R((const Kro16s*)s, 64, (Kro16s*)d, 64, r); },
        [](const Kro8u* s, Kro8u* d, KroiSize r) { return kroiColorToGray_32f_C3C1R((const Kro32f*)s, 64, (Kro32f*)d, 64, r, nullptr); },
        [](const Kro8u* s, Kro8u* d, KroiSize r) { return kroiColorToGray_64f_AC4C1R((const Kro64f*)s, 64, (Kro64f*)d, 64, r, nullptr); },
        [](const Kro8u* s, Kro8u* d, KroiSize r) { return kroiGrayToRGB_8u_C1C4R(s, 64, d, 64, r, 1); },
        [](const Kro8u* s, Kro8u* d, KroiSize r) { return kroiGrayToRGB_32f_C1C3R((const Kro32f*)s, 64, (Kro32f*)d, 64, r); },
        [](const Kro8u* s, Kro8u* d, KroiSize r) { return kroiYCbCr422ToGray_8u_C2C1R(s, 64, d, 64, r); },
    };
    for (const auto& call : calls) {
        kt::Canvas src(64, 2), dst(64, 2);
        const auto before = dst.snapshot();
        EXPECT_EQ(call(nullptr, dst.data(), {-1, 0}), kroErrNullPtr);
        EXPECT_EQ(call(src.data(), nullptr, {0, 2}), kroErrNullPtr);
        EXPECT_EQ(call(src.data(), dst.data(), {0, 2}), kroErrSize);
        EXPECT_EQ(call(src.data(), dst.data(), {2, 0}), kroErrSize);
        EXPECT_EQ(call(src.data(), dst.data(), {-5, 2}), kroErrSize);
        EXPECT_TRUE(dst.untouchedSince(before));
    }
}

}  // namespace
