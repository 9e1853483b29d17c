// Hashing.  Every row hashes an array the same way: an element hash per
// element, combined by exclusive or (so the order of the elements does not
// matter and equal pairs cancel), and one multiplication at the end.  The
// rows differ only in what the element hash is made of.
#include <cstdlib>
#include <cstring>
#include <new>

#include <nxtm/nxblob.h>
#include <nxtm/nxtyphash.h>

#include "nxkeyrows.h"
#include "nxrows.h"

namespace {

using nxrows::HashWalk;
using nxrows::kHashMultiplier;
using nxrows::kHashPartial;

// One element of type T: read as it stands in the forms 8 and 1 (native on
// this least-significant-byte-first machine), otherwise decoded by the base
// library's byte-order function.
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

// A narrow number widened to 32 bits, signed or unsigned as its type is.
template <typename T>
inline uint32_t Widened(T value) {
  return static_cast<uint32_t>(static_cast<int32_t>(value));
}

template <typename T, NxStoreFunc Decode>
uint32_t NumberHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                    int& status) {
  const unsigned char form = format & 0x0F;
  return kHashMultiplier *
         HashWalk(sizeof(T), length, value, count, status,
                  [form](const unsigned char* p) { return Widened(Read<T, Decode>(p, form)); });
}

// ---------------------------------------------------------------------------
// Strings.  A disk value is a run of text or key records (length L,
// code set, language, text, 0, 0xFF) or one old record (length L and the
// strings with their terminators, 8-bit text without a code set).  A stated
// `length` may cut the run: a hard cut takes away text, a soft one only the
// closing 0xFF.  Keys are never cut at 254 or more bytes of text, so a cut
// there gets status -2999 and no hash.

constexpr int kImpossibleCut = -2999;
constexpr int64_t kMaxCutText = 254;
constexpr size_t kScratch = 256;
using ClosedText = nxrows::ClosedText<kScratch>;

inline unsigned CharWidth(unsigned char codeSet) {
  return codeSet > 224 ? 2u : 1u;
}

// The element hash of a text at hand: whole when `hardCut` is false (the
// record's 0 and 0xFF follow it), otherwise `available` bytes of it.
// `bounded`: a stated length ends the bytes that may be read right behind
// the text, so no terminator may be looked for behind it.
uint32_t TextHash(unsigned char codeSet, unsigned char language, const unsigned char* text,
                  int64_t textLength, int64_t available, bool hardCut, bool bounded,
                  unsigned char form) {
  // A key that ended early at a change of collation state carries bit 7 in
  // its state byte; the hash takes the state without it.
  if (codeSet == NxCS_ORDERS && (language & 0x80) != 0) language &= 0x7F;
  const unsigned width = CharWidth(codeSet);
  if (width != 1 && width != 2)
    ZENTRO_assert("(CSSize1 == 1) || (CSSize1 == 2)", "src\\nxtyphash", __LINE__);
  if (hardCut) {
    // Only `available` bytes may be read: the iterator gets a closed copy of
    // them, so that looking ahead for a contraction stops at the cut.
    ClosedText closed;
    const short maxChars = static_cast<short>(available / width);
    return HashString(codeSet, language, closed.Copy(text, static_cast<size_t>(available)),
                      maxChars, form);
  }
  if (width == 1 && !bounded) {
    // 8-bit text ends in the record's own 0, which the hash stops at, as it
    // would at the end of a closed copy.
    return HashString(codeSet, language, reinterpret_cast<char*>(const_cast<unsigned char*>(text)),
                      -1, form);
  }
  // A 16-bit text needs a 16-bit zero behind it, which a record doesn't have.
  // (And a record that may be cut is not read behind its text.)
  ClosedText closed;
  if (char* copy = closed.Copy(text, static_cast<size_t>(textLength)))
    return HashString(codeSet, language, copy, -1, form);
  // No memory for the copy (and a memory handler that returned): the text
  // is read where it stands, counted by characters.
  return HashString(codeSet, language, reinterpret_cast<char*>(const_cast<unsigned char*>(text)),
                    static_cast<short>(textLength / width), form);
}

