// Subsampled YCbCr to RGB: the family's own vector stages against their
// scalar forms over all inputs, every member against a pixel-by-pixel model
// of its forms by place and its odd-pixel rule at widths around every block
// boundary, canaries, validation order, and the stated values.
#include <array>
#include <functional>
#include <memory>
#include <string>

#include "test_common.h"

#pragma GCC diagnostic ignored "-Wuninitialized"

#include "ycbcr/dec_vec.h"

namespace {

using namespace k0::ycbcr;
using Form = Px (*)(int, int, int);

bool samePx(Px x, Px y) { return x.a == y.a && x.b == y.b && x.c == y.c; }

// ---- stages against forms, all 2^24 inputs ----------------------------------------------

template <class Pieces>
void sweep(const char* name, Form form) {
    alignas(64) int16_t iota[32];
    for (int i = 0; i < 32; ++i) iota[i] = static_cast<int16_t>(i);
    std::size_t bad = 0;
    for (int y = 0; y < 256; ++y)
        for (int cb = 0; cb < 256; ++cb)
            for (int cr0 = 0; cr0 < 256; cr0 += 32) {
                const __m512i Y = _mm512_set1_epi16(static_cast<short>(y)), Cb = _mm512_set1_epi16(static_cast<short>(cb));
                const __m512i Cr = _mm512_add_epi16(_mm512_set1_epi16(static_cast<short>(cr0)), _mm512_load_si512(iota));
                // Chroma terms once, joined to the luma term: the way the 4:2:0 kernels use them.
                const V3 v = Pieces::join(Pieces::luma(Y), Pieces::chroma(Cb, Cr));
                alignas(64) int16_t o[3][32];
                _mm512_store_si512(o[0], clampWords(v.a));
                _mm512_store_si512(o[1], clampWords(v.b));
                _mm512_store_si512(o[2], clampWords(v.c));
                for (int i = 0; i < 32; ++i) {
                    const Px want = form(y, cb, cr0 + i);
                    if ((o[0][i] != want.a || o[1][i] != want.b || o[2][i] != want.c) && bad++ < 5)
                        ADD_FAILURE() << name << " at " << y << "," << cb << "," << cr0 + i;
                }
            }
    EXPECT_EQ(bad, 0u) << name;
}

TEST(FormStages, OwnFormsOverAllInputs) {
    sweep<Short8U>("Short-8U", formShort8U);
    sweep<Short8Trunc>("Short-8 without addend", formShort8Trunc);
}

// ---- stated values ----------------------------------------------------------------------

TEST(FormValues, BlackWhiteAndShort8U) {
    for (Form f : {formShort8U, formShort8Trunc, formScale4096}) {
        EXPECT_TRUE(samePx(f(16, 128, 128), {0, 0, 0}));
        EXPECT_TRUE(samePx(f(255, 128, 128), {255, 255, 255}));
    }
    EXPECT_TRUE(samePx(formShort8U(235, 128, 128), {255, 255, 255}));
    // Short-8U floors before its folded addend, so it is not Short-8.
    int differ = 0;
    for (int y = 16; y <= 235; ++y)
        for (int c = 16; c <= 240; ++c) differ += !samePx(formShort8U(y, c, 256 - c), formShort8(y, c, 256 - c));
    EXPECT_GT(differ, 0);
}

// ---- images --------------------------------------------------------------------------------

enum class Src { YCbCr, YCrCb, CbYCr, P3_422, P3_411, P3_420, P3_420Cr, P2_420, P2_420Cr };
enum class Dst { C3, C4, P3 };

bool is420(Src s) { return s >= Src::P3_420; }
bool isPacked(Src s) { return s <= Src::CbYCr; }

struct Images {
    std::vector<std::unique_ptr<kt::Canvas>> src, dst;
    std::array<const Kro8u*, 3> sp{};
    std::array<int, 3> ss{};
    std::array<Kro8u*, 3> dp{};
    int ds = 0;
    bool nullSrcArray = false;
    const Kro8u* const* srcArray() const { return nullSrcArray ? nullptr : sp.data(); }

