// Tests of the base library: disk byte orders, the memory file, the
// configuration, the reports, the version check and the clock.
#include <nxbs/nxbs.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using nxtest::Hex;

typedef uint32_t (*StoreFunc)(void*, const void*, unsigned char, uint32_t);

struct StoreCase {
  const char* name;
  StoreFunc store;
  size_t width;
};

const StoreCase kStores[] = {
    {"CharStore", CharStore, 1},         {"ShortStore", ShortStore, 2},
    {"LongStore", LongStore, 4},         {"FloatStore", FloatStore, 4},
    {"DoubleStore", DoubleStore, 8},     {"IntStore", IntStore, 4},
    {"UnsignedStore", UnsignedStore, 4}, {"IntLoad", IntLoad, 4},
    {"UnsignedLoad", UnsignedLoad, 4},
};

// Bytes 01 02 03 ... for `count` elements of `width`.
std::vector<unsigned char> Ramp(size_t width, uint32_t count) {
  std::vector<unsigned char> bytes(width * count);
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(i + 1);
  return bytes;
}

// The ramp with the bytes of each element reversed.
std::vector<unsigned char> Reversed(std::vector<unsigned char> bytes, size_t width) {
  for (size_t at = 0; at < bytes.size(); at += width) {
    std::reverse(bytes.begin() + at, bytes.begin() + at + width);
  }
  return bytes;
}

TEST(DiskOrder, EveryFunctionHonoursTheLowFourBitsAndIsItsOwnInverse) {
  const uint32_t count = 3;
  for (const StoreCase& c : kStores) {
    SCOPED_TRACE(c.name);
    const std::vector<unsigned char> source = Ramp(c.width, count);
    const std::vector<unsigned char> swapped = Reversed(source, c.width);
    // Low nibble 2 is most significant first; every other nibble is the
    // memory form here.  Bits above the nibble never count.
    for (unsigned char format : {1, 8, 0, 5, 0x0F, 0x81, 0x88, 2, 0x82, 0xF2, 0x12}) {
      SCOPED_TRACE(static_cast<int>(format));
      const auto& expected = (format & 0x0F) == 2 ? swapped : source;
      std::vector<unsigned char> out(source.size() + 1, 0xEE), back(source.size());
      EXPECT_EQ(c.width * count, c.store(out.data(), source.data(), format, count));
      EXPECT_EQ(Hex(expected.data(), expected.size()) + "ee", Hex(out.data(), out.size()));
      c.store(back.data(), out.data(), format, count);
      EXPECT_EQ(source, back);
    }
    unsigned char out0[8];
    EXPECT_EQ(0u, c.store(out0, source.data(), 2, 0));
    EXPECT_EQ(c.width, c.store(out0, source.data(), 2, 1));
    // In place.
    std::vector<unsigned char> bytes = source;
    c.store(bytes.data(), bytes.data(), 2, count);
    EXPECT_EQ(swapped, bytes);
  }
  // Nothing is touched, null pointers included, when there is nothing to move.
  EXPECT_EQ(0u, LongStore(nullptr, nullptr, 2, 0));
}

