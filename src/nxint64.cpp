// NxInt64: construction from reals, the division cases that native division
// leaves undefined, the text forms, the wall clock in milliseconds, and the
// row of the type table.
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "nxclassrows.h"
#include "nxkeyrows.h"
#include "nxrows.h"

namespace {

constexpr uint64_t kHighest = 0x7FFFFFFFFFFFFFFFull;
constexpr uint64_t kLowest = 0x8000000000000000ull;

// The greatest double below 2^63: anything above saturates.
constexpr double kSaturation = 9223372036854774784.0;

}  // namespace

NxInt64::NxInt64(double d) : low(0), high(0) {
  const double magnitude = d > 0 ? d : -d;  // not-a-number stays not-a-number
  uint64_t value = 0;
  if (magnitude > kSaturation) {
    value = kHighest;
  } else if (magnitude >= 1.0) {
    // The value goes through its "%E" text, so that it keeps seven
    // significant digits rounded as the text rounds them: the digits are
    // taken up to the decimal exponent, and the rest of the exponent becomes
    // trailing zeros.
    char text[64];
    std::snprintf(text, sizeof text, "%E", d);
    const char* exponentMark = std::strchr(text, 'E');
    int exponent = exponentMark != nullptr ? std::atoi(exponentMark + 1) : 0;
    const char* end = exponentMark != nullptr ? exponentMark : text + std::strlen(text);
    bool digitSeen = false;
    bool point = false;
    for (const char* p = text; p < end; ++p) {
      if (*p >= '0' && *p <= '9') {
        if (point && --exponent < 0) break;
        value = value * 10 + static_cast<uint64_t>(*p - '0');
        digitSeen = true;
      } else if (digitSeen) {
        point = true;  // the radix character of the locale, whatever it is
      }
    }
    for (; exponent >= 1; --exponent) value *= 10;
  }
  if (d < 0) value = 0 - value;
  SetBits(value);
}

NxInt64 NxInt64::DivisionByZeroOrMinusOne(int64_t divisor, int wantRemainder) const {
  if (divisor == -1) return wantRemainder ? NxInt64() : -*this;  // the lowest value wraps
  ZENTRO_assert("0 && \"NxInt64 divide by zero\"", "src\\nxint64", 737);
  // The long division stops at once: quotient 0, and the remainder of the
  // lowest value, which is divided as the highest value plus one, is -1.
  if (!wantRemainder) return NxInt64();
  return Bits() == kLowest ? NxInt64(-1) : NxInt64();
}

NxString& NxInt64::PrintToNxString(NxString& result, const char* format) const {
  if (format == nullptr) format = "%S";
  std::string out;
  uint64_t n = Bits();  // the working copy: every number item divides it down to 0
  for (const char* f = format; *f != '\0'; ++f) {
    if (*f != '%') {
      out += *f;
      continue;
    }
    const char item = f[1];
    if (item == '\0' || std::strchr("SdixXo", item) == nullptr) {
      out += '%';  // the next character is read as if it came first
      continue;
    }
    ++f;
    const bool negative = (n & kLowest) != 0;
    const uint64_t magnitude = negative ? 0 - n : n;
    unsigned base = 10;
    const char* digits = "0123456789abcdef";
    const char* prefix = "";
    if (item == 'o') {
      base = 8;
      prefix = "0";
    } else if (item == 'x') {
      base = 16;
      prefix = "0x";
    } else if (item == 'X') {
      base = 16;
      prefix = "0X";
      digits = "0123456789ABCDEF";
    }
    // The lowest value has no positive twin: in octal and hexadecimal it is
    // written as its bit pattern, without a sign.
    if (negative && (n != kLowest || base == 10)) out += '-';
    out += prefix;
    char reversed[64];
    int count = 0;
    uint64_t rest = magnitude;
    do {
      reversed[count++] = digits[rest % base];
      rest /= base;
    } while (rest != 0);
    while (count > 0) out += reversed[--count];
    n = 0;
  }
  if (!out.empty()) result += NxString(out.c_str());
  return result;
}

