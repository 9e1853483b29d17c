// Tests of range estimates and hashes of the null-capable rows and of the
// NxInt64 hash: numbers against keys counted one by one, nulls at either end
// and in the value, the undivided 64-bit row, narrowed bounds, and hashes of
// random arrays with nulls against element hashes computed here, in memory
// form and in both disk byte orders.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;
constexpr uint32_t kM = 1103515245u;
constexpr uint32_t kNull = 0xFEFE7575u;
// Stands for a null key in the tables below.
constexpr double N = std::numeric_limits<double>::lowest();

// One key in disk form, stored by the row.
template <typename T>
Bytes Key(char id, unsigned char format, double v) {
  NxNull<T> element;
  if (v != N && std::is_same<T, NxInt64>::value)
    element = NxNull<T>(T(static_cast<long long>(v)));
  else if (v != N)
    element = NxNull<T>(static_cast<T>(v));
  Bytes disk(32);
  disk.resize(NxTypeMgr().Store(id, disk.data(), &element, format, 1));
  return disk;
}

const struct Row {
  char id;
  Bytes (*key)(char, unsigned char, double);
  double max;  // unsigned rows: the largest number of the width
} kRows[] = {
    {NxTYPE_NxNull_char, Key<signed char>, 0}, {NxTYPE_NxNull_uchar, Key<uint8_t>, 255},
    {NxTYPE_NxNull_short, Key<int16_t>, 0},    {NxTYPE_NxNull_ushort, Key<uint16_t>, 65535},
    {NxTYPE_NxNull_int, Key<int32_t>, 0},      {NxTYPE_NxNull_unsigned, Key<uint32_t>, 4294967295},
    {NxTYPE_NxNull_long, Key<int32_t>, 0},     {NxTYPE_NxNull_ulong, Key<uint32_t>, 4294967295},
    {NxTYPE_NxNull_float, Key<float>, 0},      {NxTYPE_NxNull_double, Key<double>, 0},
    {NxTYPE_NxNull_NxInt64, Key<NxInt64>, 0},
};

float Estimate(const Row& row, double low, double high, unsigned short op, double v,
               unsigned char format = 1) {
  Bytes l = row.key(row.id, format, low), h = row.key(row.id, format, high),
        value = row.key(row.id, format, v);
  NxIdxBounds bounds{l.data(), h.data(), static_cast<unsigned char>(l.size()),
                     static_cast<unsigned char>(h.size())};
  unsigned short word = op;
  const float result =
      NxTypeMgr().EvalAndBound(row.id, &bounds, word, value.data(), format, 1, nullptr, nullptr);
  EXPECT_EQ(word, op);
  return result;
}

TEST(NullRanges, NumbersCountKeysAndNullsTakeTheirFixedShares) {
  // The parts (greater, less, equal) of the range 10..19 with nulls at
  // either end or in the value 14, before the division by the width.
  const struct {
    double l, h, v, greater, less, equal;
  } patterns[] = {
      {10, 19, N, 0.5, 0, 0},    {N, 19, 14, 0.5, 0.5, 0.1}, {10, N, 14, 0, 0, 0},
      {N, 19, N, 0.5, 0, 0.001}, {10, N, N, 0, 0, 0},        {N, N, 14, 0, 0, 0},
      {N, N, N, 0, 0, 0.001},
  };
  for (const Row& row : kRows) {
    if (row.id == NxTYPE_NxNull_NxInt64) continue;
    for (unsigned char format : {1, 2}) {
      SCOPED_TRACE(std::to_string(row.id) + " format " + std::to_string(format));
      for (unsigned short op = 1; op <= 7; ++op) {
        for (const auto& p : patterns) {
          const double total =
              (op & 4 ? p.greater : 0) + (op & 2 ? p.less : 0) + (op & 1 ? p.equal : 0);
          const double width = (p.h == N ? 0 : p.h) - (p.l == N ? 0 : p.l) + 1;
          EXPECT_FLOAT_EQ(Estimate(row, p.l, p.h, op, p.v, format), total / width) << op;
        }
        // Numbers only: the share of the keys 10..19 counted one by one.
        for (double v : {5, 10, 14, 19, 25}) {
          int kept = 0;
          for (int k = 10; k <= 19; ++k)
            kept += ((op & 1) && k == v) || ((op & 2) && k < v) || ((op & 4) && k > v);
          EXPECT_FLOAT_EQ(Estimate(row, 10, 19, op, v, format), kept / 10.0) << op << " " << v;
        }
      }
      if (row.max != 0) {  // the largest number widens as unsigned
        EXPECT_FLOAT_EQ(Estimate(row, 0, row.max, 3, row.max, format), 1.0f);
        EXPECT_FLOAT_EQ(Estimate(row, 0, row.max, 1, row.max, format), 1 / (row.max + 1));
      }
    }
  }
  // The reals: no floor, no clamp, and a NaN value equals no key.
  const Row& single = kRows[8];
  const Row& wide = kRows[9];
  EXPECT_FLOAT_EQ(Estimate(single, 0.0, 0.5, 4, 0.25), 0.25 / 1.5);
  EXPECT_EQ(Estimate(wide, 0.0, 1e300, 1, 5.0), 0.0f);
  EXPECT_EQ(Estimate(wide, 0.0, 10.0, 2, -INFINITY), 0.0f);
  EXPECT_EQ(Estimate(wide, 0.0, 10.0, 1, NAN, 2), 0.0f);
}

