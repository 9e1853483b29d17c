// Strings on disk: text records, key records and old records, written out by
// hand from their layout, in both byte orders, through the rows and the
// manager.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using Bytes = std::vector<unsigned char>;

// "08 00 fe 01" -> bytes.
Bytes B(const char* hex) {
  Bytes out;
  for (const char* p = hex; *p != 0;) {
    if (*p == ' ') {
      ++p;
      continue;
    }
    out.push_back(static_cast<unsigned char>(std::strtoul(std::string(p, 2).c_str(), nullptr, 16)));
    p += 2;
  }
  return out;
}
std::string H(const Bytes& b) {
  return nxtest::Hex(b.data(), b.size());
}
std::string H(const void* p, size_t n) {
  return nxtest::Hex(p, n);
}

NxString Wide(const char16_t* text, unsigned char language = 1) {
  NxString s(reinterpret_cast<const unsigned short*>(text));
  s.language = language;
  return s;
}
NxString Narrow(const char* text, unsigned char language = 1) {
  NxString s(text);
  s.language = language;
  return s;
}
std::u16string Units(const NxString& s) {
  std::u16string out(s.Len(), u'\0');
  if (!out.empty()) std::memcpy(&out[0], s.StrGet(), out.size() * 2);
  return out;
}

// The row functions, through the manager as the layers above reach them.
NxTypeMgr current(5);
NxTypeMgr older(0);
constexpr char kString = NxTYPE_NxString;

Bytes Store(const NxString* strings, uint32_t count, unsigned char format,
            NxTypeMgr& mgr = current) {
  const uint32_t size = mgr.DiskLenGet(kString, strings, format, count, 8);
  Bytes out(size + 8, 0xEE);
  const uint32_t written = mgr.Store(kString, out.data(), strings, format, count);
  EXPECT_EQ(written, size);
  out.resize(written);
  return out;
}

// Translate into exactly `room` bytes, with guard bytes behind them that must
// stay untouched.
Bytes Translate(const void* source, unsigned char sourceFormat, uint32_t sourceSize,
                unsigned char destinationFormat, uint32_t room, uint32_t count,
                uint32_t* result = nullptr, NxTypeMgr& mgr = current) {
  Bytes out(room + 16, 0xEE);
  const uint32_t r = mgr.Translate(kString, out.data(), destinationFormat, room,
                                   const_cast<void*>(source), sourceFormat, sourceSize, count);
  for (size_t i = room; i < out.size(); ++i)
    EXPECT_EQ(out[i], 0xEE) << "written behind the room at " << i;
  if (result != nullptr) *result = r;
  out.resize(room);
  return out;
}

// The key of the strings, in a room as large as SizeGet asks for, cut to
// what Translate says it wrote.
Bytes Key(const NxString* strings, uint32_t count, unsigned char format) {
  const uint32_t room = current.DiskLenGet(kString, strings, format, count, 8);
  uint32_t written = 0;
  Bytes key = Translate(strings, 8, 0, format, room, count, &written);
  key.resize(written);
  return key;
}

class StringDisk : public ::testing::Test {
 protected:
  void SetUp() override { NxLanguageContext::ResetDefaults(); }
  void TearDown() override { NxLanguageContext::ResetDefaults(); }
};

// ---------------------------------------------------------------------------
// Text records.

