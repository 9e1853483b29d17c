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

// Every combination of form and higher bits that a caller may pass.
const unsigned char kFormats[] = {8, 1, 2, 0x88, 0x81, 0x82, 0x98, 0xE2};

bool MostSignificantFirst(unsigned char format) {
  return (format & 0x0F) == 2;
}

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
std::vector<std::vector<Bytes>> Ascending(std::initializer_list<std::initializer_list<T>> groups) {
  std::vector<std::vector<Bytes>> out;
  for (const auto& group : groups) {
    out.emplace_back();
    for (T value : group) out.back().push_back(Native(value));
  }
  return out;
}

// The element in `format`: the machine's bytes for the forms 8 and 1 (this
// machine puts the least significant byte first), turned around for 2.
Bytes Encode(const Bytes& native, unsigned char format) {
  Bytes out(native);
  if (MostSignificantFirst(format)) std::reverse(out.begin(), out.end());
  return out;
}

const float kFloatDenorm = std::numeric_limits<float>::denorm_min();
const double kDoubleDenorm = std::numeric_limits<double>::denorm_min();
const float kInfF = std::numeric_limits<float>::infinity();
const double kInf = std::numeric_limits<double>::infinity();

std::vector<Comparator> Comparators() {
  return {
      {"CharCompare",
       CharCompare,
       {NxTYPE_char},
       1,
       Ascending<signed char>({{-128}, {-1}, {0}, {1}, {127}})},
      {"ByteCompare",
       ByteCompare,
       {NxTYPE_NxByte},
       1,
       Ascending<unsigned char>({{0}, {1}, {0x7F}, {0x80}, {0xFF}})},
      {"ShortCompare",
       ShortCompare,
       {NxTYPE_short},
       2,
       Ascending<int16_t>({{INT16_MIN}, {-256}, {-1}, {0}, {1}, {255}, {256}, {INT16_MAX}})},
      {"WordCompare",
       WordCompare,
       {NxTYPE_NxWord},
       2,
       Ascending<uint16_t>({{0}, {1}, {255}, {256}, {0x7FFF}, {0x8000}, {0xFFFF}})},
      {"IntCompare",
       IntCompare,
       {NxTYPE_int, NxTYPE_enum},
       4,
       Ascending<int32_t>(
           {{INT32_MIN}, {-65536}, {-1}, {0}, {1}, {0xFF}, {0x100}, {0x01000000}, {INT32_MAX}})},
      {"UnsignedCompare",
       UnsignedCompare,
       {NxTYPE_unsigned},
       4,
       Ascending<uint32_t>(
           {{0}, {1}, {0xFF}, {0x100}, {0x01000000}, {0x7FFFFFFF}, {0x80000000u}, {0xFFFFFFFFu}})},
      {"LongCompare",
       LongCompare,
       {NxTYPE_long},
       4,
       Ascending<int32_t>(
           {{INT32_MIN}, {-65536}, {-1}, {0}, {1}, {0xFF}, {0x100}, {0x01000000}, {INT32_MAX}})},
      {"DwordCompare",
       DwordCompare,
       {NxTYPE_NxDWord, NxTYPE_BlockId},
       4,
       Ascending<uint32_t>(
           {{0}, {1}, {0xFF}, {0x100}, {0x01000000}, {0x7FFFFFFF}, {0x80000000u}, {0xFFFFFFFFu}})},
      {"FloatCompare",
       FloatCompare,
       {NxTYPE_float, NxTYPE_d_Interval},
       4,
       Ascending<float>({{-kInfF},
                         {-FLT_MAX},
                         {-1.0f},
                         {-kFloatDenorm},
                         {-0.0f, 0.0f},
                         {kFloatDenorm},
                         {1.0f},
                         {std::nextafter(1.0f, 2.0f)},
                         {FLT_MAX},
                         {kInfF}})},
      {"DoubleCompare",
       DoubleCompare,
       {NxTYPE_double},
       8,
       Ascending<double>({{-kInf},
                          {-DBL_MAX},
                          {-1.0},
                          {-kDoubleDenorm},
                          {-0.0, 0.0},
                          {kDoubleDenorm},
                          {1.0},
                          {1.0 + std::ldexp(1.0, -40)},  // lost if narrowed to float
                          {static_cast<double>(FLT_MAX) * 2},
                          {DBL_MAX},
                          {kInf}})},
  };
}

