// YCoCg: every member against its scalar form (the 8-bit ones over all 2^24
// inputs), lifting round trips, the inexact plain round trip, the size test
// split, canaries, alpha and the streamed rows.
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>

#include "models/ycocg_forms.h"
#include "test_common.h"

namespace {

namespace yc = k0::ycocg;
using Ycc = yc::Ycc;
using Rgb = yc::Rgb;

int32_t sample(const uint8_t* row, int bytes, std::size_t i) {
    if (bytes == 1) return row[i];
    if (bytes == 2) { int16_t v; std::memcpy(&v, row + 2 * i, 2); return v; }
    int32_t v;
    std::memcpy(&v, row + 4 * i, 4);
    return v;
}
void setSample(uint8_t* row, int bytes, std::size_t i, int32_t v) {
    if (bytes == 1) row[i] = static_cast<uint8_t>(v);
    else if (bytes == 2) { const int16_t s = static_cast<int16_t>(v); std::memcpy(row + 2 * i, &s, 2); }
    else std::memcpy(row + 4 * i, &v, 4);
}
// What a plane or pixel of `bytes` per sample holds of v.
int32_t stored(int bytes, int32_t v) { return bytes == 1 ? uint8_t(v) : bytes == 2 ? int16_t(v) : v; }

// ---- the members ---------------------------------------------------------------

using FwdCall = std::function<KroStatus(const void*, int, void* const*, int, KroiSize)>;
using InvCall = std::function<KroStatus(const void* const*, int, void*, int, KroiSize, int32_t)>;

struct Fwd {
    const char* name;
    int S, srcBytes, planeBytes;
    bool rgb, sizeTest;
    FwdCall call;
    std::function<Ycc(int32_t, int32_t, int32_t)> want;
};
struct Inv {
    const char* name;
    int S, planeBytes, dstBytes;
    bool rgb, sizeTest;
    InvCall call;
    std::function<Rgb(int32_t, int32_t, int32_t)> want;
};

template <class Ts, class Tp>
FwdCall fwdCall(KroStatus (*f)(const Ts*, int, Tp**, int, KroiSize)) {
    return [f](const void* s, int ss, void* const* p, int ds, KroiSize r) {
        Tp* pp[3] = {};
        if (p) for (int i = 0; i < 3; ++i) pp[i] = static_cast<Tp*>(p[i]);
        return f(static_cast<const Ts*>(s), ss, p ? pp : nullptr, ds, r);
    };
}
// Both kinds of inverse: with and without an alpha argument.
template <class Tp, class Td, class... Alpha>
InvCall invCall(KroStatus (*f)(const Tp**, int, Td*, int, KroiSize, Alpha...)) {
    return [f](const void* const* p, int ss, void* d, int ds, KroiSize r, [[maybe_unused]] int32_t a) {
        const Tp* pp[3] = {};
        if (p) for (int i = 0; i < 3; ++i) pp[i] = static_cast<const Tp*>(p[i]);
        return f(p ? pp : nullptr, ss, static_cast<Td*>(d), ds, r, static_cast<Alpha>(a)...);
    };
}

Ycc plain(int32_t r, int32_t g, int32_t b) { return yc::plainFwd(r, g, b); }
Ycc lift16(int32_t r, int32_t g, int32_t b) { return yc::liftFwd<int16_t>(r, g, b); }
Ycc lift32(int32_t r, int32_t g, int32_t b) { return yc::liftFwd<int32_t>(r, g, b); }
Rgb limited(Rgb v) { return {yc::limit8(int16_t(v.r)), yc::limit8(int16_t(v.g)), yc::limit8(int16_t(v.b))}; }

const std::vector<Fwd>& forwards() {
    static const std::vector<Fwd> f = {
        {"BGRToYCoCg_8u16s_C3P3R", 3, 1, 2, false, true, fwdCall(kroiBGRToYCoCg_8u16s_C3P3R), plain},
        {"BGRToYCoCg_8u16s_C4P3R", 4, 1, 2, false, true, fwdCall(kroiBGRToYCoCg_8u16s_C4P3R), plain},
        {"BGRToYCoCg_Rev_8u16s_C3P3R", 3, 1, 2, false, true, fwdCall(kroiBGRToYCoCg_Rev_8u16s_C3P3R), lift32},
        {"BGRToYCoCg_Rev_8u16s_C4P3R", 4, 1, 2, false, true, fwdCall(kroiBGRToYCoCg_Rev_8u16s_C4P3R), lift32},
        {"RGBToYCoCg_8u_C3P3R", 3, 1, 1, true, true, fwdCall(kroiRGBToYCoCg_8u_C3P3R), yc::pairFwd},
        {"SBGRToYCoCg_16s_C3P3R", 3, 2, 2, false, true, fwdCall(kroiSBGRToYCoCg_16s_C3P3R), plain},
        {"SBGRToYCoCg_16s_C4P3R", 4, 2, 2, false, true, fwdCall(kroiSBGRToYCoCg_16s_C4P3R), plain},
        {"SBGRToYCoCg_16s32s_C3P3R", 3, 2, 4, false, true, fwdCall(kroiSBGRToYCoCg_16s32s_C3P3R), plain},
        {"SBGRToYCoCg_16s32s_C4P3R", 4, 2, 4, false, false, fwdCall(kroiSBGRToYCoCg_16s32s_C4P3R), plain},
        {"SBGRToYCoCg_Rev_16s_C3P3R", 3, 2, 2, false, false, fwdCall(kroiSBGRToYCoCg_Rev_16s_C3P3R), lift16},
        {"SBGRToYCoCg_Rev_16s_C4P3R", 4, 2, 2, false, false, fwdCall(kroiSBGRToYCoCg_Rev_16s_C4P3R), lift16},
        {"SBGRToYCoCg_Rev_16s32s_C3P3R", 3, 2, 4, false, true, fwdCall(kroiSBGRToYCoCg_Rev_16s32s_C3P3R), lift32},
        {"SBGRToYCoCg_Rev_16s32s_C4P3R", 4, 2, 4, false, false, fwdCall(kroiSBGRToYCoCg_Rev_16s32s_C4P3R), lift32},
    };
    return f;
}

const std::vector<Inv>& inverses() {
    static const auto plain16 = [](int32_t y, int32_t co, int32_t cg) { return yc::plainInv<int16_t>(y, co, cg); };
    static const auto plain32 = [](int32_t y, int32_t co, int32_t cg) { return yc::plainInv<int32_t>(y, co, cg); };
    static const auto lift16i = [](int32_t y, int32_t co, int32_t cg) { return yc::liftInv<int16_t>(y, co, cg); };
    static const auto lift32i = [](int32_t y, int32_t co, int32_t cg) { return yc::liftInv<int32_t>(y, co, cg); };
    static const auto plain8 = [](int32_t y, int32_t co, int32_t cg) { return limited(yc::plainInv<int16_t>(y, co, cg)); };
    static const auto lift8 = [](int32_t y, int32_t co, int32_t cg) { return limited(yc::liftInv<int16_t>(y, co, cg)); };
    static const std::vector<Inv> f = {
        {"YCoCgToBGR_16s8u_P3C3R", 3, 2, 1, false, false, invCall(kroiYCoCgToBGR_16s8u_P3C3R), plain8},
        {"YCoCgToBGR_16s8u_P3C4R", 4, 2, 1, false, false, invCall(kroiYCoCgToBGR_16s8u_P3C4R), plain8},
        {"YCoCgToBGR_Rev_16s8u_P3C3R", 3, 2, 1, false, false, invCall(kroiYCoCgToBGR_Rev_16s8u_P3C3R), lift8},
        {"YCoCgToBGR_Rev_16s8u_P3C4R", 4, 2, 1, false, false, invCall(kroiYCoCgToBGR_Rev_16s8u_P3C4R), lift8},
        {"YCoCgToRGB_8u_P3C3R", 3, 1, 1, true, false, invCall(kroiYCoCgToRGB_8u_P3C3R), yc::pairInv},
        {"YCoCgToSBGR_16s_P3C3R", 3, 2, 2, false, false, invCall(kroiYCoCgToSBGR_16s_P3C3R), plain16},
        {"YCoCgToSBGR_16s_P3C4R", 4, 2, 2, false, true, invCall(kroiYCoCgToSBGR_16s_P3C4R), plain16},
        {"YCoCgToSBGR_32s16s_P3C3R", 3, 4, 2, false, true, invCall(kroiYCoCgToSBGR_32s16s_P3C3R), plain32},
        {"YCoCgToSBGR_32s16s_P3C4R", 4, 4, 2, false, true, invCall(kroiYCoCgToSBGR_32s16s_P3C4R), plain32},
        {"YCoCgToSBGR_Rev_16s_P3C3R", 3, 2, 2, false, false, invCall(kroiYCoCgToSBGR_Rev_16s_P3C3R), lift16i},
        {"YCoCgToSBGR_Rev_16s_P3C4R", 4, 2, 2, false, false, invCall(kroiYCoCgToSBGR_Rev_16s_P3C4R), lift16i},
        {"YCoCgToSBGR_Rev_32s16s_P3C3R", 3, 4, 2, false, false, invCall(kroiYCoCgToSBGR_Rev_32s16s_P3C3R), lift32i},
        {"YCoCgToSBGR_Rev_32s16s_P3C4R", 4, 4, 2, false, false, invCall(kroiYCoCgToSBGR_Rev_32s16s_P3C4R), lift32i},
    };
    return f;
}

// ---- images ----------------------------------------------------------------------

// Three planes with one step, each with canaries.
struct Planes {
    Planes(std::size_t rowBytes, int rows) : p{{{rowBytes, rows}, {rowBytes, rows}, {rowBytes, rows}}} {}
    std::array<kt::Canvas, 3> p;
    void* ptr[3] = {p[0].data(), p[1].data(), p[2].data()};
    int step() const { return p[0].step(); }
    bool canariesIntact() const { return p[0].canariesIntact() && p[1].canariesIntact() && p[2].canariesIntact(); }
};

// The pixel (B, G, R order unless rgb) at index x of an interleaved row.
Rgb pixelAt(const uint8_t* row, int bytes, int S, bool rgb, std::size_t x) {
    const int32_t s0 = sample(row, bytes, S * x), s1 = sample(row, bytes, S * x + 1), s2 = sample(row, bytes, S * x + 2);
    return rgb ? Rgb{s0, s1, s2} : Rgb{s2, s1, s0};
}

// Runs a forward member on src and checks every plane sample against its form.
void checkForward(const Fwd& m, const kt::Canvas& src, int w, int h) {
    Planes out(static_cast<std::size_t>(w) * m.planeBytes, h);
    ASSERT_EQ(m.call(src.data(), src.step(), out.ptr, out.step(), {w, h}), kroOk) << m.name;
    ASSERT_TRUE(out.canariesIntact()) << m.name << " w " << w;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const Rgb c = pixelAt(src.row(y), m.srcBytes, m.S, m.rgb, x);
            const Ycc e = m.want(c.r, c.g, c.b);
            const int32_t want[3] = {e.y, e.co, e.cg};
            for (int p = 0; p < 3; ++p)
                if (sample(out.p[p].row(y), m.planeBytes, x) != stored(m.planeBytes, want[p])) {
                    FAIL() << m.name << " w " << w << " pixel " << x << "," << y << " plane " << p << " got "
                           << sample(out.p[p].row(y), m.planeBytes, x) << " want " << stored(m.planeBytes, want[p]);
                }
        }
}

