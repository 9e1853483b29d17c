// The range evaluation of the string rows (nxstrrange.cpp), for the source
// files that fill their EvalAndBound slots.  Not installed.
#ifndef NXTM_SRC_NXSTRKEYS_H
#define NXTM_SRC_NXSTRKEYS_H

#include <nxtm/nxtm.h>

namespace nxrows {

// "NxString" and the old string row: `value` and the keys of `bounds` and
// `narrowed` are string records in `format` (key records, or text records
// without a code set, or old records for the old row).  For the duration of
// the call the last byte of `value` and of every whole key handed in is 0
// instead of 0xFF, so concurrent calls may not share key records.  `value`
// must be a whole record: its last byte is written.
float StringEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                         unsigned char format, uint32_t count, NxIdxBounds* narrowed);
float OldStringEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                            unsigned char format, uint32_t count, NxIdxBounds* narrowed);
// "NxIString" and "NxCaseIString": the first four bytes of legacy keys as
// numbers.
float NxIStringEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                            unsigned char format, uint32_t count, NxIdxBounds* narrowed);
float NxCaseIStringEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                                unsigned char format, uint32_t count, NxIdxBounds* narrowed);

}  // namespace nxrows

#endif
