// NxString: text with a code set and a language, the system's text value.
#ifndef NXTM_NXSTRING_H
#define NXTM_NXSTRING_H

#include <nxtm/nxchar.h>
#include <nxtm/nxstriter.h>

// The largest buffer of a string, terminator included.  An edit whose result
// would pass it reports the overflow (stringOverflow=debug in the
// configuration, or no configuration) and leaves the string as it was.
// Buffers come from malloc; a failed malloc goes to NxCallMemoryHandler.
enum : unsigned { NxSTRING_MAX_SIZE = 65533 };

class NXTM_API NxString {
 public:
  // Construction.  Every constructor starts from no buffer.
  NxString();
  NxString(unsigned char codeSet, unsigned char language);
  NxString(const NxString& other);
  NxString(char c);
  NxString(unsigned short c);
  NxString(const char* text);
  NxString(const unsigned short* text);
  // `count` characters as they stand; 65535 up to the terminator.
  NxString(const char* text, unsigned short count);
  NxString(const unsigned short* text, unsigned short count);
  // Numbers, each in the default 8-bit code set.  A long is taken as its
  // low 32 bits, as the stored world's long is 32 bits wide.
  NxString(short number);
  NxString(int number);
  NxString(unsigned int number);
  NxString(long number);
  NxString(unsigned long number);
  NxString(double number);
  ~NxString();

  // Defaults, passed through to NxLanguageContext.
  static unsigned char GetDefaultCodeSet();
  static unsigned char GetDefault8CodeSet();
  static unsigned char GetDefault16CodeSet();
  static unsigned char GetDefaultLanguage();
  static unsigned short GetDefaultCmpOp();
  static void SetDefaultCodeSet(unsigned char codeSet);
  static void SetDefaultLanguage(unsigned char language);
  static void SetDefaultCmpOp(unsigned short cmpOp);

  // Lifetime and raw state.
  void d_deactivate();
  // Frees the buffer and zeroes all four fields.
  void Destroy();
  // For raw memory: no buffer, default code set and language; frees nothing.
  void Init();
  // Takes over `other`'s buffer, code set and language.
  void Destruct(NxString& other);
  int IsNullValue() const;
  int SetNullValue();
  static const NxString& EmptyString();

  // Assignment and append.
  NxString& operator=(const NxString& other);
  NxString& operator=(const char* text);
  NxString& operator=(const unsigned short* text);
  NxString& operator+=(const NxString& other);
  NxString& operator<<(char c);
  NxString& operator<<(const char* text);
  NxString& operator<<(const unsigned short* text);
  NxString& operator<<(const NxString& text);
  NxString& operator<<(short number);
  NxString& operator<<(int number);
  NxString& operator<<(unsigned int number);
  NxString& operator<<(long number);
  NxString& operator<<(unsigned long number);
  NxString& operator<<(double number);
  NxString& operator<<(float number);
  // A 16-bit character in a 16-bit string, else the number.
  NxString& operator<<(unsigned short c);

  // Reading.
  unsigned short Len() const;
  unsigned short IsEmpty() const;
  unsigned short operator!() const;
  // The buffer, or a static all-zero buffer when there is none.
  char* StrGet() const;
  NxChar operator[](int index);

  // Numbers; a string without a buffer is 0.  Results are 32-bit values:
  // out-of-range text saturates as a 32-bit strtol does; short cuts to 16 bits.
  operator int() const;
  operator short() const;
  operator long() const;
  operator double() const;

  // Editing.
  NxString& Insert(const NxString& text, unsigned short position);
  NxString& Replace(const NxString& text, unsigned short position);
  NxString& Fill(unsigned short count, char c);
  NxString& Fill(unsigned short count, unsigned short c);
  NxString& Expand(unsigned short length, char c);
  NxString& Expand(unsigned short length, unsigned short c);
  NxString& Cut(unsigned short position, short count);
  NxString Copy(unsigned short position, short count) const;
  NxString Left(unsigned short count) const;
  NxString Right(unsigned short count) const;
  NxString& LeftTrim();
  NxString& RightTrim();
  NxString& Trim();

  // Searching on collation.
  short Find(const NxString& text, unsigned short start, unsigned short cmpOp) const;
  short Find(char c, unsigned short start, unsigned short cmpOp) const;
  short Find(unsigned short c, unsigned short start, unsigned short cmpOp) const;
  short SubStringPos(const NxString& text, unsigned short cmpOp) const;
  NxString& ReplaceAll(const NxString& from, const NxString& to, unsigned short start);
  NxString& ReplaceAll(char from, char to, unsigned short start);
  NxString& ReplaceAll(unsigned short from, unsigned short to, unsigned short start);

  // Numbers with a look at the first character: -1 unless it is a digit or
  // "-", else 0 and the number.  16-bit text after a "-" is read and negated.
  int Atol(int32_t& value) const;
  int Strtol(int32_t& value) const;

