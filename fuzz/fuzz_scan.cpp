// Feeds arbitrary text and formats from the rows' own list to every scan
// handler of the plain scalar rows, NxInt64, NxBoolean, the null-capable
// rows, NxSeal and the identifier rows, and prints what came back: no crash,
// no sanitizer report, and never a write past the element array.  An NxInt64
// printed with "%S" scans back to itself, and so does a seal.
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

// NxInt64's own format language, and the rows of the numbers and booleans.
const char* const kNumberFormats[] = {"%S", "%o", "%X", "%i", "(%S)", "%S days", "%%d", "noop"};
const char kNumberTypes[] = {NxTYPE_NxInt64,       NxTYPE_NxBoolean,       NxTYPE_NxNull_char,
                             NxTYPE_NxNull_uchar,  NxTYPE_NxNull_short,    NxTYPE_NxNull_ushort,
                             NxTYPE_NxNull_int,    NxTYPE_NxNull_unsigned, NxTYPE_NxNull_long,
                             NxTYPE_NxNull_ulong,  NxTYPE_NxNull_float,    NxTYPE_NxNull_double,
                             NxTYPE_NxNull_NxInt64, NxTYPE_NxSeal};
constexpr size_t kFormatCount = sizeof kFormats / sizeof kFormats[0];

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
  const size_t type = (data[0] & 0x7F) % (sizeof kTypes + sizeof kNumberTypes);
  const char id = identifier              ? kIdTypes[data[0] % sizeof kIdTypes]
                  : type < sizeof kTypes ? kTypes[type]
                                         : kNumberTypes[type - sizeof kTypes];
  const size_t which = data[1] % (kFormatCount + sizeof kNumberFormats / sizeof kNumberFormats[0]);
  const char* format =
      which < kFormatCount ? kFormats[which] : kNumberFormats[which - kFormatCount];
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
  if (id == NxTYPE_NxInt64) {
    NxInt64 value;
    std::memcpy(&value, memory, sizeof value);
    NxString text;
    value.PrintToNxString(text, "%S");
    NxInt64 back(7);
    back.ScanFromNxString(text, "%S");
    if (!(back == value)) __builtin_trap();
  }
  if (id == NxTYPE_NxSeal) {
    NxSeal value;
    std::memcpy(&value, memory, sizeof value);
    NxString text;
    value.PrintToNxString(text);
    NxSeal back;
    back.word2 = 7;
    if (!(back.ScanFromNxString(text) == value)) __builtin_trap();
  }
  return 0;
}
