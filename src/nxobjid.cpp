// The identifier classes NxObjId, NxDBOId, NxClassId, NxRef and NxLocalRef:
// object number arithmetic, the text forms shared by all five, and the rows
// of NxObjId, NxClassId and NxRef (disk form, arrays, conversions, null).
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>

#include "nxclassrows.h"
#include "nxcmpwalk.h"
#include "nxrows.h"

static_assert(sizeof(NxObjId) == 12 && alignof(NxObjId) <= 4, "NxObjId row steps by 12");
static_assert(sizeof(NxClassId) == 4, "NxClassId row steps by 4");
static_assert(sizeof(NxRef) == 20 && alignof(NxRef) <= 4, "NxRef row steps by 20");
static_assert(sizeof(NxDBOId) == 12 && sizeof(NxLocalRef) == 16, "plain identifier records");
static_assert(std::is_trivially_copyable<NxObjId>::value &&
                  std::is_trivially_copyable<NxClassId>::value &&
                  std::is_trivially_copyable<NxRef>::value,
              "identifiers are plain records");

// ---------------------------------------------------------------------------
// Object number arithmetic: `low` carries into and borrows from `high`, both
// wrapping at their width.

NxObjId& NxObjId::operator++() {
  if (++low == 0) ++high;
  return *this;
}

NxObjId& NxObjId::operator--() {
  if (low-- == 0) --high;
  return *this;
}

NxObjId& NxObjId::operator+=(short n) {
  const uint32_t old = low;
  low += static_cast<uint32_t>(static_cast<int32_t>(n));
  if (n > 0 && low < old) ++high;
  if (n < 0 && low > old) --high;
  return *this;
}

// ---------------------------------------------------------------------------
// The text forms.  One engine serves the five classes: a value is seen as
// six numbers (those a class lacks stay 0), and the class's layout says which
// letters name a field and which field each place of "%hu"/"%lu" takes.

