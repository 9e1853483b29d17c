// Comparators of the plain scalar rows.  All share one element walk: the
// operands are arrays of `count` elements, and a stated byte length may end
// an operand early, which the walk reports with status 2101.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <nxtm/nxtypcmp.h>
#include <nxtm/nxtypemgr.h>

namespace {

enum : int { kPartial = 2101 };

inline int32_t Sign(bool less, bool greater) {
  return less ? -1 : (greater ? 1 : 0);
}

// The bits of one element with its bytes reversed.
inline uint16_t Reversed(uint16_t w) {
  return __builtin_bswap16(w);
}
inline uint32_t Reversed(uint32_t w) {
  return __builtin_bswap32(w);
}
inline uint64_t Reversed(uint64_t w) {
  return __builtin_bswap64(w);
}

template <size_t N>
struct BitsOf;
template <>
struct BitsOf<2> {
  using Type = uint16_t;
};
template <>
struct BitsOf<4> {
  using Type = uint32_t;
};
template <>
struct BitsOf<8> {
  using Type = uint64_t;
};

// Reads one element of type T at `p`: directly in the forms 8 and 1 (native
// on this least-significant-byte-first machine), with its bytes reversed in
// form 2 (most significant byte first, as the base library writes it), and
// through the base library's byte-order function of the type in any other
// form.  Forms 1, 2 and 8 thus cost no call.
template <typename T, NxStoreFunc Decode>
inline T Read(const unsigned char* p, unsigned char form) {
  static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "forms 1 and 8 are read directly");
  T v;
  if (form == 8 || form == 1) {
    std::memcpy(&v, p, sizeof v);
  } else if (form == 2 && sizeof(T) > 1) {
    typename BitsOf<sizeof(T)>::Type bits;
    std::memcpy(&bits, p, sizeof bits);
    bits = Reversed(bits);
    std::memcpy(&v, &bits, sizeof v);
  } else {
    Decode(&v, p, form, 1);
  }
  return v;
}

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

// The element walk.  `Element` compares the elements at two positions and
// gives -1, 0 or 1; `width` is the element width S.
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

// The walk over elements of type T that Read<T, Decode> reads and `order`
// compares (-1, 0 or 1), out of line.
template <typename T, NxStoreFunc Decode, typename Order>
__attribute__((noinline)) int32_t WalkAll(uint32_t width, unsigned char form, uint32_t length1,
                                          void* value1, uint32_t length2, void* value2,
                                          uint32_t count, int& status, Order order) {
  return Walk(width, length1, value1, length2, value2, count, status,
              [form, order](const unsigned char* a, const unsigned char* b) {
                return order(Read<T, Decode>(a, form), Read<T, Decode>(b, form));
              });
}

// The same, with the common key inline: one element in a form read
// without a call.
template <typename T, NxStoreFunc Decode, typename Order>
inline int32_t WalkValues(uint32_t width, unsigned char form, uint32_t length1, void* value1,
                          uint32_t length2, void* value2, uint32_t count, int& status,
                          Order order) {
  if (count == 1 && (form == 8 || form == 1 || form == 2)) {
    status = 0;
    return order(Read<T, Decode>(static_cast<const unsigned char*>(value1), form),
                 Read<T, Decode>(static_cast<const unsigned char*>(value2), form));
  }
  return WalkAll<T, Decode>(width, form, length1, value1, length2, value2, count, status, order);
}

template <typename T>
inline int32_t Order(T x, T y) {
  return Sign(x<y, x> y);
}

template <typename T, NxStoreFunc Decode>
int32_t WalkOrdered(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                    void* value2, uint32_t count, int& status) {
  return WalkValues<T, Decode>(sizeof(T), format & 0x0F, length1, value1, length2, value2, count,
                               status, Order<T>);
}

// Floats: a NaN orders before everything, on either side; no comparison
// with a NaN is 0.  Values are widened to double first.
template <typename T>
inline int32_t FloatOrder(T x, T y) {
  const double a = static_cast<double>(x);
  const double b = static_cast<double>(y);
  if (a < b || a != a || b != b) return -1;
  return a > b ? 1 : 0;
}

template <typename T, NxStoreFunc Decode>
int32_t WalkFloat(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                  void* value2, uint32_t count, int& status) {
  return WalkValues<T, Decode>(sizeof(T), format & 0x0F, length1, value1, length2, value2, count,
                               status, FloatOrder<T>);
}

// int and unsigned: 4 bytes in memory; on disk the width the base library
// gives for the format (needed only to step to a second element).  Both
// decode with IntLoad; int compares the decoded words as signed.
inline int32_t SignedOrder(uint32_t x, uint32_t y) {
  return Order(static_cast<int32_t>(x), static_cast<int32_t>(y));
}

template <bool Signed>
int32_t WalkInt(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                void* value2, uint32_t count, int& status) {
  const unsigned char form = format & 0x0F;
  if (count == 1 && (form == 8 || form == 1 || form == 2)) {
    status = 0;
    const uint32_t x = Read<uint32_t, IntLoad>(static_cast<const unsigned char*>(value1), form);
    const uint32_t y = Read<uint32_t, IntLoad>(static_cast<const unsigned char*>(value2), form);
    return Signed ? SignedOrder(x, y) : Order(x, y);
  }
  const uint32_t width = form == 8 ? 4u : IntSizeGet(nullptr, 8, form, 1);
  return WalkAll<uint32_t, IntLoad>(width, form, length1, value1, length2, value2, count, status,
                                    Signed ? SignedOrder : Order<uint32_t>);
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
