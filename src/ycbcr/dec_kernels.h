// Row kernels shared by the subsampled YCbCr-to-RGB members: a short form in
// vector blocks over the first pixels of a row, a long form on the remaining
// complete cells, one row or (4:2:0) a pair of rows sharing chroma; and the
// entry checks of the family.
#pragma once
#include <algorithm>

#include "entry.h"
#include "ycbcr/dec_vec.h"

namespace k0::ycbcr {

// A scalar form as a callable that the loops inline.
#define K0_FORM(f) [](int y, int cb, int cr) { return f(y, cb, cr); }

// ---- one row ------------------------------------------------------------------------------

// The short form of `Pieces` on pixels [0, nShort), the long form on the
// complete pairs from there to `pairs`.
template <class Pieces, class S, class D, class Form>
KRO_INLINE void shortThenLongPairs(const S& s, const D& d, int nShort, int pairs, Form form) {
    wordStage(s, d, 0, nShort, [](__m512i y, __m512i cb, __m512i cr) { return Pieces::full(y, cb, cr); });
    for (int i = nShort >> 1; i < pairs; ++i) {
        const int cb = s.cb(i), cr = s.cr(i);
        d.put(2 * i, form(s.y(2 * i), cb, cr));
        d.put(2 * i + 1, form(s.y(2 * i + 1), cb, cr));
    }
}

// ---- a pair of rows -------------------------------------------------------------------------

// Rows 2j and 2j + 1 of a 4:2:0 image: luma rows, their chroma row, their
// destination rows.
template <class C, class D>
struct RowPair {
    LumaPlane y0, y1;
    C c;
    D d0, d1;
};

// The short form on pixels [0, nShort) of both rows, the chroma terms
// computed once for the two.
template <class Pieces, class C, class D>
KRO_INLINE void shortBlocks420(const RowPair<C, D>& r, int nShort) {
    blocksOf<32>(0, nShort, [&](int x, unsigned n) KRO_INLINE_LAMBDA {
        const V2 ch = r.c.words(x, n);
        const V3 t = Pieces::chroma(ch.cb, ch.cr);
        r.d0.storeWords(x, Pieces::join(Pieces::luma(r.y0.words(x, n)), t), n);
        r.d1.storeWords(x, Pieces::join(Pieces::luma(r.y1.words(x, n)), t), n);
    });
}

// One cell of both rows in a scalar form, chroma given.
template <class C, class D, class Form>
KRO_INLINE void cell420(const RowPair<C, D>& r, int i, int cbEven, int crEven, int cbOdd, int crOdd, Form form) {
    r.d0.put(2 * i, form(r.y0.y(2 * i), cbEven, crEven));
    r.d0.put(2 * i + 1, form(r.y0.y(2 * i + 1), cbOdd, crOdd));
    r.d1.put(2 * i, form(r.y1.y(2 * i), cbEven, crEven));
    r.d1.put(2 * i + 1, form(r.y1.y(2 * i + 1), cbOdd, crOdd));
}

// The short form on pixels [0, nShort), the long form on the complete cells
// from there to `pairs`.
template <class Pieces, class C, class D, class Form>
KRO_INLINE void shortThenLong420(const RowPair<C, D>& r, int nShort, int pairs, Form form) {
    shortBlocks420<Pieces>(r, nShort);
    for (int i = nShort >> 1; i < pairs; ++i) {
        const int cb = r.c.cb(i), cr = r.c.cr(i);
        cell420(r, i, cb, cr, cb, cr, form);
    }
}

// ---- entry checks -------------------------------------------------------------------------

KRO_INLINE bool sizeBelow(KroiSize roi, int minWidth) { return roi.width < minWidth || roi.height < 1; }
KRO_INLINE KroStatus oddSize(KroiSize roi) { return ((roi.width | roi.height) & 1) ? kroWarnOddSize : kroOk; }

}  // namespace k0::ycbcr
