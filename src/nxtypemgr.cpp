// NxTypeMgr, the dispatch class over the type table, and the library's
// context: identification, the default manager and the options word.
#include <cstdio>
#include <cstring>
#include <new>
#include <string>

#include "nxinternal.h"
#include "nxrows.h"

// ---------------------------------------------------------------------------
// Identification constants.
namespace {

constexpr uint32_t versionMajor = 9;
constexpr uint32_t versionMinor = 5;
constexpr uint32_t versionBuild = 16;
constexpr uint32_t versionPatch = 182;
constexpr uint32_t versionExtra = 0;
constexpr const char versionText[] = "9.5.16.182.0 ";
constexpr const char productName[] = "Zentrolith Typemanager";
constexpr const char buildName[] = "nxtms";
// The day of the build ("Mmm dd yyyy") and the same with the time.
constexpr const char buildDate[] = __DATE__;
constexpr const char buildTimestamp[] = __DATE__ " " __TIME__;

#if defined(__clang__)
constexpr const char toolName[] = "clang++";
constexpr uint32_t toolVersion =
    __clang_major__ * 10000u + __clang_minor__ * 100u + __clang_patchlevel__;
#elif defined(__GNUC__)
constexpr const char toolName[] = "g++";
constexpr uint32_t toolVersion = __GNUC__ * 10000u + __GNUC_MINOR__ * 100u + __GNUC_PATCHLEVEL__;
#else
constexpr const char toolName[] = "c++";
constexpr uint32_t toolVersion = 0;
#endif

// Process-wide variables.
NxTypeMgr* defaultTypeMgr = nullptr;
int32_t typeMgrOptions = 0;
char infoText[sizeof productName + sizeof versionText + 1] = "";

}  // namespace

// ---------------------------------------------------------------------------
// Load-time objects, in the order the library depends on.  The rows are
// constant-initialised and complete before any of these; the null dates of
// the date family come first when that family exists.
namespace detail {

NxString emptyString;
NxString nullPrintString("{NULL}");

}  // namespace detail

// ---------------------------------------------------------------------------
// NxTypeMgr.

NxTypeMgr::NxTypeMgr(uint32_t factoryNumber) : table(nullptr), factory(0) {
  SetFactory(factoryNumber);
}

void NxTypeMgr::SetFactory(uint32_t factoryNumber) {
  if (factoryNumber <= 3) {
    table = detail::oldTable.entries + detail::kTableMap;
    factory = static_cast<uint16_t>(factoryNumber);
  } else if (factoryNumber <= 10) {
    table = detail::currentTable.entries + detail::kTableMap;
    factory = static_cast<uint16_t>(factoryNumber);
  } else if (factoryNumber == 11) {
    table = detail::oldTable.entries + detail::kTableMap;
    factory = 3;
  } else {
    table = detail::currentTable.entries + detail::kTableMap;
    factory = 4;
  }
}

NxTypeDesc* NxTypeMgr::IllegalRowGet() {
  return &nxrows::illegalRow;
}

char* NxTypeMgr::NameGet(char id, char* buffer) const {
  const char* name = RowGet(id)->name;
  if (buffer == nullptr) return const_cast<char*>(name);
  std::strcpy(buffer, name);
  return buffer;
}

int NxTypeMgr::Name2NxTypeId(const char* name, char& id) const {
  id = 0;
  if (name == nullptr) name = "";
  while (IsValidType(id)) {
    const NxTypeDesc* row = table[static_cast<unsigned char>(id)];
    if (row == nullptr) return 1;  // the old table ends early
    if (std::strcmp(row->name, name) == 0) return 0;
    id = static_cast<char>(id + 1);
  }
  return 1;
}

void* NxTypeMgr::GetArrayElement(char id, void* base, uint32_t index, uint32_t count) const {
  const unsigned u = static_cast<unsigned char>(id);
  if (table[u < 41u ? u : 40u] == nullptr) return nullptr;
  if (count != 0 && index >= count) return nullptr;
  return static_cast<char*>(base) + static_cast<size_t>(index) * RowGet(id)->MemLen;
}

NxTypeConvertData* NxTypeMgr::ConvertTo(char id, void* value, uint32_t count) {
  NxConvertToFunc slot = RowGet(id)->ConvertTo;
  if (slot == nullptr) return nullptr;
  NxTypeConvertData* data = slot(value, count);
  if (data != nullptr) data->typeMgr = this;
  return data;
}

void* NxTypeMgr::ConvertFrom(char id, NxTypeConvertData* data, uint32_t count) {
  if (data != nullptr) data->typeMgr = this;
  NxConvertFromFunc slot = RowGet(id)->ConvertFrom;
  if (slot == nullptr) return nullptr;
  return slot(data, count);
}

int NxTypeMgr::DiskIsNullValue(char, void*) const {
  return NxSTATUS_NO_ANSWER;
}