// Runs an inverse member on planes and checks every pixel and its alpha.
void checkInverse(const Inv& m, Planes& in, int w, int h, int32_t alpha) {
    kt::Canvas dst(static_cast<std::size_t>(w) * m.S * m.dstBytes, h);
    ASSERT_EQ(m.call(in.ptr, in.step(), dst.data(), dst.step(), {w, h}, alpha), kroOk) << m.name;
    ASSERT_TRUE(dst.canariesIntact()) << m.name << " w " << w;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const Rgb e = m.want(sample(in.p[0].row(y), m.planeBytes, x), sample(in.p[1].row(y), m.planeBytes, x),
                                 sample(in.p[2].row(y), m.planeBytes, x));
            const Rgb got = pixelAt(dst.row(y), m.dstBytes, m.S, m.rgb, x);
            if (got.r != stored(m.dstBytes, e.r) || got.g != stored(m.dstBytes, e.g) || got.b != stored(m.dstBytes, e.b)) {
                FAIL() << m.name << " w " << w << " pixel " << x << "," << y << " got " << got.r << "," << got.g << ","
                       << got.b << " want " << stored(m.dstBytes, e.r) << "," << stored(m.dstBytes, e.g) << ","
                       << stored(m.dstBytes, e.b);
            }
            if (m.S == 4) {
                ASSERT_EQ(sample(dst.row(y), m.dstBytes, 4 * x + 3), stored(m.dstBytes, alpha)) << m.name;
            }
        }
}

