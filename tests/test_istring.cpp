// The legacy strings NxIString and NxCaseIString: their byte maps, the legacy
// compares, the editing members, and their rows' records in both byte orders.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using Bytes = std::vector<unsigned char>;

std::string Text(const char* data) {
  return data != nullptr ? data : "(null)";
}
std::string H(const void* p, size_t n) {
  return nxtest::Hex(p, n);
}

NxTypeMgr mgr;

// ---------------------------------------------------------------------------
// The maps and the compares.

TEST(LegacyMap, BytesAsTheTablesGiveThem) {
  struct {
    unsigned char c;
    unsigned char plain, plainSecond;    // NxIString
    unsigned char folded, foldedSecond;  // NxCaseIString
  } cases[] = {
      {'0', '0', 0, '0', 0},  // below 0x40: the byte itself
      {'A', 84, 0, 84, 0},
      {'a', 78, 0, 84, 0},
      {'Z', 183, 0, 183, 0},
      {'z', 182, 0, 183, 0},
      {'[', 66, 0, 66, 0},
      {'`', 65, 0, 65, 0},
      {0xC0, 84, 3, 84, 3},            // À: A with an accent weight
      {0xE0, 78, 3, 84, 3},            // à
      {0xC5, 189, 0, 189, 0},          // Å: a letter of its own
      {0xDF, 156, 156, 157, 157},      // ß sorts as "ss"
      {0x8C, 0x90, 0x69, 0x90, 0x69},  // Œ as "OE"
      {0x9C, 0x8A, 0x64, 0x90, 0x69},  // œ as "oe", folded as "OE"
      {0x9F, 0xB3, 1, 0xB3, 1},        // Ÿ: Y with an accent weight
      {0xA9, 0xB9, 0, 0xB9, 0},        // 0xA0-0xBF move up by 0x10
      {0x80, 0xE0, 0, 0xE0, 0},        // 0x80-0x9F by 0x60
      {0xF7, 77, 0, 77, 0},
      {0xFF, 176, 1, 179, 1},
  };
  for (const auto& c : cases) {
    unsigned char second = 0xEE;
    EXPECT_EQ(NxIString::Map(c.c, &second), c.plain) << int(c.c);
    EXPECT_EQ(second, c.plainSecond) << int(c.c);
    EXPECT_EQ(NxCaseIString::Map(c.c, &second), c.folded) << int(c.c);
    EXPECT_EQ(second, c.foldedSecond) << int(c.c);
  }
  // The case-folding map gives every byte the map of its upper-case form;
  // the plain map tells the letters of either case apart.
  for (unsigned c = 1; c < 256; ++c) {
    char one[2] = {static_cast<char>(c), 0};
    NxCaseIString upper(one);
    upper.ToUpper();
    unsigned char s1 = 0, s2 = 0;
    const unsigned char m1 = NxCaseIString::Map(static_cast<unsigned char>(c), &s1);
    const unsigned char m2 = NxCaseIString::Map(static_cast<unsigned char>(upper[0]), &s2);
    if (c == 0x9F || c == 0xFF) continue;  // ToUpper turns Ÿ into ÿ; both map alike
    EXPECT_TRUE(m1 == m2 && s1 == s2) << c;
    if (c != static_cast<unsigned char>(upper[0]) && c != 0xDF) {
      EXPECT_NE(NxIString::Map(static_cast<unsigned char>(c), nullptr),
                NxIString::Map(static_cast<unsigned char>(upper[0]), nullptr))
          << c;
    }
  }
}

