// What every benchmark shares: 64-byte aligned frames of random content, the
// feature answer the library sees, and memcpy of the same bytes as baseline.
#pragma once
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "krocc.h"

namespace kb {

enum class Path { Plain, Vnni };
void setPath(Path p);
bool cpuHasVnni();

// A frame of `rows` rows of `rowBytes` bytes; rows start on 64-byte boundaries.
struct Frame {
    Frame(std::size_t rowBytes, int rows, uint32_t seed = 1);
    uint8_t* data() { return mem.get(); }
    uint8_t* row(int y) { return mem.get() + step * static_cast<std::size_t>(y); }
    int step;
    int rows;
    std::unique_ptr<uint8_t, void (*)(void*)> mem;
};

struct Res { int w, h; };
inline constexpr Res kHD{1920, 1080};
inline constexpr Res k4K{3840, 2160};

// Registers, for each frame size, a memcpy of `bytesPerPixel` read and written.
void registerMemcpy(const char* name, double bytesPerPixel);

// Reports pixels and bytes (read plus written) per second.
void setCounters(benchmark::State& st, int w, int h, double bytesPerPixel);

}  // namespace kb
