// The date format engine: every item of the format language in print and
// scan, the 12-hour reckoning, fixed-width fields, names, malformed text and
// the reset rule, and the thin print and scan of each temporal row.
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include <nxtm/nxtm.h>

namespace {

constexpr int64_t kInstant = 1073309409000LL;  // 2004-01-05 13:30:09 UTC

class Format : public ::testing::Test {
 protected:
  void SetUp() override {
    NxClockFix(kInstant, 0);
    d_Time::set_default_Time_Zone(d_Time::GMT);
  }
  void TearDown() override { NxClockRelease(); }

  // The text of one value through the manager; a null format is the row's.
  std::string Print(char id, const void* value, const char* format = nullptr, const char* start = "") {
    NxString result(start);
    mgr.PrintToNxString(id, result, const_cast<void*>(value), format, 1);
    return result.StrGet();
  }

  NxDateTime Scan(const char* text, const char* format) {
    NxDateTime v(NxDate(9, 9, 9), NxTime(9, 9, 9));
    NxString input(text);
    mgr.ScanFromNxString(NxTYPE_NxDateTime, &v, input, format, 1);
    return v;
  }

  NxTypeMgr mgr;
};

NxDateTime At(int y, int mo, int d, int h, int mi, int s) {
  return NxDateTime(NxDate(y, mo, d), NxTime(h, mi, s));
}

std::string Show(const NxDateTime& v) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%d-%d-%d %d:%d:%d", v.date.year, v.date.month, v.date.day,
                v.time.hour, v.time.minute, v.time.second);
  return buffer;
}

// ---------------------------------------------------------------------------
// Printing.

TEST_F(Format, EveryItemPrints) {
  const NxDateTime v = At(2004, 1, 5, 13, 30, 9);  // a Monday
  const struct {
    const char* format;
    const char* text;
  } cases[] = {
      {"%Y", "2004"},   {"%y", "04"},     {"%m", "01"},       {"%B", "Januar"},
      {"%b", "Jan"},    {"%d", "05"},     {"%e", "05"},       {"%A", "Monday"},
      {"%a", "Mon"},    {"%H", "13"},     {"%I", "01"},       {"%M", "30"},
      {"%S", "09"},     {"%P", "PM"},     {"%p", "pm"},       {"%%", "%"},
      {"%q", "q"},      {"%Y%", "2004"},  {"", ""},           {"at %H.%M!", "at 13.30!"},
      {"%d.%m.%Y %I:%M:%S %P", "05.01.2004 01:30:09 PM"},
  };
  for (const auto& c : cases) EXPECT_EQ(Print(NxTYPE_NxDateTime, &v, c.format), c.text) << c.format;

  const NxDateTime early = At(5, 2, 29, 0, 0, 0);
  EXPECT_EQ(Print(NxTYPE_NxDateTime, &early, "%Y %y %B %b"), "0005 05 Februar Feb");
  const NxDateTime negative = At(-5, 12, 1, 0, 0, 0);
  EXPECT_EQ(Print(NxTYPE_NxDateTime, &negative, "%Y %y %B"), "-0005 -05 December");
  const NxDateTime odd = At(2004, 13, 1, 0, 0, 0);
  EXPECT_EQ(Print(NxTYPE_NxDateTime, &odd, "%B %b %m"), "013 013 13");
}

TEST_F(Format, TwelveHourClockOnlyWithAmPm) {
  const struct {
    int hour;
    const char* plain;
    const char* withAmPm;
  } cases[] = {{0, "00", "12 am"},  {1, "01", "01 am"},  {11, "11", "11 am"},
               {12, "12", "12 pm"}, {13, "01", "01 pm"}, {23, "11", "11 pm"}};
  for (const auto& c : cases) {
    const NxDateTime v = At(2000, 1, 1, c.hour, 10, 0);
    EXPECT_EQ(Print(NxTYPE_NxDateTime, &v, "%I"), c.plain) << c.hour;
    EXPECT_EQ(Print(NxTYPE_NxDateTime, &v, "%I %p"), c.withAmPm) << c.hour;
  }
  const NxDateTime v = At(2000, 1, 1, 15, 10, 0);
  EXPECT_EQ(Print(NxTYPE_NxDateTime, &v, "%I:%M"), "03:10");
}

