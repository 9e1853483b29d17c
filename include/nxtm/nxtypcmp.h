// Comparators of the Compare slot.  Each orders two keys, element by element,
// and reports through `status` whether the stated lengths let it finish
// (0) or stopped it early (2101).
#ifndef NXTM_NXTYPCMP_H
#define NXTM_NXTYPCMP_H

#include <nxtm/nxtmdefs.h>

#define NXTM_COMPARATOR(name)                                                                   \
  NXTM_API int32_t name(unsigned char format, uint32_t length1, void* value1, uint32_t length2, \
                        void* value2, unsigned short cmpOp, uint32_t count, int& status)

NXTM_COMPARATOR(CharCompare);      // "char": signed 8 bits
NXTM_COMPARATOR(ByteCompare);      // "NxByte": unsigned 8 bits
NXTM_COMPARATOR(ShortCompare);     // "short": signed 16 bits
NXTM_COMPARATOR(WordCompare);      // "NxWord": unsigned 16 bits
NXTM_COMPARATOR(IntCompare);       // "int", "enum": signed 32 bits
NXTM_COMPARATOR(UnsignedCompare);  // "unsigned": unsigned 32 bits
NXTM_COMPARATOR(LongCompare);      // "long": signed 32 bits
NXTM_COMPARATOR(DwordCompare);     // "NxDWord", "BlockId": unsigned 32 bits
NXTM_COMPARATOR(FloatCompare);     // "float", "d_Interval": NaN orders first
NXTM_COMPARATOR(DoubleCompare);    // "double": NaN orders first

// The other rows.  Memory form goes by the class's own order, disk form by
// the bytes of the key; the two do not always agree (see each line).
NXTM_COMPARATOR(DateCompare);         // "NxDate": a field of -1 is a wildcard; on disk only in
                                      // the second operand, and not with NxCMP_NO_WILDCARDS
NXTM_COMPARATOR(TimeCompare);         // "NxTime": hour, minute, second
NXTM_COMPARATOR(DaTimeCompare);       // "NxDateTime": date (wildcards in memory only), then time
NXTM_COMPARATOR(d_DateCompare);       // "d_Date": as DateCompare on disk, years unsigned there;
                                      // in memory the difference of the days, no wildcard
NXTM_COMPARATOR(d_TimeCompare);       // "d_Time": local time in memory, raw bytes on disk
NXTM_COMPARATOR(d_TimestampCompare);  // "d_Timestamp": date, then time
NXTM_COMPARATOR(Int64Compare);        // "NxInt64": signed 64 bits
NXTM_COMPARATOR(BooleanCompare);      // "NxBoolean": null, then false, then true
NXTM_COMPARATOR(BlobCompare);         // "NxBlob": unsigned bytes, then length; null first (-2, 2)

// The string rows.  Operands are text records, key records or old records
// in disk form, NxString objects in memory form (format exactly 8); the
// first is the stored key, the second the value held against it, which may
// be a pattern unless cmpOp has NxCMP_NO_WILDCARDS or NxCMP_EXACT.  A stated
// length that ends inside a record marks it cut: the result holds as far as
// the bytes go, with status 2101 wherever they cannot decide; a key cut with
// 254 or more bytes of text at hand is no key of this library (status
// -2999, result -1).  Results are differences: only their sign counts.
NXTM_COMPARATOR(StringCompare);         // "NxString"
NXTM_COMPARATOR(OldStringCompare);      // the old string row
NXTM_COMPARATOR(NxIStringCompare);      // "NxIString": its record, its map, its wildcards
NXTM_COMPARATOR(NxCaseIStringCompare);  // "NxCaseIString": the same with the case map

#undef NXTM_COMPARATOR

#endif
