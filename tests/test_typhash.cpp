// Tests of hashing: the numeric rows against element hashes computed here,
// memory form against disk form, stated lengths and status, strings in
// memory form and in text, key and old records built byte by byte, cut
// records, and the table-driven collation hash against a plain walk of the
// collation iterator.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using Bytes = std::vector<unsigned char>;
using Units = std::vector<unsigned short>;

constexpr uint32_t kM = 1103515245u;

uint32_t Word(const unsigned char* p) {
  uint32_t w;
  std::memcpy(&w, p, 4);
  return w;
}

// A numeric row: element width in memory and its element hash, computed
// from the memory bytes of one element.
struct NumberRow {
  const char* name;
  char id;
  size_t width;
  uint32_t (*element)(const unsigned char*);
};

const std::vector<NumberRow>& NumberRows() {
  static const std::vector<NumberRow> rows = {
      {"char", NxTYPE_char, 1,
       [](const unsigned char* p) { return static_cast<uint32_t>(static_cast<signed char>(*p)); }},
      {"NxByte", NxTYPE_NxByte, 1, [](const unsigned char* p) { return uint32_t{*p}; }},
      {"short", NxTYPE_short, 2,
       [](const unsigned char* p) {
         int16_t v;
         std::memcpy(&v, p, 2);
         return static_cast<uint32_t>(v);
       }},
      {"NxWord", NxTYPE_NxWord, 2,
       [](const unsigned char* p) { return static_cast<uint32_t>(p[0] | p[1] << 8); }},
      {"int", NxTYPE_int, 4, Word},
      {"enum", NxTYPE_enum, 4, Word},
      {"unsigned", NxTYPE_unsigned, 4, Word},
      {"long", NxTYPE_long, 4, Word},
      {"NxDWord", NxTYPE_NxDWord, 4, Word},
      {"BlockId", NxTYPE_BlockId, 4, Word},
      {"float", NxTYPE_float, 4, Word},
      {"d_Interval", NxTYPE_d_Interval, 4, Word},
      {"double", NxTYPE_double, 8, [](const unsigned char* p) { return Word(p) ^ Word(p + 4); }},
  };
  return rows;
}

uint32_t Hash(char id, const void* value, uint32_t count, unsigned char format, int& status,
              uint32_t length = 0) {
  NxTypeMgr mgr;
  return mgr.Hash(id, length, const_cast<void*>(value), count, format, status);
}

uint32_t Hash(char id, const void* value, uint32_t count, unsigned char format) {
  int status = 77;
  const uint32_t h = Hash(id, value, count, format, status);
  EXPECT_EQ(status, 0);
  return h;
}

template <typename T>
Bytes Array(std::initializer_list<T> values) {
  Bytes out;
  for (T v : values) {
    const size_t at = out.size();
    out.resize(at + sizeof v);
    std::memcpy(out.data() + at, &v, sizeof v);
  }
  return out;
}

TEST(Hashing, NumberRowsInEveryFormAgreeWithTheirElementHashes) {
  // Random arrays, memory form against the row's own disk forms, all equal
  // to the exclusive or of the element hashes times the multiplier.
  std::mt19937 random(20240611);
  NxTypeMgr mgr;
  for (const NumberRow& row : NumberRows()) {
    for (int round = 0; round < 200; ++round) {
      const uint32_t count = 1 + random() % 6;
      Bytes memory(row.width * count);
      for (unsigned char& b : memory) b = static_cast<unsigned char>(random());
      uint32_t expected = 0;
      for (uint32_t i = 0; i < count; ++i) expected ^= row.element(memory.data() + i * row.width);
      expected *= kM;
      SCOPED_TRACE(std::string(row.name) + " " + nxtest::Hex(memory.data(), memory.size()));
      EXPECT_EQ(Hash(row.id, memory.data(), count, 8), expected);
      for (unsigned char format : {1, 2, 0x82}) {
        Bytes disk(memory.size() + 8);
        // "d_Interval" keeps its value on disk as "float" does.
        const char storedAs =
            row.id == NxTYPE_d_Interval ? static_cast<char>(NxTYPE_float) : row.id;
        const uint32_t written = mgr.Store(storedAs, disk.data(), memory.data(), format, count);
        ASSERT_EQ(written, memory.size());
        EXPECT_EQ(Hash(row.id, disk.data(), count, format), expected)
            << "format " << int(format) << " disk " << nxtest::Hex(disk.data(), written);
      }
    }
  }
}

