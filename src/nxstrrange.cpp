// Range evaluation of the string rows: the share of an index range between
// two string keys that a predicate keeps, and the narrowed keys it allows.
//
// A string has no number, so one is made of its first collation orders
// (PositionValue).  Since that number only sees about three letters, the
// four strings involved (the value as a low and a high end, and the two
// bounds) first lose the start they have in common.  A value with a wildcard,
// or a key that ended early at a change of collation state, stands for every
// string that starts with its prefix: it is an interval, from the prefix to
// the prefix followed by the highest character, and the narrowed keys are
// built as new key records that enclose every string that matches.  Ignoring
// case or accents widens those keys: the low key takes the lowest value of
// the ignored bits in every letter, the high key the highest.
//
// The legacy strings have no collation orders: their first four key bytes
// are the number.
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <type_traits>

#include <nxtm/nxtypevl.h>

#include "nxlegacy.h"
#include "nxstrkeys.h"

namespace {

constexpr unsigned short kNoLength = 65535;
constexpr unsigned kMaxKey = NxINDEX_MAX_KEYLEN;
constexpr double kUnitWithCodeSet = 1048576.0;
constexpr double kUnitWithoutCodeSet = 128.0;
constexpr unsigned short kCaseBits = 0x3000;
constexpr unsigned short kAccentBits = 0x0F80;
constexpr unsigned short kHighestUnit = 0xFFFE;
constexpr unsigned char kHighestByte = 0xFF;
// cmpOp bits that make characters invisible: a high key closes with the
// highest character even without a wildcard.
constexpr unsigned short kInvisible = NxCMP_IGNORE_SPACES | NxCMP_IGNORE_SYMBOLS;

inline unsigned Width(unsigned char codeSet) {
  return codeSet > 224 ? 2u : 1u;
}

inline unsigned Get16(const unsigned char* at, unsigned char format) {
  uint16_t value;
  ShortStore(&value, at, format, 1);
  return value;
}

inline void Put16(unsigned char* at, unsigned value, unsigned char format) {
  const uint16_t v = static_cast<uint16_t>(value);
  ShortStore(at, &v, format, 1);
}

// A heap buffer for a narrowed key; null when no memory can be had (the end
// then stays open).
unsigned char* KeyBuffer(size_t bytes) {
  void* key = std::malloc(bytes);
  if (key == nullptr) {
    NxCallMemoryHandler(static_cast<uint32_t>(bytes));
    key = std::malloc(bytes);
  }
  return static_cast<unsigned char*>(key);
}

// One of the four texts of the estimate, with its element count (65535: up
// to its terminator).  A text without a terminator (a cut key) is read from
// a closed copy, so that nothing looks behind the bytes at hand.
struct RangeText {
  const char* text = nullptr;
  unsigned short count = kNoLength;
  unsigned char codeSet = 0;
  unsigned char language = 0;
  char closed[kMaxKey + 2];

  void CloseCopy(const unsigned char* from, size_t bytes) {
    if (bytes > kMaxKey) bytes = kMaxKey;
    std::memcpy(closed, from, bytes);
    closed[bytes] = 0;
    closed[bytes + 1] = 0;
    text = closed;
  }
};

// The last bytes of whole records that become 0 while the texts are
// measured, so that each text ends in a zero of its own char width, and
// 0xFF again at the end of the call.
class Noted {
 public:
  void Note(unsigned char* at) {
    if (at != nullptr && n_ < kSlots) bytes_[n_++] = at;
  }
  void Set(unsigned char value) {
    for (int i = 0; i < n_; ++i) *bytes_[i] = value;
  }

