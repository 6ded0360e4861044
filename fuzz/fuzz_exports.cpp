// libFuzzer target: every input is one call of one export of the table, with
// a fuzzed feature answer, size, steps, null pointers and family arguments,
// checked against the public contract. A broken contract aborts with the case.
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "contract_check.h"
#include "export_table.h"

namespace {
std::atomic<int> gAnswer{0};

bool cpuHasVnni() {
    static const bool has = [] {
        const kx::FeatureQuery real = kx::coreFeatureQuery();
        return real != nullptr && real(0x8000000ULL) != 0;
    }();
    return has;
}

void setVnni(bool on) { gAnswer = on && cpuHasVnni() ? 1 : 0; }
}  // namespace

// The library asks this executable, not the core library, which path to take.
extern "C" __attribute__((visibility("default"))) int ownGetFeature(uint64_t mask) {
    return mask == 0x8000000ULL ? gAnswer.load(std::memory_order_relaxed) : 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string bad = kx::checkOneCall(data, size, setVnni);
    if (!bad.empty()) {
        std::fprintf(stderr, "contract broken: %s\n", bad.c_str());
        std::abort();
    }
    return 0;
}
