// Comparison at collation strength, wildcard matching, the wildcard
// settings, the hashes of text and the helpers of the key rows.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

constexpr unsigned short kPlain = NxCMP_NO_WILDCARDS;
constexpr unsigned short kNoCase = NxCMP_IGNORE_CASE;
constexpr unsigned short kNoAccents = NxCMP_IGNORE_ACCENTS;
constexpr unsigned short kNoSpaces = NxCMP_IGNORE_SPACES;
constexpr unsigned short kExact = NxCMP_EXACT;
constexpr unsigned short kNoSymbols = NxCMP_IGNORE_SYMBOLS;

int Sign(int32_t v) {
  return v < 0 ? -1 : v > 0 ? 1 : 0;
}

// Both texts in Windows Latin-1, neutral language.
int32_t Cmp(const char* a, const char* b, unsigned short op, short maxLength = -1,
            unsigned char language = NxLANG_NEUTRAL) {
  return NxStrCmp(NxCS_CP1252, language, a, NxCS_CP1252, language, b, op, maxLength, 1, nullptr);
}

// Both texts without a code set.
int32_t Bytes(const char* a, const char* b, unsigned short op, short maxLength = -1) {
  return NxStrCmp(0, 0, a, 0, 0, b, op, maxLength, 1, nullptr);
}

// A text as 16-bit units with its terminator.
std::vector<unsigned short> Units(const char16_t* text) {
  std::vector<unsigned short> units;
  for (; *text != 0; ++text) units.push_back(static_cast<unsigned short>(*text));
  units.push_back(0);
  return units;
}

const char* Raw(const std::vector<unsigned short>& units) {
  return reinterpret_cast<const char*>(units.data());
}

// The orders of a text, terminated, as the stored key form holds them.
std::vector<unsigned short> OrdersOf(const char* text, unsigned char codeSet,
                                     unsigned char language) {
  std::vector<unsigned short> orders;
  NxStringIterator it(text, codeSet, language, 1);
  for (unsigned short o = it.GetNextOrder(1); o != 0; o = it.GetNextOrder(1)) orders.push_back(o);
  orders.push_back(0);
  return orders;
}

class StrCmpTest : public ::testing::Test {
 protected:
  void SetUp() override { NxLanguageContext::ResetDefaults(); }
  void TearDown() override { NxLanguageContext::ResetDefaults(); }
};

// ---------------------------------------------------------------------------
// Null values and maxLength 0.

TEST_F(StrCmpTest, NullRules) {
  const unsigned char kNullLanguage = NxLANG_NULL;
  // Both null: equal, whichever form of null.
  EXPECT_EQ(NxStrCmp(0, kNullLanguage, "x", NxCS_ORDERS, 0, "y", kPlain, -1, 1, nullptr), 0);
  // A null against text: below with 0x10 or 0x100, above the other way round.
  EXPECT_EQ(NxStrCmp(1, kNullLanguage, "", 1, 1, "abc", kPlain, -1, 1, nullptr), -1);
  EXPECT_EQ(NxStrCmp(1, kNullLanguage, "", 1, 1, "abc", kExact, -1, 1, nullptr), -1);
  EXPECT_EQ(NxStrCmp(1, 1, "abc", NxCS_ORDERS, 0, "", kPlain, -1, 1, nullptr), 1);
  EXPECT_EQ(NxStrCmp(1, 1, "", 1, kNullLanguage, "", 0, -1, 1, nullptr), 1);
  // With wildcards a null first text is an empty text against the pattern,
  // whatever bytes it points to.
  EXPECT_EQ(NxStrCmp(1, kNullLanguage, "abc", 1, 1, "*", 0, -1, 1, nullptr), 0);
  EXPECT_EQ(NxStrCmp(0, kNullLanguage, "abc", 0, 0, "*", 0, -1, 1, nullptr), 0);
  EXPECT_LT(NxStrCmp(1, kNullLanguage, "abc", 1, 1, "a*", 0, -1, 1, nullptr), 0);
  // maxLength 0 answers 0 for any texts, but nulls are decided first.
  EXPECT_EQ(Cmp("abc", "xyz", kPlain, 0), 0);
  EXPECT_EQ(Bytes("abc", "xyz", 0, 0), 0);
  EXPECT_EQ(NxStrCmp(1, 1, "abc", 1, kNullLanguage, "", kPlain, 0, 1, nullptr), 1);
  // A null pointer is an empty text.
  EXPECT_EQ(NxStrCmp(1, 1, nullptr, 1, 1, "", kPlain, -1, 1, nullptr), 0);
  EXPECT_LT(NxStrCmp(1, 1, nullptr, 1, 1, "a", kPlain, -1, 1, nullptr), 0);
}

// ---------------------------------------------------------------------------
// The levels of the strength compare and their tie-breaks.

