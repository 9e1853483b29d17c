// Sort keys: the collation order of NxStrCmp as bytes that memcmp orders.
//
// NxStrCmp without wildcards decides in levels.  It walks both texts element
// by element and stops at the first difference of the weights without their
// case and accent bits (the first level); spaces and symbols of the low
// states are passed over on both sides.  When the texts are equal there,
// three tie-breaks follow: the last difference of the accent bits, the first
// difference of the case bits (the lower case first), and the last
// difference among the passed-over elements.  A key writes the levels one
// after the other, each in an encoding that memcmp orders as the comparison
// orders that level:
//
// - Level 1: per element that counts, its weight without the low 8 bits
//   (state and letter) in a prefix code of 2 to 4 bytes whose first byte
//   never is 0; closed by a 0 byte, which sorts the shorter text first.
// - Accents: the accent of each element that counts, from the last element
//   to the first, so that the last difference comes first.  Both texts have
//   the same number of elements here, so accents of 0 at the end of this
//   reversed list are dropped and runs of them are counted in one byte:
//   0 closes the level, 1..128 stand for runs of 128..1 accents of 0 (a
//   longer run sorts lower, since the other text has an accent where it goes
//   on), 129..159 for the accents 1..31.
// - Case: two bits per element that counts, 3 - case, four to a byte, in
//   text order.  The length follows from the first level, so nothing closes
//   it.
// - Passed-over elements: one group per place before an element that counts
//   and one at the end, from the last group to the first, each group's
//   elements from the last to the first.  A longer group sorts higher (its
//   last element meets nothing in the other text), so a group is its length
//   (129..254 for 1..126, else 255 and two bytes) followed by its orders in
//   two bytes each.  Empty groups are runs as for the accents.
//
// A level that is the last in the key needs no closing byte: a key that ends
// there is the start of the other.  The exact compare (NxCMP_EXACT) compares
// the full weights of all elements one by one, so its key is one level:
// each weight as the first-level code of its high bytes and its low byte.
#include <nxtm/nxsortkey.h>

#include <cstring>

#include <nxtm/nxstring.h>
#include <nxtm/nxstriter.h>

#include "nxcollation.h"