// Random samples with the extremes of the type mixed in.
void fillRandom(kt::Canvas& c, int bytes, uint32_t seed) {
    c.randomize(seed);
    std::mt19937 g(seed);
    const int32_t ext[] = {0, 1, -1, 255, 256, 32767, -32768, 65535, INT32_MAX, INT32_MIN};
    const std::size_t n = c.rowBytes() / bytes;
    for (int y = 0; y < c.rows(); ++y)
        for (std::size_t i = 0; i < n; ++i)
            if (g() % 4 == 0) setSample(c.row(y), bytes, i, ext[g() % 10]);
}

const int kWidths[] = {1, 2, 3, 7, 8, 9, 15, 16, 17, 31, 32, 33, 47, 63, 64, 65, 100};

// ---- every member against its form -----------------------------------------------

TEST(YCoCgForward, EveryMemberAgainstItsForm) {
    for (const Fwd& m : forwards())
        for (int w : kWidths) {
            kt::Canvas src(static_cast<std::size_t>(w) * m.S * m.srcBytes, 3);
            fillRandom(src, m.srcBytes, w * 31 + m.S);
            checkForward(m, src, w, 3);
        }
}

TEST(YCoCgInverse, EveryMemberAgainstItsFormWithAlpha) {
    for (const Inv& m : inverses())
        for (int w : kWidths) {
            Planes in(static_cast<std::size_t>(w) * m.planeBytes, 3);
            for (int p = 0; p < 3; ++p) fillRandom(in.p[p], m.planeBytes, w * 7 + p);
            checkInverse(m, in, w, 3, m.dstBytes == 1 ? 0xC7 : -12345);
        }
}

