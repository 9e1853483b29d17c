// NxString: the core (layout, lifetime, the one edit routine Splice, the size
// limit, numeric conversions), the editing operations built on it, and the
// comparison at collation strength with wildcards and the hashes of text.
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
#include <new>

#include "nxcollation.h"
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
  Destroy();
  language = 254;  // with code set 0: the null value
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

// ===========================================================================
// String comparison at collation strength and wildcard matching: NxStrCmp,
// the comparison members of NxString, the wildcard settings, the hashes of
// text, and the two helpers of the string key rows (FindWildcard,
// PositionValue).
//
// Results of comparisons are 32-bit differences of weights, orders or bytes,
// computed in wrapping 32-bit arithmetic.  Only their sign means anything:
// a weight difference between texts in states more than 127 apart may wrap,
// which no state of the order tables comes near.
namespace {

// Empty text for null pointers and null values, valid in both widths and
// aligned for 16-bit reads.
alignas(4) const char kEmptyText[4] = {0, 0, 0, 0};

// The bits of the comparison operator word.
constexpr unsigned short kNoWildcards = NxCMP_NO_WILDCARDS;
constexpr unsigned short kIgnoreCase = NxCMP_IGNORE_CASE;
constexpr unsigned short kIgnoreAccents = NxCMP_IGNORE_ACCENTS;
constexpr unsigned short kIgnoreSpaces = NxCMP_IGNORE_SPACES;
constexpr unsigned short kExact = NxCMP_EXACT;
constexpr unsigned short kIgnoreSymbols = NxCMP_IGNORE_SYMBOLS;

// Order classes.
constexpr unsigned short kFirstSymbol = 80;
constexpr unsigned short kFirstDigit = 0x3F00;
constexpr unsigned char kUnknownState = 20;
constexpr unsigned char kOrderText = 254;

// Language 254 marks a null value, and so does code set 254 with language 0.
inline bool IsNullText(unsigned char codeSet, unsigned char language) {
  return language == 254 || (codeSet == kOrderText && language == 0);
}

// a - b in wrapping 32-bit arithmetic; only the sign of the result counts.
inline int32_t Diff(uint32_t a, uint32_t b) {
  return static_cast<int32_t>(a - b);
}

inline int32_t ByteDiff(const char* a, const char* b) {
  return static_cast<int32_t>(static_cast<unsigned char>(*a)) -
         static_cast<int32_t>(static_cast<unsigned char>(*b));
}

// Byte compare of texts without a code set: the difference of the first
// unsigned bytes that differ among the first `limit` bytes (0: no limit),
// the terminator counting as byte 0.  A null text is an empty one.
int32_t PlainCompare(const char* a, const char* b, uint32_t limit) {
  if (a == nullptr) a = kEmptyText;
  if (b == nullptr) b = kEmptyText;
  for (uint32_t i = 0; limit == 0 || i < limit; ++i) {
    const int32_t d = ByteDiff(a + i, b + i);
    if (d != 0 || a[i] == 0) return d;
  }
  return 0;
}

// The byte matcher for texts without a code set: `s` against the pattern `p`
// with the bytes "*" and "?" as wildcards, over at most `n` characters of s.
// After a failed attempt behind a star it takes s up again one byte behind
// the place where that attempt's search began (`resume`) and p again behind
// the star (`back` elements back).  The search behind a star looks for the
// byte of p as it stands, so a "?" directly behind a "*" is a plain byte.
int32_t ByteMatch(const char* s, const char* p, uint32_t n) {
  if (p == nullptr) return (s != nullptr && *s != 0) ? 1 : 0;
  if (s == nullptr) return *p == 0 ? 0 : -1;
  const char* resume = s;
  uint32_t back = 0;
  bool inStar = false;
  for (;;) {
    bool star = false;
    if (*p == 0 && !inStar) return n == 0 ? 0 : ByteDiff(s, p);
    if (n == 0) return 0;
    if (*p == '*') {
      star = true;
    } else {
      if (*p == '?' && *s == 0) return -1;  // "?" doesn't match the end
      if (*p != '?' && *p != *s) {
        if (back == 0) return ByteDiff(s, p);
        s = resume;
        p -= back;
        star = true;
      }
    }
    if (star) {
      while (*p == '*') ++p;
      if (*p == 0) return 0;  // a star at the end matches the rest
      back = 0;
      resume = s + 1;
      inStar = true;
      if (*s == 0) return -1;
      while (*s != 0 && *s != *p) ++s;
      if (*s == 0) return ByteDiff(s, p);
    }
    // A match of the bytes at s and p.
    if (*p != 0) ++p;
    if (*s == 0) {
      inStar = false;
      continue;
    }
    ++s;
    --n;
    if (inStar) ++back;
  }
}

namespace collation = detail::collation;
using collation::Entry;
using collation::HashEntry;
using collation::kCounts;
using collation::kExpansion;
using collation::kHashSlow;
using collation::kKindMask;
using collation::kSimple;
using collation::kStops;
using collation::kSymbol;
using collation::kUnknown;
using collation::Reading;

// The entries of a code set, and the reading of a language, or null.
inline const collation::CodeSet* CacheOf(unsigned char codeSet, unsigned char language) {
  return collation::CodeSetOf(codeSet, language);
}

inline const Reading* ReadingOf(unsigned char codeSet, unsigned char language) {
  const collation::CodeSet* set = collation::CodeSetOf(codeSet, language);
  return set != nullptr ? set->reading[language] : nullptr;
}

// One side of the strength compare: an iterator with its current element
// and the count of elements read.
struct Side {
  // The iterator is made as its constructor on the text would make it; in
  // the cached code sets without the calls that ask for the home state.
  Side(const char* text, unsigned char codeSet, unsigned char language, unsigned char format) {
    const collation::CodeSet* cache = CacheOf(codeSet, language);
    if (cache != nullptr) {
      iterator.position = reinterpret_cast<unsigned char*>(const_cast<char*>(text));
      iterator.codeSet = codeSet;
      iterator.language = language;
      iterator.state = cache->home[language];
      iterator.format = format == 255 ? 1 : format;
    } else {
      iterator = NxStringIterator(text, codeSet, language, format);
    }
  }
  Side(const Side& other) = default;
  // The iterators of a comparison never own their text, so assignment is a
  // copy of the fields, as NxStringIterator's own assignment makes it.
  Side& operator=(const Side& other) {
    NxStringIterator& to = iterator;
    const NxStringIterator& from = other.iterator;
    to.position = from.position;
    to.codeSet = from.codeSet;
    to.language = from.language;
    to.state = from.state;
    to.overflow = from.overflow;
    to.overflowIndex = from.overflowIndex;
    to.overflowCodeSet = from.overflowCodeSet;
    to.format = from.format;
    count = other.count;
    weight = other.weight;
    order = other.order;
    pending = other.pending;
    ended = other.ended;
    return *this;
  }
  NxStringIterator iterator;
  uint32_t count = 0;          // elements read, invisible ones included
  uint32_t weight = 0;         // weight of the current element
  unsigned short order = 0;    // the current element
  unsigned short pending = 0;  // an ignorable element read in this round
  bool ended = false;          // the end of the text has come back once
};

// The collation reading of one text without the calls of the general
// reader, for the elements that need none of its work: a character of a
// code set with an order table of its own whose entry is one element
// (no contraction, its language's variant resolved, no expansion, a
// record), and the units of order text.  Everything else (pending
// expansions, contractions, characters without a record, code sets
// ordered through Unicode) goes to NxStringIterator::GetNextOrder, which
// gives the same result for the elements handled here.
class FastOrders {
 public:
  // Set up on an iterator just made on its text: its state is then the
  // home state of the text's code set and language.
  void Init(const NxStringIterator& it) {
    orderText_ = it.codeSet == kOrderText;
    wide_ = it.codeSet > 224;
    byteOrder_ = static_cast<unsigned char>(it.format & 0x0F);
    homeState_ = it.state;
    if (!orderText_) reading_ = ReadingOf(it.codeSet, it.language);
  }

