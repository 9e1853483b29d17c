// NxBoolean: the three states (and a stray disk byte) through comparison,
// the row, print, scan and the carrier.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using nxtest::Hex;

NxBoolean Byte(unsigned char b) {
  NxBoolean v;
  v.value = b;
  return v;
}

TEST(Boolean, NullOrdersFirstAndEqualsOnlyNull) {
  // Rows and columns: null, false, true, the disk byte 2.
  const unsigned char states[] = {255, 0, 1, 2};
  const int equal[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 1}, {0, 0, 1, 1}};
  const int greater[4][4] = {{0, 0, 0, 0}, {1, 0, 0, 0}, {1, 1, 0, 0}, {1, 1, 1, 0}};
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j < 4; ++j) {
      const NxBoolean a = Byte(states[i]), b = Byte(states[j]);
      EXPECT_EQ(a == b, equal[i][j]) << i << " " << j;
      EXPECT_EQ(a > b, greater[i][j]) << i << " " << j;
      EXPECT_EQ(a < b, !equal[i][j] && !greater[i][j]) << i << " " << j;
    }
  }
  // A number is made a boolean first, so it is never null; all 64 bits count.
  for (long n : {5L, -1L, 0x100000000L}) EXPECT_EQ(NxBoolean(n).value, 1) << n;
  EXPECT_EQ(NxBoolean(0).value, 0);
  const NxBoolean null = Byte(255), yes = Byte(1);
  const std::vector<int> results = {null == 0L, null == 1, null > 0, null<0, yes> 0, yes == 7};
  EXPECT_EQ(results, (std::vector<int>{0, 0, 0, 1, 1, 1}));
}

class BooleanRow : public ::testing::Test {
 protected:
  std::string Show(unsigned char b, const char* start = "") {
    NxString result(start);
    NxBoolean v = Byte(b);
    mgr.PrintToNxString(NxTYPE_NxBoolean, result, &v, nullptr, 1);
    return result.StrGet();
  }
  unsigned char Read(const NxString& text, unsigned char start = 7) {
    NxBoolean v = Byte(start);
    NxString input(text);
    EXPECT_EQ(mgr.ScanFromNxString(NxTYPE_NxBoolean, &v, input, "ignored", 1), &v);
    return v.value;
  }
  NxTypeMgr mgr;
};

TEST_F(BooleanRow, DiskFormIsTheByteInEveryFormat) {
  const NxBoolean values[3] = {Byte(0), Byte(1), Byte(255)};
  for (unsigned char format : {1, 2, 8, 0x82}) {
    unsigned char disk[4] = {0xEE, 0xEE, 0xEE, 0xEE};
    ASSERT_EQ(mgr.Store(NxTYPE_NxBoolean, disk, values, format, 3), 3u);
    EXPECT_EQ(Hex(disk, 4), "0001ffee");
    NxBoolean back[3];
    ASSERT_EQ(mgr.Load(NxTYPE_NxBoolean, back, disk, format, 3), 3u);
    EXPECT_EQ(Hex(back, 3), "0001ff");
    ASSERT_EQ(mgr.Translate(NxTYPE_NxBoolean, disk, format, 4, back, 8, 0, 3), 3u);
    EXPECT_EQ(Hex(disk, 3), "0001ff");
  }
  EXPECT_EQ(mgr.Store(NxTYPE_NxBoolean, nullptr, values, 1, 0), 0u);
  EXPECT_EQ(mgr.DiskLenGet(NxTYPE_NxBoolean, nullptr, 2, 5, 8), 5u);
  EXPECT_EQ(mgr.DiskLenGetFromMemFile(NxTYPE_NxBoolean, nullptr, 2, 5), 5u);
  EXPECT_EQ(mgr.RowGet(NxTYPE_NxBoolean)->NullSizeGet(5), 5u);
}

