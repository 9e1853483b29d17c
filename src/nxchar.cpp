// NxChar, the character operations NxCharToUpper / NxCharToLower, and
// NxStringIterator: the character cursor and the collation cursor that turns
// text into 16-bit orders.
//
// The constructors that take an NxString live with NxString (nxstring.cpp).
#include <cctype>
#include <cstdlib>
#include <cstring>

#include <nxtm/nxchar.h>
#include <nxtm/nxstring.h>
#include <nxtm/nxstriter.h>

#include "nxcollation.h"

// The process-wide wildcard orders; 0 means not yet looked up.
unsigned short detail::collation::asteriskOrder = 0;
unsigned short detail::collation::questionOrder = 0;

namespace {

// Code set numbers with a meaning of their own.
constexpr unsigned char kNoCodeSet = 0;
constexpr unsigned char kUnicode = 253;
constexpr unsigned char kOrderText = 254;
constexpr unsigned char kDefault = 255;

// Orders from this value up are reserved and never change the state.
constexpr unsigned short kReservedOrders = 0xFFF0;
// The state of characters that the order table doesn't know.
constexpr unsigned char kUnknownState = 20;

void Check(bool condition, const char* expression, int line) {
  if (!condition) ZENTRO_assert(expression, "src\\nxchar", line);
}

// Bytes per character: 16-bit above 224, else 8-bit.
inline unsigned Width(unsigned char codeSet) {
  return codeSet > 224 ? 2u : 1u;
}

// The character at `address`: the byte (unsigned) in 8-bit code sets, the
// 16-bit unit read with `format` otherwise.
inline unsigned short ReadValue(const unsigned char* address, unsigned char codeSet,
                                unsigned char format) {
  if (codeSet <= 224) return *address;
  unsigned short unit = 0;
  ShortStore(&unit, address, format, 1);
  return unit;
}

// The same read in the collation loop, without a call into the base
// library: ShortStore's byte order rule (low four bits of `format`: 8 the
// memory form, 2 most significant byte first, anything else least
// significant byte first) applied in place.
inline unsigned short ReadUnit(const unsigned char* address, unsigned char format) {
  switch (format & 0x0Fu) {
    case 8: {
      unsigned short unit;
      std::memcpy(&unit, address, 2);
      return unit;
    }
    case 2:
      return static_cast<unsigned short>((address[0] << 8) | address[1]);
    default:
      return static_cast<unsigned short>(address[0] | (address[1] << 8));
  }
}

inline unsigned short ReadFast(const unsigned char* address, unsigned char codeSet,
                               unsigned char format) {
  return codeSet <= 224 ? *address : ReadUnit(address, format);
}

// A code set number to look up: 0 stands for the native code set.
inline unsigned char Resolved(unsigned char codeSet) {
  return codeSet == kNoCodeSet ? NxLanguageContext::GetNativeCodeSet() : codeSet;
}

inline unsigned char LanguageOrDefault(unsigned char language) {
  return language == kDefault ? NxLanguageContext::GetDefaultLanguage() : language;
}

using detail::collation::asteriskOrder;
using detail::collation::questionOrder;
unsigned short escapeOrder = 0;

// The order of `character` in the order table of code set 1.
unsigned short DefaultOrderOf(unsigned short character) {
  const NxCodeSet* set = NxLanguageContext::QueryCodeSet(1);
  Check(set != nullptr && set->orderTable != nullptr, "code set 1 has an order table", __LINE__);
  if (set == nullptr || set->orderTable == nullptr) return character;
  const NxOrderRecord* record = set->orderTable->Record(character);
  Check(record != nullptr, "record of a wildcard character", __LINE__);
  return record != nullptr ? record->order : character;
}

unsigned short Wildcard(unsigned short& stored, unsigned short character) {
  if (stored == 0) stored = DefaultOrderOf(character);
  return stored;
}

}  // namespace

// ---------------------------------------------------------------------------
// NxChar: construction and assignment.