  unsigned short Next(NxStringIterator& it, unsigned short trackState) const {
    if (it.overflow == nullptr && it.position != nullptr) {
      unsigned char* at = it.position;
      if (orderText_) {
        it.position = at + 2;
        return Unit(at);
      }
      if (reading_ != nullptr) {
        const unsigned short value = wide_ ? Unit(at) : *at;
        if (value == 0) return 0;  // stays on the terminator
        const Entry entry = collation::Lookup(*reading_, value);
        if ((entry & kKindMask) == kSimple) {
          if (trackState != 0) it.state = collation::StateOf(entry);
          it.position = at + (wide_ ? 2 : 1);
          return static_cast<unsigned short>(entry);
        }
      }
    }
    return it.GetNextOrder(trackState);
  }

  // Passes the longest common start of two texts of the same code set,
  // language and format that consists of simple characters only (and no
  // wildcard when `asterisk` or `question` is not 0), at most `limit`
  // elements.  Reading it element by element would give the same element
  // on both sides each time, so nothing but the positions, the common
  // state and the counts would change.  Returns the number of elements.
  static uint32_t SkipCommonStart(const FastOrders& fa, NxStringIterator& a, NxStringIterator& b,
                                  uint32_t limit, unsigned short asterisk,
                                  unsigned short question) {
    if (fa.reading_ == nullptr || a.overflow != nullptr || b.overflow != nullptr ||
        a.position == nullptr || b.position == nullptr)
      return 0;
    const unsigned width = fa.wide_ ? 2 : 1;
    const unsigned char* p = a.position;
    const unsigned char* q = b.position;
    unsigned char state = a.state;
    uint32_t n = 0;
    while (n < limit) {
      const unsigned short v = fa.wide_ ? fa.Unit(p) : *p;
      if (v == 0 || v != (fa.wide_ ? fa.Unit(q) : *q)) break;
      const Entry entry = collation::Lookup(*fa.reading_, v);
      const unsigned short order = static_cast<unsigned short>(entry);
      if ((entry & kKindMask) != kSimple ||
          (asterisk != 0 && (order == asterisk || order == question)))
        break;
      state = collation::StateOf(entry);
      p += width;
      q += width;
      ++n;
    }
    if (n != 0) {
      a.position += n * width;
      b.position += n * width;
      a.state = state;
      b.state = state;
    }
    return n;
  }

  // Both texts read alike: same code set, state and byte order.
  bool SameReading(const FastOrders& other) const {
    return reading_ == other.reading_ && homeState_ == other.homeState_ &&
           byteOrder_ == other.byteOrder_ && wide_ == other.wide_;
  }

 private:
  unsigned short Unit(const unsigned char* at) const { return collation::UnitAt(at, byteOrder_); }

  const Reading* reading_ = nullptr;
  unsigned char homeState_ = 0;
  unsigned char byteOrder_ = 1;
  bool wide_ = false;
  bool orderText_ = false;
};

// A place in the pattern at which the element behind the star may also
// begin its match, with the differences that stood there.
struct Candidate {
  Candidate(const Side& s, int32_t c, int32_t a) : side(s), caseDiff(c), accentDiff(a) {}
  Side side;
  int32_t caseDiff;
  int32_t accentDiff;
};

// The list of candidates, oldest first.  Room for a few lies inline, so
// that the common patterns allocate nothing; a pattern that makes many
// candidates moves them to the heap.
class CandidateList {
 public:
  CandidateList() = default;
  CandidateList(const CandidateList&) = delete;
  CandidateList& operator=(const CandidateList&) = delete;
  ~CandidateList() {
    Clear();
    if (items_ != Inline()) std::free(items_);
  }

  uint32_t Size() const { return size_; }
  Candidate& operator[](uint32_t i) { return items_[i]; }

  void Add(const Side& side, int32_t caseDiff, int32_t accentDiff) {
    if (size_ == capacity_) Grow();
    new (&items_[size_]) Candidate(side, caseDiff, accentDiff);
    ++size_;
  }

  // Drops the element at `i`; the later ones move down.
  void RemoveAt(uint32_t i) {
    for (uint32_t j = i; j + 1 < size_; ++j) items_[j] = items_[j + 1];
    --size_;
    items_[size_].~Candidate();
  }

  // Drops all elements from `keep` on.
  void Truncate(uint32_t keep) {
    while (size_ > keep) {
      --size_;
      items_[size_].~Candidate();
    }
  }

  void Clear() { Truncate(0); }

 private:
  static constexpr uint32_t kInline = 8;

  Candidate* Inline() { return reinterpret_cast<Candidate*>(inline_); }

  void Grow() {
    const uint32_t capacity = capacity_ * 2;
    const size_t bytes = sizeof(Candidate) * capacity;
    void* memory = std::malloc(bytes);
    while (memory == nullptr) {
      NxCallMemoryHandler(static_cast<uint32_t>(bytes));
      memory = std::malloc(bytes);
    }
    Candidate* items = static_cast<Candidate*>(memory);
    for (uint32_t i = 0; i < size_; ++i) {
      new (&items[i]) Candidate(items_[i]);
      items_[i].~Candidate();
    }
    if (items_ != Inline()) std::free(items_);
    items_ = items;
    capacity_ = capacity;
  }

  alignas(Candidate) unsigned char inline_[kInline * sizeof(Candidate)];
  Candidate* items_ = Inline();
  uint32_t size_ = 0;
  uint32_t capacity_ = kInline;
};

// The strength compare of two texts, the second a pattern unless the
// operator has the no-wildcards bit.
class StrengthCompare {
 public:
  StrengthCompare(unsigned short cmpOp, short maxLength, bool orderText)
      : cmpOp_(cmpOp),
        maxLength_(maxLength),
        limit_(static_cast<unsigned short>(maxLength)),
        wildcards_((cmpOp & kNoWildcards) == 0),
        orderText_(orderText) {
    if (wildcards_) {
      asterisk_ = NxStringIterator::AsteriskOrder();
      question_ = NxStringIterator::QuestionOrder();
    }
    switch (cmpOp & (kIgnoreCase | kIgnoreAccents)) {
      case kIgnoreCase:
        mask_ = 0xFFFFFF9Fu;
        break;
      case kIgnoreAccents:
        mask_ = 0xFFFFFFE0u;
        break;
      case kIgnoreCase | kIgnoreAccents:
        mask_ = 0xFFFFFF80u;
        break;
      default:
        mask_ = 0xFFFFFFFFu;
        break;
    }
  }

  int32_t Run(Side& a, Side& b, int* prefixResult);

 private:
  inline __attribute__((always_inline)) bool ReadOrder(Side& side, bool patternSide);

  FastOrders fast_[2];  // the text, the pattern

