// The nxtm collation inside SQLite: a loadable extension.
//
// Collations NXTM, NXTM_<LANGUAGE> and their _CI, _AI and _CI_AI variants
// compare through NxStrCmp.  Functions:
//   nxtm_match(pattern, text [, options])  1 when the text matches the
//       pattern ("*" and "?") at the strength of the options, else 0
//   nxtm_key(text [, options])             the sort key as a BLOB, which
//       SQLite's BLOB order sorts as NxStrCmp sorts the texts
//   nxtm_key_low(pattern [, options]), nxtm_key_high(pattern [, options])
//       keys that enclose the keys of every text that the pattern matches
// Options are words: ci (ignore case), ai (ignore accents), spaces, symbols
// (ignore them), exact, language=NAME or language=NUMBER.
//
// An index on nxtm_key(name, 'ci ai') is an index in the collation's order,
// and a pattern query can search it:
//   WHERE nxtm_key(name, 'ci ai') BETWEEN nxtm_key_low(p, 'ci ai')
//                                     AND nxtm_key_high(p, 'ci ai')
//     AND nxtm_match(p, name, 'ci ai')
//
// Only the public API of the library is used.  Text goes to the library as
// UTF-16 in code set 253; in a UTF-8 database it is converted on the stack.
#include <sqlite3ext.h>
SQLITE_EXTENSION_INIT1

#include <cstring>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "nxtm_sqlite_bounds.h"

#define NXTM_SQLITE_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

// Texts are handed over as UTF-16 in the machine's byte order, the memory
// form of the library.
constexpr unsigned char kCodeSet = NxCS_UNICODE;
constexpr unsigned char kFormat = NxFORMAT_MEMORY;

// ---------------------------------------------------------------------------
// Terminated UTF-16 text for the library.  Short texts stay on the stack;
// longer ones take memory from SQLite.

class Utf16Text {
 public:
  Utf16Text() = default;
  Utf16Text(const Utf16Text&) = delete;
  Utf16Text& operator=(const Utf16Text&) = delete;
  ~Utf16Text() { sqlite3_free(heap_); }

  // A copy of `bytes` bytes of UTF-16, closed by a zero unit.  False when
  // memory is short: the text is then cut to what the stack holds.
  bool Copy(const void* text, int bytes) {
    size_t units = bytes > 0 ? static_cast<size_t>(bytes) / 2 : 0;
    const bool whole = Reserve(units + 1);
    if (!whole) units = kLocal - 1;
    if (units != 0) std::memcpy(data_, text, units * 2);
    data_[units] = 0;
    units_ = units;
    return whole;
  }

  // UTF-8 converted to UTF-16, closed by a zero unit.  Characters beyond
  // the BMP become surrogate pairs, malformed sequences U+FFFD, as SQLite's
  // own conversion makes them.
  bool Convert(const unsigned char* text, int bytes) {
    const size_t n = bytes > 0 ? static_cast<size_t>(bytes) : 0;
    const bool whole = Reserve(n + 1);  // never more units than bytes
    const size_t room = whole ? n : kLocal - 1;
    size_t out = 0;
    size_t i = 0;
    while (i < n && out < room) {
      // Runs of ASCII, the bulk of most text: eight bytes at a time, then
      // byte by byte.
      uint64_t eight;
      while (i + 8 <= n && out + 8 <= room &&
             (std::memcpy(&eight, text + i, 8), (eight & 0x8080808080808080u) == 0)) {
        for (int k = 0; k < 8; ++k) data_[out + k] = text[i + k];
        i += 8;
        out += 8;
      }
      while (i < n && out < room && text[i] < 0x80) data_[out++] = text[i++];
      if (i == n || out == room) break;
      uint32_t c = text[i++];
      if (c >= 0xC0) {
        uint32_t extra = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : 1;
        c &= extra == 3 ? 0x07u : extra == 2 ? 0x0Fu : 0x1Fu;
        while (extra-- != 0 && i < n && (text[i] & 0xC0) == 0x80) c = c << 6 | (text[i++] & 0x3Fu);
        if (c < 0x80 || (c & 0xFFFFF800u) == 0xD800u || (c & 0xFFFFFFFEu) == 0xFFFEu) c = 0xFFFD;
      } else if (c >= 0x80) {
        c = 0xFFFD;  // a continuation byte without a lead byte
      }
      if (c >= 0x10000) {
        if (c > 0x10FFFF || out + 2 > room) c = 0xFFFD;
        if (c >= 0x10000) {
          c -= 0x10000;
          data_[out++] = static_cast<char16_t>(0xD800 + (c >> 10));
          data_[out++] = static_cast<char16_t>(0xDC00 + (c & 0x3FF));
          continue;
        }
      }
      data_[out++] = static_cast<char16_t>(c);
    }
    data_[out] = 0;
    units_ = out;
    return whole;
  }

