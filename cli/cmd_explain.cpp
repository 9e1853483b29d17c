// nxtm explain: a stored string record or index key of NxString, NxIString
// or NxCaseIString taken apart field by field.  A key holds no text, only
// collation orders; each is shown with its plain character and its
// description in words, as the library's order naming gives them.
//
// The bytes are checked before anything is shown: every record must hold its
// header, and nothing is read behind the bytes given.  The last record may be
// cut, as an index key is at the end of its room.
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include <nxtm/nxtm.h>

#include "cli.h"
#include "utf8.h"
#include "values.h"

namespace {

using cli::Args;
using cli::Get16;
using Lines = std::vector<std::string>;

std::string Printed(const char* format, unsigned value) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, format, value);
  return buffer;
}

std::string Count(size_t n, const char* noun) {
  return std::to_string(n) + " " + noun + (n == 1 ? "" : "s");
}

// "1 byte stands behind", "2 bytes stand behind".
std::string Behind(size_t n) {
  return Count(n, "byte") + (n == 1 ? " stands behind" : " stand behind");
}

// Bytes of an 8-bit code set (0: the native one) as shown text.
std::string ShownBytes(const unsigned char* bytes, size_t count, unsigned char codeSet,
                       bool inText = true) {
  const NxCodeSet* set = NxLanguageContext::QueryCodeSet(codeSet);
  std::string out;
  for (size_t i = 0; i < count; ++i) out += cli::ShownChar(set->ToUnicode(bytes[i]), inText);
  return out;
}

std::string Padded(const std::string& text, size_t columns) {
  // The shown characters take one column each: UTF-8 continuation bytes
  // don't count.
  size_t width = 0;
  for (const unsigned char c : text) width += (c & 0xC0) != 0x80;
  return width >= columns ? text + " " : text + std::string(columns - width, ' ');
}

std::string CodeSetName(unsigned char codeSet) {
  const std::string number = std::to_string(codeSet);
  if (codeSet == 0) return "0 (none: bytes of the native code set)";
  const NxCodeSet* set = NxLanguageContext::QueryCodeSet(codeSet);
  if (set == nullptr || set->name == nullptr) return number + " (no such code set)";
  return number + " (" + set->name + ")";
}

std::string LanguageName(unsigned char language) {
  const std::string number = std::to_string(language);
  if (language == NxLANG_NONE) return "0 (none)";
  if (language == NxLANG_NULL) return number + " (the null string)";
  const NxLanguage* known = NxLanguageContext::QueryLanguage(language);
  if (known == nullptr || known->name == nullptr) return number + " (no such language)";
  return number + " (" + known->name + ")";
}

// The state byte of a key record: the collation state, and in bit 7 whether
// the key ended early at a change of state.
std::string StateByte(unsigned char byte) {
  const unsigned state = byte & 0x7Fu;
  std::string out = Printed("0x%02x", byte) + " (state " + std::to_string(state);
  if (state == NxSTATE_LATIN) out += ", Latin";
  if (state == NxSTATE_GREEK) out += ", Greek";
  if (state == NxSTATE_CYRILLIC) out += ", Cyrillic";
  if (state >= NxSTATE_UNKNOWN) out += ", orders are code values";
  if ((byte & 0x80) != 0) out += "; the key ended early at a change of state";
  return out + ")";
}

// How the record ends: whole with its closing bytes, or cut.
std::string Whole(size_t bytes) {
  return "whole, " + Count(bytes, "byte");
}
std::string Cut(size_t atHand, size_t stated) {
  return "cut at " + Count(atHand, "byte") + " (its length field reaches to " +
         std::to_string(stated) + ")";
}

// ---------------------------------------------------------------------------
// NxString: text records, key records, old records.

