// NxChar and NxStringIterator: characters, case, code sets, and the
// collation cursor that turns text into orders and weights.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

// A letter order from its fields.
constexpr unsigned short Letter(unsigned letter, unsigned accent = 0, unsigned lower = 0,
                                unsigned extension = 0) {
  return static_cast<unsigned short>(0x4000u | (lower << 12) | (accent << 7) | (letter << 2) |
                                     extension);
}
constexpr unsigned short Upper(char c) {
  return Letter(static_cast<unsigned>(c - 'A') + 3);
}
constexpr unsigned short Lower(char c) {
  return Letter(static_cast<unsigned>(c - 'a') + 3, 0, 1);
}

constexpr unsigned char kCp1252 = 1, kIso8859_2 = 3, kIso8859_5 = 4, kIso8859_7 = 5, kUnicode = 253,
                        kOrderText = 254;
constexpr unsigned char kNeutral = 1, kGerman = 2, kSpanish = 3, kSwedish = 4, kDanish = 5,
                        kCzech = 6, kGreek = 7, kRussian = 8;

// A 16-bit text with its terminator (and a spare zero behind it).
std::vector<unsigned short> Wide(const std::u16string& text) {
  std::vector<unsigned short> units(text.begin(), text.end());
  units.push_back(0);
  units.push_back(0);
  return units;
}

struct Element {
  unsigned short order;
  unsigned char state;  // the iterator's state just after the order
  bool operator==(const Element& o) const { return order == o.order && state == o.state; }
};

std::vector<Element> Elements(NxStringIterator it) {
  std::vector<Element> out;
  for (int guard = 0; guard < 1000; ++guard) {
    const unsigned short order = it.GetNextOrder(1);
    if (order == 0) break;
    out.push_back({order, it.state});
  }
  return out;
}

std::vector<Element> Elements16(const std::u16string& text, unsigned char language,
                                unsigned char codeSet = kUnicode) {
  std::vector<unsigned short> units = Wide(text);
  return Elements(NxStringIterator(units.data(), codeSet, language, 1));
}

std::vector<Element> Elements8(const std::string& bytes, unsigned char language,
                               unsigned char codeSet = kCp1252) {
  return Elements(NxStringIterator(bytes.c_str(), codeSet, language, 1));
}

std::vector<unsigned short> OrdersOf(const std::vector<Element>& elements) {
  std::vector<unsigned short> out;
  for (const Element& e : elements) out.push_back(e.order);
  return out;
}

std::vector<uint32_t> WeightsOf(const std::vector<Element>& elements) {
  std::vector<uint32_t> out;
  for (const Element& e : elements) out.push_back(NxStringIterator::WeightOf(e.order, e.state));
  return out;
}

// The weights without case and accent: what a primary comparison sees.
std::vector<uint32_t> Primary(const std::vector<Element>& elements) {
  std::vector<uint32_t> out = WeightsOf(elements);
  for (uint32_t& w : out) w &= ~0x7Fu;
  return out;
}

std::vector<unsigned short> Orders16(const std::u16string& text, unsigned char language) {
  return OrdersOf(Elements16(text, language));
}