// Disk width of one element in `format`: only int and unsigned ask the base
// library.
size_t Width(const Comparator& c, unsigned char format) {
  if ((c.compare == IntCompare || c.compare == UnsignedCompare) && (format & 0x0F) != 8) {
    return IntSizeGet(nullptr, 8, format, 1);
  }
  return c.width;
}

// ---------------------------------------------------------------------------
// Order of elements.

TEST(ScalarComparators, OrderElementsInEveryFormThroughTheSlotAndTheManager) {
  NxTypeMgr mgr;
  for (const Comparator& c : Comparators()) {
    for (char row : c.rows) EXPECT_EQ(mgr.CmpFuncPtrGet(row), c.compare) << c.name;
    for (unsigned char format : kFormats) {
      SCOPED_TRACE(std::string(c.name) + " format " + std::to_string(format));
      ASSERT_EQ(Width(c, format), c.width) << "the encodings below assume this width";
      for (size_t ga = 0; ga < c.ascending.size(); ++ga) {
        for (size_t gb = 0; gb < c.ascending.size(); ++gb) {
          const int expected = ga < gb ? -1 : (ga > gb ? 1 : 0);
          for (const Bytes& va : c.ascending[ga]) {
            for (const Bytes& vb : c.ascending[gb]) {
              Bytes a = Encode(va, format);
              Bytes b = Encode(vb, format);
              const Bytes aBefore = a;
              const Bytes bBefore = b;
              int status = 77;
              // The result is exactly -1, 0 or 1, and cmpOp is ignored.
              EXPECT_EQ(c.compare(format, 0, a.data(), 0, b.data(), 0x3F0, 1, status), expected)
                  << Hex(a.data(), a.size()) << " vs " << Hex(b.data(), b.size());
              EXPECT_EQ(status, 0);
              for (char row : c.rows) {
                status = 77;
                EXPECT_EQ(mgr.Cmp(row, 0, a.data(), 0, b.data(), 0, 1, format, status), expected)
                    << "row " << int(row);
                EXPECT_EQ(status, 0);
              }
              EXPECT_EQ(a, aBefore) << "operands are only read";
              EXPECT_EQ(b, bBefore);
            }
          }
        }
      }
    }
  }
}

TEST(ScalarComparators, SignedAndUnsignedTwinsDisagreeOnTheHighBit) {
  for (unsigned char format : {8, 1, 2}) {
    SCOPED_TRACE(int(format));
    int status = 0;
    unsigned char ff = 0xFF;
    unsigned char one = 0x01;
    EXPECT_EQ(CharCompare(format, 0, &ff, 0, &one, 0, 1, status), -1);
    EXPECT_EQ(ByteCompare(format, 0, &ff, 0, &one, 0, 1, status), 1);

    Bytes minusOne = Encode(Native<int16_t>(-1), format);
    Bytes plusOne = Encode(Native<int16_t>(1), format);
    EXPECT_EQ(ShortCompare(format, 0, minusOne.data(), 0, plusOne.data(), 0, 1, status), -1);
    EXPECT_EQ(WordCompare(format, 0, minusOne.data(), 0, plusOne.data(), 0, 1, status), 1);

    Bytes high = Encode(Native<uint32_t>(0x80000000u), format);
    Bytes low = Encode(Native<uint32_t>(1), format);
    EXPECT_EQ(LongCompare(format, 0, high.data(), 0, low.data(), 0, 1, status), -1);
    EXPECT_EQ(DwordCompare(format, 0, high.data(), 0, low.data(), 0, 1, status), 1);
    EXPECT_EQ(IntCompare(format, 0, high.data(), 0, low.data(), 0, 1, status), -1);
    EXPECT_EQ(UnsignedCompare(format, 0, high.data(), 0, low.data(), 0, 1, status), 1);
  }
}