TEST_F(StrCmpTest, PrimaryLevelDecidesFirst) {
  EXPECT_LT(Cmp("abc", "abd", kPlain), 0);
  EXPECT_GT(Cmp("b", "abc", kPlain), 0);
  EXPECT_LT(Cmp("ab", "abc", kPlain), 0);  // a prefix sorts first
  EXPECT_EQ(Cmp("abc", "abc", kPlain), 0);
  EXPECT_LT(Cmp("", "a", kPlain), 0);
  // A primary difference outweighs an earlier case or accent difference.
  EXPECT_LT(Cmp("Ab", "ac", kPlain), 0);
  EXPECT_LT(Cmp("\xE9"
                "b",
                "ec", kPlain),
            0);
  // Digits sort before letters.
  EXPECT_LT(Cmp("9", "a", kPlain), 0);
}

TEST_F(StrCmpTest, CaseFirstDifferenceDecidesLowerCaseFirst) {
  EXPECT_LT(Cmp("abc", "Abc", kPlain), 0);
  EXPECT_GT(Cmp("ABC", "abc", kPlain), 0);
  // The first of two opposite case differences decides.
  EXPECT_LT(Cmp("aB", "Ab", kPlain), 0);
  EXPECT_GT(Cmp("Ab", "aB", kPlain), 0);
  EXPECT_EQ(Cmp("aB", "Ab", kPlain | kNoCase), 0);
}

TEST_F(StrCmpTest, AccentLastDifferenceDecidesAndOutranksCase) {
  const int plain = Sign(Cmp("e", "\xE9", kPlain));  // e against é
  ASSERT_NE(plain, 0);
  // Two accent differences of opposite sign: the last one decides.
  EXPECT_EQ(Sign(Cmp("\xE9"
                     "e",
                     "e\xE9", kPlain)),
            plain);
  EXPECT_EQ(Sign(Cmp("e\xE9",
                     "\xE9"
                     "e",
                     kPlain)),
            -plain);
  EXPECT_EQ(Cmp("\xE9"
                "e",
                "e\xE9", kPlain | kNoAccents),
            0);
  // An accent difference wins over a case difference wherever they stand.
  EXPECT_EQ(Sign(Cmp("Ae", "a\xE9", kPlain)), plain);
  EXPECT_EQ(Sign(Cmp("Ae", "a\xE9", kPlain | kNoAccents)), 1);  // then case: upper after lower
}

TEST_F(StrCmpTest, SpacesAndSymbolsCountLast) {
  EXPECT_NE(Cmp("a b", "ab", kPlain), 0);
  EXPECT_EQ(Cmp("a b", "ab", kPlain | kNoSpaces), 0);
  EXPECT_EQ(Cmp("a  b ", " ab", kPlain | kNoSpaces), 0);
  EXPECT_NE(Cmp("a-b", "ab", kPlain), 0);
  EXPECT_NE(Cmp("a-b", "ab", kPlain | kNoSpaces), 0);  // a symbol is no space
  EXPECT_EQ(Cmp("a-b", "ab", kPlain | kNoSymbols), 0);
  EXPECT_EQ(Cmp("a-b c", "abc", kPlain | kNoSymbols | kNoSpaces), 0);
  // Ignorable characters don't shift the alignment of the letters: the
  // primary level still decides.
  EXPECT_LT(Cmp("a b", "ac", kPlain), 0);
  EXPECT_GT(Cmp("a-c", "ab", kPlain), 0);
  // Case outranks spaces; with case ignored the space decides.
  EXPECT_LT(Cmp("a b", "Ab", kPlain), 0);
  EXPECT_GT(Cmp("a b", "Ab", kPlain | kNoCase), 0);
  // Of two space differences the last one decides.
  const int space = Sign(Cmp("a c", "a-c", kPlain));
  ASSERT_NE(space, 0);
  EXPECT_EQ(Sign(Cmp("a-b c", "a b-c", kPlain)), space);
  EXPECT_EQ(Sign(Cmp("a b-c", "a-b c", kPlain)), -space);
}

TEST_F(StrCmpTest, MasksOfCaseAndAccents) {
  const char* a = "R\xE9sum\xE9";  // Résumé
  EXPECT_NE(Cmp(a, "resume", kPlain), 0);
  EXPECT_NE(Cmp(a, "resume", kPlain | kNoCase), 0);
  EXPECT_NE(Cmp(a, "resume", kPlain | kNoAccents), 0);
  EXPECT_EQ(Cmp(a, "resume", kPlain | kNoCase | kNoAccents), 0);
  EXPECT_EQ(Cmp(a, "R\xE9sum\xE9", kPlain), 0);
  EXPECT_EQ(Cmp(a, "r\xE9sum\xE9", kPlain | kNoCase), 0);
  EXPECT_EQ(Cmp(a, "Resume", kPlain | kNoAccents), 0);
}

// ---------------------------------------------------------------------------
// Patterns.

