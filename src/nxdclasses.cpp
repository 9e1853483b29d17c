// The standard date classes d_Date, d_Time, d_Timestamp, d_Interval and the
// overlaps family.  d_Date has a calendar of its own (Julian up to
// 1582-10-04, Gregorian from 1582-10-15) and never uses NxDate's arithmetic.
#include <cmath>
#include <cstdlib>

#include "nxdates.h"

using nxdates::Trunc32;
using nxdates::Wrap32;

namespace {

// The default zone of d_Time, whole hours; 0 at load.
int defaultZone = 0;

}  // namespace

int8_t nxdates::DefaultZone() {
  return static_cast<int8_t>(defaultZone);
}

// ---------------------------------------------------------------------------
// d_Date.

d_Date::d_Date() : year(0), month(0), day(0) {
  bdate today{};
  nxsgetdate(&today);
  year = today.year;
  month = static_cast<int8_t>(today.month);
  day = static_cast<int8_t>(today.day);
}

d_Date::d_Date(short y, unsigned short dayOfYear) : year(y), month(1), day(1) {
  setAbsDate(Wrap32(int64_t{getAbsDate()} + dayOfYear - 1));
}

d_Date::d_Date(const d_Timestamp& timestamp) : d_Date(timestamp.date) {}

d_Date::d_Date(const NxDate& date) : year(date.year), month(date.month), day(date.day) {}

d_Date::d_Date(const NxDateTime& dateTime) : d_Date(dateTime.date) {}

d_Date& d_Date::operator=(const d_Timestamp& timestamp) {
  return *this = timestamp.date;
}

d_Date& d_Date::operator=(const NxDate& date) {
  return *this = d_Date(date);
}

d_Date& d_Date::operator=(const NxDateTime& dateTime) {
  return *this = d_Date(dateTime.date);
}

d_Date d_Date::current() {
  return d_Date();
}

// The Julian Day Number minus 1, by the day count of the Julian calendar
// (365.25 days a year from 4716 BC) with the Gregorian correction from
// 1582-10-15 on.  The days 5 to 14 of October 1582 fall below the threshold
// and so count as the date ten days later.  trunc goes toward zero, so years
// before 1 come out a day high in three years of four.
int32_t d_Date::getAbsDate() const {
  int32_t m, y;
  if (month < 3) {
    m = month + 13;
    y = year - 1;
  } else {
    m = month + 1;
    y = year;
  }
  const int64_t j = day + static_cast<int64_t>(std::trunc(y * 365.25)) + 1720994 +
                    static_cast<int64_t>(std::trunc(m * 30.6001));
  if (j < 2299170) return Wrap32(j);
  const int32_t a = y / 100;
  return Wrap32(j + a / 4 - a + 2);
}

// The inverse for every date from 0001-01-01 on.
void d_Date::setAbsDate(int32_t absDate) {
  int64_t n = int64_t{absDate} + 1;
  if (n > 2299160) {
    const int64_t alpha = static_cast<int64_t>(std::trunc((n - 1867216.25) / 36524.25));
    n = n + alpha - alpha / 4 + 1;
  }
  const int64_t b = n + 1524;
  const int64_t c = static_cast<int64_t>(std::trunc((b - 122.1) / 365.25));
  const int64_t d = static_cast<int64_t>(std::trunc(c * 365.25));
  const int64_t e = static_cast<int64_t>(std::trunc((b - d) / 30.6001));
  day = static_cast<int8_t>(b - d - static_cast<int64_t>(std::trunc(e * 30.6001)));
  const int64_t mo = e < 14 ? e - 1 : e - 13;
  month = static_cast<int8_t>(mo);
  year = static_cast<int16_t>(mo < 3 ? c - 4715 : c - 4716);
}

unsigned short d_Date::day_of_year() const {
  return static_cast<unsigned short>(getAbsDate() - d_Date(year, 1, 1).getAbsDate() + 1);
}

// (absolute date + 2) modulo 7, taken into 0 to 6 also for the negative
// absolute dates of years before -4712.
d_Date::Weekday d_Date::day_of_week() const {
  const int64_t r = (int64_t{getAbsDate()} + 2) % 7;
  return static_cast<Weekday>(r < 0 ? r + 7 : r);
}

