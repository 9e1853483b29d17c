// The clock: UTC from the system or from a fixed instant, local time as UTC
// plus the zone offset.  Calendar arithmetic is done here, on the proleptic
// Gregorian calendar, so a fixed instant gives the same answer everywhere.
#include <nxbs/nxbs.h>

#include <atomic>
#include <ctime>

namespace {

// The seam.  `fixedZone` and `fixedNow` are written before `fixed` is set.
std::atomic<bool> fixed{false};
std::atomic<int64_t> fixedNow{0};
std::atomic<int32_t> fixedZone{0};

constexpr int64_t kMillisPerSecond = 1000;
constexpr int64_t kSecondsPerDay = 86400;

int64_t FloorDiv(int64_t a, int64_t b) {
  int64_t q = a / b;
  if ((a % b != 0) && ((a < 0) != (b < 0))) --q;
  return q;
}

struct Civil {
  int64_t year;
  unsigned month;
  unsigned day;
  unsigned hour;
  unsigned minute;
  unsigned second;
};

// Days since 1970-01-01 to year, month, day.
void CivilFromDays(int64_t days, Civil* civil) {
  days += 719468;  // days from 0000-03-01 to 1970-01-01
  const int64_t era = FloorDiv(days, 146097);
  const int64_t dayOfEra = days - era * 146097;  // [0, 146096]
  const int64_t yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;  // [0, 399]
  const int64_t dayOfYear =
      dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);  // [0, 365]
  const int64_t shiftedMonth = (5 * dayOfYear + 2) / 153;              // March is 0
  civil->day = static_cast<unsigned>(dayOfYear - (153 * shiftedMonth + 2) / 5 + 1);
  civil->month = static_cast<unsigned>(shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9);
  civil->year = yearOfEra + era * 400 + (civil->month <= 2 ? 1 : 0);
}

Civil CivilFromSeconds(int64_t seconds) {
  Civil civil{};
  const int64_t days = FloorDiv(seconds, kSecondsPerDay);
  const int64_t ofDay = seconds - days * kSecondsPerDay;
  CivilFromDays(days, &civil);
  civil.hour = static_cast<unsigned>(ofDay / 3600);
  civil.minute = static_cast<unsigned>(ofDay / 60 % 60);
  civil.second = static_cast<unsigned>(ofDay % 60);
  return civil;
}

int64_t SystemMilliseconds() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return static_cast<int64_t>(now.tv_sec) * kMillisPerSecond + now.tv_nsec / 1000000;
}

// One reading of the clock: the UTC second and the local offset in seconds,
// or `known` false when the zone can't be told.
struct Reading {
  int64_t utcSeconds;
  int32_t zoneSeconds;
  bool known;
};

Reading Read() {
  Reading reading{};
  if (fixed.load()) {
    const int32_t zone = fixedZone.load();
    reading.utcSeconds = FloorDiv(fixedNow.load(), kMillisPerSecond);
    reading.known = zone != NxZONE_UNKNOWN;
    reading.zoneSeconds = reading.known ? zone * 60 : 0;
    return reading;
  }
  reading.utcSeconds = FloorDiv(SystemMilliseconds(), kMillisPerSecond);
  const time_t t = static_cast<time_t>(reading.utcSeconds);
  tm local{};
  reading.known = localtime_r(&t, &local) != nullptr;
  reading.zoneSeconds = reading.known ? static_cast<int32_t>(local.tm_gmtoff) : 0;
  return reading;
}

void FillDate(const Civil& civil, bdate* date) {
  date->year = static_cast<int16_t>(civil.year);
  date->month = static_cast<uint8_t>(civil.month);
  date->day = static_cast<uint8_t>(civil.day);
}

void FillTime(const Civil& civil, int32_t zoneSeconds, btime* time) {
  time->hour = static_cast<uint8_t>(civil.hour);
  time->minute = static_cast<uint8_t>(civil.minute);
  time->second = static_cast<uint8_t>(civil.second);
  time->zone = zoneSeconds;
}

}  // namespace

void nxsgetdate(bdate* date) {
  if (date == nullptr) return;
  const Reading now = Read();
  FillDate(CivilFromSeconds(now.utcSeconds + now.zoneSeconds), date);
}

void nxsgettime(btime* time) {
  if (time == nullptr) return;
  const Reading now = Read();
  FillTime(CivilFromSeconds(now.utcSeconds + now.zoneSeconds), now.zoneSeconds, time);
}

void nxsgetsystemtime(btime* time, bdate* date) {
  const Civil civil = CivilFromSeconds(Read().utcSeconds);
  if (time != nullptr) FillTime(civil, 0, time);
  if (date != nullptr) FillDate(civil, date);
}

int32_t nxsgettimezone() {
  const Reading now = Read();
  if (!now.known) return NxZONE_UNKNOWN;
  return now.zoneSeconds / 60;
}

void NxClockFix(int64_t utcMilliseconds, int32_t zoneMinutes) {
  fixedNow.store(utcMilliseconds);
  fixedZone.store(zoneMinutes);
  fixed.store(true);
}

void NxClockRelease() {
  fixed.store(false);
}

int64_t NxClockNowMilliseconds() {
  return fixed.load() ? fixedNow.load() : SystemMilliseconds();
}
