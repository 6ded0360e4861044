// Images of the Y'UV layouts with halved chroma for the 4:2:2 and 4:2:0
// tests: planes of their own sizes, on canvases with canaries or dense against
// an inaccessible page, and the expected bytes of a destination.
#pragma once
#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <memory>
#include <random>
#include <stdexcept>
#include <vector>

#include "test_common.h"
#include "yuv/yuvsub_forms.h"

namespace yt {

using k0::yuv::Px;
using kt::byName;

enum class Lay { RgbC3, BgrC3, RgbP3, RgbA4, BgrA4, YuvC2, Yuv422, Yuv420 };

struct PlaneSize { int rowBytes, rows; };

inline std::vector<PlaneSize> planeSizes(Lay l, int w, int h) {
    switch (l) {
        case Lay::RgbC3: case Lay::BgrC3: return {{3 * w, h}};
        case Lay::RgbA4: case Lay::BgrA4: return {{4 * w, h}};
        case Lay::RgbP3: return {{w, h}, {w, h}, {w, h}};
        case Lay::YuvC2: return {{2 * w, h}};
        case Lay::Yuv422: return {{w, h}, {(w + 1) / 2, h}, {(w + 1) / 2, h}};
        case Lay::Yuv420: return {{w, h}, {w / 2, h / 2}, {w / 2, h / 2}};
    }
    return {};
}

using Bytes = std::vector<std::vector<uint8_t>>;

class Image {
public:
    Lay lay;
    int w, h;
    std::array<Kro8u*, 3> p{};
    std::array<int, 3> step{};

    bool nullArrays = false;  // in() and out() give null
    bool nullSteps = false;   // steps() gives null

    // Canvases with `pad` canary bytes after each row; with `align16`, rows
    // start on 16-byte boundaries and at least 16 canary bytes follow each.
    Image(Lay l, int w_, int h_, std::size_t pad = 37, bool align16 = false)
        : lay(l), w(w_), h(h_), sizes(planeSizes(l, w_, h_)) {
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            const std::size_t rb = sizes[i].rowBytes;
            if (align16) pad = 16 + (16 - rb % 16) % 16;
            canvases.push_back(std::make_unique<kt::Canvas>(rb, sizes[i].rows, pad));
            p[i] = canvases.back()->data();
            step[i] = canvases.back()->step();
        }
    }
    // Dense planes that end right before an inaccessible page or begin right
    // after one. With `dropOdd`, a full-resolution plane ends where its last
    // whole 2x2 cell ends: the odd last row and the odd last pixel before it
    // lie in the inaccessible page (4:2:0 reads and writes whole cells only).
    Image(Lay l, int w_, int h_, kt::Guarded::Side side, bool dropOdd = false)
        : lay(l), w(w_), h(h_), sizes(planeSizes(l, w_, h_)) {
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            const int rb = sizes[i].rowBytes;
            const int odd = dropOdd && sizes[i].rows == h ? (h & 1) * rb + (w & 1) * (rb / w) : 0;
            const int bytes = std::max(0, rb * sizes[i].rows - odd);
            cut.push_back(odd);
            guarded.push_back(std::make_unique<kt::Guarded>(bytes, side));
            p[i] = guarded.back()->data();
            step[i] = sizes[i].rowBytes;
        }
    }
    int planes() const { return static_cast<int>(sizes.size()); }
    const PlaneSize& size(int i) const { return sizes[i]; }
    Kro8u& at(int plane, int xb, int y) const { return p[plane][static_cast<std::ptrdiff_t>(y) * step[plane] + xb]; }
    const Kro8u* const* in() const { return nullArrays ? nullptr : const_cast<const Kro8u* const*>(p.data()); }
    Kro8u* const* out() { return nullArrays ? nullptr : p.data(); }
    const int* steps() const { return nullSteps ? nullptr : step.data(); }

    // Bytes of plane i that exist, row after row.
    std::size_t count(int i) const {
        return static_cast<std::size_t>(sizes[i].rowBytes) * sizes[i].rows - (cut.empty() ? 0 : cut[i]);
    }
    template <class F>
    void each(F f) const {
        for (int i = 0; i < planes(); ++i)
            for (std::size_t k = 0; k < count(i); ++k) f(i, static_cast<int>(k % sizes[i].rowBytes), static_cast<int>(k / sizes[i].rowBytes));
    }
    void randomize(uint32_t seed) {
        std::mt19937 g(seed);
        each([&](int i, int x, int y) { at(i, x, y) = static_cast<Kro8u>(g()); });
    }
    bool intact() const {
        for (auto& c : canvases)
            if (!c->canariesIntact()) return false;
        return true;
    }
    Bytes bytes() const {
        Bytes b(planes());
        for (int i = 0; i < planes(); ++i) {
            const std::size_t rb = sizes[i].rowBytes, n = count(i);
            b[i].reserve(n);
            for (std::size_t k = 0; k < n; k += rb) b[i].insert(b[i].end(), &at(i, 0, k / rb), &at(i, 0, k / rb) + std::min(rb, n - k));
        }
        return b;
    }

