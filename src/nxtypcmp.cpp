// The comparators of the Compare slot: the plain scalar rows, the temporal
// rows, NxInt64, NxBoolean and NxBlob.  All but the blob's share one element
// walk: the operands are arrays of `count` elements, and a stated byte
// length may end an operand early, which the walk reports with status 2101.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <nxtm/nxtm.h>

#include "nxcmpwalk.h"
#include "nxrows.h"

namespace {

using nxcmp::Sign;
using nxcmp::Walk;

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

// ---------------------------------------------------------------------------
// The temporal rows, NxInt64, NxBoolean and NxBlob.  A class row has two
// orders: memory elements go by the class's own operators, disk keys by
// their bytes, and the two are not always the same.

namespace {

// Memory elements are objects of the class, at the class's own alignment.
template <typename T>
inline const T& As(const unsigned char* p) {
  return *reinterpret_cast<const T*>(p);
}

inline int32_t SignedByteOrder(unsigned char a, unsigned char b) {
  const signed char x = static_cast<signed char>(a);
  const signed char y = static_cast<signed char>(b);
  return Sign(x<y, x> y);
}

// The first difference of `n` bytes taken as signed.
inline int32_t SignedBytesOrder(const unsigned char* a, const unsigned char* b, unsigned n) {
  for (unsigned i = 0; i < n; ++i)
    if (a[i] != b[i]) return SignedByteOrder(a[i], b[i]);
  return 0;
}

// A date on disk: the year in 16 bits (signed for NxDate, unsigned for
// d_Date), then month and day as signed bytes.  Only the second operand
// holds wildcards: a year of -1 (0xFF 0xFF whatever the byte order) lets
// the month and day decide, a month or day of 0xFF drops that field.  With
// NxCMP_NO_WILDCARDS every field is taken literally.
template <typename Year>
int32_t DiskDateOrder(unsigned char form, const unsigned char* a, const unsigned char* b,
                      unsigned short cmpOp) {
  const Year y1 = Read<Year, ShortStore>(a, form);
  const Year y2 = Read<Year, ShortStore>(b, form);
  const int32_t years = Sign(y1<y2, y1> y2);
  const bool literal = (cmpOp & NxCMP_NO_WILDCARDS) != 0;
  if (years != 0 && (literal || b[0] != 0xFF || b[1] != 0xFF)) return years;
  if (!literal) {
    const bool anyMonth = b[2] == 0xFF;
    const bool anyDay = b[3] == 0xFF;
    if (anyMonth && anyDay) return 0;
    if (anyMonth) return SignedByteOrder(a[3], b[3]);
    if (anyDay) return SignedByteOrder(a[2], b[2]);
  }
  return SignedBytesOrder(a + 2, b + 2, 2);
}

// Int64 elements: read directly in the forms 8 and 1, through the row's
// disk function otherwise.
inline NxInt64 ReadInt64(const unsigned char* p, unsigned char form) {
  NxInt64 v(0);
  if (form == 8 || form == 1)
    std::memcpy(static_cast<void*>(&v), p, sizeof v);
  else
    nxrows::Int64Load(&v, p, form, 1);
  return v;
}

// A boolean is one byte, the same in every form: the row's disk function
// (CharStore) copies it unchanged, so it is read as it stands.
inline NxBoolean ReadBoolean(const unsigned char* p) {
  NxBoolean v;
  v.value = *p;
  return v;
}

// A 32-bit word of a blob record: read directly in the forms 8 and 1 (native
// on this least-significant-byte-first machine), by LongStore otherwise.
inline int32_t BlobWord(const unsigned char* p, unsigned char form) {
  return Read<int32_t, LongStore>(p, form);
}

// One operand of a blob key: the length words and bytes behind the total
// word.  `available` counts the bytes at hand from `at`.  A record whose
// total word is -1 holds no length words and reads as null blobs.
struct BlobKey {
  const unsigned char* bytes;
  uint64_t at;
  uint64_t available;
  bool nulls;

  BlobKey(const void* value, uint32_t length, unsigned char form)
      : bytes(static_cast<const unsigned char*>(value)), at(4), available(0), nulls(false) {
    if (length != 0 && length < 4) return;  // not even the total word
    const int32_t total = BlobWord(bytes, form);
    nulls = total == -1;
    if (nulls) return;
    available = length != 0 ? length - 4u : static_cast<uint32_t>(total);
  }