TEST(Hashing, IdentitiesOfTheScheme) {
  int status = 7;
  for (const NumberRow& row : NumberRows()) {
    status = 7;
    EXPECT_EQ(Hash(row.id, nullptr, 0, 1, status), 0u) << row.name;
    EXPECT_EQ(status, 0);
  }
  const Bytes one = Array<int32_t>({1}), twice = Array<int32_t>({5, 5});
  EXPECT_EQ(Hash(NxTYPE_long, one.data(), 1, 8), 1103515245u);
  EXPECT_EQ(Hash(NxTYPE_long, twice.data(), 2, 8), 0u) << "equal pairs cancel";
  const Bytes ab = Array<int32_t>({1, 2, 3}), ba = Array<int32_t>({3, 1, 2});
  EXPECT_EQ(Hash(NxTYPE_long, ab.data(), 3, 8), Hash(NxTYPE_long, ba.data(), 3, 8));
  // Floats hash their bits: the two zeros compare equal and hash apart.
  const Bytes zeros = Array<float>({0.0f, -0.0f});
  EXPECT_NE(Hash(NxTYPE_float, zeros.data(), 1, 8), Hash(NxTYPE_float, zeros.data() + 4, 1, 8));
  const Bytes oneDouble = Array<double>({1.0}), highWord = Array<uint32_t>({0x3FF00000u});
  EXPECT_EQ(Hash(NxTYPE_double, oneDouble.data(), 1, 8), Hash(NxTYPE_long, highWord.data(), 1, 8));
  const Bytes word = Array<uint32_t>({0xDEADBEEFu});
  EXPECT_EQ(Hash(NxTYPE_NxDWord, word.data(), 1, 2), Hash(NxTYPE_BlockId, word.data(), 1, 2));
  const unsigned char ff = 0xFF;
  EXPECT_EQ(Hash(NxTYPE_char, &ff, 1, 2), 0xFFFFFFFFu * kM) << "the format is not looked at";
  EXPECT_EQ(Hash(NxTYPE_NxByte, &ff, 1, 2), 255u * kM);
}

TEST(Hashing, AStatedLengthEndsTheWalkWithStatus2101) {
  const Bytes longs = Array<int32_t>({1, 2, 4});
  const Bytes shorts = Array<int16_t>({1, 2, 4, 8});
  const struct {
    char id;
    const Bytes& value;
    uint32_t count, length, expected;
    int status;
  } cases[] = {
      {NxTYPE_long, longs, 3, 8, 3 * kM, 2101},    // two elements reached
      {NxTYPE_long, longs, 3, 12, 7 * kM, 0},      // exactly enough
      {NxTYPE_long, longs, 2, 6, 3 * kM, 0},       // the last element is let through
      {NxTYPE_long, longs, 1, 2, 1 * kM, 0},       // element 0 is always read
      {NxTYPE_int, longs, 3, 4, 1 * kM, 2101},     // the disk width of an int is 4
      {NxTYPE_short, shorts, 4, 5, 7 * kM, 2101},  // the third starts inside
  };
  for (const auto& c : cases) {
    for (unsigned char format : {8, 1}) {
      int status = 77;
      EXPECT_EQ(Hash(c.id, c.value.data(), c.count, format, status, c.length), c.expected)
          << int(c.id) << " length " << c.length;
      EXPECT_EQ(status, c.status);
    }
  }
}

// ---------------------------------------------------------------------------
// Strings.

