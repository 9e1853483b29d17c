// Tests of hashing: the numeric rows against element hashes computed here,
// in memory form and in the rows' own disk forms; stated lengths and
// status; strings in memory form against text, key and old records built
// byte by byte, whole and cut; and the table-driven collation hash against
// a plain walk of the collation iterator.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

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

uint32_t Hash(char id, const void* value, uint32_t count, unsigned char format, int& status,
              uint32_t length = 0, unsigned factory = 5) {
  return NxTypeMgr(factory).Hash(id, length, const_cast<void*>(value), count, format, status);
}

uint32_t Hash(char id, const void* value, uint32_t count, unsigned char format) {
  int status = 77;
  const uint32_t h = Hash(id, value, count, format, status);
  EXPECT_EQ(status, 0);
  return h;
}

TEST(Hashing, NumberRowsHashTheirElementsAlikeInEveryForm) {
  // The element hash from the memory bytes of one element.
  const struct {
    char id;
    uint32_t width;
    uint32_t (*element)(const unsigned char*);
  } rows[] = {
      {NxTYPE_char, 1, [](const unsigned char* p) { return uint32_t(int32_t(int8_t(*p))); }},
      {NxTYPE_NxByte, 1, [](const unsigned char* p) { return uint32_t{*p}; }},
      {NxTYPE_short, 2, [](const unsigned char* p) { return uint32_t(int32_t(int16_t(Word(p)))); }},
      {NxTYPE_NxWord, 2, [](const unsigned char* p) { return Word(p) & 0xFFFF; }},
      {NxTYPE_int, 4, Word},
      {NxTYPE_enum, 4, Word},
      {NxTYPE_unsigned, 4, Word},
      {NxTYPE_long, 4, Word},
      {NxTYPE_NxDWord, 4, Word},
      {NxTYPE_BlockId, 4, Word},
      {NxTYPE_float, 4, Word},
      {NxTYPE_d_Interval, 4, Word},
      {NxTYPE_double, 8, [](const unsigned char* p) { return Word(p) ^ Word(p + 4); }},
  };
  std::mt19937 random(20240611);
  NxTypeMgr mgr;
  for (const auto& row : rows) {
    for (int round = 0; round < 200; ++round) {
      const uint32_t count = 1 + random() % 6;
      Bytes memory(row.width * count + 4);  // room for the 4-byte read of a narrow element
      for (unsigned char& b : memory) b = static_cast<unsigned char>(random());
      uint32_t expected = 0;
      for (uint32_t i = 0; i < count; ++i) expected ^= row.element(memory.data() + i * row.width);
      expected *= kM;
      SCOPED_TRACE(std::to_string(row.id) + " " + nxtest::Hex(memory.data(), memory.size()));
      EXPECT_EQ(Hash(row.id, memory.data(), count, 8), expected);
      for (unsigned char format : {1, 2, 0x82}) {
        // "d_Interval" is stored as "float" is.
        const char storedAs = row.id == NxTYPE_d_Interval ? char{NxTYPE_float} : row.id;
        Bytes disk(memory.size());
        ASSERT_EQ(mgr.Store(storedAs, disk.data(), memory.data(), format, count),
                  row.width * count);
        EXPECT_EQ(Hash(row.id, disk.data(), count, format), expected) << int(format);
      }
    }
  }
}

template <typename T>
Bytes Array(std::initializer_list<T> values) {
  Bytes out(values.size() * sizeof(T));
  std::memcpy(out.data(), values.begin(), out.size());
  return out;
}