namespace {

constexpr unsigned short kFirstSymbol = 80;
constexpr unsigned short kFirstDigit = 0x3F00;
constexpr unsigned char kUnknownState = 20;
constexpr unsigned char kOrderText = 254;
constexpr uint32_t kMaxElements = 65535;  // NxStrCmp with maxLength -1

// First bytes of the level-1 code.  States 1, 2, 3 (the scripts of the
// order tables) and 20 (characters that the tables don't know) have four
// first bytes each and mostly 2-byte codes; all other states take an escape
// with the state byte.  The first bytes rise with the state, so the codes
// sort as the weights.
constexpr unsigned char kClose = 0x00;
constexpr unsigned char kState0 = 0x01;       // then 2 bytes of the order
constexpr unsigned char kStates4To19 = 0x0E;  // then the state and 2 bytes
constexpr unsigned char kStatesAbove20 = 0x13;
constexpr unsigned char kLastFirstByte = 0x13;

// The first of the four first bytes of a state that has them, or 0.
inline unsigned char BlockOf(unsigned char state) {
  switch (state) {
    case 1:
      return 0x02;
    case 2:
      return 0x06;
    case 3:
      return 0x0A;
    case kUnknownState:
      return 0x0F;
    default:
      return 0;
  }
}

// Writes the level-1 code of `high` (a weight shifted right by 8: state
// and 16 bits) to `out`; returns its length.  Inside a block: orders below
// the digits, digits, letters (0x4000..0x40FF, which holds every letter
// weight), and all higher values.
inline uint32_t EncodeHigh(uint32_t high, unsigned char* out) {
  const unsigned char state = static_cast<unsigned char>(high >> 16);
  const unsigned u = high & 0xFFFFu;
  const unsigned char block = BlockOf(state);
  if (block == 0) {
    uint32_t n = 0;
    if (state == 0) {
      out[n++] = kState0;
    } else {
      out[n++] = state < kUnknownState ? kStates4To19 : kStatesAbove20;
      out[n++] = state;
    }
    out[n++] = static_cast<unsigned char>(u >> 8);
    out[n++] = static_cast<unsigned char>(u);
    return n;
  }
  if (u >= 0x3F00 && u < 0x4100) {
    out[0] = static_cast<unsigned char>(block + 1 + ((u - 0x3F00) >> 8));
    out[1] = static_cast<unsigned char>(u);
    return 2;
  }
  out[0] = static_cast<unsigned char>(u < 0x3F00 ? block : block + 3);
  out[1] = static_cast<unsigned char>(u >> 8);
  out[2] = static_cast<unsigned char>(u);
  return 3;
}

// The length of the level-1 code that begins with `first`, 0 for a byte
// that no code begins with.
inline uint32_t CodeLength(unsigned char first) {
  if (first == kState0) return 3;
  if (first == kStates4To19 || first == kStatesAbove20) return 4;
  if (first == 0 || first > kLastFirstByte) return 0;
  const unsigned char inBlock = static_cast<unsigned char>((first - (first < 0x0F ? 2 : 0x0F)) % 4);
  return inBlock == 1 || inBlock == 2 ? 2 : 3;
}

// The collation elements of a text as NxStrCmp reads them: the general
// reader of NxStringIterator, with a shortcut for characters whose compact
// entry is one element (no contraction, no expansion, a record).
class Elements {
 public:
  // The iterator is made as its constructor would make it; where the code
  // set has entries, without the calls that ask for the home state.
  Elements(unsigned char codeSet, unsigned char language, const char* text, unsigned char format) {
    const detail::collation::CodeSet* set =
        codeSet != 255 ? detail::collation::CodeSetOf(codeSet, language) : nullptr;
    if (set != nullptr) {
      it_.position = reinterpret_cast<unsigned char*>(const_cast<char*>(text));
      it_.codeSet = codeSet;
      it_.language = language;
      it_.state = set->home[language];
      it_.format = format == 255 ? 1 : format;
    } else {
      it_ = NxStringIterator(text, codeSet, language, format);
      set = it_.codeSet != kOrderText ? detail::collation::CodeSetOf(it_.codeSet, it_.language)
                                      : nullptr;
    }
    reading_ = set != nullptr ? set->reading[it_.language] : nullptr;
    wide_ = it_.codeSet > 224;
    byteOrder_ = static_cast<unsigned char>(it_.format & 0x0F);
  }

  // The next order, 0 at the end; `state` is then the iterator's state.
  __attribute__((always_inline)) unsigned short Next() {
    if (++count_ > kMaxElements) return 0;
    if (reading_ != nullptr && it_.overflow == nullptr && it_.position != nullptr) {
      const unsigned short value =
          wide_ ? detail::collation::UnitAt(it_.position, byteOrder_) : *it_.position;
      if (value == 0) return 0;
      const detail::collation::Entry entry =
          wide_ ? detail::collation::Lookup(*reading_, value) : reading_->flat[value];
      if ((entry & detail::collation::kKindMask) == detail::collation::kSimple) {
        it_.state = detail::collation::StateOf(entry);
        it_.position += wide_ ? 2 : 1;
        return static_cast<unsigned short>(entry);
      }
    }
    return it_.GetNextOrder(1);
  }

  unsigned char state() const { return it_.state; }

 private:
  NxStringIterator it_;
  const detail::collation::Reading* reading_ = nullptr;
  uint32_t count_ = 0;
  unsigned char byteOrder_ = 1;
  bool wide_ = false;
};

// The output: bytes beyond `size` are counted but not written.
struct Out {
  unsigned char* key;
  uint32_t size;
  void Put(uint32_t at, unsigned char byte) const {
    if (at < size) key[at] = byte;
  }
};

// What the levels after the first need of one element, as 16 bits: an
// element that counts is 0x8000 with its case and accent bits (the low 7
// bits of its weight); an element passed over is its order (1..0x3EFF).
constexpr uint16_t kCounts = 0x8000;

// A reversed level with runs (accents and passed-over groups).  Filled in
// text order from its end towards its start; with `out` null it only
// measures.
class ReversedLevel {
 public:
  ReversedLevel(const Out* out, uint32_t end) : out_(out), at_(end) {}