void Put16(Bytes& out, unsigned v, unsigned char format) {
  if ((format & 0x0F) == 2) {
    out.push_back(static_cast<unsigned char>(v >> 8));
    out.push_back(static_cast<unsigned char>(v));
  } else {
    out.push_back(static_cast<unsigned char>(v));
    out.push_back(static_cast<unsigned char>(v >> 8));
  }
}

// The text bytes of a record: 8-bit text as it stands, 16-bit units in the
// format's byte order.
Bytes TextBytes(unsigned char codeSet, const std::string& narrow, const Units& wide,
                unsigned char format) {
  if (codeSet <= 224) return Bytes(narrow.begin(), narrow.end());
  Bytes out;
  for (unsigned short u : wide) Put16(out, u, format);
  return out;
}

// A text or key record: L, code set, language, text, 0, 0xFF.  A cut key
// has no closing bytes and L counts what was written.
Bytes Record(unsigned char codeSet, unsigned char language, const Bytes& text, unsigned char format,
             bool closed = true) {
  Bytes out;
  Put16(out, static_cast<unsigned>(text.size() + 4), format);
  out.push_back(codeSet);
  out.push_back(language);
  out.insert(out.end(), text.begin(), text.end());
  if (closed) {
    out.push_back(0);
    out.push_back(0xFF);
  }
  return out;
}

// An old record: L and the strings with their terminators.
Bytes OldRecord(const std::vector<std::string>& strings, unsigned char format) {
  Bytes body;
  for (const std::string& s : strings) {
    body.insert(body.end(), s.begin(), s.end());
    body.push_back(0);
  }
  Bytes out;
  Put16(out, static_cast<unsigned>(body.size()), format);
  out.insert(out.end(), body.begin(), body.end());
  return out;
}

NxString Make(unsigned char codeSet, unsigned char language, const std::string& narrow,
              const Units& wide) {
  if (codeSet <= 224) {
    NxString s(narrow.c_str());
    s.codeSet = codeSet;
    s.language = language;
    return s;
  }
  Units terminated = wide;
  terminated.push_back(0);
  NxString s(terminated.data());
  s.codeSet = codeSet;
  s.language = language;
  return s;
}

uint32_t Text8(unsigned char codeSet, unsigned char language, const std::string& text) {
  return HashString(codeSet, language, const_cast<char*>(text.c_str()), -1, 8);
}

// The collation hash as a plain walk of the iterator: h * 9 + the weight of
// each order, to the end of the text.
uint32_t WalkedHash(unsigned char codeSet, unsigned char language, const char* text,
                    unsigned char format) {
  NxStringIterator it(text, codeSet, language, format);
  uint32_t h = 0;
  for (;;) {
    const unsigned short order = it.GetNextOrder(1);
    if (order == 0) return h;
    h = h * 9 + NxStringIterator::WeightOf(order, it.state);
  }
}

std::string RandomNarrow(std::mt19937& random, size_t maxLength) {
  // Letters and the characters that collate specially (contractions such as
  // "ch" and "ll", expansions such as the sharp s and ligatures) come often.
  static const char kFavoured[] = "abcdhlzACHLZ \xDF\xE6\xC6\xE5\xE4\xF6\xFC\xF8\x9C-'.1";
  std::string s(random() % (maxLength + 1), ' ');
  for (char& c : s)
    c = random() % 2 ? kFavoured[random() % (sizeof kFavoured - 1)]
                     : static_cast<char>(1 + random() % 255);
  return s;
}

Units RandomWide(std::mt19937& random, size_t maxLength) {
  Units u(random() % (maxLength + 1));
  for (unsigned short& c : u) {
    switch (random() % 5) {
      case 0:
        c = static_cast<unsigned short>(1 + random() % 0x17F);
        break;  // Latin
      case 1:
        c = static_cast<unsigned short>(0x370 + random() % 0x130);
        break;  // Greek, Cyrillic
      case 2:
        c = static_cast<unsigned short>("chlCHL ss"[random() % 9]);
        break;
      case 3:
        c = static_cast<unsigned short>(0xFFF0 + random() % 15);
        break;  // keep the state
      default:
        c = static_cast<unsigned short>(1 + random() % 0xFFFE);
        break;
    }
  }
  return u;
}

