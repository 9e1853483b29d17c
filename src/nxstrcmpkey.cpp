// Comparators of the string rows.  An index hands them raw keys: text
// records, key records (collation orders, code set 254) or old records, in
// memory form NxString objects, and any key may have been cut when it was
// written.  The comparators take the records apart, work out how much of each
// operand is really at hand, let NxStrCmp compare what is there, and report
// with status 2101 whatever the bytes at hand cannot decide.
//
// The legacy strings have one record for the whole array (a form byte, a
// 16-bit length and the strings with their terminators) and their own byte
// order, with a small wildcard matcher of their own.
//
// The operands are only read.  Text that has to be closed (16-bit text ends
// in the record's 0 and 0xFF, which is no 16-bit zero) or that was cut is
// copied, to the stack up to 256 bytes, which every index key fits in.
#include <cstdlib>
#include <cstring>

#include <nxtm/nxtypcmp.h>

#include "nxkeyrows.h"
#include "nxlegacy.h"

namespace {

constexpr int kPartial = NxSTATUS_PARTIAL;
constexpr int kNoAnswer = NxSTATUS_NO_ANSWER;
// A key is never cut with this much text or more at hand.
constexpr int64_t kLongestCut = NxINDEX_MAX_KEYLEN;
constexpr unsigned short kNoWildcards = NxCMP_NO_WILDCARDS;
constexpr unsigned short kExact = NxCMP_EXACT;
constexpr unsigned short kIgnoreSpaces = NxCMP_IGNORE_SPACES;
constexpr unsigned short kIgnoreSymbols = NxCMP_IGNORE_SYMBOLS;
constexpr unsigned char kOrderText = NxCS_ORDERS;

inline unsigned Width(unsigned char codeSet) {
  return codeSet > 224 ? 2u : 1u;
}

// The stated bytes of one operand.  `length` 0 means the operand is whole
// and is trusted to be what its records say; otherwise nothing at or behind
// `length` is read, and a header byte there reads as 0.
struct Stated {
  const unsigned char* base;
  int64_t length;  // 0: no limit

  bool Limited() const { return length != 0; }
  unsigned Byte(int64_t offset) const {
    return !Limited() || offset < length ? base[offset] : 0u;
  }
  // A 16-bit field in the byte order of `format`, decoded as the base
  // library's ShortStore decodes it (2 most significant byte first, 8 the
  // machine's order, anything else least significant first), inline: it is
  // read for every record of every comparison.
  uint32_t Short(int64_t offset, unsigned char format) const {
    const unsigned first = Byte(offset);
    const unsigned second = Byte(offset + 1);
    switch (format & 0x0F) {
      case 2:
        return first << 8 | second;
      case 8: {
        const unsigned char two[2] = {static_cast<unsigned char>(first),
                                      static_cast<unsigned char>(second)};
        uint16_t value;
        std::memcpy(&value, two, 2);
        return value;
      }
      default:
        return first | second << 8;
    }
  }
};

// One operand of StringCompareCore, as far as it has been taken apart.
struct StringOperand {
  Stated stated;
  int64_t at = 0;       // offset of the current record, or of the current string of an old record
  int64_t oldEnd = -1;  // inside an old record: the offset of its end
  const char* text = nullptr;
  unsigned char codeSet = 0;
  unsigned char language = 0;
  int64_t textLength = 0;
  int64_t available = 0;
  int cut = 0;  // 0 whole, 1 only the closing 0xFF missing, 2 text missing
  nxrows::ClosedText<256> scratch;

  bool InOldRecord() const { return oldEnd >= 0; }
  // The stated bytes from the current position; meaningful when limited.
  int64_t Left() const { return stated.length - at; }
  int64_t Chars() const { return available / Width(codeSet); }

  enum Outcome { kRead, kNoAnswer, kNoHeader };