  // A length word can be read: the next one is whole in the bytes at hand.
  bool Ready() const { return nulls || available >= 4; }

  int32_t NextLength(unsigned char form) {
    if (nulls) return -1;
    const int32_t n = BlobWord(bytes + at, form);
    at += 4;
    available -= 4;
    return n;
  }

  // Steps over the bytes of a blob of `n` bytes; the bytes at hand end
  // where the blob does not fit.
  void Skip(uint32_t n) {
    if (nulls) return;
    if (available > n) {
      at += n;
      available -= n;
    } else {
      available = 0;
    }
  }
};

}  // namespace

int32_t DateCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                    void* value2, unsigned short cmpOp, uint32_t count, int& status) {
  const unsigned char form = format & 0x0F;
  if (form == 8)
    return Walk(4, length1, value1, length2, value2, count, status,
                [](const unsigned char* a, const unsigned char* b) {
                  return static_cast<int32_t>(As<NxDate>(a) != As<NxDate>(b));
                });
  return Walk(4, length1, value1, length2, value2, count, status,
              [form, cmpOp](const unsigned char* a, const unsigned char* b) {
                return DiskDateOrder<int16_t>(form, a, b, cmpOp);
              });
}

int32_t TimeCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                    void* value2, unsigned short, uint32_t count, int& status) {
  if ((format & 0x0F) == 8)
    return Walk(3, length1, value1, length2, value2, count, status,
                [](const unsigned char* a, const unsigned char* b) {
                  return static_cast<int32_t>(As<NxTime>(a) != As<NxTime>(b));
                });
  return Walk(
      3, length1, value1, length2, value2, count, status,
      [](const unsigned char* a, const unsigned char* b) { return SignedBytesOrder(a, b, 3); });
}

// On disk the date has no wildcard: year, then month, day, hour, minute and
// second as signed bytes.
int32_t DaTimeCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                      void* value2, unsigned short, uint32_t count, int& status) {
  if (format == 8)
    return Walk(sizeof(NxDateTime), length1, value1, length2, value2, count, status,
                [](const unsigned char* a, const unsigned char* b) {
                  return static_cast<int32_t>(As<NxDateTime>(a) != As<NxDateTime>(b));
                });
  const unsigned char form = format & 0x0F;
  return Walk(7, length1, value1, length2, value2, count, status,
              [form](const unsigned char* a, const unsigned char* b) {
                const int16_t y1 = Read<int16_t, ShortStore>(a, form);
                const int16_t y2 = Read<int16_t, ShortStore>(b, form);
                const int32_t years = Sign(y1<y2, y1> y2);
                return years != 0 ? years : SignedBytesOrder(a + 2, b + 2, 5);
              });
}

int32_t d_DateCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                      void* value2, unsigned short cmpOp, uint32_t count, int& status) {
  if (format == 8)
    return Walk(4, length1, value1, length2, value2, count, status,
                [](const unsigned char* a, const unsigned char* b) {
                  return static_cast<int32_t>(As<d_Date>(a) != As<d_Date>(b));
                });
  const unsigned char form = format & 0x0F;
  return Walk(4, length1, value1, length2, value2, count, status,
              [form, cmpOp](const unsigned char* a, const unsigned char* b) {
                return DiskDateOrder<uint16_t>(form, a, b, cmpOp);
              });
}

// On disk the six bytes as they stand, zone first: the same local time in
// two zones differs there, and so do hundredths.
int32_t d_TimeCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                      void* value2, unsigned short, uint32_t count, int& status) {
  if (format == 8)
    return Walk(6, length1, value1, length2, value2, count, status,
                [](const unsigned char* a, const unsigned char* b) {
                  return static_cast<int32_t>(As<d_Time>(a) != As<d_Time>(b));
                });
  return Walk(
      6, length1, value1, length2, value2, count, status,
      [](const unsigned char* a, const unsigned char* b) { return SignedBytesOrder(a, b, 6); });
}