const unsigned char kCodeSets[] = {NxCS_NONE,      NxCS_CP1252,      NxCS_ISO8859_1,
                                   NxCS_ISO8859_2, NxCS_ISO8859_5,   NxCS_ISO8859_7,
                                   NxCS_IBM037,    NxCS_UCS2_LEGACY, NxCS_UNICODE};

TEST(Hashing, TheTableHashEqualsAWalkOfTheCollationIterator) {
  // HashString serves simple characters from a table; whatever the text,
  // code set, language and byte order, it must give what the iterator gives.
  std::mt19937 random(77);
  for (unsigned char codeSet : kCodeSets) {
    if (codeSet == NxCS_NONE) continue;
    for (unsigned char language = 0; language <= 8; ++language) {
      for (int round = 0; round < 60; ++round) {
        if (codeSet <= 224) {
          const std::string text = RandomNarrow(random, 24);
          ASSERT_EQ(Text8(codeSet, language, text), WalkedHash(codeSet, language, text.c_str(), 8))
              << int(codeSet) << "/" << int(language) << " "
              << nxtest::Hex(text.data(), text.size());
          continue;
        }
        const Units wide = RandomWide(random, 24);
        for (unsigned char format : {8, 1, 2}) {
          Bytes bytes =
              format == 8
                  ? Bytes(reinterpret_cast<const unsigned char*>(wide.data()),
                          reinterpret_cast<const unsigned char*>(wide.data()) + 2 * wide.size())
                  : TextBytes(codeSet, "", wide, format);
          bytes.push_back(0);
          bytes.push_back(0);
          char* text = reinterpret_cast<char*>(bytes.data());
          ASSERT_EQ(HashString(codeSet, language, text, -1, format),
                    WalkedHash(codeSet, language, text, format))
              << int(codeSet) << "/" << int(language) << " format " << int(format) << " "
              << nxtest::Hex(bytes.data(), bytes.size());
        }
      }
    }
  }
}

TEST(Hashing, StringsHashAlikeInMemoryAndInTextRecordsOfBothByteOrders) {
  std::mt19937 random(4711);
  for (unsigned char codeSet : kCodeSets) {
    for (unsigned char language = 0; language <= 8; ++language) {
      for (int round = 0; round < 12; ++round) {
        const uint32_t count = 1 + random() % 4;
        std::vector<NxString> strings;
        std::vector<std::string> narrow(count);
        std::vector<Units> wide(count);
        for (uint32_t i = 0; i < count; ++i) {
          narrow[i] = RandomNarrow(random, 30);
          wide[i] = RandomWide(random, 30);
          strings.push_back(Make(codeSet, language, narrow[i], wide[i]));
        }
        const uint32_t memory = Hash(NxTYPE_NxString, strings.data(), count, 8);
        for (unsigned char format : {1, 2}) {
          Bytes disk;
          for (uint32_t i = 0; i < count; ++i) {
            const Bytes r =
                Record(codeSet, language, TextBytes(codeSet, narrow[i], wide[i], format), format);
            disk.insert(disk.end(), r.begin(), r.end());
          }
          SCOPED_TRACE(std::to_string(codeSet) + "/" + std::to_string(language) + " format " +
                       std::to_string(format) + " " + nxtest::Hex(disk.data(), disk.size()));
          EXPECT_EQ(Hash(NxTYPE_NxString, disk.data(), count, format), memory);
          int status = 77;
          EXPECT_EQ(Hash(NxTYPE_NxString, disk.data(), count, format, status,
                         static_cast<uint32_t>(disk.size())),
                    memory);
          EXPECT_EQ(status, 0);
        }
      }
    }
  }
}

