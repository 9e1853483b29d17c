// The EvalAndBound and Hash functions of the rows, for the source files that
// fill those slots, and the element walk that every fixed-width hash shares.
// Not installed.
#ifndef NXTM_SRC_NXKEYROWS_H
#define NXTM_SRC_NXKEYROWS_H

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include <nxtm/nxtm.h>

#include "nxrows.h"

namespace nxrows {

// Range evaluation of the plain numbers (nxtypevl.cpp).  "enum" shares the
// function of "int", "NxDWord" and "BlockId" share one, and "d_Interval"
// uses the function of "float".
float CharEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                       uint32_t count, NxIdxBounds* narrowed);
float ByteEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                       uint32_t count, NxIdxBounds* narrowed);
float ShortEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                        uint32_t count, NxIdxBounds* narrowed);
float WordEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                       uint32_t count, NxIdxBounds* narrowed);
float IntEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                      uint32_t count, NxIdxBounds* narrowed);
float UnsignedEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                           unsigned char format, uint32_t count, NxIdxBounds* narrowed);
float LongEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                       uint32_t count, NxIdxBounds* narrowed);
float DwordEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                        uint32_t count, NxIdxBounds* narrowed);
float FloatEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                        uint32_t count, NxIdxBounds* narrowed);
float DoubleEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                         uint32_t count, NxIdxBounds* narrowed);

// Hashes (nxtyphash.cpp).  "int", "enum" and "unsigned" share IntHash;
// "long", "NxDWord" and "BlockId" share LongHash; "d_Interval" uses
// FloatHash.
uint32_t CharHash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status);
uint32_t ByteHash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status);
uint32_t ShortHash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status);
uint32_t WordHash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status);
uint32_t IntHash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status);
uint32_t LongHash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status);
uint32_t FloatHash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status);
uint32_t DoubleHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                    int& status);
// "NxString" and the old string row: text records, key records and old
// records in disk form, NxString objects in memory form.
uint32_t StringHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                    int& status);
uint32_t OldStringHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                       int& status);
// "NxIString" and "NxCaseIString": the constant 0; `status` is not written.
uint32_t LegacyStringHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                          int& status);

// Range evaluation and hashing of the temporal rows, NxInt64, NxBoolean and
// NxSeal (nxtypevl.cpp, nxtyphash.cpp).  The identifier rows use the static
// EvalAndBound and Hash of their classes.
float DateEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                       uint32_t count, NxIdxBounds* narrowed);
float TimeEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                       uint32_t count, NxIdxBounds* narrowed);
float DateTimeEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                           unsigned char format, uint32_t count, NxIdxBounds* narrowed);
float DDateEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                        uint32_t count, NxIdxBounds* narrowed);
float DTimeEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                        uint32_t count, NxIdxBounds* narrowed);
float DTimestampEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                             unsigned char format, uint32_t count, NxIdxBounds* narrowed);
float Int64EvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                        uint32_t count, NxIdxBounds* narrowed);
float BooleanEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                          unsigned char format, uint32_t count, NxIdxBounds* narrowed);
uint32_t DateHash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status);
uint32_t TimeHash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status);
uint32_t DateTimeHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                      int& status);
uint32_t DDateHash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status);
uint32_t DTimeHash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status);
uint32_t DTimestampHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                        int& status);
uint32_t BooleanHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                     int& status);
uint32_t SealHash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status);

// The temporal rows are built by one function from their names: these give
// a temporal row's range evaluation and hash by that name.
constexpr bool SameRowName(const char* a, const char* b) {
  while (*a != '\0' && *a == *b) {
    ++a;
    ++b;
  }
  return *a == *b;
}
constexpr NxEvalAndBoundFunc TemporalEvalAndBound(const char* name) {
  return SameRowName(name, "NxDate")        ? DateEvalAndBound
         : SameRowName(name, "NxTime")      ? TimeEvalAndBound
         : SameRowName(name, "NxDateTime")  ? DateTimeEvalAndBound
         : SameRowName(name, "d_Date")      ? DDateEvalAndBound
         : SameRowName(name, "d_Time")      ? DTimeEvalAndBound
         : SameRowName(name, "d_Timestamp") ? DTimestampEvalAndBound
                                            : IllegalEvalAndBound;
}
constexpr NxHashFunc TemporalHash(const char* name) {
  return SameRowName(name, "NxDate")        ? DateHash
         : SameRowName(name, "NxTime")      ? TimeHash
         : SameRowName(name, "NxDateTime")  ? DateTimeHash
         : SameRowName(name, "d_Date")      ? DDateHash
         : SameRowName(name, "d_Time")      ? DTimeHash
         : SameRowName(name, "d_Timestamp") ? DTimestampHash
                                            : IllegalHash;
}

// `row` with its Hash slot set, for rows defined in one expression.
constexpr NxTypeDesc WithHash(NxTypeDesc row, NxHashFunc hash) {
  row.Hash = hash;
  return row;
}

// The factor of the last step of every hash but those of the null-capable
// rows, and the hash of a null element and of a null string.
constexpr uint32_t kHashMultiplier = NxHASH_MULTIPLIER;
constexpr uint32_t kNullHash = NxHASH_NULL;
constexpr int kHashPartial = 2101;

