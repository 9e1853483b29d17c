// Tests of the comparators of the class rows: the temporal rows, NxInt64,
// NxBoolean, the identifiers and the null-capable numbers.  Random values of
// each row are compared in memory form and, after the row's Store, in both
// disk forms, against an order computed here from the fields; then the
// cases where the forms part ways: wildcards, zones, nulls, cut keys.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "test_support.h"

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

// `count` memory elements of a row in disk form.
Bytes Stored(char id, const void* memory, unsigned char format, uint32_t count = 1) {
  NxTypeMgr mgr;
  Bytes disk(mgr.DiskLenGet(id, memory, format, count, 8));
  EXPECT_EQ(disk.size(), mgr.Store(id, disk.data(), memory, format, count));
  return disk;
}

// ---------------------------------------------------------------------------
// Random values against an order from the fields.

// One row: a maker of random memory elements (of type T), and the orders
// that memory form and the disk forms must give.  A null `diskOrder` means
// the disk forms keep the memory order.
template <typename T>
struct RowCase {
  using Maker = std::function<T(std::mt19937&)>;
  using Ordering = std::function<int(const T&, const T&)>;
  RowCase(char id_, Maker random_, Ordering memoryOrder_, Ordering diskOrder_ = nullptr)
      : id(id_), random(random_), memoryOrder(memoryOrder_), diskOrder(diskOrder_) {}
  char id;
  Maker random;
  Ordering memoryOrder;
  Ordering diskOrder;
};

template <typename T>
void CheckRandomPairs(const RowCase<T>& c) {
  std::mt19937 rng(20240611u + static_cast<unsigned>(c.id));
  for (int trial = 0; trial < 400; ++trial) {
    T a = c.random(rng);
    T b = trial % 5 == 0 ? a : c.random(rng);
    const int memory = c.memoryOrder(a, b);
    const int disk = c.diskOrder ? c.diskOrder(a, b) : memory;
    SCOPED_TRACE("row " + std::to_string(c.id) + ", trial " + std::to_string(trial));
    const Result m = Compare(c.id, 8, &a, &b);
    EXPECT_EQ(memory, SignOf(m.value));
    EXPECT_EQ(0, m.status);
    for (unsigned char format : {1, 2}) {
      const Bytes da = Stored(c.id, &a, format);
      const Bytes db = Stored(c.id, &b, format);
      const Result d = Compare(c.id, format, da.data(), db.data());
      EXPECT_EQ(disk, SignOf(d.value)) << "format " << int(format);
      EXPECT_EQ(0, d.status);
      // High bits of the format are not looked at.
      EXPECT_EQ(d.value, Compare(c.id, format | 0x80, da.data(), db.data()).value);
    }
  }
}

int Pick(std::mt19937& rng, int low, int high) {
  return std::uniform_int_distribution<int>(low, high)(rng);
}

NxDate RandomDate(std::mt19937& rng) {
  return NxDate(Pick(rng, -3, 3) * 700 + Pick(rng, 0, 2), Pick(rng, 1, 12), Pick(rng, 1, 28));
}
NxTime RandomTime(std::mt19937& rng) {
  NxTime t(0);
  t.hour = static_cast<int8_t>(Pick(rng, 0, 23));
  t.minute = static_cast<int8_t>(Pick(rng, 0, 2) * 29);
  t.second = static_cast<int8_t>(Pick(rng, 0, 59));
  return t;
}
auto DateFields(const NxDate& d) {
  return std::make_tuple(d.year, d.month, d.day);
}
auto TimeFields(const NxTime& t) {
  return std::make_tuple(t.hour, t.minute, t.second);
}