  const unsigned short cmpOp_;
  const short maxLength_;
  const uint32_t limit_;  // maxLength as an unsigned number
  const bool wildcards_;
  const bool orderText_;  // one of the texts is order text
  unsigned short asterisk_ = 0;
  unsigned short question_ = 0;
  uint32_t mask_ = 0xFFFFFFFFu;
  unsigned short trackState_ = 1;
  bool wild_ = false;
};

// Reads the next element of one side that takes part in the comparison.
// Spaces and symbols of the low states are ignorable: the bits 0x80 and
// 0x200 make them invisible, otherwise they come back as the side's pending
// element with the answer "read on".  The answer is false for an element
// that counts (digits, letters, ideographs, unknown characters, the end)
// and, on the pattern side, for a wildcard.
inline bool StrengthCompare::ReadOrder(Side& side, bool patternSide) {
  for (;;) {
    ++side.count;
    unsigned short order = 0;
    if (side.count <= limit_ && !side.ended) {
      // Order text has nothing valid behind its terminator: after the end
      // has come back once, the place stays the end.
      order = fast_[patternSide ? 1 : 0].Next(side.iterator, trackState_);
      if (order == 0) side.ended = true;
    }
    side.order = order;
    side.weight = NxStringIterator::WeightOf(order, side.iterator.state);
    if (patternSide && wildcards_ && (order == asterisk_ || order == question_)) {
      wild_ = true;
      return false;
    }
    if (order >= kFirstDigit || side.iterator.state >= kUnknownState || order == 0) return false;
    const unsigned short invisible = order >= kFirstSymbol ? kIgnoreSymbols : kIgnoreSpaces;
    if ((cmpOp_ & invisible) != 0) continue;
    side.pending = order;
    return true;
  }
}

int32_t StrengthCompare::Run(Side& a, Side& b, int* prefixResult) {
  fast_[0].Init(a.iterator);
  fast_[1].Init(b.iterator);
  // A common start of the two texts decides nothing: pass it at once.  The
  // passes over it would store 0 as prefixResult, so not where that counts.
  if (!orderText_ && (prefixResult == nullptr || (cmpOp_ & kIgnoreSpaces) == 0) &&
      a.iterator.language == b.iterator.language && fast_[0].SameReading(fast_[1])) {
    const uint32_t n =
        FastOrders::SkipCommonStart(fast_[0], a.iterator, b.iterator, limit_, asterisk_, question_);
    a.count = n;
    b.count = n;
  }
  // The pattern as it stood in front of the element behind the last star;
  // made at the first star only.
  alignas(Side) unsigned char restartRoom[sizeof(Side)];
  Side* restart = nullptr;
  CandidateList candidates;

  int32_t caseDiff = 0;
  int32_t accentDiff = 0;
  int32_t spaceDiff = 0;
  int32_t savedCase = 0;
  int32_t savedAccent = 0;
  uint32_t star = 0;  // masked weight of the element behind the star
  bool starQuestion = false;
  int32_t r = 0;

  for (;;) {
    // 1. Align: ignorable elements pass on both sides at their own pace;
    // their differences count only as the last resort.
    int32_t passSpace = 0;
    wild_ = false;
    bool more1 = true;
    bool more2 = true;
    do {
      a.pending = 0;
      b.pending = 0;
      if (more1) more1 = ReadOrder(a, false);
      if (more2) more2 = ReadOrder(b, true);
      if (wild_ || star != 0) break;
      if (a.pending != 0 || b.pending != 0) {
        const int32_t d = static_cast<int32_t>(a.pending) - static_cast<int32_t>(b.pending);
        if (d != 0) passSpace = d;
      }
    } while (more1 || more2);

    // 2. Against order text the state of the other text stays where its
    // first element put it.
    if (orderText_) trackState_ = 0;

    const unsigned short o1 = a.order;
    const uint32_t w1 = a.weight;

    // 3. Wildcards.
    if (wildcards_) {
      if (restart != nullptr && ((w1 != 0 && (w1 & mask_) == star) || (o1 != 0 && starQuestion))) {
        // This place of the text could also begin the match of the element
        // behind the star.
        candidates.Add(*restart, caseDiff, accentDiff);
      }
      if (b.order == asterisk_) {
        candidates.Clear();
        savedCase = caseDiff;
        savedAccent = accentDiff;
        do {
          if (restart == nullptr) {
            restart = new (restartRoom) Side(b);
          } else {
            *restart = b;
          }
          ReadOrder(b, true);
        } while (b.order == asterisk_);
        if (b.order == 0) {
          // A star at the end of the pattern matches the rest of the text.
          if (passSpace != 0) spaceDiff = passSpace;
          r = 0;
          break;
        }
        star = b.weight & mask_;
        starQuestion = b.order == question_;
      }
    }

    // 4. Each candidate moves on with the text and stays while it matches.
    if (candidates.Size() != 0) {
      uint32_t kept = 0;
      for (uint32_t i = 0; i < candidates.Size(); ++i) {
        Candidate& c = candidates[i];
        ReadOrder(c.side, true);
        if ((c.side.weight & mask_) == (w1 & mask_) || (o1 != 0 && c.side.order == question_)) {
          if (kept != i) candidates[kept] = c;
          ++kept;
        }
      }
      candidates.Truncate(kept);
    }

    // 5. Compare the two elements.
    const unsigned short o2 = b.order;
    const uint32_t w2 = b.weight;
    if (wildcards_ && o2 == question_) {
      r = o1 != 0 ? 0 : -1;
    } else {
      r = Diff(w1 & ~0x7Fu, w2 & ~0x7Fu);
      // Case: the first difference decides, the lower-case letter first.
      if (caseDiff == 0) caseDiff = Diff(w2 & ~0x1Fu, w1 & ~0x1Fu);
      // Accents: the last difference decides.
      const int32_t d = Diff(w1 & ~0x60u, w2 & ~0x60u);
      if (d != 0) accentDiff = d;
    }

    // 6. Spaces: the last pass with a difference decides.
    if (passSpace != 0) spaceDiff = passSpace;

    // 7. Behind a star a difference at the strength in force is no result:
    // the text moves on and the pattern starts over, at the oldest
    // candidate or behind the star.
    if (wildcards_ && star != 0 && o1 != 0) {
      bool mismatch;
      switch (cmpOp_ & (kIgnoreCase | kIgnoreAccents)) {
        case kIgnoreCase | kIgnoreAccents:
          mismatch = r != 0;
          break;
        case kIgnoreAccents:
          mismatch = caseDiff != 0;
          break;
        case kIgnoreCase:
          mismatch = accentDiff != 0;
          break;
        default:
          mismatch = caseDiff != 0 || accentDiff != 0;
          break;
      }
      if (mismatch) {
        if (candidates.Size() != 0) {
          Candidate& first = candidates[0];
          b = first.side;
          caseDiff = first.caseDiff;
          accentDiff = first.accentDiff;
          candidates.RemoveAt(0);
        } else {
          b = *restart;
          caseDiff = savedCase;
          accentDiff = savedAccent;
        }
        r = 0;
      }
    }

    // 8. The primary result while both texts are within maxLength.
    if (prefixResult != nullptr && (cmpOp_ & kIgnoreSpaces) != 0 &&
        static_cast<int32_t>(a.count) <= maxLength_ && static_cast<int32_t>(b.count) <= maxLength_)
      *prefixResult = r;

    // 9.
    if (r != 0 || o1 == 0) break;
    if (o2 == 0 && star == 0) break;
  }

  if (restart != nullptr) restart->~Side();
  if (r != 0) return r;
  if (accentDiff != 0 && (cmpOp_ & kIgnoreAccents) == 0) return accentDiff;
  if (caseDiff != 0 && (cmpOp_ & kIgnoreCase) == 0) return caseDiff;
  return spaceDiff;
}

// Full weights one by one, at most `limit` elements, until a difference or
// the end of either text.
int32_t ExactCompare(NxStringIterator& a, NxStringIterator& b, uint32_t limit) {
  int32_t r = 0;
  for (uint32_t i = 0; i < limit; ++i) {
    const unsigned short o1 = a.GetNextOrder(1);
    const unsigned short o2 = b.GetNextOrder(1);
    r = Diff(NxStringIterator::WeightOf(o1, a.state), NxStringIterator::WeightOf(o2, b.state));
    if (r != 0 || o1 == 0 || o2 == 0) break;
  }
  return r;
}

// The strength compare of two texts that read through the compact entries
// alone, without wildcards met in the pattern and without prefixResult:
// the same passes as StrengthCompare with nothing but plain cursors.  An
// element that needs more (a contraction, a state of 20 by its record, a
// reserved value, a character without a record whose value is a wildcard
// order, a wildcard in the pattern) ends the attempt, and the caller runs
// the general compare from the start.
struct Cursor {
  const unsigned char* at;
  const Reading* reading;
  const Entry* narrow;              // the entries of 8-bit text: the flat ones
  const unsigned short* expansion;  // orders of an expansion still to come
  uint32_t expansionLeft;
  uint32_t count;
  unsigned char state;
  bool swap;  // 16-bit units in the other byte order than the machine's
  bool wide;
};

// Whether 16-bit units in `format` have the other byte order than the
// machine's: 8 is the memory form, 2 most significant byte first, anything
// else least significant first; 255 means 1.
inline bool SwapOf(unsigned char format) {
  const unsigned order = (format == 255 ? 1u : format) & 0x0Fu;
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
  return order != 8 && order != 2;
#else
  return order == 2;
#endif
}

inline __attribute__((always_inline)) void SetUpCursor(Cursor& c, const char* text,
                                                       const Reading& reading, bool wide,
                                                       bool swap) {
  c.at = reinterpret_cast<const unsigned char*>(text);
  c.reading = &reading;
  c.narrow = reading.flat;
  c.expansion = nullptr;
  c.expansionLeft = 0;
  c.count = 0;
  c.state = reading.home;
  c.swap = swap;
  c.wide = wide;
}

inline __attribute__((always_inline)) bool SetUpCursor(Cursor& c, const char* text,
                                                       unsigned char codeSet,
                                                       unsigned char language,
                                                       unsigned char format) {
  const Reading* reading = ReadingOf(codeSet, language);
  if (reading == nullptr) return false;
  SetUpCursor(c, text, *reading, codeSet > 224, SwapOf(format));
  return true;
}

template <bool kWide>
inline __attribute__((always_inline)) unsigned short ValueAt(const Cursor& c,
                                                             const unsigned char* at) {
  if (!kWide) return *at;
  unsigned short unit;
  std::memcpy(&unit, at, sizeof unit);
  return c.swap ? static_cast<unsigned short>(unit << 8 | unit >> 8) : unit;
}

template <bool kWide>
inline __attribute__((always_inline)) Entry EntryAt(const Cursor& c, unsigned short value) {
  return kWide ? collation::Lookup(*c.reading, value) : c.narrow[value];
}

using collation::kRunIgnorable;
using collation::kRunKind;
using collation::kRunOther;
using collation::RunEntry;

template <bool kWide>
inline __attribute__((always_inline)) RunEntry RunAt(const Cursor& c, unsigned short value) {
  if (!kWide || value < collation::kFlat) return c.reading->run[value];
  return collation::RunEntryOf(collation::Lookup(*c.reading, value));
}

// A character without a record whose value is a wildcard order keeps the
// state: such a character is left to the general reader.
using collation::UnknownSetsState;

enum class Read { stop, readOn, giveUp };

// ReadOrder on a cursor.  With kPlain there is no wildcard to look for.
template <bool kWide, bool kPlain>
inline __attribute__((always_inline)) Read ReadSimple(Cursor& c, uint32_t limit,
                                                      unsigned short cmpOp, unsigned short asterisk,
                                                      unsigned short question,
                                                      unsigned short& order, uint32_t& weight,
                                                      unsigned short& pending) {
  for (;;) {
    if (++c.count > limit) {
      order = 0;
      weight = 0;
      return Read::stop;
    }
    unsigned short o;
    bool symbol;
    if (__builtin_expect(c.expansionLeft != 0, 0)) {
      // An order of an expansion: the state stays.
      o = *c.expansion++;
      --c.expansionLeft;
      if (!kPlain && asterisk != 0 && (o == asterisk || o == question)) return Read::giveUp;
      order = o;
      weight = NxStringIterator::WeightOf(o, c.state);
      if (o >= kFirstDigit || c.state >= kUnknownState) return Read::stop;
      symbol = o >= kFirstSymbol;
    } else {
      const unsigned short v = ValueAt<kWide>(c, c.at);
      if (v == 0) {
        order = 0;
        weight = 0;
        return Read::stop;
      }
      const Entry entry = EntryAt<kWide>(c, v);
      const Entry kind = entry & kKindMask;
      if (__builtin_expect(kind != kSimple, 0)) {
        if (kind == (kSimple | kUnknown)) {
          // Its value is the order, in state 20, where it counts.
          if (!UnknownSetsState(v)) return Read::giveUp;
          c.state = kUnknownState;
          c.at += kWide ? 2 : 1;
          order = v;
          weight = collation::UnknownWeight(v);
          return Read::stop;
        }
        if (kind != (kSimple | kExpansion)) return Read::giveUp;
        const NxWCharList& list = collation::ExpansionOf(*c.reading, v);
        c.expansion = list.items;
        c.expansionLeft = static_cast<uint32_t>(list.count);
      }
      o = static_cast<unsigned short>(entry);
      if (!kPlain && asterisk != 0 && (o == asterisk || o == question)) return Read::giveUp;
      c.state = collation::StateOf(entry);
      c.at += kWide ? 2 : 1;
      order = o;
      weight = collation::WeightOf(entry);
      if ((entry & kStops) != 0) return Read::stop;
      symbol = (entry & kSymbol) != 0;
    }
    if ((cmpOp & (symbol ? kIgnoreSymbols : kIgnoreSpaces)) != 0) continue;
    pending = o;
    return Read::readOn;
  }
}

// The common run of two cursors: at most `most` steps in which both texts
// are at a character that counts and is one element, or at the same
// ignorable character, which adds nothing.  Each step is a whole pass of
// the strength compare, read from the entries alone; a common start of the
// texts passes here too.  Stops at the first primary difference, which
// goes to `r`, and otherwise gives the number of steps, with the cursors
// behind them.  Their states stay behind: only an expansion reads a state,
// and its own character sets it first.
// The weight of a character that counts and is one element: from its
// entry, or for a character without a record its value in state 20.  False
// for any other character, and for a character without a record whose value
// is a wildcard order (the general reader's).
template <bool kWide>
inline __attribute__((always_inline)) bool CountingWeight(Entry e, unsigned short v, uint32_t& w) {
  if ((e & kCounts) != 0) {
    w = collation::WeightOf(e);
    return true;
  }
  if (kWide && (e & kKindMask) == (kSimple | kUnknown) && UnknownSetsState(v)) {
    w = collation::UnknownWeight(v);
    return true;
  }
  return false;
}

// The common run of two cursors: at most `most` steps in which both texts
// are at a character that counts and is one element, or at the same
// ignorable character, which adds nothing.  Each step is a whole pass of
// the strength compare, read from the entries alone; a common start of the
// texts passes here too.  Stops at the first primary difference, which
// goes to `r`, and otherwise gives the number of steps, with the cursors
// behind them.  Their states stay behind: only an expansion reads a state,
// and its own character sets it first.
template <bool kWide1, bool kWide2, bool kPlain>
inline __attribute__((always_inline)) uint32_t Run(Cursor& a, Cursor& b, uint32_t most,
                                                   unsigned short asterisk, unsigned short question,
                                                   int32_t& caseDiff, int32_t& accentDiff,
                                                   int32_t& r) {
  const unsigned char* p = a.at;
  const unsigned char* q = b.at;
  // Equal characters of one reading that are one element each: equal
  // elements, nothing to add up.
  const bool sameReading = kWide1 == kWide2 && a.reading == b.reading;
  uint32_t n = 0;
  for (; n < most; ++n) {
    const unsigned short v1 = ValueAt<kWide1>(a, p);
    const unsigned short v2 = ValueAt<kWide2>(b, q);
    uint32_t w1;
    uint32_t w2;
    if (kPlain) {
      // Without wildcards the run entries serve.
      const RunEntry x1 = RunAt<kWide1>(a, v1);
      if (sameReading && v1 == v2 && (x1 & kRunKind) != kRunOther) {
        p += kWide1 ? 2 : 1;
        q += kWide2 ? 2 : 1;
        continue;
      }
      const RunEntry x2 = RunAt<kWide2>(b, v2);
      if (__builtin_expect(((x1 | x2) & kRunOther) == 0, 1)) {
        w1 = x1;
        w2 = x2;
      } else if (x1 == x2 && (x1 & kRunKind) == kRunIgnorable) {
        // The same ignorable character on both sides.
        p += kWide1 ? 2 : 1;
        q += kWide2 ? 2 : 1;
        continue;
      } else if (!CountingWeight<kWide1>(EntryAt<kWide1>(a, v1), v1, w1) ||
                 !CountingWeight<kWide2>(EntryAt<kWide2>(b, v2), v2, w2)) {
        break;  // the end of the run
      }
    } else {
      const Entry e1 = EntryAt<kWide1>(a, v1);
      const Entry e2 = EntryAt<kWide2>(b, v2);
      if (asterisk != 0) {
        const unsigned short o2 = (e2 & kUnknown) != 0 ? v2 : static_cast<unsigned short>(e2);
        if (o2 == asterisk || o2 == question) break;
      }
      if ((e1 & e2 & kCounts) != 0) {
        w1 = collation::WeightOf(e1);
        w2 = collation::WeightOf(e2);
      } else if (e1 == e2 && (e1 & (kKindMask | kStops)) == kSimple) {
        // The same ignorable character on both sides.
        p += kWide1 ? 2 : 1;
        q += kWide2 ? 2 : 1;
        continue;
      } else if (!CountingWeight<kWide1>(e1, v1, w1) || !CountingWeight<kWide2>(e2, v2, w2)) {
        break;  // the end of the run
      }
    }
    r = Diff(w1 & ~0x7Fu, w2 & ~0x7Fu);
    if (r != 0) break;
    if (caseDiff == 0) caseDiff = Diff(w2 & ~0x1Fu, w1 & ~0x1Fu);
    const int32_t d = Diff(w1 & ~0x60u, w2 & ~0x60u);
    if (d != 0) accentDiff = d;
    p += kWide1 ? 2 : 1;
    q += kWide2 ? 2 : 1;
  }
  a.at = p;
  b.at = q;
  return n;
}

// The result of texts that both ended in a run: the tie-breaks.
inline int32_t TieBreak(unsigned short cmpOp, int32_t caseDiff, int32_t accentDiff,
                        int32_t spaceDiff) {
  if (accentDiff != 0 && (cmpOp & kIgnoreAccents) == 0) return accentDiff;
  if (caseDiff != 0 && (cmpOp & kIgnoreCase) == 0) return caseDiff;
  return spaceDiff;
}

template <bool kWide1, bool kWide2, bool kPlain>
inline __attribute__((always_inline)) bool SimpleCompare(Cursor& a, Cursor& b, unsigned short cmpOp,
                                                         uint32_t limit, unsigned short asterisk,
                                                         unsigned short question, int32_t& result,
                                                         int32_t caseDiff = 0,
                                                         int32_t accentDiff = 0) {
  int32_t spaceDiff = 0;

  int32_t r = 0;
  for (;;) {
    // The common run: both texts at a character that counts and is one
    // element, or at the same ignorable character, which adds nothing.
    // Each such step is a whole pass of the loop below, read from the
    // entries alone; a common start of the texts passes here too.  Only
    // between characters: not while an expansion is being delivered.  The
    // cursors' states stay behind: only an expansion reads a state, and
    // its own character sets it first.
    if (a.expansionLeft == 0 && b.expansionLeft == 0) {
      const uint32_t start = a.count > b.count ? a.count : b.count;
      const uint32_t n = Run<kWide1, kWide2, kPlain>(a, b, limit - start, asterisk, question,
                                                     caseDiff, accentDiff, r);
      if (r != 0) {
        // Without patterns a primary difference is the result.
        result = r;
        return true;
      }
      a.count += n;
      b.count += n;
    }

    // One pass through the readers: ignorable characters pass on both sides
    // at their own pace, expansions, characters without a record.
    int32_t passSpace = 0;
    bool more1 = true;
    bool more2 = true;
    unsigned short o1 = 0;
    unsigned short o2 = 0;
    uint32_t w1 = 0;
    uint32_t w2 = 0;
    do {
      unsigned short p1 = 0;
      unsigned short p2 = 0;
      if (more1) {
        const Read x = ReadSimple<kWide1, kPlain>(a, limit, cmpOp, 0, 0, o1, w1, p1);
        if (x == Read::giveUp) return false;
        more1 = x == Read::readOn;
      }
      if (more2) {
        const Read x = ReadSimple<kWide2, kPlain>(b, limit, cmpOp, asterisk, question, o2, w2, p2);
        if (x == Read::giveUp) return false;
        more2 = x == Read::readOn;
      }
      if (p1 != 0 || p2 != 0) {
        const int32_t d = static_cast<int32_t>(p1) - static_cast<int32_t>(p2);
        if (d != 0) passSpace = d;
      }
    } while (more1 || more2);
    r = Diff(w1 & ~0x7Fu, w2 & ~0x7Fu);
    if (r != 0) {
      // Without patterns a primary difference is the result; the
      // tie-breaks of this pass would never be looked at.
      result = r;
      return true;
    }
    if (caseDiff == 0) caseDiff = Diff(w2 & ~0x1Fu, w1 & ~0x1Fu);
    const int32_t d = Diff(w1 & ~0x60u, w2 & ~0x60u);
    if (d != 0) accentDiff = d;
    if (passSpace != 0) spaceDiff = passSpace;
    if (o1 == 0 || o2 == 0) break;
  }
  result = TieBreak(cmpOp, caseDiff, accentDiff, spaceDiff);
  return true;
}

// The wildcard settings: the order of the one character, read without
// tracking the state.
unsigned short OrderOfChar(const NxChar& c) {
  alignas(4) char text[4] = {0, 0, 0, 0};
  const unsigned short value = c.Value();
  if (c.codeSet > 224) {
    ShortStore(text, &value, 1, 1);
  } else {
    text[0] = static_cast<char>(value & 0xFF);
  }
  NxStringIterator it(text, c.codeSet, c.language, 255);
  return it.GetNextOrder(0);
}

}  // namespace

