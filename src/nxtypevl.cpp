// Range evaluation: the share of an index range that a predicate keeps, and
// the narrowed key range it allows.  The estimate looks at no stored entry:
// the comparison value and the two bounds are taken as points on a number
// line, and the keys between them as lying one unit apart.
#include <nxtm/nxtypevl.h>

#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "nxkeyrows.h"
#include "nxrows.h"

namespace {

// The smallest non-zero result of the floating rows, 2^-23.
constexpr double kFloor = 1.1920928955078125e-7;
// Stands in for a length that comes out infinite or NaN.
constexpr double kClamp = DBL_MAX;

inline double Clamp(double length) {
  return std::isfinite(length) ? length : kClamp;
}

// The two comparisons of the range arithmetic.  A NaN operand makes
// less-than true and greater-than false.
inline bool Less(double a, double b) {
  return !(a >= b);
}
inline bool Greater(double a, double b) {
  return a > b;
}

// A double quotient as the float result.  Beyond the float range the result
// is an infinity of the same sign, as IEEE rounding gives it.
inline float ToFloat(double x) {
  constexpr double kRoundsToInfinity = 0x1.ffffffp+127;  // halfway from FLT_MAX to 2^128
  if (x >= kRoundsToInfinity) return HUGE_VALF;
  if (x <= -kRoundsToInfinity) return -HUGE_VALF;
  return static_cast<float>(x);
}

// A heap copy of a key, or null when no memory can be had.
void* CopyKey(const void* value, uint32_t size) {
  const size_t bytes = size != 0 ? size : 1;
  void* key = std::malloc(bytes);
  if (key == nullptr) {
    NxCallMemoryHandler(size);
    key = std::malloc(bytes);
    if (key == nullptr) return nullptr;
  }
  if (size != 0) std::memcpy(key, value, size);
  return key;
}

// Element 0 of a key as a double, through the base library's byte-order
// function of the type.  The rows always decode, whatever the format.
template <typename T, NxStoreFunc Decode>
inline double Decoded(const void* key, unsigned char form) {
  T v;
  Decode(&v, key, form, 1);
  return static_cast<double>(v);
}

// How many bytes of `value` a narrowed bound receives.
template <uint32_t kWidth>
uint32_t FixedBytes(unsigned char, uint32_t count) {
  return count * kWidth;
}
uint32_t FloatBytes(unsigned char format, uint32_t count) {
  return FloatSizeGet(nullptr, 8, format, count);
}
uint32_t DoubleBytes(unsigned char format, uint32_t count) {
  return DoubleSizeGet(nullptr, 8, format, count);
}

// The integer rows count keys; the two floating rows measure as if their
// keys lay one apart and hold a non-zero result at the floor.  "double"
// also clamps the area and the width of the range.
enum class Reals { none, single, wide };

template <typename T, NxStoreFunc Decode, uint32_t (*Bytes)(unsigned char, uint32_t), Reals kReals>
float NumberEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                         uint32_t count, NxIdxBounds* narrowed) {
  const unsigned char form = format & 0x0F;
  const double v = Decoded<T, Decode>(value, form);
  double low = 0.0;
  double high = 0.0;
  double area = 0.0;
  if (bounds != nullptr) {
    high = Decoded<T, Decode>(bounds->high, form);
    low = Decoded<T, Decode>(bounds->low, form);
    area = RangeArea(op, v, v, low, high, 1.0);
  }
  NarrowBounds(narrowed, value, op, Bytes(format, count));
  double width = high - low;
  if (kReals == Reals::wide) {
    area = Clamp(area);
    width = Clamp(width);
  }
  const double share = area / (width + 1.0);
  if (kReals != Reals::none && area != 0.0 && share < kFloor) return static_cast<float>(kFloor);
  return ToFloat(share);
}

}  // namespace

