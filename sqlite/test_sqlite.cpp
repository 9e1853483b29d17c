// The SQLite extension in real databases, opened through the C API: the
// collations against NxStrCmp, nxtm_match against the library, the indexed
// pattern query against a full scan, and errors that leave the data alone.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include <unistd.h>

#include <nxtm/nxtm.h>

#include "names.h"

namespace {

// A database with the extension loaded.
class Db {
 public:
  explicit Db(const std::string& path, const char* encoding = nullptr) {
    EXPECT_EQ(sqlite3_open(path.c_str(), &db_), SQLITE_OK);
    if (encoding != nullptr) Exec(std::string("PRAGMA encoding = '") + encoding + "'");
    sqlite3_db_config(db_, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 1, nullptr);
    char* error = nullptr;
    const int rc = sqlite3_load_extension(db_, NXTM_SQLITE_EXTENSION, nullptr, &error);
    EXPECT_EQ(rc, SQLITE_OK) << (error != nullptr ? error : "");
    sqlite3_free(error);
  }
  ~Db() { sqlite3_close(db_); }
  Db(const Db&) = delete;
  Db& operator=(const Db&) = delete;

  void Exec(const std::string& sql) {
    char* error = nullptr;
    EXPECT_EQ(sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &error), SQLITE_OK)
        << sql << ": " << (error != nullptr ? error : "");
    sqlite3_free(error);
  }

  // The error message of a statement that must fail, or "" when it didn't.
  std::string Fails(const std::string& sql) {
    char* error = nullptr;
    const int rc = sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &error);
    std::string message = rc != SQLITE_OK && error != nullptr ? error : "";
    sqlite3_free(error);
    return message;
  }

  // All rows of a query, columns joined by '|'; text parameters in order.
  std::vector<std::string> Rows(const std::string& sql,
                                const std::vector<std::string>& params = {}) {
    sqlite3_stmt* stmt = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(db_, sql.c_str(), -1, &stmt, nullptr), SQLITE_OK)
        << sql << ": " << sqlite3_errmsg(db_);
    for (size_t i = 0; i < params.size(); ++i)
      sqlite3_bind_text(stmt, static_cast<int>(i + 1), params[i].c_str(), -1, SQLITE_TRANSIENT);
    std::vector<std::string> rows;
    int rc;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
      std::string row;
      for (int c = 0; c < sqlite3_column_count(stmt); ++c) {
        if (c != 0) row += '|';
        const unsigned char* text = sqlite3_column_text(stmt, c);
        row += text != nullptr ? reinterpret_cast<const char*>(text) : "NULL";
      }
      rows.push_back(row);
    }
    EXPECT_EQ(rc, SQLITE_DONE) << sql << ": " << sqlite3_errmsg(db_);
    sqlite3_finalize(stmt);
    return rows;
  }

  // Inserts the names into a new table t(id, name).
  void Table(const std::vector<std::string>& names) {
    Exec("CREATE TABLE t(id INTEGER PRIMARY KEY, name TEXT)");
    Exec("BEGIN");
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(db_, "INSERT INTO t(name) VALUES(?)", -1, &stmt, nullptr);
    for (const std::string& n : names) {
      sqlite3_bind_text(stmt, 1, n.c_str(), -1, SQLITE_TRANSIENT);
      EXPECT_EQ(sqlite3_step(stmt), SQLITE_DONE);
      sqlite3_reset(stmt);
    }
    sqlite3_finalize(stmt);
    Exec("COMMIT");
  }

 private:
  sqlite3* db_ = nullptr;
};

int Sign(long v) {
  return (v > 0) - (v < 0);
}

int Compare(const std::string& a, const std::string& b, unsigned short cmpOp,
            unsigned char language) {
  const std::u16string x = nxtest::Utf16(a);
  const std::u16string y = nxtest::Utf16(b);
  return Sign(NxStrCmp(NxCS_UNICODE, language, reinterpret_cast<const char*>(x.c_str()),
                       NxCS_UNICODE, language, reinterpret_cast<const char*>(y.c_str()), cmpOp, -1,
                       8, nullptr));
}

bool Matches(const std::string& pattern, const std::string& text, unsigned short cmpOp,
             unsigned char language) {
  return Compare(text, pattern, cmpOp, language) == 0;
}

