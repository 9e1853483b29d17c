// nxtm store | load for the strings, and nxtm key: the text records, old
// records and key records of NxString, and the records and mapped keys of
// NxIString and NxCaseIString, as a user sees them.
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "cli.h"
#include "order_text.h"
#include "utf8.h"
#include "values.h"

namespace {

using cli::Args;
using cli::Get16;

// "1 byte", "2 bytes".
std::string Count(size_t n, const char* noun) {
  return std::to_string(n) + " " + noun + (n == 1 ? "" : "s");
}

std::string HexByte(unsigned value) {
  char buffer[8];
  std::snprintf(buffer, sizeof buffer, "0x%02x", value);
  return buffer;
}

// The format option, 1 or 2.
bool TakeFormat(Args& args, const std::string& command, unsigned char& format, std::string& error) {
  bool missing = false;
  const std::string text = cli::TakeOption(args, "--format", "1", missing);
  if (missing || !cli::ParseFormat(text, false, format)) {
    error = command + ": --format takes 1 or 2";
    return false;
  }
  return true;
}

// A number option in [low, high]; `value` stays -1 when the option is absent.
bool TakeNumber(Args& args, const std::string& command, const std::string& name, long low,
                long high, long& value, std::string& error) {
  bool missing = false;
  const std::string text = cli::TakeOption(args, name, "", missing);
  value = -1;
  if (!missing && text.empty()) return true;
  if (missing || !cli::ParseNumber(text, low, high, value)) {
    error = command + ": " + name + " takes a number from " + std::to_string(low) + " to " +
            std::to_string(high);
    return false;
  }
  return true;
}

// ---------------------------------------------------------------------------
// NxString.

// A text of the command line as a string: the null print string gives the
// null string; --codeset maps the text into that code set (0: the bytes of
// the native one, without a code set); --language sets the language.
bool ReadString(const std::string& text, long codeSet, long language, NxString& out,
                std::string& error) {
  if (text == NxTypeMgr::GetNullPrintString().StrGet()) {
    out.SetNullValue();
    return true;
  }
  if (!cli::FindValueText(NxTYPE_NxString)->read(text, &out, error)) return false;
  if (codeSet >= 0) {
    if (codeSet == NxCS_ORDERS ||
        NxLanguageContext::QueryCodeSet(static_cast<unsigned char>(codeSet)) == nullptr) {
      error = "code set " + std::to_string(codeSet) + " is not a code set of text";
      return false;
    }
    const unsigned char target =
        codeSet == 0 ? NxLanguageContext::GetNativeCodeSet() : static_cast<unsigned char>(codeSet);
    out.MapToCodeSet(target);
    if (codeSet == 0) out.SetCodeSetCode(0);
  }
  if (language >= 0) out.language = static_cast<unsigned char>(language);
  return true;
}

// One loaded string: its text (the orders of order text) with its code set
// and language, or the state byte of a key.
std::string DescribeString(const NxString& s) {
  if (s.codeSet == NxCS_ORDERS) {
    return "orders " + cli::OrdersHex(s) + "  (code set 254, state byte " + HexByte(s.language) +
           ")";
  }
  const std::string text = s.IsNullValue() ? std::string(NxTypeMgr::GetNullPrintString().StrGet())
                                           : cli::FindValueText(NxTYPE_NxString)->show(&s);
  return text + "  (code set " + std::to_string(s.codeSet) + ", language " +
         std::to_string(s.language) + ")";
}

int StoreStrings(const Args& input) {
  Args args = input;
  std::string error;
  unsigned char format = 1;
  long codeSet = -1;
  long language = -1;
  if (!TakeFormat(args, "store", format, error) ||
      !TakeNumber(args, "store", "--codeset", 0, 253, codeSet, error) ||
      !TakeNumber(args, "store", "--language", 0, 254, language, error))
    return cli::Fail(error);
  const bool old = cli::TakeFlag(args, "--old");
  if (args.size() < 2)
    return cli::Fail(
        "store: usage: nxtm store NxString TEXT... [--format 1|2] [--codeset N] "
        "[--language N] [--old]");
  NxTypeMgr mgr(old ? 0 : 5);
  cli::Values values(mgr, NxTYPE_NxString);
  if (!values.Make(static_cast<uint32_t>(args.size() - 1)))
    return cli::Fail("store: out of memory");
  for (uint32_t i = 0; i < values.count(); ++i) {
    NxString& s = *static_cast<NxString*>(values.at(i));
    if (!ReadString(args[i + 1], codeSet, language, s, error))
      return cli::Fail("store: bad NxString value '" + args[i + 1] + "': " + error);
  }
  const uint32_t size = mgr.DiskLenGet(NxTYPE_NxString, values.data(), format, values.count(), 8);
  std::vector<unsigned char> disk(size + 1);
  mgr.Store(NxTYPE_NxString, disk.data(), values.data(), format, values.count());
  std::printf("%s\n", cli::Hex(disk.data(), size).c_str());
  return 0;
}

int LoadStrings(const Args& input) {
  Args args = input;
  std::string error;
  unsigned char format = 1;
  if (!TakeFormat(args, "load", format, error)) return cli::Fail(error);
  if (args.size() != 2) return cli::Fail("load: usage: nxtm load NxString HEX [--format 1|2]");
  std::vector<unsigned char> disk;
  if (!cli::ParseHex(args[1], disk, error)) return cli::Fail("load: " + error);
  const size_t size = disk.size();
  if (size < 2) return cli::Fail("load: " + Count(size, "byte") + " hold no length field");
  NxTypeMgr mgr;
  const uint32_t first = Get16(disk.data(), format);
  const bool old = first + 2 <= size && disk[first + 1] == 0;
  uint32_t count = 0;
  bool cut = false;
  if (old) {
    if (first + 2 != size)
      return cli::Fail("load: " + Count(size - first - 2, "byte") + " stand behind the old record");
    for (uint32_t k = 2; k < first + 2; ++k) count += disk[k] == 0;
    std::printf("old record of %s\n", Count(count, "string").c_str());
  } else {
    for (size_t at = 0; at < size; ++count) {
      if (size - at < 4)
        return cli::Fail("load: the record at offset " + std::to_string(at) +
                         " is shorter than its 4-byte header");
      const uint32_t length = Get16(disk.data() + at, format);
      if (length < 4)
        return cli::Fail("load: the record at offset " + std::to_string(at) + " states " +
                         std::to_string(length) + " bytes, less than its header");
      if (at + length > size)
        return cli::Fail("load: the record at offset " + std::to_string(at) + " states " +
                         Count(length + 2, "byte") + ", " + std::to_string(size - at) +
                         " are given");
      // A key cut at its room ends without 0 and 0xFF.
      cut = at + length + 2 > size;
      at += cut ? size - at : length + 2;
    }
  }
  cli::Values values(mgr, NxTYPE_NxString);
  if (!values.Make(count)) return cli::Fail("load: out of memory");
  if (cut) {
    const unsigned char sourceFormat = static_cast<unsigned char>(format | 0x80);
    mgr.Translate(NxTYPE_NxString, values.data(), 8, 0, disk.data(), sourceFormat,
                  static_cast<uint32_t>(size), count);
  } else {
    mgr.Load(NxTYPE_NxString, values.data(), disk.data(), format, count);
  }
  for (uint32_t i = 0; i < count; ++i)
    std::printf("%s%s\n", DescribeString(*static_cast<NxString*>(values.at(i))).c_str(),
                cut && i + 1 == count ? "  cut" : "");
  return 0;
}

// ---------------------------------------------------------------------------
// NxIString and NxCaseIString: bytes of the default 8-bit code set.

template <class X>
bool ReadLegacy(const std::string& text, void* element, std::string& error) {
  NxString unicode;
  if (!cli::ReadUtf8(text, 0, unicode, error)) return false;
  const NxCodeSet* set = NxLanguageContext::QueryCodeSet(NxString::GetDefault8CodeSet());
  std::string bytes;
  const unsigned short* units = reinterpret_cast<const unsigned short*>(unicode.StrGet());
  for (unsigned short i = 0; i < unicode.Len(); ++i) {
    const unsigned short c = set->FromUnicode(units[i], 0);
    if (c == 0) {
      error = "'" + cli::Utf8Of(units[i]) + "' has no byte in code set " +
              std::to_string(set->number);
      return false;
    }
    bytes += static_cast<char>(c);
  }
  *static_cast<X*>(element) = bytes.c_str();
  return true;
}

std::string ShowBytes(const char* data) {
  const NxCodeSet* set = NxLanguageContext::QueryCodeSet(NxString::GetDefault8CodeSet());
  std::string out;
  for (const unsigned char* p = reinterpret_cast<const unsigned char*>(data);
       p != nullptr && *p != 0; ++p)
    out += cli::Utf8Of(set->ToUnicode(*p));
  return out;
}

template <class X>
std::string ShowLegacy(const void* element) {
  return ShowBytes(static_cast<const X*>(element)->data);
}

size_t LegacyDiskLength(const unsigned char* bytes, size_t available, unsigned char format) {
  if (available < 3) return 0;
  const size_t length = Get16(bytes + 1, format) + 3u;
  return length <= available ? length : 0;
}

template <class X>
int StoreLegacy(const Args& input) {
  Args args = input;
  std::string error;
  unsigned char format = 1;
  if (!TakeFormat(args, "store", format, error)) return cli::Fail(error);
  const bool key = cli::TakeFlag(args, "--key");
  if (args.size() < 2)
    return cli::Fail("store: usage: nxtm store " + args[0] + " TEXT... [--format 1|2] [--key]");
  NxTypeMgr mgr;
  char id = 0;
  cli::FindType(mgr, args[0], id);
  cli::Values values(mgr, id);
  if (!cli::ReadValues(mgr, id, args[0], Args(args.begin() + 1, args.end()), values, error))
    return cli::Fail("store: " + error);
  const uint32_t size = mgr.DiskLenGet(id, values.data(), format, values.count(), 8);
  std::vector<unsigned char> disk(size + 1);
  // A key format marks the record with form 1.
  mgr.Store(id, disk.data(), values.data(), static_cast<unsigned char>(format | (key ? 0x80 : 0)),
            values.count());
  std::printf("%s\n", cli::Hex(disk.data(), size).c_str());
  return 0;
}

template <class X>
int LoadLegacy(const Args& input) {
  Args args = input;
  std::string error;
  unsigned char format = 1;
  if (!TakeFormat(args, "load", format, error)) return cli::Fail(error);
  if (args.size() != 2)
    return cli::Fail("load: usage: nxtm load " + args[0] + " HEX [--format 1|2]");
  std::vector<unsigned char> disk;
  if (!cli::ParseHex(args[1], disk, error)) return cli::Fail("load: " + error);
  if (disk.size() < 3)
    return cli::Fail("load: " + Count(disk.size(), "byte") + " are shorter than the 3-byte header");
  const uint32_t length = Get16(disk.data() + 1, format);
  if (length + 3u != disk.size())
    return cli::Fail("load: the record states " + Count(length, "byte") + " of text, " +
                     std::to_string(disk.size() - 3) + " are given");
  NxTypeMgr mgr;
  char id = 0;
  cli::FindType(mgr, args[0], id);
  const unsigned char form = disk[0];
  // A mapped key holds one text; NxCaseIString takes it back to text.
  const bool mapped = (form & 0x80) != 0;
  uint32_t count = 0;
  for (uint32_t k = 3; k < disk.size(); ++k) count += disk[k] == 0;
  if (mapped) count = 1;
  cli::Values values(mgr, id);
  if (!values.Make(count)) return cli::Fail("load: out of memory");
  mgr.Translate(id, values.data(), 8, 0, disk.data(),
                static_cast<unsigned char>(format | (mapped ? 0x80 : 0)),
                static_cast<uint32_t>(disk.size()), count);
  std::printf("form %s, %s\n", HexByte(form).c_str(), Count(count, "string").c_str());
  for (uint32_t i = 0; i < count; ++i) std::printf("%s\n", ShowLegacy<X>(values.at(i)).c_str());
  return 0;
}

// ---------------------------------------------------------------------------
// nxtm key.

int KeyOfString(const std::string& text, long codeSet, long language, unsigned char format,
                long size) {
  NxString s;
  std::string error;
  if (!ReadString(text, codeSet, language, s, error))
    return cli::Fail("key: bad text '" + text + "': " + error);
  NxTypeMgr mgr;
  const unsigned char keyFormat = static_cast<unsigned char>(0x80 | format);
  const uint32_t room =
      size >= 0 ? static_cast<uint32_t>(size) : StringSizeGet(&s, 8, keyFormat, 1);
  std::vector<unsigned char> key(room + 1);
  const uint32_t n = mgr.Translate(NxTYPE_NxString, key.data(), keyFormat, room, &s, 8, 0, 1);
  if (n == 0) {
    std::printf("no key: %u bytes leave no room behind the 4-byte header\n", room);
    return 0;
  }
  if (n < 4 || key[2] != NxCS_ORDERS) {
    std::printf("%s\nno key: a text without a code set stays a text record\n",
                cli::Hex(key.data(), n).c_str());
    return 0;
  }
  const uint32_t length = Get16(key.data(), format);
  const bool whole = length + 2 == n;
  std::string groups = cli::Hex(key.data(), 4);
  for (uint32_t at = 4; at + 1 < length; at += 2) groups += " " + cli::Hex(key.data() + at, 2);
  if (whole) groups += " " + cli::Hex(key.data() + length, 2);
  std::printf("%s\n", groups.c_str());
  const unsigned char state = key[3];
  std::printf("L %u, %s, state byte %s%s, %s\n", length, Count((length - 4) / 2, "order").c_str(),
              HexByte(state).c_str(), (state & 0x80) != 0 ? " (ended at a change of state)" : "",
              whole ? "whole" : ("cut at " + std::to_string(room) + " bytes").c_str());
  return 0;
}

template <class X>
int KeyOfLegacy(char id, const std::string& text, unsigned char format, long size) {
  X value;
  std::string error;
  if (!ReadLegacy<X>(text, &value, error))
    return cli::Fail("key: bad text '" + text + "': " + error);
  NxTypeMgr mgr;
  const unsigned char keyFormat = static_cast<unsigned char>(0x80 | format);
  const uint32_t whole = mgr.DiskLenGet(id, &value, keyFormat, 1, 8);
  const uint32_t room = size >= 0 ? static_cast<uint32_t>(size) : whole;
  std::vector<unsigned char> key(room + 1);
  const uint32_t n = mgr.Translate(id, key.data(), keyFormat, room, &value, 8, 0, 1);
  if (n == 0) {
    std::printf("no key: %u bytes leave no room for the 3-byte header and a terminator\n", room);
    return 0;
  }
  const uint32_t length = Get16(key.data() + 1, format);
  std::printf("%s %s %s\n", cli::Hex(key.data(), 1).c_str(), cli::Hex(key.data() + 1, 2).c_str(),
              cli::Hex(key.data() + 3, n - 3).c_str());
  std::printf(
      "form %s, L %u, %s\n", HexByte(key[0]).c_str(), length,
      length + 3 >= whole ? "whole" : ("cut at " + std::to_string(room) + " bytes").c_str());
  return 0;
}

int RunKey(const Args& input) {
  Args args = input;
  std::string error;
  unsigned char format = 1;
  long codeSet = -1;
  long language = -1;
  long size = -1;
  bool missing = false;
  const std::string type = cli::TakeOption(args, "--type", "NxString", missing);
  if (missing) return cli::Fail("key: --type takes NxString, NxIString or NxCaseIString");
  if (!TakeFormat(args, "key", format, error) ||
      !TakeNumber(args, "key", "--codeset", 0, 253, codeSet, error) ||
      !TakeNumber(args, "key", "--language", 0, 254, language, error) ||
      !TakeNumber(args, "key", "--size", 0, 65535, size, error))
    return cli::Fail(error);
  if (args.size() != 1)
    return cli::Fail(
        "key: usage: nxtm key TEXT [--language N] [--codeset N] [--format 1|2] "
        "[--size N] [--type NxString|NxIString|NxCaseIString]");
  NxTypeMgr mgr;
  char id = 0;
  if (!cli::FindType(mgr, type, id) ||
      (id != NxTYPE_NxString && id != NxTYPE_NxIString && id != NxTYPE_NxCaseIString))
    return cli::Fail("key: --type takes NxString, NxIString or NxCaseIString, not '" + type + "'");
  if (id == NxTYPE_NxString) return KeyOfString(args[0], codeSet, language, format, size);
  if (codeSet >= 0 || language >= 0)
    return cli::Fail("key: " + type + " has no code set and no language");
  return id == NxTYPE_NxIString ? KeyOfLegacy<NxIString>(id, args[0], format, size)
                                : KeyOfLegacy<NxCaseIString>(id, args[0], format, size);
}

const cli::Registrar kKey({"key",
                           "key TEXT [--language N] [--codeset N] [--format 1|2] [--size N] "
                           "[--type NxString|NxIString|NxCaseIString]",
                           "the index key of a text: its orders, its state byte, where it was cut",
                           RunKey, 25});

const cli::ValueCommandsRegistrar kStringCommands(NxTYPE_NxString, {StoreStrings, LoadStrings});
const cli::ValueCommandsRegistrar kIStringCommands(NxTYPE_NxIString,
                                                   {StoreLegacy<NxIString>, LoadLegacy<NxIString>});
const cli::ValueCommandsRegistrar kCaseIStringCommands(NxTYPE_NxCaseIString,
                                                       {StoreLegacy<NxCaseIString>,
                                                        LoadLegacy<NxCaseIString>});
const cli::ValueTextRegistrar kIString(NxTYPE_NxIString, {ReadLegacy<NxIString>,
                                                          ShowLegacy<NxIString>, LegacyDiskLength});
const cli::ValueTextRegistrar kCaseIString(NxTYPE_NxCaseIString,
                                           {ReadLegacy<NxCaseIString>, ShowLegacy<NxCaseIString>,
                                            LegacyDiskLength});

}  // namespace

namespace cli {

// A text record or key record takes L + 2 bytes; an old record holds the
// whole array.  0 when the bytes don't hold the whole record.
size_t StringDiskLength(const unsigned char* bytes, size_t available, unsigned char format) {
  if (available < 2) return 0;
  const size_t length = Get16(bytes, format);
  if (length + 2 > available) return 0;
  if (bytes[length + 1] != 0 && length < 4) return 0;
  return length + 2;
}

}  // namespace cli