  const char* data() const { return reinterpret_cast<const char*>(data_); }
  size_t units() const { return units_; }

 private:
  static constexpr size_t kLocal = 256;

  bool Reserve(size_t units) {
    if (units <= kLocal) return true;
    heap_ = static_cast<char16_t*>(sqlite3_malloc64(units * sizeof(char16_t)));
    if (heap_ == nullptr) return false;
    data_ = heap_;
    return true;
  }

  char16_t local_[kLocal];
  char16_t* data_ = local_;
  char16_t* heap_ = nullptr;
  size_t units_ = 0;
};

// ---------------------------------------------------------------------------
// Languages and options.

struct Language {
  const char* name;  // in collation names (upper case) and options (any case)
  unsigned char number;
};

const Language kLanguages[] = {
    {"NEUTRAL", NxLANG_NEUTRAL},
    {"DE_PHONEBOOK", NxLANG_GERMAN_PHONEBOOK},
    {"ES_TRADITIONAL", NxLANG_SPANISH_TRADITIONAL},
    {"SV", NxLANG_SWEDISH},
    {"DA_NO", NxLANG_DANISH},
    {"CS", NxLANG_CZECH},
    {"EL", NxLANG_GREEK},
    {"RU", NxLANG_RUSSIAN},
};

struct Strength {
  const char* suffix;
  unsigned short cmpOp;
};

const Strength kStrengths[] = {
    {"", 0},
    {"_CI", NxCMP_IGNORE_CASE},
    {"_AI", NxCMP_IGNORE_ACCENTS},
    {"_CI_AI", NxCMP_IGNORE_CASE | NxCMP_IGNORE_ACCENTS},
};

// What a collation or a call compares with.
struct Options {
  unsigned short cmpOp = 0;
  unsigned char language = NxLANG_NEUTRAL;
};

bool SameWord(const std::string& a, const char* b) {
  if (a.size() != std::strlen(b)) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    const char x = a[i] >= 'a' && a[i] <= 'z' ? static_cast<char>(a[i] - 32) : a[i];
    const char y = b[i] >= 'a' && b[i] <= 'z' ? static_cast<char>(b[i] - 32) : b[i];
    const char xs = x == '-' ? '_' : x;
    const char ys = y == '-' ? '_' : y;
    if (xs != ys) return false;
  }
  return true;
}

// A language by its name here, by the library's name, or by its number.
bool FindLanguage(const std::string& word, unsigned char& number) {
  for (const Language& l : kLanguages) {
    if (SameWord(word, l.name)) {
      number = l.number;
      return true;
    }
  }
  bool digits = !word.empty() && word.size() <= 3;
  unsigned value = 0;
  for (char c : word) {
    digits = digits && c >= '0' && c <= '9';
    value = value * 10 + static_cast<unsigned>(c - '0');
  }
  for (int i = 0;; ++i) {
    const NxLanguage* l = NxLanguageContext::LanguageAt(i);
    if (l == nullptr) return false;
    if ((digits && l->number == value) || (l->name != nullptr && SameWord(word, l->name))) {
      number = l->number;
      return true;
    }
  }
}