// ---------------------------------------------------------------------------
// NxStrCmp.

namespace {

__attribute__((noinline)) int32_t GeneralCompare(unsigned char codeSet1, unsigned char language1,
                                                 const char* text1, unsigned char codeSet2,
                                                 unsigned char language2, const char* text2,
                                                 unsigned short cmpOp, short maxLength,
                                                 unsigned char format, int* prefixResult);

// The common case: two texts of one code set and language, without
// wildcards and limit.  What the plain cursors give up on goes the general
// way.
template <bool kWide>
__attribute__((noinline)) int32_t PlainSame(const Reading& reading, const char* text1,
                                            const char* text2, unsigned short cmpOp,
                                            unsigned char codeSet, unsigned char language,
                                            unsigned char format) {
  Cursor a;
  SetUpCursor(a, text1, reading, kWide, SwapOf(format));
  Cursor b = a;
  b.at = reinterpret_cast<const unsigned char*>(text2);
  int32_t result = 0;
  if (SimpleCompare<kWide, kWide, true>(a, b, cmpOp, 65535, 0, 0, result)) return result;
  return GeneralCompare(codeSet, language, text1, codeSet, language, text2, cmpOp, -1, format,
                        nullptr);
}

// The same, going on behind a common run of `n` characters that NxStrCmp
// has passed with the differences `caseDiff` and `accentDiff`.  The
// arguments are packed so that all of them go in registers: `diffs` holds
// caseDiff in its high half, `call` the operator (bits 0-15), the format
// (16-23), the language (24-31) and the code set (32-39).
template <bool kWide>
__attribute__((noinline)) int32_t PlainSameFrom(const Reading& reading, const char* text1,
                                                const char* text2, uint32_t n, uint64_t diffs,
                                                uint64_t call) {
  const unsigned short cmpOp = static_cast<unsigned short>(call);
  const unsigned char format = static_cast<unsigned char>(call >> 16);
  const unsigned char language = static_cast<unsigned char>(call >> 24);
  const unsigned char codeSet = static_cast<unsigned char>(call >> 32);
  Cursor a;
  SetUpCursor(a, text1, reading, kWide, false);
  Cursor b = a;
  b.at = reinterpret_cast<const unsigned char*>(text2);
  a.at += n * (kWide ? 2 : 1);
  b.at += n * (kWide ? 2 : 1);
  a.count = b.count = n;
  int32_t result = 0;
  if (SimpleCompare<kWide, kWide, true>(a, b, cmpOp, 65535, 0, 0, result,
                                        static_cast<int32_t>(diffs >> 32),
                                        static_cast<int32_t>(diffs)))
    return result;
  return GeneralCompare(codeSet, language, text1, codeSet, language, text2, cmpOp, -1, format,
                        nullptr);
}

inline uint64_t PackDiffs(int32_t caseDiff, int32_t accentDiff) {
  return static_cast<uint64_t>(static_cast<uint32_t>(caseDiff)) << 32 |
         static_cast<uint32_t>(accentDiff);
}

inline uint64_t PackCall(unsigned short cmpOp, unsigned char format, unsigned char language,
                         unsigned char codeSet) {
  return uint64_t{cmpOp} | uint64_t{format} << 16 | uint64_t{language} << 24 |
         uint64_t{codeSet} << 32;
}

// Two texts of different code sets or languages, without wildcards and
// limit.
__attribute__((noinline)) int32_t PlainMixed(unsigned char codeSet1, unsigned char language1,
                                             const char* text1, unsigned char codeSet2,
                                             unsigned char language2, const char* text2,
                                             unsigned short cmpOp, unsigned char format) {
  Cursor ca;
  Cursor cb;
  if (SetUpCursor(ca, text1, codeSet1, language1, format) &&
      SetUpCursor(cb, text2, codeSet2, language2, format)) {
    int32_t result = 0;
    const bool done =
        ca.wide ? (cb.wide ? SimpleCompare<true, true, true>(ca, cb, cmpOp, 65535, 0, 0, result)
                           : SimpleCompare<true, false, true>(ca, cb, cmpOp, 65535, 0, 0, result))
                : (cb.wide ? SimpleCompare<false, true, true>(ca, cb, cmpOp, 65535, 0, 0, result)
                           : SimpleCompare<false, false, true>(ca, cb, cmpOp, 65535, 0, 0, result));
    if (done) return result;
  }
  return GeneralCompare(codeSet1, language1, text1, codeSet2, language2, text2, cmpOp, -1, format,
                        nullptr);
}

// Everything but the common case: nulls, maxLength 0, texts without a code
// set, null pointers, exact compare, patterns, prefixResult, and texts that
// the plain cursors can't read.
__attribute__((noinline)) int32_t GeneralCompare(unsigned char codeSet1, unsigned char language1,
                                                 const char* text1, unsigned char codeSet2,
                                                 unsigned char language2, const char* text2,
                                                 unsigned short cmpOp, short maxLength,
                                                 unsigned char format, int* prefixResult) {
  const bool null1 = IsNullText(codeSet1, language1);
  const bool null2 = IsNullText(codeSet2, language2);
  if (null1 && null2) return 0;
  if (null1) {
    if ((cmpOp & (kNoWildcards | kExact)) != 0) return -1;
    // An empty text against the pattern.
    text1 = kEmptyText;
    language1 = 0;
  } else if (null2) {
    return 1;
  }
  if (maxLength == 0) return 0;

  if (codeSet1 == 0 || codeSet2 == 0) {
    if (codeSet1 == 0 && codeSet2 == 0) {
      if ((cmpOp & (kNoWildcards | kExact)) != 0)
        return PlainCompare(text1, text2,
                            maxLength == -1 ? 0u : static_cast<unsigned short>(maxLength));
      return ByteMatch(text1, text2, static_cast<unsigned short>(maxLength));
    }
    const unsigned char native = NxLanguageContext::GetNativeCodeSet();
    if (codeSet1 == 0) codeSet1 = native;
    if (codeSet2 == 0) codeSet2 = native;
  }

  if (text1 == nullptr) text1 = kEmptyText;
  if (text2 == nullptr) text2 = kEmptyText;
  if ((cmpOp & kExact) != 0) {
    NxStringIterator it1(text1, codeSet1, language1, format);
    NxStringIterator it2(text2, codeSet2, language2, format);
    return ExactCompare(it1, it2, static_cast<unsigned short>(maxLength));
  }
  if (prefixResult == nullptr || (cmpOp & kIgnoreSpaces) == 0) {
    Cursor ca;
    Cursor cb;
    if (SetUpCursor(ca, text1, codeSet1, language1, format) &&
        SetUpCursor(cb, text2, codeSet2, language2, format)) {
      const bool wildcards = (cmpOp & kNoWildcards) == 0;
      const uint32_t limit = static_cast<unsigned short>(maxLength);
      const unsigned short asterisk = wildcards ? NxStringIterator::AsteriskOrder() : 0;
      const unsigned short question = wildcards ? NxStringIterator::QuestionOrder() : 0;
      int32_t result = 0;
      const bool done = ca.wide ? (cb.wide ? SimpleCompare<true, true, false>(
                                                 ca, cb, cmpOp, limit, asterisk, question, result)
                                           : SimpleCompare<true, false, false>(
                                                 ca, cb, cmpOp, limit, asterisk, question, result))
                                : (cb.wide ? SimpleCompare<false, true, false>(
                                                 ca, cb, cmpOp, limit, asterisk, question, result)
                                           : SimpleCompare<false, false, false>(
                                                 ca, cb, cmpOp, limit, asterisk, question, result));
      if (done) return result;
    }
  }
  Side a(text1, codeSet1, language1, format);
  Side b(text2, codeSet2, language2, format);
  StrengthCompare compare(cmpOp, maxLength, codeSet1 == kOrderText || codeSet2 == kOrderText);
  return compare.Run(a, b, prefixResult);
}

}  // namespace