TEST_F(StrCmpTest, StarMatchesAnyRunIncludingNothing) {
  EXPECT_EQ(Cmp("", "*", 0), 0);
  EXPECT_EQ(Cmp("anything at all", "*", 0), 0);
  EXPECT_EQ(Cmp("abc", "a*", 0), 0);
  EXPECT_EQ(Cmp("a", "a*", 0), 0);
  EXPECT_NE(Cmp("bac", "a*", 0), 0);
  EXPECT_EQ(Cmp("Johnson", "*son", 0), 0);
  EXPECT_NE(Cmp("Johnsonx", "*son", 0), 0);
  EXPECT_EQ(Cmp("abc", "**c", 0), 0);
  EXPECT_EQ(Cmp("axbyc", "a*b*c", 0), 0);
  EXPECT_NE(Cmp("axbyd", "a*b*c", 0), 0);
  // With 0x10 the asterisk is an ordinary symbol.
  EXPECT_NE(Cmp("abc", "a*", kPlain), 0);
  EXPECT_EQ(Cmp("a*", "a*", kPlain), 0);
}

TEST_F(StrCmpTest, QuestionMarkMatchesOneElementNotTheEnd) {
  EXPECT_EQ(Cmp("ab", "a?", 0), 0);
  EXPECT_EQ(Cmp("a b", "a?b", 0), 0);  // a space is an element for "?"
  EXPECT_LT(Cmp("a", "a?", 0), 0);
  EXPECT_LT(Cmp("", "?", 0), 0);
  EXPECT_GT(Cmp("abc", "a?", 0), 0);
  EXPECT_EQ(Cmp("Marie", "?a*e*", 0), 0);
  EXPECT_NE(Cmp("Maria", "?a*e*", 0), 0);
  // A question mark right behind a star.
  EXPECT_EQ(Cmp("xyb", "*?b", 0), 0);
  EXPECT_NE(Cmp("b", "*?b", 0), 0);
}

TEST_F(StrCmpTest, BacktrackingTakesTheCandidateWithoutRescanning) {
  // The first "b" starts an attempt that fails at the second; the candidate
  // made there carries on.
  EXPECT_EQ(Cmp("abbc", "a*bc", 0), 0);
  EXPECT_EQ(Cmp("abxbc", "a*bc", 0), 0);
  EXPECT_EQ(Cmp("aab", "*ab", 0), 0);
  EXPECT_EQ(Cmp("abab", "*ab", 0), 0);
  EXPECT_EQ(Cmp("ababac", "*abac", 0), 0);
  EXPECT_NE(Cmp("abcx", "a*bc", 0), 0);
  EXPECT_NE(Cmp("abab", "*aba", 0), 0);
}

TEST_F(StrCmpTest, ManyCandidatesAtOnce) {
  // Every place of a long run of one letter begins a candidate.
  const std::string run(40, 'a');
  const std::string pattern = "*" + std::string(30, 'a') + "b";
  EXPECT_EQ(Cmp((run + "b").c_str(), pattern.c_str(), 0), 0);
  EXPECT_NE(Cmp((run + "c").c_str(), pattern.c_str(), 0), 0);
  EXPECT_NE(Cmp((std::string(29, 'a') + "b").c_str(), pattern.c_str(), 0), 0);
  const std::string questions = "*" + std::string(20, '?') + "b";
  EXPECT_EQ(Cmp((run + "b").c_str(), questions.c_str(), 0), 0);
}

TEST_F(StrCmpTest, PatternsMatchAtTheStrengthInForce) {
  // Case in front of a star comes back through the tie-break.
  EXPECT_EQ(Cmp("abc", "A*", kNoCase), 0);
  EXPECT_NE(Cmp("abc", "A*", 0), 0);
  // Behind a star a case or accent difference is no match of that place.
  EXPECT_EQ(Cmp("xyzB", "*b", kNoCase), 0);
  EXPECT_NE(Cmp("xyzB", "*b", 0), 0);
  EXPECT_EQ(Cmp("x\xE9", "*e", kNoAccents), 0);
  EXPECT_NE(Cmp("x\xE9", "*e", 0), 0);
  EXPECT_EQ(Cmp("XY\xC9", "*e", kNoCase | kNoAccents), 0);  // XYÉ
  // What a star skips takes no part in the tie-breaks.
  EXPECT_EQ(Cmp("r\xE9sum\xE9", "r*sum*", 0), 0);
  EXPECT_EQ(Cmp("r\xE9sum\xE9", "r?sum?", 0), 0);
  // Ignored spaces and symbols are invisible to the pattern too.
  EXPECT_EQ(Cmp("a b-c", "abc*", kNoSpaces | kNoSymbols), 0);
  EXPECT_NE(Cmp("a b-c", "abc*", 0), 0);
}

// ---------------------------------------------------------------------------
// Texts without a code set.