TEST(Hashing, NullAndEmptyStrings) {
  // On disk the null string hashes as the null hash; in memory a string
  // without a buffer (the null string too) adds nothing to the array.
  const Bytes null = Record(0, NxLANG_NULL, {}, 1), empty = Record(NxCS_CP1252, 1, {}, 1);
  EXPECT_EQ(Hash(NxTYPE_NxString, null.data(), 1, 1), 0xFEFE7575u * kM);
  EXPECT_EQ(Hash(NxTYPE_NxString, empty.data(), 1, 1), 0u);
  std::vector<NxString> strings(3);
  strings[0].SetNullValue();
  strings[2] = "ab";
  EXPECT_EQ(Hash(NxTYPE_NxString, strings.data(), 3, 8),
            Text8(strings[2].codeSet, strings[2].language, "ab") * kM);
}

TEST(Hashing, KeyRecordsHashTheirOrders) {
  const Units orders = {0x5018, 0x503C, 0x4030, 0x0E, 0x3F12};
  Units terminated = orders;
  terminated.push_back(0);
  const uint32_t expected =
      HashString(NxCS_ORDERS, 3, reinterpret_cast<char*>(terminated.data()), -1, 8) * kM;
  for (unsigned char format : {0x81, 0x82, 1, 2}) {
    const Bytes key = Record(NxCS_ORDERS, 3, TextBytes(NxCS_ORDERS, "", orders, format), format);
    EXPECT_EQ(Hash(NxTYPE_NxString, key.data(), 1, format), expected) << int(format);
    // A key that ended early at a change of state hashes without the mark;
    // in state 0 the key is that of a null string.
    const Bytes marked =
        Record(NxCS_ORDERS, 0 | 0x80, TextBytes(NxCS_ORDERS, "", orders, format), format);
    EXPECT_EQ(Hash(NxTYPE_NxString, marked.data(), 1, format), 0xFEFE7575u * kM);
    // A key cut where the index ended it: L counts the bytes written and the
    // closing bytes are missing; the orders at hand are all of it.
    const Bytes cut =
        Record(NxCS_ORDERS, 3, TextBytes(NxCS_ORDERS, "", orders, format), format, false);
    int status = 77;
    EXPECT_EQ(
        Hash(NxTYPE_NxString, cut.data(), 1, format, status, static_cast<uint32_t>(cut.size())),
        expected);
    EXPECT_EQ(status, 0);
  }
}

TEST(Hashing, CutRecordsHashTheTextAtHand) {
  // 14 bytes, a record of 20.  The sharp s sorts as two elements, so a
  // count of characters would lose one.
  const std::string text = "abcdefghijkl\xDFn";
  for (unsigned char format : {1, 2}) {
    const Bytes r = Record(NxCS_CP1252, 1, TextBytes(NxCS_CP1252, text, {}, format), format);
    ASSERT_EQ(r.size(), 20u);
    const struct {
      uint32_t length;
      std::string hashed;
    } cases[] = {
        {14, "abcdefghij"},  // hard: 10 text bytes behind the header
        {19, text},          // soft: only the 0xFF missing
        {20, text},          // whole
        {4, ""},             // the header alone
    };
    for (const auto& c : cases) {
      int status = 77;
      EXPECT_EQ(Hash(NxTYPE_NxString, r.data(), 1, format, status, c.length),
                Text8(NxCS_CP1252, 1, c.hashed) * kM)
          << "length " << c.length;
      EXPECT_EQ(status, 0);
    }
    // 16-bit text is cut by whole characters.
    const Units wide = {'a', 0xE9, 'c', 'h', 0x3B1, 'z'};
    const Bytes w = Record(NxCS_UNICODE, 1, TextBytes(NxCS_UNICODE, "", wide, format), format);
    int status = 77;
    EXPECT_EQ(Hash(NxTYPE_NxString, w.data(), 1, format, status, 4 + 7),
              HashString(NxCS_UNICODE, 1,
                         reinterpret_cast<char*>(const_cast<unsigned short*>(wide.data())), 3, 8) *
                  kM);
    EXPECT_EQ(status, 0);
  }
  // No key is cut at 254 or more bytes of text: no answer.
  const Bytes longText = Record(NxCS_CP1252, 1, Bytes(300, 'x'), 1);
  int status = 77;
  EXPECT_EQ(Hash(NxTYPE_NxString, longText.data(), 1, 1, status, 4 + 254), 0u);
  EXPECT_EQ(status, -2999);
  EXPECT_EQ(Hash(NxTYPE_NxString, longText.data(), 1, 1, status, 4 + 253),
            Text8(NxCS_CP1252, 1, std::string(253, 'x')) * kM);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(Hash(NxTYPE_NxString, longText.data(), 1, 1, status, 306),
            Text8(NxCS_CP1252, 1, std::string(300, 'x')) * kM);
  EXPECT_EQ(status, 0);
}

