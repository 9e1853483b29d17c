// NxChar and NxStringIterator: characters, case, code sets, and the
// collation cursor that turns text into orders and weights.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using Orders = std::vector<unsigned short>;

constexpr unsigned char kCp1252 = 1, kIso8859_2 = 3, kIso8859_5 = 4, kIso8859_7 = 5, kUnicode = 253,
                        kOrderText = 254;
constexpr unsigned char kNeutral = 1, kGerman = 2, kSpanish = 3, kSwedish = 4, kDanish = 5,
                        kCzech = 6, kGreek = 7, kRussian = 8;

// A letter order from its fields.
constexpr unsigned short Letter(unsigned letter, unsigned accent = 0, unsigned lower = 0) {
  return static_cast<unsigned short>(0x4000u | (lower << 12) | (accent << 7) | (letter << 2));
}
// clang-format off
constexpr unsigned short Upper(char c) { return Letter(static_cast<unsigned>(c - 'A') + 3); }
constexpr unsigned short Lower(char c) { return Letter(static_cast<unsigned>(c - 'a') + 3, 0, 1); }
NxChar U(unsigned short value, unsigned char language = kNeutral) { return NxChar(value, kUnicode, language); }
const unsigned char* At(const void* p) { return static_cast<const unsigned char*>(p); }
// clang-format on

// A 16-bit text with its terminator (and a spare zero behind it).
std::vector<unsigned short> Wide(const std::u16string& text) {
  std::vector<unsigned short> units(text.begin(), text.end());
  units.insert(units.end(), 2, 0);
  return units;
}

struct Element {
  unsigned short order;
  unsigned char state;  // the iterator's state just after the order
  bool operator==(const Element& o) const { return order == o.order && state == o.state; }
};

std::vector<Element> Elements(NxStringIterator it) {
  std::vector<Element> out;
  for (unsigned short order; out.size() < 1000 && (order = it.GetNextOrder(1)) != 0;)
    out.push_back({order, it.state});
  return out;
}
std::vector<Element> Elements16(const std::u16string& text, unsigned char language) {
  std::vector<unsigned short> units = Wide(text);
  return Elements(NxStringIterator(units.data(), kUnicode, language, 1));
}
std::vector<Element> Elements8(const std::string& bytes, unsigned char language,
                               unsigned char codeSet = kCp1252) {
  return Elements(NxStringIterator(bytes.c_str(), codeSet, language, 1));
}

Orders OrdersOf(const std::vector<Element>& elements) {
  Orders out;
  for (const Element& e : elements) out.push_back(e.order);
  return out;
}
Orders Orders16(const std::u16string& text, unsigned char language) {
  return OrdersOf(Elements16(text, language));
}
// The weights, and (mask ~0x7F) without case and accent: what a primary comparison sees.
std::vector<uint32_t> Weights(const std::u16string& text, unsigned char language,
                              uint32_t mask = ~0u) {
  std::vector<uint32_t> out;
  for (const Element& e : Elements16(text, language))
    out.push_back(NxStringIterator::WeightOf(e.order, e.state) & mask);
  return out;
}
std::vector<uint32_t> Primary(const std::u16string& text, unsigned char language) {
  return Weights(text, language, ~0x7Fu);
}

const NxOrderRecord* UnicodeRecord(unsigned short value) {
  return NxLanguageContext::QueryCodeSet(kUnicode)->orderTable->Record(value);
}

class CollationTest : public ::testing::Test {
 protected:
  void SetUp() override { NxLanguageContext::ResetDefaults(); }
  void TearDown() override {
    NxLanguageContext::ResetDefaults();
    NxStringIterator::SetAsteriskOrder(0);
    NxStringIterator::SetQuestionOrder(0);
    NxStringIterator::SetEscapeOrder(0);
  }
};

