// NxString: lifetime, the edit core, the size limit, numbers, editing, code
// sets, case and lists.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "test_support.h"

namespace {

// The text of an 8-bit string as bytes.
std::string Bytes(const NxString& s) {
  return std::string(s.StrGet(), s.Len());
}

// The text of a 16-bit string as units.
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
  std::u16string text(count, c);
  return Wide(text.c_str());
}

class NxStringTest : public ::testing::Test {
 protected:
  void SetUp() override {
    NxLanguageContext::ResetDefaults();
    ___NxTypeMgrOptions() = 0;
    DefaultConfig(nullptr);
  }
  void TearDown() override {
    NxLanguageContext::ResetDefaults();
    ___NxTypeMgrOptions() = 0;
    DefaultConfig(nullptr);
  }
};

// ---------------------------------------------------------------------------
// Lifetime and the two empty forms.

TEST_F(NxStringTest, ConstructorsAndTheTwoEmptyForms) {
  NxString zero(static_cast<char>(0));
  EXPECT_EQ(zero.data, nullptr);
  EXPECT_EQ(zero.codeSet, NxLanguageContext::GetDefault8CodeSet());
  NxString counted("ab\0cd", 5);
  EXPECT_EQ(counted.size, 6);  // the text as it stands, zero included
  EXPECT_EQ(counted.Len(), 2);
  EXPECT_EQ(NxString("abc", 0).data, nullptr);

  // Appending nothing to nothing leaves a buffer with only the terminator.
  NxString a, b;
  a += b;
  ASSERT_NE(a.data, nullptr);
  EXPECT_EQ(a.size, 1);
  EXPECT_TRUE(a.IsEmpty() && !a && a.Len() == 0);
  NxString w(253, 1);
  w += NxString(253, 1);
  EXPECT_EQ(w.size, 2);
  EXPECT_EQ(w.Len(), 0);
  EXPECT_NE(NxString(a).data, nullptr);  // copies keep the form
  EXPECT_EQ(NxString(b).data, nullptr);
  EXPECT_EQ(b.StrGet()[0] | b.StrGet()[1], 0);
  EXPECT_EQ(NxString::EmptyString().data, nullptr);
}

TEST_F(NxStringTest, NumbersFormatAs32BitValues) {
  EXPECT_EQ(Bytes(NxString(3000000000u)), "-1294967296");
  EXPECT_EQ(Bytes(NxString(static_cast<long>(0x100000005LL))), "5");
  EXPECT_EQ(Bytes(NxString(~0UL)), "4294967295");
  NxString s("x");
  s << 1.5f << 'y' << static_cast<long>(-3) << static_cast<unsigned short>(65);
  EXPECT_EQ(Bytes(s), "x1.5y-365");
  NxString w = Wide(u"w");
  w << static_cast<unsigned short>(0x3042);  // a character in 16-bit text
  EXPECT_EQ(Units(w), u"w\u3042");
}

TEST_F(NxStringTest, DestroyDestructAndNull) {
  NxString s("abc");
  s.Destroy();
  EXPECT_TRUE(s.data == nullptr && s.size == 0 && s.codeSet == 0 && s.language == 0);
  s = "x";
  EXPECT_EQ(s.codeSet, NxLanguageContext::GetDefault8CodeSet());
  EXPECT_EQ(s.language, NxLanguageContext::GetDefaultLanguage());

  NxString a("abc"), b(253, 7);
  char* buffer = a.data;
  b.Destruct(a);
  EXPECT_TRUE(b.data == buffer && b.codeSet == 1 && b.size == 4);
  EXPECT_TRUE(a.data == nullptr && a.size == 0 && a.codeSet == 1);
  b.Destruct(b);
  EXPECT_EQ(b.data, buffer);
  NxString& alias = b;
  b = alias;
  EXPECT_EQ(b.data, buffer);

  EXPECT_EQ(b.SetNullValue(), 0);
  EXPECT_TRUE(b.data == nullptr && b.codeSet == 0 && b.language == 254);
  EXPECT_EQ(b.IsNullValue(), 1);
  EXPECT_EQ(NxString(254, 0).IsNullValue(), 1);
  EXPECT_EQ(NxString(254, 1).IsNullValue(), 0);
}