TEST(Hashing, ArraysOfRecordsStopWhereTheLengthEnds) {
  const Bytes a = Record(NxCS_CP1252, 1, {'a', 'b'}, 1), b = Record(NxCS_CP1252, 1, {'c', 'd'}, 1);
  Bytes both = a;
  both.insert(both.end(), b.begin(), b.end());
  const uint32_t ha = Text8(NxCS_CP1252, 1, "ab"), hc = Text8(NxCS_CP1252, 1, "c");
  const struct {
    size_t extra;  // bytes of the second record within the length
    uint32_t expected;
    int status;
  } cases[] = {{0, ha * kM, 2101}, {4, ha * kM, 2101}, {5, (ha ^ hc) * kM, 0}};
  for (const auto& c : cases) {
    int status = 77;
    EXPECT_EQ(
        Hash(NxTYPE_NxString, both.data(), 2, 1, status, static_cast<uint32_t>(a.size() + c.extra)),
        c.expected)
        << c.extra;
    EXPECT_EQ(status, c.status);
  }
}

TEST(Hashing, OldRecordsHoldTheWholeArrayAsTextWithoutCodeSet) {
  // Both rows read a whole old record; its strings are walked by their
  // terminators.
  const NxTypeMgr current(5), old(0);
  for (unsigned char format : {1, 2}) {
    Bytes one = OldRecord({"abc"}, format), three = OldRecord({"ab", "", "cde"}, format);
    const uint32_t ab = Text8(0, 0, "ab");
    for (const NxTypeMgr* mgr : {&current, &old}) {
      int status = 77;
      EXPECT_EQ(mgr->Hash(NxTYPE_NxString, 0, one.data(), 1, format, status),
                Text8(0, 0, "abc") * kM);
      EXPECT_EQ(mgr->Hash(NxTYPE_NxString, 0, three.data(), 3, format, status),
                (ab ^ Text8(0, 0, "cde")) * kM);
      EXPECT_EQ(status, 0);
    }
    // Only the old row takes a cut record for an old one: here the length
    // ends inside the third string, and inside the only one.
    int status = 77;
    EXPECT_EQ(old.Hash(NxTYPE_NxString, 8, three.data(), 3, format, status),
              (ab ^ Text8(0, 0, "cd")) * kM);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(old.Hash(NxTYPE_NxString, 4, one.data(), 1, format, status), ab * kM);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(old.Hash(NxTYPE_NxString, 5, three.data(), 3, format, status), ab * kM);
    EXPECT_EQ(status, 2101);
  }
}

TEST(Hashing, LegacyStringRowsHashToZeroAndLeaveTheStatus) {
  NxTypeMgr mgr;
  const Bytes record = Record(NxCS_CP1252, 1, {'a'}, 1);
  for (char id : {NxTYPE_NxIString, NxTYPE_NxCaseIString}) {
    int status = 7;
    EXPECT_EQ(mgr.Hash(id, 0, const_cast<unsigned char*>(record.data()), 1, 1, status), 0u);
    EXPECT_EQ(status, 7);
  }
}

}  // namespace