namespace {

enum Field : int { kHigh, kLow, kBlock, kDatabase, kClass, kVersion, kFieldCount, kNoField = -1 };

// The letters of the named items, in the order of Field.
const char kItemLetters[] = "HLBDCV";

// 16-bit fields read as "%hu", the others as "%lu".
bool IsShortField(Field field) {
  return field == kHigh || field == kDatabase || field == kClass || field == kVersion;
}

struct Place {
  char letter;  // 'h' or 'l'
  Field field;
};

struct TextLayout {
  unsigned namedFields;  // bit f: the letter of field f is an item
  const Place* places;
  int placeCount;
  bool longPlaces;  // "%l" starts a positional item (not in NxClassId)
};

constexpr unsigned Bit(Field f) {
  return 1u << f;
}

const Place kObjIdPlaces[] = {{'h', kHigh}, {'l', kLow}, {'l', kBlock}};
const Place kClassIdPlaces[] = {{'h', kClass}, {'h', kVersion}};
const Place kRefPlaces[] = {
    {'h', kDatabase}, {'h', kHigh}, {'l', kLow}, {'l', kBlock}, {'h', kClass}};

const TextLayout kObjIdLayout{Bit(kHigh) | Bit(kLow) | Bit(kBlock), kObjIdPlaces, 3, true};
const TextLayout kClassIdLayout{Bit(kClass) | Bit(kVersion), kClassIdPlaces, 2, false};
const TextLayout kRefLayout{
    Bit(kHigh) | Bit(kLow) | Bit(kBlock) | Bit(kDatabase) | Bit(kClass) | Bit(kVersion), kRefPlaces,
    5, true};

// The default formats.
const char kObjIdFormat[] = "(%H-%L#%B)";
const char kClassIdFormat[] = "(%Cv%V)";
const char kRefFormat[] = "(%D:%H-%L#%B, %C)";
const char kRefPrintFormat[] = "(%D:%H-%L#%B,%Cv%V)";  // NxRef::PrintToString, null format
const char kLocalRefFormat[] = "(%H-%L#%B,%C)";

// The field of the named item `letter`, or kNoField when the letter names
// nothing in this layout.
Field NamedField(const TextLayout& layout, char letter) {
  for (int f = 0; f < kFieldCount; ++f) {
    if (kItemLetters[f] == letter) return (layout.namedFields & (1u << f)) ? Field(f) : kNoField;
  }
  return kNoField;
}

// The field of the positional item with `letter` at `place`, or kNoField
// when the place is beyond the layout or holds another letter.
Field PlacedField(const TextLayout& layout, int place, char letter) {
  if (place >= layout.placeCount || layout.places[place].letter != letter) return kNoField;
  return layout.places[place].field;
}

bool IsPositional(const TextLayout& layout, char letter) {
  return letter == 'h' || (letter == 'l' && layout.longPlaces);
}

// The text of `numbers` under `format`, cut at 511 characters.
void FormatNumbers(NxString& result, const TextLayout& layout, const uint32_t* numbers,
                   const char* format) {
  char buffer[nxrows::kTextBuffer];
  const size_t limit = sizeof buffer - 1;
  size_t n = 0;
  auto put = [&](char c) {
    if (n < limit) buffer[n++] = c;
  };
  auto putNumber = [&](uint32_t v) {
    char digits[10];
    int k = 0;
    do {
      digits[k++] = static_cast<char>('0' + v % 10);
      v /= 10;
    } while (v != 0);
    while (k > 0) put(digits[--k]);
  };
  int place = 0;
  for (size_t i = 0; format[i] != '\0' && n < limit;) {
    const char c = format[i++];
    if (c != '%') {
      put(c);
      continue;
    }
    if (format[i] == '\0') break;  // a lone "%" at the end prints nothing
    const char letter = format[i++];
    if (IsPositional(layout, letter)) {
      if (format[i] != '\0') ++i;  // the character behind "%h"/"%l" ("u") is passed over
      const Field field = PlacedField(layout, place++, letter);
      putNumber(field == kNoField ? 0 : numbers[field]);
      continue;
    }
    const Field field = NamedField(layout, letter);
    if (field != kNoField)
      putNumber(numbers[field]);
    else
      put(letter);  // "%%" and "%" with a letter that is no item
  }
  buffer[n] = '\0';
  result = static_cast<const char*>(buffer);
}

bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Reads an unsigned decimal at text[at] as "%lu" (or "%hu" when `isShort`)
// reads it on a platform with a 32-bit long: blanks and one sign may stand in
// front, a magnitude beyond 32 bits gives 0xFFFFFFFF, a negative number is
// negated modulo 2^32, and "%hu" keeps the low 16 bits.  Never looks at
// text[length] or beyond.  False when no digit follows.
bool ReadNumber(const char* text, size_t at, size_t length, bool isShort, uint32_t& value) {
  while (at < length && IsBlank(text[at])) ++at;
  bool negative = false;
  if (at < length && (text[at] == '+' || text[at] == '-')) negative = text[at++] == '-';
  if (at >= length || !IsDigit(text[at])) return false;
  uint64_t magnitude = 0;
  for (; at < length && IsDigit(text[at]); ++at) {
    if (magnitude <= 0xFFFFFFFFu)
      magnitude = magnitude * 10 + static_cast<unsigned>(text[at] - '0');
  }
  uint32_t v = 0xFFFFFFFFu;
  if (magnitude <= 0xFFFFFFFFu) {
    v = static_cast<uint32_t>(magnitude);
    if (negative) v = 0u - v;
  }
  value = isShort ? (v & 0xFFFFu) : v;
  return true;
}

// Walks `format` over the 8-bit text of `length` characters, as long as both
// last, and gives the numbers read; numbers that no item reads stay 0.
void ReadNumbers(const char* text, size_t length, const TextLayout& layout, const char* format,
                 uint32_t* numbers) {
  for (int f = 0; f < kFieldCount; ++f) numbers[f] = 0;
  size_t at = 0;
  int place = 0;
  for (size_t i = 0; format[i] != '\0' && at < length;) {
    const char c = format[i++];
    if (c != '%') {
      ++at;  // one input character, not compared
      continue;
    }
    if (format[i] == '\0') break;
    const char letter = format[i++];
    Field field;
    bool isShort;
    if (IsPositional(layout, letter)) {
      if (format[i] != '\0') ++i;
      field = PlacedField(layout, place++, letter);
      isShort = letter == 'h';
    } else {
      field = NamedField(layout, letter);
      if (field == kNoField) {
        ++at;  // "%%" and "%" with any other letter
        continue;
      }
      isShort = IsShortField(field);
    }
    uint32_t v = 0;
    // The number is read where the input stands; the position then passes
    // over the digits there only, so blanks or a sign in front keep it put.
    if (ReadNumber(text, at, length, isShort, v) && field != kNoField) numbers[field] = v;
    while (at < length && IsDigit(text[at])) ++at;
  }
}

using nxrows::EightBitText;

// Scans `input`: true when it begins with the null print string, else false
// with the numbers read under `format`.
bool ScanNumbers(const NxString& input, const TextLayout& layout, const char* format,
                 uint32_t* numbers) {
  const EightBitText text(input);
  if (nxrows::StartsWithNullPrintString(text.c_str())) return true;
  ReadNumbers(text.c_str(), text.length(), layout, format, numbers);
  return false;
}

// The numbers of each class, and back.
void NumbersOf(const NxObjId& v, uint32_t* n) {
  for (int f = 0; f < kFieldCount; ++f) n[f] = 0;
  n[kHigh] = v.high;
  n[kLow] = v.low;
  n[kBlock] = v.block;
}
void NumbersOf(const NxClassId& v, uint32_t* n) {
  for (int f = 0; f < kFieldCount; ++f) n[f] = 0;
  n[kClass] = v.classNumber;
  n[kVersion] = v.version;
}
void NumbersOf(const NxRef& v, uint32_t* n) {
  NumbersOf(v.objId, n);
  n[kDatabase] = v.database;
  n[kClass] = v.classId.classNumber;
  n[kVersion] = v.classId.version;
}

bool IsNullObjId(const NxObjId& v) {
  return v.low == 0 && v.high == 0;
}
bool IsNullClassId(const NxClassId& v) {
  return v.classNumber == 0xFFFFu && v.version == 0xFFFFu;
}
void SetNullObjId(NxObjId& v) {
  v.block = 0;
  v.low = 0;
  v.high = 0;
}
void SetNullClassId(NxClassId& v) {
  v.classNumber = 0xFFFFu;
  v.version = 0xFFFFu;
}

NxString& PrintObjId(NxString& result, const NxObjId& v, const char* format) {
  if (IsNullObjId(v)) return result = NxTypeMgr::GetNullPrintString();
  uint32_t n[kFieldCount];
  NumbersOf(v, n);
  FormatNumbers(result, kObjIdLayout, n, format);
  return result;
}

NxString& PrintClassId(NxString& result, const NxClassId& v, const char* format) {
  if (IsNullClassId(v)) return result = NxTypeMgr::GetNullPrintString();
  uint32_t n[kFieldCount];
  NumbersOf(v, n);
  FormatNumbers(result, kClassIdLayout, n, format);
  return result;
}

NxString& PrintRef(NxString& result, const NxRef& v, const char* format) {
  if (IsNullObjId(v.objId)) return result = NxTypeMgr::GetNullPrintString();
  uint32_t n[kFieldCount];
  NumbersOf(v, n);
  FormatNumbers(result, kRefLayout, n, format);
  return result;
}

void ScanObjId(NxObjId& v, const NxString& input, const char* format) {
  uint32_t n[kFieldCount];
  if (ScanNumbers(input, kObjIdLayout, format, n)) {
    SetNullObjId(v);
    return;
  }
  v.high = static_cast<uint16_t>(n[kHigh]);
  v.low = n[kLow];
  v.block = n[kBlock];
}

void ScanClassId(NxClassId& v, const NxString& input, const char* format) {
  uint32_t n[kFieldCount];
  if (ScanNumbers(input, kClassIdLayout, format, n)) {
    SetNullClassId(v);
    return;
  }
  v.classNumber = static_cast<uint16_t>(n[kClass]);
  v.version = static_cast<uint16_t>(n[kVersion]);
}

// A null text clears the object id alone; the database and the class stay.
void ScanRef(NxRef& v, const NxString& input, const char* format) {
  uint32_t n[kFieldCount];
  if (ScanNumbers(input, kRefLayout, format, n)) {
    SetNullObjId(v.objId);
    return;
  }
  v.objId.high = static_cast<uint16_t>(n[kHigh]);
  v.objId.low = n[kLow];
  v.objId.block = n[kBlock];
  v.database = static_cast<uint16_t>(n[kDatabase]);
  v.classId.classNumber = static_cast<uint16_t>(n[kClass]);
  v.classId.version = static_cast<uint16_t>(n[kVersion]);
}

}  // namespace