NxChar::NxChar(unsigned short c, unsigned char codeSet_, unsigned char language_)
    : position(nullptr),
      value(0),
      codeSet(codeSet_ == kDefault ? NxLanguageContext::GetDefault16CodeSet() : codeSet_),
      language(LanguageOrDefault(language_)),
      format(1) {
  if (codeSet > 224) {
    value = c;
  } else {
    const unsigned char byte = static_cast<unsigned char>(c);
    std::memcpy(&value, &byte, 1);
  }
}

NxChar::NxChar(char c, unsigned char codeSet_, unsigned char language_)
    : position(nullptr),
      value(0),
      codeSet(codeSet_ == kDefault ? NxLanguageContext::GetDefault8CodeSet() : codeSet_),
      language(LanguageOrDefault(language_)),
      format(1) {
  std::memcpy(&value, &c, 1);
}

NxChar::NxChar(const char* position_, unsigned char codeSet_, unsigned char language_,
               unsigned char format_)
    : position(reinterpret_cast<unsigned char*>(const_cast<char*>(position_))),
      value(0),
      codeSet(codeSet_ == kDefault ? NxLanguageContext::GetDefault8CodeSet() : codeSet_),
      language(LanguageOrDefault(language_)),
      format(format_ == kDefault ? 1 : format_) {}

NxChar::NxChar(const NxChar& other)
    : position(nullptr),
      value(0),
      codeSet(other.codeSet),
      language(LanguageOrDefault(other.language)),
      format(1) {
  const unsigned char* source = other.position != nullptr
                                    ? other.position
                                    : reinterpret_cast<const unsigned char*>(&other.value);
  std::memcpy(&value, source, Width(other.codeSet));
}

NxChar::~NxChar() {
  position = nullptr;
}

NxChar& NxChar::operator=(const NxChar& other) {
  if (position == nullptr) {
    // Free-standing: take the other character's bytes and its description.
    const unsigned char* source = other.position != nullptr
                                      ? other.position
                                      : reinterpret_cast<const unsigned char*>(&other.value);
    unsigned short bytes = 0;
    std::memcpy(&bytes, source, Width(other.codeSet));
    value = bytes;
    codeSet = other.codeSet;
    language = other.language;
    format = other.format;
    return *this;
  }
  // A handle: the character goes into the text in the text's code set.
  const NxChar mapped = other.MapTo(codeSet);
  if (codeSet <= 224) {
    std::memcpy(position, &mapped.value, 1);
  } else if (format == mapped.format) {
    std::memcpy(position, &mapped.value, 2);
  } else {
    ShortStore(position, &mapped.value, 2, 1);
  }
  return *this;
}

NxChar& NxChar::operator=(char c) {
  void* address = position != nullptr ? static_cast<void*>(position) : static_cast<void*>(&value);
  CharStore(address, &c, format, 1);
  return *this;
}

NxChar& NxChar::operator=(unsigned short c) {
  void* address = position != nullptr ? static_cast<void*>(position) : static_cast<void*>(&value);
  ShortStore(address, &c, format, 1);
  return *this;
}

unsigned short NxChar::Value() const {
  const unsigned char* address =
      position != nullptr ? position : reinterpret_cast<const unsigned char*>(&value);
  return ReadValue(address, codeSet, format);
}

// ---------------------------------------------------------------------------
// NxChar: order and classes.

unsigned short NxChar::Order() const {
  const unsigned char set = Resolved(codeSet);
  const NxCodeSet* object = NxLanguageContext::QueryCodeSet(set);
  Check(object != nullptr, "code set exists", __LINE__);
  if (object == nullptr) return Value();
  if (object->orderTable == nullptr) {
    // Ordered through Unicode.
    const NxChar own(Value(), set, language);
    return own.MapTo(kUnicode).Order();
  }
  const unsigned short v = Value();
  const NxOrderRecord* record = object->orderTable->Find(v);
  if (record == nullptr) {
    Check(v >= 512, "order record below 512", __LINE__);
    return v;
  }
  return record->order;
}

unsigned short NxChar::IsSpace() const {
  return Order() < 80 ? 1 : 0;
}