double RangeArea(unsigned short op, double valueLow, double valueHigh, double boundLow,
                 double boundHigh, double unit) {
  op &= 0x800F;
  double total = 0.0;
  if ((op & 4) != 0) {  // greater: from behind the value (or the low bound) to the high bound
    const double from = Greater(boundLow, valueHigh) ? boundLow - unit : valueHigh;
    const double r = boundHigh - from;
    if (!std::isfinite(r))
      total = kClamp;
    else if (r > 0.0)
      total = r;
  }
  if ((op & 2) != 0) {  // less: from the low bound up to the value (or the high bound)
    const double to = Less(boundHigh, valueLow) ? boundHigh + unit : valueLow;
    const double r = Clamp(to - boundLow);
    if (r > 0.0) total += r;
  }
  if ((op & 1) != 0) {  // equal: where the value and the range overlap
    const double p = Less(valueHigh, boundHigh) ? valueHigh : boundHigh;
    const double q = Greater(valueLow, boundLow) ? valueLow : boundLow;
    const double r = Clamp(p - q) + unit;
    if (r > 0.0) total += r;
  }
  return total;
}

void NarrowBounds(NxIdxBounds* narrowed, void* value, unsigned short op, uint32_t size) {
  if (narrowed == nullptr) return;
  op &= 0x800F;
  if (narrowed->low == nullptr && (op & 2) == 0) {
    narrowed->low = CopyKey(value, size);
    if (narrowed->low != nullptr) narrowed->lowLength = static_cast<unsigned char>(size);
  }
  if (narrowed->high == nullptr && (op & 4) == 0) {
    narrowed->high = CopyKey(value, size);
    if (narrowed->high != nullptr) narrowed->highLength = static_cast<unsigned char>(size);
  }
}

namespace nxrows {

float CharEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                       uint32_t count, NxIdxBounds* narrowed) {
  return NumberEvalAndBound<signed char, CharStore, FixedBytes<1>, Reals::none>(
      bounds, op, value, format, count, narrowed);
}

float ByteEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                       uint32_t count, NxIdxBounds* narrowed) {
  return NumberEvalAndBound<unsigned char, CharStore, FixedBytes<1>, Reals::none>(
      bounds, op, value, format, count, narrowed);
}

float ShortEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                        uint32_t count, NxIdxBounds* narrowed) {
  return NumberEvalAndBound<int16_t, ShortStore, FixedBytes<2>, Reals::none>(
      bounds, op, value, format, count, narrowed);
}

float WordEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                       uint32_t count, NxIdxBounds* narrowed) {
  return NumberEvalAndBound<uint16_t, ShortStore, FixedBytes<2>, Reals::none>(
      bounds, op, value, format, count, narrowed);
}

float IntEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                      uint32_t count, NxIdxBounds* narrowed) {
  return NumberEvalAndBound<int32_t, IntLoad, FixedBytes<4>, Reals::none>(bounds, op, value, format,
                                                                          count, narrowed);
}

float UnsignedEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                           unsigned char format, uint32_t count, NxIdxBounds* narrowed) {
  return NumberEvalAndBound<uint32_t, IntLoad, FixedBytes<4>, Reals::none>(bounds, op, value,
                                                                           format, count, narrowed);
}

float LongEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                       uint32_t count, NxIdxBounds* narrowed) {
  return NumberEvalAndBound<int32_t, LongStore, FixedBytes<4>, Reals::none>(
      bounds, op, value, format, count, narrowed);
}

float DwordEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                        uint32_t count, NxIdxBounds* narrowed) {
  return NumberEvalAndBound<uint32_t, LongStore, FixedBytes<4>, Reals::none>(
      bounds, op, value, format, count, narrowed);
}

float FloatEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                        uint32_t count, NxIdxBounds* narrowed) {
  return NumberEvalAndBound<float, FloatStore, FloatBytes, Reals::single>(bounds, op, value, format,
                                                                          count, narrowed);
}

float DoubleEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                         uint32_t count, NxIdxBounds* narrowed) {
  return NumberEvalAndBound<double, DoubleStore, DoubleBytes, Reals::wide>(bounds, op, value,
                                                                           format, count, narrowed);
}

}  // namespace nxrows

// ---------------------------------------------------------------------------
// The null-capable rows.  Value and bounds are each a number and a null flag,
// read through the row's own Load slot.  Nulls order first, so a null low
// bound starts the range among the nulls and a null high bound ends it before
// any number.  The parts that involve nulls get fixed lengths (0.5 for a side
// that reaches into the nulls, 0.1 for the keys equal to a number in a range
// that starts among the nulls, 0.001 for the nulls equal to a null value);
// the rest is counted as for the plain rows, with no clamp and no floor.

namespace {

// One key of a null-capable row: its number as a double (0 when null) and
// its flag.
struct NullableNumber {
  double number;
  bool null;
};

// The 64-bit numbers widen word by word: the high word, signed, times 2^32
// plus the low word.
inline double Widen(const NxInt64& n) {
  return static_cast<double>(n.high) * 4294967296.0 + static_cast<double>(n.low);
}
template <typename T>
inline double Widen(T n) {
  return static_cast<double>(n);
}

// The length of the part of the range l..h that stands in the relation `op`
// (bits 0 to 2) to v, with nulls ordered before every number.  Numbers
// compare as in RangeArea: a NaN makes less-than true and greater-than false,
// so a NaN value equals no key.
double NullArea(unsigned short op, NullableNumber v, NullableNumber l, NullableNumber h,
                double unit) {
  double total = 0.0;
  if ((op & 4) != 0 && !h.null) {  // greater
    if (v.null || l.null) {
      total = 0.5;
    } else {
      const double r = h.number - (Greater(l.number, v.number) ? l.number - unit : v.number);
      if (r > 0.0) total = r;
    }
  }
  if ((op & 2) != 0 && !v.null && !h.null) {  // less
    if (l.null) {
      total += 0.5;
    } else {
      const double r = (Less(h.number, v.number) ? h.number + unit : v.number) - l.number;
      if (r > 0.0) total += r;
    }
  }
  if ((op & 1) != 0) {  // equal
    if (v.null) {
      if (l.null) total += 0.001;
    } else if (l.null) {
      if (!h.null) total += 0.1;
    } else if (!h.null) {
      const double p = Less(v.number, h.number) ? v.number : h.number;
      const double q = Greater(v.number, l.number) ? v.number : l.number;
      const double r = p + unit - q;
      if (r > 0.0) total += r;
    }
  }
  return total;
}

// Element 0 of a key, through the row's Load; null with number 0 until the
// load has read it.
template <const NxTypeDesc& kRow, typename T>
inline NxNull<T> LoadKey(const void* key, unsigned char format) {
  NxNull<T> element;
  kRow.Load(&element, key, format, 1);
  return element;
}

template <typename T>
inline NullableNumber Number(const NxNull<T>& element) {
  return {Widen(element.value), element.isNull != 0};
}

template <const NxTypeDesc& kRow, typename T>
float NullEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                       uint32_t count, NxIdxBounds* narrowed) {
  const NullableNumber v = Number(LoadKey<kRow, T>(value, format));
  NullableNumber l{0.0, true};
  NullableNumber h{0.0, true};
  double total = 0.0;
  if (bounds != nullptr) {
    h = Number(LoadKey<kRow, T>(bounds->high, format));
    l = Number(LoadKey<kRow, T>(bounds->low, format));
    total = NullArea(op, v, l, h, 1.0);
  }
  NarrowBounds(narrowed, value, op, kRow.NullSizeGet(count));
  // A null end counts with its number 0 in the width.
  return ToFloat(total / (h.number - l.number + 1.0));
}

