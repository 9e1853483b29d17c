// Internal declarations of the date family, shared by nxdate.cpp (NxDate,
// NxTime and the rows), nxdatetime.cpp, nxdclasses.cpp and nxdateformat.cpp.
// Not installed.
#ifndef NXTM_SRC_NXDATES_H
#define NXTM_SRC_NXDATES_H

#include <cmath>
#include <cstdint>

#include <nxtm/nxtm.h>

// The private absolute date of d_Date, for the rows and the free operators.
struct d_DateAccess {
  static int32_t Get(const d_Date& date) { return date.getAbsDate(); }
  static void Set(d_Date& date, int32_t absDate) { date.setAbsDate(absDate); }
};

namespace nxdates {

// A 64-bit intermediate cut to 32 bits, as a 32-bit machine's arithmetic
// wraps.
inline int32_t Wrap32(int64_t value) {
  return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint64_t>(value)));
}

// A real cut toward zero to a 32-bit integer.  Values beyond the range stop
// at its ends and NaN gives 0, where the plain conversion would be undefined.
inline int32_t Trunc32(double value) {
  if (std::isnan(value)) return 0;
  if (value >= 2147483647.0) return INT32_MAX;
  if (value <= -2147483648.0) return INT32_MIN;
  return static_cast<int32_t>(value);
}

// The name tables: months from January, days from Monday.
extern const char* const kMonthNames[12];
extern const char* const kDayNames[7];

// The default zone of d_Time, in whole hours, read as its low 8 bits.
int8_t DefaultZone();

// The format engine: the print and scan slots of the NxDateTime row, on a
// record laid out as an NxDateTime.  Print appends to `result` (a null record
// assigns the null print string); scan reads one value.  Neither looks at
// `count`.
NxString& EnginePrint(NxString& result, void* value, const char* format, uint32_t count);
void* EngineScan(void* value, NxString& text, const char* format, uint32_t count);

// The print and scan slots of the other temporal rows: each fills a record,
// calls the engine and takes the fields back.
NxString& DatePrint(NxString& result, void* value, const char* format, uint32_t count);
void* DateScan(void* value, NxString& text, const char* format, uint32_t count);
NxString& TimePrint(NxString& result, void* value, const char* format, uint32_t count);
void* TimeScan(void* value, NxString& text, const char* format, uint32_t count);
NxString& DDatePrint(NxString& result, void* value, const char* format, uint32_t count);
void* DDateScan(void* value, NxString& text, const char* format, uint32_t count);
NxString& DTimePrint(NxString& result, void* value, const char* format, uint32_t count);
void* DTimeScan(void* value, NxString& text, const char* format, uint32_t count);
NxString& DTimestampPrint(NxString& result, void* value, const char* format, uint32_t count);
void* DTimestampScan(void* value, NxString& text, const char* format, uint32_t count);

}  // namespace nxdates

#endif
