// Tests of the string comparators: every record form against every other in
// both byte orders, keys cut at every length, keys that ended at a change of
// collation state, patterns against keys, the comparison options carried
// through, nulls, arrays, and the legacy strings.  The references are
// NxStrCmp on the texts themselves and byte order for text without a code
// set.  Last, key order against text order on a few thousand real names.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "string_keys.h"

namespace {

using nxtest::Bytes;
using nxtest::Key;
using nxtest::KeyRecord;
using nxtest::MakeString;
using nxtest::Sign;

constexpr unsigned short kPlain = NxCMP_NO_WILDCARDS;

int32_t Cmp(const Bytes& a, const Bytes& b, unsigned short cmpOp, int& status,
            unsigned char format = 1, uint32_t length1 = 0, uint32_t length2 = 0,
            uint32_t count = 1, bool old = false) {
  return (old ? OldStringCompare : StringCompare)(
      format, length1, const_cast<unsigned char*>(a.data()), length2,
      const_cast<unsigned char*>(b.data()), cmpOp, count, status);
}

// The text order the keys must keep.
int TextOrder(const NxString& a, const NxString& b, unsigned short cmpOp = kPlain) {
  return Sign(NxStrCmp(a.codeSet, a.language, a.StrGet(), b.codeSet, b.language, b.StrGet(), cmpOp,
                       -1, 8, nullptr));
}

// Names that the 8-bit code set holds, so that they fit old records too.
const char* const kLatin[] = {"Lefèvre", "Lefebvre", "LEFEVRE", "Léger",        "leger",
                              "Müller",  "MÜLLER",   "Muller",  "Mül-ler",      "Mueller",
                              "Ærø",     "O'Brien",  "Obrien",  "van der Berg", "Van Der Berg",
                              "",        "a",        "A",       "Straße",       "Çelik"};

enum Form { kText, kKey, kOld };

Bytes Record(const std::string& utf8, Form form, unsigned char format) {
  switch (form) {
    case kText: {
      const NxString s = MakeString(utf8);
      return nxtest::TextRecords(&s, 1, format);
    }
    case kKey:
      return Key(utf8, format);
    case kOld: {
      const NxString s = MakeString(utf8, NxLANG_NEUTRAL, NxCS_CP1252);
      return nxtest::OldRecord(&s, 1, format);
    }
  }
  return {};
}

TEST(StringKeys, EveryRecordFormAgainstEveryOtherKeepsTheTextOrder) {
  // Options that change the order: case and accents, spaces and symbols.
  const unsigned short ops[] = {kPlain, kPlain | NxCMP_IGNORE_CASE | NxCMP_IGNORE_ACCENTS,
                                kPlain | NxCMP_IGNORE_SPACES | NxCMP_IGNORE_SYMBOLS};
  for (const char* x : kLatin) {
    for (const char* y : kLatin) {
      const NxString a = MakeString(x);
      const NxString b = MakeString(y);
      for (unsigned short op : ops) {
        const int expected = TextOrder(a, b, op);
        int status = -1;
        EXPECT_EQ(expected, Sign(StringCompare(8, 0, const_cast<NxString*>(&a), 0,
                                               const_cast<NxString*>(&b), op, 1, status)));
        for (unsigned char format : {1, 2}) {
          for (Form f1 : {kText, kKey, kOld}) {
            for (Form f2 : {kText, kKey, kOld}) {
              const Bytes r1 = Record(x, f1, format);
              const Bytes r2 = Record(y, f2, format);
              // Two old records hold text without a code set: byte order.
              const int want = f1 == kOld && f2 == kOld
                                   ? Sign(std::string(r1.begin() + 2, r1.end())
                                              .compare(std::string(r2.begin() + 2, r2.end())))
                                   : expected;
              const uint32_t n1 = op == kPlain ? uint32_t(r1.size()) : 0;  // stated or not
              const uint32_t n2 = op == kPlain ? uint32_t(r2.size()) : 0;
              EXPECT_EQ(want, Sign(Cmp(r1, r2, op, status, format, n1, n2)))
                  << x << " | " << y << " forms " << f1 << f2 << " format " << int(format)
                  << " op " << op;
              EXPECT_EQ(0, status);
            }
          }
        }
      }
    }
  }
}

// Whole key records against each other give what NxStrCmp gives their
// orders as order text: random orders of every class, in several states,
// with every option.
TEST(StringKeys, WholeKeysCompareAsTheirOrderText) {
  std::mt19937 rng(4242);
  const auto randomOrder = [&rng]() -> unsigned short {
    switch (rng() % 6) {
      case 0:
        return 1 + rng() % 79;  // space
      case 1:
        return 80 + rng() % 200;  // symbol
      case 2:
        return 0x3F00 + rng() % 0x100;  // digit
      case 3:
        return 0x8000 + rng() % 0x7FFF;  // ideograph
      default:  // a few letters, with case and accents, so that levels tie
        return 0x4000 | (rng() % 4) << 12 | (rng() % 3) << 7 | (3 + rng() % 3) << 2;
    }
  };
  const unsigned short ops[] = {kPlain, 0, kPlain | NxCMP_IGNORE_CASE, kPlain | NxCMP_IGNORE_ACCENTS,
                                kPlain | NxCMP_IGNORE_SPACES | NxCMP_IGNORE_SYMBOLS,
                                kPlain | NxCMP_IGNORE_CASE | NxCMP_IGNORE_ACCENTS};
  int differences = 0;
  for (int round = 0; round < 20000; ++round) {
    std::vector<unsigned short> x, y;
    for (size_t n = rng() % 6; n > 0; --n) x.push_back(randomOrder());
    y = x;
    // Mostly small edits, so that the weaker levels decide.
    for (size_t n = 1 + rng() % 2; n > 0; --n) {
      if (!y.empty() && rng() % 3 != 0)
        y[rng() % y.size()] = randomOrder();
      else
        y.push_back(randomOrder());
    }
    const unsigned char states[] = {1, 2, 20, 33};
    const unsigned char state = states[rng() % 4];
    // Now and then the second key is in another state.
    const unsigned char stateB = rng() % 8 == 0 ? states[rng() % 4] : state;
    const unsigned short op = ops[rng() % 6];
    const unsigned char format = 1 + rng() % 2;
    const Bytes a = nxtest::OrderKey(state, x, format), b = nxtest::OrderKey(stateB, y, format);
    Bytes textA(a.begin() + 4, a.end()), textB(b.begin() + 4, b.end());
    textA.back() = 0;
    textB.back() = 0;
    const int want = Sign(NxStrCmp(NxCS_ORDERS, state, reinterpret_cast<char*>(textA.data()),
                                   NxCS_ORDERS, stateB, reinterpret_cast<char*>(textB.data()), op,
                                   -1, format, nullptr));
    int status = -1;
    ASSERT_EQ(want, Sign(Cmp(a, b, op, status, format))) << "round " << round;
    ASSERT_EQ(0, status);
    differences += want != 0;
  }
  EXPECT_GT(differences, 10000);
}

TEST(StringKeys, SoftCutIsWholeAndTheStateBitIsPartialEvenWhenWhole) {
  const Bytes key = Key("abcdef");
  int status = -1;
  // A stated length that leaves out only the closing 0xFF.
  EXPECT_EQ(0, Cmp(key, key, kPlain, status, 1, 0, uint32_t(key.size() - 1)));
  EXPECT_EQ(0, status);
  EXPECT_EQ(0, Cmp(key, key, kPlain, status, 1, uint32_t(key.size() - 1), 0));
  EXPECT_EQ(0, status);

  // "Li-" then a Han character: the key ends at the change of state.
  const Bytes ended = Key("Li-李");
  ASSERT_NE(0, ended[3] & 0x80);
  EXPECT_EQ(0, Cmp(ended, Key("Li-"), kPlain, status));
  EXPECT_EQ(2101, status);
  // The bit doesn't reach the comparison: the state without it decides.
  EXPECT_GT(Cmp(ended, Key("Li"), kPlain, status), 0);
  EXPECT_EQ(2101, status);
  // As the value held against a stored key, with wildcards on, it is a
  // prefix: what starts with it matches, what is shorter is decided.
  EXPECT_EQ(0, Cmp(Key("Li-abc"), ended, 0, status));
  EXPECT_EQ(2101, status);
  EXPECT_LT(Cmp(Key("Lh"), ended, 0, status), 0);
  EXPECT_EQ(2101, status);
}

// A key cut at every length, held against whole keys: equal as far as the
// bytes go and partial, decided where a difference lies within them, and
// whole again from the length that leaves out only the closing 0xFF.
TEST(StringKeys, KeysCutAtEveryLengthGiveTheExactStatus) {
  for (unsigned char format : {1, 2}) {
    const Bytes key = Key("Lefèvre", format);  // 7 orders
    const uint32_t whole = uint32_t(key.size());
    ASSERT_EQ(4u + 7 * 2 + 2, whole);
    const Bytes same = Key("Lefèvre", format);
    const Bytes other = Key("Lefebvre", format);  // differs at order 3
    const Bytes shorter = Key("Lef", format);
    for (uint32_t n = 1; n <= whole; ++n) {
      const bool cut = n < whole - 1;
      // Orders at hand: a half order at an odd length doesn't count.
      const int32_t chars = n > 4 ? int32_t(n - 4) / 2 : 0;
      int status = -1;
      SCOPED_TRACE(testing::Message() << "format " << int(format) << " length " << n);

      EXPECT_EQ(0, Cmp(key, same, kPlain, status, format, n));
      EXPECT_EQ(cut ? 2101 : 0, status);
      // Held the other way round, the stored key is whole.
      EXPECT_EQ(0, Cmp(same, key, kPlain, status, format, 0, n));
      EXPECT_EQ(cut ? 2101 : 0, status);

      const int32_t r = Cmp(key, other, kPlain, status, format, n);
      EXPECT_EQ(cut ? 2101 : 0, status);
      EXPECT_EQ(chars > 3 || !cut ? Sign(Cmp(key, other, kPlain, status, format)) : 0, Sign(r));

      // Against a text of 3 orders: up to 3 orders at hand nothing is
      // known; with 4 the key is known to go on behind the text.
      const int32_t s = Cmp(key, shorter, kPlain, status, format, n);
      EXPECT_EQ(chars > 3 || !cut ? 1 : 0, Sign(s));
      EXPECT_EQ(cut && chars <= 3 ? 2101 : 0, status);
      // Ignoring spaces asks for the partial result on every cut.
      Cmp(key, shorter, kPlain | NxCMP_IGNORE_SPACES, status, format, n);
      EXPECT_EQ(cut ? 2101 : 0, status);
    }
  }
}

TEST(StringKeys, CutsWithMoreThanAKeyHoldsHaveNoAnswer) {
  const std::string letters(200, 'x');
  const Bytes key = Key(letters, 1, 300);  // longer than any index key
  ASSERT_EQ(300u, key.size());
  const Bytes other = Key("x");
  for (uint32_t n : {258u, 260u, 299u}) {  // 254, 256, 295 bytes of text
    int status = 0;
    EXPECT_EQ(-1, Cmp(key, other, kPlain, status, 1, n));
    EXPECT_EQ(-2999, status);
    EXPECT_EQ(-1, Cmp(other, key, kPlain, status, 1, 0, n));
    EXPECT_EQ(-2999, status);
  }
  int status = 0;
  EXPECT_GT(Cmp(key, other, kPlain, status, 1, 257), 0);  // 253 bytes: a key may be cut so
  EXPECT_EQ(0, status);
  // A text record is no different.
  const NxString s = MakeString(letters);
  const Bytes text = nxtest::TextRecords(&s, 1);
  EXPECT_EQ(-1, Cmp(text, other, kPlain, status, 1, 300));
  EXPECT_EQ(-2999, status);
}

TEST(StringKeys, PatternsAgainstKeys) {
  const char* const names[] = {"Lefèvre", "Lefebvre", "Léger", "Müller", "Mueller",
                               "abbc",    "abc",      "",      "Zoë"};
  const char* const patterns[] = {"Le*",  "*vre", "L*e",  "?efèvre", "*",   "L?ger", "a*bc",
                                  "M*er", "*ü*",  "Lef?", "Lef*?",   "**e", "?"};
  for (const char* name : names) {
    const NxString text = MakeString(name);
    for (const char* pattern : patterns) {
      const NxString p = MakeString(pattern);
      for (unsigned short op : {0, NxCMP_IGNORE_CASE | NxCMP_IGNORE_ACCENTS}) {
        int status = -1;
        const int32_t r = Cmp(KeyRecord(text), KeyRecord(p), op, status);
        EXPECT_EQ(TextOrder(text, p, op) == 0, r == 0) << name << " ~ " << pattern;
        EXPECT_EQ(0, status);
      }
    }
  }

  // A stored key cut behind 5 orders: a pattern that ends in its only
  // asterisk is decided; one with text behind its asterisk isn't.
  const Bytes cut = Key("abcdefgh");
  const uint32_t five = 4 + 5 * 2;
  int status = -1;
  EXPECT_EQ(0, Cmp(cut, Key("ab*"), 0, status, 1, five));
  EXPECT_EQ(0, status);
  EXPECT_EQ(0, Cmp(cut, Key("a*h"), 0, status, 1, five));
  EXPECT_EQ(2101, status);
  EXPECT_NE(0, Cmp(cut, Key("ax*"), 0, status, 1, five));
  EXPECT_EQ(0, status);
  // With wildcards off the asterisk is an ordinary symbol, and the table of
  // who is cut decides the status.
  EXPECT_NE(0, Cmp(cut, Key("ab*"), kPlain, status, 1, five));
  EXPECT_EQ(0, status);
}

TEST(StringKeys, NullsOrderFirstAndEmptyStringsSecond) {
  NxString null;
  null.SetNullValue();
  const NxString empty = MakeString("");
  const NxString a = MakeString("a");
  const NxString strings[] = {null, empty, a};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      const int want = Sign(i - j);
      int status = -1;
      EXPECT_EQ(want, Sign(StringCompare(8, 0, const_cast<NxString*>(&strings[i]), 0,
                                         const_cast<NxString*>(&strings[j]), kPlain, 1, status)));
      EXPECT_EQ(want, Sign(Cmp(KeyRecord(strings[i]), KeyRecord(strings[j]), kPlain, status)))
          << i << " " << j;
      EXPECT_EQ(want, Sign(Cmp(nxtest::TextRecords(&strings[i], 1, 2),
                               nxtest::TextRecords(&strings[j], 1, 2), kPlain, status, 2)));
    }
  }
  // With wildcards on, a null is an empty text against the pattern.
  int status = -1;
  EXPECT_EQ(0, Cmp(KeyRecord(null), Key("*"), 0, status));
  EXPECT_LT(Cmp(KeyRecord(null), Key("a*"), 0, status), 0);
}

