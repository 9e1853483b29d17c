// Tests of the comparators of the class rows: the temporal rows, NxInt64,
// NxBoolean, the identifiers and the null-capable numbers.  Random values of
// each row are compared in memory form and, after the row's Store, in disk
// form, against a rank computed here from the fields; then the cases where
// the forms part ways (wildcards, zones, NaN, the boolean byte 2) and the
// element walk with stated lengths for every row.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

template <typename T>
int Order(const T& a, const T& b) {
  return a < b ? -1 : (b < a ? 1 : 0);
}

int SignOf(int32_t v) {
  return v < 0 ? -1 : (v > 0 ? 1 : 0);
}

struct Result {
  int32_t value;
  int status;
};

Result Compare(char id, unsigned char format, const void* a, const void* b, uint32_t count = 1,
               uint32_t length1 = 0, uint32_t length2 = 0, unsigned short cmpOp = 0) {
  NxTypeMgr mgr;
  Result r{0, -1};
  r.value = mgr.Cmp(id, length1, const_cast<void*>(a), length2, const_cast<void*>(b), cmpOp, count,
                    format, r.status);
  return r;
}

Bytes Stored(char id, const void* memory, unsigned char format, uint32_t count = 1) {
  NxTypeMgr mgr;
  Bytes disk(mgr.DiskLenGet(id, memory, format, count, 8));
  EXPECT_EQ(disk.size(), mgr.Store(id, disk.data(), memory, format, count));
  return disk;
}

int Pick(std::mt19937& rng, int low, int high) {
  return std::uniform_int_distribution<int>(low, high)(rng);
}

// Random pairs of a row (every fifth pair equal): memory form must order
// them as `memoryRank`, the disk forms in `formats` as `diskRank`.
template <typename T, typename Random, typename MemoryRank, typename DiskRank>
void CheckRandomPairs(char id, Random random, MemoryRank memoryRank, DiskRank diskRank,
                      std::vector<unsigned char> formats = {1, 2}) {
  std::mt19937 rng(20240611u + static_cast<unsigned>(id));
  for (int trial = 0; trial < 400; ++trial) {
    const T a = random(rng);
    const T b = trial % 5 == 0 ? a : random(rng);
    SCOPED_TRACE("row " + std::to_string(id) + ", trial " + std::to_string(trial));
    const Result m = Compare(id, 8, &a, &b);
    EXPECT_EQ(Order(memoryRank(a), memoryRank(b)), SignOf(m.value));
    EXPECT_EQ(0, m.status);
    for (unsigned char format : formats) {
      const Bytes da = Stored(id, &a, format), db = Stored(id, &b, format);
      const Result d = Compare(id, format, da.data(), db.data());
      EXPECT_EQ(Order(diskRank(a), diskRank(b)), SignOf(d.value)) << "format " << int(format);
      EXPECT_EQ(0, d.status);
      EXPECT_EQ(d.value, Compare(id, format | 0x80, da.data(), db.data()).value);
    }
  }
}

template <typename T, typename Random, typename Rank>
void CheckRandomPairs(char id, Random random, Rank rank) {
  CheckRandomPairs<T>(id, random, rank, rank);
}

NxDate RandomDate(std::mt19937& rng) {
  return NxDate(Pick(rng, -3, 3) * 700 + Pick(rng, 0, 2), Pick(rng, 1, 12), Pick(rng, 1, 28));
}
auto DateRank(const NxDate& d) {
  return std::make_tuple(d.year, d.month, d.day);
}