const NxOrderTable* UnicodeTable() {
  return NxLanguageContext::QueryCodeSet(kUnicode)->orderTable;
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

// ---------------------------------------------------------------------------
// Orders, classes and weights of single characters.

TEST_F(CollationTest, OrdersFollowTheClassesAndLetterFields) {
  EXPECT_EQ(Orders16(u"Aaé", kNeutral),
            (std::vector<unsigned short>{0x400C, 0x500C, Letter(7, 2, 1)}));
  EXPECT_EQ(Orders16(u"_-,*?\\", kNeutral),
            (std::vector<unsigned short>{112, 116, 117, 159, 122, 160}));
  EXPECT_EQ(Orders16(u"07", kNeutral), (std::vector<unsigned short>{0x3F00, 0x3F00 + 70}));
  // Digits that expand keep the digit and set bit 0.
  const std::vector<unsigned short> half = Orders16(u"½", kNeutral);
  ASSERT_FALSE(half.empty());
  EXPECT_EQ(half[0] & 0xFF01u, 0x3F01u);

  // The class operations of NxChar rest on the same orders.
  const NxChar a('a', kCp1252, kNeutral), seven('7', kCp1252, kNeutral),
      dash('-', kCp1252, kNeutral), blank(' ', kCp1252, kNeutral);
  const NxChar han(static_cast<unsigned short>(0x9F8D), kUnicode, kNeutral);
  EXPECT_EQ(a.Order(), Lower('a'));
  EXPECT_TRUE(a.IsAlpha() && !a.IsDigit() && !a.IsSymbol() && !a.IsSpace() && !a.IsHan());
  EXPECT_TRUE(seven.IsDigit() && !seven.IsAlpha());
  EXPECT_TRUE(dash.IsSymbol() && !dash.IsSpace());
  EXPECT_TRUE(blank.IsSpace() && !blank.IsSymbol());
  EXPECT_TRUE(han.IsHan() && !han.IsAlpha());
  // Without a record above 511 the value is the order, and so the class.
  ASSERT_EQ(UnicodeTable()->Record(0x0800), nullptr);
  const NxChar unknown(static_cast<unsigned short>(0x0800), kUnicode, kNeutral);
  EXPECT_EQ(unknown.Order(), 0x0800);
  EXPECT_TRUE(unknown.IsSymbol());
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
  const std::vector<unsigned short> unicode = Orders16(u"Straße über €", kNeutral);
  EXPECT_EQ(OrdersOf(Elements8("Stra\xDF"
                               "e \xFC"
                               "ber \x80",
                               kNeutral)),
            unicode);
  // Code set 0 stands for the native code set.
  EXPECT_EQ(OrdersOf(Elements8("Stra\xDF"
                               "e \xFC"
                               "ber \x80",
                               kNeutral, 0)),
            unicode);
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
  std::vector<unsigned short> empty = Wide(u"");
  NxStringIterator it(empty.data(), kUnicode, kNeutral, 1);
  EXPECT_EQ(it.IsEOS(), 1);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(it.GetNextOrder(1), 0);
  EXPECT_EQ(it.position, reinterpret_cast<unsigned char*>(empty.data()));

  std::vector<unsigned short> one = Wide(u"a");
  NxStringIterator single(one.data(), kUnicode, kNeutral, 1);
  EXPECT_EQ(single.GetNextOrder(1), Lower('a'));
  EXPECT_EQ(single.GetNextOrder(1), 0);
  EXPECT_EQ(single.GetNextOrder(1), 0);
  EXPECT_EQ(single.position, reinterpret_cast<unsigned char*>(one.data() + 1));
}

// ---------------------------------------------------------------------------
// Contractions, expansions and language variants.

TEST_F(CollationTest, ContractionsFollowTheLanguage) {
  // Spanish (traditional): "ch" is one letter after c, "ll" one after l.
  ASSERT_EQ(Orders16(u"ch", kSpanish).size(), 1u);
  EXPECT_EQ(Orders16(u"ll", kSpanish).size(), 1u);
  // Czech: "ch" after h.
  ASSERT_EQ(Orders16(u"ch", kCzech).size(), 1u);
  // Danish: "aa" is "å" (told apart only by its accent bits).
  ASSERT_EQ(Orders16(u"aa", kDanish).size(), 1u);
  EXPECT_EQ(Primary(Elements16(u"aa", kDanish)), Primary(Elements16(u"å", kDanish)));
  EXPECT_EQ(Primary(Elements16(u"Aa", kDanish)), Primary(Elements16(u"Å", kDanish)));
  // Languages without their own collation see two letters.
  EXPECT_EQ(Orders16(u"ch", kNeutral), (std::vector<unsigned short>{Lower('c'), Lower('h')}));
  EXPECT_EQ(Orders16(u"ch", kGreek), Orders16(u"ch", kNeutral));
  EXPECT_EQ(Orders16(u"aa", kSwedish), Orders16(u"aa", kNeutral));
}

TEST_F(CollationTest, AContractionStartAtTheEndStandsAlone) {
  for (unsigned char language : {kSpanish, kCzech}) {
    std::vector<unsigned short> text = Wide(u"ac");
    NxStringIterator it(text.data(), kUnicode, language, 1);
    EXPECT_EQ(it.GetNextOrder(1), Lower('a'));
    EXPECT_EQ(it.GetNextOrder(1), Orders16(u"c", kNeutral)[0]);
    EXPECT_EQ(it.position, reinterpret_cast<unsigned char*>(text.data() + 2));
    EXPECT_EQ(it.IsEOS(), 1);
    EXPECT_EQ(it.GetNextOrder(1), 0);
  }
  // A candidate followed by a non-continuation: the next character is read
  // again on its own.
  EXPECT_EQ(Orders16(u"cx", kSpanish), (std::vector<unsigned short>{Lower('c'), Lower('x')}));
  // The same in an 8-bit text.
  EXPECT_EQ(OrdersOf(Elements8("Ac", kDanish)),
            (std::vector<unsigned short>{Upper('A'), Lower('c')}));
  EXPECT_EQ(OrdersOf(Elements8("a", kDanish)), (std::vector<unsigned short>{Lower('a')}));
}

TEST_F(CollationTest, ExpansionsDeliverTheirOrdersAcrossTheEnd) {
  // "ß" sorts as "ss", "æ" as "ae", and in the German phonebook "ä" as "ae".
  EXPECT_EQ(Primary(Elements16(u"ß", kNeutral)), Primary(Elements16(u"ss", kNeutral)));
  EXPECT_EQ(Primary(Elements16(u"æ", kNeutral)), Primary(Elements16(u"ae", kNeutral)));
  EXPECT_EQ(Primary(Elements16(u"Müller", kGerman)), Primary(Elements16(u"Mueller", kGerman)));
  EXPECT_NE(Primary(Elements16(u"Müller", kNeutral)), Primary(Elements16(u"Mueller", kNeutral)));

  for (unsigned char language : {kNeutral, kGerman}) {
    const std::u16string text = language == kGerman ? u"ä" : u"ß";
    std::vector<unsigned short> units = Wide(text);
    NxStringIterator it(units.data(), kUnicode, language, 1);
    ASSERT_NE(it.GetNextOrder(1), 0);
    // The character stays current while the rest of its orders are pending.
    EXPECT_EQ(it.position, reinterpret_cast<unsigned char*>(units.data()));
    EXPECT_EQ(it.IsEOS(), 0);
    ASSERT_NE(it.GetNextOrder(1), 0);
    EXPECT_EQ(it.position, reinterpret_cast<unsigned char*>(units.data() + 1));
    EXPECT_EQ(it.IsEOS(), 1);
    EXPECT_EQ(it.GetNextOrder(1), 0);
  }
}

TEST_F(CollationTest, LanguageVariantsMoveLettersBehindZ) {
  const auto weight = [](const char16_t* text, unsigned char language) {
    return WeightsOf(Elements16(text, language));
  };
  // The orders behind z are checked by the name lists; elsewhere these are accented letters.
  EXPECT_LT(weight(u"ž", kCzech), weight(u"ø", kDanish)) << "variants are letters after z";
  EXPECT_EQ(Primary(Elements16(u"ä", kNeutral)), Primary(Elements16(u"a", kNeutral)));
  EXPECT_EQ(Primary(Elements16(u"č", kRussian)), Primary(Elements16(u"c", kRussian)));
  EXPECT_LT(weight(u"ö", kNeutral), weight(u"z", kNeutral));
}

// ---------------------------------------------------------------------------
// States.

TEST_F(CollationTest, TheStateFollowsTheScript) {
  std::vector<Element> e = Elements16(u"ab αβ c", kNeutral);
  ASSERT_EQ(e.size(), 7u);
  const unsigned char states[] = {1, 1, 1, 2, 2, 1, 1};
  for (size_t i = 0; i < e.size(); ++i) EXPECT_EQ(e[i].state, states[i]) << "element " << i;
  // Same letter fields, different states: Greek sorts after all Latin.
  EXPECT_LT(WeightsOf(Elements16(u"z", kNeutral)), WeightsOf(Elements16(u"α", kNeutral)));

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
  ASSERT_EQ(UnicodeTable()->Record(0x4E00), nullptr);
  const std::vector<Element> e = Elements16(u"a一b", kNeutral);
  EXPECT_EQ(e, (std::vector<Element>{{Lower('a'), 1}, {0x4E00, 20}, {Lower('b'), 1}}));
  EXPECT_EQ(WeightsOf(e)[1], (20u << 24) + (0x4E00u << 8));

  // Values from 0xFFF0 up, and values equal to a wildcard order, leave it.
  ASSERT_EQ(UnicodeTable()->Record(0xFFF0), nullptr);
  ASSERT_EQ(UnicodeTable()->Record(0x4E01), nullptr);
  EXPECT_EQ(Elements16(u"a\uFFF0", kNeutral), (std::vector<Element>{{Lower('a'), 1}, {0xFFF0, 1}}));
  NxStringIterator::SetAsteriskOrder(0x4E01);
  NxStringIterator::SetQuestionOrder(0x4E02);
  EXPECT_EQ(Elements16(u"a丁丂一", kNeutral),
            (std::vector<Element>{{Lower('a'), 1}, {0x4E01, 1}, {0x4E02, 1}, {0x4E00, 20}}));
}

TEST_F(CollationTest, WildcardOrdersDefaultToTheirCharacters) {
  EXPECT_EQ(NxStringIterator::AsteriskOrder(), 159);
  EXPECT_EQ(NxStringIterator::QuestionOrder(), 122);
  EXPECT_EQ(NxStringIterator::EscapeOrder(), 160);
  // 0 means unknown again: the default is looked up anew.
  NxStringIterator::SetAsteriskOrder(116);
  NxStringIterator::SetAsteriskOrder(0);
  EXPECT_EQ(NxStringIterator::AsteriskOrder(), 159);
}

// ---------------------------------------------------------------------------
// Order text.

TEST_F(CollationTest, OrderTextReadsBack) {
  const std::vector<Element> source = Elements16(u"Straße Ωμέγα 42", kNeutral);
  std::vector<unsigned short> orders = OrdersOf(source);
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
  EXPECT_EQ(it.position, reinterpret_cast<unsigned char*>(orders.data() + orders.size() - 1));

  const unsigned char big[] = {0x50, 0x0C, 0x00, 0x00};
  NxStringIterator msb(reinterpret_cast<const char*>(big), kOrderText, kNeutral, 2);
  EXPECT_EQ(msb.GetNextOrder(1), 0x500C);
}

// ---------------------------------------------------------------------------
// Stepping, pending lists and copies.

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
  EXPECT_EQ(before.position, reinterpret_cast<unsigned char*>(text.data() + 1));
  EXPECT_EQ(it.position, reinterpret_cast<unsigned char*>(text.data()));
  NxStringIterator same = it++;
  EXPECT_EQ(same == it, 1);
  *it;
  *it;
  it.Step(1);
  EXPECT_EQ(it.position, reinterpret_cast<unsigned char*>(text.data() + 1));
  it.Step(0);
  EXPECT_EQ(it.position, reinterpret_cast<unsigned char*>(text.data()));
}

