// The null-capable scalars: a plain number and a null flag.
#ifndef NXTM_NXNULL_H
#define NXTM_NXNULL_H

#include <nxtm/nxint64.h>
#include <nxtm/nxtmdefs.h>

// One element of the rows NxNull_char ... NxNull_NxInt64 in memory: the
// value, then the flag.  A new element is null, and a null element holds the
// value 0.  On disk the flag byte (1 null, 0 not) stands in front of the
// value; the rows' Store and Load move between the two forms.
template <typename T>
struct NxNull {
  NxNull() : value(T(0)), isNull(1) {}
  NxNull(const T& v) : value(v), isNull(0) {}

  int IsNullValue() const { return isNull; }
  int SetNullValue() {
    value = T(0);
    isNull = 1;
    return 0;
  }

  T value;
  signed char isNull;  // 1 null, 0 a value
};

// The element types of the eleven rows.  The `long` of the stored world is
// 32 bits wide.
typedef NxNull<signed char> NxNull_char;
typedef NxNull<unsigned char> NxNull_uchar;
typedef NxNull<int16_t> NxNull_short;
typedef NxNull<uint16_t> NxNull_ushort;
typedef NxNull<int32_t> NxNull_int;
typedef NxNull<uint32_t> NxNull_unsigned;
typedef NxNull<int32_t> NxNull_long;
typedef NxNull<uint32_t> NxNull_ulong;
typedef NxNull<float> NxNull_float;
typedef NxNull<double> NxNull_double;
typedef NxNull<NxInt64> NxNull_NxInt64;

static_assert(sizeof(NxNull_char) == 2 && sizeof(NxNull_short) == 4 && sizeof(NxNull_long) == 8 &&
                  sizeof(NxNull_float) == 8 && sizeof(NxNull_double) == 16 &&
                  sizeof(NxNull_NxInt64) == 12,
              "the memory lengths of the null-capable rows");

#endif