TEST(Hashing, IdentitiesAndStatedLengths) {
  int status = 7;
  EXPECT_EQ(Hash(NxTYPE_double, nullptr, 0, 1, status), 0u);
  EXPECT_EQ(status, 0);
  const Bytes longs = Array<int32_t>({1, 2, 4}), turned = Array<int32_t>({4, 1, 2});
  EXPECT_EQ(Hash(NxTYPE_long, longs.data(), 1, 8), 1103515245u);
  EXPECT_EQ(Hash(NxTYPE_long, turned.data(), 3, 8), 7 * kM) << "order does not matter";
  const Bytes pair = Array<int32_t>({5, 5}), zeros = Array<float>({0.0f, -0.0f});
  EXPECT_EQ(Hash(NxTYPE_long, pair.data(), 2, 2), 0u) << "equal pairs cancel";
  EXPECT_NE(Hash(NxTYPE_float, zeros.data(), 1, 8), Hash(NxTYPE_float, zeros.data() + 4, 1, 8));
  const Bytes one = Array<double>({1.0}), high = Array<uint32_t>({0x3FF00000u});
  EXPECT_EQ(Hash(NxTYPE_double, one.data(), 1, 8), Hash(NxTYPE_long, high.data(), 1, 8));
  const unsigned char ff = 0xFF;
  EXPECT_EQ(Hash(NxTYPE_char, &ff, 1, 2), 0xFFFFFFFFu * kM);
  EXPECT_EQ(Hash(NxTYPE_NxByte, &ff, 1, 2), 255u * kM);
  // A stated length: the walk stops where the next element would start at
  // or behind it; an element that starts inside is read whole.
  const Bytes shorts = Array<int16_t>({1, 2, 4, 8});
  const struct {
    char id;
    const Bytes& value;
    uint32_t count, length, expected;
    int status;
  } cases[] = {
      {NxTYPE_long, longs, 3, 8, 3 * kM, 2101},   {NxTYPE_long, longs, 3, 12, 7 * kM, 0},
      {NxTYPE_long, longs, 2, 6, 3 * kM, 0},      {NxTYPE_int, longs, 3, 4, 1 * kM, 2101},
      {NxTYPE_short, shorts, 4, 5, 7 * kM, 2101},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Hash(c.id, c.value.data(), c.count, 1, status, c.length), c.expected) << c.length;
    EXPECT_EQ(status, c.status);
  }
}

// ---------------------------------------------------------------------------
// Strings.

void Put16(Bytes& out, unsigned v, unsigned char format) {
  const bool msbFirst = (format & 0x0F) == 2;
  out.push_back(static_cast<unsigned char>(msbFirst ? v >> 8 : v));
  out.push_back(static_cast<unsigned char>(msbFirst ? v : v >> 8));
}

// A text of either width: bytes as they stand, or 16-bit units in the
// format's byte order.
Bytes TextBytes(unsigned char codeSet, const std::string& narrow, const Units& wide,
                unsigned char format) {
  if (codeSet <= 224) return Bytes(narrow.begin(), narrow.end());
  Bytes out;
  for (unsigned short u : wide) Put16(out, u, format);
  return out;
}

// A text or key record: L, code set, language, text, 0, 0xFF.  A key cut by
// the index has no closing bytes, and L counts what was written.
Bytes Record(unsigned char codeSet, unsigned char language, const Bytes& text, unsigned char format,
             bool closed = true) {
  Bytes out;
  Put16(out, static_cast<unsigned>(text.size() + 4), format);
  out.push_back(codeSet);
  out.push_back(language);
  out.insert(out.end(), text.begin(), text.end());
  if (closed) out.insert(out.end(), {0, 0xFF});
  return out;
}

uint32_t Text8(unsigned char codeSet, unsigned char language, const std::string& text) {
  return HashString(codeSet, language, const_cast<char*>(text.c_str()), -1, 8);
}

std::string RandomNarrow(std::mt19937& random) {
  // Characters that collate specially (contractions such as "ch" and "ll",
  // the sharp s and ligatures) come often.
  static const char kFavoured[] = "abcdhlzACHLZ \xDF\xE6\xC6\xE5\xE4\xF6\xFC\xF8\x9C-'.1";
  std::string s(random() % 31, ' ');
  for (char& c : s)
    c = random() % 2 ? kFavoured[random() % (sizeof kFavoured - 1)]
                     : static_cast<char>(1 + random() % 255);
  return s;
}

Units RandomWide(std::mt19937& random) {
  Units u(random() % 31);
  for (unsigned short& c : u) {
    const unsigned pick = random() % 5;
    c = static_cast<unsigned short>(pick == 0   ? 1 + random() % 0x17F      // Latin
                                    : pick == 1 ? 0x370 + random() % 0x130  // Greek, Cyrillic
                                    : pick == 2 ? "chlCHL ss"[random() % 9]
                                    : pick == 3 ? 0xFFF0 + random() % 15  // keeps the state
                                                : 1 + random() % 0xFFFE);
  }
  return u;
}

