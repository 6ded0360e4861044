// RGB <-> YCbCr 4:4:4 and the YCbCr integer forms: every vector stage against
// its scalar form over all inputs, the stated values, and every member's
// forms by place, alpha, canaries and validation on both paths.
#include <array>
#include <cstdio>
#include <functional>
#include <memory>
#include <random>
#include <string>

#include "test_common.h"

// GCC 12's 512-bit intrinsics seed unmasked results with a self-initialised
// undefined value, which -Wuninitialized reports once the stages are inlined
// into a test body.
#pragma GCC diagnostic ignored "-Wuninitialized"

#include "ycbcr/ycbcr_forms.h"
#include "ycbcr/ycbcr_vec.h"

namespace {

using kt::Path;
using namespace k0::ycbcr;

using Form = Px (*)(int, int, int);

using kt::Img;
using kt::Lay;
using kt::samePx;
using kt::str;

// ---- vector stages against their scalar forms, all 2^24 inputs, in registers ----------

// Word i of a register of signed words, clamped as the unsigned saturating pack does.
struct Packed {
    alignas(64) uint8_t b[64];
    explicit Packed(__m512i v) { _mm512_store_si512(b, _mm512_packus_epi16(v, _mm512_setzero_si512())); }
    int operator[](int i) const { return b[(i / 8) * 16 + i % 8]; }
};
struct Words {
    alignas(64) uint16_t w[32];
    explicit Words(__m512i v) { _mm512_store_si512(w, v); }
    int operator[](int i) const { return w[i]; }
};
struct Dwords {
    alignas(64) int32_t d[16];
    explicit Dwords(__m512i v) { _mm512_store_si512(d, v); }
    int operator[](int i) const { return d[i]; }
};

// Runs `stage` on all (a, b, c) with c varying across the lanes, reads the
// lanes through Out, and counts the lanes that differ from `form`.
// A stage as a callable that the sweep inlines.
#define KT_STAGE(f) [](__m512i a, __m512i b, __m512i c) { return f(a, b, c); }

template <int Lanes, class Out, class Stage>
void sweepStage(const char* name, Stage stage, Form form) {
    alignas(64) int16_t iw[32];
    alignas(64) int32_t id[16];
    for (int i = 0; i < 32; ++i) iw[i] = static_cast<int16_t>(i);
    for (int i = 0; i < 16; ++i) id[i] = i;
    const __m512i iota = Lanes == 32 ? _mm512_load_si512(iw) : _mm512_load_si512(id);
    auto splat = [](int v) { return Lanes == 32 ? _mm512_set1_epi16(static_cast<short>(v)) : _mm512_set1_epi32(v); };
    std::size_t bad = 0;
    for (int a = 0; a < 256; ++a)
        for (int b = 0; b < 256; ++b)
            for (int c0 = 0; c0 < 256; c0 += Lanes) {
                const __m512i C = Lanes == 32 ? _mm512_add_epi16(splat(c0), iota) : _mm512_add_epi32(splat(c0), iota);
                const V3 v = stage(splat(a), splat(b), C);
                const Out oa(v.a), ob(v.b), oc(v.c);
                for (int i = 0; i < Lanes; ++i) {
                    const Px want = form(a, b, c0 + i);
                    const Px got{static_cast<uint8_t>(oa[i]), static_cast<uint8_t>(ob[i]), static_cast<uint8_t>(oc[i])};
                    if (!samePx(got, want) && bad++ < 5)
                        ADD_FAILURE() << name << " at (" << a << "," << b << "," << c0 + i << "): got " << str(got)
                                      << " want " << str(want);
                }
            }
    EXPECT_EQ(bad, 0u) << name;
}

TEST(FormStages, ForwardOverAllColours) {
    sweepStage<32, Words>("Short", KT_STAGE(vecShort), formShort);
    sweepStage<32, Words>("Short-P", KT_STAGE(vecShortP), formShortP);
    sweepStage<16, Dwords>("Long", KT_STAGE(vecLong), formLong);
}

TEST(FormStages, InverseShortOverAllInputs) {
    sweepStage<32, Packed>("Short-8", KT_STAGE(vecShort8), formShort8);
    sweepStage<32, Packed>("Short-16T", KT_STAGE(vecShort16T), formShort16T);
    sweepStage<32, Packed>("Short-16R", KT_STAGE(vecShort16R), formShort16R);
    // Kept as words, clampWords is the same clamp.
    sweepStage<32, Words>("Short-8 clampWords", [](__m512i y, __m512i cb, __m512i cr) {
        const V3 v = vecShort8(y, cb, cr);
        return V3{clampWords(v.a), clampWords(v.b), clampWords(v.c)};
    }, formShort8);
}

TEST(FormStages, InverseLongOverAllInputs) {
    sweepStage<16, Dwords>("Long-A", KT_STAGE(vecLongA), formLongA);
    sweepStage<16, Dwords>("Long-B", KT_STAGE(vecLongB), formLongB);
    sweepStage<16, Dwords>("Long-B0", KT_STAGE(vecLongB0), formLongB0);
    sweepStage<16, Dwords>("Long-B57", KT_STAGE(vecLongB57), formLongB57);
    sweepStage<16, Dwords>("Long-C", KT_STAGE(vecLongC), formLongC);
}

// The subsampled families feed the chroma of Short and Short-P with cell sums
// scaled up to 32640, not only with multiples of 128.
TEST(FormStages, ShortChromaOnScaledSums) {
    std::mt19937 rng(11);
    std::uniform_int_distribution<int> d(0, 32640);
    for (int it = 0; it < (1 << 16); ++it) {
        alignas(64) int16_t r[32], g[32], b[32], o[4][32];
        for (int i = 0; i < 32; ++i) r[i] = static_cast<int16_t>(d(rng)), g[i] = static_cast<int16_t>(d(rng)), b[i] = static_cast<int16_t>(d(rng));
        if (it == 0) {
            for (int i = 0; i < 8; ++i) r[i] = g[i] = b[i] = static_cast<int16_t>(i & 1 ? 32640 : 0);
        }
        const __m512i R = _mm512_load_si512(r), G = _mm512_load_si512(g), B = _mm512_load_si512(b);
        _mm512_store_si512(o[0], vecShortChroma(kCb, R, G, B));
        _mm512_store_si512(o[1], vecShortChroma(kCr, R, G, B));
        _mm512_store_si512(o[2], vecShortPChroma(kCb, R, G, B));
        _mm512_store_si512(o[3], vecShortPChroma(kCr, R, G, B));
        for (int i = 0; i < 32; ++i) {
            ASSERT_EQ(o[0][i], formShortChroma(kCb, r[i], g[i], b[i])) << r[i] << " " << g[i] << " " << b[i];
            ASSERT_EQ(o[1][i], formShortChroma(kCr, r[i], g[i], b[i])) << r[i] << " " << g[i] << " " << b[i];
            ASSERT_EQ(o[2][i], formShortPChroma(kCb, r[i], g[i], b[i])) << r[i] << " " << g[i] << " " << b[i];
            ASSERT_EQ(o[3][i], formShortPChroma(kCr, r[i], g[i], b[i])) << r[i] << " " << g[i] << " " << b[i];
        }
    }
}

// ---- the stated values of the forms ----------------------------------------------------

TEST(FormValues, WhiteBlackAndGrey) {
    for (Form f : {formShort, formLong, formShortP}) {
        EXPECT_TRUE(samePx(f(255, 255, 255), {235, 128, 128})) << str(f(255, 255, 255));
        EXPECT_TRUE(samePx(f(0, 0, 0), {16, 128, 128})) << str(f(0, 0, 0));
    }
    for (Form f : {formShort8, formShort16T, formShort16R, formLongA, formLongB, formLongB0, formLongB57, formLongC})
        EXPECT_TRUE(samePx(f(16, 128, 128), {0, 0, 0})) << str(f(16, 128, 128));
    for (Form f : {formLongA, formLongB}) EXPECT_TRUE(samePx(f(235, 128, 128), {255, 255, 255}));
    // The two forms that drop the half stop one short of white.
    for (Form f : {formShort16T, formLongB0}) EXPECT_TRUE(samePx(f(235, 128, 128), {254, 254, 254}));
    // Outside the studio range every inverse form saturates and never wraps.
    for (Form f : {formShort8, formShort16T, formShort16R, formLongA, formLongB, formLongB0, formLongB57, formLongC}) {
        EXPECT_TRUE(samePx(f(0, 128, 128), {0, 0, 0}));
        EXPECT_TRUE(samePx(f(255, 128, 128), {255, 255, 255}));
        EXPECT_TRUE(samePx(f(255, 255, 255), {255, 151, 255}) || f(255, 255, 255).a == 255) << str(f(255, 255, 255));
        EXPECT_TRUE(samePx(f(0, 0, 0), {0, 135, 0}) || f(0, 0, 0).a == 0) << str(f(0, 0, 0));
        EXPECT_EQ(f(235, 0, 255).a, 255);
        EXPECT_EQ(f(16, 255, 0).a, 0);
        EXPECT_EQ(f(235, 255, 128).c, 255);
        EXPECT_EQ(f(16, 0, 128).c, 0);
    }
}

// Short and Long differ by at most 1; Short is lower in under 1% of the
// colours, and higher only in luma, in a few. Short-16T truncates, and is
// lower than Long-A by 1 in about a third of the samples.
TEST(FormValues, ShortAgainstLong) {
    std::size_t lower = 0, higherY = 0, samples = 0;
    for (int r = 0; r < 256; ++r)
        for (int g = 0; g < 256; ++g)
            for (int b = 0; b < 256; ++b) {
                const Px s = formShort(r, g, b), l = formLong(r, g, b);
                const int d[3] = {s.a - l.a, s.b - l.b, s.c - l.c};
                for (int c = 0; c < 3; ++c) {
                    ASSERT_LE(std::abs(d[c]), 1) << r << " " << g << " " << b;
                    lower += d[c] < 0;
                    if (c > 0) {
                        ASSERT_LE(d[c], 0) << "chroma above Long at " << r << " " << g << " " << b;
                    }
                }
                higherY += d[0] > 0;
                samples += 3;
            }
    EXPECT_LT(lower, samples / 100);
    EXPECT_GT(lower, 0u);
    EXPECT_GT(higherY, 0u);
    EXPECT_LT(higherY, samples / 3000);

    std::size_t lower16T = 0, n = 0;
    for (int y = 16; y <= 235; ++y)
        for (int cb = 16; cb <= 240; ++cb)
            for (int cr = 16; cr <= 240; ++cr) {
                const Px t = formShort16T(y, cb, cr), a = formLongA(y, cb, cr);
                const int d[3] = {t.a - a.a, t.b - a.b, t.c - a.c};
                for (int c = 0; c < 3; ++c) {
                    ASSERT_GE(d[c], -1) << y << " " << cb << " " << cr;
                    ASSERT_LE(d[c], 1) << y << " " << cb << " " << cr;
                    lower16T += d[c] < 0;
                }
                n += 3;
            }
    const double share = static_cast<double>(lower16T) / static_cast<double>(n);
    std::printf("Short-16T below Long-A in %.1f%% of samples\n", 100 * share);
    EXPECT_GT(share, 0.25);
    EXPECT_LT(share, 0.42);
}

// ---- the family, with the form and the alpha of each pixel ---------------------------------

using Call = std::function<KroStatus(Img&, Img&, KroiSize)>;

// How a member validates.
enum class Checks {
    Packed,           // source, destination, then the size
    PlanesFirst,      // pointers, arrays and planes, then the size
    ArrayUntested,    // source and planes, then the size; the array is read untested
    SizeBeforePlanes  // pointers and arrays, the size, then the planes
};

constexpr Kro8u kAlpha = 0x5C;
constexpr int kKeep = -1;  // the destination's fourth byte is left alone

struct Member {
    const char* name;
    Lay in, out;
    bool asks, bgr;
    Checks checks;
    Call call;
    // Form of pixel x in a row of width w, on a path, with aligned planes or not.
    std::function<Form(Path, int w, int x, bool aligned)> form;
    // Fourth byte of pixel x: a value, or kKeep.
    std::function<int(Path, int w, int x)> alpha;
};

Form byPlace(int x, int nShort, Form shortForm, Form longForm) { return x < nShort ? shortForm : longForm; }
// Short-8 pixels of the interleaved inverse: width & ~15, then a block of 4 or 8.
int short8Count(int w) { return (w & ~15) + ((w & 4) ? 4 : (w & 8) ? 8 : 0); }

const std::vector<Member>& members() {
    static const auto none = [](Path, int, int) { return 0; };
    static const auto keep = [](Path, int, int) { return kKeep; };
    static const auto arg = [](Path, int, int) { return int{kAlpha}; };
    static const std::vector<Member> m = {
        {"RGBToYCbCr_C3R", Lay::C3, Lay::C3, true, false, Checks::Packed,
         [](Img& s, Img& d, KroiSize r) { return kroiRGBToYCbCr_8u_C3R(s.p[0], s.step, d.p[0], d.step, r); },
         [](Path p, int w, int x, bool) { return p == Path::Vnni ? formLong : byPlace(x, w & ~15, formShort, formLong); },
         none},
        {"RGBToYCbCr_AC4R", Lay::C4, Lay::C4, true, false, Checks::Packed,
         [](Img& s, Img& d, KroiSize r) { return kroiRGBToYCbCr_8u_AC4R(s.p[0], s.step, d.p[0], d.step, r); },
         [](Path p, int w, int x, bool) { return p == Path::Vnni ? formLong : byPlace(x, w & ~15, formShort, formLong); },
         [](Path p, int w, int x) { return p == Path::Vnni || x < (w & ~15) ? 0 : kKeep; }},
        {"RGBToYCbCr_C3P3R", Lay::C3, Lay::P3, false, false, Checks::PlanesFirst,
         [](Img& s, Img& d, KroiSize r) { return kroiRGBToYCbCr_8u_C3P3R(s.p[0], s.step, d.arr(), d.step, r); },
         [](Path, int w, int x, bool) { return byPlace(x, w & ~15, formShort, formLong); }, none},
        {"RGBToYCbCr_AC4P3R", Lay::C4, Lay::P3, false, false, Checks::ArrayUntested,
         [](Img& s, Img& d, KroiSize r) { return kroiRGBToYCbCr_8u_AC4P3R(s.p[0], s.step, d.arr(), d.step, r); },
         [](Path, int w, int x, bool) { return byPlace(x, w & ~15, formShort, formLong); }, none},
        {"RGBToYCbCr_P3R", Lay::P3, Lay::P3, false, false, Checks::SizeBeforePlanes,
         [](Img& s, Img& d, KroiSize r) { return kroiRGBToYCbCr_8u_P3R(s.carr(), s.step, d.arr(), d.step, r); },
         [](Path, int, int, bool aligned) { return aligned ? formShortP : formLong; }, none},
        {"YCbCrToRGB_C3R", Lay::C3, Lay::C3, false, false, Checks::Packed,
         [](Img& s, Img& d, KroiSize r) { return kroiYCbCrToRGB_8u_C3R(s.p[0], s.step, d.p[0], d.step, r); },
         [](Path, int w, int x, bool) { return byPlace(x, short8Count(w), formShort8, formLongA); }, none},
        {"YCbCrToRGB_AC4R", Lay::C4, Lay::C4, false, false, Checks::Packed,
         [](Img& s, Img& d, KroiSize r) { return kroiYCbCrToRGB_8u_AC4R(s.p[0], s.step, d.p[0], d.step, r); },
         [](Path, int, int, bool) { return formLongB0; }, keep},
        {"YCbCrToRGB_P3C3R", Lay::P3, Lay::C3, false, false, Checks::PlanesFirst,
         [](Img& s, Img& d, KroiSize r) { return kroiYCbCrToRGB_8u_P3C3R(s.carr(), s.step, d.p[0], d.step, r); },
         [](Path, int w, int x, bool) { return byPlace(x, w & ~3, formShort8, formLongA); }, none},
        {"YCbCrToBGR_P3C3R", Lay::P3, Lay::C3, false, true, Checks::PlanesFirst,
         [](Img& s, Img& d, KroiSize r) { return kroiYCbCrToBGR_8u_P3C3R(s.carr(), s.step, d.p[0], d.step, r); },
         [](Path, int w, int x, bool) { return byPlace(x, w & ~3, formShort8, formLongA); }, none},
        {"YCbCrToRGB_P3R", Lay::P3, Lay::P3, false, false, Checks::SizeBeforePlanes,
         [](Img& s, Img& d, KroiSize r) { return kroiYCbCrToRGB_8u_P3R(s.carr(), s.step, d.arr(), d.step, r); },
         [](Path, int w, int x, bool) { return byPlace(x, w & ~3, formShort16T, formLongB); }, none},
        {"YCbCrToRGB_P3C4R", Lay::P3, Lay::C4, false, false, Checks::SizeBeforePlanes,
         [](Img& s, Img& d, KroiSize r) { return kroiYCbCrToRGB_8u_P3C4R(s.carr(), s.step, d.p[0], d.step, r, kAlpha); },
         [](Path, int w, int x, bool) { return byPlace(x, w & ~7, formShort16R, formLongA); }, arg},
        {"YCbCrToBGR_P3C4R", Lay::P3, Lay::C4, false, true, Checks::PlanesFirst,
         [](Img& s, Img& d, KroiSize r) { return kroiYCbCrToBGR_8u_P3C4R(s.carr(), s.step, d.p[0], d.step, r, kAlpha); },
         [](Path, int, int, bool) { return formShort16R; }, arg},
    };
    return m;
}

const Member& member(const std::string& name) { return kt::byName(members(), name); }

Px outOf(const Member& m, Img& d, int x, int y) {
    const kt::Px3 v = d.get(x, y);
    return m.bgr ? Px{v.c, v.b, v.a} : Px{v.a, v.b, v.c};
}

// Converts a random image and checks every pixel against its form, the
// fourth byte, the feature question and the canaries.
void checkImage(const Member& m, Path path, int w, int h, uint32_t seed) {
    Img s(m.in, w, h), d(m.out, w, h);
    s.randomize(seed);
    d.randomize(seed + 99);
    std::vector<int> before;
    if (m.out == Lay::C4)
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) before.push_back(d.at(3, x, y));
    const bool aligned = s.aligned16() && d.aligned16() && w % 16 == 0;
    kt::resetQueries();
    ASSERT_EQ(m.call(s, d, {w, h}), kroOk);
    EXPECT_EQ(kt::featureQueries(), m.asks ? 1 : 0) << m.name;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const kt::Px3 in = s.get(x, y);
            const Px want = m.form(path, w, x, aligned)(in.a, in.b, in.c), got = outOf(m, d, x, y);
            ASSERT_TRUE(samePx(got, want)) << m.name << " " << kt::pathName(path) << " w=" << w << " x=" << x
                                           << " y=" << y << " got " << str(got) << " want " << str(want);
            if (m.out == Lay::C4) {
                const int a = m.alpha(path, w, x);
                ASSERT_EQ(d.at(3, x, y), a == kKeep ? before[static_cast<std::size_t>(y) * w + x] : a)
                    << m.name << " " << kt::pathName(path) << " alpha w=" << w << " x=" << x;
            }
        }
    EXPECT_TRUE(d.intact()) << m.name << " wrote outside the region, w=" << w;
    EXPECT_TRUE(s.intact()) << m.name << " wrote into its source";
}

