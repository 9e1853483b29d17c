// nxin: the internationalisation library of the nxtm family.
//
// Code sets (how the bytes of a text map to characters and to Unicode),
// languages, Unicode case properties and the collation order tables that turn
// characters into 16-bit orders.  All data is compiled in and immutable; the
// objects are constant-initialised, so they are valid before any static
// constructor runs.
#ifndef NXIN_NXIN_H
#define NXIN_NXIN_H

#include <cstdint>

#if defined(_WIN32)
#if defined(NXIN_BUILDING)
#define NXIN_API __declspec(dllexport)
#else
#define NXIN_API __declspec(dllimport)
#endif
#else
#define NXIN_API __attribute__((visibility("default")))
#endif

// Code set numbers.
enum : unsigned char {
  NxCS_NONE = 0,
  NxCS_CP1252 = 1,       // Windows Latin-1, native and default
  NxCS_ISO8859_1 = 2,    // Latin-1
  NxCS_ISO8859_2 = 3,    // Central European
  NxCS_ISO8859_5 = 4,    // Cyrillic
  NxCS_ISO8859_7 = 5,    // Greek
  NxCS_IBM037 = 6,       // EBCDIC
  NxCS_UCS2_LEGACY = 225,  // 16-bit legacy code set equal to the BMP
  NxCS_UNICODE = 253,    // Unicode BMP, UCS-2
  NxCS_ORDERS = 254,     // order text
  NxCS_DEFAULT = 255,    // as an argument: the default
};

// Language numbers.
enum : unsigned char {
  NxLANG_NONE = 0,
  NxLANG_NEUTRAL = 1,
  NxLANG_GERMAN_PHONEBOOK = 2,
  NxLANG_SPANISH_TRADITIONAL = 3,
  NxLANG_SWEDISH = 4,
  NxLANG_DANISH = 5,  // Danish and Norwegian
  NxLANG_CZECH = 6,
  NxLANG_GREEK = 7,
  NxLANG_RUSSIAN = 8,
  NxLANG_NULL = 254,
  NxLANG_DEFAULT = 255,
};

// Collation states.
enum : unsigned char {
  NxSTATE_LATIN = 1,
  NxSTATE_GREEK = 2,
  NxSTATE_CYRILLIC = 3,
  NxSTATE_UNKNOWN = 20,
};

// A list of 16-bit values: expansions, contraction continuations, case
// overflow.  `count` is read directly by callers.
class NXIN_API NxWCharList {
 public:
  constexpr NxWCharList() : count(0), items(nullptr) {}
  constexpr NxWCharList(int32_t n, const unsigned short* values) : count(n), items(values) {}
  // Reads element `index` into `value`: 0 on success, -1 when out of range.
  virtual int Get(int32_t index, unsigned short& value) const;

  int32_t count;
  const unsigned short* items;
};

// A list of pointers, read like NxWCharList.
template <class T>
class NxPointerList {
 public:
  // Reads element `index` into `value`: 0 on success, -1 when out of range.
  int Get(int32_t index, const T*& value) const {
    if (index < 0 || index >= count) return -1;
    value = items[index];
    return 0;
  }
  int32_t count;
  const T* const* items;
};

class NxLanguage;

// One collation record: the order of a character or of a sequence.
struct NxOrderRecord {
  const unsigned char* stateSource;  // state this character sets; null: the language's home state
  NxPointerList<NxOrderRecord> nextRecords;  // parallel to nextChars
  NxPointerList<NxLanguage> languages;       // languages that order this character their own way
  NxPointerList<NxOrderRecord> variants;     // parallel to languages
  unsigned short order;
  NxWCharList expansion;  // orders that follow `order`
  NxWCharList nextChars;  // characters that may follow to form a contraction
  unsigned short hasNext;
  unsigned short hasVariants;
  unsigned short hasExpansion;
};

// The order table of a code set.  Values below 512 are looked up directly in
// `low`; values above go through `high`: 256 blocks (null when empty) of 256
// record pointers (null when the value has no record).
class NXIN_API NxOrderTable {
 public:
  constexpr NxOrderTable(const NxOrderRecord* lowRecords,
                         const NxOrderRecord* const* const* highBlocks)
      : low(lowRecords), high(highBlocks) {}
  // The record of `value`, or null; never null below 512.
  virtual const NxOrderRecord* Record(unsigned short value) const;

  // The same without the virtual call: the path of the collation loop.
  const NxOrderRecord* Find(unsigned short value) const {
    if (value < 512) return &low[value];
    const NxOrderRecord* const* block = high[value >> 8];
    return block != nullptr ? block[value & 0xFF] : nullptr;
  }

  const NxOrderRecord* low;                  // 512 records
  const NxOrderRecord* const* const* high;   // 256 blocks
};

