// NxDate, NxTime and NxDateTime: day numbers against a day-by-day count,
// wildcards, time arithmetic, local time and UTC through fixed zones, and
// seconds across days.  The clock is always fixed: nothing here reads the
// machine's clock or zone.
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include <nxtm/nxtm.h>

namespace {

// 2004-01-05 13:30:09 UTC.
constexpr int64_t kInstant = 1073309409000LL;

class FixedClock : public ::testing::Test {
 protected:
  void SetUp() override { NxClockFix(kInstant, 0); }
  void TearDown() override { NxClockRelease(); }
};

bool IsLeap(int y) {
  return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
}

int DaysIn(int y, int m) {
  static const int days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return m == 2 && IsLeap(y) ? 29 : days[m - 1];
}

std::string Show(const NxDate& d) {
  return std::to_string(d.year) + "-" + std::to_string(d.month) + "-" + std::to_string(d.day);
}

std::string Show(const NxTime& t) {
  return std::to_string(t.hour) + ":" + std::to_string(t.minute) + ":" + std::to_string(t.second);
}

std::string Show(const NxDateTime& v) {
  return Show(v.date) + " " + Show(v.time);
}

// ---------------------------------------------------------------------------
// NxDate.

// Every day from -4713-01-01 to 9999-12-31, counted one by one with the
// Gregorian leap rule from the day number of -4713-01-01 (day 0 being
// -4713-11-24): the day number both ways, validity, the last day of the
// month, and the weekday against the day number (day 0 was a Monday) over
// the years 1 to 4000, where the weekday congruence stays positive.
TEST(NxDateSweep, DayNumbersMatchACountOfDays) {
  int32_t jdn = -327;
  long mismatches = 0;
  std::string first;
  auto miss = [&](const std::string& what) {
    if (mismatches++ == 0) first = what;
  };
  for (int y = -4713; y <= 9999; ++y) {
    for (int m = 1; m <= 12; ++m) {
      const int last = DaysIn(y, m);
      for (int d = 1; d <= last; ++d, ++jdn) {
        const NxDate date(y, m, d);
        if (static_cast<int32_t>(date) != jdn) miss("dayabs " + Show(date));
        const NxDate back(jdn);
        if (!(back == date)) miss("dateabs " + std::to_string(jdn) + " gave " + Show(back));
        if (!date.IsDate()) miss("IsDate " + Show(date));
        if (date.IsLastDayOfTheMonth() != (d == last ? 1 : 0)) miss("last day " + Show(date));
        if (y >= 1 && y <= 4000 && date.DayOfTheDate() != static_cast<NxDaysOfTheWeek>(jdn % 7))
          miss("weekday " + Show(date));
      }
      if (NxDate(y, m, last + 1).IsDate()) miss("IsDate past the end " + Show(NxDate(y, m, last)));
    }
  }
  EXPECT_EQ(jdn, 5373484 + 1);  // the day after 9999-12-31
  EXPECT_EQ(mismatches, 0) << "first: " << first;
}

TEST(NxDate, KnownDayNumbers) {
  const struct {
    NxDate date;
    int32_t number;
  } cases[] = {{NxDate(2000, 1, 1), 2451545},  {NxDate(1970, 1, 1), 2440588},
               {NxDate(1582, 10, 15), 2299161}, {NxDate(1582, 10, 4), 2299150},
               {NxDate(1, 1, 1), 1721426},      {NxDate(-4713, 11, 24), 0}};
  for (const auto& c : cases) {
    EXPECT_EQ(static_cast<int32_t>(c.date), c.number) << Show(c.date);
    EXPECT_TRUE(NxDate(c.number) == c.date) << c.number;
  }
  // No gap in October 1582: the days between are ordinary days.
  EXPECT_TRUE(NxDate(1582, 10, 10).IsDate());
  EXPECT_EQ(NxDate(1582, 10, 15) - NxDate(1582, 10, 4), 11);
}

TEST(NxDate, FieldsBeyondTheirRangeRunOn) {
  // Month 13 is the next January; 30 February counts on from the 28th.
  EXPECT_EQ(static_cast<int32_t>(NxDate(2003, 13, 1)), static_cast<int32_t>(NxDate(2004, 1, 1)));
  EXPECT_EQ(static_cast<int32_t>(NxDate(2001, 2, 30)), static_cast<int32_t>(NxDate(2001, 3, 2)));
  EXPECT_EQ(static_cast<int32_t>(NxDate(2000, 2, 30)), static_cast<int32_t>(NxDate(2000, 3, 1)));
  EXPECT_TRUE(NxDate(2004, 12, 31).IsLastDayOfTheMonth());
  EXPECT_TRUE(NxDate(2004, 1, 31).IsLastDayOfTheMonth());
  EXPECT_FALSE(NxDate(2004, 2, 28).IsLastDayOfTheMonth());

  const NxDate invalid[] = {NxDate(2000, 0, 1),  NxDate(2000, 13, 1), NxDate(2000, 1, 0),
                            NxDate(2000, 1, 32), NxDate(2001, 4, 31), NxDate(1900, 2, 29),
                            NxDate(2001, 2, 29)};
  for (const NxDate& d : invalid) EXPECT_FALSE(d.IsDate()) << Show(d);
  NxDate null(2000, 1, 1);
  null.SetNullValue();
  EXPECT_FALSE(null.IsDate());
  EXPECT_TRUE(NxDate(2000, 2, 29).IsDate());
}

TEST(NxDate, Arithmetic) {
  NxDate d(1900, 2, 28);
  EXPECT_TRUE(d + 1 == NxDate(1900, 3, 1));
  EXPECT_TRUE(d - (-1) == NxDate(1900, 3, 1));
  EXPECT_TRUE(NxDate(2000, 1, 1) - 1 == NxDate(1999, 12, 31));
  EXPECT_TRUE(NxDate(2000, 1, 1) + (-366) == NxDate(1998, 12, 31));
  EXPECT_EQ(NxDate(2004, 3, 1) - NxDate(2004, 2, 1), 29);
  EXPECT_EQ(NxDate(2004, 2, 1) - NxDate(2004, 3, 1), -29);
  ++d;
  EXPECT_TRUE(d == NxDate(1900, 3, 1));
  --d;
  --d;
  EXPECT_TRUE(d == NxDate(1900, 2, 27));
  d += 365;
  EXPECT_TRUE(d == NxDate(1901, 2, 27));
  d -= 365;
  EXPECT_TRUE(d == NxDate(1900, 2, 27));
  // Day numbers far out give some date and no undefined behaviour.
  const NxDate far(INT32_MAX);
  (void)(far + INT32_MAX);
}

TEST(NxDate, WeekdaysAndNames) {
  EXPECT_EQ(NxDate(2000, 2, 29).DayOfTheDate(), NxTuesday);
  EXPECT_EQ(NxDate(1970, 1, 1).DayOfTheDate(), NxThursday);
  EXPECT_EQ(NxDate(2004, 1, 1).DayOfTheDate(), NxThursday);
  EXPECT_STREQ(NxDate(2004, 1, 5).PrintDayOfTheDate().StrGet(), "Monday");
  EXPECT_STREQ(NxDate(2004, 1, 11).PrintDayOfTheDate().StrGet(), "Sunday");
  EXPECT_STREQ(NxDate::DayName(7).StrGet(), "no day");
  EXPECT_STREQ(NxDate::DayName(-1).StrGet(), "no day");
  // Where the congruence goes negative the answer is Sunday: in year 30000,
  // and already on early days of some centuries from 4600 on: 4600-03-01
  // was a Saturday.
  EXPECT_EQ(NxDate(30000, 1, 1).DayOfTheDate(), NxSunday);
  EXPECT_EQ(NxDate(4600, 3, 1).DayOfTheDate(), NxSunday);
  EXPECT_EQ(NxDate(4600, 3, 2).DayOfTheDate(), NxSunday);
  EXPECT_EQ(NxDate(4600, 3, 3).DayOfTheDate(), NxMonday);
}

// -1 in a field is a wildcard for != and the order operators, not for ==;
// != returns the raw difference of the first field that differs.
TEST(NxDate, WildcardsAndOrder) {
  EXPECT_EQ(NxDate(2000, 3, 1) != NxDate(2000, 1, 31), 2);
  EXPECT_EQ(NxDate(1999, 12, 31) != NxDate(2001, 1, 1), -2);
  EXPECT_EQ(NxDate(2000, 1, 5) != NxDate(2000, 1, 1), 4);

  const NxDate anyMarch(-1, 3, -1);
  for (int day = 1; day <= 31; ++day) {
    const NxDate march(1987, 3, day);
    EXPECT_EQ(anyMarch != march, 0);
    EXPECT_EQ(march != anyMarch, 0);
    EXPECT_EQ(anyMarch == march, 0);
    EXPECT_TRUE(anyMarch <= march && anyMarch >= march);
    EXPECT_FALSE(anyMarch < march || anyMarch > march);
  }
  EXPECT_LT(anyMarch != NxDate(1987, 4, 1), 0);
  EXPECT_GT(anyMarch != NxDate(2500, 2, 28), 0);
  EXPECT_EQ(NxDate(-1, -1, -1) != NxDate(2004, 5, 6), 0);
  EXPECT_EQ(NxDate(2004, -1, 7) != NxDate(2004, 12, 9), -2);

  NxDate null(0, 0, 0);
  null.SetNullValue();
  EXPECT_TRUE(null.IsNullValue());
  EXPECT_TRUE(null < NxDate(-32767, 1, 1));
  EXPECT_TRUE(null < NxDate(-4713, 11, 24));
  EXPECT_FALSE(NxDate(2000, 1, 1).IsNullValue());
}

TEST_F(FixedClock, TodayAndNowComeFromTheClock) {
  NxClockFix(kInstant, 660);  // 2004-01-06 00:30:09 local
  EXPECT_TRUE(NxDate() == NxDate(2004, 1, 6));
  EXPECT_TRUE(NxTime() == NxTime(0, 30, 9));
  NxDate d(1, 1, 1);
  EXPECT_TRUE(d.Today() == NxDate(2004, 1, 6));
  NxClockFix(kInstant, -840);  // 2004-01-04 23:30:09 local
  EXPECT_TRUE(NxDate() == NxDate(2004, 1, 4));
  NxTime t(1, 2, 3);
  EXPECT_TRUE(t.Now() == NxTime(23, 30, 9));
}

// ---------------------------------------------------------------------------
// NxTime.

TEST(NxTime, SecondsAndFields) {
  EXPECT_EQ(static_cast<int32_t>(NxTime(13, 30, 9)), 48609);
  const NxTime t(48609);
  EXPECT_TRUE(t == NxTime(13, 30, 9));
  const NxTime late(90000);
  EXPECT_TRUE(late == NxTime(25, 0, 0));
  EXPECT_FALSE(late.IsTime());
  EXPECT_TRUE(NxTime(-61) == NxTime(0, -1, -1));
  EXPECT_TRUE(NxTime(23, 59, 59).IsTime());
  EXPECT_FALSE(NxTime(24, 0, 0).IsTime());
  EXPECT_FALSE(NxTime(0, 60, 0).IsTime());
  EXPECT_FALSE(NxTime(0, 0, -1).IsTime());
  NxTime null(0, 0, 0);
  null.SetNullValue();
  EXPECT_TRUE(null.IsNullValue());
  EXPECT_FALSE(null.IsTime());
}

TEST(NxTime, ArithmeticAcrossMidnight) {
  EXPECT_TRUE(NxTime(23, 59, 59) + 1 == NxTime(0, 0, 0));
  EXPECT_TRUE(NxTime(0, 0, 0) - 1 == NxTime(23, 59, 59));
  EXPECT_TRUE(NxTime(1, 0, 0) - NxTime(2, 0, 0) == NxTime(23, 0, 0));
  EXPECT_TRUE(NxTime(10, 0, 0) + 172800 == NxTime(10, 0, 0));
  const NxTime back = NxTime(10, 0, 0) - 172800;  // more than a day back: hour stays negative
  EXPECT_EQ(back.hour, -14);
  EXPECT_FALSE(back.IsTime());
  NxTime t(12, 0, 0);
  ++t;
  EXPECT_TRUE(t == NxTime(12, 0, 1));
  --t;
  --t;
  EXPECT_TRUE(t == NxTime(11, 59, 59));
  t += 3601;
  EXPECT_TRUE(t == NxTime(13, 0, 0));
  t -= 46800;
  EXPECT_TRUE(t == NxTime(0, 0, 0));
}

// Within a day either way, the field arithmetic equals seconds modulo a day.
TEST(NxTime, ArithmeticMatchesSecondsModuloADay) {
  long mismatches = 0;
  for (int32_t start = 0; start < 86400; start += 4177) {
    const NxTime t(start);
    for (int32_t n = 0; n < 86400; n += 131) {
      const NxTime later = t + n;
      const NxTime earlier = t - n;
      if (static_cast<int32_t>(later) != (start + n) % 86400 || !later.IsTime()) ++mismatches;
      if (static_cast<int32_t>(earlier) != (start - n + 86400) % 86400 || !earlier.IsTime())
        ++mismatches;
      const NxTime difference = t - NxTime(n);
      if (static_cast<int32_t>(difference) != (start - n + 86400) % 86400) ++mismatches;
    }
  }
  EXPECT_EQ(mismatches, 0);
}

TEST(NxTime, OrderHasNoWildcard) {
  EXPECT_EQ(NxTime(10, 0, 0) != NxTime(9, 59, 59), 1);
  EXPECT_EQ(NxTime(10, 0, 0) != NxTime(10, 0, 1), -1);
  EXPECT_EQ(NxTime(10, 0, 0) != NxTime(10, 0, 0), 0);
  EXPECT_EQ(NxTime(-1, 0, 0) != NxTime(5, 0, 0), -1);
  EXPECT_TRUE(NxTime(1, 2, 3) < NxTime(1, 3, 0));
  EXPECT_TRUE(NxTime(1, 2, 3) >= NxTime(1, 2, 3));
}

// ---------------------------------------------------------------------------
// NxDateTime.

NxDateTime At(int y, int mo, int d, int h, int mi, int s) {
  return NxDateTime(NxDate(y, mo, d), NxTime(h, mi, s));
}

// Seconds since day 0 of the day numbers, from a value's fields.
int64_t Absolute(const NxDateTime& v) {
  return int64_t{static_cast<int32_t>(v.date)} * 86400 + static_cast<int32_t>(v.time);
}

struct ZoneCase {
  int32_t zone;
  NxDateTime utc;
  NxDateTime local;
};

TEST_F(FixedClock, LocalAndUtcThroughFixedZones) {
  const ZoneCase cases[] = {
      {60, At(2004, 12, 31, 23, 30, 15), At(2005, 1, 1, 0, 30, 15)},
      {60, At(2004, 12, 31, 23, 0, 0), At(2005, 1, 1, 0, 0, 0)},
      {-90, At(2004, 1, 1, 1, 0, 0), At(2003, 12, 31, 23, 30, 0)},
      {-90, At(2004, 3, 1, 1, 30, 59), At(2004, 3, 1, 0, 0, 59)},
      {330, At(2000, 2, 28, 20, 0, 0), At(2000, 2, 29, 1, 30, 0)},
      {0, At(2004, 6, 1, 12, 0, 0), At(2004, 6, 1, 12, 0, 0)},
  };
  for (const ZoneCase& c : cases) {
    NxClockFix(kInstant, c.zone);
    NxDateTime v = c.utc;
    EXPECT_EQ(v.ToLocalTime(), 0);
    EXPECT_EQ(v != c.local, 0) << c.zone << ": " << Show(v);
    EXPECT_EQ(v.ToUTCTime(), 0);
    EXPECT_EQ(v != c.utc, 0) << c.zone << ": " << Show(v);
  }
  // 00:00 less an hour: the hour of the day before, minute 0.
  NxClockFix(kInstant, 60);
  NxDateTime midnight = At(2005, 1, 1, 0, 0, 0);
  midnight.ToUTCTime();
  EXPECT_EQ(midnight != At(2004, 12, 31, 23, 0, 0), 0) << Show(midnight);

  // An unknown zone leaves the value alone.
  NxClockFix(kInstant, NxZONE_UNKNOWN);
  NxDateTime v = At(2004, 12, 31, 23, 30, 15);
  EXPECT_EQ(v.ToLocalTime(), NxSTATUS_ZONE_UNKNOWN);
  EXPECT_EQ(v.ToUTCTime(), NxSTATUS_ZONE_UNKNOWN);
  EXPECT_EQ(v != At(2004, 12, 31, 23, 30, 15), 0);
}

// Over every quarter-hour zone from -12:00 to +14:00 and times around
// midnight and year ends: local time is UTC plus the zone, counted in
// absolute minutes, and UTC comes back.
TEST_F(FixedClock, ZoneShiftsMatchAbsoluteMinutes) {
  const NxDateTime starts[] = {At(2004, 12, 31, 23, 59, 7), At(2005, 1, 1, 0, 0, 0),
                               At(2000, 2, 29, 12, 15, 30), At(1999, 12, 31, 0, 14, 0),
                               At(2000, 3, 1, 0, 1, 2)};
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
}

TEST(NxDateTime, AddSeconds) {
  NxDateTime v = At(2004, 1, 1, 23, 30, 0);
  v.AddSeconds(90000);
  EXPECT_EQ(v != At(2004, 1, 3, 0, 30, 0), 0) << Show(v);
  v = At(2004, 3, 1, 0, 0, 0);
  v.AddSeconds(-1);
  EXPECT_EQ(v != At(2004, 2, 29, 23, 59, 59), 0) << Show(v);
  v = At(2004, 3, 1, 10, 11, 12);
  v.AddSeconds(86400);
  EXPECT_EQ(v != At(2004, 3, 2, 10, 11, 12), 0);
  v.AddSeconds(0);
  EXPECT_EQ(v != At(2004, 3, 2, 10, 11, 12), 0);

  // Against absolute seconds, both ways, across months and years.
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
  EXPECT_EQ(&zero, &NxDateTime::Null());
  EXPECT_FALSE(zero.IsNullValue());
  EXPECT_FALSE(zero.IsDaTime());
  EXPECT_EQ(zero.date.year + zero.date.month + zero.date.day, 0);

  NxDateTime v = At(2004, 1, 5, 10, 0, 0);
  v.date.SetNullValue();
  EXPECT_FALSE(v.IsNullValue());
  v.SetNullValue();
  EXPECT_TRUE(v.IsNullValue());
}

TEST_F(FixedClock, ConstructorsReadTheClock) {
  NxClockFix(kInstant, 120);
  const NxDateTime now;
  EXPECT_EQ(now != At(2004, 1, 5, 15, 30, 9), 0) << Show(now);
  NxDateTime utc = At(1, 1, 1, 0, 0, 0);
  utc.NowUTC();
  EXPECT_EQ(utc != At(2004, 1, 5, 13, 30, 9), 0) << Show(utc);
  const NxDateTime withDate{NxDate(1999, 9, 9)};
  EXPECT_EQ(withDate != At(1999, 9, 9, 15, 30, 9), 0);
  const NxDateTime withTime{NxTime(1, 2, 3)};
  EXPECT_EQ(withTime != At(2004, 1, 5, 1, 2, 3), 0);
  NxDateTime v = At(2000, 1, 1, 0, 0, 0);
  v = NxTime(4, 5, 6);
  EXPECT_EQ(v != At(2000, 1, 1, 4, 5, 6), 0);
}

}  // namespace
