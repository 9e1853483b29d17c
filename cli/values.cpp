// Values of any row on the command line, and the texts of the plain scalars
// and of NxString.
#include "values.h"

#include <cerrno>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

#include "utf8.h"

namespace cli {

namespace {

std::map<char, ValueText>& TextRegistry() {
  static std::map<char, ValueText> texts;
  return texts;
}

}  // namespace

void RegisterValueText(char id, const ValueText& text) {
  TextRegistry()[id] = text;
}

const ValueText* FindValueText(char id) {
  const auto& texts = TextRegistry();
  auto it = texts.find(id);
  return it == texts.end() ? nullptr : &it->second;
}

namespace {

std::map<char, ValueCommands>& CommandRegistry() {
  static std::map<char, ValueCommands> commands;
  return commands;
}

}  // namespace

void RegisterValueCommands(char id, const ValueCommands& commands) {
  CommandRegistry()[id] = commands;
}

const ValueCommands* FindValueCommands(char id) {
  const auto& commands = CommandRegistry();
  auto it = commands.find(id);
  return it == commands.end() ? nullptr : &it->second;
}

bool FindType(const NxTypeMgr& mgr, const std::string& text, char& id) {
  long number = 0;
  if (ParseNumber(text, 0, 127, number)) {
    if (!NxTypeMgr::IsValidType(static_cast<char>(number))) return false;
    id = static_cast<char>(number);
    return true;
  }
  return mgr.Name2NxTypeId(text.c_str(), id) == 0;
}

Values::~Values() {
  if (data_ != nullptr) mgr_.Delete(id_, data_, count_);
}

bool Values::Make(uint32_t count) {
  if (data_ != nullptr) mgr_.Delete(id_, data_, count_);
  count_ = count;
  data_ = mgr_.Create(id_, count);
  return data_ != nullptr;
}

void* Values::at(uint32_t index) const {
  return static_cast<unsigned char*>(data_) + static_cast<size_t>(index) * mgr_.MemLenGet(id_, 1);
}

bool ReadValues(NxTypeMgr& mgr, char id, const std::string& typeName, const Args& texts,
                Values& out, std::string& error) {
  const ValueText* text = FindValueText(id);
  if (text == nullptr && !Stands(mgr, id, &NxTypeDesc::ScanFromString)) {
    error = "'" + typeName + "' has no text form in this build yet";
    return false;
  }
  if (!out.Make(static_cast<uint32_t>(texts.size()))) {
    error = "'" + typeName + "' makes no values in this build yet";
    return false;
  }
  const std::string nullText = NxTypeMgr::GetNullPrintString().StrGet();
  for (uint32_t i = 0; i < texts.size(); ++i) {
    void* element = out.at(i);
    if (texts[i] == nullText && mgr.SupportsNullValue(id)) {
      mgr.SetNullValue(id, element);
      continue;
    }
    std::string why;
    if (text != nullptr) {
      if (!text->read(texts[i], element, why)) {
        error = "bad " + typeName + " value '" + texts[i] + "'" + (why.empty() ? "" : ": " + why);
        return false;
      }
    } else {
      NxString source(texts[i].c_str());
      mgr.ScanFromNxString(id, element, source, nullptr, 1);
    }
  }
  return true;
}

std::string ShowValue(NxTypeMgr& mgr, char id, const void* element) {
  void* value = const_cast<void*>(element);
  if (mgr.SupportsNullValue(id) && mgr.IsNullValue(id, value))
    return NxTypeMgr::GetNullPrintString().StrGet();
  if (const ValueText* text = FindValueText(id)) return text->show(element);
  NxString shown;
  mgr.PrintToNxString(id, shown, value, nullptr, 1);
  return shown.StrGet();
}

bool ParseHex(const std::string& hex, std::vector<unsigned char>& bytes, std::string& error) {
  if (hex.size() % 2 != 0) {
    error = "the bytes must be an even number of hex digits";
    return false;
  }
  bytes.assign(hex.size() / 2, 0);
  for (size_t i = 0; i < hex.size(); ++i) {
    const char c = hex[i];
    unsigned digit;
    if (c >= '0' && c <= '9')
      digit = static_cast<unsigned>(c - '0');
    else if (c >= 'a' && c <= 'f')
      digit = static_cast<unsigned>(c - 'a' + 10);
    else if (c >= 'A' && c <= 'F')
      digit = static_cast<unsigned>(c - 'A' + 10);
    else {
      error = std::string("'") + c + "' is not a hex digit";
      return false;
    }
    bytes[i / 2] = static_cast<unsigned char>(bytes[i / 2] * 16 + digit);
  }
  return true;
}

std::string Hex(const unsigned char* bytes, size_t count) {
  static const char digits[] = "0123456789abcdef";
  std::string out;
  out.reserve(count * 2);
  for (size_t i = 0; i < count; ++i) {
    out += digits[bytes[i] >> 4];
    out += digits[bytes[i] & 15];
  }
  return out;
}

bool ParseFormat(const std::string& text, bool allowMemory, unsigned char& format) {
  if (text == "1" || text == "2" || (allowMemory && text == "8")) {
    format = static_cast<unsigned char>(text[0] - '0');
    return true;
  }
  return false;
}

namespace {

// ---------------------------------------------------------------------------
// The plain scalars.  Integers accept the signed and the unsigned range of
// their width; a single non-digit character stands for its code in the byte
// types.  Reals print with enough digits to read back bit for bit.

template <unsigned Width, bool Signed>
bool ReadInteger(const std::string& text, void* element, std::string&) {
  unsigned char* out = static_cast<unsigned char*>(element);
  if (text.empty()) return false;
  if (Width == 1 && text.size() == 1 && (text[0] < '0' || text[0] > '9')) {
    out[0] = static_cast<unsigned char>(text[0]);
    return true;
  }
  errno = 0;
  char* end = nullptr;
  const long long v = std::strtoll(text.c_str(), &end, 0);
  if (end == nullptr || *end != '\0' || errno == ERANGE) return false;
  const int bits = static_cast<int>(Width * 8);
  const long long low = -(1LL << (bits - 1));
  const long long high = (1LL << bits) - 1;
  if (v < low || v > high) return false;
  const uint64_t u = static_cast<uint64_t>(v);
  std::memcpy(out, &u, Width);  // little-endian machine: the low bytes
  return true;
}

template <unsigned Width, bool Signed>
std::string ShowInteger(const void* element) {
  uint64_t u = 0;
  std::memcpy(&u, element, Width);
  char buffer[32];
  if (Signed) {
    const int shift = 64 - static_cast<int>(Width * 8);
    const long long s = static_cast<long long>(u << shift) >> shift;
    std::snprintf(buffer, sizeof buffer, "%lld", s);
  } else {
    std::snprintf(buffer, sizeof buffer, "%llu", static_cast<unsigned long long>(u));
  }
  return buffer;
}

bool ReadReal(const std::string& text, double& value) {
  if (text.empty()) return false;
  errno = 0;
  char* end = nullptr;
  value = std::strtod(text.c_str(), &end);
  return end != nullptr && *end == '\0' && errno != ERANGE;
}

bool ReadFloat(const std::string& text, void* element, std::string&) {
  double v;
  if (!ReadReal(text, v) || (std::isfinite(v) && std::fabs(v) > FLT_MAX)) return false;
  const float f = static_cast<float>(v);
  std::memcpy(element, &f, 4);
  return true;
}

bool ReadDouble(const std::string& text, void* element, std::string&) {
  double v;
  if (!ReadReal(text, v)) return false;
  std::memcpy(element, &v, 8);
  return true;
}

std::string ShowFloat(const void* element) {
  float f;
  std::memcpy(&f, element, 4);
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.9g", static_cast<double>(f));
  return buffer;
}

std::string ShowDouble(const void* element) {
  double d;
  std::memcpy(&d, element, 8);
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.17g", d);
  return buffer;
}

const ValueText kSigned1{ReadInteger<1, true>, ShowInteger<1, true>, nullptr};
const ValueText kUnsigned1{ReadInteger<1, false>, ShowInteger<1, false>, nullptr};
const ValueText kSigned2{ReadInteger<2, true>, ShowInteger<2, true>, nullptr};
const ValueText kUnsigned2{ReadInteger<2, false>, ShowInteger<2, false>, nullptr};
const ValueText kSigned4{ReadInteger<4, true>, ShowInteger<4, true>, nullptr};
const ValueText kUnsigned4{ReadInteger<4, false>, ShowInteger<4, false>, nullptr};

const ValueTextRegistrar kChar(NxTYPE_char, kSigned1);
const ValueTextRegistrar kByte(NxTYPE_NxByte, kUnsigned1);
const ValueTextRegistrar kShort(NxTYPE_short, kSigned2);
const ValueTextRegistrar kWord(NxTYPE_NxWord, kUnsigned2);
const ValueTextRegistrar kLong(NxTYPE_long, kSigned4);
const ValueTextRegistrar kInt(NxTYPE_int, kSigned4);
const ValueTextRegistrar kEnum(NxTYPE_enum, kSigned4);
const ValueTextRegistrar kDword(NxTYPE_NxDWord, kUnsigned4);
const ValueTextRegistrar kBlockId(NxTYPE_BlockId, kUnsigned4);
const ValueTextRegistrar kUnsigned(NxTYPE_unsigned, kUnsigned4);
const ValueTextRegistrar kFloat(NxTYPE_float, {ReadFloat, ShowFloat, nullptr});
const ValueTextRegistrar kDouble(NxTYPE_double, {ReadDouble, ShowDouble, nullptr});

// ---------------------------------------------------------------------------
// NxString: UTF-8 on the command line.  A text that the default 8-bit code
// set holds whole becomes 8-bit text in it; any other text stays Unicode.

bool ReadString(const std::string& text, void* element, std::string& error) {
  NxString unicode;
  if (!ReadUtf8(text, NxString::GetDefaultLanguage(), unicode, error)) return false;
  const unsigned char narrow = NxString::GetDefault8CodeSet();
  const NxCodeSet* set = NxLanguageContext::QueryCodeSet(narrow);
  bool fits = set != nullptr;
  const unsigned short* units = reinterpret_cast<const unsigned short*>(unicode.StrGet());
  for (unsigned short i = 0, n = unicode.Len(); fits && i < n; ++i)
    fits = set->FromUnicode(units[i], 0) != 0;
  NxString& s = *static_cast<NxString*>(element);
  if (fits) {
    s = NxString(narrow, NxString::GetDefaultLanguage());
    s += unicode;
  } else {
    s = unicode;
  }
  return true;
}

std::string ShowString(const void* element) {
  return WriteUtf8(*static_cast<const NxString*>(element));
}

const ValueTextRegistrar kString(NxTYPE_NxString, {ReadString, ShowString, StringDiskLength});

}  // namespace

}  // namespace cli
