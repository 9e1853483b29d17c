#!/usr/bin/env bash
# Identifiers in the nxtm program: the argument syntax, disk bytes, the
# printed forms and their scans, conversions, and malformed values.
source "$(dirname "$0")/cli_lib.sh"

check print-ref 0 "(12:0-3#0, 45)" -- "$nxtm" print NxRef 12.3.45
check print-objid-forms 0 "(1-2#3),(1-2#3),{NULL}" -- "$nxtm" print NxObjId 4294967298#3 1-2#3 0
check print-classid 0 "(12v3)" -- "$nxtm" print NxClassId 12v3
check print-positional 0 "1-2#3" -- "$nxtm" print NxObjId 1-2#3 --format '%hu-%lu#%lu'
check print-highest 0 "(65535-4294967295#0)" -- "$nxtm" print NxObjId 281474976710655
check store-objid-msb 0 "0102030405060708090a" -- "$nxtm" store NxObjId 2314-84281096#16909060 --format 2
check store-objid-lsb 0 "04030201080706050a09" -- "$nxtm" store NxObjId 2314-84281096#16909060
check store-ref-msb 0 "00000000000000030000000c002d" -- "$nxtm" store NxRef 12.3.45v7 --format 2
check store-classid 0 "0c000300" -- "$nxtm" store NxClassId 12v3
check load-ref-array 0 "12.3.45 0.1-2#9.7" -- "$nxtm" load NxRef 00000000000000030000000c002d0000000900000002000100000007 --format 2
check load-ref 0 "12.3.45" -- "$nxtm" load NxRef 00000000000000030000000c002d --format 2
check load-classid 0 "12v3" -- "$nxtm" load NxClassId 000c0003 --format 2
check load-partial 2 "whole number" -- "$nxtm" load NxObjId 0102030405060708090a0b
check scan-ref 0 "5.7#9.11" -- "$nxtm" scan NxRef "(5:0-7#9, 11)"
check scan-literals-uncompared 0 "12-34#5" -- "$nxtm" scan NxObjId x12y34z5w
check scan-format 0 "1-2#3" -- "$nxtm" scan NxObjId 1.2.3 --format '%H.%L.%B'
check scan-null-classid 0 "{NULL}" -- "$nxtm" scan NxClassId '{NULL}'
check convert-ref 0 '12.3.45 -> "(12:0-3#0, 45)" -> (12:0-3#0, 45)' -- "$nxtm" convert NxRef NxString 12.3.45
check convert-from-text 0 '(1-2#3) -> "(1-2#3)" -> (1-2#3)' -- "$nxtm" convert NxString NxObjId '(1-2#3)'
check bad-ref-parts 2 "DATABASE.OBJECT.CLASS" -- "$nxtm" print NxRef 12.3
check bad-object-number 2 "bad NxObjId value" -- "$nxtm" store NxObjId 281474976710656
check bad-high 2 "HIGH from 0 to 65535" -- "$nxtm" store NxObjId 65536-0
check bad-block 2 "block" -- "$nxtm" print NxObjId 1-2#x
check bad-class 2 "bad NxClassId value" -- "$nxtm" print NxClassId 12v
check bad-database 2 "database" -- "$nxtm" print NxRef 65536.1.1

finish
