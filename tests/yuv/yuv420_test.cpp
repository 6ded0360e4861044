// RGB <-> Y'UV 4:2:0: every 2x2 cell takes the form of its stage, the odd
// last row and column are neither read nor written, and odd sizes warn after
// the work.
#include <functional>
#include <stdexcept>

#include "yuv422_images.h"

namespace {

using namespace yt;
using k0::yuv::Cell4;

using CellForm = Cell4 (*)(Px, Px, Px, Px);
using PixelForm = Px (*)(int, int, int);

// A member with its forms: the block form over the first cells & blockMask
// of a cell row, the other form over the rest.
struct Member {
    const char* name;
    Lay in, out;
    Call call;
    int blockMask;
    CellForm fBlock = nullptr, fRest = nullptr;
    PixelForm iBlock = nullptr, iRest = nullptr;
    int minSize = 1;
    bool dense = false;  // a form without steps
};

void model(const Member& m, const Image& s, Expect& e, int w, int h) {
    const int wc = w / 2, nb = wc & m.blockMask;
    for (int cy = 0; cy < h / 2; ++cy)
        for (int cx = 0; cx < wc; ++cx) {
            const int x = 2 * cx, y = 2 * cy;
            if (m.fBlock) {
                const Cell4 c = (cx < nb ? m.fBlock : m.fRest)(rgbAt(s, x, y), rgbAt(s, x + 1, y), rgbAt(s, x, y + 1),
                                                              rgbAt(s, x + 1, y + 1));
                e.set(0, x, y, c.y00), e.set(0, x + 1, y, c.y01), e.set(0, x, y + 1, c.y10), e.set(0, x + 1, y + 1, c.y11);
                e.set(1, cx, cy, c.u), e.set(2, cx, cy, c.v);
            } else {
                const PixelForm f = cx < nb ? m.iBlock : m.iRest;
                for (int j = 0; j < 4; ++j)
                    expectRgb(e, x + j % 2, y + j / 2, f(s.at(0, x + j % 2, y + j / 2), s.at(1, cx, cy), s.at(2, cx, cy)));
            }
        }
}

// Converts s into d; checks the status, every byte of d (the odd last row
// and column keep what they held) and the canaries.
void check(const Member& m, Image& s, Image& d, int w, int h, const char* what, bool canaries = true) {
    const Bytes before = d.bytes(), src = s.bytes();
    kt::resetQueries();
    ASSERT_EQ(m.call(s, d, {w, h}), (w | h) & 1 ? kroWarnOddSize : kroOk) << m.name << " " << w << "x" << h;
    EXPECT_EQ(kt::featureQueries(), 0) << m.name;
    Expect e(d);
    model(m, s, e, w, h);
    EXPECT_TRUE(matches(d, e, before, canaries)) << m.name << " " << what << " " << w << "x" << h;
    EXPECT_TRUE((!canaries || s.intact()) && s.bytes() == src) << m.name << " touched its source";
}

Member dense(Member m, const char* name, Call c) {
    m.name = name;
    m.call = std::move(c);
    m.dense = true;
    return m;
}

const std::vector<Member>& members() {
    using namespace k0::yuv;
    static const std::vector<Member> all = [] {
        std::vector<Member> v;
        Member m{"RGBToYUV420_P3R", Lay::RgbP3, Lay::Yuv420,
                 [](Image& s, Image& d, KroiSize r) { return kroiRGBToYUV420_8u_P3R(s.in(), s.step[0], d.out(), d.steps(), r); }, 0};
        m.fBlock = formK1, m.fRest = formK1;
        v.push_back(m);
        v.push_back(dense(m, "RGBToYUV420_P3", [](Image& s, Image& d, KroiSize r) { return kroiRGBToYUV420_8u_P3(s.in(), d.out(), r); }));
        m = {"RGBToYUV420_C3P3R", Lay::RgbC3, Lay::Yuv420,
             [](Image& s, Image& d, KroiSize r) { return kroiRGBToYUV420_8u_C3P3R(s.p[0], s.step[0], d.out(), d.steps(), r); }, ~7};
        m.fBlock = formK3, m.fRest = formK2;
        v.push_back(m);
        v.push_back(dense(m, "RGBToYUV420_C3P3", [](Image& s, Image& d, KroiSize r) { return kroiRGBToYUV420_8u_C3P3(s.p[0], d.out(), r); }));
        m = {"BGRToYUV420_AC4P3R", Lay::BgrA4, Lay::Yuv420,
             [](Image& s, Image& d, KroiSize r) { return kroiBGRToYUV420_8u_AC4P3R(s.p[0], s.step[0], d.out(), d.steps(), r); }, ~7};
        m.fBlock = formK4, m.fRest = formK1;
        v.push_back(m);
        m = {"YUV420ToRGB_P3R", Lay::Yuv420, Lay::RgbP3,
             [](Image& s, Image& d, KroiSize r) { return kroiYUV420ToRGB_8u_P3R(s.in(), s.steps(), d.out(), d.step[0], r); }, 0};
        m.iBlock = formJ3, m.iRest = formJ3;
        v.push_back(m);
        v.push_back(dense(m, "YUV420ToRGB_P3", [](Image& s, Image& d, KroiSize r) { return kroiYUV420ToRGB_8u_P3(s.in(), d.out(), r); }));
        m = {"YUV420ToRGB_P3C3R", Lay::Yuv420, Lay::RgbC3,
             [](Image& s, Image& d, KroiSize r) { return kroiYUV420ToRGB_8u_P3C3R(s.in(), s.steps(), d.p[0], d.step[0], r); }, ~7};
        m.iBlock = formJ1, m.iRest = formJ1;
        v.push_back(m);
        v.push_back(dense(m, "YUV420ToRGB_P3C3", [](Image& s, Image& d, KroiSize r) { return kroiYUV420ToRGB_8u_P3C3(s.in(), d.p[0], r); }));
        m = {"YUV420ToRGB_P3AC4R", Lay::Yuv420, Lay::RgbA4,
             [](Image& s, Image& d, KroiSize r) { return kroiYUV420ToRGB_8u_P3AC4R(s.in(), s.steps(), d.p[0], d.step[0], r); }, ~3};
        m.iBlock = formJ2, m.iRest = formJ4;
        v.push_back(m);
        m = {"YUV420ToBGR_P3C3R", Lay::Yuv420, Lay::BgrC3,
             [](Image& s, Image& d, KroiSize r) { return kroiYUV420ToBGR_8u_P3C3R(s.in(), s.steps(), d.p[0], d.step[0], r); }, ~7};
        m.iBlock = formJ6, m.iRest = formJ6, m.minSize = 2;
        v.push_back(m);
        return v;
    }();
    return all;
}

const Member& member(const std::string& name) { return byName(members(), name); }

// ---- the region, by cell ------------------------------------------------------------------------

// With steps that are not multiples of 16, and on rows at 16-byte boundaries
// with steps that are: the kernels of the interleaved source give equal bytes.
TEST(Members, EveryByteByCellAndStageOddRowAndColumnUntouched) {
    for (const Member& m : members())
        for (int w : {1, 2, 3, 4, 5, 7, 8, 14, 15, 16, 17, 18, 31, 32, 33, 34, 63, 64, 65, 66, 129})
            for (int h : {1, 2, 3, 4, 5, 16, 17, 34})
                for (bool al : {false, true}) {
                    if (w < m.minSize || h < m.minSize || (m.dense && al)) continue;
                    Image s(m.in, w, h, m.dense ? 0 : 37, al), d(m.out, w, h, m.dense ? 0 : 37, al);
                    s.randomize(w * 37 + h);
                    d.randomize(h);
                    check(m, s, d, w, h, al ? "aligned" : "unaligned");
                }
}

// Dense planes against an inaccessible page that begins right behind the last
// whole cell: the odd last row and column are neither read nor written.
TEST(Members, TheOddRowAndColumnAreNotTouched) {
    for (const Member& m : members()) {
        if (m.dense) continue;
        for (auto side : {kt::Guarded::After, kt::Guarded::Before})
            for (int w : {2, 3, 15, 16, 17, 33, 64, 65, 127})
                for (int h : {2, 3, 5}) {
                    Image s(m.in, w, h, side, true), d(m.out, w, h, side, true);
                    s.randomize(w + h);
                    check(m, s, d, w, h, "dense");
                }
    }
}

// ---- validation -------------------------------------------------------------------------------

TEST(Validation, PointersThenSizeThenPlaneMembersAndNothingWritten) {
    for (const Member& m : members()) checkValidation(m.name, m.in, m.out, m.call, !m.dense, m.minSize);
}

// ---- every vector stage against its scalar form -----------------------------------------------------

// Runs a member over n cells in cell rows of w / 2 cells, the input of pixel
// j (0 01 10 11 = 0 1 2 3) of cell k written by fill(s, x, y, k, j).
void sweep(const char* name, int w, uint32_t n, std::function<void(Image&, int, int, uint32_t, int)> fill) {
    const Member& m = member(name);
    const int wc = w / 2, cellRows = static_cast<int>(std::min<uint32_t>((1 << 18) / wc, (n + wc - 1) / wc));
    for (uint32_t base = 0; base < n; base += static_cast<uint32_t>(cellRows) * wc) {
        Image s(m.in, w, 2 * cellRows, 5), d(m.out, w, 2 * cellRows, 5);
        for (int y = 0; y < 2 * cellRows; ++y)
            for (int x = 0; x < w; ++x) fill(s, x, y, (base + static_cast<uint32_t>(y / 2) * wc + x / 2) % n, (y % 2) * 2 + x % 2);
        check(m, s, d, w, 2 * cellRows, "sweep", false);
        if (::testing::Test::HasFailure()) return;
    }
}

// Forward: every colour once, four scrambled colours a cell; then the
// extremes, every cell whose twelve samples are each 0, 128 or 255.
TEST(AllInputs, ForwardStages) {
    for (auto [name, w] : {std::pair{"RGBToYUV420_P3R", 4096}, {"RGBToYUV420_C3P3R", 4096}, {"RGBToYUV420_C3P3R", 14},
                           {"BGRToYUV420_AC4P3R", 4096}}) {  // K1, K3, K2, K4
        sweep(name, w, 1u << 22, [](Image& s, int x, int y, uint32_t k, int j) { setRgb(s, x, y, colour(scramble(4 * k + j, 0x2545F491u))); });
        sweep(name, w, 531441, [](Image& s, int x, int y, uint32_t k, int j) {
            static const uint8_t kEdge[3] = {0, 128, 255};
            for (int i = 0; i < 3 * j; ++i) k /= 3;
            setRgb(s, x, y, {kEdge[k % 3], kEdge[k / 3 % 3], kEdge[k / 9 % 3]});
        });
    }
}

// Inverse: every (Y, U, V) once: cell k has chroma k >> 6 and Y 4(k & 63) + j.
TEST(AllInputs, InverseStages) {
    for (auto [name, w] : {std::pair{"YUV420ToRGB_P3R", 4096}, {"YUV420ToRGB_P3C3R", 4096}, {"YUV420ToRGB_P3AC4R", 4096},
                           {"YUV420ToRGB_P3AC4R", 6}, {"YUV420ToBGR_P3C3R", 4096}}) {  // J3, J1, J2, J4, J6
        sweep(name, w, 1u << 22, [](Image& s, int x, int y, uint32_t k, int j) {
            s.at(0, x, y) = static_cast<Kro8u>(4 * (k & 63) + j);
            s.at(1, x / 2, y / 2) = static_cast<Kro8u>(k >> 6);
            s.at(2, x / 2, y / 2) = static_cast<Kro8u>(k >> 14);
        });
    }
}

// ---- stated values -------------------------------------------------------------------------------

TEST(KnownAnswers, WhiteByK2AndGrayByJ6) {
    const Cell4 c = k0::yuv::formK2({255, 255, 255}, {255, 255, 255}, {255, 255, 255}, {255, 255, 255});
    EXPECT_EQ(4899 * 255 + 9617 * 255 + 1868 * 255, 4177920);
    for (int y : {c.y00, c.y01, c.y10, c.y11}) EXPECT_EQ(y, 255);
    EXPECT_EQ(c.u, 128);
    EXPECT_EQ(c.v, 128);
    for (int y = 0; y < 256; ++y) {
        const Px p = k0::yuv::formJ6(y, 128, 128);
        EXPECT_TRUE(p.a == y && p.b == y && p.c == y) << y;
    }
}

}  // namespace
