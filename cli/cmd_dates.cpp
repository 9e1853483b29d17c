// The temporal rows on the command line, and nxtm date: one date through
// both calendars side by side.
//
// Texts: NxDate and d_Date "YYYY-MM-DD" (astronomical years, so -0044 is 45
// BC), where "*" for any of the three fields makes it wild (the field holds
// -1, and an estimate takes the date as the span it matches), NxTime
// "HH:MM:SS", NxDateTime "YYYY-MM-DDTHH:MM:SS".  d_Time adds
// hundredths and a zone: "HH:MM:SS[.hh][+HH[:MM]|-HH[:MM]|Z]", the local
// time and its zone (the default zone of the program is 0); d_Timestamp is
// a date, "T" and such a time.  d_Interval is a number of seconds.  Each
// date must be a date of its class's calendar: NxDate is Gregorian for all
// years, d_Date Julian up to 1582-10-04 and Gregorian from 1582-10-15.
//
// NXTM_NOW fixes "now" for the whole program, as "YYYY-MM-DDTHH:MM:SS" in
// local time with an optional zone ("+01:00"; UTC without one), so that the
// output never depends on the machine's clock or zone.
#include <cerrno>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <nxtm/nxtm.h>

#include "cli.h"
#include "values.h"

namespace {

using cli::Args;

// ---------------------------------------------------------------------------
// Reading the parts of a text.

// A run of 1 to `most` digits at `at`, moving `at` past them.
bool Digits(const std::string& text, size_t& at, size_t most, long& value) {
  const size_t start = at;
  value = 0;
  while (at < text.size() && at - start < most && text[at] >= '0' && text[at] <= '9')
    value = value * 10 + (text[at++] - '0');
  return at > start && (at >= text.size() || text[at] < '0' || text[at] > '9');
}

bool Expect(const std::string& text, size_t& at, char c) {
  if (at >= text.size() || text[at] != c) return false;
  ++at;
  return true;
}

struct DateFields {
  long year, month, day;
};

// The field value of "*".
constexpr long kWild = -1;

// A field of 1 to `most` digits, or with `wild` a "*" for kWild.
bool Field(const std::string& text, size_t& at, size_t most, bool wild, long& value) {
  if (wild && at < text.size() && text[at] == '*') {
    ++at;
    value = kWild;
    return true;
  }
  return Digits(text, at, most, value);
}

// "[-]Y...-M[M]-D[D]" with a year of 16 bits, month 1 to 12, day 1 to 31;
// with `wild`, "*" may stand for any of the three.
bool ReadDateFields(const std::string& text, size_t& at, DateFields& d, std::string& error,
                    bool wild = false) {
  const bool minus = at < text.size() && text[at] == '-';
  if (minus) ++at;
  if (!Field(text, at, 5, wild && !minus, d.year) || !Expect(text, at, '-') ||
      !Field(text, at, 2, wild, d.month) || !Expect(text, at, '-') ||
      !Field(text, at, 2, wild, d.day)) {
    error = wild ? "a date is YYYY-MM-DD, with * for a wild field" : "a date is YYYY-MM-DD";
    return false;
  }
  if (minus) d.year = -d.year;
  if (d.year < -32768 || d.year > 32767) {
    error = "the year must lie in -32768 to 32767";
    return false;
  }
  if ((d.month != kWild && (d.month < 1 || d.month > 12)) ||
      (d.day != kWild && (d.day < 1 || d.day > 31))) {
    error = "month 1 to 12, day 1 to 31";
    return false;
  }
  return true;
}

bool IsWild(const DateFields& d) {
  return d.year == kWild || d.month == kWild || d.day == kWild;
}

struct TimeFields {
  long hour, minute, second, hundredth;
  long zoneHour, zoneMinute;
};

// "HH:MM:SS", and with `extended` also ".h" or ".hh" and a zone.
bool ReadTimeFields(const std::string& text, size_t& at, bool extended, TimeFields& t,
                    std::string& error) {
  t = TimeFields{0, 0, 0, 0, 0, 0};
  const char* shape = extended ? "a time is HH:MM:SS[.hh][+HH:MM]" : "a time is HH:MM:SS";
  if (!Digits(text, at, 2, t.hour) || !Expect(text, at, ':') || !Digits(text, at, 2, t.minute) ||
      !Expect(text, at, ':') || !Digits(text, at, 2, t.second)) {
    error = shape;
    return false;
  }
  if (extended && at < text.size() && text[at] == '.') {
    ++at;
    const size_t start = at;
    if (!Digits(text, at, 2, t.hundredth)) {
      error = shape;
      return false;
    }
    if (at - start == 1) t.hundredth *= 10;
  }
  if (extended && at < text.size() && text[at] == 'Z') {
    ++at;
  } else if (extended && at < text.size() && (text[at] == '+' || text[at] == '-')) {
    const long sign = text[at++] == '-' ? -1 : 1;
    if (!Digits(text, at, 2, t.zoneHour) ||
        (at < text.size() && (!Expect(text, at, ':') || !Digits(text, at, 2, t.zoneMinute)))) {
      error = shape;
      return false;
    }
    if (t.zoneHour > 23 || t.zoneMinute > 59) {
      error = "a zone is at most 23:59";
      return false;
    }
    t.zoneHour *= sign;
    t.zoneMinute *= sign;
  }
  if (t.hour > 23 || t.minute > 59 || t.second > 59) {
    error = "hour 0 to 23, minute and second 0 to 59";
    return false;
  }
  return true;
}

bool AtEnd(const std::string& text, size_t at, std::string& error) {
  if (at == text.size()) return true;
  error = "unexpected '" + text.substr(at) + "'";
  return false;
}

// The d_Date calendar's own test: its month lengths, and no day in the ten
// that October 1582 skipped.
bool IsStandardDate(const DateFields& d) {
  if (d.day > d_Date::days_in_month(static_cast<short>(d.year), static_cast<unsigned short>(d.month)))
    return false;
  return !(d.year == 1582 && d.month == 10 && d.day >= 5 && d.day <= 14);
}

// With `wild`, a date with a wild field is taken as it stands: only its
// fields are checked.
bool ReadNxDate(const std::string& text, NxDate& date, std::string& error, bool wild = false) {
  size_t at = 0;
  DateFields d;
  if (!ReadDateFields(text, at, d, error, wild) || !AtEnd(text, at, error)) return false;
  date = NxDate(static_cast<int>(d.year), static_cast<int>(d.month), static_cast<int>(d.day));
  if (!IsWild(d) && !date.IsDate()) {
    error = "not a day of the Gregorian calendar of NxDate";
    return false;
  }
  return true;
}

bool ReadStandardDate(const std::string& text, size_t& at, d_Date& date, std::string& error,
                      bool wild = false) {
  DateFields d;
  if (!ReadDateFields(text, at, d, error, wild)) return false;
  if (!IsWild(d) && !IsStandardDate(d)) {
    error = "not a day of the d_Date calendar (Julian to 1582-10-04, Gregorian from 1582-10-15)";
    return false;
  }
  date = d_Date(static_cast<short>(d.year), static_cast<unsigned short>(d.month),
                static_cast<unsigned short>(d.day));
  return true;
}

// A d_Time from its local time and zone, field by field: the stored hour and
// minute have the zone added.
d_Time StandardTime(const TimeFields& t) {
  d_Time time(0, 0, 0.0f, 0, 0);
  time.zoneHour = static_cast<int8_t>(t.zoneHour);
  time.zoneMinute = static_cast<int8_t>(t.zoneMinute);
  time.hour = static_cast<int8_t>(t.hour + t.zoneHour);
  time.minute = static_cast<int8_t>(t.minute + t.zoneMinute);
  time.second = static_cast<int8_t>(t.second);
  time.hundredth = static_cast<int8_t>(t.hundredth);
  return time;
}

// ---------------------------------------------------------------------------
// Showing.

// With `wild`, a field of -1 shows as "*" (the year -1 too: the date
// operations take it as wild).
std::string DateText(int year, int month, int day, bool wild = false) {
  char buffer[32];
  const auto field = [wild](int value, const char* format, char* out, size_t size) {
    if (wild && value == kWild)
      std::snprintf(out, size, "*");
    else
      std::snprintf(out, size, format, std::abs(value));
  };
  char y[8], m[8], d[8];
  field(year, "%04d", y, sizeof y);
  field(month, "%02d", m, sizeof m);
  field(day, "%02d", d, sizeof d);
  std::snprintf(buffer, sizeof buffer, "%s%s-%s-%s", year < 0 && !(wild && year == kWild) ? "-" : "", y, m, d);
  return buffer;
}

std::string TimeText(int hour, int minute, int second) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%02d:%02d:%02d", hour, minute, second);
  return buffer;
}

