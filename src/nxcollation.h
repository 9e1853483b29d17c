// Compact collation entries: what the order tables say about each
// character, in eight bytes per character of the BMP, made once when the
// library loads.  The fast readers of the collation (GetNextOrder,
// NxStrCmp, the hash and the sort keys) read a character through one entry
// instead of its record; whatever an entry can't say (contractions,
// characters whose state is 20 by their record, the reserved values from
// 0xFFF0 up) is left to NxStringIterator's general reader, which gives the
// same result.  Internal; not installed.
#ifndef NXTM_SRC_NXCOLLATION_H
#define NXTM_SRC_NXCOLLATION_H

#include <cstdint>
#include <cstring>

#include <nxtm/nxstriter.h>

namespace detail {
namespace collation {

// One character in one code set, as one language reads it:
//   bits  0-15  its order (0 for a character without a record)
//   bits 16-23  the state it sets (20 for a character without a record)
//   bit  24     kSimple: the fast readers may read it
//   bit  25     kStops: it counts in a comparison (order from 0x3F00 up, or
//               a state from 20 up), unlike spaces and symbols
//   bit  26     kSymbol: a symbol (order from 80 up) rather than a space
//   bit  27     kUnknown: no record; the value itself is the order and the
//               state becomes 20 unless the value is a wildcard order
//   bit  28     kExpansion: the orders of the record's expansion follow
//   bit  29     kCounts: one element with a record that counts (kSimple and
//               kStops, an order not 0, neither kUnknown nor kExpansion)
//   bits 32-63  its weight (WeightOf of the order and the state it sets);
//               0 for a character without a record
// The entry of the terminator, value 0, is 0.
using Entry = uint64_t;
constexpr Entry kSimple = Entry{1} << 24;
constexpr Entry kStops = Entry{1} << 25;
constexpr Entry kSymbol = Entry{1} << 26;
constexpr Entry kUnknown = Entry{1} << 27;
constexpr Entry kExpansion = Entry{1} << 28;
constexpr Entry kCounts = Entry{1} << 29;
// An entry that is one element with its weight at hand.
constexpr Entry kKindMask = kSimple | kUnknown | kExpansion;

constexpr unsigned char kUnknownState = 20;

// The hash reads characters below 256 through a table of their weights:
// bits 0-31 the weight, bit 32 for a character that the table can't serve
// (the terminator, contractions, expansions, state 20).
using HashEntry = uint64_t;
constexpr HashEntry kHashSlow = HashEntry{1} << 32;

// What the common run of a comparison needs of a character, in four bytes:
// the weight of a character that counts and is one element with a record
// (bit 31 clear: its state is below 32), kRunIgnorable with the order of a
// space or symbol that is one element, or kRunOther for anything else (the
// end of the text, expansions, characters without a record, ...), for
// which the entry itself must be read.
using RunEntry = uint32_t;
constexpr RunEntry kRunOther = 0x80000000u;
constexpr RunEntry kRunIgnorable = 0xC0000000u;
constexpr RunEntry kRunKind = 0xC0000000u;

inline RunEntry RunEntryOf(Entry entry) {
  if ((entry & kCounts) != 0 && (entry >> 63) == 0) return static_cast<RunEntry>(entry >> 32);
  if ((entry & (kKindMask | kStops)) == kSimple)
    return kRunIgnorable | static_cast<unsigned short>(entry);
  return kRunOther;
}

// The entries of one code set as the languages with one home state and
// one set of variants (none, or a language's own) read it.
struct Reading {
  // The entries of 8-bit text: block 0.
  const Entry* flat;
  // The run entries of the first kFlat values (of 256 in 8-bit code sets).
  const RunEntry* run;
  const Entry* blocks[256];  // 256 entries each
  HashEntry hashed[256];
  const NxOrderTable* table;   // for the records of expansions
  const NxLanguage* language;  // whose variants are resolved; null for none
  unsigned char home;          // the state of text before its first character
};

// The expansion of the character `value` (an entry with kExpansion) as the
// reading's language reads it.
const NxWCharList& ExpansionOf(const Reading& reading, unsigned value);

// A code set with an order table of its own.
struct CodeSet {
  const Reading* reading[255];  // per language; null: the general reader only
  unsigned char home[255];      // per language: the initial state
};

// The asterisk and question orders of NxStringIterator (nxchar.cpp); 0
// until they are first looked up.
extern unsigned short asteriskOrder;
extern unsigned short questionOrder;

// Whether a character without a record sets the state 20: unless its
// value is one of the wildcard orders.
inline bool UnknownSetsState(unsigned short value) {
  const unsigned short asterisk =
      asteriskOrder != 0 ? asteriskOrder : NxStringIterator::AsteriskOrder();
  const unsigned short question =
      questionOrder != 0 ? questionOrder : NxStringIterator::QuestionOrder();
  return value != asterisk && value != question;
}

// Null for code sets without an order table of their own (0, the mapped
// code sets, 254, 255) until the library has loaded.
extern const CodeSet* byNumber[256];

// The code set's entries, or null; language 255 (the default) is not
// resolved here.
inline const CodeSet* CodeSetOf(unsigned char codeSet, unsigned char language) {
  return language == 255 ? nullptr : byNumber[codeSet];
}

constexpr unsigned kFlat = 0x800;

// The entry of a 16-bit value.
inline Entry Lookup(const Reading& r, unsigned value) {
  return r.blocks[value >> 8][value & 0xFF];
}

// The state that the character of an entry sets.
inline unsigned char StateOf(Entry entry) {
  return static_cast<unsigned char>(entry >> 16);
}

// The weight of the character of an entry.
inline uint32_t WeightOf(Entry entry) {
  return static_cast<uint32_t>(entry >> 32);
}

// The weight of a character without a record, in state 20.
inline uint32_t UnknownWeight(unsigned value) {
  return static_cast<uint32_t>(kUnknownState) << 24 | value << 8;
}

// A 16-bit unit by the byte order of a format's low four bits: 8 the memory
// form, 2 most significant byte first, anything else least significant
// first.
inline unsigned short UnitAt(const unsigned char* at, unsigned char form) {
  if (form == 8) {
    unsigned short unit;
    std::memcpy(&unit, at, sizeof unit);
    return unit;
  }
  if (form == 2) return static_cast<unsigned short>((at[0] << 8) | at[1]);
  return static_cast<unsigned short>(at[0] | (at[1] << 8));
}

}  // namespace collation
}  // namespace detail

#endif