// The 8-bit forward members over every colour, C4 with a changing fourth byte.
TEST(YCoCgForward, EightBitMembersOverTheCube) {
    const auto& cube = kt::colourCube();
    kt::Canvas c3(4096 * 3, 4096, 0), c4(4096 * 4, 4096, 0);
    std::memcpy(c3.data(), cube.data(), cube.size());
    for (std::size_t i = 0; i < (1u << 24); ++i) {
        std::memcpy(c4.data() + 4 * i, &cube[3 * i], 3);
        c4.data()[4 * i + 3] = static_cast<uint8_t>(i * 13);
    }
    for (const Fwd& m : forwards())
        if (m.srcBytes == 1) checkForward(m, m.S == 3 ? c3 : c4, 4096, 4096);
}

// The 8-bit pair's inverse over every (Y, Co, Cg).
TEST(YCoCgInverse, EightBitPairOverAllTriples) {
    const auto& cube = kt::colourCube();
    Planes in(4096, 4096);
    for (std::size_t i = 0; i < (1u << 24); ++i)
        for (int p = 0; p < 3; ++p) in.p[p].data()[i + (i / 4096) * (in.step() - 4096)] = cube[3 * i + p];
    checkInverse(inverses()[4], in, 4096, 4096, 0);
}

// ---- round trips -----------------------------------------------------------------

