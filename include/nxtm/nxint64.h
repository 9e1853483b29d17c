// NxInt64: the exact 64-bit number of the stored world.
//
// A signed 64-bit integer made of two 32-bit words, with two's complement
// arithmetic that wraps on overflow and division that truncates toward zero.
// Every operation is defined on every input: the lowest value divided by -1
// wraps to itself, and a division by zero reports through ZENTRO_assert and
// gives 0 (the remainder of the lowest value by zero is -1).  Comparisons
// return the int 1 or 0.
#ifndef NXTM_NXINT64_H
#define NXTM_NXINT64_H

#include <cstring>

#include <nxtm/nxtmdefs.h>

class NXTM_API NxInt64 {
 public:
  NxInt64() : low(0), high(0) {}
  // The two words directly.
  NxInt64(uint32_t low_, int32_t high_) : low(low_), high(high_) {}
  // Integers: signed ones are sign-extended, unsigned ones zero-extended;
  // a native 64-bit unsigned value keeps its bit pattern.
  NxInt64(int value) { SetBits(static_cast<uint64_t>(static_cast<int64_t>(value))); }
  NxInt64(unsigned value) : low(value), high(0) {}
  NxInt64(long value) { SetBits(static_cast<uint64_t>(static_cast<int64_t>(value))); }
  NxInt64(unsigned long value) { SetBits(static_cast<uint64_t>(value)); }
  NxInt64(long long value) { SetBits(static_cast<uint64_t>(value)); }
  NxInt64(unsigned long long value) { SetBits(static_cast<uint64_t>(value)); }
  // A real: at most seven significant decimal digits, rounded as "%E" rounds
  // them, and cut toward zero behind the point.  Magnitudes above the
  // greatest double below 2^63 give the highest value with the sign of `d`
  // (so -1e30 gives -0x7FFFFFFFFFFFFFFF); not-a-number and magnitudes below
  // 1 give 0.
  NxInt64(double d);

  // The value as a native 64-bit integer.
  int64_t ToInt64() const { return static_cast<int64_t>(Bits()); }

  // Comparisons: 1 or 0.
  int operator==(const NxInt64& o) const { return low == o.low && high == o.high; }
  int operator!=(const NxInt64& o) const { return !(low == o.low && high == o.high); }
  int operator>(const NxInt64& o) const { return high > o.high || (high == o.high && low > o.low); }
  int operator<(const NxInt64& o) const { return high < o.high || (high == o.high && low < o.low); }
  int operator>=(const NxInt64& o) const { return !(*this < o); }
  int operator<=(const NxInt64& o) const { return !(*this > o); }

  // Arithmetic modulo 2^64.
  NxInt64 operator-() const { return FromBits(0 - Bits()); }
  NxInt64 operator+(const NxInt64& o) const { return FromBits(Bits() + o.Bits()); }
  NxInt64 operator-(const NxInt64& o) const { return FromBits(Bits() - o.Bits()); }
  NxInt64 operator*(const NxInt64& o) const { return FromBits(Bits() * o.Bits()); }
  NxInt64 operator/(const NxInt64& o) const { return Division(o, 0); }
  NxInt64 operator%(const NxInt64& o) const { return Division(o, 1); }
  NxInt64 operator&(const NxInt64& o) const { return NxInt64(low & o.low, high & o.high); }
  NxInt64 operator|(const NxInt64& o) const { return NxInt64(low | o.low, high | o.high); }
  NxInt64 operator~() const { return NxInt64(~low, ~high); }
  // Shifts by `n` bits; 64 and more give 0, or -1 for a negative value
  // shifted right (the shift right keeps the sign).
  NxInt64 operator<<(unsigned n) const { return FromBits(n >= 64 ? 0 : Bits() << n); }
  NxInt64 operator>>(unsigned n) const {
    const uint64_t sign = high < 0 ? ~uint64_t(0) : 0;
    if (n >= 64) return FromBits(sign);
    return FromBits(((Bits() ^ sign) >> n) ^ sign);
  }

