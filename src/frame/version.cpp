// The constant version record.
#include "internal.h"

namespace {
constexpr KroLibraryVersion kVersion = {
    2022, 3, 0, 0x0FC08BB1, {'k', '0', 0, 0},
    "kroCC AVX-512F/CD/BW/DQ/VL (k0)",
    "2022.3.0 (r0x0fc08bb1)",
    "Sep 19 2025",
};
}  // namespace

extern "C" const KroLibraryVersion* k0_kroccGetLibVersion(void) { return &kVersion; }
extern "C" decltype(kroccGetLibVersion) kroccGetLibVersion __attribute__((alias("k0_kroccGetLibVersion"), used));