// Forward then inverse over images of samples of `bytes`; returns the number
// of samples that did not come back.
std::size_t roundTrip(const Fwd& f, const Inv& i, const kt::Canvas& src, int w, int h) {
    Planes mid(static_cast<std::size_t>(w) * f.planeBytes, h);
    kt::Canvas back(static_cast<std::size_t>(w) * i.S * i.dstBytes, h);
    EXPECT_EQ(f.call(src.data(), src.step(), mid.ptr, mid.step(), {w, h}), kroOk);
    EXPECT_EQ(i.call(mid.ptr, mid.step(), back.data(), back.step(), {w, h}, 0), kroOk);
    std::size_t wrong = 0;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            for (int c = 0; c < 3; ++c)
                wrong += sample(src.row(y), f.srcBytes, f.S * x + c) != sample(back.row(y), i.dstBytes, i.S * x + c);
    return wrong;
}

const Fwd& fwdNamed(const std::string& n) { return kt::byName(forwards(), n); }
const Inv& invNamed(const std::string& n) { return kt::byName(inverses(), n); }

TEST(YCoCgRoundTrip, LiftingRestoresEveryColour) {
    kt::Canvas cube(4096 * 3, 4096, 0);
    std::memcpy(cube.data(), kt::colourCube().data(), 3u << 24);
    EXPECT_EQ(roundTrip(fwdNamed("BGRToYCoCg_Rev_8u16s_C3P3R"), invNamed("YCoCgToBGR_Rev_16s8u_P3C3R"), cube, 4096, 4096), 0u);
}

TEST(YCoCgRoundTrip, LiftingRestoresSixteenBitSamplesThroughTheWrap) {
    for (int w : {5, 33, 200}) {
        kt::Canvas c3(w * 6, 9), c4(w * 8, 9);
        fillRandom(c3, 2, w);
        fillRandom(c4, 2, w + 1);
        EXPECT_EQ(roundTrip(fwdNamed("SBGRToYCoCg_Rev_16s_C3P3R"), invNamed("YCoCgToSBGR_Rev_16s_P3C3R"), c3, w, 9), 0u);
        EXPECT_EQ(roundTrip(fwdNamed("SBGRToYCoCg_Rev_16s32s_C3P3R"), invNamed("YCoCgToSBGR_Rev_32s16s_P3C3R"), c3, w, 9), 0u);
        // the C4 forward drops the fourth sample; compare through the C3 inverse's first three
        EXPECT_EQ(roundTrip(fwdNamed("SBGRToYCoCg_Rev_16s_C4P3R"), invNamed("YCoCgToSBGR_Rev_16s_P3C4R"), c4, w, 9), 0u);
        EXPECT_EQ(roundTrip(fwdNamed("SBGRToYCoCg_Rev_16s32s_C4P3R"), invNamed("YCoCgToSBGR_Rev_32s16s_P3C4R"), c4, w, 9), 0u);
    }
    // R = 32767, B = -32768: Co wraps to -1 in 16 bits and still comes back
    const Kro16s bgr[3] = {-32768, 0, 32767};
    Kro16s y, co, cg, back[3];
    Kro16s* planes[3] = {&y, &co, &cg};
    const Kro16s* cplanes[3] = {&y, &co, &cg};
    ASSERT_EQ(kroiSBGRToYCoCg_Rev_16s_C3P3R(bgr, 6, planes, 2, {1, 1}), kroOk);
    EXPECT_EQ(co, -1);
    ASSERT_EQ(kroiYCoCgToSBGR_Rev_16s_P3C3R(cplanes, 2, back, 6, {1, 1}), kroOk);
    EXPECT_EQ(std::memcmp(back, bgr, sizeof bgr), 0);
}

TEST(YCoCgRoundTrip, PlainFormRounds) {
    kt::Canvas cube(4096 * 3, 4096, 0);
    std::memcpy(cube.data(), kt::colourCube().data(), 3u << 24);
    EXPECT_GT(roundTrip(fwdNamed("BGRToYCoCg_8u16s_C3P3R"), invNamed("YCoCgToBGR_16s8u_P3C3R"), cube, 4096, 4096), 0u);
    // B = 0, G = 1, R = 0 comes back with G = 2
    const Kro8u px[3] = {0, 1, 0};
    Kro16s y, co, cg;
    Kro16s* planes[3] = {&y, &co, &cg};
    const Kro16s* cplanes[3] = {&y, &co, &cg};
    Kro8u back[3];
    ASSERT_EQ(kroiBGRToYCoCg_8u16s_C3P3R(px, 3, planes, 2, {1, 1}), kroOk);
    ASSERT_EQ(kroiYCoCgToBGR_16s8u_P3C3R(cplanes, 2, back, 3, {1, 1}), kroOk);
    EXPECT_EQ(back[1], 2);
}

