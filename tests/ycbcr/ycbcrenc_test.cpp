// RGB to subsampled YCbCr: the encoder's vector stages against their scalar
// forms, and every member against a model of its row plan built from the
// forms (which form each pixel and cell takes, the odd ends, the untouched
// samples), at the widths around each block boundary, with canaries.
#include <array>
#include <functional>
#include <memory>
#include <random>
#include <string>

#include "test_common.h"

#pragma GCC diagnostic ignored "-Wuninitialized"

#include "ycbcr/enc_vec.h"

namespace {

using namespace k0::ycbcr;

// ---- vector stages against their scalar forms ----------------------------------------------

template <class T, int N>
struct Lanes {
    alignas(64) T v[N];
    Lanes() = default;
    explicit Lanes(__m512i x) { _mm512_store_si512(v, x); }
    __m512i load() const { return _mm512_load_si512(v); }
};
using W = Lanes<int16_t, 32>;
using D = Lanes<int32_t, 16>;

// Per-pixel word stages over all 2^24 colours, B varying across the lanes.
TEST(Stages, PixelFormsOverAllColours) {
    const FilterRows fk = FilterRows::make();
    W iota;
    for (int i = 0; i < 32; ++i) iota.v[i] = static_cast<int16_t>(i);
    std::size_t bad = 0;
    for (int r = 0; r < 256; ++r)
        for (int g = 0; g < 256; ++g)
            for (int b0 = 0; b0 < 256; b0 += 32) {
                const __m512i R = w16::k(r), G = w16::k(g), B = w16::add(w16::k(b0), iota.load());
                const W y(vecRoundedLuma(R, G, B)), f(vecFilteredLuma(R, G, B)), dy(vecDotLuma(R, G, B));
                const V2 t = vecFilterTerms(fk, R, G, B);
                const W cb(t.a), cr(t.b);
                for (int i = 0; i < 32; ++i) {
                    const int b = b0 + i;
                    const bool even = i % 2 == 0;
                    bad += y.v[i] != formRoundedLuma(r, g, b);
                    bad += f.v[i] != formFilteredLuma(r, g, b);
                    bad += dy.v[i] != formDotLuma(r, g, b);
                    bad += cb.v[i] != (even ? filterECb(r, g, b) : filterOCb(r, g, b));
                    bad += cr.v[i] != (even ? filterECr(r, g, b) : filterOCr(r, g, b));
                }
            }
    EXPECT_EQ(bad, 0u);
}

TEST(Stages, DwordPixelFormsOverAllColours) {
    const GammaRows gk = GammaRows::make();
    D iota;
    for (int i = 0; i < 16; ++i) iota.v[i] = i;
    std::size_t bad = 0;
    for (int r = 0; r < 256; ++r)
        for (int g = 0; g < 256; ++g)
            for (int b0 = 0; b0 < 256; b0 += 16) {
                const __m512i R = d32::k(r), G = d32::k(g), B = d32::add(d32::k(b0), iota.load());
                const D gy(vecGammaLuma(gk, R, G, B));
                for (int i = 0; i < 16; ++i) bad += gy.v[i] != formGammaLuma(r, g, b0 + i);
            }
    EXPECT_EQ(bad, 0u);
    const GammaTable table = GammaTable::make();
    for (int j = 0; j < 16; ++j) {
        for (int i = 0; i < 16; ++i) iota.v[i] = 16 * j + i;
        const D all(vecGammaFwd(table, iota.load()));
        for (int i = 0; i < 16; ++i) EXPECT_EQ(all.v[i], tableFwd8u[16 * j + i]) << 16 * j + i;
    }
}

// Cell forms on sums: the ends of their ranges and a large random sample.
TEST(Stages, CellFormsOnSums) {
    std::mt19937 rng(5);
    const GammaRows gk = GammaRows::make();
    for (int it = 0; it < 40000; ++it) {
        const int top = it % 2 ? 1020 : 510;
        std::uniform_int_distribution<int> sum(0, top), px(0, 255);
        W sr, sg, sb;
        D dr, dg, db, gr, gg, gb, prevR, prevG, prevB;
        for (int i = 0; i < 32; ++i) {
            const int pick = it < 64 ? (i + it) % 4 : 4;  // extremes first
            auto v = [&] { return pick == 0 ? 0 : pick == 1 ? top : pick == 2 ? (i & 1) * top : sum(rng); };
            sr.v[i] = static_cast<int16_t>(v()), sg.v[i] = static_cast<int16_t>(v()), sb.v[i] = static_cast<int16_t>(v());
        }
        for (int i = 0; i < 16; ++i) {
            dr.v[i] = sr.v[i], dg.v[i] = sg.v[i], db.v[i] = sb.v[i];
            gr.v[i] = px(rng), gg.v[i] = px(rng), gb.v[i] = px(rng);
            prevR.v[i] = px(rng), prevG.v[i] = px(rng), prevB.v[i] = px(rng);
            if (it < 64) gr.v[i] = gg.v[i] = gb.v[i] = prevR.v[i] = prevG.v[i] = prevB.v[i] = (it + i) % 2 * 255;
        }
        // Rounded on 4:2:0 sums, Short on scaled sums held in dwords.
        const V2 rc = vecRoundedChroma({sr.load(), sg.load(), sb.load()});
        const W rcb(rc.a), rcr(rc.b);
        const V2 sc = cellShortChroma<5>({dr.load(), dg.load(), db.load()});
        const D scb(sc.a), scr(sc.b);
        const D dcb(vecDotChroma(kDotCb, dr.load(), dg.load(), db.load()));
        const D dcr(vecDotChroma(kDotCr, dr.load(), dg.load(), db.load()));
        for (int i = 0; i < 32; ++i) {
            ASSERT_EQ(rcb.v[i], formRoundedCb(sr.v[i], sg.v[i], sb.v[i])) << sr.v[i] << " " << sg.v[i] << " " << sb.v[i];
            ASSERT_EQ(rcr.v[i], formRoundedCr(sr.v[i], sg.v[i], sb.v[i]));
        }
        for (int i = 0; i < 16 && top == 1020; ++i) {
            ASSERT_EQ(scb.v[i] & 0xFFFF, formShortChroma(kCb, dr.v[i] * 32, dg.v[i] * 32, db.v[i] * 32));
            ASSERT_EQ(scr.v[i] & 0xFFFF, formShortChroma(kCr, dr.v[i] * 32, dg.v[i] * 32, db.v[i] * 32));
            ASSERT_EQ(dcb.v[i], formDotChroma(kDotCb, dr.v[i], dg.v[i], db.v[i]));
            ASSERT_EQ(dcr.v[i], formDotChroma(kDotCr, dr.v[i], dg.v[i], db.v[i]));
        }
        // The gamma pairs: E and O terms of two blocks, chroma in the even dwords.
        const __m512i t = gammaDot(gk.cb, gr.load(), gg.load(), gb.load());
        const __m512i before = gammaDot(gk.cb, prevR.load(), prevG.load(), prevB.load());
        const D c(vecGammaChroma(t, before));
        for (int i = 0; i < 16; i += 2) {
            const int oPrev = i == 0 ? dot(kGammaOCb, prevR.v[15], prevG.v[15], prevB.v[15])
                                     : dot(kGammaOCb, gr.v[i - 1], gg.v[i - 1], gb.v[i - 1]);
            ASSERT_EQ(c.v[i], formGammaChroma(dot(kGammaECb, gr.v[i], gg.v[i], gb.v[i]),
                                              dot(kGammaOCb, gr.v[i + 1], gg.v[i + 1], gb.v[i + 1]), oPrev));
        }
        // The filtered chroma from its three terms, at their extremes.
        D eo, op;
        for (int i = 0; i < 16; ++i) eo.v[i] = sum(rng) * 21 - 10700, op.v[i] = sum(rng) * 7 - 3580;
        const D fc(vecFilteredChroma(eo.load(), op.load()));
        for (int i = 0; i < 16; ++i) ASSERT_EQ(fc.v[i], clamp8((eo.v[i] + op.v[i] + 0x4040) >> 7));
    }
}

// The addends that differ from Long's: 0x100000 drops the half of the luma,
// 0x802000 and K 0x1004000 round by an eighth; each moves a sample by at most
// one and does so somewhere.
TEST(Stages, AddendsAgainstLong) {
    int lowered[3] = {0, 0, 0};
    for (int r = 0; r < 256; r += 3)
        for (int g = 0; g < 256; ++g)
            for (int b = 0; b < 256; ++b) {
                const int y = formLongLuma(r, g, b), yn = formLongLumaNoHalf(r, g, b);
                const int c = formLongChroma(kCb, r, g, b), ce = formLongChromaEighth(kCb, r, g, b);
                const int c2 = formLong2(kCr, 2 * r, 2 * g, 2 * b, kLong2Half), c2e = formLong2(kCr, 2 * r, 2 * g, 2 * b, kLong2Eighth);
                ASSERT_TRUE(yn == y || yn == y - 1);
                ASSERT_TRUE(ce == c || ce == c - 1);
                ASSERT_TRUE(c2e == c2 || c2e == c2 - 1);
                ASSERT_EQ(c2, formLongChroma(kCr, r, g, b));
                lowered[0] += yn != y, lowered[1] += ce != c, lowered[2] += c2e != c2;
            }
    for (int n : lowered) EXPECT_GT(n, 100000);
}

// The curve's table: the entries the rule gives at both ends.
TEST(Stages, GammaTableEnds) {
    const int first[] = {0, 4, 9, 14, 18, 23, 27, 30, 34, 37, 40, 43}, last[] = {253, 253, 254, 254, 255, 255};
    for (int i = 0; i < 12; ++i) EXPECT_EQ(tableFwd8u[i], first[i]) << i;
    for (int i = 0; i < 6; ++i) EXPECT_EQ(tableFwd8u[250 + i], last[i]) << 250 + i;
    for (int i = 1; i < 256; ++i) EXPECT_GE(tableFwd8u[i], tableFwd8u[i - 1]);
}

// ---- images ----------------------------------------------------------------------------------

enum class In { C3, C4, P3 };
enum class Out { C2, P422, P420, P411, P2 };

struct Src {
    In in;
    bool bgr;
    int w, h, step = 0;
    std::vector<std::unique_ptr<kt::Canvas>> c;
    std::array<const Kro8u*, 3> p{};
    Src(In in_, bool bgr_, int w_, int h_, uint32_t seed) : in(in_), bgr(bgr_), w(w_), h(h_) {
        for (int i = 0; i < (in == In::P3 ? 3 : 1); ++i) {
            c.push_back(std::make_unique<kt::Canvas>(static_cast<std::size_t>(w) * bpp(), h));
            if (seed) c.back()->randomize(seed + i);
            p[i] = c.back()->data();
            step = c.back()->step();
        }
    }
    int bpp() const { return in == In::C3 ? 3 : in == In::C4 ? 4 : 1; }
    Kro8u& at(int i, int x, int y) {
        auto* base = const_cast<Kro8u*>(p[in == In::P3 ? i : 0]);
        return base[static_cast<std::ptrdiff_t>(y) * step + (in == In::P3 ? x : x * bpp() + i)];
    }
    Px rgb(int x, int y) {
        const Px v{at(0, x, y), at(1, x, y), at(2, x, y)};
        return bgr ? Px{v.c, v.b, v.a} : v;
    }
    void set(int x, int y, Px v) {
        if (bgr) std::swap(v.a, v.c);
        at(0, x, y) = v.a, at(1, x, y) = v.b, at(2, x, y) = v.c;
    }
};

// The destination planes' regions, row after row, as the models write them.
struct Buf {
    int rowBytes;
    std::vector<uint8_t> b;
    uint8_t& at(int x, int y) { return b[static_cast<std::size_t>(y) * rowBytes + x]; }
    uint8_t at(int x, int y) const { return b[static_cast<std::size_t>(y) * rowBytes + x]; }
};

struct Dst {
    std::vector<std::unique_ptr<kt::Canvas>> c;
    std::array<Kro8u*, 3> p{};
    std::array<int, 3> step{};
    Dst(Out o, int w, int h, uint32_t seed) {
        auto plane = [&](int bytes, int rows) {
            c.push_back(std::make_unique<kt::Canvas>(static_cast<std::size_t>(bytes), rows));
            if (seed) c.back()->randomize(seed + static_cast<uint32_t>(c.size()));
            p[c.size() - 1] = c.back()->data();
            step[c.size() - 1] = c.back()->step();
        };
        switch (o) {
            case Out::C2: plane(2 * w, h); break;
            case Out::P422: plane(w, h), plane(w / 2, h), plane(w / 2, h); break;
            case Out::P420: plane(w, h), plane(w / 2, h / 2), plane(w / 2, h / 2); break;
            case Out::P411: plane(w, h), plane(w / 4, h), plane(w / 4, h); break;
            case Out::P2: plane(w, h), plane(2 * (w / 2), h / 2); break;
        }
    }
    std::vector<Buf> regions() const {
        std::vector<Buf> r;
        for (auto& k : c) r.push_back({static_cast<int>(k->rowBytes()), k->region()});
        return r;
    }
    std::vector<std::vector<uint8_t>> snapshot() const {
        std::vector<std::vector<uint8_t>> s;
        for (auto& k : c) s.push_back(k->snapshot());
        return s;
    }
    bool unchanged(const std::vector<std::vector<uint8_t>>& s) const {
        for (std::size_t i = 0; i < c.size(); ++i)
            if (!c[i]->untouchedSince(s[i])) return false;
        return true;
    }
};

// The pointer arguments of a call, so that a test can null any of them.
struct Args {
    const Kro8u* src;
    const Kro8u* srcPlanes[3];
    const Kro8u* const* srcArr;
    int srcStep;
    Kro8u* planes[3];
    Kro8u* const* dstArr;
    const int* steps;
    Args(const Src& s, Dst& d)
        : src(s.p[0]), srcPlanes{s.p[0], s.p[1], s.p[2]}, srcArr(srcPlanes), srcStep(s.step),
          planes{d.p[0], d.p[1], d.p[2]}, dstArr(planes), steps(d.step.data()) {}
};

// ---- the models of the members' rows ---------------------------------------------------------

using Model = std::function<void(Src&, std::vector<Buf>&, int w, int h)>;

struct Cell {
    int r = 0, g = 0, b = 0;
    void add(Px p) { r += p.a, g += p.b, b += p.c; }
};
int longY(Px p) { return formLongLuma(p.a, p.b, p.c); }
int longC(const Row3& k, Px p) { return formLongChroma(k, p.a, p.b, p.c); }

int shortLadder(int w) { return (w & ~15) + ((w & 8) ? 8 : (w & 4) ? 4 : 0); }

void putC2(Buf& o, int x, int y, char order, int y0, int y1, int cb, int cr) {
    uint8_t* q = &o.at(2 * x, y);
    if (order == 'C') q[0] = u8(cb), q[1] = u8(y0), q[2] = u8(cr), q[3] = u8(y1);
    else q[0] = u8(y0), q[1] = u8(order == 'b' ? cb : cr), q[2] = u8(y1), q[3] = u8(order == 'b' ? cr : cb);
}

// Calls f(x, y, p0, p1, sums) on every whole pair of every row, and odd(y, p)
// on a last odd pixel.
template <class F, class Odd>
void eachPair(Src& s, int w, int h, F f, Odd odd) {
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x + 1 < w; x += 2) {
            const Px p0 = s.rgb(x, y), p1 = s.rgb(x + 1, y);
            Cell c;
            c.add(p0), c.add(p1);
            f(x, y, p0, p1, c);
        }
        if (w & 1) odd(y, s.rgb(w - 1, y));
    }
}
int shortY(Px p) { return formShortLuma(p.a, p.b, p.c); }
int shortC(const Row3& k, const Cell& c, int scale) { return formShortChroma(k, c.r * scale, c.g * scale, c.b * scale); }

