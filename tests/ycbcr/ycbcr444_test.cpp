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

}  // namespace