TEST(OtherComparators, ClassRowsOrderRandomValuesByTheirFields) {
  CheckRandomPairs<NxDate>(NxTYPE_NxDate, RandomDate, DateRank);
  CheckRandomPairs<NxTime>(
      NxTYPE_NxTime, [](std::mt19937& rng) { return NxTime(Pick(rng, 0, 86399)); },
      [](const NxTime& t) { return std::make_tuple(t.hour, t.minute, t.second); });
  // d_Time in one zone, whole seconds (hundredths below).
  CheckRandomPairs<d_Time>(
      NxTYPE_d_Time,
      [](std::mt19937& rng) {
        return d_Time(static_cast<unsigned short>(Pick(rng, 0, 23)),
                      static_cast<unsigned short>(Pick(rng, 0, 1) * 30),
                      static_cast<float>(Pick(rng, 0, 3)), 0, 0);
      },
      [](const d_Time& t) { return std::make_tuple(t.hour, t.minute, t.second); });

  const int64_t edges[] = {INT64_MIN, -1, 0, 1, 0xFFFFFFFFll, 0x100000000ll, INT64_MAX};
  CheckRandomPairs<NxInt64>(
      NxTYPE_NxInt64,
      [&](std::mt19937& rng) {
        if (Pick(rng, 0, 1) == 0) return NxInt64(edges[Pick(rng, 0, 6)]);
        const uint64_t bits = (uint64_t{rng()} << 32 | rng()) >> Pick(rng, 0, 63);
        return NxInt64(static_cast<long long>(Pick(rng, 0, 1) == 0 ? bits : ~bits));
      },
      [](const NxInt64& v) { return v.ToInt64(); });
  // Null, then false, then true.
  CheckRandomPairs<NxBoolean>(
      NxTYPE_NxBoolean,
      [](std::mt19937& rng) {
        NxBoolean v(Pick(rng, 0, 1));
        if (Pick(rng, 0, 2) == 0) v.SetNullValue();
        return v;
      },
      [](const NxBoolean& v) { return v.IsNullValue() ? -1 : int(v.value); });
}

TEST(OtherComparators, IdentifiersOrderMemoryByOperatorAndKeysByBytes) {
  auto objId = [](std::mt19937& rng) {
    return NxObjId(static_cast<uint16_t>(Pick(rng, 0, 2) * 0x7F80),
                   static_cast<uint32_t>(Pick(rng, 0, 3)) * 0x40000001u,
                   static_cast<uint32_t>(Pick(rng, 0, 9)));
  };
  auto number = [](const NxObjId& o) { return std::make_tuple(o.high, o.low); };
  // Keys of format 2 compare at the offsets of format 1: an order, but not
  // that of the numbers.
  CheckRandomPairs<NxObjId>(NxTYPE_NxObjId, objId, number, number, {1});
  // NxRef: memory by (high, low, database), keys by (database, high, low).
  CheckRandomPairs<NxRef>(
      NxTYPE_NxRef,
      [&](std::mt19937& rng) {
        return NxRef(objId(rng), static_cast<uint16_t>(Pick(rng, 0, 2) * 0x181),
                     NxClassId(static_cast<uint16_t>(Pick(rng, 1, 9)), 0));
      },
      [&](const NxRef& r) { return std::tuple_cat(number(r.objId), std::make_tuple(r.database)); },
      [&](const NxRef& r) { return std::tuple_cat(std::make_tuple(r.database), number(r.objId)); },
      {1});
  // NxClassId: null first, in both forms, although its fields are greatest.
  auto classRank = [](const NxClassId& c) {
    return std::make_tuple(!(c.classNumber == 0xFFFF && c.version == 0xFFFF), c.classNumber,
                           c.version);
  };
  CheckRandomPairs<NxClassId>(NxTYPE_NxClassId,
                              [](std::mt19937& rng) {
                                if (Pick(rng, 0, 4) == 0) return NxClassId(0xFFFF, 0xFFFF);
                                return NxClassId(static_cast<uint16_t>(Pick(rng, 0, 2) * 0x7FFF),
                                                 static_cast<uint16_t>(Pick(rng, 0, 2) * 0x7FFF));
                              },
                              classRank, classRank, {1});
  // Keys give the first difference of two bytes.
  auto key = [](const NxObjId& o) { return Stored(NxTYPE_NxObjId, &o, 1); };
  EXPECT_EQ(-4, Compare(NxTYPE_NxObjId, 1, key({1, 0, 7}).data(), key({5, 0, 9}).data()).value);
  EXPECT_EQ(1, Compare(NxTYPE_NxObjId, 1, key({0, 0x200}).data(), key({0, 0x100}).data()).value);
}

template <typename V>
void CheckNullRow(char id, const std::vector<V>& values) {
  using E = NxNull<V>;
  CheckRandomPairs<E>(
      id,
      [&](std::mt19937& rng) {
        const int k = Pick(rng, 0, static_cast<int>(values.size()));
        return k == static_cast<int>(values.size()) ? E() : E(values[k]);
      },
      [](const E& e) { return std::make_tuple(e.isNull == 0, e.isNull ? V(0) : e.value); });
}