TEST_F(StringDisk, TextRecordsInBothByteOrders) {
  NxString inner("ab\0cd", 5);  // size 6: bytes behind the inner zero are stored
  NxString null;
  null.SetNullValue();
  NxString terminatorOnly;
  terminatorOnly += NxString();
  const NxString ab = Narrow("Ab"), wide = Wide(u"A\u00e9\u20ac", 2), none;
  const struct {
    const NxString& value;
    const char* lsb;
    const char* msb;
  } cases[] = {
      {ab, "0600 01 01 41 62 00ff", "0006 01 01 41 62 00ff"},
      {wide, "0a00 fd 02 4100 e900 ac20 00ff", "000a fd 02 0041 00e9 20ac 00ff"},
      {none, "0400 01 01 00ff", "0004 01 01 00ff"},
      {terminatorOnly, "0400 01 01 00ff", "0004 01 01 00ff"},
      {null, "0400 00 fe 00ff", "0004 00 fe 00ff"},
      {inner, "0900 01 01 6162 00 6364 00ff", "0009 01 01 6162 00 6364 00ff"},
  };
  for (const auto& c : cases) {
    for (unsigned char format : {1, 2}) {
      const Bytes want = B(format == 1 ? c.lsb : c.msb);
      SCOPED_TRACE(H(want));
      EXPECT_EQ(H(Store(&c.value, 1, format)), H(want));
      EXPECT_EQ(current.DiskLenGet(kString, want.data(), format, 1, format), want.size());
      NxString back("garbage");
      EXPECT_EQ(current.Load(kString, &back, want.data(), format, 1), want.size());
      EXPECT_EQ(back.codeSet, c.value.codeSet);
      EXPECT_EQ(back.language, c.value.language);
      // A text of nothing but its terminator comes back without a buffer.
      EXPECT_EQ(back.size, c.value.Len() == 0 && c.value.size <= 2 ? 0 : c.value.size);
      EXPECT_EQ(back.IsNullValue(), c.value.IsNullValue());
      if (back.size != 0) {
        EXPECT_EQ(0, std::memcmp(back.data, c.value.data, back.size));
      }
    }
  }
  // An array is the records one behind the other; NullSizeGet counts 6 each.
  const NxString array[] = {Narrow("Ab"), null, Wide(u"\u20ac", 2)};
  EXPECT_EQ(H(Store(array, 3, 2)),
            H(B("0006 01 01 41 62 00ff 0004 00 fe 00ff 0006 fd 02 20ac 00ff")));
  EXPECT_EQ(current.RowGet(kString)->NullSizeGet(3), 18u);
  NxString loaded[3];
  const Bytes disk = Store(array, 3, 1);
  EXPECT_EQ(StringLoad(loaded, disk.data(), 1, 3), disk.size());
  EXPECT_EQ(Units(loaded[2]), u"\u20ac");
  EXPECT_TRUE(loaded[1].IsNullValue());
  EXPECT_EQ(StringLoad(loaded, disk.data(), 1, 0), 0u);
}

TEST_F(StringDisk, TheLongestTextTheLengthFieldHolds) {
  nxtest::AssertRecorder asserts;
  Bytes disk(65537 + 8);
  // 65531 8-bit characters: L = 65535, the record takes 65537 bytes, and the
  // results, 16 bits wide, say 1.
  const NxString longest(std::string(65531, 'x').c_str());
  EXPECT_EQ(StringSizeGet(&longest, 8, 1, 1), 65537u);
  EXPECT_EQ(StringStore(disk.data(), &longest, 1, 1), 1u);
  EXPECT_EQ(H(disk.data(), 5), "ffff010178");
  EXPECT_EQ(H(disk.data() + 65534, 3), "7800ff");
  NxString back;
  EXPECT_EQ(StringLoad(&back, disk.data(), 1, 1), 1u);
  EXPECT_EQ(back.Len(), 65531);
  EXPECT_TRUE(asserts.reports().empty());
  // One more is more than the field can state: the record keeps 65531
  // characters, and the loss is reported.
  const NxString tooLong(std::string(65532, 'y').c_str());
  ASSERT_EQ(tooLong.Len(), 65532);
  EXPECT_EQ(StringSizeGet(&tooLong, 8, 2, 1), 65537u);
  StringStore(disk.data(), &tooLong, 2, 1);
  EXPECT_EQ(H(disk.data(), 5), "ffff010179");
  EXPECT_EQ(H(disk.data() + 65534, 3), "7900ff");
  ASSERT_EQ(asserts.reports().size(), 1u);
  // The longest 16-bit text has room to spare.
  const NxString wide = Wide(std::u16string(32765, u'\u0416').c_str());
  EXPECT_EQ(StringSizeGet(&wide, 8, 2, 1), 32765u * 2 + 6);
  StringStore(disk.data(), &wide, 2, 1);
  EXPECT_EQ(H(disk.data(), 6), "fffefd010416");
  StringLoad(&back, disk.data(), 2, 1);
  EXPECT_EQ(Units(back), std::u16string(32765, u'\u0416'));
}

