// Bayer mosaic to RGB by CFA interpolation, against a plain reference of the
// frame and interior rules, on whole images and on regions of them.
#include <array>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

#include "test_common.h"

namespace {

// ---- the reference ------------------------------------------------------------

const char* const kCells[4] = {"BGGR", "RGGB", "GBRG", "GRBG"};

int colourOf(int pattern, int x, int y) {
    const char c = kCells[pattern][(y % 2) * 2 + x % 2];
    return c == 'R' ? 0 : c == 'G' ? 1 : 2;
}

struct Mosaic {
    int W, H;
    std::vector<int> v;
    int at(int x, int y) const { return v[static_cast<std::size_t>(y) * W + x]; }
};

// R, G, B of pixel (x, y) of the whole image.
std::array<int, 3> reference(const Mosaic& m, int pattern, int x, int y) {
    auto P = [&](int dx, int dy) {
        int xx = x + dx, yy = y + dy;
        if (xx < 0) xx = -xx;
        if (xx >= m.W) xx = 2 * m.W - 2 - xx;
        if (yy < 0) yy = -yy;
        if (yy >= m.H) yy = 2 * m.H - 2 - yy;
        return m.at(xx, yy);
    };
    const bool frame = x < 2 || y < 2 || x > m.W - 3 || y > m.H - 3;
    const int c = colourOf(pattern, x, y);
    std::array<int, 3> rgb{};
    if (c == 1) {
        const int across = colourOf(pattern, x + 1, y);
        rgb[1] = P(0, 0);
        rgb[across] = (P(-1, 0) + P(1, 0) + 1) >> 1;
        rgb[2 - across] = (P(0, -1) + P(0, 1) + 1) >> 1;
        return rgb;
    }
    rgb[c] = P(0, 0);
    rgb[2 - c] = (P(-1, -1) + P(1, -1) + P(-1, 1) + P(1, 1) + 2) >> 2;
    const int four = (P(-1, 0) + P(1, 0) + P(0, -1) + P(0, 1) + 2) >> 2;
    if (frame) {
        rgb[1] = four;
    } else {
        const int V = std::abs(P(0, -2) - P(0, 2)), H = std::abs(P(-2, 0) - P(2, 0));
        rgb[1] = V < H ? (P(0, -1) + P(0, 1) + 1) >> 1 : V > H ? (P(-1, 0) + P(1, 0) + 1) >> 1 : four;
    }
    return rgb;
}

// ---- images ---------------------------------------------------------------------

// An image of `ch` samples a pixel with canaries around every row; the step
// stays even so that 16-bit rows stay whole.
template <class T>
struct Image {
    int w, h, ch;
    kt::Canvas c;
    Image(int w_, int h_, int ch_) : w(w_), h(h_), ch(ch_), c(static_cast<std::size_t>(w_) * ch_ * sizeof(T), h_, 38) {}
    T* data() { return reinterpret_cast<T*>(c.data()); }
    int step() const { return c.step(); }
    T& at(int x, int y, int k = 0) { return reinterpret_cast<T*>(c.row(y))[x * ch + k]; }
};

constexpr int maxOf(const Kro8u*) { return 255; }
constexpr int maxOf(const Kro16u*) { return 65535; }

// A mosaic of random samples, of all values or only of `levels` values
// spread over the range (few levels make many gradient ties).
template <class T>
Mosaic randomMosaic(Image<T>& img, uint32_t seed, int levels = 0) {
    const int top = maxOf(static_cast<const T*>(nullptr));
    std::mt19937 g(seed);
    Mosaic m{img.w, img.h, {}};
    for (int y = 0; y < img.h; ++y)
        for (int x = 0; x < img.w; ++x) {
            const int v = levels ? static_cast<int>(g() % levels) * (top / (levels - 1)) : static_cast<int>(g() % (top + 1));
            img.at(x, y) = static_cast<T>(v);
            m.v.push_back(v);
        }
    return m;
}

KroStatus cfa(const Kro8u* s, KroiRect r, KroiSize z, int ss, Kro8u* d, int ds, int p) {
    return kroiCFAToRGB_8u_C1C3R(s, r, z, ss, d, ds, static_cast<BayerPattern>(p));
}
KroStatus cfa(const Kro16u* s, KroiRect r, KroiSize z, int ss, Kro16u* d, int ds, int p) {
    return kroiCFAToRGB_16u_C1C3R(s, r, z, ss, d, ds, static_cast<BayerPattern>(p));
}

template <class T>
KroStatus runRegion(Image<T>& src, KroiRect r, Image<T>& dst, int pattern) {
    return cfa(src.data(), r, {src.w, src.h}, src.step(), dst.data(), dst.step(), pattern);
}

// Compares got(x, y, k), channel k of the destination pixel that stands for
// the image's (x0 + x, y0 + y), with the reference over w x h pixels.
template <class Got>
::testing::AssertionResult matches(const Mosaic& m, int pattern, int x0, int y0, int w, int h, Got&& got) {
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const auto want = reference(m, pattern, x0 + x, y0 + y);
            for (int k = 0; k < 3; ++k)
                if (got(x, y, k) != want[k])
                    return ::testing::AssertionFailure() << kCells[pattern] << " " << m.W << "x" << m.H << ": pixel (" << x0 + x
                                                         << "," << y0 + y << ") channel " << k << " is " << int(got(x, y, k))
                                                         << ", want " << want[k];
        }
    return ::testing::AssertionSuccess();
}