// Packed 4:2:2: Short pairs below nShort, Long2 (K 0x1010000, Y1 without the
// half) after them, and the two bytes of a last odd pixel. order: 'b' Y Cb Y
// Cr, 'r' Y Cr Y Cb, 'C' Cb Y Cr Y.
Model packed422(char order, std::function<int(int)> nShort, std::function<std::array<int, 2>(Px)> odd) {
    return [=](Src& s, std::vector<Buf>& o, int w, int h) {
        eachPair(
            s, w, h,
            [&](int x, int y, Px p0, Px p1, const Cell& c) {
                if (x < nShort(w))
                    putC2(o[0], x, y, order, shortY(p0), shortY(p1), shortC(kCb, c, 64), shortC(kCr, c, 64));
                else
                    putC2(o[0], x, y, order, longY(p0), formLongLumaNoHalf(p1.a, p1.b, p1.c),
                          formLong2(kCb, c.r, c.g, c.b, kLong2Half), formLong2(kCr, c.r, c.g, c.b, kLong2Half));
            },
            [&](int y, Px p) {
                const auto v = odd(p);
                o[0].at(2 * w - 2, y) = u8(v[0]), o[0].at(2 * w - 1, y) = u8(v[1]);
            });
    };
}
const auto all = [](int w) { return w & ~1; };
const auto oddYCbEighth = [](Px p) { return std::array<int, 2>{longY(p), formLongChromaEighth(kCb, p.a, p.b, p.c)}; };

