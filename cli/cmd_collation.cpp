// nxtm orders | codesets | languages: the collation of a text element by
// element, and the code sets and languages that exist.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "cli.h"
#include "utf8.h"

namespace {

using cli::Args;

// True for the characters that a terminal shows two columns wide.
bool IsWide(unsigned short c) {
  return (c >= 0x1100 && c <= 0x115F) || (c >= 0x2E80 && c <= 0xA4CF && c != 0x303F) ||
         (c >= 0xAC00 && c <= 0xD7A3) || (c >= 0xF900 && c <= 0xFAFF) ||
         (c >= 0xFE30 && c <= 0xFE4F) || (c >= 0xFF00 && c <= 0xFF60) ||
         (c >= 0xFFE0 && c <= 0xFFE6);
}

// Display width of UTF-8 text in terminal columns.
size_t Columns(const std::string& text) {
  std::vector<char> bytes(text.begin(), text.end());
  size_t columns = 0;
  for (size_t i = 0; i < bytes.size();) {
    unsigned short c = 0;
    const int n = NxMultiByte2WChar(&c, bytes.data() + i, static_cast<unsigned>(bytes.size() - i));
    columns += n > 0 && IsWide(c) ? 2 : 1;
    i += n > 0 ? static_cast<size_t>(n) : 1;
  }
  return columns;
}

std::string Padded(const std::string& text, size_t width) {
  const size_t columns = Columns(text);
  return columns >= width ? text : text + std::string(width - columns, ' ');
}

// ---------------------------------------------------------------------------
// Numbers.

bool ParseCodeSet(const std::string& text, unsigned char& codeSet, std::string& error) {
  long number = 0;
  if (!cli::ParseNumber(text, 0, 255, number)) {
    error = "orders: --codeset must be a code set number from 1 to 253, not '" + text + "'";
    return false;
  }
  if (number == 0 || number == 255) {
    error = "orders: --codeset " + text + " names no code set of its own; give one from 1 to 253";
    return false;
  }
  if (number == 254) {
    error = "orders: code set 254 holds collation orders, not text";
    return false;
  }
  if (NxLanguageContext::QueryCodeSet(static_cast<unsigned char>(number)) == nullptr) {
    error = "orders: code set " + text + " doesn't exist (see nxtm codesets)";
    return false;
  }
  codeSet = static_cast<unsigned char>(number);
  return true;
}

bool ParseLanguage(const std::string& text, unsigned char& language, std::string& error) {
  long number = 0;
  if (!cli::ParseNumber(text, 0, 255, number)) {
    error = "orders: --language must be a language number, not '" + text + "'";
    return false;
  }
  if (number != 0 && (number >= 254 || NxLanguageContext::QueryLanguage(
                                           static_cast<unsigned char>(number)) == nullptr)) {
    error = "orders: language " + text + " doesn't exist (see nxtm languages)";
    return false;
  }
  language = static_cast<unsigned char>(number);
  return true;
}

// ---------------------------------------------------------------------------
// nxtm orders

const char* ClassOf(unsigned short order, unsigned char state) {
  if (order == 0) return "end";
  if ((state & 0x7Fu) >= 20) return order >= 32768 ? "ideograph" : "unknown";
  if (order < 80) return "space";
  if (order < 0x3F00) return "symbol";
  if (order < 0x4000) return "digit";
  if (order < 0x8000) return "letter";
  return "ideograph";
}

// A row of the table, as text.
struct Row {
  std::string chars, order, kind, letter, accent, letterCase, extension, state, weight, words;
};

int RunOrders(const Args& given) {
  Args args = given;
  bool error = false;
  const std::string codeSetText = cli::TakeOption(args, "--codeset", "253", error);
  const std::string languageText = cli::TakeOption(args, "--language", "1", error);
  if (error) return cli::Fail("orders: an option stands last without its number");
  for (const std::string& a : args)
    if (a.size() > 2 && a.compare(0, 2, "--") == 0)
      return cli::Fail("orders: unknown option '" + a + "'");
  if (args.size() != 1) return cli::Fail("orders: give exactly one TEXT (usage: nxtm orders TEXT)");

  std::string problem;
  unsigned char codeSet = 0;
  unsigned char language = 0;
  if (!ParseCodeSet(codeSetText, codeSet, problem)) return cli::Fail(problem);
  if (!ParseLanguage(languageText, language, problem)) return cli::Fail(problem);

  NxString unicode;
  if (!cli::ReadUtf8(args[0], language, unicode, problem))
    return cli::Fail("orders: TEXT: " + problem);
  const unsigned short* units = reinterpret_cast<const unsigned short*>(unicode.StrGet());
  const unsigned short count = unicode.Len();

  // The text in its code set, and how each of its characters is shown.
  std::vector<std::string> shown;
  std::vector<unsigned char> bytes;
  std::vector<unsigned short> wide;
  const NxCodeSet* target = NxLanguageContext::QueryCodeSet(codeSet);
  for (unsigned short i = 0; i < count; ++i) {
    const unsigned short u = units[i];
    if (codeSet > 224) {
      wide.push_back(codeSet == NxCS_UNICODE ? u : target->MapFrom(u, NxCS_UNICODE));
      shown.push_back(cli::ShownChar(u));
    } else {
      const unsigned char byte = static_cast<unsigned char>(target->MapFrom(u, NxCS_UNICODE));
      bytes.push_back(byte);
      // A character that the code set can't hold shows its replacement too.
      const unsigned short back = target->ToUnicode(byte);
      shown.push_back(back == u ? cli::ShownChar(u)
                                : cli::ShownChar(u) + "\u2192" + cli::ShownChar(back));
    }
  }
  wide.push_back(0);
  bytes.push_back(0);
  const unsigned width = codeSet > 224 ? 2 : 1;

  NxStringIterator it =
      codeSet > 224
          ? NxStringIterator(wide.data(), codeSet, language, 1)
          : NxStringIterator(reinterpret_cast<const char*>(bytes.data()), codeSet, language, 1);
  const unsigned char* start = it.position;
  std::vector<Row> rows;
  rows.push_back(
      {"chars", "order", "class", "letter", "accent", "case", "ext", "state", "weight", "words"});
  for (;;) {
    const bool continued =
        it.overflow != nullptr && it.overflowIndex < static_cast<int16_t>(it.overflow->count);
    const size_t from = static_cast<size_t>(it.position - start) / width;
    const unsigned short order = it.GetNextOrder(1);
    const bool pending =
        it.overflow != nullptr && it.overflowIndex < static_cast<int16_t>(it.overflow->count);
    size_t to = static_cast<size_t>(it.position - start) / width;
    if (pending) ++to;  // the step past the character waits for the expansion
    Row row;
    if (continued) {
      row.chars = "  +";
    } else {
      for (size_t k = from; k < to && k < shown.size(); ++k) row.chars += shown[k];
    }
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%04X", order);
    row.order = buffer;
    row.kind = ClassOf(order, it.state);
    if (row.kind == std::string("letter")) {
      row.letter = std::to_string((order >> 2) & 0x1F);
      row.accent = std::to_string((order >> 7) & 0x1F);
      row.letterCase = ((order >> 12) & 0x3) == 0 ? "upper" : "lower";
      if (((order >> 12) & 0x3) > 1) row.letterCase += "-" + std::to_string((order >> 12) & 0x3);
      row.extension = std::to_string(order & 0x3);
    }
    row.state = std::to_string(it.state);
    std::snprintf(buffer, sizeof buffer, "%08X",
                  static_cast<unsigned>(NxStringIterator::WeightOf(order, it.state)));
    row.weight = buffer;
    if (order != 0 || pending) {
      NxString words;
      NxConvertOrderToString(order, it.state, words);
      row.words = words.StrGet();
      if (!row.words.empty() && row.words.back() == '\n') row.words.pop_back();
    }
    rows.push_back(row);
    if (order == 0 && !pending) break;
  }

  constexpr int kColumns = 10;
  size_t w[kColumns] = {};
  for (const Row& r : rows) {
    const std::string* cells[kColumns] = {&r.chars,  &r.order,      &r.kind,      &r.letter,
                                          &r.accent, &r.letterCase, &r.extension, &r.state,
                                          &r.weight, &r.words};
    for (int k = 0; k < kColumns; ++k) w[k] = std::max(w[k], Columns(*cells[k]));
  }
  for (const Row& r : rows) {
    const std::string* cells[kColumns] = {&r.chars,  &r.order,      &r.kind,      &r.letter,
                                          &r.accent, &r.letterCase, &r.extension, &r.state,
                                          &r.weight, &r.words};
    std::string line;
    for (int k = 0; k < kColumns; ++k) {
      line += Padded(*cells[k], w[k]);
      if (k < kColumns - 1) line += "  ";
    }
    while (!line.empty() && line.back() == ' ') line.pop_back();
    std::printf("%s\n", line.c_str());
  }
  return 0;
}

// ---------------------------------------------------------------------------
// nxtm codesets, nxtm languages

int RunCodeSets(const Args& args) {
  if (!args.empty()) return cli::Fail("codesets: takes no arguments");
  std::printf("%6s  %-28s  %5s  %s\n", "number", "name", "width", "order table");
  for (int i = 0;; ++i) {
    const NxCodeSet* set = NxLanguageContext::CodeSetAt(i);
    if (set == nullptr) break;
    const char* table = set->orderTable != nullptr ? "own" : "through 253";
    if (set->number == 254) table = "none (order text)";
    std::printf("%6u  %-28s  %5u  %s\n", set->number, set->name != nullptr ? set->name : "",
                set->width * 8u, table);
  }
  return 0;
}

int RunLanguages(const Args& args) {
  if (!args.empty()) return cli::Fail("languages: takes no arguments");
  std::printf("%6s  %-28s  %-19s  %s\n", "number", "name", "specific collation", "home state");
  for (int i = 0;; ++i) {
    const NxLanguage* language = NxLanguageContext::LanguageAt(i);
    if (language == nullptr) break;
    std::printf("%6u  %-28s  %-19s  %u\n", language->number,
                language->name != nullptr ? language->name : "",
                language->specificCollation != 0 ? "yes" : "no", language->homeState);
  }
  return 0;
}

const cli::Registrar kOrders({"orders", "orders TEXT [--codeset N] [--language N]",
                              "collation elements of a text: order, class, fields, weight, words",
                              RunOrders, 30});
const cli::Registrar kCodeSets({"codesets", "codesets",
                                "the code sets: number, name, width, order table", RunCodeSets,
                                31});
const cli::Registrar kLanguages({"languages", "languages",
                                 "the languages: number, name, own collation, home state",
                                 RunLanguages, 32});

}  // namespace