TEST_F(NxStringTest, IndexReachesTheTerminatorAndThenTheFreeZeroCharacter) {
  NxString s("ab");
  EXPECT_EQ(s[2].position, reinterpret_cast<unsigned char*>(s.data) + 2);
  EXPECT_EQ(s[2].Value(), 0);
  EXPECT_EQ(s[3].position, nullptr);
  EXPECT_EQ(s[3].Value(), 0);
  s[1] = 'X';
  EXPECT_EQ(Bytes(s), "aX");
  NxString w = Wide(u"pq");
  EXPECT_EQ(w[1].Value(), u'q');
  NxString none;
  EXPECT_EQ(none[0].Value(), 0);
  EXPECT_EQ(none[1].position, nullptr);
}

// ---------------------------------------------------------------------------
// Splice: append, insert, replace, truncate; recoding; self-source.

TEST_F(NxStringTest, AppendToItselfDoublesTheText) {
  NxString s("abc");
  s += s;
  EXPECT_EQ(Bytes(s), "abcabc");
  EXPECT_EQ(s.size, 7);
  NxString w = Wide(u"\u0416z");
  w += w;
  EXPECT_EQ(Units(w), u"\u0416z\u0416z");
  s.Insert(s, 3);
  EXPECT_EQ(Bytes(s), "abcabcabcabc");
}

TEST_F(NxStringTest, AppendRecodesIntoTheReceiversCodeSet) {
  NxString w = Wide(u"\u00FC-");
  w += NxString("\xDF");  // an 8-bit sharp s widens
  EXPECT_EQ(w.codeSet, 253);
  EXPECT_EQ(Units(w), u"\u00FC-\u00DF");

  NxString n("a");
  n += Wide(u"\u00E9\u20AC");  // into code set 1: e-acute and the euro sign
  EXPECT_EQ(n.codeSet, 1);
  EXPECT_EQ(Bytes(n), "a\xE9\x80");

  // Code set 0 text goes byte for byte into 8-bit strings, mapped into
  // 16-bit ones.
  NxString raw(static_cast<unsigned char>(0), 1);
  raw += NxString("\xFC");
  NxString bytes("x");
  bytes += raw;
  EXPECT_EQ(Bytes(bytes), "x\xFC");
  NxString widened = Wide(u"x");
  widened += raw;
  EXPECT_EQ(Units(widened), u"x\u00FC");

  NxString sum = Wide(u"a") + NxString("b");
  EXPECT_EQ(sum.codeSet, 253);
  EXPECT_EQ(Units(sum), u"ab");
}

TEST_F(NxStringTest, InsertAndReplaceAtAndBeyondTheEnds) {
  NxString s("abc");
  s.Insert(NxString("X"), 3);
  EXPECT_EQ(Bytes(s), "abcX");
  s.Insert(NxString("Y"), 5);
  EXPECT_EQ(Bytes(s), "abcX");
  s.Insert(NxString("Z"), 0);
  EXPECT_EQ(Bytes(s), "ZabcX");
  char* before = s.data;
  s.Insert(NxString(""), 1);
  EXPECT_EQ(s.data, before);
  s.Insert(Wide(u"\u00E4"), 1);
  EXPECT_EQ(Bytes(s),
            "Z\xE4"
            "abcX");

  NxString r("abcd");
  r.Replace(NxString("XYZ"), 2);  // only what fits
  EXPECT_EQ(Bytes(r), "abXY");
  EXPECT_EQ(r.size, 5);
  r.Replace(NxString("Q"), 4);
  EXPECT_EQ(Bytes(r), "abXY");
  r.Replace(NxString("Q"), 9);
  EXPECT_EQ(Bytes(r), "abXY");
  r.Replace(Wide(u"\u00F6"), 0);
  EXPECT_EQ(Bytes(r),
            "\xF6"
            "bXY");

  NxString empty;
  empty.Insert(NxString("x"), 0);
  EXPECT_EQ(Bytes(empty), "x");
}