NxString& NxObjId::PrintToNxString(NxString& result, const char* format) const {
  return PrintObjId(result, *this, format != nullptr ? format : kObjIdFormat);
}
void NxObjId::ScanFromNxString(const NxString& input, const char* format) {
  ScanObjId(*this, input, format != nullptr ? format : kObjIdFormat);
}
NxString& NxObjId::PrintToString(NxString& result, void* value, const char* format, uint32_t) {
  return PrintObjId(result, *static_cast<const NxObjId*>(value),
                    format != nullptr ? format : kObjIdFormat);
}
void* NxObjId::ScanFromString(void* value, NxString& text, const char* format, uint32_t) {
  if (value == nullptr) return nullptr;
  ScanObjId(*static_cast<NxObjId*>(value), text, format != nullptr ? format : kObjIdFormat);
  return value;
}

NxString& NxDBOId::PrintToNxString(NxString& result, const char* format) const {
  NxObjId objId;
  objId = *this;
  return objId.PrintToNxString(result, format);
}
void NxDBOId::ScanFromNxString(const NxString& input, const char* format) {
  NxObjId objId;
  objId.ScanFromNxString(input, format);
  *this = objId;
}

NxString& NxClassId::PrintToNxString(NxString& result, const char* format) const {
  return PrintClassId(result, *this, format != nullptr ? format : kClassIdFormat);
}
void NxClassId::ScanFromNxString(const NxString& input, const char* format) {
  ScanClassId(*this, input, format != nullptr ? format : kClassIdFormat);
}
NxString& NxClassId::PrintToString(NxString& result, void* value, const char* format, uint32_t) {
  return PrintClassId(result, *static_cast<const NxClassId*>(value),
                      format != nullptr ? format : kClassIdFormat);
}
void* NxClassId::ScanFromString(void* value, NxString& text, const char* format, uint32_t) {
  if (value == nullptr) return nullptr;
  ScanClassId(*static_cast<NxClassId*>(value), text, format != nullptr ? format : kClassIdFormat);
  return value;
}