// Real names, names joined from them, and names with the case and accents
// of others, so that many tie at weaker strengths.
std::vector<std::string> Names(size_t joined) {
  std::vector<std::string> names(std::begin(nxtest::kNames), std::end(nxtest::kNames));
  std::mt19937 rng(4711);
  const char* joints[] = {" ", "-", "", ", "};
  for (size_t i = 0; i < joined; ++i)
    names.push_back(std::string(nxtest::kNames[rng() % nxtest::kNameCount]) + joints[rng() % 4] +
                    nxtest::kNames[rng() % nxtest::kNameCount]);
  return names;
}

// Long names, several of the list joined, whose starts are longer than an
// index key holds.
std::vector<std::string> LongNames(size_t count) {
  std::vector<std::string> names;
  std::mt19937 rng(1848);
  for (size_t i = 0; i < count; ++i) {
    std::string name = nxtest::kNames[rng() % nxtest::kNameCount];
    while (name.size() < 300) name += std::string(" ") + nxtest::kNames[rng() % nxtest::kNameCount];
    names.push_back(name);
  }
  return names;
}

// Letters that a pattern may take in another case or with another accent
// than the name it comes from.
const char* const kSwaps[][2] = {
    {"u", "ü"}, {"ü", "u"}, {"e", "é"}, {"é", "e"}, {"o", "ø"}, {"a", "Å"}, {"ß", "ss"},
    {"и", "И"}, {"о", "О"}, {"в", "В"}, {"ο", "Ο"}, {"ό", "ο"}, {"α", "ά"}};

// A pattern made from a name: its start, and wildcards in front, inside or
// behind, one or several, or none; some letters in another case or with
// another accent.
std::string Pattern(std::mt19937& rng, const std::string& name) {
  std::vector<std::string> chars;  // the name's UTF-8 characters
  for (size_t i = 0; i < name.size(); ++i) {
    if ((static_cast<unsigned char>(name[i]) & 0xC0) == 0x80) {
      chars.back() += name[i];
    } else {
      chars.emplace_back(1, name[i]);
    }
  }
  auto join = [&](size_t from, size_t to) {
    std::string out;
    for (size_t i = from; i < std::min(to, chars.size()); ++i) {
      std::string c = chars[i];
      if (rng() % 4 == 0 && c[0] >= 'a' && c[0] <= 'z') c[0] = static_cast<char>(c[0] - 32);
      for (const auto& swap : kSwaps)
        if (c == swap[0] && rng() % 6 == 0) c = swap[1];
      out += c;
    }
    return out;
  };
  const size_t n = chars.size();
  const size_t cut = rng() % (n + 1);
  const size_t more = cut + 1 + rng() % 4;
  switch (rng() % 9) {
    case 0:
      return join(0, cut);  // no wildcard: equality at the strength
    case 1:
      return join(0, cut) + "?" + join(cut + 1, n);
    case 2:
      return join(0, cut) + "*" + join(cut + 2, n);
    case 3:
      return "*" + join(cut, n);
    case 4:
      return "?" + join(1, cut) + "*";
    case 5:
      return join(0, cut) + "*" + join(cut + 1, more) + "*";
    case 6:
      return join(0, cut) + "?" + join(cut + 1, more) + "*" + join(more + 1, n);
    default:
      return join(0, cut) + "*";
  }
}

// A file of this process alone, so that test runs side by side don't meet.
std::string TempPath(const char* name) {
  return testing::TempDir() + std::to_string(::getpid()) + "_" + name;
}

struct Variant {
  const char* language;  // in collation names
  unsigned char number;
};
const Variant kLanguages[] = {
    {"", 1},    {"_NEUTRAL", 1}, {"_DE_PHONEBOOK", 2}, {"_ES_TRADITIONAL", 3},
    {"_SV", 4}, {"_DA_NO", 5},   {"_CS", 6},           {"_EL", 7},
    {"_RU", 8}};
const struct {
  const char* suffix;
  unsigned short cmpOp;
} kStrengths[] = {{"", 0}, {"_CI", 0x20}, {"_AI", 0x40}, {"_CI_AI", 0x60}};