// The local time of a d_Time with its hundredths and zone.
std::string StandardTimeText(const d_Time& t) {
  char buffer[64];
  const int zh = t.zoneHour;
  const int zm = t.zoneMinute;
  const bool negative = zh < 0 || (zh == 0 && zm < 0);
  char zone[24];
  if ((zh <= 0 && zm <= 0) || (zh >= 0 && zm >= 0))
    std::snprintf(zone, sizeof zone, "%c%02d:%02d", negative ? '-' : '+', std::abs(zh),
                  std::abs(zm));
  else
    std::snprintf(zone, sizeof zone, "%+03d:%+03d", zh, zm);  // mixed signs, as stored
  std::snprintf(buffer, sizeof buffer, "%s.%02d%s",
                TimeText(t.hour - zh, t.minute - zm, t.second).c_str(), t.hundredth, zone);
  return buffer;
}

template <typename T>
T Element(const void* element, T blank) {
  std::memcpy(static_cast<void*>(&blank), element, sizeof blank);
  return blank;
}

template <typename T>
void Put(void* element, const T& value) {
  std::memcpy(element, static_cast<const void*>(&value), sizeof value);
}

// ---------------------------------------------------------------------------
// The value texts of the seven rows.

bool ReadDate(const std::string& text, void* element, std::string& error) {
  NxDate date(0, 0, 0);
  if (!ReadNxDate(text, date, error, true)) return false;
  Put(element, date);
  return true;
}

