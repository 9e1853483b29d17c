// NxIString, the legacy string with the plain byte map, and what both legacy
// string classes share: their text operations and the legacy compare.
#include <cstdarg>
#include <cstdio>

#include "nxkeyrows.h"
#include "nxlegacy.h"

namespace legacy {

namespace {

// The tables of NxIString's map: `low` for 0x40 to 0x7F (upper-case letters
// apart from the lower-case ones), `main` and `second` for 0xC0 to 0xFF.
// clang-format off
constexpr unsigned char kLow[64] = {
    64,  84,  91,  94,  97,  105, 111, 113, 115, 121, 127, 129, 131, 133, 135, 144,
    151, 153, 155, 157, 159, 165, 171, 173, 175, 179, 183, 66,  67,  68,  69,  70,
    65,  78,  90,  92,  96,  100, 110, 112, 114, 116, 126, 128, 130, 132, 134, 138,
    150, 152, 154, 156, 158, 160, 170, 172, 174, 176, 182, 71,  72,  73,  74,  75};
constexpr unsigned char kMain[64] = {
    84,  84,  84,  84,  84,  189, 185, 94,  105, 105, 105, 105, 121, 121, 121, 121,
    99,  137, 144, 144, 144, 144, 144, 76,  187, 165, 165, 165, 165, 179, 191, 156,
    78,  78,  78,  78,  78,  188, 184, 92,  100, 100, 100, 100, 116, 116, 116, 116,
    98,  136, 138, 138, 138, 138, 138, 77,  186, 160, 160, 160, 160, 176, 190, 176};
constexpr unsigned char kSecond[64] = {
    3,   2,   4,   5,   1,   0,   0,   1,   3,   2,   4,   1,   3,   2,   4,   1,
    0,   0,   3,   2,   4,   5,   1,   0,   0,   3,   2,   4,   1,   2,   0,   156,
    3,   2,   4,   5,   1,   0,   0,   1,   3,   2,   4,   1,   3,   2,   4,   1,
    0,   0,   3,   2,   4,   5,   1,   0,   0,   3,   2,   4,   1,   2,   0,   1};
// clang-format on

// The bytes of a compare: the map of each byte (or the byte itself in raw
// text), and a second byte above 8 in a pass of its own.  With accents
// folded, an accent weight adds to the byte and a second byte is dropped
// after taking one from it.
struct Reader {
  const unsigned char* at;
  unsigned char form;
  unsigned char waiting = 0;

