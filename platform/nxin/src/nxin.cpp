// nxin: code set, language and collation objects, the process-wide string
// defaults and the library's start and stop call.  The data behind the
// objects lives in the generated nxin_tables.cpp.
//
// Defaults at start (and after NxLanguageContext::ResetDefaults):
//   default code set 1 (cp1252), default 8-bit code set 1, default 16-bit
//   code set 253 (Unicode), native code set 1, default language 1 (neutral),
//   default comparison operator 0x0010 (no wildcards, full strength).
#include "nxin_data.h"

namespace nxin_detail {

// Home states: Latin for the languages written in Latin letters, Greek and
// Cyrillic for Greek and Russian.
constexpr NxLanguage kLanguages[9] = {
    {0, NxLANG_NONE, NxSTATE_LATIN, "none"},
    {0, NxLANG_NEUTRAL, NxSTATE_LATIN, "neutral"},
    {1, NxLANG_GERMAN_PHONEBOOK, NxSTATE_LATIN, "german-phonebook"},
    {1, NxLANG_SPANISH_TRADITIONAL, NxSTATE_LATIN, "spanish-traditional"},
    {1, NxLANG_SWEDISH, NxSTATE_LATIN, "swedish"},
    {1, NxLANG_DANISH, NxSTATE_LATIN, "danish-norwegian"},
    {1, NxLANG_CZECH, NxSTATE_LATIN, "czech"},
    {0, NxLANG_GREEK, NxSTATE_GREEK, "greek"},
    {0, NxLANG_RUSSIAN, NxSTATE_CYRILLIC, "russian"},
};

namespace {

constexpr unsigned char kNative = NxCS_CP1252;

// Code sets 4, 5, 6 and 225 have no order table of their own: text in them
// is ordered by mapping it to Unicode.  254 (order text) has neither maps nor
// a table.
constexpr NxCodeSet kCodeSets[] = {
    NxCodeSet(NxCS_CP1252, 1, "cp1252", &kOrderTable1, kToUnicode1, kFromUnicode1),
    NxCodeSet(NxCS_ISO8859_1, 1, "iso8859-1", &kOrderTable2, kToUnicode2, kFromUnicode2),
    NxCodeSet(NxCS_ISO8859_2, 1, "iso8859-2", &kOrderTable3, kToUnicode3, kFromUnicode3),
    NxCodeSet(NxCS_ISO8859_5, 1, "iso8859-5", nullptr, kToUnicode4, kFromUnicode4),
    NxCodeSet(NxCS_ISO8859_7, 1, "iso8859-7", nullptr, kToUnicode5, kFromUnicode5),
    NxCodeSet(NxCS_IBM037, 1, "ibm037", nullptr, kToUnicode6, kFromUnicode6),
    NxCodeSet(NxCS_UCS2_LEGACY, 2, "ucs2-legacy", nullptr, nullptr, nullptr),
    NxCodeSet(NxCS_UNICODE, 2, "unicode", &kOrderTable253, nullptr, nullptr),
    NxCodeSet(NxCS_ORDERS, 2, "orders", nullptr, nullptr, nullptr),
};
constexpr int kCodeSetCount = sizeof(kCodeSets) / sizeof(kCodeSets[0]);

// Index of each code set number in kCodeSets, -1 where there is none.
struct CodeSetIndex {
  signed char at[256];
  constexpr CodeSetIndex() : at() {
    for (int i = 0; i < 256; ++i) at[i] = -1;
    for (int i = 0; i < kCodeSetCount; ++i) at[kCodeSets[i].number] = static_cast<signed char>(i);
  }
};
constexpr CodeSetIndex kCodeSetIndex;

struct Defaults {
  unsigned char codeSet;
  unsigned char codeSet8;
  unsigned char codeSet16;
  unsigned char language;
  unsigned short cmpOp;
};
constexpr Defaults kStartDefaults = {NxCS_CP1252, NxCS_CP1252, NxCS_UNICODE, NxLANG_NEUTRAL,
                                     0x0010};
Defaults defaults = kStartDefaults;
int openCount = 0;

const NxUnicodeProps* PropsOf(unsigned short unicode) {
  const unsigned short* block = kUnicodePropsIndex[unicode >> 8];
  if (block == nullptr) return nullptr;
  unsigned short index = block[unicode & 0xFF];
  return index != 0 ? &kUnicodeProps[index] : nullptr;
}

}  // namespace
}  // namespace nxin_detail

using namespace nxin_detail;

int NxWCharList::Get(int32_t index, unsigned short& value) const {
  if (index < 0 || index >= count) return -1;
  value = items[index];
  return 0;
}

const NxOrderRecord* NxOrderTable::Record(unsigned short value) const {
  return Find(value);
}

