// Sort keys: byte strings whose memcmp order is the collation order of
// NxStrCmp, for sorting and for indexes that only know how to compare bytes.
#ifndef NXTM_NXSORTKEY_H
#define NXTM_NXSORTKEY_H

#include <nxtm/nxtmdefs.h>

// Writes the sort key of a text at the strength that `cmpOp` names and
// returns its length in bytes.  For any two texts a and b,
// memcmp(key(a), key(b)), with the shorter key first when one is the start
// of the other, has the sign of
//   NxStrCmp(a, b, cmpOp | NxCMP_NO_WILDCARDS, maxLength -1)
// and two keys are equal exactly when NxStrCmp gives 0.
//
// `cmpOp` bits: NxCMP_IGNORE_CASE, NxCMP_IGNORE_ACCENTS, NxCMP_IGNORE_SPACES,
// NxCMP_IGNORE_SYMBOLS, NxCMP_EXACT; NxCMP_NO_WILDCARDS is implied.  The key
// holds the levels in the order in which NxStrCmp decides them: the letters,
// digits and other characters that count, of the whole text; then, as the
// strength keeps them, the accents (the last difference decides), the case
// (the first difference decides, lower case first) and the spaces and
// symbols that the comparison passes over (the last difference decides).
//
// The text is read as NxStrCmp reads it: code set 255 is the default 8-bit
// code set, code set 0 the native one, language 255 the default language,
// format 255 is 1, a null pointer is an empty text, and no more than 65535
// collation elements count.  A null value (language 254, or code set 254 with
// language 0) has the empty key, below every text.  Texts without a code set
// are ordered by collation here; NxStrCmp compares two of them by bytes (and
// by collation against texts with a code set, so it orders no mix of both).
// Order text (code set 254) is read as its orders: its keys agree with
// NxStrCmp against other order text, not against text that NxStrCmp reads
// with the state held still because the other side is order text.
//
// At most `size` bytes are written to `key`: the start of the key when it is
// longer, which still orders correctly against other keys cut at the same
// length.  `key` may be null with `size` 0 to ask for the length.  Nothing is
// allocated.
NXTM_API uint32_t NxStrSortKey(unsigned char codeSet, unsigned char language, const char* text,
                               unsigned short cmpOp, unsigned char format, unsigned char* key,
                               uint32_t size);

// The length of the first level of a sort key made with `cmpOp`, without
// its closing byte: the bytes that the characters that count decide.  Texts
// whose first elements that count are equal at the strength have keys that
// begin with the same first-level bytes, so the first level of the key of a
// text's start bounds the keys of all texts that begin with it.  With
// NxCMP_EXACT the key has one level, and the result is `length`.
NXTM_API uint32_t NxStrSortKeyFirstLevel(const unsigned char* key, uint32_t length,
                                         unsigned short cmpOp);

// Writes the first level of a sort key made with `cmpOp` from the orders of
// a key record, and returns its length in bytes.  A key record is what the
// "NxString" row's Translate writes in key form and what its EvalAndBound
// builds as narrowed keys: a length field, code set 254, the collation state
// (bit 7: the key ended at a change of state), and orders in that state.
// Fields and orders are in the byte order of the low four bits of `format`.
// `length` is the bytes at hand: a cut key, whose length field says more
// than there is, is read up to `length`.  The orders are read up to the
// first zero order; any other order, the highest character that closes a
// narrowed high key included, is taken as it stands.
//
// For the key record of a whole text the result is the text's first level,
// the first NxStrSortKeyFirstLevel bytes of NxStrSortKey at the same
// `cmpOp` (with NxCMP_EXACT, whose key has one level, the whole key).  For a
// key that holds the start of a text (cut, ended at a change of state, or
// narrowed to the part in front of a wildcard) it is the first level of
// that start, with which the sort keys of all texts that begin with it
// begin.  The level is not closed.  A record of another code set gives 0.
// At most `size` bytes are written to `key`; `key` may be null with `size`
// 0.  Nothing is allocated.
NXTM_API uint32_t NxStrSortKeyFirstLevelFromKey(const void* record, uint32_t length,
                                                unsigned short cmpOp, unsigned char format,
                                                unsigned char* key, uint32_t size);

#endif
