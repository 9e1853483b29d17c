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

TEST_F(Print, RowFormatsArraysAndBytes) {
  int32_t seven = 7, five = 5;
  uint32_t max = 4294967295u, u = 3000000000u;
  uint16_t word = 65535;
  int16_t shorts[3] = {1, 2, 3};
  float f = 1.5f;
  double d = -0.25;
  char bytes[3] = {65, 1, 66};
  unsigned char high = 0xE9;
  const std::string longFormat = std::string(600, 'z') + "%ld";
  const struct {
    char id;
    void* value;
    const char* format;
    uint32_t count;
    const char* start;
    std::string want;
  } cases[] = {
      {NxTYPE_long, &seven, nullptr, 1, "", "7"},
      {NxTYPE_BlockId, &seven, nullptr, 1, "", "#7"},
      {NxTYPE_NxDWord, &max, nullptr, 1, "", "4294967295"},
      {NxTYPE_long, &max, nullptr, 1, "", "-1"},
      {NxTYPE_NxWord, &word, nullptr, 1, "", "65535"},
      {NxTYPE_short, &word, nullptr, 1, "", "-1"},
      {NxTYPE_float, &f, nullptr, 1, "", "1.500000"},
      {NxTYPE_double, &d, nullptr, 1, "", "-0.250000"},
      {NxTYPE_unsigned, &u, nullptr, 1, "", "3000000000"},
      {NxTYPE_int, &u, nullptr, 1, "", "-1294967296"},
      // Arrays append with commas; a single element replaces what the result held.
      {NxTYPE_short, shorts, nullptr, 3, "x", "x1,2,3"},
      {NxTYPE_short, shorts, nullptr, 1, "x", "1"},
      {NxTYPE_short, shorts, nullptr, 0, "x", "1"},
      // Bytes print as one run.
      {NxTYPE_char, bytes, nullptr, 3, "", "A0x01B"},
      {NxTYPE_NxByte, bytes, nullptr, 0, "old", ""},
      {NxTYPE_NxByte, &high, nullptr, 1, "", "0xe9"},
      {NxTYPE_char, bytes, "%d", 2, "", "650x01"},
      // Conversions that aren't ours print as text.
      {NxTYPE_long, &five, "%s:%ld", 1, "", "%s:5"},
      {NxTYPE_long, &five, "%ld/%ld%%", 1, "", "5/%ld%"},
      {NxTYPE_long, &five, "%*d", 1, "", "%*d"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Show(c.id, c.value, c.format, c.count, c.start), c.want) << c.want;
  // Long output is cut at the buffer.
  EXPECT_EQ(Show(NxTYPE_long, &seven, longFormat.c_str()).size(), 511u);
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

class Scan : public Print {
 protected:
  // One element read from `text` over `start`; nothing behind it may change.
  template <typename T>
  T Read(char id, const char* text, T start = T(), const char* format = nullptr) {
    struct {
      T value;
      uint32_t guard;
    } g{start, 0xA5A5A5A5u};
    NxString input(text);
    mgr.ScanFromNxString(id, &g.value, input, format, 1);
    EXPECT_EQ(g.guard, 0xA5A5A5A5u) << text;
    return g.value;
  }
};

TEST_F(Scan, PlainScanReadsWhatItCanAndLongsHave32Bits) {
  int32_t v = 99;
  NxString text("12abc");
  EXPECT_EQ(mgr.ScanFromNxString(NxTYPE_long, &v, text, nullptr, 1), &v);
  EXPECT_EQ(v, 12);
  EXPECT_EQ(mgr.ScanFromNxString(NxTYPE_int, nullptr, text, nullptr, 1), nullptr);
  EXPECT_EQ(Read<int32_t>(NxTYPE_long, "abc", 12), 12);  // nothing read: kept
  EXPECT_EQ(Read<float>(NxTYPE_float, "2.5"), 2.5f);
  EXPECT_EQ(Read<int32_t>(NxTYPE_long, "99999999999"), INT32_MAX);
  EXPECT_EQ(Read<int32_t>(NxTYPE_long, "-99999999999"), INT32_MIN);
  EXPECT_EQ(Read<uint32_t>(NxTYPE_NxDWord, "-1"), 4294967295u);
  EXPECT_EQ(Read<uint32_t>(NxTYPE_NxDWord, "4294967296"), 4294967295u);
  EXPECT_EQ(Read<int32_t>(NxTYPE_BlockId, "#42"), 42);
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
  // With a 16-bit default code set the recoded copy must still be 8-bit.
  NxLanguageContext::SetDefaultCodeSet(253);
  NxString units16(units);
  mgr.ScanFromNxString(NxTYPE_long, &v, units16, nullptr, 1);
  float f = 0;
  mgr.ScanFromNxString(NxTYPE_float, &f, units16, nullptr, 1);
  NxLanguageContext::ResetDefaults();
  EXPECT_EQ(v, -42);
  EXPECT_EQ(f, -42.0f);
}

}  // namespace