class Family : public ::testing::TestWithParam<Path> {};

TEST_P(Family, EveryPixelTakesItsFormAndNothingOutsideIsWritten) {
    KT_USE_PATH(GetParam());
    for (const Member& m : members())
        for (int w : {1, 2, 3, 4, 5, 7, 8, 9, 11, 12, 13, 15, 16, 17, 20, 23, 24, 28, 29, 31, 32, 33, 44, 47, 48, 63,
                      64, 65, 79, 100, 130})
            for (int h : {1, 2, 9}) checkImage(m, GetParam(), w, h, static_cast<uint32_t>(w * 31 + h));
}

INSTANTIATE_TEST_SUITE_P(Paths, Family, kt::bothPaths(), [](const auto& i) { return kt::pathName(i.param); });

// ---- validation ----------------------------------------------------------------------------

TEST_P(Family, ValidationOrderAndFailedCallsWriteNothing) {
    KT_USE_PATH(GetParam());
    const KroiSize bad[] = {{0, 2}, {8, 0}, {-3, -3}, {-2147483647 - 1, 1}};
    for (const Member& m : members()) {
        Img s(m.in, 8, 2), d(m.out, 8, 2);
        s.randomize(1);
        d.randomize(2);
        const auto ss = s.snapshot(), ds = d.snapshot();
        kt::resetQueries();
        // The size, with every pointer in place.
        for (KroiSize b : bad) EXPECT_EQ(m.call(s, d, b), kroErrSize) << m.name;
        // A null pointer argument or plane array comes before the size.
        for (Img* i : {&s, &d}) {
            if (i == &d && m.checks == Checks::ArrayUntested) continue;  // read untested: see below
            auto& slot = kt::planesOf(i->lay) == 1 ? i->p[0] : i->p[1];
            Kro8u* const keep = slot;
            if (kt::planesOf(i->lay) == 1) slot = nullptr; else i->nullArray = true;
            EXPECT_EQ(m.call(s, d, {-1, 2}), kroErrNullPtr) << m.name;
            EXPECT_EQ(m.call(s, d, {8, 2}), kroErrNullPtr) << m.name;
            i->nullArray = false;
            slot = keep;
        }
        // A null plane: before the size, or after it in the members that
        // test their planes last.
        for (Img* i : {&s, &d}) {
            if (kt::planesOf(i->lay) == 1) continue;
            for (int k = 0; k < 3; ++k) {
                Kro8u* const keep = i->p[k];
                i->p[k] = nullptr;
                EXPECT_EQ(m.call(s, d, {0, 2}), m.checks == Checks::SizeBeforePlanes ? kroErrSize : kroErrNullPtr)
                    << m.name << " plane " << k;
                EXPECT_EQ(m.call(s, d, {8, 2}), kroErrNullPtr) << m.name << " plane " << k;
                i->p[k] = keep;
            }
        }
        EXPECT_EQ(kt::featureQueries(), 0) << m.name << " asked before its checks passed";
        EXPECT_TRUE(d.unchanged(ds) && s.unchanged(ss)) << m.name << " wrote on a failed call";
    }
}