    Images(Src s, Dst d, int w, int h, uint32_t seed) {
        const int wy = std::max(w, 2), c2 = std::max((w + 1) / 2, 1), ch = is420(s) ? (h + 1) / 2 : h;
        auto add = [](auto& v, std::size_t bytes, int rows) {
            v.push_back(std::make_unique<kt::Canvas>(bytes, rows));
        };
        if (isPacked(s)) add(src, 2 * w, h);
        else add(src, wy, h);
        if (s == Src::P2_420 || s == Src::P2_420Cr) add(src, 2 * c2, ch);
        if (s == Src::P3_422 || s == Src::P3_420 || s == Src::P3_420Cr)
            for (int i = 0; i < 2; ++i) add(src, c2, ch);
        if (s == Src::P3_411)
            for (int i = 0; i < 2; ++i) add(src, (w + 3) / 4, h);
        // Two pixels at least: the filtered member writes the second at width 1.
        for (int i = 0; i < (d == Dst::P3 ? 3 : 1); ++i) add(dst, static_cast<std::size_t>(wy) * (d == Dst::C4 ? 4 : d == Dst::C3 ? 3 : 1), h);
        for (std::size_t i = 0; i < src.size(); ++i) {
            src[i]->randomize(seed + 7 * static_cast<uint32_t>(i));
            sp[i] = src[i]->data();
            ss[i] = src[i]->step();
        }
        for (std::size_t i = 0; i < dst.size(); ++i) {
            dst[i]->randomize(seed + 100 + static_cast<uint32_t>(i));
            dp[i] = dst[i]->data();
        }
        ds = dst[0]->step();
    }
};

// The member's planes and steps as it takes them.
using Call = std::function<KroStatus(Images&, KroiSize, Kro8u)>;

// A model of what a member writes: the forms by place, from the scalar forms.
struct Member {
    const char* name;
    Src src;
    Dst dst;
    bool bgr;
    int minW;
    int (*nShort)(int w);
    Form shortF, longF;
    char rule;  // odd pixel: 'N' not written, 'P', 'W', 'S', 'T', 'U' (T with its width-1 path)
    Call call;
};

// Reads a source sample: luma of pixel x of row y, chroma of cell i of the
// cells of row y.
struct Reader {
    const Member& m;
    Images& im;
    const Kro8u* row(int plane, int y) const { return im.sp[plane] + static_cast<std::ptrdiff_t>(y) * im.ss[plane]; }
    int offY() const { return m.src == Src::CbYCr ? 1 : 0; }
    int Y(int x, int y) const { return isPacked(m.src) ? row(0, y)[2 * x + offY()] : row(0, y)[x]; }
    int C(bool cr, int i, int y) const {
        const int cy = is420(m.src) ? y / 2 : y;
        switch (m.src) {
            case Src::YCbCr: return row(0, y)[4 * i + (cr ? 3 : 1)];
            case Src::YCrCb: return row(0, y)[4 * i + (cr ? 1 : 3)];
            case Src::CbYCr: return row(0, y)[4 * i + (cr ? 2 : 0)];
            case Src::P2_420: return row(1, cy)[2 * i + cr];
            case Src::P2_420Cr: return row(1, cy)[2 * i + !cr];
            case Src::P3_420Cr: return row(cr ? 1 : 2, cy)[i];
            default: return row(cr ? 2 : 1, cy)[i];
        }
    }
};

struct Writer {
    Dst d;
    bool bgr;
    Kro8u alpha;
    std::vector<std::vector<uint8_t>>& out;  // regions of the destination canvases
    std::size_t rowBytes;
    void put(int x, int y, Px v) {
        const std::size_t r = static_cast<std::size_t>(y) * rowBytes;
        if (d == Dst::P3) {
            out[0][r + x] = v.a, out[1][r + x] = v.b, out[2][r + x] = v.c;
            return;
        }
        const int bpp = d == Dst::C4 ? 4 : 3;
        uint8_t* p = &out[0][r + static_cast<std::size_t>(bpp) * x];
        p[0] = bgr ? v.c : v.a, p[1] = v.b, p[2] = bgr ? v.a : v.c;
        if (bpp == 4) p[3] = alpha;
    }
};

void model(const Member& m, Images& im, int w, int h, Kro8u alpha, Writer& out) {
    const Reader rd{m, im};
    if (m.src == Src::P3_411) {
        for (int y = 0; y < h; ++y) {
            for (int x = 0; x < (w & ~3); ++x) out.put(x, y, m.shortF(rd.Y(x, y), rd.C(0, x >> 2, y), rd.C(1, x >> 2, y)));
            if ((w & 3) == 3) continue;
            for (int x = w & ~3; x < w; ++x) out.put(x, y, formLongC(rd.Y(x, y), rd.C(0, w / 4 - 1, y), rd.C(1, w / 4 - 1, y)));
        }
        return;
    }
    const int p = w >> 1, rows = is420(m.src) ? h & ~1 : h;
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < 2 * p; ++x)
            out.put(x, y, (x < m.nShort(w) ? m.shortF : m.longF)(rd.Y(x, y), rd.C(0, x >> 1, y), rd.C(1, x >> 1, y)));
        if (!(w & 1) || m.rule == 'N') continue;
        const Kro8u* q = rd.row(0, y) + 4 * p;
        const int o = rd.offY(), Y = q[o], a = q[1 - o], b = q[-1 - o];
        Px v{};
        switch (m.rule) {
            case 'P': v = formLongA(Y, a, p != 1 ? b : a); break;
            case 'W': v = formLongA(Y, a, w != 1 ? b : a); break;
            case 'S': v = formLongASingleG(Y, a); break;
            case 'U': v = w == 1 ? formLongB57SingleG(Y, a) : formLongB57(Y, a, b); break;
            default: v = formLongB57(Y, a, b);
        }
        out.put(w - 1, y, v);
    }
}

