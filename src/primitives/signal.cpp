#include "primitives/signal.h"

#include <cstring>

#include "simd.h"

namespace k0 {

namespace {

constexpr std::size_t kCopyAsksCache = 0x400001;   // bytes
constexpr std::size_t kSetAsksCache = 0x80001;     // elements
constexpr std::size_t kAliasDistance = 160;        // bytes of page offset

// Size of the largest cache, or 0 when the core library cannot tell.
std::size_t cacheBytes() {
    int size = 0;
    if (kroGetMaxCacheSizeB(&size) != 0 || size <= 0) return 0;
    return static_cast<std::size_t>(size);
}

// Forward copy of whole 64-byte groups with non-temporal stores; dst aligned.
void copyStream(const Kro8u* src, Kro8u* dst, std::size_t groups) {
    for (std::size_t i = 0; i < groups; ++i)
        _mm512_stream_si512(reinterpret_cast<__m512i*>(dst + 64 * i), _mm512_loadu_si512(src + 64 * i));
}

// Backward copy of whole 64-byte groups, last group first.
void copyBackward(const Kro8u* src, Kro8u* dst, std::size_t groups) {
    for (std::size_t i = groups; i-- > 0;)
        _mm512_storeu_si512(dst + 64 * i, _mm512_loadu_si512(src + 64 * i));
}

void copyRep(const Kro8u* src, Kro8u* dst, std::size_t len) {
    __asm__ volatile("rep movsb" : "+D"(dst), "+S"(src), "+c"(len) : : "memory");
}

}  // namespace

void ownsCopy_8u_E9(const Kro8u* src, Kro8u* dst, std::size_t len) {
    std::size_t i = 0;
    for (; i + 256 <= len; i += 256)
        for (int k = 0; k < 4; ++k) _mm512_storeu_si512(dst + i + 64 * k, _mm512_loadu_si512(src + i + 64 * k));
    for (; i < len; i += 64) {
        const unsigned n = static_cast<unsigned>(len - i < 64 ? len - i : 64);
        storeN512(dst + i, loadN512(src + i, n), n);
    }
}

void ownsSet_32s_E9(Kro32s value, Kro32s* dst, std::size_t len) {
    const __m512i v = _mm512_set1_epi32(value);
    std::size_t i = 0;
    for (; i + 16 <= len; i += 16) _mm512_storeu_si512(dst + i, v);
    if (i < len) _mm512_mask_storeu_epi32(dst + i, static_cast<__mmask16>(lowBits32(static_cast<unsigned>(len - i))), v);
}

void ownsCopy_8u(const Kro8u* src, Kro8u* dst, std::size_t len) {
    if (len >= kCopyAsksCache) {
        const std::size_t cache = cacheBytes();
        if (cache > 0 && len >= cache / 2) {
            const std::size_t mis = reinterpret_cast<std::uintptr_t>(dst) & 63;
            const std::size_t head = mis ? 64 - mis : 0;
            ownsCopy_8u_E9(src, dst, head);
            const std::size_t groups = (len - head) / 64;
            copyStream(src + head, dst + head, groups);
            const std::size_t done = head + 64 * groups;
            ownsCopy_8u_E9(src + done, dst + done, len - done);
            _mm_sfence();
            return;
        }
    }
    const std::size_t dOff = reinterpret_cast<std::uintptr_t>(dst) & 0xFFF;
    const std::size_t sOff = reinterpret_cast<std::uintptr_t>(src) & 0xFFF;
    if (dOff - sOff >= kAliasDistance) {  // unsigned difference
        copyRep(src, dst, len);
        return;
    }
    // Close in their pages: backward, the unaligned end first.
    const std::size_t tail = (reinterpret_cast<std::uintptr_t>(dst) + len) & 63;
    const std::size_t endTail = tail < len ? tail : len;
    ownsCopy_8u_E9(src + len - endTail, dst + len - endTail, endTail);
    const std::size_t body = len - endTail;
    const std::size_t groups = body / 64;
    const std::size_t head = body - 64 * groups;
    copyBackward(src + head, dst + head, groups);
    ownsCopy_8u_E9(src, dst, head);
}

void ownsSet_32s(Kro32s value, Kro32s* dst, std::size_t len) {
    if (len >= kSetAsksCache && (reinterpret_cast<std::uintptr_t>(dst) & 3) == 0) {
        const std::size_t cache = cacheBytes();
        if (cache > 0 && len * 4 > cache) {
            const __m512i v = _mm512_set1_epi32(value);
            auto* p = reinterpret_cast<Kro8u*>(dst);
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), _mm512_castsi512_si256(v));
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(p + 32), _mm512_castsi512_si256(v));
            const std::size_t head = (64 - (reinterpret_cast<std::uintptr_t>(p) & 63)) & 63;
            // The head is a whole number of elements since dst is 4-byte aligned.
            std::size_t done = head;
            const std::size_t bytes = len * 4;
            for (; done + 64 <= bytes; done += 64) _mm512_stream_si512(reinterpret_cast<__m512i*>(p + done), v);
            if (done + 32 <= bytes) { _mm256_stream_si256(reinterpret_cast<__m256i*>(p + done), _mm512_castsi512_si256(v)); done += 32; }
            if (done + 16 <= bytes) { _mm_stream_si128(reinterpret_cast<__m128i*>(p + done), _mm512_castsi512_si128(v)); done += 16; }
            _mm_sfence();
            ownsSet_32s_E9(value, dst + done / 4, len - done / 4);
            return;
        }
    }
    ownsSet_32s_E9(value, dst, len);
}

KroStatus krosCopy_8u(const Kro8u* src, Kro8u* dst, int len) {
    if (anyNull(src, dst)) return kroErrNullPtr;
    if (len < 1) return kroErrSize;
    if (len > 32767) ownsCopy_8u(src, dst, static_cast<std::size_t>(len));
    else ownsCopy_8u_E9(src, dst, static_cast<std::size_t>(len));
    return kroOk;
}

KroStatus krosSet_32f(Kro32f value, Kro32f* dst, int len) {
    if (dst == nullptr) return kroErrNullPtr;
    if (len < 1) return kroErrSize;
    Kro32s bits;
    std::memcpy(&bits, &value, 4);
    if (static_cast<std::size_t>(len) * 4 > 0x200000) ownsSet_32s(bits, reinterpret_cast<Kro32s*>(dst), static_cast<std::size_t>(len));
    else ownsSet_32s_E9(bits, reinterpret_cast<Kro32s*>(dst), static_cast<std::size_t>(len));
    return kroOk;
}

}  // namespace k0
