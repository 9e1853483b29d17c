// The rows of the type table: the row `illegal`, the twelve plain scalar
// rows, the rows of the other types (whose slots are filled as their
// families are built), the old string row, and the two tables.
#include <cstdlib>
#include <cstring>

#include "nxinternal.h"
#include "nxrows.h"

namespace {

// ---------------------------------------------------------------------------
// The row `illegal`: does nothing and says nothing.  None of its functions
// writes to an argument.
void* IllegalCreate(uint32_t) {
  return nullptr;
}
void* IllegalDelete(void*, uint32_t) {
  return nullptr;
}
uint32_t IllegalStore(void*, const void*, unsigned char, uint32_t) {
  return 0;
}
uint32_t IllegalLoad(void*, const void*, unsigned char, uint32_t) {
  return 0;
}
uint32_t IllegalNullSizeGet(uint32_t) {
  return 0;
}
uint32_t IllegalSizeGet(const void*, unsigned char, unsigned char, uint32_t) {
  return 0;
}
uint32_t IllegalSizeGetFromMemFile(MemFile*, unsigned char, uint32_t) {
  return 0;
}
int32_t IllegalCompare(unsigned char, uint32_t, void*, uint32_t, void*, unsigned short, uint32_t,
                       int&) {
  return 0;
}
float IllegalEvalAndBound(NxIdxBounds*, unsigned short&, void*, unsigned char, uint32_t,
                          NxIdxBounds*) {
  return 0.0f;
}
uint32_t IllegalHash(unsigned char, uint32_t, void*, uint32_t, int&) {
  return 0;
}
NxTypeConvertData* IllegalConvertTo(void*, uint32_t) {
  return nullptr;
}
void* IllegalConvertFrom(NxTypeConvertData*, uint32_t) {
  return nullptr;
}
void IllegalConstructor(void*, uint32_t, uint32_t) {}
void IllegalDestructor(void*, uint32_t, uint32_t) {}
void IllegalAssignment(void*, void*, uint32_t, int) {}
void IllegalCopy(void*, void*, uint32_t, int) {}
uint32_t IllegalTranslate(void*, unsigned char, uint32_t, void*, unsigned char, uint32_t,
                          uint32_t) {
  return 0;
}
int IllegalIsNull(void*) {
  return 0;
}
NxString& IllegalPrintToString(NxString& result, void*, const char*, uint32_t) {
  return result;
}
void* IllegalScanFromString(void*, NxString&, const char*, uint32_t) {
  return nullptr;
}
void* IllegalDefaultValue(uint32_t, int) {
  return nullptr;
}

// A row whose slots all hold the functions of `illegal`, with the given
// properties.  The families fill their slots in as they are built.
constexpr NxTypeDesc IllegalLike(const char* name, unsigned short memLen, unsigned short isFixed,
                                 const char* format) {
  return NxTypeDesc{name,
                    IllegalCreate,
                    IllegalDelete,
                    IllegalStore,
                    IllegalLoad,
                    IllegalNullSizeGet,
                    IllegalSizeGet,
                    IllegalSizeGetFromMemFile,
                    IllegalCompare,
                    IllegalEvalAndBound,
                    IllegalHash,
                    IllegalConvertTo,
                    IllegalConvertFrom,
                    IllegalConstructor,
                    IllegalDestructor,
                    IllegalAssignment,
                    IllegalCopy,
                    IllegalTranslate,
                    IllegalIsNull,
                    nullptr,
                    format,
                    IllegalPrintToString,
                    IllegalScanFromString,
                    memLen,
                    isFixed,
                    IllegalDefaultValue};
}

// ---------------------------------------------------------------------------
// The six function sets of the plain scalars.  W is the memory width.

template <uint32_t W, bool Zero>
void* ScalarCreate(uint32_t count) {
  const size_t bytes = static_cast<size_t>(count) * W;
  void* block = std::malloc(bytes != 0 ? bytes : 1);
  if (block != nullptr && Zero) std::memset(block, 0, bytes);
  return block;
}

void* ScalarDelete(void* value, uint32_t) {
  std::free(value);
  return nullptr;
}

template <uint32_t W>
void ScalarConstructor(void* memory, uint32_t count, uint32_t) {
  if (memory != nullptr) std::memset(memory, 0, static_cast<size_t>(count) * W);
}

void ScalarDestructor(void*, uint32_t, uint32_t) {}

// Element by element from the first to the last, or the first source
// element into every destination element.
template <uint32_t W>
void ScalarAssignment(void* destination, void* source, uint32_t count, int broadcast) {
  unsigned char* d = static_cast<unsigned char*>(destination);
  const unsigned char* s = static_cast<const unsigned char*>(source);
  for (uint32_t i = 0; i < count; ++i) {
    std::memmove(d + static_cast<size_t>(i) * W, broadcast ? s : s + static_cast<size_t>(i) * W, W);
  }
}

template <uint32_t W>
void ScalarCopy(void* destination, void* source, uint32_t count, int broadcast) {
  ScalarAssignment<W>(destination, source, count, broadcast);
}

// The translation scheme shared by the fixed-width rows.
template <uint32_t W, NxStoreFunc LoadFn, NxStoreFunc StoreFn>
uint32_t ScalarTranslate(void* destination, unsigned char destinationFormat,
                         uint32_t destinationSize, void* source, unsigned char sourceFormat,
                         uint32_t sourceSize, uint32_t count) {
  destinationFormat &= 0x0F;
  const bool destinationInMemory = (destinationFormat & 8) != 0;
  const bool sourceInMemory = (sourceFormat & 8) != 0;
  if (destinationInMemory && sourceInMemory) {
    const size_t bytes = static_cast<size_t>(count) * W;
    if (bytes != 0) std::memmove(destination, source, bytes);
    return static_cast<uint32_t>(bytes);
  }
  if (destinationInMemory) return LoadFn(destination, source, sourceFormat, count);
  if (sourceInMemory) return StoreFn(destination, source, destinationFormat, count);
  return nxrows::DiskToDiskCopy(destination, destinationSize, source, sourceSize);
}

uint32_t ByteSizeGetFromMemFile(MemFile*, unsigned char, uint32_t count) {
  return count;
}
uint32_t ShortSizeGetFromMemFile(MemFile*, unsigned char, uint32_t count) {
  return count * 2;
}
uint32_t LongSizeGetFromMemFile(MemFile*, unsigned char, uint32_t count) {
  return count * 4;
}
uint32_t IntSizeGetFromMemFile(MemFile*, unsigned char format, uint32_t count) {
  return IntSizeGet(nullptr, 8, format, count);
}
uint32_t FloatSizeGetFromMemFile(MemFile*, unsigned char format, uint32_t count) {
  return FloatSizeGet(nullptr, 8, static_cast<unsigned char>(format & 0x0F), count);
}
uint32_t DoubleSizeGetFromMemFile(MemFile*, unsigned char format, uint32_t count) {
  return DoubleSizeGet(nullptr, 8, static_cast<unsigned char>(format & 0x0F), count);
}

// Adapters: the base library's functions take a const source in both
// directions, which is exactly the Load slot's form.
uint32_t CharMove(void* d, const void* s, unsigned char f, uint32_t n) {
  return CharStore(d, s, f, n);
}

// The plain scalar row of one function set.
struct ScalarSet {
  NxCreateFunc create;
  NxStoreFunc store;
  NxLoadFunc load;
  NxNullSizeGetFunc nullSizeGet;
  NxSizeGetFunc sizeGet;
  NxSizeGetFromMemFileFunc sizeGetFromMemFile;
  NxConstructorFunc constructor;
  NxAssignmentFunc assignment;
  NxCopyFunc copy;
  NxTranslateFunc translate;
};

constexpr ScalarSet kByteSet{ScalarCreate<1, true>,
                             CharStore,
                             CharStore,
                             CharNullSizeGet,
                             CharSizeGet,
                             ByteSizeGetFromMemFile,
                             ScalarConstructor<1>,
                             ScalarAssignment<1>,
                             ScalarCopy<1>,
                             ScalarTranslate<1, CharMove, CharStore>};
constexpr ScalarSet kShortSet{ScalarCreate<2, false>,
                              ShortStore,
                              ShortStore,
                              ShortNullSizeGet,
                              ShortSizeGet,
                              ShortSizeGetFromMemFile,
                              ScalarConstructor<2>,
                              ScalarAssignment<2>,
                              ScalarCopy<2>,
                              ScalarTranslate<2, ShortStore, ShortStore>};
constexpr ScalarSet kLongSet{ScalarCreate<4, false>,
                             LongStore,
                             LongStore,
                             LongNullSizeGet,
                             LongSizeGet,
                             LongSizeGetFromMemFile,
                             ScalarConstructor<4>,
                             ScalarAssignment<4>,
                             ScalarCopy<4>,
                             ScalarTranslate<4, LongStore, LongStore>};
constexpr ScalarSet kIntSet{ScalarCreate<4, false>,
                            IntStore,
                            IntLoad,
                            IntNullSizeGet,
                            IntSizeGet,
                            IntSizeGetFromMemFile,
                            ScalarConstructor<4>,
                            ScalarAssignment<4>,
                            ScalarCopy<4>,
                            ScalarTranslate<4, IntLoad, IntStore>};
constexpr ScalarSet kUnsignedSet{ScalarCreate<4, false>,
                                 UnsignedStore,
                                 UnsignedLoad,
                                 IntNullSizeGet,
                                 IntSizeGet,
                                 IntSizeGetFromMemFile,
                                 ScalarConstructor<4>,
                                 ScalarAssignment<4>,
                                 ScalarCopy<4>,
                                 ScalarTranslate<4, UnsignedLoad, UnsignedStore>};
constexpr ScalarSet kFloatSet{ScalarCreate<4, false>,
                              FloatStore,
                              FloatStore,
                              FloatNullSizeGet,
                              FloatSizeGet,
                              FloatSizeGetFromMemFile,
                              ScalarConstructor<4>,
                              ScalarAssignment<4>,
                              ScalarCopy<4>,
                              ScalarTranslate<4, FloatStore, FloatStore>};
constexpr ScalarSet kDoubleSet{ScalarCreate<8, false>,
                               DoubleStore,
                               DoubleStore,
                               DoubleNullSizeGet,
                               DoubleSizeGet,
                               DoubleSizeGetFromMemFile,
                               ScalarConstructor<8>,
                               ScalarAssignment<8>,
                               ScalarCopy<8>,
                               ScalarTranslate<8, DoubleStore, DoubleStore>};

constexpr NxTypeDesc ScalarRow(const char* name, unsigned short memLen, const char* format,
                               const ScalarSet& set, NxTypeCmpFunc compare) {
  NxTypeDesc row = IllegalLike(name, memLen, 1, format);
  row.Create = set.create;
  row.Delete = ScalarDelete;
  row.Store = set.store;
  row.Load = set.load;
  row.NullSizeGet = set.nullSizeGet;
  row.SizeGet = set.sizeGet;
  row.SizeGetFromMemFile = set.sizeGetFromMemFile;
  row.Compare = compare;
  row.Constructor = set.constructor;
  row.Destructor = ScalarDestructor;
  row.Assignment = set.assignment;
  row.Copy = set.copy;
  row.Translate = set.translate;
  row.IsNull = nxrows::NeverNull;
  return row;
}

// Memory lengths of the rows whose record holds a pointer: the size of the
// record on this machine.
struct PointerAndSizeRecord {
  void* data;
  uint16_t size;
  uint8_t codeSet;
  uint8_t language;
};
constexpr unsigned short kStringMemLen = sizeof(PointerAndSizeRecord);
constexpr unsigned short kBlobMemLen = sizeof(void*);

// d_Interval shares the sizes, comparison and translation of the float row.
constexpr NxTypeDesc IntervalRow() {
  NxTypeDesc row = IllegalLike("d_Interval", 4, 1, "%e days, %I hours, %M minutes, %S seconds");
  row.NullSizeGet = kFloatSet.nullSizeGet;
  row.SizeGet = kFloatSet.sizeGet;
  row.SizeGetFromMemFile = kFloatSet.sizeGetFromMemFile;
  row.Compare = FloatCompare;
  row.Translate = kFloatSet.translate;
  return row;
}

}  // namespace