NxString& NxRef::PrintToNxString(NxString& result, const char* format) const {
  return PrintRef(result, *this, format != nullptr ? format : kRefFormat);
}
void NxRef::ScanFromNxString(const NxString& input, const char* format) {
  ScanRef(*this, input, format != nullptr ? format : kRefFormat);
}
// With a null format the static pair uses the form that shows the version,
// so that what one prints the other reads back.
NxString& NxRef::PrintToString(NxString& result, void* value, const char* format, uint32_t) {
  return PrintRef(result, *static_cast<const NxRef*>(value),
                  format != nullptr ? format : kRefPrintFormat);
}
void* NxRef::ScanFromString(void* value, NxString& text, const char* format, uint32_t) {
  if (value == nullptr) return nullptr;
  ScanRef(*static_cast<NxRef*>(value), text, format != nullptr ? format : kRefPrintFormat);
  return value;
}

NxString& NxLocalRef::PrintToNxString(NxString& result, const char* format) const {
  const NxRef ref(objId, 0, classId);
  return PrintRef(result, ref, format != nullptr ? format : kLocalRefFormat);
}
void NxLocalRef::ScanFromNxString(const NxString& input, const char* format) {
  NxRef ref;
  ScanRef(ref, input, format != nullptr ? format : kLocalRefFormat);
  *this = ref;
}

// ---------------------------------------------------------------------------
// The rows.  Each field goes to disk through the base library with the byte
// order of the format: most significant byte first when its low four bits
// are 2, least significant byte first for every other value.

