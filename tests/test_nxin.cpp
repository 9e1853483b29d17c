// Tests of the internationalisation library's data: registry, code set maps and case properties
// (against ICU as an independent reference), and the collation records.
#include <nxin/nxin.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#ifdef NXTM_TEST_HAVE_ICU
#include <unicode/ucnv.h>
#include <unicode/uchar.h>
#include <unicode/ustring.h>
#endif

namespace {

using Ctx = NxLanguageContext;
const unsigned char kAllCodeSets[] = {1, 2, 3, 4, 5, 6, 225, 253, 254};

const NxCodeSet* CodeSet(int n) {
  return Ctx::QueryCodeSet(static_cast<unsigned char>(n));
}
const NxOrderRecord* Record(int cs, unsigned short v) {
  return CodeSet(cs)->orderTable->Record(v);
}
unsigned short Order(int cs, unsigned short v) {
  return Record(cs, v) != nullptr ? Record(cs, v)->order : 0;
}
const auto Letter = [](unsigned short o) { return o & 0x7F; };
const auto Accent = [](unsigned short o) { return (o >> 7) & 0x1F; };
const auto Case = [](unsigned short o) { return (o >> 12) & 3; };

std::vector<unsigned short> Items(const NxWCharList& list) {
  std::vector<unsigned short> v(static_cast<size_t>(list.count));
  for (int32_t i = 0; i < list.count; ++i) EXPECT_EQ(0, list.Get(i, v[i]));
  return v;
}

// The variant of `r` for `language`, or null.
const NxOrderRecord* Variant(const NxOrderRecord* r, int language) {
  for (int32_t i = 0; r != nullptr && r->hasVariants != 0 && i < r->languages.count; ++i)
    if (r->languages.items[i]->number == language) return r->variants.items[i];
  return nullptr;
}

// The record that `next` continues `r` to, or null.
const NxOrderRecord* Next(const NxOrderRecord* r, unsigned short next) {
  for (int32_t i = 0; r != nullptr && r->hasNext != 0 && i < r->nextChars.count; ++i)
    if (r->nextChars.items[i] == next) return r->nextRecords.items[i];
  return nullptr;
}

TEST(NxinContext, DefaultsRegistryAndLanguages) {
  // The default language is the one that 255 stands for; ResetDefaults undoes every setter.
  Ctx::SetDefaultLanguage(8);
  EXPECT_EQ(NxSTATE_CYRILLIC, CodeSet(1)->InitialState(255));
  Ctx::SetDefaultCodeSet(253);
  Ctx::SetDefault8CodeSet(3);
  Ctx::SetDefault16CodeSet(225);
  Ctx::SetDefaultCmpOp(0x0060);
  Ctx::ResetDefaults();
  EXPECT_EQ((std::vector<int>{1, 1, 253, 1, 1, 0x10}),
            (std::vector<int>{Ctx::GetDefaultCodeSet(), Ctx::GetDefault8CodeSet(),
                              Ctx::GetDefault16CodeSet(), Ctx::GetNativeCodeSet(),
                              Ctx::GetDefaultLanguage(), Ctx::GetDefaultCmpOp()}));

  EXPECT_EQ(CodeSet(1), CodeSet(0)) << "code set 0 stands for the native code set";
  EXPECT_EQ(nullptr, Ctx::QueryLanguage(0));
  for (int n = 1; n < 256; ++n) {
    const NxCodeSet* cs = CodeSet(n);
    ASSERT_EQ(std::count(kAllCodeSets, std::end(kAllCodeSets), n) == 1, cs != nullptr) << n;
    EXPECT_TRUE(cs == nullptr || (cs->number == n && cs->width == (n > 224 ? 2 : 1) &&
                                  (cs->orderTable != nullptr) == (n <= 3 || n == 253)))
        << n;
    const NxLanguage* l = Ctx::QueryLanguage(static_cast<unsigned char>(n));
    ASSERT_EQ(n <= 8, l != nullptr) << n;
    EXPECT_TRUE(l == nullptr || (n >= 2 && n <= 6) == (l->specificCollation != 0)) << n;
  }
  // The enumerations list exactly what the lookups find.
  int sets = 0, languages = 0;
  for (const NxCodeSet* cs; (cs = Ctx::CodeSetAt(sets)) != nullptr; ++sets)
    EXPECT_EQ(cs, CodeSet(cs->number));
  for (const NxLanguage* l; (l = Ctx::LanguageAt(languages)) != nullptr; ++languages)
    EXPECT_EQ(l, Ctx::QueryLanguage(l->number));
  EXPECT_EQ(std::make_pair(9, 8), std::make_pair(sets, languages));
  EXPECT_EQ(nullptr, Ctx::CodeSetAt(-1));
  for (unsigned char cs : kAllCodeSets) {
    if (cs == NxCS_ORDERS) continue;
    for (unsigned char lang : {0, 1, 2, 3, 4, 5, 6, 9, 100, 254})
      EXPECT_EQ(NxSTATE_LATIN, CodeSet(cs)->InitialState(lang));
    EXPECT_EQ(NxSTATE_GREEK, CodeSet(cs)->InitialState(NxLANG_GREEK));
    EXPECT_EQ(NxSTATE_CYRILLIC, CodeSet(cs)->InitialState(NxLANG_RUSSIAN));
  }
  // Order text holds its collation state where text holds its language; bit
  // 7 (a key that ended at a change of state) is not part of it.
  for (unsigned char state : {NxSTATE_LATIN, NxSTATE_GREEK, NxSTATE_CYRILLIC, NxSTATE_UNKNOWN})
    EXPECT_EQ(state, CodeSet(NxCS_ORDERS)->InitialState(static_cast<unsigned char>(state | 0x80)));

  // The context counter goes up and down; list reads out of range fail, leaving the value alone.
  int base = ___NxI18NContext(1);
  EXPECT_EQ((std::vector<int>{base + 1, base, base - 1}),
            (std::vector<int>{___NxI18NContext(1), ___NxI18NContext(0), ___NxI18NContext(0)}));
  const unsigned short values[] = {7, 8, 9};
  unsigned short v = 0;
  const NxWCharList list(3, values);
  EXPECT_EQ((std::vector<int>{0, -1, -1, 9}),
            (std::vector<int>{list.Get(2, v), list.Get(3, v), list.Get(-1, v), v}));
}

TEST(NxinCodeSets, MappingBetweenCodeSets) {
  // {to, value, from, expected}: 16-bit sets hold the whole BMP; source 0 is native; '?' (0x3F,
  // EBCDIC 0x6F) stands in.
  // clang-format off
  const unsigned short kMaps[][4] = {
      {253, 0x4E00, 225, 0x4E00}, {225, 0xFFFD, 253, 0xFFFD}, {254, 0x3A3, 253, 0x3A3},
      {253, 0x80, 1, 0x20AC}, {253, 0x80, 0, 0x20AC}, {5, 0x80, 1, 0xA4}, {3, 0x10D, 253, 0xE8},
      {1, 0x10D, 253, 0x3F}, {6, 0x3A3, 253, 0x6F}, {6, 'A', 1, 0xC1}, {1, 0xC1, 6, 'A'}, {6, 0, 1, 0}};
  // clang-format on
  for (const auto& m : kMaps)
    EXPECT_EQ(m[3], CodeSet(m[0])->MapFrom(m[1], static_cast<unsigned char>(m[2]))) << m[1];
  EXPECT_EQ(0, CodeSet(253)->ToUnicode(0) + CodeSet(254)->ToUnicode(0x4000));

  // Every character survives a trip through every code set that holds it.
  for (unsigned char from : {1, 2, 3, 4, 5, 6}) {
    for (unsigned char to : kAllCodeSets) {
      for (unsigned short b = 0; to != 254 && b < 256; ++b) {
        unsigned short u = CodeSet(from)->ToUnicode(b);
        if (u == 0xFFFD || CodeSet(to)->FromUnicode(u, 0xFFFF) == 0xFFFF) continue;
        EXPECT_EQ(b, CodeSet(from)->MapFrom(CodeSet(to)->MapFrom(b, from), to))
            << int(from) << "->" << int(to) << " " << b;
      }
    }
  }
}

TEST(NxinCodeSets, EightBitMapsAgreeWithIcu) {
#ifndef NXTM_TEST_HAVE_ICU
  GTEST_SKIP() << "ICU is not available: the code set maps are not checked against it";
#else
  const std::pair<int, const char*> kSets[] = {{1, "windows-1252"}, {2, "ISO-8859-1"},
                                               {3, "ISO-8859-2"},   {4, "ISO-8859-5"},
                                               {5, "ISO-8859-7"},   {6, "ibm-37"}};
  for (const auto& set : kSets) {
    SCOPED_TRACE(set.second);
    UErrorCode e = U_ZERO_ERROR;
    UConverter* cnv = ucnv_open(set.second, &e);
    ucnv_setToUCallBack(cnv, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &e);
    ucnv_setFromUCallBack(cnv, UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &e);
    ASSERT_TRUE(U_SUCCESS(e));
    ucnv_setFallback(cnv, false);
    const NxCodeSet* cs = CodeSet(set.first);
    for (int b = 0; b < 256; ++b) {
      char in = static_cast<char>(b);
      UChar out[4];
      int32_t n = ucnv_toUChars(cnv, out, 4, &in, 1, &(e = U_ZERO_ERROR));  // resets cnv
      unsigned short ours = cs->ToUnicode(static_cast<unsigned short>(b));
      // Bytes ICU leaves undefined (0xAE, 0xD2, 0xFF of iso8859-7) become U+FFFD, one way only.
      EXPECT_EQ(U_SUCCESS(e) && n == 1 ? out[0] : 0xFFFD, ours) << "byte " << b;
      // Only the low byte counts: a sign-extended byte reads the same.
      EXPECT_EQ(ours, cs->ToUnicode(static_cast<unsigned short>(static_cast<signed char>(b))));
    }
    for (int u = 0; u < 0x10000; ++u) {
      UChar in = static_cast<UChar>(u);
      char out[8];
      int32_t n = ucnv_fromUChars(cnv, out, 8, &in, 1, &(e = U_ZERO_ERROR));
      if (u < 0xD800 || u > 0xDFFF) {  // not surrogates
        EXPECT_EQ(U_SUCCESS(e) && n == 1 ? out[0] & 0xFF : 0xFFFF, cs->FromUnicode(in, 0xFFFF))
            << "U+" << std::hex << u;
      }
    }
    ucnv_close(cnv);
  }
#endif
}

TEST(NxinUnicodeProps, EightBitValuesAndMissingProperties) {
  // {code set, value, upper, lower, upper overflow}: é given sign-extended; д in iso8859-5;
  // EBCDIC A; ß upper-cases to SS.
  const unsigned short kProps[][5] = {{1, static_cast<unsigned short>(-0x17), 0xC9, 0, 0},
                                      {4, 0xD0, 0x410, 0, 0},
                                      {6, 0xC1, 0, 0x61, 0},
                                      {1, 0xDF, 'S', 0, 'S'}};
  for (const auto& k : kProps) {
    const NxUnicodeProps* p = CodeSet(k[0])->GetUnicodeProps(k[1], 1);
    ASSERT_NE(nullptr, p) << k[1];
    EXPECT_EQ(k[2], p->upper);
    EXPECT_EQ(k[3], p->lower);
    EXPECT_EQ(k[4] != 0 ? std::vector<unsigned short>{k[4]} : std::vector<unsigned short>{},
              Items(p->upperOverflow));
  }
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
    // The tables come from Unicode 14: skip surrogates and characters ICU knows from later.
    UVersionInfo age;
    u_charAge(u, age);
    if ((u >= 0xD800 && u <= 0xDFFF) || age[0] > 14 || (age[0] == 0 && age[1] == 0)) continue;
    UChar in = static_cast<UChar>(u), full[8];
    UErrorCode e = U_ZERO_ERROR;
    int32_t n = u_strToUpper(full, 8, &in, 1, "", &e);
    ASSERT_TRUE(U_SUCCESS(e));
    const NxUnicodeProps* p = CodeSet(253)->GetUnicodeProps(in, 1);
    EXPECT_TRUE(p == nullptr || p->upper != 0 || p->lower != 0) << "empty U+" << std::hex << u;
    // The full upper case is the first character followed by the overflow.
    std::vector<unsigned short> ours;
    if (p != nullptr) ours = Items(p->upperOverflow);
    ours.insert(ours.begin(), p != nullptr && p->upper != 0 ? p->upper : in);
    std::vector<unsigned short> ref(full, full + n);
    if (n == 1) ref[0] = static_cast<unsigned short>(u_toupper(u));
    EXPECT_EQ(ref, ours) << "U+" << std::hex << u;
    EXPECT_EQ(u_tolower(u), p != nullptr && p->lower != 0 ? p->lower : u) << "U+" << std::hex << u;
    ++checked;
  }
  EXPECT_GT(checked, 50000);
#endif
}