TEST(LegacyMap, MapText) {
  char out[16];
  std::memset(out, 0x55, sizeof out);
  // Second bytes above 8 are written, accent weights are not; the terminator
  // counts.
  EXPECT_EQ(NxIString::MapText(out,
                               "\xC0"
                               "b\xDF",
                               0),
            5u);
  EXPECT_EQ(H(out, 6), "545a9c9c0055");
  EXPECT_EQ(NxIString::MapText(out,
                               "\xC0"
                               "b\xDF",
                               3),
            3u);  // cut inside "ss"
  EXPECT_EQ(NxIString::MapText(out,
                               "\xC0"
                               "b\xDF",
                               4),
            4u);  // no room for the terminator
  EXPECT_EQ(NxIString::MapText(nullptr, "a", 0), 0u);
  EXPECT_EQ(NxCaseIString::MapText(out, "ab", 0), 3u);
  EXPECT_EQ(H(out, 3), "545b00");
  // Mapped text comes back in upper case, accents lost, letters that sort
  // as two as those two.
  char back[16] = {};
  EXPECT_EQ(NxCaseIString::MapText(out,
                                   "\xE0"
                                   "bc\x9C\xDF",
                                   0),
            8u);
  EXPECT_EQ(NxCaseIString::UnmapText(back, out, 8), 8u);
  EXPECT_STREQ(back, "ABCOESS");
  // A letter of its own comes back from its place in the tables when the
  // byte behind it is its second byte, here the terminator; the walk stops
  // at `count` bytes.
  std::memset(back, 0, sizeof back);
  EXPECT_EQ(NxCaseIString::MapText(out, "x\xE5", 0), 3u);
  EXPECT_EQ(NxCaseIString::UnmapText(back, out, 3), 3u);
  EXPECT_STREQ(back, "X\xC5");
  std::memset(back, 0, sizeof back);
  EXPECT_EQ(NxCaseIString::UnmapText(back, out, 1), 1u);
  EXPECT_STREQ(back, "X");
}

TEST(LegacyCompare, OrderOfTheMaps) {
  struct {
    const char* a;
    const char* b;
    int plain;   // sign of LegacyCompare
    int folded;  // sign of LegacyCaseCompare
  } cases[] = {
      {"a", "b", -1, -1},
      {"a", "A", -1, 0},
      {"B", "a", 1, 1},
      {"a", "ab", -1, -1},
      {"", "a", -1, -1},
      {"\xC1", "A", 0, 0},
      {"\x8C", "OE", 0, 0},
      {"\x9C", "oe", 0, 0},
      {"\x9C", "OE", -1, 0},
      {"\xDF", "ss", 0, 0},
      {"\xDF"
       "a",
       "ss", 1, 1},
      {"Zebra", "zebra", 1, 0},
      {"\xC5", "Z", 1, 1},  // Å after Z
      {"\x8C",
       "\x8C"
       "x",
       -1, -1},
  };
  auto sign = [](int32_t v) { return v < 0 ? -1 : v > 0 ? 1 : 0; };
  for (const auto& c : cases) {
    EXPECT_EQ(sign(LegacyCompare(c.a, c.b, 0, 0, 0)), c.plain) << c.a << " " << c.b;
    EXPECT_EQ(sign(LegacyCompare(c.b, c.a, 0, 0, 0)), -c.plain) << c.a << " " << c.b;
    EXPECT_EQ(sign(LegacyCaseCompare(c.a, c.b, 0, 0, 0)), c.folded) << c.a << " " << c.b;
    EXPECT_EQ(NxIString(c.a) < NxIString(c.b), c.plain < 0);
    EXPECT_EQ(NxCaseIString(c.a) == NxCaseIString(c.b), c.folded == 0);
  }
  EXPECT_EQ(LegacyCompare(nullptr, nullptr, 0, 0, 0), 0);
  EXPECT_LT(LegacyCompare(nullptr, "", 0, 0, 0), 0);
  EXPECT_GT(LegacyCompare("", nullptr, 0, 0, 0), 0);
  EXPECT_EQ(LegacyCompare("abc", "abd", 2, 0, 0), 0);  // limit in passes
  // Raw text (form bit 7) compares as it stands, against mapped bytes.
  EXPECT_EQ(LegacyCompare("T", "A", 0, 0x80, 0), 0);  // 'T' is 84, the map of "A"
  // Bit 5 of the first form weighs accents in the same pass, and a character
  // that sorts as two sorts just before its first letter.
  EXPECT_GT(LegacyCaseCompare("\xC1", "A", 0, 0x20, 0), 0);
  EXPECT_LT(LegacyCaseCompare("\x8C", "O", 0, 0x20, 0), 0);
  EXPECT_GT(LegacyCaseCompare("\x8C", "N", 0, 0x20, 0), 0);
}

