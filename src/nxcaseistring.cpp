// NxCaseIString, the legacy string whose map folds case.
#include "nxkeyrows.h"
#include "nxlegacy.h"

namespace legacy {

namespace {

// The tables of NxCaseIString's map: those of NxIString with the lower-case
// letters mapped as the upper-case ones.
// clang-format off
constexpr unsigned char kLow[64] = {
    64,  84,  91,  94,  97,  105, 111, 113, 115, 121, 127, 129, 131, 133, 135, 144,
    151, 153, 155, 157, 159, 165, 171, 173, 175, 179, 183, 66,  67,  68,  69,  70,
    65,  84,  91,  94,  97,  105, 111, 113, 115, 121, 127, 129, 131, 133, 135, 144,
    151, 153, 155, 157, 159, 165, 171, 173, 175, 179, 183, 71,  72,  73,  74,  75};
constexpr unsigned char kMain[64] = {
    84,  84,  84,  84,  84,  189, 185, 94,  105, 105, 105, 105, 121, 121, 121, 121,
    99,  137, 144, 144, 144, 144, 144, 76,  187, 165, 165, 165, 165, 179, 191, 157,
    84,  84,  84,  84,  84,  189, 185, 94,  105, 105, 105, 105, 121, 121, 121, 121,
    99,  137, 144, 144, 144, 144, 144, 77,  187, 165, 165, 165, 165, 179, 191, 179};
constexpr unsigned char kSecond[64] = {
    3,   2,   4,   5,   1,   0,   0,   1,   3,   2,   4,   1,   3,   2,   4,   1,
    0,   0,   3,   2,   4,   5,   1,   0,   0,   3,   2,   4,   1,   2,   0,   157,
    3,   2,   4,   5,   1,   0,   0,   1,   3,   2,   4,   1,   3,   2,   4,   1,
    0,   0,   3,   2,   4,   5,   1,   0,   0,   3,   2,   4,   1,   2,   0,   1};
// clang-format on

// One byte of mapped text back, with the byte behind it: the byte, and
// whether that next byte was used too.  The first place in the tables
// counts, so letters come back in upper case.
unsigned char UnmapByte(unsigned char c, unsigned char next, bool& usedNext) {
  usedNext = false;
  for (unsigned i = 0; i < 64; ++i) {
    if (kMain[i] == c && kSecond[i] == next && next != c) {
      usedNext = true;
      return static_cast<unsigned char>(0xC0 + i);
    }
  }
  for (unsigned i = 0; i < 64; ++i)
    if (kLow[i] == c) return static_cast<unsigned char>(0x40 + i);
  if ((c == 0x90 && next == 0x69) || (c == 0xB3 && next == 1)) {
    usedNext = true;
    return c == 0x90 ? 0x8C : 0x9F;
  }
  if (c >= 0xE0) return static_cast<unsigned char>(c - 0x60);
  if (c >= 0xB0 && c <= 0xCF) return static_cast<unsigned char>(c - 0x10);
  return c;
}

}  // namespace

constexpr ByteMap kCaseIStringMap = BuildMap(kLow, kMain, kSecond, 0x90, 0x69);

}  // namespace legacy

int32_t LegacyCaseCompare(const char* s1, const char* s2, unsigned short limit, unsigned char form1,
                          unsigned char form2) {
  return legacy::Compare(legacy::kCaseIStringMap, true, s1, s2, limit, form1, form2);
}

// ---------------------------------------------------------------------------
// NxCaseIString.

NxCaseIString::NxCaseIString() : data(nullptr), form(0) {}
NxCaseIString::NxCaseIString(const NxCaseIString& other)
    : data(legacy::Duplicate(other.data, legacy::Length(other.data))), form(0) {}
NxCaseIString::NxCaseIString(char c) : data(legacy::Duplicate(&c, c != 0 ? 1 : 0)), form(0) {}
NxCaseIString::NxCaseIString(const char* text)
    : data(legacy::Duplicate(text, legacy::Length(text))), form(0) {}
NxCaseIString::NxCaseIString(const char* text, unsigned short count) : data(nullptr), form(0) {
  if (text == nullptr || count == 0) return;
  data = static_cast<char*>(std::calloc(size_t{count} + 1, 1));
  while (data == nullptr) {
    NxCallMemoryHandler(count + 1u);
    data = static_cast<char*>(std::calloc(size_t{count} + 1, 1));
  }
  std::strncpy(data, text, count);
}
NxCaseIString::NxCaseIString(int number) : data(legacy::Number("%d", number)), form(0) {}
NxCaseIString::NxCaseIString(short number) : data(legacy::Number("%d", number)), form(0) {}
NxCaseIString::NxCaseIString(long number)
    : data(legacy::Number("%d", static_cast<int32_t>(number))), form(0) {}
NxCaseIString::NxCaseIString(unsigned long number)
    : data(legacy::Number("%u", static_cast<uint32_t>(number))), form(0) {}
NxCaseIString::NxCaseIString(double number) : data(legacy::Number("%f", number)), form(0) {}
NxCaseIString::~NxCaseIString() {
  std::free(data);
  data = nullptr;
}

