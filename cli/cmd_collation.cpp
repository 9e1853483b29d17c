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

// How one character of the text is shown: itself, or U+XXXX for controls,
// spaces other than the plain one and lone surrogates.
std::string Shown(uint32_t cp) {
  char buffer[16];
  if (cp <= 0x20 || (cp >= 0x7F && cp < 0xA0) || (cp >= 0xD800 && cp <= 0xDFFF) || cp == 0xA0 ||
      (cp >= 0x2000 && cp <= 0x200F) || cp == 0xFEFF) {
    std::snprintf(buffer, sizeof buffer, "<U+%04X>", cp);
    return buffer;
  }
  std::string out;
  cli::AppendUtf8(out, cp);
  return out;
}

// True for the characters that a terminal shows two columns wide.
bool IsWide(uint32_t cp) {
  return (cp >= 0x1100 && cp <= 0x115F) || (cp >= 0x2E80 && cp <= 0xA4CF && cp != 0x303F) ||
         (cp >= 0xAC00 && cp <= 0xD7A3) || (cp >= 0xF900 && cp <= 0xFAFF) ||
         (cp >= 0xFE30 && cp <= 0xFE4F) || (cp >= 0xFF00 && cp <= 0xFF60) ||
         (cp >= 0xFFE0 && cp <= 0xFFE6) || (cp >= 0x1F300 && cp <= 0x1FAFF) ||
         (cp >= 0x20000 && cp <= 0x3FFFD);
}

// Display width of UTF-8 text in terminal columns.
size_t Columns(const std::string& text) {
  size_t columns = 0;
  for (size_t i = 0; i < text.size();) {
    const unsigned char lead = static_cast<unsigned char>(text[i]);
    size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (i + length > text.size()) length = text.size() - i;
    uint32_t cp = length == 1 ? lead : lead & (0x7Fu >> length);
    for (size_t k = 1; k < length; ++k)
      cp = (cp << 6) | (static_cast<unsigned char>(text[i + k]) & 0x3Fu);
    columns += IsWide(cp) ? 2 : 1;
    i += length;
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
  std::string chars, order, kind, letter, accent, letterCase, extension, state, weight;
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

  std::vector<uint32_t> points;
  size_t bad = 0;
  if (!cli::DecodeUtf8(args[0], points, bad))
    return cli::Fail("orders: TEXT is not valid UTF-8 (at byte " + std::to_string(bad) + ")");
  std::vector<unsigned short> units;
  for (uint32_t cp : points) cli::AppendUtf16(units, cp);

  // The text in its code set, and how each of its characters is shown.
  std::vector<std::string> shown;
  std::vector<unsigned char> bytes;
  std::vector<unsigned short> wide;
  const NxCodeSet* target = NxLanguageContext::QueryCodeSet(codeSet);
  if (codeSet > 224) {
    for (unsigned short u : units) {
      wide.push_back(codeSet == 253 ? u : target->MapFrom(u, 253));
      shown.push_back(Shown(u));
    }
    wide.push_back(0);
  } else {
    for (size_t i = 0; i < units.size(); ++i) {
      uint32_t cp = units[i];
      unsigned short u = units[i];
      if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < units.size()) {
        cp = 0x10000 + ((cp - 0xD800) << 10) + (units[i + 1] - 0xDC00u);
        u = 0xFFFD;  // outside the BMP: the code set's replacement
        ++i;
      }
      const unsigned char byte = static_cast<unsigned char>(target->MapFrom(u, 253));
      bytes.push_back(byte);
      // A character that the code set can't hold shows its replacement too.
      const unsigned short back = target->ToUnicode(byte);
      shown.push_back(back == cp ? Shown(cp) : Shown(cp) + "\u2192" + Shown(back));
    }
    bytes.push_back(0);
  }
  const unsigned width = codeSet > 224 ? 2 : 1;

  NxStringIterator it =
      codeSet > 224
          ? NxStringIterator(wide.data(), codeSet, language, 1)
          : NxStringIterator(reinterpret_cast<const char*>(bytes.data()), codeSet, language, 1);
  const unsigned char* start = it.position;
  std::vector<Row> rows;
  rows.push_back({"chars", "order", "class", "letter", "accent", "case", "ext", "state", "weight"});
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
    rows.push_back(row);
    if (order == 0 && !pending) break;
  }

  size_t w[9] = {};
  for (const Row& r : rows) {
    const std::string* cells[9] = {&r.chars,      &r.order,     &r.kind,  &r.letter, &r.accent,
                                   &r.letterCase, &r.extension, &r.state, &r.weight};
    for (int k = 0; k < 9; ++k) w[k] = std::max(w[k], Columns(*cells[k]));
  }
  for (const Row& r : rows) {
    const std::string* cells[9] = {&r.chars,      &r.order,     &r.kind,  &r.letter, &r.accent,
                                   &r.letterCase, &r.extension, &r.state, &r.weight};
    std::string line;
    for (int k = 0; k < 9; ++k) {
      line += Padded(*cells[k], w[k]);
      if (k < 8) line += "  ";
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
                              "collation elements of a text: order, class, fields, weight",
                              RunOrders, 30});
const cli::Registrar kCodeSets({"codesets", "codesets",
                                "the code sets: number, name, width, order table", RunCodeSets,
                                31});
const cli::Registrar kLanguages({"languages", "languages",
                                 "the languages: number, name, own collation, home state",
                                 RunLanguages, 32});

}  // namespace