private:
    std::vector<PlaneSize> sizes;
    std::vector<std::unique_ptr<kt::Canvas>> canvases;
    std::vector<std::unique_ptr<kt::Guarded>> guarded;
    std::vector<int> cut;  // bytes left out at the end of each guarded plane
};

// The bytes a call should leave in a destination: -1 where it keeps what it held.
struct Expect {
    const Image& img;
    std::vector<std::vector<int16_t>> v;
    explicit Expect(const Image& d) : img(d), v(d.planes()) {
        for (int i = 0; i < d.planes(); ++i) v[i].assign(static_cast<std::size_t>(d.size(i).rowBytes) * d.size(i).rows, -1);
    }
    void set(int plane, int xb, int y, int value) {
        v[plane][static_cast<std::size_t>(y) * img.size(plane).rowBytes + xb] = static_cast<int16_t>(value);
    }
};

// Every byte of the destination region against the expectation, or against
// its bytes before the call where nothing is expected.
inline ::testing::AssertionResult matches(const Image& d, const Expect& e, const Bytes& before, bool canaries = true) {
    const Bytes now = d.bytes();
    int bad = 0;
    auto r = ::testing::AssertionSuccess();
    for (int i = 0; i < d.planes(); ++i)
        for (std::size_t k = 0; k < now[i].size(); ++k) {
            const int want = e.v[i][k] < 0 ? before[i][k] : e.v[i][k];
            if (now[i][k] != want && bad++ < 4) {
                const int rb = d.size(i).rowBytes;
                if (bad == 1) r = ::testing::AssertionFailure();
                r << " plane " << i << " byte " << k % rb << " row " << k / rb << ": " << int(now[i][k]) << " want "
                  << want;
            }
        }
    if (bad) r << " (" << bad << " bytes differ)";
    return !canaries || d.intact() ? r : (r = ::testing::AssertionFailure()) << " canaries overwritten";
}