  // Reads the record (or old string) at `at` in disk form.  kNoAnswer: a cut
  // where no key is ever cut; kNoHeader: the stated bytes don't even hold
  // the record's header, so nothing is known of it.
  Outcome Read(unsigned char format, bool oldRow) {
    cut = 0;
    const unsigned char form = format & 0x0F;
    if (InOldRecord()) return ReadOldString() ? kRead : kNoAnswer;
    const bool limited = stated.Limited();
    int64_t A = limited ? Left() : 0;
    if (limited && A < 2) return kNoHeader;
    const int64_t L = stated.Short(at, form);
    const bool whole = !limited || A >= L + 2;
    const bool old = (format & 0x80) == 0 &&
                     ((whole && stated.Byte(at + L + 1) == 0) || (oldRow && limited && A < L + 2));
    if (old) {
      codeSet = 0;
      language = 0;
      if (limited) {
        if (A - 2 < L)
          cut = 2;
        else
          A -= 1;
      }
      textLength = static_cast<uint16_t>(L - 1);
      text = reinterpret_cast<const char*>(stated.base + at + 2);
      oldEnd = at + 2 + L;
      at += 2;
    } else {
      if (limited && A < 4) return kNoHeader;
      codeSet = static_cast<unsigned char>(stated.Byte(at + 2));
      language = static_cast<unsigned char>(stated.Byte(at + 3));
      text = reinterpret_cast<const char*>(stated.base + at + 4);
      if (limited) {
        if (A - 2 < L)
          cut = A - 1 == L ? 1 : 2;
        else
          A -= 2;
        A -= 2;
      }
      textLength = static_cast<uint16_t>(L - 4);
    }
    available = textLength;
    if (limited) {
      available = A - 2 < textLength ? A - 2 : textLength;
      if (available < 0) available = 0;
      // A length field below the header's own 4 bytes promises more text
      // than the stated bytes hold without the record looking cut: the
      // text is read as far as it goes.
      if (available < textLength) cut = 2;
    }
    return available < textLength && available >= kLongestCut ? kNoAnswer : kRead;
  }

  // A string behind the first one of an old record: it runs to its
  // terminator, within the record and the stated bytes.
  bool ReadOldString() {
    codeSet = 0;
    language = 0;
    int64_t reach = oldEnd - at;
    if (stated.Limited() && Left() < reach) reach = Left();
    if (reach < 0) reach = 0;
    text = reinterpret_cast<const char*>(stated.base + at);
    const void* zero = reach != 0 ? std::memchr(text, 0, static_cast<size_t>(reach)) : nullptr;
    if (zero != nullptr) {
      textLength = static_cast<const char*>(zero) - text;
      available = textLength;
      return true;
    }
    textLength = oldEnd - at - 1 > 0 ? oldEnd - at - 1 : 0;
    available = reach < textLength ? reach : textLength;
    cut = 2;
    return !(available < textLength && available >= kLongestCut);
  }

  // Closes the text where it needs closing: a record's text (whole, or with
  // only its 0xFF missing) is copied and closed, so that a soft cut has no
  // further effect; a hard cut is closed behind the bytes at hand, so that
  // no reader looks behind them.  An old record's string that is whole ends
  // in its own terminator and stays where it stands.
  void Close(bool hasHeader) {
    const unsigned char* from = reinterpret_cast<const unsigned char*>(text);
    if (cut < 2 && hasHeader) {
      char* copy = scratch.Copy(from, static_cast<size_t>(textLength));
      if (copy != nullptr) {
        text = copy;
        cut = 0;
      } else {
        // No memory for the copy: the text at hand counts as cut.
        cut = 2;
      }
    } else if (cut == 2) {
      char* copy = scratch.Copy(from, static_cast<size_t>(available));
      if (copy != nullptr) text = copy;
    }
  }

  // Moves to the next element.  False when the stated bytes end there.
  bool Step() {
    if (InOldRecord()) {
      // The strings of an old record are walked by their terminators: the
      // record's length covers all of them.
      int64_t reach = oldEnd - at;
      if (stated.Limited() && Left() < reach) reach = Left();
      const void* zero =
          reach > 0 ? std::memchr(stated.base + at, 0, static_cast<size_t>(reach)) : nullptr;
      if (zero == nullptr) return false;
      at = static_cast<const unsigned char*>(zero) - stated.base + 1;
      return at < oldEnd && (!stated.Limited() || Left() > 0);
    }
    at += textLength + 6;  // behind the 4-byte header, the text and its 0 and 0xFF
    return !stated.Limited() || Left() > 4;
  }
};

// Two whole key records at collation strength, without wildcards: what
// NxStrCmp gives them, read straight off their orders.  Order text keeps
// one collation state throughout (the key's state byte), so every element
// is one order and its weight.  Elements that count (digits, letters,
// ideographs, and all orders in the unknown states from 20 up) decide at
// the primary level; spaces and symbols pass on both sides at their own
// pace, or vanish with NxCMP_IGNORE_SPACES and NxCMP_IGNORE_SYMBOLS, and
// their differences count last.  Accents are decided by the last difference,
// case by the first, the lower-case letter first.
class OrderText {
 public:
  // `end`: where the orders stop when the text isn't closed by a zero order
  // (a record's text read where it stands); null for a closed text.
  OrderText(const char* text, const char* end, unsigned char state, bool msbFirst)
      : at_(reinterpret_cast<const unsigned char*>(text)),
        end_(reinterpret_cast<const unsigned char*>(end)),
        state_(state),
        msbFirst_(msbFirst) {}