  uint32_t length() const { return length_; }

  // An accent of 0 or an empty group.
  __attribute__((always_inline)) void Zero() {
    if (started_) ++zeros_;
  }
  // One byte of a value, written in front of what is there.
  __attribute__((always_inline)) void Byte(unsigned char byte) {
    ++length_;
    if (out_ != nullptr) out_->Put(--at_, byte);
  }
  // The zeros since the last value go in front of the next one.
  __attribute__((always_inline)) void BeginValue() {
    FlushZeros();
    started_ = true;
  }
  // The zeros at the end of the text are the first of the reversed level.
  void Finish(bool close) {
    FlushZeros();
    if (close) Byte(0);
  }

 private:
  void FlushZeros() {
    // In key order: runs of 128, then the rest; written from the back.
    const uint32_t rest = zeros_ % 128;
    if (rest != 0) Byte(static_cast<unsigned char>(129 - rest));
    for (uint32_t i = zeros_ / 128; i != 0; --i) Byte(1);
    zeros_ = 0;
  }

  const Out* out_;
  uint32_t at_;
  uint32_t length_ = 0;
  uint32_t zeros_ = 0;
  bool started_ = false;
};

// The levels after the first, fed with the elements in text order.  With
// `out` null they only measure.
class Tiebreaks {
 public:
  Tiebreaks(const Out* out, bool accents, bool cases, bool passed, uint32_t accentStart,
            uint32_t accentLength, uint32_t caseStart, uint32_t passedStart, uint32_t passedLength,
            bool closeAccents)
      : accents_(out, accentStart + accentLength),
        passed_(out, passedStart + passedLength),
        out_(out),
        caseAt_(caseStart),
        useAccents_(accents),
        useCases_(cases),
        usePassed_(passed),
        closeAccents_(closeAccents) {
    if (out_ != nullptr && closeAccents_) accents_.Finish(true);
  }

  __attribute__((always_inline)) void Add(uint16_t element) {
    if ((element & kCounts) == 0) {
      if (!usePassed_) return;
      if (group_ == 0) passed_.BeginValue();
      passed_.Byte(static_cast<unsigned char>(element));
      passed_.Byte(static_cast<unsigned char>(element >> 8));
      ++group_;
      return;
    }
    CloseGroup();
    ++counted_;
    if (useAccents_) {
      const unsigned char accent = element & 0x1F;
      if (accent == 0) {
        accents_.Zero();
      } else {
        accents_.BeginValue();
        accents_.Byte(static_cast<unsigned char>(128 + accent));
      }
    }
    if (useCases_ && out_ != nullptr) {
      const unsigned bits = 3u - ((element >> 5) & 3u);
      const uint32_t slot = counted_ - 1;
      caseByte_ |= bits << (6 - 2 * (slot % 4));
      if (slot % 4 == 3) {
        out_->Put(caseAt_++, static_cast<unsigned char>(caseByte_));
        caseByte_ = 0;
      }
    }
  }

  void Finish() {
    CloseGroup();
    if (useAccents_) {
      // When writing, the closing byte went first, at the end.
      accents_.Finish(out_ == nullptr && closeAccents_);
    }
    if (useCases_ && out_ != nullptr && counted_ % 4 != 0)
      out_->Put(caseAt_++, static_cast<unsigned char>(caseByte_));
    if (usePassed_) passed_.Finish(false);  // always the last level
  }

  uint32_t counted() const { return counted_; }
  uint32_t accentLength() const { return accents_.length(); }
  uint32_t passedLength() const { return passed_.length(); }

 private:
  // The group of passed-over elements in front of an element that counts,
  // or at the end, is complete: its length goes in front of its orders.
  __attribute__((always_inline)) void CloseGroup() {
    if (!usePassed_) return;
    if (group_ == 0) {
      passed_.Zero();
      return;
    }
    if (group_ < 127) {
      passed_.Byte(static_cast<unsigned char>(128 + group_));
    } else {
      passed_.Byte(static_cast<unsigned char>(group_));
      passed_.Byte(static_cast<unsigned char>(group_ >> 8));
      passed_.Byte(255);
    }
    group_ = 0;
  }

