// RGB <-> Y'UV 4:4:4: every form at exactly its pixels, on both paths.
#include <functional>

#include "test_common.h"
#include "yuv/yuv_forms.h"

namespace {

using kt::Path;
using k0::yuv::Px;

using kt::Img;
using kt::Lay;

// ---- the family, with the form of each pixel -----------------------------------

using Form = Px (*)(int, int, int);
using Call = std::function<KroStatus(Img&, Img&, KroiSize)>;

struct Member {
    const char* name;
    Lay in, out;
    bool asks;  // has a path choice
    Call call;
    // Form of pixel x in a row of width w on a path.
    std::function<Form(Path, int w, int x)> form;
};

Form byBlock(int w, int x, int block, Form head, Form rest) { return x < (w & ~(block - 1)) ? head : rest; }

const std::vector<Member>& members() {
    using namespace k0::yuv;
    static const std::vector<Member> m = {
        {"RGBToYUV_C3R", Lay::C3, Lay::C3, true,
         [](Img& s, Img& d, KroiSize r) { return kroiRGBToYUV_8u_C3R(s.p[0], s.step, d.p[0], d.step, r); },
         [](Path p, int w, int x) { return p == Path::Vnni ? formF5 : byBlock(w, x, 16, formF1, formF2); }},
        {"RGBToYUV_AC4R", Lay::C4, Lay::C4, true,
         [](Img& s, Img& d, KroiSize r) { return kroiRGBToYUV_8u_AC4R(s.p[0], s.step, d.p[0], d.step, r); },
         [](Path p, int, int) { return p == Path::Vnni ? formF6 : formF3; }},
        {"RGBToYUV_C3P3R", Lay::C3, Lay::P3, false,
         [](Img& s, Img& d, KroiSize r) { return kroiRGBToYUV_8u_C3P3R(s.p[0], s.step, d.p.data(), d.step, r); },
         [](Path, int w, int x) { return byBlock(w, x, 8, formF1, formF2); }},
        {"RGBToYUV_P3R", Lay::P3, Lay::P3, false,
         [](Img& s, Img& d, KroiSize r) { return kroiRGBToYUV_8u_P3R(s.carr(), s.step, d.p.data(), d.step, r); },
         [](Path, int w, int x) { return byBlock(w, x, 16, formF1, formF4); }},
        {"RGBToYUV_AC4P4R", Lay::C4, Lay::P4, false,
         [](Img& s, Img& d, KroiSize r) { return kroiRGBToYUV_8u_AC4P4R(s.p[0], s.step, d.p.data(), d.step, r); },
         [](Path, int w, int x) { return byBlock(w, x, 8, formF7, formF3); }},
        {"YUVToRGB_C3R", Lay::C3, Lay::C3, true,
         [](Img& s, Img& d, KroiSize r) { return kroiYUVToRGB_8u_C3R(s.p[0], s.step, d.p[0], d.step, r); },
         [](Path p, int w, int x) { return p == Path::Vnni ? formI5 : byBlock(w, x, 8, formI1, formI2); }},
        {"YUVToRGB_AC4R", Lay::C4, Lay::C4, true,
         [](Img& s, Img& d, KroiSize r) { return kroiYUVToRGB_8u_AC4R(s.p[0], s.step, d.p[0], d.step, r); },
         [](Path p, int, int) { return p == Path::Vnni ? formI5 : formI2; }},
        {"YUVToRGB_C3C4R", Lay::C3, Lay::C4, false,
         [](Img& s, Img& d, KroiSize r) { return kroiYUVToRGB_8u_C3C4R(s.p[0], s.step, d.p[0], d.step, r, 0x5C); },
         [](Path, int w, int x) { return byBlock(w, x, 8, formI6, formI7); }},
        {"YUVToRGB_P3C3R", Lay::P3, Lay::C3, false,
         [](Img& s, Img& d, KroiSize r) { return kroiYUVToRGB_8u_P3C3R(s.carr(), s.step, d.p[0], d.step, r); },
         [](Path, int w, int x) { return byBlock(w, x, 16, formI4, formI3); }},
        {"YUVToRGB_P3R", Lay::P3, Lay::P3, false,
         [](Img& s, Img& d, KroiSize r) { return kroiYUVToRGB_8u_P3R(s.carr(), s.step, d.p.data(), d.step, r); },
         [](Path, int, int) { return formI3; }},
    };
    return m;
}

// Converts a random image and checks every pixel against its form, the
// alpha rule, and the canaries.
void checkImage(const Member& m, Path path, int w, int h, uint32_t seed) {
    Img s(m.in, w, h), d(m.out, w, h);
    s.randomize(seed);
    d.randomize(seed + 99);
    std::vector<int> before;  // the fourth bytes before the call, for the alpha rule
    if (m.out == Lay::C4)
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) before.push_back(d.at(3, x, y));
    kt::resetQueries();
    ASSERT_EQ(m.call(s, d, {w, h}), kroOk);
    EXPECT_EQ(kt::featureQueries(), m.asks ? 1 : 0) << m.name;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const kt::Px3 in = s.get(x, y), got = d.get(x, y);
            const Px want = m.form(path, w, x)(in.a, in.b, in.c);
            ASSERT_TRUE(kt::samePx(got, want))
                << m.name << " " << kt::pathName(path) << " w=" << w << " x=" << x << " y=" << y;
            if (m.out == Lay::C4) {
                const bool cleared = m.asks && path == Path::Vnni;
                const int wantA = std::string(m.name) == "YUVToRGB_C3C4R" ? 0x5C : cleared ? 0 : before[static_cast<std::size_t>(y) * w + x];
                ASSERT_EQ(d.at(3, x, y), wantA) << m.name << " alpha x=" << x;
            }
            if (m.out == Lay::P4) { ASSERT_EQ(d.at(3, x, y), s.at(3, x, y)) << m.name << " alpha plane x=" << x; }
        }
    EXPECT_TRUE(d.intact()) << m.name << " wrote outside the region, w=" << w;
    EXPECT_TRUE(s.intact()) << m.name << " wrote into its source";
}

