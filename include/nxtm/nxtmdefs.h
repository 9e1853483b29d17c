// Common definitions of the nxtm type manager: export macro, status codes,
// the key bounds of range evaluation.
#ifndef NXTM_NXTMDEFS_H
#define NXTM_NXTMDEFS_H

#include <cstddef>
#include <cstdint>

#include <nxbs/nxbs.h>
#include <nxin/nxin.h>

#if defined(_WIN32)
#if defined(NXTM_BUILDING)
#define NXTM_API __declspec(dllexport)
#else
#define NXTM_API __declspec(dllimport)
#endif
#else
#define NXTM_API __attribute__((visibility("default")))
#endif

// Status codes used across the library.  0 is success everywhere.
enum : int {
  NxSTATUS_OK = 0,
  NxSTATUS_PARTIAL = 2101,     // a stated length ended early, or a string operand was cut
  NxSTATUS_NO_ANSWER = -2999,  // no answer for this type or this form
  NxSTATUS_INVALID_ARGUMENT = -2002,
  NxSTATUS_LIST_ENDED = -2005,
  NxSTATUS_ZONE_UNKNOWN = -2171,
};

// Format byte: the low four bits name the form.
enum : unsigned char {
  NxFORMAT_LSB_FIRST = 1,    // disk form, least significant byte first
  NxFORMAT_MSB_FIRST = 2,    // disk form, most significant byte first
  NxFORMAT_MEMORY = 8,       // memory form
  NxFORMAT_NO_CODESET = 32,  // strings: drop the code set
  NxFORMAT_NATIVE = 64,      // strings: the native code set
  NxFORMAT_INDEX_KEY = 128,  // strings: the index key form
};

// Comparison operator word bits.
enum : unsigned short {
  NxCMP_NO_WILDCARDS = 0x0010,
  NxCMP_IGNORE_CASE = 0x0020,
  NxCMP_IGNORE_ACCENTS = 0x0040,
  NxCMP_IGNORE_SPACES = 0x0080,
  NxCMP_EXACT = 0x0100,
  NxCMP_IGNORE_SYMBOLS = 0x0200,
};

// Type identifiers of the current table.
enum : char {
  NxTYPE_char = 0,
  NxTYPE_short = 1,
  NxTYPE_long = 2,
  NxTYPE_double = 3,
  NxTYPE_float = 4,
  NxTYPE_NxWord = 5,
  NxTYPE_NxDWord = 6,
  NxTYPE_int = 7,
  NxTYPE_unsigned = 8,
  NxTYPE_enum = 9,
  NxTYPE_NxByte = 10,
  NxTYPE_NxString = 11,
  NxTYPE_NxDate = 12,
  NxTYPE_NxTime = 13,
  NxTYPE_BlockId = 14,
  NxTYPE_NxObjId = 15,
  NxTYPE_NxClassId = 16,
  NxTYPE_NxRef = 17,
  NxTYPE_NxBlob = 18,
  NxTYPE_NxDateTime = 19,
  NxTYPE_NxIString = 20,
  NxTYPE_NxCaseIString = 21,
  NxTYPE_d_Date = 22,
  NxTYPE_d_Time = 23,
  NxTYPE_d_Timestamp = 24,
  NxTYPE_d_Interval = 25,
  NxTYPE_NxInt64 = 26,
  NxTYPE_NxBoolean = 27,
  NxTYPE_NxNull_char = 28,
  NxTYPE_NxNull_uchar = 29,
  NxTYPE_NxNull_short = 30,
  NxTYPE_NxNull_ushort = 31,
  NxTYPE_NxNull_int = 32,
  NxTYPE_NxNull_unsigned = 33,
  NxTYPE_NxNull_long = 34,
  NxTYPE_NxNull_ulong = 35,
  NxTYPE_NxNull_float = 36,
  NxTYPE_NxNull_double = 37,
  NxTYPE_NxNull_NxInt64 = 38,
  NxTYPE_NxSeal = 39,
  NxTYPE_illegal = 40,
  NxTYPE_NONE = 100,
};

// The longest index key in bytes.
enum : unsigned { NxINDEX_MAX_KEYLEN = 254 };

// Two keys that limit an index range, in disk form.
struct NxIdxBounds {
  void* low;   // key at the low end, or null
  void* high;  // key at the high end, or null
  unsigned char lowLength;
  unsigned char highLength;
};

// Opaque argument of NxTypeMgr::EvalAndBound; no row looks at it.
class NxEvalData {};

class NxString;
class NxTypeConvertData;
class NxTypeMgr;
struct NxTypeDesc;

#endif