  // Code sets.  A recoding that would pass the size limit leaves the string
  // as it was (MapToCodeSet then gives 0, CopyMapped 0 characters).
  int SetCodeSetCode(unsigned char codeSet);
  void SetCodeSet(unsigned char codeSet);
  int MapToCodeSet(unsigned char codeSet);
  int CopyMapped(const NxString& source, unsigned char codeSet, short count);

  // Case.  The result may be longer than the text; past the size limit the
  // string stays as it was.
  NxString& Transform(NxCharOperation& operation);
  NxString& ToUpper();
  NxString& ToLower();

  // Comparison.  A cmpOp of 65535 is the default operator.
  int32_t Compare(const NxString& other, short maxLength, unsigned short cmpOp) const;
  unsigned short operator==(const NxString& other) const;
  int operator!=(const NxString& other) const;
  unsigned short operator<(const NxString& other) const;
  unsigned short operator>(const NxString& other) const;
  unsigned short operator<=(const NxString& other) const;
  unsigned short operator>=(const NxString& other) const;
  unsigned short EqualsIgnoreLanguage(const NxString& other) const;

  // Wildcard characters, by their orders; return 0.
  static int SetAsterisk(const NxChar& c);
  static int SetQuestion(const NxChar& c);
  static int SetEscape(const NxChar& c);

  char* data;              // the buffer, or null
  unsigned short size;     // bytes in the buffer, terminator included
  unsigned char codeSet;   // code set of the text
  unsigned char language;  // language of the text

 private:
  enum SpliceMode { spliceReplace = 1, spliceInsert = 2, spliceTruncate = 3 };
  void SetText(const char* source, unsigned char sourceCodeSet, unsigned short count,
               unsigned char format);
  void Splice(const char* source, unsigned char sourceCodeSet, unsigned short position,
              unsigned short sourcePosition, unsigned short count, unsigned short repeat, int mode,
              unsigned char format);
  static void CopyUnits(char* destination, const char* source, unsigned charWidth,
                        unsigned char format, uint32_t bytes);
  static uint32_t Recode(unsigned char sourceCodeSet, unsigned char targetCodeSet,
                         const char* source, char*& result);
  static int CopyConverted(unsigned char sourceCodeSet, unsigned char targetCodeSet,
                           const char* source, short count, char*& data, unsigned short& size);
  friend class NxStringAccess;
};

NXTM_API NxString operator+(const NxString& a, const NxString& b);

// Compares two texts at collation strength, the second optionally a pattern.
NXTM_API int32_t NxStrCmp(unsigned char codeSet1, unsigned char language1, const char* text1,
                          unsigned char codeSet2, unsigned char language2, const char* text2,
                          unsigned short cmpOp, short maxLength, unsigned char format,
                          int* prefixResult);

// Hashes of text.
NXTM_API uint32_t HashString(unsigned char codeSet, unsigned char language, char* text,
                             short maxChars, unsigned char format);
NXTM_API uint32_t HashNxString(const NxString& text);
NXTM_API uint32_t HashNxString7(const NxString& text);

// One element after the other of a separated list.
NXTM_API int NxSplitList(NxString& list, NxString& element, const NxString& separator,
                         unsigned short& position);

// The disk forms of strings.  A text record: L (16 bits, the bytes behind
// it), code set, language, the text in its char width (16-bit units in the
// format's byte order), 0 and 0xFF; it takes L + 2 bytes.  StringStore writes
// `count` text records in the byte order of the format's low four bits and
// returns their bytes (cut to 16 bits).  StringLoad reads text records, key
// records (as order text, code set 254) or one old record holding the whole
// array, told apart by the last byte of the first record, into constructed
// strings.  StringSizeGet gives the disk bytes of `count` elements in
// `diskFormat`, from strings (`valueFormat` with bit 3) or from records; with
// the key form bit 0x80 it gives room for the key records.
NXTM_API uint32_t StringStore(void* disk, const void* memory, unsigned char format, uint32_t count);
NXTM_API uint32_t StringLoad(void* memory, const void* disk, unsigned char format, uint32_t count);
NXTM_API uint32_t StringSizeGet(const void* value, unsigned char valueFormat,
                                unsigned char diskFormat, uint32_t count);

// The place of the first wildcard among the first `limit` elements, or
// 65535.  Used by the string key rows.
NXTM_API unsigned short FindWildcard(unsigned char codeSet, unsigned char language,
                                     const char* text, unsigned short noQuestion,
                                     unsigned short limit, unsigned short* byteOffset,
                                     unsigned char format);
// A number that grows with the collation position of the text's start.
NXTM_API double PositionValue(NxStringIterator& text, unsigned short length);

#endif