TEST_F(NxStringTest, CutCopyLeftRightAtTheEnds) {
  NxString s("abcdef");
  NxString all(s);
  all.Cut(0, -1);
  ASSERT_NE(all.data, nullptr);
  EXPECT_EQ(all.size, 1);
  char* before = s.data;
  s.Cut(2, 0);
  s.Cut(6, 1);
  s.Cut(7, -1);
  s.Cut(1, -5);
  EXPECT_EQ(s.data, before);
  s.Cut(1, 2);
  EXPECT_EQ(Bytes(s), "adef");
  s.Cut(2, 100);
  EXPECT_EQ(Bytes(s), "ad");

  NxString w = Wide(u"\u0430\u0431\u0432");
  w.language = 8;
  NxString part = w.Copy(1, -1);
  EXPECT_EQ(part.codeSet, 253);
  EXPECT_EQ(part.language, 8);
  EXPECT_EQ(Units(part), u"\u0431\u0432");
  EXPECT_EQ(Units(w.Copy(0, 2)), u"\u0430\u0431");
  EXPECT_EQ(Units(w.Copy(2, 9)), u"\u0432");
  NxString atEnd = w.Copy(3, 1);
  EXPECT_EQ(atEnd.codeSet, 1);  // the default, not the string's
  EXPECT_EQ(atEnd.language, 1);
  EXPECT_NE(atEnd.data, nullptr);
  NxString none = w.Copy(1, 0);
  EXPECT_EQ(none.codeSet, 253);
  EXPECT_EQ(none.Len(), 0);

  EXPECT_EQ(Units(w.Left(2)), u"\u0430\u0431");
  EXPECT_EQ(Units(w.Left(50)), u"\u0430\u0431\u0432");
  EXPECT_EQ(Units(w.Right(1)), u"\u0432");
  EXPECT_EQ(Units(w.Right(9)), u"\u0430\u0431\u0432");
  EXPECT_EQ(w.Right(0).codeSet, 1);
  EXPECT_EQ(NxString(253, 1).Left(3).codeSet, 1);

  // Counts beyond 32767 characters.
  NxString big = Of('q', 40000);
  big += NxString("end");
  EXPECT_EQ(big.Left(40001).Len(), 40001);
  EXPECT_EQ(big.Right(40002).Len(), 40002);
  EXPECT_EQ(Bytes(big.Right(40002)).substr(39998), "qend");
}

TEST_F(NxStringTest, FillAndExpandRecodeTheirCharacter) {
  NxString w = Wide(u"old");
  w.Fill(3, 'x');
  EXPECT_EQ(w.codeSet, 253);
  EXPECT_EQ(w.size, 8);
  EXPECT_EQ(Units(w), u"xxx");
  w.Fill(2, '\xE9');
  EXPECT_EQ(Units(w), u"\u00E9\u00E9");

  NxString n("abc");
  n.Fill(2, static_cast<unsigned short>(0x00FC));
  EXPECT_EQ(Bytes(n), "\xFC\xFC");
  n.Fill(0, 'x');
  ASSERT_NE(n.data, nullptr);
  EXPECT_EQ(n.size, 1);

  NxString e("abcde");
  char* before = e.data;
  e.Expand(2, 'x');
  e.Expand(5, 'x');
  EXPECT_EQ(e.data, before);
  e.Expand(7, '.');
  EXPECT_EQ(Bytes(e), "abcde..");
  NxString we = Wide(u"a");
  we.Expand(3, static_cast<unsigned short>(0x2026));
  EXPECT_EQ(Units(we), u"a\u2026\u2026");
  NxString none;
  none.Expand(2, '-');
  EXPECT_EQ(Bytes(none), "--");
}

TEST_F(NxStringTest, TrimOnSpacesAndAroundText) {
  NxString left("   ");
  left.LeftTrim();
  EXPECT_EQ(left.Len(), 0);
  NxString right("   ");
  right.RightTrim();
  EXPECT_EQ(Bytes(right), " ");  // the first character is never looked at
  NxString both("  a b  ");
  both.Trim();
  EXPECT_EQ(Bytes(both), "a b");
  NxString w = Wide(u"  \u0416 \t");
  w.Trim();
  EXPECT_EQ(Units(w), u"\u0416");
  NxString none;
  none.Trim();
  EXPECT_EQ(none.data, nullptr);
}