TEST(StringKeys, ArraysCompareElementByElement) {
  const NxString first[] = {MakeString("Lefèvre"), MakeString("Müller"), MakeString("Zoë")};
  const NxString second[] = {MakeString("Lefèvre"), MakeString("Muller"), MakeString("Abc")};
  int status = -1;
  for (unsigned char format : {1, 2}) {
    const Bytes a = nxtest::TextRecords(first, 3, format);
    const Bytes b = nxtest::TextRecords(second, 3, format);
    EXPECT_EQ(TextOrder(first[1], second[1]), Sign(Cmp(a, b, kPlain, status, format, 0, 0, 3)));
    EXPECT_EQ(0, status);
    // A stated length that leaves 4 bytes behind the first element: no room
    // for another record; 5 bytes: the second element is cut.
    const uint32_t firstRecord = 4 + 7 * 2 + 2;
    EXPECT_EQ(0, Cmp(a, a, kPlain, status, format, firstRecord + 4, 0, 2));
    EXPECT_EQ(2101, status);
    EXPECT_EQ(0, Cmp(a, a, kPlain, status, format, firstRecord + 5, 0, 2));
    EXPECT_EQ(2101, status);
  }
  // Old records hold the whole array; their strings are walked by their
  // terminators, in both rows, and bytes order them.
  NxString eight1[3], eight2[3];
  for (int i = 0; i < 3; ++i) {
    (eight1[i] = first[i]).MapToCodeSet(NxCS_CP1252);
    (eight2[i] = second[i]).MapToCodeSet(NxCS_CP1252);
  }
  const Bytes old1 = nxtest::OldRecord(eight1, 3), old2 = nxtest::OldRecord(eight2, 3);
  for (bool oldRow : {false, true}) {
    EXPECT_GT(Cmp(old1, old2, kPlain, status, 1, 0, 0, 3, oldRow), 0);
    EXPECT_EQ(0, status);
    EXPECT_EQ(0, Cmp(old1, old1, kPlain, status, 1, 0, 0, 4, oldRow));  // one more than it holds
    EXPECT_EQ(2101, status);
  }
  // The old row takes a cut record for an old one.
  EXPECT_EQ(0, Cmp(old1, old1, kPlain, status, 1, 2 + 5, 0, 1, true));
  EXPECT_EQ(2101, status);
}

