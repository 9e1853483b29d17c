#!/usr/bin/env bash
# The temporal rows in the nxtm program, and nxtm date.  NXTM_NOW fixes the
# program's "now", so nothing here depends on the machine's clock or zone.
source "$(dirname "$0")/cli_lib.sh"
export NXTM_NOW=2004-01-05T14:30:09+01:00

check print-date-row-format 0 "Sat 01.Jan 2000" -- "$nxtm" print NxDate 2000-01-01
check print-date-literal 0 "F" -- "$nxtm" print NxDate 2000-01-01 --format F
check print-date-now 0 "14:30" -- "$nxtm" print NxDate 2000-01-01 --format '%H:%M'
check print-time-today 0 "2004-01-05" -- "$nxtm" print NxTime 12:00:00 --format '%Y-%m-%d'
check print-datetime 0 "Mon 05.Jan 2004 01:30:09 pm" -- "$nxtm" print NxDateTime 2004-01-05T13:30:09
check print-d-time 0 "10:00:07 am" -- "$nxtm" print d_Time 10:00:07.98+02:00
check print-timestamp 0 "Mon Jan 05 11:59:59 pm" -- "$nxtm" print d_Timestamp 2004-01-05T23:59:59-05:00
check print-interval 0 "01 days, 02 hours, 03 minutes, 04 seconds" -- "$nxtm" print d_Interval 93784.5

check store-date-msb 0 "07d40105" -- "$nxtm" store NxDate 2004-01-05 --format 2
check store-datetime 0 "d40701050d1e09" -- "$nxtm" store NxDateTime 2004-01-05T13:30:09
check store-null-date 0 "00808080" -- "$nxtm" store NxDate '{NULL}'
check store-d-time 0 "02000c000762" -- "$nxtm" store d_Time 10:00:07.98+02:00
check load-date 0 "2004-01-05" -- "$nxtm" load NxDate d4070105
check load-datetimes 0 "2004-01-05T13:30:09 1999-12-31T23:59:59" -- "$nxtm" load NxDateTime d40701050d1e09cf070c1f173b3b
check load-d-time 0 "10:00:07.98+02:00" -- "$nxtm" load d_Time 02000c000762
check load-timestamp 0 "1582-10-15T00:00:00.00-05:30" -- "$nxtm" load d_Timestamp 062e0a0ffbe2fbe20000 --format 2

check scan-date 0 "2004-01-05" -- "$nxtm" scan NxDate 'Mon 05.Jan 2004'
check scan-time-pm 0 "13:30:00" -- "$nxtm" scan NxTime '01:30:00 pm'
check scan-invalid 0 "00:00:00" -- "$nxtm" scan NxTime '25:00:00'

check convert-datetime 0 '2000-01-01T00:00:10 -> "2451545:10"' -- "$nxtm" convert NxDateTime NxDateTime 2000-01-01T00:00:10
check convert-julian 0 '1000-01-01 -> "2086308" -> Mon 06.Jan 1000' -- "$nxtm" convert d_Date NxDate 1000-01-01
check convert-interval 0 '1.75 -> "1"' -- "$nxtm" convert d_Interval long 1.75

check bad-date 2 "not a day of the Gregorian calendar" -- "$nxtm" store NxDate 2001-02-29
check bad-d-date-gap 2 "not a day of the d_Date calendar" -- "$nxtm" store d_Date 1582-10-10
check good-d-date-1500 0 "Thu Feb 29" -- "$nxtm" print d_Date 1500-02-29
check bad-time 2 "hour 0 to 23" -- "$nxtm" print NxTime 24:00:00
check bad-date-text 2 "a date is YYYY-MM-DD" -- "$nxtm" print NxDate 2000/01/01
check bad-datetime 2 "YYYY-MM-DDTHH:MM:SS" -- "$nxtm" print NxDateTime '2000-01-01 10:00:00'
check bad-interval 2 "number of seconds" -- "$nxtm" print d_Interval 1e99

# nxtm date: the two calendars side by side.
check date-gap 0 "day number       2299156                2299166" -- "$nxtm" date 1582-10-10
check date-gap-counts 0 "counts as        1582-10-10             1582-10-20" -- "$nxtm" date 1582-10-10
check date-modern 0 "absolute date    2451545                2451544" -- "$nxtm" date 2000-01-01
check date-julian-leap 0 "counts as        1500-03-01             1500-02-29" -- "$nxtm" date 1500-02-29
check date-day-of-year 0 "day of year      365                    355" -- "$nxtm" date 1582-12-31
check date-neither 2 "a day in neither calendar" -- "$nxtm" date 1700-02-29
check date-malformed 2 "malformed date" -- "$nxtm" date 1582-13-01
check date-usage 2 "usage" -- "$nxtm" date
check bad-now 0 "using the clock" -- env NXTM_NOW=yesterday "$nxtm" date 2000-01-01
finish
