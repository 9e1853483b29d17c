#!/usr/bin/env bash
# nxtm sort: the order of the comparison, built from one key per line, with
# lines that compare equal left in their order of input.
source "$(dirname "$0")/cli_lib.sh"

sorted() {  # sorted OPTIONS... < input: the output as one line, ' | ' between lines
  "$nxtm" sort "$@" | awk 'NR > 1 { printf " | " } { printf "%s", $0 } END { print "" }'
}

# Equal under the strength: input order; the tie-breaks where they count.
expect stable-ignore-case \
  [ "$(printf 'b\nABC\nabc\nAbc\n' | sorted --ignore-case)" == "ABC | abc | Abc | b" ]
expect case-last-resort [ "$(printf 'ABC\nAbc\nabc\n' | sorted)" == "abc | Abc | ABC" ]
expect accents-and-spaces \
  [ "$(printf 'Mueller\nMüller\nMuller\nMul ler\n' | sorted)" == "Mueller | Muller | Mul ler | Müller" ]
expect ignore-spaces-equal \
  [ "$(printf 'a b\nab\na-b\n' | sorted --ignore-spaces --ignore-symbols)" == "a b | ab | a-b" ]
# Texts without a code set are compared as bytes.
expect codeset-0-bytes [ "$(printf 'b\nB\na\nA\n' | sorted --codeset 0)" == "A | B | a | b" ]
# A line that doesn't read back as the same bytes (a surrogate, which the
# library's UTF-8 takes) is written as the string holds it; the last line
# needs no newline, and an empty line sorts first.
expect mixed-lines [ "$(printf 'b\n\na\xed\xa0\x80\nc' | "$nxtm" sort | od -An -c | tr -s ' \n' ' ')" \
  == " \\n a 355 240 200 \\n b \\n c \\n " ]
check not-utf8 2 "line 2: malformed UTF-8 at byte 1" -- bash -c "printf 'a\n\xc3\n' | '$nxtm' sort"
check wildcards 2 "which is no ordering" -- "$nxtm" sort --wildcards

finish
