#!/usr/bin/env bash
# The program with NxBlob (store, load, print, scan, convert) and the typed
# form of compare on the class rows.
source "$(dirname "$0")/cli_lib.sh"

# One total word for the array, then a length word (-1 for null) and the
# bytes of each blob.
check blob-store 0 "1500000002000000010203000000616263ffffffff00000000" -- "$nxtm" store NxBlob 0x0102 abc '{NULL}' ''
check blob-store-msb 0 "0000000600000002aabb" -- "$nxtm" store NxBlob 0xAABB --format 2
check blob-load 0 "0x0102 0x616263 {NULL} 0x" -- "$nxtm" load NxBlob 1500000002000000010203000000616263ffffffff00000000
check blob-load-msb 0 "0xaabb" -- "$nxtm" load NxBlob 0000000600000002aabb --format 2
check blob-load-null-record 0 "{NULL}" -- "$nxtm" load NxBlob ffffffff
check blob-load-short 2 "not a whole NxBlob record" -- "$nxtm" load NxBlob 0a0000000200000001
check blob-load-two-records 2 "begin another" -- "$nxtm" load NxBlob 04000000000000000400000000000000
check blob-load-bad-lengths 2 "does not hold whole values" -- "$nxtm" load NxBlob 0600000009000000aabb
check blob-print 0 "[BLOB,len=3]" -- "$nxtm" print NxBlob 0x010203
check blob-print-format 0 "2 bytes" -- "$nxtm" print NxBlob 0xffff --format '%L bytes'
check blob-scan-null 0 "{NULL}" -- "$nxtm" scan NxBlob '{NULL} more'
check blob-scan-other 0 "0x" -- "$nxtm" scan NxBlob 0x0102
check blob-convert 0 '0x01 -> "" -> [BLOB,len=0]' -- "$nxtm" convert NxBlob NxBlob 0x01
check blob-bad-hex 2 "bad NxBlob value '0x0g'" -- "$nxtm" store NxBlob 0x0g
out=$("$nxtm" store NxBlob "$(head -c 3000 /dev/zero | tr '\0' x)")
expect blob-store-large [ "${out:0:16}" == "bc0b0000b80b0000" ] && [ ${#out} -eq 6016 ]

# compare --type: sign, value and status of the row's comparator.
check cmp-blob-null 0 $'sign   -1\nvalue  -2\nstatus 0' -- "$nxtm" compare --type NxBlob '{NULL}' 0x --format 1
check cmp-blob-bytes 0 $'sign   1\nvalue  1' -- "$nxtm" compare --type NxBlob 0x01ff 0x010203 --format 2
check cmp-blob-memory 0 "value  -1" -- "$nxtm" compare --type NxBlob 0x0102 0x010203
check cmp-blob-cut 0 $'value  -1\nstatus 0' -- "$nxtm" compare --type NxBlob 0x0102030405 0x01020304050607 --format 1 --length1 11 --length2 11
check cmp-date-memory 0 "value  2" -- "$nxtm" compare --type NxDate 2000-03-01 2000-01-31
check cmp-date-disk 0 "value  1" -- "$nxtm" compare --type NxDate 2000-03-01 2000-01-31 --format 2
check cmp-dtime-disk 0 "value  -1" -- "$nxtm" compare --type d_Time 10:00:00.10 10:00:00.50 --format 1
check cmp-dtime-memory 0 "value  0" -- "$nxtm" compare --type d_Time 10:00:00.10 10:00:00.50
check cmp-objid 0 "value  -4" -- "$nxtm" compare --type NxObjId 1-0 5-0 --format 1
check cmp-ref-disk 0 "sign   -1" -- "$nxtm" compare --type NxRef 1.9-0.3 2.1-0.3 --format 1
check cmp-ref-memory 0 "sign   1" -- "$nxtm" compare --type NxRef 1.9-0.3 2.1-0.3
check cmp-boolean 0 "value  -1" -- "$nxtm" compare --type NxBoolean '{NULL}' FALSE --format 2
check cmp-null-float 0 "value  1" -- "$nxtm" compare --type NxNull_float nan 1 --format 1
check cmp-int64 0 "value  1" -- "$nxtm" compare --type NxInt64 0x100000000 0xFFFFFFFF --format 2
check cmp-partial 0 $'value  0\nstatus 2101' -- "$nxtm" compare --type NxInt64 --count 3 1 2 3 1 2 4 --format 1 --length1 16
check cmp-text-form 0 "level" -- "$nxtm" compare abc abd
check cmp-too-long 2 "--length1 99 is longer than the 8 bytes" -- "$nxtm" compare --type NxInt64 1 2 --format 1 --length1 99
check cmp-count 2 "usage" -- "$nxtm" compare --type long --count 2 1 2 3
check cmp-unknown 2 "unknown type 'nothing'" -- "$nxtm" compare --type nothing 1 2

finish