// RGB pixels by layout; a four-sample destination has its alpha cleared.
inline Px rgbAt(const Image& im, int x, int y) {
    switch (im.lay) {
        case Lay::RgbC3: return {im.at(0, 3 * x, y), im.at(0, 3 * x + 1, y), im.at(0, 3 * x + 2, y)};
        case Lay::RgbP3: return {im.at(0, x, y), im.at(1, x, y), im.at(2, x, y)};
        case Lay::RgbA4: return {im.at(0, 4 * x, y), im.at(0, 4 * x + 1, y), im.at(0, 4 * x + 2, y)};
        case Lay::BgrA4: return {im.at(0, 4 * x + 2, y), im.at(0, 4 * x + 1, y), im.at(0, 4 * x, y)};
        default: throw std::logic_error("not an RGB layout");
    }
}
inline void setRgb(Image& im, int x, int y, Px v) {
    const int samples[3] = {v.a, v.b, v.c};
    for (int c = 0; c < 3; ++c) {
        switch (im.lay) {
            case Lay::RgbC3: im.at(0, 3 * x + c, y) = samples[c]; break;
            case Lay::RgbP3: im.at(c, x, y) = samples[c]; break;
            case Lay::RgbA4: im.at(0, 4 * x + c, y) = samples[c]; break;
            case Lay::BgrA4: im.at(0, 4 * x + 2 - c, y) = samples[c]; break;
            default: throw std::logic_error("not an RGB layout");
        }
    }
}
inline void expectRgb(Expect& e, int x, int y, Px v) {
    const int samples[3] = {v.a, v.b, v.c};
    for (int c = 0; c < 3; ++c) {
        switch (e.img.lay) {
            case Lay::RgbC3: e.set(0, 3 * x + c, y, samples[c]); break;
            case Lay::BgrC3: e.set(0, 3 * x + 2 - c, y, samples[c]); break;
            case Lay::RgbP3: e.set(c, x, y, samples[c]); break;
            case Lay::RgbA4: e.set(0, 4 * x + c, y, samples[c]); e.set(0, 4 * x + 3, y, 0); break;
            default: throw std::logic_error("not an RGB destination");
        }
    }
}

// A bijection of the 2^24 colours, so that a cell's other pixels run through
// all colours too: multiplication by an odd number modulo 2^24.
inline uint32_t scramble(uint32_t i, uint32_t odd) { return (i * odd) & 0xFFFFFF; }
inline Px colour(uint32_t i) { return {static_cast<uint8_t>(i >> 16), static_cast<uint8_t>(i >> 8), static_cast<uint8_t>(i)}; }

// Whether all of a call's pointers and steps are multiples of 16.
inline bool aligned16(const Image& a, const Image& b) {
    uintptr_t bits = 0;
    for (const Image* im : {&a, &b})
        for (int i = 0; i < im->planes(); ++i) bits |= reinterpret_cast<uintptr_t>(im->p[i]) | static_cast<unsigned>(im->step[i]);
    return (bits & 15) == 0;
}

using Call = std::function<KroStatus(Image& s, Image& d, KroiSize)>;

// Validation of a member: the null pointers of the call first (the plane
// arrays, the arrays of steps of a planar Y'UV side where the member has
// them, single pointers), then a size below `minSize`, then the members of
// the plane arrays; and a failed call writes nothing.
inline void checkValidation(const char* name, Lay in, Lay out, const Call& call, bool stepArrays, int minSize) {
    Image s(in, 6, 4), d(out, 6, 4);
    const Bytes before = d.bytes();
    for (KroiSize bad : {KroiSize{0, 4}, KroiSize{6, 0}, KroiSize{-3, -3}, KroiSize{minSize - 1, 4}, KroiSize{6, minSize - 1}})
        EXPECT_EQ(call(s, d, bad), kroErrSize) << name;
    for (Image* im : {&s, &d}) {
        const bool planar = im->planes() > 1, yuvSteps = stepArrays && (im->lay == Lay::Yuv422 || im->lay == Lay::Yuv420);
        im->nullArrays = true;
        if (planar) {
            EXPECT_EQ(call(s, d, {-1, 4}), kroErrNullPtr) << name << " null plane array";
        }
        im->nullArrays = false;
        im->nullSteps = true;
        if (yuvSteps) {
            EXPECT_EQ(call(s, d, {-1, 4}), kroErrNullPtr) << name << " null step array";
        }
        im->nullSteps = false;
        Kro8u*& last = im->p[im->planes() - 1];
        Kro8u* const keep = last;
        last = nullptr;
        EXPECT_EQ(call(s, d, {minSize - 1, 4}), planar ? kroErrSize : kroErrNullPtr) << name;
        EXPECT_EQ(call(s, d, {6, 4}), kroErrNullPtr) << name;
        last = keep;
    }
    EXPECT_EQ(d.bytes(), before) << name << " wrote on a failed call";
}

}  // namespace yt