// Planar 4:2:2: Short pairs below nShort, Long2 (K 0x1004000) after them, a
// last odd pixel's Y in Long.
Model planar422(std::function<int(int)> nShort) {
    return [=](Src& s, std::vector<Buf>& o, int w, int h) {
        eachPair(
            s, w, h,
            [&](int x, int y, Px p0, Px p1, const Cell& c) {
                const bool sh = x < nShort(w);
                o[0].at(x, y) = u8(sh ? shortY(p0) : longY(p0));
                o[0].at(x + 1, y) = u8(sh ? shortY(p1) : longY(p1));
                o[1].at(x / 2, y) = u8(sh ? shortC(kCb, c, 64) : formLong2(kCb, c.r, c.g, c.b, kLong2Eighth));
                o[2].at(x / 2, y) = u8(sh ? shortC(kCr, c, 64) : formLong2(kCr, c.r, c.g, c.b, kLong2Eighth));
            },
            [&](int y, Px p) { o[0].at(w - 1, y) = u8(longY(p)); });
    };
}

// 4:2:0 and 4:1:1 cells: the vector form below nVec, Long and Long4 after.
enum class Vec { Short, Rounded, Dot };
Model cells(Out out, Vec form, std::function<int(int)> nVec, bool swap = false) {
    return [=](Src& s, std::vector<Buf>& o, int w, int h) {
        const int cw = out == Out::P411 ? 4 : 2, ch = out == Out::P411 ? 1 : 2;
        for (int y = 0; y + ch <= h; y += ch)
            for (int x = 0; x + cw <= w; x += cw) {
                const bool v = x < nVec(w);
                Cell c;
                for (int j = 0; j < ch; ++j)
                    for (int i = 0; i < cw; ++i) {
                        const Px p = s.rgb(x + i, y + j);
                        c.add(p);
                        o[0].at(x + i, y + j) = u8(!v ? longY(p)
                                                      : form == Vec::Short   ? shortY(p)
                                                      : form == Vec::Rounded ? formRoundedLuma(p.a, p.b, p.c)
                                                                             : formDotLuma(p.a, p.b, p.c));
                    }
                int cb = formLong4(kCb, c.r, c.g, c.b), cr = formLong4(kCr, c.r, c.g, c.b);
                if (v && form == Vec::Short)
                    cb = shortC(kCb, c, 32), cr = shortC(kCr, c, 32);
                if (v && form == Vec::Rounded) cb = formRoundedCb(c.r, c.g, c.b), cr = formRoundedCr(c.r, c.g, c.b);
                if (v && form == Vec::Dot) cb = formDotChroma(kDotCb, c.r, c.g, c.b), cr = formDotChroma(kDotCr, c.r, c.g, c.b);
                if (out == Out::P2) {
                    o[1].at(x, y / 2) = u8(cb), o[1].at(x + 1, y / 2) = u8(cr);
                } else {
                    o[swap ? 2 : 1].at(x / cw, y / ch) = u8(cb);
                    o[swap ? 1 : 2].at(x / cw, y / ch) = u8(cr);
                }
            }
    };
}