uint32_t StringHashCore(unsigned char format, uint32_t length, void* value, uint32_t count,
                        int& status, bool oldRow) {
  status = 0;
  if (count == 0) return 0;
  uint32_t hash = 0;
  if (format == 8) {
    // Memory form: NxString objects.  A string without a buffer adds nothing.
    const NxString* strings = static_cast<const NxString*>(value);
    for (uint32_t i = 0; i < count; ++i) {
      const NxString& s = strings[i];
      if (s.data != nullptr) hash ^= HashString(s.codeSet, s.language, s.data, -1, 8);
    }
    return hash * kHashMultiplier;
  }
  const unsigned char form = format & 0x0F;
  const unsigned char* at = static_cast<const unsigned char*>(value);
  const bool limited = length != 0;
  const unsigned char* const end = at + length;
  // Inside an old record: `at` is the current string, `oldEnd` the end of
  // the record.  Its strings are walked by their terminators.
  const unsigned char* oldEnd = nullptr;
  for (uint32_t done = 1;; ++done) {
    const int64_t left = limited ? end - at : 0;  // stated bytes from `at`
    const unsigned char* next;
    if (oldEnd == nullptr) {
      const int64_t L = Read<uint16_t, ShortStore>(at, form);
      const bool whole = !limited || left >= L + 2;
      const bool old = (format & 0x80) == 0 && (whole ? at[L + 1] == 0 : oldRow);
      if (old) {
        oldEnd = at + 2 + L;
        at += 2;
        --done;  // the first string of the record is read below
        continue;
      }
      const unsigned char codeSet = at[2];
      const unsigned char language = at[3];
      const unsigned char* text = at + 4;
      const int64_t textLength = static_cast<uint16_t>(L - 4);
      bool hardCut = false;
      int64_t available = textLength;
      if (limited) {
        // Whole, or only the closing 0xFF missing: the text is all there.
        hardCut = left - 2 < L && left - 1 != L;
        const int64_t inReach = left - 4 > 0 ? left - 4 : 0;
        if (inReach < available) {
          available = inReach;
          // Only a length field below 4 (not a text record at all) lets a
          // soft cut miss text; it is read as far as the bytes go.
          hardCut = true;
        }
      }
      if (available < textLength && available >= kMaxCutText) {
        status = kImpossibleCut;
        return 0;
      }
      hash ^= TextHash(codeSet, language, text, textLength, available, hardCut, limited, form);
      next = at + L + 2;
      if (done >= count) break;
      if (limited && end - next <= 4) {
        status = kHashPartial;
        break;
      }
    } else {
      // A string of an old record: its text runs to its terminator; the
      // stated length is the rest of the record, as far as the final one.
      const int64_t inRecord = oldEnd - at;
      int64_t reach = inRecord;
      if (limited && left < reach) reach = left > 0 ? left : 0;
      const void* zero = std::memchr(at, 0, static_cast<size_t>(reach));
      if (zero != nullptr) {
        const int64_t textLength = static_cast<const unsigned char*>(zero) - at;
        hash ^= TextHash(0, 0, at, textLength, textLength, false, false, form);
        next = at + textLength + 1;
      } else {
        const int64_t textLength = inRecord - 1;
        if (reach < textLength && reach >= kMaxCutText) {
          status = kImpossibleCut;
          return 0;
        }
        hash ^= TextHash(0, 0, at, textLength, reach, true, true, form);
        next = at + reach + 1;
      }
      if (done >= count) break;
      if (next >= oldEnd || (limited && end - next <= 0)) {
        status = kHashPartial;
        break;
      }
    }
    at = next;
  }
  return hash * kHashMultiplier;
}

}  // namespace

namespace nxrows {

uint32_t CharHash(unsigned char, uint32_t length, void* value, uint32_t count, int& status) {
  return kHashMultiplier * HashWalk(1, length, value, count, status, [](const unsigned char* p) {
           return Widened(static_cast<signed char>(*p));
         });
}

uint32_t ByteHash(unsigned char, uint32_t length, void* value, uint32_t count, int& status) {
  return kHashMultiplier * HashWalk(1, length, value, count, status,
                                    [](const unsigned char* p) { return uint32_t{*p}; });
}

uint32_t ShortHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                   int& status) {
  return NumberHash<int16_t, ShortStore>(format, length, value, count, status);
}

uint32_t WordHash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status) {
  return NumberHash<uint16_t, ShortStore>(format, length, value, count, status);
}