// The legacy strings: one record for the array, the byte map, and a
// wildcard matcher of their own.
template <class X>
Bytes Legacy(std::vector<const char*> texts, bool raw = false) {
  return nxtest::LegacyRecord<X>(texts, raw);
}

template <class X>
int32_t LegacyCmp(const Bytes& a, const Bytes& b, unsigned short cmpOp, int& status,
                  uint32_t length1 = 0, uint32_t length2 = 0, uint32_t count = 1) {
  return (std::is_same<X, NxIString>::value ? NxIStringCompare : NxCaseIStringCompare)(
      1, length1, const_cast<unsigned char*>(a.data()), length2,
      const_cast<unsigned char*>(b.data()), cmpOp, count, status);
}

TEST(StringKeys, LegacyStrings) {
  using I = NxIString;
  using C = NxCaseIString;
  int status = -1;
  // Wildcards: "*", "?", and "\" that takes the next character as it stands.
  const Bytes abc = Legacy<I>({"abc"});
  EXPECT_EQ(0, LegacyCmp<I>(abc, Legacy<I>({"a*c"}), 0, status));
  EXPECT_EQ(0, LegacyCmp<I>(abc, Legacy<I>({"?b?"}), 0, status));
  EXPECT_NE(0, LegacyCmp<I>(abc, Legacy<I>({"a\\*c"}), 0, status));
  EXPECT_EQ(0, LegacyCmp<I>(Legacy<I>({"a*c"}), Legacy<I>({"a\\*c"}), 0, status));
  EXPECT_GT(LegacyCmp<I>(abc, Legacy<I>({"ab?d"}), 0, status), 0);
  EXPECT_NE(0, LegacyCmp<I>(abc, Legacy<I>({"a*c"}), kPlain, status));
  // Equal by the map but not in bytes: NxIString falls back on the bytes,
  // NxCaseIString folds case.
  I i1("ABC"), i2("abc");
  EXPECT_NE(0, NxIStringCompare(8, 0, &i1, 0, &i2, 0, 1, status));
  C c1("ABC"), c2("abc"), c3("ABD");
  EXPECT_EQ(0, NxCaseIStringCompare(8, 0, &c1, 0, &c2, 0, 1, status));
  EXPECT_LT(NxCaseIStringCompare(8, 0, &c1, 0, &c3, 0, 1, status), 0);

  // Cut records: the second at 254 bytes or more has no answer; a cut first
  // one is partial while the other string reaches beyond its bytes.
  const std::string longText(300, 'q');
  const Bytes longRecord = Legacy<I>({longText.c_str()});
  EXPECT_EQ(-1, LegacyCmp<I>(abc, longRecord, kPlain, status, 0, 3 + 260));
  EXPECT_EQ(-2999, status);
  EXPECT_EQ(0, LegacyCmp<I>(Legacy<I>({"qq"}), longRecord, kPlain, status, 0, 3 + 3));
  EXPECT_EQ(0, LegacyCmp<I>(longRecord, Legacy<I>({"qqq"}), kPlain, status, 3 + 3));
  EXPECT_EQ(2101, status);
  EXPECT_GT(LegacyCmp<I>(longRecord, Legacy<I>({"qa"}), kPlain, status, 3 + 3), 0);
  EXPECT_EQ(0, status);

  // Arrays, element by element.
  const Bytes two = Legacy<C>({"abc", "def"});
  EXPECT_EQ(0, LegacyCmp<C>(two, Legacy<C>({"ABC", "DEF"}), kPlain, status, 0, 0, 2));
  EXPECT_LT(LegacyCmp<C>(two, Legacy<C>({"abc", "deg"}), kPlain, status, 0, 0, 2), 0);
  EXPECT_EQ(0, LegacyCmp<C>(two, two, kPlain, status, 0, 0, 3));
  EXPECT_EQ(2101, status);

  // Raw keys (mapped text) against patterns: NxCaseIString matches what it
  // can and calls it partial; NxIString can't tell.
  NxTypeMgr mgr;
  C value("abcdef");
  Bytes key(16);
  key.resize(mgr.Translate(NxTYPE_NxCaseIString, key.data(), 0x81, 16, &value, 8, 0, 1));
  ASSERT_EQ(0xC0, key[0]);
  EXPECT_EQ(0, LegacyCmp<C>(key, Legacy<C>({"*"}), 0, status));
  EXPECT_EQ(0, status);
  EXPECT_EQ(0, LegacyCmp<C>(key, Legacy<C>({"ABC*"}), 0, status));
  EXPECT_EQ(2101, status);
  EXPECT_NE(0, LegacyCmp<C>(key, Legacy<C>({"ABD*"}), 0, status));
  EXPECT_EQ(0, LegacyCmp<I>(Legacy<I>({"abcdef"}, true), Legacy<I>({"zz*"}), 0, status));
  EXPECT_EQ(2101, status);
}

