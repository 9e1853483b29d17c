// NxDate and NxTime: calendar dates and times of day.
//
// NxDate is Gregorian for every year (there is no change-over to the Julian
// calendar) and does all its arithmetic through an absolute day number, the
// Julian Day Number: 2000-01-01 is 2451545, day 0 is -4713-11-24.  Years are
// astronomical (the year before 1 is 0).  A field of -1 is a wildcard for
// operator!= and the order operators.  The `long` of the stored world is 32
// bits: day numbers, second counts and every intermediate product are
// int32_t and wrap as on a 32-bit machine.
#ifndef NXTM_NXDATE_H
#define NXTM_NXDATE_H

#include <nxtm/nxtmdefs.h>
#include <nxtm/nxstring.h>

// Days of the week as NxDate counts them.
enum NxDaysOfTheWeek {
  NxMonday = 0,
  NxTuesday = 1,
  NxWednesday = 2,
  NxThursday = 3,
  NxFriday = 4,
  NxSaturday = 5,
  NxSunday = 6
};

class NXTM_API NxDate {
 public:
  // Today's local date, from the clock.
  NxDate();
  // The date of an absolute day number.
  NxDate(int32_t dayNumber);
  // The three fields as given, narrowed to their widths, with no check.
  constexpr NxDate(int year, int month, int day)
      : year(static_cast<int16_t>(year)),
        month(static_cast<int8_t>(month)),
        day(static_cast<int8_t>(day)) {}
  NxDate(const NxDate&) = default;
  NxDate& operator=(const NxDate&) = default;

  // Sets this date to today; returns it.
  NxDate& Today();

  // The absolute day number.  Month 13 counts as January of the next year,
  // and a day past the end of its month runs on into the next.
  operator int32_t() const { return dayabs(); }

  NxDate operator+(int32_t days) const;
  NxDate operator-(int32_t days) const;
  // This day number minus the other's.
  int32_t operator-(const NxDate& other) const;
  NxDate& operator++();
  NxDate& operator--();
  NxDate& operator+=(int32_t days);
  NxDate& operator-=(int32_t days);

  // 1 when all three fields are equal, else 0.  No wildcard.
  int operator==(const NxDate& other) const;
  // The first non-zero difference of year, month, day (this minus other),
  // skipping a field that holds -1 on either side; 0 when none differs.
  int operator!=(const NxDate& other) const;
  int operator<(const NxDate& other) const { return (*this != other) < 0; }
  int operator>(const NxDate& other) const { return (*this != other) > 0; }
  int operator<=(const NxDate& other) const { return (*this != other) <= 0; }
  int operator>=(const NxDate& other) const { return (*this != other) >= 0; }

  // 1 when the fields make a real calendar date.
  int IsDate() const;
  int IsLastDayOfTheMonth() const;
  NxDaysOfTheWeek DayOfTheDate() const;
  // The name of the day of the week ("Monday" ...).
  NxString PrintDayOfTheDate() const;
  // The name of `day`, or "no day" for a value outside the enumeration.
  static NxString DayName(int day);

  // Appends the date to `result` in the date format language; a null format
  // is "%Y-%m-%d".  A null date gives the null print string instead.
  NxString& PrintToNxString(NxString& result, const char* format = nullptr);
  // Reads the date from `input`; a null format is "%Y-%m-%d".
  NxDate& ScanFromNxString(NxString& input, const char* format = nullptr);

  // The null date: year -32768, month and day -128.
  int IsNullValue() const;
  int SetNullValue();

  int16_t year;  // astronomical year
  int8_t month;  // 1 to 12
  int8_t day;    // 1 to 31

 protected:
  // Division truncating toward zero, and the remainder that goes with it.
  static int32_t divide(int32_t a, int32_t b);
  static int32_t modulo(int32_t a, int32_t b);
  int32_t dayabs() const;
  void dateabs(int32_t dayNumber);
  // Days from this date to the first of the next month: 1 on the last day.
  int32_t daynxtmonth() const;
};

class NXTM_API NxTime {
 public:
  // The present local time, from the clock.
  NxTime();
  // hour = seconds / 3600, minute = seconds % 3600 / 60, second = seconds %
  // 60, truncating; nothing is reduced to a day.
  NxTime(int32_t seconds);
  constexpr NxTime(int hour, int minute, int second)
      : hour(static_cast<int8_t>(hour)),
        minute(static_cast<int8_t>(minute)),
        second(static_cast<int8_t>(second)) {}
  NxTime(const NxTime&) = default;
  NxTime& operator=(const NxTime&) = default;

  // Sets this time to the present local time; returns it.
  NxTime& Now();

  // (hour * 60 + minute) * 60 + second.
  operator int32_t() const;

  // Seconds later or earlier, wrapping past midnight once.
  NxTime operator+(int32_t seconds) const;
  NxTime operator-(int32_t seconds) const;
  // Field by field, wrapping past midnight: 01:00:00 - 02:00:00 is 23:00:00.
  NxTime operator-(const NxTime& other) const;
  NxTime& operator++();
  NxTime& operator--();
  NxTime& operator+=(int32_t seconds);
  NxTime& operator-=(int32_t seconds);

  int operator==(const NxTime& other) const;
  // 1, 0 or -1 by hour, minute, second as signed bytes.  No wildcard.
  int operator!=(const NxTime& other) const;
  int operator<(const NxTime& other) const { return (*this != other) < 0; }
  int operator>(const NxTime& other) const { return (*this != other) > 0; }
  int operator<=(const NxTime& other) const { return (*this != other) <= 0; }
  int operator>=(const NxTime& other) const { return (*this != other) >= 0; }

  // 1 when hour is 0 to 23, minute and second 0 to 59.
  int IsTime() const;

  // A null format is "%H:%M:%S".
  NxString& PrintToNxString(NxString& result, const char* format = nullptr);
  NxTime& ScanFromNxString(NxString& input, const char* format = nullptr);

  // The null time: all three fields -128.
  int IsNullValue() const;
  int SetNullValue();

  int8_t hour;
  int8_t minute;
  int8_t second;

 private:
  // The carries and borrows shared by the arithmetic.
  void CarryUp();
  void BorrowDown();
};

#endif
