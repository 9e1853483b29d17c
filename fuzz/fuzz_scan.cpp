// Feeds arbitrary text and formats from the rows' own list to every scan
// handler of the plain scalar rows and the identifier rows, and prints what
// came back: no crash, no sanitizer report, and never a write past the
// element array.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include <nxtm/nxtm.h>

namespace {

const char* const kFormats[] = {
    nullptr, "%c",   "%hd", "%ld",  "%lf",  "%f",     "%hu",  "%lu",           "%d",
    "%u",    "#%lu", "%x",  "%5c",  "%s",   "%[a-z]", "%n",   "ldexp(%lf,%d)", "%ld%ld",
    "%*d%d", "%lld", "%Lf", "%hhd", "%%%d", "0x%x",   "%10ld"};

const char kTypes[] = {NxTYPE_char,     NxTYPE_short,  NxTYPE_long,    NxTYPE_double,
                       NxTYPE_float,    NxTYPE_NxWord, NxTYPE_NxDWord, NxTYPE_int,
                       NxTYPE_unsigned, NxTYPE_enum,   NxTYPE_NxByte,  NxTYPE_BlockId};

// The identifier rows read a format language of their own; past the end of
// this list the fuzzed text is its own format.
const char* const kIdFormats[] = {
    nullptr,       "(%H-%L#%B)",         "(%Cv%V)", "(%D:%H-%L#%B, %C)",
    "%hu-%lu#%lu", "%%%H%x%B",           "%",       "%h",
    "a%l",         "%hu%hu%lu%lu%hu%hu", ""};
const char kIdTypes[] = {NxTYPE_NxObjId, NxTYPE_NxClassId, NxTYPE_NxRef};
constexpr size_t kIdFormatCount = sizeof kIdFormats / sizeof kIdFormats[0];

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 3) return 0;
  static NxTypeMgr mgr;
  const bool identifier = (data[0] & 0x80) != 0;
  const char id =
      identifier ? kIdTypes[data[0] % sizeof kIdTypes] : kTypes[data[0] % sizeof kTypes];
  const char* format = kFormats[data[1] % (sizeof kFormats / sizeof kFormats[0])];
  const uint32_t count = 1 + data[2] % 4;
  std::string text(reinterpret_cast<const char*>(data + 3), size - 3);
  text.erase(std::find(text.begin(), text.end(), '\0'), text.end());
  if (identifier) {
    const size_t pick = data[1] % (kIdFormatCount + 1);
    format = pick < kIdFormatCount ? kIdFormats[pick] : text.c_str();
  }

  // The elements, with guard bytes behind them.
  alignas(8) unsigned char memory[4 * 20 + 16];
  std::memset(memory, 0x5A, sizeof memory);
  const size_t used = static_cast<size_t>(mgr.MemLenGet(id, count));
  NxString input(text.c_str());
  mgr.ScanFromNxString(id, memory, input, format, count);
  for (size_t i = used; i < sizeof memory; ++i) {
    if (memory[i] != 0x5A) __builtin_trap();
  }
  NxString printed;
  mgr.PrintToNxString(id, printed, memory, format, count);
  if (printed.Len() > 4 * 512) __builtin_trap();
  return 0;
}
