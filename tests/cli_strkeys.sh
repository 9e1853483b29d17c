#!/usr/bin/env bash
# String keys as the program shows them: two index keys compared through the
# row, whole and cut; lines sorted by their keys; and the range estimate of
# NxString with its narrowed keys.
source "$(dirname "$0")/cli_lib.sh"

# Keys compared through the row: the result, and the status of cut keys.
check keys-whole 0 "status 0" -- "$nxtm" compare --keys Lefèvre Lefebvre
check keys-sign 0 "sign   1" -- "$nxtm" compare --keys Lefèvre Lefebvre
check keys-cut 0 "status 2101" -- "$nxtm" compare --keys Lefèvre Lefebvre --size 8
check keys-cut-equal 0 "sign   0" -- "$nxtm" compare --keys Lefèvre Lefebvre --size 8
check keys-cut-decided 0 "sign   1" -- "$nxtm" compare --keys Lefèvre Lefebvre --size 12
check keys-msb 0 "key A  000afe01 4038 501c 5020" -- "$nxtm" compare --keys Lefèvre x --format 2 --size 10
check keys-pattern 0 "sign   0" -- "$nxtm" compare --keys Lefèvre 'Le*' --wildcards
check keys-pattern-cut 0 "status 0" -- "$nxtm" compare --keys Lefèvre 'Le*' --wildcards --size 12
check keys-case 0 "sign   0" -- "$nxtm" compare --keys MÜLLER müller --ignore-case
check keys-state 0 "status 2101" -- "$nxtm" compare --keys 'Li-李' 'Li-'
check keys-size-small 2 "from 6 to 254" -- "$nxtm" compare --keys a b --size 3
check keys-size-alone 2 "go with --keys" -- "$nxtm" compare a b --size 8

# Sorting by keys agrees with sorting by text.
names=$'Müller\nMuller\nMueller\nmüller\nLefèvre\nLefebvre\nLéger\nleger\nvan der Berg\nVan Berg\nO\'Brien\nObrien\nΑλεξίου\nΓεωργίου\nИванов\nСмирнов\nZoë\nZoe\n李\n王\nÆrø\nAaron'
expect sort-keys-agree [ "$(printf '%s\n' "$names" | "$nxtm" sort)" == "$(printf '%s\n' "$names" | "$nxtm" sort --keys)" ]
expect sort-keys-ci-agree [ "$(printf '%s\n' "$names" | "$nxtm" sort --ignore-case)" == "$(printf '%s\n' "$names" | "$nxtm" sort --keys --ignore-case)" ]
expect sort-keys-msb-agree [ "$(printf '%s\n' "$names" | "$nxtm" sort)" == "$(printf '%s\n' "$names" | "$nxtm" sort --keys --format 2)" ]
check sort-keys-first 0 "Aaron" -- bash -c "printf '%s\n' \"\$1\" | \"\$2\" sort --keys | head -1" _ "$names" "$nxtm"

# Estimates: the fraction, the operator word, the narrowed keys as orders.
check estimate-digits 0 "fraction 0.42856" -- "$nxtm" estimate NxString customer-00012 customer-00019 '<' customer-00015
check estimate-prefix 0 "op       0x9 (the value stands for a prefix)" -- "$nxtm" estimate NxString Mahler Muster = 'Mül*'
check estimate-low 0 "orders 403c 535c 5038, state 1: \"Mül\"" -- "$nxtm" estimate NxString Mahler Muster = 'Mül*'
check estimate-high 0 "orders 403c 535c 5038 fffe, state 1" -- "$nxtm" estimate NxString Mahler Muster = 'Mül*'
check estimate-less 0 "low      open" -- "$nxtm" estimate NxString Mahler Muster '<=' 'Mül*'
check estimate-ci 0 "orders 703c 735c 7038, state 1" -- "$nxtm" estimate NxString a z = 'Mül*' --ignore-case
check estimate-ci-high 0 "orders 403c 435c 4038 fffe, state 1" -- "$nxtm" estimate NxString a z = 'Mül*' --ignore-case
check estimate-leading 0 "fraction 1" -- "$nxtm" estimate NxString a z '>=' '*x'
check estimate-literal 0 "op       0x1" -- "$nxtm" estimate NxString a z = 'Mül*' --no-wildcards
check estimate-cut 0 ", cut:" -- "$nxtm" estimate NxString a z = "$(printf 'k%.0s' {1..150})"
check estimate-usage 2 "usage" -- "$nxtm" estimate NxString a z =
check estimate-bad-op 2 "bad operator" -- "$nxtm" estimate NxString a z '=>' b
finish
