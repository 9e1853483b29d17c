# Shared by the program's test scripts (tests/cli_*.sh): sourced, not run.
# `check` runs one command and compares its status and output; `finish`
# reports and sets the exit status.
set -u
nxtm=${NXTM:?NXTM must name the program}
failures=0

check() {  # check NAME EXPECTED-STATUS EXPECTED-STDOUT-SUBSTRING -- COMMAND...
  local name=$1 status=$2 want=$3
  shift 4
  local out err rc
  out=$("$@" 2>/tmp/nxtm_cli_err.$$)
  rc=$?
  err=$(cat /tmp/nxtm_cli_err.$$)
  if [[ $rc -ne $status ]]; then
    echo "FAIL $name: status $rc, wanted $status (stderr: $err)"
    failures=$((failures + 1))
  elif [[ -n $want && $out != *"$want"* && $err != *"$want"* ]]; then
    echo "FAIL $name: output lacks '$want': $out $err"
    failures=$((failures + 1))
  elif [[ $status -eq 2 && $(printf '%s\n' "$err" | wc -l) -ne 1 ]]; then
    echo "FAIL $name: an error must be one line on stderr: $err"
    failures=$((failures + 1))
  else
    echo "ok   $name"
  fi
}

# expect NAME CONDITION-COMMAND...: a free-form check.
expect() {
  local name=$1
  shift
  if "$@"; then echo "ok   $name"; else echo "FAIL $name"; failures=$((failures + 1)); fi
}

finish() {
  rm -f /tmp/nxtm_cli_err.$$
  if [[ $failures -ne 0 ]]; then
    echo "$failures failed"
    exit 1
  fi
}