namespace nxrows {

int NeverNull(void*) {
  return 0;
}

uint32_t DiskToDiskCopy(void* destination, uint32_t destinationSize, const void* source,
                        uint32_t sourceSize) {
  const uint32_t bytes = sourceSize < destinationSize ? sourceSize : destinationSize;
  if (sourceSize < destinationSize && destinationSize != 0)
    std::memset(destination, 0, destinationSize);
  if (bytes != 0) std::memmove(destination, source, bytes);
  return bytes;
}

// The rows.  One record per type in the process, shared by both tables and
// by every manager; the Exchange operations of NxTypeMgr write into them.
NxTypeDesc charRow = ScalarRow("char", 1, "%c", kByteSet, CharCompare);
NxTypeDesc shortRow = ScalarRow("short", 2, "%hd", kShortSet, ShortCompare);
NxTypeDesc longRow = ScalarRow("long", 4, "%ld", kLongSet, LongCompare);
NxTypeDesc doubleRow = ScalarRow("double", 8, "%lf", kDoubleSet, DoubleCompare);
NxTypeDesc floatRow = ScalarRow("float", 4, "%f", kFloatSet, FloatCompare);
NxTypeDesc wordRow = ScalarRow("NxWord", 2, "%hu", kShortSet, WordCompare);
NxTypeDesc dwordRow = ScalarRow("NxDWord", 4, "%lu", kLongSet, DwordCompare);
NxTypeDesc intRow = ScalarRow("int", 4, "%d", kIntSet, IntCompare);
NxTypeDesc unsignedRow = ScalarRow("unsigned", 4, "%u", kUnsignedSet, UnsignedCompare);
NxTypeDesc enumRow = ScalarRow("enum", 4, "%d", kIntSet, IntCompare);
NxTypeDesc byteRow = ScalarRow("NxByte", 1, "%c", kByteSet, ByteCompare);
NxTypeDesc stringRow = IllegalLike("NxString", kStringMemLen, 0, "%s");
NxTypeDesc dateRow = IllegalLike("NxDate", 4, 1, "%a %e.%b %Y");
NxTypeDesc timeRow = IllegalLike("NxTime", 3, 1, "%I:%M:%S %p");
NxTypeDesc blockIdRow = ScalarRow("BlockId", 4, "#%lu", kLongSet, DwordCompare);
NxTypeDesc objIdRow = IllegalLike("NxObjId", 12, 1, "(%H-%L#%B)");
NxTypeDesc classIdRow = IllegalLike("NxClassId", 4, 1, "(%Cv%V)");
NxTypeDesc refRow = IllegalLike("NxRef", 20, 1, "(%D:%H-%L#%B, %C)");
NxTypeDesc blobRow = IllegalLike("NxBlob", kBlobMemLen, 0, "[BLOB,len=%L]");
NxTypeDesc dateTimeRow = IllegalLike("NxDateTime", 8, 1, "%a %e.%b %Y %I:%M:%S %p");
NxTypeDesc iStringRow = IllegalLike("NxIString", kStringMemLen, 0, "%s");
NxTypeDesc caseIStringRow = IllegalLike("NxCaseIString", kStringMemLen, 0, "%s");
NxTypeDesc dDateRow = IllegalLike("d_Date", 4, 1, "%a %b %e");
NxTypeDesc dTimeRow = IllegalLike("d_Time", 6, 1, "%I:%M:%S %p");
NxTypeDesc dTimestampRow = IllegalLike("d_Timestamp", 10, 1, "%a %b %e %I:%M:%S %p");
NxTypeDesc dIntervalRow = IntervalRow();
NxTypeDesc int64Row = IllegalLike("NxInt64", 8, 1, "%S");
NxTypeDesc booleanRow = IllegalLike("NxBoolean", 1, 1, "noop");
NxTypeDesc nullCharRow = IllegalLike("NxNull_char", 2, 1, "%c");
NxTypeDesc nullUcharRow = IllegalLike("NxNull_uchar", 2, 1, "%c");
NxTypeDesc nullShortRow = IllegalLike("NxNull_short", 4, 1, "%hd");
NxTypeDesc nullUshortRow = IllegalLike("NxNull_ushort", 4, 1, "%hu");
NxTypeDesc nullIntRow = IllegalLike("NxNull_int", 8, 1, "%d");
NxTypeDesc nullUnsignedRow = IllegalLike("NxNull_unsigned", 8, 1, "%u");
NxTypeDesc nullLongRow = IllegalLike("NxNull_long", 8, 1, "%ld");
NxTypeDesc nullUlongRow = IllegalLike("NxNull_ulong", 8, 1, "%lu");
NxTypeDesc nullFloatRow = IllegalLike("NxNull_float", 8, 1, "%f");
NxTypeDesc nullDoubleRow = IllegalLike("NxNull_double", 16, 1, "%lf");
NxTypeDesc nullInt64Row = IllegalLike("NxNull_NxInt64", 12, 1, "%S");
NxTypeDesc sealRow = IllegalLike("NxSeal", 6, 1, "noop");
NxTypeDesc illegalRow = IllegalLike("illegal", 0, 1, "illegal");

// The string row of the older disk form: the properties of row 11, no null.
NxTypeDesc oldStringRow = IllegalLike("NxString", kStringMemLen, 0, "%s");

}  // namespace nxrows

