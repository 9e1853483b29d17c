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

TEST(DiskOrder, EveryFunctionHonoursTheLowFourBitsAndIsItsOwnInverse) {
  typedef uint32_t (*Store)(void*, const void*, unsigned char, uint32_t);
  // clang-format off
  const struct { const char* name; Store store; size_t width; } stores[] = {
      {"CharStore", CharStore, 1}, {"ShortStore", ShortStore, 2}, {"LongStore", LongStore, 4},
      {"FloatStore", FloatStore, 4}, {"DoubleStore", DoubleStore, 8}, {"IntStore", IntStore, 4},
      {"UnsignedStore", UnsignedStore, 4}, {"IntLoad", IntLoad, 4}, {"UnsignedLoad", UnsignedLoad, 4}};
  // clang-format on
  const uint32_t count = 3;
  for (const auto& c : stores) {
    SCOPED_TRACE(c.name);
    // Bytes 01 02 03 ..., and the same with each element reversed.
    std::vector<unsigned char> source(c.width * count), swapped(source.size());
    for (size_t i = 0; i < source.size(); ++i) {
      source[i] = static_cast<unsigned char>(i + 1);
      swapped[i] = static_cast<unsigned char>(i / c.width * c.width + c.width - i % c.width);
    }
    // Low nibble 2: most significant first; else the memory form here.  Higher bits never count.
    for (unsigned char format : {1, 8, 0, 5, 0x0F, 0x81, 0x88, 2, 0x82, 0xF2, 0x12}) {
      SCOPED_TRACE(static_cast<int>(format));
      const auto& expected = (format & 0x0F) == 2 ? swapped : source;
      std::vector<unsigned char> out(source.size() + 1, 0xEE), back(source.size());
      EXPECT_EQ(c.width * count, c.store(out.data(), source.data(), format, count));
      EXPECT_EQ(Hex(expected.data(), expected.size()) + "ee", Hex(out.data(), out.size()));
      c.store(back.data(), out.data(), format, count);
      EXPECT_EQ(source, back);
    }
    EXPECT_EQ(0u, c.store(nullptr, nullptr, 2, 0));  // nothing to move: pointers unused
    std::vector<unsigned char> bytes = source;       // in place
    c.store(bytes.data(), bytes.data(), 2, count);
    EXPECT_EQ(swapped, bytes);
  }
  // A null pointer with elements to move is reported.
  nxtest::AssertRecorder recorder;
  int32_t value = 7;
  EXPECT_EQ(8u, LongStore(nullptr, &value, 2, 2));
  EXPECT_EQ(1u, recorder.reports().size());
}

TEST(DiskOrder, AKnownValueAtAnOddAddress) {
  unsigned char record[9] = {0};
  const double d = 1.5;
  EXPECT_EQ(8u, DoubleStore(record + 1, &d, 2, 1));
  EXPECT_EQ("3ff8000000000000", Hex(record + 1, 8));
}

// Every length, in bulk (where whole blocks are reversed at once) and
// element by element, at every offset between source and destination:
// apart, the same, and overlapping in either direction.  The result is
// that of a separate buffer reversed byte by byte.
TEST(DiskOrder, BulkMovesAgreeWithAByteByByteReversal) {
  typedef uint32_t (*Store)(void*, const void*, unsigned char, uint32_t);
  const struct {
    Store store;
    size_t width;
  } stores[] = {{ShortStore, 2}, {LongStore, 4}, {DoubleStore, 8}};
  uint32_t seed = 99;
  for (const auto& c : stores) {
    for (uint32_t count : {0u, 1u, 3u, 7u, 8u, 15u, 16u, 17u, 31u, 33u, 64u, 100u, 129u}) {
      const size_t bytes = c.width * count;
      for (long shift : {-40L, -9L, -8L, -2L, -1L, 0L, 1L, 2L, 8L, 33L, 1000L}) {
        SCOPED_TRACE("width " + std::to_string(c.width) + " count " + std::to_string(count) +
                     " shift " + std::to_string(shift));
        std::vector<unsigned char> buffer(bytes + 2200);
        for (auto& b : buffer)
          b = static_cast<unsigned char>((seed = seed * 1103515245u + 12345u) >> 16);
        unsigned char* source = buffer.data() + 1100 + 3;  // odd: unaligned elements
        unsigned char* destination = source + shift;
        std::vector<unsigned char> expected(buffer);
        std::vector<unsigned char> reversed(source, source + bytes);
        for (size_t i = 0; i < count; ++i)
          std::reverse(reversed.begin() + i * c.width, reversed.begin() + (i + 1) * c.width);
        std::copy(reversed.begin(), reversed.end(),
                  expected.begin() + (destination - buffer.data()));
        EXPECT_EQ(c.store(destination, source, 2, count), bytes);
        EXPECT_EQ(buffer, expected);
      }
    }
  }
}