const char* NxTypeMgr::ExchangeFormat(char id, const char* format) {
  NxTypeDesc* row = RowGet(id);
  const char* old = row->Format;
  if (format != nullptr) row->Format = format;
  return old;
}

NxTypeCmpFunc NxTypeMgr::ExchangeNxTypeCmpFunc(char id, NxTypeCmpFunc function) {
  NxTypeDesc* row = RowGet(id);
  NxTypeCmpFunc old = row->Compare;
  if (function != nullptr) row->Compare = function;
  return old;
}

NxPrintToNxStringFunc NxTypeMgr::ExchangePrintToNxStringFunc(char id,
                                                             NxPrintToNxStringFunc function) {
  NxTypeDesc* row = RowGet(id);
  NxPrintToNxStringFunc old = row->PrintToString;
  if (function != nullptr) row->PrintToString = function;
  return old;
}

NxScanFromNxStringFunc NxTypeMgr::ExchangeScanFromNxStringFunc(char id,
                                                               NxScanFromNxStringFunc function) {
  NxTypeDesc* row = RowGet(id);
  NxScanFromNxStringFunc old = row->ScanFromString;
  if (function != nullptr) row->ScanFromString = function;
  return old;
}

// ---------------------------------------------------------------------------
// Library context and identification.

void ___NxTypemgrContext(int open) {
  ___NxI18NContext(open);
  if (open != 0) {
    defaultTypeMgr = new (std::nothrow) NxTypeMgr(5);
  } else {
    delete defaultTypeMgr;
    defaultTypeMgr = nullptr;
  }
}

NxTypeMgr* DefaultTypeMgr(NxTypeMgr* replacement) {
  NxTypeMgr* current = defaultTypeMgr;
  if (replacement != nullptr) defaultTypeMgr = replacement;
  return current;
}

int32_t& ___NxTypeMgrOptions() {
  return typeMgrOptions;
}

int NxCheckDll(int flags) {
  return CheckNxVersionNumber(versionMajor, versionMinor, versionBuild, versionPatch, versionExtra,
                              flags | 3);
}

const char* NxDescribeDll(uint32_t* major, uint32_t* minor, uint32_t* build, uint32_t* patch,
                          uint32_t* extra, const char** name, const char** timestamp,
                          const char** unknown, uint32_t* version, const char** tool,
                          const char** empty) {
  *major = versionMajor;
  *minor = versionMinor;
  *build = versionBuild;
  *patch = versionPatch;
  *extra = versionExtra;
  *name = buildName;
  *timestamp = buildTimestamp;
  *unknown = "unknown";
  *version = toolVersion;
  *tool = toolName;
  *empty = "";
  return productName;
}

void GetNxTypeMgrInfo(const char** tool, uint32_t* version, const char** info, const char** date,
                      const char** name) {
  if (tool != nullptr) *tool = toolName;
  if (version != nullptr) *version = toolVersion;
  if (info != nullptr) {
    std::snprintf(infoText, sizeof infoText, "%s %s", productName, versionText);
    *info = infoText;
  }
  if (date != nullptr) *date = buildDate;
  if (name != nullptr) *name = buildName;
}

// ---------------------------------------------------------------------------
// NxTypeConvertData.

NxTypeConvertData::NxTypeConvertData(char t, uint32_t n, void* d, NxTypeMgr* mgr)
    : typeMgr(mgr), data(d), count(n), type(t) {}

NxTypeConvertData* NxTypeConvertData::Make(char type, uint32_t count, void* data,
                                           NxTypeMgr* typeMgr) {
  return new (std::nothrow) NxTypeConvertData(type, count, data, typeMgr);
}

NxTypeConvertData::~NxTypeConvertData() {
  if (typeMgr != nullptr && data != nullptr) {
    typeMgr->Delete(type, data, count);
    data = nullptr;
  }
  count = 0;
  type = NxTYPE_NONE;
}

NxString* NxTypeConvertData::GetString(int index) {
  if (index < 0 || static_cast<uint32_t>(index) >= count || type != NxTYPE_NxString ||
      data == nullptr)
    return nullptr;
  return static_cast<NxString*>(data) + index;
}

// ---------------------------------------------------------------------------
// Null values.

int NxTypeMgr::SetNullValue(char id, void* value) {
  NxTypeDesc* row = RowGet(id);
  if (row->SetNull != nullptr) return row->SetNull(value);
  // No null of its own: the value becomes what an empty string converts to.
  NxTypeDesc* strings = RowGet(NxTYPE_NxString);
  void* text = strings->Create(1);
  NxTypeConvertData* carrier = NxTypeConvertData::Make(NxTYPE_NxString, 1, text, nullptr);
  if (carrier == nullptr) {
    strings->Delete(text, 1);
    return 0;
  }
  void* converted = ConvertFrom(id, carrier, 1);  // enters this manager into the carrier
  delete carrier;                                 // which frees the string through it
  row->Assignment(value, converted, 1, 1);
  Delete(id, converted, 1);
  return 0;
}

