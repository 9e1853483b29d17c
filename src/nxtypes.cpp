// The rows of the type table: the row `illegal`, the twelve plain scalar
// rows, the rows of the other types (whose slots are filled as their
// families are built), the old string row, and the two tables.
#include <cctype>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <new>
#include <string>
#include <type_traits>

#include "nxclassrows.h"
#include "nxcmpwalk.h"
#include "nxinternal.h"
#include "nxkeyrows.h"
#include "nxrows.h"
#include "nxstrkeys.h"

namespace {

// ---------------------------------------------------------------------------
// The six function sets of the plain scalars.  W is the memory width.

template <uint32_t W, bool Zero>
void* ScalarCreate(uint32_t count) {
  const size_t bytes = static_cast<size_t>(count) * W;
  void* block = std::malloc(bytes != 0 ? bytes : 1);
  if (block != nullptr && Zero) std::memset(block, 0, bytes);
  return block;
}

void* ScalarDelete(void* value, uint32_t) {
  std::free(value);
  return nullptr;
}

template <uint32_t W>
void ScalarConstructor(void* memory, uint32_t count, uint32_t) {
  if (memory != nullptr) std::memset(memory, 0, static_cast<size_t>(count) * W);
}

void ScalarDestructor(void*, uint32_t, uint32_t) {}

// Element by element from the first to the last, or the first source
// element into every destination element.
template <uint32_t W>
void ScalarAssignment(void* destination, void* source, uint32_t count, int broadcast) {
  unsigned char* d = static_cast<unsigned char*>(destination);
  const unsigned char* s = static_cast<const unsigned char*>(source);
  for (uint32_t i = 0; i < count; ++i) {
    std::memmove(d + static_cast<size_t>(i) * W, broadcast ? s : s + static_cast<size_t>(i) * W, W);
  }
}

template <uint32_t W>
void ScalarCopy(void* destination, void* source, uint32_t count, int broadcast) {
  ScalarAssignment<W>(destination, source, count, broadcast);
}

// The translation scheme shared by the fixed-width rows.
template <uint32_t W, NxLoadFunc LoadFn, NxStoreFunc StoreFn>
constexpr NxTranslateFunc ScalarTranslate =
    nxrows::RecordTranslate<LoadFn, StoreFn, nxrows::MoveBytes<W>>;

uint32_t ByteSizeGetFromMemFile(MemFile*, unsigned char, uint32_t count) {
  return count;
}
uint32_t ShortSizeGetFromMemFile(MemFile*, unsigned char, uint32_t count) {
  return count * 2;
}
uint32_t LongSizeGetFromMemFile(MemFile*, unsigned char, uint32_t count) {
  return count * 4;
}
uint32_t IntSizeGetFromMemFile(MemFile*, unsigned char format, uint32_t count) {
  return IntSizeGet(nullptr, 8, format, count);
}
uint32_t FloatSizeGetFromMemFile(MemFile*, unsigned char format, uint32_t count) {
  return FloatSizeGet(nullptr, 8, static_cast<unsigned char>(format & 0x0F), count);
}
uint32_t DoubleSizeGetFromMemFile(MemFile*, unsigned char format, uint32_t count) {
  return DoubleSizeGet(nullptr, 8, static_cast<unsigned char>(format & 0x0F), count);
}

}  // namespace

namespace nxrows {

// ---------------------------------------------------------------------------
// The row `illegal`: does nothing and says nothing.  None of its functions
// writes to an argument.
void* IllegalCreate(uint32_t) {
  return nullptr;
}
void* IllegalDelete(void*, uint32_t) {
  return nullptr;
}
uint32_t IllegalStore(void*, const void*, unsigned char, uint32_t) {
  return 0;
}
uint32_t IllegalLoad(void*, const void*, unsigned char, uint32_t) {
  return 0;
}
uint32_t IllegalNullSizeGet(uint32_t) {
  return 0;
}
uint32_t IllegalSizeGet(const void*, unsigned char, unsigned char, uint32_t) {
  return 0;
}
uint32_t IllegalSizeGetFromMemFile(MemFile*, unsigned char, uint32_t) {
  return 0;
}
int32_t IllegalCompare(unsigned char, uint32_t, void*, uint32_t, void*, unsigned short, uint32_t,
                       int&) {
  return 0;
}
float IllegalEvalAndBound(NxIdxBounds*, unsigned short&, void*, unsigned char, uint32_t,
                          NxIdxBounds*) {
  return 0.0f;
}
uint32_t IllegalHash(unsigned char, uint32_t, void*, uint32_t, int&) {
  return 0;
}
NxTypeConvertData* IllegalConvertTo(void*, uint32_t) {
  return nullptr;
}
void* IllegalConvertFrom(NxTypeConvertData*, uint32_t) {
  return nullptr;
}
void IllegalConstructor(void*, uint32_t, uint32_t) {}
void IllegalDestructor(void*, uint32_t, uint32_t) {}
void IllegalAssignment(void*, void*, uint32_t, int) {}
void IllegalCopy(void*, void*, uint32_t, int) {}
uint32_t IllegalTranslate(void*, unsigned char, uint32_t, void*, unsigned char, uint32_t,
                          uint32_t) {
  return 0;
}
int IllegalIsNull(void*) {
  return 0;
}
NxString& IllegalPrintToString(NxString& result, void*, const char*, uint32_t) {
  return result;
}
void* IllegalScanFromString(void*, NxString&, const char*, uint32_t) {
  return nullptr;
}
void* IllegalDefaultValue(uint32_t, int) {
  return nullptr;
}

}  // namespace nxrows

// ---------------------------------------------------------------------------
// Formatted text of the plain scalars.  A row format is a printf or scanf
// format written for a platform whose `long` is 32 bits.  These helpers read
// the format's conversions and hand each one an argument of the type it asks
// for, so that "%ld" gets a `long` holding the 32-bit value and a scan never
// writes more than the element holds.  Conversions without an argument of
// ours (a surplus one, "%s" in a print, "%n", a "*" width) are neutralised:
// printed as text, or matched without being assigned.

namespace {

enum class ConvKind { None, Signed, Unsigned, Real, Char, String, Count, Percent };

struct Conversion {
  size_t start;  // index of '%'
  size_t end;    // index behind the conversion
  ConvKind kind;
  int lengthBits;  // 0 default, 8 hh, 16 h, 32 l, 64 ll/j/z/t/q, 128 L
  bool star;       // '*' width or precision (print), suppressed assignment (scan)
  bool wide;       // %lc, %ls, %l[
  long width;      // scan field width, 0 when none
};

Conversion ReadConversion(const char* format, size_t i, bool scan) {
  Conversion c{i, i + 1, ConvKind::None, 0, false, false, 0};
  size_t k = i + 1;
  if (format[k] == '%') {
    c.kind = ConvKind::Percent;
    c.end = k + 1;
    return c;
  }
  if (scan && format[k] == '*') {
    c.star = true;
    ++k;
  }
  while (!scan && format[k] != '\0' && std::strchr("-+ #0'", format[k]) != nullptr) ++k;
  while ((format[k] >= '0' && format[k] <= '9') || (!scan && format[k] == '*')) {
    if (format[k] == '*') c.star = true;
    if (scan && c.width < 100000) c.width = c.width * 10 + (format[k] - '0');
    ++k;
  }
  if (!scan && format[k] == '.') {
    ++k;
    while ((format[k] >= '0' && format[k] <= '9') || format[k] == '*') {
      if (format[k] == '*') c.star = true;
      ++k;
    }
  }
  switch (format[k]) {
    case 'h':
      c.lengthBits = 16;
      if (format[++k] == 'h') {
        c.lengthBits = 8;
        ++k;
      }
      break;
    case 'l':
      c.lengthBits = 32;
      if (format[++k] == 'l') {
        c.lengthBits = 64;
        ++k;
      }
      break;
    case 'q':
    case 'j':
    case 'z':
    case 't':
      c.lengthBits = 64;
      ++k;
      break;
    case 'L':
      c.lengthBits = 128;
      ++k;
      break;
    default:
      break;
  }
  const char conv = format[k];
  if (conv == '\0') {
    c.end = k;
    return c;
  }
  c.end = k + 1;
  switch (conv) {
    case 'd':
    case 'i':
      c.kind = ConvKind::Signed;
      break;
    case 'o':
    case 'u':
    case 'x':
    case 'X':
      c.kind = ConvKind::Unsigned;
      break;
    case 'e':
    case 'E':
    case 'f':
    case 'F':
    case 'g':
    case 'G':
    case 'a':
    case 'A':
      c.kind = ConvKind::Real;
      break;
    case 'c':
      c.kind = ConvKind::Char;
      break;
    case 's':
      c.kind = ConvKind::String;
      break;
    case 'n':
      c.kind = ConvKind::Count;
      break;
    case '[':
      // The set runs to the next ']'; a ']' first in the set belongs to it.
      c.kind = ConvKind::String;
      ++k;
      if (format[k] == '^') ++k;
      if (format[k] == ']') ++k;
      while (format[k] != '\0' && format[k] != ']') ++k;
      c.end = format[k] == ']' ? k + 1 : k;
      break;
    default:
      break;
  }
  if (c.lengthBits == 32 && (conv == 'c' || conv == 's' || conv == '[')) c.wide = true;
  return c;
}

// A real for an integer conversion: cut toward zero, held at the limits of
// 64 bits, NaN as 0.
int64_t RealToInteger(double v) {
  if (v != v) return 0;
  if (v >= 9223372036854775807.0) return INT64_MAX;
  if (v <= -9223372036854775808.0) return INT64_MIN;
  return static_cast<int64_t>(v);
}

}  // namespace

