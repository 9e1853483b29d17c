// What NxIString and NxCaseIString share: the byte maps, the text operations
// on their buffers, and the functions of their rows.  Not installed.
#ifndef NXTM_SRC_NXLEGACY_H
#define NXTM_SRC_NXLEGACY_H

#include <cstdlib>
#include <cstring>
#include <new>

#include "nxclassrows.h"
#include "nxrows.h"
#include "nxstrkeys.h"

namespace legacy {

// ---------------------------------------------------------------------------
// The byte maps.  Each byte c sorts as `main`[c], followed by `second`[c]
// when that is above 8; a `second` of 1 to 8 is an accent weight.

struct ByteMap {
  unsigned char main[256];
  unsigned char second[256];
};

// The map of one class from its three tables: `low` for 0x40 to 0x7F, `main`
// and `second` for 0xC0 to 0xFF.  Bytes below 0x40 map to themselves, 0xA0
// to 0xBF move up by 0x10, 0x80 to 0x9F by 0x60, but for the ligatures 0x8C
// and 0x9C (a character that sorts as two) and 0x9F (Y with an accent
// weight); `ligature9C` gives the map of 0x9C.
constexpr ByteMap BuildMap(const unsigned char (&low)[64], const unsigned char (&main)[64],
                           const unsigned char (&second)[64], unsigned char ligature9C,
                           unsigned char ligature9CSecond) {
  ByteMap map{};
  for (unsigned c = 0; c < 256; ++c) {
    unsigned m = c;
    unsigned s = 0;
    if (c >= 0xC0) {
      m = main[c - 0xC0];
      s = second[c - 0xC0];
    } else if (c >= 0xA0) {
      m = c + 0x10;
    } else if (c >= 0x80) {
      m = c + 0x60;
      if (c == 0x8C) {
        m = 0x90;
        s = 0x69;
      } else if (c == 0x9F) {
        m = 0xB3;
        s = 1;
      } else if (c == 0x9C) {
        m = ligature9C;
        s = ligature9CSecond;
      }
    } else if (c >= 0x40) {
      m = low[c - 0x40];
    }
    map.main[c] = static_cast<unsigned char>(m);
    map.second[c] = static_cast<unsigned char>(s);
  }
  return map;
}

extern const ByteMap kIStringMap;
extern const ByteMap kCaseIStringMap;

// MapText on one map.
uint32_t MapText(const ByteMap& map, char* target, const char* source, uint32_t limit);
// The legacy compare on one map; `foldAccents` allows bit 5 of `form1`.
int32_t Compare(const ByteMap& map, bool foldAccents, const char* s1, const char* s2,
                unsigned short limit, unsigned char form1, unsigned char form2);

// ---------------------------------------------------------------------------
// Text buffers.  Each object owns its buffer alone; buffers come from
// malloc, and a failed malloc goes to NxCallMemoryHandler (which throws).

// A new buffer holding `bytes` bytes of `text` and a terminator; null for 0
// bytes.
char* Duplicate(const char* text, size_t bytes);
inline size_t Length(const char* data) {
  return data != nullptr ? std::strlen(data) : 0;
}
// Frees `data` and gives it a copy of `text`; an empty text gives null.
void Assign(char*& data, const char* text);
// The same with the first `bytes` bytes of `text`.
void AssignBytes(char*& data, const char* text, size_t bytes);
void Append(char*& data, const char* text);
void Insert(char*& data, const char* text, unsigned short position);
void Replace(char* data, const char* text, unsigned short position);
void Fill(char*& data, unsigned short count, char c);
void Expand(char*& data, unsigned short length, char c);
void ToUpper(char* data);
void ToLower(char* data);
void Swap(char* data, char from, char to);
int SubStringPos(const char* data, const char* text);
void Cut(char*& data, unsigned short position, unsigned short count);
// A new buffer with the part of `data` from `position`, or null.
char* Part(const char* data, unsigned short position, unsigned short count);
// The text of a number through a printf format.
char* Number(const char* format, ...) __attribute__((format(printf, 1, 2)));
using nxrows::Atol32;

// The value classes' own operations, on either class.
template <class X>
X Made(char* data) {
  X result;
  result.data = data;
  return result;
}

// Print and scan of the rows (nxstrprint.cpp): the text through the format,
// and text of any code set read back as 8-bit bytes.
template <class X>
NxString& Print(NxString& result, void* value, const char* format, uint32_t count);
template <class X>
void* Scan(void* value, NxString& text, const char* format, uint32_t count);

// ---------------------------------------------------------------------------
// The rows.  The disk record holds the whole array: the form byte, L (16
// bits, the bytes of text behind the 3-byte header) and the strings one
// behind the other, each with its zero byte.

template <class X>
struct Traits;
template <>
struct Traits<NxIString> {
  static constexpr unsigned char kKeyFormats = 0x80;  // formats that Store marks with form 1
  static constexpr bool kUnmapsKeys = false;          // Translate takes keys back to text
  static constexpr NxTypeCmpFunc kCompare = NxIStringCompare;
  static constexpr NxEvalAndBoundFunc kEvalAndBound = nxrows::NxIStringEvalAndBound;
  static const ByteMap& Map() { return kIStringMap; }
};
template <>
struct Traits<NxCaseIString> {
  static constexpr unsigned char kKeyFormats = 0xF0;
  static constexpr bool kUnmapsKeys = true;
  static constexpr NxTypeCmpFunc kCompare = NxCaseIStringCompare;
  static constexpr NxEvalAndBoundFunc kEvalAndBound = nxrows::NxCaseIStringEvalAndBound;
  static const ByteMap& Map() { return kCaseIStringMap; }
};

using nxrows::Get16;
using nxrows::Put16;

template <class X>
struct Row {
  static_assert(sizeof(X) == nxrows::kStringMemLen, "the row steps by the record");

