// The seven temporal rows through the type manager: disk bytes written out
// by hand in both byte orders, sizes and translation, new elements from the
// clock, null and default values, and the numeric conversion texts.
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <nxtm/nxtm.h>

#include "test_support.h"

namespace {

constexpr int64_t kInstant = 1073309409000LL;  // 2004-01-05 13:30:09 UTC

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

  // Stores `count` elements as hex; Store's result must be the byte count
  // and agree with SizeGet, and nothing may be written behind.
  std::string Stored(char id, const void* memory, unsigned char format, uint32_t count = 1) {
    unsigned char disk[64];
    std::memset(disk, 0xEE, sizeof disk);
    const uint32_t n = mgr.Store(id, disk, memory, format, count);
    EXPECT_EQ(n, mgr.DiskLenGet(id, nullptr, format, count, 8));
    EXPECT_EQ(disk[n], 0xEE);
    return nxtest::Hex(disk, n);
  }

  // Loads hex into `memory`, which must take all of it, and stores it back.
  void RoundTrip(char id, void* memory, const std::string& hex, unsigned char format,
                 uint32_t count = 1) {
    std::vector<unsigned char> disk;
    for (size_t i = 0; i < hex.size(); i += 2)
      disk.push_back(static_cast<unsigned char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    EXPECT_EQ(mgr.Load(id, memory, disk.data(), format, count), disk.size());
    EXPECT_EQ(Stored(id, memory, format, count), hex);
  }

  NxTypeMgr mgr;
};

TEST_F(Rows, DiskFormsInBothByteOrders) {
  const NxDate dates[2] = {NxDate(2004, 1, 5), NxDate(-1, 12, 31)};
  EXPECT_EQ(Stored(NxTYPE_NxDate, dates, 2, 2), "07d40105ffff0c1f");
  EXPECT_EQ(Stored(NxTYPE_NxDate, dates, 1, 2), "d4070105ffff0c1f");
  EXPECT_EQ(Stored(NxTYPE_NxDate, dates, 0x82), "07d40105");  // only the low four bits count
  NxDate date[2] = {NxDate(0, 0, 0), NxDate(0, 0, 0)};
  RoundTrip(NxTYPE_NxDate, date, "07d40105ffff0c1f", 2, 2);
  EXPECT_TRUE(date[0] == dates[0] && date[1] == dates[1]);

  const NxTime time(13, 30, 9);
  EXPECT_EQ(Stored(NxTYPE_NxTime, &time, 2), "0d1e09");
  NxTime times[2] = {NxTime(0, 0, 0), NxTime(0, 0, 0)};  // stride 3
  RoundTrip(NxTYPE_NxTime, times, "0d1e09000001", 1, 2);
  EXPECT_TRUE(times[1] == NxTime(0, 0, 1));

  // Seven bytes on disk, eight in memory.
  const NxDateTime both(NxDate(2004, 1, 5), NxTime(13, 30, 9));
  EXPECT_EQ(Stored(NxTYPE_NxDateTime, &both, 1), "d40701050d1e09");
  NxDateTime pair[2] = {NxDateTime::Null(), NxDateTime::Null()};
  RoundTrip(NxTYPE_NxDateTime, pair, "07d401050d1e0907cf0c1f173b3b", 2, 2);
  EXPECT_EQ(pair[0] != both, 0);
  EXPECT_EQ(pair[1] != NxDateTime(NxDate(1999, 12, 31), NxTime(23, 59, 59)), 0);

  // Null values stand as their field bytes.
  NxDateTime null = both;
  null.SetNullValue();
  EXPECT_EQ(Stored(NxTYPE_NxDate, &null.date, 1), "00808080");
  EXPECT_EQ(Stored(NxTYPE_NxDate, &null.date, 2), "80008080");
  EXPECT_EQ(Stored(NxTYPE_NxTime, &null.time, 1), "808080");
  NxDateTime loaded = both;
  RoundTrip(NxTYPE_NxDateTime, &loaded, "00808080808080", 1);
  EXPECT_TRUE(loaded.IsNullValue());

  const d_Date dDate(1582, 10, 4);
  EXPECT_EQ(Stored(NxTYPE_d_Date, &dDate, 2), "062e0a04");
  // Zone, stored hour and minute (zone added), second, hundredth; loading
  // gives the bytes back whatever the default zone is now.
  const d_Time dTime(10, 0, 7.5f, 2, -30);
  EXPECT_EQ(Stored(NxTYPE_d_Time, &dTime, 1), "02e20ce20732");
  d_Time::set_default_Time_Zone(d_Time::GMT_8);
  d_Time dTimeBack(0);
  RoundTrip(NxTYPE_d_Time, &dTimeBack, "02e20ce20732", 2);
  EXPECT_EQ(std::memcmp(&dTimeBack, &dTime, sizeof dTime), 0);

  const d_Timestamp stamps[2] = {d_Timestamp(d_Date(2004, 1, 5), dTime),
                                 d_Timestamp(d_Date(-2, 2, 29), d_Time(0, 0, 0.0f, 0, 0))};
  EXPECT_EQ(Stored(NxTYPE_d_Timestamp, stamps, 1, 2), "d407010502e20ce20732feff021d000000000000");
  d_Timestamp stampsBack[2] = {stamps[1], stamps[0]};
  RoundTrip(NxTYPE_d_Timestamp, stampsBack, "07d4010502e20ce20732fffe021d000000000000", 2, 2);
  EXPECT_EQ(std::memcmp(stampsBack, stamps, sizeof stamps), 0);

  const d_Interval intervals[2] = {d_Interval(0, 0, 0, 1.5f), d_Interval(1, 2, 3, -4.5f)};
  EXPECT_EQ(Stored(NxTYPE_d_Interval, intervals, 1, 2), "0000c03f402cb7c7");
  d_Interval intervalsBack[2];
  RoundTrip(NxTYPE_d_Interval, intervalsBack, "3fc00000c7b72c40", 2, 2);
  EXPECT_FLOAT_EQ(intervalsBack[1].seconds, -93784.5f);
  EXPECT_EQ(mgr.Store(NxTYPE_NxDate, date, dates, 1, 0), 0u);
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
    EXPECT_EQ(mgr.DiskLenGetFromMemFile(r.id, &file, 2, 3), 3 * r.diskLen);
    EXPECT_EQ(mgr.RowGet(r.id)->NullSizeGet(3), 3 * r.diskLen);
  }
  NxDateTime v(NxDate(2004, 1, 5), NxTime(13, 30, 9));
  NxDateTime copy = NxDateTime::Null();
  unsigned char disk[10];
  EXPECT_EQ(mgr.Translate(NxTYPE_NxDateTime, &copy, 8, 0, &v, 8, 0, 1), 8u);
  EXPECT_EQ(copy != v, 0);
  EXPECT_EQ(mgr.Translate(NxTYPE_NxDateTime, disk, 2, sizeof disk, &v, 8, 0, 1), 7u);
  copy = NxDateTime::Null();
  EXPECT_EQ(mgr.Translate(NxTYPE_NxDateTime, &copy, 0x88, 0, disk, 2, 7, 1), 7u);
  EXPECT_EQ(copy != v, 0);
}