// ---- known answers ---------------------------------------------------------------

TEST(YCoCgKnown, PairLimitsAndWrappedValuesPass) {
    // red gives Co = 128 + 128, limited to 255
    const Kro8u red[3] = {255, 0, 0};
    Kro8u y, co, cg;
    Kro8u* p8[3] = {&y, &co, &cg};
    ASSERT_EQ(kroiRGBToYCoCg_8u_C3P3R(red, 3, p8, 1, {1, 1}), kroOk);
    EXPECT_EQ(co, 255);
    EXPECT_EQ(y, 64);
    EXPECT_EQ(cg, 128 - 64);
    // Y + Co - Cg = 65636 wraps to 100 in 16 bits, which the limit passes
    const Kro16s yy = 32767, cco = 32767, ccg = -102;
    const Kro16s* p16[3] = {&yy, &cco, &ccg};
    Kro8u bgr[3];
    ASSERT_EQ(kroiYCoCgToBGR_16s8u_P3C3R(p16, 2, bgr, 3, {1, 1}), kroOk);
    EXPECT_EQ(bgr[2], 100);
    // the 16s plain forward keeps the low 16 bits: Co of R = 32767, B = -32768 is 32768
    const Kro16s s[3] = {-32768, 0, 32767};
    Kro16s o[3];
    Kro16s* po[3] = {&o[0], &o[1], &o[2]};
    ASSERT_EQ(kroiSBGRToYCoCg_16s_C3P3R(s, 6, po, 2, {1, 1}), kroOk);
    EXPECT_EQ(o[1], -32768);
    Kro32s w[3];
    Kro32s* pw[3] = {&w[0], &w[1], &w[2]};
    ASSERT_EQ(kroiSBGRToYCoCg_16s32s_C3P3R(s, 6, pw, 4, {1, 1}), kroOk);
    EXPECT_EQ(w[1], 32768);
}

// ---- validation --------------------------------------------------------------------

// Twelve members refuse a width or height below 1; the other fourteen return
// kroOk and write nothing. Null pointers come before the size in all.
TEST(YCoCgValidation, SizeTestSplitAndNullPointers) {
    int refusing = 0;
    kt::Canvas img(64, 2);
    Planes planes(64, 2);
    const auto before = img.snapshot();
    const std::array<std::vector<uint8_t>, 3> pbefore = {planes.p[0].snapshot(), planes.p[1].snapshot(), planes.p[2].snapshot()};
    const auto planesUntouched = [&] {
        return planes.p[0].untouchedSince(pbefore[0]) && planes.p[1].untouchedSince(pbefore[1]) && planes.p[2].untouchedSince(pbefore[2]);
    };
    void* withNull[3] = {planes.ptr[0], nullptr, planes.ptr[2]};
    for (const Fwd& m : forwards()) {
        const KroStatus small = m.call(img.data(), 64, planes.ptr, 64, {2, 0});
        EXPECT_EQ(small, m.sizeTest ? kroErrSize : kroOk) << m.name;
        EXPECT_EQ(m.call(img.data(), 64, planes.ptr, 64, {0, 2}), m.sizeTest ? kroErrSize : kroOk) << m.name;
        refusing += small == kroErrSize;
        EXPECT_EQ(m.call(nullptr, 64, planes.ptr, 64, {0, 0}), kroErrNullPtr) << m.name;
        EXPECT_EQ(m.call(img.data(), 64, nullptr, 64, {0, 0}), kroErrNullPtr) << m.name;
        EXPECT_EQ(m.call(img.data(), 64, withNull, 64, {-1, 2}), kroErrNullPtr) << m.name;
        EXPECT_TRUE(planesUntouched()) << m.name;
    }
    for (const Inv& m : inverses()) {
        const KroStatus small = m.call(planes.ptr, 64, img.data(), 64, {2, 0}, 1);
        EXPECT_EQ(small, m.sizeTest ? kroErrSize : kroOk) << m.name;
        EXPECT_EQ(m.call(planes.ptr, 64, img.data(), 64, {-3, 2}, 1), m.sizeTest ? kroErrSize : kroOk) << m.name;
        refusing += small == kroErrSize;
        EXPECT_EQ(m.call(nullptr, 64, img.data(), 64, {0, 0}, 1), kroErrNullPtr) << m.name;
        EXPECT_EQ(m.call(planes.ptr, 64, nullptr, 64, {0, 0}, 1), kroErrNullPtr) << m.name;
        EXPECT_EQ(m.call(withNull, 64, img.data(), 64, {2, -1}, 1), kroErrNullPtr) << m.name;
        EXPECT_TRUE(img.untouchedSince(before)) << m.name;
    }
    EXPECT_EQ(refusing, 12);
    // the example of the pair: the inverse succeeds at width 0, the forward refuses
    const Kro8u* cp[3] = {planes.p[0].data(), planes.p[1].data(), planes.p[2].data()};
    EXPECT_EQ(kroiYCoCgToRGB_8u_P3C3R(cp, 64, img.data(), 64, {0, 1}), kroOk);
    Kro8u* mp[3] = {planes.p[0].data(), planes.p[1].data(), planes.p[2].data()};
    EXPECT_EQ(kroiRGBToYCoCg_8u_C3P3R(img.data(), 64, mp, 64, {0, 1}), kroErrSize);
}