TEST(NullRanges, TheSixtyFourBitRowGivesALengthAndOneKeyForLostOverlaps) {
  const struct {
    double l, h;
    unsigned short op;
    double v;
    float expected;
  } cases[] = {
      // Undivided lengths; a zero that the exact numbers make one key; a
      // null value below a number; the signed high words of -2^33.
      {10, 19, 5, 14, 6},   {10, 19, 6, 14, 9},
      {10, 19, 4, 19, 1},   {10, 19, 4, 25, 0},
      {10, 19, 2, 5, 0},    {10, 19, 1, 5, 0},
      {5, N, 1, 7, 0},      {5, N, 2, 7, 1},
      {N, 19, 1, N, 1},     {10, 19, 6, N, 1},
      {N, N, 1, N, 0.001f}, {N, N, 4, N, 1},
      {N, 19, 2, 7, 0.5f},  {-8589934592.0, 8589934592.0, 3, 0, 8589934593.0f},
  };
  for (const auto& c : cases)
    for (unsigned char format : {1, 2})
      EXPECT_EQ(Estimate(kRows[10], c.l, c.h, c.op, c.v, format), c.expected)
          << c.l << " " << c.h << " " << c.op << " " << c.v;
  // 2^60 and 2^60 + 1 are one double; the exact numbers still leave a key.
  NxNull_NxInt64 elements[] = {NxInt64(0u, 1 << 28), NxInt64(0u, 1 << 29), NxInt64(1u, 1 << 28)};
  unsigned char keys[3][9];
  for (int i = 0; i < 3; ++i) NxTypeMgr().Store(NxTYPE_NxNull_NxInt64, keys[i], &elements[i], 1, 1);
  NxIdxBounds bounds{keys[0], keys[1], 9, 9};
  unsigned short op = 2;
  EXPECT_EQ(
      NxTypeMgr().EvalAndBound(NxTYPE_NxNull_NxInt64, &bounds, op, keys[2], 1, 1, nullptr, nullptr),
      1.0f);
}

TEST(NullRanges, NarrowedKeysCopyCountElementsWithTheirFlags) {
  // Without bounds there is no estimate, but equality narrows both ends to
  // the two elements of the value, flags included.
  for (const auto& row : {std::make_pair(NxTYPE_NxNull_long, 10), {NxTYPE_NxNull_NxInt64, 18}}) {
    Bytes value(static_cast<size_t>(row.second));
    for (size_t i = 0; i < value.size(); ++i) value[i] = static_cast<unsigned char>(i + 1);
    NxIdxBounds narrowed{nullptr, nullptr, 0, 0};
    unsigned short op = 1;
    EXPECT_EQ(
        NxTypeMgr().EvalAndBound(row.first, nullptr, op, value.data(), 2, 2, &narrowed, nullptr),
        0.0f);
    ASSERT_TRUE(narrowed.low != nullptr && narrowed.high != nullptr);
    EXPECT_EQ(narrowed.lowLength, row.second);
    EXPECT_EQ(narrowed.highLength, row.second);
    EXPECT_EQ(std::memcmp(narrowed.high, value.data(), value.size()), 0);
    std::free(narrowed.low);
    std::free(narrowed.high);
  }
}

// ---------------------------------------------------------------------------
// Hashes.

uint32_t Hash(char id, const void* value, uint32_t count, unsigned char format, int& status,
              uint32_t length = 0) {
  status = 77;
  return NxTypeMgr().Hash(id, length, const_cast<void*>(value), count, format, status);
}

// The element hash of a number before the multiplication: the signed byte or
// 16-bit number, the 32-bit word, or the exclusive or of the two words.
template <typename T>
uint32_t Bits(const T& v) {
  uint64_t b = 0;
  std::memcpy(&b, &v, sizeof v);
  return sizeof v == 1   ? uint32_t(int8_t(b))
         : sizeof v == 2 ? uint32_t(int16_t(b))
                         : uint32_t(b ^ (b >> 32));
}

