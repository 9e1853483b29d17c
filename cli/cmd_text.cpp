// nxtm compare | sort | match: the library's collation and wildcard matching
// on text given in UTF-8; with --keys on the index keys of the texts, through
// the comparator of the row "NxString".  Also the range estimate of NxString
// that nxtm estimate hands over.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <nxtm/nxtm.h>

#include "cli.h"
#include "order_text.h"
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
// Index keys of texts: the key records that an index holds, compared
// through the row's comparator.

struct KeyOptions {
  bool keys = false;
  unsigned char format = 1;
  uint32_t size = 0;  // 0: as long as the key needs
};

// Takes --keys, --size N and --format 1|2 out of `args`.  Returns 0, or the
// exit status of an error.
int TakeKeyOptions(Args& args, const std::string& command, KeyOptions& k) {
  k.keys = cli::TakeFlag(args, "--keys");
  bool missing = false;
  const std::string size = cli::TakeOption(args, "--size", "", missing);
  const std::string format = cli::TakeOption(args, "--format", "1", missing);
  if (missing) return cli::Fail(command + ": --size and --format need a value");
  long number = 0;
  if (!size.empty()) {
    if (!cli::ParseNumber(size, 6, NxINDEX_MAX_KEYLEN, number))
      return cli::Fail(command + ": --size takes a number of bytes from 6 to 254");
    k.size = static_cast<uint32_t>(number);
  }
  if (!cli::ParseFormat(format, false, k.format))
    return cli::Fail(command + ": --format takes 1 or 2");
  if (!k.keys && (!size.empty() || format != "1"))
    return cli::Fail(command + ": --size and --format go with --keys");
  return 0;
}

// The key record of a text, cut to `size` bytes unless that is 0.  A text
// without a code set stays a text record.
std::vector<unsigned char> KeyOf(const Text& text, const KeyOptions& k) {
  NxString& s = const_cast<NxString&>(text.string);
  const unsigned char keyFormat = static_cast<unsigned char>(0x80 | k.format);
  const uint32_t room = k.size != 0 ? k.size : StringSizeGet(&s, 8, keyFormat, 1);
  std::vector<unsigned char> key(room + 1);
  NxTypeMgr mgr;
  key.resize(mgr.Translate(NxTYPE_NxString, key.data(), keyFormat, room, &s, 8, 0, 1));
  return key;
}

int32_t CompareKeys(std::vector<unsigned char>& a, std::vector<unsigned char>& b,
                    unsigned short cmpOp, unsigned char format, int& status) {
  NxTypeMgr mgr;
  return mgr.Cmp(NxTYPE_NxString, static_cast<uint32_t>(a.size()), a.data(),
                 static_cast<uint32_t>(b.size()), b.data(), cmpOp, 1, format, status);
}

// A key record as its header and its 16-bit units.
std::string KeyGroups(const std::vector<unsigned char>& key) {
  if (key.size() < 4) return cli::Hex(key.data(), key.size());
  std::string out = cli::Hex(key.data(), 4);
  for (size_t at = 4; at < key.size(); at += 2)
    out += " " + cli::Hex(key.data() + at, key.size() - at < 2 ? 1 : 2);
  return out;
}

const char* StatusWords(int status) {
  switch (status) {
    case 0:
      return "";
    case NxSTATUS_PARTIAL:
      return " (partial: the bytes at hand don't decide the rest)";
    case NxSTATUS_NO_ANSWER:
      return " (no answer: a key cut where no key is ever cut)";
    default:
      return "";
  }
}

int CompareKeyRecords(const Args& texts, const Settings& s, const KeyOptions& k) {
  Text a, b;
  std::string error;
  if (!MakeText(texts[0], s, a, error)) return cli::Fail("first text: " + error);
  if (!MakeText(texts[1], s, b, error)) return cli::Fail("second text: " + error);
  std::vector<unsigned char> keyA = KeyOf(a, k);
  std::vector<unsigned char> keyB = KeyOf(b, k);
  int status = 0;
  const int32_t r = CompareKeys(keyA, keyB, s.cmpOp, k.format, status);
  std::printf("key A  %s\n", KeyGroups(keyA).c_str());
  std::printf("key B  %s\n", KeyGroups(keyB).c_str());
  std::printf("sign   %d\n", r < 0 ? -1 : r > 0 ? 1 : 0);
  std::printf("value  %ld\n", static_cast<long>(r));
  std::printf("status %d%s\n", status, StatusWords(status));
  return 0;
}

