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
