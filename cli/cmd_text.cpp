// nxtm compare | sort | match: the library's collation and wildcard matching
// on text given in UTF-8.
#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "cli.h"
#include "utf8.h"
#include "values.h"

namespace {

using cli::Args;

// ---------------------------------------------------------------------------
// Texts in the library's form.

struct Settings {
  unsigned char codeSet = NxCS_UNICODE;
  unsigned char language = NxLANG_NEUTRAL;
  unsigned short cmpOp = NxCMP_NO_WILDCARDS;
};

// A text in the chosen code set and language.
struct Text {
  NxString string;
  const char* data() const { return string.StrGet(); }
};

// Converts one line of UTF-8 into the code set of `s`; a character that the
// code set can't hold becomes its replacement.  On failure returns false with
// a message in `error`.
bool MakeText(const std::string& utf8, const Settings& s, Text& text, std::string& error) {
  NxString unicode;
  if (!cli::ReadUtf8(utf8, s.language, unicode, error)) return false;
  if (s.codeSet == NxCS_UNICODE) {
    text.string = unicode;
  } else {
    text.string = NxString(s.codeSet, s.language);
    text.string += unicode;
  }
  return true;
}

int32_t Compare(const Text& a, const Text& b, const Settings& s, unsigned short cmpOp) {
  return NxStrCmp(s.codeSet, s.language, a.data(), s.codeSet, s.language, b.data(), cmpOp, -1, 1,
                  nullptr);
}

// Takes the shared options out of `args`.  `wildcardsDefault` is the
// setting without --wildcards.  Returns 0, or the exit status of an error.
int TakeSettings(Args& args, Settings& s, bool wildcardsDefault) {
  bool error = false;
  const std::string codeSet = cli::TakeOption(args, "--codeset", "253", error);
  if (error) return cli::Fail("--codeset needs a number");
  const std::string language = cli::TakeOption(args, "--language", "1", error);
  if (error) return cli::Fail("--language needs a number");
  long number = 0;
  if (!cli::ParseNumber(codeSet, 0, 253, number))
    return cli::Fail("bad code set '" + codeSet + "' (a number from 0 to 253)");
  s.codeSet = static_cast<unsigned char>(number);
  if (NxLanguageContext::QueryCodeSet(s.codeSet) == nullptr)
    return cli::Fail("unknown code set " + codeSet);
  if (!cli::ParseNumber(language, 0, 253, number))
    return cli::Fail("bad language '" + language + "' (a number from 0 to 253)");
  s.language = static_cast<unsigned char>(number);
  if (s.language != 0 && NxLanguageContext::QueryLanguage(s.language) == nullptr)
    return cli::Fail("unknown language " + language);

  unsigned short op = 0;
  if (cli::TakeFlag(args, "--ignore-case")) op |= NxCMP_IGNORE_CASE;
  if (cli::TakeFlag(args, "--ignore-accents")) op |= NxCMP_IGNORE_ACCENTS;
  if (cli::TakeFlag(args, "--ignore-spaces")) op |= NxCMP_IGNORE_SPACES;
  if (cli::TakeFlag(args, "--ignore-symbols")) op |= NxCMP_IGNORE_SYMBOLS;
  if (cli::TakeFlag(args, "--exact")) op |= NxCMP_EXACT;
  const bool wildcards = cli::TakeFlag(args, "--wildcards") || wildcardsDefault;
  if (!wildcards) op |= NxCMP_NO_WILDCARDS;
  s.cmpOp = op;
  for (const std::string& a : args) {
    if (a.size() > 2 && a.compare(0, 2, "--") == 0) return cli::Fail("unknown option " + a);
  }
  return 0;
}

// Reads stdin line by line into texts.  Returns 0, or the exit status of
// an error, which names the line.
int ReadLines(const Settings& s, std::vector<Text>& lines) {
  std::string line;
  size_t number = 0;
  while (std::getline(std::cin, line)) {
    ++number;
    Text text;
    std::string error;
    if (!MakeText(line, s, text, error))
      return cli::Fail("line " + std::to_string(number) + ": " + error);
    lines.push_back(std::move(text));
  }
  return 0;
}

void WriteLine(const Text& text) {
  const std::string out = cli::WriteUtf8(text.string);
  std::fwrite(out.data(), 1, out.size(), stdout);
  std::fputc('\n', stdout);
}

// ---------------------------------------------------------------------------
// The commands.

// The level at which a non-zero result was decided: the comparison runs
// again with the weaker levels switched off one by one.
const char* Level(const Text& a, const Text& b, const Settings& s) {
  const unsigned short op = s.cmpOp;
  if (s.codeSet == 0) return "bytes";
  if ((op & NxCMP_EXACT) != 0) return "exact";
  const unsigned short invisible = NxCMP_IGNORE_SPACES | NxCMP_IGNORE_SYMBOLS;
  const unsigned short caseAndAccents = NxCMP_IGNORE_CASE | NxCMP_IGNORE_ACCENTS;
  if (Compare(a, b, s, op | caseAndAccents | invisible) != 0) return "primary";
  // The tie-breaks in their order: accents, case, spaces and symbols.
  if ((op & NxCMP_IGNORE_ACCENTS) == 0 && Compare(a, b, s, op | NxCMP_IGNORE_CASE | invisible) != 0)
    return "accent";
  if ((op & NxCMP_IGNORE_CASE) == 0 && Compare(a, b, s, op | NxCMP_IGNORE_ACCENTS | invisible) != 0)
    return "case";
  return "space";
}

int RunCompare(const Args& given) {
  if (std::find(given.begin(), given.end(), "--type") != given.end())
    return cli::RunTypedCompare(given);
  Args args = given;
  Settings s;
  if (int status = TakeSettings(args, s, false)) return status;
  if (args.size() != 2)
    return cli::Fail("usage: nxtm compare A B [--codeset N] [--language N] [options]");
  Text a, b;
  std::string error;
  if (!MakeText(args[0], s, a, error)) return cli::Fail("first text: " + error);
  if (!MakeText(args[1], s, b, error)) return cli::Fail("second text: " + error);
  const int32_t r = Compare(a, b, s, s.cmpOp);
  const int sign = r < 0 ? -1 : r > 0 ? 1 : 0;
  std::printf("sign  %d\n", sign);
  std::printf("value %ld\n", static_cast<long>(r));
  std::printf("level %s\n", r == 0 ? "equal" : Level(a, b, s));
  return 0;
}

int RunSort(const Args& given) {
  Args args = given;
  Settings s;
  if (int status = TakeSettings(args, s, false)) return status;
  if (!args.empty()) return cli::Fail("usage: nxtm sort [--codeset N] [--language N] [options]");
  if ((s.cmpOp & (NxCMP_NO_WILDCARDS | NxCMP_EXACT)) == 0)
    return cli::Fail("sort: --wildcards makes the second text a pattern, which is no ordering");
  std::vector<Text> lines;
  if (int status = ReadLines(s, lines)) return status;
  std::stable_sort(lines.begin(), lines.end(),
                   [&s](const Text& x, const Text& y) { return Compare(x, y, s, s.cmpOp) < 0; });
  for (const Text& line : lines) WriteLine(line);
  return 0;
}

int RunMatch(const Args& given) {
  Args args = given;
  Settings s;
  if (int status = TakeSettings(args, s, true)) return status;
  if (args.size() != 1)
    return cli::Fail("usage: nxtm match PATTERN [--codeset N] [--language N] [options]");
  Text pattern;
  std::string error;
  if (!MakeText(args[0], s, pattern, error)) return cli::Fail("pattern: " + error);
  std::vector<Text> lines;
  if (int status = ReadLines(s, lines)) return status;
  bool matched = false;
  for (const Text& line : lines) {
    if (Compare(line, pattern, s, s.cmpOp) == 0) {
      WriteLine(line);
      matched = true;
    }
  }
  return matched ? 0 : 1;
}

const cli::Registrar compareCommand({"compare",
                                     "compare A B [--codeset N] [--language N] [--ignore-case] "
                                     "[--ignore-accents] [--ignore-spaces] [--ignore-symbols] "
                                     "[--exact] [--wildcards]; compare --type TYPE A B "
                                     "[--format 1|2|8] [--count N] [--length1 N] [--length2 N]",
                                     "compare two texts at collation strength, or two values "
                                     "of any type through its comparator",
                                     RunCompare, 40});
const cli::Registrar sortCommand({"sort", "sort [options of compare]",
                                  "sort the lines of stdin (UTF-8) by collation", RunSort, 41});
const cli::Registrar matchCommand({"match", "match PATTERN [options of compare]",
                                   "print the lines of stdin that the pattern (* and ?) matches; "
                                   "exit 1 when none",
                                   RunMatch, 42});

}  // namespace
