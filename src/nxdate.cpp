// NxDate and NxTime, and the rows of the temporal types: NxDate, NxTime,
// NxDateTime, d_Date, d_Time, d_Timestamp, and the slots of d_Interval that
// are not the float row's.
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>

#include "nxclassrows.h"
#include "nxdates.h"
#include "nxkeyrows.h"
#include "nxrows.h"

namespace nxdates {

const char* const kMonthNames[12] = {"Januar", "Februar", "March",     "April",
                                     "May",    "June",    "July",      "August",
                                     "September", "October", "November", "December"};
const char* const kDayNames[7] = {"Monday", "Tuesday",  "Wednesday", "Thursday",
                                  "Friday", "Saturday", "Sunday"};

}  // namespace nxdates

namespace {

using nxdates::Wrap32;

// The null values, constant-initialised: complete before any code runs.
constexpr NxDate kNullDate(-32768, -128, -128);
constexpr NxTime kNullTime(-128, -128, -128);

// The Fliegel and Van Flandern day number of a date, on plain integers so
// that a month of 13 (the next January) needs no narrowing.  With fields of
// 16 and 8 bits no step leaves 32 bits.
int32_t DayNumber(int32_t year, int32_t month, int32_t day) {
  const int32_t t = (month - 14) / 12;
  const int32_t a = year + t + 4800;
  const int32_t s = a * 1461 / 4 + day - 32075;
  const int32_t u = month - t * 12 - 2;
  return u * 367 / 12 + s - (a + 100) / 100 * 3 / 4;
}

}  // namespace

// ---------------------------------------------------------------------------
// NxDate.

NxDate::NxDate() : year(0), month(0), day(0) {
  Today();
}

NxDate::NxDate(int32_t dayNumber) : year(0), month(0), day(0) {
  dateabs(dayNumber);
}

NxDate& NxDate::Today() {
  bdate today{};
  nxsgetdate(&today);
  year = today.year;
  month = static_cast<int8_t>(today.month);
  day = static_cast<int8_t>(today.day);
  return *this;
}

int32_t NxDate::divide(int32_t a, int32_t b) {
  if (b == 0) return 0;
  if (b == -1) return Wrap32(-static_cast<int64_t>(a));
  return a / b;
}

int32_t NxDate::modulo(int32_t a, int32_t b) {
  if (b == 0) return 0;
  const int64_t r = std::llabs(a) % std::llabs(b);
  return static_cast<int32_t>(((a < 0) != (b < 0)) ? -r : r);
}

int32_t NxDate::dayabs() const {
  return DayNumber(year, month, day);
}

// Every step in 32 bits, wrapping as a 32-bit machine does, so that any day
// number gives some date and none gives undefined behaviour.
void NxDate::dateabs(int32_t j) {
  int32_t b = Wrap32(int64_t{j} + 68569);
  const int32_t a = divide(Wrap32(int64_t{b} * 4), 146097);
  b = Wrap32(int64_t{b} - divide(Wrap32(int64_t{a} * 146097 + 3), 4));
  const int32_t c = divide(Wrap32((int64_t{b} * 5 + 5) * 800), 1461001);
  const int32_t e = Wrap32(int64_t{b} + 31 - divide(Wrap32(int64_t{c} * 1461), 4));
  const int8_t m = static_cast<int8_t>(divide(Wrap32(int64_t{e} * 80), 2447));
  day = static_cast<int8_t>(e - divide(m * 2447, 80));
  const int32_t q = divide(m, 11);
  month = static_cast<int8_t>(m + 2 - q * 12);
  year = static_cast<int16_t>(Wrap32(q + (int64_t{a} * 5 - 245) * 20 + c));
}

int32_t NxDate::daynxtmonth() const {
  return DayNumber(year, month + 1, 1) - dayabs();
}

NxDate NxDate::operator+(int32_t days) const {
  return NxDate(Wrap32(int64_t{dayabs()} + days));
}

NxDate NxDate::operator-(int32_t days) const {
  return NxDate(Wrap32(int64_t{dayabs()} - days));
}

int32_t NxDate::operator-(const NxDate& other) const {
  return dayabs() - other.dayabs();
}

