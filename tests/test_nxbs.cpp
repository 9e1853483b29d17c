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

// ---------------------------------------------------------------------------
// Disk form of scalars.

TEST(DiskOrder, EveryFunctionHonoursTheLowFourBitsOfTheFormat) {
  const uint32_t count = 3;
  for (const StoreCase& c : kStores) {
    SCOPED_TRACE(c.name);
    const std::vector<unsigned char> source = Ramp(c.width, count);
    const std::string asIs = Hex(source.data(), source.size());
    const std::vector<unsigned char> swapped = Reversed(source, c.width);
    const std::string reversed = Hex(swapped.data(), swapped.size());
    // Low nibble 1 and every nibble but 2 and 8 are least significant first,
    // which is the memory form here; bits above the nibble never count.
    const struct {
      unsigned char format;
      const std::string& expected;
    } rows[] = {{1, asIs},        {8, asIs},        {0, asIs},       {5, asIs},
                {0x0F, asIs},     {0x81, asIs},     {0x88, asIs},    {2, reversed},
                {0x82, reversed}, {0xF2, reversed}, {0x12, reversed}};
    for (const auto& row : rows) {
      SCOPED_TRACE(static_cast<int>(row.format));
      std::vector<unsigned char> out(source.size(), 0xEE);
      EXPECT_EQ(c.width * count, c.store(out.data(), source.data(), row.format, count));
      EXPECT_EQ(row.expected, Hex(out.data(), out.size()));
    }
  }
}

TEST(DiskOrder, EachFunctionIsItsOwnInverse) {
  const uint32_t count = 4;
  for (const StoreCase& c : kStores) {
    SCOPED_TRACE(c.name);
    const std::vector<unsigned char> memory = Ramp(c.width, count);
    for (unsigned char format : {1, 2, 8, 0x82, 7}) {
      std::vector<unsigned char> disk(memory.size()), back(memory.size());
      c.store(disk.data(), memory.data(), format, count);
      c.store(back.data(), disk.data(), format, count);
      EXPECT_EQ(memory, back) << "format " << static_cast<int>(format);
    }
  }
}

TEST(DiskOrder, InPlaceAndOverlappingMovesKeepEveryByte) {
  for (const StoreCase& c : kStores) {
    SCOPED_TRACE(c.name);
    std::vector<unsigned char> bytes = Ramp(c.width, 5);
    c.store(bytes.data(), bytes.data(), 2, 5);
    EXPECT_EQ(Reversed(Ramp(c.width, 5), c.width), bytes);
  }
  // Destination one element past the source, and one before it: the result
  // is what a move through a separate buffer would give.
  const std::vector<unsigned char> ramp = Ramp(2, 4);
  std::vector<unsigned char> buffer(10, 0);
  std::copy(ramp.begin(), ramp.end(), buffer.begin());
  EXPECT_EQ(8u, ShortStore(buffer.data() + 2, buffer.data(), 2, 4));
  EXPECT_EQ(
      "0102020104030605"
      "0807",
      Hex(buffer.data(), buffer.size()));
  std::vector<unsigned char> back(10, 0);
  std::copy(ramp.begin(), ramp.end(), back.begin() + 2);
  EXPECT_EQ(8u, ShortStore(back.data(), back.data() + 2, 2, 4));
  EXPECT_EQ("02010403060508070708", Hex(back.data(), back.size()));
}

