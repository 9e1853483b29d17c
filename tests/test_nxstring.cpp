// NxString: lifetime, editing, the size limit, numbers, code sets, case and lists.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>

#include "test_support.h"

namespace {

using Edit = std::function<void(NxString&)>;
#define EDIT(code) [](NxString& s) { code; }

std::string Bytes(const NxString& s) {
  return std::string(s.StrGet(), s.Len());
}

std::u16string Units(const NxString& s) {
  std::u16string out(s.Len(), u'\0');
  std::memcpy(&out[0], s.StrGet(), out.size() * 2);
  return out;
}

NxString Wide(const char16_t* text) {
  return NxString(reinterpret_cast<const unsigned short*>(text));
}
NxString Of(char c, size_t count) {
  return NxString(std::string(count, c).c_str());
}
NxString WideOf(char16_t c, size_t count) {
  return Wide(std::u16string(count, c).c_str());
}

class NxStringTest : public ::testing::Test {
 protected:
  void SetUp() override { Reset(); }
  void TearDown() override { Reset(); }
  static void Reset() {
    NxLanguageContext::ResetDefaults();
    ___NxTypeMgrOptions() = 0;
    DefaultConfig(nullptr);
  }
};

TEST_F(NxStringTest, LifetimeAndTheTwoEmptyForms) {
  EXPECT_EQ(NxString(static_cast<char>(0)).data, nullptr);
  NxString counted("ab\0cd", 5);
  EXPECT_TRUE(counted.size == 6 && counted.Len() == 2);  // the text as it stands, zero included
  EXPECT_EQ(NxString("abc", 0).data, nullptr);
  // Appending nothing to nothing leaves a buffer with only the terminator.
  NxString a, b, s("abc");
  a += b;
  ASSERT_NE(a.data, nullptr);
  EXPECT_TRUE(a.size == 1 && a.IsEmpty() && !a && a.Len() == 0);
  NxString w(253, 1);
  w += NxString(253, 1);
  EXPECT_TRUE(w.size == 2 && w.Len() == 0);
  EXPECT_NE(NxString(a).data, nullptr);  // copies keep the form
  EXPECT_EQ(NxString(b).data, nullptr);
  EXPECT_EQ(b.StrGet()[0] | b.StrGet()[1], 0);
  char* buffer = s.data;
  NxString t(253, 7);
  t.Destruct(s);  // takes over the buffer
  EXPECT_TRUE(t.data == buffer && t.codeSet == 1 && t.size == 4);
  EXPECT_TRUE(s.data == nullptr && s.size == 0 && s.codeSet == 1);
  t.Destruct(t);
  NxString& alias = t;
  t = alias;
  EXPECT_EQ(t.data, buffer);
  EXPECT_EQ(t.SetNullValue(), 0);
  EXPECT_TRUE(t.data == nullptr && t.codeSet == 0 && t.language == 254 && t.IsNullValue() == 1);
  EXPECT_EQ(NxString(254, 1).IsNullValue(), 0);
}

TEST_F(NxStringTest, SpliceRecodesAndTakesItselfAsSourceInBothWidths) {
  NxString s("abc");
  s += s;
  EXPECT_TRUE(Bytes(s) == "abcabc" && s.size == 7);
  s.Insert(s, 3);
  EXPECT_EQ(Bytes(s), "abcabcabcabc");
  NxString r("xyz");
  r.Replace(r, 1);
  EXPECT_EQ(Bytes(r), "xxy");
  NxString w = Wide(u"\u0416z");
  w += w;
  EXPECT_EQ(Units(w), u"\u0416z\u0416z");

  w += NxString("\337");  // an 8-bit sharp s widens
  EXPECT_EQ(Units(w), u"\u0416z\u0416z\u00DF");
  NxString narrow("a");
  narrow += Wide(u"\u00E9\u20AC");  // into code set 1: e-acute and the euro
  EXPECT_TRUE(narrow.codeSet == 1 && Bytes(narrow) == "a\xE9\x80");
  // Code set 0 text goes byte for byte into 8-bit strings, mapped into 16-bit.
  NxString raw(static_cast<unsigned char>(0), 1);
  raw += NxString("\xFC");
  NxString bytes("x"), widened = Wide(u"x");
  bytes += raw;
  widened += raw;
  EXPECT_EQ(Bytes(bytes), "x\xFC");
  EXPECT_EQ(Units(widened), u"x\u00FC");
  NxString sum = Wide(u"a") + NxString("b");
  EXPECT_TRUE(sum.codeSet == 253 && Units(sum) == u"ab");

  w = Wide(u"\u0430\u0431\u0432");
  w.language = 8;
  NxString part = w.Copy(1, -1);
  EXPECT_TRUE(part.codeSet == 253 && part.language == 8 && Units(part) == u"\u0431\u0432");
  NxString atEnd = w.Copy(3, 1);
  EXPECT_TRUE(atEnd.codeSet == 1 && atEnd.language == 1);  // the defaults, not the string's
  EXPECT_EQ(Units(w.Right(9)), u"\u0430\u0431\u0432");
  EXPECT_EQ(w.Right(0).codeSet, 1);
  NxString big = Of('q', 40000);  // counts beyond 32767 characters
  big += NxString("end");
  EXPECT_EQ(big.Left(40001).Len(), 40001);
  EXPECT_EQ(Bytes(big.Right(40002)).substr(39998), "qend");

  w.Fill(3, 'x');
  EXPECT_TRUE(w.codeSet == 253 && w.size == 8 && Units(w) == u"xxx");
  w.Fill(2, '\xE9');
  EXPECT_EQ(Units(w), u"\u00E9\u00E9");
  w.Expand(4, static_cast<unsigned short>(0x2026));
  EXPECT_EQ(Units(w), u"\u00E9\u00E9\u2026\u2026");
  w = Wide(u"  \u0416 \t");
  w.Trim();
  EXPECT_EQ(Units(w), u"\u0416");
}

// 8-bit edits at and beyond the ends; keepsBuffer marks no-ops that must not reallocate.
TEST_F(NxStringTest, EditingAtAndBeyondTheEnds) {
  struct Case {
    const char* start;  // nullptr: the empty string without a buffer
    Edit op;
    const char* want;
    bool keepsBuffer;
  } cases[] = {
      {"abc", EDIT(s.Insert(NxString("X"), 3)), "abcX", false},
      {"abc", EDIT(s.Insert(NxString(""), 1)), "abc", true},
      {"abc", EDIT(s.Insert(Wide(u"\u00E4"), 1)), "a\344bc", false},
      {nullptr, EDIT(s.Insert(NxString("x"), 0)), "x", false},
      {"abcd", EDIT(s.Replace(NxString("XYZ"), 2)), "abXY", false},  // only what fits
      {"abc", EDIT(s.Insert(NxString("Y"), 5)), "abc", false},
      {"abcd", EDIT(s.Replace(Wide(u"\u00F6"), 0)), "\366bcd", false},
      {"abcdef", EDIT(s.Cut(2, 100)), "ab", false},
      {"abcdef", EDIT(s.Cut(0, -1)), "", false},
      {"abcdef", EDIT(s.Cut(2, 0)), "abcdef", true},
      {"abcdef", EDIT(s.Cut(1, -5)), "abcdef", true},
      {"abcd", EDIT(s.Replace(NxString("Q"), 4)), "abcd", false},
      {"abcde", EDIT(s.Expand(7, '.')), "abcde..", false},
      {nullptr, EDIT(s.Expand(2, '-')), "--", false},
      {"abc", EDIT(s.Fill(2, static_cast<unsigned short>(0xFC))), "\xFC\xFC", false},
      {"abc", EDIT(s.Fill(0, 'x')), "", false},
      {"   ", EDIT(s.LeftTrim()), "", false},
      {"   ", EDIT(s.RightTrim()), " ", false},  // the first character is never looked at
      {"  a b  ", EDIT(s.Trim()), "a b", false},
      {"a+b+c", EDIT(s.ReplaceAll(NxString("+"), NxString("++"), 2)), "a+b++c", false},
      {"aa", EDIT(s.ReplaceAll(NxString("a"), NxString("aa"), 0)), "aaaa", false},
  };
  for (const Case& c : cases) {
    NxString s = c.start ? NxString(c.start) : NxString();
    char* before = s.data;
    c.op(s);
    EXPECT_EQ(Bytes(s), c.want) << (c.start ? c.start : "(none)") << " -> " << c.want;
    if (c.keepsBuffer) {
      EXPECT_EQ(s.data, before) << c.start;
    }
    if (*c.want == '\0') {
      EXPECT_TRUE(s.data != nullptr && s.size == 1) << c.start;  // emptied, not released
    }
  }
  NxString none;
  none.Trim();
  EXPECT_EQ(none.data, nullptr);
}

// Past 65532 8-bit or 32765 16-bit characters every growing operation reports
// and leaves the string exactly as it was.
TEST_F(NxStringTest, EveryGrowingOperationStopsAtTheLimit) {
  nxtest::AssertRecorder recorder;
  using Make = std::function<NxString()>;
  Make full = [] { return Of('a', 65532); };
  Make wideSmall = [] { return Wide(u"abc"); };
  Make half = [] { return Of('a', 32766); };
  struct Case {
    const char* name;
    Make make;
    Edit op;
  } cases[] = {
      {"append", full, EDIT(s += NxString("c"))},
      {"append char", full, EDIT(s << 'x')},
      {"append recoded", [] { return WideOf(u'a', 32765); }, EDIT(s += NxString("c"))},
      {"insert", full, EDIT(s.Insert(NxString("b"), 10))},
      {"fill", full, EDIT(s.Fill(65533, 'x'))},
      {"fill 16", wideSmall, EDIT(s.Fill(32766, 'x'))},
      {"expand 16", wideSmall, EDIT(s.Expand(32766, static_cast<unsigned short>(u'x')))},
      {"SetCodeSet", half, EDIT(s.SetCodeSet(253))},
      {"MapToCodeSet", half, EDIT(EXPECT_EQ(s.MapToCodeSet(253), 0))},
      {"CopyMapped", wideSmall, EDIT(EXPECT_EQ(s.CopyMapped(Of('a', 32766), 253, -1), 0))},
      // U+0390 has a three-character upper-case form, sharp s two.
      {"ToUpper 3x", [] { return WideOf(u'\u0390', 12000); }, EDIT(s.ToUpper())},
      {"ToUpper 16", [] { return WideOf(u'\u00DF', 20000); }, EDIT(s.ToUpper())},
      {"ToUpper 8", [] { return Of('\xDF', 40000); }, EDIT(s.ToUpper())},
  };
  for (const Case& c : cases) {
    NxString s = c.make();
    recorder.clear();
    char* data = s.data;
    unsigned short size = s.size;
    std::string text(s.StrGet(), size);
    c.op(s);
    EXPECT_TRUE(s.data == data && s.size == size && std::string(s.StrGet(), size) == text)
        << c.name;
    ASSERT_EQ(recorder.reports().size(), 1u) << c.name;
    EXPECT_EQ(recorder.reports()[0].expression, "\"String overflow\" && 0") << c.name;
    EXPECT_EQ(recorder.reports()[0].file, "src\\nxstring") << c.name;
  }

  // Exactly at the limit everything still works.
  struct Fits {
    Make make;
    Edit op;
    int len;
  } fits[] = {
      {[] { return Of('a', 65531); }, EDIT(s += NxString("b")), 65532},
      {[] { return WideOf(u'a', 32764); }, EDIT(s << static_cast<unsigned short>(u'b')), 32765},
      {full, EDIT(s.Replace(NxString("bb"), 65531)), 65532},  // never grows
      {wideSmall, EDIT(s.Fill(32765, 'x')), 32765},
      {[] { return Of('a', 32765); }, EDIT(s.SetCodeSet(253)), 32765},
      {wideSmall, EDIT(EXPECT_EQ(s.CopyMapped(WideOf(u'a', 32765), 1, -1), 32765)), 32765},
      {[] { return WideOf(u'\u0390', 10921); }, EDIT(s.ToUpper()), 32763},
  };
  recorder.clear();
  for (const Fits& f : fits) {
    NxString s = f.make();
    f.op(s);
    EXPECT_EQ(s.Len(), f.len);
  }
  EXPECT_TRUE(recorder.reports().empty());
  EXPECT_EQ(Of('z', 65533).data, nullptr);
  EXPECT_EQ(WideOf(u'z', 32766).data, nullptr);
  EXPECT_EQ(recorder.reports().size(), 2u);

  // A configuration decides whether overflow is reported: off unless it says so.
  NxKeyValueConfig config;
  DefaultConfig(&config);
  NxString s = Of('a', 65532);
  const char* settings[] = {nullptr, "DEBUG", "quiet"};
  for (int i = 0; i < 3; ++i) {
    recorder.clear();
    if (settings[i]) config.Set("stringOverflow", settings[i]);
    s << 'b';
    EXPECT_EQ(recorder.reports().size(), i == 1 ? 1u : 0u) << i;
  }
  EXPECT_EQ(s.Len(), 65532);
}

// Conversions under both settings of the option bit; 8-bit text saturates at
// 32 bits, 16-bit text wraps and takes plain decimals.
TEST_F(NxStringTest, NumberConversions) {
  EXPECT_EQ(Bytes(NxString(3000000000u)), "-1294967296");
  EXPECT_EQ(Bytes(NxString(static_cast<long>(0x100000005LL))), "5");
  EXPECT_EQ(Bytes(NxString(~0UL)), "4294967295");
  for (int option = 0; option < 2; ++option) {
    ___NxTypeMgrOptions() = option;
    EXPECT_EQ(static_cast<int>(NxString("99999999999")), INT32_MAX);
    EXPECT_EQ(static_cast<int>(NxString("-99999999999")), INT32_MIN);
    EXPECT_EQ(static_cast<long>(NxString("4294967296")), 2147483647L);
    EXPECT_EQ(static_cast<long>(NxString("-2147483648")), -2147483648L);
    EXPECT_EQ(static_cast<short>(NxString("70000")), 4464);
    EXPECT_EQ(static_cast<short>(NxString("99999999999")), -1);
    EXPECT_EQ(static_cast<int>(NxString("0x10")), option ? 0 : 16);
    EXPECT_EQ(static_cast<long>(NxString("010")), option ? 10L : 8L);
  }
  EXPECT_DOUBLE_EQ(static_cast<double>(NxString(" 2.5e1")), 25.0);
  EXPECT_EQ(static_cast<int>(NxString()) + static_cast<double>(NxString()), 0.0);
  ___NxTypeMgrOptions() = 0;
  EXPECT_EQ(static_cast<long>(NxString("0xFFFFFFFF")), 2147483647L);
  EXPECT_EQ(static_cast<long>(Wide(u"4294967297")), 1L);
  EXPECT_EQ(static_cast<int>(Wide(u"2147483648")), INT32_MIN);
  EXPECT_EQ(static_cast<short>(Wide(u"65537")), 1);
  EXPECT_EQ(static_cast<int>(Wide(u"1a")), 59);  // no validation: 'a' counts as 49
  EXPECT_DOUBLE_EQ(static_cast<double>(Wide(u"12.25")), 12.25);

  // Atol reads decimals, Strtol any base; both look at the first character only.
  int32_t value = 99;
  EXPECT_TRUE(NxString().Atol(value) == -1 && value == 0);
  EXPECT_EQ(NxString("x1").Strtol(value), -1);
  EXPECT_EQ(NxString(" 1").Atol(value), -1);
  EXPECT_TRUE(NxString("0x1f").Strtol(value) == 0 && value == 31);
  EXPECT_TRUE(NxString("0x1f").Atol(value) == 0 && value == 0);
  EXPECT_TRUE(NxString("-99999999999").Strtol(value) == 0 && value == INT32_MIN);
  EXPECT_TRUE(Wide(u"-42").Atol(value) == 0 && value == -42);
  EXPECT_TRUE(Wide(u"42").Strtol(value) == 0 && value == 42);
}

TEST_F(NxStringTest, CodeSetChangesBothWays) {
  NxString s("Gr\374\337e");
  s.SetCodeSet(2);  // same width: relabel
  EXPECT_EQ(Bytes(s), "Gr\374\337e");
  s.SetCodeSet(253);
  EXPECT_EQ(Units(s), u"Gr\u00FC\u00DFe");
  s.SetCodeSet(0);  // narrows to the native code set
  EXPECT_TRUE(s.codeSet == 0 && Bytes(s) == "Gr\374\337e");

  NxString m("\x80 \xE9");
  EXPECT_EQ(m.MapToCodeSet(253), 0);
  EXPECT_EQ(Units(m), u"\u20AC \u00E9");
  EXPECT_EQ(m.MapToCodeSet(1), 0);
  EXPECT_EQ(Bytes(m), "\x80 \xE9");
  EXPECT_EQ(m.MapToCodeSet(2), 0);  // Latin-1 has no euro sign
  EXPECT_EQ(Bytes(m).substr(1), " \xE9");
  EXPECT_EQ(m.MapToCodeSet(0), NxSTATUS_INVALID_ARGUMENT);
  EXPECT_EQ(m.codeSet, 2);
  EXPECT_EQ(m.SetCodeSetCode(253), NxSTATUS_INVALID_ARGUMENT);
  EXPECT_TRUE(m.SetCodeSetCode(3) == 0 && m.codeSet == 3);

  NxString source("\xE4pfel");
  source.language = 2;
  NxString target("a much longer old text");
  char* buffer = target.data;
  EXPECT_EQ(target.CopyMapped(source, 1, 10), 5);
  EXPECT_EQ(target.data, buffer);  // large enough: kept
  EXPECT_TRUE(Bytes(target) == "\xE4pfel" && target.language == 2);
  NxString wide("x");
  EXPECT_EQ(wide.CopyMapped(source, 253, 3), 3);
  EXPECT_EQ(Units(wide), u"\u00E4pf");
  EXPECT_EQ(wide.CopyMapped(wide, 1, -1), NxSTATUS_INVALID_ARGUMENT);
  NxString back;
  EXPECT_EQ(back.CopyMapped(wide, 1, -1), 3);
  EXPECT_TRUE(Bytes(back) == "\xE4pf" && back.size == 4);
}

TEST_F(NxStringTest, UpperCaseExpands) {
  NxString w = Wide(u"stra\u00DFe\u0390");
  w.ToUpper();
  EXPECT_EQ(Units(w), u"STRASSE\u0399\u0308\u0301");
  EXPECT_EQ(w.size, 22);
  NxString n("Stra\337e");
  n.ToUpper();
  EXPECT_TRUE(Bytes(n) == "STRASSE" && n.size == 8);
  n.ToLower();
  EXPECT_EQ(Bytes(n), "strasse");
  NxString none;
  none.ToUpper();
  EXPECT_EQ(none.data, nullptr);
}

TEST_F(NxStringTest, FindRunsOnCollation) {
  NxString s("abcABC");
  EXPECT_EQ(s.Find(NxString("B"), 0, 0x10), 4);
  EXPECT_EQ(s.Find(NxString("B"), 0, 0x30), 1);
  EXPECT_EQ(s.Find(NxString("bc"), 2, 0x30), 4);
  EXPECT_EQ(s.Find('C', 0, 0x10), 5);
  EXPECT_EQ(s.Find(static_cast<unsigned short>(u'c'), 1, 0x30), 2);
  EXPECT_EQ(s.SubStringPos(Wide(u"CA"), 0x30), 2);  // 16-bit search text
  EXPECT_EQ(s.Find(NxString(), 0, 0x10), -1);
  EXPECT_EQ(NxString().Find(NxString("a"), 0, 0x10), -1);
  EXPECT_EQ(s.Find(NxString(""), 3, 0x10), 3);
}

TEST_F(NxStringTest, SplitListElementByElement) {
  NxString element("old");
  // Only the very start passes over a separator; the element stays as it was at the end.
  for (const char* text : {"a, b,,c ,", ",x,,y"}) {
    NxString list(text);
    unsigned short position = 0;
    std::string got;
    while (NxSplitList(list, element, NxString(","), position) == 0)
      got += "[" + Bytes(element) + "]";
    EXPECT_EQ(NxSplitList(list, element, NxString(","), position), NxSTATUS_LIST_ENDED);
    EXPECT_EQ(got, *text == 'a' ? "[a][b][][c]" : "[x][][y]");
    EXPECT_EQ(Bytes(element), *text == 'a' ? "c" : "y");
  }
}

}  // namespace
