#!/usr/bin/env bash
# The program with NxInt64, NxBoolean and the null-capable numbers: calc,
# and the generic store, load, print, scan and convert on the new rows.
source "$(dirname "$0")/cli_lib.sh"

check calc-lowest-by-minus-one 0 "-9223372036854775808 0x8000000000000000" -- "$nxtm" calc -9223372036854775808 / -1
check calc-lowest-rem-minus-one 0 "0 0x0000000000000000" -- "$nxtm" calc -9223372036854775808 % -1
check calc-truncates 0 "-3 0xfffffffffffffffd" -- "$nxtm" calc -7 / 2
check calc-wraps 0 "-9223372036854775808" -- "$nxtm" calc 9223372036854775807 + 1
check calc-product 0 "-128 0xffffffffffffff80" -- "$nxtm" calc 0x10 '*' -0x8
check calc-shift-out 0 "0 0x0000000000000000" -- "$nxtm" calc 1 '<<' 64
check calc-shift-sign 0 "-1 0xffffffffffffffff" -- "$nxtm" calc -1 '>>' 100
check calc-compare 0 "1" -- "$nxtm" calc -1 '<' 0
[[ $("$nxtm" calc 5 / 0 2>/dev/null) == "0 0x0000000000000000" ]] || { echo "FAIL calc-by-zero"; failures=$((failures + 1)); }
[[ $("$nxtm" calc 5 / 0 2>&1 >/dev/null) == *"NxInt64 divide by zero"* ]] || { echo "FAIL calc-by-zero-report"; failures=$((failures + 1)); }
check calc-bad-number 2 "bad number '9223372036854775808'" -- "$nxtm" calc 9223372036854775808 + 1
check calc-bad-text 2 "bad number '12a'" -- "$nxtm" calc 1 + 12a
check calc-bad-operator 2 "unknown operator" -- "$nxtm" calc 1 '^' 2
check calc-bad-shift 2 "bad shift count" -- "$nxtm" calc 1 '<<' -1
check calc-usage 2 "usage" -- "$nxtm" calc 1 +

check int64-store-msb 0 "0506070801020304" -- "$nxtm" store NxInt64 72623859790382856 --format 2
check int64-load-lsb 0 "-2" -- "$nxtm" load NxInt64 feffffffffffffff
check int64-print-octal 0 "0377,-0377" -- "$nxtm" print NxInt64 255 -255 --format %o
check int64-scan-base 0 "-1" -- "$nxtm" scan NxInt64 077 --format %d
check int64-convert 0 '-9223372036854775808 -> "-9223372036854775808" -> -9223372036854775808' -- "$nxtm" convert NxInt64 NxInt64 -9223372036854775808

check null-store 0 "00000000050100000000" -- "$nxtm" store NxNull_long 5 '{NULL}' --format 2
check null-store-memory 0 "0500000000" -- "$nxtm" store NxNull_long 5 --format 8
check null-load 0 "{NULL} 7" -- "$nxtm" load NxNull_char 01070207
check null-print 0 "-0xff,{NULL}" -- "$nxtm" print NxNull_NxInt64 -255 '{NULL}' --format %x
check null-scan 0 "{NULL}" -- "$nxtm" scan NxNull_double '{NULL} and more'
check null-convert 0 '{NULL} -> "" -> {NULL}' -- "$nxtm" convert NxNull_ulong NxNull_short '{NULL}'
check null-convert-char 0 '65 -> "A" -> 0' -- "$nxtm" convert NxNull_char long 65
check null-bad-value 2 "bad NxNull_short value '70000'" -- "$nxtm" store NxNull_short 70000
check null-odd-bytes 2 "whole number of 5-byte" -- "$nxtm" load NxNull_long 0001

check boolean-store 0 "0001ff" -- "$nxtm" store NxBoolean FALSE TRUE '{NULL}' --format 2
check boolean-load 0 "FALSE TRUE {NULL} FALSE" -- "$nxtm" load NxBoolean 0001ff02
check boolean-scan-blank 0 "FALSE" -- "$nxtm" scan NxBoolean 'TRUE '
check boolean-convert 0 'TRUE -> "1" -> 1' -- "$nxtm" convert NxBoolean NxNull_int TRUE
check boolean-bad 2 "bad NxBoolean value 'maybe'" -- "$nxtm" store NxBoolean maybe

finish