namespace detail {

using namespace nxrows;

// Both tables are 42 entries long: the current table holds ids 0 to 40 and
// its closing null; the old table holds ids 0 to 27, its closing null at 28,
// and nulls behind it, so that a lookup past its end finds a null entry.
NxTypeDesc* currentTable[42] = {
    &charRow,       &shortRow,      &longRow,      &doubleRow,       &floatRow,    &wordRow,
    &dwordRow,      &intRow,        &unsignedRow,  &enumRow,         &byteRow,     &stringRow,
    &dateRow,       &timeRow,       &blockIdRow,   &objIdRow,        &classIdRow,  &refRow,
    &blobRow,       &dateTimeRow,   &iStringRow,   &caseIStringRow,  &dDateRow,    &dTimeRow,
    &dTimestampRow, &dIntervalRow,  &int64Row,     &booleanRow,      &nullCharRow, &nullUcharRow,
    &nullShortRow,  &nullUshortRow, &nullIntRow,   &nullUnsignedRow, &nullLongRow, &nullUlongRow,
    &nullFloatRow,  &nullDoubleRow, &nullInt64Row, &sealRow,         &illegalRow,  nullptr};

NxTypeDesc* oldTable[42] = {
    &charRow,       &shortRow,     &longRow,     &doubleRow,      &floatRow,   &wordRow,
    &dwordRow,      &intRow,       &unsignedRow, &enumRow,        &byteRow,    &oldStringRow,
    &dateRow,       &timeRow,      &blockIdRow,  &objIdRow,       &classIdRow, &refRow,
    &blobRow,       &dateTimeRow,  &iStringRow,  &caseIStringRow, &dDateRow,   &dTimeRow,
    &dTimestampRow, &dIntervalRow, &int64Row,    &booleanRow,     nullptr};

}  // namespace detail