TEST_F(StringDisk, SizeFromAFile) {
  const Bytes two = B("0600 01 01 41 62 00ff 0500 01 01 43 00ff");
  struct {
    uint32_t bytes;  // of the file
    uint32_t count;
    uint32_t size;
  } cases[] = {
      {15, 2, 15},        // both records whole
      {15, 1, 8},         // the first
      {10, 2, 8 + 7},     // the last record is not looked into
      {6, 2, 2 * 65535},  // the first record reaches behind the end
      {1, 1, 65535},      // not even its length field is there
      {0, 1, 0},          // the file gives nothing
  };
  for (const auto& c : cases) {
    MemFile file(two.data(), static_cast<int32_t>(c.bytes));
    EXPECT_EQ(current.DiskLenGetFromMemFile(kString, &file, 1, c.count), c.size)
        << c.bytes << " " << c.count;
  }
  // An old record counts at once; with the key form, each record counts
  // the room of its key.
  const Bytes old = B("0400 61 00 62 00");
  MemFile oldFile(old.data(), 6);
  EXPECT_EQ(current.DiskLenGetFromMemFile(kString, &oldFile, 1, 2), 6u);
  MemFile keyFile(two.data(), 15);
  EXPECT_EQ(current.DiskLenGetFromMemFile(kString, &keyFile, 0x81, 2), (6 * 4 + 2) + (5 * 4 + 2u));
  EXPECT_EQ(current.DiskLenGetFromMemFile(kString, &keyFile, 0xA1, 2), 15u);  // code set dropped
  // The old row: L taken as a signed number.
  const Bytes negative = B("ffff");
  MemFile negativeFile(negative.data(), 2);
  EXPECT_EQ(older.DiskLenGetFromMemFile(kString, &negativeFile, 1, 1), 1u);
  MemFile oneByte(negative.data(), 1);
  EXPECT_EQ(older.DiskLenGetFromMemFile(kString, &oneByte, 1, 1), 0u);
}

TEST_F(StringDisk, KeyRoom) {
  const NxString strings[] = {Narrow("Ab"), Wide(u"Ab"), NxString(254, 0)};
  // Two orders per character at worst: d x 4 for 8-bit text, d x 2 for 16-bit
  // text; order text is not made into orders again.
  EXPECT_EQ(StringSizeGet(strings, 8, 0x81, 1), 4 * 4 + 4u);
  EXPECT_EQ(StringSizeGet(strings + 1, 8, 0x81, 1), 6 * 2 + 4u);
  EXPECT_EQ(StringSizeGet(strings + 2, 8, 0x81, 1), 6u);
  EXPECT_EQ(StringSizeGet(strings, 8, 0xA1, 1), 8u);  // dropped code set: no orders
  const Bytes disk = Store(strings, 3, 2);
  EXPECT_EQ(StringSizeGet(disk.data(), 2, 0x82, 3), (6 * 4 + 2) + (8 * 2 + 2) + 6u);
}

// ---------------------------------------------------------------------------
// Key records.  The orders are read off the collation's bit fields: a letter
// is 0x4000 + case (0x1000 for lower case) + letter number (3 for "a") x 4.