TEST(DiskOrder, OverlappingMovesAndKnownValues) {
  // Destination one element past the source, and one before it: the result
  // is what a move through a separate buffer would give.
  const std::vector<unsigned char> ramp = Ramp(2, 4);
  std::vector<unsigned char> buffer(10, 0);
  std::copy(ramp.begin(), ramp.end(), buffer.begin());
  EXPECT_EQ(8u, ShortStore(buffer.data() + 2, buffer.data(), 2, 4));
  EXPECT_EQ("01020201040306050807", Hex(buffer.data(), buffer.size()));
  std::vector<unsigned char> back(10, 0);
  std::copy(ramp.begin(), ramp.end(), back.begin() + 2);
  EXPECT_EQ(8u, ShortStore(back.data(), back.data() + 2, 2, 4));
  EXPECT_EQ("02010403060508070708", Hex(back.data(), back.size()));

  const int32_t l = -2;
  unsigned char le[4], be[4];
  LongStore(le, &l, 129, 1);
  LongStore(be, &l, 2, 1);
  EXPECT_EQ("feffffff", Hex(le, 4));
  EXPECT_EQ("fffffffe", Hex(be, 4));
  // Elements at odd addresses are fine.
  unsigned char record[9] = {0};
  const double d = 1.5;
  EXPECT_EQ(8u, DoubleStore(record + 1, &d, 2, 1));
  EXPECT_EQ("3ff8000000000000", Hex(record + 1, 8));
  const unsigned int u = 0x80000001u;
  unsigned char ub[4];
  UnsignedStore(ub, &u, 2, 1);
  EXPECT_EQ("80000001", Hex(ub, 4));
  int ir = 0;
  EXPECT_EQ(4u, IntLoad(&ir, ub, 2, 1));
  EXPECT_EQ(static_cast<int>(u), ir);
}

TEST(DiskOrder, NullPointerWithElementsIsReported) {
  nxtest::AssertRecorder recorder;
  int32_t value = 7;
  EXPECT_EQ(8u, LongStore(nullptr, &value, 2, 2));
  EXPECT_EQ(1u, recorder.reports().size());
}

TEST(DiskSize, FixedWidthsWhateverTheFormats) {
  const struct {
    uint32_t (*size)(const void*, unsigned char, unsigned char, uint32_t);
    uint32_t (*nullSize)(uint32_t);
    uint32_t width;
  } rows[] = {{CharSizeGet, CharNullSizeGet, 1},     {ShortSizeGet, ShortNullSizeGet, 2},
              {LongSizeGet, LongNullSizeGet, 4},     {FloatSizeGet, FloatNullSizeGet, 4},
              {DoubleSizeGet, DoubleNullSizeGet, 8}, {IntSizeGet, IntNullSizeGet, 4}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.width);
    for (uint32_t count : {0u, 1u, 9u}) {
      EXPECT_EQ(row.width * count, row.size(nullptr, 8, 2, count));
      EXPECT_EQ(row.width * count, row.size(nullptr, 0, 0, count));
      EXPECT_EQ(row.width * count, row.size(nullptr, 8, 0x81, count));
      EXPECT_EQ(row.width * count, row.nullSize(count));
    }
  }
}

TEST(MemFileSeek, GrantsWhatIsLeftFromEachOrigin) {
  MemFile empty;
  uint32_t bytes = 4;
  EXPECT_EQ(nullptr, empty.Seek(0, MemFile::FromCurrent, &bytes, 0));
  EXPECT_EQ(0u, bytes);

  const unsigned char image[10] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
  MemFile file(image, 10);
  const struct {
    int32_t offset;
    unsigned short origin;
    uint32_t wanted, granted;
    int32_t position;
  } steps[] = {
      {0, MemFile::FromCurrent, 4, 4, 0},  // granting does not advance
      {6, MemFile::FromStart, 3, 3, 6},
      {2, MemFile::FromCurrent, 100, 2, 8},  // more than is left: the rest
      {-3, MemFile::FromEnd, 5, 3, 7},
  };
  for (const auto& step : steps) {
    bytes = step.wanted;
    const unsigned char* at = file.Seek(step.offset, step.origin, &bytes, 0);
    ASSERT_NE(nullptr, at) << step.offset;
    EXPECT_EQ(step.position, *at);
    EXPECT_EQ(step.granted, bytes);
    EXPECT_EQ(step.position, file.position);
  }
}

