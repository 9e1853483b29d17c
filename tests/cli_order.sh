#!/usr/bin/env bash
# Orders in words, strings printed and scanned through the type table (order
# text with placeholders included), and UTF-8 on the command line.
source "$(dirname "$0")/cli_lib.sh"

# nxtm orders names each order; a byte order mark is ignorable and keeps the state.
check orders-words 0 "lower letter e with accent acute" -- "$nxtm" orders "é"
check orders-bom 0 "<U+FEFF>  0002   space" -- "$nxtm" orders $'\ufeffa'
check orders-bom-state 0 "a         500C   letter  3       0       lower  0    1" -- "$nxtm" orders $'\ufeffa'

# Ordinary text through the format.
check print-format 0 "[héllo]" -- "$nxtm" print NxString héllo --format '[%s]'

# Order text: the orders of a key, or given one by one.
check key-plain 0 "Creme brulee" -- "$nxtm" print NxString 'Crème brûlée' --key --format '%1M'
check key-accents 0 "Crème brûlée" -- "$nxtm" print NxString 'Crème brûlée' --key --format '%2M'
check key-words 0 "upper letter C, lower letter r, lower letter e with accent grave, " -- \
  "$nxtm" print NxString 'Crème' --key --format '%3M, '
check key-names 0 '[C][r][\`e][m][e]' -- "$nxtm" print NxString 'Crème' --key --format '[%4M]'
check key-mix 0 "lower letter a|[MIX]|" -- "$nxtm" print NxString 'aβ' --key --format '%3M|'
check key-bom 0 "space|lower letter a|" -- "$nxtm" print NxString $'\ufeffa' --key --format '%3M|'
check key-language 0 "upper letter C with extension" -- \
  "$nxtm" print NxString 'Ch' --key --language 3 --format '%3M'
check key-target 0 "Cr?me" -- "$nxtm" print NxString 'Crème' --key --format '%2M' --result-codeset 3
check orders-given 0 "HAN character 0x0041" -- "$nxtm" print NxString 41 --orders --state 20 --format '%3M'
[[ $("$nxtm" print NxString 71,94 --orders --format '%1M' | od -An -tx1 | tr -d ' \n') == "072e0a" ]] ||
  { echo "FAIL orders-no-plain-character"; failures=$((failures + 1)); }

check key-and-orders 2 "exclude each other" -- "$nxtm" print NxString a --key --orders
check bad-order 2 "bad order 'zz'" -- "$nxtm" print NxString 41,zz --orders
check key-codeset-0 2 "makes no key" -- "$nxtm" print NxString a --key --codeset 0

# Scan: the text as it stands, or null for anything that begins with the null text.
check scan-text 0 "héllo" -- "$nxtm" scan NxString héllo --format '%d'
check scan-null 0 "{NULL}" -- "$nxtm" scan NxString '{NULL} and more'

# UTF-8 in: characters beyond U+FFFF are refused with their name, never cut.
check beyond-bmp 2 "U+1F600 at byte 2 lies beyond U+FFFF" -- "$nxtm" compare $'a\U0001F600' a
check beyond-bmp-print 2 "U+10FFFF at byte 1" -- "$nxtm" print NxString $'\U0010FFFF'
check malformed 2 "malformed UTF-8 at byte 2" -- "$nxtm" orders $'a\xc0\x80'
[[ $(printf 'a\0b\n' | "$nxtm" sort 2>&1) == *"NUL character at byte 2"* ]] ||
  { echo "FAIL sort-nul"; failures=$((failures + 1)); }
[[ $(printf '\xef\xbb\xbfb\na\n' | "$nxtm" sort | tr '\n' ' ') == $'a \ufeffb ' ]] ||
  { echo "FAIL sort-bom"; failures=$((failures + 1)); }

finish
