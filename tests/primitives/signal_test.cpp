// Copy and fill: the store method chosen by size and by the cache answer.
// The routines are internal to the library, so this test builds its own copy
// of them and answers their cache question itself.
#include <atomic>
#include <cstring>

#include "primitives/signal.cpp"
#include "test_common.h"

namespace {
std::atomic<int> gCacheAsks{0};
int gCacheStatus = 0;
int gCacheSize = 32 << 20;
}  // namespace

extern "C" __attribute__((visibility("default"))) int kroGetMaxCacheSizeB(int* size) {
    ++gCacheAsks;
    if (gCacheStatus == 0) *size = gCacheSize;
    return gCacheStatus;
}

namespace {

struct Cache {
    Cache(int status, int size) { gCacheStatus = status; gCacheSize = size; gCacheAsks = 0; }
    ~Cache() { gCacheStatus = 0; gCacheSize = 32 << 20; }
};

// Copies `len` bytes between offsets of two buffers and checks every byte and
// the guard bytes around the destination.
void checkCopy(std::size_t len, std::size_t srcOff, std::size_t dstOff) {
    std::vector<Kro8u> src = kt::randomBytes(len + 8192, static_cast<uint32_t>(len + srcOff));
    std::vector<Kro8u> dst(len + 8192, 0xC3);
    k0::ownsCopy_8u(src.data() + srcOff, dst.data() + dstOff, len);
    ASSERT_EQ(std::memcmp(src.data() + srcOff, dst.data() + dstOff, len), 0) << len << " " << srcOff << " " << dstOff;
    for (std::size_t i = 0; i < dstOff; ++i) ASSERT_EQ(dst[i], 0xC3);
    for (std::size_t i = dstOff + len; i < dst.size(); ++i) ASSERT_EQ(dst[i], 0xC3);
}

TEST(Copy, AsksTheCacheOnlyFromFourMebibytesAndOne) {
    Cache c(0, 4 << 20);
    checkCopy(0x400000, 0, 0);
    EXPECT_EQ(gCacheAsks, 0);
    checkCopy(0x400001, 3, 17);  // non-temporal: at least half the cache
    EXPECT_EQ(gCacheAsks, 1);
}

TEST(Copy, EveryPathGivesTheSameBytes) {
    {
        Cache c(-1, 0);  // unknown cache: cached stores only
        checkCopy(0x400001 + 77, 5, 9);
        EXPECT_EQ(gCacheAsks, 1);
    }
    {
        Cache c(0, 64 << 20);  // large cache: below half of it, no streaming
        checkCopy(0x400001, 0, 1000);
    }
    // Page offsets apart by 160 or more: string copy; closer: backward copy.
    for (std::size_t len : {1u, 63u, 64u, 65u, 200u, 4095u, 32768u, 100000u})
        for (auto [s, d] : {std::pair<std::size_t, std::size_t>{0, 0}, {0, 160}, {1, 100}, {200, 7}, {64, 3}})
            checkCopy(len, s, d);
}

TEST(Set, AsksTheCacheOnlyForLargeAlignedFills) {
    Cache c(0, 1 << 20);
    std::vector<Kro32s> buf(0x80001 + 64, 7);
    k0::ownsSet_32s(-5, buf.data() + 1, 0x80000);
    EXPECT_EQ(gCacheAsks, 0);
    k0::ownsSet_32s(-5, buf.data() + 1, 0x80001);  // above the cache: streamed
    EXPECT_EQ(gCacheAsks, 1);
    EXPECT_EQ(buf[0], 7);
    for (std::size_t i = 1; i <= 0x80001; ++i) ASSERT_EQ(buf[i], -5) << i;
    for (std::size_t i = 0x80002; i < buf.size(); ++i) ASSERT_EQ(buf[i], 7);
    // A destination that is not 4-byte aligned never asks.
    std::vector<Kro8u> raw(4 * 0x80001 + 8, 0);
    k0::ownsSet_32s(0x01020304, reinterpret_cast<Kro32s*>(raw.data() + 1), 0x80001);
    EXPECT_EQ(gCacheAsks, 1);
    for (std::size_t i = 0; i < 4 * 0x80001; i += 4) {
        Kro32s v;
        std::memcpy(&v, raw.data() + 1 + i, 4);
        ASSERT_EQ(v, 0x01020304);
    }
}

TEST(Checked, NullThenLength) {
    Kro8u a[4] = {1, 2, 3, 4}, b[4] = {};
    EXPECT_EQ(k0::krosCopy_8u(nullptr, b, 0), kroErrNullPtr);
    EXPECT_EQ(k0::krosCopy_8u(a, b, 0), kroErrSize);
    EXPECT_EQ(k0::krosCopy_8u(a, b, 4), kroOk);
    EXPECT_EQ(std::memcmp(a, b, 4), 0);
    Kro32f f[40] = {};
    EXPECT_EQ(k0::krosSet_32f(1.5f, nullptr, 0), kroErrNullPtr);
    EXPECT_EQ(k0::krosSet_32f(1.5f, f, -1), kroErrSize);
    EXPECT_EQ(k0::krosSet_32f(-0.0f, f, 33), kroOk);
    for (int i = 0; i < 33; ++i) EXPECT_TRUE(std::signbit(f[i]) && f[i] == 0.0f);
    EXPECT_EQ(f[33], 0.0f);
    EXPECT_FALSE(std::signbit(f[33]));
}

}  // namespace