int SortByKeys(const Settings& s, const KeyOptions& k) {
  std::vector<Text> lines;
  if (int status = ReadLines(s, lines)) return status;
  std::vector<std::vector<unsigned char>> keys;
  keys.reserve(lines.size());
  for (const Text& line : lines) keys.push_back(KeyOf(line, k));
  std::vector<size_t> order(lines.size());
  for (size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::stable_sort(order.begin(), order.end(), [&](size_t x, size_t y) {
    int status = 0;
    return CompareKeys(keys[x], keys[y], s.cmpOp, k.format, status) < 0;
  });
  for (size_t i : order) WriteLine(lines[i]);
  return 0;
}

}  // namespace

// ---------------------------------------------------------------------------
// nxtm estimate NxString: the three texts become key records (or text records
// without a code set), the comparison options go into the operator word, and
// the narrowed keys come back as their orders.

namespace {

// A narrowed key: its bytes, its orders with the state byte, and the text
// that the orders name.
void ShowNarrowed(const char* end, const void* bytes, unsigned char length, unsigned char format) {
  if (bytes == nullptr) {
    std::printf("%-8s open\n", end);
    return;
  }
  const std::vector<unsigned char> key(static_cast<const unsigned char*>(bytes),
                                       static_cast<const unsigned char*>(bytes) + length);
  std::printf("%-8s %s\n", end, KeyGroups(key).c_str());
  if (length < 4 || key[2] != NxCS_ORDERS) return;
  NxTypeMgr mgr;
  NxString loaded;
  mgr.Translate(NxTYPE_NxString, &loaded, 8, 0, const_cast<unsigned char*>(key.data()),
                static_cast<unsigned char>(0x80 | format), length, 1);
  const std::string orders = cli::OrdersHex(loaded);
  NxString text;
  mgr.PrintToNxString(NxTYPE_NxString, text, &loaded, nullptr, 1);
  const unsigned char state = key[3];
  const uint32_t stated = cli::Get16(key.data(), format) + 2u;
  std::printf("         orders %s, state %u%s%s: \"%s\"\n",
              orders.c_str(), state & 0x7Fu,
              (state & 0x80) != 0 ? " (ended at a change of state)" : "",
              stated > length ? ", cut" : "", cli::WriteUtf8(text).c_str());
}

}  // namespace

namespace cli {

int EstimateStrings(const Args& input, unsigned short op, unsigned char format) {
  Args args(input.begin() + 1, input.end());
  const bool literal = cli::TakeFlag(args, "--no-wildcards");
  Settings s;
  if (int status = TakeSettings(args, s, true)) return status;
  if (args.size() != 4)
    return cli::Fail(
        "estimate: usage: nxtm estimate NxString LOW HIGH OP VALUE [--format 1|2] "
        "[--codeset N] [--language N] [--ignore-case] [--ignore-accents] [--ignore-spaces] "
        "[--ignore-symbols] [--exact] [--no-wildcards]");
  Text low, high, value;
  std::string error;
  if (!MakeText(args[0], s, low, error)) return cli::Fail("estimate: low bound: " + error);
  if (!MakeText(args[1], s, high, error)) return cli::Fail("estimate: high bound: " + error);
  if (!MakeText(args[3], s, value, error)) return cli::Fail("estimate: value: " + error);
  KeyOptions k;
  k.keys = true;
  k.format = format;
  k.size = NxINDEX_MAX_KEYLEN;
  std::vector<unsigned char> lowKey = KeyOf(low, k);
  std::vector<unsigned char> highKey = KeyOf(high, k);
  // The value is whole: a key that only an index would cut.
  k.size = 0;
  std::vector<unsigned char> valueKey = KeyOf(value, k);
  unsigned short word = static_cast<unsigned short>(
      op | (s.cmpOp & ~NxCMP_NO_WILDCARDS) | (literal ? NxCMP_NO_WILDCARDS : 0));
  NxIdxBounds bounds{lowKey.data(), highKey.data(), static_cast<unsigned char>(lowKey.size()),
                     static_cast<unsigned char>(highKey.size())};
  NxIdxBounds narrowed{nullptr, nullptr, 0, 0};
  NxTypeMgr mgr;
  const float share =
      mgr.EvalAndBound(NxTYPE_NxString, &bounds, word, valueKey.data(), format, 1, &narrowed,
                       nullptr);
  std::printf("fraction %.9g\n", static_cast<double>(share));
  std::printf("op       0x%x%s\n", word, (word & 8) != 0 ? " (the value stands for a prefix)" : "");
  ShowNarrowed("low", narrowed.low, narrowed.lowLength, format);
  ShowNarrowed("high", narrowed.high, narrowed.highLength, format);
  std::free(narrowed.low);
  std::free(narrowed.high);
  return 0;
}

}  // namespace cli