// ---------------------------------------------------------------------------
// The members.

TEST(LegacyString, ConstructionAndConversions) {
  NxIString empty("");
  EXPECT_EQ(empty.data, nullptr);
  EXPECT_EQ(NxIString(static_cast<char>(0)).data, nullptr);
  EXPECT_EQ(NxIString("abc", 0).data, nullptr);
  EXPECT_EQ(Text(NxIString("abcdef", 3).data), "abc");
  EXPECT_EQ(NxIString("ab", 5).Len(), 2);
  EXPECT_EQ(Text(NxIString(-7).data), "-7");
  EXPECT_EQ(Text(NxIString(static_cast<short>(-7)).data), "-7");
  EXPECT_EQ(Text(NxIString(1.5).data), "1.500000");                        // "%f", six decimals
  EXPECT_EQ(Text(NxIString(static_cast<long>(0x100000005LL)).data), "5");  // a 32-bit long
  EXPECT_EQ(Text(NxIString(static_cast<unsigned long>(4294967295u)).data), "4294967295");
  EXPECT_EQ(static_cast<int>(NxIString("12abc")), 12);
  EXPECT_EQ(static_cast<short>(NxIString("70000")), 4464);
  EXPECT_EQ(static_cast<long>(NxIString("99999999999")), 2147483647);
  EXPECT_EQ(static_cast<double>(NxIString("2.5")), 2.5);
  EXPECT_EQ(static_cast<int>(NxIString()), 0);
  // The copy constructor writes form 0, assignment passes the form on; a
  // copy of an empty buffer has no text.
  NxIString raw("x");
  raw.form = 0xC0;
  EXPECT_EQ(NxIString(raw).form, 0);
  NxIString assigned;
  assigned = raw;
  EXPECT_EQ(assigned.form, 0xC0);
  assigned = "y";
  EXPECT_EQ(assigned.form, 0);
  NxIString buffer("x");
  buffer[0] = 0;
  EXPECT_EQ(NxIString(buffer).data, nullptr);
  EXPECT_EQ(!buffer, 0);  // an empty buffer still is a text
  NxCaseIString sum = NxCaseIString("ab") + NxCaseIString("cd");
  sum += NxCaseIString();
  EXPECT_EQ(Text(sum.data), "abcd");
}

