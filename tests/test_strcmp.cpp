// Collation-strength comparison, wildcard matching and settings, text hashes, key-row helpers.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"

namespace {

constexpr unsigned short P = NxCMP_NO_WILDCARDS, NC = NxCMP_IGNORE_CASE, NA = NxCMP_IGNORE_ACCENTS,
                         NS = NxCMP_IGNORE_SPACES, EX = NxCMP_EXACT, NY = NxCMP_IGNORE_SYMBOLS;
// Expected results: an exact value, or only a sign / inequality.
constexpr int32_t LT = -1000000, GT = 1000000, NE = 1000001;
using Wide = std::vector<unsigned short>;

void Check(int32_t got, int32_t want, const std::string& what) {
  const bool ok = want == LT ? got < 0 : want == GT ? got > 0 : want == NE ? got != 0 : got == want;
  EXPECT_TRUE(ok) << what << ": got " << got << ", want " << want;
}

// Both texts in Windows Latin-1 (or, with codeSet 0, without a code set), neutral language.
int32_t Cmp(const char* a, const char* b, unsigned short op, short max = -1, unsigned char cs = 1) {
  return NxStrCmp(cs, cs, a, cs, cs, b, op, max, 1, nullptr);
}

const char* Raw(const Wide& units) {
  return reinterpret_cast<const char*>(units.data());
}
// A 16-bit text as the byte pointer the comparison takes.
const char* W(const char16_t* text) {
  return reinterpret_cast<const char*>(text);
}

// clang-format off
struct Row { const char* a; const char* b; unsigned short op; int32_t want; short maxLength = -1; };
struct Full { unsigned char cs1, lang1; const char* a; unsigned char cs2, lang2; const char* b;
              unsigned short op; short maxLength; int32_t want; };
// clang-format on

void CheckRows(const std::vector<Row>& rows, unsigned char codeSet = NxCS_CP1252) {
  for (const Row& r : rows) {
    Check(Cmp(r.a, r.b, r.op, r.maxLength, codeSet), r.want,
          std::string(r.a) + " | " + r.b + " op " + std::to_string(r.op));
  }
}

void CheckFull(const std::vector<Full>& rows) {
  for (size_t i = 0; i < rows.size(); ++i) {
    const Full& r = rows[i];
    Check(NxStrCmp(r.cs1, r.lang1, r.a, r.cs2, r.lang2, r.b, r.op, r.maxLength, 1, nullptr), r.want,
          "row " + std::to_string(i));
  }
}

class StrCmpTest : public ::testing::Test {
 protected:
  void SetUp() override { NxLanguageContext::ResetDefaults(); }
};

TEST_F(StrCmpTest, NullRulesAndMaxLengthZero) {
  const unsigned char N = NxLANG_NULL, O = NxCS_ORDERS;
  // clang-format off
  CheckFull({
      // Both null, whichever form; null against text below with 0x10 or 0x100, else above.
      {0, N, "x", O, 0, "y", P, -1, 0}, {1, N, "", 1, 1, "abc", P, -1, -1},
      {1, N, "", 1, 1, "abc", EX, -1, -1}, {1, 1, "abc", O, 0, "", P, -1, 1},
      {1, 1, "", 1, N, "", 0, -1, 1}, {1, N, "abc", 1, 1, "a*", 0, -1, LT},  // with wildcards
      {1, N, "abc", 1, 1, "*", 0, -1, 0}, {0, N, "abc", 0, 0, "*", 0, -1, 0},  // null is empty
      // maxLength 0 answers 0, but nulls are decided first.
      {1, 1, "abc", 1, 1, "xyz", P, 0, 0}, {0, 0, "abc", 0, 0, "xyz", 0, 0, 0},
      {1, 1, "abc", 1, N, "", P, 0, 1},
      // A null pointer is an empty text; without a code set it has rules of its own.
      {1, 1, nullptr, 1, 1, "", P, -1, 0}, {1, 1, nullptr, 1, 1, "a", P, -1, LT},
      {0, 0, "a", 0, 0, nullptr, 0, -1, 1}, {0, 0, "", 0, 0, nullptr, 0, -1, 0},
      {0, 0, nullptr, 0, 0, "*", 0, -1, -1}, {0, 0, nullptr, 0, 0, "", 0, -1, 0},
      {0, 0, nullptr, 0, 0, "", P, -1, 0}});
  // clang-format on
}

TEST_F(StrCmpTest, StrengthLevelsMasksAndExactCompare) {
  const char *R = "R\xE9sum\xE9", *r = "r\xE9sum\xE9";  // "\351" is é before a hex digit
  // clang-format off
  CheckRows({
      // Primary level first; a prefix sorts first; digits before letters.
      {"abc", "abd", P, LT}, {"b", "abc", P, GT}, {"ab", "abc", P, LT}, {"", "a", P, LT},
      {"Ab", "ac", P, LT}, {"\351b", "ec", P, LT}, {"9", "a", P, LT}, {r, "resumf", P, LT},
      // Case: the first difference decides, lower case first.
      {"abc", "Abc", P, LT}, {"aB", "Ab", P, LT}, {"aB", "Ab", P | NC, 0},
      // Accents: unaccented first, the last difference decides, accents outrank case.
      {"resume", r, P, LT}, {"resume", r, P | NA, 0}, {"\351e", "e\xE9", P, LT},
      {"\351e", "e\xE9", P | NA, 0}, {"Ae", "a\xE9", P, LT}, {"Ae", "a\xE9", P | NA, GT},
      // Spaces count only without 0x80, symbols only without 0x200; neither shifts the letters.
      {"a b", "ab", P, NE}, {"a  b ", " ab", P | NS, 0}, {"a-b", "ab", P | NS, NE},
      {"a-b", "ab", P | NY, 0}, {"a-b c", "abc", P | NY | NS, 0}, {"a b", "ac", P, LT},
      {"a-c", "ab", P, GT}, {"a b", "Ab", P, LT}, {"a b", "Ab", P | NC, GT},  // case over spaces
      // The masks of case and accents.
      {R, "resume", P | NC, NE}, {R, "resume", P | NA, NE}, {R, "resume", P | NC | NA, 0},
      {R, r, P | NC, 0}, {R, "Resume", P | NA, 0},
      // Exact compare ignores nothing, knows no wildcards; full weights put upper case first.
      {"ABC", "abc", EX | NC, LT}, {"a b", "ab", EX | NS, NE}, {"abc", "a*", EX, NE},
      {"ab", "abc", EX, LT}, {"abX", "abY", EX, 0, 2}, {R, "Resume", EX | NA, NE}});
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
      {"", "*", 0, 0}, {"abc", "a*", 0, 0}, {"a", "a*", 0, 0}, {"bac", "a*", 0, NE},
      {"Johnson", "*son", 0, 0}, {"Johnsonx", "*son", 0, NE}, {"abc", "**c", 0, 0},
      {"axbyc", "a*b*c", 0, 0}, {"axbyd", "a*b*c", 0, NE}, {"abc", "a*", P, NE}, {"a*", "a*", P, 0},
      // "?" matches one element (a space too), never the end.
      {"ab", "a?", 0, 0}, {"a b", "a?b", 0, 0}, {"a", "a?", 0, LT}, {"", "?", 0, LT},
      {"abc", "a?", 0, GT}, {"Marie", "?a*e*", 0, 0}, {"Maria", "?a*e*", 0, NE},
      {"xyb", "*?b", 0, 0}, {"b", "*?b", 0, NE},
      // A failed attempt leaves a candidate that carries on.
      {"abbc", "a*bc", 0, 0}, {"abxbc", "a*bc", 0, 0}, {"aab", "*ab", 0, 0},
      {"ababac", "*abac", 0, 0}, {"abcx", "a*bc", 0, NE}, {"abab", "*aba", 0, NE},
      // Matching is at the strength in force; what a star skips takes no part in tie-breaks.
      {"abc", "A*", NC, 0}, {"abc", "A*", 0, NE}, {"xyzB", "*b", NC, 0}, {"x\xE9", "*e", NA, 0},
      {"x\xE9", "*e", 0, NE}, {"XY\xC9", "*e", NC | NA, 0}, {"r\xE9sum\xE9", "r?sum?", 0, 0},
      {"a b-c", "abc*", NS | NY, 0}, {"a b-c", "abc*", 0, NE}});
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
      {"abc", "a?c", 0, 0}, {"abbc", "a*bc", 0, 0}, {"", "*", 0, 0}, {"a", "a?", 0, LT},
      {"abd", "abc", 0, 'd' - 'c'}, {"aBc", "abc", 0, 'B' - 'b'}, {"x?", "*?", 0, 0},
      {"xy", "*?", 0, NE}, {"abX", "abY", 0, 0, 2}, {"abX", "abY", 0, NE, 3},
      // The plain compare answers the difference of unsigned bytes.
      {"abc", "abd", P, 'c' - 'd'}, {"ab", "abc", P, -'c'}, {"\xE9", "e", P, 0xE9 - 'e'},
      {"abX", "abY", P, 0, 2}, {"a*", "abc", P, '*' - 'b'}}, 0);
  // clang-format on
  // Only with 0x80 and a limit is the primary result within maxLength stored.
  int prefix = 77;
  NxStrCmp(1, 1, "abX", 1, 1, "abY", P, 3, 1, &prefix);
  NxStrCmp(1, 1, "abX", 1, 1, "abY", P | NS, -1, 1, &prefix);
  EXPECT_EQ(prefix, 77);
  EXPECT_EQ(NxStrCmp(1, 1, "abcX", 1, 1, "abcY", P | NS, 3, 1, &prefix), 0);
  EXPECT_EQ(prefix, 0);
  EXPECT_LT(NxStrCmp(1, 1, "abX", 1, 1, "abY", P | NS, 3, 1, &prefix), 0);
  EXPECT_LT(prefix, 0);
}

