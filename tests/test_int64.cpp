// NxInt64 against native 128-bit arithmetic on extremes and seeded random
// operands, its construction from reals, its text forms, the clock, and its
// row.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "test_support.h"

namespace {

using nxtest::Hex;
using I128 = __int128;

constexpr int64_t kMin = std::numeric_limits<int64_t>::min();
constexpr int64_t kMax = std::numeric_limits<int64_t>::max();

// The value from the two words, independently of the class's own accessors.
int64_t Of(const NxInt64& n) {
  return static_cast<int64_t>(static_cast<uint64_t>(static_cast<uint32_t>(n.high)) << 32 | n.low);
}
NxInt64 Make(int64_t v) {
  const uint64_t u = static_cast<uint64_t>(v);
  return NxInt64(static_cast<uint32_t>(u), static_cast<int32_t>(static_cast<uint32_t>(u >> 32)));
}
int64_t Wrap(I128 v) {
  return static_cast<int64_t>(static_cast<uint64_t>(static_cast<unsigned __int128>(v)));
}

// clang-format off
const int64_t kExtremes[] = {0, 1, -1, 2, -2, 7, -7, 3, kMin, kMin + 1, kMax, kMax - 1, INT32_MIN,
                             INT32_MAX, 0xFFFFFFFFll, 1ll << 32, -(1ll << 32), kMin / 2,
                             0x7FFFFFFF00000000ll};
// clang-format on

// Every pair of extremes, then random pairs whose magnitudes spread over
// all bit lengths, so that both words and the carries between them count.
std::vector<std::pair<int64_t, int64_t>> Operands() {
  std::vector<std::pair<int64_t, int64_t>> pairs;
  for (int64_t a : kExtremes)
    for (int64_t b : kExtremes) pairs.emplace_back(a, b);
  std::mt19937_64 random(20240917);
  auto draw = [&random]() {
    const uint64_t bits = random() >> (random() % 64);
    return (random() & 1) ? static_cast<int64_t>(0 - bits) : static_cast<int64_t>(bits);
  };
  for (int i = 0; i < 4000; ++i) pairs.emplace_back(draw(), draw());
  return pairs;
}

// Every operator on every pair, against 128-bit arithmetic cut to 64 bits.
TEST(Int64, OperatorsMatchNativeWraparound) {
  for (const auto& [a, b] : Operands()) {
    SCOPED_TRACE(std::to_string(a) + " " + std::to_string(b));
    const NxInt64 x = Make(a), y = Make(b);
    ASSERT_EQ(Of(x + y), Wrap(I128(a) + b));
    ASSERT_EQ(Of(x - y), Wrap(I128(a) - b));
    ASSERT_EQ(Of(x * y), Wrap(I128(a) * b));
    ASSERT_EQ(Of(-x), Wrap(-I128(a)));
    ASSERT_EQ(Of(x & y), a & b);
    ASSERT_EQ(Of(x | y), a | b);
    ASSERT_EQ(Of(~x), ~a);
    ASSERT_EQ(Of(x.Abs()), a == kMin ? kMin : (a < 0 ? -a : a));
    if (b != 0) {
      // Truncating division; the quotient of the lowest value by -1 wraps.
      ASSERT_EQ(Of(x / y), Wrap(I128(a) / b));
      ASSERT_EQ(Of(x % y), Wrap(I128(a) % b));
    }
    const int comparisons[6] = {x == y, x != y, x<y, x> y, x <= y, x >= y};
    const int expected[6] = {a == b, a != b, a<b, a> b, a <= b, a >= b};
    for (int i = 0; i < 6; ++i) ASSERT_EQ(comparisons[i], expected[i]) << "comparison " << i;
    // Shifts by the low bits of b, and by counts of 64 and more.
    for (unsigned n : {static_cast<unsigned>(b & 63), 64u + static_cast<unsigned>(b & 7), ~0u}) {
      const int64_t left = n >= 64 ? 0 : static_cast<int64_t>(static_cast<uint64_t>(a) << n);
      const int64_t right = n >= 64 ? (a < 0 ? -1 : 0) : (a >> n);
      ASSERT_EQ(Of(x << n), left) << n;
      ASSERT_EQ(Of(x >> n), right) << n;
    }
  }
}

TEST(Int64, DivisionByZeroReportsAndGivesZero) {
  nxtest::AssertRecorder recorder;
  for (int64_t a : kExtremes) {
    recorder.clear();
    EXPECT_EQ(Of(Make(a) / NxInt64()), 0);
    // The lowest value is divided as the highest plus one: remainder -1.
    EXPECT_EQ(Of(Make(a) % NxInt64()), a == kMin ? -1 : 0) << a;
    ASSERT_EQ(recorder.reports().size(), 2u);
    EXPECT_EQ(recorder.reports()[0].expression, "0 && \"NxInt64 divide by zero\"");
    EXPECT_EQ(recorder.reports()[0].file, "src\\nxint64");
    EXPECT_EQ(recorder.reports()[0].line, 737);
  }
}

TEST(Int64, CompoundFormsAndConstructors) {
  NxInt64 x(10), top = Make(kMax);
  EXPECT_EQ(Of(x *= -3) + Of(x), -60);  // compound forms return the new value
  EXPECT_EQ(Of(++top), kMin);
  EXPECT_EQ(Of(NxInt64(4000000000u)), 4000000000ll);  // unsigned: zero-extended
  EXPECT_EQ(Of(NxInt64(~0ull)), -1);
}

// The reference for reals: seven significant digits of "%.6e" as an
// integer mantissa, shifted by the decimal exponent, cut toward zero.
int64_t RealReference(double d) {
  char text[64];
  std::snprintf(text, sizeof text, "%.6e", std::fabs(d));
  int64_t mantissa = 0;
  for (const char* p = text; *p != 'e'; ++p)
    if (*p >= '0' && *p <= '9') mantissa = mantissa * 10 + (*p - '0');
  int exponent = std::atoi(std::strchr(text, 'e') + 1) - 6;
  for (; exponent > 0; --exponent) mantissa *= 10;
  for (; exponent < 0; ++exponent) mantissa /= 10;
  return d < 0 ? -mantissa : mantissa;
}

TEST(Int64, RealsKeepSevenDigitsAndSaturate) {
  const double inf = std::numeric_limits<double>::infinity();
  // clang-format off
  const std::pair<double, int64_t> cases[] = {
      {12345678.0, 12345680}, {1234567.0, 1234567}, {1.9999999, 2}, {2.5, 2}, {-2.5, -2},
      {1e18, 1000000000000000000ll}, {9223372036854774784.0, 9223372000000000000ll},
      {9223372036854775808.0, kMax}, {1e30, kMax}, {-1e30, -kMax}, {inf, kMax}, {-inf, -kMax},
      {std::nan(""), 0}, {0.999, 0}, {-0.5, 0}, {1.0, 1}};
  // clang-format on
  for (const auto& [d, want] : cases) EXPECT_EQ(Of(NxInt64(d)), want) << d;
  std::mt19937_64 random(99);
  std::uniform_real_distribution<double> exponent(0.0, 18.9);
  for (int i = 0; i < 2000; ++i) {
    const double d = std::pow(10.0, exponent(random)) * ((random() & 1) ? -1 : 1);
    ASSERT_EQ(Of(NxInt64(d)), RealReference(d)) << d;
  }
}

std::string Print(int64_t v, const char* format, const char* start = "") {
  NxString result(start);
  Make(v).PrintToNxString(result, format);
  return result.StrGet();
}

TEST(Int64, PrintInEveryBase) {
  // clang-format off
  const std::pair<int64_t, const char*> values[] = {
      {255, "255 0377 0xff 0XFF"}, {-255, "-255 -0377 -0xff -0XFF"}, {0, "0 00 0x0 0X0"},
      {kMin, "-9223372036854775808 01000000000000000000000 0x8000000000000000 0X8000000000000000"},
      {kMax, "9223372036854775807 0777777777777777777777 0x7fffffffffffffff 0X7FFFFFFFFFFFFFFF"}};
  // clang-format on
  for (const auto& [v, want] : values) {
    EXPECT_EQ(Print(v, "%S") + " " + Print(v, "%o") + " " + Print(v, "%x") + " " + Print(v, "%X"),
              want);
    EXPECT_EQ(Print(v, "%d"), Print(v, "%S"));
    EXPECT_EQ(Print(v, "%i"), Print(v, nullptr));
  }
  EXPECT_EQ(Print(-1, "%S"), "-1");
  EXPECT_EQ(Print(5, "n=%S;", "x"), "xn=5;");  // appends
  EXPECT_EQ(Print(5, "", "x"), "x");
  EXPECT_EQ(Print(5, "%q"), "%q");
  EXPECT_EQ(Print(5, "%%d"), "%5");
  EXPECT_EQ(Print(5, "100%"), "100%");
}

int64_t Scan(const char* text, const char* format, int64_t start = 42) {
  NxInt64 n = Make(start);
  n.ScanFromNxString(NxString(text), format);
  return Of(n);
}

TEST(Int64, ScanTakesTheBaseFromTheText) {
  // clang-format off
  const struct { const char* text; const char* format; int64_t want; } cases[] = {
      {"077", "%S", 63}, {"077", "%d", -1}, {"077", "%o", 63}, {"0", "%d", -1}, {"0", "%S", 0},
      {"0x1F", "%x", 31}, {"0XfF", "%X", 255}, {"1F", "%x", -1}, {"12a", "%d", -1},
      {"12 ", "%S", -1}, {"12 days", "%S days", 12}, {"12", "%S days", -1},
      {"12 days!", "%S days", -1}, {"-42", "%i", -42}, {"+42", "%S", 42}, {"z", "%S", -1},
      {"%7", "%%d", 7}, {"9", "%o", -1}, {"-9223372036854775808", "%S", kMin},
      {"18446744073709551617", "%S", 1}, {"", "%S", 42}, {"5", "", 42}, {"5", nullptr, 5}};
  // clang-format on
  for (const auto& c : cases)
    EXPECT_EQ(Scan(c.text, c.format), c.want) << '"' << c.text << "\" with " << c.format;
  const unsigned short wide[] = {'0', 'x', '1', 'F', 0};
  NxInt64 n;
  n.ScanFromNxString(NxString(wide), "%x");
  EXPECT_EQ(Of(n), 31);
}

TEST(Int64, PrintedTextScansBack) {
  std::mt19937_64 random(5);
  std::vector<int64_t> values(std::begin(kExtremes), std::end(kExtremes));
  for (int i = 0; i < 500; ++i) values.push_back(static_cast<int64_t>(random() >> (random() % 64)));
  for (int64_t v : values) {
    for (const char* format : {"%S", "%o", "%x", "%X", "(%S)"})
      ASSERT_EQ(Scan(Print(v, format).c_str(), format, 7), v) << v << " " << format;
    if (v != 0) {
      ASSERT_EQ(Scan(Print(v, "%d").c_str(), "%d", 7), v) << v;
    }
  }
}

TEST(Int64, ClockInMilliseconds) {
  const std::pair<int64_t, int64_t> instants[] = {
      {1700000000123ll, 1700000000123ll}, {-1500, -1500}, {999, 999}};
  for (const auto& [now, want] : instants) {
    NxClockFix(now, 0);
    NxInt64 result(-7);
    EXPECT_EQ(GetSystemTimeInMSSinceTheEpoch(result), 0);
    EXPECT_EQ(Of(result), want);
  }
  NxClockRelease();
}

// ---------------------------------------------------------------------------
// The row.

class Int64Row : public ::testing::Test {
 protected:
  NxTypeMgr mgr;
};

TEST_F(Int64Row, DiskFormKeepsTheLowWordFirst) {
  NxInt64 values[2] = {Make(0x0102030405060708ll), Make(-2)};
  unsigned char disk[16];
  const std::pair<unsigned char, const char*> forms[] = {{1, "0807060504030201feffffffffffffff"},
                                                         {2, "0506070801020304fffffffeffffffff"},
                                                         {0x82, "0506070801020304fffffffeffffffff"},
                                                         {8, "0807060504030201feffffffffffffff"}};
  for (const auto& [format, want] : forms) {
    ASSERT_EQ(mgr.Store(NxTYPE_NxInt64, disk, values, format, 2), 16u);
    EXPECT_EQ(Hex(disk, 16), want);
    NxInt64 back[2];
    ASSERT_EQ(mgr.Load(NxTYPE_NxInt64, back, disk, format, 2), 16u);
    EXPECT_TRUE(back[0] == values[0] && back[1] == values[1]);
    ASSERT_EQ(mgr.Translate(NxTYPE_NxInt64, back, 8, 16, disk, format, 16, 2), 16u);
    EXPECT_TRUE(back[0] == values[0] && back[1] == values[1]);
  }
  EXPECT_EQ(mgr.Store(NxTYPE_NxInt64, disk, values, 1, 0), 0u);
  EXPECT_EQ(mgr.DiskLenGet(NxTYPE_NxInt64, nullptr, 2, 3, 8), 24u);
  EXPECT_EQ(mgr.DiskLenGetFromMemFile(NxTYPE_NxInt64, nullptr, 1, 3), 24u);
  EXPECT_EQ(mgr.RowGet(NxTYPE_NxInt64)->NullSizeGet(3), 24u);
}

TEST_F(Int64Row, TextThroughTheManager) {
  NxInt64 values[2] = {Make(kMin), Make(-1)};
  NxString shown("old");
  mgr.PrintToNxString(NxTYPE_NxInt64, shown, values, nullptr, 1);
  EXPECT_STREQ(shown.StrGet(), "old-9223372036854775808");  // the row's print appends
  NxString array;
  mgr.PrintToNxString(NxTYPE_NxInt64, array, values, "%x", 2);
  EXPECT_STREQ(array.StrGet(), "0x8000000000000000,-0x1");
  NxTypeConvertData* carrier = mgr.ConvertTo(NxTYPE_NxInt64, values, 2);
  EXPECT_STREQ(carrier->GetString(0)->StrGet(), "-9223372036854775808");
  carrier->GetString(1)->SetNullValue();  // a null string gives 0, as a missing one does
  NxInt64* back = static_cast<NxInt64*>(mgr.ConvertFrom(NxTYPE_NxInt64, carrier, 3));
  EXPECT_EQ(Of(back[0]), kMin);
  EXPECT_EQ(Of(back[1]) | Of(back[2]), 0);
  mgr.Delete(NxTYPE_NxInt64, back, 3);
  delete carrier;
}

}  // namespace
