#!/usr/bin/env bash
# The nxtm program on the null-capable rows: estimates and hashes with null
# values ({NULL}) at either end and in the value, and the NxInt64 hash.
source "$(dirname "$0")/cli_lib.sh"

check null-low-less 0 "fraction 0.004950495" -- "$nxtm" estimate NxNull_long '{NULL}' 100 '<' 7
check null-value-equal 0 "fraction 9.90099e-06" -- "$nxtm" estimate NxNull_long '{NULL}' 100 = '{NULL}'
# Nothing lies below a null high bound; the width 0 - 5 + 1 is negative.
check null-high 0 "fraction -0" -- "$nxtm" estimate NxNull_short 5 '{NULL}' '>=' 7
check null-narrowed 0 "low      0100000000" -- "$nxtm" estimate NxNull_ulong 1 9 '>' '{NULL}' --format 2
check int64-one-key 0 "fraction 1" -- \
  "$nxtm" estimate NxNull_NxInt64 1152921504606846976 2305843009213693952 '<' 1152921504606846977
check int64-undivided 0 "fraction 6" -- "$nxtm" estimate NxNull_NxInt64 10 19 '>=' 14

check hash-null 0 "hash   fefe7575" -- "$nxtm" hash NxNull_long '{NULL}'
check hash-once 0 "hash   41c64e6d" -- "$nxtm" hash NxNull_long '{NULL}' 1 '{NULL}' --disk --format 2
check hash-agree 0 "forms  agree" -- "$nxtm" hash NxNull_NxInt64 -5 '{NULL}' 7 --disk --format 2
check hash-uchar 0 "hash   be39b193" -- "$nxtm" hash NxNull_uchar 255
check hash-partial 0 "status 2101" -- "$nxtm" hash NxNull_double 1 2 --format 1 --length 9
check hash-int64 0 "hash   41c64e6d" -- "$nxtm" hash NxInt64 -2 --disk --format 2
finish