// kroiRGBToYCbCr_8u_AC4P3R reads its plane array without testing it; a null
// source is found before the array is read.
TEST(Validation, TheArrayOfRGBToYCbCrAC4P3RIsReadUntested) {
    Kro8u px[4] = {1, 2, 3, 4};
    EXPECT_EQ(kroiRGBToYCbCr_8u_AC4P3R(nullptr, 4, nullptr, 1, {1, 1}), kroErrNullPtr);
    EXPECT_DEATH(kroiRGBToYCbCr_8u_AC4P3R(px, 4, nullptr, 1, {1, 1}), "");
    EXPECT_DEATH(kroiRGBToYCbCr_8u_AC4P3R(px, 4, nullptr, 1, {0, 1}), "");
}

// ---- every stage of every member over all 2^24 inputs ------------------------------------------

// Lays the cube of all inputs out in rows of w pixels (repeating it to fill the
// last row), converts it, and compares every pixel with the form.
void sweep(const char* name, Path path, int w, Form want, std::size_t pad = 0, bool expectAligned = false) {
    const Member& m = member(name);
    kt::setPath(path);
    const auto& cube = kt::colourCube();
    const int h = Img::cubeRows(w);
    Img s(m.in, w, h, pad), d(m.out, w, h, pad);
    if (std::string(name) == "RGBToYCbCr_P3R") {
        ASSERT_EQ(s.aligned16() && d.aligned16() && w % 16 == 0, expectAligned);
    }
    s.fillCube();
    ASSERT_EQ(m.call(s, d, {w, h}), kroOk);
    std::size_t bad = 0;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const std::size_t i = s.cubeIndex(x, y);
            const Px e = want(cube[3 * i], cube[3 * i + 1], cube[3 * i + 2]), g = outOf(m, d, x, y);
            if (!samePx(g, e) && bad++ < 5)
                ADD_FAILURE() << name << " " << kt::pathName(path) << " w=" << w << " input (" << int(cube[3 * i])
                              << "," << int(cube[3 * i + 1]) << "," << int(cube[3 * i + 2]) << ") got " << str(g)
                              << " want " << str(e);
        }
    EXPECT_EQ(bad, 0u) << name;
}