  static constexpr NxCreateFunc Create = nxrows::ObjectArrayCreate<X>;

  static uint32_t Store(void* disk, const void* memory, unsigned char format, uint32_t count) {
    unsigned char* out = static_cast<unsigned char*>(disk);
    const X* objects = static_cast<const X*>(memory);
    out[0] = (format & Traits<X>::kKeyFormats) != 0 ? 1 : 0x40;
    uint32_t at = 3;
    for (uint32_t i = 0; i < count; ++i) {
      const size_t length = Length(objects[i].data);
      if (length != 0) std::memcpy(out + at, objects[i].data, length);
      out[at + length] = 0;
      at += static_cast<uint32_t>(length) + 1;
    }
    Put16(out + 1, at - 3, format);
    return at;
  }

  // The strings from offset 3, each to its terminator, within `bound` bytes
  // of the record: a string that the bound cuts is taken as far as it goes,
  // and objects behind the bound get no text.
  static uint32_t LoadWithin(X* objects, const unsigned char* disk, uint32_t count,
                             uint64_t bound) {
    uint64_t at = 3;
    for (uint32_t i = 0; i < count; ++i) {
      if (at >= bound) {
        objects[i] = static_cast<const char*>(nullptr);
        continue;
      }
      const char* text = reinterpret_cast<const char*>(disk + at);
      const size_t length = strnlen(text, static_cast<size_t>(bound - at));
      if (at + length < bound) {
        objects[i] = text;
        at += length + 1;
      } else {
        AssignBytes(objects[i].data, text, length);
        objects[i].form = 0;
        at = bound;
      }
    }
    return static_cast<uint32_t>(at);
  }

  static uint32_t Load(void* memory, const void* disk, unsigned char, uint32_t count) {
    return LoadWithin(static_cast<X*>(memory), static_cast<const unsigned char*>(disk), count,
                      UINT64_MAX);
  }

  static uint32_t NullSizeGet(uint32_t count) { return count + 3; }

  // The bytes of the mapped text of `count` strings: each byte and each
  // second byte above 8, and each terminator.  From disk within `bound`.
  static uint32_t KeySize(const void* value, unsigned char valueFormat, uint32_t count,
                          uint64_t bound) {
    const ByteMap& map = Traits<X>::Map();
    uint32_t total = 0;
    if ((valueFormat & 8) != 0) {
      const X* objects = static_cast<const X*>(value);
      for (uint32_t i = 0; i < count; ++i) {
        for (const unsigned char* p = reinterpret_cast<const unsigned char*>(objects[i].data);
             p != nullptr && *p != 0; ++p)
          total += map.second[*p] > 8 ? 2 : 1;
        ++total;
      }
      return total;
    }
    const unsigned char* in = static_cast<const unsigned char*>(value);
    const uint32_t length = Get16(in + 1, valueFormat);
    if ((in[0] & 0x80) != 0) return length;
    uint64_t end = uint64_t{length} + 3;
    if (end > bound) end = bound;
    uint32_t strings = 0;
    for (uint64_t k = 3; k < end && strings < count; ++k) {
      const unsigned char c = in[k];
      ++total;
      if (c == 0)
        ++strings;
      else if (map.second[c] > 8)
        ++total;
    }
    return total;
  }