TEST_F(CollationTest, OrdersFollowTheClassesAndLetterFields) {
  EXPECT_EQ(Orders16(u"Aaé", kNeutral), (Orders{0x400C, 0x500C, Letter(7, 2, 1)}));
  EXPECT_EQ(Orders16(u"_-,*?\\", kNeutral), (Orders{112, 116, 117, 159, 122, 160}));
  EXPECT_EQ(Orders16(u"07", kNeutral), (Orders{0x3F00, 0x3F00 + 70}));
  // Digits that expand keep the digit and set bit 0.
  const Orders half = Orders16(u"½", kNeutral);
  ASSERT_FALSE(half.empty());
  EXPECT_EQ(half[0] & 0xFF01u, 0x3F01u);

  // The class operations of NxChar rest on the same orders.
  const NxChar a('a', kCp1252, kNeutral), seven('7', kCp1252, kNeutral),
      dash('-', kCp1252, kNeutral), blank(' ', kCp1252, kNeutral), han = U(0x9F8D);
  EXPECT_EQ(a.Order(), Lower('a'));
  EXPECT_TRUE(a.IsAlpha() && !a.IsDigit() && !a.IsSymbol() && !a.IsSpace() && !a.IsHan());
  EXPECT_TRUE(seven.IsDigit() && !seven.IsAlpha());
  EXPECT_TRUE(dash.IsSymbol() && !dash.IsSpace());
  EXPECT_TRUE(blank.IsSpace() && !blank.IsSymbol());
  EXPECT_TRUE(han.IsHan() && !han.IsAlpha());
  // Without a record above 511 the value is the order, and so the class.
  ASSERT_EQ(UnicodeRecord(0x0800), nullptr);
  EXPECT_EQ(U(0x0800).Order(), 0x0800);
  EXPECT_TRUE(U(0x0800).IsSymbol());
}

TEST_F(CollationTest, WeightOfMovesCaseAndAccentBelowTheLetter) {
  EXPECT_EQ(NxStringIterator::WeightOf(0, 1), 0u);
  // "é" in state 1: letter e (7) in bits 10..14 with the letter class bit,
  // the case and accent bits (0x22) at the bottom.
  EXPECT_EQ(NxStringIterator::WeightOf(Letter(7, 2, 1), 1), 0x01401C22u);
  EXPECT_EQ(NxStringIterator::WeightOf(Letter(7, 2, 1), 20), (20u << 24) + (0x511Cu << 8));
  EXPECT_EQ(NxStringIterator::WeightOf(116, 1), (1u << 24) + (116u << 8));
  // Case and accent lose against the next letter, and the state against all.
  EXPECT_LT(NxStringIterator::WeightOf(Letter(7, 14, 1), 1),
            NxStringIterator::WeightOf(Upper('F'), 1));
  EXPECT_LT(NxStringIterator::WeightOf(0xFFFF, 1), NxStringIterator::WeightOf(1, 2));
}

TEST_F(CollationTest, TextInEveryCodeSetGivesTheSameOrders) {
  // Code set 0 stands for the native code set.
  for (unsigned char codeSet : {kCp1252, static_cast<unsigned char>(0)})
    EXPECT_EQ(OrdersOf(Elements8("Ma\xDF f\xFCr \x80", kNeutral, codeSet)),
              Orders16(u"Maß für €", kNeutral));
  // Code sets without their own table go through Unicode.
  EXPECT_EQ(Elements8("\xB4\xDE\xDC", kRussian, kIso8859_5), Elements16(u"Дом", kRussian));
  EXPECT_EQ(Elements8("\xE1\xE2\xE3", kGreek, kIso8859_7), Elements16(u"αβγ", kGreek));
  // A 16-bit text read with format 2 (most significant byte first).
  const unsigned char big[] = {0x00, 'S', 0x00, 0xDF, 0, 0};
  EXPECT_EQ(OrdersOf(Elements(
                NxStringIterator(reinterpret_cast<const char*>(big), kUnicode, kNeutral, 2))),
            Orders16(u"Sß", kNeutral));
}

TEST_F(CollationTest, TheEndOfTextStaysZero) {
  std::vector<unsigned short> empty = Wide(u""), one = Wide(u"a");
  NxStringIterator it(empty.data(), kUnicode, kNeutral, 1),
      single(one.data(), kUnicode, kNeutral, 1);
  EXPECT_EQ(it.IsEOS(), 1);
  EXPECT_EQ(single.GetNextOrder(1), Lower('a'));
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(it.GetNextOrder(1), 0);
    EXPECT_EQ(single.GetNextOrder(1), 0);
  }
  EXPECT_EQ(it.position, At(empty.data()));
  EXPECT_EQ(single.position, At(one.data() + 1));
}

TEST_F(CollationTest, ContractionsFollowTheLanguage) {
  // Spanish (traditional) "ch" and "ll", Czech "ch", Danish "aa" are one letter each.
  EXPECT_EQ(Orders16(u"ch", kSpanish).size(), 1u);
  EXPECT_EQ(Orders16(u"ll", kSpanish).size(), 1u);
  EXPECT_EQ(Orders16(u"ch", kCzech).size(), 1u);
  EXPECT_EQ(Orders16(u"aa", kDanish).size(), 1u);
  // Danish "aa" is "å", told apart only by its accent bits.
  EXPECT_EQ(Primary(u"aa", kDanish), Primary(u"å", kDanish));
  EXPECT_EQ(Primary(u"Aa", kDanish), Primary(u"Å", kDanish));
  // Languages without their own collation see two letters.
  EXPECT_EQ(Orders16(u"ch", kNeutral), (Orders{Lower('c'), Lower('h')}));
  EXPECT_EQ(Orders16(u"ch", kGreek), Orders16(u"ch", kNeutral));
  EXPECT_EQ(Orders16(u"aa", kSwedish), Orders16(u"aa", kNeutral));
}