// The filtered stream: E/O terms on the pairs of the first width & ~15
// pixels; then the 32-bit filter with the carried odd term.
void filtered(Src& s, std::vector<Buf>& o, int w, int h) {
    const int nVec = w & ~15;
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x + 1 < w; x += 2) {
            const Px p0 = s.rgb(x, y), p1 = s.rgb(x + 1, y);
            if (x < nVec) {
                const Px pm = x > 0 ? s.rgb(x - 1, y) : Px{};
                const int oCb = x > 0 ? filterOCb(pm.a, pm.b, pm.c) : 0, oCr = x > 0 ? filterOCr(pm.a, pm.b, pm.c) : 0;
                putC2(o[0], x, y, 'C', formFilteredLuma(p0.a, p0.b, p0.c), formFilteredLuma(p1.a, p1.b, p1.c),
                      formFilteredChroma(filterECb(p0.a, p0.b, p0.c), filterOCb(p1.a, p1.b, p1.c), oCb),
                      formFilteredChroma(filterECr(p0.a, p0.b, p0.c), filterOCr(p1.a, p1.b, p1.c), oCr));
                continue;
            }
            int qCb = 0, qCr = 0;
            if (x > 0) {
                const Px pm = s.rgb(x - 1, y);
                qCb = x == nVec ? filterCarry(filterOCb(pm.a, pm.b, pm.c)) : dot(kCb, pm.a, pm.b, pm.c) >> 2;
                qCr = x == nVec ? filterCarry(filterOCr(pm.a, pm.b, pm.c)) : dot(kCr, pm.a, pm.b, pm.c) >> 2;
            }
            putC2(o[0], x, y, 'C', longY(p0), longY(p1),
                  formFilteredPairLong(qCb, dot(kCb, p0.a, p0.b, p0.c), dot(kCb, p1.a, p1.b, p1.c)),
                  formFilteredPairLong(qCr, dot(kCr, p0.a, p0.b, p0.c), dot(kCr, p1.a, p1.b, p1.c)));
        }
        if (w & 1) o[0].at(2 * w - 2, y) = u8(longC(kCb, s.rgb(w - 1, y))), o[0].at(2 * w - 1, y) = u8(longY(s.rgb(w - 1, y)));
    }
}

