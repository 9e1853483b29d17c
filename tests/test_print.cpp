// Generic print and scan through the type manager, and the handlers of the
// plain scalar rows.
#include <cmath>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include <nxtm/nxtm.h>

namespace {

std::string Text(const NxString& s) {
  return std::string(s.StrGet());
}

class Print : public ::testing::Test {
 protected:
  std::string Show(char id, void* value, const char* format = nullptr, uint32_t count = 1,
                   const char* start = "") {
    NxString result(start);
    mgr.PrintToNxString(id, result, value, format, count);
    return Text(result);
  }
  NxTypeMgr mgr;
};

TEST_F(Print, RowFormatsDecide) {
  int32_t seven = 7;
  EXPECT_EQ(Show(NxTYPE_long, &seven), "7");
  EXPECT_EQ(Show(NxTYPE_BlockId, &seven), "#7");
  uint32_t max = 4294967295u;
  EXPECT_EQ(Show(NxTYPE_NxDWord, &max), "4294967295");
  EXPECT_EQ(Show(NxTYPE_long, &max), "-1");
  uint16_t word = 65535;
  EXPECT_EQ(Show(NxTYPE_NxWord, &word), "65535");
  EXPECT_EQ(Show(NxTYPE_short, &word), "-1");
  float f = 1.5f;
  EXPECT_EQ(Show(NxTYPE_float, &f), "1.500000");
  double d = -0.25;
  EXPECT_EQ(Show(NxTYPE_double, &d), "-0.250000");
  uint32_t u = 3000000000u;
  EXPECT_EQ(Show(NxTYPE_unsigned, &u), "3000000000");
  EXPECT_EQ(Show(NxTYPE_int, &u), "-1294967296");
}

TEST_F(Print, ArraysAppendWithCommas) {
  int16_t values[3] = {1, 2, 3};
  EXPECT_EQ(Show(NxTYPE_short, values, nullptr, 3, "x"), "x1,2,3");
  // A single element replaces what the result held.
  EXPECT_EQ(Show(NxTYPE_short, values, nullptr, 1, "x"), "1");
  EXPECT_EQ(Show(NxTYPE_short, values, nullptr, 0, "x"), "1");
}

TEST_F(Print, BytesPrintAsOneRun) {
  char bytes[3] = {65, 1, 66};
  EXPECT_EQ(Show(NxTYPE_char, bytes, nullptr, 3), "A0x01B");
  EXPECT_EQ(Show(NxTYPE_NxByte, bytes, nullptr, 0, "old"), "");
  unsigned char high = 0xE9;
  EXPECT_EQ(Show(NxTYPE_NxByte, &high), "0xe9");
  EXPECT_EQ(Show(NxTYPE_char, bytes, "%d", 2), "650x01");
}

TEST_F(Print, PortableDoubleFormReadsBackExactly) {
  double eight = 8.0;
  EXPECT_EQ(Show(NxTYPE_double, &eight, "ldexp(%.17g,%d)"), "ldexp(0.5,4)");
  const double values[] = {0.1, -1e300, 5e-324, 123456.789};
  for (double v : values) {
    double copy = v;
    NxString text;
    mgr.PrintToNxString(NxTYPE_double, text, &copy, "ldexp(%.17g,%d)", 1);
    double back = 0;
    mgr.ScanFromNxString(NxTYPE_double, &back, text, "ldexp(%lf,%d)", 1);
    EXPECT_EQ(back, v) << Text(text);
  }
}

TEST_F(Print, ExchangedFormatsAndFunctionsReachEveryManager) {
  NxTypeMgr other;
  int32_t seven = 7;
  const char* old = mgr.ExchangeFormat(NxTYPE_long, "%05ld");
  EXPECT_STREQ(old, "%ld");
  NxString result;
  other.PrintToNxString(NxTYPE_long, result, &seven, nullptr, 1);
  EXPECT_EQ(Text(result), "00007");
  mgr.ExchangeFormat(NxTYPE_long, old);

  // A print function exchanged into the char row goes through the array form.
  NxPrintToNxStringFunc bytePrint = mgr.ExchangePrintToNxStringFunc(
      NxTYPE_char, [](NxString& r, void* v, const char*, uint32_t) -> NxString& {
        r = NxString(static_cast<short>(*static_cast<char*>(v)));
        return r;
      });
  char bytes[2] = {'a', 'b'};
  NxString joined;
  other.PrintToNxString(NxTYPE_char, joined, bytes, nullptr, 2);
  EXPECT_EQ(Text(joined), "97,98");
  mgr.ExchangePrintToNxStringFunc(NxTYPE_char, bytePrint);

  NxScanFromNxStringFunc scan = mgr.ExchangeScanFromNxStringFunc(NxTYPE_long, nullptr);
  EXPECT_NE(scan, nullptr);  // a null argument only asks
}

TEST_F(Print, LongOutputIsCutAtTheBuffer) {
  std::string format(600, 'z');
  format += "%ld";
  int32_t v = 1;
  EXPECT_EQ(Show(NxTYPE_long, &v, format.c_str()).size(), 511u);
}

TEST_F(Print, FormatsWithoutArgumentsOfOursPrintAsText) {
  int32_t v = 5;
  EXPECT_EQ(Show(NxTYPE_long, &v, "%s:%ld"), "%s:5");
  EXPECT_EQ(Show(NxTYPE_long, &v, "%ld/%ld%%"), "5/%ld%");
  EXPECT_EQ(Show(NxTYPE_long, &v, "%*d"), "%*d");
}

TEST_F(Print, RealsOutOfIntegerRangeHoldAtTheLimits) {
  double huge = 1.78389e+127;
  EXPECT_EQ(Show(NxTYPE_double, &huge, "%lld"), "9223372036854775807");
  double nan = std::nan("");
  EXPECT_EQ(Show(NxTYPE_double, &nan, "%d"), "0");
  // A text beyond the range of a float converts to an infinity.
  NxString* strings = static_cast<NxString*>(mgr.Create(NxTYPE_NxString, 1));
  *strings = "1e300";
  NxTypeConvertData* data = NxTypeConvertData::Make(NxTYPE_NxString, 1, strings, &mgr);
  float* f = static_cast<float*>(mgr.ConvertFrom(NxTYPE_float, data, 1));
  EXPECT_TRUE(std::isinf(*f));
  mgr.Delete(NxTYPE_float, f, 1);
  delete data;
}

class Scan : public Print {};

TEST_F(Scan, PlainScanReadsWhatItCanAndKeepsTheRest) {
  int32_t v = 99;
  NxString text("12abc");
  EXPECT_EQ(mgr.ScanFromNxString(NxTYPE_long, &v, text, nullptr, 1), &v);
  EXPECT_EQ(v, 12);
  NxString nothing("abc");
  mgr.ScanFromNxString(NxTYPE_long, &v, nothing, nullptr, 1);
  EXPECT_EQ(v, 12);
  EXPECT_EQ(mgr.ScanFromNxString(NxTYPE_int, nullptr, text, nullptr, 1), nullptr);
  float f = 0;
  NxString real("2.5");
  mgr.ScanFromNxString(NxTYPE_float, &f, real, nullptr, 1);
  EXPECT_EQ(f, 2.5f);
}

TEST_F(Scan, LongsReadAsOnAPlatformWhereLongIs32Bits) {
  struct Guarded {
    int32_t value;
    uint32_t guard;
  } g{0, 0xA5A5A5A5u};
  NxString big("99999999999");
  mgr.ScanFromNxString(NxTYPE_long, &g.value, big, nullptr, 1);
  EXPECT_EQ(g.value, 2147483647);
  EXPECT_EQ(g.guard, 0xA5A5A5A5u);
  NxString small("-99999999999");
  mgr.ScanFromNxString(NxTYPE_long, &g.value, small, nullptr, 1);
  EXPECT_EQ(g.value, INT32_MIN);
  NxString minusOne("-1");
  mgr.ScanFromNxString(NxTYPE_NxDWord, &g.value, minusOne, nullptr, 1);
  EXPECT_EQ(static_cast<uint32_t>(g.value), 4294967295u);
  NxString tooBig("4294967296");
  mgr.ScanFromNxString(NxTYPE_NxDWord, &g.value, tooBig, nullptr, 1);
  EXPECT_EQ(static_cast<uint32_t>(g.value), 4294967295u);
  NxString hash("#42");
  mgr.ScanFromNxString(NxTYPE_BlockId, &g.value, hash, nullptr, 1);
  EXPECT_EQ(g.value, 42);
  EXPECT_EQ(g.guard, 0xA5A5A5A5u);
  // A format wider than the element never writes past it.
  int16_t narrow[2] = {0, 0x1234};
  NxString wide("123456789");
  mgr.ScanFromNxString(NxTYPE_short, narrow, wide, "%lf", 1);
  EXPECT_EQ(narrow[1], 0x1234);
}

TEST_F(Scan, ByteScanWalksOneCharacterAtATime) {
  char bytes[3] = {0, 0, 'z'};
  NxString ab("AB");
  mgr.ScanFromNxString(NxTYPE_char, bytes, ab, nullptr, 3);
  EXPECT_EQ(bytes[0], 'A');
  EXPECT_EQ(bytes[1], 'B');
  EXPECT_EQ(bytes[2], 'z');  // the text ended first
  NxString hex("0x41");
  mgr.ScanFromNxString(NxTYPE_char, bytes, hex, nullptr, 1);
  EXPECT_EQ(bytes[0], 'A');
  NxString empty("");
  bytes[0] = 'q';
  mgr.ScanFromNxString(NxTYPE_NxByte, bytes, empty, nullptr, 2);
  EXPECT_EQ(bytes[0], 'q');
}

TEST_F(Scan, SixteenBitTextIsRecodedFirst) {
  const unsigned short units[] = {'-', '4', '2', 0};
  NxString text(units);
  ASSERT_GT(text.codeSet, 224);
  int32_t v = 0;
  mgr.ScanFromNxString(NxTYPE_long, &v, text, nullptr, 1);
  EXPECT_EQ(v, -42);
}

}  // namespace