TEST(LegacyString, Editing) {
  using Edit = void (*)(NxIString&);
  struct {
    const char* before;
    Edit edit;
    const char* after;  // null: no text
  } cases[] = {
      {"hello", [](NxIString& s) { s.Fill(2, 'x'); }, "xxllo"},  // doesn't shorten
      {"hi", [](NxIString& s) { s.Fill(4, 'x'); }, "xxxx"},
      {nullptr, [](NxIString& s) { s.Fill(0, 'x'); }, nullptr},
      {"abc", [](NxIString& s) { s.Insert(NxIString("XY"), 1); }, "aXYbc"},
      {"abc", [](NxIString& s) { s.Insert(NxIString("XY"), 9); }, "abcXY"},  // appends
      {nullptr, [](NxIString& s) { s.Insert(NxIString("XY"), 3); }, "XY"},
      {"abc", [](NxIString& s) { s.Insert(NxIString(), 1); }, "abc"},
      {"hello", [](NxIString& s) { s.Replace(NxIString("XY"), 4); }, "hellX"},
      {"hello", [](NxIString& s) { s.Replace(NxIString("XY"), 6); }, "hello"},
      {"ab", [](NxIString& s) { s.Expand(4, '.'); }, "ab.."},
      {"abcd", [](NxIString& s) { s.Expand(2, '.'); }, "abcd"},
      {"abcd", [](NxIString& s) { s.Cut(1, 2); }, "ad"},
      {"abcd", [](NxIString& s) { s.Cut(2, 9); }, "ab"},
      {"abcd", [](NxIString& s) { s.Cut(0, 4); }, nullptr},
      {"abcd", [](NxIString& s) { s.Cut(5, 1); }, "abcd"},
      {"abcd", [](NxIString& s) { s = s.Copy(1, 2); }, "bc"},
      {"abcd", [](NxIString& s) { s = s.Copy(3, 9); }, "d"},
      {"abcd", [](NxIString& s) { s = s.Copy(4, 1); }, nullptr},
      {"a 0 b", [](NxIString& s) { s.SpaceToZero().ZeroToSpace(); }, "a   b"},  // not inverses
      {"az\xE0\xF7\xFE\x9C\x9F", [](NxIString& s) { s.ToUpper(); }, "AZ\xC0\xF7\xDE\x8C\xFF"},
      {"AZ\xC0\xD7\xDE\x8C\xFF", [](NxIString& s) { s.ToLower(); }, "az\xE0\xD7\xFE\x9C\x9F"},
  };
  for (const auto& c : cases) {
    NxIString s;
    if (c.before != nullptr) s = c.before;
    c.edit(s);
    EXPECT_EQ(Text(s.data), Text(c.after)) << Text(c.before);
  }
  NxIString cut("abc");
  cut.Cut(0, 3);
  EXPECT_EQ(!cut, 1);
  EXPECT_EQ(NxIString("banana").SubStringPos(NxIString("na")), 2);
  EXPECT_EQ(NxIString("banana").SubStringPos(NxIString("NA")), -1);  // bytes, not the map
  EXPECT_EQ(NxIString("ab").SubStringPos(NxIString("abc")), -1);
}

// ---------------------------------------------------------------------------
// The rows.

template <class X>
class LegacyRow : public ::testing::Test {
 protected:
  static constexpr char kId =
      std::is_same<X, NxIString>::value ? NxTYPE_NxIString : NxTYPE_NxCaseIString;
};
using Classes = ::testing::Types<NxIString, NxCaseIString>;
TYPED_TEST_SUITE(LegacyRow, Classes);

TYPED_TEST(LegacyRow, RecordsInBothByteOrders) {
  const char id = TestFixture::kId;
  TypeParam* values = static_cast<TypeParam*>(mgr.Create(id, 3));
  values[0] = "ab";
  values[2] = "c";
  unsigned char disk[16];
  EXPECT_EQ(mgr.DiskLenGet(id, values, 1, 3, 8), 9u);
  EXPECT_EQ(mgr.Store(id, disk, values, 1, 3), 9u);
  EXPECT_EQ(H(disk, 9),
            "400600"
            "616200"
            "00"
            "6300");
  EXPECT_EQ(mgr.Store(id, disk, values, 2, 3), 9u);
  EXPECT_EQ(H(disk, 9), "400006616200006300");
  EXPECT_EQ(mgr.DiskLenGet(id, disk, 2, 3, 2), 9u);
  // A key format marks the record with form 1: bit 7, and in NxCaseIString
  // any of bits 4 to 7.
  mgr.Store(id, disk, values, 0x81, 3);
  EXPECT_EQ(disk[0], 1);
  mgr.Store(id, disk, values, 0x11, 3);
  EXPECT_EQ(disk[0], id == NxTYPE_NxCaseIString ? 1 : 0x40);
  TypeParam* back = static_cast<TypeParam*>(mgr.Create(id, 3));
  back[1] = "old";
  EXPECT_EQ(mgr.Load(id, back, disk, 1, 3), 9u);
  EXPECT_EQ(Text(back[0].data), "ab");
  EXPECT_EQ(back[1].data, nullptr);
  EXPECT_EQ(Text(back[2].data), "c");
  EXPECT_EQ(mgr.Store(id, disk, values, 1, 0), 3u);
  EXPECT_EQ(H(disk, 3), "400000");
  EXPECT_EQ(mgr.RowGet(id)->NullSizeGet(3), 6u);
  TypeParam* three = static_cast<TypeParam*>(mgr.Create(id, 3));
  EXPECT_EQ(mgr.DiskLenGet(id, three, 1, 3, 8), 6u);  // three empty strings
  uint32_t hidden;
  std::memcpy(&hidden, reinterpret_cast<char*>(three) - 4, 4);
  EXPECT_EQ(hidden, 3u);
  mgr.Delete(id, three, 3);
  mgr.Delete(id, back, 3);
  mgr.Delete(id, values, 3);
}