TEST_F(CollationTest, AContractionStartAtTheEndStandsAlone) {
  for (unsigned char language : {kSpanish, kCzech}) {
    std::vector<unsigned short> text = Wide(u"ac");
    NxStringIterator it(text.data(), kUnicode, language, 1);
    EXPECT_EQ(it.GetNextOrder(1), Lower('a'));
    EXPECT_EQ(it.GetNextOrder(1), Lower('c'));
    EXPECT_EQ(it.position, At(text.data() + 2));
    EXPECT_EQ(it.IsEOS(), 1);
    EXPECT_EQ(it.GetNextOrder(1), 0);
  }
  // A candidate followed by a non-continuation: the next character is read again on its own.
  EXPECT_EQ(Orders16(u"cx", kSpanish), (Orders{Lower('c'), Lower('x')}));
  // The same in an 8-bit text.
  EXPECT_EQ(OrdersOf(Elements8("Ac", kDanish)), (Orders{Upper('A'), Lower('c')}));
  EXPECT_EQ(OrdersOf(Elements8("a", kDanish)), (Orders{Lower('a')}));
}

TEST_F(CollationTest, ExpansionsDeliverTheirOrdersAcrossTheEnd) {
  // "ß" sorts as "ss", "æ" as "ae", and in the German phonebook "ä" as "ae".
  EXPECT_EQ(Primary(u"ß", kNeutral), Primary(u"ss", kNeutral));
  EXPECT_EQ(Primary(u"æ", kNeutral), Primary(u"ae", kNeutral));
  EXPECT_EQ(Primary(u"Müller", kGerman), Primary(u"Mueller", kGerman));
  EXPECT_NE(Primary(u"Müller", kNeutral), Primary(u"Mueller", kNeutral));

  for (unsigned char language : {kNeutral, kGerman}) {
    std::vector<unsigned short> units = Wide(language == kGerman ? u"ä" : u"ß");
    NxStringIterator it(units.data(), kUnicode, language, 1);
    ASSERT_NE(it.GetNextOrder(1), 0);
    // The character stays current while the rest of its orders are pending.
    EXPECT_EQ(it.position, At(units.data()));
    EXPECT_EQ(it.IsEOS(), 0);
    ASSERT_NE(it.GetNextOrder(1), 0);
    EXPECT_EQ(it.position, At(units.data() + 1));
    EXPECT_EQ(it.IsEOS(), 1);
    EXPECT_EQ(it.GetNextOrder(1), 0);
  }
}

TEST_F(CollationTest, TheStateFollowsTheScript) {
  std::vector<Element> e = Elements16(u"ab αβ c", kNeutral);
  ASSERT_EQ(e.size(), 7u);
  const unsigned char states[] = {1, 1, 1, 2, 2, 1, 1};
  for (size_t i = 0; i < e.size(); ++i) EXPECT_EQ(e[i].state, states[i]) << "element " << i;
  // Same letter fields, different states: Greek sorts after all Latin.
  EXPECT_LT(Weights(u"z", kNeutral), Weights(u"α", kNeutral));

  // A text starts in its language's home state, and spaces go back to it.
  std::vector<unsigned short> text = Wide(u"a b");
  EXPECT_EQ(NxStringIterator(text.data(), kUnicode, kNeutral, 1).state, 1);
  EXPECT_EQ(NxStringIterator(text.data(), kUnicode, kGreek, 1).state, 2);
  EXPECT_EQ(NxStringIterator(text.data(), kUnicode, kRussian, 1).state, 3);
  e = Elements16(u"a b", kGreek);
  ASSERT_EQ(e.size(), 3u);
  EXPECT_EQ(e[0].state, 1);
  EXPECT_EQ(e[1].state, 2);
  // Without tracking the state stays.
  NxStringIterator untracked(text.data(), kUnicode, kGreek, 1);
  untracked.GetNextOrder(0);
  EXPECT_EQ(untracked.state, 2);
}