// ORDER BY under every collation sorts as NxStrCmp, and = and < agree with
// it on random pairs, in a UTF-8 and in a UTF-16 database.
TEST(SqliteExtension, CollationsOrderAsNxStrCmp) {
  const std::vector<std::string> names = Names(700);
  for (const char* encoding : {"UTF-8", "UTF-16le"}) {
    Db db(":memory:", encoding);
    db.Table(names);
    std::mt19937 rng(99);
    for (const Variant& l : kLanguages) {
      for (const auto& s : kStrengths) {
        const std::string collation = std::string("NXTM") + l.language + s.suffix;
        const unsigned short op = static_cast<unsigned short>(s.cmpOp | NxCMP_NO_WILDCARDS);
        const std::vector<std::string> sorted =
            db.Rows("SELECT name FROM t ORDER BY name COLLATE " + collation);
        ASSERT_EQ(sorted.size(), names.size());
        for (size_t i = 0; i + 1 < sorted.size(); ++i)
          ASSERT_LE(Compare(sorted[i], sorted[i + 1], op, l.number), 0)
              << encoding << " " << collation << ": " << sorted[i] << " / " << sorted[i + 1];
        for (int k = 0; k < 100; ++k) {
          const std::string& a = names[rng() % names.size()];
          const std::string& b = k % 4 == 0 ? a : names[rng() % names.size()];
          const std::vector<std::string> r =
              db.Rows("SELECT (?1 = ?2 COLLATE " + collation + ") - (?1 < ?2 COLLATE " + collation +
                          ") * 2",
                      {a, b});
          const int want = Compare(a, b, op, l.number);
          ASSERT_EQ(r[0], want == 0  ? "1"
                          : want < 0 ? "-2"
                                     : "0")
              << collation << " " << a << "/" << b;
        }
      }
    }
  }
}

// nxtm_match is the library's match, with the options' strength and
// language; nxtm_key orders as the collation of the same options.
TEST(SqliteExtension, MatchAndKeyAgreeWithTheLibrary) {
  Db db(":memory:");
  const std::vector<std::string> names = Names(300);
  std::mt19937 rng(5);
  const struct {
    const char* options;
    unsigned short cmpOp;
    unsigned char language;
  } cases[] = {{"", 0, 1},
               {"ci", 0x20, 1},
               {"ai", 0x40, 1},
               {"CI  AI", 0x60, 1},
               {"ci,ai,spaces", 0xE0, 1},
               {"symbols language=de_phonebook", 0x200, 2},
               {"ai language=4", 0x40, 4},
               {"ci ai language=czech", 0x60, 6},
               {"exact", 0x100, 1}};
  for (const auto& c : cases) {
    for (int k = 0; k < 150; ++k) {
      const std::string& text = names[rng() % names.size()];
      const std::string pattern = Pattern(rng, names[rng() % names.size()]);
      const std::vector<std::string> r =
          db.Rows("SELECT nxtm_match(?1, ?2, ?3)", {pattern, text, c.options});
      ASSERT_EQ(r[0], Matches(pattern, text, c.cmpOp, c.language) ? "1" : "0")
          << c.options << ": " << pattern << " / " << text;
      const std::string& other = names[rng() % names.size()];
      const std::vector<std::string> order = db.Rows(
          "SELECT (nxtm_key(?1, ?3) > nxtm_key(?2, ?3)) - (nxtm_key(?1, ?3) < nxtm_key(?2, ?3))",
          {text, other, c.options});
      ASSERT_EQ(order[0], std::to_string(Compare(text, other, c.cmpOp | 0x10, c.language)))
          << c.options << ": " << text << " / " << other;
    }
  }
  // Without options: full strength, the default language, and NULL text
  // gives NULL.
  EXPECT_EQ(db.Rows("SELECT nxtm_match('M?ller', 'Müller'), nxtm_match('m*', 'Müller'),"
                    " nxtm_match('m*', 'Müller', 'ci'), nxtm_match('*', NULL), nxtm_key(NULL)"),
            std::vector<std::string>{"1|0|1|NULL|NULL"});
  // Malformed UTF-8 reads as U+FFFD in the collations, as SQLite's own
  // conversion reads it for the functions.
  EXPECT_EQ(
      db.Rows("SELECT CAST(x'4dfc6c6c6572' AS TEXT) = 'M' || char(65533) || 'ller'"
              " COLLATE NXTM, nxtm_key(CAST(x'4dfc6c6c6572' AS TEXT))"
              " = nxtm_key('M' || char(65533) || 'ller'),"
              " CAST(x'41c328f09f98804180' AS TEXT) = 'A' || char(65533, 40, 128512, 65, 65533)"
              " COLLATE NXTM"),
      std::vector<std::string>{"1|1|1"});
}

