// nxtm calc, and the command-line texts of NxInt64, NxBoolean and the
// null-capable numbers.
#include <cerrno>
#include <cfloat>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>

#include <nxtm/nxtm.h>

#include "cli.h"
#include "values.h"

namespace {

using cli::Args;

// A whole integer as C reads it: an optional sign, then "0x" hexadecimal,
// a leading "0" octal, or decimal; no blanks.  False when it is malformed
// or lies outside [low, high].
bool ParseInteger(const std::string& text, long long low, long long high, long long& value) {
  if (text.empty() || std::isspace(static_cast<unsigned char>(text[0]))) return false;
  errno = 0;
  char* end = nullptr;
  const long long v = std::strtoll(text.c_str(), &end, 0);
  if (errno == ERANGE || end == nullptr || *end != '\0' || v < low || v > high) return false;
  value = v;
  return true;
}

bool ParseReal(const std::string& text, double& value) {
  if (text.empty() || std::isspace(static_cast<unsigned char>(text[0]))) return false;
  errno = 0;
  char* end = nullptr;
  value = std::strtod(text.c_str(), &end);
  return end != nullptr && *end == '\0' && errno != ERANGE;
}

bool ParseInt64(const std::string& text, NxInt64& value) {
  long long v = 0;
  if (!ParseInteger(text, std::numeric_limits<long long>::min(),
                    std::numeric_limits<long long>::max(), v))
    return false;
  value = NxInt64(v);
  return true;
}

std::string Decimal(const NxInt64& n) {
  NxString text;
  n.PrintToNxString(text, "%S");
  return text.StrGet();
}

// The 64 bits as 16 hexadecimal digits, high word first.
std::string Pattern(const NxInt64& n) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%08" PRIx32 "%08" PRIx32, static_cast<uint32_t>(n.high),
                n.low);
  return text;
}

// ---------------------------------------------------------------------------
// Texts of the values.

bool ReadInt64(const std::string& text, void* element, std::string& error) {
  if (ParseInt64(text, *static_cast<NxInt64*>(element))) return true;
  error = "not a 64-bit integer";
  return false;
}

std::string ShowInt64(const void* element) {
  return Decimal(*static_cast<const NxInt64*>(element));
}

bool ReadBoolean(const std::string& text, void* element, std::string& error) {
  NxBoolean& b = *static_cast<NxBoolean*>(element);
  for (const char* word : {"T", "t", "TRUE", "true", "1", "F", "f", "FALSE", "false", "0"}) {
    if (text == word) {
      b = std::strchr("Tt1", word[0]) != nullptr ? 1 : 0;
      return true;
    }
  }
  error = "TRUE or FALSE";
  return false;
}

std::string ShowBoolean(const void* element) {
  // As the row prints it: only the byte 1 is TRUE.
  return static_cast<const NxBoolean*>(element)->value == NxBoolean::True ? "TRUE" : "FALSE";
}

// The integers of the null-capable rows take the signed and the unsigned
// range of their width; the byte rows also take one non-digit character
// for its code.
template <typename T>
bool ReadNullInteger(const std::string& text, void* element, std::string& error) {
  constexpr int bits = 8 * sizeof(T);
  long long v = 0;
  if (sizeof(T) == 1 && text.size() == 1 && (text[0] < '0' || text[0] > '9')) {
    v = static_cast<unsigned char>(text[0]);
  } else if (!ParseInteger(text, -(1ll << (bits - 1)), (1ll << bits) - 1, v)) {
    error = "not a " + std::to_string(bits) + "-bit integer";
    return false;
  }
  *static_cast<NxNull<T>*>(element) = NxNull<T>(static_cast<T>(static_cast<uint64_t>(v)));
  return true;
}

template <typename T>
std::string ShowNullInteger(const void* element) {
  const T v = static_cast<const NxNull<T>*>(element)->value;
  return std::is_signed<T>::value ? std::to_string(static_cast<long long>(v))
                                  : std::to_string(static_cast<unsigned long long>(v));
}

bool ReadNullFloat(const std::string& text, void* element, std::string& error) {
  double v = 0;
  if (!ParseReal(text, v) || (std::isfinite(v) && std::fabs(v) > FLT_MAX)) {
    error = "not a float";
    return false;
  }
  *static_cast<NxNull_float*>(element) = NxNull_float(static_cast<float>(v));
  return true;
}

bool ReadNullDouble(const std::string& text, void* element, std::string& error) {
  double v = 0;
  if (!ParseReal(text, v)) {
    error = "not a double";
    return false;
  }
  *static_cast<NxNull_double*>(element) = NxNull_double(v);
  return true;
}

// Reals with enough digits to read back bit for bit.
std::string ShowNullFloat(const void* element) {
  char text[64];
  std::snprintf(text, sizeof text, "%.9g",
                static_cast<double>(static_cast<const NxNull_float*>(element)->value));
  return text;
}