TEST_F(StringDisk, KeyRecordsInBothByteOrders) {
  const NxString ab[] = {Narrow("Ab"), Wide(u"Ab")};
  for (const NxString& s : ab) {
    EXPECT_EQ(H(Key(&s, 1, 0x81)),
              "0800fe01"
              "0c40"
              "1050"
              "00ff");
    EXPECT_EQ(H(Key(&s, 1, 0x82)),
              "0008fe01"
              "400c"
              "5010"
              "00ff");
  }
  // The key of a record equals the key of the string, whatever byte order
  // either stands in.
  for (const NxString& s : ab) {
    for (unsigned char from : {1, 2}) {
      const Bytes record = Store(&s, 1, from);
      uint32_t n = 0;
      Bytes key =
          Translate(record.data(), from, static_cast<uint32_t>(record.size()), 0x82, 40, 1, &n);
      key.resize(n);
      EXPECT_EQ(H(key), "0008fe01400c501000ff");
    }
  }
  // Keys of an array, one behind the other; empty and null strings.
  NxString null;
  null.SetNullValue();
  const NxString array[] = {Narrow("b"), NxString(), Wide(u"A")};
  EXPECT_EQ(H(Key(array, 3, 0x81)),
            "0600fe011050"
            "00ff"
            "0400fe01"
            "00ff"
            "0600fe010c40"
            "00ff");
  // A null string has code set 0: it becomes a key only when the native code
  // set is named for it, and then its state byte is 0.
  EXPECT_EQ(H(Key(&null, 1, 0x81)), "040000fe00ff");
  EXPECT_EQ(H(Key(&null, 1, 0xC1)), "0400fe0000ff");
  // Order text stays as it is.
  NxString orders(254, 1);
  const Bytes keyRecord = B("0600 fe 01 0c40 00ff");
  StringLoad(&orders, keyRecord.data(), 1, 1);
  EXPECT_EQ(orders.codeSet, 254);
  EXPECT_EQ(H(Key(&orders, 1, 0x81)), "0600fe010c4000ff");
}

TEST_F(StringDisk, KeysCutAtEveryLength) {
  for (const NxString& s : {Narrow("Lefebvre"), Wide(u"Dvo\u0159\u00e1k")}) {
    for (unsigned char format : {1, 2}) {
      const Bytes whole = Key(&s, 1, static_cast<unsigned char>(0x80 | format));
      ASSERT_EQ(whole[whole.size() - 2], 0);
      ASSERT_EQ(whole.back(), 0xFF);
      for (uint32_t room = 0; room <= whole.size() + 3; ++room) {
        SCOPED_TRACE(room);
        uint32_t n = 0;
        const Bytes key =
            Translate(&s, 8, 0, static_cast<unsigned char>(0x80 | format), room, 1, &n);
        if (room <= 4) {
          EXPECT_EQ(n, 0u);
          continue;
        }
        if (room >= whole.size()) {
          EXPECT_EQ(n, whole.size());
          EXPECT_EQ(H(key.data(), n), H(whole));
          continue;
        }
        // Cut: whole orders only, no closing bytes, L is the bytes written,
        // so L + 2 lies behind the bytes at hand.
        const uint32_t written = 4 + (room - 4) / 2 * 2;
        EXPECT_EQ(n, written);
        const uint32_t length = format == 2 ? key[0] << 8 | key[1] : key[1] << 8 | key[0];
        EXPECT_EQ(length, written);
        EXPECT_GT(length + 2, room);
        EXPECT_EQ(H(key.data() + 2, written - 2), H(whole.data() + 2, written - 2));
        // A cut key loads as the orders that it holds.
        NxString back;
        EXPECT_EQ(current.Translate(kString, &back, 8, 0, const_cast<unsigned char*>(key.data()),
                                    static_cast<unsigned char>(0x80 | format), n, 1),
                  n + 2);
        EXPECT_EQ(back.codeSet, 254);
        EXPECT_EQ(back.Len(), (written - 4) / 2);
      }
    }
  }
}