TEST(AllInputs, ForwardMembers) {
    sweep("RGBToYCbCr_C3R", Path::Plain, 4096, formShort);
    sweep("RGBToYCbCr_C3R", Path::Plain, 15, formLong);
    sweep("RGBToYCbCr_AC4R", Path::Plain, 4096, formShort);
    sweep("RGBToYCbCr_AC4R", Path::Plain, 15, formLong);
    sweep("RGBToYCbCr_C3P3R", Path::Plain, 4096, formShort);
    sweep("RGBToYCbCr_C3P3R", Path::Plain, 15, formLong);
    sweep("RGBToYCbCr_AC4P3R", Path::Plain, 4096, formShort);
    sweep("RGBToYCbCr_AC4P3R", Path::Plain, 15, formLong);
    sweep("RGBToYCbCr_P3R", Path::Plain, 4096, formShortP, 16, true);
    sweep("RGBToYCbCr_P3R", Path::Plain, 4096, formLong, 17);
    if (!kt::cpuHasVnni()) GTEST_SKIP() << "*** VNNI/VBMI path NOT TESTED: this CPU lacks the instructions";
    sweep("RGBToYCbCr_C3R", Path::Vnni, 4099, formLong);
    sweep("RGBToYCbCr_AC4R", Path::Vnni, 4099, formLong);
}