std::string ShowNullDouble(const void* element) {
  char text[64];
  std::snprintf(text, sizeof text, "%.17g", static_cast<const NxNull_double*>(element)->value);
  return text;
}

bool ReadNullInt64(const std::string& text, void* element, std::string& error) {
  NxInt64 v;
  if (!ReadInt64(text, &v, error)) return false;
  *static_cast<NxNull_NxInt64*>(element) = NxNull_NxInt64(v);
  return true;
}

std::string ShowNullInt64(const void* element) {
  return Decimal(static_cast<const NxNull_NxInt64*>(element)->value);
}

template <typename T>
cli::ValueText NullInteger() {
  return {ReadNullInteger<T>, ShowNullInteger<T>, nullptr};
}

const cli::ValueTextRegistrar kInt64(NxTYPE_NxInt64, {ReadInt64, ShowInt64, nullptr});
const cli::ValueTextRegistrar kBoolean(NxTYPE_NxBoolean, {ReadBoolean, ShowBoolean, nullptr});
const cli::ValueTextRegistrar kNullChar(NxTYPE_NxNull_char, NullInteger<signed char>());
const cli::ValueTextRegistrar kNullUchar(NxTYPE_NxNull_uchar, NullInteger<unsigned char>());
const cli::ValueTextRegistrar kNullShort(NxTYPE_NxNull_short, NullInteger<int16_t>());
const cli::ValueTextRegistrar kNullUshort(NxTYPE_NxNull_ushort, NullInteger<uint16_t>());
const cli::ValueTextRegistrar kNullInt(NxTYPE_NxNull_int, NullInteger<int32_t>());
const cli::ValueTextRegistrar kNullUnsigned(NxTYPE_NxNull_unsigned, NullInteger<uint32_t>());
const cli::ValueTextRegistrar kNullLong(NxTYPE_NxNull_long, NullInteger<int32_t>());
const cli::ValueTextRegistrar kNullUlong(NxTYPE_NxNull_ulong, NullInteger<uint32_t>());
const cli::ValueTextRegistrar kNullFloat(NxTYPE_NxNull_float,
                                         {ReadNullFloat, ShowNullFloat, nullptr});
const cli::ValueTextRegistrar kNullDouble(NxTYPE_NxNull_double,
                                          {ReadNullDouble, ShowNullDouble, nullptr});
const cli::ValueTextRegistrar kNullInt64(NxTYPE_NxNull_NxInt64,
                                         {ReadNullInt64, ShowNullInt64, nullptr});

// ---------------------------------------------------------------------------
// calc A OP B: NxInt64 arithmetic; a number in decimal and as its 64 bits
// in hexadecimal, or 1 or 0 for a comparison.

int RunCalc(const Args& args) {
  if (args.size() != 3)
    return cli::Fail("calc: usage: nxtm calc A OP B (OP: + - * / % << >> & | < <= > >= == !=)");
  NxInt64 a, b;
  for (size_t i : {0, 2}) {
    if (!ParseInt64(args[i], i == 0 ? a : b))
      return cli::Fail("calc: bad number '" + args[i] +
                       "': not a 64-bit integer (decimal, 0x hex or 0 octal)");
  }
  const std::string& op = args[1];
  int truth = -1;
  NxInt64 result;
  if (op == "+") {
    result = a + b;
  } else if (op == "-") {
    result = a - b;
  } else if (op == "*") {
    result = a * b;
  } else if (op == "/") {
    result = a / b;  // by zero: reported through ZENTRO_assert, and 0
  } else if (op == "%") {
    result = a % b;
  } else if (op == "&") {
    result = a & b;
  } else if (op == "|") {
    result = a | b;
  } else if (op == "<<" || op == ">>") {
    if (b < NxInt64(0)) return cli::Fail("calc: bad shift count '" + args[2] + "'");
    const unsigned n = b > NxInt64(0xFFFFFFFFu) ? 0xFFFFFFFFu : b.low;
    result = op == "<<" ? a << n : a >> n;
  } else if (op == "<") {
    truth = a < b;
  } else if (op == "<=") {
    truth = a <= b;
  } else if (op == ">") {
    truth = a > b;
  } else if (op == ">=") {
    truth = a >= b;
  } else if (op == "==") {
    truth = a == b;
  } else if (op == "!=") {
    truth = a != b;
  } else {
    return cli::Fail("calc: unknown operator '" + op + "'");
  }
  if (truth >= 0)
    std::printf("%d\n", truth);
  else
    std::printf("%s %s\n", Decimal(result).c_str(), Pattern(result).c_str());
  return 0;
}

const cli::Registrar kCalc({"calc", "calc A OP B",
                            "NxInt64 arithmetic (+ - * / % << >> & |) and comparisons, "
                            "in decimal and hex",
                            RunCalc, 50});

}  // namespace