// Parses the words of `text`; on an error returns its message.
std::string ParseOptions(const char* text, Options& options) {
  std::string word;
  for (const char* p = text;; ++p) {
    const bool separator = *p == 0 || *p == ' ' || *p == ',' || *p == '\t';
    if (!separator) {
      word += *p;
      continue;
    }
    if (!word.empty()) {
      const size_t equals = word.find('=');
      if (equals != std::string::npos && SameWord(word.substr(0, equals), "language")) {
        const std::string name = word.substr(equals + 1);
        if (!FindLanguage(name, options.language))
          return "unknown language '" + name +
                 "' (a number or a name: neutral, de_phonebook, es_traditional, sv, da_no, cs, "
                 "el, ru)";
      } else if (SameWord(word, "ci")) {
        options.cmpOp |= NxCMP_IGNORE_CASE;
      } else if (SameWord(word, "ai")) {
        options.cmpOp |= NxCMP_IGNORE_ACCENTS;
      } else if (SameWord(word, "spaces")) {
        options.cmpOp |= NxCMP_IGNORE_SPACES;
      } else if (SameWord(word, "symbols")) {
        options.cmpOp |= NxCMP_IGNORE_SYMBOLS;
      } else if (SameWord(word, "exact")) {
        options.cmpOp |= NxCMP_EXACT;
      } else {
        return "unknown option '" + word +
               "' (options: ci, ai, spaces, symbols, exact, language=NAME)";
      }
      word.clear();
    }
    if (*p == 0) return std::string();
  }
}

// ---------------------------------------------------------------------------
// Collations.

struct Collation {
  std::string name;
  Options options;
};

// Every collation name with its options: NXTM and NXTM_<LANGUAGE>, each
// with the four strengths.
const std::vector<Collation>& Collations() {
  static const std::vector<Collation> all = [] {
    std::vector<Collation> v;
    for (const Strength& s : kStrengths) {
      v.push_back({std::string("NXTM") + s.suffix, {s.cmpOp, NxLANG_NEUTRAL}});
      for (const Language& l : kLanguages)
        v.push_back({std::string("NXTM_") + l.name + s.suffix, {s.cmpOp, l.number}});
    }
    return v;
  }();
  return all;
}

int CompareTexts(const Options& o, const Utf16Text& a, const Utf16Text& b) {
  const int32_t r =
      NxStrCmp(kCodeSet, o.language, a.data(), kCodeSet, o.language, b.data(),
               static_cast<unsigned short>(o.cmpOp | NxCMP_NO_WILDCARDS), -1, kFormat, nullptr);
  return (r > 0) - (r < 0);
}

// SQLite hands a collation text with a length and without a terminator,
// which NxStrCmp needs: each side is copied.
int CollateUtf16(void* user, int n1, const void* p1, int n2, const void* p2) {
  Utf16Text a;
  Utf16Text b;
  a.Copy(p1, n1);
  b.Copy(p2, n2);
  return CompareTexts(*static_cast<const Options*>(user), a, b);
}

int CollateUtf8(void* user, int n1, const void* p1, int n2, const void* p2) {
  Utf16Text a;
  Utf16Text b;
  a.Convert(static_cast<const unsigned char*>(p1), n1);
  b.Convert(static_cast<const unsigned char*>(p2), n2);
  return CompareTexts(*static_cast<const Options*>(user), a, b);
}

// ---------------------------------------------------------------------------
// Functions.

// The function's name for messages, kept as its user data.
const char* NameOf(sqlite3_context* ctx) {
  return static_cast<const char*>(sqlite3_user_data(ctx));
}