TEST(AllInputs, InverseMembers) {
    sweep("YCbCrToRGB_C3R", Path::Plain, 4096, formShort8);
    sweep("YCbCrToRGB_C3R", Path::Plain, 3, formLongA);
    sweep("YCbCrToRGB_AC4R", Path::Plain, 4099, formLongB0);
    sweep("YCbCrToRGB_P3C3R", Path::Plain, 4096, formShort8);
    sweep("YCbCrToBGR_P3C3R", Path::Plain, 3, formLongA);
    sweep("YCbCrToRGB_P3R", Path::Plain, 4096, formShort16T);
    sweep("YCbCrToRGB_P3R", Path::Plain, 3, formLongB);
    sweep("YCbCrToRGB_P3C4R", Path::Plain, 4096, formShort16R);
    sweep("YCbCrToRGB_P3C4R", Path::Plain, 7, formLongA);
    sweep("YCbCrToBGR_P3C4R", Path::Plain, 4099, formShort16R);
}

// ---- stated behaviour of the members ----------------------------------------------------------

// One row of w pixels, all of colour c, through a member; the first pixel out.
Px onePixelRow(const char* name, Path path, int w, Px c) {
    const Member& m = member(name);
    kt::setPath(path);
    Img s(m.in, w, 1), d(m.out, w, 1);
    for (int x = 0; x < w; ++x) s.set(x, 0, c);
    EXPECT_EQ(m.call(s, d, {w, 1}), kroOk);
    return outOf(m, d, 0, 0);
}