// ---------------------------------------------------------------------------
// The size limit: 65532 8-bit or 32765 16-bit characters.  Past it the
// operation reports and the string stays as it was.

struct Snapshot {
  explicit Snapshot(const NxString& s)
      : data(s.data),
        size(s.size),
        codeSet(s.codeSet),
        language(s.language),
        text(s.StrGet(), s.size) {}
  void ExpectSame(const NxString& s) const {
    EXPECT_EQ(s.data, data);
    EXPECT_EQ(s.size, size);
    EXPECT_EQ(s.codeSet, codeSet);
    EXPECT_EQ(s.language, language);
    EXPECT_TRUE(std::string(s.StrGet(), s.size) == text);
  }
  char* data;
  unsigned short size;
  unsigned char codeSet, language;
  std::string text;
};

TEST_F(NxStringTest, LimitOfAppendInBothWidths) {
  nxtest::AssertRecorder recorder;
  NxString s = Of('a', 65531);
  s += NxString("b");
  EXPECT_EQ(s.size, 65533);
  EXPECT_TRUE(recorder.reports().empty());
  Snapshot full(s);
  s += NxString("c");
  full.ExpectSame(s);
  ASSERT_EQ(recorder.reports().size(), 1u);
  EXPECT_EQ(recorder.reports()[0].expression, "\"String overflow\" && 0");
  EXPECT_EQ(recorder.reports()[0].file, "src\\nxstring");
  s << 'x';
  s << 7;
  full.ExpectSame(s);

  NxString w = WideOf(u'a', 32764);
  w << static_cast<unsigned short>(u'b');
  EXPECT_EQ(w.Len(), 32765);
  recorder.clear();
  Snapshot wide(w);
  w += NxString("c");  // recoded on the way in, still too long
  wide.ExpectSame(w);
  EXPECT_EQ(recorder.reports().size(), 1u);

  recorder.clear();
  NxString tooLong = Of('z', 65533);
  EXPECT_EQ(tooLong.data, nullptr);
  EXPECT_EQ(recorder.reports().size(), 1u);
  NxString wideTooLong = WideOf(u'z', 32766);
  EXPECT_EQ(wideTooLong.data, nullptr);
}

TEST_F(NxStringTest, LimitOfInsertFillExpandAndReplace) {
  nxtest::AssertRecorder recorder;
  NxString s = Of('a', 65532);
  Snapshot full(s);
  s.Insert(NxString("b"), 10);
  full.ExpectSame(s);
  s.Expand(65533, 'x');
  full.ExpectSame(s);
  s.Fill(65533, 'x');
  full.ExpectSame(s);
  EXPECT_EQ(recorder.reports().size(), 3u);
  recorder.clear();
  s.Replace(NxString("bb"), 65531);  // never grows
  EXPECT_EQ(s.Len(), 65532);
  EXPECT_TRUE(recorder.reports().empty());

  NxString w = Wide(u"abc");
  Snapshot small(w);
  w.Fill(32766, 'x');
  small.ExpectSame(w);
  w.Expand(32766, static_cast<unsigned short>(u'x'));
  small.ExpectSame(w);
  EXPECT_EQ(recorder.reports().size(), 2u);
  w.Fill(32765, 'x');
  EXPECT_EQ(w.size, 65532);
}

TEST_F(NxStringTest, LimitOfCodeSetChanges) {
  nxtest::AssertRecorder recorder;
  NxString s = Of('a', 32766);
  Snapshot narrow(s);
  s.SetCodeSet(253);
  narrow.ExpectSame(s);
  EXPECT_EQ(s.MapToCodeSet(253), 0);
  narrow.ExpectSame(s);
  EXPECT_EQ(recorder.reports().size(), 2u);

  NxString target("keep");
  Snapshot kept(target);
  EXPECT_EQ(target.CopyMapped(s, 253, -1), 0);
  kept.ExpectSame(target);
  EXPECT_EQ(recorder.reports().size(), 3u);

  s.Cut(0, 1);
  recorder.clear();
  s.SetCodeSet(253);
  EXPECT_EQ(s.size, 65532);
  EXPECT_EQ(target.CopyMapped(s, 1, -1), 32765);
  EXPECT_TRUE(recorder.reports().empty());
}