TEST(DiskOrder, KnownValues) {
  const unsigned char big[2] = {1, 2};
  int16_t s = 0;
  EXPECT_EQ(2u, ShortStore(&s, big, 2, 1));
  EXPECT_EQ(258, s);
  unsigned char out[2] = {0, 0};
  EXPECT_EQ(2u, ShortStore(out, &s, 2, 1));
  EXPECT_EQ("0102", Hex(out, 2));

  const int32_t l = -2;
  unsigned char le[4], le129[4], be[4];
  EXPECT_EQ(4u, LongStore(le, &l, 1, 1));
  EXPECT_EQ(4u, LongStore(le129, &l, 129, 1));
  EXPECT_EQ(4u, LongStore(be, &l, 2, 1));
  EXPECT_EQ("feffffff", Hex(le, 4));
  EXPECT_EQ("feffffff", Hex(le129, 4));
  EXPECT_EQ("fffffffe", Hex(be, 4));

  // Elements at odd addresses are fine.
  unsigned char record[9] = {0};
  const double d = 1.5;
  EXPECT_EQ(8u, DoubleStore(record + 1, &d, 2, 1));
  EXPECT_EQ("3ff8000000000000", Hex(record + 1, 8));
  double dr = 0;
  DoubleStore(&dr, record + 1, 2, 1);
  EXPECT_EQ(1.5, dr);

  const unsigned int u = 0x80000001u;
  unsigned char ub[4];
  EXPECT_EQ(4u, UnsignedStore(ub, &u, 2, 1));
  EXPECT_EQ("80000001", Hex(ub, 4));
  unsigned int ur = 0;
  EXPECT_EQ(4u, UnsignedLoad(&ur, ub, 2, 1));
  EXPECT_EQ(u, ur);
  const int i = -100000;
  unsigned char ib[4];
  EXPECT_EQ(4u, IntStore(ib, &i, 2, 1));
  int ir = 0;
  EXPECT_EQ(4u, IntLoad(&ir, ib, 2, 1));
  EXPECT_EQ(i, ir);
}

