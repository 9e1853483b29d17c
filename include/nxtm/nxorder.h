// Order naming: collation orders back to characters and words.
//
// A stored key holds orders, not text.  These functions tell a person what
// an order stands for.  The letter, digit and symbol structure applies to
// orders below 32768 in a state below 20 (bit 7 of the state doesn't count);
// every other order is the code value of an ideograph or of a character that
// the order table doesn't know.
//
//   digits   16128..16383: digit = ((order & 0xFFFE) - 16128) / 10, bit 0 the
//            expansion flag (0x3F00 is 0, 0x3F0A is 1, ...)
//   symbols  80..16127: symbol number = order - 80; the numbers 32 to 139
//            may have a name and a plain character (NxOrderWords)
//   letters  16384..32767: case bits 12-13 (0 upper), accent bits 7-11,
//            letter bits 2-6 (3 is A, 28 is Z), extension bits 0-1
#ifndef NXTM_NXORDER_H
#define NXTM_NXORDER_H

#include <nxtm/nxtmdefs.h>

// The symbol number of a symbol order: -2002 for an order below 80 or from
// 16128 up, with `symbol` untouched; otherwise order - 80 and 0.
NXTM_API int NxExtractSymbolFromOrder(unsigned short order, unsigned short& symbol);

// The digit of a digit order and its expansion flag (bit 0): -2002 for an
// order outside 16128 to 16383, with both untouched; otherwise 0.
NXTM_API int NxExtractDigitFromOrder(unsigned short order, unsigned short& digit,
                                     unsigned short& expand);

// A description of the order in words, in the default 8-bit code set:
// "space", "undefined ordering indicator", "symbol " and its name, "digit 1
// with expand", "lower letter e with accent acute", or for an ideograph or
// an unknown character (bit 15 set, or state 20 and up) "HAN character
// 0x4e00\n".  Returns 0.
NXTM_API int NxConvertOrderToString(unsigned short order, unsigned char state, NxString& result);

// The plain character of the order: a blank for a space, the symbol's plain
// character or 7 when it has none, "0" + digit, the letter in its case, 127
// for an ideograph or unknown character.  With `accented` not 0 a letter
// with an accent becomes the first character 128..255 of code set 1 with the
// same order, and when `name` isn't null it receives the address of that
// character's name ("\\'e"); without such a character the base letter stays
// and `name` is left as it came.  Returns 0.
NXTM_API int NxConvertOrderToChar(unsigned short order, unsigned char state,
                                  unsigned char& character, int accented, const char** name);

#endif