TEST(NxinOrders, TablesAreCompleteAndConsistent) {
  for (unsigned char cs : {1, 2, 3, 253}) {
    SCOPED_TRACE(int(cs));
    const NxOrderTable* table = CodeSet(cs)->orderTable;
    // Values 0..511 all have records; in 8-bit tables 256..511 are unknown (13).
    for (unsigned short v = 0; v < 512; ++v) {
      ASSERT_TRUE(table->Record(v) != nullptr && table->Record(v)->order != 0) << v;
      EXPECT_EQ(table->Record(v), table->Find(v));
      EXPECT_TRUE(cs == 253 || v < 256 || Order(cs, v) == 13) << v;
    }
    EXPECT_GT(80, Order(cs, 0)) << "character 0 is ignorable";
    for (int v = 0; v < 0x10000; ++v) {
      const NxOrderRecord* r = table->Record(static_cast<unsigned short>(v));
      if (r == nullptr) continue;
      // Letters (and expansions holding one) set their script's state; the rest don't.
      bool letter = (r->order & 0xC000) == 0x4000;
      for (unsigned short o : Items(r->expansion)) {
        letter = letter || (o & 0xC000) == 0x4000;
        EXPECT_NE(0, o) << std::hex << v;
      }
      EXPECT_EQ(letter, r->stateSource != nullptr) << std::hex << v;
      EXPECT_TRUE(r->stateSource == nullptr || (*r->stateSource >= 1 && *r->stateSource <= 3));
      EXPECT_EQ(r->hasExpansion != 0, r->expansion.count > 0) << std::hex << v;
      EXPECT_EQ(r->hasNext != 0, r->nextChars.count > 0) << std::hex << v;
      EXPECT_EQ(r->nextChars.count, r->nextRecords.count) << std::hex << v;
      EXPECT_EQ(r->languages.count, r->variants.count) << std::hex << v;
    }
    if (cs == 253) continue;
    // The 8-bit tables agree with the Unicode table.
    for (unsigned short b = 0; b < 256; ++b) {
      const NxOrderRecord *r = Record(cs, b), *u = Record(253, CodeSet(cs)->ToUnicode(b));
      ASSERT_NE(nullptr, u) << b;
      EXPECT_TRUE(u->order == r->order && u->stateSource == r->stateSource &&
                  u->languages.count == r->languages.count)
          << b;
      EXPECT_EQ(Items(u->expansion), Items(r->expansion)) << b;
    }
  }
  EXPECT_EQ(nullptr, Record(253, 0x4E00)) << "ideographs are unknown to the tables";
}

