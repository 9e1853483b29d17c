// The standard date classes: d_Date against a Julian-then-Gregorian day
// count and the Julian day formula, d_Time and d_Timestamp arithmetic
// against second counts, d_Interval's sign rule, and overlaps for every
// argument pattern against the intersection of two closed ranges.
#include <algorithm>
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include <nxtm/nxtm.h>

namespace {

constexpr int64_t kInstant = 1073309409000LL;  // 2004-01-05 13:30:09 UTC

class DClasses : public ::testing::Test {
 protected:
  void SetUp() override {
    NxClockFix(kInstant, 0);
    d_Time::set_default_Time_Zone(d_Time::GMT);
  }
  void TearDown() override {
    d_Time::set_default_Time_Zone(d_Time::GMT);
    NxClockRelease();
  }
};

std::string Show(const d_Date& d) {
  return std::to_string(d.year) + "-" + std::to_string(d.month) + "-" + std::to_string(d.day);
}

std::string Show(const d_Time& t) {
  return std::to_string(t.hour) + ":" + std::to_string(t.minute) + ":" +
         std::to_string(t.second) + "." + std::to_string(t.hundredth) + " zone " +
         std::to_string(t.zoneHour) + ":" + std::to_string(t.zoneMinute);
}

bool Same(const d_Date& a, const d_Date& b) {
  return a.year == b.year && a.month == b.month && a.day == b.day;
}

bool Same(const d_Time& a, const d_Time& b) {
  return a.zoneHour == b.zoneHour && a.zoneMinute == b.zoneMinute && a.hour == b.hour &&
         a.minute == b.minute && a.second == b.second && a.hundredth == b.hundredth;
}

bool Same(const d_Timestamp& a, const d_Timestamp& b) {
  return Same(a.date, b.date) && Same(a.time, b.time);
}

d_Timestamp Stamp(short y, unsigned short mo, unsigned short d, unsigned short h,
                  unsigned short mi, float s) {
  return d_Timestamp(d_Date(y, mo, d), d_Time(h, mi, s));
}

// The absolute date, through the difference to 0001-01-01 (1721423).
int32_t Abs(const d_Date& d) {
  return (d != d_Date(1, 1, 1)) + 1721423;
}

// The Julian calendar's day number, by the truncating formula that holds
// for years from -4800 on.
int32_t JulianDayNumber(int y, int m, int d) {
  return 367 * y - (7 * (y + 5001 + (m - 9) / 7)) / 4 + (275 * m) / 9 + d + 1729777;
}

// ---------------------------------------------------------------------------
// d_Date.

// Every day from 0001-01-01 to 9999-12-31, counted with Julian leap years up
// to 1582-10-04, then from 1582-10-15 with Gregorian ones: the absolute
// date, ++ (setAbsDate of the next number), the day of the year, the weekday
// and the month lengths all follow the count.
TEST_F(DClasses, CalendarMatchesAJulianThenGregorianCount) {
  int32_t absDate = 1721423;
  d_Date walker(1, 1, 1);
  long mismatches = 0;
  std::string first;
  auto miss = [&](const std::string& what) {
    if (mismatches++ == 0) first = what;
  };
  static const int lengths[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  for (int y = 1; y <= 9999; ++y) {
    int dayOfYear = 0;
    for (int m = 1; m <= 12; ++m) {
      const bool gregorian = y > 1582 || (y == 1582 && m > 10);
      const bool leap = gregorian ? (y % 4 == 0 && y % 100 != 0) || y % 400 == 0 : y % 4 == 0;
      const int last = m == 2 && leap ? 29 : lengths[m - 1];
      if (d_Date::days_in_month(static_cast<short>(y), static_cast<unsigned short>(m)) != last)
        miss("days_in_month " + std::to_string(y) + "-" + std::to_string(m));
      for (int d = 1; d <= last; ++d) {
        if (y == 1582 && m == 10 && d == 5) d = 15;  // the change-over
        ++dayOfYear;
        const d_Date date(static_cast<short>(y), static_cast<unsigned short>(m),
                          static_cast<unsigned short>(d));
        if (Abs(date) != absDate) miss("absolute date " + Show(date));
        if (!Same(walker, date)) miss("++ gave " + Show(walker) + " for " + Show(date));
        if (date.day_of_year() != dayOfYear) miss("day_of_year " + Show(date));
        if (date.day_of_week() != (absDate + 2) % 7) miss("day_of_week " + Show(date));
        ++walker;
        ++absDate;
      }
    }
  }
  EXPECT_EQ(mismatches, 0) << "first: " << first;
}

// Before year 1 the day count truncates toward zero instead of down: in
// three years of four the absolute date comes out one day high.
TEST_F(DClasses, YearsBeforeOneAreOffByTheTruncation) {
  long mismatches = 0;
  for (int y = -400; y <= 0; ++y) {
    for (int m = 1; m <= 12; ++m) {
      const int shifted = m < 3 ? y - 1 : y;
      const int high = shifted < 0 && shifted % 4 != 0 ? 1 : 0;
      for (int d = 1; d <= 28; d += 9) {
        const d_Date date(static_cast<short>(y), static_cast<unsigned short>(m),
                          static_cast<unsigned short>(d));
        if (Abs(date) != JulianDayNumber(y, m, d) - 1 + high) ++mismatches;
      }
    }
  }
  EXPECT_EQ(mismatches, 0);
}

TEST_F(DClasses, TheChangeOfCalendar) {
  EXPECT_EQ(Abs(d_Date(2000, 1, 1)), 2451544);
  // 5 to 14 October 1582 have no number of their own: each is ten days on.
  for (unsigned short day = 5; day <= 14; ++day)
    EXPECT_EQ(d_Date(1582, 10, day) != d_Date(1582, 10, static_cast<unsigned short>(day + 10)), 0);
  d_Date d(1582, 10, 4);
  EXPECT_TRUE(Same(d++, d_Date(1582, 10, 4)));
  EXPECT_TRUE(Same(d, d_Date(1582, 10, 15)));
  EXPECT_EQ(d_Date(1582, 12, 31).day_of_year(), 355);
  EXPECT_EQ(d_Date(1582, 10, 20).days_in_month(), 31);
  EXPECT_EQ(d_Date::days_in_month(2001, 13), 0);
  // Before 1582 the same calendar day is another day under NxDate.
  EXPECT_EQ(Abs(d_Date(1000, 1, 1)) + 1, JulianDayNumber(1000, 1, 1));
  EXPECT_NE(Abs(d_Date(1000, 1, 1)) + 1, static_cast<int32_t>(NxDate(1000, 1, 1)));
}

TEST_F(DClasses, WeekdaysAndDayMoves) {
  const d_Date monday(2004, 1, 5);
  const struct {
    bool forward;
    d_Date::Weekday day;
    d_Date want;
  } moves[] = {{true, d_Date::Monday, d_Date(2004, 1, 12)},
               {true, d_Date::Sunday, d_Date(2004, 1, 11)},
               {false, d_Date::Monday, d_Date(2003, 12, 29)},
               {false, d_Date::Tuesday, d_Date(2003, 12, 30)}};
  for (const auto& m : moves) {
    d_Date d = monday;
    EXPECT_TRUE(Same(m.forward ? d.next(m.day) : d.previous(m.day), m.want)) << Show(d);
  }
  EXPECT_GE(d_Date(-5000, 1, 1).day_of_week(), 0);  // 0 to 6 also for negative numbers

  const d_Date start(2000, 2, 28);
  EXPECT_TRUE(Same(start + d_Interval(0, 0, 0, 86399), start));
  EXPECT_TRUE(Same(start - d_Interval(0, 0, 0, 86399), start));
  EXPECT_TRUE(Same(d_Interval(2) + start, d_Date(2000, 3, 1)));
  EXPECT_TRUE(Same(start + d_Interval(-1, 0, 0, 0), d_Date(2000, 2, 27)));
  d_Date d(1500, 2, 28);
  EXPECT_TRUE(Same(d += d_Interval(1), d_Date(1500, 2, 29)));
  EXPECT_TRUE(Same(d_Date(1700, 59), d_Date(1700, 2, 28)));
  EXPECT_TRUE(Same(d_Date(1700, 60), d_Date(1700, 3, 1)));
  d += d_Interval(0, 0, 0, 3e38f);  // far beyond every date: nothing undefined
}

TEST_F(DClasses, CopiesAndTheClock) {
  const d_Date fromNull(NxDate(-32768, -128, -128));  // field values as they stand
  EXPECT_EQ(fromNull.year, -32768);
  EXPECT_EQ(fromNull.month, -128);
  NxClockFix(kInstant, -840);
  EXPECT_TRUE(Same(d_Date(), d_Date(2004, 1, 4)));

  NxClockFix(kInstant, 150);  // 16:00:09 local
  d_Time::set_default_Time_Zone_to_local();
  EXPECT_EQ(d_Time().zoneHour, 2);
  EXPECT_EQ(d_Time().hour, 18);
  NxClockFix(kInstant, -150);
  d_Time::set_default_Time_Zone_to_local();
  EXPECT_EQ(d_Time(0).zoneHour, -2);
  for (int32_t zone : {0, int32_t{NxZONE_UNKNOWN}}) {  // a clock zone of 0 leaves the default
    NxClockFix(kInstant, zone);
    d_Time::set_default_Time_Zone_to_local();
    EXPECT_EQ(d_Time(0).zoneHour, -2);
  }
  NxClockFix(kInstant, 0);
  d_Time::set_default_Time_Zone(d_Time::GMT3);
  const d_Timestamp now = d_Timestamp::current();
  EXPECT_TRUE(Same(now.date, d_Date(2004, 1, 5)));
  EXPECT_EQ(now.time.hour, 16);  // 13:30 plus the default zone of 3
  d_Timestamp ts(NxDateTime(NxDate(2004, 1, 5), NxTime(13, 30, 9)));
  EXPECT_EQ(ts.time.hour, 16);
  ts = d_Date(1999, 2, 3);
  EXPECT_TRUE(Same(ts.date, d_Date(1999, 2, 3)));
  EXPECT_EQ(ts.time.hour, 16);
}

// ---------------------------------------------------------------------------
// d_Time.

TEST_F(DClasses, TimesCarryTheirZone) {
  EXPECT_EQ(d_Time(10, 5, 7.25f, -3, -30) != d_Time(10, 5, 7.0f), 0);  // one local time
  d_Time::set_default_Time_Zone(d_Time::USeastern);
  EXPECT_EQ(d_Time(10, 0, 0.5f).hour, 5);
  EXPECT_EQ(d_Time(NxTime(23, 30, 1)).hour, 18);
  d_Time::set_default_Time_Zone(d_Time::GMT);
  EXPECT_TRUE(Same(d_Time(-1), d_Time(23, 59, 59.0f)));
  EXPECT_TRUE(Same(d_Time(-86401), d_Time(23, 59, 59.0f)));
  EXPECT_EQ(d_Time(90000).hour, 25);

  // Compared by local hour and minute, then to the whole second.
  EXPECT_EQ(d_Time(10, 0, 0.5f) != d_Time(10, 0, 0.1f), 0);
  EXPECT_EQ(d_Time(10, 0, 2.0f) != d_Time(10, 0, 0.5f), 1);
  EXPECT_EQ(d_Time(10, 5, 0.0f) != d_Time(10, 7, 0.0f), -2);
  d_Time negative(0, 0, 0.0f);
  negative.hour = -1;  // local hours as unsigned 16-bit numbers
  EXPECT_EQ(negative != d_Time(23, 0, 0.0f), 65535 - 23);
}

TEST_F(DClasses, TimeArithmetic) {
  // += keeps the hundredths; -= and the free operators lose them.
  d_Time h(10, 0, 5.5f);
  h += d_Interval(0, 0, 0, 1);
  EXPECT_TRUE(Same(h, d_Time(10, 0, 6.5f))) << Show(h);
  h -= d_Interval(0, 0, 0, 1);
  EXPECT_TRUE(Same(h, d_Time(10, 0, 5.0f))) << Show(h);
  EXPECT_EQ((d_Interval(0, 0, 0, 1) + d_Time(10, 0, 5.5f)).hundredth, 0);
  // The day wraps on the stored hour, which has the zone added: 23:00 in
  // zone 2 is stored as 25:00 and half an hour later as 01:30.
  const d_Time wrapped = d_Time(23, 0, 0.0f, 2, 0) + d_Interval(0, 0, 30, 0);
  EXPECT_EQ(wrapped.hour, 1);
  EXPECT_EQ(wrapped.zoneHour, 2);
  EXPECT_FLOAT_EQ((d_Time(10, 0, 5.9f) - d_Time(9, 59, 0.0f)).seconds, 65.0f);
  d_Time far(1, 0, 0.0f);
  far += d_Interval(0, 0, 0, -3e38f);  // a huge negative interval still ends

  // Whole seconds in zone 0: the time is the second count modulo a day.
  long mismatches = 0;
  for (int32_t start = 0; start < 86400; start += 7919) {
    for (int32_t n = -3000000; n <= 3000000; n += 24071) {
      const d_Time t(start);
      d_Time plus = t;
      plus += d_Interval(0, 0, 0, static_cast<float>(n));
      const int32_t want = ((start + n) % 86400 + 86400) % 86400;
      if (!Same(plus, d_Time(want))) ++mismatches;
      if (!Same(t - d_Interval(0, 0, 0, static_cast<float>(-n)), d_Time(want))) ++mismatches;
    }
  }
  EXPECT_EQ(mismatches, 0);
}

// ---------------------------------------------------------------------------
// d_Timestamp.

// Days since 1970-01-01 of a Gregorian date, for the reference.
int64_t DaysFromCivil(int64_t y, int m, int d) {
  y -= m <= 2;
  const int64_t era = (y >= 0 ? y : y - 399) / 400;
  const int64_t yoe = y - era * 400;
  const int64_t doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
  return era * 146097 + yoe * 365 + yoe / 4 - yoe / 100 + doy - 719468;
}

int64_t Seconds(const d_Timestamp& ts) {
  return DaysFromCivil(ts.date.year, ts.date.month, ts.date.day) * 86400 +
         (ts.time.hour * 60 + ts.time.minute) * 60 + ts.time.second;
}

TEST_F(DClasses, TimestampArithmetic) {
  EXPECT_TRUE(Same(Stamp(2000, 12, 31, 23, 30, 0) + d_Interval(0, 1, 0, 0),
                   Stamp(2001, 1, 1, 0, 30, 0)));
  EXPECT_TRUE(Same(Stamp(2000, 3, 1, 0, 30, 0) - d_Interval(0, 1, 0, 0),
                   Stamp(2000, 2, 29, 23, 30, 0)));
  EXPECT_TRUE(Same(Stamp(1582, 10, 4, 23, 0, 0) + d_Interval(0, 2, 0, 0),
                   Stamp(1582, 10, 15, 1, 0, 0)));
  // The zone stays; the local time moves.
  d_Timestamp zoned(d_Date(2004, 2, 28), d_Time(23, 0, 0.0f, -5, 0));
  zoned += d_Interval(1, 2, 0, 0);
  EXPECT_TRUE(Same(zoned, d_Timestamp(d_Date(2004, 3, 1), d_Time(1, 0, 0.0f, -5, 0))));
  zoned -= d_Interval(1, 2, 0, 0);
  EXPECT_TRUE(Same(zoned, d_Timestamp(d_Date(2004, 2, 28), d_Time(23, 0, 0.0f, -5, 0))));
  // The day of the month and the time make one interval.  When that falls
  // below 0 by an exact number of days, the date goes down one day more than
  // the count: 2000-01-01 00:00 less two days is 1999-12-29 00:00.
  EXPECT_TRUE(Same(Stamp(2000, 1, 1, 0, 0, 0) - d_Interval(2), Stamp(1999, 12, 29, 0, 0, 0)));
  EXPECT_TRUE(Same(Stamp(2000, 1, 1, 0, 0, 0) - d_Interval(0, 0, 0, 172799),
                   Stamp(1999, 12, 30, 0, 0, 1)));

  long mismatches = 0;
  for (const d_Timestamp& start : {Stamp(1999, 12, 31, 23, 59, 59), Stamp(2004, 2, 29, 0, 0, 0),
                                   Stamp(2010, 7, 15, 12, 34, 56)}) {
    for (int32_t n = -5000000; n <= 5000000; n += 9973) {
      const int64_t inMonth = int64_t{start.date.day} * 86400 + Seconds(start) % 86400 + n;
      if (inMonth < 0 && inMonth % 86400 == 0) continue;  // the exact days above
      const d_Timestamp moved = start + d_Interval(0, 0, 0, static_cast<float>(n));
      if (Seconds(moved) != Seconds(start) + n || moved.time.hour > 23) ++mismatches;
    }
  }
  EXPECT_EQ(mismatches, 0);
  EXPECT_EQ(Stamp(2000, 1, 2, 0, 0, 0) != Stamp(2000, 1, 1, 23, 0, 0), 1);
  EXPECT_EQ(Stamp(2000, 1, 1, 10, 0, 0.2f) != Stamp(2000, 1, 1, 10, 0, 0.7f), 0);
}

// ---------------------------------------------------------------------------
// d_Interval.

TEST_F(DClasses, IntervalsNegateOnAnyNegativePart) {
  EXPECT_FLOAT_EQ(d_Interval(1, 2, 3, 4.5f).seconds, 93784.5f);
  EXPECT_FLOAT_EQ(d_Interval(0, 1, 0, -5.0f).seconds, -3605.0f);
  EXPECT_FLOAT_EQ(d_Interval(1, -1, 0, 0).seconds, -90000.0f);
  EXPECT_FLOAT_EQ(d_Interval(30000).seconds,  // the products are made in 32 bits
                  static_cast<float>(static_cast<int32_t>(30000u * 86400u)));
  const d_Interval a(0, 0, 0, 90.0f);
  EXPECT_FLOAT_EQ((a - d_Interval(0, 0, 1, 0)).seconds, 30.0f);
  EXPECT_FLOAT_EQ((-2 * a).seconds, -180.0f);
  EXPECT_FLOAT_EQ((a / 4).seconds, 22.5f);
  EXPECT_FLOAT_EQ((a / 0).seconds, 90.0f);
}

// ---------------------------------------------------------------------------
// overlaps: the answer for closed ranges of ranks 0 to 5, each given in
// either order, for every argument pattern.

d_Date DateOf(int k) {
  return d_Date(2000, static_cast<unsigned short>(58 + k));  // across the leap day
}
d_Time TimeOf(int k) {
  // One local time in zones that differ with k; the hundredths don't count.
  return d_Time(23, static_cast<unsigned short>(55 + k), 0.01f * static_cast<float>(k), k % 3, 0);
}
d_Timestamp StampOf(int k) {
  return d_Timestamp(DateOf(k), TimeOf(k));
}

template <typename A, typename C>
long CheckPattern(A (*first)(int), C (*second)(int)) {
  long mismatches = 0;
  for (int a = 0; a < 6; ++a)
    for (int b = 0; b < 6; ++b)
      for (int c = 0; c < 6; ++c)
        for (int d = 0; d < 6; ++d) {
          const bool meet = std::max(std::min(a, b), std::min(c, d)) <=
                            std::min(std::max(a, b), std::max(c, d));
          if (overlaps(first(a), first(b), second(c), second(d)) != (meet ? 1 : 0)) ++mismatches;
        }
  return mismatches;
}

TEST_F(DClasses, OverlapsForEveryPattern) {
  EXPECT_EQ(CheckPattern(DateOf, DateOf), 0);
  EXPECT_EQ(CheckPattern(TimeOf, TimeOf), 0);
  EXPECT_EQ(CheckPattern(StampOf, StampOf), 0);
  EXPECT_EQ(CheckPattern(StampOf, DateOf), 0);
  EXPECT_EQ(CheckPattern(DateOf, StampOf), 0);
  EXPECT_EQ(CheckPattern(StampOf, TimeOf), 0);
  EXPECT_EQ(CheckPattern(TimeOf, StampOf), 0);
  // Only the part in question counts when a timestamp meets a date or time.
  const d_Timestamp morning(d_Date(2000, 1, 1), d_Time(8, 0, 0.0f));
  const d_Timestamp evening(d_Date(2000, 1, 1), d_Time(20, 0, 0.0f));
  EXPECT_EQ(overlaps(d_Time(21, 0, 0.0f), d_Time(22, 0, 0.0f), morning, evening), 0);
  EXPECT_EQ(overlaps(morning, evening, d_Date(2000, 1, 1), d_Date(2000, 1, 1)), 1);

  // Two timestamps of one second that differ in their hundredths are neither
  // before, after nor identical: an end equal to the other end of such a
  // period does not count as inside it.
  const d_Timestamp early = Stamp(2000, 1, 1, 10, 0, 0.1f);
  const d_Timestamp late = Stamp(2000, 1, 1, 10, 0, 0.5f);
  EXPECT_EQ(overlaps(late, late, late, late), 1);
  EXPECT_EQ(overlaps(early, late, late, late), 0);
  EXPECT_EQ(overlaps(early, late, early, early), 1);
  EXPECT_EQ(overlaps(early.time, late.time, late.time, late.time), 1);
}

}  // namespace