// The same for a destination image, whose canaries must be intact too.
template <class T>
::testing::AssertionResult matchesReference(const Mosaic& m, int pattern, Image<T>& dst, int x0, int y0, int w, int h) {
    if (!dst.c.canariesIntact()) return ::testing::AssertionFailure() << m.W << "x" << m.H << ": a canary changed";
    return matches(m, pattern, x0, y0, w, h, [&](int x, int y, int k) { return dst.at(x, y, k); });
}

// The whole image converted and compared with the reference.
template <class T>
::testing::AssertionResult wholeImageMatches(int W, int H, int pattern, uint32_t seed, int levels = 0) {
    Image<T> src(W, H, 1), dst(W, H, 3);
    const Mosaic m = randomMosaic(src, seed, levels);
    if (KroStatus st = runRegion(src, {0, 0, W, H}, dst, pattern)) return ::testing::AssertionFailure() << "status " << st;
    return matchesReference(m, pattern, dst, 0, 0, W, H);
}

template <class T>
class Cfa : public ::testing::Test {};
using Types = ::testing::Types<Kro8u, Kro16u>;
TYPED_TEST_SUITE(Cfa, Types);

// ---- whole images -----------------------------------------------------------------

TYPED_TEST(Cfa, EverySizeTo40x40AllPatternsMatchesReference) {
    for (int H = 2; H <= 40; ++H)
        for (int W = 2; W <= 40; ++W)
            for (int p = 0; p < 4; ++p) {
                ASSERT_TRUE(wholeImageMatches<TypeParam>(W, H, p, 1000 * H + 10 * W + p));
                ASSERT_TRUE(wholeImageMatches<TypeParam>(W, H, p, 7 + W * H, 3)) << "few levels";
            }
}

TYPED_TEST(Cfa, WideImagesMatchReference) {
    for (int W : {41, 63, 64, 65, 66, 67, 68, 69, 70, 71, 79, 80, 83, 98, 99, 100, 131, 133, 200, 255, 256, 257, 1000, 1921})
        for (int H : {2, 3, 5, 6, 9})
            for (int p = 0; p < 4; ++p) {
                ASSERT_TRUE(wholeImageMatches<TypeParam>(W, H, p, W * 31 + H * 7 + p));
                ASSERT_TRUE(wholeImageMatches<TypeParam>(W, H, p, W + H + p, 2)) << "two levels";
            }
}

TYPED_TEST(Cfa, UniformImagesGiveTheirValue) {
    const int top = maxOf(static_cast<const TypeParam*>(nullptr));
    for (int v : {0, 1, top / 2, top - 1, top})
        for (auto [W, H] : {std::pair{2, 2}, {3, 3}, {5, 5}, {77, 9}, {150, 4}})
            for (int p = 0; p < 4; ++p) {
                Image<TypeParam> src(W, H, 1), dst(W, H, 3);
                for (int y = 0; y < H; ++y)
                    for (int x = 0; x < W; ++x) src.at(x, y) = static_cast<TypeParam>(v);
                ASSERT_EQ(runRegion(src, {0, 0, W, H}, dst, p), kroOk);
                for (int y = 0; y < H; ++y)
                    for (int x = 0; x < W; ++x)
                        for (int k = 0; k < 3; ++k) ASSERT_EQ(dst.at(x, y, k), v) << W << "x" << H << " at " << x << "," << y;
                ASSERT_TRUE(dst.c.canariesIntact());
            }
}

