// NxString: the core (layout, lifetime, the one edit routine Splice, the size
// limit, numeric conversions) and the editing operations built on it.
//
// Buffers come from malloc and go back through free; a failed malloc goes to
// NxCallMemoryHandler, which throws std::bad_alloc.  Every edit builds a new
// buffer and swaps it in.  An edit whose result would pass NxSTRING_MAX_SIZE
// bytes reports through detail::ReportStringOverflow and then leaves the
// string exactly as it was: text, size, code set and language.
#include <cstdarg>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "nxinternal.h"

// ---------------------------------------------------------------------------
// Internal helpers.
namespace detail {
namespace {

// Numbers read from text behave as with a 32-bit long: out-of-range values
// saturate at the 32-bit limits, as a 32-bit strtol (and atoi/atol, which
// rest on it) would.
int32_t Strtol32(const char* text, int base) {
  const long long value = std::strtoll(text, nullptr, base);
  if (value > INT32_MAX) return INT32_MAX;
  if (value < INT32_MIN) return INT32_MIN;
  return static_cast<int32_t>(value);
}

}  // namespace
}  // namespace detail

namespace {

// All-zero text, valid in both widths, for strings without a buffer.
char zeroBuffer[4] = {0, 0, 0, 0};

constexpr uint32_t maxSize = NxSTRING_MAX_SIZE;

inline uint32_t Width(unsigned char codeSet) {
  return codeSet > 224 ? 2u : 1u;
}

inline unsigned short Unit(const char* at) {
  unsigned short unit;
  std::memcpy(&unit, at, sizeof unit);
  return unit;
}

inline bool IsZeroChar(const char* at, uint32_t width) {
  return width == 2 ? Unit(at) == 0 : *at == 0;
}

// Characters up to the terminator, read by `width`.
size_t CountChars(const char* text, uint32_t width) {
  if (width == 1) return std::strlen(text);
  size_t count = 0;
  while (Unit(text + 2 * count) != 0) ++count;
  return count;
}

// A zeroed buffer of `bytes`; the memory handler throws when none is left.
char* Allocate(uint32_t bytes) {
  if (bytes == 0) bytes = 1;
  void* memory = std::malloc(bytes);
  while (memory == nullptr) {
    NxCallMemoryHandler(bytes);
    memory = std::malloc(bytes);
  }
  std::memset(memory, 0, bytes);
  return static_cast<char*>(memory);
}

// The 16-bit decimal reader: every unit is a digit, no sign, no check, in
// wrapping 32-bit arithmetic.
uint32_t ReadDecimal16(const char* text, uint32_t maxUnits) {
  uint32_t value = 0;
  for (uint32_t i = 0; i < maxUnits; ++i) {
    const unsigned short unit = Unit(text + 2 * i);
    if (unit == 0) break;
    value = value * 10u + unit - 48u;
  }
  return value;
}

// The 16-bit real reader: digits up to ".", then decimals.
double ReadReal16(const char* text, uint32_t maxUnits) {
  double value = 0.0;
  double scale = 0.1;
  bool decimals = false;
  for (uint32_t i = 0; i < maxUnits; ++i) {
    const unsigned short unit = Unit(text + 2 * i);
    if (unit == 0) break;
    const double digit = static_cast<double>(unit) - 48.0;
    if (decimals) {
      value += digit * scale;
      scale /= 10.0;
    } else if (unit == 46) {
      decimals = true;
    } else {
      value = value * 10.0 + digit;
    }
  }
  return value;
}

inline unsigned char Native(unsigned char codeSet) {
  return codeSet != 0 ? codeSet : NxLanguageContext::GetNativeCodeSet();
}

// printf into a number buffer.
void Format(char (&buffer)[64], const char* format, ...) __attribute__((format(printf, 2, 3)));
void Format(char (&buffer)[64], const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(buffer, sizeof buffer, format, arguments);
  va_end(arguments);
}

}  // namespace

// The overflow rule: report when the configuration asks for it with
// stringOverflow=debug, or when there is no configuration at all.
void detail::ReportStringOverflow(int line) {
  NxConfig* config = DefaultConfig(NxCONFIG_QUERY);
  uint16_t flag = 0;
  if (config != nullptr) {
    const char* words[] = {"debug", nullptr};
    config->Query("stringOverflow", &flag, words);
  }
  if (flag != 0 || config == nullptr)
    ZENTRO_assert("\"String overflow\" && 0", "src\\nxstring", line);
}