const unsigned char kCodeSets[] = {NxCS_NONE,      NxCS_CP1252,      NxCS_ISO8859_1,
                                   NxCS_ISO8859_2, NxCS_ISO8859_5,   NxCS_ISO8859_7,
                                   NxCS_IBM037,    NxCS_UCS2_LEGACY, NxCS_UNICODE};

TEST(Hashing, TheTableHashEqualsAWalkOfTheCollationIterator) {
  std::mt19937 random(77);
  for (unsigned char codeSet : kCodeSets) {
    for (unsigned char language = 0; codeSet != 0 && language <= 8; ++language) {
      for (int round = 0; round < 60; ++round) {
        const std::string narrow = RandomNarrow(random);
        const Units wide = RandomWide(random);
        for (unsigned char format : {8, 1, 2}) {
          Bytes text = TextBytes(codeSet, narrow, wide, format == 8 ? 1 : format);
          text.insert(text.end(), {0, 0});
          char* at = reinterpret_cast<char*>(text.data());
          NxStringIterator it(at, codeSet, language, format);
          uint32_t walked = 0;
          while (const unsigned short order = it.GetNextOrder(1))
            walked = walked * 9 + NxStringIterator::WeightOf(order, it.state);
          ASSERT_EQ(HashString(codeSet, language, at, -1, format), walked)
              << int(codeSet) << "/" << int(language) << " format " << int(format) << " "
              << nxtest::Hex(text.data(), text.size());
        }
      }
    }
  }
}

TEST(Hashing, StringsHashAlikeInMemoryAndInTextRecords) {
  std::mt19937 random(4711);
  for (unsigned char codeSet : kCodeSets) {
    for (unsigned char language = 0; language <= 8; ++language) {
      for (int round = 0; round < 12; ++round) {
        const uint32_t count = 1 + random() % 4;
        std::vector<NxString> strings(count);
        std::vector<std::string> narrow(count);
        std::vector<Units> wide(count);
        for (uint32_t i = 0; i < count; ++i) {
          narrow[i] = RandomNarrow(random);
          wide[i] = RandomWide(random);
          Units terminated = wide[i];
          terminated.push_back(0);
          if (codeSet <= 224)
            strings[i] = narrow[i].c_str();
          else
            strings[i] = terminated.data();
          strings[i].codeSet = codeSet;
          strings[i].language = language;
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
          const auto all = static_cast<uint32_t>(disk.size());
          EXPECT_EQ(Hash(NxTYPE_NxString, disk.data(), count, format, status, all), memory);
          EXPECT_EQ(status, 0);
        }
      }
    }
  }
}