namespace {

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
  KeyOptions k;
  if (int status = TakeKeyOptions(args, "compare", k)) return status;
  if (int status = TakeSettings(args, s, false)) return status;
  if (args.size() != 2)
    return cli::Fail("usage: nxtm compare A B [--codeset N] [--language N] [options]");
  if (k.keys) return CompareKeyRecords(args, s, k);
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

// ---------------------------------------------------------------------------
// Sorting.  Every line gets its sort key once, and the lines are ordered by
// their keys: the order of NxStrCmp, with lines that it finds equal (equal
// keys) in their order of input, as a stable sort by NxStrCmp would leave
// them.  Texts without a code set, which NxStrCmp compares as bytes, are
// their own keys.

// The UTF-16 of a line that is well-formed UTF-8 in its shortest form, of
// characters from U+0001 to U+FFFF without surrogates: the text that
// ReadUtf8 makes of it, which WriteUtf8 turns back into the same bytes.
// False for anything else, which takes the library's way.
bool DecodePlainUtf8(const char* text, size_t size, std::u16string& out) {
  out.clear();
  const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
  const unsigned char* end = p + size;
  while (p != end) {
    const unsigned c = *p;
    if (c >= 0x01 && c < 0x80) {
      out += static_cast<char16_t>(c);
      ++p;
    } else if (c >= 0xC2 && c < 0xE0) {
      if (end - p < 2 || (p[1] & 0xC0) != 0x80) return false;
      out += static_cast<char16_t>((c & 0x1F) << 6 | (p[1] & 0x3F));
      p += 2;
    } else if (c >= 0xE0 && c < 0xF0) {
      if (end - p < 3 || (p[1] & 0xC0) != 0x80 || (p[2] & 0xC0) != 0x80) return false;
      const unsigned cp = (c & 0x0F) << 12 | (p[1] & 0x3F) << 6 | (p[2] & 0x3F);
      if (cp < 0x800 || (cp >= 0xD800 && cp < 0xE000)) return false;
      out += static_cast<char16_t>(cp);
      p += 3;
    } else {
      return false;
    }
  }
  return out.size() <= (NxSTRING_MAX_SIZE - 2) / 2 && size <= 32767;
}

struct SortLine {
  uint64_t head;    // the first 8 bytes of the key, most significant first
  uint64_t key;     // offset of the key in the key arena, where it is 0-padded to 8 bytes
  uint32_t length;  // of the key
  uint32_t index;   // the line's place in the input
};

// 8 bytes of a key, most significant first.
inline uint64_t Chunk(const unsigned char* at) {
  uint64_t v;
  std::memcpy(&v, at, sizeof v);
  return __builtin_bswap64(v);
}

// Orders lines by their keys as memcmp orders them, the shorter key first
// when one is the start of the other, and lines with equal keys by their
// place in the input.  The keys are compared 8 bytes at a time: each line
// carries in `head` the 8 bytes of its key at the depth reached, a range of
// lines that agree before that depth is sorted by `head`, and each run of
// equal heads goes one depth further.  A key is thus read once for each 8
// bytes that it shares with others, not once for each comparison.  Beyond
// its end a key reads as zeros; where all keys of a run go on with zeros
// only, the lengths decide, as they do for memcmp.
void SortByKeys(std::vector<SortLine>& lines, const unsigned char* keys) {
  struct Range {
    size_t first, last;
    uint32_t depth;
  };
  std::vector<Range> todo{{0, lines.size(), 0}};
  while (!todo.empty()) {
    const Range range = todo.back();
    todo.pop_back();
    SortLine* const begin = lines.data() + range.first;
    SortLine* const end = lines.data() + range.last;
    std::sort(begin, end, [](const SortLine& x, const SortLine& y) { return x.head < y.head; });
    const uint32_t next = range.depth + 8;
    for (SortLine* at = begin; at != end;) {
      SortLine* run = at + 1;
      while (run != end && run->head == at->head) ++run;
      if (run - at > 1) {
        bool more = false;
        for (SortLine* l = at; l != run; ++l) {
          l->head = next < l->length ? Chunk(keys + l->key + next) : 0;
          more = more || next < l->length;
        }
        if (more) {
          todo.push_back({static_cast<size_t>(at - lines.data()),
                          static_cast<size_t>(run - lines.data()), next});
        } else {
          std::sort(at, run, [](const SortLine& x, const SortLine& y) {
            return x.length != y.length ? x.length < y.length : x.index < y.index;
          });
        }
      }
      at = run;
    }
  }
}

int RunSort(const Args& given) {
  Args args = given;
  Settings s;
  KeyOptions k;
  if (int status = TakeKeyOptions(args, "sort", k)) return status;
  if (int status = TakeSettings(args, s, false)) return status;
  if (!args.empty()) return cli::Fail("usage: nxtm sort [--codeset N] [--language N] [options]");
  if ((s.cmpOp & (NxCMP_NO_WILDCARDS | NxCMP_EXACT)) == 0)
    return cli::Fail("sort: --wildcards makes the second text a pattern, which is no ordering");
  if (k.keys) return SortByKeys(s, k);

  std::string input;
  {
    // A file's size is known: one read.  Pipes grow the buffer as they go.
    struct stat info;
    if (fstat(fileno(stdin), &info) == 0 && S_ISREG(info.st_mode) && info.st_size > 0)
      input.reserve(static_cast<size_t>(info.st_size) + 1);
    char chunk[1 << 16];
    size_t n;
    while ((n = std::fread(chunk, 1, sizeof chunk, stdin)) != 0) input.append(chunk, n);
  }

  // Each line: its key, and what is written for it (the line itself when it
  // reads back to the same bytes, else the converted text).
  std::vector<SortLine> lines;
  std::vector<unsigned char> keys;
  std::vector<std::pair<size_t, size_t>> output;  // offset and size in `input` or `converted`
  std::vector<bool> fromConverted;
  std::string converted;
  std::u16string units;
  std::vector<unsigned char> key(256);
  keys.reserve(3 * input.size() + 64);
  lines.reserve(input.size() / 16 + 16);
  output.reserve(input.size() / 16 + 16);
  const auto addKey = [&](unsigned char codeSet, const char* text) {
    uint32_t n;
    if (codeSet == 0) {
      n = static_cast<uint32_t>(std::strlen(text));
      key.assign(text, text + n);
    } else {
      n = NxStrSortKey(codeSet, s.language, text, s.cmpOp, 1, key.data(),
                       static_cast<uint32_t>(key.size()));
      if (n > key.size()) {
        key.resize(n);
        NxStrSortKey(codeSet, s.language, text, s.cmpOp, 1, key.data(), n);
      }
    }
    const size_t at = keys.size();
    keys.resize(at + ((n + 15) & ~7u), 0);
    std::memcpy(keys.data() + at, key.data(), n);
    lines.push_back(SortLine{Chunk(keys.data() + at), at, n, static_cast<uint32_t>(lines.size())});
  };
  for (size_t at = 0; at < input.size();) {
    size_t end = input.find('\n', at);
    if (end == std::string::npos) end = input.size();
    const char* text = input.data() + at;
    const size_t size = end - at;
    if (s.codeSet == NxCS_UNICODE && DecodePlainUtf8(text, size, units)) {
      addKey(NxCS_UNICODE, reinterpret_cast<const char*>(units.c_str()));
      output.emplace_back(at, size);
      fromConverted.push_back(false);
    } else {
      Text line;
      std::string error;
      if (!MakeText(std::string(text, size), s, line, error))
        return cli::Fail("line " + std::to_string(lines.size() + 1) + ": " + error);
      addKey(s.codeSet, line.data());
      const std::string out = cli::WriteUtf8(line.string);
      output.emplace_back(converted.size(), out.size());
      fromConverted.push_back(true);
      converted += out;
    }
    at = end + 1;
  }

  SortByKeys(lines, keys.data());

  std::string out;
  out.reserve(input.size() + converted.size() + lines.size());
  for (const SortLine& line : lines) {
    const auto& place = output[line.index];
    out.append((fromConverted[line.index] ? converted : input).data() + place.first, place.second);
    out += '\n';
  }
  std::fwrite(out.data(), 1, out.size(), stdout);
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
                                     "[--exact] [--wildcards] [--keys [--size N] [--format 1|2]]; "
                                     "compare --type TYPE A B [--format 1|2|8] [--count N] "
                                     "[--length1 N] [--length2 N]",
                                     "compare two texts at collation strength or their index "
                                     "keys through the row, or two values of any type through "
                                     "its comparator",
                                     RunCompare, 40});
const cli::Registrar sortCommand({"sort", "sort [options of compare]",
                                  "sort the lines of stdin (UTF-8) by collation, or by their "
                                  "index keys with --keys",
                                  RunSort, 41});
const cli::Registrar matchCommand({"match", "match PATTERN [options of compare]",
                                   "print the lines of stdin that the pattern (* and ?) matches; "
                                   "exit 1 when none",
                                   RunMatch, 42});

}  // namespace