// The first colour at which two forms differ.
Px firstDifference(Form f, Form g) {
    for (int a = 0; a < 256; ++a)
        for (int b = 0; b < 256; ++b)
            for (int c = 0; c < 256; ++c)
                if (!samePx(f(a, b, c), g(a, b, c))) return Px{static_cast<uint8_t>(a), static_cast<uint8_t>(b), static_cast<uint8_t>(c)};
    ADD_FAILURE() << "the forms agree everywhere";
    return {};
}

// A row of width 1 is all remainder: Long forward on either path, Long-A back.
TEST(Members, WidthOneTakesTheLongForms) {
    const Px fwd = firstDifference(formShort, formLong), inv = firstDifference(formShort8, formLongA);
    for (Path p : {Path::Plain, Path::Vnni}) {
        if (p == Path::Vnni && !kt::cpuHasVnni()) continue;
        EXPECT_TRUE(samePx(onePixelRow("RGBToYCbCr_C3R", p, 1, fwd), formLong(fwd.a, fwd.b, fwd.c)));
        EXPECT_TRUE(samePx(onePixelRow("RGBToYCbCr_C3R", p, 16, fwd), p == Path::Vnni ? formLong(fwd.a, fwd.b, fwd.c) : formShort(fwd.a, fwd.b, fwd.c)));
    }
    EXPECT_TRUE(samePx(onePixelRow("YCbCrToRGB_C3R", Path::Plain, 1, inv), formLongA(inv.a, inv.b, inv.c)));
    // Width 12: a block of 4 in Short-8 and 8 pixels in Long-A; the planar
    // members take all 12 in Short-8.
    for (const char* name : {"YCbCrToRGB_C3R", "YCbCrToRGB_P3C3R"}) {
        const Member& m = member(name);
        Img s(m.in, 12, 1), d(m.out, 12, 1);
        for (int x = 0; x < 12; ++x) s.set(x, 0, inv);
        ASSERT_EQ(m.call(s, d, {12, 1}), kroOk);
        const bool planar = m.in == Lay::P3;
        for (int x = 0; x < 12; ++x)
            EXPECT_TRUE(samePx(outOf(m, d, x, 0), (planar || x < 4 ? formShort8 : formLongA)(inv.a, inv.b, inv.c)))
                << name << " x=" << x;
    }
}

