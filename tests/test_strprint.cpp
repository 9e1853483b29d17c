// Print and scan of the string rows through the type table: ordinary text
// through the format, order text through the placeholders, the null text, and
// the 8-bit bytes of NxIString and NxCaseIString.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include "test_support.h"

namespace {

constexpr unsigned char kCp1252 = 1, kIso8859_2 = 3, kUnicode = 253, kOrderText = 254;
constexpr unsigned char kNeutral = 1;

NxString Narrow(const char* text, unsigned char codeSet = kCp1252) {
  NxString s(text);
  s.SetCodeSetCode(codeSet);
  return s;
}
NxString Unicode(const std::u16string& text) {
  std::vector<unsigned short> units(text.begin(), text.end());
  units.push_back(0);
  NxString s(units.data());
  s.SetCodeSetCode(kUnicode);
  return s;
}
std::u16string Units(const NxString& s) {
  const unsigned short* p = reinterpret_cast<const unsigned short*>(s.StrGet());
  return std::u16string(p, p + s.Len());
}

// Order text as a key record loads it: the orders of `text` in code set 1,
// with the iterator's state in the language byte, and bit 7 when asked.
NxString Keyed(const char* text, unsigned char language = kNeutral, bool mixed = false) {
  NxStringIterator it(text, kCp1252, language, 1);
  std::vector<unsigned short> orders;
  for (unsigned short o; (o = it.GetNextOrder(1)) != 0;) orders.push_back(o);
  orders.push_back(0);
  NxString key(orders.data());
  key.SetCodeSetCode(kOrderText);
  key.language = static_cast<unsigned char>(it.state | (mixed ? 0x80 : 0));
  return key;
}
NxString OrderText(std::vector<unsigned short> orders, unsigned char state) {
  orders.push_back(0);
  NxString key(orders.data());
  key.SetCodeSetCode(kOrderText);
  key.language = state;
  return key;
}

class StringPrint : public ::testing::Test {
 protected:
  void TearDown() override { NxLanguageContext::ResetDefaults(); }
  NxString Print(NxString value, const char* format, NxString result = NxString()) {
    mgr.PrintToNxString(NxTYPE_NxString, result, &value, format, 1);
    return result;
  }
  std::string Text(NxString value, const char* format, NxString result = NxString()) {
    return Print(value, format, result).StrGet();
  }
  NxTypeMgr mgr;
};

TEST_F(StringPrint, NullAndEmptyIgnoreTheFormat) {
  NxString null;
  null.SetNullValue();
  EXPECT_EQ("{NULL}", Text(null, "[%s]"));
  EXPECT_EQ("{NULL}", Text(OrderText({}, 0), "%3M"));  // code set 254, language 0
  const NxString empty = Print(Narrow("", kIso8859_2), "[%s]", Narrow("x"));
  EXPECT_TRUE(empty.IsEmpty());
  EXPECT_EQ(kIso8859_2, empty.codeSet);
  EXPECT_TRUE(Print(OrderText({}, 1), "[%3M]").IsEmpty());
}

TEST_F(StringPrint, OrdinaryTextGoesThroughTheFormat) {
  EXPECT_EQ("abc", Text(Narrow("abc"), nullptr));
  EXPECT_EQ("[ab   ]|", Text(Narrow("abc"), "[%-5.2s]|"));
  // One text argument: other conversions stand as written, "%%" is a percent.
  EXPECT_EQ("%d abc %s 100%", Text(Narrow("abc"), "%d %s %s 100%%"));
  // 8-bit text keeps its code set.
  const NxString latin2 = Print(Narrow("\xB3\xF3", kIso8859_2), "(%s)");
  EXPECT_EQ("(\xB3\xF3)", std::string(latin2.StrGet()));
  EXPECT_EQ(kIso8859_2, latin2.codeSet);
  // A format can't add more than 512 bytes: the rest is cut.
  EXPECT_EQ(3u + 5 + 511, Text(Narrow("abc"), "%600s").size());
  // Arrays through the type table, in both tables.
  NxString values[2] = {Narrow("a"), Narrow("b")};
  NxString result("x");
  mgr.PrintToNxString(NxTYPE_NxString, result, values, "<%s>", 2);
  EXPECT_EQ("x<a>,<b>", std::string(result.StrGet()));
  NxTypeMgr(0).PrintToNxString(NxTYPE_NxString, result, values, "<%s>", 1);
  EXPECT_EQ("<a>", std::string(result.StrGet()));
}

TEST_F(StringPrint, SixteenBitTextIsRecodedIntoTheTarget) {
  const NxString text = Unicode(u"łó€");
  // Into the result's own code set; the result ends in the default 8-bit one.
  const NxString latin2 = Print(text, "%s", NxString(kIso8859_2, 0));
  EXPECT_EQ("\xB3\xF3?", std::string(latin2.StrGet()));
  EXPECT_EQ(kCp1252, latin2.codeSet);
  // Code set 0 with a default of 0: the native code set.
  NxString::SetDefaultCodeSet(0);
  EXPECT_EQ("?\xF3\x80", Text(text, "%s", NxString(static_cast<unsigned char>(0), 0)));
  // A 16-bit target takes the default 8-bit code set instead.
  EXPECT_EQ("?\xF3\x80", Text(text, "%s", NxString(kUnicode, 0)));
}

TEST_F(StringPrint, OrderTextShowsItsCharacters) {
  const NxString key = Keyed("Cr\xE8me br\xFBl\xE9\x65");
  EXPECT_EQ("<Creme brulee>", Text(key, "<%1M>"));
  EXPECT_EQ("Cr\xE8me br\xFBl\xE9\x65", Text(key, "%2M"));
  EXPECT_EQ("[Cr\xE8me br\xFBl\xE9\x65]", Text(key, "[%s]"));  // no placeholder: as "%2M"
  // The first placeholder by number counts, wherever it stands.
  EXPECT_EQ("%2M|Creme brulee|%s", Text(key, "%2M|%1M|%s"));
  // "%2M" recodes from code set 1 into the result's code set, "%1M" doesn't.
  const NxString latin2 = Print(key, "%2M", NxString(kIso8859_2, 0));
  EXPECT_EQ(kIso8859_2, latin2.codeSet);
  EXPECT_EQ("Cr?me br?l\xE9\x65", std::string(latin2.StrGet()));
  EXPECT_EQ(u"Crème brûlée", Units(Print(key, "%2M", NxString(kUnicode, 0))));
  EXPECT_EQ(kCp1252, Print(key, "%1M", NxString(kIso8859_2, 0)).codeSet);
  // Symbols without a plain character, digits, ideographs and unknown states.
  EXPECT_EQ("\x07.9\x7F", Text(OrderText({80 + 33, 80 + 68, 0x3F5A, 0x8000}, 1), "%1M"));
  EXPECT_EQ("\x7F\x7F", Text(OrderText({0x400C, 0x3F00}, 20), "%1M"));
}

TEST_F(StringPrint, OrderTextNamesEachOrder) {
  const NxString key = Keyed("A\xE9\x31");
  EXPECT_EQ("upper letter A, lower letter e with accent acute, digit 1, ", Text(key, "%3M, "));
  EXPECT_EQ("[A][\\'e][1]", Text(key, "[%4M]"));
  // A key cut at a change of state says so, through the same format.
  EXPECT_EQ("upper letter A, [MIX], ", Text(Keyed("A", kNeutral, true), "%3M, "));
  EXPECT_EQ("A", Text(Keyed("A", kNeutral, true), "%4M"));
  // Accented names where code set 1 has them; the character where its name is empty.
  EXPECT_EQ("\\\"y\x8A\\AEE", Text(Keyed("\xFF\x8A\xC6"), "%4M"));
  EXPECT_EQ("HAN character 0x4e00\n;", Text(OrderText({0x4E00}, 20), "%3M;"));
}

TEST_F(StringPrint, ScanCopiesTheTextOrReadsTheNullText) {
  NxString value = Narrow("old");
  NxString text = Narrow("new", kIso8859_2);
  text.language = 6;
  EXPECT_EQ(&value, mgr.ScanFromNxString(NxTYPE_NxString, &value, text, "%d", 1));
  EXPECT_EQ("new", std::string(value.StrGet()));
  EXPECT_EQ(kIso8859_2, value.codeSet);
  EXPECT_EQ(6, value.language);
  // Order text is copied as it stands, its state included.
  NxString key = Keyed("ab", kNeutral, true);
  mgr.ScanFromNxString(NxTYPE_NxString, &value, key, nullptr, 1);
  EXPECT_EQ(kOrderText, value.codeSet);
  EXPECT_EQ(key.language, value.language);
  EXPECT_EQ(Units(key), Units(value));
  // The null text, and any text that begins with it, reads as null.
  for (const char* null : {"{NULL}", "{NULL} and more", "{NULL"}) {
    NxString nullText(null);
    value = Narrow("old");
    mgr.ScanFromNxString(NxTYPE_NxString, &value, nullText, nullptr, 1);
    EXPECT_EQ(std::strlen(null) >= 6, value.IsNullValue() != 0) << null;
  }
  EXPECT_EQ(nullptr, mgr.ScanFromNxString(NxTYPE_NxString, nullptr, text, nullptr, 1));
}

// The legacy strings print their bytes through the format and read any text
// back as 8-bit bytes; both rows behave alike.
template <class X>
class LegacyPrint : public ::testing::Test {
 protected:
  void TearDown() override { NxLanguageContext::ResetDefaults(); }
  static char Id() {
    return std::is_same<X, NxIString>::value ? NxTYPE_NxIString : NxTYPE_NxCaseIString;
  }
  NxString Print(X value, const char* format, NxString result = NxString()) {
    mgr.PrintToNxString(Id(), result, &value, format, 1);
    return result;
  }
  std::string Scan(const NxString& source, X value = X("old")) {
    NxString text = source;
    EXPECT_EQ(&value, mgr.ScanFromNxString(Id(), &value, text, "[%d]", 1));
    EXPECT_EQ(0, value.form);
    return value.data != nullptr ? value.data : "(no text)";
  }
  NxTypeMgr mgr;
};
using LegacyTypes = ::testing::Types<NxIString, NxCaseIString>;
TYPED_TEST_SUITE(LegacyPrint, LegacyTypes);

TYPED_TEST(LegacyPrint, BytesGoThroughTheFormatIntoTheDefault8BitCodeSet) {
  EXPECT_EQ("abc", std::string(this->Print(TypeParam("abc"), nullptr).StrGet()));
  EXPECT_EQ("[ab   ] %d", std::string(this->Print(TypeParam("abc"), "[%-5.2s] %d").StrGet()));
  // Arrays through the table, each element through the format.
  TypeParam values[3] = {TypeParam("a"), TypeParam(), TypeParam("c")};
  NxString joined;
  this->mgr.PrintToNxString(this->Id(), joined, values, "<%s>", 3);
  EXPECT_EQ("<a>,,<c>", std::string(joined.StrGet()));
  // No text and no code set: the bytes stand as they are, whatever the
  // result's code set was, in the default 8-bit code set.
  NxString::SetDefaultCodeSet(kUnicode);
  NxLanguageContext::SetDefault8CodeSet(kIso8859_2);
  const NxString latin2 = this->Print(TypeParam("\xB3\xF3"), "<%s>", NxString(kUnicode, 0));
  EXPECT_EQ("<\xB3\xF3>", std::string(latin2.StrGet()));
  EXPECT_EQ(kIso8859_2, latin2.codeSet);
  // An object without text prints empty, format or not.
  const NxString empty = this->Print(TypeParam(), "[%s]", Narrow("x"));
  EXPECT_TRUE(empty.IsEmpty());
  EXPECT_EQ(kIso8859_2, empty.codeSet);
}

TYPED_TEST(LegacyPrint, ScanTakesEightBitTextAsItStandsAndRecodesSixteenBitText) {
  EXPECT_EQ("new", this->Scan(Narrow("new")));
  EXPECT_EQ("\xB3\xF3", this->Scan(Narrow("\xB3\xF3", kIso8859_2)));  // no recoding
  EXPECT_EQ("(no text)", this->Scan(Narrow("")));
  // No null value: the null text is text, and a null string no text.
  EXPECT_EQ("{NULL}", this->Scan(NxString("{NULL}")));
  NxString null;
  null.SetNullValue();
  EXPECT_EQ("(no text)", this->Scan(null));
  // 16-bit text goes into the default code set; a 16-bit default gives way
  // to the default 8-bit code set.
  const NxString text = Unicode(u"łó€");
  EXPECT_EQ("?\xF3\x80", this->Scan(text));
  NxString::SetDefaultCodeSet(kIso8859_2);
  EXPECT_EQ("\xB3\xF3?", this->Scan(text));
  NxString::SetDefaultCodeSet(kUnicode);
  EXPECT_EQ("?\xF3\x80", this->Scan(text));
  // Print and scan agree on 8-bit text.
  NxString printed = this->Print(TypeParam("\xC0 la carte"), nullptr);
  EXPECT_EQ("\xC0 la carte", this->Scan(printed));
  EXPECT_EQ(nullptr, this->mgr.ScanFromNxString(this->Id(), nullptr, printed, nullptr, 1));
}

}  // namespace