Px corrected(Px p) { return {u8(tableFwd8u[p.a]), u8(tableFwd8u[p.b]), u8(tableFwd8u[p.c])}; }

void gammaFiltered(Src& s, std::vector<Buf>& o, int w, int h) {
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x + 1 < w; x += 2) {
            const Px p0 = corrected(s.rgb(x, y)), p1 = corrected(s.rgb(x + 1, y));
            const Px pm = x > 0 ? corrected(s.rgb(x - 1, y)) : Px{};
            const int oCb = x > 0 ? dot(kGammaOCb, pm.a, pm.b, pm.c) : 0, oCr = x > 0 ? dot(kGammaOCr, pm.a, pm.b, pm.c) : 0;
            putC2(o[0], x, y, 'C', formGammaLuma(p0.a, p0.b, p0.c), formGammaLuma(p1.a, p1.b, p1.c),
                  formGammaChroma(dot(kGammaECb, p0.a, p0.b, p0.c), dot(kGammaOCb, p1.a, p1.b, p1.c), oCb),
                  formGammaChroma(dot(kGammaECr, p0.a, p0.b, p0.c), dot(kGammaOCr, p1.a, p1.b, p1.c), oCr));
        }
        if (w & 1) {
            const Px p = corrected(s.rgb(w - 1, y));
            o[0].at(2 * w - 2, y) = u8(longC(kCb, p)), o[0].at(2 * w - 1, y) = u8(longY(p));
        }
    }
}

// ---- the family ------------------------------------------------------------------------------

using Call = std::function<KroStatus(Args&, KroiSize)>;

struct Member {
    const char* name;
    In in;
    bool bgr;
    Out out;
    int minW, minH;
    bool planesAfterSize;
    Call call;
    Model model;
};

#define KT_C2(f) [](Args& a, KroiSize r) { return f(a.src, a.srcStep, a.planes[0], a.steps[0], r); }
#define KT_P3(f) [](Args& a, KroiSize r) { return f(a.src, a.srcStep, a.dstArr, a.steps, r); }
#define KT_P2(f) [](Args& a, KroiSize r) { return f(a.src, a.srcStep, a.planes[0], a.steps[0], a.planes[1], a.steps[1], r); }
#define KT_PC2(f) [](Args& a, KroiSize r) { return f(a.srcArr, a.srcStep, a.planes[0], a.steps[0], r); }