unsigned short NxChar::IsSymbol() const {
  const unsigned short order = Order();
  return order >= 80 && order < 16128 ? 1 : 0;
}

unsigned short NxChar::IsDigit() const {
  const unsigned short order = Order();
  return order >= 16128 && order < 16384 ? 1 : 0;
}

unsigned short NxChar::IsAlpha() const {
  const unsigned short order = Order();
  return order >= 16384 && order < 32768 ? 1 : 0;
}

unsigned short NxChar::IsHan() const {
  return Order() >= 32768 ? 1 : 0;
}

// ---------------------------------------------------------------------------
// NxChar: case and code set.

namespace {

// The case properties of a character.  An 8-bit character is widened with
// its sign; the code set looks only at its low byte.
const NxUnicodeProps* CaseProps(const NxChar& c) {
  const unsigned short v = c.codeSet <= 224
                               ? static_cast<unsigned short>(static_cast<signed char>(c.Value()))
                               : c.Value();
  const NxCodeSet* object = NxLanguageContext::QueryCodeSet(c.codeSet);
  Check(object != nullptr, "code set exists", __LINE__);
  return object != nullptr ? object->GetUnicodeProps(v, c.language) : nullptr;
}

}  // namespace

NxChar NxChar::ToUpper(NxStringIterator* overflow) const {
  if (codeSet == kNoCodeSet) {
    const signed char byte = static_cast<signed char>(Value());
    return NxChar(static_cast<char>(std::toupper(byte)), kNoCodeSet, language);
  }
  const NxUnicodeProps* props = CaseProps(*this);
  if (props != nullptr && props->upper != 0) {
    const NxChar result = NxChar(props->upper, kUnicode, language).MapTo(codeSet);
    if (props->upperOverflow.count > 0 && overflow != nullptr)
      overflow->SetOverflow(&props->upperOverflow, kDefault);
    return result;
  }
  return NxChar(*this);
}

NxChar NxChar::ToLower(NxStringIterator*) const {
  if (codeSet == kNoCodeSet) {
    const signed char byte = static_cast<signed char>(Value());
    return NxChar(static_cast<char>(std::tolower(byte)), kNoCodeSet, language);
  }
  const NxUnicodeProps* props = CaseProps(*this);
  if (props != nullptr && props->lower != 0)
    return NxChar(props->lower, kUnicode, language).MapTo(codeSet);
  return NxChar(*this);
}

NxChar NxChar::MapTo(unsigned char target) const {
  if (target == codeSet || target == kNoCodeSet) return NxChar(*this);
  const unsigned char source = Resolved(codeSet);
  const NxCodeSet* object = NxLanguageContext::QueryCodeSet(target);
  Check(object != nullptr, "target code set exists", __LINE__);
  if (object == nullptr) return NxChar(*this);
  return NxChar(object->MapFrom(Value(), source), target, language);
}

// ---------------------------------------------------------------------------
// NxChar: comparison, as one-character texts.

int32_t NxChar::Compare(const NxChar& other, unsigned short cmpOp) const {
  if (cmpOp == 65535) cmpOp = NxLanguageContext::GetDefaultCmpOp();
  // Each character's bytes, as they stand, followed by a terminator: two
  // one-character texts, so that nothing behind a character (the rest of
  // its text, or the fields behind `value`) can continue a contraction.
  alignas(2) unsigned char mine[4] = {0, 0, 0, 0};
  alignas(2) unsigned char theirs[4] = {0, 0, 0, 0};
  std::memcpy(mine, position != nullptr ? position : reinterpret_cast<const unsigned char*>(&value),
              Width(codeSet));
  std::memcpy(theirs,
              other.position != nullptr ? other.position
                                        : reinterpret_cast<const unsigned char*>(&other.value),
              Width(other.codeSet));
  return NxStrCmp(codeSet, language, reinterpret_cast<const char*>(mine), other.codeSet,
                  other.language, reinterpret_cast<const char*>(theirs), cmpOp, 1, 1, nullptr);
}