  // Compound forms return a copy of the new value.
  NxInt64 operator+=(const NxInt64& o) { return *this = *this + o; }
  NxInt64 operator-=(const NxInt64& o) { return *this = *this - o; }
  NxInt64 operator*=(const NxInt64& o) { return *this = *this * o; }
  NxInt64 operator/=(const NxInt64& o) { return *this = *this / o; }
  NxInt64 operator%=(const NxInt64& o) { return *this = *this % o; }
  NxInt64 operator<<=(unsigned n) { return *this = *this << n; }
  NxInt64 operator>>=(unsigned n) { return *this = *this >> n; }
  NxInt64 operator++() { return *this = FromBits(Bits() + 1); }
  NxInt64 operator--() { return *this = FromBits(Bits() - 1); }
  NxInt64 operator++(int) {
    const NxInt64 old = *this;
    *this = FromBits(Bits() + 1);
    return old;
  }
  NxInt64 operator--(int) {
    const NxInt64 old = *this;
    *this = FromBits(Bits() - 1);
    return old;
  }

  // This value when it is above 0, otherwise its negation; the lowest value
  // stays the lowest value.
  NxInt64 Abs() const { return *this > NxInt64() ? *this : -*this; }

  // The truncating division behind "/" (wantRemainder 0) and "%"
  // (wantRemainder 1).  The remainder has the sign of the dividend.
  NxInt64 Division(const NxInt64& divisor, int wantRemainder) const {
    const int64_t b = divisor.ToInt64();
    if (b == 0 || b == -1) return DivisionByZeroOrMinusOne(b, wantRemainder);
    const int64_t a = ToInt64();
    return NxInt64(wantRemainder ? a % b : a / b);
  }

  // Appends the text of the value to `result` and returns it.  A null
  // format means "%S".  "%S", "%d" and "%i" write decimal digits, "%o" octal
  // behind "0", "%x" and "%X" hexadecimal behind "0x" or "0X"; a negative
  // value has "-" in front, except the lowest value in octal and hexadecimal,
  // which is written as its bit pattern.  Other characters are copied.
  NxString& PrintToNxString(NxString& result, const char* format) const;
  // Reads the value from `input` through `format` (null means "%S").  The
  // base comes from the text: "0x" is hexadecimal, another leading "0"
  // octal, else decimal; "%d"/"%i" demand decimal, "%o" octal, "%x"/"%X"
  // hexadecimal.  Other format characters must stand in the input, and the
  // input must end with the format.  Text that does not fit sets the value
  // to -1; an empty format or input leaves it unchanged.
  NxInt64& ScanFromNxString(const NxString& input, const char* format);

  uint32_t low;  // low word
  int32_t high;  // high word, with the sign

 private:
  uint64_t Bits() const {
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    uint64_t bits;
    std::memcpy(&bits, this, sizeof bits);  // `low` then `high`: one load
    return bits;
#else
    return static_cast<uint64_t>(static_cast<uint32_t>(high)) << 32 | low;
#endif
  }
  void SetBits(uint64_t bits) {
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    std::memcpy(this, &bits, sizeof bits);  // one store
#else
    low = static_cast<uint32_t>(bits);
    high = static_cast<int32_t>(static_cast<uint32_t>(bits >> 32));
#endif
  }
  static NxInt64 FromBits(uint64_t bits) {
    NxInt64 n;
    n.SetBits(bits);
    return n;
  }
  NxInt64 DivisionByZeroOrMinusOne(int64_t divisor, int wantRemainder) const;
};

static_assert(sizeof(NxInt64) == 8 && alignof(NxInt64) == 4, "NxInt64 is two 32-bit words");

// The wall clock in milliseconds since 1970-01-01 UTC: the whole seconds,
// taken as a signed 32-bit number, times 1000, plus the milliseconds of the
// same reading.  Returns 0.
NXTM_API int GetSystemTimeInMSSinceTheEpoch(NxInt64& result);

#endif