TEST(NxinOrders, SymbolsSpacesAndDigits) {
  // {cp1252 byte, symbol number}: the order is 80 + the symbol number.
  // clang-format off
  const unsigned char kSymbols[][2] = {
      {'_', 32}, {0xAF, 34}, {0xAD, 35}, {'-', 36}, {',', 37}, {';', 38}, {':', 39}, {'!', 40},
      {0xA1, 41}, {'?', 42}, {'/', 44}, {'.', 46}, {0xB7, 49}, {0xB8, 50}, {'\'', 52}, {'"', 55},
      {0xAB, 58}, {0xBB, 59}, {'(', 60}, {')', 62}, {'[', 64}, {']', 65}, {'{', 66}, {'}', 67},
      {0xA7, 68}, {0xB6, 69}, {0xA9, 70}, {0xAE, 71}, {'@', 73}, {0xA4, 74}, {0xA2, 75}, {'$', 76},
      {0xA3, 77}, {0xA5, 78}, {'*', 79}, {'\\', 80}, {'&', 81}, {'#', 82}, {'%', 83}, {'+', 85},
      {0xB1, 87}, {0xB4, 88}, {'`', 89}, {'^', 91}, {0xA8, 94}, {'~', 96}, {0xF7, 98}, {0xD7, 99},
      {'<', 101}, {'=', 103}, {'>', 105}, {0xAC, 106}, {'|', 107}, {0xA6, 108}, {0xB0, 109},
      {0xB5, 110}, {0xBF, 139}};
  // clang-format on
  for (const auto& s : kSymbols) {
    EXPECT_EQ(80 + s[1], Order(1, s[0])) << "byte " << int(s[0]);
    EXPECT_EQ(80 + s[1], Order(253, CodeSet(1)->ToUnicode(s[0]))) << int(s[0]);
  }
  // Other symbols lie above the named numbers, below the digits.
  for (unsigned short u : {0x20AC, 0x2013, 0x2014, 0x2020, 0x201E, 0x2116, 0x2190, 0x2200})
    EXPECT_TRUE(Order(253, u) >= 220 && Order(253, u) < 0x3F00) << std::hex << u;
  EXPECT_EQ(Order(253, 0x20AC) + 1, Order(253, 0x20A0)) << "the euro leads the currency signs";

  for (unsigned short b = 0; b < 0x20; ++b) EXPECT_GT(80, Order(1, b)) << b;
  for (unsigned short u : {0x20, 0xA0, 0x2003, 0x3000, 0x200B, 0x301, 0x7F, 0x85})
    EXPECT_TRUE(Order(253, u) > 0 && Order(253, u) < 80 && Order(253, u) != 13) << std::hex << u;
  for (unsigned short d = 0; d < 10; ++d) {
    EXPECT_EQ(0x3F00 + 10 * d, Order(1, '0' + d));
    EXPECT_EQ(0x3F01 + 10 * d, Order(253, 0xFF10 + d)) << "full width digits expand";
  }
  // Superscripts and fractions: the expansion flag, and the fraction spelt out.
  EXPECT_EQ(0x3F15, Order(1, 0xB2));
  EXPECT_EQ(0x3F0B, Order(1, 0xBD));
  EXPECT_EQ((std::vector<unsigned short>{Order(253, 0x2044), 0x3F15}),
            Items(Record(1, 0xBD)->expansion));
}

