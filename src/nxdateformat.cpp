// The date format engine: every temporal type prints and scans through one
// pair of routines that work on a record of six fields laid out as an
// NxDateTime.  The other rows only fill such a record and take it back.
//
// The format language: "%Y" year, "%y" year of the century, "%m" month,
// "%B"/"%b" month name, full or three letters, "%d"/"%e" day, "%A"/"%a" day
// name, "%H" hour, "%I" hour on a 12-hour clock, "%M" minute, "%S" second,
// "%P"/"%p" AM/PM or am/pm, "%%" and "%" before anything else that
// character.  Scanning reads numbers in fields of a fixed width and passes
// over one input character for every other format character, unchecked.
#include <cctype>
#include <cstdio>
#include <cstring>
#include <string>

#include "nxclassrows.h"
#include "nxdates.h"
#include "nxrows.h"

namespace {

using nxdates::Trunc32;

NxDateTime Load(const void* value) {
  NxDateTime record(NxDate(0, 0, 0), NxTime(0, 0, 0));
  std::memcpy(static_cast<void*>(&record), value, sizeof record);
  return record;
}

void Save(void* value, const NxDateTime& record) {
  std::memcpy(value, static_cast<const void*>(&record), sizeof record);
}

// ---------------------------------------------------------------------------
// Printing.

void AppendNumber(std::string& out, const char* format, int value) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, format, value);
  out += buffer;
}

// A month name, or the number in three places outside 1 to 12.
void AppendMonthName(std::string& out, int month, bool abbreviated) {
  if (month < 1 || month > 12) {
    AppendNumber(out, "%03.3d", month);
    return;
  }
  const char* name = nxdates::kMonthNames[month - 1];
  out.append(name, abbreviated ? 3 : std::strlen(name));
}

// The day of the week as NxDate works it out, whatever class the value
// came from.
void AppendDayName(std::string& out, const NxDate& date, bool abbreviated) {
  NxString name = date.PrintDayOfTheDate();
  if (abbreviated) name.Cut(3, -1);
  out += name.StrGet();
}

}  // namespace

NxString& nxdates::EnginePrint(NxString& result, void* value, const char* format, uint32_t) {
  const NxDateTime record = Load(value);
  if (record.IsNullValue()) {
    result = NxTypeMgr::GetNullPrintString();
    return result;
  }
  if (format == nullptr) format = "";
  // Only a format with "%P" or "%p" in it reckons hours on a 12-hour clock
  // for "%I"; without, "%I" takes 12 off an hour above 12.
  const bool twelveHours = std::strstr(format, "%P") != nullptr || std::strstr(format, "%p") != nullptr;
  const int hour = record.time.hour;
  int clockHour = hour > 12 ? hour - 12 : hour;
  if (twelveHours && hour == 0) clockHour = 12;
  const bool pm = hour >= 12;

  std::string out;
  for (const char* f = format; *f != '\0'; ++f) {
    if (*f != '%') {
      out += *f;
      continue;
    }
    const char item = f[1];
    if (item == '\0') break;  // a lone "%" at the end
    ++f;
    switch (item) {
      case 'Y': AppendNumber(out, "%04.4d", record.date.year); break;
      case 'y': AppendNumber(out, "%02.2d", record.date.year % 100); break;
      case 'm': AppendNumber(out, "%02.2d", record.date.month); break;
      case 'B': AppendMonthName(out, record.date.month, false); break;
      case 'b': AppendMonthName(out, record.date.month, true); break;
      case 'd': AppendNumber(out, "%02.2d", record.date.day); break;
      case 'e': AppendNumber(out, "%2.2d", record.date.day); break;
      case 'A': AppendDayName(out, record.date, false); break;
      case 'a': AppendDayName(out, record.date, true); break;
      case 'H': AppendNumber(out, "%02.2d", hour); break;
      case 'I': AppendNumber(out, "%02.2d", clockHour); break;
      case 'M': AppendNumber(out, "%02.2d", record.time.minute); break;
      case 'S': AppendNumber(out, "%02.2d", record.time.second); break;
      case 'P': out += pm ? "PM" : "AM"; break;
      case 'p': out += pm ? "pm" : "am"; break;
      default: out += item; break;  // "%%" and "%" before anything else
    }
  }
  result << out.c_str();
  return result;
}

// ---------------------------------------------------------------------------
// Scanning.

namespace {

// The input and the place in it.  The place never passes the end.
struct Input {
  const char* text;
  size_t length;
  size_t at;

