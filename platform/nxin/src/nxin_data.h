// Internal declarations shared by the nxin sources: the data objects of the
// generated tables (nxin_tables.cpp, nxin_words.cpp) and the language objects
// (nxin.cpp).
#ifndef NXIN_SRC_NXIN_DATA_H
#define NXIN_SRC_NXIN_DATA_H

#include "nxin/nxin.h"

namespace nxin_detail {

// Languages by number; entry 0 stands for "no language" and is not handed out.
extern const NxLanguage kLanguages[9];

// Order tables of the code sets that have one of their own.
extern const NxOrderTable kOrderTable1;
extern const NxOrderTable kOrderTable2;
extern const NxOrderTable kOrderTable3;
extern const NxOrderTable kOrderTable253;

// Maps of the 8-bit code sets: Unicode value of each byte, and per block of
// 256 Unicode values the bytes (0: none, except for U+0000).
extern const unsigned short kToUnicode1[256];
extern const unsigned short kToUnicode2[256];
extern const unsigned short kToUnicode3[256];
extern const unsigned short kToUnicode4[256];
extern const unsigned short kToUnicode5[256];
extern const unsigned short kToUnicode6[256];
extern const unsigned char* const kFromUnicode1[256];
extern const unsigned char* const kFromUnicode2[256];
extern const unsigned char* const kFromUnicode3[256];
extern const unsigned char* const kFromUnicode4[256];
extern const unsigned char* const kFromUnicode5[256];
extern const unsigned char* const kFromUnicode6[256];

// Case properties of the BMP: kUnicodePropsIndex[u >> 8] is null or a block
// of 256 indexes into kUnicodeProps, where index 0 means "no properties".
extern const NxUnicodeProps kUnicodeProps[];
extern const unsigned short* const kUnicodePropsIndex[256];

// The words for orders (nxin_words.cpp): symbols 32..139, accents 0..31,
// characters 128..255 of code set 1.
struct NxSymbolWords {
  const char* name;  // null when the symbol has none
  char character;    // the plain 7-bit character, 0 when none
};
extern const NxSymbolWords kSymbolWords[108];
extern const char* const kAccentWords[32];
extern const char* const kCharacterWords[128];

}  // namespace nxin_detail

#endif
