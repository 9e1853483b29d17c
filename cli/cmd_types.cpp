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
#include "order_text.h"
#include "values.h"

namespace {

using cli::Args;

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
  if (!cli::ParseFormat(formatText, true, format))
    return cli::Fail("store: bad format '" + formatText + "' (1, 2 or 8)");
  if (args.size() < 2) return cli::Fail("store: usage: nxtm store TYPE VALUE... [--format 1|2|8]");
  NxTypeMgr mgr;
  char id = 0;
  if (!cli::FindType(mgr, args[0], id)) return cli::Fail("store: unknown type '" + args[0] + "'");
  if (const cli::ValueCommands* own = cli::FindValueCommands(id)) return own->store(input);
  if (!cli::Stands(mgr, id, &NxTypeDesc::Store))
    return cli::Fail("store: '" + args[0] + "' has no disk form in this build yet");
  cli::Values values(mgr, id);
  std::string error;
  if (!cli::ReadValues(mgr, id, args[0], Args(args.begin() + 1, args.end()), values, error))
    return cli::Fail("store: " + error);
  const uint32_t diskLength = mgr.DiskLenGet(id, values.data(), format, values.count(), 8);
  std::vector<unsigned char> disk(diskLength + 1);
  const uint32_t written = mgr.Store(id, disk.data(), values.data(), format, values.count());
  std::printf("%s\n", cli::Hex(disk.data(), written).c_str());
  return 0;
}

int RunLoad(const Args& input) {
  Args args = input;
  bool missing = false;
  const std::string formatText = cli::TakeOption(args, "--format", "1", missing);
  if (missing) return cli::Fail("load: --format needs a value (1 or 2)");
  unsigned char format = 1;
  if (!cli::ParseFormat(formatText, false, format))
    return cli::Fail("load: bad format '" + formatText + "' (1 or 2)");
  if (args.size() != 2) return cli::Fail("load: usage: nxtm load TYPE HEX [--format 1|2]");
  NxTypeMgr mgr;
  char id = 0;
  if (!cli::FindType(mgr, args[0], id)) return cli::Fail("load: unknown type '" + args[0] + "'");
  if (const cli::ValueCommands* own = cli::FindValueCommands(id)) return own->load(input);
  if (!cli::Stands(mgr, id, &NxTypeDesc::Load))
    return cli::Fail("load: '" + args[0] + "' has no disk form in this build yet");
  std::vector<unsigned char> disk;
  std::string error;
  if (!cli::ParseHex(args[1], disk, error)) return cli::Fail("load: " + error);
  if (disk.empty()) return cli::Fail("load: no bytes given");
  uint32_t count = 0;
  if (mgr.IsFixed(id)) {
    const uint32_t element = mgr.DiskLenGet(id, nullptr, format, 1, 8);
    if (element == 0 || disk.size() % element != 0)
      return cli::Fail("load: " + std::to_string(disk.size()) +
                       " bytes are not a whole number of " + std::to_string(element) + "-byte " +
                       args[0] + " values");
    count = static_cast<uint32_t>(disk.size() / element);
  } else {
    const cli::ValueText* text = cli::FindValueText(id);
    if (text == nullptr || text->diskLength == nullptr)
      return cli::Fail("load: '" + args[0] + "' has no disk form in this build yet");
    for (size_t at = 0; at < disk.size(); ++count) {
      const size_t length = text->diskLength(disk.data() + at, disk.size() - at, format);
      if (length == 0)
        return cli::Fail("load: the bytes from offset " + std::to_string(at) +
                         " are not a whole " + args[0] + " record");
      if (text->diskCount != nullptr) {  // one record holds the whole array
        if (at != 0)
          return cli::Fail("load: " + args[0] + " values stand in one record; the bytes from " +
                           "offset " + std::to_string(at) + " begin another");
        count = text->diskCount(disk.data(), length, format);
        if (count == 0)
          return cli::Fail("load: the " + args[0] + " record does not hold whole values");
        --count;  // the loop adds the last one
      }
      at += length;
    }
  }
  cli::Values values(mgr, id);
  if (!values.Make(count)) return cli::Fail("load: '" + args[0] + "' makes no values");
  mgr.Load(id, values.data(), disk.data(), format, count);
  for (uint32_t i = 0; i < count; ++i)
    std::printf("%s%s", i ? " " : "", cli::ShowValue(mgr, id, values.at(i)).c_str());
  std::printf("\n");
  return 0;
}

const cli::Registrar kTypes({"types", "types [--old]",
                             "the type table: id, name, memory length, fixed, format, null",
                             RunTypes, 10});
const cli::Registrar kVersion({"version", "version", "the library's identification", RunVersion,
                               11});
const cli::Registrar kStore({"store", "store TYPE VALUE... [--format 1|2|8]",
                             "disk bytes of values, in hex", RunStore, 20});
const cli::Registrar kLoad({"load", "load TYPE HEX [--format 1|2]",
                            "values read back from disk bytes", RunLoad, 21});

// ---------------------------------------------------------------------------
// print, scan, convert: the text forms through the type manager.

