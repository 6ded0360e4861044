#include "contract_check.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>

#include "export_table.h"

namespace kx {
namespace {

// Reads the input byte by byte; zeros once it is used up.
class Reader {
public:
    Reader(const uint8_t* d, std::size_t n) : d_(d), n_(n) {}
    uint32_t u8() { return i_ < n_ ? d_[i_++] : 0; }
    uint32_t u16() { return u8() | u8() << 8; }
    uint32_t u32() { return u16() | u16() << 16; }
    // A value in [lo, hi].
    int range(int lo, int hi) { return lo + static_cast<int>(u16() % static_cast<uint32_t>(hi - lo + 1)); }

private:
    const uint8_t* d_;
    std::size_t n_, i_ = 0;
};

// Mostly ordinary sizes, sometimes the edges: zero, negative, one.
int dimension(Reader& r, int max) {
    const uint32_t sel = r.u8();
    if (sel < 16) return static_cast<int>(sel % 5) - 2;
    return r.range(1, max);
}

}  // namespace

std::string checkOneCall(const uint8_t* data, std::size_t size, void (*setVnni)(bool)) {
    Reader r(data, size);
    const auto table = exportTable();
    const Row& row = table[r.u16() % table.size()];
    const bool vnni = r.u8() & 1;
    const KroiSize roi{dimension(r, 300), dimension(r, 24)};
    KroiRect rect{};
    uint32_t grid = 0;
    if (row.flags & kCfa) {
        rect.x = roi.width > 0 ? static_cast<int>(r.u16() % roi.width) : 0;
        rect.y = roi.height > 0 ? static_cast<int>(r.u16() % roi.height) : 0;
        rect.width = r.range(-2, std::max(roi.width, 0) + 4);
        rect.height = r.range(-2, std::max(roi.height, 0) + 4);
        grid = r.u8() % 6;
    }
    StepMode modes[2][4];
    for (auto& side : modes)
        for (auto& m : side) m = static_cast<StepMode>(r.u8() & 3);
    Job job(row, roi, rect, modes[0], modes[1], r.u32());
    Call& c = job.call;
    c.grid = grid;
    c.alphaInt = static_cast<int16_t>(r.u16());
    c.alphaFloat = static_cast<int16_t>(r.u16()) / 256.0;
    // Gray weights: the defaults, or three numbers from the input.
    alignas(8) uint8_t weights[24];
    for (auto& b : weights) b = static_cast<uint8_t>(r.u8());
    if (r.u8() & 1) c.coeffs = weights;
    // A null pointer now and then: a plane, a plane array or an array of steps.
    const uint32_t n = r.u8();
    if (n < 24) {
        const int s = n & 1, p = (n >> 1) & 3;
        const bool untested = s == 1 && ((n >= 16 && n < 20 && (row.flags & kUntestedDstArray)) ||
                                         (n < 16 && p == 3 && (row.flags & kUntestedDstPlane3)));
        // A null that the function reads without a test is the caller's fault: not given.
        if (!untested && n < 16 && p < c.planes[s]) c.plane[s][p] = nullptr;
        if (!untested && n >= 16 && n < 20) c.nullArray[s] = true;
        if (n >= 20) c.nullSteps[s] = true;
    }
    setVnni(vnni);

    const auto srcBefore = job.src.snapshot(), dstBefore = job.dst.snapshot();
    static const bool trace = std::getenv("KX_TRACE") != nullptr;  // print each call before it runs
    if (trace)
        std::fprintf(stderr, "%s %s %dx%d rect %d,%d %dx%d steps %d %d %d %d | %d %d %d %d\n", row.name,
                     vnni ? "vnni" : "plain", roi.width, roi.height, rect.x, rect.y, rect.width, rect.height,
                     c.step[0][0], c.step[0][1], c.step[0][2], c.step[0][3], c.step[1][0], c.step[1][1],
                     c.step[1][2], c.step[1][3]);
    const KroStatus st = job.run();
    const bool nulled = c.passedNull;

    std::ostringstream what;
    if (!isContractStatus(st)) what << "status " << st << " is not a value of the contract; ";
    if (!job.src.sameAs(srcBefore)) what << "the source changed; ";
    if (st < 0 && !job.dst.sameAs(dstBefore)) what << "a failed call wrote to the destination; ";
    if (st >= 0 && !job.dst.outsideIntact()) what << "a byte outside the region changed; ";
    if (st >= 0 && nulled && !job.dst.sameAs(dstBefore)) what << "a call with a null pointer wrote; ";
    if (what.str().empty()) return {};
    std::ostringstream out;
    out << row.name << " path " << (vnni ? "vnni" : "plain") << " size " << roi.width << "x" << roi.height;
    if (row.flags & kCfa)
        out << " rect " << rect.x << "," << rect.y << " " << rect.width << "x" << rect.height << " grid " << grid;
    out << " steps";
    for (int s = 0; s < 2; ++s)
        for (int p = 0; p < c.planes[s]; ++p) out << " " << c.step[s][p];
    out << (nulled ? " with a null pointer" : "") << ": status " << st << ": " << what.str();
    return out.str();
}

}  // namespace kx