TEST(DiskSize, FixedWidthsWhateverTheFormats) {
  typedef uint32_t (*Size)(const void*, unsigned char, unsigned char, uint32_t);
  // clang-format off
  const struct { Size size; uint32_t (*nullSize)(uint32_t); uint32_t width; } rows[] = {
      {CharSizeGet, CharNullSizeGet, 1}, {ShortSizeGet, ShortNullSizeGet, 2},
      {LongSizeGet, LongNullSizeGet, 4}, {FloatSizeGet, FloatNullSizeGet, 4},
      {DoubleSizeGet, DoubleNullSizeGet, 8}, {IntSizeGet, IntNullSizeGet, 4}};
  // clang-format on
  for (const auto& row : rows) {
    for (uint32_t count : {0u, 1u, 9u}) {
      EXPECT_EQ(row.width * count, row.size(nullptr, 8, 2, count)) << row.width;
      EXPECT_EQ(row.width * count, row.size(nullptr, 0, 0x81, count)) << row.width;
      EXPECT_EQ(row.width * count, row.nullSize(count)) << row.width;
    }
  }
}

TEST(MemFileSeek, GrantsWhatIsLeftAndFailuresLeaveThePosition) {
  uint32_t bytes = 4;
  EXPECT_EQ(nullptr, MemFile().Seek(0, MemFile::FromCurrent, &bytes, 0));
  EXPECT_EQ(0u, bytes);

  const unsigned char image[10] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
  MemFile file(image, 10);
  // Granting does not advance; more than is left grants the rest.  A failure (granted 0) leaves
  // the position: at or past the end, before the start, nothing wanted, no such origin.
  enum : unsigned short { kStart = MemFile::FromStart, kCur = MemFile::FromCurrent, kEnd };
  // clang-format off
  const struct { int32_t offset; unsigned short origin; uint32_t wanted, granted; int32_t at; } steps[] = {
      {0, kCur, 4, 4, 0}, {6, kStart, 3, 3, 6}, {2, kCur, 100, 2, 8}, {-3, kEnd, 5, 3, 7},
      {4, kStart, 2, 2, 4}, {0, kEnd, 1, 0, 4}, {6, kCur, 1, 0, 4}, {11, kStart, 1, 0, 4},
      {-1, kStart, 1, 0, 4}, {1, kEnd, 1, 0, 4}, {-5, kCur, 1, 0, 4}, {2, kCur, 0, 0, 4}, {0, 7, 1, 0, 4}};
  // clang-format on
  for (const auto& step : steps) {
    SCOPED_TRACE(std::to_string(step.offset) + " from " + std::to_string(step.origin));
    bytes = step.wanted;
    const unsigned char* at = file.Seek(step.offset, step.origin, &bytes, 0);
    EXPECT_EQ(step.granted, bytes);
    EXPECT_EQ(step.at, file.position);
    EXPECT_EQ(step.granted == 0 ? nullptr : image + step.at, at);
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

TEST(Config, ParseAndQueryWithoutRegardToCase) {
  NxKeyValueConfig config;
  const char* text =
      "# a comment\n\n  stringOverflow =  DeBuG  \r\noldIndexUnicodeOrder=\n"
      "   # indented comment = no\nno equals sign here\n = value without key\n"
      "path = a=b\nlast=end\noff = 0";
  EXPECT_EQ(5, config.Parse(text));
  EXPECT_STREQ("DeBuG", config.Value("stringOverflow"));
  EXPECT_STREQ("", config.Value("oldIndexUnicodeOrder"));
  EXPECT_STREQ("a=b", config.Value("path"));
  EXPECT_STREQ("end", config.Value("last"));
  EXPECT_EQ(nullptr, config.Value("# indented comment"));
  EXPECT_EQ(0, config.Parse(nullptr));
  config.Set("path", nullptr);
  EXPECT_EQ(nullptr, config.Value("path"));

  // Words match in any case, keys exactly; with no words a key set to
  // anything but "0", even to "", raises the flag.
  FixedConfig fixed;
  const char* debug[] = {"release", "debug", nullptr};
  const char* other[] = {"release", "debugger", nullptr};
  const char* fast[] = {"FAST", nullptr};
  // clang-format off
  const struct { const NxConfig* config; const char* key; const char** words; int result; bool raised; } queries[] = {
      {&config, "stringOverflow", debug, 0, true}, {&config, "stringOverflow", other, 0, false},
      {&config, "oldIndexUnicodeOrder", nullptr, 0, true}, {&config, "missing", debug, 1, false},
      {&config, "stringoverflow", nullptr, 1, false}, {&fixed, "mode", fast, 0, true},
      {&fixed, "speed", nullptr, 1, false}, {&config, "off", nullptr, 0, false}};
  // clang-format on
  int16_t flag = 0;
  for (const auto& q : queries) {
    flag = 0;
    EXPECT_EQ(q.result, q.config->Query(q.key, &flag, q.words)) << q.key;
    EXPECT_EQ(q.raised, flag != 0) << q.key;
  }

  // The flag is a 16-bit word at any alignment.
  unsigned char raw[4] = {0, 0, 0, 0xAA};
  EXPECT_EQ(0, config.Query("stringOverflow", raw + 1, nullptr));
  EXPECT_NE("0000", Hex(raw + 1, 2));
  EXPECT_EQ("00aa", Hex(raw, 1) + Hex(raw + 3, 1));
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
  // Flags 3 are the caller bits, 7 adds the build check.
  // clang-format off
  const struct { uint32_t major, minor, build; int flags, expected; } cases[] = {
      {9, 5, 16, 3, NxVERSION_OK}, {9, 5, 99, 3, NxVERSION_OK}, {9, 5, 16, 7, NxVERSION_OK},
      {9, 5, 15, 7, NxVERSION_BUILD_MISMATCH}, {8, 5, 16, 3, NxVERSION_MAJOR_MISMATCH},
      {9, 4, 16, 3, NxVERSION_MINOR_MISMATCH}, {9, 5, 16, 1, NxVERSION_BAD_FLAGS},
      {8, 5, 16, 4, NxVERSION_BAD_FLAGS}};
  // clang-format on
  for (const auto& c : cases) {
    EXPECT_EQ(c.expected, CheckNxVersionNumber(c.major, c.minor, c.build, 0, 0, c.flags))
        << &c - cases;
  }
}

TEST(Clock, FixedInstantsInUtcAndLocalTime) {
  // Milliseconds of a UTC instant, from days since 1970-01-01.
  auto at = [](int64_t days, int hour, int minute, int second) {
    return ((days * 24 + hour) * 60 + minute) * 60000 + second * 1000;
  };
  // The UTC date, time and zone, then the local ones.
  auto read = [] {
    bdate ld = {0, 0, 0}, ud = {0, 0, 0};
    btime lt = {0, 0, 0, 0, 0}, ut = {0, 0, 0, 0, 0};
    nxsgetdate(&ld);
    nxsgettime(&lt);
    nxsgetsystemtime(&ut, &ud);
    return std::vector<int>{ud.year, ud.month, ud.day, ut.hour, ut.minute, ut.second, ut.zone,
                            ld.year, ld.month, ld.day, lt.hour, lt.minute, lt.second, lt.zone};
  };
  // No local fields: the same as the UTC ones.  Rows cross midnight and the new year both ways,
  // leap days (2000 is a leap year, 2100 is not), the epoch, an instant before it (rounds down)
  // and an unknown zone (falls back to UTC).
  // clang-format off
  const struct { int64_t instant; int32_t zone; int utc[6], local[6]; } cases[] = {
      {at(19797, 13, 45, 30) + 999, 0, {2024, 3, 15, 13, 45, 30}, {}},
      {at(19797, 13, 45, 30), 330, {2024, 3, 15, 13, 45, 30}, {2024, 3, 15, 19, 15, 30}},
      {at(19797, 13, 45, 30), -300, {2024, 3, 15, 13, 45, 30}, {2024, 3, 15, 8, 45, 30}},
      {at(19722, 22, 30, 0), 120, {2023, 12, 31, 22, 30, 0}, {2024, 1, 1, 0, 30, 0}},
      {at(19723, 1, 0, 0), -480, {2024, 1, 1, 1, 0, 0}, {2023, 12, 31, 17, 0, 0}},
      {at(19782, 12, 0, 0), 0, {2024, 2, 29, 12, 0, 0}, {}}, {at(19783, 0, 0, 0), 0, {2024, 3, 1}, {}},
      {at(11016, 0, 0, 0), 0, {2000, 2, 29}, {}}, {at(47540, 0, 0, 0), 0, {2100, 2, 28}, {}},
      {at(47541, 0, 0, 0), 0, {2100, 3, 1}, {}}, {0, 0, {1970, 1, 1}, {}},
      {at(19797, 23, 59, 59), NxZONE_UNKNOWN, {2024, 3, 15, 23, 59, 59}, {}},
      {-1, 0, {1969, 12, 31, 23, 59, 59}, {}}};
  // clang-format on
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.instant) + " zone " + std::to_string(c.zone));
    NxClockFix(c.instant, c.zone);
    EXPECT_EQ(c.instant, NxClockNowMilliseconds());
    EXPECT_EQ(c.zone, nxsgettimezone());
    std::vector<int> want(c.utc, c.utc + 6);
    want.push_back(0);
    const int* local = c.local[0] == 0 ? c.utc : c.local;
    want.insert(want.end(), local, local + 6);
    want.push_back(c.zone == NxZONE_UNKNOWN ? 0 : c.zone * 60);
    EXPECT_EQ(want, read());
  }

  // Releasing returns to the system clock.
  NxClockRelease();
  EXPECT_GT(NxClockNowMilliseconds(), at(19797, 0, 0, 0));
  const std::vector<int> now = read();
  EXPECT_GE(std::min(now[0], now[7]), 2024);
  EXPECT_EQ(0, now[6]);
  const int32_t zone = nxsgettimezone();
  EXPECT_EQ(zone == NxZONE_UNKNOWN ? now[13] : zone * 60, now[13]);
}

}  // namespace