uint32_t IntHash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status) {
  // 4 bytes in memory; on disk the width the base library gives an int.
  const unsigned char form = format & 0x0F;
  const uint32_t width = form == 8 ? 4u : IntSizeGet(nullptr, 8, format, 1);
  return kHashMultiplier *
         HashWalk(width, length, value, count, status,
                  [form](const unsigned char* p) { return Read<uint32_t, IntLoad>(p, form); });
}

uint32_t LongHash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status) {
  return NumberHash<uint32_t, LongStore>(format, length, value, count, status);
}

uint32_t FloatHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                   int& status) {
  // The 32 bits of the float as they stand: +0.0 and -0.0 hash apart.
  return NumberHash<uint32_t, LongStore>(format, length, value, count, status);
}

uint32_t DoubleHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                    int& status) {
  // The two 32-bit halves, each decoded on its own; their exclusive or does
  // not depend on which half comes first.
  const unsigned char form = format & 0x0F;
  return kHashMultiplier *
         HashWalk(8, length, value, count, status, [form](const unsigned char* p) {
           return Read<uint32_t, LongStore>(p, form) ^ Read<uint32_t, LongStore>(p + 4, form);
         });
}

uint32_t StringHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                    int& status) {
  return StringHashCore(format, length, value, count, status, false);
}

uint32_t OldStringHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                       int& status) {
  return StringHashCore(format, length, value, count, status, true);
}

uint32_t LegacyStringHash(unsigned char, uint32_t, void*, uint32_t, int&) {
  return 0;
}

}  // namespace nxrows

// ---------------------------------------------------------------------------
// NxInt64 and the null-capable rows.

namespace {

// A null-capable array: each element read through the row's own Load, a
// null element hashing as the null hash and a number as the whole hash of
// the base row on the number alone, multiplier included.  The element hashes
// are only combined: no multiplication at the end.
template <typename T, NxHashFunc kBase>
inline uint32_t NullElementHash(const NxNull<T>& element) {
  if (element.isNull != 0) return nxrows::kNullHash;
  int baseStatus = 0;
  return kBase(8, sizeof(T), const_cast<T*>(&element.value), 1, baseStatus);
}

template <const NxTypeDesc& kRow, typename T, NxHashFunc kBase>
uint32_t NullHash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status) {
  if ((format & 0x0F) == 8) {
    // Memory form: elements stand MemLen bytes apart, each loaded alone.
    return HashWalk(kRow.MemLen, length, value, count, status, [format](const unsigned char* p) {
      NxNull<T> element;
      kRow.Load(&element, p, format, 1);
      return NullElementHash<T, kBase>(element);
    });
  }
  // Disk form: the elements lie packed, so the ones the walk reaches (each
  // that starts before a stated end, and always the first) load a block at
  // a time.
  status = 0;
  if (count == 0) return 0;
  const uint32_t width = kRow.NullSizeGet(1);
  uint32_t reached = count;
  if (length != 0 && width != 0) {
    const uint64_t starting = (uint64_t{length} + width - 1) / width;
    if (starting < count) {
      reached = static_cast<uint32_t>(starting);
      status = kHashPartial;
    }
  }
  // Room for a block, whose elements are made only as they are needed.
  constexpr uint32_t kBlock = 64;
  alignas(NxNull<T>) unsigned char room[kBlock * sizeof(NxNull<T>)];
  NxNull<T>* const block = reinterpret_cast<NxNull<T>*>(room);
  const unsigned char* at = static_cast<const unsigned char*>(value);
  uint32_t hash = 0;
  for (uint32_t first = 0; first < reached; first += kBlock) {
    const uint32_t n = reached - first < kBlock ? reached - first : kBlock;
    for (uint32_t i = 0; i < n; ++i) new (&block[i]) NxNull<T>();
    kRow.Load(block, at + static_cast<uint64_t>(first) * width, format, n);
    for (uint32_t i = 0; i < n; ++i) hash ^= NullElementHash<T, kBase>(block[i]);
  }
  return hash;
}

}  // namespace