TYPED_TEST(LegacyRow, KeySizes) {
  const char id = TestFixture::kId;
  TypeParam values[2] = {TypeParam("\x8C\xDF"
                                   "a"),
                         TypeParam()};
  // Œ and ß take two bytes each, "a" one, each terminator one.
  EXPECT_EQ(mgr.DiskLenGet(id, values, 0x81, 2, 8), 6 + 1 + 3u);
  EXPECT_EQ(mgr.DiskLenGet(id, values, 0x88, 2, 8), 0u);
  unsigned char disk[16];
  mgr.Store(id, disk, values, 1, 2);
  EXPECT_EQ(mgr.DiskLenGet(id, disk, 0x81, 2, 1), 10u);
  EXPECT_EQ(mgr.DiskLenGet(id, disk, 0x81, 1, 1), 9u);  // at most `count` strings
  disk[0] = 0xC0;                                       // a raw record: its L
  EXPECT_EQ(mgr.DiskLenGet(id, disk, 0x81, 2, 1), 5u + 3);
  // From a file: the record read in the file's format, and 3 more.
  mgr.Store(id, disk, values, 1, 2);
  MemFile file(disk, 8);
  EXPECT_EQ(mgr.DiskLenGetFromMemFile(id, &file, 1, 2), 5u + 3 + 3);
  MemFile keyFile(disk, 8);
  EXPECT_EQ(mgr.DiskLenGetFromMemFile(id, &keyFile, 0x81, 2), 10u + 3);
  MemFile shortFile(disk, 2);
  EXPECT_EQ(mgr.DiskLenGetFromMemFile(id, &shortFile, 1, 2), 0u);
}

TYPED_TEST(LegacyRow, Keys) {
  const char id = TestFixture::kId;
  const bool folds = id == NxTYPE_NxCaseIString;
  TypeParam values[2] = {TypeParam("\xC0"
                                   "b"),
                         TypeParam("zz")};
  unsigned char key[16];
  // From memory, the first element alone: 0xC0, L, the mapped text.
  std::memset(key, 0xEE, sizeof key);
  EXPECT_EQ(mgr.Translate(id, key, 0x81, 10, values, 8, 0, 2), 6u);
  EXPECT_EQ(H(key, 11), std::string("c00300") + (folds ? "545b" : "545a") + "0000000000" + "ee");
  // A short destination cuts the text and keeps its last byte 0; 4 bytes
  // hold an empty text, fewer no key.
  std::memset(key, 0xEE, sizeof key);
  EXPECT_EQ(mgr.Translate(id, key, 0x82, 5, values, 8, 0, 1), 5u);
  EXPECT_EQ(H(key, 6),
            "c0000254"
            "00ee");
  std::memset(key, 0xEE, sizeof key);
  EXPECT_EQ(mgr.Translate(id, key, 0x81, 4, values, 8, 0, 1), 4u);
  EXPECT_EQ(H(key, 5), "c0010000ee");
  EXPECT_EQ(mgr.Translate(id, key, 0x81, 3, values, 8, 0, 1), 0u);
  EXPECT_EQ(mgr.Translate(id, values, 0x88, 16, values, 8, 0, 1), 0u);
  // From a plain record: the whole array mapped; L says how long the key
  // would be, the result how much of it is there.
  unsigned char disk[16];
  mgr.Store(id, disk, values, 2, 2);  // 40 0006 c0 62 00 7a 7a 00
  std::memset(key, 0xEE, sizeof key);
  EXPECT_EQ(mgr.Translate(id, key, 0x82, 12, disk, 2, 9, 2), 9u);
  const std::string zz = folds ? "b7b7" : "b6b6";
  EXPECT_EQ(H(key, 13),
            std::string("c00006") + (folds ? "545b" : "545a") + "00" + zz + "00" + "000000" + "ee");
  std::memset(key, 0xEE, sizeof key);
  EXPECT_EQ(mgr.Translate(id, key, 0x82, 9, disk, 2, 9, 2), 8u);  // 5 of 6 bytes
  EXPECT_EQ(H(key, 10),
            std::string("c00006") + (folds ? "545b" : "545a") + "00" + zz + "00" + "ee");
  // A raw record is copied.
  unsigned char copy[16];
  EXPECT_EQ(mgr.Translate(id, copy, 0x81, 16, key, 0x81, 9, 1), 9u);
  EXPECT_EQ(H(copy, 9), H(key, 9));
}