TEST_F(CollationTest, APendingListCountsAsTextAtTheEnd) {
  const unsigned short values[] = {'x', 'y'};
  const NxWCharList list(2, values);
  std::vector<unsigned short> text = Wide(u"a");
  NxStringIterator it(text.data(), kUnicode, kNeutral, 1);
  EXPECT_EQ(it.GetNextOrder(1), Lower('a'));
  EXPECT_EQ(it.IsEOS(), 1);
  it.SetOverflow(&list, kUnicode);
  EXPECT_EQ(it.IsEOS(), 0);
  EXPECT_EQ(it.GetNextOrder(1), Lower('x'));
  EXPECT_EQ(it.GetNextOrder(1), Lower('y'));
  // Pending orders (code set 254) come back as they are, standing in for
  // the character they were set on.
  const unsigned short orders[] = {0x1234, 0x2345};
  const NxWCharList pending(2, orders);
  std::vector<unsigned short> two = Wide(u"ab");
  NxStringIterator other(two.data(), kUnicode, kNeutral, 1);
  other.SetOverflow(&pending, kOrderText);
  const unsigned char state = other.state;
  EXPECT_EQ(other.GetNextOrder(1), 0x1234);
  EXPECT_EQ(other.GetNextOrder(1), 0x2345);
  EXPECT_EQ(other.state, state);
  EXPECT_EQ(other.GetNextOrder(1), Lower('b'));
}

