// Tests of the hashes of the class rows: NxBoolean, NxSeal, the dates and
// times and the identifiers.  Each element hash is worked out here from the
// fields; memory and disk forms agree where the rows say so.
#include <nxtm/nxtm.h>

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

namespace {

constexpr uint32_t M = 1103515245u;

// The hash of `count` memory elements, in memory form or stored in `format`.
template <typename T>
uint32_t HashOf(char id, const T* values, uint32_t count, unsigned char format,
                uint32_t length = 0, int* statusOut = nullptr) {
  NxTypeMgr mgr;
  std::vector<unsigned char> disk(mgr.DiskLenGet(id, nullptr, format, count, 8) + 1);
  void* at = const_cast<T*>(values);
  if (format != 8) {
    mgr.Store(id, disk.data(), values, format, count);
    at = disk.data();
  }
  int status = 7;
  const uint32_t h = mgr.Hash(id, length, at, count, format, status);
  if (statusOut != nullptr) *statusOut = status;
  else EXPECT_EQ(status, 0);
  return h;
}

template <typename T>
uint32_t One(char id, const T& value, unsigned char format) {
  return HashOf(id, &value, 1, format);
}

uint32_t S(int v) {  // a signed number's 32-bit pattern
  return static_cast<uint32_t>(v);
}

TEST(ClassHash, ElementHashesOfEachRow) {
  NxBoolean b;
  b.SetNullValue();
  for (unsigned char f : {8, 1, 2}) {
    EXPECT_EQ(One(NxTYPE_NxBoolean, b, f), 0xFFFFFFFFu * M);  // null hashes as -1
    EXPECT_EQ(One(NxTYPE_NxBoolean, NxBoolean(1L), f), M);
    EXPECT_EQ(One(NxTYPE_NxDate, NxDate(2004, 1, 5), f), ((2004u * 256 + 1) * 256 + 5) * M);
    EXPECT_EQ(One(NxTYPE_NxDate, NxDate(2004, -1, 5), f), (S(2004 * 256 - 1) * 256 + 5) * M);
    EXPECT_EQ(One(NxTYPE_NxTime, NxTime(13, 30, 9), f), ((13u * 256 + 30) * 256 + 9) * M);
    EXPECT_EQ(One(NxTYPE_NxDateTime, NxDateTime(NxDate(2004, 1, 5), NxTime(13, 30, 9)), f),
              ((((2004u * 256 + 1) * 256 + 5) ^ ((13u * 256 + 30) * 256 + 9)) * M));
    // d_Date widens month and day to 16 bits unsigned: -1 is 0xFFFF.
    EXPECT_EQ(One(NxTYPE_d_Date, d_Date(2004, 0xFF, 7), f), ((2004u * 256 + 0xFFFF) * 256 + 7) * M);
    EXPECT_EQ(One(NxTYPE_NxClassId, NxClassId(12, 3), f), (f == 2 ? 0x0C00u ^ 0x0300u : 12u ^ 3u) * M);
  }
  // A seal's three words: read as they stand in format 1 (turned there).
  NxSeal seal;
  seal.ConvertFrom(NxObjId(0x0102, 0x03040506));
  const uint32_t words = 0x0102 ^ 0x0304 ^ 0x0506;
  EXPECT_EQ(One(NxTYPE_NxSeal, seal, 8), words * M);
  EXPECT_EQ(One(NxTYPE_NxSeal, seal, 2), words * M);
  EXPECT_EQ(One(NxTYPE_NxSeal, seal, 1), (words >> 8 | (words & 0xFF) << 8) * M);
  // Identifiers: the block and the class never enter; on disk the bytes are
  // taken least significant first whatever the format says.
  const NxObjId id(0x0102, 0x03040506, 77), sameNumber(0x0102, 0x03040506, 5);
  EXPECT_EQ(One(NxTYPE_NxObjId, id, 8), (0x03040506u ^ 0x0102u) * M);
  EXPECT_EQ(One(NxTYPE_NxObjId, id, 1), (0x03040506u ^ 0x0102u) * M);
  EXPECT_EQ(One(NxTYPE_NxObjId, id, 2), (0x06050403u ^ 0x0201u) * M);
  EXPECT_EQ(One(NxTYPE_NxObjId, sameNumber, 2), One(NxTYPE_NxObjId, id, 2));
  const NxRef ref(id, 9, NxClassId(1, 2)), otherClass(id, 9, NxClassId(3, 4));
  EXPECT_EQ(One(NxTYPE_NxRef, ref, 8), (0x03040506u ^ 0x0102u ^ 9u) * M);
  EXPECT_EQ(One(NxTYPE_NxRef, ref, 1), One(NxTYPE_NxRef, otherClass, 1));
  // A stated length stops the walk of a date, but identifiers read whole.
  const NxDate dates[3] = {NxDate(2004, 1, 5), NxDate(2004, 1, 6), NxDate(1, 2, 3)};
  const NxObjId ids[3] = {id, NxObjId(3, 4), NxObjId(5, 6)};
  int status = 0;
  EXPECT_EQ(HashOf(NxTYPE_NxDate, dates, 3, 1, 8, &status), HashOf(NxTYPE_NxDate, dates, 2, 1));
  EXPECT_EQ(status, 2101);
  EXPECT_EQ(HashOf(NxTYPE_NxObjId, ids, 3, 1, 10, &status), HashOf(NxTYPE_NxObjId, ids, 3, 1));
  EXPECT_EQ(status, 0);
  EXPECT_EQ(NxTypeMgr().RowGet(NxTYPE_NxRef)->Hash, &NxRef::Hash);
}

TEST(ClassHash, StandardTimesHashEachFormTheirOwnWay) {
  // 10:20:30.50 local in the zone +1: stored hour 11.
  d_Time t(10, 20, 30.5f, 1, 0);
  ASSERT_EQ(t.hour, 11);
  const uint32_t memory = ((20u - 0u) + (11u - 1u) * 256u) * 65536u + 30u;
  uint32_t folded = 0;
  for (int byte : {1, 0, 11, 20, 30, 50}) folded = folded * 16 ^ static_cast<uint32_t>(byte);
  EXPECT_EQ(One(NxTYPE_d_Time, t, 8), memory * M);
  EXPECT_EQ(One(NxTYPE_d_Time, t, 1), folded * M);
  EXPECT_EQ(One(NxTYPE_d_Time, t, 2), folded * M);

  // A timestamp takes its year unsigned in memory form; on disk its time
  // bytes fold signed.  30 seconds less 3 hundredths count as 29.
  d_Timestamp ts(d_Date(-2, 3, 4), t);
  ts.time.hundredth = -3;
  const uint32_t memoryDate = (0xFFFEu * 256 + 3) * 256 + 4;
  uint32_t signedFold = 0;
  for (int byte : {1, 0, 11, 20, 30, -3}) signedFold = signedFold * 16 ^ S(byte);
  EXPECT_EQ(One(NxTYPE_d_Timestamp, ts, 8), (memoryDate ^ (memory - 1)) * M);
  EXPECT_EQ(One(NxTYPE_d_Timestamp, ts, 2), (((S(-2) * 256 + 3) * 256 + 4) ^ signedFold) * M);
}

TEST(ClassHash, MemoryAndDiskFormsAgreeWhereTheRowsSaySo) {
  // Random arrays of three: memory form agrees with the disk forms listed.
  std::mt19937 random(4);
  const auto field = [&random](int low, int high) {
    return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
  };
  for (int round = 0; round < 200; ++round) {
    NxDate dates[3];
    NxTime times[3];
    NxDateTime dateTimes[3];
    d_Date standard[3];
    NxSeal seals[3];
    NxObjId ids[3];
    NxRef refs[3];
    NxBoolean booleans[3];
    for (int i = 0; i < 3; ++i) {
      dates[i] = NxDate(field(-32768, 32767), field(-1, 12), field(-1, 31));
      times[i] = NxTime(field(0, 23), field(0, 59), field(0, 59));
      std::memset(static_cast<void*>(&dateTimes[i]), field(0, 255), sizeof dateTimes[i]);
      dateTimes[i].date = dates[i];
      dateTimes[i].time = times[i];
      standard[i] = d_Date(static_cast<short>(field(-32768, 32767)),
                           static_cast<unsigned short>(field(0, 255)), 31);
      seals[i].ConvertFrom(NxInt64(static_cast<long long>(random()) << 20 | random()));
      ids[i] = NxObjId(static_cast<uint16_t>(random()), random(), random());
      refs[i] = NxRef(ids[(i + 1) % 3], static_cast<uint16_t>(random()), NxClassId(1, 2));
      booleans[i].value = static_cast<unsigned char>(field(0, 255));
    }
    const auto agree = [](char id, const auto* values, std::initializer_list<unsigned char> forms) {
      const uint32_t memory = HashOf(id, values, 3, 8);
      for (unsigned char f : forms) EXPECT_EQ(HashOf(id, values, 3, f), memory) << int{id} << " " << int{f};
    };
    agree(NxTYPE_NxDate, dates, {1, 2});
    agree(NxTYPE_NxTime, times, {1, 2});
    agree(NxTYPE_NxDateTime, dateTimes, {1, 2});
    agree(NxTYPE_d_Date, standard, {1, 2});
    agree(NxTYPE_NxSeal, seals, {2});
    agree(NxTYPE_NxObjId, ids, {1});
    agree(NxTYPE_NxRef, refs, {1});
    agree(NxTYPE_NxBoolean, booleans, {1, 2});
  }
}

}  // namespace
