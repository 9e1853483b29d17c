// Bounds for a pattern query on an index of sort keys.
//
// A text that a pattern matches at some strength has, element for element,
// the first-level weights of the pattern's fixed start (the part in front of
// the first wildcard): the comparison can't pass a difference there.  So the
// keys of all such texts begin with the first level of the key of that start,
// and lie between those bytes and the same bytes followed by a byte above
// every byte that can follow them in a key.  A pattern without wildcards
// matches exactly the texts that compare equal to it, whose keys are the
// pattern's own key.
#ifndef NXTM_SQLITE_BOUNDS_H
#define NXTM_SQLITE_BOUNDS_H

#include <nxtm/nxtm.h>

namespace nxsqlite {

// Follows the first level of a key; above every byte that starts a code of
// the first level and above the byte that closes it.
constexpr unsigned char kAboveEveryKey = 0xFF;

struct PatternStart {
  uint32_t bytes;  // the length of the fixed start in bytes
  bool wildcard;   // false: the whole pattern is plain text
};

// The fixed start of a UTF-16 pattern in the memory form, closed by a zero
// unit.  With NxCMP_EXACT a pattern has no wildcards.
inline PatternStart FixedStart(unsigned char codeSet, unsigned char language, const char* pattern,
                               unsigned short cmpOp, unsigned char format) {
  uint32_t units = 0;
  while (pattern[2 * units] != 0 || pattern[2 * units + 1] != 0) ++units;
  if ((cmpOp & NxCMP_EXACT) == 0) {
    unsigned short byteOffset = 65535;
    const unsigned short at =
        FindWildcard(codeSet, language, pattern, 0, 65535, &byteOffset, format);
    if (at != 65535 && byteOffset != 65535) return {byteOffset, true};
  }
  return {2 * units, false};
}

}  // namespace nxsqlite

#endif