std::string ShowDate(const void* element) {
  const NxDate d = Element(element, NxDate(0, 0, 0));
  return DateText(d.year, d.month, d.day, true);
}

bool ReadTime(const std::string& text, void* element, std::string& error) {
  size_t at = 0;
  TimeFields t;
  if (!ReadTimeFields(text, at, false, t, error) || !AtEnd(text, at, error)) return false;
  Put(element, NxTime(static_cast<int>(t.hour), static_cast<int>(t.minute),
                      static_cast<int>(t.second)));
  return true;
}

std::string ShowTime(const void* element) {
  const NxTime t = Element(element, NxTime(0, 0, 0));
  return TimeText(t.hour, t.minute, t.second);
}

// "DATE" "T" "TIME": the date part is read up to the "T".
bool SplitAtT(const std::string& text, std::string& date, std::string& time, std::string& error) {
  const size_t t = text.find('T');
  if (t == std::string::npos) {
    error = "a date and time is YYYY-MM-DDTHH:MM:SS";
    return false;
  }
  date = text.substr(0, t);
  time = text.substr(t + 1);
  return true;
}

bool ReadDateTime(const std::string& text, void* element, std::string& error) {
  std::string dateText, timeText;
  NxDate date(0, 0, 0);
  NxTime time(0, 0, 0);
  if (!SplitAtT(text, dateText, timeText, error) || !ReadNxDate(dateText, date, error) ||
      !ReadTime(timeText, &time, error))
    return false;
  Put(element, NxDateTime(date, time));
  return true;
}

std::string ShowDateTime(const void* element) {
  const NxDateTime v = Element(element, NxDateTime::Null());
  return DateText(v.date.year, v.date.month, v.date.day) + "T" +
         TimeText(v.time.hour, v.time.minute, v.time.second);
}

