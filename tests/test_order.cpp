// Order naming: orders of every kind back to plain characters and words.
#include <gtest/gtest.h>

#include <string>

#include "test_support.h"

namespace {

constexpr unsigned char kCp1252 = 1, kLatin = 1, kUnknown = 20;

constexpr unsigned short Letter(unsigned letter, unsigned accent = 0, unsigned lower = 0,
                                unsigned extension = 0) {
  return static_cast<unsigned short>(0x4000u | (lower << 12) | (accent << 7) | (letter << 2) |
                                     extension);
}
constexpr unsigned short Symbol(unsigned number) {
  return static_cast<unsigned short>(80 + number);
}

std::string Words(unsigned short order, unsigned char state = kLatin) {
  NxString result("left over");
  EXPECT_EQ(0, NxConvertOrderToString(order, state, result));
  EXPECT_EQ(NxString::GetDefault8CodeSet(), result.codeSet);
  return result.StrGet();
}

struct Plain {
  unsigned char character;
  std::string name;  // "(untouched)" when `name` wasn't written
};
Plain CharOf(unsigned short order, int accented, unsigned char state = kLatin) {
  static const char untouched[] = "(untouched)";
  const char* name = untouched;
  unsigned char c = 0;
  EXPECT_EQ(0, NxConvertOrderToChar(order, state, c, accented, &name));
  return {c, name};
}

// The order of character `code` of code set 1.
unsigned short OrderOf(unsigned char code) {
  return NxChar(static_cast<char>(code), kCp1252, kLatin).Order();
}

TEST(OrderNaming, SymbolAndDigitNumbers) {
  unsigned short symbol = 999, digit = 999, expand = 999;
  EXPECT_EQ(NxSTATUS_INVALID_ARGUMENT, NxExtractSymbolFromOrder(79, symbol));
  EXPECT_EQ(NxSTATUS_INVALID_ARGUMENT, NxExtractSymbolFromOrder(0x3F00, symbol));
  EXPECT_EQ(999, symbol);
  EXPECT_EQ(0, NxExtractSymbolFromOrder(0x3EFF, symbol));
  EXPECT_EQ(0x3EFF - 80, symbol);

  EXPECT_EQ(NxSTATUS_INVALID_ARGUMENT, NxExtractDigitFromOrder(0x3EFF, digit, expand));
  EXPECT_EQ(NxSTATUS_INVALID_ARGUMENT, NxExtractDigitFromOrder(0x4000, digit, expand));
  EXPECT_EQ(999, digit);
  // {order, digit, expand}: ten orders apart, bit 0 the flag.
  const unsigned short kDigits[][3] = {
      {0x3F00, 0, 0}, {0x3F0B, 1, 1}, {0x3F09, 0, 1}, {0x3F5A, 9, 0}, {0x3FFF, 25, 1}};
  for (const auto& d : kDigits) {
    EXPECT_EQ(0, NxExtractDigitFromOrder(d[0], digit, expand));
    EXPECT_EQ(d[1], digit) << std::hex << d[0];
    EXPECT_EQ(d[2], expand) << std::hex << d[0];
  }
}

TEST(OrderNaming, EveryKindOfOrderInWords) {
  const struct {
    unsigned short order;
    unsigned char state;
    const char* words;
  } kCases[] = {
      {0, kLatin, "space"},
      {13, kLatin, "undefined ordering indicator"},
      {79, kLatin, "space"},
      {Symbol(32), kLatin, "symbol _"},
      {Symbol(55), kLatin, "symbol \""},
      {Symbol(89), kLatin, "symbol `"},
      {Symbol(139), kLatin, "symbol inverted question mark"},
      {Symbol(31), kLatin, "symbol "},
      {Symbol(33), kLatin, "symbol "},
      {Symbol(140), kLatin, "symbol "},
      {0x3F00, kLatin, "digit 0"},
      {0x3F0B, kLatin, "digit 1 with expand"},
      {Letter(3), kLatin, "upper letter A"},
      {Letter(28, 0, 1), kLatin, "lower letter z"},
      {Letter(21, 0, 2), kLatin, "lower letter s"},  // case 2 is lower too
      {Letter(14, 9, 1, 1), kLatin, "lower letter l with accent caron with extension"},
      {Letter(3, 15, 1), kLatin, "lower letter a with "},  // our own accents have no name
      // Ideographs and unknown characters: their code value, whatever it looks like.
      {0x8000, kLatin, "HAN character 0x8000\n"},
      {0x0061, kUnknown, "HAN character 0x0061\n"},
      {Letter(3), 0x80 | kUnknown, "HAN character 0x400c\n"},
      {Letter(3), 0x80 | kLatin, "upper letter A"},  // bit 7 of the state doesn't count
  };
  for (const auto& c : kCases)
    EXPECT_EQ(c.words, Words(c.order, c.state)) << std::hex << c.order << " " << int(c.state);

  const char* kAccents[] = {
      "cedilla",      "accent acute", "accent grave", "accent circumflex",  "tilde",
      "diaeresis",    "ring above",   "stroke",       "accent caron",       "accent macron",
      "accent breve", "dot above",    "ogonek",       "accent double acute"};
  for (unsigned accent = 1; accent <= 14; ++accent)
    EXPECT_EQ(std::string("upper letter O with ") + kAccents[accent - 1],
              Words(Letter(17, accent)));
}

TEST(OrderNaming, PlainCharacters) {
  const struct {
    unsigned short order;
    unsigned char state;
    unsigned char character;
  } kCases[] = {
      // clang-format off
      {0, kLatin, ' '},           {13, kLatin, ' '},          {Symbol(32), kLatin, '_'},
      {Symbol(44), kLatin, '/'},  {Symbol(68), kLatin, '.'},  {Symbol(88), kLatin, '\''},
      {Symbol(139), kLatin, '.'},
      // Symbols without a plain character keep the start value 7.
      {Symbol(31), kLatin, 7},    {Symbol(33), kLatin, 7},    {Symbol(140), kLatin, 7},
      {0x3F0B, kLatin, '1'},      {Letter(3), kLatin, 'A'},   {Letter(28, 0, 1), kLatin, 'z'},
      {0x8000, kLatin, 127},      {0x0061, kUnknown, 127},    {Letter(3), 0x80 | kLatin, 'A'},
      // clang-format on
  };
  for (const auto& c : kCases) {
    for (int accented : {0, 1}) {
      const Plain p = CharOf(c.order, accented, c.state);
      EXPECT_EQ(c.character, p.character) << std::hex << c.order << " " << int(c.state);
      EXPECT_EQ("(untouched)", p.name) << std::hex << c.order;
    }
  }
}

TEST(OrderNaming, AccentedLettersComeFromCodeSet1) {
  // Without `accented` the accent is lost and `name` isn't written.
  const Plain bare = CharOf(OrderOf(0xE9), 0);
  EXPECT_EQ('e', bare.character);
  EXPECT_EQ("(untouched)", bare.name);

  const struct {
    unsigned char code;
    const char* name;
  } kNamed[] = {{0xC0, "\\`A"}, {0xC5, "\\AA"}, {0xC6, "\\AE"}, {0xC7, "\\,C"}, {0xD8, "\\-O"},
                {0xDF, "\\ss"}, {0xE9, "\\'e"}, {0xF1, "\\~n"}, {0xFF, "\\\"y"}};
  for (const auto& n : kNamed) {
    const Plain p = CharOf(OrderOf(n.code), 1);
    EXPECT_EQ(n.code, p.character) << int(n.code);
    EXPECT_EQ(n.name, p.name) << int(n.code);
  }
  // The first code with the order wins: æ begins with "a, other form", the
  // order of the ordinal indicator ª.
  EXPECT_EQ(0xAA, CharOf(OrderOf(0xE6), 1).character);
  // Letters 128..191 have no name: the address of an empty one comes back.
  const Plain s = CharOf(OrderOf(0x8A), 1);  // S caron
  EXPECT_EQ(0x8A, s.character);
  EXPECT_EQ("", s.name);
  // An accent that code set 1 lacks keeps the base letter and leaves `name` alone.
  const Plain caron = CharOf(Letter(7, 9, 1), 1);  // e caron
  EXPECT_EQ('e', caron.character);
  EXPECT_EQ("(untouched)", caron.name);
  unsigned char c = 0;
  EXPECT_EQ(0, NxConvertOrderToChar(OrderOf(0xE9), kLatin, c, 1, nullptr));
  EXPECT_EQ(0xE9, c);

  // Every accented letter of code set 1 finds the first code with its order.
  for (unsigned code = 128; code <= 255; ++code) {
    const unsigned short order = OrderOf(static_cast<unsigned char>(code));
    if ((order & 0xC000) != 0x4000 || ((order >> 7) & 0x1F) == 0) continue;
    const Plain p = CharOf(order, 1);
    EXPECT_LE(p.character, code);
    EXPECT_EQ(order, OrderOf(p.character)) << code;
  }
}

}  // namespace