const std::vector<Member>& members() {
    const auto w15 = [](int w) { return w & ~15; };
    const auto w15and8 = [](int w) { return (w & ~15) + (w & 8); };
    const auto oddYCb = [](Px p) { return std::array<int, 2>{longY(p), longC(kCb, p)}; };
    const auto oddCbY = [](Px p) { return std::array<int, 2>{longC(kCb, p), longY(p)}; };
    const auto oddYCr = [](Px p) { return std::array<int, 2>{longY(p), longC(kCr, p)}; };
    static const std::vector<Member> m = {
        {"RGBToYCbCr422_C3C2R", In::C3, false, Out::C2, 1, 1, false, KT_C2(kroiRGBToYCbCr422_8u_C3C2R), packed422('b', all, oddYCbEighth)},
        {"RGBToYCrCb422_C3C2R", In::C3, false, Out::C2, 1, 1, false, KT_C2(kroiRGBToYCrCb422_8u_C3C2R), packed422('r', all, oddYCbEighth)},
        {"BGRToYCbCr422_C3C2R", In::C3, true, Out::C2, 2, 1, false, KT_C2(kroiBGRToYCbCr422_8u_C3C2R), packed422('b', all, oddYCbEighth)},
        {"BGRToYCbCr422_AC4C2R", In::C4, true, Out::C2, 2, 1, false, KT_C2(kroiBGRToYCbCr422_8u_AC4C2R), packed422('b', all, oddYCb)},
        {"BGRToCbYCr422_AC4C2R", In::C4, true, Out::C2, 1, 1, false, KT_C2(kroiBGRToCbYCr422_8u_AC4C2R), packed422('C', all, oddCbY)},
        {"RGBToYCbCr422_C3P3R", In::C3, false, Out::P422, 2, 1, false, KT_P3(kroiRGBToYCbCr422_8u_C3P3R), planar422(shortLadder)},
        {"BGRToYCbCr422_C3P3R", In::C3, true, Out::P422, 2, 1, false, KT_P3(kroiBGRToYCbCr422_8u_C3P3R), planar422(shortLadder)},
        {"BGRToYCbCr422_AC4P3R", In::C4, true, Out::P422, 2, 1, false, KT_P3(kroiBGRToYCbCr422_8u_AC4P3R), planar422(w15)},
        {"RGBToYCbCr422_P3C2R", In::P3, false, Out::C2, 1, 1, true, KT_PC2(kroiRGBToYCbCr422_8u_P3C2R), packed422('b', shortLadder, oddYCr)},
        {"RGBToYCrCb422_P3C2R", In::P3, false, Out::C2, 1, 1, true, KT_PC2(kroiRGBToYCrCb422_8u_P3C2R), packed422('r', shortLadder, oddYCr)},
        {"RGBToCbYCr422_C3C2R", In::C3, false, Out::C2, 1, 1, false, KT_C2(kroiRGBToCbYCr422_8u_C3C2R), filtered},
        {"RGBToCbYCr422Gamma_C3C2R", In::C3, false, Out::C2, 1, 1, false, KT_C2(kroiRGBToCbYCr422Gamma_8u_C3C2R), gammaFiltered},
        {"RGBToYCbCr420_C3P3R", In::C3, false, Out::P420, 1, 1, true, KT_P3(kroiRGBToYCbCr420_8u_C3P3R), cells(Out::P420, Vec::Short, w15)},
        {"BGRToYCbCr420_C3P3R", In::C3, true, Out::P420, 2, 2, false, KT_P3(kroiBGRToYCbCr420_8u_C3P3R), cells(Out::P420, Vec::Short, w15)},
        {"BGRToYCbCr420_AC4P3R", In::C4, true, Out::P420, 2, 2, false, KT_P3(kroiBGRToYCbCr420_8u_AC4P3R), cells(Out::P420, Vec::Short, w15)},
        {"BGRToYCrCb420_C3P3R", In::C3, true, Out::P420, 2, 2, false, KT_P3(kroiBGRToYCrCb420_8u_C3P3R), cells(Out::P420, Vec::Short, w15, true)},
        {"BGRToYCrCb420_AC4P3R", In::C4, true, Out::P420, 2, 2, false, KT_P3(kroiBGRToYCrCb420_8u_AC4P3R), cells(Out::P420, Vec::Short, w15, true)},
        {"RGBToYCrCb420_AC4P3R", In::C4, false, Out::P420, 2, 2, false, KT_P3(kroiRGBToYCrCb420_8u_AC4P3R), cells(Out::P420, Vec::Short, w15, true)},
        {"BGRToYCbCr420_C3P2R", In::C3, true, Out::P2, 1, 1, false, KT_P2(kroiBGRToYCbCr420_8u_C3P2R), cells(Out::P2, Vec::Rounded, w15and8)},
        {"BGRToYCbCr420_AC4P2R", In::C4, true, Out::P2, 1, 1, false, KT_P2(kroiBGRToYCbCr420_8u_AC4P2R), cells(Out::P2, Vec::Rounded, w15and8)},
        {"RGBToYCbCr420_C4P2R", In::C4, false, Out::P2, 1, 1, false, KT_P2(kroiRGBToYCbCr420_8u_C4P2R), cells(Out::P2, Vec::Rounded, w15and8)},
        {"RGBToYCbCr420_C3P2R", In::C3, false, Out::P2, 1, 1, false, KT_P2(kroiRGBToYCbCr420_8u_C3P2R), cells(Out::P2, Vec::Dot, [](int w) { return w; })},
        {"BGRToYCbCr411_C3P3R", In::C3, true, Out::P411, 4, 1, false, KT_P3(kroiBGRToYCbCr411_8u_C3P3R), cells(Out::P411, Vec::Short, w15)},
        {"BGRToYCbCr411_AC4P3R", In::C4, true, Out::P411, 4, 1, false, KT_P3(kroiBGRToYCbCr411_8u_AC4P3R), cells(Out::P411, Vec::Short, w15)},
    };
    return m;
}