// The filtered member: interpolated chroma, vector pairs in Short-8 without
// the addend, the rest at scale 4096, the last pair replicated.
void modelFilter(Images& im, int w, int h, Kro8u alpha, Writer& out) {
    const Member m{"", Src::P3_420Cr, Dst::C4, true, 1, nullptr, nullptr, nullptr, 'N', nullptr};
    const Reader rd{m, im};
    const int p = w >> 1, nv = p >= 9 ? (p - 1) & ~7 : 0;
    for (int y = 0; y < (h & ~1); ++y)
        for (int i = 0; i < std::max(p, 1); ++i) {
            const bool last = i >= p - 1;
            const int cb = rd.C(0, i, y), cr = rd.C(1, i, y);
            const int cbo = last ? cb : (cb + rd.C(0, i + 1, y) + 1) / 2, cro = last ? cr : (cr + rd.C(1, i + 1, y) + 1) / 2;
            const Form f = i < nv ? formShort8Trunc : formScale4096;
            out.put(2 * i, y, f(rd.Y(2 * i, y), cb, cr));
            out.put(2 * i + 1, y, f(rd.Y(2 * i + 1, y), cbo, cro));
        }
}

// ---- the members ---------------------------------------------------------------------------

#define KT_C2(f) [](Images& i, KroiSize r, Kro8u) { return f(i.sp[0], i.ss[0], i.dp[0], i.ds, r); }
#define KT_C2A(f) [](Images& i, KroiSize r, Kro8u a) { return f(i.sp[0], i.ss[0], i.dp[0], i.ds, r, a); }
#define KT_C2P3(f) [](Images& i, KroiSize r, Kro8u) { return f(i.sp[0], i.ss[0], i.dp.data(), i.ds, r); }
#define KT_P3(f) [](Images& i, KroiSize r, Kro8u) { return f(i.srcArray(), i.ss.data(), i.dp[0], i.ds, r); }
#define KT_P3A(f) [](Images& i, KroiSize r, Kro8u a) { return f(i.srcArray(), i.ss.data(), i.dp[0], i.ds, r, a); }
#define KT_P2(f) [](Images& i, KroiSize r, Kro8u) { return f(i.sp[0], i.ss[0], i.sp[1], i.ss[1], i.dp[0], i.ds, r); }
#define KT_P2A(f) [](Images& i, KroiSize r, Kro8u a) { return f(i.sp[0], i.ss[0], i.sp[1], i.ss[1], i.dp[0], i.ds, r, a); }

int below32(int w) { return w & ~31; }
int below16(int w) { return w & ~15; }
int below8(int w) { return w & ~7; }
int below4(int w) { return w & ~3; }
int below2(int w) { return w & ~1; }