// The element walk of the fixed-width hashes: the exclusive or of
// `element(p)` over the `count` elements `width` bytes apart, without the
// final multiplication.  A `length` other than 0 ends the value there: when
// the next element would start at or behind it, the walk stops with
// `status` 2101 and gives what it has.
template <typename Element>
uint32_t HashWalk(uint32_t width, uint32_t length, const void* value, uint32_t count, int& status,
                  Element element) {
  status = 0;
  if (count == 0) return 0;
  const unsigned char* base = static_cast<const unsigned char*>(value);
  const uint64_t end = length != 0 ? length : static_cast<uint64_t>(width) * count;
  uint64_t at = 0;
  uint32_t hash = 0;
  for (uint32_t done = 1;; ++done) {
    hash ^= element(base + at);
    if (done >= count) break;
    if (at + width >= end) {
      status = kHashPartial;
      break;
    }
    at += width;
  }
  return hash;
}

// A copy of a text closed by zero bytes, which end text of either char
// width: on the stack up to `kLocal` bytes, beyond that from malloc.  The
// comparators and hashes of the string rows read cut or unclosed record
// text through it, so that no reader looks behind the bytes at hand.
template <size_t kLocal>
class ClosedText {
 public:
  ClosedText() = default;
  ClosedText(const ClosedText&) = delete;
  ClosedText& operator=(const ClosedText&) = delete;
  ~ClosedText() {
    if (heap_ != nullptr) std::free(heap_);
  }

  // A copy of `bytes` bytes of `text` followed by `zeros` zero bytes (at
  // least 2); null when no memory could be had for it.  A new copy
  // replaces the one before.
  char* Copy(const unsigned char* text, size_t bytes, size_t zeros = 2) {
    char* at = Room(bytes + zeros);
    if (at == nullptr) return nullptr;
    if (bytes != 0) std::memcpy(at, text, bytes);
    std::memset(at + bytes, 0, zeros);
    return at;
  }

 private:
  char* Room(size_t bytes) {
    if (heap_ != nullptr) std::free(heap_);
    heap_ = nullptr;
    if (bytes <= kLocal) return local_;
    heap_ = static_cast<char*>(std::malloc(bytes));
    if (heap_ == nullptr) {
      NxCallMemoryHandler(static_cast<uint32_t>(bytes));
      heap_ = static_cast<char*>(std::malloc(bytes));
    }
    return heap_;
  }

  char local_[kLocal];
  char* heap_ = nullptr;
};

// ---------------------------------------------------------------------------
// NxInt64 and the null-capable rows NxNull_char ... NxNull_NxInt64.

// "NxInt64": the exclusive or of the low and the high word of each element,
// times the multiplier (nxtyphash.cpp).
uint32_t Int64Hash(unsigned char format, uint32_t length, void* value, uint32_t count, int& status);

// Range evaluation of the null-capable rows (nxtypevl.cpp).  Nulls order
// first: a null low bound is a range that begins among the nulls, a null high
// bound one that holds nothing else.  Value and bounds are read through the
// row's own Load slot.  "NxNull_NxInt64" gives its estimate undivided, as a
// length that may exceed 1.
float NullCharEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                           unsigned char format, uint32_t count, NxIdxBounds* narrowed);
float NullUcharEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                            unsigned char format, uint32_t count, NxIdxBounds* narrowed);
float NullShortEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                            unsigned char format, uint32_t count, NxIdxBounds* narrowed);
float NullUshortEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                             unsigned char format, uint32_t count, NxIdxBounds* narrowed);
float NullIntEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                          unsigned char format, uint32_t count, NxIdxBounds* narrowed);
float NullUnsignedEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                               unsigned char format, uint32_t count, NxIdxBounds* narrowed);
float NullLongEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                           unsigned char format, uint32_t count, NxIdxBounds* narrowed);
float NullUlongEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                            unsigned char format, uint32_t count, NxIdxBounds* narrowed);
float NullFloatEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                            unsigned char format, uint32_t count, NxIdxBounds* narrowed);
float NullDoubleEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                             unsigned char format, uint32_t count, NxIdxBounds* narrowed);
float NullInt64EvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                            unsigned char format, uint32_t count, NxIdxBounds* narrowed);

// Hashes of the null-capable rows (nxtyphash.cpp): the plain exclusive or of
// the element hashes, with no multiplication at the end.  A null element
// hashes as kNullHash; a number as the whole hash of its signed base row.
uint32_t NullCharHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                      int& status);
uint32_t NullUcharHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                       int& status);
uint32_t NullShortHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                       int& status);
uint32_t NullUshortHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                        int& status);
uint32_t NullIntHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                     int& status);
uint32_t NullUnsignedHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                          int& status);
uint32_t NullLongHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                      int& status);
uint32_t NullUlongHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                       int& status);
uint32_t NullFloatHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                       int& status);
uint32_t NullDoubleHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                        int& status);
uint32_t NullInt64Hash(unsigned char format, uint32_t length, void* value, uint32_t count,
                       int& status);

// NxBlob (nxtypevl.cpp, nxtyphash.cpp).  A blob range is not estimated: the
// answer is the whole range, and nothing narrows.  Its hash holds lengths
// only, never content.
float BlobEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                       uint32_t count, NxIdxBounds* narrowed);
uint32_t BlobHash(unsigned char format, uint32_t length, void* value, uint32_t count,
                  int& status);

}  // namespace nxrows

#endif