void Error(sqlite3_context* ctx, const std::string& message) {
  const std::string text = std::string(NameOf(ctx)) + ": " + message;
  sqlite3_result_error(ctx, text.c_str(), -1);
}

const char* Ordinal(int i) {
  static const char* const kOrdinals[] = {"first", "second", "third"};
  return kOrdinals[i];
}

// Reads argument `i` as text into `text`.  Numbers are read as their text;
// a BLOB is an error, and so is NULL unless `nullAllowed`.  Returns false
// with the result set when the call can't go on (`isNull` tells a NULL
// that is allowed).
bool ReadText(sqlite3_context* ctx, sqlite3_value* v, int i, bool nullAllowed, bool utf8,
              Utf16Text& text, bool& isNull) {
  isNull = false;
  switch (sqlite3_value_type(v)) {
    case SQLITE_NULL:
      if (nullAllowed) {
        isNull = true;
        sqlite3_result_null(ctx);
      } else {
        Error(ctx, std::string("the ") + Ordinal(i) + " argument is NULL; text expected");
      }
      return false;
    case SQLITE_BLOB:
      Error(ctx, std::string("the ") + Ordinal(i) + " argument is a BLOB; text expected");
      return false;
    default:
      break;
  }
  bool whole;
  if (utf8) {
    const unsigned char* p = sqlite3_value_text(v);
    whole = p != nullptr && text.Convert(p, sqlite3_value_bytes(v));
  } else {
    const void* p = sqlite3_value_text16(v);
    whole = p != nullptr && text.Copy(p, sqlite3_value_bytes16(v));
  }
  if (!whole) {
    sqlite3_result_error_nomem(ctx);
    return false;
  }
  return true;
}

// Reads a pattern: text, not NULL, and no longer than a string can be.
bool ReadPattern(sqlite3_context* ctx, sqlite3_value* v, int i, bool utf8, Utf16Text& pattern) {
  bool isNull;
  if (!ReadText(ctx, v, i, false, utf8, pattern, isNull)) return false;
  if (pattern.units() * 2 > NxSTRING_MAX_SIZE) {
    Error(ctx,
          "the pattern is longer than " + std::to_string(NxSTRING_MAX_SIZE / 2) + " UTF-16 units");
    return false;
  }
  return true;
}

// Reads the options argument `i` when there is one.  A query passes the
// same options for every row: once read, they are kept as the argument's
// auxiliary data, which SQLite holds while the argument stays the same.
bool ReadOptions(sqlite3_context* ctx, int argc, sqlite3_value** argv, int i, Options& options) {
  if (i >= argc) return true;
  if (const void* kept = sqlite3_get_auxdata(ctx, i)) {
    options = *static_cast<const Options*>(kept);
    return true;
  }
  const int type = sqlite3_value_type(argv[i]);
  if (type == SQLITE_NULL || type == SQLITE_BLOB) {
    Error(ctx, std::string("the options are ") + (type == SQLITE_NULL ? "NULL" : "a BLOB") +
                   "; text expected, such as 'ci ai'");
    return false;
  }
  const unsigned char* text = sqlite3_value_text(argv[i]);
  if (text == nullptr) {
    sqlite3_result_error_nomem(ctx);
    return false;
  }
  const std::string message = ParseOptions(reinterpret_cast<const char*>(text), options);
  if (!message.empty()) {
    Error(ctx, message);
    return false;
  }
  // Kept when memory allows; without it the next row reads them again.
  if (void* copy = sqlite3_malloc(sizeof options)) {
    std::memcpy(copy, &options, sizeof options);
    sqlite3_set_auxdata(ctx, i, copy, sqlite3_free);
  }
  return true;
}

