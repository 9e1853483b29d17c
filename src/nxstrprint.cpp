// Print and scan of the string rows, NxString and the legacy NxIString and
// NxCaseIString.  Ordinary text goes through the row's format; order text,
// the code set 254 that a key record loads into, holds no characters, so its
// print names the orders instead, as the format's placeholders ask:
//
//   "%1M"  the plain characters, accents dropped, as one text
//   "%2M"  the plain characters with the accents of code set 1, as one text
//          recoded into the result's code set (also without a placeholder)
//   "%3M"  each order's description in words, the format applied to each
//   "%4M"  each order's accented name, or else its plain character
//
// The first placeholder by number counts, wherever it stands in the format,
// and is replaced by "%s".
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "nxlegacy.h"
#include "nxrows.h"

namespace {

// The room that a format has for what it adds to the text.
constexpr size_t kFormatRoom = 512;

// Text through a print format.  The format's first "%s" (flags, width and
// precision included) takes `text`; "%%" is a percent sign; every other
// conversion has no argument here and stands in the output as written.  The
// output is cut to `room` - 1 bytes.
std::string FormatText(const char* format, const char* text, size_t room) {
  std::string out;
  std::vector<char> piece;
  bool used = false;
  size_t literalFrom = 0;
  size_t i = 0;
  while (format[i] != '\0') {
    if (format[i] != '%') {
      ++i;
      continue;
    }
    out.append(format + literalFrom, i - literalFrom);
    size_t k = i + 1;
    if (format[k] == '%') {
      out += '%';
      i = literalFrom = k + 1;
      continue;
    }
    bool star = false;
    while (format[k] != '\0' && std::strchr("-+ #0'", format[k]) != nullptr) ++k;
    while ((format[k] >= '0' && format[k] <= '9') || format[k] == '*') star |= format[k++] == '*';
    if (format[k] == '.') {
      ++k;
      while ((format[k] >= '0' && format[k] <= '9') || format[k] == '*') star |= format[k++] == '*';
    }
    const size_t modifierFrom = k;
    while (format[k] != '\0' && std::strchr("hlqjztL", format[k]) != nullptr) ++k;
    const bool modified = k != modifierFrom;
    if (format[k] != '\0') ++k;
    const bool takesText = format[k - 1] == 's' && !modified && !star && k - 1 > i;
    if (takesText && !used) {
      const std::string directive(format + i, k - i);
      piece.resize(room);
      const int n = std::snprintf(piece.data(), piece.size(), directive.c_str(), text);
      if (n > 0) out.append(piece.data(), std::min(static_cast<size_t>(n), piece.size() - 1));
      used = true;
    } else {
      out.append(format + i, k - i);
    }
    i = literalFrom = k;
    if (out.size() >= room) break;
  }
  out.append(format + literalFrom, i - literalFrom);
  if (room != 0 && out.size() >= room) out.resize(room - 1);
  return out;
}

// The code set that printed text is recoded into: the result's own, or the
// default code set when that is 0, or the native one when that is 0 too.
unsigned char TargetCodeSet(const NxString& result) {
  unsigned char target = result.codeSet;
  if (target == 0) target = NxString::GetDefaultCodeSet();
  if (target == 0) target = NxLanguageContext::GetNativeCodeSet();
  return target;
}

// Order text: its units are orders, and its language byte is the state.
NxString& OrderPrint(NxString& result, const NxString& value, const char* format) {
  const unsigned short length = value.Len();
  const size_t room = std::strlen(format) + 2 * static_cast<size_t>(length) + kFormatRoom;
  std::string pattern(format);
  int placeholder = 0;
  for (int number = 1; number <= 4 && placeholder == 0; ++number) {
    const char name[4] = {'%', static_cast<char>('0' + number), 'M', '\0'};
    const size_t at = pattern.find(name);
    if (at != std::string::npos) {
      pattern.replace(at, 3, "%s");
      placeholder = number;
    }
  }
  const unsigned char state = value.language;
  std::vector<unsigned short> orders(length);
  if (length != 0) std::memcpy(orders.data(), value.StrGet(), 2 * static_cast<size_t>(length));

  if (placeholder <= 2) {
    std::string characters;
    for (unsigned short order : orders) {
      unsigned char c = 0;
      NxConvertOrderToChar(order, state, c, placeholder == 1 ? 0 : 1, nullptr);
      characters += static_cast<char>(c);
    }
    const std::string text = FormatText(pattern.c_str(), characters.c_str(), room);
    const unsigned char target = TargetCodeSet(result);
    if (placeholder == 1 || target == NxCS_CP1252) {
      result = text.c_str();
      return result;
    }
    // The accented characters are those of code set 1: recode them.
    NxString accented(text.c_str());
    accented.SetCodeSetCode(NxCS_CP1252);
    result = "";
    result.SetCodeSet(target);
    result += accented;
    return result;
  }

  result = "";
  NxString words;
  for (unsigned short order : orders) {
    std::string text;
    if (placeholder == 3) {
      NxConvertOrderToString(order, state, words);
      text = FormatText(pattern.c_str(), words.StrGet(), room);
    } else {
      // An empty name is no name: the character stands for itself.
      const char* name = nullptr;
      unsigned char c = 0;
      NxConvertOrderToChar(order, state, c, 1, &name);
      const char plain[2] = {static_cast<char>(c), '\0'};
      text = FormatText(pattern.c_str(), name != nullptr && *name != '\0' ? name : plain, room);
    }
    result += NxString(text.c_str());
  }
  // A key that ended early at a change of state says so.
  if (placeholder == 3 && (state & 0x80u) != 0)
    result += NxString(FormatText(pattern.c_str(), "[MIX]", room).c_str());
  return result;
}

}  // namespace

