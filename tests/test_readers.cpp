// The library reads most characters through compact entries made from the
// order tables when it loads, and compares, hashes and builds keys on
// them.  Here its results are set against a reference that reads the
// order records step by step and compares by the letter of the algorithm,
// on real names and on random texts full of hard characters, in every code
// set, language, byte order and strength.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "names.h"

namespace {

// The collation reading of a text, from the order records alone.
class Reference {
 public:
  Reference(const char* text, unsigned char codeSet, unsigned char language, unsigned char format)
      : at_(reinterpret_cast<const unsigned char*>(text)),
        codeSet_(codeSet),
        language_(language),
        format_(format & 0x0F),
        width_(codeSet > 224 ? 2 : 1) {
    own_ = NxLanguageContext::QueryCodeSet(codeSet);
    set_ = own_->orderTable != nullptr ? own_ : NxLanguageContext::QueryCodeSet(NxCS_UNICODE);
    state = own_->InitialState(language);
  }

  // The next order, 0 at the end; `state` follows.
  unsigned short Next() {
    if (pending_ != nullptr) {
      unsigned short order = 0;
      pending_->Get(index_++, order);
      if (index_ >= pending_->count) {
        pending_ = nullptr;
        at_ += width_;
      }
      return order;
    }
    const unsigned short v = Value(at_);
    if (v == 0) return 0;
    const NxOrderRecord* r = set_->orderTable->Record(v);
    if (r == nullptr) {
      at_ += width_;
      if (v < 0xFFF0 && v != NxStringIterator::AsteriskOrder() &&
          v != NxStringIterator::QuestionOrder())
        state = 20;
      return v;
    }
    if (r->hasVariants != 0) {
      const NxLanguage* language = NxLanguageContext::QueryLanguage(language_);
      for (int32_t i = 0;
           language != nullptr && language->specificCollation != 0 && i < r->languages.count; ++i) {
        if (r->languages.items[i] != language) continue;
        if (r->variants.items[i] != nullptr) r = r->variants.items[i];
        break;
      }
    }
    // Contractions: the longest sequence whose every start has a record.
    while (r->hasNext != 0) {
      const unsigned short next = Value(at_ + width_);
      const NxOrderRecord* continued = nullptr;
      for (int32_t i = 0; i < r->nextChars.count && continued == nullptr; ++i)
        if (r->nextChars.items[i] == next) continued = r->nextRecords.items[i];
      if (continued == nullptr) break;
      at_ += width_;
      r = continued;
    }
    state = r->stateSource != nullptr ? *r->stateSource : set_->InitialState(language_);
    if (r->hasExpansion != 0 && r->expansion.count > 0) {
      pending_ = &r->expansion;
      index_ = 0;
    } else {
      at_ += width_;
    }
    return r->order;
  }

  unsigned char state;

 private:
  // The character at `p`, in Unicode when the code set is ordered through it.
  unsigned short Value(const unsigned char* p) const {
    unsigned short v = p[0];
    if (width_ == 2) v = format_ == 2 ? (p[0] << 8 | p[1]) : (p[0] | p[1] << 8);
    return set_ != own_ ? set_->MapFrom(v, codeSet_) : v;
  }