TEST_F(StringDisk, StateChangesInsideAKey) {
  // Latin letters set state 1, Greek letters state 2.  Neutral text starts in
  // state 1: a Greek letter ends its key, with bit 7 in the state byte.
  const NxString mixed = Wide(u"ab\u03b1b");
  EXPECT_EQ(H(Key(&mixed, 1, 0x81)),
            "0800fe81"
            "0c50"
            "1050"
            "00ff");
  // Greek text starts in state 2; the first letter's state counts as the
  // key's own, before anything is written.
  const NxString latinInGreek = Wide(u"ab", 7);
  EXPECT_EQ(H(Key(&latinInGreek, 1, 0x81)),
            "0800fe01"
            "0c50"
            "1050"
            "00ff");
  const NxString greek = Wide(u"\u03b1b", 7);
  EXPECT_EQ(H(Key(&greek, 1, 0x81)),
            "0600fe82"
            "0c50"
            "00ff");
  // After the first element, a first letter that changes the state already
  // ends the key: the count of written orders runs on through the call.
  const NxString pair[] = {Wide(u"a"), Wide(u"ab", 7)};
  EXPECT_EQ(H(Key(pair, 2, 0x81)),
            "0600fe01"
            "0c50"
            "00ff"
            "0400fe82"
            "00ff");
  // A character without a record puts the text in state 20.
  const NxString unknown = Wide(u"a\u4e00");
  EXPECT_EQ(H(Key(&unknown, 1, 0x81)),
            "0600fe81"
            "0c50"
            "00ff");
}

// The key that an iterator on the string gives: its orders up to the first
// change of state, as Translate writes them in `format`.
std::string IteratorKey(const NxString& s, unsigned char format) {
  NxString copy(s);
  NxStringIterator it(copy);
  unsigned char state = it.state;
  Bytes key{0, 0, 254, 0};
  for (bool first = true;; first = false) {
    unsigned short o = it.GetNextOrder(1);
    if (it.state != state) {
      if (!first) {
        state |= 0x80;
        o = 0;
      } else if (o != 0) {
        state = it.state;
      }
    }
    key.push_back(static_cast<unsigned char>(format == 2 ? o >> 8 : o));
    key.push_back(static_cast<unsigned char>(format == 2 ? o : o >> 8));
    if (o == 0) break;
  }
  key.back() = 0xFF;
  const size_t l = key.size() - 2;
  key[0] = static_cast<unsigned char>(format == 2 ? l >> 8 : l);
  key[1] = static_cast<unsigned char>(format == 2 ? l : l >> 8);
  key[3] = state;
  return H(key);
}

// Keys of strings and of their records, in either byte order, hold the
// orders that an iterator on the string gives.  The texts come from a rich
// alphabet (accents, expansions, contractions, Greek, Cyrillic, characters
// without a record, digits, symbols), in every language, in 8-bit and
// 16-bit code sets; and long texts put the Spanish contraction "ch" at every
// place around the part of a text that the key reader takes from a copy.
TEST_F(StringDisk, KeysHoldTheIteratorsOrders) {
  std::vector<NxString> texts;
  const char16_t alphabet[] =
      u"aAeE\u00e9\u00c9\u00fc\u00df\u00e6\u0153chllCHLL\u00f1\u0159 09-.,'&*?"
      u"\u03b1\u03b2\u0416\u0436\u4e00\u20ac\u00e5\u00f8\u00e4";
  const size_t letters = sizeof alphabet / sizeof alphabet[0] - 1;
  uint32_t seed = 7;
  for (int round = 0; round < 600; ++round) {
    std::u16string text;
    for (size_t k = 0; k < static_cast<size_t>(round % 23); ++k) {
      seed = seed * 1103515245u + 12345u;
      text += alphabet[(seed >> 8) % letters];
    }
    texts.push_back(Wide(text.c_str(), static_cast<unsigned char>(round % 9)));
    if ((round / 9) % 3 != 0) texts.back().MapToCodeSet(static_cast<unsigned char>(1 + round % 5));
  }
  for (size_t at = 36; at < 180; ++at) {
    if (at == 50) at = 164;
    std::string text(300, 'a');
    text.replace(298, 2, "ch");
    text.replace(at, 2, "ch");
    texts.push_back(Narrow(text.c_str(), 3));
    texts.push_back(Wide(std::u16string(text.begin(), text.end()).c_str(), 3));
  }
  for (const NxString& s : texts) {
    for (unsigned char format : {1, 2}) {
      const unsigned char keyFormat = static_cast<unsigned char>(0x80 | format);
      const std::string want = IteratorKey(s, format);
      ASSERT_EQ(H(Key(&s, 1, keyFormat)), want);
      const Bytes record = Store(&s, 1, format);
      uint32_t n = 0;
      Bytes fromRecord =
          Translate(record.data(), format, static_cast<uint32_t>(record.size()), keyFormat,
                    StringSizeGet(record.data(), format, keyFormat, 1), 1, &n);
      fromRecord.resize(n);
      ASSERT_EQ(H(fromRecord), want);
    }
  }
}