// One order: hex, plain character (with the accents of code set 1) and words.
std::string OrderLine(unsigned short order, unsigned char state) {
  unsigned char character = 0;
  NxConvertOrderToChar(order, state, character, 1, nullptr);
  NxString words;
  NxConvertOrderToString(order, state, words);
  std::string text = cli::WriteUtf8(words);
  // Ideographs are named with a newline at the end.
  while (!text.empty() && text.back() == '\n') text.pop_back();
  const std::string shown =
      cli::ShownChar(NxLanguageContext::QueryCodeSet(NxCS_CP1252)->ToUnicode(character));
  return "  " + Printed("%04x", order) + "   " + Padded(shown, 10) + text;
}

void ExplainKey(const unsigned char* record, size_t content, unsigned char format, Lines& out) {
  const unsigned char state = record[3];
  out.push_back("  state byte " + StateByte(state));
  out.push_back("  order  character words");
  for (size_t at = 4; at + 1 < 4 + content; at += 2)
    out.push_back(OrderLine(static_cast<unsigned short>(Get16(record + at, format)), state));
  if (content % 2 != 0)
    out.push_back("  " + Printed("%02x", record[4 + content - 1]) +
                  "     (a cut order, 1 byte of 2)");
}

void ExplainText(const unsigned char* record, size_t content, unsigned char format, Lines& out) {
  const unsigned char codeSet = record[2];
  const unsigned char* text = record + 4;
  out.push_back("  code set   " + CodeSetName(codeSet));
  out.push_back("  language   " + LanguageName(record[3]));
  const NxCodeSet* set = NxLanguageContext::QueryCodeSet(codeSet);
  if (content == 0) {
    out.push_back("  no text");
    return;
  }
  if (set == nullptr) {
    out.push_back("  bytes      " + cli::Hex(text, content));
    return;
  }
  std::string shown;
  size_t characters = 0;
  if (codeSet <= 224) {
    shown = ShownBytes(text, content, codeSet);
    characters = content;
  } else {
    for (size_t at = 0; at + 1 < content; at += 2, ++characters) {
      const unsigned short unit = static_cast<unsigned short>(Get16(text + at, format));
      shown += cli::ShownChar(codeSet == NxCS_UNICODE ? unit : set->ToUnicode(unit), true);
    }
  }
  out.push_back("  text       \"" + shown + "\", " + Count(characters, "character"));
  if (codeSet > 224 && content % 2 != 0)
    out.push_back("  and 1 byte of a cut character: " + Printed("%02x", text[content - 1]));
}