// The common case first: two texts of code sets with cached orders, no
// wildcards, no limit, no prefixResult.  Everything else, and whatever the
// plain cursors give up on, goes the general way.
int32_t NxStrCmp(unsigned char codeSet1, unsigned char language1, const char* text1,
                 unsigned char codeSet2, unsigned char language2, const char* text2,
                 unsigned short cmpOp, short maxLength, unsigned char format, int* prefixResult) {
  if ((cmpOp & (kNoWildcards | kExact)) == kNoWildcards && maxLength == -1 && text1 != nullptr &&
      text2 != nullptr && (prefixResult == nullptr || (cmpOp & kIgnoreSpaces) == 0) &&
      language1 != 254 && language2 != 254) {
    // Code sets 0 and 254 have no entries, so neither text is null here.
    if (codeSet1 == codeSet2 && language1 == language2) {
      const Reading* reading = ReadingOf(codeSet1, language1);
      if (reading != nullptr) {
        // Most pairs are decided by a primary difference in the common run
        // of their starts, or end together in it: here.  The others go on
        // out of line.
        Cursor a;
        Cursor b;
        int32_t caseDiff = 0;
        int32_t accentDiff = 0;
        int32_t r = 0;
        if (codeSet1 <= 224) {
          SetUpCursor(a, text1, *reading, false, false);
          SetUpCursor(b, text2, *reading, false, false);
          const uint32_t n = Run<false, false, true>(a, b, 65535, 0, 0, caseDiff, accentDiff, r);
          if (r != 0) return r;
          if (*a.at == 0 && *b.at == 0) return TieBreak(cmpOp, caseDiff, accentDiff, 0);
          return PlainSameFrom<false>(*reading, text1, text2, n, PackDiffs(caseDiff, accentDiff),
                                      PackCall(cmpOp, format, language1, codeSet1));
        }
        if (!SwapOf(format)) {
          SetUpCursor(a, text1, *reading, true, false);
          SetUpCursor(b, text2, *reading, true, false);
          const uint32_t n = Run<true, true, true>(a, b, 65535, 0, 0, caseDiff, accentDiff, r);
          if (r != 0) return r;
          if ((ValueAt<true>(a, a.at) | ValueAt<true>(b, b.at)) == 0)
            return TieBreak(cmpOp, caseDiff, accentDiff, 0);
          return PlainSameFrom<true>(*reading, text1, text2, n, PackDiffs(caseDiff, accentDiff),
                                     PackCall(cmpOp, format, language1, codeSet1));
        }
        return PlainSame<true>(*reading, text1, text2, cmpOp, codeSet1, language1, format);
      }
    } else {
      return PlainMixed(codeSet1, language1, text1, codeSet2, language2, text2, cmpOp, format);
    }
  }
  return GeneralCompare(codeSet1, language1, text1, codeSet2, language2, text2, cmpOp, maxLength,
                        format, prefixResult);
}