namespace {

unsigned char ByteOrder(unsigned char format) {
  return (format & 0x0F) == 2 ? 2 : 1;
}

void StoreObjId(unsigned char* disk, const NxObjId& v, unsigned char order) {
  LongStore(disk, &v.block, order, 1);
  LongStore(disk + 4, &v.low, order, 1);
  ShortStore(disk + 8, &v.high, order, 1);
}

void LoadObjId(NxObjId& v, const unsigned char* disk, unsigned char order) {
  LongStore(&v.block, disk, order, 1);
  LongStore(&v.low, disk + 4, order, 1);
  ShortStore(&v.high, disk + 8, order, 1);
}

// What each row needs to know about its class.
struct ObjIdTraits {
  using Type = NxObjId;
  static constexpr uint32_t kDiskLength = 10;
  static constexpr bool kCountedArrays = true;
  static constexpr const char* kFormat = kObjIdFormat;
  // The key order on disk: high, then low, most significant byte first for
  // a key stored least significant byte first; block takes no part.
  static constexpr unsigned char kKeyBytes[] = {9, 8, 7, 6, 5, 4};
  static int32_t KeyNulls(const unsigned char*, const unsigned char*, int32_t order) {
    return order;
  }
  static void StoreOne(unsigned char* disk, const NxObjId& v, unsigned char order) {
    StoreObjId(disk, v, order);
  }
  static void LoadOne(NxObjId& v, const unsigned char* disk, unsigned char order) {
    LoadObjId(v, disk, order);
  }
  static bool IsNull(const NxObjId& v) { return IsNullObjId(v); }
  static void SetNull(NxObjId& v) { SetNullObjId(v); }
  static NxString& Print(NxString& r, const NxObjId& v, const char* f) {
    return PrintObjId(r, v, f);
  }
  static void Scan(NxObjId& v, const NxString& t, const char* f) { ScanObjId(v, t, f); }
};

struct ClassIdTraits {
  using Type = NxClassId;
  static constexpr uint32_t kDiskLength = 4;
  static constexpr bool kCountedArrays = false;
  static constexpr const char* kFormat = kClassIdFormat;
  // classNumber, then version.  The null class id (all bytes 0xFF) orders
  // first, although its fields are the greatest.
  static constexpr unsigned char kKeyBytes[] = {1, 0, 3, 2};
  static int32_t KeyNulls(const unsigned char* a, const unsigned char* b, int32_t order) {
    if (order == 0) return 0;
    if (AllOnes(a)) return -1;
    return AllOnes(b) ? 1 : order;
  }
  static bool AllOnes(const unsigned char* key) {
    return (key[0] & key[1] & key[2] & key[3]) == 0xFF;
  }
  static void StoreOne(unsigned char* disk, const NxClassId& v, unsigned char order) {
    ShortStore(disk, &v.classNumber, order, 1);
    ShortStore(disk + 2, &v.version, order, 1);
  }
  static void LoadOne(NxClassId& v, const unsigned char* disk, unsigned char order) {
    ShortStore(&v.classNumber, disk, order, 1);
    ShortStore(&v.version, disk + 2, order, 1);
  }
  static bool IsNull(const NxClassId& v) { return IsNullClassId(v); }
  static void SetNull(NxClassId& v) { SetNullClassId(v); }
  static NxString& Print(NxString& r, const NxClassId& v, const char* f) {
    return PrintClassId(r, v, f);
  }
  static void Scan(NxClassId& v, const NxString& t, const char* f) { ScanClassId(v, t, f); }
};

// The version of a reference is not stored; a load sets it to 0.
struct RefTraits {
  using Type = NxRef;
  static constexpr uint32_t kDiskLength = 14;
  static constexpr bool kCountedArrays = true;
  static constexpr const char* kFormat = kRefFormat;
  // database, then high, then low: on disk the database is the most
  // significant part of the key (in memory the least).  block and the class
  // take no part.
  static constexpr unsigned char kKeyBytes[] = {11, 10, 9, 8, 7, 6, 5, 4};
  static int32_t KeyNulls(const unsigned char*, const unsigned char*, int32_t order) {
    return order;
  }
  static void StoreOne(unsigned char* disk, const NxRef& v, unsigned char order) {
    StoreObjId(disk, v.objId, order);
    ShortStore(disk + 10, &v.database, order, 1);
    ShortStore(disk + 12, &v.classId.classNumber, order, 1);
  }
  static void LoadOne(NxRef& v, const unsigned char* disk, unsigned char order) {
    LoadObjId(v.objId, disk, order);
    ShortStore(&v.database, disk + 10, order, 1);
    ShortStore(&v.classId.classNumber, disk + 12, order, 1);
    v.classId.version = 0;
  }
  static bool IsNull(const NxRef& v) { return IsNullObjId(v.objId); }
  static void SetNull(NxRef& v) { SetNullObjId(v.objId); }
  static NxString& Print(NxString& r, const NxRef& v, const char* f) { return PrintRef(r, v, f); }
  static void Scan(NxRef& v, const NxString& t, const char* f) { ScanRef(v, t, f); }
};

// Bytes in front of element 0 of a counted array: the 32-bit element count.
constexpr size_t kCountBytes = 4;

template <typename Traits>
struct Row {
  using T = typename Traits::Type;