TEST(NxinOrders, FormatCharactersHaveOrderTwoEverywhere) {
  // The soft hyphen is a named symbol; every other format character of the
  // BMP is ignorable with order 2, also outside the blocks that the table
  // otherwise covers.
  for (unsigned short u : {0x061C, 0x0600, 0x06DD, 0x070F, 0x08E2, 0x180E, 0x200B, 0x202E, 0x2060,
                           0xFEFF, 0xFFF9, 0xFFFB})
    EXPECT_EQ(2, Order(253, u)) << std::hex << u;
  EXPECT_EQ(80 + 35, Order(253, 0xAD));
#ifdef NXTM_TEST_HAVE_ICU
  int formats = 0;
  for (int u = 0; u < 0x10000; ++u) {
    UVersionInfo age;
    u_charAge(u, age);
    if (u == 0xAD || age[0] > 14 || u_charType(u) != U_FORMAT_CHAR) continue;
    EXPECT_EQ(2, Order(253, static_cast<unsigned short>(u))) << std::hex << u;
    ++formats;
  }
  EXPECT_GT(formats, 40);
#endif
}

TEST(NxinOrders, LatinLettersAccentsAndExpansions) {
  for (unsigned short i = 0; i < 26; ++i) {
    EXPECT_EQ(0x4000 | ((3 + i) << 2), Order(1, 'A' + i));
    EXPECT_EQ(0x5000 | ((3 + i) << 2), Order(1, 'a' + i));
  }
  // {character, base letter, accent number}
  const unsigned short kAccents[][3] = {
      {0xE7, 'c', 1},   {0xE1, 'a', 2},   {0xE8, 'e', 3},   {0xF4, 'o', 4},   {0xF1, 'n', 5},
      {0xFC, 'u', 6},   {0xE5, 'a', 7},   {0xF8, 'o', 8},   {0x142, 'l', 8},  {0x111, 'd', 8},
      {0xD0, 'D', 8},   {0x10D, 'c', 9},  {0x101, 'a', 10}, {0x103, 'a', 11}, {0x17C, 'z', 12},
      {0x105, 'a', 13}, {0x151, 'o', 14}, {0x159, 'r', 9},  {0x219, 's', 18}, {0x1EB9, 'e', 15}};
  for (const auto& a : kAccents)
    EXPECT_EQ(Order(1, a[1]) | (a[2] << 7), Order(253, a[0])) << std::hex << a[0];
  EXPECT_EQ(0x511C, Order(1, 0xE9));  // é
  // French accents order: e é è ê ë.
  const unsigned short kFrench[] = {'e', 0xE9, 0xE8, 0xEA, 0xEB};
  for (int i = 0; i < 4; ++i)
    EXPECT_LT(Accent(Order(1, kFrench[i])), Accent(Order(1, kFrench[i + 1])));
  // Vietnamese ấ: the letter-forming mark in the order, the tone as an expansion.
  EXPECT_EQ(Order(253, 0xE2), Order(253, 0x1EA5));
  EXPECT_EQ(std::vector<unsigned short>{Order(253, 0x301)}, Items(Record(253, 0x1EA5)->expansion));
  EXPECT_EQ(Order(253, 0x1A1), Order(253, 0x1EDD));  // ờ: o with horn, then the grave

  // Ligatures: same letters and case as the plain letters, differing only in the accent.
  const std::pair<unsigned short, std::string> kExpansions[] = {
      {0xDF, "ss"},   {0x1E9E, "SS"}, {0xC6, "AE"},    {0xE6, "ae"},  {0x152, "OE"}, {0x153, "oe"},
      {0xFB01, "fi"}, {0xFB02, "fl"}, {0xFB03, "ffi"}, {0x133, "ij"}, {0x1C6, "dz"}};
  for (const auto& x : kExpansions) {
    const NxOrderRecord* r = Record(253, x.first);
    ASSERT_TRUE(r != nullptr && r->hasExpansion == 1) << std::hex << x.first;
    std::vector<unsigned short> all = Items(r->expansion);
    all.insert(all.begin(), r->order);
    ASSERT_EQ(x.second.size(), all.size()) << std::hex << x.first;
    for (size_t i = 0; i < all.size(); ++i)
      EXPECT_EQ(Order(1, x.second[i]) & 0x707F, all[i] & 0x707F) << std::hex << x.first;
    EXPECT_NE(Order(1, x.second[0]), r->order);
  }
}

