// The seven temporal rows through the type manager: disk bytes written out
// by hand in both byte orders, sizes and translation, new elements from the
// clock, null and default values, and the numeric text forms of the
// conversions.
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <nxtm/nxtm.h>

#include "test_support.h"

namespace {

// 2004-01-05 13:30:09 UTC.
constexpr int64_t kInstant = 1073309409000LL;

class Rows : public ::testing::Test {
 protected:
  void SetUp() override {
    NxClockFix(kInstant, 0);
    d_Time::set_default_Time_Zone(d_Time::GMT);
  }
  void TearDown() override {
    d_Time::set_default_Time_Zone(d_Time::GMT);
    NxClockRelease();
  }

  // Stores `count` elements and returns the bytes as hex; the result of
  // Store must be the number of bytes and agree with SizeGet.
  std::string Stored(char id, const void* memory, unsigned char format, uint32_t count = 1) {
    unsigned char disk[64];
    std::memset(disk, 0xEE, sizeof disk);
    const uint32_t n = mgr.Store(id, disk, memory, format, count);
    EXPECT_EQ(n, mgr.DiskLenGet(id, nullptr, format, count, 8));
    EXPECT_EQ(disk[n], 0xEE) << "wrote past its length";
    return nxtest::Hex(disk, n);
  }