TEST_F(CollationTest, UnknownCharactersAreTheirOwnOrderInState20) {
  ASSERT_EQ(UnicodeRecord(0x4E00), nullptr);
  const std::vector<Element> e = Elements16(u"a一b", kNeutral);
  EXPECT_EQ(e, (std::vector<Element>{{Lower('a'), 1}, {0x4E00, 20}, {Lower('b'), 1}}));
  EXPECT_EQ(Weights(u"一", kNeutral)[0], (20u << 24) + (0x4E00u << 8));

  // Values from 0xFFF0 up, and values equal to a wildcard order, leave it.
  ASSERT_EQ(UnicodeRecord(0xFFF0), nullptr);
  ASSERT_EQ(UnicodeRecord(0x4E01), nullptr);
  EXPECT_EQ(Elements16(u"a\uFFF0", kNeutral), (std::vector<Element>{{Lower('a'), 1}, {0xFFF0, 1}}));
  NxStringIterator::SetAsteriskOrder(0x4E01);
  NxStringIterator::SetQuestionOrder(0x4E02);
  EXPECT_EQ(Elements16(u"a丁丂一", kNeutral),
            (std::vector<Element>{{Lower('a'), 1}, {0x4E01, 1}, {0x4E02, 1}, {0x4E00, 20}}));
  // 0 means unknown again: the default, the order of the character, is looked up anew.
  NxStringIterator::SetAsteriskOrder(0);
  EXPECT_EQ(NxStringIterator::AsteriskOrder(), 159);
  EXPECT_EQ(NxStringIterator::EscapeOrder(), 160);
}

TEST_F(CollationTest, ALeadingByteOrderMarkChangesNeitherOrdersNorComparisons) {
  // The mark is ignorable: the letters keep their state and their weights.
  EXPECT_EQ(Elements16(u"\uFEFFab", kNeutral),
            (std::vector<Element>{{2, 1}, {Lower('a'), 1}, {Lower('b'), 1}}));
  EXPECT_EQ(Elements16(u"\u061C\u0391", kGreek), (std::vector<Element>{{2, 2}, {Letter(3), 2}}));
  const std::vector<unsigned short> marked = Wide(u"\uFEFFb"), a = Wide(u"a"), b = Wide(u"b");
  auto compare = [](const std::vector<unsigned short>& x, const std::vector<unsigned short>& y,
                    unsigned short cmpOp) {
    return NxStrCmp(kUnicode, kNeutral, reinterpret_cast<const char*>(x.data()), kUnicode, kNeutral,
                    reinterpret_cast<const char*>(y.data()), cmpOp, -1, 1, nullptr);
  };
  EXPECT_GT(compare(marked, a, NxCMP_NO_WILDCARDS), 0);
  EXPECT_LT(compare(a, marked, NxCMP_NO_WILDCARDS), 0);
  // Only the space level sees it, and ignoring spaces makes it equal.
  EXPECT_NE(compare(marked, b, NxCMP_NO_WILDCARDS), 0);
  EXPECT_EQ(compare(marked, b, NxCMP_NO_WILDCARDS | NxCMP_IGNORE_SPACES), 0);
}

TEST_F(CollationTest, OrderTextReadsBack) {
  Orders orders = Orders16(u"Straße Ωμέγα 42", kNeutral);
  orders.push_back(0);
  orders.push_back(0x500C);  // behind the end: never reached
  NxStringIterator it(orders.data(), kOrderText, kNeutral, 1);
  const unsigned char initial = it.state;
  for (size_t i = 0; i + 2 < orders.size(); ++i) {
    EXPECT_EQ(it.GetNextOrder(1), orders[i]);
    EXPECT_EQ(it.state, initial);  // order text doesn't move the state
  }
  // The zero unit comes back as 0, and the iterator moves past it.
  EXPECT_EQ(it.GetNextOrder(1), 0);
  EXPECT_EQ(it.position, At(orders.data() + orders.size() - 1));

  const unsigned char big[] = {0x50, 0x0C, 0x00, 0x00};
  NxStringIterator msb(reinterpret_cast<const char*>(big), kOrderText, kNeutral, 2);
  EXPECT_EQ(msb.GetNextOrder(1), 0x500C);
}

