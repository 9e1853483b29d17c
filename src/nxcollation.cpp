// The compact collation entries (nxcollation.h), made from the order tables
// of nxin when the library loads.  Those tables are constant and valid
// before any static constructor runs; until this file's constructor has
// run, no code set has entries and every reader takes the general way.
#include "nxcollation.h"

#include <nxtm/nxchar.h>

namespace detail {
namespace collation {

const CodeSet* byNumber[256];

namespace {

constexpr unsigned short kFirstSymbol = 80;
constexpr unsigned short kFirstDigit = 0x3F00;
constexpr unsigned kReserved = 0xFFF0;  // from here on a value never sets a state
constexpr unsigned kMaxCodeSets = 8;
constexpr unsigned kMaxCopies = 8;  // readings of languages with variants of their own

// All entries live in one zeroed static area, so that nothing is allocated
// and nothing is left behind when the library is unloaded.  What doesn't
// fit (more order tables than the current data has) is read by the general
// reader.
constexpr size_t kArenaSize = size_t{1} << 20;
alignas(64) unsigned char arena[kArenaSize];
size_t arenaUsed = 0;

template <typename T>
T* Take(size_t count) {
  const size_t bytes = (sizeof(T) * count + 63) & ~size_t{63};
  if (kArenaSize - arenaUsed < bytes) return nullptr;
  T* p = reinterpret_cast<T*>(arena + arenaUsed);
  arenaUsed += bytes;
  return p;
}

// The entry of a record in a language whose home state is `home`.
Entry EntryOf(const NxOrderRecord* r, unsigned char home) {
  const unsigned char state = r->stateSource != nullptr ? *r->stateSource : home;
  Entry entry = Entry{r->order} | Entry{state} << 16 | kSimple;
  // Contractions, and an order 0 (which ends a comparison like the end of
  // the text), are left to the general reader.
  if (r->hasNext != 0 || r->order == 0) entry &= ~kSimple;
  if (r->hasExpansion != 0) {
    entry |= kExpansion;
    // An empty list, or an order 0 in it (the end of a text), is left to
    // the general reader.
    bool plain = r->expansion.count > 0;
    for (int32_t i = 0; i < r->expansion.count; ++i) {
      unsigned short order = 0;
      if (r->expansion.Get(i, order) != 0 || order == 0) plain = false;
    }
    if (!plain) entry &= ~kSimple;
  }
  if (r->order >= kFirstDigit || state >= kUnknownState) entry |= kStops;
  if (r->order >= kFirstSymbol) entry |= kSymbol;
  if ((entry & (kKindMask | kStops)) == (kSimple | kStops) && r->order != 0) entry |= kCounts;
  entry |= Entry{NxStringIterator::WeightOf(r->order, state)} << 32;
  return entry;
}

// The entry of a value without a record.
Entry UnknownEntry(unsigned value) {
  if (value < kReserved) return kSimple | kUnknown | kStops | Entry{kUnknownState} << 16;
  return 0;
}

HashEntry HashEntryOf(Entry entry, unsigned value) {
  if (value == 0 || (entry & kKindMask) != kSimple || static_cast<unsigned short>(entry) == 0)
    return kHashSlow;
  return WeightOf(entry);
}

// The record that a language reads for `r`, as the general reader picks it.
const NxOrderRecord* VariantOf(const NxOrderRecord* r, const NxLanguage* language) {
  if (r == nullptr || r->hasVariants == 0 || language == nullptr ||
      language->specificCollation == 0)
    return r;
  for (int32_t i = 0; i < r->languages.count; ++i) {
    const NxLanguage* candidate = nullptr;
    if (r->languages.Get(i, candidate) != 0 || candidate != language) continue;
    const NxOrderRecord* variant = nullptr;
    if (r->variants.Get(i, variant) == 0 && variant != nullptr) return variant;
    break;
  }
  return r;
}

// Whether any value from `high` << 8 has a record that `language` reads in
// its own way, or one that keeps the home state.
bool HasVariants(const NxOrderTable& table, unsigned high, const NxLanguage* language) {
  for (unsigned low = 0; low < 256; ++low) {
    const NxOrderRecord* r = table.Find(static_cast<unsigned short>(high << 8 | low));
    if (VariantOf(r, language) != r) return true;
  }
  return false;
}

bool HasHomeEntries(const NxOrderTable& table, unsigned high, const NxLanguage* language) {
  for (unsigned low = 0; low < 256; ++low) {
    const NxOrderRecord* r =
        VariantOf(table.Find(static_cast<unsigned short>(high << 8 | low)), language);
    if (r != nullptr && r->stateSource == nullptr) return true;
  }
  return false;
}

// The entries of the 256 values from `high` << 8; null when the area is full.
Entry* BlockOf(const NxOrderTable& table, unsigned high, const NxLanguage* language,
               unsigned char home) {
  Entry* block = Take<Entry>(256);
  if (block == nullptr) return nullptr;
  for (unsigned low = 0; low < 256; ++low) {
    const unsigned value = high << 8 | low;
    const NxOrderRecord* r = VariantOf(table.Find(static_cast<unsigned short>(value)), language);
    block[low] = r != nullptr ? EntryOf(r, home) : UnknownEntry(value);
  }
  // The terminator ends a text whatever its record says: no flag, order 0.
  if (high == 0) block[0] = 0;
  return block;
}

// The run entries of the first kFlat values of a code set of 16-bit
// characters, or of the 256 of an 8-bit code set.  False when the area is
// full.
bool FillRun(Reading& reading, bool wide) {
  const unsigned size = wide ? kFlat : 256;
  RunEntry* run = Take<RunEntry>(size);
  if (run == nullptr) return false;
  for (unsigned v = 0; v < size; ++v) run[v] = RunEntryOf(reading.blocks[v >> 8][v & 0xFF]);
  reading.run = run;
  reading.flat = reading.blocks[0];
  return true;
}

void FillHash(Reading& reading) {
  for (unsigned v = 0; v < 256; ++v) reading.hashed[v] = HashEntryOf(Lookup(reading, v), v);
}

// Blocks without records, below the reserved values, all read alike.
Entry* UnknownBlock() {
  Entry* block = Take<Entry>(256);
  if (block == nullptr) return nullptr;
  for (unsigned low = 0; low < 256; ++low) block[low] = UnknownEntry(low);
  return block;
}

// Whether the block of `high` is read at all, and has records: 8-bit text
// reads block 0 only.
inline bool HasRecords(const NxOrderTable& table, unsigned high, bool wide) {
  if (!wide) return high == 0;
  return high < 2 || high == 0xFF || table.high[high] != nullptr;
}

// The readings of one code set.  Blocks are shared where their entries
// agree: a block without home entries serves every home state, and a
// language's own reading takes its own blocks only where it has variants.
// A reading that doesn't fit into the area is null.
class CodeSetBuilder {
 public:
  CodeSetBuilder(const NxOrderTable& table, const Entry* unknown, bool wide)
      : table_(table), unknown_(unknown), wide_(wide) {}

