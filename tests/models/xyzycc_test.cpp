// XYZ and YCC: every member's form at every place of a row on both paths,
// alpha, canaries, byte steps, the pixel-by-pixel branch for overlapping
// images, and the stated values.
#include <cfenv>
#include <climits>
#include <cmath>
#include <cstring>
#include <functional>
#include <string>

#include "models/xyzycc_forms.h"
#include "test_common.h"

namespace {

using kt::Path;
namespace f = k0::xyzycc;

enum class Kind { U8, U16, S16, F32 };
enum class AlphaRule { Keep, Zero, ZeroOnVnni };

template <class T>
using Form = f::Trio<T> (*)(T, T, T);
template <class T, auto form>
f::Trio<T> as(T a, T b, T c) {
    return form(a, b, c);
}

struct Member {
    std::string name;
    Kind kind;
    int elem, stride;
    AlphaRule alpha;
    bool whole;  // its driver carries the whole image and has the overlap branch
    bool asks;   // makes the feature query
    std::function<KroStatus(const void*, int, void*, int, KroiSize)> call;
    // The samples of pixel x of a row of w pixels, from the source pixel.
    std::function<void(const uint8_t* in, uint8_t* out, Path, int x, int w)> want;
    int pixelBytes() const { return elem * stride; }
};

template <class T>
constexpr Kind kindOf() {
    if constexpr (std::is_same_v<T, Kro8u>) return Kind::U8;
    else if constexpr (std::is_same_v<T, Kro16u>) return Kind::U16;
    else if constexpr (std::is_same_v<T, Kro16s>) return Kind::S16;
    else return Kind::F32;
}

template <class T>
using Chooser = std::function<Form<T>(Path, int x, int w)>;

template <class T>
Member make(std::string name, KroStatus (*fn)(const T*, int, T*, int, KroiSize), int stride, AlphaRule alpha, bool whole,
            Chooser<T> choose, bool asks = false) {
    Member m{std::move(name), kindOf<T>(), int(sizeof(T)), stride, alpha, whole, asks, {}, {}};
    m.call = [fn](const void* s, int ss, void* d, int ds, KroiSize r) { return fn(static_cast<const T*>(s), ss, static_cast<T*>(d), ds, r); };
    m.want = [choose](const uint8_t* in, uint8_t* out, Path p, int x, int w) {
        T px[3];
        std::memcpy(px, in, sizeof px);
        const f::Trio<T> o = choose(p, x, w)(px[0], px[1], px[2]);
        const T res[3] = {o.a, o.b, o.c};
        std::memcpy(out, res, sizeof res);
    };
    return m;
}

template <class T, auto form>
Chooser<T> one() {
    return [](Path, int, int) { return &as<T, form>; };
}

// The plain kernel of RGBToXYZ 8u: Q15 over its blocks, Q16 on the last
// pixels; the VNNI kernels Q16 throughout.
template <int S>
Chooser<Kro8u> xyzForms8u() {
    return [](Path p, int x, int w) {
        const int blocks = w & (S == 3 ? ~7 : ~3);
        return p == Path::Plain && x < blocks ? &as<Kro8u, f::rgbToXyzQ15> : &as<Kro8u, f::rgbToXyzQ16>;
    };
}

Chooser<Kro16s> ycc16sForms() {
    return [](Path, int x, int w) { return x < (w & ~3) ? &as<Kro16s, f::rgbToYcc16sBlock> : &as<Kro16s, f::rgbToYcc16sTail>; };
}

const std::vector<Member>& members() {
    using A = AlphaRule;
    static const std::vector<Member> m = {
        make<Kro8u>("RGBToXYZ_8u_C3R", kroiRGBToXYZ_8u_C3R, 3, A::Keep, false, xyzForms8u<3>(), true),
        make<Kro8u>("RGBToXYZ_8u_AC4R", kroiRGBToXYZ_8u_AC4R, 4, A::ZeroOnVnni, false, xyzForms8u<4>(), true),
        make<Kro16u>("RGBToXYZ_16u_C3R", kroiRGBToXYZ_16u_C3R, 3, A::Keep, false, one<Kro16u, f::rgbToXyz16u>()),
        make<Kro16u>("RGBToXYZ_16u_AC4R", kroiRGBToXYZ_16u_AC4R, 4, A::Keep, false, one<Kro16u, f::rgbToXyz16u>()),
        make<Kro16s>("RGBToXYZ_16s_C3R", kroiRGBToXYZ_16s_C3R, 3, A::Zero, true, one<Kro16s, f::rgbToXyz16s>()),
        make<Kro16s>("RGBToXYZ_16s_AC4R", kroiRGBToXYZ_16s_AC4R, 4, A::Zero, true, one<Kro16s, f::rgbToXyz16s>()),
        make<Kro32f>("RGBToXYZ_32f_C3R", kroiRGBToXYZ_32f_C3R, 3, A::Keep, false, one<Kro32f, f::rgbToXyz32f>()),
        make<Kro32f>("RGBToXYZ_32f_AC4R", kroiRGBToXYZ_32f_AC4R, 4, A::Keep, false, one<Kro32f, f::rgbToXyz32f>()),

        make<Kro8u>("XYZToRGB_8u_C3R", kroiXYZToRGB_8u_C3R, 3, A::Zero, true, one<Kro8u, f::xyzToRgb8u>()),
        make<Kro8u>("XYZToRGB_8u_AC4R", kroiXYZToRGB_8u_AC4R, 4, A::Zero, true, one<Kro8u, f::xyzToRgb8u>()),
        make<Kro16u>("XYZToRGB_16u_C3R", kroiXYZToRGB_16u_C3R, 3, A::Zero, true, one<Kro16u, f::xyzToRgb16u>()),
        make<Kro16u>("XYZToRGB_16u_AC4R", kroiXYZToRGB_16u_AC4R, 4, A::Zero, true, one<Kro16u, f::xyzToRgb16u>()),
        make<Kro16s>("XYZToRGB_16s_C3R", kroiXYZToRGB_16s_C3R, 3, A::Zero, true, one<Kro16s, f::xyzToRgb16s>()),
        make<Kro16s>("XYZToRGB_16s_AC4R", kroiXYZToRGB_16s_AC4R, 4, A::Zero, true, one<Kro16s, f::xyzToRgb16s>()),
        make<Kro32f>("XYZToRGB_32f_C3R", kroiXYZToRGB_32f_C3R, 3, A::Keep, false, one<Kro32f, f::xyzToRgb32f>()),
        make<Kro32f>("XYZToRGB_32f_AC4R", kroiXYZToRGB_32f_AC4R, 4, A::Keep, false, one<Kro32f, f::xyzToRgb32f>()),

        make<Kro8u>("RGBToYCC_8u_C3R", kroiRGBToYCC_8u_C3R, 3, A::Zero, true, one<Kro8u, f::rgbToYcc8u>()),
        make<Kro8u>("RGBToYCC_8u_AC4R", kroiRGBToYCC_8u_AC4R, 4, A::Zero, true, one<Kro8u, f::rgbToYcc8u>()),
        make<Kro16u>("RGBToYCC_16u_C3R", kroiRGBToYCC_16u_C3R, 3, A::Zero, true, one<Kro16u, f::rgbToYcc16u>()),
        make<Kro16u>("RGBToYCC_16u_AC4R", kroiRGBToYCC_16u_AC4R, 4, A::Zero, true, one<Kro16u, f::rgbToYcc16u>()),
        make<Kro16s>("RGBToYCC_16s_C3R", kroiRGBToYCC_16s_C3R, 3, A::Keep, false, ycc16sForms()),
        make<Kro16s>("RGBToYCC_16s_AC4R", kroiRGBToYCC_16s_AC4R, 4, A::Keep, false, ycc16sForms()),
        make<Kro32f>("RGBToYCC_32f_C3R", kroiRGBToYCC_32f_C3R, 3, A::Keep, false, one<Kro32f, f::rgbToYcc32f>()),
        make<Kro32f>("RGBToYCC_32f_AC4R", kroiRGBToYCC_32f_AC4R, 4, A::Keep, false, one<Kro32f, f::rgbToYcc32f>()),

        make<Kro8u>("YCCToRGB_8u_C3R", kroiYCCToRGB_8u_C3R, 3, A::Zero, true, one<Kro8u, f::yccToRgb8u>()),
        make<Kro8u>("YCCToRGB_8u_AC4R", kroiYCCToRGB_8u_AC4R, 4, A::Zero, true, one<Kro8u, f::yccToRgb8u>()),
        make<Kro16u>("YCCToRGB_16u_C3R", kroiYCCToRGB_16u_C3R, 3, A::Zero, true, one<Kro16u, f::yccToRgb16u>()),
        make<Kro16u>("YCCToRGB_16u_AC4R", kroiYCCToRGB_16u_AC4R, 4, A::Zero, true, one<Kro16u, f::yccToRgb16u>()),
        make<Kro16s>("YCCToRGB_16s_C3R", kroiYCCToRGB_16s_C3R, 3, A::Zero, true, one<Kro16s, f::yccToRgb16s>()),
        make<Kro16s>("YCCToRGB_16s_AC4R", kroiYCCToRGB_16s_AC4R, 4, A::Zero, true, one<Kro16s, f::yccToRgb16s>()),
        make<Kro32f>("YCCToRGB_32f_C3R", kroiYCCToRGB_32f_C3R, 3, A::Keep, false, one<Kro32f, f::yccToRgb32f>()),
        make<Kro32f>("YCCToRGB_32f_AC4R", kroiYCCToRGB_32f_AC4R, 4, A::Keep, false, one<Kro32f, f::yccToRgb32f>()),
    };
    return m;
}

const Member& member(const std::string& name) { return kt::byName(members(), name); }

// ---- images -------------------------------------------------------------------------------

// Floats that the chains meet: the unit range mostly, out of range, and the
// special values (one NaN pattern, so that results stay comparable bit for bit).
float pickFloat(std::mt19937& g) {
    static const float specials[] = {0.0f, -0.0f, 1.0f, -1.0f, 0.5f, 1e30f, -1e30f, 1e-40f, -1e-40f,
                                     std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
                                     std::numeric_limits<float>::quiet_NaN()};
    const unsigned r = g() % 32;
    if (r == 0) return specials[g() % std::size(specials)];
    if (r < 8) return std::uniform_real_distribution<float>(-2.0f, 3.0f)(g);
    return std::uniform_real_distribution<float>(0.0f, 1.0f)(g);
}

// Canvases whose steps are a multiple of every sample size.
kt::Canvas canvasFor(const Member& m, int w, int h) { return kt::Canvas(static_cast<std::size_t>(w) * m.pixelBytes(), h, 36); }

void fillSource(kt::Canvas& c, Kind kind, uint32_t seed) {
    c.randomize(seed);
    if (kind != Kind::F32) return;
    std::mt19937 g(seed);
    for (int y = 0; y < c.rows(); ++y)
        for (std::size_t i = 0; i + 4 <= c.rowBytes(); i += 4) {
            const float v = pickFloat(g);
            std::memcpy(c.row(y) + i, &v, 4);
        }
}

std::string show(const Member& m, const uint8_t* p) {
    std::string s = "(";
    for (int c = 0; c < 3; ++c) {
        if (c) s += ",";
        if (m.kind == Kind::U8) s += std::to_string(p[c]);
        else if (m.kind == Kind::U16) s += std::to_string(reinterpret_cast<const Kro16u*>(p)[c]);
        else if (m.kind == Kind::S16) s += std::to_string(reinterpret_cast<const Kro16s*>(p)[c]);
        else s += std::to_string(reinterpret_cast<const Kro32f*>(p)[c]);
    }
    return s + ")";
}

// Checks every pixel of a converted image against its form (bit for bit) and
// its fourth sample against the alpha rule; `before` is the destination as it
// was before the call. Returns the number of wrong pixels, reporting a few.
std::size_t verify(const Member& m, Path path, const uint8_t* src, int ss, const uint8_t* dst, int ds, const uint8_t* before, int w, int h,
                   const std::string& what) {
    std::size_t bad = 0;
    const int pb = m.pixelBytes(), e = m.elem;
    uint8_t want[12];
    const uint8_t zero[4] = {};
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const std::ptrdiff_t so = std::ptrdiff_t(y) * ss + x * pb, dof = std::ptrdiff_t(y) * ds + x * pb;
            m.want(src + so, want, path, x, w);
            bool ok = std::memcmp(dst + dof, want, 3 * e) == 0;
            if (m.stride == 4) {
                const bool cleared = m.alpha == AlphaRule::Zero || (m.alpha == AlphaRule::ZeroOnVnni && path == Path::Vnni);
                ok = ok && std::memcmp(dst + dof + 3 * e, cleared ? zero : before + dof + 3 * e, e) == 0;
            }
            if (!ok && bad++ < 4)
                ADD_FAILURE() << m.name << " " << kt::pathName(path) << " " << what << " w=" << w << " x=" << x << " y=" << y << " in "
                              << show(m, src + so) << " got " << show(m, dst + dof) << " want " << show(m, want);
        }
    return bad;
}