// "NxNull_NxInt64" gives the length itself, undivided.  A total of 0 is
// looked at once more with the exact 64-bit numbers, which doubles of 53 bits
// may have merged: it becomes 1.0, one key, unless the value lies below the
// low bound with no greater part asked for, or above the high bound with no
// less part asked for.  A null value with a high bound that is a number
// always gives 1.0.
float NullInt64Range(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                     uint32_t count, NxIdxBounds* narrowed) {
  const NxNull_NxInt64 V = LoadKey<nxrows::nullInt64Row, NxInt64>(value, format);
  double total = 0.0;
  if (bounds != nullptr) {
    const NxNull_NxInt64 H = LoadKey<nxrows::nullInt64Row, NxInt64>(bounds->high, format);
    const NxNull_NxInt64 L = LoadKey<nxrows::nullInt64Row, NxInt64>(bounds->low, format);
    total = NullArea(op, Number(V), Number(L), Number(H), 1.0);
    const bool vNull = V.isNull != 0, lNull = L.isNull != 0, hNull = H.isNull != 0;
    // A null low bound lies below every value.
    const bool belowLow = (op & 4) == 0 && !lNull && L.value > V.value;
    const bool aboveHigh = (op & 2) == 0 && V.value > H.value;
    if ((total == 0.0 && !belowLow && !aboveHigh) || (vNull && !hNull)) total = 1.0;
  }
  NarrowBounds(narrowed, value, op, nxrows::nullInt64Row.NullSizeGet(count));
  return ToFloat(total);
}

}  // namespace

namespace nxrows {

float NullCharEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                           unsigned char format, uint32_t count, NxIdxBounds* narrowed) {
  return NullEvalAndBound<nullCharRow, signed char>(bounds, op, value, format, count, narrowed);
}

float NullUcharEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                            unsigned char format, uint32_t count, NxIdxBounds* narrowed) {
  return NullEvalAndBound<nullUcharRow, unsigned char>(bounds, op, value, format, count, narrowed);
}

float NullShortEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                            unsigned char format, uint32_t count, NxIdxBounds* narrowed) {
  return NullEvalAndBound<nullShortRow, int16_t>(bounds, op, value, format, count, narrowed);
}

float NullUshortEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                             unsigned char format, uint32_t count, NxIdxBounds* narrowed) {
  return NullEvalAndBound<nullUshortRow, uint16_t>(bounds, op, value, format, count, narrowed);
}

float NullIntEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                          unsigned char format, uint32_t count, NxIdxBounds* narrowed) {
  return NullEvalAndBound<nullIntRow, int32_t>(bounds, op, value, format, count, narrowed);
}

float NullUnsignedEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                               unsigned char format, uint32_t count, NxIdxBounds* narrowed) {
  return NullEvalAndBound<nullUnsignedRow, uint32_t>(bounds, op, value, format, count, narrowed);
}

float NullLongEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                           unsigned char format, uint32_t count, NxIdxBounds* narrowed) {
  return NullEvalAndBound<nullLongRow, int32_t>(bounds, op, value, format, count, narrowed);
}

float NullUlongEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                            unsigned char format, uint32_t count, NxIdxBounds* narrowed) {
  return NullEvalAndBound<nullUlongRow, uint32_t>(bounds, op, value, format, count, narrowed);
}

float NullFloatEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                            unsigned char format, uint32_t count, NxIdxBounds* narrowed) {
  return NullEvalAndBound<nullFloatRow, float>(bounds, op, value, format, count, narrowed);
}

float NullDoubleEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                             unsigned char format, uint32_t count, NxIdxBounds* narrowed) {
  return NullEvalAndBound<nullDoubleRow, double>(bounds, op, value, format, count, narrowed);
}

float NullInt64EvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                            unsigned char format, uint32_t count, NxIdxBounds* narrowed) {
  return NullInt64Range(bounds, op, value, format, count, narrowed);
}

}  // namespace nxrows