TEST_F(NxStringTest, LimitOfUpperCaseExpansion) {
  nxtest::AssertRecorder recorder;
  // U+0390 has a three-character upper-case form.
  NxString three = Wide(u"\u0390\u0390");
  three.ToUpper();
  EXPECT_EQ(Units(three), u"\u0399\u0308\u0301\u0399\u0308\u0301");
  EXPECT_EQ(three.size, 14);

  for (NxString w : {WideOf(u'\u0390', 12000), WideOf(u'\u00DF', 20000), Of('\xDF', 40000)}) {
    recorder.clear();
    Snapshot before(w);
    w.ToUpper();
    before.ExpectSame(w);
    EXPECT_EQ(recorder.reports().size(), 1u);
  }

  recorder.clear();
  NxString fits = WideOf(u'\u0390', 10921);  // 32763 characters in upper case
  fits.ToUpper();
  EXPECT_EQ(fits.Len(), 32763);
  EXPECT_TRUE(recorder.reports().empty());
}

TEST_F(NxStringTest, ConfigurationDecidesWhetherOverflowIsReported) {
  nxtest::AssertRecorder recorder;
  NxKeyValueConfig config;
  DefaultConfig(&config);
  NxString s = Of('a', 65532);
  s << 'b';
  EXPECT_TRUE(recorder.reports().empty());
  config.Set("stringOverflow", "DEBUG");
  s << 'b';
  EXPECT_EQ(recorder.reports().size(), 1u);
  config.Set("stringOverflow", "quiet");
  s << 'b';
  EXPECT_EQ(recorder.reports().size(), 1u);
  EXPECT_EQ(s.Len(), 65532);
  DefaultConfig(nullptr);
}

// ---------------------------------------------------------------------------
// Numbers.

TEST_F(NxStringTest, NumbersFollowTheOptionBit) {
  NxString hex("0x10"), octal("010");
  EXPECT_EQ(static_cast<int>(hex), 16);
  EXPECT_EQ(static_cast<int>(octal), 8);
  ___NxTypeMgrOptions() = 1;
  EXPECT_EQ(static_cast<int>(hex), 0);
  EXPECT_EQ(static_cast<int>(octal), 10);
  EXPECT_EQ(static_cast<long>(octal), 10L);
  EXPECT_EQ(static_cast<int>(NxString()), 0);
  EXPECT_EQ(static_cast<double>(NxString(" 2.5e1")), 25.0);
  EXPECT_EQ(static_cast<double>(NxString()), 0.0);
}

TEST_F(NxStringTest, NumbersSaturateAt32Bits) {
  for (int option = 0; option < 2; ++option) {
    ___NxTypeMgrOptions() = option;
    EXPECT_EQ(static_cast<int>(NxString("99999999999")), INT32_MAX);
    EXPECT_EQ(static_cast<int>(NxString("-99999999999")), INT32_MIN);
    EXPECT_EQ(static_cast<long>(NxString("4294967296")), 2147483647L);
    EXPECT_EQ(static_cast<long>(NxString("-2147483648")), -2147483648L);
    EXPECT_EQ(static_cast<short>(NxString("70000")), 4464);
    EXPECT_EQ(static_cast<short>(NxString("99999999999")), -1);
  }
  ___NxTypeMgrOptions() = 0;
  EXPECT_EQ(static_cast<long>(NxString("0xFFFFFFFF")), 2147483647L);
}

TEST_F(NxStringTest, SixteenBitReadersWrapAndTakeDecimals) {
  EXPECT_EQ(static_cast<int>(Wide(u"123")), 123);
  EXPECT_EQ(static_cast<long>(Wide(u"4294967297")), 1L);  // wraps in 32 bits
  EXPECT_EQ(static_cast<int>(Wide(u"2147483648")), INT32_MIN);
  EXPECT_EQ(static_cast<short>(Wide(u"65537")), 1);
  EXPECT_EQ(static_cast<int>(Wide(u"1a")), 59);  // no validation: 'a' is 49
  EXPECT_DOUBLE_EQ(static_cast<double>(Wide(u"12.25")), 12.25);
  EXPECT_DOUBLE_EQ(static_cast<double>(Wide(u"7")), 7.0);
}

