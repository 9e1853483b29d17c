// Tests of range evaluation: the estimate of each numeric row against keys
// counted one by one, widening, the floating rows' floor and clamp, NaN and
// infinities, RangeArea on value intervals, and the narrowed bounds.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using Bytes = std::vector<unsigned char>;

// A numeric row and how one of its keys is made from a number.
struct NumberRow {
  const char* name;
  char id;
  Bytes (*native)(double);  // the memory bytes of the number
};

template <typename T>
Bytes NativeOf(double v) {
  const T value = static_cast<T>(v);
  Bytes bytes(sizeof value);
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

const std::vector<NumberRow>& NumberRows() {
  static const std::vector<NumberRow> rows = {
      {"char", NxTYPE_char, NativeOf<signed char>},
      {"NxByte", NxTYPE_NxByte, NativeOf<unsigned char>},
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
  return rows;
}

// A key in `format`: the memory bytes for 8 and 1, turned around for 2.
Bytes Key(const NumberRow& row, double v, unsigned char format) {
  Bytes bytes = row.native(v);
  if ((format & 0x0F) == 2) std::reverse(bytes.begin(), bytes.end());
  return bytes;
}

// The estimate through the manager; `op` must come back unchanged.
float Estimate(const NumberRow& row, double low, double high, unsigned short op, double v,
               unsigned char format = 1) {
  NxTypeMgr mgr;
  Bytes l = Key(row, low, format), h = Key(row, high, format), value = Key(row, v, format);
  NxIdxBounds bounds{l.data(), h.data(), static_cast<unsigned char>(l.size()),
                     static_cast<unsigned char>(h.size())};
  NxEvalData data;
  unsigned short word = op;
  const float result =
      mgr.EvalAndBound(row.id, &bounds, word, value.data(), format, 1, nullptr, &data);
  EXPECT_EQ(word, op) << "the rows leave the operator word alone";
  return result;
}

// The share of the integer keys low..high that stand in the relation `op`
// to v, counted key by key.
double Counted(long low, long high, unsigned short op, long v) {
  long kept = 0;
  for (long k = low; k <= high; ++k)
    if (((op & 1) && k == v) || ((op & 2) && k < v) || ((op & 4) && k > v)) ++kept;
  return static_cast<double>(kept) / static_cast<double>(high - low + 1);
}

TEST(RangeEvaluation, EveryRowAndOperatorMatchesTheCountedKeys) {
  // Below, at the low bound, inside, at the high bound and above, in a range
  // and in a range of one key; in memory form and both disk forms.  The bits
  // outside 0 to 2 (wildcard, cmpOp, bit 15) change nothing.
  const long ranges[][2] = {{10, 19}, {14, 14}, {20, 119}};
  for (const NumberRow& row : NumberRows()) {
    for (unsigned char format : {8, 1, 2, 0x82}) {
      for (const auto& range : ranges) {
        for (long v : {range[0] - 5, range[0], range[0] + 4, range[1], range[1] + 6}) {
          for (unsigned short op = 1; op <= 7; ++op) {
            SCOPED_TRACE(std::string(row.name) + " format " + std::to_string(format) + " " +
                         std::to_string(range[0]) + ".." + std::to_string(range[1]) + " op " +
                         std::to_string(op) + " value " + std::to_string(v));
            const double expected = Counted(range[0], range[1], op, v);
            const auto low = static_cast<double>(range[0]);
            const auto high = static_cast<double>(range[1]);
            EXPECT_FLOAT_EQ(Estimate(row, low, high, op, static_cast<double>(v), format), expected);
            EXPECT_FLOAT_EQ(Estimate(row, low, high, static_cast<unsigned short>(op | 0xFFF8),
                                     static_cast<double>(v), format),
                            expected);
          }
        }
      }
    }
  }
}

const NumberRow& RowNamed(const char* name) {
  for (const NumberRow& row : NumberRows())
    if (std::strcmp(row.name, name) == 0) return row;
  return NumberRows().front();
}

TEST(RangeEvaluation, NumbersWidenAsTheirRowSays) {
  // Narrow rows, counted over their whole range of bytes.
  EXPECT_FLOAT_EQ(Estimate(RowNamed("char"), -128, 127, 4, -1), Counted(-128, 127, 4, -1));
  EXPECT_FLOAT_EQ(Estimate(RowNamed("NxByte"), 0, 255, 2, 255), Counted(0, 255, 2, 255));
  EXPECT_FLOAT_EQ(Estimate(RowNamed("short"), -32768, 32767, 3, -1, 2),
                  Counted(-32768, 32767, 3, -1));
  EXPECT_FLOAT_EQ(Estimate(RowNamed("NxWord"), 0, 65535, 5, 65535, 2), Counted(0, 65535, 5, 65535));
  // 32 bits: no overflow in the width, and the unsigned rows take
  // 0xFFFFFFFF as 4294967295, not -1.
  for (unsigned char format : {1, 2}) {
    EXPECT_FLOAT_EQ(Estimate(RowNamed("long"), INT32_MIN, INT32_MAX, 5, 0, format), 0.5f);
    EXPECT_FLOAT_EQ(Estimate(RowNamed("int"), INT32_MIN, INT32_MAX, 2, 0, format), 0.5f);
    for (const char* name : {"unsigned", "NxDWord", "BlockId"}) {
      EXPECT_FLOAT_EQ(Estimate(RowNamed(name), 0, 4294967295.0, 1, 4294967295.0, format),
                      static_cast<float>(1 / 4294967296.0))
          << name;
      EXPECT_FLOAT_EQ(Estimate(RowNamed(name), 0, 4294967295.0, 2, 2147483648.0, format), 0.5f)
          << name;
    }
  }
  // The integer rows have no floor: one key of 2^31 stays that small.
  EXPECT_FLOAT_EQ(Estimate(RowNamed("long"), 0, INT32_MAX, 1, 5), std::ldexp(1.0f, -31));
}

TEST(RangeEvaluation, FloatingRowsFloorClampAndSpecialValues) {
  const NumberRow& dbl = RowNamed("double");
  const NumberRow& flt = RowNamed("float");
  const float floorValue = std::ldexp(1.0f, -23);
  const double inf = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  // The unit stays 1: one key's worth in a huge range is held at the floor;
  // in a range of one point it is everything.
  EXPECT_EQ(Estimate(dbl, 0.0, 1.0e300, 1, 5.0), floorValue);
  EXPECT_EQ(Estimate(flt, 0.0, 1.0e30, 1, 5.0, 2), floorValue);
  EXPECT_EQ(Estimate(dbl, 5.0, 5.0, 1, 5.0), 1.0f);
  EXPECT_EQ(Estimate(dbl, 0.0, 1.0e300, 2, -1.0), 0.0f) << "no floor for nothing";
  // A range narrower than 1 is measured against a width of 1.5.
  EXPECT_FLOAT_EQ(Estimate(flt, 0.0, 0.5, 4, 0.25), 0.25f / 1.5f);
  EXPECT_FLOAT_EQ(Estimate(RowNamed("d_Interval"), 0.0, 0.5, 1, 0.25, 2), 1.0f / 1.5f);
  // Infinite lengths become the largest double: divided by a finite width
  // the float overflows; "double" also clamps an infinite width.
  EXPECT_EQ(Estimate(dbl, 0.0, 10.0, 2, -inf), HUGE_VALF);
  EXPECT_EQ(Estimate(dbl, 0.0, 10.0, 4, inf), HUGE_VALF);
  EXPECT_FLOAT_EQ(Estimate(dbl, 0.0, 10.0, 4, -inf, 2), 1.0f);
  EXPECT_FLOAT_EQ(Estimate(dbl, -DBL_MAX, DBL_MAX, 4, 0.0), 1.0f);
  EXPECT_FLOAT_EQ(Estimate(flt, -FLT_MAX, FLT_MAX, 4, 0.0), 0.5f);
  // NaN: greater-than is false and less-than true, so "greater" and "equal"
  // take the NaN into their length (clamped), while "less" takes the range.
  EXPECT_EQ(Estimate(dbl, 0.0, 10.0, 4, nan), HUGE_VALF);
  EXPECT_EQ(Estimate(dbl, 0.0, 10.0, 1, nan), HUGE_VALF);
  EXPECT_FLOAT_EQ(Estimate(dbl, 0.0, 10.0, 2, nan), 1.0f);
  EXPECT_FLOAT_EQ(Estimate(flt, 0.0, 10.0, 2, nan, 2), 1.0f);
}

TEST(RangeEvaluation, RangeAreaMeasuresValueIntervalsInUnits) {
  // A value interval 20..30 (a prefix) inside 0..100: the three parts add up
  // to the width, and so does the operator with all three bits.
  EXPECT_DOUBLE_EQ(RangeArea(1, 20, 30, 0, 100, 1.0), 11.0);
  EXPECT_DOUBLE_EQ(RangeArea(2, 20, 30, 0, 100, 1.0), 20.0);
  EXPECT_DOUBLE_EQ(RangeArea(4, 20, 30, 0, 100, 1.0), 70.0);
  EXPECT_DOUBLE_EQ(RangeArea(7, 20, 30, 0, 100, 1.0), 101.0);
  // Beside the range, one side takes the whole width plus one unit.
  EXPECT_DOUBLE_EQ(RangeArea(4, -5, -5, 0, 10, 0.5), 10.5);
  EXPECT_DOUBLE_EQ(RangeArea(2, -5, -5, 0, 10, 0.5), 0.0);
  EXPECT_DOUBLE_EQ(RangeArea(2, 15, 15, 0, 10, 0.5), 10.5);
  EXPECT_DOUBLE_EQ(RangeArea(1, 15, 15, 0, 10, 0.5), 0.0);
  // Only bits 0 to 2 count.
  EXPECT_DOUBLE_EQ(RangeArea(0xFFF8 | 4, 20, 30, 0, 100, 1.0), 70.0);
  EXPECT_DOUBLE_EQ(RangeArea(0xFFF8, 20, 30, 0, 100, 1.0), 0.0);
  // An infinite part counts as the largest double.
  EXPECT_EQ(RangeArea(4, -DBL_MAX, -DBL_MAX, -DBL_MAX, DBL_MAX, 1.0), DBL_MAX);
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
  // Two "long" elements in the most significant byte first order: each end
  // gets its own copy of all 8 bytes, as they stand.
  const Bytes value = {0x00, 0x00, 0x00, 0x0E, 0x00, 0x00, 0x01, 0x00};
  const Bytes lowKey = {0, 0, 0, 10}, highKey = {0, 0, 0, 19};
  for (unsigned short op = 1; op <= 7; ++op) {
    for (bool withBounds : {true, false}) {
      Bytes v = value, l = lowKey, h = highKey;
      NxIdxBounds bounds{l.data(), h.data(), 4, 4};
      Narrowed n;
      unsigned short word = op;
      const float share = mgr.EvalAndBound(NxTYPE_long, withBounds ? &bounds : nullptr, word,
                                           v.data(), 2, 2, &n.b, nullptr);
      SCOPED_TRACE("op " + std::to_string(op));
      EXPECT_FLOAT_EQ(share, withBounds ? static_cast<float>(Counted(10, 19, op, 14)) : 0.0f);
      EXPECT_EQ(n.b.low != nullptr, (op & 2) == 0);
      EXPECT_EQ(n.b.high != nullptr, (op & 4) == 0);
      for (void* end : {n.b.low, n.b.high}) {
        if (end == nullptr) continue;
        EXPECT_NE(end, v.data());
        EXPECT_EQ(Bytes(static_cast<unsigned char*>(end), static_cast<unsigned char*>(end) + 8),
                  value);
      }
      EXPECT_EQ(n.b.lowLength, n.b.low ? 8 : 0);
      EXPECT_EQ(n.b.highLength, n.b.high ? 8 : 0);
    }
  }
  // An end that is set already stays, tighter or not.
  Bytes v = value, kept = {1, 2, 3, 4};
  Narrowed n;
  n.b.low = std::malloc(4);
  std::memcpy(n.b.low, kept.data(), 4);
  n.b.lowLength = 4;
  void* before = n.b.low;
  unsigned short eq = 1;
  mgr.EvalAndBound(NxTYPE_long, nullptr, eq, v.data(), 2, 1, &n.b, nullptr);
  EXPECT_EQ(n.b.low, before);
  EXPECT_EQ(std::memcmp(n.b.low, kept.data(), 4), 0);
  EXPECT_EQ(n.b.lowLength, 4);
  EXPECT_EQ(n.b.highLength, 4) << "count 1: one element";
}

TEST(RangeEvaluation, NarrowedKeySizeFollowsTheRowAndCount) {
  NxTypeMgr mgr;
  const struct {
    char id;
    uint32_t count;
    unsigned char bytes;
  } cases[] = {{NxTYPE_char, 5, 5},    {NxTYPE_NxByte, 3, 3},     {NxTYPE_short, 3, 6},
               {NxTYPE_NxWord, 2, 4},  {NxTYPE_int, 2, 8},        {NxTYPE_unsigned, 1, 4},
               {NxTYPE_float, 3, 12},  {NxTYPE_d_Interval, 2, 8}, {NxTYPE_double, 2, 16},
               {NxTYPE_BlockId, 4, 16}};
  Bytes value(32);
  for (size_t i = 0; i < value.size(); ++i) value[i] = static_cast<unsigned char>(i + 1);
  for (const auto& c : cases) {
    for (unsigned char format : {1, 2}) {
      Narrowed n;
      unsigned short op = 3;  // less or equal: the high end only
      mgr.EvalAndBound(c.id, nullptr, op, value.data(), format, c.count, &n.b, nullptr);
      EXPECT_EQ(n.b.low, nullptr);
      ASSERT_NE(n.b.high, nullptr);
      EXPECT_EQ(n.b.highLength, c.bytes) << static_cast<int>(c.id);
      EXPECT_EQ(std::memcmp(n.b.high, value.data(), c.bytes), 0);
    }
  }
}

}  // namespace
