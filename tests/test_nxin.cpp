// Tests of the internationalisation library's data: the registry and its
// defaults, the code set maps and the case properties (against ICU as an
// independent reference), and the collation records that the string
// comparison rests on.
#include <nxin/nxin.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#ifdef NXTM_TEST_HAVE_ICU
#include <unicode/ucnv.h>
#include <unicode/uchar.h>
#include <unicode/ustring.h>
#endif

namespace {

const unsigned char kAllCodeSets[] = {1, 2, 3, 4, 5, 6, 225, 253, 254};
const unsigned char kEightBit[] = {1, 2, 3, 4, 5, 6};

const NxCodeSet* CodeSet(unsigned char number) {
  return NxLanguageContext::QueryCodeSet(number);
}

const NxOrderRecord* Record(unsigned char codeSet, unsigned short value) {
  return CodeSet(codeSet)->orderTable->Record(value);
}

unsigned short Order(unsigned char codeSet, unsigned short value) {
  const NxOrderRecord* r = Record(codeSet, value);
  return r != nullptr ? r->order : 0;
}

std::vector<unsigned short> Items(const NxWCharList& list) {
  std::vector<unsigned short> v;
  for (int32_t i = 0; i < list.count; ++i) {
    unsigned short x = 0;
    EXPECT_EQ(0, list.Get(i, x));
    v.push_back(x);
  }
  return v;
}

// The variant of a record for a language, or null.
const NxOrderRecord* Variant(const NxOrderRecord* r, unsigned char language) {
  const NxLanguage* lang = NxLanguageContext::QueryLanguage(language);
  if (r == nullptr || r->hasVariants == 0) return nullptr;
  for (int32_t i = 0; i < r->languages.count; ++i) {
    const NxLanguage* l = nullptr;
    const NxOrderRecord* v = nullptr;
    EXPECT_EQ(0, r->languages.Get(i, l));
    EXPECT_EQ(0, r->variants.Get(i, v));
    if (l == lang) return v;
  }
  return nullptr;
}

// The record that `next` continues `r` to, or null.
const NxOrderRecord* Next(const NxOrderRecord* r, unsigned short next) {
  if (r == nullptr || r->hasNext == 0) return nullptr;
  for (int32_t i = 0; i < r->nextChars.count; ++i) {
    const NxOrderRecord* x = nullptr;
    if (r->nextChars.items[i] == next && r->nextRecords.Get(i, x) == 0) return x;
  }
  return nullptr;
}

unsigned short Letter(unsigned short order) {
  return order & 0x7F;
}
unsigned short Accent(unsigned short order) {
  return (order >> 7) & 0x1F;
}
unsigned short Case(unsigned short order) {
  return (order >> 12) & 3;
}
bool IsLetter(unsigned short order) {
  return (order & 0xC000) == 0x4000;
}

// ---------------------------------------------------------------------------
// Registry, defaults and small objects.

TEST(NxinContext, DefaultsSettersAndReset) {
  NxLanguageContext::ResetDefaults();
  EXPECT_EQ(1, NxLanguageContext::GetDefaultCodeSet());
  EXPECT_EQ(1, NxLanguageContext::GetDefault8CodeSet());
  EXPECT_EQ(253, NxLanguageContext::GetDefault16CodeSet());
  EXPECT_EQ(1, NxLanguageContext::GetNativeCodeSet());
  EXPECT_EQ(1, NxLanguageContext::GetDefaultLanguage());
  EXPECT_EQ(0x0010, NxLanguageContext::GetDefaultCmpOp());

  NxLanguageContext::SetDefaultCodeSet(253);
  NxLanguageContext::SetDefault8CodeSet(3);
  NxLanguageContext::SetDefault16CodeSet(225);
  NxLanguageContext::SetDefaultLanguage(6);
  NxLanguageContext::SetDefaultCmpOp(0x0060);
  EXPECT_EQ(253, NxLanguageContext::GetDefaultCodeSet());
  EXPECT_EQ(3, NxLanguageContext::GetDefault8CodeSet());
  EXPECT_EQ(225, NxLanguageContext::GetDefault16CodeSet());
  EXPECT_EQ(6, NxLanguageContext::GetDefaultLanguage());
  EXPECT_EQ(0x0060, NxLanguageContext::GetDefaultCmpOp());
  // The default language is the one that 255 stands for in InitialState.
  NxLanguageContext::SetDefaultLanguage(8);
  EXPECT_EQ(NxSTATE_CYRILLIC, CodeSet(1)->InitialState(255));

  NxLanguageContext::ResetDefaults();
  EXPECT_EQ(1, NxLanguageContext::GetDefaultCodeSet());
  EXPECT_EQ(1, NxLanguageContext::GetDefault8CodeSet());
  EXPECT_EQ(253, NxLanguageContext::GetDefault16CodeSet());
  EXPECT_EQ(1, NxLanguageContext::GetDefaultLanguage());
  EXPECT_EQ(0x0010, NxLanguageContext::GetDefaultCmpOp());
}

TEST(NxinContext, CodeSetRegistry) {
  std::vector<bool> exists(256, false);
  for (unsigned char n : kAllCodeSets) exists[n] = true;
  for (int n = 1; n < 256; ++n) {
    const NxCodeSet* cs = CodeSet(static_cast<unsigned char>(n));
    ASSERT_EQ(exists[n], cs != nullptr) << n;
    if (cs == nullptr) continue;
    EXPECT_EQ(n, cs->number);
    EXPECT_EQ(n > 224 ? 2 : 1, cs->width) << n;
    EXPECT_NE(nullptr, cs->name);
    bool ownTable = n == 1 || n == 2 || n == 3 || n == 253;
    EXPECT_EQ(ownTable, cs->orderTable != nullptr) << n;
  }
  EXPECT_EQ(CodeSet(1), CodeSet(0)) << "code set 0 stands for the native code set";

  // The enumeration lists exactly the code sets and languages that exist.
  int count = 0;
  for (const NxCodeSet* cs; (cs = NxLanguageContext::CodeSetAt(count)) != nullptr; ++count) {
    EXPECT_EQ(cs, CodeSet(cs->number));
  }
  EXPECT_EQ(static_cast<int>(sizeof(kAllCodeSets)), count);
  EXPECT_EQ(nullptr, NxLanguageContext::CodeSetAt(-1));
  count = 0;
  for (const NxLanguage* l; (l = NxLanguageContext::LanguageAt(count)) != nullptr; ++count) {
    EXPECT_EQ(l, NxLanguageContext::QueryLanguage(l->number));
  }
  EXPECT_EQ(8, count);
}

TEST(NxinContext, LanguagesAndInitialStates) {
  for (int n = 0; n < 256; ++n) {
    const NxLanguage* l = NxLanguageContext::QueryLanguage(static_cast<unsigned char>(n));
    ASSERT_EQ(n >= 1 && n <= 8, l != nullptr) << n;
    if (l == nullptr) continue;
    EXPECT_EQ(n, l->number);
    EXPECT_EQ(n >= 2 && n <= 6, l->specificCollation != 0) << n;
  }
  for (unsigned char cs : kAllCodeSets) {
    for (int lang : {0, 1, 2, 3, 4, 5, 6, 9, 100, 254}) {
      EXPECT_EQ(NxSTATE_LATIN, CodeSet(cs)->InitialState(static_cast<unsigned char>(lang)))
          << int(cs) << " " << lang;
    }
    EXPECT_EQ(NxSTATE_GREEK, CodeSet(cs)->InitialState(NxLANG_GREEK));
    EXPECT_EQ(NxSTATE_CYRILLIC, CodeSet(cs)->InitialState(NxLANG_RUSSIAN));
  }
}

TEST(NxinContext, OpenCloseCountsAndListReads) {
  int base = ___NxI18NContext(1);
  EXPECT_EQ(base + 1, ___NxI18NContext(1));
  EXPECT_EQ(base, ___NxI18NContext(0));
  EXPECT_EQ(base - 1, ___NxI18NContext(0));

  const unsigned short values[] = {7, 8, 9};
  NxWCharList list(3, values);
  unsigned short v = 0;
  EXPECT_EQ(0, list.Get(2, v));
  EXPECT_EQ(9, v);
  EXPECT_EQ(-1, list.Get(3, v));
  EXPECT_EQ(-1, list.Get(-1, v));
  EXPECT_EQ(9, v);
}

// ---------------------------------------------------------------------------
// Code set maps.

TEST(NxinCodeSets, MappingBetweenCodeSets) {
  // 16-bit code sets hold the whole BMP; order text is never mapped.
  for (unsigned v : {0x41u, 0xE9u, 0x3A3u, 0x4E00u, 0xFFFDu}) {
    EXPECT_EQ(v, CodeSet(253)->MapFrom(static_cast<unsigned short>(v), 225));
    EXPECT_EQ(v, CodeSet(225)->MapFrom(static_cast<unsigned short>(v), 253));
    EXPECT_EQ(v, CodeSet(254)->MapFrom(static_cast<unsigned short>(v), 253));
  }
  EXPECT_EQ(0x20AC, CodeSet(253)->MapFrom(0x80, 1));
  EXPECT_EQ(0x20AC, CodeSet(253)->MapFrom(0x80, 0)) << "source 0 is the native code set";
  EXPECT_EQ(0xA4, CodeSet(5)->MapFrom(0x80, 1)) << "euro from cp1252 to iso8859-7";
  EXPECT_EQ(0xE8, CodeSet(3)->MapFrom(0x10D, 253)) << "c caron";
  EXPECT_EQ(0x3F, CodeSet(1)->MapFrom(0x10D, 253)) << "no c caron in cp1252";
  EXPECT_EQ(0x6F, CodeSet(6)->MapFrom(0x3A3, 253)) << "the EBCDIC question mark";
  EXPECT_EQ(0xC1, CodeSet(6)->MapFrom('A', 1));
  EXPECT_EQ('A', CodeSet(1)->MapFrom(0xC1, 6));
  EXPECT_EQ(0, CodeSet(6)->MapFrom(0, 1));
  EXPECT_EQ(0, CodeSet(253)->ToUnicode(0) + CodeSet(254)->ToUnicode(0x4000));

  // Every character survives a trip through every code set that holds it.
  for (unsigned char from : kEightBit) {
    for (unsigned char to : kAllCodeSets) {
      if (to == 254) continue;
      for (int b = 0; b < 256; ++b) {
        unsigned short u = CodeSet(from)->ToUnicode(static_cast<unsigned short>(b));
        if (u == 0xFFFD) continue;
        unsigned short mapped = CodeSet(to)->MapFrom(static_cast<unsigned short>(b), from);
        if (CodeSet(to)->FromUnicode(u, 0xFFFF) == 0xFFFF) continue;  // not held
        EXPECT_EQ(b, CodeSet(from)->MapFrom(mapped, to))
            << int(from) << "->" << int(to) << " " << b;
      }
    }
  }
}

#ifdef NXTM_TEST_HAVE_ICU
struct IcuConverter {
  explicit IcuConverter(const char* name) {
    UErrorCode e = U_ZERO_ERROR;
    cnv = ucnv_open(name, &e);
    if (U_FAILURE(e)) cnv = nullptr;
    if (cnv != nullptr) {
      ucnv_setToUCallBack(cnv, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &e);
      ucnv_setFromUCallBack(cnv, UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &e);
      ucnv_setFallback(cnv, false);
    }
  }
  ~IcuConverter() {
    if (cnv != nullptr) ucnv_close(cnv);
  }
  // The Unicode value of a byte, or -1 when the converter has none.
  int ToUnicode(int byte) {
    char in = static_cast<char>(byte);
    UChar out[4];
    UErrorCode e = U_ZERO_ERROR;
    ucnv_resetToUnicode(cnv);
    int32_t n = ucnv_toUChars(cnv, out, 4, &in, 1, &e);
    return U_SUCCESS(e) && n == 1 ? out[0] : -1;
  }
  // The byte of a Unicode value, or -1 when the converter has no round trip.
  int FromUnicode(UChar u) {
    char out[8];
    UErrorCode e = U_ZERO_ERROR;
    ucnv_resetFromUnicode(cnv);
    int32_t n = ucnv_fromUChars(cnv, out, 8, &u, 1, &e);
    return U_SUCCESS(e) && n == 1 ? static_cast<unsigned char>(out[0]) : -1;
  }
  UConverter* cnv = nullptr;
};
#endif

TEST(NxinCodeSets, EightBitMapsAgreeWithIcu) {
#ifndef NXTM_TEST_HAVE_ICU
  GTEST_SKIP() << "ICU is not available: the code set maps are not checked against it";
#else
  const struct {
    unsigned char number;
    const char* icuName;
  } kSets[] = {{1, "windows-1252"}, {2, "ISO-8859-1"}, {3, "ISO-8859-2"},
               {4, "ISO-8859-5"},   {5, "ISO-8859-7"}, {6, "ibm-37"}};
  for (const auto& set : kSets) {
    SCOPED_TRACE(set.icuName);
    IcuConverter icu(set.icuName);
    ASSERT_NE(nullptr, icu.cnv);
    const NxCodeSet* cs = CodeSet(set.number);
    for (int b = 0; b < 256; ++b) {
      int ref = icu.ToUnicode(b);
      unsigned short ours = cs->ToUnicode(static_cast<unsigned short>(b));
      // Bytes that ICU leaves undefined (0xAE, 0xD2, 0xFF of iso8859-7)
      // become U+FFFD here, one way only.  The undefined bytes of cp1252
      // (0x81, 0x8D, 0x8F, 0x90, 0x9D) are C1 controls both here and in ICU.
      if (ref < 0) {
        EXPECT_EQ(0xFFFD, ours) << b;
        continue;
      }
      EXPECT_EQ(ref, ours) << "byte " << b;
      // Only the low byte counts: a sign-extended byte reads the same.
      EXPECT_EQ(ours, cs->ToUnicode(static_cast<unsigned short>(static_cast<signed char>(b))));
    }
    for (int u = 0; u < 0x10000; ++u) {
      if (u >= 0xD800 && u <= 0xDFFF) continue;
      int ref = icu.FromUnicode(static_cast<UChar>(u));
      unsigned short ours = cs->FromUnicode(static_cast<unsigned short>(u), 0xFFFF);
      EXPECT_EQ(ref < 0 ? 0xFFFF : ref, ours) << "U+" << std::hex << u;
    }
  }
#endif
}

// ---------------------------------------------------------------------------
// Unicode properties.

TEST(NxinUnicodeProps, EightBitValuesAndMissingProperties) {
  const NxUnicodeProps* p = CodeSet(1)->GetUnicodeProps(
      static_cast<unsigned short>(static_cast<signed char>(0xE9)), 1);  // é, sign-extended
  ASSERT_NE(nullptr, p);
  EXPECT_EQ(0xC9, p->upper);
  EXPECT_EQ(0, p->lower);
  p = CodeSet(4)->GetUnicodeProps(0xD0, 1);  // Cyrillic small a in iso8859-5
  ASSERT_NE(nullptr, p);
  EXPECT_EQ(0x410, p->upper);
  p = CodeSet(6)->GetUnicodeProps(0xC1, 1);  // EBCDIC A
  ASSERT_NE(nullptr, p);
  EXPECT_EQ(0x61, p->lower);
  p = CodeSet(1)->GetUnicodeProps(0xDF, 1);  // ß: SS
  ASSERT_NE(nullptr, p);
  EXPECT_EQ('S', p->upper);
  EXPECT_EQ(std::vector<unsigned short>{'S'}, Items(p->upperOverflow));
  EXPECT_EQ(nullptr, CodeSet(1)->GetUnicodeProps('1', 1));
  EXPECT_EQ(nullptr, CodeSet(253)->GetUnicodeProps(0x4E00, 1));
  EXPECT_EQ(nullptr, CodeSet(254)->GetUnicodeProps('a', 1));
}

TEST(NxinUnicodeProps, CaseMappingsAgreeWithIcu) {
#ifndef NXTM_TEST_HAVE_ICU
  GTEST_SKIP() << "ICU is not available: the case mappings are not checked against it";
#else
  int checked = 0;
  for (int u = 0; u < 0x10000; ++u) {
    if (u >= 0xD800 && u <= 0xDFFF) continue;
    // The tables come from Unicode 14; skip characters that ICU knows from a
    // later version (they differ only because of the version).
    UVersionInfo age;
    u_charAge(u, age);
    if (age[0] > 14 || (age[0] == 0 && age[1] == 0)) continue;
    UChar in = static_cast<UChar>(u);
    UChar full[8];
    UErrorCode e = U_ZERO_ERROR;
    int32_t n = u_strToUpper(full, 8, &in, 1, "", &e);
    ASSERT_TRUE(U_SUCCESS(e));
    const NxUnicodeProps* p = CodeSet(253)->GetUnicodeProps(static_cast<unsigned short>(u), 1);
    int upper = p != nullptr && p->upper != 0 ? p->upper : u;
    int lower = p != nullptr && p->lower != 0 ? p->lower : u;
    std::vector<unsigned short> overflow;
    if (p != nullptr) overflow = Items(p->upperOverflow);
    if (n == 1) {
      EXPECT_EQ(static_cast<int>(u_toupper(u)), upper) << "U+" << std::hex << u;
      EXPECT_TRUE(overflow.empty()) << "U+" << std::hex << u;
    } else {
      // A longer full upper case: the first character and the overflow.
      std::vector<unsigned short> ours{static_cast<unsigned short>(upper)};
      ours.insert(ours.end(), overflow.begin(), overflow.end());
      EXPECT_EQ(std::vector<unsigned short>(full, full + n), ours) << "U+" << std::hex << u;
    }
    EXPECT_EQ(static_cast<int>(u_tolower(u)), lower) << "U+" << std::hex << u;
    if (p != nullptr) {
      EXPECT_TRUE(p->upper != 0 || p->lower != 0) << "empty properties for U+" << std::hex << u;
    }
    ++checked;
  }
  EXPECT_GT(checked, 50000);
#endif
}

// ---------------------------------------------------------------------------
// Order tables: structure.

TEST(NxinOrders, EveryTableIsCompleteAndConsistent) {
  for (unsigned char cs : {1, 2, 3, 253}) {
    SCOPED_TRACE(int(cs));
    const NxOrderTable* table = CodeSet(cs)->orderTable;
    for (int v = 0; v < 512; ++v) {
      const NxOrderRecord* r = table->Record(static_cast<unsigned short>(v));
      ASSERT_NE(nullptr, r) << v;
      EXPECT_NE(0, r->order) << v;
      EXPECT_EQ(r, table->Find(static_cast<unsigned short>(v)));
    }
    EXPECT_GT(80, Order(cs, 0)) << "character 0 is ignorable";
    for (int v = 0; v < 0x10000; ++v) {
      const NxOrderRecord* r = table->Record(static_cast<unsigned short>(v));
      if (r == nullptr) continue;
      // Letters set the state of their script, everything else leaves it
      // to the language (an expansion counts as a letter when it holds one).
      bool letter = IsLetter(r->order);
      for (unsigned short o : Items(r->expansion)) letter = letter || IsLetter(o);
      EXPECT_EQ(letter, r->stateSource != nullptr) << std::hex << v;
      if (r->stateSource != nullptr) {
        EXPECT_TRUE(*r->stateSource >= 1 && *r->stateSource <= 3) << std::hex << v;
      }
      EXPECT_EQ(r->hasExpansion != 0, r->expansion.count > 0) << std::hex << v;
      EXPECT_EQ(r->hasNext != 0, r->nextChars.count > 0) << std::hex << v;
      EXPECT_EQ(r->nextChars.count, r->nextRecords.count) << std::hex << v;
      EXPECT_EQ(r->languages.count, r->variants.count) << std::hex << v;
      for (unsigned short o : Items(r->expansion)) EXPECT_NE(0, o) << std::hex << v;
    }
  }
}

TEST(NxinOrders, EightBitTablesMatchTheUnicodeTable) {
  for (unsigned char cs : {1, 2, 3}) {
    for (int b = 0; b < 256; ++b) {
      const NxOrderRecord* r = Record(cs, static_cast<unsigned short>(b));
      const NxOrderRecord* u = Record(253, CodeSet(cs)->ToUnicode(static_cast<unsigned short>(b)));
      ASSERT_NE(nullptr, u) << int(cs) << " " << b;
      EXPECT_EQ(u->order, r->order) << int(cs) << " " << b;
      EXPECT_EQ(u->stateSource, r->stateSource) << int(cs) << " " << b;
      EXPECT_EQ(Items(u->expansion), Items(r->expansion)) << int(cs) << " " << b;
      EXPECT_EQ(u->languages.count, r->languages.count) << int(cs) << " " << b;
    }
    for (int v = 256; v < 512; ++v) EXPECT_EQ(13, Order(cs, static_cast<unsigned short>(v)));
  }
  EXPECT_EQ(nullptr, Record(253, 0x4E00)) << "ideographs are unknown to the tables";
}

// ---------------------------------------------------------------------------
// Order tables: the values that other parts of the system rely on.

TEST(NxinOrders, SymbolNumbersOfTheOrderNames) {
  // Symbol number = order - 80, for the characters that have symbol names.
  const struct {
    unsigned char byte;  // in cp1252
    unsigned short symbol;
  } kSymbols[] = {
      {'_', 32},   {0xAF, 34}, {0xAD, 35},  {'-', 36},  {',', 37},   {';', 38},   {':', 39},
      {'!', 40},   {0xA1, 41}, {'?', 42},   {'/', 44},  {'.', 46},   {0xB7, 49},  {0xB8, 50},
      {'\'', 52},  {'"', 55},  {0xAB, 58},  {0xBB, 59}, {'(', 60},   {')', 62},   {'[', 64},
      {']', 65},   {'{', 66},  {'}', 67},   {0xA7, 68}, {0xB6, 69},  {0xA9, 70},  {0xAE, 71},
      {'@', 73},   {0xA4, 74}, {0xA2, 75},  {'$', 76},  {0xA3, 77},  {0xA5, 78},  {'*', 79},
      {'\\', 80},  {'&', 81},  {'#', 82},   {'%', 83},  {'+', 85},   {0xB1, 87},  {0xB4, 88},
      {'`', 89},   {'^', 91},  {0xA8, 94},  {'~', 96},  {0xF7, 98},  {0xD7, 99},  {'<', 101},
      {'=', 103},  {'>', 105}, {0xAC, 106}, {'|', 107}, {0xA6, 108}, {0xB0, 109}, {0xB5, 110},
      {0xBF, 139},
  };
  for (const auto& s : kSymbols) {
    EXPECT_EQ(80 + s.symbol, Order(1, s.byte)) << "byte " << int(s.byte);
    EXPECT_EQ(80 + s.symbol, Order(253, CodeSet(1)->ToUnicode(s.byte))) << int(s.byte);
  }
  // Other symbols lie outside the named numbers, below the digits; the
  // currency signs stay together.
  for (unsigned short u : {0x20AC, 0x2013, 0x2014, 0x2020, 0x201E, 0x2116, 0x2190, 0x2200}) {
    unsigned short o = Order(253, u);
    EXPECT_TRUE(o >= 80 + 140 && o < 0x3F00) << std::hex << u;
  }
  EXPECT_EQ(Order(253, 0x20AC) + 1, Order(253, 0x20A0)) << "the euro leads the currency signs";
}

TEST(NxinOrders, SpacesAndDigits) {
  for (int b = 0; b < 0x20; ++b) EXPECT_GT(80, Order(1, static_cast<unsigned short>(b))) << b;
  for (unsigned short u : {0x20, 0xA0, 0x2003, 0x3000, 0x200B, 0x301, 0x7F, 0x85}) {
    unsigned short o = Order(253, u);
    EXPECT_TRUE(o > 0 && o < 80 && o != 13) << std::hex << u;
  }
  for (int d = 0; d < 10; ++d) {
    EXPECT_EQ(0x3F00 + 10 * d, Order(1, static_cast<unsigned short>('0' + d)));
    EXPECT_EQ(0x3F01 + 10 * d, Order(253, static_cast<unsigned short>(0xFF10 + d)))
        << "full width digits expand";
  }
  // Superscripts and fractions: the expansion flag, and the fraction spelt out.
  EXPECT_EQ(0x3F15, Order(1, 0xB2));
  const NxOrderRecord* half = Record(1, 0xBD);
  EXPECT_EQ(0x3F0B, half->order);
  EXPECT_EQ((std::vector<unsigned short>{Order(253, 0x2044), 0x3F15}), Items(half->expansion));
}

TEST(NxinOrders, LatinLetterFields) {
  EXPECT_EQ(0x400C, Order(1, 'A'));
  EXPECT_EQ(0x500C, Order(1, 'a'));
  EXPECT_EQ(0x511C, Order(1, 0xE9));  // é
  for (int i = 0; i < 26; ++i) {
    EXPECT_EQ(0x4000 | ((3 + i) << 2), Order(1, static_cast<unsigned short>('A' + i)));
    EXPECT_EQ(0x5000 | ((3 + i) << 2), Order(1, static_cast<unsigned short>('a' + i)));
  }
  // Accent numbers of the order names, and the base letter kept.
  const struct {
    unsigned short unicode;
    char base;
    unsigned short accent;
  } kAccents[] = {{0xE7, 'c', 1},   {0xE1, 'a', 2},   {0xE8, 'e', 3},   {0xF4, 'o', 4},
                  {0xF1, 'n', 5},   {0xFC, 'u', 6},   {0xE5, 'a', 7},   {0xF8, 'o', 8},
                  {0x142, 'l', 8},  {0x111, 'd', 8},  {0xD0, 'D', 8},   {0x10D, 'c', 9},
                  {0x101, 'a', 10}, {0x103, 'a', 11}, {0x17C, 'z', 12}, {0x105, 'a', 13},
                  {0x151, 'o', 14}, {0x159, 'r', 9},  {0x219, 's', 18}, {0x1EB9, 'e', 15}};
  for (const auto& a : kAccents) {
    unsigned short o = Order(253, a.unicode);
    EXPECT_EQ(Order(1, static_cast<unsigned char>(a.base)) | (a.accent << 7), o)
        << std::hex << a.unicode;
  }
  // French accents order: e é è ê ë.
  EXPECT_LT(Accent(Order(1, 0xE9)), Accent(Order(1, 0xE8)));
  EXPECT_LT(Accent(Order(1, 0xE8)), Accent(Order(1, 0xEA)));
  EXPECT_LT(Accent(Order(1, 0xEA)), Accent(Order(1, 0xEB)));
  // Vietnamese: the letter-forming mark in the order, the tone as an
  // expansion of a combining mark, so that ấ differs from â but sorts with it.
  const NxOrderRecord* r = Record(253, 0x1EA5);  // ấ
  EXPECT_EQ(Order(253, 0xE2), r->order);
  EXPECT_EQ(std::vector<unsigned short>{Order(253, 0x301)}, Items(r->expansion));
  r = Record(253, 0x1EDD);  // ờ: o with horn, then the grave
  EXPECT_EQ(Order(253, 0x1A1), r->order);
}

TEST(NxinOrders, Expansions) {
  const struct {
    unsigned short unicode;
    const char* letters;
  } kExpansions[] = {{0xDF, "ss"},    {0x1E9E, "SS"}, {0xC6, "AE"},   {0xE6, "ae"},
                     {0x152, "OE"},   {0x153, "oe"},  {0xFB01, "fi"}, {0xFB02, "fl"},
                     {0xFB03, "ffi"}, {0x133, "ij"},  {0x1C6, "dz"}};
  for (const auto& x : kExpansions) {
    const NxOrderRecord* r = Record(253, x.unicode);
    ASSERT_NE(nullptr, r);
    EXPECT_EQ(1, r->hasExpansion) << std::hex << x.unicode;
    std::vector<unsigned short> all{r->order};
    for (unsigned short o : Items(r->expansion)) all.push_back(o);
    ASSERT_EQ(std::string(x.letters).size(), all.size()) << std::hex << x.unicode;
    for (size_t i = 0; i < all.size(); ++i) {
      // Same letter and case as the plain letters; the ligature differs only
      // in the accent field.
      unsigned short plain = Order(1, static_cast<unsigned char>(x.letters[i]));
      EXPECT_EQ(plain & 0x707F, all[i] & 0x707F) << std::hex << x.unicode << " " << i;
    }
    EXPECT_NE(Order(1, static_cast<unsigned char>(x.letters[0])), r->order);
  }
}

TEST(NxinOrders, GreekAndCyrillicLetters) {
  // Greek alphabet order in state 2, final sigma as a lower-case variant.
  const unsigned short greek[] = {0x3B1, 0x3B2, 0x3B3, 0x3B4, 0x3B5, 0x3B6, 0x3B7, 0x3B8,
                                  0x3B9, 0x3BA, 0x3BB, 0x3BC, 0x3BD, 0x3BE, 0x3BF, 0x3C0,
                                  0x3C1, 0x3C3, 0x3C4, 0x3C5, 0x3C6, 0x3C7, 0x3C8, 0x3C9};
  for (size_t i = 0; i < sizeof(greek) / sizeof(greek[0]); ++i) {
    const NxOrderRecord* r = Record(253, greek[i]);
    EXPECT_EQ(NxSTATE_GREEK, *r->stateSource);
    EXPECT_EQ(1, Case(r->order));
    EXPECT_EQ(0, Case(Order(253, static_cast<unsigned short>(greek[i] - 0x20))));
    if (i > 0) {
      EXPECT_LT(Letter(Order(253, greek[i - 1])), Letter(r->order)) << i;
    }
  }
  EXPECT_EQ(Letter(Order(253, 0x3C3)), Letter(Order(253, 0x3C2)));
  EXPECT_EQ(2, Case(Order(253, 0x3C2)));
  EXPECT_EQ(2, Accent(Order(253, 0x3AC))) << "tonos as acute";
  EXPECT_EQ(6, Accent(Order(253, 0x3CA))) << "dialytika as diaeresis";
  // ΐ: the diaeresis in the order, the tonos as an expansion, so it differs from ϊ.
  EXPECT_EQ(Order(253, 0x3CA), Order(253, 0x390));
  EXPECT_EQ(std::vector<unsigned short>{Order(253, 0x301)}, Items(Record(253, 0x390)->expansion));

  // Russian alphabet: letter and extension together grow along it; ё sorts
  // with е and differs in the accent; й is a letter of its own.
  const char* russian = "абвгдежзийклмнопрстуфхцчшщъыьэюя";
  std::vector<unsigned short> letters;
  for (const char* p = russian; *p != 0; p += 2) {
    unsigned short u = static_cast<unsigned short>(((p[0] & 0x1F) << 6) | (p[1] & 0x3F));
    const NxOrderRecord* r = Record(253, u);
    ASSERT_NE(nullptr, r);
    EXPECT_EQ(NxSTATE_CYRILLIC, *r->stateSource);
    EXPECT_EQ(r->order & 0x407F, Order(253, static_cast<unsigned short>(u - 0x20)) & 0x407F);
    if (!letters.empty()) {
      EXPECT_LT(letters.back(), Letter(r->order)) << std::hex << u;
    }
    letters.push_back(Letter(r->order));
  }
  EXPECT_EQ(32u, letters.size());
  EXPECT_EQ(Letter(Order(253, 0x435)), Letter(Order(253, 0x451)));
  EXPECT_EQ(6, Accent(Order(253, 0x451)));
  // Code sets without their own table reach these through Unicode.
  EXPECT_EQ(0x451, CodeSet(4)->ToUnicode(0xF1));
  EXPECT_EQ(0x3C2, CodeSet(5)->ToUnicode(0xF2));
}

// ---------------------------------------------------------------------------
// Language variants and contractions, in the Unicode table and in the 8-bit
// tables (where continuations are bytes of the code set).

TEST(NxinOrders, LanguageVariants) {
  for (unsigned char cs : {1, 3, 253}) {
    SCOPED_TRACE(int(cs));
    auto rec = [cs](unsigned short unicode) {
      return Record(cs, CodeSet(cs)->FromUnicode(unicode, 0));
    };
    // Neutral has no variants; Greek and Russian none of their own.
    EXPECT_EQ(nullptr, Variant(rec('a'), 1));
    EXPECT_EQ(nullptr, Variant(rec('c'), 7));
    EXPECT_EQ(nullptr, Variant(rec('c'), 8));

    // Czech: č after c, ch after h, with the case of the c.
    if (cs != 1) {
      const NxOrderRecord* v = Variant(rec(0x10D), NxLANG_CZECH);
      ASSERT_NE(nullptr, v);
      EXPECT_EQ(Letter(Order(1, 'c')) + 1, Letter(v->order));
      EXPECT_EQ(1, Case(v->order));
    }
    for (unsigned short c : {'c', 'C'}) {
      const NxOrderRecord* v = Variant(rec(c), NxLANG_CZECH);
      ASSERT_NE(nullptr, v);
      EXPECT_EQ(Order(cs, CodeSet(cs)->FromUnicode(c, 0)), v->order);
      for (unsigned short h : {'h', 'H'}) {
        const NxOrderRecord* ch = Next(v, CodeSet(cs)->FromUnicode(h, 0));
        ASSERT_NE(nullptr, ch) << c << h;
        EXPECT_EQ(Letter(Order(1, 'h')) + 1, Letter(ch->order));
        EXPECT_EQ(c == 'c' ? 1 : 0, Case(ch->order));
      }
      EXPECT_EQ(nullptr, Next(v, 'x'));
    }

    // Spanish: ch, ll, ñ.
    const NxOrderRecord* ll = Next(Variant(rec('L'), NxLANG_SPANISH_TRADITIONAL), 'l');
    ASSERT_NE(nullptr, ll);
    EXPECT_EQ(Letter(Order(1, 'l')) + 1, Letter(ll->order));
    EXPECT_EQ(0, Case(ll->order));
    const NxOrderRecord* ch = Next(Variant(rec('c'), NxLANG_SPANISH_TRADITIONAL), 'h');
    ASSERT_NE(nullptr, ch);
    EXPECT_EQ(Letter(Order(1, 'c')) + 1, Letter(ch->order));
    if (cs != 3) {
      const NxOrderRecord* n = Variant(rec(0xD1), NxLANG_SPANISH_TRADITIONAL);
      ASSERT_NE(nullptr, n);
      EXPECT_EQ(Letter(Order(1, 'n')) + 1, Letter(n->order));
    }

    // Danish: aa as å, æ ø å after z; Swedish: å ä ö after z.
    const NxOrderRecord* aa = Next(Variant(rec('A'), NxLANG_DANISH), 'a');
    ASSERT_NE(nullptr, aa);
    EXPECT_EQ(31 << 2, Letter(aa->order));
    EXPECT_EQ(0, Case(aa->order));
    if (cs != 3) {
      const unsigned short da[] = {0xE6, 0xF8, 0xE5}, sv[] = {0xE5, 0xE4, 0xF6};
      for (int i = 0; i < 3; ++i) {
        EXPECT_EQ((29 + i) << 2, Letter(Variant(rec(da[i]), NxLANG_DANISH)->order));
        EXPECT_EQ((29 + i) << 2, Letter(Variant(rec(sv[i]), NxLANG_SWEDISH)->order));
        EXPECT_EQ((29 + i) << 2, Letter(Variant(rec(sv[i] - 0x20), NxLANG_SWEDISH)->order));
      }
      EXPECT_EQ(Letter(aa->order), Letter(Variant(rec(0xC5), NxLANG_DANISH)->order));
      EXPECT_EQ(0, Variant(rec(0xE6), NxLANG_DANISH)->hasExpansion) << "æ is a letter in Danish";
    }

    // German phone book: ä as a e, keeping the diaeresis on the a.
    const NxOrderRecord* ae = Variant(rec(0xE4), NxLANG_GERMAN_PHONEBOOK);
    ASSERT_NE(nullptr, ae);
    EXPECT_EQ(Order(1, 0xE4), ae->order);
    EXPECT_EQ(std::vector<unsigned short>{Order(1, 'e')}, Items(ae->expansion));
    EXPECT_EQ(nullptr, Variant(rec(0xE4), NxLANG_SPANISH_TRADITIONAL));
  }
}

}  // namespace