TEST(OtherComparators, NullCapableRowsPutNullFirst) {
  CheckNullRow<signed char>(NxTYPE_NxNull_char, {-128, -1, 0, 1, 127});
  CheckNullRow<unsigned char>(NxTYPE_NxNull_uchar, {0, 1, 0x7F, 0x80, 0xFF});
  CheckNullRow<int16_t>(NxTYPE_NxNull_short, {INT16_MIN, -1, 0, 1, 256, INT16_MAX});
  CheckNullRow<uint16_t>(NxTYPE_NxNull_ushort, {0, 1, 255, 256, 0x8000, 0xFFFF});
  CheckNullRow<int32_t>(NxTYPE_NxNull_int, {INT32_MIN, -1, 0, 1, 0x100, INT32_MAX});
  CheckNullRow<uint32_t>(NxTYPE_NxNull_unsigned, {0, 1, 0x100, 0x80000000u, 0xFFFFFFFFu});
  CheckNullRow<int32_t>(NxTYPE_NxNull_long, {INT32_MIN, -1, 0, 1, 0x100, INT32_MAX});
  CheckNullRow<uint32_t>(NxTYPE_NxNull_ulong, {0, 1, 0x100, 0x80000000u, 0xFFFFFFFFu});
  CheckNullRow<float>(NxTYPE_NxNull_float, {-INFINITY, -1.5f, -0.0f, 0.0f, 2.0f});
  CheckNullRow<double>(NxTYPE_NxNull_double, {-INFINITY, -1e300, 0.0, 1e-300, INFINITY});
  CheckNullRow<NxInt64>(NxTYPE_NxNull_NxInt64, {NxInt64(INT64_MIN), NxInt64(-1), NxInt64(0),
                                                NxInt64(0xFFFFFFFFll), NxInt64(0x100000000ll)});
  // A NaN against a number gives 1 on either side, the reverse of
  // FloatCompare; null still comes first.
  const NxNull_float nan(std::numeric_limits<float>::quiet_NaN()), one(1.0f), null;
  const Bytes n = Stored(NxTYPE_NxNull_float, &nan, 2), o = Stored(NxTYPE_NxNull_float, &one, 2);
  EXPECT_EQ(1, Compare(NxTYPE_NxNull_float, 2, n.data(), o.data()).value);
  EXPECT_EQ(1, Compare(NxTYPE_NxNull_float, 2, o.data(), n.data()).value);
  EXPECT_EQ(1, Compare(NxTYPE_NxNull_float, 8, &nan, &nan).value);
  EXPECT_EQ(-1, Compare(NxTYPE_NxNull_float, 8, &null, &nan).value);
  // In memory form a flag byte other than 1 is a value, as Load reads it.
  NxNull_long flagTwo(5), nullLong;
  reinterpret_cast<signed char*>(&flagTwo)[4] = 2;
  EXPECT_EQ(1, Compare(NxTYPE_NxNull_long, 8, &flagTwo, &nullLong).value);
}

// ---------------------------------------------------------------------------
// Where the forms part ways.

Bytes DateKey(int year, int month, int day, unsigned char format) {
  const NxDate d(year, month, day);
  return Stored(NxTYPE_NxDate, &d, format);
}

