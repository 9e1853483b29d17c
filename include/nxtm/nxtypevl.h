// Range evaluation: the estimate of a key range and its narrowed bounds.
//
// NxTypeMgr::EvalAndBound asks a type which part of the index range between
// bounds->low and bounds->high holds keys that stand in the relation `op` to
// `value` (all keys in disk form), and narrows the key range `narrowed` to
// what the relation allows.  The bits of `op`: 1 equal, 2 less, 4 greater
// (so 3 is less or equal, 5 greater or equal, 6 unequal), 8 set by rows
// whose value holds a wildcard, 0x7FF0 the string comparison bits, 0x8000
// passed through.  Keys put into `narrowed` come from malloc and belong to
// the caller.
#ifndef NXTM_NXTYPEVL_H
#define NXTM_NXTYPEVL_H

#include <nxtm/nxtmdefs.h>

// The length of the part of the range boundLow..boundHigh whose keys stand
// in the relation `op` (masked with 0x800F) to the value
// valueLow..valueHigh, with `unit` the distance of two neighbouring keys.
// For integer keys with unit 1 this counts the keys.  Computed in doubles;
// a part that comes out infinite or NaN counts as the largest finite double.
NXTM_API double RangeArea(unsigned short op, double valueLow, double valueHigh, double boundLow,
                          double boundHigh, double unit);

// Fills the open (null) ends of `narrowed` that `op` (masked with 0x800F)
// allows with copies of the `size` bytes of `value`: `low` unless bit 2
// (less) is set, `high` unless bit 4 (greater) is set, each with its length.
// An end already set stays as it is.  Nothing happens when `narrowed` is
// null.  A failed malloc goes to NxCallMemoryHandler; if that returns and
// the memory still can't be had, the end stays open.  `size` must not pass
// NxINDEX_MAX_KEYLEN: the lengths hold 8 bits.
NXTM_API void NarrowBounds(NxIdxBounds* narrowed, void* value, unsigned short op, uint32_t size);

#endif