TEST(OtherComparators, TemporalRowsOrderRandomValuesLikeTheirFields) {
  CheckRandomPairs<NxDate>({NxTYPE_NxDate, RandomDate, [](const NxDate& a, const NxDate& b) {
                              return Order(DateFields(a), DateFields(b));
                            }});
  CheckRandomPairs<NxTime>({NxTYPE_NxTime, RandomTime, [](const NxTime& a, const NxTime& b) {
                              return Order(TimeFields(a), TimeFields(b));
                            }});
  CheckRandomPairs<NxDateTime>(
      {NxTYPE_NxDateTime,
       [](std::mt19937& rng) {
         NxDateTime v;
         v.date = RandomDate(rng);
         v.time = RandomTime(rng);
         return v;
       },
       [](const NxDateTime& a, const NxDateTime& b) {
         return Order(std::tuple_cat(DateFields(a.date), TimeFields(a.time)),
                      std::tuple_cat(DateFields(b.date), TimeFields(b.time)));
       }});
  // d_Date in memory goes by the day; on disk by the fields.  The two agree
  // for positive years.
  CheckRandomPairs<d_Date>({NxTYPE_d_Date,
                            [](std::mt19937& rng) {
                              return d_Date(NxDate(Pick(rng, 1600, 1602), Pick(rng, 1, 12),
                                                   Pick(rng, 1, 28)));
                            },
                            [](const d_Date& a, const d_Date& b) {
                              return Order(std::make_tuple(a.year, a.month, a.day),
                                           std::make_tuple(b.year, b.month, b.day));
                            }});
  // d_Time in one zone: memory drops the hundredths, disk keeps them.
  auto dTime = [](std::mt19937& rng) {
    return d_Time(static_cast<unsigned short>(Pick(rng, 0, 23)),
                  static_cast<unsigned short>(Pick(rng, 0, 1) * 30),
                  static_cast<float>(Pick(rng, 0, 2)) + static_cast<float>(Pick(rng, 0, 1)) * 0.5f,
                  0, 0);
  };
  auto dTimeFields = [](const d_Time& t) { return std::make_tuple(t.hour, t.minute, t.second); };
  CheckRandomPairs<d_Time>(
      {NxTYPE_d_Time, dTime,
       [=](const d_Time& a, const d_Time& b) { return Order(dTimeFields(a), dTimeFields(b)); },
       [=](const d_Time& a, const d_Time& b) {
         return Order(std::tuple_cat(dTimeFields(a), std::make_tuple(a.hundredth)),
                      std::tuple_cat(dTimeFields(b), std::make_tuple(b.hundredth)));
       }});
  CheckRandomPairs<d_Timestamp>(
      {NxTYPE_d_Timestamp,
       [=](std::mt19937& rng) {
         return d_Timestamp(d_Date(NxDate(Pick(rng, 1999, 2000), Pick(rng, 1, 2), Pick(rng, 1, 2))),
                            dTime(rng));
       },
       [=](const d_Timestamp& a, const d_Timestamp& b) {
         return Order(std::tuple_cat(std::make_tuple(a.date.year, a.date.month, a.date.day),
                                     dTimeFields(a.time)),
                      std::tuple_cat(std::make_tuple(b.date.year, b.date.month, b.date.day),
                                     dTimeFields(b.time)));
       },
       [=](const d_Timestamp& a, const d_Timestamp& b) {
         return Order(std::make_tuple(a.date.year, a.date.month, a.date.day, a.time.hour,
                                      a.time.minute, a.time.second, a.time.hundredth),
                      std::make_tuple(b.date.year, b.date.month, b.date.day, b.time.hour,
                                      b.time.minute, b.time.second, b.time.hundredth));
       }});
}

TEST(OtherComparators, Int64AndBooleanOrderRandomValues) {
  const int64_t edges[] = {INT64_MIN, -1, 0, 1, 0xFFFFFFFFll, 0x100000000ll, INT64_MAX};
  CheckRandomPairs<NxInt64>({NxTYPE_NxInt64,
                             [&](std::mt19937& rng) {
                               if (Pick(rng, 0, 1) == 0) return NxInt64(edges[Pick(rng, 0, 6)]);
                               const uint64_t bits = (uint64_t{rng()} << 32 | rng()) >>
                                                     Pick(rng, 0, 63);
                               return NxInt64(static_cast<long long>(
                                   Pick(rng, 0, 1) == 0 ? bits : ~bits));
                             },
                             [](const NxInt64& a, const NxInt64& b) {
                               return Order(a.ToInt64(), b.ToInt64());
                             }});
  // Null, then false, then true.
  CheckRandomPairs<NxBoolean>({NxTYPE_NxBoolean,
                               [](std::mt19937& rng) {
                                 NxBoolean v(Pick(rng, 0, 1));
                                 if (Pick(rng, 0, 2) == 0) v.SetNullValue();
                                 return v;
                               },
                               [](const NxBoolean& a, const NxBoolean& b) {
                                 auto rank = [](const NxBoolean& v) {
                                   return v.IsNullValue() ? -1 : int(v.value);
                                 };
                                 return Order(rank(a), rank(b));
                               }});
}