  static uint32_t SizeGetWithin(const void* value, unsigned char valueFormat,
                                unsigned char diskFormat, uint32_t count, uint64_t bound) {
    if ((diskFormat & 0x88) == 0x88) return 0;
    if ((diskFormat & 0x80) != 0) return KeySize(value, valueFormat, count, bound) + 3;
    if ((valueFormat & 8) != 0) {
      const X* objects = static_cast<const X*>(value);
      uint32_t total = 3;
      for (uint32_t i = 0; i < count; ++i)
        total += static_cast<uint32_t>(Length(objects[i].data)) + 1;
      return total;
    }
    return Get16(static_cast<const unsigned char*>(value) + 1, valueFormat) + 3;
  }

  static uint32_t SizeGet(const void* value, unsigned char valueFormat, unsigned char diskFormat,
                          uint32_t count) {
    return SizeGetWithin(value, valueFormat, diskFormat, count, UINT64_MAX);
  }

  // The record at the file's position, read as disk form in `format`, and 3
  // bytes more.  A file that can't give the 3 bytes of the header gives 0.
  static uint32_t SizeGetFromMemFile(MemFile* file, unsigned char format, uint32_t count) {
    uint32_t granted = 6;
    const unsigned char* at =
        file != nullptr ? file->Seek(0, MemFile::FromCurrent, &granted, 0) : nullptr;
    if (at == nullptr || granted < 3) return 0;
    const uint64_t bound = static_cast<uint64_t>(int64_t{file->size} - file->position);
    return SizeGetWithin(at, static_cast<unsigned char>(format & ~8u), format, count, bound) + 3;
  }

  // A key from the first object alone: its mapped text behind the form byte
  // 0xC0 and L, the mapped bytes and the terminator.  The text is cut to
  // leave the last byte of the destination 0; a destination of 4 bytes holds
  // an empty text, and one below 4 no key at all.
  static uint32_t KeyFromMemory(unsigned char* out, unsigned char format, uint32_t room,
                                const X& first) {
    if (room != 0) std::memset(out, 0, room);
    if (room < 4) return 0;
    if (room > 4) X::MapText(reinterpret_cast<char*>(out + 3), first.data, room - 4);
    out[0] = 0xC0;
    const uint32_t length =
        static_cast<uint32_t>(std::strlen(reinterpret_cast<char*>(out + 3))) + 1;
    Put16(out + 1, length, format);
    return length + 3;
  }

  // A key from a plain record: every byte mapped as long as the destination
  // has room, and counted on; L is the full count, so that a cut key says
  // how long it would be.
  static uint32_t KeyFromRecord(unsigned char* out, unsigned char format, uint32_t room,
                                const unsigned char* in, uint32_t size) {
    if (size < room) std::memset(out, 0, room);
    if (room < 4) return 0;
    const ByteMap& map = Traits<X>::Map();
    const uint32_t limit = room >= 8 ? room - 4 : 0;
    uint32_t written = 0;
    uint32_t total = 0;
    for (uint32_t k = 3; k < size; ++k) {
      const unsigned char c = in[k];
      if (written < limit) out[3 + written++] = map.main[c];
      ++total;
      if (map.second[c] > 8) {
        if (written < limit) out[3 + written++] = map.second[c];
        ++total;
      }
    }
    out[3 + limit] = 0;
    out[0] = static_cast<unsigned char>((size != 0 ? in[0] : 0) | 0xC0);
    Put16(out + 1, total, format);
    return (total < limit ? total : limit) + 3;
  }

