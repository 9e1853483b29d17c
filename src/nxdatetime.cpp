// NxDateTime: a date and a time side by side; local time and UTC, seconds
// across days, one ordering.
#include "nxdates.h"

namespace {

// The record of Null(): all six fields 0.  Constant-initialised, so it is
// set before the first call and kept for the life of the library.
constexpr NxDateTime kZero(NxDate(0, 0, 0), NxTime(0, 0, 0));

}  // namespace

NxDateTime::NxDateTime() : date(0, 0, 0), time(0, 0, 0) {
  Now();
}

NxDateTime::NxDateTime(const NxDate& d) : date(d), time(0, 0, 0) {
  time.Now();
}

NxDateTime::NxDateTime(const NxTime& t) : date(0, 0, 0), time(t) {
  date.Today();
}

NxDateTime& NxDateTime::operator=(const NxTime& t) {
  time = t;
  return *this;
}

NxDateTime& NxDateTime::Now() {
  time.Now();
  date.Today();
  return *this;
}

NxDateTime& NxDateTime::NowUTC() {
  btime t{};
  bdate d{};
  nxsgetsystemtime(&t, &d);
  date = NxDate(d.year, d.month, d.day);
  time = NxTime(t.hour, t.minute, t.second);
  return *this;
}

int NxDateTime::IsDaTime() const {
  return date.IsDate() && time.IsTime();
}

int NxDateTime::operator!=(const NxDateTime& other) const {
  const int byDate = date != other.date;
  if (byDate != 0) return byDate;
  return time != other.time;
}

// `total` is minutes from the start of the value's day.  Zones are less than
// a day, so the value moves by at most one day; a total further out still
// moves the date by one day and leaves an hour outside 0 to 23.
void NxDateTime::AdjustMinutes(int64_t total) {
  if (total >= 0 && total <= 1439) {
    time.hour = static_cast<int8_t>(total / 60);
    time.minute = static_cast<int8_t>(total % 60);
  } else if (total >= 1440) {
    date += 1;
    time.hour = static_cast<int8_t>((total - 1440) / 60);
    time.minute = static_cast<int8_t>((total - 1440) % 60);
  } else {
    date -= 1;
    const int64_t h = total / 60;
    const int64_t r = total % 60;
    time.hour = static_cast<int8_t>(r != 0 ? h + 23 : h + 24);
    time.minute = static_cast<int8_t>(r != 0 ? r + 60 : 0);
  }
}

int NxDateTime::ToLocalTime() {
  const int32_t zone = nxsgettimezone();
  if (zone == NxSTATUS_ZONE_UNKNOWN) return NxSTATUS_ZONE_UNKNOWN;
  AdjustMinutes(int64_t{time.hour} * 60 + time.minute + zone);
  return 0;
}

int NxDateTime::ToUTCTime() {
  const int32_t zone = nxsgettimezone();
  if (zone == NxSTATUS_ZONE_UNKNOWN) return NxSTATUS_ZONE_UNKNOWN;
  AdjustMinutes(int64_t{time.hour} * 60 + time.minute - zone);
  return 0;
}

// Whole days move the date; the rest moves the time, and a time that comes
// out on the other side of midnight moves the date one day more.
NxDateTime& NxDateTime::AddSeconds(int32_t seconds) {
  int32_t days = seconds / 86400;
  const int32_t rest = seconds % 86400;
  NxTime t = time;
  if (rest < 0) {
    t -= -rest;
    if (t > time) --days;
  } else {
    t += rest;
    if (t < time) ++days;
  }
  date += days;
  time = t;
  return *this;
}

const NxDateTime& NxDateTime::Null() {
  return kZero;
}

int NxDateTime::IsNullValue() const {
  return date.IsNullValue() && time.IsNullValue();
}

int NxDateTime::SetNullValue() {
  date.SetNullValue();
  time.SetNullValue();
  return 0;
}

NxString& NxDateTime::PrintToNxString(NxString& result, const char* format) {
  return nxdates::EnginePrint(result, this, format != nullptr ? format : "%Y-%m-%dT%H:%M:%S", 1);
}

NxDateTime& NxDateTime::ScanFromNxString(NxString& input, const char* format) {
  nxdates::EngineScan(this, input, format != nullptr ? format : "%Y-%m-%dT%H:%M:%S", 1);
  return *this;
}