TEST_F(Rows, NewElementsReadTheClock) {
  NxClockFix(kInstant, 60);  // 14:30:09 local
  d_Time::set_default_Time_Zone(d_Time::GMT2);
  auto* dates = static_cast<d_Date*>(mgr.Create(NxTYPE_d_Date, 2));
  EXPECT_EQ((dates[0] != d_Date(2004, 1, 5)) | (dates[1] != d_Date(2004, 1, 5)), 0);
  mgr.Delete(NxTYPE_d_Date, dates, 2);
  auto* one = static_cast<NxDateTime*>(mgr.Create(NxTYPE_NxDateTime, 0));
  EXPECT_EQ(*one != NxDateTime(NxDate(2004, 1, 5), NxTime(14, 30, 9)), 0);
  mgr.Delete(NxTYPE_NxDateTime, one, 0);
  auto* stamps = static_cast<d_Timestamp*>(mgr.Create(NxTYPE_d_Timestamp, 3));
  EXPECT_EQ(stamps[2].time.hour, 16);  // in the default zone
  mgr.Delete(NxTYPE_d_Timestamp, stamps, 3);

  unsigned char raw[3 * 3];
  mgr.ConstructorPtrGet(NxTYPE_NxTime)(raw, 3, 0);
  EXPECT_EQ(nxtest::Hex(raw + 6, 3), "0e1e09");
  const NxTime source[3] = {NxTime(1, 1, 1), NxTime(2, 2, 2), NxTime(3, 3, 3)};
  mgr.CopyPtrGet(NxTYPE_NxTime)(raw, const_cast<NxTime*>(source + 2), 3, 1);
  EXPECT_EQ(nxtest::Hex(raw, sizeof raw), "030303030303030303");
}