TEST(ScalarComparators, DiskFormsAreDecodedByTheirByteOrder) {
  // The same two bytes are 1 and 256 most significant first, 256 and 1 the
  // other way round.
  unsigned char a[2] = {0x00, 0x01};
  unsigned char b[2] = {0x01, 0x00};
  int status = 0;
  EXPECT_EQ(ShortCompare(2, 0, a, 0, b, 0, 1, status), -1);
  EXPECT_EQ(ShortCompare(1, 0, a, 0, b, 0, 1, status), 1);
  EXPECT_EQ(WordCompare(0x82, 0, a, 0, b, 0, 1, status), -1);
  EXPECT_EQ(WordCompare(0x81, 0, a, 0, b, 0, 1, status), 1);

  unsigned char x[4] = {0x00, 0x00, 0x00, 0x02};  // 2 | 0x02000000
  unsigned char y[4] = {0x01, 0x00, 0x00, 0x00};  // 0x01000000 | 1
  EXPECT_EQ(LongCompare(2, 0, x, 0, y, 0, 1, status), -1);
  EXPECT_EQ(LongCompare(1, 0, x, 0, y, 0, 1, status), 1);
  EXPECT_EQ(IntCompare(2, 0, x, 0, y, 0, 1, status), -1);
  EXPECT_EQ(IntCompare(8, 0, x, 0, y, 0, 1, status), 1);
  EXPECT_EQ(UnsignedCompare(2, 0, x, 0, y, 0, 1, status), -1);
  EXPECT_EQ(DwordCompare(0x88, 0, x, 0, y, 0, 1, status), 1);

  // 2.0f is 40 00 00 00 most significant first; read the other way it is a
  // tiny denormal.
  unsigned char two[4] = {0x40, 0x00, 0x00, 0x00};
  unsigned char oneF[4] = {0x3F, 0x80, 0x00, 0x00};
  EXPECT_EQ(FloatCompare(2, 0, two, 0, oneF, 0, 1, status), 1);
  EXPECT_EQ(FloatCompare(1, 0, two, 0, oneF, 0, 1, status), -1);
}

