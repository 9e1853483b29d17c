// nxtm types | version | store | load | print | scan | convert: the type
// table, the disk form of the plain scalars and the text forms of the rows.
#include <cerrno>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "cli.h"

namespace {

using cli::Args;

// The plain scalar rows and how their values read and print.
enum class Kind { Signed, Unsigned, Real };

struct ScalarInfo {
  char id;
  unsigned width;  // memory bytes
  Kind kind;
};

bool ScalarOf(char id, ScalarInfo& info) {
  switch (id) {
    case NxTYPE_char:
      info = {id, 1, Kind::Signed};
      return true;
    case NxTYPE_NxByte:
      info = {id, 1, Kind::Unsigned};
      return true;
    case NxTYPE_short:
      info = {id, 2, Kind::Signed};
      return true;
    case NxTYPE_NxWord:
      info = {id, 2, Kind::Unsigned};
      return true;
    case NxTYPE_long:
    case NxTYPE_int:
    case NxTYPE_enum:
      info = {id, 4, Kind::Signed};
      return true;
    case NxTYPE_NxDWord:
    case NxTYPE_BlockId:
    case NxTYPE_unsigned:
      info = {id, 4, Kind::Unsigned};
      return true;
    case NxTYPE_float:
      info = {id, 4, Kind::Real};
      return true;
    case NxTYPE_double:
      info = {id, 8, Kind::Real};
      return true;
    default:
      return false;
  }
}

// A type by name ("long") or by number ("2").
bool FindType(const NxTypeMgr& mgr, const std::string& text, char& id) {
  long number = 0;
  if (cli::ParseNumber(text, 0, 127, number)) {
    if (!NxTypeMgr::IsValidType(static_cast<char>(number))) return false;
    id = static_cast<char>(number);
    return true;
  }
  return mgr.Name2NxTypeId(text.c_str(), id) == 0;
}

// Reads one value of a scalar type into `out` (memory form).  Integers
// accept the signed and the unsigned range of their width; a single
// non-digit character stands for its code in the byte types.
bool ParseValue(const ScalarInfo& info, const std::string& text, unsigned char* out) {
  if (text.empty()) return false;
  if (info.kind == Kind::Real) {
    errno = 0;
    char* end = nullptr;
    const double v = std::strtod(text.c_str(), &end);
    if (end == nullptr || *end != '\0' || errno == ERANGE) return false;
    if (info.width == 4) {
      if (std::isfinite(v) && std::fabs(v) > FLT_MAX) return false;
      const float f = static_cast<float>(v);
      std::memcpy(out, &f, 4);
    } else {
      std::memcpy(out, &v, 8);
    }
    return true;
  }
  if (info.width == 1 && text.size() == 1 && (text[0] < '0' || text[0] > '9')) {
    out[0] = static_cast<unsigned char>(text[0]);
    return true;
  }
  errno = 0;
  char* end = nullptr;
  const long long v = std::strtoll(text.c_str(), &end, 0);
  if (end == nullptr || *end != '\0' || errno == ERANGE) return false;
  const int bits = static_cast<int>(info.width * 8);
  const long long low = -(1LL << (bits - 1));
  const long long high = (1LL << bits) - 1;
  if (v < low || v > high) return false;
  const uint64_t u = static_cast<uint64_t>(v);
  std::memcpy(out, &u, info.width);  // little-endian machine: the low bytes
  return true;
}

std::string FormatValue(const ScalarInfo& info, const unsigned char* p) {
  char buffer[64];
  if (info.kind == Kind::Real) {
    if (info.width == 4) {
      float f;
      std::memcpy(&f, p, 4);
      std::snprintf(buffer, sizeof buffer, "%.9g", static_cast<double>(f));
    } else {
      double d;
      std::memcpy(&d, p, 8);
      std::snprintf(buffer, sizeof buffer, "%.17g", d);
    }
    return buffer;
  }
  uint64_t u = 0;
  std::memcpy(&u, p, info.width);
  if (info.kind == Kind::Signed) {
    const int shift = 64 - static_cast<int>(info.width * 8);
    const long long s = static_cast<long long>(u << shift) >> shift;
    std::snprintf(buffer, sizeof buffer, "%lld", s);
  } else {
    std::snprintf(buffer, sizeof buffer, "%llu", static_cast<unsigned long long>(u));
  }
  return buffer;
}

bool ParseFormat(const std::string& text, bool allowMemory, unsigned char& format) {
  if (text == "1" || text == "2" || (allowMemory && text == "8")) {
    format = static_cast<unsigned char>(text[0] - '0');
    return true;
  }
  return false;
}

int RunTypes(const Args& input) {
  Args args = input;
  const bool old = cli::TakeFlag(args, "--old");
  if (!args.empty()) return cli::Fail("types: unexpected argument '" + args[0] + "'");
  NxTypeMgr mgr(old ? 0 : 5);
  std::printf("%3s  %-16s %6s  %-5s  %-44s %s\n", "id", "name", "memlen", "fixed", "format",
              "null");
  for (int id = 0; id < 41; ++id) {
    if (mgr.table[id] == nullptr) break;  // the old table ends at 28
    const NxTypeDesc* row = mgr.RowGet(static_cast<char>(id));
    std::printf("%3d  %-16s %6u  %-5s  %-44s %s\n", id, row->name,
                static_cast<unsigned>(row->MemLen), row->IsFixed ? "yes" : "no", row->Format,
                mgr.SupportsNullValue(static_cast<char>(id)) ? "yes" : "no");
  }
  return 0;
}

int RunVersion(const Args& args) {
  if (!args.empty()) return cli::Fail("version: unexpected argument '" + args[0] + "'");
  uint32_t major, minor, build, patch, extra, toolVersion;
  const char *buildName, *timestamp, *unknown, *toolName, *empty;
  const char* product = NxDescribeDll(&major, &minor, &build, &patch, &extra, &buildName,
                                      &timestamp, &unknown, &toolVersion, &toolName, &empty);
  const char* info = nullptr;
  const char* date = nullptr;
  GetNxTypeMgrInfo(nullptr, nullptr, &info, &date, nullptr);
  std::printf("%s\n", info);
  std::printf("product:    %s\n", product);
  std::printf("version:    %u.%u.%u.%u.%u\n", major, minor, build, patch, extra);
  std::printf("build:      %s, %s (day %s)\n", buildName, timestamp, date);
  std::printf("built with: %s %u\n", toolName, toolVersion);
  std::printf("check:      %d\n", NxCheckDll(0));
  return 0;
}

int RunStore(const Args& input) {
  Args args = input;
  bool missing = false;
  const std::string formatText = cli::TakeOption(args, "--format", "1", missing);
  if (missing) return cli::Fail("store: --format needs a value (1, 2 or 8)");
  unsigned char format = 1;
  if (!ParseFormat(formatText, true, format))
    return cli::Fail("store: bad format '" + formatText + "' (1, 2 or 8)");
  if (args.size() < 2) return cli::Fail("store: usage: nxtm store TYPE VALUE... [--format 1|2|8]");
  NxTypeMgr mgr;
  char id = 0;
  ScalarInfo info{};
  if (!FindType(mgr, args[0], id)) return cli::Fail("store: unknown type '" + args[0] + "'");
  if (!ScalarOf(id, info)) return cli::Fail("store: '" + args[0] + "' is not a plain scalar type");
  const uint32_t count = static_cast<uint32_t>(args.size() - 1);
  std::vector<unsigned char> memory(info.width * count);
  for (uint32_t i = 0; i < count; ++i) {
    if (!ParseValue(info, args[i + 1], &memory[i * info.width]))
      return cli::Fail("store: bad " + args[0] + " value '" + args[i + 1] + "'");
  }
  const uint32_t diskLength = mgr.DiskLenGet(id, nullptr, format, count, 8);
  std::vector<unsigned char> disk(diskLength + 1);
  const uint32_t written = mgr.Store(id, disk.data(), memory.data(), format, count);
  for (uint32_t i = 0; i < written; ++i) std::printf("%02x", disk[i]);
  std::printf("\n");
  return 0;
}

int RunLoad(const Args& input) {
  Args args = input;
  bool missing = false;
  const std::string formatText = cli::TakeOption(args, "--format", "1", missing);
  if (missing) return cli::Fail("load: --format needs a value (1 or 2)");
  unsigned char format = 1;
  if (!ParseFormat(formatText, false, format))
    return cli::Fail("load: bad format '" + formatText + "' (1 or 2)");
  if (args.size() != 2) return cli::Fail("load: usage: nxtm load TYPE HEX [--format 1|2]");
  NxTypeMgr mgr;
  char id = 0;
  ScalarInfo info{};
  if (!FindType(mgr, args[0], id)) return cli::Fail("load: unknown type '" + args[0] + "'");
  if (!ScalarOf(id, info)) return cli::Fail("load: '" + args[0] + "' is not a plain scalar type");
  const std::string& hex = args[1];
  if (hex.empty() || hex.size() % 2 != 0)
    return cli::Fail("load: the bytes must be an even number of hex digits");
  std::vector<unsigned char> disk(hex.size() / 2);
  for (size_t i = 0; i < disk.size(); ++i) {
    unsigned value = 0;
    for (int k = 0; k < 2; ++k) {
      const char c = hex[2 * i + static_cast<size_t>(k)];
      unsigned digit;
      if (c >= '0' && c <= '9')
        digit = static_cast<unsigned>(c - '0');
      else if (c >= 'a' && c <= 'f')
        digit = static_cast<unsigned>(c - 'a' + 10);
      else if (c >= 'A' && c <= 'F')
        digit = static_cast<unsigned>(c - 'A' + 10);
      else
        return cli::Fail(std::string("load: '") + c + "' is not a hex digit");
      value = value * 16 + digit;
    }
    disk[i] = static_cast<unsigned char>(value);
  }
  const uint32_t element = mgr.DiskLenGet(id, nullptr, format, 1, 8);
  if (disk.size() % element != 0)
    return cli::Fail("load: " + std::to_string(disk.size()) + " bytes are not a whole number of " +
                     std::to_string(element) + "-byte " + args[0] + " values");
  const uint32_t count = static_cast<uint32_t>(disk.size() / element);
  std::vector<unsigned char> memory(info.width * count);
  mgr.Load(id, memory.data(), disk.data(), format, count);
  for (uint32_t i = 0; i < count; ++i) {
    std::printf("%s%s", i ? " " : "", FormatValue(info, &memory[i * info.width]).c_str());
  }
  std::printf("\n");
  return 0;
}

const cli::Registrar kTypes({"types", "types [--old]",
                             "the type table: id, name, memory length, fixed, format, null",
                             RunTypes, 10});
const cli::Registrar kVersion({"version", "version", "the library's identification", RunVersion,
                               11});
const cli::Registrar kStore({"store", "store TYPE VALUE... [--format 1|2|8]",
                             "disk bytes of plain scalar values, in hex", RunStore, 20});
const cli::Registrar kLoad({"load", "load TYPE HEX [--format 1|2]",
                            "plain scalar values from disk bytes", RunLoad, 21});

// ---------------------------------------------------------------------------
// print, scan, convert: the text forms through the type manager.

// True when the row has its own function in the slot picked by `slot`.
template <typename Slot>
bool Stands(const NxTypeMgr& mgr, char id, Slot slot) {
  return mgr.RowGet(id)->*slot != NxTypeMgr::IllegalRowGet()->*slot;
}

// Memory elements of `count` values of a scalar type or of strings, from
// the command line.  Strings are taken as 8-bit text.
struct Elements {
  std::vector<unsigned char> bytes;
  NxString* strings = nullptr;
  uint32_t count = 0;
  void* data() { return strings != nullptr ? static_cast<void*>(strings) : bytes.data(); }
};

bool ReadElements(NxTypeMgr& mgr, char id, const std::string& typeName, const Args& values,
                  Elements& out, std::string& error) {
  out.count = static_cast<uint32_t>(values.size());
  if (id == NxTYPE_NxString) {
    out.strings = static_cast<NxString*>(mgr.Create(id, out.count));
    for (uint32_t i = 0; i < out.count; ++i) out.strings[i] = values[i].c_str();
    return true;
  }
  ScalarInfo info{};
  if (!ScalarOf(id, info)) {
    error = "'" + typeName + "' has no text form in this build yet";
    return false;
  }
  out.bytes.assign(info.width * out.count, 0);
  for (uint32_t i = 0; i < out.count; ++i) {
    if (!ParseValue(info, values[i], &out.bytes[i * info.width])) {
      error = "bad " + typeName + " value '" + values[i] + "'";
      return false;
    }
  }
  return true;
}

int RunPrint(const Args& input) {
  Args args = input;
  bool missing = false;
  const std::string format = cli::TakeOption(args, "--format", "", missing);
  if (missing) return cli::Fail("print: --format needs a value");
  if (args.size() < 2) return cli::Fail("print: usage: nxtm print TYPE VALUE... [--format F]");
  NxTypeMgr mgr;
  char id = 0;
  if (!FindType(mgr, args[0], id)) return cli::Fail("print: unknown type '" + args[0] + "'");
  if (!Stands(mgr, id, &NxTypeDesc::PrintToString))
    return cli::Fail("print: '" + args[0] + "' has no print form in this build yet");
  Elements elements;
  std::string error;
  if (!ReadElements(mgr, id, args[0], Args(args.begin() + 1, args.end()), elements, error))
    return cli::Fail("print: " + error);
  NxString result;
  mgr.PrintToNxString(id, result, elements.data(), format.empty() ? nullptr : format.c_str(),
                      elements.count);
  std::printf("%s\n", result.StrGet());
  if (elements.strings != nullptr) mgr.Delete(id, elements.strings, elements.count);
  return 0;
}

int RunScan(const Args& input) {
  Args args = input;
  bool missing = false;
  const std::string format = cli::TakeOption(args, "--format", "", missing);
  if (missing) return cli::Fail("scan: --format needs a value");
  if (args.size() != 2) return cli::Fail("scan: usage: nxtm scan TYPE TEXT [--format F]");
  NxTypeMgr mgr;
  char id = 0;
  ScalarInfo info{};
  if (!FindType(mgr, args[0], id)) return cli::Fail("scan: unknown type '" + args[0] + "'");
  if (!ScalarOf(id, info) || !Stands(mgr, id, &NxTypeDesc::ScanFromString))
    return cli::Fail("scan: '" + args[0] + "' has no scan form in this build yet");
  // The byte types read one element per character; the others one element.
  const uint32_t count =
      info.width == 1 ? static_cast<uint32_t>(args[1].empty() ? 1 : args[1].size()) : 1;
  std::vector<unsigned char> memory(info.width * count, 0);
  NxString text(args[1].c_str());
  mgr.ScanFromNxString(id, memory.data(), text, format.empty() ? nullptr : format.c_str(), count);
  for (uint32_t i = 0; i < count; ++i)
    std::printf("%s%s", i ? " " : "", FormatValue(info, &memory[i * info.width]).c_str());
  std::printf("\n");
  return 0;
}

int RunConvert(const Args& args) {
  if (args.size() < 3) return cli::Fail("convert: usage: nxtm convert FROMTYPE TOTYPE VALUE...");
  NxTypeMgr mgr;
  char from = 0;
  char to = 0;
  if (!FindType(mgr, args[0], from)) return cli::Fail("convert: unknown type '" + args[0] + "'");
  if (!FindType(mgr, args[1], to)) return cli::Fail("convert: unknown type '" + args[1] + "'");
  if (!Stands(mgr, from, &NxTypeDesc::ConvertTo))
    return cli::Fail("convert: '" + args[0] + "' has no text form in this build yet");
  if (!Stands(mgr, to, &NxTypeDesc::ConvertFrom))
    return cli::Fail("convert: '" + args[1] + "' has no text form in this build yet");
  Elements elements;
  std::string error;
  if (!ReadElements(mgr, from, args[0], Args(args.begin() + 2, args.end()), elements, error))
    return cli::Fail("convert: " + error);
  NxTypeConvertData* carrier = mgr.ConvertTo(from, elements.data(), elements.count);
  if (carrier == nullptr) return cli::Fail("convert: out of memory");
  void* converted = mgr.ConvertFrom(to, carrier, elements.count);
  for (uint32_t i = 0; i < elements.count; ++i) {
    const NxString* text = carrier->GetString(static_cast<int>(i));
    NxString shown;
    if (Stands(mgr, to, &NxTypeDesc::PrintToString)) {
      mgr.PrintToNxString(to, shown, mgr.GetArrayElement(to, converted, i, elements.count), nullptr,
                          1);
    } else if (to == NxTYPE_NxString) {
      shown = static_cast<NxString*>(converted)[i];
    }
    std::printf("%s -> \"%s\" -> %s\n", args[2 + i].c_str(), text != nullptr ? text->StrGet() : "",
                shown.StrGet());
  }
  mgr.Delete(to, converted, elements.count);
  delete carrier;
  if (elements.strings != nullptr) mgr.Delete(from, elements.strings, elements.count);
  return 0;
}

const cli::Registrar kPrint({"print", "print TYPE VALUE... [--format F]",
                             "the printed form of values through the row's format", RunPrint, 22});
const cli::Registrar kScan({"scan", "scan TYPE TEXT [--format F]",
                            "a value read from text through the row's format", RunScan, 23});
const cli::Registrar kConvert({"convert", "convert FROMTYPE TOTYPE VALUE...",
                               "values of one type as another, through the text carrier",
                               RunConvert, 24});

}  // namespace