// Over a destination of 0xFF at width 20: the path without the multiply-add
// instructions clears the fourth byte of the first 16 pixels and leaves the
// last 4; the multiply-add path clears them all.
TEST(Members, AlphaOfRGBToYCbCrAC4RByPathAndPlace) {
    for (Path p : {Path::Plain, Path::Vnni}) {
        if (p == Path::Vnni && !kt::cpuHasVnni()) continue;
        kt::setPath(p);
        std::vector<Kro8u> src(80), dst(80 + 8, 0xFF);
        for (std::size_t i = 0; i < src.size(); ++i) src[i] = static_cast<Kro8u>(i * 7);
        ASSERT_EQ(kroiRGBToYCbCr_8u_AC4R(src.data(), 80, dst.data(), 80, {20, 1}), kroOk);
        for (int x = 0; x < 20; ++x) EXPECT_EQ(dst[4 * x + 3], p == Path::Plain && x >= 16 ? 0xFF : 0) << x;
        for (int i = 80; i < 88; ++i) EXPECT_EQ(dst[i], 0xFF);
    }
}

// Aligned planes take Short-P, unaligned ones Long: the same pixels may come
// out 1 apart.
TEST(Members, PlanarForwardByAlignment) {
    const Px c = firstDifference(formShortP, formLong);
    alignas(64) static Kro8u planes[6][2 * 64 + 16];
    for (int i = 0; i < 3; ++i) std::fill(std::begin(planes[i]), std::end(planes[i]), (&c.a)[i]);
    for (int shift : {0, 1}) {
        const Kro8u* src[3] = {planes[0] + shift, planes[1], planes[2]};
        Kro8u* dst[3] = {planes[3], planes[4], planes[5]};
        ASSERT_EQ(kroiRGBToYCbCr_8u_P3R(src, 64, dst, 64, {32, 2}), kroOk);
        const Px want = shift == 0 ? formShortP(c.a, c.b, c.c) : formLong(c.a, c.b, c.c);
        for (int y = 0; y < 2; ++y)
            for (int x = 0; x < 32; ++x)
                ASSERT_TRUE(samePx(Px{dst[0][64 * y + x], dst[1][64 * y + x], dst[2][64 * y + x]}, want))
                    << "shift " << shift << " x=" << x;
    }
    const Px sp = formShortP(c.a, c.b, c.c), lg = formLong(c.a, c.b, c.c);
    EXPECT_EQ(std::abs(sp.a - lg.a) + std::abs(sp.b - lg.b) + std::abs(sp.c - lg.c), 1);
}

// ---- overlapping planes: the long loops go one pixel at a time ---------------------------------

// Planes placed at byte offsets of one buffer, so that some overlap.
struct Arena {
    std::vector<Kro8u> mem = kt::randomBytes(4096, 77);
    Kro8u* at(std::size_t off) { return mem.data() + off; }
};