namespace nxrows {

uint32_t Int64Hash(unsigned char format, uint32_t length, void* value, uint32_t count,
                   int& status) {
  const unsigned char form = format & 0x0F;
  return kHashMultiplier *
         HashWalk(8, length, value, count, status, [form](const unsigned char* p) {
           const NxInt64 n = Read<NxInt64, Int64Load>(p, form);
           return n.low ^ static_cast<uint32_t>(n.high);
         });
}

// The unsigned rows hash their numbers through the signed base rows: an
// NxNull_uchar of 0xFF hashes as the byte -1.
uint32_t NullCharHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                      int& status) {
  return NullHash<nullCharRow, signed char, CharHash>(format, length, value, count, status);
}

uint32_t NullUcharHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                       int& status) {
  return NullHash<nullUcharRow, unsigned char, CharHash>(format, length, value, count, status);
}

uint32_t NullShortHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                       int& status) {
  return NullHash<nullShortRow, int16_t, ShortHash>(format, length, value, count, status);
}

uint32_t NullUshortHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                        int& status) {
  return NullHash<nullUshortRow, uint16_t, ShortHash>(format, length, value, count, status);
}

uint32_t NullIntHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                     int& status) {
  return NullHash<nullIntRow, int32_t, IntHash>(format, length, value, count, status);
}

uint32_t NullUnsignedHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                          int& status) {
  return NullHash<nullUnsignedRow, uint32_t, IntHash>(format, length, value, count, status);
}

uint32_t NullLongHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                      int& status) {
  return NullHash<nullLongRow, int32_t, LongHash>(format, length, value, count, status);
}

uint32_t NullUlongHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                       int& status) {
  return NullHash<nullUlongRow, uint32_t, LongHash>(format, length, value, count, status);
}

uint32_t NullFloatHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                       int& status) {
  return NullHash<nullFloatRow, float, FloatHash>(format, length, value, count, status);
}

uint32_t NullDoubleHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                        int& status) {
  return NullHash<nullDoubleRow, double, DoubleHash>(format, length, value, count, status);
}

uint32_t NullInt64Hash(unsigned char format, uint32_t length, void* value, uint32_t count,
                       int& status) {
  return NullHash<nullInt64Row, NxInt64, Int64Hash>(format, length, value, count, status);
}

}  // namespace nxrows

// ---------------------------------------------------------------------------
// NxBoolean, NxSeal, the dates and times, and the identifiers.

namespace {

inline uint32_t SignedByte(const unsigned char* p, int offset) {
  return Widened(static_cast<signed char>(p[offset]));
}

// The year of a date field: as it stands in memory form, otherwise through
// the byte order of `format`.
inline int16_t YearAt(const unsigned char* p, bool memory, unsigned char format) {
  int16_t year;
  if (memory)
    std::memcpy(&year, p, sizeof year);
  else
    ShortStore(&year, p, format, 1);
  return year;
}

// (year * 256 + month) * 256 + day, all signed.
inline uint32_t DateFields(const unsigned char* p, bool memory, unsigned char format) {
  return (Widened(YearAt(p, memory, format)) * 256u + SignedByte(p, 2)) * 256u + SignedByte(p, 3);
}

// (hour * 256 + minute) * 256 + second, all signed.
inline uint32_t TimeFields(const unsigned char* p) {
  return (SignedByte(p, 0) * 256u + SignedByte(p, 1)) * 256u + SignedByte(p, 2);
}

// d_Date: the month and the day are signed bytes taken as 16-bit unsigned
// numbers; the year is signed, or in the memory form of d_Timestamp
// unsigned.
inline uint32_t StandardDateFields(const unsigned char* p, bool memory, unsigned char format,
                                   bool unsignedYear) {
  const int16_t year = YearAt(p, memory, format);
  const uint32_t y = unsignedYear ? uint32_t{static_cast<uint16_t>(year)} : Widened(year);
  const auto wide = [p](int offset) {
    return uint32_t{static_cast<uint16_t>(static_cast<int16_t>(static_cast<signed char>(p[offset])))};
  };
  return (y * 256u + wide(2)) * 256u + wide(3);
}

// The memory form of a d_Time (zoneHour, zoneMinute, hour, minute, second,
// hundredth): the local hour and minute in the high half, the whole seconds
// as a signed 16-bit number added below.
inline uint32_t StandardTimeMemory(const unsigned char* p) {
  const int zoneHour = static_cast<signed char>(p[0]);
  const int zoneMinute = static_cast<signed char>(p[1]);
  const int hour = static_cast<signed char>(p[2]);
  const int minute = static_cast<signed char>(p[3]);
  const int second = static_cast<signed char>(p[4]);
  const int hundredth = static_cast<signed char>(p[5]);
  const uint32_t local =
      uint32_t{static_cast<uint16_t>(minute - zoneMinute)} +
      uint32_t{static_cast<uint16_t>(hour - zoneHour)} * 256u;
  const float seconds = static_cast<float>(second) + static_cast<float>(hundredth) / 100.0f;
  const int16_t s = static_cast<int16_t>(static_cast<int>(seconds));  // toward zero, |s| < 130
  return local * 65536u + Widened(s);
}

// The disk form of a d_Time: its six bytes folded, unsigned or signed.
inline uint32_t FoldedTime(const unsigned char* p, bool signedBytes) {
  uint32_t x = 0;
  for (int i = 0; i < 6; ++i)
    x = x * 16u ^ (signedBytes ? SignedByte(p, i) : uint32_t{p[i]});
  return x;
}

// A field of an identifier on disk: assembled least significant byte first,
// whatever the format says.
template <typename T>
inline uint32_t DiskField(const unsigned char* p) {
  uint32_t v = 0;
  for (size_t i = sizeof(T); i-- > 0;) v = v << 8 | p[i];
  return v;
}

// An element of memory form as its class.
template <typename T>
inline T Element(const unsigned char* p) {
  T v;
  std::memcpy(static_cast<void*>(&v), p, sizeof v);
  return v;
}

}  // namespace