// ---- streamed rows -----------------------------------------------------------------

// 32-bit plane rows that are 16- or 64-byte aligned take the streaming
// stores; the values are those of the ordinary rows. Width 104 streams in both
// directions and leaves a masked tail.
TEST(YCoCgStream, AlignedRowsGiveTheSameValues) {
    const int w = 104, h = 5, planeStep = 512, step = 1024;
    kt::Canvas src(w * 6, h);
    fillRandom(src, 2, 77);
    for (std::size_t offset : {0u, 16u, 4u}) {
        std::unique_ptr<uint8_t, void (*)(void*)> mem(static_cast<uint8_t*>(std::aligned_alloc(64, 65536)), std::free);
        uint8_t* const base = mem.get();
        uint8_t* const in = base + offset;
        uint8_t* const back = base + 32768 + offset;
        void* planes[3] = {base + 8192 + offset, base + 16384 + offset, base + 24576 + offset};
        for (int y = 0; y < h; ++y) std::memcpy(in + y * step, src.row(y), w * 6);
        for (bool rev : {false, true}) {
            const Fwd& f = fwdNamed(rev ? "SBGRToYCoCg_Rev_16s32s_C3P3R" : "SBGRToYCoCg_16s32s_C3P3R");
            const Inv& i = invNamed(rev ? "YCoCgToSBGR_Rev_32s16s_P3C3R" : "YCoCgToSBGR_32s16s_P3C3R");
            ASSERT_EQ(f.call(in, step, planes, planeStep, {w, h}), kroOk);
            ASSERT_EQ(i.call(planes, planeStep, back, step, {w, h}, 0), kroOk);
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x) {
                    const Rgb c = pixelAt(src.row(y), 2, 3, false, x);
                    const Ycc e = f.want(c.r, c.g, c.b);
                    int32_t got[3];
                    for (int p = 0; p < 3; ++p) got[p] = sample(static_cast<uint8_t*>(planes[p]) + y * planeStep, 4, x);
                    ASSERT_TRUE(got[0] == e.y && got[1] == e.co && got[2] == e.cg) << f.name << " offset " << offset << " x " << x;
                    const Rgb r = i.want(got[0], got[1], got[2]);
                    const Rgb b = pixelAt(back + y * step, 2, 3, false, x);
                    ASSERT_TRUE(b.r == int16_t(r.r) && b.g == int16_t(r.g) && b.b == int16_t(r.b)) << i.name << " offset " << offset;
                    if (rev) {
                        ASSERT_TRUE(b.r == c.r && b.g == c.g && b.b == c.b);
                    }
                }
        }
    }
}

}  // namespace