// The longest contraction of every order table stays far below the 128
// characters that the key reader keeps in its closed copy.
int ContractionDepth(const NxOrderRecord* record, int depth) {
  if (record == nullptr || record->hasNext == 0 || depth > 200) return depth;
  int deepest = depth;
  for (int32_t i = 0; i < record->nextRecords.count; ++i) {
    const NxOrderRecord* next = nullptr;
    if (record->nextRecords.Get(i, next) == 0)
      deepest = std::max(deepest, ContractionDepth(next, depth + 1));
  }
  return deepest;
}

TEST_F(StringDisk, ContractionsAreShort) {
  int deepest = 0;
  for (int number = 1; number <= 253; ++number) {
    const NxCodeSet* set = NxLanguageContext::QueryCodeSet(static_cast<unsigned char>(number));
    if (set == nullptr || set->orderTable == nullptr) continue;
    for (unsigned v = 1; v < 65536; ++v) {
      const NxOrderRecord* record = set->orderTable->Find(static_cast<unsigned short>(v));
      deepest = std::max(deepest, ContractionDepth(record, 1));
      if (record == nullptr) continue;
      for (int32_t i = 0; i < record->variants.count; ++i) {
        const NxOrderRecord* variant = nullptr;
        if (record->variants.Get(i, variant) == 0)
          deepest = std::max(deepest, ContractionDepth(variant, 1));
      }
    }
  }
  EXPECT_GT(deepest, 1);
  EXPECT_LT(deepest, 16);
}

TEST_F(StringDisk, KeysFromCutSources) {
  // A record cut inside its text gives a key cut where the text ends: no
  // zero order, L counts the bytes written.
  const NxString s = Narrow("Abc");
  const Bytes record = Store(&s, 1, 1);  // 07 00 01 01 41 62 63 00 ff
  for (uint32_t size = 4; size <= record.size(); ++size) {
    SCOPED_TRACE(size);
    uint32_t n = 0;
    const Bytes key = Translate(record.data(), 1, size, 0x81, 64, 1, &n);
    if (size >= record.size() - 1) {  // text and its 0 at hand: a whole key
      EXPECT_EQ(H(key.data(), n),
                "0a00fe010c4010501450"
                "00ff");
    } else {
      const uint32_t orders = size - 4;
      EXPECT_EQ(n, 4 + 2 * orders);
      EXPECT_EQ(key[0], 4 + 2 * orders);
      EXPECT_EQ(H(key.data() + 4, 2 * orders), std::string("0c4010501450").substr(0, 4 * orders));
    }
  }
}

// ---------------------------------------------------------------------------
// Old records and translation between the forms.