TEST_F(CollationTest, IteratorCopiesNeverOwnTheBuffer) {
  NxChar e(static_cast<unsigned short>(0x00E9), kUnicode, kNeutral);
  NxStringIterator owner(e);
  EXPECT_NE(owner.ownsBuffer, 0);
  EXPECT_EQ(owner.state, 1);
  NxStringIterator copy(owner);
  EXPECT_EQ(copy.ownsBuffer, 0);
  EXPECT_EQ(copy.position, owner.position);
  EXPECT_EQ(copy.GetNextOrder(1), Letter(7, 2, 1));
  EXPECT_EQ(copy.GetNextOrder(1), 0);
  NxStringIterator assigned;
  EXPECT_EQ(assigned.format, 1);
  assigned = owner;
  EXPECT_EQ(assigned.ownsBuffer, 0);
  // Assigning to an owner frees its own text (the sanitizers watch this).
  NxChar a('a', kCp1252, kNeutral);
  NxStringIterator second(a);
  EXPECT_EQ(second.GetNextOrder(1), Lower('a'));
  second = copy;
  EXPECT_EQ(second.ownsBuffer, 0);
}

// ---------------------------------------------------------------------------
// NxChar: values, handles and mapping.

TEST_F(CollationTest, CharactersHoldTheirValueAndDefaults) {
  EXPECT_EQ(NxChar().codeSet, kUnicode);
  NxLanguageContext::SetDefaultLanguage(kCzech);
  EXPECT_EQ(NxChar('x', 255, 255).codeSet, NxLanguageContext::GetDefault8CodeSet());
  EXPECT_EQ(NxChar('x', 255, 255).language, kCzech);
  // In an 8-bit code set a 16-bit argument keeps its low byte, unsigned.
  EXPECT_EQ(NxChar(static_cast<unsigned short>(0x01E9), kCp1252, 1).Value(), 0xE9);
  EXPECT_EQ(NxChar('\xE9', kCp1252, 1).Value(), 0xE9);
}