// ---------------------------------------------------------------------------
// Dates and times, NxInt64, NxBoolean and the identifiers.  Each turns a key
// into one number made for the estimate alone (some count months of 31 days
// or leave fields out) and measures with RangeArea or with plain positions.

namespace {

// The fields of a key: the year through the byte order of `format`, single
// bytes as they stand, signed.
inline int16_t KeyYear(const void* key, unsigned char format) {
  int16_t year;
  ShortStore(&year, key, format, 1);
  return year;
}
inline int KeyByte(const void* key, int offset) {
  return static_cast<signed char>(static_cast<const unsigned char*>(key)[offset]);
}
inline void PutKeyYear(void* key, int year, unsigned char format) {
  if (key == nullptr) return;
  const int16_t y = static_cast<int16_t>(year);
  ShortStore(key, &y, format, 1);
}
inline void PutKeyByte(void* key, int offset, unsigned char byte) {
  if (key != nullptr) static_cast<unsigned char*>(key)[offset] = byte;
}

inline int32_t DayNumber(int year, int month, int day) {
  return static_cast<int32_t>(NxDate(year, month, day));
}
inline int32_t DateKeyNumber(const void* key, unsigned char format) {
  return DayNumber(KeyYear(key, format), KeyByte(key, 2), KeyByte(key, 3));
}

// A 64-bit difference cut to 32 bits, as a 32-bit machine computes it.
inline int32_t Wrapped(int64_t value) {
  return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint64_t>(value)));
}

// The first day that a span of dates may start on, day number 0, and the
// last year it may reach.
constexpr int kFirstYear = -4713;
constexpr int kFirstMonth = 11;
constexpr int kFirstDay = 24;
constexpr int kLastYear = 32766;

// NxTime: seconds of the day.  NxDateTime: minutes, in months of 31 days;
// the seconds are not read.
inline int32_t TimeKeyNumber(const void* key) {
  return (KeyByte(key, 0) * 60 + KeyByte(key, 1)) * 60 + KeyByte(key, 2);
}
inline double DateTimeKeyNumber(const void* key, unsigned char format) {
  const double months = KeyYear(key, format) * 12.0 + KeyByte(key, 2);
  return (((months * 31.0 + KeyByte(key, 3)) * 24.0 + KeyByte(key, 4)) * 60.0) + KeyByte(key, 5);
}

// d_Date: days in months of 31, from the year -40000.  d_Time: the stored
// hour, minute and second (the zone and the hundredths do not count).
// d_Timestamp: seconds, where an hour steps as far as a day does.
inline int32_t StandardDateNumber(int year, int month, int day) {
  return day + 31 * (month + 12 * (year + 40000));
}
inline int32_t StandardTimeKeyNumber(const void* key) {
  return (KeyByte(key, 2) * 60 + KeyByte(key, 3)) * 60 + KeyByte(key, 4);
}
inline double TimestampKeyNumber(const void* key, unsigned char format) {
  const double months = (KeyYear(key, format) + 40000.0) * 12.0 + KeyByte(key, 2);
  return ((months * 31.0 + KeyByte(key, 3) + KeyByte(key, 6)) * 60.0 + KeyByte(key, 7)) * 60.0;
}

// The estimate by position: the value's place in the range counted from 1,
// not brought back to the range's ends, so a value outside the range can
// give more than the whole range.
template <typename Number>
double PositionArea(unsigned short op, Number v, Number low, Number width) {
  const Number rel = v - low + 1;
  Number area = 0;
  if ((op & 2) != 0) area = rel - 1;
  if ((op & 4) != 0) area += width - rel;
  if ((op & 1) != 0) area += 1;
  return area < 0 ? 0.0 : static_cast<double>(area);
}