  // Passes the orders that both texts share from their start: equal orders
  // in equal states leave no difference at any level, and both readers stay
  // in step.  False when the texts are equal throughout.
  static bool SkipCommonStart(OrderText& a, OrderText& b) {
    const unsigned char* x = a.at_;
    const unsigned char* y = b.at_;
    for (;;) {
      const unsigned ux = x == a.end_ ? 0u : unsigned{x[0]} | unsigned{x[1]} << 8;
      const unsigned uy = y == b.end_ ? 0u : unsigned{y[0]} | unsigned{y[1]} << 8;
      if (ux != uy) break;
      if (ux == 0) return false;
      x += 2;
      y += 2;
    }
    a.at_ = x;
    b.at_ = y;
    return true;
  }

  // The next element that takes part; true when it is ignorable (its order
  // is then also `pending`), false for one that counts or for the end, at
  // which the reader stays.
  bool Read(unsigned short cmpOp, unsigned short& pending) {
    for (;;) {
      const unsigned short o = Peek();
      if (o != 0) at_ += 2;
      order = o;
      weight = NxStringIterator::WeightOf(o, state_);
      if (o >= 0x3F00 || state_ >= 20 || o == 0) return false;
      if ((cmpOp & (o >= 80 ? kIgnoreSymbols : kIgnoreSpaces)) != 0) continue;
      pending = o;
      return true;
    }
  }

  // True when the next element counts (what Read would stop at without
  // passing anything); Take then reads it.
  bool Counts() const {
    const unsigned short o = Peek();
    return o != 0 && (o >= 0x3F00 || state_ >= 20);
  }
  void Take() {
    order = Peek();
    weight = NxStringIterator::WeightOf(order, state_);
    at_ += 2;
  }

  unsigned short order = 0;
  uint32_t weight = 0;

 private:
  unsigned short Peek() const {
    if (at_ == end_) return 0;
    return static_cast<unsigned short>(msbFirst_ ? at_[0] << 8 | at_[1] : at_[0] | at_[1] << 8);
  }