NxDate& NxDate::operator++() {
  return *this = *this + 1;
}

NxDate& NxDate::operator--() {
  return *this = *this - 1;
}

NxDate& NxDate::operator+=(int32_t days) {
  return *this = *this + days;
}

NxDate& NxDate::operator-=(int32_t days) {
  return *this = *this - days;
}

int NxDate::operator==(const NxDate& other) const {
  return year == other.year && month == other.month && day == other.day;
}

int NxDate::operator!=(const NxDate& other) const {
  const int mine[3] = {year, month, day};
  const int theirs[3] = {other.year, other.month, other.day};
  for (int i = 0; i < 3; ++i) {
    if (mine[i] == -1 || theirs[i] == -1) continue;
    if (mine[i] != theirs[i]) return mine[i] - theirs[i];
  }
  return 0;
}

int NxDate::IsDate() const {
  return day >= 1 && day <= 31 && month >= 1 && month <= 12 && daynxtmonth() > 0;
}

int NxDate::IsLastDayOfTheMonth() const {
  return daynxtmonth() == 1;
}

// A congruence of Zeller's kind on the fields, with March as month 1.
NxDaysOfTheWeek NxDate::DayOfTheDate() const {
  const int32_t v = year + divide(month - 14, 12);
  const int32_t w = (month + 10) - divide(month + 10, 13) * 12;
  const int32_t century = divide(v, 100);
  const int32_t n = divide(w * 13 - 1, 5) + divide((v - century * 100) * 5, 4) + day -
                    century * 2 + divide(v, 400);
  const int32_t r = modulo(n + 77, 7);
  if (r <= 0) return NxSunday;
  return static_cast<NxDaysOfTheWeek>(r - 1);
}

NxString NxDate::DayName(int dayOfWeek) {
  if (dayOfWeek < 0 || dayOfWeek > 6) return NxString("no day");
  return NxString(nxdates::kDayNames[dayOfWeek]);
}

NxString NxDate::PrintDayOfTheDate() const {
  return DayName(DayOfTheDate());
}

NxString& NxDate::PrintToNxString(NxString& result, const char* format) {
  return nxdates::DatePrint(result, this, format != nullptr ? format : "%Y-%m-%d", 1);
}

NxDate& NxDate::ScanFromNxString(NxString& input, const char* format) {
  nxdates::DateScan(this, input, format != nullptr ? format : "%Y-%m-%d", 1);
  return *this;
}

int NxDate::IsNullValue() const {
  return *this == kNullDate;
}

int NxDate::SetNullValue() {
  *this = kNullDate;
  return 0;
}

// ---------------------------------------------------------------------------
// NxTime.  The arithmetic works in the 8-bit fields of a copy.

namespace {

int8_t Narrow(int32_t value) {
  return static_cast<int8_t>(value);
}

}  // namespace

NxTime::NxTime() : hour(0), minute(0), second(0) {
  Now();
}

NxTime::NxTime(int32_t seconds)
    : hour(Narrow(seconds / 3600)), minute(Narrow(seconds % 3600 / 60)), second(Narrow(seconds % 60)) {}

NxTime& NxTime::Now() {
  btime now{};
  nxsgettime(&now);
  hour = static_cast<int8_t>(now.hour);
  minute = static_cast<int8_t>(now.minute);
  second = static_cast<int8_t>(now.second);
  return *this;
}

NxTime::operator int32_t() const {
  return (hour * 60 + minute) * 60 + second;
}

// A second or minute of 60 and more carries once; an hour of 24 and more
// goes round the clock.
void NxTime::CarryUp() {
  if (second >= 60) {
    second = Narrow(second - 60);
    minute = Narrow(minute + 1);
  }
  if (minute >= 60) {
    minute = Narrow(minute - 60);
    hour = Narrow(hour + 1);
  }
  if (hour >= 24) hour = Narrow(hour % 24);
}