// A random image through a member, checked pixel by pixel, with canaries.
void checkImage(const Member& m, Path path, int w, int h, uint32_t seed) {
    kt::Canvas s = canvasFor(m, w, h), d = canvasFor(m, w, h);
    fillSource(s, m.kind, seed);
    d.randomize(seed + 1);
    kt::Canvas was = canvasFor(m, w, h);
    for (int y = 0; y < h; ++y) std::memcpy(was.row(y), d.row(y), d.rowBytes());
    kt::resetQueries();
    ASSERT_EQ(m.call(s.data(), s.step(), d.data(), d.step(), {w, h}), kroOk) << m.name;
    EXPECT_EQ(kt::featureQueries(), m.asks ? 1 : 0) << m.name;
    EXPECT_EQ(verify(m, path, s.data(), s.step(), d.data(), d.step(), was.data(), w, h, "image"), 0u);
    EXPECT_TRUE(d.canariesIntact()) << m.name << " wrote outside the region, w=" << w << " h=" << h;
    EXPECT_TRUE(s.canariesIntact()) << m.name << " wrote into its source";
}

class Family : public ::testing::TestWithParam<Path> {};

TEST_P(Family, EveryPixelTakesItsFormAndNothingOutsideIsWritten) {
    KT_USE_PATH(GetParam());
    for (const Member& m : members())
        for (int w : {1, 2, 3, 4, 5, 7, 8, 9, 12, 15, 16, 17, 23, 31, 32, 33, 47, 63, 64, 65, 100})
            for (int h : {1, 2, 9}) checkImage(m, GetParam(), w, h, static_cast<uint32_t>(w * 31 + h));
}