// ---------------------------------------------------------------------------
// Comparison members of NxString.

int32_t NxString::Compare(const NxString& other, short maxLength, unsigned short cmpOp) const {
  if (cmpOp == 65535) cmpOp = GetDefaultCmpOp();
  return NxStrCmp(codeSet, language, data, other.codeSet, other.language, other.data, cmpOp,
                  maxLength, 1, nullptr);
}

unsigned short NxString::operator==(const NxString& other) const {
  if (this == &other) return 1;
  return Compare(other, -1, 65535) == 0 ? 1 : 0;
}

int NxString::operator!=(const NxString& other) const {
  return static_cast<int>(Compare(other, -1, 65535));
}

unsigned short NxString::operator<(const NxString& other) const {
  return Compare(other, -1, 65535) < 0 ? 1 : 0;
}

unsigned short NxString::operator>(const NxString& other) const {
  return Compare(other, -1, 65535) > 0 ? 1 : 0;
}

unsigned short NxString::operator<=(const NxString& other) const {
  return Compare(other, -1, 65535) <= 0 ? 1 : 0;
}

unsigned short NxString::operator>=(const NxString& other) const {
  return Compare(other, -1, 65535) >= 0 ? 1 : 0;
}

unsigned short NxString::EqualsIgnoreLanguage(const NxString& other) const {
  const unsigned char common = language == other.language ? language : 0;
  return NxStrCmp(codeSet, common, data, other.codeSet, common, other.data, kExact, -1, 1,
                  nullptr) == 0
             ? 1
             : 0;
}