namespace nxrows {

NxString& StringPrint(NxString& result, void* value, const char* format, uint32_t) {
  if (value == nullptr) return result;
  const NxString& s = *static_cast<const NxString*>(value);
  if (format == nullptr) format = "%s";
  if (s.IsNullValue()) {
    result = NxTypeMgr::GetNullPrintString();
    return result;
  }
  if (s.IsEmpty()) {
    result = s;
    return result;
  }
  if (s.codeSet == NxCS_ORDERS) return OrderPrint(result, s, format);
  const size_t formatLength = std::strlen(format);
  if (s.codeSet > 224) {
    // 16-bit text is recoded into 8-bit text for the format.  A 16-bit
    // target can't take 8-bit output: the default 8-bit code set stands in.
    unsigned char target = TargetCodeSet(result);
    if (target > 224) target = NxString::GetDefault8CodeSet();
    NxString narrow(target, 0);
    narrow += s;
    result = FormatText(format, narrow.StrGet(), narrow.Len() + formatLength + kFormatRoom).c_str();
    return result;
  }
  result = FormatText(format, s.StrGet(), s.Len() + formatLength + kFormatRoom).c_str();
  result.SetCodeSet(s.codeSet);
  return result;
}

void* StringScan(void* value, NxString& text, const char*, uint32_t) {
  if (value == nullptr) return nullptr;
  NxString& s = *static_cast<NxString*>(value);
  const NxString& nullText = NxTypeMgr::GetNullPrintString();
  // A text that begins with the null text reads as null.
  if (text.Compare(nullText, static_cast<short>(nullText.Len()), 65535) == 0) {
    s.SetNullValue();
  } else {
    s = text;
  }
  return value;
}

}  // namespace nxrows

namespace legacy {

// The legacy strings hold 8-bit bytes without a code set: they print as they
// stand through the format, into the default 8-bit code set.  An object
// without text prints as an empty string, whatever the format.
template <class X>
NxString& Print(NxString& result, void* value, const char* format, uint32_t) {
  if (value == nullptr) return result;
  const X& s = *static_cast<const X*>(value);
  if (s.data == nullptr || *s.data == '\0') {
    result = s.data;
    return result;
  }
  if (format == nullptr) format = "%s";
  const size_t room = std::strlen(s.data) + std::strlen(format) + kFormatRoom;
  result = FormatText(format, s.data, room).c_str();
  return result;
}

// 8-bit text is taken byte for byte, whatever its code set; 16-bit text is
// recoded into the default code set first.  The bytes of 16-bit text mean
// nothing here, so a 16-bit default gives way to the default 8-bit code set.
// The format plays no part.
template <class X>
void* Scan(void* value, NxString& text, const char*, uint32_t) {
  if (value == nullptr) return nullptr;
  X& s = *static_cast<X*>(value);
  if (text.codeSet <= 224) {
    s = text.StrGet();
    return value;
  }
  NxString recoded;
  if (recoded.codeSet > 224) recoded.codeSet = NxString::GetDefault8CodeSet();
  recoded += text;
  s = recoded.StrGet();
  return value;
}

template NxString& Print<NxIString>(NxString&, void*, const char*, uint32_t);
template NxString& Print<NxCaseIString>(NxString&, void*, const char*, uint32_t);
template void* Scan<NxIString>(void*, NxString&, const char*, uint32_t);
template void* Scan<NxCaseIString>(void*, NxString&, const char*, uint32_t);

}  // namespace legacy