// The indexed pattern query returns exactly the rows of the full scan, for
// hundreds of patterns, at several strengths and languages, in a file
// database, and the plan searches the index.  The rows hold names in many
// scripts, joined names that change script at a space, and names longer
// than an index key.
TEST(SqliteExtension, IndexedPatternQueryEqualsFullScan) {
  const std::string path = TempPath("nxtm_sqlite_index.db");
  std::remove(path.c_str());
  {
    Db db(path);
    std::vector<std::string> names = Names(3000);
    for (const std::string& n : LongNames(40)) names.push_back(n);
    db.Table(names);
    const char* const options[] = {"ci ai",
                                   "ci",
                                   "",
                                   "ai language=sv",
                                   "ci ai spaces symbols",
                                   "ci language=de_phonebook",
                                   "ai language=es_traditional",
                                   "ci ai language=el",
                                   "language=ru spaces",
                                   "ci language=cs"};
    const size_t count = sizeof options / sizeof options[0];
    for (size_t o = 0; o < count; ++o)
      db.Exec("CREATE INDEX k" + std::to_string(o) + " ON t(nxtm_key(name, '" + options[o] + "'))");
    std::mt19937 rng(31337);
    // Patterns that take each way to the bounds: none, leading wildcards, a
    // change of script in front of the wildcard (after a Latin space or
    // symbol), and starts longer than an index key.
    const std::vector<std::string> fixed = {
        "Müller",   "*",          "?",          "M*",          "Иванов Пет*", " Иван*",
        "«Αθ*",     "1Ιω*",       "Wang 王*",    "Wang *",      "王*",          "Li-李*",      "Παπαδόπουλος Ιω?",
        names.back().substr(0, 280) + "*", names.back().substr(0, 200) + "?x*"};
    for (size_t o = 0; o < count; ++o) {
      const std::string opt = std::string("'") + options[o] + "'";
      const std::string indexed = "SELECT id FROM t WHERE nxtm_key(name, " + opt +
                                  ") BETWEEN nxtm_key_low(?1, " + opt + ") AND nxtm_key_high(?1, " +
                                  opt + ") AND nxtm_match(?1, name, " + opt + ") ORDER BY id";
      const std::string scan =
          "SELECT id FROM t WHERE nxtm_match(?1, name, " + opt + ") ORDER BY id";
      std::string plan;
      for (const std::string& row : db.Rows("EXPLAIN QUERY PLAN " + indexed, {"Mül*"}))
        plan += row + "\n";
      EXPECT_NE(
          plan.find("SEARCH t USING INDEX k" + std::to_string(o) + " (<expr>>? AND <expr><?)"),
          std::string::npos)
          << plan;
      size_t found = 0;
      const int rounds = o == 0 ? 300 : 80;
      for (int k = 0; k < rounds + static_cast<int>(fixed.size()); ++k) {
        const std::string pattern =
            k < rounds ? Pattern(rng, names[rng() % names.size()]) : fixed[k - rounds];
        const std::vector<std::string> a = db.Rows(indexed, {pattern});
        ASSERT_EQ(a, db.Rows(scan, {pattern})) << options[o] << ": " << pattern;
        found += a.size();
      }
      EXPECT_GT(found, static_cast<size_t>(rounds));  // the patterns do match rows
    }
  }
  std::remove(path.c_str());
}