bool ReadStandardDateValue(const std::string& text, void* element, std::string& error) {
  size_t at = 0;
  d_Date date(0, 0, 0);
  if (!ReadStandardDate(text, at, date, error, true) || !AtEnd(text, at, error)) return false;
  Put(element, date);
  return true;
}

std::string ShowStandardDate(const void* element) {
  const d_Date d = Element(element, d_Date(0, 0, 0));
  return DateText(d.year, d.month, d.day, true);
}

bool ReadStandardTimeValue(const std::string& text, void* element, std::string& error) {
  size_t at = 0;
  TimeFields t;
  if (!ReadTimeFields(text, at, true, t, error) || !AtEnd(text, at, error)) return false;
  Put(element, StandardTime(t));
  return true;
}

std::string ShowStandardTime(const void* element) {
  return StandardTimeText(Element(element, d_Time(0, 0, 0.0f, 0, 0)));
}

bool ReadTimestamp(const std::string& text, void* element, std::string& error) {
  std::string dateText, timeText;
  d_Date date(0, 0, 0);
  size_t at = 0;
  TimeFields t;
  if (!SplitAtT(text, dateText, timeText, error) ||
      !ReadStandardDate(dateText, at, date, error) || !AtEnd(dateText, at, error))
    return false;
  at = 0;
  if (!ReadTimeFields(timeText, at, true, t, error) || !AtEnd(timeText, at, error)) return false;
  Put(element, d_Timestamp(date, StandardTime(t)));
  return true;
}

std::string ShowTimestamp(const void* element) {
  const d_Timestamp v = Element(element, d_Timestamp(d_Date(0, 0, 0), d_Time(0, 0, 0.0f, 0, 0)));
  return DateText(v.date.year, v.date.month, v.date.day) + "T" + StandardTimeText(v.time);
}

bool ReadInterval(const std::string& text, void* element, std::string& error) {
  errno = 0;
  char* end = nullptr;
  const double seconds = std::strtod(text.c_str(), &end);
  if (text.empty() || end == nullptr || *end != '\0' || errno == ERANGE || !std::isfinite(seconds) ||
      std::fabs(seconds) > FLT_MAX) {
    error = "an interval is a number of seconds";
    return false;
  }
  d_Interval interval;
  interval.seconds = static_cast<float>(seconds);
  Put(element, interval);
  return true;
}

std::string ShowInterval(const void* element) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.9g",
                static_cast<double>(Element(element, d_Interval()).seconds));
  return buffer;
}

const cli::ValueTextRegistrar kDate(NxTYPE_NxDate, {ReadDate, ShowDate, nullptr});
const cli::ValueTextRegistrar kTime(NxTYPE_NxTime, {ReadTime, ShowTime, nullptr});
const cli::ValueTextRegistrar kDateTime(NxTYPE_NxDateTime, {ReadDateTime, ShowDateTime, nullptr});
const cli::ValueTextRegistrar kStandardDate(NxTYPE_d_Date,
                                            {ReadStandardDateValue, ShowStandardDate, nullptr});
const cli::ValueTextRegistrar kStandardTime(NxTYPE_d_Time,
                                            {ReadStandardTimeValue, ShowStandardTime, nullptr});
const cli::ValueTextRegistrar kTimestamp(NxTYPE_d_Timestamp, {ReadTimestamp, ShowTimestamp, nullptr});
const cli::ValueTextRegistrar kInterval(NxTYPE_d_Interval, {ReadInterval, ShowInterval, nullptr});

// ---------------------------------------------------------------------------
// NXTM_NOW: a fixed "now" for the program.

struct FixedNow {
  FixedNow() {
    const char* now = std::getenv("NXTM_NOW");
    if (now == nullptr) return;
    const std::string text = now;
    std::string dateText, timeText, error;
    NxDate date(0, 0, 0);
    size_t at = 0;
    TimeFields t;
    if (!SplitAtT(text, dateText, timeText, error) || !ReadNxDate(dateText, date, error) ||
        !ReadTimeFields(timeText, at, true, t, error) || !AtEnd(timeText, at, error) ||
        t.hundredth != 0) {
      std::fprintf(stderr, "nxtm: NXTM_NOW '%s' is not YYYY-MM-DDTHH:MM:SS[+HH:MM]; using the clock\n",
                   now);
      return;
    }
    const int32_t zone = static_cast<int32_t>(t.zoneHour * 60 + t.zoneMinute);
    const int64_t localSeconds = (int64_t{static_cast<int32_t>(date)} - 2440588) * 86400 +
                                 (t.hour * 60 + t.minute) * 60 + t.second;
    NxClockFix((localSeconds - int64_t{zone} * 60) * 1000, zone);
  }
};