d_Date& d_Date::next(Weekday w) {
  const int x = w - day_of_week();
  setAbsDate(Wrap32(int64_t{getAbsDate()} + (x > 0 ? x : x + 7)));
  return *this;
}

d_Date& d_Date::previous(Weekday w) {
  const int x = day_of_week() - w;
  setAbsDate(Wrap32(int64_t{getAbsDate()} - (x > 0 ? x : x + 7)));
  return *this;
}

d_Date& d_Date::operator+=(const d_Interval& interval) {
  setAbsDate(Wrap32(int64_t{getAbsDate()} + Trunc32(interval.seconds / 86400.0f)));
  return *this;
}

d_Date& d_Date::operator-=(const d_Interval& interval) {
  setAbsDate(Wrap32(int64_t{getAbsDate()} - Trunc32(interval.seconds / 86400.0f)));
  return *this;
}

d_Date& d_Date::operator++() {
  setAbsDate(Wrap32(int64_t{getAbsDate()} + 1));
  return *this;
}

d_Date& d_Date::operator--() {
  setAbsDate(Wrap32(int64_t{getAbsDate()} - 1));
  return *this;
}

d_Date d_Date::operator++(int) {
  const d_Date old = *this;
  ++*this;
  return old;
}

d_Date d_Date::operator--(int) {
  const d_Date old = *this;
  --*this;
  return old;
}

int d_Date::days_in_month() const {
  return days_in_month(year, static_cast<unsigned short>(month));
}

// Julian leap years (every fourth) before 1600, Gregorian from 1600 on.
// October 1582 keeps its 31 days here.
int d_Date::days_in_month(short y, unsigned short m) {
  switch (m) {
    case 1: case 3: case 5: case 7: case 8: case 10: case 12:
      return 31;
    case 4: case 6: case 9: case 11:
      return 30;
    case 2:
      if (y % 4 != 0) return 28;
      if (y % 100 != 0) return 29;
      return (y % 400 != 0 && y >= 1600) ? 28 : 29;
    default:
      return 0;
  }
}

d_Date operator+(const d_Date& date, const d_Interval& interval) {
  d_Date result = date;
  return result += interval;
}

d_Date operator+(const d_Interval& interval, const d_Date& date) {
  return date + interval;
}

d_Date operator-(const d_Date& date, const d_Interval& interval) {
  d_Date result = date;
  return result -= interval;
}

int operator!=(const d_Date& a, const d_Date& b) {
  return d_DateAccess::Get(a) - d_DateAccess::Get(b);
}

// ---------------------------------------------------------------------------
// d_Time.  The stored hour and minute have the zone added.

namespace {

int8_t Narrow(int64_t value) {
  return static_cast<int8_t>(value);
}

// Whole seconds and hundredths of `sec`, each cut toward zero; the
// hundredths are taken from what is left over the stored whole second.
void SetSeconds(d_Time& t, float sec) {
  t.second = Narrow(Trunc32(sec));
  t.hundredth = Narrow(Trunc32((sec - static_cast<float>(t.second)) * 100));
}

// second + hundredth / 100, as a float.
float SecondsWithHundredths(const d_Time& t) {
  return static_cast<float>(t.second + t.hundredth / 100.0);
}

// The time `delta` seconds later, from the stored hour and minute and the
// given seconds, wrapped into one day.  The zone stays.
void Shift(d_Time& t, float seconds, float delta) {
  d_Interval iv(0, t.hour, t.minute, seconds);
  iv.seconds += delta;
  // One day at a time, as long as it is below 0.  Far below, the remainder
  // by a day comes first: beyond single precision the additions would no
  // longer change the value.
  if (iv.seconds < -86400.0f * 1024) iv.seconds = std::fmod(iv.seconds, 86400.0f);
  while (iv.seconds < 0) iv.seconds += 86400.0f;
  const int32_t whole = Trunc32(iv.seconds);
  t.hour = Narrow(whole % 86400 / 3600);
  t.minute = Narrow(whole % 3600 / 60);
  SetSeconds(t, iv.seconds - static_cast<float>(whole) + static_cast<float>(whole % 60));
}

}  // namespace

d_Time::d_Time()
    : zoneHour(0), zoneMinute(0), hour(0), minute(0), second(0), hundredth(0) {
  *this = current();
}

d_Time::d_Time(unsigned short h, unsigned short m, float sec)
    : d_Time(h, m, sec, nxdates::DefaultZone(), 0) {}