// A negative second or minute borrows once, and a negative hour gains one
// day, once: more than a day back leaves the hour negative.
void NxTime::BorrowDown() {
  if (second < 0) {
    second = Narrow(second + 60);
    minute = Narrow(minute - 1);
  }
  if (minute < 0) {
    minute = Narrow(minute + 60);
    hour = Narrow(hour - 1);
  }
  if (hour < 0) hour = Narrow(hour + 24);
}

NxTime NxTime::operator+(int32_t seconds) const {
  const int32_t mins = seconds / 60;
  const int32_t hours = mins / 60;
  NxTime r = *this;
  r.hour = Narrow(r.hour + hours);
  r.minute = Narrow(r.minute + (mins - hours * 60));
  r.second = Narrow(r.second + seconds % 60);
  r.CarryUp();
  return r;
}

NxTime NxTime::operator-(int32_t seconds) const {
  const int32_t mins = seconds / 60;
  const int32_t hours = mins / 60;
  NxTime r = *this;
  r.hour = Narrow(r.hour - hours);
  r.minute = Narrow(r.minute - (mins - hours * 60));
  r.second = Narrow(r.second - seconds % 60);
  r.BorrowDown();
  return r;
}

NxTime NxTime::operator-(const NxTime& other) const {
  NxTime r(Narrow(hour - other.hour), Narrow(minute - other.minute), Narrow(second - other.second));
  r.BorrowDown();
  return r;
}

NxTime& NxTime::operator++() {
  return *this = *this + 1;
}

NxTime& NxTime::operator--() {
  return *this = *this - 1;
}

NxTime& NxTime::operator+=(int32_t seconds) {
  return *this = *this + seconds;
}

NxTime& NxTime::operator-=(int32_t seconds) {
  return *this = *this - seconds;
}

int NxTime::operator==(const NxTime& other) const {
  return hour == other.hour && minute == other.minute && second == other.second;
}

int NxTime::operator!=(const NxTime& other) const {
  if (hour != other.hour) return hour < other.hour ? -1 : 1;
  if (minute != other.minute) return minute < other.minute ? -1 : 1;
  if (second != other.second) return second < other.second ? -1 : 1;
  return 0;
}

int NxTime::IsTime() const {
  return hour >= 0 && hour <= 23 && minute >= 0 && minute <= 59 && second >= 0 && second <= 59;
}

NxString& NxTime::PrintToNxString(NxString& result, const char* format) {
  return nxdates::TimePrint(result, this, format != nullptr ? format : "%H:%M:%S", 1);
}

NxTime& NxTime::ScanFromNxString(NxString& input, const char* format) {
  nxdates::TimeScan(this, input, format != nullptr ? format : "%H:%M:%S", 1);
  return *this;
}

int NxTime::IsNullValue() const {
  return *this == kNullTime;
}

int NxTime::SetNullValue() {
  *this = kNullTime;
  return 0;
}

// ---------------------------------------------------------------------------
// The rows.  Elements are reached through memcpy, so a caller's array needs
// no alignment beyond bytes: NxTime steps by 3.

