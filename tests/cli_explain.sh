#!/usr/bin/env bash
# Reading stored strings back: nxtm explain on records and keys that the
# program itself made, cut keys, old and legacy records, bad input; and the
# legacy strings through print and scan.
source "$(dirname "$0")/cli_lib.sh"

key() { "$nxtm" key "$@" | head -1; }

# Keys made by nxtm key, explained back order by order; the hex may come in
# the groups that nxtm key shows.
creme=$(key 'Crème')
check key-head 0 "key record: L 14, whole, 16 bytes, 5 orders" -- "$nxtm" explain NxString $creme
check key-state 0 "state byte 0x01 (state 1, Latin)" -- "$nxtm" explain NxString "$creme"
check key-accent 0 "519c   è         lower letter e with accent grave" -- \
  "$nxtm" explain NxString $creme
check key-msb 0 "4014   C         upper letter C" -- \
  "$nxtm" explain NxString $(key 'Crème' --format 2) --format 2
check key-digits 0 "3f0b   1         digit 1 with expand" -- "$nxtm" explain NxString $(key '½')
check key-symbol 0 "<U+0007>  symbol" -- "$nxtm" explain NxString $(key '½')
check key-mix 0 "state 1, Latin; the key ended early at a change of state" -- \
  "$nxtm" explain NxString $(key 'abαb')
check key-ideograph 0 "4e00   <U+007F>  HAN character 0x4e00" -- "$nxtm" explain NxString $(key '一')
expect key-ideograph-one-line [ "$("$nxtm" explain NxString $(key '一') | grep -c '^$')" -eq 0 ]
# Every order of a key shows, in the order stored.
expect key-all-orders [ "$("$nxtm" explain NxString $(key 'Lefèvre') | tail -n +4 |
  awk '{print $2}' | tr -d '\n')" = Lefèvre ]

# Cut keys: at the end of their room, and cut inside an order.
check cut-key 0 "key record: L 12, cut at 12 bytes (its length field reaches to 14), 4 whole orders" -- \
  "$nxtm" explain NxString $(key 'Lefèvre' --size 12)
check cut-order 0 "9c     (a cut order, 1 byte of 2)" -- "$nxtm" explain NxString 0b00fe01384001509c

# Text records, arrays of them, the null string, 16-bit text; old records.
check text 0 'text       "Crème", 5 characters' -- "$nxtm" explain NxString $("$nxtm" store NxString 'Crème')
check text-array 0 "record 2 at offset 7: text record: L 4, whole, 6 bytes" -- \
  "$nxtm" explain NxString $("$nxtm" store NxString x '{NULL}')
check text-null 0 "language   254 (the null string)" -- \
  "$nxtm" explain NxString $("$nxtm" store NxString x '{NULL}')
check text-unicode 0 'text       "€ ł", 3 characters' -- \
  "$nxtm" explain NxString $("$nxtm" store NxString '€ ł' --format 2) --format 2
check text-latin2 0 "code set   3 (iso8859-2)" -- \
  "$nxtm" explain NxString $("$nxtm" store NxString 'ł' --codeset 3)
check old 0 "old record: L 6, 2 strings of 8-bit text, whole, 8 bytes" -- \
  "$nxtm" explain NxString $("$nxtm" store NxString Ab cd --old)

# The legacy strings: plain records, keys of mapped text, cut keys.
check legacy-record 0 'text       "Œuvre"' -- "$nxtm" explain NxIString $("$nxtm" store NxIString 'Œuvre' ab)
check legacy-form 0 "form byte  0x01 (a record stored with a key format)" -- \
  "$nxtm" explain NxCaseIString $("$nxtm" store NxCaseIString x --key)
check legacy-key 0 "9d    S s ß" -- "$nxtm" explain NxCaseIString $(key 'Œß' --type NxCaseIString)
check legacy-readback 0 'reads back "OESS"' -- \
  "$nxtm" explain NxCaseIString $(key 'Œß' --type NxCaseIString)
check legacy-key-case 0 "64    e è é ê ë" -- "$nxtm" explain NxIString $(key 'é' --type NxIString)
check legacy-cut 0 "cut at 8 bytes (its length field reaches to 9)" -- \
  "$nxtm" explain NxIString c006009069 9c9c64

# Bad input: one line on stderr and status 2.
check bad-odd 2 "even number of hex digits" -- "$nxtm" explain NxString 0e00fe0
check bad-digit 2 "'g' is not a hex digit" -- "$nxtm" explain NxString 0e00fe0g
check bad-empty 2 "0 bytes hold no length field" -- "$nxtm" explain NxString ''
check bad-header 2 "holds 3 bytes, less than its 4-byte header" -- "$nxtm" explain NxString 0e00fe
check bad-second-header 2 "the record at offset 6 holds 2 bytes" -- "$nxtm" explain NxString 0400fe0100ff0e00
check bad-length 2 "states L 3, less than its 4-byte header" -- "$nxtm" explain NxString 0300fe01
check bad-old-tail 2 "1 byte stands behind the old record" -- "$nxtm" explain NxString 0300410000ff
check bad-legacy-short 2 "2 bytes are shorter than the 3-byte header" -- "$nxtm" explain NxIString 4006
check bad-legacy-tail 2 "1 byte stands behind the record" -- "$nxtm" explain NxIString 40010000ff
check bad-type 2 "not 'long'" -- "$nxtm" explain long 00
check bad-format 2 "--format takes 1 or 2" -- "$nxtm" explain NxString 0400fe0100ff --format 8

# The legacy strings print their bytes through the format and scan text back.
# An element without text prints empty, whatever the format.
expect legacy-print [ "$("$nxtm" print NxIString 'À la carte' '' --format '[%s]')" = "[À la carte]," ]
check legacy-scan 0 "Œuvre" -- "$nxtm" scan NxCaseIString 'Œuvre' --format '%d'
# Text beyond the default 8-bit code set scans as its replacement character.
expect legacy-scan-recode [ "$("$nxtm" scan NxIString 'ł€')" = "?€" ]
finish