TEST_F(Format, NullReplacesAndValuesAppend) {
  NxDateTime null = At(2000, 1, 1, 0, 0, 0);
  null.SetNullValue();
  EXPECT_EQ(Print(NxTYPE_NxDateTime, &null, "%Y", "before "), "{NULL}");
  const NxDateTime v = At(2000, 1, 1, 0, 0, 0);
  EXPECT_EQ(Print(NxTYPE_NxDateTime, &v, "%Y", "before "), "before 2000");
  // Only both parts null are null; a null date alone prints its fields.
  NxDateTime half = v;
  half.date.SetNullValue();
  EXPECT_EQ(Print(NxTYPE_NxDateTime, &half, "%H"), "00");

  NxTypeMgr::SetNullPrintString(NxString("(none)"));
  NxDate nullDate(0, 0, 0);
  nullDate.SetNullValue();
  EXPECT_EQ(Print(NxTYPE_NxDate, &nullDate, nullptr, "x"), "(none)");
  NxTypeMgr::SetNullPrintString(NxString("{NULL}"));
}

TEST_F(Format, RowsPrintTheirRecords) {
  NxDate date(2004, 1, 5);
  EXPECT_EQ(Print(NxTYPE_NxDate, &date), "Mon 05.Jan 2004");
  NxString s;
  EXPECT_STREQ(date.PrintToNxString(s).StrGet(), "2004-01-05");
  // A date prints with the present time, a time with today's date.
  EXPECT_EQ(Print(NxTYPE_NxDate, &date, "%H:%M"), "13:30");
  NxTime time(0, 5, 9);
  EXPECT_EQ(Print(NxTYPE_NxTime, &time), "12:05:09 am");
  EXPECT_EQ(Print(NxTYPE_NxTime, &time, "%Y-%m-%d"), "2004-01-05");
  NxDateTime dt = At(2004, 1, 5, 13, 30, 0);
  NxString u;
  EXPECT_STREQ(dt.PrintToNxString(u).StrGet(), "2004-01-05T13:30:00");

  const d_Date dDate(2004, 1, 5);
  EXPECT_EQ(Print(NxTYPE_d_Date, &dDate), "Mon Jan 05");
  // The day name is NxDate's reckoning whatever the class: 1582-10-10 is a
  // Sunday in the Gregorian calendar.
  const d_Date gap(1582, 10, 10);
  EXPECT_EQ(Print(NxTYPE_d_Date, &gap, "%A %H"), "Sunday 00");
  const d_Time dTime(10, 0, 7.99f, 2, 0);  // stored as 12:00, local 10:00
  EXPECT_EQ(Print(NxTYPE_d_Time, &dTime, "%Y-%m-%d %I:%M:%S %p"), "0000-01-01 10:00:07 am");
  const d_Timestamp stamp(d_Date(2004, 1, 5), d_Time(23, 59, 59.0f, -5, 0));
  EXPECT_EQ(Print(NxTYPE_d_Timestamp, &stamp), "Mon Jan 05 11:59:59 pm");
  const d_Interval interval(1, 2, 3, 4.5f);
  EXPECT_EQ(Print(NxTYPE_d_Interval, &interval), "01 days, 02 hours, 03 minutes, 04 seconds");
  const d_Interval fifteen(0, 15, 0, 0);  // the row format shows hours through %I
  EXPECT_EQ(Print(NxTYPE_d_Interval, &fifteen), "00 days, 03 hours, 00 minutes, 00 seconds");

  const NxDate two[2] = {NxDate(2000, 1, 1), NxDate(2000, 1, 2)};
  NxString both;
  mgr.PrintToNxString(NxTYPE_NxDate, both, const_cast<NxDate*>(two), "%d", 2);
  EXPECT_STREQ(both.StrGet(), "01,02");
}

// ---------------------------------------------------------------------------
// Scanning.

