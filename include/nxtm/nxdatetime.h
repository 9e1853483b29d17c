// NxDateTime: a date and a time of day side by side, local or UTC.
#ifndef NXTM_NXDATETIME_H
#define NXTM_NXDATETIME_H

#include <nxtm/nxdate.h>

class NXTM_API NxDateTime {
 public:
  // Today's date and the present time.
  NxDateTime();
  constexpr NxDateTime(const NxDate& d, const NxTime& t) : date(d), time(t) {}
  // The given date with the present time.
  explicit NxDateTime(const NxDate& d);
  // Today's date with the given time.
  explicit NxDateTime(const NxTime& t);
  NxDateTime(const NxDateTime&) = default;
  NxDateTime& operator=(const NxDateTime&) = default;
  // Replaces the time part; the date stays.
  NxDateTime& operator=(const NxTime& t);

  // The present local time, then today's local date.
  NxDateTime& Now();
  // The present time and date in UTC.
  NxDateTime& NowUTC();

  // 1 when the date is a date and the time a time.
  int IsDaTime() const;

  // operator!= of the dates (wildcards included) when that is not 0,
  // otherwise operator!= of the times.
  int operator!=(const NxDateTime& other) const;
  int Compare(const NxDateTime& other) const { return *this != other; }

  // Move the value by the offset of the base library's time zone, across
  // at most one day.  NxSTATUS_ZONE_UNKNOWN, with the value unchanged, when
  // the zone is not known; else 0.  Seconds are not touched.
  int ToLocalTime();
  int ToUTCTime();

  // Moves the value by `seconds`, across as many days as it takes.
  NxDateTime& AddSeconds(int32_t seconds);

  // A record with all six fields 0: neither a null value nor a valid one.
  static const NxDateTime& Null();

  // Null when both parts are null.
  int IsNullValue() const;
  int SetNullValue();

  // Append to `result` / read from `input` in the date format language; a
  // null format is "%Y-%m-%dT%H:%M:%S".
  NxString& PrintToNxString(NxString& result, const char* format = nullptr);
  NxDateTime& ScanFromNxString(NxString& input, const char* format = nullptr);

  NxDate date;
  NxTime time;

 private:
  // Sets hour and minute from minutes since the start of the value's day,
  // moving the date by one day when `total` leaves it.
  void AdjustMinutes(int64_t total);
};

#endif
