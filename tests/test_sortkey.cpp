// Sort keys against NxStrCmp: for every strength and language, the memcmp
// order of the keys must be the order of the comparison, on real names in
// several scripts, on names put together from them and on random text full
// of the characters that make collation hard.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "names.h"

namespace {

// A text with its code set: UTF-16 in code set 253, or Latin-1 bytes in
// code set 2 when every character fits.
struct Text {
  unsigned char codeSet;
  std::string bytes;  // closed by two zero bytes
  const char* data() const { return bytes.c_str(); }
};

Text Unicode(const std::u16string& s) {
  std::string bytes(reinterpret_cast<const char*>(s.c_str()), s.size() * 2);
  bytes.append(2, '\0');
  return {NxCS_UNICODE, bytes};
}

bool Latin1(const std::u16string& s, Text& text) {
  text.codeSet = NxCS_ISO8859_1;
  text.bytes.clear();
  for (char16_t c : s) {
    if (c == 0 || c > 0xFF) return false;
    text.bytes += static_cast<char>(c);
  }
  text.bytes.append(2, '\0');
  return true;
}

// Characters that exercise every part of the collation: case, accents
// (precomposed and combining), expansions, contractions of the languages,
// letters behind Z, final sigma, digits and fractions, spaces and symbols
// of many orders, wildcard characters as plain symbols, and characters
// that the tables don't know (also surrogates and values from 0xFFF0 up).
const char16_t kAlphabet[] =
    u"aAbBcCdDeEhHlLnNoOsSuUyYzZ"
    u"éÉèêëÄäÖöÜüßæÆøØåÅñÑçÇčČřŘšŠžŽ"
    u"\u0301\u0308"
    u"ΣσςΑάαΩ"
    u"ЁёЕеЙй"
    u"0123456789½²"
    u"     \u00A0\t-_.,'*?&/"
    u"中\u0600\uFFFD\uFFF9\U0001F600";

std::u16string RandomText(std::mt19937& rng, size_t maxLength) {
  const size_t alphabet = sizeof kAlphabet / sizeof kAlphabet[0] - 1;
  std::u16string s;
  const size_t n = rng() % (maxLength + 1);
  for (size_t i = 0; i < n; ++i) {
    // Mostly a few letters, so that many texts tie on the first level and
    // the later levels decide.
    const size_t k = rng() % 3 == 0 ? rng() % alphabet : rng() % 12;
    const char16_t c = kAlphabet[k];
    if (c >= 0xD800 && c < 0xDC00) {
      s += c;
      s += kAlphabet[k + 1];
    } else if (c >= 0xDC00 && c < 0xE000) {
      s += kAlphabet[k - 1];
      s += c;
    } else {
      s += c;
    }
  }
  return s;
}

const std::vector<Text>& Corpus() {
  static const std::vector<Text> corpus = [] {
    std::vector<Text> texts;
    std::vector<std::u16string> names;
    for (const char* name : nxtest::kNames) names.push_back(nxtest::Utf16(name));
    std::mt19937 rng(20261124);
    const size_t real = names.size();
    for (size_t i = 0; i < 1500; ++i) {
      const char16_t* joints[] = {u" ", u"-", u"", u", "};
      names.push_back(names[rng() % real] + joints[rng() % 4] + names[rng() % real]);
    }
    for (size_t i = 0; i < 1200; ++i) names.push_back(RandomText(rng, i % 50 == 0 ? 400 : 12));
    for (const std::u16string& s : names) {
      texts.push_back(Unicode(s));
      Text latin;
      if (texts.size() % 4 == 0 && Latin1(s, latin)) texts.push_back(latin);
    }
    return texts;
  }();
  return corpus;
}

std::string KeyOf(const Text& t, unsigned char language, unsigned short cmpOp) {
  const uint32_t n = NxStrSortKey(t.codeSet, language, t.data(), cmpOp, 1, nullptr, 0);
  std::string key(n, '\0');
  const uint32_t again = NxStrSortKey(t.codeSet, language, t.data(), cmpOp, 1,
                                      reinterpret_cast<unsigned char*>(&key[0]), n);
  EXPECT_EQ(n, again);
  return key;
}

int Sign(long v) {
  return (v > 0) - (v < 0);
}

int KeyOrder(const std::string& a, const std::string& b) {
  return Sign(a.compare(b));
}

std::string Show(const Text& t) {
  std::string s;
  if (t.codeSet == NxCS_UNICODE) {
    for (size_t i = 0; i + 3 < t.bytes.size(); i += 2) {
      char buf[8];
      const unsigned u =
          static_cast<unsigned char>(t.bytes[i]) | static_cast<unsigned char>(t.bytes[i + 1]) << 8;
      if (u >= 0x20 && u < 0x7F) {
        s += static_cast<char>(u);
      } else {
        std::snprintf(buf, sizeof buf, "<%04X>", u);
        s += buf;
      }
    }
  } else {
    s = "(latin1) " + t.bytes.substr(0, t.bytes.size() - 2);
  }
  return s;
}

const unsigned short kStrengths[] = {
    0x00,  0x20,  0x40,  0x60,  0x80,  0xA0,  0xC0,  0xE0,  0x200,
    0x220, 0x240, 0x260, 0x280, 0x2A0, 0x2C0, 0x2E0, 0x100, 0x160,
};

// For each strength and language: the keys sorted by memcmp must be sorted
// by NxStrCmp, with equal keys exactly where it gives 0 (neighbours), and
// random pairs must agree in sign.
TEST(SortKey, OrdersLikeNxStrCmpAtEveryStrengthAndLanguage) {
  const std::vector<Text>& texts = Corpus();
  ASSERT_GT(texts.size(), 3000u);
  std::mt19937 rng(7);
  for (unsigned char language = 1; language <= 8; ++language) {
    for (unsigned short strength : kStrengths) {
      const unsigned short cmpOp = static_cast<unsigned short>(strength | NxCMP_NO_WILDCARDS);
      std::vector<std::string> keys;
      keys.reserve(texts.size());
      for (const Text& t : texts) keys.push_back(KeyOf(t, language, strength));
      std::vector<size_t> order(texts.size());
      for (size_t i = 0; i < order.size(); ++i) order[i] = i;
      std::sort(order.begin(), order.end(), [&](size_t a, size_t b) { return keys[a] < keys[b]; });

      int failures = 0;
      auto check = [&](size_t a, size_t b) {
        const Text& x = texts[a];
        const Text& y = texts[b];
        const int want = Sign(NxStrCmp(x.codeSet, language, x.data(), y.codeSet, language, y.data(),
                                       cmpOp, -1, 1, nullptr));
        const int got = KeyOrder(keys[a], keys[b]);
        if (want != got && ++failures <= 5) {
          ADD_FAILURE() << "language " << int(language) << " cmpOp 0x" << std::hex << cmpOp
                        << std::dec << ": \"" << Show(x) << "\" vs \"" << Show(y) << "\": NxStrCmp "
                        << want << ", keys " << got;
        }
      };
      for (size_t i = 0; i + 1 < order.size(); ++i) check(order[i], order[i + 1]);
      for (size_t i = 0; i < 2000; ++i) check(rng() % texts.size(), rng() % texts.size());
      ASSERT_EQ(failures, 0);
    }
  }
}

// The text is read as NxStrCmp reads it: null values, null pointers, code
// set 0, disk byte orders, 8-bit code sets with and without their own table,
// and the limit of 65535 elements.
TEST(SortKey, ReadsTextLikeNxStrCmp) {
  const unsigned short op = NxCMP_IGNORE_CASE;
  auto key = [&](unsigned char cs, unsigned char lang, const char* text, unsigned char format) {
    std::string k(NxStrSortKey(cs, lang, text, op, format, nullptr, 0), '\0');
    NxStrSortKey(cs, lang, text, op, format, reinterpret_cast<unsigned char*>(&k[0]),
                 static_cast<uint32_t>(k.size()));
    return k;
  };
  // A null value has the empty key, below the empty text's.
  EXPECT_EQ(key(NxCS_UNICODE, NxLANG_NULL, "x\0", 1), "");
  EXPECT_EQ(key(NxCS_ORDERS, 0, "x\0", 1), "");
  EXPECT_LT(key(NxCS_UNICODE, NxLANG_NULL, nullptr, 1), key(NxCS_UNICODE, 1, nullptr, 1));
  EXPECT_EQ(key(NxCS_UNICODE, 1, nullptr, 1), key(NxCS_UNICODE, 1, "\0\0", 1));
  // Code set 0 reads as the native code set.
  EXPECT_EQ(key(0, 1, "Gr\xfc\xdf", 1), key(NxCS_CP1252, 1, "Gr\xfc\xdf", 1));
  // The same text in disk byte orders and in code sets ordered through
  // Unicode (Greek in ISO-8859-7).
  EXPECT_EQ(key(NxCS_UNICODE, 1, "\0M\0\xfc\0l\0\0", 2),
            key(NxCS_UNICODE, 1, "M\0\xfc\0l\0\0\0", 1));
  EXPECT_EQ(key(NxCS_ISO8859_7, 7, "\xd3\xf9", 1), key(NxCS_UNICODE, 7, "\xa3\x03\xc9\x03\0\0", 1));

  // Only the first 65535 elements count: texts that differ behind them have
  // equal keys, as NxStrCmp finds them equal.  Each ß gives two elements.
  std::u16string a(40000, u'ß');
  std::u16string b = a;
  b[39999] = u'z';
  const Text ta = Unicode(a);
  const Text tb = Unicode(b);
  EXPECT_EQ(
      NxStrCmp(NxCS_UNICODE, 1, ta.data(), NxCS_UNICODE, 1, tb.data(), 0x10 | op, -1, 1, nullptr),
      0);
  EXPECT_EQ(key(NxCS_UNICODE, 1, ta.data(), 1), key(NxCS_UNICODE, 1, tb.data(), 1));
  b[1000] = u'z';
  EXPECT_LT(key(NxCS_UNICODE, 1, ta.data(), 1), key(NxCS_UNICODE, 1, Unicode(b).data(), 1));
}

// A key asked for in a short buffer is the start of the whole key, and
// nothing is written beyond the buffer; the first level of a text's start
// begins the keys of the texts that begin with it.
TEST(SortKey, CutKeysAndFirstLevel) {
  const Text t = Unicode(nxtest::Utf16("Müller-Lüdenscheidt, Ævar Þór"));
  for (unsigned short op : {0x00, 0x60, 0x100, 0x2E0}) {
    const std::string whole = KeyOf(t, 1, op);
    for (uint32_t size = 0; size <= whole.size(); ++size) {
      std::string buffer(whole.size() + 4, '#');
      const uint32_t n = NxStrSortKey(NxCS_UNICODE, 1, t.data(), op, 1,
                                      reinterpret_cast<unsigned char*>(&buffer[0]), size);
      ASSERT_EQ(n, whole.size());
      ASSERT_EQ(buffer.substr(0, size), whole.substr(0, size)) << "op " << op << " size " << size;
      ASSERT_EQ(buffer.substr(size), std::string(whole.size() + 4 - size, '#'));
    }
  }
  for (unsigned short op : {0x00, 0x60, 0x2E0}) {
    const std::string start = KeyOf(Unicode(nxtest::Utf16("MÜL")), 1, op);
    const uint32_t first =
        NxStrSortKeyFirstLevel(reinterpret_cast<const unsigned char*>(start.data()),
                               static_cast<uint32_t>(start.size()), op);
    ASSERT_GT(first, 0u);
    EXPECT_EQ(KeyOf(t, 1, op).compare(0, first, start, 0, first), 0);
    EXPECT_NE(KeyOf(Unicode(nxtest::Utf16("Mal")), 1, op).compare(0, first, start, 0, first), 0);
  }
  EXPECT_EQ(NxStrSortKeyFirstLevel(nullptr, 0, 0), 0u);
}


// The key record of a text in byte order `format`, made by the row's
// Translate in key form with `room` bytes: an index key, cut when the room
// runs out.
std::string KeyRecord(const Text& t, unsigned char language, unsigned char format, uint32_t room) {
  const bool wide = t.codeSet > 224;
  const size_t n = t.bytes.size() - 2;  // the text without its closing zeros
  std::string record(4, '\0');
  const unsigned L = static_cast<unsigned>(n + 4);
  record[format == 2 ? 1 : 0] = static_cast<char>(L);
  record[format == 2 ? 0 : 1] = static_cast<char>(L >> 8);
  record[2] = static_cast<char>(t.codeSet);
  record[3] = static_cast<char>(language);
  for (size_t i = 0; i < n; i += wide ? 2 : 1) {
    if (wide && format == 2) {
      record += t.bytes[i + 1];
      record += t.bytes[i];
    } else {
      record.append(t.bytes, i, wide ? 2 : 1);
    }
  }
  record += '\0';
  record += '\xff';
  std::string key(room, '\0');
  NxTypeMgr mgr;
  const uint32_t written =
      mgr.Translate(NxTYPE_NxString, &key[0], static_cast<unsigned char>(0x80 | format), room,
                    &record[0], format, static_cast<uint32_t>(record.size()), 1);
  key.resize(written);
  return key;
}

std::string FirstLevelFromKey(const std::string& record, unsigned short op, unsigned char format) {
  const unsigned char* r = reinterpret_cast<const unsigned char*>(record.data());
  const uint32_t length = static_cast<uint32_t>(record.size());
  std::string level(NxStrSortKeyFirstLevelFromKey(r, length, op, format, nullptr, 0), '\0');
  const uint32_t n = NxStrSortKeyFirstLevelFromKey(
      r, length, op, format, reinterpret_cast<unsigned char*>(&level[0]), level.size());
  EXPECT_EQ(n, level.size());
  return level;
}

// The first level written from a key record is that of the text's sort
// key when the record holds the whole text, and the start of it when the
// record was cut at the index key length or ended at a change of script;
// in both byte orders, for every language and for the strengths that shape
// the first level differently (none does but the exact one).
TEST(SortKey, FirstLevelFromKeyRecords) {
  const std::vector<Text>& texts = Corpus();
  size_t whole = 0;
  size_t partial = 0;
  for (unsigned char language = 1; language <= 8; ++language) {
    for (unsigned short op : {0x00, 0x60, 0x2E0, 0x100}) {
      for (size_t i = language; i < texts.size(); i += 3) {
        const Text& t = texts[i];
        const std::string key = KeyOf(t, language, op);
        const std::string level =
            key.substr(0, NxStrSortKeyFirstLevel(reinterpret_cast<const unsigned char*>(key.data()),
                                                 static_cast<uint32_t>(key.size()), op));
        const unsigned char format = i % 2 == 0 ? 1 : 2;
        for (uint32_t room : {4000u, uint32_t{NxINDEX_MAX_KEYLEN}}) {
          const std::string record = KeyRecord(t, language, format, room);
          const unsigned char* r = reinterpret_cast<const unsigned char*>(record.data());
          const unsigned L = format == 2 ? (r[0] << 8 | r[1]) : (r[0] | r[1] << 8);
          const bool holdsAll = L + 2 <= record.size() && (r[3] & 0x80) == 0;
          const std::string got = FirstLevelFromKey(record, op, format);
          if (holdsAll) {
            ++whole;
            ASSERT_EQ(got, level) << "language " << int(language) << " op " << op << ": "
                                  << Show(t);
          } else {
            ++partial;
            ASSERT_EQ(level.compare(0, got.size(), got), 0)
                << "language " << int(language) << " op " << op << ": " << Show(t);
          }
        }
      }
    }
  }
  EXPECT_GT(partial, 5000u);
  EXPECT_GT(whole, partial);

  // A whole record read from fewer bytes than it has: its start, and
  // nothing behind the bytes at hand.
  const std::string text = KeyRecord(Unicode(u"Mül"), 1, 1, 100);
  const std::string all = FirstLevelFromKey(text, 0, 1);
  std::string two(all.size(), '\0');
  two.resize(NxStrSortKeyFirstLevelFromKey(text.data(), 8, 0, 1,
                                           reinterpret_cast<unsigned char*>(&two[0]),
                                           static_cast<uint32_t>(two.size())));
  EXPECT_LT(two.size(), all.size());
  EXPECT_EQ(all.compare(0, two.size(), two), 0);
  // A text record is not read as orders; a short buffer takes the start.
  std::string notKey = text;
  notKey[2] = static_cast<char>(NxCS_UNICODE);
  EXPECT_EQ(FirstLevelFromKey(notKey, 0, 1), "");
  unsigned char small[2] = {0xAB, 0xAB};
  const uint32_t n = NxStrSortKeyFirstLevelFromKey(text.data(), static_cast<uint32_t>(text.size()),
                                                   0, 1, small, 1);
  EXPECT_GT(n, 1u);
  EXPECT_EQ(small[0], static_cast<unsigned char>(FirstLevelFromKey(text, 0, 1)[0]));
  EXPECT_EQ(small[1], 0xAB);
}

}  // namespace