TEST(DiskOrder, ResultCountsBytesForZeroOneAndMany) {
  unsigned char buffer[64] = {0};
  for (unsigned char format : {0, 1, 2, 5, 8, 0x81, 0x88}) {
    EXPECT_EQ(5u, CharStore(buffer, "abcde", format, 5));
  }
  for (const StoreCase& c : kStores) {
    SCOPED_TRACE(c.name);
    const std::vector<unsigned char> source = Ramp(c.width, 7);
    EXPECT_EQ(0u, c.store(buffer, source.data(), 2, 0));
    EXPECT_EQ(c.width, c.store(buffer, source.data(), 2, 1));
    EXPECT_EQ(7 * c.width, c.store(buffer, source.data(), 2, 7));
  }
  // Nothing is touched, null pointers included, when there is nothing to move.
  EXPECT_EQ(0u, LongStore(nullptr, nullptr, 2, 0));
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

// ---------------------------------------------------------------------------
// Memory file.

TEST(MemFileSeek, DefaultImageIsEmpty) {
  MemFile file;
  EXPECT_EQ(nullptr, file.data);
  EXPECT_EQ(0, file.size);
  EXPECT_EQ(0, file.position);
  uint32_t bytes = 4;
  EXPECT_EQ(nullptr, file.Seek(0, MemFile::FromCurrent, &bytes, 0));
  EXPECT_EQ(0u, bytes);
}

TEST(MemFileSeek, GrantsWhatIsLeftFromEachOrigin) {
  const unsigned char image[10] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
  MemFile file(image, 10);

  uint32_t bytes = 4;
  unsigned char* at = file.Seek(0, MemFile::FromCurrent, &bytes, 0);
  EXPECT_EQ(image, at);
  EXPECT_EQ(4u, bytes);
  EXPECT_EQ(0, file.position);  // granting does not advance

  bytes = 3;
  at = file.Seek(6, MemFile::FromStart, &bytes, 0);
  ASSERT_NE(nullptr, at);
  EXPECT_EQ(6, *at);
  EXPECT_EQ(3u, bytes);
  EXPECT_EQ(6, file.position);

  bytes = 100;  // more than is left: the rest is granted
  at = file.Seek(2, MemFile::FromCurrent, &bytes, 0);
  ASSERT_NE(nullptr, at);
  EXPECT_EQ(8, *at);
  EXPECT_EQ(2u, bytes);
  EXPECT_EQ(8, file.position);

  bytes = 5;
  at = file.Seek(-3, MemFile::FromEnd, &bytes, 0);
  ASSERT_NE(nullptr, at);
  EXPECT_EQ(7, *at);
  EXPECT_EQ(3u, bytes);
  EXPECT_EQ(7, file.position);
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

// ---------------------------------------------------------------------------
// Configuration.

class DefaultConfigTest : public testing::Test {
 protected:
  void SetUp() override { previous_ = DefaultConfig(nullptr); }
  void TearDown() override { DefaultConfig(previous_); }
  NxConfig* previous_ = nullptr;
};

TEST_F(DefaultConfigTest, InstallQueryAndUninstall) {
  EXPECT_EQ(nullptr, DefaultConfig(NxCONFIG_QUERY));
  NxKeyValueConfig first, second;
  EXPECT_EQ(nullptr, DefaultConfig(&first));
  EXPECT_EQ(&first, DefaultConfig(NxCONFIG_QUERY));
  EXPECT_EQ(&first, DefaultConfig(NxCONFIG_QUERY));  // a query changes nothing
  EXPECT_EQ(&first, DefaultConfig(&second));
  EXPECT_EQ(&second, DefaultConfig(nullptr));
  EXPECT_EQ(nullptr, DefaultConfig(NxCONFIG_QUERY));
}

TEST(NxConfigQuery, MatchesWordsWithoutRegardToCase) {
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
  EXPECT_EQ(0, flag);
  EXPECT_EQ(0, config.Query("stringOverflow", &flag, none));
  EXPECT_EQ(0, flag);

  // With no word list a key that is set, even to nothing, raises the flag.
  EXPECT_EQ(0, config.Query("oldIndexUnicodeOrder", &flag, nullptr));
  EXPECT_NE(0, flag);

  flag = 0;
  EXPECT_EQ(1, config.Query("missing", &flag, nullptr));
  EXPECT_EQ(1, config.Query("missing", &flag, debug));
  EXPECT_EQ(0, flag);
  // Keys match exactly.
  EXPECT_EQ(1, config.Query("stringoverflow", &flag, nullptr));
}

TEST(NxConfigQuery, FlagIsASixteenBitWordAtAnyAlignment) {
  NxKeyValueConfig config;
  config.Set("k", "v");
  unsigned char raw[4] = {0, 0, 0, 0xAA};
  EXPECT_EQ(0, config.Query("k", raw + 1, nullptr));
  int16_t flag;
  std::memcpy(&flag, raw + 1, sizeof flag);
  EXPECT_NE(0, flag);
  EXPECT_EQ(0, raw[0]);
  EXPECT_EQ(0xAA, raw[3]);
}

// A configuration that only implements Value gets Query for free.
class FixedConfig : public NxConfig {
 public:
  const char* Value(const char* key) const override {
    return std::strcmp(key, "mode") == 0 ? "Fast" : nullptr;
  }
};

TEST(NxConfigQuery, DefaultQueryReadsThroughValue) {
  FixedConfig config;
  const char* words[] = {"FAST", nullptr};
  int16_t flag = 0;
  EXPECT_EQ(0, config.Query("mode", &flag, words));
  EXPECT_NE(0, flag);
  EXPECT_EQ(1, config.Query("speed", &flag, nullptr));
}

TEST(NxKeyValueConfigTest, SetReplacesAndNullRemoves) {
  NxKeyValueConfig config;
  config.Set("a", "1");
  config.Set("a", "3");
  EXPECT_STREQ("3", config.Value("a"));
  config.Set("a", nullptr);
  EXPECT_EQ(nullptr, config.Value("a"));
}

TEST(NxKeyValueConfigTest, ParseReadsKeyValueLines) {
  NxKeyValueConfig config;
  const char* text =
      "# a comment\n"
      "\n"
      "  stringOverflow =  debug  \r\n"
      "oldIndexUnicodeOrder=\n"
      "   # indented comment = no\n"
      "no equals sign here\n"
      " = value without key\n"
      "path = a=b\n"
      "last=end";
  EXPECT_EQ(4, config.Parse(text));
  EXPECT_STREQ("debug", config.Value("stringOverflow"));
  EXPECT_STREQ("", config.Value("oldIndexUnicodeOrder"));
  EXPECT_STREQ("a=b", config.Value("path"));
  EXPECT_STREQ("end", config.Value("last"));
  EXPECT_EQ(nullptr, config.Value("# indented comment"));
  EXPECT_EQ(0, config.Parse(""));
  EXPECT_EQ(0, config.Parse(nullptr));
}

// ---------------------------------------------------------------------------
// Reports and version.

int countedReports = 0;
int CountReport(const char*, const char*, int) {
  ++countedReports;
  return 42;
}

TEST(AssertReport, DefaultHandlerWritesOneLine) {
  ASSERT_EQ(nullptr, NxSetAssertHandler(nullptr));
  testing::internal::CaptureStderr();
  EXPECT_EQ(0, ZENTRO_assert("a < b", "src/nxthing.cpp", 77));
  const std::string out = testing::internal::GetCapturedStderr();
  EXPECT_EQ("nxtm: assertion failed: a < b (src/nxthing.cpp:77)\n", out);
}

TEST(AssertReport, InstalledHandlerDecidesAndIsRestored) {
  countedReports = 0;
  EXPECT_EQ(nullptr, NxSetAssertHandler(&CountReport));
  testing::internal::CaptureStderr();
  EXPECT_EQ(42, ZENTRO_assert("x", "f", 1));
  EXPECT_EQ("", testing::internal::GetCapturedStderr());
  EXPECT_EQ(1, countedReports);
  EXPECT_EQ(&CountReport, NxSetAssertHandler(nullptr));
  testing::internal::CaptureStderr();
  EXPECT_EQ(0, ZENTRO_assert("x", "f", 1));
  EXPECT_FALSE(testing::internal::GetCapturedStderr().empty());
  EXPECT_EQ(1, countedReports);
}

TEST(MemoryReport, HandlerThrowsBadAlloc) {
  EXPECT_THROW(NxCallMemoryHandler(1024), std::bad_alloc);
}

TEST(VersionCheck, Codes) {
  EXPECT_EQ(NxVERSION_OK, CheckNxVersionNumber(9, 5, 16, 0, 0, 3));
  EXPECT_EQ(NxVERSION_OK, CheckNxVersionNumber(9, 5, 99, 1, 2, 3));  // build not asked for
  EXPECT_EQ(NxVERSION_OK, CheckNxVersionNumber(9, 5, 16, 0, 0, 3 | NxVERSION_FLAG_BUILD));
  EXPECT_EQ(NxVERSION_BUILD_MISMATCH,
            CheckNxVersionNumber(9, 5, 15, 0, 0, 3 | NxVERSION_FLAG_BUILD));
  EXPECT_EQ(NxVERSION_MAJOR_MISMATCH, CheckNxVersionNumber(8, 5, 16, 0, 0, 3));
  EXPECT_EQ(NxVERSION_MINOR_MISMATCH, CheckNxVersionNumber(9, 4, 16, 0, 0, 3));
  EXPECT_EQ(NxVERSION_BAD_FLAGS, CheckNxVersionNumber(9, 5, 16, 0, 0, 1));
  EXPECT_EQ(NxVERSION_BAD_FLAGS, CheckNxVersionNumber(9, 5, 16, 0, 0, 0));
  EXPECT_EQ(NxVERSION_BAD_FLAGS, CheckNxVersionNumber(8, 5, 16, 0, 0, NxVERSION_FLAG_BUILD));
}

// ---------------------------------------------------------------------------
// Clock.

class ClockSeam : public testing::Test {
 protected:
  void TearDown() override { NxClockRelease(); }

  // Milliseconds of a UTC instant, from days since 1970-01-01.
  static int64_t At(int64_t days, int hour, int minute, int second, int millis = 0) {
    return ((days * 24 + hour) * 60 + minute) * 60000 + second * 1000 + millis;
  }

  struct Now {
    bdate localDate, utcDate;
    btime localTime, utcTime;
    int32_t zone;
  };
  static Now Read() {
    Now now;
    std::memset(&now, 0, sizeof now);
    nxsgetdate(&now.localDate);
    nxsgettime(&now.localTime);
    nxsgetsystemtime(&now.utcTime, &now.utcDate);
    now.zone = nxsgettimezone();
    return now;
  }
};

#define EXPECT_DATE(y, m, d, date) \
  do {                             \
    EXPECT_EQ(y, (date).year);     \
    EXPECT_EQ(m, (date).month);    \
    EXPECT_EQ(d, (date).day);      \
  } while (0)
#define EXPECT_TIME(h, mi, s, time) \
  do {                              \
    EXPECT_EQ(h, (time).hour);      \
    EXPECT_EQ(mi, (time).minute);   \
    EXPECT_EQ(s, (time).second);    \
  } while (0)

// 2024-03-15 is day 19797 since 1970-01-01.
constexpr int64_t kMarch15 = 19797;

TEST_F(ClockSeam, FixedInstantInUtc) {
  NxClockFix(At(kMarch15, 13, 45, 30, 999), 0);
  EXPECT_EQ(At(kMarch15, 13, 45, 30, 999), NxClockNowMilliseconds());
  const Now now = Read();
  EXPECT_DATE(2024, 3, 15, now.utcDate);
  EXPECT_TIME(13, 45, 30, now.utcTime);
  EXPECT_EQ(0, now.utcTime.zone);
  EXPECT_DATE(2024, 3, 15, now.localDate);
  EXPECT_TIME(13, 45, 30, now.localTime);
  EXPECT_EQ(0, now.localTime.zone);
  EXPECT_EQ(0, now.zone);
}

TEST_F(ClockSeam, ZoneShiftsLocalTimeOnly) {
  NxClockFix(At(kMarch15, 13, 45, 30), 330);  // 5:30 east
  Now now = Read();
  EXPECT_TIME(19, 15, 30, now.localTime);
  EXPECT_EQ(330 * 60, now.localTime.zone);
  EXPECT_EQ(330, now.zone);
  EXPECT_TIME(13, 45, 30, now.utcTime);
  EXPECT_EQ(0, now.utcTime.zone);

  NxClockFix(At(kMarch15, 13, 45, 30), -300);  // 5 hours west
  now = Read();
  EXPECT_TIME(8, 45, 30, now.localTime);
  EXPECT_EQ(-300 * 60, now.localTime.zone);
  EXPECT_EQ(-300, now.zone);
}

TEST_F(ClockSeam, ZoneCarriesTheDateAcrossMidnightAndNewYear) {
  // 2023-12-31 22:30 UTC is already 2024-01-01 in a zone two hours east.
  const int64_t newYearsEve = 19722;  // 2023-12-31
  NxClockFix(At(newYearsEve, 22, 30, 0), 120);
  Now now = Read();
  EXPECT_DATE(2024, 1, 1, now.localDate);
  EXPECT_TIME(0, 30, 0, now.localTime);
  EXPECT_DATE(2023, 12, 31, now.utcDate);

  // 2024-01-01 01:00 UTC is still 2023 eight hours west.
  NxClockFix(At(newYearsEve + 1, 1, 0, 0), -480);
  now = Read();
  EXPECT_DATE(2023, 12, 31, now.localDate);
  EXPECT_TIME(17, 0, 0, now.localTime);
  EXPECT_DATE(2024, 1, 1, now.utcDate);
}

TEST_F(ClockSeam, LeapDaysAndCenturies) {
  NxClockFix(At(19782, 12, 0, 0), 0);  // 2024-02-29
  EXPECT_DATE(2024, 2, 29, Read().utcDate);
  NxClockFix(At(19783, 0, 0, 0), 0);
  EXPECT_DATE(2024, 3, 1, Read().utcDate);
  NxClockFix(At(11016, 0, 0, 0), 0);  // 2000-02-29: a leap 400th year
  EXPECT_DATE(2000, 2, 29, Read().utcDate);
  NxClockFix(At(47541, 0, 0, 0), 0);  // 2100-03-01: 2100 has no 29 February
  Now now = Read();
  EXPECT_DATE(2100, 3, 1, now.utcDate);
  NxClockFix(At(47540, 0, 0, 0), 0);
  EXPECT_DATE(2100, 2, 28, Read().utcDate);
  NxClockFix(At(0, 0, 0, 0), 0);
  EXPECT_DATE(1970, 1, 1, Read().utcDate);
}

TEST_F(ClockSeam, InstantsBeforeTheEpochRoundDown) {
  NxClockFix(-1, 0);  // 1969-12-31 23:59:59.999
  const Now now = Read();
  EXPECT_DATE(1969, 12, 31, now.utcDate);
  EXPECT_TIME(23, 59, 59, now.utcTime);
}

TEST_F(ClockSeam, UnknownZoneFallsBackToUtc) {
  NxClockFix(At(kMarch15, 23, 59, 59), NxZONE_UNKNOWN);
  const Now now = Read();
  EXPECT_EQ(-2171, now.zone);
  EXPECT_DATE(2024, 3, 15, now.localDate);
  EXPECT_TIME(23, 59, 59, now.localTime);
  EXPECT_EQ(0, now.localTime.zone);
}

TEST_F(ClockSeam, ReleaseReturnsToTheSystemClock) {
  NxClockFix(0, 60);
  EXPECT_EQ(0, NxClockNowMilliseconds());
  NxClockRelease();
  EXPECT_GT(NxClockNowMilliseconds(), At(kMarch15, 0, 0, 0));
}

TEST(SystemClock, IsSane) {
  NxClockRelease();
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