TEST_F(StrCmpTest, CodeSetsAndOrderText) {
  const char *resume = "R\xE9sum\xE9", *yolka = "\xF1\xDB\xDA\xD0";  // ISO 8859-5 "ёлка"
  const char *omega = "\xD9\xEC\xDD\xE3\xE1", *omegaUp = "\xD9\xCC\xC5\xC3\xC1";  // "Ωμέγα"
  const char *wide = W(u"R\u00e9sum\u00e9"), *wideYolka = W(u"\u0451\u043b\u043a\u0430");
  const unsigned char U = NxCS_UNICODE, G = NxLANG_GREEK, R = NxLANG_RUSSIAN, L7 = NxCS_ISO8859_7,
                      L5 = NxCS_ISO8859_5;
  // clang-format off
  CheckFull({
      // The same characters in 8 and 16 bits are equal; a text without code set takes the other's.
      {1, 1, resume, U, 1, wide, P, -1, 0}, {U, 1, wide, 1, 1, "r\xE9sum\xE9s", P, -1, LT},
      {NxCS_UCS2_LEGACY, 1, wide, NxCS_ISO8859_1, 1, resume, P, -1, 0},
      {1, 1, resume, U, 1, W(u"r*M\u00c9"), NC, -1, 0}, {1, 1, "abc", 0, 1, "A*", NC, -1, 0},
      {0, 1, "r\xE9sum\xE9", 1, 1, "R\xE9SUM\xE9", P | NC, -1, 0},
      // Greek and Cyrillic in their 8-bit code sets.
      {L7, G, omega, L7, G, omegaUp, P | NC | NA, -1, 0}, {L7, G, omega, L7, G, omegaUp, P | NC, -1, NE},
      {L5, R, yolka, L5, R, "\xD5\xDB\xDA\xD0", P | NA, -1, 0}, {L5, R, yolka, U, R, wideYolka, P, -1, 0}});
  // clang-format on
  // Order text ends at its terminator: a read behind it is caught by the sanitizer.
  auto orders = [](const char* text) {
    Wide o;
    NxStringIterator it(text, NxCS_CP1252, 1, 1);
    for (unsigned short c = it.GetNextOrder(1); c != 0; c = it.GetNextOrder(1)) o.push_back(c);
    o.push_back(0);
    return o;
  };
  const Wide key = orders("abc"), same = orders("abc"), other = orders("abd"),
             prefix = orders("ab*"), inner = orders("a*c"), text = orders("abxc");
  const unsigned char O = NxCS_ORDERS;
  // clang-format off
  CheckFull({
      {O, 1, Raw(key), O, 1, Raw(same), P, -1, 0}, {O, 1, Raw(key), O, 1, Raw(other), P, -1, LT},
      {O, 1, Raw(key), O, 1, Raw(other), EX, -1, LT}, {O, 1, Raw(text), O, 1, Raw(prefix), 0, -1, 0},
      {O, 1, Raw(text), O, 1, Raw(inner), 0, -1, 0}, {O, 1, Raw(other), O, 1, Raw(inner), 0, -1, NE},
      {1, 1, "abc", O, 1, Raw(key), P, -1, 0}, {1, 1, "abxc", O, 1, Raw(inner), 0, -1, 0}});
  // clang-format on
}