// The null-capable rows: null first in every form; values by their type,
// and reals with a NaN on either side give 1.
template <typename V>
void CheckNullRow(char id, const std::vector<V>& values) {
  using E = NxNull<V>;
  CheckRandomPairs<E>({id,
                       [&](std::mt19937& rng) {
                         const int k = Pick(rng, 0, static_cast<int>(values.size()));
                         return k == static_cast<int>(values.size()) ? E() : E(values[k]);
                       },
                       [](const E& a, const E& b) {
                         if (a.isNull || b.isNull) return Order(b.isNull != 0, a.isNull != 0);
                         if (a.value < b.value) return -1;
                         return a.value == b.value ? 0 : 1;
                       }});
}

TEST(OtherComparators, NullCapableRowsPutNullFirstAndOrderValuesByType) {
  const float nanF = std::numeric_limits<float>::quiet_NaN();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  CheckNullRow<signed char>(NxTYPE_NxNull_char, {-128, -1, 0, 1, 127});
  CheckNullRow<unsigned char>(NxTYPE_NxNull_uchar, {0, 1, 0x7F, 0x80, 0xFF});
  CheckNullRow<int16_t>(NxTYPE_NxNull_short, {INT16_MIN, -1, 0, 1, 256, INT16_MAX});
  CheckNullRow<uint16_t>(NxTYPE_NxNull_ushort, {0, 1, 255, 256, 0x8000, 0xFFFF});
  CheckNullRow<int32_t>(NxTYPE_NxNull_int, {INT32_MIN, -1, 0, 1, 0x100, INT32_MAX});
  CheckNullRow<uint32_t>(NxTYPE_NxNull_unsigned, {0, 1, 0x100, 0x80000000u, 0xFFFFFFFFu});
  CheckNullRow<int32_t>(NxTYPE_NxNull_long, {INT32_MIN, -1, 0, 1, 0x100, INT32_MAX});
  CheckNullRow<uint32_t>(NxTYPE_NxNull_ulong, {0, 1, 0x100, 0x80000000u, 0xFFFFFFFFu});
  CheckNullRow<float>(NxTYPE_NxNull_float, {-INFINITY, -1.5f, -0.0f, 0.0f, 2.0f, nanF});
  CheckNullRow<double>(NxTYPE_NxNull_double, {-INFINITY, -1e300, 0.0, 1e-300, INFINITY, nan});
  CheckNullRow<NxInt64>(NxTYPE_NxNull_NxInt64,
                        {NxInt64(INT64_MIN), NxInt64(-1), NxInt64(0), NxInt64(0xFFFFFFFFll),
                         NxInt64(0x100000000ll)});
}