namespace {

using nxrows::kArrayHeader;

static_assert(sizeof(NxDate) == 4 && sizeof(NxTime) == 3 && sizeof(NxDateTime) == 8,
              "memory lengths of the NxDate, NxTime and NxDateTime rows");
static_assert(sizeof(d_Date) == 4 && sizeof(d_Time) == 6 && sizeof(d_Timestamp) == 10 &&
                  sizeof(d_Interval) == 4,
              "memory lengths of the standard date rows");
static_assert(std::is_trivially_destructible<NxDate>::value &&
                  std::is_trivially_destructible<NxTime>::value &&
                  std::is_trivially_destructible<NxDateTime>::value &&
                  std::is_trivially_destructible<d_Date>::value &&
                  std::is_trivially_destructible<d_Time>::value &&
                  std::is_trivially_destructible<d_Timestamp>::value &&
                  std::is_trivially_destructible<d_Interval>::value,
              "the elements of the date rows need no destruction");

// A value to copy element bytes into, made without reading the clock.
NxDate Blank(const NxDate*) {
  return NxDate(0, 0, 0);
}
NxTime Blank(const NxTime*) {
  return NxTime(0, 0, 0);
}
NxDateTime Blank(const NxDateTime*) {
  return NxDateTime(NxDate(0, 0, 0), NxTime(0, 0, 0));
}
d_Date Blank(const d_Date*) {
  return d_Date(0, 0, 0);
}
d_Time Blank(const d_Time*) {
  return d_Time(0, 0, 0.0f);
}
d_Timestamp Blank(const d_Timestamp*) {
  return d_Timestamp(d_Date(0, 0, 0), d_Time(0, 0, 0.0f));
}
d_Interval Blank(const d_Interval*) {
  return d_Interval();
}

template <typename T>
T Get(const void* base, uint32_t i) {
  T value = Blank(static_cast<const T*>(nullptr));
  std::memcpy(static_cast<void*>(&value),
              static_cast<const unsigned char*>(base) + size_t{i} * sizeof(T), sizeof(T));
  return value;
}

template <typename T>
void Put(void* base, uint32_t i, const T& value) {
  std::memcpy(static_cast<unsigned char*>(base) + size_t{i} * sizeof(T), static_cast<const void*>(&value),
              sizeof(T));
}

// One element with no count in front for a count of 0 or 1; otherwise a
// hidden 32-bit count and `count` elements.  Every element is
// default-constructed, so it reads the clock.
template <typename T>
constexpr NxCreateFunc ClassCreate = nxrows::ObjectArrayCreate<T>;
template <typename T>
constexpr NxDeleteFunc ClassDelete = nxrows::ObjectArrayDelete<T>;

template <typename T>
void ClassConstructor(void* memory, uint32_t count, uint32_t) {
  if (memory == nullptr) return;
  for (uint32_t i = 0; i < count; ++i) Put(memory, i, T());
}

// Assignment and Copy are field copies in every temporal class.
template <typename T>
void ClassAssignment(void* destination, void* source, uint32_t count, int broadcast) {
  unsigned char* d = static_cast<unsigned char*>(destination);
  const unsigned char* s = static_cast<const unsigned char*>(source);
  for (uint32_t i = 0; i < count; ++i)
    std::memmove(d + size_t{i} * sizeof(T), broadcast ? s : s + size_t{i} * sizeof(T), sizeof(T));
}

// Disk forms.  The 16-bit year goes through ShortStore in the byte order of
// the format's low four bits; every other field is a byte.

uint32_t MoveDate(void* to, const void* from, bool store, unsigned char format) {
  unsigned char* disk = static_cast<unsigned char*>(store ? to : const_cast<void*>(from));
  unsigned char* memory = static_cast<unsigned char*>(store ? const_cast<void*>(from) : to);
  const unsigned char f = format & 0x0F;
  uint32_t n = store ? ShortStore(disk, memory, f, 1) : ShortStore(memory, disk, f, 1);
  n += store ? CharStore(disk + 2, memory + 2, f, 2) : CharStore(memory + 2, disk + 2, f, 2);
  return n;
}

uint32_t MoveBytes(void* to, const void* from, unsigned char format, uint32_t bytes) {
  return CharStore(to, from, static_cast<unsigned char>(format & 0x0F), bytes);
}

// One element of each type, disk to memory (store false) or memory to disk.
uint32_t MoveDateElement(void* to, const void* from, bool store, unsigned char format) {
  return MoveDate(to, from, store, format);
}
uint32_t MoveTimeElement(void* to, const void* from, bool, unsigned char format) {
  return MoveBytes(to, from, format, 3);
}
// Seven bytes on disk: the memory form's byte of padding stays behind.
uint32_t MoveDateTimeElement(void* to, const void* from, bool store, unsigned char format) {
  const uint32_t n = MoveDate(to, from, store, format);
  return n + MoveBytes(static_cast<unsigned char*>(to) + 4, static_cast<const unsigned char*>(from) + 4,
                       format, 3);
}
uint32_t MoveDTimeElement(void* to, const void* from, bool, unsigned char format) {
  return MoveBytes(to, from, format, 6);
}
uint32_t MoveDTimestampElement(void* to, const void* from, bool store, unsigned char format) {
  const uint32_t n = MoveDate(to, from, store, format);
  return n + MoveBytes(static_cast<unsigned char*>(to) + 4, static_cast<const unsigned char*>(from) + 4,
                       format, 6);
}

using MoveFunc = uint32_t (*)(void*, const void*, bool, unsigned char);

template <unsigned short MemLen, unsigned short DiskLen, MoveFunc Move>
uint32_t RowStore(void* disk, const void* memory, unsigned char format, uint32_t count) {
  uint32_t written = 0;
  for (uint32_t i = 0; i < count; ++i)
    written += Move(static_cast<unsigned char*>(disk) + size_t{i} * DiskLen,
                    static_cast<const unsigned char*>(memory) + size_t{i} * MemLen, true, format);
  return written;
}

template <unsigned short MemLen, unsigned short DiskLen, MoveFunc Move>
uint32_t RowLoad(void* memory, const void* disk, unsigned char format, uint32_t count) {
  uint32_t read = 0;
  for (uint32_t i = 0; i < count; ++i)
    read += Move(static_cast<unsigned char*>(memory) + size_t{i} * MemLen,
                 static_cast<const unsigned char*>(disk) + size_t{i} * DiskLen, false, format);
  return read;
}

// ---------------------------------------------------------------------------
// Conversions.  The text form is numeric: day numbers and second counts.

NxString NumberText(int32_t n) {
  return NxString(static_cast<long>(n));
}

int32_t TextNumber(const NxString& text) {
  return static_cast<int32_t>(static_cast<long>(text));
}

// ConvertTo: string i takes the text of element i, appended to a default
// string; `text` returns false for a null element, which gets the null
// string.
template <typename T, bool (*Text)(const T&, NxString&)>
NxTypeConvertData* RowConvertTo(void* value, uint32_t count) {
  return nxrows::ToStrings(nxrows::stringRow.Create, nxrows::stringRow.Delete, count,
                           [value](NxString& string, uint32_t i) {
                             if (!Text(Get<T>(value, i), string)) string.SetNullValue();
                           });
}

// ConvertFrom: element i from string i; a missing or null string gives the
// row's missing value.
template <typename T, T (*Missing)(), T (*Value)(NxString&)>
void* RowConvertFrom(NxTypeConvertData* data, uint32_t count) {
  void* result = ClassCreate<T>(count);
  if (result == nullptr || count == 0) return result;
  for (uint32_t i = 0; i < count; ++i) {
    NxString* s = nxrows::GivenString(data, i);
    Put(result, i, s == nullptr ? Missing() : Value(*s));
  }
  return result;
}

// The place of the first ":" in 8-bit or 16-bit text, or -1.
int FindColon(const NxString& text) {
  const char* p = text.StrGet();
  const bool wide = text.codeSet > 224;
  for (int k = 0, n = text.Len(); k < n; ++k) {
    unsigned short unit = static_cast<unsigned char>(p[k]);
    if (wide) std::memcpy(&unit, p + 2 * k, 2);
    if (unit == ':') return k;
  }
  return -1;
}

// "day:seconds".  The day number ends at the ":", where the number reader
// stops; a ":" at the start means no date (all fields 0), and the seconds
// are read from what stands behind the ":".  The carrier's string is left as
// it is: the seconds come from a copy.
template <typename T, typename MakeDate, typename MakeTime>
T DayAndSeconds(NxString& text, const T& start, MakeDate makeDate, MakeTime makeTime) {
  T value = start;
  makeDate(value, TextNumber(text), true);
  const int colon = FindColon(text);
  if (colon < 0) return value;
  if (colon == 0) makeDate(value, 0, false);
  NxString rest = text.Copy(static_cast<unsigned short>(colon + 1), -1);
  if (rest.Len() != 0) makeTime(value, TextNumber(rest));
  return value;
}

// NxDate and NxTime: the numbers of operator long.
bool DateText(const NxDate& d, NxString& s) {
  if (d.IsNullValue()) return false;
  s += NumberText(d);
  return true;
}
NxDate DateMissing() {
  return kNullDate;
}
NxDate DateValue(NxString& s) {
  return NxDate(TextNumber(s));
}

bool TimeText(const NxTime& t, NxString& s) {
  if (t.IsNullValue()) return false;
  s += NumberText(t);
  return true;
}
NxTime TimeMissing() {
  return kNullTime;
}
NxTime TimeValue(NxString& s) {
  return NxTime(TextNumber(s));
}

bool DateTimeText(const NxDateTime& v, NxString& s) {
  if (v.IsNullValue()) return false;
  s += NumberText(v.date);
  s << ":";
  s += NumberText(v.time);
  return true;
}
NxDateTime DateTimeMissing() {
  return NxDateTime(kNullDate, kNullTime);
}
NxDateTime DateTimeValue(NxString& s) {
  return DayAndSeconds(
      s, NxDateTime(NxDate(0, 0, 0), NxTime(0)),
      [](NxDateTime& v, int32_t n, bool present) { v.date = present ? NxDate(n) : NxDate(0, 0, 0); },
      [](NxDateTime& v, int32_t n) { v.time = NxTime(n); });
}

// d_Date: the absolute date plus 1, the Julian Day Number of its calendar.
bool DDateText(const d_Date& d, NxString& s) {
  s += NumberText(Wrap32(int64_t{d_DateAccess::Get(d)} + 1));
  return true;
}
d_Date DDateMissing() {
  return d_Date(0, 0, 0);
}
d_Date DDateFromNumber(int32_t n) {
  d_Date d(0, 1, 1);
  d_DateAccess::Set(d, Wrap32(int64_t{n} - 1));
  return d;
}
d_Date DDateValue(NxString& s) {
  return DDateFromNumber(TextNumber(s));
}

// d_Time: local seconds since midnight.
int32_t LocalSeconds(const d_Time& t) {
  return ((t.hour - t.zoneHour) * 60 + t.minute - t.zoneMinute) * 60 + t.second;
}
bool DTimeText(const d_Time& t, NxString& s) {
  s += NumberText(LocalSeconds(t));
  return true;
}
d_Time DTimeMissing() {
  return d_Time(0, 0, 0.0f);
}
d_Time DTimeValue(NxString& s) {
  return d_Time(TextNumber(s));
}

bool DTimestampText(const d_Timestamp& v, NxString& s) {
  DDateText(v.date, s);
  s << ":";
  s += NumberText(LocalSeconds(v.time));
  return true;
}
d_Timestamp DTimestampMissing() {
  return d_Timestamp(d_Date(0, 0, 0), d_Time(0, 0, 0.0f));
}
d_Timestamp DTimestampValue(NxString& s) {
  return DayAndSeconds(
      s, DTimestampMissing(),
      [](d_Timestamp& v, int32_t n, bool present) {
        v.date = present ? DDateFromNumber(n) : d_Date(0, 0, 0);
      },
      [](d_Timestamp& v, int32_t n) { v.time = d_Time(n); });
}

bool IntervalText(const d_Interval& v, NxString& s) {
  s += NumberText(nxdates::Trunc32(v.seconds));
  return true;
}
d_Interval IntervalMissing() {
  return d_Interval();
}
d_Interval IntervalValue(NxString& s) {
  d_Interval v;
  v.seconds = static_cast<float>(TextNumber(s));
  return v;
}

// Defaults.  The types with a null value give null elements on request;
// otherwise every row gives what its ConvertFrom makes of empty strings.
template <typename T, NxConvertFromFunc ConvertFrom>
void* RowDefault(uint32_t count, int null) {
  if (null == 0) return nxrows::DefaultFromEmptyStrings(ConvertFrom, count);
  void* result = ClassCreate<T>(count);
  if (result == nullptr) return nullptr;
  for (uint32_t i = 0; i < count; ++i) {
    T v = Get<T>(result, i);
    v.SetNullValue();
    Put(result, i, v);
  }
  return result;
}

template <typename T, NxConvertFromFunc ConvertFrom>
void* RowDefaultNoNull(uint32_t count, int) {
  return nxrows::DefaultFromEmptyStrings(ConvertFrom, count);
}

template <typename T>
int RowIsNull(void* value) {
  return Get<T>(value, 0).IsNullValue();
}

template <typename T>
int RowSetNull(void* value) {
  T v = Get<T>(value, 0);
  const int status = v.SetNullValue();
  Put(value, 0, v);
  return status;
}

// The slots of one temporal row.
struct TemporalSet {
  NxCreateFunc create;
  NxDeleteFunc del;
  NxStoreFunc store;
  NxLoadFunc load;
  NxNullSizeGetFunc nullSizeGet;
  NxSizeGetFunc sizeGet;
  NxSizeGetFromMemFileFunc sizeGetFromMemFile;
  NxConvertToFunc convertTo;
  NxConvertFromFunc convertFrom;
  NxConstructorFunc constructor;
  NxAssignmentFunc assignment;
  NxTranslateFunc translate;
  NxIsNullFunc isNull;
  NxSetNullFunc setNull;
  NxPrintToNxStringFunc print;
  NxScanFromNxStringFunc scan;
  NxDefaultValueFunc defaultValue;
};

template <typename T, unsigned short DiskLen, MoveFunc Move, bool (*Text)(const T&, NxString&),
          T (*Missing)(), T (*Value)(NxString&)>
struct Temporal {
  static constexpr unsigned short kMemLen = sizeof(T);
  static constexpr NxStoreFunc kStore = RowStore<kMemLen, DiskLen, Move>;
  static constexpr NxLoadFunc kLoad = RowLoad<kMemLen, DiskLen, Move>;
  static constexpr NxConvertFromFunc kConvertFrom = RowConvertFrom<T, Missing, Value>;
  static constexpr TemporalSet Set(NxIsNullFunc isNull, NxSetNullFunc setNull,
                                   NxPrintToNxStringFunc print, NxScanFromNxStringFunc scan,
                                   NxDefaultValueFunc defaultValue) {
    return TemporalSet{ClassCreate<T>,
                       ClassDelete<T>,
                       kStore,
                       kLoad,
                       nxrows::FixedNullSizeGet<DiskLen>,
                       nxrows::FixedSizeGet<DiskLen>,
                       nxrows::FixedSizeGetFromMemFile<DiskLen>,
                       RowConvertTo<T, Text>,
                       kConvertFrom,
                       ClassConstructor<T>,
                       ClassAssignment<T>,
                       nxrows::RecordTranslate<kLoad, kStore, nxrows::MoveBytes<kMemLen>>,
                       isNull,
                       setNull,
                       print,
                       scan,
                       defaultValue};
  }
  static constexpr TemporalSet WithNull(NxPrintToNxStringFunc print, NxScanFromNxStringFunc scan) {
    return Set(RowIsNull<T>, RowSetNull<T>, print, scan, RowDefault<T, kConvertFrom>);
  }
  static constexpr TemporalSet WithoutNull(NxPrintToNxStringFunc print,
                                           NxScanFromNxStringFunc scan) {
    return Set(nxrows::NeverNull, nullptr, print, scan, RowDefaultNoNull<T, kConvertFrom>);
  }
};

using DateSlots = Temporal<NxDate, 4, MoveDateElement, DateText, DateMissing, DateValue>;
using TimeSlots = Temporal<NxTime, 3, MoveTimeElement, TimeText, TimeMissing, TimeValue>;
using DateTimeSlots = Temporal<NxDateTime, 7, MoveDateTimeElement, DateTimeText, DateTimeMissing,
                               DateTimeValue>;
using DDateSlots = Temporal<d_Date, 4, MoveDateElement, DDateText, DDateMissing, DDateValue>;
using DTimeSlots = Temporal<d_Time, 6, MoveDTimeElement, DTimeText, DTimeMissing, DTimeValue>;
using DTimestampSlots = Temporal<d_Timestamp, 10, MoveDTimestampElement, DTimestampText,
                                 DTimestampMissing, DTimestampValue>;

constexpr NxTypeDesc TemporalRow(const char* name, unsigned short memLen, const char* format,
                                 const TemporalSet& set, NxTypeCmpFunc compare) {
  NxTypeDesc row = nxrows::IllegalLike(name, memLen, 1, format);
  row.Compare = compare;
  row.Create = set.create;
  row.Delete = set.del;
  row.Store = set.store;
  row.Load = set.load;
  row.NullSizeGet = set.nullSizeGet;
  row.SizeGet = set.sizeGet;
  row.SizeGetFromMemFile = set.sizeGetFromMemFile;
  row.EvalAndBound = nxrows::TemporalEvalAndBound(name);
  row.Hash = nxrows::TemporalHash(name);
  row.ConvertTo = set.convertTo;
  row.ConvertFrom = set.convertFrom;
  row.Constructor = set.constructor;
  row.Destructor = nxrows::NoDestructor;
  row.Assignment = set.assignment;
  row.Copy = set.assignment;
  row.Translate = set.translate;
  row.IsNull = set.isNull;
  row.SetNull = set.setNull;
  row.PrintToString = set.print;
  row.ScanFromString = set.scan;
  row.DefaultValue = set.defaultValue;
  return row;
}

// d_Interval: four bytes of float through FloatStore.
uint32_t IntervalMove(void* to, const void* from, unsigned char format, uint32_t count) {
  return FloatStore(to, from, static_cast<unsigned char>(format & 0x0F), count);
}

}  // namespace

