// krocc_peers: this library's conversions timed beside memcpy of the same bytes
// and beside the nearest conversion of libyuv, OpenCV and swscale, on the same
// frames in the same process.
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "bench_common.h"

// A stand-in for every export: a call of a function that krocc.h does not
// declare (yet) resolves to it and has the type Absent, so the pairing is
// dropped at compile time instead of breaking the build.
namespace kp_probe {
struct Absent {};
}  // namespace kp_probe
#define KP_PROBE(fn) \
    namespace kp_probe { Absent fn(...); }
#include "peers_probes.h"
#undef KP_PROBE
using namespace kp_probe;

namespace kp {

// Layouts of a frame of w x h pixels, by the planes they hold.
enum class Fmt {
    RGB,         // 3 bytes a pixel
    RGBA,        // 4 bytes a pixel
    Gray,        // 1 byte a pixel (also a Bayer mosaic)
    YUY2,        // 2 bytes a pixel, packed 4:2:2
    I420,        // Y plane, two chroma planes of w/2 x h/2
    I420Packed,  // one buffer: Y rows, then U, then V, dense (OpenCV's I420)
    NV12,        // Y plane, one plane of chroma pairs of w x h/2 bytes
    I422,        // Y plane, two chroma planes of w/2 x h
    P3,          // three 8-bit planes of w x h
    P3S16,       // three 16-bit planes of w x h
    RGB16,       // 6 bytes a pixel
    Gray16,      // 2 bytes a pixel
    RGB32F,      // 12 bytes a pixel
    Gray32F,     // 4 bytes a pixel
};

bool is8bit(Fmt f);

// Samples of a buffer: random bytes, or floats drawn uniformly per channel.
struct Fill {
    bool real = false;
    float lo[3]{};
    float hi[3]{};
};
inline Fill floats(float l0, float h0, float l1, float h1, float l2, float h2) {
    Fill f;
    f.real = true;
    f.lo[0] = l0, f.hi[0] = h0, f.lo[1] = l1, f.hi[1] = h1, f.lo[2] = l2, f.hi[2] = h2;
    return f;
}
inline Fill unitFloats() { return floats(0, 1, 0, 1, 0, 1); }

// Converts to whatever pointer type the callee takes.
struct AnyPtr {
    void* p;
    template <class T>
    operator T*() const { return static_cast<T*>(p); }
};
// Converts to whatever plane-array type the callee takes (T**, T* const*, const T* const*).
struct Planes {
    void* const* p;
    template <class T>
    operator T**() const { return reinterpret_cast<T**>(reinterpret_cast<std::uintptr_t>(p)); }
};

// The planes of one frame; every row starts on a 64-byte boundary.
struct Buf {
    Buf(Fmt f, int w, int h, const Fill& fill, uint32_t seed);
    AnyPtr ptr(int i) const { return {p[i]}; }
    Planes planes() const { return {p}; }
    int s(int i) const { return step[i]; }
    int* steps() { return step; }
    Kro8u* u8(int i) const { return static_cast<Kro8u*>(p[i]); }

    std::vector<kb::Frame> frames;
    void* p[4]{};
    int step[4]{};
};

// Bytes of an image in this layout, without row padding.
double imageBytes(Fmt f, int w, int h);

// One timed conversion, made for a frame size (swscale builds its context here).
using Run = std::function<int(Buf& in, Buf& out)>;
using Make = std::function<Run(int w, int h)>;

struct Impl {
    std::string name;  // "ours", or "<peer> <function>"
    Fmt in, out;
    Fill fill;
    Make make;
    bool ceiling = false;  // a conversion that does less than ours, shown as a bound
};

struct Case {
    std::string name;  // our export without the "kroi" prefix
    Impl ours;
    std::vector<Impl> peers;
};

// The cases of this library's exports that krocc.h declares, and the names of
// those it does not declare yet.
struct Cases {
    std::vector<Case> present;
    std::vector<std::string> waiting;
    std::vector<std::string> mismatched;  // exported, but the call did not match the prototype
};
Cases buildCases();

// Peers compiled in and usable, each with a line of what was found.
struct PeerInfo {
    std::string name;
    bool usable;
    std::string note;
};
std::vector<PeerInfo> peerInfo();

namespace detail {
template <class L>
Make ours(L l) {
    using R = decltype(l(std::declval<Buf&>(), std::declval<Buf&>(), 0, 0));
    if constexpr (std::is_same_v<R, kp_probe::Absent>) {
        return nullptr;
    } else {
        return [l](int w, int h) -> Run {
            return [l, w, h](Buf& i, Buf& o) { return static_cast<int>(l(i, o, w, h)); };
        };
    }
}
}  // namespace detail

}  // namespace kp

// Our call: `fn(args)`, where the arguments may use `in`, `out` (Buf&), `w`,
// `h` and `roi`. Null when krocc.h does not declare `fn` with these arguments.
#define KP_OURS(fn, ...)                                                        \
    ::kp::detail::ours([](auto& in, auto& out, int w, int h) {                  \
        const KroiSize roi{w, h};                                               \
        (void)in, (void)out, (void)roi;                                         \
        return fn(__VA_ARGS__);                                                 \
    })