TEST(NxinOrders, GreekAndCyrillicLetters) {
  // Letters grow along each alphabet (й its own letter), lower case after upper.
  const std::pair<const char16_t*, int> kAlphabets[] = {
      {u"αβγδεζηθικλμνξοπρστυφχψω", NxSTATE_GREEK},
      {u"абвгдежзийклмнопрстуфхцчшщъыьэюя", NxSTATE_CYRILLIC}};
  for (const auto& a : kAlphabets) {
    unsigned short previous = 0;
    for (const char16_t* p = a.first; *p != 0; ++p) {
      const NxOrderRecord* r = Record(253, *p);
      ASSERT_NE(nullptr, r);
      EXPECT_EQ(a.second, *r->stateSource);
      EXPECT_EQ(1, Case(r->order));
      EXPECT_EQ(r->order, Order(253, *p - 0x20) + 0x1000) << std::hex << *p;
      EXPECT_LT(previous, Letter(r->order)) << std::hex << *p;
      previous = static_cast<unsigned short>(Letter(r->order));
    }
  }
  // {expected, actual}: final sigma is a lower-case variant of sigma; ё is е with an accent; tonos
  // as acute, dialytika as diaeresis; ΐ has the diaeresis in the order (the tonos expands); code
  // sets without their own table reach these letters through Unicode.
  // clang-format off
  const int kFacts[][2] = {
      {Letter(Order(253, 0x3C3)), Letter(Order(253, 0x3C2))}, {2, Case(Order(253, 0x3C2))},
      {Letter(Order(253, 0x435)), Letter(Order(253, 0x451))}, {6, Accent(Order(253, 0x451))},
      {2, Accent(Order(253, 0x3AC))}, {6, Accent(Order(253, 0x3CA))},
      {Order(253, 0x3CA), Order(253, 0x390)}, {1, Record(253, 0x390)->expansion.count},
      {Order(253, 0x301), Record(253, 0x390)->expansion.items[0]},
      {0x451, CodeSet(4)->ToUnicode(0xF1)}, {0x3C2, CodeSet(5)->ToUnicode(0xF2)}};
  // clang-format on
  for (const auto& f : kFacts) EXPECT_EQ(f[0], f[1]) << "row " << &f - kFacts;
}