d_Time::d_Time(unsigned short h, unsigned short m, float sec, short zh, short zm)
    : zoneHour(Narrow(zh)),
      zoneMinute(Narrow(zm)),
      hour(Narrow(h + zoneHour)),
      minute(Narrow(m + zoneMinute)),
      second(0),
      hundredth(0) {
  SetSeconds(*this, sec);
}

d_Time::d_Time(int32_t seconds)
    : zoneHour(nxdates::DefaultZone()), zoneMinute(0), hour(0), minute(0), second(0), hundredth(0) {
  int64_t s = seconds;
  if (s < 0) s += (86399 - s) / 86400 * 86400;
  hour = Narrow(s / 3600 + zoneHour);
  minute = Narrow(s % 3600 / 60);
  second = Narrow(s % 60);
}

d_Time::d_Time(const d_Timestamp& timestamp) : d_Time(timestamp.time) {}

d_Time::d_Time(const NxTime& time)
    : zoneHour(nxdates::DefaultZone()),
      zoneMinute(0),
      hour(Narrow(time.hour + zoneHour)),
      minute(time.minute),
      second(time.second),
      hundredth(0) {}

d_Time::d_Time(const NxDateTime& dateTime) : d_Time(dateTime.time) {}

d_Time& d_Time::operator=(const d_Timestamp& timestamp) {
  return *this = timestamp.time;
}

d_Time& d_Time::operator=(const NxTime& time) {
  return *this = d_Time(time);
}

d_Time& d_Time::operator=(const NxDateTime& dateTime) {
  return *this = d_Time(dateTime.time);
}

d_Time d_Time::current() {
  btime now{};
  nxsgettime(&now);
  return d_Time(now.hour, now.minute, static_cast<float>(now.second));
}

void d_Time::set_default_Time_Zone(Time_Zone zone) {
  defaultZone = zone;
}

// The clock's zone is in seconds; a zone of 0 (also what the clock reports
// when it can't tell) leaves the default as it is.
void d_Time::set_default_Time_Zone_to_local() {
  btime now{};
  nxsgettime(&now);
  if (now.zone != 0) defaultZone = now.zone / 3600;
}

d_Time& d_Time::operator+=(const d_Interval& interval) {
  Shift(*this, SecondsWithHundredths(*this), interval.seconds);
  return *this;
}

d_Time& d_Time::operator-=(const d_Interval& interval) {
  Shift(*this, static_cast<float>(second), -interval.seconds);
  return *this;
}

d_Time operator+(const d_Time& time, const d_Interval& interval) {
  d_Time result = time;
  Shift(result, static_cast<float>(time.second), interval.seconds);
  return result;
}

d_Time operator+(const d_Interval& interval, const d_Time& time) {
  return time + interval;
}

d_Time operator-(const d_Time& time, const d_Interval& interval) {
  d_Time result = time;
  Shift(result, static_cast<float>(time.second), -interval.seconds);
  return result;
}

d_Interval operator-(const d_Time& a, const d_Time& b) {
  return d_Interval(0, a.hour, a.minute, a.second) - d_Interval(0, b.hour, b.minute, b.second);
}

int operator!=(const d_Time& a, const d_Time& b) {
  const uint16_t hourA = static_cast<uint16_t>(a.hour - a.zoneHour);
  const uint16_t hourB = static_cast<uint16_t>(b.hour - b.zoneHour);
  if (hourA != hourB) return hourA - hourB;
  const uint16_t minuteA = static_cast<uint16_t>(a.minute - a.zoneMinute);
  const uint16_t minuteB = static_cast<uint16_t>(b.minute - b.zoneMinute);
  if (minuteA != minuteB) return minuteA - minuteB;
  return Trunc32(SecondsWithHundredths(a) - SecondsWithHundredths(b));
}

// ---------------------------------------------------------------------------
// d_Timestamp.

d_Timestamp::d_Timestamp() : date(), time() {}

d_Timestamp::d_Timestamp(const NxDateTime& dateTime) : date(dateTime.date), time(dateTime.time) {}

d_Timestamp& d_Timestamp::operator=(const d_Date& d) {
  date = d;
  return *this;
}

d_Timestamp& d_Timestamp::operator=(const NxDateTime& dateTime) {
  date = dateTime.date;
  time = dateTime.time;
  return *this;
}