  void Pass(size_t places) { at = places < length - at ? at + places : length; }
  const char* Here() const { return text + at; }
};

// What sscanf does with "%<width>d" at the current place: blanks in front
// are passed over, then at most `width` characters of an optional sign and
// digits are read.  False, with `value` untouched, when no digit is read.
// The place does not move: the caller passes a fixed number of places.
bool ReadNumber(const Input& in, int width, int& value) {
  const char* p = in.Here();
  while (*p != '\0' && std::isspace(static_cast<unsigned char>(*p))) ++p;
  int used = 0;
  bool negative = false;
  if (*p == '+' || *p == '-') {
    negative = *p == '-';
    ++p;
    ++used;
  }
  int number = 0;
  int digits = 0;
  while (used < width && *p >= '0' && *p <= '9') {
    number = number * 10 + (*p - '0');
    ++p;
    ++used;
    ++digits;
  }
  if (digits == 0) return false;
  value = negative ? -number : number;
  return true;
}

// A number of `width` places into an 8-bit or 16-bit field.
template <typename Field>
void ScanNumber(Input& in, int width, Field& field) {
  int value = 0;
  if (ReadNumber(in, width, value)) field = static_cast<Field>(value);
  in.Pass(static_cast<size_t>(width));
}

// Looks for a name whose first three letters stand at the current place
// (case-sensitive).  On a match, passes over the input for as long as it
// spells the name from its first letter, and returns the name's index;
// otherwise -1 and the place stays.
int ScanName(Input& in, const char* const* names, int count) {
  if (in.length - in.at < 3) return -1;
  for (int i = 0; i < count; ++i) {
    if (std::strncmp(in.Here(), names[i], 3) != 0) continue;
    for (const char* n = names[i]; *n != '\0' && in.at < in.length && in.text[in.at] == *n; ++n)
      ++in.at;
    return i;
  }
  return -1;
}

}  // namespace

void* nxdates::EngineScan(void* value, NxString& text, const char* format, uint32_t) {
  if (value == nullptr) return nullptr;
  // 16-bit text is read through an 8-bit copy.
  const nxrows::EightBitText source(text);
  Input in{source.c_str(), std::strlen(source.c_str()), 0};

  if (nxrows::StartsWithNullPrintString(in.text)) {
    NxDateTime record(NxDate(0, 0, 0), NxTime(0, 0, 0));
    record.SetNullValue();
    Save(value, record);
    return value;
  }

  NxDateTime record(NxDate(0, 1, 1), NxTime(0, 0, 0));
  bool am = false;
  bool pm = false;
  if (format == nullptr) format = "";
  for (const char* f = format; *f != '\0'; ++f) {
    if (*f != '%') {
      in.Pass(1);  // any character, not compared
      continue;
    }
    const char item = f[1];
    if (item == '\0') break;  // a lone "%" at the end
    ++f;
    switch (item) {
      case 'Y': ScanNumber(in, 4, record.date.year); break;
      case 'y':
        ScanNumber(in, 2, record.date.year);
        record.date.year = static_cast<int16_t>(record.date.year + 1900);
        break;
      case 'm': ScanNumber(in, 2, record.date.month); break;
      case 'd':
      case 'e': ScanNumber(in, 2, record.date.day); break;
      case 'H':
      case 'I': ScanNumber(in, 2, record.time.hour); break;
      case 'M': ScanNumber(in, 2, record.time.minute); break;
      case 'S': ScanNumber(in, 2, record.time.second); break;
      case 'B':
      case 'b': {
        const int month = ScanName(in, nxdates::kMonthNames, 12);
        if (month >= 0)
          record.date.month = static_cast<int8_t>(month + 1);
        else
          ScanNumber(in, 3, record.date.month);
        break;
      }
      case 'A':
      case 'a': ScanName(in, nxdates::kDayNames, 7); break;  // the day found is not kept
      case 'P':
      case 'p':
        if (in.at < in.length) {
          const char c = in.text[in.at];
          if (c == 'p' || c == 'P') pm = true;
          if (c == 'a' || c == 'A') am = true;
        }
        in.Pass(2);
        break;
      default: in.Pass(1); break;  // "%%" and "%" before anything else
    }
  }
  if (pm) {
    if (record.time.hour < 12) record.time.hour = static_cast<int8_t>(record.time.hour + 12);
  } else if (am && record.time.hour == 12) {
    record.time.hour = 0;
  }

  // A record that is no date and time becomes the start record, unless all
  // six fields are 0.
  const NxDateTime& zero = NxDateTime::Null();
  const bool allZero = record.date == zero.date && record.time == zero.time;
  if (!record.IsDaTime() && !allZero) record = NxDateTime(NxDate(0, 1, 1), NxTime(0, 0, 0));
  Save(value, record);
  return value;
}

// ---------------------------------------------------------------------------
// The thin slots of the other temporal rows.

namespace {

template <typename T>
T Element(const void* value, T blank) {
  std::memcpy(static_cast<void*>(&blank), value, sizeof blank);
  return blank;
}

template <typename T>
void Store(void* value, const T& element) {
  std::memcpy(value, static_cast<const void*>(&element), sizeof element);
}

// Runs the engine's scan on a record and gives the record back.
NxDateTime ScanRecord(NxString& text, const char* format, const NxDateTime& start) {
  NxDateTime record = start;
  nxdates::EngineScan(&record, text, format, 1);
  return record;
}

// The time of a d_Time as its local hour and minute and its whole seconds.
NxTime LocalTime(const d_Time& t) {
  return NxTime(t.hour - t.zoneHour, t.minute - t.zoneMinute,
                Trunc32(t.second + t.hundredth / 100.0));
}

const NxDate kBlankDate(0, 0, 0);
const NxTime kMidnight(0, 0, 0);
const NxDate kFirstOfYearZero(0, 1, 1);

}  // namespace