TEST(MemFileSeek, FailuresGiveNullAndLeaveThePosition) {
  const unsigned char image[10] = {0};
  MemFile file(image, 10);
  uint32_t bytes = 2;
  ASSERT_NE(nullptr, file.Seek(4, MemFile::FromStart, &bytes, 0));
  const struct {
    int32_t offset;
    unsigned short origin;
    uint32_t wanted;
  } misses[] = {
      {0, MemFile::FromEnd, 1},       // at the end: nothing left
      {6, MemFile::FromCurrent, 1},   // the same from the current position
      {11, MemFile::FromStart, 1},    // past the end
      {-1, MemFile::FromStart, 1},    // before the start
      {1, MemFile::FromEnd, 1},       // past the end from the end
      {-5, MemFile::FromCurrent, 1},  // before the start from the current position
      {2, MemFile::FromCurrent, 0},   // nothing wanted
      {0, 7, 1},                      // no such origin
  };
  for (const auto& miss : misses) {
    SCOPED_TRACE(miss.offset);
    bytes = miss.wanted;
    EXPECT_EQ(nullptr, file.Seek(miss.offset, miss.origin, &bytes, 0));
    EXPECT_EQ(0u, bytes);
    EXPECT_EQ(4, file.position);
  }
  EXPECT_EQ(nullptr, file.Seek(0, MemFile::FromCurrent, nullptr, 0));
  EXPECT_EQ(4, file.position);
}

TEST(Config, DefaultIsInstalledQueriedAndUninstalled) {
  NxConfig* previous = DefaultConfig(nullptr);
  EXPECT_EQ(nullptr, DefaultConfig(NxCONFIG_QUERY));
  NxKeyValueConfig first, second;
  EXPECT_EQ(nullptr, DefaultConfig(&first));
  EXPECT_EQ(&first, DefaultConfig(NxCONFIG_QUERY));
  EXPECT_EQ(&first, DefaultConfig(NxCONFIG_QUERY));  // a query changes nothing
  EXPECT_EQ(&first, DefaultConfig(&second));
  EXPECT_EQ(&second, DefaultConfig(nullptr));
  DefaultConfig(previous);
}

// A configuration that only implements Value gets Query for free.
class FixedConfig : public NxConfig {
 public:
  const char* Value(const char* key) const override {
    return std::strcmp(key, "mode") == 0 ? "Fast" : nullptr;
  }
};

TEST(Config, QueryMatchesWordsWithoutRegardToCase) {
  NxKeyValueConfig config;
  config.Set("stringOverflow", "DeBuG");
  config.Set("oldIndexUnicodeOrder", "");
  const char* debug[] = {"release", "debug", nullptr};
  const char* other[] = {"release", "debugger", nullptr};
  const char* none[] = {nullptr};
  int16_t flag = 0;
  EXPECT_EQ(0, config.Query("stringOverflow", &flag, debug));
  EXPECT_NE(0, flag);
  flag = 0;
  EXPECT_EQ(0, config.Query("stringOverflow", &flag, other));
  EXPECT_EQ(0, config.Query("stringOverflow", &flag, none));
  EXPECT_EQ(0, flag);
  // With no word list a key that is set, even to nothing, raises the flag.
  EXPECT_EQ(0, config.Query("oldIndexUnicodeOrder", &flag, nullptr));
  EXPECT_NE(0, flag);
  flag = 0;
  EXPECT_EQ(1, config.Query("missing", &flag, debug));
  EXPECT_EQ(1, config.Query("stringoverflow", &flag, nullptr)) << "keys match exactly";
  EXPECT_EQ(0, flag);

  // The flag is a 16-bit word at any alignment.
  unsigned char raw[4] = {0, 0, 0, 0xAA};
  EXPECT_EQ(0, config.Query("stringOverflow", raw + 1, nullptr));
  std::memcpy(&flag, raw + 1, sizeof flag);
  EXPECT_NE(0, flag);
  EXPECT_EQ(0, raw[0]);
  EXPECT_EQ(0xAA, raw[3]);

  FixedConfig fixed;
  const char* fast[] = {"FAST", nullptr};
  flag = 0;
  EXPECT_EQ(0, fixed.Query("mode", &flag, fast));
  EXPECT_NE(0, flag);
  EXPECT_EQ(1, fixed.Query("speed", &flag, nullptr));
}