  // NxObjId and NxRef: one element with no header below a count of 2, else
  // the count in front of the elements.  NxClassId: never a header, and at
  // least one element.
  static void* Create(uint32_t count) {
    if (!Traits::kCountedArrays) return new (std::nothrow) T[count < 2 ? 1 : count]();
    if (count < 2) {
      T* one = new (std::nothrow) T();
      if (one != nullptr) Constructor(one, 1, 0);
      return one;
    }
    void* block = std::malloc(kCountBytes + static_cast<size_t>(count) * sizeof(T));
    if (block == nullptr) return nullptr;
    std::memcpy(block, &count, kCountBytes);
    void* elements = static_cast<unsigned char*>(block) + kCountBytes;
    Constructor(elements, count, 0);
    return elements;
  }

  static void* Delete(void* value, uint32_t count) {
    if (value == nullptr) return nullptr;
    T* elements = static_cast<T*>(value);
    if (!Traits::kCountedArrays)
      delete[] elements;
    else if (count < 2)
      delete elements;
    else
      std::free(reinterpret_cast<unsigned char*>(elements) - kCountBytes);
    return nullptr;
  }

  // Whole elements are zeroed, padding included, so that the memory form of
  // a new element is the same bytes every time.
  static void Constructor(void* memory, uint32_t count, uint32_t) {
    if (memory == nullptr || count == 0) return;
    std::memset(memory, 0, static_cast<size_t>(count) * sizeof(T));
    T* elements = static_cast<T*>(memory);
    for (uint32_t i = 0; i < count; ++i) new (&elements[i]) T();
  }

  static void Destructor(void*, uint32_t, uint32_t) {}

  static void Assignment(void* destination, void* source, uint32_t count, int broadcast) {
    nxrows::ElementAssignment<T>(destination, source, count, broadcast);
  }

  static void Copy(void* destination, void* source, uint32_t count, int broadcast) {
    nxrows::ElementCopy<T>(destination, source, count, broadcast);
  }

  static uint32_t Store(void* disk, const void* memory, unsigned char format, uint32_t count) {
    const unsigned char order = ByteOrder(format);
    unsigned char* d = static_cast<unsigned char*>(disk);
    const T* s = static_cast<const T*>(memory);
    for (uint32_t i = 0; i < count; ++i)
      Traits::StoreOne(d + static_cast<size_t>(i) * Traits::kDiskLength, s[i], order);
    return count * Traits::kDiskLength;
  }

  static uint32_t Load(void* memory, const void* disk, unsigned char format, uint32_t count) {
    const unsigned char order = ByteOrder(format);
    T* d = static_cast<T*>(memory);
    const unsigned char* s = static_cast<const unsigned char*>(disk);
    for (uint32_t i = 0; i < count; ++i)
      Traits::LoadOne(d[i], s + static_cast<size_t>(i) * Traits::kDiskLength, order);
    return count * Traits::kDiskLength;
  }

  static constexpr NxNullSizeGetFunc NullSizeGet = nxrows::FixedNullSizeGet<Traits::kDiskLength>;
  static constexpr NxSizeGetFunc SizeGet = nxrows::FixedSizeGet<Traits::kDiskLength>;
  static constexpr NxSizeGetFromMemFileFunc SizeGetFromMemFile =
      nxrows::FixedSizeGetFromMemFile<Traits::kDiskLength>;