// Steps count bytes and become element steps by a shift: a step that is no
// multiple of the sample size loses its low bits.
TEST_P(Family, StepsLoseTheirLowBits) {
    KT_USE_PATH(GetParam());
    for (const Member& m : members()) {
        if (m.elem == 1) continue;
        const int w = 21, h = 4;
        kt::Canvas s = canvasFor(m, w, h), d = canvasFor(m, w, h), ref = canvasFor(m, w, h);
        fillSource(s, m.kind, 5);
        d.randomize(6);
        ref.randomize(6);
        ASSERT_EQ(m.call(s.data(), s.step() + m.elem - 1, d.data(), d.step() + m.elem - 1, {w, h}), kroOk);
        ASSERT_EQ(m.call(s.data(), s.step(), ref.data(), ref.step(), {w, h}), kroOk);
        EXPECT_EQ(d.region(), ref.region()) << m.name;
        EXPECT_TRUE(d.canariesIntact()) << m.name;
    }
}

TEST_P(Family, ValidationOrderAndFailedCallsWriteNothing) {
    KT_USE_PATH(GetParam());
    for (const Member& m : members()) {
        kt::Canvas s = canvasFor(m, 8, 2), d = canvasFor(m, 8, 2);
        fillSource(s, m.kind, 1);
        const auto snap = d.snapshot();
        kt::resetQueries();
        EXPECT_EQ(m.call(nullptr, s.step(), d.data(), d.step(), {-1, 2}), kroErrNullPtr) << m.name;
        EXPECT_EQ(m.call(s.data(), s.step(), nullptr, d.step(), {-1, 2}), kroErrNullPtr) << m.name;
        for (KroiSize bad : {KroiSize{0, 2}, KroiSize{8, 0}, KroiSize{-3, -3}, KroiSize{INT_MIN, 1}}) {
            EXPECT_EQ(m.call(s.data(), s.step(), d.data(), d.step(), bad), kroErrSize) << m.name;
            // The steps are never examined.
            EXPECT_EQ(m.call(s.data(), INT_MIN, d.data(), -1, bad), kroErrSize) << m.name;
        }
        EXPECT_EQ(kt::featureQueries(), 0) << m.name << " asked before failing";
        EXPECT_TRUE(d.untouchedSince(snap)) << m.name << " wrote on a failed call";
    }
}