// What a row kernel must leave when its planes overlap: a stretch of pixels
// read together and then written, as one vector block does, or each pixel
// read and then written, one after the other.
struct Stretch {
    int x0, x1;
    Form form;
    bool together;
};
template <class Read, class Write>
void expectedRow(const std::initializer_list<Stretch>& row, Read read, Write write) {
    for (const Stretch& st : row) {
        std::vector<Px> in;
        for (int x = st.x0; x < st.x1; ++x) {
            in.push_back(read(x));
            if (!st.together) write(x, st.form(in.back().a, in.back().b, in.back().c));
        }
        if (st.together)
            for (int x = st.x0; x < st.x1; ++x) write(x, st.form(in[x - st.x0].a, in[x - st.x0].b, in[x - st.x0].c));
    }
}

// Rows of three planes to three planes, at byte offsets of an arena.
void expectedPlanar(Arena& r, const std::size_t (&src)[3], const std::size_t (&dst)[3], int step, int h,
                    const std::initializer_list<Stretch>& row) {
    for (int y = 0; y < h; ++y) {
        auto at = [&](std::size_t off, int x) -> Kro8u& { return r.mem[off + y * step + x]; };
        expectedRow(row, [&](int x) { return Px{at(src[0], x), at(src[1], x), at(src[2], x)}; },
                    [&](int x, Px v) { at(dst[0], x) = v.a, at(dst[1], x) = v.b, at(dst[2], x) = v.c; });
    }
}

using PlanarCall = KroStatus (*)(const Kro8u* const*, int, Kro8u* const*, int, KroiSize);

// Runs a planar member on planes that overlap and compares the whole arena
// with the stretches of `row`; `vectorRow` must give other bytes, or the
// placement would not tell the loops apart.
void checkPlanarOverlap(PlanarCall call, const std::size_t (&src)[3], const std::size_t (&dst)[3], int w, int h,
                        std::initializer_list<Stretch> row, std::initializer_list<Stretch> vectorRow) {
    const int step = 40;
    Arena a, ref = a, naive = a;
    expectedPlanar(ref, src, dst, step, h, row);
    expectedPlanar(naive, src, dst, step, h, vectorRow);
    ASSERT_NE(ref.mem, naive.mem) << "the placement does not tell the two loops apart";
    const Kro8u* s3[3] = {a.at(src[0]), a.at(src[1]), a.at(src[2])};
    Kro8u* d3[3] = {a.at(dst[0]), a.at(dst[1]), a.at(dst[2])};
    ASSERT_EQ(call(s3, step, d3, step, {w, h}), kroOk);
    EXPECT_EQ(a.mem, ref.mem);
}

// The Y plane is the G plane moved by one byte: each Y written is the G of
// the next pixel, so a pixel read after its neighbour was written sees a
// value that a vector block would not have seen.
TEST(Overlap, PlanarForwardLongGoesPixelByPixel) {
    checkPlanarOverlap(kroiRGBToYCbCr_8u_P3R, {1, 201, 401}, {202, 601, 801}, 21, 3, {{0, 21, formLong, false}},
                       {{0, 21, formLong, true}});
}

// The R plane is the Cb plane moved by one byte; only the last width & 3
// pixels go one at a time.
TEST(Overlap, PlanarInverseTailGoesPixelByPixel) {
    checkPlanarOverlap(kroiYCbCrToRGB_8u_P3R, {0, 200, 400}, {201, 600, 800}, 7, 2,
                       {{0, 4, formShort16T, true}, {4, 7, formLongB, false}},
                       {{0, 4, formShort16T, true}, {4, 7, formLongB, true}});
}

// The Cr plane lies inside the destination row, so that writing pixel 8
// changes the Cr of pixel 9.
TEST(Overlap, PlanarToFourByteTailGoesPixelByPixel) {
    const int w = 10;
    const std::size_t d = 1000, src[3] = {0, 200, d + 24};
    Arena a, ref = a, naive = a;
    for (Arena* r : {&ref, &naive})
        expectedRow({{0, 8, formShort16R, true}, {8, w, formLongA, r == &naive}},
                    [&](int x) { return Px{r->mem[src[0] + x], r->mem[src[1] + x], r->mem[src[2] + x]}; },
                    [&](int x, Px v) {
                        Kro8u* q = r->at(d + 4 * x);
                        q[0] = v.a, q[1] = v.b, q[2] = v.c, q[3] = kAlpha;
                    });
    ASSERT_NE(ref.mem, naive.mem) << "the placement does not tell the two loops apart";
    const Kro8u* s3[3] = {a.at(src[0]), a.at(src[1]), a.at(src[2])};
    ASSERT_EQ(kroiYCbCrToRGB_8u_P3C4R(s3, 40, a.at(d), 40, {w, 1}, kAlpha), kroOk);
    EXPECT_EQ(a.mem, ref.mem);
}

}  // namespace
