// The text of NxSeal on the command line: a number from 0 to 2^48 - 1, in
// decimal, or in hexadecimal behind "0x" or octal behind "0" as the
// library's own scan reads it.  Shown in decimal.
#include <cerrno>
#include <cstdlib>
#include <string>

#include <nxtm/nxtm.h>

#include "values.h"

namespace {

constexpr unsigned long long kLargestSeal = 0xFFFFFFFFFFFFull;

bool ReadSeal(const std::string& text, void* element, std::string& error) {
  errno = 0;
  char* end = nullptr;
  const unsigned long long v = std::strtoull(text.c_str(), &end, 0);
  if (text.empty() || text[0] < '0' || text[0] > '9' || end == nullptr || *end != '\0' ||
      errno == ERANGE || v > kLargestSeal) {
    error = "a seal is a number from 0 to 281474976710655";
    return false;
  }
  NxInt64 number(static_cast<uint32_t>(v), static_cast<int32_t>(v >> 32));
  static_cast<NxSeal*>(element)->ConvertFrom(number);
  return true;
}

std::string ShowSeal(const void* element) {
  NxString text;
  static_cast<const NxSeal*>(element)->PrintToNxString(text);
  return text.StrGet();
}

const cli::ValueTextRegistrar kSeal(NxTYPE_NxSeal, {ReadSeal, ShowSeal, nullptr});

}  // namespace