class Family : public ::testing::TestWithParam<Path> {};

TEST_P(Family, EveryPixelTakesItsFormAndNothingOutsideIsWritten) {
    KT_USE_PATH(GetParam());
    for (const Member& m : members())
        for (int w : {1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 23, 24, 31, 32, 33, 47, 48, 63, 64, 65, 79, 130})
            for (int h : {1, 2, 9}) checkImage(m, GetParam(), w, h, static_cast<uint32_t>(w * 31 + h));
}

TEST_P(Family, ValidationOrderAndFailedCallsWriteNothing) {
    KT_USE_PATH(GetParam());
    for (const Member& m : members()) {
        Img s(m.in, 8, 2), d(m.out, 8, 2);
        s.randomize(1);
        const auto snap = d.snapshot();
        // A null pointer argument comes before the size.
        Img sn(m.in, 8, 2), dn(m.out, 8, 2);
        sn.p[0] = nullptr;
        dn.p[0] = nullptr;
        if (kt::planesOf(m.in) == 1) { EXPECT_EQ(m.call(sn, d, {-1, 2}), kroErrNullPtr) << m.name; }
        if (kt::planesOf(m.out) == 1) { EXPECT_EQ(m.call(s, dn, {-1, 2}), kroErrNullPtr) << m.name; }
        // Then the size; the plane-array members only after it.
        for (KroiSize bad : {KroiSize{0, 2}, KroiSize{8, 0}, KroiSize{-3, -3}}) {
            EXPECT_EQ(m.call(s, d, bad), kroErrSize) << m.name;
            if (kt::planesOf(m.in) > 1) { EXPECT_EQ(m.call(sn, d, bad), kroErrSize) << m.name; }
            if (kt::planesOf(m.out) > 1) { EXPECT_EQ(m.call(s, dn, bad), kroErrSize) << m.name; }
        }
        if (kt::planesOf(m.in) > 1) { EXPECT_EQ(m.call(sn, d, {8, 2}), kroErrNullPtr) << m.name; }
        if (kt::planesOf(m.out) > 1) { EXPECT_EQ(m.call(s, dn, {8, 2}), kroErrNullPtr) << m.name; }
        EXPECT_TRUE(d.unchanged(snap)) << m.name << " wrote on a failed call";
    }
}

INSTANTIATE_TEST_SUITE_P(Paths, Family, kt::bothPaths(), [](const auto& i) { return kt::pathName(i.param); });

// ---- the plane arrays themselves, and the alpha plane -----------------------------