TEST_F(StrCmpTest, ByteMatcherOfTextsWithoutCodeSet) {
  EXPECT_EQ(Bytes("abc", "a*", 0), 0);
  EXPECT_EQ(Bytes("abc", "a?c", 0), 0);
  EXPECT_EQ(Bytes("abbc", "a*bc", 0), 0);
  EXPECT_EQ(Bytes("", "*", 0), 0);
  EXPECT_LT(Bytes("a", "a?", 0), 0);
  EXPECT_EQ(Bytes("abd", "abc", 0), 'd' - 'c');
  EXPECT_EQ(Bytes("aBc", "abc", 0), 'B' - 'b');  // bytes, no collation
  // "?" right behind "*" is searched as a plain byte.
  EXPECT_EQ(Bytes("x?", "*?", 0), 0);
  EXPECT_NE(Bytes("xy", "*?", 0), 0);
  // Null pointers have rules of their own.
  EXPECT_EQ(NxStrCmp(0, 0, "a", 0, 0, nullptr, 0, -1, 1, nullptr), 1);
  EXPECT_EQ(NxStrCmp(0, 0, "", 0, 0, nullptr, 0, -1, 1, nullptr), 0);
  EXPECT_EQ(NxStrCmp(0, 0, nullptr, 0, 0, "*", 0, -1, 1, nullptr), -1);
  EXPECT_EQ(NxStrCmp(0, 0, nullptr, 0, 0, "", 0, -1, 1, nullptr), 0);
  // maxLength counts characters of the text.
  EXPECT_EQ(Bytes("abX", "abY", 0, 2), 0);
  EXPECT_NE(Bytes("abX", "abY", 0, 3), 0);
}

TEST_F(StrCmpTest, PlainCompareOfTextsWithoutCodeSet) {
  EXPECT_EQ(Bytes("abc", "abd", kPlain), 'c' - 'd');
  EXPECT_EQ(Bytes("ab", "abc", kPlain), -'c');
  EXPECT_EQ(Bytes("\xE9", "e", kPlain), 0xE9 - 'e');  // unsigned bytes
  EXPECT_EQ(Bytes("abX", "abY", kPlain, 2), 0);
  EXPECT_EQ(Bytes("a*", "abc", kPlain), '*' - 'b');
  EXPECT_EQ(Bytes("abc", "abc", kExact), 0);
  EXPECT_EQ(NxStrCmp(0, 0, nullptr, 0, 0, "", kPlain, -1, 1, nullptr), 0);
}

TEST_F(StrCmpTest, OneTextWithoutCodeSetTakesTheNativeOne) {
  EXPECT_EQ(NxStrCmp(0, 1, "r\xE9sum\xE9", NxCS_CP1252, 1, "R\xE9SUM\xE9", kPlain | kNoCase, -1, 1,
                     nullptr),
            0);
  EXPECT_EQ(NxStrCmp(NxCS_CP1252, 1, "abc", 0, 1, "A*", kNoCase, -1, 1, nullptr), 0);
}

// ---------------------------------------------------------------------------
// Exact compare and prefixResult.

TEST_F(StrCmpTest, ExactCompareIgnoresNothing) {
  EXPECT_EQ(Cmp("abc", "abc", kExact), 0);
  EXPECT_LT(Cmp("ABC", "abc", kExact | kNoCase), 0);  // full weights: upper case 0
  EXPECT_NE(Cmp("a b", "ab", kExact | kNoSpaces), 0);
  EXPECT_NE(Cmp("abc", "a*", kExact), 0);  // no wildcards
  EXPECT_LT(Cmp("ab", "abc", kExact), 0);
  EXPECT_EQ(Cmp("abX", "abY", kExact, 2), 0);
  EXPECT_NE(Cmp("r\xE9sum\xE9", "resume", kExact | kNoAccents), 0);
}

TEST_F(StrCmpTest, PrefixResultIsThePrimaryResultWithinMaxLength) {
  int prefix = 77;
  EXPECT_EQ(NxStrCmp(1, 1, "abcX", 1, 1, "abcY", kPlain | kNoSpaces, 3, 1, &prefix), 0);
  EXPECT_EQ(prefix, 0);
  prefix = 77;
  EXPECT_LT(NxStrCmp(1, 1, "abX", 1, 1, "abY", kPlain | kNoSpaces, 3, 1, &prefix), 0);
  EXPECT_LT(prefix, 0);
  // Without 0x80, or with no limit, nothing is stored.
  prefix = 77;
  NxStrCmp(1, 1, "abX", 1, 1, "abY", kPlain, 3, 1, &prefix);
  EXPECT_EQ(prefix, 77);
  NxStrCmp(1, 1, "abX", 1, 1, "abY", kPlain | kNoSpaces, -1, 1, &prefix);
  EXPECT_EQ(prefix, 77);
}

// ---------------------------------------------------------------------------
// Code sets.

TEST_F(StrCmpTest, EightAndSixteenBitTextOfTheSameCharactersAreEqual) {
  const std::vector<unsigned short> wide = Units(u"R\u00e9sum\u00e9");
  EXPECT_EQ(
      NxStrCmp(NxCS_CP1252, 1, "R\xE9sum\xE9", NxCS_UNICODE, 1, Raw(wide), kPlain, -1, 1, nullptr),
      0);
  EXPECT_EQ(NxStrCmp(NxCS_UCS2_LEGACY, 1, Raw(wide), NxCS_ISO8859_1, 1, "R\xE9sum\xE9", kPlain, -1,
                     1, nullptr),
            0);
  EXPECT_LT(
      NxStrCmp(NxCS_UNICODE, 1, Raw(wide), NxCS_CP1252, 1, "r\xE9sum\xE9s", kPlain, -1, 1, nullptr),
      0);
  const std::vector<unsigned short> pattern = Units(u"r*M\u00c9");
  EXPECT_EQ(NxStrCmp(NxCS_CP1252, 1, "R\xE9sum\xE9", NxCS_UNICODE, 1, Raw(pattern), kNoCase, -1, 1,
                     nullptr),
            0);
}