namespace nxrows {

size_t FormatArguments(char* buffer, size_t size, const char* format,
                       const PrintArgument* arguments, int argumentCount) {
  if (size == 0) return 0;
  buffer[0] = '\0';
  if (format == nullptr) return 0;
  std::string out;
  char piece[kTextBuffer];
  std::string directive;
  int used = 0;
  size_t literalFrom = 0;
  size_t i = 0;
  while (format[i] != '\0') {
    if (format[i] != '%') {
      ++i;
      continue;
    }
    const Conversion c = ReadConversion(format, i, false);
    out.append(format + literalFrom, i - literalFrom);
    literalFrom = c.end;
    i = c.end;
    if (c.kind == ConvKind::Percent) {
      out += '%';
      continue;
    }
    const bool usable = used < argumentCount && !c.star && !c.wide &&
                        (c.kind == ConvKind::Signed || c.kind == ConvKind::Unsigned ||
                         c.kind == ConvKind::Real || c.kind == ConvKind::Char);
    if (!usable) {
      out.append(format + c.start, c.end - c.start);  // shown as it stands
      continue;
    }
    const PrintArgument& a = arguments[used++];
    directive.assign(format + c.start, c.end - c.start);
    const int64_t integer = a.real ? RealToInteger(a.realValue) : a.integer;
    const double real = a.real ? a.realValue : static_cast<double>(a.integer);
    // A value's 32-bit pattern goes to every conversion of 32 bits or less
    // (int and the stored world's long), as signed or unsigned as it asks.
    switch (c.kind) {
      case ConvKind::Signed:
        if (c.lengthBits == 64)
          std::snprintf(piece, sizeof piece, directive.c_str(), static_cast<long long>(integer));
        else if (c.lengthBits == 32)
          std::snprintf(piece, sizeof piece, directive.c_str(),
                        static_cast<long>(static_cast<int32_t>(integer)));
        else
          std::snprintf(piece, sizeof piece, directive.c_str(), static_cast<int>(integer));
        break;
      case ConvKind::Unsigned:
        if (c.lengthBits == 64)
          std::snprintf(piece, sizeof piece, directive.c_str(),
                        static_cast<unsigned long long>(integer));
        else if (c.lengthBits == 32)
          std::snprintf(piece, sizeof piece, directive.c_str(),
                        static_cast<unsigned long>(static_cast<uint32_t>(integer)));
        else
          std::snprintf(piece, sizeof piece, directive.c_str(),
                        static_cast<unsigned>(static_cast<uint32_t>(integer)));
        break;
      case ConvKind::Real:
        if (c.lengthBits == 128)
          std::snprintf(piece, sizeof piece, directive.c_str(), static_cast<long double>(real));
        else
          std::snprintf(piece, sizeof piece, directive.c_str(), real);
        break;
      default:  // a character
        std::snprintf(piece, sizeof piece, directive.c_str(), static_cast<int>(integer));
        break;
    }
    out += piece;
  }
  out.append(format + literalFrom, i - literalFrom);
  // Output that would not fit the buffer is cut, keeping the terminator.
  const size_t n = out.size() < size ? out.size() : size - 1;
  std::memcpy(buffer, out.data(), n);
  buffer[n] = '\0';
  return n;
}

int ScanArguments(const char* text, const char* format, ScanTarget* targets, int targetCount) {
  if (text == nullptr || format == nullptr) return 0;
  struct Slot {
    ConvKind kind;
    int lengthBits;
    int start;  // where the conversion's input starts, from "%n"
    long long integer;
    unsigned long long unsignedInteger;
    float single;
    double real;
    long double longReal;
    char character;
  };
  constexpr int kMaxTargets = 2;
  Slot slots[kMaxTargets] = {};
  void* pointers[2 * kMaxTargets] = {};
  int used = 0;
  std::string rewritten;
  size_t i = 0;
  while (format[i] != '\0') {
    if (format[i] != '%') {
      rewritten += format[i++];
      continue;
    }
    const Conversion c = ReadConversion(format, i, true);
    i = c.end;
    if (c.kind == ConvKind::Percent) {
      rewritten += "%%";
      continue;
    }
    if (c.kind == ConvKind::Count || c.kind == ConvKind::None) continue;  // nothing to write to
    std::string directive(format + c.start, c.end - c.start);
    const bool ours = !c.star && !c.wide && used < targetCount && used < kMaxTargets &&
                      (c.kind == ConvKind::Signed || c.kind == ConvKind::Unsigned ||
                       c.kind == ConvKind::Real || (c.kind == ConvKind::Char && c.width <= 1));
    if (!ours) {
      if (!c.star) directive.insert(1, "*");  // matched, not assigned
      rewritten += directive;
      continue;
    }
    Slot& slot = slots[used];
    slot.kind = c.kind;
    slot.lengthBits = c.lengthBits;
    rewritten += "%n";
    pointers[2 * used] = &slot.start;
    void*& target = pointers[2 * used + 1];
    if (c.kind == ConvKind::Signed || c.kind == ConvKind::Unsigned) {
      // Integers are read at 64 bits and brought to their width afterwards,
      // as a platform with a 32-bit long reads them.
      std::string head = directive.substr(0, directive.size() - 1);
      while (head.size() > 1 && std::strchr("hlqjzt", head.back()) != nullptr) head.pop_back();
      rewritten += head + "ll" + directive.back();
      target = c.kind == ConvKind::Signed ? static_cast<void*>(&slot.integer)
                                          : static_cast<void*>(&slot.unsignedInteger);
    } else if (c.kind == ConvKind::Real) {
      rewritten += directive;
      target = c.lengthBits == 128  ? static_cast<void*>(&slot.longReal)
               : c.lengthBits == 32 ? static_cast<void*>(&slot.real)
                                    : static_cast<void*>(&slot.single);
    } else {
      rewritten += directive;
      target = &slot.character;
    }
    ++used;
  }
  if (used == 0) return 0;  // nothing of ours to assign
  int assigned = 0;
  switch (used) {
    case 1:
      assigned = std::sscanf(text, rewritten.c_str(), pointers[0], pointers[1]);
      break;
    default:
      assigned =
          std::sscanf(text, rewritten.c_str(), pointers[0], pointers[1], pointers[2], pointers[3]);
      break;
  }
  if (assigned <= 0) return 0;
  // Only our conversions assign, in order: the first `assigned` took a value.
  for (int s = 0; s < used && s < assigned; ++s) {
    const Slot& slot = slots[s];
    unsigned char bytes[sizeof(long double) > 8 ? sizeof(long double) : 8] = {};
    size_t natural = 0;
    const size_t narrow = slot.lengthBits == 16 ? 2 : slot.lengthBits == 8 ? 1 : 4;
    if (slot.kind == ConvKind::Signed) {
      long long v = slot.integer;
      natural = 8;
      if (slot.lengthBits != 64) {
        // A 32-bit strtol saturates at the limits of its long.
        v = v > INT32_MAX ? INT32_MAX : (v < INT32_MIN ? INT32_MIN : v);
        natural = narrow;
      }
      std::memcpy(bytes, &v, sizeof v);
    } else if (slot.kind == ConvKind::Unsigned) {
      unsigned long long v = slot.unsignedInteger;
      natural = 8;
      if (slot.lengthBits != 64) {
        // A 32-bit strtoul: a magnitude beyond 32 bits gives the maximum, a
        // negative number is negated in 32 bits.
        const char* p = text + slot.start;
        while (*p == ' ' || (*p >= '\t' && *p <= '\r')) ++p;
        const unsigned long long magnitude = *p == '-' ? 0 - v : v;
        v = magnitude > UINT32_MAX ? UINT32_MAX : static_cast<uint32_t>(v);
        natural = narrow;
      }
      std::memcpy(bytes, &v, sizeof v);
    } else if (slot.kind == ConvKind::Real) {
      if (slot.lengthBits == 128) {
        natural = sizeof(long double);
        std::memcpy(bytes, &slot.longReal, natural);
      } else if (slot.lengthBits == 32) {
        natural = 8;
        std::memcpy(bytes, &slot.real, 8);
      } else {
        natural = 4;
        std::memcpy(bytes, &slot.single, 4);
      }
    } else {
      natural = 1;
      bytes[0] = static_cast<unsigned char>(slot.character);
    }
    ScanTarget& t = targets[s];
    std::memcpy(t.address, bytes, natural < t.size ? natural : t.size);
    t.assigned = 1;
  }
  return assigned;
}

}  // namespace nxrows

// ---------------------------------------------------------------------------
// Print and scan handlers of the plain scalars.  Each formats into a local
// buffer of kTextBuffer bytes; longer output is cut there.

