#!/usr/bin/env bash
# Strings on disk as the program shows them: text records, old records and
# key records of NxString, the records and keys of the legacy strings.
source "$(dirname "$0")/cli_lib.sh"

# Text records in both byte orders, 8-bit and 16-bit, null and empty.
check store-text 0 "06000101416200ff" -- "$nxtm" store NxString Ab
check store-text-msb 0 "00060101416200ff" -- "$nxtm" store NxString Ab --format 2
check store-unicode 0 "0600fd02ac2000ff" -- "$nxtm" store NxString € --codeset 253 --language 2
check store-null-empty 0 "040000fe00ff0400010100ff" -- "$nxtm" store NxString '{NULL}' ''
check store-old 0 "05004162007800" -- "$nxtm" store NxString Ab x --old
check load-text 0 "€  (code set 253, language 2)" -- "$nxtm" load NxString 0006fd0220ac00ff --format 2
check load-array 0 "x  (code set 1, language 1)" -- "$nxtm" load NxString 06000101416200ff050001017800ff
check load-old 0 "old record of 2 strings" -- "$nxtm" load NxString 05004162007800
check load-null 0 "{NULL}  (code set 0, language 254)" -- "$nxtm" load NxString 040000fe00ff
check load-key 0 "orders 400c 5010  (code set 254, state byte 0x01)" -- "$nxtm" load NxString 0800fe010c40105000ff
check load-cut-key 0 "orders 400c  (code set 254, state byte 0x01)  cut" -- "$nxtm" load NxString 0600fe010c40
round=$("$nxtm" store NxString 'Zürich' 'Ærø' --format 2)
check round-trip 0 "Ærø  (code set 1, language 1)" -- "$nxtm" load NxString "$round" --format 2

# Malformed bytes: one line on stderr, status 2.
check bad-hex 2 "hex digit" -- "$nxtm" load NxString 06zz
check no-length 2 "1 byte hold no length field" -- "$nxtm" load NxString 06
check short-header 2 "shorter than its 4-byte header" -- "$nxtm" load NxString 06000101416200ff0400
check below-header 2 "less than its header" -- "$nxtm" load NxString 0300010141
check beyond-bytes 2 "states 12 bytes, 5 are given" -- "$nxtm" load NxString 0a00010141
check behind-old 2 "1 byte stand behind the old record" -- "$nxtm" load NxString 030061620000
check bad-codeset 2 "code set 99 is not a code set of text" -- "$nxtm" store NxString a --codeset 99
check bad-format 2 "takes 1 or 2" -- "$nxtm" store NxString a --format 8

# Keys: one order per group, whole or cut, and the state byte.
check key 0 "0800fe01 0c40 1050 00ff" -- "$nxtm" key Ab
check key-whole 0 "L 8, 2 orders, state byte 0x01, whole" -- "$nxtm" key Ab
check key-msb 0 "0008fe01 400c 5010 00ff" -- "$nxtm" key Ab --format 2
check key-cut 0 "L 6, 1 order, state byte 0x01, cut at 7 bytes" -- "$nxtm" key Ab --size 7
check key-state 0 "state byte 0x81 (ended at a change of state)" -- "$nxtm" key 'abαb'
check key-greek 0 "0600fe82 0c50 00ff" -- "$nxtm" key 'αb' --language 7
check key-contraction 0 "0800fe01 1550 4450 00ff" -- "$nxtm" key cho --language 3 --codeset 1
check key-none 0 "no key" -- "$nxtm" key Ab --size 4
check key-usage 2 "usage" -- "$nxtm" key

# The legacy strings: one record for the array, mapped keys.
check istring-store 0 "40060061620000630" -- "$nxtm" store NxIString ab '' c
check istring-store-key 0 "010300416200" -- "$nxtm" store NxCaseIString Ab --key
check istring-load 0 "Œ" -- "$nxtm" load NxIString 4005004162008c00
check istring-key 0 "c0 0500 90699c9c00" -- "$nxtm" key 'Œß' --type NxIString
check caseistring-key 0 "c0 0500 90699d9d00" -- "$nxtm" key 'œß' --type NxCaseIString
check caseistring-key-cut 0 "form 0xc0, L 2, cut at 5 bytes" -- "$nxtm" key 'œß' --type NxCaseIString --size 5
check caseistring-unmap 0 "OESS" -- "$nxtm" load NxCaseIString c0050090699d9d00
check istring-short 2 "shorter than the 3-byte header" -- "$nxtm" load NxIString 4000
check istring-beyond 2 "states 5 bytes of text, 2 are given" -- "$nxtm" load NxIString 4005006162
check istring-no-byte 2 "has no byte in code set 1" -- "$nxtm" store NxIString ł
check istring-language 2 "no code set and no language" -- "$nxtm" key a --type NxIString --language 1

finish
