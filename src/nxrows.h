// The row records of the type table, for the source files that fill slots
// of their family's rows.  Not installed.
#ifndef NXTM_SRC_NXROWS_H
#define NXTM_SRC_NXROWS_H

#include <nxtm/nxtm.h>

namespace nxrows {

// The IsNull of every row without a null value.
int NeverNull(void* value);

// The disk-to-disk case of Translate: a plain byte copy of the smaller of
// the two sizes; a longer destination is zeroed first.  Returns the bytes
// copied.
uint32_t DiskToDiskCopy(void* destination, uint32_t destinationSize, const void* source,
                        uint32_t sourceSize);

extern NxTypeDesc charRow, shortRow, longRow, doubleRow, floatRow, wordRow, dwordRow, intRow,
    unsignedRow, enumRow, byteRow, stringRow, dateRow, timeRow, blockIdRow, objIdRow, classIdRow,
    refRow, blobRow, dateTimeRow, iStringRow, caseIStringRow, dDateRow, dTimeRow, dTimestampRow,
    dIntervalRow, int64Row, booleanRow, nullCharRow, nullUcharRow, nullShortRow, nullUshortRow,
    nullIntRow, nullUnsignedRow, nullLongRow, nullUlongRow, nullFloatRow, nullDoubleRow,
    nullInt64Row, sealRow, illegalRow, oldStringRow;

}  // namespace nxrows

#endif
