// Hashing of values in memory and disk form.
//
// NxTypeMgr::Hash gives one 32-bit number for an array of `count` values:
// the exclusive or of one hash per element, times NxHASH_MULTIPLIER.  The
// order of the elements doesn't matter, and two equal elements cancel.  With a `length`
// other than 0 only that many bytes are read; `status` is then 2101 when
// they end before the last element, and the hash is that of the elements
// reached.  A string key cut at 254 or more bytes of text, which no index
// writes, gives 0 with status -2999.
//
// A hash follows the exact comparison: values that compare equal only
// under a lenient operator (case, accents) may hash apart, and so do the
// floats +0.0 and -0.0.
#ifndef NXTM_NXTYPHASH_H
#define NXTM_NXTYPHASH_H

#include <nxtm/nxtmdefs.h>

enum : uint32_t {
  // The factor of the last step.
  NxHASH_MULTIPLIER = 1103515245u,
  // The hash of a null element, and what HashString gives for a null string.
  NxHASH_NULL = 0xFEFE7575u,
};

#endif