TEST(Config, ParseReadsKeyValueLinesAndSetReplaces) {
  NxKeyValueConfig config;
  const char* text =
      "# a comment\n\n  stringOverflow =  debug  \r\noldIndexUnicodeOrder=\n"
      "   # indented comment = no\nno equals sign here\n = value without key\n"
      "path = a=b\nlast=end";
  EXPECT_EQ(4, config.Parse(text));
  EXPECT_STREQ("debug", config.Value("stringOverflow"));
  EXPECT_STREQ("", config.Value("oldIndexUnicodeOrder"));
  EXPECT_STREQ("a=b", config.Value("path"));
  EXPECT_STREQ("end", config.Value("last"));
  EXPECT_EQ(nullptr, config.Value("# indented comment"));
  EXPECT_EQ(0, config.Parse(""));
  EXPECT_EQ(0, config.Parse(nullptr));
  config.Set("path", "3");
  EXPECT_STREQ("3", config.Value("path"));
  config.Set("path", nullptr);
  EXPECT_EQ(nullptr, config.Value("path"));
}

int countedReports = 0;
int CountReport(const char*, const char*, int) {
  ++countedReports;
  return 42;
}

TEST(Reports, AssertHandlerAndMemoryHandler) {
  ASSERT_EQ(nullptr, NxSetAssertHandler(nullptr));
  testing::internal::CaptureStderr();
  EXPECT_EQ(0, ZENTRO_assert("a < b", "src/nxthing.cpp", 77));
  EXPECT_EQ("nxtm: assertion failed: a < b (src/nxthing.cpp:77)\n",
            testing::internal::GetCapturedStderr());

  EXPECT_EQ(nullptr, NxSetAssertHandler(&CountReport));
  testing::internal::CaptureStderr();
  EXPECT_EQ(42, ZENTRO_assert("x", "f", 1));
  EXPECT_EQ("", testing::internal::GetCapturedStderr());
  EXPECT_EQ(1, countedReports);
  EXPECT_EQ(&CountReport, NxSetAssertHandler(nullptr));

  EXPECT_THROW(NxCallMemoryHandler(1024), std::bad_alloc);
}

TEST(VersionCheck, Codes) {
  const struct {
    uint32_t major, minor, build, flags;
    int expected;
  } cases[] = {
      {9, 5, 16, 3, NxVERSION_OK},
      {9, 5, 99, 3, NxVERSION_OK},  // build not asked for
      {9, 5, 16, 3 | NxVERSION_FLAG_BUILD, NxVERSION_OK},
      {9, 5, 15, 3 | NxVERSION_FLAG_BUILD, NxVERSION_BUILD_MISMATCH},
      {8, 5, 16, 3, NxVERSION_MAJOR_MISMATCH},
      {9, 4, 16, 3, NxVERSION_MINOR_MISMATCH},
      {9, 5, 16, 1, NxVERSION_BAD_FLAGS},
      {8, 5, 16, NxVERSION_FLAG_BUILD, NxVERSION_BAD_FLAGS},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.expected, CheckNxVersionNumber(c.major, c.minor, c.build, 0, 0, c.flags))
        << c.major << "." << c.minor << "." << c.build << " flags " << c.flags;
  }
}

