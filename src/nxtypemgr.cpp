// NxTypeMgr, the dispatch class over the type table, and the library's
// context: identification, the default manager and the options word.
#include <cstdio>
#include <cstring>
#include <new>

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
// constant-initialised and complete before any of these.
namespace detail {

NxString emptyString;

}  // namespace detail

// ---------------------------------------------------------------------------
// NxTypeMgr.

NxTypeMgr::NxTypeMgr(uint32_t factoryNumber) : table(nullptr), factory(0) {
  SetFactory(factoryNumber);
}

void NxTypeMgr::SetFactory(uint32_t factoryNumber) {
  if (factoryNumber <= 3) {
    table = detail::oldTable;
    factory = static_cast<uint16_t>(factoryNumber);
  } else if (factoryNumber <= 10) {
    table = detail::currentTable;
    factory = static_cast<uint16_t>(factoryNumber);
  } else if (factoryNumber == 11) {
    table = detail::oldTable;
    factory = 3;
  } else {
    table = detail::currentTable;
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