  ReversedLevel accents_;
  ReversedLevel passed_;
  const Out* out_;
  uint32_t caseAt_;
  uint32_t counted_ = 0;
  uint32_t group_ = 0;
  unsigned caseByte_ = 0;
  const bool useAccents_;
  const bool useCases_;
  const bool usePassed_;
  const bool closeAccents_;
};

// Elements kept from the first walk for the second, so that short texts
// are read once.
constexpr uint32_t kKept = 256;

// The next element that takes part in the comparison at `cmpOp`, as 16
// bits (kCounts with case and accent, or the order of an element passed
// over), with the weight of an element that counts; false at the end.
// Spaces and symbols of the low states are passed over, or left out with
// NxCMP_IGNORE_SPACES and NxCMP_IGNORE_SYMBOLS, as NxStrCmp reads them.
inline __attribute__((always_inline)) bool NextElement(Elements& elements, unsigned short cmpOp,
                                                       uint16_t& element, uint32_t& weight) {
  for (;;) {
    const unsigned short order = elements.Next();
    if (order == 0) return false;
    const unsigned char state = elements.state();
    if (order >= kFirstDigit || state >= kUnknownState) {
      weight = NxStringIterator::WeightOf(order, state);
      element = static_cast<uint16_t>(kCounts | (weight & 0x7F));
      return true;
    }
    const unsigned short invisible =
        order >= kFirstSymbol ? NxCMP_IGNORE_SYMBOLS : NxCMP_IGNORE_SPACES;
    if ((cmpOp & invisible) != 0) continue;
    element = order;
    return true;
  }
}

uint32_t ExactKey(Elements& elements, const Out& out) {
  uint32_t length = 0;
  for (;;) {
    const unsigned short order = elements.Next();
    if (order == 0) return length;
    const uint32_t weight = NxStringIterator::WeightOf(order, elements.state());
    unsigned char code[5];
    uint32_t n = EncodeHigh(weight >> 8, code);
    code[n++] = static_cast<unsigned char>(weight);
    for (uint32_t i = 0; i < n; ++i) out.Put(length++, code[i]);
  }
}

}  // namespace

uint32_t NxStrSortKey(unsigned char codeSet, unsigned char language, const char* text,
                      unsigned short cmpOp, unsigned char format, unsigned char* key,
                      uint32_t size) {
  if (language == 254 || (codeSet == kOrderText && language == 0)) return 0;
  if (codeSet == 0) codeSet = NxLanguageContext::GetNativeCodeSet();
  static const char kEmpty[2] = {0, 0};
  if (text == nullptr) text = kEmpty;
  const Out out{key, key != nullptr ? size : 0};

  Elements elements(codeSet, language, text, format);
  if ((cmpOp & NxCMP_EXACT) != 0) return ExactKey(elements, out);

  const bool accents = (cmpOp & NxCMP_IGNORE_ACCENTS) == 0;
  const bool cases = (cmpOp & NxCMP_IGNORE_CASE) == 0;
  const bool passed = (cmpOp & (NxCMP_IGNORE_SPACES | NxCMP_IGNORE_SYMBOLS)) !=
                      (NxCMP_IGNORE_SPACES | NxCMP_IGNORE_SYMBOLS);
  const bool closeFirst = accents || cases || passed;
  const bool closeAccents = accents && (cases || passed);

  // First walk: the first level, and the lengths of the others.
  uint16_t kept[kKept];
  uint32_t keptCount = 0;
  bool allKept = true;
  uint32_t length = 0;
  Tiebreaks measure(nullptr, accents, cases, passed, 0, 0, 0, 0, 0, closeAccents);
  uint16_t element;
  uint32_t weight;
  // The first level goes straight to the key (the pointer and size in
  // locals, which the stores can't change).
  unsigned char* const first = out.key;
  const uint32_t room = out.size;
  while (NextElement(elements, cmpOp, element, weight)) {
    if ((element & kCounts) != 0) {
      unsigned char code[4] = {0, 0, 0, 0};
      const uint32_t n = EncodeHigh(weight >> 8, code);
      if (length + 4 <= room) {
        std::memcpy(first + length, code, 4);
        length += n;
      } else {
        for (uint32_t i = 0; i < n; ++i, ++length)
          if (length < room) first[length] = code[i];
      }
    }
    measure.Add(element);
    if (keptCount < kKept) {
      kept[keptCount++] = element;
    } else {
      allKept = false;
    }
  }
  measure.Finish();
  if (!closeFirst) return length;
  out.Put(length++, kClose);

  const uint32_t accentStart = length;
  const uint32_t caseStart = accentStart + measure.accentLength();
  const uint32_t caseLength = cases ? (measure.counted() + 3) / 4 : 0;
  const uint32_t passedStart = caseStart + caseLength;
  const uint32_t total = passedStart + measure.passedLength();
  if (key == nullptr || size <= accentStart) return total;

  // Second walk: the other levels, from the kept elements or from the text.
  Tiebreaks write(&out, accents, cases, passed, accentStart, measure.accentLength(), caseStart,
                  passedStart, measure.passedLength(), closeAccents);
  if (allKept) {
    for (uint32_t i = 0; i < keptCount; ++i) write.Add(kept[i]);
  } else {
    Elements again(codeSet, language, text, format);
    while (NextElement(again, cmpOp, element, weight)) write.Add(element);
  }
  write.Finish();
  return total;
}