TEST(Validation, NullPlaneArraysAndTheUntestedAlphaPlane) {
    Kro8u buf[64] = {};
    Kro8u* planes[4] = {buf, buf + 16, buf + 32, nullptr};
    const Kro8u* cplanes[3] = {buf, buf + 16, buf + 32};
    // A null plane array is found before the size.
    EXPECT_EQ(kroiRGBToYUV_8u_C3P3R(buf, 3, nullptr, 1, {-1, 1}), kroErrNullPtr);
    EXPECT_EQ(kroiRGBToYUV_8u_P3R(nullptr, 1, planes, 1, {-1, 1}), kroErrNullPtr);
    EXPECT_EQ(kroiYUVToRGB_8u_P3R(cplanes, 1, nullptr, 1, {-1, 1}), kroErrNullPtr);
    EXPECT_EQ(kroiYUVToRGB_8u_P3C3R(nullptr, 1, buf, 3, {-1, 1}), kroErrNullPtr);
    // The fourth plane of the four-plane destination is not tested: with a
    // null there the call passes validation and writes through it.
    EXPECT_EQ(kroiRGBToYUV_8u_AC4P4R(buf, 4, planes, 1, {0, 1}), kroErrSize);
    EXPECT_DEATH(kroiRGBToYUV_8u_AC4P4R(buf, 4, planes, 1, {1, 1}), "");
}

// ---- known answers -------------------------------------------------------------------

void expectPx(Px got, int a, int b, int c, const char* what) {
    EXPECT_EQ(got.a, a) << what;
    EXPECT_EQ(got.b, b) << what;
    EXPECT_EQ(got.c, c) << what;
}

TEST(KnownAnswers, FormsOnTheStatedColours) {
    using namespace k0::yuv;
    expectPx(formF1(255, 255, 255), 254, 127, 127, "F1 white");
    expectPx(formF2(255, 255, 255), 255, 128, 128, "F2 white");
    expectPx(formF5(255, 255, 255), 255, 128, 128, "F5 white");
    for (Form f : {formF1, formF2, formF5}) EXPECT_EQ(f(0, 255, 0).a, 149);
    for (Form f : {formF3, formF6}) EXPECT_EQ(f(0, 255, 0).a, 150);
    for (Form f : {formI1, formI4}) expectPx(f(128, 255, 255), 255, 3, 255, "I1/I4");
    for (Form f : {formI2, formI3, formI5}) expectPx(f(128, 255, 255), 255, 4, 255, "I2/I3/I5");
    expectPx(formI1(81, 90, 240), 208, 29, 3, "I1");
    expectPx(formI2(81, 90, 240), 209, 30, 4, "I2");
    expectPx(formI3(81, 90, 240), 208, 30, 3, "I3");
    expectPx(formI4(81, 90, 240), 208, 30, 3, "I4");
    expectPx(formI5(81, 90, 240), 208, 31, 4, "I5");
    expectPx(formI6(81, 90, 240), 209, 31, 4, "I6");
    expectPx(formI7(81, 90, 240), 209, 31, 4, "I7");
    for (Form f : {formI1, formI2, formI3, formI4, formI5, formI6, formI7})
        for (int y = 0; y < 256; ++y) expectPx(f(y, 128, 128), y, y, y, "gray");
}

TEST(KnownAnswers, WhiteRowsOnEachPath) {
    for (Path p : {Path::Plain, Path::Vnni}) {
        if (p == Path::Vnni && !kt::cpuHasVnni()) continue;
        kt::setPath(p);
        for (int w : {15, 16}) {
            std::vector<Kro8u> rgb(3 * w, 255), yuv(3 * w);
            ASSERT_EQ(kroiRGBToYUV_8u_C3R(rgb.data(), 3 * w, yuv.data(), 3 * w, {w, 1}), kroOk);
            const int want = p == Path::Plain && w == 16 ? 254 : 255;
            for (int x = 0; x < w; ++x) EXPECT_EQ(yuv[3 * x], want) << kt::pathName(p) << " w=" << w;
        }
        std::vector<Kro8u> src(4 * 20, 0x30), dst(4 * 20, 0xEE);
        ASSERT_EQ(kroiRGBToYUV_8u_AC4R(src.data(), 80, dst.data(), 80, {20, 1}), kroOk);
        for (int x = 0; x < 20; ++x) EXPECT_EQ(dst[4 * x + 3], p == Path::Vnni ? 0 : 0xEE);
    }
    std::vector<Kro8u> yuv(3 * 9, 128), rgba(4 * 9);
    int alpha = 0x1FF;
    ASSERT_EQ(kroiYUVToRGB_8u_C3C4R(yuv.data(), 27, rgba.data(), 36, {9, 1}, static_cast<Kro8u>(alpha)), kroOk);
    for (int x = 0; x < 9; ++x) EXPECT_EQ(rgba[4 * x + 3], 0xFF);
}