namespace nxrows {

uint32_t BooleanHash(unsigned char, uint32_t length, void* value, uint32_t count, int& status) {
  // The byte is the same in memory and on disk; null (255) hashes as -1.
  return kHashMultiplier * HashWalk(1, length, value, count, status, [](const unsigned char* p) {
           return SignedByte(p, 0);
         });
}

uint32_t SealHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                  int& status) {
  // The forms 8 and 1 are read as they stand, as in every row; other forms
  // are decoded as the row's Load does, most significant byte first.  (So a
  // key of format 1, whose bytes are the same as in format 2, hashes with
  // the bytes of each word turned.)
  const unsigned char form = format & 0x0F;
  const bool direct = form == 8 || form == 1;
  return kHashMultiplier *
         HashWalk(6, length, value, count, status, [direct](const unsigned char* p) {
           uint32_t x = 0;
           for (int i = 0; i < 6; i += 2) {
             uint16_t word;
             if (direct)
               std::memcpy(&word, p + i, sizeof word);
             else
               word = static_cast<uint16_t>(p[i] << 8 | p[i + 1]);
             x ^= word;
           }
           return x;
         });
}

uint32_t DateHash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status) {
  const bool memory = (format & 0x0F) == 8;
  return kHashMultiplier * HashWalk(4, length, value, count, status,
                                    [memory, format](const unsigned char* p) {
                                      return DateFields(p, memory, format);
                                    });
}

uint32_t TimeHash(unsigned char, uint32_t length, void* value, uint32_t count, int& status) {
  return kHashMultiplier * HashWalk(3, length, value, count, status, TimeFields);
}

uint32_t DateTimeHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                      int& status) {
  // Memory has a byte of padding behind the seconds; the disk form has not.
  const bool memory = format == 8;
  return kHashMultiplier * HashWalk(memory ? 8 : 7, length, value, count, status,
                                    [memory, format](const unsigned char* p) {
                                      return DateFields(p, memory, format) ^ TimeFields(p + 4);
                                    });
}

uint32_t DDateHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                   int& status) {
  const bool memory = format == 8;
  return kHashMultiplier * HashWalk(4, length, value, count, status,
                                    [memory, format](const unsigned char* p) {
                                      return StandardDateFields(p, memory, format, false);
                                    });
}

// The two forms of d_Time and d_Timestamp hash the same value differently.
uint32_t DTimeHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                   int& status) {
  const bool memory = format == 8;
  return kHashMultiplier *
         HashWalk(6, length, value, count, status, [memory](const unsigned char* p) {
           return memory ? StandardTimeMemory(p) : FoldedTime(p, false);
         });
}