uint32_t NxStrSortKeyFirstLevel(const unsigned char* key, uint32_t length, unsigned short cmpOp) {
  if ((cmpOp & NxCMP_EXACT) != 0 || key == nullptr) return key == nullptr ? 0 : length;
  uint32_t at = 0;
  while (at < length) {
    const uint32_t n = CodeLength(key[at]);
    if (n == 0 || at + n > length) break;
    at += n;
  }
  return at;
}

// ---------------------------------------------------------------------------
// The first level of the orders of a key record.
//
// A key record holds the orders that the iterator read from a text, all in
// the one state of its state byte (the record ends where the state
// changes).  The first level of a sort key is made of the same orders in the
// same state, so it can be written from the record alone: the orders that
// count, each in its level-1 code, or with NxCMP_EXACT every order in its
// exact code.  Nothing closes the level: the result is the bytes that the
// key of the text (or of every text that starts with the record's orders)
// begins with.

namespace {

constexpr uint32_t kKeyHeader = 4;

using detail::collation::UnitAt;

}  // namespace

uint32_t NxStrSortKeyFirstLevelFromKey(const void* record, uint32_t length, unsigned short cmpOp,
                                       unsigned char format, unsigned char* key, uint32_t size) {
  const unsigned char* const r = static_cast<const unsigned char*>(record);
  if (r == nullptr || length < kKeyHeader || r[2] != kOrderText) return 0;
  const unsigned char byteOrder = static_cast<unsigned char>(format & 0x0F);
  // A whole record ends its orders at its length field; a cut one, whose
  // field says more than there is, at the bytes at hand.
  uint32_t end = UnitAt(r, byteOrder);
  if (end > length) end = length;
  const unsigned char state = r[3] & 0x7F;
  const bool exact = (cmpOp & NxCMP_EXACT) != 0;
  const Out out{key, key != nullptr ? size : 0};
  uint32_t written = 0;
  for (uint32_t at = kKeyHeader; at + 2 <= end; at += 2) {
    const unsigned short order = UnitAt(r + at, byteOrder);
    if (order == 0) break;
    // Spaces and symbols of the low states never reach the first level.
    if (!exact && order < kFirstDigit && state < kUnknownState) continue;
    const uint32_t weight = NxStringIterator::WeightOf(order, state);
    unsigned char code[5];
    uint32_t n = EncodeHigh(weight >> 8, code);
    if (exact) code[n++] = static_cast<unsigned char>(weight);
    for (uint32_t i = 0; i < n; ++i) out.Put(written++, code[i]);
  }
  return written;
}