const Member& member(const std::string& name) { return kt::byName(members(), name); }

KroStatus statusOf(const Member& m, int w, int h) {
    if (m.out == Out::P411) return w & 3 ? kroWarnOddSize : kroOk;
    if (m.out == Out::P420 || m.out == Out::P2) return (w | h) & 1 ? kroWarnOddSize : kroOk;
    return kroOk;
}

// Converts `s` and compares every destination byte with the model, the
// status, and the canaries around every plane.
void check(const Member& m, Src& s, int w, int h, uint32_t seed) {
    Dst d(m.out, w, h, seed);
    std::vector<Buf> want = d.regions();
    m.model(s, want, w, h);
    Args a(s, d);
    ASSERT_EQ(m.call(a, {w, h}), statusOf(m, w, h)) << m.name << " " << w << "x" << h;
    const std::vector<Buf> got = d.regions();
    for (std::size_t i = 0; i < got.size(); ++i)
        for (std::size_t k = 0; k < got[i].b.size(); ++k)
            ASSERT_EQ(int(got[i].b[k]), int(want[i].b[k]))
                << m.name << " " << w << "x" << h << " plane " << i << " x=" << k % got[i].rowBytes
                << " y=" << k / got[i].rowBytes;
    for (auto& c : d.c) ASSERT_TRUE(c->canariesIntact()) << m.name << " wrote outside its region at " << w << "x" << h;
}

// Every width around the block boundaries (4, 8, 16, 32 and their sums),
// odd and even heights.
TEST(Members, EveryByteByPlaceAroundTheBlockBoundaries) {
    for (const Member& m : members())
        for (int w = m.minW; w <= 100; w += w < 72 ? 1 : 7)
            for (int h : {m.minH, 3, 4}) {
                if (h < m.minH) continue;
                Src s(m.in, m.bgr, w, h, static_cast<uint32_t>(w * 7 + h));
                check(m, s, w, h, static_cast<uint32_t>(w + 3 * h));
            }
}

// Every colour through every member, in rows of 4096 pixels (and of 4099 for
// the odd ends), so each stage meets all of its pixel inputs.
TEST(Members, AllColoursThroughEveryMember) {
    const auto& cube = kt::colourCube();
    for (const Member& m : members()) {
        const int w = m.out == Out::C2 ? 4099 : 4096, h = (1 << 24) / w + 2;
        Src s(m.in, false, w, h, 0);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const std::size_t i = (static_cast<std::size_t>(y) * w + x) % (1u << 24);
                s.set(x, y, {cube[3 * i], cube[3 * i + 1], cube[3 * i + 2]});
            }
        s.bgr = m.bgr;
        check(m, s, w, h, 0);
    }
}