TEST_F(StrCmpTest, UnicodeAndTheLegacySixteenBitCodeSetCompareAlike) {
  // Code set 225 holds the same characters as 253 and is ordered through
  // it, but by another road: the results must be the same, value for value,
  // in every language, at every strength, with patterns too.
  const char16_t* const words[] = {u"M\u00fcller",
                                   u"Mueller",
                                   u"Muller",
                                   u"Stra\u00dfe",
                                   u"Strasse",
                                   u"chata",
                                   u"hrad",
                                   u"Chata",
                                   u"llama",
                                   u"luz",
                                   u"\u00c5ngstr\u00f6m",
                                   u"Angstrom",
                                   u"\u00c6sir",
                                   u"\u0153uvre",
                                   u"oeuvre",
                                   u"a b-c",
                                   u"abc",
                                   u"\u03a9\u03bc\u03ad\u03b3\u03b1",
                                   u"\u041c\u043e\u0441\u043a\u0432\u0430",
                                   u"\u0451\u043b\u043a\u0430",
                                   u"M*",
                                   u"?a*e*",
                                   u"*son",
                                   u"Johnson",
                                   u"x\u4e2d\u6587",
                                   u"",
                                   u"R\u00e9sum\u00e9",
                                   u"resume",
                                   u"\u010capek",
                                   u"Capek",
                                   u"Dvo\u0159\u00e1k"};
  const unsigned short ops[] = {0x10, 0x30, 0x50, 0x70, 0x90, 0x210, 0x2F0, 0, 0x20, 0x60, 0x100};
  for (unsigned char language = 0; language <= 8; ++language) {
    for (unsigned short op : ops) {
      for (const char16_t* x : words) {
        for (const char16_t* y : words) {
          const std::vector<unsigned short> a = Units(x);
          const std::vector<unsigned short> b = Units(y);
          const int32_t unicode = NxStrCmp(NxCS_UNICODE, language, Raw(a), NxCS_UNICODE, language,
                                           Raw(b), op, -1, 1, nullptr);
          const int32_t legacy = NxStrCmp(NxCS_UCS2_LEGACY, language, Raw(a), NxCS_UCS2_LEGACY,
                                          language, Raw(b), op, -1, 1, nullptr);
          ASSERT_EQ(unicode, legacy) << "language " << int(language) << " op " << op;
          const int32_t limited = NxStrCmp(NxCS_UNICODE, language, Raw(a), NxCS_UNICODE, language,
                                           Raw(b), op, 3, 1, nullptr);
          ASSERT_EQ(limited, NxStrCmp(NxCS_UCS2_LEGACY, language, Raw(a), NxCS_UCS2_LEGACY,
                                      language, Raw(b), op, 3, 1, nullptr));
        }
      }
    }
  }
}

TEST_F(StrCmpTest, OrderTextIsReadUpToItsTerminatorOnly) {
  // The buffers end at their terminator: a read behind it is caught by the
  // address sanitizer.
  const std::vector<unsigned short> key = OrdersOf("abc", NxCS_CP1252, 1);
  const std::vector<unsigned short> same = OrdersOf("abc", NxCS_CP1252, 1);
  const std::vector<unsigned short> other = OrdersOf("abd", NxCS_CP1252, 1);
  EXPECT_EQ(NxStrCmp(NxCS_ORDERS, 1, Raw(key), NxCS_ORDERS, 1, Raw(same), kPlain, -1, 1, nullptr),
            0);
  EXPECT_LT(NxStrCmp(NxCS_ORDERS, 1, Raw(key), NxCS_ORDERS, 1, Raw(other), kPlain, -1, 1, nullptr),
            0);
  EXPECT_LT(NxStrCmp(NxCS_ORDERS, 1, Raw(key), NxCS_ORDERS, 1, Raw(other), kExact, -1, 1, nullptr),
            0);
  // Patterns of order text, ending in a star and with a star in the middle.
  const std::vector<unsigned short> prefix = OrdersOf("ab*", NxCS_CP1252, 1);
  const std::vector<unsigned short> inner = OrdersOf("a*c", NxCS_CP1252, 1);
  const std::vector<unsigned short> text = OrdersOf("abxc", NxCS_CP1252, 1);
  EXPECT_EQ(NxStrCmp(NxCS_ORDERS, 1, Raw(text), NxCS_ORDERS, 1, Raw(prefix), 0, -1, 1, nullptr), 0);
  EXPECT_EQ(NxStrCmp(NxCS_ORDERS, 1, Raw(text), NxCS_ORDERS, 1, Raw(inner), 0, -1, 1, nullptr), 0);
  EXPECT_NE(NxStrCmp(NxCS_ORDERS, 1, Raw(other), NxCS_ORDERS, 1, Raw(inner), 0, -1, 1, nullptr), 0);
  // Text against its own orders.
  EXPECT_EQ(NxStrCmp(NxCS_CP1252, 1, "abc", NxCS_ORDERS, 1, Raw(key), kPlain, -1, 1, nullptr), 0);
  EXPECT_EQ(NxStrCmp(NxCS_CP1252, 1, "abxc", NxCS_ORDERS, 1, Raw(inner), 0, -1, 1, nullptr), 0);
}

