// NxSeal: the class and the row of the type table, with the row's own order
// and range estimate.  Disk keys are six bytes, most significant first in
// every format, so that the order of the keys is the order of their bytes.
#include <nxtm/nxseal.h>

#include <cstring>

#include "nxclassrows.h"
#include "nxkeyrows.h"
#include "nxrows.h"

NxSeal& NxSeal::ConvertFrom(const NxObjId& id) {
  word0 = id.high;
  word1 = static_cast<uint16_t>(id.low >> 16);
  word2 = static_cast<uint16_t>(id.low);
  return *this;
}

NxSeal& NxSeal::ConvertFrom(const NxInt64& number) {
  word0 = static_cast<uint16_t>(static_cast<uint32_t>(number.high));
  word1 = static_cast<uint16_t>(number.low >> 16);
  word2 = static_cast<uint16_t>(number.low);
  return *this;
}

NxInt64& NxSeal::ConvertTo(NxInt64& result) const {
  result = NxInt64(static_cast<uint32_t>(word1) << 16 | word2, static_cast<int32_t>(word0));
  return result;
}

int NxSeal::operator!=(const NxSeal& other) const {
  if (word0 != other.word0) return int{word0} - int{other.word0};
  if (word1 != other.word1) return int{word1} - int{other.word1};
  return int{word2} - int{other.word2};
}

NxString& NxSeal::PrintToNxString(NxString& result) const {
  NxInt64 number;
  return ConvertTo(number).PrintToNxString(result, "%S");
}

NxSeal& NxSeal::ScanFromNxString(const NxString& text) {
  word0 = word1 = word2 = 0;
  if (text.Len() == 0) return *this;
  NxInt64 number;
  number.ScanFromNxString(text, "%S");  // a failed scan gives -1: every bit
  return ConvertFrom(number);
}

// ---------------------------------------------------------------------------
// The row.

