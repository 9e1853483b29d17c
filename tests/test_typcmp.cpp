// Tests of the comparison contract and the ten scalar comparators: the
// element walk with stated lengths and status 2101, the order of each
// element kind in memory form and both disk forms, and floats with NaN and
// signed zeros.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using nxtest::Hex;
using Bytes = std::vector<unsigned char>;

// One comparator, the rows whose Compare slot it fills, and values in
// ascending order: each inner list holds values that compare equal.
struct Comparator {
  const char* name;
  NxTypeCmpFunc compare;
  std::vector<char> rows;
  size_t width;
  std::vector<std::vector<Bytes>> ascending;  // native memory bytes
};

template <typename T>
Bytes Native(T value) {
  Bytes bytes(sizeof value);
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

template <typename T>
Comparator Make(const char* name, NxTypeCmpFunc compare, std::vector<char> rows,
                std::initializer_list<std::initializer_list<T>> groups) {
  Comparator c{name, compare, std::move(rows), sizeof(T), {}};
  for (const auto& group : groups) {
    c.ascending.emplace_back();
    for (T value : group) c.ascending.back().push_back(Native(value));
  }
  return c;
}

// The element in `format`: the machine's bytes (least significant first)
// for the forms 8 and 1, turned around for 2.
Bytes Encode(const Bytes& native, unsigned char format) {
  Bytes out(native);
  if ((format & 0x0F) == 2) std::reverse(out.begin(), out.end());
  return out;
}

const float kInfF = std::numeric_limits<float>::infinity();
const double kInf = std::numeric_limits<double>::infinity();

std::vector<Comparator> Comparators() {
  const float denormF = std::numeric_limits<float>::denorm_min();
  const double denorm = std::numeric_limits<double>::denorm_min();
  return {
      Make<signed char>("CharCompare", CharCompare, {NxTYPE_char}, {{-128}, {-1}, {0}, {1}, {127}}),
      Make<unsigned char>("ByteCompare", ByteCompare, {NxTYPE_NxByte},
                          {{0}, {1}, {0x7F}, {0x80}, {0xFF}}),
      Make<int16_t>("ShortCompare", ShortCompare, {NxTYPE_short},
                    {{INT16_MIN}, {-256}, {-1}, {0}, {1}, {255}, {256}, {INT16_MAX}}),
      Make<uint16_t>("WordCompare", WordCompare, {NxTYPE_NxWord},
                     {{0}, {1}, {255}, {256}, {0x7FFF}, {0x8000}, {0xFFFF}}),
      Make<int32_t>(
          "IntCompare", IntCompare, {NxTYPE_int, NxTYPE_enum},
          {{INT32_MIN}, {-65536}, {-1}, {0}, {1}, {0xFF}, {0x100}, {0x01000000}, {INT32_MAX}}),
      Make<uint32_t>(
          "UnsignedCompare", UnsignedCompare, {NxTYPE_unsigned},
          {{0}, {1}, {0xFF}, {0x100}, {0x01000000}, {0x7FFFFFFF}, {0x80000000u}, {0xFFFFFFFFu}}),
      Make<int32_t>(
          "LongCompare", LongCompare, {NxTYPE_long},
          {{INT32_MIN}, {-65536}, {-1}, {0}, {1}, {0xFF}, {0x100}, {0x01000000}, {INT32_MAX}}),
      Make<uint32_t>(
          "DwordCompare", DwordCompare, {NxTYPE_NxDWord, NxTYPE_BlockId},
          {{0}, {1}, {0xFF}, {0x100}, {0x01000000}, {0x7FFFFFFF}, {0x80000000u}, {0xFFFFFFFFu}}),
      Make<float>("FloatCompare", FloatCompare, {NxTYPE_float, NxTYPE_d_Interval},
                  {{-kInfF},
                   {-FLT_MAX},
                   {-1.0f},
                   {-denormF},
                   {-0.0f, 0.0f},
                   {denormF},
                   {1.0f},
                   {std::nextafter(1.0f, 2.0f)},
                   {FLT_MAX},
                   {kInfF}}),
      // 1 + 2^-40 is lost if narrowed to float.
      Make<double>("DoubleCompare", DoubleCompare, {NxTYPE_double},
                   {{-kInf},
                    {-DBL_MAX},
                    {-1.0},
                    {-denorm},
                    {-0.0, 0.0},
                    {denorm},
                    {1.0},
                    {1.0 + std::ldexp(1.0, -40)},
                    {static_cast<double>(FLT_MAX) * 2},
                    {DBL_MAX},
                    {kInf}}),
  };
}

TEST(ScalarComparators, OrderElementsInEveryFormThroughTheSlotAndTheManager) {
  NxTypeMgr mgr;
  for (const Comparator& c : Comparators()) {
    for (char row : c.rows) EXPECT_EQ(mgr.CmpFuncPtrGet(row), c.compare) << c.name;
    // 0 and 5 reach the decoders of the base library, the others are read inline.
    for (unsigned char format : {8, 1, 2, 0x88, 0x81, 0x82, 0x98, 0xE2, 0, 5}) {
      SCOPED_TRACE(std::string(c.name) + " format " + std::to_string(format));
      ASSERT_EQ(IntSizeGet(nullptr, 8, format, 1), 4u) << "the encodings assume this width";
      for (size_t ga = 0; ga < c.ascending.size(); ++ga) {
        for (size_t gb = 0; gb < c.ascending.size(); ++gb) {
          const int expected = ga < gb ? -1 : (ga > gb ? 1 : 0);
          for (const Bytes& va : c.ascending[ga]) {
            for (const Bytes& vb : c.ascending[gb]) {
              Bytes a = Encode(va, format);
              Bytes b = Encode(vb, format);
              const Bytes before = a;
              int status = 77;
              // The result is exactly -1, 0 or 1, and cmpOp is ignored.
              EXPECT_EQ(c.compare(format, 0, a.data(), 0, b.data(), 0x3F0, 1, status), expected)
                  << Hex(a.data(), a.size()) << " vs " << Hex(b.data(), b.size());
              EXPECT_EQ(status, 0);
              for (char row : c.rows) {
                status = 77;
                EXPECT_EQ(mgr.Cmp(row, 0, a.data(), 0, b.data(), 0, 1, format, status), expected);
                EXPECT_EQ(status, 0);
              }
              EXPECT_EQ(a, before) << "operands are only read";
              // The same pair behind an equal first element: the walk's second step.
              Bytes a2 = a, b2 = a;
              a2.insert(a2.end(), a.begin(), a.end());
              b2.insert(b2.end(), b.begin(), b.end());
              EXPECT_EQ(c.compare(format, 0, a2.data(), 0, b2.data(), 0, 2, status), expected);
              EXPECT_EQ(status, 0);
            }
          }
        }
      }
    }
  }
}

TEST(ScalarComparators, NaNOrdersBeforeEverythingOnEitherSide) {
  const float nanF = std::numeric_limits<float>::quiet_NaN();
  const double nanD = std::numeric_limits<double>::quiet_NaN();
  NxTypeMgr mgr;
  for (unsigned char format : {8, 1, 2}) {
    SCOPED_TRACE(int(format));
    for (float other : {-kInfF, -1.0f, -0.0f, 0.0f, kInfF, nanF, -nanF}) {
      for (float nan : {nanF, -nanF}) {
        Bytes n = Encode(Native(nan), format);
        Bytes o = Encode(Native(other), format);
        int status = 5;
        EXPECT_EQ(FloatCompare(format, 0, n.data(), 0, o.data(), 0, 1, status), -1) << other;
        EXPECT_EQ(FloatCompare(format, 0, o.data(), 0, n.data(), 0, 1, status), -1) << other;
        EXPECT_EQ(status, 0);
        EXPECT_EQ(mgr.Cmp(NxTYPE_d_Interval, 0, o.data(), 0, n.data(), 0, 1, format, status), -1);
      }
    }
    for (double other : {-kInf, -1.0, -0.0, 0.0, kInf, nanD, -nanD}) {
      Bytes n = Encode(Native(nanD), format);
      Bytes o = Encode(Native(other), format);
      int status = 5;
      EXPECT_EQ(DoubleCompare(format, 0, n.data(), 0, o.data(), 0, 1, status), -1) << other;
      EXPECT_EQ(DoubleCompare(format, 0, o.data(), 0, n.data(), 0, 1, status), -1) << other;
      EXPECT_EQ(status, 0);
    }
  }
}

// An exact-size heap copy, so that ASan reports any read beyond the walk.
std::unique_ptr<unsigned char[]> Exact(const Bytes& bytes, size_t size) {
  std::unique_ptr<unsigned char[]> block(new unsigned char[size]);
  std::memcpy(block.get(), bytes.data(), size);
  return block;
}

TEST(ElementWalk, StatedLengthsEndTheWalkWithStatus2101) {
  // Five elements; the operands differ first at element `k`.
  const uint32_t kCount = 5;
  for (const Comparator& c : Comparators()) {
    const Bytes& low = c.ascending[1].front();
    const Bytes& high = c.ascending[2].front();
    for (unsigned char format : {8, 2}) {
      int status = 2101;
      EXPECT_EQ(c.compare(format, 3, nullptr, 17, nullptr, 0, 0, status), 0) << "count 0";
      EXPECT_EQ(status, 0);
      const uint32_t s = static_cast<uint32_t>(c.width);
      for (uint32_t k = 0; k < kCount; ++k) {
        SCOPED_TRACE(std::string(c.name) + " format " + std::to_string(format) + " k " +
                     std::to_string(k));
        Bytes a;
        Bytes b;
        for (uint32_t i = 0; i < kCount; ++i) {
          const Bytes ea = Encode(low, format);
          const Bytes eb = Encode(i == k ? high : low, format);
          a.insert(a.end(), ea.begin(), ea.end());
          b.insert(b.end(), eb.begin(), eb.end());
        }
        const uint32_t full = s * kCount;
        const uint32_t upToK = s * k;
        const uint32_t throughK = s * (k + 1);

        // Whole operands: the difference is found, status 0.
        EXPECT_EQ(c.compare(format, full, a.data(), full + 9, b.data(), 0, kCount, status), -1);
        EXPECT_EQ(status, 0);
        // Either operand ends before element k: element k is never read.
        if (k > 0) {
          auto cutA = Exact(a, upToK);
          EXPECT_EQ(c.compare(format, upToK, cutA.get(), 0, b.data(), 0, kCount, status), 0);
          EXPECT_EQ(status, 2101);
          auto cutB = Exact(b, upToK);
          EXPECT_EQ(c.compare(format, 0, a.data(), upToK, cutB.get(), 0, kCount, status), 0);
          EXPECT_EQ(status, 2101);
        }
        // Element k is the last one available: the difference is found and,
        // with more elements due, the step past it still fails.
        auto throughA = Exact(a, throughK);
        EXPECT_EQ(c.compare(format, throughK, throughA.get(), 0, b.data(), 0, kCount, status), -1);
        EXPECT_EQ(status, k + 1 < kCount ? 2101 : 0);
        auto throughB = Exact(b, throughK);
        EXPECT_EQ(c.compare(format, 0, b.data(), throughK, throughB.get(), 0, kCount, status), 0);
        EXPECT_EQ(status, k + 1 < kCount ? 2101 : 0);
        // With element k the last one due, nothing is partial.
        EXPECT_EQ(c.compare(format, throughK, throughA.get(), 0, b.data(), 0, k + 1, status), -1);
        EXPECT_EQ(status, 0);
        // Fewer elements due than the difference: equal, status 0.
        EXPECT_EQ(c.compare(format, 0, a.data(), 0, b.data(), 0, k, status), 0);
        EXPECT_EQ(status, 0);
      }
    }
  }
}

}  // namespace