int NxString::SetAsterisk(const NxChar& c) {
  NxStringIterator::SetAsteriskOrder(OrderOfChar(c));
  return 0;
}

int NxString::SetQuestion(const NxChar& c) {
  NxStringIterator::SetQuestionOrder(OrderOfChar(c));
  return 0;
}

int NxString::SetEscape(const NxChar& c) {
  NxStringIterator::SetEscapeOrder(OrderOfChar(c));
  return 0;
}

// ---------------------------------------------------------------------------
// Hashes.  32-bit arithmetic; overflow is dropped.

namespace {

// A 16-bit unit by the byte order of `form`: 8 the memory form, 2 most
// significant byte first, anything else least significant first.
inline unsigned UnitAt(const unsigned char* at, unsigned char form) {
  if (form == 8) {
    unsigned short unit;
    std::memcpy(&unit, at, sizeof unit);
    return unit;
  }
  if (form == 2) return static_cast<unsigned>(at[0] << 8 | at[1]);
  return static_cast<unsigned>(at[0] | at[1] << 8);
}

// One element of a text through the general reader, with its expansion:
// `h` takes its weights, `p` and `state` move behind it.  False at the end
// of the text.
__attribute__((noinline)) bool GeneralElement(unsigned char codeSet, unsigned char language,
                                              unsigned char form, const unsigned char*& p,
                                              unsigned char& state, uint32_t& h) {
  NxStringIterator it;
  it.position = const_cast<unsigned char*>(p);
  it.codeSet = codeSet;
  it.language = language;
  it.state = state;
  it.format = form;
  do {
    const unsigned short order = it.GetNextOrder(1);
    if (order == 0) return false;
    h = h * 9u + NxStringIterator::WeightOf(order, it.state);
  } while (it.overflow != nullptr);
  p = it.position;
  state = it.state;
  return true;
}

// The collation hash of a whole text in a cached code set and a language
// that the cache serves.  Characters below 256 that need none of the
// general reader's work take their weight from the hash table, four at a
// time (h * 9^4 + ...: the same sum as four single steps); any other
// element goes through the general reader, with its expansion, and the run
// starts again behind it.  A character of the table sets its own state,
// so the run only keeps the state for the next general element.
template <unsigned kWidth>
uint32_t TableHash(const collation::CodeSet& cache, const Reading& reading, unsigned char codeSet,
                   unsigned char language, const char* text, unsigned char form) {
  const HashEntry* table = reading.hashed;
  const auto entryAt = [table, form](const unsigned char* at) {
    if (kWidth == 1) return table[*at];
    const unsigned unit = UnitAt(at, form);
    return unit < 256 ? table[unit] : kHashSlow;
  };
  unsigned char state = cache.home[language];
  const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
  uint32_t h = 0;
  do {
    // Each character is looked at only when the one before it was served,
    // so nothing behind the terminator is read.
    uint32_t last = 0;  // weight of the last character served
    for (;;) {
      const HashEntry e0 = entryAt(p);
      if ((e0 & kHashSlow) != 0) break;
      const uint32_t w0 = static_cast<uint32_t>(e0);
      const HashEntry e1 = entryAt(p + kWidth);
      if ((e1 & kHashSlow) != 0) {
        h = h * 9u + w0;
        last = w0;
        p += kWidth;
        break;
      }
      const uint32_t w1 = static_cast<uint32_t>(e1);
      const HashEntry e2 = entryAt(p + 2 * kWidth);
      if ((e2 & kHashSlow) != 0) {
        h = h * 81u + w0 * 9u + w1;
        last = w1;
        p += 2 * kWidth;
        break;
      }
      const uint32_t w2 = static_cast<uint32_t>(e2);
      const HashEntry e3 = entryAt(p + 3 * kWidth);
      if ((e3 & kHashSlow) != 0) {
        h = h * 729u + (w0 * 9u + w1) * 9u + w2;
        last = w2;
        p += 3 * kWidth;
        break;
      }
      const uint32_t w3 = static_cast<uint32_t>(e3);
      h = h * 6561u + ((w0 * 9u + w1) * 9u + w2) * 9u + w3;
      last = w3;
      p += 4 * kWidth;
    }
    if (last != 0) state = static_cast<unsigned char>(last >> 24);
  } while ((kWidth == 1 ? *p : UnitAt(p, form)) != 0 &&
           GeneralElement(codeSet, language, form, p, state, h));
  return h;
}

}  // namespace

