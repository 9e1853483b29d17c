#!/usr/bin/env bash
# The nxtm program as a user sees it: the type table, plain scalars, text
# forms and collation.
source "$(dirname "$0")/cli_lib.sh"

check default-job 0 "NxNull_NxInt64" -- "$nxtm"
check types 0 " 40  illegal" -- "$nxtm" types
check types-old 0 " 27  NxBoolean" -- "$nxtm" types --old
[[ $("$nxtm" types --old | wc -l) -eq 29 ]] || { echo "FAIL types-old: not 28 rows"; failures=$((failures + 1)); }
check version 0 "Zentrolith Typemanager 9.5.16.182.0" -- "$nxtm" version
check help 0 "store TYPE VALUE" -- "$nxtm" --help
check store-long-lsb 0 "0102030404000000" -- "$nxtm" store long 67305985 4
check store-long-msb 0 "04030201" -- "$nxtm" store long 67305985 --format 2
check store-short-neg 0 "fffe" -- "$nxtm" store short -2 --format 2
check store-double 0 "000000000000f03f" -- "$nxtm" store double 1
check store-by-number 0 "ff" -- "$nxtm" store 10 255
check load-long 0 "67305985 4" -- "$nxtm" load long 0102030404000000
check load-word-msb 0 "65534" -- "$nxtm" load NxWord fffe --format 2
check load-float 0 "1.5" -- "$nxtm" load float 0000c03f
check unknown-command 2 "unknown command" -- "$nxtm" frobnicate
check unknown-type 2 "unknown type" -- "$nxtm" store nosuchtype 1
check no-disk-form 2 "no disk form" -- "$nxtm" store illegal 1
check bad-value 2 "bad short value" -- "$nxtm" store short 70000
check bad-format 2 "bad format" -- "$nxtm" store long 1 --format 3
check bad-hex 2 "hex digit" -- "$nxtm" load long zz000000
check odd-bytes 2 "whole number" -- "$nxtm" load long 010203
check missing-args 2 "usage" -- "$nxtm" store long
check print-array 0 "7,8" -- "$nxtm" print long 7 8
check print-blockid 0 "#7" -- "$nxtm" print BlockId 7
check print-bytes 0 "A0x01B" -- "$nxtm" print char 65 1 66
check print-portable 0 "ldexp(0.5,4)" -- "$nxtm" print double 8 --format 'ldexp(%.17g,%d)'
check scan-long 0 "12" -- "$nxtm" scan long 12abc
check scan-bytes 0 "65 66" -- "$nxtm" scan char AB
check scan-portable 0 "8" -- "$nxtm" scan double 'ldexp(0.5,4)' --format 'ldexp(%lf,%d)'
check convert-word 0 '40000 -> "-25536" -> -25536' -- "$nxtm" convert NxWord long 40000
check convert-string 0 '2.5 -> "2.5" -> 2.500000' -- "$nxtm" convert NxString double 2.5
check print-unknown 2 "unknown type" -- "$nxtm" print nosuch 1
check print-bad-value 2 "bad long value" -- "$nxtm" print long x
check scan-usage 2 "usage" -- "$nxtm" scan long
check convert-unknown 2 "unknown type" -- "$nxtm" convert long nosuch 1
check orders-letter 0 "500C   letter  3       0       lower" -- "$nxtm" orders a
check orders-contraction 0 "ch     5015" -- "$nxtm" orders ch --language 3 --codeset 1
check codesets 0 "unicode" -- "$nxtm" codesets
check languages 0 "spanish-traditional" -- "$nxtm" languages
check orders-bad-codeset 2 "doesn't exist" -- "$nxtm" orders x --codeset 99
check orders-bad-language 2 "language" -- "$nxtm" orders x --language abc
check compare-accent 0 "level accent" -- "$nxtm" compare resume "résumé"
check compare-ignore 0 "level equal" -- "$nxtm" compare resume "RÉSUMÉ" --ignore-case --ignore-accents
check compare-bad-utf8 2 "UTF-8" -- "$nxtm" compare $'\xff' a
[[ $(printf 'b\na\nc\n' | "$nxtm" sort | tr '\n' ' ') == "a b c " ]] || { echo "FAIL sort"; failures=$((failures + 1)); }
[[ $(printf 'Alpha\nbeta\nAlps\n' | "$nxtm" match 'alp*' --ignore-case | wc -l) -eq 2 ]] || { echo "FAIL match"; failures=$((failures + 1)); }

finish