TEST(OtherComparators, IdentifiersOrderMemoryByOperatorAndFormatOneKeysByTheirBytes) {
  auto objId = [](std::mt19937& rng) {
    return NxObjId(static_cast<uint16_t>(Pick(rng, 0, 2) * 0x7F80),
                   static_cast<uint32_t>(Pick(rng, 0, 3)) * 0x40000001u,
                   static_cast<uint32_t>(Pick(rng, 0, 9)));
  };
  auto number = [](const NxObjId& o) { return std::make_tuple(o.high, o.low); };
  // Format 2 keys compare at the offsets of format 1: a consistent order,
  // checked below for antisymmetry only.
  std::mt19937 rng(7);
  for (int trial = 0; trial < 300; ++trial) {
    NxObjId a = objId(rng), b = objId(rng);
    const int memory = Order(number(a), number(b));
    EXPECT_EQ(memory, SignOf(Compare(NxTYPE_NxObjId, 8, &a, &b).value));
    const Bytes da = Stored(NxTYPE_NxObjId, &a, 1), db = Stored(NxTYPE_NxObjId, &b, 1);
    EXPECT_EQ(memory, SignOf(Compare(NxTYPE_NxObjId, 1, da.data(), db.data()).value));
    const Bytes ma = Stored(NxTYPE_NxObjId, &a, 2), mb = Stored(NxTYPE_NxObjId, &b, 2);
    EXPECT_EQ(-Compare(NxTYPE_NxObjId, 2, ma.data(), mb.data()).value,
              Compare(NxTYPE_NxObjId, 2, mb.data(), ma.data()).value);

    // NxRef: memory by (high, low, database), disk by (database, high, low).
    NxRef r1(objId(rng), static_cast<uint16_t>(Pick(rng, 0, 2) * 0x181), NxClassId(3, 1));
    NxRef r2(objId(rng), static_cast<uint16_t>(Pick(rng, 0, 2) * 0x181), NxClassId(9, 9));
    if (trial % 4 == 0) r2 = NxRef(r1.objId, r1.database, NxClassId(9, 9));
    EXPECT_EQ(Order(std::tuple_cat(number(r1.objId), std::make_tuple(r1.database)),
                    std::tuple_cat(number(r2.objId), std::make_tuple(r2.database))),
              SignOf(Compare(NxTYPE_NxRef, 8, &r1, &r2).value));
    const Bytes k1 = Stored(NxTYPE_NxRef, &r1, 1), k2 = Stored(NxTYPE_NxRef, &r2, 1);
    EXPECT_EQ(Order(std::tuple_cat(std::make_tuple(r1.database), number(r1.objId)),
                    std::tuple_cat(std::make_tuple(r2.database), number(r2.objId))),
              SignOf(Compare(NxTYPE_NxRef, 1, k1.data(), k2.data()).value));

    // NxClassId: null first, then (classNumber, version), in both forms.
    auto classId = [&] {
      return Pick(rng, 0, 4) == 0 ? NxClassId(0xFFFF, 0xFFFF)
                                  : NxClassId(static_cast<uint16_t>(Pick(rng, 0, 2) * 0x7FFF),
                                              static_cast<uint16_t>(Pick(rng, 0, 2) * 0x7FFF));
    };
    NxClassId c1 = classId(), c2 = classId();
    auto rank = [](const NxClassId& c) {
      const bool null = c.classNumber == 0xFFFF && c.version == 0xFFFF;
      return std::make_tuple(!null, c.classNumber, c.version);
    };
    const int expected = Order(rank(c1), rank(c2));
    EXPECT_EQ(expected, SignOf(Compare(NxTYPE_NxClassId, 8, &c1, &c2).value));
    const Bytes e1 = Stored(NxTYPE_NxClassId, &c1, 1), e2 = Stored(NxTYPE_NxClassId, &c2, 1);
    EXPECT_EQ(expected, SignOf(Compare(NxTYPE_NxClassId, 1, e1.data(), e2.data()).value));
  }
}

// ---------------------------------------------------------------------------
// Where the forms part ways.

// An NxDate key in either byte order, with 0xFF 0xFF for a year of -1.
Bytes DateKey(int year, int month, int day, unsigned char format) {
  NxDate d(year, month, day);
  return Stored(NxTYPE_NxDate, &d, format);
}