TEST_F(CollationTest, SteppingWaitsForThePendingList) {
  const unsigned short values[] = {'x', 'y'};
  const NxWCharList list(2, values);
  std::vector<unsigned short> text = Wide(u"ab");
  NxStringIterator it(text.data(), kUnicode, kNeutral, 1);
  it.SetOverflow(&list, 255);
  EXPECT_EQ(it.overflowCodeSet, kUnicode);
  NxStringIterator start(it);
  ++it;
  EXPECT_EQ(it == start, 1);
  NxChar x = *it;
  EXPECT_EQ(x.position, nullptr);
  EXPECT_EQ(x.Value(), 'x');
  EXPECT_EQ(x.codeSet, kUnicode);
  EXPECT_EQ((*it).Value(), 'y');
  EXPECT_EQ(it.IsEOS(), 0);
  it.Step(1);  // the list is used up: now the text moves, and the list is gone
  EXPECT_EQ(it.overflow, nullptr);
  EXPECT_EQ((*it).Value(), 'b');
  // operator-- ignores a pending list; stepping forward waits for it.
  it.SetOverflow(&list, 255);
  NxStringIterator before = it--;
  EXPECT_EQ(before.position, At(text.data() + 1));
  EXPECT_EQ(it.position, At(text.data()));
  NxStringIterator same = it++;
  EXPECT_EQ(same == it, 1);
  *it;
  *it;
  it.Step(1);
  EXPECT_EQ(it.position, At(text.data() + 1));
  it.Step(0);
  EXPECT_EQ(it.position, At(text.data()));
}

TEST_F(CollationTest, APendingListCountsAsTextAtTheEnd) {
  const unsigned short values[] = {'x', 'y'}, orders[] = {0x1234, 0x2345};
  const NxWCharList list(2, values), pending(2, orders);
  std::vector<unsigned short> text = Wide(u"a"), two = Wide(u"ab");
  NxStringIterator it(text.data(), kUnicode, kNeutral, 1);
  EXPECT_EQ(it.GetNextOrder(1), Lower('a'));
  EXPECT_EQ(it.IsEOS(), 1);
  it.SetOverflow(&list, kUnicode);
  EXPECT_EQ(it.IsEOS(), 0);
  EXPECT_EQ(it.GetNextOrder(1), Lower('x'));
  EXPECT_EQ(it.GetNextOrder(1), Lower('y'));
  // Pending orders (code set 254) come back as they are, standing in for the character they
  // were set on.
  NxStringIterator other(two.data(), kUnicode, kNeutral, 1);
  other.SetOverflow(&pending, kOrderText);
  const unsigned char state = other.state;
  EXPECT_EQ(other.GetNextOrder(1), 0x1234);
  EXPECT_EQ(other.GetNextOrder(1), 0x2345);
  EXPECT_EQ(other.state, state);
  EXPECT_EQ(other.GetNextOrder(1), Lower('b'));
}

TEST_F(CollationTest, IteratorCopiesNeverOwnTheBuffer) {
  NxChar e = U(0x00E9), a('a', kCp1252, kNeutral);
  NxStringIterator owner(e);
  EXPECT_NE(owner.ownsBuffer, 0);
  EXPECT_EQ(owner.state, 1);
  NxStringIterator copy(owner), assigned;
  EXPECT_EQ(copy.ownsBuffer, 0);
  EXPECT_EQ(copy.position, owner.position);
  EXPECT_EQ(copy.GetNextOrder(1), Letter(7, 2, 1));
  EXPECT_EQ(copy.GetNextOrder(1), 0);
  EXPECT_EQ(assigned.format, 1);
  assigned = owner;
  EXPECT_EQ(assigned.ownsBuffer, 0);
  // Assigning to an owner frees its own text (the sanitizers watch this).
  NxStringIterator second(a);
  EXPECT_EQ(second.GetNextOrder(1), Lower('a'));
  second = copy;
  EXPECT_EQ(second.ownsBuffer, 0);
}