namespace nxrows {

NxString& BytePrint(NxString& result, void* value, const char* format, uint32_t count) {
  result = "";
  const unsigned char* bytes = static_cast<const unsigned char*>(value);
  char buffer[kTextBuffer];
  for (uint32_t i = 0; i < count; ++i) {
    const unsigned b = bytes[i];
    const PrintArgument argument{false, static_cast<int64_t>(b), 0.0};
    if (std::isprint(static_cast<int>(b)))
      FormatArguments(buffer, sizeof buffer, format, &argument, 1);
    else
      FormatArguments(buffer, sizeof buffer, "0x%02x", &argument, 1);
    result += NxString(static_cast<const char*>(buffer));
  }
  return result;
}

namespace {

NxString& PrintInteger(NxString& result, int64_t value, const char* format) {
  char buffer[kTextBuffer];
  const PrintArgument argument{false, value, 0.0};
  FormatArguments(buffer, sizeof buffer, format, &argument, 1);
  result = static_cast<const char*>(buffer);
  return result;
}

NxString& ShortPrint(NxString& result, void* value, const char* format, uint32_t) {
  int16_t v;
  std::memcpy(&v, value, sizeof v);
  return PrintInteger(result, v, format);
}

NxString& LongPrint(NxString& result, void* value, const char* format, uint32_t) {
  int32_t v;
  std::memcpy(&v, value, sizeof v);
  return PrintInteger(result, v, format);
}

NxString& FloatPrint(NxString& result, void* value, const char* format, uint32_t) {
  float v;
  std::memcpy(&v, value, sizeof v);
  char buffer[kTextBuffer];
  const PrintArgument argument{true, 0, static_cast<double>(v)};
  FormatArguments(buffer, sizeof buffer, format, &argument, 1);
  result = static_cast<const char*>(buffer);
  return result;
}

// The portable form of a double: a format that does not start with "%" and
// whose first four characters are those of "ldexp(" gets the fraction and the
// exponent of the value, so that the text reads back bit for bit.
const char kPortable[] = "ldexp(";

bool IsPortableFormat(const char* format) {
  return format != nullptr && format[0] != '%' && std::strncmp(format, kPortable, 4) == 0;
}

NxString& DoublePrint(NxString& result, void* value, const char* format, uint32_t) {
  double v;
  std::memcpy(&v, value, sizeof v);
  char buffer[kTextBuffer];
  if (IsPortableFormat(format)) {
    int exponent = 0;
    const double fraction = std::frexp(v, &exponent);
    const PrintArgument arguments[2] = {{true, 0, fraction}, {false, exponent, 0.0}};
    FormatArguments(buffer, sizeof buffer, format, arguments, 2);
  } else {
    const PrintArgument argument{true, 0, v};
    FormatArguments(buffer, sizeof buffer, format, &argument, 1);
  }
  result = static_cast<const char*>(buffer);
  return result;
}

template <size_t W>
void* PlainScan(void* value, NxString& text, const char* format, uint32_t) {
  if (value == nullptr) return nullptr;
  const EightBitText input(text);
  ScanTarget target{value, W, 0};
  ScanArguments(input.c_str(), format, &target, 1);
  return value;
}

void* DoubleScan(void* value, NxString& text, const char* format, uint32_t) {
  if (value == nullptr) return nullptr;
  const EightBitText input(text);
  if (IsPortableFormat(format)) {
    double fraction = 0.0;
    int exponent = 0;
    ScanTarget targets[2] = {{&fraction, sizeof fraction, 0}, {&exponent, sizeof exponent, 0}};
    ScanArguments(input.c_str(), format, targets, 2);
    if (targets[0].assigned || targets[1].assigned) {
      const double v = std::ldexp(fraction, exponent);
      std::memcpy(value, &v, sizeof v);
    }
  } else {
    ScanTarget target{value, 8, 0};
    ScanArguments(input.c_str(), format, &target, 1);
  }
  return value;
}

}  // namespace

void* ByteScan(void* value, NxString& text, const char* format, uint32_t count) {
  if (value == nullptr) return nullptr;
  const EightBitText input(text);
  const char* p = input.c_str();
  unsigned char* element = static_cast<unsigned char*>(value);
  for (uint32_t i = 0; i < count && *p != '\0'; ++i, ++p, ++element) {
    unsigned hex = 0;
    ScanTarget hexTarget{&hex, sizeof hex, 0};
    if (ScanArguments(p, "0x%x", &hexTarget, 1) > 0) {
      *element = static_cast<unsigned char>(hex);
    } else {
      ScanTarget target{element, 1, 0};
      ScanArguments(p, format, &target, 1);
    }
  }
  return value;
}

// ---------------------------------------------------------------------------
// Conversion to and from text, default values.

namespace {

void* StringCreate(uint32_t count);
void* StringDelete(void* value, uint32_t count);

// ConvertTo: string i takes the text of element i, appended to a default
// string (from the string row's own Create) so that it arrives in the
// default code set.
template <typename T, typename Text>
NxTypeConvertData* ScalarConvertTo(void* value, uint32_t count, Text text) {
  const unsigned char* p = static_cast<const unsigned char*>(value);
  return ToStrings(StringCreate, StringDelete, count, [p, text](NxString& string, uint32_t i) {
    T v;
    std::memcpy(&v, p + static_cast<size_t>(i) * sizeof(T), sizeof v);
    string += text(v);
  });
}

// ConvertFrom: element i takes the value of string i; a missing or null
// string gives the missing value 0.
template <typename T, typename Value>
void* ScalarConvertFrom(NxCreateFunc create, NxTypeConvertData* data, uint32_t count, Value value) {
  void* result = create(count);
  if (result == nullptr || count == 0) return result;
  unsigned char* p = static_cast<unsigned char*>(result);
  for (uint32_t i = 0; i < count; ++i) {
    NxString* s = data != nullptr ? data->GetString(static_cast<int>(i)) : nullptr;
    const T v = (s == nullptr || s->IsNullValue()) ? T(0) : value(*s);
    std::memcpy(p + static_cast<size_t>(i) * sizeof(T), &v, sizeof v);
  }
  return result;
}

NxString ByteText(int8_t v) {
  return NxString(static_cast<short>(v));
}
NxString ShortText(int16_t v) {
  return NxString(static_cast<short>(v));
}
NxString LongText(int32_t v) {
  return NxString(static_cast<long>(v));
}
NxString IntText(int32_t v) {
  return NxString(static_cast<int>(v));
}
NxString DoubleText(double v) {
  return NxString(v);
}
NxString FloatText(float v) {
  return NxString(static_cast<double>(v));
}

int8_t ByteValue(NxString& s) {
  return static_cast<int8_t>(static_cast<short>(s));
}
int16_t ShortValue(NxString& s) {
  return static_cast<short>(s);
}
int32_t LongValue(NxString& s) {
  return static_cast<int32_t>(static_cast<long>(s));
}
int32_t IntValue(NxString& s) {
  return static_cast<int>(s);
}
double DoubleValue(NxString& s) {
  return static_cast<double>(s);
}
float FloatValue(NxString& s) {
  // Narrowed as the floating-point unit does: beyond the range of a float
  // the value becomes an infinity.
  const double d = static_cast<double>(s);
  if (d > FLT_MAX) return HUGE_VALF;
  if (d < -FLT_MAX) return -HUGE_VALF;
  return static_cast<float>(d);
}

NxTypeConvertData* ByteConvertTo(void* v, uint32_t n) {
  return ScalarConvertTo<int8_t>(v, n, ByteText);
}
NxTypeConvertData* ShortConvertTo(void* v, uint32_t n) {
  return ScalarConvertTo<int16_t>(v, n, ShortText);
}
NxTypeConvertData* LongConvertTo(void* v, uint32_t n) {
  return ScalarConvertTo<int32_t>(v, n, LongText);
}
NxTypeConvertData* IntConvertTo(void* v, uint32_t n) {
  return ScalarConvertTo<int32_t>(v, n, IntText);
}
NxTypeConvertData* FloatConvertTo(void* v, uint32_t n) {
  return ScalarConvertTo<float>(v, n, FloatText);
}
NxTypeConvertData* DoubleConvertTo(void* v, uint32_t n) {
  return ScalarConvertTo<double>(v, n, DoubleText);
}

// The rows of a function set share its ConvertFrom, which makes the array
// with the set's Create.
void* ByteConvertFrom(NxTypeConvertData* d, uint32_t n) {
  return ScalarConvertFrom<int8_t>(ScalarCreate<1, true>, d, n, ByteValue);
}
void* ShortConvertFrom(NxTypeConvertData* d, uint32_t n) {
  return ScalarConvertFrom<int16_t>(ScalarCreate<2, false>, d, n, ShortValue);
}
void* LongConvertFrom(NxTypeConvertData* d, uint32_t n) {
  return ScalarConvertFrom<int32_t>(ScalarCreate<4, false>, d, n, LongValue);
}
void* IntConvertFrom(NxTypeConvertData* d, uint32_t n) {
  return ScalarConvertFrom<int32_t>(ScalarCreate<4, false>, d, n, IntValue);
}
void* FloatConvertFrom(NxTypeConvertData* d, uint32_t n) {
  return ScalarConvertFrom<float>(ScalarCreate<4, false>, d, n, FloatValue);
}
void* DoubleConvertFrom(NxTypeConvertData* d, uint32_t n) {
  return ScalarConvertFrom<double>(ScalarCreate<8, false>, d, n, DoubleValue);
}

}  // namespace

void* DefaultFromEmptyStrings(NxConvertFromFunc convertFrom, uint32_t count) {
  // `count` default strings in a block with a hidden element count, in a
  // carrier without a manager: this function frees them itself.
  NxString* strings = count > 0 ? ObjectBlockCreate<NxString, kArrayHeader>(count) : nullptr;
  NxTypeConvertData* data = NxTypeConvertData::Make(NxTYPE_NxString, count, strings, nullptr);
  void* result = convertFrom(data, count);
  delete data;
  if (strings != nullptr) ObjectBlockDelete<NxString, kArrayHeader>(strings);
  return result;
}

namespace {

void* ByteDefault(uint32_t n, int) {
  return DefaultFromEmptyStrings(ByteConvertFrom, n);
}
void* ShortDefault(uint32_t n, int) {
  return DefaultFromEmptyStrings(ShortConvertFrom, n);
}
void* LongDefault(uint32_t n, int) {
  return DefaultFromEmptyStrings(LongConvertFrom, n);
}
void* IntDefault(uint32_t n, int) {
  return DefaultFromEmptyStrings(IntConvertFrom, n);
}
void* FloatDefault(uint32_t n, int) {
  return DefaultFromEmptyStrings(FloatConvertFrom, n);
}
void* DoubleDefault(uint32_t n, int) {
  return DefaultFromEmptyStrings(DoubleConvertFrom, n);
}

// ---------------------------------------------------------------------------
// The memory side of the string rows: arrays of NxString with a hidden
// 32-bit element count in front of element 0 from count 2 up.

void* StringCreate(uint32_t count) {
  return ObjectArrayCreate<NxString>(count);
}

void* StringDelete(void* value, uint32_t count) {
  return ObjectArrayDelete<NxString>(value, count);
}

uint32_t StringNullSizeGet(uint32_t count) {
  return 6 * count;
}

int StringIsNull(void* value) {
  return static_cast<NxString*>(value)->IsNullValue();
}
int StringSetNull(void* value) {
  return static_cast<NxString*>(value)->SetNullValue();
}

NxTypeConvertData* StringConvertTo(void* value, uint32_t count) {
  NxString* source = static_cast<NxString*>(value);
  return ToStrings(StringCreate, StringDelete, count, [source](NxString& string, uint32_t i) {
    if (source[i].IsNullValue())
      string.SetNullValue();
    else
      string += source[i];
  });
}

void* StringConvertFrom(NxTypeConvertData* data, uint32_t count) {
  return FromStrings<NxString>(StringCreate(count), data, count, [](NxString& string, NxString* s) {
    if (s == nullptr)
      string.SetNullValue();
    else
      string = *s;
  });
}

void* StringDefault(uint32_t count, int null) {
  return NullOrEmptyDefault<NxString>(StringCreate, StringConvertFrom, count, null,
                                      [](NxString& string) { string.SetNullValue(); });
}

}  // namespace

}  // namespace nxrows

// ---------------------------------------------------------------------------
// The disk forms of strings.  A text record is L (16 bits: the bytes behind
// it), the code set, the language, the text in its char width and the bytes
// 0 and 0xFF.  A key record has the same frame with code set 254, the
// collation state in place of the language and 16-bit orders as its text; a
// key cut at the end of its room has no closing bytes, and its L counts the
// bytes written.  An old record is L and the 8-bit texts of a whole array,
// each with its zero byte.  The last byte of a record tells a text record
// (0xFF) from an old one (0).

namespace {

constexpr unsigned char kNoCodeSet = 0;
constexpr unsigned char kUnicodeCodeSet = 253;
constexpr unsigned char kOrderCodeSet = 254;
constexpr unsigned char kNullLanguage = 254;
constexpr unsigned char kDropCodeSet = 0x20;
constexpr unsigned char kNameCodeSet = 0x40;
constexpr unsigned char kKeyForm = 0x80;
// The largest data length d (L = d + 2) that the length field can state.
constexpr uint32_t kLongestData = 65533;

inline uint32_t CharWidth(unsigned char codeSet) {
  return codeSet > 224 ? 2u : 1u;
}
inline bool MemoryForm(unsigned char format) {
  return (format & 8) != 0;
}

using nxrows::Get16;
using nxrows::Put16;

// The bytes of a source whose size the caller states.  Reads behind the end
// give 0, so that Translate never reads past what it was handed.
struct Stated {
  const unsigned char* bytes;
  uint32_t size;
  unsigned char At(uint64_t offset) const { return offset < size ? bytes[offset] : 0; }
  uint32_t Short(uint64_t offset, unsigned char format) const {
    if (offset + 2 <= size) return Get16(bytes + offset, format);
    const unsigned char pair[2] = {At(offset), At(offset + 1)};
    return Get16(pair, format);
  }
};

// The code set that a format gives a string: order text stays order text;
// bit 0x20 drops every other code set; bit 0x40 names the native code set
// for code set 0.
unsigned char OutputCodeSet(unsigned char codeSet, unsigned char format) {
  if (codeSet == kOrderCodeSet) return codeSet;
  if ((format & kDropCodeSet) != 0) return kNoCodeSet;
  if ((format & kNameCodeSet) != 0 && codeSet == kNoCodeSet)
    return NxLanguageContext::GetNativeCodeSet();
  return codeSet;
}

// Only text of a real code set turns into orders.
inline bool MakesOrders(unsigned char outputCodeSet) {
  return outputCodeSet != kNoCodeSet && outputCodeSet != kOrderCodeSet;
}

// The room that a key may take for a record of data length d: two orders per
// character at worst.
inline uint32_t KeyRoom(uint32_t d, unsigned char codeSet) {
  return CharWidth(codeSet) == 1 ? d * 4 : d * 2;
}

// The data length d of a string's text record: the text's bytes (all of
// `size`, inner zeros included) and the closing 0 and 0xFF.  The length
// field can't state more than 65533: an 8-bit text of 65532 characters, one
// more than a record holds, keeps 65531 of them.
uint32_t DataLength(const NxString& s) {
  if (s.size == 0) return 2;
  const uint32_t d = CharWidth(s.codeSet) == 2 ? s.size : s.size + 1u;
  return d < kLongestData ? d : kLongestData;
}

// Text bytes between memory (machine order) and a record: 16-bit units take
// the byte order of the format, 8-bit text is copied as it stands.
void CopyText(void* to, const void* from, uint32_t bytes, uint32_t width, unsigned char format) {
  if (bytes == 0) return;
  if (width == 2)
    ShortStore(to, from, (format & 0x0F) == 2 ? 2 : 1, bytes / 2);
  else
    std::memcpy(to, from, bytes);
}

unsigned char* Buffer(size_t bytes) {
  return static_cast<unsigned char*>(nxrows::MallocOrHandle(bytes));
}

// Gives an emptied string the `bytes` bytes of record text at `text`, closed
// by a terminator of its char width: what assigning the text with SetText
// does for text of the string's own code set, in one copy.  No bytes leave
// the string without a buffer.
void SetRecordText(NxString& s, const unsigned char* text, uint32_t bytes, unsigned char format) {
  const uint32_t w = CharWidth(s.codeSet);
  bytes -= bytes % w;
  if (bytes == 0) return;
  unsigned char* buffer = Buffer(bytes + w);
  CopyText(buffer, text, bytes, w, format);
  std::memset(buffer + bytes, 0, w);
  s.data = reinterpret_cast<char*>(buffer);
  s.size = static_cast<unsigned short>(bytes + w);
}

// An old record: each string takes the next text by operator=(const char*),
// which gives it the default 8-bit code set and the default language.
// Strings for which the record has no text left get an empty one.
uint32_t LoadOldRecord(NxString* strings, const unsigned char* record, uint32_t length,
                       uint32_t count) {
  const char* at = reinterpret_cast<const char*>(record) + 2;
  const char* const end = at + length;
  for (uint32_t i = 0; i < count; ++i) {
    strings[i] = at < end ? at : "";
    if (at < end) at += strings[i].size;
  }
  return length + 2;
}

}  // namespace