// ---------------------------------------------------------------------------
// Code sets.

TEST_F(NxStringTest, CodeSetChangesBothWays) {
  NxString s(
      "Gr\xFC\xDF"
      "e");
  s.SetCodeSet(2);  // same width: relabel
  EXPECT_EQ(Bytes(s),
            "Gr\xFC\xDF"
            "e");
  s.SetCodeSet(253);
  EXPECT_EQ(Units(s), u"Gr\u00FC\u00DFe");
  s.SetCodeSet(0);  // narrows to the native code set
  EXPECT_EQ(s.codeSet, 0);
  EXPECT_EQ(Bytes(s),
            "Gr\xFC\xDF"
            "e");

  NxString m("\x80 \xE9");
  EXPECT_EQ(m.MapToCodeSet(253), 0);
  EXPECT_EQ(Units(m), u"\u20AC \u00E9");
  EXPECT_EQ(m.MapToCodeSet(1), 0);
  EXPECT_EQ(Bytes(m), "\x80 \xE9");
  EXPECT_EQ(m.MapToCodeSet(2), 0);  // Latin-1 has no euro sign
  EXPECT_EQ(m.codeSet, 2);
  EXPECT_EQ(Bytes(m).substr(1), " \xE9");
  EXPECT_EQ(m.MapToCodeSet(0), NxSTATUS_INVALID_ARGUMENT);
  EXPECT_EQ(m.codeSet, 2);

  NxString none;
  EXPECT_EQ(none.MapToCodeSet(253), 0);
  EXPECT_EQ(none.codeSet, 253);
  EXPECT_EQ(none.data, nullptr);

  NxString label("abc");
  EXPECT_EQ(label.SetCodeSetCode(253), NxSTATUS_INVALID_ARGUMENT);
  EXPECT_EQ(label.codeSet, 1);
  EXPECT_EQ(label.SetCodeSetCode(3), 0);
  EXPECT_EQ(label.codeSet, 3);
  EXPECT_EQ(Bytes(label), "abc");
}

TEST_F(NxStringTest, CopyMappedCopiesWhatThereIs) {
  NxString source("\xE4pfel");
  source.language = 2;
  NxString target("a much longer old text");
  char* buffer = target.data;
  EXPECT_EQ(target.CopyMapped(source, 1, 10), 5);
  EXPECT_EQ(target.data, buffer);  // large enough: kept, size and all
  EXPECT_EQ(Bytes(target), "\xE4pfel");
  EXPECT_EQ(target.language, 2);

  NxString wide("x");
  EXPECT_EQ(wide.CopyMapped(source, 253, 3), 3);
  EXPECT_EQ(wide.codeSet, 253);
  EXPECT_EQ(Units(wide), u"\u00E4pf");
  EXPECT_EQ(wide.CopyMapped(wide, 1, -1), NxSTATUS_INVALID_ARGUMENT);

  NxString back;
  EXPECT_EQ(back.CopyMapped(wide, 1, -1), 3);
  EXPECT_EQ(Bytes(back), "\xE4pf");
  EXPECT_EQ(back.size, 4);
}

// ---------------------------------------------------------------------------
// Case.

TEST_F(NxStringTest, UpperCaseExpandsSharpS) {
  NxString w = Wide(u"stra\u00DFe");
  w.ToUpper();
  EXPECT_EQ(Units(w), u"STRASSE");
  EXPECT_EQ(w.size, 16);
  NxString n(
      "Stra\xDF"
      "e");
  n.ToUpper();
  EXPECT_EQ(Bytes(n), "STRASSE");
  EXPECT_EQ(n.size, 8);
  n.ToLower();
  EXPECT_EQ(Bytes(n), "strasse");
  NxString none;
  none.ToUpper();
  EXPECT_EQ(none.data, nullptr);
}

// ---------------------------------------------------------------------------
// Operations that compare on collation.

