// Bounds for a pattern query on an index of sort keys.
//
// A text that a pattern matches at some strength has, element for element,
// the first-level weights of the pattern's elements in front of its first
// wildcard: the comparison can't pass a difference there.  So the sort keys
// of all such texts begin with the first level of those elements, and lie
// between those bytes and the same bytes followed by a byte above every byte
// that can follow them in a key.  Which elements those are, the string
// row's narrowing decides, as it does for the database's own indexes; three
// cases:
//
// - No wildcard (or NxCMP_EXACT, which reads none): the pattern matches
//   exactly the texts equal to it at the strength, whose keys are its own
//   key.  That key is both bounds, a point, where the narrowing would give
//   a range of all texts with the same first level.
// - A wildcard: EvalAndBound of the "NxString" row on the pattern's key
//   record builds a low and a high key record of the orders in front of the
//   wildcard (the high one closed by the highest character, the letters of
//   both widened over case and accents as the options say; the first level
//   holds neither, so the bounds are the same at every strength but the
//   exact one).  The low bound
//   is the first level of the low key's orders, the high bound that of the
//   high key's orders without the closing character, followed by
//   kAboveEveryKey.  A key cut at 254 bytes holds the first 125 of these
//   orders; its bounds still enclose every match and are looser only for
//   patterns whose fixed start is longer than that.  A wildcard in the first
//   place leaves nothing to narrow: the empty key and kAboveEveryKey.
// - A key record ends where the collation state (the script) changes, so
//   when that happens in front of the wildcard, as in "Иван Пет*", whose
//   space is Latin, the narrowed keys hold only "Иван".  The sort key of
//   the text in front of the wildcard runs across scripts; there it gives
//   the tighter bounds and is taken instead.
#ifndef NXTM_SQLITE_BOUNDS_H
#define NXTM_SQLITE_BOUNDS_H

#include <cstdlib>
#include <cstring>

#include <nxtm/nxtm.h>

