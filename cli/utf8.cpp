// UTF-8 for the program, through the library's multi-byte functions.  The
// library reads sequences of four to six bytes and cuts them to 16 bits;
// the program looks for them first and refuses the text instead.
#include "utf8.h"

#include <cstdio>
#include <cstring>
#include <vector>

namespace cli {

namespace {

// The code point of a sequence of four bytes or more, for the message.
unsigned long LongCodePoint(const unsigned char* p, size_t available) {
  const size_t length = p[0] >= 0xFC ? 6 : p[0] >= 0xF8 ? 5 : 4;
  unsigned long cp = p[0] & (0x7Fu >> length);
  for (size_t k = 1; k < length && k < available; ++k) cp = (cp << 6) | (p[k] & 0x3Fu);
  return cp;
}

}  // namespace

bool ReadUtf8(const std::string& in, unsigned char language, NxString& out, std::string& error) {
  // Walk the text first: the library answers -1 without saying where.
  std::vector<char> bytes(in.begin(), in.end());
  size_t characters = 0;
  for (size_t at = 0; at < bytes.size(); ++characters) {
    const size_t left = bytes.size() - at;
    const int n = NxMultiByte2WChar(nullptr, bytes.data() + at, static_cast<unsigned>(left));
    if (n < 0) {
      error = "malformed UTF-8 at byte " + std::to_string(at + 1);
      return false;
    }
    if (n > 3) {
      char cp[16];
      std::snprintf(cp, sizeof cp, "U+%04lX",
                    LongCodePoint(reinterpret_cast<const unsigned char*>(bytes.data() + at), left));
      error = std::string(cp) + " at byte " + std::to_string(at + 1) +
              " lies beyond U+FFFF: strings hold 16-bit characters only";
      return false;
    }
    if (bytes[at] == '\0') {
      error = "contains a NUL character at byte " + std::to_string(at + 1);
      return false;
    }
    at += static_cast<size_t>(n);
  }
  // The conversion's limit is 32767 bytes, a 16-bit string's 32765 characters.
  if (bytes.size() > 32767 || characters > (NxSTRING_MAX_SIZE - 2) / 2) {
    error = "too long (at most 32767 bytes and 32765 characters)";
    return false;
  }
  out = NxString(NxCS_UNICODE, language);
  NxMBS2NxString(bytes.data(), out, static_cast<int32_t>(bytes.size()));
  return true;
}

std::string WriteUtf8(const NxString& text) {
  char* bytes = nullptr;
  int32_t length = 0;
  const int32_t n = NxString2MultiByteString(text, bytes, length);
  std::string out = n > 0 ? std::string(bytes, static_cast<size_t>(n)) : std::string();
  delete[] bytes;
  return out;
}

std::string Utf8Of(unsigned short c) {
  char bytes[3];
  return std::string(bytes, static_cast<size_t>(NxWChar2MultiByte(bytes, c)));
}

std::string ShownChar(unsigned short c, bool blankAsItself) {
  const unsigned short order = NxChar(c, NxCS_UNICODE, NxLANG_NEUTRAL).Order();
  if ((order < 40 && !(blankAsItself && c == ' ')) || (c >= 0xD800 && c <= 0xDFFF)) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "<U+%04X>", c);
    return buffer;
  }
  return Utf8Of(c);
}

}  // namespace cli