TEST_F(Format, EveryItemScans) {
  const struct {
    const char* format;
    const char* text;
    NxDateTime want;
  } cases[] = {
      {"%Y-%m-%d", "2004-01-05", At(2004, 1, 5, 0, 0, 0)},
      {"%d.%m.%Y", "31.12.1999", At(1999, 12, 31, 0, 0, 0)},
      {"%e/%m/%y", " 7/03/99", At(1999, 3, 7, 0, 0, 0)},
      {"%y", "04", At(1904, 1, 1, 0, 0, 0)},
      {"%H:%M:%S", "23:59:58", At(0, 1, 1, 23, 59, 58)},
      {"%I:%M:%S %p", "12:30:00 am", At(0, 1, 1, 0, 30, 0)},
      {"%I:%M:%S %p", "12:30:00 pm", At(0, 1, 1, 12, 30, 0)},
      {"%I:%M:%S %p", "01:30:00 pm", At(0, 1, 1, 13, 30, 0)},
      {"%I:%M:%S %P", "01:30:00 PM", At(0, 1, 1, 13, 30, 0)},
      {"%I %p", "11 AM", At(0, 1, 1, 11, 0, 0)},
      {"%I %p", "11 xx", At(0, 1, 1, 11, 0, 0)},
      {"%H %p %M", "01 pm 07", At(0, 1, 1, 13, 7, 0)},
      {"%B %Y", "Januar 2004", At(2004, 1, 1, 0, 0, 0)},
      {"%B %Y", "December 2004", At(2004, 12, 1, 0, 0, 0)},
      {"%b%d", "Jan05", At(0, 1, 5, 0, 0, 0)},
      {"%b%d", "Januar05", At(0, 1, 5, 0, 0, 0)},
      {"%b%d", "January05", At(0, 1, 1, 0, 0, 0)},  // stops before the "y": no day there
      {"%b %d", "January 05", At(0, 1, 5, 0, 0, 0)},  // the " " passes the "y", sscanf the blank
      {"%b %d", "Sept 05", At(0, 9, 5, 0, 0, 0)},
      {"%b-%d", "011-05", At(0, 11, 5, 0, 0, 0)},    // no name: a number of three places
      {"%a %d", "Monday 05", At(0, 1, 5, 0, 0, 0)},
      {"%A %d", "Sun 05", At(0, 1, 5, 0, 0, 0)},
      {"%a %e.%b %Y", "Mon 05.Jan 2004", At(2004, 1, 5, 0, 0, 0)},
      {"%a %e.%b %Y", "XXX 05.Jan 2004", At(0, 5, 1, 0, 0, 0)},
      {"%Y%%%m", "2004x03", At(2004, 3, 1, 0, 0, 0)},
      {"%Y%q%m", "2004x03", At(2004, 3, 1, 0, 0, 0)},
      {"%Y-%", "2004-", At(2004, 1, 1, 0, 0, 0)},
      {"", "2004-01-05", At(0, 1, 1, 0, 0, 0)},
      // Numbers take a fixed number of places whatever sscanf reads, and the
      // format alone decides what is passed over: nothing is checked.
      {"%H:%M", "9:30", At(0, 1, 1, 9, 0, 0)},
      {"%H:%M", "09-30", At(0, 1, 1, 9, 30, 0)},
      {"%Y%m%d", "2004 1 5", At(2004, 1, 5, 0, 0, 0)},
      {"%Y-%m-%d", "2004-1-5", At(2004, 1, 1, 0, 0, 0)},  // "1-" is the month, "5" the "-"
      {"%H:%M:%S", "12:3", At(0, 1, 1, 12, 3, 0)},       // the text ends first
      {"%Y", "-123", At(-123, 1, 1, 0, 0, 0)},
      {"%H%M", "  1712", At(0, 1, 1, 17, 17, 0)},  // the blanks are the hour's two places
      {"%Y", "{NULL", At(0, 1, 1, 0, 0, 0)},
      // No date and time: the start record.
      {"%Y-%m-%d", "2001-02-30", At(0, 1, 1, 0, 0, 0)},
      {"%Y-%m-%d", "2004-13-01", At(0, 1, 1, 0, 0, 0)},
      {"%H:%M", "12:60", At(0, 1, 1, 0, 0, 0)},
  };
  for (const auto& c : cases) {
    const NxDateTime got = Scan(c.text, c.format);
    EXPECT_EQ(got != c.want, 0) << c.format << " on '" << c.text << "': " << Show(got);
  }
}