  // Loads hex bytes into `memory` and checks the byte count.
  void Loaded(char id, void* memory, const std::string& hex, unsigned char format,
              uint32_t count = 1) {
    std::vector<unsigned char> disk;
    for (size_t i = 0; i < hex.size(); i += 2)
      disk.push_back(static_cast<unsigned char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    EXPECT_EQ(mgr.Load(id, memory, disk.data(), format, count), disk.size());
  }

  NxTypeMgr mgr;
};

// ---------------------------------------------------------------------------
// Disk forms.

TEST_F(Rows, DatesAndTimesOnDisk) {
  const NxDate dates[2] = {NxDate(2004, 1, 5), NxDate(-1, 12, 31)};
  EXPECT_EQ(Stored(NxTYPE_NxDate, dates, 2), "07d40105");
  EXPECT_EQ(Stored(NxTYPE_NxDate, dates, 1), "d4070105");
  EXPECT_EQ(Stored(NxTYPE_NxDate, dates, 0x82), "07d40105");  // only the low four bits count
  EXPECT_EQ(Stored(NxTYPE_NxDate, dates, 2, 2), "07d40105ffff0c1f");
  EXPECT_EQ(Stored(NxTYPE_NxDate, dates, 1, 2), "d4070105ffff0c1f");
  NxDate back[2] = {NxDate(0, 0, 0), NxDate(0, 0, 0)};
  Loaded(NxTYPE_NxDate, back, "07d40105ffff0c1f", 2, 2);
  EXPECT_TRUE(back[0] == dates[0] && back[1] == dates[1]);
  Loaded(NxTYPE_NxDate, back, "d4070105", 1);
  EXPECT_TRUE(back[0] == dates[0]);

  const NxTime times[2] = {NxTime(13, 30, 9), NxTime(0, 0, 1)};
  EXPECT_EQ(Stored(NxTYPE_NxTime, times, 1, 2), "0d1e09000001");
  EXPECT_EQ(Stored(NxTYPE_NxTime, times, 2, 2), "0d1e09000001");
  NxTime timesBack[2] = {NxTime(0, 0, 0), NxTime(0, 0, 0)};
  Loaded(NxTYPE_NxTime, timesBack, "0d1e09000001", 2, 2);
  EXPECT_TRUE(timesBack[0] == times[0] && timesBack[1] == times[1]);

  // Seven bytes on disk, eight in memory.
  const NxDateTime both[2] = {NxDateTime(NxDate(2004, 1, 5), NxTime(13, 30, 9)),
                              NxDateTime(NxDate(1999, 12, 31), NxTime(23, 59, 59))};
  EXPECT_EQ(Stored(NxTYPE_NxDateTime, both, 1), "d40701050d1e09");
  EXPECT_EQ(Stored(NxTYPE_NxDateTime, both, 2), "07d401050d1e09");
  EXPECT_EQ(Stored(NxTYPE_NxDateTime, both, 2, 2), "07d401050d1e0907cf0c1f173b3b");
  EXPECT_EQ(mgr.MemLenGet(NxTYPE_NxDateTime), 8);
  NxDateTime bothBack[2] = {NxDateTime::Null(), NxDateTime::Null()};
  Loaded(NxTYPE_NxDateTime, bothBack, "cf070c1f173b3bd40701050d1e09", 1, 2);
  EXPECT_EQ(bothBack[0] != both[1], 0);
  EXPECT_EQ(bothBack[1] != both[0], 0);

  // Null values stand as their field bytes.
  NxDate nullDate(0, 0, 0);
  nullDate.SetNullValue();
  NxTime nullTime(0, 0, 0);
  nullTime.SetNullValue();
  NxDateTime nullBoth = both[0];
  nullBoth.SetNullValue();
  EXPECT_EQ(Stored(NxTYPE_NxDate, &nullDate, 1), "00808080");
  EXPECT_EQ(Stored(NxTYPE_NxDate, &nullDate, 2), "80008080");
  EXPECT_EQ(Stored(NxTYPE_NxTime, &nullTime, 1), "808080");
  EXPECT_EQ(Stored(NxTYPE_NxDateTime, &nullBoth, 1), "00808080808080");
  NxDateTime loadedNull = both[0];
  Loaded(NxTYPE_NxDateTime, &loadedNull, "00808080808080", 1);
  EXPECT_TRUE(loadedNull.IsNullValue());
  EXPECT_EQ(mgr.Store(NxTYPE_NxDate, back, dates, 1, 0), 0u);
}

TEST_F(Rows, StandardClassesOnDisk) {
  const d_Date date(1582, 10, 4);
  EXPECT_EQ(Stored(NxTYPE_d_Date, &date, 1), "2e060a04");
  EXPECT_EQ(Stored(NxTYPE_d_Date, &date, 2), "062e0a04");

  // Zone, stored hour and minute (zone added), second, hundredth.
  const d_Time time(10, 0, 7.5f, 2, -30);
  EXPECT_EQ(Stored(NxTYPE_d_Time, &time, 1), "02e20ce20732");
  EXPECT_EQ(Stored(NxTYPE_d_Time, &time, 2), "02e20ce20732");
  // Loading gives the bytes back whatever the default zone is now.
  d_Time::set_default_Time_Zone(d_Time::GMT_8);
  d_Time timeBack(0);
  Loaded(NxTYPE_d_Time, &timeBack, "02e20ce20732", 1);
  EXPECT_EQ(timeBack.zoneHour, 2);
  EXPECT_EQ(timeBack.zoneMinute, -30);
  EXPECT_EQ(timeBack.hour, 12);
  EXPECT_EQ(timeBack.minute, -30);
  EXPECT_EQ(timeBack.hundredth, 50);

  const d_Timestamp stamps[2] = {d_Timestamp(d_Date(2004, 1, 5), time),
                                 d_Timestamp(d_Date(-2, 2, 29), d_Time(0, 0, 0.0f, 0, 0))};
  EXPECT_EQ(Stored(NxTYPE_d_Timestamp, stamps, 1, 2),
            "d407010502e20ce20732" "feff021d000000000000");
  EXPECT_EQ(Stored(NxTYPE_d_Timestamp, stamps, 2, 2),
            "07d4010502e20ce20732" "fffe021d000000000000");
  d_Timestamp stampsBack[2] = {d_Timestamp(d_Date(0, 0, 0), d_Time(0)),
                               d_Timestamp(d_Date(0, 0, 0), d_Time(0))};
  Loaded(NxTYPE_d_Timestamp, stampsBack, "07d4010502e20ce20732" "fffe021d000000000000", 2, 2);
  EXPECT_EQ(std::memcmp(stampsBack, stamps, sizeof stamps), 0);

  const d_Interval intervals[2] = {d_Interval(0, 0, 0, 1.5f), d_Interval(1, 2, 3, -4.5f)};
  EXPECT_EQ(Stored(NxTYPE_d_Interval, intervals, 1, 2), "0000c03f" "402cb7c7");
  EXPECT_EQ(Stored(NxTYPE_d_Interval, intervals, 2, 2), "3fc00000" "c7b72c40");
  d_Interval intervalsBack[2];
  Loaded(NxTYPE_d_Interval, intervalsBack, "3fc00000c7b72c40", 2, 2);
  EXPECT_FLOAT_EQ(intervalsBack[0].seconds, 1.5f);
  EXPECT_FLOAT_EQ(intervalsBack[1].seconds, -93784.5f);
}

TEST_F(Rows, SizesAndTranslation) {
  const struct {
    char id;
    unsigned short memLen;
    uint32_t diskLen;
  } rows[] = {{NxTYPE_NxDate, 4, 4}, {NxTYPE_NxTime, 3, 3},  {NxTYPE_NxDateTime, 8, 7},
              {NxTYPE_d_Date, 4, 4}, {NxTYPE_d_Time, 6, 6},  {NxTYPE_d_Timestamp, 10, 10},
              {NxTYPE_d_Interval, 4, 4}};
  MemFile file;
  for (const auto& r : rows) {
    EXPECT_EQ(mgr.MemLenGet(r.id), r.memLen);
    EXPECT_EQ(mgr.IsFixed(r.id), 1);
    EXPECT_EQ(mgr.DiskLenGet(r.id, nullptr, 1, 3, 8), 3 * r.diskLen);
    EXPECT_EQ(mgr.DiskLenGetFromMemFile(r.id, &file, 2, 3), 3 * r.diskLen);
    EXPECT_EQ(mgr.RowGet(r.id)->NullSizeGet(3), 3 * r.diskLen);
  }

  NxDateTime v(NxDate(2004, 1, 5), NxTime(13, 30, 9));
  NxDateTime copy = NxDateTime::Null();
  unsigned char disk[16];
  EXPECT_EQ(mgr.Translate(NxTYPE_NxDateTime, &copy, 8, 0, &v, 8, 0, 1), 8u);
  EXPECT_EQ(copy != v, 0);
  EXPECT_EQ(mgr.Translate(NxTYPE_NxDateTime, disk, 2, sizeof disk, &v, 8, 0, 1), 7u);
  EXPECT_EQ(nxtest::Hex(disk, 7), "07d401050d1e09");
  copy = NxDateTime::Null();
  EXPECT_EQ(mgr.Translate(NxTYPE_NxDateTime, &copy, 0x88, 0, disk, 2, 7, 1), 7u);
  EXPECT_EQ(copy != v, 0);
  // Disk to disk: a plain byte copy, zero-filled when the source is shorter.
  unsigned char other[10];
  std::memset(other, 0xEE, sizeof other);
  EXPECT_EQ(mgr.Translate(NxTYPE_NxDateTime, other, 1, 10, disk, 2, 7, 1), 7u);
  EXPECT_EQ(nxtest::Hex(other, 10), "07d401050d1e09000000");

  d_Interval interval(0, 0, 0, 1.5f);
  EXPECT_EQ(mgr.Translate(NxTYPE_d_Interval, disk, 2, 4, &interval, 8, 4, 1), 4u);
  EXPECT_EQ(nxtest::Hex(disk, 4), "3fc00000");
}

// ---------------------------------------------------------------------------
// New elements, null and default values.

TEST_F(Rows, NewElementsReadTheClock) {
  NxClockFix(kInstant, 60);  // 14:30:09 local
  d_Time::set_default_Time_Zone(d_Time::GMT2);
  auto* dates = static_cast<d_Date*>(mgr.Create(NxTYPE_d_Date, 2));
  ASSERT_NE(dates, nullptr);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(dates[i] != d_Date(2004, 1, 5), 0);
  mgr.Delete(NxTYPE_d_Date, dates, 2);

  auto* one = static_cast<NxDateTime*>(mgr.Create(NxTYPE_NxDateTime, 0));
  ASSERT_NE(one, nullptr);
  EXPECT_EQ(*one != NxDateTime(NxDate(2004, 1, 5), NxTime(14, 30, 9)), 0);
  mgr.Delete(NxTYPE_NxDateTime, one, 0);

  auto* times = static_cast<d_Time*>(mgr.Create(NxTYPE_d_Time, 3));
  ASSERT_NE(times, nullptr);
  EXPECT_EQ(times[2].hour, 16);
  EXPECT_EQ(times[2].zoneHour, 2);
  mgr.Delete(NxTYPE_d_Time, times, 3);

  auto* stamps = static_cast<d_Timestamp*>(mgr.Create(NxTYPE_d_Timestamp, 1));
  EXPECT_EQ(stamps->date != d_Date(2004, 1, 5), 0);
  EXPECT_EQ(stamps->time.hour, 16);
  mgr.Delete(NxTYPE_d_Timestamp, stamps, 1);

  auto* intervals = static_cast<d_Interval*>(mgr.Create(NxTYPE_d_Interval, 2));
  EXPECT_EQ(intervals[1].seconds, 0.0f);
  mgr.Delete(NxTYPE_d_Interval, intervals, 2);
  mgr.Delete(NxTYPE_NxTime, nullptr, 2);

  // In place, and by assignment and copy with and without broadcast.
  unsigned char raw[3 * 3];
  mgr.ConstructorPtrGet(NxTYPE_NxTime)(raw, 3, 0);
  NxTime t(0, 0, 0);
  std::memcpy(&t, raw + 6, 3);
  EXPECT_TRUE(t == NxTime(14, 30, 9));
  const NxTime source[3] = {NxTime(1, 1, 1), NxTime(2, 2, 2), NxTime(3, 3, 3)};
  mgr.AssignmentPtrGet(NxTYPE_NxTime)(raw, const_cast<NxTime*>(source), 3, 0);
  EXPECT_EQ(std::memcmp(raw, source, sizeof raw), 0);
  mgr.CopyPtrGet(NxTYPE_NxTime)(raw, const_cast<NxTime*>(source + 2), 3, 1);
  EXPECT_EQ(nxtest::Hex(raw, sizeof raw), "030303030303030303");
}

TEST_F(Rows, NullAndDefaultValues) {
  for (char id : {NxTYPE_NxDate, NxTYPE_NxTime, NxTYPE_NxDateTime})
    EXPECT_EQ(mgr.SupportsNullValue(id), 1) << int(id);
  for (char id : {NxTYPE_d_Date, NxTYPE_d_Time, NxTYPE_d_Timestamp, NxTYPE_d_Interval})
    EXPECT_EQ(mgr.SupportsNullValue(id), 0) << int(id);

  NxDate date(2004, 1, 5);
  EXPECT_EQ(mgr.IsNullValue(NxTYPE_NxDate, &date), 0);
  EXPECT_EQ(mgr.SetNullValue(NxTYPE_NxDate, &date), 0);
  EXPECT_NE(mgr.IsNullValue(NxTYPE_NxDate, &date), 0);
  NxDateTime both(NxDate(2004, 1, 5), NxTime(1, 2, 3));
  mgr.SetNullValue(NxTYPE_NxDateTime, &both);
  EXPECT_TRUE(both.IsNullValue());

  // Without a null of its own, d_Date takes the default: the date of day
  // number 0 in its calendar, -4712-01-01.
  d_Date dDate(2004, 1, 5);
  EXPECT_EQ(mgr.SetNullValue(NxTYPE_d_Date, &dDate), 0);
  EXPECT_EQ(mgr.IsNullValue(NxTYPE_d_Date, &dDate), 0);
  EXPECT_EQ(dDate.year, -4712);
  EXPECT_EQ(dDate.month, 1);
  EXPECT_EQ(dDate.day, 1);

  auto* nulls = static_cast<NxDate*>(mgr.DefaultValue(NxTYPE_NxDate, 2, 1));
  EXPECT_TRUE(nulls[0].IsNullValue() && nulls[1].IsNullValue());
  mgr.Delete(NxTYPE_NxDate, nulls, 2);
  auto* dayZero = static_cast<NxDate*>(mgr.DefaultValue(NxTYPE_NxDate, 2, 0));
  EXPECT_TRUE(dayZero[0] == NxDate(-4713, 11, 24) && dayZero[1] == NxDate(-4713, 11, 24));
  mgr.Delete(NxTYPE_NxDate, dayZero, 2);
  auto* midnight = static_cast<NxTime*>(mgr.DefaultValue(NxTYPE_NxTime, 1, 0));
  EXPECT_TRUE(*midnight == NxTime(0, 0, 0));
  mgr.Delete(NxTYPE_NxTime, midnight, 1);
  auto* dateTime = static_cast<NxDateTime*>(mgr.DefaultValue(NxTYPE_NxDateTime, 1, 0));
  EXPECT_EQ(*dateTime != NxDateTime(NxDate(-4713, 11, 24), NxTime(0, 0, 0)), 0);
  mgr.Delete(NxTYPE_NxDateTime, dateTime, 1);
  d_Time::set_default_Time_Zone(d_Time::GMT1);
  auto* dTime = static_cast<d_Time*>(mgr.DefaultValue(NxTYPE_d_Time, 1, 1));
  EXPECT_EQ(dTime->hour, 1);
  EXPECT_EQ(dTime->zoneHour, 1);
  mgr.Delete(NxTYPE_d_Time, dTime, 1);
  auto* interval = static_cast<d_Interval*>(mgr.DefaultValue(NxTYPE_d_Interval, 3, 0));
  EXPECT_EQ(interval[2].seconds, 0.0f);
  mgr.Delete(NxTYPE_d_Interval, interval, 3);
}

// ---------------------------------------------------------------------------
// Conversions.

class Conversions : public Rows {
 protected:
  // The texts of `count` elements, "NULL" for a null string.
  std::string Texts(char id, void* value, uint32_t count = 1) {
    NxTypeConvertData* data = mgr.ConvertTo(id, value, count);
    std::string out;
    for (uint32_t i = 0; i < count; ++i) {
      NxString* s = data->GetString(static_cast<int>(i));
      out += (i ? " " : "") + std::string(s->IsNullValue() ? "NULL" : s->StrGet());
    }
    delete data;
    return out;
  }