unsigned short NxChar::operator==(const NxChar& other) const {
  return Compare(other, 65535) == 0 ? 1 : 0;
}
int32_t NxChar::operator!=(const NxChar& other) const {
  return Compare(other, 65535);
}
unsigned short NxChar::operator<(const NxChar& other) const {
  return Compare(other, 65535) < 0 ? 1 : 0;
}
unsigned short NxChar::operator>(const NxChar& other) const {
  return Compare(other, 65535) > 0 ? 1 : 0;
}
unsigned short NxChar::operator<=(const NxChar& other) const {
  return Compare(other, 65535) <= 0 ? 1 : 0;
}
unsigned short NxChar::operator>=(const NxChar& other) const {
  return Compare(other, 65535) >= 0 ? 1 : 0;
}

unsigned short NxChar::operator==(char c) const {
  return *this == NxChar(c, kDefault, kDefault);
}
int32_t NxChar::operator!=(char c) const {
  return *this != NxChar(c, kDefault, kDefault);
}
unsigned short NxChar::operator<(char c) const {
  return *this < NxChar(c, kDefault, kDefault);
}
unsigned short NxChar::operator>(char c) const {
  return *this > NxChar(c, kDefault, kDefault);
}
unsigned short NxChar::operator<=(char c) const {
  return *this <= NxChar(c, kDefault, kDefault);
}
unsigned short NxChar::operator>=(char c) const {
  return *this >= NxChar(c, kDefault, kDefault);
}

unsigned short NxChar::operator==(unsigned short c) const {
  return *this == NxChar(c, kDefault, kDefault);
}
int32_t NxChar::operator!=(unsigned short c) const {
  return *this != NxChar(c, kDefault, kDefault);
}
unsigned short NxChar::operator<(unsigned short c) const {
  return *this < NxChar(c, kDefault, kDefault);
}
unsigned short NxChar::operator>(unsigned short c) const {
  return *this > NxChar(c, kDefault, kDefault);
}
unsigned short NxChar::operator<=(unsigned short c) const {
  return *this <= NxChar(c, kDefault, kDefault);
}
unsigned short NxChar::operator>=(unsigned short c) const {
  return *this >= NxChar(c, kDefault, kDefault);
}

// ---------------------------------------------------------------------------
// Character operations.

NxCharOperation::~NxCharOperation() = default;

NxChar NxCharToUpper::Apply(const NxChar& c, NxStringIterator* iterator) {
  return c.ToUpper(iterator);
}

NxChar NxCharToLower::Apply(const NxChar& c, NxStringIterator* iterator) {
  return c.ToLower(iterator);
}

// ---------------------------------------------------------------------------
// NxStringIterator: construction.

namespace {

// The one-character text of an iterator made from an NxChar.  The iterator
// steps through it like through any text, so `position` doesn't stay at the
// start of the allocation; the text therefore lies inside an aligned block,
// from which any position a few characters around the text leads back to
// the block's start.
constexpr size_t kOwnedBlock = 32;
constexpr size_t kOwnedOffset = 8;

unsigned char* NewOwnedText() {
  void* block = std::aligned_alloc(kOwnedBlock, kOwnedBlock);
  if (block == nullptr) {
    NxCallMemoryHandler(static_cast<uint32_t>(kOwnedBlock));
    return nullptr;
  }
  std::memset(block, 0, kOwnedBlock);
  return static_cast<unsigned char*>(block) + kOwnedOffset;
}

void FreeOwnedText(unsigned char* position) {
  const uintptr_t at = reinterpret_cast<uintptr_t>(position);
  std::free(reinterpret_cast<void*>(at & ~static_cast<uintptr_t>(kOwnedBlock - 1)));
}

unsigned char InitialStateOf(unsigned char codeSet, unsigned char language) {
  const NxCodeSet* object = NxLanguageContext::QueryCodeSet(codeSet);
  Check(object != nullptr, "code set exists", __LINE__);
  return object != nullptr ? object->InitialState(language) : 0;
}

}  // namespace