const FixedNow kFixedNow;

// ---------------------------------------------------------------------------
// nxtm date DATE.

const char* YesNo(bool yes) {
  return yes ? "yes" : "no";
}

int RunDate(const Args& args) {
  if (args.size() != 1) return cli::Fail("date: usage: nxtm date YYYY-MM-DD");
  const std::string& text = args[0];
  size_t at = 0;
  DateFields d;
  std::string error;
  if (!ReadDateFields(text, at, d, error) || !AtEnd(text, at, error))
    return cli::Fail("date: malformed date '" + text + "': " + error);

  const NxDate date(static_cast<int>(d.year), static_cast<int>(d.month), static_cast<int>(d.day));
  const d_Date standard(static_cast<short>(d.year), static_cast<unsigned short>(d.month),
                        static_cast<unsigned short>(d.day));
  const bool nxValid = date.IsDate() != 0;
  const bool standardValid = IsStandardDate(d);
  if (!nxValid && !standardValid)
    return cli::Fail("date: " + text + " is a day in neither calendar");

  // d_Date's day number is its conversion text, the absolute date plus 1;
  // the day it stands for comes back through the same row.
  NxTypeMgr mgr;
  NxTypeConvertData* carrier = mgr.ConvertTo(NxTYPE_d_Date, const_cast<d_Date*>(&standard), 1);
  if (carrier == nullptr) return cli::Fail("date: out of memory");
  const int32_t standardNumber = static_cast<int32_t>(static_cast<long>(*carrier->GetString(0)));
  auto* back = static_cast<d_Date*>(mgr.ConvertFrom(NxTYPE_d_Date, carrier, 1));
  const d_Date standardDay = *back;
  mgr.Delete(NxTYPE_d_Date, back, 1);
  delete carrier;

  const int32_t number = date;
  const NxDate nxDay(number);
  const int nxDayOfYear = number - static_cast<int32_t>(NxDate(date.year, 1, 1)) + 1;
  // d_Date counts Sunday as 0, NxDate Monday.
  const int standardWeekday = (standard.day_of_week() + 6) % 7;

  const std::string standardNote =
      standardValid ? "yes"
                    : (d.year == 1582 && d.month == 10 ? "no (skipped in the change of calendar)"
                                                       : "no");
  std::printf("%-16s %-22s %s\n", text.c_str(), "NxDate", "d_Date");
  std::printf("%-16s %-22s %s\n", "calendar", "Gregorian", "Julian to 1582-10-04, then Gregorian");
  std::printf("%-16s %-22s %s\n", "valid", YesNo(nxValid), standardNote.c_str());
  std::printf("%-16s %-22d %d\n", "day number", number, standardNumber);
  std::printf("%-16s %-22d %d\n", "absolute date", number, standardNumber - 1);
  std::printf("%-16s %-22s %s\n", "weekday", date.PrintDayOfTheDate().StrGet(),
              NxDate::DayName(standardWeekday).StrGet());
  std::printf("%-16s %-22d %u\n", "day of year", nxDayOfYear,
              static_cast<unsigned>(standard.day_of_year()));
  std::printf("%-16s %-22s %s\n", "counts as", DateText(nxDay.year, nxDay.month, nxDay.day).c_str(),
              DateText(standardDay.year, standardDay.month, standardDay.day).c_str());
  return 0;
}

const cli::Registrar kDateCommand({"date", "date YYYY-MM-DD",
                                   "one date through NxDate and d_Date: day numbers, weekday",
                                   RunDate, 50});

}  // namespace