  static uint32_t Translate(void* destination, unsigned char destinationFormat,
                            uint32_t destinationSize, void* source, unsigned char sourceFormat,
                            uint32_t sourceSize, uint32_t count) {
    unsigned char* out = static_cast<unsigned char*>(destination);
    const unsigned char* in = static_cast<const unsigned char*>(source);
    const bool toMemory = (destinationFormat & 8) != 0;
    const bool fromMemory = (sourceFormat & 8) != 0;
    if ((destinationFormat & 0x80) == 0) {
      if (toMemory && fromMemory) {
        nxrows::ElementAssignment<X>(destination, source, count, 0);
        return nxrows::kStringMemLen * count;
      }
      if (toMemory) {
        if constexpr (Traits<X>::kUnmapsKeys) {
          if ((sourceFormat & 0x80) != 0)
            return Unmap(static_cast<X*>(destination), in, sourceFormat, sourceSize, count);
        }
        return LoadWithin(static_cast<X*>(destination), in, count, sourceSize);
      }
      if (fromMemory)
        return nxrows::StoreWithin(Store, SizeGet, out, destinationSize, source,
                                   destinationFormat & 0x0F, count);
      return nxrows::DiskToDiskCopy(out, destinationSize, source, sourceSize);
    }
    if (toMemory) return 0;
    if (fromMemory)
      return KeyFromMemory(out, destinationFormat, destinationSize, *static_cast<const X*>(source));
    if (sourceSize != 0 && (in[0] & 0x80) != 0)
      return nxrows::DiskToDiskCopy(out, destinationSize, source, sourceSize);
    return KeyFromRecord(out, destinationFormat, destinationSize, in, sourceSize);
  }

  // A mapped key back to text, into the first object.
  static uint32_t Unmap(X* objects, const unsigned char* in, unsigned char format, uint32_t size,
                        uint32_t count) {
    const uint32_t length = size >= 3 ? Get16(in + 1, format) : 0;
    const uint32_t available = size >= 3 ? (size - 3 < length ? size - 3 : length) : 0;
    char* text = static_cast<char*>(std::calloc(length + 1u, 1));
    while (text == nullptr) {
      NxCallMemoryHandler(length + 1u);
      text = static_cast<char*>(std::calloc(length + 1u, 1));
    }
    X::UnmapText(text, reinterpret_cast<const char*>(in + 3), available);
    if (count != 0) objects[0] = text;
    std::free(text);
    return length + 3;
  }

  // To text: a string of the native code set, with the object's bytes
  // appended as text of code set 0.
  static NxTypeConvertData* ConvertTo(void* value, uint32_t count) {
    const X* objects = static_cast<const X*>(value);
    return nxrows::ToStrings(nxrows::stringRow.Create, nxrows::stringRow.Delete, count,
                             [objects](NxString& string, uint32_t i) {
                               string.codeSet = NxLanguageContext::GetNativeCodeSet();
                               NxString bytes(objects[i].data);
                               bytes.codeSet = 0;
                               string += bytes;
                             });
  }

  // From text: the bytes of each string; a missing or null string gives an
  // object without text.
  static void* ConvertFrom(NxTypeConvertData* data, uint32_t count) {
    return nxrows::FromStrings<X>(Create(count), data, count, [](X& object, NxString* s) {
      if (s != nullptr) object = s->StrGet();
    });
  }

  static void* DefaultValue(uint32_t count, int) {
    return nxrows::DefaultFromEmptyStrings(ConvertFrom, count);
  }
};

// The row of a legacy string class.  Hash and the print and scan slots are
// filled by the families that bring them.
template <class X>
constexpr NxTypeDesc MakeRow(const char* name) {
  NxTypeDesc row = nxrows::IllegalLike(name, nxrows::kStringMemLen, 0, "%s");
  row.Create = Row<X>::Create;
  row.Delete = nxrows::ObjectArrayDelete<X>;
  row.Store = Row<X>::Store;
  row.Load = Row<X>::Load;
  row.NullSizeGet = Row<X>::NullSizeGet;
  row.SizeGet = Row<X>::SizeGet;
  row.SizeGetFromMemFile = Row<X>::SizeGetFromMemFile;
  row.ConvertTo = Row<X>::ConvertTo;
  row.ConvertFrom = Row<X>::ConvertFrom;
  row.Constructor = nxrows::ElementConstructor<X>;
  row.Destructor = nxrows::ElementDestructor<X>;
  row.Assignment = nxrows::ElementAssignment<X>;
  row.Copy = nxrows::ElementCopy<X>;
  row.Translate = Row<X>::Translate;
  row.Compare = Traits<X>::kCompare;
  row.EvalAndBound = Traits<X>::kEvalAndBound;
  row.PrintToString = Print<X>;
  row.ScanFromString = Scan<X>;
  row.IsNull = nxrows::NeverNull;
  row.DefaultValue = Row<X>::DefaultValue;
  return row;
}

}  // namespace legacy

#endif