int32_t d_TimestampCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                           void* value2, unsigned short cmpOp, uint32_t count, int& status) {
  if (format == 8)
    return Walk(sizeof(d_Timestamp), length1, value1, length2, value2, count, status,
                [](const unsigned char* a, const unsigned char* b) {
                  return static_cast<int32_t>(As<d_Timestamp>(a) != As<d_Timestamp>(b));
                });
  const unsigned char form = format & 0x0F;
  return Walk(10, length1, value1, length2, value2, count, status,
              [form, cmpOp](const unsigned char* a, const unsigned char* b) {
                const int32_t dates = DiskDateOrder<uint16_t>(form, a, b, cmpOp);
                return dates != 0 ? dates : SignedBytesOrder(a + 4, b + 4, 6);
              });
}

int32_t Int64Compare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                     void* value2, unsigned short, uint32_t count, int& status) {
  const unsigned char form = format & 0x0F;
  return Walk(8, length1, value1, length2, value2, count, status,
              [form](const unsigned char* a, const unsigned char* b) {
                const NxInt64 x = ReadInt64(a, form);
                const NxInt64 y = ReadInt64(b, form);
                return Sign(x<y, x> y);
              });
}

// Null orders first.  Other bytes go by NxBoolean's operators, so a byte of
// 2 from disk is equal to true under operator== but above it under
// operator>: 2 against 1 gives 1, and 1 against 2 gives 0.
int32_t BooleanCompare(unsigned char, uint32_t length1, void* value1, uint32_t length2,
                       void* value2, unsigned short, uint32_t count, int& status) {
  return Walk(1, length1, value1, length2, value2, count, status,
              [](const unsigned char* a, const unsigned char* b) {
                const NxBoolean x = ReadBoolean(a);
                const NxBoolean y = ReadBoolean(b);
                if (x.IsNullValue() || y.IsNullValue())
                  return x.IsNullValue() == y.IsNullValue() ? 0 : (x.IsNullValue() ? -1 : 1);
                return x < y ? -1 : (x > y ? 1 : 0);
              });
}

// Memory form: NxBlob::operator!= over the pairs.  Disk form: after the
// total words, each pair of blobs by its length words and bytes.  A null
// blob orders first with -2 (2 the other way round).  The bytes at hand cut
// the byte comparison short; where they end before a difference is seen,
// the lengths decide.  No path reports a cut key: status stays 0.
int32_t BlobCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                    void* value2, unsigned short, uint32_t count, int& status) {
  status = 0;
  if (count == 0) return 0;
  int32_t result = 0;
  if (format == 8) {
    const NxBlob* a = static_cast<const NxBlob*>(value1);
    const NxBlob* b = static_cast<const NxBlob*>(value2);
    for (uint32_t i = 0; i < count && result == 0; ++i) result = a[i] != b[i];
    return result;
  }
  const unsigned char form = format & 0x0F;
  BlobKey key1(value1, length1, form);
  BlobKey key2(value2, length2, form);
  for (uint32_t i = 0; i < count && result == 0 && key1.Ready() && key2.Ready(); ++i) {
    const int32_t word1 = key1.NextLength(form);
    const int32_t word2 = key2.NextLength(form);
    // Lengths as unsigned words: a word below -1, which no Store writes,
    // counts as longer than every blob.
    uint32_t n1 = static_cast<uint32_t>(word1);
    uint32_t n2 = static_cast<uint32_t>(word2);
    if (word1 == -1 || word2 == -1) {
      result = word1 == word2 ? 0 : (word1 == -1 ? -2 : 2);
      if (word1 == -1) n1 = 0;
      if (word2 == -1) n2 = 0;
    } else {
      const int32_t lengths = Sign(n1<n2, n1> n2);
      uint64_t m = n1 < n2 ? n1 : n2;
      if (m > key1.available) m = key1.available;
      if (m > key2.available) m = key2.available;
      const int order =
          m == 0 ? 0
                 : std::memcmp(key1.bytes + key1.at, key2.bytes + key2.at, static_cast<size_t>(m));
      result = order != 0 ? (order < 0 ? -1 : 1) : lengths;
    }
    if (i + 1 < count) {
      key1.Skip(n1);
      key2.Skip(n2);
    }
  }
  return result;
}