TEST(OtherComparators, DateWildcardsStandInTheSecondDiskOperandOnly) {
  for (unsigned char format : {1, 2}) {
    SCOPED_TRACE(int(format));
    const Bytes day = DateKey(2004, 3, 15, format);
    const Bytes anyYear = DateKey(-1, 3, 15, format);
    EXPECT_EQ(0, Compare(NxTYPE_NxDate, format, day.data(), anyYear.data()).value);
    EXPECT_EQ(-1, Compare(NxTYPE_NxDate, format, anyYear.data(), day.data()).value);
    // No wildcards: the years decide in either order.
    EXPECT_EQ(1, Compare(NxTYPE_NxDate, format, day.data(), anyYear.data(), 1, 0, 0, 0x10).value);
    EXPECT_EQ(-1, Compare(NxTYPE_NxDate, format, anyYear.data(), day.data(), 1, 0, 0, 0x10).value);
    // A wild month lets the days decide, a wild day the months; both wild
    // match the whole year.
    const Bytes day7 = DateKey(2004, -1, 7, format);
    EXPECT_EQ(1, Compare(NxTYPE_NxDate, format, day.data(), day7.data()).value);
    const Bytes feb = DateKey(2004, 2, -1, format);
    EXPECT_EQ(1, Compare(NxTYPE_NxDate, format, day.data(), feb.data()).value);
    const Bytes year = DateKey(2004, -1, -1, format);
    EXPECT_EQ(0, Compare(NxTYPE_NxDate, format, day.data(), year.data()).value);
    EXPECT_EQ(-1, Compare(NxTYPE_NxDate, format, DateKey(2003, 12, 31, format).data(),
                          year.data()).value);
    // The memory form's difference is reduced to a sign on disk.
    EXPECT_EQ(1, Compare(NxTYPE_NxDate, format, DateKey(2000, 3, 1, format).data(),
                         DateKey(2000, 1, 31, format).data()).value);
    // Years -5 and 5: signed for NxDate, unsigned for d_Date.
    const Bytes minus5 = DateKey(-5, 1, 1, format), plus5 = DateKey(5, 1, 1, format);
    EXPECT_EQ(-1, Compare(NxTYPE_NxDate, format, minus5.data(), plus5.data()).value);
    EXPECT_EQ(1, Compare(NxTYPE_d_Date, format, minus5.data(), plus5.data()).value);
    // d_Date and d_Timestamp keys know the year wildcard too; NxDateTime
    // keys have none, and 0xFF is a month of -1 there.
    EXPECT_EQ(0, Compare(NxTYPE_d_Date, format, day.data(), anyYear.data()).value);
    NxDateTime exact, wild;
    exact.date = NxDate(2004, 3, 15);
    exact.time = NxTime(0);
    wild.date = NxDate(2004, -1, 15);
    wild.time = NxTime(0);
    const Bytes k1 = Stored(NxTYPE_NxDateTime, &exact, format);
    const Bytes k2 = Stored(NxTYPE_NxDateTime, &wild, format);
    EXPECT_EQ(1, Compare(NxTYPE_NxDateTime, format, k1.data(), k2.data()).value);
    EXPECT_EQ(0, Compare(NxTYPE_NxDateTime, 8, &exact, &wild).value);
  }
  // Memory form: a field of -1 is a wildcard on either side and can't be
  // switched off; the result is the difference of the first field.
  NxDate day(2004, 3, 15), anyYear(-1, 3, 15);
  EXPECT_EQ(0, Compare(NxTYPE_NxDate, 8, &day, &anyYear).value);
  EXPECT_EQ(0, Compare(NxTYPE_NxDate, 8, &anyYear, &day, 1, 0, 0, 0x10).value);
  NxDate march(2000, 3, 1), january(2000, 1, 31);
  EXPECT_EQ(2, Compare(NxTYPE_NxDate, 8, &march, &january).value);
  // 0x88 is memory form where the low four bits decide (NxDate), and a disk
  // form read natively where the whole byte must be 8 (d_Date).
  EXPECT_EQ(2, Compare(NxTYPE_NxDate, 0x88, &march, &january).value);
  d_Date dMarch(march), dJanuary(january);
  EXPECT_EQ(30, Compare(NxTYPE_d_Date, 8, &dMarch, &dJanuary).value);
  EXPECT_EQ(1, Compare(NxTYPE_d_Date, 0x88, &dMarch, &dJanuary).value);
  // The null date orders before ordinary dates in both forms.
  NxDate null(2000, 1, 1);
  null.SetNullValue();
  NxDate early(-4000, 1, 1);
  EXPECT_LT(Compare(NxTYPE_NxDate, 8, &null, &early).value, 0);
  EXPECT_LT(Compare(NxTYPE_NxDate, 1, Stored(NxTYPE_NxDate, &null, 1).data(),
                    Stored(NxTYPE_NxDate, &early, 1).data()).value, 0);
  // d_Date of year -1 is an ordinary date in memory.
  d_Date before(NxDate(-1, 6, 1)), after(NxDate(-1, 7, 1));
  EXPECT_LT(Compare(NxTYPE_d_Date, 8, &before, &after).value, 0);
}