// NxObjId: `high` weighs 65535, not 2^32.  NxRef: the whole number space of
// database, high and low.
inline double ObjIdKeyNumber(const void* key, unsigned char format) {
  const unsigned char* p = static_cast<const unsigned char*>(key);
  uint32_t low;
  uint16_t high;
  LongStore(&low, p + 4, format, 1);
  ShortStore(&high, p + 8, format, 1);
  return high * 65535.0 + low;
}
constexpr double kRefTotal = 4294967295.0 * 4294967295.0;

inline double Int64Number(const NxInt64& n) {
  return static_cast<double>(n.high) * 4294967296.0 + static_cast<double>(n.low);
}

}  // namespace

namespace nxrows {

// A value with wild fields (-1) stands for the span of dates it matches: its
// ends enter the estimate, and the open ends of `narrowed` become the first
// and the last day of the span.  Bit 3 of `op` tells the caller so.
float DateEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                       uint32_t count, NxIdxBounds* narrowed) {
  op &= 0x800F;
  int32_t lowNumber = 0;
  int32_t highNumber = 0;
  if (bounds != nullptr) {
    lowNumber = DateKeyNumber(bounds->low, format);
    highNumber = DateKeyNumber(bounds->high, format);
  }
  NarrowBounds(narrowed, value, op, count * 4);
  void* lowKey = narrowed != nullptr ? narrowed->low : nullptr;
  void* highKey = narrowed != nullptr ? narrowed->high : nullptr;

  int fromYear, toYear, fromMonth, toMonth, fromDay, toDay;
  const int year = KeyYear(value, format);
  if (year != -1) {
    fromYear = toYear = year;
  } else {
    fromYear = kFirstYear;
    toYear = kLastYear;
    PutKeyYear(lowKey, fromYear, format);
    PutKeyYear(highKey, toYear, format);
    op |= 8;
  }
  const int month = KeyByte(value, 2);
  if (month != -1) {
    toMonth = month;
    fromMonth = fromYear == kFirstYear && month < kFirstMonth ? kFirstMonth : month;
  } else {
    fromMonth = fromYear == kFirstYear ? kFirstMonth : 1;
    toMonth = 12;
    PutKeyByte(lowKey, 2, static_cast<unsigned char>(fromMonth));
    PutKeyByte(highKey, 2, static_cast<unsigned char>(toMonth));
    op |= 8;
  }
  const bool firstMonth = fromYear == kFirstYear && fromMonth == kFirstMonth;
  const int day = KeyByte(value, 3);
  if (day != -1) {
    toDay = day;
    fromDay = firstMonth && day < kFirstDay ? kFirstDay : day;
  } else {
    fromDay = firstMonth ? kFirstDay : 1;
    const bool december = toMonth == 12;
    toDay = DayNumber(december ? toYear + 1 : toYear, december ? 1 : toMonth + 1, 1) -
            DayNumber(toYear, toMonth, 1);
    PutKeyByte(lowKey, 3, static_cast<unsigned char>(fromDay));
    PutKeyByte(highKey, 3, static_cast<unsigned char>(toDay));
    op |= 8;
  }
  const double area = RangeArea(op, DayNumber(fromYear, fromMonth, fromDay),
                                DayNumber(toYear, toMonth, toDay), lowNumber, highNumber, 1.0);
  const int32_t width = Wrapped(int64_t{highNumber} - lowNumber + 1);
  return ToFloat(area / width);
}

float TimeEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char,
                       uint32_t count, NxIdxBounds* narrowed) {
  op &= 0x800F;
  int32_t lowNumber = 0;
  int32_t highNumber = 0;
  if (bounds != nullptr) {
    lowNumber = TimeKeyNumber(bounds->low);
    highNumber = TimeKeyNumber(bounds->high);
  }
  const int32_t v = TimeKeyNumber(value);
  const double area = RangeArea(op, v, v, lowNumber, highNumber, 1.0);
  NarrowBounds(narrowed, value, op, count * 3);
  return ToFloat(area / (highNumber - lowNumber + 1));
}

float DateTimeEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                           unsigned char format, uint32_t count, NxIdxBounds* narrowed) {
  op &= 0x800F;
  double lowNumber = 0.0;
  double highNumber = 0.0;
  if (bounds != nullptr) {
    lowNumber = DateTimeKeyNumber(bounds->low, format);
    highNumber = DateTimeKeyNumber(bounds->high, format);
  }
  const double v = DateTimeKeyNumber(value, format);
  const double area = RangeArea(op, v, v, lowNumber, highNumber, 1.0);
  NarrowBounds(narrowed, value, op, count * 7);
  return ToFloat(area / (highNumber - lowNumber + 1.0));
}

// A wild year makes the whole range qualify.  A wild month or day is seen
// in the narrowed keys, which then run from the byte 0x80 to 0x7F in that
// field; without keys the 0xFF of the value counts as -1.
float DDateEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                        uint32_t count, NxIdxBounds* narrowed) {
  op &= 0x800F;
  int32_t lowNumber = 0;
  int32_t highNumber = 0;
  if (bounds != nullptr) {
    lowNumber = StandardDateNumber(KeyYear(bounds->low, format), KeyByte(bounds->low, 2),
                                   KeyByte(bounds->low, 3));
    highNumber = StandardDateNumber(KeyYear(bounds->high, format), KeyByte(bounds->high, 2),
                                    KeyByte(bounds->high, 3));
  }
  const int64_t width = int64_t{highNumber} - lowNumber + 1;
  NarrowBounds(narrowed, value, op, count * 4);
  unsigned char* lowKey = narrowed != nullptr ? static_cast<unsigned char*>(narrowed->low) : nullptr;
  unsigned char* highKey =
      narrowed != nullptr ? static_cast<unsigned char*>(narrowed->high) : nullptr;

  int year = KeyYear(value, format);
  const bool wildYear = year == -1;
  if (wildYear) {
    PutKeyYear(highKey, 32767, format);
    PutKeyYear(lowKey, -32768, format);
    year = 0;
  }
  int fields[2];  // month, day
  const int wildValue[2] = {12, 31};
  for (int i = 0; i < 2; ++i) {
    const int offset = 2 + i;
    const bool wild = (highKey != nullptr && highKey[offset] == 0xFF) ||
                      (lowKey != nullptr && lowKey[offset] == 0xFF);
    if (wild) {
      PutKeyByte(highKey, offset, 0x7F);
      PutKeyByte(lowKey, offset, 0x80);
      fields[i] = wildValue[i];
    } else {
      fields[i] = KeyByte(value, offset);
    }
  }
  double area = static_cast<double>(width);
  if (!wildYear) {
    const int64_t v = StandardDateNumber(year, fields[0], fields[1]);
    area = PositionArea<int64_t>(op, v, lowNumber, width);
  }
  if (area < 0.0) area = 0.0;
  return ToFloat(area / static_cast<double>(width));
}

float DTimeEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char,
                        uint32_t count, NxIdxBounds* narrowed) {
  op &= 0x800F;
  int64_t lowNumber = 0;
  int64_t highNumber = 0;
  if (bounds != nullptr) {
    lowNumber = StandardTimeKeyNumber(bounds->low);
    highNumber = StandardTimeKeyNumber(bounds->high);
  }
  const int64_t width = highNumber - lowNumber + 1;
  const double area = PositionArea<int64_t>(op, StandardTimeKeyNumber(value), lowNumber, width);
  NarrowBounds(narrowed, value, op, count * 6);
  return ToFloat(area / static_cast<double>(width));
}

float DTimestampEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                             unsigned char format, uint32_t count, NxIdxBounds* narrowed) {
  op &= 0x800F;
  double lowNumber = 0.0;
  double highNumber = 0.0;
  if (bounds != nullptr) {
    lowNumber = TimestampKeyNumber(bounds->low, format);
    highNumber = TimestampKeyNumber(bounds->high, format);
  }
  const double width = highNumber - lowNumber + 1.0;
  const double area =
      PositionArea<double>(op, TimestampKeyNumber(value, format), lowNumber, width);
  NarrowBounds(narrowed, value, op, count * 10);
  return ToFloat(area / width);
}