  // New elements from texts; a null pointer stands for a null string.
  template <typename T>
  std::vector<T> From(char id, std::vector<const char*> texts, uint32_t count) {
    auto* strings = static_cast<NxString*>(mgr.Create(NxTYPE_NxString, static_cast<uint32_t>(texts.size())));
    for (size_t i = 0; i < texts.size(); ++i) {
      if (texts[i] == nullptr)
        strings[i].SetNullValue();
      else
        strings[i] = texts[i];
    }
    NxTypeConvertData* data =
        NxTypeConvertData::Make(NxTYPE_NxString, static_cast<uint32_t>(texts.size()), strings, &mgr);
    T* values = static_cast<T*>(mgr.ConvertFrom(id, data, count));
    for (size_t i = 0; i < texts.size(); ++i) {
      if (texts[i] != nullptr) {
        EXPECT_STREQ(data->GetString(static_cast<int>(i))->StrGet(), texts[i]) << "carrier changed";
      }
    }
    std::vector<T> result(values, values + count);
    mgr.Delete(id, values, count);
    delete data;
    return result;
  }
};

TEST_F(Conversions, TextsAreDayNumbersAndSeconds) {
  NxDate dates[2] = {NxDate(2000, 1, 1), NxDate(0, 0, 0)};
  dates[1].SetNullValue();
  EXPECT_EQ(Texts(NxTYPE_NxDate, dates, 2), "2451545 NULL");
  NxTime time(13, 30, 9);
  EXPECT_EQ(Texts(NxTYPE_NxTime, &time), "48609");
  NxDateTime both[2] = {NxDateTime(NxDate(2000, 1, 1), NxTime(0, 0, 10)), NxDateTime::Null()};
  both[1].SetNullValue();
  EXPECT_EQ(Texts(NxTYPE_NxDateTime, both, 2), "2451545:10 NULL");

  // d_Date: its own calendar's day number; the same as NxDate's since 1582.
  d_Date dDates[2] = {d_Date(2000, 1, 1), d_Date(1000, 1, 1)};
  EXPECT_EQ(Texts(NxTYPE_d_Date, dDates, 2), "2451545 2086308");
  NxDate old(1000, 1, 1);
  EXPECT_EQ(Texts(NxTYPE_NxDate, &old), "2086303");

  d_Time dTime(10, 0, 7.5f, 2, -30);  // local seconds, no hundredths
  EXPECT_EQ(Texts(NxTYPE_d_Time, &dTime), "36007");
  d_Timestamp stamp(d_Date(2000, 1, 1), dTime);
  EXPECT_EQ(Texts(NxTYPE_d_Timestamp, &stamp), "2451545:36007");
  d_Interval intervals[2] = {d_Interval(0, 0, 0, 1.75f), d_Interval(0, 0, 0, -1.75f)};
  EXPECT_EQ(Texts(NxTYPE_d_Interval, intervals, 2), "1 -1");
}

TEST_F(Conversions, ValuesFromTexts) {
  const auto dates = From<NxDate>(NxTYPE_NxDate, {"2451545"}, 2);
  EXPECT_TRUE(dates[0] == NxDate(2000, 1, 1));
  EXPECT_TRUE(dates[1].IsNullValue());
  const auto times = From<NxTime>(NxTYPE_NxTime, {"48609", nullptr}, 2);
  EXPECT_TRUE(times[0] == NxTime(13, 30, 9));
  EXPECT_TRUE(times[1].IsNullValue());

  const auto both =
      From<NxDateTime>(NxTYPE_NxDateTime, {"2451545", ":10", "2451545:10", "2451545:", nullptr}, 5);
  EXPECT_EQ(both[0] != NxDateTime(NxDate(2000, 1, 1), NxTime(0, 0, 0)), 0);
  EXPECT_EQ(both[1] != NxDateTime(NxDate(0, 0, 0), NxTime(0, 0, 10)), 0);
  EXPECT_EQ(both[1].date.month, 0);
  EXPECT_EQ(both[2] != NxDateTime(NxDate(2000, 1, 1), NxTime(0, 0, 10)), 0);
  EXPECT_EQ(both[3] != NxDateTime(NxDate(2000, 1, 1), NxTime(0, 0, 0)), 0);
  EXPECT_TRUE(both[4].IsNullValue());

  const auto dDates = From<d_Date>(NxTYPE_d_Date, {"2086308", "2299161", nullptr}, 3);
  EXPECT_EQ(dDates[0] != d_Date(1000, 1, 1), 0);
  EXPECT_EQ(dDates[0].day, 1);
  EXPECT_EQ(dDates[1].month, 10);
  EXPECT_EQ(dDates[1].day, 15);
  EXPECT_EQ(dDates[2].year + dDates[2].month + dDates[2].day, 0);

  d_Time::set_default_Time_Zone(d_Time::GMT_1);
  const auto dTimes = From<d_Time>(NxTYPE_d_Time, {"36007", "-1", nullptr}, 3);
  EXPECT_EQ(dTimes[0].hour, 9);
  EXPECT_EQ(dTimes[0].zoneHour, -1);
  EXPECT_EQ(dTimes[0].second, 7);
  EXPECT_EQ(dTimes[1].hour, 22);
  EXPECT_EQ(dTimes[1].minute, 59);
  EXPECT_EQ(dTimes[2].hour, -1);  // d_Time(0, 0, 0.0) in zone -1

  const auto stamps = From<d_Timestamp>(NxTYPE_d_Timestamp, {"2451545:", "2451545:3600", ":5", nullptr}, 4);
  EXPECT_EQ(stamps[0].date != d_Date(2000, 1, 1), 0);
  EXPECT_EQ(stamps[0].time.hour, -1);
  EXPECT_EQ(stamps[1].time.hour, 0);
  EXPECT_EQ(stamps[2].date.year + stamps[2].date.month + stamps[2].date.day, 0);
  EXPECT_EQ(stamps[2].time.second, 5);
  EXPECT_EQ(stamps[3].date.month, 0);
  EXPECT_EQ(stamps[3].time.hour, -1);

  const auto intervals = From<d_Interval>(NxTYPE_d_Interval, {"90", "abc", nullptr}, 3);
  EXPECT_FLOAT_EQ(intervals[0].seconds, 90.0f);
  EXPECT_FLOAT_EQ(intervals[1].seconds, 0.0f);
  EXPECT_FLOAT_EQ(intervals[2].seconds, 0.0f);
}

// Through the text and back, every row gives the value it started from.
TEST_F(Conversions, RoundTrips) {
  NxDate date(1582, 10, 10);
  NxTypeConvertData* data = mgr.ConvertTo(NxTYPE_NxDate, &date, 1);
  auto* back = static_cast<NxDate*>(mgr.ConvertFrom(NxTYPE_NxDate, data, 1));
  EXPECT_TRUE(*back == date);
  mgr.Delete(NxTYPE_NxDate, back, 1);
  delete data;

  d_Timestamp stamp(d_Date(1500, 2, 29), d_Time(23, 59, 58.0f));
  data = mgr.ConvertTo(NxTYPE_d_Timestamp, &stamp, 1);
  auto* stampBack = static_cast<d_Timestamp*>(mgr.ConvertFrom(NxTYPE_d_Timestamp, data, 1));
  EXPECT_EQ(std::memcmp(stampBack, &stamp, sizeof stamp), 0);
  mgr.Delete(NxTYPE_d_Timestamp, stampBack, 1);
  delete data;

  // A d_Date read as an NxDate is the same day, so before 1582 it has other
  // fields: the Julian 1000-01-01 is the Gregorian 1000-01-06.
  d_Date julian(1000, 1, 1);
  data = mgr.ConvertTo(NxTYPE_d_Date, &julian, 1);
  auto* gregorian = static_cast<NxDate*>(mgr.ConvertFrom(NxTYPE_NxDate, data, 1));
  EXPECT_TRUE(*gregorian == NxDate(1000, 1, 6));
  mgr.Delete(NxTYPE_NxDate, gregorian, 1);
  delete data;
}

}  // namespace