// The bounds are as tight as the rules allow: a pattern without wildcards
// is a point; across a change of script the start in front of the wildcard
// counts whole; a start longer than an index key bounds by what the key
// holds.
TEST(SqliteExtension, BoundsOfPatterns) {
  Db db(":memory:");
  const std::string a200(200, 'a');
  db.Table({"Иван Петров", "ИВАН ПЕТРОВ", "Иван-Петров", "Иван Петрова", "Иван Петренко",
            "Иван Сидоров", "Иванов", "Ivan Petrov", a200 + "x", a200 + "y"});
  auto inRange = [&](const std::string& pattern) {
    return db.Rows(
        "SELECT count(*) FROM t WHERE nxtm_key(name, 'ci') BETWEEN nxtm_key_low(?1, 'ci') AND "
        "nxtm_key_high(?1, 'ci')",
        {pattern})[0];
  };
  EXPECT_EQ(inRange("иван петров"), "2");
  EXPECT_EQ(inRange("Иван Пет*"), "5");
  EXPECT_EQ(inRange("Иван*"), "7");
  EXPECT_EQ(inRange("*"), "10");
  EXPECT_EQ(inRange(a200 + "x*"), "2");
  EXPECT_EQ(db.Rows("SELECT count(*) FROM t WHERE nxtm_match(?1, name, 'ci')", {a200 + "x*"})[0],
            "1");
}

// Bad arguments are errors with a message, never a crash, and the
// statement that hit them changes nothing.
TEST(SqliteExtension, BadInputIsAnErrorAndChangesNothing) {
  const std::string path = TempPath("nxtm_sqlite_errors.db");
  std::remove(path.c_str());
  {
    Db db(path);
    db.Table({"Müller", "Moeller", "Groß"});
    db.Exec("CREATE INDEX k ON t(nxtm_key(name, 'ci ai'))");
    const std::string content = "SELECT group_concat(id || ':' || name, ',') FROM t";
    const std::vector<std::string> before = db.Rows(content);
    const std::string longPattern(NxSTRING_MAX_SIZE / 2 + 1, 'a');
    const struct {
      std::string sql;
      const char* message;
    } cases[] = {
        {"INSERT INTO t(name) VALUES(x'4142')",
         "nxtm_key: the first argument is a BLOB; text expected"},
        {"UPDATE t SET name = 'x' WHERE nxtm_match(NULL, name)",
         "nxtm_match: the first argument is NULL"},
        {"UPDATE t SET name = 'x' WHERE nxtm_match(x'2a', name)",
         "nxtm_match: the first argument is a BLOB"},
        {"UPDATE t SET name = 'x' WHERE nxtm_match('*', x'41')",
         "nxtm_match: the second argument is a BLOB"},
        {"DELETE FROM t WHERE nxtm_match('*', name, 'ci bogus')",
         "nxtm_match: unknown option 'bogus'"},
        {"DELETE FROM t WHERE nxtm_match('*', name, 'language=klingon')",
         "nxtm_match: unknown language 'klingon'"},
        {"DELETE FROM t WHERE nxtm_match('*', name, 'language=99')",
         "nxtm_match: unknown language '99'"},
        {"DELETE FROM t WHERE nxtm_match('*', name, NULL)", "nxtm_match: the options are NULL"},
        {"DELETE FROM t WHERE nxtm_key(name, x'6369') > x''", "nxtm_key: the options are a BLOB"},
        {"DELETE FROM t WHERE nxtm_key(name, 'ci ai') >= nxtm_key_low(NULL, 'ci ai')",
         "nxtm_key_low: the first argument is NULL"},
        {"DELETE FROM t WHERE nxtm_key(name, 'ci ai') <= nxtm_key_high(x'00', 'ci ai')",
         "nxtm_key_high: the first argument is a BLOB"},
        {"DELETE FROM t WHERE nxtm_key(name) <= nxtm_key_high('" + longPattern + "')",
         "nxtm_key_high: the pattern is longer than 32766 UTF-16 units"},
        {"DELETE FROM t WHERE nxtm_match('" + longPattern + "', name)",
         "nxtm_match: the pattern is longer"},
        {"INSERT INTO t(name) SELECT nxtm_key_low('a', 'language=') FROM t",
         "nxtm_key_low: unknown language ''"},
    };
    for (const auto& c : cases) {
      const std::string message = db.Fails(c.sql);
      EXPECT_EQ(message.rfind(c.message, 0), 0u)
          << c.sql.substr(0, 80) << " gave \"" << message << "\"";
      EXPECT_EQ(db.Rows(content), before) << c.sql.substr(0, 80);
    }
    EXPECT_EQ(db.Rows("PRAGMA integrity_check"), std::vector<std::string>{"ok"});
  }
  std::remove(path.c_str());
}

}  // namespace