uint32_t StringStore(void* disk, const void* memory, unsigned char format, uint32_t count) {
  format &= 0x0F;
  unsigned char* out = static_cast<unsigned char*>(disk);
  const NxString* strings = static_cast<const NxString*>(memory);
  uint32_t total = 0;
  for (uint32_t i = 0; i < count; ++i) {
    const NxString& s = strings[i];
    const uint32_t d = DataLength(s);
    if (d == kLongestData && CharWidth(s.codeSet) == 1 && s.size >= kLongestData)
      ZENTRO_assert("\"text too long for its record\" && 0", "src\\nxtypes", __LINE__);
    Put16(out, d + 2, format);
    out[2] = s.codeSet;
    out[3] = s.language;
    out[d + 2] = 0;
    out[d + 3] = 0xFF;
    CopyText(out + 4, s.data, d - 2, CharWidth(s.codeSet), format);
    out += d + 4;
    total += d + 4;
  }
  return total & 0xFFFF;
}

uint32_t StringLoad(void* memory, const void* disk, unsigned char format, uint32_t count) {
  const unsigned char* in = static_cast<const unsigned char*>(disk);
  NxString* strings = static_cast<NxString*>(memory);
  if (in == nullptr) return 0;
  const uint32_t first = Get16(in, format);
  if (in[first + 1] == 0) return LoadOldRecord(strings, in, first, count);
  uint32_t total = 0;
  for (uint32_t i = 0; i < count; ++i) {
    const uint32_t length = Get16(in, format);
    NxString& s = strings[i];
    s.Destroy();
    s.codeSet = in[2];
    s.language = in[3];
    SetRecordText(s, in + 4, length > 4 ? length - 4 : 0, format);
    in += length + 2;
    total += length + 2;
  }
  return total & 0xFFFF;
}

uint32_t StringSizeGet(const void* value, unsigned char valueFormat, unsigned char diskFormat,
                       uint32_t count) {
  const bool key = (diskFormat & kKeyForm) != 0;
  uint32_t total = 0;
  if (MemoryForm(valueFormat)) {
    const NxString* strings = static_cast<const NxString*>(value);
    for (uint32_t i = 0; i < count; ++i) {
      uint32_t d = DataLength(strings[i]);
      if (key && MakesOrders(OutputCodeSet(strings[i].codeSet, diskFormat)))
        d = KeyRoom(d, strings[i].codeSet);
      total += d + 4;
    }
    return total;
  }
  const unsigned char* in = static_cast<const unsigned char*>(value);
  for (uint32_t i = 0; i < count; ++i) {
    const uint32_t length = Get16(in, diskFormat);
    if (!key && in[length + 1] == 0) return length + 2;
    uint32_t stated = length;
    if (key && MakesOrders(OutputCodeSet(in[2], diskFormat))) stated = KeyRoom(length, in[2]);
    total += stated + 2;
    in += length + 2;
  }
  return total;
}

namespace nxrows {

uint32_t StoreWithin(NxStoreFunc store, NxSizeGetFunc sizeGet, void* destination,
                     uint32_t destinationSize, const void* memory, unsigned char format,
                     uint32_t count) {
  if (destinationSize != 0) std::memset(destination, 0, destinationSize);
  const uint32_t needed = sizeGet(memory, 8, format, count);
  if (needed <= destinationSize) return store(destination, memory, format, count);
  unsigned char* scratch = Buffer(needed);
  store(scratch, memory, format, count);
  std::memcpy(destination, scratch, destinationSize);
  std::free(scratch);
  return destinationSize;
}

}  // namespace nxrows

namespace {

// The size of the records at a file's position.  The file is asked for the
// first two bytes; a record that reaches behind the end of the file can't
// be inspected and counts 65535 bytes for itself and each element after it.
uint32_t StringSizeGetFromMemFile(MemFile* file, unsigned char format, uint32_t count) {
  uint32_t granted = 2;
  const unsigned char* at =
      file != nullptr ? file->Seek(0, MemFile::FromCurrent, &granted, 0) : nullptr;
  if (at == nullptr || granted == 0) return 0;
  const bool key = (format & kKeyForm) != 0;
  const int64_t left = int64_t{file->size} - file->position;
  int64_t offset = 0;
  uint32_t total = 0;
  for (uint32_t i = 0; i < count; ++i) {
    const uint32_t worst = (count - i) * 65535u;
    if (offset + (key ? 3 : 2) > left) return worst;
    const uint32_t length = Get16(at + offset, format);
    if (!key && count - i > 1) {
      if (offset + length + 2 > left) return worst;
      if (at[offset + length + 1] == 0) return length + 2;
    }
    uint32_t stated = length;
    if (key && MakesOrders(OutputCodeSet(at[offset + 2], format)))
      stated = KeyRoom(length, at[offset + 2]);
    total += stated + 2;
    offset += length + 2;
  }
  return total;
}

// ---------------------------------------------------------------------------
// Translation between the forms.

// True when the records that StringLoad reads for `count` elements lie
// inside the stated bytes: the first record, whose last byte it looks at,
// and, unless that is an old record, `count` records in a row, each with
// its code set and language.
bool RecordsFit(const Stated& in, unsigned char format, uint32_t count, bool old) {
  uint64_t offset = 0;
  for (uint32_t i = 0; i == 0 || (!old && i < count); ++i) {
    if (offset + 2 > in.size) return false;
    const uint32_t length = in.Short(offset, format);
    if (!old && length < 2) return false;
    offset += uint64_t{length} + 2;
    if (offset > in.size) return false;
  }
  return true;
}

// Loading from a source that may be cut: each record is taken as far as the
// stated bytes reach, and the elements behind the last record get its code
// set and language and no text.
uint32_t LoadCutSource(NxString* strings, const Stated& in, unsigned char format, uint32_t count,
                       unsigned char codeSet, unsigned char language) {
  uint64_t used = 0;
  uint32_t i = 0;
  for (; i < count && used + 5 < in.size; ++i) {
    uint64_t length = in.Short(used, format);
    if (length + used > in.size) length = in.size - used;
    codeSet = in.At(used + 2);
    language = in.At(used + 3);
    NxString& s = strings[i];
    s.Destroy();
    s.codeSet = codeSet;
    s.language = language;
    SetRecordText(s, in.bytes + used + 4, length > 4 ? static_cast<uint32_t>(length - 4) : 0,
                  format);
    used += length + 2;
  }
  for (; i < count; ++i) {
    strings[i].Destroy();
    strings[i].codeSet = codeSet;
    strings[i].language = language;
    used += 6;
  }
  return static_cast<uint32_t>(used);
}

// Disk records into strings, never reading past the stated bytes: StringLoad
// when its records lie inside them, else the cut-source reading.
uint32_t LoadWithin(NxString* strings, const Stated& in, unsigned char format, uint32_t count,
                    bool old, unsigned char codeSet, unsigned char language) {
  if (RecordsFit(in, format, count, old)) return StringLoad(strings, in.bytes, format, count);
  return LoadCutSource(strings, in, format, count, codeSet, language);
}

// The configuration key oldIndexUnicodeOrder, asked once: when it is set,
// records of Unicode text are copied as they stand instead of narrowed.
bool KeepsUnicodeRecords() {
  static const bool keep = [] {
    NxConfig* config = DefaultConfig(NxCONFIG_QUERY);
    uint16_t flag = 0;
    if (config != nullptr) config->Query("oldIndexUnicodeOrder", &flag, nullptr);
    return flag != 0;
  }();
  return keep;
}

// An old record as a text record of the output code set and language 0.  The
// old record's closing zero becomes the text's 0, followed by 0xFF when the
// destination has room for it.  The result counts the bytes up to the 0.
uint32_t OldToTextRecord(unsigned char* out, unsigned char format, uint32_t room, const Stated& in,
                         uint32_t length, unsigned char output) {
  const uint64_t whole = uint64_t{in.size} + 2;
  const uint32_t n = whole < room ? static_cast<uint32_t>(whole) : room;
  if (room != 0) std::memset(out, 0, room);
  unsigned char header[4];
  Put16(header, length + 3, format);
  header[2] = output;
  header[3] = 0;
  std::memcpy(out, header, room < 4 ? room : 4);
  if (n > 4) std::memcpy(out + 4, in.bytes + 2, n - 4);
  if (uint64_t{in.size} + 3 <= room) out[length + 4] = 0xFF;
  return n;
}

// A single image of text records, copied with the output code set in byte
// 2.  A record of Unicode text is narrowed to one byte per unit (0x7F for
// units above 255) unless oldIndexUnicodeOrder is set.  Strings in memory
// are stored into a scratch image first.
uint32_t CopyRecordImage(unsigned char* out, unsigned char format, uint32_t room,
                         const void* source, unsigned char sourceFormat, uint32_t sourceSize,
                         uint32_t count, unsigned char codeSet, unsigned char output) {
  unsigned char* scratch = nullptr;
  Stated image{static_cast<const unsigned char*>(source), sourceSize};
  unsigned char imageFormat = sourceFormat;
  if (MemoryForm(sourceFormat)) {
    imageFormat = format & 0x0F;
    const uint32_t size = StringSizeGet(source, 8, imageFormat, count);
    scratch = Buffer(size);
    StringStore(scratch, source, imageFormat, count);
    image = Stated{scratch, size};
  }
  uint64_t n = image.size;
  const bool narrow = codeSet == kUnicodeCodeSet && !KeepsUnicodeRecords();
  uint32_t narrowLength = 0;
  if (narrow) {
    const uint32_t length = image.Short(0, imageFormat);
    narrowLength = (length > 4 ? (length - 4) / 2 : 0) + 4;
    n = narrowLength + 2;
  }
  bool cut = false;
  if (n > room) {
    n = room;
    cut = true;
  } else if (n < room) {
    std::memset(out, 0, room);
  }
  if (narrow) {
    unsigned char header[4];
    Put16(header, narrowLength, format);
    header[2] = output;
    header[3] = output;
    std::memcpy(out, header, n < 4 ? n : 4);
    const uint64_t end = cut ? n : n - 2;
    for (uint64_t k = 4; k < end; ++k) {
      const uint32_t unit = image.Short(4 + 2 * (k - 4), imageFormat);
      out[k] = static_cast<unsigned char>(unit <= 255 ? unit : 0x7F);
    }
    if (!cut) {
      out[n - 2] = 0;
      out[n - 1] = 0xFF;
    }
  } else if (n != 0) {
    std::memcpy(out, image.bytes, n);
  }
  if (n > 2) out[2] = output;
  std::free(scratch);
  return static_cast<uint32_t>(n);
}

// The text of one element as the collation reader of a key sees it.  A
// string's text that ends in a terminator of the reader's width is read in
// place.  Any other text is read in place while it goes on, and from a copy
// of its last bytes, closed by a zero unit, towards its end: a record's
// 16-bit text is followed by 0 and 0xFF, which don't end it, a cut record is
// not closed at all, and a string may have another width than the code set
// that reads it.  The copy holds 128 characters of 16 bits, far more than the
// longest contraction in any order table, so the reader's look-ahead from
// the text itself never reaches the text's end.
class KeyText {
 public:
  static constexpr uint32_t kTail = 256;

  // A text that ends in a terminator of the reader's width: read in place.
  void SetTerminated(const unsigned char* text) {
    start_ = text;
    onText_ = false;
    tailEnd_ = nullptr;
  }
  // `bytes` is a whole number of characters.
  void Set(const unsigned char* text, uint32_t bytes) {
    const uint32_t kept = bytes < kTail ? bytes : kTail;
    tailFrom_ = text + (bytes - kept);
    std::memcpy(tail_, tailFrom_, kept);
    tail_[kept] = 0;
    tail_[kept + 1] = 0;
    tailEnd_ = tail_ + kept;
    onText_ = bytes > kept;
    start_ = onText_ ? text : tail_;
  }
  const char* start() const { return reinterpret_cast<const char*>(start_); }
  // Moves a reader that went into the copied part onto the copy.
  void Follow(NxStringIterator& reader) {
    if (onText_ && reader.position >= tailFrom_) {
      reader.position = tail_ + (reader.position - tailFrom_);
      onText_ = false;
    }
  }
  // True when the reader has used all of the text.
  bool Used(const NxStringIterator& reader) const {
    return !onText_ && reader.position >= tailEnd_;
  }