// ---------------------------------------------------------------------------
// The neighbours' constructors on a string.

NxChar::NxChar(NxString& text, int byteOffset)
    : position(reinterpret_cast<unsigned char*>(text.StrGet()) + byteOffset),
      value(0),
      codeSet(text.codeSet),
      language(text.language),
      format(1) {}

NxStringIterator::NxStringIterator(NxString& text)
    : position(reinterpret_cast<unsigned char*>(text.StrGet())),
      codeSet(text.codeSet),
      language(text.language != 255 ? text.language : NxLanguageContext::GetDefaultLanguage()),
      state(0),
      overflow(nullptr),
      overflowIndex(0),
      overflowCodeSet(0),
      format(8),
      ownsBuffer(0) {
  const NxCodeSet* set = NxLanguageContext::QueryCodeSet(codeSet);
  if (set != nullptr) state = set->InitialState(language);
}

// ---------------------------------------------------------------------------
// Construction.

NxString::NxString()
    : data(nullptr), size(0), codeSet(GetDefaultCodeSet()), language(GetDefaultLanguage()) {}

NxString::NxString(unsigned char codeSet_, unsigned char language_)
    : data(nullptr), size(0), codeSet(codeSet_), language(language_) {}

NxString::NxString(const NxString& other)
    : data(nullptr), size(0), codeSet(other.codeSet), language(other.language) {
  if (other.data != nullptr) SetText(other.data, other.codeSet, 65535, 255);
}

NxString::NxString(char c)
    : data(nullptr), size(0), codeSet(GetDefault8CodeSet()), language(GetDefaultLanguage()) {
  const char text[2] = {c, 0};
  if (c != 0) SetText(text, codeSet, 1, 255);
}

NxString::NxString(unsigned short c)
    : data(nullptr), size(0), codeSet(GetDefault16CodeSet()), language(GetDefaultLanguage()) {
  const unsigned short text[2] = {c, 0};
  if (c != 0) SetText(reinterpret_cast<const char*>(text), codeSet, 1, 255);
}

NxString::NxString(const char* text)
    : data(nullptr), size(0), codeSet(GetDefault8CodeSet()), language(GetDefaultLanguage()) {
  SetText(text, codeSet, 65535, 255);
}

NxString::NxString(const unsigned short* text)
    : data(nullptr), size(0), codeSet(GetDefault16CodeSet()), language(GetDefaultLanguage()) {
  SetText(reinterpret_cast<const char*>(text), codeSet, 65535, 255);
}

NxString::NxString(const char* text, unsigned short count)
    : data(nullptr), size(0), codeSet(GetDefault8CodeSet()), language(GetDefaultLanguage()) {
  SetText(text, codeSet, count, 255);
}

NxString::NxString(const unsigned short* text, unsigned short count)
    : data(nullptr), size(0), codeSet(GetDefault16CodeSet()), language(GetDefaultLanguage()) {
  SetText(reinterpret_cast<const char*>(text), codeSet, count, 255);
}

NxString::NxString(short number) : NxString(static_cast<int>(number)) {}

NxString::NxString(int number)
    : data(nullptr), size(0), codeSet(GetDefault8CodeSet()), language(GetDefaultLanguage()) {
  char text[64];
  Format(text, "%d", number);
  SetText(text, codeSet, 65535, 255);
}

// "%d" on purpose: 2^31 and above read as negative numbers.
NxString::NxString(unsigned int number) : NxString(static_cast<int>(number)) {}

// The low 32 bits, as the stored world's long is 32 bits wide.
NxString::NxString(long number)
    : data(nullptr), size(0), codeSet(GetDefault8CodeSet()), language(GetDefaultLanguage()) {
  const int32_t low =
      static_cast<int32_t>(static_cast<uint32_t>(static_cast<unsigned long>(number)));
  char text[64];
  Format(text, "%ld", static_cast<long>(low));
  SetText(text, codeSet, 65535, 255);
}

NxString::NxString(unsigned long number)
    : data(nullptr), size(0), codeSet(GetDefault8CodeSet()), language(GetDefaultLanguage()) {
  const uint32_t low = static_cast<uint32_t>(number);
  char text[64];
  Format(text, "%lu", static_cast<unsigned long>(low));
  SetText(text, codeSet, 65535, 255);
}