TEST_F(CollationTest, HandlesWriteIntoTheTextFreeCharactersDont) {
  EXPECT_EQ(NxChar().codeSet, kUnicode);
  NxLanguageContext::SetDefaultLanguage(kCzech);
  EXPECT_EQ(NxChar('x', 255, 255).codeSet, NxLanguageContext::GetDefault8CodeSet());
  EXPECT_EQ(NxChar('x', 255, 255).language, kCzech);
  // In an 8-bit code set a 16-bit argument keeps its low byte, unsigned.
  EXPECT_EQ(NxChar(static_cast<unsigned short>(0x01E9), kCp1252, 1).Value(), 0xE9);
  EXPECT_EQ(NxChar('\xE9', kCp1252, 1).Value(), 0xE9);

  char text[] = "abc";
  NxChar handle(text + 1, 255, 255, 255);
  EXPECT_EQ(handle.codeSet, kCp1252);
  NxChar copy(handle);
  EXPECT_EQ(copy.position, nullptr);
  copy = 'z';
  EXPECT_STREQ(text, "abc");
  EXPECT_EQ(copy.Value(), 'z');
  // A handle maps what it is given into the text's code set; operator=(char) doesn't map.
  handle = U(0x20AC);  // euro sign
  EXPECT_EQ(static_cast<unsigned char>(text[1]), 0x80);
  handle = U(0x4E00);
  EXPECT_STREQ(text, "a?c");
  handle = '\xB4';
  EXPECT_EQ(static_cast<unsigned char>(text[1]), 0xB4);
  char cyrillic[] = "xx";
  NxChar de(cyrillic, kIso8859_5, kRussian, 1);
  de = U(0x0414, kRussian);
  EXPECT_EQ(static_cast<unsigned char>(cyrillic[0]), 0xB4);

  // 16-bit text: as it stands in the same format, most significant byte first in another.
  unsigned short wide[] = {'a', 'b', 0};
  NxChar unit(reinterpret_cast<const char*>(wide), kUnicode, kNeutral, 1);
  unit = NxChar('\xE9', kCp1252, kNeutral);
  EXPECT_EQ(wide[0], 0x00E9);
  unsigned char big[] = {0, 'a', 0, 0};
  NxChar msb(reinterpret_cast<const char*>(big), kUnicode, kNeutral, 2);
  EXPECT_EQ(msb.Value(), 'a');
  msb = U(0x0141);
  EXPECT_EQ(big[0], 0x01);
  EXPECT_EQ(big[1], 0x41);

  // A free-standing character takes everything of what it is given.
  NxChar loose;
  loose = NxChar('\xE9', kIso8859_2, kCzech);
  EXPECT_EQ(loose.codeSet, kIso8859_2);
  EXPECT_EQ(loose.language, kCzech);
  EXPECT_EQ(loose.Value(), 0xE9);
}

TEST_F(CollationTest, MapToGoesThroughTheTargetCodeSet) {
  const NxChar euro('\x80', kCp1252, kNeutral);
  EXPECT_EQ(euro.MapTo(kUnicode).Value(), 0x20AC);
  EXPECT_EQ(euro.MapTo(kUnicode).codeSet, kUnicode);
  EXPECT_EQ(euro.MapTo(2).Value(), '?');  // ISO-8859-1 has no euro sign
  EXPECT_EQ(euro.MapTo(0).Value(), 0x80);
  EXPECT_EQ(euro.MapTo(0).codeSet, kCp1252);
  EXPECT_EQ(euro.MapTo(kCp1252).Value(), 0x80);
  EXPECT_EQ(U(0x0159, kCzech).MapTo(kIso8859_2).Value(), 0xF8);  // ř
  // Code set 0 maps from the native code set.
  EXPECT_EQ(NxChar('\x80', 0, kNeutral).MapTo(kUnicode).Value(), 0x20AC);
}

TEST_F(CollationTest, CharactersCompareByCollation) {
  const NxChar a('a', kCp1252, kNeutral), upperA('A', kCp1252, kNeutral), eAcute = U(0x00E9);
  // Full strength by default: case and accent count, after the letter (and the lower-case
  // letter first).
  EXPECT_EQ(a == 'a', 1);
  EXPECT_EQ(a == upperA, 0);
  EXPECT_EQ(a < upperA, 1);
  EXPECT_EQ(a < 'b', 1);
  EXPECT_EQ(NxChar('e', kCp1252, kNeutral) < eAcute, 1);
  EXPECT_EQ(eAcute < 'f', 1);
  EXPECT_EQ(eAcute >= static_cast<unsigned short>(0x00E9), 1);
  EXPECT_LT(a != 'b', 0);
  EXPECT_GT(NxChar('b', kCp1252, kNeutral) != a, 0);
  EXPECT_EQ(a != 'a', 0);
  // Across code sets the character counts, not the byte.
  EXPECT_EQ(NxChar('\xE9', kCp1252, kNeutral) == eAcute, 1);
  EXPECT_EQ(NxChar('\xB4', kIso8859_5, kRussian) == U(0x0414, kRussian), 1);
  // An explicit operator, and the default one when asked with 65535.
  EXPECT_EQ(a.Compare(upperA, NxCMP_NO_WILDCARDS | NxCMP_IGNORE_CASE), 0);
  EXPECT_NE(a.Compare(upperA, 65535), 0);
  NxLanguageContext::SetDefaultCmpOp(NxCMP_NO_WILDCARDS | NxCMP_IGNORE_CASE | NxCMP_IGNORE_ACCENTS);
  EXPECT_EQ(a == upperA, 1);
  EXPECT_EQ(NxChar('E', kCp1252, kNeutral) == eAcute, 1);
  // A handle compares its one character, not the text behind it: "c" of "ch" is a "c" even
  // in Spanish.
  char text[] = "ch";
  const NxChar c(text, kCp1252, kSpanish, 1);
  EXPECT_EQ(c.Compare(NxChar('c', kCp1252, kSpanish), NxCMP_NO_WILDCARDS), 0);
}