// ---------------------------------------------------------------------------
// Key order against text order.

std::vector<std::string> ShuffledNames(size_t extra) {
  std::vector<std::string> names(nxtest::kNames, nxtest::kNames + nxtest::kNameCount);
  std::mt19937 rng(20261205);
  const size_t real = names.size();
  const char* const joints[] = {" ", "-", "", ", "};
  for (size_t i = 0; i < extra; ++i)
    names.push_back(names[rng() % real] + joints[rng() % 4] + names[rng() % real]);
  std::shuffle(names.begin(), names.end(), rng);
  return names;
}

struct Entry {
  NxString text;
  Bytes key;
  bool complete;  // neither cut nor ended at a change of state
};

// Sorting key records with the row's comparator gives the order NxStrCmp
// gives their texts, wherever the key holds the whole text.  A key that
// ended at a change of collation state (a Latin name followed by a Han
// character) or was cut holds only a prefix: against it the comparator
// reports 2101 wherever it can't follow the texts.
TEST(StringKeys, KeyOrderIsTextOrder) {
  const std::vector<std::string> names = ShuffledNames(4500);
  std::vector<Entry> entries;
  for (const std::string& name : names) {
    Entry e{MakeString(name), {}, false};
    e.key = KeyRecord(e.text, 1, NxINDEX_MAX_KEYLEN);
    const uint32_t L = uint32_t(e.key[0] | e.key[1] << 8);
    e.complete = (e.key[3] & 0x80) == 0 && L + 2 == e.key.size();
    entries.push_back(std::move(e));
  }
  std::vector<const Entry*> complete;
  for (const Entry& e : entries)
    if (e.complete) complete.push_back(&e);
  ASSERT_GT(complete.size(), 2500u);
  ASSERT_LT(complete.size(), entries.size());

  std::vector<const Entry*> byKey = complete;
  std::stable_sort(byKey.begin(), byKey.end(), [](const Entry* a, const Entry* b) {
    int status = 0;
    return Cmp(a->key, b->key, kPlain, status, 1, uint32_t(a->key.size()),
               uint32_t(b->key.size())) < 0;
  });
  std::vector<const Entry*> byText = complete;
  std::stable_sort(byText.begin(), byText.end(), [](const Entry* a, const Entry* b) {
    return TextOrder(a->text, b->text) < 0;
  });
  for (size_t i = 0; i < byKey.size(); ++i)
    ASSERT_EQ(0, TextOrder(byKey[i]->text, byText[i]->text)) << "place " << i;

  // Every pair that involves a prefix: either the signs agree, or the
  // comparator said it couldn't tell.
  int prefixes = 0;
  for (const Entry& a : entries) {
    if (a.complete) continue;
    ++prefixes;
    for (size_t j = 0; j < entries.size(); j += 7) {
      const Entry& b = entries[j];
      for (int side = 0; side < 2; ++side) {
        const Entry& x = side == 0 ? a : b;
        const Entry& y = side == 0 ? b : a;
        int status = 0;
        const int r = Sign(Cmp(x.key, y.key, kPlain, status, 1, uint32_t(x.key.size()),
                               uint32_t(y.key.size())));
        if (r != TextOrder(x.text, y.text)) {
          ASSERT_EQ(2101, status);
        }
      }
    }
  }
  EXPECT_GT(prefixes, 10);
}

}  // namespace