  const Reading* Plain(unsigned char home) {
    if (plain_[home] != nullptr) return plain_[home];
    Reading* reading = NewReading(nullptr, home);
    if (reading == nullptr) return nullptr;
    for (unsigned high = 0; high < 256; ++high) {
      if (!HasRecords(table_, high, wide_)) {
        reading->blocks[high] = unknown_;
      } else if (first_ != nullptr && !HasHomeEntries(table_, high, nullptr)) {
        reading->blocks[high] = first_->blocks[high];
      } else {
        reading->blocks[high] = BlockOf(table_, high, nullptr, home);
      }
      if (reading->blocks[high] == nullptr) return nullptr;
    }
    if (!FillRun(*reading, wide_)) return nullptr;
    FillHash(*reading);
    if (first_ == nullptr) first_ = reading;
    return plain_[home] = reading;
  }

  const Reading* Own(const NxLanguage* language, unsigned char home) {
    const Reading* plain = Plain(home);
    Reading* reading = plain != nullptr ? NewReading(language, home) : nullptr;
    if (reading == nullptr) return nullptr;
    for (unsigned high = 0; high < 256; ++high) {
      reading->blocks[high] = HasRecords(table_, high, wide_) && HasVariants(table_, high, language)
                                  ? BlockOf(table_, high, language, home)
                                  : plain->blocks[high];
      if (reading->blocks[high] == nullptr) return nullptr;
    }
    if (!FillRun(*reading, wide_)) return nullptr;
    FillHash(*reading);
    return reading;
  }

 private:
  Reading* NewReading(const NxLanguage* language, unsigned char home) {
    Reading* reading = Take<Reading>(1);
    if (reading == nullptr) return nullptr;
    reading->table = &table_;
    reading->language = language;
    reading->home = home;
    return reading;
  }

  const NxOrderTable& table_;
  const Entry* unknown_;
  const bool wide_;
  const Reading* first_ = nullptr;
  const Reading* plain_[256] = {};
};

const struct Builder {
  Builder() {
    const Entry* unknown = UnknownBlock();
    unsigned made = 0;
    for (unsigned number = 1; number <= 253 && made < kMaxCodeSets && unknown != nullptr;
         ++number) {
      const NxCodeSet* set = NxLanguageContext::QueryCodeSet(static_cast<unsigned char>(number));
      if (set == nullptr || set->orderTable == nullptr) continue;
      CodeSet* entries = Take<CodeSet>(1);
      if (entries == nullptr) break;
      CodeSetBuilder readings(*set->orderTable, unknown, number > 224);
      unsigned copies = 0;
      for (unsigned l = 0; l < 255; ++l) {
        const unsigned char language = static_cast<unsigned char>(l);
        const unsigned char home = set->InitialState(language);
        entries->home[language] = home;
        const NxLanguage* own = NxLanguageContext::QueryLanguage(language);
        if (own == nullptr || own->specificCollation == 0) {
          entries->reading[language] = readings.Plain(home);
        } else if (copies < kMaxCopies) {
          ++copies;
          entries->reading[language] = readings.Own(own, home);
        }
      }
      byNumber[number] = entries;
      ++made;
    }
  }
} builder;

}  // namespace

const NxWCharList& ExpansionOf(const Reading& reading, unsigned value) {
  return VariantOf(reading.table->Find(static_cast<unsigned short>(value)), reading.language)
      ->expansion;
}

}  // namespace collation
}  // namespace detail
