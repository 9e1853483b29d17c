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
# The same pair in either order, and in either disk form, hashes alike.
[[ $("$nxtm" hash short 3 -7 | head -1) == $("$nxtm" hash short -7 3 --format 2 | sed -n 2p) ]] ||
  { echo "FAIL hash-order-and-form"; failures=$((failures + 1)); }
finish
