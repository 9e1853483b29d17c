// NxBoolean: its comparisons and the row of the type table.
#include <cstring>

#include "nxinternal.h"
#include "nxkeyrows.h"
#include "nxrows.h"

int NxBoolean::operator==(const NxBoolean& other) const {
  const bool thisNull = value == Null;
  const bool otherNull = other.value == Null;
  if (thisNull || otherNull) return thisNull && otherNull;
  return (value == 0) == (other.value == 0);
}

int NxBoolean::operator>(const NxBoolean& other) const {
  if (value == Null) return 0;
  if (other.value == Null) return 1;
  return static_cast<signed char>(value) > static_cast<signed char>(other.value);
}

// ---------------------------------------------------------------------------
// The row.  Memory and disk hold the same byte in every format.

namespace nxrows {

namespace {

constexpr size_t kHeader = ClassArrayHeader<NxBoolean>();

void* BooleanCreate(uint32_t count) {
  return ClassArrayCreate(count, 1, kHeader);
}

void* BooleanDelete(void* value, uint32_t count) {
  ClassArrayDelete(value, count, kHeader);
  return nullptr;
}

uint32_t BooleanStore(void* disk, const void* memory, unsigned char format, uint32_t count) {
  if (count == 0) return 0;
  return CharStore(disk, memory, format, count);
}

uint32_t BooleanLoad(void* memory, const void* disk, unsigned char format, uint32_t count) {
  if (count == 0) return 0;
  return CharStore(memory, disk, format, count);
}

uint32_t BooleanNullSizeGet(uint32_t count) {
  return count;
}

uint32_t BooleanSizeGet(const void*, unsigned char, unsigned char, uint32_t count) {
  return count;
}

uint32_t BooleanSizeGetFromMemFile(MemFile*, unsigned char, uint32_t count) {
  return count;
}

void BooleanConstructor(void* memory, uint32_t count, uint32_t) {
  if (memory != nullptr) std::memset(memory, 0, count);
}

void BooleanDestructor(void*, uint32_t, uint32_t) {}

void BooleanAssignment(void* destination, void* source, uint32_t count, int broadcast) {
  unsigned char* d = static_cast<unsigned char*>(destination);
  const unsigned char* s = static_cast<const unsigned char*>(source);
  for (uint32_t i = 0; i < count; ++i) d[i] = broadcast ? s[0] : s[i];
}

uint32_t BooleanTranslate(void* destination, unsigned char destinationFormat,
                          uint32_t destinationSize, void* source, unsigned char sourceFormat,
                          uint32_t sourceSize, uint32_t count) {
  destinationFormat &= 0x0F;
  const bool destinationInMemory = (destinationFormat & 8) != 0;
  const bool sourceInMemory = (sourceFormat & 8) != 0;
  if (destinationInMemory && sourceInMemory) {
    if (count != 0) std::memmove(destination, source, count);
    return count;
  }
  if (destinationInMemory) return BooleanLoad(destination, source, sourceFormat, count);
  if (sourceInMemory) return BooleanStore(destination, source, destinationFormat, count);
  return DiskToDiskCopy(destination, destinationSize, source, sourceSize);
}

int BooleanIsNull(void* value) {
  return static_cast<NxBoolean*>(value)->IsNullValue();
}

int BooleanSetNull(void* value) {
  return static_cast<NxBoolean*>(value)->SetNullValue();
}

// Text of the carrier: "1" for the byte 1, "0" for any other byte, the null
// string for null.
NxTypeConvertData* BooleanConvertTo(void* value, uint32_t count) {
  NxTypeDesc* strings = &stringRow;
  NxString* texts = static_cast<NxString*>(strings->Create(count));
  if (texts == nullptr) return nullptr;
  const NxBoolean* booleans = static_cast<const NxBoolean*>(value);
  for (uint32_t i = 0; i < count; ++i) {
    if (booleans[i].IsNullValue())
      texts[i].SetNullValue();
    else
      texts[i] += NxString(booleans[i].value == NxBoolean::True ? "1" : "0");
  }
  NxTypeConvertData* data = NxTypeConvertData::Make(NxTYPE_NxString, count, texts, nullptr);
  if (data == nullptr) strings->Delete(texts, count);
  return data;
}

// True when the text's first character is "1"; a missing or null string
// gives null.
void* BooleanConvertFrom(NxTypeConvertData* data, uint32_t count) {
  NxBoolean* result = static_cast<NxBoolean*>(BooleanCreate(count));
  if (result == nullptr || count == 0) return result;
  for (uint32_t i = 0; i < count; ++i) {
    NxString* s = data != nullptr ? data->GetString(static_cast<int>(i)) : nullptr;
    if (s == nullptr || s->IsNullValue()) {
      result[i].SetNullValue();
      continue;
    }
    const char* text = s->StrGet();
    unsigned first = static_cast<unsigned char>(text[0]);
    if (s->codeSet > 224) {
      uint16_t unit;
      std::memcpy(&unit, text, 2);
      first = unit;
    }
    result[i] = first == '1' ? 1 : 0;
  }
  return result;
}

void* BooleanDefault(uint32_t count, int null) {
  if (null == 0) return DefaultFromEmptyStrings(BooleanConvertFrom, count);
  NxBoolean* result = static_cast<NxBoolean*>(BooleanCreate(count));
  if (result == nullptr) return nullptr;
  for (uint32_t i = 0; i < count; ++i) result[i].SetNullValue();
  return result;
}

// "TRUE" for the byte 1, the null print string for null, "FALSE" for every
// other byte.  Replaces the text of `result`; takes no format.
NxString& BooleanPrint(NxString& result, void* value, const char*, uint32_t) {
  const NxBoolean& b = *static_cast<const NxBoolean*>(value);
  if (b.IsNullValue())
    result = detail::nullPrintString;
  else
    result = b.value == NxBoolean::True ? "TRUE" : "FALSE";
  return result;
}

// Null when the text begins with the null print string; true for exactly
// "T", "t", "TRUE", "true" or "1"; false for anything else.  Takes no format.
void* BooleanScan(void* value, NxString& text, const char*, uint32_t) {
  if (value == nullptr) return nullptr;
  NxString narrow(NxString::GetDefault8CodeSet(), NxString::GetDefaultLanguage());
  const char* input = text.StrGet();
  if (text.codeSet > 224) {
    narrow += text;
    input = narrow.StrGet();
  }
  NxBoolean& b = *static_cast<NxBoolean*>(value);
  const char* null = detail::nullPrintString.StrGet();
  if (std::strncmp(input, null, std::strlen(null)) == 0) {
    b.SetNullValue();
    return value;
  }
  static const char* const kTrue[] = {"T", "t", "TRUE", "true", "1"};
  bool truth = false;
  for (const char* word : kTrue) truth = truth || std::strcmp(input, word) == 0;
  b = truth ? 1 : 0;
  return value;
}

constexpr NxTypeDesc BooleanRow() {
  NxTypeDesc row = IllegalLike("NxBoolean", 1, 1, "noop");
  row.Create = BooleanCreate;
  row.Delete = BooleanDelete;
  row.Store = BooleanStore;
  row.Load = BooleanLoad;
  row.NullSizeGet = BooleanNullSizeGet;
  row.SizeGet = BooleanSizeGet;
  row.SizeGetFromMemFile = BooleanSizeGetFromMemFile;
  row.Compare = BooleanCompare;
  row.EvalAndBound = BooleanEvalAndBound;
  row.Hash = BooleanHash;
  row.ConvertTo = BooleanConvertTo;
  row.ConvertFrom = BooleanConvertFrom;
  row.Constructor = BooleanConstructor;
  row.Destructor = BooleanDestructor;
  row.Assignment = BooleanAssignment;
  row.Copy = BooleanAssignment;
  row.Translate = BooleanTranslate;
  row.IsNull = BooleanIsNull;
  row.SetNull = BooleanSetNull;
  row.PrintToString = BooleanPrint;
  row.ScanFromString = BooleanScan;
  row.DefaultValue = BooleanDefault;
  return row;
}

}  // namespace

NxTypeDesc booleanRow = BooleanRow();

}  // namespace nxrows
