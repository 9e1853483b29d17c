// The legacy strings NxIString and NxCaseIString: plain 8-bit text with no
// code set and no language, ordered by a small fixed byte map instead of the
// collation.  NxCaseIString differs only in its map, which folds case.
//
// Both own their text alone (null for no text; copies turn an empty text into
// null) and carry a form byte: 0x40 a plain record, 1 a record stored with a
// key format, bit 7 raw (mapped text, not to be mapped again), bit 6 with bit
// 7 in keys made by Translate.  Constructors and assignment from text write
// form 0; assignment from another object passes its form on.
#ifndef NXTM_NXISTRING_H
#define NXTM_NXISTRING_H

#include <nxtm/nxtmdefs.h>

class NXTM_API NxIString {
 public:
  NxIString();
  NxIString(const NxIString& other);
  // One character; 0 gives no text.
  NxIString(char c);
  // A copy; a null or empty text gives no text.
  NxIString(const char* text);
  // `count` bytes through strncpy, and a terminator; 0 gives no text.
  NxIString(const char* text, unsigned short count);
  // Numbers: "%d", "%d", "%ld" and "%lu" of 32-bit values, "%f".
  NxIString(int number);
  NxIString(short number);
  NxIString(long number);
  NxIString(unsigned long number);
  NxIString(double number);
  ~NxIString();

  // atoi, atoi cut to 16 bits, atol, atof (32-bit results); 0 without text.
  operator int() const;
  operator short() const;
  operator long() const;
  operator double() const;

  NxIString& operator=(const NxIString& other);
  NxIString& operator=(const char* text);
  void operator+=(const NxIString& other);

  // The sign of LegacyCompare of the two texts with their forms: 1 or 0.
  int operator==(const NxIString& other) const;
  int operator!=(const NxIString& other) const;
  int operator<(const NxIString& other) const;
  int operator>(const NxIString& other) const;
  int operator<=(const NxIString& other) const;
  int operator>=(const NxIString& other) const;

  // 1 when there is no text at all (an empty buffer doesn't count).
  unsigned short operator!() const;
  // The byte at `index`, which the caller keeps inside the text.
  char& operator[](int index);
  unsigned short Len() const;

  // Editing.  Positions and counts are bytes.  Insert beyond the end
  // appends; Replace overwrites up to the end at most; Fill writes `count`
  // copies of `c` from the start, growing the text but never shortening it;
  // Expand pads to `length` with `c`; Cut and Copy cut `count` to what is
  // there, and a text that loses all its bytes has none.
  NxIString& Insert(const NxIString& text, unsigned short position);
  NxIString& Replace(const NxIString& text, unsigned short position);
  NxIString& Fill(unsigned short count, char c);
  NxIString& Expand(unsigned short length, char c);
  // Latin-1 case: the letters a-z and 0xE0-0xFE (but 0xF7), 0x9C and 0xFF.
  NxIString& ToUpper();
  NxIString& ToLower();
  NxIString& SpaceToZero();
  NxIString& ZeroToSpace();
  // The first place at which `text` stands, byte for byte, or -1.
  int SubStringPos(const NxIString& text) const;
  NxIString& Cut(unsigned short position, unsigned short count);
  NxIString Copy(unsigned short position, unsigned short count) const;

  // The legacy map: the byte that `c` sorts as, and in `second` (when not
  // null) a second byte, 0 for none: 1 to 8 an accent weight, above 8 a real
  // second byte of a character that sorts as two.
  static unsigned char Map(unsigned char c, unsigned char* second);
  // Writes the map of each byte of `source` and every second byte above 8,
  // then the terminator, to `target`: at most `limit` bytes unless `limit`
  // is 0.  Returns the bytes written, 0 for a null pointer.
  static uint32_t MapText(char* target, const char* source, uint32_t limit);

  char* data;          // the zero-terminated text, or null
  unsigned char form;  // the form byte
};

class NXTM_API NxCaseIString {
 public:
  NxCaseIString();
  NxCaseIString(const NxCaseIString& other);
  NxCaseIString(char c);
  NxCaseIString(const char* text);
  NxCaseIString(const char* text, unsigned short count);
  NxCaseIString(int number);
  NxCaseIString(short number);
  NxCaseIString(long number);
  NxCaseIString(unsigned long number);
  NxCaseIString(double number);
  ~NxCaseIString();

  operator int() const;
  operator short() const;
  operator long() const;
  operator double() const;

  NxCaseIString& operator=(const NxCaseIString& other);
  NxCaseIString& operator=(const char* text);
  void operator+=(const NxCaseIString& other);

  // The sign of LegacyCaseCompare of the two texts with their forms.
  int operator==(const NxCaseIString& other) const;
  int operator!=(const NxCaseIString& other) const;
  int operator<(const NxCaseIString& other) const;
  int operator>(const NxCaseIString& other) const;
  int operator<=(const NxCaseIString& other) const;
  int operator>=(const NxCaseIString& other) const;

  unsigned short operator!() const;
  char& operator[](int index);
  unsigned short Len() const;

  NxCaseIString& Insert(const NxCaseIString& text, unsigned short position);
  NxCaseIString& Replace(const NxCaseIString& text, unsigned short position);
  NxCaseIString& Fill(unsigned short count, char c);
  NxCaseIString& Expand(unsigned short length, char c);
  NxCaseIString& ToUpper();
  NxCaseIString& ToLower();
  NxCaseIString& SpaceToZero();
  NxCaseIString& ZeroToSpace();
  int SubStringPos(const NxCaseIString& text) const;
  NxCaseIString& Cut(unsigned short position, unsigned short count);
  NxCaseIString Copy(unsigned short position, unsigned short count) const;

  // The case-folding legacy map: lower-case letters map as upper-case ones.
  static unsigned char Map(unsigned char c, unsigned char* second);
  static uint32_t MapText(char* target, const char* source, uint32_t limit);
  // Mapped text back to text, in upper case where the map folded case:
  // walks at most `count` bytes of `source`, stops at a terminator, which it
  // copies, and returns the bytes of `source` used.  `target` has room for
  // `count` + 1 bytes.
  static uint32_t UnmapText(char* target, const char* source, uint32_t count);

  char* data;
  unsigned char form;
};

NXTM_API NxIString operator+(const NxIString& a, const NxIString& b);
NXTM_API NxCaseIString operator+(const NxCaseIString& a, const NxCaseIString& b);

// The legacy compares, on the bytes of two texts through the map of
// NxIString and of NxCaseIString.  A form with bit 7 marks raw text, compared
// as it stands.  `limit` counts bytes compared, 0 for no limit.  A null text
// sorts before any other.  In LegacyCaseCompare bit 5 of `form1` weighs
// accents in the same pass, and sorts a character that maps to two bytes
// just before its first byte.
NXTM_API int32_t LegacyCompare(const char* s1, const char* s2, unsigned short limit,
                               unsigned char form1, unsigned char form2);
NXTM_API int32_t LegacyCaseCompare(const char* s1, const char* s2, unsigned short limit,
                                   unsigned char form1, unsigned char form2);

#endif
