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

bool samePx(Px x, Px y) { return x.a == y.a && x.b == y.b && x.c == y.c; }
std::string str(Px p) {
    return "(" + std::to_string(p.a) + "," + std::to_string(p.b) + "," + std::to_string(p.c) + ")";
}

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

// ---- images of every layout of the family ------------------------------------------------

enum class Lay { C3, C4, P3 };
int planesOf(Lay l) { return l == Lay::P3 ? 3 : 1; }
int bppOf(Lay l) { return l == Lay::C3 ? 3 : l == Lay::C4 ? 4 : 1; }

// An image whose planes are canvases with canaries, or dense buffers that end
// right before (or start right after) an inaccessible page.
struct Img {
    Lay lay;
    int w, h;
    std::vector<std::unique_ptr<kt::Canvas>> canvases;
    std::vector<std::unique_ptr<kt::Guarded>> guarded;
    std::array<Kro8u*, 3> p{};
    std::array<const Kro8u*, 3> cp{};
    int step = 0;
    bool nullArray = false;

    Img(Lay l, int w_, int h_, std::size_t pad = 37) : lay(l), w(w_), h(h_) {
        for (int i = 0; i < planesOf(l); ++i) {
            canvases.push_back(std::make_unique<kt::Canvas>(static_cast<std::size_t>(w) * bppOf(l), h, pad));
            p[i] = canvases.back()->data();
            step = canvases.back()->step();
        }
    }
    Img(Lay l, int w_, int h_, kt::Guarded::Side side) : lay(l), w(w_), h(h_) {
        step = w * bppOf(l);
        for (int i = 0; i < planesOf(l); ++i) {
            guarded.push_back(std::make_unique<kt::Guarded>(static_cast<std::size_t>(step) * h, side));
            p[i] = guarded.back()->data();
        }
    }
    // The plane arrays as the members take them.
    Kro8u* const* arr() { return nullArray ? nullptr : p.data(); }
    const Kro8u* const* carr() {
        for (int i = 0; i < 3; ++i) cp[i] = p[i];
        return nullArray ? nullptr : cp.data();
    }
    Kro8u& at(int c, int x, int y) {
        const bool packed = planesOf(lay) == 1;
        return p[packed ? 0 : c][static_cast<std::ptrdiff_t>(y) * step + (packed ? x * bppOf(lay) + c : x)];
    }
    Px get(int x, int y) { return {at(0, x, y), at(1, x, y), at(2, x, y)}; }
    void set(int x, int y, Px v) { at(0, x, y) = v.a; at(1, x, y) = v.b; at(2, x, y) = v.c; }
    void randomize(uint32_t seed) {
        for (std::size_t i = 0; i < canvases.size(); ++i) canvases[i]->randomize(seed + static_cast<uint32_t>(i));
    }
    bool intact() const {
        for (auto& c : canvases) if (!c->canariesIntact()) return false;
        return true;
    }
    std::vector<std::vector<uint8_t>> snapshot() const {
        std::vector<std::vector<uint8_t>> s;
        for (auto& c : canvases) s.push_back(c->snapshot());
        return s;
    }
    bool unchanged(const std::vector<std::vector<uint8_t>>& s) const {
        for (std::size_t i = 0; i < canvases.size(); ++i) if (!canvases[i]->untouchedSince(s[i])) return false;
        return true;
    }
    bool aligned16() const {
        bool a = step % 16 == 0;
        for (int i = 0; i < planesOf(lay); ++i) a = a && reinterpret_cast<std::uintptr_t>(p[i]) % 16 == 0;
        return a;
    }
};

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

const Member& member(const std::string& name) {
    for (const Member& m : members())
        if (name == m.name) return m;
    throw std::runtime_error(name);
}

Px outOf(const Member& m, Img& d, int x, int y) {
    const Px v = d.get(x, y);
    return m.bgr ? Px{v.c, v.b, v.a} : v;
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
            const Px in = s.get(x, y), want = m.form(path, w, x, aligned)(in.a, in.b, in.c), got = outOf(m, d, x, y);
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

// Dense images that end on the last byte before an inaccessible page, or
// begin on the first byte after one.
TEST_P(Family, RowsAgainstInaccessiblePages) {
    KT_USE_PATH(GetParam());
    for (const Member& m : members())
        for (auto side : {kt::Guarded::After, kt::Guarded::Before})
            for (int w : {1, 2, 3, 5, 8, 12, 15, 16, 17, 33, 47, 63, 64, 65, 67}) {
                Img s(m.in, w, 3, side), d(m.out, w, 3, side);
                EXPECT_EQ(m.call(s, d, {w, 3}), kroOk) << m.name;
            }
}

// A negative step walks upward and gives the rows of a positive one; a step
// of zero converts the first row into every row.
TEST_P(Family, NegativeAndZeroSteps) {
    KT_USE_PATH(GetParam());
    const int w = 37, h = 5;
    for (const Member& m : members()) {
        Img s(m.in, w, h), ref(m.out, w, h), up(m.out, w, h), zero(m.out, w, h);
        s.randomize(3);
        ASSERT_EQ(m.call(s, ref, {w, h}), kroOk);
        auto flip = [h](Img& i) {
            for (int k = 0; k < planesOf(i.lay); ++k) i.p[k] += static_cast<std::ptrdiff_t>(h - 1) * i.step;
            i.step = -i.step;
        };
        flip(s);
        flip(up);
        ASSERT_EQ(m.call(s, up, {w, h}), kroOk);
        flip(s);
        flip(up);
        const int st = s.step;
        s.step = 0;
        ASSERT_EQ(m.call(s, zero, {w, h}), kroOk);
        s.step = st;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                ASSERT_TRUE(samePx(up.get(x, y), ref.get(x, y))) << m.name << " negative step y=" << y;
                ASSERT_TRUE(samePx(zero.get(x, y), ref.get(x, 0))) << m.name << " zero step y=" << y;
            }
        EXPECT_TRUE(up.intact() && zero.intact()) << m.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Paths, Family, kt::bothPaths(), [](const auto& i) { return kt::pathName(i.param); });

}  // namespace