  unsigned Next(const ByteMap& map, bool fold) {
    const unsigned char c = *at;
    if ((form & 0x80) != 0) {
      if (c != 0) ++at;
      return c;
    }
    if (waiting > 8) {
      const unsigned second = waiting;
      waiting = 0;
      return second;
    }
    if (c != 0) ++at;
    unsigned m = map.main[c];
    const unsigned char s = map.second[c];
    if (fold) {
      if (s > 8)
        m -= 1;
      else
        m += s;
    } else {
      waiting = s;
    }
    return m;
  }
};

int32_t PlainCompare(const char* a, const char* b, uint32_t limit) {
  for (uint32_t i = 0; limit == 0 || i < limit; ++i) {
    const int32_t d = static_cast<unsigned char>(a[i]) - static_cast<unsigned char>(b[i]);
    if (d != 0 || a[i] == 0) return d;
  }
  return 0;
}

char* Allocate(size_t bytes) {
  return static_cast<char*>(nxrows::MallocOrHandle(bytes));
}

}  // namespace

constexpr ByteMap kIStringMap = BuildMap(kLow, kMain, kSecond, 0x8A, 0x64);

uint32_t MapText(const ByteMap& map, char* target, const char* source, uint32_t limit) {
  if (target == nullptr || source == nullptr) return 0;
  uint32_t n = 0;
  for (const unsigned char* p = reinterpret_cast<const unsigned char*>(source);; ++p) {
    if (*p == 0) {
      if (limit == 0 || n < limit) target[n++] = 0;
      break;
    }
    target[n++] = static_cast<char>(map.main[*p]);
    if (limit != 0 && n >= limit) break;
    if (map.second[*p] > 8) {
      target[n++] = static_cast<char>(map.second[*p]);
      if (limit != 0 && n >= limit) break;
    }
  }
  return n;
}

// The compare ends at the first pass whose bytes differ, or in which both
// texts gave their terminator.
int32_t Compare(const ByteMap& map, bool foldAccents, const char* s1, const char* s2,
                unsigned short limit, unsigned char form1, unsigned char form2) {
  if (s1 == nullptr) return s2 == nullptr ? 0 : -1;
  if (s2 == nullptr) return 1;
  Reader a{reinterpret_cast<const unsigned char*>(s1), form1};
  Reader b{reinterpret_cast<const unsigned char*>(s2), form2};
  if (*a.at == 0 || *b.at == 0) return int32_t{*a.at} - int32_t{*b.at};
  const bool fold = foldAccents && (form1 & 0x20) != 0;
  const uint32_t passes = limit == 0 ? 65535 : limit;
  for (uint32_t i = 0; i < passes; ++i) {
    const unsigned x = a.Next(map, fold);
    const unsigned y = b.Next(map, fold);
    if (x != y) return static_cast<int32_t>(x) - static_cast<int32_t>(y);
    if (x == 0) break;
  }
  return 0;
}

// ---------------------------------------------------------------------------
// Text buffers.

char* Duplicate(const char* text, size_t bytes) {
  if (bytes == 0) return nullptr;
  char* copy = Allocate(bytes + 1);
  std::memcpy(copy, text, bytes);
  copy[bytes] = 0;
  return copy;
}

void Assign(char*& data, const char* text) {
  AssignBytes(data, text, Length(text));
}

void AssignBytes(char*& data, const char* text, size_t bytes) {
  char* copy = Duplicate(text, bytes);  // before the free: `text` may lie in `data`
  std::free(data);
  data = copy;
}

void Append(char*& data, const char* text) {
  Insert(data, text, 65535);
}

void Insert(char*& data, const char* text, unsigned short position) {
  const size_t added = Length(text);
  if (added == 0) return;
  const size_t length = Length(data);
  if (position > length) position = static_cast<unsigned short>(length);
  char* result = Allocate(length + added + 1);
  if (position != 0) std::memcpy(result, data, position);
  std::memcpy(result + position, text, added);
  std::memcpy(result + position + added, data != nullptr ? data + position : "",
              length - position + 1);
  std::free(data);
  data = result;
}

void Replace(char* data, const char* text, unsigned short position) {
  const size_t length = Length(data);
  if (data == nullptr || position > length) return;
  size_t bytes = Length(text);
  if (bytes > length - position) bytes = length - position;
  if (bytes != 0) std::memmove(data + position, text, bytes);
}

void Fill(char*& data, unsigned short count, char c) {
  if (count > Length(data)) {
    char* result = Allocate(size_t{count} + 1);
    result[count] = 0;
    std::free(data);
    data = result;
  }
  if (count != 0) std::memset(data, c, count);
}

void Expand(char*& data, unsigned short length, char c) {
  const size_t old = Length(data);
  if (length <= old) return;
  char* result = Allocate(size_t{length} + 1);
  if (old != 0) std::memcpy(result, data, old);
  std::memset(result + old, c, length - old);
  result[length] = 0;
  std::free(data);
  data = result;
}

void ToUpper(char* data) {
  for (unsigned char* p = reinterpret_cast<unsigned char*>(data); p != nullptr && *p != 0; ++p) {
    if ((*p >= 97 && *p <= 122) || (*p >= 224 && *p <= 254 && *p != 247))
      *p = static_cast<unsigned char>(*p - 32);
    else if (*p == 159)
      *p = 255;
    else if (*p == 156)
      *p = 140;
  }
}

void ToLower(char* data) {
  for (unsigned char* p = reinterpret_cast<unsigned char*>(data); p != nullptr && *p != 0; ++p) {
    if ((*p >= 65 && *p <= 90) || (*p >= 192 && *p <= 222 && *p != 215))
      *p = static_cast<unsigned char>(*p + 32);
    else if (*p == 255)
      *p = 159;
    else if (*p == 140)
      *p = 156;
  }
}

void Swap(char* data, char from, char to) {
  for (char* p = data; p != nullptr && *p != 0; ++p)
    if (*p == from) *p = to;
}

int SubStringPos(const char* data, const char* text) {
  const char* a = data != nullptr ? data : "";
  const char* b = text != nullptr ? text : "";
  const size_t length = std::strlen(a);
  const uint32_t limit = static_cast<uint32_t>(std::strlen(b));
  for (size_t i = 0; i <= length; ++i)
    if (PlainCompare(a + i, b, limit) == 0) return static_cast<int>(i);
  return -1;
}

void Cut(char*& data, unsigned short position, unsigned short count) {
  const size_t length = Length(data);
  if (position > length || count == 0) return;
  const size_t cut = count < length - position ? count : length - position;
  if (cut == 0) return;
  if (cut == length) {
    std::free(data);
    data = nullptr;
    return;
  }
  std::memmove(data + position, data + position + cut, length - position - cut + 1);
}

char* Part(const char* data, unsigned short position, unsigned short count) {
  const size_t length = Length(data);
  if (position > length || count == 0) return nullptr;
  const size_t bytes = count < length - position ? count : length - position;
  return Duplicate(data + position, bytes);
}

char* Number(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  va_end(arguments);
  char* text = nullptr;
  if (length > 0) {
    text = Allocate(static_cast<size_t>(length) + 1);
    std::vsnprintf(text, static_cast<size_t>(length) + 1, format, again);
  }
  va_end(again);
  return text;
}

}  // namespace legacy

int32_t LegacyCompare(const char* s1, const char* s2, unsigned short limit, unsigned char form1,
                      unsigned char form2) {
  return legacy::Compare(legacy::kIStringMap, false, s1, s2, limit, form1, form2);
}

// ---------------------------------------------------------------------------
// NxIString.

#define NX_LEGACY_CLASS NxIString
#define NX_LEGACY_COMPARE LegacyCompare
#define NX_LEGACY_MAP legacy::kIStringMap
#include "nxlegacyclass.inc"

namespace nxrows {

NxTypeDesc iStringRow = WithHash(legacy::MakeRow<NxIString>("NxIString"), LegacyStringHash);

}  // namespace nxrows