TEST_F(CollationTest, HandlesWriteIntoTheTextFreeCharactersDont) {
  char text[] = "abc";
  NxChar handle(text + 1, 255, 255, 255);
  EXPECT_EQ(handle.codeSet, kCp1252);
  NxChar copy(handle);
  EXPECT_EQ(copy.position, nullptr);
  copy = 'z';
  EXPECT_STREQ(text, "abc");
  EXPECT_EQ(copy.Value(), 'z');

  // A handle maps what it is given into the text's code set.
  handle = NxChar(static_cast<unsigned short>(0x20AC), kUnicode, kNeutral);  // euro sign
  EXPECT_EQ(static_cast<unsigned char>(text[1]), 0x80);
  handle = NxChar(static_cast<unsigned short>(0x4E00), kUnicode, kNeutral);
  EXPECT_STREQ(text, "a?c");
  // operator=(char) doesn't map.
  handle = '\xB4';
  EXPECT_EQ(static_cast<unsigned char>(text[1]), 0xB4);
  char cyrillic[] = "xx";
  NxChar de(cyrillic, kIso8859_5, kRussian, 1);
  de = NxChar(static_cast<unsigned short>(0x0414), kUnicode, kRussian);
  EXPECT_EQ(static_cast<unsigned char>(cyrillic[0]), 0xB4);

  // 16-bit text: as it stands in the same format, most significant byte
  // first in another.
  unsigned short wide[] = {'a', 'b', 0};
  NxChar unit(reinterpret_cast<const char*>(wide), kUnicode, kNeutral, 1);
  unit = NxChar('\xE9', kCp1252, kNeutral);
  EXPECT_EQ(wide[0], 0x00E9);
  unsigned char big[] = {0, 'a', 0, 0};
  NxChar msb(reinterpret_cast<const char*>(big), kUnicode, kNeutral, 2);
  EXPECT_EQ(msb.Value(), 'a');
  msb = NxChar(static_cast<unsigned short>(0x0141), kUnicode, kNeutral);
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
  EXPECT_EQ(NxChar(static_cast<unsigned short>(0x0159), kUnicode, kCzech).MapTo(kIso8859_2).Value(),
            0xF8);  // ř
  // Code set 0 maps from the native code set.
  EXPECT_EQ(NxChar('\x80', 0, kNeutral).MapTo(kUnicode).Value(), 0x20AC);
}

