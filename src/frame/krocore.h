// The two queries that the pixel library imports from the core library.
// They are resolved at load time, so a caller (or a test) may interpose its own.
#pragma once
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Non-zero when the processor and the operating system support every feature of the mask.
#define KRO_FEATURE_VNNI_VBMI 0x8000000ULL
__attribute__((visibility("default"))) int ownGetFeature(uint64_t featureMask);

// Writes the size in bytes of the processor's largest cache; zero for success.
__attribute__((visibility("default"))) int kroGetMaxCacheSizeB(int* pSize);

#ifdef __cplusplus
}
#endif