// ---------------------------------------------------------------------------
// Languages.

// Both texts in Unicode.
int32_t Uni(const char16_t* a, const char16_t* b, unsigned short op, unsigned char language) {
  const std::vector<unsigned short> x = Units(a);
  const std::vector<unsigned short> y = Units(b);
  return NxStrCmp(NxCS_UNICODE, language, Raw(x), NxCS_UNICODE, language, Raw(y), op, -1, 1,
                  nullptr);
}

TEST_F(StrCmpTest, AccentsDifferOnlyAtTheAccentLevel) {
  EXPECT_LT(Cmp("resume", "r\xE9sum\xE9", kPlain), 0);  // unaccented first
  EXPECT_EQ(Cmp("resume", "r\xE9sum\xE9", kPlain | kNoAccents), 0);
  EXPECT_NE(Cmp("resume", "r\xE9sum\xE9", kPlain | kNoCase), 0);
  EXPECT_LT(Cmp("r\xE9sum\xE9", "resumf", kPlain), 0);  // the letters decide first
  // Expansions: "ß" is "ss", "Æ" is "AE", at the primary level.
  EXPECT_EQ(Uni(u"Stra\u00dfe", u"STRASSE", kPlain | kNoCase | kNoAccents, 1), 0);
  EXPECT_NE(Uni(u"Stra\u00dfe", u"Strasse", kPlain, 1), 0);
  EXPECT_EQ(Uni(u"\u00c6r\u00f8", u"aero", kPlain | kNoCase | kNoAccents, 1), 0);
}

TEST_F(StrCmpTest, LanguagesOrderTheirOwnWay) {
  const unsigned short primary = kPlain | kNoCase | kNoAccents;
  // German phonebook: "ü" is "ue".
  EXPECT_EQ(Uni(u"M\u00fcller", u"Mueller", primary, NxLANG_GERMAN_PHONEBOOK), 0);
  EXPECT_NE(Uni(u"M\u00fcller", u"Mueller", primary, NxLANG_NEUTRAL), 0);
  EXPECT_EQ(Uni(u"M\u00fcller", u"Muller", primary, NxLANG_NEUTRAL), 0);
  // Czech: "ch" is one letter after "h".
  EXPECT_GT(Uni(u"chata", u"hrad", kPlain, NxLANG_CZECH), 0);
  EXPECT_LT(Uni(u"chata", u"hrad", kPlain, NxLANG_NEUTRAL), 0);
  // Traditional Spanish: "ll" after "l".
  EXPECT_GT(Uni(u"llama", u"luz", kPlain, NxLANG_SPANISH_TRADITIONAL), 0);
  EXPECT_LT(Uni(u"llama", u"luz", kPlain, NxLANG_NEUTRAL), 0);
  // Swedish: "ö" after "z".
  EXPECT_GT(Uni(u"\u00f6l", u"zebra", kPlain, NxLANG_SWEDISH), 0);
  EXPECT_LT(Uni(u"\u00f6l", u"zebra", kPlain, NxLANG_NEUTRAL), 0);
  // A pattern follows the language too.
  EXPECT_EQ(Uni(u"chata", u"ch?ta", 0, NxLANG_CZECH), 0);
  EXPECT_EQ(Uni(u"M\u00fcller", u"Mue*", kNoCase | kNoAccents, NxLANG_GERMAN_PHONEBOOK), 0);
}

TEST_F(StrCmpTest, GreekAndCyrillicInTheirEightBitCodeSets) {
  // ISO 8859-7 "Ωμέγα" and "ΩΜΕΓΑ"; ISO 8859-5 "ёлка" and "елка".
  EXPECT_EQ(
      NxStrCmp(NxCS_ISO8859_7, NxLANG_GREEK, "\xD9\xEC\xDD\xE3\xE1", NxCS_ISO8859_7, NxLANG_GREEK,
               "\xD9\xCC\xC5\xC3\xC1", kPlain | kNoCase | kNoAccents, -1, 1, nullptr),
      0);
  EXPECT_NE(NxStrCmp(NxCS_ISO8859_7, NxLANG_GREEK, "\xD9\xEC\xDD\xE3\xE1", NxCS_ISO8859_7,
                     NxLANG_GREEK, "\xD9\xCC\xC5\xC3\xC1", kPlain | kNoCase, -1, 1, nullptr),
            0);
  EXPECT_EQ(NxStrCmp(NxCS_ISO8859_5, NxLANG_RUSSIAN, "\xF1\xDB\xDA\xD0", NxCS_ISO8859_5,
                     NxLANG_RUSSIAN, "\xD5\xDB\xDA\xD0", kPlain | kNoAccents, -1, 1, nullptr),
            0);
  // The same Cyrillic text in 8 and in 16 bits.
  const std::vector<unsigned short> wide = Units(u"\u0451\u043b\u043a\u0430");
  EXPECT_EQ(NxStrCmp(NxCS_ISO8859_5, NxLANG_RUSSIAN, "\xF1\xDB\xDA\xD0", NxCS_UNICODE,
                     NxLANG_RUSSIAN, Raw(wide), kPlain, -1, 1, nullptr),
            0);
}

