// Tests of the range estimates of the dates and times, the 64-bit numbers,
// NxBoolean and the identifiers: wild dates as spans with their narrowed
// keys, every operator at, inside and outside the bounds, both byte orders.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include "test_support.h"

namespace {

using Bytes = std::vector<unsigned char>;

template <typename T>
Bytes Key(char id, const T& value, unsigned char format) {
  Bytes bytes(NxTypeMgr().DiskLenGet(id, nullptr, format, 1, 8));
  NxTypeMgr().Store(id, bytes.data(), &value, format, 1);
  return bytes;
}

struct Estimate {
  float share;
  unsigned short op;  // as the row left it
  Bytes low, high;    // the narrowed keys; empty when open
};

// The estimate of `value` in low..high (no bounds when `low` is null).
template <typename T>
Estimate Measure(char id, const T* low, const T* high, unsigned short op, const T& value,
                 unsigned char format, NxIdxBounds narrowed = {nullptr, nullptr, 0, 0}) {
  Bytes l, h, v = Key(id, value, format);
  NxIdxBounds bounds{};
  if (low != nullptr) {
    l = Key(id, *low, format);
    h = Key(id, *high, format);
    bounds = {l.data(), h.data(), static_cast<unsigned char>(l.size()),
              static_cast<unsigned char>(h.size())};
  }
  Estimate e{0, op, {}, {}};
  e.share = NxTypeMgr().EvalAndBound(id, low != nullptr ? &bounds : nullptr, e.op, v.data(),
                                     format, 1, &narrowed, nullptr);
  for (auto [key, length, out] : {std::make_tuple(narrowed.low, narrowed.lowLength, &e.low),
                                  std::make_tuple(narrowed.high, narrowed.highLength, &e.high)}) {
    if (key != nullptr) out->assign(static_cast<unsigned char*>(key),
                                    static_cast<unsigned char*>(key) + length);
    std::free(key);
  }
  return e;
}

// Days since 1970-01-01 of a proleptic Gregorian date, by the era
// arithmetic: a reference independent of the library's day numbers.
long CivilDays(long y, long m, long d) {
  y -= m <= 2;
  const long era = (y >= 0 ? y : y - 399) / 400;
  const long yoe = y - era * 400;
  const long doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  return era * 146097 + yoe * 365 + yoe / 4 - yoe / 100 + doy - 719468;
}

TEST(DateRanges, WildDatesAreTheSpansTheyMatch) {
  for (unsigned char format : {1, 2})
    for (int year : {2004, 2100, -4000}) {
      const NxDate low(year, 1, 1), high(year, 12, 31);
      const double width = CivilDays(year + 1, 1, 1) - CivilDays(year, 1, 1);
      for (int month = 1; month <= 12; ++month) {
        SCOPED_TRACE(std::to_string(year) + "-" + std::to_string(month));
        const NxDate wild(year, month, -1);
        const long first = CivilDays(year, month, 1) - CivilDays(year, 1, 1);
        const long days = CivilDays(month == 12 ? year + 1 : year, month % 12 + 1, 1) -
                          CivilDays(year, month, 1);
        const Estimate eq = Measure(NxTYPE_NxDate, &low, &high, 1, wild, format);
        EXPECT_FLOAT_EQ(eq.share, static_cast<float>(days / width));
        EXPECT_EQ(eq.op, 9);  // bit 3: the value was wild
        EXPECT_EQ(eq.low, Key(NxTYPE_NxDate, NxDate(year, month, 1), format));
        EXPECT_EQ(eq.high, Key(NxTYPE_NxDate, NxDate(year, month, static_cast<int>(days)), format));
        // Before and behind the span.
        EXPECT_FLOAT_EQ(Measure(NxTYPE_NxDate, &low, &high, 2, wild, format).share,
                        static_cast<float>(first / width));
        EXPECT_FLOAT_EQ(Measure(NxTYPE_NxDate, &low, &high, 4, wild, format).share,
                        static_cast<float>((width - first - days) / width));
      }
      EXPECT_FLOAT_EQ(Measure(NxTYPE_NxDate, &low, &high, 1, NxDate(year, -1, -1), format).share, 1);
    }
}

TEST(DateRanges, WildYearsReachTheEndsAndOnlyWildFieldsArePatched) {
  const NxDate low(2004, 1, 1), high(2004, 12, 31);
  const auto date = [](const Bytes& key, unsigned char format) {
    NxDate d(0, 0, 0);
    NxTypeMgr().Load(NxTYPE_NxDate, &d, key.data(), format, 1);
    return std::to_string(d.year) + "-" + std::to_string(d.month) + "-" + std::to_string(d.day);
  };
  for (unsigned char format : {1, 2}) {
    Estimate e = Measure(NxTYPE_NxDate, &low, &high, 0xFFF1, NxDate(-1, 3, 15), format);
    EXPECT_EQ(e.op, 0x8009);
    EXPECT_EQ(date(e.low, format) + " " + date(e.high, format), "-4713-3-15 32766-3-15");
    e = Measure(NxTYPE_NxDate, &low, &high, 1, NxDate(-1, -1, -1), format);
    EXPECT_EQ(date(e.low, format) + " " + date(e.high, format), "-4713-11-24 32766-12-31");
    // Less: only the high end is narrowed, and patched.
    e = Measure(NxTYPE_NxDate, &low, &high, 2, NxDate(2004, 2, -1), format);
    EXPECT_TRUE(e.low.empty());
    EXPECT_EQ(date(e.high, format), "2004-2-29");
    // An end the caller set is patched in the wild fields only.
    void* mine = std::malloc(4);
    std::memcpy(mine, Key(NxTYPE_NxDate, NxDate(1999, 7, 4), format).data(), 4);
    e = Measure(NxTYPE_NxDate, &low, &high, 1, NxDate(2004, -1, 10), format, {mine, nullptr, 4, 0});
    EXPECT_EQ(date(e.low, format) + " " + date(e.high, format), "1999-1-4 2004-12-10");
  }
  // No wild field: bit 3 stays clear and days are counted; without bounds
  // the divisor is 1.
  const NxDate from(2004, 2, 20), to(2004, 3, 10), value(2004, 3, 1);
  const Estimate lt = Measure(NxTYPE_NxDate, &from, &to, 2, value, 2);
  EXPECT_EQ(lt.op, 2);
  EXPECT_FLOAT_EQ(lt.share, 10.0f / 20.0f);
  EXPECT_FLOAT_EQ(Measure<NxDate>(NxTYPE_NxDate, nullptr, nullptr, 2, value, 1).share, 1.0f);
  EXPECT_FLOAT_EQ(Measure<NxDate>(NxTYPE_NxDate, nullptr, nullptr, 4, value, 1).share, 0.0f);
}

TEST(TimeRanges, TimesCountSecondsAndDateTimesMinutes) {
  const NxTime tl(10, 0, 0), th(10, 0, 9), tv(10, 0, 4);
  const NxDate day(2004, 1, 1);
  const NxDateTime dl(day, NxTime(0, 0, 0)), dh(day, NxTime(0, 9, 59)), dv(day, NxTime(0, 4, 30));
  const float expected[] = {0, 0.1f, 0.4f, 0.5f, 0.5f, 0.6f, 0.9f, 1.0f};
  for (unsigned char format : {1, 2})
    for (unsigned short op = 1; op <= 7; ++op) {
      const Estimate t = Measure(NxTYPE_NxTime, &tl, &th, op | 0x7FF0, tv, format);
      EXPECT_FLOAT_EQ(t.share, expected[op]) << op;
      EXPECT_EQ(t.op, op);  // masked
      EXPECT_FLOAT_EQ(Measure(NxTYPE_NxDateTime, &dl, &dh, op, dv, format).share, expected[op]);
    }
  EXPECT_FLOAT_EQ(Measure(NxTYPE_NxTime, &tl, &th, 4, NxTime(9, 59, 59), 1).share, 1.0f);
}

TEST(TimeRanges, StandardClassesMeasureByPosition) {
  const d_Date jan1(2004, 1, 1), jan31(2004, 1, 31), jan11(2004, 1, 11), mar1(2004, 3, 1);
  for (unsigned char format : {1, 2}) {
    EXPECT_FLOAT_EQ(Measure(NxTYPE_d_Date, &jan1, &jan31, 2, jan11, format).share, 10.0f / 31);
    EXPECT_FLOAT_EQ(Measure(NxTYPE_d_Date, &jan1, &jan31, 4, jan11, format).share, 20.0f / 31);
    // Not brought back into the range: below 0 is 0, above the whole is kept.
    EXPECT_FLOAT_EQ(Measure(NxTYPE_d_Date, &jan1, &jan31, 4, mar1, format).share, 0.0f);
    EXPECT_GT(Measure(NxTYPE_d_Date, &jan1, &jan31, 2, mar1, format).share, 1.0f);
    // Every month counts 31 days.
    const d_Date feb1(2004, 2, 1);
    EXPECT_FLOAT_EQ(Measure(NxTYPE_d_Date, &feb1, &mar1, 1, feb1, format).share, 1.0f / 32);
    // A wild year keeps the whole range; the keys reach the extreme bytes.
    for (unsigned short op = 1; op <= 6; ++op) {
      const Estimate e = Measure(NxTYPE_d_Date, &jan1, &jan31, op, d_Date(-1, 0xFF, 11), format);
      EXPECT_FLOAT_EQ(e.share, 1.0f);
      EXPECT_EQ(e.op, op);  // no wild bit here
      if (op == 1) {
        EXPECT_EQ(nxtest::Hex(e.low.data(), 4), format == 1 ? "0080800b" : "8000800b");
        EXPECT_EQ(nxtest::Hex(e.high.data(), 4), format == 1 ? "ff7f7f0b" : "7fff7f0b");
      }
    }
  }
  // d_Time ignores hundredths and zone bytes; d_Timestamp counts seconds
  // and steps an hour as far as a day: 3601 of them from day to day.
  d_Time t(10, 0, 10.0f, 0, 0), tl(10, 0, 0.0f, 0, 0), th(10, 0, 30.0f, 0, 0);
  t.hundredth = 55;
  t.zoneHour = 3;
  EXPECT_FLOAT_EQ(Measure(NxTYPE_d_Time, &tl, &th, 2, t, 1).share, 10.0f / 31);
  const d_Timestamp sl(jan1, tl), sh(d_Date(2004, 1, 2), tl), hourLater(jan1, d_Time(11, 0, 0.0f, 0, 0));
  EXPECT_FLOAT_EQ(Measure(NxTYPE_d_Timestamp, &sl, &sh, 2, hourLater, 2).share, 3600.0f / 3601);
}

// The keys low..high in the relation `op` to v, counted one by one; an empty
// count for a value inside what `op` keeps is one key.
double Counted(long low, long high, unsigned short op, long v) {
  long kept = 0;
  for (long k = low; k <= high; ++k)
    if (((op & 1) && k == v) || ((op & 2) && k < v) || ((op & 4) && k > v)) ++kept;
  if (kept == 0 && ((op & 4) || low <= v) && ((op & 2) || v <= high)) kept = 1;
  return static_cast<double>(kept) / static_cast<double>(high - low + 1);
}

TEST(NumberRanges, SixtyFourBitRowsCountKeysAndCorrectEmptyAreas) {
  const long base = 0x123456789AL;  // beyond 32 bits
  for (unsigned char format : {1, 2})
    for (long v : {base - 5, base, base + 4, base + 9, base + 15})
      for (unsigned short op = 0; op <= 7; ++op) {
        SCOPED_TRACE("value " + std::to_string(v - base) + " op " + std::to_string(op));
        const float expected = static_cast<float>(Counted(base, base + 9, op, v));
        const NxInt64 l(base), h(base + 9), value(v);
        const Estimate e = Measure(NxTYPE_NxInt64, &l, &h, op | 0x8000, value, format);
        EXPECT_FLOAT_EQ(e.share, expected);
        EXPECT_EQ(e.op, op | 0x8000);  // unchanged
        NxSeal sl, sh, sv;
        sl.ConvertFrom(l);
        sh.ConvertFrom(h);
        sv.ConvertFrom(value);
        EXPECT_FLOAT_EQ(Measure(NxTYPE_NxSeal, &sl, &sh, op, sv, format).share, expected);
      }
  // Doubles hold 53 bits: a value between close bounds above 2^53 has an
  // area of one key, one below the low bound none.
  const NxInt64 l(1LL << 60), h((1LL << 60) + 2);
  EXPECT_FLOAT_EQ(Measure(NxTYPE_NxInt64, &l, &h, 2, NxInt64((1LL << 60) + 1), 2).share, 1.0f);
  EXPECT_FLOAT_EQ(Measure(NxTYPE_NxInt64, &l, &h, 2, NxInt64((1LL << 60) - 1), 2).share, 0.0f);
  const Estimate open = Measure<NxInt64>(NxTYPE_NxInt64, nullptr, nullptr, 1, NxInt64(-2), 2);
  EXPECT_EQ(open.share, 0.0f);
  EXPECT_EQ(nxtest::Hex(open.high.data(), open.high.size()), "fffffffeffffffff");
}

TEST(OtherRanges, BooleansClassIdsObjectIdsAndReferences) {
  const NxBoolean f(0L), t(1L);
  for (unsigned short op = 1; op <= 7; ++op)
    EXPECT_FLOAT_EQ(Measure(NxTYPE_NxBoolean, &f, &t, op, f, 1).share, 1.0f / 3);
  const Estimate none = Measure<NxBoolean>(NxTYPE_NxBoolean, nullptr, nullptr, 3, t, 1);
  EXPECT_EQ(none.share, 0.0f);
  EXPECT_EQ(none.high, Bytes{1});

  unsigned short op = 1;
  NxIdxBounds narrowed{nullptr, nullptr, 0, 0};
  EXPECT_EQ(NxClassId::EvalAndBound(nullptr, op, nullptr, 1, 1, &narrowed), 1.0f);
  EXPECT_EQ(narrowed.low, nullptr);

  // An object id counts as high * 65535 + low.
  const NxObjId ol(0, 100), oh(0, 199), a(0, 65535), b(1, 0), wide(2, 0);
  for (unsigned char format : {1, 2}) {
    EXPECT_FLOAT_EQ(Measure(NxTYPE_NxObjId, &ol, &oh, 2, NxObjId(0, 150), format).share, 0.5f);
    EXPECT_EQ(Measure(NxTYPE_NxObjId, &ol, &oh, 0x8FF2, NxObjId(0, 150), format).op, 0x8FF2);
    EXPECT_EQ(Measure(NxTYPE_NxObjId, &a, &wide, 4, a, format).share,
              Measure(NxTYPE_NxObjId, &a, &wide, 4, b, format).share);
  }
  // A reference is measured against the whole space of references.
  const double total = 4294967295.0 * 4294967295.0;
  const NxRef zero, some(NxObjId(3, 4), 5, NxClassId(6, 7));
  EXPECT_FLOAT_EQ(Measure<NxRef>(NxTYPE_NxRef, nullptr, nullptr, 1, some, 2).share,
                  static_cast<float>(1 / total));
  EXPECT_EQ(Measure<NxRef>(NxTYPE_NxRef, nullptr, nullptr, 4, zero, 1).share, 1.0f);
  const Estimate less = Measure(NxTYPE_NxRef, &zero, &zero, 0xFFF2, some, 2);
  EXPECT_EQ(less.op, 0x8002);
  EXPECT_FLOAT_EQ(less.share, static_cast<float>(((5 * 65535.0 + 3) * 4294967295.0 + 4) / total));
}

}  // namespace