const std::vector<Member>& members() {
    static const std::vector<Member> all = {
        {"YCbCr422ToRGB_8u_P3C3R", Src::P3_422, Dst::C3, false, 2, below32, formShort8, formLongB57, 'N', KT_P3(kroiYCbCr422ToRGB_8u_P3C3R)},
        {"YCbCr422ToBGR_8u_P3C3R", Src::P3_422, Dst::C3, true, 2, below16, formShort8, formLongB57, 'N', KT_P3(kroiYCbCr422ToBGR_8u_P3C3R)},
        {"YCbCr422ToRGB_8u_C2C3R", Src::YCbCr, Dst::C3, false, 1, below16, formShort8, formLongA, 'P', KT_C2(kroiYCbCr422ToRGB_8u_C2C3R)},
        {"YCbCr422ToBGR_8u_C2C3R", Src::YCbCr, Dst::C3, true, 2, below16, formShort8, formLongA, 'P', KT_C2(kroiYCbCr422ToBGR_8u_C2C3R)},
        {"YCrCb422ToRGB_8u_C2C3R", Src::YCrCb, Dst::C3, false, 1, below16, formShort8, formLongA, 'P', KT_C2(kroiYCrCb422ToRGB_8u_C2C3R)},
        {"YCrCb422ToBGR_8u_C2C3R", Src::YCrCb, Dst::C3, true, 1, below16, formShort8, formLongA, 'P', KT_C2(kroiYCrCb422ToBGR_8u_C2C3R)},
        {"CbYCr422ToRGB_8u_C2C3R", Src::CbYCr, Dst::C3, false, 1, below16, formShort8, formLongA, 'P', KT_C2(kroiCbYCr422ToRGB_8u_C2C3R)},
        {"YCbCr422ToRGB_8u_C2C4R", Src::YCbCr, Dst::C4, false, 1, below16, formShort8, formLongA, 'S', KT_C2A(kroiYCbCr422ToRGB_8u_C2C4R)},
        {"YCbCr422ToBGR_8u_C2C4R", Src::YCbCr, Dst::C4, true, 1, below16, formShort8, formLongA, 'S', KT_C2A(kroiYCbCr422ToBGR_8u_C2C4R)},
        {"YCrCb422ToRGB_8u_C2C4R", Src::YCrCb, Dst::C4, false, 1, below16, formShort8, formLongA, 'P', KT_C2A(kroiYCrCb422ToRGB_8u_C2C4R)},
        {"YCrCb422ToBGR_8u_C2C4R", Src::YCrCb, Dst::C4, true, 1, below16, formShort8, formLongA, 'P', KT_C2A(kroiYCrCb422ToBGR_8u_C2C4R)},
        {"CbYCr422ToBGR_8u_C2C4R", Src::CbYCr, Dst::C4, true, 1, below8, formShort16R, formLongA, 'W', KT_C2A(kroiCbYCr422ToBGR_8u_C2C4R)},
        {"YCbCr422ToRGB_8u_C2P3R", Src::YCbCr, Dst::P3, false, 1, below4, formShort16T, formLongB57, 'U', KT_C2P3(kroiYCbCr422ToRGB_8u_C2P3R)},
        {"YCrCb422ToRGB_8u_C2P3R", Src::YCrCb, Dst::P3, false, 1, below4, formShort16T, formLongB57, 'T', KT_C2P3(kroiYCrCb422ToRGB_8u_C2P3R)},
        {"YCbCr420ToRGB_8u_P3C3R", Src::P3_420, Dst::C3, false, 1, below32, formShort8, formLongB, 'N', KT_P3(kroiYCbCr420ToRGB_8u_P3C3R)},
        {"YCbCr420ToBGR_8u_P3C3R", Src::P3_420, Dst::C3, true, 1, below16, formShort8, formLongB, 'N', KT_P3(kroiYCbCr420ToBGR_8u_P3C3R)},
        {"YCbCr420ToRGB_8u_P2C3R", Src::P2_420, Dst::C3, false, 1, below16, formShort8, formLongB, 'N', KT_P2(kroiYCbCr420ToRGB_8u_P2C3R)},
        {"YCbCr420ToBGR_8u_P2C3R", Src::P2_420, Dst::C3, true, 1, below16, formShort8, formLongB, 'N', KT_P2(kroiYCbCr420ToBGR_8u_P2C3R)},
        {"YCrCb420ToRGB_8u_P2C3R", Src::P2_420Cr, Dst::C3, false, 1, below16, formShort8, formLongB, 'N', KT_P2(kroiYCrCb420ToRGB_8u_P2C3R)},
        {"YCrCb420ToBGR_8u_P2C3R", Src::P2_420Cr, Dst::C3, true, 1, below16, formShort8, formLongB, 'N', KT_P2(kroiYCrCb420ToBGR_8u_P2C3R)},
        {"YCbCr420ToRGB_8u_P2C4R", Src::P2_420, Dst::C4, false, 1, below16, formShort8, formLongB, 'N', KT_P2A(kroiYCbCr420ToRGB_8u_P2C4R)},
        {"YCbCr420ToBGR_8u_P2C4R", Src::P2_420, Dst::C4, true, 1, below16, formShort8, formLongB, 'N', KT_P2A(kroiYCbCr420ToBGR_8u_P2C4R)},
        {"YCrCb420ToRGB_8u_P2C4R", Src::P2_420Cr, Dst::C4, false, 1, below16, formShort8, formLongB, 'N', KT_P2A(kroiYCrCb420ToRGB_8u_P2C4R)},
        {"YCrCb420ToBGR_8u_P2C4R", Src::P2_420Cr, Dst::C4, true, 1, below16, formShort8, formLongB, 'N', KT_P2A(kroiYCrCb420ToBGR_8u_P2C4R)},
        {"YCbCr420ToBGR_8u_P3C4R", Src::P3_420, Dst::C4, true, 1, below2, formShort8U, nullptr, 'N', KT_P3A(kroiYCbCr420ToBGR_8u_P3C4R)},
        {"YCrCb420ToRGB_8u_P3C4R", Src::P3_420Cr, Dst::C4, false, 1, below8, formShort16R, formLongB, 'N', KT_P3A(kroiYCrCb420ToRGB_8u_P3C4R)},
        {"YCrCb420ToBGR_Filter_8u_P3C4R", Src::P3_420Cr, Dst::C4, true, 1, nullptr, nullptr, nullptr, 'F', KT_P3A(kroiYCrCb420ToBGR_Filter_8u_P3C4R)},
        {"YCbCr411ToBGR_8u_P3C3R", Src::P3_411, Dst::C3, true, 4, below4, formShort8, formLongC, 'N', KT_P3(kroiYCbCr411ToBGR_8u_P3C3R)},
        {"YCbCr411ToBGR_8u_P3C4R", Src::P3_411, Dst::C4, true, 4, below4, formShort8, formLongC, 'N', KT_P3A(kroiYCbCr411ToBGR_8u_P3C4R)},
    };
    return all;
}