TEST(OtherComparators, StandardTimesDifferByFormInZonesAndHundredths) {
  d_Time tenth(10, 0, 0.10f, 0, 0), half(10, 0, 0.50f, 0, 0);
  EXPECT_EQ(0, Compare(NxTYPE_d_Time, 8, &tenth, &half).value);
  EXPECT_EQ(-1, Compare(NxTYPE_d_Time, 1, Stored(NxTYPE_d_Time, &tenth, 1).data(),
                        Stored(NxTYPE_d_Time, &half, 1).data()).value);
  // The same local time in two zones.
  d_Time one(10, 0, 0.0f, 1, 0), two(10, 0, 0.0f, 2, 0);
  EXPECT_EQ(0, Compare(NxTYPE_d_Time, 8, &one, &two).value);
  EXPECT_EQ(-1, Compare(NxTYPE_d_Time, 2, Stored(NxTYPE_d_Time, &one, 2).data(),
                        Stored(NxTYPE_d_Time, &two, 2).data()).value);
  // A timestamp key brings the year wildcard of its date.
  d_Timestamp stamp(d_Date(NxDate(2004, 3, 15)), tenth);
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
    EXPECT_EQ(1, Compare(NxTYPE_NxBoolean, format, &two, &one).value);
    EXPECT_EQ(0, Compare(NxTYPE_NxBoolean, format, &one, &two).value);
    EXPECT_EQ(1, Compare(NxTYPE_NxBoolean, format, &two, &zero).value);
    EXPECT_EQ(-1, Compare(NxTYPE_NxBoolean, format, &null, &zero).value);
    EXPECT_EQ(0, Compare(NxTYPE_NxBoolean, format, &null, &null).value);
  }
}

TEST(OtherComparators, NullCapableRowsReadMemoryElementsAsLoadDoes) {
  // The flag byte is 1 for null; any other byte is a value.
  NxNull_long a(5), b;
  reinterpret_cast<signed char*>(&a)[4] = 2;
  EXPECT_EQ(1, Compare(NxTYPE_NxNull_long, 8, &a, &b).value);
  // Disk: the flag in front; null against the lowest value.
  const unsigned char nullKey[] = {1, 9, 9, 9, 9}, lowest[] = {0, 0, 0, 0, 0x80};
  EXPECT_EQ(-1, Compare(NxTYPE_NxNull_long, 1, nullKey, lowest).value);
  EXPECT_EQ(1, Compare(NxTYPE_NxNull_long, 1, lowest, nullKey).value);
  // The bit pattern 0xFFFFFFFF: after 1 unsigned, before it signed.
  const unsigned char ones[] = {0, 0xFF, 0xFF, 0xFF, 0xFF}, oneKey[] = {0, 0, 0, 0, 1};
  EXPECT_EQ(1, Compare(NxTYPE_NxNull_ulong, 2, ones, oneKey).value);
  EXPECT_EQ(-1, Compare(NxTYPE_NxNull_long, 2, ones, oneKey).value);
}

// ---------------------------------------------------------------------------
// The element walk with stated lengths, for every row that uses it.

// A row, its disk width, and a byte of the key that takes part in the
// comparison.
struct WalkRow {
  char id;
  uint32_t diskWidth;
  uint32_t keyByte;
};