TEST(Hashing, KeyNullAndCutRecords) {
  // Key records hash their orders; a key that ended early at a change of
  // state hashes without the mark, and in state 0 it is a null string's.
  const Units orders = {0x5018, 0x503C, 0x4030, 0x0E, 0x3F12};
  Units terminated = orders;
  terminated.push_back(0);
  const uint32_t key =
      HashString(NxCS_ORDERS, 3, reinterpret_cast<char*>(terminated.data()), -1, 8) * kM;
  int status = 77;
  for (unsigned char format : {0x81, 0x82, 2}) {
    const Bytes text = TextBytes(NxCS_ORDERS, "", orders, format);
    const Bytes whole = Record(NxCS_ORDERS, 3, text, format),
                marked = Record(254, 0x80, text, format);
    EXPECT_EQ(Hash(NxTYPE_NxString, whole.data(), 1, format), key);
    EXPECT_EQ(Hash(NxTYPE_NxString, marked.data(), 1, format), 0xFEFE7575u * kM);
    // A key cut by the index: all orders at hand are hashed.
    const Bytes cut = Record(NxCS_ORDERS, 3, text, format, false);
    EXPECT_EQ(Hash(NxTYPE_NxString, cut.data(), 1, format, status, uint32_t(cut.size())), key);
    EXPECT_EQ(status, 0);
  }
  // The null string: the null hash on disk; in memory a string without a
  // buffer adds nothing to the array.
  const Bytes null = Record(0, NxLANG_NULL, {}, 1);
  EXPECT_EQ(Hash(NxTYPE_NxString, null.data(), 1, 1), 0xFEFE7575u * kM);
  std::vector<NxString> strings(3);
  strings[0].SetNullValue();
  strings[2] = "ab";
  EXPECT_EQ(Hash(NxTYPE_NxString, strings.data(), 3, 8),
            Text8(strings[2].codeSet, strings[2].language, "ab") * kM);
  // A text record of 20 bytes, cut: hard takes only the text at hand, soft
  // (only the 0xFF missing) is whole.  The sharp s sorts as two elements, so
  // counting characters would lose one.
  const std::string text = "abcdefghijkl\xDFn";
  const Bytes r = Record(NxCS_CP1252, 1, TextBytes(NxCS_CP1252, text, {}, 2), 2);
  const Units wide = {'a', 0xE9, 'c', 'h', 0x3B1};
  const Bytes w = Record(NxCS_UNICODE, 1, TextBytes(NxCS_UNICODE, "", wide, 2), 2);
  Bytes two = Record(NxCS_CP1252, 1, {'a', 'b'}, 2);
  two.insert(two.end(), r.begin(), r.end());
  const Bytes longText = Record(NxCS_CP1252, 1, Bytes(300, 'x'), 2);
  const uint32_t ab = Text8(NxCS_CP1252, 1, "ab");
  char16_t aec[] = u"a\u00E9c";
  const struct {
    const Bytes& value;
    uint32_t count, length, expected;
    int status;
  } cuts[] = {
      {r, 1, 14, Text8(NxCS_CP1252, 1, "abcdefghij") * kM, 0},
      {r, 1, 19, Text8(NxCS_CP1252, 1, text) * kM, 0},
      {r, 1, 4, 0, 0},
      // 16-bit text is cut by whole characters: 7 bytes hold 3.
      {w, 1, 11, HashString(NxCS_UNICODE, 1, reinterpret_cast<char*>(aec), -1, 8) * kM, 0},
      // Arrays stop where no further header fits.
      {two, 2, 12, ab * kM, 2101},
      {two, 2, 13, (ab ^ Text8(NxCS_CP1252, 1, "a")) * kM, 0},
      // No key is cut at 254 or more bytes of text: no answer.
      {longText, 1, 4 + 254, 0, -2999},
      {longText, 1, 4 + 253, Text8(NxCS_CP1252, 1, std::string(253, 'x')) * kM, 0},
  };
  for (const auto& c : cuts) {
    EXPECT_EQ(Hash(NxTYPE_NxString, c.value.data(), c.count, 2, status, c.length), c.expected)
        << "length " << c.length;
    EXPECT_EQ(status, c.status);
  }
}

TEST(Hashing, OldRecordsAndLegacyStrings) {
  // An old record holds the array as 8-bit text without a code set; both
  // rows read it whole, its strings walked by their terminators.  Only the
  // old row takes a cut record for an old one.
  const Bytes old = {0, 7, 'a', 'b', 0, 0, 'c', 'd', 0};  // format 2: "ab", "", "cd"
  const uint32_t ab = Text8(0, 0, "ab"), cd = Text8(0, 0, "cd");
  int status = 77;
  for (unsigned factory : {5u, 0u})
    EXPECT_EQ(Hash(NxTYPE_NxString, old.data(), 3, 2, status, 0, factory), (ab ^ cd) * kM);
  const struct {
    uint32_t count, length, expected;
    int status;
  } cases[] = {{3, 7, (ab ^ Text8(0, 0, "c")) * kM, 0},
               {1, 3, Text8(0, 0, "a") * kM, 0},
               {3, 5, ab * kM, 2101}};
  for (const auto& c : cases) {
    EXPECT_EQ(Hash(NxTYPE_NxString, old.data(), c.count, 2, status, c.length, 0), c.expected);
    EXPECT_EQ(status, c.status);
  }
  // The legacy strings hash to 0 and leave the status as it was.
  for (char id : {NxTYPE_NxIString, NxTYPE_NxCaseIString}) {
    status = 7;
    EXPECT_EQ(Hash(id, old.data(), 1, 1, status), 0u);
    EXPECT_EQ(status, 7);
  }
}

}  // namespace