TEST_F(StrCmpTest, UnicodeAndTheLegacySixteenBitCodeSetCompareAlike) {
  // Code set 225 is ordered through 253 by another road: the results must be
  // the same, value for value, in every language and strength, with patterns.
  // clang-format off
  const char16_t* words[] = {
      u"M\u00fcller", u"Mueller", u"Muller", u"Stra\u00dfe", u"Strasse", u"chata", u"hrad", u"Chata",
      u"llama", u"luz", u"\u00c5ngstr\u00f6m", u"Angstrom", u"\u00c6sir", u"\u0153uvre", u"oeuvre",
      u"a b-c", u"abc", u"\u03a9\u03bc\u03ad\u03b3\u03b1", u"\u041c\u043e\u0441\u043a\u0432\u0430",
      u"\u0451\u043b\u043a\u0430", u"M*", u"?a*e*", u"*son", u"Johnson", u"x\u4e2d\u6587", u"",
      u"R\u00e9sum\u00e9", u"resume", u"\u010capek", u"Capek", u"Dvo\u0159\u00e1k"};
  // clang-format on
  for (unsigned char lang = 0; lang <= 8; ++lang)
    for (unsigned short op : {0x10, 0x30, 0x50, 0x70, 0x90, 0x210, 0x2F0, 0, 0x20, 0x60, 0x100})
      for (const char16_t* a : words)
        for (const char16_t* b : words)
          for (short max : {-1, 3})
            ASSERT_EQ(
                NxStrCmp(NxCS_UNICODE, lang, W(a), NxCS_UNICODE, lang, W(b), op, max, 1, nullptr),
                NxStrCmp(NxCS_UCS2_LEGACY, lang, W(a), NxCS_UCS2_LEGACY, lang, W(b), op, max, 1,
                         nullptr))
                << "language " << int(lang) << " op " << op << " max " << max;
}