  static uint32_t Translate(void* destination, unsigned char destinationFormat,
                            uint32_t destinationSize, void* source, unsigned char sourceFormat,
                            uint32_t sourceSize, uint32_t count) {
    return nxrows::RecordTranslate<Load, Store, nxrows::AssignEach<Assignment, sizeof(T)>>(
        destination, destinationFormat, destinationSize, source, sourceFormat, sourceSize, count);
  }

  static int IsNull(void* value) { return Traits::IsNull(*static_cast<const T*>(value)) ? 1 : 0; }
  static int SetNull(void* value) {
    Traits::SetNull(*static_cast<T*>(value));
    return 0;
  }

  // Each element's text under the row's own default format, which the
  // conversion from text reads back; a null element gives a null string.
  static NxTypeConvertData* ConvertTo(void* value, uint32_t count) {
    const T* elements = static_cast<const T*>(value);
    return nxrows::ToStrings(nxrows::stringRow.Create, nxrows::stringRow.Delete, count,
                             [elements](NxString& string, uint32_t i) {
                               if (Traits::IsNull(elements[i])) {
                                 string.SetNullValue();
                               } else {
                                 NxString text;
                                 Traits::Print(text, elements[i], Traits::kFormat);
                                 string += text;
                               }
                             });
  }

  // A missing or null string gives the null identifier.
  static void* ConvertFrom(NxTypeConvertData* data, uint32_t count) {
    return nxrows::FromStrings<T>(Create(count), data, count, [](T& element, NxString* s) {
      if (s == nullptr)
        Traits::SetNull(element);
      else
        Traits::Scan(element, *s, Traits::kFormat);
    });
  }

  static void* DefaultValue(uint32_t count, int null) {
    return nxrows::NullOrEmptyDefault<T>(Create, ConvertFrom, count, null,
                                         [](T& element) { Traits::SetNull(element); });
  }

  // Memory form (the whole format 8): operator!= of the class over the
  // pairs of elements, lengths unread.  Disk form: the key bytes of each
  // element at the traits' offsets, whatever the byte order, as unsigned
  // bytes; the first difference is the result, not reduced to -1 or 1.
  // With more elements due, an operand whose next element does not start
  // before its stated end stops the walk with 2101.
  static int32_t Compare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                         void* value2, unsigned short, uint32_t count, int& status) {
    status = 0;
    if (count == 0) return 0;
    int32_t result = 0;
    if (format == 8) {
      const T* a = static_cast<const T*>(value1);
      const T* b = static_cast<const T*>(value2);
      for (uint32_t i = 0; i < count && result == 0; ++i) result = a[i] != b[i];
      return result;
    }
    constexpr uint64_t width = Traits::kDiskLength;
    const uint64_t end1 = length1 != 0 ? length1 : width * count;
    const uint64_t end2 = length2 != 0 ? length2 : width * count;
    const unsigned char* a = static_cast<const unsigned char*>(value1);
    const unsigned char* b = static_cast<const unsigned char*>(value2);
    for (uint32_t i = 0; i < count && result == 0 && status == 0; ++i) {
      const uint64_t at = i * width;
      for (unsigned char offset : Traits::kKeyBytes) {
        result = int32_t{a[at + offset]} - int32_t{b[at + offset]};
        if (result != 0) break;
      }
      result = Traits::KeyNulls(a + at, b + at, result);
      if (i + 1 < count && (at + width >= end1 || at + width >= end2)) status = nxcmp::kPartial;
    }
    return result;
  }