d_Timestamp d_Timestamp::current() {
  return d_Timestamp(d_Date::current(), d_Time::current());
}

namespace {

// The day of the month and the local time as one interval, moved by
// `delta`; whole days move the absolute date, the rest makes a new time in
// the old zone.
void Shift(d_Timestamp& ts, float delta) {
  d_Time& t = ts.time;
  d_Interval iv(ts.date.day, static_cast<uint16_t>(t.hour - t.zoneHour),
                static_cast<uint16_t>(t.minute - t.zoneMinute), SecondsWithHundredths(t));
  iv.seconds += delta;
  int64_t absDate = d_DateAccess::Get(ts.date);
  if (iv.seconds >= 0) {
    absDate += int64_t{Trunc32(iv.seconds / 86400.0f)} - ts.date.day;
  } else {
    const int64_t n = Trunc32(iv.seconds / -86400.0f);
    iv.seconds += static_cast<float>((n + 1) * 86400);
    absDate -= ts.date.day + n + 1;
  }
  d_DateAccess::Set(ts.date, Wrap32(absDate));
  const int32_t whole = Trunc32(iv.seconds);
  t = d_Time(static_cast<unsigned short>(whole % 86400 / 3600),
             static_cast<unsigned short>(whole % 3600 / 60),
             iv.seconds - static_cast<float>(whole) + static_cast<float>(whole % 60), t.zoneHour,
             t.zoneMinute);
}

}  // namespace

d_Timestamp& d_Timestamp::operator+=(const d_Interval& interval) {
  Shift(*this, interval.seconds);
  return *this;
}

d_Timestamp& d_Timestamp::operator-=(const d_Interval& interval) {
  Shift(*this, -interval.seconds);
  return *this;
}

d_Timestamp operator+(const d_Timestamp& timestamp, const d_Interval& interval) {
  d_Timestamp result = timestamp;
  return result += interval;
}

d_Timestamp operator+(const d_Interval& interval, const d_Timestamp& timestamp) {
  return timestamp + interval;
}

d_Timestamp operator-(const d_Timestamp& timestamp, const d_Interval& interval) {
  d_Timestamp result = timestamp;
  return result -= interval;
}

int operator!=(const d_Timestamp& a, const d_Timestamp& b) {
  const int byDate = a.date != b.date;
  if (byDate != 0) return byDate;
  return a.time != b.time;
}

// ---------------------------------------------------------------------------
// d_Interval.

namespace {

// |factor| * unit made in 32-bit integers, as a float.
float Product(int factor, int32_t unit) {
  return static_cast<float>(Wrap32(std::llabs(factor) * unit));
}

}  // namespace

d_Interval::d_Interval(int day, int hour, int minute, float sec)
    : seconds(Product(day, 86400) + Product(hour, 3600) + Product(minute, 60) + std::fabs(sec)) {
  if (day < 0 || hour < 0 || minute < 0 || sec < 0) seconds = -seconds;
}

d_Interval d_Interval::operator-() const {
  d_Interval result;
  result.seconds = -seconds;
  return result;
}

d_Interval operator+(const d_Interval& a, const d_Interval& b) {
  d_Interval result;
  result.seconds = a.seconds + b.seconds;
  return result;
}

d_Interval operator-(const d_Interval& a, const d_Interval& b) {
  d_Interval result;
  result.seconds = a.seconds - b.seconds;
  return result;
}

d_Interval operator*(const d_Interval& interval, int factor) {
  d_Interval result;
  result.seconds = static_cast<float>(factor) * interval.seconds;
  return result;
}

d_Interval operator*(int factor, const d_Interval& interval) {
  return interval * factor;
}

d_Interval operator/(const d_Interval& interval, int divisor) {
  if (divisor == 0) return interval;
  d_Interval result;
  result.seconds = interval.seconds / static_cast<float>(divisor);
  return result;
}

// ---------------------------------------------------------------------------
// overlaps.  One walk for every pattern: `hi` picks the later end of the
// first period, and `cmp` compares an end of the second period with an end
// of the first (negative, 0, positive).  Step 4 asks whether `d` lies above
// `lo`, which for timestamps is "neither before nor identical", so that two
// timestamps less than a second apart that are not identical count as
// neither.