TEST_F(Rows, NullAndDefaultValues) {
  for (char id : {NxTYPE_NxDate, NxTYPE_NxTime, NxTYPE_NxDateTime})
    EXPECT_EQ(mgr.SupportsNullValue(id), 1);
  for (char id : {NxTYPE_d_Date, NxTYPE_d_Time, NxTYPE_d_Timestamp, NxTYPE_d_Interval})
    EXPECT_EQ(mgr.SupportsNullValue(id), 0);
  NxDateTime both(NxDate(2004, 1, 5), NxTime(1, 2, 3));
  EXPECT_EQ(mgr.SetNullValue(NxTYPE_NxDateTime, &both), 0);
  EXPECT_NE(mgr.IsNullValue(NxTYPE_NxDateTime, &both), 0);
  // Without a null of its own, d_Date takes its default: the date of day
  // number 0 in its calendar, -4712-01-01.
  d_Date dDate(2004, 1, 5);
  EXPECT_EQ(mgr.SetNullValue(NxTYPE_d_Date, &dDate), 0);
  EXPECT_EQ(mgr.IsNullValue(NxTYPE_d_Date, &dDate), 0);
  EXPECT_EQ(dDate.year * 10000 + dDate.month * 100 + dDate.day, -4712 * 10000 + 101);

  auto* nulls = static_cast<NxDate*>(mgr.DefaultValue(NxTYPE_NxDate, 2, 1));
  EXPECT_TRUE(nulls[0].IsNullValue() && nulls[1].IsNullValue());
  mgr.Delete(NxTYPE_NxDate, nulls, 2);
  auto* dayZero = static_cast<NxDateTime*>(mgr.DefaultValue(NxTYPE_NxDateTime, 2, 0));
  EXPECT_EQ(dayZero[1] != NxDateTime(NxDate(-4713, 11, 24), NxTime(0, 0, 0)), 0);
  mgr.Delete(NxTYPE_NxDateTime, dayZero, 2);
  d_Time::set_default_Time_Zone(d_Time::GMT1);
  auto* dTime = static_cast<d_Time*>(mgr.DefaultValue(NxTYPE_d_Time, 1, 1));
  EXPECT_EQ(dTime->hour, 1);  // midnight in the default zone
  mgr.Delete(NxTYPE_d_Time, dTime, 1);
}

// ---------------------------------------------------------------------------
// Conversions.

class Conversions : public Rows {
 protected:
  // The texts of `count` elements, "NULL" for a null string.
  std::string Texts(char id, const void* value, uint32_t count = 1) {
    NxTypeConvertData* data = mgr.ConvertTo(id, const_cast<void*>(value), count);
    std::string out;
    for (uint32_t i = 0; i < count; ++i) {
      NxString* s = data->GetString(static_cast<int>(i));
      out += (i ? " " : "") + std::string(s->IsNullValue() ? "NULL" : s->StrGet());
    }
    delete data;
    return out;
  }

  // `count` new elements from texts (null for a null string); the carrier's
  // strings stay as they were.
  template <typename T>
  std::vector<T> From(char id, std::vector<const char*> texts, uint32_t count) {
    const auto n = static_cast<uint32_t>(texts.size());
    auto* strings = static_cast<NxString*>(mgr.Create(NxTYPE_NxString, n));
    for (uint32_t i = 0; i < n; ++i) {
      if (texts[i] == nullptr)
        strings[i].SetNullValue();
      else
        strings[i] = texts[i];
    }
    NxTypeConvertData* data = NxTypeConvertData::Make(NxTYPE_NxString, n, strings, &mgr);
    T* values = static_cast<T*>(mgr.ConvertFrom(id, data, count));
    for (uint32_t i = 0; i < n; ++i) {
      if (texts[i] != nullptr) {
        EXPECT_STREQ(data->GetString(static_cast<int>(i))->StrGet(), texts[i]);
      }
    }
    std::vector<T> result(values, values + count);
    mgr.Delete(id, values, count);
    delete data;
    return result;
  }
};