NxString::NxString(double number)
    : data(nullptr), size(0), codeSet(GetDefault8CodeSet()), language(GetDefaultLanguage()) {
  char text[64];
  Format(text, "%.15g", number);
  SetText(text, codeSet, 65535, 255);
}

NxString::~NxString() {
  Destroy();
}

// ---------------------------------------------------------------------------
// Defaults.

unsigned char NxString::GetDefaultCodeSet() {
  return NxLanguageContext::GetDefaultCodeSet();
}
unsigned char NxString::GetDefault8CodeSet() {
  return NxLanguageContext::GetDefault8CodeSet();
}
unsigned char NxString::GetDefault16CodeSet() {
  return NxLanguageContext::GetDefault16CodeSet();
}
unsigned char NxString::GetDefaultLanguage() {
  return NxLanguageContext::GetDefaultLanguage();
}
unsigned short NxString::GetDefaultCmpOp() {
  return NxLanguageContext::GetDefaultCmpOp();
}
void NxString::SetDefaultCodeSet(unsigned char codeSet_) {
  NxLanguageContext::SetDefaultCodeSet(codeSet_);
}
void NxString::SetDefaultLanguage(unsigned char language_) {
  NxLanguageContext::SetDefaultLanguage(language_);
}
void NxString::SetDefaultCmpOp(unsigned short cmpOp) {
  NxLanguageContext::SetDefaultCmpOp(cmpOp);
}

// ---------------------------------------------------------------------------
// Lifetime and raw state.

void NxString::d_deactivate() {
  Destroy();
}

void NxString::Destroy() {
  std::free(data);
  data = nullptr;
  size = 0;
  codeSet = 0;
  language = 0;
}

void NxString::Init() {
  data = nullptr;
  size = 0;
  codeSet = GetDefaultCodeSet();
  language = GetDefaultLanguage();
}

void NxString::Destruct(NxString& other) {
  if (&other == this) return;
  std::free(data);
  data = other.data;
  size = other.size;
  codeSet = other.codeSet;
  language = other.language;
  other.data = nullptr;
  other.size = 0;
}

int NxString::IsNullValue() const {
  return language == 254 || (codeSet == 254 && language == 0);
}

int NxString::SetNullValue() {
  std::free(data);
  data = nullptr;
  size = 0;
  codeSet = 0;
  language = 254;
  return 0;
}

const NxString& NxString::EmptyString() {
  return detail::emptyString;
}

// ---------------------------------------------------------------------------
// Assignment and append.

NxString& NxString::operator=(const NxString& other) {
  if (&other == this) return *this;
  std::free(data);
  data = nullptr;
  size = 0;
  codeSet = other.codeSet;
  if (other.data != nullptr) SetText(other.data, other.codeSet, 65535, 255);
  language = other.language;
  return *this;
}

NxString& NxString::operator=(const char* text) {
  std::free(data);
  data = nullptr;
  size = 0;
  codeSet = GetDefault8CodeSet();
  SetText(text, codeSet, 65535, 255);
  language = GetDefaultLanguage();
  return *this;
}

NxString& NxString::operator=(const unsigned short* text) {
  std::free(data);
  data = nullptr;
  size = 0;
  codeSet = GetDefault16CodeSet();
  SetText(reinterpret_cast<const char*>(text), codeSet, 65535, 255);
  language = GetDefaultLanguage();
  return *this;
}

// Appends in truncate mode at the end: even an append of nothing leaves a
// buffer that holds the terminator.  The source may be this string itself.
NxString& NxString::operator+=(const NxString& other) {
  Splice(other.data, other.codeSet, Len(), 0, other.Len(), 1, spliceTruncate, 255);
  return *this;
}

NxString& NxString::operator<<(char c) {
  return *this += NxString(c);
}
NxString& NxString::operator<<(const char* text) {
  return *this += NxString(text);
}
NxString& NxString::operator<<(const unsigned short* text) {
  return *this += NxString(text);
}
NxString& NxString::operator<<(const NxString& text) {
  return *this += text;
}
NxString& NxString::operator<<(short number) {
  return *this += NxString(number);
}
NxString& NxString::operator<<(int number) {
  return *this += NxString(number);
}
NxString& NxString::operator<<(unsigned int number) {
  return *this += NxString(number);
}
NxString& NxString::operator<<(long number) {
  return *this += NxString(number);
}
NxString& NxString::operator<<(unsigned long number) {
  return *this += NxString(number);
}
NxString& NxString::operator<<(double number) {
  return *this += NxString(number);
}
NxString& NxString::operator<<(float number) {
  return *this += NxString(static_cast<double>(number));
}