TEST_F(CollationTest, ToUpperDeliversLongerFormsThroughThePendingList) {
  NxCharToUpper upper;
  NxCharToLower lower;
  std::vector<unsigned short> source = Wide(u"straße ﬁx"), target(32, 0xAAAA);
  const auto transform = [](NxStringIterator from, NxStringIterator to, NxCharOperation& op) {
    from.Transform(to, op);
  };
  transform({source.data(), kUnicode, kNeutral, 1}, {target.data(), kUnicode, kNeutral, 1}, upper);
  EXPECT_EQ(std::u16string(target.begin(), target.begin() + 11), u"STRASSE FIX");
  EXPECT_EQ(target[11], 0);       // the terminator is copied
  EXPECT_EQ(target[12], 0xAAAA);  // and nothing more

  char bytes[] = "Ma\xDF \xE9t\xE9", out[32];
  std::memset(out, 'x', sizeof out);
  transform({bytes, kCp1252, kNeutral, 1}, {out, kCp1252, kNeutral, 1}, upper);
  EXPECT_STREQ(out, "MASS \xC9T\xC9");
  transform({out, kCp1252, kNeutral, 1}, {out, kCp1252, kNeutral, 1}, lower);
  EXPECT_STREQ(out, "mass \xE9t\xE9");

  // Single characters: without an iterator the first character of a longer form is all there
  // is; characters without a case mapping come back unchanged; code set 0 uses the C library.
  // clang-format off
  const struct { NxChar c; bool toUpper; unsigned short want; } cases[] = {
      {U(0x00DF), true, 'S'}, {U(0x4E00), true, 0x4E00}, {NxChar('1', kCp1252, kNeutral), false, '1'},
      {NxChar('\xD4', kIso8859_5, kRussian), true, 0xB4}, {NxChar('\xB4', kIso8859_5, kRussian), false, 0xD4},
      {NxChar('\xF9', kIso8859_7, kGreek), true, 0xD9}, {NxChar('q', 0, kNeutral), true, 'Q'},
      {NxChar('Q', 0, kNeutral), false, 'q'}};
  // clang-format on
  for (const auto& t : cases) {
    const NxChar got = t.toUpper ? t.c.ToUpper(nullptr) : t.c.ToLower(nullptr);
    EXPECT_EQ(got.Value(), t.want) << std::hex << t.c.Value();
    EXPECT_EQ(got.codeSet, t.c.codeSet);
  }
}

std::vector<uint32_t> Levels(const std::vector<uint32_t>& weights) {
  std::vector<uint32_t> key;
  for (uint32_t mask : {~0x7Fu, 0x1Fu, 0x60u}) {
    for (uint32_t w : weights) key.push_back(w & mask);
    key.push_back(0);
  }
  return key;
}
std::vector<uint32_t> Key16(const std::u16string& text, unsigned char language) {
  return Levels(Weights(text, language));
}