 private:
  alignas(2) unsigned char tail_[kTail + 2];
  const unsigned char* tailFrom_ = nullptr;
  const unsigned char* tailEnd_ = nullptr;
  const unsigned char* start_ = nullptr;
  bool onText_ = false;
};

// The orders of a key.  Characters whose record needs none of the
// collation's further work (no contraction, no language variant, no
// expansion) are read here straight from the order table; everything else
// goes to GetNextOrder, which gives the same order and state for the
// characters handled here.
class KeyOrders {
 public:
  explicit KeyOrders(NxStringIterator& reader)
      : reader_(reader), home_(reader.state), wide_(reader.codeSet > 224) {
    const NxCodeSet* set =
        reader.codeSet < kOrderCodeSet ? NxLanguageContext::QueryCodeSet(reader.codeSet) : nullptr;
    table_ = set != nullptr ? set->orderTable : nullptr;
  }

  unsigned short Next() {
    if (table_ != nullptr && reader_.overflow == nullptr) {
      const unsigned char* at = reader_.position;
      const unsigned short value = wide_ ? Unit(at) : *at;
      if (value == 0) return 0;
      const NxOrderRecord* record = table_->Find(value);
      if (record != nullptr &&
          (record->hasNext | record->hasVariants | record->hasExpansion) == 0) {
        reader_.state = record->stateSource != nullptr ? *record->stateSource : home_;
        reader_.position += wide_ ? 2 : 1;
        return record->order;
      }
    }
    return reader_.GetNextOrder(1);
  }

 private:
  // A 16-bit unit as the iterator reads it: 8 machine order, 2 most
  // significant byte first, else least significant byte first.
  unsigned short Unit(const unsigned char* at) const {
    switch (reader_.format & 0x0F) {
      case 8: {
        unsigned short unit;
        std::memcpy(&unit, at, 2);
        return unit;
      }
      case 2:
        return static_cast<unsigned short>(at[0] << 8 | at[1]);
      default:
        return static_cast<unsigned short>(at[0] | at[1] << 8);
    }
  }

  NxStringIterator& reader_;
  const NxOrderTable* table_;
  const unsigned char home_;
  const bool wide_;
};

// Key records, one per element, for as long as the destination has more than
// the 4 bytes of a header left.  Each is built from the element's collation
// orders in the output code set and the element's language.  The state byte
// starts as the text's collation state (0 for language 254) and takes the
// state of the first order; a later change of state ends the key with a zero
// order and bit 7 in the state byte.  That first change counts only while
// nothing has been written in this call: from the second element on, any
// change ends the key.  A key closes with 0 and 0xFF after its zero order;
// one that runs out of room, or out of a cut source, ends without them and
// its L counts the bytes written.
uint32_t KeyRecords(unsigned char* out, unsigned char format, uint32_t room, const void* source,
                    unsigned char sourceFormat, uint32_t sourceSize, uint32_t count, bool old,
                    unsigned char output) {
  const bool fromMemory = MemoryForm(sourceFormat);
  const unsigned char readFormat = sourceFormat & 0x0F;
  const uint32_t width = CharWidth(output);
  const Stated in{static_cast<const unsigned char*>(source), sourceSize};
  KeyText text;
  uint32_t total = 0;
  uint64_t written = 0;  // orders written in this call
  uint64_t offset = 0;   // the next source record
  for (uint32_t i = 0; i < count && room > 4; ++i) {
    unsigned char language;
    bool sourceCut = false;
    uint32_t length = 0;
    if (fromMemory) {
      const NxString& s = static_cast<const NxString*>(source)[i];
      const uint32_t own = CharWidth(s.codeSet);
      if (own == width) {
        text.SetTerminated(reinterpret_cast<const unsigned char*>(s.StrGet()));
      } else {
        uint32_t bytes = s.data != nullptr && s.size > own ? s.size - own : 0;
        bytes -= bytes % width;
        text.Set(reinterpret_cast<const unsigned char*>(s.StrGet()), bytes);
      }
      language = s.language;
    } else {
      if (offset + 2 > in.size) break;
      length = in.Short(offset, readFormat);
      const uint64_t from = offset + (old ? 2 : 4);
      const uint64_t statedEnd = offset + (old ? uint64_t{length} + 2 : length);
      language = old ? 0 : in.At(offset + 3);
      uint64_t end = statedEnd < in.size ? statedEnd : in.size;
      if (end < from) end = from;
      // A text record whose closing 0 is not at hand is cut: its key ends
      // where the bytes end, without a zero order.
      sourceCut = !old && statedEnd >= in.size;
      uint64_t bytes = end - from;
      bytes -= bytes % width;
      text.Set(in.bytes + from, static_cast<uint32_t>(bytes));
    }

    NxStringIterator reader(text.start(), output, language, readFormat);
    KeyOrders orders(reader);
    unsigned char state = language == kNullLanguage ? 0 : reader.state;
    unsigned char* at = out + 4;
    unsigned char* const end = out + room;
    bool closed = false;
    while (end - at >= 2 && !(sourceCut && text.Used(reader))) {
      unsigned short order = orders.Next();
      text.Follow(reader);
      if (reader.state != state) {
        if (written != 0) {
          state |= 0x80;
          order = 0;
        } else if (order != 0) {
          state = reader.state;
        }
      }
      Put16(at, order, format);
      at += 2;
      ++written;
      if (order == 0) {
        closed = true;
        break;
      }
    }

    const uint32_t used = static_cast<uint32_t>(at - out);
    if (closed) at[-1] = 0xFF;
    Put16(out, closed ? used - 2 : used, format);
    out[2] = kOrderCodeSet;
    out[3] = state;
    total += used;
    out += used;
    room -= used;
    offset += uint64_t{length} + 2;
  }
  return total & 0xFFFF;
}

uint32_t StringTranslate(void* destination, unsigned char destinationFormat,
                         uint32_t destinationSize, void* source, unsigned char sourceFormat,
                         uint32_t sourceSize, uint32_t count) {
  unsigned char* out = static_cast<unsigned char*>(destination);
  const bool fromMemory = MemoryForm(sourceFormat);
  NxString* strings = static_cast<NxString*>(source);
  const Stated in{static_cast<const unsigned char*>(source), sourceSize};

  // The code set of the first string or record decides for all elements.
  unsigned char codeSet = kNoCodeSet;
  unsigned char language = 0;
  bool old = false;
  uint32_t first = 0;
  if (fromMemory) {
    if (count != 0) codeSet = strings[0].codeSet;
  } else {
    first = in.Short(0, sourceFormat);
    old = uint64_t{first} + 2 <= sourceSize && in.At(first + 1) == 0;
    if (!old) {
      codeSet = in.At(2);
      language = in.At(3);
    }
  }

  if (MemoryForm(destinationFormat)) {
    NxString* targets = static_cast<NxString*>(destination);
    if (fromMemory) {
      for (uint32_t i = 0; i < count; ++i) targets[i] = strings[i];
      return nxrows::kStringMemLen * count;
    }
    if ((sourceFormat & kKeyForm) == 0 || count <= 1)
      return LoadWithin(targets, in, sourceFormat, count, old, codeSet, language);
    return LoadCutSource(targets, in, sourceFormat, count, codeSet, language);
  }

  if (fromMemory && (destinationFormat & kKeyForm) == 0)
    return nxrows::StoreWithin(StringStore, StringSizeGet, out, destinationSize, source,
                               destinationFormat & 0x0F, count);
  if ((destinationFormat & kKeyForm) == 0 && destinationFormat != sourceFormat) {
    ZENTRO_assert("\"format combination not supported\" && 0", "src\\nxtypes", __LINE__);
    return 0;
  }
  const unsigned char output = OutputCodeSet(codeSet, destinationFormat);
  if ((destinationFormat & kKeyForm) != 0 && MakesOrders(output))
    return KeyRecords(out, destinationFormat, destinationSize, source, sourceFormat, sourceSize,
                      count, old, output);
  if (old) return OldToTextRecord(out, destinationFormat, destinationSize, in, first, output);
  return CopyRecordImage(out, destinationFormat, destinationSize, source, sourceFormat,
                         sourceSize, count, codeSet, output);
}

// ---------------------------------------------------------------------------
// The old string row: one old record for the whole array.

// 16-bit text goes into an old record in the default 8-bit code set, one
// byte per character ("?" for characters that it lacks), so that the record
// keeps as many bytes as Len() counts.
void NarrowInto(unsigned char* at, const NxString& s, uint32_t length) {
  const NxCodeSet* target = NxLanguageContext::QueryCodeSet(NxString::GetDefault8CodeSet());
  const unsigned char* units = reinterpret_cast<const unsigned char*>(s.StrGet());
  for (uint32_t k = 0; k < length; ++k) {
    unsigned short unit;
    std::memcpy(&unit, units + 2 * k, 2);
    const unsigned short c = target != nullptr ? target->MapFrom(unit, s.codeSet) : 0;
    at[k] = static_cast<unsigned char>(c != 0 && c < 256 ? c : '?');
  }
}

uint32_t OldStringStore(void* disk, const void* memory, unsigned char format, uint32_t count) {
  unsigned char* out = static_cast<unsigned char*>(disk);
  const NxString* strings = static_cast<const NxString*>(memory);
  uint32_t sum = 0;
  for (uint32_t i = 0; i < count; ++i) {
    const NxString& s = strings[i];
    const uint32_t length = s.Len();
    unsigned char* at = out + 2 + sum;
    if (CharWidth(s.codeSet) == 1)
      std::memcpy(at, s.StrGet(), length);
    else
      NarrowInto(at, s, length);
    at[length] = 0;
    sum += length + 1;
  }
  Put16(out, sum, format);
  return (sum & 0xFFFF) + 2;
}

// L of an old record, taken as a signed 16-bit number, and the 2 bytes of
// the field.
inline uint32_t OldRecordSize(const unsigned char* record, unsigned char format) {
  return static_cast<uint32_t>(static_cast<int16_t>(Get16(record, format)) + 2);
}

uint32_t OldStringSizeGet(const void* value, unsigned char valueFormat, unsigned char diskFormat,
                          uint32_t count) {
  if (!MemoryForm(valueFormat))
    return OldRecordSize(static_cast<const unsigned char*>(value), diskFormat);
  const NxString* strings = static_cast<const NxString*>(value);
  uint32_t size = count + 2;
  for (uint32_t i = 0; i < count; ++i) size += strings[i].Len();
  return size;
}

uint32_t OldStringSizeGetFromMemFile(MemFile* file, unsigned char format, uint32_t) {
  uint32_t granted = 2;
  const unsigned char* at =
      file != nullptr ? file->Seek(0, MemFile::FromCurrent, &granted, 0) : nullptr;
  if (at == nullptr || granted < 2) return 0;
  return OldRecordSize(at, format);
}

// Text records become old records by dropping the code set, the language
// and the 0xFF; an old record is copied.
uint32_t OldStringTranslate(void* destination, unsigned char destinationFormat,
                            uint32_t destinationSize, void* source, unsigned char sourceFormat,
                            uint32_t sourceSize, uint32_t count) {
  unsigned char* out = static_cast<unsigned char*>(destination);
  const Stated in{static_cast<const unsigned char*>(source), sourceSize};
  if (MemoryForm(destinationFormat)) {
    NxString* targets = static_cast<NxString*>(destination);
    if (MemoryForm(sourceFormat)) {
      NxString* strings = static_cast<NxString*>(source);
      for (uint32_t i = 0; i < count; ++i) targets[i] = strings[i];
      return nxrows::kStringMemLen * count;
    }
    const uint32_t first = in.Short(0, sourceFormat);
    const bool old = uint64_t{first} + 2 <= sourceSize && in.At(first + 1) == 0;
    return LoadWithin(targets, in, sourceFormat, count, old, in.At(2), in.At(3));
  }
  if (MemoryForm(sourceFormat))
    return nxrows::StoreWithin(OldStringStore, OldStringSizeGet, out, destinationSize, source,
                               destinationFormat & 0x0F, count);

  int64_t length = in.Short(0, sourceFormat);
  int64_t size = sourceSize;
  uint32_t from = 2;
  if (static_cast<uint16_t>(length + 2) <= static_cast<uint16_t>(sourceSize) &&
      in.At(static_cast<uint64_t>(length) + 1) == 0xFF) {
    length -= 3;
    size -= 3;
    from = 4;
  }
  int64_t n = size;
  if (n > int64_t{destinationSize})
    n = destinationSize;
  else if (n < int64_t{destinationSize})
    std::memset(out, 0, destinationSize);
  if (n < 2) return n > 0 ? static_cast<uint32_t>(n) : 0;
  Put16(out, static_cast<uint32_t>(length), destinationFormat);
  std::memcpy(out + 2, in.bytes + from, static_cast<size_t>(n - 2));
  return static_cast<uint32_t>(n);
}

}  // namespace

