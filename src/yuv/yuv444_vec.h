// Vector stages of the Y'UV 4:4:4 forms. Each function computes, lane by lane,
// exactly the scalar form of the same name in yuv_forms.h:
//   block forms (F1, F7, I1, I4, I6): 16 pixels as 16-bit words in a ymm;
//   32-bit forms (F2, F3, F4, I2, I3, I7): 16 pixels as dwords in a zmm.
// Inputs are samples 0..255; outputs are samples 0..255 in the same lanes.
#pragma once
#include "simd.h"

namespace k0::yuv {

struct W3 { __m256i a, b, c; };  // three planes of 16 words
struct D3 { __m512i a, b, c; };  // three planes of 16 dwords

namespace v16 {
KRO_INLINE __m256i k(int c) { return _mm256_set1_epi16(static_cast<short>(c)); }
KRO_INLINE __m256i mh(int c, __m256i x) { return _mm256_mulhi_epi16(x, k(c)); }
KRO_INLINE __m256i add(__m256i a, __m256i b) { return _mm256_adds_epi16(a, b); }
KRO_INLINE __m256i sub(__m256i a, __m256i b) { return _mm256_subs_epi16(a, b); }
// The unsigned saturating pack, kept in words.
KRO_INLINE __m256i pack(__m256i v) { return _mm256_min_epi16(_mm256_max_epi16(v, _mm256_setzero_si256()), k(255)); }
}  // namespace v16

KRO_INLINE W3 vecF1(__m256i R, __m256i G, __m256i B) {
    using namespace v16;
    const __m256i y = _mm256_srli_epi16(
        _mm256_adds_epu16(_mm256_adds_epu16(_mm256_mulhi_epu16(_mm256_slli_epi16(R, 8), k(19595)),
                                            _mm256_mulhi_epu16(_mm256_slli_epi16(G, 8), k(38469))),
                          _mm256_mulhi_epu16(_mm256_slli_epi16(B, 8), k(7471))),
        8);
    const __m256i r7 = _mm256_slli_epi16(R, 7), g7 = _mm256_slli_epi16(G, 7), b7 = _mm256_slli_epi16(B, 7);
    const __m256i u = _mm256_srai_epi16(add(add(mh(-4816, r7), mh(-9469, g7)), mh(14286, b7)), 6);
    const __m256i v = _mm256_srai_epi16(add(add(mh(20152, r7), mh(-16875, g7)), mh(-3276, b7)), 6);
    return {y, pack(add(u, k(128))), pack(add(v, k(128)))};
}

KRO_INLINE W3 vecF7(__m256i R, __m256i G, __m256i B) {
    using namespace v16;
    const __m256i w1 = add(add(add(mh(9798, _mm256_slli_epi16(R, 2)), mh(19235, _mm256_slli_epi16(G, 2))),
                               mh(3736, _mm256_slli_epi16(B, 2))),
                           k(1));
    const __m256i u = add(mh(16121, sub(_mm256_slli_epi16(B, 1), w1)), k(128));
    const __m256i v = add(mh(28737, sub(_mm256_slli_epi16(R, 1), w1)), k(128));
    return {_mm256_srai_epi16(w1, 1), pack(u), pack(v)};
}

KRO_INLINE W3 vecI1(__m256i Y, __m256i U, __m256i V) {
    using namespace v16;
    const __m256i u = _mm256_sub_epi16(_mm256_slli_epi16(U, 3), k(1024));
    const __m256i v = _mm256_sub_epi16(_mm256_slli_epi16(V, 3), k(1024));
    return {pack(add(Y, mh(9339, v))), pack(add(add(Y, mh(-3228, u)), mh(-4760, v))), pack(add(Y, mh(16646, u)))};
}

KRO_INLINE W3 vecI4(__m256i Y, __m256i U, __m256i V) {
    using namespace v16;
    const __m256i u = _mm256_sub_epi16(_mm256_slli_epi16(U, 4), k(2048));
    const __m256i v = _mm256_sub_epi16(_mm256_slli_epi16(V, 4), k(2048));
    const __m256i y2 = _mm256_slli_epi16(Y, 1);
    return {pack(_mm256_srai_epi16(add(y2, mh(9338, v)), 1)),
            pack(_mm256_srai_epi16(add(add(y2, mh(-3227, u)), mh(-4759, v)), 1)),
            pack(_mm256_srai_epi16(add(y2, mh(16645, u)), 1))};
}

KRO_INLINE W3 vecI6(__m256i Y, __m256i U, __m256i V) {
    using namespace v16;
    const __m256i u = _mm256_sub_epi16(_mm256_slli_epi16(U, 7), k(16384));
    const __m256i v = _mm256_sub_epi16(_mm256_slli_epi16(V, 7), k(16384));
    const __m256i y8 = _mm256_slli_epi16(Y, 3);
    return {pack(_mm256_srai_epi16(add(add(y8, mh(4669, v)), k(4)), 3)),
            pack(_mm256_srai_epi16(add(sub(sub(y8, mh(2380, v)), mh(1614, u)), k(4)), 3)),
            pack(_mm256_srai_epi16(add(add(y8, mh(8323, u)), k(4)), 3))};
}

namespace v32 {
KRO_INLINE __m512i k(int c) { return _mm512_set1_epi32(c); }
KRO_INLINE __m512i mul(int c, __m512i x) { return _mm512_mullo_epi32(x, k(c)); }
KRO_INLINE __m512i sum3(__m512i a, __m512i b, __m512i c) { return _mm512_add_epi32(_mm512_add_epi32(a, b), c); }
KRO_INLINE __m512i sra16(__m512i v) { return _mm512_srai_epi32(v, 16); }
KRO_INLINE __m512i clamp(__m512i v) { return _mm512_min_epi32(_mm512_max_epi32(v, _mm512_setzero_si512()), k(255)); }
KRO_INLINE __m512i lowByte(__m512i v) { return _mm512_and_si512(v, k(255)); }
}  // namespace v32

KRO_INLINE D3 vecF2(__m512i R, __m512i G, __m512i B) {
    using namespace v32;
    const __m512i y = sra16(sum3(mul(19595, R), mul(38470, G), mul(7471, B)));
    const __m512i t = sra16(_mm512_add_epi32(sum3(mul(-19595, R), mul(-38470, G), mul(58065, B)), k(32767)));
    const __m512i s = sra16(_mm512_add_epi32(sum3(mul(45941, R), mul(-38470, G), mul(-7471, B)), k(32767)));
    return {y, lowByte(_mm512_add_epi32(sra16(mul(32244, t)), k(128))),
            clamp(_mm512_add_epi32(sra16(mul(57475, s)), k(128)))};
}

KRO_INLINE D3 vecF3(__m512i R, __m512i G, __m512i B) {
    using namespace v32;
    const __m512i S = sum3(mul(19595, R), mul(38470, G), mul(7471, B));
    const __m512i y = sra16(_mm512_add_epi32(S, k(32768)));
    const __m512i bu = sra16(_mm512_add_epi32(_mm512_sub_epi32(_mm512_slli_epi32(B, 16), S), k(32768)));
    const __m512i rv = sra16(_mm512_add_epi32(_mm512_sub_epi32(_mm512_slli_epi32(R, 16), S), k(32768)));
    return {y, lowByte(_mm512_add_epi32(sra16(mul(32244, bu)), k(128))),
            clamp(_mm512_add_epi32(sra16(mul(57475, rv)), k(128)))};
}

KRO_INLINE D3 vecF4(__m512i R, __m512i G, __m512i B) {
    using namespace v32;
    const __m512i y = sra16(sum3(mul(19595, R), mul(38469, G), mul(7471, B)));
    const __m512i u = _mm512_srai_epi32(sum3(mul(-4816, R), mul(-9469, G), mul(14286, B)), 15);
    const __m512i v = _mm512_srai_epi32(sum3(mul(20152, R), mul(-16875, G), mul(-3276, B)), 15);
    return {y, lowByte(_mm512_add_epi32(u, k(128))), clamp(_mm512_add_epi32(v, k(128)))};
}

// The inverse 32-bit forms differ only in their weights and constants.
struct InvWeights { int rv, rc, gu, gv, gc, bu, bc, centre; };
inline constexpr InvWeights kI2{74711, -9530240, -25821, -38076, 8178816, 133169, -17012864, 0};
inline constexpr InvWeights kI3{74710, -9562880, -25820, -38075, 8178560, 133168, -17045504, 0};
inline constexpr InvWeights kI7{74711, 32768, -25821, -38076, 32768, 133169, 32768, 128};

KRO_INLINE D3 vecInv32(const InvWeights& w, __m512i Y, __m512i U, __m512i V) {
    using namespace v32;
    const __m512i y = _mm512_slli_epi32(Y, 16);
    const __m512i u = _mm512_sub_epi32(U, k(w.centre)), v = _mm512_sub_epi32(V, k(w.centre));
    return {clamp(sra16(sum3(y, mul(w.rv, v), k(w.rc)))),
            clamp(sra16(_mm512_add_epi32(sum3(y, mul(w.gu, u), mul(w.gv, v)), k(w.gc)))),
            clamp(sra16(sum3(y, mul(w.bu, u), k(w.bc))))};
}
KRO_INLINE D3 vecI2(__m512i Y, __m512i U, __m512i V) { return vecInv32(kI2, Y, U, V); }
KRO_INLINE D3 vecI3(__m512i Y, __m512i U, __m512i V) { return vecInv32(kI3, Y, U, V); }
KRO_INLINE D3 vecI7(__m512i Y, __m512i U, __m512i V) { return vecInv32(kI7, Y, U, V); }

}  // namespace k0::yuv
