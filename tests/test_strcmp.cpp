// Comparison at collation strength, wildcard matching, the wildcard
// settings, the hashes of text and the helpers of the key rows.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"

namespace {

constexpr unsigned short P = NxCMP_NO_WILDCARDS, NC = NxCMP_IGNORE_CASE, NA = NxCMP_IGNORE_ACCENTS,
                         NS = NxCMP_IGNORE_SPACES, EX = NxCMP_EXACT, NY = NxCMP_IGNORE_SYMBOLS;
// Expected results: an exact value, or only a sign / inequality.
constexpr int32_t kLt = -1000000, kGt = 1000000, kNe = 1000001;

void Check(int32_t got, int32_t want, const std::string& what) {
  const bool ok = want == kLt   ? got < 0
                  : want == kGt ? got > 0
                  : want == kNe ? got != 0
                                : got == want;
  EXPECT_TRUE(ok) << what << ": got " << got << ", want " << want;
}

// Both texts in Windows Latin-1 (or, with codeSet 0, without a code set), neutral language.
int32_t Cmp(const char* a, const char* b, unsigned short op, short maxLength = -1,
            unsigned char codeSet = NxCS_CP1252) {
  return NxStrCmp(codeSet, codeSet, a, codeSet, codeSet, b, op, maxLength, 1, nullptr);
}

// A text as 16-bit units with its terminator.
std::vector<unsigned short> Units(const std::u16string& text) {
  std::vector<unsigned short> units(text.begin(), text.end());
  units.push_back(0);
  return units;
}

const char* Raw(const std::vector<unsigned short>& units) {
  return reinterpret_cast<const char*>(units.data());
}

// The orders of a text, terminated, as the stored key form holds them.
std::vector<unsigned short> OrdersOf(const char* text) {
  std::vector<unsigned short> orders;
  NxStringIterator it(text, NxCS_CP1252, 1, 1);
  for (unsigned short o = it.GetNextOrder(1); o != 0; o = it.GetNextOrder(1)) orders.push_back(o);
  orders.push_back(0);
  return orders;
}

// clang-format off
struct Row { const char* a; const char* b; unsigned short op; int32_t want; short maxLength = -1; };
// clang-format on

void CheckRows(const std::vector<Row>& rows, unsigned char codeSet = NxCS_CP1252) {
  for (const Row& r : rows) {
    Check(Cmp(r.a, r.b, r.op, r.maxLength, codeSet), r.want,
          std::string(r.a) + " | " + r.b + " op " + std::to_string(r.op));
  }
}

// clang-format off
struct Full { unsigned char cs1, lang1; const char* a; unsigned char cs2, lang2; const char* b;
              unsigned short op; short maxLength; int32_t want; };
// clang-format on

void CheckFull(const std::vector<Full>& rows) {
  int i = 0;
  for (const Full& r : rows) {
    Check(NxStrCmp(r.cs1, r.lang1, r.a, r.cs2, r.lang2, r.b, r.op, r.maxLength, 1, nullptr), r.want,
          "row " + std::to_string(i++));
  }
}

class StrCmpTest : public ::testing::Test {
 protected:
  void SetUp() override { NxLanguageContext::ResetDefaults(); }
  void TearDown() override { NxLanguageContext::ResetDefaults(); }
};

TEST_F(StrCmpTest, NullRulesAndMaxLengthZero) {
  const unsigned char N = NxLANG_NULL, O = NxCS_ORDERS;
  // clang-format off
  CheckFull({
      // Both null, whichever form; null against text below with 0x10 or 0x100, else above.
      {0, N, "x", O, 0, "y", P, -1, 0}, {1, N, "", 1, 1, "abc", P, -1, -1},
      {1, N, "", 1, 1, "abc", EX, -1, -1}, {1, 1, "abc", O, 0, "", P, -1, 1},
      {1, 1, "", 1, N, "", 0, -1, 1},
      // With wildcards a null first text is an empty text against the pattern.
      {1, N, "abc", 1, 1, "*", 0, -1, 0}, {0, N, "abc", 0, 0, "*", 0, -1, 0},
      {1, N, "abc", 1, 1, "a*", 0, -1, kLt},
      // maxLength 0 answers 0, but nulls are decided first.
      {1, 1, "abc", 1, 1, "xyz", P, 0, 0}, {0, 0, "abc", 0, 0, "xyz", 0, 0, 0},
      {1, 1, "abc", 1, N, "", P, 0, 1},
      // A null pointer is an empty text; without a code set it has rules of its own.
      {1, 1, nullptr, 1, 1, "", P, -1, 0}, {1, 1, nullptr, 1, 1, "a", P, -1, kLt},
      {0, 0, "a", 0, 0, nullptr, 0, -1, 1}, {0, 0, "", 0, 0, nullptr, 0, -1, 0},
      {0, 0, nullptr, 0, 0, "*", 0, -1, -1}, {0, 0, nullptr, 0, 0, "", 0, -1, 0},
      {0, 0, nullptr, 0, 0, "", P, -1, 0}});
  // clang-format on
}

TEST_F(StrCmpTest, StrengthLevelsMasksAndExactCompare) {
  const char* R = "R\xE9sum\xE9";  // Résumé; "\351" is é too, where a hex digit follows
  // clang-format off
  CheckRows({
      // Primary level first; a prefix sorts first; digits before letters.
      {"abc", "abd", P, kLt}, {"b", "abc", P, kGt}, {"ab", "abc", P, kLt}, {"abc", "abc", P, 0},
      {"", "a", P, kLt},
      {"Ab", "ac", P, kLt}, {"\351b", "ec", P, kLt}, {"9", "a", P, kLt},
      {"r\xE9sum\xE9", "resumf", P, kLt},
      // Case: the first difference decides, lower case first.
      {"abc", "Abc", P, kLt}, {"ABC", "abc", P, kGt}, {"aB", "Ab", P, kLt}, {"Ab", "aB", P, kGt},
      {"aB", "Ab", P | NC, 0},
      // Accents: unaccented first, the last difference decides, accents outrank case.
      {"resume", "r\xE9sum\xE9", P, kLt}, {"resume", "r\xE9sum\xE9", P | NA, 0},
      {"\351e", "e\xE9", P, kLt},
      {"e\xE9", "\351e", P, kGt}, {"\351e", "e\xE9", P | NA, 0}, {"Ae", "a\xE9", P, kLt},
      {"Ae", "a\xE9", P | NA, kGt},
      // Spaces count only without 0x80, symbols only without 0x200; neither shifts the letters.
      {"a b", "ab", P, kNe}, {"a b", "ab", P | NS, 0}, {"a  b ", " ab", P | NS, 0},
      {"a-b", "ab", P | NS, kNe},
      {"a-b", "ab", P | NY, 0}, {"a-b c", "abc", P | NY | NS, 0}, {"a b", "ac", P, kLt},
      {"a-c", "ab", P, kGt},
      {"a b", "Ab", P, kLt}, {"a b", "Ab", P | NC, kGt},  // case outranks spaces
      // The masks of case and accents.
      {R, "resume", P | NC, kNe}, {R, "resume", P | NA, kNe}, {R, "resume", P | NC | NA, 0},
      {R, "r\xE9sum\xE9", P | NC, 0}, {R, "Resume", P | NA, 0},
      // Exact compare ignores nothing, knows no wildcards; full weights put upper case first.
      {"abc", "abc", EX, 0}, {"ABC", "abc", EX | NC, kLt}, {"a b", "ab", EX | NS, kNe},
      {"abc", "a*", EX, kNe},
      {"ab", "abc", EX, kLt}, {"abX", "abY", EX, 0, 2}, {R, "Resume", EX | NA, kNe}});
  // clang-format on
  // Of two space differences the last one decides.
  const int32_t space = Cmp("a c", "a-c", P);
  ASSERT_NE(space, 0);
  EXPECT_EQ(Cmp("a-b c", "a b-c", P) < 0, space < 0);
  EXPECT_EQ(Cmp("a b-c", "a-b c", P) < 0, space > 0);
}

TEST_F(StrCmpTest, Patterns) {
  // clang-format off
  CheckRows({
      // "*" matches any run, the whole text and the empty one; with 0x10 it is a symbol.
      {"", "*", 0, 0}, {"any text at all", "*", 0, 0}, {"abc", "a*", 0, 0}, {"a", "a*", 0, 0},
      {"bac", "a*", 0, kNe},
      {"Johnson", "*son", 0, 0}, {"Johnsonx", "*son", 0, kNe}, {"abc", "**c", 0, 0},
      {"axbyc", "a*b*c", 0, 0},
      {"axbyd", "a*b*c", 0, kNe}, {"abc", "a*", P, kNe}, {"a*", "a*", P, 0},
      // "?" matches one element (a space too), never the end.
      {"ab", "a?", 0, 0}, {"a b", "a?b", 0, 0}, {"a", "a?", 0, kLt}, {"", "?", 0, kLt},
      {"abc", "a?", 0, kGt},
      {"Marie", "?a*e*", 0, 0}, {"Maria", "?a*e*", 0, kNe}, {"xyb", "*?b", 0, 0},
      {"b", "*?b", 0, kNe},
      // A failed attempt leaves a candidate that carries on.
      {"abbc", "a*bc", 0, 0}, {"abxbc", "a*bc", 0, 0}, {"aab", "*ab", 0, 0},
      {"ababac", "*abac", 0, 0},
      {"abcx", "a*bc", 0, kNe}, {"abab", "*aba", 0, kNe},
      // Matching is at the strength in force; what a star skips takes no part in tie-breaks.
      {"abc", "A*", NC, 0}, {"abc", "A*", 0, kNe}, {"xyzB", "*b", NC, 0}, {"xyzB", "*b", 0, kNe},
      {"x\xE9", "*e", NA, 0}, {"x\xE9", "*e", 0, kNe}, {"XY\xC9", "*e", NC | NA, 0},
      {"r\xE9sum\xE9", "r*sum*", 0, 0}, {"r\xE9sum\xE9", "r?sum?", 0, 0},
      {"a b-c", "abc*", NS | NY, 0}, {"a b-c", "abc*", 0, kNe}});
  // clang-format on
  // Every place of a long run of one letter begins a candidate.
  const std::string run(40, 'a'), pattern = "*" + std::string(30, 'a') + "b";
  EXPECT_EQ(Cmp((run + "b").c_str(), pattern.c_str(), 0), 0);
  EXPECT_NE(Cmp((run + "c").c_str(), pattern.c_str(), 0), 0);
  EXPECT_NE(Cmp((std::string(29, 'a') + "b").c_str(), pattern.c_str(), 0), 0);
  EXPECT_EQ(Cmp((run + "b").c_str(), ("*" + std::string(20, '?') + "b").c_str(), 0), 0);
}

TEST_F(StrCmpTest, TextsWithoutCodeSet) {
  // clang-format off
  CheckRows({
      // Byte matcher: no collation, "?" behind "*" is a plain byte, maxLength in characters.
      {"abc", "a?c", 0, 0}, {"abbc", "a*bc", 0, 0}, {"", "*", 0, 0}, {"a", "a?", 0, kLt},
      {"abd", "abc", 0, 'd' - 'c'}, {"aBc", "abc", 0, 'B' - 'b'}, {"x?", "*?", 0, 0},
      {"xy", "*?", 0, kNe},
      {"abX", "abY", 0, 0, 2}, {"abX", "abY", 0, kNe, 3},
      // The plain compare answers the difference of unsigned bytes.
      {"abc", "abd", P, 'c' - 'd'}, {"ab", "abc", P, -'c'}, {"\xE9", "e", P, 0xE9 - 'e'},
      {"abX", "abY", P, 0, 2}, {"a*", "abc", P, '*' - 'b'}, {"abc", "abc", EX, 0}}, 0);
  // clang-format on
  // One text without a code set takes the other's.
  EXPECT_EQ(NxStrCmp(0, 1, "r\xE9sum\xE9", 1, 1, "R\xE9SUM\xE9", P | NC, -1, 1, nullptr), 0);
  EXPECT_EQ(NxStrCmp(NxCS_CP1252, 1, "abc", 0, 1, "A*", NC, -1, 1, nullptr), 0);
}

TEST_F(StrCmpTest, PrefixResultIsThePrimaryResultWithinMaxLength) {
  int prefix = 77;
  EXPECT_EQ(NxStrCmp(1, 1, "abcX", 1, 1, "abcY", P | NS, 3, 1, &prefix), 0);
  EXPECT_EQ(prefix, 0);
  EXPECT_LT(NxStrCmp(1, 1, "abX", 1, 1, "abY", P | NS, 3, 1, &prefix), 0);
  EXPECT_LT(prefix, 0);
  prefix = 77;  // without 0x80, or with no limit, nothing is stored
  NxStrCmp(1, 1, "abX", 1, 1, "abY", P, 3, 1, &prefix);
  NxStrCmp(1, 1, "abX", 1, 1, "abY", P | NS, -1, 1, &prefix);
  EXPECT_EQ(prefix, 77);
}

TEST_F(StrCmpTest, CodeSetsAndOrderText) {
  const char *resume = "R\xE9sum\xE9", *yolka = "\xF1\xDB\xDA\xD0";  // ISO 8859-5 "ёлка"
  const char *omega = "\xD9\xEC\xDD\xE3\xE1", *omegaUp = "\xD9\xCC\xC5\xC3\xC1";  // "Ωμέγα"
  const auto wide = Units(u"R\u00e9sum\u00e9"), pat = Units(u"r*M\u00c9");
  const auto wideYolka = Units(u"\u0451\u043b\u043a\u0430");
  const unsigned char U = NxCS_UNICODE, G = NxLANG_GREEK, R = NxLANG_RUSSIAN;
  // clang-format off
  CheckFull({
      // The same characters in 8 and 16 bits are equal.
      {1, 1, resume, U, 1, Raw(wide), P, -1, 0},
      {NxCS_UCS2_LEGACY, 1, Raw(wide), NxCS_ISO8859_1, 1, resume, P, -1, 0},
      {U, 1, Raw(wide), 1, 1, "r\xE9sum\xE9s", P, -1, kLt},
      {1, 1, resume, U, 1, Raw(pat), NC, -1, 0},
      // Greek and Cyrillic in their 8-bit code sets.
      {NxCS_ISO8859_7, G, omega, NxCS_ISO8859_7, G, omegaUp, P | NC | NA, -1, 0},
      {NxCS_ISO8859_7, G, omega, NxCS_ISO8859_7, G, omegaUp, P | NC, -1, kNe},
      {NxCS_ISO8859_5, R, yolka, NxCS_ISO8859_5, R, "\xD5\xDB\xDA\xD0", P | NA, -1, 0},
      {NxCS_ISO8859_5, R, yolka, U, R, Raw(wideYolka), P, -1, 0}});
  // clang-format on
  // Order text ends at its terminator: a read behind it is caught by the sanitizer.
  const auto key = OrdersOf("abc"), same = OrdersOf("abc"), other = OrdersOf("abd"),
             prefix = OrdersOf("ab*"), inner = OrdersOf("a*c"), text = OrdersOf("abxc");
  auto ord = [](const std::vector<unsigned short>& a, const std::vector<unsigned short>& b,
                unsigned short op) {
    return NxStrCmp(NxCS_ORDERS, 1, Raw(a), NxCS_ORDERS, 1, Raw(b), op, -1, 1, nullptr);
  };
  EXPECT_EQ(ord(key, same, P), 0);
  EXPECT_LT(ord(key, other, P), 0);
  EXPECT_LT(ord(key, other, EX), 0);
  EXPECT_EQ(ord(text, prefix, 0), 0);
  EXPECT_EQ(ord(text, inner, 0), 0);
  EXPECT_NE(ord(other, inner, 0), 0);
  EXPECT_EQ(NxStrCmp(1, 1, "abc", NxCS_ORDERS, 1, Raw(key), P, -1, 1, nullptr), 0);
  EXPECT_EQ(NxStrCmp(1, 1, "abxc", NxCS_ORDERS, 1, Raw(inner), 0, -1, 1, nullptr), 0);
}

TEST_F(StrCmpTest, UnicodeAndTheLegacySixteenBitCodeSetCompareAlike) {
  // Code set 225 is ordered through 253 by another road: the results must be
  // the same, value for value, in every language and strength, with patterns.
  const std::u16string list =
      u"M\u00fcller|Mueller|Muller|Stra\u00dfe|Strasse|chata|hrad|Chata|llama|luz|"
      u"\u00c5ngstr\u00f6m|Angstrom|\u00c6sir|\u0153uvre|oeuvre|a b-c|abc|"
      u"\u03a9\u03bc\u03ad\u03b3\u03b1|\u041c\u043e\u0441\u043a\u0432\u0430|"
      u"\u0451\u043b\u043a\u0430|M*|?a*e*|*son|Johnson|x\u4e2d\u6587||R\u00e9sum\u00e9|resume|"
      u"\u010capek|Capek|Dvo\u0159\u00e1k";
  std::vector<std::vector<unsigned short>> words;
  for (size_t start = 0, end = 0; end != std::u16string::npos; start = end + 1) {
    end = list.find(u'|', start);
    words.push_back(Units(list.substr(start, end - start)));
  }
  for (unsigned char lang = 0; lang <= 8; ++lang) {
    for (unsigned short op : {0x10, 0x30, 0x50, 0x70, 0x90, 0x210, 0x2F0, 0, 0x20, 0x60, 0x100}) {
      for (const auto& a : words) {
        for (const auto& b : words) {
          for (short max : {-1, 3}) {
            ASSERT_EQ(NxStrCmp(NxCS_UNICODE, lang, Raw(a), NxCS_UNICODE, lang, Raw(b), op, max, 1,
                               nullptr),
                      NxStrCmp(NxCS_UCS2_LEGACY, lang, Raw(a), NxCS_UCS2_LEGACY, lang, Raw(b), op,
                               max, 1, nullptr))
                << "language " << int(lang) << " op " << op << " max " << max;
          }
        }
      }
    }
  }
}

TEST_F(StrCmpTest, LanguagesOrderTheirOwnWay) {
  const unsigned short L1 = P | NC | NA;
  // clang-format off
  const struct { const char16_t* a; const char16_t* b; unsigned short op; unsigned char language;
                 int32_t want; } rows[] = {
      // Expansions at the primary level: "ß" is "ss", "Æ" is "AE"; German phonebook "ü" is "ue".
      {u"Stra\u00dfe", u"STRASSE", L1, 1, 0}, {u"Stra\u00dfe", u"Strasse", P, 1, kNe},
      {u"\u00c6r\u00f8", u"aero", L1, 1, 0},
      {u"M\u00fcller", u"Mueller", L1, NxLANG_GERMAN_PHONEBOOK, 0},
      {u"M\u00fcller", u"Mueller", L1, 1, kNe},
      {u"M\u00fcller", u"Muller", L1, 1, 0},
      // Czech "ch" after "h", traditional Spanish "ll" after "l", Swedish "ö" after "z".
      {u"chata", u"hrad", P, NxLANG_CZECH, kGt}, {u"chata", u"hrad", P, 1, kLt},
      {u"llama", u"luz", P, NxLANG_SPANISH_TRADITIONAL, kGt}, {u"llama", u"luz", P, 1, kLt},
      {u"\u00f6l", u"zebra", P, NxLANG_SWEDISH, kGt}, {u"\u00f6l", u"zebra", P, 1, kLt},
      // A pattern follows the language too.
      {u"chata", u"ch?ta", 0, NxLANG_CZECH, 0},
      {u"M\u00fcller", u"Mue*", NC | NA, NxLANG_GERMAN_PHONEBOOK, 0}};
  // clang-format on
  for (const auto& r : rows) {
    const std::vector<unsigned short> x = Units(r.a), y = Units(r.b);
    Check(NxStrCmp(NxCS_UNICODE, r.language, Raw(x), NxCS_UNICODE, r.language, Raw(y), r.op, -1, 1,
                   nullptr),
          r.want, "language " + std::to_string(r.language) + " op " + std::to_string(r.op));
  }
}

TEST_F(StrCmpTest, StringMembersFollowTheDefaultOperator) {
  const NxString lower("abc"), upper("ABC");
  EXPECT_EQ(lower == upper, 0);
  EXPECT_EQ((lower < upper) + (upper > lower) + (lower <= lower) + (lower >= upper), 3);
  EXPECT_LT(lower != upper, 0);
  NxString::SetDefaultCmpOp(NC);
  EXPECT_EQ(lower == upper, 1);
  EXPECT_EQ(lower != upper, 0);
  EXPECT_EQ(lower == NxString("A*"), 1);  // without 0x10 the right-hand string is a pattern
  EXPECT_NE(lower.Compare(NxString("A*"), -1, P | NC), 0);
  EXPECT_EQ(lower.Compare(NxString("abX"), 2, 65535), 0);
  // EqualsIgnoreLanguage compares exactly, whatever the language or width.
  NxString swedish("abc");
  swedish.language = NxLANG_SWEDISH;
  EXPECT_EQ(lower.EqualsIgnoreLanguage(swedish), 1);
  EXPECT_EQ(lower.EqualsIgnoreLanguage(upper), 0);
  EXPECT_EQ(lower.EqualsIgnoreLanguage(NxString(reinterpret_cast<const unsigned short*>(u"abc"))),
            1);
  const NxString text("Caf\xE9 au lait");  // Find searches on collation
  EXPECT_EQ(text.Find(NxString("CAFE"), 0, P | NC | NA), 0);
  EXPECT_EQ(text.Find(NxString("LAIT"), 0, P | NC), 8);
  EXPECT_EQ(text.Find(NxString("LAIT"), 0, P), -1);
  EXPECT_EQ(text.Find(NxString("a?"), 2, 0), 5);
}

TEST_F(StrCmpTest, SetAsteriskAndSetQuestionChangeTheWildcards) {
  struct Restore {
    ~Restore() {
      NxString::SetAsterisk(NxChar('*', NxCS_CP1252, 1));
      NxString::SetQuestion(NxChar('?', NxCS_CP1252, 1));
      NxString::SetEscape(NxChar('\\', NxCS_CP1252, 1));
    }
  } restore;
  EXPECT_EQ(NxString::SetAsterisk(NxChar('%', NxCS_CP1252, 1)), 0);
  EXPECT_EQ(NxString::SetQuestion(NxChar('_', NxCS_CP1252, 1)), 0);
  // The escape is stored by its order, here from a 16-bit character.
  EXPECT_EQ(NxString::SetEscape(NxChar(static_cast<unsigned short>('!'), NxCS_UNICODE, 1)), 0);
  EXPECT_EQ(NxStringIterator::EscapeOrder(), NxChar('!', NxCS_CP1252, 1).Order());
  // Text without a code set keeps the bytes "*" and "?".
  CheckRows(
      {{"abc", "a%", 0, 0}, {"abc", "a_c", 0, 0}, {"abc", "a*", 0, kNe}, {"abc", "a?c", 0, kNe}});
  CheckRows({{"abc", "a*", 0, 0}, {"abc", "a%", 0, kNe}}, 0);
  const std::vector<unsigned short> wide = Units(u"a%");  // the 16-bit form counts as well
  EXPECT_EQ(NxStrCmp(NxCS_CP1252, 1, "abc", NxCS_UNICODE, 1, Raw(wide), 0, -1, 1, nullptr), 0);
  EXPECT_EQ(FindWildcard(NxCS_CP1252, 1, "ab%", 0, 65535, nullptr, 1), 2);
}

TEST_F(StrCmpTest, Hashes) {
  char text[] = "abc", two[] = "ab", cut[2] = {'a', 'b'};
  EXPECT_EQ(HashString(1, NxLANG_NULL, text, -1, 1), 0xFEFE7575u);
  EXPECT_EQ(HashString(NxCS_ORDERS, 0, text, -1, 1), 0xFEFE7575u);
  EXPECT_EQ(HashString(1, 1, text, 0, 1) + HashString(1, 1, text, -2, 1), 0u);
  EXPECT_EQ(HashString(0, 0, text, -1, 1), (('a' * 9u) + 'b') * 9u + 'c');
  EXPECT_EQ(HashString(0, 0, text, 2, 1), 'a' * 9u + 'b');
  const uint32_t full = HashString(1, 1, text, -1, 1);
  EXPECT_NE(full, HashString(0, 0, text, -1, 1));
  EXPECT_EQ(HashString(1, 1, text, 3, 1), full);
  // Rounds behind the end take the weight 0.
  EXPECT_EQ(HashString(1, 1, text, 5, 1), full * 81u);
  EXPECT_EQ(HashString(0, 0, text, 5, 1), HashString(0, 0, text, -1, 1) * 81u);
  // A text cut without a terminator is read no further than maxChars.
  EXPECT_EQ(HashString(1, 1, cut, 2, 1), HashString(1, 1, two, -1, 1));
  // The key hash sees collation, so the same text in 16 bits hashes alike.
  std::vector<unsigned short> wide = Units(u"abc");
  EXPECT_EQ(HashString(NxCS_UNICODE, 1, reinterpret_cast<char*>(wide.data()), -1, 1), full);
  // The string hashes see units: bytes count with their sign, the 7-bit hash keeps 7 bits.
  const NxString ab("ab"), accent("\xE9"),
      wideAb(reinterpret_cast<const unsigned short*>(u"\u0101b"));
  EXPECT_EQ(HashNxString(ab), 'a' * 9u + 'b');
  EXPECT_NE(HashNxString(ab), HashString(ab.codeSet, ab.language, two, -1, 1));
  EXPECT_EQ(HashNxString(accent), static_cast<uint32_t>(-0x17));
  EXPECT_EQ(HashNxString7(accent), 0x69u);
  EXPECT_EQ(HashNxString(wideAb), 0x101u * 9u + 'b');
  EXPECT_EQ(HashNxString7(wideAb), 0x01u * 9u + 'b');
  EXPECT_EQ(HashNxString(NxString()), 0u);
  EXPECT_NE(HashNxString(NxString("abc")), HashNxString(NxString("ABC")));
}

TEST_F(StrCmpTest, FindWildcardAndPositionValue) {
  const std::vector<unsigned short> wide = Units(u"ab?");
  // clang-format off
  const struct { unsigned char codeSet; const char* text;
                 unsigned short start, maxChars, want, offset; }
      rows[] = {
      {1, "ab*c", 0, 65535, 2, 2}, {1, "a?c*", 1, 65535, 3, 3}, {1, "a?c*", 0, 65535, 1, 1},
      {1, "abc*", 0, 3, 65535, 65535}, {1, "abc", 0, 65535, 65535, 65535},
      {NxCS_UNICODE, Raw(wide), 0, 65535, 2, 4},
      {0, "x?y*", 1, 65535, 3, 3}, {0, "x?y*", 0, 65535, 1, 1},
      {0, nullptr, 0, 65535, 65535, 65535}};
  // clang-format on
  for (const auto& r : rows) {
    unsigned short offset = 0;
    EXPECT_EQ(FindWildcard(r.codeSet, 1, r.text, r.start, r.maxChars, &offset, 1), r.want);
    EXPECT_EQ(offset, r.offset);
  }
  EXPECT_EQ(FindWildcard(1, 1, "abc", 0, 65535, nullptr, 1), 65535);

  NxStringIterator bytes("AB\xF0", 0, 0, 1), limited("ABC", 0, 0, 1), none;
  EXPECT_DOUBLE_EQ(PositionValue(bytes, 65535), ((65.0 * 128 + 66) * 128 + 127) * 128);
  EXPECT_DOUBLE_EQ(PositionValue(limited, 1), 65.0 * 128 * 128 * 128);
  EXPECT_DOUBLE_EQ(PositionValue(none, 65535), 0.0);
  auto value = [](const char* text, unsigned short length = 65535) {
    NxStringIterator it(text, NxCS_CP1252, 1, 1);
    return PositionValue(it, length);
  };
  EXPECT_LT(value("abc"), value("abd"));
  EXPECT_LT(value("abd"), value("b"));
  EXPECT_LT(value(""), value("a"));
  // Only the first three digits, letters or ideographs count; spaces and symbols use up the length.
  EXPECT_DOUBLE_EQ(value("a-b c"), value("abc"));
  EXPECT_DOUBLE_EQ(value("abcd"), value("abcz"));
  EXPECT_DOUBLE_EQ(value("a-bc", 2), value("a"));
}

}  // namespace