namespace nxsqlite {

// Follows the first level of a key; above every byte that starts a code of
// the first level and above the byte that closes it.
constexpr unsigned char kAboveEveryKey = 0xFF;

// The first wildcard of a UTF-16 pattern in the memory form, closed by a
// zero unit: its element index and its byte offset.
struct Wildcard {
  bool found = false;
  unsigned short element = 0;
  unsigned short byteOffset = 0;
};

inline Wildcard FirstWildcard(unsigned char codeSet, unsigned char language, const char* pattern,
                              unsigned short cmpOp, unsigned char format) {
  Wildcard w;
  if ((cmpOp & NxCMP_EXACT) != 0) return w;
  unsigned short byteOffset = 65535;
  const unsigned short at = FindWildcard(codeSet, language, pattern, 0, 65535, &byteOffset, format);
  if (at != 65535 && byteOffset != 65535) {
    w.found = true;
    w.element = at;
    w.byteOffset = byteOffset;
  }
  return w;
}

// The pattern's key record is made of its text up to and with the
// wildcard: the narrowing reads no further.  A text record's length field
// holds 16 bits, so at most kRecordUnits units go in; a wildcard behind
// them lies far behind what a narrowed key can hold.
constexpr uint32_t kRecordUnits = 32765;

inline uint32_t RecordUnits(const Wildcard& w) {
  const uint32_t units = w.byteOffset / 2u + 1u;
  return units < kRecordUnits ? units : kRecordUnits;
}

// Bytes of the text record that TextRecord writes.
inline uint32_t TextRecordSize(const Wildcard& w) {
  return 2 * RecordUnits(w) + 6;
}

// The text record of the pattern's start in byte order 1: the length
// field, code set 253, the language, the units, 0 and 0xFF.
inline void TextRecord(unsigned char language, const char* pattern, const Wildcard& w,
                       unsigned char* record) {
  const uint32_t units = RecordUnits(w);
  const uint32_t L = 2 * units + 4;
  record[0] = static_cast<unsigned char>(L);
  record[1] = static_cast<unsigned char>(L >> 8);
  record[2] = NxCS_UNICODE;
  record[3] = language;
  for (uint32_t i = 0; i < units; ++i) {
    uint16_t unit;
    std::memcpy(&unit, pattern + 2 * i, sizeof unit);
    record[4 + 2 * i] = static_cast<unsigned char>(unit);
    record[5 + 2 * i] = static_cast<unsigned char>(unit >> 8);
  }
  record[L] = 0;
  record[L + 1] = 0xFF;
}

// The longest first level of a narrowed key: 125 orders of at most 4 bytes
// each, and kAboveEveryKey.
constexpr uint32_t kLevelRoom = 4 * (NxINDEX_MAX_KEYLEN - 4) / 2 + 1;

struct NarrowedBounds {
  unsigned char low[kLevelRoom];
  uint32_t lowLength = 0;
  unsigned char high[kLevelRoom];
  uint32_t highLength = 0;
  // The pattern's key record ended at a change of state in front of the
  // wildcard: the sort key of the text in front of it is tighter.
  bool endsBeforeWildcard = false;
};

// The end of the orders of a key record (byte order 1) of `length` bytes:
// its length field, or the bytes at hand when it was cut.
inline uint32_t OrdersEnd(const unsigned char* key, uint32_t length) {
  const uint32_t field = key[0] | static_cast<uint32_t>(key[1]) << 8;
  return field < length ? field : length;
}

// Narrows the pattern through the "NxString" row and writes the bounds.
// `textRecord` is the pattern's TextRecord.
inline void Narrow(const NxTypeMgr& manager, unsigned char* textRecord, const Wildcard& w,
                   unsigned short cmpOp, NarrowedBounds& out) {
  // The pattern's key record.  More orders than a narrowed key holds are
  // not needed: a record that runs out of room is closed behind its last
  // order, and the narrowing takes it for the pattern's start.
  constexpr uint32_t kRoom = NxINDEX_MAX_KEYLEN + 6;
  unsigned char key[kRoom + 2];
  const uint32_t textSize = textRecord[0] + 256u * textRecord[1] + 2;
  const uint32_t n = manager.Translate(NxTYPE_NxString, key, NxFORMAT_INDEX_KEY | NxFORMAT_LSB_FIRST,
                                       kRoom, textRecord, NxFORMAT_LSB_FIRST, textSize, 1);
  uint32_t L = key[0] | static_cast<uint32_t>(key[1]) << 8;
  if (L + 2 > n) {  // cut: L is the bytes written
    L = n;
    key[0] = static_cast<unsigned char>(L);
    key[1] = static_cast<unsigned char>(L >> 8);
    key[L] = 0;
    key[L + 1] = 0xFF;
  }
  out.endsBeforeWildcard = (key[3] & 0x80) != 0 && (L - 4) / 2 < w.element;

  // Equality with the pattern, so that both ends are built, and the
  // options' cmpOp bits as the row takes them.
  unsigned short op = static_cast<unsigned short>(1 | cmpOp);
  NxIdxBounds narrowed{nullptr, nullptr, 0, 0};
  manager.EvalAndBound(NxTYPE_NxString, nullptr, op, key, NxFORMAT_LSB_FIRST, 1, &narrowed,
                       nullptr);

  out.lowLength = 0;
  out.highLength = 0;
  if (narrowed.low != nullptr) {
    out.lowLength = NxStrSortKeyFirstLevelFromKey(narrowed.low, narrowed.lowLength, cmpOp,
                                                  NxFORMAT_LSB_FIRST, out.low, kLevelRoom - 1);
  }
  if (narrowed.high != nullptr) {
    const unsigned char* high = static_cast<const unsigned char*>(narrowed.high);
    uint32_t end = OrdersEnd(high, narrowed.highLength);
    if (end >= 6 && high[end - 2] == 0xFE && high[end - 1] == 0xFF) end -= 2;  // the closing
    out.highLength =
        NxStrSortKeyFirstLevelFromKey(high, end, cmpOp, NxFORMAT_LSB_FIRST, out.high, kLevelRoom - 1);
  }
  // The level fits (125 orders of at most 4 bytes); were it longer, its
  // start would still be a bound, only a looser one.
  if (out.lowLength > kLevelRoom - 1) out.lowLength = kLevelRoom - 1;
  if (out.highLength > kLevelRoom - 1) out.highLength = kLevelRoom - 1;
  out.high[out.highLength++] = kAboveEveryKey;
  std::free(narrowed.low);
  std::free(narrowed.high);
}

}  // namespace nxsqlite

#endif