TEST_F(CollationTest, CharactersCompareByCollation) {
  const NxChar a('a', kCp1252, kNeutral), upperA('A', kCp1252, kNeutral);
  const NxChar eAcute(static_cast<unsigned short>(0x00E9), kUnicode, kNeutral);
  // Full strength by default: case and accent count, after the letter (and
  // the lower-case letter first).
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
  EXPECT_EQ(NxChar('\xB4', kIso8859_5, kRussian) ==
                NxChar(static_cast<unsigned short>(0x0414), kUnicode, kRussian),
            1);
  // An explicit operator, and the default one when asked with 65535.
  EXPECT_EQ(a.Compare(upperA, NxCMP_NO_WILDCARDS | NxCMP_IGNORE_CASE), 0);
  EXPECT_NE(a.Compare(upperA, 65535), 0);
  NxLanguageContext::SetDefaultCmpOp(NxCMP_NO_WILDCARDS | NxCMP_IGNORE_CASE | NxCMP_IGNORE_ACCENTS);
  EXPECT_EQ(a == upperA, 1);
  EXPECT_EQ(NxChar('E', kCp1252, kNeutral) == eAcute, 1);
  // A handle compares its one character, not the text behind it: "c" of
  // "ch" is a "c" even in Spanish.
  char text[] = "ch";
  const NxChar c(text, kCp1252, kSpanish, 1);
  EXPECT_EQ(c.Compare(NxChar('c', kCp1252, kSpanish), NxCMP_NO_WILDCARDS), 0);
}

// ---------------------------------------------------------------------------
// Case.

TEST_F(CollationTest, ToUpperDeliversLongerFormsThroughThePendingList) {
  NxCharToUpper upper;
  NxCharToLower lower;
  {
    std::vector<unsigned short> source = Wide(u"straße ﬁx");
    std::vector<unsigned short> target(32, 0xAAAA);
    NxStringIterator from(source.data(), kUnicode, kNeutral, 1);
    NxStringIterator to(target.data(), kUnicode, kNeutral, 1);
    from.Transform(to, upper);
    EXPECT_EQ(std::u16string(target.begin(), target.begin() + 11), u"STRASSE FIX");
    EXPECT_EQ(target[11], 0);       // the terminator is copied
    EXPECT_EQ(target[12], 0xAAAA);  // and nothing more
  }
  {
    char source[] =
        "Stra\xDF"
        "e \xE9t\xE9";
    char target[32];
    std::memset(target, 'x', sizeof target);
    NxStringIterator from(source, kCp1252, kNeutral, 1);
    NxStringIterator to(target, kCp1252, kNeutral, 1);
    from.Transform(to, upper);
    EXPECT_STREQ(target, "STRASSE \xC9T\xC9");
    NxStringIterator back(target, kCp1252, kNeutral, 1);
    NxStringIterator again(target, kCp1252, kNeutral, 1);
    back.Transform(again, lower);
    EXPECT_STREQ(target, "strasse \xE9t\xE9");
  }
  // Without an iterator the first character is all there is.
  EXPECT_EQ(
      NxChar(static_cast<unsigned short>(0x00DF), kUnicode, kNeutral).ToUpper(nullptr).Value(),
      'S');
  // Characters without a case mapping come back unchanged.
  const NxChar han(static_cast<unsigned short>(0x4E00), kUnicode, kNeutral);
  EXPECT_EQ(han.ToUpper(nullptr).Value(), 0x4E00);
  EXPECT_EQ(NxChar('1', kCp1252, kNeutral).ToLower(nullptr).Value(), '1');
  // Other scripts and code sets.
  EXPECT_EQ(NxChar('\xD4', kIso8859_5, kRussian).ToUpper(nullptr).Value(), 0xB4);  // д → Д
  EXPECT_EQ(NxChar('\xB4', kIso8859_5, kRussian).ToLower(nullptr).Value(), 0xD4);
  EXPECT_EQ(NxChar('\xF9', kIso8859_7, kGreek).ToUpper(nullptr).Value(), 0xD9);  // ω → Ω
  // Code set 0: the C library's case rules on the byte.
  EXPECT_EQ(NxChar('q', 0, kNeutral).ToUpper(nullptr).Value(), 'Q');
  EXPECT_EQ(NxChar('Q', 0, kNeutral).ToLower(nullptr).codeSet, 0);
}

