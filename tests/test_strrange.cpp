// Tests of the string range rows: the narrowed keys of texts and patterns
// (byte by byte, and as bounds that hold every matching key), the estimate
// of each operator against the arithmetic of positions computed here, ties,
// keys that ended at a change of state, nulls and empty strings, the old
// string row, and the legacy rows' four-byte numbers.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "string_keys.h"
#include "test_support.h"

namespace {

using nxtest::Bytes;
using nxtest::Key;
using nxtest::KeyRecord;
using nxtest::MakeString;

constexpr unsigned short kEq = 1, kLt = 2, kGt = 4, kLe = 3, kGe = 5, kNe = 6;

// One call of the row with fresh narrowed ends; the keys are copied out and
// freed.
struct Estimate {
  float share = 0;
  unsigned short op = 0;
  Bytes low, high;
  bool hasLow = false, hasHigh = false;
};

Estimate Eval(char id, const Bytes* lowBound, const Bytes* highBound, unsigned short op,
             Bytes value, unsigned char format = 1, bool withNarrowed = true,
             unsigned factory = 5) {
  Bytes low = lowBound != nullptr ? *lowBound : Bytes();
  Bytes high = highBound != nullptr ? *highBound : Bytes();
  NxIdxBounds bounds{low.data(), high.data(), static_cast<unsigned char>(low.size()),
                     static_cast<unsigned char>(high.size())};
  NxIdxBounds narrowed{nullptr, nullptr, 0, 0};
  Estimate e;
  e.op = op;
  const Bytes before = value;
  e.share = NxTypeMgr(factory).EvalAndBound(id, lowBound != nullptr ? &bounds : nullptr, e.op,
                                            value.data(), format, 1,
                                            withNarrowed ? &narrowed : nullptr, nullptr);
  // The records handed in are as they were.
  EXPECT_EQ(before, value);
  if (lowBound != nullptr) {
    EXPECT_EQ(*lowBound, low);
    EXPECT_EQ(*highBound, high);
  }
  const auto take = [](void* key, unsigned char length, Bytes& out, bool& has) {
    has = key != nullptr;
    if (has) out.assign(static_cast<unsigned char*>(key), static_cast<unsigned char*>(key) + length);
    std::free(key);
  };
  take(narrowed.low, narrowed.lowLength, e.low, e.hasLow);
  take(narrowed.high, narrowed.highLength, e.high, e.hasHigh);
  return e;
}

Estimate Strings(const char* low, const char* high, unsigned short op, const char* value,
                 unsigned char format = 1, bool withNarrowed = true) {
  const Bytes l = Key(low, format);
  const Bytes h = Key(high, format);
  return Eval(NxTYPE_NxString, &l, &h, op, Key(value, format), format, withNarrowed);
}

Bytes Orders(unsigned char state, const std::vector<unsigned short>& orders,
             unsigned char format = 1) {
  return nxtest::OrderKey(state, orders, format);
}

// The orders of a text as its key holds them.
std::vector<unsigned short> OrdersOf(const char* utf8) {
  const Bytes key = Key(utf8);
  std::vector<unsigned short> orders;
  const unsigned L = key[0] | key[1] << 8;
  for (unsigned at = 4; at + 1 < L; at += 2) orders.push_back(key[at] | key[at + 1] << 8);
  return orders;
}

TEST(StringRanges, NarrowedKeysOfPatternsAndTexts) {
  for (unsigned char format : {1, 2}) {
    const Bytes aaa = Key("aaa", format), azz = Key("azz", format);
    const std::vector<unsigned short> abc = OrdersOf("abc");
    std::vector<unsigned short> closed = abc;
    closed.push_back(0xFFFE);

    // A trailing asterisk: the prefix, and the prefix closed by the highest
    // character; the caller learns that the value is no point.
    Estimate e = Eval(NxTYPE_NxString, &aaa, &azz, kEq, Key("abc*", format), format);
    EXPECT_EQ(kEq | 8, e.op);
    EXPECT_EQ(Orders(1, abc, format), e.low);
    EXPECT_EQ(Orders(1, closed, format), e.high);
    // An inner wildcard: the same keys from the text in front of it.
    e = Eval(NxTYPE_NxString, &aaa, &azz, kEq, Key("abc?x*y", format), format);
    EXPECT_EQ(Orders(1, abc, format), e.low);
    EXPECT_EQ(Orders(1, closed, format), e.high);
    // A text: both keys hold it, and it stays a point.
    e = Eval(NxTYPE_NxString, &aaa, &azz, kEq, Key("abc", format), format);
    EXPECT_EQ(kEq, e.op);
    EXPECT_EQ(Key("abc", format), e.low);
    EXPECT_EQ(Key("abc", format), e.high);
    // Less fills only the high end, greater only the low end, unequal none.
    e = Eval(NxTYPE_NxString, &aaa, &azz, kLe, Key("abc*", format), format);
    EXPECT_FALSE(e.hasLow);
    EXPECT_EQ(Orders(1, closed, format), e.high);
    e = Eval(NxTYPE_NxString, &aaa, &azz, kGt, Key("abc*", format), format);
    EXPECT_EQ(Orders(1, abc, format), e.low);
    EXPECT_FALSE(e.hasHigh);
    e = Eval(NxTYPE_NxString, &aaa, &azz, kNe, Key("abc*", format), format);
    EXPECT_FALSE(e.hasLow || e.hasHigh);
    // A leading wildcard leaves nothing to build on, and every relation
    // keeps the whole range.
    for (unsigned short op : {kEq, kLt, kGt}) {
      e = Eval(NxTYPE_NxString, &aaa, &azz, op, Key("*abc", format), format);
      EXPECT_FALSE(e.hasLow || e.hasHigh);
      EXPECT_EQ(op | 8, e.op);
      EXPECT_EQ(1.0f, e.share);
    }
    // Without wildcards the asterisk is text.
    e = Eval(NxTYPE_NxString, &aaa, &azz, kEq | NxCMP_NO_WILDCARDS, Key("abc*", format), format);
    EXPECT_EQ(kEq, e.op);
    EXPECT_EQ(Key("abc*", format), e.high);
    // Without narrowed ends a string gives no estimate; the operator loses
    // its comparison bits all the same.
    e = Eval(NxTYPE_NxString, &aaa, &azz, kEq | NxCMP_IGNORE_CASE, Key("abc*", format), format,
            false);
    EXPECT_EQ(0.0f, e.share);
    EXPECT_EQ(kEq | 8, e.op);
  }
}

TEST(StringRanges, IgnoredCaseAndAccentsWidenTheKeys) {
  const Bytes a = Key("a"), z = Key("z");
  const std::vector<unsigned short> given = OrdersOf("Müß");  // ß expands
  const auto widened = [&](unsigned short clear, unsigned short set, bool close) {
    std::vector<unsigned short> o;
    for (unsigned short u : given) o.push_back((u & 0xC000) == 0x4000 ? (u & ~clear) | set : u);
    if (close) o.push_back(0xFFFE);
    return Orders(1, o);
  };
  Estimate e = Eval(NxTYPE_NxString, &a, &z, kEq | NxCMP_IGNORE_CASE, Key("Müß*"));
  EXPECT_EQ(widened(0, 0x3000, false), e.low);
  EXPECT_EQ(widened(0x3000, 0, true), e.high);
  e = Eval(NxTYPE_NxString, &a, &z, kEq | NxCMP_IGNORE_ACCENTS, Key("Müß*"));
  EXPECT_EQ(widened(0x0F80, 0, false), e.low);
  EXPECT_EQ(widened(0, 0x0F80, true), e.high);
  e = Eval(NxTYPE_NxString, &a, &z, kEq | NxCMP_IGNORE_CASE | NxCMP_IGNORE_ACCENTS, Key("Müß"));
  EXPECT_EQ(widened(0x0F80, 0x3000, false), e.low);
  EXPECT_EQ(widened(0x3000, 0x0F80, false), e.high);
  // Ignoring spaces or symbols closes the high key of a text too: its last
  // element gives way to the highest character.
  e = Eval(NxTYPE_NxString, &a, &z, kEq | NxCMP_IGNORE_SPACES, Key("ab"));
  EXPECT_EQ(Orders(1, {OrdersOf("a")[0], 0xFFFE}), e.high);
  // An empty text gets room for that character.
  e = Eval(NxTYPE_NxString, &a, &z, kEq | NxCMP_IGNORE_SYMBOLS, Key(""));
  EXPECT_EQ(Orders(1, {}), e.low);
  EXPECT_EQ(Orders(1, {0xFFFE}), e.high);
}

TEST(StringRanges, LongValuesGiveCutKeys) {
  const std::string text(150, 'k');  // 150 orders: a key of 306 bytes
  const Bytes value = Key(text, 1, 400);
  const Bytes a = Key("a"), z = Key("z");
  Estimate e = Eval(NxTYPE_NxString, &a, &z, kEq, value);
  ASSERT_EQ(254u, e.low.size());
  // Cut keys end without 0 and 0xFF, and their length field says more than
  // the bytes hold.
  EXPECT_EQ(0, std::memcmp(e.low.data() + 2, value.data() + 2, 252));
  EXPECT_EQ(254u, unsigned(e.low[0] | e.low[1] << 8));
  EXPECT_EQ(e.low, e.high);
  // A cut high key still ends in the highest character, in place of the
  // last order that fitted.
  e = Eval(NxTYPE_NxString, &a, &z, kEq, Key(text + "*", 1, 400));
  ASSERT_EQ(254u, e.high.size());
  EXPECT_EQ(0, std::memcmp(e.high.data() + 4, value.data() + 4, 248));
  EXPECT_EQ(0xFFFE, e.high[252] | e.high[253] << 8);
}

// The estimate of a point against the position arithmetic: the common start
// of the four texts goes, the next (up to three) significant orders make the
// number, and the operators share the range as the numbers say.
TEST(StringRanges, EstimatesFollowThePositionsBehindTheCommonStart) {
  const auto digit = [](char d) {
    const std::string s(1, d);
    return double(NxStringIterator::WeightOf(OrdersOf(s.c_str())[0], 1) >> 8 & 0xFFFF);
  };
  const double unit = 1048576.0;
  const double p2 = digit('2') * 4294967296.0, p5 = digit('5') * 4294967296.0,
               p9 = digit('9') * 4294967296.0;
  const double total = p9 - p2 + unit;
  const struct {
    unsigned short op;
    double expected;
  } cases[] = {{kLt, (p5 - p2) / total},
               {kEq, unit / total},
               {kGt, (p9 - p5) / total},
               {kLe, (p5 - p2 + unit) / total},
               {kGe, (p9 - p5 + unit) / total},
               {kNe, (p9 - p2) / total}};
  for (const auto& c : cases) {
    const Estimate e = Strings("customer-00012", "customer-00019", c.op, "customer-00015");
    EXPECT_FLOAT_EQ(float(c.expected), e.share) << c.op;
  }
  // A pattern is an interval from its prefix to the prefix closed by the
  // highest character: equality keeps more than any point.  (Less and
  // greater measure from the prefix alone, the end they don't narrow, so the
  // three don't add up to the range as they do for a point.)
  const float point = Strings("customer-00012", "customer-00099", kEq, "customer-00015").share;
  for (const char* pattern : {"customer-0001*", "customer-0005?", "customer-0009*x"}) {
    const float eq = Strings("customer-00012", "customer-00099", kEq, pattern).share;
    EXPECT_GT(eq, 100 * point) << pattern;
    EXPECT_LT(eq, 0.2f) << pattern;
    EXPECT_GE(Strings("customer-00012", "customer-00099", kLe, pattern).share,
              Strings("customer-00012", "customer-00099", kLt, pattern).share);
  }
  // A value below the range: greater keeps all, less nothing; above it the
  // other way round.
  EXPECT_EQ(1.0f, Strings("customer-00012", "customer-00019", kGt, "customer-00010").share);
  EXPECT_EQ(0.0f, Strings("customer-00012", "customer-00019", kLt, "customer-00010").share);
  EXPECT_EQ(0.0f, Strings("customer-00012", "customer-00019", kGt, "customer-00099").share);
  EXPECT_EQ(1.0f, Strings("customer-00012", "customer-00019", kLt, "customer-00099").share);
}

TEST(StringRanges, TiesAtTheBoundsAreSettledByTheComparison) {
  // A value whose position ties with a bound (the first three significant
  // orders agree) gets one unit for less or greater exactly when the texts
  // leave room on that side.
  const double unit = 1048576.0;
  const Estimate above = Strings("Abcd", "Xyzw", kLt, "Abce");
  EXPECT_GT(above.share, 0.0f);
  EXPECT_EQ(0.0f, Strings("Abcd", "Xyzw", kLt, "Abcc").share);
  EXPECT_EQ(above.share, Strings("Abcd", "Xyzw", kLt, "Abcd").share);
  EXPECT_GT(Strings("Abcd", "Xyzw", kGt, "Xyzv").share, 0.0f);
  EXPECT_EQ(0.0f, Strings("Abcd", "Xyzw", kGt, "Xyzz").share);
  // That unit is all there is: the positions themselves tie.
  const Estimate eq = Strings("Abcd", "Xyzw", kEq, "Abce");
  EXPECT_FLOAT_EQ(eq.share, above.share);
  EXPECT_LT(double(eq.share), unit * 2 / 4294967296.0);
}

TEST(StringRanges, KeysThatEndedAtAChangeOfStateArePrefixes) {
  const Bytes a = Key("a"), z = Key("z");
  // A Greek key ended by a Latin letter: state 2, a prefix.
  const Bytes greek = Key("Αλx");
  ASSERT_EQ(0x82, greek[3]);
  Estimate e = Eval(NxTYPE_NxString, &a, &z, kEq, greek);
  EXPECT_EQ(kEq | 8, e.op);
  ASSERT_TRUE(e.hasHigh);
  EXPECT_EQ(0xFFFE, e.high[e.high.size() - 4] | e.high[e.high.size() - 3] << 8);
  // In the first state the bit doesn't make a prefix.
  const Bytes latin = Key("Li-李");
  ASSERT_EQ(0x81, latin[3]);
  e = Eval(NxTYPE_NxString, &a, &z, kEq, latin);
  EXPECT_EQ(kEq, e.op);
  EXPECT_EQ(latin, e.low);
}

TEST(StringRanges, NullsAndEmptyStrings) {
  NxString null;
  null.SetNullValue();
  const Bytes empty = Key(""), a = Key("a"), z = Key("z");
  // An empty value: a point at the start of everything.
  Estimate e = Eval(NxTYPE_NxString, &a, &z, kEq, empty);
  EXPECT_TRUE(e.low == empty && e.high == empty && e.op == kEq);
  EXPECT_EQ(1.0f, Eval(NxTYPE_NxString, &a, &z, kGt, empty).share);
  // A null value (language 254, the high bit set) counts as the prefix of
  // nothing: it narrows nothing and keeps the whole range.
  e = Eval(NxTYPE_NxString, &a, &z, kEq, KeyRecord(null));
  EXPECT_TRUE(e.op == (kEq | 8) && !e.hasLow && !e.hasHigh && e.share == 1.0f);
  // Without bounds the keys are still built.
  e = Eval(NxTYPE_NxString, nullptr, nullptr, kEq, Key("abc*"));
  EXPECT_TRUE(e.hasLow && e.hasHigh);
}

TEST(StringRanges, OldRowNarrowsOldRecords) {
  NxString s("abc*");
  const Bytes value = nxtest::OldRecord(&s, 1);
  NxString la("aaa"), lz("azz");
  const Bytes low = nxtest::OldRecord(&la, 1), high = nxtest::OldRecord(&lz, 1);
  const Estimate e = Eval(NxTYPE_NxString, &low, &high, kEq, value, 1, true, 0);
  EXPECT_EQ(kEq | 8, e.op);
  // Old keys: the text with its terminator, the high one closed by 0xFF.
  ASSERT_EQ(6u, e.low.size());
  EXPECT_EQ(0, std::memcmp(e.low.data() + 2, "abc", 4));
  ASSERT_EQ(7u, e.high.size());
  EXPECT_EQ(0, std::memcmp(e.high.data() + 2, "abc\xFF", 5));
  // Bytes without a code set make a number of 128 per byte.
  EXPECT_GT(e.share, 0.0f);
  EXPECT_LT(e.share, 0.05f);
}

// ---------------------------------------------------------------------------
// Every key whose text a pattern matches lies inside the pattern's bounds.

TEST(StringRanges, NarrowedBoundsHoldEveryMatchingKey) {
  std::vector<std::string> names(nxtest::kNames, nxtest::kNames + nxtest::kNameCount);
  std::mt19937 rng(77);
  const size_t real = names.size();
  for (size_t i = 0; i < 2500; ++i)
    names.push_back(names[rng() % real] + (rng() % 2 ? " " : "") + names[rng() % real]);
  std::shuffle(names.begin(), names.end(), rng);
  std::vector<NxString> texts;
  std::vector<Bytes> keys;
  for (const std::string& n : names) {
    texts.push_back(MakeString(n));
    keys.push_back(KeyRecord(texts.back(), 1, NxINDEX_MAX_KEYLEN));
  }
  // Patterns from the names' starts, a few with inner wildcards, texts that
  // end in the highest letter, an empty prefix, and plain texts.
  std::vector<std::string> patterns = {"Mül*", "Le*", "L*e", "Ka?a*", "Z*", "Zz*", "zz*",
                                       "Ω*",   "Ив*", "*",   "ß*",    "van *", "Wang*", ""};
  for (size_t i = 0; i < 40; ++i) {
    const std::string& n = names[rng() % names.size()];
    // A start of up to 6 bytes, cut in front of a whole character.
    size_t cut = 1 + rng() % std::min<size_t>(n.size(), 6);
    while (cut < n.size() && (static_cast<unsigned char>(n[cut]) & 0xC0) == 0x80) --cut;
    patterns.push_back(n.substr(0, cut) + "*");
    // Whole names too: with case or accents ignored they stand for all
    // their spellings.
    if (i % 2 == 0) patterns.push_back(n);
  }
  for (const char* spelling : {"MÜLLER", "lefevre", "LÉGER", "Muller"}) patterns.push_back(spelling);
  const unsigned short options[] = {0, NxCMP_IGNORE_CASE, NxCMP_IGNORE_ACCENTS,
                                    NxCMP_IGNORE_CASE | NxCMP_IGNORE_ACCENTS};
  const Bytes first = Key(""), last = Orders(1, {0xFFFE});
  int matched = 0;
  for (const std::string& pattern : patterns) {
    const NxString p = MakeString(pattern);
    for (unsigned short option : options) {
      const Estimate e = Eval(NxTYPE_NxString, &first, &last, kEq | option, KeyRecord(p));
      for (size_t i = 0; i < texts.size(); ++i) {
        if (NxStrCmp(253, 1, texts[i].StrGet(), 253, 1, p.StrGet(), option, -1, 8, nullptr) != 0)
          continue;
        ++matched;
        int status = 0;
        const unsigned short full = NxCMP_NO_WILDCARDS;
        const uint32_t n = uint32_t(keys[i].size());
        if (e.hasLow) {
          EXPECT_GE(StringCompare(1, n, keys[i].data(), uint32_t(e.low.size()),
                                  const_cast<unsigned char*>(e.low.data()), full, 1, status),
                    0)
              << names[i] << " below the low key of " << pattern << " option " << option;
        }
        if (e.hasHigh) {
          EXPECT_LE(StringCompare(1, n, keys[i].data(), uint32_t(e.high.size()),
                                  const_cast<unsigned char*>(e.high.data()), full, 1, status),
                    0)
              << names[i] << " above the high key of " << pattern << " option " << option;
        }
      }
    }
  }
  EXPECT_GT(matched, 3000);
}

// ---------------------------------------------------------------------------
// The legacy rows.

template <class X>
Bytes Legacy(const char* text, bool raw) {
  return nxtest::LegacyRecord<X>({text}, raw);
}

TEST(StringRanges, LegacyRowsMeasureTheirFirstFourBytes) {
  const Bytes aaa = Legacy<NxIString>("aaa", true), bbb = Legacy<NxIString>("bbb", true);
  const double lo = 0x61616100, hi = 0x62626200, total = hi - lo + 1;
  Estimate e = Eval(NxTYPE_NxIString, &aaa, &bbb, kEq, Legacy<NxIString>("abc*", true));
  // x 0x61626300, upper 0x616263FF: 256 numbers.
  EXPECT_FLOAT_EQ(float(256 / total), e.share);
  EXPECT_EQ(kEq | 8, e.op);
  EXPECT_EQ((Bytes{0xC0, 4, 0, 'a', 'b', 'c', 0}), e.low);
  EXPECT_EQ((Bytes{0xC0, 5, 0, 'a', 'b', 'c', 0xFF, 0}), e.high);
  e = Eval(NxTYPE_NxIString, &aaa, &bbb, kLt, Legacy<NxIString>("abc*", true));
  EXPECT_FLOAT_EQ(float((0x61626300 - lo + 1) / total), e.share);
  // Four bytes or more make a point.
  e = Eval(NxTYPE_NxIString, &aaa, &bbb, kEq, Legacy<NxIString>("abcd", true));
  EXPECT_FLOAT_EQ(float(1 / total), e.share);
  EXPECT_EQ(kEq, e.op);
  // Above the range less keeps a little more than all, below it greater all.
  const Bytes aaaa = Legacy<NxIString>("aaaa", true), aaab = Legacy<NxIString>("aaab", true);
  e = Eval(NxTYPE_NxIString, &aaaa, &aaab, kLt, Legacy<NxIString>("zzzz", true));
  EXPECT_EQ(1.5f, e.share);
  e = Eval(NxTYPE_NxIString, &aaa, &bbb, kGt, Legacy<NxIString>("0000", true));
  EXPECT_EQ(1.0f, e.share);
  // A leading wildcard: the whole range, nothing narrowed.
  e = Eval(NxTYPE_NxIString, &aaa, &bbb, kEq, Legacy<NxIString>("*a", true));
  EXPECT_EQ(1.0f, e.share);
  EXPECT_FALSE(e.hasLow || e.hasHigh);
  // Text that is not raw goes through the map first.
  e = Eval(NxTYPE_NxIString, &aaa, &bbb, kEq, Legacy<NxIString>("ab*", false));
  char mapped[8];
  NxIString::MapText(mapped, "ab", 0);
  EXPECT_EQ(0, std::memcmp(e.low.data() + 3, mapped, 3));

  // NxCaseIString measures behind the common start of bounds and value: the
  // value's bytes behind the fourth never count.
  const Bytes abcdef = Legacy<NxCaseIString>("ABCDEF", true),
              abcdxy = Legacy<NxCaseIString>("ABCDXY", true);
  e = Eval(NxTYPE_NxCaseIString, &abcdef, &abcdxy, kLt, Legacy<NxCaseIString>("ABCDMN", true));
  EXPECT_EQ(0.0f, e.share);  // x is 0, below the low bound
  e = Eval(NxTYPE_NxCaseIString, &abcdef, &abcdxy, kEq, Legacy<NxCaseIString>("*", true));
  EXPECT_EQ(1.0f, e.share);
  EXPECT_EQ(kEq | 8, e.op);
}

}  // namespace
