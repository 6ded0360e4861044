// Shared test helpers: the feature answer, canary images, guard pages and the
// cube of all 8-bit colours.
#pragma once
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "krocc.h"

namespace kt {

// ---- the feature question -------------------------------------------------

enum class Path { Plain, Vnni };
inline const char* pathName(Path p) { return p == Path::Vnni ? "vnni" : "plain"; }

// Sets the answer that the library's feature query gets from this executable.
void setPath(Path p);
// Number of feature queries the library made since the last reset.
int featureQueries();
void resetQueries();
// The core library's own answer for this machine.
bool cpuHasVnni();

// Skips, loudly, a VNNI-path test on a processor without those instructions.
#define KT_USE_PATH(p)                                                                   \
    do {                                                                                 \
        if ((p) == ::kt::Path::Vnni && !::kt::cpuHasVnni())                              \
            GTEST_SKIP() << "*** VNNI/VBMI path NOT TESTED: this CPU lacks the instructions"; \
        ::kt::setPath(p);                                                                \
    } while (0)

// Parameterised fixtures over both paths use this generator.
inline auto bothPaths() { return ::testing::Values(Path::Plain, Path::Vnni); }

// ---- images with canaries -------------------------------------------------

// An image of `rows` rows of `rowBytes` bytes with `pad` canary bytes after
// each row and a canary margin before the first and after the last row.
class Canvas {
public:
    static constexpr uint8_t kCanary = 0xA5;
    Canvas(std::size_t rowBytes, int rows, std::size_t pad = 37, uint8_t canary = kCanary);
    uint8_t* data() { return buf_.data() + margin_; }
    const uint8_t* data() const { return buf_.data() + margin_; }
    uint8_t* row(int y) { return data() + static_cast<std::ptrdiff_t>(y) * step_; }
    const uint8_t* row(int y) const { return data() + static_cast<std::ptrdiff_t>(y) * step_; }
    int step() const { return static_cast<int>(step_); }
    std::size_t rowBytes() const { return rowBytes_; }
    int rows() const { return rows_; }
    // Fills the region (not the canaries) with random bytes, or a value.
    void randomize(uint32_t seed);
    void fill(uint8_t v);
    // True when no byte outside the region changed.
    bool canariesIntact() const;
    // True when no byte at all changed since construction/fill (a failed call).
    bool untouchedSince(const std::vector<uint8_t>& snapshot) const { return buf_ == snapshot; }
    std::vector<uint8_t> snapshot() const { return buf_; }
    // The region's bytes, row after row.
    std::vector<uint8_t> region() const;

private:
    std::size_t rowBytes_, step_, margin_;
    int rows_;
    uint8_t canary_;
    std::vector<uint8_t> buf_;
};

// ---- guard pages ----------------------------------------------------------

// A buffer of `bytes` placed so that its last byte is the last one before an
// inaccessible page (guardAfter) or its first byte the first one after an
// inaccessible page (guardBefore).
class Guarded {
public:
    enum Side { After, Before };
    Guarded(std::size_t bytes, Side side);
    ~Guarded();
    Guarded(const Guarded&) = delete;
    Guarded& operator=(const Guarded&) = delete;
    uint8_t* data() { return data_; }

private:
    void* map_ = nullptr;
    std::size_t mapBytes_ = 0;
    uint8_t* data_ = nullptr;
};

// ---- images of three or four channels ---------------------------------------

// Interleaved three or four bytes a pixel, or three or four planes.
enum class Lay { C3, C4, P3, P4 };
inline int planesOf(Lay l) { return l == Lay::P3 ? 3 : l == Lay::P4 ? 4 : 1; }
inline int bppOf(Lay l) { return l == Lay::C3 ? 3 : l == Lay::C4 ? 4 : 1; }

// Three samples of a pixel, as the families' forms give them.
struct Px3 { uint8_t a, b, c; };
template <class A, class B = A>
bool samePx(const A& x, const B& y) { return x.a == y.a && x.b == y.b && x.c == y.c; }
template <class P>
std::string str(const P& p) {
    return "(" + std::to_string(int{p.a}) + "," + std::to_string(int{p.b}) + "," + std::to_string(int{p.c}) + ")";
}

// An image whose planes are canvases with canaries; all planes share a step.
struct Img {
    Lay lay;
    int w, h;
    std::vector<std::unique_ptr<Canvas>> canvases;
    std::array<Kro8u*, 4> p{};
    std::array<const Kro8u*, 4> cp{};
    int step = 0;
    bool nullArray = false;  // arr() and carr() give a null array

    Img(Lay l, int w, int h, std::size_t pad = 37);
    // The plane arrays as the planar functions take them.
    Kro8u* const* arr() { return nullArray ? nullptr : p.data(); }
    const Kro8u* const* carr() {
        for (int i = 0; i < 4; ++i) cp[i] = p[i];
        return nullArray ? nullptr : cp.data();
    }
    Kro8u& at(int c, int x, int y);
    Px3 get(int x, int y) { return {at(0, x, y), at(1, x, y), at(2, x, y)}; }
    template <class P>
    void set(int x, int y, const P& v) { at(0, x, y) = v.a, at(1, x, y) = v.b, at(2, x, y) = v.c; }
    void randomize(uint32_t seed);
    bool intact() const;
    std::vector<std::vector<uint8_t>> snapshot() const;
    bool unchanged(const std::vector<std::vector<uint8_t>>& s) const;
    bool aligned16() const;
    // Fills the image with the colour cube, row after row, repeating it to
    // fill the last row; cubeIndex gives the cube's pixel at (x, y).
    void fillCube();
    std::size_t cubeIndex(int x, int y) const { return (static_cast<std::size_t>(y) * w + x) % (1u << 24); }
    // Rows needed to hold the cube at width w.
    static int cubeRows(int w) { return static_cast<int>(((1u << 24) + w - 1) / w); }
};

// ---- tables ----------------------------------------------------------------

// The entry of a table of members by its name.
template <class M>
const M& byName(const std::vector<M>& all, const std::string& name) {
    for (const M& m : all)
        if (name == m.name) return m;
    throw std::logic_error(name);
}

// ---- data -----------------------------------------------------------------

// All 2^24 colours as interleaved three-byte pixels (first byte slowest).
const std::vector<uint8_t>& colourCube();
// Random bytes.
std::vector<uint8_t> randomBytes(std::size_t n, uint32_t seed);

}  // namespace kt
