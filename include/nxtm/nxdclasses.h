// The standard date classes: d_Date, d_Time, d_Timestamp, d_Interval and the
// overlaps family.
//
// They sit beside NxDate, NxTime and NxDateTime and convert from them, but
// compute in a calendar of their own: d_Date is Julian up to 1582-10-04 and
// Gregorian from 1582-10-15 (1500 has a 29 February, 1700 does not), and its
// absolute date is the Julian Day Number minus 1 (2000-01-01 is 2451544).
// The ten days 1582-10-05 to 1582-10-14 have no absolute date of their own:
// they count as the date ten days later.  d_Time carries a zone and
// hundredths, and d_Interval is a number of seconds in single precision.
#ifndef NXTM_NXDCLASSES_H
#define NXTM_NXDCLASSES_H

#include <nxtm/nxdatetime.h>

class d_Interval;
class d_Timestamp;

class NXTM_API d_Date {
 public:
  enum Weekday {
    Sunday = 0,
    Monday = 1,
    Tuesday = 2,
    Wednesday = 3,
    Thursday = 4,
    Friday = 5,
    Saturday = 6
  };

  // Today, from the clock.
  d_Date();
  // January 1 of `year`, then `dayOfYear` - 1 days on.
  d_Date(short year, unsigned short dayOfYear);
  // The three fields, narrowed to their widths, with no check.
  constexpr d_Date(short year, unsigned short month, unsigned short day)
      : year(year), month(static_cast<int8_t>(month)), day(static_cast<int8_t>(day)) {}
  d_Date(const d_Date&) = default;
  // These copy the three fields as they stand, a null NxDate included.
  d_Date(const d_Timestamp& timestamp);
  d_Date(const NxDate& date);
  d_Date(const NxDateTime& dateTime);
  d_Date& operator=(const d_Date&) = default;
  d_Date& operator=(const d_Timestamp& timestamp);
  d_Date& operator=(const NxDate& date);
  d_Date& operator=(const NxDateTime& dateTime);

  static d_Date current();

  // 1 for January 1.
  unsigned short day_of_year() const;
  Weekday day_of_week() const;
  // Forward to the next `day`, 1 to 7 days on, or back to the last one, 1 to
  // 7 days back; a date on `day` moves a full week.
  d_Date& next(Weekday day);
  d_Date& previous(Weekday day);

  // Moves by the whole days of the interval, cut toward zero.
  d_Date& operator+=(const d_Interval& interval);
  d_Date& operator-=(const d_Interval& interval);
  d_Date& operator++();
  d_Date& operator--();
  d_Date operator++(int);
  d_Date operator--(int);

  int days_in_month() const;
  // 28 to 31 in this class's calendar; 0 for a month outside 1 to 12.
  static int days_in_month(short year, unsigned short month);

  int16_t year;
  int8_t month;
  int8_t day;

 private:
  friend struct d_DateAccess;
  int32_t getAbsDate() const;
  void setAbsDate(int32_t absDate);
};

NXTM_API d_Date operator+(const d_Date& date, const d_Interval& interval);
NXTM_API d_Date operator+(const d_Interval& interval, const d_Date& date);
NXTM_API d_Date operator-(const d_Date& date, const d_Interval& interval);
// The absolute date of `a` minus that of `b`: a three-way comparison.
NXTM_API int operator!=(const d_Date& a, const d_Date& b);

class NXTM_API d_Time {
 public:
  // Offsets in whole hours.
  enum Time_Zone {
    GMT = 0,
    GMT12 = 12,
    GMT_12 = -12,
    GMT1 = 1,
    GMT_1 = -1,
    GMT2 = 2,
    GMT_2 = -2,
    GMT3 = 3,
    GMT_3 = -3,
    GMT4 = 4,
    GMT_4 = -4,
    GMT5 = 5,
    GMT_5 = -5,
    GMT6 = 6,
    GMT_6 = -6,
    GMT7 = 7,
    GMT_7 = -7,
    GMT8 = 8,
    GMT_8 = -8,
    GMT9 = 9,
    GMT_9 = -9,
    GMT10 = 10,
    GMT_10 = -10,
    GMT11 = 11,
    GMT_11 = -11,
    USeastern = -5,
    UScentral = -6,
    USmountain = -7,
    USpacific = -8
  };

  // The present local time in the default zone, hundredths 0.
  d_Time();
  // The default zone with zone minutes 0, or the given zone.  The stored
  // hour and minute have the zone added; `sec` gives whole seconds and
  // hundredths, each cut toward zero.
  d_Time(unsigned short hour, unsigned short minute, float sec);
  d_Time(unsigned short hour, unsigned short minute, float sec, short zoneHour, short zoneMinute);
  // Seconds since midnight in the default zone.  A negative count first
  // gains whole days into 0 to 86399; 86400 and more is not reduced.
  d_Time(int32_t seconds);
  d_Time(const d_Time&) = default;
  d_Time(const d_Timestamp& timestamp);
  // The source's time in the default zone, hundredths 0.
  d_Time(const NxTime& time);
  d_Time(const NxDateTime& dateTime);
  d_Time& operator=(const d_Time&) = default;
  d_Time& operator=(const d_Timestamp& timestamp);
  d_Time& operator=(const NxTime& time);
  d_Time& operator=(const NxDateTime& dateTime);