int RunPrint(const Args& input) {
  Args args = input;
  bool missing = false;
  const std::string format = cli::TakeOption(args, "--format", "", missing);
  if (missing) return cli::Fail("print: --format needs a value");
  if (args.size() < 2) return cli::Fail("print: usage: nxtm print TYPE VALUE... [--format F]");
  NxTypeMgr mgr;
  char id = 0;
  if (!cli::FindType(mgr, args[0], id)) return cli::Fail("print: unknown type '" + args[0] + "'");
  if (!cli::Stands(mgr, id, &NxTypeDesc::PrintToString))
    return cli::Fail("print: '" + args[0] + "' has no print form in this build yet");
  cli::Values values(mgr, id);
  std::string error;
  // Strings also print as order text, and into a code set of choice.
  cli::StringPrintOptions strings;
  strings.resultCodeSet = NxString::GetDefaultCodeSet();
  if (id == NxTYPE_NxString && !cli::TakeStringPrintOptions(args, strings, error))
    return cli::Fail("print: " + error);
  if (args.size() < 2) return cli::Fail("print: usage: nxtm print TYPE VALUE... [--format F]");
  if (strings.orderText) {
    if (!values.Make(static_cast<uint32_t>(strings.values.size())))
      return cli::Fail("print: '" + args[0] + "' makes no values");
    for (uint32_t i = 0; i < values.count(); ++i)
      *static_cast<NxString*>(values.at(i)) = strings.values[i];
  } else if (!cli::ReadValues(mgr, id, args[0], Args(args.begin() + 1, args.end()), values,
                              error)) {
    return cli::Fail("print: " + error);
  }
  NxString result(strings.resultCodeSet, NxString::GetDefaultLanguage());
  mgr.PrintToNxString(id, result, values.data(), format.empty() ? nullptr : format.c_str(),
                      values.count());
  std::printf("%s\n", cli::FindValueText(NxTYPE_NxString)->show(&result).c_str());
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
  if (!cli::FindType(mgr, args[0], id)) return cli::Fail("scan: unknown type '" + args[0] + "'");
  if (!cli::Stands(mgr, id, &NxTypeDesc::ScanFromString))
    return cli::Fail("scan: '" + args[0] + "' has no scan form in this build yet");
  NxString text;
  std::string error;
  if (!cli::FindValueText(NxTYPE_NxString)->read(args[1], &text, error))
    return cli::Fail("scan: " + error);
  // The byte types read one element per character; the others one element.
  const bool bytes = id == NxTYPE_char || id == NxTYPE_NxByte;
  const uint32_t count = bytes ? static_cast<uint32_t>(args[1].empty() ? 1 : args[1].size()) : 1;
  cli::Values values(mgr, id);
  if (!values.Make(count)) return cli::Fail("scan: '" + args[0] + "' makes no values");
  mgr.ScanFromNxString(id, values.data(), text, format.empty() ? nullptr : format.c_str(), count);
  for (uint32_t i = 0; i < count; ++i)
    std::printf("%s%s", i ? " " : "", cli::ShowValue(mgr, id, values.at(i)).c_str());
  std::printf("\n");
  return 0;
}

int RunConvert(const Args& args) {
  if (args.size() < 3) return cli::Fail("convert: usage: nxtm convert FROMTYPE TOTYPE VALUE...");
  NxTypeMgr mgr;
  char from = 0;
  char to = 0;
  if (!cli::FindType(mgr, args[0], from))
    return cli::Fail("convert: unknown type '" + args[0] + "'");
  if (!cli::FindType(mgr, args[1], to)) return cli::Fail("convert: unknown type '" + args[1] + "'");
  if (!cli::Stands(mgr, from, &NxTypeDesc::ConvertTo))
    return cli::Fail("convert: '" + args[0] + "' has no text form in this build yet");
  if (!cli::Stands(mgr, to, &NxTypeDesc::ConvertFrom))
    return cli::Fail("convert: '" + args[1] + "' has no text form in this build yet");
  cli::Values values(mgr, from);
  std::string error;
  if (!cli::ReadValues(mgr, from, args[0], Args(args.begin() + 2, args.end()), values, error))
    return cli::Fail("convert: " + error);
  NxTypeConvertData* carrier = mgr.ConvertTo(from, values.data(), values.count());
  if (carrier == nullptr) return cli::Fail("convert: out of memory");
  void* converted = mgr.ConvertFrom(to, carrier, values.count());
  for (uint32_t i = 0; i < values.count(); ++i) {
    const NxString* text = carrier->GetString(static_cast<int>(i));
    // The converted value through the target row's print, as a reader of
    // that type sees it.
    std::string shown;
    void* element = converted != nullptr ? mgr.GetArrayElement(to, converted, i, values.count())
                                         : nullptr;
    if (element != nullptr && cli::Stands(mgr, to, &NxTypeDesc::PrintToString)) {
      NxString printed;
      mgr.PrintToNxString(to, printed, element, nullptr, 1);
      shown = cli::FindValueText(NxTYPE_NxString)->show(&printed);
    } else if (element != nullptr) {
      shown = cli::ShowValue(mgr, to, element);
    }
    std::printf("%s -> \"%s\" -> %s\n", args[2 + i].c_str(),
                text != nullptr ? cli::FindValueText(NxTYPE_NxString)->show(text).c_str() : "",
                shown.c_str());
  }
  mgr.Delete(to, converted, values.count());
  delete carrier;
  return 0;
}

const cli::Registrar kPrint({"print",
                             "print TYPE VALUE... [--format F]; NxString also [--key [--codeset N] "
                             "[--language N] | --orders [--state N]] [--result-codeset N]",
                             "the printed form of values through the row's format", RunPrint, 22});
const cli::Registrar kScan({"scan", "scan TYPE TEXT [--format F]",
                            "a value read from text through the row's format", RunScan, 23});
const cli::Registrar kConvert({"convert", "convert FROMTYPE TOTYPE VALUE...",
                               "values of one type as another, through the text carrier",
                               RunConvert, 24});

}  // namespace