namespace {

// Adapters: the base library's functions take a const source in both
// directions, which is exactly the Load slot's form.
uint32_t CharMove(void* d, const void* s, unsigned char f, uint32_t n) {
  return CharStore(d, s, f, n);
}

// The plain scalar row of one function set.
struct ScalarSet {
  NxCreateFunc create;
  NxStoreFunc store;
  NxLoadFunc load;
  NxNullSizeGetFunc nullSizeGet;
  NxSizeGetFunc sizeGet;
  NxSizeGetFromMemFileFunc sizeGetFromMemFile;
  NxConstructorFunc constructor;
  NxAssignmentFunc assignment;
  NxCopyFunc copy;
  NxTranslateFunc translate;
  NxConvertToFunc convertTo;
  NxConvertFromFunc convertFrom;
  NxDefaultValueFunc defaultValue;
  NxPrintToNxStringFunc print;
  NxScanFromNxStringFunc scan;
};

constexpr ScalarSet kByteSet{ScalarCreate<1, true>,
                             CharStore,
                             CharStore,
                             CharNullSizeGet,
                             CharSizeGet,
                             ByteSizeGetFromMemFile,
                             ScalarConstructor<1>,
                             ScalarAssignment<1>,
                             ScalarCopy<1>,
                             ScalarTranslate<1, CharMove, CharStore>,
                             nxrows::ByteConvertTo,
                             nxrows::ByteConvertFrom,
                             nxrows::ByteDefault,
                             nxrows::BytePrint,
                             nxrows::ByteScan};
constexpr ScalarSet kShortSet{ScalarCreate<2, false>,
                              ShortStore,
                              ShortStore,
                              ShortNullSizeGet,
                              ShortSizeGet,
                              ShortSizeGetFromMemFile,
                              ScalarConstructor<2>,
                              ScalarAssignment<2>,
                              ScalarCopy<2>,
                              ScalarTranslate<2, ShortStore, ShortStore>,
                              nxrows::ShortConvertTo,
                              nxrows::ShortConvertFrom,
                              nxrows::ShortDefault,
                              nxrows::ShortPrint,
                              nxrows::PlainScan<2>};
constexpr ScalarSet kLongSet{ScalarCreate<4, false>,
                             LongStore,
                             LongStore,
                             LongNullSizeGet,
                             LongSizeGet,
                             LongSizeGetFromMemFile,
                             ScalarConstructor<4>,
                             ScalarAssignment<4>,
                             ScalarCopy<4>,
                             ScalarTranslate<4, LongStore, LongStore>,
                             nxrows::LongConvertTo,
                             nxrows::LongConvertFrom,
                             nxrows::LongDefault,
                             nxrows::LongPrint,
                             nxrows::PlainScan<4>};
constexpr ScalarSet kIntSet{ScalarCreate<4, false>,
                            IntStore,
                            IntLoad,
                            IntNullSizeGet,
                            IntSizeGet,
                            IntSizeGetFromMemFile,
                            ScalarConstructor<4>,
                            ScalarAssignment<4>,
                            ScalarCopy<4>,
                            ScalarTranslate<4, IntLoad, IntStore>,
                            nxrows::IntConvertTo,
                            nxrows::IntConvertFrom,
                            nxrows::IntDefault,
                            nxrows::LongPrint,
                            nxrows::PlainScan<4>};
constexpr ScalarSet kUnsignedSet{ScalarCreate<4, false>,
                                 UnsignedStore,
                                 UnsignedLoad,
                                 IntNullSizeGet,
                                 IntSizeGet,
                                 IntSizeGetFromMemFile,
                                 ScalarConstructor<4>,
                                 ScalarAssignment<4>,
                                 ScalarCopy<4>,
                                 ScalarTranslate<4, UnsignedLoad, UnsignedStore>,
                                 nxrows::IntConvertTo,
                                 nxrows::IntConvertFrom,
                                 nxrows::IntDefault,
                                 nxrows::LongPrint,
                                 nxrows::PlainScan<4>};
constexpr ScalarSet kFloatSet{ScalarCreate<4, false>,
                              FloatStore,
                              FloatStore,
                              FloatNullSizeGet,
                              FloatSizeGet,
                              FloatSizeGetFromMemFile,
                              ScalarConstructor<4>,
                              ScalarAssignment<4>,
                              ScalarCopy<4>,
                              ScalarTranslate<4, FloatStore, FloatStore>,
                              nxrows::FloatConvertTo,
                              nxrows::FloatConvertFrom,
                              nxrows::FloatDefault,
                              nxrows::FloatPrint,
                              nxrows::PlainScan<4>};
constexpr ScalarSet kDoubleSet{ScalarCreate<8, false>,
                               DoubleStore,
                               DoubleStore,
                               DoubleNullSizeGet,
                               DoubleSizeGet,
                               DoubleSizeGetFromMemFile,
                               ScalarConstructor<8>,
                               ScalarAssignment<8>,
                               ScalarCopy<8>,
                               ScalarTranslate<8, DoubleStore, DoubleStore>,
                               nxrows::DoubleConvertTo,
                               nxrows::DoubleConvertFrom,
                               nxrows::DoubleDefault,
                               nxrows::DoublePrint,
                               nxrows::DoubleScan};

constexpr NxTypeDesc ScalarRow(const char* name, unsigned short memLen, const char* format,
                               const ScalarSet& set, NxTypeCmpFunc compare,
                               NxEvalAndBoundFunc evalAndBound, NxHashFunc hash) {
  NxTypeDesc row = nxrows::IllegalLike(name, memLen, 1, format);
  row.Create = set.create;
  row.Delete = ScalarDelete;
  row.Store = set.store;
  row.Load = set.load;
  row.NullSizeGet = set.nullSizeGet;
  row.SizeGet = set.sizeGet;
  row.SizeGetFromMemFile = set.sizeGetFromMemFile;
  row.Compare = compare;
  row.EvalAndBound = evalAndBound;
  row.Hash = hash;
  row.Constructor = set.constructor;
  row.Destructor = ScalarDestructor;
  row.Assignment = set.assignment;
  row.Copy = set.copy;
  row.Translate = set.translate;
  row.IsNull = nxrows::NeverNull;
  row.ConvertTo = set.convertTo;
  row.ConvertFrom = set.convertFrom;
  row.DefaultValue = set.defaultValue;
  row.PrintToString = set.print;
  row.ScanFromString = set.scan;
  return row;
}

static_assert(sizeof(NxString) == nxrows::kStringMemLen, "the string row steps by the record");

// The string rows: the current row "NxString" and the old string row, which
// shares the memory side and the Load (that reads both disk forms), writes
// old records, and has no null.
constexpr NxTypeDesc StringRow(bool current) {
  const bool withNull = current;
  NxTypeDesc row = nxrows::IllegalLike("NxString", nxrows::kStringMemLen, 0, "%s");
  row.Create = nxrows::StringCreate;
  row.Delete = nxrows::StringDelete;
  row.Store = current ? StringStore : OldStringStore;
  row.Load = StringLoad;
  row.NullSizeGet = nxrows::StringNullSizeGet;
  row.SizeGet = current ? StringSizeGet : OldStringSizeGet;
  row.SizeGetFromMemFile = current ? StringSizeGetFromMemFile : OldStringSizeGetFromMemFile;
  row.Translate = current ? StringTranslate : OldStringTranslate;
  row.ConvertTo = nxrows::StringConvertTo;
  row.ConvertFrom = nxrows::StringConvertFrom;
  row.Constructor = nxrows::ElementConstructor<NxString>;
  row.Destructor = nxrows::ElementDestructor<NxString>;
  row.Assignment = nxrows::ElementAssignment<NxString>;
  row.Copy = nxrows::ElementCopy<NxString>;
  row.DefaultValue = nxrows::StringDefault;
  row.IsNull = withNull ? nxrows::StringIsNull : nxrows::NeverNull;
  row.SetNull = withNull ? nxrows::StringSetNull : nullptr;
  row.PrintToString = nxrows::StringPrint;
  row.ScanFromString = nxrows::StringScan;
  row.Hash = withNull ? nxrows::StringHash : nxrows::OldStringHash;
  row.Compare = current ? StringCompare : OldStringCompare;
  row.EvalAndBound = current ? nxrows::StringEvalAndBound : nxrows::OldStringEvalAndBound;
  return row;
}

// d_Interval shares the sizes, comparison and translation of the float row;
// its other slots come from the date family (nxdate.cpp, nxdateformat.cpp).
constexpr NxTypeDesc IntervalRow() {
  NxTypeDesc row = nxrows::IllegalLike("d_Interval", 4, 1, "%e days, %I hours, %M minutes, %S seconds");
  row.NullSizeGet = kFloatSet.nullSizeGet;
  row.SizeGet = kFloatSet.sizeGet;
  row.SizeGetFromMemFile = kFloatSet.sizeGetFromMemFile;
  row.Compare = FloatCompare;
  row.EvalAndBound = nxrows::FloatEvalAndBound;
  row.Hash = nxrows::FloatHash;
  row.Translate = kFloatSet.translate;
  row.Create = nxrows::IntervalCreate;
  row.Delete = nxrows::IntervalDelete;
  row.Store = nxrows::IntervalStore;
  row.Load = nxrows::IntervalLoad;
  row.ConvertTo = nxrows::IntervalConvertTo;
  row.ConvertFrom = nxrows::IntervalConvertFrom;
  row.Constructor = nxrows::IntervalConstructor;
  row.Destructor = nxrows::IntervalDestructor;
  row.Assignment = nxrows::IntervalAssignment;
  row.Copy = nxrows::IntervalAssignment;
  row.IsNull = nxrows::NeverNull;
  row.PrintToString = nxrows::IntervalPrint;
  row.ScanFromString = nxrows::IntervalScan;
  row.DefaultValue = nxrows::IntervalDefault;
  return row;
}

}  // namespace