bool ExplainString(const std::vector<unsigned char>& bytes, unsigned char format, Lines& out,
                   std::string& error) {
  const size_t size = bytes.size();
  if (size < 2) {
    error = Count(size, "byte") + " hold no length field";
    return false;
  }
  const unsigned char* b = bytes.data();
  // The old record holds the whole array and ends in the terminator of its
  // last text; the records of today end in 0xFF, or are cut.
  const uint32_t first = Get16(b, format);
  if (first + 2u <= size && b[first + 1] == 0) {
    if (first + 2u != size) {
      error = Behind(size - first - 2) + " the old record";
      return false;
    }
    std::vector<std::pair<size_t, size_t>> strings;
    for (size_t from = 2, k = 2; k < first + 2u; ++k)
      if (b[k] == 0) {
        strings.emplace_back(from, k - from);
        from = k + 1;
      }
    out.push_back("old record: L " + std::to_string(first) + ", " +
                  Count(strings.size(), "string") + " of 8-bit text, " + Whole(size));
    for (const auto& s : strings)
      out.push_back("  text       \"" +
                    ShownBytes(b + s.first, s.second, NxString::GetDefault8CodeSet()) + "\"");
    return true;
  }

  // Check every record's frame before anything is shown.
  struct Frame {
    size_t at, length, atHand;
  };
  std::vector<Frame> frames;
  for (size_t at = 0; at < size;) {
    const size_t atHand = size - at;
    if (atHand < 4) {
      error = "the record at offset " + std::to_string(at) + " holds " + Count(atHand, "byte") +
              ", less than its 4-byte header";
      return false;
    }
    const uint32_t length = Get16(b + at, format);
    if (length < 4) {
      error = "the record at offset " + std::to_string(at) + " states L " + std::to_string(length) +
              ", less than its 4-byte header";
      return false;
    }
    frames.push_back({at, length, atHand});
    at += length + 2u <= atHand ? length + 2u : atHand;
  }
  for (size_t i = 0; i < frames.size(); ++i) {
    const Frame& f = frames[i];
    const unsigned char* record = b + f.at;
    const bool key = record[2] == NxCS_ORDERS;
    const bool whole = f.length + 2 <= f.atHand;
    const size_t content = (whole || f.length <= f.atHand ? f.length : f.atHand) - 4;
    std::string head = frames.size() > 1 ? "record " + std::to_string(i + 1) + " at offset " +
                                               std::to_string(f.at) + ": "
                                         : std::string();
    head +=
        std::string(key ? "key record" : "text record") + ": L " + std::to_string(f.length) + ", ";
    if (whole) {
      head += Whole(f.length + 2);
      if (key) head += ", " + Count(content / 2, "order");
    } else {
      head += Cut(f.atHand, f.length + 2);
      if (key) head += ", " + Count(content / 2, "whole order");
    }
    out.push_back(head);
    if (key)
      ExplainKey(record, content, format, out);
    else
      ExplainText(record, content, format, out);
    if (whole && (record[f.length] != 0 || record[f.length + 1] != 0xFF))
      out.push_back("  closes with " + cli::Hex(record + f.length, 2) + ", not with 00 ff");
    if (!whole && f.atHand > f.length)
      out.push_back("  behind L: " + cli::Hex(record + f.length, f.atHand - f.length));
  }
  return true;
}

// ---------------------------------------------------------------------------
// NxIString and NxCaseIString: one record for the whole array, or a key of
// mapped text.

std::string FormByte(unsigned char form) {
  std::string out = Printed("0x%02x", form);
  if ((form & 0x80) != 0) {
    out += " (mapped text";
    if ((form & 0x40) != 0) out += ", a key made by Translate";
    if ((form & 0x3F) == 1) out += ", from a record stored with a key format";
    return out + ")";
  }
  if (form == 0x40) return out + " (a plain record)";
  if (form == 1) return out + " (a record stored with a key format)";
  return out + " (not a form the rows write)";
}

// The characters of the default 8-bit code set whose map begins with `byte`.
template <class X>
std::string MappedFrom(unsigned char byte) {
  std::vector<unsigned char> from;
  for (unsigned c = 1; c < 256; ++c)
    if (X::Map(static_cast<unsigned char>(c), nullptr) == byte)
      from.push_back(static_cast<unsigned char>(c));
  if (from.empty()) return "(no character maps to it)";
  std::string out;
  for (const unsigned char c : from) {
    if (!out.empty()) out += ' ';
    out += ShownBytes(&c, 1, NxString::GetDefault8CodeSet(), false);
  }
  return out;
}

// Mapped text back into text, where the class can: NxCaseIString folds it
// into upper case, NxIString has no way back.
template <class X>
void ReadBack(const unsigned char*, size_t, Lines&) {}
template <>
void ReadBack<NxCaseIString>(const unsigned char* mapped, size_t count, Lines& out) {
  for (size_t from = 0; from < count;) {
    size_t end = from;
    while (end < count && mapped[end] != 0) ++end;
    std::vector<char> text(end - from + 1, '\0');
    NxCaseIString::UnmapText(text.data(), reinterpret_cast<const char*>(mapped + from),
                             static_cast<uint32_t>(end - from));
    out.push_back("  reads back \"" +
                  ShownBytes(reinterpret_cast<const unsigned char*>(text.data()),
                             std::char_traits<char>::length(text.data()),
                             NxString::GetDefault8CodeSet()) +
                  "\"" + (end == count ? " (cut)" : ""));
    from = end + 1;
  }
}