// Runs a member at w x h on random data and compares every destination byte
// with the model; bytes outside the region must keep their canaries.
void check(const Member& m, int w, int h, uint32_t seed) {
    Images im(m.src, m.dst, w, h, seed);
    std::vector<std::vector<uint8_t>> want;
    for (auto& c : im.dst) want.push_back(c->region());
    const Kro8u alpha = static_cast<Kro8u>(seed * 37 + 1);
    Writer out{m.dst, m.bgr, alpha, want, im.dst[0]->rowBytes()};
    if (m.rule == 'F') modelFilter(im, w, h, alpha, out);
    else model(m, im, w, h, alpha, out);
    const KroStatus want_st = is420(m.src) && ((w | h) & 1) ? kroWarnOddSize : kroOk;
    ASSERT_EQ(m.call(im, {w, h}, alpha), want_st) << m.name << " " << w << "x" << h;
    for (std::size_t i = 0; i < im.dst.size(); ++i) {
        const std::vector<uint8_t> got = im.dst[i]->region();
        ASSERT_TRUE(im.dst[i]->canariesIntact()) << m.name << " " << w << "x" << h;
        const std::size_t rb = im.dst[0]->rowBytes();
        for (std::size_t k = 0; k < got.size(); ++k)
            ASSERT_EQ(int(got[k]), int(want[i][k])) << m.name << " " << w << "x" << h << " plane " << i << " row " << k / rb
                                                    << " byte " << k % rb;
    }
}

class Members : public ::testing::TestWithParam<int> {};

// Widths 1..72 pass every block boundary of every member (4, 8, 16, 32
// pixels, 8 and 16 pairs) with odd and even neighbours; a few wider rows
// take several blocks and a long tail; heights give the eight-row unrolling
// and its rest, odd heights the last row of 4:2:0.
TEST_P(Members, AgainstTheirModel) {
    const Member& m = members()[GetParam()];
    uint32_t seed = 1;
    for (int w = m.minW; w <= 72; ++w)
        for (int h : {1, 2, 3}) check(m, w, h, seed++);
    for (int w : {95, 96, 97, 127, 129, 161, 1921}) check(m, w, 19, seed++);
}
INSTANTIATE_TEST_SUITE_P(All, Members, ::testing::Range(0, 29),
                         [](const auto& info) { return std::string(members()[info.param].name); });