namespace nxrows {

int NeverNull(void*) {
  return 0;
}

uint32_t DiskToDiskCopy(void* destination, uint32_t destinationSize, const void* source,
                        uint32_t sourceSize) {
  const uint32_t bytes = sourceSize < destinationSize ? sourceSize : destinationSize;
  if (sourceSize < destinationSize && destinationSize != 0)
    std::memset(destination, 0, destinationSize);
  if (bytes != 0) std::memmove(destination, source, bytes);
  return bytes;
}

// The rows of the plain scalars and the strings; the other families define
// theirs in their own source files.
NxTypeDesc charRow = ScalarRow("char", 1, "%c", kByteSet, CharCompare, CharEvalAndBound, CharHash);
NxTypeDesc shortRow =
    ScalarRow("short", 2, "%hd", kShortSet, ShortCompare, ShortEvalAndBound, ShortHash);
NxTypeDesc longRow = ScalarRow("long", 4, "%ld", kLongSet, LongCompare, LongEvalAndBound, LongHash);
NxTypeDesc doubleRow =
    ScalarRow("double", 8, "%lf", kDoubleSet, DoubleCompare, DoubleEvalAndBound, DoubleHash);
NxTypeDesc floatRow =
    ScalarRow("float", 4, "%f", kFloatSet, FloatCompare, FloatEvalAndBound, FloatHash);
NxTypeDesc wordRow =
    ScalarRow("NxWord", 2, "%hu", kShortSet, WordCompare, WordEvalAndBound, WordHash);
NxTypeDesc dwordRow =
    ScalarRow("NxDWord", 4, "%lu", kLongSet, DwordCompare, DwordEvalAndBound, LongHash);
NxTypeDesc intRow = ScalarRow("int", 4, "%d", kIntSet, IntCompare, IntEvalAndBound, IntHash);
NxTypeDesc unsignedRow =
    ScalarRow("unsigned", 4, "%u", kUnsignedSet, UnsignedCompare, UnsignedEvalAndBound, IntHash);
NxTypeDesc enumRow = ScalarRow("enum", 4, "%d", kIntSet, IntCompare, IntEvalAndBound, IntHash);
NxTypeDesc byteRow =
    ScalarRow("NxByte", 1, "%c", kByteSet, ByteCompare, ByteEvalAndBound, ByteHash);
NxTypeDesc stringRow = StringRow(true);
NxTypeDesc blockIdRow =
    ScalarRow("BlockId", 4, "#%lu", kLongSet, DwordCompare, DwordEvalAndBound, LongHash);
NxTypeDesc dIntervalRow = IntervalRow();

// ---------------------------------------------------------------------------
// Null-capable scalars.  One design for eleven value types: an element is a
// value and a flag (NxNull<T>).  On disk the flag byte stands in front of the
// value; in the packed form of format 8 it stands behind it, so that the
// packed form of one element is the front of its memory element.

bool StartsWithNullPrintString(const char* text) {
  const EightBitText null(detail::nullPrintString);
  return std::strncmp(text, null.c_str(), std::strlen(null.c_str())) == 0;
}

namespace {

// What differs between the rows: the value type, the disk functions and
// disk size of the value, its print, scan and carrier text.
struct NullCharTraits {
  using Value = signed char;
  static constexpr NxStoreFunc store = CharStore;
  static constexpr NxLoadFunc load = CharStore;
  static constexpr NxSizeGetFunc size = CharSizeGet;
  static NxString& Print(NxString& r, Value& v, const char* f) { return PrintInteger(r, v, f); }
  static void Scan(Value& v, NxString& t, const char* f) { ByteScan(&v, t, f, 1); }
  static NxString Text(Value v) { return NxString(static_cast<char>(v)); }
  static Value FromText(NxString& s) {
    return static_cast<Value>(static_cast<uint8_t>(static_cast<int>(s)));
  }
};

struct NullUcharTraits {
  using Value = unsigned char;
  static constexpr NxStoreFunc store = CharStore;
  static constexpr NxLoadFunc load = CharStore;
  static constexpr NxSizeGetFunc size = CharSizeGet;
  static NxString& Print(NxString& r, Value& v, const char* f) { return PrintInteger(r, v, f); }
  static void Scan(Value& v, NxString& t, const char* f) { ByteScan(&v, t, f, 1); }
  static NxString Text(Value v) { return NxString(static_cast<int>(v)); }
  static Value FromText(NxString& s) { return static_cast<Value>(static_cast<int>(s)); }
};

struct NullShortTraits {
  using Value = int16_t;
  static constexpr NxStoreFunc store = ShortStore;
  static constexpr NxLoadFunc load = ShortStore;
  static constexpr NxSizeGetFunc size = ShortSizeGet;
  static NxString& Print(NxString& r, Value& v, const char* f) { return PrintInteger(r, v, f); }
  static void Scan(Value& v, NxString& t, const char* f) { PlainScan<2>(&v, t, f, 1); }
  static NxString Text(Value v) { return NxString(static_cast<short>(v)); }
  static Value FromText(NxString& s) {
    return static_cast<Value>(static_cast<uint16_t>(static_cast<int>(s)));
  }
};

struct NullUshortTraits {
  using Value = uint16_t;
  static constexpr NxStoreFunc store = ShortStore;
  static constexpr NxLoadFunc load = ShortStore;
  static constexpr NxSizeGetFunc size = ShortSizeGet;
  static NxString& Print(NxString& r, Value& v, const char* f) { return PrintInteger(r, v, f); }
  static void Scan(Value& v, NxString& t, const char* f) { PlainScan<2>(&v, t, f, 1); }
  static NxString Text(Value v) { return NxString(static_cast<unsigned short>(v)); }
  static Value FromText(NxString& s) { return static_cast<Value>(static_cast<int>(s)); }
};

// int and unsigned share the disk functions of int, as the base library
// lays both out alike.
template <typename V, typename TextType>
struct NullIntTraits {
  using Value = V;
  static constexpr NxStoreFunc store = IntStore;
  static constexpr NxLoadFunc load = IntLoad;
  static constexpr NxSizeGetFunc size = IntSizeGet;
  static NxString& Print(NxString& r, Value& v, const char* f) { return PrintInteger(r, v, f); }
  static void Scan(Value& v, NxString& t, const char* f) { PlainScan<4>(&v, t, f, 1); }
  static NxString Text(Value v) { return NxString(static_cast<TextType>(v)); }
  static Value FromText(NxString& s) {
    return static_cast<Value>(static_cast<uint32_t>(static_cast<int>(s)));
  }
};

template <typename V, typename TextType>
struct NullLongTraits {
  using Value = V;
  static constexpr NxStoreFunc store = LongStore;
  static constexpr NxLoadFunc load = LongStore;
  static constexpr NxSizeGetFunc size = LongSizeGet;
  static NxString& Print(NxString& r, Value& v, const char* f) { return PrintInteger(r, v, f); }
  static void Scan(Value& v, NxString& t, const char* f) { PlainScan<4>(&v, t, f, 1); }
  static NxString Text(Value v) { return NxString(static_cast<TextType>(v)); }
  static Value FromText(NxString& s) {
    return static_cast<Value>(static_cast<uint32_t>(static_cast<long>(s)));
  }
};

struct NullFloatTraits {
  using Value = float;
  static constexpr NxStoreFunc store = FloatStore;
  static constexpr NxLoadFunc load = FloatStore;
  static constexpr NxSizeGetFunc size = FloatSizeGet;
  static NxString& Print(NxString& r, Value& v, const char* f) { return FloatPrint(r, &v, f, 1); }
  static void Scan(Value& v, NxString& t, const char* f) { PlainScan<4>(&v, t, f, 1); }
  static NxString Text(Value v) { return NxString(static_cast<double>(v)); }
  static Value FromText(NxString& s) { return FloatValue(s); }
};

// The double prints and scans as the double row does, the portable
// "ldexp(" form included, so that its text reads back bit for bit.
struct NullDoubleTraits {
  using Value = double;
  static constexpr NxStoreFunc store = DoubleStore;
  static constexpr NxLoadFunc load = DoubleStore;
  static constexpr NxSizeGetFunc size = DoubleSizeGet;
  static NxString& Print(NxString& r, Value& v, const char* f) { return DoublePrint(r, &v, f, 1); }
  static void Scan(Value& v, NxString& t, const char* f) { DoubleScan(&v, t, f, 1); }
  static NxString Text(Value v) { return NxString(v); }
  static Value FromText(NxString& s) { return static_cast<double>(s); }
};

// NxInt64 prints and scans through the row NxInt64; its print of a value
// appends to `result`.
struct NullInt64Traits {
  using Value = NxInt64;
  static constexpr NxStoreFunc store = Int64Store;
  static constexpr NxLoadFunc load = Int64Load;
  static constexpr NxSizeGetFunc size = Int64SizeGet;
  static NxString& Print(NxString& r, Value& v, const char* f) { return Int64Print(r, &v, f, 1); }
  static void Scan(Value& v, NxString& t, const char* f) { Int64Scan(&v, t, f, 1); }
  static NxString Text(Value v) {
    NxString text;
    v.PrintToNxString(text, nullptr);
    return text;
  }
  static Value FromText(NxString& s) {
    NxInt64 v;
    v.ScanFromNxString(s, nullptr);
    return v;
  }
};

template <typename Traits>
struct NullRowFunctions {
  using Value = typename Traits::Value;
  using Element = NxNull<Value>;
  static constexpr size_t kHeader = ClassArrayHeader<Element>();

  static void* Create(uint32_t count) {
    void* block = ClassArrayCreate(count, sizeof(Element), kHeader);
    if (block != nullptr) Constructor(block, count < 2 ? 1 : count, 0);
    return block;
  }

  static void Constructor(void* memory, uint32_t count, uint32_t) {
    ElementConstructor<Element>(memory, count, 0);
  }

  // The values go through the value type's disk function a block at a
  // time: gathered into one packed array, moved by one call, and laid out
  // with their flags.  A flag is one byte, the same in every format.  A disk
  // width beyond the packed array's room (no base library has one) moves
  // value by value.
  static constexpr uint32_t kBlock = 128;
  static constexpr uint32_t kPackedBytes = kBlock * 16;
  static uint32_t Smaller(uint32_t a, uint32_t b) { return a < b ? a : b; }

  static uint32_t Store(void* disk, const void* memory, unsigned char format, uint32_t count) {
    if (count == 0) return 0;
    format &= 0x0F;
    const bool flagFirst = (format & 8) == 0;
    const uint32_t width = Traits::size(nullptr, 8, format, 1);
    const uint32_t block = width == 0 ? 1 : Smaller(kBlock, kPackedBytes / width);
    unsigned char* d = static_cast<unsigned char*>(disk);
    const Element* e = static_cast<const Element*>(memory);
    Value values[kBlock];
    unsigned char packed[kPackedBytes];
    uint32_t n = 0;
    for (uint32_t first = 0; first < count; first += block != 0 ? block : 1) {
      if (block == 0) {
        if (flagFirst) d[n++] = e[first].isNull != 0 ? 1 : 0;
        n += Traits::store(d + n, &e[first].value, format, 1);
        if (!flagFirst) d[n++] = e[first].isNull != 0 ? 1 : 0;
        continue;
      }
      const uint32_t here = Smaller(block, count - first);
      for (uint32_t i = 0; i < here; ++i) values[i] = e[first + i].value;
      const uint32_t bytes = Traits::store(packed, values, format, here);
      const uint32_t each = bytes / here;
      for (uint32_t i = 0; i < here; ++i) {
        const unsigned char flag = e[first + i].isNull != 0 ? 1 : 0;
        if (flagFirst) d[n++] = flag;
        if (each == sizeof(Value))
          std::memcpy(d + n, packed + i * sizeof(Value), sizeof(Value));
        else
          std::memcpy(d + n, packed + i * each, each);
        n += each;
        if (!flagFirst) d[n++] = flag;
      }
    }
    return n;
  }