template <class X>
bool ExplainLegacy(const char* name, const std::vector<unsigned char>& bytes, unsigned char format,
                   Lines& out, std::string& error) {
  const size_t size = bytes.size();
  if (size < 3) {
    error = Count(size, "byte") + " are shorter than the 3-byte header";
    return false;
  }
  const unsigned char* b = bytes.data();
  const unsigned char form = b[0];
  const uint32_t length = Get16(b + 1, format);
  if (length + 3u < size) {
    error = Behind(size - length - 3) + " the record";
    return false;
  }
  const bool whole = length + 3u == size;
  const bool mapped = (form & 0x80) != 0;
  const size_t content = size - 3;
  const unsigned char* text = b + 3;
  out.push_back(std::string(name) + (mapped ? " key" : " record") + ": L " +
                std::to_string(length) + ", " + (whole ? Whole(size) : Cut(size, length + 3u)));
  out.push_back("  form byte  " + FormByte(form));
  if (mapped) {
    // Accent weights don't reach a key: each byte stands for all the
    // characters that map to it.
    out.push_back("  byte  characters that map to it");
    for (size_t k = 0; k < content; ++k)
      out.push_back("  " + Printed("%02x", text[k]) + "    " +
                    (text[k] == 0 ? std::string("end of text") : MappedFrom<X>(text[k])));
    ReadBack<X>(text, content, out);
    return true;
  }
  size_t strings = 0;
  for (size_t from = 0; from < content; ++strings) {
    size_t end = from;
    while (end < content && text[end] != 0) ++end;
    out.push_back("  text       \"" +
                  ShownBytes(text + from, end - from, NxString::GetDefault8CodeSet()) + "\"" +
                  (end == content ? " (cut)" : ""));
    from = end + 1;
  }
  if (strings == 0) out.push_back("  no strings");
  return true;
}

int RunExplain(const Args& input) {
  Args args = input;
  bool missing = false;
  const std::string formatText = cli::TakeOption(args, "--format", "1", missing);
  unsigned char format = 1;
  if (missing || !cli::ParseFormat(formatText, false, format))
    return cli::Fail("explain: --format takes 1 or 2");
  if (args.size() < 2) return cli::Fail("explain: usage: nxtm explain TYPE HEX... [--format 1|2]");
  NxTypeMgr mgr;
  char id = 0;
  if (!cli::FindType(mgr, args[0], id) ||
      (id != NxTYPE_NxString && id != NxTYPE_NxIString && id != NxTYPE_NxCaseIString))
    return cli::Fail("explain: TYPE is NxString, NxIString or NxCaseIString, not '" + args[0] +
                     "'");
  // The hex may come in groups, as nxtm key shows a key.
  std::string hex;
  for (size_t i = 1; i < args.size(); ++i)
    for (const char c : args[i])
      if (c != ' ' && c != '\t') hex += c;
  std::vector<unsigned char> bytes;
  std::string error;
  if (!cli::ParseHex(hex, bytes, error)) return cli::Fail("explain: " + error);
  Lines out;
  bool good = false;
  if (id == NxTYPE_NxString)
    good = ExplainString(bytes, format, out, error);
  else if (id == NxTYPE_NxIString)
    good = ExplainLegacy<NxIString>("NxIString", bytes, format, out, error);
  else
    good = ExplainLegacy<NxCaseIString>("NxCaseIString", bytes, format, out, error);
  if (!good) return cli::Fail("explain: " + error);
  for (const std::string& line : out) std::printf("%s\n", line.c_str());
  return 0;
}

const cli::Registrar kExplain({"explain", "explain TYPE HEX... [--format 1|2]",
                               "a stored string record or key taken apart, its orders in words",
                               RunExplain, 26});

}  // namespace