NxString& NxString::operator<<(unsigned short c) {
  if (codeSet > 224) return *this += NxString(c);
  return *this += NxString(static_cast<unsigned int>(c));
}

NxString operator+(const NxString& a, const NxString& b) {
  NxString result(a.codeSet, a.language);
  result += a;
  result += b;
  return result;
}

// ---------------------------------------------------------------------------
// Reading.

unsigned short NxString::Len() const {
  if (data == nullptr) return 0;
  const uint32_t w = Width(codeSet);
  const uint32_t units = size / w;
  uint32_t count = 0;
  while (count < units && !IsZeroChar(data + count * w, w)) ++count;
  return static_cast<unsigned short>(count);
}

unsigned short NxString::IsEmpty() const {
  return data == nullptr || IsZeroChar(data, Width(codeSet)) ? 1 : 0;
}

unsigned short NxString::operator!() const {
  return IsEmpty();
}

char* NxString::StrGet() const {
  return data != nullptr ? data : zeroBuffer;
}

NxChar NxString::operator[](int index) {
  if (index >= 0 && index <= Len()) return NxChar(*this, index * static_cast<int>(Width(codeSet)));
  return NxChar(static_cast<unsigned short>(0), GetDefaultCodeSet(), 255);
}

// ---------------------------------------------------------------------------
// Numbers.  Option bit 0 chooses atoi/atol (decimal) over strtol with base 0.

NxString::operator int() const {
  if (data == nullptr) return 0;
  if (codeSet > 224) return static_cast<int32_t>(ReadDecimal16(data, size / 2));
  return detail::Strtol32(data, (___NxTypeMgrOptions() & 1) != 0 ? 10 : 0);
}

NxString::operator short() const {
  return static_cast<short>(static_cast<uint16_t>(static_cast<uint32_t>(operator int())));
}

NxString::operator long() const {
  return static_cast<long>(operator int());
}

NxString::operator double() const {
  if (data == nullptr) return 0.0;
  if (codeSet > 224) return ReadReal16(data, size / 2);
  return std::atof(data);
}

namespace {

// Atol and Strtol: -1 unless the first character is a digit or "-", else 0
// and the number, 8-bit text through strtol with `base` at 32 bits.  A "-"
// before 16-bit text: the rest is read by the 16-bit reader and negated, in
// wrapping 32-bit arithmetic.
int ReadLeadingNumber(const NxString& text, int base, int32_t& value) {
  value = 0;
  NxChar first = const_cast<NxString&>(text)[0];
  const bool minus = first == '-';
  if (!first.IsDigit() && !minus) return -1;
  if (text.data == nullptr) return 0;
  if (text.codeSet > 224) {
    const uint32_t units = text.size / 2;
    if (minus)
      value = static_cast<int32_t>(0u - ReadDecimal16(text.data + 2, units - 1));
    else
      value = static_cast<int32_t>(ReadDecimal16(text.data, units));
  } else {
    value = detail::Strtol32(text.data, base);
  }
  return 0;
}

}  // namespace

int NxString::Atol(int32_t& value) const {
  return ReadLeadingNumber(*this, 10, value);
}

int NxString::Strtol(int32_t& value) const {
  return ReadLeadingNumber(*this, 0, value);
}

// ---------------------------------------------------------------------------
// The edit core.

// Whole-text assignment on an emptied string.  A text that can't fit the
// limit is reported and leaves the string without a buffer.
void NxString::SetText(const char* source, unsigned char sourceCodeSet, unsigned short count,
                       unsigned char format) {
  if (source == nullptr || count == 0) {
    data = nullptr;
    return;
  }
  if (count == 65535) {
    const size_t chars = CountChars(source, Width(sourceCodeSet));
    if ((chars + 1) * Width(codeSet) > maxSize) {
      detail::ReportStringOverflow(__LINE__);
      return;
    }
    count = static_cast<unsigned short>(chars);
  }
  Splice(source, sourceCodeSet, 0, 0, count, 1, spliceTruncate, format);
}