TEST_F(Conversions, TextsAreDayNumbersAndSeconds) {
  const NxDate dates[3] = {NxDate(2000, 1, 1), NxDate(1000, 1, 1), NxDate(-32768, -128, -128)};
  EXPECT_EQ(Texts(NxTYPE_NxDate, dates, 3), "2451545 2086303 NULL");
  const NxTime time(13, 30, 9);
  EXPECT_EQ(Texts(NxTYPE_NxTime, &time), "48609");
  NxDateTime both[2] = {NxDateTime(NxDate(2000, 1, 1), NxTime(0, 0, 10)), NxDateTime::Null()};
  both[1].SetNullValue();
  EXPECT_EQ(Texts(NxTYPE_NxDateTime, both, 2), "2451545:10 NULL");
  // d_Date: its own calendar's day number, NxDate's since 1582 only.
  const d_Date dDates[2] = {d_Date(2000, 1, 1), d_Date(1000, 1, 1)};
  EXPECT_EQ(Texts(NxTYPE_d_Date, dDates, 2), "2451545 2086308");
  const d_Time dTime(10, 0, 7.5f, 2, -30);  // local seconds, no hundredths
  EXPECT_EQ(Texts(NxTYPE_d_Time, &dTime), "36007");
  const d_Timestamp stamp(d_Date(2000, 1, 1), dTime);
  EXPECT_EQ(Texts(NxTYPE_d_Timestamp, &stamp), "2451545:36007");
  const d_Interval intervals[2] = {d_Interval(0, 0, 0, 1.75f), d_Interval(0, 0, 0, -1.75f)};
  EXPECT_EQ(Texts(NxTYPE_d_Interval, intervals, 2), "1 -1");
}

TEST_F(Conversions, ValuesFromTexts) {
  const auto dates = From<NxDate>(NxTYPE_NxDate, {"2451545"}, 2);
  EXPECT_TRUE(dates[0] == NxDate(2000, 1, 1) && dates[1].IsNullValue());
  const auto times = From<NxTime>(NxTYPE_NxTime, {nullptr}, 1);
  EXPECT_TRUE(times[0].IsNullValue());

  const auto both =
      From<NxDateTime>(NxTYPE_NxDateTime, {"2451545", ":10", "2451545:10", "2451545:"}, 4);
  EXPECT_EQ(both[0] != NxDateTime(NxDate(2000, 1, 1), NxTime(0, 0, 0)), 0);
  EXPECT_EQ(both[1] != NxDateTime(NxDate(0, 0, 0), NxTime(0, 0, 10)), 0);
  EXPECT_EQ(both[1].date.month, 0);
  EXPECT_EQ(both[2] != NxDateTime(NxDate(2000, 1, 1), NxTime(0, 0, 10)), 0);
  EXPECT_EQ(both[3] != NxDateTime(NxDate(2000, 1, 1), NxTime(0, 0, 0)), 0);

  const auto dDates = From<d_Date>(NxTYPE_d_Date, {"2299161", nullptr}, 2);
  EXPECT_EQ(dDates[0].year * 10000 + dDates[0].month * 100 + dDates[0].day, 15821015);
  EXPECT_EQ(dDates[1].year + dDates[1].month + dDates[1].day, 0);

  d_Time::set_default_Time_Zone(d_Time::GMT_1);
  const auto dTimes = From<d_Time>(NxTYPE_d_Time, {"-1", nullptr}, 2);
  EXPECT_EQ(dTimes[0].hour * 100 + dTimes[0].minute, 2259);  // 23:59 in zone -1
  EXPECT_EQ(dTimes[1].hour, -1);                             // d_Time(0, 0, 0.0) in zone -1
  const auto stamps = From<d_Timestamp>(NxTYPE_d_Timestamp, {"2451545:", "2451545:3600", ":5"}, 3);
  EXPECT_EQ(stamps[0].date != d_Date(2000, 1, 1), 0);
  EXPECT_EQ(stamps[0].time.hour, -1);
  EXPECT_EQ(stamps[1].time.hour, 0);
  EXPECT_EQ(stamps[2].date.month, 0);
  EXPECT_EQ(stamps[2].time.second, 5);
  const auto intervals = From<d_Interval>(NxTYPE_d_Interval, {"90", "abc"}, 2);
  EXPECT_FLOAT_EQ(intervals[0].seconds, 90.0f);
  EXPECT_FLOAT_EQ(intervals[1].seconds, 0.0f);
}

// A d_Date read back as an NxDate is the same day: the Julian 1000-01-01 is
// the Gregorian 1000-01-06.
TEST_F(Conversions, BetweenTheCalendars) {
  d_Date julian(1000, 1, 1);
  NxTypeConvertData* data = mgr.ConvertTo(NxTYPE_d_Date, &julian, 1);
  auto* gregorian = static_cast<NxDate*>(mgr.ConvertFrom(NxTYPE_NxDate, data, 1));
  EXPECT_TRUE(*gregorian == NxDate(1000, 1, 6));
  mgr.Delete(NxTYPE_NxDate, gregorian, 1);
  delete data;
}

}  // namespace