// ---- the rules told by example -----------------------------------------------------------------

// A packed row of one colour per pair, luma 120.
std::vector<uint8_t> packedRow(int w, std::array<uint8_t, 2> before) {
    std::vector<uint8_t> v{before[0], before[1]};
    for (int i = 0; i < w; ++i) {
        v.push_back(120);
        v.push_back(static_cast<uint8_t>(40 + 10 * i));  // chroma bytes 40, 50, 60, ... in order
    }
    return v;
}

TEST(OddPixel, ByRule) {
    // Y0 C Y1 C: at width 3 the last pixel reads byte a = 60 for both; at 5,
    // Cr is the byte b = 70 before the last Y.
    uint8_t out[3 * 6];
    std::vector<uint8_t> r = packedRow(5, {0, 0});
    ASSERT_EQ(kroiYCbCr422ToRGB_8u_C2C3R(r.data() + 2, 10, out, 18, {3, 1}), kroOk);
    EXPECT_TRUE(samePx({out[6], out[7], out[8]}, formLongA(120, 60, 60)));
    ASSERT_EQ(kroiYCbCr422ToRGB_8u_C2C3R(r.data() + 2, 10, out, 18, {5, 1}), kroOk);
    EXPECT_TRUE(samePx({out[12], out[13], out[14]}, formLongA(120, 80, 70)));
    // In YCrCb the pair's Cr sits first; at the odd pixel it serves as Cb.
    ASSERT_EQ(kroiYCrCb422ToRGB_8u_C2C3R(r.data() + 2, 10, out, 18, {5, 1}), kroOk);
    EXPECT_TRUE(samePx({out[0], out[1], out[2]}, formLongA(120, 50, 40)));
    EXPECT_TRUE(samePx({out[12], out[13], out[14]}, formLongA(120, 80, 70)));
    // Width 1: rule P reads the byte before the row; rule W does not.
    r = packedRow(1, {0, 200});
    ASSERT_EQ(kroiYCbCr422ToRGB_8u_C2C3R(r.data() + 2, 2, out, 3, {1, 1}), kroOk);
    EXPECT_TRUE(samePx({out[0], out[1], out[2]}, formLongA(120, 40, 200)));
    ASSERT_EQ(kroiCbYCr422ToBGR_8u_C2C4R(r.data() + 1, 2, out, 4, {1, 1}, 9), kroOk);  // Cb Y: Cb = 200
    EXPECT_TRUE(samePx({out[2], out[1], out[0]}, formLongA(120, 200, 200)));
    EXPECT_EQ(out[3], 9);
    // Rule T at width 1: the YCbCr member's own path, the YCrCb member reads before the row.
    uint8_t R = 0, G = 0, B = 0;
    Kro8u* planes[3] = {&R, &G, &B};
    ASSERT_EQ(kroiYCbCr422ToRGB_8u_C2P3R(r.data() + 2, 2, planes, 1, {1, 1}), kroOk);
    EXPECT_TRUE(samePx({R, G, B}, formLongB57SingleG(120, 40)));
    ASSERT_EQ(kroiYCrCb422ToRGB_8u_C2P3R(r.data() + 2, 2, planes, 1, {1, 1}), kroOk);
    EXPECT_TRUE(samePx({R, G, B}, formLongB57(120, 40, 200)));
    // Rule S: both from a, with the single coefficient.
    ASSERT_EQ(kroiYCbCr422ToRGB_8u_C2C4R(r.data() + 2, 2, out, 4, {1, 1}, 7), kroOk);
    EXPECT_TRUE(samePx({out[0], out[1], out[2]}, formLongASingleG(120, 40)));
}