  // A flag byte of 1 makes the element null, with value 0; any other byte
  // counts as not null.
  static uint32_t Load(void* memory, const void* disk, unsigned char format, uint32_t count) {
    if (count == 0) return 0;
    format &= 0x0F;
    const bool flagFirst = (format & 8) == 0;
    const uint32_t width = Traits::size(nullptr, 8, format, 1);
    const uint32_t block = width == 0 ? 1 : Smaller(kBlock, kPackedBytes / width);
    const unsigned char* s = static_cast<const unsigned char*>(disk);
    Element* e = static_cast<Element*>(memory);
    Value values[kBlock];
    unsigned char packed[kPackedBytes];
    unsigned char flags[kBlock];
    uint32_t n = 0;
    for (uint32_t first = 0; first < count; first += block != 0 ? block : 1) {
      if (block == 0) {
        unsigned char flag = 0;
        if (flagFirst) flag = s[n++];
        n += Traits::load(&e[first].value, s + n, format, 1);
        if (!flagFirst) flag = s[n++];
        e[first].isNull = 0;
        if (flag == 1) e[first].SetNullValue();
        continue;
      }
      const uint32_t here = Smaller(block, count - first);
      for (uint32_t i = 0; i < here; ++i) {
        if (flagFirst) flags[i] = s[n++];
        if (width == sizeof(Value))
          std::memcpy(packed + i * sizeof(Value), s + n, sizeof(Value));
        else
          std::memcpy(packed + i * width, s + n, width);
        n += width;
        if (!flagFirst) flags[i] = s[n++];
      }
      Traits::load(values, packed, format, here);
      for (uint32_t i = 0; i < here; ++i) {
        Element& element = e[first + i];
        element.value = values[i];
        element.isNull = 0;
        if (flags[i] == 1) element.SetNullValue();
      }
    }
    return n;
  }

  // The value's disk size plus one flag byte per element, in every format.
  static uint32_t NullSizeGet(uint32_t count) { return Traits::size(nullptr, 0, 0, count) + count; }
  static uint32_t SizeGet(const void*, unsigned char, unsigned char, uint32_t count) {
    return NullSizeGet(count);
  }
  static uint32_t SizeGetFromMemFile(MemFile*, unsigned char, uint32_t count) {
    return NullSizeGet(count);
  }

  static uint32_t Translate(void* destination, unsigned char destinationFormat,
                            uint32_t destinationSize, void* source, unsigned char sourceFormat,
                            uint32_t sourceSize, uint32_t count) {
    return RecordTranslate<Load, Store, MoveBytes<sizeof(Element)>>(
        destination, destinationFormat, destinationSize, source, sourceFormat, sourceSize, count);
  }

  static int IsNull(void* value) { return static_cast<Element*>(value)->isNull; }
  static int SetNull(void* value) { return static_cast<Element*>(value)->SetNullValue(); }

  static NxTypeConvertData* ConvertTo(void* value, uint32_t count) {
    const Element* e = static_cast<const Element*>(value);
    return ToStrings(StringCreate, StringDelete, count, [e](NxString& string, uint32_t i) {
      if (e[i].isNull != 0)
        string.SetNullValue();
      else
        string += Traits::Text(e[i].value);
    });
  }

  // A missing or null string leaves the new element null.
  static void* ConvertFrom(NxTypeConvertData* data, uint32_t count) {
    return FromStrings<Element>(Create(count), data, count, [](Element& element, NxString* s) {
      if (s != nullptr) element = Element(Traits::FromText(*s));
    });
  }

  // One element: `count` is not looked at, arrays go through the manager.
  static NxString& Print(NxString& result, void* value, const char* format, uint32_t) {
    Element& e = *static_cast<Element*>(value);
    if (e.isNull != 0) {
      result = detail::nullPrintString;
      return result;
    }
    return Traits::Print(result, e.value, format);
  }

  // Empty text and text that begins with the null print string give null;
  // otherwise the element takes what the value's scan reads, starting from
  // the number it holds, and is not null.
  static void* Scan(void* value, NxString& text, const char* format, uint32_t) {
    if (value == nullptr) return nullptr;
    NxString narrow(NxString::GetDefault8CodeSet(), NxString::GetDefaultLanguage());
    NxString* input = &text;
    if (text.codeSet > 224) {
      narrow += text;
      input = &narrow;
    }
    Element& e = *static_cast<Element*>(value);
    const char* chars = input->StrGet();
    if (chars[0] == '\0' || StartsWithNullPrintString(chars)) {
      e.SetNullValue();
      return value;
    }
    Value v = e.value;
    Traits::Scan(v, *input, format);
    e = Element(v);
    return value;
  }

  static void* DefaultValue(uint32_t count, int) { return Create(count); }

  // One element as Load reads it: the flag before the value on disk, behind
  // it in format 8 (the front of a memory element).  True for a null.
  static bool ReadOne(const unsigned char* p, unsigned char form, Value& value) {
    if ((form & 8) == 0) {
      Traits::load(&value, p + 1, form, 1);
      return p[0] == 1;
    }
    const uint32_t width = Traits::load(&value, p, form, 1);
    return p[width] == 1;
  }

  // Null orders first.  Integers by their sign; reals -1 below, 0 equal and
  // 1 otherwise, so a NaN on either side gives 1; NxInt64 by its operators.
  static int32_t ValueOrder(Value a, Value b) {
    if constexpr (std::is_floating_point<Value>::value)
      return a < b ? -1 : (a == b ? 0 : 1);
    else
      return a < b ? -1 : (a > b ? 1 : 0);
  }

  // Every element, in memory form too, is read as Load reads it; the
  // elements are MemLen bytes apart in memory form and the disk size apart
  // otherwise.
  static int32_t Compare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                         void* value2, unsigned short, uint32_t count, int& status) {
    const unsigned char form = format & 0x0F;
    const uint32_t width = form == 8 ? sizeof(Element) : NullSizeGet(1);
    return nxcmp::Walk(width, length1, value1, length2, value2, count, status,
                       [form](const unsigned char* a, const unsigned char* b) {
                         Value x = Value(0);
                         Value y = Value(0);
                         const bool xNull = ReadOne(a, form, x);
                         const bool yNull = ReadOne(b, form, y);
                         if (xNull || yNull) return xNull == yNull ? 0 : (xNull ? -1 : 1);
                         return ValueOrder(x, y);
                       });
  }
};

template <typename Traits>
constexpr NxTypeDesc NullScalarRow(const char* name, const char* format,
                                   NxEvalAndBoundFunc evalAndBound, NxHashFunc hash) {
  using F = NullRowFunctions<Traits>;
  NxTypeDesc row = IllegalLike(name, sizeof(typename F::Element), 1, format);
  row.EvalAndBound = evalAndBound;
  row.Hash = hash;
  row.Create = F::Create;
  row.Delete = ZeroArrayDelete<typename F::Element>;
  row.Store = F::Store;
  row.Load = F::Load;
  row.NullSizeGet = F::NullSizeGet;
  row.SizeGet = F::SizeGet;
  row.SizeGetFromMemFile = F::SizeGetFromMemFile;
  row.Compare = F::Compare;
  row.ConvertTo = F::ConvertTo;
  row.ConvertFrom = F::ConvertFrom;
  row.Constructor = F::Constructor;
  row.Destructor = NoDestructor;
  row.Assignment = ElementAssignment<typename F::Element>;
  row.Copy = ElementCopy<typename F::Element>;
  row.Translate = F::Translate;
  row.IsNull = F::IsNull;
  row.SetNull = F::SetNull;
  row.PrintToString = F::Print;
  row.ScanFromString = F::Scan;
  row.DefaultValue = F::DefaultValue;
  return row;
}

}  // namespace

NxTypeDesc nullCharRow =
    NullScalarRow<NullCharTraits>("NxNull_char", "%c", NullCharEvalAndBound, NullCharHash);
NxTypeDesc nullUcharRow =
    NullScalarRow<NullUcharTraits>("NxNull_uchar", "%c", NullUcharEvalAndBound, NullUcharHash);
NxTypeDesc nullShortRow =
    NullScalarRow<NullShortTraits>("NxNull_short", "%hd", NullShortEvalAndBound, NullShortHash);
NxTypeDesc nullUshortRow =
    NullScalarRow<NullUshortTraits>("NxNull_ushort", "%hu", NullUshortEvalAndBound, NullUshortHash);
NxTypeDesc nullIntRow = NullScalarRow<NullIntTraits<int32_t, int>>(
    "NxNull_int", "%d", NullIntEvalAndBound, NullIntHash);
NxTypeDesc nullUnsignedRow = NullScalarRow<NullIntTraits<uint32_t, unsigned int>>(
    "NxNull_unsigned", "%u", NullUnsignedEvalAndBound, NullUnsignedHash);
NxTypeDesc nullLongRow = NullScalarRow<NullLongTraits<int32_t, long>>(
    "NxNull_long", "%ld", NullLongEvalAndBound, NullLongHash);
NxTypeDesc nullUlongRow = NullScalarRow<NullLongTraits<uint32_t, unsigned long>>(
    "NxNull_ulong", "%lu", NullUlongEvalAndBound, NullUlongHash);
NxTypeDesc nullFloatRow =
    NullScalarRow<NullFloatTraits>("NxNull_float", "%f", NullFloatEvalAndBound, NullFloatHash);
NxTypeDesc nullDoubleRow =
    NullScalarRow<NullDoubleTraits>("NxNull_double", "%lf", NullDoubleEvalAndBound, NullDoubleHash);
NxTypeDesc nullInt64Row =
    NullScalarRow<NullInt64Traits>("NxNull_NxInt64", "%S", NullInt64EvalAndBound, NullInt64Hash);

NxTypeDesc illegalRow = IllegalLike("illegal", 0, 1, "illegal");

// The string row of the older disk form: the properties of row 11, no null.
NxTypeDesc oldStringRow = StringRow(false);

}  // namespace nxrows

namespace detail {

using namespace nxrows;

// Each table is a block of 256 + 42 entries.  The last 42 are the table
// as callers see it (NxTypeMgr::table points at them): the current table
// holds ids 0 to 40 and its closing null; the old table holds ids 0 to 27,
// its closing null at 28, and nulls behind it.  The 256 in front map every
// id, taken as an unsigned byte, to its row, the row `illegal` wherever the
// table has none, so that the lookup of a dispatch is a single load.
constexpr TableBlock MakeTable(std::initializer_list<NxTypeDesc*> rows) {
  TableBlock block{};
  size_t id = 0;
  for (NxTypeDesc* row : rows) {
    block.entries[kTableMap + id] = row;
    block.entries[id] = row;
    ++id;
  }
  for (; id < kTableMap; ++id) block.entries[id] = &illegalRow;
  return block;
}

TableBlock currentTable = MakeTable({
    &charRow,       &shortRow,      &longRow,      &doubleRow,       &floatRow,    &wordRow,
    &dwordRow,      &intRow,        &unsignedRow,  &enumRow,         &byteRow,     &stringRow,
    &dateRow,       &timeRow,       &blockIdRow,   &objIdRow,        &classIdRow,  &refRow,
    &blobRow,       &dateTimeRow,   &iStringRow,   &caseIStringRow,  &dDateRow,    &dTimeRow,
    &dTimestampRow, &dIntervalRow,  &int64Row,     &booleanRow,      &nullCharRow, &nullUcharRow,
    &nullShortRow,  &nullUshortRow, &nullIntRow,   &nullUnsignedRow, &nullLongRow, &nullUlongRow,
    &nullFloatRow,  &nullDoubleRow, &nullInt64Row, &sealRow,         &illegalRow});

TableBlock oldTable = MakeTable({
    &charRow,       &shortRow,     &longRow,     &doubleRow,      &floatRow,   &wordRow,
    &dwordRow,      &intRow,       &unsignedRow, &enumRow,        &byteRow,    &oldStringRow,
    &dateRow,       &timeRow,      &blockIdRow,  &objIdRow,       &classIdRow, &refRow,
    &blobRow,       &dateTimeRow,  &iStringRow,  &caseIStringRow, &dDateRow,   &dTimeRow,
    &dTimestampRow, &dIntervalRow, &int64Row,    &booleanRow});

}  // namespace detail
