#include "test_common.h"

#include "export_table.h"

#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <stdexcept>

namespace {
std::atomic<int> gAnswer{0};
std::atomic<int> gQueries{0};
}  // namespace

// Interposes the core library's query: the pixel library imports it by name,
// and the executable's definition comes first in the lookup.
extern "C" __attribute__((visibility("default"))) int ownGetFeature(uint64_t mask) {
    gQueries.fetch_add(1, std::memory_order_relaxed);
    return mask == 0x8000000ULL ? gAnswer.load(std::memory_order_relaxed) : 0;
}

namespace kt {

void setPath(Path p) {
    gAnswer = p == Path::Vnni ? 1 : 0;
    gQueries = 0;
}
int featureQueries() { return gQueries.load(); }
void resetQueries() { gQueries = 0; }

bool cpuHasVnni() {
    static const bool has = [] {
        const kx::FeatureQuery real = kx::coreFeatureQuery();
        if (real == nullptr) throw std::runtime_error("core library's ownGetFeature not found");
        return real(0x8000000ULL) != 0;
    }();
    return has;
}

Canvas::Canvas(std::size_t rowBytes, int rows, std::size_t pad, uint8_t canary)
    : rowBytes_(rowBytes), step_(rowBytes + pad), margin_(64), rows_(rows), canary_(canary),
      buf_(2 * margin_ + step_ * static_cast<std::size_t>(rows > 0 ? rows : 0), canary) {}

void Canvas::randomize(uint32_t seed) {
    std::mt19937 g(seed);
    for (int y = 0; y < rows_; ++y)
        for (std::size_t x = 0; x < rowBytes_; ++x) row(y)[x] = static_cast<uint8_t>(g());
}

void Canvas::fill(uint8_t v) {
    for (int y = 0; y < rows_; ++y) std::memset(row(y), v, rowBytes_);
}

bool Canvas::canariesIntact() const {
    for (std::size_t i = 0; i < buf_.size(); ++i) {
        if (i >= margin_ && i < margin_ + step_ * rows_) {
            std::size_t off = (i - margin_) % step_;
            if (off < rowBytes_) continue;
        }
        if (buf_[i] != canary_) return false;
    }
    return true;
}

std::vector<uint8_t> Canvas::region() const {
    std::vector<uint8_t> out;
    out.reserve(rowBytes_ * rows_);
    for (int y = 0; y < rows_; ++y) out.insert(out.end(), row(y), row(y) + rowBytes_);
    return out;
}

Guarded::Guarded(std::size_t bytes, Side side) {
    const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t body = (bytes + page - 1) / page * page;
    mapBytes_ = body + 2 * page;
    map_ = mmap(nullptr, mapBytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (map_ == MAP_FAILED) throw std::runtime_error("mmap failed");
    auto* base = static_cast<uint8_t*>(map_);
    mprotect(base, page, PROT_NONE);
    mprotect(base + page + body, page, PROT_NONE);
    data_ = side == After ? base + page + body - bytes : base + page;
    std::memset(data_, 0x5A, bytes);
}

Guarded::~Guarded() { munmap(map_, mapBytes_); }

Img::Img(Lay l, int w_, int h_, std::size_t pad) : lay(l), w(w_), h(h_) {
    for (int i = 0; i < planesOf(l); ++i) {
        canvases.push_back(std::make_unique<Canvas>(static_cast<std::size_t>(w) * bppOf(l), h, pad));
        p[i] = canvases.back()->data();
        step = canvases.back()->step();
    }
}

Kro8u& Img::at(int c, int x, int y) {
    const bool packed = planesOf(lay) == 1;
    return p[packed ? 0 : c][static_cast<std::ptrdiff_t>(y) * step + (packed ? x * bppOf(lay) + c : x)];
}

void Img::randomize(uint32_t seed) {
    for (std::size_t i = 0; i < canvases.size(); ++i) canvases[i]->randomize(seed + static_cast<uint32_t>(i));
}

bool Img::intact() const {
    for (auto& c : canvases)
        if (!c->canariesIntact()) return false;
    return true;
}

std::vector<std::vector<uint8_t>> Img::snapshot() const {
    std::vector<std::vector<uint8_t>> s;
    for (auto& c : canvases) s.push_back(c->snapshot());
    return s;
}

bool Img::unchanged(const std::vector<std::vector<uint8_t>>& s) const {
    for (std::size_t i = 0; i < canvases.size(); ++i)
        if (!canvases[i]->untouchedSince(s[i])) return false;
    return true;
}

bool Img::aligned16() const {
    bool a = step % 16 == 0;
    for (int i = 0; i < planesOf(lay); ++i) a = a && reinterpret_cast<std::uintptr_t>(p[i]) % 16 == 0;
    return a;
}

void Img::fillCube() {
    const auto& cube = colourCube();
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const std::size_t i = cubeIndex(x, y);
            set(x, y, Px3{cube[3 * i], cube[3 * i + 1], cube[3 * i + 2]});
        }
}

const std::vector<uint8_t>& colourCube() {
    static const std::vector<uint8_t> cube = [] {
        std::vector<uint8_t> c(3u << 24);
        for (uint32_t i = 0; i < (1u << 24); ++i) {
            c[3 * i] = static_cast<uint8_t>(i >> 16);
            c[3 * i + 1] = static_cast<uint8_t>(i >> 8);
            c[3 * i + 2] = static_cast<uint8_t>(i);
        }
        return c;
    }();
    return cube;
}

std::vector<uint8_t> randomBytes(std::size_t n, uint32_t seed) {
    std::vector<uint8_t> v(n);
    std::mt19937 g(seed);
    for (auto& b : v) b = static_cast<uint8_t>(g());
    return v;
}

}  // namespace kt