NxStringIterator::NxStringIterator()
    : position(nullptr),
      codeSet(0),
      language(0),
      state(0),
      overflow(nullptr),
      overflowIndex(0),
      overflowCodeSet(0),
      format(1),
      ownsBuffer(0) {}

// The two text constructors differ only in the code set that 255 stands for.
NxStringIterator::NxStringIterator(const char* text, unsigned char codeSet_,
                                   unsigned char language_, unsigned char format_)
    : NxStringIterator() {
  position = reinterpret_cast<unsigned char*>(const_cast<char*>(text));
  codeSet = codeSet_ == kDefault ? NxLanguageContext::GetDefault8CodeSet() : codeSet_;
  language = LanguageOrDefault(language_);
  format = format_ == kDefault ? 1 : format_;
  state = InitialStateOf(codeSet, language);
}

NxStringIterator::NxStringIterator(unsigned short* text, unsigned char codeSet_,
                                   unsigned char language_, unsigned char format_)
    : NxStringIterator(reinterpret_cast<const char*>(text),
                       codeSet_ == kDefault ? NxLanguageContext::GetDefault16CodeSet() : codeSet_,
                       language_, format_) {}

NxStringIterator::NxStringIterator(NxChar& c)
    : position(nullptr),
      codeSet(c.codeSet),
      language(LanguageOrDefault(c.language)),
      state(0),
      overflow(nullptr),
      overflowIndex(0),
      overflowCodeSet(0),
      format(1),
      ownsBuffer(0) {
  // Room for the character and a terminator, zeroed.
  position = NewOwnedText();
  if (position == nullptr) return;
  ownsBuffer = 1;
  state = InitialStateOf(codeSet, language);
  **this = c;
}

NxStringIterator::NxStringIterator(const NxStringIterator& other)
    : position(other.position),
      codeSet(other.codeSet),
      language(other.language),
      state(other.state),
      overflow(other.overflow),
      overflowIndex(other.overflowIndex),
      overflowCodeSet(other.overflowCodeSet),
      format(other.format),
      ownsBuffer(0) {}

NxStringIterator::NxStringIterator(NxStringIterator* other) : NxStringIterator(*other) {}

NxStringIterator::~NxStringIterator() {
  if (ownsBuffer != 0) FreeOwnedText(position);
  position = nullptr;
  ownsBuffer = 0;
}

NxStringIterator& NxStringIterator::operator=(const NxStringIterator& other) {
  if (this == &other) return *this;
  if (ownsBuffer != 0) FreeOwnedText(position);
  position = other.position;
  codeSet = other.codeSet;
  language = other.language;
  state = other.state;
  overflow = other.overflow;
  overflowIndex = other.overflowIndex;
  overflowCodeSet = other.overflowCodeSet;
  format = other.format;
  ownsBuffer = 0;
  return *this;
}

// ---------------------------------------------------------------------------
// NxStringIterator: stepping and characters.

namespace {

// True while `list` still has an element at `index`.  The count is taken as
// a signed 16-bit number.
inline bool HasPending(const NxWCharList* list, int16_t index) {
  return list != nullptr && index < static_cast<int16_t>(list->count);
}

// Stepping forward: nothing while a pending list has elements left, else
// the list is dropped and the position moves on by one character.
inline void StepForward(NxStringIterator& it) {
  if (HasPending(it.overflow, it.overflowIndex)) return;
  it.overflow = nullptr;
  it.position += Width(it.codeSet);
}

// The current element of the collation walk: the next pending value (taken
// from the list), or the character at the position.  Only its code set and
// value matter, so neither is copied into an NxChar.  A pending value in an
// 8-bit code set keeps only its low byte, as a free-standing character does.
inline unsigned short FetchElement(NxStringIterator& it, unsigned char& elementCodeSet) {
  if (HasPending(it.overflow, it.overflowIndex)) {
    unsigned short element = 0;
    it.overflow->Get(it.overflowIndex, element);
    ++it.overflowIndex;
    elementCodeSet = it.overflowCodeSet;
    return it.overflowCodeSet > 224 ? element : static_cast<unsigned short>(element & 0xFFu);
  }
  elementCodeSet = it.codeSet;
  return it.position != nullptr ? ReadFast(it.position, it.codeSet, it.format) : 0;
}

}  // namespace