TEST(Clock, FixedInstantsInUtcAndLocalTime) {
  // Milliseconds of a UTC instant, from days since 1970-01-01.
  auto at = [](int64_t days, int hour, int minute, int second) {
    return ((days * 24 + hour) * 60 + minute) * 60000 + second * 1000;
  };
  const struct {
    int64_t instant;
    int32_t zone;  // minutes east
    int utc[6];    // year, month, day, hour, minute, second
    int local[6];
  } cases[] = {
      {at(19797, 13, 45, 30) + 999, 0, {2024, 3, 15, 13, 45, 30}, {2024, 3, 15, 13, 45, 30}},
      {at(19797, 13, 45, 30), 330, {2024, 3, 15, 13, 45, 30}, {2024, 3, 15, 19, 15, 30}},
      {at(19797, 13, 45, 30), -300, {2024, 3, 15, 13, 45, 30}, {2024, 3, 15, 8, 45, 30}},
      // Across midnight and the new year in either direction.
      {at(19722, 22, 30, 0), 120, {2023, 12, 31, 22, 30, 0}, {2024, 1, 1, 0, 30, 0}},
      {at(19723, 1, 0, 0), -480, {2024, 1, 1, 1, 0, 0}, {2023, 12, 31, 17, 0, 0}},
      // Leap days and centuries: 2000 is a leap year, 2100 is not.
      {at(19782, 12, 0, 0), 0, {2024, 2, 29, 12, 0, 0}, {2024, 2, 29, 12, 0, 0}},
      {at(19783, 0, 0, 0), 0, {2024, 3, 1, 0, 0, 0}, {2024, 3, 1, 0, 0, 0}},
      {at(11016, 0, 0, 0), 0, {2000, 2, 29, 0, 0, 0}, {2000, 2, 29, 0, 0, 0}},
      {at(47540, 0, 0, 0), 0, {2100, 2, 28, 0, 0, 0}, {2100, 2, 28, 0, 0, 0}},
      {at(47541, 0, 0, 0), 0, {2100, 3, 1, 0, 0, 0}, {2100, 3, 1, 0, 0, 0}},
      {0, 0, {1970, 1, 1, 0, 0, 0}, {1970, 1, 1, 0, 0, 0}},
      // Instants before the epoch round down.
      {-1, 0, {1969, 12, 31, 23, 59, 59}, {1969, 12, 31, 23, 59, 59}},
      // An unknown zone falls back to UTC.
      {at(19797, 23, 59, 59), NxZONE_UNKNOWN, {2024, 3, 15, 23, 59, 59}, {2024, 3, 15, 23, 59, 59}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.instant) + " zone " + std::to_string(c.zone));
    NxClockFix(c.instant, c.zone);
    EXPECT_EQ(c.instant, NxClockNowMilliseconds());
    bdate localDate, utcDate;
    btime localTime, utcTime;
    nxsgetdate(&localDate);
    nxsgettime(&localTime);
    nxsgetsystemtime(&utcTime, &utcDate);
    auto fields = [](const bdate& d, const btime& t) {
      return std::vector<int>{d.year, d.month, d.day, t.hour, t.minute, t.second};
    };
    EXPECT_EQ(fields(utcDate, utcTime), std::vector<int>(c.utc, c.utc + 6));
    EXPECT_EQ(fields(localDate, localTime), std::vector<int>(c.local, c.local + 6));
    EXPECT_EQ(0, utcTime.zone);
    EXPECT_EQ(c.zone == NxZONE_UNKNOWN ? 0 : c.zone * 60, localTime.zone);
    EXPECT_EQ(c.zone, nxsgettimezone());
  }

  // Releasing returns to the system clock.
  NxClockRelease();
  EXPECT_GT(NxClockNowMilliseconds(), at(19797, 0, 0, 0));
  bdate date = {0, 0, 0}, utcDate = {0, 0, 0};
  btime time = {0, 0, 0, 0, 0}, utcTime = {0, 0, 0, 0, 0};
  nxsgetdate(&date);
  nxsgettime(&time);
  nxsgetsystemtime(&utcTime, &utcDate);
  EXPECT_GE(date.year, 2024);
  EXPECT_GE(utcDate.year, 2024);
  EXPECT_EQ(0, utcTime.zone);
  const int32_t zone = nxsgettimezone();
  if (zone != NxZONE_UNKNOWN) {
    EXPECT_EQ(zone * 60, time.zone);
  }
}

}  // namespace