template <bool kUtf8>
void Match(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  Options options;
  if (!ReadOptions(ctx, argc, argv, 2, options)) return;
  Utf16Text pattern;
  if (!ReadPattern(ctx, argv[0], 0, kUtf8, pattern)) return;
  Utf16Text text;
  bool isNull;
  if (!ReadText(ctx, argv[1], 1, true, kUtf8, text, isNull)) return;
  const int32_t r = NxStrCmp(kCodeSet, options.language, text.data(), kCodeSet, options.language,
                             pattern.data(), options.cmpOp, -1, kFormat, nullptr);
  sqlite3_result_int(ctx, r == 0 ? 1 : 0);
}

// A key as the function's BLOB result.
class KeyResult {
 public:
  explicit KeyResult(sqlite3_context* ctx) : ctx_(ctx) {}
  ~KeyResult() { sqlite3_free(heap_); }
  KeyResult(const KeyResult&) = delete;
  KeyResult& operator=(const KeyResult&) = delete;

  // The key of `text`; false when memory is short (the result is set).
  bool Make(const Options& o, const char* text) {
    length_ = NxStrSortKey(kCodeSet, o.language, text, o.cmpOp, kFormat, local_, sizeof local_);
    if (length_ <= sizeof local_) return true;
    heap_ = static_cast<unsigned char*>(sqlite3_malloc64(length_ + 1u));
    if (heap_ == nullptr) {
      sqlite3_result_error_nomem(ctx_);
      return false;
    }
    data_ = heap_;
    NxStrSortKey(kCodeSet, o.language, text, o.cmpOp, kFormat, heap_, length_);
    return true;
  }

  unsigned char* data() { return data_; }
  uint32_t length() const { return length_; }
  void Cut(uint32_t length) { length_ = length; }
  // Appends a byte; the heap block has room for one.  False when memory
  // is short (the result is set).
  bool Append(unsigned char byte) {
    if (data_ == local_ && length_ == sizeof local_) {
      heap_ = static_cast<unsigned char*>(sqlite3_malloc64(length_ + 1u));
      if (heap_ == nullptr) {
        sqlite3_result_error_nomem(ctx_);
        return false;
      }
      std::memcpy(heap_, local_, length_);
      data_ = heap_;
    }
    data_[length_++] = byte;
    return true;
  }

  void Return() { sqlite3_result_blob64(ctx_, data_, length_, SQLITE_TRANSIENT); }

 private:
  sqlite3_context* ctx_;
  unsigned char local_[512];
  unsigned char* data_ = local_;
  unsigned char* heap_ = nullptr;
  uint32_t length_ = 0;
};

template <bool kUtf8>
void Key(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  Options options;
  if (!ReadOptions(ctx, argc, argv, 1, options)) return;
  Utf16Text text;
  bool isNull;
  if (!ReadText(ctx, argv[0], 0, true, kUtf8, text, isNull)) return;
  KeyResult key(ctx);
  if (key.Make(options, text.data())) key.Return();
}

// The type manager whose "NxString" row narrows the patterns.
const NxTypeMgr& Manager() {
  static const NxTypeMgr manager;
  return manager;
}

