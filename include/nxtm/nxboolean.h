// NxBoolean: true, false or null in one byte.
#ifndef NXTM_NXBOOLEAN_H
#define NXTM_NXBOOLEAN_H

#include <nxtm/nxtmdefs.h>

// A truth value with a third state, null, for a persistent field that may be
// absent.  The byte is 0 for false, 1 for true and 255 for null; a byte read
// from disk may hold anything else, which counts as true for operator== and
// as itself (a signed byte) for operator>.  Null orders below false and
// equals only null.  There is no operator!= and there are no logical
// operators: null is a state for comparison and storage only.
class NXTM_API NxBoolean {
 public:
  enum : unsigned char { False = 0, True = 1, Null = 255 };

  NxBoolean() : value(False) {}
  // 1 for any number but 0: a number never makes a null.
  NxBoolean(long n) : value(n != 0 ? True : False) {}
  NxBoolean& operator=(long n) {
    value = n != 0 ? True : False;
    return *this;
  }

  // Comparisons: 1 or 0.
  int operator==(const NxBoolean& other) const;
  int operator>(const NxBoolean& other) const;
  int operator<(const NxBoolean& other) const { return !(*this > other) && !(*this == other); }
  int operator==(long n) const { return *this == NxBoolean(n); }
  int operator>(long n) const { return *this > NxBoolean(n); }
  int operator<(long n) const { return *this < NxBoolean(n); }

  int IsNullValue() const { return value == Null; }
  int SetNullValue() {
    value = Null;
    return 0;
  }

  unsigned char value;  // 0 false, 1 true, 255 null
};

static_assert(sizeof(NxBoolean) == 1, "NxBoolean is one byte");

#endif