unsigned char NxCodeSet::InitialState(unsigned char language) const {
  // Order text (index keys) carries its collation state where text carries
  // its language; bit 7 only marks a key that ended at a change of state.
  if (number == NxCS_ORDERS) return language & 0x7F;
  if (language == NxLANG_DEFAULT) language = defaults.language;
  if (language >= 1 && language <= 8) return kLanguages[language].homeState;
  return NxSTATE_LATIN;
}

unsigned short NxCodeSet::ToUnicode(unsigned short value) const {
  if (width == 1) return toUnicode[value & 0xFF];
  if (number == NxCS_ORDERS) return 0;
  return value;  // 225 and 253 hold the BMP as it is
}

unsigned short NxCodeSet::FromUnicode(unsigned short unicode, unsigned short fallback) const {
  if (width == 2) return number == NxCS_ORDERS ? fallback : unicode;
  if (unicode == 0) return 0;
  const unsigned char* block = fromUnicode[unicode >> 8];
  if (block == nullptr) return fallback;
  unsigned char byte = block[unicode & 0xFF];
  return byte != 0 ? byte : fallback;
}

unsigned short NxCodeSet::MapFrom(unsigned short value, unsigned char sourceCodeSet) const {
  if (number == NxCS_ORDERS) return value;  // order text is never mapped
  if (sourceCodeSet == 0) sourceCodeSet = kNative;
  if (sourceCodeSet == number) return value;
  const NxCodeSet* source = NxLanguageContext::QueryCodeSet(sourceCodeSet);
  // An unknown source passes its values through as Unicode.
  unsigned short unicode = source != nullptr ? source->ToUnicode(value) : value;
  if (width == 2) return unicode;
  // The replacement of an 8-bit code set is its own question mark.
  return FromUnicode(unicode, FromUnicode('?', '?'));
}

const NxUnicodeProps* NxCodeSet::GetUnicodeProps(unsigned short value, unsigned char) const {
  if (number == NxCS_ORDERS) return nullptr;
  return PropsOf(ToUnicode(value));
}

const char* NxOrderWords::SymbolName(unsigned short symbol) {
  if (symbol < 32 || symbol > 139) return nullptr;
  return kSymbolWords[symbol - 32].name;
}

char NxOrderWords::SymbolCharacter(unsigned short symbol) {
  if (symbol < 32 || symbol > 139) return 0;
  return kSymbolWords[symbol - 32].character;
}

const char* NxOrderWords::AccentName(unsigned short accent) {
  return accent < 32 ? kAccentWords[accent] : nullptr;
}

const char* NxOrderWords::CharacterName(unsigned char code) {
  return code >= 128 ? kCharacterWords[code - 128] : nullptr;
}

unsigned char NxLanguageContext::GetDefaultCodeSet() {
  return defaults.codeSet;
}
void NxLanguageContext::SetDefaultCodeSet(unsigned char codeSet) {
  defaults.codeSet = codeSet;
}
unsigned char NxLanguageContext::GetDefault8CodeSet() {
  return defaults.codeSet8;
}
void NxLanguageContext::SetDefault8CodeSet(unsigned char codeSet) {
  defaults.codeSet8 = codeSet;
}
unsigned char NxLanguageContext::GetDefault16CodeSet() {
  return defaults.codeSet16;
}
void NxLanguageContext::SetDefault16CodeSet(unsigned char codeSet) {
  defaults.codeSet16 = codeSet;
}
unsigned char NxLanguageContext::GetNativeCodeSet() {
  return kNative;
}
unsigned char NxLanguageContext::GetDefaultLanguage() {
  return defaults.language;
}
void NxLanguageContext::SetDefaultLanguage(unsigned char language) {
  defaults.language = language;
}
unsigned short NxLanguageContext::GetDefaultCmpOp() {
  return defaults.cmpOp;
}
void NxLanguageContext::SetDefaultCmpOp(unsigned short cmpOp) {
  defaults.cmpOp = cmpOp;
}
void NxLanguageContext::ResetDefaults() {
  defaults = kStartDefaults;
}

const NxCodeSet* NxLanguageContext::QueryCodeSet(unsigned char number) {
  if (number == 0) number = kNative;
  int index = kCodeSetIndex.at[number];
  return index >= 0 ? &kCodeSets[index] : nullptr;
}

const NxLanguage* NxLanguageContext::QueryLanguage(unsigned char number) {
  if (number >= 1 && number <= 8) return &kLanguages[number];
  return nullptr;
}

const NxCodeSet* NxLanguageContext::CodeSetAt(int index) {
  return index >= 0 && index < kCodeSetCount ? &kCodeSets[index] : nullptr;
}

const NxLanguage* NxLanguageContext::LanguageAt(int index) {
  return index >= 0 && index < 8 ? &kLanguages[index + 1] : nullptr;
}

int ___NxI18NContext(int open) {
  if (open != 0) {
    ++openCount;
  } else if (openCount > 0) {
    --openCount;
  }
  return openCount;
}