void NxString::Splice(const char* source, unsigned char sourceCodeSet, unsigned short position,
                      unsigned short sourcePosition, unsigned short count, unsigned short repeat,
                      int mode, unsigned char format) {
  if (mode != spliceTruncate && (source == nullptr || IsZeroChar(source, Width(sourceCodeSet))))
    return;
  if (format == 255) format = 1;
  const uint32_t w = Width(codeSet);

  // Text of another code set is read from a recoded copy, in memory form.
  char* recoded = nullptr;
  uint32_t recodedSize = 0;
  if (source != nullptr &&
      ((sourceCodeSet != 0 && sourceCodeSet != codeSet) || (sourceCodeSet == 0 && w == 2))) {
    recodedSize = Recode(sourceCodeSet, codeSet, source, recoded);
    source = recoded;
  }
  const unsigned char sourceFormat = recoded != nullptr ? 1 : format;

  // Byte places.  Positions never lie behind the old terminator.
  const uint32_t oldSize = data != nullptr ? size : 0;
  const uint32_t oldText = oldSize >= w ? oldSize - w : 0;
  uint32_t p0 = position * w;
  uint32_t p1 = (static_cast<uint32_t>(position) + count) * w;
  if (p0 > oldText) p0 = oldText;
  if (p1 > oldText) p1 = oldText;
  if (p1 < p0) p1 = p0;
  uint32_t s0 = sourcePosition * w;
  uint32_t s1 = (static_cast<uint32_t>(sourcePosition) + count) * w;
  if (source == nullptr) s0 = s1 = 0;
  if (recoded != nullptr) {
    if (s1 > recodedSize) s1 = recodedSize;
    if (s0 > s1) s0 = s1;
  }
  const uint32_t n = s1 - s0;

  uint64_t newSize = 0;
  switch (mode) {
    case spliceReplace:
      newSize = uint64_t{n} * repeat - p1 + oldSize + p0;
      break;
    case spliceInsert:
      newSize = uint64_t{n} * repeat + (oldSize != 0 ? oldSize : w);
      break;
    default:
      newSize = uint64_t{n} * repeat + w + p0;
      break;
  }
  if (newSize > maxSize) {
    detail::ReportStringOverflow(__LINE__);
    std::free(recoded);
    return;
  }

  char* buffer = Allocate(static_cast<uint32_t>(newSize));
  if (data != nullptr) {
    CopyUnits(buffer, data, w, 1, p0);
    if (mode == spliceReplace)
      CopyUnits(buffer + p0 + n * repeat, data + p1, w, 1, oldSize - p1);
    else if (mode == spliceInsert)
      CopyUnits(buffer + p0 + n, data + p0, w, 1, oldSize - p0);
  }
  if (source != nullptr) {
    if (repeat == 1) {
      CopyUnits(buffer + p0, source + s0, w, sourceFormat, n);
    } else if (n >= w) {
      for (uint32_t i = 0; i < repeat; ++i)
        CopyUnits(buffer + p0 + i * w, source + s0, w, sourceFormat, w);
    }
  }
  if (mode == spliceTruncate) std::memset(buffer + newSize - w, 0, w);

  std::free(data);
  data = buffer;
  size = static_cast<unsigned short>(newSize);
  std::free(recoded);
}

void NxString::CopyUnits(char* destination, const char* source, unsigned charWidth,
                         unsigned char format, uint32_t bytes) {
  if (bytes == 0) return;
  if (charWidth == 2 && format == 2)
    ShortStore(destination, source, 2, bytes / 2);
  else
    std::memmove(destination, source, bytes);
}

// A complete converted copy of a terminated text; returns its size.  The
// caller checks the size against the limit before installing it.
uint32_t NxString::Recode(unsigned char sourceCodeSet, unsigned char targetCodeSet,
                          const char* source, char*& result) {
  const size_t chars = CountChars(source, Width(sourceCodeSet));
  const uint32_t bytes = static_cast<uint32_t>((chars + 1) * Width(targetCodeSet));
  result = Allocate(bytes);
  NxStringIterator from(source, Native(sourceCodeSet), 255, 1);
  NxStringIterator to(result, Native(targetCodeSet), 255, 1);
  while (!from.IsEOS()) {
    *to = *from;
    ++to;
    ++from;
  }
  return bytes;
}