  const unsigned char* at_;
  unsigned char codeSet_, language_, format_;
  unsigned width_;
  const NxCodeSet* own_;
  const NxCodeSet* set_;
  const NxWCharList* pending_ = nullptr;
  int32_t index_ = 0;
};

int32_t Diff(uint32_t a, uint32_t b) {
  return static_cast<int32_t>(a - b);
}

// The comparison of two texts without wildcards, as the algorithm says.
int32_t ReferenceCompare(const char* t1, unsigned char cs1, unsigned char l1, const char* t2,
                         unsigned char cs2, unsigned char l2, unsigned short cmpOp, short maxLength,
                         unsigned char format) {
  if (maxLength == 0) return 0;
  const uint32_t limit = static_cast<unsigned short>(maxLength);
  struct Side {
    Reference text;
    uint32_t count = 0, weight = 0;
    unsigned short order = 0, pending = 0;
    bool ended = false;
  } a{Reference(t1, cs1, l1, format)}, b{Reference(t2, cs2, l2, format)};
  if ((cmpOp & NxCMP_EXACT) != 0) {
    for (uint32_t i = 0; i < limit; ++i) {
      const unsigned short o1 = a.text.Next(), o2 = b.text.Next();
      const int32_t r = Diff(NxStringIterator::WeightOf(o1, a.text.state),
                             NxStringIterator::WeightOf(o2, b.text.state));
      if (r != 0 || o1 == 0 || o2 == 0) return r;
    }
    return 0;
  }
  // Reads on while the element is a space or symbol that takes part.
  const auto read = [&](Side& s) {
    for (;;) {
      unsigned short o = 0;
      if (++s.count <= limit && !s.ended) o = s.text.Next();
      s.ended = s.ended || o == 0;
      s.order = o;
      s.weight = NxStringIterator::WeightOf(o, s.text.state);
      if (o >= 0x3F00 || s.text.state >= 20 || o == 0) return false;
      if ((cmpOp & (o >= 80 ? NxCMP_IGNORE_SYMBOLS : NxCMP_IGNORE_SPACES)) != 0) continue;
      s.pending = o;
      return true;
    }
  };
  int32_t caseDiff = 0, accentDiff = 0, spaceDiff = 0, r = 0;
  for (;;) {
    int32_t pass = 0;
    for (bool more1 = true, more2 = true; more1 || more2;) {
      a.pending = b.pending = 0;
      if (more1) more1 = read(a);
      if (more2) more2 = read(b);
      if (a.pending != b.pending) pass = a.pending - b.pending;
    }
    r = Diff(a.weight & ~0x7Fu, b.weight & ~0x7Fu);
    if (caseDiff == 0) caseDiff = Diff(b.weight & ~0x1Fu, a.weight & ~0x1Fu);
    if (Diff(a.weight & ~0x60u, b.weight & ~0x60u) != 0)
      accentDiff = Diff(a.weight & ~0x60u, b.weight & ~0x60u);
    if (pass != 0) spaceDiff = pass;
    if (r != 0 || a.order == 0 || b.order == 0) break;
  }
  if (r != 0) return r;
  if (accentDiff != 0 && (cmpOp & NxCMP_IGNORE_ACCENTS) == 0) return accentDiff;
  if (caseDiff != 0 && (cmpOp & NxCMP_IGNORE_CASE) == 0) return caseDiff;
  return spaceDiff;
}

// A text in a code set, closed by two zero bytes, in byte order `format`.
struct Text {
  unsigned char codeSet;
  std::string bytes;
  const char* data() const { return bytes.c_str(); }
};

Text Encode(const std::u16string& s, unsigned char codeSet, unsigned char format) {
  Text t{codeSet, ""};
  const NxCodeSet* set = NxLanguageContext::QueryCodeSet(codeSet);
  for (char16_t c : s) {
    if (codeSet <= 224) {
      const unsigned short b = set->FromUnicode(c, '?');
      t.bytes += static_cast<char>(b != 0 ? b : '?');
    } else if (format == 2) {
      t.bytes += static_cast<char>(c >> 8);
      t.bytes += static_cast<char>(c & 0xFF);
    } else {
      t.bytes += static_cast<char>(c & 0xFF);
      t.bytes += static_cast<char>(c >> 8);
    }
  }
  t.bytes.append(2, '\0');
  return t;
}

// Characters of every kind: letters in both cases, accents, expansions,
// the letters of contractions (ch, ll), Greek and Cyrillic, digits, spaces
// and symbols, the wildcard characters, characters with records from
// 0x800 up, characters without a record, and reserved values.
const char16_t kAlphabet[] =
    u"aAbBcChHlLnNoOsSeEuUyYzZ"
    u"éÉèêëÄäÖöÜüßæÆøØåÅñÑçÇčČřŘšŠžŽ\u0301\u0308"
    u"ΣσςΑάαΩἈᾶЁёЕеЙйЖ0123456789½²     \u00A0\t-_.,'*?&/"
    u"\u2013\u2019\u2122\uFB01\uFF21\u1E00\u0800\u07FF中가\u0600\u05D0\uFFFD\uFFF0\uFFF9";

std::vector<std::u16string> Corpus() {
  std::vector<std::u16string> texts;
  for (const char* name : nxtest::kNames) texts.push_back(nxtest::Utf16(name));
  std::mt19937 rng(16);
  const size_t names = texts.size();
  for (int i = 0; i < 300; ++i)
    texts.push_back(texts[rng() % names] + (i % 2 ? u" " : u"-") + texts[rng() % names]);
  const size_t alphabet = sizeof kAlphabet / sizeof kAlphabet[0] - 1;
  for (int i = 0; i < 700; ++i) {
    std::u16string s;
    // Mostly a few letters, so that texts often agree for a while.
    for (size_t n = rng() % 15; n != 0; --n)
      s += kAlphabet[rng() % 3 ? rng() % 16 : rng() % alphabet];
    texts.push_back(s);
  }
  return texts;
}

const unsigned char kCodeSets[] = {1, 2, 3, 4, 5, 6, 225, 253};

TEST(Readers, GetNextOrderFollowsTheRecordsInEveryCodeSetLanguageAndByteOrder) {
  const std::vector<std::u16string> corpus = Corpus();
  for (unsigned char codeSet : kCodeSets) {
    for (unsigned char language = 0; language <= 8; ++language) {
      for (unsigned char format : {1, 2, 8}) {
        if (format != 1 && codeSet <= 224) continue;
        for (size_t i = language % 2; i < corpus.size(); i += 2) {
          const Text t = Encode(corpus[i], codeSet, format);
          NxStringIterator it(t.data(), codeSet, language, format);
          Reference ref(t.data(), codeSet, language, format);
          for (int k = 0;; ++k) {
            const unsigned short o = it.GetNextOrder(1);
            ASSERT_EQ(o, ref.Next()) << +codeSet << "/" << +language << "/" << +format << " text "
                                     << i << " element " << k;
            ASSERT_EQ(it.state, ref.state) << +codeSet << "/" << +language << " text " << i;
            if (o == 0) break;
          }
        }
      }
    }
  }
}

TEST(Readers, ComparisonAndHashAgreeWithTheReference) {
  const std::vector<std::u16string> corpus = Corpus();
  const unsigned short strengths[] = {0x10,  0x30,  0x50,  0x70, 0x90, 0x210,
                                      0x2F0, 0x110, 0x100, 0x00, 0x60};
  std::mt19937 rng(1124);
  for (int k = 0; k < 40000; ++k) {
    const size_t i = rng() % corpus.size();
    const size_t j = rng() % 2 ? (i + 1) % corpus.size() : rng() % corpus.size();
    const unsigned char cs1 = kCodeSets[rng() % 8];
    const unsigned char cs2 = rng() % 2 ? cs1 : kCodeSets[rng() % 8];
    const unsigned char l1 = rng() % 9;
    const unsigned char l2 = rng() % 2 ? l1 : rng() % 9;
    const unsigned char format = cs1 > 224 && cs2 > 224 && rng() % 3 == 0 ? 2 : 1;
    const unsigned short op = strengths[rng() % (sizeof strengths / sizeof strengths[0])];
    const short maxLength = rng() % 6 == 0 ? static_cast<short>(rng() % 9) : -1;
    const Text a = Encode(corpus[i], cs1, format);
    const Text b = Encode(corpus[j], cs2, format);
    // With wildcards on, a pattern without wildcard orders is a plain text.
    if ((op & (NxCMP_NO_WILDCARDS | NxCMP_EXACT)) == 0) {
      Reference p(b.data(), cs2, l2, format);
      bool wild = false;
      for (unsigned short o; !wild && (o = p.Next()) != 0;)
        wild = o == NxStringIterator::AsteriskOrder() || o == NxStringIterator::QuestionOrder();
      if (wild) continue;
    }
    ASSERT_EQ(NxStrCmp(cs1, l1, a.data(), cs2, l2, b.data(), op, maxLength, format, nullptr),
              ReferenceCompare(a.data(), cs1, l1, b.data(), cs2, l2, op, maxLength, format))
        << "texts " << i << ", " << j << " in " << +cs1 << "/" << +l1 << ", " << +cs2 << "/" << +l2
        << " op " << op << " maxLength " << maxLength << " format " << +format;
    if (k % 4 == 0) {
      Reference ref(a.data(), cs1, l1, format);
      uint32_t h = 0;
      while (const unsigned short o = ref.Next())
        h = h * 9 + NxStringIterator::WeightOf(o, ref.state);
      ASSERT_EQ(HashString(cs1, l1, const_cast<char*>(a.data()), -1, format), h) << "text " << i;
    }
  }
}

// A character without a record whose value is made a wildcard order keeps
// the state of the element before it, on every road.
TEST(Readers, AWildcardOrderOnACharacterWithoutARecordKeepsTheState) {
  NxStringIterator::SetAsteriskOrder(0x4E2D);  // 中
  const std::u16string texts[] = {u"a中b", u"Ω中", u"中中a", u"b-中", u"ab"};
  for (const std::u16string& x : texts) {
    const Text t = Encode(x, NxCS_UNICODE, 1);
    NxStringIterator it(t.data(), NxCS_UNICODE, NxLANG_NEUTRAL, 1);
    Reference ref(t.data(), NxCS_UNICODE, NxLANG_NEUTRAL, 1);
    for (unsigned short o = 1; o != 0;) {
      o = it.GetNextOrder(1);
      ASSERT_EQ(o, ref.Next());
      ASSERT_EQ(it.state, ref.state);
    }
    for (const std::u16string& y : texts) {
      const Text u = Encode(y, NxCS_UNICODE, 1);
      EXPECT_EQ(
          NxStrCmp(NxCS_UNICODE, 1, t.data(), NxCS_UNICODE, 1, u.data(), 0x10, -1, 1, nullptr),
          ReferenceCompare(t.data(), NxCS_UNICODE, 1, u.data(), NxCS_UNICODE, 1, 0x10, -1, 1));
    }
  }
  NxStringIterator::SetAsteriskOrder(0);
}

}  // namespace