TYPED_TEST(LegacyRow, TranslateAndConvert) {
  const char id = TestFixture::kId;
  TypeParam values[2] = {TypeParam("ab"), TypeParam("c")};
  values[0].form = 0xC0;
  TypeParam copies[2];
  EXPECT_EQ(mgr.Translate(id, copies, 8, 0, values, 8, 0, 2), 2u * mgr.MemLenGet(id, 1));
  EXPECT_EQ(copies[0].form, 0xC0);
  // Memory to disk never writes past the room; disk to memory never reads
  // past the stated bytes.
  unsigned char disk[12];
  std::memset(disk, 0xEE, sizeof disk);
  EXPECT_EQ(mgr.Translate(id, disk, 2, 7, values, 8, 0, 2), 7u);
  EXPECT_EQ(H(disk, 8), "40000561620063ee");
  TypeParam back[2];
  EXPECT_EQ(mgr.Translate(id, back, 8, 0, disk, 2, 7, 2), 7u);
  EXPECT_EQ(Text(back[0].data), "ab");
  EXPECT_EQ(Text(back[1].data), "c");
  EXPECT_EQ(mgr.Translate(id, back, 8, 0, disk, 2, 6, 2), 6u);
  EXPECT_EQ(back[1].data, nullptr);
  // NxCaseIString takes a key back to upper-case text.
  unsigned char key[16];
  const TypeParam word("\xE9t\xE9");
  const uint32_t n = mgr.Translate(id, key, 0x81, 16, const_cast<TypeParam*>(&word), 8, 0, 1);
  TypeParam fromKey;
  EXPECT_EQ(mgr.Translate(id, &fromKey, 8, 0, key, 0x81, n, 1), n);
  EXPECT_EQ(Text(fromKey.data),
            id == NxTYPE_NxCaseIString ? "ETE" : Text(reinterpret_cast<char*>(key + 3)));
  // Text: the bytes in the native code set; back, the bytes of the string.
  NxTypeConvertData* text = mgr.ConvertTo(id, values, 2);
  ASSERT_NE(text, nullptr);
  EXPECT_STREQ(text->GetString(0)->StrGet(), "ab");
  EXPECT_EQ(text->GetString(0)->codeSet, NxLanguageContext::GetNativeCodeSet());
  text->GetString(1)->SetNullValue();
  TypeParam* converted = static_cast<TypeParam*>(mgr.ConvertFrom(id, text, 2));
  EXPECT_EQ(Text(converted[0].data), "ab");
  EXPECT_EQ(converted[1].data, nullptr);
  mgr.Delete(id, converted, 2);
  delete text;
  TypeParam* defaults = static_cast<TypeParam*>(mgr.DefaultValue(id, 2, 1));
  EXPECT_TRUE(defaults[0].data == nullptr && defaults[1].data == nullptr);
  mgr.Delete(id, defaults, 2);
  EXPECT_EQ(mgr.SupportsNullValue(id), 0);
}

}  // namespace
