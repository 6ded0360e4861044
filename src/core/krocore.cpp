// The core library: answers which instruction-set features the processor and
// the operating system support, and how large the processor's largest cache is.
#include <cpuid.h>
#include <cstdint>

#include "krocore.h"

namespace {

struct Regs { unsigned a, b, c, d; };

Regs cpuid(unsigned leaf, unsigned sub = 0) {
    Regs r{};
    __cpuid_count(leaf, sub, r.a, r.b, r.c, r.d);
    return r;
}

unsigned maxLeaf(unsigned base) { return cpuid(base).a; }

// The operating system saves the opmask and the upper ZMM state (and the
// SSE and AVX state below them): XCR0 bits 1, 2, 5, 6, 7.
bool osSavesZmm() {
    if (!(cpuid(1).c & (1u << 27))) return false;  // OSXSAVE
    unsigned lo, hi;
    __asm__ volatile("xgetbv" : "=a"(lo), "=d"(hi) : "c"(0));
    return (lo & 0xE6u) == 0xE6u;
}

bool hasVnniVbmi() {
    if (maxLeaf(0) < 7 || !osSavesZmm()) return false;
    Regs r = cpuid(7, 0);
    const bool f = r.b & (1u << 16), bw = r.b & (1u << 30), vl = r.b & (1u << 31);
    const bool vbmi = r.c & (1u << 1), vnni = r.c & (1u << 11);
    return f && bw && vl && vbmi && vnni;
}

// Size in bytes of one cache described by a deterministic cache-parameters leaf.
long long cacheBytes(const Regs& r) {
    const long long ways = ((r.b >> 22) & 0x3FF) + 1, parts = ((r.b >> 12) & 0x3FF) + 1;
    const long long line = (r.b & 0xFFF) + 1, sets = static_cast<long long>(r.c) + 1;
    return ways * parts * line * sets;
}

long long largestCache() {
    long long best = 0;
    auto walk = [&](unsigned leaf) {
        for (unsigned i = 0; i < 16; ++i) {
            Regs r = cpuid(leaf, i);
            if ((r.a & 0x1F) == 0) break;  // no more caches
            long long s = cacheBytes(r);
            if (s > best) best = s;
        }
    };
    Regs v = cpuid(0);
    const bool amd = v.b == 0x68747541;  // "Auth"enticAMD
    if (amd) {
        if (maxLeaf(0x80000000) >= 0x8000001D && (cpuid(0x80000001).c & (1u << 22))) walk(0x8000001D);
        if (best == 0 && maxLeaf(0x80000000) >= 0x80000006) {
            Regs r = cpuid(0x80000006);
            long long l2 = static_cast<long long>(r.c >> 16) * 1024;
            long long l3 = static_cast<long long>(r.d >> 18) * 512 * 1024;
            best = l2 > l3 ? l2 : l3;
        }
    } else if (maxLeaf(0) >= 4) {
        walk(4);
    }
    return best;
}

}  // namespace

extern "C" int ownGetFeature(uint64_t featureMask) {
    if (featureMask == KRO_FEATURE_VNNI_VBMI) return hasVnniVbmi() ? 1 : 0;
    return 0;  // no other feature is known to this library
}

extern "C" int kroGetMaxCacheSizeB(int* pSize) {
    if (pSize == nullptr) return -8;
    const long long s = largestCache();
    if (s <= 0 || s > 0x7FFFFFFF) return -1;
    *pSize = static_cast<int>(s);
    return 0;
}
