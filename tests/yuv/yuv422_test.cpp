// RGB <-> Y'UV 4:2:2: every cell and last pixel takes the form of its stage,
// nothing outside the region is written, and the forms without steps choose
// between one long row and dense rows.
#include <functional>
#include <random>
#include <stdexcept>

#include "yuv422_images.h"

namespace {

using namespace yt;
using k0::yuv::Cell2;

using CellForm = Cell2 (*)(Px, Px);
using PixelForm = Px (*)(int, int, int);

// A member with its forms: block over the first `block` pixels of a row
// (width & ~15, or & ~7), pair over the other cells, last on an odd pixel.
struct Member {
    const char* name;
    Lay in, out;
    Call call;
    int blockMask;
    CellForm fBlock = nullptr, fPair = nullptr, fBlockAl = nullptr, fPairAl = nullptr;
    Px (*fLast)(Px) = nullptr;
    PixelForm iBlock = nullptr, iPair = nullptr, iLast = nullptr;
    bool forward() const { return fBlock != nullptr; }
};

// Expected bytes of one row of pixels [x0, x0 + w) as one kernel call sees it.
void modelRow(const Member& m, const Image& s, Expect& e, int y, int x0, int w, bool aligned) {
    const int nb = w & ~m.blockMask;
    for (int x = 0; x + 1 < w; x += 2) {
        const int p = x0 + x, k = p / 2;
        if (m.forward()) {
            const CellForm f = x < nb ? (aligned && m.fBlockAl ? m.fBlockAl : m.fBlock) : (aligned && m.fPairAl ? m.fPairAl : m.fPair);
            const Cell2 c = f(rgbAt(s, p, y), rgbAt(s, p + 1, y));
            if (m.out == Lay::YuvC2) {
                e.set(0, 4 * k, y, c.y0), e.set(0, 4 * k + 1, y, c.u), e.set(0, 4 * k + 2, y, c.y1), e.set(0, 4 * k + 3, y, c.v);
            } else {
                e.set(0, p, y, c.y0), e.set(0, p + 1, y, c.y1), e.set(1, k, y, c.u), e.set(2, k, y, c.v);
            }
        } else {
            const PixelForm f = x < nb ? m.iBlock : m.iPair;
            const bool c2 = m.in == Lay::YuvC2;
            const int y0 = c2 ? s.at(0, 4 * k, y) : s.at(0, p, y), y1 = c2 ? s.at(0, 4 * k + 2, y) : s.at(0, p + 1, y);
            const int u = c2 ? s.at(0, 4 * k + 1, y) : s.at(1, k, y), v = c2 ? s.at(0, 4 * k + 3, y) : s.at(2, k, y);
            expectRgb(e, p, y, f(y0, u, v));
            expectRgb(e, p + 1, y, f(y1, u, v));
        }
    }
    if (w & 1) {
        const int p = x0 + w - 1, k = p / 2;
        if (m.forward()) {
            const Px o = m.fLast(rgbAt(s, p, y));
            if (m.out == Lay::YuvC2) e.set(0, 2 * p, y, o.a), e.set(0, 2 * p + 1, y, o.b);
            else e.set(0, p, y, o.a), e.set(1, k, y, o.b), e.set(2, k, y, o.c);
        } else if (m.in == Lay::YuvC2) {  // V is the byte before Y
            expectRgb(e, p, y, m.iLast(s.at(0, 2 * p, y), s.at(0, 2 * p + 1, y), s.at(0, 2 * p - 1, y)));
        } else {
            expectRgb(e, p, y, m.iLast(s.at(0, p, y), s.at(1, k, y), s.at(2, k, y)));
        }
    }
}

// Converts s into d and checks every byte of d, the canaries of both and that
// the family asks no feature question.
// Canaries are left out of the sweeps over all inputs, which test arithmetic.
void check(const Member& m, Image& s, Image& d, KroiSize roi, std::function<void(Expect&)> model, const char* what,
           bool canaries = true) {
    const Bytes before = d.bytes(), src = s.bytes();
    kt::resetQueries();
    ASSERT_EQ(m.call(s, d, roi), kroOk) << m.name;
    EXPECT_EQ(kt::featureQueries(), 0) << m.name;
    Expect e(d);
    model(e);
    EXPECT_TRUE(matches(d, e, before, canaries)) << m.name << " " << what << " " << roi.width << "x" << roi.height;
    EXPECT_TRUE((!canaries || s.intact()) && s.bytes() == src) << m.name << " touched its source";
}

void checkR(const Member& m, Image& s, Image& d, int w, int h, const char* what, bool canaries = true) {
    const bool al = aligned16(s, d);
    check(m, s, d, {w, h}, [&](Expect& e) { for (int y = 0; y < h; ++y) modelRow(m, s, e, y, 0, w, al); }, what, canaries);
}

const std::vector<Member>& members() {
    using namespace k0::yuv;
    static const std::vector<Member> all = [] {
        std::vector<Member> v;
        Member m{"RGBToYUV422_C3C2R", Lay::RgbC3, Lay::YuvC2,
                 [](Image& s, Image& d, KroiSize r) { return kroiRGBToYUV422_8u_C3C2R(s.p[0], s.step[0], d.p[0], d.step[0], r); }, 15};
        m.fBlock = formG1, m.fPair = formH1, m.fLast = formL1;
        v.push_back(m);
        m = {"RGBToYUV422_C3P3R", Lay::RgbC3, Lay::Yuv422,
             [](Image& s, Image& d, KroiSize r) { return kroiRGBToYUV422_8u_C3P3R(s.p[0], s.step[0], d.out(), d.steps(), r); }, 15};
        m.fBlock = formG2, m.fPair = formH2, m.fBlockAl = formG3, m.fPairAl = formG2, m.fLast = formL2;
        v.push_back(m);
        m = {"RGBToYUV422_P3R", Lay::RgbP3, Lay::Yuv422,
             [](Image& s, Image& d, KroiSize r) { return kroiRGBToYUV422_8u_P3R(s.in(), s.step[0], d.out(), d.steps(), r); }, 15};
        m.fBlock = formG4, m.fPair = formH2, m.fLast = formL3;
        v.push_back(m);
        m = {"YUV422ToRGB_C2C3R", Lay::YuvC2, Lay::RgbC3,
             [](Image& s, Image& d, KroiSize r) { return kroiYUV422ToRGB_8u_C2C3R(s.p[0], s.step[0], d.p[0], d.step[0], r); }, 15};
        m.iBlock = formJ1, m.iPair = formJ4, m.iLast = formJ4;
        v.push_back(m);
        m = {"YUV422ToRGB_P3C3R", Lay::Yuv422, Lay::RgbC3,
             [](Image& s, Image& d, KroiSize r) { return kroiYUV422ToRGB_8u_P3C3R(s.in(), s.steps(), d.p[0], d.step[0], r); }, 15};
        m.iBlock = formJ1, m.iPair = formJ3, m.iLast = formJ3;
        v.push_back(m);
        m = {"YUV422ToRGB_P3R", Lay::Yuv422, Lay::RgbP3,
             [](Image& s, Image& d, KroiSize r) { return kroiYUV422ToRGB_8u_P3R(s.in(), s.steps(), d.out(), d.step[0], r); }, 15};
        m.iBlock = formJ1, m.iPair = formJ3, m.iLast = formJ5;
        v.push_back(m);
        m = {"YUV422ToRGB_P3AC4R", Lay::Yuv422, Lay::RgbA4,
             [](Image& s, Image& d, KroiSize r) { return kroiYUV422ToRGB_8u_P3AC4R(s.in(), s.steps(), d.p[0], d.step[0], r); }, 7};
        m.iBlock = formJ2, m.iPair = formJ3, m.iLast = formJ3;
        v.push_back(m);
        return v;
    }();
    return all;
}

const Member& member(const std::string& name) { return byName(members(), name); }

// ---- the members with steps ---------------------------------------------------------------

TEST(Members, EveryByteByStageOnCanvasesAlignedOrNot) {
    for (const Member& m : members())
        for (int w : {1, 2, 3, 5, 7, 8, 9, 14, 15, 16, 17, 18, 23, 31, 32, 33, 47, 64, 65, 66, 95, 127, 129, 130})
            for (int h : {1, 2, 9})
                for (bool al : {false, true}) {
                    Image s(m.in, w, h, 37, al), d(m.out, w, h, 37, al);
                    s.randomize(w * 131 + h);
                    d.randomize(w + 7);
                    checkR(m, s, d, w, h, al ? "aligned" : "unaligned");
                }
}

// The choice of the aligned kernel is observable: both kernels over the same
// pixels give different chroma somewhere.
TEST(Members, AlignmentOfTheInterleavedToPlanarMemberChangesBytes) {
    const Member& m = member("RGBToYUV422_C3P3R");
    Image s(m.in, 64, 16, 37, true), a(m.out, 64, 16, 37, true), u(m.out, 64, 16, 37, false);
    s.randomize(3);
    ASSERT_EQ(m.call(s, a, {64, 16}), kroOk);
    ASSERT_EQ(m.call(s, u, {64, 16}), kroOk);
    int differ = 0;
    for (int y = 0; y < 16; ++y)
        for (int k = 0; k < 32; ++k) differ += a.at(1, k, y) != u.at(1, k, y) || a.at(2, k, y) != u.at(2, k, y);
    EXPECT_GT(differ, 0);
}

TEST(Members, LastPixelOfTheTwoByteSourceTakesItsVFromTheByteBefore) {
    const Kro8u src[] = {0xF0, 81, 90, 0, 0, 0, 0, 0};  // V, then Y, U of a one-pixel row
    Kro8u rgb[3] = {};
    ASSERT_EQ(kroiYUV422ToRGB_8u_C2C3R(src + 1, 8, rgb, 3, {1, 1}), kroOk);
    const Px want = k0::yuv::formJ4(81, 90, 0xF0);
    EXPECT_EQ(rgb[0], want.a);
    EXPECT_EQ(rgb[1], want.b);
    EXPECT_EQ(rgb[2], want.c);
    EXPECT_NE(want.a, k0::yuv::formJ4(81, 90, 128).a);  // V does matter here
}

// ---- the forms without steps ----------------------------------------------------------------

struct Dense {
    const char* name;
    const char* of;  // the member with steps whose kernel serves
    std::function<KroStatus(Image&, Image&, KroiSize)> call;
};

const std::vector<Dense>& denseMembers() {
    static const std::vector<Dense> d = {
        {"RGBToYUV422_C3P3", "RGBToYUV422_C3P3R", [](Image& s, Image& o, KroiSize r) { return kroiRGBToYUV422_8u_C3P3(s.p[0], o.out(), r); }},
        {"RGBToYUV422_P3", "RGBToYUV422_P3R", [](Image& s, Image& o, KroiSize r) { return kroiRGBToYUV422_8u_P3(s.in(), o.out(), r); }},
        {"YUV422ToRGB_P3C3", "YUV422ToRGB_P3C3R", [](Image& s, Image& o, KroiSize r) { return kroiYUV422ToRGB_8u_P3C3(s.in(), o.p[0], r); }},
        {"YUV422ToRGB_P3", "YUV422ToRGB_P3R", [](Image& s, Image& o, KroiSize r) { return kroiYUV422ToRGB_8u_P3(s.in(), o.out(), r); }},
    };
    return d;
}

// At least 256 pixels at an even width: one row of n pixels, taken as the
// first n & ~7 and the last n & 7, never by the aligned kernel. Otherwise
// dense rows with chroma rounded up.
TEST(WithoutSteps, OneLongRowOrDenseRows) {
    for (const Dense& dm : denseMembers()) {
        Member m = member(dm.of);
        m.name = dm.name;
        m.call = dm.call;
        for (KroiSize r : {KroiSize{16, 16}, KroiSize{2, 129}, KroiSize{18, 15}, KroiSize{32, 8}, KroiSize{15, 20},
                           KroiSize{10, 10}, KroiSize{32, 7}, KroiSize{1, 300}, KroiSize{7, 1}, KroiSize{2, 127}}) {
            const int n = r.width * r.height;
            if (n >= 256 && r.width % 2 == 0) {
                Image s(m.in, n, 1, 0), d(m.out, n, 1, 0);
                s.randomize(n);
                check(m, s, d, r, [&](Expect& e) {
                    modelRow(m, s, e, 0, 0, n & ~7, false);
                    modelRow(m, s, e, 0, n & ~7, n & 7, false);
                }, "one row");
            } else {
                Image s(m.in, r.width, r.height, 0), d(m.out, r.width, r.height, 0);
                s.randomize(n);
                const bool al = aligned16(s, d);
                check(m, s, d, r, [&](Expect& e) { for (int y = 0; y < r.height; ++y) modelRow(m, s, e, y, 0, r.width, al); },
                      "dense rows");
            }
        }
    }
}

// ---- validation ------------------------------------------------------------------------------

TEST(Validation, PointersThenSizeThenPlaneMembersAndNothingWritten) {
    for (const Member& m : members()) checkValidation(m.name, m.in, m.out, m.call, true, 1);
    for (const Dense& dm : denseMembers()) checkValidation(dm.name, member(dm.of).in, member(dm.of).out, dm.call, false, 1);
}

// ---- every vector stage against its scalar form -------------------------------------------------

// Runs a member over rows of w pixels (n pixels in all, in chunks), the input
// of pixel i written by fill(s, x, y, i); checks every byte by the model.
void sweep(const Member& m, int w, bool aligned, uint32_t n, std::function<void(Image&, int, int, uint32_t)> fill) {
    const int rows = static_cast<int>(std::max<uint32_t>(1, std::min<uint32_t>((1 << 20) / w, (n + w - 1) / w)));
    for (uint32_t base = 0; base < n; base += static_cast<uint32_t>(rows) * w) {
        Image s(m.in, w, rows, 5, aligned), d(m.out, w, rows, 5, aligned);
        for (int y = 0; y < rows; ++y)
            for (int x = 0; x < w; ++x) fill(s, x, y, (base + static_cast<uint32_t>(y) * w + x) & 0xFFFFFF);
        checkR(m, s, d, w, rows, "sweep", false);
        if (::testing::Test::HasFailure()) return;
    }
}

// Forward: every colour once, in cells of scrambled neighbours.
void sweepForward(const char* name, int w, bool aligned) {
    sweep(member(name), w, aligned, 1u << 24, [](Image& s, int x, int y, uint32_t i) { setRgb(s, x, y, colour(scramble(i, 0x9E3779B1u))); });
}

// Inverse: every (Y, U, V) once: cell k has chroma k >> 7 and Y 2(k & 127), +1.
void sweepInverse(const char* name, int w) {
    sweep(member(name), w, false, 1u << 24, [](Image& s, int x, int y, uint32_t i) {
        const uint32_t k = i >> 1, yv = (i & 0xFF), u = (k >> 7) & 0xFF, v = k >> 15;
        if (s.lay == Lay::YuvC2) {
            s.at(0, 2 * x, y) = yv;
            s.at(0, 2 * x + 1, y) = x % 2 ? v : u;
        } else {
            s.at(0, x, y) = yv;
            s.at(1, x / 2, y) = u;
            s.at(2, x / 2, y) = v;
        }
    });
}

// Forward, the extremes: every cell whose six samples are each one of
// 0, 1, 127, 128, 254, 255.
void sweepExtremes(const char* name, int w, bool aligned) {
    static const uint8_t kEdge[6] = {0, 1, 127, 128, 254, 255};
    sweep(member(name), w, aligned, 2 * 46656, [](Image& s, int x, int y, uint32_t i) {
        uint32_t k = i / 2 % 46656;
        for (uint32_t j = 0; j < 3 * (i % 2); ++j) k /= 6;
        setRgb(s, x, y, {kEdge[k % 6], kEdge[k / 6 % 6], kEdge[k / 36 % 6]});
    });
}

// Each vector form once, through one member that uses it.
TEST(AllInputs, ForwardBlockAndPairStages) {
    for (auto sw : {sweepForward, sweepExtremes}) {
        sw("RGBToYUV422_C3C2R", 4096, false);  // G1
        sw("RGBToYUV422_C3C2R", 14, false);    // H1
        sw("RGBToYUV422_C3P3R", 4096, false);  // G2
        sw("RGBToYUV422_C3P3R", 14, false);    // H2
        sw("RGBToYUV422_C3P3R", 4096, true);   // G3
        sw("RGBToYUV422_C3P3R", 14, true);     // G2 as the pair form
        sw("RGBToYUV422_P3R", 4096, false);    // G4
    }
}

TEST(AllInputs, InverseBlockAndPairStages) {
    sweepInverse("YUV422ToRGB_C2C3R", 4096);   // J1
    sweepInverse("YUV422ToRGB_C2C3R", 6);      // J4
    sweepInverse("YUV422ToRGB_P3C3R", 6);      // J3
    sweepInverse("YUV422ToRGB_P3AC4R", 4096);  // J2
}

// ---- stated values ------------------------------------------------------------------------------

TEST(KnownAnswers, GrayIsKeptAndTheRowEndsOfOddWidths) {
    using namespace k0::yuv;
    for (PixelForm f : {formJ1, formJ2, formJ3, formJ4, formJ5})
        for (int y = 0; y < 256; ++y) {
            const Px p = f(y, 128, 128);
            EXPECT_TRUE(p.a == y && p.b == y && p.c == y) << y;
        }
    // Width 3 to the two-byte layout: Y0 U Y1 V Y2 U, six bytes.
    const Kro8u rgb[9] = {10, 20, 30, 200, 100, 50, 7, 250, 3};
    Kro8u out[8] = {0, 0, 0, 0, 0, 0, 0xEE, 0xEE};
    ASSERT_EQ(kroiRGBToYUV422_8u_C3C2R(rgb, 9, out, 8, {3, 1}), kroOk);
    const Cell2 c = formH1({10, 20, 30}, {200, 100, 50});
    const Px l = formL1({7, 250, 3});
    EXPECT_EQ(std::vector<int>(out, out + 8), (std::vector<int>{c.y0, c.u, c.y1, c.v, l.a, l.b, 0xEE, 0xEE}));
}

}  // namespace