// ---------------------------------------------------------------------------
// NxString members.

TEST_F(StrCmpTest, StringOperatorsFollowTheDefaultOperator) {
  const NxString lower("abc");
  const NxString upper("ABC");
  EXPECT_EQ(lower == upper, 0);
  EXPECT_EQ(lower < upper, 1);
  EXPECT_EQ(upper > lower, 1);
  EXPECT_EQ(lower <= lower, 1);
  EXPECT_EQ(lower >= upper, 0);
  EXPECT_LT(lower != upper, 0);
  EXPECT_EQ(lower == lower, 1);
  NxString::SetDefaultCmpOp(kNoCase);
  EXPECT_EQ(lower == upper, 1);
  EXPECT_EQ(lower != upper, 0);
  // Without 0x10 the right-hand string is a pattern.
  EXPECT_EQ(lower == NxString("A*"), 1);
  EXPECT_EQ(lower.Compare(NxString("A*"), -1, kPlain | kNoCase) == 0, false);
  EXPECT_EQ(lower.Compare(NxString("abX"), 2, 65535), 0);
}

TEST_F(StrCmpTest, EqualsIgnoreLanguageComparesExactly) {
  NxString a("abc");
  NxString b("abc");
  b.language = NxLANG_SWEDISH;
  EXPECT_EQ(a.EqualsIgnoreLanguage(b), 1);
  NxString c("ABC");
  EXPECT_EQ(a.EqualsIgnoreLanguage(c), 0);
  NxString wide(reinterpret_cast<const unsigned short*>(u"abc"));
  EXPECT_EQ(a.EqualsIgnoreLanguage(wide), 1);
}

TEST_F(StrCmpTest, FindSearchesOnCollation) {
  const NxString text("Caf\xE9 au lait");
  EXPECT_EQ(text.Find(NxString("CAFE"), 0, kPlain | kNoCase | kNoAccents), 0);
  EXPECT_EQ(text.Find(NxString("LAIT"), 0, kPlain | kNoCase), 8);
  EXPECT_EQ(text.Find(NxString("LAIT"), 0, kPlain), -1);
  EXPECT_EQ(text.Find(NxString("a?"), 2, 0), 5);
}

// ---------------------------------------------------------------------------
// The wildcard settings.

class WildcardScope {
 public:
  ~WildcardScope() {
    NxString::SetAsterisk(NxChar('*', NxCS_CP1252, 1));
    NxString::SetQuestion(NxChar('?', NxCS_CP1252, 1));
    NxString::SetEscape(NxChar('\\', NxCS_CP1252, 1));
  }
};

TEST_F(StrCmpTest, SetAsteriskAndSetQuestionChangeTheWildcards) {
  WildcardScope restore;
  EXPECT_EQ(NxString::SetAsterisk(NxChar('%', NxCS_CP1252, 1)), 0);
  EXPECT_EQ(NxString::SetQuestion(NxChar('_', NxCS_CP1252, 1)), 0);
  // The escape is stored by its order, here from a 16-bit character.
  EXPECT_EQ(NxString::SetEscape(NxChar(static_cast<unsigned short>('!'), NxCS_UNICODE, 1)), 0);
  EXPECT_EQ(NxStringIterator::EscapeOrder(), NxChar('!', NxCS_CP1252, 1).Order());
  EXPECT_EQ(Cmp("abc", "a%", 0), 0);
  EXPECT_EQ(Cmp("abc", "a_c", 0), 0);
  EXPECT_NE(Cmp("abc", "a*", 0), 0);
  EXPECT_NE(Cmp("abc", "a?c", 0), 0);
  // The same character in a 16-bit code set counts as well.
  const std::vector<unsigned short> wide = Units(u"a%");
  EXPECT_EQ(NxStrCmp(NxCS_CP1252, 1, "abc", NxCS_UNICODE, 1, Raw(wide), 0, -1, 1, nullptr), 0);
  EXPECT_EQ(FindWildcard(NxCS_CP1252, 1, "ab%", 0, 65535, nullptr, 1), 2);
  // Text without a code set keeps the bytes "*" and "?".
  EXPECT_EQ(Bytes("abc", "a*", 0), 0);
  EXPECT_NE(Bytes("abc", "a%", 0), 0);
}

// ---------------------------------------------------------------------------
// Hashes.