 private:
  static constexpr int kSlots = 5;
  unsigned char* bytes_[kSlots] = {};
  int n_ = 0;
};

// One element for the common-start search: an order whose letter bits of
// `mask` are cleared, or without a code set the byte.  0 at the end.
unsigned short NextKeyOrder(NxStringIterator& text, unsigned short mask) {
  if (text.codeSet != 0) {
    if (text.IsEOS()) return 0;
    unsigned short order = text.GetNextOrder(1);
    if (order >= 0x4000 && order <= 0x7FFF) order &= static_cast<unsigned short>(~mask);
    return order;
  }
  if (text.position == nullptr) return 0;
  const unsigned char byte = *text.position;
  if (byte != 0) ++text.position;
  return byte;
}

// The letters of a narrowed key with the ignored bits at their extreme:
// `clear` cleared, `set` set.  The key's units are read least significant
// byte first, whatever the format.
void Widen(unsigned char* key, uint32_t length, unsigned short clear, unsigned short set) {
  for (uint32_t k = 2; k < length / 2; ++k) {
    unsigned unit = key[2 * k] | (key[2 * k + 1] << 8);
    if ((unit & 0xC000u) != 0x4000u) continue;
    unit = (unit & ~unsigned{clear}) | set;
    key[2 * k] = static_cast<unsigned char>(unit);
    key[2 * k + 1] = static_cast<unsigned char>(unit >> 8);
  }
}

struct Row {
  bool old;
  unsigned char format;
  unsigned char form;
  unsigned termLength() const { return old ? 1u : 2u; }
  unsigned textOffset() const { return old ? 2u : 4u; }
};

// Reads a key of `bounds` or a preset key of `narrowed` into `text`, with
// the code set and language of the record or, for `own` false, of the value.
// A whole record of the current row gets its last byte noted; a cut one is
// read from a closed copy.
void ReadKey(const Row& row, unsigned char* key, unsigned length, RangeText& text, Noted& noted,
             bool own) {
  const unsigned field = length >= 2 ? Get16(key, row.format) : 0;
  if (own && !row.old) {
    text.codeSet = length > 2 ? key[2] : 0;
    text.language = length > 3 ? key[3] : 0;
  }
  const unsigned width = Width(text.codeSet);
  text.count = static_cast<unsigned short>(length >= 4 ? (length - 4) / width : 0);
  const bool whole = field + 2 <= length;
  if (whole) {
    text.text = reinterpret_cast<const char*>(key + row.textOffset());
    if (!row.old) noted.Note(key + field + 1);
  } else {
    const unsigned at = row.textOffset();
    text.CloseCopy(key + at, length > at ? length - at : 0);
  }
}

float StringRangeCore(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                      NxIdxBounds* narrowed, bool oldRow) {
  const unsigned short extra = op & 0x7FF0;
  op &= 0x800F;
  const Row row{oldRow, format, static_cast<unsigned char>(format & 0x0F)};
  unsigned char* const record = static_cast<unsigned char*>(value);
  const unsigned L = Get16(record, format);
  unsigned char codeSet = 0;
  unsigned char language = 0;
  if (!oldRow) {
    codeSet = record[2];
    language = record[3];
  }
  unsigned char* const text = record + row.textOffset();
  unsigned char* const last = oldRow ? nullptr : record + L + 1;
  const unsigned width = Width(codeSet);

  // The first wildcard, or the whole text of a key that ended early at a
  // change of state (unless in the first state): both make the value a
  // prefix.
  unsigned short charWildPos = kNoLength;
  unsigned short wildByte = kNoLength;
  if ((extra & NxCMP_NO_WILDCARDS) == 0) {
    if (last != nullptr) *last = 0;
    charWildPos = FindWildcard(codeSet, language, reinterpret_cast<const char*>(text), 0,
                               kNoLength, &wildByte, row.form);
    if (last != nullptr) *last = 0xFF;
    if (charWildPos == kNoLength && (language & 0x80) != 0 && (language & 0x7F) != 1) {
      wildByte = static_cast<unsigned short>(L - 4);
      charWildPos = static_cast<unsigned short>(wildByte / width);
    }
  }
  const int16_t wild = static_cast<int16_t>(wildByte);
  if (wild >= 0) op |= 8;  // not a point

  RangeText valueLow;
  RangeText valueHigh;
  for (RangeText* t : {&valueLow, &valueHigh}) {
    t->text = reinterpret_cast<const char*>(text);
    t->count = charWildPos;
    t->codeSet = codeSet;
    t->language = language;
  }
  Noted noted;
  RangeText boundLow;
  RangeText boundHigh;
  if (bounds != nullptr) {
    ReadKey(row, static_cast<unsigned char*>(bounds->high), bounds->highLength, boundHigh, noted,
            true);
    ReadKey(row, static_cast<unsigned char*>(bounds->low), bounds->lowLength, boundLow, noted,
            true);
  }
  // Without narrowed keys a string gives no estimate.
  if (narrowed == nullptr) return 0.0f;
  noted.Note(last);

  unsigned short caseMask = 0;
  unsigned short accentMask = 0;
  if (codeSet != 0) {
    if ((extra & NxCMP_IGNORE_CASE) != 0) caseMask = kCaseBits;
    if ((extra & NxCMP_IGNORE_ACCENTS) != 0) accentMask = kAccentBits;
  }
  const bool widen = (caseMask != 0 || accentMask != 0) && (language & 0x7F) < 20;
  const NxTranslateFunc translate =
      oldRow ? nxrows::oldStringRow.Translate : nxrows::stringRow.Translate;
  const unsigned char keyFormat = static_cast<unsigned char>(row.form | 0x80);

  // A wildcard in the first place leaves nothing to build a key from.
  if (wild != 0) {
    const unsigned termLen = row.termLength();
    // The header bytes and the text in front of the wildcard, or the whole
    // text: the prefix as a record cut in front of its end.
    const unsigned prefixLen =
        wild >= 1 ? (oldRow ? unsigned(wild) : unsigned(wild) + 2) : L - termLen;

    if (narrowed->low != nullptr) {
      ReadKey(row, static_cast<unsigned char*>(narrowed->low), narrowed->lowLength, valueLow,
              noted, false);
    } else if ((op & 2) == 0) {
      unsigned want = prefixLen + termLen + 2;
      const bool cut = want > kMaxKey;
      if (cut) want = kMaxKey;
      const unsigned allocated = (want + 1) & ~1u;
      unsigned char* key = KeyBuffer(allocated);
      if (key != nullptr) {
        narrowed->low = key;
        narrowed->lowLength = static_cast<unsigned char>(want);
        const uint32_t room = allocated - (cut ? 0 : termLen);
        uint32_t actualLen = translate(key, keyFormat, room, value, format, prefixLen + 2, 1);
        if (widen) Widen(key, actualLen, accentMask, caseMask);
        if (!cut) key[actualLen] = 0;
        if (!oldRow) {
          Put16(key, actualLen, format);
          if (!cut) key[actualLen + 1] = 0xFF;
        }
        if (!cut) actualLen += termLen;
        if (actualLen > kMaxKey)
          ZENTRO_assert("actualLen <= NxINDEX_MAX_KEYLEN", "src\\nxtypevl", 733);
      }
    }

    if (narrowed->high != nullptr) {
      ReadKey(row, static_cast<unsigned char*>(narrowed->high), narrowed->highLength, valueHigh,
              noted, false);
    } else if ((op & 4) == 0) {
      // One character more than the prefix goes in: the wildcard, in whose
      // place the highest character comes.
      const unsigned extraChar = wild >= 0 ? width : 0;
      unsigned want = prefixLen + termLen + 2 + extraChar;
      const bool cut = want > kMaxKey;
      if (cut)
        want = kMaxKey;
      else if (want == 6 && (extra & kInvisible) != 0)
        want = 8;  // room for the closing character on an empty text
      const unsigned allocated = (want + 1) & ~1u;
      unsigned char* key = KeyBuffer(allocated);
      if (key != nullptr) {
        narrowed->high = key;
        narrowed->highLength = static_cast<unsigned char>(want);
        const uint32_t room = allocated - (cut ? 0 : termLen);
        uint32_t actualLen =
            translate(key, keyFormat, room, value, format, extraChar + prefixLen + 2, 1);
        if (widen) Widen(key, actualLen, caseMask, accentMask);
        if ((wild > 0 || (extra & kInvisible) != 0) && actualLen >= 2) {
          if (codeSet == 0) {
            if (actualLen == 4) key[5] = key[actualLen++];
            key[actualLen - 1] = kHighestByte;
          } else {
            if (actualLen == 4) {
              key[6] = key[4];
              key[7] = key[5];
              actualLen += 2;
            }
            Put16(key + actualLen - 2, kHighestUnit, format);
          }
        }
        if (!oldRow) {
          Put16(key, actualLen, format);
          if (!cut) noted.Note(key + actualLen + 1);
        }
        if (!cut) key[actualLen] = 0;
        valueHigh.text = reinterpret_cast<const char*>(key + row.textOffset());
        if (charWildPos != kNoLength)
          valueHigh.count = static_cast<unsigned short>(charWildPos + extraChar);
        if (cut) {
          valueHigh.count = static_cast<unsigned short>((actualLen - 4) / width);
          valueHigh.CloseCopy(key + row.textOffset(), actualLen - row.textOffset());
        }
        if (!cut) actualLen += termLen;
        if (actualLen > kMaxKey)
          ZENTRO_assert("actualLen <= NxINDEX_MAX_KEYLEN", "src\\nxtypevl", 868);
      }
    }
  }

  // Measuring.
  noted.Set(0);
  const unsigned char fmt = row.form;
  RangeText* const texts[4] = {&valueLow, &valueHigh, &boundLow, &boundHigh};
  NxStringIterator it[4];
  NxStringIterator mark[4];
  for (int k = 0; k < 4; ++k)
    it[k] = NxStringIterator(texts[k]->text, texts[k]->codeSet, texts[k]->language, fmt);

  // The common start of the four texts, within the shortest count.
  unsigned short n0 = kNoLength;
  for (const RangeText* t : texts)
    if (t->count != kNoLength && t->count < n0) n0 = t->count;
  unsigned short left = n0;
  const unsigned short mask = caseMask | accentMask;
  if (left != 0) {
    for (bool first = true;; first = false) {
      for (int k = 0; k < 4; ++k) mark[k] = it[k];
      unsigned short o[4];
      for (int k = 0; k < 4; ++k) o[k] = NextKeyOrder(it[k], mask);
      if (first && !(it[0].state == it[1].state && it[1].state == it[2].state &&
                     it[2].state == it[3].state))
        break;
      if (!(o[0] == o[1] && o[1] == o[2] && o[2] == o[3])) break;
      if (left != kNoLength) --left;
      if (o[0] == 0 || left == 0) {
        for (int k = 0; k < 4; ++k) mark[k] = it[k];
        break;
      }
    }
  }
  const unsigned short consumed = static_cast<unsigned short>(n0 - left);

  const auto boundLength = [&](unsigned short count) -> unsigned short {
    if (n0 == kNoLength || count == kNoLength) return kNoLength;
    return static_cast<unsigned short>(count - consumed);
  };
  const auto valueLength = [&](unsigned short a, unsigned short b) -> unsigned short {
    const unsigned short m = a < b ? a : b;
    return m < consumed ? 0 : static_cast<unsigned short>(m - consumed);
  };
  const double boundHighPos = PositionValue(mark[3], boundLength(boundHigh.count));
  const double boundLowPos = PositionValue(mark[2], boundLength(boundLow.count));
  const double valueLowPos = PositionValue(mark[0], valueLength(valueLow.count, boundLow.count));
  const double valueHighPos =
      PositionValue(mark[1], valueLength(valueHigh.count, boundHigh.count));

  const double unit = codeSet != 0 ? kUnitWithCodeSet : kUnitWithoutCodeSet;
  const double valueTotalArea = boundHighPos - boundLowPos + unit;
  double valueRange =
      RangeArea(op, valueLowPos, valueHighPos, boundLowPos, boundHighPos, unit);

  // Ties of the positions, settled by the comparison itself.
  if (valueRange == 0.0) {
    const unsigned short cmpOp = op | extra;
    const auto compare = [&](const RangeText& a, const RangeText& b, unsigned short limit) {
      return NxStrCmp(codeSet, language, a.text, b.codeSet, b.language, b.text, cmpOp,
                      static_cast<short>(limit), fmt, nullptr);
    };
    if (((op & 2) != 0 && boundLowPos == valueHighPos) ||
        ((op & 4) != 0 && boundHighPos == valueLowPos)) {
      if ((op & 2) != 0 && compare(valueHigh, boundLow, valueLow.count) >= 0) valueRange += unit;
      if ((op & 4) != 0) {
        const unsigned short limit =
            boundHigh.count != kNoLength && boundHigh.count < valueHigh.count ? boundHigh.count
                                                                              : valueHigh.count;
        if (compare(valueLow, boundHigh, limit) <= 0) valueRange += unit;
      }
    }
    if (valueRange == 0.0 && (op & 1) != 0 && valueHighPos > boundHighPos &&
        boundHigh.count < valueHigh.count &&
        compare(valueHigh, boundHigh, boundHigh.count) == 0)
      valueRange += unit;
  }

  if (charWildPos == 0 && valueRange < valueTotalArea)
    ZENTRO_assert("charWildPos != 0 || valueRange >= valueTotalArea", "src\\nxtypevl", 1024);
  noted.Set(0xFF);
  return static_cast<float>(valueRange / valueTotalArea);
}

// ---------------------------------------------------------------------------
// The legacy strings.

// The first `n` bytes of `text`, at most 4, as a most-significant-first
// number, filled up with zero bytes on the right.
uint32_t Head(const unsigned char* text, int64_t n) {
  uint32_t x = 0;
  for (int i = 0; i < 4; ++i) x = (x << 8) | (i < n ? text[i] : 0u);
  return x;
}

// Bytes of text of a legacy key of `length` bytes, without its header and
// its terminator; 0 for a key too short to hold any.
inline int64_t KeyText(unsigned length) {
  return length > 4 ? int64_t{length} - 4 : 0;
}

template <bool kCase>
float LegacyRange(NxIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                  NxIdxBounds* narrowed) {
  using X = typename std::conditional<kCase, NxCaseIString, NxIString>::type;
  op &= 0x800F;
  uint32_t hi = 0;
  uint32_t lo = 0;
  const unsigned char* high = nullptr;
  const unsigned char* low = nullptr;
  if (bounds != nullptr) {
    high = static_cast<const unsigned char*>(bounds->high) + 3;
    low = static_cast<const unsigned char*>(bounds->low) + 3;
    if (!kCase) {
      hi = Head(high, KeyText(bounds->highLength));
      lo = Head(low, KeyText(bounds->lowLength));
    }
  }

  const unsigned char* record = static_cast<const unsigned char*>(value);
  const unsigned char form = record[0];
  int64_t n = int64_t{Get16(record + 1, format)} - 1;
  const char* text = reinterpret_cast<const char*>(record + 3);
  int w = -1;
  for (int i = 0; text[i] != 0; ++i) {
    if (text[i] == '?' || text[i] == '*' || text[i] == '\\') {
      w = i;
      break;
    }
  }
  if (w == 0) {
    op |= 8;
    if (kCase) return 1.0f;
    const uint32_t total = hi - lo + 1;
    return static_cast<float>(static_cast<double>(total) / static_cast<double>(total));
  }

  // The key text of the value, up to the first wildcard.
  const size_t room = n > 0 ? static_cast<size_t>(2 * (n + 1)) : 2;
  unsigned char* buf = static_cast<unsigned char*>(std::calloc(room, 1));
  while (buf == nullptr) {
    NxCallMemoryHandler(static_cast<uint32_t>(room));
    buf = static_cast<unsigned char*>(std::calloc(room, 1));
  }
  if (n > 0) {
    if ((form & 0x80) != 0) {
      std::memcpy(buf, text, static_cast<size_t>(n) + 1);
      if (w > 0) {
        buf[w] = 0;
        n = w;
      }
    } else {
      const size_t bytes = w > 0 ? static_cast<size_t>(w) : std::strlen(text);
      char* scratch = static_cast<char*>(std::malloc(bytes + 1));
      while (scratch == nullptr) {
        NxCallMemoryHandler(static_cast<uint32_t>(bytes + 1));
        scratch = static_cast<char*>(std::malloc(bytes + 1));
      }
      std::memcpy(scratch, text, bytes);
      scratch[bytes] = 0;
      n = static_cast<int64_t>(X::MapText(reinterpret_cast<char*>(buf), scratch, 0)) - 1;
      std::free(scratch);
    }
  }
  const int64_t m = n <= 0 ? 0 : (n < 4 ? n : 4);
  uint32_t range = 0;
  if (n > 0 && m < 4) range = 0xFFu << (8 * (3 - m));
  if (n > 0 && w > 0) op |= 8;

  int64_t s = 0;
  if (kCase && bounds != nullptr) {
    const int64_t highText = KeyText(bounds->highLength);
    const int64_t lowText = KeyText(bounds->lowLength);
    if (range == 0) {
      int64_t c = highText < lowText ? highText : lowText;
      if (m < c) c = m;
      while (s < c && high[s] == low[s] && low[s] == buf[s]) ++s;
    }
    hi = Head(high + s, highText - s);
    lo = Head(low + s, lowText - s);
  }
  const uint32_t total = hi - lo + 1;
  uint32_t x = Head(buf + s, m - s);
  uint32_t upper = range + x;
  const auto clamp = [&](uint32_t v) { return v < lo ? lo - 1 : v > hi ? hi + 1 : v; };
  x = clamp(x);
  upper = clamp(upper);
  const uint32_t a = x - lo + 1;
  const uint32_t b = upper - lo + 1;
  uint32_t selected = 0;
  if ((op & 2) != 0) selected = a;
  if ((op & 4) != 0) selected += total - b;
  if ((op & 1) != 0) selected += b - a + 1;

  // Narrowed keys: the form byte 0xC0 (raw), the length and the key text.
  const auto build = [&](int64_t bytes, bool closeHigh) {
    unsigned char* key = KeyBuffer(static_cast<size_t>(bytes + 4));
    if (key == nullptr) return key;
    key[0] = 0xC0;
    Put16(key + 1, static_cast<unsigned>(bytes + 1), format);
    std::memcpy(key + 3, buf, static_cast<size_t>(bytes + 1));
    if (closeHigh) key[bytes + 2] = kHighestByte;
    key[bytes + 3] = 0;
    return key;
  };
  if (n < 0) n = 0;
  if (narrowed != nullptr && narrowed->low == nullptr && (op & 2) == 0) {
    narrowed->low = build(n, false);
    if (narrowed->low != nullptr) narrowed->lowLength = static_cast<unsigned char>(n + 4);
  }
  if (narrowed != nullptr && narrowed->high == nullptr && (op & 4) == 0) {
    if (w > 0) ++n;
    narrowed->high = build(n, w > 0);
    if (narrowed->high != nullptr) narrowed->highLength = static_cast<unsigned char>(n + 4);
  }
  std::free(buf);
  return static_cast<float>(static_cast<double>(selected) / static_cast<double>(total));
}

}  // namespace

namespace nxrows {

float StringEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                         unsigned char format, uint32_t, NxIdxBounds* narrowed) {
  return StringRangeCore(bounds, op, value, format, narrowed, false);
}

float OldStringEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                            unsigned char format, uint32_t, NxIdxBounds* narrowed) {
  return StringRangeCore(bounds, op, value, format, narrowed, true);
}

float NxIStringEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                            unsigned char format, uint32_t, NxIdxBounds* narrowed) {
  return LegacyRange<false>(bounds, op, value, format, narrowed);
}

float NxCaseIStringEvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                                unsigned char format, uint32_t, NxIdxBounds* narrowed) {
  return LegacyRange<true>(bounds, op, value, format, narrowed);
}

}  // namespace nxrows
