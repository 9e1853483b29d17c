// NxBoolean: its comparisons and the row of the type table.
#include <cstring>

#include "nxclassrows.h"
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

uint32_t BooleanStore(void* disk, const void* memory, unsigned char format, uint32_t count) {
  if (count == 0) return 0;
  return CharStore(disk, memory, format, count);
}

uint32_t BooleanLoad(void* memory, const void* disk, unsigned char format, uint32_t count) {
  if (count == 0) return 0;
  return CharStore(memory, disk, format, count);
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
  const NxBoolean* booleans = static_cast<const NxBoolean*>(value);
  return ToStrings(stringRow.Create, stringRow.Delete, count,
                   [booleans](NxString& text, uint32_t i) {
                     if (booleans[i].IsNullValue())
                       text.SetNullValue();
                     else
                       text += NxString(booleans[i].value == NxBoolean::True ? "1" : "0");
                   });
}

// True when the text's first character is "1"; a missing or null string
// gives null.
void* BooleanConvertFrom(NxTypeConvertData* data, uint32_t count) {
  return FromStrings<NxBoolean>(
      ZeroArrayCreate<NxBoolean>(count), data, count, [](NxBoolean& b, NxString* s) {
        if (s == nullptr) {
          b.SetNullValue();
          return;
        }
        const char* text = s->StrGet();
        unsigned first = static_cast<unsigned char>(text[0]);
        if (s->codeSet > 224) {
          uint16_t unit;
          std::memcpy(&unit, text, 2);
          first = unit;
        }
        b = first == '1' ? 1 : 0;
      });
}

void* BooleanDefault(uint32_t count, int null) {
  return NullOrEmptyDefault<NxBoolean>(ZeroArrayCreate<NxBoolean>, BooleanConvertFrom, count, null,
                                       [](NxBoolean& b) { b.SetNullValue(); });
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
  const EightBitText narrow(text);
  const char* input = narrow.c_str();
  NxBoolean& b = *static_cast<NxBoolean*>(value);
  if (StartsWithNullPrintString(input)) {
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
  row.Create = ZeroArrayCreate<NxBoolean>;
  row.Delete = ZeroArrayDelete<NxBoolean>;
  row.Store = BooleanStore;
  row.Load = BooleanLoad;
  row.NullSizeGet = FixedNullSizeGet<1>;
  row.SizeGet = FixedSizeGet<1>;
  row.SizeGetFromMemFile = FixedSizeGetFromMemFile<1>;
  row.Compare = BooleanCompare;
  row.EvalAndBound = BooleanEvalAndBound;
  row.Hash = BooleanHash;
  row.ConvertTo = BooleanConvertTo;
  row.ConvertFrom = BooleanConvertFrom;
  row.Constructor = ZeroConstructor<1>;
  row.Destructor = NoDestructor;
  row.Assignment = ElementAssignment<unsigned char>;
  row.Copy = ElementAssignment<unsigned char>;
  row.Translate = RecordTranslate<BooleanLoad, BooleanStore, MoveBytes<1>>;
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
