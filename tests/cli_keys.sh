#!/usr/bin/env bash
# The nxtm program as a user sees it: range estimates with narrowed bounds,
# and hashes in memory and disk form.
source "$(dirname "$0")/cli_lib.sh"

check estimate-ge 0 "fraction 0.6" -- "$nxtm" estimate long 10 19 '>=' 14
check estimate-ge-low 0 "low      0e000000" -- "$nxtm" estimate long 10 19 '>=' 14
check estimate-eq-msb 0 "high     0000000e" -- "$nxtm" estimate long 10 19 = 14 --format 2
check estimate-ne 0 "fraction 0.9" -- "$nxtm" estimate long 10 19 '!=' 14
check estimate-unsigned 0 "fraction 2.3283064e-10" -- "$nxtm" estimate unsigned 0 4294967295 = 4294967295
check estimate-floor 0 "fraction 1.1920929e-07" -- "$nxtm" estimate double 0 1e300 = 5
check estimate-overflow 0 "fraction inf" -- "$nxtm" estimate double 0 10 '<' -inf
check estimate-bad-op 2 "bad operator" -- "$nxtm" estimate long 10 19 '=<' 14
check estimate-no-row 2 "no range estimate" -- "$nxtm" estimate illegal a b = c

check hash-long 0 "hash   41c64e6d" -- "$nxtm" hash long 1
check hash-pair-cancels 0 "hash   00000000" -- "$nxtm" hash long 5 5
check hash-disk-agree 0 "forms  agree" -- "$nxtm" hash double 1.5 -2 --disk --format 2
check hash-disk-bytes 0 "disk   3ff00000" -- "$nxtm" hash float 1.875 --disk --format 2
check hash-partial 0 "status 2101" -- "$nxtm" hash long 1 2 4 --format 1 --length 8
check hash-string 0 "status 0" -- "$nxtm" hash NxString "Lefèvre" Müller
check hash-disk-memory 2 "--disk needs" -- "$nxtm" hash long 1 --disk --format 8
# Dates with wild fields are the spans they match, and the row says so in
# bit 3 of the operator word; the narrowed keys are shown as values too.
check estimate-wild-day 0 "fraction 0.41530055" -- "$nxtm" estimate NxDate 2000-01-01 2000-12-31 2 2000-06-*
check estimate-wild-high 0 "high     d007061e (2000-06-30)" -- "$nxtm" estimate NxDate 2000-01-01 2000-12-31 2 2000-06-*
check estimate-wild-op 0 "op       0x000a (was 0x0002)" -- "$nxtm" estimate NxDate 2000-01-01 2000-12-31 2 2000-06-*
check estimate-all-wild 0 "low      97ed0b18 (-4713-11-24)" -- "$nxtm" estimate NxDate 2000-01-01 2000-12-31 = '*-*-*'
check estimate-wild-msb 0 "high     07d0021d (2000-02-29)" -- "$nxtm" estimate NxDate 2000-01-01 2000-12-31 = 2000-02-* --format 2
check estimate-bad-wild 2 "month 1 to 12" -- "$nxtm" estimate NxDate 2000-01-01 2000-12-31 = 2000-13-*
check estimate-time 0 "fraction 0.4" -- "$nxtm" estimate NxTime 10:00:00 10:00:09 '<' 10:00:04
check estimate-standard-date 0 "fraction 0.32258064" -- "$nxtm" estimate d_Date 2004-01-01 2004-01-31 '<' 2004-01-11
check estimate-int64 0 "fraction 0.1" -- "$nxtm" estimate NxInt64 10 19 = 14
check estimate-boolean 0 "fraction 0.33333334" -- "$nxtm" estimate NxBoolean FALSE TRUE = TRUE
check estimate-classid 0 "fraction 1" -- "$nxtm" estimate NxClassId 1v1 9v9 '<' 5v5
check estimate-ref 0 "fraction 5.421011e-20" -- "$nxtm" estimate NxRef 1.1.1 1.1.1 = 0.0.0
check hash-date-forms 0 "forms  agree" -- "$nxtm" hash NxDate 2004-01-05 2000-02-* --disk --format 2
check hash-standard-time-forms 0 "forms  differ" -- "$nxtm" hash d_Time 10:20:30+01:00 --disk
check hash-objid-msb 0 "forms  differ" -- "$nxtm" hash NxObjId 1-2#3 --disk --format 2
check hash-objid-lsb 0 "forms  agree" -- "$nxtm" hash NxObjId 1-2#3 --disk --format 1
check hash-boolean 0 "hash   41c64e6d" -- "$nxtm" hash NxBoolean TRUE
# The same pair in either order, and in either disk form, hashes alike.
[[ $("$nxtm" hash short 3 -7 | head -1) == $("$nxtm" hash short -7 3 --format 2 | sed -n 2p) ]] ||
  { echo "FAIL hash-order-and-form"; failures=$((failures + 1)); }
finish