TEST_F(StringDisk, OldRecordsOfArrays) {
  const NxString array[] = {Narrow("ab"), NxString(), Narrow("c")};
  const Bytes lsb = B("0600 6162 00 00 63 00");
  EXPECT_EQ(H(Store(array, 3, 1, older)), H(lsb));
  EXPECT_EQ(H(Store(array, 3, 2, older)), "0006616200006300");
  EXPECT_EQ(older.DiskLenGet(kString, lsb.data(), 1, 3, 1), 8u);
  // 16-bit text goes in the default 8-bit code set, character for character.
  const NxString wide = Wide(u"\u00e9\u20ac\u0416");
  EXPECT_EQ(H(Store(&wide, 1, 1, older)), "0400e9803f00");
  // Either row loads it: each string gets the default code set and language.
  for (NxTypeMgr* mgr : {&current, &older}) {
    NxString back[3];
    EXPECT_EQ(mgr->Load(kString, back, lsb.data(), 1, 3), 8u);
    EXPECT_STREQ(back[0].StrGet(), "ab");
    EXPECT_EQ(back[1].Len(), 0);
    EXPECT_STREQ(back[2].StrGet(), "c");
    EXPECT_EQ(back[2].codeSet, NxString::GetDefault8CodeSet());
  }
  // A record of count 1 whose stated end lies behind the bytes at hand is
  // never an old record, even with a zero there.
  const Bytes cut = B("0a00 01 01 41 42 43 00");
  NxString one;
  EXPECT_EQ(current.Translate(kString, &one, 8, 0, const_cast<unsigned char*>(cut.data()), 1, 8, 1),
            10u);
  EXPECT_EQ(one.codeSet, 1);
  EXPECT_STREQ(one.StrGet(), "ABC");
}

TEST_F(StringDisk, OldRecordsToTextRecordsAndBack) {
  const Bytes old = B("0600 6162 00 00 63 00");
  uint32_t n = 0;
  // The old record's zero closes the text; code set 0 (or the native one
  // when the format names it), language 0.  The result counts up to the 0.
  Bytes text = Translate(old.data(), 1, 8, 1, 11, 1, &n);
  EXPECT_EQ(H(text),
            "0900"
            "00"
            "00"
            "616200006300"
            "ff");
  EXPECT_EQ(n, 10u);
  EXPECT_EQ(H(Translate(old.data(), 0x41, 8, 0x41, 11, 1)),
            "0900"
            "01"
            "00"
            "616200006300"
            "ff");
  EXPECT_EQ(H(Translate(old.data(), 1, 8, 1, 9, 1, &n)), "090000006162000063");  // cut: no 0xFF
  EXPECT_EQ(n, 9u);
  // Back through the old row: code set, language and 0xFF go.
  EXPECT_EQ(H(Translate(text.data(), 1, 11, 1, 8, 1, &n, older)), H(old));
  EXPECT_EQ(n, 8u);
  // The same from memory: the old row stores, the current row reads it back.
  const NxString array[] = {Narrow("Zürich"), Narrow("x")};
  Bytes oldImage(32);
  n = older.Translate(kString, oldImage.data(), 1, 32, const_cast<NxString*>(array), 8, 0, 2);
  EXPECT_EQ(n, 2 + 8 + 2u);  // "Zürich" is 7 bytes of UTF-8 here
  NxString back[2];
  EXPECT_EQ(current.Translate(kString, back, 8, 0, oldImage.data(), 1, n, 2), n);
  EXPECT_STREQ(back[0].StrGet(), "Zürich");
  EXPECT_STREQ(back[1].StrGet(), "x");
}