TEST_F(StrCmpTest, HashStringRules) {
  char text[] = "abc";
  EXPECT_EQ(HashString(1, NxLANG_NULL, text, -1, 1), 0xFEFE7575u);
  EXPECT_EQ(HashString(NxCS_ORDERS, 0, text, -1, 1), 0xFEFE7575u);
  EXPECT_EQ(HashString(1, 1, text, 0, 1), 0u);
  EXPECT_EQ(HashString(1, 1, text, -2, 1), 0u);
  EXPECT_EQ(HashString(0, 0, text, -1, 1), (('a' * 9u) + 'b') * 9u + 'c');
  EXPECT_EQ(HashString(0, 0, text, 2, 1), 'a' * 9u + 'b');
  const uint32_t full = HashString(1, 1, text, -1, 1);
  EXPECT_NE(full, HashString(0, 0, text, -1, 1));
  EXPECT_EQ(HashString(1, 1, text, 3, 1), full);
  // Rounds behind the end take the weight 0.
  EXPECT_EQ(HashString(1, 1, text, 5, 1), full * 81u);
  EXPECT_EQ(HashString(0, 0, text, 5, 1), HashString(0, 0, text, -1, 1) * 81u);
  // A text cut without a terminator is read no further than maxChars.
  const char cut[2] = {'a', 'b'};
  char two[] = "ab";
  EXPECT_EQ(HashString(1, 1, const_cast<char*>(cut), 2, 1), HashString(1, 1, two, -1, 1));
  // The key hash sees collation, so the same text in 16 bits hashes alike.
  std::vector<unsigned short> wide = Units(u"abc");
  EXPECT_EQ(HashString(NxCS_UNICODE, 1, reinterpret_cast<char*>(wide.data()), -1, 1), full);
}

TEST_F(StrCmpTest, HashNxStringRules) {
  const NxString ab("ab");
  EXPECT_EQ(HashNxString(ab), 'a' * 9u + 'b');
  char text[] = "ab";
  EXPECT_NE(HashNxString(ab), HashString(ab.codeSet, ab.language, text, -1, 1));
  // Bytes count with their sign; the 7-bit hash cuts them to 7 bits.
  const NxString accent("\xE9");
  EXPECT_EQ(HashNxString(accent), static_cast<uint32_t>(-0x17));
  EXPECT_EQ(HashNxString7(accent), 0x69u);
  // Unicode text hashes its 16-bit units.
  const NxString wide(reinterpret_cast<const unsigned short*>(u"\u0101b"));
  EXPECT_EQ(HashNxString(wide), 0x101u * 9u + 'b');
  EXPECT_EQ(HashNxString7(wide), 0x01u * 9u + 'b');
  EXPECT_EQ(HashNxString(NxString()), 0u);
  // Collation plays no part: equal under a lenient operator, different hash.
  EXPECT_NE(HashNxString(NxString("abc")), HashNxString(NxString("ABC")));
}

// ---------------------------------------------------------------------------
// Helpers of the key rows.

TEST_F(StrCmpTest, FindWildcardCountsElements) {
  unsigned short offset = 0;
  EXPECT_EQ(FindWildcard(1, 1, "ab*c", 0, 65535, &offset, 1), 2);
  EXPECT_EQ(offset, 2);
  EXPECT_EQ(FindWildcard(1, 1, "a?c*", 1, 65535, &offset, 1), 3);
  EXPECT_EQ(FindWildcard(1, 1, "a?c*", 0, 65535, &offset, 1), 1);
  EXPECT_EQ(FindWildcard(1, 1, "abc*", 0, 3, &offset, 1), 65535);
  EXPECT_EQ(offset, 65535);
  EXPECT_EQ(FindWildcard(1, 1, "abc", 0, 65535, nullptr, 1), 65535);
  const std::vector<unsigned short> wide = Units(u"ab?");
  EXPECT_EQ(FindWildcard(NxCS_UNICODE, 1, Raw(wide), 0, 65535, &offset, 1), 2);
  EXPECT_EQ(offset, 4);
  EXPECT_EQ(FindWildcard(0, 0, "x?y*", 1, 65535, &offset, 1), 3);
  EXPECT_EQ(FindWildcard(0, 0, "x?y*", 0, 65535, &offset, 1), 1);
  EXPECT_EQ(FindWildcard(0, 0, nullptr, 0, 65535, &offset, 1), 65535);
}

TEST_F(StrCmpTest, PositionValueGrowsWithTheCollationPosition) {
  NxStringIterator bytes("AB\xF0", 0, 0, 1);
  EXPECT_DOUBLE_EQ(PositionValue(bytes, 65535), ((65.0 * 128 + 66) * 128 + 127) * 128);
  NxStringIterator limited("ABC", 0, 0, 1);
  EXPECT_DOUBLE_EQ(PositionValue(limited, 1), 65.0 * 128 * 128 * 128);
  auto value = [](const char* text, unsigned short length = 65535) {
    NxStringIterator it(text, NxCS_CP1252, 1, 1);
    return PositionValue(it, length);
  };
  EXPECT_LT(value("abc"), value("abd"));
  EXPECT_LT(value("abd"), value("b"));
  EXPECT_LT(value(""), value("a"));
  // Only the first three digits, letters or ideographs count; spaces and
  // symbols use up the length.
  EXPECT_DOUBLE_EQ(value("a-b c"), value("abc"));
  EXPECT_DOUBLE_EQ(value("abcd"), value("abcz"));
  EXPECT_DOUBLE_EQ(value("a-bc", 2), value("a"));
  NxStringIterator none;
  EXPECT_DOUBLE_EQ(PositionValue(none, 65535), 0.0);
}

}  // namespace
