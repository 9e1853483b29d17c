// Comparators of the plain scalar rows.  All share one element walk: the
// operands are arrays of `count` elements, and a stated byte length may end
// an operand early, which the walk reports with status 2101.
#include <cstring>

#include <nxtm/nxtypcmp.h>
#include <nxtm/nxtypemgr.h>

namespace {

enum : int { kPartial = 2101 };

inline int32_t Sign(bool less, bool greater) {
  return less ? -1 : (greater ? 1 : 0);
}

// Reads one element of type T at `p`: directly in the forms 8 and 1 (native
// on this least-significant-byte-first machine), otherwise decoded by the
// base library's byte-order function of the type.
template <typename T, NxStoreFunc Decode>
inline T Read(const unsigned char* p, unsigned char form) {
  T v;
  if (form == 8 || form == 1) {
    std::memcpy(&v, p, sizeof v);
  } else {
    Decode(&v, p, form, 1);
  }
  return v;
}

// The element walk.  `Element` compares the elements at two positions and
// gives -1, 0 or 1; `width` is the element width S.
template <typename Element>
int32_t Walk(uint32_t width, uint32_t length1, void* value1, uint32_t length2, void* value2,
             uint32_t count, int& status, Element element) {
  status = 0;
  if (count == 0) return 0;
  const uint64_t end1 = length1 != 0 ? length1 : static_cast<uint64_t>(width) * count;
  const uint64_t end2 = length2 != 0 ? length2 : static_cast<uint64_t>(width) * count;
  const unsigned char* base1 = static_cast<const unsigned char*>(value1);
  const unsigned char* base2 = static_cast<const unsigned char*>(value2);
  uint64_t at1 = 0;
  uint64_t at2 = 0;
  for (uint32_t done = 1;; ++done) {
    const int32_t result = element(base1 + at1, base2 + at2);
    if (done >= count) return result;
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
  }
}

template <typename T, NxStoreFunc Decode>
int32_t WalkOrdered(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                    void* value2, uint32_t count, int& status) {
  const unsigned char form = format & 0x0F;
  return Walk(sizeof(T), length1, value1, length2, value2, count, status,
              [form](const unsigned char* a, const unsigned char* b) {
                const T x = Read<T, Decode>(a, form);
                const T y = Read<T, Decode>(b, form);
                return Sign(x<y, x> y);
              });
}

// Floats: a NaN orders before everything, on either side; no comparison
// with a NaN is 0.  Values are widened to double first.
inline int32_t FloatOrder(double a, double b) {
  if (a < b || a != a || b != b) return -1;
  return a > b ? 1 : 0;
}

template <typename T, NxStoreFunc Decode>
int32_t WalkFloat(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                  void* value2, uint32_t count, int& status) {
  const unsigned char form = format & 0x0F;
  return Walk(sizeof(T), length1, value1, length2, value2, count, status,
              [form](const unsigned char* a, const unsigned char* b) {
                return FloatOrder(static_cast<double>(Read<T, Decode>(a, form)),
                                  static_cast<double>(Read<T, Decode>(b, form)));
              });
}

// int and unsigned: 4 bytes in memory; on disk the width the base library
// gives for the format.  Both decode with IntLoad.
template <bool Signed>
int32_t WalkInt(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                void* value2, uint32_t count, int& status) {
  const unsigned char form = format & 0x0F;
  const uint32_t width = form == 8 ? 4u : IntSizeGet(nullptr, 8, form, 1);
  return Walk(width, length1, value1, length2, value2, count, status,
              [form](const unsigned char* a, const unsigned char* b) {
                const uint32_t x = Read<uint32_t, IntLoad>(a, form);
                const uint32_t y = Read<uint32_t, IntLoad>(b, form);
                if (Signed) {
                  const int32_t sx = static_cast<int32_t>(x);
                  const int32_t sy = static_cast<int32_t>(y);
                  return Sign(sx<sy, sx> sy);
                }
                return Sign(x<y, x> y);
              });
}

// Single bytes: the format is not looked at.
template <typename T>
int32_t WalkByte(uint32_t length1, void* value1, uint32_t length2, void* value2, uint32_t count,
                 int& status) {
  return Walk(1, length1, value1, length2, value2, count, status,
              [](const unsigned char* a, const unsigned char* b) {
                const T x = static_cast<T>(*a);
                const T y = static_cast<T>(*b);
                return Sign(x<y, x> y);
              });
}

}  // namespace

int32_t CharCompare(unsigned char, uint32_t length1, void* value1, uint32_t length2, void* value2,
                    unsigned short, uint32_t count, int& status) {
  return WalkByte<signed char>(length1, value1, length2, value2, count, status);
}

int32_t ByteCompare(unsigned char, uint32_t length1, void* value1, uint32_t length2, void* value2,
                    unsigned short, uint32_t count, int& status) {
  return WalkByte<unsigned char>(length1, value1, length2, value2, count, status);
}

int32_t ShortCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                     void* value2, unsigned short, uint32_t count, int& status) {
  return WalkOrdered<int16_t, ShortStore>(format, length1, value1, length2, value2, count, status);
}

int32_t WordCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                    void* value2, unsigned short, uint32_t count, int& status) {
  return WalkOrdered<uint16_t, ShortStore>(format, length1, value1, length2, value2, count, status);
}

int32_t IntCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                   void* value2, unsigned short, uint32_t count, int& status) {
  return WalkInt<true>(format, length1, value1, length2, value2, count, status);
}

int32_t UnsignedCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                        void* value2, unsigned short, uint32_t count, int& status) {
  return WalkInt<false>(format, length1, value1, length2, value2, count, status);
}

int32_t LongCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                    void* value2, unsigned short, uint32_t count, int& status) {
  return WalkOrdered<int32_t, LongStore>(format, length1, value1, length2, value2, count, status);
}

int32_t DwordCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                     void* value2, unsigned short, uint32_t count, int& status) {
  return WalkOrdered<uint32_t, LongStore>(format, length1, value1, length2, value2, count, status);
}

int32_t FloatCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                     void* value2, unsigned short, uint32_t count, int& status) {
  return WalkFloat<float, FloatStore>(format, length1, value1, length2, value2, count, status);
}

int32_t DoubleCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                      void* value2, unsigned short, uint32_t count, int& status) {
  return WalkFloat<double, DoubleStore>(format, length1, value1, length2, value2, count, status);
}