// ---- every vector stage against its scalar form on all 2^24 colours -------------------

// Lays the colour cube out in rows of `w` pixels (repeating it to fill the last
// row), converts it, and compares each pixel with the form.
void sweep(const Member& m, Path path, int w, Form want, bool inPlace = false) {
    const int h = Img::cubeRows(w);
    Img s(m.in, w, h, 0), d(m.out, w, h, 0);
    s.fillCube();
    ASSERT_EQ(m.call(s, inPlace ? s : d, {w, h}), kroOk);
    Img& out = inPlace ? s : d;
    const auto& cube = kt::colourCube();
    std::size_t bad = 0;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const std::size_t i = s.cubeIndex(x, y);
            const kt::Px3 in{cube[3 * i], cube[3 * i + 1], cube[3 * i + 2]};
            const Px e = want(in.a, in.b, in.c);
            const kt::Px3 g = out.get(x, y);
            if (!kt::samePx(g, e) && bad++ < 5)
                ADD_FAILURE() << m.name << " " << kt::pathName(path) << " w=" << w << " input " << kt::str(in)
                              << " got " << kt::str(g) << " want " << kt::str(e);
        }
    EXPECT_EQ(bad, 0u);
}

const Member& member(const std::string& name) { return kt::byName(members(), name); }

TEST(AllColours, ForwardStages) {
    using namespace k0::yuv;
    kt::setPath(Path::Plain);
    sweep(member("RGBToYUV_C3R"), Path::Plain, 4096, formF1);
    sweep(member("RGBToYUV_C3R"), Path::Plain, 15, formF2);
    sweep(member("RGBToYUV_C3R"), Path::Plain, 15, formF2, /*inPlace=*/true);  // the scalar loop
    sweep(member("RGBToYUV_AC4R"), Path::Plain, 4096, formF3);
    sweep(member("RGBToYUV_C3P3R"), Path::Plain, 7, formF2);
    sweep(member("RGBToYUV_P3R"), Path::Plain, 4096, formF1);
    sweep(member("RGBToYUV_P3R"), Path::Plain, 15, formF4);
    sweep(member("RGBToYUV_AC4P4R"), Path::Plain, 4096, formF7);
    sweep(member("RGBToYUV_AC4P4R"), Path::Plain, 7, formF3);
    if (!kt::cpuHasVnni()) GTEST_SKIP() << "*** VNNI/VBMI path NOT TESTED: this CPU lacks the instructions";
    kt::setPath(Path::Vnni);
    sweep(member("RGBToYUV_C3R"), Path::Vnni, 4096, formF5);
    sweep(member("RGBToYUV_AC4R"), Path::Vnni, 4099, formF6);
}

TEST(AllColours, InverseStages) {
    using namespace k0::yuv;
    kt::setPath(Path::Plain);
    sweep(member("YUVToRGB_C3R"), Path::Plain, 4096, formI1);
    sweep(member("YUVToRGB_C3R"), Path::Plain, 7, formI2);
    sweep(member("YUVToRGB_C3R"), Path::Plain, 7, formI2, /*inPlace=*/true);
    sweep(member("YUVToRGB_AC4R"), Path::Plain, 4096, formI2);
    sweep(member("YUVToRGB_P3R"), Path::Plain, 4096, formI3);
    sweep(member("YUVToRGB_P3C3R"), Path::Plain, 4096, formI4);
    sweep(member("YUVToRGB_P3C3R"), Path::Plain, 15, formI3);
    sweep(member("YUVToRGB_C3C4R"), Path::Plain, 4096, formI6);
    sweep(member("YUVToRGB_C3C4R"), Path::Plain, 7, formI7);
    if (!kt::cpuHasVnni()) GTEST_SKIP() << "*** VNNI/VBMI path NOT TESTED: this CPU lacks the instructions";
    kt::setPath(Path::Vnni);
    sweep(member("YUVToRGB_C3R"), Path::Vnni, 4099, formI5);
    sweep(member("YUVToRGB_AC4R"), Path::Vnni, 4096, formI5);
}

}  // namespace