// What cannot be a date and time becomes year 0, month 1, day 1, 00:00:00,
// except a record that is all zeros; the null print string gives null.
TEST_F(Format, ResetNullAndWideText) {
  const NxDateTime zero = Scan("0000-00-00 00:00:00", "%Y-%m-%d %H:%M:%S");
  EXPECT_EQ(zero.date.month, 0);
  EXPECT_FALSE(zero.IsDaTime());
  NxTime late(1, 1, 1);
  NxString text("25:00:00");
  EXPECT_TRUE(late.ScanFromNxString(text) == NxTime(0, 0, 0));

  EXPECT_TRUE(Scan("{NULL} and more", "%Y").IsNullValue());
  d_Date d(2000, 1, 1);
  NxString null("{NULL}");
  mgr.ScanFromNxString(NxTYPE_d_Date, &d, null, nullptr, 1);
  EXPECT_EQ(d.year * 1000 + d.month * 10 + d.day, -32768 * 1000 - 1280 - 128);

  const unsigned short wide[] = {'0', '5', '.', '0', '1', '.', '2', '0', '0', '4', 0};
  NxString wideText(wide);
  ASSERT_GT(wideText.codeSet, 224);
  NxDateTime w(NxDate(1, 1, 1), NxTime(1, 1, 1));
  EXPECT_EQ(w.ScanFromNxString(wideText, "%d.%m.%Y") != At(2004, 1, 5, 0, 0, 0), 0) << Show(w);
  EXPECT_EQ(mgr.ScanFromNxString(NxTYPE_d_Interval, nullptr, wideText, nullptr, 1), nullptr);
}

// The numbers of the scan are those of sscanf with a width: checked on
// random short texts against the C library itself.
TEST_F(Format, NumbersReadAsSscanfReadsThem) {
  std::mt19937 random(20040105);
  const char alphabet[] = " \t+-0123456789x";
  long mismatches = 0;
  std::string first;
  for (int i = 0; i < 20000; ++i) {
    std::string text;
    const int length = static_cast<int>(random() % 7);
    for (int k = 0; k < length; ++k) text += alphabet[random() % (sizeof alphabet - 1)];

    int year = 0;
    const int wantYear = std::sscanf(text.c_str(), "%04d", &year) == 1 ? year : 0;
    int second = 0;
    int wantSecond = std::sscanf(text.c_str(), "%02d", &second) == 1 ? second : 0;
    if (wantSecond < 0 || wantSecond > 59) wantSecond = 0;  // no time: the record resets

    const NxDateTime y = Scan(text.c_str(), "%Y");
    const NxDateTime s = Scan(text.c_str(), "%S");
    if (y.date.year != wantYear || s.time.second != wantSecond) {
      if (mismatches++ == 0) first = "'" + text + "'";
    }
  }
  EXPECT_EQ(mismatches, 0) << "first: " << first;
}

TEST_F(Format, RowsScanIntoTheirFields) {
  NxDate date(1, 1, 1);
  NxString text("Mon 05.Jan 2004");
  mgr.ScanFromNxString(NxTYPE_NxDate, &date, text, nullptr, 1);
  EXPECT_TRUE(date == NxDate(2004, 1, 5));

  // d_Time takes the time back in the default zone, without hundredths.
  d_Time::set_default_Time_Zone(d_Time::GMT_3);
  d_Time dTime(1, 1, 1.5f, 5, 0);
  NxString morning("10:20:30 am");
  mgr.ScanFromNxString(NxTYPE_d_Time, &dTime, morning, nullptr, 1);
  EXPECT_EQ(dTime.zoneHour, -3);
  EXPECT_EQ(dTime.hour, 7);
  EXPECT_EQ(dTime.second, 30);
  EXPECT_EQ(dTime.hundredth, 0);
  d_Timestamp stamp(d_Date(1, 1, 1), d_Time(0));
  NxString when("Sun Feb 29 11:00:01 pm");  // the row format has no year: year 0, a leap year
  mgr.ScanFromNxString(NxTYPE_d_Timestamp, &stamp, when, nullptr, 1);
  EXPECT_EQ(stamp.date.year * 10000 + stamp.date.month * 100 + stamp.date.day, 229);
  EXPECT_EQ(stamp.time.hour, 20);
  d_Time::set_default_Time_Zone(d_Time::GMT);

  d_Interval interval(5);
  NxString span("01 days, 02 hours, 03 minutes, 04 seconds");
  mgr.ScanFromNxString(NxTYPE_d_Interval, &interval, span, nullptr, 1);
  EXPECT_FLOAT_EQ(interval.seconds, 93784.0f);
  // Day 0 is no date: the record resets to day 1.
  NxString nothing("00 days, 00 hours, 00 minutes, 00 seconds");
  mgr.ScanFromNxString(NxTYPE_d_Interval, &interval, nothing, nullptr, 1);
  EXPECT_FLOAT_EQ(interval.seconds, 86400.0f);
}

}  // namespace