int NxString::CopyConverted(unsigned char sourceCodeSet, unsigned char targetCodeSet,
                            const char* source, short count, char*& data_, unsigned short& size_) {
  const uint32_t wanted = count < 0
                              ? static_cast<uint32_t>(CountChars(source, Width(sourceCodeSet)))
                              : static_cast<uint32_t>(count);
  const uint32_t tw = Width(targetCodeSet);
  const uint64_t need = (uint64_t{wanted} + 1) * tw;
  if (need > maxSize) {
    detail::ReportStringOverflow(__LINE__);
    return 0;
  }
  if (data_ == nullptr || size_ < need) {
    char* buffer = Allocate(static_cast<uint32_t>(need));
    std::free(data_);
    data_ = buffer;
    size_ = static_cast<unsigned short>(need);
  }
  NxStringIterator from(source, Native(sourceCodeSet), 255, 1);
  NxStringIterator to(data_, Native(targetCodeSet), 255, 1);
  int copied = 0;
  while (static_cast<uint32_t>(copied) < wanted && !from.IsEOS()) {
    *to = *from;
    ++to;
    ++from;
    ++copied;
  }
  std::memset(to.position, 0, tw);
  return copied;
}

// ---------------------------------------------------------------------------
// Editing.

NxString& NxString::Insert(const NxString& text, unsigned short position) {
  if (position > Len()) return *this;
  const unsigned short count = text.Len();
  if (count == 0) return *this;
  Splice(text.data, text.codeSet, position, 0, count, 1, spliceInsert, 255);
  return *this;
}

NxString& NxString::Replace(const NxString& text, unsigned short position) {
  int count = text.Len();
  const int room = static_cast<int>(Len()) - position;
  if (count > room) count = room;
  if (count <= 0) return *this;
  Splice(text.data, text.codeSet, position, 0, static_cast<unsigned short>(count), 1, spliceReplace,
         255);
  return *this;
}

// A character argument is one of the default 8-bit or 16-bit code set;
// Splice recodes it into the string's code set.
NxString& NxString::Fill(unsigned short count, char c) {
  const char text[2] = {c, 0};
  Splice(text, GetDefault8CodeSet(), 0, 0, 1, count, spliceTruncate, 255);
  return *this;
}

NxString& NxString::Fill(unsigned short count, unsigned short c) {
  const unsigned short text[2] = {c, 0};
  Splice(reinterpret_cast<const char*>(text), GetDefault16CodeSet(), 0, 0, 1, count, spliceTruncate,
         255);
  return *this;
}

NxString& NxString::Expand(unsigned short length, char c) {
  const unsigned short len = Len();
  if (len >= length) return *this;
  const char text[2] = {c, 0};
  Splice(text, GetDefault8CodeSet(), len, 0, 1, static_cast<unsigned short>(length - len),
         spliceTruncate, 255);
  return *this;
}

NxString& NxString::Expand(unsigned short length, unsigned short c) {
  const unsigned short len = Len();
  if (len >= length) return *this;
  const unsigned short text[2] = {c, 0};
  Splice(reinterpret_cast<const char*>(text), GetDefault16CodeSet(), len, 0, 1,
         static_cast<unsigned short>(length - len), spliceTruncate, 255);
  return *this;
}

// Head up to `position`, then the tail of the own buffer as source.
NxString& NxString::Cut(unsigned short position, short count) {
  const int len = Len();
  int remove = count;
  if (count == -1 || position + count > len) remove = len - position;
  if (remove <= 0) return *this;
  Splice(data, codeSet, position, static_cast<unsigned short>(position + remove),
         static_cast<unsigned short>(len - position - remove), 1, spliceTruncate, 255);
  return *this;
}

// Copy, Left and Right share one rule.  Left and Right take their counts
// unsigned, so that texts of more than 32767 characters copy right; a
// negative count of Copy runs up to the end.
NxString NxString::Copy(unsigned short position, short count) const {
  const unsigned short len = Len();
  if (position >= len) return NxString("");
  unsigned short take = static_cast<unsigned short>(len - position);
  if (count >= 0 && count < take) take = static_cast<unsigned short>(count);
  NxString result(codeSet, language);
  result.Splice(data, codeSet, 0, position, take, 1, spliceTruncate, 255);
  return result;
}

NxString NxString::Left(unsigned short count) const {
  const unsigned short len = Len();
  if (len == 0) return NxString("");
  if (count > len) count = len;
  NxString result(codeSet, language);
  result.Splice(data, codeSet, 0, 0, count, 1, spliceTruncate, 255);
  return result;
}

