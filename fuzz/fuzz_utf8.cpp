// Decodes arbitrary bytes with every UTF-8 function and checks them against
// each other: the character decoder walks the bytes, the array decoder and
// the string decoder must agree with that walk, and encoding what was
// decoded must give the input back wherever the decoding kept every bit (one
// to three bytes a character, no zero byte, under the string limit).  The
// encoders must fill caller buffers of any size without writing past them.
//
// Input: one byte that sizes the arrays and buffers, then the text.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "fuzz_support.h"

namespace {

using fuzz::Silent;
using fuzz::Check;

// memcmp without its rule against null pointers for empty ranges.
bool Same(const void* a, const void* b, size_t n) {
  return n == 0 || std::memcmp(a, b, n) == 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1 || size > 70000) return 0;
  NxSetAssertHandler(Silent);  // overflow reports of long texts
  const size_t room = data[0];
  // The text in a buffer of its own size, so that a read past it is seen.
  std::vector<char> text(data + 1, data + size);
  const int length = static_cast<int>(text.size());
  char* bytes = text.empty() ? nullptr : text.data();

  // The walk of the character decoder.
  std::vector<unsigned short> units;
  int walked = 0;
  bool bad = false;
  bool lossless = true;  // every sequence of at most 3 bytes
  while (walked < length) {
    unsigned short c = 0;
    const int n = NxMultiByte2WChar(&c, bytes + walked, static_cast<unsigned>(length - walked));
    if (n < 0) {
      bad = true;
      break;
    }
    Check(n >= 1 && n <= 6 && n <= length - walked);
    if (n <= 3) {
      char again[3];
      Check(NxWChar2MultiByte(again, c) == n);
      Check(Same(again, bytes + walked, static_cast<size_t>(n)));
    } else {
      lossless = false;
    }
    units.push_back(c);
    walked += n;
  }

  // The array decoder: the same characters, counted also past the array.
  std::vector<unsigned short> array(room);
  const int count = NxMultiByteStr2WCharStr(array.data(), static_cast<int>(room), bytes, length);
  if (bad) {
    Check(count == -1);
  } else {
    Check(count == static_cast<int>(units.size()));
    for (size_t i = 0; i < room && i < units.size(); ++i) Check(array[i] == units[i]);
  }

  // The string decoder stops at a zero character and at 32768 bytes.
  NxString s(NxCS_CP1252, 5);
  const int32_t taken = NxMBS2NxString(bytes, s, length);
  Check(s.codeSet == NxCS_UNICODE && s.language == 5);
  // The other names of the string decoder agree with it.
  NxString same;
  Check(NxMultiByteString2NxString(bytes, same, length) == taken);
  Check(same.Len() == s.Len() && Same(same.StrGet(), s.StrGet(), 2 * size_t{s.Len()}));
  NxString holder(bytes != nullptr ? std::string(bytes, text.size()).c_str() : "");
  NxString fromString;
  const int32_t held = NxMultiByteString2NxString(holder, fromString);
  Check(holder.Len() == 0 || held == NxMBS2NxString(holder.StrGet(), same, holder.Len()));
  size_t upTo = 0;
  int32_t sum = 0;
  while (upTo < units.size() && units[upTo] != 0 && sum < 32768) {
    sum += NxMultiByte2WChar(nullptr, bytes + sum, static_cast<unsigned>(length - sum));
    ++upTo;
  }
  const bool zero = upTo < units.size() && units[upTo] == 0;
  if (length == 0) {
    Check(taken == 0);
  } else if (sum >= 32768) {
    Check(taken == -2);
  } else if (bad && !zero && upTo == units.size()) {
    Check(taken == -1);
  } else {
    Check(taken == sum);
  }
  // What the string holds is the decoded text (when it fits a string).
  if (upTo <= 32765) {
    Check(s.Len() == upTo);
    Check(Same(s.StrGet(), units.data(), 2 * upTo));
  }

  // Encoding the string: the input back, when nothing was cut.
  if (s.Len() == upTo && taken >= 0) {
    char* out = nullptr;
    int32_t outLength = 0;
    const int32_t n = NxString2MultiByteString(s, out, outLength);
    Check(n >= 0 && out != nullptr && outLength == n + 1 && out[n] == '\0');
    Check(n == NxMBSLength(s, 65535) || s.Len() == 0);
    if (lossless) Check(n == taken && Same(out, bytes, static_cast<size_t>(n)));
    // A caller's buffer of every size up to the text's: never written past.
    std::vector<char> small(room == 0 ? 1 : room);
    char* given = small.data();
    int32_t givenLength = static_cast<int32_t>(small.size());
    const int32_t m = NxString2MultiByteString(s, given, givenLength);
    if (m >= 0) {
      // A buffer that the text fills exactly holds no terminator.
      Check(m == n && Same(small.data(), out, static_cast<size_t>(n)));
      Check(m == givenLength || small[static_cast<size_t>(m)] == '\0');
    } else {
      Check(m == -1 && givenLength == n);
    }
    // The plain encoder: all of it, or minus what fitted (0 when nothing did).
    const int32_t size = static_cast<int32_t>(small.size());
    const int32_t k = NxString2NxMBS(s, small.data(), size);
    if (k > 0) {
      Check(k == n && k <= size);
    } else {
      Check(-k <= n && -k <= size && (k < 0 || n == 0 || size < 4));
    }
    delete[] out;
  }

  // The same bytes as 8-bit text of code set 1: encoded and decoded again,
  // they give the text recoded into code set 253.
  NxString narrow(bytes != nullptr ? std::string(bytes, text.size()).c_str() : "");
  narrow.SetCodeSetCode(NxCS_CP1252);
  NxString wide(NxCS_UNICODE, 0);
  wide += narrow;
  char* out = nullptr;
  int32_t outLength = 0;
  const int32_t n = NxString2MultiByteString(narrow, out, outLength);
  // Pure ASCII takes the quick path, which stops at its 2048-byte buffer.
  bool ascii = true;
  for (unsigned short i = 0; i < narrow.Len(); ++i)
    if (static_cast<unsigned char>(narrow.StrGet()[i]) >= 0x80) ascii = false;
  const bool cut = ascii && narrow.Len() > 2048;
  Check(n >= 0 && (cut ? n == 2048 : n == NxMBSLength(narrow, 65535)));
  if (!cut && narrow.Len() <= 32765 && n < 32768) {
    NxString back(NxCS_UNICODE, 0);
    if (n > 0) Check(NxMBS2NxString(out, back, n) == n);
    Check(back.Len() == wide.Len() &&
          Same(back.StrGet(), wide.StrGet(), 2 * static_cast<size_t>(wide.Len())));
  }
  delete[] out;
  return 0;
}