NxInt64& NxInt64::ScanFromNxString(const NxString& input, const char* format) {
  if (format == nullptr) format = "%S";
  const nxrows::EightBitText text(input);
  const char* in = text.c_str();
  if (*format == '\0' || *in == '\0') return *this;
  const char* f = format;
  for (;;) {
    if (*f == '\0') {
      if (*in == '\0') return *this;
      break;  // input left over
    }
    if (*f == '%' && f[1] != '\0' && std::strchr("SoidxX", f[1]) != nullptr) {
      const char item = f[1];
      f += 2;
      bool negative = false;
      if (*in == '-') {
        negative = true;
        ++in;
      } else if (*in == '+') {
        ++in;
      }
      unsigned base = 10;
      if (in[0] == '0' && (in[1] == 'x' || in[1] == 'X')) {
        base = 16;
        in += 2;
      } else if (in[0] == '0') {
        base = 8;  // the "0" stays as a digit
      }
      const bool refused = ((item == 'x' || item == 'X') && base != 16) ||
                           ((item == 'd' || item == 'i') && base != 10) ||
                           (item == 'o' && base != 8);
      if (refused) break;
      const char stop = *f;
      uint64_t value = 0;
      bool bad = false;
      for (; *in != stop && *in != '\0'; ++in) {
        const unsigned char c = static_cast<unsigned char>(*in);
        unsigned digit;
        if (c >= '0' && c <= '9')
          digit = c - '0';
        else if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'))
          digit = static_cast<unsigned>(std::toupper(c) - 'A' + 10);
        else
          digit = 99;
        if (digit >= base) {
          bad = true;
          break;
        }
        value = value * base + digit;  // wraps silently, as the arithmetic does
      }
      if (bad) break;
      SetBits(negative ? 0 - value : value);
      if (*in != stop) break;  // the input ended before the stop character
      if (stop == '\0') return *this;
      ++in;
      ++f;
      continue;
    }
    if (*in != *f) break;
    ++in;
    ++f;
  }
  SetBits(~uint64_t(0));  // a failed scan gives -1
  return *this;
}

int GetSystemTimeInMSSinceTheEpoch(NxInt64& result) {
  const int64_t now = NxClockNowMilliseconds();
  int64_t seconds = now / 1000;
  int64_t millis = now % 1000;
  if (millis < 0) {
    millis += 1000;
    --seconds;
  }
  const int32_t seconds32 = static_cast<int32_t>(static_cast<uint32_t>(seconds));
  result = NxInt64(seconds32) * NxInt64(1000) + NxInt64(static_cast<unsigned>(millis));
  return 0;
}

// ---------------------------------------------------------------------------
// The row.  Disk form: the low word, then the high word, each through
// LongStore, so that the format turns the bytes within each word but never
// the words themselves.

namespace nxrows {

namespace {

NxTypeConvertData* Int64ConvertTo(void* value, uint32_t count) {
  const NxInt64* numbers = static_cast<const NxInt64*>(value);
  return ToStrings(stringRow.Create, stringRow.Delete, count,
                   [numbers](NxString& text, uint32_t i) {
                     numbers[i].PrintToNxString(text, nullptr);
                   });
}

void* Int64ConvertFrom(NxTypeConvertData* data, uint32_t count) {
  return FromStrings<NxInt64>(ZeroArrayCreate<NxInt64>(count), data, count, [](NxInt64& n, NxString* s) {
    if (s != nullptr) n.ScanFromNxString(*s, nullptr);
  });
}

void* Int64Default(uint32_t count, int) {
  return DefaultFromEmptyStrings(Int64ConvertFrom, count);
}

constexpr NxTypeDesc Int64Row() {
  NxTypeDesc row = IllegalLike("NxInt64", 8, 1, "%S");
  row.Create = ZeroArrayCreate<NxInt64>;
  row.Delete = ZeroArrayDelete<NxInt64>;
  row.Store = Int64Store;
  row.Load = Int64Load;
  row.NullSizeGet = FixedNullSizeGet<8>;
  row.SizeGet = Int64SizeGet;
  row.SizeGetFromMemFile = FixedSizeGetFromMemFile<8>;
  row.Compare = Int64Compare;
  row.EvalAndBound = Int64EvalAndBound;
  row.ConvertTo = Int64ConvertTo;
  row.ConvertFrom = Int64ConvertFrom;
  row.Constructor = ZeroConstructor<sizeof(NxInt64)>;
  row.Destructor = NoDestructor;
  row.Assignment = ElementAssignment<NxInt64>;
  row.Copy = ElementAssignment<NxInt64>;
  row.Translate = RecordTranslate<Int64Load, Int64Store, MoveBytes<sizeof(NxInt64)>>;
  row.IsNull = NeverNull;
  row.PrintToString = Int64Print;
  row.ScanFromString = Int64Scan;
  row.DefaultValue = Int64Default;
  return row;
}

}  // namespace

// Memory form is the words as they stand; the two words of `count`
// elements are 2 * `count` LongStore elements in a row.
uint32_t Int64Store(void* disk, const void* memory, unsigned char format, uint32_t count) {
  if (count == 0) return 0;
  return LongStore(disk, memory, static_cast<unsigned char>(format & 0x0F), 2 * count);
}

uint32_t Int64Load(void* memory, const void* disk, unsigned char format, uint32_t count) {
  if (count == 0) return 0;
  return LongStore(memory, disk, static_cast<unsigned char>(format & 0x0F), 2 * count);
}

uint32_t Int64SizeGet(const void*, unsigned char, unsigned char, uint32_t count) {
  return count * 8;
}

NxString& Int64Print(NxString& result, void* value, const char* format, uint32_t) {
  return static_cast<const NxInt64*>(value)->PrintToNxString(result, format);
}

void* Int64Scan(void* value, NxString& text, const char* format, uint32_t) {
  if (value == nullptr) return nullptr;
  static_cast<NxInt64*>(value)->ScanFromNxString(text, format);
  return value;
}

NxTypeDesc int64Row = WithHash(Int64Row(), Int64Hash);

}  // namespace nxrows
