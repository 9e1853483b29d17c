// UTF-8 conversion: one character, an array, a string; against Python's codec
// for every 16-bit value and against the rules on bad and overlong sequences.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "test_support.h"
#include "utf8_reference.h"

namespace {

constexpr unsigned char kCp1252 = 1, kIso8859_5 = 4, kLegacy16 = 225, kUnicode = 253;

uint32_t Crc32(const std::string& bytes) {
  uint32_t crc = 0xFFFFFFFFu;
  for (unsigned char b : bytes) {
    crc ^= b;
    for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
  }
  return ~crc;
}

struct Decoded {
  int result;
  unsigned short value;
};
Decoded Decode(const std::string& bytes, unsigned length) {
  std::vector<char> text(bytes.begin(), bytes.end());  // exactly the bytes, for the sanitizer
  Decoded d{0, 0xABCD};
  d.result = NxMultiByte2WChar(&d.value, text.empty() ? nullptr : text.data(), length);
  return d;
}
Decoded Decode(const std::string& bytes) {
  return Decode(bytes, static_cast<unsigned>(bytes.size()));
}

// A string of code set 253 from UTF-16 text.
NxString Unicode(const std::u16string& text, unsigned char codeSet = kUnicode) {
  std::vector<unsigned short> units(text.begin(), text.end());
  units.push_back(0);
  NxString s(units.data());
  s.SetCodeSetCode(codeSet);
  return s;
}
NxString Narrow(const std::string& bytes, unsigned char codeSet) {
  NxString s(bytes.c_str());
  s.SetCodeSetCode(codeSet);
  return s;
}
std::u16string Units(const NxString& s) {
  const unsigned short* p = reinterpret_cast<const unsigned short*>(s.StrGet());
  return std::u16string(p, p + s.Len());
}

TEST(Utf8Character, EveryValueMatchesPythonsCodecAndDecodesBack) {
  for (unsigned block = 0; block < 256; ++block) {
    std::string bytes;
    for (unsigned low = 0; low < 256; ++low) {
      const unsigned short c = static_cast<unsigned short>(block * 256 + low);
      char encoded[4] = {0, 0, 0, 0x55};
      const int n = NxWChar2MultiByte(encoded, c);
      ASSERT_TRUE(n >= 1 && n <= 3) << c;
      EXPECT_EQ(0x55, encoded[3]) << "wrote past 3 bytes";
      bytes.append(encoded, static_cast<size_t>(n));
      const Decoded d = Decode(std::string(encoded, static_cast<size_t>(n)));
      EXPECT_EQ(n, d.result) << c;
      EXPECT_EQ(c, d.value) << c;
    }
    EXPECT_EQ(kUtf8Reference[block].bytes, bytes.size()) << "block " << block;
    EXPECT_EQ(kUtf8Reference[block].crc, Crc32(bytes)) << "block " << block;
  }
}

TEST(Utf8Character, BadOverlongShortAndLongSequences) {
  const struct {
    const char* bytes;
    unsigned length;
    int result;
    unsigned short value;  // when the result is positive
  } kCases[] = {
      {"\x00", 1, 1, 0},       // a zero byte is a character
      {"\xC0\x80", 2, -1, 0},  // overlong forms
      {"\xE0\x9F\xBF", 3, -1, 0},
      {"\xF0\x8F\xBF\xBF", 4, -1, 0},
      {"\xFC\x83\xBF\xBF\xBF\xBF", 6, -1, 0},
      {"\x80", 1, -1, 0},  // a continuation byte leads nothing
      {"\xFE", 1, -1, 0},  // no row
      {"\xFF\x80\x80\x80\x80\x80\x80", 7, -1, 0},
      {"\xC3\x41", 2, -1, 0},      // not a continuation byte
      {"\xE2\x82\xAC", 2, -1, 0},  // cut short by `length`
      {"\xE2\x82\xAC", 3, 3, 0x20AC},
      {"\xE2\x82\xAC", 9, 3, 0x20AC},  // a longer `length` takes no more
      {"\xED\xA0\x80", 3, 3, 0xD800},  // a surrogate is a 16-bit value like any
      // Sequences of four to six bytes are cut to 16 bits.
      {"\xF0\x9F\x98\x80", 4, 4, 0xF600},
      {"\xF8\x88\x80\x80\x80", 5, 5, 0x0000},
      {"\xFD\xBF\xBF\xBF\xBF\xBF", 6, 6, 0xFFFF},
  };
  for (const auto& c : kCases) {
    const std::string bytes(c.bytes, c.bytes[0] == 0 ? 1 : std::strlen(c.bytes));
    const Decoded d = Decode(bytes, c.length);
    EXPECT_EQ(c.result, d.result) << c.bytes;
    if (c.result > 0) {
      EXPECT_EQ(c.value, d.value) << c.bytes;
    }
  }
  EXPECT_EQ(-1, Decode("a", 0).result);
  EXPECT_EQ(0, NxMultiByte2WChar(nullptr, nullptr, 5));
}

TEST(Utf8Array, CountsPastTheArrayAndStopsAtABadSequence) {
  char text[] = "a\xC3\xA9\x00\xE2\x82\xAC";  // a, é, a zero, €
  const int length = 7;
  unsigned short out[6] = {0, 0, 0, 0, 0xEEEE, 0xEEEE};
  EXPECT_EQ(4, NxMultiByteStr2WCharStr(out, 4, text, length));
  EXPECT_EQ((std::vector<unsigned short>{'a', 0xE9, 0, 0x20AC, 0xEEEE}),
            std::vector<unsigned short>(out, out + 5));
  EXPECT_EQ(4, NxMultiByteStr2WCharStr(nullptr, 0, text, length));
  EXPECT_EQ(0, NxMultiByteStr2WCharStr(out, 6, text, 0));
  // A sequence cut by `length`, and a bad one in the middle.
  EXPECT_EQ(-1, NxMultiByteStr2WCharStr(out, 6, text, 6));
  char bad[] = "ab\xC0\x80\x63";
  EXPECT_EQ(-1, NxMultiByteStr2WCharStr(out, 6, bad, 5));
}

TEST(Utf8ToString, DecodesIntoCodeSet253AndKeepsTheTextBeforeAFault) {
  NxString s(kCp1252, 7);
  s = "old";
  s.language = 7;
  EXPECT_EQ(6, NxMBS2NxString("A\xC3\xA9\xE2\x82\xAC\x74", s, 6));
  EXPECT_EQ(kUnicode, s.codeSet);
  EXPECT_EQ(7, s.language);
  EXPECT_EQ(u"Aé€", Units(s));

  // A zero byte ends the text and doesn't count.
  EXPECT_EQ(2, NxMultiByteString2NxString("ab\0cd", s, 5));
  EXPECT_EQ(u"ab", Units(s));
  // A cut or bad sequence: -1, and the text up to it stays.
  EXPECT_EQ(-1, NxMBS2NxString("abc\xC0\x80", s, 5));
  EXPECT_EQ(u"abc", Units(s));
  EXPECT_EQ(-1, NxMBS2NxString(nullptr, s, 3));
  // No length: nothing, and an empty string of code set 253.
  s = "x";
  EXPECT_EQ(0, NxMBS2NxString("abc", s, -1));
  EXPECT_TRUE(s.IsEmpty());
  EXPECT_EQ(kUnicode, s.codeSet);

  // The working buffer of 256 characters fills exactly, and once more.
  for (size_t n : {256u, 257u}) {
    std::string text;
    std::u16string want;
    for (size_t i = 0; i < n; ++i) {
      text += i % 2 ? "\xC3\xA9" : "z";
      want += i % 2 ? u'é' : u'z';
    }
    EXPECT_EQ(static_cast<int32_t>(text.size()),
              NxMBS2NxString(text.c_str(), s, static_cast<int32_t>(text.size())));
    EXPECT_EQ(want, Units(s)) << n;
  }

  // 32768 bytes at most: the character that reaches the limit is the last.
  std::string euros;
  for (int i = 0; i < 11000; ++i) euros += "\xE2\x82\xAC";
  EXPECT_EQ(-2, NxMBS2NxString(euros.c_str(), s, static_cast<int32_t>(euros.size())));
  EXPECT_EQ(10923, s.Len());  // 10923 × 3 = 32769

  // The string form takes StrGet() and Len(), also from itself.
  NxString source("ab\xC3\xA9");
  EXPECT_EQ(4, NxMultiByteString2NxString(source, source));
  EXPECT_EQ(u"abé", Units(source));
}

TEST(Utf8FromString, QuickPathBuffersAndRecoding) {
  char buffer[16];
  // Pure ASCII of code sets below 6 is copied; the rest of the buffer is zeroed.
  std::memset(buffer, 'x', sizeof buffer);
  EXPECT_EQ(3, NxString2NxMBS(Narrow("abc", kCp1252), buffer, 8));
  EXPECT_EQ(std::string("abc\0\0\0\0\0xx", 10), std::string(buffer, 10));
  // Exactly the text's size: no terminator.  Too little: the bytes that fit.
  std::memset(buffer, 'x', sizeof buffer);
  EXPECT_EQ(3, NxString2NxMBS(Narrow("abc", kCp1252), buffer, 3));
  EXPECT_EQ("abcx", std::string(buffer, 4));
  EXPECT_EQ(2, NxString2NxMBS(Narrow("abc", kCp1252), buffer, 2));

  // Other text is encoded; what doesn't fit gives minus what was written.
  std::memset(buffer, 'x', sizeof buffer);
  EXPECT_EQ(3, NxString2NxMBS(Narrow("a\xE9", kCp1252), buffer, 8));
  EXPECT_EQ(std::string("a\xC3\xA9\0x", 5), std::string(buffer, 5));
  EXPECT_EQ(-1, NxString2NxMBS(Narrow("a\xE9", kCp1252), buffer, 2));
  EXPECT_EQ(0, NxString2NxMBS(Unicode(u"€"), buffer, 2));   // not even the first fits
  EXPECT_EQ(5, NxString2NxMBS(Unicode(u"ж€"), buffer, 5));  // full: no terminator
  // 8-bit code sets recode through Unicode, 16-bit ones are their values.
  EXPECT_EQ(2, NxString2NxMBS(Narrow("\xD6", kIso8859_5), buffer, 8));
  EXPECT_EQ("\xD0\xB6", std::string(buffer));
  EXPECT_EQ(3, NxString2NxMBS(Unicode(u"\uFFFF", kLegacy16), buffer, 8));
  EXPECT_EQ("\xEF\xBF\xBF", std::string(buffer));
}

TEST(Utf8FromString, AllocatesOrFillsTheCallersBuffer) {
  char* out = nullptr;
  int32_t length = 0;
  // No buffer: one is allocated, also for an empty string.
  EXPECT_EQ(0, NxString2MultiByteString(NxString(), out, length));
  ASSERT_NE(nullptr, out);
  EXPECT_EQ(1, length);
  EXPECT_EQ(0, out[0]);
  delete[] out;
  // Longer than the working buffer: pure ASCII of code set 1 stops at the
  // 2048 bytes of the quick path; any other text goes the long way, whole.
  for (const char* unit : {"a", "\xE9"}) {
    std::string text(3000, unit[0]);
    out = nullptr;
    length = 0;
    const int32_t want = unit[0] == 'a' ? 2048 : 6000;
    EXPECT_EQ(want, NxString2MultiByteString(Narrow(text, kCp1252), out, length));
    EXPECT_EQ(want + 1, length);
    EXPECT_EQ(static_cast<size_t>(want), std::strlen(out));
    delete[] out;
  }

  // The caller's buffer: the text (terminated when there is room), or -1
  // and the size needed.
  char buffer[8];
  out = buffer;
  length = 8;
  EXPECT_EQ(6, NxString2MultiByteString(Unicode(u"aé€"), out, length));
  EXPECT_EQ(buffer, out);
  EXPECT_EQ("a\xC3\xA9\xE2\x82\xAC", std::string(buffer));
  length = 5;
  EXPECT_EQ(-1, NxString2MultiByteString(Unicode(u"aé€"), out, length));
  EXPECT_EQ(6, length);
  length = 6;  // exactly the text: written whole, without a terminator
  EXPECT_EQ(6, NxString2MultiByteString(Unicode(u"aé€"), out, length));
  length = 3;  // ASCII filling the buffer to the last byte: no terminator
  std::memset(buffer, 'x', sizeof buffer);
  EXPECT_EQ(3, NxString2MultiByteString(Narrow("abc", kCp1252), out, length));
  EXPECT_EQ("abcxxxxx", std::string(buffer, 8));
  length = 4;
  EXPECT_EQ(3, NxString2MultiByteString(Narrow("abc", kCp1252), out, length));
  EXPECT_EQ("abc", std::string(buffer));
}

TEST(Utf8FromString, LengthOfTheFirstCharacters) {
  EXPECT_EQ(0, NxMBSLength(Narrow("abc", kCp1252), 0));
  // Pure ASCII of code sets below 6 answers its whole length.
  EXPECT_EQ(3, NxMBSLength(Narrow("abc", kCp1252), 1));
  EXPECT_EQ(3, NxMBSLength(Narrow("a\xE9z", kCp1252), 2));
  EXPECT_EQ(4, NxMBSLength(Narrow("a\xE9z", kCp1252), 65535));
  EXPECT_EQ(6, NxMBSLength(Unicode(u"a\u07FF\u0800z"), 3));
}

}  // namespace