// Doubles hold 53 bits: values so close that their doubles are equal get an
// area of 0 from RangeArea, which the 64-bit comparison corrects to one key
// when the value lies inside what `op` keeps.
float Int64EvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                        uint32_t count, NxIdxBounds* narrowed) {
  NxInt64 v;
  Int64Load(&v, value, format, 1);
  double low = 0.0;
  double high = 0.0;
  double area = 0.0;
  if (bounds != nullptr) {
    NxInt64 h, l;
    Int64Load(&h, bounds->high, format, 1);
    Int64Load(&l, bounds->low, format, 1);
    low = Int64Number(l);
    high = Int64Number(h);
    const double at = Int64Number(v);
    area = RangeArea(op, at, at, low, high, 1.0);
    if (area == 0.0) {
      const bool belowLow = (op & 4) == 0 && !(l <= v);
      const bool aboveHigh = (op & 2) == 0 && !(v <= h);
      if (!belowLow && !aboveHigh) area = 1.0;
    }
  }
  NarrowBounds(narrowed, value, op, count * 8);
  return ToFloat(area / (high - low + 1.0));
}

// Three values, null among them: any range is a third of them whatever the
// value and the operator.
float BooleanEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char,
                          uint32_t count, NxIdxBounds* narrowed) {
  const double area = bounds != nullptr ? 1.0 : 0.0;
  NarrowBounds(narrowed, value, op, count);
  return static_cast<float>(area / 3.0);
}

}  // namespace nxrows

float NxObjId::EvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                            unsigned char format, uint32_t count, NxIdxBounds* narrowed) {
  double lowNumber = 0.0;
  double highNumber = 0.0;
  if (bounds != nullptr) {
    lowNumber = ObjIdKeyNumber(bounds->low, format);
    highNumber = ObjIdKeyNumber(bounds->high, format);
  }
  const double v = ObjIdKeyNumber(value, format);
  const double area = RangeArea(op, v, v, lowNumber, highNumber, 1.0);
  NarrowBounds(narrowed, value, op, count * 10);
  return ToFloat(area / (highNumber - lowNumber + 1.0));
}

// Class ids carry no order that a range could measure: every range keeps
// all of them, and nothing is narrowed.
float NxClassId::EvalAndBound(NxIdxBounds*, unsigned short&, void*, unsigned char, uint32_t,
                              NxIdxBounds*) {
  return 1.0f;
}

// The range is always the whole number space of references: the bounds are
// not read.
float NxRef::EvalAndBound(NxIdxBounds*, unsigned short& op, void* value, unsigned char format,
                          uint32_t count, NxIdxBounds* narrowed) {
  const unsigned char* p = static_cast<const unsigned char*>(value);
  uint32_t low;
  uint16_t highAndDatabase[2];
  LongStore(&low, p + 4, format, 1);
  ShortStore(highAndDatabase, p + 8, format, 2);
  const double v = (highAndDatabase[1] * 65535.0 + highAndDatabase[0]) * 4294967295.0 + low;
  op &= 0x800F;
  double area = 0.0;
  if ((op & 2) != 0) area = v;
  if ((op & 4) != 0) area += kRefTotal - (v + 1.0);
  if ((op & 1) != 0) area += 1.0;
  NarrowBounds(narrowed, value, op, count * 14);
  return ToFloat(area / kRefTotal);
}

// ---------------------------------------------------------------------------
// NxBlob: a blob key gives no position on a number line, so the estimate is
// the whole range; no argument is read and nothing narrows.

float nxrows::BlobEvalAndBound(NxIdxBounds*, unsigned short&, void*, unsigned char, uint32_t,
                               NxIdxBounds*) {
  return 1.0f;
}