// Source and destination in one buffer: in place, and shifted by one pixel
// so that each pixel's result lands on the next source pixel before it is
// read. The whole-image drivers then convert one pixel at a time, reading all
// of a pixel's samples before writing any.
TEST_P(Family, OverlappingImages) {
    KT_USE_PATH(GetParam());
    for (const Member& m : members()) {
        const int w = 37, h = 5, pb = m.pixelBytes();
        // In place: every member gives the forms of the original pixels.
        kt::Canvas s = canvasFor(m, w, h), orig = canvasFor(m, w, h);
        fillSource(s, m.kind, 9);
        for (int y = 0; y < h; ++y) std::memcpy(orig.row(y), s.row(y), s.rowBytes());
        ASSERT_EQ(m.call(s.data(), s.step(), s.data(), s.step(), {w, h}), kroOk);
        EXPECT_EQ(verify(m, GetParam(), orig.data(), orig.step(), s.data(), s.step(), orig.data(), w, h, "in place"), 0u);
        EXPECT_TRUE(s.canariesIntact()) << m.name;
        if (!m.whole) continue;
        // Shifted by a pixel, upward and downward steps: the pixel loop.
        for (int sign : {1, -1}) {
            const int step = (w + 3) * pb;
            std::vector<uint8_t> buf(std::size_t(step) * (h + 1) + 2 * pb);
            {
                kt::Canvas rnd(buf.size(), 1, 0);
                fillSource(rnd, m.kind, 10);
                std::memcpy(buf.data(), rnd.data(), buf.size());
            }
            std::vector<uint8_t> sim = buf;
            const std::ptrdiff_t first = sign > 0 ? 0 : std::ptrdiff_t(step) * (h - 1);
            uint8_t want[12];
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x) {
                    const std::ptrdiff_t o = first + std::ptrdiff_t(sign) * step * y + std::ptrdiff_t(x) * pb;
                    m.want(sim.data() + o, want, GetParam(), x, w);
                    std::memcpy(sim.data() + o + pb, want, 3 * m.elem);
                    if (m.stride == 4) std::memset(sim.data() + o + pb + 3 * m.elem, 0, m.elem);
                }
            ASSERT_EQ(m.call(buf.data() + first, sign * step, buf.data() + first + pb, sign * step, {w, h}), kroOk);
            EXPECT_TRUE(buf == sim) << m.name << " shifted by a pixel, step sign " << sign;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Paths, Family, kt::bothPaths(), [](const auto& i) { return kt::pathName(i.param); });

// ---- large samples of the 16-bit and float members ------------------------------------------

// Every combination of extreme 16-bit values first, random pixels after.
void fillSamples(kt::Canvas& c, const Member& m, uint32_t seed) {
    fillSource(c, m.kind, seed);
    if (m.kind == Kind::F32 || m.kind == Kind::U8) return;
    static const uint16_t extremes[] = {0, 1, 2, 0x7FFE, 0x7FFF, 0x8000, 0x8001, 0xFFFD, 0xFFFE, 0xFFFF};
    const int w = static_cast<int>(c.rowBytes() / m.pixelBytes());
    int i = 0;
    for (uint16_t a : extremes)
        for (uint16_t b : extremes)
            for (uint16_t v : extremes) {
                const uint16_t px[3] = {a, b, v};
                std::memcpy(c.row(i / w) + (i % w) * m.pixelBytes(), px, sizeof px);
                ++i;
            }
}

class Samples : public ::testing::TestWithParam<Path> {};

TEST_P(Samples, ExtremeAndRandomValuesAgainstTheForms) {
    KT_USE_PATH(GetParam());
    for (const Member& m : members()) {
        if (m.kind == Kind::U8) continue;  // all colours below
        // A long row (vector blocks and a masked end) and rows of three pixels
        // (RGBToYCC 16s: the tail form only).
        for (auto [w, h] : {std::pair{1021, 1024}, std::pair{3, 20000}}) {
            kt::Canvas s = canvasFor(m, w, h), d = canvasFor(m, w, h);
            fillSamples(s, m, static_cast<uint32_t>(w + h));
            d.fill(0x3C);
            ASSERT_EQ(m.call(s.data(), s.step(), d.data(), d.step(), {w, h}), kroOk);
            kt::Canvas was = canvasFor(m, w, h);
            was.fill(0x3C);
            EXPECT_EQ(verify(m, GetParam(), s.data(), s.step(), d.data(), d.step(), was.data(), w, h, "samples"), 0u);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Paths, Samples, kt::bothPaths(), [](const auto& i) { return kt::pathName(i.param); });

// ---- every 8-bit colour --------------------------------------------------------------------

// Lays the colour cube out in rows of w pixels (repeating it to fill the last
// row), converts it, and compares each pixel with one form.
void sweep(const Member& m, Path path, int w, Form<Kro8u> want, bool inPlace = false) {
    kt::setPath(path);
    const auto& cube = kt::colourCube();
    const std::size_t n = cube.size() / 3;
    const int h = static_cast<int>((n + w - 1) / w), S = m.stride;
    kt::Canvas s(std::size_t(w) * S, h, 0), dc(inPlace ? 1 : std::size_t(w) * S, inPlace ? 1 : h, 0);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const std::size_t i = (std::size_t(y) * w + x) % n;
            std::memcpy(s.row(y) + S * x, &cube[3 * i], 3);
            if (S == 4) s.row(y)[4 * x + 3] = static_cast<uint8_t>(i * 7);
        }
    kt::Canvas& d = inPlace ? s : dc;
    if (!inPlace) d.fill(0xC3);
    ASSERT_EQ(m.call(s.data(), s.step(), d.data(), d.step(), {w, h}), kroOk);
    const bool cleared = m.alpha == AlphaRule::Zero || (m.alpha == AlphaRule::ZeroOnVnni && path == Path::Vnni);
    std::size_t bad = 0;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const std::size_t i = (std::size_t(y) * w + x) % n;
            const f::Trio<Kro8u> e = want(cube[3 * i], cube[3 * i + 1], cube[3 * i + 2]);
            const uint8_t* g = d.row(y) + S * x;
            const int alphaWant = cleared ? 0 : inPlace ? static_cast<uint8_t>(i * 7) : 0xC3;
            if (g[0] != e.a || g[1] != e.b || g[2] != e.c || (S == 4 && g[3] != alphaWant)) {
                if (bad++ < 5)
                    ADD_FAILURE() << m.name << " " << kt::pathName(path) << " w=" << w << (inPlace ? " in place" : "") << " input ("
                                  << int(cube[3 * i]) << "," << int(cube[3 * i + 1]) << "," << int(cube[3 * i + 2]) << ") got ("
                                  << int(g[0]) << "," << int(g[1]) << "," << int(g[2]) << ") want (" << int(e.a) << "," << int(e.b)
                                  << "," << int(e.c) << ")";
            }
        }
    EXPECT_EQ(bad, 0u) << m.name;
}

TEST(AllColours, RGBToXYZ8uQ15BlocksAndQ16Tails) {
    sweep(member("RGBToXYZ_8u_C3R"), Path::Plain, 4096, as<Kro8u, f::rgbToXyzQ15>);
    sweep(member("RGBToXYZ_8u_C3R"), Path::Plain, 7, as<Kro8u, f::rgbToXyzQ16>);
    sweep(member("RGBToXYZ_8u_AC4R"), Path::Plain, 4096, as<Kro8u, f::rgbToXyzQ15>);
    sweep(member("RGBToXYZ_8u_AC4R"), Path::Plain, 3, as<Kro8u, f::rgbToXyzQ16>);
    if (!kt::cpuHasVnni()) GTEST_SKIP() << "*** VNNI/VBMI path NOT TESTED: this CPU lacks the instructions";
    sweep(member("RGBToXYZ_8u_C3R"), Path::Vnni, 4099, as<Kro8u, f::rgbToXyzQ16>);
    sweep(member("RGBToXYZ_8u_AC4R"), Path::Vnni, 4097, as<Kro8u, f::rgbToXyzQ16>);
}

// The one-path members, on both answers of the query, and through the pixel
// loop in place.
TEST(AllColours, XYZToRGBAndYCC8u) {
    const std::pair<const char*, Form<Kro8u>> forms[] = {{"XYZToRGB_8u", as<Kro8u, f::xyzToRgb8u>},
                                                          {"RGBToYCC_8u", as<Kro8u, f::rgbToYcc8u>},
                                                          {"YCCToRGB_8u", as<Kro8u, f::yccToRgb8u>}};
    for (auto [name, form] : forms)
        for (const char* lay : {"_C3R", "_AC4R"}) {
            const Member& m = member(std::string(name) + lay);
            sweep(m, Path::Plain, 4096, form);
            if (kt::cpuHasVnni()) sweep(m, Path::Vnni, 4093, form);
            sweep(m, Path::Plain, 4096, form, /*inPlace=*/true);
        }
}

// ---- stated values ------------------------------------------------------------------------

TEST(KnownAnswers, WhiteThroughRGBToXYZ8u) {
    const auto white = [](int w) {
        std::vector<Kro8u> rgb(3 * w, 255), xyz(3 * w);
        EXPECT_EQ(kroiRGBToXYZ_8u_C3R(rgb.data(), 3 * w, xyz.data(), 3 * w, {w, 1}), kroOk);
        return xyz;
    };
    kt::setPath(Path::Plain);
    const auto block = white(8), tail = white(1);
    for (int x = 0; x < 8; ++x) EXPECT_EQ((std::vector<int>{block[3 * x], block[3 * x + 1], block[3 * x + 2]}), (std::vector<int>{242, 255, 255}));
    EXPECT_EQ((std::vector<int>{tail[0], tail[1], tail[2]}), (std::vector<int>{242, 254, 255}));
    if (!kt::cpuHasVnni()) GTEST_SKIP() << "*** VNNI/VBMI path NOT TESTED: this CPU lacks the instructions";
    kt::setPath(Path::Vnni);
    const auto vnni = white(8);
    for (int x = 0; x < 8; ++x) EXPECT_EQ((std::vector<int>{vnni[3 * x], vnni[3 * x + 1], vnni[3 * x + 2]}), (std::vector<int>{242, 254, 255}));
}

TEST(KnownAnswers, RGBToXYZ16uTruncatesAndSaturates) {
    const Kro16u src[6] = {65535, 65535, 65535, 65527, 65527, 65527};
    Kro16u dst[6] = {};
    ASSERT_EQ(kroiRGBToXYZ_16u_C3R(src, 12, dst, 12, {2, 1}), kroOk);
    EXPECT_EQ(dst[0], 62288);  // 62288.137
    EXPECT_EQ(dst[1], 65535);
    EXPECT_EQ(dst[2], 65535);  // 71351.49 saturated
    EXPECT_EQ(dst[3], 62280);  // 62280.53, not rounded up
}

// Width 5: pixels 0 to 3 are a block, converted by the rounding mode without
// addends; pixel 4 is truncated after its addends.
TEST(KnownAnswers, RGBToYCC16sBlockAndTail) {
    // A colour whose two forms differ (by a tie or the last bit of a sum).
    Kro16s c[3] = {};
    bool found = false;
    for (int v = -32768; v < 32768 && !found; ++v) {
        const Kro16s r = static_cast<Kro16s>(v), g = static_cast<Kro16s>(v / 3), b = static_cast<Kro16s>(-v / 2);
        const auto p = f::rgbToYcc16sBlock(r, g, b), q = f::rgbToYcc16sTail(r, g, b);
        if (p.a != q.a || p.b != q.b || p.c != q.c) {
            c[0] = r, c[1] = g, c[2] = b;
            found = true;
        }
    }
    ASSERT_TRUE(found);
    for (int mode : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        std::vector<Kro16s> src, dst(15);
        for (int x = 0; x < 5; ++x) src.insert(src.end(), c, c + 3);
        std::fesetround(mode);
        ASSERT_EQ(kroiRGBToYCC_16s_C3R(src.data(), 30, dst.data(), 30, {5, 1}), kroOk);
        // Every float step of both forms follows the caller's mode.
        const auto block = f::rgbToYcc16sBlock(c[0], c[1], c[2]), tail = f::rgbToYcc16sTail(c[0], c[1], c[2]);
        std::fesetround(FE_TONEAREST);
        for (int x = 0; x < 4; ++x) {
            EXPECT_EQ(dst[3 * x], block.a) << "mode " << mode;
            EXPECT_EQ(dst[3 * x + 1], block.b) << "mode " << mode;
            EXPECT_EQ(dst[3 * x + 2], block.c) << "mode " << mode;
        }
        EXPECT_EQ(dst[12], tail.a);
        EXPECT_EQ(dst[13], tail.b);
        EXPECT_EQ(dst[14], tail.c);
    }
    // The rounding mode reaches the block form: upward and downward differ somewhere.
    std::fesetround(FE_UPWARD);
    const auto up = f::rgbToYcc16sBlock(c[0], c[1], c[2]);
    std::fesetround(FE_DOWNWARD);
    const auto down = f::rgbToYcc16sBlock(c[0], c[1], c[2]);
    std::fesetround(FE_TONEAREST);
    EXPECT_TRUE(up.a != down.a || up.b != down.b || up.c != down.c);
    // Y's addend is 0.49999 as stored, not one half.
    EXPECT_EQ(0.49999f, 0.49998998641967773f);
}

// B of XYZToRGB 16u sums a single-precision part and a double-precision one;
// where a single-precision chain would give another value, the double step decides.
TEST(KnownAnswers, XYZToRGB16uBlueInDouble) {
    std::mt19937 g(3);
    std::vector<Kro16u> src;
    for (int tries = 0; tries < 1000000 && src.size() < 3 * 200; ++tries) {
        const Kro16u x = static_cast<Kro16u>(g()), y = static_cast<Kro16u>(g()), z = static_cast<Kro16u>(g());
        const float single = f::fromAddend(float(x), float(y), float(z), k0::d65::kXyzToRgb[2], 0.5f);
        if (f::limited16u(f::truncated(single)) != f::xyzToRgb16u(x, y, z).c) src.insert(src.end(), {x, y, z});
    }
    ASSERT_EQ(src.size(), 3u * 200);
    for (Path p : {Path::Plain, Path::Vnni}) {
        kt::setPath(p);
        std::vector<Kro16u> dst(src.size());
        ASSERT_EQ(kroiXYZToRGB_16u_C3R(src.data(), int(src.size() * 2), dst.data(), int(dst.size() * 2), {200, 1}), kroOk);
        for (std::size_t i = 0; i < src.size(); i += 3) ASSERT_EQ(dst[i + 2], f::xyzToRgb16u(src[i], src[i + 1], src[i + 2]).c);
    }
}

TEST(KnownAnswers, FloatLimits) {
    // RGBToXYZ 32f: X and Y pass out of range, Z is limited to [0, 1].
    const Kro32f in[6] = {2, 2, 2, -1, -1, -1};
    Kro32f out[6];
    ASSERT_EQ(kroiRGBToXYZ_32f_C3R(in, 24, out, 24, {2, 1}), kroOk);
    EXPECT_GT(out[0], 1.0f);
    EXPECT_GT(out[1], 1.0f);
    EXPECT_EQ(out[2], 1.0f);
    EXPECT_LT(out[3], 0.0f);
    EXPECT_LT(out[4], 0.0f);
    EXPECT_EQ(out[5], 0.0f);
    // RGBToYCC 32f never limits.
    ASSERT_EQ(kroiRGBToYCC_32f_C3R(in, 24, out, 24, {2, 1}), kroOk);
    EXPECT_GT(out[0], 1.0f);
    EXPECT_LT(out[3], 0.0f);
    // XYZToRGB and YCCToRGB 32f limit all three.
    for (auto fn : {kroiXYZToRGB_32f_C3R, kroiYCCToRGB_32f_C3R}) {
        ASSERT_EQ(fn(in, 24, out, 24, {2, 1}), kroOk);
        for (float v : out) {
            EXPECT_GE(v, 0.0f);
            EXPECT_LE(v, 1.0f);
        }
    }
}

// RGBToYCC 8u needs no saturation: over all colours its results stay in
// 0..181, 57..254 and 41..232, each bound reached.
TEST(KnownAnswers, RGBToYCC8uRanges) {
    int lo[3] = {255, 255, 255}, hi[3] = {0, 0, 0};
    for (int i = 0; i < (1 << 24); ++i) {
        const auto o = f::rgbToYcc8u(i >> 16, (i >> 8) & 255, i & 255);
        const int v[3] = {o.a, o.b, o.c};
        for (int c = 0; c < 3; ++c) lo[c] = std::min(lo[c], v[c]), hi[c] = std::max(hi[c], v[c]);
    }
    EXPECT_EQ((std::vector<int>{lo[0], hi[0], lo[1], hi[1], lo[2], hi[2]}), (std::vector<int>{0, 181, 57, 254, 41, 232}));
}

}  // namespace