// Null pointers first (the step array among them), then the size, except in
// the three members that test their planes after the size. Nothing is written.
TEST(Members, ValidationOrderAndNothingWrittenOnFailure) {
    for (const Member& m : members()) {
        Src s(m.in, m.bgr, 8, 4, 3);
        Dst d(m.out, 8, 4, 4);
        const auto before = d.snapshot();
        const KroiSize bad[] = {{m.minW - 1, m.minH}, {m.minW, m.minH - 1}, {-5, 4}, {8, -2147483647 - 1}};
        for (KroiSize b : bad) {
            Args a(s, d);
            EXPECT_EQ(m.call(a, b), kroErrSize) << m.name << " " << b.width << "x" << b.height;
        }
        const bool srcPlanes = m.in == In::P3, dstPlanes = m.out != Out::C2 && m.out != Out::P2;
        std::vector<std::function<void(Args&)>> pointers, planes;
        pointers.push_back(srcPlanes ? std::function<void(Args&)>([](Args& a) { a.srcArr = nullptr; })
                                     : [](Args& a) { a.src = nullptr; });
        if (dstPlanes) {
            pointers.push_back([](Args& a) { a.dstArr = nullptr; });
            pointers.push_back([](Args& a) { a.steps = nullptr; });
        } else {
            pointers.push_back([](Args& a) { a.planes[0] = nullptr; });
            if (m.out == Out::P2) pointers.push_back([](Args& a) { a.planes[1] = nullptr; });
        }
        for (int k = 0; k < 3; ++k) {
            if (srcPlanes) planes.push_back([k](Args& a) { a.srcPlanes[k] = nullptr; });
            if (dstPlanes) planes.push_back([k](Args& a) { a.planes[k] = nullptr; });
        }
        for (auto& f : pointers)
            for (KroiSize r : {KroiSize{8, 4}, KroiSize{0, 4}}) {
                Args a(s, d);
                f(a);
                EXPECT_EQ(m.call(a, r), kroErrNullPtr) << m.name;
            }
        for (auto& f : planes) {
            Args a(s, d);
            f(a);
            EXPECT_EQ(m.call(a, {8, 4}), kroErrNullPtr) << m.name;
            EXPECT_EQ(m.call(a, {0, 4}), m.planesAfterSize ? kroErrSize : kroErrNullPtr) << m.name;
        }
        EXPECT_TRUE(d.unchanged(before)) << m.name << " wrote on a failed call";
    }
}

// ---- stated values --------------------------------------------------------------------------

// One row of one colour through a member; the destination's planes.
std::vector<Buf> solid(const char* name, int w, int h, Px c) {
    const Member& m = member(name);
    Src s(m.in, m.bgr, w, h, 1);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) s.set(x, y, c);
    Dst d(m.out, w, h, 2);
    Args a(s, d);
    m.call(a, {w, h});
    return d.regions();
}

// A constant colour away from grey: the first filtered pair of a row differs
// from the next, pulled toward 128 by a quarter of the chroma signal.
TEST(Values, FirstFilteredPairOfARow) {
    for (const char* name : {"RGBToCbYCr422_C3C2R", "RGBToCbYCr422Gamma_C3C2R"})
        for (int w : {8, 40}) {
            const std::vector<Buf> o = solid(name, w, 1, Px{200, 30, 60});
            const int first = o[0].at(0, 0) - 128, next = o[0].at(4, 0) - 128;
            EXPECT_NEAR(first, next * 3 / 4, 1.5) << name << " w=" << w;
            for (int x = 2; x + 1 < w; x += 2) EXPECT_NEAR(o[0].at(2 * x, 0), o[0].at(4, 0), 1) << name << " x=" << x;
        }
}

// The last odd pixel: width 1 writes Y and Cb with the addend 0x802000; the
// Y Cr Y Cb stream holds Cb in its Cr place, the planar-to-packed members Cr
// in the Cb place.
TEST(Values, TheChromaByteOfTheLastOddPixel) {
    const Px red{255, 0, 0};
    const int cbEighth = formLongChromaEighth(kCb, 255, 0, 0), cr = longC(kCr, red);
    ASSERT_NE(cbEighth, cr);
    for (const char* name : {"RGBToYCbCr422_C3C2R", "RGBToYCrCb422_C3C2R"}) {
        const std::vector<Buf> o = solid(name, 1, 1, red);
        EXPECT_EQ(o[0].at(0, 0), longY(red));
        EXPECT_EQ(o[0].at(1, 0), cbEighth) << name;
    }
    for (const char* name : {"RGBToYCbCr422_P3C2R", "RGBToYCrCb422_P3C2R"})
        EXPECT_EQ(solid(name, 3, 1, red)[0].at(5, 0), cr) << name;
}

// 4:2:0 at 5 by 3: rows 0 and 1, columns 0..3 only; height 1 writes nothing.
TEST(Values, OddEndsOf420And411) {
    const Member& m = member("RGBToYCbCr420_C3P3R");
    Src s(In::C3, false, 5, 3, 8);
    Dst d(Out::P420, 5, 3, 9);
    auto before = d.regions();
    Args a(s, d);
    ASSERT_EQ(m.call(a, {5, 3}), kroWarnOddSize);
    auto after = d.regions();
    for (int x = 0; x < 5; ++x) EXPECT_EQ(after[0].at(x, 2), before[0].at(x, 2));
    for (int y = 0; y < 2; ++y) EXPECT_EQ(after[0].at(4, y), before[0].at(4, y));
    EXPECT_EQ(after[1].b.size(), 2u);
    const auto snap = d.snapshot();
    EXPECT_EQ(m.call(a, {5, 1}), kroWarnOddSize);
    EXPECT_EQ(m.call(a, {1, 1}), kroWarnOddSize);
    EXPECT_TRUE(d.unchanged(snap));
    Args b(s, d);
    EXPECT_EQ(member("BGRToYCbCr420_C3P3R").call(b, {1, 1}), kroErrSize);
    EXPECT_EQ(member("BGRToYCbCr411_C3P3R").call(b, {3, 1}), kroErrSize);
}

}  // namespace