// Random arrays with about one null in three hash alike in memory form, in
// both disk forms, and as the exclusive or of the element hashes.
template <typename T>
void HashesAgreeInEveryForm(char id, std::mt19937& random) {
  for (int round = 0; round < 200; ++round) {
    const uint32_t count = 1 + random() % 5;
    std::vector<NxNull<T>> elements(count);
    uint32_t expected = 0;
    for (NxNull<T>& e : elements) {
      if (random() % 3 != 0) {
        for (size_t i = 0; i < sizeof(T); ++i)
          reinterpret_cast<unsigned char*>(&e.value)[i] = static_cast<unsigned char>(random());
        e.isNull = 0;
      }
      expected ^= e.isNull ? kNull : Bits(e.value) * kM;
    }
    int status = 0;
    EXPECT_EQ(Hash(id, elements.data(), count, 8, status), expected) << int(id);
    for (unsigned char format : {1, 2}) {
      Bytes disk(count * (sizeof(T) + 1));
      ASSERT_EQ(NxTypeMgr().Store(id, disk.data(), elements.data(), format, count), disk.size());
      EXPECT_EQ(Hash(id, disk.data(), count, format, status), expected) << int(id) << int(format);
      EXPECT_EQ(status, 0);
    }
  }
}

TEST(NullHashes, MemoryAndDiskFormsHashAlikeForEveryRow) {
  std::mt19937 random(20240612);
  HashesAgreeInEveryForm<signed char>(NxTYPE_NxNull_char, random);
  HashesAgreeInEveryForm<unsigned char>(NxTYPE_NxNull_uchar, random);
  HashesAgreeInEveryForm<int16_t>(NxTYPE_NxNull_short, random);
  HashesAgreeInEveryForm<uint16_t>(NxTYPE_NxNull_ushort, random);
  HashesAgreeInEveryForm<int32_t>(NxTYPE_NxNull_int, random);
  HashesAgreeInEveryForm<uint32_t>(NxTYPE_NxNull_unsigned, random);
  HashesAgreeInEveryForm<int32_t>(NxTYPE_NxNull_long, random);
  HashesAgreeInEveryForm<uint32_t>(NxTYPE_NxNull_ulong, random);
  HashesAgreeInEveryForm<float>(NxTYPE_NxNull_float, random);
  HashesAgreeInEveryForm<double>(NxTYPE_NxNull_double, random);
  HashesAgreeInEveryForm<NxInt64>(NxTYPE_NxNull_NxInt64, random);
  // NxInt64 itself: the words of each element, one multiplication at the end.
  for (int round = 0; round < 200; ++round) {
    std::vector<NxInt64> numbers(1 + random() % 5);
    uint32_t words = 0;
    for (NxInt64& n : numbers) words ^= Bits(n = NxInt64(uint32_t(random()), int32_t(random())));
    const uint32_t count = static_cast<uint32_t>(numbers.size());
    Bytes disk(count * 8);
    NxTypeMgr().Store(NxTYPE_NxInt64, disk.data(), numbers.data(), 2, count);
    int status = 0;
    EXPECT_EQ(Hash(NxTYPE_NxInt64, numbers.data(), count, 8, status), words * kM);
    EXPECT_EQ(Hash(NxTYPE_NxInt64, disk.data(), count, 2, status), words * kM);
  }
}

TEST(NullHashes, IdentitiesFlagsAndStatedLengths) {
  int status = 0;
  std::vector<NxNull_long> longs(3);  // null, 1, null
  longs[1] = NxNull_long(1);
  EXPECT_EQ(Hash(NxTYPE_NxNull_long, &longs[0], 1, 8, status), kNull) << "not multiplied";
  EXPECT_EQ(Hash(NxTYPE_NxNull_long, &longs[1], 1, 8, status), kM) << "multiplied once";
  EXPECT_EQ(Hash(NxTYPE_NxNull_long, longs.data(), 3, 8, status), kM) << "two nulls cancel";
  EXPECT_EQ(Hash(NxTYPE_NxNull_long, longs.data(), 0, 1, status), 0u);
  EXPECT_EQ(status, 0);
  const NxNull_uchar ff(0xFF);
  EXPECT_EQ(Hash(NxTYPE_NxNull_uchar, &ff, 1, 8, status), 0xFFFFFFFFu * kM) << "the byte -1";
  // On disk only the flag byte 1 is null: 2 counts as a number.
  const unsigned char flagged[] = {1, 7, 2, 7, 0, 7};
  EXPECT_EQ(Hash(NxTYPE_NxNull_char, flagged, 1, 1, status), kNull);
  EXPECT_EQ(Hash(NxTYPE_NxNull_char, flagged + 2, 2, 2, status), 0u);
  // Stated lengths: elements are 5 bytes apart on disk, 8 in memory.
  unsigned char disk[15];
  NxTypeMgr().Store(NxTYPE_NxNull_long, disk, longs.data(), 1, 3);
  const struct {
    const void* value;
    unsigned char format;
    uint32_t length, expected;
    int status;
  } cases[] = {
      {disk, 1, 10, kNull ^ kM, 2101},
      {disk, 1, 11, kM, 0},
      {longs.data(), 8, 16, kNull ^ kM, 2101},
      {longs.data(), 8, 17, kM, 0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Hash(NxTYPE_NxNull_long, c.value, 3, c.format, status, c.length), c.expected);
    EXPECT_EQ(status, c.status) << c.length;
  }
}

}  // namespace
