// Feeds the date scan of every temporal row with arbitrary text and
// arbitrary formats, as 8-bit and as 16-bit text, then prints what came
// back with the same format: no crash, no sanitizer report, never a write
// past the element, and a printed text of bounded length.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

namespace {

const char kTypes[] = {NxTYPE_NxDate, NxTYPE_NxTime,      NxTYPE_NxDateTime, NxTYPE_d_Date,
                       NxTYPE_d_Time, NxTYPE_d_Timestamp, NxTYPE_d_Interval};

// Formats of the rows and of the language's corners, picked by a byte when
// the input brings no format of its own.
const char* const kFormats[] = {nullptr,
                                "%Y-%m-%d",
                                "%H:%M:%S",
                                "%Y-%m-%dT%H:%M:%S",
                                "%a %e.%b %Y %I:%M:%S %p",
                                "%A %B %y %P",
                                "%%%q%",
                                ""};

}  // namespace

// Input: byte 0 picks the type and the text's width, byte 1 a format; the
// rest is "format" NUL "text", or only text when there is no NUL.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  static const bool fixed = [] {
    NxClockFix(1073309409000LL, 60);
    return true;
  }();
  (void)fixed;
  static NxTypeMgr mgr;
  const char id = kTypes[data[0] % sizeof kTypes];
  const bool wide = (data[0] & 0x80) != 0;
  const std::string rest(reinterpret_cast<const char*>(data + 2), size - 2);
  std::string format;
  std::string text;
  const char* formatPointer = kFormats[data[1] % (sizeof kFormats / sizeof kFormats[0])];
  const size_t split = rest.find('\0');
  if (split != std::string::npos) {
    format = rest.substr(0, split);
    text = rest.substr(split + 1);
    text.erase(std::find(text.begin(), text.end(), '\0'), text.end());
    formatPointer = format.c_str();
  } else {
    text = rest;
  }

  NxString input;
  if (wide) {
    std::vector<unsigned short> units;
    for (unsigned char c : text) units.push_back(c);
    units.push_back(0);
    input = units.data();
  } else {
    input = text.c_str();
  }

  // One element between guard bytes.
  unsigned char memory[8 + 16 + 8];
  std::memset(memory, 0x5A, sizeof memory);
  const size_t used = mgr.MemLenGet(id, 1);
  mgr.ScanFromNxString(id, memory + 8, input, formatPointer, 1);
  for (size_t i = 0; i < sizeof memory; ++i) {
    if ((i < 8 || i >= 8 + used) && memory[i] != 0x5A) __builtin_trap();
  }
  NxString printed;
  mgr.PrintToNxString(id, printed, memory + 8, formatPointer, 1);
  // Every item prints at most a few characters per format character.
  const size_t formatLength = formatPointer != nullptr ? std::strlen(formatPointer) : 64;
  if (printed.Len() > 16 * (formatLength + 1)) __builtin_trap();
  return 0;
}