NxString NxString::Right(unsigned short count) const {
  const unsigned short len = Len();
  if (count > len) count = len;
  if (count == 0) return NxString("");
  NxString result(codeSet, language);
  result.Splice(data, codeSet, 0, static_cast<unsigned short>(len - count), count, 1,
                spliceTruncate, 255);
  return result;
}

NxString& NxString::LeftTrim() {
  const unsigned short len = Len();
  const int w = static_cast<int>(Width(codeSet));
  unsigned short spaces = 0;
  while (spaces < len && NxChar(*this, spaces * w).IsSpace()) ++spaces;
  if (spaces == 0) return *this;
  Splice(data, codeSet, 0, spaces, static_cast<unsigned short>(len - spaces), 1, spliceTruncate,
         255);
  return *this;
}

// Walks back from the terminator, which counts as a space, and never looks
// at the first character: a text of spaces keeps its first one.
NxString& NxString::RightTrim() {
  if (data == nullptr) return *this;
  const uint32_t w = Width(codeSet);
  NxStringIterator it(data + size - w, codeSet, language, 255);
  const unsigned char* start = reinterpret_cast<const unsigned char*>(data);
  uint32_t keep = Len() + 1u;
  while (it.position > start) {
    NxChar c = *it;
    --it;
    if (!c.IsSpace()) break;
    --keep;
  }
  if (keep <= Len()) Cut(static_cast<unsigned short>(keep), -1);
  return *this;
}

NxString& NxString::Trim() {
  LeftTrim();
  return RightTrim();
}

// ---------------------------------------------------------------------------
// Searching on collation.

short NxString::Find(const NxString& text, unsigned short start, unsigned short cmpOp) const {
  if (size == 0 || text.size == 0 || data == nullptr || text.data == nullptr) return -1;
  if (start > Len()) return -1;
  if (cmpOp == 65535) cmpOp = GetDefaultCmpOp();
  const uint32_t w = Width(codeSet);
  const short n = static_cast<short>(text.Len());
  const uint32_t textBytes = text.size - Width(text.codeSet);
  const uint32_t ownBytes = size - w;
  for (uint32_t offset = start * w; offset + textBytes <= ownBytes; offset += w) {
    if (NxStrCmp(codeSet, language, data + offset, text.codeSet, text.language, text.data, cmpOp, n,
                 1, nullptr) == 0)
      return static_cast<short>(offset / w);
  }
  return -1;
}

short NxString::Find(char c, unsigned short start, unsigned short cmpOp) const {
  return Find(NxString(c), start, cmpOp);
}

short NxString::Find(unsigned short c, unsigned short start, unsigned short cmpOp) const {
  return Find(NxString(c), start, cmpOp);
}

short NxString::SubStringPos(const NxString& text, unsigned short cmpOp) const {
  return Find(text, 0, cmpOp);
}

// The search goes on behind each inserted text.  An empty `from` replaces
// nothing.
NxString& NxString::ReplaceAll(const NxString& from, const NxString& to, unsigned short start) {
  const unsigned short f = from.Len();
  const unsigned short t = to.Len();
  if (f == 0) return *this;
  short found = Find(from, start, 65535);
  while (found != -1) {
    const unsigned short place = static_cast<unsigned short>(found);
    Cut(place, static_cast<short>(f));
    Insert(to, place);
    const uint32_t next = uint32_t{place} + t;
    if (next > Len()) break;
    found = Find(from, static_cast<unsigned short>(next), 65535);
  }
  return *this;
}

NxString& NxString::ReplaceAll(char from, char to, unsigned short start) {
  return ReplaceAll(NxString(from), NxString(to), start);
}

NxString& NxString::ReplaceAll(unsigned short from, unsigned short to, unsigned short start) {
  return ReplaceAll(NxString(from), NxString(to), start);
}

// ---------------------------------------------------------------------------
// Code sets.

int NxString::SetCodeSetCode(unsigned char codeSet_) {
  if (Width(codeSet_) != Width(codeSet)) return NxSTATUS_INVALID_ARGUMENT;
  codeSet = codeSet_;
  return 0;
}

// Recodes only when the char width changes.  A text too long for the new
// width is reported and stays as it was, code set included.
void NxString::SetCodeSet(unsigned char codeSet_) {
  if (data == nullptr || Width(codeSet) == Width(codeSet_)) {
    codeSet = codeSet_;
    return;
  }
  char* result = nullptr;
  const uint32_t bytes = Recode(codeSet, Native(codeSet_), data, result);
  if (bytes > maxSize) {
    detail::ReportStringOverflow(__LINE__);
    std::free(result);
    return;
  }
  std::free(data);
  data = result;
  size = static_cast<unsigned short>(bytes);
  codeSet = codeSet_;
}