TEST_F(BooleanRow, NewDefaultAndNullValues) {
  unsigned char* three = static_cast<unsigned char*>(mgr.Create(NxTYPE_NxBoolean, 3));
  EXPECT_EQ(Hex(three, 3), "000000");
  mgr.Delete(NxTYPE_NxBoolean, three, 3);
  for (int null : {0, 1}) {
    NxBoolean* d = static_cast<NxBoolean*>(mgr.DefaultValue(NxTYPE_NxBoolean, 2, null));
    EXPECT_EQ(Hex(d, 2), null ? "ffff" : "0000");
    mgr.Delete(NxTYPE_NxBoolean, d, 2);
  }
  NxBoolean v = Byte(1);
  EXPECT_EQ(mgr.SetNullValue(NxTYPE_NxBoolean, &v), 0);
  EXPECT_NE(mgr.IsNullValue(NxTYPE_NxBoolean, &v), 0);
}

TEST_F(BooleanRow, PrintAndScan) {
  EXPECT_EQ(Show(1, "old"), "TRUE");
  EXPECT_EQ(Show(0), "FALSE");
  EXPECT_EQ(Show(2), "FALSE");  // only the byte 1 prints as true
  EXPECT_EQ(Show(255), "{NULL}");
  const NxBoolean array[3] = {Byte(1), Byte(0), Byte(255)};
  NxString shown;
  mgr.PrintToNxString(NxTYPE_NxBoolean, shown, const_cast<NxBoolean*>(array), nullptr, 3);
  EXPECT_STREQ(shown.StrGet(), "TRUE,FALSE,{NULL}");

  for (const char* word : {"T", "t", "TRUE", "true", "1"}) EXPECT_EQ(Read(word), 1) << word;
  for (const char* word : {"FALSE", "false", "no", "0", "True", "TRUE ", " 1", ""})
    EXPECT_EQ(Read(word), 0) << '"' << word << '"';
  EXPECT_EQ(Read("{NULL}"), 255);
  EXPECT_EQ(Read("{NULL} or not"), 255);
  const unsigned short wide[] = {'t', 'r', 'u', 'e', 0};
  EXPECT_EQ(Read(NxString(wide)), 1);
  for (unsigned char b : {0, 1, 255}) EXPECT_EQ(Read(NxString(Show(b).c_str())), b);
  NxString nothing;
  EXPECT_EQ(mgr.ScanFromNxString(NxTYPE_NxBoolean, nullptr, nothing, nullptr, 1), nullptr);
  NxTypeMgr::SetNullPrintString(NxString(""));  // an empty null text matches every input
  EXPECT_EQ(Read("TRUE", 0), 255);
  // A 16-bit null text is compared whole: "No" is not "NULL".
  const unsigned short nullWide[] = {'N', 'U', 'L', 'L', 0};
  NxTypeMgr::SetNullPrintString(NxString(nullWide));
  EXPECT_EQ(Read("No", 1), 0);
  EXPECT_EQ(Read("NULL", 0), 255);
  NxTypeMgr::SetNullPrintString(NxString("{NULL}"));
}

TEST_F(BooleanRow, CarrierText) {
  const NxBoolean values[4] = {Byte(1), Byte(0), Byte(255), Byte(2)};
  NxTypeConvertData* carrier = mgr.ConvertTo(NxTYPE_NxBoolean, const_cast<NxBoolean*>(values), 4);
  ASSERT_NE(carrier, nullptr);
  EXPECT_STREQ(carrier->GetString(0)->StrGet(), "1");
  EXPECT_STREQ(carrier->GetString(1)->StrGet(), "0");
  EXPECT_TRUE(carrier->GetString(2)->IsNullValue());
  EXPECT_STREQ(carrier->GetString(3)->StrGet(), "0");
  *carrier->GetString(3) = "1x";  // only the first character counts
  NxBoolean* back = static_cast<NxBoolean*>(mgr.ConvertFrom(NxTYPE_NxBoolean, carrier, 5));
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(Hex(back, 5), "0100ff01ff");  // the fifth has no string: null
  mgr.Delete(NxTYPE_NxBoolean, back, 5);
  delete carrier;
}

}  // namespace
