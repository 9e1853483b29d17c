#!/usr/bin/env bash
# NxSeal in the nxtm program: six bytes most significant first in either
# format, decimal text, the scan's own rules, its order and estimate.
source "$(dirname "$0")/cli_lib.sh"

check store-lsb-format 0 "010203040506" -- "$nxtm" store NxSeal 0x010203040506
check store-msb-format 0 "010203040506" -- "$nxtm" store NxSeal 0x010203040506 --format 2
check store-largest 0 "ffffffffffff" -- "$nxtm" store NxSeal 281474976710655
check load-array 0 "1108152157446 7731092785932" -- "$nxtm" load NxSeal 0102030405060708090a0b0c
check print-array 0 "5,0,281474976710655" -- "$nxtm" print NxSeal 5 0 281474976710655
check scan-hex 0 "16" -- "$nxtm" scan NxSeal 0x10
check scan-octal 0 "8" -- "$nxtm" scan NxSeal 010
check scan-empty 0 "0" -- "$nxtm" scan NxSeal ''
check scan-no-number 0 "281474976710655" -- "$nxtm" scan NxSeal abc
check scan-too-large 0 "0" -- "$nxtm" scan NxSeal 281474976710656
check convert-text 0 '0x10 -> "0x10" -> 16' -- "$nxtm" convert NxString NxSeal 0x10
check estimate-equal 0 "fraction 0.1" -- "$nxtm" estimate NxSeal 10 19 = 14
check estimate-below 0 "fraction 0" -- "$nxtm" estimate NxSeal 10 19 = 5
check hash-words 0 "hash   00000000" -- "$nxtm" hash NxSeal 1 2 3
check hash-msb-agrees 0 "forms  agree" -- "$nxtm" hash NxSeal 258 --disk --format 2
check bad-negative 2 "bad NxSeal value '-1'" -- "$nxtm" store NxSeal -1
check bad-too-large 2 "from 0 to 281474976710655" -- "$nxtm" print NxSeal 281474976710656
check bad-text 2 "bad NxSeal value" -- "$nxtm" store NxSeal 12abc
finish