// Recodes whenever the code set changes.  On overflow the string stays as
// it was and the result is still 0.
int NxString::MapToCodeSet(unsigned char codeSet_) {
  if (codeSet_ == 0) return NxSTATUS_INVALID_ARGUMENT;
  if (codeSet_ == codeSet) return 0;
  if (data == nullptr) {
    codeSet = codeSet_;
    return 0;
  }
  char* result = nullptr;
  const uint32_t bytes = Recode(codeSet, codeSet_, data, result);
  if (bytes > maxSize) {
    detail::ReportStringOverflow(__LINE__);
    std::free(result);
    return 0;
  }
  std::free(data);
  data = result;
  size = static_cast<unsigned short>(bytes);
  codeSet = codeSet_;
  return 0;
}

// A result that would pass the limit is reported; the string stays as it
// was and the result is 0.
int NxString::CopyMapped(const NxString& source, unsigned char codeSet_, short count) {
  if (&source == this) return NxSTATUS_INVALID_ARGUMENT;
  const char* text = source.StrGet();
  const uint32_t wanted = count < 0 ? static_cast<uint32_t>(CountChars(text, Width(source.codeSet)))
                                    : static_cast<uint32_t>(count);
  if ((uint64_t{wanted} + 1) * Width(codeSet_) > maxSize) {
    detail::ReportStringOverflow(__LINE__);
    return 0;
  }
  codeSet = codeSet_;
  language = source.language;
  return CopyConverted(source.codeSet, codeSet_, text, count, data, size);
}

// ---------------------------------------------------------------------------
// Case.

// Applies `operation` character by character into a new buffer.  One
// character may become several (an upper-case form can be longer than
// twice the text), so the buffer grows as needed; a result beyond the limit
// is reported and the string stays as it was.
NxString& NxString::Transform(NxCharOperation& operation) {
  if (size == 0 || data == nullptr) return *this;
  const uint32_t w = Width(codeSet);
  uint32_t capacity = 2u * size;
  if (capacity > maxSize) capacity = maxSize;
  char* buffer = Allocate(capacity);
  NxStringIterator source(*this);
  NxStringIterator target(buffer, codeSet, 255, 255);
  uint32_t offset = 0;
  while (!source.IsEOS()) {
    NxChar result = operation.Apply(*source, &source);
    // Room for this character and the terminator.
    if (offset + 2 * w > maxSize) {
      detail::ReportStringOverflow(__LINE__);
      std::free(buffer);
      return *this;
    }
    if (offset + 2 * w > capacity) {
      uint32_t grown = capacity * 2;
      if (grown > maxSize) grown = maxSize;
      char* larger = Allocate(grown);
      std::memcpy(larger, buffer, offset);
      std::free(buffer);
      buffer = larger;
      capacity = grown;
      target.position = reinterpret_cast<unsigned char*>(buffer) + offset;
    }
    *target = result;
    ++target;
    ++source;
    offset += w;
  }
  *target = *source;
  std::free(data);
  data = buffer;
  size = static_cast<unsigned short>(offset + w);
  return *this;
}

NxString& NxString::ToUpper() {
  NxCharToUpper operation;
  return Transform(operation);
}

NxString& NxString::ToLower() {
  NxCharToLower operation;
  return Transform(operation);
}

// ---------------------------------------------------------------------------
// Lists.

// One element after the other, trimmed.  A separator at the very start of
// the list is passed over; a closing separator ends the list.
int NxSplitList(NxString& list, NxString& element, const NxString& separator,
                unsigned short& position) {
  short found = list.Find(separator, position, 65535);
  while (found == 0) {
    ++position;
    found = list.Find(separator, position, 65535);
  }
  const unsigned short len = list.Len();
  unsigned short end;
  if (found == -1) {
    if (position >= len) return NxSTATUS_LIST_ENDED;
    end = len;
  } else {
    end = static_cast<unsigned short>(found);
  }
  const unsigned count = end > position ? end - position : 0u;
  if (count > 32767)
    element = list.Left(end).Right(static_cast<unsigned short>(count));
  else
    element = list.Copy(position, static_cast<short>(count));
  element.Trim();
  position = static_cast<unsigned short>(end + 1);
  return 0;
}