// NxDate prints with the present time, NxTime with today's date: a format
// may ask for the other half.
NxString& nxdates::DatePrint(NxString& result, void* value, const char* format, uint32_t) {
  const NxDate date = Element(value, kBlankDate);
  if (date.IsNullValue()) return result = NxTypeMgr::GetNullPrintString();
  NxDateTime record(date);
  return EnginePrint(result, &record, format, 1);
}

void* nxdates::DateScan(void* value, NxString& text, const char* format, uint32_t) {
  if (value == nullptr) return nullptr;
  const NxDate date = Element(value, kBlankDate);
  Store(value, ScanRecord(text, format, NxDateTime(date, kMidnight)).date);
  return value;
}

NxString& nxdates::TimePrint(NxString& result, void* value, const char* format, uint32_t) {
  const NxTime time = Element(value, kMidnight);
  if (time.IsNullValue()) return result = NxTypeMgr::GetNullPrintString();
  NxDateTime record(time);
  return EnginePrint(result, &record, format, 1);
}

void* nxdates::TimeScan(void* value, NxString& text, const char* format, uint32_t) {
  if (value == nullptr) return nullptr;
  const NxTime time = Element(value, kMidnight);
  Store(value, ScanRecord(text, format, NxDateTime(kBlankDate, time)).time);
  return value;
}

NxString& nxdates::DDatePrint(NxString& result, void* value, const char* format, uint32_t) {
  const d_Date date = Element(value, d_Date(0, 0, 0));
  NxDateTime record(NxDate(date.year, date.month, date.day), kMidnight);
  return EnginePrint(result, &record, format, 1);
}

void* nxdates::DDateScan(void* value, NxString& text, const char* format, uint32_t) {
  if (value == nullptr) return nullptr;
  const NxDateTime record = ScanRecord(text, format, NxDateTime(kBlankDate, kMidnight));
  Store(value, d_Date(record.date));
  return value;
}

NxString& nxdates::DTimePrint(NxString& result, void* value, const char* format, uint32_t) {
  const d_Time time = Element(value, d_Time(0, 0, 0.0f));
  NxDateTime record(kFirstOfYearZero, LocalTime(time));
  return EnginePrint(result, &record, format, 1);
}

// The result has the default zone and no hundredths.
void* nxdates::DTimeScan(void* value, NxString& text, const char* format, uint32_t) {
  if (value == nullptr) return nullptr;
  const NxDateTime record = ScanRecord(text, format, NxDateTime(kBlankDate, kMidnight));
  Store(value, d_Time(record.time));
  return value;
}

NxString& nxdates::DTimestampPrint(NxString& result, void* value, const char* format, uint32_t) {
  const d_Timestamp ts = Element(value, d_Timestamp(d_Date(0, 0, 0), d_Time(0, 0, 0.0f)));
  NxDateTime record(NxDate(ts.date.year, ts.date.month, ts.date.day), LocalTime(ts.time));
  return EnginePrint(result, &record, format, 1);
}

void* nxdates::DTimestampScan(void* value, NxString& text, const char* format, uint32_t) {
  if (value == nullptr) return nullptr;
  const NxDateTime record = ScanRecord(text, format, NxDateTime(kBlankDate, kMidnight));
  Store(value, d_Timestamp(record));
  return value;
}

namespace {

// An interval as days (8 bits), hours, minutes and whole seconds.
NxDateTime IntervalRecord(const d_Interval& interval) {
  const int32_t whole = Trunc32(interval.seconds);
  const float seconds = interval.seconds - static_cast<float>(whole) + static_cast<float>(whole % 60);
  return NxDateTime(NxDate(0, 1, Trunc32(interval.seconds / 86400.0f)),
                    NxTime(whole % 86400 / 3600, whole % 3600 / 60, Trunc32(seconds)));
}

}  // namespace

NxString& nxrows::IntervalPrint(NxString& result, void* value, const char* format, uint32_t) {
  NxDateTime record = IntervalRecord(Element(value, d_Interval()));
  return nxdates::EnginePrint(result, &record, format, 1);
}

void* nxrows::IntervalScan(void* value, NxString& text, const char* format, uint32_t) {
  if (value == nullptr) return nullptr;
  const NxDateTime record = ScanRecord(text, format, IntervalRecord(Element(value, d_Interval())));
  Store(value, d_Interval(record.date.day, record.time.hour, record.time.minute,
                          static_cast<float>(record.time.second)));
  return value;
}