// Variants and contractions, in the Unicode table and in the 8-bit tables (where continuations
// are bytes of the code set).
TEST(NxinOrders, LanguageVariants) {
  const auto L = [](char c) { return Letter(Order(1, static_cast<unsigned char>(c))); };
  // {language, character, continuation or 0, letter field, case}: č after c and ch after h with
  // the case of the c (Czech); ll, ch, ñ (Spanish); aa as å, then æ ø å after z (Danish); å ä ö
  // after z (Swedish).
  const int CZ = NxLANG_CZECH, ES = NxLANG_SPANISH_TRADITIONAL, DA = NxLANG_DANISH,
            SV = NxLANG_SWEDISH;
  const int kCases[][5] = {
      {CZ, 0x10D, 0, L('c') + 1, 1}, {CZ, 'c', 'h', L('h') + 1, 1}, {CZ, 'c', 'H', L('h') + 1, 1},
      {CZ, 'C', 'h', L('h') + 1, 0}, {CZ, 'C', 'H', L('h') + 1, 0}, {ES, 'L', 'l', L('l') + 1, 0},
      {ES, 'c', 'h', L('c') + 1, 1}, {ES, 0xD1, 0, L('n') + 1, 0},  {DA, 'A', 'a', 31 << 2, 0},
      {DA, 0xC5, 0, 31 << 2, 0},     {DA, 0xE6, 0, 29 << 2, 1},     {DA, 0xF8, 0, 30 << 2, 1},
      {DA, 0xE5, 0, 31 << 2, 1},     {SV, 0xE5, 0, 29 << 2, 1},     {SV, 0xE4, 0, 30 << 2, 1},
      {SV, 0xF6, 0, 31 << 2, 1},     {SV, 0xC5, 0, 29 << 2, 0},     {SV, 0xC4, 0, 30 << 2, 0},
      {SV, 0xD6, 0, 31 << 2, 0}};
  for (unsigned char cs : {1, 3, 253}) {
    SCOPED_TRACE(int(cs));
    const auto map = [cs](int u) { return CodeSet(cs)->FromUnicode(u & 0xFFFF, 0); };
    const auto rec = [&](int u) { return Record(cs, map(u)); };
    for (const auto& k : kCases) {
      if (map(k[1]) == 0) continue;  // not in this code set
      SCOPED_TRACE(testing::Message() << k[0] << " " << std::hex << k[1] << k[2]);
      const NxOrderRecord* v = Variant(rec(k[1]), k[0]);
      ASSERT_NE(nullptr, v);
      if (k[2] != 0) {
        EXPECT_EQ(rec(k[1])->order, v->order) << "the first letter alone keeps its order";
        EXPECT_EQ(nullptr, Next(v, map('x')));
        ASSERT_NE(nullptr, v = Next(v, map(k[2])));
      }
      EXPECT_EQ(k[3], Letter(v->order));
      EXPECT_EQ(k[4], Case(v->order));
      EXPECT_EQ(0, v->hasExpansion) << "a letter of its own, not an expansion";
    }
    // Neutral has no variants; Greek and Russian none of their own.
    for (int lang : {1, int(NxLANG_GREEK), int(NxLANG_RUSSIAN)})
      EXPECT_EQ(nullptr, Variant(rec('c'), lang));
    // German phone book: ä as a e, keeping the diaeresis on the a.
    const NxOrderRecord* ae = Variant(rec(0xE4), NxLANG_GERMAN_PHONEBOOK);
    ASSERT_NE(nullptr, ae);
    EXPECT_EQ(Order(1, 0xE4), ae->order);
    EXPECT_EQ(std::vector<unsigned short>{Order(1, 'e')}, Items(ae->expansion));
    EXPECT_EQ(nullptr, Variant(rec(0xE4), NxLANG_SPANISH_TRADITIONAL));
  }
}

}  // namespace
