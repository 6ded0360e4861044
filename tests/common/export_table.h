// The table of every implemented export: the geometry of its planes and a
// caller that builds its argument list. The guard-page, fuzz, thread and
// benchmark programs all walk this one table, so a new export is covered by
// adding its row to export_table.cpp.
#pragma once
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "krocc.h"

namespace kx {

// One plane: `num` bytes for every `den` pixels of the luma grid across a
// row, one plane row for every `rowDiv` luma rows. `cells` planes cover only
// whole 2x2 cells: their width and height are rounded down, not up.
struct Plane {
    uint8_t num = 0, den = 1, rowDiv = 1;
    bool cells = false;
};

// One side of the call (source or destination): one to four planes.
struct Side {
    uint8_t planes = 0;
    Plane plane[4];
};

enum Flag : uint8_t {
    kNone = 0,
    kDense = 1,  // form without R: the steps are the planes' own row lengths
    kCfa = 2,    // demosaicing: the size is the whole source image, the
                 // destination is the (cut) source region
    // At width 1 the last odd pixel's rule reads one (two) bytes before each
    // source row: the chroma of a pair that is not there.
    kBefore1 = 4,
    kBefore2 = 8,
    // At width 1 the last pair is read and written whole: one pixel beyond the
    // region, on both sides.
    kPairAtWidth1 = 16,
    // Null pointers that the function reads without a test (the caller's
    // fault): the destination plane array itself, or its fourth member.
    kUntestedDstArray = 32,
    kUntestedDstPlane3 = 64,
};

// What a call receives. Planes and steps stand in argument order: side 0 is
// the source, side 1 the destination. Family extras follow.
struct Call {
    uint8_t* plane[2][4] = {};
    int step[2][4] = {};
    uint8_t planes[2] = {};
    KroiSize size{};
    KroiRect rect{};       // demosaicing: the source region
    uint32_t grid = 0;     // demosaicing: the Bayer pattern
    int64_t alphaInt = 0;  // alpha argument of an integer destination
    double alphaFloat = 0; // alpha argument of a float destination
    const void* coeffs = nullptr;  // gray weights (null: the defaults)
    bool nullArray[2] = {};        // pass a null plane array for this side
    bool nullSteps[2] = {};        // pass a null array of steps for this side
    mutable bool passedNull = false;  // set by the call: a null pointer was passed
};

struct Row {
    const char* name;
    Side src, dst;
    uint8_t flags;
    KroStatus (*call)(const Call&);
    uint8_t (*sharedStep)(const Call&);  // see sharedStepSides
};

std::span<const Row> exportTable();
const Row* findRow(std::string_view name);

// Bytes of one row, and rows, of a plane for a region of w x h luma pixels.
std::size_t planeRowBytes(const Plane& p, int w);
int planeRows(const Plane& p, int h);

// The region that a call with this size (and, for demosaicing, this source
// rectangle) covers on each side, in luma pixels.
KroiSize sideRegion(const Row& row, int side, KroiSize size, KroiRect rect);

// The sides (bit 0 source, bit 1 destination) whose planes are passed with
// one step for all of them.
uint8_t sharedStepSides(const Row& row);

// Bytes before each source row that a call of width w may read.
int readsBeforeRow(const Row& row, int w);

// The core library's own feature query, found by name past whatever the
// executable defines in its place; null when the core library is missing.
using FeatureQuery = int (*)(uint64_t);
FeatureQuery coreFeatureQuery();

// Every status value of the public contract.
bool isContractStatus(KroStatus s);

// ---- images with canaries --------------------------------------------------

// How a plane's rows are laid out in memory.
enum class StepMode : uint8_t { Tight, Padded, Zero, Negative };

// The planes of one side of a call, each in its own buffer with canary bytes
// around and between the rows. With a negative step the plane pointer stands
// at the last row in memory and rows walk upward; with a zero step all rows
// share one.
class Planes {
public:
    static constexpr uint8_t kCanary = 0xC3;
    Planes() = default;
    Planes(const Side& side, KroiSize region, const StepMode modes[4], bool dense, uint32_t seed);
    int count() const { return static_cast<int>(bufs_.size()); }
    uint8_t* ptr(int p) { return bufs_[p].data() + origin_[p]; }
    int step(int p) const { return step_[p]; }
    // True when nothing outside the region's bytes changed.
    bool outsideIntact() const;
    // The region's bytes of every plane, in order.
    std::vector<uint8_t> region() const;
    // The whole buffers, canaries included.
    std::vector<std::vector<uint8_t>> snapshot() const { return bufs_; }
    bool sameAs(const std::vector<std::vector<uint8_t>>& s) const { return bufs_ == s; }

private:
    std::vector<std::vector<uint8_t>> bufs_;
    std::vector<std::size_t> origin_, rowBytes_;
    std::vector<int> step_, rows_;
};

// A source and a destination for one row, and the call's arguments.
struct Job {
    Job(const Row& row, KroiSize size, KroiRect rect, const StepMode srcModes[4],
        const StepMode dstModes[4], uint32_t seed);
    const Row* row;
    Planes src, dst;
    Call call;
    KroStatus run() const;
};

}  // namespace kx