// The bounds of a pattern; nxtm_sqlite_bounds.h says which rule gives them
// where.
template <bool kUtf8, bool kHigh>
void KeyBound(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  Options options;
  if (!ReadOptions(ctx, argc, argv, 1, options)) return;
  Utf16Text pattern;
  if (!ReadPattern(ctx, argv[0], 0, kUtf8, pattern)) return;
  const nxsqlite::Wildcard w =
      nxsqlite::FirstWildcard(kCodeSet, options.language, pattern.data(), options.cmpOp, kFormat);
  KeyResult key(ctx);
  if (!w.found) {
    // Equality at the strength: the pattern's own key.
    if (key.Make(options, pattern.data())) key.Return();
    return;
  }

  const uint32_t recordSize = nxsqlite::TextRecordSize(w);
  unsigned char local[512];
  unsigned char* record = local;
  if (recordSize > sizeof local) {
    record = static_cast<unsigned char*>(sqlite3_malloc64(recordSize));
    if (record == nullptr) {
      sqlite3_result_error_nomem(ctx);
      return;
    }
  }
  nxsqlite::TextRecord(options.language, pattern.data(), w, record);
  nxsqlite::NarrowedBounds bounds;
  nxsqlite::Narrow(Manager(), record, w, options.cmpOp, bounds);
  if (record != local) sqlite3_free(record);

  if (!bounds.endsBeforeWildcard) {
    if (kHigh) {
      sqlite3_result_blob64(ctx, bounds.high, bounds.highLength, SQLITE_TRANSIENT);
    } else {
      sqlite3_result_blob64(ctx, bounds.low, bounds.lowLength, SQLITE_TRANSIENT);
    }
    return;
  }
  // Across a change of script: the first level of the sort key of the text
  // in front of the wildcard.
  Utf16Text head;
  if (!head.Copy(pattern.data(), w.byteOffset)) {
    sqlite3_result_error_nomem(ctx);
    return;
  }
  if (!key.Make(options, head.data())) return;
  key.Cut(NxStrSortKeyFirstLevel(key.data(), key.length(), options.cmpOp));
  if (kHigh && !key.Append(nxsqlite::kAboveEveryKey)) return;
  key.Return();
}

struct Function {
  const char* name;
  int args;
  void (*utf8)(sqlite3_context*, int, sqlite3_value**);
  void (*utf16)(sqlite3_context*, int, sqlite3_value**);
};

const Function kFunctions[] = {
    {"nxtm_match", 2, Match<true>, Match<false>},
    {"nxtm_match", 3, Match<true>, Match<false>},
    {"nxtm_key", 1, Key<true>, Key<false>},
    {"nxtm_key", 2, Key<true>, Key<false>},
    {"nxtm_key_low", 1, KeyBound<true, false>, KeyBound<false, false>},
    {"nxtm_key_low", 2, KeyBound<true, false>, KeyBound<false, false>},
    {"nxtm_key_high", 1, KeyBound<true, true>, KeyBound<false, true>},
    {"nxtm_key_high", 2, KeyBound<true, true>, KeyBound<false, true>},
};

}  // namespace

// The entry point that SQLite derives from the file name nxtm_sqlite.
NXTM_SQLITE_EXPORT int sqlite3_nxtmsqlite_init(sqlite3* db, char** error,
                                               const sqlite3_api_routines* api) {
  SQLITE_EXTENSION_INIT2(api);
  int rc = SQLITE_OK;
  for (const Collation& c : Collations()) {
    void* user = const_cast<Options*>(&c.options);
    rc = sqlite3_create_collation_v2(db, c.name.c_str(), SQLITE_UTF16, user, CollateUtf16, nullptr);
    if (rc == SQLITE_OK)
      rc = sqlite3_create_collation_v2(db, c.name.c_str(), SQLITE_UTF8, user, CollateUtf8, nullptr);
    if (rc != SQLITE_OK) break;
  }
  const int flags = SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
  for (const Function& f : kFunctions) {
    if (rc != SQLITE_OK) break;
    void* user = const_cast<char*>(f.name);
    rc = sqlite3_create_function_v2(db, f.name, f.args, SQLITE_UTF8 | flags, user, f.utf8, nullptr,
                                    nullptr, nullptr);
    if (rc == SQLITE_OK)
      rc = sqlite3_create_function_v2(db, f.name, f.args, SQLITE_UTF16 | flags, user, f.utf16,
                                      nullptr, nullptr, nullptr);
  }
  if (rc != SQLITE_OK && error != nullptr)
    *error = sqlite3_mprintf("nxtm: registering the collations and functions failed: %s",
                             sqlite3_errstr(rc));
  return rc;
}

// The default entry point, for loaders that don't derive one.
NXTM_SQLITE_EXPORT int sqlite3_extension_init(sqlite3* db, char** error,
                                              const sqlite3_api_routines* api) {
  return sqlite3_nxtmsqlite_init(db, error, api);
}
