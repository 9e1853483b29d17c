// The row records of the type table, for the source files that fill slots
// of their family's rows.  Not installed.
#ifndef NXTM_SRC_NXROWS_H
#define NXTM_SRC_NXROWS_H

#include <cstddef>

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

// The byte print and byte scan, singled out by PrintToNxString.
NxString& BytePrint(NxString& result, void* value, const char* format, uint32_t count);
void* ByteScan(void* value, NxString& text, const char* format, uint32_t count);

// The default of a row without a null: what its ConvertFrom makes of
// `count` empty strings.
void* DefaultFromEmptyStrings(NxConvertFromFunc convertFrom, uint32_t count);

extern NxTypeDesc charRow, shortRow, longRow, doubleRow, floatRow, wordRow, dwordRow, intRow,
    unsignedRow, enumRow, byteRow, stringRow, dateRow, timeRow, blockIdRow, objIdRow, classIdRow,
    refRow, blobRow, dateTimeRow, iStringRow, caseIStringRow, dDateRow, dTimeRow, dTimestampRow,
    dIntervalRow, int64Row, booleanRow, nullCharRow, nullUcharRow, nullShortRow, nullUshortRow,
    nullIntRow, nullUnsignedRow, nullLongRow, nullUlongRow, nullFloatRow, nullDoubleRow,
    nullInt64Row, sealRow, illegalRow, oldStringRow;

}  // namespace nxrows

#endif
