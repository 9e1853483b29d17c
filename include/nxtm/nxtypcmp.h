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

#undef NXTM_COMPARATOR

#endif