TEST(OtherComparators, ArraysStopAtStatedLengthsWithStatus2101) {
  const WalkRow rows[] = {{NxTYPE_NxDate, 4, 3},       {NxTYPE_NxTime, 3, 0},
                          {NxTYPE_NxDateTime, 7, 3},   {NxTYPE_d_Date, 4, 3},
                          {NxTYPE_d_Time, 6, 0},       {NxTYPE_d_Timestamp, 10, 3},
                          {NxTYPE_NxInt64, 8, 0},      {NxTYPE_NxBoolean, 1, 0},
                          {NxTYPE_NxNull_short, 3, 0}, {NxTYPE_NxNull_double, 9, 0},
                          {NxTYPE_NxObjId, 10, 4},     {NxTYPE_NxClassId, 4, 0},
                          {NxTYPE_NxRef, 14, 4}};
  NxTypeMgr mgr;
  for (const WalkRow& row : rows) {
    SCOPED_TRACE(mgr.NameGet(row.id, nullptr));
    void* values = mgr.DefaultValue(row.id, 3, 0);
    for (unsigned char format : {1, 2}) {
      // Three equal elements on each side, then the third made different.
      const Bytes da = Stored(row.id, values, format, 3);
      ASSERT_EQ(3 * row.diskWidth, da.size());
      Bytes db = da;
      db[2 * row.diskWidth + row.keyByte] ^= 1;
      const uint32_t two = 2 * row.diskWidth;
      const Result whole = Compare(row.id, format, da.data(), db.data(), 3);
      EXPECT_NE(0, whole.value);
      EXPECT_EQ(0, whole.status);
      // An operand stated as two elements: equal so far, and partial.
      Result cut = Compare(row.id, format, da.data(), db.data(), 3, two, 0);
      EXPECT_EQ(0, cut.value);
      EXPECT_EQ(2101, cut.status);
      cut = Compare(row.id, format, da.data(), db.data(), 3, 0, two);
      EXPECT_EQ(2101, cut.status);
      // Two elements due and two stated: a whole comparison.
      cut = Compare(row.id, format, da.data(), db.data(), 2, two, two);
      EXPECT_EQ(0, cut.value);
      EXPECT_EQ(0, cut.status);
      // count 0 reads nothing.
      cut = Compare(row.id, format, nullptr, nullptr, 0, 5, 5);
      EXPECT_EQ(0, cut.value);
      EXPECT_EQ(0, cut.status);
    }
    mgr.Delete(row.id, values, 3);
  }
}

TEST(OtherComparators, IdentifierKeysGiveByteDifferences) {
  NxObjId one(1, 0, 7), five(5, 0, 9), low200(0, 0x200), low100(0, 0x100);
  auto key = [](const NxObjId& o) { return Stored(NxTYPE_NxObjId, &o, 1); };
  EXPECT_EQ(0, Compare(NxTYPE_NxObjId, 1, key(NxObjId(1, 0, 7)).data(),
                       key(NxObjId(1, 0, 8)).data()).value);
  EXPECT_EQ(-4, Compare(NxTYPE_NxObjId, 1, key(one).data(), key(five).data()).value);
  EXPECT_EQ(1, Compare(NxTYPE_NxObjId, 1, key(low200).data(), key(low100).data()).value);
  EXPECT_EQ(-1, Compare(NxTYPE_NxObjId, 8, &one, &five).value);
  // Null class id against (0xFFFE, 9), and (0xFFFF, 5) against it.
  NxClassId null(0xFFFF, 0xFFFF), big(0xFFFE, 9), bigger(0xFFFF, 5);
  auto classKey = [](const NxClassId& c) { return Stored(NxTYPE_NxClassId, &c, 1); };
  EXPECT_EQ(-1, Compare(NxTYPE_NxClassId, 1, classKey(null).data(), classKey(big).data()).value);
  EXPECT_EQ(1, Compare(NxTYPE_NxClassId, 1, classKey(big).data(), classKey(null).data()).value);
  EXPECT_EQ(0, Compare(NxTYPE_NxClassId, 1, classKey(null).data(), classKey(null).data()).value);
  EXPECT_GT(Compare(NxTYPE_NxClassId, 1, classKey(bigger).data(), classKey(big).data()).value, 0);
  // Memory form ignores the lengths: no partial status.
  NxObjId pair[2] = {one, one};
  EXPECT_EQ(0, Compare(NxTYPE_NxObjId, 8, pair, pair, 2, 4, 4).status);
}

}  // namespace