uint32_t DTimestampHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                        int& status) {
  const bool memory = format == 8;
  return kHashMultiplier *
         HashWalk(10, length, value, count, status, [memory, format](const unsigned char* p) {
           if (memory) return StandardDateFields(p, true, format, true) ^ StandardTimeMemory(p + 4);
           return DateFields(p, false, format) ^ FoldedTime(p + 4, true);
         });
}

}  // namespace nxrows

// The identifiers hash the object number (and the database), never the
// block or the class of a reference.  The whole value is read: a stated
// length is not looked at, and `status` stays 0.
namespace {

template <typename Element>
uint32_t IdentifierHash(uint32_t width, void* value, uint32_t count, int& status,
                        Element element) {
  return kHashMultiplier * HashWalk(width, 0, value, count, status, element);
}

}  // namespace

uint32_t NxObjId::Hash(unsigned char format, uint32_t, void* value, uint32_t count, int& status) {
  if (format == 8) {
    return IdentifierHash(sizeof(NxObjId), value, count, status, [](const unsigned char* p) {
      const NxObjId id = Element<NxObjId>(p);
      return id.low ^ id.high;
    });
  }
  return IdentifierHash(10, value, count, status, [](const unsigned char* p) {
    return DiskField<uint32_t>(p + 4) ^ DiskField<uint16_t>(p + 8);
  });
}

uint32_t NxClassId::Hash(unsigned char format, uint32_t, void* value, uint32_t count,
                         int& status) {
  if (format == 8) {
    return IdentifierHash(sizeof(NxClassId), value, count, status, [](const unsigned char* p) {
      const NxClassId id = Element<NxClassId>(p);
      return uint32_t{id.classNumber} ^ id.version;
    });
  }
  return IdentifierHash(4, value, count, status, [](const unsigned char* p) {
    return DiskField<uint16_t>(p) ^ DiskField<uint16_t>(p + 2);
  });
}

uint32_t NxRef::Hash(unsigned char format, uint32_t, void* value, uint32_t count, int& status) {
  if (format == 8) {
    return IdentifierHash(sizeof(NxRef), value, count, status, [](const unsigned char* p) {
      const NxRef ref = Element<NxRef>(p);
      return ref.objId.low ^ ref.objId.high ^ ref.database;
    });
  }
  return IdentifierHash(14, value, count, status, [](const unsigned char* p) {
    return DiskField<uint32_t>(p + 4) ^ DiskField<uint16_t>(p + 8) ^ DiskField<uint16_t>(p + 10);
  });
}

// ---------------------------------------------------------------------------
// NxBlob: the hash holds lengths, not content, so that hashing a large blob
// costs no more than a small one.  Memory form is `format` exactly 8, where
// each element gives its length (0 for the null blob).  A disk array is one
// record: a total word, then per blob a length word and the bytes; each
// element hash is the blob's length from its word (a null blob's -1 counts
// as 0), at most the bytes left of the stated length behind that word, so
// that memory and disk forms of a blob hash alike.  A stated length that
// ends inside a length word ends the walk.

uint32_t nxrows::BlobHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                          int& status) {
  status = 0;
  if (count == 0) return 0;
  uint32_t hash = 0;
  if (format == 8) {
    const NxBlob* blobs = static_cast<const NxBlob*>(value);
    for (uint32_t i = 0; i < count; ++i) hash ^= static_cast<uint32_t>(blobs[i].Length());
    return hash * kHashMultiplier;
  }
  const unsigned char order = static_cast<unsigned char>(format & 0x0F);
  const uint32_t word = LongSizeGet(nullptr, order, order, 1);
  uint32_t left = length != 0 ? length : blobRow.SizeGet(value, format, format, 1);
  const unsigned char* position = static_cast<const unsigned char*>(value);
  if (left < word) return 0;
  left -= word;  // the total word
  position += word;
  for (uint32_t i = 0; i < count && left >= word; ++i) {
    int32_t stated;
    LongStore(&stated, position, order, 1);
    const uint32_t size = stated < 0 ? 0 : static_cast<uint32_t>(stated);
    left -= word;
    position += word;
    hash ^= size < left ? size : left;
    if (i + 1 < count) {
      position += size;
      left = left > size ? left - size : 0;
    }
  }
  return hash * kHashMultiplier;
}
