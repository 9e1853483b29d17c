// NxDate, NxTime and NxDateTime: day numbers against a day-by-day count,
// wildcards, time arithmetic against second counts, local time and UTC
// through fixed zones.  The clock is always fixed.
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include <nxtm/nxtm.h>

namespace {

constexpr int64_t kInstant = 1073309409000LL;  // 2004-01-05 13:30:09 UTC

class FixedClock : public ::testing::Test {
 protected:
  void SetUp() override { NxClockFix(kInstant, 0); }
  void TearDown() override { NxClockRelease(); }
};

int DaysIn(int y, int m) {
  static const int days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
  return m == 2 && leap ? 29 : days[m - 1];
}

std::string Show(const NxDateTime& v) {
  return std::to_string(v.date.year) + "-" + std::to_string(v.date.month) + "-" +
         std::to_string(v.date.day) + " " + std::to_string(v.time.hour) + ":" +
         std::to_string(v.time.minute) + ":" + std::to_string(v.time.second);
}

NxDateTime At(int y, int mo, int d, int h, int mi, int s) {
  return NxDateTime(NxDate(y, mo, d), NxTime(h, mi, s));
}

// Every day from -4713-01-01 to 9999-12-31, counted with the Gregorian leap
// rule from the day number of -4713-01-01 (day 0 is -4713-11-24): the day
// number both ways, validity, the last day of the month, and the weekday
// (day 0 was a Monday) over the years 1 to 4000, where the weekday
// congruence stays positive.
TEST(NxDateSweep, DayNumbersMatchACountOfDays) {
  int32_t jdn = -327;
  long mismatches = 0;
  std::string first;
  auto miss = [&](const char* what, int y, int m, int d) {
    if (mismatches++ == 0)
      first = std::string(what) + " " + std::to_string(y) + "-" + std::to_string(m) + "-" +
              std::to_string(d);
  };
  for (int y = -4713; y <= 9999; ++y) {
    for (int m = 1; m <= 12; ++m) {
      const int last = DaysIn(y, m);
      for (int d = 1; d <= last; ++d, ++jdn) {
        const NxDate date(y, m, d);
        if (static_cast<int32_t>(date) != jdn) miss("dayabs", y, m, d);
        if (!(NxDate(jdn) == date)) miss("dateabs", y, m, d);
        if (!date.IsDate()) miss("IsDate", y, m, d);
        if (date.IsLastDayOfTheMonth() != (d == last ? 1 : 0)) miss("last day", y, m, d);
        if (y >= 1 && y <= 4000 && date.DayOfTheDate() != static_cast<NxDaysOfTheWeek>(jdn % 7))
          miss("weekday", y, m, d);
      }
      if (NxDate(y, m, last + 1).IsDate()) miss("past the end", y, m, last + 1);
    }
  }
  EXPECT_EQ(jdn, 5373485);  // the day after 9999-12-31
  EXPECT_EQ(mismatches, 0) << "first: " << first;
}

TEST(NxDate, DayNumbersAndTheirEdges) {
  EXPECT_EQ(static_cast<int32_t>(NxDate(1582, 10, 15)), 2299161);
  EXPECT_EQ(NxDate(1582, 10, 15) - NxDate(1582, 10, 4), 11);  // no gap in October 1582
  // Month 13 is the next January; 30 February counts on from the 28th.
  EXPECT_EQ(static_cast<int32_t>(NxDate(2003, 13, 1)), static_cast<int32_t>(NxDate(2004, 1, 1)));
  EXPECT_EQ(static_cast<int32_t>(NxDate(2001, 2, 30)), static_cast<int32_t>(NxDate(2001, 3, 2)));
  EXPECT_TRUE(NxDate(2004, 12, 31).IsLastDayOfTheMonth());
  for (const NxDate& d : {NxDate(2000, 0, 1), NxDate(2000, 13, 1), NxDate(2000, 1, 0),
                          NxDate(2000, 1, 32), NxDate(-32768, -128, -128)})
    EXPECT_FALSE(d.IsDate());
  EXPECT_TRUE(NxDate(1900, 2, 28) + 1 == NxDate(1900, 3, 1));
  EXPECT_TRUE(NxDate(2000, 1, 1) + (-366) == NxDate(1998, 12, 31));
  NxDate d(2000, 2, 28);
  EXPECT_TRUE(++d == NxDate(2000, 2, 29));
  EXPECT_TRUE((d += 366) == NxDate(2001, 3, 1));
  (void)(NxDate(INT32_MAX) + INT32_MAX);  // far out: some date, nothing undefined
}

TEST(NxDate, WeekdayNames) {
  EXPECT_STREQ(NxDate(2004, 1, 5).PrintDayOfTheDate().StrGet(), "Monday");
  EXPECT_STREQ(NxDate::DayName(7).StrGet(), "no day");
  // Where the congruence goes negative the answer is Sunday: in year 30000,
  // and on some early days of centuries from 4600 on (4600-03-01 was a
  // Saturday).
  EXPECT_EQ(NxDate(30000, 1, 1).DayOfTheDate(), NxSunday);
  EXPECT_EQ(NxDate(4600, 3, 1).DayOfTheDate(), NxSunday);
  EXPECT_EQ(NxDate(4600, 3, 3).DayOfTheDate(), NxMonday);
}

// -1 in a field is a wildcard for != and the order operators, not for ==;
// != returns the raw difference of the first field that differs.
TEST(NxDate, WildcardsAndOrder) {
  EXPECT_EQ(NxDate(2000, 3, 1) != NxDate(2000, 1, 31), 2);
  EXPECT_EQ(NxDate(1999, 12, 31) != NxDate(2001, 1, 1), -2);
  const NxDate anyMarch(-1, 3, -1);
  for (int day = 1; day <= 31; ++day) {
    const NxDate march(1987, 3, day);
    EXPECT_EQ(anyMarch != march, 0);
    EXPECT_EQ(march != anyMarch, 0);
    EXPECT_EQ(anyMarch == march, 0);
    EXPECT_TRUE(anyMarch <= march && anyMarch >= march && !(anyMarch < march));
  }
  EXPECT_LT(anyMarch != NxDate(1987, 4, 1), 0);
  EXPECT_EQ(NxDate(2004, -1, 7) != NxDate(2004, 12, 9), -2);
  NxDate null(0, 0, 0);
  null.SetNullValue();
  EXPECT_TRUE(null.IsNullValue());
  EXPECT_TRUE(null < NxDate(-32767, 1, 1));
}

TEST_F(FixedClock, TodayAndNowAreLocal) {
  NxClockFix(kInstant, 660);  // 2004-01-06 00:30:09 local
  EXPECT_TRUE(NxDate() == NxDate(2004, 1, 6));
  EXPECT_TRUE(NxTime() == NxTime(0, 30, 9));
  NxClockFix(kInstant, -840);  // 2004-01-04 23:30:09 local
  EXPECT_EQ(NxDateTime() != At(2004, 1, 4, 23, 30, 9), 0);
  EXPECT_EQ(NxDateTime(NxDate(1999, 9, 9)) != At(1999, 9, 9, 23, 30, 9), 0);
  EXPECT_EQ(NxDateTime(NxTime(1, 2, 3)) != At(2004, 1, 4, 1, 2, 3), 0);
  NxDateTime utc = At(1, 1, 1, 0, 0, 0);
  EXPECT_EQ(utc.NowUTC() != At(2004, 1, 5, 13, 30, 9), 0);
}

// ---------------------------------------------------------------------------
// NxTime.

TEST(NxTime, FieldsAndTheirEdges) {
  EXPECT_TRUE(NxTime(48609) == NxTime(13, 30, 9));
  EXPECT_EQ(static_cast<int32_t>(NxTime(13, 30, 9)), 48609);
  EXPECT_TRUE(NxTime(90000) == NxTime(25, 0, 0));  // not reduced to a day
  for (const NxTime& t : {NxTime(90000), NxTime(24, 0, 0), NxTime(0, 60, 0), NxTime(0, 0, -1),
                          NxTime(-128, -128, -128)})
    EXPECT_FALSE(t.IsTime());
  EXPECT_TRUE(NxTime(10, 0, 0) + 172800 == NxTime(10, 0, 0));
  EXPECT_EQ((NxTime(10, 0, 0) - 172800).hour, -14);  // more than a day back: a day is added once
  EXPECT_EQ(NxTime(10, 0, 0) != NxTime(10, 0, 1), -1);
  EXPECT_EQ(NxTime(-1, 0, 0) != NxTime(5, 0, 0), -1);  // signed bytes, no wildcard
}

// Within a day either way, the field arithmetic is seconds modulo a day.
TEST(NxTime, ArithmeticMatchesSecondsModuloADay) {
  long mismatches = 0;
  for (int32_t start = 0; start < 86400; start += 4177) {
    const NxTime t(start);
    for (int32_t n = 0; n < 86400; n += 131) {
      NxTime later = t;
      later += n;
      NxTime earlier = t;
      earlier -= n;
      if (static_cast<int32_t>(later) != (start + n) % 86400 || !later.IsTime()) ++mismatches;
      if (static_cast<int32_t>(earlier) != (start - n + 86400) % 86400 || !earlier.IsTime())
        ++mismatches;
      if (static_cast<int32_t>(t - NxTime(n)) != (start - n + 86400) % 86400) ++mismatches;
    }
  }
  EXPECT_EQ(mismatches, 0);
}

// ---------------------------------------------------------------------------
// NxDateTime.

int64_t Absolute(const NxDateTime& v) {
  return int64_t{static_cast<int32_t>(v.date)} * 86400 + static_cast<int32_t>(v.time);
}

// Every quarter-hour zone from -12:00 to +14:00, around midnight and year
// ends: local time is UTC plus the zone in absolute minutes, and back.
TEST_F(FixedClock, ZoneShiftsMatchAbsoluteMinutes) {
  const NxDateTime starts[] = {At(2004, 12, 31, 23, 59, 7), At(2005, 1, 1, 0, 0, 0),
                               At(2000, 2, 29, 12, 15, 30), At(2000, 3, 1, 0, 1, 2)};
  for (int32_t zone = -720; zone <= 840; zone += 15) {
    NxClockFix(kInstant, zone);
    for (const NxDateTime& start : starts) {
      NxDateTime v = start;
      v.ToLocalTime();
      EXPECT_EQ(Absolute(v), Absolute(start) + zone * 60) << zone << " " << Show(start);
      EXPECT_TRUE(v.IsDaTime()) << Show(v);
      v.ToUTCTime();
      EXPECT_EQ(v != start, 0) << zone << " " << Show(v);
    }
  }
  // An unknown zone leaves the value alone.
  NxClockFix(kInstant, NxZONE_UNKNOWN);
  NxDateTime v = starts[0];
  EXPECT_EQ(v.ToLocalTime(), NxSTATUS_ZONE_UNKNOWN);
  EXPECT_EQ(v.ToUTCTime(), NxSTATUS_ZONE_UNKNOWN);
  EXPECT_EQ(v != starts[0], 0);
}

TEST(NxDateTime, AddSecondsMatchesAbsoluteSeconds) {
  NxDateTime v = At(2004, 1, 1, 23, 30, 0);
  EXPECT_EQ(v.AddSeconds(90000) != At(2004, 1, 3, 0, 30, 0), 0) << Show(v);
  v = At(2004, 3, 1, 0, 0, 0);
  EXPECT_EQ(v.AddSeconds(-1) != At(2004, 2, 29, 23, 59, 59), 0) << Show(v);
  long mismatches = 0;
  const NxDateTime start = At(2003, 12, 30, 22, 47, 13);
  for (int32_t n = -40000000; n <= 40000000; n += 123457) {
    NxDateTime moved = start;
    moved.AddSeconds(n);
    if (Absolute(moved) != Absolute(start) + n || !moved.IsDaTime()) ++mismatches;
  }
  EXPECT_EQ(mismatches, 0);
}

TEST(NxDateTime, OrderNullAndZero) {
  EXPECT_EQ(At(2004, 3, 5, 10, 0, 0).Compare(At(2004, 1, 5, 10, 0, 0)), 2);
  EXPECT_EQ(At(2004, 1, 5, 10, 0, 0) != At(2004, 1, 5, 9, 0, 0), 1);
  EXPECT_EQ(NxDateTime(NxDate(-1, 1, 5), NxTime(10, 0, 0)) != At(1999, 1, 5, 10, 0, 0), 0);
  const NxDateTime& zero = NxDateTime::Null();
  EXPECT_FALSE(zero.IsNullValue() || zero.IsDaTime());
  NxDateTime v = At(2004, 1, 5, 10, 0, 0);
  v.date.SetNullValue();
  EXPECT_FALSE(v.IsNullValue());
  v.SetNullValue();
  EXPECT_TRUE(v.IsNullValue());
}

}  // namespace