  const unsigned char* at_;
  const unsigned char* const end_;
  const unsigned char state_;
  const bool msbFirst_;
};

inline int32_t Diff(uint32_t a, uint32_t b) {
  return static_cast<int32_t>(a - b);
}

int32_t CompareOrderTexts(OrderText& a, OrderText& b, unsigned short cmpOp) {
  int32_t caseDiff = 0;
  int32_t accentDiff = 0;
  int32_t spaceDiff = 0;
  for (;;) {
    int32_t passSpace = 0;
    if (a.Counts() && b.Counts()) {
      // The usual step: two elements that count, nothing to pass.
      a.Take();
      b.Take();
    } else {
      bool more1 = true;
      bool more2 = true;
      do {
        unsigned short pending1 = 0;
        unsigned short pending2 = 0;
        if (more1) more1 = a.Read(cmpOp, pending1);
        if (more2) more2 = b.Read(cmpOp, pending2);
        const int32_t d = int32_t{pending1} - int32_t{pending2};
        if (d != 0) passSpace = d;
      } while (more1 || more2);
    }
    const int32_t r = Diff(a.weight & ~0x7Fu, b.weight & ~0x7Fu);
    if (caseDiff == 0) caseDiff = Diff(b.weight & ~0x1Fu, a.weight & ~0x1Fu);
    const int32_t d = Diff(a.weight & ~0x60u, b.weight & ~0x60u);
    if (d != 0) accentDiff = d;
    if (passSpace != 0) spaceDiff = passSpace;
    if (r != 0) return r;
    if (a.order == 0 || b.order == 0) break;
  }
  if (accentDiff != 0 && (cmpOp & NxCMP_IGNORE_ACCENTS) == 0) return accentDiff;
  if (caseDiff != 0 && (cmpOp & NxCMP_IGNORE_CASE) == 0) return caseDiff;
  return spaceDiff;
}

// True when the second key holds no wildcard order: with wildcards on, it
// then compares as with them off.
bool NoWildcardOrders(const char* text, const char* end, bool msbFirst) {
  const unsigned short asterisk = NxStringIterator::AsteriskOrder();
  const unsigned short question = NxStringIterator::QuestionOrder();
  for (const unsigned char* at = reinterpret_cast<const unsigned char*>(text);; at += 2) {
    if (at == reinterpret_cast<const unsigned char*>(end)) return true;
    const unsigned short o =
        static_cast<unsigned short>(msbFirst ? at[0] << 8 | at[1] : at[0] | at[1] << 8);
    if (o == 0) return true;
    if (o == asterisk || o == question) return false;
  }
}

// Keys of code set 254 whose state byte has bit 7 ended early, at a change of
// collation state: the comparison sees the state without the bit, and can't
// tell what came behind.
inline bool EndedAtStateChange(StringOperand& o) {
  if (o.codeSet != kOrderText || (o.language & 0x80) == 0) return false;
  o.language &= 0x7F;
  return true;
}

// A whole key record of order text whose orders can be read in place: no
// part of it missing, a state byte that didn't end early, whole orders.
inline bool WholeKey(const StringOperand& o) {
  return o.cut == 0 && o.codeSet == kOrderText && o.language != 0 && (o.language & 0x80) == 0 &&
         (o.textLength & 1) == 0;
}

// Two whole keys: equal states and equal orders throughout leave nothing
// to weigh.
inline int32_t CompareKeys(const char* text1, const char* end1, unsigned char state1,
                           const char* text2, const char* end2, unsigned char state2,
                           unsigned short cmpOp, bool msbFirst) {
  OrderText a(text1, end1, state1, msbFirst);
  OrderText b(text2, end2, state2, msbFirst);
  return state1 == state2 && !OrderText::SkipCommonStart(a, b) ? 0
                                                               : CompareOrderTexts(a, b, cmpOp);
}

inline int32_t CompareKeys(const StringOperand& one, const char* end1, const StringOperand& two,
                           const char* end2, unsigned short cmpOp, bool msbFirst) {
  return CompareKeys(one.text, end1, one.language, two.text, end2, two.language, cmpOp, msbFirst);
}

// The first record of an operand when it is a whole key record that
// WholeKey would accept, found as StringOperand::Read finds it.
struct KeyAtHand {
  const char* text = nullptr;
  const char* end = nullptr;
  unsigned char state = 0;