// ---------------------------------------------------------------------------
// Sorting real names by their weight sequences, strength by strength: the
// letters of the whole name first (state and weight from bit 7 up), then the
// accents, then the case, as a reader compares names.

std::vector<uint32_t> Levels(const std::vector<uint32_t>& weights) {
  std::vector<uint32_t> key;
  for (uint32_t w : weights) key.push_back(w & ~0x7Fu);
  key.push_back(0);
  for (uint32_t w : weights) key.push_back(w & 0x1Fu);
  key.push_back(0);
  for (uint32_t w : weights) key.push_back(w & 0x60u);
  return key;
}

std::vector<uint32_t> Key16(const std::u16string& text, unsigned char language) {
  return Levels(WeightsOf(Elements16(text, language)));
}

// Checks that `names`, given in the order a reader of the language expects, have strictly
// increasing weight sequences, and that the same names in an 8-bit code set weigh the same.
void ExpectSorted(const std::vector<std::u16string>& names, unsigned char language,
                  unsigned char codeSet) {
  const NxCodeSet* cs = NxLanguageContext::QueryCodeSet(codeSet);
  for (size_t i = 0; i < names.size(); ++i) {
    EXPECT_TRUE(i == 0 || Key16(names[i - 1], language) < Key16(names[i], language)) << i;
    std::string bytes;
    for (char16_t c : names[i]) bytes += static_cast<char>(cs->FromUnicode(c, 0));
    ASSERT_EQ(bytes.find('\0'), std::string::npos) << i;
    EXPECT_EQ(Levels(WeightsOf(Elements8(bytes, language, codeSet))), Key16(names[i], language))
        << i;
  }
}

TEST_F(CollationTest, FrenchNamesSortByLetterThenAccent) {
  // French, neutral collation: accents only break ties of the same letters
  // (Lefebvre before Lefèvre); "œ" is "oe" (Lebœuf between Leblanc and
  // Lebrun); "ç" is a c (Françoise before Frank).
  const std::vector<std::u16string> names = {
      u"Aubert",  u"Bélanger", u"Boucher", u"Côté",      u"Cyr",      u"Dubé",
      u"Dubois",  u"Émond",    u"Fortin",  u"Françoise", u"Frank",    u"Gagné",
      u"Gagnon",  u"Leblanc",  u"Lebœuf",  u"Lebrun",    u"Lefebvre", u"Lefèvre",
      u"Lemieux", u"Ménard",   u"Morin",   u"Pelletier", u"Pétrin"};
  ExpectSorted(names, kNeutral, kCp1252);
}

TEST_F(CollationTest, GermanPhonebookNamesSortUmlautsAsTwoLetters) {
  // German phonebook: ä = ae, ö = oe, ü = ue, ß = ss.  So Bäcker after Bader,
  // Göbel before Gollmer, Müller before Muff, Strauß after Strausberg.
  const std::vector<std::u16string> names = {u"Bach",       u"Bader",   u"Bäcker",   u"Göbel",
                                             u"Gollmer",    u"Günther", u"Hoffmann", u"Müller",
                                             u"Muff",       u"Schäfer", u"Schaller", u"Straub",
                                             u"Strausberg", u"Strauß",  u"Zöllner"};
  ExpectSorted(names, kGerman, kCp1252);
  // In the neutral collation "ü" is a u and "ö" an o: Muff comes first, and
  // Göbel before Goebel; in the phonebook Göbel is Goebel with an accent.
  EXPECT_LT(Key16(u"Muff", kNeutral), Key16(u"Müller", kNeutral));
  EXPECT_LT(Key16(u"Göbel", kNeutral), Key16(u"Goebel", kNeutral));
  EXPECT_LT(Key16(u"Goebel", kGerman), Key16(u"Göbel", kGerman));
}

TEST_F(CollationTest, SpanishTraditionalNamesSortChLlAndEnyeApart) {
  // Spanish (traditional): ch after c (Cuenca before Chacón), ll after l
  // (Luna before Llamas), ñ after n (Núñez before Ñíguez).
  const std::vector<std::u16string> names = {
      u"Castro",   u"Cuenca",   u"Chacón", u"Chávez",  u"Dávila", u"Lozano", u"Luna",  u"Llamas",
      u"Llorente", u"Martínez", u"Muñoz",  u"Navarro", u"Núñez",  u"Ñíguez", u"Ortega"};
  ExpectSorted(names, kSpanish, kCp1252);
}