NxStringIterator& NxStringIterator::operator++() {
  StepForward(*this);
  return *this;
}

NxStringIterator NxStringIterator::operator++(int) {
  NxStringIterator old(this);
  ++*this;
  return old;
}

NxStringIterator& NxStringIterator::operator--() {
  position -= Width(codeSet);
  return *this;
}

NxStringIterator NxStringIterator::operator--(int) {
  NxStringIterator old(this);
  --*this;
  return old;
}

NxStringIterator& NxStringIterator::Step(unsigned short forward) {
  return forward != 0 ? ++*this : --*this;
}

unsigned short NxStringIterator::operator==(NxStringIterator& other) {
  return position == other.position ? 1 : 0;
}

NxChar NxStringIterator::operator*() {
  if (HasPending(overflow, overflowIndex)) {
    unsigned short element = 0;
    overflow->Get(overflowIndex, element);
    ++overflowIndex;
    return NxChar(element, overflowCodeSet, language);
  }
  return NxChar(reinterpret_cast<const char*>(position), codeSet, language, format);
}

unsigned short NxStringIterator::IsEOS() {
  if (position != nullptr) {
    if (codeSet <= 224 ? position[0] != 0 : (position[0] | position[1]) != 0) return 0;
  }
  return overflow == nullptr ? 1 : 0;
}

void NxStringIterator::SetOverflow(const NxWCharList* list, unsigned char codeSet_) {
  overflowIndex = 0;
  overflow = list;
  overflowCodeSet = codeSet_ == kDefault ? codeSet : codeSet_;
}

// ---------------------------------------------------------------------------
// NxStringIterator: collation.