uint32_t HashString(unsigned char codeSet, unsigned char language, char* text, short maxChars,
                    unsigned char format) {
  if (IsNullText(codeSet, language)) return 0xFEFE7575u;
  if (maxChars == 0 || maxChars < -1) return 0;
  const char* at = text != nullptr ? text : kEmptyText;
  // A positive maxChars is a number of elements, also for a text that is
  // cut without a terminator; past the end of a terminated text the
  // remaining elements count as 0, and nothing behind the terminator is read.
  const uint32_t rounds = maxChars > 0 ? static_cast<uint32_t>(maxChars) : 0xFFFFFFFFu;
  uint32_t h = 0;
  if (codeSet == 0) {
    for (uint32_t i = 0; i < rounds; ++i) {
      const unsigned char byte = static_cast<unsigned char>(*at);
      if (byte == 0 && maxChars < 0) break;
      h = h * 9 + byte;
      if (byte != 0) ++at;
    }
    return h;
  }
  if (maxChars < 0 && codeSet != kOrderText) {
    const collation::CodeSet* cache = CacheOf(codeSet, language);
    const Reading* reading = cache != nullptr ? cache->reading[language] : nullptr;
    if (reading != nullptr && cache->home[language] < kUnknownState) {
      const unsigned char form = format == 255 ? 1 : static_cast<unsigned char>(format & 0x0F);
      return codeSet > 224 ? TableHash<2>(*cache, *reading, codeSet, language, at, form)
                           : TableHash<1>(*cache, *reading, codeSet, language, at, form);
    }
  }
  NxStringIterator it(at, codeSet, language, format);
  bool ended = false;
  for (uint32_t i = 0; i < rounds; ++i) {
    uint32_t weight = 0;
    if (!ended) {
      const unsigned short order = it.GetNextOrder(1);
      if (order == 0) {
        if (maxChars < 0) break;
        ended = true;
      } else {
        weight = NxStringIterator::WeightOf(order, it.state);
      }
    }
    h = h * 9 + weight;
  }
  return h;
}

namespace {

template <unsigned kMask>
uint32_t PlainHash(const NxString& text) {
  uint32_t h = 0;
  const char* at = text.StrGet();
  if (text.codeSet == 253) {
    for (;; at += 2) {
      unsigned short unit;
      std::memcpy(&unit, at, sizeof unit);
      if (unit == 0) break;
      h = h * 9 + (unit & kMask);
    }
  } else {
    for (; *at != 0; ++at) {
      const int32_t byte = static_cast<signed char>(*at);
      h = h * 9 + (static_cast<uint32_t>(byte) & kMask);
    }
  }
  return h;
}

}  // namespace

uint32_t HashNxString(const NxString& text) {
  return PlainHash<0xFFFFFFFFu>(text);
}

uint32_t HashNxString7(const NxString& text) {
  return PlainHash<0x7Fu>(text);
}

// ---------------------------------------------------------------------------
// Helpers of the string key rows.

unsigned short FindWildcard(unsigned char codeSet, unsigned char language, const char* text,
                            unsigned short noQuestion, unsigned short limit,
                            unsigned short* byteOffset, unsigned char format) {
  if (byteOffset != nullptr) *byteOffset = 65535;
  if (text == nullptr) return 65535;
  if (codeSet == 0) {
    for (unsigned short i = 0; i < limit && text[i] != 0; ++i) {
      if (text[i] == '*' || (noQuestion == 0 && text[i] == '?')) {
        if (byteOffset != nullptr) *byteOffset = i;
        return i;
      }
    }
    return 65535;
  }
  const unsigned short asterisk = NxStringIterator::AsteriskOrder();
  const unsigned short question = NxStringIterator::QuestionOrder();
  NxStringIterator it(text, codeSet, language, format);
  for (unsigned short i = 0; i < limit; ++i) {
    const unsigned char* before = it.position;
    const unsigned short order = it.GetNextOrder(1);
    if (order == 0) break;
    if (order == asterisk || (noQuestion == 0 && order == question)) {
      if (byteOffset != nullptr)
        *byteOffset =
            static_cast<unsigned short>(before - reinterpret_cast<const unsigned char*>(text));
      return i;
    }
  }
  return 65535;
}

double PositionValue(NxStringIterator& text, unsigned short length) {
  if (text.codeSet == 0) {
    // Four bytes as a base-128 number, the first most significant.
    double value = 0;
    unsigned short taken = 0;
    for (int i = 0; i < 4; ++i) {
      unsigned byte = 0;
      if (text.position != nullptr && taken < length && *text.position != 0) {
        byte = *text.position;
        if (byte > 127) byte = 127;
        ++text.position;
        ++taken;
      }
      value = value * 128 + byte;
    }
    return value;
  }
  const uint32_t s = text.state & 0x7Fu;
  uint32_t k[3] = {0, 0, 0};
  if (text.position != nullptr) {
    int kept = 0;
    for (unsigned short i = 0; i < length && kept < 3; ++i) {
      const unsigned short order = text.GetNextOrder(1);
      if (order == 0) break;
      // Digits, letters and ideographs count; spaces and symbols only use
      // up the length.
      if (order >= kFirstDigit)
        k[kept++] = (NxStringIterator::WeightOf(order, text.state) >> 8) & 0xFFFFu;
    }
  }
  return (static_cast<double>(s) * 65536.0 + k[0]) * 4294967296.0 +
         static_cast<double>(k[1]) * 65536.0 + k[2];
}