TEST_F(NxStringTest, FindRunsOnCollation) {
  NxString s("abcABC");
  EXPECT_EQ(s.Find(NxString("B"), 0, 0x10), 4);
  EXPECT_EQ(s.Find(NxString("B"), 0, 0x30), 1);
  EXPECT_EQ(s.Find(NxString("bc"), 2, 0x30), 4);
  EXPECT_EQ(s.Find(NxString("x"), 0, 0x30), -1);
  EXPECT_EQ(s.Find('C', 0, 0x10), 5);
  EXPECT_EQ(s.Find(static_cast<unsigned short>(u'c'), 1, 0x30), 2);
  EXPECT_EQ(s.SubStringPos(Wide(u"CA"), 0x30), 2);  // 16-bit search text
  EXPECT_EQ(s.Find(NxString("a"), 7, 0x10), -1);
  EXPECT_EQ(s.Find(NxString(), 0, 0x10), -1);
  EXPECT_EQ(NxString().Find(NxString("a"), 0, 0x10), -1);
  NxString emptyText("");
  EXPECT_EQ(s.Find(emptyText, 3, 0x10), 3);
}

TEST_F(NxStringTest, ReplaceAllGoesOnBehindTheInsertedText) {
  NxString s("a-b-c");
  s.ReplaceAll('-', '+', 0);
  EXPECT_EQ(Bytes(s), "a+b+c");
  s.ReplaceAll(NxString("+"), NxString("++"), 2);
  EXPECT_EQ(Bytes(s), "a+b++c");
  NxString again("aa");
  again.ReplaceAll(NxString("a"), NxString("aa"), 0);
  EXPECT_EQ(Bytes(again), "aaaa");
  NxString gone("x.y.");
  gone.ReplaceAll(NxString("."), NxString(""), 0);
  EXPECT_EQ(Bytes(gone), "xy");
  gone.ReplaceAll(NxString(""), NxString("z"), 0);
  EXPECT_EQ(Bytes(gone), "xy");
}

TEST_F(NxStringTest, AtolAndStrtolLookAtTheFirstCharacter) {
  int32_t value = 99;
  EXPECT_EQ(NxString().Atol(value), -1);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(NxString("x1").Strtol(value), -1);
  EXPECT_EQ(NxString(" 1").Atol(value), -1);
  EXPECT_EQ(NxString("0x1f").Strtol(value), 0);
  EXPECT_EQ(value, 31);
  EXPECT_EQ(NxString("0x1f").Atol(value), 0);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(NxString("-12").Atol(value), 0);
  EXPECT_EQ(value, -12);
  EXPECT_EQ(NxString("-99999999999").Strtol(value), 0);
  EXPECT_EQ(value, INT32_MIN);
  EXPECT_EQ(Wide(u"-42").Atol(value), 0);
  EXPECT_EQ(value, -42);
  EXPECT_EQ(Wide(u"42").Strtol(value), 0);
  EXPECT_EQ(value, 42);
}

TEST_F(NxStringTest, SplitListElementByElement) {
  NxString list("a, b,,c ,");
  NxString element("old");
  unsigned short position = 0;
  std::string got;
  while (NxSplitList(list, element, NxString(","), position) == 0)
    got += "[" + Bytes(element) + "]";
  EXPECT_EQ(got, "[a][b][][c]");
  EXPECT_EQ(NxSplitList(list, element, NxString(","), position), NxSTATUS_LIST_ENDED);
  EXPECT_EQ(Bytes(element), "c");  // unchanged at the end

  NxString leading(",x,,y");
  position = 0;
  ASSERT_EQ(NxSplitList(leading, element, NxString(","), position), 0);
  EXPECT_EQ(Bytes(element), "x");
  ASSERT_EQ(NxSplitList(leading, element, NxString(","), position), 0);
  EXPECT_EQ(Bytes(element), "");  // only the very start is passed over
  ASSERT_EQ(NxSplitList(leading, element, NxString(","), position), 0);
  EXPECT_EQ(Bytes(element), "y");
  EXPECT_EQ(NxSplitList(leading, element, NxString(","), position), NxSTATUS_LIST_ENDED);
}

}  // namespace
