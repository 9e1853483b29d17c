// Multi-byte text: UTF-8 to and from 16-bit characters.
//
// The encoding is UTF-8 in its six-byte scheme of up to 31 bits; the wide
// side holds 16-bit units, and strings are taken to or from code set 253.
// Sequences of four to six bytes decode and are cut to their low 16 bits;
// overlong forms, continuation bytes without a lead, bytes 0xFE and 0xFF and
// sequences cut short are errors.  Results: a count of bytes or characters
// when not negative, -1 for text that can't be converted, and the further
// results given with each function.  A `long` of these functions is 32 bits.
#ifndef NXTM_NXMBS_H
#define NXTM_NXMBS_H

#include <nxtm/nxtmdefs.h>

// One character from at most `length` bytes of `text` into `*result`: the
// bytes taken, 0 when `text` is null, -1 on any error (`length` 0 included).
NXTM_API int NxMultiByte2WChar(unsigned short* result, char* text, unsigned int length);

// `c` encoded into `text` (room for 3 bytes, no terminator written): the
// bytes written, 0 when `text` is null.
NXTM_API int NxWChar2MultiByte(char* text, unsigned short c);

// Decodes `length` bytes.  The first `resultLength` characters are stored;
// all are counted, so the result is the number of characters of the text
// also when the array is too small.  -1 at the first bad sequence.  A zero
// byte is a character like any other here.
NXTM_API int NxMultiByteStr2WCharStr(unsigned short* result, int resultLength, char* text,
                                     int length);

// UTF-8 into `result`, which keeps its language and becomes code set 253.
// Stops at a zero byte (not counted) or after `length` bytes.  Returns the
// bytes taken; -1 on a bad sequence and -2 once 32768 bytes are taken, with
// `result` holding the text up to that point.  A `length` of 0 or below gives
// 0 and an empty `result`.
NXTM_API int32_t NxMBS2NxString(const char* text, NxString& result, int32_t length);
NXTM_API int32_t NxMultiByteString2NxString(const char* text, NxString& result, int32_t length);
// The same with `text.StrGet()` and `text.Len()`.
NXTM_API int32_t NxMultiByteString2NxString(const NxString& text, NxString& result);

// The text in UTF-8 into `result`, at most `length` bytes, with a terminator
// when there is room for it (not counted).  Returns the bytes written, or
// minus the bytes written when the next character didn't fit.  Text of code
// sets below 6 that is pure ASCII is copied as it stands: when it fills
// `length` bytes the result is `length`, without a terminator, whether or not
// text was left over.
NXTM_API int32_t NxString2NxMBS(const NxString& text, char* result, int32_t length);

// The text in UTF-8, terminated.  With a positive `length` and a non-null
// `result` the caller's buffer of `length` bytes is used: the result is the
// bytes of the text, or -1 with `length` set to the bytes that the text needs
// (without the terminator) when the buffer is too small.  Otherwise `result`
// receives a buffer from new[] of `length` bytes, which the caller owns and
// frees with delete[], and the result is the bytes of the text.  Pure ASCII
// text of the 8-bit code sets below 6 takes a quick path that stops at the
// end of the buffer: without a caller's buffer it comes back cut to 2048
// bytes, and in a caller's buffer that it fills it has no terminator.
NXTM_API int32_t NxString2MultiByteString(const NxString& text, char*& result, int32_t& length);

// The UTF-8 bytes of the first `count` characters.  Text of code sets below
// 6 that is pure ASCII answers its whole length, whatever `count` says.
NXTM_API int32_t NxMBSLength(const NxString& text, unsigned short count);

#endif
