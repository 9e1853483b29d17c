// Tests of range evaluation: every numeric row against keys counted one by
// one, widening, the floating rows' floor and clamp, NaN and infinities,
// RangeArea on value intervals, and the narrowed bounds.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

struct NumberRow {
  const char* name;
  char id;
  Bytes (*native)(double);  // the memory bytes of a number
};

template <typename T>
Bytes NativeOf(double v) {
  const T value = static_cast<T>(v);
  Bytes bytes(sizeof value);
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

const NumberRow kRows[] = {
    {"char", NxTYPE_char, NativeOf<signed char>},
    {"NxByte", NxTYPE_NxByte, NativeOf<uint8_t>},
    {"short", NxTYPE_short, NativeOf<int16_t>},
    {"NxWord", NxTYPE_NxWord, NativeOf<uint16_t>},
    {"int", NxTYPE_int, NativeOf<int32_t>},
    {"enum", NxTYPE_enum, NativeOf<int32_t>},
    {"unsigned", NxTYPE_unsigned, NativeOf<uint32_t>},
    {"long", NxTYPE_long, NativeOf<int32_t>},
    {"NxDWord", NxTYPE_NxDWord, NativeOf<uint32_t>},
    {"BlockId", NxTYPE_BlockId, NativeOf<uint32_t>},
    {"float", NxTYPE_float, NativeOf<float>},
    {"d_Interval", NxTYPE_d_Interval, NativeOf<float>},
    {"double", NxTYPE_double, NativeOf<double>},
};

const NumberRow& Row(const char* name) {
  for (const NumberRow& row : kRows)
    if (std::strcmp(row.name, name) == 0) return row;
  return kRows[0];
}

// A key in `format`: the memory bytes for 8 and 1, turned around for 2.
Bytes Key(const NumberRow& row, double v, unsigned char format) {
  Bytes bytes = row.native(v);
  if ((format & 0x0F) == 2) std::reverse(bytes.begin(), bytes.end());
  return bytes;
}

// The estimate through the manager; the operator word must come back as it was.
float Estimate(const NumberRow& row, double low, double high, unsigned short op, double v,
               unsigned char format = 1) {
  Bytes l = Key(row, low, format), h = Key(row, high, format), value = Key(row, v, format);
  NxIdxBounds bounds{l.data(), h.data(), static_cast<unsigned char>(l.size()),
                     static_cast<unsigned char>(h.size())};
  unsigned short word = op;
  const float result =
      NxTypeMgr().EvalAndBound(row.id, &bounds, word, value.data(), format, 1, nullptr, nullptr);
  EXPECT_EQ(word, op);
  return result;
}

// The share of the integer keys low..high in the relation `op` to v.
double Counted(long low, long high, unsigned short op, long v) {
  long kept = 0;
  for (long k = low; k <= high; ++k)
    if (((op & 1) && k == v) || ((op & 2) && k < v) || ((op & 4) && k > v)) ++kept;
  return static_cast<double>(kept) / static_cast<double>(high - low + 1);
}

TEST(RangeEvaluation, EveryRowAndOperatorMatchesTheCountedKeys) {
  // Below, at the low bound, inside, at the high bound and above; in memory
  // form and both disk forms.  Bits outside 0 to 2 change nothing.
  const long ranges[][2] = {{10, 19}, {14, 14}, {20, 119}};
  for (const NumberRow& row : kRows)
    for (unsigned char format : {8, 1, 2, 0x82})
      for (const auto& r : ranges)
        for (long v : {r[0] - 5, r[0], r[0] + 4, r[1], r[1] + 6})
          for (unsigned short op = 1; op <= 7; ++op) {
            SCOPED_TRACE(std::string(row.name) + " format " + std::to_string(format) + " op " +
                         std::to_string(op) + " value " + std::to_string(v) + " in " +
                         std::to_string(r[0]) + ".." + std::to_string(r[1]));
            const double expected = Counted(r[0], r[1], op, v);
            EXPECT_FLOAT_EQ(Estimate(row, r[0], r[1], op, v, format), expected);
            EXPECT_FLOAT_EQ(Estimate(row, r[0], r[1], op | 0xFFF8, v, format), expected);
          }
}

TEST(RangeEvaluation, WideningFloorClampAndSpecialValues) {
  const double inf = HUGE_VAL, nan = std::nan("");
  const float floor23 = std::ldexp(1.0f, -23);
  const struct {
    const char* row;
    double low, high;
    unsigned short op;
    double value;
    float expected;
  } cases[] = {
      // Whole byte ranges, signed and unsigned.
      {"char", -128, 127, 4, -1, 0.5f},
      {"NxByte", 0, 255, 2, 255, 255 / 256.0f},
      {"short", -32768, 32767, 3, -1, 0.5f},
      {"NxWord", 0, 65535, 5, 65535, 1 / 65536.0f},
      // 32 bits: no overflow, and 0xFFFFFFFF is 4294967295, not -1.
      {"long", INT32_MIN, INT32_MAX, 5, 0, 0.5f},
      {"int", INT32_MIN, INT32_MAX, 2, 0, 0.5f},
      {"unsigned", 0, 4294967295.0, 1, 4294967295.0, std::ldexp(1.0f, -32)},
      {"BlockId", 0, 4294967295.0, 2, 2147483648.0, 0.5f},
      // The integer rows have no floor; the floating rows measure with unit 1
      // and hold a non-zero share at 2^-23.
      {"long", 0, INT32_MAX, 1, 5, std::ldexp(1.0f, -31)},
      {"double", 0, 1e300, 1, 5, floor23},
      {"float", 0, 1e30, 1, 5, floor23},
      {"double", 0, 1e300, 2, -1, 0.0f},
      {"double", 5, 5, 1, 5, 1.0f},
      {"float", 0, 0.5, 4, 0.25, 0.25f / 1.5f},
      {"d_Interval", 0, 0.5, 1, 0.25, 1 / 1.5f},
      // Infinite lengths count as the largest double, and the float result
      // overflows; "double" also clamps an infinite width.
      {"double", 0, 10, 2, -inf, HUGE_VALF},
      {"double", 0, 10, 4, inf, HUGE_VALF},
      {"double", 0, 10, 4, -inf, 1.0f},
      {"double", -DBL_MAX, DBL_MAX, 4, 0, 1.0f},
      {"float", -FLT_MAX, FLT_MAX, 4, 0, 0.5f},
      // A NaN makes greater-than false and less-than true.
      {"double", 0, 10, 4, nan, HUGE_VALF},
      {"double", 0, 10, 1, nan, HUGE_VALF},
      {"double", 0, 10, 2, nan, 1.0f},
  };
  for (const auto& c : cases)
    for (unsigned char format : {1, 2})
      EXPECT_FLOAT_EQ(Estimate(Row(c.row), c.low, c.high, c.op, c.value, format), c.expected)
          << c.row << " " << c.low << ".." << c.high << " op " << c.op << " value " << c.value;
}

TEST(RangeEvaluation, RangeAreaMeasuresValueIntervals) {
  // A prefix 20..30 inside 0..100: the three parts add up to the width.
  EXPECT_DOUBLE_EQ(RangeArea(1, 20, 30, 0, 100, 1.0), 11.0);
  EXPECT_DOUBLE_EQ(RangeArea(2, 20, 30, 0, 100, 1.0), 20.0);
  EXPECT_DOUBLE_EQ(RangeArea(0xFFF8 | 4, 20, 30, 0, 100, 1.0), 70.0);
  EXPECT_DOUBLE_EQ(RangeArea(7, 20, 30, 0, 100, 1.0), 101.0);
  // Beside the range one side takes the width plus one unit.
  EXPECT_DOUBLE_EQ(RangeArea(4, -5, -5, 0, 10, 0.5), 10.5);
  EXPECT_DOUBLE_EQ(RangeArea(3, 15, 15, 0, 10, 0.5), 10.5);
}

struct Narrowed {
  NxIdxBounds b{nullptr, nullptr, 0, 0};
  ~Narrowed() {
    std::free(b.low);
    std::free(b.high);
  }
};

TEST(RangeEvaluation, NarrowedBoundsTakeTheValueAtEveryOpenEndTheOperatorAllows) {
  NxTypeMgr mgr;
  // Two "long" elements, most significant byte first: each open end gets a
  // copy of its own of all 8 bytes, with or without bounds.
  const Bytes value = {0, 0, 0, 14, 0, 0, 1, 0};
  for (unsigned short op = 1; op <= 7; ++op) {
    for (bool withBounds : {true, false}) {
      Bytes v = value, l = {0, 0, 0, 10}, h = {0, 0, 0, 19};
      NxIdxBounds bounds{l.data(), h.data(), 4, 4};
      Narrowed n;
      unsigned short word = op;
      const float share = mgr.EvalAndBound(NxTYPE_long, withBounds ? &bounds : nullptr, word,
                                           v.data(), 2, 2, &n.b, nullptr);
      SCOPED_TRACE("op " + std::to_string(op));
      EXPECT_FLOAT_EQ(share, withBounds ? static_cast<float>(Counted(10, 19, op, 14)) : 0.0f);
      EXPECT_EQ(n.b.low != nullptr, (op & 2) == 0);
      EXPECT_EQ(n.b.high != nullptr, (op & 4) == 0);
      if (op == 1) {
        EXPECT_NE(n.b.low, n.b.high) << "a copy for each end";
      }
      for (void* end : {n.b.low, n.b.high}) {
        if (end != nullptr) {
          EXPECT_EQ(std::memcmp(end, value.data(), 8), 0);
        }
      }
      EXPECT_EQ(n.b.lowLength, n.b.low ? 8 : 0);
      EXPECT_EQ(n.b.highLength, n.b.high ? 8 : 0);
    }
  }
  // An end that is set already stays, tighter or not.
  Bytes v = value;
  Narrowed n;
  n.b.low = std::malloc(1);
  void* before = n.b.low;
  unsigned short eq = 1;
  mgr.EvalAndBound(NxTYPE_long, nullptr, eq, v.data(), 2, 1, &n.b, nullptr);
  EXPECT_EQ(n.b.low, before);
  EXPECT_EQ(n.b.lowLength, 0);
  EXPECT_EQ(n.b.highLength, 4);
  // The key length of each row: its disk width times the count.
  const struct {
    char id;
    uint32_t count;
    unsigned char bytes;
  } sizes[] = {{NxTYPE_char, 5, 5},   {NxTYPE_NxWord, 3, 6},     {NxTYPE_unsigned, 2, 8},
               {NxTYPE_float, 3, 12}, {NxTYPE_d_Interval, 2, 8}, {NxTYPE_double, 2, 16}};
  Bytes big(32, 7);
  for (const auto& s : sizes) {
    Narrowed m;
    unsigned short le = 3;  // less or equal: the high end only
    mgr.EvalAndBound(s.id, nullptr, le, big.data(), 2, s.count, &m.b, nullptr);
    EXPECT_EQ(m.b.low, nullptr);
    EXPECT_EQ(m.b.highLength, s.bytes) << int(s.id);
  }
}

}  // namespace