  bool Take(const void* value, uint32_t length, unsigned char form) {
    const Stated stated{static_cast<const unsigned char*>(value), length};
    if (stated.Limited() && length < 4) return false;
    const int64_t L = stated.Short(0, form);
    if (L < 4 || (L & 1) != 0 || (stated.Limited() && length < L + 2)) return false;
    const unsigned char* r = stated.base;
    if (r[L + 1] == 0 || r[2] != kOrderText || r[3] == 0 || (r[3] & 0x80) != 0) return false;
    text = reinterpret_cast<const char*>(r + 4);
    end = text + (L - 4);
    state = r[3];
    return true;
  }
};

// Every other case: the operands taken apart record by record.
__attribute__((noinline)) int32_t StringCompareRecords(unsigned char format, uint32_t length1,
                                                       void* value1, uint32_t length2, void* value2,
                                                       unsigned short cmpOp, uint32_t count,
                                                       int& status, unsigned short oldRow) {
  status = 0;
  int32_t result = 0;
  if (count == 0) return 0;
  const unsigned char form = format & 0x0F;

  if (format == 8) {
    // NxString objects: whole by nature, nothing to take apart.
    const unsigned char* at1 = static_cast<const unsigned char*>(value1);
    const unsigned char* at2 = static_cast<const unsigned char*>(value2);
    for (uint32_t i = 0; i < count && result == 0; ++i) {
      const NxString& s1 = *reinterpret_cast<const NxString*>(at1);
      const NxString& s2 = *reinterpret_cast<const NxString*>(at2);
      result = NxStrCmp(s1.codeSet, s1.language, s1.StrGet(), s2.codeSet, s2.language, s2.StrGet(),
                        cmpOp, -1, form, nullptr);
      at1 += nxrows::kStringMemLen;
      at2 += nxrows::kStringMemLen;
    }
    return result;
  }

  StringOperand one;
  StringOperand two;
  one.stated = {static_cast<const unsigned char*>(value1), length1};
  two.stated = {static_cast<const unsigned char*>(value2), length2};
  const bool wildcards = (cmpOp & (kExact | kNoWildcards)) == 0;
  for (uint32_t i = 0;; ++i) {
    const bool header1 = !one.InOldRecord();
    const bool header2 = !two.InOldRecord();
    const StringOperand::Outcome read1 = one.Read(format, oldRow != 0);
    const StringOperand::Outcome read2 =
        read1 == StringOperand::kNoAnswer ? read1 : two.Read(format, oldRow != 0);
    if (read1 == StringOperand::kNoAnswer || read2 == StringOperand::kNoAnswer) {
      status = kNoAnswer;
      return -1;
    }
    if (read1 == StringOperand::kNoHeader || read2 == StringOperand::kNoHeader) {
      status = kPartial;
      return result;
    }
    const bool old1 = header1 && one.InOldRecord();
    const bool old2 = header2 && two.InOldRecord();
    const bool msbFirst = form == 2;

    // Two whole key records, the common case of an index: their orders are
    // read where they stand, bounded by their records, with no copy.
    if (header1 && header2 && !old1 && !old2 && WholeKey(one) && WholeKey(two) &&
        (cmpOp & kExact) == 0) {
      const char* end1 = one.text + one.textLength;
      const char* end2 = two.text + two.textLength;
      if (!wildcards || NoWildcardOrders(two.text, end2, msbFirst)) {
        result = CompareKeys(one, end1, two, end2, cmpOp, msbFirst);
        if (i + 1 >= count || result != 0) break;
        if (!one.Step() || !two.Step()) {
          status = kPartial;
          break;
        }
        continue;
      }
    }

    one.Close(header1 && !old1);
    two.Close(header2 && !old2);
    if (EndedAtStateChange(one)) status = kPartial;
    if (EndedAtStateChange(two)) {
      status = kPartial;
      // A key that stopped at a change of state, held as a pattern against
      // the stored key, is a prefix of what it stands for.
      if (wildcards) two.cut = 1;
    }

    // How far to compare.
    const int64_t n1 = one.Chars();
    const int64_t n2 = two.Chars();
    int64_t limit = -1;
    if (one.cut != 0 || two.cut != 0) {
      bool placed = false;
      if (wildcards) {
        const int16_t w = static_cast<int16_t>(FindWildcard(
            two.codeSet, two.language, two.text, 1, static_cast<unsigned short>(n2), nullptr, form));
        if (w >= 0) {
          // Behind the asterisk anything matches: compare up to it.  A
          // pattern that ends in its only asterisk, against a key that
          // reaches it, is decided for certain.
          limit = n1 < w ? n1 : w;
          const bool certain = one.cut != 0 && two.cut == 0 && (cmpOp & kIgnoreSpaces) == 0 &&
                               w + 1 == n2 && n1 >= w;
          if (!certain) status = kPartial;
          placed = true;
        }
      }
      if (!placed) {
        if (one.cut != 0 && two.cut != 0) {
          limit = n1 < n2 ? n1 : n2;
          status = kPartial;
        } else if (one.cut != 0) {
          limit = n1;
          if (n2 >= n1 || (cmpOp & kIgnoreSpaces) != 0) status = kPartial;
        } else {
          limit = n2;
          if (n1 >= n2 || (cmpOp & kIgnoreSpaces) != 0) status = kPartial;
        }
      }
      const unsigned width1 = Width(one.codeSet);
      const unsigned width2 = Width(two.codeSet);
      if (width1 != 1 && width1 != 2)
        ZENTRO_assert("(CSSize1 == 1) || (CSSize1 == 2)", "src\\nxtypcmp", 835);
      if (width2 != 1 && width2 != 2)
        ZENTRO_assert("(CSSize2 == 1) || (CSSize2 == 2)", "src\\nxtypcmp", 836);
    }

    int prefixResult = 0;
    if (limit == -1 && one.codeSet == kOrderText && two.codeSet == kOrderText &&
        one.language != 0 && two.language != 0 && (cmpOp & kExact) == 0 &&
        (!wildcards || NoWildcardOrders(two.text, nullptr, msbFirst))) {
      // Two whole keys that needed closing.
      result = CompareKeys(one, nullptr, two, nullptr, cmpOp, msbFirst);
    } else {
      result = NxStrCmp(one.codeSet, one.language, one.text, two.codeSet, two.language, two.text,
                        cmpOp, static_cast<short>(limit), form, &prefixResult);
    }

    if (one.cut != 0 || two.cut != 0) {
      if (result == 0 && n1 != n2 && (one.cut == 0) != (two.cut == 0)) {
        // The key goes on behind the text it was held against; or the text
        // ended before the asterisk of the pattern.
        if (one.cut != 0 && limit == n2) result = 1;
        if (two.cut != 0 && limit == n1) result = -1;
      }
      if ((cmpOp & kIgnoreSpaces) != 0) result = prefixResult;
    }

    if (i + 1 >= count || result != 0 || status != 0) break;
    const bool more1 = one.Step();
    const bool more2 = two.Step();
    if (!more1 || !more2) {
      status = kPartial;
      break;
    }
  }
  return result;
}

int32_t StringCompareCore(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                          void* value2, unsigned short cmpOp, uint32_t count, int& status,
                          unsigned short oldRow) {
  if (format != 8 && count == 1 && (cmpOp & kExact) == 0) {
    // One key against one key, both whole: the common case of an index,
    // answered before any operand is taken apart.
    KeyAtHand k1;
    KeyAtHand k2;
    const unsigned char form = format & 0x0F;
    if (k1.Take(value1, length1, form) && k2.Take(value2, length2, form)) {
      status = 0;
      const bool msbFirst = form == 2;
      if ((cmpOp & (kExact | kNoWildcards)) != 0 || NoWildcardOrders(k2.text, k2.end, msbFirst))
        return CompareKeys(k1.text, k1.end, k1.state, k2.text, k2.end, k2.state, cmpOp, msbFirst);
    }
  }

  return StringCompareRecords(format, length1, value1, length2, value2, cmpOp, count, status,
                              oldRow);
}

// ---------------------------------------------------------------------------
// The legacy strings.

// The byte compare: the difference of the first unsigned bytes that differ
// among the first `limit` bytes (0: no limit), the terminator counting as 0.
int32_t PlainCompare(const char* a, const char* b, unsigned short limit) {
  for (uint32_t i = 0; limit == 0 || i < limit; ++i) {
    const int32_t d = static_cast<unsigned char>(a[i]) - static_cast<unsigned char>(b[i]);
    if (d != 0 || a[i] == 0) return d;
  }
  return 0;
}

// The place of the first "?", "*" or "\" in the bytes of `s`, or -1.  The
// escape character counts as a wildcard in these two types.
int FirstWildcard(const char* s) {
  for (int i = 0; s[i] != 0; ++i)
    if (s[i] == '?' || s[i] == '*' || s[i] == '\\') return i;
  return -1;
}

inline unsigned char Escaped(unsigned char c) {
  return c == 'n' ? 10 : c == 'r' ? 13 : c == 't' ? 9 : c;
}

// The legacy wildcard matcher: "*" any run, "?" one character, "\" takes the
// next pattern character as it stands ("\n", "\r", "\t" the control bytes).
// After a mismatch behind a "*" the text is taken up one character further
// on than the last attempt.  `Equal(p, t)` compares a pattern and a text
// character and may end the match early with success.
template <typename Equal>
int Match(const char* pattern, const char* text, Equal equal, bool questionEnds) {
  const unsigned char* p = reinterpret_cast<const unsigned char*>(pattern);
  const unsigned char* t = reinterpret_cast<const unsigned char*>(text);
  const unsigned char* starP = nullptr;
  const unsigned char* starT = nullptr;
  while (*t != 0 || *p != 0) {
    unsigned char c = *p;
    if (c == '*') {
      starP = ++p;
      starT = t;
      continue;
    }
    if (c == '?') {
      if (questionEnds) return 1;
      if (*t == 0) return 0;
      ++t;
      ++p;
      continue;
    }
    const unsigned char* next = p + 1;
    if (c == '\\') {
      if (p[1] == 0) return 0;
      c = Escaped(p[1]);
      next = p + 2;
    }
    if (*t != 0 && c != 0) {
      const int same = equal(c, *t);
      if (same == 2) return 1;
      if (same != 0) {
        ++t;
        p = next;
        continue;
      }
    }
    if (*t == 0 || starP == nullptr) return 0;
    p = starP;
    t = ++starT;
  }
  return 1;
}

int WildcardMatch(const char* pattern, const char* text) {
  return Match(
      pattern, text, [](unsigned char p, unsigned char t) { return p == t ? 1 : 0; }, false);
}

// Two characters are equal when both the order and the extra value of the
// case map agree; a raw side gives its byte as order and 0 as extra value.
// Against raw text a mapped pattern needs the orders alone, and a pattern
// character that sorts as two ends the match with success; so does "?".
int CaseWildcardMatch(const char* pattern, const char* text, unsigned char patternForm,
                      unsigned char textForm) {
  const legacy::ByteMap& map = legacy::kCaseIStringMap;
  const bool rawPattern = (patternForm & 0x80) != 0;
  const bool rawText = (textForm & 0x80) != 0;
  const bool ordersOnly = rawText && !rawPattern;
  return Match(
      pattern, text,
      [&](unsigned char p, unsigned char t) {
        const unsigned po = rawPattern ? p : map.main[p];
        const unsigned pe = rawPattern ? 0 : map.second[p];
        const unsigned to = rawText ? t : map.main[t];
        const unsigned te = rawText ? 0 : map.second[t];
        if (ordersOnly) {
          if (pe > 8) return 2;
          return po == to ? 1 : 0;
        }
        return po == to && pe == te ? 1 : 0;
      },
      rawText);
}

// One operand of a legacy comparator.  In disk form `total` is the record's
// text bytes and `A` those at hand; in memory form both are the bytes of the
// current string with its terminator.
struct LegacyOperand {
  const char* first = nullptr;  // the first string
  const char* s = nullptr;      // the current string
  unsigned char form = 0;
  int64_t total = 0;
  int64_t A = 0;
  nxrows::ClosedText<288> scratch;
};

template <class X>
struct Legacy {
  // Sets a disk operand up: its form byte, its text bytes and those at hand.
  // A cut second operand loses its last byte at hand to a terminator; any
  // other text that isn't closed within its bytes is closed behind them.
  static bool SetUp(LegacyOperand& o, unsigned char format, uint32_t length, const void* value,
                    uint32_t count, bool second, int& status) {
    const unsigned char* record = static_cast<const unsigned char*>(value);
    unsigned char head[3] = {0, 0, 0};
    if (length != 0 && length < 3) {
      std::memcpy(head, record, length);
      record = head;
    }
    const unsigned char sizes = static_cast<unsigned char>(format & ~0x08u);
    const uint64_t bound = length != 0 ? length : UINT64_MAX;
    o.form = record[0];
    o.total = static_cast<int64_t>(legacy::Row<X>::SizeGetWithin(record, sizes, sizes, count, bound)) - 3;
    if (o.total < 0) o.total = 0;
    o.A = o.total;
    if (length != 0 && int64_t{length} - 3 < o.A) o.A = length > 3 ? int64_t{length} - 3 : 0;
    const unsigned char* text = static_cast<const unsigned char*>(value) + 3;
    if (second && o.A < o.total) {
      if (o.A >= kLongestCut) {
        status = kNoAnswer;
        return false;
      }
      char* copy = o.scratch.Copy(text, static_cast<size_t>(o.A));
      if (o.A != 0) copy[o.A - 1] = 0;
      o.first = copy;
    } else if (o.A == 0 || text[o.A - 1] != 0 || o.A < o.total) {
      o.first = o.scratch.Copy(text, static_cast<size_t>(o.A));
      if (o.first == nullptr) o.first = "";
    } else {
      o.first = reinterpret_cast<const char*>(text);
    }
    o.s = o.first;
    return true;
  }

