// Order naming: the way back from collation orders to plain characters and
// to words.  The words themselves (symbol, accent and character names) come
// from nxin, whose generator ties them to the collation data.
#include <cstdio>

#include <nxtm/nxtm.h>

namespace {

constexpr unsigned short kFirstSymbol = 80;
constexpr unsigned short kFirstDigit = 16128;
constexpr unsigned short kFirstLetter = 16384;
constexpr unsigned char kUnknownState = 20;
constexpr unsigned char kNoPlainCharacter = 7;

// Ideographs and characters unknown to the order table: their orders are
// code values without structure.
bool IsCodeValue(unsigned short order, unsigned char state) {
  return (order & 0x8000u) != 0 || (state & 0x7Fu) >= kUnknownState;
}

struct LetterFields {
  unsigned short letterCase;
  unsigned short accent;
  unsigned short letter;
  unsigned short extension;
};

// Takes a letter order apart; -2002 for an order with bit 15 set.
int SplitLetter(unsigned short order, LetterFields& fields) {
  if ((order & 0x8000u) != 0) return NxSTATUS_INVALID_ARGUMENT;
  fields.letterCase = static_cast<unsigned short>((order >> 12) & 0x3u);
  fields.accent = static_cast<unsigned short>((order >> 7) & 0x1Fu);
  fields.letter = static_cast<unsigned short>((order >> 2) & 0x1Fu);
  fields.extension = static_cast<unsigned short>(order & 0x3u);
  return 0;
}

// Letter 3 is "A"; lower case lies 32 above.
unsigned char LetterCharacter(const LetterFields& fields) {
  return static_cast<unsigned char>(fields.letter + 62 + (fields.letterCase != 0 ? 32 : 0));
}

// The first character 128..255 of code set 1 whose order is `order`, or 0.
unsigned char AccentedCharacter(unsigned short order) {
  const NxCodeSet* set = NxLanguageContext::QueryCodeSet(NxCS_CP1252);
  if (set == nullptr || set->orderTable == nullptr) return 0;
  for (unsigned code = 128; code <= 255; ++code) {
    const NxOrderRecord* record = set->orderTable->Find(static_cast<unsigned short>(code));
    if (record != nullptr && record->order == order) return static_cast<unsigned char>(code);
  }
  return 0;
}

}  // namespace

int NxExtractSymbolFromOrder(unsigned short order, unsigned short& symbol) {
  if (order < kFirstSymbol || order >= kFirstDigit) return NxSTATUS_INVALID_ARGUMENT;
  symbol = static_cast<unsigned short>(order - kFirstSymbol);
  return 0;
}

int NxExtractDigitFromOrder(unsigned short order, unsigned short& digit, unsigned short& expand) {
  if (order < kFirstDigit || order >= kFirstLetter) return NxSTATUS_INVALID_ARGUMENT;
  digit = static_cast<unsigned short>(((order & 0xFFFEu) - kFirstDigit) / 10);
  expand = static_cast<unsigned short>(order & 1u);
  return 0;
}

int NxConvertOrderToString(unsigned short order, unsigned char state, NxString& result) {
  // The longest text: "lower letter x with accent double acute with extension".
  char text[96];
  if (IsCodeValue(order, state)) {
    std::snprintf(text, sizeof text, "HAN character 0x%04x\n", static_cast<unsigned>(order));
  } else if (order < kFirstSymbol) {
    std::snprintf(text, sizeof text, "%s", order == 13 ? "undefined ordering indicator" : "space");
  } else if (order < kFirstDigit) {
    unsigned short symbol = 0;
    NxExtractSymbolFromOrder(order, symbol);
    const char* name = NxOrderWords::SymbolName(symbol);
    std::snprintf(text, sizeof text, "symbol %s", name != nullptr ? name : "");
  } else if (order >= kFirstLetter) {
    LetterFields fields{};
    SplitLetter(order, fields);
    int n = std::snprintf(text, sizeof text, "%s letter %c",
                          fields.letterCase != 0 ? "lower" : "upper", LetterCharacter(fields));
    if (fields.accent != 0) {
      const char* accent = NxOrderWords::AccentName(fields.accent);
      n += std::snprintf(text + n, sizeof text - static_cast<size_t>(n), " with %s",
                         accent != nullptr ? accent : "");
    }
    if (fields.extension != 0)
      std::snprintf(text + n, sizeof text - static_cast<size_t>(n), " with extension");
  } else {
    unsigned short digit = 0;
    unsigned short expand = 0;
    NxExtractDigitFromOrder(order, digit, expand);
    std::snprintf(text, sizeof text, "digit %u%s", static_cast<unsigned>(digit),
                  expand != 0 ? " with expand" : "");
  }
  result = text;
  return 0;
}

int NxConvertOrderToChar(unsigned short order, unsigned char state, unsigned char& character,
                         int accented, const char** name) {
  character = kNoPlainCharacter;
  if (IsCodeValue(order, state)) {
    character = 127;
  } else if (order < kFirstSymbol) {
    character = ' ';
  } else if (order < kFirstDigit) {
    unsigned short symbol = 0;
    NxExtractSymbolFromOrder(order, symbol);
    const char plain = NxOrderWords::SymbolCharacter(symbol);
    if (plain != 0) character = static_cast<unsigned char>(plain);
  } else if (order < kFirstLetter) {
    unsigned short digit = 0;
    unsigned short expand = 0;
    NxExtractDigitFromOrder(order, digit, expand);
    character = static_cast<unsigned char>('0' + digit);
  } else {
    LetterFields fields{};
    SplitLetter(order, fields);
    character = LetterCharacter(fields);
    if (fields.accent != 0 && accented != 0) {
      const unsigned char code = AccentedCharacter(order);
      if (code != 0) {
        character = code;
        if (name != nullptr) *name = NxOrderWords::CharacterName(code);
      }
    }
  }
  return 0;
}