TEST(OtherComparators, DateWildcardsStandInTheSecondDiskOperandOnly) {
  for (unsigned char format : {1, 2}) {
    SCOPED_TRACE(int(format));
    auto cmp = [format](const Bytes& a, const Bytes& b, unsigned short op = 0,
                        char id = NxTYPE_NxDate) {
      return Compare(id, format, a.data(), b.data(), 1, 0, 0, op).value;
    };
    const Bytes day = DateKey(2004, 3, 15, format), anyYear = DateKey(-1, 3, 15, format);
    EXPECT_EQ(0, cmp(day, anyYear));
    EXPECT_EQ(-1, cmp(anyYear, day));
    EXPECT_EQ(1, cmp(day, anyYear, NxCMP_NO_WILDCARDS));
    EXPECT_EQ(-1, cmp(anyYear, day, NxCMP_NO_WILDCARDS));
    EXPECT_EQ(0, cmp(day, anyYear, 0, NxTYPE_d_Date));
    // A wild month lets the days decide, a wild day the months; both wild
    // match the whole year.
    EXPECT_EQ(1, cmp(day, DateKey(2004, -1, 7, format)));
    EXPECT_EQ(1, cmp(day, DateKey(2004, 2, -1, format)));
    EXPECT_EQ(0, cmp(day, DateKey(2004, -1, -1, format)));
    EXPECT_EQ(-1, cmp(DateKey(2003, 12, 31, format), DateKey(2004, -1, -1, format)));
    EXPECT_EQ(1, cmp(DateKey(2000, 3, 1, format), DateKey(2000, 1, 31, format)));
    // Years -5 and 5: signed for NxDate, unsigned for d_Date.
    const Bytes minus5 = DateKey(-5, 1, 1, format), plus5 = DateKey(5, 1, 1, format);
    EXPECT_EQ(-1, cmp(minus5, plus5));
    EXPECT_EQ(1, cmp(minus5, plus5, 0, NxTYPE_d_Date));
    // NxDateTime keys have no wildcard: 0xFF is a month of -1 there.
    NxDateTime exact, wild;
    exact.date = NxDate(2004, 3, 15);
    wild.date = NxDate(2004, -1, 15);
    exact.time = wild.time = NxTime(0);
    EXPECT_EQ(1, cmp(Stored(NxTYPE_NxDateTime, &exact, format),
                     Stored(NxTYPE_NxDateTime, &wild, format), 0, NxTYPE_NxDateTime));
    EXPECT_EQ(0, Compare(NxTYPE_NxDateTime, 8, &exact, &wild).value);
  }
  // Memory form: -1 is a wildcard on either side, always; the result is the
  // difference of the first field.  0x88 is memory form for NxDate, a disk
  // form read natively for d_Date (whose memory rule is the whole byte 8).
  const NxDate day(2004, 3, 15), anyYear(-1, 3, 15), march(2000, 3, 1), january(2000, 1, 31);
  EXPECT_EQ(0, Compare(NxTYPE_NxDate, 8, &anyYear, &day, 1, 0, 0, NxCMP_NO_WILDCARDS).value);
  EXPECT_EQ(2, Compare(NxTYPE_NxDate, 0x88, &march, &january).value);
  const d_Date dMarch(march), dJanuary(january);
  EXPECT_EQ(30, Compare(NxTYPE_d_Date, 8, &dMarch, &dJanuary).value);
  EXPECT_EQ(1, Compare(NxTYPE_d_Date, 0x88, &dMarch, &dJanuary).value);
  // The null date orders before ordinary dates in both forms.
  NxDate null(2000, 1, 1);
  null.SetNullValue();
  const NxDate early(-4000, 1, 1);
  EXPECT_LT(Compare(NxTYPE_NxDate, 8, &null, &early).value, 0);
  EXPECT_LT(Compare(NxTYPE_NxDate, 1, Stored(NxTYPE_NxDate, &null, 1).data(),
                    Stored(NxTYPE_NxDate, &early, 1).data())
                .value,
            0);
}

TEST(OtherComparators, StandardTimesDifferByFormInZonesAndHundredths) {
  // Less than a second apart: equal in memory, not on disk.
  const d_Time tenth(10, 0, 0.10f, 0, 0), half(10, 0, 0.50f, 0, 0);
  EXPECT_EQ(0, Compare(NxTYPE_d_Time, 8, &tenth, &half).value);
  EXPECT_EQ(-1, Compare(NxTYPE_d_Time, 1, Stored(NxTYPE_d_Time, &tenth, 1).data(),
                        Stored(NxTYPE_d_Time, &half, 1).data())
                    .value);
  // The same local time in two zones: equal in memory, not on disk.
  const d_Time one(10, 0, 0.0f, 1, 0), two(10, 0, 0.0f, 2, 0);
  EXPECT_EQ(0, Compare(NxTYPE_d_Time, 8, &one, &two).value);
  EXPECT_EQ(-1, Compare(NxTYPE_d_Time, 2, Stored(NxTYPE_d_Time, &one, 2).data(),
                        Stored(NxTYPE_d_Time, &two, 2).data())
                    .value);
  const d_Date day(NxDate(2004, 3, 15));
  const d_Timestamp early(day, tenth), late(day, half);
  EXPECT_EQ(0, Compare(NxTYPE_d_Timestamp, 8, &early, &late).value);
  EXPECT_EQ(-1, Compare(NxTYPE_d_Timestamp, 2, Stored(NxTYPE_d_Timestamp, &early, 2).data(),
                        Stored(NxTYPE_d_Timestamp, &late, 2).data())
                    .value);
  // A timestamp key brings the year wildcard of its date.
  const d_Timestamp stamp(d_Date(NxDate(2004, 3, 15)), one);
  d_Timestamp pattern = stamp;
  pattern.date.year = -1;
  for (unsigned char format : {1, 2}) {
    const Bytes k1 = Stored(NxTYPE_d_Timestamp, &stamp, format);
    const Bytes k2 = Stored(NxTYPE_d_Timestamp, &pattern, format);
    EXPECT_EQ(0, Compare(NxTYPE_d_Timestamp, format, k1.data(), k2.data()).value);
    EXPECT_NE(0, Compare(NxTYPE_d_Timestamp, format, k1.data(), k2.data(), 1, 0, 0, 0x10).value);
  }
}