// Unicode properties of one character.
struct NxUnicodeProps {
  unsigned short upper;       // simple upper-case mapping, 0 when none
  NxWCharList upperOverflow;  // further characters of a longer upper-case form
  unsigned short lower;       // simple lower-case mapping, 0 when none
};

// A language.  Objects are compared by address.
class NXIN_API NxLanguage {
 public:
  unsigned short specificCollation;  // non-zero: the language has its own collation variants
  unsigned char number;
  unsigned char homeState;  // collation state of text in this language
  const char* name;
};

// A code set.
class NXIN_API NxCodeSet {
 public:
  constexpr NxCodeSet(unsigned char n, unsigned char w, const char* nm,
                      const NxOrderTable* table, const unsigned short* toUni,
                      const unsigned char* const* fromUni)
      : orderTable(table), number(n), width(w), name(nm), toUnicode(toUni),
        fromUnicode(fromUni) {}

  // The initial collation state of text of this code set in `language`.
  // Order text (code set 254) holds its state in place of a language: its
  // initial state is that byte without bit 7.
  virtual unsigned char InitialState(unsigned char language) const;
  // The value in this code set of character `value` of `sourceCodeSet` (0
  // stands for the native code set).  A character that this code set can't
  // hold becomes the replacement: "?" in 8-bit code sets, U+FFFD in 16-bit.
  virtual unsigned short MapFrom(unsigned short value, unsigned char sourceCodeSet) const;

  // Unicode properties of the character `value` of this code set, or null.
  // In 8-bit code sets only the low 8 bits of `value` count.
  const NxUnicodeProps* GetUnicodeProps(unsigned short value, unsigned char language) const;

  // The Unicode value of a character of this code set (order text maps to 0).
  unsigned short ToUnicode(unsigned short value) const;
  // The character of this code set for a Unicode value, or `fallback` when
  // the code set has none.
  unsigned short FromUnicode(unsigned short unicode, unsigned short fallback) const;

  const NxOrderTable* orderTable;  // null when the code set is ordered through 253
  unsigned char number;
  unsigned char width;  // 1 or 2
  const char* name;
  const unsigned short* toUnicode;          // 256 entries for 8-bit code sets, else null
  const unsigned char* const* fromUnicode;  // 256 blocks of 256 bytes (null: none), 8-bit only
};

// Words for collation orders, for showing orders to people: the names and
// plain characters of the symbols that have them, the names of the accents
// of letter orders, and the names of the accented letters of code set 1.
// The texts are static and live as long as the library.
class NXIN_API NxOrderWords {
 public:
  // The name of symbol number `symbol` (order - 80), or null when it has none.
  static const char* SymbolName(unsigned short symbol);
  // The plain 7-bit character that stands for the symbol, or 0 when none does.
  static char SymbolCharacter(unsigned short symbol);
  // The name of accent number `accent` of a letter order, or null.
  static const char* AccentName(unsigned short accent);
  // The name of character `code` of code set 1, e.g. "\'e" for e acute:
  // "" for the characters 128 to 255 without one, null below 128.
  static const char* CharacterName(unsigned char code);
};

// Process-wide string defaults and the registry of code sets and languages.
class NXIN_API NxLanguageContext {
 public:
  static unsigned char GetDefaultCodeSet();
  static void SetDefaultCodeSet(unsigned char codeSet);
  static unsigned char GetDefault8CodeSet();
  static void SetDefault8CodeSet(unsigned char codeSet);
  static unsigned char GetDefault16CodeSet();
  static void SetDefault16CodeSet(unsigned char codeSet);
  static unsigned char GetNativeCodeSet();
  static unsigned char GetDefaultLanguage();
  static void SetDefaultLanguage(unsigned char language);
  static unsigned short GetDefaultCmpOp();
  static void SetDefaultCmpOp(unsigned short cmpOp);
  // Restores the defaults of the start: code set 1, 8-bit 1, 16-bit 253,
  // language 1, comparison operator 0x0010.
  static void ResetDefaults();

  // The code set object for `number`, or null when there is none.  Code set
  // 0 gives the native code set.
  static const NxCodeSet* QueryCodeSet(unsigned char number);
  // The language object for `number`, or null (also for 0).
  static const NxLanguage* QueryLanguage(unsigned char number);

  // Enumeration for tools: the i-th existing code set / language, or null.
  static const NxCodeSet* CodeSetAt(int index);
  static const NxLanguage* LanguageAt(int index);
};

// Start (non-zero) and stop (0) call of the library.  Opening resets nothing
// and may be repeated; the data is always there.  Returns the number of open
// calls not yet matched by a close.
NXIN_API int ___NxI18NContext(int open);

#endif