// A 2x2 image is all frame: corners mirror onto the other pixels.
TYPED_TEST(Cfa, TwoByTwoKnownAnswers) {
    Image<TypeParam> src(2, 2, 1), dst(2, 2, 3);
    src.at(0, 0) = 10, src.at(1, 0) = 20, src.at(0, 1) = 31, src.at(1, 1) = 40;
    ASSERT_EQ(runRegion(src, {0, 0, 2, 2}, dst, kroiBayerRGGB), kroOk);
    const int rggb[4][3] = {{10, 26, 40}, {10, 20, 40}, {10, 31, 40}, {10, 26, 40}};
    for (int i = 0; i < 4; ++i)
        for (int k = 0; k < 3; ++k) EXPECT_EQ(dst.at(i % 2, i / 2, k), rggb[i][k]) << "RGGB pixel " << i << " channel " << k;
    ASSERT_EQ(runRegion(src, {0, 0, 2, 2}, dst, kroiBayerBGGR), kroOk);
    for (int i = 0; i < 4; ++i)
        for (int k = 0; k < 3; ++k) EXPECT_EQ(dst.at(i % 2, i / 2, k), rggb[i][2 - k]) << "BGGR pixel " << i << " channel " << k;
}

// At a red site with equal gradients green is the mean of its four green
// neighbours, wherever the site falls in a row (block, masked block, tail);
// with a smaller vertical gradient it is the mean of the vertical pair.
TYPED_TEST(Cfa, GradientTieTakesFourNeighbourMean) {
    const int W = 200, H = 9;
    for (int x = 2; x < W - 2; x += 2)
        for (int hGrad : {10, 11}) {
            Image<TypeParam> src(W, H, 1), dst(W, H, 3);
            for (int y = 0; y < H; ++y)
                for (int i = 0; i < W; ++i) src.at(i, y) = 0;
            const int y = 4;  // RGGB: (even, even) is red
            src.at(x, y - 2) = 10, src.at(x, y + 2) = 20;               // V = 10
            src.at(x - 2, y) = 30, src.at(x + 2, y) = 30 + hGrad;       // H = 10 or 11
            src.at(x, y - 1) = 100, src.at(x - 1, y) = 0, src.at(x + 1, y) = 200;  // up, left, right; down 0
            ASSERT_EQ(runRegion(src, {0, 0, W, H}, dst, kroiBayerRGGB), kroOk);
            EXPECT_EQ(dst.at(x, y, 1), hGrad == 10 ? 75 : 50) << "red site at column " << x;
        }
}

// ---- regions ------------------------------------------------------------------------

// Regions anywhere in the image, at odd and even offsets, of any size and
// running over the image or not: each gives the whole-image pixels at its
// positions, and writes only its own pixels.
TYPED_TEST(Cfa, RegionsGiveTheWholeImagePixels) {
    std::mt19937 g(5);
    for (auto [W, H] : {std::pair{150, 37}, {9, 8}, {5, 5}, {3, 70}})
        for (int p = 0; p < 4; ++p) {
            Image<TypeParam> src(W, H, 1), whole(W, H, 3);
            randomMosaic(src, W * H + p);
            ASSERT_EQ(runRegion(src, {0, 0, W, H}, whole, p), kroOk);
            for (int n = 0; n < 150; ++n) {
                const int x = static_cast<int>(g() % W), y = static_cast<int>(g() % H);
                const int w = 1 + static_cast<int>(g() % (W - x + 3)), h = 1 + static_cast<int>(g() % (H - y + 3));
                const int cw = std::min(w, W - x), chh = std::min(h, H - y);
                Image<TypeParam> dst(cw, chh, 3);
                ASSERT_EQ(runRegion(src, {x, y, w, h}, dst, p), kroOk);
                for (int yy = 0; yy < chh; ++yy)
                    for (int xx = 0; xx < cw; ++xx)
                        for (int k = 0; k < 3; ++k)
                            ASSERT_EQ(dst.at(xx, yy, k), whole.at(x + xx, y + yy, k))
                                << kCells[p] << " region " << x << "," << y << " " << w << "x" << h << " at " << xx << "," << yy;
                ASSERT_TRUE(dst.c.canariesIntact()) << "region " << x << "," << y << " " << w << "x" << h;
            }
        }
}

