#!/usr/bin/env bash
# The sqlite3 session of the README, run by the sqlite3 shell on the module
# given (without its file suffix, as .load takes it): the pattern query finds
# the names and its plan searches the index.
set -euo pipefail
shell=$1
module=$2
db=$(mktemp -d)/names.db
trap 'rm -rf "$(dirname "$db")"' EXIT

out=$("$shell" -bail "$db" <<SQL
.load $module
CREATE TABLE people(name TEXT); INSERT INTO people VALUES ('Müller'), ('Mueller'), ('MÜLLER-Lüdenscheidt'), ('Muller'), ('Möller'), ('Mülheim');
CREATE INDEX people_key ON people(nxtm_key(name, 'ci ai'));
SELECT name FROM people WHERE nxtm_key(name, 'ci ai') BETWEEN nxtm_key_low('mül*', 'ci ai') AND nxtm_key_high('mül*', 'ci ai') AND nxtm_match('mül*', name, 'ci ai');
EXPLAIN QUERY PLAN SELECT name FROM people WHERE nxtm_key(name, 'ci ai') BETWEEN nxtm_key_low('mül*', 'ci ai') AND nxtm_key_high('mül*', 'ci ai') AND nxtm_match('mül*', name, 'ci ai');
SQL
)
expected="Mülheim
Müller
Muller
MÜLLER-Lüdenscheidt
QUERY PLAN
\`--SEARCH people USING INDEX people_key (<expr>>? AND <expr><?)"
if [[ "$out" != "$expected" ]]; then
  printf 'unexpected output:\n%s\n--- expected:\n%s\n' "$out" "$expected"
  exit 1
fi
echo "session ok"