NxCaseIString::operator int() const {
  return legacy::Atol32(data);
}
NxCaseIString::operator short() const {
  return static_cast<short>(static_cast<uint16_t>(legacy::Atol32(data)));
}
NxCaseIString::operator long() const {
  return legacy::Atol32(data);
}
NxCaseIString::operator double() const {
  return data != nullptr ? std::atof(data) : 0.0;
}

NxCaseIString& NxCaseIString::operator=(const NxCaseIString& other) {
  if (&other == this) return *this;
  legacy::Assign(data, other.data);
  form = other.form;
  return *this;
}
NxCaseIString& NxCaseIString::operator=(const char* text) {
  legacy::Assign(data, text);
  form = 0;
  return *this;
}
void NxCaseIString::operator+=(const NxCaseIString& other) {
  legacy::Append(data, other.data);
}
NxCaseIString operator+(const NxCaseIString& a, const NxCaseIString& b) {
  NxCaseIString result(a);
  result += b;
  return result;
}

int NxCaseIString::operator==(const NxCaseIString& other) const {
  return LegacyCaseCompare(data, other.data, 0, form, other.form) == 0;
}
int NxCaseIString::operator!=(const NxCaseIString& other) const {
  return LegacyCaseCompare(data, other.data, 0, form, other.form) != 0;
}
int NxCaseIString::operator<(const NxCaseIString& other) const {
  return LegacyCaseCompare(data, other.data, 0, form, other.form) < 0;
}
int NxCaseIString::operator>(const NxCaseIString& other) const {
  return LegacyCaseCompare(data, other.data, 0, form, other.form) > 0;
}
int NxCaseIString::operator<=(const NxCaseIString& other) const {
  return LegacyCaseCompare(data, other.data, 0, form, other.form) <= 0;
}
int NxCaseIString::operator>=(const NxCaseIString& other) const {
  return LegacyCaseCompare(data, other.data, 0, form, other.form) >= 0;
}

unsigned short NxCaseIString::operator!() const {
  return data == nullptr;
}
char& NxCaseIString::operator[](int index) {
  return data[index];
}
unsigned short NxCaseIString::Len() const {
  return static_cast<unsigned short>(legacy::Length(data));
}

NxCaseIString& NxCaseIString::Insert(const NxCaseIString& text, unsigned short position) {
  legacy::Insert(data, text.data, position);
  return *this;
}
NxCaseIString& NxCaseIString::Replace(const NxCaseIString& text, unsigned short position) {
  legacy::Replace(data, text.data, position);
  return *this;
}
NxCaseIString& NxCaseIString::Fill(unsigned short count, char c) {
  legacy::Fill(data, count, c);
  return *this;
}
NxCaseIString& NxCaseIString::Expand(unsigned short length, char c) {
  legacy::Expand(data, length, c);
  return *this;
}
NxCaseIString& NxCaseIString::ToUpper() {
  legacy::ToUpper(data);
  return *this;
}
NxCaseIString& NxCaseIString::ToLower() {
  legacy::ToLower(data);
  return *this;
}
NxCaseIString& NxCaseIString::SpaceToZero() {
  legacy::Swap(data, ' ', '0');
  return *this;
}
NxCaseIString& NxCaseIString::ZeroToSpace() {
  legacy::Swap(data, '0', ' ');
  return *this;
}
int NxCaseIString::SubStringPos(const NxCaseIString& text) const {
  return legacy::SubStringPos(data, text.data);
}
NxCaseIString& NxCaseIString::Cut(unsigned short position, unsigned short count) {
  legacy::Cut(data, position, count);
  return *this;
}
NxCaseIString NxCaseIString::Copy(unsigned short position, unsigned short count) const {
  return legacy::Made<NxCaseIString>(legacy::Part(data, position, count));
}

unsigned char NxCaseIString::Map(unsigned char c, unsigned char* second) {
  if (second != nullptr) *second = legacy::kCaseIStringMap.second[c];
  return legacy::kCaseIStringMap.main[c];
}
uint32_t NxCaseIString::MapText(char* target, const char* source, uint32_t limit) {
  return legacy::MapText(legacy::kCaseIStringMap, target, source, limit);
}

uint32_t NxCaseIString::UnmapText(char* target, const char* source, uint32_t count) {
  const unsigned char* in = reinterpret_cast<const unsigned char*>(source);
  uint32_t used = 0;
  uint32_t written = 0;
  while (used < count) {
    const unsigned char c = in[used];
    if (c == 0) {
      target[written++] = 0;
      ++used;
      break;
    }
    bool usedNext = false;
    target[written++] =
        static_cast<char>(legacy::UnmapByte(c, used + 1 < count ? in[used + 1] : 0, usedNext));
    used += usedNext ? 2 : 1;
  }
  return used;
}

namespace nxrows {

NxTypeDesc caseIStringRow =
    WithHash(legacy::MakeRow<NxCaseIString>("NxCaseIString"), LegacyStringHash);

}  // namespace nxrows
