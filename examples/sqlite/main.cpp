// Names that match "mül*" with case and accents ignored, found through an
// index on their sort keys: the nxtm extension in SQLite, used from C++.
//
//   nxtm_sqlite_example PATH_OF_nxtm_sqlite [DATABASE] [PATTERN]
#include <sqlite3.h>

#include <cstdio>

namespace {

bool Check(sqlite3* db, int rc, const char* what) {
  if (rc == SQLITE_OK || rc == SQLITE_DONE || rc == SQLITE_ROW) return true;
  std::fprintf(stderr, "%s: %s\n", what, sqlite3_errmsg(db));
  return false;
}

// Prints every row of `sql` with `pattern` bound to ?1.
bool Print(sqlite3* db, const char* sql, const char* pattern, const char* prefix) {
  sqlite3_stmt* stmt = nullptr;
  if (!Check(db, sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr), "prepare")) return false;
  sqlite3_bind_text(stmt, 1, pattern, -1, SQLITE_STATIC);
  int rc;
  while ((rc = sqlite3_step(stmt)) == SQLITE_ROW)
    std::printf(
        "%s%s\n", prefix,
        reinterpret_cast<const char*>(sqlite3_column_text(stmt, sqlite3_column_count(stmt) - 1)));
  sqlite3_finalize(stmt);
  return Check(db, rc, "query");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s PATH_OF_nxtm_sqlite [DATABASE] [PATTERN]\n", argv[0]);
    return 2;
  }
  const char* database = argc > 2 ? argv[2] : ":memory:";
  const char* pattern = argc > 3 ? argv[3] : "mül*";

  sqlite3* db = nullptr;
  if (sqlite3_open(database, &db) != SQLITE_OK) {
    std::fprintf(stderr, "open %s: %s\n", database, sqlite3_errmsg(db));
    sqlite3_close(db);
    return 1;
  }
  // Loading extensions through the C API only, not through SQL.
  sqlite3_db_config(db, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 1, nullptr);
  char* error = nullptr;
  if (sqlite3_load_extension(db, argv[1], nullptr, &error) != SQLITE_OK) {
    std::fprintf(stderr, "load %s: %s\n", argv[1], error != nullptr ? error : "");
    sqlite3_free(error);
    sqlite3_close(db);
    return 1;
  }

  const char* setup =
      "CREATE TABLE IF NOT EXISTS people(name TEXT);"
      "DELETE FROM people;"
      "INSERT INTO people VALUES ('Müller'), ('Mueller'), ('MÜLLER-Lüdenscheidt'), ('Muller'),"
      " ('Möller'), ('Mülheim'), ('Meier'), ('Mull');"
      "CREATE INDEX IF NOT EXISTS people_key ON people(nxtm_key(name, 'ci ai'));";
  bool ok = Check(db, sqlite3_exec(db, setup, nullptr, nullptr, nullptr), "setup");

  // The index narrows the rows to those whose key lies between the bounds
  // of the pattern's fixed start; nxtm_match decides on each of them.
  const char* query =
      "SELECT name FROM people"
      " WHERE nxtm_key(name, 'ci ai') BETWEEN nxtm_key_low(?1, 'ci ai')"
      "                               AND nxtm_key_high(?1, 'ci ai')"
      "   AND nxtm_match(?1, name, 'ci ai')"
      " ORDER BY name COLLATE NXTM";
  std::printf("names matching %s:\n", pattern);
  ok = ok && Print(db, query, pattern, "  ");
  char plan[512];
  std::snprintf(plan, sizeof plan, "EXPLAIN QUERY PLAN %s", query);
  std::printf("plan:\n");
  ok = ok && Print(db, plan, pattern, "  ");
  sqlite3_close(db);
  return ok ? 0 : 1;
}