TEST(OtherComparators, BooleanDiskByteTwoFollowsTheOperators) {
  const unsigned char two = 2, one = 1, zero = 0, null = 255;
  for (unsigned char format : {1, 2, 8}) {
    EXPECT_EQ(1, Compare(NxTYPE_NxBoolean, format, &two, &one).value);  // above true ...
    EXPECT_EQ(0, Compare(NxTYPE_NxBoolean, format, &one, &two).value);  // ... and equal to it
    EXPECT_EQ(1, Compare(NxTYPE_NxBoolean, format, &two, &zero).value);
    EXPECT_EQ(0, Compare(NxTYPE_NxBoolean, format, &null, &null).value);
  }
}

// ---------------------------------------------------------------------------
// The element walk with stated lengths, for every row that uses it: three
// equal elements on each side, then a byte of the third key changed.

TEST(OtherComparators, ArraysStopAtStatedLengthsWithStatus2101) {
  struct WalkRow {
    char id;
    uint32_t diskWidth;
    uint32_t keyByte;  // a byte that takes part in the comparison
  };
  const WalkRow rows[] = {
      {NxTYPE_NxDate, 4, 3},        {NxTYPE_NxTime, 3, 0},    {NxTYPE_NxDateTime, 7, 3},
      {NxTYPE_d_Date, 4, 3},        {NxTYPE_d_Time, 6, 0},    {NxTYPE_d_Timestamp, 10, 3},
      {NxTYPE_NxInt64, 8, 0},       {NxTYPE_NxBoolean, 1, 0}, {NxTYPE_NxNull_short, 3, 0},
      {NxTYPE_NxNull_double, 9, 0}, {NxTYPE_NxObjId, 10, 4},  {NxTYPE_NxClassId, 4, 0},
      {NxTYPE_NxRef, 14, 4}};
  NxTypeMgr mgr;
  for (const WalkRow& row : rows) {
    SCOPED_TRACE(mgr.NameGet(row.id, nullptr));
    void* values = mgr.DefaultValue(row.id, 3, 0);
    for (unsigned char format : {1, 2}) {
      const Bytes a = Stored(row.id, values, format, 3);
      ASSERT_EQ(3 * row.diskWidth, a.size());
      Bytes b = a;
      b[2 * row.diskWidth + row.keyByte] ^= 1;
      const uint32_t two = 2 * row.diskWidth;
      const Result whole = Compare(row.id, format, a.data(), b.data(), 3);
      EXPECT_NE(0, whole.value);
      EXPECT_EQ(0, whole.status);
      const Result cut1 = Compare(row.id, format, a.data(), b.data(), 3, two, 0);
      const Result cut2 = Compare(row.id, format, a.data(), b.data(), 3, 0, two);
      EXPECT_EQ(0, cut1.value);
      EXPECT_EQ(2101, cut1.status);
      EXPECT_EQ(2101, cut2.status);
      const Result exact = Compare(row.id, format, a.data(), b.data(), 2, two, two);
      EXPECT_EQ(0, exact.status);
      const Result none = Compare(row.id, format, nullptr, nullptr, 0, 5, 5);
      EXPECT_EQ(0, none.value);
      EXPECT_EQ(0, none.status);
    }
    mgr.Delete(row.id, values, 3);
  }
  // Identifiers in memory form don't read the lengths.
  const NxObjId pair[2] = {{1, 0}, {1, 0}};
  EXPECT_EQ(0, Compare(NxTYPE_NxObjId, 8, pair, pair, 2, 4, 4).status);
}

}  // namespace