TEST(Filter, ChromaRampAndLastPair) {
    // Width 40 (p = 20): vector pairs 0..15, scalar 16..19. Cr rises by 3 a pair.
    const int w = 40;
    std::vector<uint8_t> Y(2 * w, 126), cr(w / 2), cb(w / 2, 128), out(4 * w * 2, 0);
    for (int i = 0; i < w / 2; ++i) cr[i] = static_cast<uint8_t>(100 + 3 * i);
    const Kro8u* src[3] = {Y.data(), cr.data(), cb.data()};
    const int steps[3] = {w, w / 2, w / 2};
    ASSERT_EQ(kroiYCrCb420ToBGR_Filter_8u_P3C4R(src, steps, out.data(), 4 * w, {w, 2}, 255), kroOk);
    for (int i = 0; i < w / 2; ++i) {
        const int odd = i + 1 < w / 2 ? (2 * cr[i] + 3 + 1) / 2 : cr[i];
        const Form f = i < 16 ? formShort8Trunc : formScale4096;
        EXPECT_EQ(out[4 * (2 * i) + 2], f(126, 128, cr[i]).a) << i;
        EXPECT_EQ(out[4 * (2 * i + 1) + 2], f(126, 128, odd).a) << i;
        EXPECT_EQ(out[4 * w + 4 * (2 * i + 1) + 2], out[4 * (2 * i + 1) + 2]) << "rows share chroma";
    }
    // The last two pixels of the row share one chroma.
    EXPECT_EQ(out[4 * (w - 1) + 2], out[4 * (w - 2) + 2]);
}

// ---- validation -------------------------------------------------------------------------------

// A call that fails writes nothing.
template <class F>
void expectFails(KroStatus want, Images& im, F&& call, const char* what) {
    std::vector<std::vector<uint8_t>> snaps;
    for (auto& c : im.dst) snaps.push_back(c->snapshot());
    EXPECT_EQ(call(), want) << what;
    for (std::size_t i = 0; i < im.dst.size(); ++i) EXPECT_TRUE(im.dst[i]->untouchedSince(snaps[i])) << what;
}

TEST(Validation, NullsSizesAndTheirOrder) {
    for (const Member& m : members()) {
        Images im(m.src, m.dst, 8, 4, 3);
        const std::string n = m.name;
        expectFails(kroErrSize, im, [&] { return m.call(im, {m.minW - 1, 4}, 0); }, m.name);
        expectFails(kroErrSize, im, [&] { return m.call(im, {8, 0}, 0); }, m.name);
        // A null first pointer with a bad size: the null wins, except in the
        // YCrCb two-plane four-byte members.
        const bool sizeFirst = n == "YCrCb420ToRGB_8u_P2C4R" || n == "YCrCb420ToBGR_8u_P2C4R";
        Images bad = Images(m.src, m.dst, 8, 4, 3);
        const bool planar = !isPacked(m.src) && m.src != Src::P2_420 && m.src != Src::P2_420Cr;
        if (planar) bad.nullSrcArray = true;
        else bad.sp[0] = nullptr;
        expectFails(kroErrNullPtr, bad, [&] { return m.call(bad, {8, 4}, 0); }, m.name);
        expectFails(sizeFirst ? kroErrSize : kroErrNullPtr, bad, [&] { return m.call(bad, {0, 4}, 0); }, m.name);
        bad.nullSrcArray = false;
        bad.sp[0] = bad.src[0]->data();
        bad.dp[0] = nullptr;
        expectFails(kroErrNullPtr, bad, [&] { return m.call(bad, {8, 4}, 0); }, m.name);
    }
    // Plane members: after the size in the planar 4:2:0 members, before it elsewhere.
    for (const Member& m : members()) {
        if (isPacked(m.src) && m.dst != Dst::P3) continue;
        if (m.src == Src::P2_420 || m.src == Src::P2_420Cr) continue;
        Images im(m.src, m.dst, 8, 4, 3);
        const int plane = m.dst == Dst::P3 ? 1 : 2;
        if (m.dst == Dst::P3) im.dp[plane] = nullptr;
        else im.sp[plane] = nullptr;
        const bool after = is420(m.src);
        expectFails(after ? kroErrSize : kroErrNullPtr, im, [&] { return m.call(im, {0, 4}, 0); }, m.name);
        expectFails(kroErrNullPtr, im, [&] { return m.call(im, {8, 4}, 0); }, m.name);
    }
}

// 4:2:0 at 1 by 1 and 5 by 1: nothing written, the warning returned. The
// filtered member is no exception at height 1.
TEST(Validation, OddSizesOf420WriteNoIncompleteCell) {
    for (const Member& m : members()) {
        if (!is420(m.src)) continue;
        for (KroiSize r : {KroiSize{1, 1}, KroiSize{5, 1}}) {
            Images im(m.src, m.dst, r.width, 1, 5);
            const std::vector<uint8_t> before = im.dst[0]->snapshot();
            EXPECT_EQ(m.call(im, r, 0), kroWarnOddSize) << m.name;
            EXPECT_TRUE(im.dst[0]->untouchedSince(before)) << m.name;
        }
    }
}

}  // namespace