TEST_F(CollationTest, RealNamesSortAsReadersOfTheLanguageExpect) {
  // Each list is in the order a reader of the language expects; the same names in the 8-bit
  // code set weigh the same.
  // clang-format off
  const struct { unsigned char language, codeSet; std::vector<std::u16string> names; } lists[] = {
      // French, neutral: accents only break ties (Lefebvre before Lefèvre), œ is oe, ç a c.
      {kNeutral, kCp1252, {u"Aubert", u"Bélanger", u"Boucher", u"Côté", u"Cyr", u"Dubé", u"Dubois",
          u"Émond", u"Fortin", u"Françoise", u"Frank", u"Gagné", u"Gagnon", u"Leblanc", u"Lebœuf",
          u"Lebrun", u"Lefebvre", u"Lefèvre", u"Lemieux", u"Ménard", u"Morin", u"Pelletier",
          u"Pétrin"}},
      // German phonebook: ä = ae, ö = oe, ü = ue, ß = ss (Müller before Muff).
      {kGerman, kCp1252, {u"Bach", u"Bader", u"Bäcker", u"Göbel", u"Gollmer", u"Günther",
          u"Hoffmann", u"Müller", u"Muff", u"Schäfer", u"Schaller", u"Straub", u"Strausberg",
          u"Strauß", u"Zöllner"}},
      // The phonebook's Göbel is Goebel with an accent; the neutral ö is an o, ü a u.
      {kGerman, kCp1252, {u"Goebel", u"Göbel"}},
      {kNeutral, kCp1252, {u"Göbel", u"Goebel", u"Muff", u"Müller"}},
      // Spanish (traditional): ch after c, ll after l, ñ after n (Núñez before Ñíguez).
      {kSpanish, kCp1252, {u"Castro", u"Cuenca", u"Chacón", u"Chávez", u"Dávila", u"Lozano",
          u"Luna", u"Llamas", u"Llorente", u"Martínez", u"Muñoz", u"Navarro", u"Núñez", u"Ñíguez",
          u"Ortega"}},
      // Swedish: å, ä, ö after z (Svensson before Söderberg, Zetterberg before Åberg).
      {kSwedish, kCp1252, {u"Andersson", u"Björk", u"Eriksson", u"Lindström", u"Nilsson",
          u"Sjöberg", u"Svensson", u"Söderberg", u"Zetterberg", u"Åberg", u"Åkesson", u"Ängström",
          u"Öberg", u"Östlund"}},
      // Danish: æ, ø, å after z, and "aa" as "å" (Aagaard after Åberg).
      {kDanish, kCp1252, {u"Andersen", u"Bak", u"Hansen", u"Jensen", u"Nielsen", u"Svendsen",
          u"Sørensen", u"Zeuthen", u"Ægidius", u"Østergaard", u"Åberg", u"Aagaard"}},
      // Czech: č, ř, š, ž after their base letters, ch after h (Hudec before Chalupa).
      {kCzech, kIso8859_2, {u"Cibulka", u"Čapek", u"Černý", u"Dvořák", u"Havel", u"Horák", u"Hudec",
          u"Chalupa", u"Chytil", u"Jelínek", u"Novák", u"Růžička", u"Říha", u"Svoboda", u"Šimek",
          u"Šťastný", u"Tichý", u"Zeman", u"Žáček"}},
      // Greek: the Greek alphabet, not a transliteration (Ηλιόπουλος after Ζαχαρίου).
      {kGreek, kIso8859_7, {u"Αθανασίου", u"Βασιλείου", u"Γεωργίου", u"Γιαννόπουλος", u"Δημητρίου",
          u"Ευαγγέλου", u"Ζαχαρίου", u"Ηλιόπουλος", u"Θεοδώρου", u"Ιωάννου", u"Καραγιάννης",
          u"Λαμπράκης", u"Μαυρίδης", u"Νικολάου", u"Ξενάκης", u"Οικονόμου", u"Παπαδάκης",
          u"Παπαδόπουλος", u"Ραφαηλίδης", u"Σπυρόπουλος", u"Τσακίρης", u"Υψηλάντης", u"Φωτίου",
          u"Χατζής", u"Ψαλίδας", u"Ωραιόπουλος"}},
      // Russian: the Cyrillic alphabet (Ё with Е, Й after И, Э Ю Я at the end).
      {kRussian, kIso8859_5, {u"Абрамов", u"Борисов", u"Васильев", u"Волков", u"Григорьев",
          u"Дмитриев", u"Егоров", u"Ёлкин", u"Жуков", u"Зайцев", u"Иванов", u"Йодлов", u"Козлов",
          u"Лебедев", u"Морозов", u"Новиков", u"Орлов", u"Павлов", u"Петров", u"Романов",
          u"Смирнов", u"Соколов", u"Тарасов", u"Уткин", u"Фёдоров", u"Харитонов", u"Цветков",
          u"Чернов", u"Шубин", u"Щукин", u"Эльдаров", u"Юдин", u"Яковлев"}}};
  // clang-format on
  for (const auto& list : lists) {
    const NxCodeSet* cs = NxLanguageContext::QueryCodeSet(list.codeSet);
    for (size_t i = 0; i < list.names.size(); ++i) {
      const std::u16string& name = list.names[i];
      SCOPED_TRACE(testing::Message() << "language " << int(list.language) << ", name " << i);
      EXPECT_TRUE(i == 0 || Key16(list.names[i - 1], list.language) < Key16(name, list.language));
      std::string bytes;
      for (char16_t c : name) bytes += static_cast<char>(cs->FromUnicode(c, 0));
      ASSERT_EQ(bytes.find('\0'), std::string::npos);
      std::vector<uint32_t> weights;
      for (const Element& e : Elements8(bytes, list.language, list.codeSet))
        weights.push_back(NxStringIterator::WeightOf(e.order, e.state));
      EXPECT_EQ(Levels(weights), Key16(name, list.language));
    }
  }
}

}  // namespace