TEST(ScalarComparators, NaNOrdersBeforeEverythingOnEitherSide) {
  const float nanF = std::numeric_limits<float>::quiet_NaN();
  const double nanD = std::numeric_limits<double>::quiet_NaN();
  const std::vector<float> floats = {-kInfF, -1.0f, -0.0f, 0.0f, 1.0f, kInfF, nanF, -nanF};
  const std::vector<double> doubles = {-kInf, -1.0, -0.0, 0.0, 1.0, kInf, nanD, -nanD};
  NxTypeMgr mgr;
  for (unsigned char format : {8, 1, 2}) {
    SCOPED_TRACE(int(format));
    for (float other : floats) {
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
    for (double other : doubles) {
      Bytes n = Encode(Native(nanD), format);
      Bytes o = Encode(Native(other), format);
      int status = 5;
      EXPECT_EQ(DoubleCompare(format, 0, n.data(), 0, o.data(), 0, 1, status), -1) << other;
      EXPECT_EQ(DoubleCompare(format, 0, o.data(), 0, n.data(), 0, 1, status), -1) << other;
      EXPECT_EQ(status, 0);
    }
  }
}

// ---------------------------------------------------------------------------
// The element walk.

TEST(ElementWalk, CountZeroComparesNothing) {
  for (const Comparator& c : Comparators()) {
    for (unsigned char format : {8, 2}) {
      int status = 2101;
      EXPECT_EQ(c.compare(format, 0, nullptr, 0, nullptr, 0, 0, status), 0) << c.name;
      EXPECT_EQ(status, 0) << c.name;
      status = -5;
      EXPECT_EQ(c.compare(format, 3, nullptr, 17, nullptr, 0, 0, status), 0) << c.name;
      EXPECT_EQ(status, 0) << c.name;
    }
  }
}

// An exact-size heap copy of `bytes`, so that the address sanitizer reports
// any read beyond what the walk may touch.
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
      const size_t s = Width(c, format);
      for (uint32_t k = 1; k < kCount; ++k) {
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
        const uint32_t full = static_cast<uint32_t>(s * kCount);
        const uint32_t upToK = static_cast<uint32_t>(s * k);
        const uint32_t throughK = static_cast<uint32_t>(s * (k + 1));
        int status = 77;

        // Whole operands: the difference is found, status 0.
        EXPECT_EQ(c.compare(format, 0, a.data(), 0, b.data(), 0, kCount, status), -1);
        EXPECT_EQ(status, 0);
        EXPECT_EQ(c.compare(format, full, a.data(), full + 9, b.data(), 0, kCount, status), -1);
        EXPECT_EQ(status, 0);

        // Operand 1 ends before element k: element k is never read.
        auto cutA = Exact(a, upToK);
        EXPECT_EQ(c.compare(format, upToK, cutA.get(), 0, b.data(), 0, kCount, status), 0);
        EXPECT_EQ(status, 2101);
        // The same for operand 2.
        auto cutB = Exact(b, upToK);
        EXPECT_EQ(c.compare(format, 0, a.data(), upToK, cutB.get(), 0, kCount, status), 0);
        EXPECT_EQ(status, 2101);

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

TEST(ElementWalk, ShortArraysCutAfterTwoElements) {
  int16_t a[3] = {4, 5, 6};
  int16_t b[3] = {4, 5, 7};
  // Only two elements of operand 1 exist: the third must not be read.
  std::unique_ptr<int16_t[]> two(new int16_t[2]{4, 5});
  int status = 0;
  EXPECT_EQ(ShortCompare(8, 4, two.get(), 0, b, 0, 3, status), 0);
  EXPECT_EQ(status, 2101);

  // A difference in the second element: 2101 while a third is due.
  int16_t c[3] = {4, 9, 6};
  EXPECT_EQ(ShortCompare(8, 4, c, 0, b, 0, 3, status), 1);
  EXPECT_EQ(status, 2101);
  EXPECT_EQ(ShortCompare(8, 4, c, 0, b, 0, 2, status), 1);
  EXPECT_EQ(status, 0);

  // A difference in the first element with one element stated: the step
  // over the operands happens before the result is returned.
  int16_t d[3] = {3, 5, 6};
  EXPECT_EQ(ShortCompare(8, 2, d, 0, a, 0, 3, status), -1);
  EXPECT_EQ(status, 2101);

  // Lengths 0: all three elements, status 0.
  EXPECT_EQ(ShortCompare(8, 0, a, 0, b, 0, 3, status), -1);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(ShortCompare(8, 0, b, 0, a, 0, 3, status), 1);
}

TEST(ElementWalk, LongArraysWalkManyElements) {
  // 100 elements in format 2, different first at element 57.
  const uint32_t count = 100;
  std::vector<int32_t> memoryA(count);
  std::vector<int32_t> memoryB(count);
  for (uint32_t i = 0; i < count; ++i) memoryA[i] = memoryB[i] = static_cast<int32_t>(i) - 50;
  memoryB[57] = -1000;
  memoryA[80] = 7;  // behind the first difference
  Bytes a(4 * count);
  Bytes b(4 * count);
  NxTypeMgr mgr;
  mgr.Store(NxTYPE_long, a.data(), memoryA.data(), 2, count);
  mgr.Store(NxTYPE_long, b.data(), memoryB.data(), 2, count);

  int status = 0;
  EXPECT_EQ(mgr.Cmp(NxTYPE_long, 0, a.data(), 0, b.data(), 0, count, 2, status), 1);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(mgr.Cmp(NxTYPE_long, a.data(), b.data(), 0, count, 2), 1);
  auto cut = Exact(a, 4 * 57);
  EXPECT_EQ(mgr.Cmp(NxTYPE_long, 4 * 57, cut.get(), 0, b.data(), 0, count, 2, status), 0);
  EXPECT_EQ(status, 2101);
  EXPECT_EQ(mgr.Cmp(NxTYPE_long, 4 * 58, a.data(), 0, b.data(), 0, count, 2, status), 1);
  EXPECT_EQ(status, 2101);
  // Memory form of the same arrays orders alike.
  EXPECT_EQ(mgr.Cmp(NxTYPE_long, 0, memoryA.data(), 0, memoryB.data(), 0, count, 8, status), 1);
  EXPECT_EQ(status, 0);
}

}  // namespace