namespace {

// The order of two timestamps: before (-1), identical (0), after (1), or
// none of these (2) for two different timestamps of one date less than a
// second apart.
int TimestampOrder(const d_Timestamp& x, const d_Timestamp& y) {
  const int byDate = x.date != y.date;
  if (byDate < 0) return -1;
  if (byDate > 0) return 1;
  const int byTime = x.time != y.time;
  if (byTime < 0) return -1;
  if (byTime > 0) return 1;
  const bool identical = x.date.year == y.date.year && x.date.month == y.date.month &&
                         x.date.day == y.date.day && x.time.zoneHour == y.time.zoneHour &&
                         x.time.zoneMinute == y.time.zoneMinute && x.time.hour == y.time.hour &&
                         x.time.minute == y.time.minute && x.time.second == y.time.second &&
                         x.time.hundredth == y.time.hundredth;
  return identical ? 0 : 2;
}

// The relations of step 1 to 5 from a three-way result: at or above, at or
// below, above.  For timestamps the result 2 is none of these.
bool AtOrAbove(int order) {
  return order == 0 || order == 1;
}
bool AtOrBelow(int order) {
  return order == 0 || order == -1;
}
bool Above(int order) {
  return order == 1;
}

// A three-way result as -1, 0 or 1.
int Sign(int value) {
  return value < 0 ? -1 : (value > 0 ? 1 : 0);
}

template <typename End, typename Other, typename IsHi, typename Cmp>
int Overlaps(const End& a, const End& b, const Other& c, const Other& d, IsHi isHi, Cmp cmp) {
  const End& hi = isHi(a, b) ? a : b;
  const End& lo = &hi == &a ? b : a;
  if (AtOrAbove(cmp(c, lo)) && AtOrBelow(cmp(c, hi))) return 1;
  if (AtOrAbove(cmp(d, lo)) && AtOrBelow(cmp(d, hi))) return 1;
  if (AtOrBelow(cmp(c, lo)) && AtOrAbove(cmp(d, hi))) return 1;
  if (Above(cmp(d, lo))) return 0;
  return AtOrAbove(cmp(c, hi)) ? 1 : 0;
}

bool DateIsHi(const d_Date& a, const d_Date& b) {
  return (a != b) > 0;
}
bool TimeIsHi(const d_Time& a, const d_Time& b) {
  return (a != b) > 0;
}
bool TimestampIsHi(const d_Timestamp& a, const d_Timestamp& b) {
  const int order = TimestampOrder(a, b);
  return order != -1 && order != 0;
}

}  // namespace

int overlaps(const d_Date& a, const d_Date& b, const d_Date& c, const d_Date& d) {
  return Overlaps(a, b, c, d, DateIsHi,
                  [](const d_Date& x, const d_Date& y) { return Sign(x != y); });
}

int overlaps(const d_Time& a, const d_Time& b, const d_Time& c, const d_Time& d) {
  return Overlaps(a, b, c, d, TimeIsHi,
                  [](const d_Time& x, const d_Time& y) { return Sign(x != y); });
}

int overlaps(const d_Timestamp& a, const d_Timestamp& b, const d_Timestamp& c,
             const d_Timestamp& d) {
  return Overlaps(a, b, c, d, TimestampIsHi, TimestampOrder);
}

int overlaps(const d_Timestamp& a, const d_Timestamp& b, const d_Date& c, const d_Date& d) {
  return Overlaps(a, b, c, d, TimestampIsHi,
                  [](const d_Date& x, const d_Timestamp& y) { return Sign(x != y.date); });
}

int overlaps(const d_Date& a, const d_Date& b, const d_Timestamp& c, const d_Timestamp& d) {
  return Overlaps(a, b, c, d, DateIsHi,
                  [](const d_Timestamp& x, const d_Date& y) { return Sign(x.date != y); });
}

int overlaps(const d_Timestamp& a, const d_Timestamp& b, const d_Time& c, const d_Time& d) {
  return Overlaps(a, b, c, d, TimestampIsHi,
                  [](const d_Time& x, const d_Timestamp& y) { return Sign(x != y.time); });
}

int overlaps(const d_Time& a, const d_Time& b, const d_Timestamp& c, const d_Timestamp& d) {
  return Overlaps(a, b, c, d, TimeIsHi,
                  [](const d_Timestamp& x, const d_Time& y) { return Sign(x.time != y); });
}