namespace nxrows {

NxTypeDesc dateRow =
    TemporalRow("NxDate", 4, "%a %e.%b %Y",
                DateSlots::WithNull(nxdates::DatePrint, nxdates::DateScan), DateCompare);
NxTypeDesc timeRow =
    TemporalRow("NxTime", 3, "%I:%M:%S %p",
                TimeSlots::WithNull(nxdates::TimePrint, nxdates::TimeScan), TimeCompare);
NxTypeDesc dateTimeRow =
    TemporalRow("NxDateTime", 8, "%a %e.%b %Y %I:%M:%S %p",
                DateTimeSlots::WithNull(nxdates::EnginePrint, nxdates::EngineScan), DaTimeCompare);
NxTypeDesc dDateRow =
    TemporalRow("d_Date", 4, "%a %b %e",
                DDateSlots::WithoutNull(nxdates::DDatePrint, nxdates::DDateScan), d_DateCompare);
NxTypeDesc dTimeRow =
    TemporalRow("d_Time", 6, "%I:%M:%S %p",
                DTimeSlots::WithoutNull(nxdates::DTimePrint, nxdates::DTimeScan), d_TimeCompare);
NxTypeDesc dTimestampRow =
    TemporalRow("d_Timestamp", 10, "%a %b %e %I:%M:%S %p",
                DTimestampSlots::WithoutNull(nxdates::DTimestampPrint, nxdates::DTimestampScan),
                d_TimestampCompare);

// The slots of d_Interval that are its own (the float row lends the rest).
void* IntervalCreate(uint32_t count) {
  return ClassCreate<d_Interval>(count);
}
void* IntervalDelete(void* value, uint32_t count) {
  return ClassDelete<d_Interval>(value, count);
}
uint32_t IntervalStore(void* disk, const void* memory, unsigned char format, uint32_t count) {
  return IntervalMove(disk, memory, format, count);
}
uint32_t IntervalLoad(void* memory, const void* disk, unsigned char format, uint32_t count) {
  return IntervalMove(memory, disk, format, count);
}
NxTypeConvertData* IntervalConvertTo(void* value, uint32_t count) {
  return RowConvertTo<d_Interval, IntervalText>(value, count);
}
void* IntervalConvertFrom(NxTypeConvertData* data, uint32_t count) {
  return RowConvertFrom<d_Interval, IntervalMissing, IntervalValue>(data, count);
}
void IntervalConstructor(void* memory, uint32_t count, uint32_t) {
  ClassConstructor<d_Interval>(memory, count, 0);
}
void IntervalDestructor(void*, uint32_t, uint32_t) {}
void IntervalAssignment(void* destination, void* source, uint32_t count, int broadcast) {
  ClassAssignment<d_Interval>(destination, source, count, broadcast);
}
void* IntervalDefault(uint32_t count, int) {
  return DefaultFromEmptyStrings(IntervalConvertFrom, count);
}

}  // namespace nxrows