const NxString& NxTypeMgr::GetNullPrintString() {
  return detail::nullPrintString;
}

void NxTypeMgr::SetNullPrintString(const NxString& text) {
  detail::nullPrintString = text;
}

// ---------------------------------------------------------------------------
// Print and scan.

NxString& NxTypeMgr::PrintToNxString(char id, NxString& result, void* value, const char* format,
                                     uint32_t count) {
  NxTypeDesc* row = RowGet(id);
  NxPrintToNxStringFunc print = row->PrintToString;
  if (print == nullptr) return result;
  if (format == nullptr) format = row->Format;
  if (count >= 2 && print != nxrows::BytePrint) {
    // The array form: the elements' texts appended, separated by ",".
    for (uint32_t i = 0; i < count; ++i) {
      void* element = GetArrayElement(id, value, i, count);
      NxString text;
      print(text, element, format, 1);
      result += text;
      if (i + 1 < count) result += NxString(",");
    }
    return result;
  }
  return print(result, value, format, count);
}

void* NxTypeMgr::ScanFromNxString(char id, void* value, NxString& text, const char* format,
                                  uint32_t count) {
  NxTypeDesc* row = RowGet(id);
  NxScanFromNxStringFunc scan = row->ScanFromString;
  if (scan == nullptr) return value;
  if (format == nullptr) format = row->Format;
  return scan(value, text, format, count);
}

// ---------------------------------------------------------------------------
// The older text form of an array: one string, each element closed by a
// separator character that occurs in none of them.

NxString* NxTypeMgr::ConvertToNxStringOld(void* value, char id, uint32_t count) {
  NxTypeDesc* row = RowGet(id);
  if (row->ConvertTo == nullptr) return nullptr;
  NxTypeConvertData* carrier = row->ConvertTo(value, count);
  if (carrier == nullptr) return nullptr;
  carrier->typeMgr = this;
  // The first code from 1 to 254 that no element holds; "," when all do.
  bool seen[256] = {};
  for (uint32_t i = 0; i < count; ++i) {
    NxString* s = carrier->GetString(static_cast<int>(i));
    if (s == nullptr) continue;
    const unsigned width = s->codeSet > 224 ? 2 : 1;
    const unsigned char* p = reinterpret_cast<const unsigned char*>(s->StrGet());
    for (;; p += width) {
      unsigned unit = p[0];
      if (width == 2) {
        uint16_t u;
        std::memcpy(&u, p, 2);
        unit = u;
      }
      if (unit == 0) break;
      if (unit < 256) seen[unit] = true;
    }
  }
  char separator = ',';
  for (unsigned code = 1; code <= 254; ++code) {
    if (!seen[code]) {
      separator = static_cast<char>(code);
      break;
    }
  }
  NxString* text = static_cast<NxString*>(RowGet(NxTYPE_NxString)->Create(1));
  if (text != nullptr) {
    const NxString closing(separator);
    for (uint32_t i = 0; i < count; ++i) {
      NxString* s = carrier->GetString(static_cast<int>(i));
      if (s != nullptr) *text += *s;
      *text += closing;
    }
  }
  delete carrier;
  return text;
}

void* NxTypeMgr::ConvertFromNxStringOld(NxString* text, char id, uint32_t count) {
  // The separator is the text's last character; an empty text has ",".
  const unsigned short length = text->Len();
  NxString separator(",");
  if (length > 0) separator = text->Copy(static_cast<unsigned short>(length - 1), 1);
  const NxChar mark = separator[0];
  // Parts: one more than there are separators.
  uint32_t parts = 1;
  {
    NxString copy(*text);
    for (unsigned short i = 0; i < copy.Len(); ++i) {
      if (copy[i].Value() == mark.Value()) ++parts;
    }
  }
  NxTypeDesc* strings = RowGet(NxTYPE_NxString);
  NxString* array = static_cast<NxString*>(strings->Create(parts));
  if (array == nullptr) return nullptr;
  for (uint32_t part = 0; part < parts; ++part) {
    short at = -1;
    for (unsigned short i = 0; i < text->Len(); ++i) {
      if ((*text)[i].Value() == mark.Value()) {
        at = static_cast<short>(i);
        break;
      }
    }
    if (at < 0) continue;  // no separator left: the part stays empty
    array[part] = text->Copy(0, at);
    text->Cut(0, static_cast<short>(at + 1));
  }
  NxTypeConvertData* carrier = NxTypeConvertData::Make(NxTYPE_NxString, parts, array, this);
  if (carrier == nullptr) {
    strings->Delete(array, parts);
    return nullptr;
  }
  NxConvertFromFunc convertFrom = RowGet(id)->ConvertFrom;
  void* result = convertFrom != nullptr ? convertFrom(carrier, count) : nullptr;
  delete carrier;
  return result;
}
