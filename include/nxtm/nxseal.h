// NxSeal: a 48-bit number that sorts as bytes.
//
// A seal is an unsigned number of the width of an object number, with no
// null value.  It is taken from an NxObjId (the object number, without the
// block) or from the low 48 bits of an NxInt64, and read back as an NxInt64,
// which is then never negative.  Its text is the number in decimal.
//
// On disk a seal is six bytes, most significant first, in every format
// (format 1 included): keys of this type sort as plain bytes, and the row
// compares disk keys byte by byte.
#ifndef NXTM_NXSEAL_H
#define NXTM_NXSEAL_H

#include <nxtm/nxint64.h>
#include <nxtm/nxobjid.h>
#include <nxtm/nxstring.h>
#include <nxtm/nxtmdefs.h>

class NXTM_API NxSeal {
 public:
  NxSeal() : word0(0), word1(0), word2(0) {}
  NxSeal(const NxSeal&) = default;
  NxSeal& operator=(const NxSeal&) = default;

  // The 48-bit object number: `high`, then `low`.  The block is dropped.
  NxSeal& ConvertFrom(const NxObjId& id);
  // The low 48 bits; the upper 16 bits of the high word are dropped, so -1
  // sets every bit.
  NxSeal& ConvertFrom(const NxInt64& number);
  // The number, 0 to 2^48 - 1, into `result`; returns it.
  NxInt64& ConvertTo(NxInt64& result) const;

  // Three-way: the difference of word0, then of word1, then of word2.  Only
  // the sign has a meaning.
  int operator!=(const NxSeal& other) const;
  // 1 when all three words are equal, else 0.
  int operator==(const NxSeal& other) const { return (*this != other) == 0; }

  // Appends the number in decimal to `result` and returns it.
  NxString& PrintToNxString(NxString& result) const;
  // An empty text gives 0.  Otherwise the text is read as an NxInt64 ("%S":
  // decimal, octal behind "0", hexadecimal behind "0x") and its low 48 bits
  // taken; text that is no number gives every bit set.
  NxSeal& ScanFromNxString(const NxString& text);

  uint16_t word0;  // bits 47 to 32
  uint16_t word1;  // bits 31 to 16
  uint16_t word2;  // bits 15 to 0
};

static_assert(sizeof(NxSeal) == 6, "a seal is three 16-bit words");

#endif