TEST_F(StrCmpTest, LanguagesOrderTheirOwnWay) {
  const unsigned short L1 = P | NC | NA;
  const unsigned char U = NxCS_UNICODE, GP = NxLANG_GERMAN_PHONEBOOK, CZ = NxLANG_CZECH,
                      ES = NxLANG_SPANISH_TRADITIONAL, SV = NxLANG_SWEDISH;
  const char *strasse = W(u"Stra\u00dfe"), *muller = W(u"M\u00fcller"), *chata = W(u"chata");
  // clang-format off
  CheckFull({
      // Expansions at the primary level: "ß" is "ss", "Æ" is "AE"; German phonebook "ü" is "ue".
      {U, 1, strasse, U, 1, W(u"STRASSE"), L1, -1, 0}, {U, 1, strasse, U, 1, W(u"Strasse"), P, -1, NE},
      {U, 1, W(u"\u00c6r\u00f8"), U, 1, W(u"aero"), L1, -1, 0}, {U, GP, muller, U, GP, W(u"Mueller"), L1, -1, 0},
      {U, 1, muller, U, 1, W(u"Mueller"), L1, -1, NE}, {U, 1, muller, U, 1, W(u"Muller"), L1, -1, 0},
      // Czech "ch" after "h", traditional Spanish "ll" after "l", Swedish "ö" after "z".
      {U, CZ, chata, U, CZ, W(u"hrad"), P, -1, GT}, {U, 1, chata, U, 1, W(u"hrad"), P, -1, LT},
      {U, ES, W(u"llama"), U, ES, W(u"luz"), P, -1, GT}, {U, 1, W(u"llama"), U, 1, W(u"luz"), P, -1, LT},
      {U, SV, W(u"\u00f6l"), U, SV, W(u"zebra"), P, -1, GT}, {U, 1, W(u"\u00f6l"), U, 1, W(u"zebra"), P, -1, LT},
      // A pattern follows the language too.
      {U, CZ, chata, U, CZ, W(u"ch?ta"), 0, -1, 0}, {U, GP, muller, U, GP, W(u"Mue*"), NC | NA, -1, 0}});
  // clang-format on
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
  // Text without a code set keeps the bytes "*" and "?"; the 16-bit form counts as well.
  CheckRows(
      {{"abc", "a%", 0, 0}, {"abc", "a_c", 0, 0}, {"abc", "a*", 0, NE}, {"abc", "a?c", 0, NE}});
  CheckRows({{"abc", "a*", 0, 0}, {"abc", "a%", 0, NE}}, 0);
  EXPECT_EQ(NxStrCmp(NxCS_CP1252, 1, "abc", NxCS_UNICODE, 1, W(u"a%"), 0, -1, 1, nullptr), 0);
  EXPECT_EQ(FindWildcard(NxCS_CP1252, 1, "ab%", 0, 65535, nullptr, 1), 2);
}

