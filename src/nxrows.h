// The row records of the type table, for the source files that fill slots
// of their family's rows.  Not installed.
#ifndef NXTM_SRC_NXROWS_H
#define NXTM_SRC_NXROWS_H

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include <nxtm/nxtm.h>

namespace nxrows {

// The IsNull of every row without a null value.
int NeverNull(void* value);

// The disk-to-disk case of Translate: a plain byte copy of the smaller of
// the two sizes; a longer destination is zeroed first.  Returns the bytes
// copied.
uint32_t DiskToDiskCopy(void* destination, uint32_t destinationSize, const void* source,
                        uint32_t sourceSize);

// The text buffer of the plain scalar handlers, terminator included.
constexpr size_t kTextBuffer = 512;
// Bytes in front of element 0 of a class array: the hidden 32-bit element
// count stands in the last four of them, and element 0 stays aligned.
constexpr size_t kArrayHeader = alignof(NxString) > 4 ? alignof(NxString) : 4;

// One argument of a print format: an integer (its 32-bit pattern for every
// conversion of 32 bits or less) or a real.
struct PrintArgument {
  bool real;
  int64_t integer;
  double realValue;
};

// Formats `arguments` through a printf format into `buffer` (cut to fit),
// giving each conversion an argument of the type it asks for.  Returns the
// length written.
size_t FormatArguments(char* buffer, size_t size, const char* format,
                       const PrintArgument* arguments, int argumentCount);

// Where a scan conversion's value goes: at most `size` bytes at `address`.
struct ScanTarget {
  void* address;
  size_t size;
  int assigned;
};

// Reads `text` through a scanf format into at most two targets, as a
// platform with a 32-bit long would (integers saturate at 32 bits), never
// writing more than a target's size.  Returns the number of targets given a
// value.
int ScanArguments(const char* text, const char* format, ScanTarget* targets, int targetCount);

// Stores `count` memory elements by `store` into `destinationSize` bytes at
// `destination`, zeroed first.  When the elements need more room than that
// (by `sizeGet` from memory form), they go through a scratch copy of which
// only what fits is kept, and the result is `destinationSize`.
uint32_t StoreWithin(NxStoreFunc store, NxSizeGetFunc sizeGet, void* destination,
                     uint32_t destinationSize, const void* memory, unsigned char format,
                     uint32_t count);

// The byte print and byte scan, singled out by PrintToNxString.
NxString& BytePrint(NxString& result, void* value, const char* format, uint32_t count);
void* ByteScan(void* value, NxString& text, const char* format, uint32_t count);

// Print and scan of the string rows (nxstrprint.cpp): ordinary text through
// the format, order text by its orders' names.
NxString& StringPrint(NxString& result, void* value, const char* format, uint32_t count);
void* StringScan(void* value, NxString& text, const char* format, uint32_t count);

// The default of a row without a null: what its ConvertFrom makes of
// `count` empty strings.
void* DefaultFromEmptyStrings(NxConvertFromFunc convertFrom, uint32_t count);

// Arrays of the class rows without a destructor (NxInt64, NxBoolean, the
// null-capable numbers): `count` 0 or 1 is one element with nothing in
// front; from 2 up `header` bytes stand in front of element 0, the hidden
// 32-bit element count in the last four of them.  Elements come zeroed;
// null when no memory is left.
inline void* ClassArrayCreate(uint32_t count, size_t elementSize, size_t header) {
  if (count < 2) return std::calloc(1, elementSize);
  char* block =
      static_cast<char*>(std::calloc(1, header + static_cast<size_t>(count) * elementSize));
  if (block == nullptr) return nullptr;
  std::memcpy(block + header - 4, &count, 4);
  return block + header;
}
inline void ClassArrayDelete(void* value, uint32_t count, size_t header) {
  if (value == nullptr) return;
  std::free(count < 2 ? value : static_cast<char*>(value) - header);
}
template <typename T>
constexpr size_t ClassArrayHeader() {
  return alignof(T) > 4 ? alignof(T) : 4;
}

// True when `text` (8-bit) begins with the null print string, compared over
// the whole length of that string.
bool StartsWithNullPrintString(const char* text);

// Slots of the row NxInt64 that the row NxNull_NxInt64 builds on.
uint32_t Int64Store(void* disk, const void* memory, unsigned char format, uint32_t count);
uint32_t Int64Load(void* memory, const void* disk, unsigned char format, uint32_t count);
uint32_t Int64SizeGet(const void* value, unsigned char valueFormat, unsigned char diskFormat,
                      uint32_t count);
NxString& Int64Print(NxString& result, void* value, const char* format, uint32_t count);
void* Int64Scan(void* value, NxString& text, const char* format, uint32_t count);

// The functions of the row `illegal`: they do nothing and say nothing, and
// none of them writes to an argument.  Rows hold them in every slot that
// their family does not fill.
void* IllegalCreate(uint32_t);
void* IllegalDelete(void*, uint32_t);
uint32_t IllegalStore(void*, const void*, unsigned char, uint32_t);
uint32_t IllegalLoad(void*, const void*, unsigned char, uint32_t);
uint32_t IllegalNullSizeGet(uint32_t);
uint32_t IllegalSizeGet(const void*, unsigned char, unsigned char, uint32_t);
uint32_t IllegalSizeGetFromMemFile(MemFile*, unsigned char, uint32_t);
int32_t IllegalCompare(unsigned char, uint32_t, void*, uint32_t, void*, unsigned short, uint32_t,
                       int&);
float IllegalEvalAndBound(NxIdxBounds*, unsigned short&, void*, unsigned char, uint32_t,
                          NxIdxBounds*);
uint32_t IllegalHash(unsigned char, uint32_t, void*, uint32_t, int&);
NxTypeConvertData* IllegalConvertTo(void*, uint32_t);
void* IllegalConvertFrom(NxTypeConvertData*, uint32_t);
void IllegalConstructor(void*, uint32_t, uint32_t);
void IllegalDestructor(void*, uint32_t, uint32_t);
void IllegalAssignment(void*, void*, uint32_t, int);
void IllegalCopy(void*, void*, uint32_t, int);
uint32_t IllegalTranslate(void*, unsigned char, uint32_t, void*, unsigned char, uint32_t, uint32_t);
int IllegalIsNull(void*);
NxString& IllegalPrintToString(NxString& result, void*, const char*, uint32_t);
void* IllegalScanFromString(void*, NxString&, const char*, uint32_t);
void* IllegalDefaultValue(uint32_t, int);

// The slots of d_Interval that are its own, in the date family's sources;
// the float row lends it the others.
void* IntervalCreate(uint32_t count);
void* IntervalDelete(void* value, uint32_t count);
uint32_t IntervalStore(void* disk, const void* memory, unsigned char format, uint32_t count);
uint32_t IntervalLoad(void* memory, const void* disk, unsigned char format, uint32_t count);
NxTypeConvertData* IntervalConvertTo(void* value, uint32_t count);
void* IntervalConvertFrom(NxTypeConvertData* data, uint32_t count);
void IntervalConstructor(void* memory, uint32_t count, uint32_t);
void IntervalDestructor(void* memory, uint32_t count, uint32_t);
void IntervalAssignment(void* destination, void* source, uint32_t count, int broadcast);
NxString& IntervalPrint(NxString& result, void* value, const char* format, uint32_t count);
void* IntervalScan(void* value, NxString& text, const char* format, uint32_t count);
void* IntervalDefault(uint32_t count, int null);

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

// The rows.  One record per type in the process, shared by both tables and
// by every manager; the Exchange operations of NxTypeMgr write into them.
// Each family's source file defines its rows with constant initializers, so
// they are complete before any code of the library runs.
extern NxTypeDesc charRow, shortRow, longRow, doubleRow, floatRow, wordRow, dwordRow, intRow,
    unsignedRow, enumRow, byteRow, stringRow, dateRow, timeRow, blockIdRow, objIdRow, classIdRow,
    refRow, blobRow, dateTimeRow, iStringRow, caseIStringRow, dDateRow, dTimeRow, dTimestampRow,
    dIntervalRow, int64Row, booleanRow, nullCharRow, nullUcharRow, nullShortRow, nullUshortRow,
    nullIntRow, nullUnsignedRow, nullLongRow, nullUlongRow, nullFloatRow, nullDoubleRow,
    nullInt64Row, sealRow, illegalRow, oldStringRow;

}  // namespace nxrows

#endif