TEST_F(StringDisk, TranslateBetweenTheForms) {
  nxtest::AssertRecorder asserts;
  const NxString array[] = {Narrow("Ab"), Wide(u"\u20ac", 2)};
  uint32_t n = 0;
  // Memory to memory: the result is the memory length of the elements.
  NxString copies[2];
  EXPECT_EQ(current.Translate(kString, copies, 8, 0, const_cast<NxString*>(array), 8, 0, 2),
            2u * current.MemLenGet(kString, 1));
  EXPECT_EQ(copies[1].language, 2);
  // Memory to disk: the text records, behind zeros; never past the room.
  Bytes disk = Translate(array, 8, 0, 2, 20, 2, &n);
  EXPECT_EQ(n, 16u);
  EXPECT_EQ(H(disk),
            "000601014162"
            "00ff"
            "0006fd0220ac00ff"
            "00000000");
  disk = Translate(array, 8, 0, 1, 9, 2, &n);
  EXPECT_EQ(H(disk), "06000101416200ff06");
  EXPECT_EQ(n, 9u);
  // Disk to disk in one format: a copy, with the output code set in byte 2.
  const Bytes record = B("0600 01 01 41 62 00ff");
  EXPECT_EQ(H(Translate(record.data(), 1, 8, 1, 10, 1, &n)),
            "0600010141620"
            "0ff0000");
  EXPECT_EQ(H(Translate(record.data(), 0x21, 8, 0x21, 8, 1)), "06000001416200ff");
  EXPECT_TRUE(asserts.reports().empty());
  // Formats that differ without the key form: reported, nothing written.
  const Bytes untouched = Translate(record.data(), 1, 8, 2, 8, 1, &n);
  EXPECT_EQ(n, 0u);
  EXPECT_EQ(H(untouched), "eeeeeeeeeeeeeeee");
  ASSERT_EQ(asserts.reports().size(), 1u);
  EXPECT_EQ(asserts.reports()[0].expression, "\"format combination not supported\" && 0");
  // Disk to memory in another byte order than the host's.
  const Bytes wide = B("0006 fd 02 20ac 00ff");
  NxString back;
  EXPECT_EQ(
      current.Translate(kString, &back, 8, 0, const_cast<unsigned char*>(wide.data()), 2, 8, 1),
      8u);
  EXPECT_EQ(Units(back), u"\u20ac");
  // A cut source gives what it holds; elements behind it take the last code
  // set and language with no text, 6 bytes each.
  const Bytes twoRecords = B("0600 01 03 41 62 00ff 0600 01 03 43 44 00ff");
  NxString three[3];
  EXPECT_EQ(current.Translate(kString, three, 8, 0, const_cast<unsigned char*>(twoRecords.data()),
                              0x81, 14, 3),
            8u + 8 + 6);
  EXPECT_STREQ(three[0].StrGet(), "Ab");
  EXPECT_STREQ(three[1].StrGet(), "CD");
  EXPECT_EQ(three[2].data, nullptr);
  EXPECT_EQ(three[2].language, 3);
}

TEST_F(StringDisk, UnicodeRecordsAreNarrowedUnlessConfigured) {
  const NxString s = Wide(u"A\u00e9\u20ac");
  const Bytes record = Store(&s, 1, 1);  // 0a00 fd 01 4100 e900 ac20 00ff
  uint32_t n = 0;
  EXPECT_EQ(H(Translate(record.data(), 1, 12, 1, 9, 1, &n)), "0700fdfd41e97f00ff");
  EXPECT_EQ(n, 9u);
  EXPECT_EQ(H(Translate(record.data(), 0x21, 12, 0x21, 9, 1)), "0700000041e97f00ff");
  EXPECT_EQ(H(Translate(record.data(), 1, 12, 1, 6, 1, &n)), "0700fdfd41e9");  // cut
  EXPECT_EQ(n, 6u);
  EXPECT_EQ(H(Translate(&s, 8, 0, 0xA2, 9, 1, &n)),
            "0007000041e97f00ff");  // from memory, no orders
}

// oldIndexUnicodeOrder is read once per process: set, it keeps Unicode
// records as they stand.  The check runs in a process of its own.
TEST(StringDiskConfigured, UnicodeRecordsKeptWhenConfigured) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        NxKeyValueConfig config;
        config.Set("oldIndexUnicodeOrder", "yes");
        DefaultConfig(&config);
        const NxString s = Wide(u"A\u00e9\u20ac");
        const Bytes record = Store(&s, 1, 1);
        unsigned char out[12];
        const uint32_t m = current.Translate(kString, out, 1, 12,
                                             const_cast<unsigned char*>(record.data()), 1, 12, 1);
        std::_Exit(m == 12 && std::memcmp(out, record.data(), 12) == 0 ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

}  // namespace
