// Strings and their disk records for the tests of the string key rows: texts
// from UTF-8, text records, key records (whole or cut) and old records, all
// made by the rows themselves.
#ifndef NXTM_TEST_STRING_KEYS_H
#define NXTM_TEST_STRING_KEYS_H

#include <nxtm/nxtm.h>

#include <string>
#include <type_traits>
#include <vector>

#include "names.h"

namespace nxtest {

using Bytes = std::vector<unsigned char>;

// A string of code set 253 (or `codeSet`, mapped there) in `language`.
inline NxString MakeString(const std::string& utf8, unsigned char language = NxLANG_NEUTRAL,
                           unsigned char codeSet = NxCS_UNICODE) {
  const std::u16string units = Utf16(utf8);
  NxString s(reinterpret_cast<const unsigned short*>(units.c_str()));
  s.SetCodeSetCode(NxCS_UNICODE);
  s.language = language;
  if (codeSet != NxCS_UNICODE) s.MapToCodeSet(codeSet);
  return s;
}

// The key record of `s` in byte order `format`, cut to `room` bytes (0: as
// long as the key needs).
inline Bytes KeyRecord(const NxString& s, unsigned char format = 1, uint32_t room = 0) {
  NxString& text = const_cast<NxString&>(s);
  const unsigned char keyFormat = static_cast<unsigned char>(0x80 | format);
  if (room == 0) room = StringSizeGet(&text, 8, keyFormat, 1);
  Bytes key(room + 2);
  key.resize(NxTypeMgr().Translate(NxTYPE_NxString, key.data(), keyFormat, room, &text, 8, 0, 1));
  return key;
}

inline Bytes Key(const std::string& utf8, unsigned char format = 1, uint32_t room = 0,
                       unsigned char language = NxLANG_NEUTRAL) {
  return KeyRecord(MakeString(utf8, language), format, room);
}

// Text records of `count` strings.
inline Bytes TextRecords(const NxString* strings, uint32_t count, unsigned char format = 1) {
  NxString* s = const_cast<NxString*>(strings);
  Bytes disk(StringSizeGet(s, 8, format, count));
  StringStore(disk.data(), s, format, count);
  return disk;
}

// The old record of `count` strings (8-bit text, no code set).
inline Bytes OldRecord(const NxString* strings, uint32_t count, unsigned char format = 1) {
  NxTypeMgr old(0);
  NxString* s = const_cast<NxString*>(strings);
  Bytes disk(old.DiskLenGet(NxTYPE_NxString, s, format, count, 8));
  old.Store(NxTYPE_NxString, disk.data(), s, format, count);
  return disk;
}

// The record of a legacy string array (format 1); `raw` marks it as mapped
// text, as a key is.
template <class X>
Bytes LegacyRecord(std::vector<const char*> texts, bool raw = false) {
  std::vector<X> objects(texts.begin(), texts.end());
  const char id = std::is_same<X, NxIString>::value ? NxTYPE_NxIString
                                                                  : NxTYPE_NxCaseIString;
  NxTypeMgr mgr;
  const uint32_t count = static_cast<uint32_t>(objects.size());
  Bytes disk(mgr.DiskLenGet(id, objects.data(), 1, count, 8));
  mgr.Store(id, disk.data(), objects.data(), 1, count);
  if (raw) disk[0] = 0xC0;
  return disk;
}

// A key record from its state byte and orders, closed by 0 and 0xFF.
inline Bytes OrderKey(unsigned char state, const std::vector<unsigned short>& orders,
                      unsigned char format = 1) {
  Bytes key = {0, 0, NxCS_ORDERS, state};
  for (unsigned short o : orders) {
    key.push_back(static_cast<unsigned char>(format == 2 ? o >> 8 : o));
    key.push_back(static_cast<unsigned char>(format == 2 ? o : o >> 8));
  }
  const unsigned L = static_cast<unsigned>(key.size());
  key[0] = static_cast<unsigned char>(format == 2 ? L >> 8 : L);
  key[1] = static_cast<unsigned char>(format == 2 ? L : L >> 8);
  key.push_back(0);
  key.push_back(0xFF);
  return key;
}

inline int Sign(long v) {
  return (v > 0) - (v < 0);
}

}  // namespace nxtest

#endif