TYPED_TEST(Cfa, OverrunningRegionIsCut) {
    const int W = 70, H = 11;
    Image<TypeParam> src(W, H, 1), dst(W, H, 3), far(W - 3, H - 4, 3);
    const Mosaic m = randomMosaic(src, 3);
    ASSERT_EQ(runRegion(src, {0, 0, W + 10, H + 10}, dst, kroiBayerGRBG), kroOk);
    EXPECT_TRUE(matchesReference(m, kroiBayerGRBG, dst, 0, 0, W, H));
    ASSERT_EQ(runRegion(src, {3, 4, INT_MAX, INT_MAX}, far, kroiBayerGRBG), kroOk);
    EXPECT_TRUE(matchesReference(m, kroiBayerGRBG, far, 3, 4, W - 3, H - 4));
}

TYPED_TEST(Cfa, EmptyRegionWritesNothing) {
    Image<TypeParam> src(20, 20, 1), dst(20, 20, 3);
    randomMosaic(src, 9);
    const auto before = dst.c.snapshot();
    for (KroiRect r : {KroiRect{0, 0, 0, 5}, {0, 0, 5, 0}, {2, 2, -1, 5}, {2, 2, 5, -7}, {20, 0, 5, 5}, {0, 20, 5, 5}}) {
        EXPECT_EQ(runRegion(src, r, dst, 0), kroOk);
        EXPECT_TRUE(dst.c.untouchedSince(before)) << r.x << "," << r.y << " " << r.width << "x" << r.height;
    }
}

// ---- steps ----------------------------------------------------------------

// The 16-bit function halves its byte steps by an arithmetic shift: an odd
// step acts as the even step below it, upward steps included.
TEST(Cfa16u, OddByteStepsLoseTheirLowBit) {
    const int W = 40, H = 9;
    Image<Kro16u> src(W, H, 1), even(W, H, 3), odd(W, H, 3);
    randomMosaic(src, 12);
    ASSERT_EQ(cfa(src.data(), {0, 0, W, H}, {W, H}, src.step(), even.data(), even.step(), 1), kroOk);
    ASSERT_EQ(cfa(src.data(), {0, 0, W, H}, {W, H}, src.step() + 1, odd.data(), odd.step() + 1, 1), kroOk);
    EXPECT_EQ(even.c.region(), odd.c.region());
    EXPECT_TRUE(odd.c.canariesIntact());

    const Kro16u* last = &src.at(0, H - 1);
    ASSERT_EQ(cfa(last, {0, 0, W, H}, {W, H}, -src.step(), &even.at(0, H - 1), -even.step(), 2), kroOk);
    ASSERT_EQ(cfa(last, {0, 0, W, H}, {W, H}, -src.step() + 1, &odd.at(0, H - 1), -odd.step() + 1, 2), kroOk);
    EXPECT_EQ(even.c.region(), odd.c.region());
    EXPECT_TRUE(odd.c.canariesIntact());
}

// ---- checks ---------------------------------------------------------------------------

// Null pointers, then the image width, then its height, then the pattern;
// a failed call writes nothing. The region and the steps are not checked.
TYPED_TEST(Cfa, ChecksInTheirOrder) {
    using T = TypeParam;
    Image<T> src(8, 8, 1), dst(8, 8, 3);
    randomMosaic(src, 1);
    const auto before = dst.c.snapshot();
    const KroiRect r{0, 0, 8, 8};
    const int bad = 4;
    struct Case {
        const T* s;
        T* d;
        KroiSize z;
        int p;
        KroStatus want;
    };
    const Case cases[] = {
        {nullptr, dst.data(), {1, 1}, bad, kroErrNullPtr}, {src.data(), nullptr, {0, 0}, -1, kroErrNullPtr},
        {nullptr, nullptr, {8, 8}, 0, kroErrNullPtr},      {src.data(), dst.data(), {1, 100}, bad, kroErrSize},
        {src.data(), dst.data(), {-5, 1}, bad, kroErrSize}, {src.data(), dst.data(), {100, 1}, bad, kroErrSize},
        {src.data(), dst.data(), {8, 8}, bad, kroErrBadArg}, {src.data(), dst.data(), {8, 8}, -1, kroErrBadArg},
        {src.data(), dst.data(), {8, 8}, INT_MIN, kroErrBadArg},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(cfa(c.s, r, c.z, src.step(), c.d, dst.step(), c.p), c.want) << c.z.width << "x" << c.z.height << " pattern " << c.p;
        EXPECT_TRUE(dst.c.untouchedSince(before));
    }
}

}  // namespace