  static constexpr NxTypeDesc Describe(const char* name) {
    NxTypeDesc row = nxrows::IllegalLike(name, sizeof(T), 1, Traits::kFormat);
    row.Create = T::Create;
    row.Delete = T::Delete;
    row.Store = T::Store;
    row.Load = T::Load;
    row.NullSizeGet = T::NullSizeGet;
    row.SizeGet = T::SizeGet;
    row.SizeGetFromMemFile = T::SizeGetFromMemFile;
    row.Compare = T::Compare;
    row.EvalAndBound = T::EvalAndBound;
    row.Hash = T::Hash;
    row.ConvertTo = ConvertTo;
    row.ConvertFrom = ConvertFrom;
    row.Constructor = T::Constructor;
    row.Destructor = T::Destructor;
    row.Assignment = T::Assignment;
    row.Copy = T::Copy;
    row.Translate = T::Translate;
    row.IsNull = IsNull;
    row.SetNull = SetNull;
    row.PrintToString = T::PrintToString;
    row.ScanFromString = T::ScanFromString;
    row.DefaultValue = DefaultValue;
    return row;
  }
};

using ObjIdRow = Row<ObjIdTraits>;
using ClassIdRow = Row<ClassIdTraits>;
using RefRow = Row<RefTraits>;

}  // namespace

// The static members are the row functions.
#define NXTM_IDENTIFIER_ROW_MEMBERS(Class, RowType)                                               \
  void* Class::Create(uint32_t count) {                                                           \
    return RowType::Create(count);                                                                \
  }                                                                                               \
  void* Class::Delete(void* value, uint32_t count) {                                              \
    return RowType::Delete(value, count);                                                         \
  }                                                                                               \
  void Class::Constructor(void* memory, uint32_t count, uint32_t) {                               \
    RowType::Constructor(memory, count, 0);                                                       \
  }                                                                                               \
  void Class::Destructor(void* memory, uint32_t count, uint32_t) {                                \
    RowType::Destructor(memory, count, 0);                                                        \
  }                                                                                               \
  void Class::Assignment(void* destination, void* source, uint32_t count, int broadcast) {        \
    RowType::Assignment(destination, source, count, broadcast);                                   \
  }                                                                                               \
  void Class::Copy(void* destination, void* source, uint32_t count, int broadcast) {              \
    RowType::Copy(destination, source, count, broadcast);                                         \
  }                                                                                               \
  uint32_t Class::Store(void* disk, const void* memory, unsigned char format, uint32_t count) {   \
    return RowType::Store(disk, memory, format, count);                                           \
  }                                                                                               \
  uint32_t Class::Load(void* memory, const void* disk, unsigned char format, uint32_t count) {    \
    return RowType::Load(memory, disk, format, count);                                            \
  }                                                                                               \
  uint32_t Class::NullSizeGet(uint32_t count) {                                                   \
    return RowType::NullSizeGet(count);                                                           \
  }                                                                                               \
  uint32_t Class::SizeGet(const void* value, unsigned char valueFormat, unsigned char diskFormat, \
                          uint32_t count) {                                                       \
    return RowType::SizeGet(value, valueFormat, diskFormat, count);                               \
  }                                                                                               \
  uint32_t Class::SizeGetFromMemFile(MemFile* file, unsigned char format, uint32_t count) {       \
    return RowType::SizeGetFromMemFile(file, format, count);                                      \
  }                                                                                               \
  int32_t Class::Compare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,  \
                         void* value2, unsigned short cmpOp, uint32_t count, int& status) {       \
    return RowType::Compare(format, length1, value1, length2, value2, cmpOp, count, status);      \
  }                                                                                               \
  uint32_t Class::Translate(void* destination, unsigned char destinationFormat,                   \
                            uint32_t destinationSize, void* source, unsigned char sourceFormat,   \
                            uint32_t sourceSize, uint32_t count) {                                \
    return RowType::Translate(destination, destinationFormat, destinationSize, source,            \
                              sourceFormat, sourceSize, count);                                   \
  }

NXTM_IDENTIFIER_ROW_MEMBERS(NxObjId, ObjIdRow)
NXTM_IDENTIFIER_ROW_MEMBERS(NxClassId, ClassIdRow)
NXTM_IDENTIFIER_ROW_MEMBERS(NxRef, RefRow)

#undef NXTM_IDENTIFIER_ROW_MEMBERS

namespace nxrows {

NxTypeDesc objIdRow = ObjIdRow::Describe("NxObjId");
NxTypeDesc classIdRow = ClassIdRow::Describe("NxClassId");
NxTypeDesc refRow = RefRow::Describe("NxRef");

}  // namespace nxrows