TEST_F(StrCmpTest, Hashes) {
  char text[] = "abc", two[] = "ab", cut[2] = {'a', 'b'};
  EXPECT_EQ(HashString(1, NxLANG_NULL, text, -1, 1), 0xFEFE7575u);
  EXPECT_EQ(HashString(NxCS_ORDERS, 0, text, -1, 1), 0xFEFE7575u);
  EXPECT_EQ(HashString(1, 1, text, 0, 1) + HashString(1, 1, text, -2, 1), 0u);
  EXPECT_EQ(HashString(0, 0, text, 2, 1), 'a' * 9u + 'b');
  // Rounds behind the end take the weight 0.
  EXPECT_EQ(HashString(0, 0, text, 5, 1), ((('a' * 9u) + 'b') * 9u + 'c') * 81u);
  const uint32_t full = HashString(1, 1, text, -1, 1);
  EXPECT_EQ(HashString(1, 1, text, 5, 1), full * 81u);
  // A text cut without a terminator is read no further than maxChars.
  EXPECT_EQ(HashString(1, 1, cut, 2, 1), HashString(1, 1, two, -1, 1));
  // The key hash sees collation, so the same text in 16 bits hashes alike.
  char16_t wide[] = u"abc";
  EXPECT_EQ(HashString(NxCS_UNICODE, 1, reinterpret_cast<char*>(wide), -1, 1), full);
  // The string hashes see units: bytes count with their sign, the 7-bit hash keeps 7 bits.
  const NxString accent("\xE9"), wideAb(reinterpret_cast<const unsigned short*>(u"\u0101b"));
  EXPECT_EQ(HashNxString(NxString("ab")), 'a' * 9u + 'b');
  EXPECT_EQ(HashNxString(accent), static_cast<uint32_t>(-0x17));
  EXPECT_EQ(HashNxString7(accent), 0x69u);
  EXPECT_EQ(HashNxString(wideAb), 0x101u * 9u + 'b');
  EXPECT_EQ(HashNxString7(wideAb), 0x01u * 9u + 'b');
  EXPECT_EQ(HashNxString(NxString()), 0u);
}

TEST_F(StrCmpTest, FindWildcardAndPositionValue) {
  const unsigned short X = 65535;
  // clang-format off
  const struct { unsigned char cs; const char* text; unsigned short start, max, want, at; } rows[] = {
      {1, "ab*c", 0, X, 2, 2}, {1, "a?c*", 1, X, 3, 3}, {1, "a?c*", 0, X, 1, 1}, {1, "abc*", 0, 3, X, X},
      {1, "abc", 0, X, X, X}, {NxCS_UNICODE, W(u"ab?"), 0, X, 2, 4}, {0, "x?y*", 1, X, 3, 3},
      {0, "x?y*", 0, X, 1, 1}, {0, nullptr, 0, X, X, X}};
  // clang-format on
  for (const auto& r : rows) {
    unsigned short offset = 0;
    EXPECT_EQ(FindWildcard(r.cs, 1, r.text, r.start, r.max, &offset, 1), r.want);
    EXPECT_EQ(offset, r.at);
  }
  EXPECT_EQ(FindWildcard(1, 1, "abc", 0, X, nullptr, 1), X);

  NxStringIterator bytes("AB\xF0", 0, 0, 1), limited("ABC", 0, 0, 1), none;
  EXPECT_DOUBLE_EQ(PositionValue(bytes, X), ((65.0 * 128 + 66) * 128 + 127) * 128);
  EXPECT_DOUBLE_EQ(PositionValue(limited, 1), 65.0 * 128 * 128 * 128);
  EXPECT_DOUBLE_EQ(PositionValue(none, X), 0.0);
  auto value = [](const char* text, unsigned short length = 65535) {
    NxStringIterator it(text, NxCS_CP1252, 1, 1);
    return PositionValue(it, length);
  };
  EXPECT_TRUE(value("") < value("a") && value("abc") < value("abd") && value("abd") < value("b"));
  // Only the first three digits, letters or ideographs count; spaces and symbols use up the length.
  EXPECT_DOUBLE_EQ(value("a-b c"), value("abc"));
  EXPECT_DOUBLE_EQ(value("abcd"), value("abcz"));
  EXPECT_DOUBLE_EQ(value("a-bc", 2), value("a"));
}

}  // namespace