TEST_F(CollationTest, SwedishNamesSortRingAndDiaeresisLettersAfterZ) {
  // Swedish: å, ä, ö after z (Svensson before Söderberg, Zetterberg before
  // Åberg).
  const std::vector<std::u16string> names = {
      u"Andersson", u"Björk",      u"Eriksson", u"Lindström", u"Nilsson",  u"Sjöberg", u"Svensson",
      u"Söderberg", u"Zetterberg", u"Åberg",    u"Åkesson",   u"Ängström", u"Öberg",   u"Östlund"};
  ExpectSorted(names, kSwedish, kCp1252);
}

TEST_F(CollationTest, DanishNamesSortAeOslashAringAfterZAndAaAsAring) {
  // Danish: æ, ø, å after z, and "aa" as "å" (Aagaard near the end, after
  // Åberg).
  const std::vector<std::u16string> names = {u"Andersen", u"Bak",        u"Hansen",   u"Jensen",
                                             u"Nielsen",  u"Svendsen",   u"Sørensen", u"Zeuthen",
                                             u"Ægidius",  u"Østergaard", u"Åberg",    u"Aagaard"};
  ExpectSorted(names, kDanish, kCp1252);
}

TEST_F(CollationTest, CzechNamesSortCaronLettersAndChApart) {
  // Czech: č, ř, š, ž after their base letters, ch after h (Hudec before
  // Chalupa).  Also read as ISO-8859-2 bytes.
  const std::vector<std::u16string> names = {
      u"Cibulka", u"Čapek",   u"Černý",   u"Dvořák", u"Havel",   u"Horák", u"Hudec",
      u"Chalupa", u"Chytil",  u"Jelínek", u"Novák",  u"Růžička", u"Říha",  u"Svoboda",
      u"Šimek",   u"Šťastný", u"Tichý",   u"Zeman",  u"Žáček"};
  ExpectSorted(names, kCzech, kIso8859_2);
}

TEST_F(CollationTest, GreekNamesSortInTheGreekAlphabet) {
  // Greek: the Greek alphabet, not a transliteration (Ηλιόπουλος, eta, after
  // Ζαχαρίου; Ξενάκης, xi, before Οικονόμου).  Also read as ISO-8859-7.
  const std::vector<std::u16string> names = {
      u"Αθανασίου",  u"Βασιλείου",   u"Γεωργίου", u"Γιαννόπουλος", u"Δημητρίου",   u"Ευαγγέλου",
      u"Ζαχαρίου",   u"Ηλιόπουλος",  u"Θεοδώρου", u"Ιωάννου",      u"Καραγιάννης", u"Λαμπράκης",
      u"Μαυρίδης",   u"Νικολάου",    u"Ξενάκης",  u"Οικονόμου",    u"Παπαδάκης",   u"Παπαδόπουλος",
      u"Ραφαηλίδης", u"Σπυρόπουλος", u"Τσακίρης", u"Υψηλάντης",    u"Φωτίου",      u"Χατζής",
      u"Ψαλίδας",    u"Ωραιόπουλος"};
  ExpectSorted(names, kGreek, kIso8859_7);
}

TEST_F(CollationTest, RussianNamesSortInTheCyrillicAlphabet) {
  // Russian: the Cyrillic alphabet (Ё with Е, Й after И, Э Ю Я at the end).
  // Also read as ISO-8859-5.
  const std::vector<std::u16string> names = {
      u"Абрамов", u"Борисов", u"Васильев", u"Волков",  u"Григорьев", u"Дмитриев", u"Егоров",
      u"Ёлкин",   u"Жуков",   u"Зайцев",   u"Иванов",  u"Йодлов",    u"Козлов",   u"Лебедев",
      u"Морозов", u"Новиков", u"Орлов",    u"Павлов",  u"Петров",    u"Романов",  u"Смирнов",
      u"Соколов", u"Тарасов", u"Уткин",    u"Фёдоров", u"Харитонов", u"Цветков",  u"Чернов",
      u"Шубин",   u"Щукин",   u"Эльдаров", u"Юдин",    u"Яковлев"};
  ExpectSorted(names, kRussian, kIso8859_5);
}

}  // namespace
