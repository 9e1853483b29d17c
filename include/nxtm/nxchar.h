// NxChar: one character with its code set and language, free-standing or a
// handle on a position inside a text.
#ifndef NXTM_NXCHAR_H
#define NXTM_NXCHAR_H

#include <nxtm/nxtmdefs.h>

class NxStringIterator;

class NXTM_API NxChar {
 public:
  // Free-standing.  Code set 255: the default 16-bit code set; language 255:
  // the default language.  `c` is a 16-bit unit in a 16-bit code set, else
  // the byte in the first byte of `value`.
  NxChar(unsigned short c = 0, unsigned char codeSet = 255, unsigned char language = 255);
  // Free-standing 8-bit character.  Code set 255: the default 8-bit code set.
  NxChar(char c, unsigned char codeSet, unsigned char language);
  // A handle on `position`.  Code set 255: the default 8-bit code set;
  // format 255: 1.
  NxChar(const char* position, unsigned char codeSet, unsigned char language, unsigned char format);
  // A handle at StrGet() + byteOffset of `text`, with its code set and
  // language, format 1.
  NxChar(NxString& text, int byteOffset);
  // Always free-standing, whatever `other` is.
  NxChar(const NxChar& other);
  ~NxChar();

  // On a free-standing character: copies.  On a handle: maps `other` into
  // this character's code set and writes it into the text.
  NxChar& operator=(const NxChar& other);
  // Writes the byte / unit as it stands, with this character's format.
  NxChar& operator=(char c);
  NxChar& operator=(unsigned short c);

  // The character's value: the byte (unsigned) in 8-bit code sets, the
  // 16-bit unit (read with `format`) otherwise.
  unsigned short Value() const;

  // Classes by collation order: below 80, 80 to 16127, 16128 to 16383,
  // 16384 to 32767, 32768 and above.
  unsigned short IsSpace() const;
  unsigned short IsSymbol() const;
  unsigned short IsDigit() const;
  unsigned short IsAlpha() const;
  unsigned short IsHan() const;
  // The collation order of this character alone: no contraction, expansion
  // or language variant.
  unsigned short Order() const;

  // Case and code set.  ToUpper may leave further characters of a longer
  // upper-case form in `overflow`'s pending list.
  NxChar ToUpper(NxStringIterator* overflow) const;
  NxChar ToLower(NxStringIterator* overflow) const;
  NxChar MapTo(unsigned char codeSet) const;

  // Compares the two characters as one-character texts by NxStrCmp; a cmpOp
  // of 65535 is the default operator.
  int32_t Compare(const NxChar& other, unsigned short cmpOp) const;

  unsigned short operator==(const NxChar& other) const;
  int32_t operator!=(const NxChar& other) const;
  unsigned short operator<(const NxChar& other) const;
  unsigned short operator>(const NxChar& other) const;
  unsigned short operator<=(const NxChar& other) const;
  unsigned short operator>=(const NxChar& other) const;
  unsigned short operator==(char c) const;
  int32_t operator!=(char c) const;
  unsigned short operator<(char c) const;
  unsigned short operator>(char c) const;
  unsigned short operator<=(char c) const;
  unsigned short operator>=(char c) const;
  unsigned short operator==(unsigned short c) const;
  int32_t operator!=(unsigned short c) const;
  unsigned short operator<(unsigned short c) const;
  unsigned short operator>(unsigned short c) const;
  unsigned short operator<=(unsigned short c) const;
  unsigned short operator>=(unsigned short c) const;

  unsigned char* position;  // the character in a text, or null when free-standing
  unsigned short value;     // the free-standing character
  unsigned char codeSet;
  unsigned char language;
  unsigned char format;  // how a character at `position` is read and written
};

// An operation on a character, applied by the Transform operations.
class NXTM_API NxCharOperation {
 public:
  virtual ~NxCharOperation();
  virtual NxChar Apply(const NxChar& c, NxStringIterator* iterator) = 0;
};

class NXTM_API NxCharToUpper : public NxCharOperation {
 public:
  NxChar Apply(const NxChar& c, NxStringIterator* iterator) override;
};

class NXTM_API NxCharToLower : public NxCharOperation {
 public:
  NxChar Apply(const NxChar& c, NxStringIterator* iterator) override;
};

#endif