  static d_Time current();
  static void set_default_Time_Zone(Time_Zone zone);
  // The zone of the clock, in whole hours; a clock zone of 0 leaves the
  // default as it is.
  static void set_default_Time_Zone_to_local();

  // Wrap around midnight; the zone stays.  += keeps the hundredths, -= does
  // not.
  d_Time& operator+=(const d_Interval& interval);
  d_Time& operator-=(const d_Interval& interval);

  int8_t zoneHour;
  int8_t zoneMinute;
  int8_t hour;    // local hour plus zoneHour
  int8_t minute;  // local minute plus zoneMinute
  int8_t second;
  int8_t hundredth;
};

// Without the hundredths; the result has the zone of the d_Time operand.
NXTM_API d_Time operator+(const d_Time& time, const d_Interval& interval);
NXTM_API d_Time operator+(const d_Interval& interval, const d_Time& time);
NXTM_API d_Time operator-(const d_Time& time, const d_Interval& interval);
// The stored hours, minutes and seconds of `a` less those of `b`.
NXTM_API d_Interval operator-(const d_Time& a, const d_Time& b);
// Local hour, then local minute, then whole seconds: times less than a
// second apart compare equal.
NXTM_API int operator!=(const d_Time& a, const d_Time& b);

class NXTM_API d_Timestamp {
 public:
  // Today's date and the present time in the default zone.
  d_Timestamp();
  constexpr d_Timestamp(const d_Date& d, const d_Time& t) : date(d), time(t) {}
  d_Timestamp(const d_Timestamp&) = default;
  explicit d_Timestamp(const NxDateTime& dateTime);
  d_Timestamp& operator=(const d_Timestamp&) = default;
  // Replaces the date part only.
  d_Timestamp& operator=(const d_Date& d);
  d_Timestamp& operator=(const NxDateTime& dateTime);

  static d_Timestamp current();

  d_Timestamp& operator+=(const d_Interval& interval);
  d_Timestamp& operator-=(const d_Interval& interval);

  d_Date date;
  d_Time time;
};

NXTM_API d_Timestamp operator+(const d_Timestamp& timestamp, const d_Interval& interval);
NXTM_API d_Timestamp operator+(const d_Interval& interval, const d_Timestamp& timestamp);
NXTM_API d_Timestamp operator-(const d_Timestamp& timestamp, const d_Interval& interval);
// The dates, then the times.
NXTM_API int operator!=(const d_Timestamp& a, const d_Timestamp& b);

class NXTM_API d_Interval {
 public:
  d_Interval() : seconds(0.0f) {}
  // |day| days + |hour| hours + |minute| minutes + |sec| seconds, negated
  // when any argument is negative (the signs do not cancel).
  explicit d_Interval(int day, int hour = 0, int minute = 0, float sec = 0.0f);
  d_Interval(const d_Interval&) = default;
  d_Interval& operator=(const d_Interval&) = default;
  d_Interval operator-() const;

  float seconds;
};

NXTM_API d_Interval operator+(const d_Interval& a, const d_Interval& b);
NXTM_API d_Interval operator-(const d_Interval& a, const d_Interval& b);
NXTM_API d_Interval operator*(const d_Interval& interval, int factor);
NXTM_API d_Interval operator*(int factor, const d_Interval& interval);
// Division by 0 gives the interval unchanged.
NXTM_API d_Interval operator/(const d_Interval& interval, int divisor);

// 1 when the closed periods [a, b] and [c, d] share a point, touching ends
// included; each period's ends may stand in either order.  Times compare to
// the whole second; a timestamp against a date or a time compares only that
// part.
NXTM_API int overlaps(const d_Date& a, const d_Date& b, const d_Date& c, const d_Date& d);
NXTM_API int overlaps(const d_Time& a, const d_Time& b, const d_Time& c, const d_Time& d);
NXTM_API int overlaps(const d_Timestamp& a, const d_Timestamp& b, const d_Timestamp& c,
                      const d_Timestamp& d);
NXTM_API int overlaps(const d_Timestamp& a, const d_Timestamp& b, const d_Date& c,
                      const d_Date& d);
NXTM_API int overlaps(const d_Date& a, const d_Date& b, const d_Timestamp& c,
                      const d_Timestamp& d);
NXTM_API int overlaps(const d_Timestamp& a, const d_Timestamp& b, const d_Time& c,
                      const d_Time& d);
NXTM_API int overlaps(const d_Time& a, const d_Time& b, const d_Timestamp& c,
                      const d_Timestamp& d);

#endif