  static void FromMemory(LegacyOperand& o, const X& object) {
    o.s = object.data != nullptr ? object.data : "";
    o.form = object.form;
    o.total = static_cast<int64_t>(std::strlen(o.s)) + 1;
    o.A = o.total;
  }
};

// The table of the legacy comparators.  `caseRow` selects NxCaseIString's
// rules.  Returns the result of one element, and may set `status`.
template <bool kCase>
int32_t LegacyElement(const LegacyOperand& one, const LegacyOperand& two, bool memory,
                      unsigned short cmpOp, int& status) {
  const char* s1 = one.s;
  const char* s2 = two.s;
  const unsigned char form1 = one.form;
  const unsigned char form2 = two.form;
  const bool raw1 = (form1 & 0x80) != 0;
  const bool raw2 = (form2 & 0x80) != 0;
  const bool partial = !memory && one.A != one.total && one.A < two.total;
  const unsigned short atHand = static_cast<unsigned short>(one.A - 1);
  const unsigned char f5 = static_cast<unsigned char>(form1 | 0x20);
  // The legacy compare of the row, with the form of the first text given.
  const auto G = [&](unsigned short n, unsigned char f) {
    return kCase ? LegacyCaseCompare(s1, s2, n, f, form2) : LegacyCompare(s1, s2, n, f, form2);
  };
  const auto P = [&](unsigned short n) { return PlainCompare(s1, s2, n); };
  int32_t result = 0;

  if ((cmpOp & (kNoWildcards | kExact)) != 0) {
    if (raw1) {
      result = P(0);
      if (partial) {
        if (result != 0) result = P(atHand);
        status = kPartial;
      }
    } else {
      result = G(0, form1);
      if (partial) {
        if (result != 0) result = G(atHand, form1);
        status = kPartial;
      }
    }
    return result;
  }

  const int w = FirstWildcard(s2);
  if (w < 0) {
    if (raw1 && raw2) {
      result = P(0);
      if (!memory && one.A <= two.total) {
        if (result != 0) result = P(atHand);
        status = kPartial;
      }
    } else if (raw1) {
      result = G(atHand, form1);
      status = kPartial;
    } else if (!kCase) {
      result = G(0, form1);
      if (partial) {
        if (result != 0) result = G(atHand, form1);
        status = kPartial;
      } else if (result == 0) {
        // Equal by the legacy order: the bytes decide.
        result = P(0);
      }
    } else {
      result = G(0, f5);
      if (partial) {
        if (result != 0) result = G(atHand, f5);
        status = kPartial;
      }
    }
    return result;
  }

  const unsigned short place = static_cast<unsigned short>(w);
  if (!raw1) {
    const int matched = kCase ? CaseWildcardMatch(s2, s1, form2, form1) : WildcardMatch(s2, s1);
    if (matched != 0) return 0;
    if (w == 0) return 1;
    result = G(place, kCase ? f5 : form1);
    return result != 0 ? result : 1;
  }
  if (!kCase) {
    if (std::strcmp(s2, "*") != 0) status = kPartial;
    return 0;
  }

  // NxCaseIString, raw text against a pattern.
  if (w == 0 && std::strcmp(s2, "*") == 0) return 0;
  if (w > one.total - 1) {
    status = kPartial;
    return G(atHand, form1);
  }
  status = kPartial;
  const int m = CaseWildcardMatch(s2, s1, form2, form1);
  const int64_t n2 = static_cast<int64_t>(std::strlen(s2));
  if (!(m == 0 && one.total != one.A && w > one.A - 1) && w + 1 >= n2) {
    if (m != 0) return 0;
    if (w == 0) return 1;
    result = G(place, form1);
    return result != 0 ? result : 1;
  }
  if (w == 0) return 0;
  const int64_t n = w < one.A - 1 ? w : one.A - 1;
  return G(static_cast<unsigned short>(n), form1);
}

template <class X, bool kCase>
int32_t LegacyCompareRow(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                         void* value2, unsigned short cmpOp, uint32_t count, int& status) {
  status = 0;
  if (count == 0) return 0;
  const bool memory = format == 8;
  LegacyOperand one;
  LegacyOperand two;
  if (!memory && (!Legacy<X>::SetUp(two, format, length2, value2, count, true, status) ||
                  !Legacy<X>::SetUp(one, format, length1, value1, count, false, status)))
    return -1;
  const X* objects1 = static_cast<const X*>(value1);
  const X* objects2 = static_cast<const X*>(value2);
  int32_t result = 0;
  for (uint32_t i = 0; i < count && result == 0; ++i) {
    if (memory) {
      Legacy<X>::FromMemory(one, objects1[i]);
      Legacy<X>::FromMemory(two, objects2[i]);
    }
    result = LegacyElement<kCase>(one, two, memory, cmpOp, status);
    if (i + 1 >= count || result != 0 || memory) continue;
    // Behind each string's terminator; an operand whose bytes end there
    // holds no further string.
    one.s += std::strlen(one.s) + 1;
    two.s += std::strlen(two.s) + 1;
    if (one.s - one.first >= one.A || two.s - two.first >= two.A) {
      status = kPartial;
      break;
    }
  }
  return result;
}

}  // namespace

int32_t StringCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                      void* value2, unsigned short cmpOp, uint32_t count, int& status) {
  return StringCompareCore(format, length1, value1, length2, value2, cmpOp, count, status, 0);
}

int32_t OldStringCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                         void* value2, unsigned short cmpOp, uint32_t count, int& status) {
  return StringCompareCore(format, length1, value1, length2, value2, cmpOp, count, status, 1);
}

int32_t NxIStringCompare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                         void* value2, unsigned short cmpOp, uint32_t count, int& status) {
  return LegacyCompareRow<NxIString, false>(format, length1, value1, length2, value2, cmpOp, count,
                                            status);
}

int32_t NxCaseIStringCompare(unsigned char format, uint32_t length1, void* value1,
                             uint32_t length2, void* value2, unsigned short cmpOp, uint32_t count,
                             int& status) {
  return LegacyCompareRow<NxCaseIString, true>(format, length1, value1, length2, value2, cmpOp,
                                               count, status);
}
