// The element walk shared by the fixed-width comparators (nxtypcmp.cpp, the
// null-capable rows in nxtypes.cpp).  Not installed.
#ifndef NXTM_SRC_NXCMPWALK_H
#define NXTM_SRC_NXCMPWALK_H

#include <cstdint>

namespace nxcmp {

enum : int { kPartial = 2101 };

inline int32_t Sign(bool less, bool greater) {
  return less ? -1 : (greater ? 1 : 0);
}

// The operands are arrays of `count` elements of `width` bytes; a stated
// byte length (0: the whole array) may end one early.  `element` compares
// the elements at two positions.  The first pair is read whatever the
// lengths say.  After each pair the walk steps over both operands, and a
// next position at or behind an operand's end stops it with status 2101;
// the step comes before the look at the result, so a difference found with
// more elements due comes back with 2101 when an operand ran out.
// The element walk from the second element on: the first pair has given
// `result`, and more elements are due.  Out of line, so that the one-element
// compare of a key stays a few instructions long.
template <typename Element>
__attribute__((noinline)) int32_t WalkOn(int32_t result, uint32_t width, uint32_t length1,
                                         const unsigned char* base1, uint32_t length2,
                                         const unsigned char* base2, uint32_t count, int& status,
                                         Element element) {
  const uint64_t end1 = length1 != 0 ? length1 : static_cast<uint64_t>(width) * count;
  const uint64_t end2 = length2 != 0 ? length2 : static_cast<uint64_t>(width) * count;
  uint64_t at1 = 0;
  uint64_t at2 = 0;
  for (uint32_t done = 1;; ++done) {
    // Step over both operands; a position exactly at the end is outside.
    if (at1 + width < end1) {
      at1 += width;
      if (at2 + width < end2) {
        at2 += width;
      } else {
        status = kPartial;
      }
    } else {
      status = kPartial;
    }
    if (result != 0 || status != 0) return result;
    result = element(base1 + at1, base2 + at2);
    if (done + 1 >= count) return result;
  }
}

// The element walk itself.
template <typename Element>
inline int32_t Walk(uint32_t width, uint32_t length1, void* value1, uint32_t length2, void* value2,
                    uint32_t count, int& status, Element element) {
  status = 0;
  if (count == 0) return 0;
  const unsigned char* base1 = static_cast<const unsigned char*>(value1);
  const unsigned char* base2 = static_cast<const unsigned char*>(value2);
  const int32_t result = element(base1, base2);
  if (count == 1) return result;
  return WalkOn(result, width, length1, base1, length2, base2, count, status, element);
}


}  // namespace nxcmp

#endif
