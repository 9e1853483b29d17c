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