namespace nxrows {

namespace {

constexpr uint32_t kDiskLength = 6;

// One element in disk form, and back.
void PutSeal(unsigned char* disk, const NxSeal& seal) {
  const uint16_t words[3] = {seal.word0, seal.word1, seal.word2};
  for (int i = 0; i < 3; ++i) {
    disk[2 * i] = static_cast<unsigned char>(words[i] >> 8);
    disk[2 * i + 1] = static_cast<unsigned char>(words[i]);
  }
}

NxSeal GetSeal(const unsigned char* disk) {
  NxSeal seal;
  seal.word0 = static_cast<uint16_t>(disk[0] << 8 | disk[1]);
  seal.word1 = static_cast<uint16_t>(disk[2] << 8 | disk[3]);
  seal.word2 = static_cast<uint16_t>(disk[4] << 8 | disk[5]);
  return seal;
}

// The format does not matter: the bytes are the same in every format.
uint32_t SealStore(void* disk, const void* memory, unsigned char, uint32_t count) {
  unsigned char* d = static_cast<unsigned char*>(disk);
  const NxSeal* s = static_cast<const NxSeal*>(memory);
  for (uint32_t i = 0; i < count; ++i) PutSeal(d + static_cast<size_t>(i) * kDiskLength, s[i]);
  return count * kDiskLength;
}

uint32_t SealLoad(void* memory, const void* disk, unsigned char, uint32_t count) {
  NxSeal* d = static_cast<NxSeal*>(memory);
  const unsigned char* s = static_cast<const unsigned char*>(disk);
  for (uint32_t i = 0; i < count; ++i) d[i] = GetSeal(s + static_cast<size_t>(i) * kDiskLength);
  return count * kDiskLength;
}

// Memory form (the format exactly 8): operator!= element by element.  Disk
// form: the bytes of all elements in order, as unsigned bytes; the disk
// form makes both agree in sign.  Lengths and cmpOp do not matter.
int32_t SealCompare(unsigned char format, uint32_t, void* value1, uint32_t, void* value2,
                    unsigned short, uint32_t count, int& status) {
  status = 0;
  if (format == 8) {
    const NxSeal* a = static_cast<const NxSeal*>(value1);
    const NxSeal* b = static_cast<const NxSeal*>(value2);
    for (uint32_t i = 0; i < count; ++i) {
      const int difference = a[i] != b[i];
      if (difference != 0) return difference;
    }
    return 0;
  }
  const unsigned char* a = static_cast<const unsigned char*>(value1);
  const unsigned char* b = static_cast<const unsigned char*>(value2);
  const size_t bytes = static_cast<size_t>(count) * kDiskLength;
  for (size_t i = 0; i < bytes; ++i) {
    if (a[i] != b[i]) return int32_t{a[i]} - int32_t{b[i]};
  }
  return 0;
}

NxInt64 KeyNumber(const void* key) {
  NxInt64 number;
  return GetSeal(static_cast<const unsigned char*>(key)).ConvertTo(number);
}

double Widened(const NxInt64& n) {
  return static_cast<double>(n.high) * 4294967296.0 + static_cast<double>(n.low);
}

// The estimate of a number row: keys one apart between the two bounds.  An
// area of 0 for a value that lies inside what `op` keeps becomes one key.
float SealEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char,
                       uint32_t count, NxIdxBounds* narrowed) {
  const NxInt64 v = KeyNumber(value);
  double low = 0.0;
  double high = 0.0;
  double area = 0.0;
  if (bounds != nullptr) {
    const NxInt64 h = KeyNumber(bounds->high);
    const NxInt64 l = KeyNumber(bounds->low);
    low = Widened(l);
    high = Widened(h);
    const double at = Widened(v);
    area = RangeArea(op, at, at, low, high, 1.0);
    if (area == 0.0) {
      const bool belowLow = (op & 4) == 0 && l > v;
      const bool aboveHigh = (op & 2) == 0 && v > h;
      if (!belowLow && !aboveHigh) area = 1.0;
    }
  }
  NarrowBounds(narrowed, value, op, count * kDiskLength);
  // Seals have 48 bits: every quantity here is exact and far inside the
  // float range.
  return static_cast<float>(area / (high - low + 1.0));
}

NxString& SealPrint(NxString& result, void* value, const char*, uint32_t) {
  return static_cast<const NxSeal*>(value)->PrintToNxString(result);
}

void* SealScan(void* value, NxString& text, const char*, uint32_t) {
  if (value == nullptr) return nullptr;
  static_cast<NxSeal*>(value)->ScanFromNxString(text);
  return value;
}

NxTypeConvertData* SealConvertTo(void* value, uint32_t count) {
  const NxSeal* seals = static_cast<const NxSeal*>(value);
  return ToStrings(stringRow.Create, stringRow.Delete, count,
                   [seals](NxString& text, uint32_t i) { seals[i].PrintToNxString(text); });
}

// A missing or null string leaves the element 0.
void* SealConvertFrom(NxTypeConvertData* data, uint32_t count) {
  return FromStrings<NxSeal>(ZeroArrayCreate<NxSeal>(count), data, count,
                             [](NxSeal& seal, NxString* s) {
                               if (s != nullptr) seal.ScanFromNxString(*s);
                             });
}

void* SealDefault(uint32_t count, int) {
  return DefaultFromEmptyStrings(SealConvertFrom, count);
}

constexpr NxTypeDesc SealRow() {
  NxTypeDesc row = IllegalLike("NxSeal", 6, 1, "noop");
  row.Create = ZeroArrayCreate<NxSeal>;
  row.Delete = ZeroArrayDelete<NxSeal>;
  row.Store = SealStore;
  row.Load = SealLoad;
  row.NullSizeGet = FixedNullSizeGet<kDiskLength>;
  row.SizeGet = FixedSizeGet<kDiskLength>;
  row.SizeGetFromMemFile = FixedSizeGetFromMemFile<kDiskLength>;
  row.Compare = SealCompare;
  row.EvalAndBound = SealEvalAndBound;
  row.Hash = SealHash;
  row.ConvertTo = SealConvertTo;
  row.ConvertFrom = SealConvertFrom;
  row.Constructor = ZeroConstructor<sizeof(NxSeal)>;
  row.Destructor = NoDestructor;
  row.Assignment = ElementAssignment<NxSeal>;
  row.Copy = ElementAssignment<NxSeal>;
  row.Translate =
      RecordTranslate<SealLoad, SealStore, AssignEach<ElementAssignment<NxSeal>, sizeof(NxSeal)>>;
  row.IsNull = NeverNull;
  row.PrintToString = SealPrint;
  row.ScanFromString = SealScan;
  row.DefaultValue = SealDefault;
  return row;
}

}  // namespace

NxTypeDesc sealRow = SealRow();

}  // namespace nxrows