unsigned short NxStringIterator::GetNextOrder(unsigned short trackState) {
  // Text of orders, as stored key records hold it.
  if (codeSet == kOrderText) {
    if (position == nullptr) return 0;
    const unsigned short unit = ReadUnit(position, format);
    StepForward(*this);
    return unit;
  }

  // A character of a code set with an order table of its own, read through
  // its compact entry, when nothing is pending: everything below but
  // contractions and the values from 0xFFF0 up.
  if (overflow == nullptr && position != nullptr) {
    namespace collation = detail::collation;
    const collation::CodeSet* set = collation::CodeSetOf(codeSet, language);
    const collation::Reading* reading = set != nullptr ? set->reading[language] : nullptr;
    if (reading != nullptr) {
      const bool wide = codeSet > 224;
      const unsigned short v = wide ? ReadUnit(position, format) : *position;
      if (v == 0) return 0;
      const collation::Entry entry = wide ? collation::Lookup(*reading, v) : reading->flat[v];
      switch (entry & collation::kKindMask) {
        case collation::kSimple:
          if (trackState != 0) state = collation::StateOf(entry);
          position += wide ? 2 : 1;
          return static_cast<unsigned short>(entry);
        case collation::kSimple | collation::kExpansion:
          if (trackState != 0) state = collation::StateOf(entry);
          SetOverflow(&collation::ExpansionOf(*reading, v), kOrderText);
          StepForward(*this);
          return static_cast<unsigned short>(entry);
        case collation::kSimple | collation::kUnknown:
          position += wide ? 2 : 1;
          if (trackState != 0 && v != Wildcard(asteriskOrder, '*') &&
              v != Wildcard(questionOrder, '?'))
            state = kUnknownState;
          return v;
        default:
          break;
      }
    }
  }

  // The current element: the next pending value, or the character here.
  unsigned char elementCodeSet;
  unsigned short v = FetchElement(*this, elementCodeSet);

  // An order pending from an expansion.
  if (elementCodeSet == kOrderText) {
    StepForward(*this);
    return v;
  }

  // The order table; code sets without one are ordered through Unicode.
  const unsigned char source = Resolved(elementCodeSet);
  const NxCodeSet* set = NxLanguageContext::QueryCodeSet(source);
  Check(set != nullptr, "code set exists", __LINE__);
  if (set == nullptr) return 0;
  const NxOrderTable* table = set->orderTable;
  const NxCodeSet* unicode = nullptr;  // set when the text is mapped to Unicode
  if (table == nullptr) {
    unicode = NxLanguageContext::QueryCodeSet(kUnicode);
    set = unicode;
    table = unicode->orderTable;
    if (elementCodeSet != kUnicode) v = unicode->MapFrom(v, source);
  }

  // The end of the text: stay on the terminator.
  if (v == 0) return 0;

  const NxOrderRecord* record = table->Find(v);
  if (record == nullptr) {
    // Unknown to the collation: the code value is the order.
    StepForward(*this);
    if (trackState != 0 && v < kReservedOrders && v != Wildcard(asteriskOrder, '*') &&
        v != Wildcard(questionOrder, '?'))
      state = kUnknownState;
    return v;
  }

  // The language's own ordering of this character.
  if (record->hasVariants != 0) {
    const NxLanguage* own = NxLanguageContext::QueryLanguage(language);
    if (own != nullptr && own->specificCollation != 0) {
      for (int32_t i = 0; i < record->languages.count; ++i) {
        const NxLanguage* candidate = nullptr;
        if (record->languages.Get(i, candidate) != 0 || candidate != own) continue;
        const NxOrderRecord* variant = nullptr;
        if (record->variants.Get(i, variant) == 0 && variant != nullptr) record = variant;
        break;
      }
    }
  }

  // Contractions: walk the records as long as the following characters
  // continue a sequence.
  while (record->hasNext != 0 && IsEOS() == 0) {
    StepForward(*this);
    unsigned char nextCodeSet;
    unsigned short next = FetchElement(*this, nextCodeSet);
    // Compared in Unicode when the table is Unicode's.
    if (unicode != nullptr && nextCodeSet != kUnicode)
      next = unicode->MapFrom(next, Resolved(nextCodeSet));

    const NxOrderRecord* continued = nullptr;
    const NxWCharList& chars = record->nextChars;
    for (int32_t i = 0; i < chars.count; ++i) {
      unsigned short candidate = 0;
      if (chars.Get(i, candidate) != 0 || candidate != next) continue;
      const NxOrderRecord* found = nullptr;
      if (record->nextRecords.Get(i, found) == 0 && found != nullptr) {
        continued = found;
        break;
      }
    }
    if (continued == nullptr) {
      position -= Width(codeSet);
      break;
    }
    record = continued;
  }

  const unsigned short order = record->order;
  if (trackState != 0)
    state = record->stateSource != nullptr ? *record->stateSource : set->InitialState(language);
  if (record->hasExpansion != 0) SetOverflow(&record->expansion, kOrderText);
  StepForward(*this);
  return order;
}

void NxStringIterator::Transform(NxStringIterator& target, NxCharOperation& operation) {
  while (IsEOS() == 0) {
    // The source character is a handle (or a pending value); the operation
    // may make further values pending on this iterator.
    const NxChar result = operation.Apply(**this, this);
    *target = result;
    ++target;
    ++*this;
  }
  *target = **this;
  ++target;
  ++*this;
}

// ---------------------------------------------------------------------------
// The wildcard orders.

unsigned short NxStringIterator::AsteriskOrder() {
  return Wildcard(asteriskOrder, '*');
}
unsigned short NxStringIterator::QuestionOrder() {
  return Wildcard(questionOrder, '?');
}
unsigned short NxStringIterator::EscapeOrder() {
  return Wildcard(escapeOrder, '\\');
}
void NxStringIterator::SetAsteriskOrder(unsigned short order) {
  asteriskOrder = order;
}
void NxStringIterator::SetQuestionOrder(unsigned short order) {
  questionOrder = order;
}
void NxStringIterator::SetEscapeOrder(unsigned short order) {
  escapeOrder = order;
}
